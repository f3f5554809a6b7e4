// painter.h: draws what a scene tells with Cairo: groups, shapes, images and text.
//
// Made by picture.cpp for each picture, and by images.cpp for a drawing inside a drawing. Callbacks
// of the scene may leave by a jump, so none of them holds an object with a destructor while it
// calls the scene.
#ifndef TOOLS_SVGDRAW_PAINTER_H
#define TOOLS_SVGDRAW_PAINTER_H

#include <cairo.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "scene/svg_scene.h"

// What one picture may cost, and what is to be said about it; shared by the drawings inside of it.
struct Account {
  uint64_t pixels_limit = 0; // of the picture and the layers alive with it; 0: no limit
  uint64_t layers_limit = 0; // of all layers ever made
  uint64_t pixels = 0;
  uint64_t layers = 0;
  int nesting = 0; // of drawings in drawings
  int failure = 0; // code of the first error; nothing is drawn after it
  std::string failure_text;
  std::set<std::string> notes; // what was not drawn, each once

  // Takes pixels for a layer; false when there are none left, which is a failure.
  bool take(uint64_t count);
  void give(uint64_t count) { pixels -= count; }
  void fail(int code, const std::string &text);
};

class Painter {
public:
  // A vector target (PDF, PS, SVG) keeps patterns as drawings and links as links; layers that need
  // pixels have so many of them for each of its points.
  struct Target {
    bool vector = false;
    double pixels_per_unit = 1;
  };

  // All of them must outlive the painter.
  Painter(ort_core *core, svg_scene *scene, Account &account, Target target)
      : core_(core), scene_(scene), account_(account), target_(target) {}

  // Paints an element (null: the drawing) with the context's matrix as it is. Never raises: what
  // goes wrong is in the account.
  void paint(cairo_t *context, const svg_e_node *element);

private:
  // How a group is painted onto what is below it.
  enum class Layer {
    PLAIN,  // directly
    SINGLE, // an opacity for one shape, which may do without a layer
    PUSHED, // through a layer
    HIDDEN, // not at all
  };
  struct Group {
    Layer layer;
    double opacity;
    uint64_t pixels;   // of the layer
    bool clipped_late; // by a mask of its clip path
    bool link;         // a link of the PDF is open
  };
  enum class Content { ELEMENT, PATTERN, CLIP, MASK };
  struct Walk;

  static const svg_scene_callbacks CALLBACKS;
  static void walk_protected(void *argument);
  void walk(cairo_t *context, Content content, const void *what);
  bool hidden() const;

  // groups.cpp
  void begin_group(const svg_scene_group &group);
  void end_group(const svg_scene_group &group);
  bool push_layer();
  Layer clip_to(const svg_scene_clip &clip, bool &late);
  cairo_surface_t *make_layer(uint64_t &pixels);
  cairo_surface_t *make_mask(const svg_scene_group &group, bool clipped, uint64_t &pixels);
  bool begin_link(const svg_iri *link);

  // painter.cpp
  void shape(const svg_scene_shape &shape);
  void fill_and_stroke(const svg_scene_shape &shape, double opacity);

  // paints.cpp
  bool set_source(const svg_scene_paint &paint, double opacity);
  void set_stroke(const svg_scene_style &style);
  cairo_pattern_t *make_pattern(const svg_scene_pattern &pattern, double opacity);

  // images.cpp
  void image(const svg_scene_image &image);
  void embedded_drawing(const svg_scene_image &image);

  // text.cpp
  void text(const svg_scene_run &run);
  double measure(const svg_scene_run &run);

  ort_core *core_;
  svg_scene *scene_;
  Account &account_;
  Target target_;
  cairo_t *cairo_ = nullptr; // what is painted on now
  std::vector<Group> groups_;
};

// Appends the segments of a shape to the context's path.
void add_segments(cairo_t *context, const svg_pada *segments, size_t count);

// Cairo refuses all further work after a matrix that cannot be inverted: whether the matrix may be
// applied to the context.
bool can_apply(cairo_t *context, const double matrix[6]);

// By the keyword of fill-rule or clip-rule.
void set_fill_rule(cairo_t *context, int32_t keyword);

inline cairo_matrix_t to_cairo(const double m[6]) { return {m[0], m[1], m[2], m[3], m[4], m[5]}; }

inline void apply(cairo_t *context, const double matrix[6]) {
  const cairo_matrix_t own = to_cairo(matrix);
  cairo_transform(context, &own);
}

#endif
