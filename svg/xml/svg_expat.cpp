// svg_expat.cpp: Expat under the core's memory, and in time linear in the input.
//
// Expat's blocks come from the core, so that the host's budget and statistics count them: one
// attribute of a hundred megabytes is held by Expat long before a value is made of it. Expat wants
// null for lack of memory, never a jump. And Expat reads an unfinished token anew each time it is
// called, so that blocks are gathered: more of them as the document goes on, and as many of a long
// token as it has already.
#include <algorithm>
#include <cstring>

#include "svg/xml/svg_xml.h"

static XML_Status feed(svg_parser *p, bool last);
static size_t batch_size(const svg_parser *p);

constexpr size_t most_gathered = 16 * SVG_BLOCK_SIZE;
constexpr size_t most_of_a_token = size_t{1} << 28; // what Expat takes at a time is an int

// What stands before each of Expat's blocks.
struct expat_block {
  ort_core *core;
  size_t size;
};

// Expat hands no context to its allocator: this is set while Expat is at work.
struct expat_work {
  svg_parser *parser;
  bool memory_was_short;
};
static thread_local expat_work work;

// Nothing is given when a callback has failed: Expat, which goes on to the end of a start tag,
// stops there.
static void *expat_malloc(size_t size) {
  if (work.parser->callback_failed) return nullptr;
  ort_core *core = work.parser->core;
  work.parser->expat_bytes += size;
  void *memory = size < SIZE_MAX - sizeof(expat_block)
                     ? ort_try_malloc(core, sizeof(expat_block) + size, "svg_parse_xml")
                     : nullptr;
  if (memory == nullptr) {
    work.memory_was_short = true;
    return nullptr;
  }
  auto *block = static_cast<expat_block *>(memory);
  *block = {core, size};
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
  work = {p, false};
  call();
  const bool memory_was_short = work.memory_was_short;
  work = outer;
  if (p->callback_failed) ort_rethrow(p->core);
  if (memory_was_short) ort_error(p->core, ORT_E_NO_MEMORY, nullptr, nullptr, nullptr, nullptr);
}

void svg_expat_create(svg_parser *p, const char *encoding) {
  const char *separator = p->no_namespaces ? nullptr : "*";
  p->expat_bytes = 0;
  with_core(p, [&] { p->xml = XML_ParserCreate_MM(encoding, &suite, separator); });
  if (p->xml == nullptr)
    ort_error(p->core, ORT_E_CALL_FAILED, "XML_ParserCreateNS", nullptr, nullptr, nullptr);
  // Else Expat asks the system for a number, for every pass.
  XML_SetHashSalt(p->xml, static_cast<unsigned long>(ort_get_secret(p->core)));
  p->gathered = p->batch = 0;
  p->bytes_fed = 0;
}

char *svg_expat_room(svg_parser *p) {
  if (p->gathered == 0) {
    p->batch = batch_size(p);
    with_core(p, [&] {
      p->room = static_cast<char *>(XML_GetBuffer(p->xml, static_cast<int>(p->batch)));
    });
    if (p->room == nullptr) // more than an int can count
      ort_error(p->core, ORT_E_NO_MEMORY, nullptr, nullptr, nullptr, nullptr);
  }
  return p->room + p->gathered;
}

XML_Status svg_expat_take(svg_parser *p, size_t length, bool last) {
  p->gathered += length;
  const bool full = p->gathered + static_cast<size_t>(p->block_size) > p->batch;
  return full || last ? feed(p, last) : XML_STATUS_OK;
}

XML_Status svg_expat_flush(svg_parser *p) {
  return p->gathered > 0 ? feed(p, false) : XML_STATUS_OK;
}

void svg_expat_delete(svg_parser *p) {
  if (p->xml != nullptr) XML_ParserFree(p->xml);
  p->xml = nullptr;
}

static XML_Status feed(svg_parser *p, bool last) {
  XML_Status status = XML_STATUS_ERROR;
  const size_t length = p->gathered;
  p->gathered = 0;
  with_core(p, [&] { status = XML_ParseBuffer(p->xml, static_cast<int>(length), last); });
  p->bytes_fed += static_cast<int64_t>(length);
  return status;
}

// The first block is handed over as it comes, so that small drawings need little memory. Expat
// reads an unfinished token anew with every batch.
static size_t batch_size(const svg_parser *p) {
  const auto block = static_cast<size_t>(p->block_size);
  const size_t most = p->block_size < SVG_BLOCK_SIZE ? block : most_gathered;
  const auto unfinished = static_cast<size_t>(p->bytes_fed - XML_GetCurrentByteIndex(p->xml));
  const size_t wanted = std::clamp(static_cast<size_t>(p->bytes_fed), block, most);
  return p->bytes_fed == 0 ? block : std::min(std::max(wanted, unfinished), most_of_a_token);
}
