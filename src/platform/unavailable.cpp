#include <kvarta16/frame/failure.h>
#include <kvarta16/platform/unavailable.h>

namespace kvarta16 {
namespace {

class UnavailableFiles final : public Files {
  public:
    Long GetAttr(StringView) override { fail(error::file_not_found); }
    void Kill(StringView) override { fail(error::file_not_found); }
    void Name(StringView, StringView) override { fail(error::file_not_found); }
    void MkDir(StringView) override { fail(error::file_not_found); }
    void ChDrive(StringView) override { fail(error::file_not_found); }
    void ChDir(StringView) override { fail(error::file_not_found); }
    void FileCopy(StringView, StringView) override { fail(error::file_not_found); }
    String CurDir() override { fail(error::file_not_found); }
    std::string native_path(StringView) override { fail(error::file_not_found); }
};

class UnavailableFindFiles final : public FindFiles {
  public:
    Long FindFirstFileA(StringView, WIN32_FIND_DATA&) override { return INVALID_HANDLE_VALUE; }
    Long FindNextFileA(Long, WIN32_FIND_DATA&) override { return 0; }
    Long FindClose(Long) override { return 0; }
    Long GetFullPathNameA(StringView, Long, String&) override { return 0; }
    Long GetShortPathNameA(StringView, Long, String&) override { return 0; }
    Long FileTimeToLocalFileTime(const FILETIME&, FILETIME&) override { return 0; }
    Long FileTimeToSystemTime(const FILETIME&, SYSTEMTIME&) override { return 0; }
};

class UnavailableFileTable final : public FileTable {
  public:
    Integer FreeFile() override { return 1; }
    void Open(StringView, Integer, OpenMode, Sharing) override { fail(error::file_not_found); }
    void Close(Integer) override {}
    Long LOF(Integer) override { fail(error::bad_file_name); }
    void PrintLine(Integer, StringView) override { fail(error::bad_file_name); }
    char16_t InputCharacter(Integer) override { fail(error::bad_file_name); }
    void Seek(Integer, Long) override { fail(error::bad_file_name); }
    void Get(Integer, std::span<Byte>) override { fail(error::bad_file_name); }
    void Put(Integer, std::span<const Byte>) override { fail(error::bad_file_name); }
};

class UnavailableProcesses final : public Processes {
  public:
    Double Shell(StringView, Integer) override { fail(error::file_not_found); }
    void AppActivate(StringView, bool) override { fail(error::invalid_call); }
    void SendKeys(StringView, bool) override { fail(error::invalid_call); }
};

class UnavailableMessages final : public Messages {
  public:
    Long GetInputState() override { return 0; }
    Long PeekMessageA(MSG&, Long, Long, Long, Long) override { return 0; }
    void DoEvents() override {}
};

class UnavailableSystemInformation final : public SystemInformation {
  public:
    Long GetVersionExA(OSVERSIONINFO&) override { return 0; }
    Long GetWindowsDirectoryA(String&, Long) override { return 0; }
};

class UnavailableScreen final : public Screen {
  public:
    void PutMousePointer(Long) override {}
};

class UnavailableFolderDialogs final : public FolderDialogs {
  public:
    Long SHBrowseForFolder(const BROWSEINFO&) override { return 0; }
    Long SHGetPathFromIDList(Long, String&) override { return 0; }
    Long SendMessageA(Long, Long, Long, StringView) override { return 0; }
    void Beep() override {}
};

class UnavailableInternet final : public Internet {
  public:
    Long InternetOpenA(StringView, Long, StringView, StringView, Long) override { return 0; }
    Long InternetConnectA(Long, StringView, Integer, StringView, StringView, Long, Long,
                          Long) override {
        return 0;
    }
    Long InternetCloseHandle(Long) override { return 0; }
    Long FtpPutFileA(Long, StringView, StringView, Long, Long) override { return 0; }
    Long FtpGetFileA(Long, StringView, StringView, bool, Long, Long, Long&) override { return 0; }
    Long FtpOpenFileA(Long, StringView, Long, Long, Long) override { return 0; }
    Long InternetReadFile(Long, std::span<Byte>, Long&) override { return 0; }
    Long InternetWriteFile(Long, std::span<const Byte>, Long&) override { return 0; }
    Long FtpFindFirstFileA(Long, StringView, WIN32_FIND_DATA&, Long, Long) override { return 0; }
    Long InternetFindNextFileA(Long, WIN32_FIND_DATA&) override { return 0; }
    Long FtpGetCurrentDirectoryA(Long, String&, Long&) override { return 0; }
    Long FtpSetCurrentDirectoryA(Long, StringView) override { return 0; }
    Long FtpCreateDirectoryA(Long, StringView) override { return 0; }
    Long FtpRemoveDirectoryA(Long, StringView) override { return 0; }
    Long FtpDeleteFileA(Long, StringView) override { return 0; }
    Long FtpRenameFileA(Long, StringView, StringView) override { return 0; }
    Long InternetGetLastResponseInfoA(Long&, String&, Long&) override { return 0; }
    Long GetLastError() override { return internet_error::cannot_connect; }
};

class UnavailableRegistry final : public Registry {
  public:
    Long RegOpenKeyA(Long, StringView, Long&) override { return registry_status::access_denied; }
    Long RegCreateKeyA(Long, StringView, Long&) override { return registry_status::access_denied; }
    Long RegQueryValueExA(Long, StringView, Long&, String*, Long&) override {
        return registry_status::access_denied;
    }
    Long RegSetValueExA(Long, StringView, Long, Long, StringView, Long) override {
        return registry_status::access_denied;
    }
    Long RegCloseKey(Long) override { return registry_status::access_denied; }
    Long RegDeleteKeyA(Long, StringView) override { return registry_status::access_denied; }
    Long RegDeleteValueA(Long, StringView) override { return registry_status::access_denied; }
};

class UnavailableMenus final : public Menus {
  public:
    Long GetMenu(Long) override { return 0; }
    Long GetSubMenu(Long, Long) override { return 0; }
    Long SetMenuItemBitmaps(Long, Long, Long, Long, Long) override { return 0; }
    Long RemoveMenu(Long, Long, Long) override { return 0; }
    Long CreatePopupMenu() override { return 0; }
    Long CreateMenu() override { return 0; }
    Long AppendMenuA(Long, Long, Long, StringView) override { return 0; }
    Long InsertMenuA(Long, Long, Long, Long, StringView) override { return 0; }
    Long DestroyMenu(Long) override { return 0; }
    Long DrawMenuBar(Long) override { return 0; }
    Long LoadImageA(Long, StringView, Long, Long, Long, Long) override { return 0; }
};

class UnavailableSpooler final : public Spooler {
  public:
    Long OpenPrinterA(StringView, Long&, const PRINTER_DEFAULTS&) override { return 0; }
    Long StartDocPrinterA(Long, Long, const DOC_INFO_1&) override { return 0; }
    Long StartPagePrinter(Long) override { return 0; }
    Long WritePrinter(Long, std::span<const Byte>, Long&) override { return 0; }
    Long EndPagePrinter(Long) override { return 0; }
    Long EndDocPrinter(Long) override { return 0; }
    Long ClosePrinter(Long) override { return 0; }
};

class UnavailableEngine final : public dao::DBEngine {
  public:
    std::shared_ptr<dao::Database> CreateDatabase(StringView, StringView) override { refuse(); }
    std::shared_ptr<dao::Database> OpenDatabase(StringView) override { refuse(); }

  private:
    [[noreturn]] static void refuse() {
        constexpr Long cannot_create_object = 429;
        throw Failure(cannot_create_object, u"This program has no engine for database files");
    }
};

}  // namespace

Files& unavailable_files() noexcept {
    static UnavailableFiles files;
    return files;
}

dao::DBEngine& unavailable_db_engine() noexcept {
    static UnavailableEngine engine;
    return engine;
}

FindFiles& unavailable_find_files() noexcept {
    static UnavailableFindFiles find_files;
    return find_files;
}

FileTable& unavailable_file_table() noexcept {
    static UnavailableFileTable file_table;
    return file_table;
}

Processes& unavailable_processes() noexcept {
    static UnavailableProcesses processes;
    return processes;
}

Messages& unavailable_messages() noexcept {
    static UnavailableMessages messages;
    return messages;
}

SystemInformation& unavailable_system_information() noexcept {
    static UnavailableSystemInformation system_information;
    return system_information;
}

Screen& unavailable_screen() noexcept {
    static UnavailableScreen screen;
    return screen;
}

FolderDialogs& unavailable_folder_dialogs() noexcept {
    static UnavailableFolderDialogs folder_dialogs;
    return folder_dialogs;
}

Internet& unavailable_internet() noexcept {
    static UnavailableInternet internet;
    return internet;
}

Registry& unavailable_registry() noexcept {
    static UnavailableRegistry registry;
    return registry;
}

Menus& unavailable_menus() noexcept {
    static UnavailableMenus menus;
    return menus;
}

Spooler& unavailable_spooler() noexcept {
    static UnavailableSpooler spooler;
    return spooler;
}

}  // namespace kvarta16
