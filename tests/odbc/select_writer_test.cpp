// The statements of the two dialects as each kind of server gets them.
#include <gtest/gtest.h>
#include <support/fake_platform.h>
#include <support/sqlite_files.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/odbc/odbc_errors.h>
#include <kvarta16/platform/odbc/select_writer.h>
#include <kvarta16/platform/sql/parser.h>

namespace kvarta16::odbc {
namespace {

using testing_support::caught;
using testing_support::FakePlatform;

// One table "T" with a column of each kind.
class OneTable final : public Schema {
  public:
    std::shared_ptr<const Table> find_table(const std::vector<String>& names) override {
        if (names.back() != u"T") {
            return nullptr;
        }
        auto table = std::make_shared<Table>();
        table->name = u"T";
        table->sql = "\"T\"";
        const std::pair<const char16_t*, ColumnKind> columns[] = {
            {u"n", ColumnKind::Whole},
            {u"d", ColumnKind::Date},
            {u"t", ColumnKind::Truth},
            {u"s", ColumnKind::Text},
        };
        for (const auto& [name, kind] : columns) {
            Column column;
            column.name = name;
            column.sql = column.selected = quoted_name(to_utf8(name), "\"");
            column.kind = kind;
            column.is_truth_type = kind == ColumnKind::Truth;
            table->columns.push_back(column);
        }
        table->key.push_back({"mark", "mark=?"});
        return table;
    }
};

std::string written(StringView source, std::string_view product) {
    OneTable schema;
    return write_query(sql::parse_select(source).tree, schema, dialect_of(product)).sql;
}
// What stands behind the where.
std::string condition(const char16_t* source, std::string_view product) {
    const std::string sql = written(u"select [n] from T where " + String(source), product);
    const std::string before = "select \"n\",mark from \"T\" where ";
    EXPECT_TRUE(sql.starts_with(before)) << sql;
    return sql.substr(before.size());
}

TEST(NoServerWriter, TopBecomesWhatTheServerHas) {
    EXPECT_EQ(written(u"select top 1 [N],[s] from [T];", "PostgreSQL"),
              "select \"n\",\"s\",mark from \"T\" limit 1");
    EXPECT_EQ(written(u"select top 1 [n] from T order by d desc, n", "MariaDB"),
              "select \"n\",mark from \"T\" order by \"d\" desc,\"n\" limit 1");
    OneTable schema;
    const Query query = write_query(sql::parse_select(u"select top 3 n from a.b.T").tree, schema,
                                    dialect_of("Some other server"));
    EXPECT_EQ(query.sql, "select \"n\",mark from \"T\"");
    EXPECT_EQ(query.most_rows, 3) << "the reading stops there";
}

TEST(NoServerWriter, DatesInBothDialects) {
    EXPECT_EQ(condition(u"[d]>={d '2001-12-31'} and [d]<{d '2002-01-01'} ", "PostgreSQL"),
              "((\"d\">={ts '2001-12-31 00:00:00'}) and (\"d\"<{ts '2002-01-01 00:00:00'}))");
    EXPECT_EQ(
        condition(u"([d] Between #12-31-2001 00:00:00# and #12-31-2001 23:59:59#) ", "MariaDB"),
        "((\"d\">={ts '2001-12-31 00:00:00'}) and (\"d\"<={ts '2001-12-31 "
        "23:59:59.999999'}))");
    EXPECT_EQ(condition(u"d=#12-31-2001#", "other"),
              "(\"d\">={ts '2001-12-31 00:00:00'} and \"d\"<={ts '2001-12-31 00:00:00.999999'})");
    EXPECT_EQ(condition(u"d>{ts '2001-12-31 10:00:00.5'}", "other"),
              "(\"d\">{ts '2001-12-31 10:00:00.500'})");
    const std::string moment =
        "strftime('%Y-%m-%d %H:%M:%f',case typeof(\"d\") when 'text' then \"d\" else "
        "\"d\"+2415018.5 end)";
    EXPECT_EQ(condition(u"d<{d '2001-12-31'}", "SQLite"),
              "(" + moment + "<'2001-12-31 00:00:00.000')");
    EXPECT_EQ(condition(u"s<{d '2001-12-31'}", "PostgreSQL"),
              "(cast(\"s\" as timestamp)<{ts '2001-12-31 00:00:00'})");
    EXPECT_EQ(condition(u"n<{d '2001-12-31'}", "MariaDB"), "(\"n\"<37256)");
    FakePlatform fake;
    fake.clock.now = Date{37256.25};
    EXPECT_EQ(condition(u"Now()>d", "other"), "(\"d\"<{ts '2001-12-31 06:00:00'})");
    EXPECT_EQ(condition(u"d<Date()", "other"), "(\"d\"<{ts '2001-12-31 00:00:00'})");
}

TEST(NoServerWriter, TruthValues) {
    EXPECT_EQ(condition(u"t=-1", "PostgreSQL"), "(\"t\"=true)");
    EXPECT_EQ(condition(u"t<>True", "PostgreSQL"), "(\"t\"=false)");
    EXPECT_EQ(condition(u"not t", "PostgreSQL"), "(not (\"t\"=true))");
    EXPECT_EQ(condition(u"not not t", "PostgreSQL"), "(\"t\"=true)");
    EXPECT_EQ(condition(u"t=-1", "MariaDB"), "(\"t\"<>0)");
    EXPECT_EQ(condition(u"t=0", "SQLite"), "(\"t\"=0)");
    EXPECT_EQ(condition(u"n=-1", "PostgreSQL"), "(\"n\"=-1)");
}

TEST(NoServerWriter, TextsAreParameters) {
    OneTable schema;
    const Query query =
        write_query(sql::parse_select(u"select n from T where s='x'' or 1=1 --' and s<>\"?\"").tree,
                    schema, dialect_of("PostgreSQL"));
    EXPECT_EQ(query.sql, "select \"n\",mark from \"T\" where ((\"s\"=?) and (\"s\"<>?))");
    ASSERT_EQ(query.arguments.size(), 2U);
    EXPECT_EQ(query.arguments[0].value, Cell(String(u"x' or 1=1 --")));
    EXPECT_EQ(query.arguments[1].value, Cell(String(u"?")));
}

TEST(NoServerWriter, WhatIsRefused) {
    struct Refused {
        const char16_t* source;
        Long number;
        const char* place;
    };
    const Refused cases[] = {
        {u"", 3075, "column 1, its end: select is expected"},
        {u"select from T", 3075, "column 8, at from: a name is expected"},
        {u"select n from T where", 3075, "its end: a column or a value is expected"},
        {u"select n from T where n=", 3075, "its end"},
        {u"select n from T where (n=1", 3075, ") is expected"},
        {u"select n from T where d=#13-13-2001#", 3075, "this is no date"},
        {u"select n from T where d={d '2001-13-01'}", 3075, "this is no date"},
        {u"select n from T where d={x '2001-12-01'}", 3075, "d, ts, t or fn is expected"},
        {u"select n from T where (n=1)=2", 3075, "a condition cannot be compared"},
        {u"select n from T where t>true", 3075, "truth values have no order"},
        {u"select n from T where 5", 3075, "a condition is expected"},
        {u"select n from T where n not 5", 3075, "between or in is expected"},
        {u"select n from T where n+1=2", 3075, "at n: a database server is asked for no arith"},
        {u"select n from T where 2>-n", 3075, "at -: a database server is asked for no arith"},
        {u"select n from T where n & s", 3075, "at n: a database server is asked for no arith"},
        {u"select n from T where s like 'a*'", 3075, "at s: a database server is asked for no"},
        {u"select n from T where f(n)=1", 3085, "at f: this function is not known"},
        {u"select n from T, U", 3075, "column 16, at ,: the end"},
        {u"select n from T join U on 1=1", 3075, "at join: the end"},
        {u"select count(*) from T", 3075, "at (: from is expected"},
        {u"select top x n from T", 3075, "a whole number of rows"},
        {u"insert into T values (1)", 3075, "at insert: select is expected"},
        {u"select n from a.b.c.T", 3075, "too many owners"},
        {u"select n from T where s='x", 3075, "the text has no closing quote"},
        {u"select n from X", 3078, "X"},
        {u"select x from T", 3061, "x"},
        {u"select n from T where U.n=1", 3061, "U.n"},
    };
    for (const Refused& each : cases) {
        const auto failure = caught([&] { static_cast<void>(written(each.source, "MariaDB")); });
        EXPECT_EQ(failure.number, each.number) << to_utf8(each.source);
        EXPECT_NE(failure.text.find(each.place), std::string::npos) << failure.text;
    }
    const auto deep = caught([] {
        static_cast<void>(sql::parse_select(u"select n from T where " + String(5000, u'(')));
    });
    EXPECT_NE(deep.text.find("nested too deeply"), std::string::npos) << deep.text;
}

}  // namespace
}  // namespace kvarta16::odbc
