#include <chrono>
#include <csignal>
#include <stdexcept>
#include <thread>

#include <sqlite3.h>
#include <support/sqlite_files.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kvarta16::testing_support {

OtherProgram::OtherProgram(const std::string& path) {
    // The system's own files, whatever a test has put between them and the adapter.
    constexpr int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    if (sqlite3_open_v2(path.c_str(), &db_, flags, "unix") != SQLITE_OK) {
        fail();
    }
    sqlite3_busy_timeout(db_, 5000);
}

OtherProgram::~OtherProgram() {
    sqlite3_close(db_);
}

std::vector<std::vector<std::string>> OtherProgram::rows(const std::string& sql) {
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

void OtherProgram::run(const std::string& sql) {
    static_cast<void>(rows(sql));
}

std::string OtherProgram::value(const std::string& sql) {
    const auto found = rows(sql);
    return found.empty() ? "" : found.front().front();
}

void OtherProgram::fail() const {
    throw std::runtime_error(sqlite3_errmsg(db_));
}

EngineProbe::EngineProbe() {
    current() = this;
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(&EngineProbe::connected));
}

EngineProbe::~EngineProbe() {
    sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(&EngineProbe::connected));
    current() = nullptr;
}

int EngineProbe::prepared(int action, const std::string& table) const {
    const auto found = prepared_.find({action, table});
    return found == prepared_.end() ? 0 : found->second;
}

bool EngineProbe::any_statement_runs() const {
    bool any = false;
    for (sqlite3_stmt* s = sqlite3_next_stmt(db_, nullptr); s != nullptr;
         s = sqlite3_next_stmt(db_, s)) {
        any = any || sqlite3_stmt_busy(s) != 0;
    }
    return any;
}

int EngineProbe::statements() const {
    int count = 0;
    for (sqlite3_stmt* s = sqlite3_next_stmt(db_, nullptr); s != nullptr;
         s = sqlite3_next_stmt(db_, s)) {
        ++count;
    }
    return count;
}

EngineProbe*& EngineProbe::current() {
    static EngineProbe* probe = nullptr;
    return probe;
}

int EngineProbe::connected(sqlite3* db, const char**, const void*) {
    current()->db_ = db;
    return sqlite3_set_authorizer(db, &EngineProbe::prepares, current());
}

int EngineProbe::prepares(void* probe, int action, const char* table, const char*, const char*,
                          const char*) {
    ++static_cast<EngineProbe*>(probe)->prepared_[{action, table != nullptr ? table : ""}];
    return SQLITE_OK;
}

LockingProcess::LockingProcess(const std::string& path, const std::string& sql, int hold_ms) {
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

LockingProcess::~LockingProcess() {
    kill(child_, SIGKILL);
    int status = 0;
    waitpid(child_, &status, 0);
}

}  // namespace kvarta16::testing_support
