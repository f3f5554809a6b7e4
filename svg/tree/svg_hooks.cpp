// svg_hooks.cpp: what particular elements do when their start tag has been read (begin hooks) and
// at their end tag (end hooks): the outermost viewport, the translation of use, bounding-box marks,
// the depth of text, the fonts.
//
// Called through svg_elem_table. Begin hooks run before the element's values are sorted and find
// them in hook_slots, or null. They raise for lack of memory only; a viewport without size is a
// warning.
#include "svg/tree/svg_hooks.h"

#include <cmath>
#include <cstddef>
#include <cstring>

#include "svg/names/svg_schema.h"
#include "svg/tree/svg_fonts.h"
#include "svg/values/svg_attr.h"
#include "svg/values/svg_record.h"
#include "svg/values/svg_types.h"

namespace {

struct viewport_side {
  double length; // in points, 0 for a percentage
  bool embedded; // given in percent
};

} // namespace

static void mark_bbox_user(svg_host *p, svg_e_node *node, uint16_t flags);
static svg_a_node *&slot(svg_tree *p, const svg_e_node *node, int row);
template <class Record> static Record *slot_value(svg_tree *p, const svg_e_node *node, int row);
static svg_unum slot_number(svg_tree *p, const svg_e_node *node, int row);
static viewport_side get_side(svg_parser *p, const svg_e_node *node, const char *name, int row);
static void log_viewport(const svg_parser *p, bool embedded);
static svg_an_trafo *new_trafo(svg_parser *p, int type, size_t numbers);
static void add_translation(svg_parser *p, const svg_e_node *node, double x, double y);
static void translate(svg_parser *p, const svg_e_node *node, svg_an_trafo *trafo, double x,
                      double y);
static ort_matrix trafo_matrix(ort_core *core, const svg_an_trafo *trafo);
static void store_matrix(svg_an_trafo *trafo, const ort_matrix &m);
static void replace_trafo(svg_parser *p, const svg_e_node *node, svg_an_trafo *old,
                          const ort_matrix &m);

void svg_beg_clipPath(svg_parser *p, svg_e_node *node) {
  mark_bbox_user(p, node, SVG_EF_BBOX_USER | SVG_EF_BBOX_USER2);
}

void svg_beg_linearGradient(svg_parser *p, svg_e_node *node) {
  mark_bbox_user(p, node, SVG_EF_BBOX_USER);
}

void svg_beg_mask(svg_parser *p, svg_e_node *node) { mark_bbox_user(p, node, SVG_EF_BBOX_USER); }

void svg_beg_pattern(svg_parser *p, svg_e_node *node) { mark_bbox_user(p, node, SVG_EF_BBOX_USER); }

void svg_beg_radialGradient(svg_parser *p, svg_e_node *node) {
  mark_bbox_user(p, node, SVG_EF_BBOX_USER);
}

// Only the outermost svg element makes the viewport; the element stack then holds the root and it.
void svg_beg_svg(svg_parser *p, svg_e_node *node) {
  if (ort_vtr_count(p->elem_stack) != 2) return;
  const auto *viewbox = slot_value<svg_an_viewbox>(p, node, SVG_ATTR_viewBox);
  const viewport_side width = get_side(p, node, "width", SVG_ATTR_svg_width);
  const viewport_side height = get_side(p, node, "height", SVG_ATTR_svg_height);
  p->viewport_width = width.length;
  p->viewport_height = height.length;
  if (viewbox && width.embedded) p->viewbox_width = viewbox->width;
  if (viewbox && height.embedded) p->viewbox_height = viewbox->height;
  if (p->log_level >= 3) log_viewport(p, width.embedded || height.embedded);
}

void svg_beg_text(svg_parser *p, svg_e_node *) { ++p->text_depth; }

void svg_end_text(svg_parser *p) {
  if (p->last_tnode) p->last_tnode->head.flags |= SVG_TF_LAST;
  p->last_tnode = nullptr;
  --p->text_depth;
}

// x and y are a translation appended to the element's transform (SVG 1.1, 5.6); their units are
// ignored.
void svg_beg_use(svg_parser *p, svg_e_node *node) {
  const double x = slot_number(p, node, SVG_ATTR_x).value;
  const double y = slot_number(p, node, SVG_ATTR_y).value;
  if (x == 0 && y == 0) return;
  if (auto *trafo = slot_value<svg_an_trafo>(p, node, SVG_ATTR_transform))
    translate(p, node, trafo, x, y);
  else
    add_translation(p, node, x, y);
}

// A font still pending had no font-face: nobody will ask for it.
void svg_beg_font(svg_parser *p, svg_e_node *node) {
  svg_font *font = svg_font_new(p, node);
  ort_free(p->core, p->font_face);
  p->font_face = font;
}

void svg_beg_font_face(svg_parser *p, svg_e_node *node) {
  if (!p->font_face) p->font_face = svg_font_new(p, node);
  svg_font *font = p->font_face;
  const auto take = [&]<class Record>(const Record *&field, int row) {
    if (const Record *value = slot_value<Record>(p, node, row)) field = value;
  };
  take(font->family, SVG_ATTR_font_family);
  take(font->size, SVG_ATTR_font_size);
  take(font->stretch, SVG_ATTR_font_stretch);
  take(font->style, SVG_ATTR_font_style);
  take(font->variant, SVG_ATTR_font_variant);
  take(font->weight, SVG_ATTR_font_weight);
  if (p->log_level < 5) return;
  ort_logg(p->core, "\t\t\t[fill SVG font %d at %p: \"", static_cast<int>(ort_vtr_count(p->fonts)),
           static_cast<void *>(font->node));
  ort_bs_clear(p->name_buf);
  svg_create_fontname(p, font, p->name_buf);
  ort_logg_unitext(p->core, ort_bs_text(p->name_buf), 0, 0, 0);
  ort_logg(p->core, "\"]\n");
}

static void release_font(ort_core *core, void *item) {
  ort_free(core, *static_cast<svg_font **>(item));
}

constexpr ort_item_desc font_ced = {sizeof(svg_font *), nullptr, release_font};

// A font that has neither id nor family stays pending: a later font-face may complete it.
void svg_end_font_face(svg_parser *p) {
  svg_font *font = p->font_face;
  if (!font || (!font->id && !font->family)) return;
  svg_note(p, 5, "\t\t\t[insert new SVG font %d]\n", static_cast<int>(ort_vtr_count(p->fonts)));
  if (!p->fonts) p->fonts = ort_vtr_new(p->core, &font_ced, 1, 0);
  ort_push(p->fonts, font);
  p->font_face = nullptr;
}

double svg_unit2pt(int unit, double value) {
  switch (unit) {
  case SVG_UNIT_IN: return value * 72.0;
  case SVG_UNIT_CM: return value * 28.346472;
  case SVG_UNIT_MM: return value * 2.8346472;
  case SVG_UNIT_PC: return value * 12.0;
  default: return value; // a pixel is a point
  }
}

// Elements that refer to this one get their own marks in svg_set_elem_flag.
static void mark_bbox_user(svg_host *p, svg_e_node *node, uint16_t flags) {
  svg_note(p, 6, "\t\t\t[%s %p needs bbox]\n", svg_elem_name(node->head.id),
           static_cast<void *>(node));
  node->head.flags |= flags;
}

// Where the value of an attribute of the element being built is found; null when it has none.
static svg_a_node *&slot(svg_tree *p, const svg_e_node *node, int row) {
  const auto offset = static_cast<size_t>(svg_attr_table[row].apo[node->head.id]);
  return p->hook_slots[offset / sizeof p->hook_slots[0]];
}

template <class Record> static Record *slot_value(svg_tree *p, const svg_e_node *node, int row) {
  return svg_record<Record>(slot(p, node, row));
}

static svg_unum slot_number(svg_tree *p, const svg_e_node *node, int row) {
  const auto *number = slot_value<svg_an_unum>(p, node, row);
  if (!number || fabs(number->value) < 1e-6) return {0, SVG_UNIT_NONE};
  return {number->value, number->head.unit};
}

static viewport_side get_side(svg_parser *p, const svg_e_node *node, const char *name, int row) {
  const svg_unum length = slot_number(p, node, row);
  if (length.value <= 0) {
    ort_warning(p->core, SVG_E_VIEWPORT, name);
    return {length.value, false};
  }
  if (length.unit == SVG_UNIT_PERCENT) return {0, true};
  return {svg_unit2pt(length.unit, length.value), false};
}

static void log_viewport(const svg_parser *p, bool embedded) {
  if (p->log_level < 5) ort_logg(p->core, "\n");
  if (embedded)
    ort_logg(p->core, "\t\t\tembedded graphics, width and height will be determined\n");
  else
    ort_logg(p->core, "\t\t\tviewport width=%g, height=%g in pixel, stand-alone graphics\n",
             p->viewport_width, p->viewport_height);
  if (p->viewbox_width != 0 || p->viewbox_height != 0)
    ort_logg(p->core, "\t\t\tviewBox width=%g, height=%g\n", p->viewbox_width, p->viewbox_height);
}

static svg_an_trafo *new_trafo(svg_parser *p, int type, size_t numbers) {
  const size_t size = offsetof(svg_an_trafo, numbers) + numbers * sizeof(double);
  auto *trafo = reinterpret_cast<svg_an_trafo *>(svg_a_node_new(p, size));
  trafo->head.row = SVG_ATTR_transform;
  trafo->type = type;
  return trafo;
}

static void add_translation(svg_parser *p, const svg_e_node *node, double x, double y) {
  const bool both = y != 0;
  svg_an_trafo *trafo =
      both ? new_trafo(p, SVG_TRAFO_TRANSLATE_XY, 2) : new_trafo(p, SVG_TRAFO_TRANSLATE, 1);
  trafo->numbers[0] = x;
  if (both) trafo->numbers[1] = y;
  p->new_value = &trafo->head; // its owner until the element has it
  svg_note(p, 6, "\t\t\t[add attribute transform type=%d: translation=(%g %g)]\n", trafo->type, x,
           y);
  svg_collect_value(p, &trafo->head, nullptr);
  const int index = svg_find_esa(p, "transform", node->head.id);
  ort_setbit(p->attrs_set, static_cast<size_t>(index));
}

// Infinite numbers can make the product NaN; the transform then stays as it is.
static void translate(svg_parser *p, const svg_e_node *node, svg_an_trafo *trafo, double x,
                      double y) {
  const bool both = trafo->type == SVG_TRAFO_TRANSLATE_XY;
  if (both || (trafo->type == SVG_TRAFO_TRANSLATE && y == 0)) {
    const double sum_x = trafo->numbers[0] + x;
    const double sum_y = both ? trafo->numbers[1] + y : 0;
    if (std::isnan(sum_x) || std::isnan(sum_y)) return;
    trafo->numbers[0] = sum_x;
    if (both) trafo->numbers[1] = sum_y;
    return;
  }
  ort_matrix translation;
  ort_matrix product = trafo_matrix(p->core, trafo);
  ort_translation_matrix(&translation, x, y);
  ort_multiply_matrix(&translation, &product);
  if (!ort_is_matrix(&product)) return;
  if (trafo->type == SVG_TRAFO_MATRIX)
    store_matrix(trafo, product);
  else
    replace_trafo(p, node, trafo, product);
}

static ort_matrix trafo_matrix(ort_core *core, const svg_an_trafo *trafo) {
  const double *n = trafo->numbers;
  ort_matrix m = {};
  switch (trafo->type) {
  case SVG_TRAFO_MATRIX: m = {n[0], n[1], n[2], n[3], n[4], n[5]}; break;
  case SVG_TRAFO_ROTATE: ort_rotation_matrix(&m, n[0]); break;
  case SVG_TRAFO_SCALE: ort_scale_matrix(&m, n[0], n[0]); break;
  case SVG_TRAFO_SCALE_XY: ort_scale_matrix(&m, n[0], n[1]); break;
  case SVG_TRAFO_SKEW_X: ort_skew_matrix(core, &m, 0, n[0]); break;
  case SVG_TRAFO_SKEW_Y: ort_skew_matrix(core, &m, n[0], 0); break;
  case SVG_TRAFO_TRANSLATE: ort_translation_matrix(&m, n[0], 0); break;
  default: ort_internal_error(core, __func__, __LINE__);
  }
  return m;
}

static void store_matrix(svg_an_trafo *trafo, const ort_matrix &m) {
  const double numbers[6] = {m.a, m.b, m.c, m.d, m.e, m.f};
  memcpy(trafo->numbers, numbers, sizeof numbers);
}

// The new record takes the old one's place everywhere before the old one goes.
static void replace_trafo(svg_parser *p, const svg_e_node *node, svg_an_trafo *old,
                          const ort_matrix &m) {
  svg_an_trafo *trafo = new_trafo(p, SVG_TRAFO_MATRIX, 6);
  store_matrix(trafo, m);
  size_t i = 0;
  while (ort_item<svg_a_node *>(p->an_values, i) != &old->head) ++i;
  ort_item<svg_a_node *>(p->an_values, i) = slot(p, node, SVG_ATTR_transform) = &trafo->head;
  const int old_type = old->type;
  svg_a_node_delete(p->core, &old->head);
  if (p->observer) p->observer(p->observer_user, node, &trafo->head, p->source, nullptr);
  if (p->log_level < 6) return;
  ort_logg(p->core, "\t\t\t[instead of transform type=%d]\n", old_type);
  ort_logg(p->core, "\t\t\t[add attribute transform type=%d: matrix=(%g %g %g %g %g %g)]\n",
           trafo->type, m.a, m.b, m.c, m.d, m.e, m.f);
}
