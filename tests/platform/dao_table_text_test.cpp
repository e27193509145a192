// The text of a table taken apart and changed: what other programs write in it stays as it is.

#include <string>

#include <gtest/gtest.h>
#include <support/sqlite_files.h>

#include <kvarta16/platform/sqlite/table_text.h>

namespace kvarta16::sqlite {
namespace {

using testing_support::caught;

// Everything that may stand before, in and behind the column "x".
const std::string texts[] = {
    "CREATE TABLE t (x)",
    "CREATE TABLE t(a, x)",
    "CREATE TABLE t (x, a)",
    "CREATE TABLE \"a (b\" ( a TEXT DEFAULT ')', x , b)",
    "CREATE TABLE [a(b] (a CHECK(a<>'(,x DEFAULT 1'), [x])",
    "CREATE TABLE `t` (`x` , a DEFAULT (1+(2*3)), PRIMARY KEY(a))",
    "CREATE TABLE t (-- x DEFAULT 1, (\n x /* , DEFAULT 5 */ , a)",
    "CREATE TABLE t ('x', CONSTRAINT x UNIQUE (x), CHECK (x>1), FOREIGN KEY(x) REFERENCES u(x))",
    "CREATE TABLE t (x COLLATE NOCASE REFERENCES u(y) ON DELETE SET DEFAULT ON UPDATE SET NULL)",
    "CREATE TABLE t (a, x PRIMARY KEY DESC) WITHOUT ROWID",
    "CREATE TABLE t (a AS (x+1), x) STRICT",
    "CREATE TABLE t (x CHECK(length(x)<5))",
    "CREATE TABLE t (\"a\"\"x\" DEFAULT x'00', x)",
    "CREATE TABLE t (a DEFAULT 1e-5, x)",
};

std::string with(const std::string& sql, const auto& change) {
    TableText text(sql);
    change(text);
    return text.sql();
}

TEST(TableText, WhatIsAddedIsTakenAwayAgain) {
    for (const std::string& sql : texts) {
        TableText text(sql);
        text.set_default("x", "DEFAULT (/*now*/ datetime('now'))");
        EXPECT_NE(text.sql(), sql);
        text.set_rule("x", Rule::NoEmptyText, true);
        text.set_rule("x", Rule::MostCharacters, true, 50);
        text.set_rule("x", Rule::Required, true);
        for (const Rule rule : {Rule::NoEmptyText, Rule::MostCharacters, Rule::Required}) {
            EXPECT_TRUE(text.has_rule("x", rule)) << text.sql();
        }
        const std::string all = text.sql();
        text.set_default("x", "DEFAULT 7");
        text.set_default("x", "DEFAULT -7.5");
        text.set_default("x", "DEFAULT (/*now*/ datetime('now'))");
        text.set_rule("x", Rule::MostCharacters, true, 255);
        text.set_rule("x", Rule::MostCharacters, false);
        text.set_default("x", "");
        text.set_rule("x", Rule::NoEmptyText, false);
        text.set_rule("x", Rule::Required, false);
        EXPECT_EQ(text.sql(), sql) << all;
    }
}

TEST(TableText, WhatTheEngineTakes) {
    for (const std::string& sql : texts) {
        if (sql.find("WITHOUT") != std::string::npos || sql.find("STRICT") != std::string::npos ||
            sql.find("DESC") != std::string::npos) {
            continue;  // these need types, and a statement of their own
        }
        TableText text(sql);
        text.set_type("x", "VARCHAR(5)");
        text.set_default("x", "DEFAULT 'a'");
        text.set_rule("x", Rule::MostCharacters, true, 5);
        testing_support::OtherProgram engine(":memory:");
        EXPECT_NO_THROW(engine.run(text.sql())) << text.sql();
        const std::string name = engine.value("select name from sqlite_schema where type='table'");
        EXPECT_EQ(engine.value("select type||dflt_value from pragma_table_xinfo('" + name +
                               "') where name='x'"),
                  "VARCHAR(5)'a'")
            << text.sql();
    }
}

TEST(TableText, TypesAreReplaced) {
    const auto retyped = [](const std::string& sql) {
        return with(sql, [](TableText& text) { text.set_type("x", "T(1)"); });
    };
    EXPECT_EQ(retyped("CREATE TABLE t (x)"), "CREATE TABLE t (x T(1))");
    EXPECT_EQ(retyped("CREATE TABLE t (x INTEGER)"), "CREATE TABLE t (x T(1))");
    EXPECT_EQ(retyped("CREATE TABLE t (x DOUBLE PRECISION (5, 2) NOT NULL)"),
              "CREATE TABLE t (x T(1) NOT NULL)");
    EXPECT_EQ(retyped("CREATE TABLE t (x DEFAULT 5)"), "CREATE TABLE t (x T(1) DEFAULT 5)");
    EXPECT_EQ(retyped("CREATE TABLE t (x \"VAR\"\"CHAR\"(5) CONSTRAINT c UNIQUE, y)"),
              "CREATE TABLE t (x T(1) CONSTRAINT c UNIQUE, y)");
}

TEST(TableText, NamedClausesGoWithTheirNames) {
    EXPECT_EQ(with("CREATE TABLE t (x TEXT CONSTRAINT d DEFAULT 'a' CONSTRAINT c CHECK(x<>''), y)",
                   [](TableText& text) {
                       text.set_default("x", "");
                       text.set_rule("x", Rule::NoEmptyText, false);
                   }),
              "CREATE TABLE t (x TEXT, y)");
}

TEST(TableText, RulesOfAnotherFormAreNone) {
    for (const std::string check : {"length(y)>0", "length(x)>1", "length(x)>=0", "x<>' '",
                                    "length(x)>0 or 1", "lower(x)>0", "(x)<>''"}) {
        const TableText text("CREATE TABLE t (x TEXT CHECK(" + check + "), y)");
        EXPECT_FALSE(text.has_rule("x", Rule::NoEmptyText)) << check;
    }
    EXPECT_TRUE(TableText("CREATE TABLE t ([X] check ( LENGTH ( \"x\" ) > 0 ))")
                    .has_rule("X", Rule::NoEmptyText));
}

TEST(TableText, Names) {
    EXPECT_EQ(with("CREATE TABLE \"a (b\" (x)", [](TableText& t) { t.set_table_name("c\"d"); }),
              "CREATE TABLE \"c\"\"d\" (x)");
    EXPECT_EQ(TableText("CREATE TABLE t (x)").primary_key_name(), "");
    EXPECT_EQ(TableText("CREATE TABLE t (x PRIMARY KEY)").primary_key_name(), "");
    EXPECT_EQ(TableText("CREATE TABLE t (x CONSTRAINT [k l] PRIMARY KEY)").primary_key_name(),
              "k l");
    EXPECT_EQ(TableText("CREATE TABLE t (x, CONSTRAINT k PRIMARY KEY (x))").primary_key_name(),
              "k");
}

TEST(TableText, WhatIsNotUnderstood) {
    for (const std::string sql :
         {"", "CREATE", "CREATE TABLE t", "CREATE TABLE t (", "t (x)", "CREATE TABLE t ()",
          "CREATE TABLE t (x,)", "CREATE TABLE t (x DEFAULT 'a)", "CREATE TABLE t (x (y)"}) {
        EXPECT_EQ(caught([&] { static_cast<void>(TableText(sql)); }).number, 3000) << sql;
    }
    TableText text("CREATE TABLE t (x)");
    EXPECT_EQ(caught([&] { text.set_default("y", "DEFAULT 1"); }).number, 3000);
}

}  // namespace
}  // namespace kvarta16::sqlite
