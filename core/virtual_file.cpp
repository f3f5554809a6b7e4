// virtual_file.cpp: files that live in memory under a name, such as resources embedded in a
// drawing. The reader makes them, hosts read them. May raise ORT_E_NO_MEMORY and
// ORT_E_NO_VIRTUAL_FILE.
#include <string.h>

#include "core/ort_state.h"

struct ort_pvf {
  ort_pvf *next; // in the bucket
  size_t place;  // in order
  uint64_t hash;
  char *name;
  void *bytes;
  size_t length;
  size_t references; // by name; 0: deleted, but still being read
  size_t readers;    // open files
};

static ort_pvf *find(const ort_core *core, const char *name);
static ort_pvf *need(ort_core *core, const char *name);
static uint64_t hash_name(const char *name);
static void make_room(ort_core *core);
static void close_holes(ort_pvf_table *table);
static void link_into(ort_pvf **buckets, size_t capacity, ort_pvf *file);
static void unlink_file(ort_core *core, ort_pvf *file);
static void free_file(ort_core *core, ort_pvf *file);

// ---- By name ------------------------------------------------------------------------------------

void ort__create_pvf(ort_core *core, const char *name, void *buffer, size_t length,
                     const char *options) {
  if (!strstr(options, "deletedata") || find(core, name)) {
    ort_internal_error(core, __FILE__, __LINE__);
  }
  make_room(core);
  char *copy = ort_strndup(core, name, strlen(name), "ort__create_pvf");
  ort_pvf *file = static_cast<ort_pvf *>(ort_try_malloc(core, sizeof(ort_pvf), "ort__create_pvf"));
  if (!file) {
    ort_free(core, copy);
    ort_raise_no_memory(core);
  }
  ort_pvf_table &table = core->files;
  *file = {nullptr, table.order_used, hash_name(copy), copy, buffer, length, 1, 0};
  link_into(table.buckets, table.capacity, file);
  table.order[table.order_used++] = file;
  ++table.count;
}

double ort__info_pvf(ort_core *core, const char *name, const char *keyword) {
  if (strcmp(keyword, "exists") == 0) return find(core, name) ? 1.0 : 0.0;
  if (strcmp(keyword, "size") == 0) return static_cast<double>(need(core, name)->length);
  ort_internal_error(core, __FILE__, __LINE__);
}

void ort__addref_pvf(ort_core *core, const char *name) { ++need(core, name)->references; }

void ort__delete_pvf(ort_core *core, const char *name) {
  ort_pvf *file = find(core, name);
  if (!file || --file->references > 0) return;
  unlink_file(core, file);
  if (file->readers == 0) free_file(core, file);
}

const unsigned char *ort_pvf_data(const ort_core *core, const char *name, size_t *size) {
  const ort_pvf *file = find(core, name);
  if (!file) return nullptr;
  if (size) *size = file->length;
  return static_cast<const unsigned char *>(file->bytes);
}

ort_file *ort_pvf_open(ort_core *core, const char *name) {
  ort_pvf *file = find(core, name);
  if (!file) ort_error(core, ORT_E_NO_VIRTUAL_FILE, name, nullptr, nullptr, nullptr);
  ort_file *open = ort_fopen_pvf(core, name, file->bytes, file->length, file);
  ++file->readers;
  return open;
}

void ort_pvf_close(ort_core *core, ort_pvf *file) {
  if (--file->readers == 0 && file->references == 0) free_file(core, file);
}

// ---- In order of creation -----------------------------------------------------------------------

size_t ort_pvf_count(const ort_core *core) { return core->files.count; }

const char *ort_pvf_name(const ort_core *core, size_t index) {
  if (index >= core->files.count) return nullptr;
  close_holes(&core->files);
  return core->files.order[index]->name;
}

void ort_pvf_delete_all(ort_core *core) {
  ort_pvf_table &table = core->files;
  for (size_t i = 0; i < table.order_used; ++i) {
    if (table.order[i]) free_file(core, table.order[i]);
  }
  const size_t bytes = table.capacity * sizeof(ort_pvf *);
  ort_own_realloc(core, table.order, bytes, 0);
  ort_own_realloc(core, table.buckets, bytes, 0);
  table = {};
}

static void close_holes(ort_pvf_table *table) {
  if (table->order_used == table->count) return;
  size_t used = 0;
  for (size_t i = 0; i < table->order_used; ++i) {
    ort_pvf *file = table->order[i];
    if (!file) continue;
    file->place = used;
    table->order[used++] = file;
  }
  table->order_used = used;
}

// ---- Helpers ------------------------------------------------------------------------------------

static ort_pvf *find(const ort_core *core, const char *name) {
  const ort_pvf_table &table = core->files;
  if (table.count == 0) return nullptr;
  const uint64_t hash = hash_name(name);
  ort_pvf *file = table.buckets[hash & (table.capacity - 1)];
  while (file && (file->hash != hash || strcmp(file->name, name) != 0)) file = file->next;
  return file;
}

static ort_pvf *need(ort_core *core, const char *name) {
  ort_pvf *file = find(core, name);
  if (!file) ort_error(core, ORT_E_NO_VIRTUAL_FILE, name, nullptr, nullptr, nullptr);
  return file;
}

// FNV-1a.
static uint64_t hash_name(const char *name) {
  uint64_t hash = 0xCBF29CE484222325U;
  for (; *name; ++name) hash = (hash ^ static_cast<unsigned char>(*name)) * 0x100000001B3U;
  return hash;
}

// Makes room for one more file. While half of the places are holes, closing them is room enough.
static void make_room(ort_core *core) {
  ort_pvf_table &table = core->files;
  if (table.order_used < table.capacity) return;
  if (table.count < table.capacity / 2) {
    close_holes(&table);
    return;
  }
  const size_t capacity = table.capacity ? table.capacity * 2 : 16;
  const size_t old_bytes = table.capacity * sizeof(ort_pvf *), bytes = capacity * sizeof(ort_pvf *);
  void *buckets = ort_own_realloc(core, nullptr, 0, bytes);
  void *order = buckets ? ort_own_realloc(core, table.order, old_bytes, bytes) : nullptr;
  if (!order) {
    if (buckets) ort_own_realloc(core, buckets, bytes, 0);
    ort_raise_no_memory(core);
  }
  ort_own_realloc(core, table.buckets, old_bytes, 0);
  table.buckets = static_cast<ort_pvf **>(memset(buckets, 0, bytes));
  table.order = static_cast<ort_pvf **>(order);
  table.capacity = capacity;
  close_holes(&table);
  for (size_t i = 0; i < table.order_used; ++i) {
    link_into(table.buckets, capacity, table.order[i]);
  }
}

static void link_into(ort_pvf **buckets, size_t capacity, ort_pvf *file) {
  ort_pvf **bucket = &buckets[file->hash & (capacity - 1)];
  file->next = *bucket;
  *bucket = file;
}

static void unlink_file(ort_core *core, ort_pvf *file) {
  ort_pvf_table &table = core->files;
  ort_pvf **link = &table.buckets[file->hash & (table.capacity - 1)];
  while (*link != file) link = &(*link)->next;
  *link = file->next;
  table.order[file->place] = nullptr;
  if (--table.count == 0) ort_pvf_delete_all(core); // no other drawing has to bear the table
}

static void free_file(ort_core *core, ort_pvf *file) {
  ort_free(core, file->bytes);
  ort_free(core, file->name);
  ort_free(core, file);
}
