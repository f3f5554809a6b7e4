// shapes.cpp: a host in C++. Lists the shapes of drawings, with fills and the extents of paths.
// An error leaves the reader by a jump that runs no destructors: the protected function makes no
// object that has one, and all else is done outside of it.
#include <cmath>
#include <cstdio>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include <svgreader/svg/svg.h>

struct Drawing {
  const char *path;
  ort_core *core = ort_core_new(nullptr);
  ort_file *file = nullptr;
  ort_gz *gz = nullptr; // the reader may replace it
  svg_parser *parser = nullptr;
  svg_e_node *svg = nullptr;
  ~Drawing() {
    svg_parser_delete(parser), ort_gzclose(gz), ort_fclose(file), ort_core_delete(core);
  }
};

static void read(void *argument) { // protected
  auto &d = *static_cast<Drawing *>(argument);
  svg_register_errtab(d.core);
  d.file = ort_fopen(d.core, d.path);
  if (ort_is_gzip(d.file)) d.gz = ort_gzopen(d.file);
  d.parser = svg_parser_new(d.core, 0, d.path, {}, {}, {}, 0, {}, 0, {}, {});
  d.svg = svg_parse(d.parser, d.file, &d.gz, {}, {}, {}, {}, {}, {});
}

static const std::set<std::string_view> shapes = {"circle",  "ellipse",  "line", "path",
                                                  "polygon", "polyline", "rect"};

template <class Record> static const Record &as(const svg_a_node *value) {
  return *reinterpret_cast<const Record *>(value);
}

static void print_fill(const svg_parser *parser, const svg_a_node *fill) {
  switch (fill ? int{fill->kind} : SVG_PAINT_INHERIT) {
  case SVG_PAINT_NONE: std::printf("none"); break;
  case SVG_PAINT_INHERIT: std::printf("black"); break; // from nobody: the initial value
  case SVG_PAINT_CURRENTCOLOR: std::printf("currentColor"); break;
  case SVG_PAINT_RGB: std::printf("#%06x", as<svg_an_paint_rgb>(fill).rgb); break;
  case SVG_PAINT_COLOR: std::printf("#%06x", as<svg_an_paint_color>(fill).color.rgb); break;
  case SVG_PAINT_IRI:
    const svg_iri &iri = as<svg_an_paint_iri>(fill).iri;
    const svg_e_node *target = iri.kind == SVG_IRI_LINK ? iri.ref.target : nullptr;
    std::printf("url(#%s)", target ? svg_find_href_id(parser, target) : "?");
  }
}

static void print_extent(const svg_an_path_data &path) {
  double low[2] = {HUGE_VAL, HUGE_VAL}, high[2] = {-HUGE_VAL, -HUGE_VAL};
  size_t count;
  const svg_pada *segments = svg_get_segments(&path, &count);
  for (size_t i = 0; i < count; ++i) {
    for (int k = 0; k < 2 * segments[i].count; ++k) {
      low[k % 2] = std::fmin(low[k % 2], segments[i].points[k]);
      high[k % 2] = std::fmax(high[k % 2], segments[i].points[k]);
    }
  }
  if (low[0] <= high[0]) std::printf(", extent %g,%g to %g,%g", low[0], low[1], high[0], high[1]);
}

// Without recursion: a drawing may nest its elements a million deep.
static void list_shapes(const svg_parser *parser, svg_e_node *svg) {
  std::vector<std::pair<svg_node *, const svg_a_node *>> waiting{{&svg->head, nullptr}};
  while (!waiting.empty()) {
    auto [node, fill] = waiting.back();
    waiting.pop_back();
    if (node->next) waiting.emplace_back(node->next, fill);
    const svg_e_node *element = svg_as_element(node);
    if (!element) continue;
    const svg_a_node *own_fill = svg_find_value(element, "fill");
    if (own_fill && own_fill->kind != SVG_PAINT_INHERIT) fill = own_fill;
    if (element->first_child) waiting.emplace_back(element->first_child, fill);
    const char *name = svg_get_elem_table()[node->id].name;
    if (shapes.count(name) == 0) continue;
    std::printf("%s, fill ", name);
    print_fill(parser, fill);
    if (const auto *d = svg_find_value(element, "d")) print_extent(as<svg_an_path_data>(d));
    std::putchar('\n');
  }
}

int main(int argc, char **argv) {
  int status = 0;
  for (int i = 1; i < argc; ++i) {
    Drawing d{argv[i]};
    if (!d.core) return 2;
    if (ort_protect(d.core, read, &d) == 0)
      list_shapes(d.parser, d.svg);
    else
      status = std::fprintf(stderr, "%s: %s\n", d.path, ort_error_text(d.core)) != 0;
  }
  return status;
}
