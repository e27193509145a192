#include <algorithm>
#include <filesystem>
#include <new>
#include <utility>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/sqlite/sqlite_database.h>
#include <kvarta16/platform/sqlite/sqlite_errors.h>
#include <kvarta16/platform/sqlite/sqlite_functions.h>

namespace kvarta16::sqlite {
namespace {

constexpr std::size_t most_statements = 64;
constexpr std::size_t most_tables = 256;

// The engine gives some names a meaning of their own; behind a folder they are files.
std::string file_name(const std::string& path) {
    const bool special = path.starts_with(':') || path.starts_with("file:");
    return special ? "./" + path : path;
}

String text_in(const Cell& cell) {
    const auto* text = std::get_if<std::string>(&cell);
    return text != nullptr ? from_utf8(*text) : String();
}

std::string utf8_in(const Cell& cell) {
    const auto* text = std::get_if<std::string>(&cell);
    return text != nullptr ? *text : std::string();
}

std::int64_t number_in(const Cell& cell) {
    const auto* number = std::get_if<std::int64_t>(&cell);
    return number != nullptr ? *number : 0;
}

// The name of a row's hidden number that no column of the table bears.
std::vector<std::string> row_number_of(const Table& table) {
    for (const StringView name : {u"rowid", u"_rowid_", u"oid"}) {
        if (find_name(table.columns, name) == table.columns.end()) {
            return {to_utf8(name)};
        }
    }
    return {};
}

// Ends the run of a statement, so that it holds no lock.
class Running {
  public:
    explicit Running(sqlite3_stmt* statement) noexcept : statement_(statement) {}
    ~Running() {
        sqlite3_reset(statement_);
        sqlite3_clear_bindings(statement_);  // they point to values that go away
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    Running(Running&&) = delete;
    Running& operator=(Running&&) = delete;

  private:
    sqlite3_stmt* statement_;
};

int bind_cell(sqlite3_stmt* statement, int index, const Cell& cell) {
    if (const auto* whole = std::get_if<std::int64_t>(&cell)) {
        return sqlite3_bind_int64(statement, index, *whole);
    }
    if (const auto* real = std::get_if<double>(&cell)) {
        return sqlite3_bind_double(statement, index, *real);
    }
    if (const auto* text = std::get_if<std::string>(&cell)) {
        return sqlite3_bind_text64(statement, index, text->data(), text->size(), SQLITE_STATIC,
                                   SQLITE_UTF8);
    }
    if (const auto* blob = std::get_if<Blob>(&cell)) {
        return sqlite3_bind_blob64(statement, index, blob->bytes.data(), blob->bytes.size(),
                                   SQLITE_STATIC);
    }
    return sqlite3_bind_null(statement, index);
}

}  // namespace

bool is_own_name(StringView name) {
    constexpr StringView engine_prefix = u"sqlite_";
    return same_name(name.substr(0, engine_prefix.size()), engine_prefix) ||
           std::ranges::any_of(own_names, [name](StringView own) { return same_name(name, own); });
}

// ---- Opening and closing -----------------------------------------------------------------------

void Database::HandleDeleter::operator()(sqlite3* db) const noexcept {
    sqlite3_close(db);
}

Database::Database(std::string_view path, const OpenOptions& options) : path_(path) {
    if (path.empty() || path.find('\0') != std::string_view::npos) {
        fail_about(error_invalid_path, u"This is no path of a file", from_utf8(path));
    }
    std::error_code ignored;  // a path that cannot be looked at fails as the engine opens it
    if (std::filesystem::is_directory(path_, ignored)) {
        fail_about(error_cannot_open, u"This is a folder and no file", from_utf8(path));
    }
    open(options);
    set_up(options);
}

Database::~Database() {
    statements_.clear();
    if (!sqlite3_get_autocommit(db_.get())) {
        sqlite3_exec(db_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
    if (takes_journal_back_) {
        // Deletes the empty journal, or ends the log. Where another program is using the file just
        // now they stay, and do no harm.
        sqlite3_busy_timeout(db_.get(), 0);
        sqlite3_exec(db_.get(), "PRAGMA journal_mode=DELETE", nullptr, nullptr, nullptr);
    }
}

void Database::open(const OpenOptions& options) {
    const int access = options.read_only ? SQLITE_OPEN_READONLY
                       : options.create  ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE
                                         : SQLITE_OPEN_READWRITE;
    sqlite3* db = nullptr;
    // One thread uses a connection, so the engine need not lock it.
    const int code =
        sqlite3_open_v2(file_name(path_).c_str(), &db, access | SQLITE_OPEN_NOMUTEX, nullptr);
    db_.reset(db);  // also after a failure, for its message
    if (db == nullptr) {
        fail_with(SQLITE_NOMEM, sqlite3_errstr(SQLITE_NOMEM), path_);
    }
    if (code != SQLITE_OK) {
        const bool may_create = options.create && !options.read_only;
        fail_to_open(code, sqlite3_errmsg(db), may_create, path_);
    }
}

void Database::set_up(const OpenOptions& options) {
    sqlite3* db = db_.get();
    sqlite3_extended_result_codes(db, 1);
    sqlite3_busy_timeout(db, options.busy_timeout_ms);
    // A name in quotes is never a text, and a plan does not change with the values bound.
    sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    sqlite3_db_config(db, SQLITE_DBCONFIG_ENABLE_QPSG, 1, nullptr);
    if (const int code = register_functions(db); code != SQLITE_OK) {
        fail_now(code);
    }
    // Reads the header and the tables: what is no database fails here.
    run_plain("SELECT count(*) FROM sqlite_schema");
    // Synced with the folder it stands in: a row that is stored survives the loss of power.
    run_plain("PRAGMA synchronous=EXTRA");
}

bool Database::has_rollback_journal() {
    const Rows mode = run("PRAGMA journal_mode");
    return mode.count() == 1 && mode.cells[0] == Cell(std::string("delete"));
}

// Each row that is stored waits for the disk: five times with a rollback journal, once with a
// write-ahead log. A file that is still empty is therefore filled through a log; any other one
// keeps its way, with the journal emptied and not deleted, which is the faster of two equally
// safe ones and leaves no trace in the file. The destructor takes both back.
void Database::choose_journal() {
    if (journal_is_chosen_ || sqlite3_db_readonly(db_.get(), "main") != 0) {
        return;
    }
    if (has_rollback_journal()) {
        if (run("PRAGMA page_count").cells.at(0) == Cell(std::int64_t{0})) {
            // Fails where the file system or another user of the file does not allow it.
            sqlite3_exec(db_.get(), "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
        }
        if (has_rollback_journal()) {
            run_plain("PRAGMA journal_mode=TRUNCATE");
        }
        takes_journal_back_ = true;
    }
    journal_is_chosen_ = true;
}

void Database::fail_now(int code, StringView table) const {
    std::string place = to_utf8(table);
    place.append(table.empty() ? "" : ", ").append(path_);
    fail_with(code, sqlite3_errmsg(db_.get()), place);
}

// ---- Statements --------------------------------------------------------------------------------

Database::Statement* Database::prepare(const std::string& sql, int& code) {
    code = SQLITE_OK;
    if (const auto found = statements_by_sql_.find(sql); found != statements_by_sql_.end()) {
        statements_.splice(statements_.begin(), statements_, found->second);
        return &statements_.front();
    }
    sqlite3_stmt* handle = nullptr;
    code = sqlite3_prepare_v3(db_.get(), sql.data(), static_cast<int>(sql.size()),
                              SQLITE_PREPARE_PERSISTENT, &handle, nullptr);
    if (code != SQLITE_OK) {
        return nullptr;
    }
    statements_.push_front({sql, StatementHandle(handle), 0});
    statements_by_sql_.emplace(statements_.front().sql, statements_.begin());
    if (statements_.size() > most_statements) {
        statements_by_sql_.erase(statements_.back().sql);
        statements_.pop_back();
    }
    return &statements_.front();
}

int Database::step_through(Statement& statement, std::span<const Cell> parameters, Rows& rows) {
    sqlite3_stmt* handle = statement.handle.get();
    const Running running(handle);
    int index = 0;
    for (const Cell& parameter : parameters) {
        if (const int code = bind_cell(handle, ++index, parameter); code != SQLITE_OK) {
            return code;
        }
    }
    int code = sqlite3_step(handle);
    // Behind the first step: the engine may have prepared the statement again, with other columns.
    const int width = sqlite3_column_count(handle);
    rows.width = static_cast<std::size_t>(width);
    for (; code == SQLITE_ROW; code = sqlite3_step(handle)) {
        for (int i = 0; i < width; ++i) {
            rows.cells.push_back(cell_of(sqlite3_column_value(handle, i)));
        }
    }
    return code;
}

Rows Database::run(const std::string& sql, std::span<const Cell> parameters, StringView table) {
    int code = SQLITE_OK;
    Rows rows;
    if (Statement* statement = prepare(sql, code)) {
        code = step_through(*statement, parameters, rows);
    }
    if (code != SQLITE_DONE) {
        fail_now(code, table);
    }
    return rows;
}

void Database::run_plain(const char* sql) {
    if (const int code = sqlite3_exec(db_.get(), sql, nullptr, nullptr, nullptr);
        code != SQLITE_OK) {
        fail_now(code);
    }
}

std::optional<Rows> Database::try_query(const std::string& sql, std::span<const Cell> parameters,
                                        StringView table, bool last_attempt) {
    int code = SQLITE_OK;
    Rows rows;
    if (Statement* statement = prepare(sql, code)) {
        code = step_through(*statement, parameters, rows);
        const int again =
            sqlite3_stmt_status(statement->handle.get(), SQLITE_STMTSTATUS_REPREPARE, 0);
        if (code == SQLITE_DONE && again == statement->times_prepared_again) {
            return rows;
        }
    }
    // A name that was known may be gone, or the columns may be others now.
    const bool may_be_outdated = code == SQLITE_DONE || code == SQLITE_ERROR;
    if (last_attempt || !may_be_outdated) {
        fail_now(code == SQLITE_DONE ? SQLITE_SCHEMA : code, table);
    }
    forget_tables();
    return std::nullopt;
}

Rows Database::write(const std::string& sql, std::span<const Cell> parameters, StringView table) {
    require_no_lost_transaction();
    choose_journal();
    return run(sql, parameters, table);
}

void Database::execute(std::string_view sql) {
    if (sql.find('\0') != std::string_view::npos) {
        fail_about(error_syntax, u"A character of the statement has the code 0", from_utf8(path_));
    }
    require_no_lost_transaction();
    choose_journal();
    forget_tables();
    while (!sql.empty()) {
        sqlite3_stmt* handle = nullptr;
        const char* rest = nullptr;
        int code =
            sqlite3_prepare_v2(db_.get(), sql.data(), static_cast<int>(sql.size()), &handle, &rest);
        const StatementHandle statement(handle);
        while (handle != nullptr && (code = sqlite3_step(handle)) == SQLITE_ROW) {
        }
        if (code != SQLITE_OK && code != SQLITE_DONE) {
            fail_now(code);
        }
        // After each one: a later one may fail, and what BEGIN has begun is open nevertheless.
        in_transaction_ = sqlite3_get_autocommit(db_.get()) == 0;
        sql.remove_prefix(static_cast<std::size_t>(rest - sql.data()));
    }
}

// ---- Changes -----------------------------------------------------------------------------------

void Database::change(const std::function<void()>& body) {
    require_no_lost_transaction();
    choose_journal();
    const bool within = in_transaction_;
    run_plain(within ? "SAVEPOINT kvarta16_change" : "BEGIN IMMEDIATE");
    try {
        static_cast<void>(forget_outdated_tables());
        body();
        run_plain(within ? "RELEASE kvarta16_change" : "COMMIT");
    } catch (...) {
        undo_change(within);
        throw;
    }
}

// Where the engine has rolled back by itself there is nothing left to undo.
void Database::undo_change(bool within) {
    sqlite3* db = db_.get();
    if (sqlite3_get_autocommit(db) == 0) {
        sqlite3_exec(db,
                     within ? "ROLLBACK TO kvarta16_change;RELEASE kvarta16_change" : "ROLLBACK",
                     nullptr, nullptr, nullptr);
    }
    // What the engine knows of the tables is read anew, for put_table_text() goes past it.
    sqlite3_db_config(db, SQLITE_DBCONFIG_WRITABLE_SCHEMA, 0, nullptr);
    sqlite3_exec(db, "PRAGMA writable_schema=RESET", nullptr, nullptr, nullptr);
    forget_tables();
}

void Database::define(const std::string& sql, StringView table) {
    const int code = sqlite3_exec(db_.get(), sql.c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) {
        fail_now(code, table);
    }
    forget_tables();
}

// The engine's own documentation gives these steps for changes that leave the rows alone.
void Database::put_table_text(const Table& table, const std::string& sql) {
    const auto version = std::get<std::int64_t>(schema_version());
    const Cell parameters[] = {sql, to_utf8(table.name)};
    sqlite3_db_config(db_.get(), SQLITE_DBCONFIG_DEFENSIVE, 0, nullptr);
    sqlite3_db_config(db_.get(), SQLITE_DBCONFIG_WRITABLE_SCHEMA, 1, nullptr);
    run("UPDATE sqlite_schema SET sql=?1 WHERE type='table' AND name=?2", parameters, table.name);
    run_plain(("PRAGMA schema_version=" + std::to_string(version + 1)).c_str());
    run_plain("PRAGMA writable_schema=RESET");
    forget_tables();
    // Reads the text that was put: one that the engine does not take fails here.
    const auto changed = find_table(table.name);
    const bool same = changed != nullptr && std::ranges::equal(changed->columns, table.columns, {},
                                                               &Column::name, &Column::name);
    if (!same) {
        fail_with(SQLITE_CORRUPT, "the columns are not the same", to_utf8(table.name));
    }
}

std::string Database::table_text(const Table& table) {
    const Cell parameters[] = {to_utf8(table.name)};
    const Rows rows =
        run("SELECT sql FROM sqlite_schema WHERE type='table' AND name=?1", parameters, table.name);
    return rows.cells.empty() ? std::string() : utf8_in(rows.cells.front());
}

// ---- Tables ------------------------------------------------------------------------------------

std::shared_ptr<const Table> Database::find_table(StringView name) {
    if (const auto found = tables_.find(String(name)); found != tables_.end()) {
        return found->second;
    }
    if (tables_.empty()) {
        tables_version_ = schema_version();
    }
    std::shared_ptr<const Table> table = read_table(name);
    if (table != nullptr) {
        if (tables_.size() >= most_tables) {
            tables_.clear();
        }
        tables_.emplace(name, table);
    }
    return table;
}

std::shared_ptr<const Table> Database::read_table(StringView name) {
    struct Listed {
        String name;
        std::span<const Cell> row;  // name, type, whether without rowid, whether strict
    };
    Rows listed = run("SELECT name, type, wr, strict FROM pragma_table_list WHERE schema='main'");
    std::vector<Listed> tables;
    for (std::size_t i = 0; i < listed.count(); ++i) {
        tables.push_back({text_in(listed.row(i)[0]), listed.row(i)});
    }
    const auto found = find_name(tables, name);
    if (found == tables.end()) {
        return nullptr;
    }
    const auto table = std::make_shared<Table>();
    table->name = found->name;
    table->is_view = utf8_in(found->row[1]) == "view";
    table->sql = "main." + quoted_name(utf8_in(found->row[0]));
    const bool without_rowid = number_in(found->row[2]) != 0;
    read_columns(*table, found->row[0], number_in(found->row[3]) != 0);
    if (!without_rowid) {
        table->key = table->is_view ? std::vector<std::string>() : row_number_of(*table);
    }
    return table;
}

// The columns, and the primary key as the table's key.
void Database::read_columns(Table& table, const Cell& name, bool strict) {
    const Cell parameters[] = {name};
    Rows listed =
        run("SELECT name, type, pk, dflt_value FROM pragma_table_xinfo(?1, 'main') WHERE hidden<>1 "
            "ORDER BY cid",
            parameters);
    for (std::size_t i = 0; i < listed.count(); ++i) {
        const auto row = listed.row(i);
        const std::string type = utf8_in(row[1]);
        Column column{text_in(row[0]),           quoted_name(utf8_in(row[0])), kind_of(type),
                      affinity_of(type, strict), type_of_declaration(type),    utf8_in(row[3])};
        if (number_in(row[2]) > 0) {
            table.key.push_back(column.sql);
        }
        table.columns.push_back(std::move(column));
    }
}

std::vector<String> Database::table_names() {
    const Rows listed =
        run("SELECT name FROM pragma_table_list WHERE schema='main' AND type='table'");
    std::vector<String> names;
    for (const Cell& cell : listed.cells) {
        String name = text_in(cell);
        if (!is_own_name(name)) {
            names.push_back(std::move(name));
        }
    }
    return names;
}

Cell Database::schema_version() {
    return run("PRAGMA schema_version").cells.at(0);
}

bool Database::forget_outdated_tables() {
    if (tables_.empty() || schema_version() == tables_version_) {
        return false;
    }
    forget_tables();
    return true;
}

void Database::forget_tables() {
    tables_.clear();
    statements_by_sql_.clear();
    statements_.clear();
}

// ---- Transactions ------------------------------------------------------------------------------

// Some failures (a full disk, an error of the disk) make the engine roll back by itself. What is
// written after that would be stored although the caller believes it part of the transaction.
bool Database::transaction_is_lost() const {
    return in_transaction_ && sqlite3_get_autocommit(db_.get()) != 0;
}

void Database::require_no_lost_transaction() const {
    if (transaction_is_lost()) {
        fail_about(
            error_in_transaction,
            u"The transaction was rolled back after an earlier failure; RollbackTrans ends it",
            from_utf8(path_));
    }
}

void Database::begin() {
    if (in_transaction_) {
        fail_about(error_in_transaction,
                   u"A transaction is open already, and there is none within another",
                   from_utf8(path_));
    }
    choose_journal();
    run_plain("BEGIN IMMEDIATE");  // takes the lock for writing now, and not in the middle
    in_transaction_ = true;
}

void Database::commit() {
    if (!in_transaction_) {
        fail_about(error_no_transaction, u"There is no transaction to commit", from_utf8(path_));
    }
    if (transaction_is_lost()) {
        in_transaction_ = false;
        fail_about(error_no_transaction,
                   u"The transaction was rolled back after an earlier failure", from_utf8(path_));
    }
    run_plain("COMMIT");
    in_transaction_ = false;
}

void Database::rollback() {
    if (!in_transaction_) {
        fail_about(error_no_transaction, u"There is no transaction to roll back", from_utf8(path_));
    }
    if (!transaction_is_lost()) {
        run_plain("ROLLBACK");
    }
    in_transaction_ = false;
    forget_tables();
}

}  // namespace kvarta16::sqlite
