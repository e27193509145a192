// aIO, B_WinWer, CFileFind and the folder chooser: every member that asks the platform for
// anything, at every fault.
#include <gtest/gtest.h>

#include <kvarta16/files/B_WinWer.h>
#include <kvarta16/files/CBrowseForFolders.h>

#include "fault_loop.h"

namespace kvarta16::fault_tests {
namespace {

constexpr FaultSpan once = FaultSpan::Once;
constexpr FaultSpan for_good = FaultSpan::FromThenOn;

constexpr StringView old_file = u"C:\\dane\\a.txt";
constexpr StringView other_file = u"C:\\dane\\b.txt";
constexpr StringView folder = u"C:\\dane";
constexpr StringView new_folder = u"C:\\nowy";
const std::string too_big = " box: Plik jest za duży by wydrukować go na ekranie !";

void furnish(FaultBench& b) {
    b.fake.disk.add_folder(folder);
    b.fake.disk.add(old_file, "A");
}
void furnish_two(FaultBench& b) {
    furnish(b);
    b.fake.disk.add(other_file, "B");
}

std::string both_files(FaultBench& b) {
    return contents(b, old_file) + " " + contents(b, other_file);
}
std::string is_there(FaultBench& b, StringView path) {
    return b.fake.disk.find(path) == nullptr ? "-" : "there";
}

class FilesFaults : public testing::TestWithParam<Scenario> {};

TEST_P(FilesFaults, EndAsDocumented) {
    check(GetParam());
}

// ---- Paths ----------------------------------------------------------------------------------

// The current directory is the one thing that they ask for, where a name has no folder.
const Scenario paths[] = {
    {.name = "aIO.GetWindowsDir",
     .discipline = Discipline::Guarded,
     .good = "C:\\WINDOWS\\",
     .prepared = "",
     .prepare = [](FaultBench& b) { b.fake.system_information.windows_directory = u"C:\\WINDOWS"; },
     .run = [](FaultBench& b) { return told(b.subjects.io.GetWindowsDir()); }},
    {.name = "aIO.BaseName",
     .good = "plik.txt",
     .run = [](FaultBench& b) { return told(b.subjects.io.BaseName(u"plik.txt")); }},
    {.name = "aIO.BaseName_BezExT",
     .good = "plik",
     .run = [](FaultBench& b) { return told(b.subjects.io.BaseName_BezExT(u"plik.txt")); }},
    {.name = "aIO.BaseName_ExT",
     .good = "txt",
     .run = [](FaultBench& b) { return told(b.subjects.io.BaseName_ExT(u"plik.txt")); }},
    {.name = "aIO.SeparatePathAndFileName",
     .good = "done / C:\\ plik.txt",
     .run =
         [](FaultBench& b) {
             b.subjects.io.SeparatePathAndFileName(u"plik.txt", b.first, b.second);
             return std::string("done");
         },
     .written = [](FaultBench& b) { return told(b.first) + " " + told(b.second); },
     .exceptions = {{"Files.CurDir", passes + " /  "}}},
};

// ---- Folders and files ----------------------------------------------------------------------

std::string make_dir_change(FaultBench& b, StringView path) {
    b.subjects.io.MakeDirChange(path);
    return "done";
}

const Scenario files[] = {
    {.name = "aIO.MakeDirChange, into a folder",
     .discipline = Discipline::Guarded,
     .good = "done / C:\\dane",
     .prepared = "done / C:\\",  // the folder is there and cannot be made
     .prepare = furnish,
     .run = [](FaultBench& b) { return make_dir_change(b, folder); },
     .written = [](FaultBench& b) { return told(b.fake.disk.current_directory()); }},
    {.name = "aIO.MakeDirChange, making one",
     .discipline = Discipline::Tolerant,
     .good = "done / there C:\\",
     .prepare = furnish,
     .run = [](FaultBench& b) { return make_dir_change(b, new_folder); },
     .written =
         [](FaultBench& b) {
             return is_there(b, new_folder) + " " + told(b.fake.disk.current_directory());
         },
     .exceptions = {{"Files.ChDrive", "done / - C:\\", for_good},
                    {"Files.ChDir", "done / - C:\\", for_good},
                    {"Files.MkDir", "done / - C:\\"}}},
    {.name = "aIO.MakeDir",
     .discipline = Discipline::Tolerant,
     .good = "done / there",
     .prepare = furnish,
     .run =
         [](FaultBench& b) {
             b.subjects.io.MakeDir(new_folder);
             return std::string("done");
         },
     .written = [](FaultBench& b) { return is_there(b, new_folder); },
     .exceptions = {{"Files.MkDir", "done / -", for_good}}},  // it is tried once more
    {.name = "aIO.DelFile2",
     .discipline = Discipline::Guarded,
     .good = "done / - B",
     .prepared = "done / A B",
     .prepare = furnish_two,
     .run =
         [](FaultBench& b) {
             b.subjects.io.DelFile2(old_file);
             return std::string("done");
         },
     .written = both_files},
    // A file that can neither be looked at nor opened counts as gone.
    {.name = "aIO.DelFile",
     .discipline = Discipline::Tolerant,
     .good = "-1 / - B",
     .prepare = furnish_two,
     .run = [](FaultBench& b) { return told(b.subjects.io.DelFile(old_file)); },
     .written = both_files,
     .exceptions = {{"Files.GetAttr#1", "-1 / A B", for_good},
                    {"Files.Kill", "0 / A B", once},
                    {"Files.Kill", "-1 / A B", for_good}}},
    {.name = "aIO.RenameFile",
     .discipline = Discipline::Guarded,
     .good = "-1 / - A",
     .prepared = "0 / A B",
     .prepare = furnish_two,
     .run =
         [](FaultBench& b) { return told(b.subjects.io.RenameFile(old_file, other_file, true)); },
     .written = both_files,
     .exceptions = {{"Files.GetAttr", good, once}, {"Files.Name", "0 / A -"}}},
    {.name = "aIO.IsFile, of a file",
     .discipline = Discipline::Guarded,
     .good = "-1",
     .prepared = "0",
     .prepare = furnish,
     .run = [](FaultBench& b) { return told(b.subjects.io.IsFile(old_file)); },
     .exceptions = {{"Files.GetAttr", good, once}}},  // it can be opened
    {.name = "aIO.IsFile, of a folder",
     .discipline = Discipline::Tolerant,
     .good = "0",
     .prepare = furnish,
     .run = [](FaultBench& b) { return told(b.subjects.io.IsFile(folder)); }},
    {.name = "aIO.IsFile, of nothing",
     .discipline = Discipline::Tolerant,
     .good = "0",
     .prepare = furnish,
     .run = [](FaultBench& b) { return told(b.subjects.io.IsFile(new_folder)); }},
    {.name = "aIO.IsFile_file",
     .discipline = Discipline::Guarded,
     .good = "-1",
     .prepared = "0",
     .prepare = furnish,
     .run = [](FaultBench& b) { return told(b.subjects.io.IsFile_file(old_file)); },
     .exceptions = {{"FileTable.Close", "0 | open: file 1", for_good}}},
    {.name = "aIO.IsDIR, of a folder",
     .discipline = Discipline::Guarded,
     .good = "-1 / -",
     .prepared = "0 / -",
     .prepare = furnish,
     .run = [](FaultBench& b) { return told(b.subjects.io.IsDIR(folder)); },
     .written = [](FaultBench& b) { return is_there(b, u"C:\\dane\\zevotest.tmp"); },
     .exceptions = {{"Files.GetAttr", good, once}}},  // a file can be made in it
    {.name = "aIO.IsDIR, of a root without attributes",
     .discipline = Discipline::Guarded,
     .good = "-1 / -",
     .prepared = "0 / -",
     .run = [](FaultBench& b) { return told(b.subjects.io.IsDIR(u"C:\\")); },
     .written = [](FaultBench& b) { return is_there(b, u"C:\\zevotest.tmp"); },
     .exceptions = {{"Files.GetAttr", good, once},
                    {"FileTable.Close", "0 / there | open: file 1", for_good},
                    {"Files.Kill", "-1 / there"}}},
    {.name = "aIO.FileCopy_Fun",
     .discipline = Discipline::Guarded,
     .good = "-1 / A A",
     .prepared = "0 / A B",
     .prepare = furnish_two,
     .run = [](FaultBench& b) { return told(b.subjects.io.FileCopy_Fun(old_file, other_file)); },
     .written = both_files},
    {.name = "aIO.IsFile_open",
     .discipline = Discipline::Guarded,
     .good = "-1",
     .prepared = "0",
     .prepare = furnish,
     .run = [](FaultBench& b) { return told(b.subjects.io.IsFile_open(old_file)); },
     .exceptions = {{"FileTable.Close", "0 | open: file 1"}}},
    // A box that fails has nobody left to tell of it: its own failure passes. Number 1 is left as
    // the failure left it.
    {.name = "aIO.Zapisz_do_pliku",
     .discipline = Discipline::Tolerant,
     .good = "-1 / nowe\r\n",
     .prepare = furnish,
     .run = [](FaultBench& b) { return told(b.subjects.io.Zapisz_do_pliku(old_file, u"nowe")); },
     .written = [](FaultBench& b) { return contents(b, old_file) + boxes_of(b); },
     .exceptions = {{"FileTable.Close#1", "0 / A" + too_big, once},
                    {"FileTable.Close#1", passes + " / A", for_good},
                    {"Files.GetAttr#1", passes + " / A", for_good},
                    {"Files.GetAttr#2", passes + " / A", for_good},
                    {"Files.Kill", passes + " / A", for_good},
                    {"Files.GetAttr#3", passes + " / -", for_good},
                    {"FileTable.FreeFile", passes + " / -", for_good},
                    {"FileTable.Open#1", passes + " / -", for_good},
                    {"FileTable.Close#2", passes + " / -", for_good},
                    {"FileTable.Open#2", "0 / -" + too_big, once},
                    {"FileTable.Open#2", passes + " / -", for_good},
                    {"FileTable.PrintLine", "0 / " + too_big + " | open: file 1", once},
                    {"FileTable.PrintLine", passes + " /  | open: file 1", for_good},
                    {"FileTable.Close#3", "0 / nowe\r\n" + too_big + " | open: file 1", once},
                    {"FileTable.Close#3", passes + " / nowe\r\n | open: file 1", for_good}}},
};

// ---- Programs, the system, the keyboard -------------------------------------------------------

const std::string error_box = std::string(" box: ") + fault_text;

void escape_waits(FaultBench& b) {
    b.fake.messages.add_key(27);
    b.fake.boxes.answers = {MsgBoxResult::Yes};
}
void nt_5_1(FaultBench& b) {
    OSVERSIONINFO version;
    version.dwPlatformId = 2;
    version.dwMajorVersion = 5;
    version.dwMinorVersion = 1;
    b.fake.system_information.version_record = version;
}
std::string pointers(FaultBench& b) {
    return std::to_string(b.fake.screen.pointers.size()) + boxes_of(b);
}

const Scenario programs[] = {
    {.name = "aIO.DoSendKeys",
     .discipline = Discipline::Guarded,
     .good = "done / 1 1",
     .prepared = passes,  // of the box; see above
     .prepare = [](FaultBench&) {},
     .run =
         [](FaultBench& b) {
             b.subjects.io.DoSendKeys(u"Notatnik", 0, u"abc", 0);
             return std::string("done");
         },
     .written =
         [](FaultBench& b) {
             return std::to_string(b.fake.processes.activated.size()) + " " +
                    std::to_string(b.fake.processes.sent.size()) + boxes_of(b);
         },
     .exceptions = {{"Processes.AppActivate", "done / 0 0" + error_box, once},
                    {"Processes.AppActivate", passes + " / 0 0", for_good},
                    {"Processes.SendKeys", "done / 1 0" + error_box, once},
                    {"Processes.SendKeys", passes + " / 1 0", for_good}}},
    {.name = "aIO.SyncShell",
     .discipline = Discipline::Guarded,
     .good = "-1 / ",
     .prepared = "0 / " + error_box,
     .run = [](FaultBench& b) { return told(b.subjects.io.SyncShell(u"calc", 0, false, true)); },
     .written = boxes_of,
     .exceptions = {{"Processes.Shell", passes + " / ", for_good}}},
    {.name = "aIO.GetWinPlatform",
     .discipline = Discipline::Guarded,
     .good = "2",
     .prepared = "0",
     .prepare = nt_5_1,
     .run = [](FaultBench& b) { return told(b.subjects.io.GetWinPlatform()); }},
    {.name = "B_WinWer.GetWindowsVersion",
     .discipline = Discipline::Guarded,
     .good = "5,1",
     .prepared = "0",
     .prepare = nt_5_1,
     .run = [](FaultBench&) { return told(B_WinWer().GetWindowsVersion()); }},
    // The pointer is put back whatever the number is, and that never fails.
    {.name = "aIO.pDisplayError_Shell, below 33",
     .good = "done / 1 box: Nie znaleziono pliku.",
     .run =
         [](FaultBench& b) {
             b.subjects.io.pDisplayError_Shell(2);
             return std::string("done");
         },
     .written = pointers,
     .exceptions = {{"Screen.PutMousePointer", "done / 0 box: Nie znaleziono pliku.", once},
                    {"Screen.PutMousePointer", passes + " / 0", for_good},
                    {"MessageBoxes.MsgBox", passes + " / 1"}}},
    {.name = "aIO.pDisplayError_Shell, from 33",
     .discipline = Discipline::Guarded,
     .good = "done / 1",
     .prepared = "done / 0",
     .run =
         [](FaultBench& b) {
             b.subjects.io.pDisplayError_Shell(33);
             return std::string("done");
         },
     .written = pointers},
    {.name = "aIO.Spakuj_i_Skasuj",
     .good = "done",
     .run =
         [](FaultBench& b) {
             b.subjects.io.Spakuj_i_Skasuj(old_file, false);
             return std::string("done");
         }},
    // A pause that fails ends the wait. A file that can neither be looked at nor opened stays.
    {.name = "aIO.Skasuj_po_pakowaniu, with the marker there",
     .discipline = Discipline::Tolerant,
     .good = "0 / - M",
     .prepare =
         [](FaultBench& b) {
             furnish(b);
             b.fake.disk.add(u"C:\\dane\\a.txt_", "M");
         },
     .run = [](FaultBench& b) { return told(b.subjects.io.Skasuj_po_pakowaniu(old_file)); },
     .written =
         [](FaultBench& b) {
             return contents(b, old_file) + " " + contents(b, u"C:\\dane\\a.txt_");
         },
     .exceptions = {{"Files.GetAttr#1", passes + " / A M", for_good},
                    {"Files.GetAttr#2", "0 / A M", for_good},
                    {"Files.Kill", "0 / A M"}}},
    {.name = "aIO.Skasuj_po_pakowaniu, with the marker to come",
     .discipline = Discipline::Tolerant,
     .good = "0 / -",
     .prepare =
         [](FaultBench& b) {
             furnish(b);
             b.patient.on_pause = [&b] { b.fake.disk.add(u"C:\\dane\\a.txt_", "M"); };
         },
     .run = [](FaultBench& b) { return told(b.subjects.io.Skasuj_po_pakowaniu(old_file)); },
     .written = [](FaultBench& b) { return contents(b, old_file); },
     .exceptions = {{"Files.GetAttr#1", passes + " / A", for_good},
                    {"FileTable.FreeFile#1", passes + " / A", for_good},
                    {"FileTable.Open#1", passes + " / A", for_good},
                    {"FileTable.Close#1", passes + " / A", for_good},
                    {"Sleeper.Sleep", passes + " / A"},
                    {"Files.GetAttr#2", passes + " / A", for_good},
                    {"Files.GetAttr#3", "0 / A", for_good},
                    {"Files.Kill", "0 / A"}}},
    {.name = "aIO.Przerwij",
     .discipline = Discipline::Guarded,
     .good = "-1",
     .prepared = "0",
     .prepare = escape_waits,
     .run = [](FaultBench& b) { return told(b.subjects.io.Przerwij(false, u"druk")); },
     .exceptions = {{"MessageBoxes.MsgBox", passes}}},
};

// ---- The finder -----------------------------------------------------------------------------

void three_files(FaultBench& b) {
    b.fake.find_files.add(u"c.txt");
    b.fake.find_files.add(u"b.txt");
    b.fake.find_files.add(u"a.txt");
}
void one_file(FaultBench& b) {
    WIN32_FIND_DATA& entry = b.fake.find_files.add(u"b.txt");
    entry.ftCreationTime = file_time(2024, 5, 17, 36000);
    entry.ftLastAccessTime = file_time(2024, 5, 18, 36000);
    entry.ftLastWriteTime = file_time(2024, 5, 19, 36000);
    b.fake.find_files.offset = 3600 * units_per_second;
}
void one_file_found(FaultBench& b) {
    one_file(b);
    static_cast<void>(b.subjects.finder.FindFile(u"*.txt"));
}
std::string found_names(FaultBench& b) {
    CFileFind& finder = b.subjects.finder;
    std::string names = told(finder.GetFileName());
    while (finder.FindNextFile()) {
        names += " " + told(finder.GetFileName());
    }
    return names + " root '" + told(finder.GetRoot()) + "'";
}
// The halves as they stand: the accessors of moments would ask the platform again.
std::string found_times(FaultBench& b) {
    const CFileFind& finder = b.subjects.finder;
    const auto hour = [](Long high, Long low) {
        const std::int64_t units = units_of({low, high});
        return std::to_string(units % units_per_day / units_per_second / 3600);
    };
    return hour(finder.GetCreationDateHigh(), finder.GetCreationDateLow()) + " " +
           hour(finder.GetLastAccessTimeHigh(), finder.GetLastAccessTimeLow()) + " " +
           hour(finder.GetLastWriteTimeHigh(), finder.GetLastWriteTimeLow());
}

const std::string search_open = " | open: searches 1";

// Paths and local times are not looked at; a search that stops early ends the list.
const Scenario finder[] = {
    {.name = "CFileFind.FindFile, its list",
     .discipline = Discipline::Tolerant,
     .good = "-1 / b.txt c.txt a.txt root ''",
     .prepare = three_files,
     .run = [](FaultBench& b) { return told(b.subjects.finder.FindFile(u"*.txt")); },
     .written = found_names,
     .exceptions =
         {{"FindFiles.FindFirstFileA", "0 /  root ''"},
          {"FindFiles.FindNextFileA#1", "-1 / c.txt root ''", once},
          {"FindFiles.FindNextFileA#2", "-1 / c.txt b.txt root ''", once},
          {"FindFiles.FindNextFileA#1", "-1 / c.txt root ''" + search_open},
          {"FindFiles.FindNextFileA#2", "-1 / c.txt b.txt root ''" + search_open},
          {"FindFiles.FindNextFileA#3", good + search_open, for_good},
          {"FindFiles.FindClose", good + search_open},
          {"FindFiles.FileTimeToLocalFileTime", good, once},
          {"FindFiles.FileTimeToLocalFileTime#1", "-1 / c.txt root ''" + search_open},
          {"FindFiles.FileTimeToLocalFileTime#2", "-1 / c.txt root ''" + search_open},
          {"FindFiles.FileTimeToLocalFileTime#3", "-1 / c.txt root ''" + search_open},
          {"FindFiles.FileTimeToLocalFileTime#4", "-1 / c.txt b.txt root ''" + search_open},
          {"FindFiles.FileTimeToLocalFileTime#5", "-1 / c.txt b.txt root ''" + search_open},
          {"FindFiles.FileTimeToLocalFileTime#6", "-1 / c.txt b.txt root ''" + search_open},
          {"FindFiles.FileTimeToLocalFileTime", good + search_open},
          {"FindFiles.GetFullPathNameA", "-1 / c.txt root ''" + search_open, for_good},
          {"FindFiles.GetShortPathNameA", "-1 / c.txt root ''" + search_open, for_good}}},
    {.name = "CFileFind.FindFile, its times",
     .discipline = Discipline::Tolerant,
     .good = "-1 / 11 11 11",
     .prepare = one_file,
     .run = [](FaultBench& b) { return told(b.subjects.finder.FindFile(u"*.txt")); },
     .written = found_times,
     .exceptions = {{"FindFiles.FindFirstFileA", "0 / 0 0 0"},
                    {"FindFiles.FileTimeToLocalFileTime#1", "-1 / 10 11 11", once},
                    {"FindFiles.FileTimeToLocalFileTime#2", "-1 / 11 10 11", once},
                    {"FindFiles.FileTimeToLocalFileTime#3", "-1 / 11 11 10", once},
                    {"FindFiles.FileTimeToLocalFileTime#1", "-1 / 10 10 10" + search_open},
                    {"FindFiles.FileTimeToLocalFileTime#2", "-1 / 11 10 10" + search_open},
                    {"FindFiles.FileTimeToLocalFileTime#3", "-1 / 11 11 10" + search_open},
                    {"FindFiles.GetFullPathNameA", good + search_open, for_good},
                    {"FindFiles.GetShortPathNameA", good + search_open, for_good},
                    {"FindFiles.FindNextFileA", good + search_open, for_good},
                    {"FindFiles.FindClose", good + search_open}}},
    {.name = "CFileFind.GetLastWriteTime",
     .discipline = Discipline::Guarded,
     .good = "2024-05-19 11:00",
     .prepared = "1899-12-31 00:00",
     .prepare = one_file_found,
     .run = [](FaultBench& b) { return told(b.subjects.finder.GetLastWriteTime()); }},
    {.name = "CFileFind.GetLastAccessTime",
     .discipline = Discipline::Guarded,
     .good = "2024-05-18 11:00",
     .prepared = "1899-12-31 00:00",
     .prepare = one_file_found,
     .run = [](FaultBench& b) { return told(b.subjects.finder.GetLastAccessTime()); }},
    {.name = "CFileFind.GetCreationDate",
     .discipline = Discipline::Guarded,
     .good = "2024-05-17 11:00",
     .prepared = "1899-12-31 00:00",
     .prepare = one_file_found,
     .run = [](FaultBench& b) { return told(b.subjects.finder.GetCreationDate()); }},
};

// ---- The folder chooser ---------------------------------------------------------------------

constexpr Long chosen = 11;
constexpr Long passed_over = 12;

void dialog(FaultBench& b) {
    b.fake.folder_dialogs.messages = {{browse_message::initialized, 0},
                                      {browse_message::selection_changed, passed_over},
                                      {browse_message::validate_failed, 0}};
    b.fake.folder_dialogs.answer = chosen;
    b.fake.folder_dialogs.paths = {{chosen, u"C:\\wybrany"}, {passed_over, u"C:\\inny"}};
    b.first = u"C:\\dane\\";
}

// What the callback has sent, and the beeps.
std::string sent(FaultBench& b) {
    std::string texts = told(b.first);
    for (const auto& message : b.fake.folder_dialogs.sent) {
        texts += " '" + told(message.text) + "'";
    }
    return texts + " " + std::to_string(b.fake.folder_dialogs.beeps);
}

const Scenario chooser[] = {
    {.name = "CBrowseForFolders.BrowseForFolder",
     .discipline = Discipline::Tolerant,
     .good = "C:\\wybrany\\ / C:\\dane 'C:\\dane' 'C:\\inny' 'Bad Directory' 1",
     .prepare = dialog,
     .run =
         [](FaultBench& b) {
             return told(CBrowseForFolders().BrowseForFolder(1, u"Gdzie?", b.first));
         },
     .written = sent,
     .exceptions = {{"FolderDialogs.SHBrowseForFolder", "\\ / C:\\dane 0"},
                    {"FolderDialogs.SendMessageA#1",
                     "C:\\wybrany\\ / C:\\dane 'C:\\inny' 'Bad Directory' 1", once},
                    {"FolderDialogs.SendMessageA#1", "\\ / C:\\dane 0", for_good},
                    {"FolderDialogs.SHGetPathFromIDList#1",
                     "C:\\wybrany\\ / C:\\dane 'C:\\dane' '' 'Bad Directory' 1", once},
                    {"FolderDialogs.SHGetPathFromIDList#1", "\\ / C:\\dane 'C:\\dane' 0", for_good},
                    {"FolderDialogs.SendMessageA#2",
                     "C:\\wybrany\\ / C:\\dane 'C:\\dane' 'Bad Directory' 1", once},
                    {"FolderDialogs.SendMessageA#2", "\\ / C:\\dane 'C:\\dane' 0", for_good},
                    {"FolderDialogs.Beep",
                     "C:\\wybrany\\ / C:\\dane 'C:\\dane' 'C:\\inny' 'Bad Directory' 0", once},
                    {"FolderDialogs.Beep", "\\ / C:\\dane 'C:\\dane' 'C:\\inny' 0", for_good},
                    {"FolderDialogs.SendMessageA#3",
                     "C:\\wybrany\\ / C:\\dane 'C:\\dane' 'C:\\inny' 1", once},
                    {"FolderDialogs.SendMessageA#3", "\\ / C:\\dane 'C:\\dane' 'C:\\inny' 1",
                     for_good},
                    {"FolderDialogs.SHGetPathFromIDList#2",
                     "\\ / C:\\dane 'C:\\dane' 'C:\\inny' 'Bad Directory' 1"}}},
};

INSTANTIATE_TEST_SUITE_P(Paths, FilesFaults, testing::ValuesIn(paths));
INSTANTIATE_TEST_SUITE_P(Files, FilesFaults, testing::ValuesIn(files));
INSTANTIATE_TEST_SUITE_P(Programs, FilesFaults, testing::ValuesIn(programs));
INSTANTIATE_TEST_SUITE_P(Finder, FilesFaults, testing::ValuesIn(finder));
INSTANTIATE_TEST_SUITE_P(Chooser, FilesFaults, testing::ValuesIn(chooser));

}  // namespace
}  // namespace kvarta16::fault_tests
