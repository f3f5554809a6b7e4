/** @file
 * The SVG 1.1 reader as a host sees it: functions, the document tree, the value records.
 *
 * One parser reads one document. Everything that it hands out (nodes, values, texts) belongs to the
 * parser and is valid until svg_parser_delete. Functions that say "raises" leave by a non-local
 * exit to the nearest ort_protect (core/ort.h). A parser belongs to one thread at a time; the
 * schema tables are constant and shared.
 *
 * Unless said otherwise, pointers must not be null, and texts are UTF-8 and end with a NUL.
 */
#ifndef SVG_H
#define SVG_H

#include "core/ort.h"
#include "css/css_context.h"
#include "svg/svg_names.h"

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
  int16_t row;  /**< row of svg_attr_table: the attribute or property */
  uint8_t kind; /**< SVG_PAINT_* in paint records, else 0 */
  uint8_t unit; /**< SVG_UNIT_* in records of a single number with unit, else 0 */
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
  SVG_UNIT_PERCENT
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
  SVG_RECORD_PAINT,         /**< svg_an_paint_rgb, svg_an_paint_iri, svg_an_paint_color or none */
  SVG_RECORD_IRI,           /**< svg_an_iri */
  SVG_RECORD_COLOR_PROFILE, /**< svg_an_color_profile */
  SVG_RECORD_KEY_NAME_LIST, /**< svg_an_key_name_list */
  SVG_RECORD_PATH_DATA      /**< svg_an_path_data */
} svg_record_kind;

/** The record kind of a row's values; SVG_RECORD_NONE for a row outside 0 to 146. */
ORT_API svg_record_kind svg_get_record_kind(int32_t row);

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

/** A transform. The block is as long as its type needs: 56 bytes for a matrix, 24 for two numbers,
 * 16 for one. */
typedef struct svg_an_trafo {
  svg_a_node head;
  int32_t type;      /**< SVG_TRAFO_* */
  double numbers[6]; /**< 6, 1 or 2 of them exist, by type */
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
  /** Values of the extension, or null. For SVG_CT_ICC*, SVG_CT_ICC_NAMED and SVG_CT_DEVICE_NCHANNEL
   * comps[0] is -1 and the values follow from comps[1]. */
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

/** An IRI. */
typedef struct svg_iri {
  int16_t kind;     /**< SVG_IRI_* */
  int16_t mime;     /**< SVG_MIME_* */
  int32_t fallback; /**< color behind a paint's IRI, 0x00RRGGBB, or -1 */
  /** What it refers to. */
  union {
    svg_e_node *target; /**< SVG_IRI_LINK: the element, or null when no element has the id */
    char *text; /**< SVG_IRI_DATA: name of the virtual file, or null when it is empty; SVG_IRI_NAME:
                   the IRI */
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

/** An IRI. */
typedef struct svg_an_iri {
  svg_a_node head;
  svg_iri iri; /**< its fallback is -1 */
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
  ort_vtr *segments; /**< svg_pada records; null for bad path data and for a moveto alone */
} svg_an_path_data;

/* ---- Schema ---------------------------------------------------------------------------------- */

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
  void (*beg_hook)(svg_parser *parser, svg_e_node *node); /**< for the reader; may be null */
  void (*end_hook)(svg_parser *parser);                   /**< for the reader; may be null */
  int32_t esa_count;                                      /**< number of its attributes */
  const svg_esa_entry *esa_list;                          /**< its attributes, sorted by name */
  int32_t req_count;       /**< number of attributes that get their default when absent */
  const int16_t *req_list; /**< their indexes into esa_list */
  uint32_t slot_size;      /**< for the reader: bytes of its slot area */
  uint32_t category;       /**< for the host's drawing modules */
  int32_t kind;            /**< for the host's drawing modules */
} svg_elem_def;

/** Flags of attributes and properties. */
enum {
  SVG_AF_PROPERTY = 0x1,    /**< for the host's drawing modules */
  SVG_AF_ATTRIBUTE = 0x2,   /**< the value goes to the slot area of an element with a begin hook */
  SVG_AF_POSITIVE = 0x4,    /**< for the host's drawing modules */
  SVG_AF_KEEPSPACE = 0x8,   /**< a blank value counts as given */
  SVG_AF_HORIZONTAL = 0x10, /**< for the host's drawing modules */
  SVG_AF_VERTICAL = 0x20,   /**< for the host's drawing modules */
  SVG_AF_NONUM = 0x100      /**< the first token is read without number recognition */
};

/** An attribute or property of the schema. */
typedef struct svg_attr_def {
  const char *name;         /**< with its prefix for xlink: and xml: */
  const char *default_text; /**< null: none */
  int32_t value_size;       /**< bytes of its record; 0, or the least, when that depends */
  svg_a_node *(*anew)(svg_parser *parser);            /**< for the reader; may be null */
  void (*ctor)(svg_parser *parser, svg_a_node *node); /**< for the reader; may be null */
  void (*dtor)(ort_core *core, svg_a_node *node);     /**< for the reader; may be null */
  uint32_t prio;             /**< place of its values in an element, 1 to 6 */
  uint32_t key_count;        /**< number of its keywords */
  const svg_key_entry *keys; /**< null when there are none */
  uint32_t flags;            /**< SVG_AF_* */
  uint32_t group;            /**< for the host's drawing modules */
  /** For the reader: slot offset by element id, -1 for none; null for rows that never have a slot.
   */
  const int16_t *apo;
} svg_attr_def;

/** The table of attributes and properties, 147 rows; the first 46 are the properties. */
ORT_API const svg_attr_def *svg_get_attr_table(void);

/** The table of elements, 39 rows by id. */
ORT_API const svg_elem_def *svg_get_elem_table(void);

/** Text of a keyword id; "" for SVG_KW_NONE, null for a number that is no id. */
ORT_API const char *svg_get_keyword_text(int32_t id);

/** A row of the reader's error table.
 * @param i           the row, from 0, in ascending order of code
 * @param code        receives the code; may be null
 * @param parameters  receives the number of parameters; may be null
 * @return the message, with "$1" to "$3" for the parameters; null past the end */
ORT_API const char *svg_get_error_text(size_t i, int32_t *code, int32_t *parameters);

/* ---- Life of a parser ------------------------------------------------------------------------ */

/** Makes the reader's messages (codes 10000 to 10104) known to a core. Once per core, before the
 * first parse. */
ORT_API void svg_register_errtab(ort_core *core);

/** Makes a parser. What is said to be "not copied" must outlive the parser.
 * @param core          owns all that the parser makes
 * @param font_number   when above 0, appended to generated font names
 * @param filename      name of the input in messages; not copied
 * @param css_context   what style sheets may reach outside the drawing; null: nothing. Not copied
 * @param language      the user's language ("en_US", "de-CH") for svg_check_system_language; null:
 *     none. Not copied
 * @param nottol_elements      names of elements unknown to the schema that make a file
 *     unacceptable, sorted ignoring ASCII case; null when there are none. Not copied
 * @param nottol_elements_num  their number
 * @param nottol_props         the same for properties
 * @param nottol_props_num     their number
 * @param attr_table_out  receives what svg_get_attr_table gives; may be null
 * @param elem_table_out  receives what svg_get_elem_table gives; may be null
 * @return the parser, deleted with svg_parser_delete
 * @raises ORT_E_NO_MEMORY */
ORT_API svg_parser *svg_parser_new(ort_core *core, int32_t font_number, const char *filename,
                                   const css_context *css_context, const char *language,
                                   const char *const *nottol_elements, int32_t nottol_elements_num,
                                   const char *const *nottol_props, int32_t nottol_props_num,
                                   const svg_attr_def **attr_table_out,
                                   const svg_elem_def **elem_table_out);

/** Reads the document. One call per parser. The last six parameters receive facts about the
 * document and may each be null.
 * @param parser           the parser
 * @param file             the input, at its start; it must be able to go back there. It stays the
 *     caller's
 * @param gz               *gz is null, or a gzip stream over file, through which it is read; then
 *     *gz may be replaced, and is the caller's in any case
 * @param viewport_width   width of the outermost viewport in points (a pixel is a point); 0 when it
 *     is given in percent
 * @param viewport_height  its height
 * @param viewbox_width    width of the outermost viewBox when the viewport's is given in percent,
 *     else 0
 * @param viewbox_height   its height
 * @param elems_used       the element ids used, 39 bits: id i is bit i % 8 of byte i / 8
 * @param has_text         1 when there is a text element, else 0
 * @return the outermost svg element
 * @raises 10009 for a file that is no SVG, 10020 and 10021 for a refused element or property,
 *     ORT_E_XML for ill-formed XML, 10000 to 10002 for a "data:" IRI without data, ORT_E_READ,
 *     ORT_E_GZIP, ORT_E_LIMIT, ORT_E_NO_MEMORY */
ORT_API svg_e_node *svg_parse(svg_parser *parser, ort_file *file, ort_gz **gz,
                              double *viewport_width, double *viewport_height,
                              double *viewbox_width, double *viewbox_height,
                              const unsigned char **elems_used, int32_t *has_text);

/** Frees the parser and all that it made, also after an error; null is allowed. */
ORT_API void svg_parser_delete(svg_parser *parser);

/** Content of the first title element that is not empty, with its markup; null when there is none.
 * Owned by the parser. */
ORT_API const char *svg_get_title_text(const svg_parser *parser);

/** The same for desc. */
ORT_API const char *svg_get_desc_text(const svg_parser *parser);

/** The same for metadata, as a child of the outermost svg element. */
ORT_API const char *svg_get_metadata(const svg_parser *parser);

/** Budgets of one parse; 0 means the default of core/ort_limits.h. */
typedef struct svg_limits {
  uint64_t nodes;        /**< element and text nodes: ORT_LIMIT_NODES */
  uint32_t depth;        /**< nesting of elements: ORT_LIMIT_DEPTH */
  float entity_factor;   /**< ORT_LIMIT_ENTITY_FACTOR */
  uint64_t entity_start; /**< in bytes: ORT_LIMIT_ENTITY_START */
} svg_limits;

/** Sets the budgets before svg_parse; null: the defaults. Past them svg_parse raises ORT_E_LIMIT,
 * for entities ORT_E_XML. */
ORT_API void svg_set_limits(svg_parser *parser, const svg_limits *limits);

/** Where a value came from. */
typedef enum svg_source {
  SVG_SOURCE_ATTRIBUTE, /**< an attribute, also a presentation attribute */
  SVG_SOURCE_SHEET,     /**< a style sheet */
  SVG_SOURCE_STYLE,     /**< the style attribute */
  SVG_SOURCE_DEFAULT,   /**< the default of a required attribute */
  SVG_SOURCE_IMPORTANT  /**< an !important declaration of a style sheet */
} svg_source;

/** Told of each value that an element gets, in the order of collection, before the element's values
 * are sorted. selector is the text of the rule's selector for style sheets, else null, and valid
 * during the call. A value may be replaced later while its element is built (the translation of
 * use); the observer is then told of the new one. The function must return. */
typedef void (*svg_observer_fn)(void *user, const svg_e_node *element, const svg_a_node *value,
                                svg_source source, const char *selector);

/** Sets the observer before svg_parse.
 * @param parser    the parser
 * @param observer  null: none
 * @param user      its first argument; may be null */
ORT_API void svg_set_observer(svg_parser *parser, svg_observer_fn observer, void *user);

/** Stores the seconds that the two passes of svg_parse took, by the system's monotonic clock. */
ORT_API void svg_get_pass_times(const svg_parser *parser, double *style_sheet_pass,
                                double *main_pass);

/* ---- Questions about a finished document ----------------------------------------------------- */

/** The last of an element's values whose row has this name ("fill", "xlink:href"), or null. Of a
 * property's values, attribute before style sheet before style, it is the one that holds, unless a
 * declaration of a style sheet is !important: see svg_set_observer. */
ORT_API const svg_a_node *svg_find_value(const svg_e_node *element, const char *name);

/** The element that bears an id or name, or null. */
ORT_API svg_e_node *svg_find_name(const svg_parser *parser, const char *name);

/** An id or name of an element, or "(empty)". Owned by the parser. */
ORT_API const char *svg_find_href_id(const svg_parser *parser, const svg_e_node *element);

/** Number of ids and names. */
ORT_API size_t svg_get_href_count(const svg_parser *parser);

/** An id or name, in ascending order of element addresses.
 * @param parser   the parser
 * @param i        its place, from 0
 * @param element  receives the element that bears it; may be null
 * @return the name, owned by the parser; null past the end */
ORT_API const char *svg_get_href(const svg_parser *parser, size_t i, svg_e_node **element);

/** Number of slots for links whose target does not exist. */
ORT_API size_t svg_get_unresolved_count(const svg_parser *parser);

/** A link whose target does not exist.
 * @param parser  the parser
 * @param i       a slot below svg_get_unresolved_count; some slots are not used
 * @param iri     receives the link; may be null
 * @param source  receives the element that holds it, null when a style sheet does; may be null
 * @return the name that it points to ("id" of "#id"), or null when the slot is not used */
ORT_API const char *svg_get_unresolved(const svg_parser *parser, size_t i, const svg_iri **iri,
                                       svg_e_node **source);

/** 1 when an entry of the element's systemLanguage list accepts the parser's language
 * (SVG 1.1, 5.8.5), else 0, also for an element without that list.
 * @raises ORT_E_NO_MEMORY, on the first call */
ORT_API int32_t svg_check_system_language(svg_parser *parser, const svg_e_node *element);

/** 1 when both IRIs are of the same kind and refer to the same thing, else 0. Texts are the same
 * thing only when they are one text.
 * @raises ORT_E_INTERNAL for two IRIs of the kind SVG_IRI_NONE or of no kind */
ORT_API int32_t svg_equal_iri(ort_core *core, const svg_iri *a, const svg_iri *b);

/* ---- SVG fonts ------------------------------------------------------------------------------- */

/** A font defined in the document. The values belong to the font-face element; each may be null. */
typedef struct svg_font {
  const char *id;                     /**< of the font (or lone font-face) element, or null */
  svg_e_node *node;                   /**< that element */
  const svg_an_key_name_list *family; /**< font-family */
  const svg_an_key_unum_list *size;   /**< font-size */
  const svg_an_key_list *stretch;     /**< font-stretch */
  const svg_an_key_list *style;       /**< font-style */
  const svg_an_key_list *variant;     /**< font-variant */
  const svg_an_key_list *weight;      /**< font-weight */
} svg_font;

/** Number of fonts. */
ORT_API size_t svg_get_font_count(const svg_parser *parser);

/** A font by its place in document order, from 0; null past the end. */
ORT_API const svg_font *svg_get_font_at(const svg_parser *parser, size_t i);

/** The font that fits best: the first that fits exactly, else the first that fits when "all"
 * accepts every value and the weight does not count.
 * @param parser   the parser
 * @param family   a name, compared byte for byte; null: generic is asked for
 * @param generic  keyword id of a generic family (SVG_KW_serif ...)
 * @param size     compared with the numbers of font-size, whatever their units
 * @param stretch  keyword id
 * @param style    keyword id; italic and oblique are the same
 * @param variant  keyword id
 * @param weight   SVG_KW_100 to SVG_KW_900: see svg_normalize_font_weight
 * @return its font (or lone font-face) element, or null */
ORT_API svg_e_node *svg_get_font(const svg_parser *parser, const char *family, int32_t generic,
                                 double size, int32_t stretch, int32_t style, int32_t variant,
                                 int32_t weight);

/** The element of the first font, or null; appends its name to name when that is not null.
 * @raises ORT_E_NO_MEMORY */
ORT_API svg_e_node *svg_get_first_font(svg_parser *parser, ort_bs *name);

/** Appends a generated name that encodes the font's descriptors ("MyFont_700_italic___").
 * @raises ORT_E_NO_MEMORY */
ORT_API void svg_create_fontname(svg_parser *parser, const svg_font *font, ort_bs *name);

/** SVG_KW_400 for SVG_KW_normal, SVG_KW_700 for SVG_KW_bold, any other id unchanged. */
ORT_API int32_t svg_normalize_font_weight(int32_t weight);

/** Reads a Unicode range "U+41", "U+41-5A" or "U+4??" (CSS2, 15.3.3). Never raises.
 * @param core   the core
 * @param text   the range
 * @param first  receives the first code
 * @param last   receives the last code
 * @return 1, or 0 for another text */
ORT_API int32_t svg_get_urange(ort_core *core, const char *text, uint32_t *first, uint32_t *last);

/* ---- Path data ------------------------------------------------------------------------------- */

/** Begins a subpath. Coordinates in these callbacks are absolute, with the offsets added; a
 * callback may raise. */
typedef void (*spp_moveto_fn)(void *userdata, double x, double y);
/** A line to a point. */
typedef void (*spp_lineto_fn)(void *userdata, double x, double y);
/** A cubic curve: two control points and the end point. */
typedef void (*spp_curveto_fn)(void *userdata, double x1, double y1, double x2, double y2,
                               double x3, double y3);
/** An elliptical arc as cubic curves, which are valid during the call. */
typedef void (*spp_elliarc_fn)(void *userdata, const ort_bezier_list *curves);
/** Closes the subpath. */
typedef void (*spp_closepath_fn)(void *userdata);

/** Reads path data (SVG 1.1, 8.3) and reports its segments. Needs no document and allocates
 * nothing. Quadratic curves are reported as cubic ones. Any callback may be null: that kind of
 * segment is not reported.
 * @param core       for errors and the log
 * @param mode       reserved for the arc conversion: 1
 * @param path       the text
 * @param x_offset   added to every x
 * @param y_offset   added to every y
 * @param userdata   first argument of the callbacks; may be null
 * @param closepath  told of each closepath
 * @param curveto    told of each curve
 * @param elliarc    told of each arc (SVG 1.1, appendix F.6)
 * @param lineto     told of each line
 * @param moveto     told of each moveto
 * @raises 10100 (no moveto first), 10102 (unknown command), 10104 (bad number), each after the
 *     segments before the error were reported; and what the callbacks raise */
ORT_API void svg_spp_parse(ort_core *core, int32_t mode, const char *path, double x_offset,
                           double y_offset, void *userdata, spp_closepath_fn closepath,
                           spp_curveto_fn curveto, spp_elliarc_fn elliarc, spp_lineto_fn lineto,
                           spp_moveto_fn moveto);

/** Reads path data without reporting anything. Never raises.
 * @param path    the text
 * @param offset  receives the byte at which the error is, to be shown under the text, or the length
 *     of the text; may be null
 * @return 0 when it is well formed, else the code that svg_spp_parse raises for it */
ORT_API int32_t svg_spp_check(const char *path, size_t *offset);

/** Parses the text at the scanner's position into the parser's path accumulator; for constructors
 * of path values only.
 * @raises what svg_spp_parse raises, and ORT_E_NO_MEMORY */
ORT_API void svg_pada_parse(svg_parser *parser);

#ifdef __cplusplus
}
#endif

#endif
