// svg_leniency.cpp: what every kind of lenient reading needs: which flags can serve a value, and
// telling the host of what was taken.
//
// svg_parse_attr reads a value strictly first. Only one that is refused is read again, with the
// flags that its row can make use of; so the strict reading pays nothing, and what it takes is
// never read otherwise. Raises nothing.
#include "svg/values/svg_leniency.h"

#include <utility>

static void tell(const svg_host *p, const svg_lenient_value &value);

uint32_t svg_leniency_for(const svg_host *p, int32_t row) {
  uint32_t flags = 0;
  switch (svg_get_record_kind(row)) {
  case SVG_RECORD_TRAFO:
  case SVG_RECORD_VIEWBOX:
  case SVG_RECORD_NUM_LIST: flags = SVG_LENIENT_NUMBERS; break;
  case SVG_RECORD_UNUM_LIST:
  case SVG_RECORD_KEY_UNUM_LIST: flags = SVG_LENIENT_NUMBERS | SVG_LENIENT_LENGTHS; break;
  case SVG_RECORD_UNUM:
  case SVG_RECORD_KEY_UNUM: flags = SVG_LENIENT_LENGTHS; break;
  case SVG_RECORD_COLOR:
  case SVG_RECORD_PAINT: flags = SVG_LENIENT_FALLBACKS | SVG_LENIENT_COLORS; break;
  default: break;
  }
  switch (row) {
  case SVG_PROP_opacity:
  case SVG_PROP_fill_opacity:
  case SVG_PROP_stroke_opacity: flags = SVG_LENIENT_PERCENT; break;
  case SVG_PROP_stop_opacity: flags = SVG_LENIENT_PERCENT | SVG_LENIENT_FALLBACKS; break;
  default: break;
  }
  return p->leniency & flags;
}

bool svg_is_lenient(svg_scanner *p, uint32_t flag) {
  p->lenient_use |= p->lenient & flag;
  return (p->lenient & flag) != 0;
}

void svg_tell_lenient(svg_parser *p, uint32_t flags, const char *text, long line) {
  tell(p, {.flags = flags,
           .line = static_cast<uint32_t>(line),
           .element = p->elem_name ? p->elem_name : "",
           .name = p->prop_name ? p->prop_name : p->attr_name,
           .text = text});
}

void svg_tell_encoding(svg_parser *p, const char *name) {
  if (std::exchange(p->encoding_told, true)) return;
  tell(p,
       {.flags = SVG_LENIENT_ENCODING, .line = 1, .element = "", .name = "encoding", .text = name});
}

const char *svg_sheet_encoding(const svg_parser *p) {
  if ((p->leniency & SVG_LENIENT_ENCODING) == 0) return nullptr;
  return *p->windows_encoding ? p->windows_encoding : "UTF-8";
}

static void tell(const svg_host *p, const svg_lenient_value &value) {
  if (p->leniency_observer) p->leniency_observer(p->leniency_observer_user, &value);
}
