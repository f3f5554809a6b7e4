// svg_path.cpp: the grammar of path data (SVG 1.1, 8.3): from the text to absolute movetos, lines,
// cubic curves, arcs and closepaths.
//
// Called by the path accumulator (svg_pada.cpp) and by hosts, who need no document for it. One
// pass, no allocation, all state in one record on the stack. svg_spp_parse raises SVG_E_PATH_* and
// whatever the callbacks raise.
#include <bit>
#include <cmath>

#include "svg/path/svg_number.h"
#include "svg/path/svg_rest.h"
#include "svg/svg.h"

constexpr double SPP_MAX_NUMBER = 2147483647.0;
constexpr double SPP_MIN_RADIUS = 1e-6;
constexpr double SPP_RADIANS = 0.0174532925199433; // of a degree
constexpr int SPP_MAX_OPERANDS = 7;

namespace {

// State of one call.
struct spp_state {
  ort_core *core = nullptr;  // null: nothing is logged or warned about
  const char *pos = nullptr; // next unread byte; after a failure the byte at fault
  double x_offset = 0, y_offset = 0;
  char cmd = '\0';
  int32_t absolute = 0;
  double cur_x = 0, cur_y = 0;
  void *userdata = nullptr;
  spp_closepath_fn closepath = nullptr;
  spp_curveto_fn curveto = nullptr;
  spp_elliarc_fn elliarc = nullptr;
  spp_lineto_fn lineto = nullptr;
  spp_moveto_fn moveto = nullptr;
  int32_t mode = 0;
  bool logging = false;
  double start_x = 0, start_y = 0; // of the subpath
  double ctrl_x = 0, ctrl_y = 0;   // of the last curve
  char previous = '\0';            // lower-case letter of the command before this one
};

} // namespace

static bool spp_is_numstart(char c) { return svg_is_numstart(c); }

static bool spp_is_sep(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == ',';
}

static int spp_run(spp_state *s);
static bool spp_is_command(char letter);
ORT_NORETURN static void spp_raise(const spp_state *s, int error);
static bool spp_get_operands(spp_state *s, char command, double *v);
static bool spp_get_x(spp_state *s, double *x);
static bool spp_get_y(spp_state *s, double *y);
static bool spp_get_points(spp_state *s, int count, double *v);
static bool spp_get_nums(spp_state *s, int count, double base, double *v);
static inline const char *spp_get_num(spp_state *s, const char *pos, double *value);
static const char *spp_get_long(spp_state *s, const char *pos, double *value);
static bool spp_get_flag(spp_state *s, double *value);
static inline const char *spp_skip_sep(const char *pos);
static void spp_execute(spp_state *s, char command, const double *v);
static ort_vector spp_reflected(const spp_state *s, char curve, char smooth_curve);
static void spp_quadratic(spp_state *s, double qx, double qy, double x, double y);
template <class... Values>
static void log_segment(const spp_state *s, const char *format, Values... values);
static void spp_emit_moveto(spp_state *s, double x, double y);
static void spp_emit_lineto(spp_state *s, double x, double y);
static void spp_emit_curveto(spp_state *s, double x1, double y1, double x2, double y2, double x3,
                             double y3);
static void spp_emit_closepath(spp_state *s);
static void spp_elliarc(spp_state *s, double rx, double ry, double degrees, int large_arc,
                        int sweep, double x, double y);

void svg_spp_parse(ort_core *core, int32_t mode, const char *path, double x_offset, double y_offset,
                   void *userdata, spp_closepath_fn closepath, spp_curveto_fn curveto,
                   spp_elliarc_fn elliarc, spp_lineto_fn lineto, spp_moveto_fn moveto) {
  spp_state s = {.core = core,
                 .pos = path,
                 .x_offset = x_offset,
                 .y_offset = y_offset,
                 .userdata = userdata,
                 .closepath = closepath,
                 .curveto = curveto,
                 .elliarc = elliarc,
                 .lineto = lineto,
                 .moveto = moveto,
                 .mode = mode,
                 .logging = ort_logg_getlevel(core, ORT_LOG_READER) >= 3};
  const int error = spp_run(&s);
  if (error != 0) spp_raise(&s, error);
}

int32_t svg_spp_check(const char *path, size_t *offset) {
  spp_state s = {.pos = path};
  const int error = spp_run(&s);
  if (offset) *offset = static_cast<size_t>(s.pos - path);
  return error;
}

// 0, or the code of the error that is at s->pos.
static int spp_run(spp_state *s) {
  s->pos = spp_skip_sep(s->pos);
  if (*s->pos != 'm' && *s->pos != 'M') return SVG_E_PATH_START;
  while (*s->pos != '\0') {
    s->cmd = *s->pos;
    s->absolute = ort_isupper(s->cmd);
    char command = s->absolute ? static_cast<char>(s->cmd - 'A' + 'a') : s->cmd;
    if (!spp_is_command(command)) return SVG_E_PATH_COMMAND;
    s->pos = spp_skip_sep(s->pos + 1);
    // The first moveto may do without operands and then stays at the origin.
    const bool bare = command == 'z' || (s->previous == '\0' && !spp_is_numstart(*s->pos));
    do {
      double operands[SPP_MAX_OPERANDS];
      operands[0] = operands[1] = 0;
      if (!bare && !spp_get_operands(s, command, operands)) return SVG_E_PATH_NUMBER;
      spp_execute(s, command, operands);
      s->previous = command;
      if (command == 'm') command = 'l';
    } while (!bare && spp_is_numstart(*s->pos));
  }
  return 0;
}

static bool spp_is_command(char letter) {
  constexpr auto letters = [] {
    uint32_t bits = 0;
    for (const char *l = "achlmqstvz"; *l != '\0'; ++l) bits |= 1U << (*l - 'a');
    return bits;
  }();
  const unsigned number = static_cast<unsigned char>(letter) - unsigned{'a'};
  return number < 26 && (letters >> number & 1) != 0;
}

// The rest of the text tells where the error is, but it can be long.
static void spp_raise(const spp_state *s, int error) {
  if (error != SVG_E_PATH_NUMBER) ort_error(s->core, error);
  char rest[SVG_REST_SIZE];
  svg_cut_rest(rest, s->pos);
  ort_ascii_error(s->core, error, 1, rest);
}

// ---- Operands -----------------------------------------------------------------------------------

// Reads the operand group of a command, coordinates as absolute ones. False: s->pos is at fault.
static bool spp_get_operands(spp_state *s, char command, double *v) {
  switch (command) {
  case 'h': return spp_get_x(s, v);
  case 'v': return spp_get_y(s, v);
  case 's':
  case 'q': return spp_get_points(s, 2, v);
  case 'c': return spp_get_points(s, 3, v);
  case 'a':
    return spp_get_nums(s, 3, -0.0, v) && spp_get_flag(s, v + 3) && spp_get_flag(s, v + 4) &&
           spp_get_points(s, 1, v + 5);
  default: return spp_get_points(s, 1, v);
  }
}

static bool spp_get_x(spp_state *s, double *x) {
  return spp_get_nums(s, 1, s->absolute ? -0.0 : s->cur_x, x);
}

static bool spp_get_y(spp_state *s, double *y) {
  return spp_get_nums(s, 1, s->absolute ? -0.0 : s->cur_y, y);
}

static bool spp_get_points(spp_state *s, int count, double *v) {
  const double base_x = s->absolute ? -0.0 : s->cur_x; // -0 leaves every number as it is
  const double base_y = s->absolute ? -0.0 : s->cur_y;
  const char *pos = s->pos;
  for (; count > 0; --count, v += 2) {
    pos = spp_get_num(s, pos, &v[0]);
    if (!pos) return false;
    pos = spp_get_num(s, pos, &v[1]);
    if (!pos) return false;
    v[0] += base_x;
    v[1] += base_y;
  }
  s->pos = pos;
  return true;
}

static bool spp_get_nums(spp_state *s, int count, double base, double *v) {
  const char *pos = s->pos;
  for (; count > 0; --count, ++v) {
    pos = spp_get_num(s, pos, v);
    if (!pos) return false;
    *v += base;
  }
  s->pos = pos;
  return true;
}

// Returns where the next operand begins, or null and leaves s->pos at the fault. Half of all signs
// cannot be predicted and are applied without a branch.
static inline const char *spp_get_num(spp_state *s, const char *pos, double *value) {
  const uint64_t negative = *pos == '-';
  const svg_short_number number = svg_read_short(pos + negative);
  if (!number.valid || number.value > SPP_MAX_NUMBER) return spp_get_long(s, pos, value);
  *value = std::bit_cast<double>(std::bit_cast<uint64_t>(number.value) ^ negative << 63);
  return spp_skip_sep(number.end);
}

static const char *spp_get_long(spp_state *s, const char *pos, double *value) {
  const bool negative = *pos == '-';
  if (negative || *pos == '+') ++pos;
  svg_decimal number;
  pos = svg_read_mantissa(pos, &number);
  if (number.valid && (*pos == 'e' || *pos == 'E')) pos = svg_read_exponent(pos + 1, &number);
  const double magnitude = svg_decimal_value(&number);
  *value = negative ? -magnitude : magnitude;
  s->pos = number.valid ? spp_skip_sep(pos) : pos;
  return number.valid && magnitude <= SPP_MAX_NUMBER ? s->pos : nullptr;
}

static bool spp_get_flag(spp_state *s, double *value) {
  if (!ort_isdigit(*s->pos)) return false;
  *value = *s->pos != '0' ? 1.0 : 0.0;
  s->pos = spp_skip_sep(s->pos + 1);
  return true;
}

static inline const char *spp_skip_sep(const char *pos) {
  while (spp_is_sep(*pos)) ++pos;
  return pos;
}

// ---- Segments -----------------------------------------------------------------------------------

static void spp_execute(spp_state *s, char command, const double *v) {
  switch (command) {
  case 'm': spp_emit_moveto(s, v[0], v[1]); break;
  case 'l': spp_emit_lineto(s, v[0], v[1]); break;
  case 'h': spp_emit_lineto(s, v[0], s->cur_y); break;
  case 'v': spp_emit_lineto(s, s->cur_x, v[0]); break;
  case 'c':
    spp_emit_curveto(s, v[0], v[1], v[2], v[3], v[4], v[5]);
    s->ctrl_x = v[2];
    s->ctrl_y = v[3];
    break;
  case 's': {
    const ort_vector first = spp_reflected(s, 'c', 's');
    spp_emit_curveto(s, first.x, first.y, v[0], v[1], v[2], v[3]);
    s->ctrl_x = v[0];
    s->ctrl_y = v[1];
    break;
  }
  case 'q': spp_quadratic(s, v[0], v[1], v[2], v[3]); break;
  case 't': {
    const ort_vector control = spp_reflected(s, 'q', 't');
    spp_quadratic(s, control.x, control.y, v[0], v[1]);
    break;
  }
  case 'a': spp_elliarc(s, v[0], v[1], v[2], v[3] != 0, v[4] != 0, v[5], v[6]); break;
  default: spp_emit_closepath(s);
  }
}

// The last control point through the current point when the previous command was a curve of the
// same kind.
static ort_vector spp_reflected(const spp_state *s, char curve, char smooth_curve) {
  if (s->previous != curve && s->previous != smooth_curve) return {s->cur_x, s->cur_y};
  return {s->cur_x * 2.0 - s->ctrl_x, s->cur_y * 2.0 - s->ctrl_y};
}

static void spp_quadratic(spp_state *s, double qx, double qy, double x, double y) {
  constexpr double a = 1.0 / 3.0, b = 2.0 / 3.0;
  spp_emit_curveto(s, s->cur_x * a + qx * b, s->cur_y * a + qy * b, qx * b + x * a, qy * b + y * a,
                   x, y);
  s->ctrl_x = qx;
  s->ctrl_y = qy;
}

template <class... Values>
static void log_segment(const spp_state *s, const char *format, Values... values) {
  if (s->logging) ort_logg(s->core, format, values...);
}

static void spp_emit_moveto(spp_state *s, double x, double y) {
  s->start_x = s->cur_x = x;
  s->start_y = s->cur_y = y;
  log_segment(s, "\t\t\t\tmoveto: %g,%g\n", x, y);
  if (s->moveto) s->moveto(s->userdata, x + s->x_offset, y + s->y_offset);
}

static void spp_emit_lineto(spp_state *s, double x, double y) {
  log_segment(s, "\t\t\t\tlineto: %g,%g\n", x, y);
  if (s->lineto) s->lineto(s->userdata, x + s->x_offset, y + s->y_offset);
  s->cur_x = x;
  s->cur_y = y;
}

static void spp_emit_curveto(spp_state *s, double x1, double y1, double x2, double y2, double x3,
                             double y3) {
  log_segment(s, "\t\t\t\tcurveto: %g,%g  %g,%g  %g,%g\n", x1, y1, x2, y2, x3, y3);
  if (s->curveto)
    s->curveto(s->userdata, x1 + s->x_offset, y1 + s->y_offset, x2 + s->x_offset, y2 + s->y_offset,
               x3 + s->x_offset, y3 + s->y_offset);
  s->cur_x = x3;
  s->cur_y = y3;
}

static void spp_emit_closepath(spp_state *s) {
  log_segment(s, "\t\t\t\tclosepath\n");
  if (s->closepath) s->closepath(s->userdata);
  s->cur_x = s->start_x;
  s->cur_y = s->start_y;
}

// An arc with a radius of 0 is dropped without a line in its place; one that cannot be converted
// becomes a line.
static void spp_elliarc(spp_state *s, double rx, double ry, double degrees, int large_arc,
                        int sweep, double x, double y) {
  log_segment(s,
              "\t\t\t\telliptical arcto: %g,%g\n\t\t\t\t\txradius=%g, yradius=%g, xrotate=%g, "
              "largearc=%d, sweep=%d\n",
              x, y, rx, ry, degrees, large_arc, sweep);
  rx = std::fabs(rx);
  ry = std::fabs(ry);
  if (rx < SPP_MIN_RADIUS || ry < SPP_MIN_RADIUS) return;
  ort_bezier_list curves;
  const int warning = ort_elliarc_to_bezier(
      curves.segments, &curves.count, nullptr, ort_get_vector(nullptr, s->cur_x, s->cur_y),
      ort_get_vector(nullptr, x, y), rx, ry, degrees * SPP_RADIANS, large_arc, sweep, s->mode);
  if (warning != 0) {
    if (s->core) ort_warning(s->core, warning);
    spp_emit_lineto(s, x, y);
    return;
  }
  for (int i = 0; i < curves.count; ++i)
    for (int k = 0; k < 6; k += 2) {
      curves.segments[i][k] += s->x_offset;
      curves.segments[i][k + 1] += s->y_offset;
    }
  if (s->elliarc) s->elliarc(s->userdata, &curves);
  s->cur_x = x; // where the last curve ends
  s->cur_y = y;
}
