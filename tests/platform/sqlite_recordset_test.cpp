// Recordsets on real files: opening, walking, adding and changing rows, and rows that other
// programs have written or changed meanwhile.

#include <cstdint>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <support/memory_ado.h>
#include <support/sqlite_files.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/platform/sqlite/sqlite_connection.h>
#include <kvarta16/platform/sqlite/sqlite_values.h>

namespace kvarta16 {
namespace {

using testing_support::caught;
using testing_support::EngineProbe;
using testing_support::OtherProgram;
using testing_support::TemporaryFolder;
using ConnectionPointer = std::shared_ptr<sqlite::SqliteConnection>;
using RecordsetPointer = std::shared_ptr<ado::Recordset>;
using TextRows = std::vector<std::vector<std::string>>;

RecordsetPointer opened(const std::shared_ptr<ado::Connection>& db, StringView source,
                        ado::LockType lock = ado::LockType::adLockOptimistic) {
    RecordsetPointer recordset = db->CreateRecordset();
    recordset->Open(source, db, ado::CursorType::adOpenStatic, lock, ado::adCmdUnspecified);
    return recordset;
}

void update(const RecordsetPointer& recordset) {
    recordset->UpdateBatch(ado::Affect::adAffectCurrent);
}

// One column of all rows.
std::vector<Variant> column(const std::shared_ptr<ado::Connection>& db, StringView source) {
    std::vector<Variant> values;
    const RecordsetPointer recordset = opened(db, source);
    for (; !recordset->IsEOF(); recordset->MoveNext()) {
        values.push_back(recordset->Fields(Integer{0}).Value());
    }
    recordset->Close();
    return values;
}

std::vector<Long> numbers(const std::shared_ptr<ado::Connection>& db, StringView source) {
    std::vector<Long> values;
    for (const Variant& value : column(db, source)) {
        values.push_back(ToLong(value));
    }
    return values;
}

class SqliteRecordset : public testing::Test {
  protected:
    void SetUp() override {
        other.run(
            "create table T (id INTEGER, nazwa TEXT, kwota CURRENCY, dnia DATETIME,"
            " czynny BOOLEAN, \"Średnia\" REAL default 2.5);"
            "insert into T(id, nazwa) values (1,'jeden'),(2,'dwa'),(3,'trzy')");
    }

    EngineProbe probe;
    TemporaryFolder folder;
    OtherProgram other{folder / "firma.db"};
    ConnectionPointer db = sqlite::connect(folder / "firma.db");
};

// ---- Opening -----------------------------------------------------------------------------------

TEST_F(SqliteRecordset, OpensOnTheFirstRowAndWalks) {
    const RecordsetPointer recordset = opened(db, u"select id, nazwa from T order by id desc");
    std::string names;
    for (; !recordset->IsEOF(); recordset->MoveNext()) {
        names += to_utf8(*recordset->Fields(u"nazwa").Value().get_if<String>()) + " ";
    }
    EXPECT_EQ(names, "trzy dwa jeden ");
    EXPECT_EQ(caught([&] { recordset->MoveNext(); }).number, ado::error_no_current_record);
    recordset->Close();
    EXPECT_EQ(numbers(db, u"select top 2 id from T order by id"), std::vector<Long>({1, 2}));
    EXPECT_EQ(numbers(db, u"select top 0 id from T"), std::vector<Long>());
    EXPECT_EQ(numbers(db, u"select id from T where id > 7"), std::vector<Long>());
}

TEST_F(SqliteRecordset, RefusesToOpen) {
    const RecordsetPointer recordset = db->CreateRecordset();
    const auto open = [&](const std::shared_ptr<ado::Connection>& connection, StringView source,
                          Long options) {
        return caught([&] {
            recordset->Open(source, connection, ado::CursorType::adOpenStatic,
                            ado::LockType::adLockOptimistic, options);
        });
    };
    EXPECT_EQ(open(nullptr, u"select * from T", -1).number, ado::error_invalid_connection);
    const auto foreign = std::make_shared<testing_support::MemoryConnection>();
    EXPECT_EQ(open(foreign, u"select * from T", -1).number, ado::error_invalid_connection);
    const auto closed = sqlite::connect(folder / "firma.db");
    closed->Close();
    EXPECT_EQ(open(closed, u"select * from T", -1).number, ado::error_invalid_connection);
    EXPECT_EQ(open(db, u"T", 2).number, 3001);
    EXPECT_EQ(open(db, u"select * form T", -1).number, 3075);
    EXPECT_EQ(open(db, u"select * from Nie_ma", -1).number, 3078);
    EXPECT_EQ(open(db, u"select nie_ma from T", -1).number, 3061);
    // A failed Open leaves it closed, and it can be opened.
    EXPECT_EQ(caught([&] { static_cast<void>(recordset->IsEOF()); }).number,
              ado::error_object_closed);
    EXPECT_EQ(open(db, u"select * from T", 1).number, 0);
    EXPECT_EQ(open(db, u"select * from T", -1).number, ado::error_object_open);
    recordset->Close();
    EXPECT_EQ(open(db, u"select * from T", -1).number, 0);
}

TEST_F(SqliteRecordset, ClosedOnesRefuseEverything) {
    const RecordsetPointer recordset = opened(db, u"select * from T");
    ado::Field& field = recordset->Fields(u"id");
    const auto expect_closed = [&] {
        const Long number = ado::error_object_closed;
        EXPECT_EQ(caught([&] { static_cast<void>(recordset->IsEOF()); }).number, number);
        EXPECT_EQ(caught([&] { recordset->AddNew(); }).number, number);
        EXPECT_EQ(caught([&] { static_cast<void>(recordset->Fields(u"id")); }).number, number);
        EXPECT_EQ(caught([&] { update(recordset); }).number, number);
        EXPECT_EQ(caught([&] { recordset->MoveNext(); }).number, number);
        EXPECT_EQ(caught([&] { recordset->Close(); }).number, number);
        EXPECT_EQ(caught([&] { static_cast<void>(field.Name()); }).number, number);
        EXPECT_EQ(caught([&] { static_cast<void>(field.Value()); }).number, number);
        EXPECT_EQ(caught([&] { field.PutValue(Long{1}); }).number, number);
    };
    recordset->Close();
    expect_closed();
    recordset->Open(u"select * from T", db, ado::CursorType::adOpenStatic,
                    ado::LockType::adLockOptimistic, -1);
    db->Close();
    expect_closed();
}

TEST_F(SqliteRecordset, KeepsItsConnectionWhileItIsOpen) {
    const RecordsetPointer recordset = opened(db, u"select * from T");
    db.reset();
    recordset->Fields(u"nazwa").PutValue(u"inna");
    update(recordset);
    EXPECT_EQ(other.value("select nazwa from T where id=1"), "inna");
    recordset->Close();
    EXPECT_EQ(folder.names(), std::vector<std::string>({"firma.db"}))
        << "the connection has ended with it";
}

// ---- Fields ------------------------------------------------------------------------------------

TEST_F(SqliteRecordset, FieldsByOrdinalAndByNameInAnyCase) {
    const RecordsetPointer recordset = opened(db, u"select [ID], nazwa, [średnia] from T");
    EXPECT_EQ(recordset->Fields(Integer{0}).Name(), u"ID");
    EXPECT_EQ(recordset->Fields(Long{1}).Name(), u"nazwa");
    EXPECT_EQ(recordset->Fields(2.0).Name(), u"średnia");
    EXPECT_EQ(&recordset->Fields(u"NAZWA"), &recordset->Fields(Integer{1}));
    EXPECT_EQ(&recordset->Fields(u"ŚREDNIA"), &recordset->Fields(Integer{2}));
    for (const Variant& item : {Variant(Integer{-1}), Variant(Integer{3}), Variant(u"kwota"),
                                Variant(u""), Variant(u"0")}) {
        EXPECT_EQ(caught([&] { static_cast<void>(recordset->Fields(item)); }).number,
                  ado::error_item_not_found);
    }
    EXPECT_NE(caught([&] { static_cast<void>(recordset->Fields(u"żółw")); }).text.find("żółw"),
              std::string::npos);
}

TEST_F(SqliteRecordset, FieldsLiveAsLongAsTheRecordset) {
    const RecordsetPointer recordset = opened(db, u"select * from T where id=1");
    ado::Field& first = recordset->Fields(Integer{0});
    ado::Field& last = recordset->Fields(Integer{5});
    recordset->Close();
    recordset->Open(u"select nazwa from T where id=2", db, ado::CursorType::adOpenStatic,
                    ado::LockType::adLockOptimistic, -1);
    EXPECT_EQ(first.Value(), Variant(u"dwa"));
    EXPECT_EQ(caught([&] { static_cast<void>(last.Value()); }).number, ado::error_item_not_found);
    EXPECT_EQ(caught([&] { last.PutValue(Long{1}); }).number, ado::error_item_not_found);
}

TEST_F(SqliteRecordset, WithoutARowThereIsNoValue) {
    const RecordsetPointer recordset = opened(db, u"select * from T where id=99");
    EXPECT_TRUE(recordset->IsEOF());
    ado::Field& field = recordset->Fields(Integer{0});
    EXPECT_EQ(caught([&] { static_cast<void>(field.Value()); }).number, 3021);
    EXPECT_EQ(caught([&] { field.PutValue(Long{1}); }).number, 3021);
    EXPECT_EQ(caught([&] { update(recordset); }).number, 3021);
    EXPECT_EQ(caught([&] { recordset->MoveNext(); }).number, 3021);
}

// ---- Adding rows -------------------------------------------------------------------------------

TEST_F(SqliteRecordset, AddsWhatHasBeenPut) {
    const RecordsetPointer recordset = opened(db, u"select * from T where id=99");
    recordset->AddNew();
    EXPECT_FALSE(recordset->IsEOF());
    recordset->Fields(u"id").PutValue(Integer{99});
    recordset->Fields(u"NAZWA").PutValue(u"zażółć gęślą jaźń");
    recordset->Fields(u"kwota").PutValue(Currency::raw(1'234'500));
    recordset->Fields(u"dnia").PutValue(Date{36892});
    recordset->Fields(u"czynny").PutValue(true);
    EXPECT_EQ(recordset->Fields(u"kwota").Value(), Variant(Currency::raw(1'234'500)));
    EXPECT_EQ(recordset->Fields(u"średnia").Value(), Variant::null());
    EXPECT_EQ(other.value("select count(*) from T where id=99"), "0");
    update(recordset);
    EXPECT_EQ(other.rows("select * from T where id=99"),
              TextRows({{"99", "zażółć gęślą jaźń", "123.45", "2001-01-01 00:00:00", "-1", "2.5"}}))
        << "the column that was not put has its default";
    EXPECT_EQ(recordset->Fields(u"średnia").Value(), Variant(2.5)) << "and the row shows it";

    // The row is the current one now, and can be changed.
    recordset->Fields(u"nazwa").PutValue(Variant::null());
    update(recordset);
    EXPECT_EQ(other.rows("select nazwa, kwota from T where id=99"), TextRows({{"NULL", "123.45"}}));
    EXPECT_FALSE(recordset->IsEOF());
    recordset->MoveNext();
    EXPECT_TRUE(recordset->IsEOF());
}

TEST_F(SqliteRecordset, ARowThatIsNotStoredIsDropped) {
    RecordsetPointer recordset = opened(db, u"select * from T");
    recordset->AddNew();
    recordset->Fields(u"id").PutValue(Long{99});
    recordset->Close();
    recordset = opened(db, u"select * from T");
    recordset->AddNew();
    recordset->Fields(u"id").PutValue(Long{99});
    recordset.reset();
    recordset = opened(db, u"select * from T");
    recordset->Fields(u"id").PutValue(Long{99});
    recordset.reset();
    EXPECT_EQ(numbers(db, u"select id from T order by id"), std::vector<Long>({1, 2, 3}));
    EXPECT_FALSE(probe.any_statement_runs());
}

TEST_F(SqliteRecordset, MovingOnStoresWhatHasBeenPut) {
    const RecordsetPointer recordset = opened(db, u"select id, nazwa from T order by id");
    recordset->Fields(u"nazwa").PutValue(u"pierwsza");
    recordset->MoveNext();
    recordset->Fields(u"nazwa").PutValue(u"druga");
    recordset->AddNew();
    recordset->Fields(u"id").PutValue(Long{8});
    recordset->AddNew();
    recordset->Fields(u"id").PutValue(Long{9});
    update(recordset);
    EXPECT_EQ(
        other.rows("select id, nazwa from T order by id"),
        TextRows({{"1", "pierwsza"}, {"2", "druga"}, {"3", "trzy"}, {"8", "NULL"}, {"9", "NULL"}}));
}

TEST_F(SqliteRecordset, ARowOfDefaultsAlone) {
    const RecordsetPointer recordset = opened(db, u"select * from T where id=0");
    recordset->AddNew();
    update(recordset);
    EXPECT_EQ(other.rows("select id, nazwa, \"Średnia\" from T where id is null"),
              TextRows({{"NULL", "NULL", "2.5"}}));
}

TEST_F(SqliteRecordset, NothingPutStoresNothing) {
    const RecordsetPointer recordset = opened(db, u"select * from T");
    other.run("update T set nazwa='z boku'");
    update(recordset);
    EXPECT_EQ(other.value("select count(*) from T where nazwa='z boku'"), "3");
}

// ---- Changing rows -----------------------------------------------------------------------------

TEST_F(SqliteRecordset, ChangesTheCurrentRowInTheColumnsThatWerePut) {
    const RecordsetPointer recordset = opened(db, u"select * from T where id>=2 order by id");
    other.run("update T set nazwa='z boku'");
    recordset->Fields(u"kwota").PutValue(Currency::raw(5));
    update(recordset);
    EXPECT_EQ(
        other.rows("select id, nazwa, kwota from T order by id"),
        TextRows({{"1", "z boku", "NULL"}, {"2", "z boku", "0.0005"}, {"3", "z boku", "NULL"}}));
    EXPECT_EQ(recordset->Fields(u"nazwa").Value(), Variant(u"z boku"))
        << "the row shows what the file holds";
    recordset->MoveNext();
    EXPECT_EQ(recordset->Fields(u"nazwa").Value(), Variant(u"trzy"))
        << "the other rows are a snapshot";
}

TEST_F(SqliteRecordset, ARowThatIsGone) {
    const RecordsetPointer recordset = opened(db, u"select * from T where id=2");
    other.run("delete from T where id=2");
    recordset->Fields(u"nazwa").PutValue(u"nowa");
    const auto failure = caught([&] { update(recordset); });
    EXPECT_EQ(failure.number, 3167);
    EXPECT_NE(failure.text.find(": T"), std::string::npos);
    EXPECT_EQ(other.value("select count(*) from T"), "2");
}

TEST_F(SqliteRecordset, AFailedUpdateCanBeTriedAgain) {
    db->execute("create unique index I on T(id)");
    const RecordsetPointer recordset = opened(db, u"select * from T where id=99");
    recordset->AddNew();
    recordset->Fields(u"id").PutValue(Long{1});
    recordset->Fields(u"nazwa").PutValue(u"nowa");
    const auto failure = caught([&] { update(recordset); });
    EXPECT_EQ(failure.number, 3022);
    EXPECT_NE(failure.text.find("T.id"), std::string::npos) << failure.text;
    EXPECT_NE(failure.text.find("firma.db"), std::string::npos) << failure.text;
    EXPECT_EQ(other.value("select count(*) from T"), "3");
    recordset->Fields(u"id").PutValue(Long{4});
    update(recordset);
    EXPECT_EQ(other.rows("select id, nazwa from T where id=4"), TextRows({{"4", "nowa"}}));
}

TEST_F(SqliteRecordset, AColumnThatStandsTwice) {
    const RecordsetPointer recordset = opened(db, u"select nazwa, NAZWA, id from T where id=1");
    recordset->Fields(Integer{0}).PutValue(u"a");
    recordset->Fields(Integer{1}).PutValue(u"b");
    update(recordset);
    EXPECT_EQ(other.value("select nazwa from T where id=1"), "b");
    recordset->AddNew();
    recordset->Fields(Integer{1}).PutValue(u"c");
    recordset->Fields(Integer{0}).PutValue(u"d");
    update(recordset);
    EXPECT_EQ(other.value("select nazwa from T where id is null"), "d");
}

TEST_F(SqliteRecordset, TableWithoutRowNumbersIsChangedByItsKey) {
    db->execute(
        "create table K (a TEXT, b INTEGER, c REAL, primary key (b, a)) without rowid;"
        "insert into K values ('x',1,1.5),('x',2,2.5),('y',1,3.5)");
    RecordsetPointer recordset = opened(db, u"select c from K where a='x' and b=2");
    recordset->Fields(u"c").PutValue(9.5);
    update(recordset);
    EXPECT_EQ(other.rows("select * from K order by b, a"),
              TextRows({{"x", "1", "1.5"}, {"y", "1", "3.5"}, {"x", "2", "9.5"}}));
    // The key itself, and then the row under its new key.
    recordset = opened(db, u"select * from K where a='y'");
    recordset->Fields(u"b").PutValue(Long{7});
    update(recordset);
    recordset->Fields(u"c").PutValue(0.5);
    update(recordset);
    EXPECT_EQ(other.rows("select * from K where a='y'"), TextRows({{"y", "7", "0.5"}}));
    recordset->AddNew();
    recordset->Fields(u"a").PutValue(u"z");
    recordset->Fields(u"b").PutValue(Long{1});
    update(recordset);
    recordset->Fields(u"c").PutValue(4.5);
    update(recordset);
    EXPECT_EQ(other.rows("select * from K where a='z'"), TextRows({{"z", "1", "4.5"}}));
    recordset->AddNew();
    recordset->Fields(u"a").PutValue(u"z");
    EXPECT_EQ(caught([&] { update(recordset); }).number, 3314) << "the key has no value";
}

TEST_F(SqliteRecordset, RowNumbersUnderAnyName) {
    db->execute(
        "create table N (id INTEGER PRIMARY KEY, rowid TEXT, _rowid_ TEXT);"
        "insert into N values (5,'a','b');"
        "create table H (rowid TEXT, _rowid_ TEXT, OID TEXT); insert into H values(1,2,3)");
    RecordsetPointer recordset = opened(db, u"select * from N");
    EXPECT_EQ(recordset->Fields(u"rowid").Value(), Variant(u"a"));
    recordset->Fields(u"id").PutValue(Long{6});
    update(recordset);
    recordset->Fields(u"rowid").PutValue(u"c");
    update(recordset);
    EXPECT_EQ(other.rows("select * from N"), TextRows({{"6", "c", "b"}}));

    recordset = opened(db, u"select * from H");
    EXPECT_EQ(recordset->Fields(u"oid").Value(), Variant(u"3"));
    EXPECT_EQ(caught([&] { recordset->Fields(u"oid").PutValue(u"4"); }).number, 3251);
}

TEST_F(SqliteRecordset, ViewsAndReadOnlyRecordsetsAreReadAlone) {
    db->execute("create view V as select T.id, nazwa, 2*T.id as podwójne from T");
    const auto expect_refused = [](const RecordsetPointer& recordset, std::string_view why) {
        EXPECT_EQ(recordset->Fields(u"nazwa").Value(), Variant(u"dwa"));
        for (const auto& failure : {caught([&] { recordset->AddNew(); }),
                                    caught([&] { recordset->Fields(u"nazwa").PutValue(u"x"); })}) {
            EXPECT_EQ(failure.number, 3251);
            EXPECT_NE(failure.text.find(why), std::string::npos) << failure.text;
        }
    };
    expect_refused(opened(db, u"select nazwa from [v] where PODWÓJNE=4"), "V");
    expect_refused(opened(db, u"select nazwa from T where id=2", ado::LockType::adLockReadOnly),
                   "opened to read");
    EXPECT_EQ(other.value("select count(*) from T"), "3");
}

// ---- What a table refuses ----------------------------------------------------------------------

TEST_F(SqliteRecordset, WhatATableRefuses) {
    struct Refusal {
        const char* table;
        Variant value;
        Long number;
        std::string_view names;
    };
    const Refusal refusals[] = {
        {"create table R (a INTEGER, b TEXT not null)", Long{1}, 3314, "R.b"},
        {"create table R (a INTEGER check (a > 5))", Long{1}, 3317, "a > 5"},
        {"create table R (a INTEGER primary key); insert into R values (1)", Long{1}, 3022, "R.a"},
        {"create table R (a INTEGER unique); insert into R values (1)", Long{1}, 3022, "R.a"},
        {"create table R (a TEXT primary key) without rowid; insert into R values ('x')", u"x",
         3022, "R.a"},
        {"create table R (a INTEGER) strict", u"x", 3421, "R.a"},
        {"create table R (a REAL) strict", Currency::raw(std::numeric_limits<std::int64_t>::max()),
         3421, "R.a"},
        {"create table R (a INTEGER primary key, b)", u"x", 3421, "R"},
        {"pragma foreign_keys=on; create table R (a INTEGER references T2(id)); "
         "create table T2 (id INTEGER primary key)",
         Long{1}, 3201, "FOREIGN KEY"},
        {"create table R (a); create trigger G before insert on R begin "
         "select raise(abort, 'nie wolno'); end",
         Long{1}, 3317, "nie wolno"},
        {"create table R (a); create trigger G before insert on R begin "
         "select raise(ignore); end",
         Long{1}, 3167, "R"},
        {"create table R (b, a as (b+1))", Long{1}, 3000, "generated"},
    };
    for (const Refusal& refusal : refusals) {
        db->execute("drop table if exists R; drop table if exists T2");
        db->execute(refusal.table);
        const std::string before = other.value("select count(*) from R");
        const RecordsetPointer recordset = opened(db, u"select a from R");
        recordset->AddNew();
        recordset->Fields(u"a").PutValue(refusal.value);
        const auto failure = caught([&] { update(recordset); });
        EXPECT_EQ(failure.number, refusal.number) << refusal.table << "\n" << failure.text;
        EXPECT_NE(failure.text.find(refusal.names), std::string::npos) << failure.text;
        EXPECT_EQ(other.value("select count(*) from R"), before);
    }
}

// ---- Values ------------------------------------------------------------------------------------

TEST_F(SqliteRecordset, TextsOfEveryKind) {
    const String texts[] = {
        u"",         u"zażółć gęślą jaźń",    u"it's \"quoted\"", String(u"a\0b", 3), u"\U0001F600",
        u"a\r\n\tb", String(1'000'000, u'ż'), u"12.50",           u"2001-01-01"};
    for (const String& text : texts) {
        const RecordsetPointer recordset = opened(db, u"select nazwa from T where id=1");
        recordset->Fields(u"nazwa").PutValue(text);
        update(recordset);
        EXPECT_TRUE(column(db, u"select nazwa from T where id=1")[0] == Variant(text));
    }
    const RecordsetPointer recordset = opened(db, u"select nazwa from T where id=1");
    recordset->Fields(u"nazwa").PutValue(String(u"a\xD800z"));
    update(recordset);
    EXPECT_EQ(column(db, u"select nazwa from T where id=1")[0], Variant(u"a\uFFFDz"));
}

struct MoneyColumn {
    const char* type;
    bool is_money;  // read as a Currency
};

// Through the engine and back: the adapter gives the amount, and so does the engine's own text.
TEST_F(SqliteRecordset, MoneyIsExactUnderEachAffinity) {
    const MoneyColumn types[] = {
        {"CURRENCY", true},   {"MONEY", true},      {"DECIMAL(19,4)", true},
        {"MONEY INT", true},  {"MONEY REAL", true}, {"MONEY TEXT", true},
        {"MONEY BLOB", true}, {"INTEGER", false},   {"REAL", false},
        {"TEXT", false},      {"", false}};
    std::string columns = "nr INTEGER";
    String selected = u"select nr";
    for (std::size_t i = 0; i < std::size(types); ++i) {
        const std::string name = "c" + std::to_string(i);
        columns.append(",").append(name).append(" ").append(types[i].type);
        selected += u"," + from_utf8(name);
    }
    db->execute("create table M (" + columns + ")");

    std::vector<std::int64_t> counts = {0,
                                        1,
                                        -1,
                                        5,
                                        9'999,
                                        10'000,
                                        -10'000,
                                        4'933'200,
                                        9'007'199'254'740'991,
                                        9'007'199'254'740'993,
                                        -9'007'199'254'740'993,
                                        21'474'836'470'000,
                                        21'474'836'480'000,
                                        9'223'372'036'854'770'000,
                                        std::numeric_limits<std::int64_t>::max(),
                                        std::numeric_limits<std::int64_t>::max() - 1,
                                        std::numeric_limits<std::int64_t>::min(),
                                        std::numeric_limits<std::int64_t>::min() + 1};
    std::mt19937_64 random(1999);
    while (counts.size() < 3'000) {
        const auto bits = static_cast<int>(random() % 64);
        counts.push_back(static_cast<std::int64_t>(random()) >> bits);
    }

    db->BeginTrans();
    const RecordsetPointer writer = opened(db, selected + u" from M");
    for (std::size_t i = 0; i < counts.size(); ++i) {
        writer->AddNew();
        writer->Fields(Integer{0}).PutValue(static_cast<Long>(i));
        for (std::size_t c = 1; c <= std::size(types); ++c) {
            writer->Fields(static_cast<Long>(c)).PutValue(Currency::raw(counts[i]));
        }
        update(writer);
    }
    db->CommitTrans();

    const RecordsetPointer reader = opened(db, selected + u" from M order by nr");
    for (std::size_t i = 0; i < counts.size(); ++i, reader->MoveNext()) {
        const Currency amount = Currency::raw(counts[i]);
        for (std::size_t c = 0; c < std::size(types); ++c) {
            const Variant value = reader->Fields(static_cast<Long>(c + 1)).Value();
            if (types[c].is_money) {
                ASSERT_EQ(value, Variant(amount)) << types[c].type << " " << counts[i];
            } else if (const auto* text = value.get_if<String>()) {
                ASSERT_EQ(to_utf8(*text), sqlite::amount_text(amount)) << types[c].type;
            } else if (const auto* real = value.get_if<Double>();
                       real != nullptr && counts[i] % 10'000 == 0) {
                ASSERT_EQ(static_cast<std::int64_t>(*real) * 10'000, counts[i]) << types[c].type;
            } else {
                ASSERT_EQ(ToCurrency(value), amount) << types[c].type << " " << counts[i];
            }
        }
    }
    EXPECT_TRUE(reader->IsEOF());

    // The engine's own text of what is stored, with all digits of a Double.
    for (std::size_t c = 0; c < std::size(types); ++c) {
        const std::string name = "c" + std::to_string(c);
        const auto texts = other.rows(
            "select case typeof(" + name + ") when 'real' then rtrim(rtrim(printf('%!.4f'," + name +
            "),'0'),'.') else cast(" + name + " as text) end from M order by nr");
        ASSERT_EQ(texts.size(), counts.size());
        for (std::size_t i = 0; i < counts.size(); ++i) {
            ASSERT_EQ(texts[i][0], sqlite::amount_text(Currency::raw(counts[i])))
                << types[c].type << " " << counts[i];
        }
    }
}

// Amounts that are stored as bytes take their place among the others.
TEST_F(SqliteRecordset, MoneyOfEveryFormCompares) {
    db->execute(
        "create table M (nr INTEGER, kwota CURRENCY);"
        "insert into M values (1, x'" /* "-922337203685477.5808" */
        "2d3932323333373230333638353437372e35383038'), (2, -5), (3, 0.5), (4, '7,25'),"
        "(5, 12.25), (6, x'" /* "922337203685477.5807" */
        "3932323333373230333638353437372e35383037'), (7, null)");
    EXPECT_EQ(numbers(db, u"select nr from M where kwota<0 order by kwota"),
              std::vector<Long>({1, 2}));
    EXPECT_EQ(numbers(db, u"select nr from M where kwota>0 order by kwota"),
              std::vector<Long>({3, 4, 5, 6}));
    EXPECT_EQ(numbers(db, u"select nr from M where kwota=7.25 or kwota='12,25' order by nr"),
              std::vector<Long>({4, 5}));
    EXPECT_EQ(numbers(db, u"select nr from M where kwota is null"), std::vector<Long>({7}));
    EXPECT_EQ(numbers(db, u"select nr from M order by kwota desc"),
              std::vector<Long>({6, 5, 4, 3, 2, 1, 7}));
}

// ---- Key dates ---------------------------------------------------------------------------------

// What programs write for 31 December 2001, and next to it.
class SqliteKeyDates : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* type : {"DATETIME", "TEXT", "REAL", ""}) {
            const std::string table = std::string("D") + type;
            db->execute("create table " + table + " (nr INTEGER, dnia " + type + ");" +
                        "insert into " + table +
                        " values (1,'2001-12-31 00:00:00'),(2,'2001-12-31'),"
                        "(3,'2001-12-31 15:00:00'),(4,'2001-12-31T15:00:00'),"
                        "(5,'2001-12-31 23:59:59'),(6,'2001-12-31 23:59:59.999'),"
                        "(7,'2001-12-31T23:59:59.5Z'),(8,37256),(9,37256.625),"
                        "(10,37256.99999),(11,'2001-12-31T23:30:00-02:00'),"
                        "(-1,'2001-12-30 23:59:59.999'),(-2,'2002-01-01'),"
                        "(-3,'2002-01-01 00:00:00'),(-4,37255.999),(-5,37257),(-6,null),"
                        "(-7,'x'),(-8,'2001-12-32'),(-9,x'00'),(-10,37257.00001)");
        }
    }

    TemporaryFolder folder;
    ConnectionPointer db = sqlite::connect(folder / "firma.db", {.create = true});
};

constexpr StringView whole_day[] = {
    u" [dnia]>={d '2001-12-31'} and [dnia]<{d '2002-01-01'} ",
    u" ([dnia] Between #12-31-2001 00:00:00# and #12-31-2001 23:59:59#) ",
    u" dnia>=#12/31/2001# and dnia<#1/1/2002#",
    u" dnia>={ts '2001-12-31 00:00:00'} and dnia<={ts '2001-12-31 23:59:59.999'}",
    u" not (dnia<{d '2001-12-31'} or dnia>={d '2002-01-01'})",
    u" dnia not between #01-01-0100# and #12-30-2001 23:59:59# and dnia<#01-01-2002#",
};

TEST_F(SqliteKeyDates, AreFoundOnTheirDayInBothDialects) {
    const std::vector<Long> all = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
    const std::vector<Long> texts = {1, 2, 3, 4, 5, 6, 7, 11};  // a TEXT column holds no numbers
    for (const StringView table : {u"DDATETIME", u"DTEXT", u"DREAL", u"D"}) {
        for (const StringView condition : whole_day) {
            EXPECT_EQ(numbers(db, u"select nr from " + String(table) + u" where" +
                                      String(condition) + u" order by nr"),
                      table == u"DTEXT" ? texts : all)
                << to_utf8(table) << to_utf8(condition);
        }
    }
}

TEST_F(SqliteKeyDates, AreReadAsDates) {
    const std::vector<Variant> values =
        column(db, u"select dnia from DDATETIME where nr>0 order by nr");
    ASSERT_EQ(values.size(), 11U);
    for (const Variant& value : values) {
        ASSERT_TRUE(value.is(Subtype::Date));
        EXPECT_EQ(static_cast<int>(value.get_if<Date>()->days), 37256);
    }
    EXPECT_EQ(values[3], Variant(Date{37256.625}));
    EXPECT_EQ(values[8], Variant(Date{37256.625}));
    EXPECT_EQ(column(db, u"select dnia from DDATETIME where nr=-7")[0], Variant(u"x"));
    EXPECT_EQ(column(db, u"select dnia from DDATETIME where nr=-6")[0], Variant::null());
}

TEST_F(SqliteKeyDates, AtAMoment) {
    const auto at = [&](StringView condition) {
        return numbers(
            db, u"select nr from DDATETIME where dnia=" + String(condition) + u" order by nr");
    };
    EXPECT_EQ(at(u"{ts '2001-12-31 15:00:00'}"), std::vector<Long>({3, 4, 9}));
    EXPECT_EQ(at(u"#12-31-2001#"), std::vector<Long>({1, 2, 8}));
    EXPECT_EQ(at(u"#12-31-2001 23:59:59#"), std::vector<Long>({5, 6, 7, 10}));
    EXPECT_EQ(at(u"{ts '2001-12-31 23:59:59.5'}"), std::vector<Long>({7}));
    EXPECT_EQ(at(u"'2001-12-31'"), std::vector<Long>({1, 2, 8}));
    EXPECT_EQ(at(u"37256.625"), std::vector<Long>({3, 4, 9}));
}

TEST_F(SqliteRecordset, TruthValuesOfOtherPrograms) {
    for (const char* type : {"BOOLEAN", "BOOL", "BIT", "YESNO", "LOGICAL"}) {
        db->execute(std::string("create table B (nr INTEGER, f ") + type +
                    "); insert into B values (1,-1),(2,1),(3,0),(4,null),(5,'True'),(6,'0')");
        EXPECT_EQ(numbers(db, u"select nr from B where f=-1 order by nr"),
                  std::vector<Long>({1, 2, 5}));
        EXPECT_EQ(numbers(db, u"select nr from B where [F]=0 order by nr"),
                  std::vector<Long>({3, 6}));
        EXPECT_EQ(numbers(db, u"select nr from B where f=True order by nr"),
                  std::vector<Long>({1, 2, 5}));
        EXPECT_EQ(numbers(db, u"select nr from B where not f order by nr"),
                  std::vector<Long>({3, 6}));
        EXPECT_EQ(column(db, u"select f from B where nr=2")[0], Variant(true));
        db->execute("drop table B");
    }
    db->execute("create table B (nr INTEGER, f INTEGER); insert into B values (1,-1),(2,1),(3,0)");
    EXPECT_EQ(numbers(db, u"select nr from B where f=-1"), std::vector<Long>({1}))
        << "a column of numbers holds numbers";
}

// ---- The grammar against the engine's own ------------------------------------------------------

// Random conditions in the part of the dialects that the engine reads by itself, with the same
// meaning: names in brackets, whole numbers, and everything that joins them.
class RandomConditions {
  public:
    String condition(int depth) {
        switch (depth == 0 ? pick(5) : pick(9)) {
            case 0:
                return operand() + any({u"=", u"<>", u"<", u">", u"<=", u">="}) + operand();
            case 1:
                return operand() + any({u" between ", u" not between "}) + operand() + u" and " +
                       operand();
            case 2:
                return column() + any({u" is null", u" is not null"});
            case 3:
                return operand() + any({u" in (", u" not in ("}) + operand() + u"," + operand() +
                       u")";
            case 4:
                return any({column(), u"true", u"false", u"null"});
            case 5:
                return u"not " + condition(depth - 1);
            case 6:
                return u"(" + condition(depth - 1) + u")";
            case 7:
                return condition(depth - 1) + u" and " + condition(depth - 1);
            default:
                return condition(depth - 1) + u" or " + condition(depth - 1);
        }
    }

  private:
    unsigned pick(unsigned count) { return static_cast<unsigned>(random_() % count); }
    String any(const std::vector<String>& texts) {
        return texts[pick(static_cast<unsigned>(texts.size()))];
    }
    String column() { return any({u"[a]", u"b", u"[C]", u"L.[a]"}); }
    String operand() {
        return any({column(), column(), u"0", u"-1", u"2", u"null", u"(1)", u"((b))"});
    }

    std::mt19937_64 random_{2001};
};

TEST_F(SqliteRecordset, RandomConditionsMeanWhatTheEngineMakesOfThem) {
    other.run(
        "create table L (nr INTEGER, a INTEGER, b INTEGER, c INTEGER);"
        "with v(x) as (values (-1),(0),(1),(2),(null)) insert into L "
        "select row_number() over (), v1.x, v2.x, v3.x from v v1, v v2, v v3");
    RandomConditions conditions;
    int found = 0;
    for (int i = 0; i < 3'000; ++i) {
        const String condition = conditions.condition(4);
        const String statement = u"select nr from L where " + condition + u" order by nr";
        std::vector<std::string> rows;
        const auto failure = caught([&] {
            for (const Long number : numbers(db, statement)) {
                rows.push_back(std::to_string(number));
            }
        });
        ASSERT_EQ(failure.number, 0) << to_utf8(statement) << "\n" << failure.text;
        std::vector<std::string> expected;
        for (const auto& row : other.rows(to_utf8(statement))) {
            expected.push_back(row[0]);
        }
        ASSERT_EQ(rows, expected) << to_utf8(statement);
        found += rows.empty() ? 0 : 1;
    }
    EXPECT_GT(found, 1'000);
}

// ---- Beside other programs ---------------------------------------------------------------------

TEST_F(SqliteRecordset, HoldsNoLockWhileItIsOpen) {
    const RecordsetPointer recordset = opened(db, u"select * from T");
    EXPECT_FALSE(probe.any_statement_runs());
    other.run("pragma busy_timeout=0");
    other.run("begin exclusive; update T set nazwa='z boku' where id=1; commit");
    recordset->Fields(u"kwota").PutValue(Currency::raw(10'000));
    update(recordset);
    EXPECT_FALSE(probe.any_statement_runs());
    other.run("begin exclusive; update T set nazwa='znowu' where id=1; commit");
    EXPECT_EQ(other.rows("select nazwa, kwota from T where id=1"), TextRows({{"znowu", "1"}}));
}

TEST_F(SqliteRecordset, PreparesAStatementOnce) {
    for (Long id = 100; id < 400; ++id) {
        const RecordsetPointer recordset = opened(
            db, u"select id, nazwa from T where id=" + ToText(id) + u" and kwota<>" + ToText(id) +
                    u" and dnia={d '2001-01-0" + ToText(Long{1 + id % 9}) + u"'}");
        ASSERT_TRUE(recordset->IsEOF());
        recordset->AddNew();
        recordset->Fields(u"id").PutValue(id);
        update(recordset);
        recordset->Close();
    }
    EXPECT_EQ(probe.prepared(SQLITE_INSERT, "T"), 2) << "one of them is the test's own";
}

TEST_F(SqliteRecordset, KeepsABoundedNumberOfStatements) {
    String condition = u"id=1";
    for (int i = 0; i < 200; ++i) {
        condition += u" or id=1";
        ASSERT_EQ(numbers(db, u"select id from T where " + condition), std::vector<Long>({1}));
    }
    EXPECT_LE(probe.statements(), 64);
    for (int i = 0; i < 1'000; ++i) {
        condition += u" or id=1";
    }
    const auto failure =
        caught([&] { static_cast<void>(opened(db, u"select id from T where " + condition)); });
    EXPECT_EQ(failure.number, 3360) << failure.text;
}

TEST_F(SqliteRecordset, TablesThatOtherProgramsChange) {
    EXPECT_EQ(column(db, u"select * from T").size(), 3U);
    other.run("alter table T add column nowa DATE default '2001-01-01'");
    const RecordsetPointer recordset = opened(db, u"select * from T");
    EXPECT_EQ(recordset->Fields(u"nowa").Value(), Variant(Date{36892}));
    recordset->Close();

    other.run("alter table T drop column nazwa");
    EXPECT_EQ(opened(db, u"select * from T")->Fields(Integer{1}).Name(), u"kwota");
    EXPECT_EQ(caught([&] { static_cast<void>(opened(db, u"select nazwa from T")); }).number, 3061);

    EXPECT_EQ(numbers(db, u"select id from T where kwota is null order by id").size(), 3U);
    other.run(
        "drop table T; create table T (id INTEGER, kwota BOOLEAN); insert into T values(8,1)");
    EXPECT_EQ(numbers(db, u"select id from T where kwota is null order by id").size(), 0U);
    EXPECT_EQ(column(db, u"select kwota from T where kwota=-1"), std::vector<Variant>(1, true))
        << "the declared type is the new one";

    other.run("drop table T");
    EXPECT_EQ(caught([&] { static_cast<void>(opened(db, u"select id from T")); }).number, 3078);
    EXPECT_EQ(caught([&] { static_cast<void>(opened(db, u"select id from T2")); }).number, 3078);
    other.run("create table T2 (id INTEGER); insert into T2 values (5)");
    EXPECT_EQ(numbers(db, u"select id from T2"), std::vector<Long>({5}));
}

TEST_F(SqliteRecordset, NamesWithEveryCharacter) {
    db->execute(
        "create table \"Stawki \"\"km\"\" [zł]\" (\"Ćma żółta\" TEXT, \"a\"\"b\" INTEGER);"
        "insert into \"Stawki \"\"km\"\" [zł]\" values ('x',1)");
    const RecordsetPointer recordset =
        opened(db, u"select [ćma ŻÓŁTA], [a\"b] from [STAWKI \"KM\" [ZŁ]]] where [A\"B]=1");
    EXPECT_EQ(recordset->Fields(u"ĆMA ŻÓŁTA").Value(), Variant(u"x"));
    recordset->Fields(Integer{0}).PutValue(u"y");
    update(recordset);
    EXPECT_EQ(other.value("select \"Ćma żółta\" from \"Stawki \"\"km\"\" [zł]\""), "y");
    EXPECT_TRUE(db->table_exists(u"stawki \"KM\" [ZŁ]"));
    // A name that is spelled so goes before one that differs in case.
    db->execute("create table \"Żaba\" (a); create table \"żaba\" (a, b)");
    EXPECT_EQ(caught([&] { static_cast<void>(opened(db, u"select b from Żaba")); }).number, 3061);
    EXPECT_EQ(caught([&] { static_cast<void>(opened(db, u"select b from żaba")); }).number, 0);
}

}  // namespace
}  // namespace kvarta16
