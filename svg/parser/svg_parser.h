// svg_parser.h: the state of one parse, shared by the reader's own files. Hosts see it as an opaque
// svg_parser.
//
// Every owned field is at any moment either null or valid, so that svg_parser_delete can free a
// half-built parse after an error. What each subsystem offers to the others is declared in its own
// header beside this one.
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
constexpr size_t SVG_PADA_BUFFER = 5000;   // points gathered before a path record is completed
constexpr int SVG_BLOCK_SIZE = 8192;       // bytes read at a time

// A namespace declaration in scope.
struct svg_nsp_entry {
  char *uri;
  char *prefix;  // "" for a default namespace
  int32_t type;  // SVG_NS_*
  int32_t outer; // place in the stack, from 1, of the next outer declaration of the same name, or 0
};

// An open element that was built (or the root), and where its next child is linked.
struct svg_pe_entry {
  const svg_elem_def *row; // null for the root
  svg_node **link;
};

// An external style sheet, as read, and the name it was read by.
struct svg_ext_sheet {
  char *text;
  char *href;
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

struct svg_name_index; // svg_index.h

// The elements that style matching looks back at: one per open built element, the root included.
struct svg_open_element {
  svg_e_node *node;
  svg_e_node *last_child; // last element child built so far, or null
};

struct svg_recording; // svg_recording.cpp

// Lines of the input, counted as far as events were recorded.
struct svg_lines {
  int64_t end;    // bytes counted
  uint32_t count; // the line that the next byte is in
  bool returns;   // there are carriage returns
  bool wide;      // characters have two bytes
};

struct svg_parser {
  ort_core *core;
  int32_t font_number;
  const char *filename;
  const css_context *css_context_; // handed unchanged to the CSS engine
  XML_Parser xml;                  // null outside a pass
  int32_t no_namespaces;           // a pass was restarted without namespace processing
  int32_t value_ok;                // 0 between a value error and its handling
  int32_t in_style_attr;
  const char *const *nottol_elements;
  int32_t nottol_elements_num;
  const char *const *nottol_props;
  int32_t nottol_props_num;
  const char *elem_name; // local name of the start tag being handled, in Expat's buffer; else null
  const char *attr_name;
  const char *prop_name; // not null while a property is parsed
  const char *cur_href;  // id registered by the element being built
  int32_t log_level;
  int32_t log_indent;
  int32_t log_tag_open;
  ort_vtr *nsp_stack; // svg_nsp_entry
  double viewport_width, viewport_height;
  double viewbox_width, viewbox_height;
  int32_t savelem; // element id whose content is captured, or SVG_NO_ELEMENT
  ort_bs *savelem_text;
  ort_bs *xmlns_text;
  char *title;
  char *desc;
  char *metadata;
  int32_t savelem_tag_open;
  unsigned char *elems_used;
  const char *language;
  char *language_primary;
  int32_t text_depth;
  ort_bs *chardata;
  int32_t chardata_nonblank;
  svg_t_node *last_tnode;
  int32_t css_mode; // names compare without regard to ASCII case
  const char *scan_pos, *scan_start;
  int32_t tok_type, tok_pushed, tok_int, tok_key;
  double tok_num;
  const char *tok_text; // null for a number: see svg_tok_text
  uint8_t tok_unit;
  ort_bs *tok_buf, *name_buf;
  const svg_key_entry *keys;
  int32_t key_count;
  ort_vtr *prop_values; // svg_a_node *, owned
  ort_bs *style_name_buf, *style_value_buf;
  css_parser *css; // null until a style sheet exists
  ort_bs *style_sheet;
  int32_t in_style_elem;
  ort_vtr *css_svg_stack;    // int32_t
  ort_vtr *class_nids;       // int16_t
  ort_vtr *pi_items;         // char *, into the copy being split
  ort_vtr *ext_style_sheets; // svg_ext_sheet
  int32_t level;
  int32_t skip_level;
  svg_e_node *root;
  ort_vtr *elem_stack; // svg_pe_entry
  unsigned char *attrs_set;
  unsigned char *props_set;
  svg_e_node *cur_enode;
  ort_vtr *an_values; // svg_a_node *, not owned
  svg_a_node *hook_slots[SVG_HOOK_SLOTS];
  ort_vtr *hrefs;        // svg_href
  ort_hvtr *unres_links; // svg_unres_link, and what svg_links.cpp keeps behind each
  svg_a_node *new_value;
  svg_font *font_face;
  ort_vtr *fonts; // svg_font *, owned
  int32_t has_text;
  int16_t pada_type;
  uint16_t pada_count;
  double *pada_points;    // SVG_PADA_BUFFER pairs, during one path
  ort_vtr *pada_segments; // svg_pada, of the path being parsed
  int32_t pada_vertices;

  // Beside the fields above, which later drawing modules know by name:
  svg_name_index *nsp_index;  // namespace name -> its innermost declaration in nsp_stack
  svg_name_index *name_index; // id or name -> its element, and the last link that waits for it
  bool cur_href_awaited;      // links wait for cur_href
  ort_vtr *link_slots;        // size_t: of the links being resolved
  const char *tok_begin;      // text of the current token when tok_text is null
  size_t tok_length;
  int64_t value_link;      // slot of the waiting link made by the value being parsed, or -1
  ort_vtr *open_elements;  // svg_open_element
  char *pi_copy;           // instruction data being split
  char *font_copy;         // font shorthand being split
  int32_t callback_failed; // an Expat callback raised; the error is pending until XML_ParseBuffer
                           // has returned
  char *room;              // for batch bytes, in Expat's buffer
  size_t batch, gathered;  // so many of them are there
  int64_t bytes_fed;       // to Expat in this pass
  int64_t input_size;      // in bytes; -1: not known
  svg_lines lines;
  uint64_t expat_bytes;     // that Expat asked for in this pass, freed ones included
  svg_recording *recording; // of what Expat told, for the main pass; null: it reads for itself
  uint32_t played_line;     // of the event being played, else 0
  uint64_t to_skip;         // callbacks of Expat for events that were played
  svg_limits limits;
  int32_t nested_entities, declared_attributes; // declared in this pass
  uint64_t defaulted;                           // bytes of default attributes in this pass
  uint64_t nodes;                               // built so far
  svg_observer_fn observer;
  void *observer_user;
  svg_element_observer_fn element_observer;
  void *element_observer_user;
  ort_vtr *written_attrs; // svg_written_attr, for the observer
  svg_source source;      // where the values being collected come from, for the observer
  double pass_seconds[2];
  int block_size; // SVG_BLOCK_SIZE; tests make it smaller, and then blocks are not gathered
};

// Line of the event that is being handled; 0 outside of the passes.
inline long svg_xml_line(const svg_parser *p) {
  return p->xml ? static_cast<long>(XML_GetCurrentLineNumber(p->xml)) : p->played_line;
}

// Writes to the log when the reader's class is logged at this level. A macro, so that what is
// written is not even computed at a lower one.
#define svg_note(p, level, ...)                                                                    \
  ((p)->log_level >= (level) ? ort_logg((p)->core, __VA_ARGS__) : static_cast<void>(0))

#endif
