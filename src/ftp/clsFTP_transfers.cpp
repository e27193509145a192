// The transfers of clsFTP that count: blocks of 100 bytes, the caller's messages and the event
// behind each. Callers rely on the size of the block and on what happens in which order.
#include <kvarta16/frame/text.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/ftp/clsFTP.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

constexpr Long block_size = 100;
using Block = std::array<Byte, block_size>;

// What is left behind the full blocks. The total may be what a handler of the event has made of it.
// Fails: with `number` for a negative one, which is no count of bytes.
std::size_t remainder_of(Long total_bytes, Long number) {
    const Long rest = total_bytes % block_size;
    if (rest < 0) {
        fail(number);
    }
    return static_cast<std::size_t>(rest);
}

// Both names lose the blanks around them. Whether they are names then.
bool trim_names(String& one, String& other) {
    one = trim(String(one));
    other = trim(String(other));
    return !one.empty() && !other.empty();
}

// Behind a failure. What cannot be written any more changes nothing about the result.
void close_local(Integer number) {
    step([&] { platform().file_table->Close(number); });
}

}  // namespace

void clsFTP::raise_progress(Long& current_bytes, Long& total_bytes) const {
    // A copy: a handler may put another in its place.
    if (const auto handler = FileTransferProgress) {
        handler(current_bytes, total_bytes);
    }
}

void clsFTP::pass_block(Long& current_bytes, Long& total_bytes) const {
    platform().messages->DoEvents();
    current_bytes = wrap32(std::int64_t{current_bytes} + block_size);
    raise_progress(current_bytes, total_bytes);
}

// ---- Sending ----------------------------------------------------------------------------------

Boolean clsFTP::UploadFileProgress(String& sLocal, String& sRemote, Boolean& dwType_ASC_MODE) {
    dwType_ASC_MODE = false;
    if (!trim_names(sLocal, sRemote)) {
        return false;
    }
    hRemoteFile = platform().internet->FtpOpenFileA(hFTP, sRemote, internet::generic_write,
                                                    internet::transfer_type_binary, 0);
    if (hRemoteFile == 0) {
        RecordFailure();
        return false;
    }
    Integer number = 0;
    bool is_sent = false;
    guarded([&] {
        number = platform().file_table->FreeFile();
        platform().file_table->Open(sLocal, number, OpenMode::BinaryRead, Sharing::Default);
        is_sent = send_file(number);
    });
    if (!is_sent) {
        close_local(number);
    }
    return is_sent;
}

bool clsFTP::send_file(Integer number) {
    // The size is that of number 1 and not of `number`: a caller who holds number 1 gets that.
    Long total_bytes = platform().file_table->LOF(1);
    if (!send_blocks(number, total_bytes)) {
        RecordFailure();
        return false;
    }
    Long current_bytes = total_bytes;
    platform().file_table->Close(number);
    raise_progress(current_bytes, total_bytes);
    platform().internet->InternetCloseHandle(hRemoteFile);
    return true;
}

bool clsFTP::send_blocks(Integer number, Long& total_bytes) const {
    Block block{};
    Long current_bytes = 0;
    const Long full_blocks = total_bytes / block_size;
    for (Long i = 0; i < full_blocks; ++i) {
        platform().file_table->Get(number, block);
        if (!write_block(block, total_bytes)) {
            return false;
        }
        pass_block(current_bytes, total_bytes);
    }
    const std::size_t rest = remainder_of(total_bytes, error::invalid_call);
    if (rest == 0) {
        return true;
    }
    platform().file_table->Get(number, block);  // reads past the end: the tail stays as it was
    return write_block(std::span(block).first(rest), total_bytes);
}

bool clsFTP::write_block(std::span<const Byte> bytes, Long& total_bytes) const {
    constexpr int most_retries = 10;
    for (int retries = 0; retries <= most_retries; ++retries) {
        Long written = 0;
        if (platform().internet->InternetWriteFile(hRemoteFile, bytes, written) != 0) {
            return true;
        }
        Long not_sent = -1;
        raise_progress(not_sent, total_bytes);
    }
    return false;
}

// ---- Fetching ---------------------------------------------------------------------------------

Boolean clsFTP::DownloadFileProgress(String& sRemote, String& sLocal, Boolean bOverwrite,
                                     Boolean& dwType_ASC_MODE) {
    dwType_ASC_MODE = false;
    Integer number = 0;
    try {
        if (!trim_names(sLocal, sRemote)) {
            return false;
        }
        const Long size = listed_size(sRemote);
        if (size <= 0) {
            return false;
        }
        hRemoteFile = platform().internet->FtpOpenFileA(hFTP, sRemote, internet::generic_read,
                                                        internet::transfer_type_binary, 0);
        if (hRemoteFile == 0) {
            RecordFailure();
            return false;
        }
        return fetch_file(sLocal, bOverwrite, size, number);
    } catch (const Failure&) {  // guarded: a local file failed, or the entry is not in the listing
        close_local(number);
        return false;
    }
}

bool clsFTP::fetch_file(const String& local, Boolean overwrite, Long size, Integer& number) {
    const String folder = LocalDirOf(local);
    if (!LocalIsDir(folder)) {
        platform().files->MkDir(folder);
    }
    if (overwrite && LocalIsFile(local)) {
        platform().files->Kill(local);
    }
    number = platform().file_table->FreeFile();
    platform().file_table->Open(local, number, OpenMode::Binary, Sharing::Default);
    platform().file_table->Seek(number, 1);
    const Fetched fetched = fetch_blocks(number, size);
    if (fetched == Fetched::Refused) {
        RecordFailure();
        platform().file_table->Close(number);
        return false;
    }
    if (fetched == Fetched::Whole) {
        platform().file_table->Close(number);
        Long current_bytes = size;
        raise_progress(current_bytes, size);
    }
    platform().internet->InternetCloseHandle(hRemoteFile);
    if (Connected) {
        return LocalIsFile(local);
    }
    // At a cancel between blocks the file is still open, so that this fails and the part stays.
    if (LocalIsFile(local)) {
        platform().files->Kill(local);
    }
    return false;
}

clsFTP::Fetched clsFTP::fetch_blocks(Integer number, Long& size) const {
    Block block{};  // keeps what a short read leaves of the block before
    Long current_bytes = 1;
    const Long full_blocks = size / block_size;
    for (Long i = 0; i < full_blocks; ++i) {
        if (!Connected) {
            return Fetched::Cancelled;
        }
        if (!read_block(block)) {
            return Fetched::Refused;
        }
        platform().file_table->Put(number, block);
        pass_block(current_bytes, size);
    }
    if (!Connected) {
        return Fetched::Cancelled;
    }
    std::vector<Byte> rest(remainder_of(size, error::subscript));
    if (!rest.empty()) {
        if (!read_block(rest)) {
            return Fetched::Refused;
        }
        platform().file_table->Put(number, rest);
    }
    return Fetched::Whole;
}

bool clsFTP::read_block(std::span<Byte> bytes) const {
    Long read = 0;
    return platform().internet->InternetReadFile(hRemoteFile, bytes, read) != 0;
}

}  // namespace kvarta16
