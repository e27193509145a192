// The faults of a plan before the operations of the system, from files to the spooler.
#include <utility>

#include <kvarta16/platform/forwarding.h>

namespace kvarta16 {
namespace {

using Plan = std::shared_ptr<FaultPlan>;

class FaultingFiles final : public ForwardingFiles {
  public:
    FaultingFiles(Files& target, Plan plan) noexcept
        : ForwardingFiles(target), plan_(std::move(plan)) {}

    Long GetAttr(StringView path) override {
        plan_->count_call(Operation::FilesGetAttr);
        return ForwardingFiles::GetAttr(path);
    }
    void Kill(StringView path) override {
        plan_->count_call(Operation::FilesKill);
        ForwardingFiles::Kill(path);
    }
    void Name(StringView old_path, StringView new_path) override {
        plan_->count_call(Operation::FilesName);
        ForwardingFiles::Name(old_path, new_path);
    }
    void MkDir(StringView path) override {
        plan_->count_call(Operation::FilesMkDir);
        ForwardingFiles::MkDir(path);
    }
    void ChDrive(StringView path) override {
        plan_->count_call(Operation::FilesChDrive);
        ForwardingFiles::ChDrive(path);
    }
    void ChDir(StringView path) override {
        plan_->count_call(Operation::FilesChDir);
        ForwardingFiles::ChDir(path);
    }
    void FileCopy(StringView source, StringView target) override {
        plan_->count_call(Operation::FilesFileCopy);
        ForwardingFiles::FileCopy(source, target);
    }
    String CurDir() override {
        plan_->count_call(Operation::FilesCurDir);
        return ForwardingFiles::CurDir();
    }

  private:
    Plan plan_;
};

class FaultingFindFiles final : public ForwardingFindFiles {
  public:
    FaultingFindFiles(FindFiles& target, Plan plan) noexcept
        : ForwardingFindFiles(target), plan_(std::move(plan)) {}

    Long FindFirstFileA(StringView name, WIN32_FIND_DATA& data) override {
        return plan_->fault_due(Operation::FindFilesFindFirstFileA)
                   ? INVALID_HANDLE_VALUE
                   : ForwardingFindFiles::FindFirstFileA(name, data);
    }
    Long FindNextFileA(Long handle, WIN32_FIND_DATA& data) override {
        return plan_->fault_due(Operation::FindFilesFindNextFileA)
                   ? 0
                   : ForwardingFindFiles::FindNextFileA(handle, data);
    }
    Long FindClose(Long handle) override {
        return plan_->fault_due(Operation::FindFilesFindClose)
                   ? 0
                   : ForwardingFindFiles::FindClose(handle);
    }
    Long GetFullPathNameA(StringView name, Long length, String& buffer) override {
        return plan_->fault_due(Operation::FindFilesGetFullPathNameA)
                   ? 0
                   : ForwardingFindFiles::GetFullPathNameA(name, length, buffer);
    }
    Long GetShortPathNameA(StringView name, Long length, String& buffer) override {
        return plan_->fault_due(Operation::FindFilesGetShortPathNameA)
                   ? 0
                   : ForwardingFindFiles::GetShortPathNameA(name, length, buffer);
    }
    Long FileTimeToLocalFileTime(const FILETIME& time, FILETIME& local) override {
        return plan_->fault_due(Operation::FindFilesFileTimeToLocalFileTime)
                   ? 0
                   : ForwardingFindFiles::FileTimeToLocalFileTime(time, local);
    }
    Long FileTimeToSystemTime(const FILETIME& time, SYSTEMTIME& parts) override {
        return plan_->fault_due(Operation::FindFilesFileTimeToSystemTime)
                   ? 0
                   : ForwardingFindFiles::FileTimeToSystemTime(time, parts);
    }

  private:
    Plan plan_;
};

class FaultingFileTable final : public ForwardingFileTable {
  public:
    FaultingFileTable(FileTable& target, Plan plan) noexcept
        : ForwardingFileTable(target), plan_(std::move(plan)) {}

    Integer FreeFile() override {
        plan_->count_call(Operation::FileTableFreeFile);
        return ForwardingFileTable::FreeFile();
    }
    void Open(StringView path, Integer number, OpenMode mode, Sharing sharing) override {
        plan_->count_call(Operation::FileTableOpen);
        ForwardingFileTable::Open(path, number, mode, sharing);
    }
    void Close(Integer number) override {
        plan_->count_call(Operation::FileTableClose);
        ForwardingFileTable::Close(number);
    }
    Long LOF(Integer number) override {
        plan_->count_call(Operation::FileTableLOF);
        return ForwardingFileTable::LOF(number);
    }
    void PrintLine(Integer number, StringView text) override {
        plan_->count_call(Operation::FileTablePrintLine);
        ForwardingFileTable::PrintLine(number, text);
    }
    char16_t InputCharacter(Integer number) override {
        plan_->count_call(Operation::FileTableInputCharacter);
        return ForwardingFileTable::InputCharacter(number);
    }
    void Seek(Integer number, Long position) override {
        plan_->count_call(Operation::FileTableSeek);
        ForwardingFileTable::Seek(number, position);
    }
    void Get(Integer number, std::span<Byte> block) override {
        plan_->count_call(Operation::FileTableGet);
        ForwardingFileTable::Get(number, block);
    }
    void Put(Integer number, std::span<const Byte> block) override {
        plan_->count_call(Operation::FileTablePut);
        ForwardingFileTable::Put(number, block);
    }

  private:
    Plan plan_;
};

class FaultingProcesses final : public ForwardingProcesses {
  public:
    FaultingProcesses(Processes& target, Plan plan) noexcept
        : ForwardingProcesses(target), plan_(std::move(plan)) {}

    Double Shell(StringView command_line, Integer style) override {
        plan_->count_call(Operation::ProcessesShell);
        return ForwardingProcesses::Shell(command_line, style);
    }
    void AppActivate(StringView title, bool wait) override {
        plan_->count_call(Operation::ProcessesAppActivate);
        ForwardingProcesses::AppActivate(title, wait);
    }
    void SendKeys(StringView keys, bool wait) override {
        plan_->count_call(Operation::ProcessesSendKeys);
        ForwardingProcesses::SendKeys(keys, wait);
    }

  private:
    Plan plan_;
};

class FaultingMessages final : public ForwardingMessages {
  public:
    FaultingMessages(Messages& target, Plan plan) noexcept
        : ForwardingMessages(target), plan_(std::move(plan)) {}

    Long GetInputState() override {
        return plan_->fault_due(Operation::MessagesGetInputState)
                   ? 0
                   : ForwardingMessages::GetInputState();
    }
    Long PeekMessageA(MSG& message, Long hwnd, Long first, Long last, Long remove) override {
        return plan_->fault_due(Operation::MessagesPeekMessageA)
                   ? 0
                   : ForwardingMessages::PeekMessageA(message, hwnd, first, last, remove);
    }
    void DoEvents() override {
        if (!plan_->fault_due(Operation::MessagesDoEvents)) {
            ForwardingMessages::DoEvents();
        }
    }

  private:
    Plan plan_;
};

class FaultingSystemInformation final : public ForwardingSystemInformation {
  public:
    FaultingSystemInformation(SystemInformation& target, Plan plan) noexcept
        : ForwardingSystemInformation(target), plan_(std::move(plan)) {}

    Long GetVersionExA(OSVERSIONINFO& version) override {
        return plan_->fault_due(Operation::SystemInformationGetVersionExA)
                   ? 0
                   : ForwardingSystemInformation::GetVersionExA(version);
    }
    Long GetWindowsDirectoryA(String& buffer, Long length) override {
        return plan_->fault_due(Operation::SystemInformationGetWindowsDirectoryA)
                   ? 0
                   : ForwardingSystemInformation::GetWindowsDirectoryA(buffer, length);
    }

  private:
    Plan plan_;
};

class FaultingScreen final : public ForwardingScreen {
  public:
    FaultingScreen(Screen& target, Plan plan) noexcept
        : ForwardingScreen(target), plan_(std::move(plan)) {}

    void PutMousePointer(Long pointer) override {
        if (!plan_->fault_due(Operation::ScreenPutMousePointer)) {
            ForwardingScreen::PutMousePointer(pointer);
        }
    }

  private:
    Plan plan_;
};

class FaultingFolderDialogs final : public ForwardingFolderDialogs {
  public:
    FaultingFolderDialogs(FolderDialogs& target, Plan plan) noexcept
        : ForwardingFolderDialogs(target), plan_(std::move(plan)) {}

    Long SHBrowseForFolder(const BROWSEINFO& info) override {
        return plan_->fault_due(Operation::FolderDialogsSHBrowseForFolder)
                   ? 0
                   : ForwardingFolderDialogs::SHBrowseForFolder(info);
    }
    Long SHGetPathFromIDList(Long item_list, String& buffer) override {
        return plan_->fault_due(Operation::FolderDialogsSHGetPathFromIDList)
                   ? 0
                   : ForwardingFolderDialogs::SHGetPathFromIDList(item_list, buffer);
    }
    Long SendMessageA(Long hwnd, Long message, Long wParam, StringView text) override {
        return plan_->fault_due(Operation::FolderDialogsSendMessageA)
                   ? 0
                   : ForwardingFolderDialogs::SendMessageA(hwnd, message, wParam, text);
    }
    void Beep() override {
        if (!plan_->fault_due(Operation::FolderDialogsBeep)) {
            ForwardingFolderDialogs::Beep();
        }
    }

  private:
    Plan plan_;
};

class FaultingInternet final : public ForwardingInternet {
  public:
    FaultingInternet(Internet& target, Plan plan) noexcept
        : ForwardingInternet(target), plan_(std::move(plan)) {}

    Long InternetOpenA(StringView agent, Long access_type, StringView proxy,
                       StringView proxy_bypass, Long flags) override {
        return is_due(Operation::InternetInternetOpenA)
                   ? 0
                   : ForwardingInternet::InternetOpenA(agent, access_type, proxy, proxy_bypass,
                                                       flags);
    }
    Long InternetConnectA(Long session, StringView server, Integer port, StringView user,
                          StringView password, Long service, Long flags, Long context) override {
        return is_due(Operation::InternetInternetConnectA)
                   ? 0
                   : ForwardingInternet::InternetConnectA(session, server, port, user, password,
                                                          service, flags, context);
    }
    Long InternetCloseHandle(Long handle) override {
        return is_due(Operation::InternetInternetCloseHandle)
                   ? 0
                   : ForwardingInternet::InternetCloseHandle(handle);
    }
    Long FtpPutFileA(Long connection, StringView local_file, StringView remote_file, Long flags,
                     Long context) override {
        return is_due(Operation::InternetFtpPutFileA)
                   ? 0
                   : ForwardingInternet::FtpPutFileA(connection, local_file, remote_file, flags,
                                                     context);
    }
    Long FtpGetFileA(Long connection, StringView remote_file, StringView local_file,
                     bool fail_if_exists, Long attributes, Long flags, Long& context) override {
        return is_due(Operation::InternetFtpGetFileA)
                   ? 0
                   : ForwardingInternet::FtpGetFileA(connection, remote_file, local_file,
                                                     fail_if_exists, attributes, flags, context);
    }
    Long FtpOpenFileA(Long connection, StringView remote_file, Long access, Long flags,
                      Long context) override {
        return is_due(Operation::InternetFtpOpenFileA)
                   ? 0
                   : ForwardingInternet::FtpOpenFileA(connection, remote_file, access, flags,
                                                      context);
    }
    Long InternetReadFile(Long file, std::span<Byte> buffer, Long& read) override {
        return is_due(Operation::InternetInternetReadFile)
                   ? 0
                   : ForwardingInternet::InternetReadFile(file, buffer, read);
    }
    Long InternetWriteFile(Long file, std::span<const Byte> buffer, Long& written) override {
        return is_due(Operation::InternetInternetWriteFile)
                   ? 0
                   : ForwardingInternet::InternetWriteFile(file, buffer, written);
    }
    Long FtpFindFirstFileA(Long connection, StringView pattern, WIN32_FIND_DATA& data, Long flags,
                           Long context) override {
        return is_due(Operation::InternetFtpFindFirstFileA)
                   ? 0
                   : ForwardingInternet::FtpFindFirstFileA(connection, pattern, data, flags,
                                                           context);
    }
    Long InternetFindNextFileA(Long find, WIN32_FIND_DATA& data) override {
        return is_due(Operation::InternetInternetFindNextFileA)
                   ? 0
                   : ForwardingInternet::InternetFindNextFileA(find, data);
    }
    Long FtpGetCurrentDirectoryA(Long connection, String& buffer, Long& length) override {
        return is_due(Operation::InternetFtpGetCurrentDirectoryA)
                   ? 0
                   : ForwardingInternet::FtpGetCurrentDirectoryA(connection, buffer, length);
    }
    Long FtpSetCurrentDirectoryA(Long connection, StringView directory) override {
        return is_due(Operation::InternetFtpSetCurrentDirectoryA)
                   ? 0
                   : ForwardingInternet::FtpSetCurrentDirectoryA(connection, directory);
    }
    Long FtpCreateDirectoryA(Long connection, StringView directory) override {
        return is_due(Operation::InternetFtpCreateDirectoryA)
                   ? 0
                   : ForwardingInternet::FtpCreateDirectoryA(connection, directory);
    }
    Long FtpRemoveDirectoryA(Long connection, StringView directory) override {
        return is_due(Operation::InternetFtpRemoveDirectoryA)
                   ? 0
                   : ForwardingInternet::FtpRemoveDirectoryA(connection, directory);
    }
    Long FtpDeleteFileA(Long connection, StringView file) override {
        return is_due(Operation::InternetFtpDeleteFileA)
                   ? 0
                   : ForwardingInternet::FtpDeleteFileA(connection, file);
    }
    Long FtpRenameFileA(Long connection, StringView existing, StringView renamed) override {
        return is_due(Operation::InternetFtpRenameFileA)
                   ? 0
                   : ForwardingInternet::FtpRenameFileA(connection, existing, renamed);
    }
    Long InternetGetLastResponseInfoA(Long& error, String& text, Long& length) override {
        if (is_due(Operation::InternetInternetGetLastResponseInfoA)) {
            return 0;
        }
        // A call that was not passed on has had no answer: that of an earlier call that succeeded
        // is no reason for its failure.
        constexpr Long first_reply = 100;
        constexpr Long first_refusal = 400;
        Long code = error;
        const Long told = ForwardingInternet::InternetGetLastResponseInfoA(code, text, length);
        const bool is_success = code >= first_reply && code < first_refusal;
        error = last_fault_ && is_success ? error : code;
        return told;
    }
    Long GetLastError() override {
        return last_fault_ ? *last_fault_ : ForwardingInternet::GetLastError();
    }

  private:
    // Whether a call fails by the plan. A call that is passed on puts its own reason.
    bool is_due(Operation operation) {
        const std::optional<Long> due = plan_->fault_due(operation);
        if (operation != Operation::InternetInternetGetLastResponseInfoA) {
            last_fault_ = due;
        }
        return due.has_value();
    }

    std::optional<Long> last_fault_;
    Plan plan_;
};

class FaultingRegistry final : public ForwardingRegistry {
  public:
    FaultingRegistry(Registry& target, Plan plan) noexcept
        : ForwardingRegistry(target), plan_(std::move(plan)) {}

    Long RegOpenKeyA(Long key, StringView path, Long& result) override {
        const std::optional<Long> status = plan_->fault_due(Operation::RegistryRegOpenKeyA);
        return status ? *status : ForwardingRegistry::RegOpenKeyA(key, path, result);
    }
    Long RegCreateKeyA(Long key, StringView path, Long& result) override {
        const std::optional<Long> status = plan_->fault_due(Operation::RegistryRegCreateKeyA);
        return status ? *status : ForwardingRegistry::RegCreateKeyA(key, path, result);
    }
    Long RegQueryValueExA(Long key, StringView name, Long& type, String* data,
                          Long& size) override {
        const std::optional<Long> status = plan_->fault_due(Operation::RegistryRegQueryValueExA);
        return status ? *status : ForwardingRegistry::RegQueryValueExA(key, name, type, data, size);
    }
    Long RegSetValueExA(Long key, StringView name, Long reserved, Long type, StringView data,
                        Long size) override {
        const std::optional<Long> status = plan_->fault_due(Operation::RegistryRegSetValueExA);
        return status ? *status
                      : ForwardingRegistry::RegSetValueExA(key, name, reserved, type, data, size);
    }
    Long RegCloseKey(Long key) override {
        const std::optional<Long> status = plan_->fault_due(Operation::RegistryRegCloseKey);
        return status ? *status : ForwardingRegistry::RegCloseKey(key);
    }
    Long RegDeleteKeyA(Long key, StringView path) override {
        const std::optional<Long> status = plan_->fault_due(Operation::RegistryRegDeleteKeyA);
        return status ? *status : ForwardingRegistry::RegDeleteKeyA(key, path);
    }
    Long RegDeleteValueA(Long key, StringView name) override {
        const std::optional<Long> status = plan_->fault_due(Operation::RegistryRegDeleteValueA);
        return status ? *status : ForwardingRegistry::RegDeleteValueA(key, name);
    }

  private:
    Plan plan_;
};

class FaultingMenus final : public ForwardingMenus {
  public:
    FaultingMenus(Menus& target, Plan plan) noexcept
        : ForwardingMenus(target), plan_(std::move(plan)) {}

    Long GetMenu(Long window) override {
        return plan_->fault_due(Operation::MenusGetMenu) ? 0 : ForwardingMenus::GetMenu(window);
    }
    Long GetSubMenu(Long menu, Long position) override {
        return plan_->fault_due(Operation::MenusGetSubMenu)
                   ? 0
                   : ForwardingMenus::GetSubMenu(menu, position);
    }
    Long SetMenuItemBitmaps(Long menu, Long position, Long flags, Long unchecked,
                            Long checked) override {
        return plan_->fault_due(Operation::MenusSetMenuItemBitmaps)
                   ? 0
                   : ForwardingMenus::SetMenuItemBitmaps(menu, position, flags, unchecked, checked);
    }
    Long RemoveMenu(Long menu, Long position, Long flags) override {
        return plan_->fault_due(Operation::MenusRemoveMenu)
                   ? 0
                   : ForwardingMenus::RemoveMenu(menu, position, flags);
    }
    Long CreatePopupMenu() override {
        return plan_->fault_due(Operation::MenusCreatePopupMenu)
                   ? 0
                   : ForwardingMenus::CreatePopupMenu();
    }
    Long CreateMenu() override {
        return plan_->fault_due(Operation::MenusCreateMenu) ? 0 : ForwardingMenus::CreateMenu();
    }
    Long AppendMenuA(Long menu, Long flags, Long item, StringView text) override {
        return plan_->fault_due(Operation::MenusAppendMenuA)
                   ? 0
                   : ForwardingMenus::AppendMenuA(menu, flags, item, text);
    }
    Long InsertMenuA(Long menu, Long position, Long flags, Long item, StringView text) override {
        return plan_->fault_due(Operation::MenusInsertMenuA)
                   ? 0
                   : ForwardingMenus::InsertMenuA(menu, position, flags, item, text);
    }
    Long DestroyMenu(Long menu) override {
        return plan_->fault_due(Operation::MenusDestroyMenu) ? 0
                                                             : ForwardingMenus::DestroyMenu(menu);
    }
    Long DrawMenuBar(Long window) override {
        return plan_->fault_due(Operation::MenusDrawMenuBar) ? 0
                                                             : ForwardingMenus::DrawMenuBar(window);
    }
    Long LoadImageA(Long instance, StringView name, Long type, Long width, Long height,
                    Long flags) override {
        return plan_->fault_due(Operation::MenusLoadImageA)
                   ? 0
                   : ForwardingMenus::LoadImageA(instance, name, type, width, height, flags);
    }

  private:
    Plan plan_;
};

class FaultingSpooler final : public ForwardingSpooler {
  public:
    FaultingSpooler(Spooler& target, Plan plan) noexcept
        : ForwardingSpooler(target), plan_(std::move(plan)) {}

    Long OpenPrinterA(StringView name, Long& handle, const PRINTER_DEFAULTS& defaults) override {
        return plan_->fault_due(Operation::SpoolerOpenPrinterA)
                   ? 0
                   : ForwardingSpooler::OpenPrinterA(name, handle, defaults);
    }
    Long StartDocPrinterA(Long handle, Long level, const DOC_INFO_1& document) override {
        return plan_->fault_due(Operation::SpoolerStartDocPrinterA)
                   ? 0
                   : ForwardingSpooler::StartDocPrinterA(handle, level, document);
    }
    Long StartPagePrinter(Long handle) override {
        return plan_->fault_due(Operation::SpoolerStartPagePrinter)
                   ? 0
                   : ForwardingSpooler::StartPagePrinter(handle);
    }
    Long WritePrinter(Long handle, std::span<const Byte> data, Long& written) override {
        return plan_->fault_due(Operation::SpoolerWritePrinter)
                   ? 0
                   : ForwardingSpooler::WritePrinter(handle, data, written);
    }
    Long EndPagePrinter(Long handle) override {
        return plan_->fault_due(Operation::SpoolerEndPagePrinter)
                   ? 0
                   : ForwardingSpooler::EndPagePrinter(handle);
    }
    Long EndDocPrinter(Long handle) override {
        return plan_->fault_due(Operation::SpoolerEndDocPrinter)
                   ? 0
                   : ForwardingSpooler::EndDocPrinter(handle);
    }
    Long ClosePrinter(Long handle) override {
        return plan_->fault_due(Operation::SpoolerClosePrinter)
                   ? 0
                   : ForwardingSpooler::ClosePrinter(handle);
    }

  private:
    Plan plan_;
};

}  // namespace

std::unique_ptr<Files> faulting(Files& target, std::shared_ptr<FaultPlan> plan) {
    return std::make_unique<FaultingFiles>(target, std::move(plan));
}

std::unique_ptr<FindFiles> faulting(FindFiles& target, std::shared_ptr<FaultPlan> plan) {
    return std::make_unique<FaultingFindFiles>(target, std::move(plan));
}

std::unique_ptr<FileTable> faulting(FileTable& target, std::shared_ptr<FaultPlan> plan) {
    return std::make_unique<FaultingFileTable>(target, std::move(plan));
}

std::unique_ptr<Processes> faulting(Processes& target, std::shared_ptr<FaultPlan> plan) {
    return std::make_unique<FaultingProcesses>(target, std::move(plan));
}

std::unique_ptr<Messages> faulting(Messages& target, std::shared_ptr<FaultPlan> plan) {
    return std::make_unique<FaultingMessages>(target, std::move(plan));
}

std::unique_ptr<SystemInformation> faulting(SystemInformation& target,
                                            std::shared_ptr<FaultPlan> plan) {
    return std::make_unique<FaultingSystemInformation>(target, std::move(plan));
}

std::unique_ptr<Screen> faulting(Screen& target, std::shared_ptr<FaultPlan> plan) {
    return std::make_unique<FaultingScreen>(target, std::move(plan));
}

std::unique_ptr<FolderDialogs> faulting(FolderDialogs& target, std::shared_ptr<FaultPlan> plan) {
    return std::make_unique<FaultingFolderDialogs>(target, std::move(plan));
}

std::unique_ptr<Internet> faulting(Internet& target, std::shared_ptr<FaultPlan> plan) {
    return std::make_unique<FaultingInternet>(target, std::move(plan));
}

std::unique_ptr<Registry> faulting(Registry& target, std::shared_ptr<FaultPlan> plan) {
    return std::make_unique<FaultingRegistry>(target, std::move(plan));
}

std::unique_ptr<Menus> faulting(Menus& target, std::shared_ptr<FaultPlan> plan) {
    return std::make_unique<FaultingMenus>(target, std::move(plan));
}

std::unique_ptr<Spooler> faulting(Spooler& target, std::shared_ptr<FaultPlan> plan) {
    return std::make_unique<FaultingSpooler>(target, std::move(plan));
}

}  // namespace kvarta16
