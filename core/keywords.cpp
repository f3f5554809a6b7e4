// keywords.cpp: look-ups in keyword lists. Everyone calls it; nothing here raises.
#include "core/ort_core.h"

static int find(const char *text, const ort_keyword *list,
                int (*compare)(const char *, const char *)) {
  for (; list->text; ++list) {
    if (compare(text, list->text) == 0) return list->code;
  }
  return ORT_NO_KEYCODE;
}

int ort_get_keycode(const char *text, const ort_keyword *list) {
  return find(text, list, ort_strcmp);
}

int ort_get_keycode_ci(const char *text, const ort_keyword *list) {
  return find(text, list, ort_stricmp_a);
}

const char *ort_get_keyword(int code, const ort_keyword *list) {
  while (list->text && list->code != code) ++list;
  return list->text;
}
