// Numbers of every subtype and what the value layer makes of them: coercions, texts, and rounding
// half to even, each against a second way.
#include <cmath>
#include <limits>

#include "fuzz_support.h"
#include "second_numbers.h"

namespace kvarta16 {
namespace {

using fuzz::ExactNumber;
using fuzz::expect_same;
using fuzz::Outcome;
using fuzz::outcome_of;
using fuzz::show;

constexpr std::int64_t least_count = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t most_count = std::numeric_limits<std::int64_t>::max();

template <class T>
Outcome<T> whole_or_overflow(std::optional<std::int64_t> whole) {
    return whole ? Outcome<T>{static_cast<T>(*whole)} : fuzz::failed<T>(error::overflow);
}

Outcome<Currency> amount_or_overflow(std::optional<std::int64_t> count) {
    return count ? Outcome<Currency>{Currency::raw(*count)}
                 : fuzz::failed<Currency>(error::overflow);
}

// A Double to the nearest whole one, a tie to even: the floor of it and what is left.
Double nearest(Double value) {
    const Double low = std::floor(value);
    const Double left = value - low;  // exact
    const bool is_odd = std::fmod(low, 2) != 0;
    return left > 0.5 || (left == 0.5 && is_odd) ? low + 1 : low;
}

std::optional<std::int64_t> whole_of(Double value, std::int64_t least, std::int64_t most) {
    if (!std::isfinite(value)) {
        return std::nullopt;
    }
    const Double whole = nearest(value);
    // As Doubles both limits of 64 bits are exact powers of two, the upper one beyond the range.
    constexpr Double beyond = 0x1p63;
    if (whole < -beyond || whole >= beyond) {
        return std::nullopt;
    }
    const auto number = static_cast<std::int64_t>(whole);
    return number >= least && number <= most ? std::optional(number) : std::nullopt;
}

// RoundHalfEven of a Double at the decimals that the library uses.
Double rounded(Double value, Integer decimals) {
    constexpr Double powers[] = {1, 10, 100, 1000, 10000};
    const Double power = powers[decimals];
    Double whole = 0;
    const Double fraction = std::modf(value * power, &whole);
    const Double size = std::abs(fraction);
    const bool is_odd = std::fmod(whole, 2) != 0;
    if (size > 0.5 || (size == 0.5 && is_odd)) {
        whole += fraction > 0 ? 1 : -1;
    }
    return whole / power;
}

void check_double(Double value, Integer decimals) {
    const std::string shown = show(value);
    expect_same("ToCurrency of", shown, outcome_of([&] { return ToCurrency(value); }),
                amount_or_overflow(whole_of(value * 10000, least_count, most_count)));
    expect_same("ToLong of", shown, outcome_of([&] { return ToLong(value); }),
                whole_or_overflow<Long>(whole_of(value, INT32_MIN, INT32_MAX)));
    expect_same("ToInteger16 of", shown, outcome_of([&] { return ToInteger16(value); }),
                whole_or_overflow<Integer>(whole_of(value, INT16_MIN, INT16_MAX)));
    const auto text = outcome_of([&] { return ToText(value); });
    expect_same("ToText of", shown, text,
                std::isfinite(value) ? Outcome<String>{second_text(fuzz::second_digits(value), 15)}
                                     : fuzz::failed<String>(error::overflow));
    // A power of ten that leaves the range is for nobody: money has four decimals.
    if (std::isfinite(value * 10000)) {
        expect_same("RoundHalfEven of", shown + " at " + show(decimals),
                    round_half_even(value, decimals), rounded(value, decimals));
    }
}

void check_single(Single value) {
    if (!std::isfinite(value)) {
        return;
    }
    const std::string shown = "Single " + show(value);
    const ExactNumber digits = fuzz::second_digits(value);
    const String text = ToText(value);
    expect_same("ToText of", shown, text, second_text(digits, 7));
    // Seven nines may round up beyond the range.
    const auto back = static_cast<Single>(fuzz::second_double(digits));
    expect_same(
        "The number of the text of", shown, outcome_of([&] { return to_single(text); }),
        std::isfinite(back) ? Outcome<Single>{back} : fuzz::failed<Single>(error::overflow));
    expect_same(
        "ToLong of", shown, outcome_of([&] { return ToLong(value); }),
        whole_or_overflow<Long>(whole_of(static_cast<Double>(value), INT32_MIN, INT32_MAX)));
}

void check_currency(Currency value, Integer decimals) {
    const std::string shown = show(value);
    const ExactNumber number = fuzz::exact(value.count, -4);
    const String text = ToText(value);
    expect_same("ToText of", shown, text, second_text(number, fuzz::no_exponent));
    expect_same("The amount of the text of", shown, ToCurrency(text), value);
    expect_same("to_double of", shown, to_double(value), fuzz::second_double(number));
    expect_same("ToLong of", shown, outcome_of([&] { return ToLong(value); }),
                whole_or_overflow<Long>(fuzz::second_whole(number, 0, INT32_MIN, INT32_MAX)));
    const auto cut = fuzz::second_whole(number, decimals, least_count, most_count);
    std::optional<std::int64_t> wanted;
    if (cut) {
        wanted = fuzz::second_whole(fuzz::exact(*cut, -decimals), 4, least_count, most_count);
    }
    expect_same("RoundHalfEven of", shown + " at " + show(decimals),
                outcome_of([&] { return round_half_even(value, decimals); }),
                amount_or_overflow(wanted));
}

void check_decimal(const Decimal& value, Integer decimals) {
    const ExactNumber number = fuzz::exact(value);
    const std::string shown =
        "Decimal " + number.digits + "E" + show(number.exponent) + (value.negative ? "-" : "");
    const String text = ToText(value);
    const bool is_zero = number.is_zero();
    expect_same("ToText of", shown, text,
                is_zero ? String(u"0") : second_text(number, fuzz::no_exponent));
    expect_same("to_double of", shown, to_double(value), fuzz::second_double(number));
    expect_same("The Double of the text of", shown, to_double(text),
                is_zero ? 0 : fuzz::second_double(number));
    expect_same("ToCurrency of", shown, outcome_of([&] { return ToCurrency(value); }),
                amount_or_overflow(fuzz::second_whole(number, 4, least_count, most_count)));
    expect_same("ToLong of", shown, outcome_of([&] { return ToLong(value); }),
                whole_or_overflow<Long>(fuzz::second_whole(number, 0, INT32_MIN, INT32_MAX)));
    const ExactNumber cut = fuzz::exact(round_half_even(value, decimals));
    expect_same("RoundHalfEven of", shown + " at " + show(decimals),
                fuzz::second_rounded(cut, decimals, fuzz::Tie::to_even),
                fuzz::second_rounded(number, decimals, fuzz::Tie::to_even));
    fuzz::expect(cut.exponent >= -decimals || cut.exponent == number.exponent,
                 "RoundHalfEven leaves no more decimals of", shown);
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvarta16;
    fuzz::Input input(data, size);
    const auto decimals = static_cast<Integer>(input.number<std::uint8_t>() % 5);
    const auto bits = input.number<std::uint64_t>();
    Double real = 0;
    std::memcpy(&real, &bits, sizeof real);
    const auto count = static_cast<std::int64_t>(bits);
    check_double(real, decimals);
    // The Doubles that money makes are few among all; these are they.
    check_double(static_cast<Double>(count >> (bits % 48)) / 10000, decimals);
    check_currency(Currency::raw(count), decimals);
    check_currency(Currency::raw(count >> (bits % 48)), decimals);
    check_single(input.number<Single>());
    Decimal decimal;
    decimal.low = input.number<std::uint32_t>();
    decimal.middle = input.number<std::uint32_t>();
    decimal.high = input.number<std::uint32_t>();
    decimal.scale = static_cast<std::uint8_t>(input.number<std::uint8_t>() % 29);
    decimal.negative = input.number<std::uint8_t>() % 2 == 1;
    check_decimal(decimal, decimals);
    return 0;
}
