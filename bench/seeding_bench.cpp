// The three statutory tables into an empty file on disk, each row durable by itself, beside a
// plain program that sends the same statements through prepared statements of the engine.
#include <filesystem>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/sqlite/sqlite_connection.h>
#include <kvarta16/statutory/Akt.h>
#include <kvarta16/statutory/interest_rows.h>
#include <kvarta16/statutory/mileage_rows.h>
#include <kvarta16/statutory/payroll_rows.h>

namespace {

using namespace kvarta16;

constexpr const char* schema =
    "create table S_PLACE_PARAMETRY (id SMALLINT, dataod DATETIME, wartosc CURRENCY, wartosc2 "
    "CURRENCY, wartosc3 CURRENCY, wartosc4 CURRENCY, wartosc5 CURRENCY, wartosc6 CURRENCY, "
    "wartosc7 CURRENCY, wartosc8 CURRENCY, wartosc9 CURRENCY, wartosc10 CURRENCY);"
    "create table S_StawkiKM (Dataod DATETIME, Ponizej900 BOOLEAN, wartosc_wsp4 CURRENCY);"
    "create table S_ODSETKI (Rodzaj SMALLINT, od_dnia DATETIME, procent CURRENCY);";

void check(bool good, const char* what) {
    if (!good) {
        throw std::runtime_error(what);
    }
}

// A name for a file that is not there yet, in the working folder; removed at the end.
class FreshFile {
  public:
    FreshFile() { remove(); }
    ~FreshFile() { remove(); }
    FreshFile(const FreshFile&) = delete;
    FreshFile& operator=(const FreshFile&) = delete;
    FreshFile(FreshFile&&) = delete;
    FreshFile& operator=(FreshFile&&) = delete;
    [[nodiscard]] static std::string path() {
        return (std::filesystem::current_path() / "kvarta16_bench.db").string();
    }

  private:
    static void remove() {
        for (const char* suffix : {"", "-journal", "-wal", "-shm"}) {
            std::filesystem::remove(path() + suffix);
        }
    }
};

void seeding_kvarta16(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        const FreshFile file;
        state.ResumeTiming();
        const auto db = sqlite::connect(FreshFile::path(), {.create = true});
        db->execute(schema);
        Akt akt;
        akt.Ustaw_Parametry_płacowe(db, false, true);
        akt.Ustaw_stawki_ryczałtu(db, false, true);
        akt.Ustaw_oDSETKI_uSTAWOWE(db, false, true);
        db->Close();
    }
}
BENCHMARK(seeding_kvarta16)->Unit(benchmark::kMillisecond)->UseRealTime();

// ---- The plain program ----------------------------------------------------------------------

class Statement {
  public:
    Statement(sqlite3* db, const char* sql) {
        check(sqlite3_prepare_v2(db, sql, -1, &statement_, nullptr) == SQLITE_OK, sql);
    }
    ~Statement() { sqlite3_finalize(statement_); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    Statement& text(int i, const std::string& value) {
        sqlite3_bind_text(statement_, i, value.c_str(), -1, SQLITE_TRANSIENT);
        return *this;
    }
    Statement& integer(int i, std::int64_t value) {
        sqlite3_bind_int64(statement_, i, value);
        return *this;
    }
    Statement& amount(int i, Currency value) {
        sqlite3_bind_double(statement_, i, static_cast<double>(value.count) / 10000);
        return *this;
    }
    // Runs it to its first row; its rowid in the first column, or 0 where there is no row.
    std::int64_t run() {
        const int result = sqlite3_step(statement_);
        check(result == SQLITE_ROW || result == SQLITE_DONE, "step");
        const std::int64_t row =
            result == SQLITE_ROW ? sqlite3_column_int64(statement_, 0) : std::int64_t{0};
        sqlite3_reset(statement_);
        return row;
    }

  private:
    sqlite3_stmt* statement_ = nullptr;
};

std::string day_text(Date date, int days) {
    return to_utf8(FormatMask(Date{date.days + days}, u"yyyy-MM-dd"));
}

void seed_payroll(sqlite3* db) {
    Statement find(db,
                   "select rowid, id, dataod, wartosc from S_PLACE_PARAMETRY where id = ? and "
                   "dataod >= ? and dataod < ?");
    Statement add(db, "insert into S_PLACE_PARAMETRY values (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
    const auto send = [&](const statutory::PayrollRow& row) {
        find.integer(1, row.id).text(2, day_text(row.dataod, 0)).text(3, day_text(row.dataod, 1));
        if (find.run() != 0) {
            return;
        }
        add.integer(1, row.id).text(2, day_text(row.dataod, 0) + " 00:00:00");
        for (std::size_t i = 0; i < row.wartosc.size(); ++i) {
            add.amount(static_cast<int>(i) + 3, row.wartosc[i]);
        }
        add.run();
    };
    for (const auto& row : statutory::payroll_rows_first) {
        send(row);
    }
    for (const auto& row : statutory::payroll_rows_second) {
        send(row);
    }
}

void seed_mileage(sqlite3* db) {
    Statement find(db,
                   "select rowid from S_StawkiKM where Ponizej900 = ? and Dataod >= ? and "
                   "Dataod < ?");
    Statement add(db, "insert into S_StawkiKM values (?, ?, ?)");
    for (const auto& row : statutory::mileage_rows) {
        find.integer(1, row.ponizej900.raw)
            .text(2, day_text(row.dataod, 0))
            .text(3, day_text(row.dataod, 1));
        if (find.run() == 0) {
            add.text(1, day_text(row.dataod, 0) + " 00:00:00")
                .integer(2, row.ponizej900.raw)
                .amount(3, row.wartosc_wsp4)
                .run();
        }
    }
}

void seed_interest(sqlite3* db) {
    Statement find(db,
                   "select rowid from S_ODSETKI where Rodzaj = ? and od_dnia >= ? and od_dnia < ? "
                   "limit 1");
    Statement add(db, "insert into S_ODSETKI values (?, ?, ?)");
    Statement change(db, "update S_ODSETKI set procent = ? where rowid = ?");
    for (const auto& row : statutory::interest_rows) {
        const std::int64_t found = find.integer(1, row.rodzaj)
                                       .text(2, day_text(row.od_dnia, 0))
                                       .text(3, day_text(row.od_dnia, 1))
                                       .run();
        if (found != 0) {
            change.amount(1, row.procent).integer(2, found).run();
        } else {
            add.integer(1, row.rodzaj)
                .text(2, day_text(row.od_dnia, 0) + " 00:00:00")
                .amount(3, row.procent)
                .run();
        }
    }
}

void seeding_plain_sqlite(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        const FreshFile file;
        state.ResumeTiming();
        sqlite3* db = nullptr;
        check(sqlite3_open(FreshFile::path().c_str(), &db) == SQLITE_OK, "open");
        check(sqlite3_exec(db, schema, nullptr, nullptr, nullptr) == SQLITE_OK, "schema");
        seed_payroll(db);
        seed_mileage(db);
        seed_interest(db);
        sqlite3_close(db);
    }
}
BENCHMARK(seeding_plain_sqlite)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
