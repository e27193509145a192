#include <algorithm>
#include <array>
#include <cerrno>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <kvarta16/frame/ansi.h>
#include <kvarta16/frame/failure.h>
#include <kvarta16/platform/posix/posix_file_table.h>
#include <kvarta16/platform/posix/posix_paths.h>
#include <kvarta16/platform/posix/posix_status.h>

namespace kvarta16::posix {
namespace {

constexpr Integer last_number = 511;
constexpr Integer last_free_number = 255;
constexpr std::size_t buffer_size = 1 << 16;

// ---- Opening a file of the system -----------------------------------------------------------

// Opened without waiting for the other end of a pipe or for a device.
constexpr int common_flags = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
constexpr mode_t everybody_writes = 0666;  // less what the process's mask takes away

struct Opened {
    Descriptor file;
    struct stat status {};
    bool may_write = false;
};

// An error of the system for a file that is there and cannot be opened for the purpose.
[[noreturn]] void fail_to_open(int system_error, const std::string& native) {
    if (system_error == EEXIST) {  // a link that leads nowhere stands in the place
        throw Failure(error::file_access);
    }
    fail_by(system_error, native);
}

void require_kind(const Opened& opened, OpenMode mode) {
    const mode_t kind = opened.status.st_mode;
    const bool has_places = mode != OpenMode::Input;
    if (S_ISDIR(kind) || (has_places && !S_ISREG(kind) && !S_ISCHR(kind))) {
        throw Failure(error::file_access);
    }
}

Descriptor opened_existing(const std::string& native, int access) {
    return Descriptor(::open(native.c_str(), access | common_flags));
}

// Not through a link that somebody has planted in the place of the new file. Another program may
// make the file in between: then it exists.
Descriptor opened_or_made(const std::string& native, int access) {
    constexpr int attempts = 3;
    for (int i = 0; i < attempts; ++i) {
        Descriptor file = opened_existing(native, access);
        if (file.is_open() || errno != ENOENT) {
            return file;
        }
        file =
            Descriptor(::open(native.c_str(), access | common_flags | O_CREAT | O_EXCL | O_NOFOLLOW,
                              everybody_writes));
        if (file.is_open() || errno != EEXIST) {
            return file;
        }
    }
    return {};
}

bool is_refused_writing(int system_error) {
    return system_error == EACCES || system_error == EPERM || system_error == EROFS;
}

// The system lets the superuser write to what has the attribute.
bool has_read_only_attribute(const std::string& native) {
    struct stat status {};
    return ::stat(native.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           Caller().may_only_read(status);
}

Descriptor opened_to_write(const std::string& native, OpenMode mode) {
    if (has_read_only_attribute(native)) {
        errno = EACCES;
        return {};
    }
    return opened_or_made(native, mode == OpenMode::Output ? O_WRONLY : O_RDWR);
}

Opened opened_for(const std::string& native, OpenMode mode) {
    Opened opened;
    const bool is_read = only_reads(mode);
    opened.file = is_read ? opened_existing(native, O_RDONLY) : opened_to_write(native, mode);
    const int error = errno;
    opened.may_write = !is_read && opened.file.is_open();
    const bool has_records = mode == OpenMode::Random || mode == OpenMode::Binary;
    if (!opened.file.is_open() && has_records && is_refused_writing(error)) {
        opened.file = opened_existing(native, O_RDONLY);
    }
    if (!opened.file.is_open()) {
        fail_to_open(error, native);
    }
    if (::fstat(opened.file.value(), &opened.status) != 0) {
        throw Failure(error::device_io);
    }
    require_kind(opened, mode);
    return opened;
}

// ---- Sharing --------------------------------------------------------------------------------

struct flock whole_file(bool for_writing) {
    struct flock lock {};
    lock.l_type = for_writing ? F_WRLCK : F_RDLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

// Takes the lock of an opening without sharing, or looks whether somebody's lock refuses a shared
// one.
void agree_with_locks(const Opened& opened, Sharing sharing) {
    struct flock lock = whole_file(opened.may_write);
    const int file = opened.file.value();
    const bool is_refused =
        sharing == Sharing::Shared
            ? ::fcntl(file, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK
            : ::fcntl(file, F_OFD_SETLK, &lock) != 0 && (errno == EAGAIN || errno == EACCES);
    if (is_refused) {
        throw Failure(error::permission_denied);
    }
}

// ---- The table ------------------------------------------------------------------------------

// What others need to know of an open file.
struct Entry {
    FileIdentity file;
    Sharing sharing = Sharing::Default;
    bool may_write = false;
};

struct OpenFile {
    OpenMode mode = OpenMode::Input;
    bool may_write = false;
    Descriptor file;
    std::string buffer;         // what Input has read on, what Output has not stored yet
    std::size_t buffer_at = 0;  // of the next character of Input
    off_t place = 0;            // of the next Get or Put, 0 for the first byte
};

// A slot's mutex is taken before that of the entries.
struct Table {
    struct Slot {
        std::mutex mutex;
        std::optional<OpenFile> file;
    };
    std::array<Slot, last_number> slots;  // from number 1
    std::mutex entries_mutex;
    std::array<std::optional<Entry>, last_number> entries;
};

Table& table() {
    static Table the_only;
    return the_only;
}

std::size_t index_of(Integer number) {
    if (number < 1 || number > last_number) {
        throw Failure(error::bad_file_name);
    }
    return static_cast<std::size_t>(number - 1);
}

void set_entry(std::size_t index, const std::optional<Entry>& entry) {
    const std::scoped_lock lock(table().entries_mutex);
    table().entries[index] = entry;
}

// The entries' mutex is held.
bool is_among_entries(const FileIdentity& file) {
    return std::ranges::any_of(table().entries, [&](const std::optional<Entry>& entry) {
        return entry.has_value() && entry->file == file;
    });
}

// Whether an opening of this process and a new one cannot be: one wants to keep others from what
// the other does. The locks do not tell this of an opening that is shared.
bool conflicts(const Entry& one, const Entry& other) {
    const auto refuses = [](const Entry& owner, const Entry& guest) {
        return owner.sharing == Sharing::Default && (owner.may_write || guest.may_write);
    };
    return one.file == other.file && (refuses(one, other) || refuses(other, one));
}

void agree_with_entries(const Entry& wanted, OpenMode mode) {
    if (mode == OpenMode::Output && is_among_entries(wanted.file)) {
        throw Failure(error::file_already_open);
    }
    for (const std::optional<Entry>& entry : table().entries) {
        if (entry.has_value() && conflicts(*entry, wanted)) {
            throw Failure(error::permission_denied);
        }
    }
}

// The open file of a number that is locked for one operation.
class Locked {
  public:
    explicit Locked(Integer number) : slot_(&table().slots[index_of(number)]), lock_(slot_->mutex) {
        if (!slot_->file.has_value()) {
            throw Failure(error::bad_file_name);
        }
    }
    OpenFile* operator->() { return &*slot_->file; }
    OpenFile& in_binary_mode() {
        const bool only_reads = slot_->file->mode == OpenMode::BinaryRead;
        return in_mode(only_reads ? OpenMode::BinaryRead : OpenMode::Binary);
    }
    OpenFile& in_mode(OpenMode mode) {
        if (slot_->file->mode != mode) {
            throw Failure(error::bad_file_mode);
        }
        return *slot_->file;
    }

  private:
    Table::Slot* slot_;
    std::unique_lock<std::mutex> lock_;
};

// ---- Reading and writing --------------------------------------------------------------------

[[noreturn]] void fail_to_write(int system_error) {
    const bool is_full = system_error == ENOSPC || system_error == EDQUOT || system_error == EFBIG;
    throw Failure(is_full ? error::disk_full : error::device_io);
}

// Whatever is left is dropped when it cannot be stored, or each later call would fail by it again.
void store_buffer(OpenFile& open) {
    const std::string bytes = std::exchange(open.buffer, {});
    std::size_t stored = 0;
    while (stored < bytes.size()) {
        const ssize_t count =
            ::write(open.file.value(), bytes.data() + stored, bytes.size() - stored);
        if (count < 0 && errno != EINTR) {
            fail_to_write(errno);
        }
        stored += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
}

// False at the end of the file.
bool read_buffer(OpenFile& open) {
    open.buffer.resize(buffer_size);
    open.buffer_at = 0;
    ssize_t count = -1;
    do {
        count = ::read(open.file.value(), open.buffer.data(), open.buffer.size());
    } while (count < 0 && errno == EINTR);
    open.buffer.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    if (count < 0) {
        throw Failure(error::device_io);
    }
    return count > 0;
}

}  // namespace

Integer PosixFileTable::FreeFile() {
    const std::scoped_lock lock(table().entries_mutex);
    const auto* const first = table().entries.begin();
    const auto* const end = first + last_free_number;
    const auto* const free =
        std::find_if(first, end, [](const auto& entry) { return !entry.has_value(); });
    if (free == end) {
        throw Failure(error::too_many_files);
    }
    return static_cast<Integer>(free - first + 1);
}

void PosixFileTable::Open(StringView path, Integer number, OpenMode mode, Sharing sharing) {
    const std::size_t index = index_of(number);
    Table::Slot& slot = table().slots[index];
    const std::scoped_lock slot_lock(slot.mutex);
    if (slot.file.has_value()) {
        throw Failure(error::file_already_open);
    }
    if (!only_reads(mode)) {
        require_new_name(path);
    }
    const std::string native = native_path(path);
    const std::scoped_lock entries_lock(table().entries_mutex);
    Opened opened = opened_for(native, mode);
    const Entry entry{identity_of(opened.status), sharing, opened.may_write};
    agree_with_entries(entry, mode);
    agree_with_locks(opened, sharing);
    const int file = opened.file.value();
    if (mode == OpenMode::Output && S_ISREG(opened.status.st_mode) && ::ftruncate(file, 0) != 0) {
        fail_by(errno, native);
    }
    ::fcntl(file, F_SETFL, 0);  // waits from now on where a pipe or a device makes it wait
    slot.file.emplace();
    slot.file->mode = mode;
    slot.file->may_write = opened.may_write;
    slot.file->file = std::move(opened.file);
    table().entries[index] = entry;
}

void PosixFileTable::Close(Integer number) {
    if (number < 1 || number > last_number) {
        return;
    }
    const std::size_t index = index_of(number);
    Table::Slot& slot = table().slots[index];
    const std::scoped_lock lock(slot.mutex);
    if (!slot.file.has_value()) {
        return;
    }
    OpenFile open = std::move(*slot.file);
    slot.file.reset();
    set_entry(index, std::nullopt);
    if (open.mode == OpenMode::Output) {
        store_buffer(open);
    }
    if (const int error = open.file.close(); error != 0) {
        fail_to_write(error);
    }
}

Long PosixFileTable::LOF(Integer number) {
    Locked open(number);
    struct stat status {};
    if (::fstat(open->file.value(), &status) != 0) {
        throw Failure(error::device_io);
    }
    const bool is_output = open->mode == OpenMode::Output;
    return wrap32(status.st_size + (is_output ? static_cast<off_t>(open->buffer.size()) : 0));
}

void PosixFileTable::PrintLine(Integer number, StringView text) {
    Locked locked(number);
    OpenFile& open = locked.in_mode(OpenMode::Output);
    open.buffer += to_ansi(text) + "\r\n";
    if (open.buffer.size() >= buffer_size) {
        store_buffer(open);
    }
}

char16_t PosixFileTable::InputCharacter(Integer number) {
    Locked locked(number);
    OpenFile& open = locked.in_mode(OpenMode::Input);
    if (open.buffer_at == open.buffer.size() && !read_buffer(open)) {
        throw Failure(error::past_end_of_file);
    }
    return ansi_unit(static_cast<Byte>(open.buffer[open.buffer_at++]));
}

void PosixFileTable::Seek(Integer number, Long position) {
    Locked locked(number);
    OpenFile& open = locked.in_binary_mode();
    if (position < 1) {
        throw Failure(error::invalid_call);
    }
    open.place = position - 1;
}

void PosixFileTable::Get(Integer number, std::span<Byte> block) {
    Locked locked(number);
    OpenFile& open = locked.in_binary_mode();
    while (!block.empty()) {
        const ssize_t count = ::pread(open.file.value(), block.data(), block.size(), open.place);
        if (count == 0) {
            return;
        }
        if (count < 0 && errno != EINTR) {
            throw Failure(error::device_io);
        }
        const std::size_t got = count > 0 ? static_cast<std::size_t>(count) : 0;
        open.place += static_cast<off_t>(got);
        block = block.subspan(got);
    }
}

void PosixFileTable::Put(Integer number, std::span<const Byte> block) {
    Locked locked(number);
    OpenFile& open = locked.in_binary_mode();
    if (!open.may_write) {
        throw Failure(error::file_access);
    }
    off_t place = open.place;
    while (!block.empty()) {
        const ssize_t count = ::pwrite(open.file.value(), block.data(), block.size(), place);
        if (count < 0 && errno != EINTR) {
            fail_to_write(errno);
        }
        const std::size_t put = count > 0 ? static_cast<std::size_t>(count) : 0;
        place += static_cast<off_t>(put);
        block = block.subspan(put);
    }
    open.place = place;
}

bool is_in_file_table(const FileIdentity& file) {
    const std::scoped_lock lock(table().entries_mutex);
    return is_among_entries(file);
}

}  // namespace kvarta16::posix
