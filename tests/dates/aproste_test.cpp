// The pause, the bounds and the small changes of texts.
#include "dates_support.h"

namespace kvarta16::dates_tests {
namespace {

constexpr Long lowest_long = std::numeric_limits<Long>::min();
constexpr Long highest_long = std::numeric_limits<Long>::max();

TEST(Pause, OneSleepOfMilliseconds) {
    FakePlatform fake;
    for (const Long seconds : {0, 1, 3, 86400, -1}) {
        simple().CzekajSek(seconds);
    }
    // The milliseconds wrap.
    for (const Long seconds : {2147483, 2147484, 4294968, highest_long, lowest_long}) {
        simple().CzekajSek(seconds);
    }
    EXPECT_EQ(fake.sleeper.sleeps, (std::vector<Long>{0, 1000, 3000, 86400000, -1000, 2147483000,
                                                      -2147483296, 704, -1000, 0}));
    EXPECT_EQ(fake.clock.reads, 0);
}

TEST(Bounds, OfNumbers) {
    EXPECT_EQ(simple().MinMax(5, 10, 1), 10);
    EXPECT_EQ(simple().MinMax(20, 10, 1), 1);
    EXPECT_EQ(simple().MinMax(10, 10, 1), 1);
    EXPECT_EQ(simple().MinMax(7, 1, 5), 5);
    EXPECT_EQ(simple().MinMax(lowest_long, highest_long, lowest_long), highest_long);
    EXPECT_EQ(simple().max(lowest_long, highest_long), highest_long);
    EXPECT_EQ(simple().MAXi(-32768, 32767), 32767);
    for (int x = -3; x <= 3; ++x) {
        for (int y = -3; y <= 3; ++y) {
            EXPECT_EQ(simple().max(x, y), std::max(x, y));
            EXPECT_EQ(simple().MAXi(wrap16(x), wrap16(y)), std::max(x, y));
            for (int z = -3; z <= 3; ++z) {
                const int expected = x < y ? y : std::min(x, z);
                EXPECT_EQ(simple().MinMax(x, y, z), expected) << x << " " << y << " " << z;
                EXPECT_EQ(simple().MinMaxi(wrap16(x), wrap16(y), wrap16(z)), expected);
            }
        }
    }
}

TEST(Texts, Swapped) {
    String a = u"first";
    String b(100, u'b');
    simple().Zamień(a, b);
    EXPECT_EQ(a, String(100, u'b'));
    EXPECT_EQ(b, u"first");
    simple().Zamień(b, b);
    EXPECT_EQ(b, u"first");
}

TEST(Texts, EveryCodeUnit) {
    for (int code = 0; code <= 0xFFFF; ++code) {
        const auto unit = static_cast<char16_t>(code);
        const String text = {u'a', unit, u'b'};
        const bool is_line_end = unit == u'\r' || unit == u'\n';
        ASSERT_EQ(simple().Bez_1310(text), is_line_end ? u"ab" : text) << code;
        ASSERT_EQ(simple().Bez_1310_spc(text), is_line_end ? u"a b" : text) << code;
        ASSERT_EQ(simple().Nazwa_pliu_z____(text), (String{u'a', unit, u'_'})) << code;
        ASSERT_EQ(simple().Nazwa_pliu_z____(String(1, unit)), u"_") << code;
    }
}

TEST(Texts, LastCharacterReplaced) {
    EXPECT_EQ(simple().Nazwa_pliu_z____(u"a.mdb"), u"a.md_");
    EXPECT_EQ(simple().Nazwa_pliu_z____(u""), u"");
}

TEST(Texts, LineEndsTakenOutOrTurnedIntoBlanks) {
    const struct {
        StringView text;
        StringView without;
        StringView blanks;
    } cases[] = {
        {u"", u"", u""},
        {u"a\r\nb", u"ab", u"a b"},
        {u"a\nb", u"ab", u"a b"},
        {u"a\rb", u"ab", u"a b"},
        {u"a\n\nb", u"ab", u"a  b"},
        {u"a\r\n\n\nb", u"ab", u"a b"},  // further line feeds behind the return go too
        {u"a\r\n\r\nb", u"ab", u"a  b"},
        {u"a\r\rb", u"ab", u"a  b"},
        {u"a\n\rb", u"ab", u"a  b"},
        {u"\r\na\r\n", u"a", u"a"},
        {u"  a \r\n b  ", u"  a  b  ", u"a   b"},
        {u"\t\ra\t", u"\ta\t", u"\t a\t"},  // tabs are no blanks
        {u"\r\n", u"", u""},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(show(simple().Bez_1310(row.text)), show(row.without)) << show(row.text);
        EXPECT_EQ(show(simple().Bez_1310_spc(row.text)), show(row.blanks)) << show(row.text);
    }
}

// The same by another way: the line feeds that stand behind a return go first.
String blanks_for_line_ends(const String& text) {
    String kept;
    for (const char16_t unit : text) {
        // Whatever feeds stood between have been left out, so that the return is the last unit.
        if (unit != u'\n' || kept.empty() || kept.back() != u'\r') {
            kept += unit;
        }
    }
    for (char16_t& unit : kept) {
        unit = unit == u'\r' || unit == u'\n' ? u' ' : unit;
    }
    const std::size_t first = kept.find_first_not_of(u' ');
    return first == String::npos ? String()
                                 : kept.substr(first, kept.find_last_not_of(u' ') - first + 1);
}

TEST(Texts, LineEndsOfAllShortTexts) {
    for_all_texts({u"a", u" ", u"\r", u"\n"}, 8, [](const String& text) {
        ASSERT_EQ(simple().Bez_1310_spc(text), blanks_for_line_ends(text)) << show(text);
    });
}

TEST(Texts, OfAnyLength) {
    const String lines = [] {
        String text;
        for (int i = 0; i < 40000; ++i) {
            text += u"a\r\n";
        }
        return text;
    }();
    EXPECT_EQ(simple().Bez_1310(lines), String(40000, u'a'));
    EXPECT_EQ(simple().Bez_1310_spc(lines).size(), 79999u);
}

}  // namespace
}  // namespace kvarta16::dates_tests
