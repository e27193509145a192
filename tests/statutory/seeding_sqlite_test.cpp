// The seeding of the statutory tables into real SQLite files: what an empty, a partly filled and an
// edited table hold after a run, in both dialects, and what is left when a run is stopped by a
// failure, a lock, a rolled back transaction or the end of its process.

#include <chrono>
#include <csignal>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <support/fake_platform.h>
#include <support/sqlite_files.h>
#include <sys/wait.h>
#include <unistd.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/platform/forwarding.h>
#include <kvarta16/platform/sqlite/sqlite_connection.h>
#include <kvarta16/platform/sqlite/sqlite_moments.h>
#include <kvarta16/platform/sqlite/sqlite_values.h>
#include <kvarta16/statutory/Akt.h>
#include <kvarta16/statutory/interest_rows.h>
#include <kvarta16/statutory/mileage_rows.h>
#include <kvarta16/statutory/payroll_rows.h>

namespace kvarta16 {
namespace {

using testing_support::Caught;
using testing_support::caught;
using testing_support::EngineProbe;
using testing_support::FakePlatform;
using testing_support::file_bytes;
using testing_support::OtherProgram;
using testing_support::TemporaryFolder;
using ConnectionPointer = std::shared_ptr<ado::Connection>;
using TextRow = std::vector<std::string>;
using TextRows = std::vector<TextRow>;

constexpr bool odbc = true;
constexpr bool jet = false;

// ---- The tables --------------------------------------------------------------------------------

// The types of whole number, date, money and truth value in one way of declaring the tables.
struct Types {
    const char* name;
    const char* number;
    const char* date;
    const char* money;
    const char* truth;
};

constexpr Types suite_types{"Suite", "SMALLINT", "DATETIME", "CURRENCY", "BOOLEAN"};

std::string create_statements(const Types& types) {
    const std::string number = types.number;
    const std::string date = types.date;
    const std::string money = types.money;
    std::string payroll = "create table S_PLACE_PARAMETRY (id " + number + ", dataod " + date;
    for (int i = 1; i <= 10; ++i) {
        payroll += ", wartosc" + (i == 1 ? "" : std::to_string(i)) + " " + money;
    }
    return payroll + "); create table S_StawkiKM (Dataod " + date + ", Ponizej900 " + types.truth +
           ", wartosc_wsp4 " + money + ", uwagi TEXT default 'brak');" +
           "create table S_ODSETKI (Rodzaj " + number + ", od_dnia " + date + ", procent " + money +
           ");";
}

void seed_payroll(const ConnectionPointer& db, bool dialect) {
    Akt().Ustaw_Parametry_płacowe(db, false, dialect);
}
void seed_mileage(const ConnectionPointer& db, bool dialect) {
    Akt().Ustaw_stawki_ryczałtu(db, false, dialect);
}
void seed_interest(const ConnectionPointer& db, bool dialect) {
    Akt().Ustaw_oDSETKI_uSTAWOWE(db, false, dialect);
}
void seed_all(const ConnectionPointer& db, bool dialect) {
    seed_payroll(db, dialect);
    seed_mileage(db, dialect);
    seed_interest(db, dialect);
}

std::string day_text(Date date) {
    return sqlite::stored_text({static_cast<std::int32_t>(date.days), 0});
}

using PayrollKey = std::pair<int, std::string>;
using InterestKey = std::pair<int, std::string>;
using MileageKey = std::pair<std::string, bool>;

// What an empty table holds after a run: of a repeated key the first entry in the payroll table,
// the last one in the table of interest.
std::map<PayrollKey, std::vector<Currency>> payroll_rows() {
    std::map<PayrollKey, std::vector<Currency>> rows;
    const auto add = [&](const statutory::PayrollRow& row) {
        rows.try_emplace({row.id, day_text(row.dataod)}, row.wartosc.begin(), row.wartosc.end());
    };
    for (const auto& row : statutory::payroll_rows_first) {
        add(row);
    }
    for (const auto& row : statutory::payroll_rows_second) {
        add(row);
    }
    return rows;
}
std::map<InterestKey, Currency> interest_rows() {
    std::map<InterestKey, Currency> rows;
    for (const auto& row : statutory::interest_rows) {
        rows.insert_or_assign({row.rodzaj, day_text(row.od_dnia)}, row.procent);
    }
    return rows;
}
std::map<MileageKey, Currency> mileage_rows() {
    std::map<MileageKey, Currency> rows;
    for (const auto& row : statutory::mileage_rows) {
        rows.try_emplace({day_text(row.dataod), static_cast<bool>(row.ponizej900)},
                         row.wartosc_wsp4);
    }
    return rows;
}

Currency amount(const std::string& text) {
    const auto parsed = sqlite::parse_amount(text);
    EXPECT_TRUE(parsed.has_value()) << text;
    return parsed.value_or(Currency());
}

class Seeding : public testing::Test {
  protected:
    ConnectionPointer connected(int busy_timeout_ms = 5'000) const {
        return sqlite::connect(path, {.busy_timeout_ms = busy_timeout_ms});
    }

    std::string dump() const {
        std::string text;
        OtherProgram program(path);
        for (const char* table : {"S_PLACE_PARAMETRY", "S_StawkiKM", "S_ODSETKI"}) {
            for (const TextRow& row : program.rows(std::string("select rowid, * from ") + table)) {
                for (const std::string& value : row) {
                    text += value + "|";
                }
                text += "\n";
            }
        }
        return text;
    }
    std::string count(const std::string& table) const {
        return OtherProgram(path).value("select count(*) from " + table);
    }

    void expect_complete() const {
        OtherProgram program(path);
        std::map<PayrollKey, std::vector<Currency>> payroll;
        for (const TextRow& row : program.rows("select * from S_PLACE_PARAMETRY")) {
            std::vector<Currency>& values = payroll[{std::stoi(row[0]), row[1]}];
            EXPECT_TRUE(values.empty()) << row[0] << " " << row[1] << " is there twice";
            for (std::size_t i = 2; i < 12; ++i) {
                values.push_back(amount(row[i]));
            }
        }
        EXPECT_EQ(payroll, payroll_rows());
        std::map<MileageKey, Currency> mileage;
        for (const TextRow& row : program.rows("select * from S_StawkiKM")) {
            EXPECT_TRUE(row[1] == "-1" || row[1] == "0") << row[1];
            mileage[{row[0], row[1] == "-1"}] = amount(row[2]);
        }
        EXPECT_EQ(mileage, mileage_rows());
        std::map<InterestKey, Currency> interest;
        for (const TextRow& row : program.rows("select * from S_ODSETKI")) {
            interest[{std::stoi(row[0]), row[1]}] = amount(row[2]);
        }
        EXPECT_EQ(interest, interest_rows());
        EXPECT_EQ(count("S_PLACE_PARAMETRY"), "722");
        EXPECT_EQ(count("S_StawkiKM"), "12");
        EXPECT_EQ(count("S_ODSETKI"), "86");
        EXPECT_EQ(program.value("pragma integrity_check"), "ok");
    }

    TemporaryFolder folder;
    std::string path = folder / "firma.db";
};

// ---- Empty tables ------------------------------------------------------------------------------

class SeedingTypes : public Seeding, public testing::WithParamInterface<std::tuple<Types, bool>> {
  protected:
    [[nodiscard]] static bool dialect() { return std::get<1>(GetParam()); }
    void SetUp() override { OtherProgram(path).run(create_statements(std::get<0>(GetParam()))); }
};

INSTANTIATE_TEST_SUITE_P(
    Tables, SeedingTypes,
    testing::Combine(testing::Values(suite_types,
                                     Types{"Decimal", "INTEGER", "DATE", "DECIMAL(19,4)", "BIT"},
                                     Types{"Text", "TEXT", "TEXT", "TEXT", "TEXT"},
                                     Types{"Real", "REAL", "TIMESTAMP", "REAL", "YESNO"},
                                     Types{"Integer", "INT", "DATE", "INTEGER", "INTEGER"},
                                     Types{"Untyped", "", "", "", ""}),
                     testing::Bool()),
    [](const auto& chosen) {
        return std::string(std::get<0>(chosen.param).name) +
               (std::get<1>(chosen.param) ? "Odbc" : "Jet");
    });

TEST_P(SeedingTypes, EmptyTablesBecomeCompleteAndASecondRunAddsNothing) {
    seed_all(connected(), dialect());
    expect_complete();
    const std::string first = dump();
    seed_all(connected(), dialect());
    seed_all(connected(), !dialect());
    EXPECT_EQ(dump(), first);
}

TEST_P(SeedingTypes, RowsOfOtherProgramsAreFoundByTheirKeys) {
    OtherProgram program(path);
    const char* days[] = {"'2001-01-01 15:00:00'", "'2001-01-01'", "'2001-01-01T23:59:59'",
                          "'2001-01-01 23:59:59.999'"};
    for (const char* day : days) {
        program.run(std::string("delete from S_PLACE_PARAMETRY; insert into S_PLACE_PARAMETRY(id,"
                                "dataod, wartosc) values (20, ") +
                    day + ", 1)");
        seed_payroll(connected(), dialect());
        EXPECT_EQ(program.rows("select wartosc, wartosc2 from S_PLACE_PARAMETRY "
                               "where id=20 and dataod like '2001-01-01%'"),
                  program.rows("select wartosc, null from S_PLACE_PARAMETRY where rowid=1"))
            << day;
        EXPECT_EQ(count("S_PLACE_PARAMETRY"), "722") << day;
    }
    program.run("insert into S_ODSETKI values (0, '1999-02-01 15:00:00', 99)");
    seed_interest(connected(), dialect());
    EXPECT_EQ(count("S_ODSETKI"), "86");
    EXPECT_EQ(amount(program.value("select procent from S_ODSETKI where rowid=1")),
              Currency::raw(240'000));
    EXPECT_EQ(program.value("select od_dnia from S_ODSETKI where rowid=1"), "1999-02-01 15:00:00")
        << "only the rate is rewritten";
    program.run("insert into S_StawkiKM values ('2007-11-14T08:00:00', -1, 0.5, 'moje')");
    seed_mileage(connected(), dialect());
    EXPECT_EQ(count("S_StawkiKM"), "12");
}

// ---- Tables as the suite declares them ---------------------------------------------------------

class SeedingDialects : public Seeding, public testing::WithParamInterface<bool> {
  protected:
    [[nodiscard]] static bool dialect() { return GetParam(); }
    void SetUp() override { OtherProgram(path).run(create_statements(suite_types)); }
};

INSTANTIATE_TEST_SUITE_P(Dialects, SeedingDialects, testing::Bool(),
                         [](const auto& chosen) { return chosen.param ? "Odbc" : "Jet"; });

TEST_P(SeedingDialects, WhatAnEmptyDatabaseGets) {
    seed_all(connected(), dialect());
    OtherProgram program(path);
    const auto payroll = [&](const std::string& id, const std::string& day) {
        return program.rows("select wartosc, wartosc2, wartosc10 from S_PLACE_PARAMETRY where id=" +
                            id + " and dataod='" + day + " 00:00:00'");
    };
    EXPECT_EQ(payroll("45", "2009-03-01"), TextRows({{"6193.1", "0", "0"}}));
    EXPECT_EQ(payroll("45", "2010-03-01"), TextRows());
    EXPECT_EQ(payroll("66", "2009-02-01"), TextRows({{"0", "0", "0"}}));
    EXPECT_EQ(payroll("3", "2022-01-01"), TextRows({{"0", "0", "0"}}));
    EXPECT_EQ(payroll("20", "2001-01-01"), TextRows({{"493.32", "0", "40"}}));
    EXPECT_EQ(program.rows("select procent from S_ODSETKI where Rodzaj=1 and "
                           "od_dnia='2021-11-04 00:00:00'"),
              TextRows({{"9.5"}}));
    EXPECT_EQ(program.rows("select procent from S_ODSETKI where Rodzaj=3 and "
                           "od_dnia='2021-11-04 00:00:00'"),
              TextRows());
    EXPECT_EQ(program.value("select max(od_dnia) from S_ODSETKI"), "2022-08-08 00:00:00");
    EXPECT_EQ(program.rows("select Ponizej900, wartosc_wsp4, uwagi from S_StawkiKM "
                           "where Dataod='2023-01-17 00:00:00' order by 1"),
              TextRows({{"-1", "0.89", "brak"}, {"0", "1.15", "brak"}}));
    EXPECT_EQ(
        program.value("select count(*) from S_PLACE_PARAMETRY where typeof(dataod)<>'text' or "
                      "length(dataod)<>19 or typeof(id)<>'integer' or "
                      "typeof(wartosc) not in ('integer','real')"),
        "0");
}

TEST_P(SeedingDialects, EditedRowsStayAndDeletedOnesComeBack) {
    seed_all(connected(), dialect());
    OtherProgram program(path);
    program.run(
        "update S_PLACE_PARAMETRY set wartosc=1.11, wartosc5=null where id=20 and "
        "dataod='2001-01-01 00:00:00';"
        "insert into S_PLACE_PARAMETRY(id, dataod, wartosc) values (20, '2030-01-01 00:00:00', 7);"
        "insert into S_PLACE_PARAMETRY(id, dataod, wartosc) values (999, '2001-01-01', 8);"
        "delete from S_PLACE_PARAMETRY where id=2;"
        "update S_StawkiKM set wartosc_wsp4=0.50 where Dataod='2007-11-14 00:00:00' and "
        "Ponizej900=-1;"
        "delete from S_StawkiKM where Dataod='2001-11-01 00:00:00' and Ponizej900=0");
    seed_payroll(connected(), dialect());
    seed_mileage(connected(), dialect());
    EXPECT_EQ(program.rows("select wartosc, wartosc4, wartosc5 from S_PLACE_PARAMETRY where id=20 "
                           "and dataod='2001-01-01 00:00:00'"),
              TextRows({{"1.11", "19", "NULL"}}));
    EXPECT_EQ(program.value("select wartosc from S_PLACE_PARAMETRY where id=20 and "
                            "dataod='2030-01-01 00:00:00'"),
              "7");
    EXPECT_EQ(program.rows("select wartosc from S_PLACE_PARAMETRY where id=999"),
              TextRows({{"8"}}));
    EXPECT_EQ(program.rows("select dataod, wartosc from S_PLACE_PARAMETRY where id=2"),
              TextRows({{"2000-01-01 00:00:00", "20"}}));
    EXPECT_EQ(count("S_PLACE_PARAMETRY"), "724");
    EXPECT_EQ(program.rows("select Ponizej900, wartosc_wsp4 from S_StawkiKM where "
                           "Dataod='2007-11-14 00:00:00' order by 1"),
              TextRows({{"-1", "0.5"}, {"0", "0.8358"}}));
    EXPECT_EQ(count("S_StawkiKM"), "12");
}

TEST_P(SeedingDialects, InterestIsRewrittenOnItsKeysAlone) {
    OtherProgram program(path);
    program.run(
        "insert into S_ODSETKI values (0, '1999-02-01 00:00:00', 99), (0, '2023-01-01 00:00:00', "
        "77),"
        "(7, '1999-02-01 00:00:00', 66), (0, '2005-01-10 12:30:00', 1), (0, '2005-10-15', null),"
        "(0, 36831, 2), (0, 37240.75, '3,5')");
    seed_interest(connected(), dialect());
    EXPECT_EQ(program.rows("select * from S_ODSETKI where rowid<=7"),
              TextRows({{"0", "1999-02-01 00:00:00", "24"},
                        {"0", "2023-01-01 00:00:00", "77"},
                        {"7", "1999-02-01 00:00:00", "66"},
                        {"0", "2005-01-10 12:30:00", "13.5"},
                        {"0", "2005-10-15", "11.5"},
                        {"0", "36831", "30"},
                        {"0", "37240.75", "20"}}));
    EXPECT_EQ(count("S_ODSETKI"), "88");
}

TEST_P(SeedingDialects, OfTwoRowsWithOneKeyTheFirstGetsTheRate) {
    OtherProgram program(path);
    program.run(
        "insert into S_ODSETKI values (0, '1999-02-01 00:00:00', 98),"
        "(0, '1999-02-01 00:00:00', 99)");
    seed_interest(connected(), dialect());
    EXPECT_EQ(program.rows("select procent from S_ODSETKI where rowid<=2"),
              TextRows({{"24"}, {"99"}}));
    EXPECT_EQ(count("S_ODSETKI"), "87");
}

TEST_P(SeedingDialects, AOneOfAnotherProgramIsTrueToo) {
    OtherProgram program(path);
    program.run(
        "insert into S_StawkiKM(Dataod, Ponizej900, wartosc_wsp4) values "
        "('2007-11-14', 1, 0.50), ('2023-01-17 00:00:00', 'True', 0.6)");
    seed_mileage(connected(), dialect());
    EXPECT_EQ(count("S_StawkiKM"), "12");
    EXPECT_EQ(program.rows("select Ponizej900, wartosc_wsp4 from S_StawkiKM where rowid<=2"),
              TextRows({{"1", "0.5"}, {"True", "0.6"}}));
}

TEST_P(SeedingDialects, TheQuestionDeclinedTouchesNothing) {
    const FakePlatform fake;  // its boxes are answered No
    const auto db = connected();
    const std::string before = file_bytes(path);
    Akt().Ustaw_Parametry_płacowe(db, true, dialect());
    Akt().Ustaw_stawki_ryczałtu(db, true, dialect());
    Akt().Ustaw_oDSETKI_uSTAWOWE(db, true, dialect());
    db->Close();
    EXPECT_EQ(file_bytes(path), before);
    EXPECT_EQ(fake.boxes.shown.size(), 3U);
}

TEST_P(SeedingDialects, AStatementIsPreparedOnce) {
    const EngineProbe probe;
    const auto db = connected();
    seed_all(db, dialect());
    for (const char* table : {"S_PLACE_PARAMETRY", "S_StawkiKM", "S_ODSETKI"}) {
        EXPECT_EQ(probe.prepared(SQLITE_INSERT, table), 1) << table;
        // A look-up and a row returned read each of the at most twelve columns once or twice.
        EXPECT_LT(probe.prepared(SQLITE_READ, table), 50) << table;
        EXPECT_GT(probe.prepared(SQLITE_READ, table), 0) << table;
    }
    EXPECT_FALSE(probe.any_statement_runs());
}

// ---- Runs that are stopped ---------------------------------------------------------------------

TEST_P(SeedingDialects, AFailureBehindTheHundredthRowLeavesAHundredRows) {
    const auto plan = std::make_shared<FaultPlan>();
    plan->fail_at("UpdateBatch", 101, FaultSpan::Once, 3197);
    const auto db = connected();
    EXPECT_EQ(caught([&] { seed_payroll(faulting(db, plan), dialect()); }).number, 3197);
    EXPECT_EQ(count("S_PLACE_PARAMETRY"), "100");
    const auto payroll = OtherProgram(path).rows("select id, dataod from S_PLACE_PARAMETRY");
    for (std::size_t i = 0; i < payroll.size(); ++i) {
        const statutory::PayrollRow& row = statutory::payroll_rows_first[i];
        EXPECT_EQ(payroll[i], TextRow({std::to_string(row.id), day_text(row.dataod)}));
    }
    seed_all(db, dialect());
    expect_complete();
}

TEST_P(SeedingDialects, EachOperationFailsInTurn) {
    const char* operations[] = {"CreateRecordset", "Open",  "EOF",         "AddNew",
                                "Fields",          "Value", "UpdateBatch", "Recordset.Close"};
    for (const char* operation : operations) {
        for (const Long n : {1, 2, 12}) {
            OtherProgram(path).run(
                "delete from S_PLACE_PARAMETRY; delete from S_StawkiKM; delete from S_ODSETKI");
            const auto plan = std::make_shared<FaultPlan>();
            plan->fail_at(operation, n, FaultSpan::Once, 3197);
            const auto db = connected();
            EXPECT_EQ(caught([&] { seed_mileage(faulting(db, plan), dialect()); }).number, 3197)
                << operation << " " << n;
            EXPECT_EQ(caught([&] { seed_mileage(faulting(db, plan), dialect()); }).number, 0);
            EXPECT_EQ(count("S_StawkiKM"), "12");
            EXPECT_EQ(
                OtherProgram(path).value("select count(*) from S_StawkiKM where Dataod is null "
                                         "or Ponizej900 is null or wartosc_wsp4 is null"),
                "0");
        }
    }
    seed_all(connected(), dialect());
    expect_complete();
}

TEST_P(SeedingDialects, AFailureInTheFirstHalfDoesNotStartTheSecond) {
    const auto plan = std::make_shared<FaultPlan>();
    plan->fail_at("Open", 371, FaultSpan::Once, 3197);  // the last of the first half
    EXPECT_EQ(caught([&] { seed_payroll(faulting(connected(), plan), dialect()); }).number, 3197);
    EXPECT_EQ(OtherProgram(path).value("select count(*) from S_PLACE_PARAMETRY where id=61 and "
                                       "dataod>='2013-01-01'"),
              "0");
}

TEST_P(SeedingDialects, TheCallersTransactionIsAllOrNothing) {
    const std::string before = file_bytes(path);
    auto db = connected();
    db->BeginTrans();
    seed_all(db, dialect());
    EXPECT_EQ(count("S_PLACE_PARAMETRY"), "0") << "nobody else sees the rows yet";
    db->RollbackTrans();
    db->Close();
    EXPECT_EQ(file_bytes(path), before);

    db = connected();
    const auto plan = std::make_shared<FaultPlan>();
    plan->fail_at("UpdateBatch", 800, FaultSpan::Once, 3197);
    db->BeginTrans();
    EXPECT_EQ(caught([&] { seed_all(faulting(db, plan), dialect()); }).number, 3197);
    db.reset();
    EXPECT_EQ(file_bytes(path), before);

    db = connected();
    db->BeginTrans();
    seed_all(db, dialect());
    db->CommitTrans();
    expect_complete();
}

TEST_P(SeedingDialects, TablesAndColumnsThatAreMissing) {
    OtherProgram program(path);
    program.run("alter table S_ODSETKI rename column procent to stopa; drop table S_StawkiKM");
    const auto db = connected();
    const Caught column = caught([&] { seed_interest(db, dialect()); });
    EXPECT_EQ(column.number, 3061);
    EXPECT_NE(column.text.find("procent"), std::string::npos) << column.text;
    const Caught table = caught([&] { seed_mileage(db, dialect()); });
    EXPECT_EQ(table.number, 3078);
    EXPECT_NE(table.text.find("S_StawkiKM"), std::string::npos) << table.text;
    EXPECT_EQ(program.value("select count(*) from sqlite_schema"), "2") << "none has been made";
    program.run(
        "alter table S_ODSETKI rename column stopa to PROCENT;"
        "create table s_stawkikm (DATAOD DATETIME, ponizej900 BOOLEAN, WARTOSC_WSP4 CURRENCY)");
    seed_interest(db, dialect());
    seed_mileage(db, dialect());
    EXPECT_EQ(count("S_ODSETKI"), "86");
    EXPECT_EQ(count("S_StawkiKM"), "12");
}

TEST_P(SeedingDialects, ConstraintsOfTheSuite) {
    OtherProgram program(path);
    program.run(
        "drop table S_ODSETKI; create table S_ODSETKI (Rodzaj SMALLINT not null, od_dnia "
        "DATETIME not null, procent CURRENCY check (procent<50), primary key (Rodzaj, od_dnia)) "
        "without rowid; insert into S_ODSETKI values (0, '1999-02-01 08:00:00', 1)");
    seed_interest(connected(), dialect());
    seed_interest(connected(), dialect());
    EXPECT_EQ(count("S_ODSETKI"), "86");
    EXPECT_EQ(program.value("select procent from S_ODSETKI where od_dnia='1999-02-01 08:00:00'"),
              "24");
    program.run(
        "drop table S_ODSETKI; create table S_ODSETKI (Rodzaj SMALLINT, od_dnia DATETIME, "
        "procent CURRENCY check (procent<30))");
    const Caught failure = caught([&] { seed_interest(connected(), dialect()); });
    EXPECT_EQ(failure.number, 3317) << failure.text;
    EXPECT_EQ(count("S_ODSETKI"), "2") << "the third rate is 30";
}

TEST_P(SeedingDialects, ALockedFileFailsAndNothingIsLost) {
    seed_mileage(connected(), dialect());
    const std::string before = dump();
    OtherProgram program(path);
    program.run("begin immediate");
    const auto db = connected(50);
    seed_mileage(db, dialect());  // finds all of its rows and writes none
    EXPECT_EQ(caught([&] { seed_payroll(db, dialect()); }).number, 3260);
    EXPECT_EQ(caught([&] { seed_interest(db, dialect()); }).number, 3260);
    program.run("rollback");
    EXPECT_EQ(dump(), before);
    seed_all(db, dialect());
    expect_complete();
}

TEST_P(SeedingDialects, AReadOnlyFileFailsAndNothingIsLost) {
    const std::string before = file_bytes(path);
    const auto db = sqlite::connect(path, {.read_only = true});
    EXPECT_EQ(caught([&] { seed_payroll(db, dialect()); }).number, 3027);
    db->Close();
    EXPECT_EQ(caught([&] { seed_payroll(db, dialect()); }).number, ado::error_invalid_connection);
    EXPECT_EQ(file_bytes(path), before);
}

// Another program writes between any two rows, and need not wait for it.
class Interrupted final : public ado::ForwardingConnection {
  public:
    Interrupted(const ConnectionPointer& db, const std::string& path)
        : ForwardingConnection(db), other_(path) {
        other_.run("pragma busy_timeout=0; create table Inna (a)");
    }
    std::shared_ptr<ado::Recordset> CreateRecordset() override {
        other_.run("begin exclusive; insert into Inna values (1); commit");
        return ForwardingConnection::CreateRecordset();
    }

  private:
    OtherProgram other_;
};

TEST_P(SeedingDialects, OtherProgramsWriteBetweenTheRows) {
    const auto db = std::make_shared<Interrupted>(connected(), path);
    seed_all(db, dialect());
    expect_complete();
    EXPECT_EQ(count("Inna"), "824");
}

// ---- The end of the process --------------------------------------------------------------------

// A process that seeds, killed when the file holds that many rows.
void seed_until_killed(const std::string& path, bool dialect, int rows) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        seed_all(sqlite::connect(path), dialect);
        std::this_thread::sleep_for(std::chrono::seconds(60));
        _exit(0);
    }
    {
        OtherProgram program(path);
        while (std::stoi(program.value("select count(*) from S_PLACE_PARAMETRY")) < rows) {
            std::this_thread::yield();
        }
    }
    kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
}

TEST_P(SeedingDialects, AProcessThatIsKilledLeavesWholeRows) {
    int rows_before = 0;
    for (const int rows : {1, 3, 40, 200, 371, 600}) {
        seed_until_killed(path, dialect(), rows);
        OtherProgram program(path);
        EXPECT_EQ(program.value("pragma integrity_check"), "ok");
        const auto stored =
            program.rows("select id, dataod, wartosc, wartosc10 from S_PLACE_PARAMETRY");
        EXPECT_GE(static_cast<int>(stored.size()), std::max(rows, rows_before));
        for (const TextRow& row : stored) {
            for (const std::string& value : row) {
                EXPECT_NE(value, "NULL");
            }
        }
        rows_before = static_cast<int>(stored.size());
    }
    seed_all(connected(), dialect());
    expect_complete();
}

TEST(SeedingNewFile, AProcessThatIsKilledLeavesWholeRows) {
    const TemporaryFolder folder;
    const std::string path = folder / "nowa.db";
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const auto db = sqlite::connect(path, {.create = true});
        db->execute(create_statements(suite_types));
        seed_mileage(db, odbc);
        const char done = 1;
        const bool told = write(ready[1], &done, 1) == 1;
        seed_payroll(db, jet);
        std::this_thread::sleep_for(std::chrono::seconds(told ? 60 : 0));
        _exit(0);
    }
    char done = 0;
    ASSERT_EQ(read(ready[0], &done, 1), 1);
    std::this_thread::sleep_for(std::chrono::milliseconds(3));
    kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    close(ready[0]);
    close(ready[1]);
    EXPECT_EQ(OtherProgram(path).value("select count(*) from S_StawkiKM"), "12");
    EXPECT_EQ(OtherProgram(path).value("pragma integrity_check"), "ok");
    const auto db = sqlite::connect(path);
    seed_all(db, odbc);
    EXPECT_EQ(OtherProgram(path).value("select count(*) from S_PLACE_PARAMETRY"), "722");
    EXPECT_EQ(OtherProgram(path).value("select count(*) from S_ODSETKI"), "86");
}

}  // namespace
}  // namespace kvarta16
