// scene.h: what a drawing shows: its scene for as long as an answer needs it, what is painted, and
// boxes.
#ifndef TOOLS_SCENE_H
#define TOOLS_SCENE_H

#include <array>
#include <functional>
#include <optional>

#include "scene/svg_scene.h"
#include "tools/drawing.h"
#include "tools/protect.h"

using Point = std::array<double, 2>; // x, y
using Box = std::array<double, 4>;   // x, y, width, height

Point map(const double matrix[6], double x, double y);

// Something that is painted. What it points to lasts as long as the call that receives it.
struct Painted {
  const svg_scene_item *item = nullptr;
  int depth = 0;                    // groups around it
  std::optional<Box> box = {};      // of a shape without its stroke, or an image; by the item's ctm
  std::optional<Point> origin = {}; // of a text, unless it begins where the one before it ended
  const svg_scene_group *group = nullptr; // one of these four
  const svg_scene_shape *shape = nullptr;
  const svg_scene_image *image = nullptr;
  const svg_scene_run *run = nullptr;
  const svg_scene_paint *fill = nullptr, *stroke = nullptr; // of a shape or run
};

// The gradient or pattern of a paint, or null.
const svg_e_node *server_of(const svg_scene_paint &paint);

// What fails is told among the drawing's messages, as any error.
class Scene {
public:
  explicit Scene(const Drawing &drawing, const svg_scene_options &options = {});
  ~Scene() { svg_scene_delete(scene_); }
  Scene(const Scene &) = delete;
  Scene &operator=(const Scene &) = delete;

  // Calls begin for everything that an element paints, in order, and end after what is in a group.
  // The outermost svg is painted into the space around it, another element into the user space of
  // its parent. Returns false after an error, groups having been ended.
  using Begin = std::function<void(const Painted &)>;
  bool list(const svg_e_node *element, const Begin &begin, const std::function<void()> &end) const;

  // The box of an element as svg_scene_get_box has it, nothing when it shows nothing. Returns false
  // after an error.
  bool measure(const svg_e_node *element, const svg_e_node *ancestor, bool stroked,
               std::optional<Box> &box) const;

  // For a host of its own: the scene, null for lack of memory, and calls that may raise
  // (tools/protect.h): false after an error, and without a scene.
  svg_scene *get() const { return scene_; }
  template <class Body> bool protect(const Body &body) const {
    return scene_ && ::protect(drawing_.core(), body) == 0;
  }

  // The drawing's width and height in pixels.
  Point size() const;

  const Drawing &drawing() const { return drawing_; }

private:
  const Drawing &drawing_;
  svg_scene *scene_ = nullptr;
};

#endif
