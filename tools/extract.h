// extract.h: writes the data embedded in drawings to files.
#ifndef TOOLS_EXTRACT_H
#define TOOLS_EXTRACT_H

#include <cstdio>
#include <set>
#include <string>

#include "tools/drawing.h"

// The folder that the files go to. File names come from a digest of the data and from its type,
// never from the drawing.
class Extractor {
public:
  Extractor(std::string folder, bool force) : folder_(std::move(folder)), force_(force) {}
  ~Extractor();
  Extractor(const Extractor &) = delete;
  Extractor &operator=(const Extractor &) = delete;

  // Creates the folder if need be and opens it; false after a message.
  bool open();

  // Writes the drawing's data and prints a line for each file. False after a message when a file
  // could not be written, or exists with other contents and may not be replaced.
  bool extract(FILE *out, const Drawing &drawing);

private:
  bool write(const std::string &name, const unsigned char *data, size_t size);
  bool fail(const std::string &name, int error) const;

  std::string folder_;
  bool force_;
  int descriptor_ = -1;
  std::set<std::string> written_; // by this run
};

#endif
