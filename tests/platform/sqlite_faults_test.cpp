// A disk that fails, and a power that fails. Between the engine and the system stands a layer that
// makes the n-th operation on files fail, once or from then on, and that keeps what a disk would
// hold if the power failed now: of each file what was last synced.

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <support/sqlite_files.h>

#include <kvarta16/frame/value.h>
#include <kvarta16/platform/forwarding.h>
#include <kvarta16/platform/sqlite/sqlite_connection.h>

namespace kvarta16 {
namespace {

using testing_support::caught;
using testing_support::file_bytes;
using testing_support::OtherProgram;
using testing_support::TemporaryFolder;
using testing_support::write_file;
using ConnectionPointer = std::shared_ptr<sqlite::SqliteConnection>;
using Ids = std::set<Long>;

// ---- The disk ----------------------------------------------------------------------------------

// What the files hold that survive the loss of power, by their paths.
using Image = std::map<std::string, std::string>;

class Disk {
  public:
    Disk() {
        current() = this;
        real_ = sqlite3_vfs_find(nullptr);
        shim_ = *real_;
        shim_.zName = "kvarta16-faults";
        shim_.szOsFile = static_cast<int>(sizeof(File)) + real_->szOsFile;
        shim_.xOpen = &Disk::open;
        shim_.xDelete = &Disk::remove;
        sqlite3_vfs_register(&shim_, 1);
    }
    ~Disk() {
        sqlite3_vfs_unregister(&shim_);
        sqlite3_vfs_register(real_, 1);
        current() = nullptr;
    }
    Disk(const Disk&) = delete;
    Disk& operator=(const Disk&) = delete;
    Disk(Disk&&) = delete;
    Disk& operator=(Disk&&) = delete;

    // The n-th operation from now fails; 0: none does.
    void fail_at(int n, bool from_then_on) {
        calls_left_ = n;
        from_then_on_ = from_then_on;
        failed = 0;
    }

    int failed = 0;
    int syncs = 0;
    Image durable;
    std::vector<Image> images;  // at each sync, if they are kept
    bool keeps_images = false;

  private:
    struct File {
        sqlite3_file base;
        std::string* path;
        sqlite3_file* real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
    };

    static Disk*& current() {
        static Disk* disk = nullptr;
        return disk;
    }

    // Whether the operation is to fail.
    static bool fails() {
        Disk& disk = *current();
        const bool due = disk.calls_left_ > 0 && --disk.calls_left_ == 0;
        if (due && disk.from_then_on_) {
            disk.calls_left_ = 1;
        }
        disk.failed += due ? 1 : 0;
        return due;
    }

    static File* of(sqlite3_file* file) { return reinterpret_cast<File*>(file); }
    static sqlite3_file* real_of(sqlite3_file* file) { return of(file)->real(); }

    static int open(sqlite3_vfs*, sqlite3_filename path, sqlite3_file* file, int flags,
                    int* out_flags) {
        File* opened = new (file) File{};
        opened->base.pMethods = nullptr;
        if (fails()) {
            return SQLITE_CANTOPEN;
        }
        sqlite3_vfs* real = current()->real_;
        const int code = real->xOpen(real, path, opened->real(), flags, out_flags);
        if (opened->real()->pMethods != nullptr) {
            opened->path = new std::string(path != nullptr ? path : "");
            opened->base.pMethods = &methods;
        }
        return code;
    }
    static int remove(sqlite3_vfs*, const char* path, int sync_folder) {
        if (fails()) {
            return SQLITE_IOERR_DELETE;
        }
        sqlite3_vfs* real = current()->real_;
        if (sync_folder != 0) {
            current()->durable.erase(path);
        }
        return real->xDelete(real, path, sync_folder);
    }
    static int close(sqlite3_file* file) {
        delete of(file)->path;
        return real_of(file)->pMethods->xClose(real_of(file));
    }
    static int read(sqlite3_file* file, void* to, int count, sqlite3_int64 at) {
        return fails() ? SQLITE_IOERR_READ
                       : real_of(file)->pMethods->xRead(real_of(file), to, count, at);
    }
    static int write(sqlite3_file* file, const void* from, int count, sqlite3_int64 at) {
        if (fails()) {
            return current()->failed % 2 == 1 ? SQLITE_FULL : SQLITE_IOERR_WRITE;
        }
        return real_of(file)->pMethods->xWrite(real_of(file), from, count, at);
    }
    static int truncate(sqlite3_file* file, sqlite3_int64 size) {
        return fails() ? SQLITE_IOERR_TRUNCATE
                       : real_of(file)->pMethods->xTruncate(real_of(file), size);
    }
    static int sync(sqlite3_file* file, int flags) {
        if (fails()) {
            return SQLITE_IOERR_FSYNC;
        }
        Disk& disk = *current();
        ++disk.syncs;
        disk.durable[*of(file)->path] = file_bytes(*of(file)->path);
        if (disk.keeps_images) {
            disk.images.push_back(disk.durable);
        }
        return real_of(file)->pMethods->xSync(real_of(file), flags);
    }
    static int file_size(sqlite3_file* file, sqlite3_int64* size) {
        return real_of(file)->pMethods->xFileSize(real_of(file), size);
    }
    static int lock(sqlite3_file* file, int level) {
        return real_of(file)->pMethods->xLock(real_of(file), level);
    }
    static int unlock(sqlite3_file* file, int level) {
        return real_of(file)->pMethods->xUnlock(real_of(file), level);
    }
    static int check_lock(sqlite3_file* file, int* result) {
        return real_of(file)->pMethods->xCheckReservedLock(real_of(file), result);
    }
    static int control(sqlite3_file* file, int operation, void* argument) {
        return real_of(file)->pMethods->xFileControl(real_of(file), operation, argument);
    }
    static int sector_size(sqlite3_file* file) {
        return real_of(file)->pMethods->xSectorSize(real_of(file));
    }
    static int characteristics(sqlite3_file* file) {
        return real_of(file)->pMethods->xDeviceCharacteristics(real_of(file));
    }
    static int shm_map(sqlite3_file* file, int page, int size, int extend, void volatile** to) {
        return real_of(file)->pMethods->xShmMap(real_of(file), page, size, extend, to);
    }
    static int shm_lock(sqlite3_file* file, int offset, int count, int flags) {
        return real_of(file)->pMethods->xShmLock(real_of(file), offset, count, flags);
    }
    static void shm_barrier(sqlite3_file* file) {
        real_of(file)->pMethods->xShmBarrier(real_of(file));
    }
    static int shm_unmap(sqlite3_file* file, int remove_it) {
        return real_of(file)->pMethods->xShmUnmap(real_of(file), remove_it);
    }

    static constexpr sqlite3_io_methods methods = {2,
                                                   close,
                                                   read,
                                                   write,
                                                   truncate,
                                                   sync,
                                                   file_size,
                                                   lock,
                                                   unlock,
                                                   check_lock,
                                                   control,
                                                   sector_size,
                                                   characteristics,
                                                   shm_map,
                                                   shm_lock,
                                                   shm_barrier,
                                                   shm_unmap,
                                                   nullptr,
                                                   nullptr};

    sqlite3_vfs* real_ = nullptr;
    sqlite3_vfs shim_ = {};
    int calls_left_ = 0;
    bool from_then_on_ = false;
};

constexpr sqlite3_io_methods Disk::methods;

// ---- What is stored ----------------------------------------------------------------------------

void make_table(const std::string& path) {
    OtherProgram(path).run(
        "create table T (id INTEGER, nazwa TEXT, kwota CURRENCY);"
        "insert into T values (1, 'wiersz 1', 1.5)");
}

// Looks the row up and adds it if it is not there, as the writers of the library do.
void ensure_row(const std::shared_ptr<ado::Connection>& db, Long id) {
    const auto recordset = db->CreateRecordset();
    recordset->Open(u"select id, nazwa, kwota from T where id=" + ToText(id), db,
                    ado::CursorType::adOpenStatic, ado::LockType::adLockOptimistic, -1);
    if (recordset->IsEOF()) {
        recordset->AddNew();
        recordset->Fields(u"id").PutValue(id);
        recordset->Fields(u"nazwa").PutValue(u"wiersz " + ToText(id));
        recordset->Fields(u"kwota").PutValue(Currency::raw(id * 10'000 + 5'000));
        recordset->UpdateBatch(ado::Affect::adAffectCurrent);
    }
    recordset->Close();
}

// The rows that a file holds, each of which must be whole, and none twice.
Ids stored_rows(const std::string& path) {
    OtherProgram other(path);
    EXPECT_EQ(other.value("pragma integrity_check"), "ok");
    EXPECT_EQ(other.value("select count(*) from T where nazwa is not 'wiersz ' || id "
                          "or kwota is not id + 0.5"),
              "0");
    Ids ids;
    for (const auto& row : other.rows("select id from T")) {
        EXPECT_TRUE(ids.insert(std::stoi(row[0])).second) << row[0] << " is there twice";
    }
    return ids;
}

bool is_subset(const Ids& part, const Ids& whole) {
    return std::ranges::includes(whole, part);
}

bool is_number_of_a_disk(Long number) {
    const Long numbers[] = {3026, 3043, 3051};
    return std::ranges::find(numbers, number) != std::end(numbers);
}

struct Scenario {
    const char* name;
    bool new_file;  // filled through a write-ahead log
    bool from_then_on;
};

class SqliteFaults : public testing::TestWithParam<Scenario> {
  protected:
    // The file as each attempt finds it.
    std::string fresh_file() {
        disk.fail_at(0, false);
        for (const std::string& name : folder.names()) {
            std::filesystem::remove(folder / name);
        }
        const std::string path = folder / "firma.db";
        if (!GetParam().new_file) {
            make_table(path);
        }
        return path;
    }

    ConnectionPointer connected(const std::string& path) const {
        const bool exists = !GetParam().new_file;
        auto db = sqlite::connect(path, {.create = !exists, .busy_timeout_ms = 0});
        if (!exists && !db->table_exists(u"T")) {
            db->execute("create table T (id INTEGER, nazwa TEXT, kwota CURRENCY)");
        }
        return db;
    }

    TemporaryFolder folder;
    Disk disk;
};

INSTANTIATE_TEST_SUITE_P(Disk, SqliteFaults,
                         testing::Values(Scenario{"JournalOnce", false, false},
                                         Scenario{"JournalFromThenOn", false, true},
                                         Scenario{"LogOnce", true, false},
                                         Scenario{"LogFromThenOn", true, true}),
                         [](const auto& scenario) { return std::string(scenario.param.name); });

constexpr Long last_id = 5;

// Each operation of the disk fails in turn. A row is stored or its failure is told; what was stored
// stays; a run after the fault completes the table.
TEST_P(SqliteFaults, EveryOperationOfTheDisk) {
    for (int n = 1;; ++n) {
        SCOPED_TRACE("operation " + std::to_string(n));
        const std::string path = fresh_file();
        disk.fail_at(n, GetParam().from_then_on);
        Ids stored = GetParam().new_file ? Ids{} : Ids{1};
        Ids failed;
        const auto failure = caught([&] {
            const ConnectionPointer db = connected(path);
            for (Long id = 2; id <= last_id; ++id) {
                const auto row = caught([&] { ensure_row(db, id); });
                (row.number == 0 ? stored : failed).insert(id);
                EXPECT_TRUE(row.number == 0 || is_number_of_a_disk(row.number)) << row.text;
            }
        });
        EXPECT_TRUE(failure.number == 0 || is_number_of_a_disk(failure.number)) << failure.text;
        const bool has_failed = disk.failed > 0;
        disk.fail_at(0, false);

        if (!GetParam().new_file || !failed.empty() || stored.size() > 1) {
            // A failure when the journal is ended can come after the row is safe, so that a failed
            // row may be there; it is there as a whole then.
            Ids possible = stored;
            possible.insert(failed.begin(), failed.end());
            const Ids rows = stored_rows(path);
            EXPECT_TRUE(is_subset(stored, rows));
            EXPECT_TRUE(is_subset(rows, possible));
        }
        {
            const ConnectionPointer db = connected(path);
            for (Long id = 2; id <= last_id; ++id) {
                ensure_row(db, id);
            }
        }
        EXPECT_EQ(stored_rows(path),
                  GetParam().new_file ? Ids({2, 3, 4, 5}) : Ids({1, 2, 3, 4, 5}));
        if (!has_failed) {
            EXPECT_GT(n, 30);
            EXPECT_TRUE(failed.empty());
            break;
        }
    }
}

// The same inside a transaction, by a caller who goes on after a failure. What a commit has
// confirmed is stored, all of it; without its word the file is as it was, or all is stored.
TEST_P(SqliteFaults, EveryOperationOfTheDiskInATransaction) {
    int lost = 0;
    for (int n = 1;; ++n) {
        SCOPED_TRACE("operation " + std::to_string(n));
        const std::string path = fresh_file();
        const Ids before = GetParam().new_file ? Ids{} : Ids{1};
        Ids within = before;
        bool committed = false;
        ConnectionPointer db = connected(path);
        db->execute("pragma cache_size=1; pragma cache_spill=1");
        disk.fail_at(n, GetParam().from_then_on);
        const auto begin = caught([&] { db->BeginTrans(); });
        if (begin.number == 0) {
            for (Long id = 2; id <= last_id; ++id) {
                const auto row = caught([&] { ensure_row(db, id); });
                if (row.number == 0) {
                    within.insert(id);
                }
                lost += row.number == 3246 ? 1 : 0;
                EXPECT_TRUE(row.number == 0 || row.number == 3246 ||
                            is_number_of_a_disk(row.number))
                    << row.text;
            }
            const auto commit = caught([&] { db->CommitTrans(); });
            committed = commit.number == 0;
            EXPECT_TRUE(committed || commit.number == 3034 || is_number_of_a_disk(commit.number))
                << commit.text;
        }
        const bool has_failed = disk.failed > 0;
        disk.fail_at(0, false);
        db.reset();
        const Ids rows = stored_rows(path);
        if (committed) {
            EXPECT_EQ(rows, within);
        } else {
            EXPECT_TRUE(rows == before || rows == within);
        }
        if (!has_failed) {
            EXPECT_TRUE(committed);
            break;
        }
    }
    if (!GetParam().new_file && !GetParam().from_then_on) {
        EXPECT_GT(lost, 0) << "some failures make the engine roll back by itself";
    }
}

// ---- The loss of power -------------------------------------------------------------------------

// The rows in what a disk holds; nothing if the file is not there yet, or has no table yet.
Ids rows_after_power_loss(const Image& image, const std::string& name) {
    const TemporaryFolder folder;
    for (const auto& [path, bytes] : image) {
        write_file(folder / std::filesystem::path(path).filename().string(), bytes);
    }
    if (OtherProgram(folder / name).value("select count(*) from sqlite_schema") == "0") {
        return {};
    }
    return stored_rows(folder / name);
}

TEST_P(SqliteFaults, ARowThatIsStoredSurvivesTheLossOfPower) {
    const std::string path = fresh_file();
    disk.durable.clear();
    disk.durable[path] = file_bytes(path);
    const ConnectionPointer db = connected(path);
    Ids stored = GetParam().new_file ? Ids{} : Ids{1};
    disk.keeps_images = true;
    for (Long id = 2; id <= 40; ++id) {
        disk.images.clear();
        ensure_row(db, id);
        // At each moment on the way there are the rows before it, and at the end it is there too.
        for (const Image& image : disk.images) {
            const Ids rows = rows_after_power_loss(image, "firma.db");
            EXPECT_TRUE(is_subset(stored, rows));
        }
        EXPECT_FALSE(disk.images.empty());
        stored.insert(id);
        EXPECT_EQ(rows_after_power_loss(disk.durable, "firma.db"), stored);
    }
    disk.images.clear();
    db->Close();
    for (const Image& image : disk.images) {
        EXPECT_EQ(rows_after_power_loss(image, "firma.db"), stored);
    }
    EXPECT_EQ(rows_after_power_loss(disk.durable, "firma.db"), stored);
}

TEST_P(SqliteFaults, ATransactionSurvivesTheLossOfPowerAsAWhole) {
    const std::string path = fresh_file();
    disk.durable.clear();
    disk.durable[path] = file_bytes(path);
    const ConnectionPointer db = connected(path);
    const Ids before = GetParam().new_file ? Ids{} : Ids{1};
    Ids after = before;
    db->BeginTrans();
    const int syncs_before = disk.syncs;
    for (Long id = 2; id <= 40; ++id) {
        ensure_row(db, id);
        after.insert(id);
    }
    EXPECT_EQ(disk.syncs, syncs_before) << "the rows of a transaction do not wait for the disk";
    EXPECT_EQ(rows_after_power_loss(disk.durable, "firma.db"), before);
    disk.keeps_images = true;
    disk.images.clear();
    db->CommitTrans();
    for (const Image& image : disk.images) {
        const Ids rows = rows_after_power_loss(image, "firma.db");
        EXPECT_TRUE(rows == before || rows == after);
    }
    EXPECT_EQ(rows_after_power_loss(disk.durable, "firma.db"), after);
}

// ---- Faults at the seam ------------------------------------------------------------------------

// Each call of the library fails in turn; nothing of it reaches the file, and the next run goes
// through.
TEST(SqliteSeamFaults, EveryCall) {
    const char* operations[] = {"CreateRecordset", "Open",  "EOF",         "AddNew",
                                "Fields",          "Value", "UpdateBatch", "Recordset.Close"};
    for (const char* operation : operations) {
        for (const FaultSpan span : {FaultSpan::Once, FaultSpan::FromThenOn}) {
            const TemporaryFolder folder;
            make_table(folder / "firma.db");
            bool completed = false;
            for (Long n = 1; !completed; ++n) {
                const auto plan = std::make_shared<FaultPlan>();
                plan->fail_at(operation, n, span, 3197);
                const auto db = faulting(sqlite::connect(folder / "firma.db"), plan);
                Ids stored;
                const auto failure = caught([&] {
                    for (Long id = 1; id <= last_id; ++id) {
                        ensure_row(db, id);
                        stored.insert(id);
                    }
                });
                completed = failure.number == 0;
                EXPECT_EQ(failure.number, completed ? 0 : 3197);
                const Ids rows = stored_rows(folder / "firma.db");
                EXPECT_TRUE(is_subset(stored, rows));
                ASSERT_LT(n, 100);
            }
            EXPECT_EQ(stored_rows(folder / "firma.db"), Ids({1, 2, 3, 4, 5}));
        }
    }
}

}  // namespace
}  // namespace kvarta16
