// css_href.cpp: resolves the name of an imported sheet against that of the importing one (RFC 3986,
// 5.2). Called by the sheet parser. Raises ORT_E_NO_MEMORY.
#include "css/css_href.h"

#include <string_view>

namespace {
struct href_parts {
  std::string_view scheme, authority, path, query; // with their ":", "//" and "?"
};
} // namespace

static href_parts split(std::string_view href);
static void append(ort_bs *result, std::string_view text) {
  ort_bs_append(result, text.data(), text.size());
}
static void append_segments(ort_bs *result, size_t root, std::string_view path, bool absolute);
static bool drop_segment(ort_bs *result, size_t root);

void css_resolve_href(ort_bs *result, const char *base, const char *href) {
  href_parts parts = split(href), base_parts = split(base ? base : "");
  std::string_view folder;
  if (parts.scheme.empty()) {
    parts.scheme = base_parts.scheme;
    if (parts.authority.empty()) {
      parts.authority = base_parts.authority;
      if (parts.path.empty()) {
        parts.path = base_parts.path;
        if (parts.query.empty()) parts.query = base_parts.query;
      } else if (parts.path[0] != '/') {
        folder = base_parts.path.substr(0, base_parts.path.rfind('/') + 1);
        if (folder.empty() && !parts.authority.empty()) folder = "/";
      }
    }
  }
  append(result, parts.scheme);
  append(result, parts.authority);
  bool absolute = folder.starts_with('/') || (folder.empty() && parts.path.starts_with('/'));
  if (absolute) ort_bs_append_byte(result, '/');
  size_t root = ort_bs_length(result);
  if (absolute) (folder.empty() ? parts.path : folder).remove_prefix(1);
  append_segments(result, root, folder, absolute);
  append_segments(result, root, parts.path, absolute);
  append(result, parts.query);
}

static href_parts split(std::string_view href) {
  href_parts parts;
  href = href.substr(0, href.find('#'));
  auto take = [&href](size_t length) {
    std::string_view part = href.substr(0, length);
    href.remove_prefix(part.size());
    return part;
  };
  size_t colon = href.find(':');
  if (colon < href.find_first_of("/?")) parts.scheme = take(colon + 1);
  if (href.starts_with("//")) parts.authority = take(href.find_first_of("/?", 2));
  parts.path = take(href.find('?'));
  parts.query = href;
  return parts;
}

// Appends the segments of a path, resolving "." and ".." down to root. A ".." that leads above it
// is kept, unless the path is absolute.
static void append_segments(ort_bs *result, size_t root, std::string_view path, bool absolute) {
  while (!path.empty()) {
    size_t length = path.find('/');
    std::string_view segment = path.substr(0, length),
                     whole = path.substr(0, length + (length < path.size()));
    path.remove_prefix(whole.size());
    if (segment == "." || (segment == ".." && (drop_segment(result, root) || absolute))) continue;
    append(result, whole);
  }
}

// Removes the last "name/" after root; returns false if there is none.
static bool drop_segment(ort_bs *result, size_t root) {
  std::string_view path(ort_bs_text(result) + root, ort_bs_length(result) - root);
  if (path.empty()) return false;
  path.remove_suffix(1);
  size_t begin = path.rfind('/') + 1;
  if (path.substr(begin) == "..") return false;
  ort_bs_shorten(result, root + begin);
  return true;
}
