// The room's classes on the real engine and real files, read back by the engine itself.
#include <functional>

#include <support/sqlite_files.h>
#include <sys/stat.h>
#include <unistd.h>

#include <kvarta16/database/Baza.h>
#include <kvarta16/database/ClsCzyscBazeDAO.h>
#include <kvarta16/platform/posix/posix_platform.h>
#include <kvarta16/platform/sqlite/sqlite_engine.h>

#include "database_support.h"

namespace kvarta16::database_tests {
namespace {

using testing_support::file_bytes;
using testing_support::LockingProcess;
using testing_support::OtherProgram;
using testing_support::TemporaryFolder;
using testing_support::write_file;

// Boxes and pauses of the test, files and engine of the system behind a fault plan.
class RealFiles : public testing::Test {
  protected:
    [[nodiscard]] String windows_path(std::string_view name) const {
        return u"Z:" + replace_all(from_utf8(folder / name), u"/", u"\\");
    }
    // Runs statements on the file, which is made if there is none.
    void run(const std::vector<String>& statements) {
        const auto db = ::access((folder / "firma.mdb").c_str(), F_OK) == 0
                            ? platform().db_engine->OpenDatabase(path)
                            : platform().db_engine->CreateDatabase(path, u"");
        for (const String& statement : statements) {
            ASSERT_EQ(baza.DbWykonajNorthWind(statement, db, false), u"") << to_utf8(statement);
        }
        db->Close();
    }
    // Rows of the file as another program reads them, cells joined by "|", rows by ";".
    [[nodiscard]] std::string read(const std::string& sql) const {
        std::string text;
        for (const auto& row : OtherProgram(folder / "firma.mdb").rows(sql)) {
            text += text.empty() ? "" : ";";
            for (std::size_t i = 0; i < row.size(); ++i) {
                text += (i == 0 ? "" : "|") + row[i];
            }
        }
        return text;
    }
    // The table's columns as the DAO seam tells them: "nazwa 10(255) default".
    [[nodiscard]] Lines columns(StringView table) const {
        Lines lines;
        const auto db = sqlite::db_engine().OpenDatabase(path);
        for (const auto& found : db->TableDefs()) {
            if (found->Name() == table) {
                const auto fields = found->Fields();
                for (Long i = 0; i < fields->Count(); ++i) {
                    const auto field = fields->Item(i);
                    lines.push_back(to_utf8(field->Name()) + " " + std::to_string(field->Type()) +
                                    "(" + std::to_string(field->Size()) + ") " +
                                    to_utf8(ToText(field->DefaultValue())));
                }
            }
        }
        return lines;
    }
    [[nodiscard]] Lines tables() const {
        Lines names;
        const auto db = sqlite::db_engine().OpenDatabase(path);
        for (const auto& table : db->TableDefs()) {
            names.push_back(to_utf8(table->Name()));
        }
        return names;
    }
    [[nodiscard]] Lines box_texts() const {
        Lines texts;
        for (const auto& box : fake.boxes.shown) {
            texts.push_back(to_utf8(box.text));
        }
        return texts;
    }

    const TemporaryFolder folder;
    const String path = windows_path("firma.mdb");
    FakePlatform fake;
    std::shared_ptr<FaultPlan> plan = std::make_shared<FaultPlan>();
    std::unique_ptr<Files> files = faulting(*posix_platform().files, plan);
    std::unique_ptr<dao::DBEngine> engine = faulting(sqlite::db_engine(), plan);
    Platform operations{&fake.boxes, &fake.clock, &fake.sleeper, files.get(), engine.get()};
    ScopedPlatform scope{operations};
    Baza baza;
    ClsCzyśćBazęDAO cleaner;
};

// ---- Creating and checking --------------------------------------------------------------------

using RealNewMdb = RealFiles;

TEST_F(RealNewMdb, OnAFreeName) {
    EXPECT_TRUE(static_cast<bool>(baza.NewMdb(path)));
    EXPECT_EQ(fake.sleeper.sleeps, std::vector<Long>{3000});
    EXPECT_TRUE(box_texts().empty());
    EXPECT_EQ(baza.Sprawdź_bazęDAO(path), 0);
    EXPECT_EQ(sqlite::locale_of(*sqlite::db_engine().OpenDatabase(path)),
              u";LANGID=0x0415;CP=1250;COUNTRY=0");
    EXPECT_TRUE(tables().empty());
    EXPECT_EQ(folder.names(), Lines{"firma.mdb"});
}

TEST_F(RealNewMdb, OnAFileThatIsThere) {
    run({u"create table [stara] (a LONG)"});
    const std::string before = file_bytes(folder / "firma.mdb");
    EXPECT_FALSE(static_cast<bool>(baza.NewMdb(path, true)));
    EXPECT_TRUE(box_texts().empty());
    fake.boxes.answers = {MsgBoxResult::No};
    EXPECT_FALSE(static_cast<bool>(baza.NewMdb(path)));
    EXPECT_EQ(box_texts(), Lines{"Nadpisać " + to_utf8(path)});
    EXPECT_EQ(file_bytes(folder / "firma.mdb"), before);
    fake.boxes.answers = {MsgBoxResult::Yes};
    EXPECT_TRUE(static_cast<bool>(baza.NewMdb(path)));
    EXPECT_TRUE(tables().empty());
}

TEST_F(RealNewMdb, OnAFileThatCannotBeDeleted) {
    write_file(folder / "firma.mdb", "text");
    ::chmod((folder / "firma.mdb").c_str(), 0444);
    fake.boxes.answers = {MsgBoxResult::Yes, MsgBoxResult::Yes, MsgBoxResult::No};
    EXPECT_FALSE(static_cast<bool>(baza.NewMdb(path)));
    EXPECT_EQ(box_texts().size(), 3U);  // to overwrite, after 300 passes, after 600
    EXPECT_EQ(file_bytes(folder / "firma.mdb"), "text");
}

// A file with which another program is at work is not taken from under it.
TEST_F(RealNewMdb, OnAFileThatAnotherProgramHolds) {
    run({u"create table [stara] (a LONG)", u"insert into [stara] values (7)"});
    {
        const LockingProcess locking(folder / "firma.mdb", "begin immediate");
        fake.boxes.answers = {MsgBoxResult::Yes, MsgBoxResult::No};
        EXPECT_FALSE(static_cast<bool>(baza.NewMdb(path)));
        EXPECT_EQ(box_texts().size(), 2U);  // to overwrite, after 300 passes
    }
    EXPECT_EQ(read("select a from stara"), "7");
    fake.boxes.answers = {MsgBoxResult::Yes};
    EXPECT_TRUE(static_cast<bool>(baza.NewMdb(path)));
    EXPECT_TRUE(tables().empty());
}

TEST_F(RealNewMdb, OnAFolder) {
    ASSERT_EQ(::mkdir((folder / "firma.mdb").c_str(), 0755), 0);
    EXPECT_FALSE(static_cast<bool>(baza.NewMdb(path)));
    ASSERT_EQ(box_texts().size(), 1U);
    EXPECT_TRUE(box_texts()[0].ends_with("/Proc:NewMdb,ModT:Module,ModN:Baza"));
    EXPECT_EQ(folder.names(), Lines{"firma.mdb"});
}

TEST_F(RealNewMdb, InAFolderThatIsNotThereOrMayNotBeWritten) {
    for (const String& name : {windows_path("nie ma\\firma.mdb"), String(u"Z:\\sys\\firma.mdb")}) {
        fake.boxes.shown.clear();
        EXPECT_FALSE(static_cast<bool>(baza.NewMdb(name, true)));
        ASSERT_EQ(box_texts().size(), 1U) << to_utf8(name);
        EXPECT_TRUE(box_texts()[0].ends_with("/Proc:NewMdb,ModT:Module,ModN:Baza"));
    }
}

TEST_F(RealNewMdb, UnderNamesOfManyKinds) {
    for (const char* name : {"Żółw i jeż.mdb", "a'b\"c.mdb", "bez", ".mdb", "$(x);.mdb"}) {
        EXPECT_TRUE(static_cast<bool>(baza.NewMdb(windows_path(name)))) << name;
        EXPECT_EQ(baza.Sprawdź_bazęDAO(windows_path(name)), 0) << name;
    }
    EXPECT_EQ(folder.names().size(), 5U);
    EXPECT_TRUE(box_texts().empty());
}

TEST_F(RealFiles, TheCheckGivesTheEnginesNumber) {
    write_file(folder / "tekst.mdb", std::string(5000, 'x'));
    write_file(folder / "pusty.mdb", "");
    EXPECT_EQ(baza.Sprawdź_bazęDAO(windows_path("nie ma.mdb")), 3024);
    EXPECT_EQ(baza.Sprawdź_bazęDAO(windows_path("tekst.mdb")), 3343);
    EXPECT_EQ(baza.Sprawdź_bazęDAO(windows_path("pusty.mdb")), 3343);
    EXPECT_NE(baza.Sprawdź_bazęDAO(u"Z:\\"), 0);
    EXPECT_NE(baza.Sprawdź_bazęDAO(u""), 0);
    EXPECT_NE(baza.Sprawdź_bazęDAO(u"\\\\serwer\\udzial\\firma.mdb"), 0);
    run({u"create table [a] (b LONG)"});
    const std::string whole = file_bytes(folder / "firma.mdb");
    write_file(folder / "polowa.mdb", whole.substr(0, whole.size() / 2 + 7));
    EXPECT_NE(baza.Sprawdź_bazęDAO(windows_path("polowa.mdb")), 0);
    EXPECT_TRUE(box_texts().empty());
    // Looking changes nothing.
    EXPECT_EQ(file_bytes(folder / "tekst.mdb"), std::string(5000, 'x'));
    EXPECT_EQ(file_bytes(folder / "pusty.mdb"), "");
}

TEST_F(RealFiles, StatementsAndTheirFailures) {
    run({u"create table [a] (b LONG)"});
    const auto db = platform().db_engine->OpenDatabase(path);
    EXPECT_EQ(baza.DbWykonajNorthWind(u"insert into [a] (b) values (5)", db, false), u"");
    for (const char16_t* wrong : {u"drop tabel a", u"", u"select * from a",
                                  u"update [nie ma] set b=1", u"insert into [a] (c) values (1)"}) {
        EXPECT_NE(cleaner.DbWykonajNorthWind(wrong, db, false), u"");
    }
    EXPECT_TRUE(box_texts().empty());
    const String text = baza.DbWykonajNorthWind(u"drop tabel a", db, true);
    EXPECT_EQ(box_texts(), Lines{to_utf8(text)});
    EXPECT_EQ(read("select b from a"), "5");
}

// ---- Cleaning -------------------------------------------------------------------------------

class RealCleaning : public RealFiles {
  protected:
    void clean_all(StringView table = u"", bool drop_paste_errors = false, bool ignore = false) {
        cleaner.CZYŚĆ_BAZĘ(path, drop_paste_errors, ignore, table);
    }
    // A table with a field of each kind, and a row in which all of them are Null.
    void make_goods() {
        run(
            {u"create table [towary] (id LONG, b BYTE, i INTEGER, c CURRENCY, s SINGLE, d DOUBLE, "
             u"nazwa TEXT(50), opis MEMO, aktywny BIT, obraz LONGBINARY, data_operacji DATETIME, "
             u"DATA_UTWORZENIA DATETIME, DATA_ZAKUPU DATETIME)",
             u"insert into [towary] (id) values (1)"});
        // The engine's own default of a truth value is false.
        OtherProgram(folder / "firma.mdb").run("update towary set aktywny=null");
    }
};

TEST_F(RealCleaning, NoNullIsLeftInTheFieldsInScope) {
    make_goods();
    clean_all();
    EXPECT_EQ(tables(), Lines{"TOWARY"});
    EXPECT_EQ(read("select id,b+0,i+0,c+0,s+0,d+0,nazwa,opis,aktywny,obraz,"
                   "date(data_operacji),date(DATA_UTWORZENIA),DATA_ZAKUPU from TOWARY"),
              "1|0|0|0|0.0|0.0|||NULL|NULL|1990-01-01|1990-01-01|NULL");
    EXPECT_EQ(read("select name from sqlite_master where type='table' and name not like 'kv%'"),
              "TOWARY");
    EXPECT_EQ(fake.sleeper.sleeps, std::vector<Long>{5000});
}

TEST_F(RealCleaning, DefaultsHoldForTheRowsThatComeAfterwards) {
    make_goods();
    clean_all();
    run({u"insert into [TOWARY] (id) values (2)"});
    EXPECT_EQ(read("select b+0,i+0,c+0,s+0,d+0,nazwa,opis,obraz,DATA_ZAKUPU from TOWARY where "
                   "id=2"),
              "0|0|0|0.0|0.0|||NULL|NULL");
    EXPECT_EQ(read("select data_operacji,DATA_UTWORZENIA from TOWARY where id=2"),
              "2024-05-17 12:00:00|2024-05-17 12:00:00");  // as the test's clock stands
}

TEST_F(RealCleaning, ValuesThatAreThereStay) {
    run({u"create table [t] (a LONG, n TEXT(10), data_operacji DATETIME)",
         u"insert into [t] values (7,'x',#02-03-2001#)", u"insert into [t] (a) values (8)"});
    clean_all();
    EXPECT_EQ(read("select a,n,date(data_operacji) from T order by a"),
              "7|x|2001-02-03;8||1990-01-01");
}

TEST_F(RealCleaning, EmptyTextIsAllowedAfterwards) {
    run({u"create table [t] (a LONG, n TEXT(10))"});
    {
        const auto db = platform().db_engine->OpenDatabase(path);
        db->TableDefs()[0]->Fields()->Item(1)->PutAllowZeroLength(false);
        EXPECT_NE(baza.DbWykonajNorthWind(u"insert into [t] values (1,'')", db, false), u"");
    }
    run({u"insert into [t] (a) values (2)"});
    clean_all();
    run({u"insert into [t] values (3,'')"});
    EXPECT_EQ(read("select a,n from T order by a"), "2|;3|");
}

// Made by another program: the engine's own dialect has no reason to make one.
TEST_F(RealCleaning, SystemTables) {
    run({u"create table [towary] (a LONG)"});
    OtherProgram(folder / "firma.mdb")
        .run("create table MSysObjects (a LONG); insert into MSysObjects values (null)");
    clean_all();
    EXPECT_EQ(tables(), (Lines{"MSysObjects", "TOWARY"}));
    EXPECT_EQ(read("select a from MSysObjects"), "NULL");
    String name = u"msysobjects";
    cleaner.CZYŚĆ_BAZĘ_TMP(path, false, name);
    EXPECT_EQ(tables(), (Lines{"MSYSOBJECTS", "TOWARY"}));
    EXPECT_EQ(read("select a from MSYSOBJECTS"), "0");
}

TEST_F(RealCleaning, SpecialTables) {
    run({u"create table [Nieruszac] (a LONG)", u"insert into [Nieruszac] values (null)",
         u"create table [Błędy wklejania] (a LONG)", u"insert into [Błędy wklejania] values (null)",
         u"create table [MSYSX] (a LONG)", u"insert into [MSYSX] values (null)",
         u"create table [bez pól do czyszczenia] (a BIT)"});
    clean_all();
    EXPECT_EQ(tables(), (Lines{"BEZ PÓL DO CZYSZCZENIA", "Błędy wklejania", "MSYSX", "Nieruszac"}));
    EXPECT_EQ(read("select a from Nieruszac"), "NULL");
    EXPECT_EQ(read("select a from \"Błędy wklejania\""), "NULL");
    EXPECT_EQ(read("select a from MSYSX"), "0");
    clean_all(u"", true);
    EXPECT_EQ(tables(), (Lines{"BEZ PÓL DO CZYSZCZENIA", "MSYSX", "Nieruszac"}));
    String name = u"nieruszac";
    cleaner.CZYŚĆ_BAZĘ_TMP(path, false, name);
    EXPECT_EQ(name, u"NIERUSZAC");
    EXPECT_EQ(read("select a from NIERUSZAC"), "0");
    EXPECT_EQ(tables(), (Lines{"BEZ PÓL DO CZYSZCZENIA", "MSYSX", "NIERUSZAC"}));
}

// The walk goes in the order of the names without case.
TEST_F(RealCleaning, PasteErrorsAreReachedOrNot) {
    run({u"create table [zakupy] (a LONG)", u"create table [Adresy] (a LONG)",
         u"create table [Błędy wklejania] (a LONG)"});
    clean_all(u"ADRESY", true);
    EXPECT_EQ(tables(), (Lines{"ADRESY", "Błędy wklejania", "zakupy"}));
    clean_all(u"Zakupy", true);
    EXPECT_EQ(tables(), (Lines{"ADRESY", "ZAKUPY"}));
}

TEST_F(RealCleaning, WhatNamesNothing) {
    run({u"create table [Nieruszac] (a LONG)", u"create table [towary] (a LONG)"});
    const std::string before = file_bytes(folder / "firma.mdb");
    clean_all(u"NIERUSZAC");
    clean_all(u"nie ma");
    String empty;
    cleaner.CZYŚĆ_BAZĘ_TMP(path, false, empty);
    String unknown = u"nie ma";
    cleaner.CZYŚĆ_BAZĘ_TMP(path, false, unknown);
    EXPECT_EQ(file_bytes(folder / "firma.mdb"), before);
}

TEST_F(RealCleaning, FilesThatDoNotOpen) {
    write_file(folder / "firma.mdb", std::string(5000, 'x'));
    EXPECT_EQ(failure_of([&] { clean_all(); }), 3343);
    EXPECT_TRUE(fake.sleeper.sleeps.empty());
    clean_all(u"", true, true);
    EXPECT_EQ(fake.sleeper.sleeps, std::vector<Long>{5000});
    String name = u"a";
    EXPECT_EQ(failure_of([&] { cleaner.CZYŚĆ_BAZĘ_TMP(windows_path("x"), false, name); }), 3024);
    cleaner.CZYŚĆ_BAZĘ_TMP(windows_path("x"), true, name);
    EXPECT_EQ(file_bytes(folder / "firma.mdb"), std::string(5000, 'x'));
    EXPECT_EQ(folder.names(), Lines{"firma.mdb"});
}

TEST_F(RealCleaning, FileThatMayOnlyBeRead) {
    make_goods();
    const std::string before = file_bytes(folder / "firma.mdb");
    // No right of the file stops the superuser: the refusal comes from the plan, by its number.
    plan->fail_at("TableDef.Name", 2, FaultSpan::Once, 3027);
    plan->fail_at("Execute", 1, FaultSpan::FromThenOn, 3027);
    EXPECT_EQ(failure_of([&] { clean_all(); }), 3027);
    EXPECT_EQ(file_bytes(folder / "firma.mdb"), before);
}

// What was done before a failure stays done; the file is free once the object is gone.
TEST_F(RealCleaning, FailureLeavesWhatWasDoneAndTheFileOpen) {
    run({u"create table [a] (x LONG)", u"insert into [a] values (null)",
         u"create table [b] (x LONG)", u"insert into [b] values (null)"});
    plan->fail_at("DefaultValue", 2, FaultSpan::Once, 3219);
    {
        ClsCzyśćBazęDAO strict;
        EXPECT_EQ(failure_of([&] { strict.CZYŚĆ_BAZĘ(path, false, false, u""); }), 3219);
        EXPECT_EQ(tables(), (Lines{"A", "B"}));
        EXPECT_EQ(read("select (select x from A),(select x from B)"), "0|NULL");
    }
    OtherProgram(folder / "firma.mdb").run("begin exclusive; rollback");
    plan->fail_at("DefaultValue", 1, FaultSpan::FromThenOn, 3219);
    clean_all(u"", false, true);
    EXPECT_EQ(read("select (select x from A),(select x from B)"), "0|0");
}

TEST_F(RealCleaning, TwiceIsTheSameAsOnce) {
    make_goods();
    clean_all();
    const Lines once = columns(u"TOWARY");
    const std::string rows = read("select * from TOWARY");
    clean_all();
    EXPECT_EQ(columns(u"TOWARY"), once);
    EXPECT_EQ(read("select * from TOWARY"), rows);
}

TEST_F(RealCleaning, NamesAndFieldsWithBlanksAndPolishLetters) {
    run({u"create table [Łąki i pola] ([Żyto w kg] LONG, [opis łąki] TEXT(20))",
         u"insert into [Łąki i pola] values (null,null)"});
    clean_all(u"łąki i POLA");
    EXPECT_EQ(tables(), Lines{"ŁĄKI I POLA"});
    EXPECT_EQ(read("select * from \"ŁĄKI I POLA\""), "0|");
}

// ---- Widening -------------------------------------------------------------------------------

class RealWidening : public RealFiles {
  protected:
    bool widen(StringView table = u"[Towary]", StringView prefix = u"dane") {
        return static_cast<bool>(cleaner.Set_Szer_tetx(prefix, table, path));
    }
};

TEST_F(RealWidening, NarrowColumnsComeOutWideAndLast) {
    run({u"create table [towary] (a TEXT(10), b TEXT(255), c MEMO, d TEXT(254), e LONG)",
         u"insert into [towary] values ('ala','bb','cc','dd',5)",
         u"insert into [towary] values (null,null,null,null,null)",
         u"create table [inne] (a TEXT(10))"});
    EXPECT_TRUE(widen());
    EXPECT_EQ(columns(u"towary"),
              (Lines{"b 10(255) ", "c 12(0) ", "e 4(4) ", "a 10(255) ", "d 10(255) "}));
    EXPECT_EQ(read("select a,b,c,d,e from towary order by e desc"),
              "ala|bb|cc|dd|5;NULL|NULL|NULL|NULL|NULL");
    EXPECT_EQ(columns(u"inne"), Lines{"a 10(10) "});
    EXPECT_TRUE(fake.sleeper.sleeps.empty());
}

TEST_F(RealWidening, IndexDefaultAndPropertiesAreLost) {
    run({u"create table [towary] (kod TEXT(10))", u"create index [indkod] on [towary] (kod)",
         u"insert into [towary] values ('x')"});
    {
        const auto db = platform().db_engine->OpenDatabase(path);
        const auto field = db->TableDefs()[0]->Fields()->Item(0);
        field->PutDefaultValue(u"\"domyślny\"");
        field->PutAllowZeroLength(false);
    }
    EXPECT_TRUE(widen());
    EXPECT_EQ(columns(u"towary"), Lines{"kod 10(255) "});
    EXPECT_EQ(read("select count(*) from sqlite_master where type='index'"), "0");
    EXPECT_EQ(read("select kod from towary"), "x");
}

TEST_F(RealWidening, ColumnThatAnotherIndexNeedsStaysNarrowAndKeepsItsData) {
    run({u"create table [towary] (kod TEXT(10), nazwa TEXT(20))",
         u"create index [inny] on [towary] (kod)", u"insert into [towary] values ('x','y')"});
    EXPECT_TRUE(widen());
    EXPECT_EQ(columns(u"towary"), (Lines{"kod 10(10) ", "nazwa 10(255) "}));
    EXPECT_EQ(read("select kod,nazwa from towary"), "x|y");
}

TEST_F(RealWidening, ColumnWithABlankInItsNameStaysAsItIs) {
    run({u"create table [towary] ([nazwa towaru] TEXT(10), b TEXT(10))",
         u"insert into [towary] values ('x','y')"});
    EXPECT_TRUE(widen());
    EXPECT_EQ(columns(u"towary"), (Lines{"nazwa towaru 10(10) ", "b 10(255) "}));
    EXPECT_EQ(read("select \"nazwa towaru\",b from towary"), "x|y");
}

// In brackets and bare alike it is the same column: what cannot be named bare stays.
TEST_F(RealWidening, ColumnsNamedLikeKeywordsLoseNothing) {
    for (const char16_t* name : {u"column", u"Constraint", u"table", u"text", u"index", u"order"}) {
        run({u"create table [towary] (q long, [" + String(name) + u"] text(10))",
             u"insert into [towary] values (1,'dane')"});
        EXPECT_TRUE(widen());
        EXPECT_EQ(read("select \"" + to_utf8(name) + "\" from towary"), "dane") << to_utf8(name);
        run({u"drop table [towary]"});
    }
}

TEST_F(RealWidening, LeftoverOfAnEarlierRunIsLost) {
    run({u"create table [towary] (a TEXT(10), ccxxdfredvvcxds__ddfr TEXT(255))",
         u"insert into [towary] values ('x','stare')"});
    EXPECT_TRUE(widen());
    EXPECT_EQ(columns(u"towary"), Lines{"a 10(255) "});
    EXPECT_EQ(read("select a from towary"), "x");
}

TEST_F(RealWidening, LeftoverBetweenTheColumns) {
    run({u"create table [towary] (a TEXT(10), ccxxdfredvvcxds__ddfr TEXT(255), b TEXT(10))",
         u"insert into [towary] values ('x','stare','y')"});
    EXPECT_TRUE(widen());
    EXPECT_EQ(read("select a,b from towary"), "x|y");
    EXPECT_EQ(columns(u"towary"), (Lines{"a 10(255) ", "b 10(255) "}));
}

TEST_F(RealWidening, WhatNamesNoTableChangesNothing) {
    run({u"create table [towary] (a TEXT(10))", u"insert into [towary] values ('x')"});
    const std::string before = file_bytes(folder / "firma.mdb");
    for (const char16_t* name : {u"towary", u"[nie ma]", u""}) {
        EXPECT_FALSE(widen(name));
    }
    EXPECT_EQ(file_bytes(folder / "firma.mdb"), before);
    EXPECT_FALSE(static_cast<bool>(cleaner.Set_Szer_tetx(u"d", u"[a]", windows_path("nie ma"))));
    write_file(folder / "firma.mdb", std::string(5000, 'x'));
    EXPECT_FALSE(widen());
    EXPECT_EQ(folder.names(), Lines{"firma.mdb"});
}

// Which statement fails, and what stands in the table then: "" where the column has gone for good.
TEST_F(RealWidening, DataIsLostWhereItIsToldAndNowhereElse) {
    const struct {
        Long statement;
        std::string data;
        Long size;
    } cases[] = {
        {1, "x", 255},     // nothing to clear away
        {2, "NULL", 255},  // no temporary column: the data goes with the narrow one
        {3, "NULL", 255},  // not copied out
        {4, "x", 255},     // no such index
        {5, "x", 10},      // the narrow column stays
        {6, "", 0},        // no wide column: the data is in the temporary one, which goes last
        {7, "NULL", 255},  // not copied back
        {8, "x", 255},     // the temporary column stays until the next run
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.statement);
        ::unlink((folder / "firma.mdb").c_str());
        run({u"create table [towary] (n LONG, a TEXT(10))",
             u"insert into [towary] values (1,'x')"});
        plan->fail_at("Execute", c.statement, FaultSpan::Once, 4711);
        EXPECT_TRUE(widen());
        Lines expected = {"n 4(4) "};
        if (c.size != 0) {
            expected.push_back("a 10(" + std::to_string(c.size) + ") ");
            EXPECT_EQ(read("select a from towary"), c.data);
        }
        if (c.statement == 8) {
            expected.insert(expected.begin() + 1, "ccxxdfredvvcxds__ddfr 10(255) ");
        }
        EXPECT_EQ(columns(u"towary"), expected);
    }
}

TEST_F(RealWidening, FailureLeavesTheFileFree) {
    run({u"create table [towary] (a TEXT(10), b TEXT(10))"});
    plan->fail_at("Size", 2, FaultSpan::Once, 4711);
    EXPECT_TRUE(widen());
    EXPECT_EQ(columns(u"towary"), (Lines{"b 10(10) ", "a 10(255) "}));
    OtherProgram(folder / "firma.mdb").run("begin exclusive; rollback");
}

}  // namespace
}  // namespace kvarta16::database_tests
