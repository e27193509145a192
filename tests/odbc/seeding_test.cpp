// The seeding of the statutory tables on real servers: what they hold afterwards is what the
// embedded engine's file holds after the same runs.
#include <algorithm>
#include <chrono>
#include <iostream>

#include <kvarta16/platform/forwarding.h>
#include <kvarta16/platform/sqlite/sqlite_connection.h>
#include <kvarta16/statutory/Akt.h>

#include "odbc_support.h"

namespace kvarta16 {
namespace {

constexpr bool odbc_dialect = true;
constexpr bool jet_dialect = false;

struct SeededTable {
    const char* name;
    StringView select;
    std::size_t columns;
    std::size_t row_count;
};
constexpr SeededTable seeded_tables[] = {
    {"S_PLACE_PARAMETRY",
     u"select [id],[dataod],[wartosc],[wartosc2],[wartosc3],[wartosc4],[wartosc5],[wartosc6],"
     u"[wartosc7],[wartosc8],[wartosc9],[wartosc10] from [S_PLACE_PARAMETRY]",
     12, 722},
    {"S_StawkiKM", u"select [Dataod],[Ponizej900],[wartosc_wsp4] from [S_StawkiKM]", 3, 12},
    {"S_ODSETKI", u"select [Rodzaj],[od_dnia],[procent] from [S_ODSETKI]", 3, 86},
};

std::vector<std::string> create_statements(const odbc::ColumnTypes& types) {
    const std::string number(types.number);
    const std::string date(types.date);
    const std::string money(types.money);
    std::string payroll = "create table S_PLACE_PARAMETRY (id " + number + ", dataod " + date;
    for (int i = 1; i <= 10; ++i) {
        payroll += ", wartosc" + (i == 1 ? "" : std::to_string(i)) + " " + money;
    }
    return {payroll + ")",
            "create table S_StawkiKM (Dataod " + date + ", Ponizej900 " + std::string(types.truth) +
                ", wartosc_wsp4 " + money + ")",
            "create table S_ODSETKI (Rodzaj " + number + ", od_dnia " + date + ", procent " +
                money + ")"};
}

void seed_all(const std::shared_ptr<ado::Connection>& to, bool dialect) {
    Akt().Ustaw_Parametry_płacowe(to, false, dialect);
    Akt().Ustaw_stawki_ryczałtu(to, false, dialect);
    Akt().Ustaw_oDSETKI_uSTAWOWE(to, false, dialect);
}

// All rows of the three tables in an order of their own.
std::vector<std::string> rows_of_all(const std::shared_ptr<ado::Connection>& db) {
    std::vector<std::string> all;
    for (const SeededTable& table : seeded_tables) {
        std::vector<std::string> rows = rows_of(db, table.select, table.columns);
        EXPECT_EQ(rows.size(), table.row_count) << table.name;
        std::ranges::sort(rows);
        std::ranges::move(rows, std::back_inserter(all));
    }
    return all;
}

// What the embedded engine's adapter stores of the same runs.
std::vector<std::string> rows_of_the_embedded_engine() {
    const testing_support::TemporaryFolder folder;
    const auto file = sqlite::connect(folder / "firma.db", {.create = true});
    for (const std::string& statement : create_statements(odbc::dialect_of("SQLite").types)) {
        file->execute(statement);
    }
    seed_all(file, odbc_dialect);
    return rows_of_all(file);
}

class Seeding : public OnServer {
  protected:
    void SetUp() override {
        OnServer::SetUp();
        if (db == nullptr) {
            return;
        }
        for (const SeededTable& table : seeded_tables) {
            drop(table.name);
        }
        for (const std::string& statement : create_statements(types())) {
            db->execute(statement);
        }
    }

    // Seconds that a run takes, which the test's report holds.
    void seed_and_measure(const char* what, bool dialect) {
        const auto begin = std::chrono::steady_clock::now();
        seed_all(db, dialect);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
        std::cout << "[ measured ] " << name_of(GetParam()) << ", " << what << ": " << taken.count()
                  << " s\n";
        RecordProperty(what, std::to_string(taken.count()));
    }

    [[nodiscard]] std::string ask(const std::string& sql) const { return server.ask(sql); }
};

INSTANTIATE_TEST_SUITE_P(Servers, Seeding, every_server, server_name);

TEST_P(Seeding, EveryRowIsThatOfTheEmbeddedEngine) {
    server.sync_to_disk(true);
    seed_and_measure(is(ServerKind::SqliteDriver) ? "empty tables, no syncs" : "empty tables",
                     odbc_dialect);
    server.sync_to_disk(false);
    const std::vector<std::string> first = rows_of_all(db);
    EXPECT_EQ(first, rows_of_the_embedded_engine());
    seed_and_measure("second run", odbc_dialect);
    EXPECT_EQ(rows_of_all(db), first);
    seed_and_measure("second run, other dialect", jet_dialect);
    EXPECT_EQ(rows_of_all(db), first);
}

TEST_P(Seeding, TheOtherDialectGivesTheSame) {
    seed_all(db, jet_dialect);
    EXPECT_EQ(rows_of_all(db), rows_of_the_embedded_engine());
}

// By the server's own client.
TEST_P(Seeding, WhatOtherProgramsSee) {
    seed_all(db, odbc_dialect);
    EXPECT_EQ(ask("select count(*) from S_PLACE_PARAMETRY"), "722");
    EXPECT_EQ(ask("select count(*) from S_StawkiKM"), "12");
    EXPECT_EQ(ask("select count(*) from S_ODSETKI"), "86");
    EXPECT_EQ(ask("select wartosc+0, wartosc2+0 from S_PLACE_PARAMETRY where id=45 and "
                  "dataod='2009-03-01 00:00:00'"),
              is(ServerKind::SqliteDriver) ? "6193.1|0" : "6193.1000|0.0000");
    EXPECT_EQ(ask("select od_dnia from S_ODSETKI where Rodzaj=0 and procent=24"),
              is(ServerKind::PostgreSql) ? "01.02.1999 00:00:00" : "1999-02-01 00:00:00");
    EXPECT_EQ(ask("select min(cast(Ponizej900 as char(5))), max(cast(Ponizej900 as char(5))) "
                  "from S_StawkiKM"),
              is(ServerKind::PostgreSql)     ? "false|true "
              : is(ServerKind::SqliteDriver) ? "-1|0"
                                             : "0|1");
}

TEST_P(Seeding, TypesAsTheLibraryReadsThem) {
    seed_all(db, odbc_dialect);
    EXPECT_EQ(rows_of(db,
                      u"select [id],[dataod],[wartosc] from S_PLACE_PARAMETRY where [id]=20 and "
                      u"[dataod]=#01-01-2001#",
                      3, true),
              std::vector<std::string>{"Integer 20|Date 2001-01-01|Currency 493,32"});
    EXPECT_EQ(rows_of(db,
                      u"select * from S_StawkiKM where [ponizej900] and "
                      u"[dataod]={d '2023-01-17'}",
                      3, true),
              std::vector<std::string>{"Date 2023-01-17|Boolean Prawda|Currency 0,89"});
}

TEST_P(Seeding, EditedRowsStayAndDeletedOnesComeBack) {
    seed_all(db, odbc_dialect);
    db->execute(
        "update S_PLACE_PARAMETRY set wartosc=1.11, wartosc5=null where id=20 and "
        "dataod='2001-01-01 00:00:00'");
    db->execute(
        "insert into S_PLACE_PARAMETRY(id, dataod, wartosc) values (999, "
        "'2030-01-01 00:00:00', 7)");
    db->execute("delete from S_PLACE_PARAMETRY where id=2");
    db->execute("update S_StawkiKM set wartosc_wsp4=0.50 where Dataod='2007-11-14 00:00:00'");
    db->execute(
        "update S_ODSETKI set procent=99 where Rodzaj=0 and "
        "od_dnia='1999-02-01 00:00:00'");
    for (const bool dialect : {odbc_dialect, jet_dialect}) {
        seed_all(db, dialect);
        EXPECT_EQ(rows_of(db,
                          u"select wartosc,wartosc5 from S_PLACE_PARAMETRY where id=20 and "
                          u"dataod={d '2001-01-01'}",
                          2),
                  std::vector<std::string>{"1,11|NULL"});
        EXPECT_EQ(rows_of(db, u"select wartosc from S_PLACE_PARAMETRY where id in (2,999)", 1),
                  (std::vector<std::string>{"7", "20"}));
        EXPECT_EQ(rows_of(db, u"select id from S_PLACE_PARAMETRY", 1).size(), 723U);
        EXPECT_EQ(rows_of(db, u"select wartosc_wsp4 from S_StawkiKM where Dataod=#11-14-2007#", 1),
                  (std::vector<std::string>{"0,5", "0,5"}));
        EXPECT_EQ(
            rows_of(db, u"select procent from S_ODSETKI where rodzaj=0 and od_dnia=#02-01-1999#",
                    1),
            std::vector<std::string>{"24"});
    }
}

TEST_P(Seeding, AKeyWithATimeOfDayIsFound) {
    for (const bool dialect : {odbc_dialect, jet_dialect}) {
        for (const char* time : {"00:00:00", "15:00:00", "23:59:59"}) {
            for (const SeededTable& table : seeded_tables) {
                db->execute(std::string("delete from ") + table.name);
            }
            const std::string at = std::string(" ") + time + "'";
            db->execute("insert into S_ODSETKI values (0, '1999-02-01" + at + ", 99)");
            db->execute(
                "insert into S_PLACE_PARAMETRY(id, dataod, wartosc) values (20, "
                "'2001-01-01" +
                at + ", 1)");
            const char* truth = is(ServerKind::PostgreSql) ? "true" : "1";
            db->execute(std::string("insert into S_StawkiKM values ('2007-11-14") + at + ", " +
                        truth + ", 0.5)");
            seed_all(db, dialect);
            EXPECT_EQ(ask("select count(*) from S_PLACE_PARAMETRY"), "722") << time;
            EXPECT_EQ(ask("select count(*) from S_StawkiKM"), "12") << time;
            EXPECT_EQ(ask("select count(*) from S_ODSETKI"), "86") << time;
            const Date stored = ToDate(value_of(
                *opened(db, u"select od_dnia from S_ODSETKI where procent=24"), u"od_dnia"));
            EXPECT_EQ(to_utf8(FormatMask(stored, u"hh:nn:ss")), time) << "only the rate changes";
        }
    }
}

// The server may give either of them first; after enough runs both hold the rate, and are alike.
TEST_P(Seeding, OfTwoRowsWithOneKeyOneGetsTheRate) {
    for (const char* rate : {"98", "99"}) {
        db->execute(std::string("insert into S_ODSETKI values (0, '1999-02-01 00:00:00', ") + rate +
                    ")");
    }
    Akt().Ustaw_oDSETKI_uSTAWOWE(db, false, odbc_dialect);
    EXPECT_EQ(ask("select count(*) from S_ODSETKI where procent in (98, 99)"), "1");
    for (int run = 0; run < 3; ++run) {
        Akt().Ustaw_oDSETKI_uSTAWOWE(db, false, jet_dialect);
    }
    EXPECT_EQ(ask("select count(*) from S_ODSETKI"), "87");
    db->execute("delete from S_ODSETKI");
    for (int copy = 0; copy < 2; ++copy) {
        db->execute("insert into S_ODSETKI values (0, '1999-02-01 00:00:00', 98)");
    }
    Akt().Ustaw_oDSETKI_uSTAWOWE(db, false, odbc_dialect);
    EXPECT_EQ(ask("select count(*) from S_ODSETKI where procent=98"), "1") << "of two alike";
}

TEST_P(Seeding, ATransactionRolledBackLeavesNothing) {
    db->BeginTrans();
    seed_all(db, odbc_dialect);
    EXPECT_EQ(rows_of(db, seeded_tables[1].select, 3).size(), 12U);
    db->RollbackTrans();
    for (const SeededTable& table : seeded_tables) {
        EXPECT_EQ(ask(std::string("select count(*) from ") + table.name), "0");
    }
    db->BeginTrans();
    seed_all(db, odbc_dialect);
    db->CommitTrans();
    EXPECT_EQ(ask("select count(*) from S_PLACE_PARAMETRY"), "722");
}

// What a run has stored when the hundredth row fails stays, and the next run goes through.
TEST_P(Seeding, ARunThatStopsIsCompletedByTheNext) {
    const auto plan = std::make_shared<FaultPlan>();
    plan->fail_at("UpdateBatch", 101, FaultSpan::Once, 3197);
    const auto failure = caught([&] { seed_all(faulting(db, plan), odbc_dialect); });
    EXPECT_EQ(failure.number, 3197);
    EXPECT_EQ(ask("select count(*) from S_PLACE_PARAMETRY"), "100");
    seed_all(db, odbc_dialect);
    EXPECT_EQ(rows_of_all(db), rows_of_the_embedded_engine());
}

TEST_P(Seeding, WithoutATableTheRunFailsByItsName) {
    drop("S_StawkiKM");
    const auto failure = caught([&] { Akt().Ustaw_stawki_ryczałtu(db, false, odbc_dialect); });
    EXPECT_EQ(failure.number, odbc::error_no_table);
    EXPECT_NE(failure.text.find("S_StawkiKM"), std::string::npos) << failure.text;
}

}  // namespace
}  // namespace kvarta16
