// gzip.h: compressed input for tests.
#ifndef TESTS_SUPPORT_GZIP_H
#define TESTS_SUPPORT_GZIP_H

#include <string>
#include <zlib.h>

// One gzip member; with a header that uses every optional field of RFC 1952 when asked for.
inline std::string gzip(const std::string &bytes, bool full_header = false) {
  z_stream stream = {};
  deflateInit2(&stream, 9, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY);
  gz_header header = {};
  unsigned char name[] = "name", comment[] = "comment", extra[] = {1, 2, 3};
  header.extra = extra;
  header.extra_len = sizeof extra;
  header.name = name;
  header.comment = comment;
  header.hcrc = 1;
  if (full_header) deflateSetHeader(&stream, &header);
  std::string out(deflateBound(&stream, bytes.size()) + 100, '\0');
  stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef *>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  deflate(&stream, Z_FINISH);
  out.resize(stream.total_out);
  deflateEnd(&stream);
  return out;
}

#endif
