#include <iterator>

#include <kvarta16/platform/platform.h>
#include <kvarta16/statutory/Akt.h>
#include <kvarta16/statutory/interest_rows.h>
#include <kvarta16/statutory/mileage_rows.h>
#include <kvarta16/statutory/payroll_rows.h>

namespace kvarta16 {

using ado::Connection;
using ado::Recordset;

namespace {

static_assert(statutory::payroll_row_count ==
              std::size(statutory::payroll_rows_first) + std::size(statutory::payroll_rows_second));
static_assert(statutory::mileage_row_count == std::size(statutory::mileage_rows));
static_assert(statutory::interest_row_count == std::size(statutory::interest_rows));

bool is_agreed(StringView question) {
    constexpr Long style = msg_box::yes_no | msg_box::question;
    return platform().message_boxes->MsgBox(question, style, std::nullopt) == MsgBoxResult::Yes;
}

// A recordset of its own for each row, open on what the statement finds.
std::shared_ptr<Recordset> opened(const std::shared_ptr<Connection>& db, StringView source) {
    if (db == nullptr) {
        throw Failure(ado::error_invalid_connection, u"There is no connection: db is Nothing");
    }
    std::shared_ptr<Recordset> recordset = db->CreateRecordset();
    recordset->Open(source, db, ado::CursorType::adOpenStatic, ado::LockType::adLockOptimistic,
                    ado::adCmdUnspecified);
    return recordset;
}

}  // namespace

String Akt::DatOne(Date OOd, StringView pole, Boolean SQLS) const {
    const String field(pole);
    if (SQLS) {
        const Date day_after{OOd.days + 1};
        return u" " + field + u">={d '" + FormatMask(OOd, u"yyyy-MM-dd") + u"'} and " + field +
               u"<{d '" + FormatMask(day_after, u"yyyy-MM-dd") + u"'} ";
    }
    return u" (" + field + u" Between #" + FormatMask(OOd, u"MM-dd-yyyy 00:00:00") + u"# and #" +
           FormatMask(OOd, u"MM-dd-yyyy 23:59:59") + u"#) ";
}

void Akt::Ustaw_Parametry_płacowe(const std::shared_ptr<Connection>& db, Boolean Pytaj,
                                  Boolean SQLS) const {
    if (Pytaj && !is_agreed(u"Aktualizować parametry płacowe ? ")) {
        return;
    }
    for (const statutory::PayrollRow& row : statutory::payroll_rows_first) {
        Dodaj_parametr(db, SQLS, row);
    }
    Ustaw_Parametry_płacowe_cd(db, Pytaj, SQLS);
}

void Akt::Ustaw_stawki_ryczałtu(const std::shared_ptr<Connection>& db, Boolean Pytaj,
                                Boolean SQLS) const {
    if (Pytaj && !is_agreed(u"Aktualizować stawki ryczałtu samochodowego ? ")) {
        return;
    }
    for (const statutory::MileageRow& row : statutory::mileage_rows) {
        Dodaj_stawkę_km(db, SQLS, row);
    }
}

void Akt::Ustaw_oDSETKI_uSTAWOWE(const std::shared_ptr<Connection>& db, Boolean Pytaj,
                                 Boolean SQLS) const {
    if (Pytaj && !is_agreed(u"Aktualizować stawki odsetek ustawowych ? ")) {
        return;
    }
    for (const statutory::InterestRow& row : statutory::interest_rows) {
        Zapisz_odsetki(db, SQLS, row);
    }
}

// The writers. A failure leaves them without Close, which could fail in its turn and hide it; the
// recordset is dropped on the way out, and a row begun on it with it.

// Inserts the row if its key is absent and otherwise leaves the stored one alone.
void Akt::Dodaj_parametr(const std::shared_ptr<Connection>& db, Boolean SQLS,
                         const statutory::PayrollRow& row) const {
    const String source =
        u"select [id],[dataod],[wartosc],[wartosc2],[wartosc3],[wartosc4],[wartosc5],[wartosc6],"
        u"[wartosc7],[wartosc8],[wartosc9],[wartosc10] from S_PLACE_PARAMETRY WHERE [ID]=" +
        ToText(row.id) + u" AND " + DatOne(row.dataod, u"[dataod]", SQLS);
    const std::shared_ptr<Recordset> recordset = opened(db, source);
    if (recordset->IsEOF()) {
        recordset->AddNew();
        Integer position = 0;
        const auto put_next = [&](const Variant& value) {
            recordset->Fields(position++).PutValue(value);
        };
        put_next(row.id);
        put_next(row.dataod);
        for (const Currency amount : row.wartosc) {
            put_next(amount);
        }
        recordset->UpdateBatch(ado::Affect::adAffectCurrent);
    }
    recordset->Close();
}

// Inserts the row if its key is absent and otherwise leaves the stored one alone.
void Akt::Dodaj_stawkę_km(const std::shared_ptr<Connection>& db, Boolean SQLS,
                          const statutory::MileageRow& row) const {
    const String source =
        u"select [Dataod],[Ponizej900],[wartosc_wsp4] From [S_StawkiKM] WHERE [PONIzej900]=" +
        String(row.ponizej900 ? u"-1" : u"0") + u" AND " + DatOne(row.dataod, u"[dataod]", SQLS);
    const std::shared_ptr<Recordset> recordset = opened(db, source);
    if (recordset->IsEOF()) {
        recordset->AddNew();
        recordset->Fields(Integer{0}).PutValue(row.dataod);
        recordset->Fields(Integer{1}).PutValue(row.ponizej900);
        recordset->Fields(Integer{2}).PutValue(row.wartosc_wsp4);
        recordset->UpdateBatch(ado::Affect::adAffectCurrent);
    }
    recordset->Close();
}

// Inserts the row if its key is absent, and in every case sets the rate.
void Akt::Zapisz_odsetki(const std::shared_ptr<Connection>& db, Boolean SQLS,
                         const statutory::InterestRow& row) const {
    const String source =
        u"select top 1 [Rodzaj],[od_dnia],[procent] from S_ODSETKI WHERE [RODZAJ]=" +
        ToText(row.rodzaj) + u" AND " + DatOne(row.od_dnia, u"[od_dnia]", SQLS);
    const std::shared_ptr<Recordset> recordset = opened(db, source);
    if (recordset->IsEOF()) {
        recordset->AddNew();
        recordset->Fields(u"Rodzaj").PutValue(row.rodzaj);
        recordset->Fields(u"od_dnia").PutValue(row.od_dnia);
    }
    recordset->Fields(u"procent").PutValue(row.procent);
    recordset->UpdateBatch(ado::Affect::adAffectCurrent);
    recordset->Close();
}

// The second half of the payroll run. The first half has asked already.
void Akt::Ustaw_Parametry_płacowe_cd(const std::shared_ptr<Connection>& db, Boolean,
                                     Boolean SQLS) const {
    for (const statutory::PayrollRow& row : statutory::payroll_rows_second) {
        Dodaj_parametr(db, SQLS, row);
    }
}

}  // namespace kvarta16
