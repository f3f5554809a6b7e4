// The text of an attribute or property, as svg_parse_attr gets it.
#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

#include "fuzz/support/fuzz.h"
#include "svg/tree/svg_document.h"
#include "svg/values/svg_attr.h"
#include "svg/values/svg_links.h"
#include "svg/values/svg_types.h"

// The first row of a name; any other text chooses a row, too.
static int32_t find_row(const std::string &name) {
  unsigned sum = 0;
  for (const char c : name) sum = 31 * sum + static_cast<unsigned char>(c);
  for (int32_t row = 0; row < SVG_ATTR_COUNT; ++row)
    if (name == svg_get_attr_table()[row].name) return row;
  return static_cast<int32_t>(sum % SVG_ATTR_COUNT);
}

// A name, a control byte that says how the value came, and its text.
void fuzz_values(const std::string &input) {
  const auto end = std::find_if(input.begin(), input.end(),
                                [](char c) { return static_cast<unsigned char>(c) < ' '; });
  if (end == input.end()) return;
  const int32_t row = find_row({input.begin(), end});
  if (strcmp(svg_get_attr_table()[row].name, "baseFrequency") == 0) return; // of no element
  const int way = static_cast<unsigned char>(*end);
  std::vector<char> exact(end + 1, input.end());
  exact.push_back('\0');
  const char *text = exact.data();

  Document document("<svg><g id='a'/></svg>", AccountingCore::with_log(way & 4 ? 6 : 0),
                    [=](svg_parser *p) { svg_set_leniency(p, way & 8 ? SVG_LENIENT_ALL : 0); });
  svg_parser *p = document.parser;
  const int code = document.core.protect([=] {
    svg_make_work_space(p);
    p->css_mode = way & 1;
    p->in_style_attr = p->css_mode && (way & 2);
    p->attr_name = svg_get_attr_table()[row].name;
    p->prop_name = p->css_mode ? p->attr_name : nullptr;
    svg_parse_attr(p, row, text, 1);
  });
  EXPECT_TRUE(code == 0 || (code >= SVG_E_ATTRIBUTE_INCOMPLETE && code <= SVG_E_STYLE_INCOMPLETE))
      << document.messages();
  if (p->new_value) {
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
