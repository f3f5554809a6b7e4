// svg_elements.cpp: the table of elements, joined with the hooks of those that have one.
//
// svg_add_e_node and the end tags run hooks by it, and hosts read names and lists of attributes in
// it. Nothing here raises.
#include "svg/tree/svg_elements.h"

#include "svg/svg.h"
#include "svg/tables/schema.h"
#include "svg/tree/svg_hooks.h"

using namespace svg_tables;

static_assert(std::ranges::max(SLOTS.size) <= SVG_HOOK_SLOTS * sizeof(svg_a_node *));

namespace {

struct element_hooks {
  int id;
  void (*begin)(svg_parser *parser, svg_e_node *node);
  void (*end)(svg_parser *parser);
};

} // namespace

// clang-format off
static constexpr element_hooks HOOKS[] = {
    {SVG_ELEM_clipPath,       svg_beg_clipPath,       nullptr},
    {SVG_ELEM_font,           svg_beg_font,           nullptr},
    {SVG_ELEM_font_face,      svg_beg_font_face,      svg_end_font_face},
    {SVG_ELEM_linearGradient, svg_beg_linearGradient, nullptr},
    {SVG_ELEM_mask,           svg_beg_mask,           nullptr},
    {SVG_ELEM_pattern,        svg_beg_pattern,        nullptr},
    {SVG_ELEM_radialGradient, svg_beg_radialGradient, nullptr},
    {SVG_ELEM_svg,            svg_beg_svg,            nullptr},
    {SVG_ELEM_text,           svg_beg_text,           svg_end_text},
    {SVG_ELEM_use,            svg_beg_use,            nullptr},
};
// clang-format on

static constexpr element_table TABLE = [] {
  element_table table = ELEMENT_TABLE;
  for (const element_hooks &hooks : HOOKS) {
    table.rows[hooks.id].beg_hook = hooks.begin;
    table.rows[hooks.id].end_hook = hooks.end;
  }
  return table;
}();

constinit const svg_elem_def (&svg_elem_table)[SVG_ELEM_COUNT] = TABLE.rows;

const svg_elem_def *svg_get_elem_table() { return svg_elem_table; }
