// svg_errors.cpp: the reader's error table, and the one place where a bad value is raised.
//
// Value errors become warnings in svg_parse_attr, which appends their position; the others end the
// parse, but for SVG_E_VIEWPORT and the path errors, which are issued as warnings where they arise.
#include "svg/values/svg_errors.h"

#include <iterator>

#include "svg/path/svg_rest.h"
#include "svg/values/svg_scan.h"

constexpr ort_errtab_entry svg_errors[] = {
    {1, SVG_E_ATTRIBUTE_INCOMPLETE, "attribute '$1': incomplete value,", nullptr},
    {1, SVG_E_PROPERTY_INCOMPLETE, "property '$1': incomplete value,", nullptr},
    {1, SVG_E_STYLE_INCOMPLETE, "attribute 'style', property '$1': incomplete value,", nullptr},
    {0, SVG_E_ATTRIBUTE_MISSING, "attribute is missing", nullptr},
    {2, SVG_E_ATTRIBUTE_TOKEN, "attribute '$1': unexpected token '$2',", nullptr},
    {2, SVG_E_PROPERTY_TOKEN, "property '$1': unexpected token '$2',", nullptr},
    {2, SVG_E_STYLE_TOKEN, "attribute 'style', property '$1': unexpected token '$2',", nullptr},
    {3, SVG_E_POSITION, " in file '$1', line $2, element '$3'", nullptr},
    {1, SVG_E_NOT_SVG, "File '$1' does not seem to be an SVG file", nullptr},
    {2, SVG_E_LINK_UNSUPPORTED, "Unsupported $1 link $2", nullptr},
    {1, SVG_E_ELEMENT_UNSUPPORTED, "Unsupported element $1", nullptr},
    {0, SVG_E_LINK_INVALID, "Invalid link", nullptr},
    {0, SVG_E_BBOX_INVALID, "Invalid bounding box (cannot be used)", nullptr},
    {1, SVG_E_VIEWPORT, "Invalid SVG viewport ($1 is not available)", nullptr},
    {1, SVG_E_LANGUAGE, "Specified system language '$1' not available within switch block ",
     nullptr},
    {2, SVG_E_ELEMENT_REFUSED, "File '$1' contains unsupported element '$2'", nullptr},
    {2, SVG_E_PROPERTY_REFUSED, "File '$1' contains unsupported property '$2'", nullptr},
    {0, SVG_E_PATH_START, "SVG path must start with 'm' or 'M' command", nullptr},
    {0, SVG_E_PATH_COMMAND, "Unknown command in SVG path", nullptr},
    {1, SVG_E_PATH_NUMBER, "Missing or illegal numeric parameter '$1' in SVG path", nullptr},
};

ORT_NORETURN static void raise_value_error(svg_scanner *p);

void svg_register_errtab(ort_core *core) {
  ort_register_errtab(core, 8, svg_errors, static_cast<int>(std::size(svg_errors)));
}

const char *svg_get_error_text(size_t i, int32_t *code, int32_t *parameters) {
  if (i >= std::size(svg_errors)) return nullptr;
  if (code) *code = svg_errors[i].code;
  if (parameters) *parameters = svg_errors[i].parameters;
  return svg_errors[i].text;
}

void svg_err_value(svg_scanner *p) {
  p->value_ok = 0;
  raise_value_error(p);
}

void svg_err_rest(svg_scanner *p, const char *rest) {
  char cut[SVG_REST_SIZE];
  svg_cut_rest(cut, rest);
  ort_bs_clear(p->tok_buf);
  ort_bs_append_text(p->tok_buf, cut);
  p->tok_text = ort_bs_text(p->tok_buf);
  p->tok_type = SVG_TOK_WORD;
  svg_err_value(p);
}

void svg_err_end(svg_scanner *p) {
  p->tok_type = SVG_TOK_END;
  svg_err_value(p);
}

void svg_err_no_data(svg_scanner *p) {
  p->value_ok = 1;
  p->tok_type = SVG_TOK_END;
  raise_value_error(p);
}

// Of an attribute, a property, or a property in a style attribute.
static void raise_value_error(svg_scanner *p) {
  constexpr int incomplete[] = {SVG_E_ATTRIBUTE_INCOMPLETE, SVG_E_PROPERTY_INCOMPLETE,
                                SVG_E_STYLE_INCOMPLETE};
  constexpr int token[] = {SVG_E_ATTRIBUTE_TOKEN, SVG_E_PROPERTY_TOKEN, SVG_E_STYLE_TOKEN};
  const char *name = p->prop_name ? p->prop_name : p->attr_name;
  const int place = !p->prop_name ? 0 : p->in_style_attr ? 2 : 1;
  if (p->tok_type == SVG_TOK_END) ort_ascii_error(p->core, incomplete[place], 1, name);
  ort_ascii_error(p->core, token[place], 3, name, svg_tok_text(p));
}

bool svg_is_value_error(int code) {
  return code >= SVG_E_ATTRIBUTE_INCOMPLETE && code <= SVG_E_STYLE_TOKEN;
}

void svg_add_position(svg_parser *p, long line) {
  ort_push2_errmsg(p->core, SVG_E_POSITION, p->filename,
                   ort_errprintf(p->core, "%d", static_cast<int>(line)),
                   ort_errprintf(p->core, "%a", p->elem_name));
}

void svg_warn_pending(svg_host *p) {
  ort_logg_cond(p->core, 1, ORT_LOG_LINES, "\n");
  ort_warning(p->core, -1);
}
