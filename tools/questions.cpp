// questions.cpp: answers to --fonts, --ids, --links and --stats, and the facts above a text tree.
#include "tools/questions.h"

#include <algorithm>
#include <functional>
#include <vector>

#include "tools/names.h"
#include "tools/records.h"
#include "tools/utf8.h"
#include "tools/value_text.h"
#include "tools/walk.h"

// Calls found("rect #button fill", iri) for each IRI of the tree.
template <class Found> static void each_iri(const Drawing &drawing, bool full, Found found) {
  each_element(drawing.svg(), [&](const svg_e_node *element) {
    for (int32_t i = 0; i < element->values_num; ++i)
      if (const svg_iri *iri = value_iri(element->values[i]))
        found(element_text(drawing, element, full) + ' ' + row_name(element->values[i]->row), *iri);
  });
}

void answer_fonts(const Drawing &drawing, bool full, const Answers &answers) {
  for (size_t i = 0; i < svg_get_font_count(drawing.parser()); ++i) {
    const svg_font *font = svg_get_font_at(drawing.parser(), i);
    answers(short_text(drawing.font_name(font), full) + " (" +
            element_text(drawing, font->node, full) + ')');
  }
}

void answer_ids(const Drawing &drawing, bool full, const Answers &answers) {
  for (const auto &[name, element] : named_elements(drawing, NodeNumbers(drawing)))
    answers('#' + short_text(name, full) + ' ' + element_name(element->head.id));
}

void answer_links(const Drawing &drawing, bool full, const Answers &answers) {
  each_iri(drawing, full, [&](const std::string &place, const svg_iri &iri) {
    if (iri.kind != SVG_IRI_DATA) answers(place + " -> " + iri_text(drawing, iri, full));
  });
}

void answer_data(const Drawing &drawing, bool full, const Answers &answers) {
  each_iri(drawing, full, [&](const std::string &place, const svg_iri &iri) {
    if (iri.kind == SVG_IRI_DATA) answers(place + ": " + data_text(drawing, iri));
  });
}

void print_answers(FILE *out, const Drawing &drawing, const char *noun, Question question,
                   bool full) {
  size_t count = 0;
  question(drawing, full, [&](const std::string &) { ++count; });
  fprintf(out, "%s: %zu %s%s\n", escaped(drawing.name()).c_str(), count, noun,
          count == 1 ? "" : "s");
  question(drawing, full,
           [&](const std::string &answer) { fprintf(out, "  %s\n", answer.c_str()); });
}

Statistics statistics_of(const Drawing &drawing) {
  Statistics result;
  walk(
      drawing.svg(),
      [&](const svg_e_node *element, int) {
        ++result.elements;
        result.values += static_cast<size_t>(element->values_num);
      },
      [&](const svg_t_node *, int) { ++result.texts; }, [](const svg_e_node *) {});
  svg_get_pass_times(drawing.parser(), &result.style_sheet_pass, &result.main_pass);
  ort_get_statistics(drawing.core(), &result.memory);
  result.tags.resize(ort_get_tag_counts(drawing.core(), nullptr, 0));
  ort_get_tag_counts(drawing.core(), result.tags.data(), result.tags.size());
  std::erase_if(result.tags, [](const ort_tag_count &tag) { return tag.blocks == 0; });
  std::ranges::stable_sort(result.tags, std::greater(), &ort_tag_count::bytes);
  return result;
}

void print_statistics(FILE *out, const Drawing &drawing) {
  const Statistics found = statistics_of(drawing);
  fprintf(out, "%s: %zu elements, %zu values, %zu texts\n", escaped(drawing.name()).c_str(),
          found.elements, found.values, found.texts);
  fprintf(out, "  time: style sheets %.3f ms, document %.3f ms\n", 1e3 * found.style_sheet_pass,
          1e3 * found.main_pass);
  fprintf(out, "  memory: %llu bytes in %llu blocks, peak %llu bytes\n",
          static_cast<unsigned long long>(found.memory.live_bytes),
          static_cast<unsigned long long>(found.memory.live_blocks),
          static_cast<unsigned long long>(found.memory.peak_bytes));
  fprintf(out, "  %12s  %8s\n", "bytes", "blocks");
  for (const ort_tag_count &tag : found.tags)
    fprintf(out, "  %12llu  %8llu  %s\n", static_cast<unsigned long long>(tag.bytes),
            static_cast<unsigned long long>(tag.blocks), tag.tag);
}
