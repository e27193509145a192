// PoliczWyrażenie: which texts are expressions, what they come to, and what the caller's variable
// holds afterwards; the computing while reading against the table of operators and operands.
#include <cmath>
#include <optional>

#include "numbers_support.h"

namespace kvarta16::numbers_tests {
namespace {

struct Outcome {
    String result;
    String st;

    friend bool operator==(const Outcome&, const Outcome&) = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out) {
    *out << show(outcome.result) << " with st " << show(outcome.st);
}

Outcome computed(StringView text) {
    Outcome outcome;
    outcome.st = text;
    outcome.result = numbers().PoliczWyrażenie(outcome.st);
    return outcome;
}

struct Case {
    StringView text;
    StringView result;
    StringView st;
};

void expect_cases(std::initializer_list<Case> cases) {
    for (const Case& test : cases) {
        EXPECT_EQ(computed(test.text), (Outcome{String(test.result), String(test.st)}))
            << show(test.text);
    }
}

TEST(Expression, ComputedTexts) {
    expect_cases({
        {u"=2+3", u"5,0000", u"2+3"},
        {u"  =2+3  ", u"5,0000", u"2+3"},
        {u"-5+3", u"-2,0000", u"-5+3"},
        {u"=-5+3", u"-2,0000", u"-5+3"},
        {u"  -5+3 ", u"-2,0000", u"-5+3"},
        {u"=5", u"5,0000", u"5"},
        {u"-5", u"-5,0000", u"-5"},
        {u"=-5", u"-5,0000", u"-5"},
        {u"=1,5*2", u"3,0000", u"1,5*2"},
        {u"=2 + 3", u"5,0000", u"2 + 3"},
        {u"=5 zł + 3 zł", u"8,0000", u"5 zł + 3 zł"},
        {u"=1\u00A0000+1", u"1001,0000", u"1\u00A0000+1"},
        {u"=1E2+1", u"101,0000", u"1E2+1"},
        {u"=1+(2)", u"3,0000", u"1+(2)"},  // here parentheses do not mean minus
        {u"=1*(2,5)", u"2,5000", u"1*(2,5)"},
        {u"=10- (2 zł) *(3)", u"24,0000", u"10- (2 zł) *(3)"},
        {u"=2^(0)", u"1,0000", u"2^(0)"},
        {u"=2/(0)", u"=2/(0)", u"2/(0)"},
        {u"=1/3", u"0,3333", u"1/3"},
        {u"=1/3*3", u"0,9999", u"1/3*3"},
        {u"=0", u"0,0000", u"0"},
        {u"-0", u"0,0000", u"-0"},
    });
}

TEST(Expression, OperatorsHaveOneRank) {
    expect_cases({
        {u"=2+3*4", u"20,0000", u"2+3*4"},
        {u"=10-2^2", u"64,0000", u"10-2^2"},
        {u"=2^3^2", u"64,0000", u"2^3^2"},
        {u"=7\\2", u"3,0000", u"7\\2"},
        {u"=7/2", u"3,5000", u"7/2"},
        {u"=-7\\2", u"-3,0000", u"-7\\2"},   // towards zero
        {u"=2,5\\1", u"2,0000", u"2,5\\1"},  // halves to the even number
        {u"=3,5\\1", u"4,0000", u"3,5\\1"},  //
        {u"=9\\2,5", u"4,0000", u"9\\2,5"},  //
        {u"=9\\3,5", u"2,0000", u"9\\3,5"},  //
        {u"=9\\(2)", u"4,0000", u"9\\(2)"},
        {u"=5000000000\\2", u"2500000000,0000", u"5000000000\\2"},
        // A quotient of so many digits comes to money through Double.
        {u"=922337203685477\\3", u"307445734561825,0240", u"922337203685477\\3"},
        {u"=5\\1E300", u"0,0000", u"5\\1E300"},
        {u"=4^0,5", u"2,0000", u"4^0,5"},
        {u"=2^(3)", u"8,0000", u"2^(3)"},
        {u"=-2^2", u"4,0000", u"-2^2"},
        {u"=-2^3", u"-8,0000", u"-2^3"},
        {u"=0^0", u"1,0000", u"0^0"},
    });
}

// A text comes back as it came, blanks included; the variable is trimmed and has lost its "=".
TEST(Expression, TextsThatAreNone) {
    expect_cases({
        {u"", u"", u""},
        {u"   ", u"   ", u""},
        {u"=", u"=", u""},
        {u" = ", u" = ", u""},
        {u"= 5", u"= 5", u" 5"},  // the blank behind the "=" is no number
        {u"1+2", u"1+2", u"1+2"},
        {u" 1+2 ", u" 1+2 ", u"1+2"},
        {u"+5", u"+5", u"+5"},
        {u"/5", u"/5", u"/5"},
        {u"*5", u"*5", u"*5"},
        {u" *5 ", u" *5 ", u"*5"},
        {u"\\5", u"\\5", u"\\5"},
        {u"^5", u"^5", u"^5"},
        {u"-", u"-", u"-"},
        {u"--5", u"--5", u"--5"},
        {u"-a", u"-a", u"-a"},
        {u"- 5", u"- 5", u"- 5"},
        {u"-,5", u"-,5", u"-,5"},
        {u"=-", u"=-", u"-"},
        {u"=+5", u"=+5", u"+5"},
        {u"==5", u"==5", u"=5"},
        {u"=,5", u"=,5", u",5"},
        {u"=&H10", u"=&H10", u"&H10"},
        {u"abc", u"abc", u"abc"},
        {u"\t=2+3", u"\t=2+3", u"\t=2+3"},  // only blanks are trimmed
        {u"=(1+2)*3", u"=(1+2)*3", u"(1+2)*3"},
        {u"=zł 5", u"=zł 5", u"zł 5"},
    });
}

TEST(Expression, FailuresGiveTheIncomingText) {
    expect_cases({
        {u"=1.5*2", u"=1.5*2", u"1.5*2"},        // 13: no number under a comma
        {u"=5/0", u"=5/0", u"5/0"},              // 11
        {u" =5/0 ", u" =5/0 ", u"5/0"},          //
        {u"=0/0", u"=0/0", u"0/0"},              //
        {u"=5\\0", u"=5\\0", u"5\\0"},           //
        {u"=5\\0,5", u"=5\\0,5", u"5\\0,5"},     // rounds to 0
        {u"=2*-3", u"=2*-3", u"2*-3"},           // 13: an empty operand
        {u"=5+", u"=5+", u"5+"},                 //
        {u"-5-", u"-5-", u"-5-"},                //
        {u"=1+2a", u"=1+2a", u"1+2a"},           // 13
        {u"=1E-2", u"=1E-2", u"1E-2"},           // 13: "1E"
        {u"=-2^0,5", u"=-2^0,5", u"-2^0,5"},     // 5
        {u"=10^300", u"=10^300", u"10^300"},     // 6
        {u"=1E300", u"=1E300", u"1E300"},        // 6
        {u"=1*1E300", u"=1*1E300", u"1*1E300"},  //
        {u"=1*1E999", u"=1*1E999", u"1*1E999"},  // 6: beyond Double
        {u"=900000000000000*2", u"=900000000000000*2", u"900000000000000*2"},
        {u"=900000000000000*2/2", u"=900000000000000*2/2", u"900000000000000*2/2"},
        {u"-1+++++++", u"-1+++++++", u"-1+++++++"},  // 9: more operators than the table has room
        {u"=1+=2", u"=1+=2", u"1+=2"},
        {u"=(1", u"=(1", u"(1"},
    });
}

// Each result is rounded to ten-thousandths at once, halves to the even one.
TEST(Expression, RoundsEachStep) {
    expect_cases({
        {u"=0,0001/2", u"0,0000", u"0,0001/2"},
        {u"=0,0005/2", u"0,0002", u"0,0005/2"},
        {u"=0,0007/2", u"0,0004", u"0,0007/2"},
        {u"=0,0001/2*2", u"0,0000", u"0,0001/2*2"},
        {u"=1,00005", u"1,0000", u"1,00005"},  // the first operand is money
        {u"=1,00015", u"1,0002", u"1,00015"},
        {u"=0,00004*100000", u"0,0000", u"0,00004*100000"},
        {u"=100000*0,00004", u"4,0000", u"100000*0,00004"},  // the others are Double
        {u"=2/3*3", u"2,0001", u"2/3*3"},
    });
}

TEST(Expression, ReadsAndWritesUnderTheLocale) {
    const Locale dot = dot_locale();
    const ScopedLocale scope(dot);
    expect_cases({
        {u"=1.5+1", u"2.5000", u"1.5+1"},
        {u"=1,5+1", u"=1,5+1", u"1,5+1"},
    });
}

// The start of an expression is told by one character, and of these only digits are numeric.
TEST(Expression, OfSingleCharactersDigitsAreNumeric) {
    for (std::uint32_t code = 0; code <= 0xFFFF; ++code) {
        const String text(1, static_cast<char16_t>(code));
        const bool is_digit = code >= u'0' && code <= u'9';
        ASSERT_EQ(static_cast<bool>(IsNumericText(text)), is_digit) << code;
        const String st = u"=" + text;
        ASSERT_EQ(computed(st).result != st, is_digit) << code;
    }
}

// ---- The long way -------------------------------------------------------------------------------

// The operators and the operands side by side, from column 1.
class Tape {
  public:
    explicit Tape(const String& st) : operations_(st.size() / 2 + 3), operands_(st.size() / 2 + 3) {
        Long previous = 0;
        for (Long at = 2; at <= length(st); ++at) {
            const String unit = substring(st, at, 1);
            if (unit == u"-" || unit == u"+" || unit == u"/" || unit == u"\\" || unit == u"*" ||
                unit == u"^") {
                next_column();
                operations_[count_] = unit;
                operands_[count_] = substring(st, previous + 1, at - previous - 1);
                previous = at;
            }
        }
        next_column();
        operands_[count_] = substring(st, previous + 1);
    }

    [[nodiscard]] Currency value() const {
        Currency accumulator = ToCurrency(operands_[1]);
        for (std::size_t i = 2; i <= count_; ++i) {
            const Double read = to_double(operands_[i]);
            const bool is_enclosed = position_of(operands_[i], u"(") > 0;
            const Double right = is_enclosed ? -read : read;
            accumulator = ToCurrency(step_of(operations_[i - 1], to_double(accumulator), right));
        }
        return accumulator;
    }

  private:
    void next_column() {
        if (++count_ >= operations_.size()) {
            fail(error::subscript);
        }
    }

    static Double step_of(const String& operation, Double left, Double right) {
        if (operation == u"+") {
            return left + right;
        }
        if (operation == u"-") {
            return left - right;
        }
        if (operation == u"*") {
            return left * right;
        }
        if (operation == u"^") {
            if (left < 0 && std::floor(right) != right) {
                fail(error::invalid_call);
            }
            return std::pow(left, right);
        }
        if (operation == u"/") {
            if (right == 0) {
                fail(error::division_by_zero);
            }
            return left / right;
        }
        return static_cast<Double>(whole_quotient(left, right));
    }

    // In whole numbers, where they have room for them.
    static std::int64_t whole_quotient(Double left, Double right) {
        const Double left_whole = to_double(RoundHalfEven(left, 0));
        const Double right_whole = to_double(RoundHalfEven(right, 0));
        if (right_whole == 0) {
            fail(error::division_by_zero);
        }
        return std::abs(right_whole) > 9e18
                   ? 0
                   : static_cast<std::int64_t>(left_whole) / static_cast<std::int64_t>(right_whole);
    }

    std::vector<String> operations_;
    std::vector<String> operands_;
    std::size_t count_ = 0;
};

Outcome by_table(StringView text) {
    Outcome outcome{String(text), String(trim(text))};
    String& st = outcome.st;
    const String first = substring(st, 1, 1);
    if (first == u"=") {
        st = substring(st, 2);
    } else if (first != u"-" && first != u"+" && first != u"/" && first != u"*") {
        return outcome;
    }
    const Long place = substring(st, 1, 1) == u"-" ? 2 : 1;
    if (!IsNumericText(substring(st, place, 1))) {
        return outcome;
    }
    try {
        outcome.result = numbers().VarR4Str(Tape(st).value());
    } catch (const Failure&) {  // the incoming text stands
    }
    return outcome;
}

TEST(Expression, AllShortTextsAsByTheTable) {
    const std::vector<String> pieces = {u"=", u"-", u"+",  u"*", u"/",   u"\\", u"^",
                                        u"0", u"2", u",5", u" ", u"(3)", u"E"};
    int computed_ones = 0;
    frame_tests::for_all_texts(pieces, 5, [&](const String& text) {
        const Outcome expected = by_table(text);
        computed_ones += expected.result != text ? 1 : 0;
        ASSERT_EQ(computed(text), expected) << show(text);
    });
    EXPECT_GT(computed_ones, 1000);
}

TEST(Expression, RandomExpressionsAsByTheTable) {
    Random random(16);
    int computed_ones = 0;
    for (int i = 0; i < 50'000; i += sanitized_stride(7)) {
        String text = random.chance(90) ? u"=" : u"-";
        for (std::int64_t left = random.between(1, 6); left > 0; --left) {
            text += wide(random.digits(random.between(random.chance(3) ? 0 : 1, 5)));
            text += random.chance(40) ? u"," + wide(random.digits(random.between(0, 5))) : u"";
            text += left > 1 ? String(1, u"-+/\\*^"[random.bits() % 6]) : u"";
        }
        const Outcome expected = by_table(text);
        computed_ones += expected.result != text ? 1 : 0;
        ASSERT_EQ(computed(text), expected) << show(text);
    }
    EXPECT_GT(computed_ones, 10'000 / sanitized_stride(7));
}

TEST(Expression, OfAnyLength) {
    String sum = u"=1";
    for (int i = 1; i < 40'000; ++i) {
        sum += u"+1";
    }
    EXPECT_EQ(computed(sum).result, u"40000,0000");
    EXPECT_EQ(computed(sum + u"+").result, sum + u"+");
}

// ---- Late-bound calls ---------------------------------------------------------------------------

TEST(Expression, WritesToItsArgument) {
    struct Call {
        StringView before;
        StringView result;
        StringView after;
    };
    constexpr Call calls[] = {
        {u"=2+3", u"5,0000", u"2+3"},
        {u"  =2+3  ", u"5,0000", u"2+3"},
        {u" =5/0 ", u" =5/0 ", u"5/0"},
        {u" x ", u" x ", u"x"},
    };
    const MemberInfo* member = nullptr;
    for (const MemberInfo& entry : ClassTable<aLiczby>::members) {
        member = entry.name == u"PoliczWyrażenie" ? &entry : member;
    }
    ASSERT_NE(member, nullptr);
    for (const Call& call : calls) {
        Arguments arguments = {call.before};
        EXPECT_EQ(invoke(*member, &instance<aLiczby>(), arguments), Variant(call.result));
        EXPECT_EQ(arguments[0], Variant(call.after));
        String variable(call.before);
        Arguments reference = {Variant::reference(variable)};
        EXPECT_EQ(invoke(*member, &instance<aLiczby>(), reference), Variant(call.result));
        EXPECT_EQ(variable, call.after);
    }
    Arguments null = {Variant::null()};
    EXPECT_EQ(failure_of([&] { return invoke(*member, &instance<aLiczby>(), null); }), 94);
}

}  // namespace
}  // namespace kvarta16::numbers_tests
