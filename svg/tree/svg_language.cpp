// svg_language.cpp: the language test of conditional processing (SVG 1.1, 5.8.5), for hosts that
// walk a finished tree.
//
// Choosing among the children of a switch is the host's; the tree only marks who has a list
// (SVG_EF_SYSLANG). Raises for lack of memory when the parser's language is cut for the first time.
#include <cstring>

#include "svg/parser/svg_parser.h"

static void make_primary(svg_host *p);
static bool accepts(const svg_host *p, const char *entry);

int32_t svg_check_system_language(svg_parser *p, const svg_e_node *element) {
  if (!p->language) return 0;
  if (!p->language_primary) make_primary(p);
  for (int32_t i = 0; i < element->values_num; ++i) {
    if (element->values[i]->row != SVG_ATTR_systemLanguage) continue;
    const auto *list = reinterpret_cast<const svg_an_name_list *>(element->values[i]);
    for (int32_t k = 0; k < list->count; ++k) {
      svg_note(p, 3, "\t\t\tsystemLanguage[%d]=\"%a\"\n", k, list->names[k]);
      if (accepts(p, list->names[k])) return 1;
    }
  }
  return 0;
}

// "en" of "en_US" and of "en-US"; a "_" anywhere wins over an earlier "-".
static void make_primary(svg_host *p) {
  p->language_primary = ort_strdup(p->core, p->language);
  char *cut = strchr(p->language_primary, '_');
  if (!cut) cut = strchr(p->language_primary, '-');
  if (cut) *cut = '\0';
}

// An entry is cut at "-" only: systemLanguage holds language tags, the host's language may be a
// locale name.
static bool accepts(const svg_host *p, const char *entry) {
  const char *primary = p->language_primary;
  if (ort_stricmp_a(entry, p->language) == 0 || ort_stricmp_a(entry, primary) == 0) return true;
  const char *dash = strchr(entry, '-');
  if (!dash) return false;
  const auto length = static_cast<size_t>(dash - entry);
  return length == strlen(primary) && ort_strincmp_a(entry, primary, length) == 0;
}
