/** @file
 * The host runtime as a host sees it: cores, protected calls, errors, memory, log, files.
 *
 * A host makes a core, opens its input, calls the reader inside ort_protect and deletes the core at
 * the end. Everything that the reader allocates, logs, warns about and raises goes through the
 * core. A core belongs to one thread at a time; different cores are independent.
 *
 * Errors are raised: a function that says "raises" leaves by a non-local exit to the nearest
 * ort_protect. Do not keep objects with destructors alive across such a call inside the protected
 * function. A raise outside of any ort_protect writes the message to standard error and aborts.
 *
 * Unless said otherwise, pointers must not be null, and texts are UTF-8 and end with a NUL.
 */
#ifndef ORT_H
#define ORT_H

#include <stddef.h>
#include <stdint.h>

#include "ort_limits.h"

/** @cond */
#if defined(__GNUC__) || defined(__clang__)
#define ORT_API __attribute__((visibility("default")))
#define ORT_NORETURN __attribute__((noreturn))
#else
#define ORT_API
#define ORT_NORETURN
#endif
/** @endcond */

#ifdef __cplusplus
extern "C" {
#endif

/** Memory, errors, log and virtual files of one host thread. */
typedef struct ort_core ort_core;
/** A file open for reading: on disk, in memory or virtual. */
typedef struct ort_file ort_file;
/** A gzip stream over a file. */
typedef struct ort_gz ort_gz;
/** A vector of items of one size. */
typedef struct ort_vtr ort_vtr;
/** A growing byte string. */
typedef struct ort_bs ort_bs;

/* ---- The core -------------------------------------------------------------------------------- */

/** Classes of the log. */
enum {
  ORT_LOG_CLASSES = 32, /**< number of classes, from 0 */
  ORT_LOG_READER = 26,  /**< what the reader and the CSS engine do */
  ORT_LOG_LINES = 27    /**< at level 1: a line end before each warning about a value */
};

/** What a message is about. */
typedef enum ort_severity {
  ORT_WARNING = 1, /**< the parse goes on */
  ORT_ERROR = 2    /**< it reached the outermost ort_protect */
} ort_severity;

/** Codes of the runtime's own errors. The reader's are SVG_E_* (svg/svg.h), the CSS engine's
 * warnings 10200 to 10205, the scene's 10400 and 10401. */
enum {
  ORT_E_CALL_FAILED = 1000,     /**< "Function '$1' failed" */
  ORT_E_NO_MEMORY = 1001,       /**< "Out of memory": also past the memory budget */
  ORT_E_OPEN = 1050,            /**< "Cannot open file '$1': $2" */
  ORT_E_READ = 1056,            /**< "Error reading file '$1'" */
  ORT_E_GZIP = 1057,            /**< "Error in compressed file '$1': $2" */
  ORT_E_NO_VIRTUAL_FILE = 1060, /**< "No virtual file '$1'" */
  ORT_E_XML = 1700,             /**< "XML: $1 in line $2, column $3" */
  ORT_E_ARC = 1801,             /**< "Elliptical arc cannot be converted": a warning only */
  ORT_E_INTERNAL = 1926,        /**< "Internal error in $1, line $2" */
  ORT_E_LIMIT = 1930            /**< "Limit of $2 $1 exceeded" */
};

/** Receives each warning as it is issued and the error that reaches the outermost ort_protect.
 * text is UTF-8 escaped as by ort_escape, and valid only during the call. The function must return.
 */
typedef void (*ort_message_fn)(void *user, ort_severity severity, int code, const char *text);

/** Receives pieces of the log. Lines end with "\n" but a call need not hold a whole line. The
 * function must return. */
typedef void (*ort_log_fn)(void *user, const char *text, size_t length);

/** What a host chooses for a core. */
typedef struct ort_options {
  ort_message_fn message; /**< null: messages are dropped */
  void *message_user;     /**< first argument of message */
  ort_log_fn log;         /**< null: the log is dropped */
  void *log_user;         /**< first argument of log */
  /** Level by class; 0 is off. ORT_LOG_READER: 3 markup, 5 detail, 6 all. */
  unsigned char log_levels[ORT_LOG_CLASSES];
  /** Bytes of the blocks alive at a time, as requested, without what holding them costs
   * (docs/limits.md); 0: ORT_LIMIT_MEMORY. */
  uint64_t memory_budget;
  uint64_t inflate_budget; /**< bytes that one gzip stream gives; 0: ORT_LIMIT_INFLATED */
} ort_options;

/** Fills options with the defaults: no sinks, no log, default budgets. */
ORT_API void ort_options_init(ort_options *options);

/** Makes a core.
 * @param options  copied; null: the defaults
 * @return the core, deleted with ort_core_delete; null when memory is short */
ORT_API ort_core *ort_core_new(const ort_options *options);

/** Deletes a core and every virtual file and temporary text that it still owns. Parsers, files and
 * containers must have been deleted before. Null is allowed. */
ORT_API void ort_core_delete(ort_core *core);

/* ---- Errors ---------------------------------------------------------------------------------- */

/** Calls body(argument) and catches what it raises. Calls nest.
 * @param core      the core of everything that body calls
 * @param body      left at once when something below it raises
 * @param argument  handed to body; may be null
 * @return 0 when body returned, else the code of the error that it raised */
ORT_API int ort_protect(ort_core *core, void (*body)(void *argument), void *argument);

/** Text of the last error that was raised; "" before the first. Owned by the core and valid until
 * the next error or warning. */
ORT_API const char *ort_error_text(const ort_core *core);

/** Code of the last error that was raised; 0 before the first. */
ORT_API int ort_error_code(const ort_core *core);

/** A row of an error table; rows are in ascending order of code. */
typedef struct ort_errtab_entry {
  int32_t parameters; /**< how many the text has */
  int32_t code;       /**< above those of the tables before it */
  const char *text;   /**< "$1" to "$4" stand for the parameters */
  const char *second; /**< reserved, null */
} ort_errtab_entry;

/** Numbers of error tables: from 0, the runtime's own. The reader has 8, the CSS engine 9, the
 * scene 10. */
enum { ORT_ERRTABS = 16 };

/** Makes a table of messages known to a core, for what is built upon the library. Registering the
 * same table again does nothing.
 * @param core    the core
 * @param number  of the table, from 1 to ORT_ERRTABS - 1
 * @param table   constant, not copied
 * @param count   its rows
 * @raises ORT_E_INTERNAL for a number that is not in the range */
ORT_API void ort_register_errtab(ort_core *core, int number, const ort_errtab_entry *table,
                                 int count);

/** Raises an error. Parameters are escaped as by ort_escape and cut to ORT_LIMIT_MESSAGE_PARAMETER
 * bytes; null counts as "".
 * @param core  the core
 * @param code  of a registered table; -1: the error that ort_protect caught last, again
 * @param p1    the first parameter, or null
 * @param p2    the second
 * @param p3    the third
 * @param p4    the fourth */
ORT_NORETURN ORT_API void ort_error(ort_core *core, int code, const char *p1, const char *p2,
                                    const char *p3, const char *p4);

/** Reports a warning to the message sink and returns. Parameters as of ort_error; code -1 reports
 * the error that ort_protect caught last. */
ORT_API void ort_warning(ort_core *core, int code, const char *p1, const char *p2, const char *p3,
                         const char *p4);

/** Formats one value as a parameter of a message, and cuts it like one.
 * @param core    the core
 * @param format  "%a" or "%s" for a text, "%d" for an int, "%ld" for a long,
 *     "%g" for a double; text around it
 * @return the parameter. The core keeps the last 16, so several can be used at once. */
ORT_API const char *ort_errprintf(ort_core *core, const char *format, ...);

/* ---- Memory ---------------------------------------------------------------------------------- */

/** Takes memory within the core's budget, aligned to 8 bytes.
 * @param core  the core
 * @param size  in bytes; 0 gives a valid block
 * @param tag   name of the allocating function, not copied
 * @return the block, never null; freed with ort_free before the core goes
 * @raises ORT_E_NO_MEMORY */
ORT_API void *ort_malloc(ort_core *core, size_t size, const char *tag);

/** The same for count items of size bytes, zeroed. */
ORT_API void *ort_calloc(ort_core *core, size_t count, size_t size, const char *tag);

/** Changes the size of a block, which may move; null is a new one. When it raises, the block is as
 * it was. */
ORT_API void *ort_realloc(ort_core *core, void *block, size_t size, const char *tag);

/** Frees a block; null is allowed. */
ORT_API void ort_free(ort_core *core, void *block);

/* ---- Statistics ------------------------------------------------------------------------------ */

/** Live memory of one allocating function. */
typedef struct ort_tag_count {
  const char *tag; /**< name of the function */
  uint64_t blocks; /**< live blocks */
  uint64_t bytes;  /**< live bytes, as requested */
} ort_tag_count;

/** Memory of a core, without its own tables. */
typedef struct ort_statistics {
  uint64_t live_blocks; /**< blocks alive now */
  uint64_t live_bytes;  /**< their bytes, as requested */
  uint64_t peak_bytes;  /**< the most live bytes since the core exists, or since ort_reset_peak */
  uint64_t allocations; /**< made since the core exists, failed ones included */
} ort_statistics;

/** Stores the statistics of a core. */
ORT_API void ort_get_statistics(const ort_core *core, ort_statistics *statistics);

/** Stores the live memory by tag, in ascending order of tags.
 * @param core      the core
 * @param counts    room for capacity records; may be null when capacity is 0
 * @param capacity  records to store at most
 * @return the number of tags ever used by the core, whatever the capacity */
ORT_API size_t ort_get_tag_counts(const ort_core *core, ort_tag_count *counts, size_t capacity);

/** Makes the peak start again from the bytes live now. */
ORT_API void ort_reset_peak(ort_core *core);

/* ---- Log ------------------------------------------------------------------------------------- */

/** Level of a log class; 0 for classes outside 0 to ORT_LOG_CLASSES - 1. */
ORT_API int ort_logg_getlevel(const ort_core *core, int log_class);

/** Writes a text as messages and the log show texts of a drawing: as UTF-8 that cannot disturb a
 * terminal. A line end becomes "\\n", a tab "\\t", and "\\xNN" each byte of other control
 * characters (U+0001 to U+001F, U+007F to U+009F), of characters that override the direction of
 * text (U+202A to U+202E, U+2066 to U+2069: Unicode Standard Annex 9, 2) and of what is not
 * well-formed. Escaping the result again changes nothing. Never raises.
 * @param buffer  receives the result and a NUL, at most 4 bytes for each of text and the NUL; null:
 *     only the length is told
 * @param text    the text
 * @return the length of the result, without the NUL */
ORT_API size_t ort_escape(char *buffer, const char *text);

/* ---- Files ----------------------------------------------------------------------------------- */

/** Opens a file on disk.
 * @param core  the core that owns the file
 * @param path  its name, copied, which also stands in messages
 * @return the file, closed with ort_fclose
 * @raises ORT_E_OPEN when it does not exist, cannot be read or is a directory; ORT_E_NO_MEMORY */
ORT_API ort_file *ort_fopen(ort_core *core, const char *path);

/** Opens bytes in memory as a file.
 * @param core    the core that owns the file
 * @param name    stands in messages; copied
 * @param bytes   not copied, must outlive the file; may be null when length is 0
 * @param length  number of bytes
 * @return the file, closed with ort_fclose
 * @raises ORT_E_NO_MEMORY */
ORT_API ort_file *ort_fopen_memory(ort_core *core, const char *name, const void *bytes,
                                   size_t length);

/** Closes a file; null is allowed. */
ORT_API void ort_fclose(ort_file *file);

/** Reads up to size * count bytes into buffer. Never raises.
 * @return the number of whole items read. Fewer than count means the end of the file (then ort_feof
 *     is not 0) or a read error. */
ORT_API size_t ort_fread(void *buffer, size_t size, size_t count, ort_file *file);

/** Not 0 once the file's end has been reached: a read met it, or nothing is left to read. */
ORT_API int ort_feof(ort_file *file);

/** Moves to a byte offset.
 * @param file    the file
 * @param offset  in bytes from the start, not negative
 * @param whence  SEEK_SET (0)
 * @return 0, or -1 when the file cannot do it (a pipe, another whence) */
ORT_API int ort_fseek(ort_file *file, int64_t offset, int whence);

/** Bytes of the file, or -1 when it is not known (a pipe). */
ORT_API int64_t ort_fsize(ort_file *file);

/** 1 when the file begins with the gzip signature (RFC 1952, 2.3.1), else 0. Leaves the file at its
 * start. */
ORT_API int ort_is_gzip(ort_file *file);

/** Opens a gzip stream over a file, from the file's start.
 * @param file  stays the caller's and must outlive the stream
 * @return the stream, closed with ort_gzclose
 * @raises ORT_E_NO_MEMORY, and ORT_E_READ when the file cannot go back to its start */
ORT_API ort_gz *ort_gzopen(ort_file *file);

/** Reads up to length inflated bytes into buffer, through concatenated members. Never raises.
 * @return the number of bytes read; fewer than length means the end. -1 for data that are truncated
 *     or corrupt (ORT_E_GZIP), past the inflate budget (ORT_E_LIMIT) or unreadable (ORT_E_READ):
 *     ort_error_code and ort_error_text tell which. */
ORT_API int64_t ort_gzread(ort_gz *gz, void *buffer, size_t length);

/** Closes a gzip stream, not its file; null is allowed. */
ORT_API void ort_gzclose(ort_gz *gz);

/* ---- Virtual files --------------------------------------------------------------------------- */

/** Number of virtual files: the data embedded in the drawings that the core's parsers hold. */
ORT_API size_t ort_pvf_count(const ort_core *core);

/** Name of a virtual file by its place in order of creation, from 0; null past the end. Owned by
 * the file. */
ORT_API const char *ort_pvf_name(const ort_core *core, size_t index);

/** The bytes of a virtual file, which stay valid while the file exists.
 * @param core  the core
 * @param name  the file's name, as in svg_iri
 * @param size  receives the number of bytes; may be null
 * @return the bytes, for an empty file a valid pointer; null when there is no such file */
ORT_API const unsigned char *ort_pvf_data(const ort_core *core, const char *name, size_t *size);

/** Opens a virtual file for reading. It keeps the data alive until ort_fclose.
 * @raises ORT_E_NO_VIRTUAL_FILE, ORT_E_NO_MEMORY */
ORT_API ort_file *ort_pvf_open(ort_core *core, const char *name);

/* ---- Reading containers ---------------------------------------------------------------------- */

/** Number of items of a vector; 0 for null. */
ORT_API size_t ort_vtr_count(const ort_vtr *vector);

/** Address of item i, which must be below the number of items. */
ORT_API void *ort_vtr_at(const ort_vtr *vector, size_t i);

/** Makes an empty byte string, deleted with ort_bs_delete.
 * @raises ORT_E_NO_MEMORY */
ORT_API ort_bs *ort_bs_new(ort_core *core);

/** Deletes a byte string; null is allowed. */
ORT_API void ort_bs_delete(ort_bs *bs);

/** Appends bytes.
 * @raises ORT_E_NO_MEMORY; the string is then as it was */
ORT_API void ort_bs_append(ort_bs *bs, const void *bytes, size_t length);

/** Makes a byte string empty. */
ORT_API void ort_bs_clear(ort_bs *bs);

/** The bytes, followed by a NUL, never null; valid until the string is changed. */
ORT_API const char *ort_bs_text(const ort_bs *bs);

/** Number of bytes, without the NUL. */
ORT_API size_t ort_bs_length(const ort_bs *bs);

#ifdef __cplusplus
}
#endif

#endif
