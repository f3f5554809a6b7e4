// simplify_text.cpp: texts as a Simplifier writes them: each run an element of its own, in a text
// with elements around those runs that have a length or path in common.
#include <algorithm>
#include <utility>

#include "tools/simplifier.h"
#include "tools/svg_text.h"

static const svg_e_node *text_of(const svg_e_node *element);
static void append_length(std::string &out, const svg_scene_run &run, const svg_e_node *element);

// Glyphs between two runs end the text, which goes on as another one: the first run of each gets
// the place that it has by what came before.
void Simplifier::text(const svg_scene_run &run) {
  if ((run.flags & SVG_RUN_FIRST) != 0) close_text();
  for (size_t i = 0; i < run.decoration_count; ++i) {
    push_paint(run.decorations[i].fill);
    push_paint(run.decorations[i].stroke);
  }
  push_paint(run.fill);
  push_paint(run.stroke);
  const bool begins = !parts_.back().in_text;
  if (begins) begin_text(run);
  change_wrappers(run);
  const std::string content = run_text(run, begins);
  std::string before, after;
  for (size_t i = run.decoration_count; i-- > 0;) {
    before.insert(0, decoration_text(run.decorations[i]));
    after += "</tspan>";
  }
  if (const std::string href = href_of(run.link); !href.empty()) {
    std::string link = "<a";
    append_attribute(link, "xlink:href", href);
    before.insert(0, link + ">");
    after += "</a>";
  }
  append(before + "<tspan");
  append_id(run.item.element);
  append(content + "</tspan>" + after);
  if ((run.flags & SVG_RUN_LAST) != 0) close_text();
}

void Simplifier::begin_text(const svg_scene_run &run) {
  double matrix[6];
  Part &part = parts_.back();
  std::copy_n(run.item.matrix, 6, matrix);
  if (part.clip && !part.frames.empty())
    svg_scene_multiply(matrix, part.frames.back().matrix, run.item.matrix);
  const svg_e_node *element = text_of(run.item.element);
  std::string rest = " xml:space=\"preserve\"";
  append_matrix(rest, "transform", matrix);
  append_length(rest, run, element);
  if (run.item.style->writing_mode != SVG_KW_lr_tb)
    append_attribute(rest, "writing-mode", svg_get_keyword_text(run.item.style->writing_mode));
  if (part.clip) append_reference(rest, "clip-path", define_clips(clips_of_frames(matrix)));
  append("<text");
  append_id(element);
  append(rest + ">");
  part.in_text = true;
}

static const svg_e_node *text_of(const svg_e_node *element) {
  while (element->head.id != SVG_ELEM_text) element = svg_get_parent(element);
  return element;
}

// textLength and lengthAdjust, when the run has them from this element.
static void append_length(std::string &out, const svg_scene_run &run, const svg_e_node *element) {
  const svg_scene_text_length *length = run.text_length;
  while (length && length->element != element) length = length->outer;
  if (!length) return;
  append_attribute(out, "textLength", length->length);
  if (length->adjust != SVG_KW_spacing)
    append_attribute(out, "lengthAdjust", svg_get_keyword_text(length->adjust));
}

// Closes what the run is not in, and opens what it is in: a textPath, then each length.
void Simplifier::change_wrappers(const svg_scene_run &run) {
  std::vector<const svg_e_node *> wanted;
  const svg_e_node *path = run.path ? run.path->element : nullptr;
  const svg_e_node *text = text_of(run.item.element);
  for (const svg_scene_text_length *length = run.text_length; length; length = length->outer)
    if (length->element != text && length->element != path) wanted.push_back(length->element);
  if (path) wanted.push_back(path);
  std::ranges::reverse(wanted);
  std::vector<const svg_e_node *> &open = parts_.back().wrappers;
  const auto same = std::ranges::mismatch(open, wanted).in1 - open.begin();
  close_wrappers(static_cast<size_t>(same));
  for (size_t i = open.size(); i < wanted.size(); ++i) {
    std::string start = wanted[i] == path ? "<textPath" : "<tspan";
    if (wanted[i] == path) {
      std::string shape;
      append_attribute(shape, "d", path_text(run.path->segments, run.path->segment_count));
      append_attribute(start, "xlink:href", "#" + define('t', "path", shape, ""));
      if (run.path->start != 0) append_attribute(start, "startOffset", run.path->start);
      has_links_ = true;
    }
    append_length(start, run, wanted[i]);
    append(start + ">");
    open.push_back(wanted[i]);
  }
}

void Simplifier::close_wrappers(size_t left) {
  std::vector<const svg_e_node *> &open = parts_.back().wrappers;
  for (; open.size() > left; open.pop_back())
    append(open.back()->head.id == SVG_ELEM_textPath ? "</textPath>" : "</tspan>");
}

void Simplifier::close_text() {
  if (!parts_.back().in_text) return;
  close_wrappers(0);
  append("</text>\n");
  parts_.back().in_text = false;
}

// Attributes of a run and its characters; its paints are the last two texts. With begins it is
// the first one of a text.
std::string Simplifier::run_text(const svg_scene_run &run, bool begins) {
  const std::string stroke = take_text(), fill = take_text();
  std::string result;
  // An anchor holds for the place beside it. On a path, 0 would be another place than none.
  const auto is_given = [&](uint32_t flag, double value) {
    return begins ? !run.path || value != 0 : (run.flags & flag) != 0;
  };
  if (is_given(SVG_RUN_X, run.x)) append_attribute(result, "x", run.x);
  if (is_given(SVG_RUN_Y, run.y)) append_attribute(result, "y", run.y);
  if (run.dx != 0) append_attribute(result, "dx", run.dx);
  if (run.dy != 0) append_attribute(result, "dy", run.dy);
  if (run.rotate != 0) append_attribute(result, "rotate", run.rotate);
  if (run.baseline != 0) append_attribute(result, "baseline-shift", -run.baseline);
  append_text_style(result, *run.item.style);
  append_paint(result, "fill", "#000", fill, run.fill);
  append_paint(result, "stroke", "none", stroke, run.stroke);
  if (stroke != "none") append_stroke_style(result, *run.item.style);
  return result + ">" + escaped_text(run.text);
}

// The start of an element around a run; its paints are the last two texts.
std::string Simplifier::decoration_text(const svg_scene_decoration &decoration) {
  const std::string stroke = take_text(), fill = take_text();
  std::string around = "<tspan", lines;
  for (const auto &[bit, name] : {std::pair(SVG_DECORATION_UNDERLINE, " underline"),
                                  {SVG_DECORATION_OVERLINE, " overline"},
                                  {SVG_DECORATION_LINE_THROUGH, " line-through"},
                                  {SVG_DECORATION_BLINK, " blink"}})
    if ((decoration.lines & bit) != 0) lines += name;
  append_attribute(around, "text-decoration", lines.substr(1));
  append_attribute(around, "font-size", decoration.style->font_size);
  append_paint(around, "fill", "#000", fill, decoration.fill);
  append_paint(around, "stroke", "none", stroke, decoration.stroke);
  if (stroke != "none") append_stroke_style(around, *decoration.style);
  return around + ">";
}
