// Class3: separators taken out, wherever and as often as they stand.

#include <gtest/gtest.h>

#include <kvarta16/text/Class3.h>

namespace kvarta16 {
namespace {

TEST(Class3, TakesSeparatorsOut) {
    struct Case {
        StringView s;
        StringView without_hyphens;
        StringView without_blanks;
    };
    constexpr Case cases[] = {
        {u"", u"", u""},
        {u"-", u"", u"-"},
        {u" ", u" ", u""},
        {u"abc", u"abc", u"abc"},
        {u"525-000-12-34", u"5250001234", u"525-000-12-34"},
        {u"12 1020 5558", u"12 1020 5558", u"1210205558"},
        {u"--a--b--", u"ab", u"--a--b--"},
        {u"  a  b  ", u"  a  b  ", u"ab"},
        {u" - a - ", u"  a  ", u"-a-"},
        {u"a\u2013b\u00ADc\u2212", u"a\u2013b\u00ADc\u2212", u"a\u2013b\u00ADc\u2212"},
        {u"a\u00A0b\tc\r\nd", u"a\u00A0b\tc\r\nd", u"a\u00A0b\tc\r\nd"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(testing::PrintToString(String(test.s)));
        EXPECT_EQ(Class3().Myslnik_Usun(test.s), test.without_hyphens);
        EXPECT_EQ(Class3().Spacje_Usun(test.s), test.without_blanks);
    }
}

// No 16-bit counter here: the whole of a long text is treated.
TEST(Class3, TreatsTheWholeOfALongText) {
    for (const std::size_t length : {32767U, 32768U, 65535U, 65536U, 65537U, 98304U, 600'000U}) {
        SCOPED_TRACE(length);
        EXPECT_EQ(Class3().Myslnik_Usun(String(length, u'-') + u"a"), u"a");
        EXPECT_EQ(Class3().Spacje_Usun(String(length, u' ') + u"a"), u"a");
        EXPECT_EQ(Class3().Myslnik_Usun(String(length, u'a')), String(length, u'a'));
    }
}

}  // namespace
}  // namespace kvarta16
