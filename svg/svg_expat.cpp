// svg_expat.cpp: Expat under the core's memory, and in time linear in the input.
//
// Expat's blocks come from the core, so that the host's budget and statistics count them: one
// attribute of a hundred megabytes is held by Expat long before a value is made of it. Expat wants
// null for lack of memory, never a jump. And Expat reads an unfinished token anew with every block,
// so that the blocks of a long token are gathered until it can have doubled.
#include <cstring>

#include "svg/svg_xml.h"

static XML_Status feed(svg_parser *p, const char *bytes, int length, bool last);

// Bytes of a long token that are gathered at most: what Expat takes at a time is an int.
constexpr size_t most_held = size_t{1} << 28;

// What stands before each of Expat's blocks.
struct expat_block {
  ort_core *core;
  size_t size;
};

// Expat hands no context to its allocator: this is set while Expat is at work.
struct expat_work {
  ort_core *core;
  bool memory_was_short;
};
static thread_local expat_work work;

static void *expat_malloc(size_t size) {
  void *memory = size < SIZE_MAX - sizeof(expat_block)
                     ? ort_try_malloc(work.core, sizeof(expat_block) + size, "svg_parse_xml")
                     : nullptr;
  if (memory == nullptr) {
    work.memory_was_short = true;
    return nullptr;
  }
  auto *block = static_cast<expat_block *>(memory);
  *block = {work.core, size};
  return block + 1;
}

static void expat_free(void *memory) {
  if (memory == nullptr) return;
  expat_block *block = static_cast<expat_block *>(memory) - 1;
  ort_free(block->core, block);
}

static void *expat_realloc(void *memory, size_t size) {
  void *larger = expat_malloc(size);
  if (larger == nullptr || memory == nullptr) return larger;
  const size_t kept = (static_cast<expat_block *>(memory) - 1)->size;
  memcpy(larger, memory, kept < size ? kept : size);
  expat_free(memory);
  return larger;
}

static constexpr XML_Memory_Handling_Suite suite = {expat_malloc, expat_realloc, expat_free};

// Runs call() for the parser's core. Calls nest when a host's callback reads another document.
// Raises when memory was short, also where Expat could do without.
template <class Call> static void with_core(svg_parser *p, Call call) {
  const expat_work outer = work;
  work = {p->core, false};
  call();
  const bool memory_was_short = work.memory_was_short;
  work = outer;
  if (p->callback_failed) ort_rethrow(p->core);
  if (memory_was_short) ort_error(p->core, ORT_E_NO_MEMORY, nullptr, nullptr, nullptr, nullptr);
}

void svg_expat_create(svg_parser *p, const char *encoding) {
  const char *separator = p->no_namespaces ? nullptr : "*";
  with_core(p, [&] { p->xml = XML_ParserCreate_MM(encoding, &suite, separator); });
  if (p->xml == nullptr)
    ort_error(p->core, ORT_E_CALL_FAILED, "XML_ParserCreateNS", nullptr, nullptr, nullptr);
}

XML_Status svg_expat_parse(svg_parser *p, const char *bytes, int length, bool last) {
  if (p->unfinished == 0) return feed(p, bytes, length, last);
  if (p->held == nullptr) p->held = ort_bs_new(p->core);
  ort_bs_append(p->held, bytes, static_cast<size_t>(length));
  const size_t held = ort_bs_length(p->held);
  if (held < p->unfinished && held < most_held && !last) return XML_STATUS_OK;
  const XML_Status status = feed(p, ort_bs_text(p->held), static_cast<int>(held), last);
  ort_bs_clear(p->held);
  return status;
}

static XML_Status feed(svg_parser *p, const char *bytes, int length, bool last) {
  XML_Status status = XML_STATUS_ERROR;
  with_core(p, [&] { status = XML_Parse(p->xml, bytes, length, last); });
  p->bytes_fed += length;
  const int64_t unfinished = p->bytes_fed - XML_GetCurrentByteIndex(p->xml);
  p->unfinished = unfinished > 4 * SVG_BLOCK_SIZE ? static_cast<size_t>(unfinished) : 0;
  return status;
}

void svg_expat_delete(svg_parser *p) {
  if (p->xml != nullptr) XML_ParserFree(p->xml);
  p->xml = nullptr;
  ort_bs_delete(p->held);
  p->held = nullptr;
  p->bytes_fed = 0;
  p->unfinished = 0;
}
