// json_writer.cpp: see json_writer.h. One pretty writer serves both forms: called through its base
// class it writes no white space.
#include "tools/json_writer.h"

#include <charconv>
#include <cmath>

#include "tools/utf8.h"

// Deeper lines are not indented: the output must not grow with the square of the depth.
constexpr int DEEPEST_INDENT = 64;

JsonWriter::JsonWriter(FILE *out, bool pretty)
    : stream_(out, buffer_, sizeof buffer_), writer_(stream_), pretty_(pretty) {
  writer_.SetIndent(' ', 2);
}

JsonWriter::~JsonWriter() {
  stream_.Put('\n');
  stream_.Flush();
}

void JsonWriter::key(const char *name) { pretty_ ? writer_.Key(name) : writer_.Plain::Key(name); }

void JsonWriter::begin_object() {
  pretty_ ? writer_.StartObject() : writer_.Plain::StartObject();
  change_depth(1);
}

void JsonWriter::end_object() {
  pretty_ ? writer_.EndObject() : writer_.Plain::EndObject();
  change_depth(-1);
}

void JsonWriter::begin_array() {
  pretty_ ? writer_.StartArray() : writer_.Plain::StartArray();
  change_depth(1);
}

void JsonWriter::end_array() {
  pretty_ ? writer_.EndArray() : writer_.Plain::EndArray();
  change_depth(-1);
}

void JsonWriter::begin_list() {
  begin_array();
  writer_.SetFormatOptions(rapidjson::kFormatSingleLineArray);
}

void JsonWriter::end_list() {
  end_array();
  writer_.SetFormatOptions(rapidjson::kFormatDefault);
}

void JsonWriter::null() { pretty_ ? writer_.Null() : writer_.Plain::Null(); }

void JsonWriter::value(double number) {
  if (std::isnan(number)) return null();
  char text[40];
  char *end = text;
  if (std::isinf(number)) {
    end += snprintf(text, sizeof text, "%s1e999", number < 0 ? "-" : "");
  } else {
    end = std::to_chars(text, text + 32, number).ptr;
    if (number == 0 && std::signbit(number)) { // "-0" would be read as an integer
      *end++ = '.';
      *end++ = '0';
    }
  }
  const auto length = static_cast<size_t>(end - text);
  content_ += length;
  pretty_ ? writer_.RawValue(text, length, rapidjson::kNumberType)
          : writer_.Plain::RawValue(text, length, rapidjson::kNumberType);
}

void JsonWriter::value(std::string_view text) {
  std::string cleaned;
  for (std::string_view rest = text; !rest.empty();) {
    const size_t length = utf8_length(rest);
    if (length == 0) {
      text = cleaned = utf8_cleaned(text);
      break;
    }
    rest.remove_prefix(length);
  }
  content_ += text.size();
  const auto length = static_cast<rapidjson::SizeType>(text.size());
  pretty_ ? writer_.String(text.data(), length) : writer_.Plain::String(text.data(), length);
}

void JsonWriter::value(const char *text) {
  if (text)
    value(std::string_view(text));
  else
    null();
}

void JsonWriter::boolean(bool truth) { pretty_ ? writer_.Bool(truth) : writer_.Plain::Bool(truth); }

void JsonWriter::integer(int64_t number) {
  pretty_ ? writer_.Int64(number) : writer_.Plain::Int64(number);
}

void JsonWriter::change_depth(int by) {
  depth_ += by;
  if (depth_ >= DEEPEST_INDENT) writer_.SetIndent(' ', depth_ == DEEPEST_INDENT ? 2 : 0);
}
