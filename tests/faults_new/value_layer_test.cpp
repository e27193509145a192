// The value layer while allocations fail: Variants, coercions and texts.
#include <memory>

#include <gtest/gtest.h>

#include <kvarta16/frame/ansi.h>
#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>

#include "failing_new.h"

namespace kvarta16::failing_new_tests {
namespace {

constexpr const char16_t* sentence = u"Zażółć gęślą jaźń, 1234567,8901";
constexpr const char16_t* number_text = u"            123456789012,4567            ";

struct SomeObject final : Object {};

// A text that is too long to stand in the string itself, so that copying it allocates.
const Variant& long_text() {
    static const Variant text = sentence;
    return text;
}

// Calls on a Variant that is written to.
Work on_variant(Variant start, std::function<void(Variant&)> change) {
    const auto variable = std::make_shared<Variant>(std::move(start));
    return {[variable, change = std::move(change)] {
                change(*variable);
                return ToText(*variable);
            },
            [variable] {
                return std::vector<String>{ToText(*variable),
                                           ToText(static_cast<Integer>(variable->subtype()))};
            }};
}
// Calls on a variable of the caller's that a Variant refers to.
template <class T>
Work on_reference(T start, Variant source) {
    const auto variable = std::make_shared<T>(std::move(start));
    return {[variable, source = std::move(source)] {
                Variant::reference(*variable).assign(source);
                return ToText(Variant(*variable));
            },
            [variable] { return std::vector<String>{ToText(Variant(*variable))}; }};
}

Case call(std::string name, std::function<String()> run) {
    return {std::move(name), [run = std::move(run)] { return Work{run}; }};
}

const Case cases[] = {
    call("Variant: a copy", [] { return ToText(Variant(long_text())); }),
    call("Variant: the value of a reference",
         [] {
             String variable = sentence;
             return ToText(Variant::reference(variable).value());
         }),
    {"Variant: a text over a number",
     [] { return on_variant(1234567, [](Variant& v) { v = long_text(); }); }},
    {"Variant: a text over a text",
     [] { return on_variant(u"a text of before", [](Variant& v) { v = long_text(); }); }},
    {"Variant: an object over a text",
     [] {
         return on_variant(u"a text of before", [](Variant& v) {
             v = Variant(std::make_shared<SomeObject>());
             v = 5;
         });
     }},
    {"Variant: assign to itself",
     [] { return on_variant(1234567, [](Variant& v) { v.assign(long_text()); }); }},
    {"Variant: assign to a String", [] { return on_reference<String>(u"before", 1234567.125); }},
    {"Variant: assign a text to a String",
     [] { return on_reference<String>(u"before", long_text()); }},
    {"Variant: assign to a Currency", [] { return on_reference(Currency::raw(5), number_text); }},
    {"Variant: assign to a Long", [] { return on_reference(Long{5}, u"  1234567,4   "); }},
    {"Variant: assign to a Date", [] { return on_reference(Date{5}, u"2024-05-17 12:34:56"); }},
    {"Variant: assign to a Variant", [] { return on_reference(Variant(5), long_text()); }},
    call("Failure", [] { return Failure(13).description(); }),
    call("Failure: with a text", [] { return Failure(13, sentence).description(); }),
    call("to_utf8", [] { return from_utf8(to_utf8(sentence)); }),
    call("to_ansi", [] { return from_ansi(to_ansi(sentence)); }),
    call("replace_all", [] { return replace_all(sentence, u"ą", u"a with a tail"); }),
    call("upper_case", [] { return upper_case(StringView(sentence)); }),
    call("lower_case", [] { return lower_case(StringView(sentence)); }),
    call("substring", [] { return substring(sentence, 3, 20); }),
    call("left_part", [] { return left_part(sentence, 20); }),
    call("right_part", [] { return right_part(sentence, 20); }),
    call("blanks", [] { return blanks(40); }),
    call("ValPrefix", [] { return ToText(ValPrefix(u"123456789012345678901234567890,5")); }),
    call("round_half_even",
         [] {
             return ToText(round_half_even(Decimal{1, 2, 3, 9, false}, 2));
         }),
    call("ToText of a Double", [] { return ToText(-1234567.890123); }),
    call("ToText of a Decimal",
         [] {
             return ToText(Decimal{1, 2, 3, 9, true});
         }),
    call("ToText of a Currency", [] { return ToText(Currency::raw(-123456789012345)); }),
    call("ToText of a Date", [] { return ToText(Date{45429.5}); }),
    call("ToCurrency", [] { return ToText(ToCurrency(number_text)); }),
    call("ToLong", [] { return ToText(ToLong(u"        1234567,5        ")); }),
    call("to_double", [] { return ToText(to_double(number_text)); }),
    call("IsNumericText", [] { return ToText(IsNumericText(number_text)); }),
    call("IsDateValue", [] { return ToText(IsDateValue(u"17 maja 2024 12:34:56")); }),
    call("ToDate", [] { return ToText(ToDate(u"2024-05-17 12:34:56")); }),
    call("FormatMask of a number", [] { return FormatMask(-1234567.891, u"0.0000 \"zł\""); }),
    call("FormatMask of a Currency",
         [] { return FormatMask(Currency::raw(123456789012345), u"#,##0.0000 \"zł\""); }),
    call("FormatMask of a Date",
         [] { return FormatMask(Date{45429.5}, u"dddd, d mmmm yyyy hh:nn:ss"); }),
    call("FormatMask of a text", [] { return FormatMask(long_text(), u">@@@@@@ @@@@@@@@@@"); }),
};

class ValueLayer : public testing::TestWithParam<Case> {};

TEST_P(ValueLayer, OutOfMemory) {
    check(GetParam());
}

INSTANTIATE_TEST_SUITE_P(FailingNew, ValueLayer, testing::ValuesIn(cases));

}  // namespace
}  // namespace kvarta16::failing_new_tests
