// What attributes of one name, and a bad one, leave.
#include <gtest/gtest.h>

#include "svg/parser/svg_parser.h"
#include "tests/support/reader.h"

TEST(Attr, TheLastOfDuplicateAttributesReachesTheHook) {
  const Document once("<svg xmlns='http://www.w3.org/2000/svg' width='20px' height='5in'/>");
  const Document twice("<svg xmlns='http://www.w3.org/2000/svg' "
                       "xmlns:svg='http://www.w3.org/2000/svg' svg:width='10px' width='20px' "
                       "height='5in' svg:height='bad'/>");
  EXPECT_EQ(twice.values(twice.svg, "width"), "10px; 20px");
  EXPECT_EQ(twice.values(twice.svg, "height"), "5in");
  EXPECT_EQ(twice.parser->viewport_width, once.parser->viewport_width);
  EXPECT_EQ(twice.parser->viewport_height, once.parser->viewport_height);
}

// In a class of its own.
TEST(Attr, ALogLineIsEndedBeforeAWarning) {
  const CoreOptions options = AccountingCore::with_log(1, ORT_LOG_LINES);
  EXPECT_EQ(Document("<svg><rect y='z'/></svg>", options).core.log, "\n");
}
