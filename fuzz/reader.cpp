// A whole drawing, plain or gzip, under settings drawn from the input. The sheet that the host
// hands out is the drawing itself.
#include <zlib.h>

#include "fuzz/support/fuzz.h"

static std::string compressed(const std::string &text) {
  z_stream stream = {};
  deflateInit2(&stream, 1, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
  std::string result(deflateBound(&stream, text.size()) + 32, '\0');
  stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef *>(result.data());
  stream.avail_out = static_cast<uInt>(result.size());
  deflate(&stream, Z_FINISH);
  result.resize(stream.total_out);
  deflateEnd(&stream);
  return result;
}

void fuzz_reader(const std::string &input) {
  const FuzzInput parts(input);
  const bool gzip = parts.settings[FuzzInput::GZIP] % 2 != 0;
  fuzz_read(gzip ? compressed(parts.text) : parts.text, parts);
}
