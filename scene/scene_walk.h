// scene_walk.h: a walk in progress, as those who paint parts of it see it.
//
// A walk goes through a subtree without recursion: each element that has something within it has a
// frame on the scene's stack (scene.h) until all of that was shown. There are walks within walks
// when a host paints the content of a clip path, mask or pattern, and when a box is measured.
#ifndef SCENE_WALK_H
#define SCENE_WALK_H

#include "scene/scene.h"
#include "scene/scene_geometry.h"
#include "scene/scene_outline.h"

// What a frame still has to show.
enum svg_scene_frame_kind : uint8_t {
  SVG_SCENE_CHILDREN, // from next on
  SVG_SCENE_SWITCH,   // the first child from next on that may be shown
  SVG_SCENE_USE,      // what it refers to
  SVG_SCENE_VIEW,     // an svg or symbol within the group of its effects
  SVG_SCENE_MARKERS   // what stands on the vertices of its shape
};

struct svg_scene_markers; // scene_markers.cpp

struct svg_scene_frame {
  svg_scene_frame *outer;
  svg_scene_mark mark; // the stack before it
  svg_scene_frame_kind kind;
  bool is_done;   // of SVG_SCENE_USE: nothing is left to show
  bool is_plain;  // its style has nothing but what is inherited
  bool is_listed; // looked at for circles
  bool is_active; // ends to be active with this frame
  const svg_e_node *element;
  const svg_e_node *use; // the innermost one through which it is shown, or null
  const svg_scene_style *style;
  svg_node *next;
  const svg_scene_group *group; // ends with the frame; null: none
  svg_scene_markers *markers;
  double ctm[6];      // from the user space of what is within it to that of the whole walk
  double viewport[2]; // what percentages within it are of
};

// What a walk is for.
enum svg_scene_purpose : uint8_t {
  SVG_SCENE_PAINT,  // the callbacks
  SVG_SCENE_CLIP,   // the callbacks, with the content of a clip path
  SVG_SCENE_MEASURE // extent
};

struct svg_scene_walk {
  svg_scene *scene;
  svg_scene_walk *outer;
  const svg_scene_callbacks *callbacks;
  void *user;
  svg_scene_purpose purpose;
  bool is_stroked;          // of SVG_SCENE_MEASURE: with strokes and markers
  svg_scene_extent *extent; // of SVG_SCENE_MEASURE
  svg_scene_frame *top;
  bool is_over; // nothing more is to be told
  int depth;    // of walks for painting within each other
};

// ---- Walking (scene_walk.cpp) -------------------------------------------------------------------

// Walks: start pushes the first frame, then all is shown. Whatever happens, nothing is left on the
// scene's stack.
void svg_scene_go(svg_scene_walk *walk, void (*start)(svg_scene_walk *walk, const void *argument),
                  const void *argument);

// A frame above the top one, which stays the top one until it is pushed: what is within it is shown
// then.
svg_scene_frame *svg_scene_new_frame(svg_scene_walk *walk, const svg_e_node *element);
void svg_scene_push(svg_scene_walk *walk, svg_scene_frame *frame);
svg_scene_place svg_scene_place_of(const svg_scene_frame *frame);

// Counts an element that is shown; raises ORT_E_LIMIT past the budget.
void svg_scene_count(svg_scene *scene, uint64_t elements);

// Counts that its place in the tree is looked for.
void svg_scene_count_place(svg_scene *scene, const svg_e_node *element);

// True when the element is shown by a walk in progress, or when walks are nested too deep, which is
// then warned of in the name of referrer.
bool svg_scene_is_refused(svg_scene_walk *walk, const svg_e_node *element,
                          const svg_e_node *referrer);

// ---- Elements (scene_show.cpp) ------------------------------------------------------------------

// Shows an element as a child of the top frame. With is_direct it is shown even when it is of a
// kind that is shown by reference only. With is_bare its own transform does not count.
void svg_scene_show(svg_scene_walk *walk, const svg_e_node *element, bool is_direct, bool is_bare);

// Shows the content of an svg or symbol whose group of effects has begun.
void svg_scene_show_view(svg_scene_walk *walk);

// True when a switch, the top frame, may take this child (SVG 1.1, 5.8.2).
bool svg_scene_is_choice(const svg_scene_walk *walk, const svg_e_node *child);

// False when the element is for users of other languages (SVG 1.1, 5.8.5).
bool svg_scene_has_language(const svg_scene *scene, const svg_e_node *element);

// ---- Groups (scene_group.cpp) -------------------------------------------------------------------

// True when the element is painted as a whole before it becomes a part of what is around it.
bool svg_scene_has_effects(const svg_scene_walk *walk, const svg_scene_frame *frame);

// Begins the group of a frame that is not pushed yet, with its effects when they are wanted; path
// is the outline when it is a shape, else null.
void svg_scene_begin_group(svg_scene_walk *walk, svg_scene_frame *frame, const double matrix[6],
                           const double *viewport, bool has_effects, const svg_scene_path *path);
void svg_scene_end_group(svg_scene_walk *walk, const svg_scene_frame *frame);

// What frames and groups have in common.
svg_scene_item svg_scene_make_item(const svg_scene_frame *frame, const double matrix[6]);

// ---- Leaves (scene_shape.cpp) -------------------------------------------------------------------

// Show the shape or image of a frame that is not pushed. matrix is the one from its user space to
// that of the group around. True when the frame was pushed because markers follow.
bool svg_scene_show_shape(svg_scene_walk *walk, svg_scene_frame *frame, const double matrix[6]);
void svg_scene_show_image(svg_scene_walk *walk, svg_scene_frame *frame, const double matrix[6]);

// Finds the paints of the shape that a frame shows.
void svg_scene_find_paints(svg_scene_walk *walk, const svg_scene_frame *frame,
                           const svg_scene_path &path, svg_scene_paint *fill,
                           svg_scene_paint *stroke);

// The same for what is painted with a style of its own within a frame; box is that of the whole, or
// null.
void svg_scene_find_paints_of(svg_scene_walk *walk, const svg_scene_frame *frame,
                              const svg_scene_style &style, const double *box,
                              svg_scene_paint *fill, svg_scene_paint *stroke);

// True when a paint is relative to the box of what it paints.
bool svg_scene_paint_needs_box(svg_scene *scene, const svg_scene_paint_value &value);

// ---- Markers (scene_markers.cpp) ----------------------------------------------------------------

// Makes the frame of a shape one that shows the markers on its outline; false when there are none.
bool svg_scene_begin_markers(svg_scene_walk *walk, svg_scene_frame *frame,
                             const svg_scene_path &path, const double matrix[6]);

// Shows the next marker; false when there is none any more.
bool svg_scene_show_marker(svg_scene_walk *walk);

// ---- Boxes (scene_box.cpp) ----------------------------------------------------------------------

// The box of the element of a frame that is not pushed, in its own user space, without strokes; the
// frame's outer one is the walk's top. Null when it shows nothing, SVG_SCENE_UNIT_BOX
// (scene_paint.h) when it holds text that the host is told of and does not measure, else room.
const double *svg_scene_measure(svg_scene_walk *walk, const svg_scene_frame *frame, double room[4]);

#endif
