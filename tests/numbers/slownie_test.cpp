// ClsSłownie: every amount to a million by another way of composing the words, and any text by
// the table and the reversed digits that the words are told by.
#include <array>
#include <cstdio>

#include <kvarta16/numbers/ClsSlownie.h>

#include "numbers_support.h"

namespace kvarta16::numbers_tests {
namespace {

String words(StringView text) {
    return ClsSłownie().slownie(text);
}

TEST(InWords, ByExample) {
    struct Case {
        StringView text;
        StringView result;
    };
    constexpr Case cases[] = {
        {u"123,45", u"StoDwadzieściaTrzy zł i 45 gr"},
        {u"1,00", u"Jeden zł i 00 gr"},
        {u"1", u"Jeden zł i 00 gr"},
        {u"0,50", u"zero  zł i 50 gr"},
        {u"0", u"zero  zł i 00 gr"},
        {u"", u" zł i 00 gr"},
        {u"-", u" zł i 00 gr"},
        {u",", u" zł i  gr"},
        {u",5", u" zł i 50 gr"},
        {u"5,", u"Pięć zł i  gr"},
        {u"1,234", u"Jeden zł i 234 gr"},
        {u"1,2,3", u"Jeden zł i 2,3 gr"},
        {u"1,x", u"Jeden zł i x0 gr"},
        {u"-15,20", u"Piętnaście zł i 20 gr"},
        {u"--15,20", u"Piętnaście zł i 20 gr"},  // the second one is a place of value 0
        {u"10,00", u"Dziesięć zł i 00 gr"},
        {u"20", u"Dwadzieścia zł i 00 gr"},
        {u"21", u"DwadzieściaJeden zł i 00 gr"},
        {u"110", u"StoDziesięć zł i 00 gr"},
        {u"111", u"StoJedenaście zł i 00 gr"},
        {u"1000", u"JedenTysiąc zł i 00 gr"},
        {u"2000", u"DwaTysiące zł i 00 gr"},
        {u"5000", u"PięćTysięcy zł i 00 gr"},
        {u"0000", u"zero Tysiączero  zł i 00 gr"},
        {u"0001", u"TysiącJeden zł i 00 gr"},
        {u"12000", u"DwanaścieTysiące zł i 00 gr"},
        {u"21000", u"DwadzieściaJedenTysięcy zł i 00 gr"},
        {u"22000", u"DwadzieściaDwaTysiące zł i 00 gr"},
        {u"1234,56", u"JedenTysiącDwieścieTrzydzieściCztery zł i 56 gr"},
        {u"1 234,56", u"DziesięćTysięcyDwieścieTrzydzieściCztery zł i 56 gr"},
        {u"12.50", u"DwanaścieTysiącePięćdziesiąt zł i 00 gr"},
        {u"1000000", u"JedenMilionTysięcy zł i 00 gr"},
        {u"10000000", u"DziesięćTysięcy zł i 00 gr"},
        {u"20000000", u"DwadzieściaTysięcy zł i 00 gr"},
        {u"11000000", u"JedenaścieMilionówTysięcy zł i 00 gr"},
        {u"2000000", u"DwaMilionyTysięcy zł i 00 gr"},
        {u"1234567890",
         u"JedenDwieścieTrzydzieściCzteryMilionyPięćsetSześćdziesiątSiedemTysięcyOsiemsetDziewięć"
         u"dziesiąt zł i 00 gr"},
        {u"abc", u"zero  zł i 00 gr"},
        {u" 5", u"Pięć zł i 00 gr"},
        {u"\u0665", u"zero  zł i 00 gr"},  // a digit of another script is none
    };
    for (const Case& test : cases) {
        EXPECT_EQ(words(test.text), test.result) << show(test.text);
    }
}

// ---- A second way of composing the words ------------------------------------------------------

constexpr std::array<StringView, 20> below_twenty = {
    u"",           u"Jeden",      u"Dwa",          u"Trzy",        u"Cztery",
    u"Pięć",       u"Sześć",      u"Siedem",       u"Osiem",       u"Dziewięć",
    u"Dziesięć",   u"Jedenaście", u"Dwanaście",    u"Trzynaście",  u"Czternaście",
    u"Piętnaście", u"Szesnaście", u"Siedemnaście", u"Osiemnaście", u"Dziewiętnaście"};
constexpr std::array<StringView, 10> tens = {u"",
                                             u"",
                                             u"Dwadzieścia",
                                             u"Trzydzieści",
                                             u"Czterdzieści",
                                             u"Pięćdziesiąt",
                                             u"Sześćdziesiąt",
                                             u"Siedemdziesiąt",
                                             u"Osiemdziesiąt",
                                             u"Dziewięćdziesiąt"};
constexpr std::array<StringView, 10> hundreds = {
    u"",        u"Sto",      u"Dwieście",  u"Trzysta",  u"Czterysta",
    u"Pięćset", u"Sześćset", u"Siedemset", u"Osiemset", u"Dziewięćset"};

// By the value, from 0 to 999.
String below_thousand(std::size_t number) {
    String text(hundreds[number / 100]);
    number %= 100;
    if (number >= 20) {
        text += tens[number / 10];
        number %= 10;
    }
    return text.append(below_twenty[number]);
}

// By the value, from 0 to 1 000 000.
String by_value(std::size_t zlote) {
    if (zlote == 0) {
        return u"zero ";
    }
    if (zlote < 1000) {
        return below_thousand(zlote);
    }
    if (zlote == 1'000'000) {
        return u"JedenMilionTysięcy";
    }
    const std::size_t thousands = zlote / 1000;
    StringView word = u"Tysięcy";
    if (thousands == 1) {
        word = u"Tysiąc";
    } else if (thousands % 10 >= 2 && thousands % 10 <= 4) {
        word = u"Tysiące";  // in the teens as well
    }
    return below_thousand(thousands).append(word) + below_thousand(zlote % 1000);
}

TEST(InWords, EveryAmountToAMillion) {
    for (std::size_t zlote = 0; zlote <= 1'000'000; zlote += sanitized_stride(11)) {
        const std::size_t grosze = zlote % 100;
        char text[32];
        std::snprintf(text, sizeof text, "%s%zu,%02zu", zlote % 7 == 0 ? "-" : "", zlote, grosze);
        const String expected = by_value(zlote) + u" zł i " +
                                static_cast<char16_t>(u'0' + grosze / 10) +
                                static_cast<char16_t>(u'0' + grosze % 10) + u" gr";
        ASSERT_EQ(words(wide(text)), expected) << text;
    }
}

// ---- The long way -----------------------------------------------------------------------------

// The table with its two columns that depend on the amount, and the words put from the units on,
// each before what is there.
class Table {
  public:
    explicit Table(const String& zlote) {
        const bool is_zero = ValPrefix(zlote) == 0;
        for (std::size_t digit = 0; digit < 10; ++digit) {
            column_[0][digit] = below_twenty[10 + digit];
            column_[1][digit] = below_twenty[digit];
            column_[2][digit] = digit == 1 ? below_twenty[10] : tens[digit];
            column_[3][digit] = hundreds[digit];
            column_[4][digit] = digit >= 5 ? u"Tysięcy" : u"Tysiące";
            column_[7][digit] = digit >= 5 ? u"Milionów" : u"Miliony";
        }
        column_[1][0] = is_zero ? u"zero " : u"";
        column_[4][0] = column_[4][1] = zlote.size() > 4 ? u"Tysięcy" : u"Tysiąc";
        column_[7][0] = u"";
        column_[7][1] = zlote.size() > 7 ? u"Milionów" : u"Milion";
    }

    [[nodiscard]] StringView word(std::size_t digit, std::size_t column) const {
        return column_.at(column).at(digit);
    }

  private:
    std::array<std::array<StringView, 10>, 8> column_{};
};

std::size_t value_at(const String& reversed, Long position) {
    return static_cast<std::size_t>(ValPrefix(substring(reversed, position, 1)));
}

String zlote_in_words(const String& zlote) {
    const Table table(zlote);
    const String reversed(zlote.rbegin(), zlote.rend());
    String output;
    const auto put = [&output](StringView word) { output.insert(0, word); };
    for (Long position = 1; position <= length(reversed);) {
        const std::size_t digit = value_at(reversed, position);
        const Long place = position % 3 == 0 ? 3 : position % 3;
        if (position == 4) {
            put(table.word(digit, 4));
        }
        if (position == 7) {
            put(table.word(digit, 7));
        }
        if (place == 1 && value_at(reversed, position + 1) == 1) {
            put(table.word(digit, 0));
            position += 2;
        } else {
            put(table.word(digit, static_cast<std::size_t>(place)));
            position += 1;
        }
    }
    return output;
}

String by_the_table(StringView amount) {
    String text(amount);
    if (left_part(text, 1) == u"-") {
        text = substring(text, 2);
    }
    if (position_of(text, u",") == 0) {
        text += u",00";
    }
    const Long comma = position_of(text, u",");
    const String zlote = left_part(text, comma - 1);
    String grosze = substring(text, comma + 1);
    if (grosze.size() == 1) {
        grosze += u"0";
    }
    return zlote_in_words(zlote) + u" zł" + u" i " + grosze + u" gr";
}

TEST(InWords, AllShortTextsAsByTheTable) {
    frame_tests::for_all_texts(
        {u"0", u"1", u"2", u"5", u"-", u",", u" ", u".", u"&H", u"E"}, 5,
        [](const String& text) { ASSERT_EQ(words(text), by_the_table(text)) << show(text); });
}

TEST(InWords, EveryLengthAsByTheTable) {
    frame_tests::for_all_texts({u"0", u"1", u"4"}, 10, [](const String& text) {
        ASSERT_EQ(words(text), by_the_table(text)) << show(text);
    });
}

TEST(InWords, RandomTextsAsByTheTable) {
    Random random(5);
    for (int i = 0; i < 100'000; ++i) {
        String text = wide(random.digits(random.between(0, 15)));
        if (random.chance(30)) {
            text.insert(random.bits() % (text.size() + 1), 1, u" .,-x\u00A0"[random.bits() % 6]);
        }
        if (random.chance(60)) {
            text += u"," + wide(random.digits(random.between(0, 4)));
        }
        ASSERT_EQ(words(text), by_the_table(text)) << show(text);
    }
}

TEST(InWords, EveryCodeUnitCountsAsItsDigitOrAsZero) {
    for (std::uint32_t code = 0; code <= 0xFFFF; ++code) {
        const auto unit = static_cast<char16_t>(code);
        for (const String& text : {String{unit}, String{u'2', unit, u'3'}, String{unit, u'1', unit},
                                   String{u'1', unit, unit, unit}}) {
            ASSERT_EQ(words(text), by_the_table(text)) << code;
        }
    }
}

TEST(InWords, OfAnyLength) {
    const String ones(100'000, u'1');
    const String text = words(ones);
    EXPECT_TRUE(text.starts_with(u"JedenStoJedenaścieStoJedenaście"));
    EXPECT_TRUE(
        text.ends_with(u"StoJedenaścieMilionówStoJedenaścieTysięcyStoJedenaście zł i 00 gr"));
}

// ---- As late-bound callers see it -------------------------------------------------------------

TEST(InWords, Interface) {
    using Class = ClassTable<ClsSłownie>;
    EXPECT_EQ(show(Class::header.name), show(u"ClsSłownie"));
    EXPECT_EQ(Class::header.instancing, Instancing::Creatable);
    EXPECT_EQ(Class::header.interface_id, "A0C8762D-9650-4919-8F38-CB743A71425B");
    EXPECT_EQ(Class::header.class_id, "B2699693-C426-432A-856F-87B5EA493A04");
    ASSERT_EQ(Class::members.size(), 1U);
    const MemberInfo& member = Class::members[0];
    EXPECT_EQ(show(member.name), show(u"slownie"));
    EXPECT_EQ(member.kind, MemberKind::Method);
    EXPECT_EQ(member.result, TypeName::String);
    ASSERT_EQ(member.parameter_count, 1U);
    EXPECT_EQ(show(member.parameters()[0].name), show(u"Text"));
    EXPECT_EQ(member.parameters()[0].type, TypeName::String);
    EXPECT_EQ(member.parameters()[0].passing, Passing::ByValue);
    EXPECT_FALSE(member.parameters()[0].is_optional);

    ClsSłownie object;
    Arguments text = {u"123,45"};
    EXPECT_EQ(invoke(member, &object, text), Variant(u"StoDwadzieściaTrzy zł i 45 gr"));
    EXPECT_EQ(text, (Arguments{u"123,45"}));
    Arguments one = {u"1,00"};
    EXPECT_EQ(invoke(member, &object, one), Variant(u"Jeden zł i 00 gr"));
    EXPECT_EQ(one, (Arguments{u"1,00"}));
    String variable = u"-,5";
    Arguments reference = {Variant::reference(variable)};
    EXPECT_EQ(invoke(member, &object, reference), Variant(u" zł i 50 gr"));
    EXPECT_EQ(variable, u"-,5");
    Arguments number = {Currency::raw(-15200)};  // "-1,52"
    EXPECT_EQ(invoke(member, &object, number), Variant(u"Jeden zł i 52 gr"));
    Arguments null = {Variant::null()};
    EXPECT_EQ(failure_of([&] { return invoke(member, &object, null); }), 94);
}

}  // namespace
}  // namespace kvarta16::numbers_tests
