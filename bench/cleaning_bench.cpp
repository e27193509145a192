// Cleaning a database file of a million rows whose columns are all Null, and once more when nothing
// is left to do, beside a plain program that sends the same replacements to the engine.
#include <filesystem>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <kvarta16/database/ClsCzyscBazeDAO.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/platform.h>

namespace {

using namespace kvarta16;
namespace fs = std::filesystem;

constexpr const char* rows =
    "with recursive n(i) as (select 1 union all select i + 1 from n where i < 1000000) "
    "insert into TOWARY (NR) select i from n";
constexpr const char* replacements[] = {
    "update TOWARY set CENA=0 where CENA is null",
    "update TOWARY set STAN=0 where STAN is null",
    "update TOWARY set OPIS='' where OPIS is null",
};

// The five seconds that follow a cleaning are no part of its work.
class NoPause final : public Sleeper {
  public:
    void Sleep(Long /*milliseconds*/) override {}
};

void run_plain(const std::string& path, const char* const* first, const char* const* last) {
    sqlite3* db = nullptr;
    int status = sqlite3_open(path.c_str(), &db);
    for (; status == SQLITE_OK && first != last; ++first) {
        status = sqlite3_exec(db, *first, nullptr, nullptr, nullptr);
    }
    sqlite3_close(db);
    if (status != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errstr(status));
    }
}

// The file as it is before a cleaning, made once a program run; each copy of it is removed.
class Uncleaned {
  public:
    Uncleaned() {
        fs::create_directories(folder());
        const fs::path made = folder() / "made.db";
        if (!fs::exists(made)) {
            const String path = u"Z:" + from_utf8(made.string());
            const auto db = platform().db_engine->CreateDatabase(path, u"");
            db->Execute(
                u"create table [TOWARY] ([NR] LONG, [CENA] CURRENCY, [STAN] DOUBLE, "
                u"[OPIS] TEXT(50))");
            db->Close();
            run_plain(made.string(), &rows, &rows + 1);
        }
        fs::copy_file(made, path(), fs::copy_options::overwrite_existing);
    }
    ~Uncleaned() { fs::remove(path()); }
    Uncleaned(const Uncleaned&) = delete;
    Uncleaned& operator=(const Uncleaned&) = delete;
    Uncleaned(Uncleaned&&) = delete;
    Uncleaned& operator=(Uncleaned&&) = delete;

    [[nodiscard]] static fs::path path() { return folder() / "copy.db"; }
    static void remove_all() { fs::remove_all(folder()); }

  private:
    [[nodiscard]] static fs::path folder() { return fs::current_path() / "kvarta16_cleaning"; }
};

void clean() {
    static NoPause no_pause;
    Platform quick = platform();
    quick.sleeper = &no_pause;
    const ScopedPlatform scope(quick);
    ClsCzyśćBazęDAO().CZYŚĆ_BAZĘ(u"Z:" + from_utf8(Uncleaned::path().string()), false, false, u"");
}

void cleaning_kvarta16(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        const Uncleaned file;
        state.ResumeTiming();
        clean();
    }
    Uncleaned::remove_all();
}
BENCHMARK(cleaning_kvarta16)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

void cleaning_again_kvarta16(benchmark::State& state) {
    {
        const Uncleaned file;
        clean();
        for (auto _ : state) {
            clean();
        }
    }
    Uncleaned::remove_all();
}
BENCHMARK(cleaning_again_kvarta16)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

void cleaning_plain_sqlite(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        const Uncleaned file;
        state.ResumeTiming();
        run_plain(Uncleaned::path().string(), std::begin(replacements), std::end(replacements));
    }
    Uncleaned::remove_all();
}
BENCHMARK(cleaning_plain_sqlite)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

}  // namespace
