#include <gtest/gtest.h>

#include "tests/support/accounting_core.h"

constexpr ort_errtab_entry table[] = {{2, 20000, "first '$1', second $2.", nullptr},
                                      {0, 20001, "costs 5$ or $9", nullptr},
                                      {4, 20002, "$4$3$2$1", nullptr},
                                      {1, 20003, " in $1", nullptr}};

namespace {

class Error : public testing::Test {
protected:
  Error() { ort_register_errtab(core, 8, table, 4); }

  void warn(int code, const char *p1 = nullptr, const char *p2 = nullptr, const char *p3 = nullptr,
            const char *p4 = nullptr) {
    ort_warning(core, code, p1, p2, p3, p4);
  }
  const std::string &last() const { return core.messages.back().text; }

  AccountingCore core;
};

} // namespace

TEST_F(Error, MessagesAreComposedFromTemplates) {
  warn(20000, "a", "b");
  EXPECT_EQ(last(), "first 'a', second b.");
  warn(20000, "$2", nullptr);
  EXPECT_EQ(last(), "first '$2', second .");
  warn(20001);
  EXPECT_EQ(last(), "costs 5$ or $9");
  warn(20002, "1", "2", "3", "4");
  EXPECT_EQ(last(), "4321");
  warn(ORT_E_XML, "mismatched tag", "3", "7");
  EXPECT_EQ(last(), "XML: mismatched tag in line 3, column 7");
  warn(4711);
  EXPECT_EQ(core.messages.back(), (Message{ORT_WARNING, 4711, "Unknown error"}));
  EXPECT_STREQ(ort_find_error(core, ORT_E_LIMIT)->text, "Limit of $2 $1 exceeded");
  EXPECT_EQ(ort_find_error(core, 20004), nullptr);
  EXPECT_EQ(ort_error_code(core), 0);
  EXPECT_STREQ(ort_error_text(core), "");
}

TEST_F(Error, ParametersAreEscaped) {
  const std::pair<const char *, const char *> cases[] = {
      {"plain \\ 'text'", "plain \\ 'text'"},
      {"a\nb\tc\rd\x1B[1m\x7F", "a\\nb\\tc\\x0dd\\x1b[1m\\x7f"},
      {"\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80", "\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80"},
      {"\xC2\x9B", "\\xc2\\x9b"}, // a control character of ISO 6429
      {"\u2029\u202A\u202E\u202F", "\u2029\\xe2\\x80\\xaa\\xe2\\x80\\xae\u202F"}, // direction
      {"\u2065\u2066\u2069\u206A", "\u2065\\xe2\\x81\\xa6\\xe2\\x81\\xa9\u206A"},
      {"\xC0\xAF\xE0\x80\xAF", "\\xc0\\xaf\\xe0\\x80\\xaf"}, // overlong
      {"\xED\xA0\x80", "\\xed\\xa0\\x80"},                   // surrogate
      {"\xF4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},          // above U+10FFFF
      {"\xE2\x82", "\\xe2\\x82"},                            // cut short by the end
      {"\xE2\x82z\x80\xFF", "\\xe2\\x82z\\x80\\xff"},
      {"\xF0\x9Fz\xF0\x9F\x98z", "\\xf0\\x9fz\\xf0\\x9f\\x98z"}};
  for (const auto &[text, expected] : cases)
    for (const char *parameter : {text, expected}) { // what is escaped stays
      warn(20002, parameter);
      EXPECT_EQ(last(), expected);
    }
}

TEST_F(Error, LongParametersAreCutAtACharacter) {
  for (const char *unit : {"x", "\xC3\xA4", "\xE2\x82\xAC", "\x01", "\n"}) {
    std::string text;
    while (text.size() < 5000) text += unit;
    warn(20002, text.c_str());
    const std::string first = last();
    EXPECT_LE(first.size(), 1000U);
    EXPECT_GT(first.size(), 996U);
    warn(20002, first.c_str());
    EXPECT_EQ(last(), first) << "the cut left a broken character";
    warn(20002, text.c_str(), text.c_str(), text.c_str(), text.c_str());
    EXPECT_EQ(last().size(), 4 * first.size());
  }
}

TEST_F(Error, PendingTextGrowsToItsLimitOnly) {
  std::string text = "x";
  while (text.size() < 900) text += "\xE2\x82\xAC";
  ort_set_errmsg(core, 20002, "", "", "", "");
  for (int i = 0; i < 30; ++i) ort_push2_errmsg(core, 20003, text.c_str(), "", "", "");
  const std::string all = ort_error_text(core);
  EXPECT_GT(all.size(), 11000U);
  EXPECT_LT(all.size(), 12000U);
  EXPECT_EQ(ort_escape(nullptr, all.c_str()), all.size()) << "cut inside a character";
  EXPECT_EQ(ort_error_code(core), 20002);

  // Parameters may point into the pending text.
  ort_set_errmsg(core, 20000, "a", "b", "", "");
  ort_push2_errmsg(core, 20003, ort_error_text(core), "", "", "");
  EXPECT_STREQ(ort_error_text(core), "first 'a', second b. in first 'a', second b.");
  ort_set_errmsg(core, 20000, ort_error_text(core) + 7, ort_error_text(core) + 21, "", "");
  EXPECT_STREQ(ort_error_text(core),
               "first 'a', second b. in first 'a', second b.', second in first 'a', second b..");
}

TEST_F(Error, FramesNestAndOnlyTheOutermostDelivers) {
  int inner = 0;
  const int code = core.protect([&] {
    inner = core.protect([&] { ort_ascii_error(core, 20000, 3, "in", "ner"); });
    EXPECT_EQ(core.protect([] {}), 0); // a frame that nothing leaves is closed, too
    EXPECT_TRUE(core.messages.empty());
    warn(20001); // a warning leaves the pending error alone
    warn(-1);
    ort_push2_errmsg(core, 20003, "file", "", "", "");
    ort_error(core, -1);
  });
  EXPECT_EQ(code, 20000);
  EXPECT_EQ(inner, 20000);
  const std::vector<Message> expected = {{ORT_WARNING, 20001, "costs 5$ or $9"},
                                         {ORT_WARNING, 20000, "first 'in', second ner."},
                                         {ORT_ERROR, 20000, "first 'in', second ner. in file"}};
  EXPECT_EQ(core.messages, expected);
  EXPECT_STREQ(ort_error_text(core), "first 'in', second ner. in file");
}

TEST_F(Error, MisuseIsInternalOrAborts) {
  EXPECT_DEATH(ort_error(core, 20000, "a", "b"), "first 'a', second b.");
  EXPECT_EQ(core.protect([&] { ort_rethrow(core); }), ORT_E_INTERNAL);
  EXPECT_EQ(last().find("Internal error in "), 0U);
}

TEST_F(Error, PrintedTextsLiveForSixteenCalls) {
  const std::string long_text(100000, 'y');
  const char *printed[16];
  for (int i = 0; i < 48; ++i)
    printed[i % 16] = i % 3 == 0 ? ort_errprintf(core, " <%a>", long_text.c_str())
                                 : ort_errprintf(core, "%d/%g", i, i / 8.0);
  EXPECT_EQ(printed[45 % 16], " <" + long_text.substr(0, ORT_LIMIT_MESSAGE_PARAMETER - 2));
  EXPECT_STREQ(printed[32 % 16], "32/4");
  EXPECT_STREQ(ort_errprintf(core, " (%s file)%a", "a\tb", "a\tb"), " (a\tb file)a\\tb");
  EXPECT_STREQ(ort_errprintf(core, ""), "");
  EXPECT_EQ(core.allocations(), 0U);
}
