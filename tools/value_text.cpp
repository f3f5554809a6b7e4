// value_text.cpp: values as a person would write them, for the text tree and for --explain.
#include "tools/value_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <span>

#include "tools/records.h"
#include "tools/utf8.h"

static std::string unum_text(double value, int unit, bool full);
static std::string keyword_or(int key, const std::string &otherwise);
static std::string unums_text(int32_t count, const double *values, const uint8_t *units, bool full);
static std::string trafo_text(const svg_an_trafo *trafo, bool full);
static std::string paint_text(const Surroundings &drawing, const svg_a_node *value, bool full);
static std::string color_text(const svg_color &color, bool full);
static std::string funciri_text(const Surroundings &drawing, const svg_iri &iri, bool full);
static bool is_none(const svg_iri &iri);
static std::string families_text(const svg_an_key_name_list *list, bool full);
static std::string path_text(const svg_an_path_data *path, bool full);

// Items of a list that are shown unless all are wanted.
constexpr int32_t SHOWN_ITEMS = 12;

constexpr size_t SHOWN_TEXT = 200; // bytes

std::string number_text(double value, bool exact) {
  char buffer[32];
  char *end = buffer + sizeof buffer;
  return {buffer, exact ? std::to_chars(buffer, end, value).ptr
                        : std::to_chars(buffer, end, value, std::chars_format::general, 9).ptr};
}

std::string numbers_text(std::span<const double> values, const char *separator, bool exact) {
  double largest = 1e-6; // what is smaller by ten digits comes from rounding
  for (const double value : values) largest = std::max(largest, std::fabs(value));
  const double step = std::pow(10, std::floor(std::log10(largest)) - 5);
  const bool rounded = !exact && std::isnormal(step);
  std::string result;
  for (const double value : values) {
    if (!result.empty()) result += separator;
    // A zero that is added takes the sign of another one.
    result += number_text(rounded ? std::round(value / step) * step + 0.0 : value, exact);
  }
  return result;
}

std::string rgb_text(uint32_t rgb) {
  char buffer[16];
  snprintf(buffer, sizeof buffer, "#%06x", rgb & 0xFFFFFFu);
  return buffer;
}

std::string_view shown_part(std::string_view text, bool full) {
  if (full) return text;
  size_t end = 0;
  while (end < SHOWN_TEXT && end < text.size())
    end += std::max<size_t>(utf8_length(text.substr(end)), 1);
  return text.substr(0, end);
}

std::string quoted_text(std::string_view text, bool full) {
  const std::string_view shown = shown_part(text, full);
  return quoted(shown) + (shown.size() < text.size() ? "..." : "");
}

std::string short_text(std::string_view text, bool full) {
  const std::string_view shown = shown_part(text, full);
  return escaped(shown) + (shown.size() < text.size() ? "..." : "");
}

// The items that are shown, and how many there are when some are not.
template <class Item>
static std::string list_text(int32_t count, const char *separator, bool full, Item item) {
  std::string result;
  const int32_t shown = full || count <= SHOWN_ITEMS ? count : SHOWN_ITEMS;
  for (int32_t i = 0; i < shown; ++i) {
    if (i > 0) result += separator;
    result += item(i);
  }
  if (shown < count) result += separator + ("... (" + std::to_string(count) + " in all)");
  return result;
}

std::string value_text(const Surroundings &drawing, const svg_a_node *value, bool full) {
  switch (svg_get_record_kind(value->row)) {
  case SVG_RECORD_NONE: break;
  case SVG_RECORD_KEYWORD: return svg_get_keyword_text(as<svg_an_keyword>(value)->key);
  case SVG_RECORD_NUMBER: return number_text(as<svg_an_number>(value)->value, full);
  case SVG_RECORD_UNUM: return unum_text(as<svg_an_unum>(value)->value, value->unit, full);
  case SVG_RECORD_KEY_NUMBER: {
    const auto *record = as<svg_an_key_number>(value);
    return keyword_or(record->key, number_text(record->value, full));
  }
  case SVG_RECORD_KEY_UNUM: {
    const auto *record = as<svg_an_key_unum>(value);
    return keyword_or(record->key,
                      record->key != 0 ? "" : unum_text(record->value, value->unit, full));
  }
  case SVG_RECORD_ASPECT: {
    const auto *record = as<svg_an_aspect>(value);
    return std::string(record->defer ? "defer " : "") + svg_get_keyword_text(record->align) +
           (record->meet ? "" : " slice");
  }
  case SVG_RECORD_VIEWBOX: {
    const auto *record = as<svg_an_viewbox>(value);
    return number_text(record->min_x, full) + ' ' + number_text(record->min_y, full) + ' ' +
           number_text(record->width, full) + ' ' + number_text(record->height, full);
  }
  case SVG_RECORD_CLIP: {
    const auto *record = as<svg_an_clip>(value);
    if (record->key != SVG_KW_rect) return svg_get_keyword_text(record->key);
    return "rect(" +
           list_text(4, ", ", true, [&](int32_t i) { return number_text(record->rect[i], full); }) +
           ')';
  }
  case SVG_RECORD_STRING: return quoted_text(as<svg_an_string>(value)->text, full);
  case SVG_RECORD_NAME_LIST: {
    const auto *record = as<svg_an_name_list>(value);
    return list_text(record->count, ", ", full,
                     [&](int32_t i) { return short_text(record->names[i], full); });
  }
  case SVG_RECORD_NUM_LIST: {
    const auto *record = as<svg_an_num_list>(value);
    return list_text(record->count, " ", full,
                     [&](int32_t i) { return number_text(record->values[i], full); });
  }
  case SVG_RECORD_KEY_LIST: {
    const auto *record = as<svg_an_key_list>(value);
    return list_text(record->count, " ", full,
                     [&](int32_t i) { return std::string(svg_get_keyword_text(record->keys[i])); });
  }
  case SVG_RECORD_UNUM_LIST: {
    const auto *record = as<svg_an_unum_list>(value);
    return unums_text(record->count, record->values, record->units, full);
  }
  case SVG_RECORD_KEY_UNUM_LIST: {
    const auto *record = as<svg_an_key_unum_list>(value);
    return keyword_or(record->key, unums_text(record->count, record->values, record->units, full));
  }
  case SVG_RECORD_TRAFO: return trafo_text(as<svg_an_trafo>(value), full);
  case SVG_RECORD_COLOR: return rgb_text(as<svg_an_color>(value)->rgb);
  case SVG_RECORD_PAINT: return paint_text(drawing, value, full);
  case SVG_RECORD_IRI:
    return svg_is_property(value->row) ? funciri_text(drawing, as<svg_an_iri>(value)->iri, full)
                                       : iri_text(drawing, as<svg_an_iri>(value)->iri, full);
  case SVG_RECORD_COLOR_PROFILE: {
    const auto *record = as<svg_an_color_profile>(value);
    return record->name ? quoted_text(record->name, full) : svg_get_keyword_text(record->keyword);
  }
  case SVG_RECORD_KEY_NAME_LIST: return families_text(as<svg_an_key_name_list>(value), full);
  case SVG_RECORD_PATH_DATA: return path_text(as<svg_an_path_data>(value), full);
  }
  return "";
}

static std::string unum_text(double value, int unit, bool full) {
  return number_text(value, full) + svg_get_unit_text(unit);
}

static std::string keyword_or(int key, const std::string &otherwise) {
  return key != 0 ? svg_get_keyword_text(key) : otherwise;
}

static std::string unums_text(int32_t count, const double *values, const uint8_t *units,
                              bool full) {
  return list_text(count, " ", full,
                   [&](int32_t i) { return unum_text(values[i], units[i], full); });
}

static std::string trafo_text(const svg_an_trafo *trafo, bool full) {
  static constexpr const char *functions[] = {"matrix", "rotate", "",          "scale",    "scale",
                                              "skewX",  "skewY",  "translate", "translate"};
  return std::string(functions[trafo->type]) + '(' +
         list_text(svg_get_trafo_count(trafo->type), " ", true,
                   [&](int32_t i) { return number_text(trafo->numbers[i], full); }) +
         ')';
}

static std::string paint_text(const Surroundings &drawing, const svg_a_node *value, bool full) {
  switch (value->kind) {
  case SVG_PAINT_INHERIT: return "inherit";
  case SVG_PAINT_CURRENTCOLOR: return "currentColor";
  case SVG_PAINT_RGB: return rgb_text(as<svg_an_paint_rgb>(value)->rgb);
  case SVG_PAINT_IRI: {
    const svg_iri &iri = as<svg_an_paint_iri>(value)->iri;
    return funciri_text(drawing, iri, full) +
           (iri.fallback >= 0       ? ' ' + rgb_text(static_cast<uint32_t>(iri.fallback))
            : fallback_keyword(iri) ? std::string(" ") + fallback_keyword(iri)
                                    : "");
  }
  case SVG_PAINT_COLOR: return color_text(as<svg_an_paint_color>(value)->color, full);
  default: return "none";
  }
}

static std::string color_text(const svg_color &color, bool full) {
  std::string result = rgb_text(color.rgb) + ' ' + svg_get_color_space_text(color.colortype) + '(';
  if (color.name) result += escaped(color.name);
  int32_t count = 0;
  const double *components = svg_get_components(&color, &count);
  for (int32_t i = 0; i < count; ++i)
    result += (i > 0 || color.name ? ", " : "") + number_text(components[i], full);
  return result + ')';
}

const svg_iri *value_iri(const svg_a_node *value) {
  const svg_iri *iri = nullptr;
  switch (svg_get_record_kind(value->row)) {
  case SVG_RECORD_IRI: iri = &as<svg_an_iri>(value)->iri; break;
  case SVG_RECORD_PAINT:
    if (value->kind == SVG_PAINT_IRI) iri = &as<svg_an_paint_iri>(value)->iri;
    break;
  default: break;
  }
  return iri && !is_none(*iri) ? iri : nullptr;
}

std::string iri_text(const Surroundings &drawing, const svg_iri &iri, bool full) {
  switch (iri.kind) {
  case SVG_IRI_LINK:
    if (iri.ref.target)
      return "#" + short_text(svg_find_href_id(drawing.parser(), iri.ref.target), full);
    if (const char *name = drawing.waiting_name(&iri))
      return "#" + short_text(name, full) + " (no such element)";
    return "# (no such element)";
  case SVG_IRI_DATA: return "data: " + data_text(drawing, iri);
  case SVG_IRI_NAME: return iri.ref.text ? short_text(iri.ref.text, full) : "none";
  default: return "none";
  }
}

std::string data_text(const Surroundings &drawing, const svg_iri &iri) {
  size_t size = 0;
  if (!iri.ref.text || !ort_pvf_data(drawing.core(), iri.ref.text, &size)) return "(empty)";
  return std::string(mime_text(iri.mime)) + ", " + std::to_string(size) + " bytes";
}

const char *mime_text(int mime) {
  const char *text = svg_get_mime_text(mime);
  return text ? text : "unknown type";
}

static std::string funciri_text(const Surroundings &drawing, const svg_iri &iri, bool full) {
  return is_none(iri) ? "none" : "url(" + iri_text(drawing, iri, full) + ')';
}

static bool is_none(const svg_iri &iri) {
  return iri.kind == SVG_IRI_NONE || (iri.kind == SVG_IRI_NAME && !iri.ref.text);
}

static std::string families_text(const svg_an_key_name_list *list, bool full) {
  return list_text(list->count, ", ", full, [&](int32_t i) {
    return list->keys[i] != 0 ? std::string(svg_get_keyword_text(list->keys[i]))
                              : quoted_text(list->names[i], full);
  });
}

static std::string path_text(const svg_an_path_data *path, bool full) {
  std::string result;
  int32_t shown = 0;
  size_t count = 0;
  const svg_pada *segments = svg_get_segments(path, &count);
  for (const svg_pada &segment : std::span(segments, count)) {
    result += (result.empty() ? "" : " ") + std::string(path_command(segment));
    for (int k = 0; k < segment.count && (full || shown < SHOWN_ITEMS); ++k, ++shown)
      result += ' ' + number_text(segment.points[2 * k], full) + ',' +
                number_text(segment.points[2 * k + 1], full);
    if (!full && shown >= SHOWN_ITEMS) {
      result += " ...";
      break;
    }
  }
  return result + (result.empty() ? "(" : " (") + std::to_string(path->vertices) +
         (path->vertices == 1 ? " vertex)" : " vertices)");
}
