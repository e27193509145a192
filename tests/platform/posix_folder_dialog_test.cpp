// The folder dialog: by programs on a display, here scripts that write their words down, and by a
// question on a real pseudo-terminal.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/posix_folder_dialog.h>
#include <kvarta16/platform/posix/windows_paths.h>

#include "fake_display.h"
#include "program_files.h"
#include "terminal_child.h"

namespace kvarta16::posix {
namespace {

PosixFolderDialogs& dialogs() {
    static PosixFolderDialogs made;
    return made;
}

// ---- A caller of the dialog -----------------------------------------------------------------

struct Heard {
    Long hwnd;
    Long message;
    Long value;
};
std::vector<Heard> heard;

std::string path_of(Long item_list) {
    String buffer(260, u' ');
    if (dialogs().SHGetPathFromIDList(item_list, buffer) == 0) {
        return buffer == String(260, u' ') ? "none" : "none, but something is written";
    }
    return buffer.size() == 260 ? to_utf8(buffer.substr(0, buffer.find(u'\0'))) : "cut";
}

// Selects the folder of lParam when the dialog begins.
Long callback(Long hwnd, Long message, Long value, const String* lParam) {
    heard.push_back({hwnd, message, value});
    if (message == browse_message::initialized && lParam != nullptr) {
        EXPECT_EQ(dialogs().SendMessageA(hwnd, browse_message::set_selection, 1, *lParam), 0);
    }
    return 0;
}

BROWSEINFO browse_info(StringView title, const String* folder, Long flags) {
    BROWSEINFO info;
    info.lpszTitle = title;
    info.ulFlags = flags;
    info.lpfn = &callback;
    info.lParam = folder;
    return info;
}

// The path that is chosen; "cancel" for none.
std::string browse(StringView title, const String& folder, Long flags = browse_flag::only_folders) {
    heard.clear();
    const Long item_list = dialogs().SHBrowseForFolder(browse_info(title, &folder, flags));
    return item_list == 0 ? "cancel" : path_of(item_list);
}

String windows_form(const std::string& path) {
    String text = u"Z:" + from_utf8(path);
    std::ranges::replace(text, u'/', u'\\');
    return text;
}

// ---- On a display ---------------------------------------------------------------------------

class FolderPrograms : public testing::Test {
  protected:
    FolderPrograms() : path_("PATH", programs_.path()) {
        std::filesystem::create_directory(folder_ / "dane firmy");
        std::ofstream(folder_ / "plik.txt") << "x";
    }

    // A program that writes its words down, one in angle brackets each, and answers.
    void program(const std::string& name, const std::string& answer) const {
        static_cast<void>(programs_.script(name, "printf '<%s>' " + name + " \"$@\" > '" +
                                                     (programs_ / "words") + "'\n" + answer));
    }
    [[nodiscard]] std::string words() const { return text_of(programs_ / "words"); }

    ScratchFolder folder_;
    ScratchFolder programs_;

  private:
    ScopedVariable path_;
    FakeDisplay display_;
};

TEST_F(FolderPrograms, AFolderIsChosen) {
    const std::string chosen = folder_ / "dane firmy";
    program("zenity", "echo '" + chosen + "'\n");
    program("kdialog", "exit 1\n");
    EXPECT_EQ(browse(u"Wybierz \"katalog\"; --x $HOME", windows_form(folder_.path())),
              to_utf8(windows_form(chosen)));
    EXPECT_EQ(words(),
              "<zenity><--file-selection><--title=Wybierz \"katalog\"; --x $HOME>"
              "<--directory><--filename=" +
                  folder_.path() + "/>");
    ASSERT_EQ(heard.size(), 2U);
    EXPECT_EQ(heard[0].message, browse_message::initialized);
    EXPECT_EQ(heard[1].message, browse_message::selection_changed);
    EXPECT_EQ(heard[0].hwnd, heard[1].hwnd);
    EXPECT_NE(heard[0].hwnd, 0);
    EXPECT_EQ(path_of(heard[1].value), to_utf8(windows_form(chosen)));
}

TEST_F(FolderPrograms, TheOtherProgram) {
    const std::string chosen = folder_ / "dane firmy";
    program("kdialog", "echo '" + chosen + "'\n");
    EXPECT_EQ(browse(u"--Katalog", windows_form(folder_.path())), to_utf8(windows_form(chosen)));
    EXPECT_EQ(words(),
              "<kdialog><--title=--Katalog><--getexistingdirectory><" + folder_.path() + ">");
    EXPECT_EQ(browse(u"Plik", u"", browse_flag::include_files), to_utf8(windows_form(chosen)));
    EXPECT_EQ(words(), "<kdialog><--title=Plik><--getopenfilename>");
}

TEST_F(FolderPrograms, AFileIsChosen) {
    program("zenity", "echo '" + (folder_ / "plik.txt") + "'\n");
    EXPECT_EQ(browse(u"Plik", u"", browse_flag::include_files),
              to_utf8(windows_form(folder_ / "plik.txt")));
    EXPECT_EQ(words(), "<zenity><--file-selection><--title=Plik>");
}

TEST_F(FolderPrograms, Cancels) {
    for (const char* answer :
         {"exit 1\n", "exit 5\n", "exit 0\n", "kill -9 $$\n", "echo /tmp; exit 1\n"}) {
        program("zenity", answer);
        EXPECT_EQ(browse(u"Katalog", u""), "cancel") << answer;
        EXPECT_EQ(heard.size(), 1U);
    }
}

TEST_F(FolderPrograms, WhereNothingIsSelectedTheProgramOpensAsItLikes) {
    program("zenity", "exit 1\n");
    for (const String& folder : {String(), String(12, u' '), String(u"Q:\\nothing"),
                                 windows_form(folder_ / "plik.txt"), String(u"\\\\server\\x")}) {
        EXPECT_EQ(browse(u"Katalog", folder), "cancel");
        EXPECT_EQ(words(), "<zenity><--file-selection><--title=Katalog><--directory>")
            << to_utf8(folder);
    }
}

TEST_F(FolderPrograms, ARootIsARoot) {
    program("zenity", "echo /\n");
    EXPECT_EQ(browse(u"Katalog", u"Z:\\"), "Z:\\");
    EXPECT_EQ(words(), "<zenity><--file-selection><--title=Katalog><--directory><--filename=//>");
    const ScratchFolder drives;
    std::filesystem::create_directories(drives / "D/dane");
    const ScopedVariable variable("KVARTA16_DRIVES", drives.path());
    program("zenity", "echo '" + (drives / "D") + "'\n");
    EXPECT_EQ(browse(u"Katalog", u""), "D:\\");
    program("zenity", "echo '" + (drives / "D/dane") + "/'\n");
    EXPECT_EQ(browse(u"Katalog", u"D:\\"), "D:\\dane");
}

TEST_F(FolderPrograms, ItemsWithoutAPath) {
    for (const std::string name : {"a\\x", "a:b\\c", "\\"}) {
        std::filesystem::create_directory(folder_ / name);
        program("zenity", "printf '%s\\n' '" + (folder_ / name) + "'\n");
        EXPECT_EQ(browse(u"Katalog", u""), "none") << name;
    }
    program("zenity", "echo '" + (folder_ / "gone") + "'\n");
    EXPECT_EQ(browse(u"Katalog", u""), "none");
    std::string deep = folder_.path();
    while (deep.size() < 256) {
        deep += '/' + std::string(std::min<std::size_t>(100, 256 - deep.size()), 'x');
    }
    std::filesystem::create_directories(deep);
    program("zenity", "echo '" + deep + "'\n");
    const std::string path = browse(u"Katalog", u"");
    EXPECT_EQ(path, deep.size() + 2 <= 259 ? to_utf8(windows_form(deep)) : "none");
    std::filesystem::create_directory(deep + "/xy");
    program("zenity", "echo '" + deep + "/xy'\n");
    EXPECT_EQ(browse(u"Katalog", u""), "none");
}

TEST_F(FolderPrograms, ItemListsStay) {
    program("zenity", "echo /\n");
    const Long first = dialogs().SHBrowseForFolder(browse_info(u"", nullptr, 1));
    program("zenity", "echo '" + folder_.path() + "'\n");
    const Long second = dialogs().SHBrowseForFolder(browse_info(u"", nullptr, 1));
    EXPECT_NE(first, second);
    EXPECT_EQ(path_of(first), "Z:\\");
    EXPECT_EQ(path_of(second), to_utf8(windows_form(folder_.path())));
    for (const Long none : {0, -1, second + 1, 2147483647}) {
        EXPECT_EQ(path_of(none), "none");
    }
}

TEST_F(FolderPrograms, MessagesToNoDialogAndOtherMessages) {
    program("zenity", "exit 1\n");
    BROWSEINFO info = browse_info(u"Katalog", nullptr, 1);
    info.lpfn = [](Long hwnd, Long, Long, const String*) -> Long {
        const String folder = u"Z:\\tmp";
        dialogs().SendMessageA(hwnd + 1, browse_message::set_selection, 1, folder);
        dialogs().SendMessageA(hwnd, browse_message::set_selection, 0, folder);
        dialogs().SendMessageA(hwnd, browse_message::set_status_text, 1, folder);
        return 0;
    };
    EXPECT_EQ(dialogs().SHBrowseForFolder(info), 0);
    EXPECT_EQ(words(), "<zenity><--file-selection><--title=Katalog><--directory>");
    info.lpfn = nullptr;
    EXPECT_EQ(dialogs().SHBrowseForFolder(info), 0);
}

// ---- On a terminal --------------------------------------------------------------------------

struct Asked {
    std::string path;
    std::string screen;
};

Asked asked(const std::string& typed, const String& folder,
            Long flags = browse_flag::only_folders) {
    TerminalChild child([&] {
        ::unsetenv("DISPLAY");
        ::unsetenv("WAYLAND_DISPLAY");
        termios settings{};
        ::tcgetattr(STDIN_FILENO, &settings);
        settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);  // the screen shows the questions alone
        settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
        ::tcsetattr(STDIN_FILENO, TCSANOW, &settings);
        return browse(u"Wybierz katalog", folder, flags);
    });
    EXPECT_TRUE(child.shows("[Anuluj]: "));
    child.type(typed);
    const std::string path = child.result();
    return {path, child.screen()};
}

TEST(FolderQuestion, PathsOfBothForms) {
    const ScratchFolder folder;
    std::filesystem::create_directory(folder / "Żółty");
    const std::string shown = to_utf8(windows_form(folder / "Żółty"));
    for (const std::string& typed : {folder / "Żółty", shown, "  " + (folder / "Żółty") + "/ ",
                                     to_utf8(windows_form(folder / "żÓŁTY")) + "\\"}) {
        const Asked answer = asked(typed + "\n", u"");
        EXPECT_EQ(answer.path, shown) << typed;
        EXPECT_EQ(answer.screen, "Wybierz katalog\nFolder [Anuluj]: ");
    }
    EXPECT_EQ(asked("/\n", u"").path, "Z:\\");
}

TEST(FolderQuestion, NothingTypedCancels) {
    for (const char* typed : {"\n", "  \n", "\x04", "/nothing\n\x04"}) {
        EXPECT_EQ(asked(typed, u"").path, "cancel") << testing::PrintToString(typed);
    }
}

TEST(FolderQuestion, WhatIsNoFolderIsAskedForAgain) {
    const ScratchFolder folder;
    std::ofstream(folder / "plik") << "x";
    const Asked answer =
        asked("/no/such/folder\n" + (folder / "plik") + "\nQ:\\x\n\\\\a\\b\n/tmp\n", u"");
    EXPECT_EQ(answer.path, "Z:\\tmp");
    const std::string again = "\aFolder [Anuluj]: ";
    EXPECT_EQ(answer.screen, "Wybierz katalog\nFolder [Anuluj]: " + again + again + again + again);
}

TEST(FolderQuestion, FilesWhereTheyMayBeChosen) {
    const ScratchFolder folder;
    std::ofstream(folder / "plik") << "x";
    const Asked answer = asked((folder / "nothing") + "\n" + (folder / "plik") + "\n", u"",
                               browse_flag::include_files);
    EXPECT_EQ(answer.path, to_utf8(windows_form(folder / "plik")));
    EXPECT_EQ(answer.screen,
              "Wybierz katalog\nPlik lub folder [Anuluj]: "
              "\aPlik lub folder [Anuluj]: ");
    EXPECT_EQ(asked(folder.path() + "\n", u"", browse_flag::include_files).path,
              to_utf8(windows_form(folder.path())));
}

TEST(FolderQuestion, TheFolderThatIsSelectedIsShown) {
    EXPECT_EQ(asked("\n", u"Z:\\tmp").screen, "Wybierz katalog\n(Z:\\tmp) Folder [Anuluj]: ");
    EXPECT_EQ(asked("\n", u"Z:\\no\\such").screen, "Wybierz katalog\nFolder [Anuluj]: ");
}

TEST(FolderQuestion, NobodyCanBeAskedWithoutATerminal) {
    const ScopedVariable display("DISPLAY", {});
    const ScopedVariable wayland("WAYLAND_DISPLAY", {});
    const int input = ::dup(STDIN_FILENO);
    const int nothing = ::open("/dev/null", O_RDONLY);
    ::dup2(nothing, STDIN_FILENO);
    EXPECT_EQ(browse(u"Katalog", u""), "cancel");
    EXPECT_EQ(heard.size(), 1U);
    dialogs().Beep();
    ::dup2(input, STDIN_FILENO);
    ::close(input);
    ::close(nothing);
}

TEST(FolderQuestion, TheBeepIsTheTerminalsBell) {
    TerminalChild child([] {
        dialogs().Beep();
        return std::string("done");
    });
    EXPECT_EQ(child.result(), "done");
    EXPECT_EQ(child.screen(), "\a");
}

// ---- Paths ----------------------------------------------------------------------------------

TEST(WindowsPath, OfTheDriveThatItLiesDeepestIn) {
    const ScratchFolder drives;
    std::filesystem::create_directories(drives / "C/dane/baza");
    std::filesystem::create_directories(drives / "Cx/dane");
    std::filesystem::create_directory_symlink(drives / "C/dane", drives / "D");
    const ScopedVariable variable("KVARTA16_DRIVES", drives.path());
    EXPECT_EQ(to_utf8(windows_path(drives / "C")), "C:\\");
    EXPECT_EQ(to_utf8(windows_path(drives / "C/dane/baza")), "D:\\baza");
    EXPECT_EQ(to_utf8(windows_path(drives / "D/baza")), "D:\\baza");
    EXPECT_EQ(to_utf8(windows_path(drives / "Cx/dane")), to_utf8(windows_form(drives / "Cx/dane")));
    EXPECT_EQ(to_utf8(windows_path("/")), "Z:\\");
}

}  // namespace
}  // namespace kvarta16::posix
