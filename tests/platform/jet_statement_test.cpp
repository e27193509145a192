// The statements of the Jet dialect that the embedded engine executes: what stands in the file
// after each, and where and how every other text is refused.

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <platform/dao_fixture.h>

namespace kvarta16 {
namespace {

using testing_support::Caught;
using testing_support::caught;
using testing_support::DaoTest;
using testing_support::OtherProgram;

// Every case begins with this table.
constexpr const char* table_of_the_cases =
    "create table TOWARY (ID INTEGER PRIMARY KEY, NAZWA VARCHAR(10) CHECK(length(NAZWA)<=10),"
    " CENA CURRENCY, DATA DATETIME, JEST BIT, ILE SMALLINT, WAGA DOUBLE, OPIS MEMO);"
    "create table INNA (X INTEGER, Y TEXT);"
    "create view DROGIE as select * from TOWARY where CENA>100;"
    "insert into TOWARY values (1,'śruba',12.5,'2024-05-17 10:00:00',-1,5,0.25,'a*b'),"
    " (2,'nit',NULL,NULL,0,NULL,NULL,NULL);"
    "insert into INNA values (7,'siedem'),(8,'osiem'),(9,'dziewięć')";

struct Good {
    StringView statement;
    std::string query;   // of another program afterwards
    std::string result;  // the rows, "|" between columns and ";" between rows
};

const Good good_statements[] = {
    // Insert.
    {u"insert into TOWARY (ID, NAZWA) values (3, 'trzy')", "select ID,NAZWA from TOWARY where ID=3",
     "3|trzy"},
    {u"INSERT INTO towary ([id],nazwa) VALUES (3,\"it's \"\"x\"\"\");",
     "select NAZWA from TOWARY where ID=3", "it's \"x\""},
    {u"insert into dbo.[TOWARY] values (3,'a',1.5,#12-31-2001 23:59:59#,True,2,0.5,'opis')",
     "select * from TOWARY where ID=3", "3|a|1.5|2001-12-31 23:59:59|-1|2|0.5|opis"},
    {u"insert into [serwer].[baza].[TOWARY] (ID) values (4)", "select max(ID) from TOWARY", "4"},
    {u"insert into TOWARY (ID,CENA) values (3,'12,5')", "select CENA from TOWARY where ID=3",
     "12.5"},
    {u"insert into TOWARY (ID,CENA) values (3,'1\u00A0234,56')",
     "select CENA from TOWARY where ID=3", "1234.56"},
    {u"insert into TOWARY (ID,CENA) values (3,12.34567)", "select CENA from TOWARY where ID=3",
     "12.3457"},
    {u"insert into TOWARY (ID,CENA) values (3,922337203685477.5807)",
     "select cast(CENA as text) from TOWARY where ID=3", "922337203685477.5807"},
    {u"insert into TOWARY (ID,DATA) values (3,'2024-05-17')", "select DATA from TOWARY where ID=3",
     "2024-05-17 00:00:00"},
    {u"insert into TOWARY (ID,DATA) values (3,'17 maja 2024')",
     "select DATA from TOWARY where ID=3", "2024-05-17 00:00:00"},
    {u"insert into TOWARY (ID,DATA) values (3,{d '2024-05-17'})",
     "select DATA from TOWARY where ID=3", "2024-05-17 00:00:00"},
    {u"insert into TOWARY (ID,DATA) values (3,45429.5)", "select DATA from TOWARY where ID=3",
     "2024-05-17 12:00:00"},
    {u"insert into TOWARY (ID,DATA) values (3,NOW())", "select DATA from TOWARY where ID=3",
     "2024-05-17 12:00:00"},
    {u"insert into TOWARY (ID,DATA) values (3,date())", "select DATA from TOWARY where ID=3",
     "2024-05-17 00:00:00"},
    {u"insert into TOWARY (ID,DATA) values (3,Now()+1)", "select DATA from TOWARY where ID=3",
     "2024-05-18 12:00:00"},
    {u"insert into TOWARY (ID,JEST) values (3,1)", "select JEST from TOWARY where ID=3", "-1"},
    {u"insert into TOWARY (ID,JEST) values (3,'Prawda')", "select JEST from TOWARY where ID=3",
     "-1"},
    {u"insert into TOWARY (ID,JEST) values (3,false)", "select JEST from TOWARY where ID=3", "0"},
    {u"insert into TOWARY (ID,JEST) values (3,2>1)", "select JEST from TOWARY where ID=3", "-1"},
    {u"insert into TOWARY (ID,ILE) values (3,2.5)", "select ILE from TOWARY where ID=3", "2"},
    {u"insert into TOWARY (ID,ILE) values (3,'3,5')", "select ILE from TOWARY where ID=3", "4"},
    {u"insert into TOWARY (ID,WAGA) values (3,'0,5')", "select WAGA from TOWARY where ID=3", "0.5"},
    {u"insert into TOWARY (ID,NAZWA) values (3,1.5)", "select NAZWA from TOWARY where ID=3", "1,5"},
    {u"insert into TOWARY (ID,NAZWA) values (3,#05-17-2024#)",
     "select NAZWA from TOWARY where ID=3", "2024-05-17"},
    {u"insert into TOWARY (ID,NAZWA) values (3,'')", "select length(NAZWA) from TOWARY where ID=3",
     "0"},
    {u"insert into TOWARY (ID,NAZWA) values (3,null)", "select NAZWA from TOWARY where ID=3",
     "NULL"},
    {u"insert into TOWARY (ID,NAZWA) select X,Y from INNA where X>7",
     "select ID,NAZWA from TOWARY where ID>2 order by 1", "8|osiem;9|dziewięć"},
    {u"insert into TOWARY (ID,NAZWA,CENA) select top 1 X+10, Y & '!', X/2 as c from INNA"
     u" order by X desc",
     "select ID,NAZWA,CENA from TOWARY where ID>2", "19|dziewięć!|4.5"},
    {u"insert into INNA select * from INNA where X=7", "select count(*) from INNA", "4"},
    {u"insert into INNA select ID,NAZWA from DROGIE", "select count(*) from INNA", "3"},

    // Update.
    {u"UPDATE [TOWARY] SET [CENA]=0  where [CENA] is null", "select CENA from TOWARY order by ID",
     "12.5;0"},
    {u"UPDATE [TOWARY] SET [OPIS]='' where [OPIS] is null",
     "select quote(OPIS) from TOWARY order by ID", "'a*b';''"},
    {u"UPDATE [TOWARY] SET [DATA]=#01-01-1990#  where [DATA] is null",
     "select DATA from TOWARY order by ID", "2024-05-17 10:00:00;1990-01-01 00:00:00"},
    {u"update TOWARY set CENA=CENA*3+0.1, ILE=-ILE where ID=1", "select CENA,ILE from TOWARY",
     "37.6|-5;NULL|NULL"},
    {u"update TOWARY set NAZWA='x' & CENA & null & 'y'", "select NAZWA from TOWARY order by ID",
     "x12,5y;xy"},
    {u"update TOWARY set NAZWA=NAZWA+'!'", "select NAZWA from TOWARY order by ID", "śruba!;nit!"},
    {u"update TOWARY set NAZWA=OPIS+'!'", "select NAZWA from TOWARY order by ID", "a*b!;NULL"},
    {u"update TOWARY set OPIS=DATA", "select OPIS from TOWARY order by ID",
     "2024-05-17 10:00:00;NULL"},
    {u"update TOWARY set OPIS=JEST", "select OPIS from TOWARY order by ID", "-1;0"},
    {u"update TOWARY set DATA=DATA-1, WAGA=DATA-#05-17-2024# where ID=1",
     "select DATA,round(WAGA,6) from TOWARY where ID=1", "2024-05-16 10:00:00|0.416667"},
    {u"update TOWARY set WAGA=7 \\ 2 + 7 mod 4 + 2^3 where TOWARY.ID=1",
     "select WAGA from TOWARY where ID=1", "14.0"},
    {u"update TOWARY set ILE=(ID+1)*(2-ID)", "select ILE from TOWARY order by ID", "2;0"},
    {u"update TOWARY set ID=ID+10 where NAZWA like '?RU*'", "select ID from TOWARY order by 1",
     "2;11"},
    {u"update TOWARY set ILE=1 where NAZWA not like '*ru*'", "select ILE from TOWARY order by ID",
     "5;1"},
    {u"update TOWARY set ILE=9 where CENA between 12 and 13 and ID in (1,3) and not JEST=False",
     "select ILE from TOWARY order by ID", "9;NULL"},
    {u"update TOWARY set ILE=9 where DATA=#05-17-2024 10:00:00# or DATA>#05-18-2024#",
     "select ILE from TOWARY order by ID", "9;NULL"},
    {u"update TOWARY set ILE=9 where Jest", "select ILE from TOWARY order by ID", "9;NULL"},
    {u"update TOWARY set ILE=9 where OPIS like 'a[*]b' and CENA*2=25",
     "select ILE from TOWARY order by ID", "9;NULL"},
    {u"update TOWARY set JEST=(CENA is null)", "select JEST from TOWARY order by ID", "0;-1"},

    // Delete.
    {u"delete from TOWARY", "select count(*) from TOWARY", "0"},
    {u"delete * from [TOWARY] where ID=1;", "select ID from TOWARY", "2"},
    {u"DELETE FROM INNA WHERE y LIKE '*ie*'", "select X from INNA", ""},

    // Tables.
    {u"create table A (x long, y text(5), z text)", "select name,type from pragma_table_info('A')",
     "x|INTEGER;y|VARCHAR(5);z|VARCHAR(255)"},
    {u"create table [Błędy wklejania] ([a b] memo not null, c currency default 1.5)",
     "select name,type,\"notnull\",dflt_value from pragma_table_info('Błędy wklejania')",
     "a b|MEMO|1|NULL;c|CURRENCY|0|1.5"},
    {u"create table A (id counter, x long, constraint pk primary key (id))",
     "select name,pk from pragma_table_info('A')", "id|1;x|0"},
    {u"create table A (id long primary key, x long unique)",
     "select name,\"unique\",origin from pragma_index_list('A') order by seq",
     "A.x|1|c;sqlite_autoindex_A_1|1|pk"},
    {u"create table A (x long, y long, constraint klucz primary key (y, x))",
     "select name,pk,\"notnull\" from pragma_table_info('A')", "x|2|1;y|1|1"},
    {u"create table A (id counter, x long, primary key (x), constraint u unique (id, x))",
     "select name from pragma_index_list('A') order by name", "A.PrimaryKey;A.u"},
    {u"create table dbo.A (x long constraint k primary key, y text(5) with compression null)",
     "select pk from pragma_table_info('A')", "1;0"},
    {u"create table A (id autoincrement, d datetime default Now(), b yesno default True)",
     "select type,dflt_value from pragma_table_info('A') where cid>0",
     "DATETIME|/*Now()*/ datetime('now','localtime');BIT|/*True*/ -1"},
    {u"drop table inna", "select count(*) from sqlite_schema where name='INNA'", "0"},
    {u"drop table dbo.[TOWARY]", "select count(*) from sqlite_schema where name='TOWARY'", "0"},

    // Indexes.
    {u"create index i on TOWARY (NAZWA, CENA desc)",
     "select sql from sqlite_schema where type='index'",
     "CREATE INDEX \"TOWARY.i\" ON \"TOWARY\"(\"NAZWA\",\"CENA\" DESC)"},
    {u"create unique index [po nazwie] on dbo.TOWARY ([NAZWA] asc)",
     "select name,\"unique\" from pragma_index_list('TOWARY')", "TOWARY.po nazwie|1"},

    // Columns.
    {u"alter table dbo.[TOWARY] ADD nowa text(255)",
     "select name,type,(select nowa from TOWARY)"
     " from pragma_table_info('TOWARY') order by cid desc limit 1",
     "nowa|VARCHAR(255)|NULL"},
    {u"alter table INNA add column z currency default 5",
     "select name,type,\"notnull\",dflt_value,(select max(z) from INNA) from "
     "pragma_table_info('INNA')"
     " where name='z'",
     "z|CURRENCY|0|5|NULL"},
    {u"alter table INNA add z long unique", "select name from pragma_index_list('INNA')", "INNA.z"},
    {u"alter table INNA drop COLUMN x ", "select name from pragma_table_info('INNA')", "Y"},
    {u"alter table dbo.[INNA] drop [Y]", "select name from pragma_table_info('INNA')", "X"},
    {u"alter table TOWARY alter column NAZWA text(200)",
     "select type,(select group_concat(NAZWA) from TOWARY) from pragma_table_info('TOWARY')"
     " where name='NAZWA'",
     "VARCHAR(200)|śruba,nit"},
    {u"alter table TOWARY alter NAZWA text(5)",
     "select type from pragma_table_info('TOWARY') where name='NAZWA'", "VARCHAR(5)"},
    {u"alter table TOWARY alter column CENA text(20)",
     "select name,type,(select group_concat(CENA) from TOWARY) from pragma_table_info('TOWARY')"
     " where cid=2",
     "CENA|VARCHAR(20)|12,5"},
    {u"alter table TOWARY alter column ILE double default 1.5",
     "select type,dflt_value,(select group_concat(ILE) from TOWARY) from"
     " pragma_table_info('TOWARY') where name='ILE'",
     "DOUBLE|1.5|5.0"},
};

using JetStatements = DaoTest;

std::string shown(const std::vector<std::vector<std::string>>& rows) {
    std::string text;
    for (const auto& row : rows) {
        text += text.empty() ? "" : ";";
        for (std::size_t i = 0; i < row.size(); ++i) {
            text += (i > 0 ? "|" : "") + row[i];
        }
    }
    return text;
}

TEST_F(JetStatements, WhatStandsAfterEach) {
    for (const Good& good : good_statements) {
        std::filesystem::remove(path_);
        write(table_of_the_cases);
        const auto failure = caught([&] { open()->Execute(good.statement); });
        EXPECT_EQ(failure.number, 0) << to_utf8(good.statement) << "\n" << failure.text;
        OtherProgram other(path_);
        EXPECT_EQ(shown(other.rows(good.query)), good.result) << to_utf8(good.statement);
        EXPECT_EQ(other.value("pragma integrity_check"), "ok") << to_utf8(good.statement);
    }
}

struct Bad {
    StringView statement;
    Long number;
    std::string text;  // a part of the failure's
};

const Bad bad_statements[] = {
    {u"", 3129, "column 1, its end"},
    {u"selekt * from TOWARY", 3129, "column 1, at selekt"},
    {u"begin transaction", 3129, "at begin"},
    {u"pragma writable_schema=on", 3129, "at pragma"},
    {u"vacuum", 3129, "at vacuum"},
    {u"attach 'x' as y", 3129, "at attach"},
    {u"select * from TOWARY", 3065, "TOWARY"},
    {u"select top 1 NAZWA from NIE_MA", 3065, ""},
    {u"select", 3075, "its end"},

    {u"insert TOWARY values (1)", 3134, "column 8, at TOWARY: into is expected"},
    {u"insert into TOWARY", 3134, "its end: values or select"},
    {u"insert into TOWARY (ID values (1)", 3134, "column 24, at values: ) is expected"},
    {u"insert into TOWARY values 1", 3134, "at 1: ( is expected"},
    {u"insert into TOWARY (ID) values (1", 3134, "its end: ) is expected"},
    {u"insert into TOWARY (ID) values (3) values (4)", 3075, "at values: the end"},
    {u"insert into TOWARY (ID) values (1,2)", 3346, "TOWARY"},
    {u"insert into TOWARY values (1,2)", 3346, "TOWARY"},
    {u"insert into INNA select X from INNA", 3346, "INNA"},
    {u"insert into INNA select * from TOWARY", 3346, "INNA"},
    {u"insert into NIE_MA values (1)", 3078, "NIE_MA"},
    {u"insert into DROGIE (ID) values (3)", 3078, "DROGIE"},
    {u"insert into INNA (X) select X from NIE_MA", 3078, "NIE_MA"},
    {u"insert into TOWARY (NIE_MA) values (1)", 3127, "NIE_MA"},
    {u"insert into TOWARY (ID) values (NIE_MA)", 3061, "NIE_MA"},
    {u"insert into TOWARY (ID) values (1)", 3022, "TOWARY"},
    {u"insert into TOWARY (ID,NAZWA) values (3,'12345678901')", 3163, "11 > 10"},
    {u"insert into TOWARY (ID,NAZWA) select 3,Y & Y from INNA", 3163, ">"},
    {u"insert into TOWARY (ID,CENA) values (3,'dwa')", 3421, "dwa"},
    {u"insert into TOWARY (ID,CENA) values (3,'')", 3421, ""},
    {u"insert into TOWARY (ID,CENA) values (3,922337203685477.5808)", 3421, ""},
    {u"insert into TOWARY (ID,CENA) select X,Y from INNA", 3421, "siedem"},
    {u"insert into TOWARY (ID,ILE) values (3,32768)", 3421, "32768"},
    {u"insert into TOWARY (ID,ILE) values (3,1e30)", 3421, ""},
    {u"insert into TOWARY (ID,DATA) values (3,'2024-13-17')", 3421, "2024-13-17"},
    {u"insert into TOWARY (ID,DATA) values (3,#13-13-2024#)", 3075, "this is no date"},
    {u"insert into TOWARY (ID,JEST) values (3,'może')", 3421, "może"},
    {u"insert into TOWARY (ID,WAGA) values (3,1/0)", 11, ""},
    {u"insert into TOWARY (ID,WAGA) values (3,'a'*2)", 3464, "a"},
    {u"insert into TOWARY (ID) values (fn(1))", 3085, "at fn: this function is not known"},

    {u"update TOWARY NAZWA='x'", 3144, "at NAZWA: set is expected"},
    {u"update TOWARY set", 3144, "its end: a name is expected"},
    {u"update TOWARY set NAZWA 'x'", 3144, "= is expected"},
    {u"update TOWARY set NAZWA='x', where ID=1", 3144, "at where: a name"},
    {u"update TOWARY set NAZWA='x' where", 3075, "its end: a column or a value"},
    {u"update TOWARY set NAZWA='x", 3075, "the text has no closing quote"},
    {u"update TOWARY set NAZWA='x' ; drop table TOWARY", 3075, "at drop: the end"},
    {u"update NIE_MA set X=1", 3078, "NIE_MA"},
    {u"update DROGIE set CENA=1", 3078, "DROGIE"},
    {u"update TOWARY set NIE_MA=1", 3061, "NIE_MA"},
    {u"update TOWARY set NAZWA='x' where NIE_MA=1", 3061, "NIE_MA"},
    {u"update TOWARY set NAZWA='x' where INNA.X=1", 3061, "INNA.X"},
    {u"update TOWARY set CENA=NAZWA", 3421, "śruba"},
    {u"update TOWARY set NAZWA=NAZWA & '1234567890'", 3163, "15 > 10"},
    {u"update TOWARY set ILE=NAZWA*2", 3464, "śruba"},
    {u"update TOWARY set ILE=ID/(ID-2)", 11, ""},
    {u"update kvarta16_database set value='x'", 3078, "kvarta16_database"},
    {u"update sqlite_schema set sql=''", 3078, "sqlite_schema"},

    {u"delete TOWARY", 3075, "from is expected"},
    {u"delete from NIE_MA", 3078, "NIE_MA"},
    {u"delete from DROGIE", 3078, "DROGIE"},
    {u"delete from TOWARY where NIE_MA is null", 3061, "NIE_MA"},

    {u"create", 3291, "table or index is expected"},
    {u"create view x as select 1", 3291, "at view: table or index"},
    {u"create table", 3290, "a name is expected"},
    {u"create table A", 3290, "( is expected"},
    {u"create table A (x long", 3290, ") is expected"},
    {u"create table A ()", 3292, "a name is expected"},
    {u"create table A (x)", 3292, "at ): a type is expected"},
    {u"create table A (x zzz)", 3292, "at zzz: a type is expected"},
    {u"create table A (x [long])", 3292, "a type is expected"},
    {u"create table A (x text(0))", 3292, "no type with such a length"},
    {u"create table A (x text(256))", 3292, "no type with such a length"},
    {u"create table A (x text(a))", 3292, "a length is expected"},
    {u"create table A (x text(1.5))", 3292, "a length is expected"},
    {u"create table A (x long(5))", 3292, "no type with such a length"},
    {u"create table A (x long not)", 3292, "null is expected"},
    {u"create table A (x long primary)", 3292, "key is expected"},
    {u"create table A (x long default)", 3075, "a column or a value"},
    {u"create table A (x long default y)", 3061, "y"},
    {u"create table A (x long default 'a')", 3421, "a"},
    {StringView(u"create table A (x memo default 'a\0b')", 37), 3421, "code 0"},
    {u"create table A (x long, constraint k foreign key (x))", 3290, "primary key or unique"},
    {u"create table A (x long, primary key (y))", 3409, "y"},
    {u"create table A (x long, X text)", 3191, "X"},
    {u"create table A (x counter, y counter)", 3801, "A"},
    {u"create table A (x long primary key, y long primary key)", 3283, "A"},
    {u"create table A (x long, unique (y))", 3409, "y"},
    {u"create table towary (x long)", 3010, "towary"},
    {u"create table drogie (x long)", 3010, "drogie"},
    {u"create table kvarta16_anew (x long)", 3125, "kvarta16_anew"},
    {u"create table [a.b] (x long)", 3125, "a.b"},
    {u"create table A ([a!b] long)", 3125, "a!b"},
    {u"create table A (column text(5))", 3292, "column"},
    {u"alter table towary drop column column", 3293, "a name is expected"},
    {u"alter table towary drop column Constraint", 3293, "a name is expected"},

    {u"create index on TOWARY (ID)", 3291, "on is expected"},
    {u"create index i TOWARY (ID)", 3291, "on is expected"},
    {u"create index i on TOWARY", 3291, "( is expected"},
    {u"create index i on TOWARY (ID+1)", 3291, ") is expected"},
    {u"create unique table A (x long)", 3291, "table or index"},
    {u"create index i on NIE_MA (ID)", 3078, "NIE_MA"},
    {u"create index i on TOWARY (NIE_MA)", 3409, "NIE_MA"},
    {u"create unique index i on INNA (Z)", 3409, "Z"},

    {u"drop", 3295, "table or index"},
    {u"drop view DROGIE", 3295, "at view"},
    {u"drop table", 3295, "a name is expected"},
    {u"drop table NIE_MA", 3376, "NIE_MA"},
    {u"drop table DROGIE", 3376, "DROGIE"},
    {u"drop table kvarta16_database", 3376, "kvarta16_database"},
    {u"drop index i", 3295, "on is expected"},
    {u"drop index i on TOWARY", 3372, "i"},
    {u"drop index i on NIE_MA", 3078, "NIE_MA"},

    {u"alter TOWARY add x long", 3293, "table is expected"},
    {u"alter table TOWARY", 3293, "add, drop or alter is expected"},
    {u"alter table TOWARY rename to A", 3293, "at rename"},
    {u"alter table TOWARY add", 3292, "a name is expected"},
    {u"alter table TOWARY add x", 3292, "a type is expected"},
    {u"alter table TOWARY add x counter", 3293, "x"},
    {u"alter table TOWARY add nazwa long", 3380, "nazwa"},
    {u"alter table NIE_MA add x long", 3078, "NIE_MA"},
    {u"alter table TOWARY add x long primary key", 3283, "TOWARY"},
    {u"alter table TOWARY add constraint k unique (ID)", 3293, "at constraint: a column"},
    {u"alter table TOWARY drop ccxxdfredvvcxds__ddfr ", 3381, "ccxxdfredvvcxds__ddfr"},
    {u"alter table TOWARY drop a b", 3075, "at b: the end"},
    {u"alter table TOWARY drop ID", 3280, "ID"},
    {u"alter table NIE_MA drop x", 3078, "NIE_MA"},
    {u"alter table TOWARY alter NIE_MA text(5)", 3381, "NIE_MA"},
    {u"alter table TOWARY alter NAZWA text(4)", 3163, "NAZWA"},
    {u"alter table TOWARY alter NAZWA long", 3421, "śruba"},
    {u"alter table TOWARY alter CENA counter", 3293, "CENA"},
    {u"alter table TOWARY alter CENA long primary key", 3293, "CENA"},
};

TEST_F(JetStatements, WhatIsRefusedChangesNothing) {
    write(std::string(table_of_the_cases) + ";create table kvarta16_database (name, value)");
    const auto db = open();
    const auto content = [this] {
        OtherProgram other(path_);
        return shown(other.rows("select type,name,sql from sqlite_schema")) +
               shown(other.rows("select * from TOWARY")) + shown(other.rows("select * from INNA"));
    };
    const std::string before = content();
    for (const Bad& bad : bad_statements) {
        const auto failure = caught([&] { db->Execute(bad.statement); });
        EXPECT_EQ(failure.number, bad.number) << to_utf8(bad.statement) << "\n" << failure.text;
        EXPECT_NE(failure.text.find(bad.text), std::string::npos) << to_utf8(bad.statement) << "\n"
                                                                  << failure.text;
        ASSERT_EQ(content(), before) << to_utf8(bad.statement);
    }
}

TEST_F(JetStatements, RulesOfTheColumnsRefuse) {
    const auto db = create();
    db->Execute(u"create table t (id long not null, a text(3) unique, b long)");
    db->Execute(u"insert into t values (1, 'x', 1)");
    EXPECT_EQ(caught([&] { db->Execute(u"insert into t (a) values ('y')"); }).number, 3314);
    EXPECT_EQ(caught([&] { db->Execute(u"update t set id=null"); }).number, 3314);
    EXPECT_EQ(caught([&] { db->Execute(u"insert into t (id,a) values (2,'x')"); }).number, 3022);
    db->Execute(u"insert into t (id) values (2)");
    db->Execute(u"insert into t (id) values (3)");
    EXPECT_EQ(caught([&] { db->Execute(u"update t set a='z'"); }).number, 3022);
    EXPECT_EQ(value("select group_concat(coalesce(a,'-')) from (select a from t order by id)"),
              "x,-,-");
    EXPECT_EQ(caught([&] { db->Execute(u"create unique index u on t (b)"); }).number, 0);
    db->Execute(u"drop index u on t");
    db->Execute(u"update t set b=1");
    EXPECT_EQ(caught([&] { db->Execute(u"create unique index u on t (b)"); }).number, 3022);
}

// The names of indexes are those of their tables.
TEST_F(JetStatements, IndexNamesAreOfTheirTables) {
    const auto db = create();
    for (const StringView name : {u"a", u"b"}) {
        db->Execute(u"create table " + String(name) + u" (x long, y long)");
        db->Execute(u"create index i on " + String(name) + u" (x)");
    }
    EXPECT_EQ(caught([&] { db->Execute(u"create index I on a (y)"); }).number, 3284);
    table(*db, u"a")->PutName(u"c");
    db->Execute(u"create table a (x long)");
    db->Execute(u"create index i on a (x)");
    db->Execute(u"drop index i on c");
    EXPECT_EQ(caught([&] { db->Execute(u"drop index i on c"); }).number, 3372);
    db->Execute(u"create table i (x long)");
    db->Execute(u"drop index I on a");
    db->Execute(u"drop index i on b");
    EXPECT_EQ(value("select count(*) from sqlite_schema where type='index'"), "0");
    write("create index po_x on b(x)");
    EXPECT_EQ(caught([&] { db->Execute(u"create index PO_X on b (y)"); }).number, 3284);
    db->Execute(u"drop index po_x on b");
}

TEST_F(JetStatements, TheKeyOfATableStays) {
    const auto db = create();
    db->Execute(u"create table t (x long constraint klucz primary key, y long)");
    EXPECT_EQ(caught([&] { db->Execute(u"drop index KLUCZ on t"); }).number, 3281);
    EXPECT_EQ(caught([&] { db->Execute(u"create index klucz on t (y)"); }).number, 3284);
    EXPECT_EQ(caught([&] { db->Execute(u"alter table t drop x"); }).number, 3280);
    db->Execute(u"insert into t values (1, 1)");
    EXPECT_EQ(caught([&] { db->Execute(u"insert into t (y) values (1)"); }).number, 3314);
    EXPECT_EQ(caught([&] { db->Execute(u"insert into t values (1, 2)"); }).number, 3022);
}

TEST_F(JetStatements, AColumnThatAnIndexNeedsStays) {
    const auto db = create();
    db->Execute(u"create table T (a text(10), F text(10))");
    db->Execute(u"create index indF on T (F)");
    db->Execute(u"create index inny on T (a, F)");
    db->Execute(u"insert into T values ('x', 'y')");
    db->Execute(u"drop INDEX indF ON dbo.[T]");
    const Caught failure = caught([&] { db->Execute(u"alter table dbo.[T] drop COLUMN F"); });
    EXPECT_EQ(failure.number, 3280);
    EXPECT_NE(failure.text.find(": F"), std::string::npos) << failure.text;
    EXPECT_EQ(caught([&] { db->Execute(u"alter table dbo.[T] ADD F text(255)"); }).number, 3380);
    EXPECT_EQ(value("select a||F from T"), "xy");
    db->Execute(u"drop index inny on T");
    db->Execute(u"alter table dbo.[T] drop COLUMN F");
    EXPECT_EQ(caught([&] { db->Execute(u"alter table T drop a"); }).number, 3293);
}

// Rows that are there have no value in a column that is added; those that come need one.
TEST_F(JetStatements, ARequiredColumnIsAdded) {
    const auto db = create();
    db->Execute(u"create table t (id long)");
    db->Execute(u"insert into t values (1)");
    db->Execute(u"alter table t add a long not null");
    db->Execute(u"alter table t add b long not null default 5");
    EXPECT_EQ(value("select count(*) from t where a is null and b is null"), "1");
    EXPECT_EQ(caught([&] { db->Execute(u"insert into t (id) values (2)"); }).number, 3314);
    EXPECT_EQ(caught([&] { db->Execute(u"update t set a=null"); }).number, 3314);
    db->Execute(u"insert into t (id,a) values (2,3)");
    field(*db, u"t", u"a")->PutDefaultValue(Long{0});
    db->Execute(u"update t set a=0 where a is null");
    EXPECT_EQ(value("select group_concat(a||coalesce(b,'-')) from t"), "0-,35");
}

TEST_F(JetStatements, ABrokenViewIsInNobodysWay) {
    write(
        "create table t (id INTEGER, a TEXT); create view v as select * from nie_ma;"
        "create view w as select a from t; insert into t values (1, 'x')");
    const auto db = open();
    table(*db, u"t")->PutName(u"T");
    EXPECT_EQ(value("select a from w"), "x");
    EXPECT_EQ(table_names(*open()), Names({"T"}));
    db->Execute(u"alter table T alter column id text(5)");
    EXPECT_EQ(value("select a from w"), "x");
}

// The eight statements by which a column is widened.
TEST_F(JetStatements, AColumnIsWidened) {
    write(
        "create table TOWARY (A VARCHAR(5) NOT NULL, F VARCHAR(10) DEFAULT 'x' CHECK(F<>''));"
        "create index indF on TOWARY(F);"
        "insert into TOWARY values ('1','raz'),('2',NULL),('3','trzy')");
    const auto db = open();
    for (const StringView statement : {
             u"alter table dbo.[TOWARY] drop COLUMN ccxxdfredvvcxds__ddfr ",
             u"alter table dbo.[TOWARY] ADD ccxxdfredvvcxds__ddfr text(255)",
             u"UPDATE dbo.[TOWARY] SET ccxxdfredvvcxds__ddfr=[F]",
             u"drop INDEX indF ON dbo.[TOWARY]",
             u"alter table dbo.[TOWARY] drop COLUMN F",
             u"alter table dbo.[TOWARY] ADD F text(255)",
             u"UPDATE dbo.[TOWARY] SET F=ccxxdfredvvcxds__ddfr",
             u"alter table dbo.[TOWARY] drop COLUMN ccxxdfredvvcxds__ddfr",
         }) {
        const auto failure = caught([&] { db->Execute(statement); });
        EXPECT_EQ(failure.number, statement.ends_with(u' ') ? 3381 : 0) << failure.text;
    }
    EXPECT_EQ(value("select group_concat(A||coalesce(F,'-')) from TOWARY"), "1raz,2-,3trzy");
    EXPECT_EQ(value("select sql from sqlite_schema"),
              "CREATE TABLE TOWARY (A VARCHAR(5) NOT NULL, \"F\" VARCHAR(255)"
              " CHECK(length(\"F\")<=255))");
}

TEST_F(JetStatements, AChangedTypeKeepsTheRestOfTheTable) {
    write(
        "create table t (id INTEGER PRIMARY KEY AUTOINCREMENT, /* kwota */ x VARCHAR(20)"
        " DEFAULT '7' CHECK(length(x)>0), y TEXT COLLATE NOCASE UNIQUE) ;"
        "create index i on t(x, y); create table log (n);"
        "create trigger r after insert on t begin insert into log values (new.x); end;"
        "create view v as select x from t;"
        "insert into t (x, y) values ('12,5', 'a'), (null, 'b')");
    const auto db = open();
    db->Execute(u"alter table t alter column x currency");
    db->Execute(u"insert into t (y) values ('c')");
    EXPECT_EQ(value("select group_concat(id||':'||coalesce(x,'-')) from t"), "1:12.5,2:-,3:7");
    EXPECT_EQ(value("select group_concat(x) from v"), "12.5,7");
    EXPECT_EQ(value("select group_concat(n) from log"), "12,5,7");
    EXPECT_EQ(value("select sql from sqlite_schema where name='t'"),
              "CREATE TABLE \"t\" (id INTEGER PRIMARY KEY AUTOINCREMENT, /* kwota */ x CURRENCY"
              " DEFAULT (/*\"7\"*/ 7), y TEXT COLLATE NOCASE UNIQUE)");
    EXPECT_EQ(value("select count(*) from sqlite_schema where name in ('i','r','v')"), "3");
    EXPECT_EQ(value("pragma integrity_check"), "ok");
    // A value that cannot be: nothing is changed.
    write("insert into t (y) values ('d'); update t set x='abc' where y='d'");
    EXPECT_EQ(caught([&] { db->Execute(u"alter table t alter column x long"); }).number, 3421);
    EXPECT_EQ(value("select count(*) from sqlite_schema where name like 'kvarta16%'"), "0");
    EXPECT_EQ(value("select group_concat(id||':'||coalesce(x,'-')) from t"),
              "1:12.5,2:-,3:7,4:abc");
}

TEST_F(JetStatements, ComplexOnesAreRefusedAndNoOverflowHappens) {
    write(table_of_the_cases);
    const auto db = open();
    const auto run = [&](const String& condition) {
        return caught([&] { db->Execute(u"delete from INNA where " + condition); }).number;
    };
    String sum = u"X=1";
    for (int i = 0; i < 100'000; ++i) {
        sum += u"+1";
    }
    EXPECT_EQ(run(sum), 3360);
    EXPECT_EQ(run(String(100'000, u'(') + u"X=1"), 3075);
    String minus = u"X=";
    for (int i = 0; i < 100'000; ++i) {
        minus += u"-(";
    }
    EXPECT_EQ(run(minus), 3075);
    String many = u"X=1";
    for (int i = 0; i < 5'000; ++i) {
        many += u" or X=1";
    }
    EXPECT_EQ(run(many), 3360);
    EXPECT_EQ(value("select count(*) from INNA"), "3");
}

// A statement cut off anywhere, and with any one character taken out, is refused or understood.
TEST_F(JetStatements, DamagedStatements) {
    write(table_of_the_cases);
    const auto connection = sqlite::connect(path_);
    const auto db = std::dynamic_pointer_cast<dao::Database>(connection);
    int refused = 0;
    for (const Good& good : good_statements) {
        for (std::size_t i = 0; i < good.statement.size(); ++i) {
            const String cut(good.statement.substr(0, i));
            for (const String& statement : {cut, cut + String(good.statement.substr(i + 1))}) {
                connection->BeginTrans();
                const auto failure = caught([&] { db->Execute(statement); });
                connection->RollbackTrans();
                const bool known = failure.number == 0 || failure.number == 11 ||
                                   (failure.number > 3000 && failure.number < 4000);
                ASSERT_TRUE(known) << to_utf8(statement) << "\n" << failure.text;
                refused += failure.number != 0 ? 1 : 0;
            }
        }
    }
    EXPECT_GT(refused, 3000);
    EXPECT_EQ(value("select count(*) from INNA"), "3");
    EXPECT_EQ(value("pragma integrity_check"), "ok");
}

}  // namespace
}  // namespace kvarta16
