// names.h: the names of elements, properties and keywords as drawings write them, from the lists of
// svg_names.h.
#ifndef SVG_TABLES_NAMES_H
#define SVG_TABLES_NAMES_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "svg/svg_names.h"

namespace svg_tables {

// A text as drawings write it, from the name of its constant.
template <size_t Size> struct dashed {
  char text[Size];

  constexpr dashed(const char (&name)[Size]) : text() { // NOLINT(google-explicit-constructor)
    std::replace_copy(name, name + Size, text, '_', '-');
  }
};

template <dashed Name> inline constexpr dashed DASHED = Name;

// By id; [0] is "".
#define SVG_KEYWORD_TEXT(name) DASHED<#name>.text,
inline constexpr const char *KEYWORDS[SVG_KW_COUNT] = {"", SVG_KEYWORDS(SVG_KEYWORD_TEXT)};
#undef SVG_KEYWORD_TEXT

// Rows of the attribute table that are properties.
#define SVG_PROPERTY_NUMBER(name, row) row,
inline constexpr int PROPERTIES[] = {SVG_PROPERTIES(SVG_PROPERTY_NUMBER)};
#undef SVG_PROPERTY_NUMBER

inline constexpr auto IS_PROPERTY = [] {
  std::array<bool, SVG_ATTR_COUNT> flags = {};
  for (const int row : PROPERTIES) flags[static_cast<size_t>(row)] = true;
  return flags;
}();

// For look-ups while compiling, where std::string_view takes several times as long.
constexpr bool same(const char *a, const char *b) {
  while (*a != '\0' && *a == *b) ++a, ++b;
  return *a == *b;
}

// SVG_KW_NONE for a text that is no keyword.
constexpr int keyword_id(const char *text) {
  for (int id = 1; id < SVG_KW_COUNT; ++id)
    if (same(KEYWORDS[id], text)) return id;
  return SVG_KW_NONE;
}

} // namespace svg_tables

#endif
