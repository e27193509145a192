// Numbers in texts: what counts as one, and what each coercion makes of it, against a second reader
// that keeps all digits; and the way of the result through text and back.
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

template <class T>
Outcome<T> refused(const std::optional<ExactNumber>& number) {
    return fuzz::failed<T>(number ? error::overflow : error::type_mismatch);
}

template <class T>
Outcome<T> whole_wanted(const std::optional<ExactNumber>& number) {
    using Limits = std::numeric_limits<T>;
    const auto whole =
        number ? fuzz::second_whole(*number, 0, Limits::min(), Limits::max()) : std::nullopt;
    return whole ? Outcome<T>{static_cast<T>(*whole)} : refused<T>(number);
}

Outcome<Currency> amount_wanted(const std::optional<ExactNumber>& number) {
    using Limits = std::numeric_limits<std::int64_t>;
    const auto count =
        number ? fuzz::second_whole(*number, 4, Limits::min(), Limits::max()) : std::nullopt;
    return count ? Outcome<Currency>{Currency::raw(*count)} : refused<Currency>(number);
}

Outcome<Double> double_wanted(const std::optional<ExactNumber>& number) {
    const Double value = number ? fuzz::second_double(*number) : 0;
    return number && std::isfinite(value) ? Outcome<Double>{value} : refused<Double>(number);
}

void check_way_back(const std::string& shown, Double value) {
    const ExactNumber digits = fuzz::second_digits(value);
    const String text = ToText(value);
    expect_same("ToText of the Double in", shown, text, fuzz::second_text(digits, 15));
    // Fifteen nines may round up beyond the range.
    expect_same("The Double of its text in", shown, outcome_of([&] { return to_double(text); }),
                double_wanted(digits));
}

void check(StringView text) {
    const std::string shown = fuzz::show(text);
    const std::optional<ExactNumber> number = fuzz::second_numeric_text(text);
    const Variant value = text;
    expect_same("IsNumericText of", shown, static_cast<bool>(IsNumericText(value)),
                number.has_value());
    expect_same("to_byte of", shown, outcome_of([&] { return to_byte(value); }),
                whole_wanted<Byte>(number));
    expect_same("ToInteger16 of", shown, outcome_of([&] { return ToInteger16(value); }),
                whole_wanted<Integer>(number));
    expect_same("ToLong of", shown, outcome_of([&] { return ToLong(value); }),
                whole_wanted<Long>(number));
    const auto amount = outcome_of([&] { return ToCurrency(value); });
    expect_same("ToCurrency of", shown, amount, amount_wanted(number));
    const auto real = outcome_of([&] { return to_double(value); });
    expect_same("to_double of", shown, real, double_wanted(number));
    expect_same("ValPrefix of", shown, ValPrefix(text),
                fuzz::second_double(fuzz::second_prefix(text)));
    if (real.value) {
        check_way_back(shown, *real.value);
    }
    if (amount.value) {
        const String written = ToText(*amount.value);
        expect_same("The amount of its text in", shown, ToCurrency(written), *amount.value);
    }
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t longest = 2000;  // long multiplication takes the square of it
    kvarta16::check(kvarta16::fuzz::Input(data, std::min(size, longest)).rest_as_text());
    return 0;
}
