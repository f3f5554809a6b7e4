// selection.h: the elements that --query and --explain ask for.
//
// The command line is taken apart before any drawing is read; selectors are answered while one is
// read (drawing.cpp), ids afterwards.
#ifndef TOOLS_SELECTION_H
#define TOOLS_SELECTION_H

#include <string>

#include "tools/drawing.h"

struct Selection {
  std::string text;  // as it is written
  bool many = false; // a selector, which any number of elements may match, and not just an id
  size_t number = 0; // of that selector in the settings
};

// Tells an id ("#button", "button") from a selector ("g.cold > rect"), which is added to the
// settings. Returns what is wrong with it, "" for nothing.
std::string take_selection(Selection &selection, ReadSettings &settings);

// The elements in document order; none after a message.
Elements find_elements(const Drawing &drawing, const Selection &selection);

// Those of these elements, in document order, that lie in no other of them.
Elements outermost_of(const Drawing &drawing, const Elements &elements);

#endif
