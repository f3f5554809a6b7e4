// svg_namespace.cpp: namespace declarations in scope, and the splitting of Expat's names.
//
// Expat reports a name as namespace, "*" and local name. Names without a namespace count as SVG.
// Raises ORT_E_LIMIT for declarations (svg_growth.cpp), else only for lack of memory.
#include <cstring>

#include "svg/names/svg_index.h"
#include "svg/xml/svg_xml.h"

static int32_t get_nsp_type(const char *uri, size_t length);

constexpr ort_keyword svg_nsp_keylist[] = {{"http://www.w3.org/2000/svg", SVG_NS_SVG},
                                           {"http://www.w3.org/1999/xlink", SVG_NS_XLINK},
                                           {"http://www.w3.org/XML/1998/namespace", SVG_NS_XML},
                                           {nullptr, 0}};

static void svg_nsp_reclaim(void *item) {
  *static_cast<svg_nsp_entry *>(item) = {nullptr, nullptr, SVG_NS_OTHER, 0};
}

static void svg_nsp_release(ort_core *core, void *item) {
  const auto *entry = static_cast<svg_nsp_entry *>(item);
  ort_free(core, entry->uri);
  ort_free(core, entry->prefix);
}

const ort_item_desc nsp_ced = {sizeof(svg_nsp_entry), svg_nsp_reclaim, svg_nsp_release};

int32_t svg_get_nsp_type(const char *uri) { return get_nsp_type(uri, strlen(uri)); }

static int32_t get_nsp_type(const char *uri, size_t length) {
  for (const ort_keyword *known = svg_nsp_keylist; known->text != nullptr; known++)
    if (strncmp(known->text, uri, length) == 0 && known->text[length] == '\0') return known->code;
  return SVG_NS_OTHER;
}

void svg_push_nsp_entry(svg_parser *p, const char *uri, const char *prefix) {
  if (uri == nullptr || p->nsp_stack == nullptr) return;
  auto *entry = static_cast<svg_nsp_entry *>(ort_vtr_push(p->nsp_stack));
  entry->type = svg_get_nsp_type(uri);
  entry->uri = ort_strdup(p->core, uri);
  entry->prefix = ort_strdup(p->core, prefix != nullptr ? prefix : "");
  svg_index_entry *innermost = svg_index_add(p, &p->nsp_index, entry->uri);
  entry->outer = static_cast<int32_t>(innermost->number);
  innermost->name = entry->uri;
  innermost->number = ort_vtr_count(p->nsp_stack);
}

void svg_pop_nsp_entry(svg_parser *p) {
  if (ort_vtr_count(p->nsp_stack) == 0) return;
  const auto &entry = ort_top<svg_nsp_entry>(p->nsp_stack);
  svg_index_entry *innermost = svg_index_find(p, p->nsp_index, entry.uri);
  if (entry.outer == 0) {
    svg_index_remove(p, p->nsp_index, innermost);
  } else {
    innermost->number = static_cast<size_t>(entry.outer);
    innermost->name = ort_item<svg_nsp_entry>(p->nsp_stack, innermost->number - 1).uri;
  }
  ort_vtr_pop(p->nsp_stack);
}

void svg_cb_namespace_start(void *parser, const XML_Char *prefix, const XML_Char *uri) {
  auto *p = static_cast<svg_parser *>(parser);
  svg_in_callback(p, [&] {
    svg_check_namespace(p, prefix, uri);
    svg_note(p, 3, "\t\t[push namespace \"%a\" (uri=\"%a\")]\n", prefix, uri);
    // xmlns="" has no name; its entry keeps each pop paired with its push.
    svg_push_nsp_entry(p, uri != nullptr ? uri : "", prefix);
    if (p->savelem == SVG_NO_ELEMENT || p->xmlns_text == nullptr) return;
    ort_bs_append_text(p->xmlns_text, " xmlns");
    if (prefix != nullptr && *prefix != '\0') {
      ort_bs_append_text(p->xmlns_text, ":");
      ort_bs_append_text(p->xmlns_text, prefix);
    }
    ort_bs_append_text(p->xmlns_text, "=\"");
    ort_bs_append_text(p->xmlns_text, uri != nullptr ? uri : "");
    ort_bs_append_text(p->xmlns_text, "\"");
  });
}

void svg_cb_namespace_end(void *parser, const XML_Char *prefix) {
  auto *p = static_cast<svg_parser *>(parser);
  svg_in_callback(p, [&] {
    svg_note(p, 3, "\t\t[pop namespace \"%a\"]\n", prefix);
    svg_pop_nsp_entry(p);
  });
}

int32_t svg_decomp_fullname(svg_parser *p, const char *fullname, const char **prefix_out,
                            const char **local_out) {
  if (prefix_out != nullptr) *prefix_out = "";
  const char *star = strrchr(fullname, '*');
  if (star == nullptr) {
    *local_out = fullname;
    return SVG_NS_SVG;
  }
  *local_out = star + 1;
  const auto length = static_cast<size_t>(star - fullname);
  if (prefix_out != nullptr)
    if (const svg_index_entry *entry = svg_index_find(p, p->nsp_index, {fullname, length}))
      *prefix_out = ort_item<svg_nsp_entry>(p->nsp_stack, entry->number - 1).prefix;
  return get_nsp_type(fullname, length);
}

const char *svg_get_internal_name(int32_t type, const char *local) {
  struct internal_name {
    int32_t type;
    const char *local;
    const char *internal;
  };
  static constexpr internal_name names[] = {
      {SVG_NS_SVG, "xml:id", "id"},           {SVG_NS_XLINK, "href", "xlink:href"},
      {SVG_NS_XLINK, "title", "xlink:title"}, {SVG_NS_XML, "base", "xml:base"},
      {SVG_NS_XML, "space", "xml:space"},
  };
  for (const internal_name &name : names)
    if (name.type == type && *name.local == *local && strcmp(name.local, local) == 0)
      return name.internal;
  return local;
}
