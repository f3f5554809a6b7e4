// The events of the first pass are played in the second: nobody may notice, however little memory
// there is.
#include <gtest/gtest.h>

#include "svg/parser/svg_parser.h"
#include "tests/support/whole.h"

static std::string times(int count, const std::string &text) {
  std::string result;
  for (int i = 0; i < count; ++i) {
    result += text;
    for (size_t at = 0; (at = result.find('$', at)) != result.npos;)
      result.replace(at, 1, std::to_string(i));
  }
  return result;
}

namespace {

struct Reading {
  std::string result, log;
  uint64_t peak;
  bool played; // to the end
};

// Serves any external sheet.
const css_context HOST = {nullptr,
                          [](void *, const char *, css_sheet_text *text) {
                            const std::string sheet = times(50, ".a{stroke:#00000$;font:$px a,b}");
                            return css_context_append(text, sheet.data(), sheet.size());
                          },
                          nullptr};

} // namespace

static Reading read(const std::string &drawing, uint64_t budget, int log_level, uint64_t recorded,
                    int block_size = SVG_BLOCK_SIZE) {
  CoreOptions options = AccountingCore::with_log(log_level);
  options.memory_budget = budget;
  Document document(drawing, options, [=](svg_parser *p) {
    p->css_context_ = &HOST;
    p->limits.recorded = recorded;
    p->block_size = block_size;
  });
  if (document.code == 0) EXPECT_EQ(svg_xml_line(document.parser), 0);
  ort_statistics statistics;
  ort_get_statistics(document.core, &statistics);
  EXPECT_LE(statistics.peak_bytes, budget);
  return {whole_text(document), document.core.log, statistics.peak_bytes,
          document.parser->to_skip > 0};
}

TEST(Recording, ChangesNothingWithAnyMemoryBudget) {
  const std::pair<const char *, std::string> drawings[] = {
      {"elements", times(999, "<g/>")},
      {"depth", times(999, "<g>") + times(999, "</g>")},
      {"paths before skipped elements",
       times(8, "<path d='M0 0L" + times(2000, "1 ") + "'/>") + "<x:x xmlns:x='u'>" +
           times(150, "<b c='" + times(400, "d") + "'/>") + "</x:x>"},
      {"skipped elements before paths", "<x>" + times(150, "<b c='" + times(400, "d") + "'/>") +
                                            "</x>" +
                                            times(8, "<path d='M0 0L" + times(2000, "1 ") + "'/>")},
      {"skipped elements before a large one",
       "<x>" + times(1500, "<b c='$'/>") + "<b c='" + times(99999, "d") + "'/></x>"},
      {"names", "<g" + times(999, " long-name-$='$'") + "/>" + times(99, "<g/>")},
      {"texts", "<text>" + times(300, "\n&lt;") + "</text>" + times(300, "<text>a\nb</text>\n")},
      {"title", "<title>" + times(999, "<b>x</b>") + "</title><g id='a'/>"},
      {"ids", times(200, "<g id='g$'><use xlink:href='#g$'/><image xlink:href='data:,$'/></g>\n")},
      {"sheet after elements", times(300, "<g class='a b'/>\n") + "<style>" +
                                   times(50, ".a{fill:#00000$;font:$px a,b}") + "</style>"},
      {"external sheets",
       times(9, "<?xml-stylesheet type='text/css' href='$'?>") + times(300, "<g class='a b'/>\n")},
      {"an error", times(200, "<rect width='$x'/>\n") + "<g><!--" + times(30000, "-") + "</a>"},
  };
  for (const auto &[name, content] : drawings)
    for (const int log_level : {0, 4}) {
      const std::string drawing =
          "<svg xmlns:xlink='http://www.w3.org/1999/xlink'>" + content + "</svg>";
      const Reading plenty = read(drawing, 1 << 26, log_level, 1 << 20);
      EXPECT_EQ(plenty.played, plenty.result.starts_with("code 0\n")) << name;
      const uint64_t enough = read(drawing, 1 << 26, log_level, 1).peak;
      for (uint64_t budget = enough / 2; budget < 4 * enough; budget += budget / 16) {
        const Reading twice = read(drawing, budget, log_level, 1);
        const Reading recorded = read(drawing, budget, log_level, 1 << 20);
        ASSERT_EQ(recorded.result, twice.result) << name << ": " << budget;
        ASSERT_EQ(recorded.log, twice.log) << name << ": " << budget;
      }
    }
}

// The rest of the recording gives way to a host that takes all memory while it is played.
TEST(Recording, GivesWayWhileItIsPlayed) {
  const std::string drawing = "<svg>" + times(999, "<g id='$'/>") + "</svg>";
  for (const char *at : {"0", "500", "998"}) {
    static std::string element;
    static bool given;
    element = at;
    given = false;
    const Document document(drawing, AccountingCore::defaults(), [](svg_parser *p) {
      svg_set_element_observer(
          p,
          [](void *user, const svg_e_node *, uint32_t, const svg_written_attr *attrs,
             size_t count) {
            auto *core = static_cast<ort_core *>(user);
            if (count == 0 || attrs[0].value != element) return;
            void *all = ort_try_malloc(core, ort_memory_left(core) + 1, "test");
            given = all != nullptr;
            ort_free(core, all);
          },
          p->core);
    });
    EXPECT_EQ(given, element != "998") << "the last block is being played";
    EXPECT_EQ(whole_text(document), whole_text(Document(drawing)));
  }
}

// At log level 4 each tag shows its line, at level 0 the messages do.
TEST(Recording, CountsLinesAsExpatDoes) {
  const std::string lines =
      "<?a\nb?>\n<!DOCTYPE svg [\n<!ENTITY e '\n<g x=\"y\n\" width=\"z\"/>\n'>\n]>"
      "<svg\n>\n\n<style>\n</style><rect width='a'\n/>&e;<rect\n\ny='\na'/>"
      "a\n<![CDATA[\n]]>\nb<!--\n\n--><rect x='a'/><title>\n<a>\n</a></title>" +
      times(3000, " ") + "<rect x='b'/>\n</svg>\n";
  for (const char *end : {"\n", "\r", "\r\n", "\n\r"})
    for (const int wide : {0, 1, 2}) { // with a mark and without
      std::string drawing = wide == 1 ? "\xFF\xFE" : "";
      for (const char c : lines) {
        const std::string written = c == '\n' ? end : std::string(1, c);
        for (const char byte : written)
          drawing += wide ? std::string{byte, '\0'} : std::string{byte};
      }
      for (const int level : {0, 4})
        for (const int block : {5, 64, SVG_BLOCK_SIZE}) {
          const Reading twice = read(drawing, 1 << 26, level, 1, block);
          const Reading recorded = read(drawing, 1 << 26, level, 1 << 20, block);
          EXPECT_EQ(recorded.result, twice.result) << wide << block;
          EXPECT_EQ(recorded.log, twice.log) << wide << block;
          EXPECT_NE(twice.result.find(", line "), std::string::npos);
        }
    }
}
