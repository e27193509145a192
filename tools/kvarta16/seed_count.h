// Counting what a seeding does to a table, from in front of its connection.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include <kvarta16/platform/forwarding.h>

namespace kvarta16::tool {

// What became of the keys that a run has looked up, each counted once however often it came by.
struct SeedCount {
    std::size_t added = 0;
    std::size_t updated = 0;  // its values are others than before the run
    std::size_t left = 0;
};

// A connection that remembers of each row looked up what it was before the run and is after it.
// The key of a row is the statement that looks it up.
class CountingConnection final : public ado::ForwardingConnection {
  public:
    // `columns` are read of every row. `before_row` is called before each look-up with the number
    // of those before it; what it throws ends the run.
    CountingConnection(std::shared_ptr<ado::Connection> target, std::span<const StringView> columns,
                       std::function<void(std::size_t)> before_row);

    std::shared_ptr<ado::Recordset> CreateRecordset() override;

    [[nodiscard]] std::size_t look_ups() const noexcept { return look_ups_; }
    [[nodiscard]] SeedCount count() const;

  private:
    class Recordset;

    // The values of a row as text, so that 8 and 8.00 of another column type are the same.
    using Values = std::vector<String>;
    struct Row {
        std::optional<Values> before;
        std::optional<Values> after;
    };

    std::span<const StringView> columns_;
    std::function<void(std::size_t)> before_row_;
    std::size_t look_ups_ = 0;
    std::map<String, Row> rows_;
};

}  // namespace kvarta16::tool
