#include "second_numbers.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace kvarta16::fuzz {
namespace {

constexpr StringView currency_symbol = u"zł";
constexpr char16_t decimal_comma = u',';
constexpr char16_t group_separator = u'\u00A0';
// Beyond what any number of the inputs' lengths can make up for.
constexpr std::int64_t largest_exponent = 1'000'000;

bool is_digit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}
bool is_white(char16_t unit) {
    return unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\v' || unit == u'\f' ||
           unit == u'\r';
}
bool is_sign(char16_t unit) {
    return unit == u'+' || unit == u'-';
}

std::string without_leading_zeros(const std::string& digits) {
    return digits.substr(std::min(digits.find_first_not_of('0'), digits.size()));
}

int digit_value(char16_t unit) {
    constexpr StringView small = u"0123456789abcdef";
    constexpr StringView capital = u"0123456789ABCDEF";
    const std::size_t place = std::min(small.find(unit), capital.find(unit));
    return place == StringView::npos ? 99 : static_cast<int>(place);
}

// The decimal digits of a number in another base, by long multiplication.
std::string converted(StringView digits, int base) {
    std::string decimal;  // backward
    for (const char16_t unit : digits) {
        int carry = digit_value(unit);
        for (char& digit : decimal) {
            carry += (digit - '0') * base;
            digit = static_cast<char>('0' + carry % 10);
            carry /= 10;
        }
        for (; carry > 0; carry /= 10) {
            decimal += static_cast<char>('0' + carry % 10);
        }
    }
    std::ranges::reverse(decimal);
    return without_leading_zeros(decimal);
}

// The base that a text begins with, 0 for none.
int base_of(StringView text) {
    if (text.size() < 2 || text[0] != u'&') {
        return 0;
    }
    return text[1] == u'H' || text[1] == u'h' ? 16 : text[1] == u'O' || text[1] == u'o' ? 8 : 0;
}

StringView based_digits(StringView text, int base) {
    const auto* const end =
        std::ranges::find_if(text, [base](char16_t unit) { return digit_value(unit) >= base; });
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

// The places at which the parts of a decimal number end; `end` is 0 where there is no digit.
struct Parts {
    std::string whole;
    std::string decimals;
    bool has_separator = false;
    std::int64_t exponent = 0;
    std::size_t end = 0;
};

Parts parts_of(StringView text, char16_t separator, bool has_groups) {
    Parts parts;
    std::size_t at = 0;
    const auto unit = [&](std::size_t i) { return i < text.size() ? text[i] : u'\0'; };
    while (is_digit(unit(at)) || (has_groups && at > 0 && unit(at) == group_separator)) {
        if (is_digit(unit(at))) {
            parts.whole += static_cast<char>(unit(at));
        }
        ++at;
    }
    if (unit(at) == separator) {
        parts.has_separator = true;
        for (++at; is_digit(unit(at)); ++at) {
            parts.decimals += static_cast<char>(unit(at));
        }
    }
    if (parts.whole.empty() && parts.decimals.empty()) {
        return parts;
    }
    parts.end = at;
    if (StringView(u"EeDd").find(unit(at)) != StringView::npos && at < text.size()) {
        const std::size_t digits = at + (is_sign(unit(at + 1)) ? 2 : 1);
        std::size_t end = digits;
        for (; is_digit(unit(end)); ++end) {
            parts.exponent = std::min(parts.exponent * 10 + (unit(end) - u'0'), largest_exponent);
        }
        if (end > digits) {
            parts.end = end;
            parts.exponent = unit(at + 1) == u'-' ? -parts.exponent : parts.exponent;
        }
    }
    return parts;
}

ExactNumber number_of(const Parts& parts, bool negative) {
    return {negative, without_leading_zeros(parts.whole + parts.decimals),
            parts.exponent - static_cast<std::int64_t>(parts.decimals.size())};
}

ExactNumber at_significant_digits(Double value, int places) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*e", places - 1, value);
    std::string digits;
    const char* at = text;
    for (; *at != 'e'; ++at) {
        if (*at >= '0' && *at <= '9') {
            digits += *at;
        }
    }
    const std::int64_t exponent = std::strtoll(at + 1, nullptr, 10) - (places - 1);
    return {value < 0, without_leading_zeros(digits), exponent};
}

}  // namespace

// From the outside in: what stands around the number is taken off before the number is looked at.
std::optional<ExactNumber> second_numeric_text(StringView text) {
    while (!text.empty() && is_white(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && is_white(text.back())) {
        text.remove_suffix(1);
    }
    if (const int base = base_of(text); base != 0) {
        const StringView digits = text.substr(2);
        const bool is_number = !digits.empty() && based_digits(digits, base) == digits;
        return is_number ? std::optional(ExactNumber{false, converted(digits, base), 0})
                         : std::nullopt;
    }
    bool negative = false;
    if (text.size() >= 2 && text.front() == u'(' && text.back() == u')') {
        negative = true;
        text = text.substr(1, text.size() - 2);
    } else if (!text.empty() && is_sign(text.front())) {
        negative = text.front() == u'-';
        text.remove_prefix(1);
    } else if (!text.empty() && is_sign(text.back())) {
        negative = text.back() == u'-';
        text.remove_suffix(1);
    }
    bool may_have_decimals = true;
    if (text.starts_with(currency_symbol)) {
        text.remove_prefix(currency_symbol.size());
        while (!text.empty() && is_white(text.front())) {
            text.remove_prefix(1);
        }
    } else if (text.ends_with(currency_symbol)) {
        text.remove_suffix(currency_symbol.size());
        while (!text.empty() && is_white(text.back())) {
            text.remove_suffix(1);
        }
        may_have_decimals = false;
    }
    const Parts parts = parts_of(text, decimal_comma, true);
    const bool is_all = parts.end != 0 && parts.end == text.size();
    return is_all && (may_have_decimals || !parts.has_separator)
               ? std::optional(number_of(parts, negative))
               : std::nullopt;
}

ExactNumber second_prefix(StringView text) {
    String kept;
    std::ranges::copy_if(text, std::back_inserter(kept), [](char16_t unit) {
        return unit != u' ' && unit != u'\t' && unit != u'\n';
    });
    StringView rest = kept;
    if (const int base = base_of(rest); base != 0) {
        return {false, converted(based_digits(rest.substr(2), base), base), 0};
    }
    const bool negative = rest.starts_with(u'-');
    rest.remove_prefix(!rest.empty() && is_sign(rest.front()) ? 1 : 0);
    const Parts parts = parts_of(rest, u'.', false);
    return parts.end == 0 ? ExactNumber{} : number_of(parts, negative);
}

ExactNumber second_digits(Double value) {
    return at_significant_digits(value, 15);
}

ExactNumber second_digits(Single value) {
    return at_significant_digits(static_cast<Double>(value), 7);
}

ExactNumber exact(std::int64_t count, std::int64_t exponent) {
    std::string digits = std::to_string(count);
    digits.erase(0, count < 0 ? 1 : 0);
    return {count < 0, without_leading_zeros(digits), exponent};
}

ExactNumber exact(const Decimal& value) {
    char16_t text[25];
    char hexadecimal[25];
    std::snprintf(hexadecimal, sizeof hexadecimal, "%08x%08x%08x", value.high, value.middle,
                  value.low);
    std::copy(std::begin(hexadecimal), std::end(hexadecimal), std::begin(text));
    return {value.negative, converted(StringView(text, 24), 16), -std::int64_t{value.scale}};
}

Double second_double(const ExactNumber& number) {
    const std::string text = (number.negative ? "-" : "") + ('0' + number.digits) + 'e' +
                             std::to_string(number.exponent);
    return std::strtod(text.c_str(), nullptr);
}

std::string second_rounded(const ExactNumber& number, std::int64_t power, Tie tie) {
    const std::int64_t exponent = number.exponent + power;
    if (number.is_zero()) {
        return {};
    }
    if (exponent >= 0) {
        return number.digits + std::string(static_cast<std::size_t>(exponent), '0');
    }
    const auto dropped = static_cast<std::size_t>(-exponent);
    if (dropped > number.digits.size()) {
        return {};
    }
    std::string kept = number.digits.substr(0, number.digits.size() - dropped);
    const std::string cut = number.digits.substr(number.digits.size() - dropped);
    const std::string half = "5" + std::string(dropped - 1, '0');
    const bool is_odd = !kept.empty() && (kept.back() - '0') % 2 == 1;
    if (cut > half || (cut == half && (tie == Tie::away || is_odd))) {
        kept.insert(0, 1, '0');
        std::size_t i = kept.size() - 1;
        for (; kept[i] == '9'; --i) {
            kept[i] = '0';
        }
        ++kept[i];
    }
    return without_leading_zeros(kept);
}

std::optional<std::int64_t> second_whole(const ExactNumber& number, std::int64_t power,
                                         std::int64_t least, std::int64_t most) {
    constexpr std::size_t most_digits = 19;
    if (!number.is_zero() &&
        static_cast<std::int64_t>(number.digits.size()) + number.exponent + power > 20) {
        return std::nullopt;  // before as many zeros are made
    }
    const std::string digits = second_rounded(number, power, Tie::to_even);
    if (digits.size() > most_digits) {
        return std::nullopt;
    }
    const std::string text = (number.negative ? "-0" : "0") + digits;
    errno = 0;
    const std::int64_t whole = std::strtoll(text.c_str(), nullptr, 10);
    return errno == 0 && whole >= least && whole <= most ? std::optional(whole) : std::nullopt;
}

String second_text(const ExactNumber& number, std::int64_t places) {
    std::string digits = number.digits;
    std::int64_t exponent = number.exponent;
    while (!digits.empty() && digits.back() == '0') {
        digits.pop_back();
        ++exponent;
    }
    if (digits.empty()) {
        return u"0";
    }
    std::string text;
    const auto count = static_cast<std::int64_t>(digits.size());
    const std::int64_t leading = count + exponent - 1;  // the power of the first digit
    if (places != no_exponent && (leading < -4 || leading >= places)) {
        text = digits.substr(0, 1) + (count > 1 ? "," + digits.substr(1) : "");
        char power[32];
        std::snprintf(power, sizeof power, "E%c%02lld", leading < 0 ? '-' : '+',
                      static_cast<long long>(std::abs(leading)));
        text += power;
    } else if (exponent >= 0) {
        text = digits + std::string(static_cast<std::size_t>(exponent), '0');
    } else {
        const auto decimals = static_cast<std::size_t>(-exponent);
        if (digits.size() <= decimals) {
            digits.insert(0, decimals + 1 - digits.size(), '0');
        }
        text = digits.substr(0, digits.size() - decimals) + ',' +
               digits.substr(digits.size() - decimals);
    }
    return utf16((number.negative ? "-" : "") + text);
}

String utf16(std::string_view ascii) {
    return {ascii.begin(), ascii.end()};
}

}  // namespace kvarta16::fuzz
