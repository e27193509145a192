// The object of an open file: a connection of the ADO seam and a database of the DAO seam in one,
// on one handle of the engine, so that what a host has opened serves wherever a database is wanted.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include <kvarta16/platform/dao.h>
#include <kvarta16/platform/sqlite/sqlite_connection.h>
#include <kvarta16/platform/sqlite/sqlite_database.h>

namespace kvarta16::sqlite {

class FileConnection final : public SqliteConnection, public dao::Database {
  public:
    FileConnection(std::string_view path, const OpenOptions& options);

    std::shared_ptr<ado::Recordset> CreateRecordset() override;
    void BeginTrans() override;
    void CommitTrans() override;
    void RollbackTrans() override;
    void execute(std::string_view sql) override;
    bool table_exists(StringView name) override;
    std::int64_t row_count(StringView table) override;

    std::vector<std::shared_ptr<dao::TableDef>> TableDefs() override;
    void Execute(StringView query) override;

    // Of both: fails with 3704 if it is closed already.
    void Close() override;

    // The file, nullptr once the connection is closed.
    [[nodiscard]] sqlite::Database* database() const noexcept { return database_.get(); }

  private:
    [[nodiscard]] sqlite::Database& open_database() const;
    void require_open() const;  // for the members of the DAO seam

    std::shared_ptr<sqlite::Database> database_;  // its tables and columns look on
    std::vector<std::shared_ptr<dao::TableDef>> tables_;
    bool tables_are_read_ = false;
};

}  // namespace kvarta16::sqlite
