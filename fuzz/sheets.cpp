// A style sheet: as a file, in any encoding, and as the text of a style element.
#include "fuzz/support/fuzz.h"

void fuzz_sheets(const std::string &input) {
  const FuzzInput parts(input);
  const std::string rest = "<g id='a' class='c d' lang='en-GB'><rect class='c' x='1' "
                           "width='2'/><rect id='b' fill='red'/>"
                           "<a><text x='1 2'>t</text></a></g><path class='d e' d='M0 0'/></svg>";
  fuzz_read("<?xml-stylesheet type='text/css' href='a.css'?><svg class='c'>" + rest, parts,
            parts.text + " ");
  fuzz_read("<?xml version='1.0' encoding='ISO-8859-1'?><svg><style>" + fuzz_escape(parts.text) +
                "</style>" + rest,
            parts, parts.text + " ");
}
