// The rounding of money: each member that makes an amount of any value, by the route of the value's
// subtype told once more. An input is a value.
#include <cmath>
#include <limits>

#include <kvarta16/numbers/aLiczby.h>

#include "fuzz_support.h"
#include "second_numbers.h"

namespace kvarta16 {
namespace {

using fuzz::ExactNumber;
using fuzz::expect_same;
using fuzz::outcome_of;
using fuzz::Tie;

constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t units[] = {10000, 1000, 100, 10, 1};

// ---- Steps ----------------------------------------------------------------------------------

// Every way by which an amount is made of another value tests its range.
Currency amount(const ExactNumber& number) {
    const auto count = fuzz::second_whole(number, 4, least, most);
    if (!count) {
        throw Failure(error::overflow);
    }
    return Currency::raw(*count);
}

Currency amount(Double value) {
    const Double count = std::nearbyint(value * 10000);
    if (!(count >= -0x1p63 && count < 0x1p63)) {
        throw Failure(error::overflow);
    }
    return Currency::raw(static_cast<std::int64_t>(count));
}

// Amounts are added without a test.
Currency sum(Currency a, std::int64_t count) {
    std::int64_t total = 0;
    static_cast<void>(__builtin_add_overflow(a.count, count, &total));
    return Currency::raw(total);
}

Double half_even(Double value, int decimals) {
    constexpr Double powers[] = {1, 10, 100};
    const Double product = value * powers[decimals];
    return std::isfinite(product) ? std::nearbyint(product) / powers[decimals] : value;
}

// Cut at the decimals with the tie as told.
ExactNumber cut(const ExactNumber& number, int decimals, Tie tie) {
    return {number.negative, fuzz::second_rounded(number, decimals, tie), -decimals};
}

ExactNumber digits_of(Double value) {
    if (!std::isfinite(value)) {
        throw Failure(error::overflow);
    }
    return fuzz::second_digits(value);
}

int sign_of(Double x) {
    return x > 0 ? 1 : x < 0 ? -1 : 0;
}

// ---- Routes ---------------------------------------------------------------------------------

Currency count_tie_route(Currency value, int decimals) {
    const Currency even = amount(cut(fuzz::exact(value.count, -4), decimals, Tie::to_even));
    const std::int64_t sign = value.count > 0 ? 1 : value.count < 0 ? -1 : 0;
    const bool is_tie = value.count - even.count == sign * units[decimals] / 2;
    return is_tie ? sum(even, sign * units[decimals]) : even;
}

Currency double_tie_route(Double x) {
    const Double even = half_even(x, 0);
    return amount(x - even == sign_of(x) * 0.5 ? sign_of(x) + even : even);
}

Currency two_decimal_route(Double x) {
    const Double even = half_even(x, 2);
    const Double scaled = x * 1000;
    const Double scaled_even = even * 1000;
    return amount(scaled - scaled_even == sign_of(x) * 5 ? sign_of(x) * 0.01 + even : even);
}

String with_commas(String text) {
    std::ranges::replace(text, u'.', u',');
    return text;
}

Currency two_decimal_route(const String& text) {
    const String copy = with_commas(text);
    const auto number = fuzz::second_numeric_text(copy);
    const Double x = fuzz::second_double(number ? *number : fuzz::second_prefix(copy));
    if (number && !std::isfinite(x)) {
        throw Failure(error::overflow);
    }
    return two_decimal_route(x);
}

// By one digit more first, and then by that digit; the unit is added whatever the sign.
Currency text_route(const String& text, int decimals) {
    const String copy = with_commas(text);
    auto number = fuzz::second_numeric_text(copy);
    const bool is_based = number && copy.find(u'&') != String::npos;
    if (!number || is_based || !std::isfinite(fuzz::second_double(*number))) {
        number = digits_of(fuzz::second_double(number ? *number : fuzz::second_prefix(copy)));
    }
    ExactNumber finer = cut(*number, decimals + 1, Tie::away);
    const char last = finer.digits.empty() ? '0' : finer.digits.back();
    if (!finer.digits.empty()) {
        finer.digits.pop_back();
    }
    const Currency kept = amount({finer.negative, finer.digits, -decimals});
    return last >= '5' ? sum(kept, units[decimals]) : kept;
}

Currency core(const Variant& value, int decimals) {
    return value.visit([decimals]<class T>(const T& held) -> Currency {
        if constexpr (std::same_as<T, Boolean>) {
            return Currency::raw(held ? -10000 : 0);
        } else if constexpr (std::integral<T>) {
            return Currency::raw(held * std::int64_t{10000});
        } else if constexpr (std::same_as<T, Date>) {
            return core(held.days, decimals);
        } else if constexpr (std::same_as<T, Double> || std::same_as<T, Single>) {
            if (!std::isfinite(held)) {
                throw Failure(error::overflow);
            }
            return decimals == 0
                       ? double_tie_route(held)
                       : amount(cut(fuzz::second_digits(Double{held}), decimals, Tie::away));
        } else if constexpr (std::same_as<T, Currency>) {
            return decimals == 4 ? held
                   : decimals == 2
                       ? two_decimal_route(fuzz::second_double(fuzz::exact(held.count, -4)))
                       : count_tie_route(held, decimals);
        } else if constexpr (std::same_as<T, Decimal>) {
            const ExactNumber number = fuzz::exact(held);
            return decimals == 2 ? two_decimal_route(fuzz::second_double(number))
                                 : amount(cut(number, decimals, Tie::to_even));
        } else if constexpr (std::same_as<T, String>) {
            return decimals == 2 ? two_decimal_route(held) : text_route(held, decimals);
        } else {
            return {};
        }
    });
}

// ---- Upward and with a bias -----------------------------------------------------------------

// A value as both read it, by the coercion to the type in which they reckon.
template <class Take>
auto read(const Variant& value, Take take) -> decltype(take(Variant())) {
    if (IsNullValue(value)) {
        return {};
    }
    const auto* text = value.get_if<String>();
    const bool is_numeric =
        text != nullptr ? fuzz::second_numeric_text(*text).has_value() : !value.is(Subtype::Date);
    return is_numeric ? take(value)
                      : take(Variant(fuzz::second_double(fuzz::second_prefix(ToText(value)))));
}

Currency upward(const Variant& value, int decimals) {
    Currency given;
    step([&] { given = read(value, ToCurrency); });
    Currency result;
    step([&] { result = amount(cut(fuzz::exact(given.count, -4), decimals, Tie::to_even)); });
    if (given > result) {
        step([&] { result = sum(result, units[decimals]); });
    }
    return result;
}

Currency biased_double(const Variant& value) {
    Double x = 0;
    step([&] { x = read(value, to_double); });
    x += x > 0 ? 0.0001 : -0.0001;
    Currency result;
    step([&] { result = amount(half_even(x, 2)); });
    return result;
}

Currency biased_currency(const Variant& value) {
    const Currency given = read(value, ToCurrency);
    const Currency pushed = sum(given, given.count > 0 ? 1 : -1);
    return amount(cut(fuzz::exact(pushed.count, -4), 2, Tie::to_even));
}

Long whole_text(const Variant& value) {
    Long result = 0;
    step([&] {
        if (IsNullValue(value)) {
            return;
        }
        String text = ToText(value);
        text.erase(0, std::min(text.find_first_not_of(u' '), text.size()));
        text.erase(text.find_last_not_of(u' ') + 1);
        if (text.empty()) {
            return;
        }
        const auto number = fuzz::second_numeric_text(text);
        const Double prefix = fuzz::second_double(fuzz::second_prefix(text));
        const bool fits = std::abs(prefix) < 1e10;
        const auto whole = number ? fuzz::second_whole(*number, 0, INT32_MIN, INT32_MAX)
                           : fits ? std::optional(static_cast<std::int64_t>(std::nearbyint(prefix)))
                                  : std::nullopt;
        if (whole && *whole >= INT32_MIN && *whole <= INT32_MAX) {
            result = static_cast<Long>(*whole);
        }
    });
    return result;
}

void check(const Variant& value) {
    const aLiczby numbers;
    const std::string shown = fuzz::show_value(value);
    const auto is = [&](const char* name, auto member, auto wanted) {
        expect_same(name, shown, outcome_of([&] { return (numbers.*member)(value); }),
                    outcome_of(wanted));
    };
    is("VarR0Si of", &aLiczby::VarR0Si, [&] { return core(value, 0); });
    is("VarR1Si of", &aLiczby::VarR1Si, [&] { return core(value, 1); });
    is("VarR2Si of", &aLiczby::VarR2Si, [&] { return core(value, 2); });
    is("VarR3Si of", &aLiczby::VarR3Si, [&] { return core(value, 3); });
    is("VarR4Si of", &aLiczby::VarR4Si, [&] { return core(value, 4); });
    is("VarR0GSi of", &aLiczby::VarR0GSi, [&] { return upward(value, 0); });
    is("VarR1GSi of", &aLiczby::VarR1GSi, [&] { return upward(value, 1); });
    is("VarR2Si1 of", &aLiczby::VarR2Si1, [&] { return biased_double(value); });
    is("VarR2SiPL of", &aLiczby::VarR2SiPL, [&] { return biased_currency(value); });
    is("VarLong of", &aLiczby::VarLong, [&] { return whole_text(value); });
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t longest = 400;
    kvarta16::fuzz::Input input(data, std::min(size, longest));
    kvarta16::check(kvarta16::fuzz::any_value(input));
    return 0;
}
