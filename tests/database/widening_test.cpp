// The widening of text columns on an engine in memory: which columns, the statements letter by
// letter, and what is left when a call of the engine fails.
#include <kvarta16/database/ClsCzyscBazeDAO.h>

#include "database_support.h"

namespace kvarta16::database_tests {
namespace {

using dao::dbLong;
using dao::dbMemo;
using dao::dbText;

constexpr StringView path = u"C:\\firma.mdb";

Lines eight_statements(const std::string& table, const std::string& field) {
    return {"alter table " + table + " drop COLUMN ccxxdfredvvcxds__ddfr ",
            "alter table " + table + " ADD ccxxdfredvvcxds__ddfr text(255)",
            "UPDATE " + table + " SET ccxxdfredvvcxds__ddfr=[" + field + "]",
            "drop INDEX ind" + field + " ON " + table,
            "alter table " + table + " drop COLUMN " + field,
            "alter table " + table + " ADD " + field + " text(255)",
            "UPDATE " + table + " SET " + field + "=ccxxdfredvvcxds__ddfr",
            "alter table " + table + " drop COLUMN ccxxdfredvvcxds__ddfr"};
}

Lines operator+(Lines a, const Lines& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

class Widening : public testing::Test {
  protected:
    Widening() : mdb(host.disk().add_database(path)) {}

    bool run(StringView table = u"[towary]", StringView prefix = u"dane") {
        return static_cast<bool>(cleaner.Set_Szer_tetx(prefix, table, path));
    }
    [[nodiscard]] Lines statements() { return utf8(host.disk().statements); }

    FaultyPlatform host;
    MemoryMdb& mdb;
    ClsCzyśćBazęDAO cleaner;
};

TEST_F(Widening, EveryCallInItsOrder) {
    mdb.add_table(u"inna").add_table(u"Towary", {{u"id", dbLong, 4}, {u"nazwa", dbText, 50}});
    mdb.add_table(u"zzz");
    EXPECT_TRUE(run());
    Lines expected = {"OpenDatabase(C:\\firma.mdb)",
                      "TableDefs",
                      "TableDef.Name",
                      "TableDef.Name",
                      "Fields",
                      "Count",
                      "Item(0)",
                      "Type",
                      "Item(1)",
                      "Type",
                      "Size",
                      "Field.Name"};
    for (const std::string& statement : eight_statements("dane.[towary]", "nazwa")) {
        expected.push_back("Execute(" + statement + ")");
    }
    EXPECT_EQ(host.disk().log, (expected + Lines{"TableDef.Name", "Close", "release"}));
    EXPECT_TRUE(host.fake.sleeper.sleeps.empty());
    EXPECT_TRUE(host.fake.boxes.shown.empty());
}

TEST_F(Widening, TextUnder255CharactersAlone) {
    mdb.add_table(u"towary", {{u"a", dbText, 254},
                              {u"b", dbText, 255},
                              {u"c", dbMemo, 0},
                              {u"d", dbText, 0},
                              {u"e", dbText, 1},
                              {u"f", dbLong, 4},
                              {u"g", dao::dbBinary, 10}});
    EXPECT_TRUE(run());
    EXPECT_EQ(statements(), eight_statements("dane.[towary]", "a") +
                                eight_statements("dane.[towary]", "d") +
                                eight_statements("dane.[towary]", "e"));
}

TEST_F(Widening, TheTextsOfTheCallerStandInTheStatementsAsTheyAre) {
    mdb.add_table(u"ŁĄKI", {{u"nazwa długa", dbText, 10}});
    EXPECT_TRUE(run(u"[łąki]", u""));
    EXPECT_EQ(statements(), eight_statements(".[łąki]", "nazwa długa"));
}

TEST_F(Widening, WhatNamesNoTable) {
    mdb.add_table(u"towary", {{u"a", dbText, 10}});
    for (const char16_t* name : {u"towary", u"[nie ma]", u"", u"[]", u"[towary", u"[towary] "}) {
        EXPECT_FALSE(run(name));
    }
    EXPECT_TRUE(statements().empty());
    EXPECT_EQ(host.disk().open_databases(), 0);
    EXPECT_FALSE(static_cast<bool>(cleaner.Set_Szer_tetx(u"d", u"[towary]", u"C:\\nie ma.mdb")));
}

TEST_F(Widening, SystemTablesAndPasteErrorsAreTablesLikeAnyOther) {
    mdb.add_table(u"MSysObjects", {{u"a", dbText, 10}}).add_table(u"Nieruszac");
    EXPECT_TRUE(run(u"[msysobjects]"));
    EXPECT_TRUE(run(u"[NIERUSZAC]"));
    EXPECT_EQ(statements().size(), 8U);
}

TEST_F(Widening, FailingStatementsStopNothing) {
    mdb.add_table(u"towary", {{u"a", dbText, 10}, {u"b", dbText, 10}});
    host.disk().on_execute([](StringView) { throw Failure(3381, u"no such column"); });
    EXPECT_TRUE(run());
    EXPECT_EQ(statements(),
              eight_statements("dane.[towary]", "a") + eight_statements("dane.[towary]", "b"));
    EXPECT_TRUE(host.fake.boxes.shown.empty());
    EXPECT_EQ(host.disk().calls("Close"), 1U);
}

// Any other failure: true once the table was reached, no Close, nothing stays open, nothing passes.
TEST(WideningFaults, EndTheOperation) {
    for (const char* operation :
         {"OpenDatabase", "TableDefs", "TableDef.Name", "TableDef.Fields", "Count", "Item", "Type",
          "Size", "Field.Name", "Database.Close"}) {
        for (Long n = 1;; ++n) {
            SCOPED_TRACE(std::string(operation) + " " + std::to_string(n));
            FaultyPlatform host;
            host.disk()
                .add_database(path)
                .add_table(u"inna")
                .add_table(u"towary", {{u"id", dbLong, 4}, {u"a", dbText, 9}, {u"b", dbText, 9}})
                .add_table(u"zzz");
            host.plan->fail_at(operation, n, FaultSpan::Once, 4711);
            ClsCzyśćBazęDAO cleaner;
            Boolean result;
            EXPECT_NO_THROW(result = cleaner.Set_Szer_tetx(u"d", u"[TOWARY]", path));
            EXPECT_EQ(host.disk().open_databases(), 0);
            if (host.plan->failed_calls() == 0) {
                EXPECT_EQ(host.disk().statements.size(), 16U);
                break;
            }
            EXPECT_EQ(host.disk().calls("Close"), 0U);
            // The table was found if both names up to its own were read.
            const bool is_found = host.disk().calls("TableDef.Name") >= 2;
            EXPECT_EQ(static_cast<bool>(result), is_found);
            EXPECT_EQ(host.disk().statements.size() % 8, 0U);
        }
    }
}

}  // namespace
}  // namespace kvarta16::database_tests
