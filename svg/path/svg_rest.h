// svg_rest.h: what a message shows of a rest of input.
#ifndef SVG_REST_H
#define SVG_REST_H

#include <stddef.h>

// Copies so many characters of the rest, and "..." when there are more.
constexpr size_t SVG_REST_CHARACTERS = 40;
constexpr size_t SVG_REST_SIZE = 4 * SVG_REST_CHARACTERS + sizeof "...";
void svg_cut_rest(char cut[SVG_REST_SIZE], const char *rest);

#endif
