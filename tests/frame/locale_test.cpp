// The locale object: Polish by default, replaced for a scope on one thread, and read by every
// primitive but ValPrefix.

#include <thread>

#include <gtest/gtest.h>

#include <kvarta16/frame/locale.h>
#include <kvarta16/frame/value.h>

#include "frame_support.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;

Locale with_a_dot() {
    Locale settings;
    settings.decimal_separator = u'.';
    settings.group_separator = u',';
    settings.currency_symbol = u"$";
    settings.date_order = DateOrder::MonthDayYear;
    settings.date_separator = u'/';
    settings.true_word = u"True";
    settings.false_word = u"False";
    settings.day_names = {u"Monday", u"Tuesday",  u"Wednesday", u"Thursday",
                          u"Friday", u"Saturday", u"Sunday"};
    settings.month_names = {u"January",   u"February", u"March",    u"April",
                            u"May",       u"June",     u"July",     u"August",
                            u"September", u"October",  u"November", u"December"};
    return settings;
}

TEST(LocaleSettings, ArePolishByDefault) {
    EXPECT_EQ(locale().decimal_separator, u',');
    EXPECT_EQ(locale().group_separator, u'\u00A0');
    EXPECT_EQ(locale().currency_symbol, u"z\u0142");
    EXPECT_EQ(locale().date_order, DateOrder::YearMonthDay);
    EXPECT_EQ(locale().true_word, u"Prawda");
    EXPECT_EQ(locale().false_word, u"Fa\u0142sz");
    EXPECT_EQ(locale().day_names[0], u"poniedzia\u0142ek");
    EXPECT_EQ(locale().month_names[11], u"grudzie\u0144");
}

TEST(LocaleSettings, AreReplacedForAScope) {
    const Locale* before = &locale();
    const Locale dot = with_a_dot();
    Locale apostrophe;
    apostrophe.decimal_separator = u'\'';
    {
        const ScopedLocale outer(dot);
        EXPECT_EQ(&locale(), &dot);
        {
            const ScopedLocale inner(apostrophe);
            EXPECT_EQ(&locale(), &apostrophe);
            EXPECT_EQ(ToText(Variant(1.5)), u"1'5");
        }
        EXPECT_EQ(&locale(), &dot);
        EXPECT_EQ(ToText(Variant(1.5)), u"1.5");
    }
    EXPECT_EQ(&locale(), before);
    EXPECT_EQ(ToText(Variant(1.5)), u"1,5");
}

TEST(LocaleSettings, EndWithAScopeThatAFailureLeaves) {
    const Locale dot = with_a_dot();
    step([&] {
        const ScopedLocale scope(dot);
        static_cast<void>(ToCurrency(Variant::null()));
    });
    EXPECT_EQ(locale().decimal_separator, u',');
}

TEST(LocaleSettings, BelongToTheThread) {
    const Locale dot = with_a_dot();
    const ScopedLocale scope(dot);
    char16_t seen_elsewhere = 0;
    std::thread([&] { seen_elsewhere = locale().decimal_separator; }).join();
    EXPECT_EQ(seen_elsewhere, u',');
    EXPECT_EQ(locale().decimal_separator, u'.');
}

// ---- The primitives ---------------------------------------------------------------------------

struct TextAndMoney {
    const char16_t* text;
    const char* expected;
};

constexpr TextAndMoney dotted_texts[] = {
    {u"1.5", "Currency 1.5000"},
    {u"1,234.5", "Currency 1234.5000"},
    {u"$5", "Currency 5.0000"},
    {u"$5.25", "Currency 5.2500"},
    {u"5 $", "Currency 5.0000"},
    {u"5.25 $", "!13"},
    {u"5 z\u0142", "!13"},
    {u"1\u00A0234", "!13"},
    {u"(1.5)", "Currency -1.5000"},
    {u"1.5E1", "Currency 15.0000"},
    {u"1.5.5", "!13"},
};

TEST(LocaleSettings, RuleNumericText) {
    const Locale dot = with_a_dot();
    const ScopedLocale scope(dot);
    for (const TextAndMoney& row : dotted_texts) {
        const Variant text = row.text;
        EXPECT_EQ(outcome([&] { return ToCurrency(text); }), row.expected) << notation(text);
        EXPECT_EQ(static_cast<bool>(IsNumericText(text)), row.expected[0] != '!');
    }
    EXPECT_EQ(ToLong(Variant(u"2.5")), 2);
    EXPECT_EQ(ToInteger16(Variant(u"3.5")), 4);
    EXPECT_EQ(to_double(Variant(u"0.1")), 0.1);
}

TEST(LocaleSettings, AreNothingToValPrefix) {
    Locale comma;
    comma.decimal_separator = u',';
    Locale odd;
    odd.decimal_separator = u'5';
    for (const Locale& settings : {comma, with_a_dot(), odd}) {
        const ScopedLocale scope(settings);
        EXPECT_EQ(ValPrefix(u"12.50"), 12.5);
        EXPECT_EQ(ValPrefix(u"12,50"), 12);
        EXPECT_EQ(ValPrefix(u"$5"), 0);
    }
}

TEST(LocaleSettings, RuleTheTextOfNumbers) {
    const Locale dot = with_a_dot();
    const ScopedLocale scope(dot);
    EXPECT_EQ(ToText(Variant(12.5)), u"12.5");
    EXPECT_EQ(ToText(Variant(1.5F)), u"1.5");
    EXPECT_EQ(ToText(Variant(1.5e20)), u"1.5E+20");
    EXPECT_EQ(ToText(Variant(Currency::raw(125000))), u"12.5");
    EXPECT_EQ(ToText(parse_value("Decimal 1.005")), u"1.005");
    EXPECT_EQ(ToText(Variant(1234567)), u"1234567");
}

TEST(LocaleSettings, RuleTheMasksOfNumbers) {
    const Locale dot = with_a_dot();
    const ScopedLocale scope(dot);
    EXPECT_EQ(FormatMask(Variant(12.5), u"0.00"), u"12.50");
    EXPECT_EQ(FormatMask(Currency::raw(125000), u"0.00"), u"12.50");
    EXPECT_EQ(FormatMask(Variant(u"1.5"), u"0.00"), u"1.50");
    EXPECT_EQ(FormatMask(Variant(u"1;5"), u"0.00"), u"1;5");
    EXPECT_EQ(FormatMask(Variant(130), u"0:00"), u"1:30");
}

TEST(LocaleSettings, RuleTheNamesOfDates) {
    const Locale dot = with_a_dot();
    const ScopedLocale scope(dot);
    const Variant day = Date{45429};
    EXPECT_EQ(FormatMask(day, u"dddd"), u"Friday");
    EXPECT_EQ(FormatMask(day, u"mmmm yyyy"), u"May 2024");
    EXPECT_EQ(FormatMask(day, u"yyyy-MM-dd"), u"2024-05-17");
}

TEST(LocaleSettings, RuleTheMonthsThatAreRead) {
    const Locale dot = with_a_dot();
    const ScopedLocale scope(dot);
    EXPECT_EQ(outcome([] { return ToDate(Variant(u"17 May 2024")); }), "Date 45429");
    EXPECT_EQ(outcome([] { return ToDate(Variant(u"17 may 2024")); }), "Date 45429");
    EXPECT_EQ(outcome([] { return ToDate(Variant(u"17 August 2024")); }), "Date 45521");
    EXPECT_EQ(outcome([] { return ToDate(Variant(u"17 sierpie\u0144 2024")); }), "!13");
}

TEST(LocaleSettings, RuleTheWordsOfTruth) {
    Locale german;
    german.true_word = u"Wahr";
    german.false_word = u"Falsch";
    const ScopedLocale scope(german);
    EXPECT_EQ(ToText(Variant(true)), u"Wahr");
    EXPECT_EQ(ToText(Variant(false)), u"Falsch");
    EXPECT_EQ(outcome([] { return to_boolean(Variant(u"wahr")); }), "Boolean -1");
    EXPECT_EQ(outcome([] { return to_boolean(Variant(u"FALSCH")); }), "Boolean 0");
    EXPECT_EQ(outcome([] { return to_boolean(Variant(u"True")); }), "Boolean -1");
    EXPECT_EQ(outcome([] { return to_boolean(Variant(u"false")); }), "Boolean 0");
    EXPECT_EQ(outcome([] { return to_boolean(Variant(u"Prawda")); }), "!13");
}

struct OrderedDate {
    const char* text;
    DateOrder order;
    const char* expected;
};

constexpr OrderedDate ordered_dates[] = {
    {"05-06-07", DateOrder::YearMonthDay, "2005-06-07"},
    {"05-06-07", DateOrder::DayMonthYear, "2007-06-05"},
    {"05-06-07", DateOrder::MonthDayYear, "2007-05-06"},
    {"05-06-2024", DateOrder::YearMonthDay, "2024-06-05"},
    {"05-06-2024", DateOrder::DayMonthYear, "2024-06-05"},
    {"05-06-2024", DateOrder::MonthDayYear, "2024-05-06"},
    {"2024-05-17", DateOrder::YearMonthDay, "2024-05-17"},  // in every locale
    {"2024-05-17", DateOrder::DayMonthYear, "2024-05-17"},
    {"2024-05-17", DateOrder::MonthDayYear, "2024-05-17"},
    {"2024-05-06", DateOrder::DayMonthYear, "2024-05-06"},
    {"2024-05-06", DateOrder::MonthDayYear, "2024-05-06"},
    {"2024-05-17 13:45:00", DateOrder::MonthDayYear, "2024-05-17 13:45:00"},
};

TEST(LocaleSettings, RuleTheOrderInWhichADateIsRead) {
    for (const OrderedDate& row : ordered_dates) {
        Locale settings;
        settings.date_order = row.order;
        const ScopedLocale scope(settings);
        EXPECT_EQ(outcome([&] { return ToDate(Variant(wide(row.text))); }),
                  notation(parse_date(row.expected)))
            << row.text << ", order " << static_cast<int>(row.order);
        EXPECT_TRUE(static_cast<bool>(IsDateValue(Variant(wide(row.text)))));
    }
}

}  // namespace
}  // namespace kvarta16
