// families.cpp: generated documents. They are the same in every run; a document of twice the size
// is twice as long and otherwise alike.
#include <cstdarg>
#include <random>

#include "bench/bench.h"

namespace {

// Text that is written piece by piece, and the random numbers that go into it.
class Writer {
public:
  explicit Writer(const char *head = "") {
    add("<svg xmlns=\"http://www.w3.org/2000/svg\" %s>\n", head);
  }

  __attribute__((format(printf, 2, 3))) void add(const char *format, ...) {
    char piece[512];
    va_list values;
    va_start(values, format);
    text_.append(piece, static_cast<size_t>(vsnprintf(piece, sizeof piece, format, values)));
    va_end(values);
  }

  int upto(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  double number(int limit) { return upto(2 * limit * 1000) / 1000.0 - limit; }
  double length(int limit) { return upto(limit * 100) / 100.0; }
  unsigned color() { return random_() & 0xffffff; }
  int64_t size() const { return static_cast<int64_t>(text_.size()); }

  std::string finish() {
    add("</svg>\n");
    return std::move(text_);
  }

private:
  std::string text_;
  std::mt19937 random_{7};
};

} // namespace

// The numbers of one path command, in the manner of a drawing program or of an icon.
static void add_operands(Writer &out, int count, bool compact) {
  for (int i = 0; i < count; ++i) {
    if (compact)
      out.add(i == 0 || out.upto(2) ? " %g" : ",%g", out.length(24));
    else
      out.add(i % 2 == 0 ? " %.3f" : ",%.3f", out.number(500));
  }
}

// Paths of about 2 KB: one half with many digits, the other short.
static std::string paths(int megabytes) {
  constexpr struct {
    char letter;
    int operands;
  } commands[] = {{'c', 6}, {'C', 6}, {'l', 2}, {'L', 2}, {'h', 1}, {'s', 4}, {'v', 1}, {'c', 6}};
  Writer out;
  for (bool compact = false; out.size() < megabytes * INT64_C(1000000); compact = !compact) {
    out.add("<path d=\"M");
    add_operands(out, 2, compact);
    for (const int64_t end = out.size() + 2000; out.size() < end;) {
      const auto &command = commands[out.upto(8)];
      out.add(" %c", command.letter);
      for (int run = out.upto(5); run >= 0; --run) add_operands(out, command.operands, compact);
    }
    out.add("z\"/>\n");
  }
  return out.finish();
}

static std::string lists(int megabytes) {
  Writer out;
  while (out.size() < megabytes * INT64_C(1000000)) {
    out.add("<g transform=\"translate(%.2f,%.2f) rotate(%.1f)\">\n", out.number(500),
            out.number(500), out.length(360));
    out.add("<g transform=\"matrix(%.4f 0 0 %.4f %.3f %.3f)\"><polyline points=\"", out.length(2),
            out.length(2), out.number(900), out.number(900));
    for (int i = out.upto(100) + 2; i > 0; --i)
      out.add("%.3f,%.3f ", out.number(500), out.number(500));
    out.add("\"/></g></g>\n");
  }
  return out.finish();
}

static std::string rectangles(int count) {
  Writer out;
  for (int i = 0; i < count; ++i)
    out.add("<rect id=\"rect%d\" x=\"%.2f\" y=\"%.2f\" width=\"%.2f\" height=\"%.2f\" rx=\"2\" "
            "fill=\"#%06x\" stroke=\"#%06x\" stroke-width=\"1.5\"/>\n",
            i, out.number(900), out.number(900), out.length(90), out.length(90), out.color(),
            out.color());
  return out.finish();
}

// One half of the references are by use, the other are paints.
static std::string references(int count) {
  Writer out("xmlns:xlink=\"http://www.w3.org/1999/xlink\"");
  for (int i = 0; i < count; i += 2) {
    out.add("<use xlink:href=\"#symbol%d\" x=\"%.2f\" y=\"%.2f\"/>\n", i, out.length(900),
            out.length(900));
    out.add("<circle cx=\"%.2f\" cy=\"%.2f\" r=\"%.2f\" fill=\"url(#gradient%d)\"/>\n",
            out.length(900), out.length(900), out.length(90), i);
  }
  for (int i = 0; i < count; i += 2) {
    out.add("<rect id=\"symbol%d\" width=\"%.2f\" height=\"%.2f\" fill=\"#%06x\"/>\n", i,
            out.length(90), out.length(90), out.color());
    out.add("<linearGradient id=\"gradient%d\"><stop offset=\"%.2f\" stop-color=\"#%06x\"/>"
            "<stop offset=\"1\" stop-color=\"#%06x\"/></linearGradient>\n",
            i, out.length(1), out.color(), out.color());
  }
  return out.finish();
}

static std::string styled(int elements) { return styled_document(elements, 200); }

static std::string nesting(int depth) {
  Writer out;
  for (int i = 0; i < depth; ++i) out.add("<g>\n");
  for (int i = 0; i < depth; ++i) out.add("</g>\n");
  return out.finish();
}

const std::vector<Family> families = {
    {"20 MB of path data", 20, paths},
    {"20 MB of points and transforms", 20, lists},
    {"200,000 rect with attributes and ids", 200000, rectangles},
    {"100,000 forward references", 100000, references},
    {"50,000 elements styled by 200 rules", 50000, styled},
    {"100,000-deep nesting", 100000, nesting},
};

// Each element matches a handful of rules, by its class, its name and what it lies in, as in
// drawings made by plotting programs and for the web; the number of rules does not change that.
std::string styled_document(int elements, int rules) {
  constexpr int kinds = 4;
  Writer out;
  out.add("<style type=\"text/css\">\n");
  for (int i = 0; i < rules; ++i) {
    constexpr const char *selectors[kinds] = {".c%d", "rect.c%d", "g .c%d", "g > .c%d"};
    out.add(selectors[i % kinds], i);
    out.add(" { fill: #%06x; stroke: #%06x; stroke-width: %d }\n", out.color(), out.color(),
            out.upto(9));
  }
  out.add("</style>\n");
  for (int i = 0; i < elements; i += 10) {
    out.add("<g>\n");
    for (int k = 0; k < 9; ++k)
      out.add("<rect class=\"c%d c%d\" x=\"%.2f\" y=\"%.2f\" width=\"%.2f\" height=\"%.2f\"/>\n",
              out.upto(rules), out.upto(rules), out.length(900), out.length(900), out.length(90),
              out.length(90));
    out.add("</g>\n");
  }
  return out.finish();
}

std::string icon_document() {
  Writer out("width=\"24\" height=\"24\" viewBox=\"0 0 24 24\"");
  out.add("<g fill=\"none\" stroke=\"#3465a4\" stroke-width=\"2\">\n");
  while (out.size() < 900) {
    out.add("<path d=\"M%.2f %.2fc1.5-.25 2.75.5 3.25 2l.5 4h%.1fz\" style=\"opacity:.8\"/>\n",
            out.length(24), out.length(24), out.length(9));
    out.add("<circle cx=\"%.1f\" cy=\"12\" r=\"3\"/>\n", out.length(24));
  }
  out.add("</g>\n");
  return out.finish();
}
