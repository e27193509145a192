#include <algorithm>
#include <optional>

#include <kvarta16/frame/text.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/ftp/clsFTP.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

constexpr StringView agent_name = u"FTP Client";

// The longest path of the platform, with its ending zero.
constexpr Long longest_path = 260;

Internet& internet_calls() {
    return *platform().internet;
}

// The platform's flag in the 16 bits of a Boolean, as it comes.
Boolean flag(Long answer) {
    return Boolean::from_raw(wrap16(answer));
}

std::optional<Long> attributes_of(StringView path) {
    std::optional<Long> attributes;
    guarded([&] { attributes = platform().files->GetAttr(path); });
    return attributes;
}

}  // namespace

// ---- Session ----------------------------------------------------------------------------------

Integer clsFTP::chosen_port() {
    if (LocalIsFile(u"c:\\port21147.txt")) {
        return 21147;
    }
    return LocalIsFile(u"c:\\hadrik.txt") || LocalIsFile(u"c:\\port2121.txt") ? 2121 : 21;
}

Boolean clsFTP::Connect() {
    Connected = false;
    const Integer port = chosen_port();
    hInternet =
        internet_calls().InternetOpenA(agent_name, internet::open_type_preconfig, {}, {}, 0);
    hFTP = internet_calls().InternetConnectA(hInternet, server_name_, port, login_name_, password_,
                                             internet::service_ftp,
                                             passive_ ? internet::flag_passive : 0, 0);
    Connected = hFTP != 0;
    return Connected;
}

void clsFTP::Disconnect() {
    if (hFTP != 0) {
        internet_calls().InternetCloseHandle(hFTP);
        hFTP = 0;
        internet_calls().InternetCloseHandle(hInternet);
        hInternet = 0;
    }
    Connected = false;
}

// ---- Remote directories and files -------------------------------------------------------------

String clsFTP::CurDir() const {
    String buffer(longest_path, u'\0');
    Long length = longest_path;
    step(
        [&] { static_cast<void>(internet_calls().FtpGetCurrentDirectoryA(hFTP, buffer, length)); });
    String directory = buffer.substr(0, buffer.find(u'\0'));
    if (!directory.ends_with(u'/')) {
        directory += u'/';
    }
    return directory;
}

void clsFTP::CurDir(StringView value) {
    static_cast<void>(internet_calls().FtpSetCurrentDirectoryA(hFTP, value));
}

Boolean clsFTP::MakeDir(StringView sPath) {
    return flag(internet_calls().FtpCreateDirectoryA(hFTP, sPath));
}

Boolean clsFTP::DelDir(StringView sDirectory) {
    return flag(internet_calls().FtpRemoveDirectoryA(hFTP, sDirectory));
}

Boolean clsFTP::DeleteFile(StringView sFilename) {
    return flag(internet_calls().FtpDeleteFileA(hFTP, sFilename));
}

Boolean clsFTP::RenameFile(StringView sSourceFile, StringView sNewName) {
    return flag(internet_calls().FtpRenameFileA(hFTP, sSourceFile, sNewName));
}

Long clsFTP::GetFTPFileSize(StringView sFile) {
    constexpr Long not_there = -1;
    constexpr Long refused = -2;
    // A blank would end the name on its way to the server.
    const String pattern = replace_all(sFile, u" ", u"?");
    WIN32_FIND_DATA data;
    const Long find = internet_calls().FtpFindFirstFileA(hFTP, pattern, data, 0, 0);
    RecordFailure();
    if (find == 0) {
        return last_error_number_ == internet_error::no_more_files ? not_there : refused;
    }
    internet_calls().InternetCloseHandle(find);
    return data.nFileSizeLow;
}

// ---- Transfers in one call --------------------------------------------------------------------

Boolean clsFTP::UploadFile(StringView sSourceFile, StringView Destination,
                           Boolean& dwType_ASC_MODE) {
    dwType_ASC_MODE = false;
    try {
        return flag(internet_calls().FtpPutFileA(hFTP, sSourceFile, Destination,
                                                 internet::transfer_type_binary, 0));
    } catch (const Failure& failure) {  // guarded: recorded for LastError
        RecordFailure(failure);
        return false;
    }
}

Boolean clsFTP::DownloadFile(StringView sGetFileName, StringView sSaveToPath, Boolean bOverwrite) {
    constexpr Long already_exists = wrap32(0x80040001);
    try {
        const String folder = LocalDirOf(sSaveToPath);
        if (!LocalIsDir(folder)) {
            platform().files->MkDir(folder);
        }
        // The file itself is not looked for: without `bOverwrite` nothing is ever fetched.
        if (!sSaveToPath.empty() && !bOverwrite) {
            last_error_ = u"File already exists at " + String(sSaveToPath);
            last_error_number_ = already_exists;
            return false;
        }
        if (!sSaveToPath.empty() && LocalIsFile(sSaveToPath)) {
            platform().files->Kill(sSaveToPath);
        }
        Long context = 0;
        return flag(internet_calls().FtpGetFileA(hFTP, sGetFileName, sSaveToPath, false, 0,
                                                 internet::flag_reload, context));
    } catch (const Failure& failure) {  // guarded: recorded for LastError
        RecordFailure(failure);
        return false;
    }
}

// ---- Local files ------------------------------------------------------------------------------

String clsFTP::LocalDirOf(StringView path) {
    const std::size_t separator = path.rfind(u'\\');
    return String(path.substr(0, separator == StringView::npos ? 0 : separator));
}

bool clsFTP::LocalIsDir(StringView path) {
    const std::optional<Long> attributes = attributes_of(path);
    return attributes && (*attributes & file_attribute::directory) != 0;
}

bool clsFTP::LocalIsFile(StringView path) {
    const std::optional<Long> attributes = attributes_of(path);
    return attributes && (*attributes & file_attribute::directory) == 0;
}

// ---- What went wrong --------------------------------------------------------------------------

void clsFTP::RecordFailure(const Failure& caught) {
    last_error_ = caught.description();
    last_error_number_ = caught.number();
}

void clsFTP::RecordFailure() {
    Long number = internet_calls().GetLastError();
    StoreLastError(number);
}

void clsFTP::StoreLastError(Long& lError) {
    String text;
    Long length = 0;
    internet_calls().InternetGetLastResponseInfoA(lError, text, length);  // tells the length
    text.assign(static_cast<std::size_t>(std::max(length, 0)), u'\0');
    internet_calls().InternetGetLastResponseInfoA(lError, text, length);
    last_error_ = text;
    last_error_number_ = lError;
}

}  // namespace kvarta16
