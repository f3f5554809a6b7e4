// selection.cpp: see selection.h.
#include "tools/selection.h"

#include <cctype>
#include <cstdio>
#include <cstring>

#include "tools/utf8.h"
#include "tools/walk.h"

static bool is_name(const std::string &text, const char *punctuation);
static std::string find_mistake(const std::string &selector);
static const char *id_in(const std::string &text);

// An id may have dots and colons, which begin classes and pseudo-classes of a selector. Of such a
// text the drawing decides: it is an id where an element has it.
std::string take_selection(Selection &selection, ReadSettings &settings) {
  if (is_name(selection.text, "-_")) return "";
  const std::string mistake = find_mistake(selection.text);
  if (!mistake.empty()) return is_name(selection.text, "-_.:") ? "" : mistake;
  selection.many = true;
  selection.number = settings.selectors.size();
  settings.selectors.push_back(selection.text);
  return "";
}

Elements find_elements(const Drawing &drawing, const Selection &selection) {
  const std::string &text = selection.text;
  const char *id = id_in(text);
  if (!selection.many || is_name(text, "-_.:"))
    if (const svg_e_node *element = svg_find_name(drawing.parser(), id)) return {element};
  if (selection.many && !drawing.selected(selection.number).empty())
    return drawing.selected(selection.number);
  const char *missing = selection.many ? "no element matches" : "no element has the id";
  fprintf(stderr, "%s: %s '%s'\n", escaped(drawing.name()).c_str(), missing,
          escaped(selection.many ? text.c_str() : id).c_str());
  return {};
}

Elements outermost_of(const Drawing &drawing, const Elements &elements) {
  Elements result;
  size_t next = 0;
  const svg_e_node *around = nullptr;
  walk(
      drawing.svg(),
      [&](const svg_e_node *element, int) {
        if (next == elements.size() || element != elements[next]) return;
        ++next;
        if (around) return;
        around = element;
        result.push_back(element);
      },
      [](const svg_t_node *, int) {},
      [&](const svg_e_node *element) {
        if (element == around) around = nullptr;
      });
  return result;
}

// Whether a text, but for a "#" before it, has only letters, digits and this punctuation.
static bool is_name(const std::string &text, const char *punctuation) {
  const char *c = id_in(text);
  const auto fits = [&](unsigned char byte) {
    return byte >= 0x80 || isalnum(byte) != 0 || strchr(punctuation, byte);
  };
  while (*c != '\0' && fits(static_cast<unsigned char>(*c))) ++c;
  return *c == '\0';
}

// Asks a parser that reads no drawing.
static std::string find_mistake(const std::string &selector) {
  struct Trial {
    ort_core *core;
    const char *selector;
    svg_parser *parser;
    std::string message;
  } trial = {nullptr, selector.c_str(), nullptr, ""};
  ort_options options;
  ort_options_init(&options);
  options.message_user = &trial;
  options.message = [](void *user, ort_severity, int, const char *text) {
    static_cast<Trial *>(user)->message = text;
  };
  trial.core = ort_core_new(&options);
  if (!trial.core) return "Out of memory";
  const auto body = [](void *user) {
    auto *t = static_cast<Trial *>(user);
    svg_register_errtab(t->core);
    t->parser =
        svg_parser_new(t->core, 0, "", nullptr, nullptr, nullptr, 0, nullptr, 0, nullptr, nullptr);
    svg_set_selector(
        t->parser, t->selector, [](void *, const svg_e_node *) {}, nullptr);
  };
  ort_protect(trial.core, body, &trial);
  svg_parser_delete(trial.parser);
  ort_core_delete(trial.core);
  return trial.message;
}

static const char *id_in(const std::string &text) {
  return text.c_str() + (text.starts_with('#') ? 1 : 0);
}
