// ort_state.h: what a core is made of. For the files of core/ and the tests' support only.
#ifndef ORT_STATE_H
#define ORT_STATE_H

#include <stdarg.h>

#include "core/chunks.h"
#include "core/ort_core.h"

// ---- Memory (memory.cpp) ------------------------------------------------------------------------

struct ort_temporary; // links in front of a temporary block

// A literal's address and the number of its tag. Literals with equal texts share a number.
struct ort_tag_place {
  const char *literal;
  uint32_t tag;

  static size_t home_of(const char *literal) {
    return reinterpret_cast<uintptr_t>(literal) * 0x9E3779B97F4A7C15U >> 32;
  }
  bool is_free() const { return !literal; }
  size_t home() const { return home_of(literal); }
};

// How many blocks of a tag there are, and of how many bytes.
struct ort_count {
  uint64_t blocks, bytes;
};

struct ort_tag {
  const char *text;
  ort_count outside; // of chunks
  ort_count all;     // when somebody asks: blocks in chunks are counted then
};

struct ort_memory {
  uint64_t left;      // bytes that the budget still allows
  int64_t peak_left;  // were left at the peak; below zero when own_bytes have grown since
  uint64_t own_bytes; // of ort_own_realloc; in the budget, not in the statistics

  uint64_t failing, until_failing; // number of the allocation that fails, and how many are left
  bool fail_on;                    // and every later one

  ort_tag *tags;       // by number
  uint32_t *tag_order; // numbers in ascending order of tag text
  uint32_t tag_count, tag_capacity;
  ort_places<ort_tag_place> literals;
  size_t literal_count;

  ort_temporary *temporaries; // the newest first
  ort_spare *spares;          // the newest first
  ort_chunks chunks;
};

// For tests: allocation number at fails, counted from 1 since the core was made, and with on every
// later one; 0: none does.
void ort_fail_at(ort_core *core, uint64_t at, bool on);

// Memory for the core's own tables, which no host has to free: resizes block from old_size to size
// bytes; null: memory is short. It counts for the budget and for failures, not as a live block.
// Size 0 frees and gives null.
void *ort_own_realloc(ort_core *core, void *block, size_t old_size, size_t size);

ORT_NORETURN void ort_raise_no_memory(ort_core *core);

bool ort_memory_new(ort_core *core);    // false: memory is short
void ort_memory_delete(ort_core *core); // temporary blocks and tables

// ---- Formatting (format.cpp) --------------------------------------------------------------------

// Where formatted text goes. put takes a piece that ends at a character boundary; it may raise.
struct ort_out {
  void (*put)(ort_out *out, const char *bytes, size_t length);
};

// Puts a text escaped as by ort_escape, and cut to at most limit bytes before a whole character or
// escape.
void ort_put_escaped(ort_out *out, const char *text, size_t limit);

// Puts the values as format says; the conversions are those of ort_logg.
void ort_put_format(ort_out *out, const char *format, va_list values);

// ---- Errors (error.cpp) -------------------------------------------------------------------------

constexpr size_t ORT_PRINTED_TEXTS = 16;

struct ort_frame; // an open ort_protect

// A text with an end, which making never allocates.
template <size_t SIZE> struct ort_fixed_text {
  ort_out out;
  size_t length;
  char text[SIZE];
};
using ort_message = ort_fixed_text<12 * ORT_LIMIT_MESSAGE_PARAMETER>;
using ort_printed = ort_fixed_text<ORT_LIMIT_MESSAGE_PARAMETER + 1>; // of ort_errprintf

struct ort_errors {
  ort_frame *frame; // innermost
  const ort_errtab_entry *tables[ORT_ERRTABS];
  size_t table_sizes[ORT_ERRTABS];
  int code; // of the pending error; 0: none yet
  ort_message message;
};

// ---- Files (file.cpp, virtual_file.cpp) ---------------------------------------------------------

struct ort_pvf;

// All virtual files.
struct ort_pvf_table {
  ort_name_index names;
  ort_pvf **order; // of creation; deleted ones leave holes (null)
  size_t count, order_used, capacity;
};

ort_core *ort_file_core(const ort_file *file);

// Opens memory that belongs to a virtual file; ort_fclose gives the file back by ort_pvf_close.
ort_file *ort_fopen_pvf(ort_core *core, const char *name, const void *bytes, size_t length,
                        ort_pvf *owner);
void ort_pvf_close(ort_core *core, ort_pvf *file);
void ort_pvf_delete_all(ort_core *core);

// ---- The core -----------------------------------------------------------------------------------

struct ort_core {
  ort_options options;
  ort_memory memory;
  ort_errors errors;
  ort_printed printed[ORT_PRINTED_TEXTS];
  unsigned next_printed;
  uint64_t secret;
  mutable ort_pvf_table files; // a query may close the holes
};

#endif
