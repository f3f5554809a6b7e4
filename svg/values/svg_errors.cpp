// svg_errors.cpp: the reader's error table, and the one place where a bad value is raised.
//
// Value errors (10000 to 10006) become warnings in svg_parse_attr, which appends 10008; the others
// end the parse, but for 10014 and the path errors, which are issued as warnings where they arise.
#include <cstring>
#include <iterator>

#include "svg/values/svg_scan.h"

constexpr ort_errtab_entry svg_errors[] = {
    {1, 10000, "attribute '$1': incomplete value,", nullptr},
    {1, 10001, "property '$1': incomplete value,", nullptr},
    {1, 10002, "attribute 'style', property '$1': incomplete value,", nullptr},
    {0, 10003, "attribute is missing", nullptr},
    {2, 10004, "attribute '$1': unexpected token '$2',", nullptr},
    {2, 10005, "property '$1': unexpected token '$2',", nullptr},
    {2, 10006, "attribute 'style', property '$1': unexpected token '$2',", nullptr},
    {3, 10008, " in file '$1', line $2, element '$3'", nullptr},
    {1, 10009, "File '$1' does not seem to be an SVG file", nullptr},
    {2, 10010, "Unsupported $1 link $2", nullptr},
    {1, 10011, "Unsupported element $1", nullptr},
    {0, 10012, "Invalid link", nullptr},
    {0, 10013, "Invalid bounding box (cannot be used)", nullptr},
    {1, 10014, "Invalid SVG viewport ($1 is not available)", nullptr},
    {1, 10015, "Specified system language '$1' not available within switch block ", nullptr},
    {2, 10020, "File '$1' contains unsupported element '$2'", nullptr},
    {2, 10021, "File '$1' contains unsupported property '$2'", nullptr},
    {0, 10100, "SVG path must start with 'm' or 'M' command", nullptr},
    {0, 10102, "Unknown command in SVG path", nullptr},
    {1, 10104, "Missing or illegal numeric parameter '$1' in SVG path", nullptr},
};
static_assert(std::size(svg_errors) == 20);

void svg_register_errtab(ort_core *core) {
  ort_register_errtab(core, 8, svg_errors, static_cast<int>(std::size(svg_errors)));
}

const char *svg_get_error_text(size_t i, int32_t *code, int32_t *parameters) {
  if (i >= std::size(svg_errors)) return nullptr;
  if (code != nullptr) *code = svg_errors[i].code;
  if (parameters != nullptr) *parameters = svg_errors[i].parameters;
  return svg_errors[i].text;
}

void svg_err_unxtok(svg_parser *p, int fatal) {
  p->value_ok = fatal;
  const bool style = p->in_style_attr != 0;
  const bool property = p->prop_name != nullptr;
  const char *name = property ? p->prop_name : p->attr_name;
  if (p->tok_type == SVG_TOK_END)
    ort_ascii_error(p->core,
                    !property ? 10000
                    : style   ? 10002
                              : 10001,
                    1, name, nullptr, nullptr, nullptr);
  ort_ascii_error(p->core,
                  !property ? 10004
                  : style   ? 10006
                            : 10005,
                  3, name, svg_tok_text(p), nullptr, nullptr);
}

void svg_err_rest(svg_parser *p, const char *rest) {
  char cut[SVG_REST_SIZE];
  svg_cut_rest(cut, rest);
  ort_bs_clear(p->tok_buf);
  ort_bs_append_text(p->tok_buf, cut);
  p->tok_text = ort_bs_text(p->tok_buf);
  p->tok_type = SVG_TOK_WORD;
  svg_err_unxtok(p, 0);
}

void svg_cut_rest(char cut[SVG_REST_SIZE], const char *rest) {
  constexpr size_t most = SVG_REST_SIZE - sizeof "...";
  size_t length = 0, characters = 0;
  for (; rest[length] != '\0' && length < most; ++length) {
    const bool begins = (static_cast<unsigned char>(rest[length]) & 0xC0) != 0x80;
    if (begins && ++characters > SVG_REST_CHARACTERS) break;
    cut[length] = rest[length];
  }
  strcpy(cut + length, rest[length] != '\0' ? "..." : "");
}
