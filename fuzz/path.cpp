// Path data: the check, the parser and the value of "d" agree; every coordinate is finite.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>

#include "fuzz/support/fuzz.h"

namespace {

struct Counted {
  int32_t vertices = 0, movetos = 0;
  bool finite = true;
  void add(int32_t count, std::initializer_list<double> coordinates) {
    vertices += count;
    for (const double c : coordinates) finite = finite && std::isfinite(c);
  }
};

} // namespace

static void moveto(void *user, double x, double y) {
  ++static_cast<Counted *>(user)->movetos;
  static_cast<Counted *>(user)->add(1, {x, y});
}
static void lineto(void *user, double x, double y) { static_cast<Counted *>(user)->add(1, {x, y}); }
static void curveto(void *user, double x1, double y1, double x2, double y2, double x3, double y3) {
  static_cast<Counted *>(user)->add(3, {x1, y1, x2, y2, x3, y3});
}
static void elliarc(void *user, const ort_bezier_list *curves) {
  for (const auto *c = curves->segments; c < curves->segments + curves->count; ++c)
    curveto(user, (*c)[0], (*c)[1], (*c)[2], (*c)[3], (*c)[4], (*c)[5]);
}
static void closepath(void *user) { static_cast<Counted *>(user)->add(1, {}); }

void fuzz_path(const std::string &input) {
  const std::vector<char> exact(input.c_str(), input.c_str() + strlen(input.c_str()) + 1);
  const char *path = exact.data();
  size_t offset = 0;
  const int32_t wrong = svg_spp_check(path, &offset);
  EXPECT_LE(offset, exact.size() - 1);

  Counted counted;
  {
    AccountingCore core;
    Counted *user = &counted;
    EXPECT_EQ(wrong, core.protect([&] {
      svg_register_errtab(core);
      svg_spp_parse(core, 1, path, 0.0, 0.0, user, closepath, curveto, elliarc, lineto, moveto);
    }));
  }
  EXPECT_TRUE(counted.finite) << path;

  Document document("<?xml version='1.0' encoding='ISO-8859-1'?><svg><path d='" +
                    fuzz_escape(path) + "'/></svg>");
  fuzz_check(document, false);
  const svg_e_node *element = !document.svg ? nullptr : svg_as_element(document.svg->first_child);
  // A blank path, or one that begins with a bad token, is no value.
  const bool altered = std::any_of(exact.begin(), exact.end() - 1, fuzz_is_control);
  if (altered || !element || element->values_num == 0) return;
  const auto *value = reinterpret_cast<const svg_an_path_data *>(element->values[0]);
  EXPECT_EQ(value->vertices, wrong == 0 ? counted.vertices : 0) << path;
}
