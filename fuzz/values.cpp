// The text of an attribute or property, by its row, as svg_parse_attr gets it.
#include <cstring>
#include <gtest/gtest.h>

#include "fuzz/support/fuzz.h"
#include "svg/tree/svg_tree.h"
#include "svg/values/svg_values.h"

// The first byte is the row, the second says how the value came.
void fuzz_values(const std::string &input) {
  if (input.size() < 2) return;
  const int32_t row = static_cast<unsigned char>(input[0]) % SVG_ATTR_COUNT;
  if (strcmp(svg_get_attr_table()[row].name, "baseFrequency") == 0) return; // of no element
  const int way = static_cast<unsigned char>(input[1]);
  std::vector<char> exact(input.begin() + 2, input.end());
  exact.push_back('\0');
  const char *text = exact.data();

  Document document("<svg><g id='a'/></svg>", AccountingCore::with_log(way & 4 ? 6 : 0));
  svg_parser *p = document.parser;
  const int code = document.core.protect([=] {
    svg_make_work_space(p);
    p->css_mode = way & 1;
    p->in_style_attr = p->css_mode && (way & 2);
    p->attr_name = svg_get_attr_table()[row].name;
    p->prop_name = p->css_mode ? p->attr_name : nullptr;
    svg_parse_attr(p, row, text, 1);
  });
  EXPECT_TRUE(code == 0 || (code >= 10000 && code <= 10002)) << document.messages();
  if (p->new_value != nullptr) {
    const bool nan = value_text(p, p->new_value).find("nan") != std::string::npos;
    EXPECT_FALSE(nan && strpbrk(text, "nN") == nullptr) << text; // else it may be in a name
    svg_drop_value_link(p);
    svg_a_node_delete(document.core, p->new_value);
    p->new_value = nullptr;
  }
  document.code = code;
  document.svg = code == 0 ? document.svg : nullptr;
  fuzz_check(document, false);
}
