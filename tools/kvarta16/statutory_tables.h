// The three statutory tables of the suite's database, as the tool creates, seeds and reads them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <kvarta16/statutory/Akt.h>

#include "databases.h"

namespace kvarta16::tool {

enum class ColumnType : std::uint8_t { Number, Date, Money, Truth };

struct ColumnDefinition {
    StringView name;
    ColumnType type;
};

struct StatutoryTable {
    std::string_view topic;  // its word on the command line
    StringView name;
    std::vector<ColumnDefinition> definitions;
    std::vector<StringView> columns;  // the key's two first: number, then date
    std::size_t row_count;            // rows that a run of the library looks up
    decltype(&Akt::Ustaw_stawki_ryczałtu) seed;
};

[[nodiscard]] std::span<const StatutoryTable> statutory_tables();
[[nodiscard]] const StatutoryTable& statutory_table(std::string_view topic);

// The statements that create a table in the words of a database. Its key is indexed and not
// unique: what keeps it single is the look-up before each row.
[[nodiscard]] std::vector<std::string> create_statements(const StatutoryTable& table,
                                                         const ColumnWords& words);

}  // namespace kvarta16::tool
