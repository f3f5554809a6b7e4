// svg_types.h: the types of values: the constructor of each, which reads it from its text, and the
// destructor, which frees the parts that it owns.
//
// svg_parse_attr gives a constructor the zeroed record and a scanner that stands before the text.
// Bad text is raised with svg_err_value, by a jump: what is in the record at that moment must be
// fit for the destructor. Each constructor raises for lack of memory, too.
#ifndef SVG_TYPES_H
#define SVG_TYPES_H

#include "svg/tables/attributes.h"

// References to constants that the compiler computes and proves (svg/tables/schema.h).
extern const svg_attr_def (&svg_attr_table)[SVG_ATTR_COUNT];

svg_a_node *svg_a_node_new(svg_parser *p, size_t size);    // zeroed, among the nodes of the tree
bool svg_a_node_owns(const svg_a_node *value);             // whether deleting it frees anything
void svg_a_node_delete(ort_core *core, svg_a_node *value); // what it owns; null is allowed

// ---- Functions ----------------------------------------------------------------------------------

// svg_values.cpp
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

// svg_lists.cpp
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

// svg_transform.cpp, svg_color.cpp
svg_a_node *svg_anew_an_trafo(svg_parser *p);
void svg_ctor_an_color(svg_parser *p, svg_a_node *node);
svg_a_node *svg_anew_an_paint(svg_parser *p);
void svg_ctor_an_paint(svg_parser *p, svg_a_node *node);
void svg_dtor_an_paint(ort_core *core, svg_a_node *node);

// svg_iri.cpp
void svg_ctor_an_iri(svg_parser *p, svg_a_node *node);
void svg_ctor_an_clip_path(svg_parser *p, svg_a_node *node);
void svg_ctor_an_funciri_none_inh(svg_parser *p, svg_a_node *node);
void svg_dtor_an_iri(ort_core *core, svg_a_node *node);
void svg_ctor_an_color_profile(svg_parser *p, svg_a_node *node);
void svg_dtor_an_key_name_iri(ort_core *core, svg_a_node *node);

// svg_families.cpp, svg_font.cpp, svg_pada.cpp
void svg_ctor_an_font_family(svg_parser *p, svg_a_node *node);
void svg_dtor_an_key_name_list(ort_core *core, svg_a_node *node);
void svg_ctor_an_font(svg_parser *p, svg_a_node *node);
void svg_ctor_an_path_data(svg_parser *p, svg_a_node *node);
void svg_dtor_an_path_data(ort_core *core, svg_a_node *node);

// ---- Types --------------------------------------------------------------------------------------

struct svg_type {
  svg_tables::value_type type;
  svg_record_kind kind;
  int32_t size; // of the record, or the least; 0: none is made
  void (*ctor)(svg_parser *parser, svg_a_node *node) = nullptr;
  void (*dtor)(ort_core *core, svg_a_node *node) = nullptr;
  svg_a_node *(*anew)(svg_parser *parser) = nullptr; // makes the record as long as its text needs
};

// clang-format off
inline constexpr svg_type SVG_TYPES[svg_tables::TYPE_COUNT] = {
  {svg_tables::KEYWORD,       SVG_RECORD_KEYWORD,       sizeof(svg_an_keyword),       svg_ctor_an_keyword},
  {svg_tables::NUMBER,        SVG_RECORD_NUMBER,        sizeof(svg_an_number),        svg_ctor_an_number},
  {svg_tables::UNUM,          SVG_RECORD_UNUM,          sizeof(svg_an_unum),          svg_ctor_an_unum},
  {svg_tables::KEY_NUMBER,    SVG_RECORD_KEY_NUMBER,    sizeof(svg_an_key_number),    svg_ctor_an_key_number},
  {svg_tables::KEY_UNUM,      SVG_RECORD_KEY_UNUM,      sizeof(svg_an_key_unum),      svg_ctor_an_key_unum},
  {svg_tables::ASPECT,        SVG_RECORD_ASPECT,        sizeof(svg_an_aspect),        svg_ctor_an_preserveAspectRatio},
  {svg_tables::VIEWBOX,       SVG_RECORD_VIEWBOX,       sizeof(svg_an_viewbox),       svg_ctor_an_viewBox},
  {svg_tables::CLIP,          SVG_RECORD_CLIP,          sizeof(svg_an_clip),          svg_ctor_an_clip},
  {svg_tables::STRING,        SVG_RECORD_STRING,        sizeof(svg_an_string),        svg_ctor_an_string,           svg_dtor_an_string},
  {svg_tables::NAME_LIST,     SVG_RECORD_NAME_LIST,     sizeof(svg_an_name_list),     svg_ctor_an_name_list,        svg_dtor_an_name_list},
  {svg_tables::NUM_OPTNUM,    SVG_RECORD_NUM_LIST,      sizeof(svg_an_num_list),      svg_ctor_an_num_optnum,       svg_dtor_an_num_list},
  {svg_tables::KEY_LIST,      SVG_RECORD_KEY_LIST,      sizeof(svg_an_key_list),      svg_ctor_an_key_list,         svg_dtor_an_key_list},
  {svg_tables::UNUM_LIST,     SVG_RECORD_UNUM_LIST,     sizeof(svg_an_unum_list),     svg_ctor_an_unum_list,        svg_dtor_an_unum_list},
  {svg_tables::UNUM_PLUS,     SVG_RECORD_UNUM_LIST,     sizeof(svg_an_unum_list),     svg_ctor_an_unum_plus,        svg_dtor_an_unum_list},
  {svg_tables::KEY_UNUM_LIST, SVG_RECORD_KEY_UNUM_LIST, sizeof(svg_an_key_unum_list), svg_ctor_an_key_unum_list,    svg_dtor_an_key_unum_list},
  {svg_tables::TRAFO,         SVG_RECORD_TRAFO,         8,                            nullptr,                      nullptr, svg_anew_an_trafo},
  {svg_tables::COLOR,         SVG_RECORD_COLOR,         sizeof(svg_an_color),         svg_ctor_an_color},
  {svg_tables::PAINT,         SVG_RECORD_PAINT,         4,                            svg_ctor_an_paint,            svg_dtor_an_paint, svg_anew_an_paint},
  {svg_tables::IRI,           SVG_RECORD_IRI,           sizeof(svg_an_iri),           svg_ctor_an_iri,              svg_dtor_an_iri},
  {svg_tables::CLIP_PATH,     SVG_RECORD_IRI,           sizeof(svg_an_iri),           svg_ctor_an_clip_path,        svg_dtor_an_iri},
  {svg_tables::FUNCIRI,       SVG_RECORD_IRI,           sizeof(svg_an_iri),           svg_ctor_an_funciri_none_inh, svg_dtor_an_iri},
  {svg_tables::COLOR_PROFILE, SVG_RECORD_COLOR_PROFILE, sizeof(svg_an_color_profile), svg_ctor_an_color_profile,    svg_dtor_an_key_name_iri},
  {svg_tables::FONT_FAMILY,   SVG_RECORD_KEY_NAME_LIST, sizeof(svg_an_key_name_list), svg_ctor_an_font_family,      svg_dtor_an_key_name_list},
  {svg_tables::PATH_DATA,     SVG_RECORD_PATH_DATA,     sizeof(svg_an_path_data),     svg_ctor_an_path_data,        svg_dtor_an_path_data},
  {svg_tables::CLASS,         SVG_RECORD_NONE,          0,                            svg_ctor_an_class},
  {svg_tables::ID,            SVG_RECORD_NONE,          0,                            svg_ctor_an_id},
  {svg_tables::NAME,          SVG_RECORD_NONE,          0,                            svg_ctor_an_name},
  {svg_tables::STYLE,         SVG_RECORD_NONE,          0},
  {svg_tables::FONT,          SVG_RECORD_NONE,          sizeof(svg_an_string),        svg_ctor_an_font,             svg_dtor_an_string},
};
// clang-format on

#endif
