// svg_xml.h: from bytes to XML events. The two passes, the recording between them, the callbacks of
// the main pass, namespaces and names, and the capture of title, desc and metadata. The style-sheet
// pass's callbacks are in svg_style.h.
#ifndef SVG_XML_H
#define SVG_XML_H

#include "svg/parser/svg_parser.h"

// ---- svg_xml.cpp: one pass over the input ---------------------------------------------------------------------------

void svg_parse_xml(svg_parser *p, ort_file *file, ort_gz **gz, int32_t css_pass, int32_t *encoding);
void svg_reset_xml(svg_parser *p, ort_file *file, ort_gz **gz);
int svg_cb_encoding_handler(void *data, const XML_Char *name, XML_Encoding *info);

// Line of the event that is being handled; 0 outside of the passes.
long svg_xml_line(const svg_parser *p);

// svg_expat.cpp: Expat under the core's memory. Raises for lack of memory, and again what a
// callback raised. A pass is begun with svg_expat_create; blocks of p->block_size bytes
// or less are read into svg_expat_room, of *size bytes, and taken from there. Expat sees them
// later, but in order: svg_expat_flush hands over what it has not seen.
void svg_expat_create(svg_parser *p, const char *encoding);
char *svg_expat_room(svg_parser *p, size_t *size);
XML_Status svg_expat_take(svg_parser *p, size_t length, bool last);
XML_Status svg_expat_flush(svg_parser *p);
uint32_t svg_expat_line(svg_parser *p); // of the event being told
void svg_expat_delete(svg_parser *p);

// Runs the body of an Expat callback in a frame, because no jump may cross Expat. An error stays
// pending, the pass is stopped, and callbacks that still arrive do nothing; svg_parse_xml raises
// the error again.
template <class Body> void svg_in_callback(svg_parser *p, Body &&body) {
  if (p->callback_failed || ort_protected(p->core, body)) return;
  p->callback_failed = 1;
  if (p->xml != nullptr) XML_StopParser(p->xml, XML_FALSE);
}

// ---- svg_recording.cpp: the events of the style-sheet pass, for the main pass ---------------------------------------

void svg_recording_begin(svg_parser *p); // sets Expat's handlers; what was recorded goes
// Once, unless p->recording is null. False: it was given up, and Expat's first p->to_skip callbacks
// have been made.
bool svg_recording_play(svg_parser *p);
void svg_recording_delete(svg_parser *p);

// ---- svg_content.cpp: callbacks of the main pass --------------------------------------------------------------------

void svg_cb_elem_start(void *parser, const XML_Char *name, const XML_Char **attrs);
void svg_cb_elem_end(void *parser, const XML_Char *name);
void svg_cb_char_data(void *parser, const XML_Char *s, int len);

// Counts one more open element, in either pass. Raises ORT_E_LIMIT.
void svg_enter_element(svg_parser *p);

// ---- svg_growth.cpp: bounds for what Expat does again and again -----------------------------------------------------

void svg_bound_growth(svg_parser *p); // of a new pass
void svg_check_namespace(svg_parser *p, const char *prefix, const char *uri);
// Of a start tag, when attributes were declared.
void svg_count_defaults(svg_parser *p, const XML_Char **attrs);

// ---- svg_namespace.cpp ----------------------------------------------------------------------------------------------

enum { SVG_NS_SVG = 0, SVG_NS_XLINK = 1, SVG_NS_XML = 2, SVG_NS_OTHER = 3 };

extern const ort_item_desc nsp_ced;
int32_t svg_get_nsp_type(const char *uri);
void svg_push_nsp_entry(svg_parser *p, const char *uri, const char *prefix);
void svg_pop_nsp_entry(svg_parser *p);
void svg_cb_namespace_start(void *parser, const XML_Char *prefix, const XML_Char *uri);
void svg_cb_namespace_end(void *parser, const XML_Char *prefix);

// Splits one of Expat's names into namespace type (returned), prefix (prefix_out may be null) and
// local name. The texts point into the name, into the namespace stack, or to a constant.
int32_t svg_decomp_fullname(svg_parser *p, const char *fullname, const char **prefix_out,
                            const char **local_out);
// The schema's name of an attribute ("xlink:href").
const char *svg_get_internal_name(int32_t type, const char *local);

// ---- svg_saved.cpp: text of title, desc, metadata -------------------------------------------------------------------

void svg_savelem_open(svg_parser *p, int id);
void svg_savelem_start(svg_parser *p, const char *prefix, const char *local,
                       const XML_Char **attrs);
void svg_savelem_char_data(svg_parser *p, const char *s, int len);
void svg_savelem_end(svg_parser *p, int32_t type, const char *prefix, const char *local);

#endif
