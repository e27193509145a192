// Opening files of every kind, files that are locked, transactions, durability, and what is left
// in the folder when a connection has ended.

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <support/sqlite_files.h>
#include <sys/wait.h>
#include <unistd.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/platform/sqlite/sqlite_connection.h>

namespace kvarta16 {
namespace {

using testing_support::Caught;
using testing_support::caught;
using testing_support::EngineProbe;
using testing_support::file_bytes;
using testing_support::LockingProcess;
using testing_support::OtherProgram;
using testing_support::TemporaryFolder;
using testing_support::write_file;
using ConnectionPointer = std::shared_ptr<sqlite::SqliteConnection>;
using Names = std::vector<std::string>;
using Milliseconds = std::chrono::milliseconds;

constexpr const char* create_t = "create table T (id INTEGER, nazwa TEXT)";

void add_row(const std::shared_ptr<ado::Connection>& db, Long id) {
    const auto recordset = db->CreateRecordset();
    recordset->Open(u"select id, nazwa from T where id=" + ToText(id), db,
                    ado::CursorType::adOpenStatic, ado::LockType::adLockOptimistic, -1);
    ASSERT_TRUE(recordset->IsEOF());
    recordset->AddNew();
    recordset->Fields(u"id").PutValue(id);
    recordset->Fields(u"nazwa").PutValue(u"wiersz " + ToText(id));
    recordset->UpdateBatch(ado::Affect::adAffectCurrent);
    recordset->Close();
}

Long count_rows(const std::shared_ptr<ado::Connection>& db) {
    const auto recordset = db->CreateRecordset();
    recordset->Open(u"select id from T", db, ado::CursorType::adOpenStatic,
                    ado::LockType::adLockReadOnly, -1);
    Long count = 0;
    for (; !recordset->IsEOF(); recordset->MoveNext()) {
        ++count;
    }
    return count;
}

// A file with the table and `count` rows, made by another program.
std::string file_with_rows(const TemporaryFolder& folder, int count) {
    const std::string path = folder / "firma.db";
    OtherProgram other(path);
    other.run(std::string(create_t) + "; begin");
    for (int i = 1; i <= count; ++i) {
        other.run("insert into T values (" + std::to_string(i) + ", 'wiersz')");
    }
    other.run("commit");
    return path;
}

std::size_t open_files() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(files, std::filesystem::directory_iterator()));
}

// ---- Opening -----------------------------------------------------------------------------------

TEST(SqliteOpening, AMissingFileIsMadeOnlyWhenAsked) {
    const TemporaryFolder folder;
    const std::string path = folder / "zażółć gęślą.db";
    const Caught failure = caught([&] { static_cast<void>(sqlite::connect(path)); });
    EXPECT_EQ(failure.number, 3024);
    EXPECT_NE(failure.text.find("zażółć gęślą.db"), std::string::npos) << failure.text;
    EXPECT_EQ(folder.names(), Names());
    EXPECT_EQ(caught([&] { static_cast<void>(sqlite::connect(path, {.read_only = true})); }).number,
              3024);
    const Caught both = caught(
        [&] { static_cast<void>(sqlite::connect(path, {.create = true, .read_only = true})); });
    EXPECT_EQ(both.number, 3024) << "what is only read is not made";
    EXPECT_EQ(folder.names(), Names());

    const auto db = sqlite::connect(path, {.create = true});
    db->execute(create_t);
    add_row(db, 1);
    db->Close();
    EXPECT_EQ(folder.names(), Names({"zażółć gęślą.db"}));
    EXPECT_EQ(count_rows(sqlite::connect(path)), 1);
    EXPECT_EQ(count_rows(sqlite::connect(path, {.create = true})), 1);
    EXPECT_EQ(count_rows(sqlite::connect(path, {.read_only = true})), 1);
}

TEST(SqliteOpening, APathIsAFilesPath) {
    const TemporaryFolder folder;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    for (const char* path : {":memory:", "file:firma.db?mode=memory", "file::memory:"}) {
        EXPECT_EQ(caught([&] { static_cast<void>(sqlite::connect(path)); }).number, 3024) << path;
        const auto db = sqlite::connect(path, {.create = true});
        db->execute(create_t);
        db->Close();
        EXPECT_EQ(folder.names(), Names({path}));
        std::filesystem::remove(path);
    }
    std::filesystem::current_path(before);
}

TEST(SqliteOpening, AnEmptyFileIsAnEmptyDatabase) {
    const TemporaryFolder folder;
    write_file(folder / "firma.db", "");
    auto db = sqlite::connect(folder / "firma.db");
    EXPECT_FALSE(db->table_exists(u"T"));
    db.reset();
    EXPECT_EQ(file_bytes(folder / "firma.db"), "") << "looking changes nothing";
    db = sqlite::connect(folder / "firma.db");
    db->execute(create_t);
    add_row(db, 1);
    EXPECT_TRUE(db->table_exists(u"t"));
}

struct BadFile {
    const char* what;
    std::string bytes;
    Long number;
};

TEST(SqliteOpening, FilesThatAreNoDatabase) {
    const TemporaryFolder folder;
    const std::string good = file_bytes(file_with_rows(folder, 5'000));
    ASSERT_GT(good.size(), 50'000U);
    std::string no_schema = good;
    no_schema.replace(100, 8, 8, '\xFF');
    std::string other_encoding = good;
    other_encoding[59] = 7;
    const BadFile files[] = {
        {"a short text", "to nie jest baza danych\n", 3343},
        {"two bytes", "xy", 3343},
        {"a long text", std::string(100'000, 'x'), 3343},
        {"zeros", std::string(8'192, '\0'), 3343},
        {"another program's header", "PK\x03\x04" + good.substr(4), 3343},
        {"half of a file", good.substr(0, good.size() / 2), 3428},
        {"the first page", good.substr(0, 4'096), 3428},
        {"a header alone", good.substr(0, 100), 3428},
        {"a damaged first page", no_schema, 3428},
    };
    const std::size_t files_before = open_files();
    for (const BadFile& bad : files) {
        write_file(folder / "zła.db", bad.bytes);
        for (const bool read_only : {false, true}) {
            for (const bool create : {false, true}) {
                const Caught failure = caught([&] {
                    static_cast<void>(sqlite::connect(folder / "zła.db",
                                                      {.create = create, .read_only = read_only}));
                });
                EXPECT_EQ(failure.number, bad.number) << bad.what << ": " << failure.text;
                EXPECT_NE(failure.text.find("zła.db"), std::string::npos) << failure.text;
            }
        }
        EXPECT_EQ(file_bytes(folder / "zła.db"), bad.bytes) << bad.what;
    }
    EXPECT_EQ(open_files(), files_before);
    EXPECT_EQ(folder.names(), Names({"firma.db", "zła.db"}));
}

TEST(SqliteOpening, APageThatIsDamagedFailsWhenItIsRead) {
    const TemporaryFolder folder;
    std::string bytes = file_bytes(file_with_rows(folder, 5'000));
    for (std::size_t at = 4'096 * 3; at < bytes.size(); at += 4'096) {
        bytes.replace(at, 16, 16, '\xFF');
    }
    write_file(folder / "firma.db", bytes);
    const auto db = sqlite::connect(folder / "firma.db");
    const Caught failure = caught([&] { static_cast<void>(count_rows(db)); });
    EXPECT_EQ(failure.number, 3428) << failure.text;
    EXPECT_NE(failure.text.find("T, "), std::string::npos) << failure.text;
}

TEST(SqliteOpening, PathsThatAreNoFiles) {
    const TemporaryFolder folder;
    struct BadPath {
        std::string path;
        bool create;
        Long number;
    };
    const BadPath paths[] = {
        {"", false, 3044},
        {"", true, 3044},
        {std::string("a\0b.db", 6), true, 3044},
        {folder.path(), false, 3051},
        {folder.path(), true, 3051},
        {folder / "nie ma/firma.db", false, 3024},
        {folder / "nie ma/firma.db", true, 3044},
        {folder / "firma.db/firma.db", false, 3024},
        {folder / "firma.db/firma.db", true, 3044},
        {folder / std::string(5'000, 'x'), true, 3051},
    };
    static_cast<void>(file_with_rows(folder, 1));
    for (const BadPath& bad : paths) {
        const Caught failure =
            caught([&] { static_cast<void>(sqlite::connect(bad.path, {.create = bad.create})); });
        EXPECT_EQ(failure.number, bad.number) << bad.path << ": " << failure.text;
        EXPECT_FALSE(failure.text.empty());
    }
    EXPECT_EQ(folder.names(), Names({"firma.db"}));
}

// As a user who is not the administrator, to whom nothing is forbidden.
class AsUser {
  public:
    AsUser() : was_(geteuid()) {
        constexpr uid_t nobody = 65534;
        if (was_ == 0 && seteuid(nobody) != 0) {
            throw std::runtime_error("the user cannot be changed");
        }
    }
    ~AsUser() { EXPECT_EQ(seteuid(was_), 0); }
    AsUser(const AsUser&) = delete;
    AsUser& operator=(const AsUser&) = delete;
    AsUser(AsUser&&) = delete;
    AsUser& operator=(AsUser&&) = delete;

  private:
    uid_t was_;
};

TEST(SqliteOpening, WithoutPermission) {
    using std::filesystem::perms;
    const TemporaryFolder folder;
    const std::string path = file_with_rows(folder, 1);
    const std::string bytes = file_bytes(path);
    std::filesystem::permissions(path, perms::none);
    constexpr auto all_read = perms::owner_read | perms::group_read | perms::others_read;
    constexpr auto all_enter = perms::owner_exec | perms::group_exec | perms::others_exec;
    std::filesystem::permissions(folder.path(), all_read | all_enter);
    {
        const AsUser user;
        const Caught closed = caught([&] { static_cast<void>(sqlite::connect(path)); });
        EXPECT_EQ(closed.number, 3051) << closed.text;
        EXPECT_NE(closed.text.find("permission"), std::string::npos) << closed.text;
        const Caught folder_closed = caught(
            [&] { static_cast<void>(sqlite::connect(folder / "nowa.db", {.create = true})); });
        EXPECT_EQ(folder_closed.number, 3051) << folder_closed.text;
    }
    std::filesystem::permissions(path, all_read);
    {
        // A file that may only be read is read, and fails when it is to be written.
        const AsUser user;
        const auto db = sqlite::connect(path);
        EXPECT_EQ(count_rows(db), 1);
        const Caught failure = caught([&] { add_row(db, 2); });
        EXPECT_EQ(failure.number, 3027) << failure.text;
        EXPECT_EQ(count_rows(db), 1);
    }
    std::filesystem::permissions(path, all_read | perms::group_write | perms::others_write);
    {
        // Nor can a file be written whose folder does not take a journal.
        const AsUser user;
        const auto db = sqlite::connect(path);
        EXPECT_EQ(count_rows(db), 1);
        const Caught failure = caught([&] { add_row(db, 2); });
        // It depends on the file system at which step the engine notices it.
        EXPECT_TRUE(failure.number == 3027 || failure.number == 3051) << failure.text;
    }
    std::filesystem::permissions(folder.path(), perms::owner_all);
    EXPECT_EQ(file_bytes(path), bytes);
    EXPECT_EQ(folder.names(), Names({"firma.db"}));
}

TEST(SqliteOpening, ReadOnly) {
    const TemporaryFolder folder;
    const std::string path = file_with_rows(folder, 1);
    const std::string bytes = file_bytes(path);
    {
        const auto db = sqlite::connect(path, {.read_only = true});
        EXPECT_EQ(count_rows(db), 1);
        EXPECT_EQ(caught([&] { add_row(db, 2); }).number, 3027);
        EXPECT_EQ(caught([&] { db->execute("delete from T"); }).number, 3027);
        db->BeginTrans();
        EXPECT_EQ(caught([&] { add_row(db, 2); }).number, 3027);
        db->RollbackTrans();
        EXPECT_EQ(count_rows(db), 1);
    }
    EXPECT_EQ(file_bytes(path), bytes);
    EXPECT_EQ(folder.names(), Names({"firma.db"}));
}

TEST(SqliteOpening, AFileWithAWriteAheadLogKeepsIt) {
    const TemporaryFolder folder;
    const std::string path = file_with_rows(folder, 1);
    OtherProgram(path).run("pragma journal_mode=wal");
    {
        const auto db = sqlite::connect(path);
        add_row(db, 2);
    }
    EXPECT_EQ(OtherProgram(path).value("pragma journal_mode"), "wal");
    EXPECT_EQ(OtherProgram(path).value("select count(*) from T"), "2");
}

TEST(SqliteOpening, EveryOtherFileKeepsItsRollbackJournal) {
    const TemporaryFolder folder;
    const std::string path = file_with_rows(folder, 1);
    const auto db = sqlite::connect(path);
    add_row(db, 2);
    EXPECT_EQ(OtherProgram(path).value("pragma journal_mode"), "delete");
    db->Close();
    EXPECT_EQ(folder.names(), Names({"firma.db"}));
    EXPECT_EQ(OtherProgram(path).value("pragma journal_mode"), "delete");

    for (const bool in_transaction : {false, true}) {
        auto fresh = sqlite::connect(folder / "nowa.db", {.create = true});
        fresh->execute(create_t);
        if (in_transaction) {
            fresh->BeginTrans();
        }
        add_row(fresh, 1);
        fresh.reset();
        EXPECT_EQ(folder.names(), Names({"firma.db", "nowa.db"}));
        EXPECT_EQ(OtherProgram(folder / "nowa.db").value("pragma journal_mode"), "delete");
        EXPECT_EQ(OtherProgram(folder / "nowa.db").value("select count(*) from T"),
                  in_transaction ? "0" : "1");
        std::filesystem::remove(folder / "nowa.db");
    }
}

// ---- Locked files ------------------------------------------------------------------------------

template <class Call>
Milliseconds duration(Call&& call) {
    const auto begin = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration_cast<Milliseconds>(std::chrono::steady_clock::now() - begin);
}

TEST(SqliteLocks, AFileLockedAgainstReadingFailsAfterTheTimeOut) {
    const TemporaryFolder folder;
    const std::string path = file_with_rows(folder, 1);
    const auto early = sqlite::connect(path, {.busy_timeout_ms = 300});
    const LockingProcess locking(path, "begin exclusive");
    Caught failure;
    const auto open = [&] {
        failure =
            caught([&] { static_cast<void>(sqlite::connect(path, {.busy_timeout_ms = 300})); });
    };
    const Milliseconds time = duration(open);
    EXPECT_EQ(failure.number, 3260) << failure.text;
    EXPECT_NE(failure.text.find("locked"), std::string::npos) << failure.text;
    EXPECT_NE(failure.text.find("firma.db"), std::string::npos) << failure.text;
    EXPECT_GE(time, Milliseconds(290));
    EXPECT_LT(time, Milliseconds(10'000));
    EXPECT_EQ(caught([&] { static_cast<void>(count_rows(early)); }).number, 3260);
    EXPECT_EQ(caught([&] { static_cast<void>(early->table_exists(u"X")); }).number, 3260);
}

TEST(SqliteLocks, AFileLockedAgainstWritingIsReadAndNotWritten) {
    const TemporaryFolder folder;
    const std::string path = file_with_rows(folder, 1);
    const auto db = sqlite::connect(path, {.busy_timeout_ms = 50});
    {
        const LockingProcess locking(path, "begin immediate");
        EXPECT_EQ(count_rows(db), 1);
        EXPECT_EQ(caught([&] { add_row(db, 2); }).number, 3260);
        EXPECT_EQ(caught([&] { db->BeginTrans(); }).number, 3260);
        EXPECT_EQ(caught([&] { db->CommitTrans(); }).number, 3034) << "none has begun";
        EXPECT_EQ(caught([&] { db->execute("delete from T"); }).number, 3260);
        EXPECT_EQ(count_rows(db), 1);
    }
    add_row(db, 2);
    EXPECT_EQ(count_rows(db), 2);
}

TEST(SqliteLocks, AReaderKeepsAWriterWaiting) {
    const TemporaryFolder folder;
    const std::string path = file_with_rows(folder, 1);
    const auto db = sqlite::connect(path, {.busy_timeout_ms = 50});
    {
        const LockingProcess reading(path, "begin; select * from T");
        EXPECT_EQ(caught([&] { add_row(db, 2); }).number, 3260);
        // A transaction takes its lock, and its commit can be tried again.
        db->BeginTrans();
        add_row(db, 3);
        EXPECT_EQ(caught([&] { db->CommitTrans(); }).number, 3260);
    }
    db->CommitTrans();
    EXPECT_EQ(OtherProgram(path).value("select group_concat(id) from T"), "1,3");
}

TEST(SqliteLocks, ALockThatEndsInTimeIsWaitedFor) {
    const TemporaryFolder folder;
    const std::string path = file_with_rows(folder, 1);
    const auto db = sqlite::connect(path, {.busy_timeout_ms = 30'000});
    const LockingProcess locking(path, "begin exclusive; insert into T values (2, 'x')", 300);
    add_row(db, 3);
    EXPECT_EQ(count_rows(db), 3);
}

// ---- Transactions ------------------------------------------------------------------------------

class SqliteTransactions : public testing::Test {
  protected:
    TemporaryFolder folder;
    std::string path = file_with_rows(folder, 1);
    ConnectionPointer db = sqlite::connect(path);

    std::string stored() const {
        return OtherProgram(path).value("select group_concat(id) from T");
    }
};

TEST_F(SqliteTransactions, CommitStoresAll) {
    db->BeginTrans();
    add_row(db, 2);
    add_row(db, 3);
    EXPECT_EQ(count_rows(db), 3);
    EXPECT_EQ(stored(), "1") << "nobody else sees them yet";
    db->CommitTrans();
    EXPECT_EQ(stored(), "1,2,3");
    add_row(db, 4);
    EXPECT_EQ(stored(), "1,2,3,4");
}

TEST_F(SqliteTransactions, RollbackLeavesTheFileAsItWas) {
    const std::string before = file_bytes(path);
    db->BeginTrans();
    for (Long id = 2; id < 500; ++id) {
        add_row(db, id);
    }
    db->execute("create table T2 (a); delete from T where id=1");
    EXPECT_TRUE(db->table_exists(u"T2"));
    db->RollbackTrans();
    EXPECT_FALSE(db->table_exists(u"T2"));
    EXPECT_EQ(count_rows(db), 1);
    db->Close();
    EXPECT_EQ(file_bytes(path), before);
}

TEST_F(SqliteTransactions, EndOfTheConnectionRollsBack) {
    const std::string before = file_bytes(path);
    for (const bool by_close : {true, false}) {
        auto own = sqlite::connect(path);
        own->BeginTrans();
        add_row(own, 2);
        if (by_close) {
            own->Close();
        }
        own.reset();
        EXPECT_EQ(file_bytes(path), before);
        EXPECT_EQ(folder.names(), Names({"firma.db"}));
    }
}

TEST_F(SqliteTransactions, TheirStateIsKept) {
    const Caught none = caught([&] { db->CommitTrans(); });
    EXPECT_EQ(none.number, 3034);
    EXPECT_NE(none.text.find("no transaction"), std::string::npos);
    EXPECT_EQ(caught([&] { db->RollbackTrans(); }).number, 3034);
    db->BeginTrans();
    add_row(db, 2);
    const Caught nested = caught([&] { db->BeginTrans(); });
    EXPECT_EQ(nested.number, 3246);
    EXPECT_NE(nested.text.find("open already"), std::string::npos);
    db->CommitTrans();
    EXPECT_EQ(stored(), "1,2") << "the refused one has not touched it";
    EXPECT_EQ(caught([&] { db->CommitTrans(); }).number, 3034);

    db->execute("begin");
    EXPECT_EQ(caught([&] { db->BeginTrans(); }).number, 3246);
    add_row(db, 3);
    db->RollbackTrans();
    db->BeginTrans();
    add_row(db, 4);
    db->execute("commit");
    EXPECT_EQ(caught([&] { db->RollbackTrans(); }).number, 3034);
    EXPECT_EQ(stored(), "1,2,4");

    // Also where a later statement of the same call fails.
    EXPECT_EQ(caught([&] { db->execute("begin; select * from Nie_ma"); }).number, 3078);
    add_row(db, 5);
    EXPECT_EQ(stored(), "1,2,4");
    EXPECT_EQ(caught([&] { db->execute("commit; select * from Nie_ma"); }).number, 3078);
    add_row(db, 6);
    EXPECT_EQ(stored(), "1,2,4,5,6");
}

TEST_F(SqliteTransactions, AFailureInsideLeavesTheRest) {
    db->execute("create unique index I on T(nazwa)");
    db->BeginTrans();
    add_row(db, 2);
    const auto recordset = db->CreateRecordset();
    recordset->Open(u"select nazwa from T where id=1", db, ado::CursorType::adOpenStatic,
                    ado::LockType::adLockOptimistic, -1);
    recordset->Fields(u"nazwa").PutValue(u"wiersz 2");
    const Caught failure = caught([&] { recordset->UpdateBatch(ado::Affect::adAffectCurrent); });
    EXPECT_EQ(failure.number, 3022);
    add_row(db, 3);
    db->CommitTrans();
    EXPECT_EQ(stored(), "1,2,3");
}

TEST_F(SqliteTransactions, AFullFileInside) {
    db->execute("pragma max_page_count=3");
    db->BeginTrans();
    Caught failure;
    Long id = 2;
    while (failure.number == 0) {
        failure = caught([&] { add_row(db, id++); });
    }
    EXPECT_EQ(failure.number, 3026) << failure.text;
    db->RollbackTrans();
    EXPECT_EQ(stored(), "1");
}

// ---- The host's own statements -----------------------------------------------------------------

TEST(SqliteExecute, RunsStatementsInOrder) {
    const TemporaryFolder folder;
    const auto db = sqlite::connect(folder / "firma.db", {.create = true});
    db->execute("");
    db->execute("  ; ;; -- nothing\n /* at all */ ");
    db->execute(
        "create table T (id INTEGER, nazwa TEXT); insert into T values (1,'a;b'); "
        "select * from T; insert into T values (2,'ż')");
    EXPECT_EQ(count_rows(db), 2);
    const Caught failure = caught([&] {
        db->execute("insert into T values (3,''); insert into Nie values (1); drop table T");
    });
    EXPECT_EQ(failure.number, 3078) << failure.text;
    EXPECT_EQ(count_rows(db), 3) << "those before it stay, those behind it are not run";
}

TEST(SqliteExecute, FailuresHaveTheNumbersOfTheFamily) {
    const TemporaryFolder folder;
    const auto db = sqlite::connect(folder / "firma.db", {.create = true});
    db->execute("create table T (id INTEGER, nazwa TEXT)");
    const auto number = [&](std::string_view sql) {
        const Caught failure = caught([&] { db->execute(sql); });
        EXPECT_NE(failure.text.find("firma.db"), std::string::npos) << failure.text;
        return failure.number;
    };
    EXPECT_EQ(number("select * from Nie_ma"), 3078);
    EXPECT_EQ(number("select nie_ma from T"), 3061);
    EXPECT_EQ(number("select \"nie_ma\" from T"), 3061) << "a name in quotes is no text";
    EXPECT_EQ(number("selekt"), 3075);
    EXPECT_EQ(number("select"), 3075);
    EXPECT_EQ(number("select 'a"), 3075);
    EXPECT_EQ(number(std::string_view("select 1\0; drop table T", 23)), 3075);
    EXPECT_EQ(number("create table T (a)"), 3010);
    EXPECT_EQ(number("select nie_ma(1)"), 3000);
    EXPECT_TRUE(db->table_exists(u"T"));
}

TEST(SqliteExecute, ClosedConnectionsRefuseEverything) {
    const TemporaryFolder folder;
    const auto db = sqlite::connect(folder / "firma.db", {.create = true});
    db->Close();
    const Long closed = ado::error_object_closed;
    EXPECT_EQ(caught([&] { db->Close(); }).number, closed);
    EXPECT_EQ(caught([&] { db->BeginTrans(); }).number, closed);
    EXPECT_EQ(caught([&] { db->CommitTrans(); }).number, closed);
    EXPECT_EQ(caught([&] { db->RollbackTrans(); }).number, closed);
    EXPECT_EQ(caught([&] { db->execute("select 1"); }).number, closed);
    EXPECT_EQ(caught([&] { static_cast<void>(db->table_exists(u"T")); }).number, closed);
    EXPECT_EQ(caught([&] { static_cast<void>(db->CreateRecordset()); }).number,
              ado::error_invalid_connection);
}

TEST(SqliteExecute, TablesAreKnownInAnyCase) {
    const TemporaryFolder folder;
    const auto db = sqlite::connect(folder / "firma.db", {.create = true});
    EXPECT_FALSE(db->table_exists(u"S_ODSETKI"));
    db->execute(
        "create table S_ODSETKI (a); create view \"Średnie żółte\" as select * from S_ODSETKI");
    EXPECT_TRUE(db->table_exists(u"S_ODSETKI"));
    EXPECT_TRUE(db->table_exists(u"s_odsetki"));
    EXPECT_TRUE(db->table_exists(u"ŚREDNIE ŻÓŁTE"));
    EXPECT_FALSE(db->table_exists(u"S_ODSETKI "));
    EXPECT_FALSE(db->table_exists(u""));
    db->execute("drop view \"Średnie żółte\"");
    EXPECT_FALSE(db->table_exists(u"ŚREDNIE ŻÓŁTE"));
    OtherProgram(folder / "firma.db").run("drop table S_ODSETKI; create table Nowa (a)");
    EXPECT_FALSE(db->table_exists(u"S_ODSETKI"));
    EXPECT_TRUE(db->table_exists(u"nowa"));
}

// ---- Two connections ---------------------------------------------------------------------------

TEST(SqliteConnections, TwoOnOneFile) {
    const TemporaryFolder folder;
    const std::string path = file_with_rows(folder, 1);
    const auto first = sqlite::connect(path);
    const auto second = sqlite::connect(path);
    for (Long id = 2; id < 30; id += 2) {
        add_row(first, id);
        add_row(second, id + 1);
    }
    EXPECT_EQ(count_rows(first), 29);
    EXPECT_EQ(count_rows(second), 29);
    first->Close();
    add_row(second, 30);
    second->Close();
    EXPECT_EQ(folder.names(), Names({"firma.db"}));
    EXPECT_EQ(OtherProgram(path).value("pragma integrity_check"), "ok");
}

TEST(SqliteConnections, LeaveNothingBehind) {
    const TemporaryFolder folder;
    const std::string path = file_with_rows(folder, 1);
    const std::size_t files_before = open_files();
    for (Long id = 2; id < 20; ++id) {
        const auto db = sqlite::connect(path);
        add_row(db, id);
        const auto recordset = db->CreateRecordset();
        recordset->Open(u"select * from T", db, ado::CursorType::adOpenStatic,
                        ado::LockType::adLockOptimistic, -1);
        recordset->AddNew();
    }
    EXPECT_EQ(open_files(), files_before);
    EXPECT_EQ(folder.names(), Names({"firma.db"}));
}

TEST(SqliteConnections, RowsAreSynced) {
    const TemporaryFolder folder;
    const EngineProbe probe;
    const auto db = sqlite::connect(file_with_rows(folder, 1));
    add_row(db, 2);
    sqlite3_stmt* statement = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(probe.db(), "pragma synchronous", -1, &statement, nullptr), 0);
    ASSERT_EQ(sqlite3_step(statement), SQLITE_ROW);
    EXPECT_EQ(sqlite3_column_int(statement, 0), 3);
    sqlite3_finalize(statement);
}

}  // namespace
}  // namespace kvarta16
