// schema.cpp: gives the computed tables their public names.
#include "svg/tables/schema.h"

#include "svg/names/svg_schema.h"

constinit const svg_elem_def (&svg_elem_table)[SVG_ELEM_COUNT] = svg_tables::ELEMENT_TABLE.rows;
constinit const svg_attr_def (&svg_attr_table)[SVG_ATTR_COUNT] = svg_tables::ATTRIBUTE_TABLE.rows;
constinit const char *const (&svg_keyword_texts)[SVG_KW_COUNT] = svg_tables::KEYWORDS;
