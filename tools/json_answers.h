// json_answers.h: the answers to questions about a drawing as one JSON object (docs/json.md).
#ifndef TOOLS_JSON_ANSWERS_H
#define TOOLS_JSON_ANSWERS_H

#include <cstdio>
#include <string>

#include "tools/drawing.h"
#include "tools/json_document.h"

// What is asked.
struct Asked {
  bool fonts = false;
  bool ids = false;
  bool links = false;
  bool stats = false;
  bool explain = false;
  const svg_e_node *element = nullptr; // to explain; null: there is none
  std::string property;                // of it; "": all
};

// Writes "file", "warnings" and "error", and a field for each question, null when the drawing was
// not readable.
void print_json_answers(FILE *out, const Drawing &drawing, const Asked &asked,
                        const JsonOptions &options);

#endif
