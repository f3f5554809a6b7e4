// simplify_definitions.cpp: what a Simplifier refers to: gradients, patterns, masks and clip paths,
// each written once.
#include <algorithm>
#include <cmath>

#include "tools/simplifier.h"
#include "tools/svg_text.h"

static constexpr double IDENTITY[6] = {1, 0, 0, 1, 0, 0};

static std::string content_text(const std::vector<std::string> &pieces, const double matrix[6]);
static bool relate(double result[6], const double to[6], const double from[6]);

// ---- Paints -------------------------------------------------------------------------------------

// Pushes "none", a color or "url(#id)".
void Simplifier::push_paint(const svg_scene_paint &paint) {
  switch (paint.kind) {
  case SVG_SCENE_PAINT_NONE: texts_.emplace_back("none"); break;
  case SVG_SCENE_PAINT_COLOR: texts_.push_back(svg_color_text(paint.rgb, paint.color)); break;
  case SVG_SCENE_PAINT_GRADIENT: push_gradient(*paint.gradient); break;
  case SVG_SCENE_PAINT_PATTERN: push_pattern(*paint.pattern); break;
  }
}

void Simplifier::push_gradient(const svg_scene_gradient &gradient) {
  const std::string name = gradient.radial ? "radialGradient" : "linearGradient";
  std::string rest;
  if (!gradient.of_box) append_attribute(rest, "gradientUnits", "userSpaceOnUse");
  const auto length = [&rest](const char *attribute, double value) {
    append_attribute(rest, attribute, value);
  };
  if (gradient.radial) {
    // The focus may not leave the circle by being rounded.
    const auto narrow = [](double value) { return static_cast<double>(static_cast<float>(value)); };
    double fx = gradient.fx, fy = gradient.fy;
    const double cx = narrow(gradient.cx), cy = narrow(gradient.cy), r = narrow(gradient.r);
    for (int i = 0; i < 20 && std::hypot(narrow(fx) - cx, narrow(fy) - cy) > r; ++i) {
      fx += (cx - fx) * 1e-6;
      fy += (cy - fy) * 1e-6;
    }
    length("cx", cx);
    length("cy", cy);
    length("r", r);
    if (narrow(fx) != cx) length("fx", fx);
    if (narrow(fy) != cy) length("fy", fy);
  } else {
    length("x1", gradient.x1);
    length("y1", gradient.y1);
    length("x2", gradient.x2);
    length("y2", gradient.y2);
  }
  append_matrix(rest, "gradientTransform", gradient.matrix);
  if (gradient.spread != SVG_KW_pad)
    append_attribute(rest, "spreadMethod", svg_get_keyword_text(gradient.spread));
  std::string stops;
  for (size_t i = 0; i < gradient.stop_count; ++i) {
    const svg_scene_stop &stop = gradient.stops[i];
    stops += "<stop";
    append_attribute(stops, "offset", stop.offset);
    append_attribute(stops, "stop-color", svg_color_text(stop.rgb, stop.color));
    if (stop.opacity < 1) append_attribute(stops, "stop-opacity", stop.opacity);
    stops += "/>\n";
  }
  texts_.push_back("url(#" + define('g', name, rest, stops) + ")");
}

void Simplifier::push_pattern(const svg_scene_pattern &pattern) {
  parts_.emplace_back();
  svg_scene_paint_pattern(scene_.get(), &pattern, &CALLBACKS, this);
  double matrix[6]; // the origin of what is written is the tile's
  std::copy_n(pattern.content_matrix, 6, matrix);
  if (pattern.of_box == pattern.content_of_box)
    for (int i = 0; i < 2; ++i) matrix[4 + i] -= pattern.tile[i];
  const std::string content = content_text(take_part().pieces, matrix);
  if (content.empty()) {
    texts_.emplace_back("none");
    return;
  }
  std::string attributes;
  if (!pattern.of_box) append_attribute(attributes, "patternUnits", "userSpaceOnUse");
  if (pattern.content_of_box)
    append_attribute(attributes, "patternContentUnits", "objectBoundingBox");
  append_box(attributes, pattern.tile);
  append_matrix(attributes, "patternTransform", pattern.matrix);
  if (!pattern.clipped) append_attribute(attributes, "overflow", "visible");
  texts_.push_back("url(#" + define('p', "pattern", attributes, content) + ")");
}

// What was painted, within a group for its matrix.
static std::string content_text(const std::vector<std::string> &pieces, const double matrix[6]) {
  std::string content, transform;
  for (const std::string &piece : pieces) content += piece;
  append_matrix(transform, "transform", matrix);
  if (content.empty() || transform.empty()) return content;
  return "<g" + transform + ">\n" + content + "</g>\n";
}

// ---- Clips and masks ----------------------------------------------------------------------------

// Pushes an id, "" for none.
void Simplifier::push_mask(const svg_scene_mask *mask) {
  if (!mask) {
    texts_.emplace_back();
    return;
  }
  parts_.emplace_back();
  svg_scene_paint_mask(scene_.get(), mask, &CALLBACKS, this);
  const std::string content = content_text(take_part().pieces, mask->matrix);
  std::string attributes;
  if (!mask->of_box) append_attribute(attributes, "maskUnits", "userSpaceOnUse");
  if (mask->content_of_box) append_attribute(attributes, "maskContentUnits", "objectBoundingBox");
  append_box(attributes, mask->area);
  texts_.push_back(define('m', "mask", attributes, content));
}

// Pushes an id, "" for none.
void Simplifier::push_clip(const svg_scene_clip *clip) {
  if (clip) {
    paint_clip(*clip);
    texts_.push_back(define_clips(take_layers()));
  } else {
    texts_.emplace_back();
  }
}

// Pushes the layers of a clip path: itself, and those that clip it.
void Simplifier::paint_clip(const svg_scene_clip &clip) {
  parts_.emplace_back().clip = &clip;
  svg_scene_paint_clip(scene_.get(), &clip, &CALLBACKS, this);
  const Part part = take_part();
  Layer layer = {content_text(part.pieces, IDENTITY), clip.of_box != 0, {}};
  std::copy_n(clip.matrix, 6, layer.matrix);
  layers_.push_back({layer});
  layers_.back().insert(layers_.back().end(), part.own_clips.begin(), part.own_clips.end());
}

// What clips an element in a clip path because of the groups around it, innermost first. matrix is
// the one from its user space to the content's.
Simplifier::Layers Simplifier::clips_of_frames(const double matrix[6]) const {
  Layers result;
  double applied[6]; // from where the next layer applies to the content's user space
  std::copy_n(matrix, 6, applied);
  const std::vector<Frame> &frames = parts_.back().frames;
  for (auto frame = frames.rbegin(); frame != frames.rend(); ++frame) {
    if (frame->clips.empty()) continue;
    double place[6];
    if (!relate(place, applied, frame->matrix)) break; // a clip path without area lets nothing show
    const size_t first = result.size();
    result.insert(result.end(), frame->clips.begin(), frame->clips.end());
    svg_scene_multiply(result[first].matrix, place, result[first].matrix);
    for (size_t i = first; i < result.size(); ++i)
      svg_scene_multiply(applied, applied, result[i].matrix);
  }
  return result;
}

// The matrix from one user space to another, both known by their matrices to a third one. False
// when there is none.
static bool relate(double result[6], const double to[6], const double from[6]) {
  std::copy_n(IDENTITY, 6, result);
  if (std::equal(to, to + 6, from)) return true;
  if (svg_scene_invert(result, to) == 0) return false;
  svg_scene_multiply(result, result, from);
  return true;
}

// The id of the first one, which refers to the others; "" for none.
std::string Simplifier::define_clips(const Layers &layers) {
  std::string id;
  for (auto layer = layers.rbegin(); layer != layers.rend(); ++layer) {
    std::string attributes;
    if (layer->of_box) append_attribute(attributes, "clipPathUnits", "objectBoundingBox");
    append_matrix(attributes, "transform", layer->matrix);
    append_reference(attributes, "clip-path", id);
    id = define('c', "clipPath", attributes, layer->content);
  }
  return id;
}

// The overflow clip of a group as a path; "" for none.
std::string Simplifier::define_viewport(const svg_scene_group &group) {
  if (!group.has_viewport || is_root(group)) return "";
  const double *box = group.viewport, right = box[0] + box[2], bottom = box[1] + box[3];
  double points[] = {box[0], box[1], right, box[1], right, bottom, box[0], bottom};
  const svg_pada runs[] = {{SVG_PADA_MOVETO, 1, points},
                           {SVG_PADA_LINETO, 3, points + 2},
                           {SVG_PADA_CLOSEPATH, 0, nullptr}};
  std::string path = "<path";
  append_attribute(path, "d", path_text(runs, 3));
  return define('c', "clipPath", "", path + "/>\n");
}

// ---- Definitions --------------------------------------------------------------------------------

// The id of an element, which is defined when there is no equal one yet.
std::string Simplifier::define(char kind, const std::string &element, const std::string &attributes,
                               const std::string &content) {
  std::string rest = attributes + "/>\n";
  if (!content.empty()) rest = attributes + ">\n" + content + "</" + element + ">\n";
  const auto [found, is_new] = ids_.try_emplace(element + rest);
  if (is_new) {
    found->second = kind + std::to_string(++numbers_[kind]);
    definitions_ += "<" + element;
    append_attribute(definitions_, "id", found->second);
    definitions_ += rest;
  }
  return found->second;
}

std::string Simplifier::take_text() {
  std::string text = std::move(texts_.back());
  texts_.pop_back();
  return text;
}

Simplifier::Layers Simplifier::take_layers() {
  Layers layers = std::move(layers_.back());
  layers_.pop_back();
  return layers;
}

Simplifier::Part Simplifier::take_part() {
  Part part = std::move(parts_.back());
  parts_.pop_back();
  return part;
}

// ---- Attributes ---------------------------------------------------------------------------------

void append_reference(std::string &out, const char *name, const std::string &id) {
  if (!id.empty()) append_attribute(out, name, "url(#" + id + ")");
}

void append_box(std::string &out, const double box[4]) {
  append_attribute(out, "x", box[0]);
  append_attribute(out, "y", box[1]);
  append_attribute(out, "width", box[2]);
  append_attribute(out, "height", box[3]);
}

void append_paint(std::string &out, const std::string &name, const char *initial,
                  const std::string &text, const svg_scene_paint &paint) {
  if (text != initial) append_attribute(out, name, text);
  if (text != "none" && paint.opacity < 1) append_attribute(out, name + "-opacity", paint.opacity);
}
