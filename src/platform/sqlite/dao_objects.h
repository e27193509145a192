// The tables and columns of an open file, as callers of the DAO seam see them.
#pragma once

#include <memory>
#include <vector>

#include <kvarta16/platform/dao.h>
#include <kvarta16/platform/sqlite/sqlite_database.h>

namespace kvarta16::sqlite {

// The tables of the file, in the order of their names without case. They stay valid as long as the
// file is open; each operation looks at the file as it is then. Every operation fails with 3420
// once the file is closed, and with 3265 once the table is gone.
[[nodiscard]] std::vector<std::shared_ptr<dao::TableDef>> table_defs(
    const std::shared_ptr<Database>& database);

// Tells the objects that a statement has dropped a column, or a table if `column` is empty: a
// column of the same name that is added later is another one.
void forget_dropped(const std::vector<std::shared_ptr<dao::TableDef>>& tables, StringView table,
                    StringView column);

}  // namespace kvarta16::sqlite
