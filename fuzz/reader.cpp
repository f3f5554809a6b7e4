// A whole drawing, plain or gzip, under settings drawn from the input. The sheet that the host
// hands out is the drawing itself.
#include "fuzz/support/fuzz.h"
#include "tests/support/gzip.h"

void fuzz_reader(const std::string &input) {
  const FuzzInput parts(input);
  const bool packed = parts.settings[FuzzInput::FORM] % 2 != 0;
  fuzz_read(packed ? gzip(parts.text) : parts.text, parts);
}
