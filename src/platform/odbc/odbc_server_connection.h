// The connection object of an open session, as the recordsets see it.
#pragma once

#include <memory>
#include <string_view>

#include <kvarta16/platform/odbc/odbc_connection.h>
#include <kvarta16/platform/odbc/odbc_session.h>

namespace kvarta16::odbc {

class ServerConnection final : public OdbcConnection {
  public:
    ServerConnection(StringView name, const ConnectOptions& options);

    std::shared_ptr<ado::Recordset> CreateRecordset() override;
    void BeginTrans() override { open_session().begin(); }
    void CommitTrans() override { open_session().commit(); }
    void RollbackTrans() override { open_session().rollback(); }
    void Close() override;
    void execute(std::string_view sql) override { open_session().execute(sql); }
    bool table_exists(StringView name) override;
    const Dialect& dialect() override { return open_session().dialect(); }

    // The session, nullptr once the connection is closed.
    [[nodiscard]] Session* session() const noexcept { return session_.get(); }

  private:
    [[nodiscard]] Session& open_session() const;

    std::unique_ptr<Session> session_;
};

}  // namespace kvarta16::odbc
