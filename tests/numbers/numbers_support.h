// What the tests of aLiczby share: amounts and outcomes in a plain notation, and the five members
// of the rounding core side by side.
#pragma once

#include <array>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/numbers/aLiczby.h>

#include "frame/frame_support.h"

namespace kvarta16::numbers_tests {

using frame_tests::AnObject;
using frame_tests::failure_of;
using frame_tests::Forms;
using frame_tests::notation;
using frame_tests::one_of_each_subtype;
using frame_tests::outcome;
using frame_tests::parse_currency;
using frame_tests::parse_value;
using frame_tests::Random;
using frame_tests::sanitized_stride;
using frame_tests::show;
using frame_tests::wide;

inline constexpr std::int64_t lowest_count = std::numeric_limits<std::int64_t>::min();
inline constexpr std::int64_t highest_count = std::numeric_limits<std::int64_t>::max();

inline const aLiczby& numbers() {
    return instance<aLiczby>();
}

// "12.5", "-1", or "!6" for a failure: an amount without the zeros at its end.
template <class Call>
std::string amount(Call&& call) {
    try {
        std::string text = show(Currency(call()));
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.') {
            text.pop_back();
        }
        return text;
    } catch (const Failure& failure) {
        return "!" + std::to_string(failure.number());
    }
}

// Members as plain functions: GCC 12 warns of a call by member pointer on an object without data.
using AmountMember = Currency (*)(const Variant&);

template <auto member>
Currency amount_by(const Variant& value) {
    return (numbers().*member)(value);
}

// The rounding core in the order of its decimals, 0 to 4.
inline constexpr std::array<AmountMember, 5> core = {
    amount_by<&aLiczby::VarR0Si>, amount_by<&aLiczby::VarR1Si>, amount_by<&aLiczby::VarR2Si>,
    amount_by<&aLiczby::VarR3Si>, amount_by<&aLiczby::VarR4Si>};

// A value in the notation of parse_value, and what each member is to give for it.
template <std::size_t members>
struct AmountCase {
    const char* value;
    std::array<const char*, members> expected;
};

// Each case by each member, by value and through every kind of reference. No member may write to
// what it is given.
template <std::size_t members>
void expect_amounts(const std::array<AmountMember, members>& called,
                    const std::vector<AmountCase<members>>& cases) {
    for (const AmountCase<members>& row : cases) {
        const Forms forms(parse_value(row.value));
        for (std::size_t i = 0; i < members; ++i) {
            for (const auto& [form, handed_over] : forms.all()) {
                const Variant& value = *handed_over;
                EXPECT_EQ(amount([&] { return called[i](value); }), row.expected[i])
                    << row.value << ", member " << i << ", " << form;
                EXPECT_EQ(notation(value), notation(parse_value(row.value)));
            }
        }
    }
}

// Settings whose decimal separator is a dot.
inline Locale dot_locale() {
    Locale settings;
    settings.decimal_separator = u'.';
    return settings;
}

}  // namespace kvarta16::numbers_tests
