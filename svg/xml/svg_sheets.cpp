// svg_sheets.cpp: the style-sheet pass. Gathers external sheets named by xml-stylesheet
// instructions and the text of the style elements; builds nothing.
//
// Called by Expat; every callback runs in svg_in_callback. A malformed instruction is a warning.
// Raises for lack of memory, and what the host's reading of a sheet raises.
#include "svg/xml/svg_sheets.h"

#include <cstring>
#include <string_view>

#include "svg/names/svg_namespace.h"
#include "svg/values/svg_errors.h"
#include "svg/values/svg_leniency.h"
#include "svg/xml/svg_expat.h"
#include "svg/xml/svg_growth.h"
#include "svg/xml/svg_sheet_place.h"

static bool is_svg_or_style(const char *name);
static void forget_instruction(svg_parser *p);
static void read_external_sheet(svg_parser *p);
static int32_t warn_item(svg_parser *p, int code, const char *name, const char *token);
static char *skip_space(char *s);
static void log_start_tag(svg_parser *p, const char *name, const XML_Char **type);
static void log_line(svg_parser *p);

static void release_sheet(ort_core *core, void *item) {
  const auto *sheet = static_cast<svg_ext_sheet *>(item);
  ort_free(core, sheet->text);
  ort_free(core, sheet->href);
}

constexpr ort_item_desc pi_item_ced = {sizeof(char *), nullptr, nullptr};
constexpr ort_item_desc sheet_ced = {sizeof(svg_ext_sheet), nullptr, release_sheet};

void svg_cb_proc_instr_css(void *parser, const XML_Char *target, const XML_Char *data) {
  auto *p = static_cast<svg_parser *>(parser);
  svg_in_callback(p, [&] {
    p->origin = SVG_SHEET_INSTRUCTION;
    p->sheet_place = svg_place_here(p);
    p->pi_copy = ort_strdup(p->core, data);
    if (!p->pi_items) p->pi_items = ort_vtr_new(p->core, &pi_item_ced, 4, 0);
    log_line(p);
    svg_note(p, 3, "<?%a %a?>\n", target, data);
    if (strcmp(target, "xml-stylesheet") == 0 && svg_css_split_itemlist(p, p->pi_copy) == 0) {
      read_external_sheet(p);
    }
    forget_instruction(p);
  });
}

// Splits «name = "value" ...» in place.
int32_t svg_css_split_itemlist(svg_parser *p, char *text) {
  for (char *s = skip_space(text); *s != '\0'; s = skip_space(s)) {
    char *name = s;
    while (*s != '\0' && *s != '=' && !ort_isspace(*s)) ++s;
    if (s == name) return warn_item(p, SVG_E_ATTRIBUTE_MISSING, nullptr, nullptr);
    char *name_end = s;
    ort_push<char *>(p->pi_items, name);
    s = skip_space(s);
    char token[2] = {*s, '\0'};
    *name_end = '\0';
    if (token[0] == '\0') return warn_item(p, SVG_E_ATTRIBUTE_INCOMPLETE, name, nullptr);
    if (token[0] != '=') return warn_item(p, SVG_E_ATTRIBUTE_TOKEN, name, token);
    s = skip_space(s + 1);
    token[0] = *s;
    if (token[0] != '"' && token[0] != '\'')
      return warn_item(p, SVG_E_ATTRIBUTE_TOKEN, name, token);
    char *value = ++s;
    s += strcspn(s, token);
    if (s == value) return warn_item(p, SVG_E_ATTRIBUTE_INCOMPLETE, name, nullptr);
    ort_push<char *>(p->pi_items, value);
    if (*s != '\0') *s++ = '\0'; // a missing closing mark is accepted
  }
  return 0;
}

void svg_cb_elem_start_css(void *parser, const XML_Char *name, const XML_Char **attrs) {
  auto *p = static_cast<svg_parser *>(parser);
  if (!is_svg_or_style(name) && static_cast<uint32_t>(p->level) < p->limits.depth &&
      p->declared_attributes == 0) {
    ++p->level;
    return;
  }
  svg_in_callback(p, [&] {
    if (p->declared_attributes > 0) svg_count_defaults(p, attrs);
    svg_enter_element(p);
    const char *local;
    if (svg_decomp_fullname(p, name, nullptr, &local) != SVG_NS_SVG) return;
    if (strcmp(local, "svg") == 0) {
      auto outer = ort_top<int32_t>(p->css_svg_stack);
      int32_t type = svg_css_style(p, name, attrs);
      ort_push<int32_t>(p->css_svg_stack, type == -1 ? outer : type);
    } else if (strcmp(local, "style") == 0) {
      if (!*attrs) log_start_tag(p, name, nullptr);
      int32_t type = svg_css_style(p, name, attrs);
      if (type == -1) type = ort_top<int32_t>(p->css_svg_stack);
      if (type != 1) return;
      if (!p->style_sheet) p->style_sheet = ort_bs_new(p->core);
      svg_note(p, 3, "\tFetching internal style sheet...\n");
      p->in_style_elem = 1;
    }
  });
}

void svg_cb_elem_end_css(void *parser, const XML_Char *name) {
  auto *p = static_cast<svg_parser *>(parser);
  --p->level;
  if (!is_svg_or_style(name)) return;
  svg_in_callback(p, [&] {
    const char *local;
    if (svg_decomp_fullname(p, name, nullptr, &local) != SVG_NS_SVG) return;
    if (strcmp(local, "svg") == 0) {
      ort_vtr_pop(p->css_svg_stack);
    } else if (strcmp(local, "style") == 0) {
      p->in_style_elem = 0;
    }
  });
}

void svg_cb_char_data_css(void *parser, const XML_Char *s, int len) {
  auto *p = static_cast<svg_parser *>(parser);
  if (!p->in_style_elem) return;
  svg_in_callback(p, [&] {
    svg_note_sheet_text(p, s, static_cast<size_t>(len));
    ort_bs_append(p->style_sheet, s, static_cast<size_t>(len));
  });
}

int32_t svg_css_style(svg_parser *p, const char *name, const XML_Char **attrs) {
  while (*attrs && strcmp(attrs[0], "type") != 0) attrs += 2;
  if (!*attrs) return -1;
  log_start_tag(p, name, attrs);
  return strcmp(attrs[1], "text/css") == 0;
}

size_t svg_css_sheet_bytes(const svg_sheet_pass *p) {
  size_t bytes = p->style_sheet ? ort_bs_length(p->style_sheet) : 0;
  for (size_t i = 0; i < ort_vtr_count(p->ext_style_sheets); ++i)
    bytes += strlen(ort_item<svg_ext_sheet>(p->ext_style_sheets, i).text);
  return bytes;
}

// A cheap first look, which lets other names pass, too: most mean nothing here.
static bool is_svg_or_style(const char *name) {
  const std::string_view text(name);
  return text.ends_with("svg") || text.ends_with("style");
}

static void forget_instruction(svg_parser *p) {
  ort_vtr_shorten(p->pi_items, 0);
  ort_free(p->core, p->pi_copy);
  p->pi_copy = nullptr;
  p->origin = SVG_SHEET_NONE;
}

static void read_external_sheet(svg_parser *p) {
  bool css = false;
  const char *href = nullptr;
  for (size_t i = 0; i < ort_vtr_count(p->pi_items); i += 2) {
    const char *name = ort_item<char *>(p->pi_items, i);
    const char *value = ort_item<char *>(p->pi_items, i + 1);
    svg_note(p, 6, "\t\t\t[%a: %a]\n", name, value);
    if (strcmp(name, "type") == 0 && strcmp(value, "text/css") == 0) css = true;
    if (strcmp(name, "href") == 0) href = value;
  }
  if (!css || !href) return;
  if (ort_vtr_count(p->ext_style_sheets) >= ORT_LIMIT_IMPORTS) {
    ort_warning(p->core, ORT_E_LIMIT, "external style sheets",
                ort_errprintf(p->core, "%d", ORT_LIMIT_IMPORTS));
    return;
  }
  if (!p->ext_style_sheets) p->ext_style_sheets = ort_vtr_new(p->core, &sheet_ced, 1, 0);
  auto *sheet = static_cast<svg_ext_sheet *>(ort_vtr_push(p->ext_style_sheets));
  sheet->href = ort_strdup(p->core, href);
  sheet->place = p->sheet_place;
  if (p->sheet_observer) p->sheet_observer(p->sheet_observer_user, href);
  sheet->text = css_read_external_stylesheet(p->core, href, p->css_context_, svg_sheet_encoding(p),
                                             p->log_level);
  if (!sheet->text) ort_vtr_pop(p->ext_style_sheets);
}

static int32_t warn_item(svg_parser *p, int code, const char *name, const char *token) {
  ort_set_errmsg(p->core, code, name, token);
  svg_add_position(p, svg_xml_line(p));
  svg_warn_pending(p);
  return code;
}

static char *skip_space(char *s) {
  while (ort_isspace(*s)) ++s;
  return s;
}

// type: the attribute that holds the style type, or null for a tag without attributes.
static void log_start_tag(svg_parser *p, const char *name, const XML_Char **type) {
  log_line(p);
  if (p->log_level < 3) return;
  const char *prefix, *local;
  svg_decomp_fullname(p, name, &prefix, &local);
  ort_logg(p->core, "<");
  if (*prefix != '\0') ort_logg(p->core, "%a:", prefix);
  ort_logg(p->core, "%a", local);
  if (type) ort_logg(p->core, " %a=\"%a\" ...", type[0], type[1]);
  ort_logg(p->core, ">\n");
}

static void log_line(svg_parser *p) { svg_note(p, 4, "[%02ld]", svg_xml_line(p)); }
