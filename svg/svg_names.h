/** @file
 * The numbers by which the tree names elements, properties and keywords.
 *
 * Each list stands here once: "X(name)" becomes a constant below, and a host can make tables of its
 * own from it. A "-" of a name is a "_" here. Numbers stay as they are in later versions: what is
 * new follows at the end of its list.
 */
#ifndef SVG_NAMES_H
#define SVG_NAMES_H

/* clang-format off */

/** The elements, in the order of their ids. */
#define SVG_ELEMENTS(X) \
  /*   0 */ X(a)              X(circle)         X(clipPath) X(color_profile) X(defs)          \
  /*   5 */ X(desc)           X(ellipse)        X(font)     X(font_face)     X(font_face_src) \
  /*  10 */ X(font_face_uri)  X(g)              X(glyph)    X(hkern)         X(image)         \
  /*  15 */ X(line)           X(linearGradient) X(marker)   X(mask)          X(metadata)      \
  /*  20 */ X(missing_glyph)  X(path)           X(pattern)  X(polygon)       X(polyline)      \
  /*  25 */ X(radialGradient) X(rect)           X(stop)     X(svg)           X(switch)        \
  /*  30 */ X(symbol)         X(text)           X(textPath) X(title)         X(tref)          \
  /*  35 */ X(tspan)          X(use)            X(view)     X(vkern)                          \

/** The properties, each with its row of the attribute table. */
#define SVG_PROPERTIES(X) \
  X(background_color, 0)            X(baseline_shift, 1)     X(clip, 2)               X(clip_path, 3)         \
  X(clip_rule, 4)                   X(color, 5)              X(color_profile, 6)      X(direction, 7)         \
  X(display, 8)                     X(fill, 9)               X(fill_opacity, 10)      X(fill_rule, 11)        \
  X(font, 12)                       X(font_family, 13)       X(font_size, 14)         X(font_size_adjust, 15) \
  X(font_stretch, 16)               X(font_style, 17)        X(font_variant, 18)      X(font_weight, 19)      \
  X(glyph_orientation_vertical, 20) X(kerning, 21)           X(letter_spacing, 22)    X(marker, 23)           \
  X(marker_end, 24)                 X(marker_mid, 25)        X(marker_start, 26)      X(mask, 27)             \
  X(opacity, 28)                    X(overflow, 29)          X(stop_color, 30)        X(stop_opacity, 31)     \
  X(stroke, 32)                     X(stroke_dasharray, 33)  X(stroke_dashoffset, 34) X(stroke_linecap, 35)   \
  X(stroke_linejoin, 36)            X(stroke_miterlimit, 37) X(stroke_opacity, 38)    X(stroke_width, 39)     \
  X(text_anchor, 40)                X(text_decoration, 41)   X(unicode_bidi, 42)      X(visibility, 43)       \
  X(word_spacing, 44)               X(writing_mode, 45)                                                       \

/** The attributes that have values, each with its row. Where attributes of one name have several rows,
 * a name of elements stands before it: rx is that of rect, ellipse_rx that of ellipse; cx, r, x1 are
 * those of shapes, gradient_cx those of gradients; text_x is that of text, tspan_x of tref and tspan;
 * font_family and its like are those of font-face, x and width those of all elements but mask, text
 * and (width) svg. A "-" and a ":" of a name is a "_" here. */
#define SVG_ATTRIBUTES(X) \
  X(ascent, 47)               X(cap_height, 49)           X(clipPathUnits, 51)        X(cx, 52)                  \
  X(gradient_cx, 53)          X(cy, 54)                   X(gradient_cy, 55)          X(d, 56)                   \
  X(descent, 57)              X(dx, 58)                   X(dy, 59)                   X(font_family, 61)         \
  X(font_size, 62)            X(font_stretch, 63)         X(font_style, 64)           X(font_variant, 65)        \
  X(font_weight, 66)          X(fx, 67)                   X(fy, 68)                   X(g1, 69)                  \
  X(g2, 70)                   X(glyph_name, 71)           X(gradientTransform, 72)    X(gradientUnits, 73)       \
  X(height, 74)               X(svg_height, 75)           X(mask_height, 76)          X(font_horiz_adv_x, 77)    \
  X(horiz_adv_x, 78)          X(horiz_origin_x, 79)       X(horiz_origin_y, 80)       X(k, 82)                   \
  X(lengthAdjust, 83)         X(markerHeight, 84)         X(markerUnits, 85)          X(markerWidth, 86)         \
  X(maskContentUnits, 87)     X(maskUnits, 88)            X(offset, 90)               X(orient, 91)              \
  X(patternContentUnits, 92)  X(patternTransform, 93)     X(patternUnits, 94)         X(points, 95)              \
  X(preserveAspectRatio, 96)  X(r, 97)                    X(gradient_r, 98)           X(refX, 99)                \
  X(refY, 100)                X(rotate, 101)              X(ellipse_rx, 102)          X(rx, 103)                 \
  X(ellipse_ry, 104)          X(ry, 105)                  X(slope, 106)               X(spreadMethod, 107)       \
  X(startOffset, 108)         X(style, 109)               X(systemLanguage, 110)      X(textLength, 111)         \
  X(transform, 112)           X(u1, 114)                  X(u2, 115)                  X(underline_position, 116) \
  X(underline_thickness, 117) X(unicode, 118)             X(units_per_em, 119)        X(viewBox, 120)            \
  X(width, 121)               X(svg_width, 122)           X(mask_width, 123)          X(x, 124)                  \
  X(text_x, 125)              X(mask_x, 126)              X(tspan_x, 127)             X(x_height, 128)           \
  X(x1, 129)                  X(gradient_x1, 130)         X(x2, 131)                  X(gradient_x2, 132)        \
  X(xlink_href, 133)          X(xlink_title, 134)         X(xml_base, 135)            X(xml_space, 137)          \
  X(y, 138)                   X(text_y, 139)              X(mask_y, 140)              X(tspan_y, 141)            \
  X(y1, 142)                  X(gradient_y1, 143)         X(y2, 144)                  X(gradient_y2, 145)        \

/** The keywords, in the order of their ids, which begin at 1. One text has one id, whichever attribute
 * it is a keyword of. */
#define SVG_KEYWORDS(X) \
  /*   1 */ X(0)                X(100)                X(180)                X(200)                X(270)               \
  /*   6 */ X(300)              X(400)                X(500)                X(600)                X(700)               \
  /*  11 */ X(800)              X(90)                 X(900)                X(A)                  X(B)                 \
  /*  16 */ X(G)                X(R)                  X(all)                X(auto)               X(baseline)          \
  /*  21 */ X(bevel)            X(bidi_override)      X(blink)              X(block)              X(bold)              \
  /*  26 */ X(bolder)           X(butt)               X(caption)            X(collapse)           X(compact)           \
  /*  31 */ X(condensed)        X(currentColor)       X(cursive)            X(default)            X(defer)             \
  /*  36 */ X(discrete)         X(embed)              X(end)                X(evenodd)            X(expanded)          \
  /*  41 */ X(extra_condensed)  X(extra_expanded)     X(fantasy)            X(freeze)             X(gamma)             \
  /*  46 */ X(hidden)           X(icon)               X(identity)           X(inherit)            X(inline)            \
  /*  51 */ X(inline_table)     X(italic)             X(large)              X(larger)             X(lighter)           \
  /*  56 */ X(line_through)     X(linear)             X(list_item)          X(lr)                 X(lr_tb)             \
  /*  61 */ X(ltr)              X(marker)             X(matrix)             X(medium)             X(meet)              \
  /*  66 */ X(menu)             X(message_box)        X(middle)             X(miter)              X(monospace)         \
  /*  71 */ X(narrower)         X(none)               X(nonzero)            X(normal)             X(objectBoundingBox) \
  /*  76 */ X(oblique)          X(overline)           X(pad)                X(preserve)           X(rect)              \
  /*  81 */ X(reflect)          X(regular)            X(remove)             X(repeat)             X(rl)                \
  /*  86 */ X(rl_tb)            X(rotate)             X(round)              X(rtl)                X(run_in)            \
  /*  91 */ X(sRGB)             X(sans_serif)         X(scale)              X(scroll)             X(semi_condensed)    \
  /*  96 */ X(semi_expanded)    X(serif)              X(skewX)              X(skewY)              X(slice)             \
  /* 101 */ X(small)            X(small_caps)         X(small_caption)      X(smaller)            X(spacing)           \
  /* 106 */ X(spacingAndGlyphs) X(square)             X(start)              X(status_bar)         X(strokeWidth)       \
  /* 111 */ X(sub)              X(super)              X(table)              X(table_caption)      X(table_cell)        \
  /* 116 */ X(table_column)     X(table_column_group) X(table_footer_group) X(table_header_group) X(table_row)         \
  /* 121 */ X(table_row_group)  X(tb)                 X(tb_rl)              X(translate)          X(transparent)       \
  /* 126 */ X(ultra_condensed)  X(ultra_expanded)     X(underline)          X(url)                X(userSpaceOnUse)    \
  /* 131 */ X(visible)          X(wider)              X(x_large)            X(x_small)            X(xMaxYMax)          \
  /* 136 */ X(xMaxYMid)         X(xMaxYMin)           X(xMidYMax)           X(xMidYMid)           X(xMidYMin)          \
  /* 141 */ X(xMinYMax)         X(xMinYMid)           X(xMinYMin)           X(xx_large)           X(xx_small)          \

/** An element's enumerator. */
#define SVG_NAME_ELEMENT(name)       SVG_ELEM_##name,
/** A property's enumerator. */
#define SVG_NAME_PROPERTY(name, row) SVG_PROP_##name = (row),
/** An attribute's enumerator. */
#define SVG_NAME_ATTRIBUTE(name, row) SVG_ATTR_##name = (row),
/** A keyword's enumerator. */
#define SVG_NAME_KEYWORD(name)       SVG_KW_##name,
/* clang-format on */

/** Elements: SVG_ELEM_a is 0. */
enum { SVG_ELEMENTS(SVG_NAME_ELEMENT) SVG_ELEM_COUNT };

/** Properties: their rows, which need not follow each other; see svg_is_property. */
enum { SVG_PROPERTIES(SVG_NAME_PROPERTY) };

/** Keywords: SVG_KW_NONE is no keyword. */
typedef enum svg_keyword {
  SVG_KW_NONE = 0,
  SVG_KEYWORDS(SVG_NAME_KEYWORD) SVG_KW_COUNT
} svg_keyword;

#undef SVG_NAME_ELEMENT
#undef SVG_NAME_PROPERTY
#undef SVG_NAME_KEYWORD

/** Attributes, and the number of rows. */
enum { SVG_ATTRIBUTES(SVG_NAME_ATTRIBUTE) SVG_ATTR_COUNT = 147 };

#undef SVG_NAME_ATTRIBUTE

#endif
