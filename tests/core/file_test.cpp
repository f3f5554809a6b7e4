#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <unistd.h>

#include "tests/support/accounting_core.h"
#include "tests/support/cases.h"
#include "tests/support/gzip.h"

// ---- Plain files --------------------------------------------------------------------------------

// A new file, already without a name.
static ort_file *file_with(ort_core *core, const std::string &bytes) {
  const std::string path = testing::TempDir() + "ort_file_test_" + std::to_string(getpid());
  std::ofstream(path, std::ios::binary) << bytes;
  ort_file *file = ort_fopen(core, path.c_str());
  unlink(path.c_str());
  return file;
}

static std::string some_bytes(size_t count) {
  std::string bytes;
  for (size_t i = 0; i < count; ++i) bytes += static_cast<char>(i * i / 7 + i);
  return bytes;
}

// Reads as the reader does: in blocks, the last one is where the end is.
static std::string read_blocks(ort_file *file, size_t size = 8192) {
  std::string all, block(size, '\0');
  for (;;) {
    const size_t got = ort_fread(block.data(), 1, size, file);
    all.append(block, 0, got);
    if (ort_feof(file)) return all;
    if (got < size) return all + " and an error";
  }
}

TEST(File, ReadsBlocksAndItemsAndSeeks) {
  const int input = dup(STDIN_FILENO);
  close(STDIN_FILENO); // files get descriptor 0
  AccountingCore core;
  for (size_t length : {0U, 1U, 8191U, 8192U, 8193U, 32767U, 32768U, 32769U, 65536U}) {
    const std::string bytes = some_bytes(length);
    for (ort_file *file :
         {file_with(core, bytes), ort_fopen_memory(core, "memory", bytes.data(), length)}) {
      EXPECT_EQ(ort_fsize(file), static_cast<int64_t>(length));
      EXPECT_EQ(read_blocks(file), bytes) << length;
      EXPECT_EQ(ort_fseek(file, 0, SEEK_SET), 0);
      EXPECT_EQ(ort_feof(file), length == 0);
      EXPECT_EQ(read_blocks(file, 40000), bytes) << length << " after rewinding";
      char item[7];
      for (const size_t offset : {length / 2, length / 2 + 9, length / 3, length - 1}) {
        if (offset >= length) continue;
        ASSERT_EQ(ort_fseek(file, static_cast<int64_t>(offset), SEEK_SET), 0);
        EXPECT_EQ(ort_fread(item, 7, 1, file), offset + 7 <= length ? 1U : 0U) << offset;
        EXPECT_EQ(item[0], bytes[offset]);
      }
      EXPECT_EQ(ort_feof(file), 1) << length;
      EXPECT_EQ(ort_fseek(file, -1, SEEK_SET), -1);
      EXPECT_EQ(ort_fseek(file, 0, SEEK_END), -1);
      EXPECT_EQ(ort_fread(item, 0, 5, file), 0U);
      EXPECT_EQ(ort_fread(item, SIZE_MAX, 2, file), 0U);
      ort_fclose(file);
    }
  }
  ort_fclose(nullptr);
  EXPECT_EQ(dup2(input, STDIN_FILENO), 0);
  close(input);
}

TEST(File, PipesRewindInsideTheirWindow) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  ASSERT_EQ(write(ends[1], "\x1F\x8B text", 7), 7);
  close(ends[1]);
  AccountingCore core;
  ort_file *file = ort_fopen(core, ("/proc/self/fd/" + std::to_string(ends[0])).c_str());
  close(ends[0]);
  EXPECT_EQ(ort_fsize(file), -1);
  EXPECT_EQ(ort_is_gzip(file), 1);
  EXPECT_EQ(read_blocks(file), "\x1F\x8B text");
  EXPECT_EQ(ort_fseek(file, 100, SEEK_SET), -1);
  EXPECT_EQ(ort_is_gzip(file), 1);
  ort_fclose(file);
}

// Files that cannot be opened are those of svgtree's tests.
TEST(File, ErrorsOfReadingPassThroughGzip) {
  AccountingCore core;
  ort_file *file = ort_fopen(core, "/proc/self/mem"); // page 0 is not mapped
  ort_gz *gz = ort_gzopen(file);
  EXPECT_EQ(ort_gzread(gz, &gz, 1), -1);
  EXPECT_EQ(ort_error_code(core), ORT_E_READ);
  ort_gzclose(gz);
  ort_fclose(file);
}

// ---- gzip ---------------------------------------------------------------------------------------

// What a gzip stream holds, read in pieces of chunk bytes; an error's text in brackets at the end.
static std::string gunzip(AccountingCore &core, const std::string &data, size_t chunk = 8192) {
  ort_file *file = ort_fopen_memory(core, "test.svgz", data.data(), data.size());
  ort_gz *gz = ort_gzopen(file);
  std::string all, buffer(chunk, '\0');
  int64_t got;
  do {
    got = ort_gzread(gz, buffer.data(), chunk);
    if (got > 0) all.append(buffer, 0, static_cast<size_t>(got));
  } while (got == static_cast<int64_t>(chunk));
  if (got < 0) {
    const std::string text = ort_error_text(core);
    EXPECT_EQ(ort_gzread(gz, buffer.data(), 1), -1) << "the error stays";
    EXPECT_EQ(ort_error_text(core), text);
    all += "[" + text + "]";
  }
  ort_gzclose(gz);
  ort_fclose(file);
  return all;
}

TEST(Gzip, InflatesMembersInChunksOfAnySizeAndIgnoresWhatFollows) {
  AccountingCore core;
  const std::string a = gzip("first "), tails[] = {"", std::string(600, '\0'), "\x1F", "\x1Fx"};
  for (size_t length : {0U, 1U, 8192U, 16384U, 100000U}) {
    const std::string bytes = some_bytes(length);
    for (size_t chunk : {1U, 7U, 8192U, 200000U})
      for (const std::string &tail : tails)
        EXPECT_EQ(gunzip(core, gzip(bytes) + a + gzip(bytes, true) + tail, chunk),
                  bytes + "first " + bytes)
            << length << " by " << chunk;
  }
  // The signature of the second member lies across the end of the input buffer.
  std::mt19937 random(1);
  std::string noise;
  while (noise.size() < 32780) noise += static_cast<char>(random());
  for (size_t length = 32700; length < noise.size(); ++length) {
    const std::string stored = noise.substr(0, length);
    EXPECT_EQ(gunzip(core, gzip(stored) + a), stored + "first ");
  }
}

TEST(Gzip, EveryPrefixIsTruncated) {
  AccountingCore core;
  const std::string bytes = some_bytes(3000), data = gzip(bytes, true);
  for (size_t length = 0; length < data.size(); ++length) {
    const std::string got = gunzip(core, data.substr(0, length), 100);
    const size_t end = got.rfind('[');
    EXPECT_EQ(got.substr(end), "[Error in compressed file 'test.svgz': unexpected end of data]");
    EXPECT_EQ(got.substr(0, end), bytes.substr(0, end)) << length;
  }
}

TEST(Gzip, DamageIsReported) {
  AccountingCore core;
  expect_cases(R"(
0 -> incorrect header check | 2 -> unknown compression method | 3 -> unknown header flags set
-8 -> incorrect data check | -1 -> incorrect length check)",
               [&](const std::string &at) { // from the start, or from the end when negative
                 std::string data = gzip("text text text text");
                 data[(data.size() + static_cast<size_t>(std::stoi(at))) % data.size()] ^= '\xE0';
                 gunzip(core, data);
                 EXPECT_EQ(ort_error_code(core), ORT_E_GZIP);
                 const std::string text = ort_error_text(core);
                 return text.substr(text.rfind(": ") + 2);
               });
}

TEST(Gzip, BudgetCountsAllMembers) {
  const std::string bytes(5000, 'x'), data = gzip(bytes) + gzip(bytes);
  CoreOptions options = AccountingCore::defaults();
  options.inflate_budget = 10000;
  AccountingCore enough(options);
  EXPECT_EQ(gunzip(enough, data, 100), bytes + bytes);
  options.inflate_budget = 9999;
  AccountingCore core(options);
  gunzip(core, data, 100);
  EXPECT_STREQ(ort_error_text(core), "Limit of 9999 inflated bytes exceeded");
  EXPECT_EQ(ort_error_code(core), ORT_E_LIMIT);
}

// ---- Virtual files ------------------------------------------------------------------------------

static void create(ort_core *core, const char *name, const char *text) {
  ort__create_pvf(core, name, ort_strdup(core, text), strlen(text), "deletedata");
}

TEST(VirtualFile, LivesWhileItIsReferenced) {
  AccountingCore core;
  const auto exists = [&] { return ort__info_pvf(core, "a", "exists") == 1; };
  EXPECT_FALSE(exists());
  ort__delete_pvf(core, "a");
  create(core, "a", "text of a");
  EXPECT_TRUE(exists());
  EXPECT_EQ(ort__info_pvf(core, "a", "size"), 9.0);
  EXPECT_EQ(ort_pvf_data(core, "b", nullptr), nullptr);
  EXPECT_EQ(core.protect([&] { ort__addref_pvf(core, "b"); }), ORT_E_NO_VIRTUAL_FILE);
  EXPECT_EQ(core.protect([&] { ort_pvf_open(core, "b"); }), ORT_E_NO_VIRTUAL_FILE);
  EXPECT_STREQ(ort_error_text(core), "No virtual file 'b'");
  EXPECT_EQ(core.protect([&] { ort__create_pvf(core, "a", nullptr, 0, "deletedata"); }),
            ORT_E_INTERNAL);
  EXPECT_EQ(core.protect([&] { ort__info_pvf(core, "a", "color"); }), ORT_E_INTERNAL);

  ort__addref_pvf(core, "a");
  ort__delete_pvf(core, "a");
  EXPECT_TRUE(exists());
  ort_file *file = ort_pvf_open(core, "a");
  ort__delete_pvf(core, "a");
  ort__delete_pvf(core, "a");
  EXPECT_FALSE(exists());
  EXPECT_EQ(read_blocks(file), "text of a") << "an open file keeps its data";
  create(core, "a", "");
  EXPECT_EQ(ort_fseek(file, 5, SEEK_SET), 0);
  EXPECT_EQ(read_blocks(file), "of a");
  ort_fclose(file);
  size_t size = 7;
  EXPECT_NE(ort_pvf_data(core, "a", &size), nullptr);
  EXPECT_EQ(size, 0U);
  ort__delete_pvf(core, "a");
}

TEST(VirtualFile, NamesKeepTheOrderOfCreation) {
  AccountingCore core;
  std::vector<std::string> names;
  for (int i = 0; i < 2000; ++i) {
    names.push_back("file " + std::to_string(i));
    create(core, names.back().c_str(), "x");
    if (i % 3 != 1) {
      const auto victim = names.begin() + static_cast<ptrdiff_t>(i) * 7 % std::ssize(names);
      ort__delete_pvf(core, victim->c_str());
      names.erase(victim);
    }
    if (i % 100 != 99) continue;
    ASSERT_EQ(ort_pvf_count(core), names.size());
    for (size_t k = 0; k < names.size(); ++k) ASSERT_EQ(ort_pvf_name(core, k), names[k]);
    ASSERT_EQ(ort_pvf_name(core, names.size()), nullptr);
  }
  for (const std::string &name : names) ort__delete_pvf(core, name.c_str());
  EXPECT_EQ(ort_pvf_count(core), 0U);

  ort_core *other = ort_core_new(nullptr);
  create(other, "left", "to the core");
  ort_core_delete(other); // the address sanitizer sees a leak
}

TEST(File, SurvivesFailingAllocations) {
  allocation_sweep([](AccountingCore &core) {
    void *buffer = nullptr; // the caller's when no virtual file could be made of it
    const int code = core.protect([&] {
      buffer = ort_malloc(core, 3, "test");
      ort__create_pvf(core, "a", buffer, 3, "deletedata");
      buffer = nullptr;
      ort_fclose(ort_pvf_open(core, "a"));
      ort_fclose(ort_fopen(core, "/dev/null"));
    });
    ort_free(core, buffer);
    ort__delete_pvf(core, "a");
    return code == 0;
  });
}
