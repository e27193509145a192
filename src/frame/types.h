// The value types: everything that crosses the library's public interface is one of these, or a
// Variant that holds one of them.
#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include <kvarta16/frame/civil.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

using Byte = std::uint8_t;
using Integer = std::int16_t;
using Long = std::int32_t;
using Single = float;
using Double = double;
using String = std::u16string;  // counted UTF-16 that may hold anything, also code 0
using StringView = std::u16string_view;

// Integers that wrap by contract: the low 16 or 32 bits, read as signed.
[[nodiscard]] constexpr Integer wrap16(std::int64_t value) noexcept {
    return static_cast<Integer>(static_cast<std::uint16_t>(value & 0xFFFF));
}
[[nodiscard]] constexpr Long wrap32(std::int64_t value) noexcept {
    return static_cast<Long>(static_cast<std::uint32_t>(value & 0xFFFFFFFF));
}

// Money: a signed 64-bit count of ten-thousandths, -922337203685477.5808 to
// 922337203685477.5807. Four decimals are exact. Sums and differences are integer operations on
// the count that wrap without a failure; only coercions test the range.
struct Currency {
    std::int64_t count = 0;

    // A raw amount is the count itself: raw(50) is 0.0050.
    [[nodiscard]] static constexpr Currency raw(std::int64_t count) noexcept { return {count}; }

    friend constexpr auto operator<=>(const Currency&, const Currency&) noexcept = default;
    friend constexpr Currency operator+(Currency a, Currency b) noexcept {
        return {static_cast<std::int64_t>(static_cast<std::uint64_t>(a.count) +
                                          static_cast<std::uint64_t>(b.count))};
    }
    friend constexpr Currency operator-(Currency a, Currency b) noexcept {
        return {static_cast<std::int64_t>(static_cast<std::uint64_t>(a.count) -
                                          static_cast<std::uint64_t>(b.count))};
    }
    friend constexpr Currency operator-(Currency a) noexcept { return Currency{} - a; }
};

// Days since 1899-12-30 in the whole part, the time of day in the fraction. Before that day the
// fraction still counts forward: -1.25 is 1899-12-29 06:00.
struct Date {
    Double days = 0;

    friend constexpr auto operator<=>(const Date&, const Date&) noexcept = default;
};

// The raw 16 bits of a truth value. Built from a bool it is -1 or 0, but it can also carry the 1
// of a platform's call. Tested, any bits are true; coerced to a number it is -1 or 0.
struct Boolean {
    std::int16_t raw = 0;

    constexpr Boolean() noexcept = default;
    constexpr Boolean(std::same_as<bool> auto truth) noexcept
        : raw(static_cast<std::int16_t>(truth ? -1 : 0)) {}
    [[nodiscard]] static constexpr Boolean from_raw(std::int16_t raw) noexcept {
        Boolean value;
        value.raw = raw;
        return value;
    }

    constexpr explicit operator bool() const noexcept { return raw != 0; }
    friend constexpr bool operator==(const Boolean&, const Boolean&) noexcept = default;
};

// A 96-bit whole number, high to low, divided by ten to the power of `scale` (0 to 28).
struct Decimal {
    std::uint32_t high = 0;
    std::uint32_t middle = 0;
    std::uint32_t low = 0;
    std::uint8_t scale = 0;
    bool negative = false;

    friend constexpr bool operator==(const Decimal&, const Decimal&) noexcept = default;
};

// The base of everything that a Variant can hold as an object: connections, recordsets and the
// like of the platform, and instances of the library's classes when a late-bound caller holds
// them.
class KVARTA16_EXPORT Object {
  public:
    virtual ~Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    Object(Object&&) = delete;
    Object& operator=(Object&&) = delete;

  protected:
    Object() = default;
};

namespace literals {

// An amount of money as it is written in a law: 493.32_cur. At most four decimals.
consteval Currency operator""_cur(const char* text) {
    std::int64_t count = 0;
    int decimals = -1;
    for (; *text != '\0'; ++text) {
        if (*text == '.' && decimals < 0) {
            decimals = 0;
        } else if (*text >= '0' && *text <= '9' && decimals < 4) {
            count = count * 10 + (*text - '0');
            decimals += decimals >= 0 ? 1 : 0;
        } else {
            throw "no amount with at most four decimals";  // stops the compilation
        }
    }
    for (int i = decimals < 0 ? 0 : decimals; i < 4; ++i) {
        count *= 10;
    }
    return Currency::raw(count);
}

// A day as it is written in a law: "2001-01-01"_date.
consteval Date operator""_date(const char* text, std::size_t length) {
    if (length != 10 || text[4] != '-' || text[7] != '-') {
        throw "no date of the form yyyy-MM-dd";  // stops the compilation
    }
    const auto number = [text](std::size_t from, std::size_t to) {
        std::int32_t value = 0;
        for (std::size_t i = from; i < to; ++i) {
            if (text[i] < '0' || text[i] > '9') {
                throw "a digit is missing";  // stops the compilation
            }
            value = value * 10 + (text[i] - '0');
        }
        return value;
    };
    const Civil civil{number(0, 4), number(5, 7), number(8, 10)};
    const bool month_is_one = civil.month >= 1 && civil.month <= 12;
    if (!month_is_one || civil.day < 1 || civil.day > days_in_month(civil.year, civil.month)) {
        throw "no day of the calendar";  // stops the compilation
    }
    return {static_cast<Double>(day_number(civil.year, civil.month, civil.day))};
}

}  // namespace literals
}  // namespace kvarta16
