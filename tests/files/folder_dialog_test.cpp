// The folder dialog: what it is asked, what it calls back, what comes out.
#include <kvarta16/files/BrowseForFolders.h>
#include <kvarta16/files/CBrowseForFolders.h>

#include "files_support.h"

namespace kvarta16::files_tests {
namespace {

using testing_support::FakeFolderDialogs;
using Sent = std::vector<FakeFolderDialogs::Sent>;

constexpr Long list = 77;

String browse(String& directory, const Variant& include_files = Variant::missing()) {
    return instance<CBrowseForFolders>().BrowseForFolder(15, u"Wskaż folder", directory,
                                                         include_files);
}

String browse_from(const String& directory) {
    String variable = directory;
    return browse(variable);
}

TEST(FolderDialog, InDirIsWrittenBack) {
    const std::pair<StringView, StringView> cases[] = {
        {u"c:\\dane\\", u"c:\\dane"},
        {u"c:\\", u"c:\\"},
        {u"c:\\dane", u"c:\\dane"},
        {u"", u""},
        {u"\\", u""},
        {u"c:\\a\\\\", u"c:\\a\\"},
        {u"c:/a/", u"c:/a/"},
        {u":\\", u":\\"},
    };
    const FakePlatform fake;
    for (const auto& [given, expected] : cases) {
        String directory(given);
        static_cast<void>(browse(directory));
        EXPECT_EQ(show(directory), show(expected)) << show(given);
    }
}

TEST(FolderDialog, RecordThatIsFilled) {
    FakePlatform fake;
    String directory = u"c:\\dane\\";
    static_cast<void>(browse(directory));
    ASSERT_EQ(fake.folder_dialogs.shown.size(), 1U);
    const BROWSEINFO& info = fake.folder_dialogs.shown[0];
    EXPECT_EQ(info.hwndOwner, 15);
    EXPECT_EQ(info.pidlRoot, 0);
    EXPECT_EQ(show(info.lpszTitle), show(u"Wskaż folder"));
    EXPECT_EQ(info.ulFlags, 1);
    EXPECT_EQ(info.lpfn, &BrowseForFolders::callback);
    EXPECT_EQ(info.lParam, &directory);
    EXPECT_EQ(info.iImage, 0);
}

TEST(FolderDialog, PromptIsAnsi) {
    FakePlatform fake;
    String directory;
    static_cast<void>(instance<CBrowseForFolders>().BrowseForFolder(0, u"ł\u4E2D", directory));
    EXPECT_EQ(show(fake.folder_dialogs.shown.at(0).lpszTitle), show(u"ł?"));
}

TEST(FolderDialog, Flags) {
    const std::pair<Variant, Long> cases[] = {
        {Variant::missing(), 1}, {Variant::null(), 1}, {Variant(), 1},
        {Variant(false), 1},     {Variant(0), 1},      {Variant(true), 16384},
        {Variant(5), 16384},     {u"True", 16384},     {u"0", 1},
    };
    for (const auto& [value, flags] : cases) {
        FakePlatform fake;
        String directory;
        static_cast<void>(browse(directory, value));
        EXPECT_EQ(fake.folder_dialogs.shown.at(0).ulFlags, flags) << notation(value);
        Variant variable = value;
        const Variant reference = Variant::reference(variable);
        static_cast<void>(browse(directory, reference));
        EXPECT_EQ(fake.folder_dialogs.shown.at(1).ulFlags, flags) << notation(value);
    }
}

TEST(FolderDialog, NoTruthValueIsAFailureBeforeTheDialog) {
    FakePlatform fake;
    String directory = u"c:\\dane\\";
    EXPECT_EQ(frame_tests::failure_of([&] { return browse(directory, u"abc"); }), 13);
    EXPECT_EQ(show(directory), show(u"c:\\dane"));
    EXPECT_TRUE(fake.folder_dialogs.shown.empty());
}

TEST(FolderDialog, Results) {
    FakePlatform fake;
    EXPECT_EQ(show(browse_from(u"")), show(u"\\"));  // a cancel
    EXPECT_TRUE(fake.folder_dialogs.asked_buffers.empty());
    fake.folder_dialogs.answer = list;
    EXPECT_EQ(show(browse_from(u"")), show(u"\\"));  // a printer
    const std::pair<StringView, StringView> cases[] = {
        {u"c:\\dane", u"c:\\dane\\"},
        {u"c:\\", u"c:\\"},
        {u"c:\\a.txt", u"c:\\a.txt\\"},
        {u"", u"\\"},
    };
    for (const auto& [path, expected] : cases) {
        fake.folder_dialogs.paths[list] = String(path);
        EXPECT_EQ(show(browse_from(u"")), show(expected));
        EXPECT_EQ(fake.folder_dialogs.asked_buffers.back().size(), 260U);
    }
    fake.folder_dialogs.paths[list] = String(300, u'x');
    EXPECT_EQ(browse_from(u"").size(), 261U);
}

TEST(FolderDialog, CallsThatFail) {
    FaultyPlatform host(
        {{"SHGetPathFromIDList", 1, FaultSpan::Once}, {"SHBrowseForFolder", 2, FaultSpan::Once}});
    host.fake.folder_dialogs.answer = list;
    host.fake.folder_dialogs.paths[list] = u"c:\\x";
    EXPECT_EQ(show(browse_from(u"")), show(u"\\"));
    EXPECT_EQ(show(browse_from(u"")), show(u"\\"));
    EXPECT_EQ(show(browse_from(u"")), show(u"c:\\x\\"));
}

// ---- The callback ---------------------------------------------------------------------------

TEST(FolderDialog, OpensTheTreeAtInDir) {
    FakePlatform fake;
    EXPECT_EQ(show(browse_from(u"c:\\dane\\")), show(u"\\"));
    EXPECT_EQ(fake.folder_dialogs.sent, (Sent{{FakeFolderDialogs::handle, 1126, 1, u"c:\\dane"}}));
    EXPECT_EQ(fake.folder_dialogs.results, std::vector<Long>{0});
}

TEST(FolderDialog, WithoutInDirBlanksGoOut) {
    FakePlatform fake;
    for (const StringView directory : {u"", u"\\"}) {
        EXPECT_EQ(show(browse_from(String(directory))), show(u"\\"));
        EXPECT_EQ(fake.folder_dialogs.shown.back().lParam, nullptr);
        ASSERT_FALSE(fake.folder_dialogs.sent.empty());
        const auto& sent = fake.folder_dialogs.sent.back();
        EXPECT_EQ(sent.message, 1126);
        EXPECT_EQ(sent.wParam, 1);
        EXPECT_FALSE(sent.text.empty());
        EXPECT_EQ(show(trim(sent.text)), show(u""));
    }
}

TEST(FolderDialog, SelectionGoesToTheStatusLine) {
    FakePlatform fake;
    fake.folder_dialogs.paths[list] = u"c:\\dane";
    fake.folder_dialogs.messages = {{2, list}, {2, 78}};
    EXPECT_EQ(show(browse_from(u"c:\\")), show(u"\\"));
    EXPECT_EQ(fake.folder_dialogs.sent, (Sent{{FakeFolderDialogs::handle, 1124, 0, u"c:\\dane"},
                                              {FakeFolderDialogs::handle, 1124, 0, u""}}));
    EXPECT_EQ(fake.folder_dialogs.results, (std::vector<Long>{0, 0}));
    EXPECT_EQ(fake.folder_dialogs.beeps, 0);
}

TEST(FolderDialog, BadEntryKeepsTheDialogOpen) {
    FakePlatform fake;
    fake.folder_dialogs.messages = {{3, 0}};
    EXPECT_EQ(show(browse_from(u"c:\\")), show(u"\\"));
    EXPECT_EQ(fake.folder_dialogs.sent,
              (Sent{{FakeFolderDialogs::handle, 1124, 0, u"Bad Directory"}}));
    EXPECT_EQ(fake.folder_dialogs.results, std::vector<Long>{1});
    EXPECT_EQ(fake.folder_dialogs.beeps, 1);
}

TEST(FolderDialog, OtherMessagesDoNothing) {
    FakePlatform fake;
    fake.folder_dialogs.messages = {{0, list}, {4, list}, {-1, list}, {1124, list}};
    EXPECT_EQ(show(browse_from(u"c:\\")), show(u"\\"));
    EXPECT_TRUE(fake.folder_dialogs.sent.empty());
    EXPECT_EQ(fake.folder_dialogs.results, std::vector<Long>(4, 0));
    EXPECT_EQ(fake.folder_dialogs.beeps, 0);
}

// A dialog of a host that raises failures where the platform's never does.
TEST(FolderDialog, FailuresInTheCallbackAreIgnored) {
    class Raising final : public ForwardingFolderDialogs {
      public:
        using ForwardingFolderDialogs::ForwardingFolderDialogs;
        Long SendMessageA(Long, Long, Long, StringView) override { fail(error::invalid_call); }
    };
    FakePlatform fake;
    fake.folder_dialogs.messages = {{1, 0}, {2, list}, {3, 0}};
    Raising raising(fake.folder_dialogs);
    Platform operations = fake.operations;
    operations.folder_dialogs = &raising;
    const ScopedPlatform scope(operations);
    String directory = u"c:\\dane";
    EXPECT_EQ(show(browse(directory)), show(u"\\"));
    EXPECT_EQ(fake.folder_dialogs.results.size(), 3U);
}

}  // namespace
}  // namespace kvarta16::files_tests
