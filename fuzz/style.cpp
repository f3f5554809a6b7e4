// A style attribute, over a presentation attribute and a rule.
#include "fuzz/support/fuzz.h"

void fuzz_style(const std::string &input) {
  const FuzzInput parts(input);
  fuzz_read("<?xml version='1.0' encoding='ISO-8859-1'?><svg><style>rect{fill:red}</style>"
            "<linearGradient id='a'/><rect id='b' fill='blue' style='" +
                fuzz_escape(parts.text) + "'/><rect style='fill:url(#b)'/></svg>",
            parts);
}
