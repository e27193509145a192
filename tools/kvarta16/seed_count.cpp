#include "seed_count.h"

#include <utility>

#include <kvarta16/frame/value.h>

namespace kvarta16::tool {

class CountingConnection::Recordset final : public ado::ForwardingRecordset {
  public:
    Recordset(std::shared_ptr<ado::Recordset> target, CountingConnection& owner)
        : ForwardingRecordset(std::move(target)), owner_(owner) {}

    void Open(StringView source, const std::shared_ptr<ado::Connection>& active_connection,
              ado::CursorType cursor_type, ado::LockType lock_type, Long options) override {
        ForwardingRecordset::Open(source, active_connection, cursor_type, lock_type, options);
        const auto [row, is_new] = owner_.rows_.try_emplace(String(source));
        row_ = &row->second;
        if (is_new && !IsEOF()) {
            row_->before = row_->after = values();
        }
    }

    void UpdateBatch(ado::Affect affect_records) override {
        ForwardingRecordset::UpdateBatch(affect_records);
        row_->after = values();
    }

  private:
    Values values() {
        Values values;
        for (const StringView column : owner_.columns_) {
            const Variant value = Fields(column).Value();
            values.push_back(value.is(Subtype::Null) ? String() : ToText(value));
        }
        return values;
    }

    CountingConnection& owner_;
    Row* row_ = nullptr;
};

CountingConnection::CountingConnection(std::shared_ptr<ado::Connection> target,
                                       std::span<const StringView> columns,
                                       std::function<void(std::size_t)> before_row)
    : ForwardingConnection(std::move(target)),
      columns_(columns),
      before_row_(std::move(before_row)) {}

std::shared_ptr<ado::Recordset> CountingConnection::CreateRecordset() {
    before_row_(look_ups_++);
    return std::make_shared<Recordset>(target()->CreateRecordset(), *this);
}

SeedCount CountingConnection::count() const {
    SeedCount count;
    for (const auto& [key, row] : rows_) {
        if (!row.before) {
            count.added += row.after ? 1 : 0;
        } else if (row.before == row.after) {
            ++count.left;
        } else {
            ++count.updated;
        }
    }
    return count;
}

}  // namespace kvarta16::tool
