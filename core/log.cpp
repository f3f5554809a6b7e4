// log.cpp: the log. The reader and the CSS engine write to it; pieces go to the host's sink as they
// come. Nothing here raises or allocates.
#include <stdarg.h>
#include <string.h>

#include "core/ort_state.h"

namespace {

struct log_out {
  ort_out out;
  const ort_options *options;
  size_t used;
  char buffer[500];
};

} // namespace

static void put_to_log(ort_out *out, const char *bytes, size_t length);
static void flush(log_out *log);

int ort_logg_getlevel(const ort_core *core, int log_class) {
  return log_class >= 0 && log_class < ORT_LOG_CLASSES ? core->options.log_levels[log_class] : 0;
}

static void log_values(ort_core *core, const char *format, va_list values) {
  if (!core->options.log) return;
  log_out log;
  log.out.put = put_to_log;
  log.options = &core->options;
  log.used = 0;
  ort_put_format(&log.out, format, values);
  flush(&log);
}

void ort_logg(ort_core *core, const char *format, ...) {
  va_list values;
  va_start(values, format);
  log_values(core, format, values);
  va_end(values);
}

void ort_logg_cond(ort_core *core, int level, int log_class, const char *format, ...) {
  if (ort_logg_getlevel(core, log_class) < level) return;
  va_list values;
  va_start(values, format);
  log_values(core, format, values);
  va_end(values);
}

void ort_logg_unitext(ort_core *core, const char *text, int /*reserved1*/, int /*reserved2*/,
                      int quoted) {
  ort_logg(core, quoted ? "\"%a\"" : "%a", text);
}

static void put_to_log(ort_out *out, const char *bytes, size_t length) {
  log_out *log = reinterpret_cast<log_out *>(out);
  if (length > sizeof log->buffer - log->used) flush(log);
  if (length > sizeof log->buffer) {
    log->options->log(log->options->log_user, bytes, length);
    return;
  }
  memcpy(log->buffer + log->used, bytes, length);
  log->used += length;
}

static void flush(log_out *log) {
  if (log->used) log->options->log(log->options->log_user, log->buffer, log->used);
  log->used = 0;
}
