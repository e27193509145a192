// Wrappers around the platform seams. Each passes every operation on to the object behind it, so
// that a test or a host overrides the one call that it cares about:
//
//   class Counted final : public ado::ForwardingConnection {
//     public:
//       using ForwardingConnection::ForwardingConnection;
//       std::shared_ptr<ado::Recordset> CreateRecordset() override {
//           ++rows;
//           return ForwardingConnection::CreateRecordset();
//       }
//       int rows = 0;
//   };
//
// Wrappers may be put around wrappers. On top of them stands the fault plan, which makes chosen
// calls fail:
//
//   const auto plan = std::make_shared<FaultPlan>();
//   plan->fail_at("UpdateBatch", 100, FaultSpan::Once, 3197);
//   const auto db = faulting(connection, plan);   // its hundredth UpdateBatch fails
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <kvarta16/frame/export.h>
#include <kvarta16/platform/ado.h>
#include <kvarta16/platform/clock.h>
#include <kvarta16/platform/dao.h>
#include <kvarta16/platform/forwarding_system.h>
#include <kvarta16/platform/message_box.h>

namespace kvarta16 {

// ---- Wrappers -------------------------------------------------------------------------------

// `target` must outlive the wrapper.
class KVARTA16_EXPORT ForwardingBoxes : public MessageBoxes {
  public:
    explicit ForwardingBoxes(MessageBoxes& target) noexcept : target_(&target) {}
    MsgBoxResult MsgBox(StringView text, Long style, std::optional<StringView> title) override {
        return target_->MsgBox(text, style, title);
    }

  private:
    MessageBoxes* target_;
};

// `target` must outlive the wrapper.
class KVARTA16_EXPORT ForwardingClock : public Clock {
  public:
    explicit ForwardingClock(Clock& target) noexcept : target_(&target) {}
    Date Now() override { return target_->Now(); }

  private:
    Clock* target_;
};

// `target` must outlive the wrapper.
class KVARTA16_EXPORT ForwardingSleeper : public Sleeper {
  public:
    explicit ForwardingSleeper(Sleeper& target) noexcept : target_(&target) {}
    void Sleep(Long milliseconds) override { target_->Sleep(milliseconds); }

  private:
    Sleeper* target_;
};

namespace ado {

// `target` must outlive the wrapper.
class KVARTA16_EXPORT ForwardingField : public Field {
  public:
    explicit ForwardingField(Field& target) noexcept : target_(&target) {}
    String Name() override { return target_->Name(); }
    Variant Value() override { return target_->Value(); }
    void PutValue(const Variant& value) override { target_->PutValue(value); }

  private:
    Field* target_;
};

class KVARTA16_EXPORT ForwardingRecordset : public Recordset {
  public:
    // `target` is not empty.
    explicit ForwardingRecordset(std::shared_ptr<Recordset> target) noexcept;

    // A connection that is a wrapper is passed on as the connection behind it: the recordset
    // behind this one comes from there and knows no wrappers.
    void Open(StringView source, const std::shared_ptr<Connection>& active_connection,
              CursorType cursor_type, LockType lock_type, Long options) override;
    bool IsEOF() override { return target_->IsEOF(); }
    void AddNew() override { target_->AddNew(); }
    Field& Fields(const Variant& item) override;
    void UpdateBatch(Affect affect_records) override { target_->UpdateBatch(affect_records); }
    void MoveNext() override { target_->MoveNext(); }
    void Close() override { target_->Close(); }

  protected:
    // What stands before a field of the recordset behind; asked once for each field.
    [[nodiscard]] virtual std::unique_ptr<Field> wrap(Field& field);

  private:
    std::shared_ptr<Recordset> target_;
    std::map<Field*, std::unique_ptr<Field>> fields_;
};

class KVARTA16_EXPORT ForwardingConnection : public Connection {
  public:
    // `target` is not empty.
    explicit ForwardingConnection(std::shared_ptr<Connection> target) noexcept;

    // A wrapper of a recordset that the connection behind has made; an override does the same.
    std::shared_ptr<Recordset> CreateRecordset() override;
    void BeginTrans() override { target_->BeginTrans(); }
    void CommitTrans() override { target_->CommitTrans(); }
    void RollbackTrans() override { target_->RollbackTrans(); }
    void Close() override { target_->Close(); }

    [[nodiscard]] const std::shared_ptr<Connection>& target() const noexcept { return target_; }

  private:
    std::shared_ptr<Connection> target_;
};

}  // namespace ado

namespace dao {

// Of each of these `target` is not empty, except the engine's, which must outlive the wrapper. What
// an operation gives comes from the object behind as it is; an override that cares about the
// objects below wraps them.

class KVARTA16_EXPORT ForwardingField : public Field {
  public:
    explicit ForwardingField(std::shared_ptr<Field> target) noexcept : target_(std::move(target)) {}
    String Name() override { return target_->Name(); }
    Integer Type() override { return target_->Type(); }
    Long Size() override { return target_->Size(); }
    Variant DefaultValue() override { return target_->DefaultValue(); }
    void PutDefaultValue(const Variant& value) override { target_->PutDefaultValue(value); }
    bool AllowZeroLength() override { return target_->AllowZeroLength(); }
    void PutAllowZeroLength(bool allow) override { target_->PutAllowZeroLength(allow); }

  private:
    std::shared_ptr<Field> target_;
};

class KVARTA16_EXPORT ForwardingFields : public Fields {
  public:
    explicit ForwardingFields(std::shared_ptr<Fields> target) noexcept
        : target_(std::move(target)) {}
    Integer Count() override { return target_->Count(); }
    std::shared_ptr<Field> Item(Long index) override { return target_->Item(index); }

  private:
    std::shared_ptr<Fields> target_;
};

class KVARTA16_EXPORT ForwardingTableDef : public TableDef {
  public:
    explicit ForwardingTableDef(std::shared_ptr<TableDef> target) noexcept
        : target_(std::move(target)) {}
    String Name() override { return target_->Name(); }
    void PutName(StringView name) override { target_->PutName(name); }
    std::shared_ptr<dao::Fields> Fields() override { return target_->Fields(); }

  private:
    std::shared_ptr<TableDef> target_;
};

class KVARTA16_EXPORT ForwardingDatabase : public Database {
  public:
    explicit ForwardingDatabase(std::shared_ptr<Database> target) noexcept
        : target_(std::move(target)) {}
    std::vector<std::shared_ptr<TableDef>> TableDefs() override { return target_->TableDefs(); }
    void Execute(StringView query) override { target_->Execute(query); }
    void Close() override { target_->Close(); }

  private:
    std::shared_ptr<Database> target_;
};

class KVARTA16_EXPORT ForwardingEngine : public DBEngine {
  public:
    explicit ForwardingEngine(DBEngine& target) noexcept : target_(&target) {}
    std::shared_ptr<Database> CreateDatabase(StringView name, StringView locale) override {
        return target_->CreateDatabase(name, locale);
    }
    std::shared_ptr<Database> OpenDatabase(StringView name) override {
        return target_->OpenDatabase(name);
    }

  private:
    DBEngine* target_;
};

}  // namespace dao

// ---- Faults ---------------------------------------------------------------------------------

// The operations of the platform that a plan can make fail.
enum class Operation : std::uint8_t {
    ConnectionCreateRecordset,
    ConnectionBeginTrans,
    ConnectionCommitTrans,
    ConnectionRollbackTrans,
    ConnectionClose,
    RecordsetOpen,
    RecordsetEof,
    RecordsetAddNew,
    RecordsetFields,
    RecordsetUpdateBatch,
    RecordsetMoveNext,
    RecordsetClose,
    FieldName,
    FieldValue,  // reading it and putting it
    MessageBoxesMsgBox,
    ClockNow,
    SleeperSleep,
    FilesGetAttr,
    FilesKill,
    FilesName,
    FilesMkDir,
    FilesChDrive,
    FilesChDir,
    FilesFileCopy,
    FilesCurDir,
    FindFilesFindFirstFileA,
    FindFilesFindNextFileA,
    FindFilesFindClose,
    FindFilesGetFullPathNameA,
    FindFilesGetShortPathNameA,
    FindFilesFileTimeToLocalFileTime,
    FindFilesFileTimeToSystemTime,
    FileTableFreeFile,
    FileTableOpen,
    FileTableClose,
    FileTableLOF,
    FileTablePrintLine,
    FileTableInputCharacter,
    FileTableSeek,
    FileTableGet,
    FileTablePut,
    ProcessesShell,
    ProcessesAppActivate,
    ProcessesSendKeys,
    MessagesGetInputState,
    MessagesPeekMessageA,
    MessagesDoEvents,
    SystemInformationGetVersionExA,
    SystemInformationGetWindowsDirectoryA,
    ScreenPutMousePointer,
    FolderDialogsSHBrowseForFolder,
    FolderDialogsSHGetPathFromIDList,
    FolderDialogsSendMessageA,
    FolderDialogsBeep,
    InternetInternetOpenA,
    InternetInternetConnectA,
    InternetInternetCloseHandle,
    InternetFtpPutFileA,
    InternetFtpGetFileA,
    InternetFtpOpenFileA,
    InternetInternetReadFile,
    InternetInternetWriteFile,
    InternetFtpFindFirstFileA,
    InternetInternetFindNextFileA,
    InternetFtpGetCurrentDirectoryA,
    InternetFtpSetCurrentDirectoryA,
    InternetFtpCreateDirectoryA,
    InternetFtpRemoveDirectoryA,
    InternetFtpDeleteFileA,
    InternetFtpRenameFileA,
    InternetInternetGetLastResponseInfoA,
    RegistryRegOpenKeyA,
    RegistryRegCreateKeyA,
    RegistryRegQueryValueExA,
    RegistryRegSetValueExA,
    RegistryRegCloseKey,
    RegistryRegDeleteKeyA,
    RegistryRegDeleteValueA,
    MenusGetMenu,
    MenusGetSubMenu,
    MenusSetMenuItemBitmaps,
    MenusRemoveMenu,
    MenusCreatePopupMenu,
    MenusCreateMenu,
    MenusAppendMenuA,
    MenusInsertMenuA,
    MenusDestroyMenu,
    MenusDrawMenuBar,
    MenusLoadImageA,
    SpoolerOpenPrinterA,
    SpoolerStartDocPrinterA,
    SpoolerStartPagePrinter,
    SpoolerWritePrinter,
    SpoolerEndPagePrinter,
    SpoolerEndDocPrinter,
    SpoolerClosePrinter,
    EngineCreateDatabase,
    EngineOpenDatabase,
    DatabaseTableDefs,
    DatabaseExecute,
    DatabaseClose,
    TableDefName,  // reading it and putting it, here and below
    TableDefFields,
    FieldsCount,
    FieldsItem,  // of a recordset too
    DaoFieldName,
    DaoFieldType,
    DaoFieldSize,
    DaoFieldDefaultValue,
    DaoFieldAllowZeroLength,
};

enum class FaultSpan : std::uint8_t { Once, FromThenOn };

// Which calls are to fail, and with which numbers. Used by one thread, as the objects are whose
// calls it counts.
class KVARTA16_EXPORT FaultPlan {
  public:
    // Makes the n-th call from now of an operation fail, and with FromThenOn every later one too.
    // The operation is named as the platform names it, "UpdateBatch", which stands for the calls
    // of that name on any object, or with its object, "Recordset.UpdateBatch". Faults add up: each
    // counts by itself, and where two fall on one call the earlier entry gives the number.
    // Throws std::invalid_argument for a name that no operation bears and for n below 1.
    void fail_at(std::string_view operation, Long n, FaultSpan span, Long number);

    // The same for the n-th call from now of any operation. A loop over n = 1, 2, 3, ... until
    // nothing failed has every call of a run fail once.
    void fail_at(Long n, FaultSpan span, Long number);

    // Takes back every fault that has been asked for.
    void clear() noexcept { faults_.clear(); }

    // How many calls have failed so far by this plan.
    [[nodiscard]] Long failed_calls() const noexcept { return failed_calls_; }

    // The operation that has failed last by this plan, with its object, "Recordset.UpdateBatch";
    // "" while none has.
    [[nodiscard]] std::string last_failed() const;

    // Called before an operation is passed on. Fails with the number of the fault that falls due.
    void count_call(Operation operation);

    // The same for an operation that answers by a number and raises nothing: the number of the
    // fault that falls due, if one does.
    [[nodiscard]] std::optional<Long> fault_due(Operation operation);

  private:
    struct Fault {
        std::vector<Operation> operations;  // all that bear the name asked for; none: any
        Long calls_left;                    // 1: the next call fails
        FaultSpan span;
        Long number;
    };

    void add(std::vector<Operation> operations, Long n, FaultSpan span, Long number);

    std::vector<Fault> faults_;
    Long failed_calls_ = 0;
    std::optional<Operation> last_failed_;
};

// The same object with the faults of `plan` before each operation: one that is to fail is not
// passed on. An operation that raises nothing answers as where it cannot serve, with the number of
// the fault in GetLastError where the seam has that and as its status where it answers by one. What
// comes from the object is covered too: the recordsets of a connection and their fields, the
// databases of an engine with their tables and fields. A connection that is also a dao::Database
// stays one. `target` must outlive the result.
[[nodiscard]] KVARTA16_EXPORT std::shared_ptr<ado::Connection> faulting(
    std::shared_ptr<ado::Connection> target, std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::unique_ptr<MessageBoxes> faulting(
    MessageBoxes& target, std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::unique_ptr<Clock> faulting(Clock& target,
                                                              std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::unique_ptr<Sleeper> faulting(Sleeper& target,
                                                                std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::unique_ptr<Files> faulting(Files& target,
                                                              std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::unique_ptr<FindFiles> faulting(FindFiles& target,
                                                                  std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::unique_ptr<FileTable> faulting(FileTable& target,
                                                                  std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::unique_ptr<Processes> faulting(Processes& target,
                                                                  std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::unique_ptr<Messages> faulting(Messages& target,
                                                                 std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::unique_ptr<SystemInformation> faulting(
    SystemInformation& target, std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::unique_ptr<Screen> faulting(Screen& target,
                                                               std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::unique_ptr<FolderDialogs> faulting(
    FolderDialogs& target, std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::unique_ptr<Internet> faulting(Internet& target,
                                                                 std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::unique_ptr<Registry> faulting(Registry& target,
                                                                 std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::unique_ptr<Menus> faulting(Menus& target,
                                                              std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::unique_ptr<Spooler> faulting(Spooler& target,
                                                                std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::unique_ptr<dao::DBEngine> faulting(
    dao::DBEngine& target, std::shared_ptr<FaultPlan> plan);
[[nodiscard]] KVARTA16_EXPORT std::shared_ptr<dao::Database> faulting(
    std::shared_ptr<dao::Database> target, std::shared_ptr<FaultPlan> plan);

}  // namespace kvarta16
