/* plot.c: a host in C for a pen plotter. Writes all that a drawing shows as lines in millimeters.
 *
 *   cc -std=c11 plot.c $(pkg-config --cflags --libs svgreader) -o plot
 */
#include <stdio.h>

#include <svgreader/scene/svg_scene.h>

enum { STEPS = 8 }; /* lines for each curve */

/* What one drawing needs. An error leaves plot_drawing at once; what exists by then is here. */
struct drawing {
  ort_core *core;
  const char *path;
  ort_file *file;
  ort_gz *gz;
  svg_parser *parser;
  svg_scene *scene;
};

/* A point of a shape on the sheet of paper. */
static void print_point(const svg_scene_item *item, double x, double y) {
  const double *m = item->ctm, mm = 25.4 / 96;
  printf(" %.2f,%.2f", (m[0] * x + m[2] * y + m[4]) * mm, (m[1] * x + m[3] * y + m[5]) * mm);
}

static void print_curve(const svg_scene_item *item, const double *from, const double *p) {
  for (int i = 1; i <= STEPS; ++i) {
    const double t = (double)i / STEPS, s = 1 - t;
    const double a = s * s * s, b = 3 * s * s * t, c = 3 * s * t * t, d = t * t * t;
    print_point(item, a * from[0] + b * p[0] + c * p[2] + d * p[4],
                a * from[1] + b * p[1] + c * p[3] + d * p[5]);
  }
}

/* The pen has the color of the stroke, or of the fill where there is none. */
static void plot_shape(void *user, const svg_scene_shape *shape) {
  const int has_stroke = shape->stroke.kind != SVG_SCENE_PAINT_NONE;
  const svg_scene_paint *paint = has_stroke ? &shape->stroke : &shape->fill;
  const double start[2] = {0, 0}, *first = start, *last = start;
  (void)user;
  printf("pen #%06x", (unsigned)paint->rgb);
  for (size_t i = 0; i < shape->segment_count; ++i) {
    const svg_pada *run = &shape->segments[i];
    switch (run->type) {
    case SVG_PADA_MOVETO:
      first = run->points;
      printf("\n ");
      print_point(&shape->item, first[0], first[1]);
      break;
    case SVG_PADA_LINETO:
      for (int k = 0; k < run->count; ++k)
        print_point(&shape->item, run->points[2 * k], run->points[2 * k + 1]);
      break;
    case SVG_PADA_CURVETO:
      for (int k = 0; k < run->count; k += 3) {
        print_curve(&shape->item, k == 0 ? last : run->points + 2 * (k - 1), run->points + 2 * k);
      }
      break;
    case SVG_PADA_CLOSEPATH: print_point(&shape->item, first[0], first[1]); break;
    }
    last = run->count > 0 ? run->points + 2 * (run->count - 1) : first;
  }
  putchar('\n');
}

static void plot_drawing(void *argument) {
  static const svg_scene_callbacks callbacks = {.shape = plot_shape};
  struct drawing *d = argument;
  svg_register_errtab(d->core);
  d->file = ort_fopen(d->core, d->path);
  if (ort_is_gzip(d->file)) d->gz = ort_gzopen(d->file);
  d->parser = svg_parser_new(d->core, 0, d->path, NULL, NULL, NULL, 0, NULL, 0, NULL, NULL);
  svg_e_node *svg = svg_parse(d->parser, d->file, &d->gz, NULL, NULL, NULL, NULL, NULL, NULL);
  d->scene = svg_scene_new(d->parser, svg, NULL);
  svg_scene_paint_element(d->scene, NULL, &callbacks, NULL);
}

int main(int argc, char **argv) {
  int status = 0;
  for (int i = 1; i < argc; ++i) {
    struct drawing d = {.core = ort_core_new(NULL), .path = argv[i]};
    if (d.core == NULL) return 2;
    if (ort_protect(d.core, plot_drawing, &d) != 0)
      status = fprintf(stderr, "%s: %s\n", d.path, ort_error_text(d.core)) != 0;
    svg_scene_delete(d.scene), svg_parser_delete(d.parser);
    ort_gzclose(d.gz), ort_fclose(d.file), ort_core_delete(d.core);
  }
  return status;
}
