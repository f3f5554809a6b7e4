// svg_transform.cpp: transform lists: what was written, or one composed matrix.
//
// Called by svg_parse_attr: the rows of transforms have an allocator, because the size of the
// record depends on the text. Bad text is raised with svg_err_value, before anything is allocated;
// raises for lack of memory.
#include <cstddef>
#include <cstring>

#include "svg/values/svg_errors.h"
#include "svg/values/svg_scan.h"
#include "svg/values/svg_types.h"

static int svg_get_trafo(svg_scanner *p, int keyword, ort_matrix *matrix, double parameters[3]);
static void turn_about(ort_matrix *rotation, double x, double y);
static svg_a_node *new_record(svg_parser *p, int type, const double *numbers, size_t count);

svg_a_node *svg_anew_an_trafo(svg_parser *p) {
  ort_matrix matrix = {};
  double parameters[3] = {};
  svg_ntok_nonum(p);
  int type = svg_get_trafo(p, svg_ctok_as_key(p), &matrix, parameters);
  while (svg_ntok_nonum(p) != SVG_TOK_END) {
    while (p->tok_type == SVG_TOK_COMMA) svg_ntok_nonum(p);
    ort_matrix next = {};
    svg_get_trafo(p, svg_ctok_as_key(p), &next, parameters);
    ort_multiply_matrix(&next, &matrix); // what is written last acts first
    type = SVG_TRAFO_MATRIX;
  }
  // Infinite numbers can make a product that is none: no token is at fault, but all of them.
  if (type == SVG_TRAFO_MATRIX && !ort_is_matrix(&matrix)) svg_err_rest(p, p->scan_start);

  switch (type) {
  case SVG_TRAFO_MATRIX: {
    const double numbers[] = {matrix.a, matrix.b, matrix.c, matrix.d, matrix.e, matrix.f};
    return new_record(p, type, numbers, 6);
  }
  case SVG_TRAFO_SCALE_XY:
  case SVG_TRAFO_TRANSLATE_XY: return new_record(p, type, parameters + 1, 2);
  case SVG_TRAFO_SCALE:
  case SVG_TRAFO_TRANSLATE: return new_record(p, type, parameters + 1, 1);
  default: return new_record(p, type, parameters, 1);
  }
}

static int svg_get_trafo(svg_scanner *p, int keyword, ort_matrix *matrix, double parameters[3]) {
  if (svg_ntok(p) != SVG_TOK_LPAREN) svg_err_value(p);
  const double first = svg_get_num(p);
  int type = SVG_TRAFO_MATRIX;
  switch (keyword) {
  case SVG_KW_matrix: {
    double rest[5];
    for (double &number : rest) number = svg_get_sep_num(p);
    *matrix = {first, rest[0], rest[1], rest[2], rest[3], rest[4]};
    break;
  }
  case SVG_KW_rotate:
    parameters[0] = first;
    ort_rotation_matrix(matrix, first);
    if (svg_ntok(p) == SVG_TOK_RPAREN) return SVG_TRAFO_ROTATE;
    parameters[1] = svg_chk_sep_num(p);
    parameters[2] = svg_get_sep_num(p);
    turn_about(matrix, parameters[1], parameters[2]);
    break;
  case SVG_KW_scale:
    parameters[1] = first;
    ort_scale_matrix(matrix, first, first);
    if (svg_ntok(p) == SVG_TOK_RPAREN) return SVG_TRAFO_SCALE;
    parameters[2] = svg_chk_sep_num(p);
    ort_scale_matrix(matrix, first, parameters[2]);
    type = SVG_TRAFO_SCALE_XY;
    break;
  case SVG_KW_skewX:
    parameters[0] = first;
    ort_skew_matrix(p->core, matrix, 0, first);
    type = SVG_TRAFO_SKEW_X;
    break;
  case SVG_KW_skewY:
    parameters[0] = first;
    ort_skew_matrix(p->core, matrix, first, 0);
    type = SVG_TRAFO_SKEW_Y;
    break;
  case SVG_KW_translate:
    parameters[1] = first;
    ort_translation_matrix(matrix, first, 0);
    if (svg_ntok(p) == SVG_TOK_RPAREN) return SVG_TRAFO_TRANSLATE;
    parameters[2] = svg_chk_sep_num(p);
    ort_translation_matrix(matrix, first, parameters[2]);
    type = SVG_TRAFO_TRANSLATE_XY;
    break;
  default: ort_internal_error(p->core, __func__, __LINE__);
  }
  if (svg_ntok(p) != SVG_TOK_RPAREN) svg_err_value(p);
  return type;
}

// Makes a rotation about the origin one about (x, y).
static void turn_about(ort_matrix *rotation, double x, double y) {
  ort_matrix to_origin = {};
  ort_matrix turned = {};
  ort_translation_matrix(&to_origin, -x, -y);
  ort_translation_matrix(&turned, x, y);
  ort_multiply_matrix(rotation, &turned);
  ort_multiply_matrix(&to_origin, &turned);
  *rotation = turned;
}

static svg_a_node *new_record(svg_parser *p, int type, const double *numbers, size_t count) {
  const size_t size = offsetof(svg_an_trafo, numbers) + count * sizeof(double);
  auto *record = reinterpret_cast<svg_an_trafo *>(svg_a_node_new(p, size));
  record->type = type;
  memcpy(record->numbers, numbers, count * sizeof(double));
  return &record->head;
}
