#include "human_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>

#include "date_forms.h"
#include "number_forms.h"
#include "usage_error.h"

namespace kvarta16::tool {
namespace {

String text_of_word(std::string_view word) {
    String text = from_utf8(word);
    if (to_utf8(text) != word) {
        throw UsageError("an argument is not UTF-8");
    }
    return text;
}

// ---- Typed values ---------------------------------------------------------------------------

// A number of a type, all of the text; nothing if it is none or has no place there.
template <class Number>
std::optional<Variant> read_number(std::string_view text) {
    Number number{};
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole_text = read.ptr == text.data() + text.size();
    return whole_text && read.ec == std::errc() ? std::optional<Variant>(number) : std::nullopt;
}

template <class Number>
std::optional<Variant> read_real(std::string_view text) {
    return is_json_number(text) ? read_number<Number>(text) : std::nullopt;
}

template <auto reader>
std::optional<Variant> read_with(std::string_view text) {
    const auto value = reader(text);
    return value ? std::optional<Variant>(*value) : std::nullopt;
}

std::optional<Variant> read_text(std::string_view text) {
    return Variant(text_of_word(text));
}

struct Form {
    std::string_view type;
    std::optional<Variant> (*read)(std::string_view);
};

constexpr auto forms = std::to_array<Form>({
    {"byte", read_number<Byte>},
    {"integer", read_number<Integer>},
    {"long", read_number<Long>},
    {"single", read_real<Single>},
    {"double", read_real<Double>},
    {"currency", read_with<read_currency>},
    {"decimal", read_with<read_decimal>},
    {"date", read_with<read_date>},
    {"string", read_text},
    {"text", read_text},
});

std::optional<Variant> read_typed(std::string_view word) {
    const std::size_t colon = word.find(':');
    const auto* form = std::find_if(forms.begin(), forms.end(), [&](const Form& candidate) {
        return colon != std::string_view::npos && candidate.type == word.substr(0, colon);
    });
    if (form == forms.end()) {
        return std::nullopt;
    }
    std::optional<Variant> value = form->read(word.substr(colon + 1));
    if (!value) {
        throw UsageError("\"" + std::string(word) + "\" is no " + std::string(form->type));
    }
    return value;
}

// ---- Bare values ----------------------------------------------------------------------------

std::optional<Variant> read_keyword(std::string_view word) {
    if (word == "null") {
        return Variant::null();
    }
    if (word == "empty") {
        return Variant();
    }
    if (word == "missing") {
        return Variant::missing();
    }
    if (word == "true" || word == "false") {
        return Variant(word == "true");
    }
    return std::nullopt;
}

std::optional<Variant> read_bare_number(std::string_view word) {
    if (!is_json_number(word)) {
        return std::nullopt;
    }
    if (std::optional<Variant> number = read_number<Long>(word)) {
        return number;
    }
    constexpr std::ptrdiff_t exact_digits = 15;  // a Double holds so many, and shows them again
    const auto digits =
        std::count_if(word.begin(), word.end(), [](char c) { return c >= '0' && c <= '9'; });
    const bool is_whole = word.find_first_of(".eE") == std::string_view::npos;
    return is_whole && digits > exact_digits ? std::nullopt : read_number<Double>(word);
}

}  // namespace

Variant human_value(std::string_view word) {
    for (const auto read : {read_keyword, read_typed, read_bare_number}) {
        if (std::optional<Variant> value = read(word)) {
            return *std::move(value);
        }
    }
    return text_of_word(word);
}

std::string human_text(const Variant& value) {
    const auto* real = value.get_if<Double>();
    if (real != nullptr && !std::isfinite(*real)) {
        return std::to_string(*real);
    }
    const auto* object = value.get_if<ObjectPointer>();
    switch (value.subtype()) {
        case Subtype::Empty:
            return "Empty";
        case Subtype::Null:
            return "Null";
        case Subtype::Error:
            return value.is_missing() ? "Missing"
                                      : "Error " + std::to_string(value.get_if<ErrorCode>()->code);
        case Subtype::Object:
        case Subtype::UnknownObject:
            return object != nullptr && *object == nullptr ? "Nothing" : "an object";
        default:
            return to_utf8(ToText(value));
    }
}

}  // namespace kvarta16::tool
