// What of the platform is there, with what, and how to get the rest.
#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include <unistd.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/posix/child_programs.h>
#include <kvarta16/platform/posix/display.h>
#include <kvarta16/platform/posix/posix_paths.h>

#include "commands.h"
#include "databases.h"
#include "language.h"

namespace kvarta16::tool {
namespace {

enum class State : unsigned char { No, Partly, Yes };

constexpr Words state_words[] = {{u"nie", u"no"}, {u"część", u"part"}, {u"tak", u"yes"}};

// What one row of the listing finds out.
struct Finding {
    State state = State::No;
    Words how;
    String detail;  // in no language: folders, names of programs
};

struct Row {
    Words what;
    Finding (*find)() = nullptr;
};

State yes_if(bool condition) {
    return condition ? State::Yes : State::No;
}

bool is_installed(const char* program) {
    const auto path = posix::program_on_path(program);
    return path && ::access(path->c_str(), X_OK) == 0;
}

bool has_terminal() {
    return ::isatty(STDIN_FILENO) != 0;
}

constexpr Words not_in_this_build = {u"jeszcze nie w tej wersji", u"not built yet"};

// ---- The rows -------------------------------------------------------------------------------

Finding find_boxes() {
    return has_terminal()
               ? Finding{State::Yes, {u"pytania na terminalu", u"asked on the terminal"}, u""}
               : Finding{State::Partly,
                         {u"standardowe wejście nie jest terminalem: odpowiada się domyślnie",
                          u"standard input is no terminal: boxes get their default answer"},
                         u""};
}

Finding find_clock() {
    return {
        State::Yes, {u"zegar i strefa czasowa systemu", u"the system's, in its time zone"}, u""};
}

// The drives that are there, each with its folder.
Finding find_drives() {
    String drives;
    for (char16_t letter = u'A'; letter <= u'Z'; ++letter) {
        try {
            const std::string folder = posix::native_path(String(1, letter) + u":\\");
            drives +=
                (drives.empty() ? u"" : u", ") + String(1, letter) + u": " + from_utf8(folder);
        } catch (const Failure&) {  // no such drive: it is left out
            continue;
        }
    }
    return {State::Yes,
            {u"dalsze jako foldery C, D ... w KVARTA16_DRIVES; są:",
             u"more as folders C, D ... of KVARTA16_DRIVES; there are:"},
            drives};
}

Finding find_file_table() {
    return platform().file_table == &unavailable_file_table()
               ? Finding{State::No, not_in_this_build, u""}
               : Finding{State::Yes, {u"wspólna dla procesu", u"one for the process"}, u""};
}

Finding find_shell() {
    return {State::Yes,
            {u"programy z PATH i ze ścieżek Windows, bez powłoki",
             u"programs of PATH and by Windows paths, without a shell"},
            u""};
}

Finding find_keys() {
    if (!is_installed("xdotool")) {
        return {State::No,
                {u"brak xdotool: apt-get install xdotool",
                 u"xdotool is missing: apt-get install xdotool"},
                u""};
    }
    return posix::has_x_display() ? Finding{State::Yes, {u"przez xdotool", u"through xdotool"}, u""}
                                  : Finding{State::No,
                                            {u"xdotool jest, brak ekranu X: ustaw DISPLAY",
                                             u"xdotool is there, an X display is not: set DISPLAY"},
                                            u""};
}

Finding find_keyboard() {
    return {yes_if(has_terminal()),
            has_terminal() ? Words{u"klawisze terminala", u"keys of the terminal"}
                           : Words{u"standardowe wejście nie jest terminalem",
                                   u"standard input is no terminal"},
            u""};
}

Finding find_version() {
    OSVERSIONINFO version;
    version.dwOSVersionInfoSize = 148;
    return platform().system_information->GetVersionExA(version) != 0
               ? Finding{State::Yes, {u"", u""}, u""}
               : Finding{State::No,
                         {u"system jej nie ma: numery wersji są zerem",
                          u"the system has none: version numbers are 0"},
                         u""};
}

Finding find_pointer() {
    return {State::No,
            {u"program nie ma okien: nic się nie zmienia", u"no windows here: nothing changes"},
            u""};
}

Finding find_folder_dialog() {
    for (const char* program : {"zenity", "kdialog"}) {
        if (posix::has_display() && is_installed(program)) {
            return {
                State::Yes, {u"na ekranie, przez", u"on the display, through"}, from_utf8(program)};
        }
    }
    return {has_terminal() ? State::Partly : State::No,
            has_terminal() ? Words{u"pytanie na terminalu; okno: ekran i apt-get install zenity",
                                   u"asked on the terminal; a window: a display and apt-get "
                                   u"install zenity"}
                           : Words{u"brak terminala; okno: ekran i apt-get install zenity",
                                   u"no terminal; a window: a display and apt-get install zenity"},
            u""};
}

Finding find_internet() {
    return platform().internet == &unavailable_internet()
               ? Finding{State::No, not_in_this_build, u""}
               : Finding{State::Yes, {u"wbudowany klient", u"a client of its own"}, u""};
}

Finding find_sqlite() {
    return platform().db_engine == &unavailable_db_engine()
               ? Finding{State::No, not_in_this_build, u""}
               : Finding{State::Yes, {u"SQLite, sqlite:PLIK", u"SQLite, sqlite:FILE"}, u""};
}

Finding find_odbc() {
    return opens_odbc()
               ? Finding{State::Yes, {u"unixODBC, odbc:ŹRÓDŁO", u"unixODBC, odbc:SOURCE"}, u""}
               : Finding{State::No,
                         {u"zbudowano bez unixODBC: apt-get install unixodbc-dev i zbuduj ponownie",
                          u"built without unixODBC: apt-get install unixodbc-dev and build again"},
                         u""};
}

Finding find_registry() {
    return platform().registry == &unavailable_registry()
               ? Finding{State::No, not_in_this_build, u""}
               : Finding{
                     State::Yes,
                     {u"plik; inny w KVARTA16_REGISTRY", u"a file; another in KVARTA16_REGISTRY"},
                     u""};
}

Finding find_menus() {
    return platform().menus == &unavailable_menus()
               ? Finding{State::No, not_in_this_build, u""}
               : Finding{State::Partly,
                         {u"w pamięci; rysuje je program", u"in memory; a host draws them"},
                         u""};
}

Finding find_printing() {
    return platform().spooler == &unavailable_spooler()
               ? Finding{State::No, not_in_this_build, u""}
               : Finding{State::Yes,
                         {u"do folderu, spool:FOLDER; serwer wydruku, jeśli zbudowano z libcups",
                          u"to a folder, spool:FOLDER; a print server if built with libcups"},
                         u""};
}

constexpr Row rows[] = {
    {{u"okna komunikatów", u"message boxes"}, find_boxes},
    {{u"zegar i pauzy", u"clock and pauses"}, find_clock},
    {{u"pliki i dyski", u"files and drives"}, find_drives},
    {{u"tabela plików", u"file table"}, find_file_table},
    {{u"uruchamianie programów", u"starting programs"}, find_shell},
    {{u"okna i klawisze programów", u"windows and keys"}, find_keys},
    {{u"klawiatura", u"keyboard"}, find_keyboard},
    {{u"wersja systemu", u"version record"}, find_version},
    {{u"wskaźnik myszy", u"mouse pointer"}, find_pointer},
    {{u"wybór folderu", u"folder dialog"}, find_folder_dialog},
    {{u"pliki baz danych", u"database files"}, find_sqlite},
    {{u"serwery baz danych", u"database servers"}, find_odbc},
    {{u"FTP", u"FTP"}, find_internet},
    {{u"rejestr", u"registry"}, find_registry},
    {{u"menu", u"menus"}, find_menus},
    {{u"drukowanie", u"printing"}, find_printing},
};

std::string padded(StringView text, std::size_t width) {
    return to_utf8(String(text) + String(width - std::min(width, text.size()), u' '));
}

}  // namespace

int doctor_command(const std::optional<std::string>& language) {
    const bool polish = is_polish(language);
    const auto word = [polish](const Words& words) {
        return polish ? words.polish : words.english;
    };
    constexpr std::size_t what_width = 28;
    constexpr std::size_t state_width = 7;
    for (const Row& row : rows) {
        const Finding found = row.find();
        const Words& state = state_words[static_cast<std::size_t>(found.state)];
        std::cout << padded(word(row.what), what_width) << padded(word(state), state_width)
                  << to_utf8(word(found.how)) << (found.detail.empty() ? "" : " ")
                  << (found.detail.empty() ? "" : to_utf8(found.detail)) << '\n';
    }
    return 0;
}

}  // namespace kvarta16::tool
