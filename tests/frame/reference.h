// A second way of computing, on decimal digits written out: slow, plain, and exact.
#pragma once

#include <string>

#include "frame_support.h"

namespace kvarta16::frame_tests {

// The number whose digits are `digits`, times ten to the power of `power`.
struct Exact {
    bool is_negative = false;
    std::string digits;
    int power = 0;
};

enum class Tie { ToEven, AwayFromZero };

inline std::string without_leading_zeros(const std::string& digits) {
    const std::size_t first = digits.find_first_not_of('0');
    return first == std::string::npos ? "0" : digits.substr(first);
}

inline std::string plus_one(std::string digits) {
    std::size_t i = digits.size();
    while (i > 0 && digits[i - 1] == '9') {
        digits[--i] = '0';
    }
    if (i == 0) {
        return "1" + digits;
    }
    ++digits[i - 1];
    return digits;
}

// The magnitude in units of ten to the power of -places, as a whole number.
inline std::string rounded(const Exact& number, int places, Tie tie) {
    const std::string digits = without_leading_zeros(number.digits);
    const std::int64_t shift = std::int64_t{number.power} + places;
    const auto size = static_cast<std::int64_t>(digits.size());
    if (digits == "0" || -shift > size) {
        return "0";
    }
    if (shift >= 0) {
        // A thousand zeros are far beyond every type that has limits of this kind.
        return digits +
               std::string(static_cast<std::size_t>(std::min<std::int64_t>(shift, 1000)), '0');
    }
    const auto kept = static_cast<std::size_t>(size + shift);
    const std::string whole = without_leading_zeros(digits.substr(0, kept));
    const std::string rest = digits.substr(kept);
    const bool is_half = rest[0] == '5' && rest.find_first_not_of('0', 1) == std::string::npos;
    const bool goes_up =
        is_half && tie == Tie::ToEven ? (whole.back() - '0') % 2 == 1 : rest[0] >= '5';
    return goes_up ? plus_one(whole) : whole;
}

// Whether a whole number written in digits is at most another.
inline bool at_most(const std::string& digits, const std::string& limit) {
    return digits.size() != limit.size() ? digits.size() < limit.size() : digits <= limit;
}

// The whole number, or "!6" if it is outside the type whose magnitudes are given.
template <class Whole>
std::string whole_or_overflow(bool is_negative, const std::string& digits) {
    const std::string highest = std::to_string(std::numeric_limits<Whole>::max());
    const std::string limit = is_negative ? plus_one(highest) : highest;
    if (!at_most(digits, limit)) {
        return "!6";
    }
    return (is_negative && digits != "0" ? "-" : "") + digits;
}

// What the coercions of an exact number give, in the notation.
inline std::string expected_currency(const Exact& number) {
    const std::string count =
        whole_or_overflow<std::int64_t>(number.is_negative, rounded(number, 4, Tie::ToEven));
    if (count == "!6") {
        return count;
    }
    const bool is_lowest = count == std::to_string(std::numeric_limits<std::int64_t>::min());
    const std::int64_t raw =
        is_lowest ? std::numeric_limits<std::int64_t>::min() : std::stoll(count);
    return notation(Currency::raw(raw));
}
inline std::string expected_whole(const std::string& type, const std::string& digits) {
    return digits == "!6" ? digits : type + " " + digits;
}
inline std::string expected_integer(const Exact& number) {
    return expected_whole(
        "Integer", whole_or_overflow<Integer>(number.is_negative, rounded(number, 0, Tie::ToEven)));
}
inline std::string expected_long(const Exact& number) {
    return expected_whole(
        "Long", whole_or_overflow<Long>(number.is_negative, rounded(number, 0, Tie::ToEven)));
}

// The digits of a Double's magnitude as the C library prints them, correctly rounded.
struct Printed {
    std::string digits;
    int exponent;  // of the first digit
};

inline Printed printed_digits(double value, int significant) {
    // A Double has at most 767 significant digits.
    char text[1100];
    std::snprintf(text, sizeof text, "%.*e", significant - 1, std::fabs(value));
    const std::string all(text);
    const std::size_t letter = all.find('e');
    std::string digits = all.substr(0, letter);
    std::erase(digits, '.');
    return {digits, std::atoi(text + letter + 1)};
}

// The first `significant` digits of a Double. Where it lies halfway between two such numbers,
// is_tie is true, and which of the two is meant is not settled.
struct Reduced {
    Exact number;
    bool is_tie = false;
};

inline Reduced reduced(double value, int significant) {
    const Printed few = printed_digits(value, significant);
    const Exact number{std::signbit(value), few.digits, few.exponent - significant + 1};
    // A few digits more say whether all of them are needed to know a tie.
    const auto kept = static_cast<std::size_t>(significant);
    if (printed_digits(value, significant + 8).digits.substr(kept) != "50000000") {
        return {number, false};
    }
    const std::string rest = printed_digits(value, 800).digits.substr(kept);
    return {number, rest.find_first_not_of('0', 1) == std::string::npos};
}

// Under a number mask: exactly that many decimals, half away from zero.
inline String fixed_text(const Exact& number, int decimals) {
    std::string digits = rounded(number, decimals, Tie::AwayFromZero);
    const auto places = static_cast<std::size_t>(decimals);
    if (digits.size() <= places) {
        digits.insert(0, places + 1 - digits.size(), '0');
    }
    if (decimals > 0) {
        digits.insert(digits.size() - places, ",");
    }
    return wide((number.is_negative ? "-" : "") + digits);
}

// As ToText writes it: without zeros at the end of the decimals, in E notation from `e_from` up
// and below 0.0001.
inline String plain_text(const Exact& number, int e_from) {
    std::string digits = without_leading_zeros(number.digits);
    if (digits == "0") {
        return u"0";
    }
    const int exponent = number.power + static_cast<int>(digits.size()) - 1;
    digits.erase(digits.find_last_not_of('0') + 1);
    const std::string sign = number.is_negative ? "-" : "";
    if (exponent >= e_from || exponent < -4) {
        const std::string decimals = digits.size() > 1 ? "," + digits.substr(1) : "";
        char power[16];
        std::snprintf(power, sizeof power, "E%c%02d", exponent < 0 ? '-' : '+', std::abs(exponent));
        return wide(sign + digits[0] + decimals + power);
    }
    if (exponent < 0) {
        return wide(sign + "0," + std::string(static_cast<std::size_t>(-exponent - 1), '0') +
                    digits);
    }
    const auto whole = static_cast<std::size_t>(exponent) + 1;
    if (digits.size() <= whole) {
        return wide(sign + digits + std::string(whole - digits.size(), '0'));
    }
    return wide(sign + digits.substr(0, whole) + "," + digits.substr(whole));
}

}  // namespace kvarta16::frame_tests
