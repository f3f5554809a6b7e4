// scene.cpp: see scene.h. The library's callbacks become calls with one kind of record.
#include "tools/scene.h"

#include <span>
#include <vector>

namespace {

// A walk in progress, the argument of its callbacks.
struct Walk {
  svg_scene *scene;
  const svg_e_node *element;
  const Scene::Begin &begin;
  const std::function<void()> &end;
  int depth = 0;
  std::vector<svg_pada> runs; // an outline where it is painted
  std::vector<double> points;
};

} // namespace

static void begin_group(void *user, const svg_scene_group *group);
static void end_group(void *user, const svg_scene_group *group);
static void show_shape(void *user, const svg_scene_shape *shape);
static void show_image(void *user, const svg_scene_image *image);
static void show_run(void *user, const svg_scene_run *run);
static std::optional<Box> box_of_outline(Walk &walk, const svg_scene_shape &shape);
static std::optional<Box> box_of_area(Walk &walk, const svg_scene_image &image);
static std::optional<Point> origin_of(const svg_scene_run &run);
static Point map(const double matrix[6], double x, double y);

const svg_e_node *server_of(const svg_scene_paint &paint) {
  switch (paint.kind) {
  case SVG_SCENE_PAINT_GRADIENT: return paint.gradient->element;
  case SVG_SCENE_PAINT_PATTERN: return paint.pattern->element;
  default: return nullptr;
  }
}

Scene::Scene(const Drawing &drawing) : drawing_(drawing) {
  const auto body = [](void *argument) {
    auto *scene = static_cast<Scene *>(argument);
    scene->scene_ = svg_scene_new(scene->drawing_.parser(), scene->drawing_.svg(), nullptr);
  };
  ort_protect(drawing.core(), body, this);
}

bool Scene::list(const svg_e_node *element, const Begin &begin,
                 const std::function<void()> &end) const {
  static constexpr svg_scene_callbacks callbacks = {begin_group, end_group, show_shape,
                                                    show_image,  show_run,  nullptr};
  Walk walk = {scene_, element, begin, end, 0, {}, {}};
  const auto body = [](void *argument) {
    const auto *of = static_cast<Walk *>(argument);
    svg_scene_paint_element(of->scene, of->element, &callbacks, argument);
  };
  const bool ok = protect(body, &walk);
  while (walk.depth > 0) end_group(&walk, nullptr);
  return ok;
}

bool Scene::measure(const svg_e_node *element, bool stroked, std::optional<Box> &box) const {
  struct Request {
    svg_scene *scene;
    const svg_e_node *element;
    bool stroked, is_shown;
    double box[4];
  } request = {scene_, element, stroked, false, {}};
  const auto body = [](void *argument) {
    auto *r = static_cast<Request *>(argument);
    r->is_shown = svg_scene_get_box(r->scene, r->element, nullptr, r->stroked, r->box) != 0;
  };
  if (!protect(body, &request)) return false;
  box.reset();
  if (request.is_shown) box = std::to_array(request.box);
  return true;
}

bool Scene::protect(void (*body)(void *argument), void *argument) const {
  return scene_ && ort_protect(drawing_.core(), body, argument) == 0;
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
              .box = box_of_outline(walk, *shape),
              .shape = shape,
              .fill = &shape->fill,
              .stroke = &shape->stroke});
}

static void show_image(void *user, const svg_scene_image *image) {
  Walk &walk = walk_of(user);
  walk.begin({.item = &image->item,
              .depth = walk.depth,
              .box = box_of_area(walk, *image),
              .image = image});
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

// A box of the mapped outline is tight where the mapped box of the outline is not. An affine map
// of a curve is the curve of the mapped points.
static std::optional<Box> box_of_outline(Walk &walk, const svg_scene_shape &shape) {
  const std::span segments(shape.segments, shape.segment_count);
  walk.runs.assign(segments.begin(), segments.end());
  walk.points.clear();
  for (const svg_pada &run : segments)
    for (int i = 0; i < run.count; ++i) {
      const Point at = map(shape.item.ctm, run.points[2 * i], run.points[2 * i + 1]);
      walk.points.insert(walk.points.end(), at.begin(), at.end());
    }
  double *points = walk.points.data();
  for (svg_pada &run : walk.runs) {
    run.points = points;
    points += 2 * run.count;
  }
  svg_scene_shape mapped = shape;
  mapped.segments = walk.runs.data();
  Box box;
  if (svg_scene_get_shape_box(&mapped, 0, box.data()) == 0) return {};
  return box;
}

static std::optional<Box> box_of_area(Walk &walk, const svg_scene_image &image) {
  const auto &[x, y, width, height] = image.area;
  double corners[] = {x, y, x + width, y, x + width, y + height, x, y + height};
  const svg_pada runs[] = {{SVG_PADA_MOVETO, 1, corners}, {SVG_PADA_LINETO, 3, corners + 2}};
  svg_scene_shape rectangle = {};
  rectangle.item = image.item;
  rectangle.segments = runs;
  rectangle.segment_count = 2;
  return box_of_outline(walk, rectangle);
}

static std::optional<Point> origin_of(const svg_scene_run &run) {
  static constexpr uint32_t both = SVG_RUN_X | SVG_RUN_Y;
  if ((run.flags & both) != both) return {};
  return map(run.item.ctm, run.x + run.dx, run.y + run.dy + run.baseline);
}

static Point map(const double m[6], double x, double y) {
  return {m[0] * x + m[2] * y + m[4], m[1] * x + m[3] * y + m[5]};
}
