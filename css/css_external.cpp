// css_external.cpp: reads external sheets as far as the host's css_context allows, and converts
// them to UTF-8. Called by readers (xml-stylesheet) and by the sheet
// parser (@import).
//
// Opens only what the context allows; a refusal is a warning. Raises ORT_E_NO_MEMORY and whatever
// the host's read function raises, after closing file and converter.
#include "css/css_external.h"

#include <cstring>
#include <errno.h>
#include <fcntl.h>
#include <iconv.h>
#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string_view>

#include "css/css.h"

struct css_sheet_text {
  ort_core *core;
  ort_bs *bytes;
  bool too_long;
  bool no_memory;
};

namespace {
struct reading {
  ort_core *core;
  const char *href;
  const css_context *context;
  const char *encoding; // of a sheet that does not tell its own; null: UTF-8
  css_sheet_text sheet;
  int file; // -1: none
  ort_bs *text;
  iconv_t converter; // NO_CONVERTER: none
  char *result;
};

struct sheet_encoding {
  char name[40];
  size_t mark; // length of the byte-order mark
  bool wide;   // characters of two bytes
};
} // namespace

const iconv_t NO_CONVERTER = reinterpret_cast<iconv_t>(-1);
constexpr const char TOO_LONG[] = "it is too long";
constexpr const char REPLACEMENT[] = "\xEF\xBF\xBD"; // U+FFFD

constexpr ort_errtab_entry errors[] = {
    {2, CSS_E_REFUSED, "Style sheet '$1' refused: $2", nullptr},
    {2, CSS_E_UNREADABLE, "Style sheet '$1' cannot be read: $2", nullptr},
    {1, CSS_E_CYCLE, "Style sheet '$1' imports itself", nullptr},
    {2, CSS_E_ENCODING, "Style sheet '$1': unknown encoding '$2'", nullptr},
    {2, CSS_E_NAMES, "Selectors use more than $1 different $2 names", nullptr},
    {2, CSS_E_SELECTOR, "Selector '$1' is malformed at byte $2", nullptr},
};

static bool read_bytes(reading *r);
static bool read_from_host(reading *r);
static bool read_from_folder(reading *r);
static bool get_local_name(const char *href, char *name, size_t size);
static bool open_beneath(reading *r, const char *folder, const char *name);
static bool fail(reading *r, int code, const char *reason);
static const char *describe(int error);
static void decode(reading *r);
static sheet_encoding find_encoding(const reading *r, std::string_view bytes);
static std::string_view find_charset(std::string_view bytes);
static void open_converter(reading *r, const char *encoding);
static bool keeps_ascii(iconv_t converter);
static void convert(reading *r, char *bytes, size_t length, size_t unit);
static void append_without_nul(ort_bs *text, std::string_view bytes);

void css_register_errtab(ort_core *core) {
  ort_register_errtab(core, 9, errors, static_cast<int>(std::size(errors)));
}

bool css_refuse_long_href(ort_core *core, const char *href) {
  if (strlen(href) < ORT_LIMIT_SHEET_NAME) return false;
  ort_warning(core, CSS_E_REFUSED, href, "its name is too long", nullptr, nullptr);
  return true;
}

char *css_read_external_stylesheet(ort_core *core, const char *href, const css_context *context,
                                   const char *encoding, int log_level) {
  css_register_errtab(core);
  if (log_level >= 3) ort_logg(core, "\tFetching external style sheet \"%a\"...\n", href);
  if (css_refuse_long_href(core, href)) return nullptr;
  reading r = {core, href,    context,      encoding, {core, nullptr, false, false},
               -1,   nullptr, NO_CONVERTER, nullptr};
  bool done = ort_protected(core, [&r] {
    r.sheet.bytes = ort_bs_new(r.core);
    r.text = ort_bs_new(r.core);
    if (!read_bytes(&r)) return;
    decode(&r);
    r.result = ort_strndup(r.core, ort_bs_text(r.text), ort_bs_length(r.text),
                           "css_read_external_stylesheet");
  });
  if (r.file >= 0) close(r.file);
  if (r.converter != NO_CONVERTER) iconv_close(r.converter);
  ort_bs_delete(r.sheet.bytes);
  ort_bs_delete(r.text);
  if (!done) ort_rethrow(core);
  return r.result;
}

int css_context_append(css_sheet_text *text, const void *bytes, size_t length) {
  if (text->no_memory || text->too_long) return 0;
  text->too_long = length > ORT_LIMIT_STYLE_SHEET - ort_bs_length(text->bytes);
  if (text->too_long) return 0;
  text->no_memory = !ort_protected(text->core, [&] { ort_bs_append(text->bytes, bytes, length); });
  return !text->no_memory;
}

static bool read_bytes(reading *r) {
  if (!r->context || (!r->context->read && !r->context->base_folder))
    return fail(r, CSS_E_REFUSED, "external style sheets are not allowed");
  return r->context->read ? read_from_host(r) : read_from_folder(r);
}

static bool read_from_host(reading *r) {
  bool allowed = r->context->read(r->context->user, r->href, &r->sheet) != 0;
  if (r->sheet.no_memory) ort_error(r->core, ORT_E_NO_MEMORY, nullptr, nullptr, nullptr, nullptr);
  if (r->sheet.too_long) return fail(r, CSS_E_REFUSED, TOO_LONG);
  if (!allowed) fail(r, CSS_E_REFUSED, "not allowed by the host");
  return allowed;
}

static bool read_from_folder(reading *r) {
  char name[PATH_MAX];
  if (!get_local_name(r->href, name, sizeof name))
    return fail(r, CSS_E_REFUSED,
                "not the relative name of a file below the folder of style sheets");
  if (!open_beneath(r, r->context->base_folder, name)) return false;
  for (;;) {
    char buffer[16384];
    ssize_t length = read(r->file, buffer, sizeof buffer);
    if (length < 0) {
      if (errno == EINTR) continue;
      return fail(r, CSS_E_UNREADABLE, describe(errno));
    }
    if (length == 0) return true;
    if (static_cast<size_t>(length) > ORT_LIMIT_STYLE_SHEET - ort_bs_length(r->sheet.bytes))
      return fail(r, CSS_E_REFUSED, TOO_LONG);
    ort_bs_append(r->sheet.bytes, buffer, static_cast<size_t>(length));
  }
}

// Stores the file name of a relative reference (RFC 3986, 4.2) without query and fragment. Returns
// false for any other reference, and for names that could lead out of a folder.
static bool get_local_name(const char *href, char *name, size_t size) {
  std::string_view path = href;
  path = path.substr(0, path.find_first_of("?#"));
  size_t colon = path.find(':');
  if (path.empty() || path[0] == '/' || colon < path.find('/')) return false;

  size_t length = 0;
  for (size_t i = 0; i < path.size(); ++i) {
    if (length + 1 >= size) return false;
    // What ends the path is no digit.
    auto is_hex = [href](size_t k) { return ort_isxdigit(href[k]); };
    name[length] = path[i];
    if (path[i] == '%' && is_hex(i + 1) && is_hex(i + 2)) {
      name[length] = static_cast<char>(ort_hex2bin_a(&path[i + 1], ORT_HEX_PAIR));
      i += 2;
    }
    if (name[length] == '\0' || name[length] == '\\') return false;
    ++length;
  }
  name[length] = '\0';

  if (name[0] == '/') return false;
  for (const char *at = name;; ++at) {
    size_t segment = strcspn(at, "/");
    if (segment == 2 && at[0] == '.' && at[1] == '.') return false;
    at += segment;
    if (!*at) return true;
  }
}

// Opens the file for r. Links are followed only within the folder: the resolved name is opened
// folder by folder, so that a link put there in the meantime is not followed.
static bool open_beneath(reading *r, const char *folder, const char *name) {
  char base[PATH_MAX], path[2 * PATH_MAX], real[PATH_MAX];
  if (!realpath(folder, base)) return fail(r, CSS_E_UNREADABLE, describe(errno));
  size_t length = strcmp(base, "/") == 0 ? 0 : strlen(base);
  memcpy(path, base, length);
  path[length] = '/';
  memcpy(path + length + 1, name, strlen(name) + 1);
  if (!realpath(path, real)) return fail(r, CSS_E_UNREADABLE, describe(errno));
  if (strncmp(real, base, length) != 0 || real[length] != '/')
    return fail(r, CSS_E_REFUSED, "it leads out of the folder of style sheets");

  struct stat named = {};
  stat(real, &named);
  if (!S_ISREG(named.st_mode)) return fail(r, CSS_E_REFUSED, "not a file");
  r->file = open(base, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  for (char *at = real + length + 1; r->file >= 0 && *at;) {
    const char *segment = at;
    at += strcspn(at, "/");
    int flags = *at ? O_DIRECTORY : O_NONBLOCK | O_NOCTTY, outer = r->file;
    if (*at) *at++ = '\0';
    r->file = openat(outer, segment, flags | O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    close(outer);
  }
  if (r->file < 0) return fail(r, CSS_E_UNREADABLE, describe(errno));
  return true;
}

static bool fail(reading *r, int code, const char *reason) {
  ort_warning(r->core, code, r->href, reason, nullptr, nullptr);
  return false;
}

static const char *describe(int error) {
  static constexpr struct {
    int error;
    const char *text;
  } known[] = {{ENOENT, "no such file"},
               {ENOTDIR, "no such file"},
               {EACCES, "permission denied"},
               {ENAMETOOLONG, "the name is too long"},
               {ELOOP, "too many links"}};
  for (const auto &[number, text] : known)
    if (number == error) return text;
  return "error reading it";
}

static void decode(reading *r) {
  char *bytes = const_cast<char *>(ort_bs_text(r->sheet.bytes));
  size_t length = ort_bs_length(r->sheet.bytes);
  const sheet_encoding encoding = find_encoding(r, {bytes, length});
  open_converter(r, encoding.name);
  if (r->converter == NO_CONVERTER)
    ort_warning(r->core, CSS_E_ENCODING, r->href, encoding.name, nullptr, nullptr);
  // "@charset" was readable as ASCII, so the sheet cannot be in a two-byte encoding.
  if (r->converter == NO_CONVERTER || (!encoding.wide && !keeps_ascii(r->converter)))
    open_converter(r, "UTF-8");
  if (r->converter == NO_CONVERTER)
    ort_error(r->core, ORT_E_CALL_FAILED, "iconv_open", nullptr, nullptr, nullptr);
  convert(r, bytes + encoding.mark, length - encoding.mark, encoding.wide ? 2 : 1);
}

// CSS 2.1, 4.4: a byte-order mark, then "@charset", then the encoding of what names the sheet, then
// UTF-8. No sheet begins with a NUL, nor has one after its first byte, but in two-byte characters.
static sheet_encoding find_encoding(const reading *r, std::string_view bytes) {
  constexpr std::string_view utf8_mark = "\xEF\xBB\xBF", be_mark = "\xFE\xFF", le_mark = "\xFF\xFE";
  const bool looks_wide =
      r->encoding && bytes.size() >= 2 && (bytes[0] == '\0') != (bytes[1] == '\0');
  sheet_encoding found = {};
  std::string_view name = r->encoding ? r->encoding : "UTF-8";
  if (bytes.starts_with(utf8_mark)) {
    found.mark = utf8_mark.size();
    name = "UTF-8";
  } else if (bytes.starts_with(be_mark) || bytes.starts_with(le_mark) || looks_wide) {
    found.mark = looks_wide ? 0 : be_mark.size();
    found.wide = true;
    name = bytes[0] == (looks_wide ? '\0' : be_mark[0]) ? "UTF-16BE" : "UTF-16LE";
  } else if (std::string_view charset = find_charset(bytes); !charset.empty()) {
    name = charset;
  }
  memcpy(found.name, name.data(), name.size());
  return found;
}

// The name that a sheet begins with, or "".
static std::string_view find_charset(std::string_view bytes) {
  constexpr std::string_view charset = "@charset \"";
  if (!bytes.starts_with(charset)) return "";
  std::string_view name = bytes.substr(charset.size(), sizeof sheet_encoding::name);
  const size_t end = name.find("\";");
  if (end == name.npos) return "";
  name = name.substr(0, end);
  for (char c : name)
    if (!ort_isalpha(c) && !ort_isdigit(c) && !strchr("-_.:", c)) return "";
  return name;
}

static void open_converter(reading *r, const char *encoding) {
  if (r->converter != NO_CONVERTER) iconv_close(r->converter);
  r->converter = iconv_open("UTF-8", encoding);
}

static bool keeps_ascii(iconv_t converter) {
  constexpr std::string_view ascii = "@charset";
  char text[ascii.size()], result[ascii.size()], *from = text, *to = result;
  size_t length = ascii.copy(text, ascii.size()), room = sizeof result;
  iconv(converter, &from, &length, &to, &room);
  iconv(converter, nullptr, nullptr, nullptr, nullptr); // back to the initial state
  return std::string_view(result, sizeof result - room) == ascii;
}

// Appends the bytes to r->text in UTF-8. A malformed character skips unit bytes.
static void convert(reading *r, char *bytes, size_t length, size_t unit) {
  bool flushed = false;
  while (!flushed) {
    char buffer[4096], *to = buffer;
    size_t room = sizeof buffer;
    flushed = length == 0;
    size_t result = iconv(r->converter, flushed ? nullptr : &bytes, &length, &to, &room);
    int error = errno;
    append_without_nul(r->text, {buffer, sizeof buffer - room});
    if (result != SIZE_MAX || error == E2BIG || flushed) continue;
    ort_bs_append_text(r->text, REPLACEMENT);
    size_t skipped = error == EINVAL || length < unit ? length : unit; // EINVAL: cut at the end
    bytes += skipped;
    length -= skipped;
  }
}

static void append_without_nul(ort_bs *text, std::string_view bytes) {
  for (;;) {
    size_t nul = bytes.find('\0');
    ort_bs_append(text, bytes.data(), nul < bytes.size() ? nul : bytes.size());
    if (nul >= bytes.size()) return;
    ort_bs_append_text(text, REPLACEMENT);
    bytes.remove_prefix(nul + 1);
  }
}
