// The two dialects: what each statement of the grammar becomes for the engine, and where and how
// every other text is refused.

#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <support/fake_platform.h>
#include <support/sqlite_files.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/sql/tokenizer.h>
#include <kvarta16/platform/sqlite/jet_writer.h>
#include <kvarta16/platform/sqlite/sql_translator.h>

namespace kvarta16::sqlite {
namespace {

using sql::Token;
using sql::tokenize;
using testing_support::caught;
using testing_support::FakePlatform;

// ---- Tokens ------------------------------------------------------------------------------------

std::string shown(const Token& token) {
    constexpr const char* kinds[] = {"word", "name", "number", "text", "moment", "symbol", "end"};
    std::string text = kinds[static_cast<std::size_t>(token.kind)];
    text.append("@").append(std::to_string(token.column)).append(" ");
    return text + to_utf8(token.source) + (token.value.empty() ? "" : "=" + to_utf8(token.value));
}

std::vector<std::string> tokens_of(StringView statement) {
    std::vector<std::string> list;
    for (const Token& token : tokenize(statement)) {
        list.push_back(shown(token));
    }
    return list;
}

TEST(SqlTokens, Kinds) {
    using Tokens = std::vector<std::string>;
    EXPECT_EQ(tokens_of(u""), Tokens({"end@1 "}));
    EXPECT_EQ(tokens_of(u" \t\r\n"), Tokens({"end@5 "}));
    EXPECT_EQ(tokens_of(u"id [id] [a]]b]"),
              Tokens({"word@1 id", "name@4 [id]=id", "name@9 [a]]b]=a]b", "end@15 "}));
    EXPECT_EQ(tokens_of(u"wartość_1$ Ćma"),
              Tokens({"word@1 wartość_1$", "word@12 Ćma", "end@15 "}));
    EXPECT_EQ(tokens_of(u"12 12.5 .5 12. 1e3 1E-3"),
              Tokens({"number@1 12", "number@4 12.5", "number@9 .5", "number@12 12.",
                      "number@16 1e3", "number@20 1E-3", "end@24 "}));
}

TEST(SqlTokens, TextsAndDates) {
    using Tokens = std::vector<std::string>;
    EXPECT_EQ(tokens_of(u"'it''s' \"a\"\"b'\" ''"),
              Tokens({"text@1 'it''s'=it's", "text@9 \"a\"\"b'\"=a\"b'", "text@17 ''", "end@19 "}));
    EXPECT_EQ(tokens_of(u"#12-31-2001# ##"),
              Tokens({"moment@1 #12-31-2001#=12-31-2001", "moment@14 ##", "end@16 "}));
    EXPECT_EQ(tokens_of(u"<><=>=<>=(){},;.*-+"),
              Tokens({"symbol@1 <>", "symbol@3 <=", "symbol@5 >=", "symbol@7 <>",
                      "symbol@9 =", "symbol@10 (", "symbol@11 )", "symbol@12 {", "symbol@13 }",
                      "symbol@14 ,", "symbol@15 ;", "symbol@16 .", "symbol@17 *", "symbol@18 -",
                      "symbol@19 +", "end@20 "}));
}

struct BadToken {
    StringView statement;
    std::string_view failure;
};
const BadToken bad_tokens[] = {
    {u"a = [b", "at column 5, at [b: the bracket is not closed"},
    {u"'abc", "at column 1, at 'abc: the text has no closing quote"},
    {u"'abc''", "at column 1, at 'abc'': the text has no closing quote"},
    {u"\"abc'", "at column 1, at \"abc': the text has no closing quote"},
    {u"x #12-31-2001", "at column 3, at #12-31-2001: the date has no closing #"},
    {u"a ! b", "at column 3, at !: this character has no meaning here"},
    {u"a\u00A0b", "at column 2, at \u00A0: this character has no meaning here"},
    {u"a \u201Eb\u201D", "at column 3, at \u201E: this character has no meaning here"},
    {u"-- a", ""},  // two signs: refused by the grammar
    {u"a /* b */", ""},
    {u"12abc", "at column 1, at 12a: this is no number"},
    {u"1.2.3", "at column 1, at 1.2.: this is no number"},
    {u"1e", "at column 1, at 1e: this is no number"},
    {u"a `b`", "at column 3, at `: this character has no meaning here"},
    {u"a @b", "at column 3, at @: this character has no meaning here"},
    {StringView(u"a \0", 3), "at column 3, at "},
};

TEST(SqlTokens, Refused) {
    for (const BadToken& bad : bad_tokens) {
        const auto failure = caught([&] { static_cast<void>(tokenize(bad.statement)); });
        EXPECT_EQ(failure.number, bad.failure.empty() ? 0 : 3075) << to_utf8(bad.statement);
        EXPECT_NE(failure.text.find(bad.failure), std::string::npos) << failure.text;
    }
}

// ---- Statements --------------------------------------------------------------------------------

// One table and one view.
class FakeSchema final : public Schema {
  public:
    FakeSchema() {
        table_->name = u"S_ODSETKI";
        table_->sql = "T";
        add(u"Rodzaj", ColumnKind::Plain, Affinity::Integer);
        add(u"od_dnia", ColumnKind::Date, Affinity::Numeric);
        add(u"do_dnia", ColumnKind::Date, Affinity::Numeric);
        add(u"procent", ColumnKind::Money, Affinity::Numeric);
        add(u"czynny", ColumnKind::Boolean, Affinity::Numeric);
        add(u"opis", ColumnKind::Plain, Affinity::Text);
        add(u"Średnia", ColumnKind::Plain, Affinity::Real);
        add(u"between", ColumnKind::Plain, Affinity::Integer);
        add(u"top", ColumnKind::Plain, Affinity::Integer);
        add(u"now", ColumnKind::Plain, Affinity::Integer);
        add(u"a]b c", ColumnKind::Plain, Affinity::Integer);
        table_->key = {"rowid"};
    }

    std::shared_ptr<const Table> find_table(StringView name) override {
        return same_name(name, table_->name) ? table_ : nullptr;
    }

  private:
    void add(StringView name, ColumnKind kind, Affinity affinity) {
        const std::string sql = to_utf8(name);
        table_->columns.push_back({String(name), sql, kind, affinity});
    }

    std::shared_ptr<Table> table_ = std::make_shared<Table>();
};

std::string shown(const Cell& cell) {
    if (const auto* whole = std::get_if<std::int64_t>(&cell)) {
        return std::to_string(*whole);
    }
    if (const auto* real = std::get_if<double>(&cell)) {
        return "real " + std::to_string(*real);
    }
    const auto* text = std::get_if<std::string>(&cell);
    return text != nullptr ? "'" + *text + "'" : "NULL";
}

// The functions by one letter: s, ms, n and t.
std::string shortened(std::string sql) {
    const std::pair<std::string_view, std::string_view> names[] = {
        {jet::seconds_function, "s"}, {jet::milliseconds_function, "ms"},
        {jet::number_function, "n"},  {jet::truth_function, "t"},
        {jet::convert_function, "v"}, {jet::compute_function, "c"},
        {jet::like_function, "like"}};
    for (const auto& [name, letter] : names) {
        for (std::size_t at = 0; (at = sql.find(name, at)) != std::string::npos;) {
            sql.replace(at, name.size(), letter);
        }
    }
    return sql;
}

std::string translated(StringView statement) {
    FakeSchema schema;
    const Translation translation = translate(statement, schema);
    std::string text = shortened(translation.sql);
    for (const Cell& parameter : translation.parameters) {
        text += " | " + shown(parameter);
    }
    return text;
}

struct Good {
    StringView statement;
    std::string_view translated;
};

const Good good_statements[] = {
    {u"select * from S_ODSETKI",
     "select Rodzaj,od_dnia,do_dnia,procent,czynny,opis,Średnia,between,top,now,a]b c,rowid from "
     "T"},
    {u"select [Rodzaj],[od_dnia] from S_ODSETKI", "select Rodzaj,od_dnia,rowid from T"},
    {u"SELECT rodzaj , OPIS FROM s_odsetki ;", "select Rodzaj,opis,rowid from T"},
    {u"select top 1 [Rodzaj] from [S_ODSETKI]", "select Rodzaj,rowid from T limit ?1 | 1"},
    {u"select top 0 [Rodzaj] from [S_ODSETKI]", "select Rodzaj,rowid from T limit ?1 | 0"},
    {u"select [średnia],ŚREDNIA from S_ODSETKI", "select Średnia,Średnia,rowid from T"},
    {u"select [between],[top],[now],now,[a]]b c] from S_ODSETKI",
     "select between,top,now,now,a]b c,rowid from T"},
    {u"select [Rodzaj] from dbo.S_ODSETKI", "select Rodzaj,rowid from T"},
    {u"select [Rodzaj] from [firma].[dbo].[S_ODSETKI]", "select Rodzaj,rowid from T"},
    {u"select S_ODSETKI.Rodzaj, dbo.S_ODSETKI.opis, [firma].dbo.S_ODSETKI.now from S_ODSETKI",
     "select Rodzaj,opis,now,rowid from T"},

    // Comparisons, each operator.
    {u"select now from S_ODSETKI where [RODZAJ]=20",
     "select now,rowid from T where (Rodzaj=?1) | 20"},
    {u"select now from S_ODSETKI where 20 = rodzaj",
     "select now,rowid from T where (?1=Rodzaj) | 20"},
    {u"select now from S_ODSETKI where rodzaj<>-1",
     "select now,rowid from T where (Rodzaj<>?1) | -1"},
    {u"select now from S_ODSETKI where rodzaj<+1", "select now,rowid from T where (Rodzaj<?1) | 1"},
    {u"select now from S_ODSETKI where rodzaj>.5",
     "select now,rowid from T where (Rodzaj>?1) | real 0.500000"},
    {u"select now from S_ODSETKI where rodzaj<=1e2",
     "select now,rowid from T where (Rodzaj<=?1) | real 100.000000"},
    {u"select now from S_ODSETKI where rodzaj>=-9223372036854775808",
     "select now,rowid from T where (Rodzaj>=?1) | -9223372036854775808"},
    {u"select now from S_ODSETKI where rodzaj=9223372036854775808",
     "select now,rowid from T where (Rodzaj=?1) | real 9223372036854775808.000000"},
    {u"select now from S_ODSETKI where opis='it''s'",
     "select now,rowid from T where (opis=?1) | 'it's'"},
    {u"select now from S_ODSETKI where opis=\"zażółć \"\"gęślą\"\"\"",
     "select now,rowid from T where (opis=?1) | 'zażółć \"gęślą\"'"},
    {u"select now from S_ODSETKI where rodzaj=[top]", "select now,rowid from T where (Rodzaj=top)"},
    {u"select now from S_ODSETKI where 1=0", "select now,rowid from T where (?1=?2) | 1 | 0"},
    {u"select now from S_ODSETKI where rodzaj=null", "select now,rowid from T where (Rodzaj=null)"},

    // Conditions together.
    {u"select now from S_ODSETKI where rodzaj=1 and [top]=2 or now=3 and [between]=4",
     "select now,rowid from T where (((Rodzaj=?1) and (top=?2)) or ((now=?3) and (between=?4))) "
     "| 1 | 2 | 3 | 4"},
    {u"select now from S_ODSETKI where rodzaj=1 and ([top]=2 or now=3)",
     "select now,rowid from T where ((Rodzaj=?1) and ((top=?2) or (now=?3))) | 1 | 2 | 3"},
    {u"select now from S_ODSETKI where now=1 and now=2 and now=3 and (now=4 or now=5 or now=6)",
     "select now,rowid from T where ((now=?1) and (now=?2) and (now=?3) and "
     "((now=?4) or (now=?5) or (now=?6))) | 1 | 2 | 3 | 4 | 5 | 6"},
    {u"select now from S_ODSETKI where not rodzaj=1 and not (now=2)",
     "select now,rowid from T where ((not (Rodzaj=?1)) and (not (now=?2))) | 1 | 2"},
    {u"select now from S_ODSETKI where not not rodzaj=1",
     "select now,rowid from T where (Rodzaj=?1) | 1"},
    {u"select now from S_ODSETKI where ((([rodzaj])=((1))))",
     "select now,rowid from T where (Rodzaj=?1) | 1"},
    {u"select now from S_ODSETKI where opis is null or opis is not null",
     "select now,rowid from T where ((opis is null) or (opis is not null))"},
    {u"select now from S_ODSETKI where rodzaj in (1,2,-3)",
     "select now,rowid from T where (Rodzaj in (?1,?2,?3)) | 1 | 2 | -3"},
    {u"select now from S_ODSETKI where opis not in ('a')",
     "select now,rowid from T where (opis not in (?1)) | 'a'"},
    {u"select now from S_ODSETKI where rodzaj between 1 and 3 and now=2",
     "select now,rowid from T where ((Rodzaj between ?1 and ?2) and (now=?3)) | 1 | 3 | 2"},
    {u"select now from S_ODSETKI where rodzaj not between 1 and 3",
     "select now,rowid from T where (Rodzaj not between ?1 and ?2) | 1 | 3"},
    {u"select now from S_ODSETKI where false", "select now,rowid from T where ?1 | 0"},
    {u"select now from S_ODSETKI where null", "select now,rowid from T where null"},

    // Dates, in both dialects.
    {u"select now from S_ODSETKI where [od_dnia]>={d '2001-12-31'} and [od_dnia]<{d '2002-01-01'} ",
     "select now,rowid from T where ((s(od_dnia)>=?1) and (s(od_dnia)<?2)) "
     "| '2001-12-31 00:00:00' | '2002-01-01 00:00:00'"},
    {u"select now from S_ODSETKI where  ([od_dnia] Between #12-31-2001 00:00:00# and "
     u"#12-31-2001 23:59:59#) ",
     "select now,rowid from T where (s(od_dnia) between ?1 and ?2) "
     "| '2001-12-31 00:00:00' | '2001-12-31 23:59:59'"},
    {u"select now from S_ODSETKI where od_dnia=#12/31/2001#",
     "select now,rowid from T where (s(od_dnia)=?1) | '2001-12-31 00:00:00'"},
    {u"select now from S_ODSETKI where od_dnia=#2001-12-31#",
     "select now,rowid from T where (s(od_dnia)=?1) | '2001-12-31 00:00:00'"},
    {u"select now from S_ODSETKI where opis=#12-31-2001#",
     "select now,rowid from T where (s(opis)=?1) | '2001-12-31 00:00:00'"},
    {u"select now from S_ODSETKI where od_dnia={ts '2001-12-31 10:00:00'}",
     "select now,rowid from T where (s(od_dnia)=?1) | '2001-12-31 10:00:00'"},
    {u"select now from S_ODSETKI where od_dnia>={ TS '2001-12-31 10:00:00.5' }",
     "select now,rowid from T where (ms(od_dnia)>=?1) | '2001-12-31 10:00:00.500'"},
    {u"select now from S_ODSETKI where od_dnia>={t '10:15:00'}",
     "select now,rowid from T where (s(od_dnia)>=?1) | '1899-12-30 10:15:00'"},
    {u"select now from S_ODSETKI where od_dnia<=Now()",
     "select now,rowid from T where (s(od_dnia)<=?1) | '2024-05-17 12:00:00'"},
    {u"select now from S_ODSETKI where od_dnia<={fn NOW()}",
     "select now,rowid from T where (s(od_dnia)<=?1) | '2024-05-17 12:00:00'"},
    {u"select now from S_ODSETKI where od_dnia='2001-12-31'",
     "select now,rowid from T where (s(od_dnia)=?1) | '2001-12-31 00:00:00'"},
    {u"select now from S_ODSETKI where od_dnia='x'",
     "select now,rowid from T where (od_dnia=?1) | 'x'"},
    {u"select now from S_ODSETKI where od_dnia=36892",
     "select now,rowid from T where (s(od_dnia)=?1) | '2001-01-01 00:00:00'"},
    {u"select now from S_ODSETKI where od_dnia=do_dnia",
     "select now,rowid from T where (ms(od_dnia)=ms(do_dnia))"},
    {u"select now from S_ODSETKI where od_dnia in (#12-31-2001#,null)",
     "select now,rowid from T where (s(od_dnia) in (?1,null)) | '2001-12-31 00:00:00'"},
    {u"select now from S_ODSETKI where #12-31-2001# between od_dnia and do_dnia",
     "select now,rowid from T where (?1 between ms(od_dnia) and ms(do_dnia)) "
     "| '2001-12-31 00:00:00.000'"},

    // Truth values.
    {u"select now from S_ODSETKI where czynny=-1",
     "select now,rowid from T where (t(czynny)=?1) | -1"},
    {u"select now from S_ODSETKI where czynny=1",
     "select now,rowid from T where (t(czynny)=?1) | -1"},
    {u"select now from S_ODSETKI where czynny=0",
     "select now,rowid from T where (t(czynny)=?1) | 0"},
    {u"select now from S_ODSETKI where czynny=True",
     "select now,rowid from T where (t(czynny)=?1) | -1"},
    {u"select now from S_ODSETKI where rodzaj=FALSE",
     "select now,rowid from T where (t(Rodzaj)=?1) | 0"},
    {u"select now from S_ODSETKI where czynny='tak'",
     "select now,rowid from T where (t(czynny)=?1) | -1"},
    {u"select now from S_ODSETKI where czynny='x'",
     "select now,rowid from T where (czynny=?1) | 'x'"},
    {u"select now from S_ODSETKI where czynny and not [rodzaj]",
     "select now,rowid from T where ((t(czynny)<>0) and (not (t(Rodzaj)<>0)))"},

    // Numbers in columns that hold them in other forms too.
    {u"select now from S_ODSETKI where procent=12.25",
     "select now,rowid from T where (n(procent)=?1) | real 12.250000"},
    {u"select now from S_ODSETKI where procent>'12,5'",
     "select now,rowid from T where (n(procent)>?1) | real 12.500000"},
    {u"select now from S_ODSETKI where procent='x'",
     "select now,rowid from T where (procent=?1) | 'x'"},
    {u"select now from S_ODSETKI where opis=5", "select now,rowid from T where (n(opis)=?1) | 5"},
    {u"select now from S_ODSETKI where średnia<procent",
     "select now,rowid from T where (n(Średnia)<n(procent))"},

    {u"select now from S_ODSETKI order by rodzaj, od_dnia desc, procent asc, czynny",
     "select now,rowid from T order by Rodzaj,ms(od_dnia) desc,n(procent),t(czynny)"},
    // Computed values.
    {u"select now from S_ODSETKI where opis like 'a*' and opis not like '#?'",
     "select now,rowid from T where ((like(v(opis,0,12,0),?1)) and (not like(v(opis,0,12,0),?2))) "
     "| 'a*' | '#?'"},
    {u"select now from S_ODSETKI where rodzaj + 1 = 2*3 - [top]",
     "select now,rowid from T where (c('+',Rodzaj,?1)=c('-',?2,top)) | 1 | 6"},
    {u"select now from S_ODSETKI where procent = -[rodzaj]/2",
     "select now,rowid from T where (n(procent)=n(c('/',c('-',?1,Rodzaj),?2))) | 0 | 2"},
    {u"select now from S_ODSETKI where od_dnia + 1 > Date()",
     "select now,rowid from T where (s(c('+',v(od_dnia,1,7,0),?1))>?2) "
     "| 1 | '2024-05-17 00:00:00'"},
    {u"select now from S_ODSETKI where opis & 1 = 'a' & [rodzaj]",
     "select now,rowid from T where (c('&',v(opis,0,12,0),?1)=c('&',?2,v(Rodzaj,0,12,0))) "
     "| '1' | 'a'"},
    {u"select top 2 now from S_ODSETKI where rodzaj=1 order by opis;",
     "select now,rowid from T where (Rodzaj=?1) order by opis limit ?2 | 1 | 2"},
};

TEST(SqlTranslator, GoodStatements) {
    const FakePlatform fake;  // its clock stands at noon of 2024-05-17
    for (const Good& good : good_statements) {
        std::string result;
        const auto failure = caught([&] { result = translated(good.statement); });
        EXPECT_EQ(result, good.translated) << to_utf8(good.statement) << "\n" << failure.text;
    }
}

TEST(SqlTranslator, NamesOfTheColumnsAreThoseOfTheStatement) {
    FakeSchema schema;
    const Translation some = translate(u"select RODZAJ, S_ODSETKI.[Opis] from S_ODSETKI", schema);
    ASSERT_EQ(some.columns.size(), 2U);
    EXPECT_EQ(some.columns[0].name, u"RODZAJ");
    EXPECT_EQ(some.columns[1].name, u"Opis");
    EXPECT_EQ(some.columns[1].column->name, u"opis");
    const Translation all = translate(u"select * from S_ODSETKI", schema);
    EXPECT_EQ(all.columns[0].name, u"Rodzaj");
}

struct Bad {
    StringView statement;
    Long number;
    std::string_view failure;
};

const Bad bad_statements[] = {
    {u"", 3075, "at column 1, its end: select is expected"},
    {u"insert into S_ODSETKI values(1)", 3075, "at column 1, at insert: select is expected"},
    {u"update S_ODSETKI set rodzaj=1", 3075, "at column 1, at update: select is expected"},
    {u"delete from S_ODSETKI", 3075, "at column 1, at delete: select is expected"},
    {u"[select] * from S_ODSETKI", 3075, "at column 1, at [select]: select is expected"},
    {u"select from S_ODSETKI", 3075, "at column 8, at from: a name is expected"},
    {u"select", 3075, "at column 7, its end: a name is expected"},
    {u"select *", 3075, "at column 9, its end: from is expected"},
    {u"select * from", 3075, "at column 14, its end: a name is expected"},
    {u"select *, now from S_ODSETKI", 3075, "at column 9, at ,: from is expected"},
    {u"select now, from S_ODSETKI", 3075, "at column 13, at from: a name is expected"},
    {u"select [] from S_ODSETKI", 3075, "at column 8, at []: a name is expected"},
    {u"select 'now' from S_ODSETKI", 3075, "at column 8, at 'now': a name is expected"},
    {u"select count(*) from S_ODSETKI", 3075, "at column 13, at (: from is expected"},
    {u"select now as teraz from S_ODSETKI", 3075, "at column 12, at as: from is expected"},
    {u"select top now from S_ODSETKI", 3075,
     "at column 12, at now: a whole number of rows is expected"},
    {u"select top 1.5 now from S_ODSETKI", 3075,
     "at column 12, at 1.5: a whole number of rows is expected"},
    {u"select top -1 now from S_ODSETKI", 3075,
     "at column 12, at -: a whole number of rows is expected"},
    {u"select top 99999999999999999999 now from S_ODSETKI", 3075, "a whole number of rows"},
    {u"select * from S_ODSETKI, S_ODSETKI", 3075,
     "at column 24, at ,: the end of the statement is expected"},
    {u"select * from S_ODSETKI a", 3075,
     "at column 25, at a: the end of the statement is expected"},
    {u"select * from S_ODSETKI; select * from S_ODSETKI", 3075, "at column 26, at select: the end"},
    {u"select * from a.b.c.S_ODSETKI", 3075, "at column 15, at a: too many owners"},
    {u"select a.b.c.d.now from S_ODSETKI", 3075, "at column 16, at now: too many owners"},
    {u"select * from S_ODSETKI where", 3075, "at column 30, its end: a column or a value"},
    {u"select * from S_ODSETKI where rodzaj =", 3075, "its end: a column or a value is expected"},
    {u"select * from S_ODSETKI where rodzaj == 1", 3075, "at column 39, at =: a column or a value"},
    {u"select * from S_ODSETKI where rodzaj = 1 2", 3075, "at column 42, at 2: the end"},
    {u"select * from S_ODSETKI where rodzaj = 1 = 1", 3075, "at column 42, at =: the end"},
    {u"select * from S_ODSETKI where (rodzaj = 1", 3075, "its end: ) is expected"},
    {u"select * from S_ODSETKI where rodzaj = 1)", 3075, "at column 41, at ): the end"},
    {u"select * from S_ODSETKI where (rodzaj = 1) = 1", 3075,
     "at column 32, at rodzaj: a condition cannot be compared"},
    {u"select * from S_ODSETKI where (rodzaj = 1) is null", 3075, "a condition cannot be compared"},
    {u"select * from S_ODSETKI where 5", 3075, "at column 31, at 5: a condition is expected"},
    {u"select * from S_ODSETKI where 'a' and true", 3075, "at column 31, at 'a': a condition"},
    {u"select * from S_ODSETKI where not", 3075, "its end: a column or a value is expected"},
    {u"select * from S_ODSETKI where rodzaj not 1", 3075,
     "at column 42, at 1: between or in is expected"},
    {u"select * from S_ODSETKI where rodzaj is 1", 3075, "at column 41, at 1: null is expected"},
    {u"select * from S_ODSETKI where rodzaj between 1", 3075, "its end: and is expected"},
    {u"select * from S_ODSETKI where rodzaj between 1 or 2", 3075, "at or: and is expected"},
    {u"select * from S_ODSETKI where rodzaj in 1", 3075, "at column 41, at 1: ( is expected"},
    {u"select * from S_ODSETKI where rodzaj in ()", 3075, "at ): a column or a value is expected"},
    {u"select * from S_ODSETKI where rodzaj in (1", 3075, "its end: ) is expected"},
    {u"select * from S_ODSETKI where rodzaj /* 1 */ = 2", 3075, "at *: a column or a value"},
    {u"select * from S_ODSETKI where rodzaj = - 'a'", 3075, "at 'a': a number is expected"},
    {u"select * from S_ODSETKI where rodzaj = --1", 3075, "at -: a number is expected"},
    {u"select * from S_ODSETKI where rodzaj = 1e999", 3075, "the number is too large"},
    {u"select * from S_ODSETKI where od_dnia = #13-31-2001#", 3075,
     "at column 41, at #13-31-2001#: this is no date"},
    {u"select * from S_ODSETKI where od_dnia = ##", 3075, "at ##: this is no date"},
    {u"select * from S_ODSETKI where od_dnia = {d '2001-02-30'}", 3075,
     "at column 44, at '2001-02-30': this is no date"},
    {u"select * from S_ODSETKI where od_dnia = {d '12-31-2001'}", 3075, "this is no date"},
    {u"select * from S_ODSETKI where od_dnia = {d '2001-12-31 10:00:00'}", 3075, "this is no date"},
    {u"select * from S_ODSETKI where od_dnia = {ts '2001-12-31'}", 3075, "this is no date"},
    {u"select * from S_ODSETKI where od_dnia = {d 2001}", 3075,
     "at column 44, at 2001: a date in quotes is expected"},
    {u"select * from S_ODSETKI where od_dnia = {d '2001-12-31'", 3075, "its end: } is expected"},
    {u"select * from S_ODSETKI where od_dnia = {x '2001-12-31'}", 3075,
     "d, ts, t or fn is expected"},
    {u"select * from S_ODSETKI where od_dnia = {fn curdate()}", 3075, "now is expected"},
    {u"select * from S_ODSETKI where od_dnia = Now(1)", 3075, ") is expected"},
    {u"select * from S_ODSETKI where od_dnia = Today()", 3085, "at Today: this function is not"},
    {u"select * from S_ODSETKI order rodzaj", 3075, "at column 31, at rodzaj: by is expected"},
    {u"select * from S_ODSETKI order by 1", 3075, "at column 34, at 1: a name is expected"},
    {u"select * from S_ODSETKI order by rodzaj up", 3075, "at column 41, at up: the end"},
    {u"select * from S_ODSETKI where [top]=2 or top=3", 3075,
     "at column 42, at top: a name is expected"},
    {u"select * from S_ODSETKI where rodzaj=between", 3075,
     "at column 38, at between: a name is expected"},
    {u"select * from Nie_ma", 3078, "There is no such table: Nie_ma"},
    {u"select * from dbo.Nie_ma", 3078, "There is no such table: Nie_ma"},
    {u"select nie_ma from S_ODSETKI", 3061,
     "There is no such column in the table S_ODSETKI: nie_ma"},
    {u"select now from S_ODSETKI where [żółw]=1", 3061, ": żółw"},
    {u"select now from S_ODSETKI where 1=S_INNA.now", 3061, ": S_INNA.now"},
    {u"select now from S_ODSETKI order by nie_ma", 3061, ": nie_ma"},
    {u"select rowid from S_ODSETKI", 3061, ": rowid"},
};

TEST(SqlTranslator, BadStatements) {
    for (const Bad& bad : bad_statements) {
        FakeSchema schema;
        const auto failure = caught([&] { static_cast<void>(translate(bad.statement, schema)); });
        EXPECT_EQ(failure.number, bad.number) << to_utf8(bad.statement);
        EXPECT_NE(failure.text.find(bad.failure), std::string::npos)
            << to_utf8(bad.statement) << "\n"
            << failure.text;
    }
}

// A statement cut off anywhere, and with any one character taken out, is refused or understood;
// nothing else happens.
TEST(SqlTranslator, DamagedStatements) {
    const FakePlatform fake;
    FakeSchema schema;
    int refused = 0;
    for (const Good& good : good_statements) {
        for (std::size_t i = 0; i < good.statement.size(); ++i) {
            const String cut(good.statement.substr(0, i));
            const String without = cut + String(good.statement.substr(i + 1));
            for (const String& statement : {cut, without}) {
                const Long number =
                    caught([&] { static_cast<void>(translate(statement, schema)); }).number;
                ASSERT_TRUE(number == 0 || number == 3075 || number == 3061 || number == 3078 ||
                            number == 3085)
                    << number << " " << to_utf8(statement);
                refused += number != 0 ? 1 : 0;
            }
        }
    }
    EXPECT_GT(refused, 3000);
}

TEST(SqlTranslator, NestingHasALimit) {
    FakeSchema schema;
    const auto nested = [&](std::size_t depth) {
        const String statement = u"select now from S_ODSETKI where " + String(depth, u'(') +
                                 u"now=1" + String(depth, u')');
        return caught([&] { static_cast<void>(translate(statement, schema)); });
    };
    EXPECT_EQ(nested(60).number, 0);
    EXPECT_EQ(nested(100'000).number, 3075);
    EXPECT_NE(nested(100'000).text.find("nested too deeply"), std::string::npos);
    String many_nots = u"select now from S_ODSETKI where ";
    for (int i = 0; i < 100'000; ++i) {
        many_nots += u"not ";
    }
    EXPECT_EQ(caught([&] { static_cast<void>(translate(many_nots + u"now=1", schema)); }).number,
              0);
}

TEST(SqlTranslator, LongTokensAreCutInTheMessage) {
    FakeSchema schema;
    const String statement = u"select now from S_ODSETKI where '" + String(1000, u'x') + u"'";
    const auto failure = caught([&] { static_cast<void>(translate(statement, schema)); });
    EXPECT_EQ(failure.number, 3075);
    EXPECT_LT(failure.text.size(), 200U);
}

TEST(SqlTranslator, StatementsThatDifferInValuesAreOneStatement) {
    FakeSchema schema;
    const auto sql = [&](StringView statement) { return translate(statement, schema).sql; };
    EXPECT_EQ(sql(u"select now from S_ODSETKI where rodzaj=1 and od_dnia={d '2001-01-01'}"),
              sql(u"SELECT [now] FROM s_odsetki WHERE (RODZAJ=22) and od_dnia=#02-03-2004#"));
    EXPECT_EQ(sql(u"select top 1 now from S_ODSETKI"), sql(u"select top 25 now from S_ODSETKI"));
}

}  // namespace
}  // namespace kvarta16::sqlite
