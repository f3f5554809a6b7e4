// svg_namespace.cpp: namespace declarations in scope, and the splitting of Expat's names.
//
// Expat reports a name as namespace, "*" and local name. Names without a namespace count as SVG.
// The main pass pushes and pops the declarations that Expat reports; both passes split names.
// Raises for lack of memory.
#include "svg/names/svg_namespace.h"

#include <cstring>

static int32_t get_nsp_type(const char *uri, size_t length);

constexpr ort_keyword svg_nsp_keylist[] = {{"http://www.w3.org/2000/svg", SVG_NS_SVG},
                                           {"http://www.w3.org/1999/xlink", SVG_NS_XLINK},
                                           {"http://www.w3.org/XML/1998/namespace", SVG_NS_XML},
                                           {nullptr, 0}};

int32_t svg_get_nsp_type(const char *uri) { return get_nsp_type(uri, strlen(uri)); }

static int32_t get_nsp_type(const char *uri, size_t length) {
  for (const ort_keyword *known = svg_nsp_keylist; known->text; ++known)
    if (strncmp(known->text, uri, length) == 0 && known->text[length] == '\0') return known->code;
  return SVG_NS_OTHER;
}

void svg_push_nsp_entry(svg_parser *p, const char *uri, const char *prefix) {
  auto *entry = static_cast<svg_nsp_entry *>(ort_vtr_push(p->nsp_stack));
  entry->type = svg_get_nsp_type(uri);
  entry->uri = ort_strdup(p->core, uri);
  entry->prefix = ort_strdup(p->core, prefix ? prefix : "");
  ort_name_entry *innermost = ort_index_add(p->core, &p->nsp_index, entry->uri);
  entry->outer = static_cast<int32_t>(innermost->number);
  innermost->name = entry->uri;
  innermost->number = static_cast<uint32_t>(ort_vtr_count(p->nsp_stack));
}

void svg_pop_nsp_entry(svg_parser *p) {
  const auto &entry = ort_top<svg_nsp_entry>(p->nsp_stack);
  ort_name_entry *innermost = ort_index_find(p->core, &p->nsp_index, entry.uri);
  if (entry.outer == 0) {
    ort_index_remove(p->core, &p->nsp_index, innermost);
  } else {
    innermost->number = static_cast<uint32_t>(entry.outer);
    innermost->name = ort_item<svg_nsp_entry>(p->nsp_stack, innermost->number - 1).uri;
  }
  ort_vtr_pop(p->nsp_stack);
}

int32_t svg_decomp_fullname(svg_parser *p, const char *fullname, const char **prefix_out,
                            const char **local_out) {
  if (prefix_out) *prefix_out = "";
  const char *star = strrchr(fullname, '*');
  if (!star) {
    *local_out = fullname;
    return SVG_NS_SVG;
  }
  *local_out = star + 1;
  const auto length = static_cast<size_t>(star - fullname);
  if (prefix_out)
    if (const ort_name_entry *entry = ort_index_find(p->core, &p->nsp_index, {fullname, length}))
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
