// An ADO connection without an engine. It writes down every call with its arguments, and it holds
// rows under a key that it makes of the statement: a statement finds the rows that have been
// stored under its key, and a row that is added goes there. What a statement means is thus the
// test's business:
//
//   const auto db = std::make_shared<MemoryConnection>();
//   Akt().Ustaw_stawki_ryczałtu(db, false, true);
//   EXPECT_EQ(db->row_count(), 12);
//   EXPECT_EQ(db->log[0], "CreateRecordset");
//
// The key is the statement's text; a test that asks in two dialects gives a `key_of` that makes
// one key of both. The columns are those between "select" and "from". Operations that the platform
// refuses fail with its numbers.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <kvarta16/frame/value.h>
#include <kvarta16/platform/ado.h>

namespace kvarta16::testing_support {

// A value with its subtype, for a log: "Currency 493.3200", "String [dataod]".
[[nodiscard]] std::string logged(const Variant& value);

// The columns of a "select [a],[b] from ..." statement, without brackets.
[[nodiscard]] std::vector<String> selected_columns(StringView source);

class MemoryConnection final : public ado::Connection,
                               public std::enable_shared_from_this<MemoryConnection> {
  public:
    using Row = std::vector<Variant>;  // in the order of the statement's columns
    using Rows = std::map<String, std::vector<Row>>;

    MemoryConnection();
    ~MemoryConnection() override;

    std::shared_ptr<ado::Recordset> CreateRecordset() override;
    void BeginTrans() override;
    void CommitTrans() override;
    void RollbackTrans() override;
    void Close() override;

    [[nodiscard]] std::size_t row_count() const;
    // How many entries of the log begin with `text`.
    [[nodiscard]] std::size_t calls(std::string_view text) const;

    // The calls in order: "Open(select ...; 3, 3, -1)", "Fields(Integer 0)",
    // "Value = Currency 20.0000", "UpdateBatch(1)", "Close" of a recordset, "Connection.Close",
    // and "release" when a recordset is dropped.
    std::vector<std::string> log;
    std::vector<String> statements;  // that have been opened, in order
    Rows rows;
    std::vector<std::pair<String, Row>> stored;  // every row that UpdateBatch has stored, by key
    std::function<String(StringView)> key_of = [](StringView source) { return String(source); };
    bool is_open = true;
    int recordsets_alive = 0;

  private:
    friend class MemoryRecordset;

    void begin(std::string entry);
    static void require(bool condition);

    std::optional<Rows> before_transaction_;
};

}  // namespace kvarta16::testing_support
