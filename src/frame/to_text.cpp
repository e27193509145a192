#include <algorithm>
#include <cstdlib>
#include <iterator>

#include <kvarta16/frame/digits.h>
#include <kvarta16/frame/value.h>

namespace kvarta16 {
namespace {

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
    append_number(text, static_cast<std::uint64_t>(std::abs(exponent)), 2);
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
    constexpr StringView masks[] = {u"yyyy-mm-dd", u"dd-mm-yyyy", u"mm-dd-yyyy"};
    String text = FormatMask(date, masks[static_cast<std::size_t>(locale().date_order)]);
    std::ranges::replace(text, u'-', locale().date_separator);
    const String time = FormatMask(date, u"hh:nn:ss");
    return time == u"00:00:00" ? text : text + u' ' + time;
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
            // Of at least 0.0001 and few digits: never with an exponent.
            const std::optional<Currency> amount = short_decimal(held);
            return amount ? currency_text(*amount) : binary_text(digits_of(held), 15);
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

}  // namespace kvarta16
