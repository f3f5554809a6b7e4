/* svg_names.h: the numbers by which the tree names elements, properties and keywords.
 *
 * Element and property numbers are rows of svg_elem_table and svg_attr_table. Keyword ids are in ASCII order of the
 * texts; one text has one id in every list. A "-" of the text is a "_" of the constant.
 */
#ifndef SVG_NAMES_H
#define SVG_NAMES_H

/* Elements: ids 0 to 38. */
enum {
  SVG_ELEM_a = 0, SVG_ELEM_circle, SVG_ELEM_clipPath, SVG_ELEM_color_profile, SVG_ELEM_defs,
  SVG_ELEM_desc, SVG_ELEM_ellipse, SVG_ELEM_font, SVG_ELEM_font_face, SVG_ELEM_font_face_src,
  SVG_ELEM_font_face_uri, SVG_ELEM_g, SVG_ELEM_glyph, SVG_ELEM_hkern, SVG_ELEM_image,
  SVG_ELEM_line, SVG_ELEM_linearGradient, SVG_ELEM_marker, SVG_ELEM_mask, SVG_ELEM_metadata,
  SVG_ELEM_missing_glyph, SVG_ELEM_path, SVG_ELEM_pattern, SVG_ELEM_polygon, SVG_ELEM_polyline,
  SVG_ELEM_radialGradient, SVG_ELEM_rect, SVG_ELEM_stop, SVG_ELEM_svg, SVG_ELEM_switch,
  SVG_ELEM_symbol, SVG_ELEM_text, SVG_ELEM_textPath, SVG_ELEM_title, SVG_ELEM_tref, SVG_ELEM_tspan,
  SVG_ELEM_use, SVG_ELEM_view, SVG_ELEM_vkern, SVG_ELEM_COUNT
};

/* Properties: rows 0 to 45 of svg_attr_table. */
enum {
  SVG_PROP_background_color = 0, SVG_PROP_baseline_shift, SVG_PROP_clip, SVG_PROP_clip_path,
  SVG_PROP_clip_rule, SVG_PROP_color, SVG_PROP_color_profile, SVG_PROP_direction, SVG_PROP_display,
  SVG_PROP_fill, SVG_PROP_fill_opacity, SVG_PROP_fill_rule, SVG_PROP_font, SVG_PROP_font_family,
  SVG_PROP_font_size, SVG_PROP_font_size_adjust, SVG_PROP_font_stretch, SVG_PROP_font_style,
  SVG_PROP_font_variant, SVG_PROP_font_weight, SVG_PROP_glyph_orientation_vertical,
  SVG_PROP_kerning, SVG_PROP_letter_spacing, SVG_PROP_marker, SVG_PROP_marker_end,
  SVG_PROP_marker_mid, SVG_PROP_marker_start, SVG_PROP_mask, SVG_PROP_opacity, SVG_PROP_overflow,
  SVG_PROP_stop_color, SVG_PROP_stop_opacity, SVG_PROP_stroke, SVG_PROP_stroke_dasharray,
  SVG_PROP_stroke_dashoffset, SVG_PROP_stroke_linecap, SVG_PROP_stroke_linejoin,
  SVG_PROP_stroke_miterlimit, SVG_PROP_stroke_opacity, SVG_PROP_stroke_width, SVG_PROP_text_anchor,
  SVG_PROP_text_decoration, SVG_PROP_unicode_bidi, SVG_PROP_visibility, SVG_PROP_word_spacing,
  SVG_PROP_writing_mode, SVG_PROP_COUNT
};

/* Attributes that the reader itself looks at, and the number of rows. */
enum {
  SVG_ATTR_style = 109,
  SVG_ATTR_systemLanguage = 110,
  SVG_ATTR_transform = 112,
  SVG_ATTR_COUNT = 147
};

/* Keywords: ids 1 to 145; SVG_KW_NONE is no keyword. */
enum {
  SVG_KW_NONE = 0, SVG_KW_0, SVG_KW_100, SVG_KW_180, SVG_KW_200, SVG_KW_270, SVG_KW_300,
  SVG_KW_400, SVG_KW_500, SVG_KW_600, SVG_KW_700, SVG_KW_800, SVG_KW_90, SVG_KW_900, SVG_KW_A,
  SVG_KW_B, SVG_KW_G, SVG_KW_R, SVG_KW_all, SVG_KW_auto, SVG_KW_baseline, SVG_KW_bevel,
  SVG_KW_bidi_override, SVG_KW_blink, SVG_KW_block, SVG_KW_bold, SVG_KW_bolder, SVG_KW_butt,
  SVG_KW_caption, SVG_KW_collapse, SVG_KW_compact, SVG_KW_condensed, SVG_KW_currentColor,
  SVG_KW_cursive, SVG_KW_default, SVG_KW_defer, SVG_KW_discrete, SVG_KW_embed, SVG_KW_end,
  SVG_KW_evenodd, SVG_KW_expanded, SVG_KW_extra_condensed, SVG_KW_extra_expanded, SVG_KW_fantasy,
  SVG_KW_freeze, SVG_KW_gamma, SVG_KW_hidden, SVG_KW_icon, SVG_KW_identity, SVG_KW_inherit,
  SVG_KW_inline, SVG_KW_inline_table, SVG_KW_italic, SVG_KW_large, SVG_KW_larger, SVG_KW_lighter,
  SVG_KW_line_through, SVG_KW_linear, SVG_KW_list_item, SVG_KW_lr, SVG_KW_lr_tb, SVG_KW_ltr,
  SVG_KW_marker, SVG_KW_matrix, SVG_KW_medium, SVG_KW_meet, SVG_KW_menu, SVG_KW_message_box,
  SVG_KW_middle, SVG_KW_miter, SVG_KW_monospace, SVG_KW_narrower, SVG_KW_none, SVG_KW_nonzero,
  SVG_KW_normal, SVG_KW_objectBoundingBox, SVG_KW_oblique, SVG_KW_overline, SVG_KW_pad,
  SVG_KW_preserve, SVG_KW_rect, SVG_KW_reflect, SVG_KW_regular, SVG_KW_remove, SVG_KW_repeat,
  SVG_KW_rl, SVG_KW_rl_tb, SVG_KW_rotate, SVG_KW_round, SVG_KW_rtl, SVG_KW_run_in, SVG_KW_sRGB,
  SVG_KW_sans_serif, SVG_KW_scale, SVG_KW_scroll, SVG_KW_semi_condensed, SVG_KW_semi_expanded,
  SVG_KW_serif, SVG_KW_skewX, SVG_KW_skewY, SVG_KW_slice, SVG_KW_small, SVG_KW_small_caps,
  SVG_KW_small_caption, SVG_KW_smaller, SVG_KW_spacing, SVG_KW_spacingAndGlyphs, SVG_KW_square,
  SVG_KW_start, SVG_KW_status_bar, SVG_KW_strokeWidth, SVG_KW_sub, SVG_KW_super, SVG_KW_table,
  SVG_KW_table_caption, SVG_KW_table_cell, SVG_KW_table_column, SVG_KW_table_column_group,
  SVG_KW_table_footer_group, SVG_KW_table_header_group, SVG_KW_table_row, SVG_KW_table_row_group,
  SVG_KW_tb, SVG_KW_tb_rl, SVG_KW_translate, SVG_KW_transparent, SVG_KW_ultra_condensed,
  SVG_KW_ultra_expanded, SVG_KW_underline, SVG_KW_url, SVG_KW_userSpaceOnUse, SVG_KW_visible,
  SVG_KW_wider, SVG_KW_x_large, SVG_KW_x_small, SVG_KW_xMaxYMax, SVG_KW_xMaxYMid, SVG_KW_xMaxYMin,
  SVG_KW_xMidYMax, SVG_KW_xMidYMid, SVG_KW_xMidYMin, SVG_KW_xMinYMax, SVG_KW_xMinYMid,
  SVG_KW_xMinYMin, SVG_KW_xx_large, SVG_KW_xx_small, SVG_KW_COUNT
};

#endif
