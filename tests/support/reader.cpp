#include "tests/support/reader.h"

#include <gtest/gtest.h>

#include "svg/parser/svg_parser.h"
#include "tests/support/cases.h"
#include "tools/value_text.h"

// ---- Reading ------------------------------------------------------------------------------------

static int parse(AccountingCore &core, const std::string &text,
                 const std::function<void(svg_parser *)> &configure, svg_parser **parser,
                 svg_e_node **svg) {
  const std::vector<char> exact(text.begin(), text.end());
  const char *bytes = exact.data();
  const size_t length = exact.size();
  ort_file *file = nullptr;
  ort_gz *gz = nullptr;
  const int code = core.protect([&] {
    svg_register_errtab(core);
    file = ort_fopen_memory(core, "test.svg", bytes, length);
    *parser = svg_parser_new(core, 0, "test.svg", nullptr, nullptr, nullptr, 0, nullptr, 0, nullptr,
                             nullptr);
    if (configure) configure(*parser);
    if (ort_is_gzip(file)) gz = ort_gzopen(file);
    *svg = svg_parse(*parser, file, &gz, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  });
  ort_gzclose(gz);
  ort_fclose(file);
  return code;
}

Document::Document(const std::string &text, const CoreOptions &options,
                   const std::function<void(svg_parser *)> &configure)
    : core(options) {
  code = parse(core, text, configure, &parser, &svg);
}

Document::~Document() { svg_parser_delete(parser); }

bool read_once(AccountingCore &core, const std::string &text, const UseDrawing &then) {
  svg_parser *parser = nullptr;
  svg_e_node *svg = nullptr;
  int code = parse(core, text, nullptr, &parser, &svg);
  if (code == 0 && then) code = then(parser, svg);
  svg_parser_delete(parser);
  return code == 0;
}

std::string Document::messages() const {
  std::string result;
  for (const Message &message : core.messages) result += message.text + '\n';
  return result;
}

svg_e_node *Document::find(const char *name) const {
  svg_e_node *element = svg_find_name(parser, name);
  EXPECT_NE(element, nullptr) << "no element " << name;
  return element;
}

std::string Document::values(const svg_e_node *element, const char *name) const {
  std::string result;
  const svg_a_node *last = nullptr;
  for (int32_t i = 0; i < element->values_num; ++i) {
    const svg_a_node *value = element->values[i];
    if (std::string(svg_get_attr_table()[value->row].name) != name) continue;
    result += (result.empty() ? "" : "; ") + value_text(parser, value);
    last = value;
  }
  EXPECT_EQ(svg_find_value(element, name), last) << name;
  return last ? result : "-";
}

std::string value_of(const char *element, const char *attribute, const std::string &text,
                     const std::function<void(svg_parser *)> &configure) {
  std::string escaped;
  for (const char c : text) escaped += c == '"' ? "&quot;" : c == '<' ? "&lt;" : std::string(1, c);
  const Document document("<svg xmlns='http://www.w3.org/2000/svg' "
                          "xmlns:xlink='http://www.w3.org/1999/xlink'><" +
                              std::string(element) + " " + attribute + "=\"" + escaped +
                              "\"/></svg>",
                          AccountingCore::defaults(), configure);
  std::string result = document.messages();
  if (result.empty()) return document.values(svg_as_element(document.svg->first_child), attribute);
  result.resize(result.rfind(", in file"));
  const std::string bad = std::string(" '") + attribute + "': unexpected token '";
  if (const size_t at = result.find(bad); at != result.npos && at < 10)
    return "! " + result.substr(at + bad.size(), result.size() - at - bad.size() - 1);
  return result.ends_with(attribute + std::string("': incomplete value")) ? "!" : result;
}

void expect_values(const char *table) {
  std::istringstream lines(table);
  for (std::string element, attribute, cases; lines >> element >> attribute;) {
    SCOPED_TRACE(element + ' ' + attribute);
    attribute.pop_back();
    std::getline(lines, cases);
    expect_cases(cases, [&](const std::string &text) {
      return value_of(element.c_str(), attribute.c_str(), text);
    });
  }
}

// ---- Values -------------------------------------------------------------------------------------

std::string value_text(const svg_parser *parser, const svg_a_node *value) {
  class Around final : public Surroundings {
  public:
    explicit Around(const svg_parser *p) : parser_(p) {}
    ort_core *core() const override { return parser_->core; }
    const svg_parser *parser() const override { return parser_; }
    const char *waiting_name(const svg_iri *iri) const override {
      for (size_t i = 0; i < svg_get_unresolved_count(parser_); ++i) {
        const svg_iri *waiting = nullptr;
        const char *name = svg_get_unresolved(parser_, i, &waiting, nullptr);
        if (waiting == iri) return name;
      }
      return nullptr;
    }

  private:
    const svg_parser *parser_;
  };
  return value_text(Around(parser), value, true);
}
