// svg_recording.cpp: what Expat told in the style-sheet pass, kept for the main pass.
//
// Expat needs most of the time that a drawing takes. So each event of the style-sheet pass is
// recorded here on its way to the callbacks of svg_sheets.cpp, and later played to the callbacks of
// the main pass, which see no difference. A recording that becomes too large is given up, and
// svg_xml.cpp reads the input again. Raises for lack of memory, and again what a callback raised.
#include <algorithm>
#include <cstring>

#include "svg/svg_style.h"
#include "svg/svg_xml.h"

namespace {

enum class kind : uint32_t { start, end, text, namespace_start, namespace_end };

// Texts may be null. The first has a length; the others end with a NUL.
struct event {
  kind what;
  int length;
  long line;
  size_t size; // with the texts, which stand behind the pointers
  const char *texts[];
};

constexpr size_t smallest_chunk = 1 << 12;
constexpr size_t largest_chunk = 1 << 16; // but for an event that needs more
constexpr size_t part_of_memory = 4;      // the recording may take this part of what is left

} // namespace

// Its events follow it, in the order in which they came.
struct svg_recorded_chunk {
  svg_recorded_chunk *next;
  size_t size, used;
};

static void cb_start(void *parser, const XML_Char *name, const XML_Char **attrs);
static void cb_end(void *parser, const XML_Char *name);
static void cb_text(void *parser, const XML_Char *s, int length);
static void cb_namespace_start(void *parser, const XML_Char *prefix, const XML_Char *uri);
static void cb_namespace_end(void *parser, const XML_Char *prefix);
static void record(svg_parser *p, kind what, const char *first, size_t length,
                   const char *const *others = nullptr, size_t count = 0);
static event *add_event(svg_parser *p, size_t size);
static void add_chunk(svg_parser *p, size_t needed);
static void play(svg_parser *p, event *e);
static void remove_first(svg_parser *p);
static size_t length_of(const char *text);

void svg_recording_begin(svg_parser *p) {
  svg_recording_delete(p);
  p->recording.on = true;
  XML_SetElementHandler(p->xml, cb_start, cb_end);
  XML_SetCharacterDataHandler(p->xml, cb_text);
  XML_SetNamespaceDeclHandler(p->xml, cb_namespace_start, cb_namespace_end);
}

void svg_recording_play(svg_parser *p) {
  p->declared_attributes = 0; // what they add to start tags has been counted
  for (; p->recording.first != nullptr; remove_first(p)) {
    auto *at = reinterpret_cast<char *>(p->recording.first + 1);
    for (const char *end = at + p->recording.first->used; at < end;) {
      auto *e = reinterpret_cast<event *>(at);
      at += e->size;
      p->recording.line = e->line;
      play(p, e);
      if (p->callback_failed) ort_rethrow(p->core);
    }
  }
  svg_recording_delete(p);
}

void svg_recording_delete(svg_parser *p) {
  while (p->recording.first != nullptr) remove_first(p);
  p->recording = {};
}

// ---- Recording ----------------------------------------------------------------------------------

static void cb_start(void *parser, const XML_Char *name, const XML_Char **attrs) {
  size_t count = 1; // with the null at the end
  while (attrs[count - 1] != nullptr) count++;
  record(static_cast<svg_parser *>(parser), kind::start, name, strlen(name), attrs, count);
  svg_cb_elem_start_css(parser, name, attrs);
}

static void cb_end(void *parser, const XML_Char *name) {
  record(static_cast<svg_parser *>(parser), kind::end, name, strlen(name));
  svg_cb_elem_end_css(parser, name);
}

static void cb_text(void *parser, const XML_Char *s, int length) {
  record(static_cast<svg_parser *>(parser), kind::text, s, static_cast<size_t>(length));
  svg_cb_char_data_css(parser, s, length);
}

static void cb_namespace_start(void *parser, const XML_Char *prefix, const XML_Char *uri) {
  auto *p = static_cast<svg_parser *>(parser);
  record(p, kind::namespace_start, prefix, length_of(prefix), &uri, 1);
  svg_in_callback(p, [&] { svg_check_namespace(p, prefix, uri); });
}

static void cb_namespace_end(void *parser, const XML_Char *prefix) {
  record(static_cast<svg_parser *>(parser), kind::namespace_end, prefix, length_of(prefix));
}

static void record(svg_parser *p, kind what, const char *first, size_t length,
                   const char *const *others, size_t count) {
  if (!p->recording.on || p->callback_failed) return;
  size_t size = sizeof(event) + (count + 1) * sizeof(char *) + length + 1;
  for (size_t i = 0; i < count; i++)
    if (others[i] != nullptr) size += strlen(others[i]) + 1;
  size = (size + alignof(event) - 1) / alignof(event) * alignof(event);
  event *e = add_event(p, size);
  if (e == nullptr) return;
  *e = {what, static_cast<int>(length), svg_xml_line(p), size};
  auto *room = reinterpret_cast<char *>(e->texts + count + 1);
  const auto put = [&](const char *text, size_t bytes) {
    memcpy(room, text, bytes);
    room += bytes;
    return room - bytes;
  };
  e->texts[0] = first != nullptr ? put(first, length) : nullptr;
  *room++ = '\0';
  for (size_t i = 0; i < count; i++)
    e->texts[i + 1] = others[i] != nullptr ? put(others[i], strlen(others[i]) + 1) : nullptr;
}

// Null: the recording is given up, or memory is short.
static event *add_event(svg_parser *p, size_t size) {
  if (svg_recorded_chunk *last = p->recording.last;
      last == nullptr || last->size - last->used < size) {
    svg_in_callback(p, [=] { add_chunk(p, size); });
    if (p->callback_failed || !p->recording.on) return nullptr;
  }
  svg_recorded_chunk *last = p->recording.last;
  auto *e = reinterpret_cast<event *>(reinterpret_cast<char *>(last + 1) + last->used);
  last->used += size;
  return e;
}

static void add_chunk(svg_parser *p, size_t needed) {
  svg_recording &recording = p->recording;
  const size_t size = std::max(needed, std::clamp(recording.size, smallest_chunk, largest_chunk));
  const uint64_t most =
      std::min<uint64_t>(p->limits.recorded, ort_memory_left(p->core) / part_of_memory);
  if (recording.size + size > most) {
    svg_recording_delete(p);
    return;
  }
  auto *chunk = static_cast<svg_recorded_chunk *>(
      ort_malloc(p->core, sizeof(svg_recorded_chunk) + size, "svg_recording"));
  *chunk = {nullptr, size, 0};
  (recording.last != nullptr ? recording.last->next : recording.first) = chunk;
  recording.last = chunk;
  recording.size += size;
}

// ---- Playing ------------------------------------------------------------------------------------

static void play(svg_parser *p, event *e) {
  switch (e->what) {
  case kind::start: svg_cb_elem_start(p, e->texts[0], e->texts + 1); break;
  case kind::end: svg_cb_elem_end(p, e->texts[0]); break;
  case kind::text: svg_cb_char_data(p, e->texts[0], e->length); break;
  case kind::namespace_start: svg_cb_namespace_start(p, e->texts[0], e->texts[1]); break;
  case kind::namespace_end: svg_cb_namespace_end(p, e->texts[0]); break;
  }
}

static void remove_first(svg_parser *p) {
  svg_recorded_chunk *first = p->recording.first;
  p->recording.first = first->next;
  ort_free(p->core, first);
}

static size_t length_of(const char *text) { return text != nullptr ? strlen(text) : 0; }
