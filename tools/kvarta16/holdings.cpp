#include "holdings.h"

#include <cmath>
#include <optional>

#include <kvarta16/frame/value.h>

namespace kvarta16::tool {
namespace {

String select_statement(const StatutoryTable& table) {
    String sql = u"select ";
    for (const StringView column : table.columns) {
        sql += (column == table.columns.front() ? u"[" : u",[") + String(column) + u"]";
    }
    return sql + u" from [" + String(table.name) + u"]";
}

// The engine class is a truth value, and counts as -1 or 0 whatever number stands for it. Nothing
// for a value that is no whole number.
std::optional<Long> key_of(const Variant& value) {
    try {
        return value.is(Subtype::Boolean) ? (to_boolean(value) ? -1 : 0) : ToLong(value);
    } catch (const Failure&) {
        return std::nullopt;
    }
}

void take_row(Holdings& holdings, const std::vector<Variant>& row, Double day) {
    const std::optional<Long> key = key_of(row[0]);
    if (!key || !IsDateValue(row[1])) {
        ++holdings.unreadable_rows;
        return;
    }
    const Date since{std::floor(ToDate(row[1]).days)};
    const auto held = holdings.by_key.find(*key);
    const bool is_later = held == holdings.by_key.end() || since > held->second.since;
    if (since.days <= day && is_later) {
        holdings.by_key.insert_or_assign(*key,
                                         Holding{since, std::vector(row.begin() + 2, row.end())});
    }
}

}  // namespace

Holdings holdings_on(const std::shared_ptr<ado::Connection>& db, const StatutoryTable& table,
                     Date day) {
    const std::shared_ptr<ado::Recordset> rows = db->CreateRecordset();
    rows->Open(select_statement(table), db, ado::CursorType::adOpenStatic,
               ado::LockType::adLockReadOnly, ado::adCmdUnspecified);
    Holdings holdings;
    for (; !rows->IsEOF(); rows->MoveNext()) {
        std::vector<Variant> row;
        for (const StringView column : table.columns) {
            row.push_back(rows->Fields(column).Value());
        }
        take_row(holdings, row, std::floor(day.days));
    }
    rows->Close();
    return holdings;
}

}  // namespace kvarta16::tool
