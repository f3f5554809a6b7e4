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
  bool explain_many = false; // those that match a selector, in an array
  Elements explained;
  std::string property; // of them; "": all
  bool shapes = false;
  Elements shown; // whose shapes
  bool boxes = false;
  bool measure_many = false; // as above
  Elements measured;         // whose boxes
};

// Writes "file", a field for each question, null when the drawing was not readable, "warnings" and
// "error". Returns false when an answer failed.
bool print_json_answers(FILE *out, const Drawing &drawing, const Asked &asked,
                        const JsonOptions &options);

#endif
