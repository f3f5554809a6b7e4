// questions.h: what a drawing defines and refers to, one line of text per answer.
#ifndef TOOLS_QUESTIONS_H
#define TOOLS_QUESTIONS_H

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "tools/drawing.h"

// Receives the answers.
using Answers = std::function<void(const std::string &)>;

// Names and selectors are shortened unless full.
void answer_fonts(const Drawing &drawing, bool full, const Answers &answers); // names, elements
void answer_ids(const Drawing &drawing, bool full, const Answers &answers);   // ids, elements
void answer_links(const Drawing &drawing, bool full, const Answers &answers); // elements, targets
void answer_data(const Drawing &drawing, bool full, const Answers &answers);  // type, size

// Prints a heading with the number of answers, then the answers.
using Question = void (*)(const Drawing &drawing, bool full, const Answers &answers);
void print_answers(FILE *out, const Drawing &drawing, const char *noun, Question question,
                   bool full);

// What a tree holds and what it cost.
struct Statistics {
  size_t elements = 0, values = 0, texts = 0;
  double style_sheet_pass = 0, main_pass = 0; // in seconds
  ort_statistics memory = {};
  std::vector<ort_tag_count> tags; // those with live memory, the largest first
};
Statistics statistics_of(const Drawing &drawing);
void print_statistics(FILE *out, const Drawing &drawing);

#endif
