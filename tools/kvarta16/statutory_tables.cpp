#include "statutory_tables.h"

#include <algorithm>

#include <kvarta16/frame/utf8.h>

namespace kvarta16::tool {

std::span<const StatutoryTable> statutory_tables() {
    static const StatutoryTable tables[] = {
        {"payroll",
         u"S_PLACE_PARAMETRY",
         "id SMALLINT, dataod DATETIME, wartosc CURRENCY, wartosc2 CURRENCY, wartosc3 CURRENCY, "
         "wartosc4 CURRENCY, wartosc5 CURRENCY, wartosc6 CURRENCY, wartosc7 CURRENCY, "
         "wartosc8 CURRENCY, wartosc9 CURRENCY, wartosc10 CURRENCY",
         {u"id", u"dataod", u"wartosc", u"wartosc2", u"wartosc3", u"wartosc4", u"wartosc5",
          u"wartosc6", u"wartosc7", u"wartosc8", u"wartosc9", u"wartosc10"},
         statutory::payroll_row_count,
         &Akt::Ustaw_Parametry_płacowe},
        {"mileage",
         u"S_StawkiKM",
         "Dataod DATETIME, Ponizej900 BOOLEAN, wartosc_wsp4 CURRENCY",
         {u"Ponizej900", u"Dataod", u"wartosc_wsp4"},
         statutory::mileage_row_count,
         &Akt::Ustaw_stawki_ryczałtu},
        {"interest",
         u"S_ODSETKI",
         "Rodzaj SMALLINT, od_dnia DATETIME, procent CURRENCY",
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

std::string create_statements(const StatutoryTable& table) {
    const std::string name = to_utf8(table.name);
    return "CREATE TABLE " + name + " (" + std::string(table.types) + ");" +  //
           "CREATE INDEX " + name + "_key ON " + name + " (" + to_utf8(table.columns[0]) + ", " +
           to_utf8(table.columns[1]) + ");";
}

}  // namespace kvarta16::tool
