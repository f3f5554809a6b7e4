#include "tests/support/reader.h"

#include <charconv>
#include <gtest/gtest.h>
#include <span>

#include "svg/values/svg_types.h"
#include "tests/support/cases.h"

// ---- Reading ------------------------------------------------------------------------------------

static int parse(AccountingCore &core, const std::string &text,
                 const std::function<void(svg_parser *)> &configure, svg_parser **parser,
                 svg_e_node **svg) {
  const std::vector<char> exact(text.begin(), text.end());
  const char *bytes = exact.data();
  const size_t length = exact.size();
  ort_file *file = nullptr;
  ort_gz *gz = nullptr;
  const int code = core.protect([&] {
    svg_register_errtab(core);
    file = ort_fopen_memory(core, "test.svg", bytes, length);
    *parser = svg_parser_new(core, 0, "test.svg", nullptr, nullptr, nullptr, 0, nullptr, 0, nullptr,
                             nullptr);
    if (configure) configure(*parser);
    if (ort_is_gzip(file)) gz = ort_gzopen(file);
    *svg = svg_parse(*parser, file, &gz, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  });
  ort_gzclose(gz);
  ort_fclose(file);
  return code;
}

Document::Document(const std::string &text, const CoreOptions &options,
                   const std::function<void(svg_parser *)> &configure)
    : core(options) {
  code = parse(core, text, configure, &parser, &svg);
}

Document::~Document() { svg_parser_delete(parser); }

bool read_once(AccountingCore &core, const std::string &text) {
  svg_parser *parser = nullptr;
  svg_e_node *svg = nullptr;
  const int code = parse(core, text, nullptr, &parser, &svg);
  svg_parser_delete(parser);
  return code == 0;
}

std::string Document::messages() const {
  std::string result;
  for (const Message &message : core.messages) result += message.text + '\n';
  return result;
}

svg_e_node *Document::find(const char *name) const {
  svg_e_node *element = svg_find_name(parser, name);
  EXPECT_NE(element, nullptr) << "no element " << name;
  return element;
}

std::string Document::values(const svg_e_node *element, const char *name) const {
  std::string result;
  const svg_a_node *last = nullptr;
  for (int32_t i = 0; i < element->values_num; ++i) {
    const svg_a_node *value = element->values[i];
    if (std::string(svg_attr_table[value->row].name) != name) continue;
    result += (result.empty() ? "" : "; ") + value_text(parser, value);
    last = value;
  }
  EXPECT_EQ(svg_find_value(element, name), last) << name;
  return result.empty() ? "-" : result;
}

std::string value_of(const char *element, const char *attribute, const std::string &text,
                     const std::function<void(svg_parser *)> &configure) {
  std::string escaped;
  for (const char c : text) escaped += c == '"' ? "&quot;" : c == '<' ? "&lt;" : std::string(1, c);
  const Document document("<svg xmlns='http://www.w3.org/2000/svg' "
                          "xmlns:xlink='http://www.w3.org/1999/xlink'><" +
                              std::string(element) + " " + attribute + "=\"" + escaped +
                              "\"/></svg>",
                          AccountingCore::defaults(), configure);
  std::string result = document.messages();
  if (result.empty()) return document.values(svg_as_element(document.svg->first_child), attribute);
  result.resize(result.rfind(", in file"));
  const std::string bad = std::string(" '") + attribute + "': unexpected token '";
  if (const size_t at = result.find(bad); at != result.npos && at < 10)
    return "! " + result.substr(at + bad.size(), result.size() - at - bad.size() - 1);
  return result.ends_with(attribute + std::string("': incomplete value")) ? "!" : result;
}

void expect_values(const char *table) {
  std::istringstream lines(table);
  for (std::string element, attribute, cases; lines >> element >> attribute;) {
    SCOPED_TRACE(element + ' ' + attribute);
    attribute.pop_back();
    std::getline(lines, cases);
    expect_cases(cases, [&](const std::string &text) {
      return value_of(element.c_str(), attribute.c_str(), text);
    });
  }
}

// ---- Values -------------------------------------------------------------------------------------

template <class Record> static const Record *as(const svg_a_node *value) {
  return reinterpret_cast<const Record *>(value);
}

static std::string number(double value) {
  char buffer[32];
  return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

static std::string keyword(int32_t key, const std::string &otherwise = "bad keyword") {
  const char *text = key != 0 ? svg_get_keyword_text(key) : nullptr;
  return text ? text : otherwise;
}

static std::string rgb(uint32_t rgb) {
  char buffer[16];
  snprintf(buffer, sizeof buffer, "#%06x", rgb);
  return buffer;
}

template <class Item> static std::string list(int32_t count, Item item) {
  std::string result;
  for (int32_t i = 0; i < count; ++i) result += (i > 0 ? " " : "") + item(i);
  return result.empty() ? "()" : result;
}

template <class Record> static std::string unums(const Record *record) {
  return list(record->count, [=](int32_t i) {
    return number(record->values[i]) + svg_get_unit_text(record->units[i]);
  });
}

static std::string unum(double value, uint8_t unit) {
  const svg_an_unum_list one = {{}, 0, 1, &value, &unit};
  return unums(&one);
}

static std::string iri_text(const svg_parser *parser, const svg_iri &iri) {
  const std::string fallback = iri.fallback >= 0 ? " " + rgb(uint32_t(iri.fallback))
                               : iri.fallback == SVG_FALLBACK_NONE         ? " none"
                               : iri.fallback == SVG_FALLBACK_CURRENTCOLOR ? " currentColor"
                                                                           : "";
  if (iri.kind == SVG_IRI_NONE) return "none";
  if (iri.kind == SVG_IRI_LINK)
    return "#" + std::string(iri.ref.target ? svg_find_href_id(parser, iri.ref.target) : "?") +
           fallback;
  const std::string text = iri.ref.text ? iri.ref.text : "";
  return iri.kind == SVG_IRI_NAME ? "'" + text + "'" + fallback
                                  : "data " + number(iri.mime) + " '" + text + "'" + fallback;
}

static std::string color_text(const svg_color &color) {
  std::string result = rgb(color.rgb) + " type " + number(color.colortype);
  if (color.name) result += std::string(" '") + color.name + "'";
  if (!color.comps) return result;
  int32_t count = 0;
  const double *comps = svg_get_components(&color, &count);
  return result + " " + list(count, [=](int i) { return number(comps[i]); });
}

static std::string path_text(const svg_an_path_data *path) {
  std::string result = number(path->vertices);
  size_t count = 0;
  const svg_pada *segments = svg_get_segments(path, &count);
  for (const svg_pada &segment : std::span(segments, count)) {
    result += std::string(" ") + "?MLCZ"[segment.type];
    for (int k = 0; k < 2 * segment.count; ++k) result += " " + number(segment.points[k]);
  }
  return result;
}

std::string value_text(const svg_parser *parser, const svg_a_node *value) {
  switch (svg_get_record_kind(value->row)) {
  case SVG_RECORD_NONE: break;
  case SVG_RECORD_KEYWORD: return keyword(as<svg_an_keyword>(value)->key);
  case SVG_RECORD_NUMBER: return number(as<svg_an_number>(value)->value);
  case SVG_RECORD_UNUM: return unum(as<svg_an_unum>(value)->value, value->unit);
  case SVG_RECORD_KEY_NUMBER: {
    const auto *record = as<svg_an_key_number>(value);
    return keyword(record->key, number(record->value));
  }
  case SVG_RECORD_KEY_UNUM: {
    const auto *record = as<svg_an_key_unum>(value);
    return keyword(record->key, unum(record->value, value->unit));
  }
  case SVG_RECORD_ASPECT: {
    const auto *record = as<svg_an_aspect>(value);
    return number(record->defer) + ' ' + number(record->meet) + ' ' + keyword(record->align);
  }
  case SVG_RECORD_VIEWBOX:
    return list(4, [&](int i) { return number((&as<svg_an_viewbox>(value)->min_x)[i]); });
  case SVG_RECORD_CLIP: {
    const auto *record = as<svg_an_clip>(value);
    return keyword(record->key) + ' ' + list(4, [=](int i) { return number(record->rect[i]); });
  }
  case SVG_RECORD_STRING: return std::string("'") + as<svg_an_string>(value)->text + "'";
  case SVG_RECORD_NAME_LIST: {
    const auto *record = as<svg_an_name_list>(value);
    return list(record->count, [=](int i) { return std::string("'") + record->names[i] + "'"; });
  }
  case SVG_RECORD_NUM_LIST: {
    const auto *record = as<svg_an_num_list>(value);
    return list(record->count, [=](int i) { return number(record->values[i]); });
  }
  case SVG_RECORD_KEY_LIST: {
    const auto *record = as<svg_an_key_list>(value);
    return list(record->count, [=](int i) { return keyword(record->keys[i]); });
  }
  case SVG_RECORD_UNUM_LIST: return unums(as<svg_an_unum_list>(value));
  case SVG_RECORD_KEY_UNUM_LIST: {
    const auto *record = as<svg_an_key_unum_list>(value);
    return keyword(record->key, unums(record));
  }
  case SVG_RECORD_TRAFO: {
    const auto *record = as<svg_an_trafo>(value);
    return number(record->type) + ": " + list(svg_get_trafo_count(record->type), [=](int i) {
             return number(record->numbers[i]);
           });
  }
  case SVG_RECORD_COLOR: return rgb(as<svg_an_color>(value)->rgb);
  case SVG_RECORD_PAINT:
    switch (value->kind) {
    case SVG_PAINT_NONE: return "none";
    case SVG_PAINT_INHERIT: return "inherit";
    case SVG_PAINT_CURRENTCOLOR: return "currentColor";
    case SVG_PAINT_RGB: return rgb(as<svg_an_paint_rgb>(value)->rgb);
    case SVG_PAINT_IRI: return iri_text(parser, as<svg_an_paint_iri>(value)->iri);
    default: return color_text(as<svg_an_paint_color>(value)->color);
    }
  case SVG_RECORD_IRI: return iri_text(parser, as<svg_an_iri>(value)->iri);
  case SVG_RECORD_COLOR_PROFILE: {
    const auto *record = as<svg_an_color_profile>(value);
    return keyword(record->keyword) + (record->name ? " '" + std::string(record->name) + "'" : "");
  }
  case SVG_RECORD_KEY_NAME_LIST: {
    const auto *record = as<svg_an_key_name_list>(value);
    return list(record->count, [=](int i) {
      return record->keys[i] != 0 ? keyword(record->keys[i])
                                  : std::string("'") + record->names[i] + "'";
    });
  }
  case SVG_RECORD_PATH_DATA: return path_text(as<svg_an_path_data>(value));
  }
  return "?";
}
