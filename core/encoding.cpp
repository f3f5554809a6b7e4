// encoding.cpp: the ISO 8859 family as tables of 16-bit codes. The reader calls it; raises only
// for a number that ort_get_encoding never returns.
//
// The tables are built in because the system's converters are files: a drawing that names its
// encoding must not make the reader open any, unless its host reads leniently.
#include <array>
#include <charconv>
#include <iconv.h>
#include <string.h>

#include "core/ort_state.h"

namespace {
constexpr uint16_t UNUSED_BYTE = 0xFFFF;
constexpr int UNKNOWN = -9;
constexpr char PREFIX[] = "iso8859-";

// What the bytes from 0xA0 up mean in parts 2 to 11 and 13 to 16; a blank is unused.
// clang-format off
constexpr char16_t UPPER[][97] = {
    /*  2 */ u"\u00A0Ą˘Ł¤ĽŚ§¨ŠŞŤŹ\u00ADŽŻ°ą˛ł´ľśˇ¸šşťź˝žżŔÁÂĂÄĹĆÇČÉĘËĚÍÎĎĐŃŇÓÔŐÖ×ŘŮÚŰÜÝŢßŕáâăäĺćçčé"
             u"ęëěíîďđńňóôőö÷řůúűüýţ˙",
    /*  3 */ u"\u00A0Ħ˘£¤ Ĥ§¨İŞĞĴ\u00AD Ż°ħ²³´µĥ·¸ışğĵ½ żÀÁÂ ÄĊĈÇÈÉÊËÌÍÎÏ ÑÒÓÔĠÖ×ĜÙÚÛÜŬŜßàáâ äċĉçèé"
             u"êëìíîï ñòóôġö÷ĝùúûüŭŝ˙",
    /*  4 */ u"\u00A0ĄĸŖ¤ĨĻ§¨ŠĒĢŦ\u00ADŽ¯°ą˛ŗ´ĩļˇ¸šēģŧŊžŋĀÁÂÃÄÅÆĮČÉĘËĖÍÎĪĐŅŌĶÔÕÖ×ØŲÚÛÜŨŪßāáâãäåæįčé"
             u"ęëėíîīđņōķôõö÷øųúûüũū˙",
    /*  5 */ u"\u00A0ЁЂЃЄЅІЇЈЉЊЋЌ\u00ADЎЏАБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯабвгдежзийклмнопрстуфхцчшщ"
             u"ъыьэюя№ёђѓєѕіїјљњћќ§ўџ",
    /*  6 */ u"\u00A0   ¤       \u060C\u00AD             \u061B   \u061F \u0621\u0622\u0623\u0624\u0625"
             u"\u0626\u0627\u0628\u0629\u062A\u062B\u062C\u062D\u062E\u062F\u0630\u0631\u0632\u0633"
             u"\u0634\u0635\u0636\u0637\u0638\u0639\u063A     \u0640\u0641\u0642\u0643\u0644\u0645"
             u"\u0646\u0647\u0648\u0649\u064A\u064B\u064C\u064D\u064E\u064F\u0650\u0651\u0652      "
             u"       ",
    /*  7 */ u"\u00A0‘’£€₯¦§¨©ͺ«¬\u00AD ―°±²³΄΅Ά·ΈΉΊ»Ό½ΎΏΐΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡ ΣΤΥΦΧΨΩΪΫάέήίΰαβγδεζηθι"
             u"κλμνξοπρςστυφχψωϊϋόύώ ",
    /*  8 */ u"\u00A0 ¢£¤¥¦§¨©×«¬\u00AD®¯°±²³´µ¶·¸¹÷»¼½¾                                ‗\u05D0"
             u"\u05D1\u05D2\u05D3\u05D4\u05D5\u05D6\u05D7\u05D8\u05D9\u05DA\u05DB\u05DC\u05DD\u05DE"
             u"\u05DF\u05E0\u05E1\u05E2\u05E3\u05E4\u05E5\u05E6\u05E7\u05E8\u05E9\u05EA  \u200E"
             u"\u200F ",
    /*  9 */ u"\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶·¸¹º»¼½¾¿ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏĞÑÒÓÔÕÖ×ØÙÚÛÜİŞßàáâãäåæçèé"
             u"êëìíîïğñòóôõö÷øùúûüışÿ",
    /* 10 */ u"\u00A0ĄĒĢĪĨĶ§ĻĐŠŦŽ\u00ADŪŊ°ąēģīĩķ·ļđšŧž―ūŋĀÁÂÃÄÅÆĮČÉĘËĖÍÎÏÐŅŌÓÔÕÖŨØŲÚÛÜÝÞßāáâãäåæįčé"
             u"ęëėíîïðņōóôõöũøųúûüýþĸ",
    /* 11 */ u"\u00A0กขฃคฅฆงจฉชซฌญฎฏฐฑฒณดตถทธนบปผฝพฟภมยรฤลฦวศษสหฬอฮฯะ\u0E31าำ\u0E34\u0E35\u0E36"
             u"\u0E37\u0E38\u0E39\u0E3A    ฿เแโใไๅๆ\u0E47\u0E48\u0E49\u0E4A\u0E4B\u0E4C\u0E4D\u0E4E"
             u"๏๐๑๒๓๔๕๖๗๘๙๚๛    ",
    /* 13 */ u"\u00A0”¢£¤„¦§Ø©Ŗ«¬\u00AD®Æ°±²³“µ¶·ø¹ŗ»¼½¾æĄĮĀĆÄÅĘĒČÉŹĖĢĶĪĻŠŃŅÓŌÕÖ×ŲŁŚŪÜŻŽßąįāćäåęēčé"
             u"źėģķīļšńņóōõö÷ųłśūüżž’",
    /* 14 */ u"\u00A0Ḃḃ£ĊċḊ§Ẁ©ẂḋỲ\u00AD®ŸḞḟĠġṀṁ¶ṖẁṗẃṠỳẄẅṡÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏŴÑÒÓÔÕÖṪØÙÚÛÜÝŶßàáâãäåæçèé"
             u"êëìíîïŵñòóôõöṫøùúûüýŷÿ",
    /* 15 */ u"\u00A0¡¢£€¥Š§š©ª«¬\u00AD®¯°±²³Žµ¶·ž¹º»ŒœŸ¿ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞßàáâãäåæçèé"
             u"êëìíîïðñòóôõö÷øùúûüýþÿ",
    /* 16 */ u"\u00A0ĄąŁ€„Š§š©Ș«Ź\u00ADźŻ°±ČłŽ”¶·žčș»ŒœŸżÀÁÂĂÄĆÆÇÈÉÊËÌÍÎÏĐŃÒÓÔŐÖŚŰÙÚÛÜĘȚßàáâăäćæçèé"
             u"êëìíîïđńòóôőöśűùúûüęțÿ"};
// clang-format on

constexpr int PARTS = 16;
using codes = std::array<uint16_t, 256>;

// By part number. All other bytes, and those of part 1, stand for themselves.
constexpr auto VECTORS = [] {
  std::array<codes, PARTS + 1> vectors = {};
  for (size_t part = 1; part <= PARTS; ++part)
    for (size_t byte = 0; byte < 256; ++byte) {
      const char16_t code = part == 1 || byte < 0xA0
                                ? static_cast<char16_t>(byte)
                                : UPPER[part - (part < 12 ? 2 : 3)][byte - 0xA0];
      vectors[part][byte] = byte >= 0xA0 && code == u' ' ? UNUSED_BYTE : code;
    }
  return vectors;
}();
} // namespace

static bool is_part(int32_t number);

int ort_get_encoding(ort_core * /*core*/, const char *name, int32_t *number, int /*flags*/) {
  constexpr size_t prefix = sizeof PREFIX - 1;
  if (strncmp(name, PREFIX, prefix) != 0 || name[prefix] == '0') return UNKNOWN;
  const char *const end = name + strlen(name);
  int32_t part = 0;
  const auto result = std::from_chars(name + prefix, end, part);
  if (result.ec != std::errc() || result.ptr != end || !is_part(part)) return UNKNOWN;
  return *number = part;
}

const uint16_t *ort_get_encoding_vector(ort_core *core, int32_t number) {
  if (!is_part(number)) ort_internal_error(core, __FILE__, __LINE__);
  return VECTORS[static_cast<size_t>(number)].data();
}

// A converter may keep a letter until it knows whether a mark follows, and gives it when it is
// asked without input.
bool ort_get_system_encoding(const char *name, int codes[256]) {
  iconv_t converter = iconv_open("UTF-16LE", name);
  if (converter == reinterpret_cast<iconv_t>(-1)) return false;
  for (int byte = 255; byte >= 0; --byte) {
    char in = static_cast<char>(byte), *from = &in;
    unsigned char out[4] = {};
    char *to = reinterpret_cast<char *>(out);
    size_t length = 1, room = sizeof out;
    const bool known = iconv(converter, &from, &length, &to, &room) != static_cast<size_t>(-1) &&
                       iconv(converter, nullptr, nullptr, &to, &room) != static_cast<size_t>(-1);
    codes[byte] = known && room == 2 ? out[0] | out[1] << 8 : -1;
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
  }
  iconv_close(converter);
  return true;
}

// There is no part 12.
static bool is_part(int32_t number) { return number >= 1 && number <= PARTS && number != 12; }
