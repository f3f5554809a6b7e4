// svg_pada.cpp: the values of "d": path data packed into records of points.
//
// svg_parse_attr calls the constructor for every path. Points are gathered in a work buffer and
// copied once, those of most paths into one block with their records. The constructor makes bad
// path data a warning and an empty value; only svg_pada_parse raises, what the reader of paths
// raises.
#include <cstring>

#include "svg/path/svg_path_reader.h"
#include "svg/values/svg_scan.h"
#include "svg/values/svg_types.h"

static void gather(svg_parser *p);
static double *add_segment(svg_parser *p, int16_t type, uint16_t count);
static void begin_record(svg_parser *p, int16_t type);
static void complete_record(svg_parser *p);
[[gnu::noinline]] static void store_points(svg_parser *p);
static ort_vtr *take_records(svg_parser *p);
static void svg_pada_release(ort_core *core, void *item);

// Of records whose points are blocks of their own; and of those whose points follow them.
static const ort_item_desc svg_pada_ced = {sizeof(svg_pada), nullptr, svg_pada_release};
static const ort_item_desc joined_records = {sizeof(svg_pada), nullptr, nullptr};

namespace {

// Adding 0 makes 0 of -0.
struct maker {
  svg_parser *p;

  void moveto(double x, double y) const {
    begin_record(p, SVG_PADA_MOVETO);
    put(add_segment(p, SVG_PADA_MOVETO, 1), x, y);
  }
  void lineto(double x, double y) const { put(add_segment(p, SVG_PADA_LINETO, 1), x, y); }
  void curveto(double x1, double y1, double x2, double y2, double x, double y) const {
    double *points = add_segment(p, SVG_PADA_CURVETO, 3);
    put(points, x1, y1);
    put(points + 2, x2, y2);
    put(points + 4, x, y);
  }
  void elliarc(const ort_bezier_list *curves) const {
    for (int i = 0; i < curves->count; ++i) {
      const double *c = curves->segments[i];
      curveto(c[0], c[1], c[2], c[3], c[4], c[5]);
    }
  }
  void closepath() const {
    begin_record(p, SVG_PADA_CLOSEPATH);
    ++p->pada_vertices;
  }

  static void put(double *point, double x, double y) {
    point[0] = x + 0.0;
    point[1] = y + 0.0;
  }
};

} // namespace

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
    gather(p);
    if (ort_vtr_count(p->pada_segments) > 0) value->segments = take_records(p);
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
  gather(p);
  store_points(p);
}

static void gather(svg_parser *p) {
  p->pada_gathered = 0;
  p->pada_stored = ort_vtr_count(p->pada_segments);
  svg_path_reader<maker> reader(p->core, p->scan_pos, 1, {p});
  const int error = reader.run();
  if (error != 0) svg_raise_path_error(p->core, error, reader.pos());
  // A moveto alone draws nothing and is not stored.
  if (ort_vtr_count(p->pada_segments) > 0 || p->pada_count > 1) complete_record(p);
}

// ---- Records ------------------------------------------------------------------------------------

// Adds a segment to the pending record, or to a new one when that is of another type or full.
// Returns where its points go.
static double *add_segment(svg_parser *p, int16_t type, uint16_t count) {
  if (p->pada_type != type || p->pada_count + count > SVG_PADA_BUFFER) begin_record(p, type);
  if (p->pada_gathered + count > SVG_PADA_BUFFER) store_points(p);
  double *points = p->pada_points + 2 * p->pada_gathered;
  p->pada_gathered += count;
  p->pada_count = static_cast<uint16_t>(p->pada_count + count);
  p->pada_vertices += count;
  return points;
}

// Completes the pending record and makes an empty one of this type pending.
static void begin_record(svg_parser *p, int16_t type) {
  complete_record(p);
  p->pada_type = type;
  p->pada_count = 0;
}

static void complete_record(svg_parser *p) {
  if (p->pada_type == SVG_PADA_NONE) return;
  if (!p->pada_segments) p->pada_segments = ort_vtr_new(p->core, &svg_pada_ced, 8, 0);
  ort_push<svg_pada>(p->pada_segments, {p->pada_type, p->pada_count, nullptr});
}

// Copies the points of the completed records into blocks of their own. Those of the pending one are
// then alone in the buffer.
static void store_points(svg_parser *p) {
  const double *from = p->pada_points;
  for (; p->pada_stored < ort_vtr_count(p->pada_segments); ++p->pada_stored) {
    auto &record = ort_item<svg_pada>(p->pada_segments, p->pada_stored);
    if (record.count == 0) continue;
    const size_t size = record.count * 2 * sizeof(double);
    record.points = static_cast<double *>(ort_malloc(p->core, size, "svg_add_pada_points"));
    memcpy(record.points, from, size);
    from += 2 * record.count;
  }
  p->pada_gathered -= static_cast<size_t>(from - p->pada_points) / 2;
  memmove(p->pada_points, from, p->pada_gathered * 2 * sizeof(double));
}

// Most paths fit into the buffer, and then points and records become one block.
static ort_vtr *take_records(svg_parser *p) {
  if (p->pada_stored > 0) {
    store_points(p);
    return ort_vtr_take(p->pada_segments, &svg_pada_ced, 0);
  }
  const size_t size = p->pada_gathered * 2 * sizeof(double);
  ort_vtr *records = ort_vtr_take(p->pada_segments, &joined_records, size);
  auto *record = static_cast<svg_pada *>(ort_vtr_at(records, 0));
  svg_pada *end = record + ort_vtr_count(records);
  auto *points = reinterpret_cast<double *>(end);
  memcpy(points, p->pada_points, size);
  for (; record < end; ++record) {
    if (record->count > 0) record->points = points;
    points += 2 * record->count;
  }
  return records;
}

static void svg_pada_release(ort_core *core, void *item) {
  ort_free(core, static_cast<svg_pada *>(item)->points);
}
