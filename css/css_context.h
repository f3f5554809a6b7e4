/* css_context.h: what a host lets style sheets reach outside the drawing.
 *
 * A host passes a css_context to svg_parser_new. Without one (null), or without a read callback and
 * a base folder, every external sheet is refused with a warning: nothing outside the drawing is
 * ever opened unless the host says so.
 */
#ifndef CSS_CONTEXT_H
#define CSS_CONTEXT_H

#include "core/ort.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Reads the sheet that href names (as written in the drawing, an @import's already resolved against
 * the sheet that holds it). Appends its bytes to text with css_context_append and returns 1;
 * returns 0 to refuse. */
typedef struct css_sheet_text css_sheet_text;
typedef int (*css_read_fn)(void *user, const char *href, css_sheet_text *text);

typedef struct css_context {
  const char
      *base_folder; /* sheets below this folder may be read from disk; null: none. Relative names
                       only: no absolute names, no "..", no links out of the folder, no URLs. */
  css_read_fn read; /* when not null, asked instead of the disk */
  void *user;       /* first argument of read */
} css_context;

/* Appends bytes of the sheet; for css_read_fn only. Returns 0 when the sheet has become too long
 * (ORT_LIMIT_STYLE_SHEET) or memory is short; the callback should then return. */
ORT_API int css_context_append(css_sheet_text *text, const void *bytes, size_t length);

#ifdef __cplusplus
}
#endif

#endif
