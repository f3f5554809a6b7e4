// documents.h: the drawings that are read in every hostile way.
#ifndef TESTS_SUPPORT_DOCUMENTS_H
#define TESTS_SUPPORT_DOCUMENTS_H

#include <string>
#include <vector>

struct NamedBytes {
  std::string name, bytes;
};

// The files of a folder below the root of the project, by name; none when the folder is missing.
std::vector<NamedBytes> files_below(const std::string &folder);

// samples/ and the seeds of the reader's fuzz target; with `./dev test --hostile` also the drawings
// that the environment variable SVGREADER_DOCUMENTS lists, a path each.
std::vector<NamedBytes> documents();

// 1 under `./dev test --hostile`, else a stride: of the many ways to break a document each few-th
// is tried, few enough for the ordinary tests.
size_t hostile_stride(size_t ways, size_t tried);

#endif
