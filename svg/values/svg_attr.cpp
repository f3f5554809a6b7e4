// svg_attr.cpp: dispatch: from the text of one attribute or property, by its row of svg_attr_table,
// to a value of the element being built.
//
// Called while an element is built from its start tag, and for the declarations of style sheets. A
// bad value costs one warning. Raises everything else that a constructor raises (lack of memory,
// "data:" without data), and SVG_E_PROPERTY_REFUSED.
#include "svg/values/svg_attr.h"

#include <algorithm>

#include "svg/names/svg_schema.h"
#include "svg/values/svg_css_color.h"
#include "svg/values/svg_errors.h"
#include "svg/values/svg_leniency.h"
#include "svg/values/svg_links.h"
#include "svg/values/svg_scan.h"
#include "svg/values/svg_types.h"

static void begin_value(svg_parser *p, int32_t row, const char *text);
static bool is_plain(svg_parser *p, int32_t row);
static void make_value(svg_parser *p, int32_t row);
static void construct(svg_parser *p, int32_t row);
// Apart, so that good values do not pay for its frame.
[[gnu::noinline]] static void refuse(svg_parser *p, int32_t row, const char *text, uint32_t line);
static bool read_leniently(svg_parser *p, int32_t row, const char *text, uint32_t line);
static void discard_value(svg_parser *p);
static void report_failure(svg_parser *p, uint32_t line);

static long line_of(const svg_parser *p, uint32_t line) {
  return line == SVG_LINE_BEING_READ ? svg_xml_line(p) : static_cast<long>(line);
}

void svg_parse_attr(svg_parser *p, int32_t row, const char *text, uint32_t line) {
  const svg_attr_def *def = &svg_attr_table[row];
  const char *given = text;
  if ((def->flags & SVG_AF_KEEPSPACE) == 0)
    while (ort_isspace(*given)) ++given;
  if (*given == '\0') return;

  begin_value(p, row, text);
  if (is_plain(p, row))
    construct(p, row);
  else if (!ort_protected(p->core, [=] { make_value(p, row); }))
    refuse(p, row, text, line);
}

static void begin_value(svg_parser *p, int32_t row, const char *text) {
  const svg_attr_def *def = &svg_attr_table[row];
  p->keys = def->keys;
  p->key_count = static_cast<int32_t>(def->key_count);
  p->scan_pos = p->scan_start = text;
  p->value_link = -1;
}

// Nearly all numbers and colors are plain, and making one raises nothing once it has been read and
// there is room for its record.
static bool is_plain(svg_parser *p, int32_t row) {
  constexpr size_t most =
      std::max({sizeof(svg_an_number), sizeof(svg_an_unum), sizeof(svg_an_key_number),
                sizeof(svg_an_key_unum), sizeof(svg_an_color), sizeof(svg_an_paint_rgb)});
  if (!ort_arena_has_room(&p->kept, most)) return false;
  switch (svg_get_record_kind(row)) {
  case SVG_RECORD_NUMBER:
  case SVG_RECORD_UNUM:
  case SVG_RECORD_KEY_NUMBER:
  case SVG_RECORD_KEY_UNUM: p->tok_pushed = svg_read_plain_number(p); break;
  case SVG_RECORD_COLOR:
  case SVG_RECORD_PAINT: p->tok_pushed = svg_read_plain_color(p); break;
  default: return false;
  }
  return p->tok_pushed != 0;
}

static void make_value(svg_parser *p, int32_t row) {
  const svg_attr_def *def = &svg_attr_table[row];
  p->tok_pushed = 0;
  if ((def->flags & SVG_AF_NONUM) != 0)
    svg_ntok_nonum(p);
  else
    svg_ntok(p);
  p->tok_pushed = 1;
  construct(p, row);
}

static void construct(svg_parser *p, int32_t row) {
  const svg_attr_def *def = &svg_attr_table[row];
  if (def->anew)
    p->new_value = def->anew(p);
  else if (def->value_size > 0)
    p->new_value = svg_a_node_new(p, static_cast<size_t>(def->value_size));
  if (p->new_value) p->new_value->row = static_cast<int16_t>(row);
  if (def->ctor) def->ctor(p, p->new_value);
}

static void refuse(svg_parser *p, int32_t row, const char *text, uint32_t line) {
  if (p->leniency == 0 || !read_leniently(p, row, text, line)) report_failure(p, line);
}

// Whether a value that was refused is taken now. When it is not, what stands against it is pending
// as before.
static bool read_leniently(svg_parser *p, int32_t row, const char *text, uint32_t line) {
  const uint32_t flags = svg_leniency_for(p, row);
  if (p->value_ok != 0 || flags == 0) return false;
  discard_value(p);
  p->lenient = flags;
  p->lenient_use = 0;
  p->lenient_row = row;
  p->lenient_outermost = p->level == 1;
  begin_value(p, row, text);
  const bool taken = ort_protected(p->core, [=] { make_value(p, row); });
  p->lenient = 0;
  if (taken) svg_tell_lenient(p, p->lenient_use, text, line_of(p, line));
  return taken;
}

// The row of the half-made value may be another one than was asked for: a shorthand makes the
// values of its longhands.
static void discard_value(svg_parser *p) {
  p->value_ok = 1;
  p->alpha = 1;
  svg_drop_value_link(p);
  svg_a_node_delete(p->core, p->new_value);
  p->new_value = nullptr;
}

static void report_failure(svg_parser *p, uint32_t line) {
  const bool bad_value = p->value_ok == 0;
  discard_value(p);
  svg_add_position(p, line_of(p, line));
  if (!bad_value) ort_rethrow(p->core);
  svg_warn_pending(p);
  p->in_style_attr = 0;
  p->css_mode = 0;
  p->prop_name = nullptr;
}

void svg_add_attr(svg_parser *p, const svg_elem_def *element, int esa_index, const char *text) {
  const int16_t row = element->esa_list[esa_index].attr;
  const svg_attr_def *def = &svg_attr_table[row];
  svg_parse_attr(p, row, text, SVG_LINE_BEING_READ);
  svg_a_node *value = p->new_value;
  if (!value) return;

  svg_note(p, 6, "\t\t\t[add attribute %a=\"%a\"]\n", def->name, text);
  p->attr_values_own |= svg_a_node_owns(value);
  svg_collect_value(p, value, nullptr);
  ort_setbit(p->attrs_set, static_cast<size_t>(esa_index));
  if (element->beg_hook && (def->flags & SVG_AF_ATTRIBUTE) != 0)
    p->hook_slots[static_cast<size_t>(def->apo[p->cur_enode->head.id]) / sizeof(svg_a_node *)] =
        value;
}

void svg_add_prop(svg_parser *p, const char *name, const char *text) {
  svg_add_prop_row(p, svg_find_prop(name), name, text);
}

void svg_add_prop_row(svg_parser *p, int32_t row, const char *name, const char *text) {
  p->prop_name = name;
  p->css_mode = 1;
  if (row < 0) {
    svg_note(p, 5, "\t\t\t[property \"%a\" unsupported]\n", name);
    svg_skip_property_name(p, p->in_style_attr ? SVG_SKIPPED_PROPERTY : SVG_SKIPPED_ATTRIBUTE,
                           name);
  } else if (p->in_style_attr != 0 || !ort_getbit(p->props_set, static_cast<size_t>(row))) {
    svg_parse_attr(p, row, text, SVG_LINE_BEING_READ);
    if (svg_a_node *value = p->new_value) {
      char given[SVG_ALPHA_SIZE];
      const char *opacity = svg_take_alpha(p, value, given);
      svg_note(p, 6, "\t\t\t[add property %a=\"%a\"]\n", name, text);
      svg_keep_prop(p, value);
      svg_collect_value(p, value, nullptr);
      if (p->in_style_attr != 0) ort_setbit(p->props_set, static_cast<size_t>(row));
      if (opacity) svg_add_prop(p, opacity, given);
    }
  }
  p->css_mode = 0;
  p->prop_name = nullptr;
}

void svg_keep_prop(svg_parser *p, svg_a_node *value) {
  if (svg_a_node_owns(value)) ort_push(p->prop_values, value);
  p->new_value = nullptr;
}

void svg_collect_value(svg_parser *p, svg_a_node *value, const char *selector) {
  ort_push(p->an_values, value);
  p->new_value = nullptr; // else, should the observer raise, it had two owners
  if (p->observer) p->observer(p->observer_user, p->cur_enode, value, p->source, selector);
}
