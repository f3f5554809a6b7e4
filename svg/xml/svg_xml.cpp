// svg_xml.cpp: one pass over the input through Expat.
//
// Called by svg_parse.cpp for the style-sheet pass and for the main pass, in which Expat works only
// when the first could not be recorded, or not be played to its end. A pass that fails because of
// its encoding or its namespaces is restarted from a clean state. Raises SVG_E_NOT_SVG, ORT_E_READ,
// ORT_E_GZIP, ORT_E_XML, and again what a callback raised.
#include "svg/xml/svg_xml.h"

#include <cstring>
#include <utility>

#include "svg/tree/svg_document.h"
#include "svg/values/svg_leniency.h"
#include "svg/xml/svg_content.h"
#include "svg/xml/svg_expat.h"
#include "svg/xml/svg_growth.h"
#include "svg/xml/svg_recording.h"
#include "svg/xml/svg_sheets.h"

static void create_expat(svg_parser *p, int32_t css_pass, int32_t encoding);
static void skip_played(svg_parser *p);
static void set_main_handlers(svg_parser *p);
static int run_expat(svg_parser *p, ort_file *file, ort_gz *gz, const char *banner,
                     bool *first_block);
static void log_line(svg_parser *p, const char *line);
static bool read_block(ort_file *file, ort_gz *gz, char *block, size_t size, size_t *length,
                       bool *last);
ORT_NORETURN static void raise_read_error(svg_parser *p, ort_gz *gz);
static void check_looks_like_xml(svg_parser *p, const char *block, size_t length);
static bool looks_like_utf16(svg_parser *p, const char *block, size_t length);
static bool is_namespace_error(int code);
static void restart(svg_parser *p, ort_file *file, ort_gz **gz, int32_t css_pass);

// Encodings that may be forced on Expat, in the order of the attempts; 0 leaves the choice to the
// document.
constexpr ort_keyword svg_xp_encodings[] = {
    {"UTF-8", 1}, {"ISO-8859-1", 2}, {"US-ASCII", 3}, {"UTF-16", 4}, {nullptr, 0}};
constexpr int32_t LAST_ENCODING = 4;

constexpr char CSS_BANNER[] = "\n------------------------- CSS rules --------------------------\n";
constexpr char MAIN_BANNER[] = "\n------------------------- SVG file ---------------------------\n";
constexpr char MAIN_END[] = "--------------------------------------------------------------\n";

void svg_parse_xml(svg_parser *p, ort_file *file, ort_gz **gz, int32_t css_pass,
                   int32_t *encoding) {
  const char *banner = css_pass ? CSS_BANNER : MAIN_BANNER;
  if (!css_pass && p->recording) {
    log_line(p, std::exchange(banner, nullptr));
    if (svg_recording_play(p)) {
      log_line(p, MAIN_END);
      return;
    }
  }
  p->input_size = *gz ? -1 : ort_fsize(file);
  bool first_block = true;
  bool namespace_restart = false;
  for (int32_t enc = *encoding;;) {
    create_expat(p, css_pass, enc);
    const int code = run_expat(p, file, *gz, banner, &first_block);
    if (!css_pass) log_line(p, MAIN_END);
    banner = css_pass ? CSS_BANNER : MAIN_BANNER;
    if (code == XML_ERROR_NONE) {
      *encoding = enc;
      break;
    }
    if (code == XML_ERROR_INCORRECT_ENCODING && enc < LAST_ENCODING) {
      ort_warning(p->core, -1);
      restart(p, file, gz, css_pass);
      ++enc;
      svg_note(p, 3, "\tNew parsing with encoding %a\n", ort_get_keyword(enc, svg_xp_encodings));
    } else if (is_namespace_error(code) && !namespace_restart) {
      namespace_restart = true;
      ort_warning(p->core, -1);
      restart(p, file, gz, css_pass);
      p->no_namespaces = 1;
      svg_note(p, 3, "\tNew parsing without namespace handling\n");
    } else {
      ort_rethrow(p->core);
    }
  }
  if (css_pass)
    svg_reset_xml(p, file, gz);
  else
    svg_expat_delete(p);
}

static void create_expat(svg_parser *p, int32_t css_pass, int32_t encoding) {
  svg_expat_create(p, ort_get_keyword(encoding, svg_xp_encodings));
  if (p->utf16 && encoding == 0) svg_expat_set_encoding(p, p->utf16);
  XML_SetUserData(p->xml, p);
  XML_SetUnknownEncodingHandler(p->xml, svg_cb_encoding_handler, p);
  XML_SetBillionLaughsAttackProtectionMaximumAmplification(p->xml, p->limits.entity_factor);
  XML_SetBillionLaughsAttackProtectionActivationThreshold(p->xml, p->limits.entity_start);
  svg_bound_growth(p);
  if (css_pass) {
    XML_SetProcessingInstructionHandler(p->xml, svg_cb_proc_instr_css);
    svg_recording_begin(p);
  } else if (p->to_skip > 0) {
    const auto skip = [](void *parser, auto...) { skip_played(static_cast<svg_parser *>(parser)); };
    XML_SetElementHandler(p->xml, skip, skip);
    XML_SetCharacterDataHandler(p->xml, skip);
    XML_SetNamespaceDeclHandler(p->xml, skip, skip);
  } else {
    set_main_handlers(p);
  }
}

// The recording was given up after this callback or a later one.
static void skip_played(svg_parser *p) {
  if (--p->to_skip == 0) set_main_handlers(p);
}

static void set_main_handlers(svg_parser *p) {
  XML_SetElementHandler(p->xml, svg_cb_elem_start, svg_cb_elem_end);
  XML_SetCharacterDataHandler(p->xml, svg_cb_char_data);
  XML_SetNamespaceDeclHandler(p->xml, svg_cb_namespace_start, svg_cb_namespace_end);
}

// Feeds the whole input. Returns Expat's error code, with ORT_E_XML composed as the pending error
// when it is not 0. banner is logged when there is something to read; it may be null.
static int run_expat(svg_parser *p, ort_file *file, ort_gz *gz, const char *banner,
                     bool *first_block) {
  for (bool last = false; !last;) {
    size_t size, length;
    char *block = svg_expat_room(p, &size);
    XML_Status status;
    if (!read_block(file, gz, block, size, &length, &last)) {
      // What precedes the fault counts first.
      status = svg_expat_flush(p);
      if (status == XML_STATUS_OK) raise_read_error(p, gz);
    } else {
      if (*first_block) check_looks_like_xml(p, block, length);
      *first_block = false;
      if (banner) log_line(p, std::exchange(banner, nullptr));
      status = svg_expat_take(p, length, last);
    }
    if (status == XML_STATUS_OK) continue;
    const XML_Error code = XML_GetErrorCode(p->xml);
    ort_set_errmsg(
        p->core, ORT_E_XML, ort_errprintf(p->core, "%a", XML_ErrorString(code)),
        ort_errprintf(p->core, "%d", static_cast<int>(svg_xml_line(p))),
        ort_errprintf(p->core, "%d", static_cast<int>(XML_GetCurrentColumnNumber(p->xml))));
    return code;
  }
  return XML_ERROR_NONE;
}

static void log_line(svg_parser *p, const char *line) { svg_note(p, 3, "%s", line); }

// Less than a block is read at the end. False: reading failed.
static bool read_block(ort_file *file, ort_gz *gz, char *block, size_t size, size_t *length,
                       bool *last) {
  const int64_t read =
      gz ? ort_gzread(gz, block, size) : static_cast<int64_t>(ort_fread(block, 1, size, file));
  *length = static_cast<size_t>(read);
  *last = gz ? *length < size : ort_feof(file) != 0;
  return read >= 0 && (*length == size || *last);
}

static void raise_read_error(svg_parser *p, ort_gz *gz) {
  if (!gz) ort_error(p->core, ORT_E_READ, p->filename);
  char byte;
  ort_gzread(gz, &byte, 1); // fails as before; the pending error may be another by now
  ort_rethrow(p->core);
}

// Looks at bytes, not at characters: a UTF-16 document passes only when its "<" comes right after
// the mark.
static void check_looks_like_xml(svg_parser *p, const char *block, size_t length) {
  const char *s = block;
  const char *end = block + length;
  if (length >= 3 && memcmp(s, "\xEF\xBB\xBF", 3) == 0)
    s += 3;
  else if (length >= 2 && (memcmp(s, "\xFE\xFF", 2) == 0 || memcmp(s, "\xFF\xFE", 2) == 0))
    s += 2;
  while (s < end && ort_isspace(*s)) ++s;
  if (s != end && *s == '<') return;
  if ((p->leniency & SVG_LENIENT_ENCODING) && looks_like_utf16(p, block, length)) return;
  ort_error(p->core, SVG_E_NOT_SVG, p->filename);
}

// Looks at characters, after a mark or without one; then Expat must be told of their order, for it
// only knows a "<" at the start.
static bool looks_like_utf16(svg_parser *p, const char *block, size_t length) {
  const char *s = block, *end = block + length;
  const bool marked =
      length >= 2 && (memcmp(s, "\xFE\xFF", 2) == 0 || memcmp(s, "\xFF\xFE", 2) == 0);
  const bool big_endian = length > 0 && *s == (marked ? '\xFE' : '\0');
  if (marked) s += 2;
  const auto byte = [=](const char *at, bool high) { return at[high != big_endian ? 1 : 0]; };
  while (end - s >= 2 && byte(s, true) == '\0' && ort_isspace(byte(s, false))) s += 2;
  if (end - s < 2 || byte(s, true) != '\0' || byte(s, false) != '<') return false;
  const char *name = big_endian ? "UTF-16BE" : "UTF-16LE";
  if (!marked) svg_expat_set_encoding(p, p->utf16 = name);
  svg_tell_encoding(p, name);
  return true;
}

static bool is_namespace_error(int code) {
  switch (code) {
  case XML_ERROR_UNBOUND_PREFIX:
  case XML_ERROR_UNDECLARING_PREFIX:
  case XML_ERROR_RESERVED_PREFIX_XML:
  case XML_ERROR_RESERVED_PREFIX_XMLNS:
  case XML_ERROR_RESERVED_NAMESPACE_URI: return true;
  default: return false;
  }
}

// Undoes what the failed attempt made, so that the next one starts as if it were the first.
static void restart(svg_parser *p, ort_file *file, ort_gz **gz, int32_t css_pass) {
  svg_reset_xml(p, file, gz);
  p->to_skip = 0;
  if (css_pass)
    svg_restart_sheets(p);
  else
    svg_restart_document(p);
}

void svg_reset_xml(svg_parser *p, ort_file *file, ort_gz **gz) {
  svg_expat_delete(p);
  if (ort_fseek(file, 0, 0) != 0) ort_error(p->core, ORT_E_READ, p->filename);
  if (*gz) {
    ort_gzclose(*gz);
    *gz = nullptr; // in case the next line raises
    *gz = ort_gzopen(file);
  }
}

static bool get_windows_encoding(svg_parser *p, const XML_Char *name, XML_Encoding *info) {
  constexpr char prefix[] = "windows-125";
  constexpr size_t length = sizeof prefix - 1;
  if ((p->leniency & SVG_LENIENT_ENCODING) == 0 || ort_strincmp_a(name, prefix, length) != 0 ||
      name[length] < '0' || name[length] > '8' || name[length + 1] != '\0')
    return false;
  const char system_name[] = {'C', 'P', '1', '2', '5', name[length], '\0'};
  static_assert(sizeof system_name == sizeof p->windows_encoding);
  if (!ort_get_system_encoding(system_name, info->map)) return false;
  memcpy(p->windows_encoding, system_name, sizeof system_name);
  svg_tell_encoding(p, name);
  return true;
}

int svg_cb_encoding_handler(void *data, const XML_Char *name, XML_Encoding *info) {
  auto *p = static_cast<svg_parser *>(data);
  info->data = p;
  info->convert = nullptr;
  info->release = nullptr;
  if (!name) return 0;
  if (get_windows_encoding(p, name, info)) return 1;
  if (strlen(name) < 9 || ort_strincmp_a(name, "ISO", 3) != 0) return 0;
  const char *part = name + (name[3] == '-' ? 4 : 3);
  if (strncmp(part, "8859", 4) != 0) return 0;
  part += part[4] == '-' ? 5 : 4;
  char host_name[16] = "iso8859-";
  strncat(host_name, part, 2);
  bool known = false;
  svg_in_callback(p, [&] {
    int32_t number = 0;
    if (ort_get_encoding(p->core, host_name, &number, 0) < 0) return;
    const uint16_t *codes = ort_get_encoding_vector(p->core, number);
    for (int i = 0; i < 256; ++i) info->map[i] = codes[i];
    known = true;
  });
  return known;
}
