// scene_servers.cpp: gathers what gradients and patterns take from those that they refer to. Called
// for paints (scene_paint.cpp).
#include <algorithm>

#include "scene/scene_servers.h"
#include "scene/scene_walk.h"

static svg_scene_server *find_record(svg_scene *scene, const svg_e_node *element);
static svg_scene_server **find_slot(const svg_scene_server_table &table, const svg_e_node *element);
static void grow(svg_scene *scene);
static void gather_own(svg_scene_server *server);
static void inherit(svg_scene_server *server, const svg_scene_server &base);
static const svg_scene_stop *compute_stops(svg_scene *scene, const svg_e_node *element,
                                           size_t *count);
static bool depends_on_parent(const svg_e_node *stop);

// The attribute that each place of a server's values is for, by its kind; 0 for none.
enum { LINEAR, RADIAL, PATTERN };
constexpr int16_t ROWS[][SVG_SCENE_SERVER_VALUES] = {
    {SVG_ATTR_gradient_x1, SVG_ATTR_gradient_y1, SVG_ATTR_gradient_x2, SVG_ATTR_gradient_y2, 0,
     SVG_ATTR_gradientUnits, SVG_ATTR_gradientTransform, SVG_ATTR_spreadMethod, 0, 0, 0},
    {SVG_ATTR_gradient_cx, SVG_ATTR_gradient_cy, SVG_ATTR_gradient_r, SVG_ATTR_fx, SVG_ATTR_fy,
     SVG_ATTR_gradientUnits, SVG_ATTR_gradientTransform, SVG_ATTR_spreadMethod, 0, 0, 0},
    {SVG_ATTR_x, SVG_ATTR_y, SVG_ATTR_width, SVG_ATTR_height, 0, SVG_ATTR_patternUnits,
     SVG_ATTR_patternTransform, 0, SVG_ATTR_patternContentUnits, SVG_ATTR_viewBox,
     SVG_ATTR_preserveAspectRatio}};

// -1 for other elements.
static int kind_of(const svg_e_node *element) {
  switch (element->head.id) {
  case SVG_ELEM_linearGradient: return LINEAR;
  case SVG_ELEM_radialGradient: return RADIAL;
  case SVG_ELEM_pattern: return PATTERN;
  default: return -1;
  }
}

// ---- Chains -------------------------------------------------------------------------------------

svg_scene_server *svg_scene_find_server(svg_scene *scene, const svg_e_node *element) {
  const int kind = kind_of(element);
  if (kind < 0) return nullptr;
  const uint32_t round = ++scene->servers.round;
  svg_scene_server *last = nullptr, *base = nullptr;
  for (const svg_e_node *next = element; next;) {
    svg_scene_server *server = find_record(scene, next);
    if (server->is_known) {
      base = server;
      break;
    }
    if (server->round == round) {
      svg_scene_warn(scene, SVG_SCENE_CIRCLE, last->element);
      break;
    }
    gather_own(server);
    server->round = round;
    server->from = last;
    last = server;
    next = svg_scene_href_of(next);
    if (next && (kind_of(next) < 0 || (kind_of(next) == PATTERN) != (kind == PATTERN)))
      next = nullptr;
  }
  for (; last; last = last->from) {
    if (base) inherit(last, *base);
    last->is_known = true;
    base = last;
  }
  return base;
}

static svg_scene_server *find_record(svg_scene *scene, const svg_e_node *element) {
  svg_scene_server_table &table = scene->servers;
  if (2 * (table.count + 1) > table.size) grow(scene);
  svg_scene_server **slot = find_slot(table, element);
  if (!*slot) {
    *slot = static_cast<svg_scene_server *>(
        ort_calloc(scene->core, 1, sizeof(svg_scene_server), "svg_scene_find_server"));
    (*slot)->element = element;
    ++table.count;
  }
  return *slot;
}

// The slot of an element, or the free one where it belongs.
static svg_scene_server **find_slot(const svg_scene_server_table &table,
                                    const svg_e_node *element) {
  const uint64_t mixed = (reinterpret_cast<uintptr_t>(element) >> 4) * 0x9E3779B97F4A7C15;
  size_t at = static_cast<size_t>(mixed >> 32) & (table.size - 1);
  while (table.slots[at] && table.slots[at]->element != element) at = (at + 1) & (table.size - 1);
  return &table.slots[at];
}

static void grow(svg_scene *scene) {
  const svg_scene_server_table old = scene->servers;
  svg_scene_server_table wider = old;
  wider.size = old.size == 0 ? 16 : 2 * old.size;
  wider.slots = static_cast<svg_scene_server **>(
      ort_calloc(scene->core, wider.size, sizeof(svg_scene_server *), "svg_scene_find_server"));
  for (size_t i = 0; i < old.size; ++i)
    if (old.slots[i]) *find_slot(wider, old.slots[i]->element) = old.slots[i];
  ort_free(scene->core, old.slots);
  scene->servers = wider;
}

void svg_scene_free_servers(svg_scene *scene) {
  svg_scene_server_table &table = scene->servers;
  for (size_t i = 0; i < table.size; ++i) {
    svg_scene_server *server = table.slots[i];
    if (server && server->content == server->element)
      ort_free(scene->core, const_cast<svg_scene_stop *>(server->stops));
    ort_free(scene->core, server);
  }
  ort_free(scene->core, table.slots);
  table = {};
}

// ---- Attributes ---------------------------------------------------------------------------------

static void gather_own(svg_scene_server *server) {
  const svg_e_node *element = server->element;
  const int kind = kind_of(element);
  const int16_t *rows = ROWS[kind];
  for (int32_t i = 0; i < element->values_num; ++i)
    for (int place = 0; place < SVG_SCENE_SERVER_VALUES; ++place)
      if (rows[place] != 0 && element->values[i]->row == rows[place])
        server->values[place] = element->values[i];
  for (svg_node *child = element->first_child; child && !server->content; child = child->next)
    if (kind == PATTERN ? child->id != SVG_ID_TEXT : child->id == SVG_ELEM_stop)
      server->content = element;
}

// What is geometry comes from the same kind of gradient only.
static void inherit(svg_scene_server *server, const svg_scene_server &base) {
  const bool is_same = kind_of(server->element) == kind_of(base.element);
  for (int place = is_same ? 0 : SVG_SCENE_SERVER_UNITS; place < SVG_SCENE_SERVER_VALUES; ++place)
    if (!server->values[place]) server->values[place] = base.values[place];
  if (!server->content) server->content = base.content;
}

// ---- Stops --------------------------------------------------------------------------------------

void svg_scene_find_stops(svg_scene *scene, svg_scene_server *server) {
  if (server->has_stops) return;
  if (server->content) {
    svg_scene_server *owner = find_record(scene, server->content);
    if (!owner->has_stops) owner->stops = compute_stops(scene, owner->element, &owner->stop_count);
    owner->has_stops = true;
    server->stops = owner->stops;
    server->stop_count = owner->stop_count;
  }
  server->has_stops = true;
}

static const svg_scene_stop *compute_stops(svg_scene *scene, const svg_e_node *element,
                                           size_t *count) {
  size_t room = 0;
  for (svg_node *child = element->first_child; child; child = child->next)
    room += child->id == SVG_ELEM_stop;
  const svg_scene_mark mark = scene->top;
  svg_scene_place place = {};
  auto *stops = svg_scene_take_array<svg_scene_stop>(scene, room);
  size_t number = 0;
  double before = 0;
  for (svg_node *child = element->first_child; child; child = child->next) {
    if (child->id != SVG_ELEM_stop) continue;
    const svg_e_node *stop = svg_as_element(child);
    if (!place.element && depends_on_parent(stop)) {
      svg_scene_count_place(scene, element);
      svg_scene_find_place(scene, element, &place);
    }
    const svg_scene_mark style_mark = scene->top;
    auto *style = svg_scene_take_one<svg_scene_style>(scene);
    const double no_viewport[2] = {0, 0};
    svg_scene_compute_style(scene, stop, place.style, no_viewport, style);
    double offset = 0;
    if (const auto *value = svg_scene_find<svg_an_unum>(stop, SVG_ATTR_offset))
      offset = value->head.unit == SVG_UNIT_PERCENT ? value->value / 100 : value->value;
    before = std::clamp(offset, before, 1.0);
    stops[number++] = {before, style->stop_color.rgb, style->stop_color.color, style->stop_opacity};
    svg_scene_release(scene, style_mark);
  }
  auto *result = static_cast<svg_scene_stop *>(
      ort_malloc(scene->core, number * sizeof(svg_scene_stop), "svg_scene_find_stops"));
  std::copy_n(stops, number, result);
  svg_scene_release(scene, mark);
  *count = number;
  return result;
}

// True when its color can only be known from the elements around it.
static bool depends_on_parent(const svg_e_node *stop) {
  for (int32_t i = 0; i < stop->values_num; ++i) {
    const svg_a_node *value = stop->values[i];
    if ((value->row == SVG_PROP_stop_color || value->row == SVG_PROP_color ||
         value->row == SVG_PROP_stop_opacity) &&
        (svg_is_inherit(value) != 0 ||
         (value->row == SVG_PROP_stop_color && value->kind == SVG_PAINT_CURRENTCOLOR)))
      return true;
  }
  return false;
}
