// The two cleanings on an engine in memory: which tables and fields they touch, the statements
// letter by letter, and what is left when a call of the engine fails.
#include <kvarta16/database/ClsCzyscBazeDAO.h>

#include "database_support.h"

namespace kvarta16::database_tests {
namespace {

using dao::dbBinary;
using dao::dbBoolean;
using dao::dbByte;
using dao::dbCurrency;
using dao::dbDate;
using dao::dbDouble;
using dao::dbInteger;
using dao::dbLong;
using dao::dbLongBinary;
using dao::dbMemo;
using dao::dbSingle;
using dao::dbText;
using testing_support::no_database;
using testing_support::no_such_file;

constexpr StringView path = u"C:\\firma.mdb";

class Cleaning : public testing::Test {
  protected:
    Cleaning() : mdb(host.disk().add_database(path)) {}

    void clean_all(StringView table = u"", bool drop_paste_errors = false, bool ignore = false) {
        cleaner.CZYŚĆ_BAZĘ(path, drop_paste_errors, ignore, table);
    }
    // The name as it is written back.
    String clean_one(String table, bool ignore = false) {
        cleaner.CZYŚĆ_BAZĘ_TMP(path, ignore, table);
        return table;
    }
    [[nodiscard]] Lines statements() { return utf8(host.disk().statements); }
    [[nodiscard]] const std::vector<Long>& sleeps() const { return host.fake.sleeper.sleeps; }

    FaultyPlatform host;
    MemoryMdb& mdb;
    ClsCzyśćBazęDAO cleaner;
};

// ---- Fields ---------------------------------------------------------------------------------

TEST_F(Cleaning, EveryCallInItsOrder) {
    mdb.add_table(u"towary",
                  {{u"cena", dbCurrency}, {u"data_operacji", dbDate}, {u"opis", dbMemo}});
    clean_all();
    EXPECT_EQ(host.disk().log,
              (Lines{"OpenDatabase(C:\\firma.mdb)",
                     "TableDefs",
                     "TableDef.Name",
                     "TableDef.Name = TOWARY",
                     "Fields",
                     "Count",
                     "Item(0)",
                     "Type",
                     "DefaultValue = Integer 0",
                     "Field.Name",
                     "TableDef.Name",
                     "Execute(UPDATE [TOWARY] SET [cena]=0  where [cena] is null)",
                     "Item(1)",
                     "Type",
                     "Field.Name",
                     "DefaultValue = String NOW()",
                     "Field.Name",
                     "TableDef.Name",
                     "Execute(UPDATE [TOWARY] SET [data_operacji]=#01-01-1990#  where "
                     "[data_operacji] is null)",
                     "Item(2)",
                     "Type",
                     "AllowZeroLength = true",
                     "DefaultValue = String \"\"",
                     "Field.Name",
                     "TableDef.Name",
                     "Execute(UPDATE [TOWARY] SET [opis]='' where [opis] is null)",
                     "Close",
                     "release"}));
    EXPECT_EQ(sleeps(), std::vector<Long>{5000});
    EXPECT_TRUE(host.fake.boxes.shown.empty());
}

struct GroupCase {
    Integer type;
    const char* default_value;  // "" where the field is not touched
    const char* statement;
};

TEST_F(Cleaning, TypesFallIntoTheirGroups) {
    const char* number = "UPDATE [T] SET [f]=0  where [f] is null";
    const char* text = "UPDATE [T] SET [f]='' where [f] is null";
    const GroupCase cases[] = {
        {0, "", ""},
        {dbBoolean, "", ""},
        {dbByte, "Integer 0", number},
        {dbInteger, "Integer 0", number},
        {dbLong, "Integer 0", number},
        {dbCurrency, "Integer 0", number},
        {dbSingle, "Integer 0", number},
        {dbDouble, "Integer 0", number},
        {dbDate, "", ""},
        {dbBinary, "", ""},
        {dbText, "String \"\"", text},
        {dbLongBinary, "", ""},
        {dbMemo, "String \"\"", text},
        {13, "", ""},
        {15, "", ""},
        {20, "", ""},
        {101, "", ""},
        {-1, "", ""},
    };
    for (const GroupCase& c : cases) {
        SCOPED_TRACE(c.type);
        mdb.tables.clear();
        mdb.add_table(u"T", {{u"f", c.type}});
        host.disk().statements.clear();
        clean_all();
        const auto& field = mdb.tables[0]->column(u"f");
        EXPECT_EQ(testing_support::logged(field.default_value),
                  *c.default_value == '\0' ? "String " : c.default_value);
        EXPECT_EQ(field.allow_zero_length, c.type == dbText || c.type == dbMemo);
        EXPECT_EQ(statements(), *c.statement == '\0' ? Lines{} : Lines{c.statement});
    }
}

TEST_F(Cleaning, DatesAreTreatedByTheirNames) {
    mdb.add_table(u"T", {{u"DATA_OPERACJI", dbDate},
                         {u"data_utworzenia", dbDate},
                         {u"Data_Operacji2", dbDate},
                         {u"DATA_ZAKUPU", dbDate},
                         {u"DATA_OPERACJI ", dbDate},
                         {u"data_operacjI", dbText}});
    clean_all();
    EXPECT_EQ(statements(),
              (Lines{"UPDATE [T] SET [DATA_OPERACJI]=#01-01-1990#  where [DATA_OPERACJI] is null",
                     "UPDATE [T] SET [data_utworzenia]=#01-01-1990#  where [data_utworzenia] is "
                     "null",
                     "UPDATE [T] SET [data_operacjI]='' where [data_operacjI] is null"}));
    EXPECT_EQ(mdb.tables[0]->column(u"DATA_ZAKUPU").default_value, Variant(u""));
    EXPECT_EQ(mdb.tables[0]->column(u"data_utworzenia").default_value, Variant(u"NOW()"));
}

TEST_F(Cleaning, StatementsThatFailStopNothing) {
    mdb.add_table(u"T", {{u"a", dbLong}, {u"b", dbText}});
    mdb.add_table(u"Błędy wklejania");
    mdb.add_table(u"U", {{u"c", dbLong}});
    host.disk().on_execute([](StringView) { throw Failure(3144, u"Syntax error in UPDATE"); });
    clean_all(u"", true, false);
    EXPECT_EQ(
        statements(),
        (Lines{"UPDATE [T] SET [a]=0  where [a] is null", "UPDATE [T] SET [b]='' where [b] is null",
               "drop table [Błędy wklejania]", "UPDATE [U] SET [c]=0  where [c] is null"}));
    EXPECT_TRUE(host.fake.boxes.shown.empty());
    EXPECT_EQ(sleeps(), std::vector<Long>{5000});
}

// ---- Tables ---------------------------------------------------------------------------------

TEST_F(Cleaning, NamesComeOutInUpperCase) {
    mdb.add_table(u"bez pól").add_table(u"Żółw").add_table(u"JUŻ");
    clean_all();
    EXPECT_EQ(mdb.table_names(), (Lines{"BEZ PÓL", "ŻÓŁW", "JUŻ"}));
    EXPECT_EQ(host.disk().calls("TableDef.Name = "), 3U);
    EXPECT_EQ(host.disk().calls("Execute"), 0U);
}

TEST_F(Cleaning, SpecialTablesAreLeftAlone) {
    for (const char16_t* name :
         {u"MSysObjects", u"MSys", u"Nieruszac", u"NIERUSZAC", u"Błędy wklejania", u"MSYSX",
          u"msysy", u"błędy wklejania", u"BŁĘDY WKLEJANIA", u"NIERUSZAC2"}) {
        mdb.add_table(name, {{u"f", dbLong}});
    }
    clean_all();
    EXPECT_EQ(mdb.table_names(),
              (Lines{"MSysObjects", "MSys", "Nieruszac", "NIERUSZAC", "Błędy wklejania", "MSYSX",
                     "MSYSY", "BŁĘDY WKLEJANIA", "BŁĘDY WKLEJANIA", "NIERUSZAC2"}));
    EXPECT_EQ(statements(), (Lines{"UPDATE [MSYSX] SET [f]=0  where [f] is null",
                                   "UPDATE [MSYSY] SET [f]=0  where [f] is null",
                                   "UPDATE [BŁĘDY WKLEJANIA] SET [f]=0  where [f] is null",
                                   "UPDATE [BŁĘDY WKLEJANIA] SET [f]=0  where [f] is null",
                                   "UPDATE [NIERUSZAC2] SET [f]=0  where [f] is null"}));
}

TEST_F(Cleaning, PasteErrorsAreDroppedOnRequest) {
    mdb.add_table(u"Błędy wklejania", {{u"f", dbLong}}).add_table(u"Błędy wklejania1");
    clean_all(u"", true);
    EXPECT_EQ(statements(), Lines{"drop table [Błędy wklejania]"});
    EXPECT_EQ(mdb.table_names(), (Lines{"Błędy wklejania", "BŁĘDY WKLEJANIA1"}));
}

TEST_F(Cleaning, OneTableByItsNameInAnyCase) {
    for (const char16_t* wanted : {u"Łąki", u"ŁĄKI", u"łąki"}) {
        mdb.tables.clear();
        mdb.add_table(u"aaa", {{u"f", dbLong}}).add_table(u"łąkI", {{u"f", dbLong}});
        mdb.add_table(u"zzz", {{u"f", dbLong}});
        host.disk().log.clear();
        host.disk().statements.clear();
        clean_all(wanted);
        EXPECT_EQ(mdb.table_names(), (Lines{"aaa", "ŁĄKI", "zzz"}));
        EXPECT_EQ(statements(), Lines{"UPDATE [ŁĄKI] SET [f]=0  where [f] is null"});
        // The third table is not even looked at.
        EXPECT_EQ(host.disk().calls("TableDef.Name"), 4U);
    }
}

TEST_F(Cleaning, PasteErrorsBeforeTheTableAskedForAreDropped) {
    mdb.add_table(u"Błędy wklejania").add_table(u"towary");
    clean_all(u"TOWARY", true);
    EXPECT_EQ(statements(), Lines{"drop table [Błędy wklejania]"});
}

TEST_F(Cleaning, PasteErrorsBehindTheTableAskedForAreNotReached) {
    mdb.add_table(u"adresy").add_table(u"Błędy wklejania");
    clean_all(u"adresy", true);
    EXPECT_TRUE(statements().empty());
    EXPECT_EQ(mdb.table_names(), (Lines{"ADRESY", "Błędy wklejania"}));
}

TEST_F(Cleaning, WalkToTheEndWhereTheTableAskedForIsSpecial) {
    for (const char16_t* wanted :
         {u"NIERUSZAC", u"nieruszac", u"MSysObjects", u"błędy wklejania", u"nie ma takiej"}) {
        mdb.tables.clear();
        mdb.add_table(u"MSysObjects", {{u"f", dbLong}}).add_table(u"Nieruszac", {{u"f", dbLong}});
        mdb.add_table(u"Błędy wklejania", {{u"f", dbLong}}).add_table(u"towary");
        host.disk().log.clear();
        clean_all(wanted);
        EXPECT_EQ(mdb.table_names(),
                  (Lines{"MSysObjects", "Nieruszac", "Błędy wklejania", "towary"}));
        EXPECT_EQ(host.disk().calls("TableDef.Name"), 4U);
        EXPECT_EQ(host.disk().calls("Close"), 1U);
    }
}

TEST_F(Cleaning, EmptyDatabase) {
    clean_all();
    EXPECT_EQ(host.disk().log,
              (Lines{"OpenDatabase(C:\\firma.mdb)", "TableDefs", "Close", "release"}));
    EXPECT_EQ(sleeps(), std::vector<Long>{5000});
}

// ---- One table --------------------------------------------------------------------------------

TEST_F(Cleaning, TheOneTableIsCleanedWhateverItsName) {
    for (const char16_t* name : {u"towary", u"MSysObjects", u"Nieruszac", u"Błędy wklejania"}) {
        mdb.tables.clear();
        mdb.add_table(u"inna", {{u"f", dbLong}}).add_table(name, {{u"f", dbLong}});
        mdb.add_table(u"zzz", {{u"f", dbLong}});
        host.disk().statements.clear();
        const std::string upper = to_utf8(upper_case(name));
        EXPECT_EQ(to_utf8(clean_one(lower_case(name))), upper);
        EXPECT_EQ(mdb.table_names(), (Lines{"inna", upper, "zzz"}));
        EXPECT_EQ(statements(), Lines{"UPDATE [" + upper + "] SET [f]=0  where [f] is null"});
    }
    EXPECT_TRUE(sleeps().empty());
}

TEST_F(Cleaning, TheOneTableThatIsNotThere) {
    mdb.add_table(u"towary", {{u"f", dbLong}});
    EXPECT_EQ(clean_one(u""), u"");
    EXPECT_EQ(clean_one(u"żaba"), u"ŻABA");
    EXPECT_EQ(host.disk().log, (Lines{"OpenDatabase(C:\\firma.mdb)", "TableDefs", "TableDef.Name",
                                      "Close", "release", "OpenDatabase(C:\\firma.mdb)",
                                      "TableDefs", "TableDef.Name", "Close", "release"}));
    EXPECT_TRUE(sleeps().empty());
}

TEST_F(Cleaning, TheNameIsInUpperCaseEvenIfTheFileDoesNotOpen) {
    String table = u"żaba";
    EXPECT_EQ(failure_of([&] { cleaner.CZYŚĆ_BAZĘ_TMP(u"C:\\nie ma.mdb", false, table); }),
              no_such_file);
    EXPECT_EQ(table, u"ŻABA");
}

// ---- Files that do not open -------------------------------------------------------------------

TEST_F(Cleaning, FileThatDoesNotOpen) {
    host.disk().add(u"C:\\tekst.mdb");
    EXPECT_EQ(failure_of([&] { cleaner.CZYŚĆ_BAZĘ(u"C:\\nie ma.mdb", true, false, u""); }),
              no_such_file);
    EXPECT_EQ(failure_of([&] { cleaner.CZYŚĆ_BAZĘ(u"C:\\tekst.mdb", true, false, u""); }),
              no_database);
    EXPECT_TRUE(sleeps().empty());
    EXPECT_NO_THROW(cleaner.CZYŚĆ_BAZĘ(u"C:\\nie ma.mdb", true, true, u""));
    EXPECT_EQ(sleeps(), std::vector<Long>{5000});
    String table = u"t";
    EXPECT_NO_THROW(cleaner.CZYŚĆ_BAZĘ_TMP(u"C:\\nie ma.mdb", true, table));
    EXPECT_EQ(sleeps(), std::vector<Long>{5000});
    EXPECT_EQ(host.disk().log,
              (Lines{"OpenDatabase(C:\\nie ma.mdb)", "OpenDatabase(C:\\tekst.mdb)",
                     "OpenDatabase(C:\\nie ma.mdb)", "OpenDatabase(C:\\nie ma.mdb)"}));
    EXPECT_TRUE(host.fake.boxes.shown.empty());
}

// ---- Errors that pass -------------------------------------------------------------------------

// Every operation that a cleaning calls, but for those whose failure is no error.
constexpr const char* strict_operations[] = {
    "OpenDatabase", "TableDefs",  "TableDef.Name",   "TableDef.Fields", "Count",         "Item",
    "Type",         "Field.Name", "AllowZeroLength", "DefaultValue",    "Database.Close"};

void fill(MemoryMdb& mdb) {
    mdb.add_table(u"MSysObjects", {{u"f", dbLong}});
    mdb.add_table(u"towary", {{u"cena", dbCurrency}, {u"nazwa", dbText}});
    mdb.add_table(u"Błędy wklejania");
    mdb.add_table(u"zmiany", {{u"data_operacji", dbDate}, {u"data_zakupu", dbDate}});
}

Lines log_without_faults(const std::function<void(ClsCzyśćBazęDAO&)>& run) {
    FaultyPlatform host;
    fill(host.disk().add_database(path));
    ClsCzyśćBazęDAO cleaner;
    run(cleaner);
    return host.disk().log;
}

void expect_strict(const std::function<void(ClsCzyśćBazęDAO&)>& run) {
    const Lines whole = log_without_faults(run);
    for (const char* operation : strict_operations) {
        for (Long n = 1;; ++n) {
            SCOPED_TRACE(std::string(operation) + " " + std::to_string(n));
            FaultyPlatform host;
            fill(host.disk().add_database(path));
            host.plan->fail_at(operation, n, FaultSpan::Once, 4711);
            {
                ClsCzyśćBazęDAO cleaner;
                const Long number = failure_of([&] { run(cleaner); });
                if (host.plan->failed_calls() == 0) {
                    EXPECT_EQ(number, 0);
                    break;
                }
                EXPECT_EQ(number, 4711);
                // Nothing is done behind the call that fails; the database stays open.
                const Lines& log = host.disk().log;
                ASSERT_LT(log.size(), whole.size());
                EXPECT_TRUE(std::equal(log.begin(), log.end(), whole.begin()));
                EXPECT_EQ(host.disk().open_databases(), log.empty() ? 0 : 1);
                EXPECT_TRUE(host.fake.sleeper.sleeps.empty());
            }
            EXPECT_EQ(host.disk().open_databases(), 0);
        }
    }
}

TEST(StrictCleaning, EveryFailurePassesAtOnce) {
    expect_strict([](ClsCzyśćBazęDAO& cleaner) { cleaner.CZYŚĆ_BAZĘ(path, true, false, u""); });
    expect_strict([](ClsCzyśćBazęDAO& cleaner) {
        String table = u"zmiany";
        cleaner.CZYŚĆ_BAZĘ_TMP(path, false, table);
    });
}

TEST_F(Cleaning, PauseThatFailsPassesWithTheDatabaseClosed) {
    host.plan->fail_at("Sleep", 1, FaultSpan::Once, 5);
    EXPECT_EQ(failure_of([&] { clean_all(); }), 5);
    EXPECT_EQ(host.disk().open_databases(), 0);
    host.plan->fail_at("Sleep", 1, FaultSpan::Once, 5);
    EXPECT_EQ(failure_of([&] { clean_all(u"", false, true); }), 0);
}

TEST_F(Cleaning, DatabaseLeftOpenIsClosedWhenAnotherIsOpened) {
    mdb.add_table(u"towary", {{u"cena", dbCurrency}});
    host.plan->fail_at("DefaultValue", 1, FaultSpan::Once, 3219);
    EXPECT_EQ(failure_of([&] { clean_all(); }), 3219);
    EXPECT_EQ(host.disk().open_databases(), 1);
    EXPECT_EQ(mdb.table_names(), Lines{"TOWARY"});  // what was done stays done
    clean_all();
    EXPECT_EQ(host.disk().open_databases(), 0);
}

// A tolerant cleaning does not work on another file than the one it names.
TEST_F(Cleaning, DatabaseLeftOpenIsLeftAloneIfTheNextDoesNotOpen) {
    mdb.add_table(u"towary");
    host.plan->fail_at("TableDefs", 1, FaultSpan::Once, 3000);
    EXPECT_EQ(failure_of([&] { clean_all(); }), 3000);
    cleaner.CZYŚĆ_BAZĘ(u"C:\\nie ma.mdb", false, true, u"");
    EXPECT_EQ(mdb.table_names(), Lines{"towary"});
    EXPECT_EQ(host.disk().open_databases(), 0);
}

// ---- Errors that are ignored ------------------------------------------------------------------

// The lines of a log without those that begin with `dropped`.
Lines without(const Lines& log, const Lines& dropped) {
    Lines rest;
    for (const std::string& line : log) {
        const bool is_dropped = std::ranges::any_of(
            dropped, [&](const std::string& start) { return line.starts_with(start); });
        if (!is_dropped) {
            rest.push_back(line);
        }
    }
    return rest;
}

struct IgnoredCase {
    const char* operation;  // fails for good
    Lines missing;          // what no longer happens
};

// With one operation out of order for good all the rest is done as before.
TEST(TolerantCleaning, FailingStepsAreSkippedAndTheNextOnesRun) {
    const auto run = [](ClsCzyśćBazęDAO& cleaner) { cleaner.CZYŚĆ_BAZĘ(path, true, true, u""); };
    const Lines whole = log_without_faults(run);
    const IgnoredCase cases[] = {
        {"DefaultValue", {"DefaultValue"}},
        {"AllowZeroLength", {"AllowZeroLength"}},
        {"Execute", {"Execute"}},
        {"Database.Close", {"Close"}},
    };
    for (const IgnoredCase& c : cases) {
        SCOPED_TRACE(c.operation);
        FaultyPlatform host;
        fill(host.disk().add_database(path));
        host.plan->fail_at(c.operation, 1, FaultSpan::FromThenOn, 4711);
        ClsCzyśćBazęDAO cleaner;
        EXPECT_NO_THROW(run(cleaner));
        EXPECT_EQ(host.disk().log, without(whole, c.missing));
        EXPECT_EQ(host.disk().open_databases(), 0);
        EXPECT_EQ(host.fake.sleeper.sleeps, std::vector<Long>{5000});
    }
}

// What remains where something cannot be read.
TEST(TolerantCleaning, WhatCannotBeReadIsPassedOver) {
    const struct {
        const char* operation;
        Lines statements;
        Lines names;
    } cases[] = {
        {"OpenDatabase", {}, {"MSysObjects", "towary", "Błędy wklejania", "zmiany"}},
        {"TableDefs", {}, {"MSysObjects", "towary", "Błędy wklejania", "zmiany"}},
        {"TableDef.Name", {}, {"MSysObjects", "towary", "Błędy wklejania", "zmiany"}},
        {"TableDef.Fields",
         {"drop table [Błędy wklejania]"},
         {"MSysObjects", "TOWARY", "Błędy wklejania", "ZMIANY"}},
        {"Count",
         {"drop table [Błędy wklejania]"},
         {"MSysObjects", "TOWARY", "Błędy wklejania", "ZMIANY"}},
        {"Item",
         {"drop table [Błędy wklejania]"},
         {"MSysObjects", "TOWARY", "Błędy wklejania", "ZMIANY"}},
        {"Type",
         {"drop table [Błędy wklejania]"},
         {"MSysObjects", "TOWARY", "Błędy wklejania", "ZMIANY"}},
        {"Field.Name",
         {"drop table [Błędy wklejania]"},
         {"MSysObjects", "TOWARY", "Błędy wklejania", "ZMIANY"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.operation);
        FaultyPlatform host;
        MemoryMdb& mdb = host.disk().add_database(path);
        fill(mdb);
        host.plan->fail_at(c.operation, 1, FaultSpan::FromThenOn, 4711);
        ClsCzyśćBazęDAO cleaner;
        EXPECT_NO_THROW(cleaner.CZYŚĆ_BAZĘ(path, true, true, u""));
        EXPECT_EQ(utf8(host.disk().statements), c.statements);
        EXPECT_EQ(mdb.table_names(), c.names);
        EXPECT_EQ(host.disk().open_databases(), 0);
        EXPECT_EQ(host.fake.sleeper.sleeps, std::vector<Long>{5000});
        EXPECT_EQ(mdb.tables[0]->column(u"f").default_value, Variant(u""));
    }
}

TEST_F(Cleaning, FieldThatRefusesItsDefaultStillHasItsNullsReplaced) {
    mdb.add_table(u"T", {{u"a", dbLong}, {u"b", dbText}});
    host.plan->fail_at("DefaultValue", 1, FaultSpan::FromThenOn, 3219);
    clean_all(u"", false, true);
    EXPECT_EQ(statements(), (Lines{"UPDATE [T] SET [a]=0  where [a] is null",
                                   "UPDATE [T] SET [b]='' where [b] is null"}));
}

TEST_F(Cleaning, TableThatRefusesItsNameIsCleanedUnderTheOldOne) {
    mdb.add_table(u"towary", {{u"a", dbLong}});
    host.plan->fail_at("TableDef.Name", 2, FaultSpan::Once, 3211);  // the writing
    clean_all(u"", false, true);
    EXPECT_EQ(mdb.table_names(), Lines{"towary"});
    EXPECT_EQ(statements(), Lines{"UPDATE [towary] SET [a]=0  where [a] is null"});
}

// A table that cannot be read does not end the walk, nor pass for the one that is asked for.
TEST_F(Cleaning, OneTableWhoseNameCannotBeReadIsPassedOver) {
    mdb.add_table(u"pierwsza", {{u"a", dbLong}}).add_table(u"druga", {{u"a", dbLong}});
    host.plan->fail_at("TableDef.Name", 1, FaultSpan::Once, 3000);
    EXPECT_EQ(clean_one(u"druga", true), u"DRUGA");
    EXPECT_EQ(mdb.table_names(), (Lines{"pierwsza", "DRUGA"}));
    EXPECT_EQ(statements(), Lines{"UPDATE [DRUGA] SET [a]=0  where [a] is null"});
}

// Once or for good, at any call of any operation: the call returns, the database is closed, the
// pause is taken.
TEST(TolerantCleaning, NoFailureReachesTheCaller) {
    for (const char* operation :
         {"OpenDatabase", "TableDefs", "TableDef.Name", "TableDef.Fields", "Count", "Item", "Type",
          "Field.Name", "AllowZeroLength", "DefaultValue", "Execute", "Database.Close"}) {
        for (const FaultSpan span : {FaultSpan::Once, FaultSpan::FromThenOn}) {
            for (Long n = 1;; ++n) {
                SCOPED_TRACE(std::string(operation) + " " + std::to_string(n));
                FaultyPlatform host;
                fill(host.disk().add_database(path));
                host.plan->fail_at(operation, n, span, 4711);
                ClsCzyśćBazęDAO cleaner;
                EXPECT_NO_THROW(cleaner.CZYŚĆ_BAZĘ(path, true, true, u""));
                EXPECT_EQ(host.disk().open_databases(), 0);
                EXPECT_EQ(host.fake.sleeper.sleeps, std::vector<Long>{5000});
                if (host.plan->failed_calls() == 0) {
                    break;
                }
            }
        }
    }
}

// The same of the one table: its name is written back, and there is no pause.
TEST(TolerantCleaning, NoFailureReachesTheCallerOfTheOneTable) {
    for (const char* operation :
         {"OpenDatabase", "TableDefs", "TableDef.Name", "TableDef.Fields", "Count", "Item", "Type",
          "Field.Name", "AllowZeroLength", "DefaultValue", "Execute", "Database.Close"}) {
        for (Long n = 1;; ++n) {
            SCOPED_TRACE(std::string(operation) + " " + std::to_string(n));
            FaultyPlatform host;
            MemoryMdb& mdb = host.disk().add_database(path);
            fill(mdb);
            host.plan->fail_at(operation, n, FaultSpan::Once, 4711);
            ClsCzyśćBazęDAO cleaner;
            String table = u"towary";
            EXPECT_NO_THROW(cleaner.CZYŚĆ_BAZĘ_TMP(path, true, table));
            EXPECT_EQ(table, u"TOWARY");
            EXPECT_EQ(host.disk().open_databases(), 0);
            EXPECT_TRUE(host.fake.sleeper.sleeps.empty());
            if (host.plan->failed_calls() == 0) {
                EXPECT_EQ(mdb.table_names(),
                          (Lines{"MSysObjects", "TOWARY", "Błędy wklejania", "zmiany"}));
                break;
            }
        }
    }
}

// ---- Statements -----------------------------------------------------------------------------

TEST_F(Cleaning, RunsStatementsAsBazaDoes) {
    const auto db = platform().db_engine->OpenDatabase(path);
    host.disk().on_execute([](StringView) { throw Failure(3295, u"Syntax error"); });
    EXPECT_EQ(cleaner.DbWykonajNorthWind(u"drop tabel a", db, true), u"Syntax error");
    ASSERT_EQ(host.fake.boxes.shown.size(), 1U);
    EXPECT_EQ(host.fake.boxes.shown[0].title, u"drop tabel a");
    host.disk().on_execute([](StringView) {});
    EXPECT_EQ(cleaner.DbWykonajNorthWind(u"drop table a", db, true), u"");
}

TEST(CleanerTable, IsPrivateAndHasFourMembers) {
    using Table = ClassTable<ClsCzyśćBazęDAO>;
    EXPECT_EQ(Table::header.instancing, Instancing::Private);
    EXPECT_EQ(Table::header.interface_id, "");
    EXPECT_EQ(Table::header.class_id, "");
    Lines names;
    for (const MemberInfo& member : Table::members) {
        names.push_back(to_utf8(member.name));
    }
    EXPECT_EQ(names,
              (Lines{"CZYŚĆ_BAZĘ", "CZYŚĆ_BAZĘ_TMP", "Set_Szer_tetx", "DbWykonajNorthWind"}));
}

TEST_F(Cleaning, NameIsWrittenBackToALateBoundCaller) {
    mdb.add_table(u"towary");
    String name = u"towary";
    Arguments arguments{Variant(path), true, Variant::reference(name)};
    invoke(ClassTable<ClsCzyśćBazęDAO>::members[1], &cleaner, arguments);
    EXPECT_EQ(name, u"TOWARY");
    String wanted = u"towary";
    Arguments all{Variant(path), false, false, Variant::reference(wanted)};
    invoke(ClassTable<ClsCzyśćBazęDAO>::members[0], &cleaner, all);
    EXPECT_EQ(wanted, u"towary");
}

}  // namespace
}  // namespace kvarta16::database_tests
