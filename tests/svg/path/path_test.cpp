#include <charconv>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "fuzz/support/fuzz.h"
#include "svg/parser/svg_parser.h"
#include "tests/support/accounting_core.h"
#include "tests/support/cases.h"

namespace {

struct Segment {
  char kind; // M L C Z; the curves of an arc are C, after an A without numbers
  std::vector<double> numbers;
};

struct Reading {
  std::vector<Segment> segments;
  int code = 0;
};

template <class... Numbers> void note(void *user, char kind, Numbers... numbers) {
  static_cast<Reading *>(user)->segments.push_back({kind, {numbers...}});
}

} // namespace

static void note_closepath(void *user) { note(user, 'Z'); }
static void note_moveto(void *user, double x, double y) { note(user, 'M', x, y); }
static void note_lineto(void *user, double x, double y) { note(user, 'L', x, y); }
static void note_curveto(void *user, double x1, double y1, double x2, double y2, double x3,
                         double y3) {
  note(user, 'C', x1, y1, x2, y2, x3, y3);
}
static void note_elliarc(void *user, const ort_bezier_list *curves) {
  note(user, 'A');
  for (int i = 0; i < curves->count; ++i) {
    const double *c = curves->segments[i];
    note(user, 'C', c[0], c[1], c[2], c[3], c[4], c[5]);
  }
}

static Reading read(AccountingCore &core, const char *path, double dx = 0, double dy = 0) {
  Reading reading;
  const uint64_t allocations = core.allocations();
  reading.code = core.protect([&] {
    svg_spp_parse(core, 1, path, dx, dy, &reading, note_closepath, note_curveto, note_elliarc,
                  note_lineto, note_moveto);
  });
  EXPECT_EQ(core.allocations(), allocations);
  return reading;
}

// As path data; with the digits that tell a double from its neighbours, or with fewer.
static std::string text(const Reading &reading, int digits = 0) {
  std::string result;
  for (const Segment &segment : reading.segments) {
    result += (result.empty() ? "" : " ") + std::string(1, segment.kind);
    for (size_t i = 0; i < segment.numbers.size(); ++i) {
      char number[32], *end = number + sizeof number;
      const double value = segment.numbers[i];
      end = digits == 0 ? std::to_chars(number, end, value).ptr
                        : std::to_chars(number, end, value, std::chars_format::general, digits).ptr;
      result += (i == 0 ? "" : i % 2 == 0 ? " " : ",") + std::string(number, end);
    }
  }
  return result;
}

namespace {

class Path : public testing::Test {
protected:
  Path() { svg_register_errtab(core); }
  AccountingCore core;
};

} // namespace

TEST_F(Path, ReportsSegments) {
  const auto segments = [&](const std::string &path) {
    const Reading reading = read(core, path.c_str());
    EXPECT_EQ(reading.code, 0) << path;
    EXPECT_EQ(svg_spp_check(path.c_str(), nullptr), 0) << path;
    return text(reading);
  };
  expect_cases(R"(
M -> M0,0 | m z -> M0,0 Z | M,, 10,10 -> M10,10 | \s\t\x0d\n,M10,10\n -> M10,10
m10 10 20 20 -> M10,10 L30,30 | M10 10 20 20 -> M10,10 L20,20 | M1 2m3 4 5 6 -> M1,2 M4,6 L9,12
M0 0 H10 20 V5 -> M0,0 L10,0 L20,0 L20,5 | M1 1z m2 2 L9 9 zz -> M1,1 Z M3,3 L9,9 Z Z
M1 1h10v5-2l1 1zl1 0 -> M1,1 L11,1 L11,6 L11,4 L12,5 Z L2,1)",
               segments);
  // curves and arcs
  expect_cases(R"(
M1 1c1 2 3 4 5 6 1 1 2 2 3 3 -> M1,1 C2,3 4,5 6,7 C7,8 8,9 9,10 | M1 2 s1 1 2 2 -> M1,2 C1,2 2,3 3,4
M0 0C0 10 10 10 10 0S20 9 20 0 30 0 40 0 -> M0,0 C0,10 10,10 10,0 C10,-10 20,9 20,0 C20,-9 30,0 40,0
M0 0 C1 1 2 2 3 3 L4 4 S5 5 6 6 -> M0,0 C1,1 2,2 3,3 L4,4 C4,4 5,5 6,6
M0 0Q9 9 18 0 36 0 36 9 -> M0,0 C6,6 12,6 18,0 C30,0 36,3 36,9
M0 0q3 3 6 0t6 0 6 0 -> M0,0 C2,2 4,2 6,0 C8,-2 10,-2 12,0 C14,2 16,2 18,0
M0 0C0 9 9 9 9 0T18 0 -> M0,0 C0,9 9,9 9,0 C9,0 12,0 18,0
M0 0Q3 3 6 0S9 9 9 0 -> M0,0 C2,2 4,2 6,0 C6,0 9,9 9,0 | M5 5A1 1 0 0 0 5 5l1 1 -> M5,5 A L6,6
M0 0A0 5 0 0 1 10 10 L20 20 -> M0,0 L20,20 | M0 0l1 1a5 9e-7 0 0 1 10 10 l1 0 -> M0,0 L1,1 L2,1)",
               segments);
  // numbers
  expect_cases(R"(
M.5.5 -> M0.5,0.5 | M0.5.5-1-2+3+4 -> M0.5,0.5 L-1,-2 L3,4 | M1e2,0 -> M100,0
M5.-.5e1 1.e2 1.5E-1 -> M5,-5 L100,0.15 | M0e99999999999999999999 -0 -> M0,0
M1e-99999999999 00000000000000000000001 -> M0,1
M2147483647-2147483647.0 -> M2147483647,-2147483647
M0.3 4294967.2950 -> M0.3,4294967.295 | M-0.1234567890123456789012e+1-.5 -> M-1.2345678901234567,-0.5
M+2147483647.00-2147483647. -> M2147483647,-2147483647)",
               segments);
}

TEST_F(Path, ReadsFlagsOfOneDigit) {
  const std::string expected = text(read(core, "M0 0 A5 5 0 1 1 10 10"));
  for (const char *path : {"M0 0a5 5 0 1110 10", "M0 0 A5-5,0,7 9 10,10", "M0 0a5,5 0,1,1,10,10"})
    EXPECT_EQ(text(read(core, path)), expected) << path;
  EXPECT_EQ(text(read(core, "M1 0 A5 5 360 0011 0"), 6),
            "M1,0 A C1,2.76142 3.23858,5 6,5 C8.76142,5 11,2.76142 11,0");
}

// "^" stands before the byte at fault. The message of a bad number shows the text from there.
TEST_F(Path, TellsWhereErrorsAre) {
  expect_cases(R"(
^ -> 10100 | \s, ^ -> 10100 | \s^L0 0 -> 10100 | M0 0 z ^5 5 -> 10102 M0,0 Z | M0 0 ^x -> 10102 M0,0
M10 10,^\xC3\x89 -> 10102 M10,10 | M10 10 M^ -> 10104 M10,10 | M0 0 L10^ -> 10104 M0,0
M10^px 5 -> 10104 | M1e^,0 -> 10104 | M1e+^ 0 -> 10104 | M1 -^x -> 10104 | M.^ 5 -> 10104
M1 -.^e5 -> 10104 | M3000000000 , ^0 -> 10104 | M0 0H1-1e999,^V2 -> 10104 M0,0 L1,0
M2147483647.5 ^0 -> 10104 | M0 0a1 1 0 ^+ 1 5 5 -> 10104 M0,0 | M0 0C1 1 2 2 3^ -> 10104 M0,0
M0 0 L1^\xC2\xA0 1 -> 10104 M0,0)",
               [&](std::string path) {
                 const size_t fault = path.find('^');
                 path.erase(fault, 1);
                 size_t offset = 0;
                 const int code = svg_spp_check(path.c_str(), &offset);
                 EXPECT_EQ(offset, fault);
                 const Reading reading = read(core, path.c_str());
                 EXPECT_EQ(reading.code, code);
                 if (code == SVG_E_PATH_NUMBER) {
                   EXPECT_EQ(ort_error_text(core), "Missing or illegal numeric parameter '" +
                                                       path.substr(fault) + "' in SVG path");
                 }
                 return std::to_string(code) + (reading.segments.empty() ? "" : " ") +
                        text(reading);
               });
}

TEST_F(Path, CutsTheRestInTheMessage) {
  std::string forty;
  for (int i = 0; i < 40; ++i) forty += "\xE2\x82\xAC";
  const auto message = [&](const std::string &rest) {
    EXPECT_EQ(read(core, ("M0 0L" + rest).c_str()).code, SVG_E_PATH_NUMBER);
    return std::string(ort_error_text(core));
  };
  EXPECT_NE(message(forty).find("'" + forty + "'"), std::string::npos);
  EXPECT_NE(message(forty + "\xE2\x82\xAC").find("'" + forty + "...'"), std::string::npos);
  EXPECT_LT(message(std::string(100000, '\x80')).size(), 2000U);
}

TEST_F(Path, AddsOffsetsOnlyToWhatItReports) {
  EXPECT_EQ(text(read(core, "M0 0 l10 0 z l1 1", 100, 0)), "M100,0 L110,0 Z L101,1");
  const char *path = "m1 2a5 4 30 0 1 6 3q1 1 2 2t3 3s1 1 2 2";
  const Reading plain = read(core, path), moved = read(core, path, 1024, -2048);
  ASSERT_EQ(plain.segments.size(), moved.segments.size());
  for (size_t i = 0; i < plain.segments.size(); ++i)
    for (size_t k = 0; k < plain.segments[i].numbers.size(); ++k)
      EXPECT_EQ(moved.segments[i].numbers[k],
                plain.segments[i].numbers[k] + (k % 2 == 0 ? 1024 : -2048));
}

TEST_F(Path, DoesWithoutCallbacksAndLetsThemRaise) {
  Reading reading;
  const auto raise = [](void *user, double, double) {
    ort_error(static_cast<ort_core *>(user), SVG_E_LINK_INVALID);
  };
  EXPECT_EQ(core.protect([&] {
    svg_spp_parse(core, 1, "M1 1 L10 0 c1 1 2 2 5 0 a1 1 0 0 0 2 0 z l1 1 M8 8", 0, 0, &reading,
                  nullptr, nullptr, nullptr, note_lineto, nullptr);
    svg_spp_parse(core, 1, "M0 0 L10 0 l5 0 m1 0", 0, 0, &reading, nullptr, nullptr, nullptr,
                  nullptr, note_moveto);
    svg_spp_parse(core, 1, "M0 0 L2 2 x", 0, 0, core.get(), nullptr, nullptr, nullptr, raise,
                  nullptr);
  }),
            SVG_E_LINK_INVALID);
  EXPECT_EQ(text(reading), "L10,0 L2,2 M0,0 M16,0");
}

TEST_F(Path, MakesALineOfAnArcThatCannotBeConverted) {
  EXPECT_EQ(text(read(core, "M0 0A2e9 2e9 0 0 1 0 1e-320 l5 5"), 6), "M0,0 L0,9.99989e-321 L5,5");
  ASSERT_FALSE(core.messages.empty());
  EXPECT_EQ(core.messages.back().severity, ORT_WARNING);
  EXPECT_EQ(core.messages.back().code, ORT_E_ARC);
}

// ---- Random texts -------------------------------------------------------------------------------

using Random = std::mt19937;
static int pick(Random &random, int count) {
  return static_cast<int>(random() % static_cast<unsigned>(count));
}

static std::string digits(Random &random, int count) {
  std::string result;
  while (count-- > 0) result += static_cast<char>('0' + pick(random, 10));
  return result;
}

// Any command, in either case, with any number of groups; separators only where they are needed, or
// more of them.
static std::string random_path(Random &random) {
  static const struct {
    char letter;
    int operands;
  } commands[] = {{'m', 2}, {'z', 0}, {'l', 2}, {'h', 1}, {'v', 1},
                  {'c', 6}, {'s', 4}, {'q', 4}, {'t', 2}, {'a', 7}};
  static const char *const separators[] = {" ", ",", "\n", " , ", "\t\r"};
  std::string path;
  for (int i = pick(random, 12); i >= 0; --i) {
    const auto &command = commands[path.empty() ? 0 : pick(random, 10)];
    path += static_cast<char>(command.letter - (pick(random, 2) ? 'a' - 'A' : 0));
    bool open = false;  // after a number that a digit would continue
    bool point = false; // that number has a point
    const int count = command.operands * (1 + pick(random, 3));
    for (int k = 0; k < count; ++k) {
      const int place = k % command.operands;
      const bool flag = command.letter == 'a' && (place == 3 || place == 4);
      std::string number = flag ? digits(random, 1) : digits(random, 1 + pick(random, 3));
      bool has_point = false;
      if (!flag && pick(random, 2)) {
        number = (pick(random, 2) ? number : "") + "." + digits(random, 1 + pick(random, 6));
        has_point = true;
      }
      if (!flag && pick(random, 2)) number.insert(0, 1, pick(random, 5) ? '-' : '+');
      const bool glued =
          !open || number[0] == '-' || number[0] == '+' || (number[0] == '.' && point);
      if (!glued || pick(random, 3) == 0) path += separators[pick(random, 5)];
      path += number;
      open = !flag;
      point = has_point;
    }
    if (pick(random, 3) == 0) path += separators[pick(random, 5)];
  }
  return path;
}

// The fuzz target reads from a block that ends with the text, so that a sanitizer sees a byte read
// too far, and knows what must agree.
TEST(PathText, StaysInsideOfAnyText) {
  Random random(9);
  for (int i = 0; i < 30; ++i) {
    const std::string path = random_path(random);
    EXPECT_EQ(svg_spp_check(path.c_str(), nullptr), 0) << path;
    for (size_t length = 0; length <= path.size(); ++length) fuzz_path(path.substr(0, length));
  }
  const std::string alphabet = "mMzlLhvcCsSqtTaA00112233456789..,,--++eeE   \n\x80\xFFx";
  for (int i = 0; i < 5000; ++i) {
    std::string path = "M";
    for (int k = pick(random, 30); k > 0; --k) path += alphabet[random() % alphabet.size()];
    fuzz_path(path);
  }
}
