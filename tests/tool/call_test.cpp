// Calling members from a shell.
#include <gtest/gtest.h>

#include <kvarta16/frame/catalogue.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/sqlite/sqlite_connection.h>

#include "tool_process.h"

namespace tool_test {
namespace {

ToolRun call(Words words) {
    words.insert(words.begin(), "call");
    return run_tool(words);
}

TEST(Call, PrintsTheResult) {
    const struct {
        Words words;
        std::string out;
    } cases[] = {
        {{"aLiczby.VarR2Str", "12.5"}, "12,50\n"},
        {{"aLiczby.VarR2Si", "1234,565"}, "1234,57\n"},
        {{"aLiczby.VarR0GSi", "-1,9"}, "-1\n"},
        {{"aLiczby.VarLong", "13,5"}, "14\n"},
        {{"aChar.NullStr", "null"}, "\n"},
        {{"aChar.NullSPCStr", "null"}, " \n"},
        {{"amain.VersjaLib"}, "1.0.9999.kvarta16\n"},
        {{"aChar.c_aaa"}, "\n"},
        {{"aChar.c_aaa=", "x"}, ""},
        {{"aChar.A_DOK", "XX\\ 12 / 2009"}, "12 \n"},
        {{"aLiczby.VarValVar", "empty"}, "Empty\n"},
        {{"value.RoundHalfEven", "null", "0"}, "Null\n"},
        {{"value.IsNullValue", "null"}, "Prawda\n"},
        {{"value.MakeDate", "2024", "0", "15"}, "2023-12-15\n"},
        {{"value.FormatMask", "date:2024-05-17", "dddd"}, "piątek\n"},
        {{"value.ValPrefix", "1e400"}, "inf\n"},
        {{"Akt.DatOne", "date:2001-12-31", "[dataod]", "true"},
         " [dataod]>={d '2001-12-31'} and [dataod]<{d '2002-01-01'} \n"},
    };
    for (const auto& example : cases) {
        const ToolRun run = call(example.words);
        EXPECT_EQ(example.out, run.out) << example.words[0];
        EXPECT_EQ("", run.err);
        EXPECT_EQ(0, run.status);
    }
}

TEST(Call, ValuesThatBeginWithAMinus) {
    EXPECT_EQ("-2\n", call({"value.ToLong", "-2.5"}).out);
    EXPECT_EQ("-2\n", call({"value.ToLong", "--", "-2.5"}).out);
    EXPECT_EQ("-5\n", call({"value.ToLong", "-5"}).out);
    EXPECT_EQ("-abc\n", call({"aChar.NullStr", "-abc"}).out);
    EXPECT_EQ("--help\n", call({"aChar.NullStr", "--help"}).out);
    EXPECT_EQ("--\n", call({"aChar.NullStr", "text:--"}).out);
    EXPECT_EQ("seed\n", call({"aChar.NullStr", "seed"}).out);
    EXPECT_EQ("\n", call({"aChar.NullStr", ""}).out);
}

TEST(Call, PrintsTheArgumentsThatTheCallHasChanged) {
    EXPECT_EQ("pie\na = pie\n", call({"aChar.Replace2", "Kot", "kot", "pies"}).out);
    EXPECT_EQ("  ab\ns = ab\n", call({"aChar.UzMid", " ab ", "1", "4"}).out);
    // The same text, and a number that has only become text: nothing has changed.
    EXPECT_EQ("  ab\n", call({"aChar.UzMid", "ab", "1", "4"}).out);
    EXPECT_EQ("  12\n", call({"aChar.UzMid", "12", "1,2", "4"}).out);
    EXPECT_EQ("ab\n", call({"aChar.Str2Str", "abcdef", "2"}).out);
    EXPECT_EQ("abcdef\n", call({"aChar.Str2Str", "abcdef", "missing"}).out);
}

TEST(Call, AFailureOfTheLibrary) {
    const struct {
        Words words;
        std::string err;
    } cases[] = {
        {{"value.ToLong", "null"}, "kvarta16: error 94: Invalid use of Null\n"},
        {{"value.ToLong", "abc"}, "kvarta16: error 13: Type mismatch\n"},
        {{"value.ToInteger16", "40000"}, "kvarta16: error 6: Overflow\n"},
        {{"aChar.MidUZ", "ab", "0"}, "kvarta16: error 5: Invalid procedure call or argument\n"},
    };
    for (const auto& failing : cases) {
        const ToolRun run = call(failing.words);
        EXPECT_EQ("", run.out);
        EXPECT_EQ(failing.err, run.err);
        EXPECT_EQ(1, run.status);
    }
}

TEST(Call, WhatThereIsNot) {
    const struct {
        Words words;
        std::string told;
    } cases[] = {
        {{}, "CLASS.MEMBER"},
        {{"aChar"}, "\"aChar\" is no CLASS.MEMBER"},
        {{"achar.NullStr"}, "there is no class \"achar\"; similar: aChar"},
        {{"ClsSlownie.slownie", "1"}, "there is no class \"ClsSlownie\"; similar: ClsSłownie"},
        {{"ClsCzyscBazeDAO.x"}, "there is no class \"ClsCzyscBazeDAO\"; similar: ClsCzyśćBazęDAO"},
        {{"ClsCzyśćBazęDAO.Set_Szer", "1"}, "has no member \"Set_Szer\"; similar: Set_Szer_tetx"},
        {{"Xyzzyx.NullStr"}, "there is no class \"Xyzzyx\"\nSee kvarta16 catalogue."},
        {{"aChar.nulstr", "x"}, "aChar has no member \"nulstr\"; similar: NullStr"},
        {{"aChar.Cudzyslow", "x"}, "Bez_Cudzysłowów"},
        {{"aChar.NullStr=", "x"}, "aChar has no member \"NullStr=\""},
        {{"value.tolong", "x"}, "value has no member \"tolong\"; similar: ToLong"},
        {{"aChar.Str2Str"}, "Str2Str(ds: Variant, optional by reference leng: Integer): String"},
        {{"aChar.Str2Str", "1", "2", "3"}, "wrong number of arguments"},
        {{"amain.VersjaLib", "1"}, "VersjaLib(): String"},
        {{"aChar.c_aaa="}, "c_aaa=(value: String)"},
    };
    for (const auto& wrong : cases) {
        const ToolRun run = call(wrong.words);
        EXPECT_EQ("", run.out);
        EXPECT_TRUE(run.err.starts_with("kvarta16: ")) << run.err;
        EXPECT_NE(std::string::npos, run.err.find(wrong.told)) << run.err;
        EXPECT_EQ(2, run.status);
    }
}

TEST(Call, ClassesAndMembersThatAreNotBuilt) {
    for (const kvarta16::ClassInfo& info : kvarta16::public_classes()) {
        const std::string name = kvarta16::to_utf8(info.header.name);
        if (!info.is_built()) {
            const ToolRun run = call({name + ".member"});
            EXPECT_EQ("kvarta16: the class " + name + " is not built yet\n", run.err);
            EXPECT_EQ(2, run.status);
        }
        for (const kvarta16::MemberInfo& member : info.members) {
            if (!member.is_built()) {
                const std::string full_name = name + '.' + kvarta16::to_utf8(member.name);
                const ToolRun run = call({full_name});
                EXPECT_EQ("kvarta16: " + full_name + " is not built yet\n", run.err);
                EXPECT_EQ(2, run.status);
            }
        }
    }
}

TEST(Call, ValuesThatTheirTypeDoesNotTake) {
    for (const std::string word :
         {"integer:40000", "integer:1.5", "integer:", "byte:256", "byte:-1", "long:2147483648",
          "long: 1", "single:x", "single:1e39", "double:1,5", "double:", "currency:1,5",
          "currency:1.00005", "decimal:x", "date:2024-02-30", "date:2024-05-17T25:00:00",
          "date:17-05-2024"}) {
        const ToolRun run = call({"aChar.NullStr", word});
        EXPECT_EQ("kvarta16: \"" + word + "\" is no " + word.substr(0, word.find(':')) + '\n',
                  run.err);
        EXPECT_EQ(2, run.status);
    }
    EXPECT_EQ(2, call({"aChar.NullStr", "\xFF"}).status);
    EXPECT_EQ(2, call({"aChar.NullStr", "text:\xFF"}).status);
}

TEST(Call, WorksOnADatabase) {
    TempFolder folder;
    const std::string path = folder.file("firma.db");
    EXPECT_EQ(0, run_tool({"seed", "--db", "sqlite:" + path, "--tables", "interest"}).status);
    const ToolRun run = call({"Akt.Ustaw_oDSETKI_uSTAWOWE", "sqlite:" + path, "false", "false"});
    EXPECT_EQ("", run.out + run.err);
    EXPECT_EQ(0, run.status);

    const ToolRun missing = call({"Akt.Ustaw_stawki_ryczałtu", "sqlite:" + path, "false", "true"});
    EXPECT_NE(std::string::npos, missing.err.find("S_StawkiKM")) << missing.err;
    EXPECT_EQ(1, missing.status);
}

TEST(Call, ADatabaseThatIsNotThereIsNotMade) {
    TempFolder folder;
    const std::string path = folder.file("firma.db");
    const ToolRun run = call({"Akt.Ustaw_stawki_ryczałtu", "sqlite:" + path, "false", "true"});
    EXPECT_NE(std::string::npos, run.err.find("error 3024")) << run.err;
    EXPECT_EQ(1, run.status);
    EXPECT_FALSE(std::filesystem::exists(path));
    // Where no object is wanted the same word is a text.
    EXPECT_EQ("sqlite:x\n", call({"aChar.NullStr", "sqlite:x"}).out);
    // Where one is wanted a text is none.
    EXPECT_EQ(1, call({"Akt.Ustaw_stawki_ryczałtu", "firma.db", "false", "true"}).status);
}

TEST(Call, ABoxWithoutATerminalIsToldOnStandardError) {
    const ToolRun run = call({"aLiczby.Zaokr", "5"});
    EXPECT_EQ("0\n", run.out);
    EXPECT_NE(std::string::npos, run.err.find("Zaokr nie używana")) << run.err;
    EXPECT_EQ(0, run.status);
}

TEST(Call, ABoxOnATerminalWaitsForThePerson) {
    TerminalRun terminal({"call", "aLiczby.Zaokr", "5"});
    EXPECT_NE(std::string::npos, terminal.read_until("[OK]").find("Zaokr nie używana"));
    terminal.type("\n");
    const ToolRun run = terminal.finish();
    EXPECT_TRUE(run.out.ends_with("0\r\n")) << run.out;
    EXPECT_EQ(0, run.status);
}

}  // namespace
}  // namespace tool_test
