// The systemLanguage test of hosts.
#include <gtest/gtest.h>

#include "svg/parser/svg_parser.h"
#include "tests/support/cases.h"
#include "tests/support/reader.h"

TEST(Language, Check) { // "LANGUAGE LIST"
  expect_cases(R"(en_US en_us -> 1 | en_US en -> 1 | en_US en-GB -> 1 | en_US en_GB -> 0
de-CH de-AT -> 1 | de-CH de_AT -> 0 | fr fr-CA -> 1 | fr de, FR -> 1 | EN-us en -> 1
pt pt-BR-x -> 1
pt ptx -> 0 | pt p -> 0 | pt ptx-BR -> 0 | zh-Hant_TW zh-x -> 0 | zh-Hant_TW ZH-HANT -> 1
- en -> 0)",
               [](const std::string &input) {
                 const size_t blank = input.find(' ');
                 const std::string language = input.substr(0, blank);
                 const Document document("<svg><g id='g' systemLanguage='" +
                                         input.substr(blank + 1) + "'/></svg>");
                 document.parser->language = language == "-" ? nullptr : language.c_str();
                 const svg_e_node *g = document.find("g");
                 const int32_t accepted = svg_check_system_language(document.parser, g);
                 EXPECT_EQ(svg_check_system_language(document.parser, g), accepted) << "again";
                 EXPECT_EQ(svg_check_system_language(document.parser, document.svg), 0);
                 return std::to_string(accepted);
               });
}

TEST(Language, LogStopsAtTheMatch) {
  const Document document("<svg><g id='g' systemLanguage='de,fr,en'/></svg>",
                          AccountingCore::with_log(3));
  document.parser->language = "fr";
  const size_t before = document.core.log.size();
  svg_check_system_language(document.parser, document.find("g"));
  EXPECT_EQ(document.core.log.substr(before),
            "\t\t\tsystemLanguage[0]=\"de\"\n\t\t\tsystemLanguage[1]=\"fr\"\n");
}
