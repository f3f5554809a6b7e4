// svg_expat.cpp: Expat under the core's memory, and in time linear in the input.
//
// Expat's memory comes from the core, so that the host's budget and statistics count it: one
// attribute of a hundred megabytes is held by Expat long before a value is made of it. Expat wants
// null for lack of memory, never a jump. And Expat rereads an unfinished token each time it is
// called, so blocks are gathered: more of them as the document goes on, and of a long token as much
// again as Expat already holds.
#include "svg/xml/svg_expat.h"

#include <algorithm>
#include <bit>
#include <cstring>

static XML_Status feed(svg_parser *p, bool last);
static void look_at_lines(svg_input *p, size_t length);
static size_t batch_size(const svg_parser *p);

constexpr size_t MOST_GATHERED = 16 * SVG_BLOCK_SIZE;
constexpr size_t MOST_OF_A_TOKEN = size_t{1} << 28; // what Expat takes at a time is an int

namespace {

// Expat hands no context to its allocator: this is set while Expat is at work.
struct expat_work {
  svg_parser *parser;
  bool memory_was_short;
};

// What stands before a block of Expat's.
struct expat_label {
  uint32_t size; // of a small block
  uint32_t list; // where a small block waits when it was given back; 0: the block is large
};

struct large_block {
  large_block *next, **link;
  expat_label label;
};

// The sanitizers need a block of the core for each.
#ifdef ORT_SANITIZE
constexpr size_t MOST_OF_SMALL = 0;
#else
constexpr size_t MOST_OF_SMALL = 1280;
#endif
constexpr size_t FIRST_OF_ARENA = 8500, LEAST_OF_ARENA = 1 << 12, MOST_OF_ARENA = 1 << 15;

// There are eight sizes from a power of 2 to the next, and a list for each.
constexpr expat_label small_label(size_t size) {
  const int shift = std::max(static_cast<int>(std::bit_width(size - 1)) - 4, 3);
  const size_t steps = ((size - 1) >> shift) + 1;
  return {static_cast<uint32_t>(steps << shift),
          static_cast<uint32_t>(static_cast<size_t>(shift - 3) * 8 + steps)};
}

} // namespace

// Even for the smallest drawing Expat makes dozens of small blocks, of which it gives back hardly
// one before its end. They lie in an arena, and this is the first thing in it.
struct svg_expat_memory {
  ort_arena arena;
  void *waiting[small_label(MOST_OF_SMALL + 1).list + 1]; // each begins with the next of its list
  large_block *large;
};

static thread_local expat_work work;

// ---- Memory -------------------------------------------------------------------------------------

static expat_label *label_before(void *block) { return static_cast<expat_label *>(block) - 1; }

static large_block *large_before(void *block) { return static_cast<large_block *>(block) - 1; }

static void *resize_large(svg_parser *p, large_block *old, size_t size) {
  p->expat_bytes += size;
  auto *block = static_cast<large_block *>(
      ort_try_realloc(p->core, old, sizeof *old + size, "svg_parse_xml"));
  if (!block) {
    work.memory_was_short = true;
    return nullptr;
  }
  if (!old) *block = {p->expat_memory->large, &p->expat_memory->large, {0, 0}};
  *block->link = block;
  if (block->next) block->next->link = &block->next;
  return block + 1;
}

static void *take_small(svg_parser *p, expat_label label) {
  ort_arena *arena = &p->expat_memory->arena;
  void *&waiting = p->expat_memory->waiting[label.list];
  if (void *block = waiting) {
    waiting = *static_cast<void **>(block);
    return block;
  }
  const size_t size = sizeof label + label.size;
  if (!ort_arena_has_room(arena, size)) {
    const size_t more = std::clamp(arena->size / 2, LEAST_OF_ARENA, MOST_OF_ARENA);
    p->expat_bytes += more;
    if (!ort_arena_try_grow(p->core, arena, more, "svg_parse_xml")) {
      work.memory_was_short = true;
      return nullptr;
    }
  }
  auto *taken = reinterpret_cast<expat_label *>(arena->last->bytes() + arena->last->used);
  arena->last->used += size;
  *taken = label;
  return taken + 1;
}

// Refuses memory after a failed callback, so that Expat stops: it would go on to the end of the
// start tag.
static void *expat_malloc(size_t size) {
  svg_parser *p = work.parser;
  if (p->callback_failed) return nullptr;
  return size - 1 < MOST_OF_SMALL ? take_small(p, small_label(size))
                                  : resize_large(p, nullptr, size);
}

static void free_large(ort_core *core, large_block *block) {
  *block->link = block->next;
  if (block->next) block->next->link = block->link;
  ort_free(core, block);
}

static void expat_free(void *block) {
  if (!block) return;
  const svg_parser *p = work.parser;
  const uint32_t list = label_before(block)->list;
  if (list == 0) return free_large(p->core, large_before(block));
  *static_cast<void **>(block) = p->expat_memory->waiting[list];
  p->expat_memory->waiting[list] = block;
}

static void *expat_realloc(void *block, size_t size) {
  if (!block) return expat_malloc(size);
  svg_parser *p = work.parser;
  const expat_label label = *label_before(block);
  if (label.list == 0)
    return p->callback_failed ? nullptr : resize_large(p, large_before(block), size);
  if (size <= label.size) return block;
  void *moved = expat_malloc(size);
  if (!moved) return nullptr;
  memcpy(moved, block, label.size);
  expat_free(block);
  return moved;
}

static void make_memory(svg_parser *p) {
  ort_arena arena = {};
  ort_arena_grow(p->core, &arena, FIRST_OF_ARENA, "svg_parse_xml");
  p->expat_memory = reinterpret_cast<svg_expat_memory *>(arena.last->bytes());
  arena.last->used = sizeof(svg_expat_memory);
  *p->expat_memory = {.arena = arena, .waiting = {}, .large = nullptr};
  p->expat_bytes = FIRST_OF_ARENA;
}

static void delete_memory(svg_parser *p) {
  if (!p->expat_memory) return;
  while (p->expat_memory->large) free_large(p->core, p->expat_memory->large);
  ort_arena arena = p->expat_memory->arena;
  p->expat_memory = nullptr;
  ort_arena_clear(p->core, &arena);
}

static constexpr XML_Memory_Handling_Suite suite = {expat_malloc, expat_realloc, expat_free};

// ---- Parsers ------------------------------------------------------------------------------------

// Runs call() for the parser's core. Raises what a callback raised, and lack of memory even where
// Expat managed without. Calls nest when a host's callback reads another document.
template <class Call> static void with_core(svg_parser *p, Call call) {
  const expat_work outer = work;
  work = {p, false};
  call();
  const bool memory_was_short = work.memory_was_short;
  work = outer;
  if (p->callback_failed) ort_rethrow(p->core);
  if (memory_was_short) ort_error(p->core, ORT_E_NO_MEMORY);
}

void svg_expat_create(svg_parser *p, const char *encoding) {
  const char *separator = p->no_namespaces ? nullptr : "*";
  make_memory(p);
  with_core(p, [&] { p->xml = XML_ParserCreate_MM(encoding, &suite, separator); });
  if (!p->xml) ort_error(p->core, ORT_E_CALL_FAILED, "XML_ParserCreateNS");
  // Without a salt, Expat would call getrandom() in every pass.
  XML_SetHashSalt(p->xml, static_cast<unsigned long>(ort_get_secret(p->core)));
  p->gathered = p->batch = 0;
  p->bytes_fed = 0;
  p->lines = {.end = 0,
              .count = 1,
              .returns = false,
              .wide = encoding != nullptr && strcmp(encoding, "UTF-16") == 0};
}

void svg_expat_set_encoding(svg_parser *p, const char *name) {
  with_core(p, [&] { XML_SetEncoding(p->xml, name); });
}

char *svg_expat_room(svg_parser *p, size_t *size) {
  if (p->gathered == 0) {
    p->batch = batch_size(p);
    with_core(p, [&] {
      p->room = static_cast<char *>(XML_GetBuffer(p->xml, static_cast<int>(p->batch)));
    });
    if (!p->room) // more than an int can count
      ort_error(p->core, ORT_E_NO_MEMORY);
  }
  *size = std::min(p->batch - p->gathered, static_cast<size_t>(p->block_size));
  return p->room + p->gathered;
}

XML_Status svg_expat_take(svg_parser *p, size_t length, bool last) {
  p->gathered += length;
  return p->gathered == p->batch || last ? feed(p, last) : XML_STATUS_OK;
}

XML_Status svg_expat_flush(svg_parser *p) {
  return p->gathered > 0 ? feed(p, false) : XML_STATUS_OK;
}

// All that Expat has lies in its memory, and goes with it: XML_ParserFree would look for each
// block.
void svg_expat_delete(svg_parser *p) {
  p->xml = nullptr;
  delete_memory(p);
}

// Expat counts lines byte by byte, in a call that is slow for many short events.
uint32_t svg_expat_line(svg_input *p) {
  svg_lines &lines = p->lines;
  if (lines.wide) return static_cast<uint32_t>(XML_GetCurrentLineNumber(p->xml));
  const int64_t event = XML_GetCurrentByteIndex(p->xml);
  if (event <= lines.end) return lines.count;
  const char *begin = p->room + (lines.end - p->bytes_fed);
  const char *end = p->room + (event - p->bytes_fed);
  lines.end = event;
  const auto find = [end](const char *from, char c) {
    const void *found = memchr(from, c, static_cast<size_t>(end - from));
    return found ? static_cast<const char *>(found) : end;
  };
  for (const char *s = find(begin, '\n'); s < end; s = find(s + 1, '\n')) ++lines.count;
  if (lines.returns)
    for (const char *s = find(begin, '\r'); s < end; s = find(s + 1, '\r'))
      lines.count += s + 1 == end || s[1] != '\n';
  return lines.count;
}

static XML_Status feed(svg_parser *p, bool last) {
  XML_Status status = XML_STATUS_ERROR;
  const size_t length = p->gathered;
  p->gathered = 0;
  look_at_lines(p, length);
  with_core(p, [&] { status = XML_ParseBuffer(p->xml, static_cast<int>(length), last); });
  if (!last && p->recording) svg_expat_line(p); // what Expat keeps is not counted
  p->bytes_fed += static_cast<int64_t>(length);
  return status;
}

// Two-byte characters are left to Expat. A carriage return ends a line, with or without a line feed
// after it.
static void look_at_lines(svg_input *p, size_t length) {
  const auto is_wide = [](char c) { return c == '\0' || c == '\xFE' || c == '\xFF'; };
  if (p->bytes_fed == 0 && length > 1) p->lines.wide |= is_wide(p->room[0]) || is_wide(p->room[1]);
  p->lines.returns |= memchr(p->room, '\r', length) != nullptr;
}

// A small drawing is handed over at once; of a larger one, the first block as it comes. Expat
// rereads an unfinished token with every batch. The log shows where batches end in texts.
static size_t batch_size(const svg_parser *p) {
  const auto block = static_cast<size_t>(p->block_size);
  const size_t most = p->block_size < SVG_BLOCK_SIZE ? block : MOST_GATHERED;
  if (p->bytes_fed == 0 && p->input_size > 0 && p->input_size <= static_cast<int64_t>(most) &&
      p->log_level < 3)
    return static_cast<size_t>(p->input_size);
  const auto unfinished = static_cast<size_t>(p->bytes_fed - XML_GetCurrentByteIndex(p->xml));
  const size_t wanted = std::clamp(static_cast<size_t>(p->bytes_fed), block, most);
  const size_t size = std::min(std::max(wanted, unfinished), MOST_OF_A_TOKEN);
  return p->bytes_fed == 0 ? block : size - size % block;
}
