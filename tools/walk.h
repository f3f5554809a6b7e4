// walk.h: walks a subtree in document order, without recursion: elements may nest a million deep.
#ifndef TOOLS_WALK_H
#define TOOLS_WALK_H

#include <vector>

#include "svg/svg.h"

// Calls on_element(element, depth) before an element's children, on_leave(element) after them, and
// on_text(text, depth) for each text. The top has depth 0.
template <class OnElement, class OnText, class OnLeave>
void walk(const svg_e_node *top, OnElement on_element, OnText on_text, OnLeave on_leave) {
  struct Open {
    const svg_e_node *element;
    svg_node *next_child;
  };
  std::vector<Open> open;
  const auto enter = [&](const svg_e_node *element) {
    on_element(element, static_cast<int>(open.size()));
    open.push_back({element, element->first_child});
  };
  for (enter(top); !open.empty();) {
    svg_node *node = open.back().next_child;
    if (!node) {
      on_leave(open.back().element);
      open.pop_back();
      continue;
    }
    open.back().next_child = node->next;
    if (const svg_e_node *element = svg_as_element(node))
      enter(element);
    else
      on_text(svg_as_text(node), static_cast<int>(open.size()));
  }
}

template <class OnElement> void each_element(const svg_e_node *top, OnElement on_element) {
  walk(
      top, [&](const svg_e_node *element, int) { on_element(element); },
      [](const svg_t_node *, int) {}, [](const svg_e_node *) {});
}

#endif
