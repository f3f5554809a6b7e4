// simplify.cpp: see simplify.h. A host of the scene: what the callbacks are told is written down.
//
// An error leaves the callbacks by a jump, so that nothing with a destructor may be alive where a
// part of the scene is painted: what waits there for its end belongs to the Simplifier.
//
// So that the result reads back as it was written, matrices stay where they were, groups without
// effect or content are left out, and what is referred to gets its number when it is needed first.
#include "tools/simplify.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_map>
#include <vector>

#include "tools/svg_text.h"
#include "tools/utf8.h"

namespace {

constexpr double IDENTITY[6] = {1, 0, 0, 1, 0, 0};

// A group that is open.
struct Frame {
  size_t piece;               // of its start tag
  size_t bytes;               // of the part before it
  double matrix[6];           // in a clip path: to the content's user space
  const svg_scene_clip *clip; // in a clip path
};

// The content of the drawing, a pattern, a mask or a clip path while it is written.
struct Part {
  const svg_scene_clip *clip = nullptr; // it is the content of this one
  std::string own_clip = {};            // of the clipPath element itself: an id
  std::vector<std::string> pieces = {""};
  size_t bytes = 0;
  std::vector<Frame> frames = {};
};

class Simplifier {
public:
  explicit Simplifier(const Drawing &drawing) : drawing_(drawing) {}
  ~Simplifier() { svg_scene_delete(scene_); }
  Simplifier(const Simplifier &) = delete;
  Simplifier &operator=(const Simplifier &) = delete;

  bool run();
  void print(FILE *out) const;

private:
  void paint();
  void begin_group(const svg_scene_group &group);
  void end_group(const svg_scene_group &group);
  void shape(const svg_scene_shape &shape);
  void clip_shape(const svg_scene_shape &shape);
  void image(const svg_scene_image &image);
  void text(const svg_scene_run &run);
  void begin_text(const svg_scene_run &run);

  void push_paint(const svg_scene_paint &paint);
  void push_gradient(const svg_scene_gradient &gradient);
  void push_pattern(const svg_scene_pattern &pattern);
  void push_mask(const svg_scene_mask *mask);
  void push_clip(const svg_scene_clip *clip, const double matrix[6], bool has_outer);
  void push_viewport(const svg_scene_group &group);
  void push_clips_of_frames(const double matrix[6]);
  void push_definition(char kind, const std::string &element, const std::string &rest);
  std::string take_text();

  void begin_part(const svg_scene_clip *clip);
  std::string end_part();
  void append(const std::string &text);
  bool is_root(const svg_scene_group &group) const;

  static const svg_scene_callbacks CALLBACKS;

  const Drawing &drawing_;
  svg_scene *scene_ = nullptr;
  double size_[2] = {};
  bool is_open_ = false; // nothing of the outermost svg is cut off
  bool has_links_ = false;
  std::string definitions_;
  std::unordered_map<std::string, std::string> ids_; // by what is defined
  std::unordered_map<char, size_t> numbers_;         // of definitions of a kind
  std::vector<Part> parts_;                          // the innermost one last
  std::vector<std::string> texts_;                   // what was made for an element in the making
};

} // namespace

static void append_reference(std::string &out, const char *name, const std::string &id);
static void append_box(std::string &out, const double box[4]);
static bool relate(double result[6], const double to[6], const double from[6]);
static void multiply(double result[6], const double outer[6], const double inner[6]);
static void append_paint(std::string &out, const std::string &name, const char *initial,
                         const std::string &text, const svg_scene_paint &paint);

bool print_simplified(FILE *out, const Drawing &drawing) {
  Simplifier simplifier(drawing);
  if (!simplifier.run()) return false;
  simplifier.print(out);
  return true;
}

bool Simplifier::run() {
  parts_.emplace_back();
  const auto body = [](void *self) { static_cast<Simplifier *>(self)->paint(); };
  return ort_protect(drawing_.core(), body, this) == 0;
}

void Simplifier::paint() {
  scene_ = svg_scene_new(drawing_.parser(), drawing_.svg(), nullptr);
  svg_scene_get_size(scene_, &size_[0], &size_[1]);
  svg_scene_style style;
  svg_scene_get_style(scene_, drawing_.svg(), &style);
  is_open_ = style.overflow == SVG_KW_visible || style.overflow == SVG_KW_auto;
  svg_scene_paint_element(scene_, nullptr, &CALLBACKS, this);
}

void Simplifier::print(FILE *out) const {
  std::string head = "<svg xmlns=\"http://www.w3.org/2000/svg\"";
  if (has_links_) append_attribute(head, "xmlns:xlink", "http://www.w3.org/1999/xlink");
  append_attribute(head, "width", size_[0]);
  append_attribute(head, "height", size_[1]);
  if (is_open_) append_attribute(head, "overflow", "visible");
  head += ">\n";
  if (!definitions_.empty()) head += "<defs>\n" + definitions_ + "</defs>\n";
  fwrite(head.data(), 1, head.size(), out);
  for (const std::string &piece : parts_[0].pieces) fwrite(piece.data(), 1, piece.size(), out);
  fputs("</svg>\n", out);
}

template <class Record, void (Simplifier::*METHOD)(const Record &)>
static void call(void *self, const Record *record) {
  (static_cast<Simplifier *>(self)->*METHOD)(*record);
}

const svg_scene_callbacks Simplifier::CALLBACKS = {
    call<svg_scene_group, &Simplifier::begin_group>, call<svg_scene_group, &Simplifier::end_group>,
    call<svg_scene_shape, &Simplifier::shape>,       call<svg_scene_image, &Simplifier::image>,
    call<svg_scene_run, &Simplifier::text>,          nullptr};

// ---- Groups -------------------------------------------------------------------------------------

void Simplifier::begin_group(const svg_scene_group &group) {
  Part &part = parts_.back();
  const double *outer = part.frames.empty() ? IDENTITY : part.frames.back().matrix;
  Frame frame = {part.pieces.size(), part.bytes, {}, group.clip};
  multiply(frame.matrix, outer, group.item.matrix);
  part.frames.push_back(frame);
  if (part.clip && group.item.element == part.clip->element) {
    part.frames.back().clip = nullptr;
    push_clip(group.clip, IDENTITY, false);
    parts_.back().own_clip = take_text();
  }
  if (!parts_.back().clip) parts_.back().pieces.insert(parts_.back().pieces.end(), 2, "");
}

// Its start tag is written last, because a group without content has none.
void Simplifier::end_group(const svg_scene_group &group) {
  const Frame frame = parts_.back().frames.back();
  parts_.back().frames.pop_back();
  if (parts_.back().clip) return;
  if (parts_.back().bytes == frame.bytes) {
    parts_.back().pieces.resize(frame.piece);
    return;
  }
  const bool has_clip = group.clip != nullptr;
  push_mask(group.mask);
  push_clip(group.clip, IDENTITY, false);
  push_viewport(group);
  const std::string viewport = take_text(), clip = take_text(), mask = take_text();
  const bool has_link = group.link && group.link->kind == SVG_IRI_NAME && group.link->ref.text;
  std::string attributes, end;
  if (has_link) append_attribute(attributes, "xlink:href", group.link->ref.text);
  has_links_ |= has_link;
  append_matrix(attributes, "transform", group.item.matrix);
  if (group.opacity < 1) append_attribute(attributes, "opacity", group.opacity);
  append_reference(attributes, "clip-path", has_clip ? clip : viewport);
  append_reference(attributes, "mask", mask);
  if (attributes.empty()) return;
  const std::string name = has_link ? "a" : "g";
  std::string start = "<";
  start += name;
  start += attributes;
  start += ">\n";
  if (has_clip && !viewport.empty()) {
    start += "<g";
    append_reference(start, "clip-path", viewport);
    start += ">\n";
    end = "</g>\n";
  }
  parts_.back().pieces[frame.piece] = start;
  append(end);
  append("</");
  append(name);
  append(">\n");
}

// The result has the size of the drawing, and so its outermost svg cuts off the same.
bool Simplifier::is_root(const svg_scene_group &group) const {
  return parts_.size() == 1 && group.item.element == drawing_.svg() && !group.item.use;
}

// ---- Leaves -------------------------------------------------------------------------------------

void Simplifier::shape(const svg_scene_shape &shape) {
  if (parts_.back().clip) return clip_shape(shape);
  push_paint(shape.fill);
  push_paint(shape.stroke);
  const std::string stroke = take_text(), fill = take_text();
  if (fill == "none" && stroke == "none") return;
  std::string element = "<path";
  append_attribute(element, "d", path_text(shape.segments, shape.segment_count));
  append_matrix(element, "transform", shape.item.matrix);
  append_paint(element, "fill", "#000", fill, shape.fill);
  if (fill != "none" && shape.fill_rule == SVG_KW_evenodd)
    append_attribute(element, "fill-rule", "evenodd");
  append_paint(element, "stroke", "none", stroke, shape.stroke);
  if (stroke != "none") append_stroke_style(element, *shape.item.style);
  append(element + "/>\n");
}

// A clip path has no groups: a shape takes over the matrices and clips of those around it.
void Simplifier::clip_shape(const svg_scene_shape &shape) {
  double matrix[6];
  multiply(matrix, parts_.back().frames.empty() ? IDENTITY : parts_.back().frames.back().matrix,
           shape.item.matrix);
  push_clips_of_frames(matrix);
  const std::string clip = take_text();
  std::string element = "<path";
  append_attribute(element, "d", path_text(shape.segments, shape.segment_count));
  append_matrix(element, "transform", matrix);
  if (shape.fill_rule == SVG_KW_evenodd) append_attribute(element, "clip-rule", "evenodd");
  append_reference(element, "clip-path", clip);
  append(element + "/>\n");
}

void Simplifier::image(const svg_scene_image &image) {
  const bool has_data = image.data != nullptr;
  if (parts_.back().clip || (!has_data && image.iri->kind != SVG_IRI_NAME)) return;
  std::string element = "<image";
  append_box(element, image.area);
  append_matrix(element, "transform", image.item.matrix);
  std::string aspect = svg_get_keyword_text(image.align);
  if (!image.meet) aspect += " slice";
  if (aspect != "xMidYMid") append_attribute(element, "preserveAspectRatio", aspect);
  if (!image.clipped) append_attribute(element, "overflow", "visible");
  append_attribute(element, "xlink:href",
                   has_data ? data_uri(image.iri->mime, image.data, image.size)
                            : image.iri->ref.text);
  has_links_ = true;
  append(element + "/>\n");
}

// A text is a sequence of runs, and each decoration around one a tspan of its own.
void Simplifier::text(const svg_scene_run &run) {
  if (run.flags & SVG_RUN_FIRST) begin_text(run);
  for (size_t i = 0; i < run.decoration_count; ++i) {
    push_paint(run.decorations[i].fill);
    push_paint(run.decorations[i].stroke);
  }
  push_paint(run.fill);
  push_paint(run.stroke);
  const std::string stroke = take_text(), fill = take_text();
  std::string place, style, before, after;
  if (run.flags & SVG_RUN_X) append_attribute(place, "x", run.x);
  if (run.flags & SVG_RUN_Y) append_attribute(place, "y", run.y);
  if (run.dx != 0) append_attribute(place, "dx", run.dx);
  if (run.dy != 0) append_attribute(place, "dy", run.dy);
  if (run.rotate != 0) append_attribute(style, "rotate", run.rotate);
  append_text_style(style, *run.item.style);
  append_paint(style, "fill", "#000", fill, run.fill);
  append_paint(style, "stroke", "none", stroke, run.stroke);
  if (stroke != "none") append_stroke_style(style, *run.item.style);
  for (size_t i = run.decoration_count; i-- > 0;) {
    const svg_scene_decoration &line = run.decorations[i];
    const std::string line_stroke = take_text(), line_fill = take_text();
    std::string around = "<tspan", lines;
    for (const auto &[bit, name] : {std::pair(SVG_DECORATION_UNDERLINE, " underline"),
                                    {SVG_DECORATION_OVERLINE, " overline"},
                                    {SVG_DECORATION_LINE_THROUGH, " line-through"},
                                    {SVG_DECORATION_BLINK, " blink"}})
      if (line.lines & bit) lines += name;
    append_attribute(around, "text-decoration", lines.substr(1));
    append_attribute(around, "font-size", line.style->font_size);
    append_paint(around, "fill", "#000", line_fill, line.fill);
    append_paint(around, "stroke", "none", line_stroke, line.stroke);
    if (line_stroke != "none") append_stroke_style(around, *line.style);
    before.insert(0, around + ">");
    after += "</tspan>";
  }
  // Each character that is turned is a run when it is read back.
  for (std::string_view rest = run.text; !rest.empty(); place.clear()) {
    const size_t length = run.rotate != 0 ? std::max(utf8_length(rest), size_t{1}) : rest.size();
    for (const std::string &part :
         {before, std::string("<tspan"), place, style, std::string(">"),
          escaped_text(rest.substr(0, length)), std::string("</tspan>"), after})
      append(part);
    rest.remove_prefix(length);
  }
  if (run.flags & SVG_RUN_LAST) append("</text>\n");
}

void Simplifier::begin_text(const svg_scene_run &run) {
  double matrix[6];
  const Part &part = parts_.back();
  std::copy_n(run.item.matrix, 6, matrix);
  if (part.clip && !part.frames.empty())
    multiply(matrix, part.frames.back().matrix, run.item.matrix);
  push_clips_of_frames(matrix);
  const std::string clip = take_text();
  std::string element = "<text xml:space=\"preserve\"";
  append_matrix(element, "transform", matrix);
  append_reference(element, "clip-path", clip);
  append(element + ">");
}

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
  append_attribute(rest, "gradientUnits", "userSpaceOnUse");
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
  rest += ">\n";
  for (size_t i = 0; i < gradient.stop_count; ++i) {
    const svg_scene_stop &stop = gradient.stops[i];
    rest += "<stop";
    append_attribute(rest, "offset", stop.offset);
    append_attribute(rest, "stop-color", svg_color_text(stop.rgb, stop.color));
    if (stop.opacity < 1) append_attribute(rest, "stop-opacity", stop.opacity);
    rest += "/>\n";
  }
  push_definition('g', name, rest);
  texts_.back() = "url(#" + texts_.back() + ")";
}

void Simplifier::push_pattern(const svg_scene_pattern &pattern) {
  begin_part(nullptr);
  svg_scene_paint_pattern(scene_, &pattern, &CALLBACKS, this);
  const std::string content = end_part();
  if (content.empty()) {
    texts_.emplace_back("none");
    return;
  }
  std::string rest, start = "<g";
  append_attribute(rest, "patternUnits", "userSpaceOnUse");
  append_box(rest, pattern.tile);
  append_matrix(rest, "patternTransform", pattern.matrix);
  if (!pattern.clipped) append_attribute(rest, "overflow", "visible");
  append_matrix(start, "transform", pattern.content_matrix);
  const bool is_plain = start == "<g";
  rest += ">\n" + (is_plain ? content : start + ">\n" + content + "</g>\n");
  push_definition('p', "pattern", rest);
  texts_.back() = "url(#" + texts_.back() + ")";
}

// ---- Clips and masks ----------------------------------------------------------------------------

// Pushes an id, "" for none.
void Simplifier::push_mask(const svg_scene_mask *mask) {
  if (!mask) {
    texts_.emplace_back();
    return;
  }
  begin_part(nullptr);
  svg_scene_paint_mask(scene_, mask, &CALLBACKS, this);
  const std::string content = end_part();
  std::string rest, start = "<g";
  append_attribute(rest, "maskUnits", "userSpaceOnUse");
  append_box(rest, mask->area);
  append_matrix(start, "transform", mask->matrix);
  const bool is_plain = start == "<g" || content.empty();
  rest += ">\n" + (is_plain ? content : start + ">\n" + content + "</g>\n");
  push_definition('m', "mask", rest);
}

// Pushes an id, "" for none. matrix maps from where the clip applies to the user space of what is
// clipped. With has_outer the top text is the id of a clip that cuts this one, in its content's
// user space; it is replaced.
void Simplifier::push_clip(const svg_scene_clip *clip, const double matrix[6], bool has_outer) {
  if (!has_outer) texts_.emplace_back();
  if (!clip) return;
  begin_part(clip);
  svg_scene_paint_clip(scene_, clip, &CALLBACKS, this);
  const std::string own_clip = parts_.back().own_clip;
  const std::string content = end_part();
  const std::string outer = take_text();
  double product[6];
  multiply(product, matrix, clip->matrix);
  std::string rest;
  append_matrix(rest, "transform", product);
  append_reference(rest, "clip-path", own_clip.empty() ? outer : own_clip);
  push_definition('c', "clipPath", rest + ">\n" + content);
}

// The overflow clip of a group, as a path.
void Simplifier::push_viewport(const svg_scene_group &group) {
  if (!group.has_viewport || is_root(group)) {
    texts_.emplace_back();
    return;
  }
  const double *box = group.viewport, right = box[0] + box[2], bottom = box[1] + box[3];
  double points[] = {box[0], box[1], right, box[1], right, bottom, box[0], bottom};
  const svg_pada runs[] = {{SVG_PADA_MOVETO, 1, points},
                           {SVG_PADA_LINETO, 3, points + 2},
                           {SVG_PADA_CLOSEPATH, 0, nullptr}};
  std::string path = ">\n<path";
  append_attribute(path, "d", path_text(runs, 3));
  push_definition('c', "clipPath", path + "/>\n");
}

// Pushes the id of the clip that a shape in a clip path takes over from the groups around it, ""
// for none. matrix is the one from the shape's user space to the content's.
void Simplifier::push_clips_of_frames(const double matrix[6]) {
  texts_.emplace_back();
  if (!parts_.back().clip) return;
  const size_t part = parts_.size() - 1;
  const svg_scene_clip *waiting = nullptr; // the innermost one so far
  double applied[6];                       // from where it applies to the content's user space
  double place[6];
  for (size_t i = 0; i < parts_[part].frames.size(); ++i) {
    const Frame frame = parts_[part].frames[i];
    if (!frame.clip) continue;
    double inner[6];
    multiply(inner, frame.matrix, frame.clip->matrix);
    if (waiting && relate(place, inner, applied)) push_clip(waiting, place, true);
    waiting = frame.clip;
    std::copy_n(frame.matrix, 6, applied);
  }
  if (waiting && relate(place, matrix, applied)) push_clip(waiting, place, true);
}

// ---- Definitions --------------------------------------------------------------------------------

// Pushes the id of an element, which is defined when there is no equal one yet. rest is what
// follows the id, up to the end tag.
void Simplifier::push_definition(char kind, const std::string &element, const std::string &rest) {
  const auto [found, is_new] = ids_.try_emplace(element + rest);
  if (is_new) {
    found->second = kind + std::to_string(++numbers_[kind]);
    definitions_ += "<" + element;
    append_attribute(definitions_, "id", found->second);
    definitions_ += rest + "</" + element + ">\n";
  }
  texts_.push_back(found->second);
}

std::string Simplifier::take_text() {
  std::string text = std::move(texts_.back());
  texts_.pop_back();
  return text;
}

void Simplifier::begin_part(const svg_scene_clip *clip) { parts_.emplace_back().clip = clip; }

std::string Simplifier::end_part() {
  std::string content;
  for (const std::string &piece : parts_.back().pieces) content += piece;
  parts_.pop_back();
  return content;
}

void Simplifier::append(const std::string &text) {
  parts_.back().pieces.back() += text;
  parts_.back().bytes += text.size();
}

// ---- Attributes ---------------------------------------------------------------------------------

static void append_reference(std::string &out, const char *name, const std::string &id) {
  if (!id.empty()) append_attribute(out, name, "url(#" + id + ")");
}

static void append_box(std::string &out, const double box[4]) {
  append_attribute(out, "x", box[0]);
  append_attribute(out, "y", box[1]);
  append_attribute(out, "width", box[2]);
  append_attribute(out, "height", box[3]);
}

static void append_paint(std::string &out, const std::string &name, const char *initial,
                         const std::string &text, const svg_scene_paint &paint) {
  if (text != initial) append_attribute(out, name, text);
  if (text != "none" && paint.opacity < 1) append_attribute(out, name + "-opacity", paint.opacity);
}

// ---- Matrices -----------------------------------------------------------------------------------

static void multiply(double result[6], const double outer[6], const double inner[6]) {
  const double *o = outer, *i = inner;
  const double product[6] = {o[0] * i[0] + o[2] * i[1],        o[1] * i[0] + o[3] * i[1],
                             o[0] * i[2] + o[2] * i[3],        o[1] * i[2] + o[3] * i[3],
                             o[0] * i[4] + o[2] * i[5] + o[4], o[1] * i[4] + o[3] * i[5] + o[5]};
  std::copy_n(product, 6, result);
}

// The matrix from one user space to another, both known by their matrices to a third one. False
// when there is none.
static bool relate(double result[6], const double to[6], const double from[6]) {
  std::copy_n(IDENTITY, 6, result);
  if (std::equal(to, to + 6, from)) return true;
  const double determinant = to[0] * to[3] - to[1] * to[2];
  if (determinant == 0 || !std::isfinite(1 / determinant)) return false;
  const double a = to[3] / determinant, b = -to[1] / determinant;
  const double c = -to[2] / determinant, d = to[0] / determinant;
  const double inverse[6] = {a, b, c, d, -(a * to[4] + c * to[5]), -(b * to[4] + d * to[5])};
  multiply(result, inverse, from);
  return true;
}
