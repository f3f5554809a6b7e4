/* ort.h: the host runtime as a host sees it.
 *
 * A host makes a core, opens its input, calls the reader inside ort_protect and deletes the core at
 * the end. Everything that the reader allocates, logs, warns about and raises goes through the
 * core. A core belongs to one thread at a time; different cores are independent.
 *
 * Errors are raised: a function that says "raises" leaves by a non-local exit to the nearest
 * ort_protect. Do not keep objects with destructors alive across such a call inside the protected
 * function. A raise outside of any ort_protect writes the message to standard error and aborts.
 */
#ifndef ORT_H
#define ORT_H

#include <stddef.h>
#include <stdint.h>

#include "core/ort_limits.h"

#if defined(__GNUC__) || defined(__clang__)
#define ORT_API __attribute__((visibility("default")))
#define ORT_NORETURN __attribute__((noreturn))
#else
#define ORT_API
#define ORT_NORETURN
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct ort_core ort_core;
typedef struct ort_file ort_file;
typedef struct ort_gz ort_gz;
typedef struct ort_vtr ort_vtr;
typedef struct ort_bs ort_bs;

/* ---- The core -------------------------------------------------------------------------------- */

enum { ORT_LOG_CLASSES = 32, ORT_LOG_READER = 26, ORT_LOG_LINES = 27 };

typedef enum ort_severity { ORT_WARNING = 1, ORT_ERROR = 2 } ort_severity;

/* Codes of the runtime's own errors. The reader's codes 10000 to 10104 come from its error table.
 */
enum {
  ORT_E_CALL_FAILED = 1000,     /* "Function '$1' failed" */
  ORT_E_NO_MEMORY = 1001,       /* "Out of memory" */
  ORT_E_OPEN = 1050,            /* "Cannot open file '$1': $2" */
  ORT_E_READ = 1056,            /* "Error reading file '$1'" */
  ORT_E_GZIP = 1057,            /* "Error in compressed file '$1': $2" */
  ORT_E_NO_VIRTUAL_FILE = 1060, /* "No virtual file '$1'" */
  ORT_E_XML = 1700,             /* "XML: $1 in line $2, column $3" */
  ORT_E_ARC = 1801,             /* "Elliptical arc cannot be converted" */
  ORT_E_INTERNAL = 1926,        /* "Internal error in $1, line $2" */
  ORT_E_LIMIT = 1930            /* "Limit of $2 $1 exceeded" */
};

/* Receives each warning as it is issued and the error that reaches the outermost ort_protect. text
 * is UTF-8 without control bytes and valid only during the call. The function must return. */
typedef void (*ort_message_fn)(void *user, ort_severity severity, int code, const char *text);

/* Receives pieces of the log; lines end with "\n" but a call need not hold a whole line. The
 * function must return. */
typedef void (*ort_log_fn)(void *user, const char *text, size_t length);

typedef struct ort_options {
  ort_message_fn message; /* null: messages are dropped */
  void *message_user;
  ort_log_fn log; /* null: the log is dropped */
  void *log_user;
  unsigned char log_levels[ORT_LOG_CLASSES]; /* by class; 0 is off. ORT_LOG_READER: 3 markup, 5
                                                detail, 6 all */
  uint64_t memory_budget;                    /* bytes; 0: ORT_LIMIT_MEMORY */
  uint64_t inflate_budget;                   /* bytes; 0: ORT_LIMIT_INFLATED */
  uint64_t fail_at; /* for tests: the n-th allocation fails, from 1; 0: none */
  int fail_on;      /* for tests: not 0: every allocation from fail_at on fails */
} ort_options;

/* Fills options with the defaults: no sinks, no log, default budgets. */
ORT_API void ort_options_init(ort_options *options);

/* Makes a core. options may be null (defaults) and is copied. Returns null when memory is short.
 * The options' fail_at counts only allocations made after the core exists. */
ORT_API ort_core *ort_core_new(const ort_options *options);

/* Deletes a core and every virtual file and temporary text that it still owns. null is allowed.
 * Parsers, files and containers must have been deleted before. */
ORT_API void ort_core_delete(ort_core *core);

/* ---- Errors ---------------------------------------------------------------------------------- */

/* Calls body(argument). Returns 0 when it returned, and the code of the error when it raised one.
 * Calls nest. */
ORT_API int ort_protect(ort_core *core, void (*body)(void *argument), void *argument);

/* Text and code of the last error caught by ort_protect, "" and 0 before. Owned by the core. */
ORT_API const char *ort_error_text(const ort_core *core);
ORT_API int ort_error_code(const ort_core *core);

/* ---- Statistics ------------------------------------------------------------------------------ */

typedef struct ort_tag_count {
  const char *tag; /* name of the allocating function */
  uint64_t blocks; /* live blocks */
  uint64_t bytes;  /* live bytes, as requested */
} ort_tag_count;

typedef struct ort_statistics {
  uint64_t live_blocks;
  uint64_t live_bytes;
  uint64_t peak_bytes;
  uint64_t allocations; /* made since the core exists, failed ones included */
} ort_statistics;

ORT_API void ort_get_statistics(const ort_core *core, ort_statistics *statistics);

/* Stores up to capacity tags, sorted by tag, in counts (may be null when capacity is 0). Returns
 * the number of tags ever used by the core. */
ORT_API size_t ort_get_tag_counts(const ort_core *core, ort_tag_count *counts, size_t capacity);

/* Makes the peak start again from the bytes live now. */
ORT_API void ort_reset_peak(ort_core *core);

/* ---- Log ------------------------------------------------------------------------------------- */

/* Level of a log class; 0 for classes outside 0 to ORT_LOG_CLASSES - 1. */
ORT_API int ort_logg_getlevel(const ort_core *core, int log_class);

/* ---- Files ----------------------------------------------------------------------------------- */

/* Opens a file on disk. Raises ORT_E_OPEN when it does not exist, cannot be read or is a directory.
 */
ORT_API ort_file *ort_fopen(ort_core *core, const char *path);

/* Opens length bytes as a file. The bytes are not copied and must outlive the file. name (not null,
 * copied) stands in messages. Raises only for lack of memory. */
ORT_API ort_file *ort_fopen_memory(ort_core *core, const char *name, const void *bytes,
                                   size_t length);

/* Closes a file; null is allowed. */
ORT_API void ort_fclose(ort_file *file);

/* Reads up to size * count bytes; returns the number of whole items read. Fewer than count means
 * end of file (then ort_feof is not 0) or a read error. Never raises. */
ORT_API size_t ort_fread(void *buffer, size_t size, size_t count, ort_file *file);

/* Not 0 once the file's end has been reached: a read met it, or nothing is left to read. */
ORT_API int ort_feof(ort_file *file);

/* Moves to a byte offset, whence as SEEK_SET (0) only. Returns 0, or -1 when the file cannot do it.
 */
ORT_API int ort_fseek(ort_file *file, int64_t offset, int whence);

/* Bytes of the file, or -1 when it is not known (a pipe). */
ORT_API int64_t ort_fsize(ort_file *file);

/* 1 when the file begins with the gzip signature (RFC 1952, 2.3.1), else 0. Leaves the file at its
 * start. */
ORT_API int ort_is_gzip(ort_file *file);

/* Opens a gzip stream over file, from the file's start. The file stays the caller's. Raises for
 * lack of memory. */
ORT_API ort_gz *ort_gzopen(ort_file *file);

/* Reads up to length inflated bytes, through concatenated members. Fewer than length means the end.
 * Returns -1 with a pending error (raise it with ort_rethrow) for data that are truncated, corrupt
 * or past the inflate budget. */
ORT_API int64_t ort_gzread(ort_gz *gz, void *buffer, size_t length);

/* Closes a gzip stream, not its file; null is allowed. */
ORT_API void ort_gzclose(ort_gz *gz);

/* ---- Virtual files --------------------------------------------------------------------------- */

/* Number of virtual files, and the name of the i-th in order of creation (null past the end). */
ORT_API size_t ort_pvf_count(const ort_core *core);
ORT_API const char *ort_pvf_name(const ort_core *core, size_t index);

/* Bytes of a virtual file, and the pointer to them; the pointer stays valid while the file exists.
 * size may be null. Returns null when there is no such file (an empty file gives a valid pointer).
 */
ORT_API const unsigned char *ort_pvf_data(const ort_core *core, const char *name, size_t *size);

/* Opens a virtual file for reading. It keeps the data alive until ort_fclose. Raises
 * ORT_E_NO_VIRTUAL_FILE. */
ORT_API ort_file *ort_pvf_open(ort_core *core, const char *name);

/* ---- Reading containers ---------------------------------------------------------------------- */

/* Number of items of a vector (0 for null), and the address of item i (i must be below the number).
 */
ORT_API size_t ort_vtr_count(const ort_vtr *vector);
ORT_API void *ort_vtr_at(const ort_vtr *vector, size_t i);

/* Byte strings: new (empty), delete (null is allowed), make empty, text (terminated, never null),
 * length. New raises for lack of memory. */
ORT_API ort_bs *ort_bs_new(ort_core *core);
ORT_API void ort_bs_delete(ort_bs *bs);
ORT_API void ort_bs_clear(ort_bs *bs);
ORT_API const char *ort_bs_text(const ort_bs *bs);
ORT_API size_t ort_bs_length(const ort_bs *bs);

/* ---- Matrices and arcs ----------------------------------------------------------------------- */

/* The cubic segments of one elliptical arc. Each segment is x1 y1 x2 y2 x3 y3: first control point,
 * second control point, end point. */
typedef struct ort_bezier_list {
  int32_t count; /* 0 to 4 */
  double segments[4][6];
} ort_bezier_list;

#ifdef __cplusplus
}
#endif

#endif
