// One open connection: the driver's handles, what is known of the server's tables, and the
// caller's transaction.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <kvarta16/platform/odbc/odbc_dialect.h>
#include <kvarta16/platform/odbc/odbc_errors.h>
#include <kvarta16/platform/odbc/odbc_handles.h>
#include <kvarta16/platform/odbc/odbc_statement.h>
#include <kvarta16/platform/odbc/select_writer.h>

namespace kvarta16::odbc {

// Rows of equal width, one behind the other.
struct Rows {
    std::size_t width = 0;
    std::vector<Cell> cells;

    [[nodiscard]] std::size_t count() const { return width == 0 ? 0 : cells.size() / width; }
    [[nodiscard]] std::span<Cell> row(std::size_t index) {
        return std::span(cells).subspan(index * width, width);
    }
};

// The columns that the rows of a query hold; nothing for a mark.
[[nodiscard]] std::vector<const Column*> columns_read(const Query& query);

class Session final : public Schema {
  public:
    // Connects. Fails: 3151 and as the server fails.
    Session(StringView name, int timeout_s);
    // Rolls an open transaction back and disconnects.
    ~Session() override;
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    Session(Session&&) = delete;
    Session& operator=(Session&&) = delete;

    [[nodiscard]] const Dialect& dialect() const noexcept { return *dialect_; }

    std::shared_ptr<const Table> find_table(const std::vector<String>& names) override;
    // Forgets what is known of the tables, and answers whether anything was.
    bool forget_tables();

    // All rows that a query finds.
    [[nodiscard]] Rows query(const Query& query);

    struct Written {
        SQLLEN count = 0;  // of the rows changed
        Rows rows;         // what the statement gives back, in the columns asked for
    };
    // Runs a statement that stores. Durable when it returns, unless a transaction is open.
    [[nodiscard]] Written write(std::string_view sql, std::span<const Argument> arguments,
                                std::span<const Column* const> columns, StringView table);

    // Runs one statement of the server's own SQL and drops its rows.
    void execute(std::string_view sql);

    void begin();
    void commit();
    void rollback();

  private:
    struct Found {
        String catalogue;
        String owner;
        String name;
        bool is_view;
    };

    void connect(const String& attributes, int timeout_s);
    void read_about_server();
    [[nodiscard]] std::string information(SQLUSMALLINT about);
    [[nodiscard]] String single_text(std::string_view sql);

    [[nodiscard]] std::vector<Found> tables_named(const String& name);
    [[nodiscard]] const Found* chosen(const std::vector<Found>& found,
                                      const std::vector<String>& names) const;
    [[nodiscard]] std::shared_ptr<const Table> read_table(const Found& found);
    [[nodiscard]] Column column_of(const Statement::Description& description) const;
    void read_columns(Table& table);
    void read_truth_columns(Table& table, const Found& found);
    void read_key(Table& table, const Found& found);
    [[nodiscard]] std::string quoted(const String& name) const;

    // Runs `work` and makes a Failure of what a driver reports in it.
    template <class Work>
    auto reporting(StringView table, Work work);
    [[noreturn]] void fail_on(const Report& report, StringView table);
    [[nodiscard]] bool is_dead() const;
    void end_transaction(SQLSMALLINT how);
    void require_no_lost_transaction() const;

    Origin origin_;
    const Dialect* dialect_;
    std::string quote_;
    String catalogue_;  // within which the tables are looked up; empty where there is but one
    String schema_;     // that a bare name means first
    std::map<String, std::shared_ptr<const Table>> tables_;  // by the name asked for
    bool is_connected_ = false;
    bool in_transaction_ = false;       // begun by the caller and not ended by it
    bool transaction_is_lost_ = false;  // ended by the server
    EnvironmentHandle environment_;
    ConnectionHandle connection_;
};

}  // namespace kvarta16::odbc
