// info.cpp: see info.h.
#include "tools/info.h"

#include "tools/names.h"
#include "tools/questions.h"
#include "tools/records.h"
#include "tools/utf8.h"
#include "tools/value_text.h"
#include "tools/walk.h"

static void count_element(Info &info, const Drawing &drawing, const svg_e_node *element);
static Info::Counts counts_of(const std::vector<SkippedName> &names);
static std::string counts_text(const Info::Counts &counts, bool full);

// Names of one kind that are shown unless all are wanted.
constexpr size_t SHOWN_NAMES = 12;

Info info_of(const Drawing &drawing) {
  Info info;
  info.title = svg_get_title_text(drawing.parser());
  info.size = Scene(drawing).size();
  if (const svg_a_node *value = svg_find_value(drawing.svg(), "viewBox")) {
    const auto *box = as<svg_an_viewbox>(value);
    info.viewbox = {box->min_x, box->min_y, box->width, box->height};
  }
  each_element(drawing.svg(),
               [&](const svg_e_node *element) { count_element(info, drawing, element); });
  info.fonts = svg_get_font_count(drawing.parser());
  answer_links(drawing, false, [&](const std::string &) { ++info.links; });
  info.sheets = drawing.notes().style_elements();
  info.elements = counts_of(drawing.notes().skipped_elements());
  info.properties = counts_of(drawing.notes().skipped_properties());
  return info;
}

static void count_element(Info &info, const Drawing &drawing, const svg_e_node *element) {
  info.shapes += is_shape(element);
  info.texts += element->head.id == SVG_ELEM_text;
  info.images += element->head.id == SVG_ELEM_image;
  for (const auto &[name, value] : drawing.notes().attributes_of(element).foreign)
    ++info.attributes[name];
}

static Info::Counts counts_of(const std::vector<SkippedName> &names) {
  Info::Counts counts;
  for (const SkippedName &name : names) counts[name.name] = name.count;
  return counts;
}

double millimetres(double pixels) { return pixels * (25.4 / 96); }

void print_info(FILE *out, const Drawing &drawing, bool full) {
  const Info info = info_of(drawing);
  const auto print = [&](const char *name, const std::string &text) {
    fprintf(out, "  %-18s  %s\n", name, text.c_str());
  };
  fprintf(out, "%s:\n", escaped(drawing.name()).c_str());
  if (info.title) print("title", quoted_text(info.title, full));
  const Point metric = {millimetres(info.size[0]), millimetres(info.size[1])};
  print("size",
        numbers_text(info.size, " x ", full) + " px, " + numbers_text(metric, " x ", full) + " mm");
  if (info.viewbox) print("viewBox", numbers_text(*info.viewbox, " ", full));
  for (const auto &[name, count] : {std::pair("shapes", info.shapes),
                                    {"texts", info.texts},
                                    {"images", info.images},
                                    {"fonts", info.fonts},
                                    {"links", info.links},
                                    {"style sheets", info.sheets}})
    print(name, std::to_string(count));
  for (const auto &[name, counts] : {std::pair("skipped elements", &info.elements),
                                     {"skipped attributes", &info.attributes},
                                     {"skipped properties", &info.properties}})
    if (!counts->empty()) print(name, counts_text(*counts, full));
}

// "filter 3, flowRoot 1"
static std::string counts_text(const Info::Counts &counts, bool full) {
  std::string text;
  size_t shown = 0;
  for (const auto &[name, count] : counts) {
    if (!full && shown++ == SHOWN_NAMES)
      return text + ", ... (" + std::to_string(counts.size()) + " in all)";
    text += (text.empty() ? "" : ", ") + short_text(name, full) + ' ' + std::to_string(count);
  }
  return text;
}
