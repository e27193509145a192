#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>

#include <kvarta16/platform/forwarding.h>

namespace kvarta16 {
namespace ado {

ForwardingRecordset::ForwardingRecordset(std::shared_ptr<Recordset> target) noexcept
    : target_(std::move(target)) {}

void ForwardingRecordset::Open(StringView source,
                               const std::shared_ptr<Connection>& active_connection,
                               CursorType cursor_type, LockType lock_type, Long options) {
    const auto* wrapper = dynamic_cast<const ForwardingConnection*>(active_connection.get());
    target_->Open(source, wrapper != nullptr ? wrapper->target() : active_connection, cursor_type,
                  lock_type, options);
}

Field& ForwardingRecordset::Fields(const Variant& item) {
    Field& field = target_->Fields(item);
    std::unique_ptr<Field>& wrapper = fields_[&field];
    if (wrapper == nullptr) {
        wrapper = wrap(field);
    }
    return *wrapper;
}

std::unique_ptr<Field> ForwardingRecordset::wrap(Field& field) {
    return std::make_unique<ForwardingField>(field);
}

ForwardingConnection::ForwardingConnection(std::shared_ptr<Connection> target) noexcept
    : target_(std::move(target)) {}

std::shared_ptr<Recordset> ForwardingConnection::CreateRecordset() {
    return std::make_shared<ForwardingRecordset>(target_->CreateRecordset());
}

}  // namespace ado

namespace {

struct OperationName {
    Operation operation;
    std::string_view object;
    std::string_view name;
};

constexpr auto operation_names = std::to_array<OperationName>({
    {Operation::ConnectionCreateRecordset, "Connection", "CreateRecordset"},
    {Operation::ConnectionBeginTrans, "Connection", "BeginTrans"},
    {Operation::ConnectionCommitTrans, "Connection", "CommitTrans"},
    {Operation::ConnectionRollbackTrans, "Connection", "RollbackTrans"},
    {Operation::ConnectionClose, "Connection", "Close"},
    {Operation::RecordsetOpen, "Recordset", "Open"},
    {Operation::RecordsetEof, "Recordset", "EOF"},
    {Operation::RecordsetAddNew, "Recordset", "AddNew"},
    {Operation::RecordsetFields, "Recordset", "Fields"},
    {Operation::RecordsetUpdateBatch, "Recordset", "UpdateBatch"},
    {Operation::RecordsetMoveNext, "Recordset", "MoveNext"},
    {Operation::RecordsetClose, "Recordset", "Close"},
    {Operation::FieldName, "Field", "Name"},
    {Operation::FieldValue, "Field", "Value"},
    {Operation::MessageBoxesMsgBox, "MessageBoxes", "MsgBox"},
    {Operation::ClockNow, "Clock", "Now"},
    {Operation::SleeperSleep, "Sleeper", "Sleep"},
    {Operation::FilesGetAttr, "Files", "GetAttr"},
    {Operation::FilesKill, "Files", "Kill"},
    {Operation::FilesName, "Files", "Name"},
    {Operation::FilesMkDir, "Files", "MkDir"},
    {Operation::FilesChDrive, "Files", "ChDrive"},
    {Operation::FilesChDir, "Files", "ChDir"},
    {Operation::FilesFileCopy, "Files", "FileCopy"},
    {Operation::FilesCurDir, "Files", "CurDir"},
    {Operation::FindFilesFindFirstFileA, "FindFiles", "FindFirstFileA"},
    {Operation::FindFilesFindNextFileA, "FindFiles", "FindNextFileA"},
    {Operation::FindFilesFindClose, "FindFiles", "FindClose"},
    {Operation::FindFilesGetFullPathNameA, "FindFiles", "GetFullPathNameA"},
    {Operation::FindFilesGetShortPathNameA, "FindFiles", "GetShortPathNameA"},
    {Operation::FindFilesFileTimeToLocalFileTime, "FindFiles", "FileTimeToLocalFileTime"},
    {Operation::FindFilesFileTimeToSystemTime, "FindFiles", "FileTimeToSystemTime"},
    {Operation::FileTableFreeFile, "FileTable", "FreeFile"},
    {Operation::FileTableOpen, "FileTable", "Open"},
    {Operation::FileTableClose, "FileTable", "Close"},
    {Operation::FileTableLOF, "FileTable", "LOF"},
    {Operation::FileTablePrintLine, "FileTable", "PrintLine"},
    {Operation::FileTableInputCharacter, "FileTable", "InputCharacter"},
    {Operation::FileTableSeek, "FileTable", "Seek"},
    {Operation::FileTableGet, "FileTable", "Get"},
    {Operation::FileTablePut, "FileTable", "Put"},
    {Operation::ProcessesShell, "Processes", "Shell"},
    {Operation::ProcessesAppActivate, "Processes", "AppActivate"},
    {Operation::ProcessesSendKeys, "Processes", "SendKeys"},
    {Operation::MessagesGetInputState, "Messages", "GetInputState"},
    {Operation::MessagesPeekMessageA, "Messages", "PeekMessageA"},
    {Operation::MessagesDoEvents, "Messages", "DoEvents"},
    {Operation::SystemInformationGetVersionExA, "SystemInformation", "GetVersionExA"},
    {Operation::SystemInformationGetWindowsDirectoryA, "SystemInformation", "GetWindowsDirectoryA"},
    {Operation::ScreenPutMousePointer, "Screen", "PutMousePointer"},
    {Operation::FolderDialogsSHBrowseForFolder, "FolderDialogs", "SHBrowseForFolder"},
    {Operation::FolderDialogsSHGetPathFromIDList, "FolderDialogs", "SHGetPathFromIDList"},
    {Operation::FolderDialogsSendMessageA, "FolderDialogs", "SendMessageA"},
    {Operation::FolderDialogsBeep, "FolderDialogs", "Beep"},
    {Operation::InternetInternetOpenA, "Internet", "InternetOpenA"},
    {Operation::InternetInternetConnectA, "Internet", "InternetConnectA"},
    {Operation::InternetInternetCloseHandle, "Internet", "InternetCloseHandle"},
    {Operation::InternetFtpPutFileA, "Internet", "FtpPutFileA"},
    {Operation::InternetFtpGetFileA, "Internet", "FtpGetFileA"},
    {Operation::InternetFtpOpenFileA, "Internet", "FtpOpenFileA"},
    {Operation::InternetInternetReadFile, "Internet", "InternetReadFile"},
    {Operation::InternetInternetWriteFile, "Internet", "InternetWriteFile"},
    {Operation::InternetFtpFindFirstFileA, "Internet", "FtpFindFirstFileA"},
    {Operation::InternetInternetFindNextFileA, "Internet", "InternetFindNextFileA"},
    {Operation::InternetFtpGetCurrentDirectoryA, "Internet", "FtpGetCurrentDirectoryA"},
    {Operation::InternetFtpSetCurrentDirectoryA, "Internet", "FtpSetCurrentDirectoryA"},
    {Operation::InternetFtpCreateDirectoryA, "Internet", "FtpCreateDirectoryA"},
    {Operation::InternetFtpRemoveDirectoryA, "Internet", "FtpRemoveDirectoryA"},
    {Operation::InternetFtpDeleteFileA, "Internet", "FtpDeleteFileA"},
    {Operation::InternetFtpRenameFileA, "Internet", "FtpRenameFileA"},
    {Operation::InternetInternetGetLastResponseInfoA, "Internet", "InternetGetLastResponseInfoA"},
    {Operation::RegistryRegOpenKeyA, "Registry", "RegOpenKeyA"},
    {Operation::RegistryRegCreateKeyA, "Registry", "RegCreateKeyA"},
    {Operation::RegistryRegQueryValueExA, "Registry", "RegQueryValueExA"},
    {Operation::RegistryRegSetValueExA, "Registry", "RegSetValueExA"},
    {Operation::RegistryRegCloseKey, "Registry", "RegCloseKey"},
    {Operation::RegistryRegDeleteKeyA, "Registry", "RegDeleteKeyA"},
    {Operation::RegistryRegDeleteValueA, "Registry", "RegDeleteValueA"},
    {Operation::MenusGetMenu, "Menus", "GetMenu"},
    {Operation::MenusGetSubMenu, "Menus", "GetSubMenu"},
    {Operation::MenusSetMenuItemBitmaps, "Menus", "SetMenuItemBitmaps"},
    {Operation::MenusRemoveMenu, "Menus", "RemoveMenu"},
    {Operation::MenusCreatePopupMenu, "Menus", "CreatePopupMenu"},
    {Operation::MenusCreateMenu, "Menus", "CreateMenu"},
    {Operation::MenusAppendMenuA, "Menus", "AppendMenuA"},
    {Operation::MenusInsertMenuA, "Menus", "InsertMenuA"},
    {Operation::MenusDestroyMenu, "Menus", "DestroyMenu"},
    {Operation::MenusDrawMenuBar, "Menus", "DrawMenuBar"},
    {Operation::MenusLoadImageA, "Menus", "LoadImageA"},
    {Operation::SpoolerOpenPrinterA, "Spooler", "OpenPrinterA"},
    {Operation::SpoolerStartDocPrinterA, "Spooler", "StartDocPrinterA"},
    {Operation::SpoolerStartPagePrinter, "Spooler", "StartPagePrinter"},
    {Operation::SpoolerWritePrinter, "Spooler", "WritePrinter"},
    {Operation::SpoolerEndPagePrinter, "Spooler", "EndPagePrinter"},
    {Operation::SpoolerEndDocPrinter, "Spooler", "EndDocPrinter"},
    {Operation::SpoolerClosePrinter, "Spooler", "ClosePrinter"},
    {Operation::EngineCreateDatabase, "DBEngine", "CreateDatabase"},
    {Operation::EngineOpenDatabase, "DBEngine", "OpenDatabase"},
    {Operation::DatabaseTableDefs, "Database", "TableDefs"},
    {Operation::DatabaseExecute, "Database", "Execute"},
    {Operation::DatabaseClose, "Database", "Close"},
    {Operation::TableDefName, "TableDef", "Name"},
    {Operation::TableDefFields, "TableDef", "Fields"},
    {Operation::FieldsCount, "Fields", "Count"},
    {Operation::FieldsItem, "Fields", "Item"},
    {Operation::DaoFieldName, "Field", "Name"},
    {Operation::DaoFieldType, "Field", "Type"},
    {Operation::DaoFieldSize, "Field", "Size"},
    {Operation::DaoFieldDefaultValue, "Field", "DefaultValue"},
    {Operation::DaoFieldAllowZeroLength, "Field", "AllowZeroLength"},
});

std::vector<Operation> operations_named(std::string_view wanted) {
    const std::size_t dot = wanted.find('.');
    const bool has_object = dot != std::string_view::npos;
    const std::string_view object = wanted.substr(0, has_object ? dot : 0);
    const std::string_view name = wanted.substr(has_object ? dot + 1 : 0);
    std::vector<Operation> operations;
    for (const OperationName& entry : operation_names) {
        if (entry.name == name && (!has_object || entry.object == object)) {
            operations.push_back(entry.operation);
        }
    }
    return operations;
}

using Plan = std::shared_ptr<FaultPlan>;

class FaultingField final : public ado::ForwardingField {
  public:
    FaultingField(ado::Field& target, Plan plan) noexcept
        : ForwardingField(target), plan_(std::move(plan)) {}

    String Name() override {
        plan_->count_call(Operation::FieldName);
        return ForwardingField::Name();
    }
    Variant Value() override {
        plan_->count_call(Operation::FieldValue);
        return ForwardingField::Value();
    }
    void PutValue(const Variant& value) override {
        plan_->count_call(Operation::FieldValue);
        ForwardingField::PutValue(value);
    }

  private:
    Plan plan_;
};

class FaultingRecordset final : public ado::ForwardingRecordset {
  public:
    FaultingRecordset(std::shared_ptr<ado::Recordset> target, Plan plan) noexcept
        : ForwardingRecordset(std::move(target)), plan_(std::move(plan)) {}

    void Open(StringView source, const std::shared_ptr<ado::Connection>& active_connection,
              ado::CursorType cursor_type, ado::LockType lock_type, Long options) override {
        plan_->count_call(Operation::RecordsetOpen);
        ForwardingRecordset::Open(source, active_connection, cursor_type, lock_type, options);
    }
    bool IsEOF() override {
        plan_->count_call(Operation::RecordsetEof);
        return ForwardingRecordset::IsEOF();
    }
    void AddNew() override {
        plan_->count_call(Operation::RecordsetAddNew);
        ForwardingRecordset::AddNew();
    }
    ado::Field& Fields(const Variant& item) override {
        // Both at once: the collection, and the field that is picked from it.
        plan_->count_call(Operation::RecordsetFields);
        plan_->count_call(Operation::FieldsItem);
        return ForwardingRecordset::Fields(item);
    }
    void UpdateBatch(ado::Affect affect_records) override {
        plan_->count_call(Operation::RecordsetUpdateBatch);
        ForwardingRecordset::UpdateBatch(affect_records);
    }
    void MoveNext() override {
        plan_->count_call(Operation::RecordsetMoveNext);
        ForwardingRecordset::MoveNext();
    }
    void Close() override {
        plan_->count_call(Operation::RecordsetClose);
        ForwardingRecordset::Close();
    }

  protected:
    std::unique_ptr<ado::Field> wrap(ado::Field& field) override {
        return std::make_unique<FaultingField>(field, plan_);
    }

  private:
    Plan plan_;
};

class FaultingConnection : public ado::ForwardingConnection {
  public:
    FaultingConnection(std::shared_ptr<ado::Connection> target, Plan plan) noexcept
        : ForwardingConnection(std::move(target)), plan_(std::move(plan)) {}

    std::shared_ptr<ado::Recordset> CreateRecordset() override {
        plan_->count_call(Operation::ConnectionCreateRecordset);
        return std::make_shared<FaultingRecordset>(target()->CreateRecordset(), plan_);
    }
    void BeginTrans() override {
        plan_->count_call(Operation::ConnectionBeginTrans);
        ForwardingConnection::BeginTrans();
    }
    void CommitTrans() override {
        plan_->count_call(Operation::ConnectionCommitTrans);
        ForwardingConnection::CommitTrans();
    }
    void RollbackTrans() override {
        plan_->count_call(Operation::ConnectionRollbackTrans);
        ForwardingConnection::RollbackTrans();
    }
    void Close() override {
        plan_->count_call(Operation::ConnectionClose);
        ForwardingConnection::Close();
    }

  private:
    Plan plan_;
};

class FaultingDaoField final : public dao::ForwardingField {
  public:
    FaultingDaoField(std::shared_ptr<dao::Field> target, Plan plan) noexcept
        : ForwardingField(std::move(target)), plan_(std::move(plan)) {}

    String Name() override {
        plan_->count_call(Operation::DaoFieldName);
        return ForwardingField::Name();
    }
    Integer Type() override {
        plan_->count_call(Operation::DaoFieldType);
        return ForwardingField::Type();
    }
    Long Size() override {
        plan_->count_call(Operation::DaoFieldSize);
        return ForwardingField::Size();
    }
    Variant DefaultValue() override {
        plan_->count_call(Operation::DaoFieldDefaultValue);
        return ForwardingField::DefaultValue();
    }
    void PutDefaultValue(const Variant& value) override {
        plan_->count_call(Operation::DaoFieldDefaultValue);
        ForwardingField::PutDefaultValue(value);
    }
    bool AllowZeroLength() override {
        plan_->count_call(Operation::DaoFieldAllowZeroLength);
        return ForwardingField::AllowZeroLength();
    }
    void PutAllowZeroLength(bool allow) override {
        plan_->count_call(Operation::DaoFieldAllowZeroLength);
        ForwardingField::PutAllowZeroLength(allow);
    }

  private:
    Plan plan_;
};

class FaultingFields final : public dao::ForwardingFields {
  public:
    FaultingFields(std::shared_ptr<dao::Fields> target, Plan plan) noexcept
        : ForwardingFields(std::move(target)), plan_(std::move(plan)) {}

    Integer Count() override {
        plan_->count_call(Operation::FieldsCount);
        return ForwardingFields::Count();
    }
    std::shared_ptr<dao::Field> Item(Long index) override {
        plan_->count_call(Operation::FieldsItem);
        return std::make_shared<FaultingDaoField>(ForwardingFields::Item(index), plan_);
    }

  private:
    Plan plan_;
};

class FaultingTableDef final : public dao::ForwardingTableDef {
  public:
    FaultingTableDef(std::shared_ptr<dao::TableDef> target, Plan plan) noexcept
        : ForwardingTableDef(std::move(target)), plan_(std::move(plan)) {}

    String Name() override {
        plan_->count_call(Operation::TableDefName);
        return ForwardingTableDef::Name();
    }
    void PutName(StringView name) override {
        plan_->count_call(Operation::TableDefName);
        ForwardingTableDef::PutName(name);
    }
    std::shared_ptr<dao::Fields> Fields() override {
        plan_->count_call(Operation::TableDefFields);
        return std::make_shared<FaultingFields>(ForwardingTableDef::Fields(), plan_);
    }

  private:
    Plan plan_;
};

class FaultingDatabase : public dao::ForwardingDatabase {
  public:
    FaultingDatabase(std::shared_ptr<dao::Database> target, Plan plan) noexcept
        : ForwardingDatabase(std::move(target)), plan_(std::move(plan)) {}

    std::vector<std::shared_ptr<dao::TableDef>> TableDefs() override {
        plan_->count_call(Operation::DatabaseTableDefs);
        std::vector<std::shared_ptr<dao::TableDef>> tables = ForwardingDatabase::TableDefs();
        for (std::shared_ptr<dao::TableDef>& table : tables) {
            table = std::make_shared<FaultingTableDef>(std::move(table), plan_);
        }
        return tables;
    }
    void Execute(StringView query) override {
        plan_->count_call(Operation::DatabaseExecute);
        ForwardingDatabase::Execute(query);
    }
    void Close() override {
        plan_->count_call(Operation::DatabaseClose);
        ForwardingDatabase::Close();
    }

  private:
    Plan plan_;
};

// One object of both seams in front of one object of both seams.
class FaultingConnectionAndDatabase final : public FaultingConnection, public FaultingDatabase {
  public:
    FaultingConnectionAndDatabase(std::shared_ptr<ado::Connection> connection,
                                  std::shared_ptr<dao::Database> database,
                                  const Plan& plan) noexcept
        : FaultingConnection(std::move(connection), plan),
          FaultingDatabase(std::move(database), plan) {}
};

class FaultingEngine final : public dao::ForwardingEngine {
  public:
    FaultingEngine(dao::DBEngine& target, Plan plan) noexcept
        : ForwardingEngine(target), plan_(std::move(plan)) {}

    std::shared_ptr<dao::Database> CreateDatabase(StringView name, StringView locale) override {
        plan_->count_call(Operation::EngineCreateDatabase);
        return faulting(ForwardingEngine::CreateDatabase(name, locale), plan_);
    }
    std::shared_ptr<dao::Database> OpenDatabase(StringView name) override {
        plan_->count_call(Operation::EngineOpenDatabase);
        return faulting(ForwardingEngine::OpenDatabase(name), plan_);
    }

  private:
    Plan plan_;
};

class FaultingBoxes final : public ForwardingBoxes {
  public:
    FaultingBoxes(MessageBoxes& target, Plan plan) noexcept
        : ForwardingBoxes(target), plan_(std::move(plan)) {}

    MsgBoxResult MsgBox(StringView text, Long style, std::optional<StringView> title) override {
        plan_->count_call(Operation::MessageBoxesMsgBox);
        return ForwardingBoxes::MsgBox(text, style, title);
    }

  private:
    Plan plan_;
};

class FaultingClock final : public ForwardingClock {
  public:
    FaultingClock(Clock& target, Plan plan) noexcept
        : ForwardingClock(target), plan_(std::move(plan)) {}

    Date Now() override {
        plan_->count_call(Operation::ClockNow);
        return ForwardingClock::Now();
    }

  private:
    Plan plan_;
};

class FaultingSleeper final : public ForwardingSleeper {
  public:
    FaultingSleeper(Sleeper& target, Plan plan) noexcept
        : ForwardingSleeper(target), plan_(std::move(plan)) {}

    void Sleep(Long milliseconds) override {
        plan_->count_call(Operation::SleeperSleep);
        ForwardingSleeper::Sleep(milliseconds);
    }

  private:
    Plan plan_;
};

}  // namespace

void FaultPlan::fail_at(std::string_view operation, Long n, FaultSpan span, Long number) {
    std::vector<Operation> operations = operations_named(operation);
    if (operations.empty()) {
        throw std::invalid_argument("no operation of the platform is named \"" +
                                    std::string(operation) + "\"");
    }
    add(std::move(operations), n, span, number);
}

void FaultPlan::fail_at(Long n, FaultSpan span, Long number) {
    add({}, n, span, number);
}

void FaultPlan::add(std::vector<Operation> operations, Long n, FaultSpan span, Long number) {
    if (n < 1) {
        throw std::invalid_argument("calls are counted from 1");
    }
    faults_.push_back({std::move(operations), n, span, number});
}

std::string FaultPlan::last_failed() const {
    if (!last_failed_) {
        return {};
    }
    const auto* const entry =
        std::ranges::find(operation_names, *last_failed_, &OperationName::operation);
    return std::string(entry->object) + "." + std::string(entry->name);
}

void FaultPlan::count_call(Operation operation) {
    if (const std::optional<Long> due = fault_due(operation)) {
        throw Failure(*due);
    }
}

std::optional<Long> FaultPlan::fault_due(Operation operation) {
    std::optional<Long> due;
    for (Fault& fault : faults_) {
        if (!fault.operations.empty() &&
            std::ranges::find(fault.operations, operation) == fault.operations.end()) {
            continue;
        }
        if (fault.calls_left > 1) {
            --fault.calls_left;
            continue;
        }
        // Used up by a Once; a FromThenOn stays at 1.
        fault.calls_left = fault.span == FaultSpan::Once ? 0 : 1;
        due = due.value_or(fault.number);
    }
    std::erase_if(faults_, [](const Fault& fault) { return fault.calls_left == 0; });
    if (due) {
        ++failed_calls_;
        last_failed_ = operation;
    }
    return due;
}

std::shared_ptr<ado::Connection> faulting(std::shared_ptr<ado::Connection> target,
                                          std::shared_ptr<FaultPlan> plan) {
    if (auto database = std::dynamic_pointer_cast<dao::Database>(target)) {
        return std::make_shared<FaultingConnectionAndDatabase>(std::move(target),
                                                               std::move(database), plan);
    }
    return std::make_shared<FaultingConnection>(std::move(target), std::move(plan));
}

std::shared_ptr<dao::Database> faulting(std::shared_ptr<dao::Database> target,
                                        std::shared_ptr<FaultPlan> plan) {
    return std::make_shared<FaultingDatabase>(std::move(target), std::move(plan));
}

std::unique_ptr<dao::DBEngine> faulting(dao::DBEngine& target, std::shared_ptr<FaultPlan> plan) {
    return std::make_unique<FaultingEngine>(target, std::move(plan));
}

std::unique_ptr<MessageBoxes> faulting(MessageBoxes& target, std::shared_ptr<FaultPlan> plan) {
    return std::make_unique<FaultingBoxes>(target, std::move(plan));
}

std::unique_ptr<Clock> faulting(Clock& target, std::shared_ptr<FaultPlan> plan) {
    return std::make_unique<FaultingClock>(target, std::move(plan));
}

std::unique_ptr<Sleeper> faulting(Sleeper& target, std::shared_ptr<FaultPlan> plan) {
    return std::make_unique<FaultingSleeper>(target, std::move(plan));
}

}  // namespace kvarta16
