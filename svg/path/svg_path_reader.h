// svg_path_reader.h: the grammar of path data (SVG 1.1, 8.3): from the text to absolute movetos,
// lines, cubic curves, arcs and closepaths.
//
// What is done with a segment is compiled into the loop that reads it: for hosts in svg_path.cpp,
// for values in svg_pada.cpp. One pass, no allocation, all state in the reader. It raises what its
// sink raises.
#ifndef SVG_PATH_READER_H
#define SVG_PATH_READER_H

#include <array>
#include <bit>
#include <cmath>

#include "svg/path/svg_number.h"
#include "svg/svg.h"

constexpr double SVG_MAX_OPERAND = 2147483647.0;

inline const char *svg_skip_separators(const char *pos) {
  while (*pos == ' ' || *pos == ',' || *pos == '\n' || *pos == '\t' || *pos == '\r') ++pos;
  return pos;
}

// Reads an operand of any length and what separates it from the next one. False: *pos is at fault.
bool svg_read_operand(const char **pos, double *value);

// pos: where the error is.
ORT_NORETURN void svg_raise_path_error(ort_core *core, int error, const char *pos);

// A sink has moveto(x, y), lineto(x, y), curveto(x1, y1, x2, y2, x3, y3), elliarc(curves) and
// closepath().
template <class Sink> class svg_path_reader {
public:
  // core may be null: then nothing is logged or warned about.
  svg_path_reader(ort_core *core, const char *path, int mode, Sink sink)
      : core_(core), pos_(path), mode_(mode), sink_(sink),
        logging_(core && ort_logg_getlevel(core, ORT_LOG_READER) >= 3) {}

  const char *pos() const { return pos_; }

  // 0, or the code of the error that is at pos().
  int run() {
    pos_ = svg_skip_separators(pos_);
    if (*pos_ != 'm' && *pos_ != 'M') return SVG_E_PATH_START;
    while (*pos_ != '\0') {
      const command_shape &shape = shapes[static_cast<unsigned char>(*pos_)];
      char command = shape.command;
      if (command == '\0') return SVG_E_PATH_COMMAND;
      const double *base = (*pos_ == command ? current_ : none) + shape.axis;
      pos_ = svg_skip_separators(pos_ + 1);
      double operands[7];
      if (command == 'z') {
        closepath();
        previous_ = command;
      } else if (previous_ == '\0' && !svg_is_numstart(*pos_)) {
        moveto(0, 0); // the first one may do without operands
        previous_ = command;
      } else {
        do {
          if (!read_operands(command, shape.count, base, operands)) return SVG_E_PATH_NUMBER;
          execute(command, operands);
          previous_ = command;
          if (command == 'm') command = 'l';
        } while (svg_is_numstart(*pos_));
      }
    }
    return 0;
  }

private:
  static constexpr double none[2] = {-0.0, -0.0}; // -0 leaves every number as it is
  static constexpr double min_radius = 1e-6;
  static constexpr double radians = 0.0174532925199433; // of a degree

  ort_core *core_;
  const char *pos_; // next unread byte; after a failure the byte at fault
  int mode_;
  Sink sink_;
  bool logging_;
  char previous_ = '\0'; // lower-case letter of the command before this one
  double current_[2] = {};
  ort_vector start_ = {};   // of the subpath
  ort_vector control_ = {}; // of the last curve

  struct command_shape {
    char command = '\0'; // lower-case letter; NUL: there is none
    uint8_t count = 0;   // of the coordinates among its operands
    uint8_t axis = 0;    // of the first of them
  };

  static constexpr auto shapes = [] {
    std::array<command_shape, 256> table = {};
    const auto set = [&](const char *letters, uint8_t count, uint8_t axis) {
      for (; *letters != '\0'; ++letters)
        table[static_cast<size_t>(*letters)] =
            table[static_cast<size_t>(*letters - 'a' + 'A')] = {*letters, count, axis};
    };
    set("z", 0, 0);
    set("h", 1, 0);
    set("v", 1, 1);
    set("almt", 2, 0);
    set("qs", 4, 0);
    set("c", 6, 0);
    return table;
  }();

  // ---- Operands ---------------------------------------------------------------------------------

  // False: pos_ is at fault.
  bool read_operands(char command, int count, const double *base, double *v) {
    if (command == 'a') {
      if (!read_numbers(3, none, v) || !read_flag(v + 3) || !read_flag(v + 4)) return false;
      v += 5;
    }
    return read_numbers(count, base, v);
  }

  // Adds the base to each pair. Half of all signs cannot be predicted and are applied without a
  // branch.
  bool read_numbers(int count, const double *base, double *v) {
    const char *pos = pos_;
    for (int i = 0; i < count; ++i) {
      const uint64_t negative = *pos == '-';
      const svg_short_number number = svg_read_short(pos + negative);
      if (number.valid && number.value <= SVG_MAX_OPERAND) [[likely]] {
        const uint64_t bits = std::bit_cast<uint64_t>(number.value) ^ negative << 63;
        v[i] = std::bit_cast<double>(bits) + base[i & 1];
        pos = svg_skip_separators(number.end);
      } else {
        pos_ = pos;
        if (!svg_read_operand(&pos_, &v[i])) return false;
        v[i] += base[i & 1];
        pos = pos_;
      }
    }
    pos_ = pos;
    return true;
  }

  bool read_flag(double *value) {
    if (!ort_isdigit(*pos_)) return false;
    *value = *pos_ != '0' ? 1.0 : 0.0;
    pos_ = svg_skip_separators(pos_ + 1);
    return true;
  }

  // ---- Segments ---------------------------------------------------------------------------------

  void execute(char command, const double *v) {
    switch (command) {
    case 'm': moveto(v[0], v[1]); break;
    case 'l': lineto(v[0], v[1]); break;
    case 'h': lineto(v[0], current_[1]); break;
    case 'v': lineto(current_[0], v[0]); break;
    case 'c': curveto(v[0], v[1], v[2], v[3], v[4], v[5], {v[2], v[3]}); break;
    case 's': {
      const ort_vector first = reflected('c', 's');
      curveto(first.x, first.y, v[0], v[1], v[2], v[3], {v[0], v[1]});
      break;
    }
    case 'q': quadratic({v[0], v[1]}, v[2], v[3]); break;
    case 't': quadratic(reflected('q', 't'), v[0], v[1]); break;
    case 'a': elliarc(v); break;
    default: closepath();
    }
  }

  // The last control point through the current point when the previous command was a curve of the
  // same kind.
  ort_vector reflected(char curve, char smooth_curve) const {
    if (previous_ != curve && previous_ != smooth_curve) return {current_[0], current_[1]};
    return {current_[0] * 2.0 - control_.x, current_[1] * 2.0 - control_.y};
  }

  void quadratic(ort_vector q, double x, double y) {
    constexpr double a = 1.0 / 3.0, b = 2.0 / 3.0;
    curveto(current_[0] * a + q.x * b, current_[1] * a + q.y * b, q.x * b + x * a, q.y * b + y * a,
            x, y, q);
  }

  void moveto(double x, double y) {
    start_ = {x, y};
    log("\t\t\t\tmoveto: %g,%g\n", x, y);
    sink_.moveto(x, y);
    go_to(x, y);
  }

  void lineto(double x, double y) {
    log("\t\t\t\tlineto: %g,%g\n", x, y);
    sink_.lineto(x, y);
    go_to(x, y);
  }

  void curveto(double x1, double y1, double x2, double y2, double x, double y, ort_vector control) {
    log("\t\t\t\tcurveto: %g,%g  %g,%g  %g,%g\n", x1, y1, x2, y2, x, y);
    sink_.curveto(x1, y1, x2, y2, x, y);
    control_ = control;
    go_to(x, y);
  }

  void closepath() {
    log("\t\t\t\tclosepath\n");
    sink_.closepath();
    go_to(start_.x, start_.y);
  }

  // An arc with a radius of 0 is dropped without a line in its place; one that cannot be converted
  // becomes a line.
  void elliarc(const double *v) {
    const bool large_arc = v[3] != 0, sweep = v[4] != 0;
    const double x = v[5], y = v[6];
    log("\t\t\t\telliptical arcto: %g,%g\n\t\t\t\t\txradius=%g, yradius=%g, xrotate=%g, "
        "largearc=%d, sweep=%d\n",
        x, y, v[0], v[1], v[2], large_arc, sweep);
    const double rx = std::fabs(v[0]), ry = std::fabs(v[1]);
    if (rx < min_radius || ry < min_radius) return;
    ort_bezier_list curves;
    const int warning =
        ort_elliarc_to_bezier(curves.segments, &curves.count, nullptr, {current_[0], current_[1]},
                              {x, y}, rx, ry, v[2] * radians, large_arc, sweep, mode_);
    if (warning != 0) {
      if (core_) ort_warning(core_, warning);
      lineto(x, y);
      return;
    }
    sink_.elliarc(&curves);
    go_to(x, y); // where the last curve ends
  }

  void go_to(double x, double y) {
    current_[0] = x;
    current_[1] = y;
  }

  template <class... Values> void log(const char *format, Values... values) const {
    if (logging_) ort_logg(core_, format, values...);
  }
};

#endif
