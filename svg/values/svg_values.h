// svg_values.h: from the text of an attribute or property to a value node. Dispatch, and the
// constructors and destructors that the rows of svg_attr_table name.
#ifndef SVG_VALUES_H
#define SVG_VALUES_H

#include "svg/parser/svg_parser.h"

// The record of a value node.
template <class Record> Record *svg_record(svg_a_node *node) {
  return reinterpret_cast<Record *>(node);
}
template <class Record> const Record *svg_record(const svg_a_node *node) {
  return reinterpret_cast<const Record *>(node);
}

// ---- svg_attr.cpp: dispatch -----------------------------------------------------------------------------------------

constexpr uint32_t SVG_LINE_BEING_READ = UINT32_MAX;

// Parses text by its row; the result is new_value (null for none), which the caller takes over. A
// bad value is a warning.
void svg_parse_attr(svg_parser *p, int32_t row, const char *text, uint32_t line);
void svg_add_attr(svg_parser *p, const svg_elem_def *element, int esa_index, const char *text);
void svg_add_prop(svg_parser *p, const char *name, const char *text);
void svg_add_prop_row(svg_parser *p, int32_t row, const char *name, const char *text);
int svg_cmp_an_prio(const void *a, const void *b);

// ---- svg_values.cpp -------------------------------------------------------------------------------------------------

void svg_ctor_an_keyword(svg_parser *p, svg_a_node *node);
void svg_ctor_an_number(svg_parser *p, svg_a_node *node);
void svg_ctor_an_unum(svg_parser *p, svg_a_node *node);
void svg_ctor_an_key_number(svg_parser *p, svg_a_node *node);
void svg_ctor_an_key_unum(svg_parser *p, svg_a_node *node);
void svg_ctor_an_preserveAspectRatio(svg_parser *p, svg_a_node *node);
void svg_ctor_an_viewBox(svg_parser *p, svg_a_node *node);
void svg_ctor_an_clip(svg_parser *p, svg_a_node *node);
void svg_ctor_an_string(svg_parser *p, svg_a_node *node);
void svg_dtor_an_string(ort_core *core, svg_a_node *node);
void svg_ctor_an_class(svg_parser *p, svg_a_node *node);
void svg_ctor_an_id(svg_parser *p, svg_a_node *node);
void svg_ctor_an_name(svg_parser *p, svg_a_node *node);

// ---- svg_lists.cpp --------------------------------------------------------------------------------------------------

void svg_ctor_an_name_list(svg_parser *p, svg_a_node *node);
void svg_dtor_an_name_list(ort_core *core, svg_a_node *node);
void svg_ctor_an_num_list(svg_parser *p, svg_a_node *node);
void svg_ctor_an_num_optnum(svg_parser *p, svg_a_node *node);
void svg_dtor_an_num_list(ort_core *core, svg_a_node *node);
void svg_ctor_an_key_list(svg_parser *p, svg_a_node *node);
void svg_dtor_an_key_list(ort_core *core, svg_a_node *node);
void svg_ctor_an_unum_list(svg_parser *p, svg_a_node *node);
void svg_ctor_an_unum_plus(svg_parser *p, svg_a_node *node);
void svg_dtor_an_unum_list(ort_core *core, svg_a_node *node);
void svg_ctor_an_key_unum_list(svg_parser *p, svg_a_node *node);
void svg_dtor_an_key_unum_list(ort_core *core, svg_a_node *node);

// ---- svg_transform.cpp ----------------------------------------------------------------------------------------------

svg_a_node *svg_anew_an_trafo(svg_parser *p);
int svg_get_trafo(svg_parser *p, int keyword, ort_matrix *matrix, double parameters[3]);

// ---- svg_color.cpp --------------------------------------------------------------------------------------------------

struct svg_rgb_entry {
  uint32_t rgb;
  const char *name;
};
constexpr int SVG_COLOR_COUNT = 147;
constexpr int SVG_SYSCOLOR_COUNT = 28;
extern const svg_rgb_entry svg_rgb_table[SVG_COLOR_COUNT];
extern const svg_rgb_entry svg_sysrgb_table[SVG_SYSCOLOR_COUNT];
extern const ort_keyword svg_colortype_keylist[];

int32_t svg_find_color(const char *name);
int32_t svg_find_syscolor(const char *name);
uint8_t svg_parse_color_comp(svg_parser *p);
void get_rgb_color_comps(double *out, double v);
int32_t svg_get_color(svg_parser *p, svg_color *color);
void svg_ctor_an_color(svg_parser *p, svg_a_node *node);
svg_a_node *svg_anew_an_paint(svg_parser *p);
void svg_ctor_an_paint(svg_parser *p, svg_a_node *node);
void svg_dtor_an_paint(ort_core *core, svg_a_node *node);

// ---- svg_iri.cpp ----------------------------------------------------------------------------------------------------

void svg_init_iri(svg_iri *iri);
void svg_get_iri(svg_parser *p, svg_iri *iri, const char *start, const char *end);
void svg_get_funciri(svg_parser *p, svg_iri *iri);
void svg_dtor_iri(ort_core *core, svg_iri *iri);
void svg_ctor_an_iri(svg_parser *p, svg_a_node *node);
void svg_ctor_an_clip_path(svg_parser *p, svg_a_node *node);
void svg_ctor_an_funciri_none_inh(svg_parser *p, svg_a_node *node);
void svg_dtor_an_iri(ort_core *core, svg_a_node *node);
void svg_ctor_an_color_profile(svg_parser *p, svg_a_node *node);
void svg_dtor_an_key_name_iri(ort_core *core, svg_a_node *node);

// ---- svg_fonts.cpp --------------------------------------------------------------------------------------------------

svg_font *svg_font_new(svg_parser *p, svg_e_node *node);
void svg_ctor_an_font_family(svg_parser *p, svg_a_node *node);
int32_t svg_get_family_name(svg_parser *p);
void svg_dtor_an_key_name_list(ort_core *core, svg_a_node *node);
int32_t svg_match_condition(int32_t relaxed, int32_t font_value, int32_t wanted);

// ---- svg_style.cpp --------------------------------------------------------------------------------------------------

void svg_ctor_an_font(svg_parser *p, svg_a_node *node);

// ---- svg_pada.cpp ---------------------------------------------------------------------------------------------------

void svg_ctor_an_path_data(svg_parser *p, svg_a_node *node);
void svg_dtor_an_path_data(ort_core *core, svg_a_node *node);

#endif
