// A recordset on an open connection: a snapshot of the rows that its statement finds, of which one
// is the current row, and the values that have been put into it and are not stored yet.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <kvarta16/platform/ado.h>
#include <kvarta16/platform/odbc/odbc_session.h>

namespace kvarta16::odbc {

class ServerConnection;

// Every cursor type gives the same snapshot. The recordset keeps its connection alive while it is
// open. AddNew and MoveNext store what has been put into the row that they leave.
//
// A row is found again by its table's primary key; without one by the server's own mark of the
// row, and where there is none by the values of all its columns as they were read. After
// UpdateBatch the current row shows what the server holds, defaults of the table included, where
// the server can tell it: it gives the row back, or the row has a key by which it is read again.
// Otherwise the row shows what has been put, and cannot be changed a second time.
class ServerRecordset final : public ado::Recordset {
  public:
    // Fails: 3705 open already, 3709 no open connection of this adapter, 3001 options other than
    // the text of a statement, as the parser and the writer of statements, and as the server fails.
    void Open(StringView source, const std::shared_ptr<ado::Connection>& active_connection,
              ado::CursorType cursor_type, ado::LockType lock_type, Long options) override;
    bool IsEOF() override;
    // Fails: 3251 for a view, or if the recordset was opened to read.
    void AddNew() override;
    ado::Field& Fields(const Variant& item) override;
    // Fails: 3021 no current row, 3167 the row has been deleted or changed meanwhile, and as the
    // server fails; what has been put stays, so that it can be tried again.
    void UpdateBatch(ado::Affect affect_records) override;
    void MoveNext() override;
    void Close() override;

  private:
    class ServerField final : public ado::Field {
      public:
        ServerField(ServerRecordset& recordset, std::size_t index)
            : recordset_(&recordset), index_(index) {}
        String Name() override { return recordset_->result(index_).name; }
        Variant Value() override { return recordset_->value(index_); }
        void PutValue(const Variant& value) override { recordset_->put(index_, value); }

      private:
        ServerRecordset* recordset_;
        std::size_t index_;
    };

    // A condition that finds a row, and its values.
    struct Condition {
        std::string sql;
        std::vector<Argument> arguments;
    };

    // The session; fails with 3704 if the recordset or its connection is closed.
    [[nodiscard]] Session& open_session() const;
    [[nodiscard]] bool has_row() const { return is_new_ || row_ < rows_.count(); }
    void require_row() const;
    void require_updatable() const;

    [[nodiscard]] const Query::Result& result(std::size_t index) const;
    [[nodiscard]] Variant value(std::size_t index);
    void put(std::size_t index, const Variant& value);

    // ---- Storing: the statements, and what comes of them ----
    [[nodiscard]] Session::Written insert(Session& session);
    [[nodiscard]] Session::Written update(Session& session);
    [[nodiscard]] Condition identity(std::span<const Cell> row) const;
    [[nodiscard]] bool is_still_there(Session& session, const Condition& condition);
    void require_one_row(Session& session, const Condition& condition);
    [[nodiscard]] Rows rows_where(Session& session, const Condition& condition) const;
    // The row as it stands after it has been stored; sets whether it can be found again.
    [[nodiscard]] std::vector<Cell> row_stored(Session& session, Session::Written& written);
    [[nodiscard]] std::vector<Cell> row_with_put() const;
    [[nodiscard]] bool knows_key() const;
    [[nodiscard]] std::string returned_list(bool given_back) const;
    void store_pending();
    void drop_pending() noexcept;

    std::shared_ptr<ServerConnection> connection_;  // empty: closed
    Query query_;
    std::vector<const Column*> columns_;  // of the rows, those of the key included
    Rows rows_;
    std::size_t row_ = 0;
    bool is_new_ = false;                   // the current row has been added and is not stored yet
    bool read_only_ = false;                // the caller asked for it
    std::vector<std::optional<Cell>> put_;  // for each column; empty: nothing has been put
    std::optional<std::size_t> lost_row_;   // stored, and not to be found again
    std::deque<ServerField> fields_;        // only grows: callers hold on to fields
};

}  // namespace kvarta16::odbc
