// What the tests on real SQLite files share: a folder that goes away with the test, and the engine
// itself as another program would use it, to look at what the adapter has stored and to store what
// the adapter has to read.
//
//   const TemporaryFolder folder;
//   const auto db = sqlite::connect(folder / "firma.db", {.create = true});
//   OtherProgram other(folder / "firma.db");
//   EXPECT_EQ(other.value("select count(*) from S_ODSETKI"), "86");
#pragma once

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/types.h>

namespace kvarta16::testing_support {

// In memory where the system has a folder for it: the tests sync thousands of rows, and nothing
// that they examine depends on the disk.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::error_code ignored;
        const std::filesystem::path memory = "/dev/shm";
        const bool has_memory = std::filesystem::is_directory(memory, ignored);
        const auto parent = has_memory ? memory : std::filesystem::temp_directory_path();
        std::string name = (parent / "kvarta16-test-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no temporary folder " + name);
        }
        path_ = name;
    }
    ~TemporaryFolder() {
        std::error_code ignored;  // what cannot be removed stays, and the test has its result
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    TemporaryFolder(TemporaryFolder&&) = delete;
    TemporaryFolder& operator=(TemporaryFolder&&) = delete;

    // The path of a file in the folder.
    std::string operator/(std::string_view name) const { return (path_ / name).string(); }
    [[nodiscard]] std::string path() const { return path_.string(); }

    // The names of the files in it, in order.
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(path_)) {
            found.push_back(entry.path().filename().string());
        }
        std::sort(found.begin(), found.end());
        return found;
    }

  private:
    std::filesystem::path path_;
};

inline std::string file_bytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void write_file(const std::string& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

// The engine without the adapter. Everything that fails throws std::runtime_error with its message.
class OtherProgram {
  public:
    explicit OtherProgram(const std::string& path) {
        // The system's own files, whatever a test has put between them and the adapter.
        constexpr int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
        if (sqlite3_open_v2(path.c_str(), &db_, flags, "unix") != SQLITE_OK) {
            fail();
        }
        sqlite3_busy_timeout(db_, 5000);
    }
    ~OtherProgram() { sqlite3_close(db_); }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;
    OtherProgram(OtherProgram&&) = delete;
    OtherProgram& operator=(OtherProgram&&) = delete;

    // The rows of a statement as the engine writes its values; a NULL is "NULL". Several
    // statements may stand one behind the other.
    std::vector<std::vector<std::string>> rows(const std::string& sql) {
        std::vector<std::vector<std::string>> found;
        const auto add = [](void* to, int count, char** values, char**) {
            std::vector<std::string> row;
            for (int i = 0; i < count; ++i) {
                row.emplace_back(values[i] != nullptr ? values[i] : "NULL");
            }
            static_cast<std::vector<std::vector<std::string>>*>(to)->push_back(std::move(row));
            return 0;
        };
        if (sqlite3_exec(db_, sql.c_str(), add, &found, nullptr) != SQLITE_OK) {
            fail();
        }
        return found;
    }
    void run(const std::string& sql) { static_cast<void>(rows(sql)); }

    // The first value of the first row; "" if there is none.
    std::string value(const std::string& sql) {
        const auto found = rows(sql);
        return found.empty() ? "" : found.front().front();
    }

  private:
    [[noreturn]] void fail() const { throw std::runtime_error(sqlite3_errmsg(db_)); }

    sqlite3* db_ = nullptr;
};

// Looks into the connections that the adapter opens while this lives: the engine's handle of the
// last one, and how often a statement of each action on each table was prepared.
class EngineProbe {
  public:
    EngineProbe() {
        current() = this;
        sqlite3_auto_extension(reinterpret_cast<void (*)()>(&EngineProbe::connected));
    }
    ~EngineProbe() {
        sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(&EngineProbe::connected));
        current() = nullptr;
    }
    EngineProbe(const EngineProbe&) = delete;
    EngineProbe& operator=(const EngineProbe&) = delete;
    EngineProbe(EngineProbe&&) = delete;
    EngineProbe& operator=(EngineProbe&&) = delete;

    [[nodiscard]] sqlite3* db() const { return db_; }

    // How many statements with an INSERT, UPDATE or read (SQLITE_...) on a table were prepared. A
    // read counts once for each column.
    [[nodiscard]] int prepared(int action, const std::string& table) const {
        const auto found = prepared_.find({action, table});
        return found == prepared_.end() ? 0 : found->second;
    }

    // Whether a statement of the connection still runs, and with it its lock on the file.
    [[nodiscard]] bool any_statement_runs() const {
        bool any = false;
        for (sqlite3_stmt* s = sqlite3_next_stmt(db_, nullptr); s != nullptr;
             s = sqlite3_next_stmt(db_, s)) {
            any = any || sqlite3_stmt_busy(s) != 0;
        }
        return any;
    }
    [[nodiscard]] int statements() const {
        int count = 0;
        for (sqlite3_stmt* s = sqlite3_next_stmt(db_, nullptr); s != nullptr;
             s = sqlite3_next_stmt(db_, s)) {
            ++count;
        }
        return count;
    }

  private:
    static EngineProbe*& current() {
        static EngineProbe* probe = nullptr;
        return probe;
    }
    static int connected(sqlite3* db, const char**, const void*) {
        current()->db_ = db;
        return sqlite3_set_authorizer(db, &EngineProbe::prepares, current());
    }
    static int prepares(void* probe, int action, const char* table, const char*, const char*,
                        const char*) {
        ++static_cast<EngineProbe*>(probe)->prepared_[{action, table != nullptr ? table : ""}];
        return SQLITE_OK;
    }

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
    LockingProcess(const std::string& path, const std::string& sql, int hold_ms = 60'000) {
        int ready[2];
        if (pipe(ready) != 0) {
            throw std::runtime_error("no pipe");
        }
        child_ = ::fork();
        if (child_ == 0) {
            OtherProgram other(path);
            other.run(sql);
            const char done = 1;
            const bool told = write(ready[1], &done, 1) == 1;
            std::this_thread::sleep_for(std::chrono::milliseconds(hold_ms));
            if (told) {
                other.run("commit");
            }
            _exit(0);
        }
        char done = 0;
        const bool is_ready = child_ > 0 && read(ready[0], &done, 1) == 1;
        close(ready[0]);
        close(ready[1]);
        if (!is_ready) {
            throw std::runtime_error("the locking process has not started");
        }
    }
    ~LockingProcess() {
        kill(child_, SIGKILL);
        int status = 0;
        waitpid(child_, &status, 0);
    }
    LockingProcess(const LockingProcess&) = delete;
    LockingProcess& operator=(const LockingProcess&) = delete;
    LockingProcess(LockingProcess&&) = delete;
    LockingProcess& operator=(LockingProcess&&) = delete;

  private:
    pid_t child_ = -1;
};

}  // namespace kvarta16::testing_support
