// The types of columns as callers of the DAO seam know them, and the words of the dialect for them.
#pragma once

#include <optional>

#include <kvarta16/platform/dao.h>

namespace kvarta16::sql {

// Types beyond those that the seam names; the library leaves their columns alone.
inline constexpr Integer dbGUID = 15;
inline constexpr Integer dbBigInt = 16;
inline constexpr Integer dbDecimal = 20;

inline constexpr Long longest_text = 255;  // characters of a dbText

struct FieldType {
    Integer type = dao::dbMemo;
    Long size = 0;         // as Field.Size gives it
    bool counter = false;  // numbers its rows by itself
};

[[nodiscard]] constexpr bool is_text(Integer type) noexcept {
    return type == dao::dbText || type == dao::dbMemo;
}

// Whether a type is told with a length.
[[nodiscard]] constexpr bool has_length(Integer type) noexcept {
    return type == dao::dbText || type == dao::dbBinary;
}

// The size of a type that is told without a length, which must be one that has a name.
[[nodiscard]] Long size_of(Integer type) noexcept;

// The type of a word of the dialect, in any case, with the length behind it; nothing for a word
// that is no type, a length that the type cannot have, and one behind a type that has none.
[[nodiscard]] std::optional<FieldType> type_of_word(StringView word, std::optional<Long> length);

}  // namespace kvarta16::sql
