// The seeding of the statutory tables: the statements to the letter, the calls to the database in
// their order, what a run leaves in a table that is empty, partly filled or edited, and what is
// left when an operation of the database fails.

#include <cstddef>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <support/fake_platform.h>
#include <support/memory_ado.h>
#include <support/sanitized.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/forwarding.h>
#include <kvarta16/statutory/Akt.h>

namespace kvarta16 {
namespace {

using namespace literals;
using testing_support::FakePlatform;
using testing_support::is_sanitized;
using testing_support::MemoryConnection;
using ConnectionPointer = std::shared_ptr<ado::Connection>;
using Log = std::vector<std::string>;
using Rows = std::vector<MemoryConnection::Row>;  // under one statement

std::shared_ptr<MemoryConnection> memory() {
    return std::make_shared<MemoryConnection>();
}

template <class Call>
Long failure_of(Call&& call) {
    try {
        call();
    } catch (const Failure& failure) {
        return failure.number();
    }
    return 0;
}

// ---- The three runs -------------------------------------------------------------------------

struct Run {
    const char* name;
    void (Akt::*method)(const ConnectionPointer&, Boolean, Boolean) const;
    StringView question;
    std::size_t entries;
    std::size_t keys;
};

constexpr Run payroll{"payroll", &Akt::Ustaw_Parametry_płacowe,
                      u"Aktualizować parametry płacowe ? ", 725, 722};
constexpr Run mileage{"mileage", &Akt::Ustaw_stawki_ryczałtu,
                      u"Aktualizować stawki ryczałtu samochodowego ? ", 12, 12};
constexpr Run interest{"interest", &Akt::Ustaw_oDSETKI_uSTAWOWE,
                       u"Aktualizować stawki odsetek ustawowych ? ", 87, 86};

constexpr bool odbc = true;
constexpr bool jet = false;

void seed(const Run& run, const ConnectionPointer& db, bool dialect = odbc) {
    const Akt akt;
    (akt.*run.method)(db, false, dialect);
}

// ---- The statements as they are sent --------------------------------------------------------

String payroll_statement(const char16_t* id, const String& condition) {
    return u"select [id],[dataod],[wartosc],[wartosc2],[wartosc3],[wartosc4],[wartosc5],"
           u"[wartosc6],[wartosc7],[wartosc8],[wartosc9],[wartosc10] from S_PLACE_PARAMETRY "
           u"WHERE [ID]=" +
           String(id) + u" AND " + condition;
}
String mileage_statement(const char16_t* flag, const String& condition) {
    return u"select [Dataod],[Ponizej900],[wartosc_wsp4] From [S_StawkiKM] WHERE [PONIzej900]=" +
           String(flag) + u" AND " + condition;
}
String interest_statement(const char16_t* kind, const String& condition) {
    return u"select top 1 [Rodzaj],[od_dnia],[procent] from S_ODSETKI WHERE [RODZAJ]=" +
           String(kind) + u" AND " + condition;
}

// "2001-12-31" and "2002-01-01" in the ODBC escape; the test says both days itself.
String between(const char16_t* column, const char16_t* day, const char16_t* next) {
    return u" " + String(column) + u">={d '" + day + u"'} and " + column + u"<{d '" + next + u"'} ";
}
// "12-31-2001" in the Jet form.
String on_day(const char16_t* column, const char16_t* day) {
    return u" (" + String(column) + u" Between #" + day + u" 00:00:00# and #" + day +
           u" 23:59:59#) ";
}

// The rows that are held under a statement.
Rows held(const MemoryConnection& db, const String& statement) {
    const auto found = db.rows.find(statement);
    return found == db.rows.end() ? Rows{} : found->second;
}

MemoryConnection::Row payroll_row(Integer id, Date day, std::vector<Currency> amounts) {
    amounts.resize(10);
    MemoryConnection::Row row{id, day};
    row.insert(row.end(), amounts.begin(), amounts.end());
    return row;
}

// ---- DatOne ---------------------------------------------------------------------------------

struct ConditionCase {
    Date day;
    StringView column;
    StringView odbc;
    StringView jet;
};

const ConditionCase condition_cases[] = {
    {"2001-12-31"_date, u"[dataod]", u" [dataod]>={d '2001-12-31'} and [dataod]<{d '2002-01-01'} ",
     u" ([dataod] Between #12-31-2001 00:00:00# and #12-31-2001 23:59:59#) "},
    {"2016-01-01"_date, u"[od_dnia]",
     u" [od_dnia]>={d '2016-01-01'} and [od_dnia]<{d '2016-01-02'} ",
     u" ([od_dnia] Between #01-01-2016 00:00:00# and #01-01-2016 23:59:59#) "},
    {"2024-02-28"_date, u"d", u" d>={d '2024-02-28'} and d<{d '2024-02-29'} ",
     u" (d Between #02-28-2024 00:00:00# and #02-28-2024 23:59:59#) "},
    {"2024-02-29"_date, u"d", u" d>={d '2024-02-29'} and d<{d '2024-03-01'} ",
     u" (d Between #02-29-2024 00:00:00# and #02-29-2024 23:59:59#) "},
    {"2023-02-28"_date, u"d", u" d>={d '2023-02-28'} and d<{d '2023-03-01'} ",
     u" (d Between #02-28-2023 00:00:00# and #02-28-2023 23:59:59#) "},
    {"2020-04-30"_date, u"", u" >={d '2020-04-30'} and <{d '2020-05-01'} ",
     u" ( Between #04-30-2020 00:00:00# and #04-30-2020 23:59:59#) "},
    {"1899-12-30"_date, u"t.[żółw']",
     u" t.[żółw']>={d '1899-12-30'} and t.[żółw']<{d '1899-12-31'} ",
     u" (t.[żółw'] Between #12-30-1899 00:00:00# and #12-30-1899 23:59:59#) "},
    {"1863-01-22"_date, u"d", u" d>={d '1863-01-22'} and d<{d '1863-01-23'} ",
     u" (d Between #01-22-1863 00:00:00# and #01-22-1863 23:59:59#) "},
    {"0100-01-01"_date, u"d", u" d>={d '0100-01-01'} and d<{d '0100-01-02'} ",
     u" (d Between #01-01-0100 00:00:00# and #01-01-0100 23:59:59#) "},
};

TEST(DatOne, BothDialects) {
    const Akt akt;
    for (const ConditionCase& condition : condition_cases) {
        EXPECT_EQ(akt.DatOne(condition.day, condition.column, true), condition.odbc);
        EXPECT_EQ(akt.DatOne(condition.day, condition.column, false), condition.jet);
    }
}

TEST(DatOne, TimeOfDayMakesNoDifference) {
    const Akt akt;
    for (const ConditionCase& condition : condition_cases) {
        for (const Double time : {0.0625, 0.5, 0.625, 0.99}) {
            // Before day 0 the fraction still counts forward, away from zero.
            const Double sign = condition.day.days < 0 ? -1 : 1;
            const Date moment{condition.day.days + sign * time};
            EXPECT_EQ(akt.DatOne(moment, condition.column, true), condition.odbc);
            EXPECT_EQ(akt.DatOne(moment, condition.column, false), condition.jet);
        }
    }
}

TEST(DatOne, AnyTruthOfAPlatformChoosesTheOdbcEscape) {
    EXPECT_EQ(Akt().DatOne("2001-12-31"_date, u"[dataod]", Boolean::from_raw(1)),
              condition_cases[0].odbc);
}

TEST(DatOne, EndOfTheCalendar) {
    const Akt akt;
    const Date last = "9999-12-31"_date;
    EXPECT_EQ(akt.DatOne(last, u"d", false),
              u" (d Between #12-31-9999 00:00:00# and #12-31-9999 23:59:59#) ");
    const Date beyond{last.days + 1};
    const Long number = failure_of([&] { static_cast<void>(FormatMask(beyond, u"yyyy-MM-dd")); });
    EXPECT_NE(number, 0);
    EXPECT_EQ(failure_of([&] { static_cast<void>(akt.DatOne(last, u"d", true)); }), number);
    EXPECT_EQ(failure_of([&] { static_cast<void>(akt.DatOne(beyond, u"d", true)); }), number);
    EXPECT_EQ(failure_of([&] { static_cast<void>(akt.DatOne(beyond, u"d", false)); }), number);
}

// ---- The question ---------------------------------------------------------------------------

class EachRun : public testing::TestWithParam<Run> {};
INSTANTIATE_TEST_SUITE_P(Akt, EachRun, testing::Values(payroll, mileage, interest),
                         [](const auto& run) { return std::string(run.param.name); });

void ask(const Run& run, const ConnectionPointer& db, Boolean ask_first) {
    const Akt akt;
    (akt.*run.method)(db, ask_first, true);
}

TEST_P(EachRun, AsksAndTouchesNothingWithoutAYes) {
    // With no answer queued the box is answered as nobody would, by No.
    for (const auto answer : {std::optional(MsgBoxResult::No), std::optional(MsgBoxResult::Cancel),
                              std::optional(MsgBoxResult::Ok), std::optional<MsgBoxResult>()}) {
        FakePlatform fake;
        if (answer.has_value()) {
            fake.boxes.answers = {*answer};
        }
        const auto db = memory();
        ask(GetParam(), db, true);
        EXPECT_EQ(db->log, Log{});
        ASSERT_EQ(fake.boxes.shown.size(), 1U);
        EXPECT_EQ(fake.boxes.shown[0].text, GetParam().question);
        EXPECT_EQ(fake.boxes.shown[0].style, 36);  // Yes and No, question icon, Yes the default
        EXPECT_EQ(fake.boxes.shown[0].title, std::nullopt);
    }
}

TEST_P(EachRun, RunsWholeAfterOneYes) {
    for (const Boolean truth : {Boolean(true), Boolean::from_raw(1)}) {
        FakePlatform fake;
        fake.boxes.answers = {MsgBoxResult::Yes};
        const auto db = memory();
        ask(GetParam(), db, truth);
        EXPECT_EQ(fake.boxes.shown.size(), 1U);
        EXPECT_EQ(db->statements.size(), GetParam().entries);
        EXPECT_EQ(db->row_count(), GetParam().keys);
    }
}

TEST_P(EachRun, ShowsNoBoxUnlessToldTo) {
    FakePlatform fake;
    const auto db = memory();
    ask(GetParam(), db, false);
    EXPECT_TRUE(fake.boxes.shown.empty());
    EXPECT_EQ(db->row_count(), GetParam().keys);
}

TEST_P(EachRun, BoxThatFailsEndsTheRun) {
    FakePlatform fake;
    const auto plan = std::make_shared<FaultPlan>();
    plan->fail_at("MsgBox", 1, FaultSpan::Once, 70);
    const auto boxes = faulting(fake.boxes, plan);
    Platform operations = fake.operations;
    operations.message_boxes = boxes.get();
    const ScopedPlatform scope(operations);
    const auto db = memory();
    EXPECT_EQ(failure_of([&] { ask(GetParam(), db, true); }), 70);
    EXPECT_EQ(db->log, Log{});
}

// ---- A connection that cannot be used -------------------------------------------------------

TEST_P(EachRun, NothingAsConnection) {
    try {
        ask(GetParam(), nullptr, false);
        FAIL() << "no failure";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.number(), ado::error_invalid_connection);
        EXPECT_FALSE(failure.description().empty());
    }
}

TEST_P(EachRun, NothingAsConnectionIsNoticedAfterTheQuestion) {
    FakePlatform fake;
    fake.boxes.answers = {MsgBoxResult::No, MsgBoxResult::Yes};
    ask(GetParam(), nullptr, true);
    EXPECT_EQ(failure_of([] { ask(GetParam(), nullptr, true); }), ado::error_invalid_connection);
    EXPECT_EQ(fake.boxes.shown.size(), 2U);
}

TEST_P(EachRun, ClosedConnection) {
    const auto db = memory();
    db->Close();
    EXPECT_EQ(failure_of([&] { seed(GetParam(), db); }), ado::error_object_closed);
    EXPECT_EQ(db->log, (Log{"Connection.Close", "CreateRecordset"}));
    EXPECT_EQ(db->row_count(), 0U);
}

// ---- The calls in their order ---------------------------------------------------------------

// What the first entry, or the n-th, has sent to the database.
Log calls_of_entry(const MemoryConnection& db, std::size_t n) {
    Log calls;
    std::size_t entry = 0;
    for (const std::string& call : db.log) {
        entry += call == "CreateRecordset" ? 1 : 0;
        if (entry == n) {
            calls.push_back(call);
        }
    }
    return calls;
}

std::string open_call(const String& statement) {
    return "Open(" + to_utf8(statement) + "; 3, 3, -1)";
}

TEST(Payroll, AbsentRowIsAddedWithAllTwelveFields) {
    const auto db = memory();
    seed(payroll, db);
    const String statement =
        payroll_statement(u"67", between(u"[dataod]", u"2000-01-01", u"2000-01-02"));
    EXPECT_EQ(calls_of_entry(*db, 1), (Log{"CreateRecordset",
                                           open_call(statement),
                                           "EOF",
                                           "AddNew",
                                           "Fields(Integer 0)",
                                           "Value = Integer 67",
                                           "Fields(Integer 1)",
                                           "Value = Date 2000-01-01",
                                           "Fields(Integer 2)",
                                           "Value = Currency 380.0000",
                                           "Fields(Integer 3)",
                                           "Value = Currency 0.0000",
                                           "Fields(Integer 4)",
                                           "Value = Currency 0.0000",
                                           "Fields(Integer 5)",
                                           "Value = Currency 0.0000",
                                           "Fields(Integer 6)",
                                           "Value = Currency 0.0000",
                                           "Fields(Integer 7)",
                                           "Value = Currency 0.0000",
                                           "Fields(Integer 8)",
                                           "Value = Currency 0.0000",
                                           "Fields(Integer 9)",
                                           "Value = Currency 0.0000",
                                           "Fields(Integer 10)",
                                           "Value = Currency 0.0000",
                                           "Fields(Integer 11)",
                                           "Value = Currency 0.0000",
                                           "UpdateBatch(1)",
                                           "Close",
                                           "release"}));
}

TEST(Payroll, AllTenValuesInTheirOrder) {
    const auto db = memory();
    seed(payroll, db, jet);
    const String statement = payroll_statement(u"113", on_day(u"[dataod]", u"01-01-2022"));
    EXPECT_EQ(held(*db, statement),
              (Rows{payroll_row(113, "2022-01-01"_date,
                                {68412_cur, 102588_cur, 6.68_cur, 4566_cur, 17_cur, 102588_cur,
                                 133692_cur, 7.35_cur, 9829_cur, 17_cur})}));
}

TEST(Payroll, FoundRowIsOnlyLookedUp) {
    const auto db = memory();
    const String statement = payroll_statement(u"67", on_day(u"[dataod]", u"01-01-2000"));
    const Rows stored{payroll_row(67, "2000-01-01"_date, {1_cur})};
    db->rows[statement] = stored;
    seed(payroll, db, jet);
    EXPECT_EQ(calls_of_entry(*db, 1),
              (Log{"CreateRecordset", open_call(statement), "EOF", "Close", "release"}));
    EXPECT_EQ(held(*db, statement), stored);
}

TEST(Mileage, AbsentRow) {
    const auto db = memory();
    seed(mileage, db);
    const String condition = between(u"[dataod]", u"2001-11-01", u"2001-11-02");
    EXPECT_EQ(calls_of_entry(*db, 1),
              (Log{"CreateRecordset", open_call(mileage_statement(u"-1", condition)), "EOF",
                   "AddNew", "Fields(Integer 0)", "Value = Date 2001-11-01", "Fields(Integer 1)",
                   "Value = Boolean -1", "Fields(Integer 2)", "Value = Currency 0.4488",
                   "UpdateBatch(1)", "Close", "release"}));
    EXPECT_EQ(calls_of_entry(*db, 2),
              (Log{"CreateRecordset", open_call(mileage_statement(u"0", condition)), "EOF",
                   "AddNew", "Fields(Integer 0)", "Value = Date 2001-11-01", "Fields(Integer 1)",
                   "Value = Boolean 0", "Fields(Integer 2)", "Value = Currency 0.7195",
                   "UpdateBatch(1)", "Close", "release"}));
}

TEST(Mileage, FoundRowIsOnlyLookedUp) {
    const auto db = memory();
    const String statement =
        mileage_statement(u"-1", between(u"[dataod]", u"2007-11-14", u"2007-11-15"));
    const Rows stored{{"2007-11-14"_date, Boolean(true), 0.50_cur}};
    db->rows[statement] = stored;
    seed(mileage, db);
    EXPECT_EQ(calls_of_entry(*db, 9),
              (Log{"CreateRecordset", open_call(statement), "EOF", "Close", "release"}));
    EXPECT_EQ(held(*db, statement), stored);
    EXPECT_EQ(db->row_count(), 12U);
}

TEST(Interest, AbsentRow) {
    const auto db = memory();
    seed(interest, db);
    const String statement =
        interest_statement(u"0", between(u"[od_dnia]", u"1999-02-01", u"1999-02-02"));
    EXPECT_EQ(calls_of_entry(*db, 1),
              (Log{"CreateRecordset", open_call(statement), "EOF", "AddNew",
                   "Fields(String Rodzaj)", "Value = Integer 0", "Fields(String od_dnia)",
                   "Value = Date 1999-02-01", "Fields(String procent)", "Value = Currency 24.0000",
                   "UpdateBatch(1)", "Close", "release"}));
}

TEST(Interest, FoundRowGetsTheRateAlone) {
    const auto db = memory();
    const String statement = interest_statement(u"0", on_day(u"[od_dnia]", u"02-01-1999"));
    const Date afternoon{"1999-02-01"_date.days + 0.625};
    db->rows[statement] = {{Integer{0}, afternoon, 99_cur}};
    seed(interest, db, jet);
    EXPECT_EQ(calls_of_entry(*db, 1),
              (Log{"CreateRecordset", open_call(statement), "EOF", "Fields(String procent)",
                   "Value = Currency 24.0000", "UpdateBatch(1)", "Close", "release"}));
    EXPECT_EQ(held(*db, statement), (Rows{{Integer{0}, afternoon, 24_cur}}));
}

TEST(Interest, OfTwoRowsWithOneKeyTheFirstGetsTheRate) {
    const auto db = memory();
    const String statement =
        interest_statement(u"0", between(u"[od_dnia]", u"1999-02-01", u"1999-02-02"));
    db->rows[statement] = {{Integer{0}, "1999-02-01"_date, 99_cur},
                           {Integer{0}, "1999-02-01"_date, 98_cur}};
    seed(interest, db);
    EXPECT_EQ(held(*db, statement), (Rows{{Integer{0}, "1999-02-01"_date, 24_cur},
                                          {Integer{0}, "1999-02-01"_date, 98_cur}}));
}

// ---- Whole runs -----------------------------------------------------------------------------

TEST_P(EachRun, LooksUpEveryEntryWithARecordsetOfItsOwn) {
    const auto db = memory();
    seed(GetParam(), db);
    EXPECT_EQ(db->calls("CreateRecordset"), GetParam().entries);
    EXPECT_EQ(db->calls("Open("), GetParam().entries);
    EXPECT_EQ(db->calls("EOF"), GetParam().entries);
    EXPECT_EQ(db->calls("AddNew"), GetParam().keys);
    EXPECT_EQ(db->calls("Close"), GetParam().entries);
    EXPECT_EQ(db->calls("release"), GetParam().entries);
    for (std::size_t n = 1; n <= GetParam().entries; ++n) {
        const Log calls = calls_of_entry(*db, n);  // whole before the next entry begins
        EXPECT_EQ(calls.back(), "release");
        EXPECT_EQ(calls[calls.size() - 2], "Close");
    }
    EXPECT_EQ(db->row_count(), GetParam().keys);
    EXPECT_EQ(db->recordsets_alive, 0);
    EXPECT_TRUE(db->is_open);
    EXPECT_EQ(db->calls("BeginTrans"), 0U);
}

TEST_P(EachRun, SecondRunAddsNothing) {
    for (const bool dialect : {odbc, jet}) {
        const auto db = memory();
        seed(GetParam(), db, dialect);
        const MemoryConnection::Rows complete = db->rows;
        db->log.clear();
        seed(GetParam(), db, dialect);
        EXPECT_EQ(db->rows, complete);
        EXPECT_EQ(db->calls("AddNew"), 0U);
        // Payroll and mileage write nothing, interest writes all its rows.
        const bool rewrites = std::string(GetParam().name) == "interest";
        EXPECT_EQ(db->calls("UpdateBatch"), rewrites ? GetParam().entries : 0U);
        EXPECT_EQ(db->calls("Close"), GetParam().entries);
    }
}

// A statement of either dialect as "table part|day", so that both find the same rows.
String key_in_any_dialect(StringView statement) {
    const std::size_t condition = statement.find(u" AND ");
    const StringView table = statement.substr(0, condition);
    const StringView rest = statement.substr(condition);
    if (const std::size_t escape = rest.find(u"{d '"); escape != StringView::npos) {
        return String(table) + u"|" + String(rest.substr(escape + 4, 10));
    }
    const StringView day = rest.substr(rest.find(u'#') + 1, 10);
    return String(table) + u"|" + String(day.substr(6)) + u"-" + String(day.substr(0, 5));
}

TEST_P(EachRun, BothDialectsSendTheSameKeysInTheSameOrder) {
    const auto first = memory();
    const auto second = memory();
    seed(GetParam(), first, odbc);
    seed(GetParam(), second, jet);
    ASSERT_EQ(first->statements.size(), second->statements.size());
    for (std::size_t i = 0; i < first->statements.size(); ++i) {
        EXPECT_EQ(key_in_any_dialect(first->statements[i]),
                  key_in_any_dialect(second->statements[i]));
        EXPECT_NE(first->statements[i], second->statements[i]);
    }
}

TEST_P(EachRun, RunInTheOtherDialectFindsTheRows) {
    const auto db = memory();
    db->key_of = key_in_any_dialect;
    seed(GetParam(), db, odbc);
    seed(GetParam(), db, jet);
    EXPECT_EQ(db->calls("AddNew"), GetParam().keys);
    EXPECT_EQ(db->row_count(), GetParam().keys);
}

TEST_P(EachRun, DeletedRowsComeBackAndOwnRowsStay) {
    const auto db = memory();
    seed(GetParam(), db);
    const MemoryConnection::Rows complete = db->rows;
    std::erase_if(db->rows, [n = 0](const auto&) mutable { return n++ % 3 == 0; });
    const String own = u"select [x] from a key of the users' own";
    db->rows[own] = {{Integer{1}}};
    seed(GetParam(), db);
    EXPECT_EQ(held(*db, own).size(), 1U);
    db->rows.erase(own);
    EXPECT_EQ(db->rows, complete);
}

TEST_P(EachRun, CountOfRowsIsTheHostsProgress) {
    class Counted final : public ado::ForwardingConnection {
      public:
        using ForwardingConnection::ForwardingConnection;
        std::shared_ptr<ado::Recordset> CreateRecordset() override {
            ++rows;
            return ForwardingConnection::CreateRecordset();
        }
        std::size_t rows = 0;
    };
    const auto db = std::make_shared<Counted>(memory());
    seed(GetParam(), db);
    EXPECT_EQ(db->rows, GetParam().entries);
}

TEST(Akt, CountsOfRows) {
    EXPECT_EQ(statutory::payroll_row_count, payroll.entries);
    EXPECT_EQ(statutory::mileage_row_count, mileage.entries);
    EXPECT_EQ(statutory::interest_row_count, interest.entries);
}

TEST(Payroll, TwoHalvesInTheirOrder) {
    const auto db = memory();
    seed(payroll, db);
    EXPECT_EQ(db->statements.at(370),
              payroll_statement(u"51", between(u"[dataod]", u"2012-12-01", u"2012-12-02")));
    EXPECT_EQ(db->statements.at(371),
              payroll_statement(u"61", between(u"[dataod]", u"2013-01-01", u"2013-01-02")));
    EXPECT_EQ(db->statements.at(724),
              payroll_statement(u"61", between(u"[dataod]", u"2025-04-01", u"2025-04-02")));
}

TEST(Payroll, FirstEntryOfARepeatedKeyWins) {
    const auto db = memory();
    seed(payroll, db);
    const auto on = [&](const char16_t* id, const char16_t* day, const char16_t* next) {
        return held(*db, payroll_statement(id, between(u"[dataod]", day, next)));
    };
    EXPECT_EQ(on(u"45", u"2009-03-01", u"2009-03-02"),
              (Rows{payroll_row(45, "2009-03-01"_date, {6193.10_cur})}));
    EXPECT_TRUE(on(u"45", u"2010-03-01", u"2010-03-02").empty());
    EXPECT_EQ(on(u"61", u"2008-04-01", u"2008-04-02"),
              (Rows{payroll_row(61, "2008-04-01"_date, {109.7_cur})}));
    EXPECT_EQ(on(u"64", u"2017-01-01", u"2017-01-02"),
              (Rows{payroll_row(64, "2017-01-01"_date, {4263_cur})}));
}

TEST(Payroll, ZeroIsAValue) {
    const auto db = memory();
    seed(payroll, db);
    EXPECT_EQ(
        held(*db, payroll_statement(u"66", between(u"[dataod]", u"2009-02-01", u"2009-02-02"))),
        (Rows{payroll_row(66, "2009-02-01"_date, {})}));
    EXPECT_EQ(
        held(*db, payroll_statement(u"3", between(u"[dataod]", u"2022-01-01", u"2022-01-02"))),
        (Rows{payroll_row(3, "2022-01-01"_date, {0_cur})}));
}

TEST(Payroll, EditedRowStaysAsItIs) {
    const auto db = memory();
    const String statement =
        payroll_statement(u"20", between(u"[dataod]", u"2001-01-01", u"2001-01-02"));
    const Rows edited{payroll_row(20, "2001-01-01"_date, {1_cur, 2_cur, 3_cur})};
    db->rows[statement] = edited;
    seed(payroll, db);
    EXPECT_EQ(held(*db, statement), edited);
    EXPECT_EQ(db->calls("AddNew"), 721U);
}

TEST(Mileage, WholeRunInOrder) {
    struct Entry {
        const char16_t* day = u"";
        const char16_t* next = u"";
        const char16_t* jet_day = u"";
        Date date;
        Currency small;
        Currency large;
    };
    const Entry entries[] = {
        {u"2001-11-01", u"2001-11-02", u"11-01-2001", "2001-11-01"_date, 0.4488_cur, 0.7195_cur},
        {u"2002-04-01", u"2002-04-02", u"04-01-2002", "2002-04-01"_date, 0.469_cur, 0.7519_cur},
        {u"2003-01-01", u"2003-01-02", u"01-01-2003", "2003-01-01"_date, 0.4798_cur, 0.7692_cur},
        {u"2004-03-01", u"2004-03-02", u"03-01-2004", "2004-03-01"_date, 0.4894_cur, 0.7846_cur},
        {u"2007-11-14", u"2007-11-15", u"11-14-2007", "2007-11-14"_date, 0.5214_cur, 0.8358_cur},
        {u"2023-01-17", u"2023-01-18", u"01-17-2023", "2023-01-17"_date, 0.89_cur, 1.15_cur},
    };
    for (const bool dialect : {odbc, jet}) {
        std::vector<std::pair<String, MemoryConnection::Row>> expected;
        for (const Entry& entry : entries) {
            const String condition = dialect == odbc ? between(u"[dataod]", entry.day, entry.next)
                                                     : on_day(u"[dataod]", entry.jet_day);
            expected.push_back(
                {mileage_statement(u"-1", condition), {entry.date, Boolean(true), entry.small}});
            expected.push_back(
                {mileage_statement(u"0", condition), {entry.date, Boolean(false), entry.large}});
        }
        const auto db = memory();
        seed(mileage, db, dialect);
        EXPECT_EQ(db->stored, expected);
    }
}

TEST(Interest, FourthEntryOf20211104GoesUnderKind1) {
    for (int runs = 1; runs <= 2; ++runs) {
        const auto db = memory();
        for (int run = 0; run < runs; ++run) {
            seed(interest, db);
        }
        const String condition = between(u"[od_dnia]", u"2021-11-04", u"2021-11-05");
        EXPECT_EQ(held(*db, interest_statement(u"1", condition)),
                  (Rows{{Integer{1}, "2021-11-04"_date, 9.5_cur}}));
        EXPECT_TRUE(held(*db, interest_statement(u"3", condition)).empty());
    }
}

TEST(Interest, EditedRateIsBackAfterARun) {
    const auto db = memory();
    seed(interest, db);
    const MemoryConnection::Rows complete = db->rows;
    for (auto& [statement, rows] : db->rows) {
        rows[0][2] = 99_cur;
    }
    seed(interest, db);
    EXPECT_EQ(db->rows, complete);
}

TEST(Interest, LaterDateOf2014ComesFirstAndNoneIsPast20220808) {
    const auto db = memory();
    seed(interest, db);
    std::vector<Date> dates;
    for (const auto& [key, row] : db->stored) {
        dates.push_back(*row[1].get_if<Date>());
        EXPECT_LE(dates.back(), "2022-08-08"_date);
    }
    EXPECT_EQ(dates.at(10), "2014-12-23"_date);
    EXPECT_EQ(dates.at(11), "2014-10-09"_date);
    EXPECT_EQ(dates.at(12), "2014-10-09"_date);
    EXPECT_EQ(dates.back(), "2022-08-08"_date);
}

// ---- Faults ---------------------------------------------------------------------------------

// An operation that a run uses, and how its calls begin in the log.
struct FaultyOperation {
    const char* name;
    const char* entry;
};
constexpr FaultyOperation faulty_operations[] = {
    {"CreateRecordset", "CreateRecordset"},
    {"Open", "Open("},
    {"EOF", "EOF"},
    {"AddNew", "AddNew"},
    {"Fields", "Fields("},
    {"Value", "Value = "},
    {"UpdateBatch", "UpdateBatch("},
    {"Close", "Close"},
};

// What a run leaves in the log that is stopped at the n-th call of an operation: all calls before
// it and the release of the recordset that is open, and no Close.
Log log_up_to(const Log& complete, const FaultyOperation& operation, std::size_t n) {
    Log log;
    for (const std::string& call : complete) {
        n -= call.starts_with(operation.entry) ? 1 : 0;
        if (n == 0) {
            break;
        }
        log.push_back(call);
    }
    if (std::string(operation.name) != "CreateRecordset") {
        log.emplace_back("release");
    }
    return log;
}

struct CompleteRun {
    Log log;
    std::vector<std::pair<String, MemoryConnection::Row>> stored;
    MemoryConnection::Rows rows;
};

CompleteRun complete_run(const Run& run) {
    const auto db = memory();
    seed(run, db);
    return {db->log, db->stored, db->rows};
}

void expect_stopped(const MemoryConnection& db, const CompleteRun& complete,
                    const FaultyOperation& operation, std::size_t n) {
    EXPECT_EQ(db.log, log_up_to(complete.log, operation, n));
    EXPECT_EQ(db.recordsets_alive, 0);
    // What has been stored before is there, row for row.
    ASSERT_EQ(db.stored.size(), db.calls("UpdateBatch"));
    EXPECT_TRUE(std::equal(db.stored.begin(), db.stored.end(), complete.stored.begin()));
    std::set<String> keys;
    for (const auto& [key, row] : db.stored) {
        keys.insert(key);
    }
    EXPECT_EQ(db.row_count(), keys.size());
}

void fault_at(const Run& run, const CompleteRun& complete, const FaultyOperation& operation,
              std::size_t n, FaultSpan span) {
    SCOPED_TRACE(std::string(run.name) + " " + operation.name + " " + std::to_string(n));
    const auto behind = memory();
    const auto plan = std::make_shared<FaultPlan>();
    const ConnectionPointer db = faulting(behind, plan);
    const Long number = -2147467259 + static_cast<Long>(n);
    plan->fail_at(operation.name, static_cast<Long>(n), span, number);
    EXPECT_EQ(failure_of([&] { seed(run, db); }), number);
    EXPECT_EQ(plan->failed_calls(), 1);
    expect_stopped(*behind, complete, operation, n);

    if (span == FaultSpan::FromThenOn) {
        // While the fault lasts a run gets no further than the first call that fails.
        const std::size_t rows = behind->row_count();
        EXPECT_EQ(failure_of([&] { seed(run, db); }), number);
        EXPECT_EQ(plan->failed_calls(), 2);
        EXPECT_EQ(behind->recordsets_alive, 0);
        EXPECT_GE(behind->row_count(), rows);
        plan->clear();
    }
    seed(run, db);
    EXPECT_EQ(behind->rows, complete.rows);
    EXPECT_EQ(behind->recordsets_alive, 0);
}

// All calls of the short runs; of the long one the calls of the first and last rows and some in
// between, which fall on each place in a row, by turns once and for good.
bool is_chosen(std::size_t n, std::size_t calls, FaultSpan span) {
    constexpr std::size_t all = is_sanitized ? 40 : 300;
    constexpr std::size_t edge = is_sanitized ? 4 : 13;
    if (calls <= all) {
        return true;
    }
    const bool is_turn = (n % 2 == 0) == (span == FaultSpan::Once);
    return is_turn && (n <= edge || n + edge > calls || n % 997 == 0);
}

TEST_P(EachRun, FaultAtEachCallOfEachOperation) {
    const CompleteRun complete = complete_run(GetParam());
    for (const FaultyOperation& operation : faulty_operations) {
        const auto calls = static_cast<std::size_t>(std::ranges::count_if(
            complete.log,
            [&](const std::string& call) { return call.starts_with(operation.entry); }));
        ASSERT_GE(calls, GetParam().keys) << operation.name;
        for (std::size_t n = 1; n <= calls && !HasFailure(); ++n) {
            for (const FaultSpan span : {FaultSpan::Once, FaultSpan::FromThenOn}) {
                if (is_chosen(n, calls, span)) {
                    fault_at(GetParam(), complete, operation, n, span);
                }
            }
        }
    }
}

TEST(Payroll, FaultInTheFirstHalfKeepsTheSecondFromStarting) {
    const auto behind = memory();
    const auto plan = std::make_shared<FaultPlan>();
    const ConnectionPointer db = faulting(behind, plan);
    plan->fail_at("Open", 371, FaultSpan::Once, 3197);
    EXPECT_EQ(failure_of([&] { seed(payroll, db); }), 3197);
    EXPECT_EQ(behind->statements.size(), 370U);
}

TEST(Payroll, RunStoppedAfterItsHundredthRowKeepsThem) {
    const auto behind = memory();
    const auto plan = std::make_shared<FaultPlan>();
    const ConnectionPointer db = faulting(behind, plan);
    plan->fail_at("CreateRecordset", 101, FaultSpan::Once, 3197);
    EXPECT_EQ(failure_of([&] { seed(payroll, db); }), 3197);
    EXPECT_EQ(behind->row_count(), 100U);
    seed(payroll, db);
    EXPECT_EQ(behind->row_count(), 722U);
}

TEST_P(EachRun, CallersTransactionMakesItAllOrNothing) {
    const auto behind = memory();
    const auto plan = std::make_shared<FaultPlan>();
    const ConnectionPointer db = faulting(behind, plan);
    plan->fail_at("UpdateBatch", 10, FaultSpan::Once, 3197);
    db->BeginTrans();
    EXPECT_EQ(failure_of([&] { seed(GetParam(), db); }), 3197);
    EXPECT_EQ(behind->row_count(), 9U);
    db->RollbackTrans();
    EXPECT_EQ(behind->row_count(), 0U);
    db->BeginTrans();
    seed(GetParam(), db);
    db->CommitTrans();
    EXPECT_EQ(behind->row_count(), GetParam().keys);
}

// ---- The table of the class -----------------------------------------------------------------

TEST(AktTable, MembersInInterfaceOrder) {
    using Table = ClassTable<Akt>;
    EXPECT_EQ(Table::header.name, u"Akt");
    EXPECT_EQ(Table::header.instancing, Instancing::Creatable);
    EXPECT_EQ(Table::header.interface_id, "DD3E44DB-B5AB-4416-B9E2-87DB14B8A9F6");
    EXPECT_EQ(Table::header.class_id, "1B6D43B0-5A05-4729-8F16-16FD5171803E");

    const StringView names[] = {u"DatOne", u"Ustaw_Parametry_płacowe", u"Ustaw_stawki_ryczałtu",
                                u"Ustaw_oDSETKI_uSTAWOWE"};
    ASSERT_EQ(Table::members.size(), std::size(names));
    for (std::size_t i = 0; i < std::size(names); ++i) {
        const MemberInfo& member = Table::members[i];
        EXPECT_EQ(member.name, names[i]);
        EXPECT_TRUE(member.is_built());
        EXPECT_EQ(member.result, i == 0 ? TypeName::String : TypeName::None);
        ASSERT_EQ(member.parameters().size(), 3U);
        for (const Parameter& parameter : member.parameters()) {
            EXPECT_EQ(parameter.passing, Passing::ByReference);
            EXPECT_FALSE(parameter.is_optional);
        }
        EXPECT_EQ(member.parameters()[0].type, i == 0 ? TypeName::Date : TypeName::Object);
        EXPECT_EQ(member.parameters()[1].type, i == 0 ? TypeName::String : TypeName::Boolean);
        EXPECT_EQ(member.parameters()[2].type, TypeName::Boolean);
    }
}

TEST(AktTable, LateBoundCallsWriteNothingBack) {
    Akt akt;
    Date day = "2001-12-31"_date;
    String column = u"[dataod]";
    Boolean dialect = true;
    Arguments arguments{Variant::reference(day), Variant::reference(column),
                        Variant::reference(dialect)};
    EXPECT_EQ(invoke(ClassTable<Akt>::members[0], &akt, arguments),
              Variant(condition_cases[0].odbc));
    EXPECT_EQ(day, "2001-12-31"_date);
    EXPECT_EQ(column, u"[dataod]");
    EXPECT_EQ(dialect, Boolean(true));

    const auto db = memory();
    Arguments run{Variant(db), false, Integer{1}};
    EXPECT_TRUE(invoke(ClassTable<Akt>::members[2], &akt, run).is(Subtype::Empty));
    EXPECT_EQ(run[0], Variant(db));
    EXPECT_EQ(db->row_count(), 12U);
}

TEST(AktTable, LateBoundConnection) {
    Akt akt;
    const auto number_of = [&](const Variant& db) {
        Arguments run{db, false, true};
        return failure_of([&] { invoke(ClassTable<Akt>::members[3], &akt, run); });
    };
    EXPECT_EQ(number_of(Variant(ObjectPointer())), ado::error_invalid_connection);
    EXPECT_EQ(number_of(Integer{1}), error::type_mismatch);
    EXPECT_EQ(number_of(memory()->CreateRecordset()), error::type_mismatch);
}

}  // namespace
}  // namespace kvarta16
