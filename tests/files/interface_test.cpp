// The classes of this room as late-bound callers see them: arguments left out, arguments that come
// back changed, coercions.
#include <kvarta16/files/B_WinWer.h>
#include <kvarta16/files/CBrowseForFolders.h>
#include <kvarta16/files/CFileFind.h>

#include "files_support.h"

namespace kvarta16::files_tests {
namespace {

template <class C>
std::string called(C& object, StringView member, Arguments& arguments) {
    return outcome([&] { return invoke(member_of<C>(member), &object, arguments); });
}

// A call in the notation of values, and the arguments afterwards.
struct Example {
    StringView member;
    std::vector<const char*> arguments;
    const char* result;
    std::vector<const char*> afterwards;
};

const Example examples[] = {
    {u"AddDirSep", {"String \"c:\\\\dir  \""}, "Empty", {"String \"c:\\\\dir\\\\\""}},
    {u"WithOutDirSep",
     {"String \"c:\\\\dir\\\\x\""},
     "String \"c:\\\\dir\"",
     {"String \"c:\\\\dir\\\\x\""}},
    {u"SeparatePathAndFileName",
     {"String \"c:/a/b\"", "String \"P\"", "String \"F\""},
     "Empty",
     {"String \"c:/a/b\"", "String \"c:/a\"", "String \"b\""}},
    {u"SeparatePathAndFileName",
     {"String \"c:/a/\"", "String \"P\"", "String \"F\""},
     "Empty",
     {"String \"c:/a/\"", "String \"P\"", "String \"F\""}},
    // What is left out is the empty text, and is written all the same.
    {u"SeparatePathAndFileName",
     {"String \"c:/a/b\""},
     "Empty",
     {"String \"c:/a/b\"", "String \"c:/a\"", "String \"b\""}},
    {u"SeparatePathAndFileName",
     {"String \"x\"", "Missing", "String \"F\""},
     "Empty",
     {"String \"x\"", "String \"C:\\\\\"", "String \"x\""}},
    {u"SeparatePathAndFileName",
     {"String \"\""},
     "Empty",
     {"String \"\"", "String \"\"", "String \"\""}},
    {u"BaseName", {"Integer 5"}, "String \"5\"", {"String \"5\""}},
    {u"IsSeparator", {"Null"}, "!94", {"Null"}},
    {u"RenameFile",
     {"String \"C:\\\\x\"", "String \"C:\\\\y\""},
     "Boolean 0",
     {"String \"C:\\\\x\"", "String \"C:\\\\y\"", "Boolean 0", "Boolean 0"}},
    {u"SyncShell",
     {"String \"x\""},
     "Boolean -1",
     {"String \"x\"", "Long 0", "Boolean 0", "Boolean 0"}},
    {u"SyncShell",
     {"String \"x\"", "Missing", "Missing", "Integer 1"},
     "Boolean -1",
     {"String \"x\"", "Long 0", "Boolean 0", "Boolean -1"}},
    {u"DoSendKeys",
     {"String \"x\"", "Boolean -1", "String \"y\"", "String \"2\""},
     "Empty",
     {"String \"x\"", "Integer -1", "String \"y\"", "Integer 2"}},
    {u"DoSendKeys",
     {"String \"x\"", "Long 40000", "String \"y\"", "Integer 0"},
     "!6",
     {"String \"x\"", "Long 40000", "String \"y\"", "Integer 0"}},
    {u"Skasuj_po_pakowaniu", {"String \"C:\\\\z\""}, "Long 0", {"String \"C:\\\\z\""}},
    {u"Przerwij", {}, "Boolean 0", {"Boolean 0", "String \"\""}},
    {u"GetWinPlatform", {}, "Long 0", {}},
    {u"pDisplayError_Shell", {"String \"x\""}, "!13", {"String \"x\""}},
};

TEST(Interface, OfAIO) {
    for (const Example& example : examples) {
        SCOPED_TRACE(to_utf8(example.member));
        FakePlatform fake;
        fake.disk.add(u"C:\\z_");
        Arguments arguments;
        for (const char* argument : example.arguments) {
            arguments.push_back(parse_value(argument));
        }
        aIO object;
        const std::string result = example.result;
        EXPECT_EQ(called(object, example.member, arguments),
                  result.starts_with('!') ? result : notation(parse_value(result)));
        std::vector<std::string> expected;
        for (const char* argument : example.afterwards) {
            expected.push_back(notation(parse_value(argument)));
        }
        std::vector<std::string> afterwards;
        for (const Variant& argument : arguments) {
            afterwards.push_back(notation(argument));
        }
        EXPECT_EQ(afterwards, expected);
    }
}

TEST(Interface, VariablesOfTheCallerAreWritten) {
    const FakePlatform fake;
    aIO object;
    String path = u"c:\\dir  ";
    Arguments arguments{Variant::reference(path)};
    EXPECT_EQ(called(object, u"AddDirSep", arguments), "Empty");
    EXPECT_EQ(show(path), show(u"c:\\dir\\"));

    String full = u"c:\\a\\b";
    Variant directory = u"P";
    String name = u"F";
    arguments = {Variant::reference(full), Variant::reference(directory), Variant::reference(name)};
    EXPECT_EQ(called(object, u"SeparatePathAndFileName", arguments), "Empty");
    EXPECT_EQ(show(full), show(u"c:\\a\\b"));
    EXPECT_EQ(notation(directory), notation(Variant(u"c:\\a")));
    EXPECT_EQ(show(name), show(u"b"));
}

TEST(Interface, OfCBrowseForFolders) {
    FakePlatform fake;
    CBrowseForFolders object;
    String directory = u"c:\\dane\\";
    Arguments arguments{Variant(5), u"Wybierz", Variant::reference(directory)};
    EXPECT_EQ(called(object, u"BrowseForFolder", arguments), notation(Variant(u"\\")));
    EXPECT_EQ(show(directory), show(u"c:\\dane"));
    ASSERT_EQ(arguments.size(), 4U);
    EXPECT_EQ(fake.folder_dialogs.shown.at(0).ulFlags, 1);
    EXPECT_EQ(fake.folder_dialogs.shown.at(0).hwndOwner, 5);

    arguments = {Variant(5), u"Wybierz", u"c:\\dane\\", Variant(true)};
    EXPECT_EQ(called(object, u"BrowseForFolder", arguments), notation(Variant(u"\\")));
    EXPECT_EQ(notation(arguments[2]), notation(Variant(u"c:\\dane")));
    EXPECT_EQ(fake.folder_dialogs.shown.at(1).ulFlags, 16384);

    arguments = {Variant(5), u"Wybierz", u"c:\\dane\\", u"x"};
    EXPECT_EQ(called(object, u"BrowseForFolder", arguments), "!13");
    EXPECT_EQ(notation(arguments[2]), notation(Variant(u"c:\\dane")));  // written before
}

TEST(Interface, OfCFileFindAndBWinWer) {
    FakePlatform fake;
    fake.find_files.add(u"b.txt", file_attribute::directory);
    CFileFind find;
    Arguments arguments{u"*.txt"};
    EXPECT_EQ(called(find, u"FindFile", arguments), "Boolean -1");
    arguments = {Variant(Integer{16})};
    EXPECT_EQ(called(find, u"MatchesMask", arguments), "Boolean -1");
    EXPECT_EQ(notation(arguments[0]), "Long 16");
    arguments.clear();
    EXPECT_EQ(called(find, u"GetFileTitle", arguments), notation(Variant(u"b")));
    EXPECT_EQ(called(find, u"GetLength64", arguments), "Long 0");
    EXPECT_EQ(called(find, u"FindNextFile", arguments), "Boolean 0");
    EXPECT_EQ(called(find, u"SORTUJ", arguments), "Empty");
    EXPECT_EQ(called(find, u"FindClose", arguments), "Empty");
    EXPECT_EQ(called(find, u"GetLastWriteTime", arguments),
              notation(Variant(MakeDate(1601, 1, 1))));

    fake.system_information.version_record = OSVERSIONINFO{148, 6, 2, 9200, 2, u""};
    B_WinWer version;
    EXPECT_EQ(called(version, u"GetWindowsVersion", arguments),
              notation(Variant(Currency::raw(62000))));
}

}  // namespace
}  // namespace kvarta16::files_tests
