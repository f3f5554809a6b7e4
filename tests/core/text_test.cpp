#include <cctype>
#include <gtest/gtest.h>
#include <iconv.h>

#include "tests/support/accounting_core.h"
#include "tests/support/cases.h"

TEST(Bytes, AppendCutAndClear) {
  AccountingCore core;
  ort_bs *bs = ort_bs_new(core);
  EXPECT_STREQ(ort_bs_text(bs), "");
  ort_bs_append(bs, "", 0);
  ort_bs_clear(bs);
  std::string expected;
  for (int i = 0; i < 3000; ++i) {
    ort_bs_append_byte(bs, static_cast<char>(i));
    expected += static_cast<char>(i);
  }
  ort_bs_append_text(bs, "text");
  EXPECT_EQ(std::string(ort_bs_text(bs), ort_bs_length(bs)), expected + "text");
  ort_bs_shorten(bs, 5);
  EXPECT_EQ(std::string(ort_bs_text(bs), 6), std::string("\0\1\2\3\4", 6));
  EXPECT_EQ(ort_bs_length(bs), 5U);
  ort_bs_clear(bs);
  EXPECT_STREQ(ort_bs_text(bs), "");
  EXPECT_LT(core.allocations(), 30U);
  EXPECT_EQ(core.protect([&] { ort_bs_append(bs, "", SIZE_MAX - 1); }), ORT_E_NO_MEMORY);
  ort_bs_delete(bs);
  ort_bs_delete(nullptr);
}

TEST(Bits, AreIndependent) {
  AccountingCore core;
  unsigned char *bits = ort_bitarr_new(core, 147);
  for (size_t i = 0; i < 147; i += 3) ort_setbit(bits, i);
  for (size_t i = 0; i < 147; ++i) EXPECT_EQ(ort_getbit(bits, i), i % 3 == 0) << i;
  ort_free(core, bits);
}

TEST(Text, ClassesAreThoseOfASCII) {
  for (int i = 0; i < 256; ++i) {
    const char c = static_cast<char>(i);
    EXPECT_EQ(ort_isspace(c), i < 128 && isspace(i)) << i;
    EXPECT_EQ(ort_isdigit(c), i < 128 && isdigit(i)) << i;
    EXPECT_EQ(ort_isupper(c), i < 128 && isupper(i)) << i;
    EXPECT_EQ(ort_isalpha(c), i < 128 && isalpha(i)) << i;
  }
}

TEST(Text, CopiesTakeNoMoreThanTheyHold) {
  AccountingCore core;
  char *texts[] = {ort_strdup(core, "abcd"), ort_strdup_ext(core, "abcd", ORT_DUP_PLAIN, "plain"),
                   ort_str2hexstr(core, "abc", 3, ", ", ORT_DUP_PLAIN, "hex")};
  EXPECT_EQ(core.live_blocks(), "hex: 1 blocks, 13 bytes\nort_strdup: 1 blocks, 5 bytes\n"
                                "plain: 1 blocks, 5 bytes\n");
  for (char *text : texts) ort_free(core, text);
}

// The signs of the comparison, of that in any letter case, and of that of three characters.
TEST(Text, Comparisons) {
  const auto sign = [](int x) { return "-0+"[(x > 0) - (x < 0) + 1]; };
  expect_cases(R"(
/ -> 000 | a/ -> +++ | abc/ABC -> +00 | abcd/ABCE -> +-0 | ab/abc -> --- | \xC4/\xE4 -> ---
z/\xE4 -> --- | [/{ -> --- | _/a -> --- | _/A -> +-- | ABCE/abcd -> -+0 | A/_ -> -++)",
               [&](const std::string &input) {
                 const size_t slash = input.find('/');
                 const std::string a = input.substr(0, slash), b = input.substr(slash + 1);
                 return std::string{sign(ort_strcmp(a.c_str(), b.c_str())),
                                    sign(ort_stricmp_a(a.c_str(), b.c_str())),
                                    sign(ort_strincmp_a(a.c_str(), b.c_str(), 3))};
               });
  EXPECT_EQ(ort_strincmp_a("a", "b", 0), 0);
}

TEST(Keywords, FirstMatchWins) {
  static constexpr ort_keyword list[] = {{"one", 1}, {"One", 2}, {"uno", 1}, {nullptr, 9}};
  EXPECT_EQ(ort_get_keycode("One", list), 2);
  EXPECT_EQ(ort_get_keycode_ci("ONE", list), 1);
  for (const char *none : {"ONE", "on"}) EXPECT_EQ(ort_get_keycode(none, list), ORT_NO_KEYCODE);
  EXPECT_STREQ(ort_get_keyword(1, list), "one");
  EXPECT_EQ(ort_get_keyword(9, list), nullptr);
}

TEST(Binary, Hexadecimal) {
  const std::tuple<const char *, int, int> cases[] = {
      {"f", ORT_HEX_TWICE, 255}, {"b", ORT_HEX_TWICE, 187}, {"0", ORT_HEX_TWICE, 0},
      {"g", ORT_HEX_TWICE, 0},   {"7f", ORT_HEX_PAIR, 127}, {"Fx", ORT_HEX_PAIR, 240},
      {"xF", ORT_HEX_PAIR, 15},  {"F", ORT_HEX_PAIR, 240},  {"", ORT_HEX_PAIR, 0},
      {"C", ORT_HEX_DIGIT, 12},  {"9", ORT_HEX_DIGIT, 9},   {"?", ORT_HEX_DIGIT, 0},
      {"", ORT_HEX_DIGIT, 0}};
  for (const auto &[text, mode, expected] : cases)
    EXPECT_EQ(ort_hex2bin_a(text, mode), expected) << text;
  const unsigned char bytes[] = {0xFF, 0x01, 0x80};
  EXPECT_EQ(ort_get_be_ulong3(bytes), 0xFF0180U);
  AccountingCore core;
  char *hex = ort_str2hexstr(core, bytes, 3, ", ", ORT_DUP_PLAIN, "test");
  EXPECT_STREQ(hex, "ff, 01, 80");
  ort_free(core, hex);
}

TEST(Binary, Base64) {
  AccountingCore core;
  // The first row is from RFC 4648, 10.
  expect_cases(R"(
-> | Zg== -> f | Zm8= -> fo | Zm9v -> foo | Zm9vYg== -> foob | Zm9vYmE= -> fooba
Zm9vYmFy -> foobar
Zm\n9v\t -> foo | Zm8 -> fo | Zg -> f | Z -> | Zm9vY -> foo | Zm9v=YmFy -> foo | Z-m.9_v -> foo
/+8= -> \xFF\xEF | %2B%2F%2b%2f -> \xFB\xFF\xBF | Zm%39v%3DZg -> foo | Zg%20= -> f | Z%6 -> g | Z%6x -> g\xAC
 = -> | \sZm9v -> foo)",
               [&](const std::string &text) {
                 unsigned char *bytes;
                 const size_t length = ort_decode_base64(core, text.c_str(), text.size(), &bytes);
                 const std::string result(reinterpret_cast<char *>(bytes), length);
                 ort_free(core, bytes);
                 return result;
               });
  unsigned char *bytes;
  EXPECT_EQ(ort_decode_base64(core, "Zm9vYmFy", 4, &bytes), 3U) << "the text ends at its length";
  ort_free(core, bytes);
}

TEST(Binary, MD5) { // RFC 1321, A.5
  unsigned char digest[16];
  ort_md5 md5;
  ort_MD5_Init(&md5);
  for (int i = 0; i < 8; ++i) ort_MD5_Update(&md5, "1234567890", 10);
  ort_MD5_Final(digest, &md5);
  AccountingCore core;
  char *hex = ort_str2hexstr(core, digest, 16, "", ORT_DUP_TEMPORARY, "test");
  EXPECT_STREQ(hex, "57edf4a22be3c955ac49da2e2107b67a");
  ort_free_tmp(core, hex);
}

TEST(Encoding, KnowsTheISO8859Family) {
  AccountingCore core;
  expect_cases(R"(
iso8859-1 -> 1 | iso8859-2 -> 2 | iso8859-16 -> 16 | iso8859-12 -> -9 | iso8859-17 -> -9
iso8859-0 -> -9 | iso8859-01 -> -9 | iso8859- -> -9 | iso8859-1x -> -9 | ISO8859-1 -> -9 | -> -9
iso8859--1 -> -9 | iso8859-99999999999 -> -9 | utf8 -> -9)",
               [&](const std::string &name) {
                 int32_t number = 0;
                 const int32_t result = ort_get_encoding(core, name.c_str(), &number, 0);
                 EXPECT_EQ(number, result < 0 ? 0 : result);
                 return std::to_string(result);
               });
  for (int part = 1; part <= 16; ++part) { // as the system converts them
    if (part == 12) continue;
    const uint16_t *codes = ort_get_encoding_vector(core, part);
    int system_codes[256];
    EXPECT_TRUE(
        ort_get_system_encoding(("ISO-8859-" + std::to_string(part)).c_str(), system_codes));
    iconv_t converter = iconv_open("UTF-16LE", ("ISO-8859-" + std::to_string(part)).c_str());
    for (int i = 0; i < 256; ++i) {
      char byte = static_cast<char>(i), code[2], *from = &byte, *to = code;
      size_t size = 1, room = 2;
      const bool used = iconv(converter, &from, &size, &to, &room) != SIZE_MAX;
      const int expected = static_cast<unsigned char>(code[0]) | static_cast<unsigned char>(code[1])
                                                                     << 8;
      EXPECT_EQ(codes[i], used ? expected : 0xFFFF) << part << ": " << i;
      EXPECT_EQ(system_codes[i], used ? expected : -1) << part << ": " << i;
    }
    iconv_close(converter);
  }
  EXPECT_EQ(core.protect([&] { ort_get_encoding_vector(core, 12); }), ORT_E_INTERNAL);
}

// What else transforms are is seen in drawings.
TEST(Matrix, MultipliesInPlace) {
  ort_matrix m;
  ort_translation_matrix(&m, 10, 20);
  ort_multiply_matrix(&m, &m); // both factors may be one matrix
  EXPECT_EQ(ort_get_vector(&m, 1, 1).x, 21);
  EXPECT_EQ(ort_get_vector(nullptr, 3, 4).y, 4);
}
