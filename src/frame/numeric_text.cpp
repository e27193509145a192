#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include <kvarta16/frame/digits.h>
#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/numeric_text.h>

namespace kvarta16 {
namespace {

constexpr std::uint64_t smallest_of_19_digits = 1'000'000'000'000'000'000;
// Far beyond every type's range, and far from the limits of the arithmetic on exponents.
constexpr std::int32_t exponent_limit = 1'000'000;

constexpr bool is_digit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}
constexpr bool is_white_space(char16_t unit) {
    return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}
constexpr bool is_exponent_letter(char16_t unit) {
    return unit == u'E' || unit == u'e' || unit == u'D' || unit == u'd';
}

constexpr int hexadecimal_digit(char16_t unit) {
    if (is_digit(unit)) {
        return unit - u'0';
    }
    if (unit >= u'A' && unit <= u'F') {
        return unit - u'A' + 10;
    }
    return unit >= u'a' && unit <= u'f' ? unit - u'a' + 10 : 99;
}

void append_digit(NumericText& number, unsigned digit) {
    if (number.mantissa < smallest_of_19_digits) [[likely]] {
        number.mantissa = number.mantissa * 10 + digit;
        return;
    }
    if (number.exponent == 0) {
        number.tail_digit = static_cast<std::uint8_t>(digit);
    } else {
        number.tail_rest = number.tail_rest || digit != 0;
    }
    ++number.exponent;
}

// Walks a text from left to right; every member takes what it names or leaves the place as it is.
class Reader {
  public:
    explicit Reader(StringView text) : at_(text.data()), end_(text.data() + text.size()) {}

    [[nodiscard]] bool at_end() const { return at_ == end_; }
    [[nodiscard]] const char16_t* place() const { return at_; }
    void return_to(const char16_t* place) { at_ = place; }

    bool take(char16_t unit) {
        const bool found = at_ != end_ && *at_ == unit;
        at_ += found ? 1 : 0;
        return found;
    }
    bool take(StringView word) {
        const bool found = StringView(at_, static_cast<std::size_t>(end_ - at_)).starts_with(word);
        at_ += found ? word.size() : 0;
        return found && !word.empty();
    }
    void skip_white_space() {
        while (at_ != end_ && is_white_space(*at_)) {
            ++at_;
        }
    }
    // '+' or '-', or 0 where there is none.
    char16_t take_sign() {
        return at_ != end_ && (*at_ == u'+' || *at_ == u'-') ? *at_++ : char16_t{0};
    }

    // Digits of the number, with separators behind the first one where there is any; how many.
    std::int32_t take_digits(NumericText& number, char16_t separator) {
        std::int32_t count = 0;
        for (; at_ != end_; ++at_) {
            if (is_digit(*at_)) {
                append_digit(number, static_cast<unsigned>(*at_ - u'0'));
                ++count;
            } else if (count == 0 || separator == 0 || *at_ != separator) {
                break;
            }
        }
        return count;
    }

    // An exponent letter, an optional sign and digits; 0 and nothing taken if the digits miss.
    std::int32_t take_exponent() {
        const char16_t* start = at_;
        if (at_ == end_ || !is_exponent_letter(*at_)) {
            return 0;
        }
        ++at_;
        const bool negative = take_sign() == u'-';
        if (at_ == end_ || !is_digit(*at_)) {
            at_ = start;
            return 0;
        }
        std::int32_t exponent = 0;
        for (; at_ != end_ && is_digit(*at_); ++at_) {
            exponent = std::min(exponent * 10 + (*at_ - u'0'), exponent_limit);
        }
        return negative ? -exponent : exponent;
    }

    // Digits to the base of 16 or 8 behind "&H" or "&O"; false if there are none.
    bool take_based_digits(NumericText& number, int base) {
        const char16_t* start = at_;
        number.base = static_cast<std::uint8_t>(base);
        for (; at_ != end_ && hexadecimal_digit(*at_) < base; ++at_) {
            const auto wide_base = static_cast<std::uint64_t>(base);
            const auto digit = static_cast<std::uint64_t>(hexadecimal_digit(*at_));
            number.beyond_word =
                number.beyond_word || number.mantissa > (~std::uint64_t{0} - digit) / wide_base;
            number.mantissa = number.mantissa * wide_base + digit;
        }
        number.digits = StringView(start, static_cast<std::size_t>(at_ - start));
        return at_ != start;
    }

    // "&H" or "&O", in any case: the base, or 0.
    int take_base() {
        if (end_ - at_ < 2 || at_[0] != u'&') {
            return 0;
        }
        const int base = at_[1] == u'H' || at_[1] == u'h'   ? 16
                         : at_[1] == u'O' || at_[1] == u'o' ? 8
                                                            : 0;
        at_ += base != 0 ? 2 : 0;
        return base;
    }

  private:
    const char16_t* at_;
    const char16_t* end_;
};

// Digits, decimals and exponent; whether there was a digit at all. `has_decimals` is told because
// the currency symbol stands behind numbers without decimals only.
bool take_number(Reader& reader, NumericText& number, char16_t decimal_separator,
                 char16_t group_separator, bool& has_decimals) {
    const char16_t* start = reader.place();
    const std::int32_t whole = reader.take_digits(number, group_separator);
    has_decimals = reader.take(decimal_separator);
    const std::int32_t decimals = has_decimals ? reader.take_digits(number, 0) : 0;
    number.digits = StringView(start, static_cast<std::size_t>(reader.place() - start));
    if (whole + decimals == 0) {
        return false;
    }
    const std::int32_t exponent = reader.take_exponent();
    number.last_exponent = exponent - decimals;
    number.exponent += number.last_exponent;
    return true;
}

StringView without_white_space(StringView text) {
    while (!text.empty() && is_white_space(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && is_white_space(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::uint64_t power_of_ten(std::int32_t exponent) {
    constexpr std::uint64_t powers[] = {1,
                                        10,
                                        100,
                                        1'000,
                                        10'000,
                                        100'000,
                                        1'000'000,
                                        10'000'000,
                                        100'000'000,
                                        1'000'000'000,
                                        10'000'000'000,
                                        100'000'000'000,
                                        1'000'000'000'000,
                                        10'000'000'000'000,
                                        100'000'000'000'000,
                                        1'000'000'000'000'000,
                                        10'000'000'000'000'000,
                                        100'000'000'000'000'000,
                                        1'000'000'000'000'000'000,
                                        10'000'000'000'000'000'000U};
    return powers[exponent];
}

// A whole number with its sign, within 64 bits.
std::int64_t with_sign(std::uint64_t magnitude, bool negative) {
    constexpr std::uint64_t beyond = std::uint64_t{1} << 63;
    if (magnitude > beyond || (magnitude == beyond && !negative)) {
        fail(error::overflow);
    }
    const std::uint64_t bits = negative ? ~magnitude + 1 : magnitude;
    return static_cast<std::int64_t>(bits);
}

// Mantissa and tail divided by ten to `places`, to the nearest, a tie to even.
std::uint64_t divided(const NumericText& number, std::int32_t places) {
    if (places > 19) {
        return 0;  // below a half, whatever the digits
    }
    std::uint64_t quotient = number.mantissa;
    // The part of one that is cut off, against a half of one: 2 * part <=> one.
    std::uint64_t part = number.tail_digit;
    std::uint64_t half = 5;
    bool rest = number.tail_rest;
    if (places > 0) {
        const std::uint64_t power = power_of_ten(places);
        quotient = number.mantissa / power;
        part = number.mantissa % power;
        half = power / 2;
        rest = rest || number.tail_digit != 0;
    }
    const bool above = part > half || (part == half && rest);
    const bool tie = part == half && !rest;
    return quotient + (above || (tie && quotient % 2 == 1) ? 1 : 0);
}

// The bits that a Double has no room for live on in the lowest one that is kept, far below those
// that its rounding looks at.
Double based_double(const NumericText& number) {
    const int bits_of_digit = number.base == 16 ? 4 : 3;
    std::uint64_t kept = 0;
    int dropped_bits = 0;
    for (const char16_t unit : number.digits) {
        const auto digit = static_cast<std::uint64_t>(hexadecimal_digit(unit));
        if (kept >> 60 == 0) {
            kept = kept << bits_of_digit | digit;
        } else {
            kept |= digit != 0 ? 1 : 0;
            dropped_bits += bits_of_digit;
        }
    }
    return std::ldexp(static_cast<Double>(kept), dropped_bits);
}

// All digits, however many, through the correctly rounding reader of the standard library.
Double read_all_digits(const NumericText& number) {
    std::string text;
    text.reserve(number.digits.size() + 16);
    for (const char16_t unit : number.digits) {
        if (is_digit(unit)) {
            text += static_cast<char>(unit);
        }
    }
    text += 'e' + std::to_string(number.last_exponent);
    Double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        const bool huge = number.exponent > 0 && number.mantissa != 0;
        return huge ? std::numeric_limits<Double>::infinity() : 0.0;
    }
    return value;
}

// Up to nineteen digits that are no exact product or quotient: the same reader, without a store.
Double read_word(std::uint64_t mantissa, std::int32_t exponent) {
    char text[40];
    char* end = std::to_chars(text, text + 24, mantissa).ptr;
    *end++ = 'e';
    end = std::to_chars(end, text + sizeof text, exponent).ptr;
    Double value = 0;
    const auto result = std::from_chars(text, end, value);
    if (result.ec == std::errc::result_out_of_range) {
        return exponent > 0 ? std::numeric_limits<Double>::infinity() : 0.0;
    }
    return value;
}

Double magnitude_of(const NumericText& number) {
    constexpr Double exact_powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                       1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                       1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    constexpr std::uint64_t exact_integers = std::uint64_t{1} << 53;
    if (number.base != 10) {
        return number.beyond_word ? based_double(number) : static_cast<Double>(number.mantissa);
    }
    if (number.tail_digit != 0 || number.tail_rest) {
        return read_all_digits(number);
    }
    if (number.mantissa == 0) {
        return 0;
    }
    // Both operands exact, so that the one rounding of the operation is the nearest Double.
    if (number.mantissa <= exact_integers && number.exponent >= -22 && number.exponent <= 22) {
        const auto mantissa = static_cast<Double>(number.mantissa);
        return number.exponent < 0 ? mantissa / exact_powers[-number.exponent]
                                   : mantissa * exact_powers[number.exponent];
    }
    return read_word(number.mantissa, number.exponent);
}

// The text without its blanks, tabs and line feeds, copied to `target`.
StringView without_blanks(StringView text, char16_t* target) {
    const auto copied = std::ranges::copy_if(
        text, target, [](char16_t unit) { return unit != u' ' && unit != u'\t' && unit != u'\n'; });
    return {target, static_cast<std::size_t>(copied.out - target)};
}

}  // namespace

std::optional<NumericText> read_numeric_text(StringView text, const Locale& settings) {
    Reader reader(without_white_space(text));
    NumericText number;
    if (const int base = reader.take_base(); base != 0) {
        const bool read = reader.take_based_digits(number, base) && reader.at_end();
        return read ? std::optional(number) : std::nullopt;
    }
    const bool parentheses = reader.take(u'(');
    char16_t sign = parentheses ? u'-' : reader.take_sign();
    const bool symbol_first = reader.take(settings.currency_symbol);
    if (symbol_first) {
        reader.skip_white_space();
    }
    bool has_decimals = false;
    if (!take_number(reader, number, settings.decimal_separator, settings.group_separator,
                     has_decimals)) {
        return std::nullopt;
    }
    if (!symbol_first && !has_decimals && !reader.at_end()) {
        const char16_t* behind_number = reader.place();
        reader.skip_white_space();
        if (!reader.take(settings.currency_symbol)) {
            reader.return_to(behind_number);
        }
    }
    if (parentheses && !reader.take(u')')) {
        return std::nullopt;
    }
    if (sign == 0) {
        sign = reader.take_sign();
    }
    number.negative = sign == u'-';
    return reader.at_end() ? std::optional(number) : std::nullopt;
}

std::optional<Currency> read_plain_amount(StringView text, char16_t decimal_separator) noexcept {
    constexpr std::size_t longest = 14;  // that many digits and four decimals: within 64 bits
    const char16_t* at = text.data();
    const char16_t* const end = at + text.size();
    const bool negative = at != end && *at == u'-';
    at += negative ? 1 : 0;
    const char16_t* const first = at;
    std::int64_t count = 0;
    if (text.size() > longest) {
        return std::nullopt;
    }
    while (at != end && is_digit(*at)) {
        count = count * 10 + (*at++ - u'0');
    }
    if (at == first) {
        return std::nullopt;
    }
    std::ptrdiff_t decimals = 0;
    if (at != end && *at == decimal_separator) {
        const char16_t* const behind_separator = ++at;
        while (at != end && is_digit(*at)) {
            count = count * 10 + (*at++ - u'0');
        }
        decimals = at - behind_separator;
    }
    if (at != end || decimals > 4) {
        return std::nullopt;
    }
    constexpr std::int64_t missing_decimals[] = {10000, 1000, 100, 10, 1};
    count *= missing_decimals[decimals];
    return Currency::raw(negative ? -count : count);
}

std::int64_t scaled(const NumericText& number, std::int32_t power) {
    if (number.beyond_word) {
        fail(error::overflow);
    }
    if (number.mantissa == 0) {
        return 0;
    }
    const std::int32_t exponent = number.exponent + power;
    if (exponent <= 0) {
        return with_sign(divided(number, -exponent), number.negative);
    }
    // Nineteen digits and a tail, and a further digit before the point: beyond 64 bits.
    const bool has_tail = number.tail_digit != 0 || number.tail_rest;
    if (exponent > 18 || has_tail || number.mantissa > ~std::uint64_t{0} / power_of_ten(exponent)) {
        fail(error::overflow);
    }
    return with_sign(number.mantissa * power_of_ten(exponent), number.negative);
}

Double nearest_double(const NumericText& number) {
    const Double magnitude = magnitude_of(number);
    return number.negative ? -magnitude : magnitude;
}

Double read_prefix(StringView text) {
    // Blanks, tabs and line feeds are skipped wherever they stand, so they are taken out first.
    char16_t buffer[64];
    String longer;
    if (text.find_first_of(u" \t\n") != StringView::npos) {
        text = text.size() <= std::size(buffer) ? without_blanks(text, buffer)
                                                : without_blanks(text, (longer = text).data());
    }
    Reader reader(text);
    NumericText number;
    if (const int base = reader.take_base(); base != 0) {
        return reader.take_based_digits(number, base) ? nearest_double(number) : 0.0;
    }
    number.negative = reader.take_sign() == u'-';
    bool has_decimals = false;
    return take_number(reader, number, u'.', 0, has_decimals) ? nearest_double(number) : 0.0;
}

NumericText number_of(const Decimal& value) {
    const DecimalDigits digits = digits_of(value);
    NumericText number;
    number.negative = value.negative;
    for (const char digit : digits.view()) {
        append_digit(number, static_cast<unsigned>(digit - '0'));
    }
    number.exponent -= value.scale;
    return number;
}

}  // namespace kvarta16
