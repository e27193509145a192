// Database files made and opened, their tables listed and renamed, and what goes wrong with files.

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <platform/dao_fixture.h>
#include <sys/wait.h>
#include <unistd.h>

#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

using testing_support::Caught;
using testing_support::caught;
using testing_support::DaoTest;
using testing_support::file_bytes;
using testing_support::OtherProgram;
using testing_support::write_file;

// ---- Making and opening ------------------------------------------------------------------------

using DaoEngine = DaoTest;

TEST_F(DaoEngine, IsTheEngineOfTheDefaultPlatform) {
    EXPECT_EQ(default_platform().db_engine, &sqlite::db_engine());
}

TEST_F(DaoEngine, MakesADatabaseThatKeepsItsLocale) {
    {
        const auto db = create();
        EXPECT_TRUE(db->TableDefs().empty());
        EXPECT_EQ(sqlite::locale_of(*db), u";LANGID=0x0415;CP=1250;COUNTRY=0");
        db->Close();
    }
    EXPECT_EQ(folder_.names(), Names({"baza.mdb"}));
    EXPECT_EQ(value("select value from kvarta16_database where name='Locale'"),
              ";LANGID=0x0415;CP=1250;COUNTRY=0");
    EXPECT_EQ(sqlite::locale_of(*open()), u";LANGID=0x0415;CP=1250;COUNTRY=0");
    EXPECT_EQ(value("pragma integrity_check"), "ok");
    EXPECT_EQ(value("pragma journal_mode"), "delete");
}

TEST_F(DaoEngine, ADatabaseThatIsDroppedClosesItself) {
    static_cast<void>(create());
    EXPECT_EQ(folder_.names(), Names({"baza.mdb"}));
    open()->Execute(u"create table T (id long)");
    EXPECT_EQ(folder_.names(), Names({"baza.mdb"}));
    EXPECT_EQ(table_names(*open()), Names({"T"}));
}

TEST_F(DaoEngine, AnotherProgramsFileHasNoLocale) {
    write("create table T (id INTEGER)");
    EXPECT_EQ(sqlite::locale_of(*open()), u"");
}

TEST_F(DaoEngine, WhatCannotBeMade) {
    const auto made = [](StringView name) {
        return caught([&] { static_cast<void>(engine().CreateDatabase(name, u"")); }).number;
    };
    write_file(path_, "tekst");
    EXPECT_EQ(made(path()), 3204);
    EXPECT_EQ(file_bytes(path_), "tekst");
    EXPECT_EQ(made(from_utf8(folder_.path())), 3051);
    EXPECT_EQ(made(from_utf8(folder_ / "nie/ma/b.mdb")), 3044);
    EXPECT_EQ(made(path() + u"/b.mdb"), 3044);
    EXPECT_EQ(made(u""), 3044);
    EXPECT_EQ(made(u"?"), 3044);
    EXPECT_EQ(folder_.names(), Names({"baza.mdb"}));
}

TEST_F(DaoEngine, WhatCannotBeOpened) {
    const auto opened = [](StringView name) {
        return caught([&] { static_cast<void>(engine().OpenDatabase(name)); });
    };
    EXPECT_EQ(opened(path()).number, 3024);
    EXPECT_NE(opened(path()).text.find(path_), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(path_));
    EXPECT_EQ(opened(from_utf8(folder_.path())).number, 3051);
    EXPECT_EQ(opened(u"?").number, 3044);
    write_file(path_, "");
    EXPECT_EQ(opened(path()).number, 3343);
    write_file(path_, "To jest tekst, a nie baza danych.\n");
    EXPECT_EQ(opened(path()).number, 3343);
    EXPECT_EQ(file_bytes(path_), "To jest tekst, a nie baza danych.\n");
    write_file(path_, std::string(100'000, 'x'));
    EXPECT_EQ(opened(path()).number, 3343);
}

TEST_F(DaoEngine, AFileCutInHalf) {
    {
        const auto db = create();
        db->Execute(u"create table T (id long, nazwa text(50))");
        for (int i = 0; i < 500; ++i) {
            db->Execute(u"insert into T values (1, 'wiersz, który zajmuje trochę miejsca')");
        }
    }
    const std::string whole = file_bytes(path_);
    for (const std::size_t size : {whole.size() / 2, whole.size() - 1, std::size_t{50}}) {
        write_file(path_, whole.substr(0, size));
        const Long number = caught([&] { static_cast<void>(open()); }).number;
        EXPECT_TRUE(number == 3343 || number == 3428) << size << ": " << number;
        EXPECT_EQ(file_bytes(path_), whole.substr(0, size));
    }
    write_file(path_, whole);
    EXPECT_EQ(caught([&] { static_cast<void>(open()); }).number, 0);
}

TEST_F(DaoEngine, AReadOnlyFileOpensAndTakesNothing) {
    static_cast<void>(create());
    write("create table t (id INTEGER, nazwa TEXT)");
    const auto db =
        std::dynamic_pointer_cast<dao::Database>(sqlite::connect(path_, {.read_only = true}));
    ASSERT_NE(db, nullptr);
    const std::string before = file_bytes(path_);
    EXPECT_EQ(table_names(*db), Names({"t"}));
    EXPECT_EQ(caught([&] { db->Execute(u"insert into t (id) values (1)"); }).number, 3027);
    EXPECT_EQ(caught([&] { db->Execute(u"drop table t"); }).number, 3027);
    EXPECT_EQ(caught([&] { table(*db, u"t")->PutName(u"T"); }).number, 3027);
    EXPECT_EQ(caught([&] { field(*db, u"t", u"id")->PutDefaultValue(Long{0}); }).number, 3027);
    EXPECT_EQ(caught([&] { field(*db, u"t", u"nazwa")->PutAllowZeroLength(false); }).number, 3027);
    EXPECT_EQ(file_bytes(path_), before);
}

TEST_F(DaoEngine, ClosedObjectsFail) {
    const auto db = create();
    db->Execute(u"create table T (id long)");
    const auto tables = db->TableDefs();
    const auto fields = tables[0]->Fields();
    const auto id = fields->Item(0);
    db->Close();
    EXPECT_EQ(caught([&] { static_cast<void>(db->TableDefs()); }).number, 3420);
    EXPECT_EQ(caught([&] { db->Execute(u"drop table T"); }).number, 3420);
    EXPECT_EQ(caught([&] { db->Close(); }).number, 3704);
    EXPECT_EQ(caught([&] { static_cast<void>(tables[0]->Name()); }).number, 3420);
    EXPECT_EQ(caught([&] { tables[0]->PutName(u"X"); }).number, 3420);
    EXPECT_EQ(caught([&] { static_cast<void>(tables[0]->Fields()); }).number, 3420);
    EXPECT_EQ(caught([&] { static_cast<void>(id->Type()); }).number, 3420);
    EXPECT_EQ(caught([&] { id->PutDefaultValue(Long{0}); }).number, 3420);
    EXPECT_EQ(table_names(*open()), Names({"T"}));
}

TEST_F(DaoEngine, OneObjectServesBothSeams) {
    const ObjectPointer object = sqlite::connect(path_, {.create = true});
    const auto connection = std::dynamic_pointer_cast<ado::Connection>(object);
    const auto db = std::dynamic_pointer_cast<dao::Database>(object);
    ASSERT_NE(connection, nullptr);
    ASSERT_NE(db, nullptr);
    db->Execute(u"create table T (id long, cena currency default 1.25)");
    connection->BeginTrans();
    db->Execute(u"insert into T (id) values (1)");
    field(*db, u"T", u"id")->PutDefaultValue(Long{7});
    EXPECT_EQ(caught([&] { db->Execute(u"insert into T (id) values ('x')"); }).number, 3421);
    db->Execute(u"insert into T (cena) values (3)");
    const auto rows = connection->CreateRecordset();
    rows->Open(u"select id, cena from T order by id", connection, ado::CursorType::adOpenStatic,
               ado::LockType::adLockOptimistic, -1);
    EXPECT_EQ(rows->Fields(u"cena").Value(), Variant(Currency::raw(12500)));
    rows->MoveNext();
    EXPECT_EQ(rows->Fields(u"id").Value(), Variant(Long{7}));
    rows->Close();
    connection->RollbackTrans();
    EXPECT_EQ(text(field(*db, u"T", u"id")->DefaultValue()), "");
    db->Execute(u"insert into T (cena) values (3)");
    EXPECT_EQ(value("select count(*)||' '||coalesce(id,'null') from T"), "1 null");
    connection->Close();
    EXPECT_EQ(caught([&] { db->Execute(u"drop table T"); }).number, 3420);
}

// ---- Tables ------------------------------------------------------------------------------------

using DaoTables = DaoTest;

TEST_F(DaoTables, AreListedInTheOrderOfTheirNamesWithoutCase) {
    write(
        "create table b (id); create table A (id); create table \"Błędy wklejania\" (id);"
        "create table MSysObjects (id); create table c (id INTEGER PRIMARY KEY AUTOINCREMENT);"
        "create table _x (id); create table msysx (id); create view v as select 1;"
        "insert into c values (1)");
    EXPECT_EQ(table_names(*open()),
              Names({"_x", "A", "b", "Błędy wklejania", "c", "MSysObjects", "msysx"}));
}

TEST_F(DaoTables, AreASnapshotOfTheFirstLook) {
    const auto db = create();
    db->Execute(u"create table B (id long)");
    db->Execute(u"create table D (id long)");
    const auto tables = db->TableDefs();
    db->Execute(u"create table C (id long)");
    db->Execute(u"drop table d");
    ASSERT_EQ(db->TableDefs().size(), 2U);
    EXPECT_EQ(db->TableDefs()[0], tables[0]);
    EXPECT_EQ(tables[0]->Name(), u"B");
    EXPECT_EQ(caught([&] { static_cast<void>(tables[1]->Name()); }).number, 3265);
    EXPECT_EQ(caught([&] { tables[1]->PutName(u"E"); }).number, 3265);
    // A table of the same name is another one.
    db->Execute(u"create table D (inny long)");
    EXPECT_EQ(caught([&] { static_cast<void>(tables[1]->Fields()); }).number, 3265);
    EXPECT_EQ(table_names(*open()), Names({"B", "C", "D"}));
}

TEST_F(DaoTables, AreRenamedToCapitalsBesideABrokenView) {
    const auto db = create();
    db->Execute(u"create table łan (a long)");
    db->Execute(u"create table lan (a long)");
    write("create view w as select * from niema; create view t as select a from łan");
    table(*db, u"łan")->PutName(u"ŁAN");
    table(*db, u"lan")->PutName(u"LAN");
    EXPECT_EQ(table_names(*open()), Names({"LAN", "ŁAN"}));
    // A wholly new name would leave what means the old one behind.
    EXPECT_EQ(caught([&] { table(*open(), u"ŁAN")->PutName(u"pole"); }).number, 3280);
}

TEST_F(DaoTables, AreRenamedAtOnceWithAllThatBelongsToThem) {
    const auto db = create();
    db->Execute(
        u"create table towary (id counter primary key, nazwa text(20) not null,"
        u" cena currency default 0, data_operacji datetime default now())");
    db->Execute(u"create unique index po_nazwie on towary (nazwa)");
    db->Execute(u"insert into towary (nazwa) values ('śruba')");
    const auto towary = table(*db, u"towary");
    const auto nazwa = towary->Fields()->Item(1);
    nazwa->PutAllowZeroLength(false);
    write("create view tanie as select nazwa from towary where cena<10");

    for (const StringView name :
         {u"TOWARY", u"Towary", u"ŻÓŁTE TOWARY", u"żółte towary", u"[x] nie", u"TOWARY"}) {
        const auto failure = caught([&] { towary->PutName(name); });
        if (name == u"[x] nie") {
            EXPECT_EQ(failure.number, 3125);
            continue;
        }
        EXPECT_EQ(failure.number, 0) << failure.text;
        EXPECT_EQ(towary->Name(), name);
        EXPECT_EQ(table_names(*open()), Names({to_utf8(name)}));
        EXPECT_EQ(value("select nazwa from tanie"), "śruba");
        EXPECT_FALSE(nazwa->AllowZeroLength());
        EXPECT_EQ(nazwa->Size(), 20);
    }
    EXPECT_EQ(text(field(*db, u"TOWARY", u"cena")->DefaultValue()), "0");
    EXPECT_EQ(text(field(*db, u"TOWARY", u"data_operacji")->DefaultValue()), "now()");
    EXPECT_EQ(caught([&] { db->Execute(u"insert into TOWARY (nazwa) values ('śruba')"); }).number,
              3022);
    EXPECT_EQ(caught([&] { db->Execute(u"insert into TOWARY (nazwa) values ('')"); }).number, 3315);
    db->Execute(u"insert into TOWARY (nazwa) values ('nit')");
    EXPECT_EQ(value("select max(id) from TOWARY"), "2");
    db->Execute(u"drop index po_nazwie on TOWARY");
    EXPECT_EQ(value("pragma integrity_check"), "ok");
}

TEST_F(DaoTables, RefuseNamesThatAreTakenOrCannotBe) {
    const auto db = create();
    db->Execute(u"create table A (id long)");
    db->Execute(u"create table Żaba (id long)");
    const auto a = table(*db, u"A");
    EXPECT_EQ(caught([&] { a->PutName(u"żABA"); }).number, 3010);
    EXPECT_EQ(caught([&] { a->PutName(u""); }).number, 3125);
    EXPECT_EQ(caught([&] { a->PutName(u"a.b"); }).number, 3125);
    EXPECT_EQ(caught([&] { a->PutName(String(65, u'x')); }).number, 3125);
    EXPECT_EQ(caught([&] { a->PutName(u"kvarta16_database"); }).number, 3125);
    EXPECT_EQ(caught([&] { a->PutName(u"SQLITE_x"); }).number, 3125);
    EXPECT_EQ(a->Name(), u"A");
    a->PutName(String(64, u'x'));
    EXPECT_EQ(table_names(*open()), Names({std::string(64, 'x'), "Żaba"}));
}

// ---- Two programs ------------------------------------------------------------------------------

using DaoPrograms = DaoTest;

// Runs `body` in another process; answers its exit status.
template <class Body>
int in_another_process(Body body) {
    const pid_t child = fork();
    if (child == 0) {
        try {
            _exit(body());
        } catch (...) {
            _exit(99);
        }
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(DaoPrograms, EachSeesWhatTheOtherHasChanged) {
    create()->Execute(u"create table t (id long, nazwa text(10))");
    const auto db = open();
    const auto t = table(*db, u"t");
    const auto nazwa = t->Fields()->Item(1);
    EXPECT_EQ(in_another_process([&] {
                  const auto other = open();
                  field(*other, u"t", u"nazwa")->PutDefaultValue(u"\"brak\"");
                  other->Execute(u"alter table t add cena currency");
                  other->Execute(u"insert into t (id) values (1)");
                  return 0;
              }),
              0);
    EXPECT_EQ(text(nazwa->DefaultValue()), "\"brak\"");
    EXPECT_EQ(t->Fields()->Count(), 2);
    db->Execute(u"update t set cena=2 where nazwa='brak'");
    EXPECT_EQ(value("select id||nazwa||cena from t"), "1brak2");
    EXPECT_EQ(in_another_process([&] {
                  open()->Execute(u"alter table t drop column nazwa");
                  return 0;
              }),
              0);
    EXPECT_EQ(caught([&] { static_cast<void>(nazwa->DefaultValue()); }).number, 3265);
    EXPECT_EQ(caught([&] { db->Execute(u"update t set nazwa='x'"); }).number, 3061);
}

TEST_F(DaoPrograms, BothWriteAndNothingIsLost) {
    create()->Execute(u"create table t (proces long, nr long)");
    constexpr int rows = 150;
    const auto add = [&](Long process) {
        const auto db = open();
        for (Long i = 0; i < rows; ++i) {
            db->Execute(u"insert into t values (" + ToText(process) + u"," + ToText(i) + u")");
        }
        return 0;
    };
    const pid_t child = fork();
    if (child == 0) {
        _exit(add(1));
    }
    add(2);
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(value("select count(distinct proces||' '||nr) from t"), std::to_string(2 * rows));
}

TEST_F(DaoPrograms, ALockedFileIsWaitedForAndThenRefused) {
    create()->Execute(u"create table t (id long)");
    OtherProgram other(path_);
    const auto db = open();
    other.run("begin exclusive");
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(caught([&] { db->Execute(u"insert into t values (1)"); }).number, 3260);
    const auto waited = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(waited, std::chrono::seconds(4));
    other.run("commit");
    db->Execute(u"insert into t values (1)");
    EXPECT_EQ(value("select count(*) from t"), "1");
}

}  // namespace
}  // namespace kvarta16
