// Writing JSON: keys in the order in which they are written, no blanks, and escapes only where
// something cannot stand as it is (quotes, backslashes, control characters, halves of surrogate
// pairs).
//
//   JsonWriter json;
//   json.begin_object().key("id").whole(7).key("name").text(u"Łódź").end_object();
//   json.take();  // {"id":7,"name":"Łódź"}
#pragma once

#include <string>
#include <string_view>

#include <kvarta16/frame/types.h>

namespace kvarta16::tool {

class JsonWriter {
  public:
    JsonWriter& begin_object() { return open('{'); }
    JsonWriter& end_object() { return close('}'); }
    JsonWriter& begin_array() { return open('['); }
    JsonWriter& end_array() { return close(']'); }
    JsonWriter& key(std::string_view name);

    JsonWriter& null() { return raw("null"); }
    JsonWriter& truth(bool value) { return raw(value ? "true" : "false"); }
    JsonWriter& whole(std::int64_t value) { return raw(std::to_string(value)); }
    // The shortest text that reads back, with "." or an exponent; 1e999 where it is infinite,
    // null where it is no number.
    JsonWriter& number(Double value);
    JsonWriter& number(Single value);
    JsonWriter& text(StringView value);
    // ASCII or UTF-8 without anything to escape.
    JsonWriter& plain(std::string_view value);
    // A value that is JSON already.
    JsonWriter& raw(std::string_view json);

    [[nodiscard]] std::string take() { return std::move(json_); }

  private:
    JsonWriter& open(char bracket);
    JsonWriter& close(char bracket);
    void separate();

    std::string json_;
    bool needs_comma_ = false;
};

}  // namespace kvarta16::tool
