// Columns: types and sizes, defaults, the empty text; that what is stored about them holds for
// every program and goes with the table, and what becomes of the rows that are there.

#include <filesystem>
#include <string>
#include <tuple>

#include <gtest/gtest.h>
#include <platform/dao_fixture.h>

namespace kvarta16 {
namespace {

using testing_support::Caught;
using testing_support::caught;
using testing_support::DaoTest;
using testing_support::file_bytes;
using testing_support::OtherProgram;
using testing_support::write_file;

using DaoFields = DaoTest;

struct TypeCase {
    std::string type;  // as a statement or another program declares it
    Integer code;
    Long size;
};

// As the dialect makes them.
const TypeCase made_types[] = {
    {"BIT", 1, 1},         {"yesno", 1, 1},
    {"LOGICAL", 1, 1},     {"BYTE", 2, 1},
    {"SHORT", 3, 2},       {"SMALLINT", 3, 2},
    {"LONG", 4, 4},        {"INTEGER", 4, 4},
    {"INT", 4, 4},         {"CURRENCY", 5, 8},
    {"money", 5, 8},       {"SINGLE", 6, 4},
    {"REAL", 6, 4},        {"DOUBLE", 7, 8},
    {"FLOAT", 7, 8},       {"NUMBER", 7, 8},
    {"DATETIME", 8, 8},    {"DATE", 8, 8},
    {"TIME", 8, 8},        {"BINARY(20)", 9, 20},
    {"VARBINARY", 9, 255}, {"TEXT(50)", 10, 50},
    {"CHAR(1)", 10, 1},    {"VARCHAR(255)", 10, 255},
    {"TEXT", 10, 255},     {"LONGBINARY", 11, 0},
    {"OLEOBJECT", 11, 0},  {"IMAGE", 11, 0},
    {"MEMO", 12, 0},       {"LONGTEXT", 12, 0},
    {"GUID", 15, 16},      {"TEXT(50) WITH COMPRESSION", 10, 50},
};

// As other programs declare them.
const TypeCase foreign_types[] = {
    {"INTEGER", 4, 4},
    {"INT", 4, 4},
    {"BIGINT", 16, 8},
    {"SMALLINT", 3, 2},
    {"TINYINT", 2, 1},
    {"BOOLEAN", 1, 1},
    {"REAL", 7, 8},
    {"DOUBLE PRECISION", 7, 8},
    {"FLOAT(10)", 7, 8},
    {"NUMERIC(10,2)", 7, 8},
    {"DECIMAL(10,2)", 20, 16},
    {"CURRENCY", 5, 8},
    {"datetime", 8, 8},
    {"TIMESTAMP", 8, 8},
    {"VARCHAR(50)", 10, 50},
    {"varchar ( 50 )", 10, 50},
    {"NVARCHAR(20)", 10, 20},
    {"CHARACTER VARYING(30)", 10, 30},
    {"VARCHAR(4000)", 12, 0},
    {"VARCHAR", 10, 255},
    {"TEXT", 12, 0},
    {"text(20)", 10, 20},
    {"TEXT(255)", 10, 255},
    {"TEXT(256)", 12, 0},
    {"TEXT(0)", 12, 0},
    {"CLOB", 12, 0},
    {"MEMO", 12, 0},
    {"BLOB", 11, 0},
    {"", 11, 0},
    {"UNSIGNED BIG INT", 4, 4},
    {"NATIVE CHARACTER(70)", 12, 0},
    {"COKOLWIEK", 7, 8},
};

TEST_F(DaoFields, TypesThatTheDialectMakes) {
    const auto db = create();
    for (const TypeCase& type : made_types) {
        db->Execute(from_utf8("create table t (x " + type.type + ")"));
        const auto again = open();
        const auto fields = table(*again, u"t")->Fields();
        EXPECT_EQ(fields->Item(0)->Type(), type.code) << type.type;
        EXPECT_EQ(fields->Item(0)->Size(), type.size) << type.type;
        EXPECT_TRUE(fields->Item(0)->AllowZeroLength() == (type.code == 10 || type.code == 12));
        EXPECT_EQ(text(fields->Item(0)->DefaultValue()), "");
        db->Execute(u"drop table t");
    }
}

TEST_F(DaoFields, TypesThatOtherProgramsDeclare) {
    std::string columns;
    for (std::size_t i = 0; i < std::size(foreign_types); ++i) {
        columns += (i > 0 ? ", c" : "c") + std::to_string(i) + " " + foreign_types[i].type;
    }
    write("create table t (" + columns + ")");
    const auto db = open();
    const auto fields = table(*db, u"t")->Fields();
    ASSERT_EQ(fields->Count(), static_cast<Integer>(std::size(foreign_types)));
    for (Long i = 0; i < fields->Count(); ++i) {
        const TypeCase& type = foreign_types[i];
        EXPECT_EQ(fields->Item(i)->Type(), type.code) << type.type;
        EXPECT_EQ(fields->Item(i)->Size(), type.size) << type.type;
    }
}

TEST_F(DaoFields, AreASnapshotOfTheFirstLook) {
    const auto db = create();
    db->Execute(u"create table t (a text(10), b text(20), c long)");
    const auto fields = table(*db, u"t")->Fields();
    db->Execute(u"alter table t drop column a");
    db->Execute(u"alter table t add a text(255)");
    db->Execute(u"alter table t add d long");
    EXPECT_EQ(table(*db, u"t")->Fields(), fields);
    ASSERT_EQ(fields->Count(), 3);
    // Dropped, although there is a column of that name again.
    EXPECT_EQ(caught([&] { static_cast<void>(fields->Item(0)->DefaultValue()); }).number, 3265);
    EXPECT_EQ(caught([&] { static_cast<void>(fields->Item(0)->AllowZeroLength()); }).number, 3265);
    EXPECT_EQ(caught([&] { fields->Item(0)->PutAllowZeroLength(true); }).number, 3265);
    EXPECT_EQ(fields->Item(1)->Name(), u"b");
    EXPECT_EQ(fields->Item(1)->Size(), 20);
    EXPECT_EQ(fields->Item(2)->Type(), dao::dbLong);
    EXPECT_EQ(caught([&] { static_cast<void>(fields->Item(3)); }).number, 3265);
    EXPECT_EQ(caught([&] { static_cast<void>(fields->Item(-1)); }).number, 3265);
    const auto again = open();
    EXPECT_EQ(field_names(*table(*again, u"t")->Fields()), Names({"b", "c", "a", "d"}));
}

// ---- Defaults ----------------------------------------------------------------------------------

using DaoDefaults = DaoTest;

struct DefaultCase {
    StringView column;  // with its type
    Variant given;
    std::string read;    // back from DefaultValue
    std::string stored;  // in a row of another program that leaves the column out
};

const DefaultCase defaults[] = {
    {u"x long", Long{0}, "0", "0"},
    {u"x long", u"0", "0", "0"},
    {u"x long", u"12*2", "12*2", "24"},
    {u"x long", u"-7", "-7", "-7"},
    {u"x long", u" 5 ", " 5 ", "5"},
    {u"x byte", Integer{255}, "255", "255"},
    {u"x double", 0.5, "0.5", "0.5"},
    {u"x double", u"2", "2", "2.0"},
    {u"x single", u"1.5", "1.5", "1.5"},
    {u"x currency", Currency::raw(12345), "1.2345", "1.2345"},
    {u"x currency", u"'12,5'", "'12,5'", "12.5"},
    {u"x currency", u"922337203685477.5807", "922337203685477.5807", "922337203685477.5807"},
    {u"x datetime", u"NOW()", "NOW()", ""},
    {u"x datetime", u"Now()", "Now()", ""},
    {u"x datetime", u"=NOW()", "=NOW()", ""},
    {u"x datetime", u"DATE()", "DATE()", ""},
    {u"x datetime", u"#01-01-1990#", "#01-01-1990#", "1990-01-01 00:00:00"},
    {u"x datetime", u"\"2024-05-17\"", "\"2024-05-17\"", "2024-05-17 00:00:00"},
    {u"x bit", u"True", "True", "-1"},
    {u"x bit", u"0", "0", "0"},
    {u"x text(10)", u"\"\"", "\"\"", ""},
    {u"x text(10)", u"''", "''", ""},
    {u"x text(10)", u"\"it's \"\"x\"\"\"", "\"it's \"\"x\"\"\"", "it's \"x\""},
    {u"x text(10)", u"\"a\" & 'b*/c'", "\"ab*/c\"", "ab*/c"},
    {u"x text(10)", u"\"/*\"", "\"/*\"", "/*"},
    {u"x text(10)", u"12", "12", "12"},
    {u"x memo", u"\"zażółć\"", "\"zażółć\"", "zażółć"},
    {u"x memo", u"\"(a)\"", "\"(a)\"", "(a)"},
    {u"x long", u"Null", "Null", "NULL"},
    {u"x long", u"", "", "NULL"},
    {u"x long", Variant(), "", "NULL"},
    {u"x long", Variant::null(), "", "NULL"},
};

TEST_F(DaoDefaults, ComeBackAsGivenAndApplyToEveryProgram) {
    const auto db = create();
    for (const DefaultCase& one : defaults) {
        db->Execute(u"create table t (id long, " + String(one.column) + u", y long default 3)");
        {
            const auto mine = open();
            field(*mine, u"t", u"x")->PutDefaultValue(one.given);
        }
        const auto again = open();
        const std::string what = to_utf8(one.column) + " " + one.read;
        EXPECT_EQ(text(field(*again, u"t", u"x")->DefaultValue()), one.read) << what;
        EXPECT_EQ(text(field(*again, u"t", u"y")->DefaultValue()), "3") << what;
        write("insert into t (id) values (1)");
        again->Execute(u"insert into t (id) values (2)");
        if (one.read.find("()") == std::string::npos) {
            EXPECT_EQ(value("select x from t where id=1"), one.stored) << what;
            EXPECT_EQ(value("select x from t where id=2"), one.stored) << what;
        }
        db->Execute(u"drop table t");
    }
}

TEST_F(DaoDefaults, TheMoment) {
    const auto db = create();
    db->Execute(u"create table t (id long, kiedy datetime, dzien datetime, godzina datetime)");
    field(*db, u"t", u"kiedy")->PutDefaultValue(u"NOW()");
    field(*db, u"t", u"dzien")->PutDefaultValue(u"date()");
    field(*db, u"t", u"godzina")->PutDefaultValue(u"Time()");
    EXPECT_EQ(text(field(*db, u"t", u"dzien")->DefaultValue()), "date()");
    db->Execute(u"insert into t (id) values (1)");
    db->Execute(u"insert into t (id) select id+1 from t");
    db->Execute(u"insert into t (id, kiedy) values (3, null)");
    EXPECT_EQ(value("select group_concat(kiedy||dzien||godzina) from t where id<3"),
              "2024-05-17 12:00:002024-05-17 00:00:001899-12-30 12:00:00,"
              "2024-05-17 12:00:002024-05-17 00:00:001899-12-30 12:00:00");
    EXPECT_EQ(value("select kiedy is null from t where id=3"), "1");
    // Another program has the system's clock, and the ADO side of a connection too.
    write("insert into t (id) values (4)");
    EXPECT_EQ(value("select kiedy between datetime('now','localtime','-5 seconds') and"
                    " datetime('now','localtime') and dzien=date('now','localtime')||' 00:00:00'"
                    " and godzina like '1899-12-30 %:%:%' from t where id=4"),
              "1");
    const auto connection = sqlite::connect(path_);
    const auto rows = connection->CreateRecordset();
    rows->Open(u"select id, kiedy from t where id=5", connection, ado::CursorType::adOpenStatic,
               ado::LockType::adLockOptimistic, -1);
    rows->AddNew();
    rows->Fields(u"id").PutValue(Long{5});
    rows->UpdateBatch(ado::Affect::adAffectCurrent);
    EXPECT_TRUE(rows->Fields(u"kiedy").Value().is(Subtype::Date));
}

TEST_F(DaoDefaults, WhatAColumnCannotHave) {
    const auto db = create();
    db->Execute(u"create table t (n long, k currency, d datetime, b bit, s text(3), c byte)");
    const auto refused = [&](StringView column, const Variant& value) {
        const auto x = field(*db, u"t", column);
        const Long number = caught([&] { x->PutDefaultValue(value); }).number;
        EXPECT_EQ(text(x->DefaultValue()), "");
        return number;
    };
    EXPECT_EQ(refused(u"n", u"\"abc\""), 3421);
    EXPECT_EQ(refused(u"n", u"NOW()"), 3421);
    EXPECT_EQ(refused(u"k", u"\"\""), 3421);
    EXPECT_EQ(refused(u"d", u"'x'"), 3421);
    EXPECT_EQ(refused(u"b", u"'może'"), 3421);
    EXPECT_EQ(refused(u"c", u"256"), 3421);
    // The text of a table ends for the engine at such a character.
    EXPECT_EQ(refused(u"s", String(u"\"a\0b\"", 5)), 3421);
    EXPECT_EQ(refused(u"n", u"1 +"), 3075);
    EXPECT_EQ(refused(u"n", u"'abc"), 3075);
    EXPECT_EQ(refused(u"n", u"abc"), 3061);
    EXPECT_EQ(refused(u"n", u"abc()"), 3085);
    EXPECT_EQ(refused(u"n", u"1/0"), 11);
    EXPECT_EQ(refused(u"n", Variant::missing()), 13);
    // Longer than its column: refused when it is stored.
    field(*db, u"t", u"s")->PutDefaultValue(u"\"abcd\"");
    EXPECT_EQ(caught([&] { db->Execute(u"insert into t (n) values (1)"); }).number, 3163);
}

TEST_F(DaoDefaults, OfOtherPrograms) {
    write(
        "create table t (a INTEGER DEFAULT 5, b TEXT DEFAULT 'it''s', c TEXT DEFAULT '',"
        " d DATETIME DEFAULT CURRENT_TIMESTAMP, e DATE DEFAULT (date('now', 'localtime')),"
        " f INTEGER DEFAULT NULL, g INTEGER DEFAULT (1+2), h INTEGER DEFAULT -3, i BIT"
        " DEFAULT TRUE, j TEXT DEFAULT (lower('X')), k BLOB DEFAULT x'00')");
    const auto db = open();
    const auto fields = table(*db, u"t")->Fields();
    const Names expected = {"5",   "\"it's\"", "\"\"", "NOW()",      "DATE()", "",
                            "1+2", "-3",       "True", "lower('X')", "x'00'"};
    for (Long i = 0; i < fields->Count(); ++i) {
        EXPECT_EQ(text(fields->Item(i)->DefaultValue()), expected[static_cast<std::size_t>(i)]);
        fields->Item(i)->PutDefaultValue(i == 3 || i == 4 ? Variant(u"NOW()") : Variant(u"1"));
        EXPECT_EQ(text(fields->Item(i)->DefaultValue()), i == 3 || i == 4 ? "NOW()" : "1");
    }
    EXPECT_EQ(value("select count(*) from pragma_table_info('t') where dflt_value='1'"), "5");
    // The moment of this place, also where the other program has the moment of Greenwich.
    EXPECT_EQ(
        value(
            "select count(*) from pragma_table_info('t') where dflt_value like '%''localtime'')'"),
        "2");
    EXPECT_EQ(value("pragma integrity_check"), "ok");
}

// A word and a name in double quotes are texts in the table's text of another program.
TEST_F(DaoDefaults, OfWordsGiveWay) {
    write(
        "create table t (id INTEGER, a TEXT DEFAULT \"it's \"\"q\"\"\", b TEXT DEFAULT q,"
        " c TEXT DEFAULT [q r], d TEXT DEFAULT `b``t`);"
        "insert into t (id) values (1); insert into t values (2, 'it''s', 'r', '', '')");
    const auto db = open();
    field(*db, u"t", u"a")->PutDefaultValue(u"\"\"");
    field(*db, u"t", u"b")->PutDefaultValue(u"\"\"");
    field(*db, u"t", u"c")->PutDefaultValue(u"\"\"");
    field(*db, u"t", u"d")->PutDefaultValue(u"\"\"");
    db->Execute(u"insert into t (id) values (3)");
    EXPECT_EQ(value("select group_concat(id||'='||a||'/'||b||'/'||c||'/'||d, ';') from t"),
              "1=it's \"q\"/q/q r/b`t;2=it's/r//;3=///");
}

// A column that was added reads its default in rows that were stored before it.
TEST_F(DaoDefaults, LeaveTheRowsThatAreThereAlone) {
    write(
        "create table t (id INTEGER); insert into t values (1), (2);"
        "alter table t add a INTEGER; alter table t add b INTEGER DEFAULT 7;"
        "alter table t add c TEXT DEFAULT 'x' CHECK(length(c)>0);"
        "insert into t (id, a, b) values (3, 5, 7)");
    const auto db = open();
    for (const StringView name : {u"a", u"b", u"c"}) {
        field(*db, u"t", name)->PutDefaultValue(u"'9'");
    }
    db->Execute(u"insert into t (id) values (4)");
    EXPECT_EQ(value("select group_concat(id||coalesce(a,'-')||b||c) from t"),
              "1-7x,2-7x,357x,4999");
    field(*db, u"t", u"b")->PutDefaultValue(Variant());
    db->Execute(u"insert into t (id) values (5)");
    EXPECT_EQ(value("select group_concat(coalesce(b,'-')) from t"), "7,7,7,9,-");
}

TEST_F(DaoDefaults, DoNotRunTheTriggersOrRulesOfOtherPrograms) {
    write(
        "create table t (id INTEGER CHECK(id<>5), a INTEGER); create table log (x);"
        "insert into t values (1, null);"
        "create trigger r after update on t begin insert into log values (new.id); end");
    const auto db = open();
    field(*db, u"t", u"a")->PutDefaultValue(Long{0});
    EXPECT_EQ(value("select count(*) from log"), "0");
    db->Execute(u"update t set a=1");
    EXPECT_EQ(value("select count(*) from log"), "1");
    EXPECT_EQ(caught([&] { db->Execute(u"update t set id=5"); }).number, 3317);
}

TEST_F(DaoDefaults, OfACounterDoNotStopIt) {
    const auto db = create();
    db->Execute(u"create table t (id counter primary key, x long)");
    field(*db, u"t", u"id")->PutDefaultValue(Long{0});
    db->Execute(u"insert into t (x) values (1)");
    db->Execute(u"insert into t (x) values (1)");
    EXPECT_EQ(value("select group_concat(id) from t"), "1,2");
    EXPECT_EQ(text(field(*db, u"t", u"id")->DefaultValue()), "0");
}

// ---- The empty text ----------------------------------------------------------------------------

using DaoZeroLength = DaoTest;

TEST_F(DaoZeroLength, IsEnforcedOnEveryProgram) {
    const auto db = create();
    db->Execute(u"create table t (id long, [co to] text(10) default \"a\", opis memo)");
    for (const StringView name : {u"co to", u"opis"}) {
        const auto x = field(*db, u"t", name);
        EXPECT_TRUE(x->AllowZeroLength());
        x->PutAllowZeroLength(false);
        EXPECT_FALSE(x->AllowZeroLength());
        x->PutAllowZeroLength(false);
    }
    EXPECT_EQ(caught([&] { db->Execute(u"insert into t ([co to]) values ('')"); }).number, 3315);
    db->Execute(u"insert into t (opis) values ('b')");
    const Caught failure = caught([&] { db->Execute(u"update t set opis=\"\""); });
    EXPECT_EQ(failure.number, 3315);
    EXPECT_NE(failure.text.find("opis"), std::string::npos) << failure.text;
    db->Execute(u"update t set opis=null");
    EXPECT_THROW(write("update t set opis=''"), std::runtime_error);
    const auto connection = sqlite::connect(path_);
    const auto rows = connection->CreateRecordset();
    rows->Open(u"select opis from t", connection, ado::CursorType::adOpenStatic,
               ado::LockType::adLockOptimistic, -1);
    rows->Fields(Long{0}).PutValue(u"");
    EXPECT_EQ(caught([&] { rows->UpdateBatch(ado::Affect::adAffectCurrent); }).number, 3315);
    rows->Close();
    connection->Close();
    const auto x = field(*db, u"t", u"opis");
    x->PutAllowZeroLength(true);
    EXPECT_TRUE(x->AllowZeroLength());
    EXPECT_FALSE(field(*db, u"t", u"co to")->AllowZeroLength());
    write("update t set opis=''");
    EXPECT_EQ(value("select [co to]||opis from t"), "a");
}

TEST_F(DaoZeroLength, LeavesTheRowsThatAreThereAlone) {
    const auto db = create();
    db->Execute(u"create table t (id long, a text(10))");
    db->Execute(u"insert into t values (1, '')");
    field(*db, u"t", u"a")->PutAllowZeroLength(false);
    db->Execute(u"update t set id=2");
    EXPECT_EQ(value("select id||a from t"), "2");
    field(*db, u"t", u"a")->PutDefaultValue(u"\"\"");
    field(*db, u"t", u"a")->PutDefaultValue(u"\"x\"");
    db->Execute(u"alter table t add b long");
    EXPECT_EQ(value("select length(a) from t"), "0");
}

TEST_F(DaoZeroLength, IsOfTextsAlone) {
    const auto db = create();
    db->Execute(u"create table t (n long)");
    const auto n = field(*db, u"t", u"n");
    EXPECT_FALSE(n->AllowZeroLength());
    EXPECT_EQ(caught([&] { n->PutAllowZeroLength(true); }).number, 3219);
}

TEST_F(DaoZeroLength, OfOtherProgramsIsSeen) {
    write(
        "create table t (a TEXT CHECK (A <> ''), b TEXT CONSTRAINT niepusty CHECK(length([b])"
        " > 0) DEFAULT 'x', c TEXT CHECK(length(c)>1))");
    const auto db = open();
    EXPECT_FALSE(field(*db, u"t", u"a")->AllowZeroLength());
    EXPECT_FALSE(field(*db, u"t", u"b")->AllowZeroLength());
    EXPECT_TRUE(field(*db, u"t", u"c")->AllowZeroLength());
    field(*db, u"t", u"a")->PutAllowZeroLength(true);
    field(*db, u"t", u"b")->PutAllowZeroLength(true);
    write("insert into t values ('', '', 'cc')");
    EXPECT_EQ(value("select sql from sqlite_schema"),
              "CREATE TABLE t (a TEXT, b TEXT DEFAULT 'x', c TEXT CHECK(length(c)>1))");
}

// ---- All of it together ------------------------------------------------------------------------

using DaoProperties = DaoTest;

TEST_F(DaoProperties, SurviveWhatHappensToTheTable) {
    const auto db = create();
    db->Execute(
        u"create table t (id counter primary key, a text(10), b currency, c datetime,"
        u" usunięta long, [d e] memo)");
    db->Execute(u"create index i on t (a, b)");
    field(*db, u"t", u"a")->PutDefaultValue(u"\"x\" & \"y\"");
    field(*db, u"t", u"a")->PutAllowZeroLength(false);
    field(*db, u"t", u"b")->PutDefaultValue(u"12.5");
    field(*db, u"t", u"c")->PutDefaultValue(u"Now()");
    field(*db, u"t", u"d e")->PutDefaultValue(u"\"\"");
    for (int i = 0; i < 3; ++i) {
        db->Execute(u"insert into t (usunięta) values (1)");
    }
    table(*db, u"t")->PutName(u"T");
    db->Execute(u"alter table T drop column usunięta");
    db->Execute(u"alter table T add f text(5)");
    db->Close();
    write(
        "alter table T rename to \"Inna\"; alter table Inna rename column a to A1;"
        "alter table Inna add g INTEGER; vacuum; reindex; analyze");
    std::filesystem::copy_file(path_, path_ + ".kopia");
    const auto copy = engine().OpenDatabase(path() + u".kopia");
    const auto fields = table(*copy, u"Inna")->Fields();
    EXPECT_EQ(field_names(*fields), Names({"id", "A1", "b", "c", "d e", "f", "g"}));
    EXPECT_EQ(text(fields->Item(1)->DefaultValue()), "\"x\" & \"y\"");
    EXPECT_FALSE(fields->Item(1)->AllowZeroLength());
    EXPECT_EQ(fields->Item(1)->Size(), 10);
    EXPECT_EQ(text(fields->Item(2)->DefaultValue()), "12.5");
    EXPECT_EQ(text(fields->Item(3)->DefaultValue()), "Now()");
    EXPECT_EQ(text(fields->Item(4)->DefaultValue()), "\"\"");
    EXPECT_EQ(fields->Item(5)->Size(), 5);
    copy->Execute(u"insert into Inna (f) values ('nowy')");
    EXPECT_EQ(OtherProgram(path_ + ".kopia")
                  .value("select A1||b||[d e]||f||id from Inna where f"
                         " is not null"),
              "xy12.5nowy4");
    EXPECT_EQ(caught([&] { copy->Execute(u"insert into Inna (f) values ('dłuższy')"); }).number,
              3163);
    copy->Execute(u"drop index i on Inna");
    EXPECT_EQ(OtherProgram(path_ + ".kopia").value("pragma integrity_check"), "ok");
}

// A property that cannot be stored leaves everything as it was.
TEST_F(DaoProperties, AreStoredWholeOrNotAtAll) {
    write(
        "create table t (a INTEGER, b TEXT); insert into t values (null, 'x');"
        "create index i on t(a)");
    const auto db = open();
    const auto a = field(*db, u"t", u"a");
    const auto b = field(*db, u"t", u"b");
    const std::string before = file_bytes(path_);
    {
        OtherProgram other(path_);
        other.run("begin immediate");
        const auto connection = std::dynamic_pointer_cast<dao::Database>(
            sqlite::connect(path_, {.busy_timeout_ms = 0}));
        const auto x = field(*connection, u"t", u"a");
        EXPECT_EQ(caught([&] { x->PutDefaultValue(Long{0}); }).number, 3260);
        other.run("rollback");
    }
    EXPECT_EQ(file_bytes(path_), before);
    a->PutDefaultValue(Long{0});
    b->PutAllowZeroLength(false);
    EXPECT_EQ(value("select coalesce(a,'-')||b from t"), "-x");
    EXPECT_EQ(value("pragma integrity_check"), "ok");
}

// The cleaning of a table, as it is done column by column, on many rows.
TEST_F(DaoProperties, ManyRowsInOnePass) {
    write(
        "create table towary (id INTEGER PRIMARY KEY, nazwa VARCHAR(50), cena CURRENCY,"
        " opis MEMO, data_operacji DATETIME);"
        "with recursive n(i) as (select 1 union all select i+1 from n where i<100000)"
        " insert into towary select i, iif(i%2,null,'n'||i), iif(i%3,null,i), null, null from n");
    const auto db = open();
    const auto towary = table(*db, u"towary");
    towary->PutName(u"TOWARY");
    const auto fields = towary->Fields();
    fields->Item(1)->PutAllowZeroLength(true);
    fields->Item(1)->PutDefaultValue(u"\"\"");
    db->Execute(u"UPDATE [TOWARY] SET [nazwa]='' where [nazwa] is null");
    fields->Item(2)->PutDefaultValue(Long{0});
    db->Execute(u"UPDATE [TOWARY] SET [cena]=0  where [cena] is null");
    fields->Item(3)->PutDefaultValue(u"\"\"");
    db->Execute(u"UPDATE [TOWARY] SET [opis]='' where [opis] is null");
    fields->Item(4)->PutDefaultValue(u"NOW()");
    db->Execute(u"UPDATE [TOWARY] SET [data_operacji]=#01-01-1990#  where [data_operacji] is null");
    db->Close();
    EXPECT_EQ(value("select count(*) from TOWARY where nazwa is null or cena is null or opis is"
                    " null or data_operacji<>'1990-01-01 00:00:00'"),
              "0");
    EXPECT_EQ(value("select count(*)||' '||sum(cena) from TOWARY where nazwa=''"),
              "50000 833366667");
}

}  // namespace
}  // namespace kvarta16
