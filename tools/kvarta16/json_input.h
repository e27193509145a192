// Reading JSON without a loss. The parser keeps texts as UTF-8, which cannot carry half a
// surrogate pair, and refuses numbers beyond Double; the library's texts and numbers may be both.
// So both are rewritten before they are parsed, and taken back when a value is asked for: read
// texts and numbers by the functions here and never off the parser's own accessors.
#pragma once

#include <optional>
#include <string_view>

#include <nlohmann/json.hpp>

#include <kvarta16/frame/types.h>

namespace kvarta16::tool {

using Json = nlohmann::json;

// Containers may lie in one another this deep; more is no request that anything here takes.
inline constexpr int deepest_json = 1000;

// One JSON text. Throws Refusal: NoJson.
[[nodiscard]] Json parse_json(std::string_view text);

// Whether the value is a text, and the text in UTF-16 as it was written.
[[nodiscard]] bool is_text(const Json& value);
[[nodiscard]] String text_of(const Json& value);

// A number of any form; infinite beyond the range of Double. Nothing for any other value.
[[nodiscard]] std::optional<Double> number_of(const Json& value);

// A number written without "." and exponent, of at most 64 bits. Nothing for any other value.
[[nodiscard]] std::optional<std::int64_t> whole_number_of(const Json& value);

}  // namespace kvarta16::tool
