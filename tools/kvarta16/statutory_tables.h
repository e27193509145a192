// The three statutory tables of the suite's database, as the tool creates, seeds and reads them.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <kvarta16/statutory/Akt.h>

namespace kvarta16::tool {

struct StatutoryTable {
    std::string_view topic;  // its word on the command line
    StringView name;
    std::string_view types;           // the column definitions in SQL
    std::vector<StringView> columns;  // the key's two first: number, then date
    std::size_t row_count;            // rows that a run of the library looks up
    decltype(&Akt::Ustaw_stawki_ryczałtu) seed;
};

[[nodiscard]] std::span<const StatutoryTable> statutory_tables();
[[nodiscard]] const StatutoryTable& statutory_table(std::string_view topic);

// The statements that create a table. Its key is indexed and not unique: what keeps it single is
// the look-up before each row.
[[nodiscard]] std::string create_statements(const StatutoryTable& table);

}  // namespace kvarta16::tool
