// svg_rest.cpp: cuts a rest of input between two characters.
//
// Called where a value or path data is raised as bad. Raises nothing.
#include "svg/path/svg_rest.h"

#include <cstring>

void svg_cut_rest(char cut[SVG_REST_SIZE], const char *rest) {
  constexpr size_t most = SVG_REST_SIZE - sizeof "...";
  size_t length = 0, characters = 0;
  for (; rest[length] != '\0' && length < most; ++length) {
    const bool begins = (static_cast<unsigned char>(rest[length]) & 0xC0) != 0x80;
    if (begins && ++characters > SVG_REST_CHARACTERS) break;
    cut[length] = rest[length];
  }
  strcpy(cut + length, rest[length] != '\0' ? "..." : "");
}
