// simplifier.h: a host of the scene that writes down what it is told as plain SVG.
//
// Made by simplify.cpp for one drawing. simplify.cpp writes groups, shapes and images,
// simplify_text.cpp texts, simplify_definitions.cpp what they refer to.
//
// An error leaves the callbacks by a jump, so that nothing with a destructor may be alive where a
// part of the scene is painted: what waits there for its end belongs to the Simplifier.
//
// So that the result reads back as it was written, matrices stay where they were, groups without
// effect or content are left out, and what is referred to gets its number when it is needed first.
#ifndef TOOLS_SIMPLIFIER_H
#define TOOLS_SIMPLIFIER_H

#include <string>
#include <unordered_map>
#include <vector>

#include "tools/scene.h"

class Simplifier {
public:
  explicit Simplifier(const Drawing &drawing) : drawing_(drawing), scene_(drawing) {}

  bool run();
  void print(FILE *out);

private:
  // One clip path, without those that clip it.
  struct Layer {
    std::string content;
    bool of_box;
    double matrix[6]; // from the content's user space to that of the layer before, or to where the
                      // first one applies
  };
  using Layers = std::vector<Layer>; // all of them clip

  // A group that is open.
  struct Frame {
    size_t piece;     // of its start tag
    size_t bytes;     // of the part before it
    double matrix[6]; // in a clip path: to the content's user space
    Layers clips;     // in a clip path
  };

  // The content of the drawing, a pattern, a mask or a clip path while it is written.
  struct Part {
    const svg_scene_clip *clip = nullptr; // it is the content of this one
    Layers own_clips = {};                // of the clipPath element itself
    std::vector<std::string> pieces = {""};
    size_t bytes = 0;
    std::vector<Frame> frames = {};
    bool in_text = false;                          // a text is open
    std::vector<const svg_e_node *> wrappers = {}; // the elements around runs that are open there
  };

  // An element that a link may lead to.
  struct Target {
    size_t piece = 0; // of the drawing, where its id goes; 0: nowhere yet
    std::string id;   // "" when no link leads there
  };

  static const svg_scene_callbacks CALLBACKS;

  // Groups and leaves (simplify.cpp).
  void paint();
  void begin_group(const svg_scene_group &group);
  void end_group(const svg_scene_group &group);
  void shape(const svg_scene_shape &shape);
  void clip_shape(const svg_scene_shape &shape);
  void image(const svg_scene_image &image);
  bool is_root(const svg_scene_group &group) const;
  std::string href_of(const svg_iri *link);
  void append_id(const svg_e_node *element);
  void define_targets();
  void append(const std::string &text);

  // Texts (simplify_text.cpp).
  void text(const svg_scene_run &run);
  void begin_text(const svg_scene_run &run);
  void change_wrappers(const svg_scene_run &run);
  void close_wrappers(size_t left);
  void close_text();
  std::string run_text(const svg_scene_run &run, bool begins);
  std::string decoration_text(const svg_scene_decoration &decoration);

  // Definitions (simplify_definitions.cpp).
  void push_paint(const svg_scene_paint &paint);
  void push_gradient(const svg_scene_gradient &gradient);
  void push_pattern(const svg_scene_pattern &pattern);
  void push_mask(const svg_scene_mask *mask);
  void push_clip(const svg_scene_clip *clip);
  void paint_clip(const svg_scene_clip &clip);
  Layers clips_of_frames(const double matrix[6]) const;
  std::string define_clips(const Layers &layers);
  std::string define_viewport(const svg_scene_group &group);
  std::string define(char kind, const std::string &element, const std::string &attributes,
                     const std::string &content);
  std::string take_text();
  Layers take_layers();
  Part take_part();

  const Drawing &drawing_;
  const Scene scene_;
  double root_[6] = {1, 0, 0, 1, 0, 0}; // from the outermost viewBox
  bool is_open_ = false;                // nothing of the outermost svg is cut off
  bool has_links_ = false;
  std::string definitions_;
  std::unordered_map<std::string, std::string> ids_; // by what is defined
  std::unordered_map<char, size_t> numbers_;         // of definitions of a kind
  std::unordered_map<const svg_e_node *, Target> targets_;
  std::vector<const svg_e_node *> linked_; // targets with an id, in their order
  std::vector<Part> parts_;                // the innermost one last
  std::vector<std::string> texts_;         // what was made for an element in the making
  std::vector<Layers> layers_;             // the same
};

// " NAME="url(#ID)"", nothing for an empty id.
void append_reference(std::string &out, const char *name, const std::string &id);

void append_box(std::string &out, const double box[4]);

// Attributes of a fill or stroke; text is the value, initial what holds without the attribute.
void append_paint(std::string &out, const std::string &name, const char *initial,
                  const std::string &text, const svg_scene_paint &paint);

#endif
