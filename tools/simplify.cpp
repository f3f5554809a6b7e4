// simplify.cpp: see simplify.h; the groups, shapes and images of a Simplifier, and where links
// lead.
#include "tools/simplify.h"

#include <algorithm>

#include "tools/records.h"
#include "tools/simplifier.h"
#include "tools/svg_text.h"
#include "tools/walk.h"

static constexpr double IDENTITY[6] = {1, 0, 0, 1, 0, 0};

static std::string aspect_text(int32_t align, int32_t meet);

bool print_simplified(FILE *out, const Drawing &drawing) {
  Simplifier simplifier(drawing);
  if (!simplifier.run()) return false;
  simplifier.print(out);
  return true;
}

bool Simplifier::run() {
  each_element(drawing_.svg(), [&](const svg_e_node *element) {
    const svg_a_node *href =
        element->head.id == SVG_ELEM_a ? svg_find_value(element, "xlink:href") : nullptr;
    const svg_iri *iri = href ? &as<svg_an_iri>(href)->iri : nullptr;
    if (iri && iri->kind == SVG_IRI_LINK && iri->ref.target) targets_[iri->ref.target];
  });
  parts_.emplace_back();
  return scene_.protect([this] { paint(); });
}

void Simplifier::paint() {
  svg_scene_style style;
  svg_scene_get_style(scene_.get(), drawing_.svg(), &style);
  is_open_ = style.overflow == SVG_KW_visible || style.overflow == SVG_KW_auto;
  svg_scene_paint_element(scene_.get(), nullptr, &CALLBACKS, this);
}

void Simplifier::print(FILE *out) {
  define_targets();
  std::string head = "<svg xmlns=\"http://www.w3.org/2000/svg\"";
  if (has_links_) append_attribute(head, "xmlns:xlink", "http://www.w3.org/1999/xlink");
  if (const auto root = targets_.find(drawing_.svg());
      root != targets_.end() && !root->second.id.empty())
    append_attribute(head, "id", root->second.id);
  append_attribute(head, "width", scene_.size()[0]);
  append_attribute(head, "height", scene_.size()[1]);
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

// Pieces of a group: its start tag up to its id, the id, the rest of the tag, the content.
void Simplifier::begin_group(const svg_scene_group &group) {
  close_text();
  if (is_root(group)) std::copy_n(group.item.matrix, 6, root_);
  Part *part = &parts_.back();
  const double *outer = part->frames.empty() ? IDENTITY : part->frames.back().matrix;
  Frame frame = {part->pieces.size(), part->bytes, {}, {}};
  svg_scene_multiply(frame.matrix, outer, group.item.matrix);
  part->frames.push_back(frame);
  if (!part->clip) {
    part->pieces.insert(part->pieces.end(), 4, "");
  } else if (group.clip) {
    const bool is_own = group.item.element == part->clip->element;
    paint_clip(*group.clip);
    part = &parts_.back();
    (is_own ? part->own_clips : part->frames.back().clips) = take_layers();
  }
}

// Its start tag is written last, because a group without content has none.
void Simplifier::end_group(const svg_scene_group &group) {
  close_text();
  const size_t first = parts_.back().frames.back().piece;
  const size_t bytes = parts_.back().frames.back().bytes;
  parts_.back().frames.pop_back();
  if (parts_.back().clip) return;
  if (parts_.back().bytes == bytes) {
    parts_.back().pieces.resize(first);
    return;
  }
  push_mask(group.mask);
  push_clip(group.clip);
  const std::string clip = take_text(), mask = take_text(), viewport = define_viewport(group);
  const std::string href = href_of(group.link);
  std::string attributes, end;
  if (!href.empty()) append_attribute(attributes, "xlink:href", href);
  append_matrix(attributes, "transform", group.item.matrix);
  if (group.opacity < 1) append_attribute(attributes, "opacity", group.opacity);
  append_reference(attributes, "clip-path", group.clip ? clip : viewport);
  append_reference(attributes, "mask", mask);
  if (attributes.empty()) return;
  const std::string name = href.empty() ? "g" : "a";
  std::string rest = attributes + ">\n";
  if (group.clip && !viewport.empty()) {
    rest += "<g";
    append_reference(rest, "clip-path", viewport);
    rest += ">\n";
    end = "</g>\n";
  }
  Part &part = parts_.back();
  part.pieces[first] = "<" + name;
  part.pieces[first + 2] = rest;
  const auto target = targets_.find(group.item.element);
  if (parts_.size() == 1 && target != targets_.end() && target->second.piece == 0)
    target->second.piece = first + 1;
  append(end + "</" + name + ">\n");
}

// The result has the size of the drawing, and so its outermost svg cuts off the same.
bool Simplifier::is_root(const svg_scene_group &group) const {
  return parts_.size() == 1 && group.item.element == drawing_.svg() && !group.item.use;
}

// ---- Leaves -------------------------------------------------------------------------------------

void Simplifier::shape(const svg_scene_shape &shape) {
  close_text();
  if (parts_.back().clip) return clip_shape(shape);
  push_paint(shape.fill);
  push_paint(shape.stroke);
  const std::string stroke = take_text(), fill = take_text();
  if (fill == "none" && stroke == "none") return;
  std::string rest;
  append_attribute(rest, "d", path_text(shape.segments, shape.segment_count));
  append_matrix(rest, "transform", shape.item.matrix);
  append_paint(rest, "fill", "#000", fill, shape.fill);
  if (fill != "none" && shape.fill_rule == SVG_KW_evenodd)
    append_attribute(rest, "fill-rule", "evenodd");
  append_paint(rest, "stroke", "none", stroke, shape.stroke);
  if (stroke != "none") append_stroke_style(rest, *shape.item.style);
  append("<path");
  append_id(shape.item.element);
  append(rest + "/>\n");
}

// A clip path has no groups: a shape takes over the matrices and clips of those around it.
void Simplifier::clip_shape(const svg_scene_shape &shape) {
  double matrix[6];
  const Part &part = parts_.back();
  svg_scene_multiply(matrix, part.frames.empty() ? IDENTITY : part.frames.back().matrix,
                     shape.item.matrix);
  std::string element = "<path";
  append_attribute(element, "d", path_text(shape.segments, shape.segment_count));
  append_matrix(element, "transform", matrix);
  if (shape.fill_rule == SVG_KW_evenodd) append_attribute(element, "clip-rule", "evenodd");
  append_reference(element, "clip-path", define_clips(clips_of_frames(matrix)));
  append(element + "/>\n");
}

void Simplifier::image(const svg_scene_image &image) {
  const bool has_data = image.data != nullptr;
  if (parts_.back().clip || (!has_data && image.iri->kind != SVG_IRI_NAME)) return;
  std::string rest;
  append_box(rest, image.area);
  append_matrix(rest, "transform", image.item.matrix);
  const std::string aspect = aspect_text(image.align, image.meet);
  if (aspect != "xMidYMid") append_attribute(rest, "preserveAspectRatio", aspect);
  if (!image.clipped) append_attribute(rest, "overflow", "visible");
  append_attribute(rest, "xlink:href",
                   has_data ? data_uri(image.iri->mime, image.data, image.size)
                            : image.iri->ref.text);
  has_links_ = true;
  append("<image");
  append_id(image.item.element);
  append(rest + "/>\n");
}

static std::string aspect_text(int32_t align, int32_t meet) {
  return std::string(svg_get_keyword_text(align)) + (meet ? "" : " slice");
}

void Simplifier::append(const std::string &text) {
  parts_.back().pieces.back() += text;
  parts_.back().bytes += text.size();
}

// ---- Links --------------------------------------------------------------------------------------

// "" for a link that leads nowhere.
std::string Simplifier::href_of(const svg_iri *link) {
  std::string href;
  if (link && link->kind == SVG_IRI_NAME && link->ref.text) href = link->ref.text;
  if (link && link->kind == SVG_IRI_LINK && link->ref.target) {
    Target &target = targets_[link->ref.target];
    if (target.id.empty()) {
      linked_.push_back(link->ref.target);
      target.id = "a" + std::to_string(linked_.size());
    }
    href = "#" + target.id;
  }
  has_links_ |= !href.empty();
  return href;
}

// Room for the id of an element that a link may lead to, where it is first shown.
void Simplifier::append_id(const svg_e_node *element) {
  const auto found = targets_.find(element);
  if (parts_.size() > 1 || found == targets_.end() || found->second.piece != 0) return;
  std::vector<std::string> &pieces = parts_[0].pieces;
  found->second.piece = pieces.size();
  pieces.insert(pieces.end(), 2, "");
}

// What is linked to and is not shown, or shown by its parts only, keeps a place without content; a
// view shows the same of what has lost its viewBox.
void Simplifier::define_targets() {
  for (const svg_e_node *element : linked_) {
    const Target &target = targets_[element];
    std::string id;
    append_attribute(id, "id", target.id);
    if (target.piece != 0) {
      parts_[0].pieces[target.piece] = id;
    } else if (element->head.id == SVG_ELEM_view) {
      definitions_ += "<view" + id;
      if (const svg_a_node *value = svg_find_value(element, "viewBox")) {
        const auto *box = as<svg_an_viewbox>(value);
        const double mapped[4] = {root_[0] * box->min_x + root_[4],
                                  root_[3] * box->min_y + root_[5], root_[0] * box->width,
                                  root_[3] * box->height};
        append_attribute(definitions_, "viewBox", svg_numbers(mapped, 4));
      }
      if (const svg_a_node *value = svg_find_value(element, "preserveAspectRatio")) {
        const auto *aspect = as<svg_an_aspect>(value);
        append_attribute(definitions_, "preserveAspectRatio",
                         aspect_text(aspect->align, aspect->meet));
      }
      definitions_ += "/>\n";
    } else if (element != drawing_.svg()) {
      definitions_ += "<g" + id + "/>\n";
    }
  }
}
