// virtual_file.cpp: files that live in memory under a name, such as resources embedded in a
// drawing. The reader makes them, hosts read them. May raise ORT_E_NO_MEMORY and
// ORT_E_NO_VIRTUAL_FILE.
#include <string.h>

#include "core/ort_state.h"

struct ort_pvf {
  size_t place; // in order
  void *bytes;
  size_t length;
  size_t references; // by name; 0: deleted, but still being read
  size_t readers;    // open files
  char name[];
};

static ort_pvf *find(const ort_core *core, const char *name);
static ort_pvf *need(ort_core *core, const char *name);
static void forget(ort_core *core, ort_name_entry *entry);
static void make_room(ort_core *core);
static void close_holes(ort_pvf_table *table);
static void free_file(ort_core *core, ort_pvf *file);

// ---- By name ------------------------------------------------------------------------------------

void ort__create_pvf(ort_core *core, const char *name, void *buffer, size_t length,
                     const char *options) {
  if (!strstr(options, "deletedata")) ort_internal_error(core, __FILE__, __LINE__);
  make_room(core);
  ort_pvf_table &table = core->files;
  ort_name_entry *entry = ort_index_add(core, &table.names, name);
  if (entry->value) ort_internal_error(core, __FILE__, __LINE__);
  const size_t name_size = strlen(name) + 1;
  ort_pvf *file =
      static_cast<ort_pvf *>(ort_try_malloc(core, sizeof(ort_pvf) + name_size, "ort__create_pvf"));
  if (!file) {
    forget(core, entry);
    ort_raise_no_memory(core);
  }
  *file = {table.order_used, buffer, length, 1, 0};
  entry->name = static_cast<char *>(memcpy(file->name, name, name_size));
  entry->value = file;
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
  ort_pvf_table &table = core->files;
  table.order[file->place] = nullptr;
  --table.count;
  forget(core, ort_index_find(core, &table.names, name));
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
  ort_own_realloc(core, table.order, table.capacity * sizeof(ort_pvf *), 0);
  ort_index_clear(core, &table.names);
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
  const ort_name_entry *entry = ort_index_find(core, &core->files.names, name);
  return entry ? static_cast<ort_pvf *>(entry->value) : nullptr;
}

static ort_pvf *need(ort_core *core, const char *name) {
  ort_pvf *file = find(core, name);
  if (!file) ort_error(core, ORT_E_NO_VIRTUAL_FILE, name, nullptr, nullptr, nullptr);
  return file;
}

// No other drawing has to bear the table of a drawing whose files have gone.
static void forget(ort_core *core, ort_name_entry *entry) {
  ort_index_remove(core, &core->files.names, entry);
  if (core->files.count == 0) ort_pvf_delete_all(core);
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
  void *order = ort_own_realloc(core, table.order, table.capacity * sizeof(ort_pvf *),
                                capacity * sizeof(ort_pvf *));
  if (!order) ort_raise_no_memory(core);
  table.order = static_cast<ort_pvf **>(order);
  table.capacity = capacity;
}

static void free_file(ort_core *core, ort_pvf *file) {
  ort_free(core, file->bytes);
  ort_free(core, file);
}
