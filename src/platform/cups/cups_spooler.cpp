#include <algorithm>
#include <utility>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/cups/cups_connection.h>
#include <kvarta16/platform/cups/cups_printers.h>
#include <kvarta16/platform/cups/cups_spooler.h>

namespace kvarta16::cups {
namespace {

constexpr Long done = 1;
constexpr Long refused = 0;
constexpr Long document_level = 1;
constexpr std::size_t longest_title = 255;  // bytes

// The document's name as the server takes one: without control characters, and cut between two
// letters. Any other it would replace by a word of its own.
std::string title_of(StringView document) {
    std::string title = to_utf8(document);
    for (char& c : title) {
        const bool is_control = static_cast<unsigned char>(c) < ' ' || c == '\x7F';
        c = is_control ? ' ' : c;
    }
    const auto continues = [&](std::size_t at) { return (title[at] & '\xC0') == '\x80'; };
    std::size_t size = std::min(title.size(), longest_title);
    while (size < title.size() && size > 0 && continues(size)) {
        --size;
    }
    return title.substr(0, size);
}

}  // namespace

// A job with its one document, on a connection of its own: what is sent stands in the middle of a
// request until the document ends.
class CupsSpooler::Document {
  public:
    Document(const std::string& printer, const std::string& title)
        : printer_(printer), connection_(connect()) {
        if (connection_ == nullptr) {
            return;
        }
        job_ = ::cupsCreateJob(connection_.get(), printer_.c_str(), title.c_str(), 0, nullptr);
        constexpr int is_last = 1;
        is_open_ = job_ != 0 &&
                   ::cupsStartDocument(connection_.get(), printer_.c_str(), job_, title.c_str(),
                                       CUPS_FORMAT_RAW, is_last) == HTTP_STATUS_CONTINUE;
        is_whole_ = is_open_;
    }
    ~Document() {
        if (job_ != 0 && !is_ended_) {
            take_back();
        }
    }
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    Document(Document&&) = delete;
    Document& operator=(Document&&) = delete;

    [[nodiscard]] bool is_open() const { return is_open_; }
    [[nodiscard]] Long job() const { return job_; }

    [[nodiscard]] bool write(std::span<const Byte> data) {
        if (data.empty()) {
            return is_whole_;  // to the server a block without bytes is the end
        }
        const auto* const bytes = reinterpret_cast<const char*>(data.data());
        is_whole_ = is_whole_ && ::cupsWriteRequestData(connection_.get(), bytes, data.size()) ==
                                     HTTP_STATUS_CONTINUE;
        return is_whole_;
    }

    [[nodiscard]] bool end() {
        is_ended_ = is_whole_ && ::cupsFinishDocument(connection_.get(), printer_.c_str()) <=
                                     IPP_STATUS_OK_CONFLICTING;
        return is_ended_;
    }

  private:
    // The request that was under way is broken off; the job itself is told to go by another.
    void take_back() {
        connection_.reset();
        const Connection other = connect();
        if (other != nullptr) {
            constexpr int keep_nothing = 1;
            ::cupsCancelJob2(other.get(), printer_.c_str(), job_, keep_nothing);
        }
    }

    std::string printer_;
    Connection connection_;
    int job_ = 0;
    bool is_open_ = false;
    bool is_whole_ = false;
    bool is_ended_ = false;
};

CupsSpooler::CupsSpooler() = default;
CupsSpooler::~CupsSpooler() = default;

Long CupsSpooler::OpenPrinterA(StringView name, Long& handle, const PRINTER_DEFAULTS&) {
    // The server itself takes a name in any case, so its own list decides.
    const std::vector<cups::Printer> known = printers();
    if (std::ranges::find(known, name, &cups::Printer::name) == known.end()) {
        return refused;
    }
    const std::lock_guard lock(mutex_);
    handle = ++last_handle_;
    printers_[handle] = std::make_shared<Printer>(Printer{to_utf8(name), nullptr});
    return done;
}

Long CupsSpooler::StartDocPrinterA(Long handle, Long level, const DOC_INFO_1& document) {
    const std::shared_ptr<Printer> printer = printer_of(handle);
    if (printer == nullptr || printer->document != nullptr || level != document_level ||
        document.pDatatype != u"RAW" || !document.pOutputFile.empty()) {
        return refused;
    }
    auto made = std::make_unique<Document>(printer->name, title_of(document.pDocName));
    if (!made->is_open()) {
        return refused;
    }
    printer->document = std::move(made);
    return printer->document->job();
}

Long CupsSpooler::StartPagePrinter(Long handle) {
    const std::shared_ptr<Printer> printer = printer_of(handle);
    return printer != nullptr && printer->document != nullptr ? done : refused;
}

Long CupsSpooler::WritePrinter(Long handle, std::span<const Byte> data, Long& written) {
    const std::shared_ptr<Printer> printer = printer_of(handle);
    written = 0;
    if (printer == nullptr || printer->document == nullptr || !printer->document->write(data)) {
        return refused;
    }
    written = static_cast<Long>(data.size());
    return done;
}

Long CupsSpooler::EndPagePrinter(Long handle) {
    return StartPagePrinter(handle);
}

Long CupsSpooler::EndDocPrinter(Long handle) {
    const std::shared_ptr<Printer> printer = printer_of(handle);
    if (printer == nullptr || printer->document == nullptr) {
        return refused;
    }
    const std::unique_ptr<Document> document = std::move(printer->document);
    return document->end() ? done : refused;
}

Long CupsSpooler::ClosePrinter(Long handle) {
    std::shared_ptr<Printer> closed;  // which takes its job back without the lock
    const std::lock_guard lock(mutex_);
    const auto found = printers_.find(handle);
    if (found == printers_.end()) {
        return refused;
    }
    closed = std::move(found->second);
    printers_.erase(found);
    return done;
}

std::shared_ptr<CupsSpooler::Printer> CupsSpooler::printer_of(Long handle) {
    const std::lock_guard lock(mutex_);
    const auto found = printers_.find(handle);
    return found == printers_.end() ? nullptr : found->second;
}

CupsSpooler& spooler() noexcept {
    static CupsSpooler spooler;
    return spooler;
}

}  // namespace kvarta16::cups
