// Testing, deleting, renaming, copying and writing files, on a disk in memory, and with each
// operation of the platform failing.
#include <functional>

#include "files_support.h"

namespace kvarta16::files_tests {
namespace {

constexpr StringView file = u"C:\\dane\\a.txt";
constexpr StringView other = u"C:\\dane\\b.txt";
constexpr StringView missing = u"C:\\dane\\c.txt";
constexpr StringView folder = u"C:\\dane";
constexpr StringView new_folder = u"C:\\dane\\nowe";
constexpr StringView write_test = u"C:\\dane\\zevotest.tmp";

void furnish(FakePlatform& fake) {
    fake.disk.add_folder(folder);
    fake.disk.add(file, "A");
    fake.disk.add(other, "B");
    fake.disk.set_current_directory(u"C:\\");
}

// The whole state of the disk that the calls below can change.
std::string state_of(FakePlatform& fake) {
    std::string state;
    for (const auto& [name, path] :
         std::initializer_list<std::pair<const char*, StringView>>{{"a", file},
                                                                   {"b", other},
                                                                   {"c", missing},
                                                                   {"nowe", new_folder},
                                                                   {"test", write_test}}) {
        const auto* entry = fake.disk.find(path);
        if (entry != nullptr) {
            state += std::string(state.empty() ? "" : " ") + name;
            state += entry->contents.empty() ? "" : "=" + entry->contents;
        }
    }
    for (const Integer number : fake.file_table.open_numbers()) {
        state += " #" + std::to_string(number);
    }
    state += fake.disk.current_directory() == u"C:\\"
                 ? ""
                 : " in " + to_utf8(fake.disk.current_directory());
    return state;
}

// What a call gives, and what it leaves.
struct Outcome {
    bool result;
    std::string state;
    std::size_t boxes;
    friend bool operator==(const Outcome&, const Outcome&) = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out) {
    *out << (outcome.result ? "true, " : "false, ") << outcome.state << ", boxes " << outcome.boxes;
}

using Call = std::function<bool()>;

bool truth(Boolean value) {
    EXPECT_TRUE(value.raw == 0 || value.raw == -1);
    return static_cast<bool>(value);
}

constexpr auto once = FaultSpan::Once;
constexpr auto for_good = FaultSpan::FromThenOn;

struct FaultCase {
    Faults faults;
    Outcome expected;
};

void expect_outcomes(const Call& call, const std::vector<FaultCase>& cases) {
    for (const FaultCase& test : cases) {
        std::string name;
        for (const Fault& fault : test.faults) {
            name += std::string(fault.operation) + "@" + std::to_string(fault.n) +
                    (fault.span == once ? " once " : " for good ");
        }
        SCOPED_TRACE(name);
        FaultyPlatform host(test.faults);
        furnish(host.fake);
        const bool result = call();
        EXPECT_EQ((Outcome{result, state_of(host.fake), host.fake.boxes.shown.size()}),
                  test.expected);
        if (!test.faults.empty()) {
            EXPECT_GE(host.plan->failed_calls(), static_cast<Long>(test.faults.size()));
        }
    }
}

const std::string as_it_was = "a=A b=B";

// ---- Folders --------------------------------------------------------------------------------

TEST(Folders, MakeDirChange) {
    const Call into_existing = [] { return io().MakeDirChange(folder), true; };
    expect_outcomes(into_existing,
                    {{{}, {true, "a=A b=B in C:\\dane", 0}},
                     {{{"ChDrive", 1, once}}, {true, as_it_was, 0}},
                     {{{"ChDir", 1, once}}, {true, as_it_was, 0}},
                     {{{"ChDir", 1, for_good}, {"MkDir", 1, for_good}}, {true, as_it_was, 0}}});
    const Call into_new = [] { return io().MakeDirChange(new_folder), true; };
    expect_outcomes(into_new, {{{}, {true, "a=A b=B nowe", 0}},
                               {{{"MkDir", 1, once}}, {true, as_it_was, 0}},
                               {{{"MkDir", 1, for_good}}, {true, as_it_was, 0}}});
    const Call twice = [] {
        io().MakeDirChange(new_folder);
        io().MakeDirChange(new_folder);
        return true;
    };
    expect_outcomes(twice, {{{}, {true, "a=A b=B nowe in C:\\dane\\nowe", 0}}});
}

TEST(Folders, MakeDirChangeTakesTheDriveFirst) {
    FakePlatform fake;
    furnish(fake);
    io().MakeDirChange(folder);
    EXPECT_EQ(fake.disk.log, (Lines{"ChDrive(C:\\dane)", "ChDir(C:\\dane)"}));
    fake.disk.log.clear();
    io().MakeDirChange(u"Q:\\x");
    EXPECT_EQ(fake.disk.log, (Lines{"ChDrive(Q:\\x)", "MkDir(Q:\\x)"}));
    fake.disk.log.clear();
    io().MakeDirChange(u"");
    io().MakeDir(u"");
    EXPECT_EQ(fake.disk.log, Lines{});
}

TEST(Folders, MakeDir) {
    const Call make = [] { return io().MakeDir(new_folder), true; };
    expect_outcomes(make, {{{}, {true, "a=A b=B nowe", 0}},
                           {{{"MkDir", 1, once}}, {true, "a=A b=B nowe", 0}},
                           {{{"MkDir", 1, for_good}}, {true, as_it_was, 0}},
                           {{{"MkDir", 1, once}, {"MkDir", 2, once}}, {true, as_it_was, 0}}});
    FakePlatform fake;
    io().MakeDir(u"C:\\x\\y");  // one level
    EXPECT_EQ(fake.disk.log, (Lines{"MkDir(C:\\x\\y)", "MkDir(C:\\x\\y)"}));
    EXPECT_EQ(fake.disk.find(u"C:\\x"), nullptr);
}

// ---- Deleting -------------------------------------------------------------------------------

TEST(Deleting, DelFile2) {
    const Call remove = [] { return io().DelFile2(file), true; };
    expect_outcomes(remove, {{{}, {true, "b=B", 0}},
                             {{{"Kill", 1, once}}, {true, as_it_was, 0}},
                             {{{"Kill", 1, for_good}}, {true, as_it_was, 0}}});
    expect_outcomes([] { return io().DelFile2(missing), true; }, {{{}, {true, as_it_was, 0}}});
    expect_outcomes([] { return io().DelFile2(folder), true; }, {{{}, {true, as_it_was, 0}}});
    expect_outcomes([] { return io().DelFile2(u"C:\\dane\\*.txt"), true; }, {{{}, {true, "", 0}}});
}

TEST(Deleting, DelFile) {
    const Call remove = [] { return truth(io().DelFile(file)); };
    const Outcome gone{true, "b=B", 0};
    const Outcome stays{false, as_it_was, 0};
    expect_outcomes(remove,
                    {{{}, gone},
                     {{{"Kill", 1, once}}, stays},
                     {{{"Kill", 1, for_good}}, stays},
                     {{{"GetAttr", 1, once}}, gone},
                     {{{"GetAttr", 2, once}}, gone},
                     {{{"GetAttr", 1, for_good}}, gone},
                     {{{"GetAttr", 1, once}, {"Open", 1, once}}, stays},
                     {{{"GetAttr", 1, once}, {"FreeFile", 1, once}}, stays},
                     {{{"GetAttr", 1, once}, {"Close", 1, once}}, stays},
                     // Nothing can be seen of it any more: it counts as gone.
                     {{{"GetAttr", 1, for_good}, {"Open", 1, for_good}}, {true, as_it_was, 0}}});
    expect_outcomes([] { return truth(io().DelFile(missing)); }, {{{}, {true, as_it_was, 0}}});
    expect_outcomes([] { return truth(io().DelFile(folder)); }, {{{}, {true, as_it_was, 0}}});
    expect_outcomes([] { return truth(io().DelFile(u"")); }, {{{}, {true, as_it_was, 0}}});
    // A pattern is no file.
    expect_outcomes([] { return truth(io().DelFile(u"C:\\dane\\*.txt")); },
                    {{{}, {true, as_it_was, 0}}});
}

TEST(Deleting, DelFileOfOneThatIsHeld) {
    FakePlatform fake;
    fake.disk.add(file).is_held = true;
    EXPECT_FALSE(truth(io().DelFile(file)));
    fake.disk.add(file).attributes = file_attribute::read_only;
    EXPECT_FALSE(truth(io().DelFile(file)));
    EXPECT_NE(fake.disk.find(file), nullptr);
    EXPECT_TRUE(fake.boxes.shown.empty());
}

// ---- Renaming and copying -------------------------------------------------------------------

TEST(Renaming, RenameFile) {
    const Outcome stays{false, as_it_was, 0};
    expect_outcomes([] { return truth(io().RenameFile(file, missing)); },
                    {{{}, {true, "b=B c=A", 0}},
                     {{{"Name", 1, once}}, stays},
                     {{{"Name", 1, for_good}}, stays}});
}

TEST(Renaming, TargetThatStandsThere) {
    const Outcome stays{false, as_it_was, 0};
    expect_outcomes([] { return truth(io().RenameFile(file, other)); }, {{{}, stays}});
    expect_outcomes([] { return truth(io().RenameFile(file, other, true)); },
                    {{{}, {true, "b=A", 0}},
                     {{{"Kill", 1, once}}, stays},
                     {{{"Name", 1, once}}, {false, "a=A", 0}},  // the old target is gone
                     {{{"GetAttr", 1, once}}, {true, "b=A", 0}},
                     {{{"GetAttr", 1, once}, {"Open", 1, once}}, stays}});
}

TEST(Renaming, SilentIsReadByNothing) {
    for (const bool silent : {false, true}) {
        expect_outcomes([=] { return truth(io().RenameFile(missing, other, false, silent)); },
                        {{{}, {false, as_it_was, 0}}});
        expect_outcomes([=] { return truth(io().RenameFile(missing, other, true, silent)); },
                        {{{}, {false, "a=A", 0}}});
    }
}

TEST(Renaming, FolderIsNoTargetToDelete) {
    expect_outcomes([] { return truth(io().RenameFile(file, folder, true)); },
                    {{{}, {false, as_it_was, 0}}});
}

TEST(Copying, FileCopyFun) {
    expect_outcomes([] { return truth(io().FileCopy_Fun(file, missing)); },
                    {{{}, {true, "a=A b=B c=A", 0}},
                     {{{"FileCopy", 1, once}}, {false, as_it_was, 0}},
                     {{{"FileCopy", 1, for_good}}, {false, as_it_was, 0}}});
    expect_outcomes([] { return truth(io().FileCopy_Fun(file, other)); },
                    {{{}, {true, "a=A b=A", 0}}});
    expect_outcomes([] { return truth(io().FileCopy_Fun(missing, other)); },
                    {{{}, {false, as_it_was, 0}}});
}

// ---- What a path is -------------------------------------------------------------------------

TEST(Testing, IsFile) {
    const Outcome yes{true, as_it_was, 0};
    const Outcome no{false, as_it_was, 0};
    expect_outcomes([] { return truth(io().IsFile(file)); },
                    {{{}, yes},
                     {{{"GetAttr", 1, once}}, yes},  // it can be opened
                     {{{"GetAttr", 1, once}, {"FreeFile", 1, once}}, no},
                     {{{"GetAttr", 1, once}, {"Open", 1, once}}, no},
                     {{{"GetAttr", 1, once}, {"Close", 1, once}}, no}});
    expect_outcomes([] { return truth(io().IsFile(folder)); },
                    {{{}, no}, {{{"GetAttr", 1, once}}, no}});
    expect_outcomes([] { return truth(io().IsFile(missing)); }, {{{}, no}});
    expect_outcomes([] { return truth(io().IsFile(u"")); }, {{{}, no}});
}

TEST(Testing, MissingFileCostsOneAttemptToOpen) {
    FakePlatform fake;
    EXPECT_FALSE(truth(io().IsFile(missing)));
    EXPECT_EQ(fake.disk.log, (Lines{"GetAttr(C:\\dane\\c.txt)", "FreeFile",
                                    "Open(C:\\dane\\c.txt; 1; input; shared)", "Close(1)"}));
}

TEST(Testing, IsFileFile) {
    const Outcome no{false, as_it_was, 0};
    expect_outcomes([] { return truth(io().IsFile_file(file)); },
                    {{{}, {true, as_it_was, 0}},
                     {{{"FreeFile", 1, once}}, no},
                     {{{"Open", 1, once}}, no},
                     {{{"Open", 1, for_good}}, no},
                     {{{"Close", 1, once}}, no},  // the second attempt closes it
                     {{{"Close", 1, for_good}}, {false, as_it_was + " #1", 0}}});
    expect_outcomes([] { return truth(io().IsFile_file(folder)); }, {{{}, no}});
    expect_outcomes([] { return truth(io().IsFile_file(missing)); }, {{{}, no}});
    expect_outcomes([] { return truth(io().IsFile_file(u"")); }, {{{}, no}});
}

TEST(Testing, IsFileFileTakesAFreeNumber) {
    FakePlatform fake;
    furnish(fake);
    fake.file_table.Open(other, 1, OpenMode::Input, Sharing::Shared);
    fake.disk.log.clear();
    EXPECT_TRUE(truth(io().IsFile_file(file)));
    EXPECT_EQ(fake.disk.log,
              (Lines{"FreeFile", "Open(C:\\dane\\a.txt; 2; input; shared)", "Close(2)"}));
    EXPECT_EQ(fake.file_table.open_numbers(), std::set<Integer>{1});
}

TEST(Testing, IsDir) {
    const Outcome yes{true, as_it_was, 0};
    const Outcome no{false, as_it_was, 0};
    const Fault unreadable{"GetAttr", 1, once};
    expect_outcomes([] { return truth(io().IsDIR(folder)); },
                    {{{}, yes},
                     {{unreadable}, yes},  // a file can be made in it, and goes again
                     {{unreadable, {"FreeFile", 1, once}}, no},
                     {{unreadable, {"Open", 1, once}}, no},
                     {{unreadable, {"Close", 1, once}}, no},
                     {{unreadable, {"Close", 1, for_good}}, {false, "a=A b=B test #1", 0}},
                     {{unreadable, {"Kill", 1, once}}, {true, "a=A b=B test", 0}}});
    expect_outcomes([] { return truth(io().IsDIR(file)); }, {{{}, no}, {{unreadable}, no}});
    expect_outcomes([] { return truth(io().IsDIR(missing)); }, {{{}, no}});
}

TEST(Testing, IsDirOfNothing) {
    FakePlatform fake;
    fake.disk.add(u"\\").attributes = file_attribute::read_only;  // nobody may write there
    fake.disk.add(u"\\zevotest.tmp").attributes = file_attribute::read_only;
    EXPECT_FALSE(truth(io().IsDIR(u"")));
}

TEST(Testing, WriteTestDoublesASeparator) {
    FaultyPlatform host({{"GetAttr", 1, once}});
    furnish(host.fake);
    EXPECT_TRUE(truth(io().IsDIR(u"C:\\dane\\")));
    EXPECT_EQ(host.fake.disk.log,
              (Lines{"FreeFile", "Open(C:\\dane\\\\zevotest.tmp; 1; random; shared)", "Close(1)",
                     "Kill(C:\\dane\\\\zevotest.tmp)"}));
}

TEST(Testing, IsFileOpen) {
    const Outcome no{false, as_it_was, 0};
    expect_outcomes([] { return truth(io().IsFile_open(file)); },
                    {{{}, {true, as_it_was, 0}},
                     {{{"Open", 1, once}}, no},
                     {{{"Close", 1, once}}, {false, as_it_was + " #1", 0}}});
    expect_outcomes([] { return truth(io().IsFile_open(missing)); }, {{{}, no}});
    expect_outcomes([] { return truth(io().IsFile_open(folder)); }, {{{}, no}});
}

TEST(Testing, IsFileOpenWhileNumberOneIsOpen) {
    FakePlatform fake;
    furnish(fake);
    fake.file_table.Open(other, 1, OpenMode::Input, Sharing::Shared);
    fake.disk.log.clear();
    EXPECT_FALSE(truth(io().IsFile_open(file)));
    EXPECT_EQ(fake.disk.log, Lines{"Open(C:\\dane\\a.txt; 1; input)"});
    EXPECT_EQ(fake.file_table.open_numbers(), std::set<Integer>{1});
}

TEST(Testing, IsFileOpenWhileSomebodyWrites) {
    FakePlatform fake;
    furnish(fake);
    fake.file_table.Open(file, 5, OpenMode::Binary, Sharing::Shared);
    EXPECT_FALSE(truth(io().IsFile_open(file)));
    EXPECT_TRUE(truth(io().IsFile_file(file)));
}

// ---- Writing --------------------------------------------------------------------------------

const Lines too_big{"Plik jest za duży by wydrukować go na ekranie !|16|-"};

TEST(Writing, ZapiszDoPliku) {
    FakePlatform fake;
    furnish(fake);
    EXPECT_TRUE(truth(io().Zapisz_do_pliku(file, u"Zażółć €\u2030")));
    EXPECT_EQ(fake.disk.find(file)->contents, "Za\xBF\xF3\xB3\xE6 \x80\x89\r\n");
    EXPECT_EQ(fake.disk.log,
              (Lines{"Close(1)", "GetAttr(C:\\dane\\a.txt)", "GetAttr(C:\\dane\\a.txt)",
                     "Kill(C:\\dane\\a.txt)", "GetAttr(C:\\dane\\a.txt)", "FreeFile",
                     "Open(C:\\dane\\a.txt; 1; input; shared)", "Close(1)",
                     "Open(C:\\dane\\a.txt; 1; output)", "PrintLine(1; Zażółć €‰)", "Close(1)"}));
    EXPECT_TRUE(truth(io().Zapisz_do_pliku(missing, u"")));
    EXPECT_EQ(fake.disk.find(missing)->contents, "\r\n");
    EXPECT_TRUE(fake.boxes.shown.empty());
}

TEST(Writing, ClosesWhatIsOpenUnderNumberOne) {
    FakePlatform fake;
    furnish(fake);
    fake.file_table.Open(other, 1, OpenMode::Input, Sharing::Default);
    EXPECT_TRUE(truth(io().Zapisz_do_pliku(file, u"x")));
    EXPECT_TRUE(fake.file_table.open_numbers().empty());
}

TEST(Writing, EachStepThatFails) {
    const Call write = [] { return truth(io().Zapisz_do_pliku(file, u"x")); };
    const Outcome written{true, "a=x\r\n b=B", 0};
    expect_outcomes(write, {{{}, written},
                            {{{"Close", 1, once}}, {false, as_it_was, 1}},
                            {{{"GetAttr", 1, once}}, written},
                            {{{"GetAttr", 1, for_good}}, written},
                            {{{"Kill", 1, once}}, written},  // it is written over
                            {{{"Kill", 1, for_good}}, written},
                            {{{"PrintLine", 1, once}}, {false, "a b=B #1", 1}},
                            {{{"PrintLine", 1, for_good}}, {false, "a b=B #1", 1}}});
    // The old one is gone, and looked for by an attempt to open it.
    expect_outcomes(write, {{{{"Open", 2, once}}, {false, "b=B", 1}},
                            {{{"Open", 1, for_good}}, {false, "b=B", 1}},
                            {{{"Close", 3, once}}, {false, "a=x\r\n b=B #1", 1}}});
    const Call write_new = [] { return truth(io().Zapisz_do_pliku(missing, u"x")); };
    expect_outcomes(write_new, {{{{"Open", 2, once}}, {false, as_it_was, 1}}});
}

TEST(Writing, OneTextForEveryFailure) {
    FakePlatform fake;
    EXPECT_FALSE(truth(io().Zapisz_do_pliku(u"C:\\brak\\plik.txt", u"x")));
    EXPECT_EQ(boxes_of(fake), too_big);
    EXPECT_TRUE(fake.file_table.open_numbers().empty());
    fake.boxes.shown.clear();
    EXPECT_FALSE(truth(io().Zapisz_do_pliku(u"", u"x")));
    EXPECT_EQ(boxes_of(fake), too_big);
    fake.boxes.shown.clear();
    furnish(fake);
    EXPECT_FALSE(truth(io().Zapisz_do_pliku(folder, u"x")));
    EXPECT_EQ(boxes_of(fake), too_big);
}

// ---- Every operation, every call ------------------------------------------------------------

// None but the writing shows anything, and no failure reaches the caller, whichever call of
// whichever operation fails.
TEST(Faults, NeverReachTheCaller) {
    const std::pair<const char*, std::function<void()>> calls[] = {
        {"MakeDirChange", [] { io().MakeDirChange(folder); }},
        {"MakeDirChange", [] { io().MakeDirChange(new_folder); }},
        {"MakeDir", [] { io().MakeDir(new_folder); }},
        {"DelFile2", [] { io().DelFile2(file); }},
        {"DelFile", [] { static_cast<void>(io().DelFile(file)); }},
        {"RenameFile", [] { static_cast<void>(io().RenameFile(file, other, true)); }},
        {"IsFile", [] { static_cast<void>(io().IsFile(missing)); }},
        {"IsFile_file", [] { static_cast<void>(io().IsFile_file(file)); }},
        {"IsDIR", [] { static_cast<void>(io().IsDIR(missing)); }},
        {"FileCopy_Fun", [] { static_cast<void>(io().FileCopy_Fun(file, missing)); }},
        {"IsFile_open", [] { static_cast<void>(io().IsFile_open(file)); }},
        {"Zapisz_do_pliku", [] { static_cast<void>(io().Zapisz_do_pliku(file, u"x")); }},
        {"Skasuj_po_pakowaniu", [] { static_cast<void>(io().Skasuj_po_pakowaniu(file)); }},
    };
    constexpr const char* operations[] = {"GetAttr", "Kill",  "Name",     "MkDir",
                                          "ChDrive", "ChDir", "FileCopy", "FreeFile",
                                          "Open",    "Close", "PrintLine"};
    int failed = 0;
    for (const auto& [name, call] : calls) {
        for (const char* operation : operations) {
            for (const FaultSpan span : {once, for_good}) {
                for (Long n = 1; n <= 6; ++n) {
                    SCOPED_TRACE(std::string(name) + ": " + operation + "@" + std::to_string(n));
                    FaultyPlatform host({{operation, n, span}});
                    furnish(host.fake);
                    host.fake.disk.add(String(file) + u"_", "M");
                    EXPECT_NO_THROW(call());
                    failed += host.plan->failed_calls() > 0 ? 1 : 0;
                    const bool may_speak = std::string_view(name) == "Zapisz_do_pliku";
                    EXPECT_LE(host.fake.boxes.shown.size(), may_speak ? 1U : 0U);
                }
            }
        }
    }
    EXPECT_GT(failed, 90);
}

}  // namespace
}  // namespace kvarta16::files_tests
