// FormatMask: a value of any subtype under any mask, against a second way that fills the mask from
// the digits of the value. An input is the mask, a line feed and a value.
#include <cmath>

#include "fuzz_support.h"
#include "second_dates.h"
#include "second_numbers.h"

namespace kvarta16 {
namespace {

using fuzz::ExactNumber;
using fuzz::Outcome;

// The placeholders of a mask filled with digits; the first one takes all that are left over.
String filled(StringView mask, const std::string& digits, std::int64_t decimals) {
    const StringView whole_mask = mask.substr(0, mask.find(u'.'));
    const auto all = static_cast<std::size_t>(decimals);
    const auto places = static_cast<std::size_t>(std::ranges::count(whole_mask, u'0'));
    std::string padded = digits;
    if (padded.size() < all + places) {
        padded.insert(0, all + places - padded.size(), '0');
    }
    std::size_t surplus = padded.size() - all - places;
    std::size_t next = 0;
    String text;
    if (places == 0) {
        text = fuzz::utf16(padded.substr(0, surplus));
        next = std::exchange(surplus, 0);
    }
    for (std::size_t i = 0; i < mask.size(); ++i) {
        const bool is_point = i == whole_mask.size();
        const bool is_place = mask[i] == u'0';
        const std::size_t count = is_place ? 1 + std::exchange(surplus, 0) : 0;
        text += is_place ? fuzz::utf16(padded.substr(next, count))
                         : String(1, is_point ? u',' : mask[i]);
        next += count;
    }
    return text;
}

String under_number_mask(const ExactNumber& number, StringView mask) {
    const std::size_t point = std::min(mask.find(u'.'), mask.size());
    const auto decimals = std::ranges::count(mask.substr(point), u'0');
    const std::string digits = fuzz::second_rounded(number, decimals, fuzz::Tie::away);
    const bool negative = number.negative && !number.is_zero();
    return (negative ? u"-" : u"") + filled(mask, digits, decimals);
}

// Of a whole number.
bool fits_in_64_bits(const ExactNumber& number) {
    const std::string digits =
        number.digits + std::string(static_cast<std::size_t>(number.exponent), '0');
    constexpr std::string_view most = "18446744073709551615";
    return digits.size() < most.size() || (digits.size() == most.size() && digits <= most);
}

// The number of a value within Double under a number mask; nothing for a text that is none.
std::optional<ExactNumber> number_of(const Variant& value) {
    return value.visit([]<class T>(const T& held) -> std::optional<ExactNumber> {
        if constexpr (std::same_as<T, String>) {
            const auto number = fuzz::second_numeric_text(held);
            // A hexadecimal or octal number of more than 64 bits is a Double with the digits that a
            // Double shows.
            const bool is_based = held.find(u'&') != String::npos;
            const bool is_long = number && is_based && !fits_in_64_bits(*number);
            return is_long ? fuzz::second_digits(fuzz::second_double(*number)) : number;
        } else if constexpr (std::same_as<T, Double> || std::same_as<T, Single>) {
            return fuzz::second_digits(Double{held});
        } else if constexpr (std::same_as<T, Date>) {
            return fuzz::second_digits(held.days);
        } else if constexpr (std::same_as<T, Currency>) {
            return fuzz::exact(held.count, -4);
        } else if constexpr (std::same_as<T, Decimal>) {
            return fuzz::exact(held);
        } else if constexpr (std::same_as<T, Boolean>) {
            return fuzz::exact(held ? -1 : 0);
        } else if constexpr (std::integral<T>) {
            return fuzz::exact(held);
        } else {
            return ExactNumber{};
        }
    });
}

// A text may tell a number that no Double reaches. The digits that the greatest Doubles show are
// beyond them too and are no such number.
bool is_beyond_double(const Variant& value) {
    if (const auto* text = value.get_if<String>()) {
        const auto number = fuzz::second_numeric_text(*text);
        return number && !std::isfinite(fuzz::second_double(*number));
    }
    const auto* real = value.get_if<Double>();
    const auto* single = value.get_if<Single>();
    const auto* date = value.get_if<Date>();
    return (real != nullptr && !std::isfinite(*real)) ||
           (single != nullptr && !std::isfinite(*single)) ||
           (date != nullptr && !std::isfinite(date->days));
}

Outcome<String> number_wanted(const Variant& value, StringView mask) {
    if (value.is(Subtype::Null)) {
        return fuzz::failed<String>(error::type_mismatch);
    }
    if (is_beyond_double(value)) {
        return fuzz::failed<String>(error::overflow);
    }
    const auto number = number_of(value);
    if (!number) {
        return {*value.get_if<String>()};
    }
    return {under_number_mask(*number, mask)};
}

Outcome<String> date_wanted(const Variant& value, StringView mask, WeekStart start) {
    Date date;
    if (const auto* text = value.get_if<String>()) {
        const auto read = fuzz::second_date(*text);
        if (!read) {
            return fuzz::failed<String>(error::type_mismatch);
        }
        date = *read;
    } else if (const auto* given = value.get_if<Date>()) {
        date = *given;
    } else if (value.is(Subtype::Null)) {
        return fuzz::failed<String>(error::type_mismatch);
    } else {
        date.days = to_double(value);
    }
    const auto moment = fuzz::second_moment(date);
    return moment ? Outcome<String>{fuzz::second_date_text(*moment, mask, start)}
                  : fuzz::failed<String>(error::type_mismatch);
}

void check(const Variant& value, StringView mask, WeekStart start) {
    const std::string shown = fuzz::show_value(value) + " under " + fuzz::show(mask);
    const auto actual = fuzz::outcome_of([&] { return FormatMask(value, mask, start); });
    if (mask.empty() && !value.is(Subtype::Null)) {
        fuzz::expect_same("FormatMask", shown, actual,
                          fuzz::outcome_of([&] { return ToText(value); }));
        return;
    }
    fuzz::expect_same("FormatMask", shown, actual,
                      fuzz::is_second_date_mask(mask) ? date_wanted(value, mask, start)
                                                      : number_wanted(value, mask));
    if (const auto* amount = value.get_if<Currency>();
        amount != nullptr && !fuzz::is_second_date_mask(mask)) {
        fuzz::expect_same("FormatMask of money", shown, FormatMask(*amount, mask), *actual.value);
    }
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvarta16;
    constexpr std::size_t longest = 1000;
    // Decimals beyond the least Double are for nobody.
    constexpr std::size_t longest_mask = 200;
    fuzz::Input input(data, std::min(size, longest));
    const String mask = input.line_as_text();
    const Variant value = fuzz::any_value(input);
    for (const WeekStart start : {WeekStart::Monday, WeekStart::Sunday}) {
        check(value, StringView(mask).substr(0, longest_mask), start);
    }
    return 0;
}
