// reader.h: drawings read for a test, and their values as text.
#ifndef TESTS_SUPPORT_READER_H
#define TESTS_SUPPORT_READER_H

#include <functional>
#include <initializer_list>
#include <string>

#include "svg/svg.h"
#include "tests/support/accounting_core.h"

// A drawing, plain or gzip, read from a block of its size under its own accounting core, until the
// object goes. configure is given the new parser.
class Document {
public:
  explicit Document(const std::string &text,
                    const CoreOptions &options = AccountingCore::defaults(),
                    const std::function<void(svg_parser *)> &configure = nullptr);
  ~Document();
  Document(const Document &) = delete;
  Document &operator=(const Document &) = delete;

  // Texts of all messages, a line each.
  std::string messages() const;

  // The element with an id or name; the test fails when there is none.
  svg_e_node *find(const char *name) const;

  // The values of an element under one attribute or property name, in their order, as value_text
  // writes them with "; " between; "-" when there are none.
  std::string values(const svg_e_node *element, const char *name) const;

  AccountingCore core;
  svg_parser *parser = nullptr;
  svg_e_node *svg = nullptr; // the outermost element; null when the parse failed
  int code = 0;              // of the error that ended the parse
};

// One pass over a drawing, for allocation_sweep: made, parsed, given to then, deleted. True when
// nothing was raised, by then neither.
using UseDrawing = std::function<int(svg_parser *parser, svg_e_node *svg)>; // the code of its error
bool read_once(AccountingCore &core, const std::string &text, const UseDrawing &then = nullptr);

// A value as svgtree writes it with --full.
std::string value_text(const svg_parser *parser, const svg_a_node *value);

// Reads ELEMENT with ATTRIBUTE="text" inside of an svg element: the values of the attribute, or
// when there are messages, these: "! token" for an unexpected token, "!" for an incomplete value,
// other ones as they are, without the position after the last comma.
std::string value_of(const char *element, const char *attribute, const std::string &text,
                     const std::function<void(svg_parser *)> &configure = nullptr);

// Lines "ELEMENT ATTRIBUTE: CASES", with the cases of expect_cases, by value_of.
void expect_values(const char *table);

#endif
