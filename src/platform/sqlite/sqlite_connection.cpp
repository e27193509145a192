#include <kvarta16/platform/sqlite/dao_objects.h>
#include <kvarta16/platform/sqlite/jet_statements.h>
#include <kvarta16/platform/sqlite/sqlite_connection.h>
#include <kvarta16/platform/sqlite/sqlite_errors.h>
#include <kvarta16/platform/sqlite/sqlite_file_connection.h>
#include <kvarta16/platform/sqlite/sqlite_recordset.h>

namespace kvarta16::sqlite {

FileConnection::FileConnection(std::string_view path, const OpenOptions& options)
    : database_(std::make_shared<sqlite::Database>(path, options)) {}

std::shared_ptr<ado::Recordset> FileConnection::CreateRecordset() {
    if (database_ == nullptr) {
        throw Failure(ado::error_invalid_connection, u"The connection is closed");
    }
    return std::make_shared<FileRecordset>();
}

void FileConnection::BeginTrans() {
    open_database().begin();
}

void FileConnection::CommitTrans() {
    open_database().commit();
}

void FileConnection::RollbackTrans() {
    open_database().rollback();
}

void FileConnection::Close() {
    static_cast<void>(open_database());
    database_.reset();
}

void FileConnection::execute(std::string_view sql) {
    open_database().execute(sql);
}

bool FileConnection::table_exists(StringView name) {
    sqlite::Database& database = open_database();
    static_cast<void>(database.forget_outdated_tables());
    return database.find_table(name) != nullptr;
}

std::int64_t FileConnection::row_count(StringView table) {
    sqlite::Database& database = open_database();
    static_cast<void>(database.forget_outdated_tables());
    const std::shared_ptr<const Table> found = database.find_table(table);
    if (found == nullptr) {
        fail_about(error_no_table, u"There is no such table", table);
    }
    const auto rows =
        database.try_query("select count(*) from " + found->sql, {}, found->name, true);
    return std::get<std::int64_t>(rows->cells.at(0));
}

std::vector<std::shared_ptr<dao::TableDef>> FileConnection::TableDefs() {
    require_open();
    if (!tables_are_read_) {
        tables_ = table_defs(database_);
        tables_are_read_ = true;
    }
    return tables_;
}

void FileConnection::Execute(StringView query) {
    require_open();
    if (const auto dropped = execute_statement(*database_, query)) {
        forget_dropped(tables_, dropped->table, dropped->column);
    }
}

void FileConnection::require_open() const {
    if (database_ == nullptr) {
        throw Failure(error_database_closed, u"The database is closed");
    }
}

sqlite::Database& FileConnection::open_database() const {
    if (database_ == nullptr) {
        throw Failure(ado::error_object_closed, u"The connection is closed");
    }
    return *database_;
}

std::shared_ptr<SqliteConnection> connect(std::string_view utf8_path, OpenOptions options) {
    return std::make_shared<FileConnection>(utf8_path, options);
}

}  // namespace kvarta16::sqlite
