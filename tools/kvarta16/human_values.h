// Variants as a person writes and reads them on a command line.
#pragma once

#include <string>
#include <string_view>

#include <kvarta16/frame/variant.h>

namespace kvarta16::tool {

// The value that a word stands for:
//
//   null  empty  missing  true  false
//   12  -3                a Long; beyond its range a Double, with more than 15 digits a text
//   1.5  -2e3             a Double
//   currency:12.5  decimal:1.005  integer:5  long:5  byte:5  single:1.5  double:1
//   date:2024-05-17  date:2024-05-17T12:00:00
//   text:null  string:12  what stands behind the colon, as text
//   anything else         text; so are numbers with a comma and with leading zeros
//
// Throws UsageError for a value that its type does not take, and for bytes that are no UTF-8.
[[nodiscard]] Variant human_value(std::string_view word);

// A value for a person: texts as they are, numbers and dates as the library writes them, the
// others in words.
[[nodiscard]] std::string human_text(const Variant& value);

}  // namespace kvarta16::tool
