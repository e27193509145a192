// RoundHalfEven: a table, every amount near zero and near the limits, and random values against
// arithmetic on written-out digits.

#include <limits>

#include <gtest/gtest.h>

#include <kvarta16/frame/value.h>

#include "frame_support.h"
#include "reference.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;

TEST(RoundHalfEven, GivesWhatTheTableTells) {
    for (const Row& row : rows_of("rounding.tsv", 4)) {
        const auto decimals = static_cast<Integer>(std::stoi(row.cells[1]));
        const std::string& cell = row.cells[2];
        const std::string expected = cell[0] == '!' ? cell : notation(parse_value(cell));
        const Forms forms(parse_value(row.cells[0]));
        for (const Form& form : forms.all()) {
            EXPECT_EQ(outcome([&] { return RoundHalfEven(*form.value, decimals); }), expected)
                << row.place << " " << row.cells[0] << ", " << row.cells[1] << ", " << form.name;
        }
    }
}

TEST(RoundHalfEven, KeepsTheSubtypeAndGivesNoReference) {
    for (const Variant& value : one_of_each_subtype()) {
        const Forms forms(value);
        for (const Form& form : forms.all()) {
            for (const Integer decimals : {Integer{0}, Integer{2}, Integer{4}}) {
                const bool is_number = !value.is(Subtype::Object) && !value.is(Subtype::Error) &&
                                       !value.is(Subtype::UnknownObject);
                if (!is_number) {
                    EXPECT_EQ(failure_of([&] { return RoundHalfEven(*form.value, decimals); }), 13);
                    continue;
                }
                const Variant result = RoundHalfEven(*form.value, decimals);
                EXPECT_EQ(result.subtype(), value.subtype()) << form.name;
                EXPECT_FALSE(result.is_reference()) << form.name;
                EXPECT_EQ(result, value) << form.name << " " << notation(result);
            }
        }
    }
}

// ---- Money ------------------------------------------------------------------------------------

void expect_money(std::int64_t count) {
    std::string digits = std::to_string(count);
    std::erase(digits, '-');
    for (int decimals = 0; decimals <= 4; ++decimals) {
        const std::string units = rounded({count < 0, digits, -4}, decimals, Tie::ToEven) +
                                  std::string(static_cast<std::size_t>(4 - decimals), '0');
        const std::string expected =
            whole_or_overflow<std::int64_t>(count < 0, without_leading_zeros(units));
        const Currency value = Currency::raw(count);
        const auto places = static_cast<Integer>(decimals);
        const auto raw = [&](const auto& call) {
            const int failure = failure_of(call);
            return failure != 0 ? "!" + std::to_string(failure) : std::to_string(call().count);
        };
        ASSERT_EQ(raw([&] { return round_half_even(value, places); }), expected)
            << count << ", " << decimals;
        ASSERT_EQ(raw([&] { return *RoundHalfEven(value, places).get_if<Currency>(); }), expected)
            << count << ", " << decimals;
    }
}

TEST(RoundHalfEven, IsExactForEveryAmountNearZero) {
    for (std::int64_t count = -200'000; count <= 200'000 && !HasFatalFailure();
         count += sanitized_stride(7)) {
        expect_money(count);
    }
}

TEST(RoundHalfEven, IsExactForEveryAmountNearTheLimits) {
    for (std::int64_t beside = 0; beside < 30'000 && !HasFatalFailure(); ++beside) {
        expect_money(std::numeric_limits<std::int64_t>::max() - beside);
        expect_money(std::numeric_limits<std::int64_t>::min() + beside);
    }
}

TEST(RoundHalfEven, IsExactForAnyAmount) {
    Random random(51);
    for (int i = 0; i < random_cases && !HasFatalFailure(); ++i) {
        expect_money(random.count());
    }
}

// ---- Double -----------------------------------------------------------------------------------

// The rule step by step.
double by_the_steps(double value, int decimals) {
    double power = 1;
    for (int i = 0; i < decimals; ++i) {
        power *= 10;
    }
    const double product = value * power;
    double whole = 0;
    const double fraction = std::fabs(std::modf(product, &whole));
    const bool is_odd = std::fmod(whole, 2) != 0;
    if (fraction > 0.5 || (fraction == 0.5 && is_odd)) {
        whole += product < 0 ? -1 : 1;
    }
    return whole / power;
}

TEST(RoundHalfEven, OfADoubleFollowsTheSteps) {
    Random random(52);
    for (int i = 0; i < 3 * random_cases; ++i) {
        const auto decimals = static_cast<Integer>(random.between(0, 10));
        const int kind = i % 3;
        const double value =
            kind == 0   ? random.any_double() / 1e12
            : kind == 1 ? static_cast<double>(random.count()) / 1e6
                        : (static_cast<double>(random.between(-10'000'000, 10'000'000)) * 10 + 5) /
                              std::pow(10.0, static_cast<double>(random.between(1, 6)));
        const double expected = by_the_steps(value, decimals);
        ASSERT_EQ(round_half_even(value, decimals), expected)
            << show_number("%.17g", value) << ", " << decimals;
        ASSERT_EQ(*RoundHalfEven(value, decimals).get_if<Double>(), expected);
        ASSERT_EQ(RoundHalfEven(Date{value}, decimals).get_if<Date>()->days, expected);
    }
}

TEST(RoundHalfEven, OfASingleFollowsTheStepsInDouble) {
    Random random(53);
    for (int i = 0; i < random_cases; ++i) {
        const auto decimals = static_cast<Integer>(random.between(0, 6));
        const auto value =
            static_cast<Single>(static_cast<double>(random.between(-9'999'999, 9'999'999)) / 1000);
        const auto expected =
            static_cast<Single>(by_the_steps(static_cast<double>(value), decimals));
        ASSERT_EQ(*RoundHalfEven(value, decimals).get_if<Single>(), expected)
            << show_number("%.9g", static_cast<double>(value)) << ", " << decimals;
    }
}

TEST(RoundHalfEven, OfHalvesGoesToTheEvenNumber) {
    for (int i = -100'000; i <= 100'000; ++i) {
        const double half = i + 0.5;
        const double even = i % 2 == 0 ? i : i + 1;
        ASSERT_EQ(round_half_even(half, 0), even);
        ASSERT_EQ(round_half_even(half / 2, 1), by_the_steps(half / 2, 1));
    }
}

// ---- Decimal ----------------------------------------------------------------------------------

TEST(RoundHalfEven, IsExactForADecimal) {
    Random random(54);
    for (int i = 0; i < random_cases; ++i) {
        Decimal value;
        value.high = static_cast<std::uint32_t>(random.bits());
        value.middle = static_cast<std::uint32_t>(random.bits());
        value.low = static_cast<std::uint32_t>(random.bits());
        if (random.chance(50)) {
            value.high = 0;
            value.middle >>= random.between(0, 31);
        }
        value.scale = static_cast<std::uint8_t>(random.between(0, 28));
        value.negative = random.chance(50);
        const auto decimals = static_cast<int>(random.between(0, 28));
        Decimal expected = value;
        if (decimals < value.scale) {
            const std::string digits =
                rounded({value.negative, whole_digits(value), -value.scale}, decimals, Tie::ToEven);
            const std::string text =
                digits.size() > static_cast<std::size_t>(decimals)
                    ? digits
                    : std::string(static_cast<std::size_t>(decimals) + 1 - digits.size(), '0') +
                          digits;
            const std::size_t whole = text.size() - static_cast<std::size_t>(decimals);
            expected = parse_decimal((value.negative ? "-" : "") + text.substr(0, whole) +
                                     (decimals > 0 ? "." + text.substr(whole) : ""));
        }
        const auto places = static_cast<Integer>(decimals);
        ASSERT_EQ(show(round_half_even(value, places)), show(expected))
            << show(value) << ", " << decimals;
        ASSERT_EQ(notation(RoundHalfEven(value, places)), notation(expected));
    }
}

TEST(RoundHalfEven, OfADecimalGoesToTheEvenDigitOnAHalf) {
    for (int count = -20'000; count <= 20'000; ++count) {
        Decimal value;
        value.low = static_cast<std::uint32_t>(std::abs(count) * 10 + 5);
        value.negative = count < 0;
        value.scale = 3;
        const int magnitude = std::abs(count) + std::abs(count) % 2;
        Decimal expected;
        expected.low = static_cast<std::uint32_t>(magnitude);
        expected.negative = value.negative;
        expected.scale = 2;
        ASSERT_EQ(show(round_half_even(value, 2)), show(expected)) << show(value);
    }
}

TEST(RoundHalfEven, FailsOnNegativeDecimals) {
    for (const Integer decimals : {Integer{-1}, Integer{-2}, Integer{-32768}}) {
        EXPECT_EQ(failure_of([&] { return round_half_even(Double{1}, decimals); }), 5);
        EXPECT_EQ(failure_of([&] { return round_half_even(Currency::raw(1), decimals); }), 5);
        EXPECT_EQ(failure_of([&] { return round_half_even(Decimal{}, decimals); }), 5);
    }
}

}  // namespace
}  // namespace kvarta16
