// attributes.h: properties and attributes. One row says all about one of them; schema.h computes
// what follows from it.
//
// The number of a row is its identity: values carry it, and drawing modules know it. So a new row,
// be it a property or an attribute, is added at the end. An attribute whose meaning depends on its
// element has several rows; elements.h chooses among them. No element has the rows 46, 48, 60, 113
// and 146.
#ifndef SVG_TABLES_ATTRIBUTES_H
#define SVG_TABLES_ATTRIBUTES_H

#include "svg/tables/names.h"
#include "svg/values/svg_values.h"

namespace svg_tables {

// How a value is made: its record, by an allocator of its own if need be, its parser, and what
// frees the parts it owns.
struct value_type {
  svg_record_kind kind;
  int32_t size; // 0: the row makes no record
  void (*ctor)(svg_parser *parser, svg_a_node *node) = nullptr;
  void (*dtor)(ort_core *core, svg_a_node *node) = nullptr;
  svg_a_node *(*anew)(svg_parser *parser) = nullptr; // makes the record as long as its text needs
};

// clang-format off
inline constexpr value_type
  KEYWORD       = {SVG_RECORD_KEYWORD,       sizeof(svg_an_keyword),       svg_ctor_an_keyword},
  NUMBER        = {SVG_RECORD_NUMBER,        sizeof(svg_an_number),        svg_ctor_an_number},
  UNUM          = {SVG_RECORD_UNUM,          sizeof(svg_an_unum),          svg_ctor_an_unum},
  KEY_NUMBER    = {SVG_RECORD_KEY_NUMBER,    sizeof(svg_an_key_number),    svg_ctor_an_key_number},
  KEY_UNUM      = {SVG_RECORD_KEY_UNUM,      sizeof(svg_an_key_unum),      svg_ctor_an_key_unum},
  ASPECT        = {SVG_RECORD_ASPECT,        sizeof(svg_an_aspect),        svg_ctor_an_preserveAspectRatio},
  VIEWBOX       = {SVG_RECORD_VIEWBOX,       sizeof(svg_an_viewbox),       svg_ctor_an_viewBox},
  CLIP          = {SVG_RECORD_CLIP,          sizeof(svg_an_clip),          svg_ctor_an_clip},
  STRING        = {SVG_RECORD_STRING,        sizeof(svg_an_string),        svg_ctor_an_string,              svg_dtor_an_string},
  NAME_LIST     = {SVG_RECORD_NAME_LIST,     sizeof(svg_an_name_list),     svg_ctor_an_name_list,           svg_dtor_an_name_list},
  NUM_OPTNUM    = {SVG_RECORD_NUM_LIST,      sizeof(svg_an_num_list),      svg_ctor_an_num_optnum,          svg_dtor_an_num_list},
  KEY_LIST      = {SVG_RECORD_KEY_LIST,      sizeof(svg_an_key_list),      svg_ctor_an_key_list,            svg_dtor_an_key_list},
  UNUM_LIST     = {SVG_RECORD_UNUM_LIST,     sizeof(svg_an_unum_list),     svg_ctor_an_unum_list,           svg_dtor_an_unum_list},
  UNUM_PLUS     = {SVG_RECORD_UNUM_LIST,     sizeof(svg_an_unum_list),     svg_ctor_an_unum_plus,           svg_dtor_an_unum_list},
  KEY_UNUM_LIST = {SVG_RECORD_KEY_UNUM_LIST, sizeof(svg_an_key_unum_list), svg_ctor_an_key_unum_list,       svg_dtor_an_key_unum_list},
  TRAFO         = {SVG_RECORD_TRAFO,         8,                            nullptr,                         nullptr, svg_anew_an_trafo},
  COLOR         = {SVG_RECORD_COLOR,         sizeof(svg_an_color),         svg_ctor_an_color},
  PAINT         = {SVG_RECORD_PAINT,         4,                            svg_ctor_an_paint,               svg_dtor_an_paint, svg_anew_an_paint},
  IRI           = {SVG_RECORD_IRI,           sizeof(svg_an_iri),           svg_ctor_an_iri,                 svg_dtor_an_iri},
  CLIP_PATH     = {SVG_RECORD_IRI,           sizeof(svg_an_iri),           svg_ctor_an_clip_path,           svg_dtor_an_iri},
  FUNCIRI       = {SVG_RECORD_IRI,           sizeof(svg_an_iri),           svg_ctor_an_funciri_none_inh,    svg_dtor_an_iri},
  COLOR_PROFILE = {SVG_RECORD_COLOR_PROFILE, sizeof(svg_an_color_profile), svg_ctor_an_color_profile,       svg_dtor_an_key_name_iri},
  FONT_FAMILY   = {SVG_RECORD_KEY_NAME_LIST, sizeof(svg_an_key_name_list), svg_ctor_an_font_family,         svg_dtor_an_key_name_list},
  PATH_DATA     = {SVG_RECORD_PATH_DATA,     sizeof(svg_an_path_data),     svg_ctor_an_path_data,           svg_dtor_an_path_data},
  CLASS         = {SVG_RECORD_NONE,          0,                            svg_ctor_an_class},
  ID            = {SVG_RECORD_NONE,          0,                            svg_ctor_an_id},
  NAME          = {SVG_RECORD_NONE,          0,                            svg_ctor_an_name},
  STYLE         = {SVG_RECORD_NONE,          0},
  FONT          = {SVG_RECORD_NONE,          sizeof(svg_an_string),        svg_ctor_an_font,                svg_dtor_an_string};
// clang-format on

inline constexpr uint32_t PROP = SVG_AF_PROPERTY, ATTR = SVG_AF_ATTRIBUTE,
                          POSITIVE = SVG_AF_POSITIVE, KEEPSPACE = SVG_AF_KEEPSPACE,
                          HORZ = SVG_AF_HORIZONTAL, VERT = SVG_AF_VERTICAL, NONUM = SVG_AF_NONUM;

struct attribute {
  int row;
  const char *name;
  const char *default_text;
  value_type type;
  uint32_t prio;
  uint32_t flags;
  uint32_t group;
  const char *keys[18] = {}; // in the order of their search
};

// clang-format off
#define PROPERTY(name) SVG_PROP_##name, DASHED<#name>.text
inline constexpr attribute ATTRIBUTES[SVG_ATTR_COUNT] = {
// row, name                            default              type           prio flags             group keywords
  {PROPERTY(background_color),         "none",              PAINT,         2, PROP | NONUM,           2, {"inherit", "transparent", "none"}},
  {PROPERTY(baseline_shift),           "baseline",          KEY_UNUM,      2, PROP,                   3,
        {"baseline", "sub", "super", "inherit"}},
  {PROPERTY(clip),                     "auto",              CLIP,          2, PROP,                   0, {"auto", "rect", "inherit"}},
  {PROPERTY(clip_path),                "none",              CLIP_PATH,     6, PROP | NONUM,           0, {"none", "inherit", "url"}},
  {PROPERTY(clip_rule),                "nonzero",           KEYWORD,       2, PROP | NONUM,           0, {"nonzero", "evenodd", "inherit"}},
  {PROPERTY(color),                    "black",             COLOR,         2, PROP,                   2, {"inherit"}},
  {PROPERTY(color_profile),            "auto",              COLOR_PROFILE, 2, PROP,                   0, {"auto", "sRGB", "inherit"}},
  {PROPERTY(direction),                "ltr",               KEYWORD,       2, PROP | NONUM,           3, {"ltr", "rtl", "inherit"}},
  {PROPERTY(display),                  "inline",            KEYWORD,       2, PROP | NONUM,           2,
        {"inline", "block", "list-item", "run-in", "compact", "marker", "table", "inline-table", "table-row-group",
         "table-header-group", "table-footer-group", "table-row", "table-column-group", "table-column", "table-cell",
         "table-caption", "none", "inherit"}},
  {PROPERTY(fill),                     "black",             PAINT,         4, PROP | NONUM,           2,
        {"currentColor", "inherit", "none", "url"}},
  {PROPERTY(fill_opacity),             "1",                 KEY_NUMBER,    2, PROP,                   2, {"inherit"}},
  {PROPERTY(fill_rule),                "nonzero",           KEYWORD,       2, PROP | NONUM,           0, {"nonzero", "evenodd", "inherit"}},
  {PROPERTY(font),                     nullptr,             FONT,          2, PROP,                   0,
        {"caption", "icon", "menu", "message-box", "small-caption", "status-bar", "inherit"}},
  {PROPERTY(font_family),              nullptr,             FONT_FAMILY,   2, PROP | NONUM,           3,
        {"cursive", "fantasy", "inherit", "monospace", "sans-serif", "serif"}},
  {PROPERTY(font_size),                "medium",            KEY_UNUM,      2, PROP,                   3,
        {"inherit", "xx-small", "x-small", "small", "smaller", "medium", "large", "larger", "x-large", "xx-large"}},
  {PROPERTY(font_size_adjust),         "none",              KEY_NUMBER,    2, PROP,                   3, {"none", "inherit"}},
  {PROPERTY(font_stretch),             "normal",            KEYWORD,       2, PROP | NONUM,           3,
        {"normal", "wider", "narrower", "ultra-condensed", "extra-condensed", "condensed", "semi-condensed",
         "semi-expanded", "expanded", "extra-expanded", "ultra-expanded", "inherit"}},
  {PROPERTY(font_style),               "normal",            KEYWORD,       2, PROP | NONUM,           3,
        {"normal", "italic", "oblique", "inherit"}},
  {PROPERTY(font_variant),             "normal",            KEYWORD,       2, PROP | NONUM,           3,
        {"normal", "small-caps", "inherit"}},
  {PROPERTY(font_weight),              "normal",            KEYWORD,       2, PROP | NONUM,           3,
        {"normal", "bold", "bolder", "lighter", "100", "200", "300", "400", "500", "600", "700", "800", "900",
         "inherit", "regular"}},
  {PROPERTY(glyph_orientation_vertical),"auto",              KEYWORD,       2, PROP | NONUM,           3,
        {"auto", "inherit", "0", "90", "180", "270"}},
  {PROPERTY(kerning),                  "auto",              KEY_UNUM,      2, PROP,                   3, {"auto", "inherit"}},
  {PROPERTY(letter_spacing),           "normal",            KEY_UNUM,      2, PROP,                   3, {"normal", "inherit"}},
  {PROPERTY(marker),                   "none",              FUNCIRI,       2, PROP | NONUM,           0, {"none", "inherit", "url"}},
  {PROPERTY(marker_end),               "none",              FUNCIRI,       2, PROP | NONUM,           0, {"none", "inherit", "url"}},
  {PROPERTY(marker_mid),               "none",              FUNCIRI,       2, PROP | NONUM,           0, {"none", "inherit", "url"}},
  {PROPERTY(marker_start),             "none",              FUNCIRI,       2, PROP | NONUM,           0, {"none", "inherit", "url"}},
  {PROPERTY(mask),                     "none",              FUNCIRI,       1, PROP | NONUM,           0, {"none", "inherit", "url"}},
  {PROPERTY(opacity),                  "1",                 KEY_NUMBER,    2, PROP,                   5, {"inherit"}},
  {PROPERTY(overflow),                 "hidden",            KEYWORD,       2, PROP | NONUM,           0,
        {"visible", "hidden", "scroll", "auto", "inherit"}},
  {PROPERTY(stop_color),               "black",             PAINT,         2, PROP | NONUM,           0, {"currentColor", "inherit"}},
  {PROPERTY(stop_opacity),             "1",                 NUMBER,        2, PROP,                   0, {"inherit"}},
  {PROPERTY(stroke),                   "none",              PAINT,         4, PROP | NONUM,           2,
        {"currentColor", "inherit", "none", "url"}},
  {PROPERTY(stroke_dasharray),         "none",              KEY_UNUM_LIST, 3, PROP,                   0, {"none", "inherit"}},
  {PROPERTY(stroke_dashoffset),        "0",                 KEY_UNUM,      2, PROP,                   0, {"none", "inherit"}},
  {PROPERTY(stroke_linecap),           "butt",              KEYWORD,       2, PROP | NONUM,           0,
        {"butt", "round", "square", "inherit"}},
  {PROPERTY(stroke_linejoin),          "miter",             KEYWORD,       2, PROP | NONUM,           0,
        {"miter", "round", "bevel", "inherit"}},
  {PROPERTY(stroke_miterlimit),        "4",                 KEY_NUMBER,    2, PROP,                   0, {"inherit"}},
  {PROPERTY(stroke_opacity),           "1",                 KEY_NUMBER,    2, PROP,                   2, {"inherit"}},
  {PROPERTY(stroke_width),             "1",                 KEY_UNUM,      2, PROP,                   2, {"inherit"}},
  {PROPERTY(text_anchor),              "start",             KEYWORD,       2, PROP | NONUM,           3,
        {"start", "middle", "end", "inherit"}},
  {PROPERTY(text_decoration),          "none",              KEY_LIST,      5, PROP | NONUM,           2,
        {"none", "underline", "overline", "line-through", "blink", "inherit"}},
  {PROPERTY(unicode_bidi),             "normal",            KEYWORD,       2, PROP | NONUM,           3,
        {"normal", "embed", "bidi-override", "inherit"}},
  {PROPERTY(visibility),               "visible",           KEYWORD,       2, PROP | NONUM,           2,
        {"visible", "hidden", "collapse", "inherit"}},
  {PROPERTY(word_spacing),             "normal",            KEY_UNUM,      2, PROP,                   3, {"normal", "inherit"}},
  {PROPERTY(writing_mode),             "lr-tb",             KEYWORD,       2, PROP | NONUM,           3,
        {"lr-tb", "rl-tb", "tb-rl", "lr", "rl", "tb", "inherit"}},

  { 46, "amplitude",                   "1",                 NUMBER,        2, ATTR,                   0},
  { 47, "ascent",                      nullptr,             NUMBER,        2, ATTR,                   0},
  { 48, "baseFrequency",               "0",                 NUM_OPTNUM,    2, ATTR,                   0},
  { 49, "cap-height",                  nullptr,             NUMBER,        2, ATTR,                   0},
  { 50, "class",                       nullptr,             CLASS,         2, NONUM,                  0},
  { 51, "clipPathUnits",               "userSpaceOnUse",    KEYWORD,       2, ATTR | NONUM,           0,
        {"objectBoundingBox", "userSpaceOnUse"}},
  { 52, "cx",                          "0",                 UNUM,          2, ATTR | HORZ,            0},
  { 53, "cx",                          nullptr,             UNUM,          2, ATTR | HORZ,            0},
  { 54, "cy",                          "0",                 UNUM,          2, ATTR | VERT,            0},
  { 55, "cy",                          nullptr,             UNUM,          2, ATTR | VERT,            0},
  { 56, "d",                           nullptr,             PATH_DATA,     2, ATTR,                   0},
  { 57, "descent",                     nullptr,             NUMBER,        2, ATTR,                   0},
  { 58, "dx",                          nullptr,             UNUM_PLUS,     2, ATTR | HORZ,            0},
  { 59, "dy",                          nullptr,             UNUM_PLUS,     2, ATTR | VERT,            0},
  { 60, "fill",                        "remove",            KEYWORD,       2, ATTR | NONUM,           0, {"freeze", "remove"}},
  { 61, "font-family",                 nullptr,             FONT_FAMILY,   2, ATTR | NONUM,           0,
        {"cursive", "fantasy", "monospace", "sans-serif", "serif"}},
  { 62, "font-size",                   "all",               KEY_UNUM_LIST, 2, ATTR,                   0, {"all"}},
  { 63, "font-stretch",                "all",               KEY_LIST,      2, ATTR | NONUM,           0,
        {"all", "condensed", "expanded", "extra-condensed", "extra-expanded", "normal", "semi-condensed",
         "semi-expanded", "ultra-condensed", "ultra-expanded"}},
  { 64, "font-style",                  "all",               KEY_LIST,      2, ATTR | NONUM,           0,
        {"all", "italic", "normal", "oblique"}},
  { 65, "font-variant",                "normal",            KEY_LIST,      2, ATTR | NONUM,           0, {"normal", "small-caps"}},
  { 66, "font-weight",                 "all",               KEY_LIST,      2, ATTR | NONUM,           0,
        {"all", "bold", "normal", "100", "200", "300", "400", "500", "600", "700", "800", "900"}},
  { 67, "fx",                          nullptr,             UNUM,          2, ATTR | HORZ,            0},
  { 68, "fy",                          nullptr,             UNUM,          2, ATTR | VERT,            0},
  { 69, "g1",                          nullptr,             NAME_LIST,     2, ATTR | NONUM,           0},
  { 70, "g2",                          nullptr,             NAME_LIST,     2, ATTR | NONUM,           0},
  { 71, "glyph-name",                  nullptr,             STRING,        2, ATTR | NONUM,           0},
  { 72, "gradientTransform",           nullptr,             TRAFO,         2, ATTR | NONUM,           0,
        {"matrix", "rotate", "scale", "skewX", "skewY", "translate"}},
  { 73, "gradientUnits",               nullptr,             KEYWORD,       2, ATTR | NONUM,           0,
        {"objectBoundingBox", "userSpaceOnUse"}},
  { 74, "height",                      nullptr,             UNUM,          2, ATTR | POSITIVE,        0},
  { 75, "height",                      "100%",              UNUM,          2, ATTR,                   0},
  { 76, "height",                      "120%",              UNUM,          2, ATTR,                   0},
  { 77, "horiz-adv-x",                 nullptr,             NUMBER,        2, ATTR | HORZ,            0},
  { 78, "horiz-adv-x",                 nullptr,             NUMBER,        2, ATTR | HORZ,            0},
  { 79, "horiz-origin-x",              "0",                 NUMBER,        2, ATTR | HORZ,            0},
  { 80, "horiz-origin-y",              "0",                 NUMBER,        2, ATTR | VERT,            0},
  { 81, "id",                          nullptr,             ID,            2, NONUM,                  0},
  { 82, "k",                           nullptr,             NUMBER,        2, ATTR | POSITIVE,        0},
  { 83, "lengthAdjust",                "spacing",           KEYWORD,       2, ATTR | NONUM,           0, {"spacing", "spacingAndGlyphs"}},
  { 84, "markerHeight",                "3",                 UNUM,          2, ATTR | VERT,            0},
  { 85, "markerUnits",                 "strokeWidth",       KEYWORD,       2, ATTR | NONUM,           0, {"strokeWidth", "userSpaceOnUse"}},
  { 86, "markerWidth",                 "3",                 UNUM,          2, ATTR,                   0},
  { 87, "maskContentUnits",            "userSpaceOnUse",    KEYWORD,       2, ATTR | NONUM,           0,
        {"objectBoundingBox", "userSpaceOnUse"}},
  { 88, "maskUnits",                   "objectBoundingBox", KEYWORD,       2, ATTR | NONUM,           0,
        {"objectBoundingBox", "userSpaceOnUse"}},
  { 89, "name",                        nullptr,             NAME,          2, NONUM,                  0},
  { 90, "offset",                      nullptr,             UNUM,          2, ATTR,                   0},
  { 91, "orient",                      "0",                 KEY_UNUM,      2, ATTR,                   0, {"auto"}},
  { 92, "patternContentUnits",         nullptr,             KEYWORD,       2, ATTR | NONUM,           0,
        {"objectBoundingBox", "userSpaceOnUse"}},
  { 93, "patternTransform",            nullptr,             TRAFO,         2, ATTR | NONUM,           0,
        {"matrix", "rotate", "scale", "skewX", "skewY", "translate"}},
  { 94, "patternUnits",                nullptr,             KEYWORD,       2, ATTR | NONUM,           0,
        {"objectBoundingBox", "userSpaceOnUse"}},
  { 95, "points",                      nullptr,             UNUM_LIST,     2, ATTR | POSITIVE,        0},
  { 96, "preserveAspectRatio",         nullptr,             ASPECT,        2, ATTR | NONUM,           0,
        {"defer", "meet", "none", "slice", "xMaxYMax", "xMaxYMid", "xMaxYMin", "xMidYMax", "xMidYMid", "xMidYMin",
         "xMinYMax", "xMinYMid", "xMinYMin"}},
  { 97, "r",                           nullptr,             UNUM,          2, ATTR | POSITIVE,        0},
  { 98, "r",                           nullptr,             UNUM,          2, ATTR,                   0},
  { 99, "refX",                        "0",                 UNUM,          2, ATTR | HORZ,            0},
  {100, "refY",                        "0",                 UNUM,          2, ATTR | VERT,            0},
  {101, "rotate",                      nullptr,             UNUM_PLUS,     2, ATTR,                   0},
  {102, "rx",                          nullptr,             UNUM,          2, ATTR | POSITIVE | HORZ, 0},
  {103, "rx",                          nullptr,             UNUM,          2, ATTR | HORZ,            0},
  {104, "ry",                          nullptr,             UNUM,          2, ATTR | POSITIVE | VERT, 0},
  {105, "ry",                          nullptr,             UNUM,          2, ATTR | VERT,            0},
  {106, "slope",                       "0",                 NUMBER,        2, ATTR,                   0},
  {107, "spreadMethod",                nullptr,             KEYWORD,       2, ATTR | NONUM,           0, {"pad", "reflect", "repeat"}},
  {108, "startOffset",                 "0",                 UNUM,          2, ATTR,                   0},
  {109, "style",                       nullptr,             STYLE,         2, 0,                      0},
  {110, "systemLanguage",              nullptr,             NAME_LIST,     2, ATTR | NONUM,           0},
  {111, "textLength",                  nullptr,             UNUM,          2, ATTR | HORZ,            0},
  {112, "transform",                   nullptr,             TRAFO,         2, PROP | ATTR | NONUM,    3,
        {"matrix", "rotate", "scale", "skewX", "skewY", "translate"}},
  {113, "type",                        nullptr,             KEYWORD,       2, ATTR | NONUM,           0,
        {"discrete", "gamma", "identity", "linear", "table"}},
  {114, "u1",                          nullptr,             NAME_LIST,     2, ATTR | NONUM,           0},
  {115, "u2",                          nullptr,             NAME_LIST,     2, ATTR | NONUM,           0},
  {116, "underline-position",          nullptr,             NUMBER,        2, ATTR,                   0},
  {117, "underline-thickness",         nullptr,             NUMBER,        2, ATTR,                   0},
  {118, "unicode",                     nullptr,             STRING,        2, ATTR | KEEPSPACE | NONUM, 0},
  {119, "units-per-em",                "1000",              NUMBER,        2, ATTR,                   0},
  {120, "viewBox",                     nullptr,             VIEWBOX,       2, ATTR,                   0},
  {121, "width",                       nullptr,             UNUM,          2, ATTR | POSITIVE | HORZ, 0},
  {122, "width",                       "100%",              UNUM,          2, ATTR,                   0},
  {123, "width",                       "120%",              UNUM,          2, ATTR | HORZ,            0},
  {124, "x",                           nullptr,             UNUM,          2, ATTR | HORZ,            0},
  {125, "x",                           "0",                 UNUM_PLUS,     2, ATTR | HORZ,            0},
  {126, "x",                           "-10%",              UNUM,          2, ATTR | HORZ,            0},
  {127, "x",                           nullptr,             UNUM_PLUS,     2, ATTR | HORZ,            0},
  {128, "x-height",                    nullptr,             NUMBER,        2, ATTR,                   0},
  {129, "x1",                          "0",                 UNUM,          2, ATTR | HORZ,            0},
  {130, "x1",                          nullptr,             UNUM,          2, ATTR | HORZ,            0},
  {131, "x2",                          "0",                 UNUM,          2, ATTR | HORZ,            0},
  {132, "x2",                          nullptr,             UNUM,          2, ATTR | HORZ,            0},
  {133, "xlink:href",                  nullptr,             IRI,           2, ATTR | NONUM,           0, {"url"}},
  {134, "xlink:title",                 nullptr,             STRING,        2, ATTR | NONUM,           0},
  {135, "xml:base",                    nullptr,             STRING,        2, PROP | NONUM,           0},
  {136, "xml:id",                      nullptr,             ID,            2, NONUM,                  0},
  {137, "xml:space",                   nullptr,             KEYWORD,       2, PROP | NONUM,           3, {"default", "preserve"}},
  {138, "y",                           nullptr,             UNUM,          2, ATTR | VERT,            0},
  {139, "y",                           "0",                 UNUM_PLUS,     2, ATTR | VERT,            0},
  {140, "y",                           "-10%",              UNUM,          2, ATTR | VERT,            0},
  {141, "y",                           nullptr,             UNUM_PLUS,     2, ATTR | VERT,            0},
  {142, "y1",                          "0",                 UNUM,          2, ATTR | VERT,            0},
  {143, "y1",                          nullptr,             UNUM,          2, ATTR | VERT,            0},
  {144, "y2",                          "0",                 UNUM,          2, ATTR | VERT,            0},
  {145, "y2",                          nullptr,             UNUM,          2, ATTR | VERT,            0},
  {146, "yChannelSelector",            "A",                 KEYWORD,       2, ATTR | NONUM,           0, {"A", "B", "G", "R"}},
};
#undef PROPERTY
// clang-format on

// An attribute of this name, no property: font-face has attributes that are named like properties.
constexpr bool is_attribute(const attribute &row, const char *name) {
  return same(row.name, name) && !IS_PROPERTY[static_cast<size_t>(row.row)];
}

} // namespace svg_tables

#endif
