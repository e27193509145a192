// PoliczWyrażenie: the tape calculator of aLiczby.
#include <cmath>

#include <kvarta16/numbers/aLiczby.h>

namespace kvarta16 {
namespace {

constexpr StringView operators = u"-+/\\*^";

constexpr bool is_digit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

// Whether a text without its "=" begins as an expression does. Of the texts of one character the
// digits alone are numeric.
bool begins_with_number(StringView text) {
    const std::size_t at = text.starts_with(u'-') ? 1 : 0;
    return text.size() > at && is_digit(text[at]);
}

// The quotient of whole numbers without its decimals. Exact: `left` stands for a Currency, and the
// quotient of a whole number below 2^53 is never so near to the next one that it rounds to it.
Double whole_quotient(Double left, Double right) {
    if (right == 0) {
        fail(error::division_by_zero);
    }
    return std::trunc(left / right);
}

Double power(Double base, Double exponent) {
    if (base < 0 && exponent != std::trunc(exponent)) {
        fail(error::invalid_call);
    }
    return std::pow(base, exponent);
}

Double applied(char16_t operation, Double left, Double right) {
    switch (operation) {
        case u'+':
            return left + right;
        case u'-':
            return left - right;
        case u'*':
            return left * right;
        case u'/':
            return right != 0 ? left / right : (fail(error::division_by_zero), 0.0);
        case u'\\':
            return whole_quotient(round_half_even(left, 0), round_half_even(right, 0));
        default:
            return power(left, right);
    }
}

// Parentheses around a numeric text mean minus; in an expression they enclose the number.
Double operand_of(StringView text) {
    const Double number = to_double(text);
    return text.find(u'(') == StringView::npos ? number : std::abs(number);
}

// The value of an expression, computed while it is read. Fails: 5, 6, 11, 13.
Currency value_of(StringView expression) {
    // A leading "-" is part of the first operand.
    std::size_t end = expression.find_first_of(operators, 1);
    Currency value = ToCurrency(expression.substr(0, end));
    while (end != StringView::npos) {
        const char16_t operation = expression[end];
        const std::size_t start = end + 1;
        end = expression.find_first_of(operators, start);
        const Double operand = operand_of(expression.substr(start, end - start));
        value = ToCurrency(applied(operation, to_double(value), operand));
    }
    return value;
}

}  // namespace

String aLiczby::PoliczWyrażenie(String& st) const {
    String result = st;
    guarded([&] {
        st = String(trim(st));
        if (st.starts_with(u'=')) {
            st.erase(0, 1);
        } else if (!st.starts_with(u'-')) {
            return;
        }
        if (begins_with_number(st)) {
            result = VarR4Str(value_of(st));
        }
    });
    return result;
}

}  // namespace kvarta16
