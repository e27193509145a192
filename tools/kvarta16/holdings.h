// What the statutory tables hold on a day.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "statutory_tables.h"

namespace kvarta16::tool {

// The row of a key that holds on a day.
struct Holding {
    Date since;
    std::vector<Variant> values;  // the columns behind the key
};

struct Holdings {
    std::map<Long, Holding> by_key;
    std::size_t unreadable_rows = 0;  // those whose key is no number or no date
};

// Of each key the row with the latest date up to `day`, whose time of day does not count. Of two
// rows with one date the first one that the database gives. Fails as the database does.
[[nodiscard]] Holdings holdings_on(const std::shared_ptr<ado::Connection>& db,
                                   const StatutoryTable& table, Date day);

}  // namespace kvarta16::tool
