// whole.h: everything that a read drawing says, as one text: to compare two reads of one drawing,
// and to touch all that the reader hands out.
#ifndef TESTS_SUPPORT_WHOLE_H
#define TESTS_SUPPORT_WHOLE_H

#include <string>

#include "tests/support/reader.h"

// Code and messages; of a drawing that was read also the tree with its values, the ids, links and
// fonts, the embedded files and what the queries answer. Nothing in it depends on addresses.
std::string whole_text(const Document &document);

#endif
