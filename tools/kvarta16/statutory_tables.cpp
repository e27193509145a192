#include "statutory_tables.h"

#include <algorithm>

#include <kvarta16/frame/utf8.h>

namespace kvarta16::tool {

std::span<const StatutoryTable> statutory_tables() {
    static const StatutoryTable tables[] = {
        {"payroll",
         u"S_PLACE_PARAMETRY",
         {{u"id", ColumnType::Number},
          {u"dataod", ColumnType::Date},
          {u"wartosc", ColumnType::Money},
          {u"wartosc2", ColumnType::Money},
          {u"wartosc3", ColumnType::Money},
          {u"wartosc4", ColumnType::Money},
          {u"wartosc5", ColumnType::Money},
          {u"wartosc6", ColumnType::Money},
          {u"wartosc7", ColumnType::Money},
          {u"wartosc8", ColumnType::Money},
          {u"wartosc9", ColumnType::Money},
          {u"wartosc10", ColumnType::Money}},
         {u"id", u"dataod", u"wartosc", u"wartosc2", u"wartosc3", u"wartosc4", u"wartosc5",
          u"wartosc6", u"wartosc7", u"wartosc8", u"wartosc9", u"wartosc10"},
         statutory::payroll_row_count,
         &Akt::Ustaw_Parametry_płacowe},
        {"mileage",
         u"S_StawkiKM",
         {{u"Dataod", ColumnType::Date},
          {u"Ponizej900", ColumnType::Truth},
          {u"wartosc_wsp4", ColumnType::Money}},
         {u"Ponizej900", u"Dataod", u"wartosc_wsp4"},
         statutory::mileage_row_count,
         &Akt::Ustaw_stawki_ryczałtu},
        {"interest",
         u"S_ODSETKI",
         {{u"Rodzaj", ColumnType::Number},
          {u"od_dnia", ColumnType::Date},
          {u"procent", ColumnType::Money}},
         {u"Rodzaj", u"od_dnia", u"procent"},
         statutory::interest_row_count,
         &Akt::Ustaw_oDSETKI_uSTAWOWE},
    };
    return tables;
}

const StatutoryTable& statutory_table(std::string_view topic) {
    const std::span<const StatutoryTable> tables = statutory_tables();
    return *std::find_if(tables.begin(), tables.end(),
                         [&](const StatutoryTable& table) { return table.topic == topic; });
}

std::vector<std::string> create_statements(const StatutoryTable& table, const ColumnWords& words) {
    const std::string name = to_utf8(table.name);
    std::string columns;
    for (const ColumnDefinition& column : table.definitions) {
        const std::string_view types[] = {words.number, words.date, words.money, words.truth};
        columns.append(columns.empty() ? "" : ", ").append(to_utf8(column.name)).append(" ");
        columns.append(types[static_cast<std::size_t>(column.type)]);
    }
    return {"CREATE TABLE " + name + " (" + columns + ")",
            "CREATE INDEX " + name + "_key ON " + name + " (" + to_utf8(table.columns[0]) + ", " +
                to_utf8(table.columns[1]) + ")"};
}

}  // namespace kvarta16::tool
