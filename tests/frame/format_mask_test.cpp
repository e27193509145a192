// FormatMask: a table, the number masks against arithmetic on written-out digits, and every day
// under the date masks against <chrono>.

#include <array>
#include <chrono>
#include <limits>

#include <gtest/gtest.h>

#include <kvarta16/frame/value.h>

#include "frame_support.h"
#include "reference.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;

constexpr StringView number_masks[] = {u"0", u"0.0", u"0.00", u"0.000", u"0.0000", u"0.00000"};

TEST(FormatMask, GivesWhatTheTableTells) {
    for (const Row& row : rows_of("format_mask.tsv", 4)) {
        const Variant mask = parse_value("String " + row.cells[0]);
        const std::string& cell = row.cells[2];
        const std::string expected =
            cell[0] == '!' ? cell : notation(parse_value("String " + cell));
        const Forms forms(parse_value(row.cells[1]));
        for (const Form& form : forms.all()) {
            EXPECT_EQ(outcome([&] { return FormatMask(*form.value, *mask.get_if<String>()); }),
                      expected)
                << row.place << " " << row.cells[0] << " " << row.cells[1] << ", " << form.name;
        }
    }
}

// ---- Money ------------------------------------------------------------------------------------

void expect_money(std::int64_t count) {
    const Currency value = Currency::raw(count);
    std::string digits = std::to_string(count);
    std::erase(digits, '-');
    for (int decimals = 0; decimals <= 5; ++decimals) {
        const StringView mask = number_masks[decimals];
        const Exact number{count < 0, digits, -4};
        if (count < 0 && rounded(number, decimals, Tie::AwayFromZero) == "0") {
            continue;  // a negative number that the mask shows as zero: its sign is not settled
        }
        const String expected = fixed_text(number, decimals);
        ASSERT_EQ(FormatMask(value, mask), expected) << count;
        ASSERT_EQ(FormatMask(Variant(value), mask), expected) << count;
    }
}

TEST(FormatMask, RoundsMoneyHalfAwayFromZero) {
    for (std::int64_t count = -50'000; count <= 50'000; ++count) {
        expect_money(count);
    }
    for (std::int64_t beside = 0; beside < 10'000; ++beside) {
        expect_money(std::numeric_limits<std::int64_t>::max() - beside);
        expect_money(std::numeric_limits<std::int64_t>::min() + beside);
    }
    Random random(31);
    for (int i = 0; i < random_cases / 4; ++i) {
        expect_money(random.count());
        if (HasFatalFailure()) {
            return;
        }
    }
}

// ---- Double, Single, Decimal ------------------------------------------------------------------

// `digits` is the number at the digits of its type.
void expect_number(const Variant& value, const Exact& digits) {
    for (int decimals = 0; decimals <= 5; ++decimals) {
        if (digits.is_negative && rounded(digits, decimals, Tie::AwayFromZero) == "0") {
            continue;  // as for money
        }
        ASSERT_EQ(FormatMask(value, number_masks[decimals]), fixed_text(digits, decimals))
            << notation(value);
    }
}

void expect_double(double value) {
    const Reduced digits = reduced(value, 15);
    if (!digits.is_tie) {
        expect_number(value, digits.number);
    }
}

TEST(FormatMask, RoundsFifteenDigitsOfADouble) {
    Random random(32);
    for (int i = 0; i < random_cases / 10; ++i) {
        expect_double(random.any_double());
        expect_double(static_cast<double>(random.count()) / 100'000.0);
        expect_double(std::ldexp(static_cast<double>(random.count()),
                                 static_cast<int>(random.between(-80, 20))));
        if (HasFatalFailure()) {
            return;
        }
    }
}

// Every tie of a mask's last place that a Double of few digits comes near to.
TEST(FormatMask, RoundsADoubleBesideATie) {
    for (int i = -100'000; i <= 100'000; i += sanitized_stride(11)) {
        for (const double scale : {10.0, 1000.0, 100'000.0}) {
            const double value = (10.0 * i + 5) / scale;
            expect_double(value);
            expect_double(std::nextafter(value, 0));
        }
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST(FormatMask, RoundsASingleAsItsDouble) {
    Random random(33);
    for (int i = 0; i < random_cases / 10; ++i) {
        const auto value =
            static_cast<Single>(static_cast<double>(random.between(-99'999'999, 99'999'999)) /
                                std::pow(10.0, static_cast<double>(random.between(0, 7))));
        for (int decimals = 0; decimals <= 5; ++decimals) {
            ASSERT_EQ(FormatMask(value, number_masks[decimals]),
                      FormatMask(Double{value}, number_masks[decimals]))
                << notation(value);
        }
    }
}

TEST(FormatMask, RoundsADecimalExactly) {
    Random random(34);
    for (int i = 0; i < random_cases / 4; ++i) {
        Decimal value;
        value.high = static_cast<std::uint32_t>(random.bits());
        value.middle = static_cast<std::uint32_t>(random.bits());
        value.low = static_cast<std::uint32_t>(random.bits());
        if (random.chance(70)) {
            value.high = 0;
            value.middle >>= random.between(0, 31);
        }
        value.scale = static_cast<std::uint8_t>(random.between(0, 28));
        value.negative = random.chance(50);
        expect_number(value, {value.negative, whole_digits(value), -value.scale});
    }
}

TEST(FormatMask, RoundsWholeNumbersToThemselves) {
    for (int i = -32768; i <= 32767; i += 7) {
        const Exact number{i < 0, std::to_string(std::abs(i)), 0};
        expect_number(static_cast<Integer>(i), number);
        expect_number(Long{i}, number);
        expect_number(wide(std::to_string(i)), number);
    }
}

TEST(FormatMask, ReadsANumericTextFirst) {
    for (int thousandths = -20'000; thousandths <= 20'000; ++thousandths) {
        const std::string digits = std::to_string(std::abs(thousandths));
        const Exact number{thousandths < 0, digits, -3};
        expect_number(fixed_text(number, 3), number);
        expect_number(plain_text(number, 1000), number);
    }
}

TEST(FormatMask, TakesAnyNumberOfDecimals) {
    Random random(35);
    for (int i = 0; i < 20'000; ++i) {
        const auto decimals = static_cast<int>(random.between(0, 60));
        const auto zeros = static_cast<std::size_t>(random.between(1, 40));
        const String mask = String(zeros, u'0') + (decimals > 0 ? u"." : u"") +
                            String(static_cast<std::size_t>(decimals), u'0');
        const auto with_zeros = [&](const Exact& number) {
            String text = fixed_text({false, number.digits, number.power}, decimals);
            const std::size_t whole = std::min(text.find(u','), text.size());
            text.insert(0, whole < zeros ? zeros - whole : 0, u'0');
            return (number.is_negative ? u"-" : u"") + text;
        };
        const std::int64_t count = random.count();
        std::string digits = std::to_string(count);
        std::erase(digits, '-');
        const Exact money{count < 0, digits, -4};
        if (count >= 0 || rounded(money, decimals, Tie::AwayFromZero) != "0") {
            ASSERT_EQ(FormatMask(Currency::raw(count), mask), with_zeros(money));
            ASSERT_EQ(FormatMask(Variant(Currency::raw(count)), mask), with_zeros(money));
        }
        const double value = static_cast<double>(random.count()) / 65536.0;
        const Reduced number = reduced(value, 15);
        if (!number.is_tie &&
            (value >= 0 || rounded(number.number, decimals, Tie::AwayFromZero) != "0")) {
            ASSERT_EQ(FormatMask(Variant(value), mask), with_zeros(number.number)) << value;
        }
    }
}

// The short way for money has to agree with the long one under every mask.
TEST(FormatMask, OfMoneyIsTheSameWithoutAVariant) {
    for (const char16_t* mask : {u"", u"0", u"0.", u".0", u".", u"0.0", u"00.00", u"0:00",
                                 u"0.00 z\u0142", u"0-00", u"0.0.0", u"yyyy-MM-dd", u"dddd", u"ww",
                                 u"abc", u"000000000000000000000000000000000000"}) {
        for (const std::int64_t count :
             {0LL, 1LL, -1LL, 5000LL, -5000LL, 123456LL, 454'290'000LL, -12'500LL}) {
            const Currency value = Currency::raw(count);
            EXPECT_EQ(outcome([&] { return FormatMask(value, mask); }),
                      outcome([&] { return FormatMask(Variant(value), mask); }))
                << show(StringView(mask)) << ", " << count;
        }
    }
}

TEST(FormatMask, PutsAColonBeforeTheLastTwoDigits) {
    for (int i = -32768; i <= 32767; ++i) {
        char text[20];
        const int magnitude = std::abs(i);
        std::snprintf(text, sizeof text, "%s%d:%02d", i < 0 ? "-" : "", magnitude / 100,
                      magnitude % 100);
        ASSERT_EQ(FormatMask(Variant(static_cast<Integer>(i)), u"0:00"), wide(text));
    }
}

// ---- Every day --------------------------------------------------------------------------------

constexpr StringView day_names[] = {u"niedziela", u"poniedzia\u0142ek", u"wtorek", u"\u015Broda",
                                    u"czwartek",  u"pi\u0105tek",       u"sobota"};

// The week of the year by counting: a new one begins on every first day of the week.
int week_by_counting(std::chrono::sys_days day, std::chrono::weekday first_day) {
    using namespace std::chrono;
    const year_month_day civil{day};
    int week = 1;
    for (sys_days d = sys_days{civil.year() / January / 2}; d <= day; d += days{1}) {
        week += weekday{d} == first_day ? 1 : 0;
    }
    return week;
}

TEST(FormatMask, AgreesWithChronoOnEveryDay) {
    using namespace std::chrono;
    const sys_days origin{1899y / December / 30};
    int year_of_week = 0;
    int monday_week = 0;
    int sunday_week = 0;
    for (std::int32_t number = first_day_number; number <= last_day_number; ++number) {
        const sys_days day = origin + days{number};
        const year_month_day civil{day};
        const auto y = static_cast<int>(civil.year());
        const auto m = static_cast<unsigned>(civil.month());
        const auto d = static_cast<unsigned>(civil.day());
        if (y != year_of_week) {
            year_of_week = y;
            monday_week = 1;
            sunday_week = 1;
        } else {
            monday_week += weekday{day} == Monday ? 1 : 0;
            sunday_week += weekday{day} == Sunday ? 1 : 0;
        }
        if (number % sanitized_stride(11) != 0) {
            continue;
        }
        char text[20];
        std::snprintf(text, sizeof text, "%04d-%02u-%02u", y, m, d);
        const Variant value = Date{static_cast<double>(number)};
        ASSERT_EQ(FormatMask(value, u"yyyy-MM-dd"), wide(text));
        ASSERT_EQ(FormatMask(value, u"dddd"), day_names[weekday{day}.c_encoding()]) << text;
        ASSERT_EQ(FormatMask(value, u"ww"), wide(std::to_string(monday_week))) << text;
        ASSERT_EQ(FormatMask(value, u"ww", WeekStart::Sunday), wide(std::to_string(sunday_week)))
            << text;
    }
}

TEST(FormatMask, CountsWeeksFromTheDayAskedFor) {
    using namespace std::chrono;
    for (int y = 1990; y <= 2030; ++y) {
        for (sys_days day{year{y} / January / 1}; day <= sys_days{year{y} / December / 31};
             day += days{13}) {
            const Variant value =
                Date{static_cast<double>((day - sys_days{1899y / December / 30}).count())};
            ASSERT_EQ(FormatMask(value, u"ww", WeekStart::Monday),
                      wide(std::to_string(week_by_counting(day, Monday))));
            ASSERT_EQ(FormatMask(value, u"ww", WeekStart::Sunday),
                      wide(std::to_string(week_by_counting(day, Sunday))));
        }
    }
    // The other masks do not look at it.
    EXPECT_EQ(FormatMask(Variant(Date{45429}), u"dddd yyyy", WeekStart::Sunday),
              u"pi\u0105tek 2024");
}

TEST(FormatMask, KeepsTheDayWhateverTheTime) {
    for (const std::int32_t day : {45429, 1, -1, -657434, 2958465}) {
        const String expected = FormatMask(Variant(Long{day}), u"yyyy-MM-dd");
        for (int second = 0; second < 86400; ++second) {
            const double time = second / 86400.0;
            const Variant moment = Date{day < 0 ? day - time : day + time};
            ASSERT_EQ(FormatMask(moment, u"yyyy-MM-dd"), expected) << second;
            char text[20];
            std::snprintf(text, sizeof text, "%02d:%02d:%02d", second / 3600, second / 60 % 60,
                          second % 60);
            ASSERT_EQ(FormatMask(moment, u"hh:nn:ss"), wide(text)) << day;
        }
    }
}

TEST(FormatMask, GivesThreeLettersOfADay) {
    for (int day = 45425; day < 45432; ++day) {
        EXPECT_EQ(FormatMask(Variant(Long{day}), u"ddd").size(), 3u);
    }
}

TEST(FormatMask, WritesNothingIntoItsArguments) {
    String text = u"12,5";
    const String mask = u"0.00";
    EXPECT_EQ(FormatMask(Variant::reference(text), mask), u"12,50");
    EXPECT_EQ(text, u"12,5");
}

}  // namespace
}  // namespace kvarta16
