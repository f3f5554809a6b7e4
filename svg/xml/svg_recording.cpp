// svg_recording.cpp: what Expat told in the style-sheet pass, kept for the main pass.
//
// Expat needs most of the time that a drawing takes. So each event of the style-sheet pass is
// recorded here on its way to the callbacks of svg_sheets.cpp, and later played to the callbacks of
// the main pass, which see no difference. A recording that becomes too large is given up, and
// svg_xml.cpp reads the input again. Raises for lack of memory, and again what a callback raised.
#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <utility>

#include "svg/style/svg_style.h"
#include "svg/xml/svg_xml.h"

namespace {

// Behind an event's head follow, with no gaps:
enum class kind : uint32_t {
  start,           // name; of each attribute its name, and its value with a NUL
  end,             // name
  text,            // the characters
  namespace_start, // prefix or null, name or null
  namespace_end,   // prefix or null
};

struct head {
  kind what;
  uint32_t count = 0; // of attributes, or of characters
  uint32_t line = 0;
};

struct chunk {
  chunk *next;
  size_t size, used;
  char *bytes() { return reinterpret_cast<char *>(this + 1); }
};

// One behind the other.
struct chunks {
  chunk *first, *last;
};

constexpr int known_shift = 58;
constexpr size_t known_pairs = size_t{1} << (64 - known_shift);
constexpr size_t smallest_chunk = 1 << 12;
constexpr size_t largest_chunk = 1 << 16; // but for an event that needs more
constexpr size_t part_of_memory = 4;      // the recording may take this part of what is left

} // namespace

struct svg_recording {
  chunks events, names;
  size_t size; // bytes of all chunks
  size_t most_attributes;
  const char **attributes; // of the start tag being played
  // Names recur. The last two with the same hash, of which the first was used later; or null.
  const char *known[known_pairs][2];
};

static void cb_start(void *parser, const XML_Char *name, const XML_Char **attrs);
static void cb_end(void *parser, const XML_Char *name);
static void cb_text(void *parser, const XML_Char *s, int length);
static void cb_namespace_start(void *parser, const XML_Char *prefix, const XML_Char *uri);
static void cb_namespace_end(void *parser, const XML_Char *prefix);
static void record_names(svg_parser *p, kind what, std::initializer_list<const char *> names);
static char *add_event(svg_parser *p, head event, size_t size);
static const char *keep(svg_parser *p, const char *text);
static char *make_room(svg_parser *p, chunks *list, size_t size);
static void add_chunk(svg_parser *p, chunks *list, size_t needed);
static const char *play(svg_parser *p, const char *at);
static void remove_first(svg_parser *p, chunks *list);

void svg_recording_begin(svg_parser *p) {
  svg_recording_delete(p);
  p->recording = ort_new<svg_recording>(p->core, "svg_recording");
  XML_SetElementHandler(p->xml, cb_start, cb_end);
  XML_SetCharacterDataHandler(p->xml, cb_text);
  XML_SetNamespaceDeclHandler(p->xml, cb_namespace_start, cb_namespace_end);
}

void svg_recording_play(svg_parser *p) {
  svg_recording *recording = p->recording;
  p->declared_attributes = 0; // what they add to start tags has been counted
  recording->attributes =
      ort_new_array<const char *>(p->core, 2 * recording->most_attributes + 1, "svg_recording");
  for (chunks &events = recording->events; events.first != nullptr; remove_first(p, &events)) {
    const char *at = events.first->bytes();
    for (const char *end = at + events.first->used; at < end;) {
      at = play(p, at);
      if (p->callback_failed) ort_rethrow(p->core);
    }
  }
  svg_recording_delete(p);
}

void svg_recording_delete(svg_parser *p) {
  svg_recording *recording = p->recording;
  if (recording == nullptr) return;
  for (chunks *list : {&recording->events, &recording->names})
    while (list->first != nullptr) remove_first(p, list);
  ort_free(p->core, recording->attributes);
  ort_free(p->core, recording);
  p->recording = nullptr;
  p->played_line = 0;
}

// ---- Recording ----------------------------------------------------------------------------------

template <class T> static char *put(char *room, T value) {
  memcpy(room, &value, sizeof value);
  return room + sizeof value;
}

static void cb_start(void *parser, const XML_Char *name, const XML_Char **attrs) {
  auto *p = static_cast<svg_parser *>(parser);
  uint32_t count = 0;
  size_t size = sizeof name;
  for (; attrs[2 * count] != nullptr; count++)
    size += sizeof name + strlen(attrs[2 * count + 1]) + 1;
  if (char *room = add_event(p, {kind::start, count}, size)) {
    room = put(room, keep(p, name));
    for (uint32_t i = 0; i < count; i++) {
      room = put(room, keep(p, attrs[2 * i]));
      room = stpcpy(room, attrs[2 * i + 1]) + 1;
    }
    p->recording->most_attributes = std::max<size_t>(p->recording->most_attributes, count);
  }
  svg_cb_elem_start_css(parser, name, attrs);
}

static void cb_end(void *parser, const XML_Char *name) {
  record_names(static_cast<svg_parser *>(parser), kind::end, {name});
  svg_cb_elem_end_css(parser, name);
}

static void cb_text(void *parser, const XML_Char *s, int length) {
  const auto count = static_cast<uint32_t>(length);
  if (char *room = add_event(static_cast<svg_parser *>(parser), {kind::text, count}, count))
    memcpy(room, s, count);
  svg_cb_char_data_css(parser, s, length);
}

static void cb_namespace_start(void *parser, const XML_Char *prefix, const XML_Char *uri) {
  auto *p = static_cast<svg_parser *>(parser);
  record_names(p, kind::namespace_start, {prefix, uri});
  svg_in_callback(p, [&] { svg_check_namespace(p, prefix, uri); });
}

static void cb_namespace_end(void *parser, const XML_Char *prefix) {
  record_names(static_cast<svg_parser *>(parser), kind::namespace_end, {prefix});
}

static void record_names(svg_parser *p, kind what, std::initializer_list<const char *> names) {
  char *room = add_event(p, {what}, names.size() * sizeof(const char *));
  if (room == nullptr) return;
  for (const char *text : names) room = put(room, keep(p, text));
}

// Where the event goes on behind its head. Null: the recording is given up, or memory is short.
static char *add_event(svg_parser *p, head event, size_t size) {
  svg_recording *recording = p->recording;
  if (recording == nullptr || p->callback_failed) return nullptr;
  const uint64_t most = ort_memory_left(p->core) / part_of_memory;
  if (recording->size + size > std::min<uint64_t>(most, p->limits.recorded)) {
    svg_recording_delete(p);
    return nullptr;
  }
  char *room = make_room(p, &recording->events, sizeof event + size);
  if (room == nullptr) return nullptr;
  event.line = static_cast<uint32_t>(svg_xml_line(p));
  return put(room, event);
}

// The text as long as the recording lasts; null for null, and when memory is short.
static const char *keep(svg_parser *p, const char *text) {
  if (text == nullptr) return nullptr;
  const size_t length = strlen(text);
  uint64_t end = 0;
  if (length >= sizeof end)
    memcpy(&end, text + length - sizeof end, sizeof end);
  else
    for (size_t i = 0; i < length; i++) end = end << 8 | static_cast<unsigned char>(text[i]);
  auto &[first, second] = p->recording->known[end * 0x9E3779B97F4A7C15 >> known_shift];
  if (first != nullptr && strcmp(first, text) == 0) return first;
  std::swap(first, second);
  if (first != nullptr && strcmp(first, text) == 0) return first;
  char *room = make_room(p, &p->recording->names, length + 1);
  return first = room != nullptr ? strcpy(room, text) : nullptr;
}

// Null: memory is short.
static char *make_room(svg_parser *p, chunks *list, size_t size) {
  if (list->last == nullptr || list->last->size - list->last->used < size) {
    svg_in_callback(p, [=] { add_chunk(p, list, size); });
    if (p->callback_failed) return nullptr;
  }
  char *room = list->last->bytes() + list->last->used;
  list->last->used += size;
  return room;
}

static void add_chunk(svg_parser *p, chunks *list, size_t needed) {
  svg_recording *recording = p->recording;
  const size_t size = std::max(needed, std::clamp(recording->size, smallest_chunk, largest_chunk));
  auto *added = static_cast<chunk *>(ort_malloc(p->core, sizeof(chunk) + size, "svg_recording"));
  *added = {nullptr, size, 0};
  (list->last != nullptr ? list->last->next : list->first) = added;
  list->last = added;
  recording->size += size;
}

// ---- Playing ------------------------------------------------------------------------------------

template <class T> static T take(const char **at) {
  T value;
  memcpy(&value, *at, sizeof value);
  *at += sizeof value;
  return value;
}

// Returns where the next event is.
static const char *play(svg_parser *p, const char *at) {
  const auto event = take<head>(&at);
  p->played_line = event.line;
  const char *first = event.what == kind::text ? at : take<const char *>(&at);
  switch (event.what) {
  case kind::start: {
    const char **attribute = p->recording->attributes;
    for (uint32_t i = 0; i < event.count; i++) {
      *attribute++ = take<const char *>(&at);
      *attribute++ = at;
      at += strlen(at) + 1;
    }
    *attribute = nullptr;
    svg_cb_elem_start(p, first, p->recording->attributes);
    break;
  }
  case kind::end: svg_cb_elem_end(p, first); break;
  case kind::text:
    at += event.count;
    svg_cb_char_data(p, first, static_cast<int>(event.count));
    break;
  case kind::namespace_start: svg_cb_namespace_start(p, first, take<const char *>(&at)); break;
  case kind::namespace_end: svg_cb_namespace_end(p, first); break;
  }
  return at;
}

static void remove_first(svg_parser *p, chunks *list) {
  chunk *first = list->first;
  list->first = first->next;
  ort_free(p->core, first);
}
