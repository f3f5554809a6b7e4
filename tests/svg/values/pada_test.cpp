// The value of "d": how segments are packed into records.
#include <gtest/gtest.h>

#include "svg/parser/svg_parser.h"
#include "svg/values/svg_types.h"
#include "tests/support/cases.h"
#include "tests/support/reader.h"

static std::string drawing_of(const std::string &path) {
  return "<svg><path d='" + path + "'/></svg>";
}

static const svg_an_path_data *path_of(const Document &document) {
  const svg_e_node *element = svg_as_element(document.svg->first_child);
  return reinterpret_cast<const svg_an_path_data *>(svg_find_value(element, "d"));
}

// "M1 L2 Z0 (4)": type and points of each record, and the vertices; then the codes of messages.
static std::string shape(const std::string &path) {
  const Document document(drawing_of(path));
  std::string result;
  if (const svg_an_path_data *value = path_of(document)) {
    for (size_t i = 0; i < ort_vtr_count(value->segments); ++i) {
      const svg_pada &record = ort_item<svg_pada>(value->segments, i);
      EXPECT_EQ(record.points == nullptr, record.count == 0);
      result += "?MLCZ"[record.type] + std::to_string(record.count) + " ";
    }
    result += "(" + std::to_string(value->vertices) + ")";
  }
  for (const Message &m : document.core.messages) result += " !" + std::to_string(m.code);
  return result;
}

static std::string repeated(const char *start, int count, const char *piece) {
  std::string text = start;
  for (int i = 0; i < count; ++i) text += piece;
  return text;
}

// A bad path costs a warning, and is empty.
TEST(PathValue, PacksRunsOfLikeSegments) {
  expect_cases(R"(
M0 0 L10 0 L10 10 Z -> M1 L2 Z0 (4) | M0 0 L10 0 H20 V5 -> M1 L3 (4)
M0 0 10 0h1v1l1 1 -> M1 L4 (5)
M0 0 C1 1 2 2 3 3 S5 5 6 6 Q7 7 8 8 -> M1 C9 (10)
M0 0 C1 1 2 2 3 3 A5 5 0 0 1 13 3 t1 1 -> M1 C12 (13)
M0 0 A5 5 0 1 1 5 0.0001 l1 1 -> M1 C12 L1 (14) | M0 0 A5 5 0 1 1 0 0 -> (1)
M0 0 A0 5 0 1 1 9 9 l1 1 -> M1 L1 (2) | M5 5 -> (1) | M -> (1) | M0 0 M5 5 -> M1 M1 (2)
M0 0 Zz -> M1 Z0 Z0 (3) | L0 0 -> (0) !10100 | M0 0 L1 1 X -> (0) !10102 | M0 0 L10 -> (0) !10104)",
               shape);
  EXPECT_EQ(shape(repeated("M0 0l", 5000, "1 1 ")), "M1 L5000 (5001)");
  EXPECT_EQ(shape(repeated("M0 0l", 12000, "1 1 ")), "M1 L5000 L5000 L2000 (12001)");
  EXPECT_EQ(shape(repeated("M0 0c", 1666, "1 1 2 2 3 3 ")), "M1 C4998 (4999)");
  EXPECT_EQ(shape(repeated("M0 0c", 1667, "1 1 2 2 3 3 ") + "z"), "M1 C4998 C3 Z0 (5003)");
  EXPECT_EQ(shape(repeated("M0 0l", 7000, "1 1 ") + "z5"), "(0) !10102");
}

TEST(PathValue, KeepsEveryPoint) {
  const Document document(drawing_of(repeated("M7 8l", 5003, "1 2 ")));
  std::string expected = "M 7,8 L";
  for (int i = 1; i <= 5003; ++i) {
    if (i == 5001) expected += " L";
    expected += ' ' + std::to_string(7 + i) + ',' + std::to_string(8 + 2 * i);
  }
  EXPECT_EQ(value_text(document.parser, &path_of(document)->head), expected + " (5004 vertices)");
}

// More points than the work buffer holds, in several records: complete ones, and one that goes on.
TEST(PathValue, KeepsThePointsOfManyRecords) {
  const auto text = [](const std::string &path) {
    const Document document(drawing_of(path));
    return value_text(document.parser, &path_of(document)->head);
  };
  EXPECT_EQ(text(repeated("", 2000, "M1 2L3 4 5 6z")),
            repeated("M 1,2 L 3,4 5,6 Z", 1999, " M 1,2 L 3,4 5,6 Z") + " (8000 vertices)");
  EXPECT_EQ(text(repeated("M7 8L", 3000, "1 2 ") + repeated("M3 4L", 4000, "5 6 ")),
            repeated("M 7,8 L", 3000, " 1,2") + repeated(" M 3,4 L", 4000, " 5,6") +
                " (7002 vertices)");
}

TEST(PathValue, SurvivesLackOfMemory) {
  const std::string path = "M1 1c1 1 2 2 3 3z";
  for (const std::string &drawing :
       {drawing_of(repeated("M0 0l", 6000, "1 1 ") + "z" + path), drawing_of(path)})
    allocation_sweep([&](AccountingCore &core) { return read_once(core, drawing); });
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
