#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/css/toy.h"
#include "tests/support/cases.h"

namespace fs = std::filesystem;
using std::string;

namespace {

// A folder "sheets" with files, beside a file that must not be read. Without standard input, so
// that descriptors begin with 0.
class CssFolder : public testing::Test {
protected:
  void SetUp() override {
    input = dup(STDIN_FILENO);
    close(STDIN_FILENO);
    string pattern = (fs::temp_directory_path() / "css-test-XXXXXX").string();
    root = mkdtemp(pattern.data());
    base = root / "sheets";
    fs::create_directories(base / "d");
    for (const char *name : {"sheets2", "others"}) {
      fs::create_directories(root / name);
      fs::create_symlink("../" + string(name), base / ("to " + string(name)));
    }
    for (const char *name : {"sheets/a b.css", "sheets/d/x.css", "secret.css", "sheets2/x.css",
                             "others/x.css", "sheets/c:d.css"})
      write(name, "a{}");
    fs::create_symlink("../secret.css", base / "out.css");
    fs::create_symlink("d/x.css", base / "in.css");
    fs::create_symlink("loop.css", base / "loop.css");
    mkfifo((base / "fifo.css").c_str(), 0600);
  }
  void TearDown() override {
    fs::remove_all(root);
    dup2(input, STDIN_FILENO);
    close(input);
  }

  void write(const string &name, const string &text) {
    std::ofstream(root / name, std::ios::binary) << text;
  }

  // The text, or the codes of the messages.
  string read(const char *href, const char *encoding = nullptr) {
    AccountingCore core;
    string folder = base.string(), result;
    css_context context = {folder.c_str(), nullptr, nullptr};
    char *text = nullptr;
    core.protect([&] { text = css_read_external_stylesheet(core, href, &context, encoding, 0); });
    if (text) result = text;
    for (const Message &message : core.messages) result += std::to_string(message.code);
    ort_free(core, text);
    return result;
  }

  fs::path root, base;
  int input = -1;
};

// A host's own sheets.
struct Host {
  std::map<string, string> sheets;
  int asked = 0;
  css_context context = {nullptr, read, this};

  static int read(void *user, const char *href, css_sheet_text *text) {
    Host *host = static_cast<Host *>(user);
    ++host->asked;
    auto found = host->sheets.find(href);
    return found != host->sheets.end() &&
           css_context_append(text, found->second.data(), found->second.size());
  }
};

} // namespace

TEST_F(CssFolder, OnlyFilesBelowItAreRead) {
  expect_cases(R"(
d/x.css -> a{} | a%20b.css -> a{} | a b.css?v=1#f -> a{} | in.css -> a{} | c%3Ad.css -> a{}
none.css -> 10201 | loop.css -> 10201 | -> 10200 | d -> 10200 | fifo.css -> 10200 | out.css -> 10200
to sheets2/x.css -> 10200 | to others/x.css -> 10200 | d/../a b.css -> 10200
../secret.css -> 10200 | d/%2e%2E/../secret.css -> 10200 | %2fetc/passwd -> 10200
/etc/passwd -> 10200 | //host/x.css -> 10200 | ..\x5csecret.css -> 10200 | d%5cx.css -> 10200
d/x.css%00 -> 10200 | c:d.css -> 10200 | http://h/d/x.css -> 10200 | file:d/x.css -> 10200
a%2 -> 10201 | a%2g -> 10201 | a%g2 -> 10201 | .x/y -> 10201 | dd/y -> 10201 | a b.css/y -> 10201
./d/./x.css -> a{} | in.css/.. -> 10200 | . -> 10200)",
               [this](const string &href) { return read(href.c_str()); });
  EXPECT_EQ(read(string(5000, 'x').c_str()), "10200");
  EXPECT_EQ(read(string(300, 'x').c_str()), "10201");
  fs::resize_file(base / "d/x.css", ORT_LIMIT_STYLE_SHEET + 1);
  EXPECT_EQ(read("d/x.css"), "10200");
  base = "/";
  EXPECT_EQ(read((root / "secret.css").c_str() + 1), "a{}");
  base = "/proc/self";
  EXPECT_EQ(read("mem"), "10201") << "page 0 is not mapped";
  base = root / "none";
  EXPECT_EQ(read("x.css"), "10201");
}

TEST_F(CssFolder, EncodingsBecomeUTF8) {
  const string accented = "\xC3\xA4\xF0\x9F\x98\x80", replaced = "\xEF\xBF\xBD";
  string many;
  for (int i = 0; i < 9000; ++i) many += replaced;
  const struct {
    string bytes, expected;
  } cases[] = {{"", ""},
               {accented, accented},
               {"\xEF\xBB\xBF" + accented, accented},
               {string("\xFE\xFF\0\xE4\xD8\x3D\xDE\x00", 8), accented},
               {string("\xFF\xFE\xE4\0\x3D\xD8\x00\xDE", 8), accented},
               {string("\xFF\xFE\x3D\xD8\x41\0\x42", 7), replaced + "A" + replaced},
               {"@charset \"iso-8859-1\";\xE4", "@charset \"iso-8859-1\";\xC3\xA4"},
               {"@charset \"UTF-16\";\xC3\xA4", "@charset \"UTF-16\";\xC3\xA4"},
               {"@charset \"utf16\";\xC3\xA4", "@charset \"utf16\";\xC3\xA4"},
               {"@charset \"no-such\";a", "@charset \"no-such\";a10203"},
               {"@charset \"\";a", "@charset \"\";a"},
               {"@charset \"" + string(5000, 'x'), "@charset \"" + string(5000, 'x')},
               {"@charset \"../x\";\xC3\xA4", "@charset \"../x\";\xC3\xA4"},
               {"a\xFF\x62\xC3", "a" + replaced + "b" + replaced},
               {string("a\0b\0", 4), "a" + replaced + "b" + replaced},
               {string(9000, '\xE4'), many}};
  for (const auto &test : cases) {
    write("sheets/e.css", test.bytes);
    EXPECT_EQ(read("e.css"), test.expected) << test.bytes;
  }
  // With the encoding of a drawing, for sheets that do not tell their own.
  const string wide_a("a\0\xE4\0", 4), wide_b("\0a\0\xE4", 4), in_1252 = "a\x80",
                                                               euro = "\xE2\x82\xAC";
  const struct {
    string bytes;
    const char *encoding;
    string expected;
  } lenient[] = {{in_1252, "CP1252", "a" + euro},
                 {in_1252, "UTF-8", "a" + replaced},
                 {"\xEF\xBB\xBF" + euro, "CP1252", euro},
                 {"@charset \"UTF-8\";" + euro, "CP1252", "@charset \"UTF-8\";" + euro},
                 {wide_a, "CP1252", "a\xC3\xA4"},
                 {wide_b, "UTF-8", "a\xC3\xA4"},
                 {"\xFF\xFE" + wide_a, "UTF-8", "a\xC3\xA4"},
                 {"a", "CP1252", "a"}};
  for (const auto &test : lenient) {
    write("sheets/e.css", test.bytes);
    EXPECT_EQ(read("e.css", test.encoding), test.expected) << test.bytes;
  }
}

TEST(CssImport, SheetsAndTheirOrder) {
  const std::map<string, string> sheets = {{"d/one", "@import 'two'; a{p:one}"},
                                           {"d/two", "a{p:two}"},
                                           {"self", "@import './self#x'; a{p:self}"},
                                           {"ping", "@import 'pong'; a{p:ping}"},
                                           {"pong", "@import 'ping'; a{p:pong}"}};
  expect_cases(R"(
@import 'd/one'; a{p:0} -> a{p:0} a{p:one} a{p:two}
@import url(d/two);@import url( "d/one" )all; -> a{p:one} a{p:two} a{p:two}
@charset 'x'; <!-- @zzz; a,{} @IMPORT 'd/t\77o' tv,print -> a{p:two}
@import 'd/two' tv;@import 'd/two' print and (x); -> | @import 'd/two' {} a{p:1} -> a{p:1}
@import d/two; @import; @import 'd/two\n; a{p:1} -> a{p:1} | a{p:1} @import 'd/two'; -> a{p:1}
@media tv{} @import 'd/two'; -> | @import 'none'; a{p:1} -> a{p:1} 10200
@import 'self'; -> a{p:self} 10202 | @import 'ping'; -> a{p:ping} a{p:pong} 10202
@import 'top'; a{p:1} -> a{p:1} 10202 | @import ''; a{p:1} -> a{p:1} 10202
@import url('d/two') -> a{p:two} | @import url( d/t\77o ); -> a{p:two} | @import url('d/two -> a{p:two}
@import url(d/two -> a{p:two} | @import url(d/two x\)y) ; -> | @import url(d/two\\n); ->
@import url('d/two\n'); -> | @import 'd/two' '\n; -> | @import 'd/two' 7; ->)",
               [&](const std::string &sheet) {
                 AccountingCore core;
                 Host host{sheets};
                 Toy toy(core, &host.context);
                 toy.parse(sheet, "top");
                 std::string result = toy.rules("svg(a!)");
                 for (const Message &message : core.messages)
                   result += std::to_string(message.code);
                 return result;
               });
}

TEST(CssImport, DepthAndNumberHaveLimits) {
  AccountingCore core;
  Host host;
  for (int i = 0; i < 12; ++i)
    host.sheets["s" + std::to_string(i)] = "@import 's" + std::to_string(i + 1) + "';a{p:1}";
  Toy toy(core, &host.context);
  toy.parse("@import 's0';");
  EXPECT_EQ(host.asked, ORT_LIMIT_IMPORT_DEPTH);
  string many;
  for (int i = 0; i < ORT_LIMIT_IMPORTS + 9; ++i) many += "@import 'none';";
  toy.parse(many);
  EXPECT_EQ(host.asked, ORT_LIMIT_IMPORTS);
  string up = "@import '";
  for (int i = 0; i < 1000000; ++i) up += "a/../";
  toy.parse(up + "'" + many);
  EXPECT_EQ(host.asked, ORT_LIMIT_IMPORTS);
  for (const Message &message : core.messages) EXPECT_EQ(message.code, 10200);
}

TEST(CssExternal, RefusalsSayWhy) {
  const css_context none = {nullptr, nullptr, nullptr};
  const css_context endless = {nullptr,
                               [](void *, const char *, css_sheet_text *text) {
                                 const string piece(1 << 20, ' ');
                                 while (css_context_append(text, piece.data(), piece.size())) {
                                 }
                                 return css_context_append(text, "", 0) + 1;
                               },
                               nullptr};
  const std::tuple<const css_context *, size_t, const char *> cases[] = {
      {nullptr, 1, " refused: external style sheets are not allowed"},
      {&none, 4095, " refused: external style sheets are not allowed"},
      {&none, 4096, " refused: its name is too long"},
      {&endless, 1, "Style sheet 'a' refused: it is too long"}};
  for (const auto &[context, length, reason] : cases) {
    AccountingCore core;
    const string name(length, 'a');
    core.protect([&] {
      EXPECT_FALSE(css_read_external_stylesheet(core, name.c_str(), context, nullptr, 0));
    });
    ASSERT_EQ(core.messages.size(), 1U);
    EXPECT_TRUE(core.messages[0].text.ends_with(reason)) << core.messages[0].text;
  }
}
