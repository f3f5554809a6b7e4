// keywords.h: every keyword that a value can be, in ASCII order. The place of a text is its id,
// SVG_KW_* of svg_names.h.
#ifndef SVG_TABLES_KEYWORDS_H
#define SVG_TABLES_KEYWORDS_H

#include <algorithm>
#include <string_view>

#include "svg/svg_names.h"

namespace svg_tables {

// clang-format off
inline constexpr const char *KEYWORDS[SVG_KW_COUNT] = {
  /*   0 */ "",                  "0",                "100",                "180",                "200",
  /*   5 */ "270",               "300",              "400",                "500",                "600",
  /*  10 */ "700",               "800",              "90",                 "900",                "A",
  /*  15 */ "B",                 "G",                "R",                  "all",                "auto",
  /*  20 */ "baseline",          "bevel",            "bidi-override",      "blink",              "block",
  /*  25 */ "bold",              "bolder",           "butt",               "caption",            "collapse",
  /*  30 */ "compact",           "condensed",        "currentColor",       "cursive",            "default",
  /*  35 */ "defer",             "discrete",         "embed",              "end",                "evenodd",
  /*  40 */ "expanded",          "extra-condensed",  "extra-expanded",     "fantasy",            "freeze",
  /*  45 */ "gamma",             "hidden",           "icon",               "identity",           "inherit",
  /*  50 */ "inline",            "inline-table",     "italic",             "large",              "larger",
  /*  55 */ "lighter",           "line-through",     "linear",             "list-item",          "lr",
  /*  60 */ "lr-tb",             "ltr",              "marker",             "matrix",             "medium",
  /*  65 */ "meet",              "menu",             "message-box",        "middle",             "miter",
  /*  70 */ "monospace",         "narrower",         "none",               "nonzero",            "normal",
  /*  75 */ "objectBoundingBox", "oblique",          "overline",           "pad",                "preserve",
  /*  80 */ "rect",              "reflect",          "regular",            "remove",             "repeat",
  /*  85 */ "rl",                "rl-tb",            "rotate",             "round",              "rtl",
  /*  90 */ "run-in",            "sRGB",             "sans-serif",         "scale",              "scroll",
  /*  95 */ "semi-condensed",    "semi-expanded",    "serif",              "skewX",              "skewY",
  /* 100 */ "slice",             "small",            "small-caps",         "small-caption",      "smaller",
  /* 105 */ "spacing",           "spacingAndGlyphs", "square",             "start",              "status-bar",
  /* 110 */ "strokeWidth",       "sub",              "super",              "table",              "table-caption",
  /* 115 */ "table-cell",        "table-column",     "table-column-group", "table-footer-group", "table-header-group",
  /* 120 */ "table-row",         "table-row-group",  "tb",                 "tb-rl",              "translate",
  /* 125 */ "transparent",       "ultra-condensed",  "ultra-expanded",     "underline",          "url",
  /* 130 */ "userSpaceOnUse",    "visible",          "wider",              "x-large",            "x-small",
  /* 135 */ "xMaxYMax",          "xMaxYMid",         "xMaxYMin",           "xMidYMax",           "xMidYMid",
  /* 140 */ "xMidYMin",          "xMinYMax",         "xMinYMid",           "xMinYMin",           "xx-large",
  /* 145 */ "xx-small",
};
// clang-format on

// SVG_KW_NONE for a text that is no keyword.
constexpr int keyword_id(std::string_view text) {
  const auto *found = std::lower_bound(KEYWORDS, KEYWORDS + SVG_KW_COUNT, text);
  return found != KEYWORDS + SVG_KW_COUNT && *found == text ? static_cast<int>(found - KEYWORDS)
                                                            : SVG_KW_NONE;
}

} // namespace svg_tables

#endif
