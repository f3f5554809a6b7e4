/** @file
 * What a host lets style sheets reach outside the drawing.
 *
 * A host passes a css_context to svg_parser_new. Without one (null), or without a read callback and
 * a base folder, every external sheet is refused with a warning: nothing outside the drawing is
 * ever opened unless the host says so.
 */
#ifndef CSS_CONTEXT_H
#define CSS_CONTEXT_H

#include "../core/ort.h"

#ifdef __cplusplus
extern "C" {
#endif

/** The text of a sheet being read. */
typedef struct css_sheet_text css_sheet_text;

/** Reads the sheet that href names (as written in the drawing, an import's already resolved against
 * the sheet that holds it). Appends its bytes to text with css_context_append and returns 1;
 * returns 0 to refuse. The bytes are decoded afterwards (CSS 2.1, 4.4). May raise what the
 * functions that it calls raise. */
typedef int (*css_read_fn)(void *user, const char *href, css_sheet_text *text);

/** What may be read. */
typedef struct css_context {
  /** Sheets below this folder may be read from disk; null: none. Relative names only: no absolute
   * names, no "..", no links out of the folder, no URLs. */
  const char *base_folder;
  css_read_fn read; /**< when not null, asked instead of the disk */
  void *user;       /**< first argument of read */
} css_context;

/** Appends bytes to a sheet; for css_read_fn only.
 * @param text    what the callback was given
 * @param bytes   length bytes, copied
 * @param length  their number
 * @return 1, or 0 when the sheet has become too long (ORT_LIMIT_STYLE_SHEET) or memory is short;
 * the callback should then return */
ORT_API int css_context_append(css_sheet_text *text, const void *bytes, size_t length);

#ifdef __cplusplus
}
#endif

#endif
