// The seeding of three statutory tables of a payroll and finance database: payroll parameters,
// rates per kilometre, statutory interest. The figures are compiled in (payroll_rows.h,
// mileage_rows.h, interest_rows.h); a run looks up each row by its key and brings the caller's
// table up to what the library knows:
//
//   Akt akt;
//   akt.Ustaw_Parametry_płacowe(db, false, true);   // no question, ODBC-escape dialect
//   akt.Ustaw_stawki_ryczałtu(db, false, true);
//   akt.Ustaw_oDSETKI_uSTAWOWE(db, false, true);
//
// The tables are the caller's: they are neither created nor altered, and nothing is deleted. The
// three runs may be called in any order and again. The first two only insert: a row whose key is
// there stays as it is, whatever its values. The third also rewrites the rate of each of its keys.
//
// Every row is stored by itself. A run that fails leaves what it has stored, and the next run
// completes the table; a caller who wants all or nothing begins a transaction on the connection.
#pragma once

#include <cstddef>

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>
#include <kvarta16/platform/ado.h>

namespace kvarta16 {

namespace statutory {

struct PayrollRow;
struct MileageRow;
struct InterestRow;

// How many rows a run looks up, repeated keys included: for a host that shows its progress. Each
// row is one recordset of the connection.
inline constexpr std::size_t payroll_row_count = 725;
inline constexpr std::size_t mileage_row_count = 12;
inline constexpr std::size_t interest_row_count = 87;

}  // namespace statutory

// An object has no state. All methods are strict: the first failure of the database passes with
// its own number and text, and the rest of the run is not attempted.
class KVARTA16_EXPORT Akt {
  public:
    // The condition of an SQL statement that the date in the column `pole` falls on the day `OOd`,
    // at any time of day; a time in `OOd` makes no difference. `pole` is copied as it stands,
    // brackets included. SQLS true gives the ODBC escape, with an exclusive bound on the next day:
    //   " [dataod]>={d '2001-12-31'} and [dataod]<{d '2002-01-01'} "
    // false the Jet form, with the month first:
    //   " ([dataod] Between #12-31-2001 00:00:00# and #12-31-2001 23:59:59#) "
    // Both begin and end with a blank. Strict; fails as FormatMask does on a day that is beyond
    // the calendar, with SQLS true already where the next day is.
    [[nodiscard]] String DatOne(Date OOd, StringView pole, Boolean SQLS) const;

    // Each run works on `db`, which the caller has opened and closes. With `Pytaj` a box asks
    // first, and any answer but Yes ends the method before anything is read or written. `SQLS`
    // chooses the dialect as in DatOne. Strict; a `db` that is Nothing is the failure 3709.

    // S_PLACE_PARAMETRY, key (id, dataod): adds the rows that are missing.
    void Ustaw_Parametry_płacowe(const std::shared_ptr<ado::Connection>& db, Boolean Pytaj,
                                 Boolean SQLS) const;
    // S_StawkiKM, key (Dataod, Ponizej900): adds the rows that are missing.
    void Ustaw_stawki_ryczałtu(const std::shared_ptr<ado::Connection>& db, Boolean Pytaj,
                               Boolean SQLS) const;
    // S_ODSETKI, key (Rodzaj, od_dnia): adds the rows that are missing and sets `procent` of all.
    void Ustaw_oDSETKI_uSTAWOWE(const std::shared_ptr<ado::Connection>& db, Boolean Pytaj,
                                Boolean SQLS) const;

  private:
    void Dodaj_parametr(const std::shared_ptr<ado::Connection>& db, Boolean SQLS,
                        const statutory::PayrollRow& row) const;
    void Dodaj_stawkę_km(const std::shared_ptr<ado::Connection>& db, Boolean SQLS,
                         const statutory::MileageRow& row) const;
    void Zapisz_odsetki(const std::shared_ptr<ado::Connection>& db, Boolean SQLS,
                        const statutory::InterestRow& row) const;
    void Ustaw_Parametry_płacowe_cd(const std::shared_ptr<ado::Connection>& db, Boolean Pytaj,
                                    Boolean SQLS) const;
};

template <>
struct ClassTable<Akt> {
    static constexpr ClassHeader header{u"Akt", Instancing::Creatable,
                                        "DD3E44DB-B5AB-4416-B9E2-87DB14B8A9F6",
                                        "1B6D43B0-5A05-4729-8F16-16FD5171803E"};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&Akt::DatOne>(u"DatOne", by_reference(u"OOd"), by_reference(u"pole"),
                             by_reference(u"SQLS")),
        method<&Akt::Ustaw_Parametry_płacowe>(u"Ustaw_Parametry_płacowe", by_reference(u"db"),
                                              by_reference(u"Pytaj"), by_reference(u"SQLS")),
        method<&Akt::Ustaw_stawki_ryczałtu>(u"Ustaw_stawki_ryczałtu", by_reference(u"db"),
                                            by_reference(u"Pytaj"), by_reference(u"SQLS")),
        method<&Akt::Ustaw_oDSETKI_uSTAWOWE>(u"Ustaw_oDSETKI_uSTAWOWE", by_reference(u"db"),
                                             by_reference(u"Pytaj"), by_reference(u"SQLS")),
    });
};

}  // namespace kvarta16
