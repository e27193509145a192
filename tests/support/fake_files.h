// The platform around the files, without a system behind it: searches, files that are open under
// numbers, programs, waiting messages, the version record, the pointer and the folder dialog. What
// they answer is put there by the test, and each writes down how it was called.
//
//   MemoryFindFiles find;
//   find.add(u"b.txt").nFileSizeLow = 5;
//   FakeMessages messages;
//   messages.add_key(27);
//
// To have calls fail, put a fault plan before them (kvarta16/platform/forwarding.h).
#pragma once

#include <algorithm>
#include <deque>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <support/fake_dao.h>

#include <kvarta16/frame/ansi.h>
#include <kvarta16/frame/civil.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/platform/file_table.h>
#include <kvarta16/platform/find_files.h>
#include <kvarta16/platform/folder_dialog.h>
#include <kvarta16/platform/messages.h>
#include <kvarta16/platform/processes.h>
#include <kvarta16/platform/screen.h>
#include <kvarta16/platform/system_information.h>

namespace kvarta16::testing_support {

// Writes a text and an ending zero over the beginning of a buffer, by the rule of the platform's
// calls for paths: the answer is the length, or with too little room the length that is needed.
inline Long fill_buffer(StringView text, Long length, String& buffer) {
    const auto size = static_cast<Long>(text.size());
    if (length <= size) {
        return size + 1;
    }
    const std::size_t put = std::min(text.size(), buffer.size());
    std::copy_n(text.begin(), put, buffer.begin());
    if (buffer.size() > text.size()) {
        buffer[text.size()] = u'\0';
    }
    return size;
}

// ---- Searches -------------------------------------------------------------------------------

// 100-nanosecond units since 1601-01-01.
[[nodiscard]] inline FILETIME file_time(std::int64_t units) {
    return {wrap32(units), wrap32(units >> 32)};
}
[[nodiscard]] inline std::int64_t units_of(const FILETIME& time) {
    return (static_cast<std::int64_t>(time.dwHighDateTime) << 32) |
           static_cast<std::int64_t>(static_cast<std::uint32_t>(time.dwLowDateTime));
}
inline constexpr std::int64_t units_per_second = 10'000'000;
inline constexpr std::int64_t units_per_day = 86'400 * units_per_second;

// The time of a civil date and a time of day in seconds.
[[nodiscard]] inline FILETIME file_time(std::int32_t year, std::int32_t month, std::int32_t day,
                                        std::int64_t seconds = 0, std::int64_t units = 0) {
    const std::int64_t days = day_number(year, month, day) - day_number(1601, 1, 1);
    return file_time(days * units_per_day + seconds * units_per_second + units);
}

class MemoryFindFiles final : public FindFiles {
  public:
    // An entry with this name, at the end; no more than the record has room for.
    WIN32_FIND_DATA& add(StringView name, Long attributes = file_attribute::archive,
                         StringView short_name = {}) {
        WIN32_FIND_DATA& entry = entries.emplace_back();
        entry.dwFileAttributes = attributes;
        std::copy_n(name.begin(), std::min(name.size(), entry.cFileName.size()),
                    entry.cFileName.begin());
        std::copy_n(short_name.begin(),
                    std::min(short_name.size(), entry.cAlternateFileName.size()),
                    entry.cAlternateFileName.begin());
        return entry;
    }

    // Every pattern matches all entries, or nothing while there are none.
    Long FindFirstFileA(StringView name, WIN32_FIND_DATA& data) override {
        searched.emplace_back(name);
        if (entries.empty()) {
            return INVALID_HANDLE_VALUE;
        }
        const Long handle = next_handle_++;
        open[handle] = 1;
        data = entries.front();
        return handle;
    }
    Long FindNextFileA(Long handle, WIN32_FIND_DATA& data) override {
        const auto found = open.find(handle);
        if (found == open.end() || found->second >= entries.size()) {
            return 0;
        }
        data = entries[found->second++];
        return 1;
    }
    Long FindClose(Long handle) override {
        closed.push_back(handle);
        return open.erase(handle) > 0 ? 1 : 0;
    }
    // With `root` before it; "" is no path.
    Long GetFullPathNameA(StringView name, Long length, String& buffer) override {
        path_calls.push_back("GetFullPathNameA(" + to_utf8(name) + "; " + std::to_string(length) +
                             ")");
        return name.empty() ? 0 : fill_buffer(root + String(name), length, buffer);
    }
    // The short form `short_root`, whatever is asked for; 0 while it is "".
    Long GetShortPathNameA(StringView name, Long length, String& buffer) override {
        path_calls.push_back("GetShortPathNameA(" + to_utf8(name) + "; " + std::to_string(length) +
                             ")");
        return short_root.empty() ? 0 : fill_buffer(short_root, length, buffer);
    }
    Long FileTimeToLocalFileTime(const FILETIME& time, FILETIME& local) override {
        if (units_of(time) < 0) {
            return 0;
        }
        local = file_time(units_of(time) + offset);
        return 1;
    }
    Long FileTimeToSystemTime(const FILETIME& time, SYSTEMTIME& parts) override {
        const std::int64_t units = units_of(time);
        if (units < 0) {
            return 0;
        }
        const auto days = static_cast<std::int32_t>(units / units_per_day);
        const std::int32_t day = days + day_number(1601, 1, 1);
        const Civil civil = civil_of(std::min(day, last_day_number));
        const std::int64_t second = units % units_per_day / units_per_second;
        parts = {wrap16(civil.year),
                 wrap16(civil.month),
                 wrap16((weekday_from_monday(day) + 1) % 7),
                 wrap16(civil.day),
                 wrap16(second / 3600),
                 wrap16(second / 60 % 60),
                 wrap16(second % 60),
                 wrap16(units % units_per_second / 10'000)};
        return 1;
    }

    std::vector<WIN32_FIND_DATA> entries;
    String root = u"C:\\dane\\";
    String short_root = u"C:\\DANE~1\\";
    std::int64_t offset = 0;  // of the local time, in 100-nanosecond units
    std::vector<String> searched;
    std::vector<std::string> path_calls;
    std::vector<Long> closed;
    std::map<Long, std::size_t> open;  // the place of the next entry of each search

  private:
    Long next_handle_ = 7;
};

// ---- Files that are open under numbers ------------------------------------------------------

// The files of a MemoryDisk; the calls go to its log.
class MemoryFileTable final : public FileTable {
  public:
    explicit MemoryFileTable(MemoryDisk& disk) : state_(disk.state_) {}

    // The numbers that are open.
    [[nodiscard]] std::set<Integer> open_numbers() const {
        std::set<Integer> numbers;
        for (const auto& [number, file] : files_) {
            numbers.insert(number);
        }
        return numbers;
    }

    Integer FreeFile() override {
        state_->log.emplace_back("FreeFile");
        Integer number = 1;
        while (files_.contains(number)) {
            ++number;
        }
        refuse(number > 255, error::too_many_files);
        return number;
    }
    void Open(StringView path, Integer number, OpenMode mode, Sharing sharing) override {
        constexpr const char* modes[] = {"input", "output", "random", "binary"};
        state_->log.push_back("Open(" + to_utf8(path) + "; " + std::to_string(number) + "; " +
                              modes[static_cast<std::size_t>(mode)] +
                              (sharing == Sharing::Shared ? "; shared)" : ")"));
        refuse(number < 1 || number > 511, error::bad_file_name);
        refuse(files_.contains(number), error::file_already_open);
        const String key = MemoryDisk::key_of(path);
        check_sharing(key, mode, sharing);
        MemoryDisk::Entry* entry = state_->find(path);
        const bool is_folder =
            entry != nullptr && (entry->attributes & file_attribute::directory) != 0;
        const bool is_read_only =
            entry != nullptr && (entry->attributes & file_attribute::read_only) != 0;
        refuse(is_folder || (is_read_only && mode != OpenMode::Input), error::file_access);
        refuse(entry == nullptr && mode == OpenMode::Input, error::file_not_found);
        refuse(entry == nullptr && path.empty(), error::bad_file_name);
        refuse(entry == nullptr && !state_->has_folder_above(path), error::path_not_found);
        if (entry == nullptr) {
            state_->entries[key] = MemoryDisk::Entry();
        } else if (mode == OpenMode::Output) {
            entry->contents.clear();
        }
        state_->open_files.insert(key);
        files_[number] = {key, mode, sharing, 0};
    }
    void Close(Integer number) override {
        state_->log.push_back("Close(" + std::to_string(number) + ")");
        const auto found = files_.find(number);
        if (found != files_.end()) {
            state_->open_files.erase(state_->open_files.find(found->second.key));
            files_.erase(found);
        }
    }
    Long LOF(Integer number) override {
        state_->log.push_back("LOF(" + std::to_string(number) + ")");
        return wrap32(static_cast<std::int64_t>(contents(file(number)).size()));
    }
    void PrintLine(Integer number, StringView text) override {
        state_->log.push_back("PrintLine(" + std::to_string(number) + "; " + to_utf8(text) + ")");
        contents(file(number, OpenMode::Output)) += to_ansi(text) + "\r\n";
    }
    char16_t InputCharacter(Integer number) override {
        OpenFile& open = file(number, OpenMode::Input);
        const std::string& bytes = contents(open);
        refuse(open.position >= bytes.size(), error::past_end_of_file);
        return ansi_unit(static_cast<Byte>(bytes[open.position++]));
    }
    void Seek(Integer number, Long position) override {
        OpenFile& open = file(number, OpenMode::Binary);
        refuse(position < 1, error::invalid_call);
        open.position = static_cast<std::size_t>(position) - 1;
    }
    void Get(Integer number, std::span<Byte> block) override {
        state_->log.push_back("Get(" + std::to_string(number) + "; " +
                              std::to_string(block.size()) + ")");
        OpenFile& open = file(number, OpenMode::Binary);
        const std::string& bytes = contents(open);
        const std::size_t from = std::min(open.position, bytes.size());
        const std::size_t count = std::min(block.size(), bytes.size() - from);
        for (std::size_t i = 0; i < count; ++i) {
            block[i] = static_cast<Byte>(bytes[from + i]);
        }
        open.position += block.size();
    }
    void Put(Integer number, std::span<const Byte> block) override {
        state_->log.push_back("Put(" + std::to_string(number) + "; " +
                              std::to_string(block.size()) + ")");
        OpenFile& open = file(number, OpenMode::Binary);
        std::string& bytes = contents(open);
        bytes.resize(std::max(bytes.size(), open.position + block.size()));
        for (const Byte byte : block) {
            bytes[open.position++] = static_cast<char>(byte);
        }
    }

  private:
    struct OpenFile {
        String key;
        OpenMode mode = OpenMode::Input;
        Sharing sharing = Sharing::Default;
        std::size_t position = 0;
    };

    static void refuse(bool is_refused, Long number) {
        if (is_refused) {
            throw Failure(number);
        }
    }
    OpenFile& file(Integer number) {
        const auto found = files_.find(number);
        refuse(found == files_.end(), error::bad_file_name);
        return found->second;
    }
    OpenFile& file(Integer number, OpenMode mode) {
        OpenFile& open = file(number);
        refuse(open.mode != mode, error::bad_file_mode);
        return open;
    }
    std::string& contents(const OpenFile& open) { return state_->entries.at(open.key).contents; }

    // Without sharing nobody may write what is read, nor open what is written.
    void check_sharing(const String& key, OpenMode mode, Sharing sharing) const {
        const auto bars = [](OpenMode own, Sharing own_sharing, OpenMode other) {
            return own_sharing == Sharing::Default &&
                   (own != OpenMode::Input || other != OpenMode::Input);
        };
        for (const auto& [number, open] : files_) {
            if (open.key == key) {
                refuse(mode == OpenMode::Output, error::file_already_open);
                refuse(bars(mode, sharing, open.mode) || bars(open.mode, open.sharing, mode),
                       error::permission_denied);
            }
        }
    }

    std::shared_ptr<MemoryDisk::State> state_;
    std::map<Integer, OpenFile> files_;
};

// ---- Programs -------------------------------------------------------------------------------

class FakeProcesses final : public Processes {
  public:
    struct Start {
        String command_line;
        Integer style;
        friend bool operator==(const Start&, const Start&) = default;
    };
    struct Activation {
        String title;
        bool wait;
        friend bool operator==(const Activation&, const Activation&) = default;
    };
    struct Sending {
        String keys;
        bool wait;
        friend bool operator==(const Sending&, const Sending&) = default;
    };

    Double Shell(StringView command_line, Integer style) override {
        started.push_back({String(command_line), style});
        return task;
    }
    void AppActivate(StringView title, bool wait) override {
        activated.push_back({String(title), wait});
    }
    void SendKeys(StringView keys, bool wait) override { sent.push_back({String(keys), wait}); }

    Double task = 4711;
    std::vector<Start> started;
    std::vector<Activation> activated;
    std::vector<Sending> sent;
};

// ---- Waiting messages -----------------------------------------------------------------------

inline constexpr Long WM_MOUSEMOVE = 512;

class FakeMessages final : public Messages {
  public:
    struct Peek {
        Long hwnd;
        Long first;
        Long last;
        Long remove;
        friend bool operator==(const Peek&, const Peek&) = default;
    };

    void add_key(Long code, Long message = WM_KEYFIRST) {
        MSG key;
        key.message = message;
        key.wParam = code;
        queue.push_back(key);
    }
    void add_mouse() { add_key(0, WM_MOUSEMOVE); }

    Long GetInputState() override {
        ++input_states;
        return queue.empty() ? 0 : 1;
    }
    Long PeekMessageA(MSG& message, Long hwnd, Long first, Long last, Long remove) override {
        peeks.push_back({hwnd, first, last, remove});
        const auto found = std::ranges::find_if(queue, [&](const MSG& waiting) {
            return waiting.message >= first && waiting.message <= last &&
                   (hwnd == 0 || waiting.hwnd == hwnd);
        });
        if (found == queue.end()) {
            return 0;
        }
        message = *found;
        if ((remove & PM_REMOVE) != 0) {
            queue.erase(found);
        }
        return 1;
    }
    void DoEvents() override { ++pumped; }

    std::deque<MSG> queue;
    std::vector<Peek> peeks;
    int input_states = 0;
    int pumped = 0;
};

// ---- The system and its screen --------------------------------------------------------------

class FakeSystemInformation final : public SystemInformation {
  public:
    Long GetVersionExA(OSVERSIONINFO& version) override {
        asked_sizes.push_back(version.dwOSVersionInfoSize);
        if (version_answer == 0 || !version_record) {
            return 0;
        }
        version = *version_record;
        return version_answer;
    }
    Long GetWindowsDirectoryA(String& buffer, Long length) override {
        asked_buffers.push_back(buffer);
        asked_lengths.push_back(length);
        return windows_directory.empty() ? 0 : fill_buffer(windows_directory, length, buffer);
    }

    std::optional<OSVERSIONINFO> version_record;  // none: the call fails
    Long version_answer = 1;
    String windows_directory;  // "": the call fails
    std::vector<Long> asked_sizes;
    std::vector<String> asked_buffers;
    std::vector<Long> asked_lengths;
};

class FakeScreen final : public Screen {
  public:
    void PutMousePointer(Long pointer) override { pointers.push_back(pointer); }

    std::vector<Long> pointers;
};

// ---- The folder dialog ----------------------------------------------------------------------

// Sends its messages to the callback while it is "open", then answers.
class FakeFolderDialogs final : public FolderDialogs {
  public:
    struct Message {
        Long message;
        Long value;
        friend bool operator==(const Message&, const Message&) = default;
    };
    struct Sent {
        Long hwnd;
        Long message;
        Long wParam;
        String text;
        friend bool operator==(const Sent&, const Sent&) = default;
    };

    static constexpr Long handle = 4242;

    Long SHBrowseForFolder(const BROWSEINFO& info) override {
        shown.push_back(info);
        if (info.lpfn != nullptr) {
            for (const Message& message : messages) {
                results.push_back(info.lpfn(handle, message.message, message.value, info.lParam));
            }
        }
        return answer;
    }
    Long SHGetPathFromIDList(Long item_list, String& buffer) override {
        asked_buffers.push_back(buffer);
        const auto found = paths.find(item_list);
        return found == paths.end()
                   ? 0
                   : (fill_buffer(found->second, static_cast<Long>(buffer.size()) + 1, buffer), 1);
    }
    Long SendMessageA(Long hwnd, Long message, Long wParam, StringView text) override {
        sent.push_back({hwnd, message, wParam, String(text)});
        return 0;
    }
    void Beep() override { ++beeps; }

    std::vector<Message> messages{{browse_message::initialized, 0}};
    Long answer = 0;               // an item list, 0 for a cancel
    std::map<Long, String> paths;  // of the item lists that have one
    std::vector<BROWSEINFO> shown;
    std::vector<Long> results;  // of the callback, message by message
    std::vector<String> asked_buffers;
    std::vector<Sent> sent;
    int beeps = 0;
};

}  // namespace kvarta16::testing_support
