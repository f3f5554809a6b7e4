// scene_values.cpp: attributes of elements and lengths in user units. Nothing here raises.
#include <algorithm>
#include <cmath>

#include "scene/scene.h"

double svg_scene_get_length(const svg_scene *scene, double value, int unit, svg_scene_axis axis,
                            double font_size, const double viewport[2]) {
  const double inch = scene->options.dpi;
  switch (unit) {
  case SVG_UNIT_EM: return value * font_size;
  case SVG_UNIT_EX: return value * font_size / 2; // CSS 2.1, 4.3.2, for a font that is not known
  case SVG_UNIT_IN: return value * inch;
  case SVG_UNIT_CM: return value * inch / 2.54;
  case SVG_UNIT_MM: return value * inch / 25.4;
  case SVG_UNIT_PT: return value * inch / 72;
  case SVG_UNIT_PC: return value * inch / 6;
  case SVG_UNIT_PERCENT:
    return value / 100 *
           (axis == SVG_SCENE_X   ? viewport[0]
            : axis == SVG_SCENE_Y ? viewport[1]
                                  : std::hypot(viewport[0], viewport[1]) / M_SQRT2);
  default: return value;
  }
}

// Of two values, as when an attribute is written with and without prefix, the last one holds.
const svg_a_node *svg_scene_find(const svg_e_node *element, int row) {
  for (int32_t i = element->values_num; i-- > 0;)
    if (element->values[i]->row == row) return element->values[i];
  return nullptr;
}

double svg_scene_length_of(const svg_scene *scene, const svg_scene_place &place, int row,
                           svg_scene_axis axis, double otherwise) {
  const auto *length = svg_scene_find<svg_an_unum>(place.element, row);
  return length ? svg_scene_get_length(scene, length->value, length->head.unit, axis,
                                       place.style->font_size, place.viewport)
                : otherwise;
}

int32_t svg_scene_keyword_of(const svg_e_node *element, int row, int32_t otherwise) {
  const auto *keyword = svg_scene_find<svg_an_keyword>(element, row);
  return keyword ? keyword->key : otherwise;
}

void svg_scene_matrix_of(const svg_e_node *element, int row, double matrix[6]) {
  const double identity[6] = {1, 0, 0, 1, 0, 0};
  if (const auto *transform = svg_scene_find<svg_an_trafo>(element, row))
    svg_get_matrix(transform, matrix);
  else
    std::copy_n(identity, 6, matrix);
}

svg_scene_aspect svg_scene_aspect_of(const svg_e_node *element) {
  const auto *aspect = svg_scene_find<svg_an_aspect>(element, SVG_ATTR_preserveAspectRatio);
  if (!aspect) return {SVG_KW_xMidYMid, 1};
  return {aspect->align, aspect->meet};
}

const svg_e_node *svg_scene_href_of(const svg_e_node *element) {
  const auto *href = svg_scene_find<svg_an_iri>(element, SVG_ATTR_xlink_href);
  return href && href->iri.kind == SVG_IRI_LINK ? href->iri.ref.target : nullptr;
}

const svg_iri *svg_scene_link_of(const svg_e_node *element) {
  if (element->head.id != SVG_ELEM_a) return nullptr;
  const auto *href = svg_scene_find<svg_an_iri>(element, SVG_ATTR_xlink_href);
  return href ? &href->iri : nullptr;
}
