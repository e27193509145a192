// The faults of a plan before the seams of the system: a call that is due is not passed on and
// answers as the platform does where it refuses; the others are passed on.
#include <functional>
#include <memory>
#include <string_view>

#include <gtest/gtest.h>
#include <support/fake_platform.h>

#include <kvarta16/platform/forwarding.h>

namespace kvarta16 {
namespace {

constexpr Long fault_number = 1234;

// Every seam of the system behind one plan. What stands behind refuses nothing that can be had
// without preparation.
struct FaultingSystem {
    testing_support::FakePlatform fake;
    std::shared_ptr<FaultPlan> plan = std::make_shared<FaultPlan>();
    std::unique_ptr<Files> files = faulting(*fake.operations.files, plan);
    std::unique_ptr<FindFiles> find = faulting(*fake.operations.find_files, plan);
    std::unique_ptr<FileTable> table = faulting(*fake.operations.file_table, plan);
    std::unique_ptr<Processes> processes = faulting(*fake.operations.processes, plan);
    std::unique_ptr<Messages> messages = faulting(*fake.operations.messages, plan);
    std::unique_ptr<SystemInformation> system = faulting(*fake.operations.system_information, plan);
    std::unique_ptr<Screen> screen = faulting(*fake.operations.screen, plan);
    std::unique_ptr<FolderDialogs> dialogs = faulting(*fake.operations.folder_dialogs, plan);
    std::unique_ptr<Internet> internet = faulting(*fake.operations.internet, plan);
    std::unique_ptr<Registry> registry = faulting(*fake.operations.registry, plan);
    std::unique_ptr<Menus> menus = faulting(*fake.operations.menus, plan);
    std::unique_ptr<Spooler> spooler = faulting(*fake.operations.spooler, plan);
};

// An operation that raises its failures.
struct Raising {
    std::string_view name;
    std::function<void(FaultingSystem&)> call;
};

const std::vector<Raising>& raising_operations() {
    using S = FaultingSystem&;
    static const std::vector<Raising> operations = {
        {"Files.GetAttr", [](S s) { static_cast<void>(s.files->GetAttr(u"a")); }},
        {"Files.Kill", [](S s) { s.files->Kill(u"a"); }},
        {"Files.Name", [](S s) { s.files->Name(u"a", u"b"); }},
        {"Files.MkDir", [](S s) { s.files->MkDir(u"a"); }},
        {"Files.ChDrive", [](S s) { s.files->ChDrive(u"a"); }},
        {"Files.ChDir", [](S s) { s.files->ChDir(u"a"); }},
        {"Files.FileCopy", [](S s) { s.files->FileCopy(u"a", u"b"); }},
        {"Files.CurDir", [](S s) { static_cast<void>(s.files->CurDir()); }},
        {"FileTable.FreeFile", [](S s) { static_cast<void>(s.table->FreeFile()); }},
        {"FileTable.Open", [](S s) { s.table->Open(u"a", 1, OpenMode::Output, Sharing::Default); }},
        {"FileTable.Close", [](S s) { s.table->Close(1); }},
        {"FileTable.LOF", [](S s) { static_cast<void>(s.table->LOF(1)); }},
        {"FileTable.PrintLine", [](S s) { s.table->PrintLine(1, u"a"); }},
        {"FileTable.InputCharacter", [](S s) { static_cast<void>(s.table->InputCharacter(1)); }},
        {"FileTable.Seek", [](S s) { s.table->Seek(1, 1); }},
        {"FileTable.Get", [](S s) { s.table->Get(1, {}); }},
        {"FileTable.Put", [](S s) { s.table->Put(1, {}); }},
        {"Shell", [](S s) { static_cast<void>(s.processes->Shell(u"a", 0)); }},
        {"AppActivate", [](S s) { s.processes->AppActivate(u"a", false); }},
        {"SendKeys", [](S s) { s.processes->SendKeys(u"a", false); }},
    };
    return operations;
}

// The number of the failure of a call, 0 if it succeeds.
template <class Call>
Long number_of(Call&& call) {
    try {
        call();
        return 0;
    } catch (const Failure& failure) {
        return failure.number();
    }
}

TEST(SystemFaults, AreRaisedByOperationsThatRaise) {
    for (const Raising& operation : raising_operations()) {
        FaultingSystem system;
        system.plan->fail_at(operation.name, 2, FaultSpan::Once, fault_number);
        const auto outcome = [&] { return number_of([&] { operation.call(system); }); };
        EXPECT_NE(outcome(), fault_number) << operation.name;
        EXPECT_EQ(outcome(), fault_number) << operation.name;
        EXPECT_NE(outcome(), fault_number) << operation.name;
        EXPECT_EQ(system.plan->failed_calls(), 1) << operation.name;
        system.plan->fail_at(operation.name, 1, FaultSpan::FromThenOn, fault_number);
        EXPECT_EQ(outcome(), fault_number) << operation.name;
        EXPECT_EQ(outcome(), fault_number) << operation.name;
    }
}

// An operation that answers by a number, and its answer where it refuses.
struct Answering {
    std::string_view name;
    Long refusal;
    std::function<Long(FaultingSystem&)> call;
};

const std::vector<Answering>& answering_operations() {
    using S = FaultingSystem&;
    static FILETIME time;
    static SYSTEMTIME parts;
    static WIN32_FIND_DATA data;
    static OSVERSIONINFO version;
    static MSG message;
    static String buffer;
    static Long number;
    static const std::vector<Answering> operations = {
        {"FindFirstFileA", INVALID_HANDLE_VALUE,
         [](S s) { return s.find->FindFirstFileA(u"*", data); }},
        {"FindNextFileA", 0, [](S s) { return s.find->FindNextFileA(1, data); }},
        {"FindClose", 0, [](S s) { return s.find->FindClose(1); }},
        {"GetFullPathNameA", 0, [](S s) { return s.find->GetFullPathNameA(u"a", 0, buffer); }},
        {"GetShortPathNameA", 0, [](S s) { return s.find->GetShortPathNameA(u"a", 0, buffer); }},
        {"FileTimeToLocalFileTime", 0,
         [](S s) { return s.find->FileTimeToLocalFileTime(time, time); }},
        {"FileTimeToSystemTime", 0, [](S s) { return s.find->FileTimeToSystemTime(time, parts); }},
        {"GetInputState", 0, [](S s) { return s.messages->GetInputState(); }},
        {"PeekMessageA", 0, [](S s) { return s.messages->PeekMessageA(message, 0, 256, 264, 1); }},
        {"GetVersionExA", 0, [](S s) { return s.system->GetVersionExA(version); }},
        {"GetWindowsDirectoryA", 0,
         [](S s) { return s.system->GetWindowsDirectoryA(buffer, 255); }},
        {"SHBrowseForFolder", 0, [](S s) { return s.dialogs->SHBrowseForFolder({}); }},
        {"SHGetPathFromIDList", 0, [](S s) { return s.dialogs->SHGetPathFromIDList(1, buffer); }},
        {"SendMessageA", 0, [](S s) { return s.dialogs->SendMessageA(1, 1124, 0, u""); }},
        {"InternetOpenA", 0, [](S s) { return s.internet->InternetOpenA(u"", 0, u"", u"", 0); }},
        {"InternetConnectA", 0,
         [](S s) { return s.internet->InternetConnectA(1, u"", 21, u"", u"", 1, 0, 0); }},
        {"InternetCloseHandle", 0, [](S s) { return s.internet->InternetCloseHandle(1); }},
        {"FtpPutFileA", 0, [](S s) { return s.internet->FtpPutFileA(1, u"a", u"b", 2, 0); }},
        {"FtpGetFileA", 0,
         [](S s) { return s.internet->FtpGetFileA(1, u"a", u"b", false, 0, 0, number); }},
        {"FtpOpenFileA", 0, [](S s) { return s.internet->FtpOpenFileA(1, u"a", 0, 2, 0); }},
        {"InternetReadFile", 0, [](S s) { return s.internet->InternetReadFile(1, {}, number); }},
        {"InternetWriteFile", 0, [](S s) { return s.internet->InternetWriteFile(1, {}, number); }},
        {"FtpFindFirstFileA", 0,
         [](S s) { return s.internet->FtpFindFirstFileA(1, u"*", data, 0, 0); }},
        {"InternetFindNextFileA", 0,
         [](S s) { return s.internet->InternetFindNextFileA(1, data); }},
        {"FtpGetCurrentDirectoryA", 0,
         [](S s) { return s.internet->FtpGetCurrentDirectoryA(1, buffer, number); }},
        {"FtpSetCurrentDirectoryA", 0,
         [](S s) { return s.internet->FtpSetCurrentDirectoryA(1, u"a"); }},
        {"FtpCreateDirectoryA", 0, [](S s) { return s.internet->FtpCreateDirectoryA(1, u"a"); }},
        {"FtpRemoveDirectoryA", 0, [](S s) { return s.internet->FtpRemoveDirectoryA(1, u"a"); }},
        {"FtpDeleteFileA", 0, [](S s) { return s.internet->FtpDeleteFileA(1, u"a"); }},
        {"FtpRenameFileA", 0, [](S s) { return s.internet->FtpRenameFileA(1, u"a", u"b"); }},
        {"InternetGetLastResponseInfoA", 0,
         [](S s) { return s.internet->InternetGetLastResponseInfoA(number, buffer, number); }},
        {"RegOpenKeyA", fault_number,
         [](S s) { return s.registry->RegOpenKeyA(HKEY_CURRENT_USER, u"a", number); }},
        {"RegCreateKeyA", fault_number,
         [](S s) { return s.registry->RegCreateKeyA(HKEY_CURRENT_USER, u"a", number); }},
        {"RegQueryValueExA", fault_number,
         [](S s) { return s.registry->RegQueryValueExA(1, u"a", number, nullptr, number); }},
        {"RegSetValueExA", fault_number,
         [](S s) { return s.registry->RegSetValueExA(1, u"a", 0, REG_SZ, u"", 0); }},
        {"RegCloseKey", fault_number, [](S s) { return s.registry->RegCloseKey(1); }},
        {"RegDeleteKeyA", fault_number,
         [](S s) { return s.registry->RegDeleteKeyA(HKEY_CURRENT_USER, u"a"); }},
        {"RegDeleteValueA", fault_number, [](S s) { return s.registry->RegDeleteValueA(1, u"a"); }},
        {"GetMenu", 0, [](S s) { return s.menus->GetMenu(1); }},
        {"GetSubMenu", 0, [](S s) { return s.menus->GetSubMenu(1, 0); }},
        {"SetMenuItemBitmaps", 0,
         [](S s) { return s.menus->SetMenuItemBitmaps(1, 0, MF_BYPOSITION, 0, 0); }},
        {"RemoveMenu", 0, [](S s) { return s.menus->RemoveMenu(1, 0, MF_BYPOSITION); }},
        {"CreatePopupMenu", 0, [](S s) { return s.menus->CreatePopupMenu(); }},
        {"CreateMenu", 0, [](S s) { return s.menus->CreateMenu(); }},
        {"AppendMenuA", 0, [](S s) { return s.menus->AppendMenuA(1, MF_STRING, 0, u"a"); }},
        {"InsertMenuA", 0, [](S s) { return s.menus->InsertMenuA(1, 0, MF_BYPOSITION, 0, u"a"); }},
        {"DestroyMenu", 0, [](S s) { return s.menus->DestroyMenu(1); }},
        {"DrawMenuBar", 0, [](S s) { return s.menus->DrawMenuBar(1); }},
        {"LoadImageA", 0, [](S s) { return s.menus->LoadImageA(0, u"a", IMAGE_BITMAP, 0, 0, 16); }},
        {"OpenPrinterA", 0, [](S s) { return s.spooler->OpenPrinterA(u"a", number, {}); }},
        {"StartDocPrinterA", 0, [](S s) { return s.spooler->StartDocPrinterA(1, 1, {}); }},
        {"StartPagePrinter", 0, [](S s) { return s.spooler->StartPagePrinter(1); }},
        {"WritePrinter", 0, [](S s) { return s.spooler->WritePrinter(1, {}, number); }},
        {"EndPagePrinter", 0, [](S s) { return s.spooler->EndPagePrinter(1); }},
        {"EndDocPrinter", 0, [](S s) { return s.spooler->EndDocPrinter(1); }},
        {"ClosePrinter", 0, [](S s) { return s.spooler->ClosePrinter(1); }},
    };
    return operations;
}

TEST(SystemFaults, AreAnsweredByOperationsThatAnswerByANumber) {
    for (const Answering& operation : answering_operations()) {
        FaultingSystem system;
        const Long passed_on = operation.call(system);
        system.plan->fail_at(operation.name, 1, FaultSpan::Once, fault_number);
        EXPECT_EQ(operation.call(system), operation.refusal) << operation.name;
        EXPECT_EQ(system.plan->failed_calls(), 1) << operation.name;
        static_cast<void>(operation.call(system));
        EXPECT_EQ(system.plan->failed_calls(), 1) << operation.name;
        if (operation.refusal == fault_number) {
            EXPECT_NE(passed_on, fault_number) << operation.name;
        }
    }
}

TEST(SystemFaults, OfTheInternetLeaveTheirNumber) {
    FaultingSystem system;
    system.plan->fail_at("FtpDeleteFileA", 1, FaultSpan::Once, internet_error::timeout);
    EXPECT_EQ(system.internet->FtpDeleteFileA(1, u"a"), 0);
    EXPECT_EQ(system.internet->GetLastError(), internet_error::timeout);
    system.fake.internet.response = u"226 Transfer complete";
    system.fake.internet.response_code = 226;
    Long error = internet_error::timeout;
    String text(21, u'\0');
    Long length = 21;
    EXPECT_EQ(system.internet->InternetGetLastResponseInfoA(error, text, length), 1);
    EXPECT_EQ(error, internet_error::timeout);
    EXPECT_EQ(text, u"226 Transfer complete");
    // The next call that is passed on has a reason of its own.
    static_cast<void>(system.internet->FtpDeleteFileA(0, u"a"));
    EXPECT_NE(system.internet->GetLastError(), internet_error::timeout);
}

TEST(SystemFaults, LeaveWhatAnswersNothing) {
    FaultingSystem system;
    system.plan->fail_at("PutMousePointer", 1, FaultSpan::Once, 5);
    system.plan->fail_at("DoEvents", 1, FaultSpan::Once, 5);
    system.plan->fail_at("Beep", 1, FaultSpan::Once, 5);
    system.screen->PutMousePointer(0);
    system.messages->DoEvents();
    system.dialogs->Beep();
    EXPECT_EQ(system.plan->failed_calls(), 3);
    system.screen->PutMousePointer(0);
    EXPECT_EQ(system.plan->failed_calls(), 3);
}

}  // namespace
}  // namespace kvarta16
