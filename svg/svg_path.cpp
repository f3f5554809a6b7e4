// svg_path.cpp: the grammar of path data (SVG 1.1, 8.3): from the text to absolute movetos, lines,
// cubic curves, arcs and closepaths.
//
// Called by the path accumulator (svg_pada.cpp) and by hosts, who need no document for it. One
// pass, no allocation, all state in one record on the stack. svg_spp_parse raises 10100, 10102 and
// 10104, and whatever the callbacks raise.
#include <bit>
#include <cmath>
#include <string.h>

#include "svg/svg_number.h"
#include "svg/svg_parser.h"

namespace {

constexpr int SPP_NO_MOVETO = 10100;
constexpr int SPP_UNKNOWN_COMMAND = 10102;
constexpr int SPP_BAD_NUMBER = 10104;

constexpr double SPP_MAX_NUMBER = 2147483647.0;
constexpr double SPP_MIN_RADIUS = 1e-6;
constexpr double SPP_RADIANS = 0.0174532925199433; // of a degree
constexpr int SPP_MAX_OPERANDS = 7;
constexpr int SPP_EXACT_DIGITS = 15; // integers of so many digits are exact doubles
constexpr double SPP_POWERS[SPP_EXACT_DIGITS + 1] = {1,     1e-1,  1e-2,  1e-3, 1e-4,  1e-5,
                                                     1e-6,  1e-7,  1e-8,  1e-9, 1e-10, 1e-11,
                                                     1e-12, 1e-13, 1e-14, 1e-15};
constexpr size_t SPP_REST_CHARACTERS = 40;
constexpr size_t SPP_REST_BYTES = 4 * SPP_REST_CHARACTERS;

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

struct spp_number {
  const char *end; // behind the number, or where it is at fault
  double value;
  bool valid;
};

bool spp_is_sep(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == ','; }

} // namespace

static int spp_run(spp_state *s);
ORT_NORETURN static void spp_raise(const spp_state *s, int error);
static const char *spp_operands(char command);
static bool spp_get_operands(spp_state *s, const char *kinds, double *operands);
static inline spp_number spp_get_num(const char *pos);
static inline spp_number spp_get_short(const char *pos);
static spp_number spp_get_long(const char *pos);
static spp_number spp_get_flag(const char *pos);
static inline const char *spp_skip_sep(const char *pos);
static void spp_execute(spp_state *s, char command, const double *v);
static ort_vector spp_reflected(const spp_state *s, char curve, char smooth_curve);
static void spp_quadratic(spp_state *s, double qx, double qy, double x, double y);
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
  if (offset != nullptr) *offset = static_cast<size_t>(s.pos - path);
  return error;
}

// 0, or the code of the error that is at s->pos.
static int spp_run(spp_state *s) {
  s->pos = spp_skip_sep(s->pos);
  if (*s->pos != 'm' && *s->pos != 'M') return SPP_NO_MOVETO;
  while (*s->pos != '\0') {
    s->cmd = *s->pos;
    s->absolute = ort_isupper(s->cmd);
    char command = s->absolute ? static_cast<char>(s->cmd - 'A' + 'a') : s->cmd;
    const char *kinds = spp_operands(command);
    if (kinds == nullptr) return SPP_UNKNOWN_COMMAND;
    s->pos = spp_skip_sep(s->pos + 1);
    // The first moveto may do without operands and then stays at the origin.
    if (s->previous == '\0' && !svg_is_numstart(*s->pos)) kinds = "";
    do {
      double operands[SPP_MAX_OPERANDS] = {};
      if (!spp_get_operands(s, kinds, operands)) return SPP_BAD_NUMBER;
      spp_execute(s, command, operands);
      s->previous = command;
      if (command == 'm') command = 'l';
    } while (*kinds != '\0' && svg_is_numstart(*s->pos));
  }
  return 0;
}

// The rest of the text tells where the error is, but it can be long.
static void spp_raise(const spp_state *s, int error) {
  if (error != SPP_BAD_NUMBER) ort_error(s->core, error, nullptr, nullptr, nullptr, nullptr);
  char rest[SPP_REST_BYTES + sizeof "..."];
  size_t length = 0, characters = 0;
  for (; s->pos[length] != '\0' && length < SPP_REST_BYTES; ++length) {
    const bool begins = (static_cast<unsigned char>(s->pos[length]) & 0xC0) != 0x80;
    if (begins && ++characters > SPP_REST_CHARACTERS) break;
    rest[length] = s->pos[length];
  }
  strcpy(rest + length, s->pos[length] != '\0' ? "..." : "");
  ort_ascii_error(s->core, error, 1, rest, nullptr, nullptr, nullptr);
}

// ---- Operands -----------------------------------------------------------------------------------

// The operand group of a command: x and y are coordinates, n another number, f a flag. null: no
// command.
static const char *spp_operands(char command) {
  switch (command) {
  case 'm':
  case 'l':
  case 't': return "xy";
  case 'h': return "x";
  case 'v': return "y";
  case 's':
  case 'q': return "xyxy";
  case 'c': return "xyxyxy";
  case 'a': return "nnnffxy";
  case 'z': return "";
  default: return nullptr;
  }
}

static bool spp_get_operands(spp_state *s, const char *kinds, double *operands) {
  for (; *kinds != '\0'; ++kinds, ++operands) {
    const spp_number number = *kinds == 'f' ? spp_get_flag(s->pos) : spp_get_num(s->pos);
    s->pos = number.end;
    if (!number.valid) return false;
    *operands = number.value;
    if (!s->absolute && *kinds == 'x') *operands += s->cur_x;
    if (!s->absolute && *kinds == 'y') *operands += s->cur_y;
  }
  return true;
}

static inline spp_number spp_get_num(const char *pos) {
  // Half of all signs cannot be predicted: they are read and applied without a branch.
  const uint64_t negative = *pos == '-';
  pos += negative | (*pos == '+');
  spp_number number = spp_get_short(pos);
  if (!number.valid) number = spp_get_long(pos);
  if (!number.valid) return number;
  number.end = spp_skip_sep(number.end);
  number.valid = number.value <= SPP_MAX_NUMBER;
  number.value = std::bit_cast<double>(std::bit_cast<uint64_t>(number.value) ^ negative << 63);
  return number;
}

// Nearly all numbers have few digits and no exponent. Their digits are gathered as an integer,
// which is what gathering them in a double would give. Any other text is not valid here.
static inline spp_number spp_get_short(const char *pos) {
  const auto digit = [&] { return static_cast<unsigned>(static_cast<unsigned char>(*pos)) - '0'; };
  uint64_t mantissa = 0;
  const char *begin = pos;
  for (; digit() < 10; ++pos) mantissa = 10 * mantissa + digit();
  ptrdiff_t digits = pos - begin, fraction = 0;
  if (*pos == '.') {
    begin = ++pos;
    for (; digit() < 10; ++pos) mantissa = 10 * mantissa + digit();
    fraction = pos - begin;
    digits += fraction;
  }
  if (digits == 0 || digits > SPP_EXACT_DIGITS || *pos == 'e' || *pos == 'E')
    return {pos, 0, false};
  return {pos, static_cast<double>(static_cast<int64_t>(mantissa)) * SPP_POWERS[fraction], true};
}

static spp_number spp_get_long(const char *pos) {
  svg_decimal number;
  pos = svg_read_mantissa(pos, &number);
  if (number.valid && (*pos == 'e' || *pos == 'E')) pos = svg_read_exponent(pos + 1, &number);
  return {pos, svg_decimal_value(&number), number.valid};
}

static spp_number spp_get_flag(const char *pos) {
  if (!ort_isdigit(*pos)) return {pos, 0, false};
  return {spp_skip_sep(pos + 1), *pos != '0' ? 1.0 : 0.0, true};
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

static void spp_emit_moveto(spp_state *s, double x, double y) {
  s->start_x = s->cur_x = x;
  s->start_y = s->cur_y = y;
  if (s->logging) ort_logg_cond(s->core, 3, ORT_LOG_READER, "\t\t\t\tmoveto: %g,%g\n", x, y);
  if (s->moveto != nullptr) s->moveto(s->userdata, x + s->x_offset, y + s->y_offset);
}

static void spp_emit_lineto(spp_state *s, double x, double y) {
  if (s->logging) ort_logg_cond(s->core, 3, ORT_LOG_READER, "\t\t\t\tlineto: %g,%g\n", x, y);
  if (s->lineto != nullptr) s->lineto(s->userdata, x + s->x_offset, y + s->y_offset);
  s->cur_x = x;
  s->cur_y = y;
}

static void spp_emit_curveto(spp_state *s, double x1, double y1, double x2, double y2, double x3,
                             double y3) {
  if (s->logging)
    ort_logg_cond(s->core, 3, ORT_LOG_READER, "\t\t\t\tcurveto: %g,%g  %g,%g  %g,%g\n", x1, y1, x2,
                  y2, x3, y3);
  if (s->curveto != nullptr)
    s->curveto(s->userdata, x1 + s->x_offset, y1 + s->y_offset, x2 + s->x_offset, y2 + s->y_offset,
               x3 + s->x_offset, y3 + s->y_offset);
  s->cur_x = x3;
  s->cur_y = y3;
}

static void spp_emit_closepath(spp_state *s) {
  if (s->logging) ort_logg_cond(s->core, 3, ORT_LOG_READER, "\t\t\t\tclosepath\n");
  if (s->closepath != nullptr) s->closepath(s->userdata);
  s->cur_x = s->start_x;
  s->cur_y = s->start_y;
}

// An arc with a radius of 0 is dropped without a line in its place; one that cannot be converted
// becomes a line.
static void spp_elliarc(spp_state *s, double rx, double ry, double degrees, int large_arc,
                        int sweep, double x, double y) {
  if (s->logging)
    ort_logg_cond(s->core, 3, ORT_LOG_READER,
                  "\t\t\t\telliptical arcto: %g,%g\n\t\t\t\t\txradius=%g, yradius=%g, xrotate=%g, "
                  "largearc=%d, sweep=%d\n",
                  x, y, rx, ry, degrees, large_arc, sweep);
  rx = std::fabs(rx);
  ry = std::fabs(ry);
  if (rx < SPP_MIN_RADIUS || ry < SPP_MIN_RADIUS) return;
  ort_bezier_list curves;
  const int warning = ort_elliarc_to_bezier(
      &curves, nullptr, ort_get_vector(nullptr, s->cur_x, s->cur_y), ort_get_vector(nullptr, x, y),
      rx, ry, degrees * SPP_RADIANS, large_arc, sweep, s->mode);
  if (warning != 0) {
    if (s->core != nullptr) ort_warning(s->core, warning, nullptr, nullptr, nullptr, nullptr);
    spp_emit_lineto(s, x, y);
    return;
  }
  for (int i = 0; i < curves.count; ++i)
    for (int k = 0; k < 6; k += 2) {
      curves.segments[i][k] += s->x_offset;
      curves.segments[i][k + 1] += s->y_offset;
    }
  if (s->elliarc != nullptr) s->elliarc(s->userdata, &curves);
  s->cur_x = x; // where the last curve ends
  s->cur_y = y;
}
