#include <gtest/gtest.h>
#include <string>

#include "svg/parser/svg_parser.h"
#include "svg/values/svg_types.h"
#include "tests/support/accounting_core.h"
#include "tests/support/cases.h"

namespace {

// The value of a "d", built as svg_parse_attr builds it.
class PathValue {
public:
  PathValue(AccountingCore &core, const std::string &path, int log_level = 0) : core_(core) {
    svg_register_errtab(core);
    parser_.core = core;
    parser_.log_level = log_level;
    parser_.scan_start = parser_.scan_pos = path.c_str();
    EXPECT_EQ(core.protect([&] { svg_ctor_an_path_data(&parser_, &value.head); }), 0);
    EXPECT_EQ(ort_vtr_count(parser_.pada_segments), 0U);
    EXPECT_EQ(parser_.pada_points, nullptr);
  }
  ~PathValue() {
    svg_dtor_an_path_data(core_, &value.head);
    ort_vtr_delete(parser_.pada_segments);
  }

  // "M1 L2 Z0 (4)": type and points of each record, and the vertices.
  std::string shape() const {
    std::string result;
    for (size_t i = 0; i < ort_vtr_count(value.segments); ++i) {
      const svg_pada &record = ort_item<svg_pada>(value.segments, i);
      EXPECT_EQ(record.points == nullptr, record.count == 0);
      result += "?MLCZ"[record.type] + std::to_string(record.count) + " ";
    }
    return result + "(" + std::to_string(value.vertices) + ")";
  }

  svg_an_path_data value = {};

private:
  AccountingCore &core_;
  svg_parser parser_ = {};
};

} // namespace

static std::string repeated(const char *start, int count, const char *piece) {
  std::string text = start;
  for (int i = 0; i < count; ++i) text += piece;
  return text;
}

TEST(PathValue, PacksRunsOfLikeSegments) {
  const auto shape = [](const std::string &path) {
    AccountingCore core;
    const std::string result = PathValue(core, path).shape();
    EXPECT_TRUE(core.messages.empty());
    return result;
  };
  expect_cases(R"(
M0 0 L10 0 L10 10 Z -> M1 L2 Z0 (4) | M0 0 L10 0 H20 V5 -> M1 L3 (4)
M0 0 10 0h1v1l1 1 -> M1 L4 (5)
M0 0 C1 1 2 2 3 3 S5 5 6 6 Q7 7 8 8 -> M1 C9 (10)
M0 0 C1 1 2 2 3 3 A5 5 0 0 1 13 3 t1 1 -> M1 C12 (13)
M0 0 A5 5 0 1 1 5 0.0001 l1 1 -> M1 C12 L1 (14) | M0 0 A5 5 0 1 1 0 0 -> (1)
M0 0 A0 5 0 1 1 9 9 l1 1 -> M1 L1 (2) | M5 5 -> (1) | M -> (1) | M0 0 M5 5 -> M1 M1 (2)
M0 0 Zz -> M1 Z0 Z0 (3))",
               shape);
  EXPECT_EQ(shape(repeated("M0 0l", 5000, "1 1 ")), "M1 L5000 (5001)");
  EXPECT_EQ(shape(repeated("M0 0l", 12000, "1 1 ")), "M1 L5000 L5000 L2000 (12001)");
  EXPECT_EQ(shape(repeated("M0 0c", 1666, "1 1 2 2 3 3 ")), "M1 C4998 (4999)");
  EXPECT_EQ(shape(repeated("M0 0c", 1667, "1 1 2 2 3 3 ") + "z"), "M1 C4998 C3 Z0 (5003)");
}

TEST(PathValue, KeepsEveryPoint) {
  AccountingCore core;
  const PathValue path(core, repeated("M7 8l", 5003, "1 2 "));
  ASSERT_EQ(path.shape(), "M1 L5000 L3 (5004)");
  int number = 0;
  for (size_t i = 0; i < 3; ++i) {
    const svg_pada &record = ort_item<svg_pada>(path.value.segments, i);
    for (int k = 0; k < record.count; ++k, ++number) {
      ASSERT_EQ(record.points[2 * k], 7 + number);
      ASSERT_EQ(record.points[2 * k + 1], 8 + 2 * number);
    }
  }
}

TEST(PathValue, DropsBadPathsWithAWarning) {
  const struct {
    std::string path;
    int code;
  } cases[] = {{"", SVG_E_PATH_START},
               {"L0 0", SVG_E_PATH_START},
               {"M0 0 L1 1 X", SVG_E_PATH_COMMAND},
               {"M0 0 L10", SVG_E_PATH_NUMBER},
               {repeated("M0 0l", 7000, "1 1 ") + "z5", SVG_E_PATH_COMMAND}};
  for (const auto &c : cases) {
    AccountingCore core;
    EXPECT_EQ(PathValue(core, c.path).shape(), "(0)");
    ASSERT_EQ(core.messages.size(), 1U);
    EXPECT_EQ(core.messages[0].severity, ORT_WARNING);
    EXPECT_EQ(core.messages[0].code, c.code);
  }
}

TEST(PathValue, SurvivesLackOfMemory) {
  allocation_sweep([](AccountingCore &core) {
    PathValue path(core, repeated("M0 0l", 6000, "1 1 ") + "zM1 1c1 1 2 2 3 3z");
    if (!core.messages.empty()) {
      EXPECT_EQ(path.shape(), "(0)");
    }
    return true;
  });
}

// A host's own constructor prepares the accumulator and takes the records.
TEST(PathValue, IsParsedIntoAPreparedAccumulator) {
  AccountingCore core;
  double points[2 * SVG_PADA_BUFFER];
  svg_parser parser = {};
  parser.core = core;
  parser.pada_points = points;
  for (const char *path : {"M1 2", "M1 2L3 4z"}) {
    parser.scan_pos = path;
    parser.pada_type = SVG_PADA_NONE;
    parser.pada_count = 0;
    EXPECT_EQ(core.protect([&] { svg_pada_parse(&parser); }), 0);
  }
  EXPECT_EQ(ort_vtr_count(parser.pada_segments), 3U);
  ort_vtr_delete(parser.pada_segments);
}
