// Wrappers around the other seams of the system, from files to the spooler, as those of
// forwarding.h.
#pragma once

#include <kvarta16/frame/export.h>
#include <kvarta16/platform/file_table.h>
#include <kvarta16/platform/files.h>
#include <kvarta16/platform/find_files.h>
#include <kvarta16/platform/folder_dialog.h>
#include <kvarta16/platform/internet.h>
#include <kvarta16/platform/menus.h>
#include <kvarta16/platform/messages.h>
#include <kvarta16/platform/processes.h>
#include <kvarta16/platform/registry.h>
#include <kvarta16/platform/screen.h>
#include <kvarta16/platform/spooler.h>
#include <kvarta16/platform/system_information.h>

namespace kvarta16 {

// `target` must outlive the wrapper.
class KVARTA16_EXPORT ForwardingFiles : public Files {
  public:
    explicit ForwardingFiles(Files& target) noexcept : target_(&target) {}
    Long GetAttr(StringView path) override { return target_->GetAttr(path); }
    void Kill(StringView path) override { target_->Kill(path); }
    void Name(StringView old_path, StringView new_path) override {
        target_->Name(old_path, new_path);
    }
    void MkDir(StringView path) override { target_->MkDir(path); }
    void ChDrive(StringView path) override { target_->ChDrive(path); }
    void ChDir(StringView path) override { target_->ChDir(path); }
    void FileCopy(StringView source, StringView target) override {
        target_->FileCopy(source, target);
    }
    String CurDir() override { return target_->CurDir(); }
    std::string native_path(StringView path) override { return target_->native_path(path); }

  private:
    Files* target_;
};

// `target` must outlive the wrapper.
class KVARTA16_EXPORT ForwardingFindFiles : public FindFiles {
  public:
    explicit ForwardingFindFiles(FindFiles& target) noexcept : target_(&target) {}
    Long FindFirstFileA(StringView name, WIN32_FIND_DATA& data) override {
        return target_->FindFirstFileA(name, data);
    }
    Long FindNextFileA(Long handle, WIN32_FIND_DATA& data) override {
        return target_->FindNextFileA(handle, data);
    }
    Long FindClose(Long handle) override { return target_->FindClose(handle); }
    Long GetFullPathNameA(StringView name, Long length, String& buffer) override {
        return target_->GetFullPathNameA(name, length, buffer);
    }
    Long GetShortPathNameA(StringView name, Long length, String& buffer) override {
        return target_->GetShortPathNameA(name, length, buffer);
    }
    Long FileTimeToLocalFileTime(const FILETIME& time, FILETIME& local) override {
        return target_->FileTimeToLocalFileTime(time, local);
    }
    Long FileTimeToSystemTime(const FILETIME& time, SYSTEMTIME& parts) override {
        return target_->FileTimeToSystemTime(time, parts);
    }

  private:
    FindFiles* target_;
};

// `target` must outlive the wrapper.
class KVARTA16_EXPORT ForwardingFileTable : public FileTable {
  public:
    explicit ForwardingFileTable(FileTable& target) noexcept : target_(&target) {}
    Integer FreeFile() override { return target_->FreeFile(); }
    void Open(StringView path, Integer number, OpenMode mode, Sharing sharing) override {
        target_->Open(path, number, mode, sharing);
    }
    void Close(Integer number) override { target_->Close(number); }
    Long LOF(Integer number) override { return target_->LOF(number); }
    void PrintLine(Integer number, StringView text) override { target_->PrintLine(number, text); }
    char16_t InputCharacter(Integer number) override { return target_->InputCharacter(number); }
    void Seek(Integer number, Long position) override { target_->Seek(number, position); }
    void Get(Integer number, std::span<Byte> block) override { target_->Get(number, block); }
    void Put(Integer number, std::span<const Byte> block) override { target_->Put(number, block); }

  private:
    FileTable* target_;
};

// `target` must outlive the wrapper.
class KVARTA16_EXPORT ForwardingProcesses : public Processes {
  public:
    explicit ForwardingProcesses(Processes& target) noexcept : target_(&target) {}
    Double Shell(StringView command_line, Integer style) override {
        return target_->Shell(command_line, style);
    }
    void AppActivate(StringView title, bool wait) override { target_->AppActivate(title, wait); }
    void SendKeys(StringView keys, bool wait) override { target_->SendKeys(keys, wait); }

  private:
    Processes* target_;
};

// `target` must outlive the wrapper.
class KVARTA16_EXPORT ForwardingMessages : public Messages {
  public:
    explicit ForwardingMessages(Messages& target) noexcept : target_(&target) {}
    Long GetInputState() override { return target_->GetInputState(); }
    Long PeekMessageA(MSG& message, Long hwnd, Long first, Long last, Long remove) override {
        return target_->PeekMessageA(message, hwnd, first, last, remove);
    }
    void DoEvents() override { target_->DoEvents(); }

  private:
    Messages* target_;
};

// `target` must outlive the wrapper.
class KVARTA16_EXPORT ForwardingSystemInformation : public SystemInformation {
  public:
    explicit ForwardingSystemInformation(SystemInformation& target) noexcept : target_(&target) {}
    Long GetVersionExA(OSVERSIONINFO& version) override { return target_->GetVersionExA(version); }
    Long GetWindowsDirectoryA(String& buffer, Long length) override {
        return target_->GetWindowsDirectoryA(buffer, length);
    }

  private:
    SystemInformation* target_;
};

// `target` must outlive the wrapper.
class KVARTA16_EXPORT ForwardingScreen : public Screen {
  public:
    explicit ForwardingScreen(Screen& target) noexcept : target_(&target) {}
    void PutMousePointer(Long pointer) override { target_->PutMousePointer(pointer); }

  private:
    Screen* target_;
};

// `target` must outlive the wrapper.
class KVARTA16_EXPORT ForwardingFolderDialogs : public FolderDialogs {
  public:
    explicit ForwardingFolderDialogs(FolderDialogs& target) noexcept : target_(&target) {}
    Long SHBrowseForFolder(const BROWSEINFO& info) override {
        return target_->SHBrowseForFolder(info);
    }
    Long SHGetPathFromIDList(Long item_list, String& buffer) override {
        return target_->SHGetPathFromIDList(item_list, buffer);
    }
    Long SendMessageA(Long hwnd, Long message, Long wParam, StringView text) override {
        return target_->SendMessageA(hwnd, message, wParam, text);
    }
    void Beep() override { target_->Beep(); }

  private:
    FolderDialogs* target_;
};

// `target` must outlive the wrapper.
class KVARTA16_EXPORT ForwardingInternet : public Internet {
  public:
    explicit ForwardingInternet(Internet& target) noexcept : target_(&target) {}
    Long InternetOpenA(StringView agent, Long access_type, StringView proxy,
                       StringView proxy_bypass, Long flags) override {
        return target_->InternetOpenA(agent, access_type, proxy, proxy_bypass, flags);
    }
    Long InternetConnectA(Long session, StringView server, Integer port, StringView user,
                          StringView password, Long service, Long flags, Long context) override {
        return target_->InternetConnectA(session, server, port, user, password, service, flags,
                                         context);
    }
    Long InternetCloseHandle(Long handle) override { return target_->InternetCloseHandle(handle); }
    Long FtpPutFileA(Long connection, StringView local_file, StringView remote_file, Long flags,
                     Long context) override {
        return target_->FtpPutFileA(connection, local_file, remote_file, flags, context);
    }
    Long FtpGetFileA(Long connection, StringView remote_file, StringView local_file,
                     bool fail_if_exists, Long attributes, Long flags, Long& context) override {
        return target_->FtpGetFileA(connection, remote_file, local_file, fail_if_exists, attributes,
                                    flags, context);
    }
    Long FtpOpenFileA(Long connection, StringView remote_file, Long access, Long flags,
                      Long context) override {
        return target_->FtpOpenFileA(connection, remote_file, access, flags, context);
    }
    Long InternetReadFile(Long file, std::span<Byte> buffer, Long& read) override {
        return target_->InternetReadFile(file, buffer, read);
    }
    Long InternetWriteFile(Long file, std::span<const Byte> buffer, Long& written) override {
        return target_->InternetWriteFile(file, buffer, written);
    }
    Long FtpFindFirstFileA(Long connection, StringView pattern, WIN32_FIND_DATA& data, Long flags,
                           Long context) override {
        return target_->FtpFindFirstFileA(connection, pattern, data, flags, context);
    }
    Long InternetFindNextFileA(Long find, WIN32_FIND_DATA& data) override {
        return target_->InternetFindNextFileA(find, data);
    }
    Long FtpGetCurrentDirectoryA(Long connection, String& buffer, Long& length) override {
        return target_->FtpGetCurrentDirectoryA(connection, buffer, length);
    }
    Long FtpSetCurrentDirectoryA(Long connection, StringView directory) override {
        return target_->FtpSetCurrentDirectoryA(connection, directory);
    }
    Long FtpCreateDirectoryA(Long connection, StringView directory) override {
        return target_->FtpCreateDirectoryA(connection, directory);
    }
    Long FtpRemoveDirectoryA(Long connection, StringView directory) override {
        return target_->FtpRemoveDirectoryA(connection, directory);
    }
    Long FtpDeleteFileA(Long connection, StringView file) override {
        return target_->FtpDeleteFileA(connection, file);
    }
    Long FtpRenameFileA(Long connection, StringView existing, StringView renamed) override {
        return target_->FtpRenameFileA(connection, existing, renamed);
    }
    Long InternetGetLastResponseInfoA(Long& error, String& text, Long& length) override {
        return target_->InternetGetLastResponseInfoA(error, text, length);
    }
    Long GetLastError() override { return target_->GetLastError(); }

  private:
    Internet* target_;
};

// `target` must outlive the wrapper.
class KVARTA16_EXPORT ForwardingRegistry : public Registry {
  public:
    explicit ForwardingRegistry(Registry& target) noexcept : target_(&target) {}
    Long RegOpenKeyA(Long key, StringView path, Long& result) override {
        return target_->RegOpenKeyA(key, path, result);
    }
    Long RegCreateKeyA(Long key, StringView path, Long& result) override {
        return target_->RegCreateKeyA(key, path, result);
    }
    Long RegQueryValueExA(Long key, StringView name, Long& type, String* data,
                          Long& size) override {
        return target_->RegQueryValueExA(key, name, type, data, size);
    }
    Long RegSetValueExA(Long key, StringView name, Long reserved, Long type, StringView data,
                        Long size) override {
        return target_->RegSetValueExA(key, name, reserved, type, data, size);
    }
    Long RegCloseKey(Long key) override { return target_->RegCloseKey(key); }
    Long RegDeleteKeyA(Long key, StringView path) override {
        return target_->RegDeleteKeyA(key, path);
    }
    Long RegDeleteValueA(Long key, StringView name) override {
        return target_->RegDeleteValueA(key, name);
    }

  private:
    Registry* target_;
};

// `target` must outlive the wrapper.
class KVARTA16_EXPORT ForwardingMenus : public Menus {
  public:
    explicit ForwardingMenus(Menus& target) noexcept : target_(&target) {}
    Long GetMenu(Long window) override { return target_->GetMenu(window); }
    Long GetSubMenu(Long menu, Long position) override {
        return target_->GetSubMenu(menu, position);
    }
    Long SetMenuItemBitmaps(Long menu, Long position, Long flags, Long unchecked,
                            Long checked) override {
        return target_->SetMenuItemBitmaps(menu, position, flags, unchecked, checked);
    }
    Long RemoveMenu(Long menu, Long position, Long flags) override {
        return target_->RemoveMenu(menu, position, flags);
    }
    Long CreatePopupMenu() override { return target_->CreatePopupMenu(); }
    Long CreateMenu() override { return target_->CreateMenu(); }
    Long AppendMenuA(Long menu, Long flags, Long item, StringView text) override {
        return target_->AppendMenuA(menu, flags, item, text);
    }
    Long InsertMenuA(Long menu, Long position, Long flags, Long item, StringView text) override {
        return target_->InsertMenuA(menu, position, flags, item, text);
    }
    Long DestroyMenu(Long menu) override { return target_->DestroyMenu(menu); }
    Long DrawMenuBar(Long window) override { return target_->DrawMenuBar(window); }
    Long LoadImageA(Long instance, StringView name, Long type, Long width, Long height,
                    Long flags) override {
        return target_->LoadImageA(instance, name, type, width, height, flags);
    }

  private:
    Menus* target_;
};

// `target` must outlive the wrapper.
class KVARTA16_EXPORT ForwardingSpooler : public Spooler {
  public:
    explicit ForwardingSpooler(Spooler& target) noexcept : target_(&target) {}
    Long OpenPrinterA(StringView name, Long& handle, const PRINTER_DEFAULTS& defaults) override {
        return target_->OpenPrinterA(name, handle, defaults);
    }
    Long StartDocPrinterA(Long handle, Long level, const DOC_INFO_1& document) override {
        return target_->StartDocPrinterA(handle, level, document);
    }
    Long StartPagePrinter(Long handle) override { return target_->StartPagePrinter(handle); }
    Long WritePrinter(Long handle, std::span<const Byte> data, Long& written) override {
        return target_->WritePrinter(handle, data, written);
    }
    Long EndPagePrinter(Long handle) override { return target_->EndPagePrinter(handle); }
    Long EndDocPrinter(Long handle) override { return target_->EndDocPrinter(handle); }
    Long ClosePrinter(Long handle) override { return target_->ClosePrinter(handle); }

  private:
    Spooler* target_;
};

}  // namespace kvarta16
