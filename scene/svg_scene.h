/** @file
 * A drawing resolved: computed styles, geometry, boxes, and one call that paints it into callbacks.
 *
 * A scene stands on the finished tree of a parser (svg/svg.h) and reads it as any host could. It
 * answers what every host that draws, prints, plots or cuts needs to know: which value holds, what
 * is inherited, how long a length is, where a gradient lies, what a `use` shows. The scene belongs
 * to the thread of its core and must be deleted before its parser.
 *
 * Unless said otherwise, pointers must not be null, numbers are finite, lengths are in user units,
 * and records that a callback receives are valid during the call. A matrix a b c d e f maps (x, y)
 * to (a x + c y + e, b x + d y + f). A box is x, y, width, height. Functions that say "raises"
 * leave by a non-local exit to the nearest ort_protect (core/ort.h); callbacks may raise.
 */
#ifndef SVG_SCENE_H
#define SVG_SCENE_H

#include "../svg/svg.h"

#ifdef __cplusplus
extern "C" {
#endif

/** A drawing resolved. */
typedef struct svg_scene svg_scene;

/** What a host chooses for a scene. */
typedef struct svg_scene_options {
  double dpi;             /**< user units (pixels) of an inch; 0: 96 */
  double medium;          /**< font-size of the keyword "medium", the initial value; 0: 12 */
  double viewport_width;  /**< what a width of the outermost svg in percent is a percentage of; 0:
                               the width of its viewBox, or 300 */
  double viewport_height; /**< the same for its height; 0: the height of its viewBox, or 150 */
} svg_scene_options;

/** Makes the scene of a drawing.
 * @param parser   svg_parse has returned; it must outlive the scene
 * @param svg      the outermost svg element, as svg_parse gave it
 * @param options  copied; null: the defaults
 * @return the scene, deleted with svg_scene_delete
 * @raises ORT_E_NO_MEMORY */
ORT_API svg_scene *svg_scene_new(svg_parser *parser, svg_e_node *svg,
                                 const svg_scene_options *options);

/** Deletes a scene; null is allowed. */
ORT_API void svg_scene_delete(svg_scene *scene);

/** Size of the drawing in user units, as its width and height say (SVG 1.1, 7.2).
 * @param scene   the scene
 * @param width   receives the width; may be null
 * @param height  receives the height; may be null */
ORT_API void svg_scene_get_size(const svg_scene *scene, double *width, double *height);

/* ---- Computed style --------------------------------------------------------------------------- */

/** A number that may be missing. */
typedef struct svg_scene_number {
  int32_t key;  /**< keyword id (auto, none, sub, super ...), or 0: value holds */
  double value; /**< in user units where it is a length */
} svg_scene_number;

/** The computed value of a paint property, its target not yet looked at. */
typedef struct svg_scene_paint_value {
  uint8_t kind;           /**< SVG_PAINT_NONE, _RGB, _IRI or _COLOR */
  uint32_t rgb;           /**< 0x00RRGGBB of _RGB and _COLOR */
  const svg_color *color; /**< the extension of _COLOR, else null */
  const svg_iri *iri;     /**< of _IRI, else null */
} svg_scene_paint_value;

/** Bits of text-decoration. */
enum {
  SVG_DECORATION_UNDERLINE = 1,    /**< a line below the text */
  SVG_DECORATION_OVERLINE = 2,     /**< a line above it */
  SVG_DECORATION_LINE_THROUGH = 4, /**< a line through it */
  SVG_DECORATION_BLINK = 8         /**< no line: it blinks */
};

/** Computed values of all properties (SVG 1.1, 6.2 and the property index): the winner of all
 * declarations, inherited where the property or "inherit" says so, else the initial value. Fields
 * of keywords hold keyword ids. */
typedef struct svg_scene_style {
  uint32_t color;                         /**< 0x00RRGGBB; what currentColor meant */
  svg_scene_paint_value background_color; /**< SVG_PAINT_NONE: transparent */
  svg_scene_paint_value fill;             /**< what shapes and text are filled with */
  svg_scene_paint_value stroke;           /**< what their outlines are drawn with */
  svg_scene_paint_value stop_color;       /**< of a stop of a gradient */
  double fill_opacity;                    /**< 0 to 1 */
  double stroke_opacity;                  /**< 0 to 1 */
  double stop_opacity;                    /**< 0 to 1 */
  double opacity;                         /**< 0 to 1, of the element as a whole */
  int32_t fill_rule;                      /**< SVG_KW_nonzero or SVG_KW_evenodd */
  int32_t clip_rule;                      /**< the same, in a clip path */
  double stroke_width;                    /**< 0 or more */
  int32_t stroke_linecap;                 /**< SVG_KW_butt, SVG_KW_round, SVG_KW_square */
  int32_t stroke_linejoin;                /**< SVG_KW_miter, SVG_KW_round, SVG_KW_bevel */
  double stroke_miterlimit;               /**< 1 or more */
  double stroke_dashoffset;               /**< where in the dashes the stroke begins */
  const double *stroke_dasharray; /**< an even number of lengths that are not all 0, or null */
  size_t stroke_dash_count;       /**< their number */
  const svg_e_node *clip_path;    /**< a clipPath, or null */
  const svg_e_node *mask;         /**< a mask, or null */
  const svg_e_node *marker_start; /**< a marker, or null */
  const svg_e_node *marker_mid;   /**< a marker, or null */
  const svg_e_node *marker_end;   /**< a marker, or null */
  int32_t clip_key;               /**< SVG_KW_auto or SVG_KW_rect */
  double clip_rect[4];            /**< top, right, bottom, left offsets of rect() */
  int32_t display;                /**< SVG_KW_none: not shown, with all that is within */
  int32_t visibility;             /**< SVG_KW_visible, SVG_KW_hidden, SVG_KW_collapse */
  int32_t overflow;               /**< SVG_KW_visible, SVG_KW_hidden, SVG_KW_scroll, SVG_KW_auto */
  const svg_an_key_name_list *font_family; /**< null: the host's own choice */
  double font_size;                        /**< 0 or more */
  svg_scene_number font_size_adjust;       /**< SVG_KW_none, or a number */
  int32_t font_stretch;                    /**< SVG_KW_ultra_condensed to SVG_KW_ultra_expanded */
  int32_t font_style;                      /**< SVG_KW_normal, SVG_KW_italic, SVG_KW_oblique */
  int32_t font_variant;                    /**< SVG_KW_normal or SVG_KW_small_caps */
  int32_t font_weight;                     /**< 100 to 900 */
  svg_scene_number baseline_shift;         /**< SVG_KW_baseline, _sub, _super, or a length */
  svg_scene_number kerning;                /**< SVG_KW_auto, or a length */
  double letter_spacing;                   /**< 0 for normal */
  double word_spacing;                     /**< 0 for normal */
  int32_t text_anchor;                     /**< SVG_KW_start, SVG_KW_middle, SVG_KW_end */
  int32_t direction;                       /**< SVG_KW_ltr or SVG_KW_rtl */
  int32_t unicode_bidi;                    /**< SVG_KW_normal, SVG_KW_embed, SVG_KW_bidi_override */
  int32_t writing_mode;                    /**< SVG_KW_lr_tb, SVG_KW_tb ... */
  int32_t glyph_orientation_vertical;      /**< SVG_KW_auto, or the keyword of an angle */
  int32_t text_decoration;                 /**< SVG_DECORATION_* of the element itself */
  const svg_an_color_profile *color_profile; /**< null: auto */
  const struct svg_scene_style *decorated; /**< of the nearest element around with text_decoration,
                                                whose lines text within has, too; or null */
} svg_scene_style;

/** Computes the style of an element from its place in the tree (not through a `use`).
 * @param scene    the scene
 * @param element  any element of the drawing
 * @param style    receives it. What it points to is the scene's and valid until the next call with
 *     this scene
 * @raises ORT_E_NO_MEMORY */
ORT_API void svg_scene_get_style(svg_scene *scene, const svg_e_node *element,
                                 svg_scene_style *style);

/* ---- Geometry --------------------------------------------------------------------------------- */

/** The outline of a basic shape or path in its own user space: path data as stored, a basic shape
 * by SVG 1.1, chapter 9.
 * @param scene     the scene
 * @param element   any element
 * @param segments  receives the runs of segments; valid until the next call with this scene
 * @return their number; 0 for other elements and for shapes that are not rendered
 * @raises ORT_E_NO_MEMORY */
ORT_API size_t svg_scene_get_outline(svg_scene *scene, const svg_e_node *element,
                                     const svg_pada **segments);

/** The box around what an element shows: exact for curves; with stroke, exact but for dashes, which
 * count as drawn through. Text counts where it is in SVG fonts, images with their rectangles; clips
 * and masks are not looked at, `display: none` and hidden shapes show nothing (SVG 1.1, 7.11).
 * @param scene     the scene
 * @param element   null: the whole drawing
 * @param ancestor  the box is in its user space, that is, inside of its transform. It is the
 *     element or an ancestor of it; null: the space outside of the outermost svg
 * @param stroked   not 0: with strokes and markers
 * @param box       receives the box
 * @return 1, or 0 when nothing is shown: then the box is untouched
 * @raises ORT_E_NO_MEMORY, ORT_E_LIMIT */
ORT_API int32_t svg_scene_get_box(svg_scene *scene, const svg_e_node *element,
                                  const svg_e_node *ancestor, int32_t stroked, double box[4]);

/* ---- Matrices --------------------------------------------------------------------------------- */

/** Stores the matrix that maps through inner, then through outer. result may be either of them. */
ORT_API void svg_scene_multiply(double result[6], const double outer[6], const double inner[6]);

/** Stores the inverse of a matrix, which it may replace.
 * @return 1, or 0 when there is none or it overflows: inverse is then undefined */
ORT_API int32_t svg_scene_invert(double inverse[6], const double matrix[6]);

/* ---- What is painted -------------------------------------------------------------------------- */

/** A stop of a gradient. */
typedef struct svg_scene_stop {
  double offset;          /**< 0 to 1, not below that of the stop before */
  uint32_t rgb;           /**< 0x00RRGGBB */
  const svg_color *color; /**< with its extension, or null */
  double opacity;         /**< 0 to 1 */
} svg_scene_stop;

/** A gradient with all that it takes from the gradients that it refers to (SVG 1.1, 13.2). */
typedef struct svg_scene_gradient {
  const svg_e_node *element;   /**< the gradient that the paint names */
  int32_t radial;              /**< 0: linear */
  double x1;                   /**< of a linear gradient: where its vector begins */
  double y1;                   /**< the same */
  double x2;                   /**< where it ends */
  double y2;                   /**< the same */
  double cx;                   /**< of a radial gradient: the center of its circle */
  double cy;                   /**< the same */
  double r;                    /**< its radius, above 0 */
  double fx;                   /**< its focal point, inside of the circle */
  double fy;                   /**< the same */
  double matrix[6];            /**< from the gradient's space to the user space of what it paints;
                                    never singular */
  int32_t of_box;              /**< not 0: instead to a space in which the box of what it paints is
                                    that from 0, 0 to 1, 1 (svg_scene_callbacks.measure) */
  int32_t spread;              /**< SVG_KW_pad, SVG_KW_reflect, SVG_KW_repeat */
  const svg_scene_stop *stops; /**< at least two */
  size_t stop_count;           /**< their number */
} svg_scene_gradient;

/** A pattern (SVG 1.1, 13.3), its content painted by svg_scene_paint_pattern. */
typedef struct svg_scene_pattern {
  const svg_e_node *element; /**< the pattern that the paint names */
  double tile[4];            /**< in the pattern's space; width and height are above 0 */
  double matrix[6];          /**< from the pattern's space to the user space of what it paints */
  const svg_e_node *content; /**< the pattern whose children are the content */
  double content_matrix[6];  /**< from the content's user space to the pattern's space */
  int32_t clipped;           /**< not 0: the content is cut at the tile */
  int32_t of_box;            /**< not 0: matrix and tile, as of a gradient */
  int32_t content_of_box;    /**< not 0: content_matrix, the same */
} svg_scene_pattern;

/** Kinds of resolved paints. */
typedef enum svg_scene_paint_kind {
  SVG_SCENE_PAINT_NONE,     /**< nothing is painted */
  SVG_SCENE_PAINT_COLOR,    /**< rgb, color, opacity */
  SVG_SCENE_PAINT_GRADIENT, /**< gradient, opacity */
  SVG_SCENE_PAINT_PATTERN   /**< pattern, opacity */
} svg_scene_paint_kind;

/** A paint ready for use: what cannot be painted has become its fallback, a single color or none.
 */
typedef struct svg_scene_paint {
  svg_scene_paint_kind kind;          /**< which of the fields below hold */
  uint32_t rgb;                       /**< 0x00RRGGBB of a color */
  const svg_color *color;             /**< with its extension, or null */
  double opacity;                     /**< fill-opacity or stroke-opacity, 0 to 1, for all kinds */
  const svg_scene_gradient *gradient; /**< null for other kinds */
  const svg_scene_pattern *pattern;   /**< null for other kinds */
} svg_scene_paint;

/** A clip path (SVG 1.1, 14.3), its content painted by svg_scene_paint_clip. */
typedef struct svg_scene_clip {
  const svg_e_node *element; /**< the clipPath */
  double matrix[6];          /**< from the content's user space to that of what is clipped */
  int32_t of_box;            /**< not 0: to the space of its box, as of a gradient */
} svg_scene_clip;

/** A mask (SVG 1.1, 14.4), its content painted by svg_scene_paint_mask. */
typedef struct svg_scene_mask {
  const svg_e_node *element; /**< the mask */
  double area[4];         /**< in the user space of what is masked; nothing shows outside of it */
  double matrix[6];       /**< from the content's user space to that of what is masked */
  int32_t of_box;         /**< not 0: the area is in the space of its box, as of a gradient */
  int32_t content_of_box; /**< not 0: matrix leads there */
} svg_scene_mask;

/** What all painted things have in common. */
typedef struct svg_scene_item {
  const svg_e_node *element;    /**< the element that is painted */
  const svg_e_node *use;        /**< the innermost use through which it is shown, or null */
  const svg_scene_style *style; /**< its computed style, through the use */
  double matrix[6];             /**< from its user space to that of the group around it */
  double ctm[6];                /**< from its user space to that of the whole walk */
} svg_scene_item;

/** A group: an element with children, or a shape, image or text that has an opacity, a clip, a mask
 * or a link. All of it is applied in the group's own user space. Elements that only pass on their
 * style make no group. */
typedef struct svg_scene_group {
  svg_scene_item item;        /**< its element, and where it lies */
  double opacity;             /**< 0 to 1, of the group as a whole */
  int32_t is_single;          /**< not 0: there is one fill or one stroke in it and no more, whose
                                   opacity may as well be multiplied */
  const svg_scene_clip *clip; /**< or null */
  const svg_scene_mask *mask; /**< or null */
  int32_t has_viewport;       /**< not 0: nothing shows outside of viewport */
  double viewport[4];         /**< the overflow clip of svg, symbol, marker */
  int32_t has_bounds;         /**< not 0: bounds are known, as those of a shape without markers */
  double bounds[4];           /**< a box around all that is in it, with strokes; it may be larger */
  const svg_iri *link;        /**< target of an a element, else null */
} svg_scene_group;

/** A shape. */
typedef struct svg_scene_shape {
  svg_scene_item item;      /**< its element, and where it lies */
  const svg_pada *segments; /**< its outline in its user space */
  size_t segment_count;     /**< 1 or more */
  svg_scene_paint fill;     /**< painted first */
  int32_t fill_rule;        /**< SVG_KW_nonzero or SVG_KW_evenodd; in a clip path its clip-rule */
  svg_scene_paint stroke;   /**< none when its width is 0. Its other parameters are in the style */
} svg_scene_shape;

/** An image. */
typedef struct svg_scene_image {
  svg_scene_item item;       /**< its element, and where it lies */
  double area[4];            /**< its rectangle; width and height are above 0 */
  const svg_iri *iri;        /**< where the picture is */
  const unsigned char *data; /**< of embedded data, else null */
  size_t size;               /**< their number of bytes */
  int32_t align;             /**< preserveAspectRatio, as in svg_an_aspect */
  int32_t meet;              /**< the same */
  int32_t clipped;           /**< not 0: nothing shows outside of area */
} svg_scene_image;

/** Stores the matrix from a picture's pixels to the user space of its image element, by
 * preserveAspectRatio (SVG 1.1, 7.8).
 * @param image   the image
 * @param width   of the picture, above 0
 * @param height  of the picture, above 0
 * @param matrix  receives the matrix; the identity when it overflows */
ORT_API void svg_scene_place_image(const svg_scene_image *image, double width, double height,
                                   double matrix[6]);

/** A decoration line and how it is painted: as the element that asked for it (CSS 2.1, 16.3.1). */
typedef struct svg_scene_decoration {
  int32_t lines;                /**< SVG_DECORATION_* */
  svg_scene_paint fill;         /**< of that element */
  svg_scene_paint stroke;       /**< of that element */
  const svg_scene_style *style; /**< of that element: its stroke parameters and font-size */
} svg_scene_decoration;

/** Bits of svg_scene_run.flags. */
enum {
  SVG_RUN_X = 0x1,      /**< x is given; else the run begins where the one before it ended */
  SVG_RUN_Y = 0x2,      /**< the same for y */
  SVG_RUN_CHUNK = 0x4,  /**< it begins a text chunk, which text-anchor aligns (SVG 1.1, 10.5) */
  SVG_RUN_FIRST = 0x8,  /**< the first run that is told of its text element */
  SVG_RUN_LAST = 0x10,  /**< the last one */
  SVG_RUN_PLACED = 0x20 /**< the host measures: x and y are where it is drawn, all else is done */
};

/** A path that text follows (SVG 1.1, 10.13). */
typedef struct svg_scene_text_path {
  const svg_e_node *element; /**< the textPath */
  const svg_pada *segments;  /**< the path in the user space of the text */
  size_t segment_count;      /**< 1 or more */
  double start;              /**< startOffset: how far along the path the text begins */
} svg_scene_text_path;

/** A length that a part of a text is to have (SVG 1.1, 10.5). */
typedef struct svg_scene_text_length {
  const struct svg_scene_text_length *outer; /**< of which it is a part, or null */
  const svg_e_node *element;                 /**< whose characters have this length together */
  double length;                             /**< textLength, above 0 */
  int32_t adjust;                            /**< SVG_KW_spacing or SVG_KW_spacingAndGlyphs */
} svg_scene_text_length;

/** Characters of one style that are drawn together: a text element is a sequence of runs. A
 * character with a position or rotation of its own begins a run. White space has been treated by
 * xml:space (SVG 1.1, 10.15). What the host does not measure (svg_scene_callbacks) is not placed:
 * the host then goes on from where the run before ended, and sees to anchors, lengths and paths. */
typedef struct svg_scene_run {
  svg_scene_item item;    /**< element: the text, tspan, tref, textPath or a that holds the text */
  const char *text;       /**< UTF-8, not empty, ends with a NUL */
  size_t length;          /**< its bytes */
  uint32_t flags;         /**< SVG_RUN_* */
  double x;               /**< the origin of its first character on the baseline */
  double y;               /**< the same */
  double dx;              /**< to be added to x; 0 when placed */
  double dy;              /**< to be added to y; 0 when placed */
  double baseline;        /**< baseline-shift with that of the elements around: to be added to y, in
                               vertical text taken from x; 0 when placed */
  double rotate;          /**< in degrees, of the run about its origin */
  double stretch;         /**< factor of its glyphs along the line (textLength), 1 else */
  double spacing;         /**< to be added after each character: letter-spacing and textLength */
  double advance;         /**< as measured, when placed */
  svg_scene_paint fill;   /**< painted first */
  svg_scene_paint stroke; /**< none when its width is 0 */
  const svg_scene_decoration *decorations; /**< outermost first */
  size_t decoration_count;                 /**< their number */
  const svg_iri *link; /**< target of the a element around it within the text, or null */
  const svg_scene_text_path *path;          /**< that it is to follow, or null; null when placed */
  const svg_scene_text_length *text_length; /**< innermost one that it is a part of, or null; null
                                                 when placed */
} svg_scene_run;

/** What a host is told, in the order of painting; each may be null. Glyphs of SVG fonts are shapes,
 * whose element is the glyph; those in an a within a text are in a group with its link. */
typedef struct svg_scene_callbacks {
  /** A group begins; all that is told until its end lies in it. */
  void (*begin_group)(void *user, const svg_scene_group *group);
  /** It ends; with an equal record. */
  void (*end_group)(void *user, const svg_scene_group *group);
  /** A shape, or a glyph of an SVG font. */
  void (*shape)(void *user, const svg_scene_shape *shape);
  /** An image. */
  void (*image)(void *user, const svg_scene_image *image);
  /** A run of text in a font of the host. */
  void (*text)(void *user, const svg_scene_run *run);
  /** The advance of a run along its line in user units, with its letter and word spacing but
   * without stretch. With it the scene places all text: anchors, textLength, text on a path.
   * Without it the box of what holds text is not known to a host that is told of text: paints,
   * clips and masks that are relative to it say so (of_box). */
  double (*measure)(void *user, const svg_scene_run *run);
} svg_scene_callbacks;

/** The box of a shape, as svg_scene_get_box has it.
 * @param shape    the shape
 * @param matrix   from its user space to that of the box, as item.ctm; null: the same
 * @param stroked  not 0: with its stroke
 * @param box      receives the box
 * @return 1, or 0 when it has none: then the box is untouched */
ORT_API int32_t svg_scene_get_shape_box(const svg_scene_shape *shape, const double *matrix,
                                        int32_t stroked, double box[4]);

/** Paints the drawing, or an element with all that is around it left out.
 * @param scene      the scene
 * @param element    null: the drawing, in the space outside of the outermost svg. Else an element,
 *     painted in its parent's user space, also when it is one that is only shown by reference
 * @param callbacks  what the host wants to be told
 * @param user       their first argument; may be null
 * @raises ORT_E_LIMIT when more than svg_limits.expanded elements are shown, ORT_E_NO_MEMORY, and
 *     what the callbacks raise. A circle of references costs the reference and a warning. */
ORT_API void svg_scene_paint_element(svg_scene *scene, const svg_e_node *element,
                                     const svg_scene_callbacks *callbacks, void *user);

/** Paints the content of a pattern, in the content's user space. For use in a callback, or during
 * the callback that received the pattern.
 * @raises as svg_scene_paint_element */
ORT_API void svg_scene_paint_pattern(svg_scene *scene, const svg_scene_pattern *pattern,
                                     const svg_scene_callbacks *callbacks, void *user);

/** The outline of a clip path in which there is no more than one shape, for hosts that clip by
 * paths.
 * @param scene      the scene
 * @param clip       the clip path
 * @param segments   receives its runs, where the matrix of the clip path leads; valid until the
 *     next call with this scene
 * @param count      receives their number; 0: nothing shows
 * @param fill_rule  receives SVG_KW_nonzero or SVG_KW_evenodd
 * @return 1, or 0 when it takes svg_scene_paint_clip: for several shapes, text, clips on clips
 * @raises as svg_scene_paint_element */
ORT_API int32_t svg_scene_get_clip_outline(svg_scene *scene, const svg_scene_clip *clip,
                                           const svg_pada **segments, size_t *count,
                                           int32_t *fill_rule);

/** Paints the content of a clip path, in the content's user space: shapes and runs with an opaque
 * fill and no stroke, whose union is what may show; groups with clips of their own.
 * @raises as svg_scene_paint_element */
ORT_API void svg_scene_paint_clip(svg_scene *scene, const svg_scene_clip *clip,
                                  const svg_scene_callbacks *callbacks, void *user);

/** Paints the content of a mask, in the content's user space.
 * @raises as svg_scene_paint_element */
ORT_API void svg_scene_paint_mask(svg_scene *scene, const svg_scene_mask *mask,
                                  const svg_scene_callbacks *callbacks, void *user);

#ifdef __cplusplus
}
#endif

#endif
