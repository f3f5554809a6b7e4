// gzip.cpp: reading gzip streams (RFC 1952) over a file. The reader calls it. Opening raises
// ORT_E_NO_MEMORY and ORT_E_READ; reading leaves its errors pending and returns -1. As gzip does,
// it reads concatenated members and ignores what follows the last one.
#include <charconv>
#include <stdio.h>
#include <string.h>
#include <zlib.h>

#include "core/ort_state.h"

struct ort_gz {
  ort_core *core;
  ort_file *file;
  z_stream stream;
  uint64_t inflated;  // bytes of all members so far
  bool ended;         // after the last member
  int error;          // code of the error that ended the stream; 0: none
  const char *reason; // of ORT_E_GZIP
  unsigned char input[16384];
};

static void inflate_some(ort_gz *gz);
static bool next_member(ort_gz *gz);
static bool fill(ort_gz *gz);
static void fail(ort_gz *gz, int error, const char *reason);
static void compose_error(const ort_gz *gz);
static void *allocate(void *core, unsigned count, unsigned size);
static void release(void *core, void *block);

ort_gz *ort_gzopen(ort_file *file) {
  ort_core *core = ort_file_core(file);
  if (ort_fseek(file, 0, SEEK_SET) != 0) {
    ort_error(core, ORT_E_READ, ort_fname(file), nullptr, nullptr, nullptr);
  }
  ort_gz *gz = ort_new<ort_gz>(core, "ort_gzopen");
  gz->core = core;
  gz->file = file;
  gz->stream.zalloc = allocate;
  gz->stream.zfree = release;
  gz->stream.opaque = core;
  if (inflateInit2(&gz->stream, MAX_WBITS + 16) != Z_OK) { // + 16: gzip, not zlib, streams
    ort_free(core, gz);
    ort_raise_no_memory(core);
  }
  return gz;
}

int64_t ort_gzread(ort_gz *gz, void *buffer, size_t length) {
  constexpr size_t MAX_PART = 1U << 30; // zlib counts in unsigned int
  size_t done = 0;
  while (done < length && !gz->ended && gz->error == 0) {
    const size_t part = length - done < MAX_PART ? length - done : MAX_PART;
    gz->stream.next_out = static_cast<unsigned char *>(buffer) + done;
    gz->stream.avail_out = static_cast<unsigned>(part);
    inflate_some(gz);
    done += part - gz->stream.avail_out;
  }
  if (gz->error == 0) return static_cast<int64_t>(done);
  compose_error(gz);
  return -1;
}

void ort_gzclose(ort_gz *gz) {
  if (!gz) return;
  inflateEnd(&gz->stream);
  ort_free(gz->core, gz);
}

// One call of inflate, and what its result asks for.
static void inflate_some(ort_gz *gz) {
  const unsigned room = gz->stream.avail_out;
  const int result = inflate(&gz->stream, Z_NO_FLUSH);
  gz->inflated += room - gz->stream.avail_out;
  if (gz->inflated > gz->core->options.inflate_budget) {
    fail(gz, ORT_E_LIMIT, nullptr);
    return;
  }
  switch (result) {
  case Z_OK: break;
  case Z_STREAM_END: gz->ended = !next_member(gz); break;
  case Z_BUF_ERROR: // only more input helps
    if (!fill(gz)) fail(gz, ORT_E_GZIP, "unexpected end of data");
    break;
  case Z_MEM_ERROR: fail(gz, ORT_E_NO_MEMORY, nullptr); break;
  default: fail(gz, ORT_E_GZIP, gz->stream.msg ? gz->stream.msg : "invalid data");
  }
}

// Goes to the member that follows; false: there is none.
static bool next_member(ort_gz *gz) {
  while (gz->stream.avail_in < 2) {
    if (!fill(gz)) return false;
  }
  const unsigned char *id = gz->stream.next_in;
  return id[0] == 0x1F && id[1] == 0x8B && inflateReset(&gz->stream) == Z_OK;
}

// Reads more input after what is left of it; false: there is none.
static bool fill(ort_gz *gz) {
  const size_t left = gz->stream.avail_in;
  if (left > 0) memmove(gz->input, gz->stream.next_in, left);
  const size_t got = ort_fread(gz->input + left, 1, sizeof gz->input - left, gz->file);
  gz->stream.next_in = gz->input;
  gz->stream.avail_in = static_cast<unsigned>(left + got);
  if (got == 0 && !ort_feof(gz->file)) fail(gz, ORT_E_READ, nullptr);
  return got > 0;
}

// The first error stays.
static void fail(ort_gz *gz, int error, const char *reason) {
  if (gz->error != 0) return;
  gz->error = error;
  gz->reason = reason;
}

static void compose_error(const ort_gz *gz) {
  const char *first = ort_fname(gz->file);
  const char *second = gz->reason;
  char budget[24];
  if (gz->error == ORT_E_LIMIT) {
    *std::to_chars(budget, budget + 23, gz->core->options.inflate_budget).ptr = '\0';
    first = "inflated bytes";
    second = budget;
  }
  ort_set_errmsg(gz->core, gz->error, first, second, nullptr, nullptr);
}

// ---- zlib's memory ------------------------------------------------------------------------------

static void *allocate(void *core, unsigned count, unsigned size) {
  return ort_try_malloc(static_cast<ort_core *>(core), size_t{count} * size, "ort_gzopen");
}

static void release(void *core, void *block) { ort_free(static_cast<ort_core *>(core), block); }
