// scene_text.h: text laid out: from a text element to pieces that are painted, each at its place
// (SVG 1.1, chapter 10).
//
// The walk calls the functions at the end. scene_text.cpp gathers the pieces, scene_text_layout.cpp
// places them, scene_text_paint.cpp paints them. All of a text lies on the scene's stack (scene.h)
// until the walk releases it. What takes memory raises ORT_E_NO_MEMORY; pieces and characters count
// as shown elements, 64 characters as one, and raise ORT_E_LIMIT.
#ifndef SCENE_TEXT_H
#define SCENE_TEXT_H

#include "scene/scene_fonts.h"
#include "scene/scene_length.h"
#include "scene/scene_walk.h"

// The path that a textPath follows.
struct svg_scene_track {
  svg_scene_text_path path;
  const svg_scene_ruler *measure; // null: nothing is shown
};

// An element of a text, with what its own characters have in common.
struct svg_scene_span {
  const svg_scene_span *outer;
  const svg_e_node *element;
  const svg_scene_style *style;
  svg_scene_font *font;                // of the drawing; null: the host's
  const svg_scene_track *track;        // its own or that of an element around it, or null
  const svg_scene_text_length *length; // the same
  const svg_e_node *link;              // the same: an a with a target
  double baseline;                     // by which its baseline lies below that of the text
  bool preserves_space;
  bool is_resolved; // paints and decorations are known
  svg_scene_paint fill, stroke;
  const svg_scene_decoration *decorations; // with those of the elements around it
  size_t decoration_count;
};

// Characters that are placed and painted together.
struct svg_scene_piece {
  svg_scene_piece *next;
  svg_scene_span *span;
  char *text;
  size_t size;       // bytes; 0 of a piece whose blank at the end of the text is gone
  size_t characters; // addressable ones
  uint32_t flags;    // SVG_RUN_X, _Y, _CHUNK
  double x, y, dx, dy, rotate;
  double turn;     // of its characters in vertical text, in degrees
  bool is_upright; // there: its one character stands below the one before
  // From the layout on:
  double advance, spacing, stretch;
  bool is_measured; // advance is known
  bool is_placed;   // x and y are where it is drawn, dx and dy are in it
  bool is_off;      // it lies beside its path, or a number overflows: it is not shown
};

// An element with textLength: its pieces are stretched.
struct svg_scene_stretch {
  svg_scene_stretch *next;
  const svg_scene_text_length *to;
  svg_scene_piece *before, *last; // its pieces are those after before (null: the first) up to last
};

struct svg_scene_text {
  svg_scene_walk *walk;
  const svg_scene_frame *frame;
  svg_scene_piece *first, *last; // null: none
  svg_scene_stretch *stretches;  // inner ones first
  svg_scene_stretch *last_stretch;
  bool is_measured;  // by the host
  bool is_vertical;  // its lines go down (SVG 1.1, 10.7)
  bool has_looked;   // for its box
  const double *box; // null: none
  double room[4];
};

// ---- Gathering (scene_text.cpp) -----------------------------------------------------------------

// Gathers the pieces of a text element whose frame is not pushed.
void svg_scene_gather_text(svg_scene_text *text);

// ---- Layout (scene_text_layout.cpp) -------------------------------------------------------------

void svg_scene_place_text(svg_scene_text *text);

// The glyphs of a piece in a font of the drawing, one after the other.
class svg_scene_glyph_run {
public:
  svg_scene_glyph_run(svg_scene *scene, const svg_scene_piece &piece)
      : scene_(scene), piece_(piece) {}

  // False at the end. x receives where the glyph begins along the line, in user units and without
  // stretch.
  bool next(const svg_scene_glyph **glyph, double *x);
  double end() const { return x_; } // where the last one ended

private:
  svg_scene *scene_;
  const svg_scene_piece &piece_;
  size_t at_ = 0;
  double x_ = 0;
  const svg_scene_glyph *left_ = nullptr;
};

// ---- Painting (scene_text_paint.cpp) ------------------------------------------------------------

// The run of a piece as a host is told, without its paints.
void svg_scene_make_run(const svg_scene_text *text, const svg_scene_piece *piece,
                        svg_scene_run *run);

// ---- What the walk calls ------------------------------------------------------------------------

// Shows the text of a frame that is not pushed: paints it, or measures it where its length is
// known, by the cells of its characters: of fonts of the drawing exactly, of others from 0.8 em
// above the baseline to 0.2 em below. matrix is the one from its user space to that of the group
// around.
void svg_scene_show_text(svg_scene_walk *walk, svg_scene_frame *frame, const double matrix[6]);

#endif
