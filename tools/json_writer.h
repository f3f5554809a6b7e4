// json_writer.h: JSON on a stdio stream, on one line or indented, written as it is made.
#ifndef TOOLS_JSON_WRITER_H
#define TOOLS_JSON_WRITER_H

#include <rapidjson/filewritestream.h>
#include <rapidjson/prettywriter.h>

#include <concepts>
#include <cstdio>
#include <string_view>

// The output is valid whatever is written: U+FFFD replaces bytes that are not UTF-8, infinity is
// written as 1e999, which reads back as infinity, and NaN as null.
class JsonWriter {
public:
  JsonWriter(FILE *out, bool pretty);
  ~JsonWriter(); // ends the line
  JsonWriter(const JsonWriter &) = delete;
  JsonWriter &operator=(const JsonWriter &) = delete;

  void key(const char *name);
  void begin_object();
  void end_object();
  void begin_array();
  void end_array();
  void begin_list(); // an array that stays on one line
  void end_list();

  void null();
  void value(double number);
  void value(std::string_view text);
  void value(const char *text); // null pointer: null
  template <std::integral Integer> void value(Integer number) {
    if constexpr (std::same_as<Integer, bool>)
      boolean(number);
    else
      integer(static_cast<int64_t>(number));
  }

  // Bytes of the texts and numbers written so far, the same in both forms.
  size_t content() const { return content_; }

  template <class Value> void field(const char *name, const Value &content) {
    key(name);
    value(content);
  }
  void null_field(const char *name) {
    key(name);
    null();
  }
  // An array of what items() writes.
  template <class Items> void array(const char *name, Items items) {
    key(name);
    begin_array();
    items();
    end_array();
  }
  template <class Items> void list(const char *name, Items items) {
    key(name);
    begin_list();
    items();
    end_list();
  }

private:
  using Pretty = rapidjson::PrettyWriter<rapidjson::FileWriteStream>;
  using Plain = rapidjson::Writer<rapidjson::FileWriteStream>; // base of Pretty

  void boolean(bool truth);
  void integer(int64_t number);
  void change_depth(int by);

  char buffer_[65536];
  rapidjson::FileWriteStream stream_;
  Pretty writer_;
  bool pretty_;
  int depth_ = 0;
  size_t content_ = 0;
};

#endif
