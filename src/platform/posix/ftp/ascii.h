// Small questions about the ASCII that servers speak.
#pragma once

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace kvarta16::posix {

[[nodiscard]] constexpr bool is_digit(char c) noexcept {
    return c >= '0' && c <= '9';
}

[[nodiscard]] constexpr char upper_ascii(char c) noexcept {
    return static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
}

[[nodiscard]] constexpr bool is_same_word(std::string_view a, std::string_view b) noexcept {
    return std::ranges::equal(a, b, {}, upper_ascii, upper_ascii);
}

// Digits and nothing else, within the range of Number.
template <class Number>
[[nodiscard]] std::optional<Number> number_of(std::string_view digits) {
    Number value{};
    const char* const end = digits.data() + digits.size();
    const auto [stop, problem] = std::from_chars(digits.data(), end, value);
    if (digits.empty() || !is_digit(digits.front()) || problem != std::errc() || stop != end) {
        return std::nullopt;
    }
    return value;
}

// Without blanks and tabs at both ends.
[[nodiscard]] constexpr std::string_view trimmed(std::string_view text) noexcept {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// The first line without its end, LF or CR LF, taken off `text`.
[[nodiscard]] constexpr std::string_view taken_line(std::string_view& text) noexcept {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    return line;
}

// The first word, with the blanks before it, taken off `text`.
[[nodiscard]] constexpr std::string_view taken_word(std::string_view& text) noexcept {
    text.remove_prefix(std::min(text.size(), text.find_first_not_of(' ')));
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(word.size());
    return word;
}

}  // namespace kvarta16::posix
