/** @file
 * The records of the reader: the document tree, the values of its elements, the rows of the schema.
 *
 * Texts are UTF-8 and end with a NUL. The sizes and the order of the fields are part of the
 * interface.
 */
#ifndef SVG_RECORDS_H
#define SVG_RECORDS_H

#include "../core/ort.h"
#include "svg_names.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Reads one document and holds its tree. */
typedef struct svg_parser svg_parser;

/* ---- Tree ------------------------------------------------------------------------------------ */

/** What every node begins with. id tells a text node (SVG_ID_TEXT) from an element node. */
typedef struct svg_node {
  int16_t id;     /**< element id 0 to 38 (row of svg_elem_table), SVG_ID_ROOT or SVG_ID_TEXT */
  uint16_t flags; /**< SVG_EF_* of an element, SVG_TF_* of a text */
  struct svg_node *next; /**< next sibling, or null */
} svg_node;

/** Ids of nodes that are no elements of the schema. */
enum {
  SVG_ID_ROOT = 39, /**< the parser's own node above the outermost svg element */
  SVG_ID_TEXT = 40  /**< a text node */
};

/** Flags of element nodes. */
enum {
  SVG_EF_NEEDS_BBOX = 0x0001,  /**< its bounding box is needed to draw it */
  SVG_EF_TEXT = 0x0002,        /**< a text element */
  SVG_EF_GROUP = 0x0004,       /**< a g element */
  SVG_EF_NEEDS_BBOX2 = 0x0010, /**< it is an a, or refers to a clipPath */
  SVG_EF_SYSLANG = 0x0020,     /**< it has a systemLanguage value */
  SVG_EF_BBOX_USER = 0x0100,   /**< elements that refer to it need their bounding box */
  SVG_EF_BBOX_USER2 = 0x0200   /**< the same for clipPath */
};

/** Flags of text nodes. */
enum {
  SVG_TF_LAST = 0x0001 /**< last non-blank text node of its text element */
};

/** What every value begins with: the 4-byte header. The record that follows is told by
 * svg_get_record_kind(row). */
typedef struct svg_a_node {
  int16_t row;           /**< row of svg_attr_table: the attribute or property */
  uint8_t kind : 7;      /**< SVG_PAINT_* in paint records, else 0 */
  uint8_t important : 1; /**< 1 for an !important declaration of a style sheet, else 0 */
  uint8_t unit;          /**< SVG_UNIT_* in records of a single number with unit, else 0 */
} svg_a_node;

/** An attribute of an element that some selector of its style sheets tests. */
typedef struct svg_css_attr {
  int16_t nid;               /**< the CSS engine's number of the attribute's name */
  char *value;               /**< as written */
  struct svg_css_attr *next; /**< the one that was written before it, or null */
} svg_css_attr;

/** An element. */
typedef struct svg_e_node {
  svg_node head; /**< id, flags, next sibling */
  /** Its values by ascending prio of their rows. Those of one prio stand in the order in which they
   * were found: attributes, style sheets, style attribute, defaults. Null when there are none. */
  svg_a_node **values;
  int32_t values_num;      /**< number of values */
  svg_node *first_child;   /**< null when it has no children */
  int32_t level;           /**< nesting level; the outermost svg element has 1 */
  struct svg_e_node *prev; /**< the element built just before this one, in document order */
  svg_css_attr *css_attrs; /**< the last written one first; null when there are none */
  int16_t id_nid;          /**< the CSS engine's number of the id, -1 for none */
  int16_t *class_nids;     /**< the CSS engine's numbers of the classes that some selector names */
  int32_t class_num;       /**< their number */
  uint32_t line;           /**< of its start tag, as in warnings */
} svg_e_node;

/** A text: the character data between two tags. */
typedef struct svg_t_node {
  svg_node head; /**< id SVG_ID_TEXT, flags, next sibling */
  char *text;    /**< white space as written; "" for data inside a skipped element */
} svg_t_node;

/** The node as an element, or null when it is a text (or null). */
static inline svg_e_node *svg_as_element(svg_node *node) {
  return node != NULL && node->id != SVG_ID_TEXT ? (svg_e_node *)node : NULL;
}

/** The node as a text, or null when it is an element (or null). */
static inline svg_t_node *svg_as_text(svg_node *node) {
  return node != NULL && node->id == SVG_ID_TEXT ? (svg_t_node *)node : NULL;
}

/* ---- Values ---------------------------------------------------------------------------------- */

/** Units of numbers (SVG 1.1, 4.2). */
enum {
  SVG_UNIT_NONE, /**< a number without unit: user units, or no length at all */
  SVG_UNIT_DEG,
  SVG_UNIT_GRAD,
  SVG_UNIT_RAD,
  SVG_UNIT_EM,
  SVG_UNIT_EX,
  SVG_UNIT_PX,
  SVG_UNIT_IN,
  SVG_UNIT_CM,
  SVG_UNIT_MM,
  SVG_UNIT_PT,
  SVG_UNIT_PC,
  SVG_UNIT_PERCENT,
  SVG_UNIT_COUNT
};

/** Kinds of value records; docs/values.md tells which rows have which. */
typedef enum svg_record_kind {
  SVG_RECORD_NONE,          /**< the row makes no value: class, id, name, xml:id, style, font */
  SVG_RECORD_KEYWORD,       /**< svg_an_keyword */
  SVG_RECORD_NUMBER,        /**< svg_an_number */
  SVG_RECORD_UNUM,          /**< svg_an_unum */
  SVG_RECORD_KEY_NUMBER,    /**< svg_an_key_number */
  SVG_RECORD_KEY_UNUM,      /**< svg_an_key_unum */
  SVG_RECORD_ASPECT,        /**< svg_an_aspect */
  SVG_RECORD_VIEWBOX,       /**< svg_an_viewbox */
  SVG_RECORD_CLIP,          /**< svg_an_clip */
  SVG_RECORD_STRING,        /**< svg_an_string */
  SVG_RECORD_NAME_LIST,     /**< svg_an_name_list */
  SVG_RECORD_NUM_LIST,      /**< svg_an_num_list */
  SVG_RECORD_KEY_LIST,      /**< svg_an_key_list */
  SVG_RECORD_UNUM_LIST,     /**< svg_an_unum_list */
  SVG_RECORD_KEY_UNUM_LIST, /**< svg_an_key_unum_list */
  SVG_RECORD_TRAFO,         /**< svg_an_trafo */
  SVG_RECORD_COLOR,         /**< svg_an_color */
  SVG_RECORD_PAINT,         /**< svg_an_paint */
  SVG_RECORD_IRI,           /**< svg_an_iri */
  SVG_RECORD_COLOR_PROFILE, /**< svg_an_color_profile */
  SVG_RECORD_KEY_NAME_LIST, /**< svg_an_key_name_list */
  SVG_RECORD_PATH_DATA      /**< svg_an_path_data */
} svg_record_kind;

/* In the records below, "align_" pads the header where the payload is aligned to 8 bytes. Keyword
 * ids are SVG_KW_*. */

/** A keyword. */
typedef struct svg_an_keyword {
  svg_a_node head;
  int32_t key; /**< keyword id */
} svg_an_keyword;

/** A number without unit. */
typedef struct svg_an_number {
  svg_a_node head;
  double value; /**< as written */
} svg_an_number;

/** A number with unit. */
typedef struct svg_an_unum {
  svg_a_node head; /**< row; unit is the number's unit */
  double value;    /**< as written: 50 for 50% */
} svg_an_unum;

/** The number of an svg_an_unum or of a list, with its unit, away from its record. */
typedef struct svg_unum {
  double value; /**< as written: 50 for 50% */
  uint8_t unit; /**< SVG_UNIT_* */
} svg_unum;

/** A keyword or a number. */
typedef struct svg_an_key_number {
  svg_a_node head;
  int32_t align_;
  int32_t key;  /**< keyword id, or 0 */
  double value; /**< when key is 0 */
} svg_an_key_number;

/** A keyword or a number with unit. */
typedef struct svg_an_key_unum {
  svg_a_node head; /**< row; unit is the number's unit when key is 0 */
  int32_t align_;
  int32_t key;  /**< keyword id, or 0 */
  double value; /**< when key is 0 */
} svg_an_key_unum;

/** preserveAspectRatio (SVG 1.1, 7.8). */
typedef struct svg_an_aspect {
  svg_a_node head;
  int32_t defer; /**< 1: "defer" was given */
  int32_t meet;  /**< 1: meet, 0: slice */
  int32_t align; /**< keyword id of the alignment, or of "none" */
} svg_an_aspect;

/** viewBox (SVG 1.1, 7.7), in user units. */
typedef struct svg_an_viewbox {
  svg_a_node head;
  double min_x;  /**< left side */
  double min_y;  /**< upper side */
  double width;  /**< may be negative or 0, as written */
  double height; /**< may be negative or 0, as written */
} svg_an_viewbox;

/** clip (SVG 1.1, 14.3.3). */
typedef struct svg_an_clip {
  svg_a_node head;
  int32_t align_;
  int32_t key;    /**< keyword id of "auto", "rect" or "inherit" */
  double rect[4]; /**< the numbers of rect() as written, else 0 */
} svg_an_clip;

/** A text. */
typedef struct svg_an_string {
  svg_a_node head;
  char *text; /**< as written, white space and quotes included */
} svg_an_string;

/** A list of names, separated by commas. */
typedef struct svg_an_name_list {
  svg_a_node head;
  int32_t align_;
  int32_t count; /**< number of names */
  char **names;  /**< white space inside a name is one blank */
} svg_an_name_list;

/** A list of numbers. */
typedef struct svg_an_num_list {
  svg_a_node head;
  int32_t align_;
  int32_t count;  /**< number of values */
  double *values; /**< null when count is 0 */
} svg_an_num_list;

/** A list of keywords. */
typedef struct svg_an_key_list {
  svg_a_node head;
  int32_t align_;
  int32_t count; /**< number of keywords */
  int32_t *keys; /**< keyword ids; null when count is 0 */
} svg_an_key_list;

/** A list of numbers with unit; "points" has x and y in turn. */
typedef struct svg_an_unum_list {
  svg_a_node head;
  int32_t align_;
  int32_t count;  /**< number of values */
  double *values; /**< as written; null when count is 0 */
  uint8_t *units; /**< SVG_UNIT_* of each value */
} svg_an_unum_list;

/** A keyword or a list of numbers with unit. */
typedef struct svg_an_key_unum_list {
  svg_a_node head;
  int32_t align_;
  int32_t key;    /**< keyword id (count is then 0), or 0 */
  int32_t count;  /**< number of values */
  double *values; /**< as written; null when count is 0 */
  uint8_t *units; /**< SVG_UNIT_* of each value */
} svg_an_key_unum_list;

/** font-family. */
typedef struct svg_an_key_name_list {
  svg_a_node head;
  int32_t align_;
  int32_t count; /**< number of families, at least 1 */
  int32_t *keys; /**< keyword id of a generic family or "inherit"; 0 for a name */
  char **names;  /**< family name; null for a keyword */
} svg_an_key_name_list;

/** Transforms (SVG 1.1, 7.6): what was written, or one matrix. Angles are in degrees. A matrix
 * a b c d e f maps (x, y) to (a x + c y + e, b x + d y + f). */
enum {
  SVG_TRAFO_MATRIX = 0,      /**< a b c d e f: a matrix, a rotation about a point, or a list of
                                transforms composed */
  SVG_TRAFO_ROTATE = 1,      /**< angle */
  SVG_TRAFO_SCALE = 3,       /**< s, for both axes */
  SVG_TRAFO_SCALE_XY = 4,    /**< sx sy */
  SVG_TRAFO_SKEW_X = 5,      /**< angle */
  SVG_TRAFO_SKEW_Y = 6,      /**< angle */
  SVG_TRAFO_TRANSLATE = 7,   /**< tx */
  SVG_TRAFO_TRANSLATE_XY = 8 /**< tx ty */
};

/** A transform. The block is only as long as its type needs (56 bytes for a matrix, 24 for two
 * numbers, 16 for one), so a record must not be copied as a whole. svg_get_matrix reads any. */
typedef struct svg_an_trafo {
  svg_a_node head;
  int32_t type;      /**< SVG_TRAFO_* */
  double numbers[6]; /**< svg_get_trafo_count(type) of them exist */
} svg_an_trafo;

/** Color spaces of a color extension. */
enum {
  SVG_CT_NONE = -1,           /**< no extension */
  SVG_CT_DEVICE_GRAY = 0,     /**< 1 value */
  SVG_CT_DEVICE_RGB = 1,      /**< 3 values */
  SVG_CT_DEVICE_CMYK = 2,     /**< 4 values */
  SVG_CT_ICC = 3,             /**< profile without values */
  SVG_CT_ICC1 = 4,            /**< profile with 1 value */
  SVG_CT_ICC3 = 5,            /**< profile with 3 values */
  SVG_CT_ICC4 = 6,            /**< profile with 4 values */
  SVG_CT_CIELAB = 7,          /**< 3 values: L a b */
  SVG_CT_CIELCH = 8,          /**< never stored: it becomes SVG_CT_CIELAB */
  SVG_CT_ICC_NAMED = 9,       /**< named color with 1 value, the tint */
  SVG_CT_DEVICE_NCHANNEL = 10 /**< 1 to 37 values, ended by SVG_CT_TERMINATOR */
};

/** Last value of a SVG_CT_DEVICE_NCHANNEL list. */
#define SVG_CT_TERMINATOR (-1e18)

/** A color with an extension. */
typedef struct svg_color {
  uint32_t rgb;      /**< sRGB 0x00RRGGBB */
  int32_t colortype; /**< SVG_CT_* */
  char *name;        /**< ICC profile or named color, or null */
  /** Values of the extension, or null: see svg_get_components. For SVG_CT_ICC*, SVG_CT_ICC_NAMED
   * and SVG_CT_DEVICE_NCHANNEL comps[0] is -1 and the values follow from comps[1]. */
  double *comps;
} svg_color;

/** Kinds of IRIs. */
enum {
  SVG_IRI_NONE = 0, /**< clip-path "none" or "inherit" */
  SVG_IRI_DATA = 1, /**< embedded data */
  SVG_IRI_LINK = 2, /**< "#id" */
  SVG_IRI_NAME = 3  /**< any other IRI, as text; with a null text: "none" or "inherit" of mask and
                       the markers */
};

/** MIME types of embedded data (RFC 2397). */
enum {
  SVG_MIME_NOT_DATA = -2, /**< not embedded */
  SVG_MIME_UNKNOWN = -1,  /**< another type, or none given */
  SVG_MIME_GIF = 0,       /**< image/gif */
  SVG_MIME_JPEG = 1,      /**< image/jpeg */
  SVG_MIME_PNG = 2,       /**< image/png */
  SVG_MIME_SVG = 3,       /**< image/svg+xml */
  SVG_MIME_TIFF = 4,      /**< image/tiff */
  SVG_MIME_CSS = 5        /**< text/css */
};

/** What may stand after a paint's IRI in the place of a color (SVG 1.1, 11.2). */
enum {
  SVG_FALLBACK_MISSING = -1,     /**< nothing: a paint whose server does not exist is an error */
  SVG_FALLBACK_NONE = -2,        /**< "none"; only with SVG_LENIENT_FALLBACKS */
  SVG_FALLBACK_CURRENTCOLOR = -3 /**< "currentColor"; only with SVG_LENIENT_FALLBACKS */
};

/** An IRI. */
typedef struct svg_iri {
  int16_t kind;     /**< SVG_IRI_* */
  int16_t mime;     /**< SVG_MIME_* */
  int32_t fallback; /**< color after a paint's IRI, 0x00RRGGBB, or SVG_FALLBACK_* */
  /** What it refers to. */
  union {
    svg_e_node *target; /**< SVG_IRI_LINK: the element, or null when no element has the id */
    char *text; /**< SVG_IRI_DATA: name of the virtual file, null when nothing follows the comma;
                   SVG_IRI_NAME: the IRI */
    void *any;  /**< either of them */
  } ref;        /**< by kind */
} svg_iri;

/** A color without extension. */
typedef struct svg_an_color {
  svg_a_node head;
  uint32_t rgb; /**< sRGB 0x00RRGGBB */
} svg_an_color;

/** Kinds of paints, in head.kind. */
enum {
  SVG_PAINT_NONE = 0,         /**< the header alone */
  SVG_PAINT_INHERIT = 1,      /**< the header alone */
  SVG_PAINT_CURRENTCOLOR = 2, /**< the header alone */
  SVG_PAINT_RGB = 3,          /**< svg_an_paint_rgb */
  SVG_PAINT_IRI = 4,          /**< svg_an_paint_iri */
  SVG_PAINT_COLOR = 5         /**< svg_an_paint_color */
};

/** A paint that is a color. */
typedef struct svg_an_paint_rgb {
  svg_a_node head;
  uint32_t rgb; /**< sRGB 0x00RRGGBB */
} svg_an_paint_rgb;

/** A paint that is a paint server: a gradient or a pattern. */
typedef struct svg_an_paint_iri {
  svg_a_node head;
  svg_iri iri; /**< the link, and its fallback color */
} svg_an_paint_iri;

/** A paint that is a color with an extension. */
typedef struct svg_an_paint_color {
  svg_a_node head;
  svg_color color; /**< with its extension */
} svg_an_paint_color;

/** A paint, as head.kind says; the block is no longer than that record. */
typedef union svg_an_paint {
  svg_a_node head;          /**< kind is SVG_PAINT_* */
  svg_an_paint_rgb rgb;     /**< SVG_PAINT_RGB */
  svg_an_paint_iri iri;     /**< SVG_PAINT_IRI */
  svg_an_paint_color color; /**< SVG_PAINT_COLOR */
} svg_an_paint;

/** An IRI. */
typedef struct svg_an_iri {
  svg_a_node head;
  svg_iri iri; /**< its fallback is SVG_FALLBACK_MISSING */
} svg_an_iri;

/** color-profile (SVG 1.1, 12.3). */
typedef struct svg_an_color_profile {
  svg_a_node head;
  int32_t align_;
  int32_t keyword; /**< keyword id; SVG_KW_none when name is a profile's name */
  char *name;      /**< null when there is a keyword */
  svg_iri iri;     /**< never filled */
} svg_an_color_profile;

/** Kinds of path records. */
enum {
  SVG_PADA_NONE = 0,     /**< never stored */
  SVG_PADA_MOVETO = 1,   /**< one point: a new subpath */
  SVG_PADA_LINETO = 2,   /**< 1 to 5000 points: lines from point to point */
  SVG_PADA_CURVETO = 3,  /**< up to 4998 points, three for each cubic curve */
  SVG_PADA_CLOSEPATH = 4 /**< no points */
};

/** A run of path segments of one kind. */
typedef struct svg_pada {
  int16_t type;   /**< SVG_PADA_* */
  uint16_t count; /**< number of points */
  double *points; /**< count pairs x, y, absolute, in user units; null when count is 0 */
} svg_pada;

/** Path data. */
typedef struct svg_an_path_data {
  svg_a_node head;
  int32_t align_;
  int32_t vertices;  /**< 1 for each moveto, lineto and closepath, 3 for each curve */
  ort_vtr *segments; /**< see svg_get_segments; null for bad path data and for a moveto alone */
} svg_an_path_data;

/* ---- Schema ----------------------------------------------------------------------------------
 *
 * A host reads names, defaults and keywords here, and asks svg_is_property and svg_get_record_kind.
 * The rest belongs to the format, but a new host may ignore it: what is "internal" serves the
 * reader while it reads, what is "legacy" is kept for drawing modules that know it; the reader does
 * not use it. */

/** A keyword of a row. */
typedef struct svg_key_entry {
  const char *text; /**< the keyword */
  int32_t id;       /**< SVG_KW_* */
} svg_key_entry;

/** An attribute of an element. */
typedef struct svg_esa_entry {
  const char *name; /**< attribute name as written, with its prefix for xlink: and xml: */
  int16_t attr;     /**< row of svg_attr_table */
} svg_esa_entry;

/** An element of the schema. */
typedef struct svg_elem_def {
  const char *name;                                       /**< local name */
  void (*beg_hook)(svg_parser *parser, svg_e_node *node); /**< internal; may be null */
  void (*end_hook)(svg_parser *parser);                   /**< internal; may be null */
  int32_t esa_count;                                      /**< number of its attributes */
  const svg_esa_entry *esa_list;                          /**< its attributes, by ascending row */
  int32_t req_count;       /**< number of attributes that get their default when absent */
  const int16_t *req_list; /**< their indexes into esa_list */
  uint32_t slot_size;      /**< internal: bytes of its slot area */
  uint32_t category;       /**< legacy */
  int32_t kind;            /**< legacy */
} svg_elem_def;

/** Flags of attributes and properties. */
enum {
  SVG_AF_PROPERTY = 0x1,    /**< legacy */
  SVG_AF_ATTRIBUTE = 0x2,   /**< internal: the value goes to a slot, where the element has a hook */
  SVG_AF_POSITIVE = 0x4,    /**< legacy */
  SVG_AF_KEEPSPACE = 0x8,   /**< internal: a blank value counts as given */
  SVG_AF_HORIZONTAL = 0x10, /**< legacy */
  SVG_AF_VERTICAL = 0x20,   /**< legacy */
  SVG_AF_NONUM = 0x100      /**< internal: the first token is read without number recognition */
};

/** An attribute or property of the schema. */
typedef struct svg_attr_def {
  const char *name;         /**< with its prefix for xlink: and xml: */
  const char *default_text; /**< null: none */
  int32_t value_size;       /**< bytes of its record; 0, or the least, when that depends */
  svg_a_node *(*anew)(svg_parser *parser);            /**< internal; may be null */
  void (*ctor)(svg_parser *parser, svg_a_node *node); /**< internal; may be null */
  void (*dtor)(ort_core *core, svg_a_node *node);     /**< internal; may be null */
  uint32_t prio;             /**< place of its values in an element, 1 to 6 */
  uint32_t key_count;        /**< number of its keywords */
  const svg_key_entry *keys; /**< null when there are none */
  uint32_t flags;            /**< SVG_AF_* */
  uint32_t group;            /**< legacy */
  const int16_t *apo; /**< internal: slot by element id, -1 for none; null without any slot */
} svg_attr_def;

#ifdef __cplusplus
}
#endif

#endif
