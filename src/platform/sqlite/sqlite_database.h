// One open file: the engine's handle, the statements that are prepared on it, what is known of its
// tables, and the caller's transaction.
#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <sqlite3.h>

#include <kvarta16/platform/sqlite/sqlite_connection.h>
#include <kvarta16/platform/sqlite/sqlite_schema.h>

namespace kvarta16::sqlite {

// Rows of equal width, one behind the other.
struct Rows {
    std::size_t width = 0;
    std::vector<Cell> cells;

    [[nodiscard]] std::size_t count() const { return width == 0 ? 0 : cells.size() / width; }
    [[nodiscard]] std::span<Cell> row(std::size_t index) {
        return std::span(cells).subspan(index * width, width);
    }
};

class Database final : public Schema {
  public:
    // Opens the file and reads its header. Fails as connect() does.
    Database(std::string_view path, const OpenOptions& options);
    // Rolls an open transaction back.
    ~Database() override;
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    Database(Database&&) = delete;
    Database& operator=(Database&&) = delete;

    std::shared_ptr<const Table> find_table(StringView name) override;

    // Forgets what is known of the tables if it is not true any more, and answers whether it was
    // not.
    [[nodiscard]] bool forget_outdated_tables();

    // Runs a translated statement and takes all its rows; the file is not locked any more when it
    // returns. Nothing if the tables have changed since the statement was translated: what was
    // known of them is forgotten, and the statement is to be translated and tried again, unless
    // this was the last attempt: then it fails. `table` is named in a failure.
    [[nodiscard]] std::optional<Rows> try_query(const std::string& sql,
                                                std::span<const Cell> parameters, StringView table,
                                                bool last_attempt);

    // Runs a statement that stores a row, and takes what it returns. Durable when it returns,
    // unless a transaction is open. Fails also if the transaction that was open has been rolled
    // back by a failure.
    [[nodiscard]] Rows write(const std::string& sql, std::span<const Cell> parameters,
                             StringView table);

    // Runs statements of the engine's own SQL and drops their rows.
    void execute(std::string_view sql);

    void begin();
    void commit();
    void rollback();

  private:
    struct StatementDeleter {
        void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
    };
    using StatementHandle = std::unique_ptr<sqlite3_stmt, StatementDeleter>;
    struct Statement {
        std::string sql;
        StatementHandle handle;
        int times_prepared_again;  // by the engine as the tables changed
    };
    struct HandleDeleter {
        void operator()(sqlite3* db) const noexcept;
    };

    void open(const OpenOptions& options);
    void set_up(const OpenOptions& options);

    // The cached statement, or a new one; nullptr if the engine cannot prepare it, with its code.
    [[nodiscard]] Statement* prepare(const std::string& sql, int& code);
    // Runs a statement, adds its rows to `rows`, and answers the engine's code: SQLITE_DONE when
    // all has gone well.
    [[nodiscard]] static int step_through(Statement& statement, std::span<const Cell> parameters,
                                          Rows& rows);
    [[nodiscard]] Rows run(const std::string& sql, std::span<const Cell> parameters = {},
                           StringView table = {});
    void run_plain(const char* sql);

    // How changes are kept until they are stored; before the first one.
    void choose_journal();
    [[nodiscard]] bool has_rollback_journal();

    [[nodiscard]] std::shared_ptr<const Table> read_table(StringView name);
    void read_columns(Table& table, const Cell& name, bool strict);
    [[nodiscard]] Cell schema_version();
    void forget_tables();

    [[nodiscard]] bool transaction_is_lost() const;
    void require_no_lost_transaction() const;
    [[noreturn]] void fail_now(int code, StringView table = {}) const;

    std::string path_;
    std::unique_ptr<sqlite3, HandleDeleter> db_;
    std::list<Statement> statements_;  // the one used last comes first
    std::unordered_map<std::string_view, std::list<Statement>::iterator> statements_by_sql_;
    std::unordered_map<String, std::shared_ptr<const Table>> tables_;  // by the name asked for
    Cell tables_version_;          // of the schema when the first of them was read
    bool in_transaction_ = false;  // begun by the caller and not ended by it
    bool journal_is_chosen_ = false;
    bool takes_journal_back_ = false;  // when the connection ends
};

}  // namespace kvarta16::sqlite
