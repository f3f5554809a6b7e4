// extract.cpp: see extract.h.
//
// Every file is created anew (O_EXCL) in the open folder, so that no link can lead elsewhere; with
// --force it is created under another name and renamed over what is there.
#include "tools/extract.h"

#include <fcntl.h>
#include <nettle/sha2.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <unordered_map>

#include "tools/records.h"
#include "tools/utf8.h"
#include "tools/value_text.h"
#include "tools/walk.h"

static std::unordered_map<std::string, int> types_of_data(const Drawing &drawing);
static std::string digest_text(const unsigned char *data, size_t size);
static const char *extension(int mime);
static bool holds(int folder, const std::string &name, const unsigned char *data, size_t size);
static bool write_all(int descriptor, const unsigned char *data, size_t size);

constexpr size_t DIGEST_BYTES = 16; // of the digest, in a file's name

Extractor::~Extractor() {
  if (descriptor_ >= 0) close(descriptor_);
}

bool Extractor::open() {
  if (mkdir(folder_.c_str(), 0777) != 0 && errno != EEXIST) return fail("", errno);
  descriptor_ = ::open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  return descriptor_ >= 0 || fail("", errno);
}

bool Extractor::extract(FILE *out, const Drawing &drawing) {
  const auto types = types_of_data(drawing);
  bool ok = true;
  for (size_t i = 0; const char *virtual_file = ort_pvf_name(drawing.core(), i); ++i) {
    size_t size = 0;
    const unsigned char *data = ort_pvf_data(drawing.core(), virtual_file, &size);
    const auto type = types.find(virtual_file);
    const int mime = type != types.end() ? type->second : SVG_MIME_UNKNOWN;
    const std::string name = digest_text(data, size) + extension(mime);
    if (!written_.contains(name)) {
      if (!write(name, data, size)) {
        ok = false;
        continue;
      }
      written_.insert(name);
    }
    fprintf(out, "%s: %s/%s (%s, %zu bytes)\n", escaped(drawing.name()).c_str(),
            escaped(folder_).c_str(), name.c_str(), mime_text(mime), size);
  }
  return ok;
}

bool Extractor::write(const std::string &name, const unsigned char *data, size_t size) {
  const std::string made = force_ ? "." + name + ".new" : name;
  constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  if (force_) unlinkat(descriptor_, made.c_str(), 0); // left by an interrupted run
  const int file = openat(descriptor_, made.c_str(), flags, 0666);
  if (file < 0) {
    const int error = errno;
    return (error == EEXIST && holds(descriptor_, made, data, size)) || fail(name, error);
  }
  bool ok = write_all(file, data, size);
  ok = close(file) == 0 && ok;
  ok = ok && (!force_ || renameat(descriptor_, made.c_str(), descriptor_, name.c_str()) == 0);
  if (ok) return true;
  const int error = errno;
  unlinkat(descriptor_, made.c_str(), 0);
  return fail(name, error);
}

bool Extractor::fail(const std::string &name, int error) const {
  fprintf(stderr, "svgtree: cannot write %s%s%s: %s%s\n", escaped(folder_).c_str(),
          name.empty() ? "" : "/", name.c_str(), strerror(error),
          error == EEXIST && !name.empty() ? " (--force replaces it)" : "");
  return false;
}

// MIME types by the names of virtual files.
static std::unordered_map<std::string, int> types_of_data(const Drawing &drawing) {
  std::unordered_map<std::string, int> types;
  each_element(drawing.svg(), [&](const svg_e_node *element) {
    for (int32_t i = 0; i < element->values_num; ++i) {
      const svg_iri *iri = value_iri(element->values[i]);
      if (iri && iri->kind == SVG_IRI_DATA && iri->ref.text) types[iri->ref.text] = iri->mime;
    }
  });
  return types;
}

static std::string digest_text(const unsigned char *data, size_t size) {
  sha256_ctx context;
  sha256_init(&context);
  sha256_update(&context, size, data);
  uint8_t digest[DIGEST_BYTES];
  sha256_digest(&context, sizeof digest, digest);
  std::string text;
  for (const uint8_t byte : digest) {
    char hex[4];
    snprintf(hex, sizeof hex, "%02x", byte);
    text += hex;
  }
  return text;
}

static const char *extension(int mime) {
  static constexpr const char *texts[] = {".gif", ".jpg", ".png", ".svg", ".tif", ".css"};
  return mime >= 0 ? texts[mime] : ".bin";
}

// Whether a regular file of that name has these bytes and no more.
static bool holds(int folder, const std::string &name, const unsigned char *data, size_t size) {
  const int file = openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return false;
  struct stat facts = {};
  bool same = fstat(file, &facts) == 0 && S_ISREG(facts.st_mode) &&
              static_cast<size_t>(facts.st_size) == size;
  unsigned char block[65536];
  for (size_t at = 0; same && at < size;) {
    const ssize_t length = read(file, block, sizeof block);
    if (length < 0 && errno == EINTR) continue;
    same = length > 0 && static_cast<size_t>(length) <= size - at &&
           memcmp(block, data + at, static_cast<size_t>(length)) == 0;
    if (same) at += static_cast<size_t>(length);
  }
  close(file);
  return same;
}

static bool write_all(int descriptor, const unsigned char *data, size_t size) {
  while (size > 0) {
    const ssize_t written = write(descriptor, data, size);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    data += written;
    size -= static_cast<size_t>(written);
  }
  return true;
}
