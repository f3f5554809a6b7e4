// svg_growth.cpp: bounds for what a few bytes of a document can make Expat do again and again.
//
// An entity that names another makes Expat recurse, default attributes and default declarations of
// namespaces come again with each start tag, and the name of a namespace with each attribute that
// has its prefix. svg_xml.cpp and the start tags of both passes call this. Raises ORT_E_LIMIT.
#include "svg/xml/svg_growth.h"

#include <cstring>
#include <string_view>

#include "svg/xml/svg_expat.h"

static void count_growth(svg_parser *p, uint64_t bytes);
static void raise_limit(svg_host *p, const char *what, int limit);

static void cb_entity(void *parser, const XML_Char *, int is_parameter, const XML_Char *value,
                      int length, const XML_Char *, const XML_Char *, const XML_Char *,
                      const XML_Char *) {
  auto *p = static_cast<svg_parser *>(parser);
  if (is_parameter || !value) return; // neither is ever expanded
  const std::string_view text(value, static_cast<size_t>(length));
  if (text.find('&') == text.npos) return;
  svg_in_callback(p, [&] {
    if (++p->nested_entities > ORT_LIMIT_NESTED_ENTITIES)
      raise_limit(p, "entities with references", ORT_LIMIT_NESTED_ENTITIES);
  });
}

static void cb_attribute(void *parser, const XML_Char *, const XML_Char *, const XML_Char *,
                         const XML_Char *, int) {
  auto *p = static_cast<svg_parser *>(parser);
  svg_in_callback(p, [&] {
    if (++p->declared_attributes > ORT_LIMIT_ATTRIBUTE_DECLARATIONS)
      raise_limit(p, "attribute declarations", ORT_LIMIT_ATTRIBUTE_DECLARATIONS);
  });
}

void svg_bound_growth(svg_parser *p) {
  static_cast<svg_growth &>(*p) = {};
  XML_SetEntityDeclHandler(p->xml, cb_entity);
  XML_SetAttlistDeclHandler(p->xml, cb_attribute);
}

void svg_check_namespace(svg_parser *p, const char *prefix, const char *uri) {
  uint64_t bytes = strlen(" xmlns:=''");
  for (const char *name : {prefix, uri}) {
    const size_t length = name ? strlen(name) : 0;
    if (length > ORT_LIMIT_NAMESPACE_NAME)
      raise_limit(p, "bytes in the name of a namespace", ORT_LIMIT_NAMESPACE_NAME);
    bytes += length;
  }
  // A declaration that came by default looks like one that was written.
  if (p->declared_attributes > 0) count_growth(p, bytes);
}

// Declarations without a default cost Expat a step each.
void svg_count_defaults(svg_parser *p, const XML_Char **attrs) {
  constexpr uint64_t steps_per_byte = 16;
  uint64_t bytes = static_cast<uint64_t>(p->declared_attributes) / steps_per_byte;
  for (attrs += XML_GetSpecifiedAttributeCount(p->xml); *attrs; ++attrs) bytes += strlen(*attrs);
  count_growth(p, bytes);
}

void svg_enter_element(svg_parser *p) {
  if (static_cast<uint32_t>(p->level) >= p->limits.depth)
    ort_error(p->core, ORT_E_LIMIT, "nested elements",
              ort_errprintf(p->core, "%d", static_cast<int>(p->limits.depth)));
  ++p->level;
}

static void count_growth(svg_parser *p, uint64_t bytes) {
  p->defaulted += bytes;
  const auto read = static_cast<double>(XML_GetCurrentByteIndex(p->xml));
  if (p->defaulted > p->limits.entity_start &&
      static_cast<double>(p->defaulted) > read * static_cast<double>(p->limits.entity_factor))
    ort_error(p->core, ORT_E_LIMIT, "times the input in default attributes",
              ort_errprintf(p->core, "%g", static_cast<double>(p->limits.entity_factor)));
}

static void raise_limit(svg_host *p, const char *what, int limit) {
  ort_error(p->core, ORT_E_LIMIT, what, ort_errprintf(p->core, "%d", limit));
}
