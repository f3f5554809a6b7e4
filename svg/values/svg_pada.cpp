// svg_pada.cpp: the values of "d": path data packed into records of points.
//
// svg_parse_attr calls the constructor for every path. The points of a run of like segments are
// gathered in a work buffer and copied once, into a block of their size. The constructor makes bad
// path data a warning and an empty value; only svg_pada_parse raises, what the path parser raises.
#include <string.h>

#include "svg/values/svg_scan.h"
#include "svg/values/svg_types.h"

static void svg_pada_cb_moveto(void *userdata, double x, double y);
static void svg_pada_cb_lineto(void *userdata, double x, double y);
static void svg_pada_cb_curveto(void *userdata, double x1, double y1, double x2, double y2,
                                double x3, double y3);
static void svg_pada_cb_elliarc(void *userdata, const ort_bezier_list *curves);
static void svg_pada_cb_closepath(void *userdata);
static void svg_pada_begin(svg_parser *p, int16_t type);
static void svg_pada_add_points(svg_parser *p);
static void svg_pada_append(svg_path_maker *p, double x, double y);
static void svg_pada_reclaim(void *item);
static void svg_pada_release(ort_core *core, void *item);

static const ort_item_desc svg_pada_ced = {sizeof(svg_pada), svg_pada_reclaim, svg_pada_release};

void svg_ctor_an_path_data(svg_parser *p, svg_a_node *node) {
  // On the stack, where it costs nothing: a short path touches its first points only.
  double points[2 * SVG_PADA_BUFFER];
  p->pada_type = SVG_PADA_NONE;
  p->pada_count = 0;
  p->pada_points = points;
  p->pada_vertices = 0;
  svg_scan_reset(p);
  auto *value = reinterpret_cast<svg_an_path_data *>(node);
  const auto parse = [=] {
    svg_pada_parse(p);
    if (ort_vtr_count(p->pada_segments) > 0) value->segments = ort_vtr_take(p->pada_segments);
    value->vertices = p->pada_vertices;
  };
  if (!ort_protected(p->core, parse)) {
    ort_warning(p->core, -1);
    if (p->pada_segments) ort_vtr_resize(p->pada_segments, 0);
  }
  p->pada_points = nullptr;
  if (p->log_level < 5) return;
  if (value->segments)
    ort_logg(p->core, "\t\t\t[path data stack with %d entries and %d vertices]\n",
             static_cast<int>(ort_vtr_count(value->segments)), value->vertices);
  else
    ort_logg(p->core, "\t\t\t[no path data]\n");
}

void svg_dtor_an_path_data(ort_core *, svg_a_node *node) {
  ort_vtr_delete(reinterpret_cast<svg_an_path_data *>(node)->segments);
}

void svg_pada_parse(svg_parser *p) {
  svg_spp_parse(p->core, 1, p->scan_pos, 0.0, 0.0, p, svg_pada_cb_closepath, svg_pada_cb_curveto,
                svg_pada_cb_elliarc, svg_pada_cb_lineto, svg_pada_cb_moveto);
  // A moveto alone draws nothing and is not stored.
  if (ort_vtr_count(p->pada_segments) > 0 || p->pada_count > 1) svg_pada_add_points(p);
}

// ---- Segments -----------------------------------------------------------------------------------

static void svg_pada_cb_moveto(void *userdata, double x, double y) {
  auto *p = static_cast<svg_parser *>(userdata);
  svg_pada_begin(p, SVG_PADA_MOVETO);
  svg_pada_append(p, x, y);
  p->pada_vertices += 1;
}

static void svg_pada_cb_lineto(void *userdata, double x, double y) {
  auto *p = static_cast<svg_parser *>(userdata);
  if (p->pada_type != SVG_PADA_LINETO || p->pada_count >= SVG_PADA_BUFFER)
    svg_pada_begin(p, SVG_PADA_LINETO);
  svg_pada_append(p, x, y);
  p->pada_vertices += 1;
}

static void svg_pada_cb_curveto(void *userdata, double x1, double y1, double x2, double y2,
                                double x3, double y3) {
  auto *p = static_cast<svg_parser *>(userdata);
  if (p->pada_type != SVG_PADA_CURVETO || p->pada_count + 2U >= SVG_PADA_BUFFER)
    svg_pada_begin(p, SVG_PADA_CURVETO);
  svg_pada_append(p, x1, y1);
  svg_pada_append(p, x2, y2);
  svg_pada_append(p, x3, y3);
  p->pada_vertices += 3;
}

static void svg_pada_cb_elliarc(void *userdata, const ort_bezier_list *curves) {
  for (int i = 0; i < curves->count; ++i) {
    const double *c = curves->segments[i];
    svg_pada_cb_curveto(userdata, c[0], c[1], c[2], c[3], c[4], c[5]);
  }
}

static void svg_pada_cb_closepath(void *userdata) {
  auto *p = static_cast<svg_parser *>(userdata);
  svg_pada_begin(p, SVG_PADA_CLOSEPATH);
  p->pada_vertices += 1;
}

// ---- Records ------------------------------------------------------------------------------------

// Completes the pending record and makes an empty one of this type pending.
static void svg_pada_begin(svg_parser *p, int16_t type) {
  svg_pada_add_points(p);
  p->pada_type = type;
  p->pada_count = 0;
}

static void svg_pada_add_points(svg_parser *p) {
  if (p->pada_type == SVG_PADA_NONE) return;
  if (!p->pada_segments) p->pada_segments = ort_vtr_new(p->core, &svg_pada_ced, 8, 0);
  auto *record = static_cast<svg_pada *>(ort_vtr_push(p->pada_segments));
  record->type = p->pada_type;
  if (p->pada_count == 0) return;
  const size_t size = p->pada_count * 2 * sizeof(double);
  record->points = static_cast<double *>(ort_malloc(p->core, size, "svg_add_pada_points"));
  memcpy(record->points, p->pada_points, size);
  record->count = p->pada_count;
}

static void svg_pada_append(svg_path_maker *p, double x, double y) {
  double *point = p->pada_points + 2 * p->pada_count++;
  point[0] = x;
  point[1] = y;
}

static void svg_pada_reclaim(void *item) { *static_cast<svg_pada *>(item) = {}; }

static void svg_pada_release(ort_core *core, void *item) {
  ort_free(core, static_cast<svg_pada *>(item)->points);
}
