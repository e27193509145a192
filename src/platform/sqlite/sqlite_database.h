// One open file: the engine's handle, the statements that are prepared on it, what is known of its
// tables, and the caller's transaction.
#pragma once

#include <cstddef>
#include <functional>
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

// The table that the adapter keeps for itself, and names that only its own steps use.
inline constexpr StringView own_names[] = {u"kvarta16_database", u"kvarta16_anew",
                                           u"kvarta16_renamed"};

// Whether a table of this name is the engine's or the adapter's own: no statement of the dialects
// reaches it.
[[nodiscard]] bool is_own_name(StringView name);

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

    // Runs a statement that reads or, within change(), one that writes. `table` is named in a
    // failure.
    Rows run(const std::string& sql, std::span<const Cell> parameters = {}, StringView table = {});

    // Does what `body` does to the file, all of it or, if that fails, nothing; with what is known
    // of the tables up to date and no other program writing meanwhile. Durable when it returns,
    // unless the caller's transaction is open.
    void change(const std::function<void()>& body);

    // Within change(): runs a statement that changes a table, or puts another text in the place of
    // a table's own in the file. The rows stay as they are stored, so the text must fit them.
    void define(const std::string& sql, StringView table);
    void put_table_text(const Table& table, const std::string& sql);

    // The statement by which the file makes a table.
    [[nodiscard]] std::string table_text(const Table& table);

    // The names of the tables: not the views, nor the engine's and the adapter's own tables.
    [[nodiscard]] std::vector<String> table_names();

    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    [[nodiscard]] sqlite3* handle() const noexcept { return db_.get(); }

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
    void run_plain(const char* sql);

    // How changes are kept until they are stored; before the first one.
    void choose_journal();
    [[nodiscard]] bool has_rollback_journal();

    [[nodiscard]] std::shared_ptr<const Table> read_table(StringView name);
    void read_columns(Table& table, const Cell& name, bool strict);
    [[nodiscard]] Cell schema_version();
    void forget_tables();

    void undo_change(bool within);
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
