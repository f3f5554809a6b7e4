// toy.h: a small tree and property parser behind the engine's callbacks, for its tests.
//
// Trees are written as "svg(g#id.class[name=value](rect! a) b)"; "_" in a value is a blank, and "!"
// marks an element, for the test to say what it expects. Element names are a to h, svg and rect;
// every other name is unknown.
#ifndef TESTS_CSS_TOY_H
#define TESTS_CSS_TOY_H

#include <cstring>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "css/css.h"
#include "tests/support/accounting_core.h"

struct ToyNode {
  std::string name;
  int16_t elem_nid = -1, id_nid = -1;
  std::vector<int16_t> class_nids;
  std::vector<std::pair<int16_t, std::string>> attributes;
  bool marked = false;
  ToyNode *parent = nullptr, *sibling = nullptr, *last_child = nullptr;
};

struct Toy {
  explicit Toy(AccountingCore &c, const css_context *context = nullptr) : core(c) {
    const css_callbacks callbacks = {
        [](void *, const char *name) { return find_element(name); },
        [](void *user, const char *name, const char *value, bool important) {
          return static_cast<Toy *>(user)->get_prop(name, value, important);
        },
        [](void *, void *node, int16_t nid) -> const char * {
          for (const auto &[own, value] : static_cast<ToyNode *>(node)->attributes)
            if (own == nid) return value.c_str();
          return nullptr;
        },
        [](void *, void *node, int16_t nid) {
          for (int16_t own : static_cast<ToyNode *>(node)->class_nids)
            if (own == nid) return true;
          return false;
        },
        [](void *, void *node, int16_t nid) { return static_cast<ToyNode *>(node)->id_nid == nid; },
        get_parent,
        get_parent,
        [](void *, void *node, int16_t) -> void * { return static_cast<ToyNode *>(node)->sibling; },
        [](void *user) { ++static_cast<Toy *>(user)->font_faces; },
        [](void *, const char *) {}};
    ready = core.protect([&] {
      css = css_parser_new(core, this, context, &callbacks, 9);
      css_parser_init(css);
    }) == 0;
  }
  ~Toy() { css_parser_delete(css); }

  int parse(const std::string &sheet, const char *href = nullptr) {
    return core.protect([&] { css_parse_sheet(css, sheet.c_str(), href); });
  }

  static int16_t find_element(const std::string &name) {
    if (name == "svg" || name == "rect") return name == "svg" ? 8 : 9;
    const bool known = name.size() == 1 && name[0] >= 'a' && name[0] <= 'h';
    return static_cast<int16_t>(known ? name[0] - 'a' : -1);
  }

  static void *get_parent(void *, void *node, int16_t) {
    return static_cast<ToyNode *>(node)->parent;
  }

  // "bad" and unknown properties have no value, "font" gives two, "fatal" raises.
  void *get_prop(const char *name, const char *value, bool important) {
    declared.push_back(std::string(name) + ":" + value + (important ? " !important" : ""));
    if (strcmp(name, "fatal") == 0) ort_error(core, ORT_E_INTERNAL);
    if (strcmp(name, "bad") == 0) return nullptr;
    values.push_back(declared.back());
    if (strcmp(name, "font") != 0) return &values.back();
    css_add_value(css, "font-size", &values.back());
    css_add_value(css, "font-family", &values.back());
    return nullptr;
  }

  void build(const std::string &tree) {
    nodes.clear();
    ToyNode *parent = nullptr;
    for (size_t i = 0; i < tree.size();) {
      const char c = tree[i];
      const bool mark = strchr(" ()!", c);
      size_t end = mark ? i + 1 : tree.find_first_of(c == '[' ? "]" : " ()!.#[", i + 1);
      std::string word = tree.substr(i, end - i);
      i = c == '[' ? end + 1 : std::min(end, tree.size());
      if (!mark && !strchr("#.[", c)) {
        nodes.push_back({word, find_element(word), -1, {}, {}, false, parent});
        if (parent) nodes.back().sibling = std::exchange(parent->last_child, &nodes.back());
      }
      ToyNode &node = nodes.back();
      if (c == '(') parent = &node;
      if (c == ')') parent = parent->parent;
      if (c == '!') node.marked = true;
      if (c == '#') node.id_nid = css_get_id_nid(css, &word[1]);
      if (c == '.') node.class_nids.push_back(css_get_class_nid(css, &word[1]));
      if (c == '[') {
        size_t equals = word.find('=');
        for (size_t blank = 0; (blank = word.find('_', blank)) != word.npos;) word[blank] = ' ';
        node.attributes.emplace_back(css_get_attr_nid(css, word.substr(1, equals - 1).c_str()),
                                     word.substr(equals + 1));
      }
    }
  }

  // The nodes must be asked for in order. facts: through css_set_subject, else the engine asks the
  // callbacks.
  ort_vtr *ask(ToyNode &node, bool facts = true) {
    ort_vtr *rules = nullptr;
    core.protect([&] {
      if (facts) {
        css_set_subject(css, &node, node.id_nid, node.class_nids.data(),
                        static_cast<int32_t>(node.class_nids.size()));
        for (const auto &[nid, value] : node.attributes)
          css_add_subject_attr(css, nid, value.c_str());
      }
      rules = css_get_rules(css, &node, node.elem_nid);
    });
    return rules;
  }

  // The rules of the marked elements: "SELECTOR{name:value;name:value}", each followed by a blank.
  std::string rules(const std::string &tree) {
    build(tree);
    ort_bs *text = ort_bs_new(core);
    for (ToyNode &node : nodes) {
      ort_vtr *found = ask(node);
      for (size_t i = 0; node.marked && i < ort_vtr_count(found); ++i) {
        const css_rule &rule = *ort_item<css_rule *>(found, i);
        ort_bs_append_text(text, css_get_selector_text(css, rule.selector));
        for (int32_t k = 0; k < rule.decls->decl_count; ++k) {
          const auto *value = static_cast<std::string *>(rule.decls->decl_values[k]);
          ort_bs_append_text(text, ((k ? ";" : "{") + *value).c_str());
        }
        ort_bs_append_text(text, "} ");
      }
    }
    const std::string all = ort_bs_text(text);
    ort_bs_delete(text);
    return all;
  }

  AccountingCore &core;
  css_parser *css = nullptr;
  bool ready = false;
  std::deque<ToyNode> nodes;
  std::deque<std::string> values, declared; // what get_prop made, and what it was asked for
  int font_faces = 0;
};

#endif
