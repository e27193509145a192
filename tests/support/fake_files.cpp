#include <algorithm>

#include <support/fake_files.h>

#include <kvarta16/frame/ansi.h>
#include <kvarta16/frame/civil.h>
#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/utf8.h>

namespace kvarta16::testing_support {

Long fill_buffer(StringView text, Long length, String& buffer) {
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

FILETIME file_time(std::int64_t units) {
    return {wrap32(units), wrap32(units >> 32)};
}

std::int64_t units_of(const FILETIME& time) {
    return (static_cast<std::int64_t>(time.dwHighDateTime) << 32) |
           static_cast<std::int64_t>(static_cast<std::uint32_t>(time.dwLowDateTime));
}

FILETIME file_time(std::int32_t year, std::int32_t month, std::int32_t day, std::int64_t seconds,
                   std::int64_t units) {
    const std::int64_t days = day_number(year, month, day) - day_number(1601, 1, 1);
    return file_time(days * units_per_day + seconds * units_per_second + units);
}

MemoryFindFiles::MemoryFindFiles() = default;

MemoryFindFiles::~MemoryFindFiles() = default;

WIN32_FIND_DATA& MemoryFindFiles::add(StringView name, Long attributes, StringView short_name) {
    WIN32_FIND_DATA& entry = entries.emplace_back();
    entry.dwFileAttributes = attributes;
    std::copy_n(name.begin(), std::min(name.size(), entry.cFileName.size()),
                entry.cFileName.begin());
    std::copy_n(short_name.begin(), std::min(short_name.size(), entry.cAlternateFileName.size()),
                entry.cAlternateFileName.begin());
    return entry;
}

Long MemoryFindFiles::FindFirstFileA(StringView name, WIN32_FIND_DATA& data) {
    searched.emplace_back(name);
    if (entries.empty()) {
        return INVALID_HANDLE_VALUE;
    }
    const Long handle = next_handle_++;
    open[handle] = 1;
    data = entries.front();
    return handle;
}

Long MemoryFindFiles::FindNextFileA(Long handle, WIN32_FIND_DATA& data) {
    const auto found = open.find(handle);
    if (found == open.end() || found->second >= entries.size()) {
        return 0;
    }
    data = entries[found->second++];
    return 1;
}

Long MemoryFindFiles::FindClose(Long handle) {
    closed.push_back(handle);
    return open.erase(handle) > 0 ? 1 : 0;
}

Long MemoryFindFiles::GetFullPathNameA(StringView name, Long length, String& buffer) {
    path_calls.push_back("GetFullPathNameA(" + to_utf8(name) + "; " + std::to_string(length) + ")");
    return name.empty() ? 0 : fill_buffer(root + String(name), length, buffer);
}

Long MemoryFindFiles::GetShortPathNameA(StringView name, Long length, String& buffer) {
    path_calls.push_back("GetShortPathNameA(" + to_utf8(name) + "; " + std::to_string(length) +
                         ")");
    return short_root.empty() ? 0 : fill_buffer(short_root, length, buffer);
}

Long MemoryFindFiles::FileTimeToLocalFileTime(const FILETIME& time, FILETIME& local) {
    if (units_of(time) < 0) {
        return 0;
    }
    local = file_time(units_of(time) + offset);
    return 1;
}

Long MemoryFindFiles::FileTimeToSystemTime(const FILETIME& time, SYSTEMTIME& parts) {
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

// ---- Files that are open under numbers ------------------------------------------------------

MemoryFileTable::MemoryFileTable(MemoryDisk& disk) : state_(disk.state_) {}

MemoryFileTable::~MemoryFileTable() = default;

std::set<Integer> MemoryFileTable::open_numbers() const {
    std::set<Integer> numbers;
    for (const auto& [number, file] : files_) {
        numbers.insert(number);
    }
    return numbers;
}

Integer MemoryFileTable::FreeFile() {
    state_->log.emplace_back("FreeFile");
    Integer number = 1;
    while (files_.contains(number)) {
        ++number;
    }
    refuse(number > 255, error::too_many_files);
    return number;
}

void MemoryFileTable::Open(StringView path, Integer number, OpenMode mode, Sharing sharing) {
    constexpr const char* modes[] = {"input", "output", "random", "binary", "binary read"};
    state_->log.push_back("Open(" + to_utf8(path) + "; " + std::to_string(number) + "; " +
                          modes[static_cast<std::size_t>(mode)] +
                          (sharing == Sharing::Shared ? "; shared)" : ")"));
    refuse(number < 1 || number > 511, error::bad_file_name);
    refuse(files_.contains(number), error::file_already_open);
    const String key = MemoryDisk::key_of(path);
    check_sharing(key, mode, sharing);
    MemoryDisk::Entry* entry = state_->find(path);
    const bool is_folder = entry != nullptr && (entry->attributes & file_attribute::directory) != 0;
    const bool is_read_only =
        entry != nullptr && (entry->attributes & file_attribute::read_only) != 0;
    refuse(is_folder || (is_read_only && !only_reads(mode)), error::file_access);
    refuse(entry == nullptr && only_reads(mode), error::file_not_found);
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

void MemoryFileTable::Close(Integer number) {
    state_->log.push_back("Close(" + std::to_string(number) + ")");
    const auto found = files_.find(number);
    if (found != files_.end()) {
        state_->open_files.erase(state_->open_files.find(found->second.key));
        files_.erase(found);
    }
}

Long MemoryFileTable::LOF(Integer number) {
    state_->log.push_back("LOF(" + std::to_string(number) + ")");
    return wrap32(static_cast<std::int64_t>(contents(file(number)).size()));
}

void MemoryFileTable::PrintLine(Integer number, StringView text) {
    state_->log.push_back("PrintLine(" + std::to_string(number) + "; " + to_utf8(text) + ")");
    contents(file(number, OpenMode::Output)) += to_ansi(text) + "\r\n";
}

char16_t MemoryFileTable::InputCharacter(Integer number) {
    OpenFile& open = file(number, OpenMode::Input);
    const std::string& bytes = contents(open);
    refuse(open.position >= bytes.size(), error::past_end_of_file);
    return ansi_unit(static_cast<Byte>(bytes[open.position++]));
}

void MemoryFileTable::Seek(Integer number, Long position) {
    OpenFile& open = binary_file(number);
    refuse(position < 1, error::invalid_call);
    open.position = static_cast<std::size_t>(position) - 1;
}

void MemoryFileTable::Get(Integer number, std::span<Byte> block) {
    state_->log.push_back("Get(" + std::to_string(number) + "; " + std::to_string(block.size()) +
                          ")");
    OpenFile& open = binary_file(number);
    const std::string& bytes = contents(open);
    const std::size_t from = std::min(open.position, bytes.size());
    const std::size_t count = std::min(block.size(), bytes.size() - from);
    for (std::size_t i = 0; i < count; ++i) {
        block[i] = static_cast<Byte>(bytes[from + i]);
    }
    open.position += block.size();
}

void MemoryFileTable::Put(Integer number, std::span<const Byte> block) {
    state_->log.push_back("Put(" + std::to_string(number) + "; " + std::to_string(block.size()) +
                          ")");
    OpenFile& open = binary_file(number);
    refuse(open.mode == OpenMode::BinaryRead, error::file_access);
    std::string& bytes = contents(open);
    bytes.resize(std::max(bytes.size(), open.position + block.size()));
    for (const Byte byte : block) {
        bytes[open.position++] = static_cast<char>(byte);
    }
}

void MemoryFileTable::refuse(bool is_refused, Long number) {
    if (is_refused) {
        throw Failure(number);
    }
}

MemoryFileTable::OpenFile& MemoryFileTable::file(Integer number) {
    const auto found = files_.find(number);
    refuse(found == files_.end(), error::bad_file_name);
    return found->second;
}

MemoryFileTable::OpenFile& MemoryFileTable::binary_file(Integer number) {
    const bool only_reads = file(number).mode == OpenMode::BinaryRead;
    return file(number, only_reads ? OpenMode::BinaryRead : OpenMode::Binary);
}

MemoryFileTable::OpenFile& MemoryFileTable::file(Integer number, OpenMode mode) {
    OpenFile& open = file(number);
    refuse(open.mode != mode, error::bad_file_mode);
    return open;
}

std::string& MemoryFileTable::contents(const OpenFile& open) {
    return state_->entries.at(open.key).contents;
}

void MemoryFileTable::check_sharing(const String& key, OpenMode mode, Sharing sharing) const {
    const auto bars = [](OpenMode own, Sharing own_sharing, OpenMode other) {
        return own_sharing == Sharing::Default && (!only_reads(own) || !only_reads(other));
    };
    for (const auto& [number, open] : files_) {
        if (open.key == key) {
            refuse(mode == OpenMode::Output, error::file_already_open);
            refuse(bars(mode, sharing, open.mode) || bars(open.mode, open.sharing, mode),
                   error::permission_denied);
        }
    }
}

// ---- Programs -------------------------------------------------------------------------------

FakeProcesses::FakeProcesses() = default;

FakeProcesses::~FakeProcesses() = default;

Double FakeProcesses::Shell(StringView command_line, Integer style) {
    started.push_back({String(command_line), style});
    return task;
}

void FakeProcesses::AppActivate(StringView title, bool wait) {
    activated.push_back({String(title), wait});
}

void FakeProcesses::SendKeys(StringView keys, bool wait) {
    sent.push_back({String(keys), wait});
}

// ---- Waiting messages -----------------------------------------------------------------------

FakeMessages::FakeMessages() = default;

FakeMessages::~FakeMessages() = default;

void FakeMessages::add_key(Long code, Long message) {
    MSG key;
    key.message = message;
    key.wParam = code;
    queue.push_back(key);
}

void FakeMessages::add_mouse() {
    add_key(0, WM_MOUSEMOVE);
}

Long FakeMessages::GetInputState() {
    ++input_states;
    return queue.empty() ? 0 : 1;
}

Long FakeMessages::PeekMessageA(MSG& message, Long hwnd, Long first, Long last, Long remove) {
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

void FakeMessages::DoEvents() {
    ++pumped;
}

// ---- The system and its screen --------------------------------------------------------------

FakeSystemInformation::FakeSystemInformation() = default;

FakeSystemInformation::~FakeSystemInformation() = default;

Long FakeSystemInformation::GetVersionExA(OSVERSIONINFO& version) {
    asked_sizes.push_back(version.dwOSVersionInfoSize);
    if (version_answer == 0 || !version_record) {
        return 0;
    }
    version = *version_record;
    return version_answer;
}

Long FakeSystemInformation::GetWindowsDirectoryA(String& buffer, Long length) {
    asked_buffers.push_back(buffer);
    asked_lengths.push_back(length);
    return windows_directory.empty() ? 0 : fill_buffer(windows_directory, length, buffer);
}

void FakeScreen::PutMousePointer(Long pointer) {
    pointers.push_back(pointer);
}

// ---- The folder dialog ----------------------------------------------------------------------

FakeFolderDialogs::FakeFolderDialogs() = default;

FakeFolderDialogs::~FakeFolderDialogs() = default;

Long FakeFolderDialogs::SHBrowseForFolder(const BROWSEINFO& info) {
    shown.push_back(info);
    if (info.lpfn != nullptr) {
        for (const Message& message : messages) {
            results.push_back(info.lpfn(handle, message.message, message.value, info.lParam));
        }
    }
    return answer;
}

Long FakeFolderDialogs::SHGetPathFromIDList(Long item_list, String& buffer) {
    asked_buffers.push_back(buffer);
    const auto found = paths.find(item_list);
    return found == paths.end()
               ? 0
               : (fill_buffer(found->second, static_cast<Long>(buffer.size()) + 1, buffer), 1);
}

Long FakeFolderDialogs::SendMessageA(Long hwnd, Long message, Long wParam, StringView text) {
    sent.push_back({hwnd, message, wParam, String(text)});
    return 0;
}

void FakeFolderDialogs::Beep() {
    ++beeps;
}

}  // namespace kvarta16::testing_support
