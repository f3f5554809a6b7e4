// ort_core.h: the host runtime as the reader and the CSS engine use it. Hosts need core/ort.h only.
//
// Every function that takes memory raises ORT_E_NO_MEMORY and never returns null. "Raises" is a
// jump to the nearest ort_protect, so callers keep no owning C++ objects on the stack.
#ifndef ORT_CORE_H
#define ORT_CORE_H

#include <string_view>
#include <type_traits>

#include "core/ort.h"
#include "core/places.h"

// ---- Protected calls (error.cpp) ----------------------------------------------------------------

// Runs body() in a frame; true when it returned, false when it raised. The error is then pending:
// see ort_rethrow, ort_warning(core, -1), ort_error_code. body is a lambda that captures by
// reference; variables that it changes must not be locals of a function that itself called setjmp,
// which no caller does.
template <class Body> bool ort_protected(ort_core *core, Body &&body) {
  using Plain = std::remove_reference_t<Body>;
  return ort_protect(
             core, [](void *argument) { (*static_cast<Plain *>(argument))(); },
             const_cast<void *>(static_cast<const void *>(&body))) == 0;
}

// ---- The core (core.cpp) ------------------------------------------------------------------------

// A number that no document can know, for hash functions.
uint64_t ort_get_secret(const ort_core *core);

// ---- Errors (error.cpp) -------------------------------------------------------------------------

// The row of a code in any registered table, or null.
const ort_errtab_entry *ort_find_error(const ort_core *core, int code);

// Public, and here with defaults for C++.
// NOLINTBEGIN(readability-redundant-declaration)
[[gnu::cold]] ORT_NORETURN void ort_error(ort_core *core, int code, const char *p1 = nullptr,
                                          const char *p2 = nullptr, const char *p3 = nullptr,
                                          const char *p4 = nullptr);
[[gnu::cold]] void ort_warning(ort_core *core, int code, const char *p1 = nullptr,
                               const char *p2 = nullptr, const char *p3 = nullptr,
                               const char *p4 = nullptr);
// NOLINTEND(readability-redundant-declaration)

// As ort_error; bit i of mask says that parameter i + 1 is text of the document. Such a text, like
// every parameter, is escaped as by ort_escape, and cut at a character boundary to
// ORT_LIMIT_MESSAGE_PARAMETER bytes.
[[gnu::cold]] ORT_NORETURN void ort_ascii_error(ort_core *core, int code, int mask, const char *p1,
                                                const char *p2 = nullptr, const char *p3 = nullptr,
                                                const char *p4 = nullptr);

// Composes the pending error without raising it.
[[gnu::cold]] void ort_set_errmsg(ort_core *core, int code, const char *p1 = nullptr,
                                  const char *p2 = nullptr, const char *p3 = nullptr,
                                  const char *p4 = nullptr);

// Appends the text of code to the pending error, whose code stays.
[[gnu::cold]] void ort_push2_errmsg(ort_core *core, int code, const char *p1 = nullptr,
                                    const char *p2 = nullptr, const char *p3 = nullptr,
                                    const char *p4 = nullptr);

// Raises the pending error.
[[gnu::cold]] ORT_NORETURN void ort_rethrow(ort_core *core);

// Raises ORT_E_INTERNAL. source names the file.
[[gnu::cold]] ORT_NORETURN void ort_internal_error(ort_core *core, const char *source, int line);

// ---- Memory (memory.cpp) ------------------------------------------------------------------------

// As ort_malloc and ort_realloc, but null when memory is short: for allocation hooks of C
// libraries, which no raise may cross.
void *ort_try_malloc(ort_core *core, size_t size, const char *tag);
void *ort_try_realloc(ort_core *core, void *block, size_t size, const char *tag);

uint64_t ort_memory_budget(const ort_core *core);
uint64_t ort_memory_left(const ort_core *core); // bytes that the budget still allows

// Memory that its owner can do without. When the budget would refuse an allocation, spares are
// withdrawn, the newest first, and dropped: drop frees what it can, allocates nothing and raises
// nothing. It may be called by every allocation, and deletes no block but the owner's own.
struct ort_spare {
  ort_spare *next;
  void (*drop)(ort_spare *spare);
};
void ort_offer_spare(ort_core *core, ort_spare *spare);
void ort_withdraw_spare(ort_core *core, ort_spare *spare); // harmless when it was not offered

template <class T> T *ort_new_array(ort_core *core, size_t count, const char *tag) { // zeroed
  static_assert(std::is_trivially_destructible_v<T> && alignof(T) <= 8);
  return static_cast<T *>(ort_calloc(core, count, sizeof(T), tag));
}

// Zeroed record.
template <class T> T *ort_new(ort_core *core, const char *tag) {
  return ort_new_array<T>(core, 1, tag);
}

char *ort_strdup(ort_core *core, const char *text);
char *ort_strndup(ort_core *core, const char *text, size_t length,
                  const char *tag); // length bytes and a NUL

constexpr int ORT_DUP_PLAIN = 2048;   // owned by the caller, freed with ort_free
constexpr int ORT_DUP_TEMPORARY = 32; // owned by the core until ort_free_tmp or ort_core_delete
char *ort_strdup_ext(ort_core *core, const char *text, int flags, const char *tag);

// A temporary block, owned by the core: freed with ort_free_tmp, or by ort_core_delete when an
// error skipped that.
void *ort_malloc_tmp(ort_core *core, size_t size, const char *tag);
void ort_free_tmp(ort_core *core, void *block); // constant time; null is allowed

// ---- Vectors (vector.cpp) -----------------------------------------------------------------------

// How a container treats its items. reclaim prepares a new item (null: zero it), release frees what
// it owns (null: nothing).
struct ort_item_desc {
  size_t item_size;
  void (*reclaim)(void *item);
  void (*release)(ort_core *core, void *item);
};

// The vector's own block has room for capacity items; capacity and increment may be 0. The vector
// grows geometrically. Items move when it grows, so keep indexes,
// not pointers.
ort_vtr *ort_vtr_new(ort_core *core, const ort_item_desc *descriptor, size_t capacity,
                     size_t increment);
// A new vector of the items of this one, which is then empty. room: so many bytes follow the items.
ort_vtr *ort_vtr_take(ort_vtr *vector, const ort_item_desc *descriptor, size_t room);
void ort_vtr_delete(ort_vtr *vector); // releases the items; null is allowed
void *ort_vtr_push(ort_vtr *vector);  // the new item, reclaimed
void *ort_vtr_grow(ort_vtr *vector);  // the new item, to be filled by the caller at once
void ort_vtr_resize(ort_vtr *vector,
                    size_t count); // releases or reclaims the difference; keeps the storage
void ort_vtr_sort_c(ort_vtr *vector, int (*compare)(const void *, const void *)); // stable

// The first items lie after the record, in its block. There is always room for one: otherwise the
// next block could begin where they would be, and pass for them.
struct ort_vtr {
  ort_core *core;
  const ort_item_desc *descriptor;
  char *items;
  size_t count, capacity;
  size_t increment; // items to make room for at least; 0: by default
};

template <class T> T &ort_item(const ort_vtr *vector, size_t i) {
  return reinterpret_cast<T *>(vector->items)[i];
}
template <class T> T &ort_top(const ort_vtr *vector) {
  return ort_item<T>(vector, vector->count - 1);
}
template <class T> void ort_push(ort_vtr *vector, T value) {
  if (vector->count < vector->capacity)
    ort_item<T>(vector, vector->count++) = value;
  else
    *static_cast<T *>(ort_vtr_grow(vector)) = value;
}

// Releases the items from count on.
void ort_vtr_release(ort_vtr *vector, size_t count);
inline void ort_vtr_shorten(ort_vtr *vector, size_t count) {
  if (vector->descriptor->release)
    ort_vtr_release(vector, count);
  else
    vector->count = count;
}
inline void ort_vtr_pop(ort_vtr *vector) { ort_vtr_shorten(vector, vector->count - 1); }

// Stable sort of count items, ascending; descending is not 0 for the reverse. Uses a temporary
// block for long arrays.
void ort_qsort_sc(ort_core *core, void *base, size_t count, size_t item_size,
                  int (*compare)(const void *, const void *), int descending);

// ---- Handle vectors (handle_vector.cpp) ---------------------------------------------------------

// Items keep their index until released; released slots are reused, in constant time.
struct ort_hvtr;
ort_hvtr *ort_hvtr_new(ort_core *core, const ort_item_desc *descriptor);
void ort_hvtr_delete(ort_hvtr *handles);         // null is allowed
size_t ort_hvtr_reclaim_item(ort_hvtr *handles); // index of a new item, reclaimed
void ort_hvtr_release_item(ort_hvtr *handles, size_t i);
bool ort_hvtr_check_idx(const ort_hvtr *handles, size_t i); // i is in use
size_t ort_hvtr_size(const ort_hvtr *handles);              // slots, used or not
void *ort_hvtr_at(const ort_hvtr *handles, size_t i);

// ---- Names (name_index.cpp) ---------------------------------------------------------------------

// A name and what its owner keeps of it. It is not copied and must last as long as the entry; an
// equal one may take its place. Equal names with different salts are different.
struct ort_name_entry {
  const char *name;
  uint32_t salt;
  uint32_t number; // 0 in a new entry, as is the value
  void *value;
};

// A mark, of the name, saves most comparisons.
struct ort_name_place {
  uint32_t mark; // 0: free
  uint32_t entry;

  bool is_free() const { return mark == 0; }
  size_t home() const { return mark; }
};

// Finds a name in constant time, whatever the names are. Begins zeroed. Entries move when one is
// added or removed.
struct ort_name_index {
  ort_places<ort_name_place> table;
  ort_name_entry *entries; // after the places, in their block
  size_t room, count;      // of entries
};
ort_name_entry *ort_index_find(const ort_core *core, const ort_name_index *index,
                               std::string_view name, uint32_t salt = 0); // null: there is none
ort_name_entry *ort_index_add(ort_core *core, ort_name_index *index, const char *name,
                              uint32_t salt = 0); // the one that there is, or a new one
void ort_index_remove(const ort_core *core, ort_name_index *index, ort_name_entry *entry);
void ort_index_clear(ort_core *core, ort_name_index *index);

// ---- Arenas (arena.cpp) -------------------------------------------------------------------------

struct ort_arena_block {
  ort_arena_block *next;
  size_t size, used;
  char *bytes() { return reinterpret_cast<char *>(this + 1); }
};

// Begins zeroed. What is in it never moves. The owner may also use the last block's room itself.
struct ort_arena {
  ort_arena_block *first, *last;
  size_t size; // of all blocks
};

void ort_arena_grow(ort_core *core, ort_arena *arena, size_t size, const char *tag); // a block more
bool ort_arena_try_grow(ort_core *core, ort_arena *arena, size_t size, const char *tag);
void ort_arena_shrink(ort_core *core, ort_arena *arena); // frees the first block
void ort_arena_clear(ort_core *core, ort_arena *arena);  // frees all
inline bool ort_arena_has_room(const ort_arena *arena, size_t size) {
  return arena->last && arena->last->size - arena->last->used >= size;
}

// Zeroed memory, in blocks that grow with the arena; for arenas that grow in no other way.
#ifdef ORT_SANITIZE
constexpr size_t ORT_ARENA_GRAIN = 1; // a block for each, so that its end is seen
#else
constexpr size_t ORT_ARENA_GRAIN = 8;
#endif
void ort_arena_make_room(ort_core *core, ort_arena *arena, size_t size, const char *tag);
inline void *ort_arena_take(ort_core *core, ort_arena *arena, size_t size, const char *tag) {
  size = (size + ORT_ARENA_GRAIN - 1) / ORT_ARENA_GRAIN * ORT_ARENA_GRAIN;
  if (!ort_arena_has_room(arena, size)) ort_arena_make_room(core, arena, size, tag);
  ort_arena_block *block = arena->last;
  void *taken = block->bytes() + block->used;
  block->used += size;
  return taken;
}

// ---- Byte strings (bytes.cpp) -------------------------------------------------------------------

void ort_bs_append_text(ort_bs *bs, const char *text);
void ort_bs_append_escaped(ort_bs *bs, const char *text); // as by ort_escape
void ort_bs_append_byte(ort_bs *bs, char byte);
bool ort_bs_has_room(const ort_bs *bs, size_t length); // appending as many bytes raises nothing
void ort_bs_shorten(ort_bs *bs,
                    size_t length); // cut to length bytes; length must not exceed the string's

// ---- Bits (bits.cpp) ----------------------------------------------------------------------------

// Cleared bits in one block, freed with ort_free. Bit i is bit i % 8 of byte i / 8.
unsigned char *ort_bitarr_new(ort_core *core, size_t bits);
inline void ort_setbit(unsigned char *array, size_t bit) {
  array[bit / 8] = static_cast<unsigned char>(array[bit / 8] | 1U << bit % 8);
}
inline bool ort_getbit(const unsigned char *array, size_t bit) {
  return (array[bit / 8] >> bit % 8 & 1U) != 0;
}

// ---- Text (ctype.cpp, text.cpp, keywords.cpp) ---------------------------------------------------

enum : unsigned char { ORT_SPACE = 1, ORT_DIGIT = 2, ORT_UPPER = 4, ORT_LOWER = 8, ORT_HEX = 16 };
extern const unsigned char ort_ctype[256]; // bytes above 127 belong to no class

inline bool ort_isspace(char c) {
  return (ort_ctype[static_cast<unsigned char>(c)] & ORT_SPACE) != 0;
}
inline bool ort_isdigit(char c) {
  return (ort_ctype[static_cast<unsigned char>(c)] & ORT_DIGIT) != 0;
}
inline bool ort_isxdigit(char c) {
  return (ort_ctype[static_cast<unsigned char>(c)] & ORT_HEX) != 0;
}
inline bool ort_isupper(char c) {
  return (ort_ctype[static_cast<unsigned char>(c)] & ORT_UPPER) != 0;
}
inline bool ort_isalpha(char c) {
  return (ort_ctype[static_cast<unsigned char>(c)] & (ORT_UPPER | ORT_LOWER)) != 0;
}

int ort_strcmp(const char *a, const char *b);               // bytes, unsigned
int ort_stricmp_a(const char *a, const char *b);            // letters A-Z as a-z
int ort_strincmp_a(const char *a, const char *b, size_t n); // the same over at most n bytes

// Keyword list: ended by an entry whose text is null.
struct ort_keyword {
  const char *text;
  int code;
};
constexpr int ORT_NO_KEYCODE = INT32_MIN;                       // "not found"
int ort_get_keycode(const char *text, const ort_keyword *list); // first exact match
int ort_get_keycode_ci(const char *text,
                       const ort_keyword *list); // first match without regard to ASCII case
const char *ort_get_keyword(int code,
                            const ort_keyword *list); // first text with this code; null: none

// A byte that is no hexadecimal digit counts as 0; nothing after a NUL is read.
enum {
  ORT_HEX_DIGIT = -1, // the digit itself
  ORT_HEX_TWICE = 0,  // one digit d as the byte 17 * d
  ORT_HEX_PAIR = 1,   // two digits as a byte
};
int ort_hex2bin_a(const char *text, int mode);
uint32_t ort_get_be_ulong3(const unsigned char *bytes);

// Lower-case hexadecimal text of count bytes with separator between them; flags as of
// ort_strdup_ext.
char *ort_str2hexstr(ort_core *core, const void *bytes, size_t count, const char *separator,
                     int flags, const char *tag);

// Decodes base64 (RFC 4648), in which bytes may be percent escapes (RFC 3986, 2.1): skips white
// space, stops at "=", ignores other foreign bytes, needs no padding. Stores a new block in *buffer
// (freed with ort_free; never null) and returns its length. *buffer is null if it raises.
size_t ort_decode_base64(ort_core *core, const char *text, size_t length, unsigned char **buffer);

// ---- Log (log.cpp) ------------------------------------------------------------------------------

// Formats: %a document text (escaped as by ort_escape, never cut; null is ""), %s plain
// text, %d int, %ld long, %g double, %p pointer, %c, %X, each with an optional width ("%02ld",
// "%*s", "%06X"). Locale-independent.
[[gnu::cold]] void ort_logg(ort_core *core, const char *format, ...);
[[gnu::cold]] void ort_logg_cond(ort_core *core, int level, int log_class, const char *format, ...);
[[gnu::cold]] void ort_logg_unitext(ort_core *core, const char *text, int reserved1, int reserved2,
                                    int quoted); // quoted: in "..."

// Shortest "%g"-like text of a double with 6 significant digits, as C's "%g" in the "C" locale.
// buffer holds 32 bytes; returns the length.
size_t ort_format_g(char *buffer, double value);

// ---- Files (file.cpp) ---------------------------------------------------------------------------

const char *ort_fname(const ort_file *file); // as given when it was opened; never null

// ---- Encodings (encoding.cpp) -------------------------------------------------------------------

// Number of a single-byte encoding ("iso8859-2"), stored also in *number; -9 when unknown. flags
// must be 0.
int ort_get_encoding(ort_core *core, const char *name, int32_t *number, int flags);
// Its 256 codes of 16 bits (0xFFFF: the byte is not used). Owned by the core.
const uint16_t *ort_get_encoding_vector(ort_core *core, int32_t number);
// The codes of a single-byte encoding by the system's converters (iconv), -1 for a byte that means
// nothing. False when the system does not know it. Opens files of the system; never raises.
bool ort_get_system_encoding(const char *name, int codes[256]);

// ---- Geometry (matrix.cpp, arc.cpp) -------------------------------------------------------------

// Maps (x, y) to (a x + c y + e, b x + d y + f). M * N: first M, then N.
struct ort_matrix {
  double a, b, c, d, e, f;
};
struct ort_vector {
  double x, y;
};
void ort_translation_matrix(ort_matrix *m, double tx, double ty);
void ort_scale_matrix(ort_matrix *m, double sx, double sy);
void ort_rotation_matrix(ort_matrix *m, double degrees);
void ort_skew_matrix(ort_core *core, ort_matrix *m, double alpha,
                     double beta);                            // [1, tan alpha, tan beta, 1, 0, 0]
void ort_multiply_matrix(const ort_matrix *m, ort_matrix *n); // n = m * n
bool ort_is_matrix(const ort_matrix *m); // every member is a number, maybe an infinite one
ort_vector ort_get_vector(const ort_matrix *m, double x, double y); // null m: identity

// Cubic approximation of the elliptical arc of SVG 1.1, 8.3.8 and appendix F.6, from start to end.
// phi in radians, flags 0 or 1, radii positive (scaled up when too small). matrix, when given, is
// applied to the result. mode is not used by this runtime. Coincident ends give no segment. Returns
// 0, or ORT_E_ARC for operands that are not finite.
int ort_elliarc_to_bezier(double (*segments)[6], int32_t *count, const ort_matrix *matrix,
                          ort_vector start, ort_vector end, double rx, double ry, double phi,
                          int large_arc, int sweep, int mode);

// ---- Digests and virtual files (digest.cpp, virtual_file.cpp) -----------------------------------

struct ort_md5 {
  alignas(8) unsigned char state[128]; // the crypto library's context
};
void ort_MD5_Init(ort_md5 *md5);
void ort_MD5_Update(ort_md5 *md5, const void *bytes, size_t length);
void ort_MD5_Final(unsigned char digest[16], ort_md5 *md5);

// Makes a virtual file with one reference. options must hold "deletedata": the buffer (from
// ort_malloc) then belongs to the file from the moment that this function returns. The name is
// copied and must not exist yet.
void ort__create_pvf(ort_core *core, const char *name, void *buffer, size_t length,
                     const char *options);
// "exists": 1.0 or 0.0; "size": its bytes.
double ort__info_pvf(ort_core *core, const char *name, const char *keyword);
void ort__addref_pvf(ort_core *core, const char *name); // one more reference to an existing file
void ort__delete_pvf(ort_core *core,
                     const char *name); // one reference less; the last one deletes. Absent: nothing

#endif
