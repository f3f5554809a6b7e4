// scene_list.h: what a scene paints, as text.
#ifndef TESTS_SUPPORT_SCENE_LIST_H
#define TESTS_SUPPORT_SCENE_LIST_H

#include <string>

#include "tests/support/scene.h"

// What is painted, a line each in order, indented by two blanks for each group around it:
//
//   group ID matrix=A B C D E F opacity=O viewport=X Y W H link=IRI single bounds=X Y W H
//   shape ID use=ID matrix=A B C D E F fill=PAINT rule=evenodd stroke=PAINT width=W M0 0 L1 1 Z
//   image ID matrix=... area=X Y W H IRI bytes=N align=KEYWORD slice visible
//   text ID 'characters' x=X y=Y dx= dy= rotate= ...
//
// What is as usual is left out: the identity, opacity 1, an empty use. IDs of elements without one
// are the elements' names. Clip paths, masks and patterns follow their line, more indented, with
// their content within: "clip ID matrix=... outline evenodd M0 0 Z", "mask ID area=... matrix=...",
// "pattern ID tile=... matrix=... content=ID content-matrix=... visible". A PAINT is none,
// #rrggbb/OPACITY, linear(X1 Y1 X2 Y2 SPREAD matrix=... OFFSET COLOR ...)/OPACITY, radial(CX CY R
// FX FY ...) or pattern(ID)/OPACITY.
//
// element: null for the whole drawing. measured: the host measures text, each character being half
// an em wide. Ends with "error CODE" when the walk raised.
std::string scene_list(const Scene &scene, const svg_e_node *element = nullptr,
                       bool measured = false);

// Everything that a scene answers about a drawing: the list, the boxes and styles of all elements
// with ids. Returns the code of the error that ended it, or 0; expects numbers to be finite.
int scene_all(AccountingCore &core, svg_parser *parser, svg_e_node *svg);

// The box of an element in the space of its ancestor, both by id, "" for none: "X Y W H", or
// "none".
std::string scene_box(const Scene &scene, const std::string &element, const std::string &ancestor,
                      bool stroked);

#endif
