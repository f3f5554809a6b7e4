// svg_recording.cpp: the events of the style-sheet pass, kept for the main pass.
//
// Expat takes most of the time of a drawing. So each event of the style-sheet pass is
// recorded here on its way to the callbacks of svg_sheets.cpp, and later played to the callbacks of
// the main pass, which see no difference. Raises for lack of memory, and again what a callback
// raised.
//
// With any memory budget the result is that of reading twice. The recording is a spare of the core:
// it gives way before an allocation fails because of it. And it is played only as long as there
// would be memory for Expat as well; else svg_xml.cpp reads the input again, and the events that
// have been played are skipped.
#include "svg/xml/svg_recording.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <utility>

#include "svg/xml/svg_content.h"
#include "svg/xml/svg_expat.h"
#include "svg/xml/svg_growth.h"
#include "svg/xml/svg_sheets.h"

namespace {

// An event begins with a byte, its kind and above it the number of attributes, or `MANY`. Then come
// the number of lines since the event before, the number of many attributes, and with no gaps the
// rest. Below log level 3 nobody asks for the lines of others than start tags.
enum class kind : uint8_t {
  start, // name; of each attribute its name, a byte of length, and its value with a NUL
  end,
  text,            // text_head, the characters
  namespace_start, // prefix, name
  namespace_end,   // prefix
};

constexpr int KIND_BITS = 3;
constexpr uint32_t MANY = 0xff >> KIND_BITS;
constexpr size_t MOST_OF_HEAD = 1 + 5 + 5; // a number takes up to 5 bytes

// Of a value: it is as long as it is.
constexpr uint8_t LONG = 0xff;

struct text_head {
  uint32_t length, pieces; // Expat delivers a text in pieces, which only the log shows
};

// A name is a byte: the place where it may be known, and below it one of these. What it means is
// looked up when it is new.
enum { name_first, name_second, name_new, name_null, NAME_BITS = 2 };

constexpr size_t PLACES = 256 >> NAME_BITS;

constexpr ort_item_desc open_ced = {sizeof(const svg_name *), nullptr, nullptr};

constexpr size_t SMALLEST_BLOCK = 960;    // with all that stands before it still quick to allocate
constexpr size_t LARGEST_BLOCK = 1 << 16; // but for an event that needs more

} // namespace

struct svg_recording {
  ort_spare spare; // first: see drop
  svg_parser *parser;
  ort_arena events, names; // new names stand in the order of their events, each before its text
  uint32_t line;           // of the last event recorded or played
  char *last_text;         // text_head of the last event, or null when it is no text
  size_t most_attributes;
  // Names recur: a two-way cache, most recently used first; null where there is none.
  const svg_name *known[PLACES][2];

  // While it is played:
  bool playing;
  bool incomplete;             // events to come were dropped
  uint64_t sheets;             // bytes of style sheets
  svg_given_attr *attributes;  // of the start tag being played
  ort_vtr *open;               // const svg_name *: of the open elements; null until names are shown
  ort_arena_block *name_block; // the next new name is here
  size_t name_at;
};

static void cb_start(void *parser, const XML_Char *name, const XML_Char **attrs);
static void cb_end(void *parser, const XML_Char *name);
static void cb_text(void *parser, const XML_Char *s, int length);
static bool continue_text(const svg_parser *p, const char *s, uint32_t length);
static void cb_namespace_start(void *parser, const XML_Char *prefix, const XML_Char *uri);
static void cb_namespace_end(void *parser, const XML_Char *prefix);
static void record_names(svg_parser *p, kind what, std::initializer_list<const char *> names);
static char *add_event(svg_parser *p, kind what, uint32_t count, size_t size);
static void end_event(svg_parser *p, const char *end);
static char *put_name(svg_parser *p, char *room, const char *name);
static uint64_t ends_of(const char *name, size_t length);
static const svg_name *add_name(svg_parser *p, const char *name, size_t length);
static char *find_room(svg_parser *p, ort_arena *arena, size_t size);
static void add_block(svg_parser *p, ort_arena *arena, size_t needed);
static uint64_t memory_to_play(const svg_parser *p, size_t size);
static const char *play(svg_parser *p, const char *at);
static void play_start(svg_parser *p, const svg_name *name);
static void play_end(svg_parser *p);
static const svg_name *take_name(svg_recording *recording, const char **at);
static const char *text_of(const svg_name *name);
static void drop(ort_spare *spare);

void svg_recording_begin(svg_parser *p) {
  svg_recording_delete(p);
  p->recording = ort_new<svg_recording>(p->core, "svg_recording");
  p->recording->parser = p;
  p->recording->spare.drop = drop;
  ort_offer_spare(p->core, &p->recording->spare);
  XML_SetElementHandler(p->xml, cb_start, cb_end);
  XML_SetCharacterDataHandler(p->xml, cb_text);
  XML_SetNamespaceDeclHandler(p->xml, cb_namespace_start, cb_namespace_end);
}

bool svg_recording_play(svg_parser *p) {
  svg_recording *recording = p->recording;
  recording->playing = true;
  recording->line = 0;
  recording->name_block = recording->names.first;
  recording->attributes =
      ort_new_array<svg_given_attr>(p->core, recording->most_attributes + 1, "svg_recording");
  recording->sheets = svg_css_sheet_bytes(p);
  p->declared_attributes = 0; // what they add to start tags has been counted
  p->to_skip = 0;
  for (ort_arena &events = recording->events; events.first; ort_arena_shrink(p->core, &events)) {
    const uint64_t needed = memory_to_play(p, events.first->used);
    const char *at = events.first->bytes();
    for (const char *end = at + events.first->used; at < end;) {
      if (ort_memory_left(p->core) < needed) {
        svg_recording_delete(p);
        return false;
      }
      at = play(p, at);
    }
  }
  const bool complete = !recording->incomplete;
  svg_recording_delete(p);
  return complete;
}

void svg_recording_delete(svg_parser *p) {
  svg_recording *recording = p->recording;
  if (!recording) return;
  ort_withdraw_spare(p->core, &recording->spare);
  ort_arena_clear(p->core, &recording->events);
  ort_arena_clear(p->core, &recording->names);
  ort_free(p->core, recording->attributes);
  ort_vtr_delete(recording->open);
  ort_free(p->core, recording);
  p->recording = nullptr;
  p->played_line = 0;
}

// Of a new name and its text.
static size_t size_of_name(size_t length) {
  return (sizeof(svg_name) + length + alignof(svg_name)) / alignof(svg_name) * alignof(svg_name);
}

// ---- Recording ----------------------------------------------------------------------------------

static char *put_number(char *room, uint32_t number) {
  for (; number >= 0x80; number >>= 7) *room++ = static_cast<char>(number | 0x80);
  *room++ = static_cast<char>(number);
  return room;
}

template <class T> static char *put(char *room, T value) {
  memcpy(room, &value, sizeof value);
  return room + sizeof value;
}

static char *put_value(char *room, const char *value) {
  char *begin = room + 1, *end = stpcpy(begin, value);
  put(room, static_cast<uint8_t>(std::min<ptrdiff_t>(end - begin, LONG)));
  return end + 1;
}

static void cb_start(void *parser, const XML_Char *name, const XML_Char **attrs) {
  auto *p = static_cast<svg_parser *>(parser);
  uint32_t count = 0;
  size_t size = 1;
  for (; attrs[2 * count]; ++count) size += 2 + strlen(attrs[2 * count + 1]) + 1;
  char *room = add_event(p, kind::start, count, size);
  room = put_name(p, room, name);
  for (uint32_t i = 0; i < count; ++i) {
    room = put_name(p, room, attrs[2 * i]);
    if (room) room = put_value(room, attrs[2 * i + 1]);
  }
  end_event(p, room);
  svg_cb_elem_start_css(parser, name, attrs);
}

static void cb_end(void *parser, const XML_Char *name) {
  record_names(static_cast<svg_parser *>(parser), kind::end, {});
  svg_cb_elem_end_css(parser, name);
}

static void cb_text(void *parser, const XML_Char *s, int length) {
  auto *p = static_cast<svg_parser *>(parser);
  const auto count = static_cast<uint32_t>(length);
  if (!continue_text(p, s, count))
    if (char *room = add_event(p, kind::text, 0, sizeof(text_head) + count)) {
      p->recording->last_text = room;
      room = put(room, text_head{count, 1});
      memcpy(room, s, count);
      end_event(p, room + count);
    }
  svg_cb_char_data_css(parser, s, length);
}

// Nobody sees the pieces of a text below log level 3.
static bool continue_text(const svg_parser *p, const char *s, uint32_t length) {
  const svg_recording *recording = p->recording;
  if (!recording || !recording->last_text || p->log_level >= 3) return false;
  if (!ort_arena_has_room(&recording->events, length)) return false;
  ort_arena_block *last = recording->events.last;
  text_head head;
  memcpy(&head, recording->last_text, sizeof head);
  put(recording->last_text, text_head{head.length + length, head.pieces + 1});
  memcpy(last->bytes() + last->used, s, length);
  last->used += length;
  return true;
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
  char *room = add_event(p, what, 0, names.size());
  for (const char *text : names) room = put_name(p, room, text);
  end_event(p, room);
}

// Where the event, of at most that size, goes on after its head. Null: the recording was given up,
// or memory is short.
static char *add_event(svg_parser *p, kind what, uint32_t count, size_t size) {
  if (!p->recording || p->callback_failed) return nullptr;
  char *room = find_room(p, &p->recording->events, MOST_OF_HEAD + size);
  if (!room) return nullptr;
  svg_recording *recording = p->recording;
  const bool tells_line = what == kind::start || p->log_level >= 3;
  const uint32_t line = tells_line ? svg_expat_line(p) : recording->line;
  recording->last_text = nullptr;
  recording->most_attributes = std::max<size_t>(recording->most_attributes, count);
  *room++ = static_cast<char>(static_cast<uint32_t>(what) | std::min(count, MANY) << KIND_BITS);
  room = put_number(room, line - std::exchange(recording->line, line));
  return count >= MANY ? put_number(room, count) : room;
}

// Null: it was not recorded.
static void end_event(svg_parser *p, const char *end) {
  if (!end) return;
  ort_arena_block *last = p->recording->events.last;
  last->used = static_cast<size_t>(end - last->bytes());
}

// Null when room is null, and as in add_event.
static char *put_name(svg_parser *p, char *room, const char *name) {
  if (!room) return nullptr;
  if (!name) return put<uint8_t>(room, name_null);
  const size_t length = strlen(name);
  const size_t place = (ends_of(name, length) * 0x9E3779B97F4A7C15) / (UINT64_MAX / PLACES + 1);
  const auto is = [=](const svg_name *known) {
    return known && known->length == length && memcmp(known->text, name, length) == 0;
  };
  auto &[first, second] = p->recording->known[place];
  int where = name_first;
  if (!is(first)) {
    where = name_second;
    std::swap(first, second);
    if (!is(first)) {
      where = name_new;
      const svg_name *added = add_name(p, name, length);
      if (!added) return nullptr;
      first = added;
    }
  }
  return put(room, static_cast<uint8_t>(place << NAME_BITS | static_cast<size_t>(where)));
}

// The last bytes of a name, and of a short one all or nearly all.
static uint64_t ends_of(const char *name, size_t length) {
  uint64_t whole = 0;
  uint32_t head, tail;
  if (length >= sizeof whole) {
    memcpy(&whole, name + length - sizeof whole, sizeof whole);
    return whole;
  }
  if (length < sizeof head) {
    for (size_t i = 0; i < length; ++i) whole = whole << 8 | static_cast<unsigned char>(name[i]);
    return whole;
  }
  memcpy(&head, name, sizeof head);
  memcpy(&tail, name + length - sizeof tail, sizeof tail);
  return uint64_t{head} << 32 | tail;
}

// Null: as in add_event.
static const svg_name *add_name(svg_parser *p, const char *name, size_t length) {
  const size_t size = size_of_name(length);
  char *kept = find_room(p, &p->recording->names, size);
  if (!kept) return nullptr;
  p->recording->names.last->used += size;
  auto *text = static_cast<char *>(memcpy(kept + sizeof(svg_name), name, length + 1));
  return new (kept) svg_name(svg_resolve_name(p, text));
}

// Room for so many bytes at the end of the arena. Null: as in add_event.
static char *find_room(svg_parser *p, ort_arena *arena, size_t size) {
  if (!ort_arena_has_room(arena, size)) {
    svg_in_callback(p, [=] { add_block(p, arena, size); });
    if (p->callback_failed || !p->recording) return nullptr;
  }
  return arena->last->bytes() + arena->last->used;
}

// Gives the recording up when it may not grow, or could not be played.
static void add_block(svg_parser *p, ort_arena *arena, size_t needed) {
  svg_recording *recording = p->recording;
  const size_t recorded = recording->events.size + recording->names.size;
  const size_t size = std::max(needed, std::clamp(recorded, SMALLEST_BLOCK, LARGEST_BLOCK));
  if (recorded + size > p->limits.recorded ||
      ort_memory_left(p->core) < memory_to_play(p, 0) + size) {
    svg_recording_delete(p);
    return;
  }
  ort_arena_grow(p->core, arena, size, "svg_recording");
}

// What must be left of the budget before any event of a block with that many bytes is played, so
// that the event has all memory it may take, and Expat has its own if it must read from here on. An
// event takes a multiple of its text and of the sheets, and lets growing containers double.
static uint64_t memory_to_play(const svg_parser *p, size_t size) {
  constexpr uint64_t times = 64;
  constexpr uint64_t always = 1 << 16;
  const uint64_t wanted = always + times * (size + p->recording->sheets) + p->expat_bytes;
  return (2 * ort_memory_budget(p->core) + wanted) / 3; // left >= 2 * taken + wanted
}

// ---- Playing ------------------------------------------------------------------------------------

static uint32_t take_number(const char **at) {
  uint32_t number = 0;
  for (int shift = 0;; shift += 7) {
    const auto byte = static_cast<unsigned char>(*(*at)++);
    number |= (byte & 0x7fU) << shift;
    if (byte < 0x80) return number;
  }
}

template <class T> static T take(const char **at) {
  T value;
  memcpy(&value, *at, sizeof value);
  *at += sizeof value;
  return value;
}

// Returns where the next event is.
static const char *play(svg_parser *p, const char *at) {
  svg_recording *recording = p->recording;
  const auto first = take<uint8_t>(&at);
  uint32_t count = first >> KIND_BITS;
  p->played_line = recording->line += take_number(&at);
  if (count == MANY) count = take_number(&at);
  ++p->to_skip;
  switch (static_cast<kind>(first & ((1U << KIND_BITS) - 1))) {
  case kind::start: {
    const svg_name *name = take_name(recording, &at);
    svg_given_attr *attribute = recording->attributes;
    for (uint32_t i = 0; i < count; ++i) {
      const svg_name *attribute_name = take_name(recording, &at);
      const auto length = take<uint8_t>(&at);
      *attribute++ = {attribute_name, at};
      at += (length < LONG ? length : strlen(at)) + 1;
    }
    *attribute = {};
    play_start(p, name);
    break;
  }
  case kind::end: play_end(p); break;
  case kind::text: {
    const auto head = take<text_head>(&at);
    const char *text = at;
    at += head.length;
    p->to_skip += head.pieces - 1;
    svg_add_char_data(p, text, static_cast<int>(head.length));
    break;
  }
  case kind::namespace_start: {
    const char *prefix = text_of(take_name(recording, &at));
    svg_start_namespace(p, prefix, text_of(take_name(recording, &at)));
    break;
  }
  case kind::namespace_end: svg_end_namespace(p, text_of(take_name(recording, &at))); break;
  }
  return at;
}

// A capture shows the name of its own end tag, too, but not of the tags around it.
static void play_start(svg_parser *p, const svg_name *name) {
  svg_start_element(p, *name, p->recording->attributes);
  if (!svg_shows_names(p)) return;
  ort_vtr *&open = p->recording->open;
  if (!open) open = ort_vtr_new(p->core, &open_ced, 0, 0);
  ort_push(open, name);
}

static void play_end(svg_parser *p) {
  const svg_name *name = nullptr;
  if (svg_shows_names(p)) {
    name = ort_top<const svg_name *>(p->recording->open);
    ort_vtr_pop(p->recording->open);
  }
  svg_end_element(p, name);
}

static const char *text_of(const svg_name *name) { return name ? name->text : nullptr; }

static const svg_name *take_name(svg_recording *recording, const char **at) {
  const auto byte = take<uint8_t>(at);
  auto &[first, second] = recording->known[byte >> NAME_BITS];
  switch (byte & ((1U << NAME_BITS) - 1)) {
  case name_null: return nullptr;
  case name_second: std::swap(first, second); break;
  case name_new:
    second = first;
    if (recording->name_at == recording->name_block->used) {
      recording->name_block = recording->name_block->next;
      recording->name_at = 0;
    }
    first = reinterpret_cast<svg_name *>(recording->name_block->bytes() + recording->name_at);
    recording->name_at += size_of_name(first->length);
    break;
  default: break;
  }
  return first;
}

// ---- Giving up ----------------------------------------------------------------------------------

// Memory is short. What is being played is in use, and so are the names.
static void drop(ort_spare *spare) {
  auto *recording = reinterpret_cast<svg_recording *>(spare);
  svg_parser *p = recording->parser;
  if (!recording->playing) {
    svg_recording_delete(p);
    return;
  }
  if (!recording->events.first) return;
  ort_arena_block *played = recording->events.first;
  ort_arena rest = {played->next, recording->events.last, recording->events.size - played->size};
  recording->incomplete |= rest.first != nullptr;
  played->next = nullptr;
  recording->events = {played, played, played->size};
  ort_arena_clear(p->core, &rest);
}
