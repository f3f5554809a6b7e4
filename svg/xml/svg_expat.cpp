// svg_expat.cpp: Expat under the core's memory, and in time linear in the input.
//
// Expat's blocks come from the core, so that the host's budget and statistics count them: one
// attribute of a hundred megabytes is held by Expat long before a value is made of it. Expat wants
// null for lack of memory, never a jump. And Expat rereads an unfinished token each time it is
// called, so blocks are gathered: more of them as the document goes on, and of a long token as much
// again as Expat already holds.
#include "svg/xml/svg_expat.h"

#include <algorithm>
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

} // namespace
static thread_local expat_work work;

// Refuse memory after a failed callback, so that Expat stops: it would go on to the end of the
// start tag.
static void *expat_realloc(void *memory, size_t size) {
  svg_parser *p = work.parser;
  if (p->callback_failed) return nullptr;
  p->expat_bytes += size;
  void *result = ort_try_realloc(p->core, memory, size, "svg_parse_xml");
  work.memory_was_short |= result == nullptr;
  return result;
}

static void *expat_malloc(size_t size) { return expat_realloc(nullptr, size); }

static void expat_free(void *memory) { ort_free(work.parser->core, memory); }

static constexpr XML_Memory_Handling_Suite suite = {expat_malloc, expat_realloc, expat_free};

// Runs call() for the parser's core, and returns whether memory was short. Calls nest when a host's
// callback reads another document.
template <class Call> static bool work_for(svg_parser *p, Call call) {
  const expat_work outer = work;
  work = {p, false};
  call();
  const bool memory_was_short = work.memory_was_short;
  work = outer;
  return memory_was_short;
}

// Raises what a callback raised, and lack of memory even where Expat managed without.
template <class Call> static void with_core(svg_parser *p, Call call) {
  const bool memory_was_short = work_for(p, call);
  if (p->callback_failed) ort_rethrow(p->core);
  if (memory_was_short) ort_error(p->core, ORT_E_NO_MEMORY);
}

void svg_expat_create(svg_parser *p, const char *encoding) {
  const char *separator = p->no_namespaces ? nullptr : "*";
  p->expat_bytes = 0;
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

void svg_expat_delete(svg_parser *p) {
  if (p->xml) work_for(p, [=] { XML_ParserFree(p->xml); });
  p->xml = nullptr;
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
