#include <algorithm>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/posix/posix_descriptor.h>
#include <kvarta16/platform/posix/spool_folder.h>

namespace kvarta16::posix {
namespace {

namespace fs = std::filesystem;

constexpr Long done = 1;
constexpr Long refused = 0;
constexpr Long document_level = 1;
constexpr mode_t file_mode = 0666;              // less what the user's mask takes away
constexpr std::size_t longest_file_name = 100;  // bytes of the document's name in the file's

// How many bytes the system has taken; fewer than given where it will take no more.
std::size_t write_bytes(int file, std::span<const Byte> data) {
    std::size_t done_so_far = 0;
    while (done_so_far < data.size()) {
        const ssize_t count = ::write(file, data.data() + done_so_far, data.size() - done_so_far);
        if (count > 0) {
            done_so_far += static_cast<std::size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            break;
        }
    }
    return done_so_far;
}

// The document's name without what a file name cannot bear, cut between two characters.
std::string file_name_of(StringView document) {
    constexpr std::string_view unsafe = "/\\:*?\"<>|";
    std::string name;
    for (const char c : to_utf8(document)) {
        const bool is_control = static_cast<unsigned char>(c) < ' ' || c == '\x7F';
        name += is_control || unsafe.find(c) != std::string_view::npos ? '_' : c;
    }
    const auto continues = [&](std::size_t at) { return (name[at] & '\xC0') == '\x80'; };
    std::size_t size = std::min(name.size(), longest_file_name);
    while (size < name.size() && size > 0 && continues(size)) {
        --size;
    }
    return name.substr(0, size);
}

// A line of a text file.
std::string line_of(const std::string& key, std::string value) {
    std::ranges::replace_if(
        value, [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return key + ": " + value + "\n";
}

// At least four digits.
std::string digits_of(Long number) {
    constexpr std::size_t width = 4;
    const std::string digits = std::to_string(number);
    return std::string(digits.size() < width ? width - digits.size() : 0, '0') + digits;
}

// The number that a file of the spooler bears: "0012-x.prn", ".0012.part". 0 for other files.
Long number_in(std::string_view name) {
    constexpr Long highest = 999'999'999;
    name.remove_prefix(name.starts_with('.') ? 1 : 0);
    Long number = 0;
    const auto [end, problem] = std::from_chars(name.data(), name.data() + name.size(), number);
    const std::size_t length = static_cast<std::size_t>(end - name.data());
    const bool is_marked =
        length < name.size() && (name[length] == '-' || name[length] == '.') && length > 3;
    return problem == std::errc() && is_marked && number > 0 && number <= highest ? number : 0;
}

// Holds off the other programs that print into a folder. They see one state of it or the other.
class FolderLock {
  public:
    explicit FolderLock(const std::string& folder)
        : folder_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        while (folder_.is_open() && ::flock(folder_.value(), LOCK_EX) != 0) {
            if (errno != EINTR) {
                folder_.close();
            }
        }
    }

    ~FolderLock() {
        if (is_held()) {
            ::flock(folder_.value(), LOCK_UN);
        }
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    FolderLock(FolderLock&&) = delete;
    FolderLock& operator=(FolderLock&&) = delete;

    [[nodiscard]] bool is_held() const { return folder_.is_open(); }
    // So that a power cut leaves the names as they are now. Some file systems do so by themselves
    // and know no such call on a folder.
    [[nodiscard]] bool synchronise() const {
        return ::fsync(folder_.value()) == 0 || errno == EINVAL;
    }

  private:
    Descriptor folder_;
};

// 0 where the folder cannot be read.
Long highest_number(const std::string& folder) {
    Long highest = 0;
    std::error_code problem;
    for (fs::directory_iterator entry(folder, problem), end; !problem && entry != end;
         entry.increment(problem)) {
        highest = std::max(highest, number_in(entry->path().filename().string()));
    }
    return highest;
}

Descriptor new_file(const std::string& path) {
    return Descriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, file_mode));
}

}  // namespace

// A document that is being written. What has not been ended goes away with it.
class SpoolFolder::Document {
  public:
    Document(const std::string& folder, StringView printer, StringView name)
        : folder_(folder), printer_(printer), name_(name) {
        const FolderLock lock(folder_);
        if (lock.is_held()) {
            number_ = highest_number(folder_) + 1;
            part_ = folder_ + "/." + digits_of(number_) + ".part";
            file_ = new_file(part_);
        }
    }
    ~Document() {
        if (file_.is_open()) {
            file_.close();
            ::unlink(part_.c_str());
        }
    }
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    Document(Document&&) = delete;
    Document& operator=(Document&&) = delete;

    [[nodiscard]] bool is_open() const { return file_.is_open(); }
    [[nodiscard]] Long number() const { return number_; }

    [[nodiscard]] std::size_t write(std::span<const Byte> data) {
        const std::size_t count = write_bytes(file_.value(), data);
        size_ += count;
        is_whole_ = is_whole_ && count == data.size();
        return count;
    }

    // Whether the document stands under its name.
    [[nodiscard]] bool publish() {
        const FolderLock lock(folder_);
        if (!is_whole_ || !lock.is_held() || ::fsync(file_.value()) != 0) {
            return false;
        }
        const std::string safe = file_name_of(name_);
        const std::string stem =
            folder_ + "/" + digits_of(number_) + (safe.empty() ? "" : "-" + safe);
        if (!describe(stem + ".job")) {
            return false;
        }
        if (::rename(part_.c_str(), (stem + ".prn").c_str()) != 0) {
            ::unlink((stem + ".job").c_str());
            return false;
        }
        file_.close();
        return lock.synchronise();
    }

  private:
    // What the job is called, in a file beside it.
    [[nodiscard]] bool describe(const std::string& path) const {
        const std::string text = line_of("name", to_utf8(name_)) +
                                 line_of("printer", to_utf8(printer_)) +
                                 line_of("bytes", std::to_string(size_));
        Descriptor file = new_file(path);
        const auto* const bytes = reinterpret_cast<const Byte*>(text.data());
        const bool is_written = file.is_open() &&
                                write_bytes(file.value(), {bytes, text.size()}) == text.size() &&
                                ::fsync(file.value()) == 0;
        if (file.is_open() && !is_written) {
            ::unlink(path.c_str());
        }
        return is_written;
    }

    std::string folder_;
    String printer_;
    String name_;
    std::string part_;
    Descriptor file_;
    Long number_ = 0;
    std::size_t size_ = 0;
    bool is_whole_ = true;
};

SpoolFolder::SpoolFolder() = default;
SpoolFolder::~SpoolFolder() = default;

Long SpoolFolder::OpenPrinterA(StringView name, Long& handle, const PRINTER_DEFAULTS&) {
    if (!name.starts_with(spool_folder_prefix)) {
        return refused;
    }
    std::string folder;
    guarded([&] {  // what is no path is no printer
        folder = platform().files->native_path(name.substr(spool_folder_prefix.size()));
    });
    std::error_code problem;
    if (!fs::is_directory(folder, problem) || ::access(folder.c_str(), R_OK | W_OK | X_OK) != 0) {
        return refused;
    }
    const std::lock_guard lock(mutex_);
    handle = ++last_handle_;
    printers_[handle] = {String(name), folder, nullptr};
    return done;
}

Long SpoolFolder::StartDocPrinterA(Long handle, Long level, const DOC_INFO_1& document) {
    const std::lock_guard lock(mutex_);
    Printer* const printer = printer_of(handle);
    if (printer == nullptr || printer->document != nullptr || level != document_level ||
        document.pDatatype != u"RAW" || !document.pOutputFile.empty()) {
        return refused;
    }
    auto made = std::make_unique<Document>(printer->folder, printer->name, document.pDocName);
    if (!made->is_open()) {
        return refused;
    }
    printer->document = std::move(made);
    return printer->document->number();
}

Long SpoolFolder::StartPagePrinter(Long handle) {
    return has_document(handle) ? done : refused;
}

Long SpoolFolder::WritePrinter(Long handle, std::span<const Byte> data, Long& written) {
    const std::lock_guard lock(mutex_);
    Printer* const printer = printer_of(handle);
    if (printer == nullptr || printer->document == nullptr) {
        written = 0;
        return refused;
    }
    const std::size_t count = printer->document->write(data);
    written = static_cast<Long>(count);
    return count == data.size() ? done : refused;
}

Long SpoolFolder::EndPagePrinter(Long handle) {
    return has_document(handle) ? done : refused;
}

Long SpoolFolder::EndDocPrinter(Long handle) {
    const std::lock_guard lock(mutex_);
    Printer* const printer = printer_of(handle);
    if (printer == nullptr || printer->document == nullptr) {
        return refused;
    }
    const std::unique_ptr<Document> document = std::move(printer->document);
    return document->publish() ? done : refused;
}

Long SpoolFolder::ClosePrinter(Long handle) {
    const std::lock_guard lock(mutex_);
    return printers_.erase(handle) > 0 ? done : refused;
}

SpoolFolder::Printer* SpoolFolder::printer_of(Long handle) {
    const auto found = printers_.find(handle);
    return found == printers_.end() ? nullptr : &found->second;
}

bool SpoolFolder::has_document(Long handle) {
    const std::lock_guard lock(mutex_);
    const Printer* const printer = printer_of(handle);
    return printer != nullptr && printer->document != nullptr;
}

}  // namespace kvarta16::posix
