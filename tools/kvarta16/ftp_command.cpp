// Files on an FTP server: list, fetch, send, delete, rename, and its directories.
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <optional>

#include <termios.h>
#include <unistd.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/ftp/clsFTP.h>
#include <kvarta16/platform/forwarding.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/posix/windows_paths.h>

#include "commands.h"
#include "ftp_url.h"
#include "terminal.h"
#include "usage_error.h"

namespace kvarta16::tool {
namespace {

constexpr const char* password_variable = "KVARTA16_FTP_PASSWORD";

// The platform's "user interrupt", raised to end an upload.
constexpr Long user_interrupt = 18;

// ---- The seams between the client and the platform --------------------------------------------

// The client takes its port from marker files; the tool is told one. And it does not tell whether
// a directory could be changed to.
class CommandInternet final : public ForwardingInternet {
  public:
    CommandInternet(Internet& target, std::uint16_t port) noexcept
        : ForwardingInternet(target), port_(port) {}

    Long InternetConnectA(Long session, StringView server, Integer, StringView user,
                          StringView password, Long service, Long flags, Long context) override {
        return ForwardingInternet::InternetConnectA(session, server, wrap16(port_), user, password,
                                                    service, flags, context);
    }
    Long FtpSetCurrentDirectoryA(Long connection, StringView directory) override {
        is_directory_set = ForwardingInternet::FtpSetCurrentDirectoryA(connection, directory) != 0;
        return is_directory_set ? 1 : 0;
    }

    bool is_directory_set = false;

  private:
    std::uint16_t port_;
};

bool is_interrupted() {
    try {
        InterruptWatch::check();
        return false;
    } catch (const Interrupted&) {  // asked here, and told by the exit status
        return true;
    }
}

// What runs when the client pumps messages: a Ctrl-C cancels the transfer.
class CancellingMessages final : public ForwardingMessages {
  public:
    CancellingMessages(Messages& target, clsFTP& ftp) noexcept
        : ForwardingMessages(target), ftp_(ftp) {}
    void DoEvents() override {
        ForwardingMessages::DoEvents();
        if (is_interrupted()) {
            ftp_.Connected = false;
        }
    }

  private:
    clsFTP& ftp_;
};

// ---- Passwords --------------------------------------------------------------------------------

// Reads a line that the terminal does not show. Ctrl-C comes as a character, so that the terminal
// is set back behind it too.
std::string asked_password(const std::string& user) {
    constexpr char ctrl_c = 3;
    std::cerr << "Password of " << user << ": " << std::flush;
    termios before{};
    ::tcgetattr(STDIN_FILENO, &before);
    termios silent = before;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
    ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    std::string line;
    std::getline(std::cin, line);
    ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
    std::cerr << '\n';
    if (line.find(ctrl_c) != std::string::npos) {
        std::raise(SIGINT);
    }
    return line;
}

std::string password_of(const FtpUrl& url) {
    if (url.user.empty()) {
        return "kvarta16@";  // as servers want it of an anonymous guest
    }
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the tool has one thread
    if (const char* given = std::getenv(password_variable)) {
        return given;
    }
    if (::isatty(STDIN_FILENO) == 0) {
        throw UsageError(std::string("the password of ") + url.user + " is wanted in " +
                         password_variable);
    }
    return asked_password(url.user);
}

// ---- A connection -----------------------------------------------------------------------------

class FtpClient {
  public:
    FtpClient(const FtpUrl& url, bool active)
        : password_(from_utf8(password_of(url))),
          internet_(*platform().internet, url.port),
          messages_(*platform().messages, ftp),
          operations_(with_own_seams()),
          scope_(operations_) {
        ftp.ServerName(from_utf8(url.host));
        ftp.LoginName(url.user.empty() ? u"anonymous" : from_utf8(url.user));
        ftp.Password(password_);
        ftp.PassiveConnection(!active);
        require(bool{ftp.Connect()}, "no connection to " + url.host);
    }
    ~FtpClient() { ftp.Disconnect(); }
    FtpClient(const FtpClient&) = delete;
    FtpClient& operator=(const FtpClient&) = delete;
    FtpClient(FtpClient&&) = delete;
    FtpClient& operator=(FtpClient&&) = delete;

    void change_directory(const std::string& directory) {
        if (!directory.empty()) {
            ftp.CurDir(from_utf8(directory));
            require(internet_.is_directory_set, "no directory " + directory);
        }
    }

    // The entries of the current directory, of one of the two kinds.
    void list(bool directories) {
        if (!ftp.GetMatchingFiles(u"*.*", directories)) {
            const bool is_empty =
                platform().internet->GetLastError() == internet_error::no_more_files;
            require(is_empty && ftp.LastErrorNumber() == 0, "the directory cannot be listed");
        }
    }

    // Fails with what is known of the reason.
    void require(bool is_done, const std::string& what) {
        if (!is_done) {
            const Long number = platform().internet->GetLastError();
            throw std::runtime_error(what + ": " + reason(number));
        }
    }

    clsFTP ftp;

  private:
    Platform with_own_seams() {
        Platform operations = platform();
        operations.internet = &internet_;
        operations.messages = &messages_;
        return operations;
    }

    // The server's words where it has said why, in one line and without the password.
    std::string reason(Long number) {
        String text(std::size_t{64} << 10, u'\0');
        auto length = static_cast<Long>(text.size());
        Long code = number;
        if (platform().internet->InternetGetLastResponseInfoA(code, text, length) == 0) {
            length = 0;
        }
        text.resize(static_cast<std::size_t>(std::max(length, 0)));
        std::ranges::replace_if(
            text, [](char16_t unit) { return unit < u' '; }, u' ');
        text = trim(String(text));
        if (!password_.empty()) {
            text = replace_all(text, password_, u"***");
        }
        const std::string told = "error " + std::to_string(number);
        return text.empty() || number != internet_error::extended_error ? told + meaning_of(number)
                                                                        : to_utf8(text);
    }

    struct Meaning {
        Long number;
        const char* text;
    };
    static std::string meaning_of(Long number) {
        constexpr Meaning meanings[] = {
            {internet_error::timeout, "the server does not answer in time"},
            {internet_error::name_not_resolved, "the server's name is not known"},
            {internet_error::incorrect_user_name, "the user is not known"},
            {internet_error::incorrect_password, "wrong user or password"},
            {internet_error::login_failure, "the login is refused"},
            {internet_error::cannot_connect, "nothing answers at that address and port"},
            {internet_error::connection_aborted, "the connection broke off"},
            {internet_error::connection_reset, "the server broke the connection off"},
            {internet_error::disk_full, "the disk is full"},
        };
        const auto* known = std::ranges::find(meanings, number, &Meaning::number);
        return known == std::end(meanings) ? "" : std::string(": ") + known->text;
    }

    String password_;
    CommandInternet internet_;
    CancellingMessages messages_;
    Platform operations_;
    ScopedPlatform scope_;
};

// ---- Listing ----------------------------------------------------------------------------------

void print_entries(const clsFTP& ftp, bool directories) {
    constexpr int size_width = 12;
    constexpr StringView mask = u"yyyy-MM-dd hh:nn";
    for (Long i = 1; i <= ftp.lMatching; ++i) {
        const Date written = ftp.CzasLastWrite_pliku(i);
        const std::string time =
            written.days <= 0 ? std::string(mask.size(), ' ') : to_utf8(FormatMask(written, mask));
        const std::string size = directories ? "" : std::to_string(ftp.Rozmiar_pliku(i));
        std::cout << std::setw(size_width) << size << "  " << time << "  "
                  << to_utf8(ftp.Nazwa_pliku(i)) << (directories ? "/" : "") << '\n';
    }
}

// ---- Transfers --------------------------------------------------------------------------------

// The Windows path of a local file, which need not exist; its folder must.
String local_path(const std::string& name) {
    const std::filesystem::path native = std::filesystem::absolute(name).lexically_normal();
    String path = posix::windows_path(native.parent_path().string());
    if (path.empty() || !native.has_filename()) {
        throw UsageError("no name for a file, or no folder for it: " + name);
    }
    if (!path.ends_with(u'\\')) {
        path += u'\\';
    }
    return path + from_utf8(native.filename().string());
}

// Where in the listing a name stands; 0 if nowhere.
Long place_of(const clsFTP& ftp, const String& name) {
    for (Long i = 1; i <= ftp.lMatching; ++i) {
        if (ftp.Nazwa_pliku(i) == name) {
            return i;
        }
    }
    return 0;
}

// Has the bar follow the event while a transfer runs.
void show_progress(clsFTP& ftp, const std::string& title, bool can_be_cancelled) {
    const auto bar = std::make_shared<std::optional<ProgressBar>>();
    ftp.FileTransferProgress = [=](const Long& current, const Long& total) {
        if (!can_be_cancelled && is_interrupted()) {
            throw Failure(user_interrupt);
        }
        if (current < 0 || total <= 0) {
            return;
        }
        if (!*bar) {
            bar->emplace(title, static_cast<std::size_t>(total));
        }
        (*bar)->show(static_cast<std::size_t>(std::min(current, total)));
    };
}

int fetch(FtpClient& client, const FtpUrl& url, const std::string& local_name) {
    String local = local_path(local_name);
    String remote = from_utf8(url.name());
    client.change_directory(url.directory());
    client.list(false);
    clsFTP& ftp = client.ftp;
    const Long place = place_of(ftp, remote);
    if (place == 0) {
        throw std::runtime_error("the server has no file " + url.name());
    }
    if (ftp.Rozmiar_pliku(place) <= 0) {  // empty, or too big for the size that a listing tells
        client.require(bool{ftp.DownloadFile(remote, local, true)}, "not fetched");
        return 0;
    }
    const InterruptWatch watch;
    show_progress(ftp, url.name(), true);
    const bool is_fetched{ftp.DownloadFileProgress(remote, local, true)};
    ftp.FileTransferProgress = nullptr;
    if (is_interrupted()) {
        std::cerr << "kvarta16: interrupted; what has come is in " << local_name << '\n';
        return exit_interrupted;
    }
    client.require(is_fetched, "not fetched");
    return 0;
}

int send(FtpClient& client, const std::string& local_name, const FtpUrl& url) {
    String local = local_path(local_name);
    String remote = from_utf8(url.name());
    client.change_directory(url.directory());
    clsFTP& ftp = client.ftp;
    const InterruptWatch watch;
    show_progress(ftp, url.name(), false);
    Boolean asc;
    const bool is_sent{ftp.UploadFileProgress(local, remote, asc)};
    ftp.FileTransferProgress = nullptr;
    if (is_interrupted()) {
        std::cerr << "kvarta16: interrupted; what was sent stays on the server\n";
        return exit_interrupted;
    }
    client.require(is_sent, "not sent");
    return 0;
}

FtpUrl with_name(FtpUrl url, const std::string& name) {
    if (url.name().empty()) {
        url.path += name;
    }
    if (url.name().empty()) {
        throw UsageError("the address names no file");
    }
    return url;
}

}  // namespace

int ftp_list_command(const FtpOptions& options) {
    const FtpUrl url = read_ftp_url(options.url);
    FtpClient client(url, options.active);
    client.change_directory(url.path);
    for (const bool directories : {true, false}) {
        client.list(directories);
        print_entries(client.ftp, directories);
    }
    return 0;
}

int ftp_get_command(const FtpOptions& options) {
    const FtpUrl url = with_name(read_ftp_url(options.url), "");
    FtpClient client(url, options.active);
    return fetch(client, url, options.local.empty() ? url.name() : options.local);
}

int ftp_put_command(const FtpOptions& options) {
    const std::filesystem::path local(options.local);
    if (!std::filesystem::is_regular_file(local)) {
        throw UsageError("there is no file " + options.local);
    }
    const FtpUrl url = with_name(read_ftp_url(options.url), local.filename().string());
    FtpClient client(url, options.active);
    return send(client, options.local, url);
}

int ftp_remote_command(const FtpOptions& options) {
    const FtpUrl url = with_name(read_ftp_url(options.url), "");
    FtpClient client(url, options.active);
    const String path = from_utf8(url.path);
    clsFTP& ftp = client.ftp;
    switch (options.action) {
        case FtpAction::DeleteFile:
            client.require(bool{ftp.DeleteFile(path)}, "not deleted");
            break;
        case FtpAction::MakeDirectory:
            client.require(bool{ftp.MakeDir(path)}, "not made");
            break;
        case FtpAction::RemoveDirectory:
            client.require(bool{ftp.DelDir(path)}, "not removed");
            break;
        case FtpAction::Rename:
            client.require(bool{ftp.RenameFile(path, from_utf8(options.new_name))}, "not renamed");
            break;
    }
    return 0;
}

}  // namespace kvarta16::tool
