// painter.h: draws what a scene tells with Cairo: groups, shapes, images and text.
//
// Made by picture.cpp for each picture, and by images.cpp for a drawing inside of a drawing. A
// callback that calls the scene does so by walk() or attempt(), so that no error jumps past it.
#ifndef TOOLS_SVGDRAW_PAINTER_H
#define TOOLS_SVGDRAW_PAINTER_H

#include <cairo.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tools/path_effort.h"
#include "tools/protect.h"
#include "tools/scene.h"

constexpr int SIDE_MAX = 32767; // of an image in Cairo
constexpr double LAYER = 4;     // times a color: to clear a layer, to show it

// What one picture may cost, and what is to be said about it; shared by the drawings inside of it.
struct Account {
  ort_core *core;
  uint64_t pixels_limit = 0;  // of the picture and the layers alive with it
  uint64_t painted_limit = 0; // pixels of one color that could be painted in all the time
  uint64_t pixels = 0;
  double painted = 0;
  int nesting = 0;                  // of drawings in drawings
  std::set<std::string> notes = {}; // what was not drawn, each once

  // The first error, after which nothing is drawn; a code of 0 is none of the library's.
  bool failed = false;
  int code = 0;
  std::string text = {};

  // Takes pixels for a layer or an image, which are gone through so often; false when there are
  // none left, which is an error.
  bool take(uint64_t count, double times);
  void give(uint64_t count) { pixels -= count; }
  bool spend(double time);                       // the same of time
  bool exceed(uint64_t limit, const char *what); // fails
  void fail(int error, const std::string &message);

  // Calls the library as protect does; false: it raised, and that is the error.
  template <class Body> bool attempt(const Body &body) {
    const int error = protect(core, body);
    if (error != 0) fail(error, ort_error_text(core));
    return error == 0;
  }
};

// What it takes to fill or stroke something.
struct Effort {
  double time = 0;
  double area = 0;               // pixels, which take longer with other paints than a color
  double crossings = 0;          // of edges
  std::optional<Box> apart = {}; // in device space, for a layer to draw on because of the clip path
};

class Painter {
public:
  // A vector target (PDF, PS, SVG) keeps patterns as drawings and links as links; layers that need
  // pixels have so many of them for each of its points.
  struct Target {
    bool is_vector = false;
    double pixels_per_unit = 1;
  };

  // All of them must outlive the painter.
  Painter(const Scene &scene, Account &account, Target target)
      : drawing_(scene.drawing()), scene_(scene.get()), account_(account), target_(target) {}

  // Paints an element (null: the drawing) with the context's matrix as it is. Never raises: what
  // goes wrong is in the account.
  void paint(cairo_t *context, const svg_e_node *element);

  // The box around an element's text in fonts that the scene does not know.
  std::optional<Box> find_text(const svg_e_node *element);

private:
  // A group that is open; hidden ones show nothing.
  struct Group {
    bool is_hidden = false;
    bool is_pushed = false; // it goes through a layer
    bool is_masked = false; // by a mask of its clip path
    bool is_link = false;   // a link of the PDF is open
    bool is_cut = false;    // by a clip path that is no rectangle, or a group around is
    double opacity = 1;     // for the one paint in it
    uint64_t pixels = 0;    // of the layer
  };
  using Body = std::function<void()>;

  static const svg_scene_callbacks CALLBACKS, TEXT_ONLY;

  // painter.cpp
  void walk(cairo_t *context, const Body &body);
  bool enter(const double matrix[6]);
  void paint(const svg_scene_paint &fill, const svg_scene_paint &stroke,
             const svg_scene_style &style, int32_t fill_rule,
             const std::function<Effort(const svg_scene_style *stroke)> &effort,
             const std::function<void(bool fills)> &add);
  void shape(const svg_scene_shape &shape);

  // effort.cpp
  Effort effort_of(const svg_pada *segments, size_t count, const svg_scene_style *stroke) const;
  Effort effort_of(const svg_scene_run &run, bool strokes) const;
  bool makes_pixels() const;
  std::array<double, 6> to_pixels() const;

  // groups.cpp
  void begin_group(const svg_scene_group &group);
  void end_group(const svg_scene_group &group);
  void clip_to(const svg_scene_clip &clip, Group &record);
  void push_layer(const svg_scene_group &group, Group &record);
  void show_layer(const svg_scene_group &group, const Group &record);
  cairo_surface_t *make_mask(const svg_scene_group &group, const Group &record);
  bool begin_link(const svg_iri *link);
  Box visible_pixels() const;

  // paints.cpp
  bool set_source(const svg_scene_paint &paint);
  void set_stroke(const svg_scene_style &style);
  cairo_pattern_t *make_pattern(const svg_scene_pattern &pattern, double opacity);

  // images.cpp
  void image(const svg_scene_image &image);
  void draw_pixels(const svg_scene_image &image, cairo_surface_t *picture);
  void draw_drawing(const svg_scene_image &image);
  bool place(const svg_scene_image &image, double width, double height);

  // text.cpp
  void text(const svg_scene_run &run);
  double measure(const svg_scene_run &run);
  void bound_text(const svg_scene_run &run); // adds it to the path

  const Drawing &drawing_;
  svg_scene *scene_;
  Account &account_;
  Target target_;
  cairo_t *cairo_ = nullptr; // what is painted on now
  std::vector<Group> groups_;
};

// Cairo refuses all further work after a matrix that cannot be inverted. False when this one would
// be such with the context's, and is not applied.
bool apply(cairo_t *context, const double matrix[6]);

inline cairo_matrix_t to_cairo(const double m[6]) { return {m[0], m[1], m[2], m[3], m[4], m[5]}; }

void add_segments(cairo_t *context, const svg_pada *segments, size_t count); // to the path

inline void clip_to_box(cairo_t *context, const double box[4]) {
  cairo_rectangle(context, box[0], box[1], box[2], box[3]);
  cairo_clip(context);
}

void clip_to_pixels_of(cairo_t *context, const double box[4]); // whole ones

void set_fill_rule(cairo_t *context, int32_t keyword); // of fill-rule or clip-rule

#endif
