#include <kvarta16/platform/sqlite/sqlite_connection.h>
#include <kvarta16/platform/sqlite/sqlite_errors.h>
#include <kvarta16/platform/sqlite/sqlite_file_connection.h>
#include <kvarta16/platform/sqlite/sqlite_recordset.h>

namespace kvarta16::sqlite {

FileConnection::FileConnection(std::string_view path, const OpenOptions& options)
    : database_(std::make_unique<Database>(path, options)) {}

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
    Database& database = open_database();
    static_cast<void>(database.forget_outdated_tables());
    return database.find_table(name) != nullptr;
}

Database& FileConnection::open_database() const {
    if (database_ == nullptr) {
        throw Failure(ado::error_object_closed, u"The connection is closed");
    }
    return *database_;
}

std::shared_ptr<SqliteConnection> connect(std::string_view utf8_path, OpenOptions options) {
    return std::make_shared<FileConnection>(utf8_path, options);
}

}  // namespace kvarta16::sqlite
