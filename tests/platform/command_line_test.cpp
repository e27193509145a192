// Command lines taken apart: the program's name in all the ways it can be read, and its arguments.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/command_line.h>

namespace kvarta16::posix {
namespace {

struct ReadingCase {
    String line;
    std::vector<std::pair<String, String>> readings;  // the name, the text of the arguments
};

TEST(CommandLine, NamesThatAreTried) {
    const std::vector<ReadingCase> cases = {
        {u"pakuj", {{u"pakuj", u""}}},
        {u"  \tpakuj  ", {{u"pakuj", u""}}},
        {u"pakuj a  b", {{u"pakuj", u" a  b"}, {u"pakuj a", u"  b"}, {u"pakuj a  b", u""}}},
        {u"C:\\Moje programy\\pakuj.exe\t-x",
         {{u"C:\\Moje", u" programy\\pakuj.exe\t-x"},
          {u"C:\\Moje programy\\pakuj.exe", u"\t-x"},
          {u"C:\\Moje programy\\pakuj.exe\t-x", u""}}},
        {u"\"C:\\Moje programy\\pakuj.exe\" a \"b\"",
         {{u"C:\\Moje programy\\pakuj.exe", u" a \"b\""}}},
        {u"\"C:\\pakuj\\\" a", {{u"C:\\pakuj\\", u" a"}}},  // a backslash is one in a name
        {u"\"pakuj\"x a", {{u"pakuj", u" a"}}},
        {u"\"pakuj", {{u"pakuj", u""}}},
        {u"\"pakuj a", {{u"pakuj a", u""}}},
        {String(u"pakuj\0 a", 8), {{u"pakuj", u""}}},
        {u"", {}},
        {u" \t ", {}},
        {u"\"\"", {}},
        {u"\" \" a", {}},
        {u"\"", {}},
        {String(u"\0pakuj", 6), {}},
    };
    for (const ReadingCase& test : cases) {
        std::vector<std::pair<String, String>> found;
        for (const CommandReading& reading : readings_of(test.line)) {
            found.emplace_back(reading.program, String(reading.arguments));
        }
        EXPECT_EQ(found, test.readings) << to_utf8(test.line);
    }
}

TEST(CommandLine, NamesAreNoLongerThanAPath) {
    const String name(260, u'a');
    EXPECT_EQ(readings_of(name + u" b").size(), 1U);
    EXPECT_EQ(readings_of(name + u"a").size(), 0U);
    EXPECT_EQ(readings_of(u"a " + String(257, u'b') + u" c").size(), 2U);
    EXPECT_EQ(readings_of(u"a " + String(258, u'b') + u" c d").size(), 2U);
    EXPECT_EQ(readings_of(u"a " + String(259, u'b') + u" c").size(), 1U);
}

struct ArgumentCase {
    StringView text;
    std::vector<String> arguments;
};

TEST(CommandLine, Arguments) {
    const ArgumentCase cases[] = {
        {u"", {}},
        {u"  \t", {}},
        {u" a\tb  c ", {u"a", u"b", u"c"}},
        {u"\"a b\" c", {u"a b", u"c"}},
        {u"a\" \"b", {u"a b"}},
        {u"\"\"", {u""}},
        {u"\"\" a \"\"", {u"", u"a", u""}},
        {u"\"ab", {u"ab"}},
        {u"\"a b ", {u"a b "}},
        {u"a\\b", {u"a\\b"}},
        {u"a\\\\b \\", {u"a\\\\b", u"\\"}},
        {u"a\\\"b", {u"a\"b"}},
        {u"a\\\\\"b c\"", {u"a\\b c"}},
        {u"a\\\\\\\"b", {u"a\\\"b"}},
        {u"\"C:\\dane\\\\\" x", {u"C:\\dane\\", u"x"}},
        {u"\"C:\\dane\\\" x", {u"C:\\dane\" x"}},
        {u"\"a\"\"b\"", {u"a\"b"}},
        {u"\"a\"\" b\" c", {u"a\" b", u"c"}},
        {u"a\"\"b", {u"ab"}},
        {u"\"\"\"a b\"\"\"", {u"\"a b\""}},
        {u"'a b' $HOME `id` ; | > x & *",
         {u"'a", u"b'", u"$HOME", u"`id`", u";", u"|", u">", u"x", u"&", u"*"}},
        {u"a\nb \"c\r\nd\"", {u"a\nb", u"c\r\nd"}},
        {u"Zażółć \"gęślą jaźń\"", {u"Zażółć", u"gęślą jaźń"}},
    };
    for (const ArgumentCase& test : cases) {
        EXPECT_EQ(arguments_of(test.text), test.arguments) << to_utf8(test.text);
    }
}

// An argument written as the platform's own programs write it.
String quoted(const String& argument) {
    String text = u"\"";
    std::size_t backslashes = 0;
    for (const char16_t unit : argument) {
        if (unit == u'"') {
            text.append(backslashes + 1, u'\\');
        }
        backslashes = unit == u'\\' ? backslashes + 1 : 0;
        text += unit;
    }
    return text.append(backslashes, u'\\') + u'"';
}

// Every argument of up to five characters comes back as it was, whatever stands beside it.
TEST(CommandLine, WhatIsQuotedComesBack) {
    constexpr StringView alphabet = u"a\"\\ \t";
    std::vector<String> all{u""};
    for (std::size_t i = 0; all[i].size() < 5; ++i) {
        for (const char16_t unit : alphabet) {
            all.push_back(all[i] + unit);
        }
    }
    ASSERT_EQ(all.size(), 3906U);
    for (std::size_t i = 0; i < all.size(); ++i) {
        const std::vector<String> arguments{all[i], all[all.size() - 1 - i]};
        EXPECT_EQ(arguments_of(quoted(arguments[0]) + u' ' + quoted(arguments[1])), arguments)
            << to_utf8(all[i]);
    }
}

}  // namespace
}  // namespace kvarta16::posix
