// A recordset on an open file: a snapshot of the rows that its statement finds, of which one is
// the current row, and the values that have been put into it and are not stored yet.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <kvarta16/platform/ado.h>
#include <kvarta16/platform/sqlite/sql_translator.h>
#include <kvarta16/platform/sqlite/sqlite_database.h>

namespace kvarta16::sqlite {

class FileConnection;

// Every cursor type gives the same snapshot. The recordset keeps its connection alive while it is
// open. AddNew and MoveNext store what has been put into the row that they leave. After UpdateBatch
// the current row shows what the file holds, defaults of the table included.
class FileRecordset final : public ado::Recordset {
  public:
    // Fails: 3705 open already, 3709 no open connection of this engine, 3001 options other than
    // the text of a statement, 3061, 3075 and 3078 as the translator, and as the engine fails.
    void Open(StringView source, const std::shared_ptr<ado::Connection>& active_connection,
              ado::CursorType cursor_type, ado::LockType lock_type, Long options) override;
    bool IsEOF() override;
    // Fails: 3251 for a view, or if the recordset was opened to read.
    void AddNew() override;
    ado::Field& Fields(const Variant& item) override;
    // Fails: 3021 no current row, 3167 the row has been deleted meanwhile, and as the engine fails;
    // what has been put stays, so that it can be tried again.
    void UpdateBatch(ado::Affect affect_records) override;
    void MoveNext() override;
    void Close() override;

  private:
    class FileField final : public ado::Field {
      public:
        FileField(FileRecordset& recordset, std::size_t index)
            : recordset_(&recordset), index_(index) {}
        String Name() override { return recordset_->result(index_).name; }
        Variant Value() override { return recordset_->value(index_); }
        void PutValue(const Variant& value) override { recordset_->put(index_, value); }

      private:
        FileRecordset* recordset_;
        std::size_t index_;
    };

    [[nodiscard]] std::optional<Rows> try_open(StringView source, Database& database,
                                               bool last_attempt);

    // The file; fails with 3704 if the recordset or its connection is closed.
    [[nodiscard]] Database& open_database() const;
    [[nodiscard]] bool has_row() const { return is_new_ || row_ < rows_.count(); }
    void require_row() const;
    void require_updatable() const;

    [[nodiscard]] const Translation::Result& result(std::size_t index) const;
    [[nodiscard]] Variant value(std::size_t index);
    void put(std::size_t index, const Variant& value);

    // The statement that stores the row, and its values.
    [[nodiscard]] std::string insert_statement(std::vector<Cell>& values) const;
    [[nodiscard]] std::string update_statement(std::vector<Cell>& values);
    [[nodiscard]] std::string returned_columns() const;
    void store_pending();
    void drop_pending() noexcept;

    std::shared_ptr<FileConnection> connection_;  // empty: closed
    Translation translation_;
    Rows rows_;
    std::size_t row_ = 0;
    bool is_new_ = false;                   // the current row has been added and is not stored yet
    bool read_only_ = false;                // the caller asked for it
    std::vector<std::optional<Cell>> put_;  // for each column; empty: nothing has been put
    std::deque<FileField> fields_;          // only grows: callers hold on to fields
};

}  // namespace kvarta16::sqlite
