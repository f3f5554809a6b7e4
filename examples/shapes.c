/* shapes.c: a host in C. Lists the shapes of drawings with their fills, and the extents of paths.
 *
 *   cc -std=c11 shapes.c $(pkg-config --cflags --libs svgreader) -o shapes
 */
#include <math.h>
#include <stdio.h>

#include <svgreader/svg/svg.h>

/* What one drawing needs. An error leaves read_drawing at once; what exists by then is here. */
struct drawing {
  ort_core *core;
  const char *path;
  ort_file *file;
  ort_gz *gz;
  svg_parser *parser;
  svg_e_node *svg;
};

static void read_drawing(void *argument) {
  struct drawing *d = argument;
  const svg_limits limits = {.depth = 1000}; /* list_shapes recurses */
  svg_register_errtab(d->core);
  d->file = ort_fopen(d->core, d->path);
  if (ort_is_gzip(d->file)) d->gz = ort_gzopen(d->file);
  d->parser = svg_parser_new(d->core, 0, d->path, NULL, NULL, NULL, 0, NULL, 0, NULL, NULL);
  svg_set_limits(d->parser, &limits);
  d->svg = svg_parse(d->parser, d->file, &d->gz, NULL, NULL, NULL, NULL, NULL, NULL);
}

static void print_fill(const svg_parser *parser, const svg_a_node *fill) {
  switch (fill != NULL ? (int)fill->kind : SVG_PAINT_INHERIT) {
  case SVG_PAINT_NONE: printf("none"); break;
  case SVG_PAINT_INHERIT: printf("black"); break; /* from nobody: the initial value */
  case SVG_PAINT_CURRENTCOLOR: printf("currentColor"); break;
  case SVG_PAINT_RGB: printf("#%06x", (unsigned)((const svg_an_paint_rgb *)fill)->rgb); break;
  case SVG_PAINT_COLOR:
    printf("#%06x", (unsigned)((const svg_an_paint_color *)fill)->color.rgb);
    break;
  case SVG_PAINT_IRI: {
    const svg_iri *iri = &((const svg_an_paint_iri *)fill)->iri;
    const int found = iri->kind == SVG_IRI_LINK && iri->ref.target != NULL;
    printf("url(#%s)", found ? svg_find_href_id(parser, iri->ref.target) : "?");
  }
  }
}

static void print_extent(const svg_an_path_data *path) {
  double left = HUGE_VAL, top = HUGE_VAL, right = -HUGE_VAL, bottom = -HUGE_VAL;
  size_t count;
  const svg_pada *segments = svg_get_segments(path, &count);
  for (size_t i = 0; i < count; ++i) {
    for (int k = 0; k < segments[i].count; ++k) {
      const double *point = segments[i].points + 2 * k;
      if (point[0] < left) left = point[0];
      if (point[1] < top) top = point[1];
      if (point[0] > right) right = point[0];
      if (point[1] > bottom) bottom = point[1];
    }
  }
  if (left <= right) printf(", extent %g,%g to %g,%g", left, top, right, bottom);
}

static void list_shapes(const svg_parser *parser, svg_e_node *element, const svg_a_node *fill) {
  const svg_a_node *own_fill = svg_find_value(element, "fill");
  if (own_fill != NULL && own_fill->kind != SVG_PAINT_INHERIT) fill = own_fill;
  switch (element->head.id) {
  case SVG_ELEM_circle:
  case SVG_ELEM_ellipse:
  case SVG_ELEM_line:
  case SVG_ELEM_path:
  case SVG_ELEM_polygon:
  case SVG_ELEM_polyline:
  case SVG_ELEM_rect: {
    const svg_an_path_data *path = (const svg_an_path_data *)svg_find_value(element, "d");
    printf("%s, fill ", svg_get_elem_table()[element->head.id].name);
    print_fill(parser, fill);
    if (path != NULL) print_extent(path);
    putchar('\n');
  }
  }
  for (svg_node *child = element->first_child; child != NULL; child = child->next)
    if (svg_as_element(child)) list_shapes(parser, svg_as_element(child), fill);
}

int main(int argc, char **argv) {
  int status = 0;
  for (int i = 1; i < argc; ++i) {
    struct drawing d = {.core = ort_core_new(NULL), .path = argv[i]};
    if (d.core == NULL) return 2;
    const int error = ort_protect(d.core, read_drawing, &d);
    if (error == 0) list_shapes(d.parser, d.svg, NULL);
    if (error != 0) status = fprintf(stderr, "%s: %s\n", d.path, ort_error_text(d.core)) != 0;
    svg_parser_delete(d.parser), ort_gzclose(d.gz), ort_fclose(d.file), ort_core_delete(d.core);
  }
  return status;
}
