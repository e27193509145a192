// How values are stored and read: dates in all forms that programs write, money over its whole
// range under each affinity of a column, and the declared types.

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <support/sanitized.h>
#include <support/sqlite_files.h>

#include <kvarta16/frame/value.h>
#include <kvarta16/platform/sqlite/sqlite_values.h>

namespace kvarta16::sqlite {
namespace {

using testing_support::caught;
using testing_support::sanitized_stride;

constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr Affinity affinities[] = {Affinity::Integer, Affinity::Text, Affinity::Blob,
                                   Affinity::Real, Affinity::Numeric};

Moment at(std::int32_t year, std::int32_t month, std::int32_t day, int hour = 0, int minute = 0,
          int second = 0, int millisecond = 0) {
    return {day_number(year, month, day),
            ((hour * 60 + minute) * 60 + second) * 1000 + millisecond};
}

// ---- Moments -----------------------------------------------------------------------------------

struct MomentCase {
    std::string_view text;
    MomentForm form;
    std::optional<Moment> moment;
};

const MomentCase moment_cases[] = {
    {"2001-12-31 00:00:00", MomentForm::stored, at(2001, 12, 31)},
    {"2001-12-31 15:30:59", MomentForm::stored, at(2001, 12, 31, 15, 30, 59)},
    {"2001-12-31 23:59:59.999", MomentForm::stored, at(2001, 12, 31, 23, 59, 59, 999)},
    {"2001-12-31 23:59:59.9999999", MomentForm::stored, at(2001, 12, 31, 23, 59, 59, 999)},
    {"2001-12-31 23:59:59.5", MomentForm::stored, at(2001, 12, 31, 23, 59, 59, 500)},
    {"2001-12-31 23:59:59,05", MomentForm::stored, at(2001, 12, 31, 23, 59, 59, 50)},
    {"2001-12-31", MomentForm::stored, at(2001, 12, 31)},
    {"2001-12-31T15:30:59", MomentForm::stored, at(2001, 12, 31, 15, 30, 59)},
    {"2001-12-31t15:30", MomentForm::stored, at(2001, 12, 31, 15, 30)},
    {"2001-12-31T15:30:59Z", MomentForm::stored, at(2001, 12, 31, 15, 30, 59)},
    {"2001-12-31T15:30:59.250z", MomentForm::stored, at(2001, 12, 31, 15, 30, 59, 250)},
    {"2001-12-31T23:30:00+01:00", MomentForm::stored, at(2001, 12, 31, 23, 30)},
    {"2001-12-31 23:30:00 -0230", MomentForm::stored, at(2001, 12, 31, 23, 30)},
    {"2001-12-31 23:30:00+01", MomentForm::stored, at(2001, 12, 31, 23, 30)},
    {"2001-12-31 23:30:00+01 ", MomentForm::stored, at(2001, 12, 31, 23, 30)},
    {"  2001-1-2   3:04  ", MomentForm::stored, at(2001, 1, 2, 3, 4)},
    {"2001/12/31", MomentForm::stored, at(2001, 12, 31)},
    {"2001.12.31 00:00:00", MomentForm::stored, at(2001, 12, 31)},
    {"2000-02-29", MomentForm::stored, at(2000, 2, 29)},
    {"0100-01-01", MomentForm::stored, at(100, 1, 1)},
    {"9999-12-31 23:59:59", MomentForm::stored, at(9999, 12, 31, 23, 59, 59)},
    {"12:30", MomentForm::stored, at(1899, 12, 30, 12, 30)},
    {"12:30:15.5", MomentForm::stored, at(1899, 12, 30, 12, 30, 15, 500)},
    {"", MomentForm::stored, std::nullopt},
    {"   ", MomentForm::stored, std::nullopt},
    {"2001", MomentForm::stored, std::nullopt},
    {"2001-12", MomentForm::stored, std::nullopt},
    {"2001-12-", MomentForm::stored, std::nullopt},
    {"2001-12-31x", MomentForm::stored, std::nullopt},
    {"2001-12-31T", MomentForm::stored, std::nullopt},
    {"2001-12-31 x", MomentForm::stored, std::nullopt},
    {"2001-12-31 1", MomentForm::stored, std::nullopt},
    {"2001-12-31 1:2", MomentForm::stored, std::nullopt},
    {"2001-12-31 24:00:00", MomentForm::stored, std::nullopt},
    {"2001-12-31 23:60", MomentForm::stored, std::nullopt},
    {"2001-12-31 23:59:60", MomentForm::stored, std::nullopt},
    {"2001-12-31 23:59:59.", MomentForm::stored, std::nullopt},
    {"2001-12-31 23:59:59+1", MomentForm::stored, std::nullopt},
    {"2001-12-31 23:59:59+01:", MomentForm::stored, std::nullopt},
    {"2001-12-3112:00", MomentForm::stored, std::nullopt},
    {"2001-13-01", MomentForm::stored, std::nullopt},
    {"2001-00-01", MomentForm::stored, std::nullopt},
    {"2001-02-29", MomentForm::stored, std::nullopt},
    {"2001-12-00", MomentForm::stored, std::nullopt},
    {"0099-12-31", MomentForm::stored, std::nullopt},
    {"01-12-31", MomentForm::stored, std::nullopt},
    {"12345-12-31", MomentForm::stored, std::nullopt},
    {"31-12-2001", MomentForm::stored, std::nullopt},
    {"-2001-12-31", MomentForm::stored, std::nullopt},

    {"2001-12-31", MomentForm::date, at(2001, 12, 31)},
    {"2001-12-31 00:00:00", MomentForm::date, std::nullopt},
    {"12:30", MomentForm::date, std::nullopt},
    {"12:30:00", MomentForm::time, at(1899, 12, 30, 12, 30)},
    {"2001-12-31", MomentForm::time, std::nullopt},
    {"2001-12-31 12:30:00", MomentForm::time, std::nullopt},
    {"2001-12-31 12:30:00", MomentForm::date_time, at(2001, 12, 31, 12, 30)},
    {"2001-12-31", MomentForm::date_time, std::nullopt},
    {"12:30:00", MomentForm::date_time, std::nullopt},

    {"12-31-2001 23:59:59", MomentForm::jet, at(2001, 12, 31, 23, 59, 59)},
    {"12/31/2001", MomentForm::jet, at(2001, 12, 31)},
    {"1/2/2001", MomentForm::jet, at(2001, 1, 2)},
    {"2001-12-31", MomentForm::jet, at(2001, 12, 31)},
    {"10:15:00", MomentForm::jet, at(1899, 12, 30, 10, 15)},
    {"31-12-2001", MomentForm::jet, std::nullopt},
    {"12-31-01", MomentForm::jet, std::nullopt},
    {"", MomentForm::jet, std::nullopt},
};

TEST(Moments, Texts) {
    for (const MomentCase& c : moment_cases) {
        EXPECT_EQ(parse_moment(c.text, c.form), c.moment)
            << c.text << " as form " << static_cast<int>(c.form);
    }
}

// The quick test agrees with the parser on every text of its length, and on every one that differs
// from a moment in one character.
TEST(Moments, TextsToSeconds) {
    std::vector<std::string> texts;
    for (const MomentCase& c : moment_cases) {
        texts.emplace_back(c.text);
    }
    for (const std::string_view text : {"2000-02-29 23:59:59", "0100-01-01 00:00:00"}) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            for (int c = 0; c < 256; ++c) {
                texts.emplace_back(text).at(i) = static_cast<char>(c);
            }
        }
    }
    for (const std::string& text : texts) {
        const auto moment = parse_moment(text);
        const bool canonical =
            moment && text == std::string(moment_text(*moment).data(), length_to_seconds);
        EXPECT_EQ(is_text_to_seconds(text), canonical) << text;
    }
}

TEST(Moments, NumbersOfDays) {
    EXPECT_EQ(moment_of_days(0), at(1899, 12, 30));
    EXPECT_EQ(moment_of_days(37256.625), at(2001, 12, 31, 15));
    EXPECT_EQ(moment_of_days(-1.25), at(1899, 12, 29, 6));
    EXPECT_EQ(moment_of_days(-0.25), at(1899, 12, 30, 6));
    // The noise of a Double is not a second less.
    EXPECT_EQ(moment_of_days(37256 + 86399.0 / 86400), at(2001, 12, 31, 23, 59, 59));
    EXPECT_EQ(moment_of_days(37255.9999999999), at(2001, 12, 31));
    EXPECT_EQ(moment_of_days(-1.9999999999), at(1899, 12, 30));
    EXPECT_EQ(moment_of_days(first_day_number), at(100, 1, 1));
    EXPECT_EQ(moment_of_days(first_day_number - 0.5), at(100, 1, 1, 12));
    EXPECT_EQ(moment_of_days(last_day_number + 0.5), at(9999, 12, 31, 12));
    EXPECT_EQ(moment_of_days(first_day_number - 1.0), std::nullopt);
    EXPECT_EQ(moment_of_days(last_day_number + 1.0), std::nullopt);
    EXPECT_EQ(moment_of_days(last_day_number + 0.9999999999), std::nullopt);
    EXPECT_EQ(moment_of_days(1.7e9), std::nullopt);
    EXPECT_EQ(moment_of_days(std::numeric_limits<Double>::quiet_NaN()), std::nullopt);
    EXPECT_EQ(moment_of_days(std::numeric_limits<Double>::infinity()), std::nullopt);
}

// The ends of every day of the calendar, to text and to days and back.
TEST(Moments, EveryDayBothWays) {
    constexpr std::int32_t times[] = {0, 86'399'999};
    std::string before;
    for (std::int32_t day = first_day_number; day <= last_day_number; day += sanitized_stride(11)) {
        for (const std::int32_t time : times) {
            const Moment moment{day, time};
            const std::string stored = stored_text(moment);
            const MomentText full = moment_text(moment);
            ASSERT_EQ(parse_moment(stored), moment) << stored;
            ASSERT_EQ(moment_of_days(date_of(moment).days), moment) << stored;
            std::string now(full.begin(), full.end());
            ASSERT_LT(before, now);  // texts compare as the moments do
            ASSERT_TRUE(is_text_to_seconds(now.substr(0, length_to_seconds)));
            before = std::move(now);
        }
    }
}

// ---- Money -------------------------------------------------------------------------------------

struct AmountCase {
    std::string_view text;
    std::optional<std::int64_t> count;
};
constexpr AmountCase amount_cases[] = {
    {"0", 0},
    {"12.5", 125000},
    {"12,5", 125000},
    {" -12.3456 ", -123456},
    {"+7", 70000},
    {".5", 5000},
    {"5.", 50000},
    {"0012.50", 125000},
    {"12.345600000", 123456},
    {"922337203685477.5807", largest},
    {"-922337203685477.5808", least},
    {"922337203685477.5808", std::nullopt},
    {"-922337203685477.5809", std::nullopt},
    {"99999999999999999999999", std::nullopt},
    {"12.34567", std::nullopt},
    {"1.2.3", std::nullopt},
    {"1 2", std::nullopt},
    {"", std::nullopt},
    {"-", std::nullopt},
    {".", std::nullopt},
    {"1e3", std::nullopt},
    {"abc", std::nullopt},
    {"--1", std::nullopt},
};

TEST(Money, Texts) {
    for (const AmountCase& c : amount_cases) {
        const auto amount = parse_amount(c.text);
        EXPECT_EQ(amount ? std::optional(amount->count) : std::nullopt, c.count) << c.text;
    }
    EXPECT_EQ(amount_text(Currency::raw(0)), "0");
    EXPECT_EQ(amount_text(Currency::raw(50)), "0.005");
    EXPECT_EQ(amount_text(Currency::raw(-1)), "-0.0001");
    EXPECT_EQ(amount_text(Currency::raw(125000)), "12.5");
    EXPECT_EQ(amount_text(Currency::raw(120000)), "12");
    EXPECT_EQ(amount_text(Currency::raw(largest)), "922337203685477.5807");
    EXPECT_EQ(amount_text(Currency::raw(least)), "-922337203685477.5808");
}

// The limits of the forms in which money is stored, and amounts of every size.
std::vector<std::int64_t> many_counts() {
    std::vector<std::int64_t> counts;
    const std::int64_t edges[] = {0,
                                  10'000,
                                  5'000'000'000'000'000,
                                  9'007'199'254'740'992,
                                  99'999'999'999'999'999,
                                  21'474'836'470'000,
                                  largest};
    for (const std::int64_t edge : edges) {
        for (std::int64_t offset = -20'001; offset <= 20'001; offset += 1) {
            if (offset <= 0 || edge <= largest - offset) {
                counts.push_back(edge + offset);
                counts.push_back(-(edge + offset));
            }
        }
    }
    counts.push_back(least);
    counts.push_back(least + 1);
    std::mt19937_64 random(16);
    for (int i = 0; i < 100'000; ++i) {
        const auto bits = static_cast<int>(random() % 64);
        counts.push_back(static_cast<std::int64_t>(random()) >> bits);
    }
    return counts;
}

// Under every affinity a Money column gives back what was put, and every other reader of what is
// stored gets the amount too: a text says it, and a Double times ten thousand is the count.
TEST(Money, ExactOverTheWholeRangeUnderEachAffinity) {
    for (const std::int64_t count : many_counts()) {
        const Currency amount = Currency::raw(count);
        for (const Affinity affinity : affinities) {
            const Cell cell = cell_of(amount, affinity);
            ASSERT_EQ(variant_of(cell, ColumnKind::Money), Variant(amount))
                << count << " under " << static_cast<int>(affinity);
            if (const auto* real = std::get_if<double>(&cell)) {
                ASSERT_EQ(ToCurrency(*real), amount) << count;
            } else if (const auto* whole = std::get_if<std::int64_t>(&cell)) {
                ASSERT_EQ(*whole * 10'000, count);
            } else if (const auto* blob = std::get_if<Blob>(&cell)) {
                ASSERT_EQ(blob->bytes, amount_text(amount));
                ASSERT_TRUE(affinity != Affinity::Text && affinity != Affinity::Blob) << count;
            } else {
                ASSERT_EQ(std::get<std::string>(cell), amount_text(amount));
                ASSERT_TRUE(affinity == Affinity::Text || affinity == Affinity::Blob) << count;
            }
        }
    }
}

TEST(Money, FormsOfStoring) {
    EXPECT_EQ(cell_of(Currency::raw(120'000), Affinity::Numeric), Cell(std::int64_t{12}));
    EXPECT_EQ(cell_of(Currency::raw(4'933'200), Affinity::Numeric), Cell(493.32));
    EXPECT_EQ(cell_of(Currency::raw(4'933'200), Affinity::Text), Cell(std::string("493.32")));
    EXPECT_EQ(cell_of(Currency::raw(largest), Affinity::Numeric),
              Cell(Blob{"922337203685477.5807"}));
    EXPECT_EQ(cell_of(Currency::raw(largest), Affinity::Integer),
              Cell(Blob{"922337203685477.5807"}));
    EXPECT_EQ(cell_of(Currency::raw(largest), Affinity::Real), Cell(Blob{"922337203685477.5807"}));
    EXPECT_EQ(cell_of(Currency::raw(largest), Affinity::Blob),
              Cell(std::string("922337203685477.5807")));
}

struct ReadingCase {
    Cell cell;
    ColumnKind kind;
    Variant value;
};

const ReadingCase reading_cases[] = {
    {Cell(), ColumnKind::Plain, Variant::null()},
    {Cell(), ColumnKind::Date, Variant::null()},
    {Cell(), ColumnKind::Money, Variant::null()},
    {Cell(), ColumnKind::Boolean, Variant::null()},
    {std::int64_t{7}, ColumnKind::Plain, Long{7}},
    {std::int64_t{2'147'483'647}, ColumnKind::Plain, Long{2'147'483'647}},
    {std::int64_t{2'147'483'648}, ColumnKind::Plain, 2147483648.0},
    {std::int64_t{-2'147'483'648}, ColumnKind::Plain, std::numeric_limits<Long>::min()},
    {std::int64_t{-2'147'483'649}, ColumnKind::Plain, -2147483649.0},
    {0.1, ColumnKind::Plain, 0.1},
    {std::string("zażółć"), ColumnKind::Plain, u"zażółć"},
    {std::string("12,5"), ColumnKind::Plain, u"12,5"},
    {Blob{"12.5"}, ColumnKind::Plain, Currency::raw(125'000)},
    {Blob{"bytes"}, ColumnKind::Plain, u"bytes"},

    {std::int64_t{12}, ColumnKind::Money, Currency::raw(120'000)},
    {std::int64_t{922'337'203'685'477}, ColumnKind::Money,
     Currency::raw(9'223'372'036'854'770'000)},
    {std::int64_t{922'337'203'685'478}, ColumnKind::Money, 922337203685478.0},
    {922337203685477.0, ColumnKind::Money, Currency::raw(9'223'372'036'854'770'000)},
    {12.5, ColumnKind::Money, Currency::raw(125'000)},
    {0.00001, ColumnKind::Money, 0.00001},
    {1.0 / 3, ColumnKind::Money, 1.0 / 3},
    {1e300, ColumnKind::Money, 1e300},
    {std::numeric_limits<Double>::infinity(), ColumnKind::Money,
     std::numeric_limits<Double>::infinity()},
    {std::string("12,5"), ColumnKind::Money, Currency::raw(125'000)},
    {std::string("12.5"), ColumnKind::Money, Currency::raw(125'000)},
    {std::string("0.00001"), ColumnKind::Money, u"0.00001"},
    {std::string("dużo"), ColumnKind::Money, u"dużo"},
    {Blob{"-922337203685477.5808"}, ColumnKind::Money, Currency::raw(least)},

    {std::string("2001-01-01 00:00:00"), ColumnKind::Date, Date{36892}},
    {std::string("2001-01-01"), ColumnKind::Date, Date{36892}},
    {std::string("2001-01-01T18:00:00"), ColumnKind::Date, Date{36892.75}},
    {std::int64_t{36892}, ColumnKind::Date, Date{36892}},
    {36892.5, ColumnKind::Date, Date{36892.5}},
    {std::string("wczoraj"), ColumnKind::Date, u"wczoraj"},
    {std::int64_t{1'700'000'000}, ColumnKind::Date, Long{1'700'000'000}},
    {Blob{"2001-01-01"}, ColumnKind::Date, u"2001-01-01"},

    {std::int64_t{-1}, ColumnKind::Boolean, true},
    {std::int64_t{1}, ColumnKind::Boolean, true},
    {std::int64_t{0}, ColumnKind::Boolean, false},
    {0.0, ColumnKind::Boolean, false},
    {std::string("1"), ColumnKind::Boolean, true},
    {std::string("True"), ColumnKind::Boolean, true},
    {std::string("FAŁSZ"), ColumnKind::Boolean, false},
    {std::string(" tak "), ColumnKind::Boolean, true},
    {std::string("nie wiem"), ColumnKind::Boolean, u"nie wiem"},
    {std::string("inf"), ColumnKind::Boolean, u"inf"},
};

TEST(Values, ReadByTheDeclaredType) {
    for (std::size_t i = 0; i < std::size(reading_cases); ++i) {
        const ReadingCase& c = reading_cases[i];
        EXPECT_EQ(variant_of(c.cell, c.kind), c.value) << "case " << i;
    }
}

TEST(Values, StoredBySubtype) {
    const auto stored = [](const Variant& value) { return cell_of(value, Affinity::Numeric); };
    EXPECT_EQ(stored(Variant()), Cell());
    EXPECT_EQ(stored(Variant::null()), Cell());
    EXPECT_EQ(stored(Integer{-7}), Cell(std::int64_t{-7}));
    EXPECT_EQ(stored(Long{70'000}), Cell(std::int64_t{70'000}));
    EXPECT_EQ(stored(Byte{255}), Cell(std::int64_t{255}));
    EXPECT_EQ(stored(true), Cell(std::int64_t{-1}));
    EXPECT_EQ(stored(false), Cell(std::int64_t{0}));
    EXPECT_EQ(stored(Boolean::from_raw(1)), Cell(std::int64_t{-1}));
    EXPECT_EQ(stored(Single{0.5}), Cell(0.5));
    EXPECT_EQ(stored(0.1), Cell(0.1));
    EXPECT_EQ(stored(Date{36892}), Cell(std::string("2001-01-01 00:00:00")));
    EXPECT_EQ(stored(Date{36892.625}), Cell(std::string("2001-01-01 15:00:00")));
    EXPECT_EQ(stored(Date{36892 + 500.0 / 86'400'000}),
              Cell(std::string("2001-01-01 00:00:00.500")));
    EXPECT_EQ(stored(u"zażółć"), Cell(std::string("zażółć")));
    EXPECT_EQ(stored(String(u"a\0b", 3)), Cell(std::string("a\0b", 3)));
    Currency variable = Currency::raw(125'000);
    EXPECT_EQ(stored(Variant::reference(variable)), Cell(12.5));

    const Decimal small{.low = 125, .scale = 1};
    EXPECT_EQ(stored(small), Cell(12.5));
    const Decimal fine{.low = 100'001, .scale = 5, .negative = true};
    EXPECT_EQ(stored(fine), Cell(Blob{"-1.00001"}));
    EXPECT_EQ(cell_of(fine, Affinity::Text), Cell(std::string("-1.00001")));
    const Decimal highest{.high = ~0U, .middle = ~0U, .low = ~0U};
    EXPECT_EQ(stored(highest), Cell(Blob{"79228162514264337593543950335"}));
    const Decimal tiny{.low = 1, .scale = 28};
    EXPECT_EQ(stored(tiny), Cell(Blob{"0.0000000000000000000000000001"}));
    EXPECT_EQ(stored(Decimal{.scale = 5}), Cell(std::int64_t{0}));
    EXPECT_EQ(stored(Decimal{.low = 100, .scale = 2}), Cell(std::int64_t{1}));
}

TEST(Values, RefusedBySubtype) {
    const auto failing = [](const Variant& value) {
        return caught([&] { static_cast<void>(cell_of(value, Affinity::Numeric)); }).number;
    };
    EXPECT_EQ(failing(std::numeric_limits<Double>::quiet_NaN()), error::overflow);
    EXPECT_EQ(failing(Date{3e6}), error::overflow);
    EXPECT_EQ(failing(Date{std::numeric_limits<Double>::quiet_NaN()}), error::overflow);
    EXPECT_EQ(failing(Variant::missing()), error::type_mismatch);
    EXPECT_EQ(failing(Variant::error(5)), error::type_mismatch);
    EXPECT_EQ(failing(ObjectPointer()), error::type_mismatch);
    EXPECT_EQ(failing(UnknownObject{}), error::type_mismatch);
}

struct TypeCase {
    std::string_view declared;
    Affinity affinity;
    ColumnKind kind;
};
constexpr TypeCase type_cases[] = {
    {"", Affinity::Blob, ColumnKind::Plain},
    {"INTEGER", Affinity::Integer, ColumnKind::Plain},
    {"SMALLINT", Affinity::Integer, ColumnKind::Plain},
    {"TEXT", Affinity::Text, ColumnKind::Plain},
    {"VARCHAR(50)", Affinity::Text, ColumnKind::Plain},
    {"CLOB", Affinity::Text, ColumnKind::Plain},
    {"BLOB", Affinity::Blob, ColumnKind::Plain},
    {"REAL", Affinity::Real, ColumnKind::Plain},
    {"Double Precision", Affinity::Real, ColumnKind::Plain},
    {"FLOAT", Affinity::Real, ColumnKind::Plain},
    {"STRING", Affinity::Numeric, ColumnKind::Plain},
    {"CHARINT", Affinity::Integer, ColumnKind::Plain},
    {"date", Affinity::Numeric, ColumnKind::Date},
    {"DateTime", Affinity::Numeric, ColumnKind::Date},
    {"TIMESTAMP WITH TIME ZONE", Affinity::Numeric, ColumnKind::Date},
    {"DATE TEXT", Affinity::Text, ColumnKind::Date},
    {"currency", Affinity::Numeric, ColumnKind::Money},
    {"MONEY", Affinity::Numeric, ColumnKind::Money},
    {"DECIMAL(19,4)", Affinity::Numeric, ColumnKind::Money},
    {"NUMERIC", Affinity::Numeric, ColumnKind::Money},
    {"MONEY REAL", Affinity::Real, ColumnKind::Money},
    {"BOOLEAN", Affinity::Numeric, ColumnKind::Boolean},
    {"bool", Affinity::Numeric, ColumnKind::Boolean},
    {"BIT", Affinity::Numeric, ColumnKind::Boolean},
    {"YesNo", Affinity::Numeric, ColumnKind::Boolean},
    {"LOGICAL", Affinity::Numeric, ColumnKind::Boolean},
    {"BITMAP", Affinity::Numeric, ColumnKind::Plain},
};

TEST(Values, DeclaredTypes) {
    for (const TypeCase& c : type_cases) {
        EXPECT_EQ(affinity_of(c.declared, false), c.affinity) << c.declared;
        EXPECT_EQ(kind_of(c.declared), c.kind) << c.declared;
    }
    EXPECT_EQ(affinity_of("ANY", false), Affinity::Numeric);
    EXPECT_EQ(affinity_of("ANY", true), Affinity::Blob);
}

}  // namespace
}  // namespace kvarta16::sqlite
