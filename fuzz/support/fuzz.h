// fuzz.h: what the fuzz targets share: their names, their settings, and what must hold after every
// read.
//
// A target is an ordinary function that fails an expectation when something is wrong. main.cpp
// makes a libFuzzer program of each; the tests call the same functions with old findings.
#ifndef FUZZ_SUPPORT_FUZZ_H
#define FUZZ_SUPPORT_FUZZ_H

#include <string>

#include "css/css_context.h"
#include "tests/support/reader.h"

void fuzz_reader(const std::string &input);   // a drawing, plain or gzip, under any settings
void fuzz_path(const std::string &input);     // path data
void fuzz_values(const std::string &input);   // an attribute's or property's text, by name
void fuzz_sheets(const std::string &input);   // a style sheet, as a file and as an element
void fuzz_style(const std::string &input);    // a style attribute
void fuzz_scene(const std::string &input);    // a drawing, painted and measured
void fuzz_data_iri(const std::string &input); // what follows "data:" in an IRI

// Settings and text of an input: "#", one byte each, and the text; or only the text, with all
// settings 0.
struct FuzzInput {
  explicit FuzzInput(const std::string &input);

  enum Setting { LOG_LEVEL, HOST, BLOCK, LIMITS, BUDGET, FAIL_AT, FAIL_ON, FORM, SETTINGS };
  unsigned settings[SETTINGS] = {};
  std::string text;
};

// A drawing read with settings, and checked: only documented errors, whole messages, no block left.
void fuzz_read(const std::string &drawing, const FuzzInput &settings,
               const std::string &sheet = "");

// What must hold after a read. Returns whole_text. injected: memory was made short on purpose.
std::string fuzz_check(Document &document, bool injected);

// Text for an attribute of a drawing in ISO 8859-1: control bytes that XML forbids become blanks.
std::string fuzz_escape(const std::string &text);
bool fuzz_is_control(char c); // such a byte

#endif
