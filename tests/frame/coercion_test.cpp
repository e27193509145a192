// The coercions to numbers: a table of every subtype, then random values against exact arithmetic
// on written-out digits.

#include <limits>

#include <gtest/gtest.h>

#include <kvarta16/frame/value.h>

#include "frame_support.h"
#include "reference.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;

constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();

// ---- Tables -----------------------------------------------------------------------------------

// A cell holds a number, which is of the type of its column, or a failure.
std::string in_type(const char* type, const std::string& cell) {
    return cell[0] == '!' ? cell : notation(parse_value(std::string(type) + " " + cell));
}

TEST(Coercions, GiveWhatTheTableTells) {
    for (const Row& row : rows_of("coercions.tsv", 6)) {
        const Forms forms(parse_value(row.cells[0]));
        for (const Form& form : forms.all()) {
            SCOPED_TRACE(row.place + " " + row.cells[0] + ", " + form.name);
            EXPECT_EQ(static_cast<bool>(IsNumericText(*form.value)), row.cells[1] == "yes");
            EXPECT_EQ(outcome([&] { return ToCurrency(*form.value); }),
                      in_type("Currency", row.cells[2]));
            EXPECT_EQ(outcome([&] { return ToInteger16(*form.value); }),
                      in_type("Integer", row.cells[3]));
            EXPECT_EQ(outcome([&] { return ToLong(*form.value); }), in_type("Long", row.cells[4]));
        }
    }
}

TEST(Coercions, GiveWhatTheTableOfTheOtherTypesTells) {
    const auto expect = [](const auto& call, const char* type, const std::string& cell) {
        if (cell != ".") {
            EXPECT_EQ(outcome(call), in_type(type, cell));
        }
    };
    for (const Row& row : rows_of("other_coercions.tsv", 6)) {
        const Forms forms(parse_value(row.cells[0]));
        for (const Form& form : forms.all()) {
            SCOPED_TRACE(row.place + " " + row.cells[0] + ", " + form.name);
            expect([&] { return to_byte(*form.value); }, "Byte", row.cells[1]);
            expect([&] { return to_single(*form.value); }, "Single", row.cells[2]);
            expect([&] { return to_double(*form.value); }, "Double", row.cells[3]);
            expect([&] { return to_boolean(*form.value); }, "Boolean", row.cells[4]);
        }
    }
}

TEST(Coercions, GiveARawMinusOneAndZeroOnly) {
    EXPECT_EQ(IsNumericText(Variant(5)).raw, -1);
    EXPECT_EQ(IsNumericText(Variant(u"x")).raw, 0);
    EXPECT_EQ(IsNullValue(Variant::null()).raw, -1);
    EXPECT_EQ(IsNullValue(Variant()).raw, 0);
    EXPECT_EQ(IsDateValue(Variant(Date{1})).raw, -1);
    EXPECT_EQ(IsDateValue(Variant(1)).raw, 0);
}

TEST(IsNullValue, IsTrueForNullAlone) {
    for (const Variant& value : one_of_each_subtype()) {
        const Forms forms(value);
        for (const Form& form : forms.all()) {
            EXPECT_EQ(static_cast<bool>(IsNullValue(*form.value)), value.is(Subtype::Null))
                << notation(value) << ", " << form.name;
        }
    }
    String text;
    EXPECT_FALSE(static_cast<bool>(IsNullValue(Variant::reference(text))));
}

// ---- Whole numbers ----------------------------------------------------------------------------

TEST(Coercions, OfEveryIntegerAreExact) {
    for (int i = -32768; i <= 32767; ++i) {
        const auto value = static_cast<Integer>(i);
        ASSERT_EQ(ToCurrency(value).count, i * 10000LL);
        ASSERT_EQ(ToInteger16(value), value);
        ASSERT_EQ(ToLong(value), i);
        ASSERT_EQ(to_double(value), i);
        ASSERT_EQ(ToInteger16(Variant(Long{i})), value);
        ASSERT_EQ(ToInteger16(Variant(Currency::raw(i * 10000LL))), value);
        ASSERT_EQ(ToInteger16(Variant(Double{static_cast<double>(i)})), value);
    }
}

TEST(Coercions, OfLongsAreExact) {
    Random random(1);
    for (int i = 0; i < random_cases; ++i) {
        const Long value = wrap32(random.count());
        const bool fits = value >= -32768 && value <= 32767;
        ASSERT_EQ(ToCurrency(value).count, value * 10000LL);
        ASSERT_EQ(ToLong(value), value);
        ASSERT_EQ(failure_of([&] { return ToInteger16(value); }), fits ? 0 : 6) << value;
        ASSERT_EQ(to_double(value), value);
    }
}

// ---- Money ------------------------------------------------------------------------------------

Exact exact(Currency value) {
    std::string text = show(value);
    std::erase(text, '.');
    std::erase(text, '-');
    return {value.count < 0, text, -4};
}

void expect_coercions_of_money(Currency value) {
    const Variant held = value;
    ASSERT_EQ(ToCurrency(held), value);
    ASSERT_EQ(outcome([&] { return ToLong(held); }), expected_long(exact(value)));
    ASSERT_EQ(outcome([&] { return ToInteger16(held); }), expected_integer(exact(value)));
}

TEST(Coercions, OfMoneyGoToTheNearestWholeNumber) {
    for (std::int64_t count = -50'000; count <= 50'000; count += sanitized_stride(7)) {
        expect_coercions_of_money(Currency::raw(count));
    }
    for (const std::int64_t whole : {32767LL, -32768LL, 2147483647LL, -2147483648LL}) {
        for (std::int64_t beside = -12'000; beside <= 12'000; beside += sanitized_stride(7)) {
            expect_coercions_of_money(Currency::raw(whole * 10000 + beside));
        }
    }
    for (std::int64_t beside = 0; beside < 10'000; beside += sanitized_stride(7)) {
        expect_coercions_of_money(Currency::raw(highest - beside));
        expect_coercions_of_money(Currency::raw(lowest + beside));
    }
    Random random(2);
    for (int i = 0; i < random_cases; ++i) {
        expect_coercions_of_money(Currency::raw(random.count()));
    }
}

// The Double nearest to a number as the notation shows it.
double nearest_double(const std::string& shown) {
    return std::strtod(shown.c_str(), nullptr);
}

TEST(Coercions, OfMoneyToDoubleAreTheNearestOne) {
    Random random(3);
    for (int i = 0; i < random_cases; ++i) {
        for (const Currency value : {Currency::raw(random.count()),
                                     Currency::raw(static_cast<std::int64_t>(random.bits()))}) {
            ASSERT_EQ(to_double(value), nearest_double(show(value))) << show(value);
        }
    }
    EXPECT_EQ(to_double(Currency::raw(highest)), 922337203685477.5807);
    EXPECT_EQ(to_double(Currency::raw(lowest)), -922337203685477.5808);
}

// ---- Double -----------------------------------------------------------------------------------

// The nearest whole number of a Double, by its fraction and not by the rounding of the machine.
std::string nearest_whole(double value, double first, double beyond) {
    const double below = std::floor(value);
    const double fraction = value - below;
    const bool below_is_even = std::fmod(below, 2) == 0;
    const bool goes_up = fraction > 0.5 || (fraction == 0.5 && !below_is_even);
    const double nearest = below + (goes_up ? 1 : 0);
    if (!(nearest >= first && nearest < beyond)) {
        return "!6";
    }
    return std::to_string(static_cast<std::int64_t>(nearest));
}

void expect_coercions_of_double(double value) {
    const Variant held = value;
    const double product = value * 10000.0;
    const std::string count = nearest_whole(product, -0x1p63, 0x1p63);
    ASSERT_EQ(outcome([&] { return ToCurrency(held); }),
              count == "!6" ? count : notation(Currency::raw(std::stoll(count))))
        << show_number("%.17g", value);
    ASSERT_EQ(outcome([&] { return ToLong(held); }),
              expected_whole("Long", nearest_whole(value, -0x1p31, 0x1p31)))
        << show_number("%.17g", value);
    ASSERT_EQ(outcome([&] { return ToInteger16(held); }),
              expected_whole("Integer", nearest_whole(value, -0x1p15, 0x1p15)))
        << show_number("%.17g", value);
}

TEST(Coercions, OfDoublesAreThoseOfTheProduct) {
    Random random(4);
    for (int i = 0; i < random_cases; ++i) {
        expect_coercions_of_double(random.any_double());
        expect_coercions_of_double(static_cast<double>(random.count()) / 100'000.0);
        expect_coercions_of_double(std::ldexp(static_cast<double>(random.count()),
                                              static_cast<int>(random.between(-60, 10))));
    }
}

TEST(Coercions, OfDoublesGoToTheEvenOneOnATie) {
    constexpr int furthest = 400'000;
    // An odd stride, so that whole numbers and halves both come.
    constexpr int stride = furthest / (2 * random_cases) / 2 * 2 + 1;
    for (int half = -furthest; half <= furthest; half += stride * sanitized_stride(7)) {
        expect_coercions_of_double(half / 2.0);
        expect_coercions_of_double(half / 20000.0);
    }
    for (const double limit : {0x1p15, 0x1p31, 0x1p63 / 10000.0}) {
        double low = limit - 1;
        double high = -limit + 1;
        for (int i = 0; i < 2000; ++i) {
            expect_coercions_of_double(low);
            expect_coercions_of_double(high);
            low += 1.0 / 1024;
            high -= 1.0 / 1024;
        }
        double near = limit;
        for (int i = 0; i < 20; ++i) {
            expect_coercions_of_double(near);
            expect_coercions_of_double(-near);
            near = std::nextafter(near, i < 10 ? HUGE_VAL : 0);
        }
    }
}

TEST(Coercions, OfSinglesAndDatesAreThoseOfTheirDouble) {
    Random random(5);
    for (int i = 0; i < random_cases; ++i) {
        const auto single = static_cast<Single>(static_cast<double>(random.count()) / 65536.0);
        ASSERT_EQ(outcome([&] { return ToCurrency(single); }),
                  outcome([&] { return ToCurrency(Double{single}); }));
        ASSERT_EQ(outcome([&] { return ToLong(single); }),
                  outcome([&] { return ToLong(Double{single}); }));
        const double days = static_cast<double>(random.between(-657'434'000, 2'958'465'000)) / 1000;
        ASSERT_EQ(outcome([&] { return ToCurrency(Date{days}); }),
                  outcome([&] { return ToCurrency(days); }));
        ASSERT_EQ(outcome([&] { return ToLong(Date{days}); }),
                  outcome([&] { return ToLong(days); }));
        ASSERT_EQ(to_double(Date{days}), days);
    }
}

// ---- Decimal ----------------------------------------------------------------------------------

Decimal random_decimal(Random& random) {
    Decimal value;
    value.high = static_cast<std::uint32_t>(random.bits());
    value.middle = static_cast<std::uint32_t>(random.bits());
    value.low = static_cast<std::uint32_t>(random.bits());
    if (random.chance(60)) {
        value.high = 0;
    }
    if (random.chance(40)) {
        value.middle = 0;
    }
    value.scale = static_cast<std::uint8_t>(random.between(0, 28));
    value.negative = random.chance(50);
    return value;
}

TEST(Coercions, OfDecimalsAreExact) {
    Random random(6);
    for (int i = 0; i < random_cases; ++i) {
        const Decimal value = random_decimal(random);
        const Exact number{value.negative, whole_digits(value), -value.scale};
        ASSERT_EQ(outcome([&] { return ToCurrency(value); }), expected_currency(number))
            << show(value);
        ASSERT_EQ(outcome([&] { return ToLong(value); }), expected_long(number)) << show(value);
        ASSERT_EQ(outcome([&] { return ToInteger16(value); }), expected_integer(number))
            << show(value);
    }
}

TEST(Coercions, OfDecimalsToDoubleAreTheNearestOne) {
    Random random(61);
    for (int i = 0; i < random_cases; ++i) {
        const Decimal value = random_decimal(random);
        ASSERT_EQ(to_double(value), nearest_double(show(value))) << show(value);
    }
}

TEST(Coercions, OfDecimalsGoToTheEvenOneOnATie) {
    for (int count = -20'000; count <= 20'000; ++count) {
        for (const int scale : {1, 5}) {
            Decimal value;
            value.low = static_cast<std::uint32_t>(std::abs(count) * 5);
            value.negative = count < 0;
            value.scale = static_cast<std::uint8_t>(scale);
            const Exact number{value.negative, whole_digits(value), -scale};
            ASSERT_EQ(outcome([&] { return ToCurrency(value); }), expected_currency(number));
            ASSERT_EQ(outcome([&] { return ToLong(value); }), expected_long(number));
        }
    }
}

// ---- Text -------------------------------------------------------------------------------------

// A number and one of the texts that mean it.
struct NumberText {
    Exact number;
    String text;
};

String with_group_separators(Random& random, const std::string& digits) {
    String text;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        text += static_cast<char16_t>(digits[i]);
        if (i + 1 < digits.size() && random.chance(20)) {
            text += u'\u00A0';
        }
    }
    return text;
}

// Digits with a decimal separator somewhere among them, and an exponent.
NumberText random_magnitude(Random& random) {
    const std::string whole = random.digits(random.between(0, random.chance(90) ? 16 : 40));
    const std::int64_t most_decimals = random.chance(90) ? 6 : 40;
    const std::string decimals =
        random.digits(random.between(whole.empty() ? 1 : 0, most_decimals));
    NumberText result{{false, whole + decimals, -static_cast<int>(decimals.size())}, {}};
    result.text = random.chance(20) ? with_group_separators(random, whole) : wide(whole);
    if (!decimals.empty() || random.chance(10)) {
        result.text += u',';
    }
    result.text += wide(decimals);
    if (random.chance(20)) {
        const auto exponent = static_cast<int>(random.between(-30, 30));
        const char* plus = exponent >= 0 && random.chance(50) ? "+" : "";
        const std::string letter(1, "EeDd"[random.between(0, 3)]);
        result.text += wide(letter + plus + std::to_string(exponent));
        result.number.power += exponent;
    }
    return result;
}

NumberText random_number_text(Random& random) {
    NumberText result = random_magnitude(random);
    const bool has_symbol = random.chance(10);
    const String symbol = has_symbol ? u"z\u0142" : u"";
    switch (random.between(0, 4)) {
        case 0:
            result.text = u"-" + symbol + result.text;
            result.number.is_negative = true;
            break;
        case 1:
            result.text = u"(" + symbol + result.text + u")";
            result.number.is_negative = true;
            break;
        case 2:
            result.text = symbol + result.text + u"-";
            result.number.is_negative = true;
            break;
        case 3:
            result.text = (random.chance(50) ? u"+" : u"") + symbol + result.text;
            break;
        default:
            result.text = symbol + result.text + (random.chance(10) ? u"+" : u"");
            break;
    }
    if (random.chance(10)) {
        result.text = u" \t" + result.text + u"\n ";
    }
    return result;
}

void expect_coercions_of_text(const NumberText& given) {
    const Variant value = given.text;
    ASSERT_TRUE(static_cast<bool>(IsNumericText(value))) << show(given.text);
    ASSERT_EQ(outcome([&] { return ToCurrency(value); }), expected_currency(given.number))
        << show(given.text);
    ASSERT_EQ(outcome([&] { return ToLong(value); }), expected_long(given.number))
        << show(given.text);
    ASSERT_EQ(outcome([&] { return ToInteger16(value); }), expected_integer(given.number))
        << show(given.text);
}

TEST(Coercions, OfTextAreExact) {
    Random random(7);
    for (int i = 0; i < 2 * random_cases; ++i) {
        expect_coercions_of_text(random_number_text(random));
        if (HasFatalFailure()) {
            return;
        }
    }
}

// Ties and what stands one unit in the fortieth decimal beside them.
TEST(Coercions, OfTextSeeTheLastDigitOfALongText) {
    Random random(8);
    const auto expect_around = [](const std::string& digits, int power) {
        const std::string zeros(40, '0');
        const std::string nines(40, '9');
        std::string below = digits;
        below.back() = '4';
        const std::string variants[] = {digits, digits + zeros, digits + zeros + "1",
                                        below + nines};
        for (const std::string& text : variants) {
            const auto decimals = text.size() - digits.size() + static_cast<std::size_t>(-power);
            const std::string padded =
                std::string(decimals >= text.size() ? decimals - text.size() + 1 : 0, '0') + text;
            const std::string with_comma = padded.substr(0, padded.size() - decimals) + "," +
                                           padded.substr(padded.size() - decimals);
            for (const bool is_negative : {false, true}) {
                expect_coercions_of_text({{is_negative, text, -static_cast<int>(decimals)},
                                          wide((is_negative ? "-" : "") + with_comma)});
            }
        }
    };
    for (const char* count : {"922337203685477580", "9223372036854775807", "9223372036854775808",
                              "21474836475", "21474836485", "327675", "327685"}) {
        expect_around(std::string(count) + "5", -5);
        expect_around(count, -1);
    }
    for (int i = 0; i < random_cases / 20; ++i) {
        const std::string digits = random.digits(random.between(1, 19)) + "5";
        expect_around(digits, -5);
        expect_around(digits, -1);
        if (HasFatalFailure()) {
            return;
        }
    }
}

// Every count near zero and near the limits, written out and read back.
TEST(Coercions, OfTextReadWhatToTextWrites) {
    const auto expect_back = [](std::int64_t count) {
        const Variant value = Currency::raw(count);
        const String text = ToText(value);
        ASSERT_EQ(ToCurrency(text).count, count) << show(text);
    };
    for (std::int64_t count = -200'000; count <= 200'000; ++count) {
        expect_back(count);
    }
    for (std::int64_t beside = 0; beside < 20'000; ++beside) {
        expect_back(highest - beside);
        expect_back(lowest + beside);
    }
    Random random(9);
    for (int i = 0; i < random_cases; ++i) {
        expect_back(random.count());
        expect_back(static_cast<std::int64_t>(random.bits()));
    }
}

TEST(Coercions, OfTextToDoubleAreTheNearestOne) {
    Random random(10);
    for (int i = 0; i < random_cases; ++i) {
        const NumberText given = random_number_text(random);
        const std::string text = (given.number.is_negative ? "-" : "") + given.number.digits + "e" +
                                 std::to_string(given.number.power);
        ASSERT_EQ(to_double(given.text), std::strtod(text.c_str(), nullptr)) << show(given.text);
    }
    for (int i = 0; i < random_cases; ++i) {
        const double value = random.any_double();
        std::string text = show_number("%.17g", value);
        std::replace(text.begin(), text.end(), '.', ',');
        ASSERT_EQ(to_double(wide(text)), value) << text;
    }
}

}  // namespace
}  // namespace kvarta16
