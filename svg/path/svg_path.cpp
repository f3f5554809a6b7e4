// svg_path.cpp: path data (SVG 1.1, 8.3) for hosts, who need no document for it.
//
// Allocates nothing. svg_spp_parse raises SVG_E_PATH_* and whatever the callbacks raise.
#include "svg/path/svg_path_reader.h"

#include "svg/path/svg_rest.h"

namespace {

struct callbacks {
  void *userdata = nullptr;
  double x_offset = 0, y_offset = 0;
  spp_closepath_fn closepath_ = nullptr;
  spp_curveto_fn curveto_ = nullptr;
  spp_elliarc_fn elliarc_ = nullptr;
  spp_lineto_fn lineto_ = nullptr;
  spp_moveto_fn moveto_ = nullptr;

  void moveto(double x, double y) const {
    if (moveto_) moveto_(userdata, x + x_offset, y + y_offset);
  }
  void lineto(double x, double y) const {
    if (lineto_) lineto_(userdata, x + x_offset, y + y_offset);
  }
  void curveto(double x1, double y1, double x2, double y2, double x, double y) const {
    if (curveto_)
      curveto_(userdata, x1 + x_offset, y1 + y_offset, x2 + x_offset, y2 + y_offset, x + x_offset,
               y + y_offset);
  }
  void elliarc(ort_bezier_list *curves) const {
    for (int i = 0; i < curves->count; ++i)
      for (int k = 0; k < 6; k += 2) {
        curves->segments[i][k] += x_offset;
        curves->segments[i][k + 1] += y_offset;
      }
    if (elliarc_) elliarc_(userdata, curves);
  }
  void closepath() const {
    if (closepath_) closepath_(userdata);
  }
};

} // namespace

void svg_spp_parse(ort_core *core, int32_t mode, const char *path, double x_offset, double y_offset,
                   void *userdata, spp_closepath_fn closepath, spp_curveto_fn curveto,
                   spp_elliarc_fn elliarc, spp_lineto_fn lineto, spp_moveto_fn moveto) {
  svg_path_reader<callbacks> reader(
      core, path, mode,
      {userdata, x_offset, y_offset, closepath, curveto, elliarc, lineto, moveto});
  const int error = reader.run();
  if (error != 0) svg_raise_path_error(core, error, reader.pos());
}

int32_t svg_spp_check(const char *path, size_t *offset) {
  svg_path_reader<callbacks> reader(nullptr, path, 0, {});
  const int error = reader.run();
  if (offset) *offset = static_cast<size_t>(reader.pos() - path);
  return error;
}

// The rest of the text tells where the error is, but it can be long.
void svg_raise_path_error(ort_core *core, int error, const char *pos) {
  if (error != SVG_E_PATH_NUMBER) ort_error(core, error);
  char rest[SVG_REST_SIZE];
  svg_cut_rest(rest, pos);
  ort_ascii_error(core, error, 1, rest);
}

bool svg_read_operand(const char **pos, double *value) {
  const char *s = *pos;
  const bool negative = *s == '-';
  if (negative || *s == '+') ++s;
  svg_decimal number;
  s = svg_read_mantissa(s, &number);
  if (number.valid && (*s == 'e' || *s == 'E')) s = svg_read_exponent(s + 1, &number);
  const double magnitude = svg_decimal_value(&number);
  *value = negative ? -magnitude : magnitude;
  *pos = number.valid ? svg_skip_separators(s) : s;
  return number.valid && magnitude <= SVG_MAX_OPERAND;
}
