// An FTP client: one session an object, a listing of the current remote directory that the object
// holds, and transfers, with a running count or without.
//
//   clsFTP ftp;
//   ftp.ServerName(u"ftp.example.com");
//   ftp.LoginName(u"ola");
//   ftp.Password(u"...");
//   ftp.FileTransferProgress = [](Long& lCurrentBytes, Long& lTotalBytes) { ... };
//   if (ftp.Connect()) {
//       String remote = u"cennik.txt", local = u"Z:\\home\\ola\\cennik.txt";
//       Boolean overwrite = true;
//       ftp.GetMatchingFiles();                             // a download looks its size up there
//       ftp.DownloadFileProgress(remote, local, overwrite);
//       ftp.Disconnect();
//   }
//
// A member tells by its Boolean whether it has done its work, and no failure reaches the caller but
// 9 for an entry that the listing has not got. The remote commands hand the platform's flag on as
// it comes, so that their true is 1 and not -1: test for non-zero. Why something failed stands in
// LastError and LastErrorNumber only where a member says so; the others leave both as they were.
//
// The object belongs to one thread and runs one transfer at a time. Dropping it closes nothing:
// call Disconnect first.
#pragma once

#include <functional>
#include <vector>

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>
#include <kvarta16/platform/find_files.h>

namespace kvarta16 {

class KVARTA16_EXPORT clsFTP {
  public:
    // True from a good Connect until Disconnect or until a caller clears it, which is how a
    // DownloadFileProgress is cancelled. The handles do not follow it.
    Boolean Connected;

    // How many entries the last listing has. Written by a caller it is believed by
    // DownloadFileProgress.
    Long lMatching = 0;

    // The event: raised by the transfers with progress, on the caller's thread, with the bytes
    // moved so far and the size of the file. Both are the transfer's own variables, so that a
    // handler that writes them changes what the transfer counts on with and later events tell; the
    // number of full blocks is fixed before the first. -1 bytes mean that a block could not be sent
    // and is tried again; that one is no variable of the transfer.
    //
    // One handler; who wants more calls them from it. Empty: nobody listens. A Failure that it lets
    // out ends the transfer as that of a local file does; other exceptions pass the transfer by and
    // leave its local file open.
    std::function<void(Long& lCurrentBytes, Long& lTotalBytes)> FileTransferProgress;

    // ---- Session ------------------------------------------------------------------------------

    // Where and as whom the next Connect connects.
    [[nodiscard]] const String& ServerName() const { return server_name_; }
    void ServerName(StringView value) { server_name_ = value; }
    [[nodiscard]] const String& LoginName() const { return login_name_; }
    void LoginName(StringView value) { login_name_ = value; }
    [[nodiscard]] const String& Password() const { return password_; }
    void Password(StringView value) { password_ = value; }

    // Whether the server opens the ports for data (true at first) or this side does, from the next
    // Connect on.
    [[nodiscard]] Boolean PassiveConnection() const { return passive_; }
    void PassiveConnection(Boolean value) { passive_ = value; }

    // Opens a session and connects. The port is told by files that stand on drive C, whatever they
    // hold: 21147 with port21147.txt, else 2121 with hadrik.txt or port2121.txt, else 21. False
    // where no connection comes about; nothing is recorded then, and the session stays open. On an
    // object that is connected both old handles are lost.
    [[nodiscard]] Boolean Connect();

    // Closes the connection and its session. After a Connect that failed there is no connection,
    // and the session then stays open.
    void Disconnect();

    // The platform's handles, 0 where there is none.
    [[nodiscard]] Long FTPHwnd() const { return hFTP; }
    [[nodiscard]] Long InternetHwnd() const { return hInternet; }

    // ---- Remote directories and files ---------------------------------------------------------

    // The current remote directory with "/" at its end; "/" without a connection.
    [[nodiscard]] String CurDir() const;

    // Makes another directory the current one. Whether that worked is not told.
    void CurDir(StringView value);

    // Make a remote directory, delete an empty one, delete a file, give a file another name. The
    // platform's flag: 1 or 0. Nothing is recorded.
    [[nodiscard]] Boolean MakeDir(StringView sPath);
    [[nodiscard]] Boolean DelDir(StringView sDirectory);
    [[nodiscard]] Boolean DeleteFile(StringView sFilename);
    [[nodiscard]] Boolean RenameFile(StringView sSourceFile, StringView sNewName);

    // The size of a remote file in bytes, its low 32 bits; blanks in the name are asked for as "?".
    // -1 where the server has no such file, -2 where it refuses otherwise. Whatever came of it,
    // LastError and LastErrorNumber hold the server's last answer afterwards.
    [[nodiscard]] Long GetFTPFileSize(StringView sFile);

    // ---- Listing ------------------------------------------------------------------------------

    // Lists the current remote directory, or what the pattern names: its files, or with
    // `bReturnDirectories` its directories, never both. True also where none is found; false, with
    // nothing recorded, where the server refuses. A time that is no Date ends the listing: it is
    // recorded, the result is false and the entries before it stay.
    [[nodiscard]] Boolean GetMatchingFiles(const Variant& sFilter = u"*.*",
                                           Boolean bReturnDirectories = false);

    // Entry `I` of the listing, from 1: its name, and its size in 32 bits, which is right below
    // 2^32 bytes. After a refused listing there are no names, while the others are still those of
    // the listing before. Fails: 9 where there is no such entry.
    [[nodiscard]] String Nazwa_pliku(Long I) const;
    [[nodiscard]] Long Rozmiar_pliku(Long I) const;

    // The times of entry `I`. The last write is a moment in local time. The last access and the
    // creation are no moments: the two halves of the file time added up and taken as days, as
    // callers have always got them; 0 where the server tells no such time. Fails: 9.
    [[nodiscard]] Date Data_pliku(Long I) const;
    [[nodiscard]] Date CzasCreate_pliku(Long I) const;
    [[nodiscard]] Date CzasLastWrite_pliku(Long I) const;

    // ---- Transfers, always binary -------------------------------------------------------------

    // `dwType_ASC_MODE` asks for nothing any more: it comes back false.

    // Sends a whole file in one call of the platform. The platform's flag: 1 or 0.
    [[nodiscard]] Boolean UploadFile(StringView sSourceFile, StringView Destination,
                                     Boolean& dwType_ASC_MODE = left_out(Boolean()));

    // Fetches a whole file in one call of the platform, whose flag is the result: 1 or 0. The
    // folder of `sSaveToPath` is made if it is missing, one level. Without `bOverwrite` nothing is
    // fetched, whether a file stands there or not: LastError tells that one does. A failure of a
    // local folder or file, such as a path without a folder, is recorded.
    [[nodiscard]] Boolean DownloadFile(StringView sGetFileName, StringView sSaveToPath,
                                       Boolean bOverwrite);

    // Sends a file in blocks of 100 bytes, after each of which the caller's messages run and the
    // event is raised. A block that cannot be sent is tried eleven times at once, with an event of
    // -1 for each; then the reason is recorded. A local file that fails is not recorded. A file
    // that was not sent whole stays on the server as far as it came, with its handle open.
    //
    // The size is that of the file that stands open under number 1. That is `sLocal` unless the
    // caller holds number 1: then so much is sent as the caller's file is long.
    //
    // Both names come back without blanks around them; an empty one gives false. There is no
    // cancel.
    [[nodiscard]] Boolean UploadFileProgress(String& sLocal, String& sRemote,
                                             Boolean& dwType_ASC_MODE);

    // Fetches a file in blocks of 100 bytes, with messages and events as above; the events tell one
    // byte more than has come, but for the last. The size is that of the last listing, which has to
    // hold the name (in any case): otherwise, and at size 0, false with nothing recorded. A block
    // that cannot be read ends the transfer at once: it is recorded, and the remote handle stays
    // open. What the server sends short is filled up, so that the file gets the size planned.
    //
    // The local file is deleted first with `bOverwrite`; otherwise it is written over from its
    // beginning and keeps what is longer. Its folder is made if it is missing, one level. A failure
    // of either gives false and is not recorded.
    //
    // Clearing Connected cancels at the next block: false, and the part that came stays in the
    // local file. Cleared in the last event, the whole file is deleted.
    [[nodiscard]] Boolean DownloadFileProgress(String& sRemote, String& sLocal, Boolean bOverwrite,
                                               Boolean& dwType_ASC_MODE = left_out(Boolean()));

    // ---- What went wrong ----------------------------------------------------------------------

    // What was recorded last: a failure's description and number, or the server's words whole and
    // its response code or the system's error.
    [[nodiscard]] const String& LastError() const { return last_error_; }
    [[nodiscard]] Long LastErrorNumber() const { return last_error_number_; }

  private:
    // The entries of a listing, array by array: they do not always have the same length.
    struct Listing {
        std::vector<String> names;
        std::vector<Long> sizes;
        std::vector<Date> last_accesses;
        std::vector<Date> creations;
        std::vector<Date> last_writes;
    };

    // Stands for an argument that the caller leaves out: it is written as any other, and gone when
    // the call has ended.
    [[nodiscard]] static Boolean& left_out(Boolean&& argument) { return argument; }

    // The text before the last "\"; "" if there is none.
    [[nodiscard]] static String LocalDirOf(StringView path);
    // Whether the attributes can be read and are those of a folder, or of a file. Guarded.
    [[nodiscard]] static bool LocalIsDir(StringView path);
    [[nodiscard]] static bool LocalIsFile(StringView path);

    // Records a failure that a member has caught, or why the last call of the platform failed.
    void RecordFailure(const Failure& caught);
    void RecordFailure();
    // Records what the server said last; `lError` becomes its response code if it has one.
    void StoreLastError(Long& lError);

    [[nodiscard]] static Integer chosen_port();
    [[nodiscard]] Boolean list_matching(StringView filter, Boolean wants_directories);
    void add_entry(const WIN32_FIND_DATA& data);
    [[nodiscard]] Date FileTimeToLocalDate(const FILETIME& time);
    [[nodiscard]] Long listed_size(StringView name) const;

    void raise_progress(Long& current_bytes, Long& total_bytes) const;
    // A block has been moved: lets the caller's messages run, counts it and raises the event.
    void pass_block(Long& current_bytes, Long& total_bytes) const;
    [[nodiscard]] bool write_block(std::span<const Byte> bytes, Long& total_bytes) const;
    [[nodiscard]] bool send_blocks(Integer number, Long& total_bytes) const;
    [[nodiscard]] bool send_file(Integer number);
    // How a transfer of blocks has ended.
    enum class Fetched : std::uint8_t { Whole, Cancelled, Refused };
    [[nodiscard]] bool read_block(std::span<Byte> bytes) const;
    [[nodiscard]] Fetched fetch_blocks(Integer number, Long& size) const;
    [[nodiscard]] bool fetch_file(const String& local, Boolean overwrite, Long size,
                                  Integer& number);

    String server_name_;
    String login_name_;
    String password_;
    Boolean passive_ = true;
    Listing listing_;
    Long hRemoteFile = 0;  // of the transfer with progress
    Long hFTP = 0;
    Long hInternet = 0;
    String last_error_;
    Long last_error_number_ = 0;
};

namespace ftp {

// The one of a property's two functions that reads it, or writes it.
template <class R>
[[nodiscard]] consteval auto reader(R (clsFTP::*member)() const) {
    return member;
}
template <class P>
[[nodiscard]] consteval auto writer(void (clsFTP::*member)(P)) {
    return member;
}

[[nodiscard]] constexpr MemberInfo get(MemberInfo entry) {
    entry.kind = MemberKind::PropertyGet;
    return entry;
}
[[nodiscard]] constexpr MemberInfo let(MemberInfo entry) {
    entry.kind = MemberKind::PropertyLet;
    return entry;
}

}  // namespace ftp

template <>
struct ClassTable<clsFTP> {
    static constexpr ClassHeader header{u"clsFTP", Instancing::Creatable,
                                        "A6D17925-FA46-4C3D-AAA2-D21CCF606A04",
                                        "793EF039-40CD-42F9-8444-32C884C0C3C0"};
    static constexpr auto members = std::to_array<MemberInfo>({
        property_get<&clsFTP::Connected>(u"Connected"),
        property_let<&clsFTP::Connected>(u"Connected"),
        property_get<&clsFTP::lMatching>(u"lMatching"),
        property_let<&clsFTP::lMatching>(u"lMatching"),
        ftp::get(method<ftp::reader(&clsFTP::ServerName)>(u"ServerName")),
        method<&clsFTP::Nazwa_pliku>(u"Nazwa_pliku", by_reference(u"I")),
        method<&clsFTP::Rozmiar_pliku>(u"Rozmiar_pliku", by_reference(u"I")),
        method<&clsFTP::Data_pliku>(u"Data_pliku", by_reference(u"I")),
        method<&clsFTP::CzasCreate_pliku>(u"CzasCreate_pliku", by_reference(u"I")),
        method<&clsFTP::CzasLastWrite_pliku>(u"CzasLastWrite_pliku", by_reference(u"I")),
        ftp::let(method<ftp::writer(&clsFTP::ServerName)>(u"ServerName", by_reference(u"value"))),
        ftp::get(method<ftp::reader(&clsFTP::LoginName)>(u"LoginName")),
        ftp::let(method<ftp::writer(&clsFTP::LoginName)>(u"LoginName", by_reference(u"value"))),
        ftp::get(method<ftp::reader(&clsFTP::Password)>(u"Password")),
        ftp::let(method<ftp::writer(&clsFTP::Password)>(u"Password", by_reference(u"value"))),
        ftp::get(method<ftp::reader(&clsFTP::CurDir)>(u"CurDir")),
        ftp::let(method<ftp::writer(&clsFTP::CurDir)>(u"CurDir", by_reference(u"value"))),
        method<&clsFTP::DelDir>(u"DelDir", by_reference(u"sDirectory")),
        method<&clsFTP::MakeDir>(u"MakeDir", by_reference(u"sPath")),
        method<&clsFTP::UploadFile>(u"UploadFile", by_reference(u"sSourceFile"),
                                    by_reference(u"Destination"),
                                    optional(by_reference(u"dwType_ASC_MODE"))),
        method<&clsFTP::UploadFileProgress>(u"UploadFileProgress", by_reference(u"sLocal"),
                                            by_reference(u"sRemote"),
                                            by_reference(u"dwType_ASC_MODE")),
        method<&clsFTP::RenameFile>(u"RenameFile", by_reference(u"sSourceFile"),
                                    by_reference(u"sNewName")),
        method<&clsFTP::Connect>(u"Connect"),
        method<&clsFTP::Disconnect>(u"Disconnect"),
        method<&clsFTP::FTPHwnd>(u"FTPHwnd"),
        method<&clsFTP::InternetHwnd>(u"InternetHwnd"),
        method<&clsFTP::GetMatchingFiles>(u"GetMatchingFiles",
                                          optional(by_value(u"sFilter"), StringView(u"*.*")),
                                          optional(by_value(u"bReturnDirectories"))),
        method<&clsFTP::GetFTPFileSize>(u"GetFTPFileSize", by_reference(u"sFile")),
        method<&clsFTP::DownloadFile>(u"DownloadFile", by_reference(u"sGetFileName"),
                                      by_reference(u"sSaveToPath"), by_reference(u"bOverwrite")),
        method<&clsFTP::DownloadFileProgress>(u"DownloadFileProgress", by_reference(u"sRemote"),
                                              by_reference(u"sLocal"), by_reference(u"bOverwrite"),
                                              optional(by_reference(u"dwType_ASC_MODE"))),
        method<&clsFTP::DeleteFile>(u"DeleteFile", by_reference(u"sFilename")),
        ftp::get(method<ftp::reader(&clsFTP::PassiveConnection)>(u"PassiveConnection")),
        ftp::let(method<ftp::writer(&clsFTP::PassiveConnection)>(u"PassiveConnection",
                                                                 by_reference(u"value"))),
        method<&clsFTP::LastError>(u"LastError"),
        method<&clsFTP::LastErrorNumber>(u"LastErrorNumber"),
    });
    static constexpr EventInfo event_list[] = {
        event<&clsFTP::FileTransferProgress>(
            u"FileTransferProgress", by_reference(u"lCurrentBytes"), by_reference(u"lTotalBytes")),
    };
    static constexpr EventInterface events{u"__clsFTP", event_list};
};

}  // namespace kvarta16
