// What the tests on real SQLite files share: a folder that goes away with the test, and the engine
// itself as another program would use it, to look at what the adapter has stored and to store what
// the adapter has to read.
//
//   const TemporaryFolder folder;
//   const auto db = sqlite::connect(folder / "firma.db", {.create = true});
//   OtherProgram other(folder / "firma.db");
//   EXPECT_EQ(other.value("select count(*) from S_ODSETKI"), "86");
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include <sqlite3.h>
#include <support/temporary_folder.h>
#include <sys/types.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/types.h>

namespace kvarta16::testing_support {

// The engine without the adapter. Everything that fails throws std::runtime_error with its message.
class OtherProgram {
  public:
    explicit OtherProgram(const std::string& path);
    ~OtherProgram();
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;
    OtherProgram(OtherProgram&&) = delete;
    OtherProgram& operator=(OtherProgram&&) = delete;

    // The rows of a statement as the engine writes its values; a NULL is "NULL". Several
    // statements may stand one behind the other.
    std::vector<std::vector<std::string>> rows(const std::string& sql);
    void run(const std::string& sql);

    // The first value of the first row; "" if there is none.
    std::string value(const std::string& sql);

  private:
    [[noreturn]] void fail() const;

    sqlite3* db_ = nullptr;
};

// Looks into the connections that the adapter opens while this lives: the engine's handle of the
// last one, and how often a statement of each action on each table was prepared.
class EngineProbe {
  public:
    EngineProbe();
    ~EngineProbe();
    EngineProbe(const EngineProbe&) = delete;
    EngineProbe& operator=(const EngineProbe&) = delete;
    EngineProbe(EngineProbe&&) = delete;
    EngineProbe& operator=(EngineProbe&&) = delete;

    [[nodiscard]] sqlite3* db() const { return db_; }

    // How many statements with an INSERT, UPDATE or read (SQLITE_...) on a table were prepared. A
    // read counts once for each column.
    [[nodiscard]] int prepared(int action, const std::string& table) const;

    // Whether a statement of the connection still runs, and with it its lock on the file.
    [[nodiscard]] bool any_statement_runs() const;
    [[nodiscard]] int statements() const;

  private:
    static EngineProbe*& current();
    static int connected(sqlite3* db, const char**, const void*);
    static int prepares(void* probe, int action, const char* table, const char*, const char*,
                        const char*);

    sqlite3* db_ = nullptr;
    std::map<std::pair<int, std::string>, int> prepared_;
};

// The number and the text of the failure that a call ends with; number 0 if it does not fail.
struct Caught {
    Long number = 0;
    std::string text;
};
template <class Call>
Caught caught(Call&& call) {
    try {
        std::forward<Call>(call)();
    } catch (const Failure& failure) {
        return {failure.number(), failure.what()};
    }
    return {};
}

// Another process that holds the file locked until it is told to let go.
class LockingProcess {
  public:
    LockingProcess(const std::string& path, const std::string& sql, int hold_ms = 60'000);
    ~LockingProcess();
    LockingProcess(const LockingProcess&) = delete;
    LockingProcess& operator=(const LockingProcess&) = delete;
    LockingProcess(LockingProcess&&) = delete;
    LockingProcess& operator=(LockingProcess&&) = delete;

  private:
    pid_t child_ = -1;
};

}  // namespace kvarta16::testing_support
