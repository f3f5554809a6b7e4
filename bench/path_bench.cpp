// path_bench.cpp: the speed of the path parser, beside a bare scan of the same bytes and the C
// library's reading of the same numbers.
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

#include "svg/svg.h"

namespace {

// How programs write their paths.
struct Style {
  const char *commands;
  int range;    // coordinates are below this
  int digits;   // of the fraction
  int run;      // most operand groups after one command
  bool compact; // no separator that can be left out
};

} // namespace

constexpr Style icon = {"cslhvq", 24, 2, 4, true};
constexpr Style drawing = {"cCl", 1000, 6, 8, false};
constexpr Style map = {"llL", 30000, 0, 100, false};

static int operands(char command) {
  switch (command | 0x20) {
  case 'c': return 6;
  case 's':
  case 'q': return 4;
  case 'h':
  case 'v': return 1;
  default: return 2;
  }
}

namespace {

struct Text {
  std::string bytes;
  int numbers;
};

} // namespace

static Text path_text(const Style &style) {
  std::mt19937 random(7);
  std::uniform_int_distribution<int> value(-style.range, style.range), digit(0, 9),
      run(1, style.run);
  std::string text = "M0 0";
  int numbers = 2;
  while (text.size() < 1 << 18) {
    const char command = style.commands[random() % std::strlen(style.commands)];
    text += style.compact ? "" : " ";
    text += command;
    bool first = true;
    for (int i = operands(command) * run(random); i > 0; --i, ++numbers) {
      std::string number = std::to_string(value(random));
      if (style.digits > 0) number += '.';
      for (int k = 0; k < style.digits; ++k) number += static_cast<char>('0' + digit(random));
      if (!style.compact || (!first && number[0] != '-')) text += i % 2 != 0 ? ',' : ' ';
      text += number;
      first = false;
    }
  }
  return {text, numbers};
}

static bool in_number(char c) { return (c >= '0' && c <= '9') || c == '.' || c == '-'; }

static void report(benchmark::State &state, const Text &text) {
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.bytes.size()));
  state.counters["number"] = benchmark::Counter(
      text.numbers, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

static void BM_path_parse(benchmark::State &state, const Style &style) {
  const Text text = path_text(style);
  ort_core *core = ort_core_new(nullptr);
  double sum = 0;
  for (auto _ : state) {
    svg_spp_parse(
        core, 1, text.bytes.c_str(), 0, 0, &sum, [](void *) {},
        [](void *user, double, double, double, double, double x, double) {
          *static_cast<double *>(user) += x;
        },
        [](void *, const ort_bezier_list *) {},
        [](void *user, double x, double) { *static_cast<double *>(user) += x; },
        [](void *user, double x, double) { *static_cast<double *>(user) += x; });
    benchmark::DoNotOptimize(sum);
  }
  ort_core_delete(core);
  report(state, text);
}

static void BM_path_bare_scan(benchmark::State &state, const Style &style) {
  const Text text = path_text(style);
  for (auto _ : state) {
    int64_t signs = 0;
    for (const char *p = text.bytes.c_str(); *p != '\0'; ++p) signs += *p == '-';
    benchmark::DoNotOptimize(signs);
  }
  report(state, text);
}

static void BM_path_strtod(benchmark::State &state, const Style &style) {
  const Text text = path_text(style);
  for (auto _ : state) {
    double sum = 0;
    for (const char *p = text.bytes.c_str(); *p != '\0';) {
      if (!in_number(*p)) {
        ++p;
        continue;
      }
      char *end;
      sum += std::strtod(p, &end);
      p = end;
    }
    benchmark::DoNotOptimize(sum);
  }
  report(state, text);
}

BENCHMARK_CAPTURE(BM_path_parse, icon, icon);
BENCHMARK_CAPTURE(BM_path_bare_scan, icon, icon);
BENCHMARK_CAPTURE(BM_path_strtod, icon, icon);
BENCHMARK_CAPTURE(BM_path_parse, drawing, drawing);
BENCHMARK_CAPTURE(BM_path_bare_scan, drawing, drawing);
BENCHMARK_CAPTURE(BM_path_strtod, drawing, drawing);
BENCHMARK_CAPTURE(BM_path_parse, map, map);
BENCHMARK_CAPTURE(BM_path_bare_scan, map, map);
BENCHMARK_CAPTURE(BM_path_strtod, map, map);
