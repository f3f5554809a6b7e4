// file.cpp: files on disk and in memory, read-only. Hosts and the reader call it; opening may raise
// ORT_E_OPEN and ORT_E_NO_MEMORY, reading never raises.
//
// Every file reads through a window onto its bytes: a file in memory is one window, a file on disk
// moves its window with read(2).
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/ort_state.h"

namespace {
constexpr size_t BUFFER_SIZE = 32768;
}

struct ort_file {
  ort_core *core;
  char *name;
  ort_pvf *virtual_file;
  int descriptor;              // -1: in memory
  bool failed;                 // a read failed
  int64_t start;               // offset of the window in the file
  const unsigned char *window; // of length bytes, the next one to read at position
  size_t length, position;
  unsigned char buffer[]; // only of a file on disk
};

static ort_file *new_file(ort_core *core, const char *name, size_t buffer_size);
static bool more(ort_file *file);
ORT_NORETURN static void raise_open(ort_core *core, const char *path, int reason);

// ---- Opening ------------------------------------------------------------------------------------

ort_file *ort_fopen(ort_core *core, const char *path) {
  ort_file *file = new_file(core, path, BUFFER_SIZE);
  file->window = file->buffer;
  do {
    file->descriptor = open(path, O_RDONLY | O_CLOEXEC);
  } while (file->descriptor < 0 && errno == EINTR);
  int reason = 0;
  struct stat status;
  if (file->descriptor < 0 || fstat(file->descriptor, &status) != 0) {
    reason = errno;
  } else if (S_ISDIR(status.st_mode)) {
    reason = EISDIR;
  }
  if (reason != 0) {
    ort_fclose(file);
    raise_open(core, path, reason);
  }
  return file;
}

ort_file *ort_fopen_memory(ort_core *core, const char *name, const void *bytes, size_t length) {
  return ort_fopen_pvf(core, name, bytes, length, nullptr);
}

ort_file *ort_fopen_pvf(ort_core *core, const char *name, const void *bytes, size_t length,
                        ort_pvf *owner) {
  ort_file *file = new_file(core, name, 0);
  file->virtual_file = owner;
  file->window = static_cast<const unsigned char *>(bytes);
  file->length = length;
  return file;
}

void ort_fclose(ort_file *file) {
  if (!file) return;
  if (file->descriptor >= 0) close(file->descriptor);
  if (file->virtual_file) ort_pvf_close(file->core, file->virtual_file);
  ort_free(file->core, file->name);
  ort_free(file->core, file);
}

ort_core *ort_file_core(const ort_file *file) { return file->core; }

const char *ort_fname(const ort_file *file) { return file->name; }

// The name is copied first: if its copy fails, nothing else exists.
static ort_file *new_file(ort_core *core, const char *name, size_t buffer_size) {
  char *copy = ort_strndup(core, name, strlen(name), "ort_fopen");
  ort_file *file =
      static_cast<ort_file *>(ort_try_malloc(core, sizeof(ort_file) + buffer_size, "ort_fopen"));
  if (!file) {
    ort_free(core, copy);
    ort_raise_no_memory(core);
  }
  memset(file, 0, sizeof *file);
  file->core = core;
  file->name = copy;
  file->descriptor = -1;
  return file;
}

static void raise_open(ort_core *core, const char *path, int reason) {
  char text[256];
  ort_error(core, ORT_E_OPEN, path, strerror_r(reason, text, sizeof text), nullptr, nullptr);
}

// ---- Reading ------------------------------------------------------------------------------------

size_t ort_fread(void *buffer, size_t size, size_t count, ort_file *file) {
  size_t wanted;
  if (__builtin_mul_overflow(size, count, &wanted)) wanted = SIZE_MAX;
  size_t done = 0;
  while (done < wanted && (file->position < file->length || more(file))) {
    const size_t there = file->length - file->position;
    const size_t part = wanted - done < there ? wanted - done : there;
    memcpy(static_cast<char *>(buffer) + done, file->window + file->position, part);
    file->position += part;
    done += part;
  }
  return size > 0 ? done / size : 0;
}

int ort_feof(ort_file *file) {
  return file->position == file->length && !more(file) && !file->failed;
}

int ort_fseek(ort_file *file, int64_t offset, int whence) {
  if (whence != SEEK_SET || offset < 0) return -1;
  file->failed = false;
  const int64_t in_window = offset - file->start;
  if (in_window >= 0 && static_cast<uint64_t>(in_window) <= file->length) {
    file->position = static_cast<size_t>(in_window);
    return 0;
  }
  if (file->descriptor < 0 || lseek(file->descriptor, offset, SEEK_SET) != offset) return -1;
  file->start = offset;
  file->length = file->position = 0;
  return 0;
}

int64_t ort_fsize(ort_file *file) {
  if (file->descriptor < 0) return static_cast<int64_t>(file->length);
  struct stat status;
  if (fstat(file->descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return -1;
  return status.st_size;
}

int ort_is_gzip(ort_file *file) {
  unsigned char id[2];
  if (ort_fseek(file, 0, SEEK_SET) != 0) return 0;
  const bool gzip = ort_fread(id, 1, 2, file) == 2 && id[0] == 0x1F && id[1] == 0x8B;
  return ort_fseek(file, 0, SEEK_SET) == 0 && gzip;
}

// Moves the window, whose bytes are all read, to the next bytes; false: there are none.
static bool more(ort_file *file) {
  if (file->descriptor < 0 || file->failed) return false;
  ssize_t got;
  do {
    got = read(file->descriptor, file->buffer, BUFFER_SIZE);
  } while (got < 0 && errno == EINTR);
  file->failed = got < 0;
  if (got <= 0) return false; // the window stays: a pipe can then still be rewound inside it
  file->start += static_cast<int64_t>(file->length);
  file->length = static_cast<size_t>(got);
  file->position = 0;
  return true;
}
