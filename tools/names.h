// names.h: the elements that can be asked for by name, and the numbers of elements.
#ifndef TOOLS_NAMES_H
#define TOOLS_NAMES_H

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "tools/drawing.h"

// Numbers, from 1 in document order, of the elements that bear an id or are fonts, and of others.
class NodeNumbers {
public:
  explicit NodeNumbers(const Drawing &drawing, const std::vector<const svg_e_node *> &others = {});
  int64_t of(const svg_e_node *element) const { return numbers_.at(element); }

private:
  std::unordered_map<const svg_e_node *, int64_t> numbers_;
};

struct NamedElement {
  const char *name;
  svg_e_node *element;
};

// Ids and names in document order.
std::vector<NamedElement> named_elements(const Drawing &drawing, const NodeNumbers &numbers);

// An id or name of an element, or null.
const char *id_of(const Drawing &drawing, const svg_e_node *element);

// Whether it is a path or basic shape (SVG 1.1, chapters 8 and 9).
bool is_shape(const svg_e_node *element);

// "rect #button", for a person; a long id is shortened unless full.
std::string element_text(const Drawing &drawing, const svg_e_node *element, bool full);

#endif
