// svg_scan.cpp: the scanner that splits the text of one attribute or property value into tokens:
// punctuation, strings, words, keywords of the value's own list, numbers with unit.
//
// svg_parse_attr sets it up for each value; the constructors pull tokens. Raises value errors
// (svg_err_value): a string without end, or a token that is not the number asked for.
#include "svg/values/svg_scan.h"

#include <array>
#include <cstring>
#include <iterator>

#include "svg/names/svg_schema.h"
#include "svg/path/svg_number.h"
#include "svg/values/svg_errors.h"
#include "svg/values/svg_leniency.h"

static int set_token(svg_scanner *p, int type, const char *begin, const char *end);
static int set_mark(svg_scanner *p, int type, const char *text);
static int read_string(svg_scanner *p);
static int read_word(svg_scanner *p);
static const svg_key_entry *find_key(const svg_scanner *p, const char *text,
                                     const svg_key_entry *keys, int32_t count);
static int next_token(svg_scanner *p, bool numbers);
// Apart, so that plain numbers and tokens that were pushed back do not pay for its frame.
[[gnu::noinline]] static int read_token(svg_scanner *p, bool numbers);
static bool read_lenient_number(svg_scanner *p);
static bool set_unit(svg_scanner *p, const char *begin, const char *end);
static void set_number(svg_scanner *p, const svg_decimal &number, bool negative);
static bool is_wanted_key(const svg_scanner *p, char first);

// clang-format off
constexpr svg_key_entry svg_units[] = {
    {"cm",   SVG_UNIT_CM},
    {"deg",  SVG_UNIT_DEG},
    {"em",   SVG_UNIT_EM},
    {"ex",   SVG_UNIT_EX},
    {"grad", SVG_UNIT_GRAD},
    {"in",   SVG_UNIT_IN},
    {"mm",   SVG_UNIT_MM},
    {"pc",   SVG_UNIT_PC},
    {"pt",   SVG_UNIT_PT},
    {"px",   SVG_UNIT_PX},
    {"rad",  SVG_UNIT_RAD},
};
// clang-format on

constexpr auto svg_unit_texts = [] {
  std::array<const char *, SVG_UNIT_COUNT> texts = {};
  for (const svg_key_entry &unit : svg_units) texts[static_cast<size_t>(unit.id)] = unit.text;
  texts[SVG_UNIT_NONE] = "";
  texts[SVG_UNIT_PERCENT] = "%";
  return texts;
}();

const char *svg_get_unit_text(int32_t unit) {
  return unit >= 0 && unit < SVG_UNIT_COUNT ? svg_unit_texts[static_cast<size_t>(unit)] : nullptr;
}

// ---- Tokens -------------------------------------------------------------------------------------

void svg_scan_reset(svg_scanner *p) { p->scan_pos = p->scan_start; }

static bool ends_word(char c) {
  static constexpr auto ends = [] {
    std::array<bool, 256> table = {};
    for (size_t i = 0; i < table.size(); ++i) table[i] = svg_is_special(static_cast<char>(i));
    for (const char end : {'\0', ' ', '\t', '\n', '\v', '\f', '\r'})
      table[static_cast<unsigned char>(end)] = true;
    return table;
  }();
  return ends[static_cast<unsigned char>(c)];
}

int svg_get_token(svg_scanner *p) {
  while (ort_isspace(*p->scan_pos)) ++p->scan_pos;
  switch (*p->scan_pos) {
  case '\0': return set_token(p, SVG_TOK_END, p->scan_pos, p->scan_pos);
  case '(': return set_mark(p, SVG_TOK_LPAREN, "(");
  case ')': return set_mark(p, SVG_TOK_RPAREN, ")");
  case ',': return set_mark(p, SVG_TOK_COMMA, ",");
  case '\'':
  case '"': return read_string(p);
  default: return read_word(p);
  }
}

// Makes the text from begin to end the current token, and goes on after it. The last token of a
// value ends where the value does and needs no copy.
static int set_token(svg_scanner *p, int type, const char *begin, const char *end) {
  if (*end == '\0') {
    p->tok_text = begin;
  } else {
    ort_bs_clear(p->tok_buf);
    ort_bs_append(p->tok_buf, begin, static_cast<size_t>(end - begin));
    p->tok_text = ort_bs_text(p->tok_buf);
  }
  p->tok_type = type;
  p->scan_pos = end;
  return type;
}

static int set_mark(svg_scanner *p, int type, const char *text) {
  p->tok_text = text;
  p->tok_type = type;
  ++p->scan_pos;
  return type;
}

const char *svg_tok_text(svg_scanner *p) {
  if (!p->tok_text) {
    ort_bs_clear(p->tok_buf);
    ort_bs_append(p->tok_buf, p->tok_begin, p->tok_length);
    p->tok_text = ort_bs_text(p->tok_buf);
  }
  return p->tok_text;
}

// A quote that ends the value is an empty string.
static int read_string(svg_scanner *p) {
  const char *begin = p->scan_pos + 1;
  const char *end = *begin != '\0' ? strchr(begin, begin[-1]) : begin;
  if (!end) {
    p->tok_type = SVG_TOK_END;
    svg_err_value(p);
  }
  set_token(p, SVG_TOK_STRING, begin, end);
  if (*end != '\0') ++p->scan_pos;
  return SVG_TOK_STRING;
}

static int read_word(svg_scanner *p) {
  const char *end = p->scan_pos;
  while (!ends_word(*end)) ++end;
  set_token(p, SVG_TOK_WORD, p->scan_pos, end);
  if (const svg_key_entry *key = find_key(p, p->tok_text, p->keys, p->key_count)) {
    p->tok_type = SVG_TOK_KEYWORD;
    p->tok_key = key->id;
  }
  return p->tok_type;
}

// The first entry with this text, or null. Texts that are equal in either letter case agree in
// their first bytes but for bit 5; few others do.
static const svg_key_entry *find_key(const svg_scanner *p, const char *text,
                                     const svg_key_entry *keys, int32_t count) {
  for (const svg_key_entry *key = keys; key < keys + count; ++key)
    if (((*key->text ^ *text) & ~0x20) == 0 && svg_strcmp(p, key->text, text) == 0) return key;
  return nullptr;
}

int svg_ntok(svg_scanner *p) { return next_token(p, true); }

int svg_ntok_nonum(svg_scanner *p) { return next_token(p, false); }

static int next_token(svg_scanner *p, bool numbers) {
  if (p->tok_pushed != 0) {
    p->tok_pushed = 0;
    return p->tok_type;
  }
  if (numbers && svg_read_plain_number(p)) return p->tok_type;
  return read_token(p, numbers);
}

static int read_token(svg_scanner *p, bool numbers) {
  if (numbers && p->lenient != 0 && read_lenient_number(p)) return p->tok_type;
  if (svg_get_token(p) != SVG_TOK_WORD) return p->tok_type;
  if (!numbers || !svg_is_numstart(*p->tok_text) || !svg_try_unumtok(p))
    p->tok_type = SVG_TOK_STRING;
  return p->tok_type;
}

// A text of its own is made only for an error.
bool svg_read_plain_number(svg_scanner *p) {
  const char *begin = p->scan_pos;
  while (ort_isspace(*begin)) ++begin;
  const bool negative = *begin == '-';
  const svg_short_number number = svg_read_short(begin + (negative || *begin == '+'));
  if (!number.valid || !ends_word(*number.end) || is_wanted_key(p, *begin)) return false;
  const int32_t integer =
      number.value <= INT32_MAX ? static_cast<int32_t>(number.value) : INT32_MAX;
  p->tok_num = negative ? -number.value : number.value;
  p->tok_int = negative ? -integer : integer;
  p->tok_unit = SVG_UNIT_NONE;
  p->tok_type = number.real ? SVG_TOK_REAL : SVG_TOK_INT;
  p->tok_text = nullptr;
  p->tok_begin = begin;
  p->tok_length = static_cast<size_t>(number.end - begin);
  p->scan_pos = number.end;
  return true;
}

bool svg_read_plain_color(svg_scanner *p) {
  const char *begin = p->scan_pos;
  while (ort_isspace(*begin)) ++begin;
  if (*begin != '#') return false;
  const char *end = begin + 1;
  while (ort_isxdigit(*end)) ++end;
  if (*end != '\0' || (end - begin != 4 && end - begin != 7)) return false;
  set_token(p, SVG_TOK_STRING, begin, end);
  return true;
}

// A number that ends where another begins, after its unit if it has one, or has a unit of CSS 3.
static bool read_lenient_number(svg_scanner *p) {
  const char *begin = p->scan_pos;
  while (ort_isspace(*begin)) ++begin;
  const bool negative = *begin == '-';
  svg_decimal number;
  const char *end = svg_read_mantissa(begin + (negative || *begin == '+'), &number);
  if (number.valid && (*end == 'e' || *end == 'E') && svg_is_expostart(end[1]))
    end = svg_read_exponent(end + 1, &number);
  if (!number.valid) return false;
  set_number(p, number, negative);
  const char *unit = end;
  if (*end == '%')
    ++end;
  else
    while (ort_isalpha(*end)) ++end;
  const bool adjoins = *end == '-' || *end == '+' || *end == '.';
  if (!ends_word(*end) && !(adjoins && svg_is_lenient(p, SVG_LENIENT_NUMBERS))) return false;
  if (unit != end && !set_unit(p, unit, end)) return false;
  p->tok_text = nullptr;
  p->tok_begin = begin;
  p->tok_length = static_cast<size_t>(end - begin);
  p->scan_pos = end;
  return true;
}

// A root em is the em of the outermost element, whose width and height are percentages of the
// window (CSS Values and Units 3, 5.1); elsewhere both are known to the host alone. A quarter of a
// millimetre is one everywhere.
static bool set_unit(svg_scanner *p, const char *begin, const char *end) {
  struct css_unit {
    svg_key_entry is; // by the unit of SVG 1.1
    double factor;
    int32_t row; // only there, or -1
    bool outermost;
  };
  static constexpr css_unit css_units[] = {
      {{"Q", SVG_UNIT_MM}, 0.25, -1, false},
      {{"rem", SVG_UNIT_EM}, 1, -1, true},
      {{"vh", SVG_UNIT_PERCENT}, 1, SVG_ATTR_svg_height, true},
      {{"vw", SVG_UNIT_PERCENT}, 1, SVG_ATTR_svg_width, true},
  };
  char text[8] = "";
  if (static_cast<size_t>(end - begin) >= sizeof text) return false;
  memcpy(text, begin, static_cast<size_t>(end - begin));
  p->tok_type = *begin == '%' ? SVG_TOK_PERCENT : SVG_TOK_UNUM;
  p->tok_unit = SVG_UNIT_PERCENT;
  if (*begin == '%') return true;
  if (const svg_key_entry *unit = find_key(p, text, svg_units, std::size(svg_units))) {
    p->tok_unit = static_cast<uint8_t>(unit->id);
    return true;
  }
  for (const css_unit &unit : css_units) {
    if (!find_key(p, text, &unit.is, 1) || (unit.outermost && !p->lenient_outermost) ||
        (unit.row >= 0 && unit.row != p->lenient_row))
      continue;
    p->tok_unit = static_cast<uint8_t>(unit.is.id);
    p->tok_num *= unit.factor;
    return svg_is_lenient(p, SVG_LENIENT_LENGTHS);
  }
  return false;
}

// Whether a keyword may begin with this byte of a number.
static bool is_wanted_key(const svg_scanner *p, char first) {
  for (int32_t i = 0; i < p->key_count; ++i)
    if (*p->keys[i].text == first) return true;
  return false;
}

int32_t svg_ctok_as_key(svg_scanner *p) {
  if (p->tok_type != SVG_TOK_KEYWORD) svg_err_value(p);
  return p->tok_key;
}

// ---- Numbers ------------------------------------------------------------------------------------

int svg_try_unumtok(svg_scanner *p) {
  const char *s = p->tok_text;
  const bool negative = *s == '-';
  if (negative || *s == '+') ++s;
  svg_decimal number;
  s = svg_read_mantissa(s, &number);
  if (!number.valid) return 0;
  if ((*s == 'e' || *s == 'E') && svg_is_expostart(s[1])) { // else "em" or "ex"
    s = svg_read_exponent(s + 1, &number);
    if (!number.valid) return 0;
  }

  set_number(p, number, negative);
  if (*s == '%') { // whatever follows
    p->tok_type = SVG_TOK_PERCENT;
    p->tok_unit = SVG_UNIT_PERCENT;
  } else if (*s != '\0') {
    const svg_key_entry *unit = find_key(p, s, svg_units, std::size(svg_units));
    if (!unit) return 0;
    p->tok_type = SVG_TOK_UNUM;
    p->tok_unit = static_cast<uint8_t>(unit->id);
  }
  return 1;
}

// A token without unit.
static void set_number(svg_scanner *p, const svg_decimal &number, bool negative) {
  const double magnitude = svg_decimal_value(&number);
  const int32_t integer = magnitude <= INT32_MAX ? static_cast<int32_t>(magnitude) : INT32_MAX;
  p->tok_num = negative ? -magnitude : magnitude;
  p->tok_int = negative ? -integer : integer;
  p->tok_type = number.real ? SVG_TOK_REAL : SVG_TOK_INT;
  p->tok_unit = SVG_UNIT_NONE;
}

// An integer counts as clamped to 32 bits, a number with decimal point or exponent as written.
double svg_ctok_as_num(svg_scanner *p) {
  if (p->tok_type == SVG_TOK_INT) return p->tok_int;
  if (p->tok_type == SVG_TOK_PERCENT && svg_is_lenient(p, SVG_LENIENT_PERCENT))
    return p->tok_num / 100;
  if (p->tok_type != SVG_TOK_REAL) svg_err_value(p);
  return p->tok_num;
}

double svg_get_num(svg_scanner *p) {
  svg_ntok(p);
  return svg_ctok_as_num(p);
}

double svg_ctok_as_unum(svg_scanner *p, uint8_t *unit) {
  const bool with_unit = p->tok_type == SVG_TOK_UNUM || p->tok_type == SVG_TOK_PERCENT;
  const double value = with_unit ? p->tok_num : svg_ctok_as_num(p);
  *unit = with_unit ? p->tok_unit : static_cast<uint8_t>(SVG_UNIT_NONE);
  return value;
}

double svg_get_unum(svg_scanner *p, uint8_t *unit) {
  svg_ntok(p);
  return svg_ctok_as_unum(p, unit);
}

double svg_chk_sep_num(svg_scanner *p) {
  if (p->tok_type == SVG_TOK_COMMA) svg_ntok(p);
  return svg_ctok_as_num(p);
}

double svg_get_sep_num(svg_scanner *p) {
  svg_ntok(p);
  return svg_chk_sep_num(p);
}
