// scene_paint.cpp: paints, clip paths and masks on what they are applied to. Called by the walk.
//
// A gradient or pattern that cannot be painted leaves its paint to the fallback color; one that
// paints nothing by the standard is no paint at all.
#include <algorithm>

#include "scene/scene_geometry.h"
#include "scene/scene_paint.h"
#include "scene/scene_servers.h"
#include "scene/scene_walk.h"

namespace {

// What the lengths of an element that is referred to are relative to: those of a box are parts of
// it.
struct frame {
  const svg_e_node *element;
  const double *viewport;
};

constexpr double UNIT_VIEWPORT[2] = {1, 1};
constexpr svg_unum HALF = {50, SVG_UNIT_PERCENT};
constexpr svg_unum WHOLE = {100, SVG_UNIT_PERCENT};
constexpr svg_unum ZERO = {0, SVG_UNIT_PERCENT};

} // namespace

static void set_color(svg_scene_paint *paint, uint32_t rgb, const svg_color *color);
static bool resolve_gradient(svg_scene *scene, svg_scene_server *server, const double viewport[2],
                             const double *box, svg_scene_paint *paint);
static bool place_vector(svg_scene *scene, const svg_scene_server *server, const frame &of,
                         svg_scene_gradient *gradient, bool *is_point);
static void move_focus(svg_scene_gradient *gradient);
static bool resolve_pattern(svg_scene *scene, const svg_scene_server *server,
                            const double viewport[2], const double *box, svg_scene_paint *paint);
static bool is_clipped(const svg_e_node *pattern);
static int32_t keyword_of(const svg_scene_server *server, int place, int32_t otherwise);
static double length_of(svg_scene *scene, const frame &of, const svg_a_node *value,
                        svg_unum otherwise, svg_scene_axis axis);
static bool get_units(bool of_box, const double *box, double matrix[6]);

// ---- Paints -------------------------------------------------------------------------------------

bool svg_scene_needs_box(svg_scene *scene, const svg_e_node *element) {
  if (!element) return false;
  const auto is_of_box = [element](int row, int32_t otherwise) {
    return svg_scene_keyword_of(element, row, otherwise) == SVG_KW_objectBoundingBox;
  };
  if (element->head.id == SVG_ELEM_clipPath)
    return is_of_box(SVG_ATTR_clipPathUnits, SVG_KW_userSpaceOnUse);
  if (element->head.id == SVG_ELEM_mask)
    return is_of_box(SVG_ATTR_maskUnits, SVG_KW_objectBoundingBox) ||
           is_of_box(SVG_ATTR_maskContentUnits, SVG_KW_userSpaceOnUse);
  const svg_scene_server *server = svg_scene_find_server(scene, element);
  return server &&
         (keyword_of(server, SVG_SCENE_SERVER_UNITS, SVG_KW_objectBoundingBox) ==
              SVG_KW_objectBoundingBox ||
          keyword_of(server, SVG_SCENE_SERVER_CONTENT_UNITS, 0) == SVG_KW_objectBoundingBox);
}

void svg_scene_resolve_paint(svg_scene *scene, const svg_scene_paint_value &value, double opacity,
                             const double viewport[2], const double *box, svg_scene_paint *paint) {
  *paint = {};
  paint->opacity = opacity;
  if (value.kind == SVG_PAINT_RGB || value.kind == SVG_PAINT_COLOR) {
    set_color(paint, value.rgb, value.color);
  } else if (value.kind == SVG_PAINT_IRI) {
    const svg_iri &iri = *value.iri;
    const svg_e_node *target = iri.kind == SVG_IRI_LINK ? iri.ref.target : nullptr;
    svg_scene_server *server = target ? svg_scene_find_server(scene, target) : nullptr;
    const bool is_pattern = server && target->head.id == SVG_ELEM_pattern;
    const bool is_resolved = is_pattern
                                 ? resolve_pattern(scene, server, viewport, box, paint)
                                 : server && resolve_gradient(scene, server, viewport, box, paint);
    if (!is_resolved && iri.fallback >= 0)
      set_color(paint, static_cast<uint32_t>(iri.fallback), nullptr);
  }
}

static void set_color(svg_scene_paint *paint, uint32_t rgb, const svg_color *color) {
  paint->kind = SVG_SCENE_PAINT_COLOR;
  paint->rgb = rgb;
  paint->color = color;
}

// ---- Gradients ----------------------------------------------------------------------------------

// False when it cannot be painted. One without stops is no paint, with one stop, or with a vector
// or circle that is a point, the color of the last stop (SVG 1.1, 13.2.2 to 13.2.4).
static bool resolve_gradient(svg_scene *scene, svg_scene_server *server, const double viewport[2],
                             const double *box, svg_scene_paint *paint) {
  const bool of_box = keyword_of(server, SVG_SCENE_SERVER_UNITS, SVG_KW_objectBoundingBox) ==
                      SVG_KW_objectBoundingBox;
  double units[6];
  if (!get_units(of_box, box, units)) return false;
  svg_scene_find_stops(scene, server);
  if (server->stop_count == 0) return true;

  auto *gradient = svg_scene_take_one<svg_scene_gradient>(scene);
  gradient->element = server->element;
  gradient->stops = server->stops;
  gradient->stop_count = server->stop_count;
  gradient->of_box = of_box && box == SVG_SCENE_UNIT_BOX;
  gradient->spread = keyword_of(server, SVG_SCENE_SERVER_SPREAD, SVG_KW_pad);
  std::copy_n(units, 6, gradient->matrix);
  if (const svg_a_node *transform = server->values[SVG_SCENE_SERVER_TRANSFORM]) {
    double matrix[6];
    svg_get_matrix(reinterpret_cast<const svg_an_trafo *>(transform), matrix);
    svg_scene_multiply(gradient->matrix, units, matrix);
  }
  double inverse[6];
  if (!svg_scene_invert(inverse, gradient->matrix)) return false;

  bool is_point = false;
  const frame of = {server->element, of_box ? UNIT_VIEWPORT : viewport};
  if (!place_vector(scene, server, of, gradient, &is_point)) return false;
  if (is_point || server->stop_count == 1) {
    const svg_scene_stop &last = server->stops[server->stop_count - 1];
    set_color(paint, last.rgb, last.color);
    paint->opacity *= last.opacity;
    return true;
  }
  paint->kind = SVG_SCENE_PAINT_GRADIENT;
  paint->gradient = gradient;
  return true;
}

// False for a negative radius and for numbers that overflow.
static bool place_vector(svg_scene *scene, const svg_scene_server *server, const frame &of,
                         svg_scene_gradient *gradient, bool *is_point) {
  const auto length = [&](int place, svg_unum otherwise, svg_scene_axis axis) {
    return length_of(scene, of, server->values[place], otherwise, axis);
  };
  svg_scene_gradient &g = *gradient;
  if (server->element->head.id == SVG_ELEM_linearGradient) {
    g.x1 = length(SVG_SCENE_SERVER_X1, ZERO, SVG_SCENE_X);
    g.y1 = length(SVG_SCENE_SERVER_X1 + 1, ZERO, SVG_SCENE_Y);
    g.x2 = length(SVG_SCENE_SERVER_X1 + 2, WHOLE, SVG_SCENE_X);
    g.y2 = length(SVG_SCENE_SERVER_X1 + 3, ZERO, SVG_SCENE_Y);
    *is_point = g.x1 == g.x2 && g.y1 == g.y2;
    const double numbers[] = {g.x1, g.y1, g.x2, g.y2};
    return svg_scene_are_finite(numbers, 4);
  }
  g.radial = 1;
  g.cx = length(SVG_SCENE_SERVER_CX, HALF, SVG_SCENE_X);
  g.cy = length(SVG_SCENE_SERVER_CX + 1, HALF, SVG_SCENE_Y);
  g.r = length(SVG_SCENE_SERVER_CX + 2, HALF, SVG_SCENE_OTHER);
  const svg_a_node *fx = server->values[SVG_SCENE_SERVER_CX + 3];
  const svg_a_node *fy = server->values[SVG_SCENE_SERVER_CX + 4];
  g.fx = fx ? length_of(scene, of, fx, ZERO, SVG_SCENE_X) : g.cx;
  g.fy = fy ? length_of(scene, of, fy, ZERO, SVG_SCENE_Y) : g.cy;
  *is_point = g.r == 0;
  move_focus(gradient);
  const double numbers[] = {g.cx, g.cy, g.r, g.fx, g.fy};
  return g.r >= 0 && svg_scene_are_finite(numbers, 5);
}

// A focal point outside of the circle moves onto it, towards the center (SVG 1.1, 13.2.3).
static void move_focus(svg_scene_gradient *gradient) {
  svg_scene_gradient &g = *gradient;
  const double x = g.fx - g.cx, y = g.fy - g.cy, distance = std::hypot(x, y);
  if (!(distance > g.r)) return;
  g.fx = g.cx + x / distance * g.r;
  g.fy = g.cy + y / distance * g.r;
}

// ---- Patterns -----------------------------------------------------------------------------------

// False when it cannot be painted. One without size or content is no paint (SVG 1.1, 13.3).
static bool resolve_pattern(svg_scene *scene, const svg_scene_server *server,
                            const double viewport[2], const double *box, svg_scene_paint *paint) {
  const auto is_of_box = [server](int place, int32_t otherwise) {
    return keyword_of(server, place, otherwise) == SVG_KW_objectBoundingBox;
  };
  const bool of_box = is_of_box(SVG_SCENE_SERVER_UNITS, SVG_KW_objectBoundingBox);
  const auto *view =
      reinterpret_cast<const svg_an_viewbox *>(server->values[SVG_SCENE_SERVER_VIEWBOX]);
  const bool content_of_box =
      !view && is_of_box(SVG_SCENE_SERVER_CONTENT_UNITS, SVG_KW_userSpaceOnUse);
  double units[6];
  if (!get_units(of_box || content_of_box, box, units)) return false;

  auto *pattern = svg_scene_take_one<svg_scene_pattern>(scene);
  const frame of = {server->element, of_box ? UNIT_VIEWPORT : viewport};
  for (int i = 0; i < 4; ++i)
    pattern->tile[i] = length_of(scene, of, server->values[SVG_SCENE_SERVER_X + i], ZERO,
                                 i % 2 == 0 ? SVG_SCENE_X : SVG_SCENE_Y);
  if (of_box)
    for (int i = 0; i < 4; ++i)
      pattern->tile[i] = pattern->tile[i] * box[2 + i % 2] + (i < 2 ? box[i] : 0);
  if (!svg_scene_are_finite(pattern->tile, 4)) return false;
  if (!(pattern->tile[2] > 0 && pattern->tile[3] > 0) || !server->content) return true;

  std::copy_n(SVG_SCENE_IDENTITY, 6, pattern->matrix);
  if (const svg_a_node *transform = server->values[SVG_SCENE_SERVER_TRANSFORM])
    svg_get_matrix(reinterpret_cast<const svg_an_trafo *>(transform), pattern->matrix);
  pattern->of_box = of_box && box == SVG_SCENE_UNIT_BOX;
  pattern->content_of_box = (content_of_box || (view && of_box)) && box == SVG_SCENE_UNIT_BOX;
  std::copy_n(content_of_box ? units : SVG_SCENE_IDENTITY, 6, pattern->content_matrix);
  // The content's origin is the tile's, where both are known in the same space.
  if (pattern->of_box == pattern->content_of_box)
    std::copy_n(pattern->tile, 2, pattern->content_matrix + 4);
  if (view) {
    const auto *aspect =
        reinterpret_cast<const svg_an_aspect *>(server->values[SVG_SCENE_SERVER_ASPECT]);
    const double from[4] = {view->min_x, view->min_y, view->width, view->height};
    if (!svg_scene_fit(pattern->content_matrix, from, pattern->tile,
                       aspect ? aspect->align : SVG_KW_xMidYMid, aspect ? aspect->meet : 1))
      return true;
  }
  double inverse[6];
  if (!svg_scene_invert(inverse, pattern->matrix)) return false;
  pattern->element = server->element;
  pattern->content = server->content;
  pattern->clipped = is_clipped(server->element);
  paint->kind = SVG_SCENE_PAINT_PATTERN;
  paint->pattern = pattern;
  return true;
}

// Unless overflow says otherwise (SVG 1.1, 14.3.3).
static bool is_clipped(const svg_e_node *pattern) {
  const svg_a_node *overflow = svg_find_value(pattern, "overflow");
  const int32_t key = overflow ? reinterpret_cast<const svg_an_keyword *>(overflow)->key : 0;
  return key != SVG_KW_visible && key != SVG_KW_auto;
}

// ---- Clip paths and masks -----------------------------------------------------------------------

const svg_scene_clip *svg_scene_resolve_clip(svg_scene *scene, const svg_e_node *element,
                                             const double *box) {
  double units[6], transform[6];
  const bool of_box = svg_scene_needs_box(scene, element);
  if (!get_units(of_box, box, units)) return nullptr;
  svg_scene_matrix_of(element, SVG_ATTR_transform, transform);
  auto *clip = svg_scene_take_one<svg_scene_clip>(scene);
  clip->element = element;
  clip->of_box = of_box && box == SVG_SCENE_UNIT_BOX;
  svg_scene_multiply(clip->matrix, units, transform);
  return svg_scene_are_finite(clip->matrix, 6) ? clip : nullptr;
}

const svg_scene_mask *svg_scene_resolve_mask(svg_scene *scene, const svg_e_node *element,
                                             const double viewport[2], const double *box) {
  static constexpr int rows[4] = {SVG_ATTR_mask_x, SVG_ATTR_mask_y, SVG_ATTR_mask_width,
                                  SVG_ATTR_mask_height};
  static constexpr double parts[4] = {-10, -10, 120, 120};
  const auto is_of_box = [element](int row, int32_t otherwise) {
    return svg_scene_keyword_of(element, row, otherwise) == SVG_KW_objectBoundingBox;
  };
  const bool of_box = is_of_box(SVG_ATTR_maskUnits, SVG_KW_objectBoundingBox);
  const bool content_of_box = is_of_box(SVG_ATTR_maskContentUnits, SVG_KW_userSpaceOnUse);
  double units[6];
  if (!get_units(of_box || content_of_box, box, units)) return nullptr;
  auto *mask = svg_scene_take_one<svg_scene_mask>(scene);
  const frame of = {element, of_box ? UNIT_VIEWPORT : viewport};
  for (int i = 0; i < 4; ++i) {
    mask->area[i] = length_of(scene, of, svg_scene_find(element, rows[i]),
                              {parts[i], SVG_UNIT_PERCENT}, i % 2 == 0 ? SVG_SCENE_X : SVG_SCENE_Y);
    if (of_box) mask->area[i] = mask->area[i] * box[2 + i % 2] + (i < 2 ? box[i] : 0);
    if (i >= 2) mask->area[i] = std::max(mask->area[i], 0.0);
  }
  mask->element = element;
  mask->of_box = of_box && box == SVG_SCENE_UNIT_BOX;
  mask->content_of_box = content_of_box && box == SVG_SCENE_UNIT_BOX;
  std::copy_n(content_of_box ? units : SVG_SCENE_IDENTITY, 6, mask->matrix);
  return svg_scene_are_finite(mask->area, 4) ? mask : nullptr;
}

// ---- Values -------------------------------------------------------------------------------------

static int32_t keyword_of(const svg_scene_server *server, int place, int32_t otherwise) {
  const auto *keyword = reinterpret_cast<const svg_an_keyword *>(server->values[place]);
  return keyword ? keyword->key : otherwise;
}

// The font-size is that of the element that is referred to, which is looked up only where it
// counts.
static double length_of(svg_scene *scene, const frame &of, const svg_a_node *value,
                        svg_unum otherwise, svg_scene_axis axis) {
  const auto *given = reinterpret_cast<const svg_an_unum *>(value);
  const svg_unum length = given ? svg_unum{given->value, given->head.unit} : otherwise;
  double font_size = 0;
  if (length.unit == SVG_UNIT_EM || length.unit == SVG_UNIT_EX) {
    const svg_scene_mark mark = scene->top;
    svg_scene_place place;
    svg_scene_count_place(scene, of.element);
    svg_scene_find_place(scene, of.element, &place);
    font_size = place.style->font_size;
    svg_scene_release(scene, mark);
  }
  return svg_scene_get_length(scene, length.value, length.unit, axis, font_size, of.viewport);
}

// From the unit square to a box, when units are of a box. False for one that is absent or flat
// (SVG 1.1, 7.11).
static bool get_units(bool of_box, const double *box, double matrix[6]) {
  std::copy_n(SVG_SCENE_IDENTITY, 6, matrix);
  if (!of_box) return true;
  if (!box || !(box[2] > 0 && box[3] > 0)) return false;
  matrix[0] = box[2];
  matrix[3] = box[3];
  std::copy_n(box, 2, matrix + 4);
  return true;
}
