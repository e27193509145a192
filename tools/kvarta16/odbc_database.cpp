#include <kvarta16/platform/odbc/odbc_connection.h>

#include "databases.h"

namespace kvarta16::tool {
namespace {

class OdbcDatabase final : public Database {
  public:
    explicit OdbcDatabase(std::string_view name) : db_(odbc::connect(name)) {}

    std::shared_ptr<ado::Connection> connection() override { return db_; }
    bool table_exists(StringView name) override { return db_->table_exists(name); }
    void execute(std::string_view sql) override { db_->execute(sql); }
    ColumnWords column_words() override {
        const odbc::ColumnTypes& types = db_->dialect().types;
        return {types.number, types.date, types.money, types.truth};
    }
    bool takes_tables_back() override { return !db_->dialect().tables_end_a_transaction; }

  private:
    std::shared_ptr<odbc::OdbcConnection> db_;
};

}  // namespace

bool opens_odbc() noexcept {
    return true;
}

std::shared_ptr<Database> open_odbc(std::string_view connection_name) {
    return std::make_shared<OdbcDatabase>(connection_name);
}

std::string shown_odbc(std::string_view connection_name) {
    return odbc::shown_name(connection_name);
}

}  // namespace kvarta16::tool
