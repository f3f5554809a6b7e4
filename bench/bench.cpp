// bench.cpp: prints the table of ./dev bench: how long each contender takes over each row of
// documents, how long a walk takes over the trees that the reader made of them, how much memory the
// reader keeps, and how the time of both grows.
//
// Paths of real drawings are read from standard input, a line each: FOLDER/PACKAGE/REST. Times are
// of the processor, so that other programs do little harm. Every time is a median over rounds in
// which all contenders take turns; every ratio is the median of the ratios within the rounds.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>

#include "bench/bench.h"

constexpr int ROUNDS = 9;
constexpr double SHORTEST = 0.03; // seconds of a measurement; shorter rows are read repeatedly
constexpr int DOUBLINGS = 3;

static double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

template <class Work> static double seconds(const Work &work, int repeat = 1) {
  timespec begin, end;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &begin);
  for (int i = 0; i < repeat; ++i) work();
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &end);
  return (static_cast<double>(end.tv_sec - begin.tv_sec) +
          static_cast<double>(end.tv_nsec - begin.tv_nsec) * 1e-9) /
         repeat;
}

static double bytes_of(const Documents &documents) {
  double bytes = 0;
  for (const std::string &document : documents) bytes += static_cast<double>(document.size());
  return bytes;
}

namespace {

// ---- Rows ---------------------------------------------------------------------------------------

// The last column is the walk's. Its ratio is to the reader, the others' to one pass of Expat.
enum { WALK = CONTENDERS, COLUMNS };

struct Times {
  double median[COLUMNS], ratio[COLUMNS];
};

} // namespace

static Times measure_times(const Documents &documents) {
  const auto walk = make_walk(documents);
  const auto work = [&](int column) {
    return [&, column] { return column == WALK ? walk() : contenders[column].read(documents); };
  };
  const auto often_enough = [&](int column) {
    return static_cast<int>(SHORTEST / seconds(work(column))) + 1;
  };
  const int readings = often_enough(ONE_PASS), walks = often_enough(WALK);
  std::vector<double> taken[COLUMNS], ratios[COLUMNS];
  for (int round = 0; round < ROUNDS; ++round)
    for (int i = 0; i < COLUMNS; ++i) {
      taken[i].push_back(seconds(work(i), i == WALK ? walks : readings));
      ratios[i].push_back(taken[i].back() / taken[i == WALK ? READER : ONE_PASS].back());
    }
  Times times;
  for (int i = 0; i < COLUMNS; ++i) {
    times.median[i] = median(taken[i]);
    times.ratio[i] = median(ratios[i]);
  }
  return times;
}

static Times print_row(const std::string &name, const Documents &documents) {
  const double bytes = bytes_of(documents);
  const Memory memory = measure_memory(documents);
  const Times times = measure_times(documents);
  std::printf("%-37s%7zu%8.2f", name.c_str(), documents.size(), bytes * 1e-6);
  for (int i = 0; i < COLUMNS; ++i)
    std::printf("%11.2f%6.2f", times.median[i] * 1e3, times.ratio[i]);
  std::printf("%9.2f%7.2f", memory.kept / bytes, memory.peak / bytes);
  std::fflush(stdout);
  return times;
}

namespace {

// The geometric mean of the reader's ratios.
class Mean {
public:
  void add(const Times &times) { logarithms_ += std::log(times.ratio[READER]), ++rows_; }
  void print() const {
    if (rows_ > 0)
      std::printf("%-37s%.2f\n", "Geometric mean of svgreader's ratios",
                  std::exp(logarithms_ / rows_));
  }

private:
  double logarithms_ = 0;
  int rows_ = 0;
};

} // namespace

// How many times longer the second work takes.
template <class Work> static double cost_ratio(const Work &first, const Work &second) {
  std::vector<double> ratios;
  for (int round = 0; round < ROUNDS; ++round) {
    const double begin = seconds(first);
    ratios.push_back(seconds(second) / begin);
  }
  return median(ratios);
}

static std::function<bool()> make_reading(const Documents &documents) {
  return [documents] { return contenders[READER].read(documents); };
}

// The powers of the size with which the times of the reader and of the walk grow.
static void print_growth(const Family &family) {
  const Documents small = {family.generate(family.size >> DOUBLINGS)};
  const Documents large = {family.generate(family.size)};
  const double factor = std::log(bytes_of(large) / bytes_of(small));
  for (const auto &make : {make_reading, make_walk})
    std::printf("%8.2f", std::log(cost_ratio(make(small), make(large))) / factor);
}

// The drawings of each package that the reader and one pass of Expat accept.
static std::map<std::string, Documents> read_corpus() {
  std::map<std::string, Documents> packages;
  for (std::string path; std::getline(std::cin, path);) {
    std::ifstream file(path, std::ios::binary);
    Documents drawing{{std::istreambuf_iterator<char>(file), {}}};
    if (!contenders[ONE_PASS].read(drawing) || !contenders[READER].read(drawing)) continue;
    std::istringstream parts(path);
    std::string part;
    for (int i = 0; i < 3; ++i) std::getline(parts, part, '/'); // build/corpus/PACKAGE
    packages[part].push_back(std::move(drawing[0]));
  }
  return packages;
}

// Arguments choose the rows whose name contains one of them.
int main(int count, char **arguments) {
  const auto chosen = [&](const char *name) {
    return count == 1 || std::any_of(arguments + 1, arguments + count, [&](const char *part) {
             return std::strstr(name, part) != nullptr;
           });
  };
  std::printf("%-37s%7s%8s", "", "files", "MB");
  for (const Contender &contender : contenders) std::printf("%17s", contender.name);
  std::printf("%17s%9s%7s%8s%8s\n%-52s", "walk of scene", "kept", "peak", "growth", "walk's", "");
  for (int i = 0; i < COLUMNS; ++i) std::printf("%11s%6s", "ms", "ratio");
  std::printf("%16s\n", "per byte");

  Mean mean;
  for (const auto &[package, drawings] : read_corpus())
    if (chosen(package.c_str())) {
      mean.add(print_row(package, drawings));
      std::printf("\n");
    }
  for (const Family &family : families)
    if (chosen(family.name)) {
      mean.add(print_row(family.name, {family.generate(family.size)}));
      print_growth(family);
      std::printf("\n");
    }
  if (const char *name = "1000 icons of 1 KB"; chosen(name)) {
    const Times times = print_row(name, Documents(1000, icon_document()));
    mean.add(times);
    std::printf("\n%-37s%.1f us\n", "One icon costs over two passes",
                (times.median[READER] - times.median[TWO_PASSES]) * 1e3);
  }
  if (const char *name = "Twice the rules cost a factor of"; chosen(name))
    std::printf("%-37s%.2f\n", name,
                cost_ratio(make_reading({styled_document(50000, 200)}),
                           make_reading({styled_document(50000, 400)})));
  mean.print();
}
