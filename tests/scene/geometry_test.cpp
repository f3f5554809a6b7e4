#include <algorithm>
#include <charconv>
#include <gtest/gtest.h>
#include <numbers>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "scene/scene_length.h"
#include "tests/support/cases.h"
#include "tests/support/reader.h"

namespace {

// Segments as the reader stores them.
class Runs {
public:
  Runs() = default;
  explicit Runs(ort_core *core, const std::string &path) {
    svg_register_errtab(core);
    svg_spp_parse(core, 1, path.c_str(), 0, 0, this, closepath, curveto, elliarc, lineto, moveto);
    const double *at = points_.data();
    for (svg_pada &run : runs_) {
      run.points = const_cast<double *>(at);
      at += 2 * run.count;
    }
  }
  const svg_pada *data() const { return runs_.data(); }
  size_t size() const { return runs_.size(); }

private:
  static void closepath(void *user) { add(user, SVG_PADA_CLOSEPATH, {}); }
  static void moveto(void *user, double x, double y) { add(user, SVG_PADA_MOVETO, {x, y}); }
  static void lineto(void *user, double x, double y) { add(user, SVG_PADA_LINETO, {x, y}); }
  static void curveto(void *user, double x1, double y1, double x2, double y2, double x, double y) {
    add(user, SVG_PADA_CURVETO, {x1, y1, x2, y2, x, y});
  }
  static void elliarc(void *user, const ort_bezier_list *curves) {
    for (int i = 0; i < curves->count; ++i) {
      const double *c = curves->segments[i];
      curveto(user, c[0], c[1], c[2], c[3], c[4], c[5]);
    }
  }
  static void add(void *user, int16_t type, std::initializer_list<double> numbers) {
    auto *runs = static_cast<Runs *>(user);
    if (type == SVG_PADA_MOVETO || runs->runs_.empty() || runs->runs_.back().type != type)
      runs->runs_.push_back({type, 0, nullptr});
    runs->runs_.back().count += static_cast<uint16_t>(numbers.size() / 2);
    runs->points_.insert(runs->points_.end(), numbers);
  }

  std::vector<svg_pada> runs_;
  std::vector<double> points_;
};

// With at most 6 digits; -0 and what is 0 but for rounding as 0.
std::string text(double value) {
  char number[32];
  if (std::fabs(value) < 1e-9) value = 0;
  return {number, std::to_chars(number, number + 32, value, std::chars_format::general, 6).ptr};
}

std::string text(std::initializer_list<double> values) {
  std::string result;
  for (double value : values) result += (result.empty() ? "" : " ") + text(value);
  return result;
}

std::vector<double> numbers(std::istream &in) {
  std::vector<double> result;
  for (std::string word; in >> word;)
    result.push_back(word == "inf" ? HUGE_VAL : std::strtod(word.c_str(), nullptr));
  return result;
}

class Geometry : public testing::Test {
protected:
  Runs path(const std::string &text) { return Runs(core, text); }
  AccountingCore core;
};

TEST_F(Geometry, FitsBoxesIntoViewports) {
  // ALIGN MEET: viewBox -> scales, translations, into 10 20 200 100
  expect_cases(R"(
xMidYMid 1 0 0 100 100 -> 1 1 60 20 | xMinYMin 1 5 6 100 100 -> 1 1 5 14
xMaxYMax 1 0 0 100 100 -> 1 1 110 20 | xMidYMid 0 0 0 100 100 -> 2 2 10 -30
xMinYMax 0 0 0 100 100 -> 2 2 10 -80 | xMaxYMin 0 0 0 100 100 -> 2 2 10 20
xMidYMin 1 0 0 100 100 -> 1 1 60 20 | xMidYMin 1 0 0 100 10 -> 2 2 10 20
xMidYMax 1 -10 0 100 10 -> 2 2 30 100 | xMinYMid 1 0 0 100 10 -> 2 2 10 60
none 1 10 10 100 200 -> 2 0.5 -10 15 | xMaxYMid 1 0 0 100 10 -> 2 2 10 60
none 0 0 0 0 100 -> none | none 0 0 0 100 -1 -> none | none 1 0 0 1e-300 1e-320 -> none
none 0 1e308 0 1 1 -> none)",
               [](const std::string &input) -> std::string {
                 std::istringstream in(input);
                 std::string align;
                 int meet = 0;
                 in >> align >> meet;
                 const std::vector<double> from = numbers(in);
                 const double to[4] = {10, 20, 200, 100};
                 int32_t key = 1;
                 while (svg_get_keyword_text(key) != align) ++key;
                 double m[6];
                 if (!svg_scene_fit(m, from.data(), to, key, meet)) return "none";
                 EXPECT_EQ(m[1], 0);
                 EXPECT_EQ(m[2], 0);
                 return text({m[0], m[3], m[4], m[5]});
               });
}

TEST_F(Geometry, InvertsMatrices) {
  for (const auto &[a, b, c, d] : {std::array{2., 0., 0., 4.},
                                   {1., 2., 3., 4.},
                                   {0., -1., 1., 0.},
                                   {1e-200, 0., 0., 1e-200},
                                   {1e150, 1., 0., 1e150}}) {
    const double m[6] = {a, b, c, d, 5, -6};
    double inverse[6], product[6];
    ASSERT_TRUE(svg_scene_invert(inverse, m));
    svg_scene_multiply(product, inverse, m);
    for (int i = 0; i < 6; ++i) EXPECT_NEAR(product[i], SVG_SCENE_IDENTITY[i], 1e-9);
  }
  for (const auto &[a, b, c, d] : {std::array{0., 0., 0., 0.},
                                   {1., 2., 2., 4.},
                                   {0., 0., 1., 0.},
                                   {1e-320, 0., 0., 1e-320},
                                   {HUGE_VAL, 0., 0., 1.}}) {
    const double m[6] = {a, b, c, d, 0, 0};
    double inverse[6];
    EXPECT_FALSE(svg_scene_invert(inverse, m)) << a;
  }
}

// ---- Extents ------------------------------------------------------------------------------------

std::string box_text(const svg_scene_extent &extent) {
  double box[4];
  if (!svg_scene_get_extent(extent, box)) return "none";
  return text({box[0], box[1], box[2], box[3]});
}

TEST_F(Geometry, FindsBoxesOfPaths) {
  const double turned[6] = {0, 2, -1, 0, 100, 0};
  expect_cases(R"(
M1 2L3 5 -> 1 2 2 3 : 95 2 3 4 | M1 2M9 9 -> none : none | M9 9M1 2h5M-9 9 -> 1 2 5 0 : 98 2 0 10
M1 1z -> 1 1 0 0 : 99 2 0 0 | M1 1h1zv9 -> 1 1 1 9 : 90 2 9 2 | M5 5v5M7 7l-1-1 -> 5 5 2 5 : 90 10 5 4
M0 0C0 40 10 40 10 0 -> 0 0 10 30 : 70 0 30 20 | M0 0C0 0 10 0 10 0 -> 0 0 10 0 : 100 0 0 20
M0 0C30 0-20 10 10 10 -> 0 0 10 10 : 90 0 10 20 | M0 0C90 0-80 10 10 10 -> -17.188 0 44.376 10 : 90 -34.376 10 88.752
M0 0Q10 20 20 0T40 0 -> 0 -10 40 20 : 90 0 20 80)",
               [&](const std::string &input) {
                 const Runs runs = path(input);
                 svg_scene_extent plain, mapped;
                 svg_scene_add_path(&plain, runs.data(), runs.size(), SVG_SCENE_IDENTITY);
                 svg_scene_add_path(&mapped, runs.data(), runs.size(), turned);
                 return box_text(plain) + " : " + box_text(mapped);
               });
  const double huge[6] = {1e308, 0, -1e308, 1, 0, 0};
  const Runs runs = path("M1 1L2 2 9 9");
  svg_scene_extent extent;
  svg_scene_add_path(&extent, runs.data(), runs.size(), huge);
  EXPECT_EQ(box_text(extent), "none");
}

svg_scene_pen pen(std::istream &in) {
  std::string cap, join;
  svg_scene_pen result = {};
  in >> result.width >> cap >> join >> result.miterlimit;
  result.linecap = cap == "round" ? SVG_KW_round : cap == "square" ? SVG_KW_square : SVG_KW_butt;
  result.linejoin = join == "round" ? SVG_KW_round : join == "bevel" ? SVG_KW_bevel : SVG_KW_miter;
  return result;
}

TEST_F(Geometry, FindsBoxesOfStrokes) {
  // WIDTH CAP JOIN MITERLIMIT PATH
  expect_cases(R"(
2 butt miter 4 M0 0h10 -> 0 -1 10 2 | 2 square miter 4 M0 0h10 -> -1 -1 12 2
2 round miter 4 M0 0h10 -> -1 -1 12 2 | 2 butt miter 4 M0 0 -> none | 0 round round 4 M0 0h10 -> none
2 butt miter 4 M5 5h0 -> none | 2 round miter 4 M5 5z -> 4 4 2 2 | 2 square miter 4 M5 5h0v0 -> 4 4 2 2
2 round miter 4 M5 5zz -> 4 4 2 2 | 2 round miter 4 M5 5h0M9 9 -> 4 4 2 2 | 2 round round 4 M5 5c0 0 0 0 0 0 -> 4 4 2 2
2 butt miter 4 M0 0h10v10 -> 0 -1 11 11 | 2 butt miter 4 M0 0h10v10h-10z -> -1 -1 12 12
2 butt bevel 4 M0 0h10v10h-10z -> -1 -1 12 12 | 2 butt miter 4 M0 0h10v10h-10v-10 -> -1 -1 12 12
2 butt miter 2 M0 0l10 10 10-10 -> -0.707107 -0.707107 21.4142 12.1213
2 butt miter 1.4 M0 0l10 10 10-10 -> -0.707107 -0.707107 21.4142 11.4142
2 butt round 1 M0 0l10 10 10-10 -> -0.707107 -0.707107 21.4142 11.7071
2 butt miter 100 M0 0h10h-10 -> 0 -1 10 2 | 2 butt round 100 M0 0h10h-10 -> 0 -1 11 2
2 butt miter 4 M0 0h10v0h0v10 -> 0 -1 11 11 | 2 round round 4 M0 0h10zM20 0h5 -> -1 -1 27 2
2 butt miter 4 M0 0C0 40 10 40 10 0 -> -1 0 12 31 | 2 round miter 4 M0 0C0 40 10 40 10 0 -> -1 -1 12 32
2 butt miter 4 M0 0C0 0 10 0 10 0 -> 0 -1 10 2 | 2 square miter 4 M0 0C0 0 10 0 10 0 -> -1 -1 12 2)",
               [&](const std::string &input) {
                 std::istringstream in(input);
                 const svg_scene_pen line = pen(in);
                 std::string data;
                 std::getline(in, data);
                 const Runs runs = path(data);
                 svg_scene_extent extent;
                 svg_scene_add_stroke(&extent, runs.data(), runs.size(), line, SVG_SCENE_IDENTITY);
                 return box_text(extent);
               });
}

// The edge of random curves, drawn with wide pens, never leaves the box and touches its sides.
TEST_F(Geometry, BoundsStrokesOfCurvesTightly) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> coordinate(-50, 50), width(0.5, 60), linear(-2, 2);
  for (int i = 0; i < 200; ++i) {
    double numbers[8];
    for (double &number : numbers) number = coordinate(random);
    if (i % 5 == 0) numbers[4] = numbers[2] + 1e-3, numbers[5] = numbers[3]; // sharp bends
    const svg_pada runs[] = {{SVG_PADA_MOVETO, 1, numbers}, {SVG_PADA_CURVETO, 3, numbers + 2}};
    const svg_scene_pen line = {width(random), SVG_KW_butt, SVG_KW_miter, 4};
    const double matrix[6] = {
        linear(random), linear(random), linear(random), linear(random), 7, -3};
    svg_scene_extent extent, edge;
    svg_scene_add_stroke(&extent, runs, 2, line, matrix);
    svg_scene_steps steps(runs, 2);
    svg_scene_step curve;
    ASSERT_TRUE(steps.next(&curve) && steps.next(&curve));
    constexpr int samples = 20000;
    for (int k = 0; k <= samples; ++k) {
      const double t = static_cast<double>(k) / samples;
      const svg_scene_point p = svg_scene_curve_point(curve, t);
      const svg_scene_point v = svg_scene_curve_velocity(curve, t);
      const double scale = line.width / 2 / std::hypot(v.x, v.y);
      edge.add(svg_scene_map(matrix, p.x - scale * v.y, p.y + scale * v.x));
      edge.add(svg_scene_map(matrix, p.x + scale * v.y, p.y - scale * v.x));
    }
    const double outside[] = {extent.left - edge.left, extent.top - edge.top,
                              edge.right - extent.right, edge.bottom - extent.bottom};
    for (double side : outside) {
      EXPECT_LT(side, 1e-3) << i;
      EXPECT_GT(side, -0.05) << i;
    }
  }
}

// ---- Vertices ----------------------------------------------------------------------------------

TEST_F(Geometry, FindsVerticesWithDirections) {
  // each vertex: its kinds (s, m, e), x, y, angle in degrees
  expect_cases(R"(
M1 2 -> se 1,2 0 | M0 0h10 -> s 0,0 0, e 10,0 0 | M0 0v10h10 -> s 0,0 90, m 0,10 45, e 10,10 0
M0 0h10v10z -> s 0,0 -67.5, m 10,0 45, m 10,10 157.5, e 0,0 -67.5
M0 0h10h-10 -> s 0,0 0, m 10,0 90, e 0,0 180 | M0 0l-10-10l-10 10 -> s 0,0 -135, m -10,-10 180, e -20,0 135
M0 0h0h0v5h0 -> s 0,0 90, m 0,0 90, m 0,0 90, m 0,5 90, e 0,5 90 | M0 0h0z -> s 0,0 0, m 0,0 0, e 0,0 0
M0 0h10M5 5v5 -> s 0,0 0, m 10,0 0, m 5,5 90, e 5,10 90 | M0 0M5 5v5 -> s 0,0 0, m 5,5 90, e 5,10 90
M0 0h10v10h-10zl5 5 -> s 0,0 -45, m 10,0 45, m 10,10 135, m 0,10 225, m 0,0 -45, e 5,5 45
M0 0h10v10h-10v-10z -> s 0,0 -45, m 10,0 45, m 10,10 135, m 0,10 225, m 0,0 -90, e 0,0 -45
M0 0C0 9 9 9 9 0L20 0 -> s 0,0 90, m 9,0 -45, e 20,0 0 | M0 0C0 0 0 0 5 5 -> s 0,0 45, e 5,5 45
M0 0C0 0 0 9 9 9 -> s 0,0 90, e 9,9 0 | M0 0C0 9 9 9 9 9 -> s 0,0 90, e 9,9 0
M0 0C0 5 5 0 0 0 -> s 0,0 90, e 0,0 180)",
               [&](const std::string &input) {
                 const Runs runs = path(input);
                 svg_scene_vertices vertices(runs.data(), runs.size());
                 std::string result;
                 for (svg_scene_vertex v; vertices.next(&v);) {
                   result += result.empty() ? "" : ", ";
                   for (int bit = 0; bit < 3; ++bit)
                     if (v.kind >> bit & 1) result += "sme"[bit];
                   result += " " + text(v.at.x) + "," + text(v.at.y) + " " +
                             text(v.angle * 180 / std::numbers::pi);
                 }
                 return result;
               });
}

// ---- Outlines and lengths -----------------------------------------------------------------------

std::string path_text(const svg_pada *runs, size_t count) {
  std::string result;
  for (size_t i = 0; i < count; ++i) {
    result += (i == 0 ? "" : " ") + std::string(1, "?MLCZ"[runs[i].type]);
    for (int k = 0; k < 2 * runs[i].count; ++k)
      result += (k == 0 ? "" : k % 2 == 0 ? " " : ",") + text(runs[i].points[k]);
  }
  return result;
}

class Outlines : public Geometry {
protected:
  Outlines() {
    EXPECT_EQ(core.protect([&] { scene = svg_scene_new(drawing.parser, drawing.svg, nullptr); }),
              0);
  }
  ~Outlines() override { svg_scene_delete(scene); }

  // In a viewport of 200 by 100, with a font-size of 10.
  std::string outline(const std::string &element) {
    Document document("<svg xmlns='http://www.w3.org/2000/svg'><" + element + " id='e'/></svg>");
    svg_scene_style style = {};
    style.font_size = 10;
    const svg_scene_path path = svg_scene_outline(scene, {document.find("e"), &style, {200, 100}});
    return path_text(path.runs, path.count);
  }

  Document drawing{"<svg xmlns='http://www.w3.org/2000/svg'/>"};
  AccountingCore &core = drawing.core;
  svg_scene *scene = nullptr;
};

TEST_F(Outlines, OfShapes) {
  expect_cases(R"(
rect x='1' y='2' width='10' height='20' -> M1,2 L11,2 11,22 1,22 Z
rect width='10%' height='10%' rx='0' ry='5' -> M0,0 L20,0 20,10 0,10 Z
rect width='10' height='20' rx='2' -> M2,0 L8,0 C9.10457,0 10,0.895431 10,2 L10,18 C10,19.1046 9.10457,20 8,20 L2,20 C0.895431,20 0,19.1046 0,18 L0,2 C0,0.895431 0.895431,0 2,0 Z
rect width='1em' height='20' rx='-1' ry='8' -> M5,0 C7.76142,0 10,3.58172 10,8 L10,12 C10,16.4183 7.76142,20 5,20 2.23858,20 0,16.4183 0,12 L0,8 C0,3.58172 2.23858,0 5,0 Z
rect width='10' height='20' rx='99' ry='99' -> M5,0 C7.76142,0 10,4.47715 10,10 10,15.5228 7.76142,20 5,20 2.23858,20 0,15.5228 0,10 0,4.47715 2.23858,0 5,0 Z
rect width='0' height='5' -> | rect width='5' height='-5' -> | rect width='5' ->
rect x='1e308' width='1e308' height='1' -> | circle r='0' -> | ellipse rx='1' ry='-1' -> | circle cx='1.7e308' r='1e308' ->
ellipse cx='5' cy='5' rx='1' ry='2' -> M6,5 C6,6.10457 5.55228,7 5,7 4.44772,7 4,6.10457 4,5 4,3.89543 4.44772,3 5,3 5.55228,3 6,3.89543 6,5 Z
circle cx='50%' cy='50%' r='2px' -> M102,50 C102,51.1046 101.105,52 100,52 98.8954,52 98,51.1046 98,50 98,48.8954 98.8954,48 100,48 101.105,48 102,48.8954 102,50 Z
line x1='1' y1='2' x2='3' y2='4' -> M1,2 L3,4 | line x1='1' y1='2' x2='1in' y2='2' -> M1,2 L96,2 | line -> M0,0 L0,0
polyline points='1 2 3 4 5 6' -> M1,2 L3,4 5,6 | polyline points='1 2 3 4 5' -> M1,2 L3,4 | polyline points='1 2 3' ->
polyline points='1 2 10% 10%' -> M1,2 L20,10 | polyline ->
polygon points='1 2 3 4' -> M1,2 L3,4 Z | polygon points='1 2' -> M1,2 Z | polygon points='1' ->
path d='M1 2h3q3 0 3 3z' -> M1,2 L4,2 C6,2 7,3 7,5 Z | path d='M1 2' -> | path -> | g ->)",
               [&](const std::string &element) { return outline(element); });
}

TEST_F(Outlines, CutLongRuns) {
  std::string points;
  for (int i = 0; i < 10002; ++i) points += " 1 1";
  const std::string path = outline("polygon points='" + points + "'");
  EXPECT_EQ(std::count(path.begin(), path.end(), 'L'), 3);
  EXPECT_EQ(std::count(path.begin(), path.end(), ','), 10002);
}

TEST_F(Outlines, HaveLengths) {
  // PATH, ; DISTANCE... -> length; x,y angle of each distance
  expect_cases(
      R"(
M1 1; 0 -> 0; none | M0 0h10v10; 0 5 10 15 20 21 -1 -> 20; 0,0 0; 5,0 0; 10,0 90; 10,5 90; 10,10 90; none; none
M0 0h10M50 50v10; 5 15 -> 20; 5,0 0; 50,55 90 | M0 0h3v4z; 12 9.5 -> 12; 0,0 -126.87; 1.5,2 -126.87
M0 0h0v0h4h0; 4 0 -> 4; 4,0 0; 0,0 0 | M0 0zzh2; 1 -> 2; 1,0 0
M0 0C0 0 0 9 0 9; 4.5 9 0 -> 9; 0,4.5 90; 0,9 90; 0,0 90
M0 0C30 0-20 0 10 0; 5 15 -> 30; 5,0 0; 5,0 180 | M0 0C10 10 0 10 10 0; 0 -> 18.2843; 0,0 45
M0 10A10 10 0 0 1 0-10; -> 31.4203)",
      [&](const std::string &input) {
        std::istringstream in(input);
        std::string data;
        std::getline(in, data, ';');
        const Runs runs = path(data);
        svg_scene_ruler *measure = svg_scene_measure_path(scene, {runs.data(), runs.size()});
        std::string result = text(svg_scene_path_length(measure));
        for (double distance : numbers(in)) {
          svg_scene_point p;
          double angle;
          result +=
              svg_scene_point_at(measure, distance, &p, &angle)
                  ? "; " + text(p.x) + "," + text(p.y) + " " + text(angle * 180 / std::numbers::pi)
                  : "; none";
        }
        return result;
      });
}

// Against chords of a million parts: cusps, loops and stretched curves too.
TEST_F(Outlines, OfCurvesHaveExactLengths) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> coordinate(-50, 50);
  for (int i = 0; i < 60; ++i) {
    double n[8];
    for (double &number : n) number = coordinate(random);
    if (i % 3 == 0) n[4] = n[0], n[5] = n[1] + 1e-4 * i, n[6] = n[2], n[7] = n[3]; // nearly cusps
    const svg_pada runs[] = {{SVG_PADA_MOVETO, 1, n}, {SVG_PADA_CURVETO, 3, n + 2}};
    svg_scene_ruler *measure = svg_scene_measure_path(scene, {runs, 2});
    svg_scene_steps steps(runs, 2);
    svg_scene_step curve;
    ASSERT_TRUE(steps.next(&curve) && steps.next(&curve));
    double length = 0;
    svg_scene_point before = curve.from;
    constexpr int parts = 1 << 16;
    for (int k = 1; k <= parts; ++k) {
      const svg_scene_point here = svg_scene_curve_point(curve, static_cast<double>(k) / parts);
      length += std::hypot(here.x - before.x, here.y - before.y);
      before = here;
      if (k % (parts / 8) != 0) continue;
      svg_scene_point p;
      double angle;
      ASSERT_TRUE(svg_scene_point_at(measure, std::min(length, svg_scene_path_length(measure)), &p,
                                     &angle));
      EXPECT_LT(std::hypot(p.x - here.x, p.y - here.y), 1e-3) << i << " " << k;
    }
    EXPECT_NEAR(svg_scene_path_length(measure), length, 1e-5 * length) << i;
  }
}

} // namespace
