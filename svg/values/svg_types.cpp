// svg_types.cpp: the table of attributes and properties, joined with the functions of their types.
//
// svg_parse_attr makes values by it, svg_a_node_delete frees them by it, and hosts read names,
// defaults and keywords in it. Making one raises for lack of memory.
#include "svg/values/svg_types.h"

#include "svg/parser/svg_parser.h"

#include "core/ort_core.h"
#include "svg/svg.h"
#include "svg/tables/schema.h"

using namespace svg_tables;

// A type stands at its number.
static_assert([] {
  for (int type = 0; type < TYPE_COUNT; ++type)
    if (SVG_TYPES[type].type != type) return false;
  return true;
}());

static constexpr attribute_table TABLE = [] {
  attribute_table table = ATTRIBUTE_TABLE;
  for (int row = 0; row < SVG_ATTR_COUNT; ++row) {
    const svg_type &type = SVG_TYPES[ATTRIBUTES[row].type];
    table.rows[row].value_size = type.size;
    table.rows[row].anew = type.anew;
    table.rows[row].ctor = type.ctor;
    table.rows[row].dtor = type.dtor;
  }
  return table;
}();

static constexpr auto KINDS = [] {
  std::array<uint8_t, SVG_ATTR_COUNT> kinds = {};
  for (size_t row = 0; row < kinds.size(); ++row)
    kinds[row] = static_cast<uint8_t>(SVG_TYPES[ATTRIBUTES[row].type].kind);
  return kinds;
}();

constinit const svg_attr_def (&svg_attr_table)[SVG_ATTR_COUNT] = TABLE.rows;

const svg_attr_def *svg_get_attr_table() { return svg_attr_table; }

svg_record_kind svg_get_record_kind(int32_t row) {
  return row >= 0 && row < SVG_ATTR_COUNT
             ? static_cast<svg_record_kind>(KINDS[static_cast<size_t>(row)])
             : SVG_RECORD_NONE;
}

svg_a_node *svg_a_node_new(svg_parser *p, size_t size) {
  return static_cast<svg_a_node *>(ort_arena_take(p->core, &p->kept, size, "svg_a_node_new"));
}

bool svg_a_node_owns(const svg_a_node *value) {
  if (!svg_attr_table[value->row].dtor) return false;
  return svg_get_record_kind(value->row) != SVG_RECORD_PAINT || value->kind == SVG_PAINT_IRI ||
         value->kind == SVG_PAINT_COLOR;
}

void svg_a_node_delete(ort_core *core, svg_a_node *value) {
  if (!value) return;
  if (auto *dtor = svg_attr_table[value->row].dtor) dtor(core, value);
}
