#include <algorithm>
#include <optional>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/child_programs.h>
#include <kvarta16/platform/posix/display.h>
#include <kvarta16/platform/posix/posix_folder_dialog.h>
#include <kvarta16/platform/posix/posix_paths.h>
#include <kvarta16/platform/posix/terminal.h>
#include <kvarta16/platform/posix/windows_paths.h>

namespace kvarta16::posix {
namespace {

// What the person is asked for.
struct Question {
    std::string title;
    std::string folder;   // of the system, where the dialog opens; "" for nowhere in particular
    String shown_folder;  // the same as a Windows path
    bool takes_files = false;
};

enum class Kind : unsigned char { None, File, Folder };

Kind kind_of(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return Kind::None;
    }
    return S_ISDIR(status.st_mode) ? Kind::Folder : Kind::File;
}

std::string native_or_none(StringView path) {
    try {
        return native_path(path);
    } catch (const Failure&) {
        return "";
    }
}

std::string without_separators_at_end(std::string path) {
    while (path.size() > 1 && path.ends_with('/')) {
        path.pop_back();
    }
    return path;
}

// ---- On a display ---------------------------------------------------------------------------

std::vector<std::string> zenity_words(const Question& question) {
    std::vector<std::string> words{"zenity", "--file-selection", "--title=" + question.title};
    if (!question.takes_files) {
        words.emplace_back("--directory");
    }
    if (!question.folder.empty()) {
        words.push_back("--filename=" + without_separators_at_end(question.folder) + '/');
    }
    return words;
}

std::vector<std::string> kdialog_words(const Question& question) {
    std::vector<std::string> words{"kdialog", "--title=" + question.title};
    words.emplace_back(question.takes_files ? "--getopenfilename" : "--getexistingdirectory");
    if (!question.folder.empty()) {
        words.push_back(question.folder);
    }
    return words;
}

// The words of the first dialog program that is installed; none if there is none.
std::vector<std::string> words_of_program(const Question& question) {
    if (program_on_path("zenity")) {
        return zenity_words(question);
    }
    return program_on_path("kdialog") ? kdialog_words(question) : std::vector<std::string>();
}

// The path of the system; nothing for a cancel.
std::optional<std::string> chosen_in_program(const std::vector<std::string>& words) {
    std::optional<Ended> ended = run_program(words);
    if (!ended || ended->status != 0) {
        return std::nullopt;
    }
    std::string path = std::move(ended->output);
    if (path.ends_with('\n')) {  // a name may hold line ends of its own
        path.pop_back();
    }
    return path.empty() ? std::nullopt : std::optional(path);
}

// ---- On a terminal --------------------------------------------------------------------------

// The path of the system for what a person has typed; nothing if it is none that may be chosen.
std::optional<std::string> typed_path(const std::string& line, bool takes_files) {
    const std::string path = line.starts_with('/') ? line : native_or_none(from_utf8(line));
    const Kind kind = path.empty() ? Kind::None : kind_of(path);
    const bool may_be_chosen = kind == Kind::Folder || (kind == Kind::File && takes_files);
    return may_be_chosen ? std::optional(path) : std::nullopt;
}

std::string without_blanks(const std::string& line) {
    constexpr const char* white = " \t\r";
    const std::size_t first = line.find_first_not_of(white);
    return first == std::string::npos
               ? ""
               : line.substr(first, line.find_last_not_of(white) - first + 1);
}

std::optional<std::string> chosen_on_terminal(int screen, const Question& question) {
    write_all(screen, question.title + '\n');
    const std::string prompt =
        (question.shown_folder.empty() ? "" : '(' + to_utf8(question.shown_folder) + ") ") +
        (question.takes_files ? "Plik lub folder" : "Folder") + " [Anuluj]: ";
    for (std::string line;;) {
        write_all(screen, prompt);
        if (!read_line(STDIN_FILENO, line)) {
            write_all(screen, "\n");
            return std::nullopt;
        }
        line = without_blanks(line);
        if (line.empty()) {
            return std::nullopt;
        }
        if (std::optional<std::string> path = typed_path(line, question.takes_files)) {
            return path;
        }
        write_all(screen, "\a");
    }
}

std::optional<std::string> chosen(const Question& question) {
    if (has_display()) {
        const std::vector<std::string> words = words_of_program(question);
        if (!words.empty()) {
            return chosen_in_program(words);
        }
    }
    const TerminalScreen screen;
    return screen.is_there() ? chosen_on_terminal(screen.file(), question) : std::nullopt;
}

// A prompt ends where the platform's text does.
std::string prompt_text(const String& title) {
    return to_utf8(StringView(title).substr(0, title.find(u'\0')));
}

Question question_of(const BROWSEINFO& info, const String& selection) {
    Question question;
    question.title = prompt_text(info.lpszTitle);
    question.takes_files = (info.ulFlags & browse_flag::include_files) != 0;
    const std::string folder = native_or_none(selection);
    if (kind_of(folder) == Kind::Folder) {
        question.folder = folder;
        question.shown_folder = selection;
    }
    return question;
}

void tell(const BROWSEINFO& info, Long handle, Long message, Long value) {
    if (info.lpfn != nullptr) {
        info.lpfn(handle, message, value, info.lParam);
    }
}

}  // namespace

Long PosixFolderDialogs::SHBrowseForFolder(const BROWSEINFO& info) {
    // Never locked while the callback runs: it calls back in.
    std::unique_lock lock(mutex_);
    const Long handle = ++last_handle_;
    selections_[handle];
    lock.unlock();
    tell(info, handle, browse_message::initialized, 0);
    lock.lock();
    const String selection = std::move(selections_[handle]);
    selections_.erase(handle);
    lock.unlock();
    const std::optional<std::string> path = chosen(question_of(info, selection));
    if (!path) {
        return 0;
    }
    String shown = windows_path(without_separators_at_end(*path));
    lock.lock();
    items_.push_back(std::move(shown));
    const Long item_list = static_cast<Long>(items_.size());
    lock.unlock();
    tell(info, handle, browse_message::selection_changed, item_list);
    return item_list;
}

Long PosixFolderDialogs::SHGetPathFromIDList(Long item_list, String& buffer) {
    const std::scoped_lock lock(mutex_);
    if (item_list < 1 || static_cast<std::size_t>(item_list) > items_.size()) {
        return 0;
    }
    const String& path = items_[static_cast<std::size_t>(item_list) - 1];
    constexpr std::size_t longest_path = 259;
    if (path.empty() || path.size() > longest_path) {
        return 0;
    }
    const String text = path + u'\0';
    overwrite(buffer, 1, length(text), text);
    return 1;
}

Long PosixFolderDialogs::SendMessageA(Long hwnd, Long message, Long wParam, StringView text) {
    const std::scoped_lock lock(mutex_);
    const auto dialog = selections_.find(hwnd);
    const bool is_path = wParam != 0;  // else an item list
    if (dialog != selections_.end() && message == browse_message::set_selection && is_path) {
        dialog->second = text.substr(0, text.find(u'\0'));
    }
    return 0;
}

void PosixFolderDialogs::Beep() {
    const TerminalScreen screen;
    if (screen.is_there()) {
        write_all(screen.file(), "\a");
    }
}

}  // namespace kvarta16::posix
