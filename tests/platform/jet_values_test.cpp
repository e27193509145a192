// The conversions, operators and patterns of the dialect, value by value.

#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>
#include <support/sqlite_files.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/platform/sqlite/jet_values.h>

namespace kvarta16::sqlite::jet {
namespace {

using testing_support::caught;

std::string shown(const Cell& cell) {
    if (const auto* whole = std::get_if<std::int64_t>(&cell)) {
        return std::to_string(*whole);
    }
    if (const auto* real = std::get_if<double>(&cell)) {
        return "real " + to_utf8(ToText(*real));
    }
    if (const auto* text = std::get_if<std::string>(&cell)) {
        return "'" + *text + "'";
    }
    const auto* blob = std::get_if<Blob>(&cell);
    return blob != nullptr ? "x'" + blob->bytes + "'" : "NULL";
}

Cell whole(std::int64_t value) {
    return value;
}
Cell text(const char* value) {
    return std::string(value);
}

struct Conversion {
    Cell value;
    ColumnKind kind;
    Integer type;
    Long size;
    std::string result;  // "" where it fails with `number`
    Long number = 0;
};

const Conversion conversions[] = {
    {Cell(), ColumnKind::Plain, dao::dbLong, 4, "NULL"},
    {Cell(), ColumnKind::Plain, dao::dbText, 5, "NULL"},

    {whole(255), ColumnKind::Plain, dao::dbByte, 1, "255"},
    {whole(256), ColumnKind::Plain, dao::dbByte, 1, "", 3421},
    {whole(-1), ColumnKind::Plain, dao::dbByte, 1, "", 3421},
    {2.5, ColumnKind::Plain, dao::dbInteger, 2, "2"},
    {3.5, ColumnKind::Plain, dao::dbInteger, 2, "4"},
    {-2.5, ColumnKind::Plain, dao::dbInteger, 2, "-2"},
    {32767.4, ColumnKind::Plain, dao::dbInteger, 2, "32767"},
    {32767.5, ColumnKind::Plain, dao::dbInteger, 2, "", 3421},
    {text("-32768"), ColumnKind::Plain, dao::dbInteger, 2, "-32768"},
    {text(" 12,5 "), ColumnKind::Plain, dao::dbLong, 4, "12"},
    {text("13.5"), ColumnKind::Plain, dao::dbLong, 4, "14"},
    {text("&H10"), ColumnKind::Plain, dao::dbLong, 4, "16"},
    {text(""), ColumnKind::Plain, dao::dbLong, 4, "", 3421},
    {text("12a"), ColumnKind::Plain, dao::dbLong, 4, "", 3421},
    {whole(2147483648), ColumnKind::Plain, dao::dbLong, 4, "", 3421},
    {whole(-2147483648), ColumnKind::Plain, dao::dbLong, 4, "-2147483648"},
    {text("2024-05-17"), ColumnKind::Date, dao::dbLong, 4, "45429"},
    {whole(std::numeric_limits<std::int64_t>::max()), ColumnKind::Plain, dbBigInt, 8,
     "9223372036854775807"},
    {9.3e18, ColumnKind::Plain, dbBigInt, 8, "", 3421},
    {9223372036854775807.0, ColumnKind::Plain, dbBigInt, 8, "", 3421},

    {text("12,5"), ColumnKind::Plain, dao::dbCurrency, 8, "real 12,5"},
    {text("12.5"), ColumnKind::Plain, dao::dbCurrency, 8, "real 12,5"},
    {text("1\u00A0234,56 "), ColumnKind::Plain, dao::dbCurrency, 8, "real 1234,56"},
    {text("0,00005"), ColumnKind::Plain, dao::dbCurrency, 8, "0"},
    {text("0.00006"), ColumnKind::Plain, dao::dbCurrency, 8, "real 0,0001"},
    {text("922337203685477,5807"), ColumnKind::Plain, dao::dbCurrency, 8,
     "x'922337203685477.5807'"},
    {text("922337203685477,5808"), ColumnKind::Plain, dao::dbCurrency, 8, "", 3421},
    {whole(922337203685478), ColumnKind::Plain, dao::dbCurrency, 8, "", 3421},
    {0.1, ColumnKind::Plain, dao::dbCurrency, 8, "real 0,1"},
    {0.1 + 0.2, ColumnKind::Plain, dao::dbCurrency, 8, "real 0,3"},
    {1e30, ColumnKind::Plain, dao::dbCurrency, 8, "", 3421},
    {whole(-1), ColumnKind::Boolean, dao::dbCurrency, 8, "-1"},
    {text("dwa"), ColumnKind::Plain, dao::dbCurrency, 8, "", 3421},

    {text("0,5"), ColumnKind::Plain, dao::dbDouble, 8, "real 0,5"},
    {whole(3), ColumnKind::Plain, dao::dbDouble, 8, "real 3"},
    {text("1e400"), ColumnKind::Plain, dao::dbDouble, 8, "", 3421},
    {0.1, ColumnKind::Plain, dao::dbSingle, 4, "real 0,100000001490116"},
    {1e39, ColumnKind::Plain, dao::dbSingle, 4, "", 3421},

    {text("2024-05-17"), ColumnKind::Plain, dao::dbDate, 8, "'2024-05-17 00:00:00'"},
    {text("17.05.2024 10:15"), ColumnKind::Plain, dao::dbDate, 8, "'2024-05-17 10:15:00'"},
    {text("17 maja 2024"), ColumnKind::Plain, dao::dbDate, 8, "'2024-05-17 00:00:00'"},
    {text("2024-02-30"), ColumnKind::Plain, dao::dbDate, 8, "", 3421},
    {text(""), ColumnKind::Plain, dao::dbDate, 8, "", 3421},
    {45429.25, ColumnKind::Plain, dao::dbDate, 8, "'2024-05-17 06:00:00'"},
    {whole(3000000), ColumnKind::Plain, dao::dbDate, 8, "", 3421},
    {text("2024-05-17T10:00:00.5"), ColumnKind::Date, dao::dbDate, 8, "'2024-05-17 10:00:00.500'"},

    {whole(1), ColumnKind::Plain, dao::dbBoolean, 1, "-1"},
    {whole(0), ColumnKind::Plain, dao::dbBoolean, 1, "0"},
    {0.5, ColumnKind::Plain, dao::dbBoolean, 1, "-1"},
    {text("True"), ColumnKind::Plain, dao::dbBoolean, 1, "-1"},
    {text("fałsz"), ColumnKind::Plain, dao::dbBoolean, 1, "0"},
    {text("może"), ColumnKind::Plain, dao::dbBoolean, 1, "", 3421},

    {text("abc"), ColumnKind::Plain, dao::dbText, 3, "'abc'"},
    {text("żółć"), ColumnKind::Plain, dao::dbText, 4, "'żółć'"},
    {text("abcd"), ColumnKind::Plain, dao::dbText, 3, "", 3163},
    {text(""), ColumnKind::Plain, dao::dbText, 3, "''"},
    {whole(1234), ColumnKind::Plain, dao::dbText, 3, "", 3163},
    {1.5, ColumnKind::Plain, dao::dbText, 3, "'1,5'"},
    {12.5, ColumnKind::Money, dao::dbMemo, 0, "'12,5'"},
    {text("2024-05-17 00:00:00"), ColumnKind::Date, dao::dbMemo, 0, "'2024-05-17'"},
    {whole(-1), ColumnKind::Boolean, dao::dbMemo, 0, "'-1'"},
    {text("x"), ColumnKind::Plain, dao::dbLongBinary, 0, "'x'"},
};

TEST(JetValues, Conversions) {
    for (const Conversion& one : conversions) {
        std::string result;
        const auto failure = caught([&] {
            result = shown(converted(one.value, one.kind, {one.type, one.size}));
        });
        EXPECT_EQ(result, one.result) << shown(one.value) << " to " << one.type;
        EXPECT_EQ(failure.number, one.number) << shown(one.value) << " to " << one.type;
    }
}

// Every amount of money comes through a text and through its own cell as it was.
TEST(JetValues, MoneyIsExact) {
    std::mt19937_64 random(16);
    for (int i = 0; i < 20'000; ++i) {
        const Currency amount = Currency::raw(static_cast<std::int64_t>(random()) >> (i % 60));
        const std::string digits = amount_text(amount);
        const Cell cell = converted(digits, ColumnKind::Plain, {dao::dbCurrency, 8});
        ASSERT_EQ(variant_of(cell, ColumnKind::Money), Variant(amount)) << digits;
        ASSERT_EQ(converted(cell, ColumnKind::Money, {dao::dbCurrency, 8}), cell) << digits;
        const Cell half = computed("-", cell, computed("-", cell, whole(1)));
        const bool lowest = amount.count < std::numeric_limits<std::int64_t>::min() + 10'000;
        ASSERT_TRUE(lowest || half == whole(1)) << digits;
    }
}

struct Operation {
    std::string symbol;
    Cell a;
    Cell b;
    std::string result;
    Long number = 0;
};

const Operation operations[] = {
    {"+", whole(2), whole(3), "5"},
    {"+", 0.1, 0.2, "real 0,3"},
    {"-", 0.3, 0.1, "real 0,2"},
    {"*", 1.1, whole(3), "real 3,3"},
    {"*", whole(3), 1.1, "real 3,3"},
    {"*", 0.5, 0.5, "real 0,25"},
    {"/", whole(1), whole(4), "real 0,25"},
    {"/", whole(1), whole(0), "", 11},
    {"\\", whole(7), whole(2), "3"},
    {"\\", whole(-7), whole(2), "-3"},
    {"\\", 7.6, whole(2), "4"},
    {"\\", whole(1), 0.4, "", 11},
    {"mod", whole(7), whole(4), "3"},
    {"mod", whole(-7), whole(4), "-3"},
    {"mod", whole(1), whole(0), "", 11},
    {"^", whole(2), whole(10), "real 1024"},
    {"^", whole(10), whole(400), "", 6},
    {"*", 1e300, 1e300, "", 6},
    {"+", whole(std::numeric_limits<std::int64_t>::max()), whole(1), "real 9,22337203685478E+18"},
    {"+", whole(922337203685477), whole(922337203685477), "real 1,84467440737095E+15"},
    {"+", text("12,5"), whole(1), "real 13,5"},
    {"+", text("a"), text("b"), "'ab'"},
    {"+", text("1"), text("2"), "'12'"},
    {"+", text("a"), whole(1), "", 3464},
    {"*", text(""), whole(1), "", 3464},
    {"+", Cell(), whole(1), "NULL"},
    {"*", whole(1), Cell(), "NULL"},
    {"+", text("a"), Cell(), "NULL"},
    {"&", text("a"), Cell(), "'a'"},
    {"&", Cell(), Cell(), "''"},
    {"&", whole(1), 1.5, "'11,5'"},
};

TEST(JetValues, Operators) {
    for (const Operation& one : operations) {
        std::string result;
        const auto failure = caught([&] { result = shown(computed(one.symbol, one.a, one.b)); });
        const std::string what = shown(one.a) + one.symbol + shown(one.b);
        EXPECT_EQ(result, one.result) << what;
        EXPECT_EQ(failure.number, one.number) << what;
    }
}

struct Pattern {
    StringView text;
    StringView pattern;
    bool fits;
};

const Pattern patterns[] = {
    {u"", u"", true},         {u"", u"*", true},          {u"", u"?", false},
    {u"abc", u"abc", true},   {u"ABC", u"abc", true},     {u"ŻÓŁĆ", u"żół?", true},
    {u"abc", u"a*", true},    {u"abc", u"*c", true},      {u"abc", u"*b*", true},
    {u"abc", u"a*b", false},  {u"abc", u"a?c", true},     {u"abc", u"ab", false},
    {u"abc", u"abcd", false}, {u"a1", u"a#", true},       {u"ab", u"a#", false},
    {u"abab", u"*ab", true},  {u"aab", u"*ab*", true},    {u"abcabd", u"*abd", true},
    {u"a", u"[abc]", true},   {u"d", u"[a-c]", false},    {u"d", u"[!a-c]", true},
    {u"b", u"[!a-c]", false}, {u"!", u"[!]", true},       {u"*", u"[*]", true},
    {u"x", u"[*]", false},    {u"a*b", u"a[*]b", true},   {u"[", u"[[]", true},
    {u"a[b", u"a[b", true},   {u"5-", u"[0-9][-]", true}, {u"-", u"[a-]", true},
    {u"a%", u"a%", true},     {u"ab", u"a%", false},      {u"a_", u"a_", true},
    {u"", u"***", true},      {u"abc", u"***", true},     {u"abc", u"a**c", true},
};

TEST(JetValues, Patterns) {
    for (const Pattern& one : patterns) {
        EXPECT_EQ(is_like(one.text, one.pattern), one.fits)
            << to_utf8(one.text) << " like " << to_utf8(one.pattern);
    }
    // A pattern that a simple matcher tries in exponentially many ways.
    String many;
    for (int i = 0; i < 500; ++i) {
        many += u"a*";
    }
    EXPECT_FALSE(is_like(String(2'000, u'a'), many + u"b"));
}

}  // namespace
}  // namespace kvarta16::sqlite::jet
