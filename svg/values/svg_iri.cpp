// svg_iri.cpp: IRIs: links within the document, embedded data and everything else, bare and as
// url(...).
//
// Called by svg_parse_attr through the rows of svg_attr_table, and by the paints. Embedded data
// become virtual files of the core; each record holds one reference to its file. Bad text is raised
// with svg_err_value; "data:" without data is fatal. Passes on errors of the runtime, with nothing
// left behind.
#include "svg/values/svg_iri.h"

#include <cstring>

#include "svg/values/svg_errors.h"
#include "svg/values/svg_links.h"
#include "svg/values/svg_record.h"
#include "svg/values/svg_scan.h"
#include "svg/values/svg_types.h"

// clang-format off
static const ort_keyword svg_mime_keylist1[] = {
    {"image/gif",     SVG_MIME_GIF},
    {"image/jpeg",    SVG_MIME_JPEG},
    {"image/png",     SVG_MIME_PNG},
    {"image/svg+xml", SVG_MIME_SVG},
    {"image/tiff",    SVG_MIME_TIFF},
    {"text/css",      SVG_MIME_CSS},
    {nullptr,         0},
};
static const ort_keyword svg_mime_keylist2[] = { // for the names of files
    {"Unknown", SVG_MIME_UNKNOWN},
    {"GIF",     SVG_MIME_GIF},
    {"JPEG",    SVG_MIME_JPEG},
    {"PNG",     SVG_MIME_PNG},
    {"SVG+XML", SVG_MIME_SVG},
    {"TIFF",    SVG_MIME_TIFF},
    {"CSS",     SVG_MIME_CSS},
    {nullptr,   0},
};
// clang-format on

static bool get_optional_funciri(svg_parser *p, svg_iri *iri);
static bool begins_with(const char *text, const char *end, const char *prefix);
static void get_link(svg_parser *p, svg_iri *iri, const char *id, size_t length);
static void get_data(svg_parser *p, svg_iri *iri, const char *text, const char *end);
static int16_t get_mime(const char *text, const char *end);
static void embed(svg_parser *p, svg_iri *iri, const char *base64, size_t length);
static char *new_file_digest(svg_parser *p, const void *bytes, size_t length);
static char *new_file_name(svg_parser *p, int mime, const char *digest);

const char *svg_get_mime_text(int32_t mime) { return ort_get_keyword(mime, svg_mime_keylist1); }

void svg_init_iri(svg_iri *iri) {
  *iri = {
      .kind = SVG_IRI_NAME, .mime = SVG_MIME_NOT_DATA, .fallback = SVG_FALLBACK_MISSING, .ref = {}};
}

void svg_get_iri(svg_parser *p, svg_iri *iri, const char *start, const char *end) {
  iri->mime = SVG_MIME_NOT_DATA;
  if (begins_with(start, end, "#")) {
    get_link(p, iri, start + 1, static_cast<size_t>(end - start - 1));
  } else if (begins_with(start, end, "data:")) {
    get_data(p, iri, start + strlen("data:"), end);
  } else {
    iri->kind = SVG_IRI_NAME;
    iri->ref.text = ort_strndup(p->core, start, static_cast<size_t>(end - start), "svg_get_iri");
    svg_note(p, 5, "\t\t\t[iri name: \"%a\"]\n", iri->ref.text);
  }
}

void svg_get_funciri(svg_parser *p, svg_iri *iri) {
  if (p->tok_type != SVG_TOK_KEYWORD || p->tok_key != SVG_KW_url)
    ort_internal_error(p->core, __func__, __LINE__);
  if (svg_ntok_nonum(p) != SVG_TOK_LPAREN) svg_err_value(p);

  // From here the text is not for the scanner: white space and special characters belong to the
  // IRI.
  const char *start = p->scan_pos;
  const bool quoted = *start == '"' || *start == '\'';
  const char closing = quoted ? *start++ : ')';
  const char *end = strchr(start, closing);
  if (!end) svg_err_end(p);
  if (quoted && end[1] != ')') {
    if (end[1] == '\0') svg_err_end(p);
    svg_err_rest(p, end + 1);
  }
  svg_get_iri(p, iri, start, end);
  p->scan_pos = end + (quoted ? 2 : 1);
}

int32_t svg_equal_iri(ort_core *core, const svg_iri *a, const svg_iri *b) {
  if (a->kind != b->kind) return 0;
  if (a->kind < SVG_IRI_DATA || a->kind > SVG_IRI_NAME)
    ort_internal_error(core, __func__, __LINE__);
  return a->ref.any == b->ref.any;
}

void svg_dtor_iri(ort_core *core, svg_iri *iri) {
  if (iri->kind != SVG_IRI_DATA && iri->kind != SVG_IRI_NAME) return;
  if (iri->kind == SVG_IRI_DATA && iri->ref.text) ort__delete_pvf(core, iri->ref.text);
  ort_free(core, iri->ref.text);
}

// xlink:href: the whole text as written, without the tokens.
void svg_ctor_an_iri(svg_parser *p, svg_a_node *node) {
  svg_iri *iri = &svg_record<svg_an_iri>(node)->iri;
  svg_init_iri(iri);
  svg_get_iri(p, iri, p->scan_start, p->scan_start + strlen(p->scan_start));
}

void svg_ctor_an_clip_path(svg_parser *p, svg_a_node *node) {
  svg_iri *iri = &svg_record<svg_an_iri>(node)->iri;
  if (!get_optional_funciri(p, iri)) iri->kind = SVG_IRI_NONE;
}

// Markers and masks do not tell "none" from "inherit": both are an IRI without text.
void svg_ctor_an_funciri_none_inh(svg_parser *p, svg_a_node *node) {
  get_optional_funciri(p, &svg_record<svg_an_iri>(node)->iri);
}

void svg_dtor_an_iri(ort_core *core, svg_a_node *node) {
  svg_dtor_iri(core, &svg_record<svg_an_iri>(node)->iri);
}

// A FuncIRI is not understood here: its "url" is taken for the name of a profile.
void svg_ctor_an_color_profile(svg_parser *p, svg_a_node *node) {
  auto *profile = svg_record<svg_an_color_profile>(node);
  svg_init_iri(&profile->iri);
  switch (svg_ntok_nonum(p)) {
  case SVG_TOK_STRING:
    profile->keyword = SVG_KW_none;
    profile->name = ort_strdup(p->core, p->tok_text);
    break;
  case SVG_TOK_KEYWORD: profile->keyword = p->tok_key; break;
  default: svg_err_value(p);
  }
}

void svg_dtor_an_key_name_iri(ort_core *core, svg_a_node *node) {
  auto *profile = svg_record<svg_an_color_profile>(node);
  ort_free(core, profile->name);
  svg_dtor_iri(core, &profile->iri);
}

// A keyword of the value's list: url with its IRI (true), or another.
static bool get_optional_funciri(svg_parser *p, svg_iri *iri) {
  svg_init_iri(iri);
  svg_ntok_nonum(p);
  if (svg_ctok_as_key(p) != SVG_KW_url) return false;
  svg_get_funciri(p, iri);
  return true;
}

static bool begins_with(const char *text, const char *end, const char *prefix) {
  const size_t length = strlen(prefix);
  return static_cast<size_t>(end - text) >= length && memcmp(text, prefix, length) == 0;
}

static void get_link(svg_parser *p, svg_iri *iri, const char *id, size_t length) {
  ort_bs_clear(p->name_buf);
  ort_bs_append(p->name_buf, id, length);
  id = ort_bs_text(p->name_buf);
  iri->kind = SVG_IRI_LINK;
  iri->ref.target = svg_find_href(p, id);
  const bool found = iri->ref.target != nullptr;
  svg_note(p, 5, "\t\t\t[link reference \"#%a\" %sfound]\n", id, found ? "" : "not ");
  if (!found) svg_add_unres_link(p, id, iri);
}

// text is what follows "data:". Whatever stands between type and comma, the data are read as
// base64.
static void get_data(svg_parser *p, svg_iri *iri, const char *text, const char *end) {
  const auto length = static_cast<size_t>(end - text);
  iri->kind = SVG_IRI_DATA;
  iri->mime = get_mime(text, end);
  iri->ref.text = nullptr;
  const auto *comma = static_cast<const char *>(memchr(text, ',', length));
  if (!comma) svg_err_no_data(p);
  if (comma + 1 < end) embed(p, iri, comma + 1, static_cast<size_t>(end - comma - 1));
}

static int16_t get_mime(const char *text, const char *end) {
  for (const ort_keyword *mime = svg_mime_keylist1; mime->text; ++mime) {
    const char *after = text + strlen(mime->text);
    if (begins_with(text, end, mime->text) && (after == end || *after == ';'))
      return static_cast<int16_t>(mime->code);
  }
  return SVG_MIME_UNKNOWN;
}

// The record is given its file's name only with its reference to the file: its destructor gives up
// both.
static void embed(svg_parser *p, svg_iri *iri, const char *base64, size_t length) {
  ort_core *core = p->core;
  unsigned char *bytes = nullptr;
  char *digest = nullptr;
  char *name = nullptr;
  const bool done = ort_protected(core, [&] {
    const size_t count = ort_decode_base64(core, base64, length, &bytes);
    digest = new_file_digest(p, bytes, count);
    name = new_file_name(p, iri->mime, digest);
    svg_note(p, 5, "\t\t\t[iri data: \"%s\"]\n", name);
    if (ort__info_pvf(core, name, "exists") != 0.0) {
      ort__addref_pvf(core, name);
      ort_free(core, bytes);
    } else {
      svg_note(p, 5, "\t\t\t[create virtual file]\n");
      ort__create_pvf(core, name, bytes, count, "deletedata");
    }
  });
  ort_free_tmp(core, digest);
  if (!done) {
    ort_free(core, bytes);
    ort_free(core, name);
    ort_rethrow(core);
  }
  iri->ref.text = name;
}

// The parser's address keeps the files of two parsers of one core apart.
static char *new_file_digest(svg_parser *p, const void *bytes, size_t length) {
  unsigned char digest[16];
  ort_md5 md5;
  ort_MD5_Init(&md5);
  ort_MD5_Update(&md5, &p, sizeof p);
  ort_MD5_Update(&md5, bytes, length);
  ort_MD5_Final(digest, &md5);
  return ort_str2hexstr(p->core, digest, sizeof digest, "", ORT_DUP_TEMPORARY, "svg_get_iri");
}

static char *new_file_name(svg_parser *p, int mime, const char *digest) {
  const char *name = ort_errprintf(p->core, "%s (%s file embedded in SVG)", digest,
                                   ort_get_keyword(mime, svg_mime_keylist2));
  return ort_strdup_ext(p->core, name, ORT_DUP_PLAIN, "svg_get_iri");
}
