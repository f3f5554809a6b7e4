// error.cpp: error tables, messages and frames; the only file with setjmp and longjmp. Everyone
// calls it. There is one pending error per core: the last one that was composed or raised. Its text
// lies in the core, so that raising never allocates.
#include <charconv>
#include <setjmp.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "core/ort_state.h"

struct ort_frame {
  jmp_buf target;
  ort_frame *outer;
};

namespace {

constexpr ort_errtab_entry runtime_errors[] = {
    {1, ORT_E_CALL_FAILED, "Function '$1' failed", nullptr},
    {0, ORT_E_NO_MEMORY, "Out of memory", nullptr},
    {2, ORT_E_OPEN, "Cannot open file '$1': $2", nullptr},
    {1, ORT_E_READ, "Error reading file '$1'", nullptr},
    {2, ORT_E_GZIP, "Error in compressed file '$1': $2", nullptr},
    {1, ORT_E_NO_VIRTUAL_FILE, "No virtual file '$1'", nullptr},
    {3, ORT_E_XML, "XML: $1 in line $2, column $3", nullptr},
    {0, ORT_E_ARC, "Elliptical arc cannot be converted", nullptr},
    {2, ORT_E_INTERNAL, "Internal error in $1, line $2", nullptr},
    {2, ORT_E_LIMIT, "Limit of $2 $1 exceeded", nullptr},
};

} // namespace

static jmp_buf *ort_jbuf(ort_core *core, ort_frame *frame);
static int ort_catch_intern(ort_core *core, const ort_frame *frame);
ORT_NORETURN static void raise_pending(ort_core *core);
static void compose(const ort_core *core, ort_message *message, int code,
                    const char *const parameters[4]);
template <class Text> static ort_out *begin_text(Text *text);
template <class Text> static void put_to_text(ort_out *out, const char *bytes, size_t length);
static void deliver(ort_core *core, ort_severity severity, int code, const char *text);
static const ort_errtab_entry *find_row(const ort_errtab_entry *table, size_t count, int code);

// ---- Frames -------------------------------------------------------------------------------------

int ort_protect(ort_core *core, void (*body)(void *argument), void *argument) {
  ort_frame frame;
  if (_setjmp(*ort_jbuf(core, &frame)) == 0) body(argument);
  return ort_catch_intern(core, &frame);
}

// Opens a frame: what is raised from now on jumps to the buffer.
static jmp_buf *ort_jbuf(ort_core *core, ort_frame *frame) {
  frame->outer = core->errors.frame;
  core->errors.frame = frame;
  return &frame->target;
}

// Closes a frame. Returns the code of the error that was raised inside of it, or 0.
static int ort_catch_intern(ort_core *core, const ort_frame *frame) {
  if (core->errors.frame == frame) {
    core->errors.frame = frame->outer;
    return 0;
  }
  // raise_pending has closed the frame.
  if (!core->errors.frame) deliver(core, ORT_ERROR, core->errors.code, core->errors.message.text);
  return core->errors.code;
}

void ort_rethrow(ort_core *core) {
  if (core->errors.code == 0) ort_internal_error(core, __FILE__, __LINE__);
  raise_pending(core);
}

static void raise_pending(ort_core *core) {
  ort_frame *frame = core->errors.frame;
  if (!frame) {
    fprintf(stderr, "%s\n", core->errors.message.text);
    abort();
  }
  core->errors.frame = frame->outer;
  _longjmp(frame->target, 1);
}

const char *ort_error_text(const ort_core *core) { return core->errors.message.text; }

int ort_error_code(const ort_core *core) { return core->errors.code; }

// ---- Raising and reporting ----------------------------------------------------------------------

void ort_error(ort_core *core, int code, const char *p1, const char *p2, const char *p3,
               const char *p4) {
  if (code != -1) ort_set_errmsg(core, code, p1, p2, p3, p4);
  ort_rethrow(core);
}

void ort_ascii_error(ort_core *core, int code, int /*mask*/, const char *p1, const char *p2,
                     const char *p3, const char *p4) {
  ort_error(core, code, p1, p2, p3, p4); // every parameter is converted, whatever the mask says
}

void ort_warning(ort_core *core, int code, const char *p1, const char *p2, const char *p3,
                 const char *p4) {
  if (code == -1) {
    deliver(core, ORT_WARNING, core->errors.code, core->errors.message.text);
    return;
  }
  ort_message message;
  const char *const parameters[4] = {p1, p2, p3, p4};
  compose(core, &message, code, parameters);
  deliver(core, ORT_WARNING, code, message.text);
}

void ort_set_errmsg(ort_core *core, int code, const char *p1, const char *p2, const char *p3,
                    const char *p4) {
  ort_message message; // apart: a parameter may point into the pending text
  const char *const parameters[4] = {p1, p2, p3, p4};
  compose(core, &message, code, parameters);
  core->errors.code = code;
  core->errors.message.length = message.length;
  memcpy(core->errors.message.text, message.text, message.length + 1);
}

void ort_push2_errmsg(ort_core *core, int code, const char *p1, const char *p2, const char *p3,
                      const char *p4) {
  ort_message message;
  const char *const parameters[4] = {p1, p2, p3, p4};
  compose(core, &message, code, parameters);
  put_to_text<ort_message>(&core->errors.message.out, message.text, message.length);
}

void ort_internal_error(ort_core *core, const char *source, int line) {
  char number[16];
  *std::to_chars(number, number + 15, line).ptr = '\0';
  ort_error(core, ORT_E_INTERNAL, source, number, nullptr, nullptr);
}

void ort_raise_no_memory(ort_core *core) {
  ort_error(core, ORT_E_NO_MEMORY, nullptr, nullptr, nullptr, nullptr);
}

static void deliver(ort_core *core, ort_severity severity, int code, const char *text) {
  if (core->options.message)
    core->options.message(core->options.message_user, severity, code, text);
}

// ---- Tables -------------------------------------------------------------------------------------

void ort_register_errtab(ort_core *core, int number, const ort_errtab_entry *table, int count) {
  if (number < 1 || number >= ORT_ERRTABS || count < 0) {
    ort_internal_error(core, __FILE__, __LINE__);
  }
  core->errors.tables[number] = table;
  core->errors.table_sizes[number] = static_cast<size_t>(count);
}

const ort_errtab_entry *ort_find_error(const ort_core *core, int code) {
  const ort_errtab_entry *row =
      find_row(runtime_errors, sizeof runtime_errors / sizeof *runtime_errors, code);
  for (int i = 1; !row && i < ORT_ERRTABS; ++i) {
    row = find_row(core->errors.tables[i], core->errors.table_sizes[i], code);
  }
  return row;
}

static const ort_errtab_entry *find_row(const ort_errtab_entry *table, size_t count, int code) {
  size_t low = 0, high = count;
  while (low < high) {
    const size_t middle = (low + high) / 2;
    if (table[middle].code == code) return &table[middle];
    if (table[middle].code < code) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return nullptr;
}

// ---- Composing ----------------------------------------------------------------------------------

static void compose(const ort_core *core, ort_message *message, int code,
                    const char *const parameters[4]) {
  ort_out *out = begin_text(message);
  const ort_errtab_entry *row = ort_find_error(core, code);
  const char *text = row ? row->text : "Unknown error";
  while (*text) {
    if (text[0] == '$' && text[1] >= '1' && text[1] <= '4') {
      const char *parameter = parameters[text[1] - '1'];
      if (parameter) ort_put_escaped(out, parameter, ORT_LIMIT_MESSAGE_PARAMETER);
      text += 2;
    } else {
      const size_t literal = 1 + strcspn(text + 1, "$");
      out->put(out, text, literal);
      text += literal;
    }
  }
}

const char *ort_errprintf(ort_core *core, const char *format, ...) {
  ort_printed *printed = &core->printed[core->next_printed++ % ORT_PRINTED_TEXTS];
  va_list values;
  va_start(values, format);
  ort_put_format(begin_text(printed), format, values);
  va_end(values);
  return printed->text;
}

template <class Text> static ort_out *begin_text(Text *text) {
  text->out.put = put_to_text<Text>;
  text->length = 0;
  text->text[0] = '\0';
  return &text->out;
}

// What no longer fits is dropped, from a character boundary on.
template <class Text> static void put_to_text(ort_out *out, const char *bytes, size_t length) {
  Text *text = reinterpret_cast<Text *>(out);
  const size_t room = sizeof text->text - 1 - text->length;
  if (length > room) {
    length = room;
    while (length > 0 && (bytes[length] & 0xC0) == 0x80) --length;
  }
  memcpy(text->text + text->length, bytes, length);
  text->length += length;
  text->text[text->length] = '\0';
}
