#include "tests/support/whole.h"

#include <algorithm>
#include <vector>

static std::string tree(const Document &document);
static std::string element_line(const svg_parser *parser, const svg_e_node *element);
static std::string fonts(const svg_parser *parser, const AccountingCore &core);
static std::string links(const svg_parser *parser);
static std::string files(const ort_core *core);
static std::string text_or_none(const char *text) { return text ? text : "(none)"; }

std::string whole_text(const Document &document) {
  std::string result = "code " + std::to_string(document.code) + '\n' + document.messages();
  if (!document.svg) return result;
  const svg_parser *parser = document.parser;
  result += tree(document) + links(parser) + fonts(parser, document.core) + files(document.core);
  for (const char *text :
       {svg_get_title_text(parser), svg_get_desc_text(parser), svg_get_metadata(parser)})
    result += text_or_none(text) + '\n';
  return result;
}

// Not recursive: a drawing may be a million elements deep.
static std::string tree(const Document &document) {
  std::string result;
  std::vector<const svg_node *> rest = {&document.svg->head};
  while (!rest.empty()) {
    svg_node *node = const_cast<svg_node *>(rest.back());
    rest.back() = node->next;
    if (!rest.back()) rest.pop_back();
    if (const svg_t_node *text = svg_as_text(node)) {
      result += std::string("'") + text->text + "' " + std::to_string(node->flags) + '\n';
      continue;
    }
    const svg_e_node *element = svg_as_element(node);
    result += element_line(document.parser, element);
    if (element->head.flags & SVG_EF_SYSLANG)
      result += svg_check_system_language(document.parser, element) ? " accepted" : " not accepted";
    result += '\n';
    if (element->first_child) rest.push_back(element->first_child);
  }
  return result;
}

static std::string element_line(const svg_parser *parser, const svg_e_node *element) {
  std::string result =
      std::to_string(element->level) + ' ' + svg_get_elem_table()[element->head.id].name + '#' +
      svg_find_href_id(parser, element) + ' ' + std::to_string(element->head.flags);
  if (element->prev) result += " after " + std::to_string(element->prev->head.id);
  for (int32_t i = 0; i < element->values_num; ++i) {
    const svg_a_node *value = element->values[i];
    result +=
        std::string(" ") + svg_get_attr_table()[value->row].name + "=" + value_text(parser, value);
  }
  return result;
}

static std::string links(const svg_parser *parser) {
  std::string result;
  std::vector<std::string> names;
  const char *name;
  for (size_t i = 0; (name = svg_get_href(parser, i, nullptr)); ++i) names.emplace_back(name);
  std::sort(names.begin(), names.end()); // their order is that of addresses
  for (const std::string &id : names)
    result += "id " + id + ": " +
              svg_get_elem_table()[svg_find_name(parser, id.c_str())->head.id].name + '\n';
  for (size_t i = 0; i < svg_get_unresolved_count(parser); ++i) {
    const svg_iri *iri = nullptr;
    svg_e_node *source = nullptr;
    const char *missing = svg_get_unresolved(parser, i, &iri, &source);
    if (!missing) continue;
    result += std::string("missing ") + missing + ' ' + std::to_string(iri->kind) + ' ' +
              std::to_string(source ? source->head.id : -1) + '\n';
  }
  return result;
}

static std::string fonts(const svg_parser *parser, const AccountingCore &core) {
  std::string result;
  ort_bs *name = ort_bs_new(core);
  for (size_t i = 0; i < svg_get_font_count(parser); ++i) {
    const svg_font *font = svg_get_font_at(parser, i);
    ort_bs_clear(name);
    svg_create_fontname(const_cast<svg_parser *>(parser), font, name);
    result += "font " + text_or_none(font->id) + ' ' + std::to_string(font->node->head.id) + ' ' +
              ort_bs_text(name);
    if (font->family) {
      const svg_e_node *found =
          svg_get_font(parser, font->family->names[0], font->family->keys[0], 12.0, SVG_KW_normal,
                       SVG_KW_normal, SVG_KW_normal, SVG_KW_400);
      result += !found ? " not found" : found == font->node ? " found" : " hidden";
    }
    result += '\n';
  }
  ort_bs_delete(name);
  return result;
}

static std::string files(const ort_core *core) {
  std::string result;
  for (size_t i = 0; i < ort_pvf_count(core); ++i) {
    size_t size = 0;
    const unsigned char *bytes = ort_pvf_data(core, ort_pvf_name(core, i), &size);
    uint32_t sum = 0;
    for (size_t k = 0; k < size; ++k) sum = sum * 31 + bytes[k];
    result += "file " + std::to_string(size) + ' ' + std::to_string(sum) + '\n';
  }
  return result;
}
