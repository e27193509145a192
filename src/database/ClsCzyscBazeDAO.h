// Cleaning a database file, so that its fields hold no Null, and widening the text columns of a
// table. A private class: it is in no type library, and its users reach it by this header, by
// `kvarta16 rpc` and by `kvarta16 call`.
//
//   ClsCzyśćBazęDAO cleaner;
//   cleaner.CZYŚĆ_BAZĘ(u"C:\\dane\\firma.mdb", true, false, u"");   // all tables, strict
//   cleaner.Set_Szer_tetx(u"dane", u"[TOWARY]", u"C:\\dane\\firma.mdb");
//
// Nothing is shown and nothing is asked. There is no transaction: what has been done when a
// failure ends an operation stays done.
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>
#include <kvarta16/platform/dao.h>

namespace kvarta16 {

class KVARTA16_EXPORT ClsCzyśćBazęDAO {
  public:
    // ---- Cleaning ---------------------------------------------------------------------------

    // The discipline of the two cleanings is their caller's choice. Without `IgnorujBłędy` they are
    // strict: a failure of the engine passes at once, and the database stays open until the object
    // is dropped or opens another. With it they are tolerant: a field that refuses its default
    // still has its Nulls replaced, a table that refuses its new name is cleaned under the old one.
    // A table whose name cannot be read, and a field whose type or name cannot, is then passed
    // over, since nothing says that it may be touched. If the file cannot be opened, nothing is
    // done; what a strict operation that failed before has left open is closed.
    //
    // In both, a statement that fails changes nothing and stops nothing.
    //
    // Cleaning a table brings its name to upper case in the file. Then, field by field:
    //   numbers                          default 0, Nulls become 0
    //   DATA_OPERACJI, DATA_UTWORZENIA   dates alone, in any case: default NOW(), Nulls become
    //                                    1 January 1990
    //   text and memo                    accept the empty text and have it as their default, Nulls
    //                                    become the empty text
    // Every other field stays as it is.

    // Cleans all tables of the file `ŚcieżkaBazy`, or with a `NazwaTabeli` that is not empty the
    // one of this name, in any case. Tables whose names begin with "MSys" in this case, and
    // NIERUSZAC in any case ("do not move"), are left alone, also when asked for. "Błędy wklejania"
    // ("paste errors") is never cleaned, and with `KasujBłędyWklejania` it is dropped when the walk
    // comes to it, whichever table was asked for; the walk ends behind the table asked for. Sleeps
    // for five seconds at the end.
    void CZYŚĆ_BAZĘ(StringView ŚcieżkaBazy, Boolean KasujBłędyWklejania, Boolean IgnorujBłędy,
                    StringView NazwaTabeli);

    // Cleans the one table `NazwaTabeli`, which is written back in upper case; no name is special
    // here. Does nothing if there is no such table. Without a pause.
    void CZYŚĆ_BAZĘ_TMP(StringView ŚcieżkaBazy, Boolean IgnorujBłędy, String& NazwaTabeli);

    // ---- Widening ---------------------------------------------------------------------------

    // Widens every text column of a table that takes less than 255 characters, by way of a
    // temporary column ccxxdfredvvcxds__ddfr. `TabelaWNawiasach` is the table's name with its
    // brackets, in any case; `PrzedrostekTabeli` stands before it in the statements, with a point
    // between them. True once the table was found, whatever then happened to its columns.
    //
    // A widened column is the last of its table and comes out without its index, its default and
    // its other properties. A step that fails does not stop the next ones: a column that cannot be
    // dropped stays narrow and keeps its data; where the data cannot be copied and the column can
    // be dropped, the data is lost.
    //
    // Guarded: any other failure ends the operation, and the caller is told nothing.
    [[nodiscard]] Boolean Set_Szer_tetx(StringView PrzedrostekTabeli, StringView TabelaWNawiasach,
                                        StringView ŚcieżkaBazy);

    // As DbWykonajNorthWind of Baza.
    [[nodiscard]] String DbWykonajNorthWind(StringView ss,
                                            const std::shared_ptr<dao::Database>& dbsNorth,
                                            Boolean NotSilent) const;

  private:
    // The database that an operation works on; Nothing between operations, unless a failure has
    // passed out of one.
    std::shared_ptr<dao::Database> BazaRobocza;
};

template <>
struct ClassTable<ClsCzyśćBazęDAO> {
    static constexpr ClassHeader header{u"ClsCzyśćBazęDAO", Instancing::Private, {}, {}};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&ClsCzyśćBazęDAO::CZYŚĆ_BAZĘ>(
            u"CZYŚĆ_BAZĘ", by_reference(u"ŚcieżkaBazy"), by_reference(u"KasujBłędyWklejania"),
            by_reference(u"IgnorujBłędy"), by_reference(u"NazwaTabeli")),
        method<&ClsCzyśćBazęDAO::CZYŚĆ_BAZĘ_TMP>(u"CZYŚĆ_BAZĘ_TMP", by_reference(u"ŚcieżkaBazy"),
                                                 by_reference(u"IgnorujBłędy"),
                                                 by_reference(u"NazwaTabeli")),
        method<&ClsCzyśćBazęDAO::Set_Szer_tetx>(u"Set_Szer_tetx", by_value(u"PrzedrostekTabeli"),
                                                by_value(u"TabelaWNawiasach"),
                                                by_value(u"ŚcieżkaBazy")),
        method<&ClsCzyśćBazęDAO::DbWykonajNorthWind>(u"DbWykonajNorthWind", by_value(u"ss"),
                                                     by_reference(u"dbsNorth"),
                                                     by_reference(u"NotSilent")),
    });
};

}  // namespace kvarta16
