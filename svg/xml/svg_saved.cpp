// svg_saved.cpp: the text of title, desc and metadata.
//
// The callbacks of the main pass feed the capture while it is open. Markup inside is written again
// with its prefixes and namespace declarations, attribute values and character data as Expat
// delivers them: entities are not escaped again. Raises only for lack of memory.
#include "svg/xml/svg_saved.h"

#include "svg/names/svg_namespace.h"
#include "svg/names/svg_schema.h"

static char **result_of(svg_capture *p, int32_t id);
static void close_start_tag(svg_capture *p, const char *end);
static void write_name(ort_bs *bs, const char *prefix, const char *local);

void svg_savelem_open(svg_parser *p, int id) {
  if (id != SVG_ELEM_title && id != SVG_ELEM_desc && (id != SVG_ELEM_metadata || p->level != 2)) {
    return;
  }
  p->savelem_text = ort_bs_new(p->core);
  if (!p->no_namespaces && !p->xmlns_text) p->xmlns_text = ort_bs_new(p->core);
  p->savelem = id;
}

// Expat reports declarations before the start tag that holds them.
void svg_savelem_namespace(svg_parser *p, const char *prefix, const char *uri) {
  if (p->savelem == SVG_NO_ELEMENT || !p->xmlns_text) return;
  ort_bs_append_text(p->xmlns_text, " xmlns");
  if (prefix && *prefix != '\0') {
    ort_bs_append_text(p->xmlns_text, ":");
    ort_bs_append_text(p->xmlns_text, prefix);
  }
  ort_bs_append_text(p->xmlns_text, "=\"");
  ort_bs_append_text(p->xmlns_text, uri ? uri : "");
  ort_bs_append_text(p->xmlns_text, "\"");
}

void svg_savelem_start(svg_parser *p, const char *prefix, const char *local,
                       const svg_given_attr *attrs) {
  ort_bs *bs = p->savelem_text;
  close_start_tag(p, ">");
  ort_bs_append_byte(bs, '<');
  write_name(bs, prefix, local);
  if (p->xmlns_text) {
    ort_bs_append(bs, ort_bs_text(p->xmlns_text), ort_bs_length(p->xmlns_text));
    ort_bs_clear(p->xmlns_text);
  }
  for (; attrs->name; ++attrs) {
    const char *attr_prefix, *attr_local;
    svg_decomp_fullname(p, attrs->name->text, &attr_prefix, &attr_local);
    ort_bs_append_byte(bs, ' ');
    write_name(bs, attr_prefix, attr_local);
    ort_bs_append_text(bs, "=\"");
    ort_bs_append_text(bs, attrs->text);
    ort_bs_append_byte(bs, '"');
  }
  p->savelem_tag_open = 1;
}

void svg_savelem_char_data(svg_capture *p, const char *s, int len) {
  close_start_tag(p, ">");
  ort_bs_append(p->savelem_text, s, static_cast<size_t>(len));
}

void svg_savelem_end(svg_parser *p, int32_t type, const char *prefix, const char *local) {
  if (type == SVG_NS_SVG && svg_find_element(local) == p->savelem) {
    const char *text = ort_bs_text(p->savelem_text);
    size_t length = ort_bs_length(p->savelem_text);
    if (length > 0 && text[0] == '\n') ++text, --length;
    if (length > 0 && text[length - 1] == '\n') --length;
    char **result = result_of(p, p->savelem);
    if (length > 0 && !*result) {
      *result = ort_strndup(p->core, text, length, "svg_savelem_end");
    }
    ort_bs_delete(p->savelem_text);
    p->savelem_text = nullptr;
    p->savelem = SVG_NO_ELEMENT;
  } else if (p->savelem_tag_open) {
    close_start_tag(p, "/>");
  } else {
    ort_bs_append_text(p->savelem_text, "</");
    write_name(p->savelem_text, prefix, local);
    ort_bs_append_byte(p->savelem_text, '>');
  }
  p->savelem_tag_open = 0;
}

static char **result_of(svg_capture *p, int32_t id) {
  return id == SVG_ELEM_title ? &p->title : id == SVG_ELEM_desc ? &p->desc : &p->metadata;
}

static void close_start_tag(svg_capture *p, const char *end) {
  if (p->savelem_tag_open) ort_bs_append_text(p->savelem_text, end);
  p->savelem_tag_open = 0;
}

static void write_name(ort_bs *bs, const char *prefix, const char *local) {
  if (*prefix != '\0') {
    ort_bs_append_text(bs, prefix);
    ort_bs_append_byte(bs, ':');
  }
  ort_bs_append_text(bs, local);
}
