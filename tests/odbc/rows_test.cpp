// Recordsets and transactions on real servers, and what fails there.
#include <memory>

#include "odbc_support.h"

namespace kvarta16 {
namespace {

using Rows = std::vector<std::string>;

class RowsOnServer : public OnServer {
  protected:
    // Names with and without a key.
    void make_people(bool with_key) const {
        make_table("osoby", std::string("nr INTEGER NOT NULL") + (with_key ? " PRIMARY KEY" : "") +
                                ", imie VARCHAR(20) DEFAULT 'brak', wiek INTEGER, "
                                "placa " +
                                std::string(types().money));
        db->execute("insert into osoby values (1, 'Ala', 20, 10.5)");
        db->execute("insert into osoby values (2, 'Ola', null, 20.25)");
        db->execute("insert into osoby values (3, 'Ela', 40, null)");
    }
    [[nodiscard]] std::vector<std::string> people() const {
        return rows_of(db, u"select nr,imie,wiek,placa from osoby order by nr", 4);
    }
};

INSTANTIATE_TEST_SUITE_P(Servers, RowsOnServer, every_server, server_name);

TEST_P(RowsOnServer, AFoundRowIsChangedAndNoOther) {
    for (const bool with_key : {true, false}) {
        make_people(with_key);
        const RecordsetPointer row = opened(db, u"select imie, placa from osoby where nr=2");
        put(*row, u"IMIE", u"Żaneta");
        put(*row, u"placa", Currency::raw(1));
        store(*row);
        EXPECT_EQ(people(), (Rows{"1|Ala|20|10,5", "2|Żaneta|NULL|0,0001", "3|Ela|40|NULL"}));
        EXPECT_EQ(shown(value_of(*row, u"imie")), "String Żaneta");
        EXPECT_FALSE(row->IsEOF());
    }
}

TEST_P(RowsOnServer, RowsAreWalkedAndStoredOnTheWay) {
    for (const bool with_key : {true, false}) {
        make_people(with_key);
        const RecordsetPointer rows = opened(db, u"select * from osoby order by nr");
        for (; !rows->IsEOF(); rows->MoveNext()) {
            put(*rows, u"wiek", Long{50});
        }
        EXPECT_EQ(people(), (Rows{"1|Ala|50|10,5", "2|Ola|50|20,25", "3|Ela|50|NULL"}));
        EXPECT_EQ(caught([&] { rows->MoveNext(); }).number, ado::error_no_current_record);
    }
}

TEST_P(RowsOnServer, ARowThatIsSetToWhatItHoldsIsNoFailure) {
    for (const bool with_key : {true, false}) {
        make_people(with_key);
        const RecordsetPointer row = opened(db, u"select * from osoby where nr=1");
        put(*row, u"imie", u"Ala");
        store(*row);
        EXPECT_EQ(people().front(), "1|Ala|20|10,5");
    }
}

TEST_P(RowsOnServer, ANewRowGetsTheDefaults) {
    for (const bool with_key : {true, false}) {
        make_people(with_key);
        const RecordsetPointer row = opened(db, u"select nr, imie from osoby where nr=4");
        EXPECT_TRUE(row->IsEOF());
        row->AddNew();
        EXPECT_FALSE(row->IsEOF());
        EXPECT_EQ(shown(value_of(*row, u"imie")), "Null");
        put(*row, u"nr", Long{4});
        store(*row);
        EXPECT_EQ(shown(value_of(*row, u"imie")), "String brak");
        put(*row, u"imie", u"Iza");
        store(*row);
        EXPECT_EQ(people().back(), "4|Iza|NULL|NULL");
        row->AddNew();
        put(*row, u"nr", Long{5});
        row->Close();
        EXPECT_EQ(people().size(), 4U) << "a row that was begun is dropped";
    }
}

TEST_P(RowsOnServer, AKeyThatTheServerGives) {
    const char* keys[] = {"SERIAL PRIMARY KEY", "INTEGER AUTO_INCREMENT PRIMARY KEY",
                          "INTEGER PRIMARY KEY"};
    make_table("liczniki", std::string("nr ") + keys[static_cast<std::size_t>(GetParam())] +
                               ", opis VARCHAR(9)");
    const RecordsetPointer row = opened(db, u"select nr, opis from liczniki");
    row->AddNew();
    put(*row, u"opis", u"a");
    store(*row);
    EXPECT_EQ(shown(value_of(*row, u"nr")), "Long 1");
    put(*row, u"opis", u"b");
    store(*row);
    EXPECT_EQ(rows_of(db, u"select nr, opis from liczniki", 2), Rows{"1|b"});
    row->AddNew();
    store(*row);
    EXPECT_EQ(rows_of(db, u"select nr, opis from liczniki order by nr", 2),
              (Rows{"1|b", "2|NULL"}));
}

TEST_P(RowsOnServer, ARowThatIsGone) {
    for (const bool with_key : {true, false}) {
        make_people(with_key);
        const RecordsetPointer row = opened(db, u"select * from osoby where nr=1");
        db->execute("delete from osoby where nr=1");
        put(*row, u"wiek", Long{1});
        const Caught gone = caught([&] { store(*row); });
        EXPECT_EQ(gone.number, odbc::error_row_deleted) << gone.text;
        EXPECT_EQ(people().size(), 2U);
        db->execute("insert into osoby values (1, 'Ala', 20, 10.5)");
        if (with_key) {  // what was put has stayed and can be tried again
            store(*row);
            EXPECT_EQ(people().front(), "1|Ala|1|10,5");
        }
    }
}

// Nothing but all of its values identifies it, and one of them is another now.
TEST_P(RowsOnServer, ARowWithoutAKeyThatAnotherUserHasChanged) {
    make_people(false);
    const RecordsetPointer row = opened(db, u"select wiek from osoby where nr=1");
    db->execute("update osoby set imie='Iga' where nr=1");
    put(*row, u"wiek", Long{1});
    if (is(ServerKind::SqliteDriver)) {
        store(*row);  // it has a number of its own there
        EXPECT_EQ(people().front(), "1|Iga|1|10,5");
    } else {
        EXPECT_EQ(caught([&] { store(*row); }).number, odbc::error_row_deleted);
        EXPECT_EQ(people().front(), "1|Iga|20|10,5");
    }
}

TEST_P(RowsOnServer, ADuplicateKeyAndOtherRules) {
    make_people(true);
    const RecordsetPointer row = opened(db, u"select * from osoby where nr=9");
    row->AddNew();
    put(*row, u"nr", Long{1});
    const Caught duplicate = caught([&] { store(*row); });
    EXPECT_EQ(duplicate.number, 3022);
    EXPECT_NE(duplicate.text.find("osoby"), std::string::npos) << duplicate.text;
    put(*row, u"nr", Long{9});
    store(*row);
    EXPECT_EQ(people().size(), 4U) << "what was put has stayed and was tried again";
    put(*row, u"nr", Variant::null());
    EXPECT_EQ(caught([&] { store(*row); }).number, is(ServerKind::SqliteDriver) ? 3421 : 3314);
    put(*row, u"nr", Long{9});
    put(*row, u"imie", String(21, u'ż'));
    if (is(ServerKind::SqliteDriver)) {
        store(*row);  // such a file has no lengths
    } else {
        EXPECT_EQ(caught([&] { store(*row); }).number, 3163);
        EXPECT_EQ(people().back(), "9|brak|NULL|NULL");
    }
}

TEST_P(RowsOnServer, AViewIsReadAndNotChanged) {
    make_people(true);
    db->execute("create view widok_osob as select nr, imie from osoby");
    const RecordsetPointer row = opened(db, u"select * from [Widok_Osob] where nr=1");
    EXPECT_EQ(shown(value_of(*row, u"imie")), "String Ala");
    EXPECT_EQ(caught([&] { put(*row, u"imie", u"x"); }).number, odbc::error_not_updatable);
    EXPECT_EQ(caught([&] { row->AddNew(); }).number, odbc::error_not_updatable);
    db->execute("drop view widok_osob");
}

TEST_P(RowsOnServer, Discipline) {
    make_people(true);
    const RecordsetPointer row = opened(db, u"select nr from osoby", ado::LockType::adLockReadOnly);
    EXPECT_EQ(caught([&] { put(*row, u"nr", Long{1}); }).number, odbc::error_not_updatable);
    EXPECT_EQ(caught([&] { row->AddNew(); }).number, odbc::error_not_updatable);
    EXPECT_EQ(caught([&] { static_cast<void>(row->Fields(u"wiek")); }).number,
              ado::error_item_not_found);
    EXPECT_EQ(caught([&] { static_cast<void>(row->Fields(Long{1})); }).number,
              ado::error_item_not_found);
    const auto open = [&](const RecordsetPointer& recordset,
                          const std::shared_ptr<ado::Connection>& on, Long options = -1) {
        recordset->Open(u"select nr from osoby", on, ado::CursorType::adOpenStatic,
                        ado::LockType::adLockOptimistic, options);
    };
    EXPECT_EQ(caught([&] { open(row, db); }).number, ado::error_object_open);
    row->Close();
    EXPECT_EQ(caught([&] { row->Close(); }).number, ado::error_object_closed);
    EXPECT_EQ(caught([&] { static_cast<void>(row->IsEOF()); }).number, ado::error_object_closed);
    EXPECT_EQ(caught([&] { open(row, nullptr); }).number, ado::error_invalid_connection);
    EXPECT_EQ(caught([&] { open(row, db, 2); }).number, 3001);
    const RecordsetPointer none = opened(db, u"select nr from osoby where nr=77");
    EXPECT_EQ(caught([&] { static_cast<void>(value_of(*none, u"nr")); }).number,
              ado::error_no_current_record);
    EXPECT_EQ(caught([&] { store(*none); }).number, ado::error_no_current_record);
    const ConnectionPointer other = connected();
    open(row, other);
    other->Close();
    EXPECT_EQ(caught([&] { static_cast<void>(row->IsEOF()); }).number, ado::error_object_closed);
    EXPECT_EQ(caught([&] { other->Close(); }).number, ado::error_object_closed);
    EXPECT_EQ(caught([&] { other->BeginTrans(); }).number, ado::error_object_closed);
    EXPECT_EQ(caught([&] { static_cast<void>(other->CreateRecordset()); }).number,
              ado::error_invalid_connection);
    EXPECT_EQ(caught([&] { open(none, other); }).number, ado::error_object_open);
}

// ---- Transactions ------------------------------------------------------------------------------

TEST_P(RowsOnServer, EachRowIsStoredByItself) {
    make_people(true);
    const ConnectionPointer other = connected();
    const RecordsetPointer row = opened(db, u"select nr from osoby where nr=7");
    row->AddNew();
    put(*row, u"nr", Long{7});
    store(*row);
    EXPECT_EQ(rows_of(other, u"select nr from osoby where nr=7", 1).size(), 1U);
}

TEST_P(RowsOnServer, ATransactionIsTheCallersOwn) {
    make_people(true);
    const auto add = [&](const ConnectionPointer& to, Long number) {
        const RecordsetPointer row = opened(to, u"select nr from osoby where nr=0");
        row->AddNew();
        put(*row, u"nr", number);
        store(*row);
    };
    db->BeginTrans();
    EXPECT_EQ(caught([&] { db->BeginTrans(); }).number, odbc::error_in_transaction);
    add(db, 7);
    EXPECT_EQ(rows_of(db, u"select nr from osoby where nr=7", 1).size(), 1U);
    EXPECT_EQ(server.ask("select count(*) from osoby"), "3");
    db->CommitTrans();
    EXPECT_EQ(server.ask("select count(*) from osoby"), "4");
    db->BeginTrans();
    add(db, 8);
    // A row that is refused does not take the others with it.
    EXPECT_EQ(caught([&] { add(db, 8); }).number, 3022);
    add(db, 9);
    db->CommitTrans();
    EXPECT_EQ(server.ask("select count(*) from osoby"), "6");
    db->BeginTrans();
    add(db, 10);
    db->RollbackTrans();
    EXPECT_EQ(server.ask("select count(*) from osoby"), "6");
    EXPECT_EQ(caught([&] { db->CommitTrans(); }).number, odbc::error_no_transaction);
    EXPECT_EQ(caught([&] { db->RollbackTrans(); }).number, odbc::error_no_transaction);
    add(db, 11);
    EXPECT_EQ(server.ask("select count(*) from osoby"), "7") << "by itself again";
    ConnectionPointer dropped = connected();
    dropped->BeginTrans();
    add(dropped, 12);
    dropped.reset();
    EXPECT_EQ(server.ask("select count(*) from osoby"), "7");
    ConnectionPointer closed = connected();
    closed->BeginTrans();
    add(closed, 13);
    closed->Close();
    EXPECT_EQ(server.ask("select count(*) from osoby"), "7");
}

// ---- Names -------------------------------------------------------------------------------------

TEST_P(RowsOnServer, NamesInAnyCase) {
    make_people(true);
    for (const StringView source :
         {u"select [NR],[Imie] from [OSOBY] where [nR]=1", u"SELECT Nr, IMIE FROM Osoby WHERE NR=1",
          u"select osoby.nr, OSOBY.imie from osoby where osoby.nr=1",
          u"select nr, imie from dbo.osoby where nr=1"}) {
        EXPECT_EQ(rows_of(db, source, 2), Rows{"1|Ala"}) << to_utf8(source);
    }
    EXPECT_EQ(to_utf8(opened(db, u"select [iMiE] from osoby")->Fields(Long{0}).Name()), "iMiE");
    const std::string quote = is(ServerKind::MariaDb) ? "`" : "\"";
    const std::string odd = quote + "Księga główna" + quote;
    drop(odd);
    db->execute("drop table if exists " + odd);
    db->execute("create table " + odd + " (" + quote + "Kwota zł" + quote + " INTEGER, " + quote +
                "select" + quote + " INTEGER)");
    EXPECT_TRUE(db->table_exists(u"KSIĘGA GŁÓWNA"));
    const RecordsetPointer row = opened(db, u"select [KWOTA ZŁ],[Select] from [księga Główna]");
    row->AddNew();
    put(*row, u"kwota zł", Long{5});
    put(*row, u"SELECT", Long{6});
    store(*row);
    EXPECT_EQ(server.ask("select * from " + odd), "5|6");
    db->execute("drop table " + odd);
    EXPECT_FALSE(db->table_exists(u"Księga główna"));
}

TEST_P(RowsOnServer, NamesThatAreNotThere) {
    make_people(true);
    const auto failing = [&](StringView source) {
        return caught([&] { static_cast<void>(opened(db, source)); });
    };
    EXPECT_EQ(failing(u"select nr from nikt").number, odbc::error_no_table);
    EXPECT_EQ(failing(u"select nr, wzrost from osoby").number, odbc::error_unknown_name);
    EXPECT_EQ(failing(u"select nr from osoby where inna.nr=1").number, odbc::error_unknown_name);
    EXPECT_EQ(failing(u"select nr from osoby order by wzrost").number, odbc::error_unknown_name);
    const Caught syntax = failing(u"select nr from osoby group by nr");
    EXPECT_EQ(syntax.number, odbc::error_syntax);
    EXPECT_NE(syntax.text.find("column 22, at group"), std::string::npos) << syntax.text;
    EXPECT_EQ(failing(u"drop table osoby").number, odbc::error_syntax);
    EXPECT_EQ(failing(u"select nr from osoby; drop table osoby").number, odbc::error_syntax);
    EXPECT_EQ(people().size(), 3U);
}

TEST_P(RowsOnServer, TablesThatAnotherProgramChanges) {
    make_people(true);
    EXPECT_EQ(rows_of(db, u"select nr from osoby", 1).size(), 3U);
    connected()->execute("alter table osoby add column wzrost INTEGER");
    EXPECT_EQ(rows_of(db, u"select nr, wzrost from osoby", 2).size(), 3U);
    connected()->execute("alter table osoby drop column wiek");
    EXPECT_EQ(caught([&] { static_cast<void>(opened(db, u"select wiek from osoby")); }).number,
              odbc::error_unknown_name);
    connected()->execute("drop table osoby");
    EXPECT_EQ(caught([&] { static_cast<void>(opened(db, u"select nr from osoby")); }).number,
              odbc::error_no_table);
}

// ---- Conditions --------------------------------------------------------------------------------

struct ConditionCase {
    StringView condition;
    const char* found;  // the numbers of the rows
};
constexpr ConditionCase conditions[] = {
    {u"nr=1", "1"},
    {u"nr<>1", "2345"},
    {u"nr>=2 and nr<4", "23"},
    {u"1=nr or nr=+3", "13"},
    {u"not (nr=1 or nr=2)", "345"},
    {u"nr='2'", "2"},
    {u"2.5<nr", "345"},
    {u"nr in (1,3,99)", "13"},
    {u"nr not in (1,3)", "245"},
    {u"nr between 2 and 3", "23"},
    {u"nr not between 2 and 4", "15"},
    {u"kwota=10.5", "1"},
    {u"kwota=-2", "3"},
    {u"kwota>'10'", "12"},
    {u"kwota is null", "5"},
    {u"kwota is not null and nr<3", "12"},
    {u"opis='żółw'", "1"},
    {u"opis=\"O'Hara\"", "2"},
    {u"opis='O''Hara'", "2"},
    {u"opis='x'' or ''1''=''1'", ""},
    {u"opis is null", "5"},
    {u"tak", "13"},
    {u"not tak", "24"},
    {u"tak=true", "13"},
    {u"True=tak", "13"},
    {u"tak=-1", "13"},
    {u"tak<>0", "13"},
    {u"tak=0", "24"},
    {u"tak=false and nr>2", "4"},
    {u"tak in (true,false)", "1234"},
    {u"dzien={d '2024-05-17'}", "1"},
    {u"dzien>={d '2024-05-17'} and dzien<{d '2024-05-18'}", "123"},
    {u"dzien between #05-17-2024 00:00:00# and #05-17-2024 23:59:59#", "123"},
    {u"dzien between #2024-05-17# and #2024-05-17 15:00#", "12"},
    {u"dzien={ts '2024-05-17 15:00:00'}", "2"},
    {u"dzien<>{ts '2024-05-17 15:00:00'}", "134"},
    {u"dzien>#05-17-2024 15:00:00#", "34"},
    {u"dzien<=#05-17-2024 15:00:00#", "12"},
    {u"#05-17-2024 15:00:00#<=dzien", "234"},
    {u"dzien='2024-05-17'", "1"},
    {u"'2024-05-17 15:00'<dzien", "34"},
    {u"dzien in ({d '2024-05-17'},{d '9999-12-31'})", "14"},
    {u"dzien<now()", "123"},
    {u"dzien>{fn now()}", "4"},
    {u"dzien is null", "5"},
    {u"dzien={d '9999-12-31'}", "4"},
    {u"true", "12345"},
    {u"false or null", ""},
    {u"null", ""},
    {u"nr=null", ""},
    {u"tabela.nr=5", "5"},
    {u"((((nr=5))))", "5"},
};

TEST_P(RowsOnServer, Conditions) {
    make_table("tabela", "nr INTEGER, kwota " + std::string(types().money) +
                             ", opis VARCHAR(30), tak " + std::string(types().truth) + ", dzien " +
                             std::string(types().date));
    const RecordsetPointer rows = opened(db, u"select * from tabela");
    const auto add = [&](Long number, const Variant& amount, const Variant& text,
                         const Variant& truth, const Variant& day) {
        rows->AddNew();
        put(*rows, u"nr", number);
        put(*rows, u"kwota", amount);
        put(*rows, u"opis", text);
        put(*rows, u"tak", truth);
        put(*rows, u"dzien", day);
        store(*rows);
    };
    add(1, Currency::raw(105'000), u"żółw", Boolean(true), Date{45429});
    add(2, Currency::raw(205'000), u"O'Hara", Boolean(false), Date{45429.625});
    add(3, Currency::raw(-20'000), u"", Boolean(true), Date{45429 + 86399.0 / 86400});
    add(4, Long{0}, u"a\\", Boolean(false), Date{2958465});
    add(5, Variant::null(), Variant::null(), Variant::null(), Variant::null());
    fake.clock.now = Date{45500};
    for (const ConditionCase& each : conditions) {
        const String source =
            u"select nr from tabela where " + String(each.condition) + u" order by nr";
        std::string found;
        EXPECT_EQ(caught([&] {
                      for (const std::string& row : rows_of(db, source, 1)) {
                          found += row;
                      }
                  }).text,
                  "")
            << to_utf8(source);
        EXPECT_EQ(found, each.found) << to_utf8(source);
    }
    EXPECT_EQ(rows_of(db, u"select top 2 nr from tabela order by nr desc", 1), (Rows{"5", "4"}));
    EXPECT_EQ(rows_of(db, u"select top 0 nr from tabela", 1), Rows{});
    EXPECT_EQ(rows_of(db, u"select top 2 nr from tabela where dzien is not null order by dzien", 1),
              (Rows{"1", "2"}));
}

}  // namespace
}  // namespace kvarta16
