// What the fuzz targets share: an input taken apart, and the end of a run in which an oracle broke.
//
//   fuzz::Input input(data, size);
//   const auto width = input.number<Long>();
//   const String text = input.rest_as_text();
//   fuzz::expect_same("Obcinaj", fuzz::show(text), simple.Obcinaj(text, width, 1), told);
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include <kvarta16/frame/value.h>

namespace kvarta16::fuzz {

// ---- Inputs ---------------------------------------------------------------------------------

// Characters from bytes, so that an input can be written by hand and can hold any text: UTF-8,
// halves of surrogate pairs included; a byte that fits nowhere is the character of its number.
[[nodiscard]] String text_of(std::string_view bytes);

// The bytes of one input, taken off its front. What is not there reads as 0 or as "".
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size)
        : bytes_(reinterpret_cast<const char*>(data), size) {}

    // A number of the machine's own form.
    template <class Number>
    [[nodiscard]] Number number() {
        char raw[sizeof(Number)] = {};
        bytes_.remove_prefix(bytes_.copy(raw, sizeof raw));
        Number value{};
        std::memcpy(&value, raw, sizeof raw);
        return value;
    }

    // Up to the next line feed, which goes with it.
    [[nodiscard]] std::string_view line() {
        const std::string_view found = bytes_.substr(0, bytes_.find('\n'));
        bytes_.remove_prefix(std::min(bytes_.size(), found.size() + 1));
        return found;
    }
    [[nodiscard]] String line_as_text() { return text_of(line()); }

    [[nodiscard]] std::string_view rest() const { return bytes_; }
    [[nodiscard]] String rest_as_text() const { return text_of(bytes_); }

  private:
    std::string_view bytes_;
};

// A value that a letter tells the subtype of: "s" a text, all the rest of the input; "n" Null and
// "e" Empty; "i", "l", "f", "d", "c", "D", "b", "y" and "m" the bytes of an Integer, Long, Single,
// Double, Currency, Date, Boolean, byte or Decimal.
[[nodiscard]] Variant any_value(Input& input);
// The same, or an error, with its subtype.
[[nodiscard]] std::string show_value(const Variant& value);

// ---- What a call came to --------------------------------------------------------------------

// A value, or the number of the failure in its place.
template <class T>
struct Outcome {
    std::optional<T> value;
    Long failure = 0;

    friend bool operator==(const Outcome&, const Outcome&) = default;
};

template <class T>
[[nodiscard]] Outcome<T> failed(Long number) {
    return {std::nullopt, number};
}

template <class Body>
[[nodiscard]] auto outcome_of(Body&& body) -> Outcome<decltype(body())> {
    try {
        return {body(), 0};
    } catch (const Failure& failure) {
        return {std::nullopt, failure.number()};
    }
}

// ---- Oracles --------------------------------------------------------------------------------

// In quotes; what a terminal would not show, and quotes, as escapes.
[[nodiscard]] std::string show(std::string_view bytes);
[[nodiscard]] std::string show(StringView text);
[[nodiscard]] inline std::string show(const std::string& bytes) {
    return show(std::string_view(bytes));
}
[[nodiscard]] inline std::string show(const String& text) {
    return show(StringView(text));
}
[[nodiscard]] std::string show(Double value);
[[nodiscard]] std::string show(Currency value);
[[nodiscard]] std::string show(Date value);
[[nodiscard]] inline std::string show(Single value) {
    return show(static_cast<Double>(value));
}
[[nodiscard]] inline std::string show(Boolean value) {
    return value ? "true" : "false";
}
[[nodiscard]] inline std::string show(std::same_as<bool> auto value) {
    return value ? "true" : "false";
}
template <std::integral T>
requires(!std::same_as<T, bool>) [[nodiscard]] std::string show(T value) {
    return std::to_string(value);
}
template <class T>
[[nodiscard]] std::string show(const std::optional<T>& value) {
    return value ? show(*value) : "nothing";
}
template <class T>
[[nodiscard]] std::string show(const Outcome<T>& outcome) {
    return outcome.value ? show(*outcome.value) : "failure " + std::to_string(outcome.failure);
}

// Ends the program: `what` of the input `of` was not what it had to be.
[[noreturn]] void broken(std::string_view what, const std::string& of, const std::string& told);

inline void expect(bool holds, std::string_view what, const std::string& of) {
    if (!holds) {
        broken(what, of, "does not hold");
    }
}

template <class T>
void expect_same(std::string_view what, const std::string& of, const T& actual, const T& wanted) {
    if (!(actual == wanted)) {
        broken(what, of, "is " + show(actual) + "\n  and should be " + show(wanted));
    }
}

}  // namespace kvarta16::fuzz
