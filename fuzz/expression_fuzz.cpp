// PoliczWyrażenie against a second calculator, which is the tape that the member stands for: a
// table of operators and operands filled by one scan, then worked off from left to right.
#include <cmath>
#include <limits>
#include <vector>

#include <kvarta16/numbers/aLiczby.h>

#include "fuzz_support.h"
#include "second_numbers.h"

namespace kvarta16 {
namespace {

struct TapeFailure {};

struct Column {
    char16_t operation = 0;
    String operand;
};

// A whole number, a tie to even.
Double whole(Double value) {
    return std::nearbyint(value);
}

std::int64_t count_of(Double value) {
    const Double count = whole(value * 10000);
    constexpr Double beyond = 0x1p63;
    if (!(count >= -beyond && count < beyond)) {
        throw TapeFailure();
    }
    return static_cast<std::int64_t>(count);
}

Double operand_of(const String& text) {
    const auto number = fuzz::second_numeric_text(text);
    const Double value = number ? fuzz::second_double(*number) : 0;
    if (!number || !std::isfinite(value)) {
        throw TapeFailure();
    }
    return text.find(u'(') == String::npos ? value : -value;
}

Double whole_quotient(Double left, Double right) {
    left = whole(left);
    right = whole(right);
    if (right == 0) {
        throw TapeFailure();
    }
    // The left side is an amount, so that whatever is larger than any amount goes into it no time.
    constexpr Double largest_amount = 1e15;
    if (std::abs(right) > largest_amount) {
        return 0;
    }
    return static_cast<Double>(static_cast<std::int64_t>(left) / static_cast<std::int64_t>(right));
}

Double step(char16_t operation, Double left, Double right) {
    switch (operation) {
        case u'+':
            return left + right;
        case u'-':
            return left - right;
        case u'*':
            return left * right;
        case u'/':
            if (right == 0) {
                throw TapeFailure();
            }
            return left / right;
        case u'\\':
            return whole_quotient(left, right);
        default:
            if (left < 0 && right != std::floor(right)) {
                throw TapeFailure();
            }
            return std::pow(left, right);  // there is no second power
    }
}

std::vector<Column> tape_of(StringView expression) {
    const std::size_t columns = expression.size() / 2 + 2;
    std::vector<Column> tape(1);  // column 0 is not used
    std::size_t previous = 0;
    for (std::size_t position = 2; position <= expression.size(); ++position) {
        const char16_t unit = expression[position - 1];
        if (StringView(u"-+/\\*^").find(unit) == StringView::npos) {
            continue;
        }
        tape.push_back({unit, String(expression.substr(previous, position - 1 - previous))});
        previous = position;
    }
    tape.push_back({0, String(expression.substr(previous))});
    if (tape.size() - 1 > columns) {
        throw TapeFailure();
    }
    return tape;
}

// The amount of an expression, as a count.
std::int64_t worked_off(StringView expression) {
    using Limits = std::numeric_limits<std::int64_t>;
    const std::vector<Column> tape = tape_of(expression);
    const auto first = fuzz::second_numeric_text(tape[1].operand);
    const auto count =
        first ? fuzz::second_whole(*first, 4, Limits::min(), Limits::max()) : std::nullopt;
    if (!count) {
        throw TapeFailure();
    }
    std::int64_t accumulator = *count;
    for (std::size_t i = 2; i < tape.size(); ++i) {
        const Double left = fuzz::second_double(fuzz::exact(accumulator, -4));
        accumulator = count_of(step(tape[i - 1].operation, left, operand_of(tape[i].operand)));
    }
    return accumulator;
}

String amount_text(std::int64_t count) {
    std::string digits = fuzz::exact(count).digits;
    digits.insert(0, digits.size() < 5 ? 5 - digits.size() : 0, '0');
    digits.insert(digits.size() - 4, 1, ',');
    return fuzz::utf16((count < 0 ? "-" : "") + digits);
}

struct Answer {
    String result;
    String left_in_argument;
};

Answer wanted_for(const String& argument) {
    const std::size_t start = argument.find_first_not_of(u' ');
    String trimmed;
    if (start != String::npos) {
        trimmed = argument.substr(start, argument.find_last_not_of(u' ') - start + 1);
    }
    const char16_t first = trimmed.empty() ? u'\0' : trimmed[0];
    if (first == u'=') {
        trimmed.erase(0, 1);
    } else if (first != u'-' && first != u'+' && first != u'/' && first != u'*') {
        return {argument, trimmed};
    }
    const std::size_t digit = trimmed.starts_with(u'-') ? 1 : 0;
    if (!fuzz::second_numeric_text(StringView(trimmed).substr(digit, 1))) {
        return {argument, trimmed};
    }
    try {
        return {amount_text(worked_off(trimmed)), trimmed};
    } catch (const TapeFailure&) {  // whatever fails, the text comes back
        return {argument, trimmed};
    }
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvarta16;
    constexpr std::size_t longest = 1000;
    const String text = fuzz::Input(data, std::min(size, longest)).rest_as_text();
    const Answer wanted = wanted_for(text);
    String argument = text;
    const String result = aLiczby().PoliczWyrażenie(argument);
    fuzz::expect_same("PoliczWyrażenie of", fuzz::show(text), result, wanted.result);
    fuzz::expect_same("The argument after PoliczWyrażenie of", fuzz::show(text), argument,
                      wanted.left_in_argument);
    return 0;
}
