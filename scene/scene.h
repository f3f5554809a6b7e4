// scene.h: what the files of the scene share: the scene itself, its memory, lengths and values of
// elements, messages.
//
// A call of a host comes to scene_walk.cpp (what is painted), scene_style.cpp (what holds) or
// scene_geometry.h (where it lies); all of them raise as the public header says. The room knows the
// reader by its public headers alone.
#ifndef SCENE_SCENE_H
#define SCENE_SCENE_H

#include "scene/svg_scene.h"

// ---- Memory (scene_memory.cpp) ------------------------------------------------------------------

// All that a call makes is laid on one stack: what was made after a mark goes when the mark is
// released. Blocks stay where they are. Walks within walks keep to the order, and an error releases
// what the walk has left.
struct svg_scene_chunk {
  svg_scene_chunk *before, *after; // after: kept in reserve, or null
  size_t size;                     // bytes that follow this head
};

struct svg_scene_mark {
  svg_scene_chunk *chunk;
  size_t used; // bytes of the chunk
};

// Elements (scene_circles.cpp).
struct svg_scene_set {
  const svg_e_node **slots; // a hash table with open addressing; null where it is free
  size_t size, count;       // a power of 2, or 0
};

// The gradients and patterns that were looked at (scene_servers.h).
struct svg_scene_server;
struct svg_scene_server_table {
  svg_scene_server **slots; // a hash table with open addressing; null where it is free
  size_t size, count;       // a power of 2, or 0
  uint32_t round;           // of questions
};

struct svg_scene_walk; // scene_walk.h
struct svg_scene_font; // scene_fonts.h

struct svg_scene {
  svg_parser *parser;
  ort_core *core;
  svg_e_node *svg;           // the outermost element
  svg_scene_options options; // dpi and medium are not 0
  double size[2];            // width and height of the drawing
  svg_scene_chunk bottom;    // of the stack; empty
  svg_scene_mark top;
  svg_scene_mark result, result_end; // where the last result of a question lies on the stack
  svg_scene_set active;              // shown by walks in progress: no link may lead there
  svg_scene_set warned;
  svg_scene_server_table servers;
  svg_scene_font *fonts; // those that texts have used (scene_fonts.h)
  uint64_t shown;        // elements by the outermost walk and all within it
  uint64_t limit;        // for them
  svg_scene_walk *walk;  // the innermost one in progress, or null
};

// Zeroed memory on the stack, aligned to 8 bytes.
void *svg_scene_take(svg_scene *scene, size_t size);

void *svg_scene_take_room(svg_scene *scene, size_t size); // not zeroed

template <class T> T *svg_scene_take_array(svg_scene *scene, size_t count) {
  static_assert(alignof(T) <= 8);
  if (count > SIZE_MAX / 2 / sizeof(T)) count = SIZE_MAX / 2 / sizeof(T); // no budget has so much
  return static_cast<T *>(svg_scene_take(scene, count * sizeof(T)));
}

template <class T> T *svg_scene_take_one(svg_scene *scene) {
  return svg_scene_take_array<T>(scene, 1);
}

void svg_scene_release(svg_scene *scene, svg_scene_mark mark); // back to what scene->top was

// For questions whose result stays on the stack until the next one: begin forgets the last result,
// when nothing was laid upon it; end keeps what was made since then.
void svg_scene_begin_result(svg_scene *scene);
void svg_scene_end_result(svg_scene *scene);

// ---- Lengths (scene_values.cpp) -----------------------------------------------------------------

// Where an element stands: what its lengths are relative to.
struct svg_scene_place {
  const svg_e_node *element;
  const svg_scene_style *style; // its computed style
  double viewport[2];           // width and height of the nearest one
};

// What a percentage is a part of: the viewport's width, its height, or (SVG 1.1, 7.10) its diagonal
// by the square root of 2.
enum svg_scene_axis { SVG_SCENE_X, SVG_SCENE_Y, SVG_SCENE_OTHER };

// A length in user units. A unit that is no length's counts as none.
double svg_scene_get_length(const svg_scene *scene, double value, int unit, svg_scene_axis axis,
                            double font_size, const double viewport[2]);

// ---- Attributes (scene_values.cpp) --------------------------------------------------------------

// The value of an attribute (not of a property) by its row, or null.
const svg_a_node *svg_scene_find(const svg_e_node *element, int row);

template <class Record> const Record *svg_scene_find(const svg_e_node *element, int row) {
  return reinterpret_cast<const Record *>(svg_scene_find(element, row));
}

// The length of an attribute in user units; otherwise when the element has none.
double svg_scene_length_of(const svg_scene *scene, const svg_scene_place &place, int row,
                           svg_scene_axis axis, double otherwise);

// The keyword of an attribute; otherwise when the element has none.
int32_t svg_scene_keyword_of(const svg_e_node *element, int row, int32_t otherwise);

// The matrix of transform, gradientTransform or patternTransform; the identity when the element has
// none.
void svg_scene_matrix_of(const svg_e_node *element, int row, double matrix[6]);

// preserveAspectRatio, as in svg_an_aspect.
struct svg_scene_aspect {
  int32_t align, meet;
};
svg_scene_aspect svg_scene_aspect_of(const svg_e_node *element);

// The element that xlink:href links to, or null.
const svg_e_node *svg_scene_href_of(const svg_e_node *element);

// The target of an a element; null for other elements and for one without.
const svg_iri *svg_scene_link_of(const svg_e_node *element);

// ---- Style (scene_style.cpp) --------------------------------------------------------------------

// The style of an element from that of its parent (null: from initial values). style must not be
// parent; what it points to lies on the stack or belongs to the parser or to the parent's. False
// when the element has no properties of its own.
bool svg_scene_compute_style(svg_scene *scene, const svg_e_node *element,
                             const svg_scene_style *parent, const double viewport[2],
                             svg_scene_style *style);

// True when some property is declared for the element.
bool svg_scene_has_properties(const svg_e_node *element);

// The place of an element in the tree; its style lies on the stack.
void svg_scene_find_place(svg_scene *scene, const svg_e_node *element, svg_scene_place *place);

// The same, and visits the places of all elements around it on the way, outer ones first.
void svg_scene_go_down(svg_scene *scene, const svg_e_node *element, svg_scene_place *place,
                       void (*visit)(void *user, const svg_scene_place &around), void *user);

// The same, but the viewport is that of its children. A null element is outside of the drawing.
void svg_scene_find_inside(svg_scene *scene, const svg_e_node *element, svg_scene_place *place);

// ---- Sets of elements (scene_circles.cpp) -------------------------------------------------------

bool svg_scene_has(const svg_scene_set &set, const svg_e_node *element);

// False when it was in the set before; else it is until svg_scene_leave.
bool svg_scene_enter(svg_scene *scene, svg_scene_set *set, const svg_e_node *element);
void svg_scene_leave(svg_scene_set *set, const svg_e_node *element);

// ---- Messages (scene.cpp) -----------------------------------------------------------------------

// Warnings that name an element; each gets one at most.
enum svg_scene_warning {
  SVG_SCENE_CIRCLE = 10400, // what it refers to refers to it
  SVG_SCENE_DEEP = 10401    // ORT_LIMIT_REFERENCE_DEPTH
};
void svg_scene_warn(svg_scene *scene, svg_scene_warning warning, const svg_e_node *element);

#endif
