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

bool is_date_letter(char16_t unit) {
    return StringView(u"dmywqhns").find(to_lower_latin(unit)) != StringView::npos;
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
    const std::size_t point = mask.find(u'.');
    parts.has_point = point != StringView::npos;
    parts.whole = mask.substr(0, point);
    parts.part = parts.has_point ? mask.substr(point + 1) : StringView();
    const auto zeros = std::ranges::count(parts.part, u'0');
    parts.decimals = static_cast<std::int32_t>(zeros);
    const bool all_zeros =
        static_cast<std::size_t>(zeros) == parts.part.size() &&
        std::ranges::count(parts.whole, u'0') == static_cast<std::ptrdiff_t>(parts.whole.size());
    parts.is_plain = all_zeros && !parts.whole.empty();
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

// Scaled whole numbers under a plain mask: no digit but those of the result is ever made.
String render_count(const NumberMask& mask, std::uint64_t count, std::int32_t scale,
                    bool negative) {
    constexpr std::uint64_t powers[] = {1, 10, 100, 1000, 10000};
    const std::int32_t dropped = std::max(0, scale - mask.decimals);
    const std::uint64_t unit = powers[dropped];
    // Half away from zero; the sum stays within 64 bits because the count is half of that.
    std::uint64_t number = (count + unit / 2) / unit;
    char16_t buffer[64];
    char16_t* const end = std::end(buffer);
    char16_t* at = end;
    for (std::int32_t i = mask.decimals; i > 0; --i) {
        if (i > scale) {
            *--at = u'0';
        } else {
            *--at = static_cast<char16_t>(u'0' + number % 10);
            number /= 10;
        }
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

// Masks that the buffer of render_count has room for.
bool fits_buffer(const NumberMask& mask) {
    return mask.is_plain && mask.whole.size() + mask.part.size() <= 32;
}

String render_whole(const NumberMask& mask, std::int64_t number) {
    if (fits_buffer(mask)) {
        return render_count(mask, magnitude_of(number), 0, number < 0);
    }
    char buffer[24];
    char* const end = std::end(buffer);
    char* first = write_backward(end, magnitude_of(number));
    first = number == 0 ? end : first;
    const std::string_view digits(first, static_cast<std::size_t>(end - first));
    return render(mask, digits, static_cast<std::int32_t>(digits.size()), number < 0);
}

String render_currency(const NumberMask& mask, Currency value) {
    if (fits_buffer(mask)) {
        return render_count(mask, magnitude_of(value.count), 4, value.count < 0);
    }
    char buffer[24];
    char* const end = std::end(buffer);
    char* first = write_backward(end, magnitude_of(value.count));
    const std::string_view digits(first, static_cast<std::size_t>(end - first));
    return render(mask, digits, static_cast<std::int32_t>(digits.size()) - 4, value.count < 0);
}

String render_digits(const NumberMask& mask, const DecimalDigits& digits) {
    return render(mask, digits.view(), digits.point, digits.negative);
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
            return render_whole(mask, 0);
        } else if constexpr (std::same_as<T, Byte> || std::same_as<T, Integer> ||
                             std::same_as<T, Long>) {
            return render_whole(mask, held);
        } else if constexpr (std::same_as<T, Boolean>) {
            return render_whole(mask, held ? -1 : 0);
        } else if constexpr (std::same_as<T, Currency>) {
            return render_currency(mask, held);
        } else if constexpr (std::same_as<T, Single> || std::same_as<T, Double> ||
                             std::same_as<T, Decimal>) {
            return render_digits(mask, digits_of(held));
        } else if constexpr (std::same_as<T, Date>) {
            return render_digits(mask, digits_of(held.days));
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
    char16_t buffer[12];
    const char16_t* first = write_backward(std::end(buffer), static_cast<std::uint64_t>(number));
    const auto count = static_cast<std::size_t>(std::end(buffer) - first);
    text.append(width > count ? width - count : 0, u'0').append(first, count);
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

// The moment that a value stands for under a date mask.
DateParts moment_of(const Variant& value) {
    if (value.is(Subtype::Null)) {
        fail(error::type_mismatch);
    }
    const std::optional<DateParts> parts = parts_of(ToDate(value));
    if (!parts) {
        fail(error::type_mismatch);
    }
    return *parts;
}

// ---- Plain text -----------------------------------------------------------------------------

String whole_text(std::int64_t number) {
    char16_t buffer[24];
    char16_t* first = write_backward(std::end(buffer), magnitude_of(number));
    if (number < 0) {
        *--first = u'-';
    }
    return {first, std::end(buffer)};
}

String currency_text(Currency value) {
    std::uint64_t count = magnitude_of(value.count);
    std::uint64_t part = count % 10000;
    count /= 10000;
    char16_t buffer[32];
    char16_t* at = std::end(buffer);
    if (part != 0) {
        int decimals = 4;
        for (; part % 10 == 0; part /= 10) {
            --decimals;
        }
        for (; decimals > 0; --decimals, part /= 10) {
            *--at = static_cast<char16_t>(u'0' + part % 10);
        }
        *--at = locale().decimal_separator;
    }
    at = write_backward(at, count);
    if (value.count < 0) {
        *--at = u'-';
    }
    return {at, std::end(buffer)};
}

void append_digits(String& text, std::string_view digits) {
    text.append(digits.begin(), digits.end());
}

// Digits without trailing zeros, written out with their zeros.
void append_plain(String& text, std::string_view digits, std::int32_t point) {
    const auto count = static_cast<std::int32_t>(digits.size());
    if (point <= 0) {
        text += u'0';
        text += locale().decimal_separator;
        text.append(static_cast<std::size_t>(-point), u'0');
        append_digits(text, digits);
        return;
    }
    const auto before = static_cast<std::size_t>(std::min(point, count));
    append_digits(text, digits.substr(0, before));
    text.append(static_cast<std::size_t>(std::max(0, point - count)), u'0');
    if (count > point) {
        text += locale().decimal_separator;
        append_digits(text, digits.substr(before));
    }
}

void append_scientific(String& text, std::string_view digits, std::int32_t exponent) {
    append_digits(text, digits.substr(0, 1));
    if (digits.size() > 1) {
        text += locale().decimal_separator;
        append_digits(text, digits.substr(1));
    }
    text += exponent < 0 ? u"E-" : u"E+";
    append_number(text, std::abs(exponent), 2);
}

// `places` is the number of significant digits; a number with more before its point, or with four
// zeros behind it, is written with an exponent.
String binary_text(const DecimalDigits& digits, std::int32_t places) {
    String text = digits.negative ? u"-" : u"";
    const std::int32_t exponent = digits.point - 1;
    if (digits.count == 0) {
        text += u'0';
    } else if (exponent < -4 || exponent >= places) {
        append_scientific(text, digits.view(), exponent);
    } else {
        append_plain(text, digits.view(), digits.point);
    }
    return text;
}

String decimal_text(const Decimal& value) {
    const DecimalDigits digits = digits_of(value);
    std::string_view shown = digits.view();
    while (!shown.empty() && shown.back() == '0' &&
           static_cast<std::int32_t>(shown.size()) > digits.point) {
        shown.remove_suffix(1);
    }
    String text = digits.negative ? u"-" : u"";
    if (shown.empty()) {
        text += u'0';
    } else {
        append_plain(text, shown, digits.point);
    }
    return text;
}

String date_text(Date date) {
    const std::optional<DateParts> parts = parts_of(date);
    if (!parts) {
        fail(error::type_mismatch);
    }
    constexpr StringView masks[] = {u"yyyy-mm-dd", u"dd-mm-yyyy", u"mm-dd-yyyy"};
    const StringView mask = masks[static_cast<std::size_t>(locale().date_order)];
    String text = render_date(mask, *parts, WeekStart::Monday);
    std::ranges::replace(text, u'-', locale().date_separator);
    if (!parts->is_midnight()) {
        text += u' ' + render_date(u"hh:nn:ss", *parts, WeekStart::Monday);
    }
    return text;
}

}  // namespace

String ToText(const Variant& value) {
    return value.visit([]<class T>(const T& held) -> String {
        if constexpr (std::same_as<T, EmptyValue>) {
            return {};
        } else if constexpr (std::same_as<T, NullValue>) {
            fail(error::invalid_null);
        } else if constexpr (std::same_as<T, Byte> || std::same_as<T, Integer> ||
                             std::same_as<T, Long>) {
            return whole_text(held);
        } else if constexpr (std::same_as<T, Currency>) {
            return currency_text(held);
        } else if constexpr (std::same_as<T, Double>) {
            return binary_text(digits_of(held), 15);
        } else if constexpr (std::same_as<T, Single>) {
            return binary_text(digits_of(held), 7);
        } else if constexpr (std::same_as<T, Decimal>) {
            return decimal_text(held);
        } else if constexpr (std::same_as<T, Date>) {
            return date_text(held);
        } else if constexpr (std::same_as<T, Boolean>) {
            return String(held ? locale().true_word : locale().false_word);
        } else if constexpr (std::same_as<T, String>) {
            return held;
        } else {
            fail(error::type_mismatch);
        }
    });
}

String FormatMask(const Variant& value, StringView mask, WeekStart week_start) {
    if (mask.empty()) {
        return ToText(value);
    }
    if (std::ranges::any_of(mask, is_date_letter)) {
        return render_date(mask, moment_of(value), week_start);
    }
    return under_number_mask(value, mask);
}

String FormatMask(Currency value, StringView mask) {
    const NumberMask parts = take_apart(mask);
    return fits_buffer(parts) ? render_currency(parts, value) : FormatMask(Variant(value), mask);
}

}  // namespace kvarta16
