// The connection object of an open file, as the recordsets see it.
#pragma once

#include <memory>
#include <string_view>

#include <kvarta16/platform/sqlite/sqlite_connection.h>
#include <kvarta16/platform/sqlite/sqlite_database.h>

namespace kvarta16::sqlite {

class FileConnection final : public SqliteConnection {
  public:
    FileConnection(std::string_view path, const OpenOptions& options);

    std::shared_ptr<ado::Recordset> CreateRecordset() override;
    void BeginTrans() override;
    void CommitTrans() override;
    void RollbackTrans() override;
    void Close() override;
    void execute(std::string_view sql) override;
    bool table_exists(StringView name) override;

    // The file, nullptr once the connection is closed.
    [[nodiscard]] Database* database() const noexcept { return database_.get(); }

  private:
    [[nodiscard]] Database& open_database() const;

    std::unique_ptr<Database> database_;
};

}  // namespace kvarta16::sqlite
