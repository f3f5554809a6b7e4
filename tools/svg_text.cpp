// svg_text.cpp: see svg_text.h.
#include "tools/svg_text.h"

#include <nettle/base64.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

static void append_keyword(std::string &out, const char *name, int32_t key, int32_t initial);
static void append_length(std::string &out, const char *name, const svg_scene_number &length,
                          int32_t initial);
static std::string families_text(const svg_an_key_name_list &families);

// ---- Numbers ------------------------------------------------------------------------------------

// A number that no float can hold keeps the precision of a double.
void append_number(std::string &out, double value) {
  const auto narrow = static_cast<float>(value);
  char buffer[40];
  char *end = std::isfinite(narrow) ? std::to_chars(buffer, std::end(buffer), narrow).ptr
                                    : std::to_chars(buffer, std::end(buffer), value).ptr;
  std::string_view text(buffer, static_cast<size_t>(end - buffer));
  if (narrow == 0) text = "0";
  if (text.starts_with('-')) {
    out += '-';
    text.remove_prefix(1);
  }
  if (text.starts_with("0.")) text.remove_prefix(1);
  const size_t e = std::min(text.find('e'), text.size());
  out += text.substr(0, e);
  if (e == text.size()) return;
  out += 'e'; // "e+05" as "e5"
  text.remove_prefix(e + 1);
  if (text.starts_with('-')) out += '-';
  out += text.substr(std::min(text.find_first_not_of("+-0"), text.size()));
}

std::string svg_number(double value) {
  std::string result;
  append_number(result, value);
  return result;
}

std::string svg_numbers(const double *values, size_t count) {
  std::string result;
  for (size_t i = 0; i < count; ++i) {
    if (i > 0) result += ' ';
    append_number(result, values[i]);
  }
  return result;
}

std::string path_text(const svg_pada *runs, size_t count) {
  constexpr double LIMIT = 2147483520.0; // the last float that path data may hold
  std::string result;
  int previous = SVG_PADA_NONE;
  for (const svg_pada *run = runs; run != runs + count; ++run) {
    if (run->type != previous || run->type == SVG_PADA_MOVETO) result += "?MLCZ"[run->type];
    previous = run->type;
    for (int i = 0; i < 2 * run->count; ++i) {
      const double number = std::clamp(run->points[i], -LIMIT, LIMIT);
      const bool is_first = result.back() >= 'A' && result.back() <= 'Z';
      if (!is_first && !(static_cast<float>(number) < 0)) result += ' ';
      append_number(result, number);
    }
  }
  return result;
}

// ---- Attributes ---------------------------------------------------------------------------------

void append_attribute(std::string &out, std::string_view name, std::string_view value) {
  out += ' ';
  out += name;
  out += "=\"";
  out += escaped_text(value);
  out += '"';
}

void append_attribute(std::string &out, std::string_view name, double value) {
  append_attribute(out, name, svg_number(value));
}

void append_matrix(std::string &out, std::string_view name, const double matrix[6]) {
  static constexpr double identity[6] = {1, 0, 0, 1, 0, 0};
  const auto same = [](double a, double b) {
    return static_cast<float>(a) == static_cast<float>(b);
  };
  if (std::equal(matrix, matrix + 6, identity, same)) return;
  append_attribute(out, name, "matrix(" + svg_numbers(matrix, 6) + ")");
}

std::string escaped_text(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    switch (c) {
    case '&': result += "&amp;"; break;
    case '<': result += "&lt;"; break;
    case '>': result += "&gt;"; break;
    case '"': result += "&quot;"; break;
    case '\t': result += "&#9;"; break;
    case '\n': result += "&#10;"; break;
    case '\r': result += "&#13;"; break;
    default: result += c;
    }
  }
  return result;
}

std::string svg_color_text(uint32_t rgb, const svg_color *color) {
  static constexpr char digits[] = "0123456789abcdef";
  std::string result = "#";
  for (int shift = 20; shift >= 0; shift -= 4) result += digits[rgb >> shift & 15];
  if (result[1] == result[2] && result[3] == result[4] && result[5] == result[6])
    result = {'#', result[1], result[3], result[5]};
  if (!color || color->colortype == SVG_CT_NONE || color->colortype == SVG_CT_ICC_NAMED)
    return result;
  int32_t count = 0;
  const double *components = svg_get_components(color, &count);
  result = result + " " + svg_get_color_space_text(color->colortype) + "(";
  if (color->name) result += color->name;
  for (int32_t i = 0; i < count; ++i) {
    if (i > 0 || color->name) result += ",";
    append_number(result, components[i]);
  }
  return result + ")";
}

// ---- Styles -------------------------------------------------------------------------------------

void append_stroke_style(std::string &out, const svg_scene_style &style) {
  if (style.stroke_width != 1) append_attribute(out, "stroke-width", style.stroke_width);
  append_keyword(out, "stroke-linecap", style.stroke_linecap, SVG_KW_butt);
  append_keyword(out, "stroke-linejoin", style.stroke_linejoin, SVG_KW_miter);
  if (style.stroke_miterlimit != 4)
    append_attribute(out, "stroke-miterlimit", style.stroke_miterlimit);
  if (!style.stroke_dasharray) return;
  std::string dashes = svg_numbers(style.stroke_dasharray, style.stroke_dash_count);
  std::replace(dashes.begin(), dashes.end(), ' ', ',');
  append_attribute(out, "stroke-dasharray", dashes);
  if (style.stroke_dashoffset != 0)
    append_attribute(out, "stroke-dashoffset", style.stroke_dashoffset);
}

void append_text_style(std::string &out, const svg_scene_style &style) {
  if (style.font_family) append_attribute(out, "font-family", families_text(*style.font_family));
  append_attribute(out, "font-size", style.font_size);
  if (style.font_weight != 400) append_attribute(out, "font-weight", style.font_weight);
  append_keyword(out, "font-style", style.font_style, SVG_KW_normal);
  append_keyword(out, "font-variant", style.font_variant, SVG_KW_normal);
  append_keyword(out, "font-stretch", style.font_stretch, SVG_KW_normal);
  append_length(out, "font-size-adjust", style.font_size_adjust, SVG_KW_none);
  append_length(out, "kerning", style.kerning, SVG_KW_auto);
  if (style.letter_spacing != 0) append_attribute(out, "letter-spacing", style.letter_spacing);
  if (style.word_spacing != 0) append_attribute(out, "word-spacing", style.word_spacing);
  append_keyword(out, "text-anchor", style.text_anchor, SVG_KW_start);
  append_keyword(out, "direction", style.direction, SVG_KW_ltr);
  append_keyword(out, "unicode-bidi", style.unicode_bidi, SVG_KW_normal);
  append_keyword(out, "glyph-orientation-vertical", style.glyph_orientation_vertical, SVG_KW_auto);
}

static void append_keyword(std::string &out, const char *name, int32_t key, int32_t initial) {
  if (key != initial && key != 0) append_attribute(out, name, svg_get_keyword_text(key));
}

static void append_length(std::string &out, const char *name, const svg_scene_number &length,
                          int32_t initial) {
  if (length.key != 0)
    append_keyword(out, name, length.key, initial);
  else
    append_attribute(out, name, length.value);
}

static std::string families_text(const svg_an_key_name_list &families) {
  std::string result;
  for (int32_t i = 0; i < families.count; ++i) {
    if (i > 0) result += ",";
    if (families.keys[i] != 0) {
      result += svg_get_keyword_text(families.keys[i]);
      continue;
    }
    const std::string_view name = families.names[i];
    const char quote = name.find('\'') == name.npos ? '\'' : '"';
    result += quote;
    result += name;
    result += quote;
  }
  return result;
}

std::string data_uri(int mime, const unsigned char *data, size_t size) {
  const char *type = svg_get_mime_text(mime);
  std::string result = std::string("data:") + (type ? type : "") + ";base64,";
  const size_t before = result.size();
  result.resize(before + BASE64_ENCODE_RAW_LENGTH(size));
  base64_encode_raw(result.data() + before, size, data);
  return result;
}
