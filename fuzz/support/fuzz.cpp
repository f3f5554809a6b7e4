#include "fuzz/support/fuzz.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

#include "svg/parser/svg_parser.h"
#include "tests/support/whole.h"

constexpr int block_sizes[] = {SVG_BLOCK_SIZE, 1, 7, 64, 1000, 4096};
constexpr const char *languages[] = {nullptr, "", "en", "de_DE", "x-"};
constexpr const char *refused_elements[] = {"a", "blink", "filter"};
constexpr const char *refused_props[] = {"filter", "zoom"};

// Errors that svg_parse documents, beside ORT_E_NO_MEMORY.
constexpr int documented[] = {0,
                              SVG_E_ATTRIBUTE_INCOMPLETE,
                              SVG_E_PROPERTY_INCOMPLETE,
                              SVG_E_STYLE_INCOMPLETE,
                              SVG_E_NOT_SVG,
                              SVG_E_ELEMENT_REFUSED,
                              SVG_E_PROPERTY_REFUSED,
                              ORT_E_XML,
                              ORT_E_GZIP,
                              ORT_E_LIMIT};

static bool is_clean_text(const std::string &text) {
  for (size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x20 || byte == 0x7F) return false;
    const size_t following = byte < 0x80   ? 0
                             : byte < 0xC2 ? 9
                             : byte < 0xE0 ? 1
                             : byte < 0xF0 ? 2
                                           : 3;
    if (following > text.size() - i - 1 || byte > 0xF4) return false;
    for (size_t end = i + following; i < end; ++i)
      if ((text[i + 1] & 0xC0) != 0x80) return false;
  }
  return true;
}

FuzzInput::FuzzInput(const std::string &input) {
  const bool given = input.size() > SETTINGS && input[0] == '#';
  for (size_t i = 0; given && i < SETTINGS; ++i)
    settings[i] = static_cast<unsigned char>(input[i + 1]);
  text = input.substr(given ? 1 + SETTINGS : 0);
}

void fuzz_read(const std::string &drawing, const FuzzInput &input, const std::string &sheet) {
  const unsigned *set = input.settings;
  CoreOptions options = AccountingCore::with_log(static_cast<int>(set[FuzzInput::LOG_LEVEL] % 7));
  options.log_levels[ORT_LOG_LINES] = 1;
  if (const unsigned budget = set[FuzzInput::BUDGET]) {
    options.memory_budget = budget % 16 ? 1024ULL << (budget % 16) : 0;
    options.inflate_budget = budget / 16 ? 16ULL << budget / 16 : 0;
  }
  options.fail_at = set[FuzzInput::FAIL_AT] * (1 + set[FuzzInput::FAIL_ON] / 2 % 16);
  options.fail_on = set[FuzzInput::FAIL_ON] % 2 != 0;
  const bool injected = options.memory_budget != 0 || options.fail_at != 0;

  struct Host {
    std::string sheet;
    bool allows;
  } host = {sheet.empty() ? drawing : sheet, set[FuzzInput::HOST] / 8 % 2 == 0};
  const css_context context = {
      nullptr,
      [](void *user, const char *, css_sheet_text *text) {
        const auto *of = static_cast<const Host *>(user);
        return of->allows ? css_context_append(text, of->sheet.data(), of->sheet.size()) : 0;
      },
      &host};

  Document document(drawing, options, [&](svg_parser *p) {
    const unsigned of_host = set[FuzzInput::HOST];
    svg_set_leniency(p, set[FuzzInput::FORM] / 2);
    p->language = languages[of_host / 32 % std::size(languages)];
    if (of_host & 1) p->nottol_elements = refused_elements, p->nottol_elements_num = 3;
    if (of_host & 2) p->nottol_props = refused_props, p->nottol_props_num = 2;
    if (!(of_host & 4)) p->css_context_ = &context;
    p->block_size = block_sizes[set[FuzzInput::BLOCK] % std::size(block_sizes)];
    if (const unsigned limits = set[FuzzInput::LIMITS]) {
      const svg_limits tight = {limits % 8 ? 1ULL << limits % 8 : 0,
                                limits / 8 % 8 * 2,
                                limits / 64 ? 1.5f : 0.0f,
                                limits / 64 * 100,
                                limits % 32 * 1000,
                                0};
      svg_set_limits(p, &tight);
    }
  });
  fuzz_check(document, injected);
}

std::string fuzz_check(Document &document, bool injected) {
  const bool no_memory = document.code == ORT_E_NO_MEMORY;
  EXPECT_TRUE((no_memory && injected) || std::find(std::begin(documented), std::end(documented),
                                                   document.code) != std::end(documented))
      << "error " << document.code << ' ' << document.messages();
  EXPECT_EQ(document.code == 0, document.svg != nullptr);
  for (const Message &message : document.core.messages) {
    EXPECT_TRUE(is_clean_text(message.text)) << message.text;
    EXPECT_NE(ort_find_error(document.core, message.code), nullptr) << message.code;
    EXPECT_NE(message.code, ORT_E_INTERNAL) << message.text;
  }
  return injected ? "" : whole_text(document);
}

std::string fuzz_escape(const std::string &text) {
  std::string result;
  for (const char c : text) {
    if (fuzz_is_control(c))
      result += ' ';
    else if (strchr("<>&\"'\t\n\r", c))
      result += "&#" + std::to_string(static_cast<int>(c)) + ";";
    else
      result += c;
  }
  return result;
}

bool fuzz_is_control(char c) {
  return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
}
