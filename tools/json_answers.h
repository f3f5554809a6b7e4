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
  bool info = false;
  bool explain = false;
  const svg_e_node *element = nullptr; // to explain; null: there is none
  std::string property;                // of it; "": all
  bool shapes = false;
  const svg_e_node *shown = nullptr; // whose shapes; null: there is none
  bool boxes = false;
  const svg_e_node *measured = nullptr; // whose boxes; null: there is none
};

// Writes "file", a field for each question, null when the drawing was not readable, "warnings" and
// "error". Returns false when an answer failed.
bool print_json_answers(FILE *out, const Drawing &drawing, const Asked &asked,
                        const JsonOptions &options);

#endif
