#include <algorithm>
#include <cmath>
#include <iterator>

#include <kvarta16/frame/date_text.h>
#include <kvarta16/frame/digits.h>
#include <kvarta16/frame/numeric_text.h>
#include <kvarta16/frame/value.h>

namespace kvarta16 {
namespace {

// ---- Number masks ---------------------------------------------------------------------------

constexpr char16_t to_lower_latin(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

constexpr bool is_date_letter(char16_t unit) {
    switch (to_lower_latin(unit)) {
        case u'd':
        case u'm':
        case u'y':
        case u'w':
        case u'q':
        case u'h':
        case u'n':
        case u's':
            return true;
        default:
            return false;
    }
}

// A number mask taken apart: the placeholders on either side of its first dot.
struct NumberMask {
    StringView whole;  // before the dot, with literals
    StringView part;   // behind it
    bool has_point = false;
    std::int32_t decimals = 0;  // the zeros of `part`
    bool is_plain = false;      // zeros and a dot, nothing else
};

NumberMask take_apart(StringView mask) {
    NumberMask parts;
    std::size_t whole_zeros = 0;
    std::size_t i = 0;
    for (; i < mask.size() && mask[i] != u'.'; ++i) {
        whole_zeros += mask[i] == u'0' ? 1 : 0;
    }
    parts.whole = mask.substr(0, i);
    parts.has_point = i < mask.size();
    parts.part = mask.substr(parts.has_point ? i + 1 : i);
    for (const char16_t unit : parts.part) {
        parts.decimals += unit == u'0' ? 1 : 0;
    }
    const auto part_zeros = static_cast<std::size_t>(parts.decimals);
    parts.is_plain = i > 0 && whole_zeros == parts.whole.size() && part_zeros == parts.part.size();
    return parts;
}

// A number cut into the digits before and behind the point, at exactly the decimals wanted and
// rounded half away from zero there.
struct RoundedDigits {
    bool negative = false;
    std::string whole;  // without leading zeros
    std::string part;
};

RoundedDigits rounded(std::string_view digits, std::int32_t point, bool negative,
                      std::int32_t decimals) {
    // Zeros before the digits or behind them, so that each has its place around the point.
    std::string all(static_cast<std::size_t>(std::max(1, 1 - point)), '0');
    point += static_cast<std::int32_t>(all.size());
    all += digits;
    const auto kept = static_cast<std::size_t>(point + decimals);
    const bool up = kept < all.size() && all[kept] >= '5';
    all.resize(kept, '0');
    for (std::size_t i = kept; up && i > 0; --i) {  // the first digit is a zero that takes a carry
        if (all[i - 1] != '9') {
            ++all[i - 1];
            break;
        }
        all[i - 1] = '0';
    }
    const auto whole_end = static_cast<std::size_t>(point);
    const std::size_t first = std::min(all.find_first_not_of('0'), whole_end);
    return {negative, all.substr(first, whole_end - first), all.substr(whole_end)};
}

// The whole part from its last placeholder to its first, which takes all digits that remain.
String fill_whole(StringView mask, const std::string& digits) {
    String backward;
    std::size_t left = digits.size();
    const std::size_t first_placeholder = mask.find(u'0');
    for (std::size_t i = mask.size(); i-- > 0;) {
        if (mask[i] != u'0') {
            backward += mask[i];
            continue;
        }
        backward += left > 0 ? static_cast<char16_t>(digits[--left]) : u'0';
        while (i == first_placeholder && left > 0) {
            backward += static_cast<char16_t>(digits[--left]);
        }
    }
    // A mask without a place for whole digits shows those that there are all the same.
    while (left > 0) {
        backward += static_cast<char16_t>(digits[--left]);
    }
    return {backward.rbegin(), backward.rend()};
}

String fill(const NumberMask& mask, const RoundedDigits& number) {
    String text = number.negative ? u"-" : u"";
    text += fill_whole(mask.whole, number.whole);
    if (mask.has_point) {
        text += locale().decimal_separator;
    }
    std::size_t next = 0;
    for (const char16_t unit : mask.part) {
        text += unit == u'0' ? static_cast<char16_t>(number.part[next++]) : unit;
    }
    return text;
}

String render(const NumberMask& mask, std::string_view digits, std::int32_t point, bool negative) {
    return fill(mask, rounded(digits, point, negative, mask.decimals));
}

// Masks that the buffer of render_count has room for.
bool fits_buffer(const NumberMask& mask) {
    return mask.is_plain && mask.whole.size() + mask.part.size() <= 32;
}

// count / 10^dropped, half away from zero. The sum stays within 64 bits: a count that is cut is
// below 2^63 and half of the unit below 10^18.
std::uint64_t cut(std::uint64_t count, std::int32_t dropped) {
    constexpr std::uint64_t powers[] = {1,
                                        10,
                                        100,
                                        1'000,
                                        10'000,
                                        100'000,
                                        1'000'000,
                                        10'000'000,
                                        100'000'000,
                                        1'000'000'000,
                                        10'000'000'000,
                                        100'000'000'000,
                                        1'000'000'000'000,
                                        10'000'000'000'000,
                                        100'000'000'000'000,
                                        1'000'000'000'000'000,
                                        10'000'000'000'000'000,
                                        100'000'000'000'000'000,
                                        1'000'000'000'000'000'000};
    if (dropped == 2) {  // money under "0.00": the one division that runs for every field
        return (count + 50) / 100;
    }
    return dropped <= 0 ? count : (count + powers[dropped] / 2) / powers[dropped];
}

// A count of 10^-scale, with a scale of at most 18, under a plain mask that fits the buffer:
// no digit but those of the result is ever made.
String render_count(const NumberMask& mask, std::uint64_t count, std::int32_t scale,
                    bool negative) {
    std::uint64_t number = cut(count, scale - mask.decimals);
    char16_t buffer[64];
    char16_t* const end = std::end(buffer);
    char16_t* at = end;
    for (std::int32_t i = mask.decimals; i > scale; --i) {
        *--at = u'0';
    }
    for (std::int32_t i = std::min(mask.decimals, scale); i > 0; --i) {
        *--at = static_cast<char16_t>(u'0' + number % 10);
        number /= 10;
    }
    if (mask.has_point) {
        *--at = locale().decimal_separator;
    }
    const char16_t* const whole_end = at;
    at = write_backward(at, number);
    while (static_cast<std::size_t>(whole_end - at) < mask.whole.size()) {
        *--at = u'0';
    }
    if (negative) {
        *--at = u'-';
    }
    return {at, end};
}

// The same under any mask.
String render_scaled(const NumberMask& mask, std::int64_t count, std::int32_t scale) {
    const std::uint64_t magnitude = magnitude_of(count);
    if (fits_buffer(mask)) {
        return render_count(mask, magnitude, scale, count < 0);
    }
    char buffer[24];
    char* const end = std::end(buffer);
    const char* first = count == 0 ? end : write_backward(end, magnitude);
    const std::string_view digits(first, static_cast<std::size_t>(end - first));
    return render(mask, digits, static_cast<std::int32_t>(digits.size()) - scale, count < 0);
}

String render_digits(const NumberMask& mask, const DecimalDigits& digits) {
    return render(mask, digits.view(), digits.point, digits.negative);
}

String render_double(const NumberMask& mask, Double value) {
    if (const std::optional<Currency> amount = short_decimal(value)) {
        return render_scaled(mask, amount->count, 4);
    }
    return render_digits(mask, digits_of(value));
}

// All digits of a numeric text, so that none is lost on a way through Double. A magnitude beyond
// Double is refused before as many zeros are made.
String render_numeric_text(const NumberMask& mask, const NumericText& number) {
    constexpr std::int32_t least_exponent = -400;
    const Double nearest = nearest_double(number);
    if (!std::isfinite(nearest)) {
        fail(error::overflow);
    }
    std::string digits;
    std::int32_t point = 0;
    if (number.base == 10) {
        for (const char16_t unit : number.digits) {
            if (unit >= u'0' && unit <= u'9') {
                digits += static_cast<char>(unit);
            }
        }
        digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
        point = static_cast<std::int32_t>(digits.size()) + number.last_exponent;
    } else if (!number.beyond_word) {
        digits = std::to_string(number.mantissa);
        point = static_cast<std::int32_t>(digits.size());
    } else {
        const DecimalDigits whole = digits_of(nearest);
        digits = whole.view();
        point = whole.point;
    }
    if (digits.empty() || point < least_exponent) {
        digits.clear();
        point = 0;
    }
    return render(mask, digits, point, number.negative && number.mantissa != 0);
}

String under_number_mask(const Variant& value, StringView text_mask) {
    const NumberMask mask = take_apart(text_mask);
    return value.visit([&mask]<class T>(const T& held) -> String {
        if constexpr (std::same_as<T, EmptyValue>) {
            return render_scaled(mask, 0, 0);
        } else if constexpr (std::same_as<T, Byte> || std::same_as<T, Integer> ||
                             std::same_as<T, Long>) {
            return render_scaled(mask, held, 0);
        } else if constexpr (std::same_as<T, Boolean>) {
            return render_scaled(mask, held ? -1 : 0, 0);
        } else if constexpr (std::same_as<T, Currency>) {
            return render_scaled(mask, held.count, 4);
        } else if constexpr (std::same_as<T, Single> || std::same_as<T, Double>) {
            return render_double(mask, held);
        } else if constexpr (std::same_as<T, Decimal>) {
            return render_digits(mask, digits_of(held));
        } else if constexpr (std::same_as<T, Date>) {
            return render_double(mask, held.days);
        } else if constexpr (std::same_as<T, String>) {
            const std::optional<NumericText> number = read_numeric_text(held, locale());
            return number ? render_numeric_text(mask, *number) : held;
        } else {
            fail(error::type_mismatch);
        }
    });
}

// ---- Date masks -----------------------------------------------------------------------------

void append_number(String& text, std::int32_t number, std::size_t width) {
    kvarta16::append_number(text, static_cast<std::uint64_t>(number), width);
}

std::int32_t weekday_from(WeekStart start, std::int32_t day) {
    const std::int32_t from_monday = weekday_from_monday(day);
    return start == WeekStart::Monday ? from_monday : (from_monday + 1) % 7;
}

// Week 1 is the week of 1 January, however short.
std::int32_t week_of(const DateParts& parts, WeekStart start) {
    const std::int32_t first = day_number(parts.civil.year, 1, 1);
    return (parts.day_number - first + weekday_from(start, first)) / 7 + 1;
}

void append_day(String& text, const DateParts& parts, std::size_t length) {
    const auto weekday = static_cast<std::size_t>(weekday_from_monday(parts.day_number));
    const StringView name = locale().day_names[weekday];
    if (length <= 2) {
        append_number(text, parts.civil.day, length);
    } else {
        text += length == 3 ? name.substr(0, 3) : name;
    }
}

void append_month(String& text, const DateParts& parts, std::size_t length) {
    const auto month = static_cast<std::size_t>(parts.civil.month) - 1;
    if (length <= 2) {
        append_number(text, parts.civil.month, length);
    } else {
        text += length == 3 ? locale().month_short_names[month] : locale().month_names[month];
    }
}

void append_year(String& text, const DateParts& parts, std::size_t length) {
    if (length <= 2) {
        append_number(text, parts.civil.year % 100, 2);
    } else {
        append_number(text, parts.civil.year, 4);
    }
}

// One run of the same letter: an element of the mask.
void append_element(String& text, const DateParts& parts, char16_t letter, std::size_t length,
                    bool behind_hours, WeekStart start) {
    switch (letter) {
        case u'd':
            return append_day(text, parts, length);
        case u'm':
            return behind_hours && length <= 2 ? append_number(text, parts.minute, length)
                                               : append_month(text, parts, length);
        case u'y':
            return append_year(text, parts, length);
        case u'w':
            return append_number(
                text,
                length == 1 ? weekday_from(start, parts.day_number) + 1 : week_of(parts, start), 1);
        case u'q':
            return append_number(text, (parts.civil.month + 2) / 3, 1);
        case u'h':
            return append_number(text, parts.hour, std::min<std::size_t>(length, 2));
        case u'n':
            return append_number(text, parts.minute, std::min<std::size_t>(length, 2));
        default:
            return append_number(text, parts.second, std::min<std::size_t>(length, 2));
    }
}

String render_date(StringView mask, const DateParts& parts, WeekStart start) {
    String text;
    bool behind_hours = false;
    for (std::size_t i = 0; i < mask.size();) {
        if (!is_date_letter(mask[i])) {
            text += mask[i++];
            continue;
        }
        const char16_t letter = to_lower_latin(mask[i]);
        const std::size_t first = i;
        while (i < mask.size() && to_lower_latin(mask[i]) == letter) {
            ++i;
        }
        append_element(text, parts, letter, i - first, behind_hours, start);
        behind_hours = letter == u'h';
    }
    return text;
}

// The moment that a value stands for under a date mask. Whatever keeps it from being one, it cannot
// be shown.
DateParts moment_of(const Variant& value) {
    std::optional<DateParts> parts;
    guarded([&] { parts = parts_of(ToDate(value)); });
    if (!parts) {
        fail(error::type_mismatch);
    }
    return *parts;
}

}  // namespace

String FormatMask(const Variant& value, StringView mask, WeekStart week_start) {
    if (mask.empty() && !value.is(Subtype::Null)) {
        return ToText(value);
    }
    if (std::ranges::any_of(mask, is_date_letter)) {
        return render_date(mask, moment_of(value), week_start);
    }
    return under_number_mask(value, mask);
}

String FormatMask(Currency value, StringView mask) {
    const NumberMask parts = take_apart(mask);
    return fits_buffer(parts) ? render_count(parts, magnitude_of(value.count), 4, value.count < 0)
                              : FormatMask(Variant(value), mask);
}

}  // namespace kvarta16
