// Truth values as numbers and as text, and back.
#include "dates_support.h"

namespace kvarta16::dates_tests {
namespace {

TEST(Truth, OfABoolean) {
    for (const int raw : {0, 1, -1, 2, 256, -32768, 32767}) {
        const Boolean value = Boolean::from_raw(wrap16(raw));
        const bool is_true = raw != 0;
        EXPECT_EQ(simple().TrueFalseStr(value), is_true ? u"-1" : u"0") << raw;
        EXPECT_EQ(simple().Bool2Str(value), is_true ? u"1" : u"0") << raw;
        EXPECT_EQ(simple().Bool2Int(value), is_true ? 1 : 0) << raw;
        EXPECT_EQ(simple().Bool2INTBool(value), is_true ? -1 : 0) << raw;
    }
}

TEST(Truth, OfEveryInteger) {
    for (int number = -32768; number <= 32767; ++number) {
        ASSERT_EQ(simple().Check2Str(wrap16(number)), number == 1 ? u"1" : u"0") << number;
        ASSERT_EQ(simple().Chk2Bool(wrap16(number)), number != 0 ? -1 : 0) << number;
    }
}

TEST(Truth, OfAnything) {
    const struct {
        const char* value;
        Integer expected;
    } cases[] = {
        {"Null", 0},
        {"Empty", 0},
        {"Boolean 0", 0},
        {"Boolean -1", 1},
        {"Boolean 1", 1},
        {"Integer 0", 0},
        {"Integer -5", 1},
        {"Long 0", 0},
        {"Long 65536", 1},
        {"Byte 0", 0},
        {"Byte 7", 1},
        {"Single 0", 0},
        {"Single 0.25", 1},
        {"Double 0", 0},
        {"Double 1e-300", 1},
        {"Currency 0", 0},
        {"Currency 0.0001", 1},
        {"Decimal 0", 0},
        {"Decimal 0.0001", 1},
        {"Date 0", 0},
        {"Date 2024-05-17", 1},
        {"String \"0\"", 0},
        {"String \" 0 \"", 0},
        {"String \"0,00\"", 0},
        {"String \"0,5\"", 1},
        {"String \"-1\"", 1},
        {"String \"Fa\\u0142sz\"", 0},
        {"String \"FALSE\"", 0},
        {"String \"prawda\"", 1},
        {"String \"True\"", 1},
        // No truth values: the test that fails goes on in its true branch.
        {"String \"\"", 1},
        {"String \"nie\"", 1},
        {"String \"abc\"", 1},
        {"String \"0.5\"", 1},
        {"String \"1E999\"", 1},
        {"Error 0", 1},
        {"Error 5", 1},
        {"Missing", 1},
        {"Object", 1},
        {"Nothing", 1},
        {"UnknownObject", 1},
    };
    for (const auto& row : cases) {
        const Forms forms(parse_value(row.value));
        for (const auto& [form, value] : forms.all()) {
            EXPECT_EQ(simple().AnyBool2Int(*value), row.expected) << row.value << ", " << form;
            EXPECT_EQ(notation(*value), notation(parse_value(row.value)));
        }
    }
}

TEST(Truth, OfAText) {
    for (const StringView text : {u"NIE", u"nie", u"Nie", u"nIe", u"FAŁSZ", u"Fałsz", u"fałsz",
                                  u"FaŁsZ", u"FALSE", u"false", u"False", u"0"}) {
        EXPECT_EQ(simple().Str2Bool(text), Boolean(false)) << show(text);
    }
    for (const StringView text : {u"", u"-1", u" 0", u"0 ", u"00", u"0,0", u"nie ", u" nie", u"n",
                                  u"falsz", u"fałszywy", u"TAK", u"prawda", u"1", u"no"}) {
        EXPECT_EQ(simple().Str2Bool(text), Boolean(true)) << show(text);
    }
}

}  // namespace
}  // namespace kvarta16::dates_tests
