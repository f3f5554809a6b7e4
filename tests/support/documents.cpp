#include "tests/support/documents.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

static const char *listed() { return std::getenv("SVGREADER_DOCUMENTS"); }

static NamedBytes read_file(const std::filesystem::path &path) {
  std::ifstream file(path, std::ios::binary);
  return {path.string(), {std::istreambuf_iterator<char>(file), {}}};
}

std::vector<NamedBytes> files_below(const std::string &folder) {
  std::vector<NamedBytes> result;
  const std::filesystem::path root = std::filesystem::path(SVGREADER_SOURCE_DIR) / folder;
  std::error_code none;
  for (const auto &entry : std::filesystem::directory_iterator(root, none))
    if (entry.is_regular_file()) result.push_back(read_file(entry.path()));
  std::sort(result.begin(), result.end(),
            [](const NamedBytes &a, const NamedBytes &b) { return a.name < b.name; });
  return result;
}

std::vector<NamedBytes> documents() {
  std::vector<NamedBytes> result = files_below("samples");
  for (NamedBytes &seed : files_below("fuzz/seeds/reader"))
    if (seed.bytes[0] != '#') result.push_back(std::move(seed));
  if (!listed()) return result;
  std::ifstream list(listed());
  for (std::string path; std::getline(list, path);) result.push_back(read_file(path));
  return result;
}

size_t hostile_stride(size_t ways, size_t tried) {
  return listed() ? 1 : std::max<size_t>(1, ways / tried);
}
