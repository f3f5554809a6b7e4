/** @file
 * The SVG 1.1 reader as a host sees it. The records that its functions give are in svg_records.h.
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

#include "../core/ort.h"
#include "../css/css_context.h"
#include "svg_records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Schema ---------------------------------------------------------------------------------- */

/** The table of attributes and properties: SVG_ATTR_COUNT rows. */
ORT_API const svg_attr_def *svg_get_attr_table(void);

/** 1 when a row is a property, SVG_PROP_* of svg_names.h; 0 for attributes and for a row outside of
 * the table. */
ORT_API int32_t svg_is_property(int32_t row);

/** The table of elements: SVG_ELEM_COUNT rows by id. */
ORT_API const svg_elem_def *svg_get_elem_table(void);

/** The record kind of a row's values; SVG_RECORD_NONE for a row outside of the table. */
ORT_API svg_record_kind svg_get_record_kind(int32_t row);

/** Text of a keyword id; "" for SVG_KW_NONE, null for a number that is no id. */
ORT_API const char *svg_get_keyword_text(int32_t id);

/** 1 when an element without a value for this property takes its parent's (SVG 1.1, appendix N: the
 * column "Inherited"); 0 for other properties and for rows that are no property. */
ORT_API int32_t svg_is_inherited(int32_t row);

/** Codes of the reader's messages. A bad value is a warning that costs the value, but for a "data:"
 * IRI without data; docs/errors-and-log.md tells which others end a parse. */
enum {
  SVG_E_ATTRIBUTE_INCOMPLETE = 10000, /**< "attribute '$1': incomplete value," */
  SVG_E_PROPERTY_INCOMPLETE = 10001,  /**< "property '$1': incomplete value," */
  SVG_E_STYLE_INCOMPLETE = 10002,     /**< "attribute 'style', property '$1': incomplete value," */
  SVG_E_ATTRIBUTE_MISSING = 10003,    /**< "attribute is missing": of xml-stylesheet */
  SVG_E_ATTRIBUTE_TOKEN = 10004,      /**< "attribute '$1': unexpected token '$2'," */
  SVG_E_PROPERTY_TOKEN = 10005,       /**< "property '$1': unexpected token '$2'," */
  SVG_E_STYLE_TOKEN = 10006,          /**< "attribute 'style', property '$1': unexpected token
                                           '$2'," */
  SVG_E_POSITION = 10008,             /**< " in file '$1', line $2, element '$3'": appended */
  SVG_E_NOT_SVG = 10009,              /**< "File '$1' does not seem to be an SVG file" */
  SVG_E_LINK_UNSUPPORTED = 10010,     /**< "Unsupported $1 link $2": for drawing modules */
  SVG_E_ELEMENT_UNSUPPORTED = 10011,  /**< "Unsupported element $1": for drawing modules */
  SVG_E_LINK_INVALID = 10012,         /**< "Invalid link": for drawing modules */
  SVG_E_BBOX_INVALID = 10013,         /**< "Invalid bounding box (cannot be used)": the same */
  SVG_E_VIEWPORT = 10014,             /**< "Invalid SVG viewport ($1 is not available)" */
  SVG_E_LANGUAGE = 10015,         /**< "Specified system language '$1' not available within switch
                                       block ": for drawing modules */
  SVG_E_ELEMENT_REFUSED = 10020,  /**< "File '$1' contains unsupported element '$2'" */
  SVG_E_PROPERTY_REFUSED = 10021, /**< "File '$1' contains unsupported property '$2'" */
  SVG_E_PATH_START = 10100,       /**< "SVG path must start with 'm' or 'M' command" */
  SVG_E_PATH_COMMAND = 10102,     /**< "Unknown command in SVG path" */
  SVG_E_PATH_NUMBER = 10104       /**< "Missing or illegal numeric parameter '$1' in SVG path" */
};

/** A row of the reader's error table.
 * @param i           the row, from 0, in ascending order of code
 * @param code        receives the code; may be null
 * @param parameters  receives the number of parameters; may be null
 * @return the message, with "$1" to "$3" for the parameters; null past the end */
ORT_API const char *svg_get_error_text(size_t i, int32_t *code, int32_t *parameters);

/* ---- Life of a parser ------------------------------------------------------------------------ */

/** Makes the reader's messages (SVG_E_*) known to a core. Once per core, before the first parse. */
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
 * @raises SVG_E_NOT_SVG for a file that is no SVG, SVG_E_ELEMENT_REFUSED, SVG_E_PROPERTY_REFUSED,
 *     ORT_E_XML for ill-formed XML, SVG_E_ATTRIBUTE_INCOMPLETE, SVG_E_PROPERTY_INCOMPLETE or
 *     SVG_E_STYLE_INCOMPLETE for a "data:" IRI without data, ORT_E_READ, ORT_E_GZIP, ORT_E_LIMIT,
 *     ORT_E_NO_MEMORY, ORT_E_CALL_FAILED, ORT_E_INTERNAL */
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

/** The core that a parser was made with. */
ORT_API ort_core *svg_get_core(const svg_parser *parser);

/** Budgets of one drawing; 0 means the default of core/ort_limits.h. */
typedef struct svg_limits {
  uint64_t nodes;        /**< element and text nodes: ORT_LIMIT_NODES */
  uint32_t depth;        /**< nesting of elements: ORT_LIMIT_DEPTH */
  float entity_factor;   /**< ORT_LIMIT_ENTITY_FACTOR */
  uint64_t entity_start; /**< in bytes: ORT_LIMIT_ENTITY_START */
  uint64_t recorded;     /**< in bytes: ORT_LIMIT_RECORDED; 1: the input is always read twice */
  uint64_t expanded;     /**< elements that a walk over a scene shows: ORT_LIMIT_EXPANDED */
} svg_limits;

/** Sets the budgets before svg_parse; null: the defaults. Past them svg_parse raises ORT_E_LIMIT,
 * for entities (but not for default attributes, which count like them) ORT_E_XML. Past `recorded`
 * it only becomes slower. `expanded` is looked at by scene/svg_scene.h. */
ORT_API void svg_set_limits(svg_parser *parser, const svg_limits *limits);

/** Stores the budgets as they hold, none of them 0. */
ORT_API void svg_get_limits(const svg_parser *parser, svg_limits *limits);

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

/** An attribute as it was written, but for what XML makes of its value. */
typedef struct svg_written_attr {
  const char *prefix; /**< "" for none; of a namespace with several prefixes, the innermost one */
  const char *name;   /**< without the prefix */
  const char *value;  /**< with references replaced and white space made blanks (XML 1.0, 3.3.3) */
} svg_written_attr;

/** Told of each element that is built, in document order, as soon as it has its values. line is
 * where its start tag begins. attributes, count of them, are all that its start tag has in their
 * order, foreign and refused ones included, then those that the document type adds; they are valid
 * during the call, as is the array, which is null when there are none. The function must return. */
typedef void (*svg_element_observer_fn)(void *user, const svg_e_node *element, uint32_t line,
                                        const svg_written_attr *attributes, size_t count);

/** Sets the observer of elements before svg_parse. With one, svg_parse may raise ORT_E_NO_MEMORY
 * for the array of attributes.
 * @param parser    the parser
 * @param observer  null: none
 * @param user      its first argument; may be null */
ORT_API void svg_set_element_observer(svg_parser *parser, svg_element_observer_fn observer,
                                      void *user);

/** What the tree does not show. */
typedef enum svg_skipped {
  SVG_SKIPPED_ELEMENT = 1,   /**< an element of SVG that is not built: `style`, whose sheet is read,
                                  and those that the schema lacks; what lies in them is not told */
  SVG_SKIPPED_ATTRIBUTE = 2, /**< an attribute that its element does not have in SVG 1.1; a foreign
                                  one under its local name */
  SVG_SKIPPED_PROPERTY = 3   /**< a property that the schema lacks, in a style sheet or attribute */
} svg_skipped;

/** Told of each name that the reader skips. line is that of an element's start tag. For attributes
 * and properties it is 0: those of style sheets come before the first element is told of, the
 * others before their own (svg_element_observer_fn). name is valid during the call. The function
 * must return. */
typedef void (*svg_skip_observer_fn)(void *user, svg_skipped what, const char *name, uint32_t line);

/** Sets the observer of what is skipped before svg_parse.
 * @param parser    the parser
 * @param observer  null: none
 * @param user      its first argument; may be null */
ORT_API void svg_set_skip_observer(svg_parser *parser, svg_skip_observer_fn observer, void *user);

/** Told of each style sheet outside of the drawing that an xml-stylesheet instruction or an
 * `@import` names, before the css_context is asked for it, if there is one. href is what
 * css_read_fn gets, valid during the call. The function must return. */
typedef void (*svg_sheet_observer_fn)(void *user, const char *href);

/** Sets the observer of external sheets before svg_parse.
 * @param parser    the parser
 * @param observer  null: none
 * @param user      its first argument; may be null */
ORT_API void svg_set_sheet_observer(svg_parser *parser, svg_sheet_observer_fn observer, void *user);

/** What names or holds a style sheet. */
typedef enum svg_sheet_origin {
  SVG_SHEET_NONE = 0,        /**< no style sheet is being read */
  SVG_SHEET_INSTRUCTION = 1, /**< an xml-stylesheet instruction */
  SVG_SHEET_STYLE = 2        /**< a `style` element */
} svg_sheet_origin;

/** Where the style sheet stands that is being read: for observers, and for the function that gets
 * messages. In a `style` element it is the place of the declaration or the `@import`, also for what
 * an imported sheet holds; else that of the instruction. Never raises.
 * @param parser  the parser
 * @param line    receives the line of the drawing, from 1
 * @param column  receives the character of the line, from 1
 * @return its origin; line and column are left alone when it is SVG_SHEET_NONE */
ORT_API svg_sheet_origin svg_get_sheet_place(svg_parser *parser, uint32_t *line, uint32_t *column);

/** What a lenient reading takes beyond SVG 1.1; docs/leniency.md tells it by value. */
typedef enum svg_leniency {
  SVG_LENIENT_NUMBERS = 0x01,   /**< in lists, a number ends where the next one begins: "1-2.5.5" */
  SVG_LENIENT_HREF = 0x02,      /**< href without namespace counts as xlink:href */
  SVG_LENIENT_PERCENT = 0x04,   /**< opacities in percent */
  SVG_LENIENT_FALLBACKS = 0x08, /**< "url(#x) none", "url(#x) currentColor"; color and stop-opacity
                                   with "inherit" count as not given */
  SVG_LENIENT_LENGTHS = 0x10,   /**< units of CSS 3, where SVG 1.1 has their equal */
  SVG_LENIENT_COLORS = 0x20,    /**< colors of CSS Color 4; an alpha becomes an opacity property */
  SVG_LENIENT_ENCODING = 0x40,  /**< UTF-16 of either order with or without a mark, and
                                   windows-1250 to -1258 through the system's converters, which
                                   external sheets share that do not tell their own */
  SVG_LENIENT_ALL = 0x7F        /**< all of them */
} svg_leniency;

/** Sets before svg_parse what is read leniently: SVG_LENIENT_*, combined by "|"; 0, as without this
 * call: nothing. A value that the strict reading takes is never read otherwise, but for the
 * components of rgb() that are out of range. */
ORT_API void svg_set_leniency(svg_parser *parser, uint32_t flags);

/** A value that the strict reading would have refused. */
typedef struct svg_lenient_value {
  uint32_t flags;      /**< SVG_LENIENT_*: what took it, mostly one of them */
  uint32_t line;       /**< as in warnings; 0 for a style sheet */
  const char *element; /**< name of its element; "" for a style sheet and for an encoding */
  const char *name;    /**< of its attribute or property; "encoding" */
  const char *text;    /**< the value, as it is written; the encoding's name */
} svg_lenient_value;

/** Told of each value that only leniency took, when it has been read. value and its texts are valid
 * during the call. The function must return. */
typedef void (*svg_leniency_observer_fn)(void *user, const svg_lenient_value *value);

/** Sets the observer of leniency before svg_parse.
 * @param parser    the parser
 * @param observer  null: none
 * @param user      its first argument; may be null */
ORT_API void svg_set_leniency_observer(svg_parser *parser, svg_leniency_observer_fn observer,
                                       void *user);

/** Told of an element that a selector of svg_set_selector matches, as soon as the element has its
 * values. The function must return. */
typedef void (*svg_selector_fn)(void *user, const svg_e_node *element);

/** Asks for the elements that match a selector of docs/css.md, or one of several separated by
 * commas. They are told in document order, each once, while svg_parse builds the tree; of several
 * calls each is answered, for one element in the order of the calls. A pass that begins again tells
 * of its elements again, the first of which has no parent; only the last pass's elements remain.
 * @param parser    the parser, before svg_parse
 * @param selector  copied
 * @param callback  told of the elements
 * @param user      its first argument; may be null
 * @raises 10205 for a malformed selector, with its position in bytes from 1; ORT_E_NO_MEMORY */
ORT_API void svg_set_selector(svg_parser *parser, const char *selector, svg_selector_fn callback,
                              void *user);

/** Stores the seconds that the two passes of svg_parse took, by the system's monotonic clock. */
ORT_API void svg_get_pass_times(const svg_parser *parser, double *style_sheet_pass,
                                double *main_pass);

/* ---- Questions about a finished document ----------------------------------------------------- */

/** The value of an element that holds for a row's name ("fill", "xlink:href"), or null: the
 * important one, else the last one, the order being attribute, style sheet, style. */
ORT_API const svg_a_node *svg_find_value(const svg_e_node *element, const char *name);

/** The element that an element lies in, in constant time; null for the outermost one. */
ORT_API svg_e_node *svg_get_parent(const svg_e_node *element);

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

/* ---- Facts about values ---------------------------------------------------------------------- */

/** Text of a unit (SVG_UNIT_*): "px", "%"; "" for SVG_UNIT_NONE, null for a number that is no unit.
 */
ORT_API const char *svg_get_unit_text(int32_t unit);

/** Text of a MIME type (SVG_MIME_*): "image/png"; null for an unknown or no type. */
ORT_API const char *svg_get_mime_text(int32_t mime);

/** Name of a color space (SVG_CT_*) as drawings write it: "icc-color" for each SVG_CT_ICC*; null
 * for SVG_CT_NONE. */
ORT_API const char *svg_get_color_space_text(int32_t colortype);

/** The values of a color extension, without leading slot and terminator.
 * @param color  a color with or without extension
 * @param count  receives the number of values
 * @return the first value; null when there are none */
ORT_API const double *svg_get_components(const svg_color *color, int32_t *count);

/** How many numbers a transform of a type (SVG_TRAFO_*) has: 6, 2 or 1. */
ORT_API int32_t svg_get_trafo_count(int32_t type);

/** A transform of any type as a matrix (SVG 1.1, 7.6).
 * @param trafo   a transform
 * @param matrix  receives a b c d e f, which map (x, y) to (a x + c y + e, b x + d y + f) */
ORT_API void svg_get_matrix(const svg_an_trafo *trafo, double matrix[6]);

/** 1 when a value is the keyword "inherit" and nothing else. 0 also for IRIs (clip-path, mask,
 * markers), whose records do not tell "inherit" from "none". */
ORT_API int32_t svg_is_inherit(const svg_a_node *value);

/** The segments of path data.
 * @param path   path data
 * @param count  receives the number of records
 * @return the first of them; null when there are none */
ORT_API const svg_pada *svg_get_segments(const svg_an_path_data *path, size_t *count);

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
/** The cubic curves of one elliptical arc (SVG 1.1, 8.3.8 and appendix F.6). */
typedef struct ort_bezier_list {
  int32_t count;         /**< 0 to 4 */
  double segments[4][6]; /**< of each: first and second control point, end point, as x y pairs */
} ort_bezier_list;
/** An elliptical arc as cubic curves, which are valid during the call. */
typedef void (*spp_elliarc_fn)(void *userdata, const ort_bezier_list *curves);
/** Closes the subpath. */
typedef void (*spp_closepath_fn)(void *userdata);

/** Reads path data (SVG 1.1, 8.3) and reports its segments. Needs no document and allocates
 * nothing. Quadratic curves are reported as cubic ones. Any callback may be null: that kind of
 * segment is not reported.
 * @param core       for errors and the log; svg_register_errtab must have been called for it
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
 * @raises SVG_E_PATH_START, SVG_E_PATH_COMMAND, SVG_E_PATH_NUMBER, each after the segments before
 * the error were reported; and what the callbacks raise */
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
