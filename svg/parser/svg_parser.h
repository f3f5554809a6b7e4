// svg_parser.h: the state of one parse, in the parts that its subsystems work on. Hosts see it as
// an opaque svg_parser.
//
// Functions take the narrowest part that does. What is owned is at any moment either null or valid,
// so that svg_parser_delete can free a half-built parse after an error; svg/tree/svg_document.cpp
// makes and frees it. All else begins as it is written here.
#ifndef SVG_PARSER_H
#define SVG_PARSER_H

// Expat declares its limits on entity growth only when asked for DTD support.
#ifndef XML_DTD
#define XML_DTD
#endif
#include <expat.h>

#include "core/ort_core.h"
#include "css/css.h"
#include "svg/svg.h"

constexpr int32_t SVG_NO_SKIP = INT32_MAX; // skip_level when nothing is skipped
constexpr int32_t SVG_NO_ELEMENT = 39;     // savelem when nothing is captured
constexpr size_t SVG_HOOK_SLOTS = 16;      // at least those of any element
constexpr size_t SVG_LONGEST_LIST = 64;    // at least the attributes of any element
constexpr size_t SVG_PADA_BUFFER = 5000;   // points gathered, and those of a path record, at most
constexpr int SVG_BLOCK_SIZE = 8192;       // bytes read at a time

// A namespace declaration in scope.
struct svg_nsp_entry {
  char *uri;
  char *prefix;  // "" for a default namespace
  int32_t type;  // SVG_NS_*
  int32_t outer; // place in the stack, from 1, of the next outer declaration of the same name, or 0
};

// An open element that was built, or the root.
struct svg_pe_entry {
  svg_e_node *node;
  svg_node **link;        // where its next child is linked
  svg_e_node *last_child; // last element child built so far, or null
};

struct svg_place {
  uint32_t line = 0, column = 0; // in the drawing, from 1
  bool operator==(const svg_place &) const = default;
};

// An external style sheet, as read, the name it was read by, and where that stands.
struct svg_ext_sheet {
  char *text;
  char *href;
  svg_place place;
};

// A run of the text of the style elements.
struct svg_sheet_piece {
  size_t offset; // in the joined text
  svg_place place;
  bool fixed; // the text of an entity: all of it stands there
};

// An element that links can point to.
struct svg_href {
  char *id;
  svg_e_node *target;
};

// A link whose target has not been built.
struct svg_unres_link {
  char *id;
  svg_iri *iri;
  svg_e_node *source; // null for a link in a style sheet
};

struct svg_expat_memory; // svg_expat.cpp
struct svg_recording;    // svg_recording.cpp
struct svg_query;        // svg_select.cpp

// Lines of the input, counted as far as events were recorded.
struct svg_lines {
  int64_t end;    // bytes counted
  uint32_t count; // the line that the next byte is in
  bool returns;   // there are carriage returns
  bool wide;      // characters have two bytes
};

// ---- What the host asks for ---------------------------------------------------------------------

struct svg_host {
  ort_core *core = nullptr;
  int32_t log_level = 0;
  int32_t font_number = 0;
  const char *filename = nullptr;
  const css_context *css_context_ = nullptr; // handed unchanged to the CSS engine
  const char *language = nullptr;
  char *language_primary = nullptr; // owned; made of it by svg_language.cpp
  const char *const *nottol_elements = nullptr;
  int32_t nottol_elements_num = 0;
  const char *const *nottol_props = nullptr;
  int32_t nottol_props_num = 0;
  svg_limits limits = {};
  svg_observer_fn observer = nullptr;
  void *observer_user = nullptr;
  svg_element_observer_fn element_observer = nullptr;
  void *element_observer_user = nullptr;
  svg_skip_observer_fn skip_observer = nullptr;
  void *skip_observer_user = nullptr;
  svg_sheet_observer_fn sheet_observer = nullptr;
  void *sheet_observer_user = nullptr;
  uint32_t leniency = 0; // SVG_LENIENT_*
  svg_leniency_observer_fn leniency_observer = nullptr;
  void *leniency_observer_user = nullptr;
  svg_query *queries = nullptr;    // owned by the parser; svg_select.cpp
  int block_size = SVG_BLOCK_SIZE; // tests make it smaller, and then blocks are not gathered
};

// ---- Values -------------------------------------------------------------------------------------

// The text of a value, and the token that was read last.
struct svg_scanner : svg_host {
  const char *attr_name = nullptr;
  const char *prop_name = nullptr; // not null while a property is parsed
  int32_t css_mode = 0;            // names compare without regard to ASCII case
  int32_t in_style_attr = 0;
  int32_t value_ok = 1; // 0 between a value error and its handling
  const char *scan_pos = nullptr, *scan_start = nullptr;
  int32_t tok_type = 0, tok_pushed = 0, tok_int = 0, tok_key = 0;
  double tok_num = 0;
  const char *tok_text = nullptr;  // null for a number: see svg_tok_text
  const char *tok_begin = nullptr; // text of the current token when tok_text is null
  size_t tok_length = 0;
  uint8_t tok_unit = 0;
  const svg_key_entry *keys = nullptr;
  int32_t key_count = 0;
  ort_bs *tok_buf = nullptr; // owned
  // Of a value that is read again because the strict reading has refused it:
  uint32_t lenient = 0;           // what it may make use of, SVG_LENIENT_*; 0: it is read strictly
  uint32_t lenient_use = 0;       // what it has made use of
  int32_t lenient_row = 0;        // its row
  bool lenient_outermost = false; // it is of the outermost element
  double alpha = 1;               // of the color just read
};

// The value that is made of it.
struct svg_value_maker {
  svg_a_node *new_value = nullptr; // owned until somebody takes it over
  svg_source source = {};          // where it comes from, for the observer
  // Owned: space to work in.
  ort_bs *name_buf = nullptr;
  ort_bs *style_name_buf = nullptr, *style_value_buf = nullptr;
  ort_vtr *class_nids = nullptr; // int16_t
  char *font_copy = nullptr;     // font shorthand being split
};

// Of fill, stroke or stop-color in the source being read.
struct svg_alpha {
  double alpha = 1; // of the color that holds
  double given = 1; // the opacity that is given beside it
};
constexpr int SVG_ALPHAS = 3;

// What the alpha of a color makes of opacities, for a host that allows colors with alpha.
struct svg_color_alphas {
  svg_alpha alphas[2][SVG_ALPHAS]; // of the source being read; [1]: its important declarations
};

struct svg_path_maker {
  int16_t pada_type = 0; // of the pending record
  uint16_t pada_count = 0;
  int32_t pada_vertices = 0;
  size_t pada_gathered = 0;         // points, those of the pending record included
  size_t pada_stored = 0;           // records whose points are no longer among them
  double *pada_points = nullptr;    // SVG_PADA_BUFFER pairs, during one path
  ort_vtr *pada_segments = nullptr; // owned: svg_pada, of the path being parsed
};

// ---- Bytes to events ----------------------------------------------------------------------------

struct svg_input {
  XML_Parser xml = nullptr; // owned; null outside a pass
  uint32_t played_line = 0; // of the recorded event being played, else 0
  int32_t no_namespaces = 0;
  const char *utf16 = nullptr; // the encoding that the first block shows; null: Expat finds it
  bool encoding_told = false;
  char windows_encoding[7] = "";  // the system's name of the drawing's, when it is one
  int32_t callback_failed = 0;    // an Expat callback raised; the error is pending until
                                  // XML_ParseBuffer has returned
  char *room = nullptr;           // for batch bytes, in Expat's buffer
  size_t batch = 0, gathered = 0; // so many of them are there
  int64_t bytes_fed = 0;          // to Expat in this pass
  int64_t input_size = 0;         // in bytes; -1: not known
  svg_lines lines = {};
  svg_expat_memory *expat_memory = nullptr; // owned
  uint64_t expat_bytes = 0; // taken from the core for Expat in this pass, freed ones included
  double pass_seconds[2] = {};
};

// What a pass has made Expat do again and again.
struct svg_growth {
  int32_t nested_entities = 0, declared_attributes = 0;
  uint64_t defaulted = 0; // bytes of default attributes
};

struct svg_playback {
  svg_recording *recording = nullptr; // owned: events for the main pass; null: it reads for itself
  uint64_t to_skip = 0;               // callbacks of Expat for events that were played
};

// ---- The style-sheet pass -----------------------------------------------------------------------

struct svg_sheet_pass {
  int32_t in_style_elem = 0;
  // Owned:
  ort_bs *style_sheet = nullptr;
  ort_vtr *css_svg_stack = nullptr;    // int32_t
  char *pi_copy = nullptr;             // instruction data being split
  ort_vtr *pi_items = nullptr;         // char *, into the copy
  ort_vtr *ext_style_sheets = nullptr; // svg_ext_sheet
  ort_vtr *sheet_pieces = nullptr;     // svg_sheet_piece
  svg_place next_place;                // where text would stand that follows the last piece
  // What is being read, and where it was found last.
  svg_sheet_origin origin = SVG_SHEET_NONE;
  svg_place sheet_place, found_place;
  size_t next_piece = 0, found_offset = 0;
};

// ---- The main pass ------------------------------------------------------------------------------

struct svg_namespaces {
  ort_vtr *nsp_stack = nullptr;  // owned: svg_nsp_entry
  ort_name_index nsp_index = {}; // owned: name -> its innermost declaration in nsp_stack
};

// Where in the document the pass is.
struct svg_content {
  int32_t level = 0; // of the style-sheet pass, too
  int32_t skip_level = SVG_NO_SKIP;
  const char *elem_name = nullptr; // local name of the element being built
  int32_t log_indent = 0;
  int32_t log_tag_open = 0;
  int32_t chardata_nonblank = 0;
  ort_bs *chardata = nullptr; // owned
  // Owned, of the start tag being handled:
  ort_vtr *attr_names = nullptr;    // svg_name; when Expat delivers it
  ort_vtr *given_attrs = nullptr;   // svg_given_attr; likewise
  ort_vtr *written_attrs = nullptr; // svg_written_attr, for the observer
};

struct svg_capture {
  int32_t savelem = SVG_NO_ELEMENT; // element id whose content is captured
  int32_t savelem_tag_open = 0;
  // Owned:
  ort_bs *savelem_text = nullptr;
  ort_bs *xmlns_text = nullptr;
  char *title = nullptr;
  char *desc = nullptr;
  char *metadata = nullptr;
};

struct svg_links {
  const char *cur_href = nullptr; // id registered by the element being built
  bool cur_href_awaited = false;  // links wait for it
  int64_t value_link = -1;        // slot of the waiting link made by the value being parsed, or -1
  // Owned:
  ort_vtr *hrefs = nullptr;        // svg_href
  ort_hvtr *unres_links = nullptr; // svg_unres_link, and what svg_links.cpp keeps with each
  ort_name_index name_index = {};  // id or name -> its element, and the last link that waits
  ort_vtr *link_slots = nullptr;   // size_t: of the links being resolved
};

struct svg_tree {
  uint64_t nodes = 0; // built so far
  svg_e_node *cur_enode = nullptr;
  svg_t_node *last_tnode = nullptr;
  int32_t text_depth = 0;
  int32_t has_text = 0;
  svg_a_node *hook_slots[SVG_HOOK_SLOTS] = {};
  // Owned:
  css_parser *css = nullptr; // null until a style sheet exists
  ort_arena kept = {};       // the tree: nodes, their values, and what both hold but values own
  svg_e_node *root = nullptr;
  ort_vtr *elem_stack = nullptr;  // svg_pe_entry: by level
  ort_vtr *an_values = nullptr;   // svg_a_node *, not owned
  ort_vtr *prop_values = nullptr; // svg_a_node *, owned; only those that own something themselves
  bool attr_values_own = false;   // a value of an attribute owns something
  unsigned char *elems_used = nullptr;
  // Of the element being built, in bits: attributes by their place in its list, properties by row.
  unsigned char attrs_set[SVG_LONGEST_LIST / 8] = {};
  unsigned char props_set[(SVG_ATTR_COUNT + 7) / 8] = {};
};

struct svg_fonts {
  svg_font *font_face = nullptr; // owned
  ort_vtr *fonts = nullptr;      // owned: svg_font *, owned
};

struct svg_viewport {
  double viewport_width = 0, viewport_height = 0;
  double viewbox_width = 0, viewbox_height = 0;
};

// Starts over when the pass is restarted.
struct svg_main_pass : svg_namespaces,
                       svg_content,
                       svg_capture,
                       svg_links,
                       svg_tree,
                       svg_fonts,
                       svg_viewport {};

// -------------------------------------------------------------------------------------------------

struct svg_parser : svg_scanner,
                    svg_value_maker,
                    svg_color_alphas,
                    svg_path_maker,
                    svg_input,
                    svg_growth,
                    svg_playback,
                    svg_sheet_pass,
                    svg_main_pass {};

// Line of the event that is being handled; 0 outside of the passes.
inline long svg_xml_line(const svg_input *p) {
  return p->xml ? static_cast<long>(XML_GetCurrentLineNumber(p->xml)) : p->played_line;
}

// Writes to the log when the reader's class is logged at this level. A macro, so that what is
// written is not even computed at a lower one.
#define svg_note(p, level, ...)                                                                    \
  ((p)->log_level >= (level) ? ort_logg((p)->core, __VA_ARGS__) : static_cast<void>(0))

#endif
