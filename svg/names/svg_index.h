// svg_index.h: a table from names to numbers and elements, in constant time whatever the names.
//
// Used by svg_links.cpp for ids and waiting links and by svg_namespace.cpp for namespace names. The
// names are not copied: each must last as long as its entry.
#ifndef SVG_INDEX_H
#define SVG_INDEX_H

#include <string_view>

#include "svg/parser/svg_parser.h"

struct svg_index_entry {
  const char *name;
  size_t number;
  svg_e_node *element;
};

// The entry of a name, or null. Entries move when one is added or removed. index may be null.
svg_index_entry *svg_index_find(const svg_parser *p, const svg_name_index *index,
                                std::string_view name);

// The entry of a name, terminated, a new one with number 0 and no element if there was none; *index
// is made on first use. Raises for lack of memory, before anything has changed.
svg_index_entry *svg_index_add(svg_parser *p, svg_name_index **index, const char *name);

void svg_index_remove(const svg_parser *p, svg_name_index *index, svg_index_entry *entry);
void svg_index_delete(ort_core *core,
                      svg_name_index **index); // *index may be null; it becomes null

#endif
