// svg_content.cpp: Expat's callbacks of the main pass: start tag, end tag, character data, and
// namespaces.
//
// They decide which elements are built and which are skipped with all their content, keep the
// nesting level, hand start tags to svg_tree.cpp and captured content to svg_saved.cpp, and echo
// the document into the log. Raises SVG_E_ELEMENT_REFUSED and ORT_E_LIMIT, and what the building of
// an element raises; no raise leaves a callback (svg_in_callback).
#include "svg/xml/svg_content.h"

#include "svg/names/svg_namespace.h"
#include "svg/names/svg_schema.h"
#include "svg/tree/svg_elements.h"
#include "svg/tree/svg_tree.h"
#include "svg/xml/svg_expat.h"
#include "svg/xml/svg_growth.h"
#include "svg/xml/svg_saved.h"

static const svg_given_attr *resolve_attrs(svg_parser *p, const XML_Char **attrs);
static void tell_of_element(svg_parser *p, const svg_given_attr *attrs);
static void skip_element(svg_parser *p, int32_t type, const char *prefix, const char *local);
static void finish_text(svg_parser *p);
static bool is_blank(const char *s, int len);
static void echo_start(svg_parser *p, const char *prefix, const char *local,
                       const svg_given_attr *attrs);
static void echo_end(svg_parser *p, const char *prefix, const char *local);
static void echo_text(svg_parser *p, size_t piece);
static void close_open_tag(svg_parser *p);
static void echo_line(svg_parser *p, int level);
static void echo_indent(svg_parser *p, int outer);
static void echo_name(svg_parser *p, const char *prefix, const char *local);

// Character data arrive in pieces; each echo shows the whole run so far while it is no longer than
// this.
constexpr size_t ECHO_WHOLE_RUN = 4096;

constexpr ort_item_desc name_ced = {sizeof(svg_name), nullptr, nullptr};
constexpr ort_item_desc given_attr_ced = {sizeof(svg_given_attr), nullptr, nullptr};
constexpr ort_item_desc written_attr_ced = {sizeof(svg_written_attr), nullptr, nullptr};
constexpr int DEEPEST_INDENT = 40;

// ---- For Expat ----------------------------------------------------------------------------------

void svg_cb_elem_start(void *parser, const XML_Char *name, const XML_Char **attrs) {
  auto *p = static_cast<svg_parser *>(parser);
  svg_in_callback(p, [&] {
    if (p->declared_attributes > 0) svg_count_defaults(p, attrs);
    svg_start_element(p, svg_resolve_name(p, name), resolve_attrs(p, attrs));
  });
}

static const svg_given_attr *resolve_attrs(svg_parser *p, const XML_Char **attrs) {
  if (!p->attr_names) p->attr_names = ort_vtr_new(p->core, &name_ced, 16, 0);
  if (!p->given_attrs) p->given_attrs = ort_vtr_new(p->core, &given_attr_ced, 16, 0);
  ort_vtr_resize(p->attr_names, 0);
  for (const XML_Char **attr = attrs; *attr; attr += 2)
    ort_push(p->attr_names, svg_resolve_name(p, attr[0]));
  ort_vtr_resize(p->given_attrs, 0);
  for (size_t i = 0; i < ort_vtr_count(p->attr_names); ++i)
    ort_push(p->given_attrs,
             svg_given_attr{&ort_item<svg_name>(p->attr_names, i), attrs[2 * i + 1]});
  ort_push(p->given_attrs, svg_given_attr{nullptr, nullptr});
  return &ort_item<svg_given_attr>(p->given_attrs, 0);
}

void svg_cb_elem_end(void *parser, const XML_Char *name) {
  auto *p = static_cast<svg_parser *>(parser);
  svg_in_callback(p, [&] {
    const bool shown = svg_shows_names(p);
    const svg_name resolved = shown ? svg_resolve_name(p, name) : svg_name{};
    svg_end_element(p, shown ? &resolved : nullptr);
  });
}

void svg_cb_char_data(void *parser, const XML_Char *s, int len) {
  auto *p = static_cast<svg_parser *>(parser);
  svg_in_callback(p, [&] { svg_add_char_data(p, s, len); });
}

void svg_cb_namespace_start(void *parser, const XML_Char *prefix, const XML_Char *uri) {
  auto *p = static_cast<svg_parser *>(parser);
  svg_in_callback(p, [&] { svg_start_namespace(p, prefix, uri); });
}

void svg_cb_namespace_end(void *parser, const XML_Char *prefix) {
  auto *p = static_cast<svg_parser *>(parser);
  svg_in_callback(p, [&] { svg_end_namespace(p, prefix); });
}

// ---- Namespaces ---------------------------------------------------------------------------------

void svg_start_namespace(svg_parser *p, const char *prefix, const char *uri) {
  svg_check_namespace(p, prefix, uri);
  svg_note(p, 3, "\t\t[push namespace \"%a\" (uri=\"%a\")]\n", prefix, uri);
  // xmlns="" has no name; its entry keeps each pop paired with its push.
  svg_push_nsp_entry(p, uri ? uri : "", prefix);
  svg_savelem_namespace(p, prefix, uri);
}

void svg_end_namespace(svg_parser *p, const char *prefix) {
  svg_note(p, 3, "\t\t[pop namespace \"%a\"]\n", prefix);
  svg_pop_nsp_entry(p);
}

// ---- Elements -----------------------------------------------------------------------------------

void svg_start_element(svg_parser *p, const svg_name &name, const svg_given_attr *attrs) {
  const char *prefix = "";
  const char *local = name.local();
  if (svg_shows_names(p)) svg_decomp_fullname(p, name.text, &prefix, &local);
  if (p->savelem != SVG_NO_ELEMENT) svg_savelem_start(p, prefix, local, attrs);
  finish_text(p);
  if (p->log_level >= 3) echo_start(p, prefix, local, attrs);
  svg_enter_element(p);
  if (p->level < p->skip_level) {
    if (const int id = name.element; id >= 0) {
      svg_note(p, 6, "\t\t\t[supported element \"%a\"]\n", local);
      if (p->savelem == SVG_NO_ELEMENT) svg_savelem_open(p, id);
      p->elem_name = local;
      svg_add_e_node(p, id, attrs);
      p->elem_name = nullptr;
      if (p->element_observer) tell_of_element(p, attrs);
      if (id == SVG_ELEM_text) p->has_text = 1;
    } else {
      skip_element(p, name.type, prefix, local);
    }
  }
  if (p->log_level >= 6) {
    ort_logg(p->core, "\t\t\t[nesting level %d", p->level);
    if (p->skip_level != SVG_NO_SKIP) ort_logg(p->core, ", skip level %d", p->skip_level);
    ort_logg(p->core, "]\n");
  }
}

static void tell_of_element(svg_parser *p, const svg_given_attr *attrs) {
  if (!p->written_attrs) p->written_attrs = ort_vtr_new(p->core, &written_attr_ced, 16, 0);
  ort_vtr_resize(p->written_attrs, 0);
  for (; attrs->name; ++attrs) {
    svg_written_attr attr = {"", nullptr, attrs->text};
    if (svg_decomp_fullname(p, attrs->name->text, &attr.prefix, &attr.name) == SVG_NS_XML)
      attr.prefix = "xml"; // which nobody needs to declare
    ort_push(p->written_attrs, attr);
  }
  const size_t count = ort_vtr_count(p->written_attrs);
  p->element_observer(
      p->element_observer_user, p->cur_enode, static_cast<uint32_t>(svg_xml_line(p)),
      count > 0 ? &ort_item<svg_written_attr>(p->written_attrs, 0) : nullptr, count);
}

static void skip_element(svg_parser *p, int32_t type, const char *prefix, const char *local) {
  if (p->log_level >= 6) {
    ort_logg(p->core, "\t\t\t[%a element \"",
             ort_strcmp(local, "style") == 0 ? "processed" : "unsupported");
    if (*prefix != '\0') ort_logg(p->core, "%a:", prefix);
    ort_logg(p->core, "%a\"]\n", local);
  }
  if (type == SVG_NS_SVG) svg_skip_element_name(p, local, static_cast<uint32_t>(svg_xml_line(p)));
  p->skip_level = p->level;
}

void svg_end_element(svg_parser *p, const svg_name *name) {
  const char *prefix = "";
  const char *local = "";
  if (svg_shows_names(p)) {
    svg_decomp_fullname(p, name->text, &prefix, &local);
    if (p->savelem != SVG_NO_ELEMENT) svg_savelem_end(p, name->type, prefix, local);
  }
  finish_text(p);
  if (p->level < p->skip_level)
    if (auto *end_hook =
            svg_elem_table[ort_top<svg_pe_entry>(p->elem_stack).node->head.id].end_hook)
      end_hook(p);
  if (p->log_level >= 3) echo_end(p, prefix, local);
  --p->level;
  if (p->level == p->skip_level - 1) {
    p->skip_level = SVG_NO_SKIP;
  } else if (p->level < p->skip_level) {
    ort_vtr_pop(p->elem_stack);
  }
}

// Finding the prefix of a name costs a search of the declarations in scope; only the log and a
// capture show it, and the names of end tags.
bool svg_shows_names(const svg_parser *p) {
  return p->log_level >= 3 || p->savelem != SVG_NO_ELEMENT;
}

// ---- Character data -----------------------------------------------------------------------------

void svg_add_char_data(svg_parser *p, const char *s, int len) {
  if (p->savelem != SVG_NO_ELEMENT) svg_savelem_char_data(p, s, len);
  ort_bs_append(p->chardata, s, static_cast<size_t>(len));
  if (!is_blank(s, len)) {
    p->chardata_nonblank = 1;
    if (p->level < p->skip_level && p->log_level >= 3) echo_text(p, static_cast<size_t>(len));
  }
  if (p->log_tag_open) svg_note(p, 3, ">\n");
  p->log_tag_open = 0;
}

// Turns the character data since the last tag into a text node.
static void finish_text(svg_parser *p) {
  if (ort_bs_length(p->chardata) == 0) return;
  svg_add_t_node(p);
  ort_bs_clear(p->chardata);
}

static bool is_blank(const char *s, int len) {
  for (int i = 0; i < len; ++i)
    if (!ort_isspace(s[i])) return false;
  return true;
}

// ---- The log ------------------------------------------------------------------------------------

static void echo_start(svg_parser *p, const char *prefix, const char *local,
                       const svg_given_attr *attrs) {
  if (p->log_tag_open) close_open_tag(p);
  echo_line(p, 4);
  echo_indent(p, 0);
  ort_logg(p->core, "<");
  echo_name(p, prefix, local);
  for (; attrs->name; ++attrs) {
    svg_decomp_fullname(p, attrs->name->text, &prefix, &local);
    ort_logg(p->core, " ");
    echo_name(p, prefix, local);
    ort_logg(p->core, "=\"%a\"", attrs->text);
  }
  svg_note(p, 5, "\n");
  ++p->log_indent;
  p->log_tag_open = 1;
}

static void echo_end(svg_parser *p, const char *prefix, const char *local) {
  --p->log_indent;
  if (p->log_tag_open) {
    if (p->log_level >= 5) {
      echo_line(p, 5);
      echo_indent(p, 0);
    }
    ort_logg(p->core, "/>\n");
  } else {
    echo_line(p, 4);
    echo_indent(p, 0);
    ort_logg(p->core, "</");
    echo_name(p, prefix, local);
    ort_logg(p->core, ">\n");
  }
  p->log_tag_open = 0;
}

static void echo_text(svg_parser *p, size_t piece) {
  if (p->log_tag_open) close_open_tag(p);
  p->log_tag_open = 0;
  echo_line(p, 4);
  echo_indent(p, 0);
  const char *run = ort_bs_text(p->chardata);
  const size_t length = ort_bs_length(p->chardata);
  ort_logg(p->core, "%a\n", length <= ECHO_WHOLE_RUN ? run : run + length - piece);
}

static void close_open_tag(svg_parser *p) {
  if (p->log_level >= 5) {
    echo_line(p, 5);
    echo_indent(p, 1);
  }
  ort_logg(p->core, ">\n");
}

static void echo_line(svg_parser *p, int level) {
  if (p->log_level >= level) ort_logg(p->core, "[%02ld]", svg_xml_line(p));
}

// Blanks for the nesting, or outer levels less. Deeper ones get no more, or the log would grow with
// the square of the depth.
static void echo_indent(svg_parser *p, int outer) {
  const int levels = p->log_indent - outer;
  ort_logg(p->core, "%*s", 2 * (levels < DEEPEST_INDENT ? levels : DEEPEST_INDENT), "");
}

static void echo_name(svg_parser *p, const char *prefix, const char *local) {
  if (*prefix != '\0') ort_logg(p->core, "%a:", prefix);
  ort_logg(p->core, "%a", local);
}
