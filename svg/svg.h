/* svg.h: the SVG 1.1 reader as a host sees it: functions, the document tree, the value records.
 *
 * One parser reads one document. Everything that it hands out (nodes, values, texts) belongs to the
 * parser and is valid until svg_parser_delete. Functions that say "raises" leave by a non-local
 * exit to the nearest ort_protect (core/ort.h). A parser belongs to one thread at a time; the
 * schema tables are constant and shared.
 */
#ifndef SVG_H
#define SVG_H

#include "core/ort.h"
#include "css/css_context.h"
#include "svg/svg_names.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct svg_parser svg_parser;

/* ---- Tree ---------------------------------------------------------------------------------------------------- */

/* What every node begins with. id tells a text node (SVG_ID_TEXT) from an element node. */
typedef struct svg_node {
  int16_t id;     /* element id 0 to 38 (row of svg_elem_table), SVG_ID_ROOT or SVG_ID_TEXT */
  uint16_t flags; /* SVG_EF_* of an element, SVG_TF_* of a text */
  struct svg_node *next; /* next sibling, or null */
} svg_node;

enum { SVG_ID_ROOT = 39, SVG_ID_TEXT = 40 };

/* Flags of element nodes. */
enum {
  SVG_EF_NEEDS_BBOX = 0x0001,  /* its bounding box is needed to draw it */
  SVG_EF_TEXT = 0x0002,        /* a text element */
  SVG_EF_GROUP = 0x0004,       /* a g element */
  SVG_EF_NEEDS_BBOX2 = 0x0010, /* it is an a, or refers to a clipPath */
  SVG_EF_SYSLANG = 0x0020,     /* it has a systemLanguage value */
  SVG_EF_BBOX_USER = 0x0100,   /* elements that refer to it need their bounding box */
  SVG_EF_BBOX_USER2 = 0x0200   /* the same for clipPath */
};

/* Flags of text nodes. */
enum { SVG_TF_LAST = 0x0001 /* last non-blank text node of its text element */ };

/* What every value begins with: the 4-byte header. The record that follows is told by
 * svg_get_record_kind(row). */
typedef struct svg_a_node {
  int16_t row;  /* row of svg_attr_table: the attribute or property */
  uint8_t kind; /* SVG_PAINT_* in paint records */
  uint8_t unit; /* SVG_UNIT_* in records of a single number with unit */
} svg_a_node;

/* A record of an attribute that some selector tests. */
typedef struct svg_css_attr {
  int16_t nid; /* the CSS engine's number of the attribute's name */
  char *value;
  struct svg_css_attr *next;
} svg_css_attr;

typedef struct svg_e_node {
  svg_node head;
  svg_a_node *
      *values; /* values_num values by ascending prio of their rows; null when there are none */
  int32_t values_num;
  svg_node *first_child;
  int32_t level;           /* the outermost svg element has 1 */
  struct svg_e_node *prev; /* the element built just before this one, in document order */
  svg_css_attr *css_attrs;
  int16_t id_nid; /* the CSS engine's number of the id, -1 for none */
  int16_t *class_nids;
  int32_t class_num;
} svg_e_node;

typedef struct svg_t_node {
  svg_node head;
  char *text; /* UTF-8, white space as written; "" for data inside a skipped element */
} svg_t_node;

/* The node as an element, or null when it is a text (or null). */
static inline svg_e_node *svg_as_element(svg_node *node) {
  return node != NULL && node->id != SVG_ID_TEXT ? (svg_e_node *)node : NULL;
}

/* The node as a text, or null when it is an element (or null). */
static inline svg_t_node *svg_as_text(svg_node *node) {
  return node != NULL && node->id == SVG_ID_TEXT ? (svg_t_node *)node : NULL;
}

/* ---- Values -------------------------------------------------------------------------------------------------- */

/* Units of numbers (SVG 1.1, 4.2). */
enum {
  SVG_UNIT_NONE,
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

/* Kinds of value records. */
typedef enum svg_record_kind {
  SVG_RECORD_NONE, /* the row makes no value: class, id, name, xml:id, style, font */
  SVG_RECORD_KEYWORD,
  SVG_RECORD_NUMBER,
  SVG_RECORD_UNUM,
  SVG_RECORD_KEY_NUMBER,
  SVG_RECORD_KEY_UNUM,
  SVG_RECORD_ASPECT,
  SVG_RECORD_VIEWBOX,
  SVG_RECORD_CLIP,
  SVG_RECORD_STRING,
  SVG_RECORD_NAME_LIST,
  SVG_RECORD_NUM_LIST,
  SVG_RECORD_KEY_LIST,
  SVG_RECORD_UNUM_LIST,
  SVG_RECORD_KEY_UNUM_LIST,
  SVG_RECORD_TRAFO,
  SVG_RECORD_COLOR,
  SVG_RECORD_PAINT,
  SVG_RECORD_IRI,
  SVG_RECORD_COLOR_PROFILE,
  SVG_RECORD_KEY_NAME_LIST,
  SVG_RECORD_PATH_DATA
} svg_record_kind;

/* The record kind of a row's values; SVG_RECORD_NONE for a row outside 0 to 146. */
ORT_API svg_record_kind svg_get_record_kind(int32_t row);

/* In the records below, "align_" pads the header where the payload is aligned to 8 bytes. Keyword
 * ids are SVG_KW_*. */

typedef struct svg_an_keyword {
  svg_a_node head;
  int32_t key;
} svg_an_keyword;

typedef struct svg_an_number {
  svg_a_node head;
  double value;
} svg_an_number;

typedef struct svg_an_unum {
  svg_a_node head; /* head.unit is the number's unit */
  double value;    /* as written: 50 for 50% */
} svg_an_unum;

typedef struct svg_an_key_number {
  svg_a_node head;
  int32_t align_;
  int32_t key;  /* keyword id, or 0 */
  double value; /* when key is 0 */
} svg_an_key_number;

typedef struct svg_an_key_unum {
  svg_a_node head; /* head.unit when key is 0 */
  int32_t align_;
  int32_t key;
  double value; /* when key is 0 */
} svg_an_key_unum;

typedef struct svg_an_aspect {
  svg_a_node head;
  int32_t defer; /* 1: "defer" was given */
  int32_t meet;  /* 1: meet, 0: slice */
  int32_t align; /* keyword id of the alignment, or of "none" */
} svg_an_aspect;

typedef struct svg_an_viewbox {
  svg_a_node head;
  double min_x, min_y, width, height;
} svg_an_viewbox;

typedef struct svg_an_clip {
  svg_a_node head;
  int32_t align_;
  int32_t key;    /* "auto", "rect" or "inherit" */
  double rect[4]; /* the numbers of rect() as written, else 0 */
} svg_an_clip;

typedef struct svg_an_string {
  svg_a_node head;
  char *text;
} svg_an_string;

typedef struct svg_an_name_list {
  svg_a_node head;
  int32_t align_;
  int32_t count;
  char **names;
} svg_an_name_list;

typedef struct svg_an_num_list {
  svg_a_node head;
  int32_t align_;
  int32_t count;
  double *values;
} svg_an_num_list;

typedef struct svg_an_key_list {
  svg_a_node head;
  int32_t align_;
  int32_t count;
  int32_t *keys;
} svg_an_key_list;

typedef struct svg_an_unum_list {
  svg_a_node head;
  int32_t align_;
  int32_t count;
  double *values;
  uint8_t *units; /* SVG_UNIT_* of each value */
} svg_an_unum_list;

typedef struct svg_an_key_unum_list {
  svg_a_node head;
  int32_t align_;
  int32_t key; /* keyword id (count is then 0), or 0 */
  int32_t count;
  double *values;
  uint8_t *units;
} svg_an_key_unum_list;

typedef struct svg_an_key_name_list { /* font-family */
  svg_a_node head;
  int32_t align_;
  int32_t count; /* at least 1 */
  int32_t *keys; /* keyword id of a generic family or "inherit"; 0 for a name */
  char **names;  /* family name; null for a keyword */
} svg_an_key_name_list;

/* Transforms: what was written, or one matrix. Angles are in degrees. */
enum {
  SVG_TRAFO_MATRIX =
      0, /* a b c d e f: a matrix, a rotation about a point, or a list of transforms composed */
  SVG_TRAFO_ROTATE = 1,      /* angle */
  SVG_TRAFO_SCALE = 3,       /* s, for both axes */
  SVG_TRAFO_SCALE_XY = 4,    /* sx sy */
  SVG_TRAFO_SKEW_X = 5,      /* angle */
  SVG_TRAFO_SKEW_Y = 6,      /* angle */
  SVG_TRAFO_TRANSLATE = 7,   /* tx */
  SVG_TRAFO_TRANSLATE_XY = 8 /* tx ty */
};

/* The block is as long as its type needs: 56 bytes for a matrix, 24 for two numbers, 16 for one. */
typedef struct svg_an_trafo {
  svg_a_node head;
  int32_t type;      /* SVG_TRAFO_* */
  double numbers[6]; /* 6, 1 or 2 of them exist, by type */
} svg_an_trafo;

/* Color spaces of a color extension. */
enum {
  SVG_CT_NONE = -1,
  SVG_CT_DEVICE_GRAY = 0,
  SVG_CT_DEVICE_RGB = 1,
  SVG_CT_DEVICE_CMYK = 2,
  SVG_CT_ICC = 3,  /* profile without values */
  SVG_CT_ICC1 = 4, /* profile with 1, 3 or 4 values */
  SVG_CT_ICC3 = 5,
  SVG_CT_ICC4 = 6,
  SVG_CT_CIELAB = 7,
  SVG_CT_CIELCH = 8, /* never stored: it becomes SVG_CT_CIELAB */
  SVG_CT_ICC_NAMED = 9,
  SVG_CT_DEVICE_NCHANNEL = 10
};

/* Last value of a SVG_CT_DEVICE_NCHANNEL list. */
#define SVG_CT_TERMINATOR (-1e18)

typedef struct svg_color {
  uint32_t rgb;      /* sRGB 0x00RRGGBB */
  int32_t colortype; /* SVG_CT_* */
  char *name;        /* ICC profile or named color, or null */
  double *
      comps; /* values of the extension, or null. For SVG_CT_ICC*, SVG_CT_ICC_NAMED and
                SVG_CT_DEVICE_NCHANNEL     comps[0] is -1 and the values follow from comps[1]. Their
                number follows from colortype; an     N-channel list ends with SVG_CT_TERMINATOR. */
} svg_color;

/* Kinds of IRIs. */
enum {
  SVG_IRI_NONE = 0, /* clip-path "none" or "inherit" */
  SVG_IRI_DATA = 1, /* embedded data */
  SVG_IRI_LINK = 2, /* "#id" */
  SVG_IRI_NAME =
      3 /* any other IRI, as text; with a null text: "none" or "inherit" of mask and the markers */
};

/* MIME types of embedded data. */
enum {
  SVG_MIME_NOT_DATA = -2,
  SVG_MIME_UNKNOWN = -1,
  SVG_MIME_GIF = 0,
  SVG_MIME_JPEG = 1,
  SVG_MIME_PNG = 2,
  SVG_MIME_SVG = 3,
  SVG_MIME_TIFF = 4,
  SVG_MIME_CSS = 5
};

typedef struct svg_iri {
  int16_t kind;     /* SVG_IRI_* */
  int16_t mime;     /* SVG_MIME_* */
  int32_t fallback; /* color behind a paint's IRI, 0x00RRGGBB, or -1 */
  union {
    svg_e_node *target; /* SVG_IRI_LINK: the element, or null when no element has the id */
    char *text; /* SVG_IRI_DATA: name of the virtual file, or null when it is empty; SVG_IRI_NAME:
                   the IRI */
    void *any;
  } ref;
} svg_iri;

typedef struct svg_an_color {
  svg_a_node head;
  uint32_t rgb;
} svg_an_color;

/* Kinds of paints, in head.kind. */
enum {
  SVG_PAINT_NONE = 0,
  SVG_PAINT_INHERIT = 1,
  SVG_PAINT_CURRENTCOLOR = 2,
  SVG_PAINT_RGB = 3,
  SVG_PAINT_IRI = 4,
  SVG_PAINT_COLOR = 5
};

/* A paint is one of the three records below, by head.kind; the kinds 0 to 2 are the header alone.
 */
typedef struct svg_an_paint_rgb {
  svg_a_node head;
  uint32_t rgb;
} svg_an_paint_rgb;

typedef struct svg_an_paint_iri {
  svg_a_node head;
  svg_iri iri;
} svg_an_paint_iri;

typedef struct svg_an_paint_color {
  svg_a_node head;
  svg_color color;
} svg_an_paint_color;

typedef struct svg_an_iri {
  svg_a_node head;
  svg_iri iri;
} svg_an_iri;

typedef struct svg_an_color_profile {
  svg_a_node head;
  int32_t align_;
  int32_t keyword; /* SVG_KW_none when name is a profile's name */
  char *name;
  svg_iri iri; /* never filled */
} svg_an_color_profile;

/* Kinds of path records. */
enum {
  SVG_PADA_NONE = 0,
  SVG_PADA_MOVETO = 1,   /* one point: a new subpath */
  SVG_PADA_LINETO = 2,   /* 1 to 5000 points: lines from point to point */
  SVG_PADA_CURVETO = 3,  /* up to 4998 points, three for each cubic curve */
  SVG_PADA_CLOSEPATH = 4 /* no points */
};

typedef struct svg_pada {
  int16_t type; /* SVG_PADA_* */
  uint16_t count;
  double *points; /* count pairs x, y, absolute; null when count is 0 */
} svg_pada;

typedef struct svg_an_path_data {
  svg_a_node head;
  int32_t align_;
  int32_t vertices;  /* 1 for each moveto, lineto and closepath, 3 for each curve */
  ort_vtr *segments; /* svg_pada records, or null */
} svg_an_path_data;

/* ---- Schema -------------------------------------------------------------------------------------------------- */

typedef struct svg_key_entry {
  const char *text;
  int32_t id; /* SVG_KW_* */
} svg_key_entry;

typedef struct svg_esa_entry {
  const char *name; /* attribute name as written, with its prefix for xlink: and xml: */
  int16_t attr;     /* row of svg_attr_table */
} svg_esa_entry;

typedef struct svg_elem_def {
  const char *name;
  void (*beg_hook)(svg_parser *parser, svg_e_node *node);
  void (*end_hook)(svg_parser *parser);
  int32_t esa_count;
  const svg_esa_entry *esa_list; /* sorted by name */
  int32_t req_count;
  const int16_t *req_list; /* indexes into esa_list */
  uint32_t slot_size;
  uint32_t category; /* for the host's drawing modules */
  int32_t kind;      /* for the host's drawing modules */
} svg_elem_def;

/* Flags of definitions. The bits without a remark are for the host's drawing modules. */
enum {
  SVG_AF_PROPERTY = 0x1,
  SVG_AF_ATTRIBUTE = 0x2, /* the value goes to the slot area of an element with a begin hook */
  SVG_AF_POSITIVE = 0x4,
  SVG_AF_KEEPSPACE = 0x8, /* a blank value counts as given */
  SVG_AF_HORIZONTAL = 0x10,
  SVG_AF_VERTICAL = 0x20,
  SVG_AF_NONUM = 0x100 /* the first token is read without number recognition */
};

typedef struct svg_attr_def {
  const char *name;
  const char *default_text;
  int32_t value_size;
  svg_a_node *(*anew)(svg_parser *parser);
  void (*ctor)(svg_parser *parser, svg_a_node *node);
  void (*dtor)(ort_core *core, svg_a_node *node);
  uint32_t prio;
  uint32_t key_count;
  const svg_key_entry *keys;
  uint32_t flags; /* SVG_AF_* */
  uint32_t group; /* for the host's drawing modules */
  const int16_t
      *apo; /* slot offset by element id, -1 for none; null for rows that never have a slot */
} svg_attr_def;

/* The schema tables: 147 rows of attributes and properties, 39 rows of elements. */
ORT_API const svg_attr_def *svg_get_attr_table(void);
ORT_API const svg_elem_def *svg_get_elem_table(void);

/* Text of a keyword id; "" for SVG_KW_NONE, null for a number that is no id. */
ORT_API const char *svg_get_keyword_text(int32_t id);

/* Template of the i-th row of the reader's error table, in ascending order of code, with "$1" to
 * "$3" for its parameters; null past the end. code and parameters (their number) may be null. */
ORT_API const char *svg_get_error_text(size_t i, int32_t *code, int32_t *parameters);

/* ---- Life of a parser ---------------------------------------------------------------------------------------- */

/* Makes the reader's messages (codes 10000 to 10104) known to a core. Once per core, before the
 * first parse. */
ORT_API void svg_register_errtab(ort_core *core);

/* Makes a parser. Raises for lack of memory.
 * font_number: when above 0, appended to generated font names.
 * filename: name of the input in messages; not copied, must outlive the parser.
 * css_context: what style sheets may reach outside the drawing; null: nothing. Not copied.
 * language: the user's language ("en_US", "de-CH") for svg_check_system_language; not copied; may
 * be null. nottol_elements, nottol_props: names of elements and properties unknown to the schema
 * that make a file unacceptable, sorted ignoring ASCII case; not copied. attr_table_out,
 * elem_table_out: receive the schema tables (147 and 39 rows); may be null. */
ORT_API svg_parser *svg_parser_new(ort_core *core, int32_t font_number, const char *filename,
                                   const css_context *css_context, const char *language,
                                   const char *const *nottol_elements, int32_t nottol_elements_num,
                                   const char *const *nottol_props, int32_t nottol_props_num,
                                   const svg_attr_def **attr_table_out,
                                   const svg_elem_def **elem_table_out);

/* Reads the document from file (and through *gz, a gzip stream over it, when *gz is not null; *gz
 * may be replaced). Stores the facts (each pointer may be null): size of the outermost viewport in
 * points (0 when it is given in percent), size of the outermost viewBox (0 without), bit array of
 * the element ids used (39 bits, bit i % 8 of byte i / 8), 1 when there is a text element. Returns
 * the outermost svg element. Raises: 10009 not an SVG file, 10020/10021 refused element or
 * property, ORT_E_XML ill-formed XML, ORT_E_READ, ORT_E_GZIP, ORT_E_LIMIT, ORT_E_NO_MEMORY, 10000
 * to 10002 for an incomplete "data:" IRI. One call per parser. */
ORT_API svg_e_node *svg_parse(svg_parser *parser, ort_file *file, ort_gz **gz,
                              double *viewport_width, double *viewport_height,
                              double *viewbox_width, double *viewbox_height,
                              const unsigned char **elems_used, int32_t *has_text);

/* Frees the parser and all that it made, also after an error; null is allowed. */
ORT_API void svg_parser_delete(svg_parser *parser);

/* The first non-empty title, desc, and metadata child of the outermost svg; null when there is
 * none. */
ORT_API const char *svg_get_title_text(const svg_parser *parser);
ORT_API const char *svg_get_desc_text(const svg_parser *parser);
ORT_API const char *svg_get_metadata(const svg_parser *parser);

/* Budgets of one parse; 0 means the default of ort_limits.h. Set before svg_parse. */
typedef struct svg_limits {
  uint64_t nodes; /* element and text nodes */
  uint32_t depth; /* nesting of elements */
  float entity_factor;
  uint64_t entity_start;
} svg_limits;
ORT_API void svg_set_limits(svg_parser *parser, const svg_limits *limits);

/* Where a value came from. */
typedef enum svg_source {
  SVG_SOURCE_ATTRIBUTE,
  SVG_SOURCE_SHEET,
  SVG_SOURCE_STYLE,
  SVG_SOURCE_DEFAULT,
  SVG_SOURCE_IMPORTANT /* an !important declaration of a style sheet */
} svg_source;

/* Told of each value that an element gets, in the order of collection, before the element's values
 * are sorted. selector is the text of the rule's selector for style sheets, else null. A value
 * may be replaced later while its element is built (the translation of use); the observer is then
 * told of the new one. The function must return. */
typedef void (*svg_observer_fn)(void *user, const svg_e_node *element, const svg_a_node *value,
                                svg_source source, const char *selector);
ORT_API void svg_set_observer(svg_parser *parser, svg_observer_fn observer, void *user);

/* Seconds that the two passes of the last svg_parse took, by the system's monotonic clock. */
ORT_API void svg_get_pass_times(const svg_parser *parser, double *style_sheet_pass,
                                double *main_pass);

/* ---- Questions about a finished document --------------------------------------------------------------------- */

/* The last of an element's values whose row has this name ("fill", "xlink:href"), or null. Of a
 * property's values, attribute before style sheet before style, it is the one that holds, unless a
 * declaration of a style sheet is !important: see svg_set_observer. */
ORT_API const svg_a_node *svg_find_value(const svg_e_node *element, const char *name);

/* The element that bears an id or name, or null. */
ORT_API svg_e_node *svg_find_name(const svg_parser *parser, const char *name);

/* The id or name of an element, or "(empty)". */
ORT_API const char *svg_find_href_id(const svg_parser *parser, const svg_e_node *element);

/* Number of ids and names, and the i-th in ascending order of element addresses: its name, and its
 * element in *element (may be null). Null past the end. */
ORT_API size_t svg_get_href_count(const svg_parser *parser);
ORT_API const char *svg_get_href(const svg_parser *parser, size_t i, svg_e_node **element);

/* Links of the document whose target does not exist. Slots 0 to count - 1 hold them, some may be
 * unused. The i-th slot's name ("id" of "#id"), or null when it is unused; *iri is the link and
 * *source the element that holds it, null when a style sheet does. Both pointers may be null. */
ORT_API size_t svg_get_unresolved_count(const svg_parser *parser);
ORT_API const char *svg_get_unresolved(const svg_parser *parser, size_t i, const svg_iri **iri,
                                       svg_e_node **source);

/* 1 when an entry of the element's systemLanguage list accepts the parser's language
 * (SVG 1.1, 5.8.5), else 0, also for an element without that list. Raises for lack of memory on the
 * first call. */
ORT_API int32_t svg_check_system_language(svg_parser *parser, const svg_e_node *element);

/* 1 when both IRIs are of the same kind and refer to the same thing. Raises for an unknown kind. */
ORT_API int32_t svg_equal_iri(ort_core *core, const svg_iri *a, const svg_iri *b);

/* ---- SVG fonts ----------------------------------------------------------------------------------------------- */

/* A font defined in the document. The values belong to the font-face element; each may be null. */
typedef struct svg_font {
  const char *id;   /* of the font (or lone font-face) element, or null */
  svg_e_node *node; /* that element */
  const svg_an_key_name_list *family;
  const svg_an_key_unum_list *size;
  const svg_an_key_list *stretch;
  const svg_an_key_list *style;
  const svg_an_key_list *variant;
  const svg_an_key_list *weight;
} svg_font;

/* Number of fonts, and the i-th in document order. */
ORT_API size_t svg_get_font_count(const svg_parser *parser);
ORT_API const svg_font *svg_get_font_at(const svg_parser *parser, size_t i);

/* The element of the font that fits best: first exactly, then with "all" descriptors and any
 * weight; null for none. family: a name (compared byte for byte), or null to ask for the generic
 * family (SVG_KW_serif ...). weight: SVG_KW_100 to SVG_KW_900; stretch, style, variant: their
 * keyword ids. */
ORT_API svg_e_node *svg_get_font(const svg_parser *parser, const char *family, int32_t generic,
                                 double size, int32_t stretch, int32_t style, int32_t variant,
                                 int32_t weight);

/* The element of the first font, or null; appends its name to name when that is not null. */
ORT_API svg_e_node *svg_get_first_font(svg_parser *parser, ort_bs *name);

/* Appends a generated name that encodes the font's descriptors ("MyFont_700_italic___"). Raises for
 * lack of memory. */
ORT_API void svg_create_fontname(svg_parser *parser, const svg_font *font, ort_bs *name);

/* SVG_KW_400 for SVG_KW_normal, SVG_KW_700 for SVG_KW_bold, any other id unchanged. */
ORT_API int32_t svg_normalize_font_weight(int32_t weight);

/* Reads a Unicode range "U+41", "U+41-5A" or "U+4??" (CSS 2.1, @font-face). Returns 1 and stores
 * the first and last code, or 0 for another text. Raises for lack of memory. */
ORT_API int32_t svg_get_urange(ort_core *core, const char *text, uint32_t *first, uint32_t *last);

/* ---- Path data ----------------------------------------------------------------------------------------------- */

/* Callbacks of svg_spp_parse; coordinates are absolute, with the offsets added. They may raise. */
typedef void (*spp_moveto_fn)(void *userdata, double x, double y);
typedef void (*spp_lineto_fn)(void *userdata, double x, double y);
typedef void (*spp_curveto_fn)(void *userdata, double x1, double y1, double x2, double y2,
                               double x3, double y3);
typedef void (*spp_elliarc_fn)(void *userdata,
                               const ort_bezier_list *curves); /* valid during the call */
typedef void (*spp_closepath_fn)(void *userdata);

/* Reads path data (SVG 1.1, 8.3) and reports its segments. Needs no document. mode is passed to the
 * arc conversion (1). Any callback may be null: that kind of segment is not reported. Raises 10100
 * (no moveto first), 10102 (unknown command), 10104 (bad number) after the segments before the
 * error were reported. Allocates nothing. */
ORT_API void svg_spp_parse(ort_core *core, int32_t mode, const char *path, double x_offset,
                           double y_offset, void *userdata, spp_closepath_fn closepath,
                           spp_curveto_fn curveto, spp_elliarc_fn elliarc, spp_lineto_fn lineto,
                           spp_moveto_fn moveto);

/* Reads path data without reporting anything. Returns 0 when it is well formed, else the code that
 * svg_spp_parse raises for it; *offset (may be null) is then the byte at which the error is, to be
 * shown under the text. Never raises. */
ORT_API int32_t svg_spp_check(const char *path, size_t *offset);

/* Parses the text at the scanner's position into the parser's path accumulator; for constructors of
 * path values. */
ORT_API void svg_pada_parse(svg_parser *parser);

#ifdef __cplusplus
}
#endif

#endif
