// scene.cpp: see scene.h. The library's callbacks become calls with one kind of record.
#include "tools/scene.h"

namespace {

// A walk in progress, the argument of its callbacks.
struct Walk {
  const Scene::Begin &begin;
  const std::function<void()> &end;
  int depth = 0;
};

} // namespace

static void begin_group(void *user, const svg_scene_group *group);
static void end_group(void *user, const svg_scene_group *group);
static void show_shape(void *user, const svg_scene_shape *shape);
static void show_image(void *user, const svg_scene_image *image);
static void show_run(void *user, const svg_scene_run *run);
static std::optional<Box> box_of_outline(const svg_scene_shape &shape);
static std::optional<Box> box_of_area(const svg_scene_image &image);
static std::optional<Point> origin_of(const svg_scene_run &run);

const svg_e_node *server_of(const svg_scene_paint &paint) {
  switch (paint.kind) {
  case SVG_SCENE_PAINT_GRADIENT: return paint.gradient->element;
  case SVG_SCENE_PAINT_PATTERN: return paint.pattern->element;
  default: return nullptr;
  }
}

Scene::Scene(const Drawing &drawing, const svg_scene_options &options) : drawing_(drawing) {
  ::protect(drawing.core(),
            [&] { scene_ = svg_scene_new(drawing.parser(), drawing.svg(), &options); });
}

bool Scene::list(const svg_e_node *element, const Begin &begin,
                 const std::function<void()> &end) const {
  static constexpr svg_scene_callbacks callbacks = {begin_group, end_group, show_shape,
                                                    show_image,  show_run,  nullptr};
  Walk walk = {begin, end};
  const bool ok = protect([&] { svg_scene_paint_element(scene_, element, &callbacks, &walk); });
  while (walk.depth > 0) end_group(&walk, nullptr);
  return ok;
}

bool Scene::measure(const svg_e_node *element, const svg_e_node *ancestor, bool stroked,
                    std::optional<Box> &box) const {
  Box found;
  bool is_shown = false;
  const auto body = [&] {
    is_shown = svg_scene_get_box(scene_, element, ancestor, stroked, found.data()) != 0;
  };
  if (!protect(body)) return false;
  box = is_shown ? std::optional(found) : std::nullopt;
  return true;
}

Point Scene::size() const {
  Point size = {};
  if (scene_) svg_scene_get_size(scene_, &size[0], &size[1]);
  return size;
}

static Walk &walk_of(void *user) { return *static_cast<Walk *>(user); }

static void begin_group(void *user, const svg_scene_group *group) {
  Walk &walk = walk_of(user);
  walk.begin({.item = &group->item, .depth = walk.depth, .group = group});
  ++walk.depth;
}

static void end_group(void *user, const svg_scene_group *) {
  Walk &walk = walk_of(user);
  --walk.depth;
  walk.end();
}

static void show_shape(void *user, const svg_scene_shape *shape) {
  Walk &walk = walk_of(user);
  walk.begin({.item = &shape->item,
              .depth = walk.depth,
              .box = box_of_outline(*shape),
              .shape = shape,
              .fill = &shape->fill,
              .stroke = &shape->stroke});
}

static void show_image(void *user, const svg_scene_image *image) {
  Walk &walk = walk_of(user);
  walk.begin(
      {.item = &image->item, .depth = walk.depth, .box = box_of_area(*image), .image = image});
}

static void show_run(void *user, const svg_scene_run *run) {
  Walk &walk = walk_of(user);
  walk.begin({.item = &run->item,
              .depth = walk.depth,
              .origin = origin_of(*run),
              .run = run,
              .fill = &run->fill,
              .stroke = &run->stroke});
}

static std::optional<Box> box_of_outline(const svg_scene_shape &shape) {
  Box box;
  if (svg_scene_get_shape_box(&shape, shape.item.ctm, 0, box.data()) == 0) return {};
  return box;
}

static std::optional<Box> box_of_area(const svg_scene_image &image) {
  const auto &[x, y, width, height] = image.area;
  double corners[] = {x, y, x + width, y, x + width, y + height, x, y + height};
  const svg_pada runs[] = {{SVG_PADA_MOVETO, 1, corners}, {SVG_PADA_LINETO, 3, corners + 2}};
  svg_scene_shape rectangle = {};
  rectangle.item = image.item;
  rectangle.segments = runs;
  rectangle.segment_count = 2;
  return box_of_outline(rectangle);
}

static std::optional<Point> origin_of(const svg_scene_run &run) {
  static constexpr uint32_t both = SVG_RUN_X | SVG_RUN_Y;
  if ((run.flags & both) != both) return {};
  return map(run.item.ctm, run.x + run.dx, run.y + run.dy + run.baseline);
}

Point map(const double m[6], double x, double y) {
  return {m[0] * x + m[2] * y + m[4], m[1] * x + m[3] * y + m[5]};
}
