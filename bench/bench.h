// bench.h: what the table of ./dev bench is made of: contenders, and documents for them.
#ifndef BENCH_BENCH_H
#define BENCH_BENCH_H

#include <functional>
#include <string>
#include <vector>

using Documents = std::vector<std::string>;

// ---- Contenders (contenders.cpp) ----------------------------------------------------------------

// Reads documents one after another, each freed before the next. False: one of them was refused.
struct Contender {
  const char *name;
  bool (*read)(const Documents &documents);
};

enum { ONE_PASS, TWO_PASSES, READER, CONTENDERS = 5 };
extern const Contender contenders[CONTENDERS];

// Reads documents and keeps their trees. What is returned walks over each of them once: it makes a
// scene and paints it into callbacks that only count. False: a walk was ended by an error.
std::function<bool()> make_walk(const Documents &documents);

// Bytes of memory while the reader holds all the documents' trees at a time.
struct Memory {
  double kept; // handed out by malloc and not freed, with malloc's own overhead
  double peak; // resident, at the most
};
Memory measure_memory(const Documents &documents);

// ---- Documents (families.cpp) -------------------------------------------------------------------

// A family of generated documents that grow with a size.
struct Family {
  const char *name;
  int size;
  std::string (*generate)(int size);
};
extern const std::vector<Family> families;

std::string styled_document(int elements, int rules);
std::string icon_document();

#endif
