// Values on their way to a server and back, and rows that are changed.
#include <limits>

#include "odbc_support.h"

namespace kvarta16 {
namespace {

class Values : public OnServer {
  protected:
    // A table with a key and one column of the type.
    void make_column(const std::string& type) const {
        make_table("wartosci", "id INTEGER NOT NULL PRIMARY KEY, w " + type);
    }

    // What is read of a value that has been stored, by another recordset.
    [[nodiscard]] Variant stored(const Variant& value) const {
        db->execute("delete from wartosci");
        const RecordsetPointer row = opened(db, u"select id, w from wartosci");
        row->AddNew();
        put(*row, u"id", Long{1});
        put(*row, u"w", value);
        store(*row);
        const std::string shown_after_storing = shown(value_of(*row, u"w"));
        row->Close();
        Variant read = value_of(*opened(db, u"select w from wartosci where id=1"), u"w");
        EXPECT_EQ(shown_after_storing, shown(read));
        return read;
    }
    [[nodiscard]] std::string text_type() const {
        return is(ServerKind::MariaDb) ? "LONGTEXT" : "TEXT";
    }
    [[nodiscard]] std::string moment_type() const {
        return is(ServerKind::MariaDb) ? "DATETIME(3)" : std::string(types().date);
    }
};

INSTANTIATE_TEST_SUITE_P(Servers, Values, every_server, server_name);

TEST_P(Values, Texts) {
    const String polish = u"zażółć gęślą jaźń ZAŻÓŁĆ GĘŚLĄ JAŹŃ „€”";
    String long_text;
    while (long_text.size() < 100'000) {
        long_text += polish;
    }
    make_column(text_type());
    for (const String& text :
         {String(u""), polish, String(u"' or '1'='1"), String(u"'; drop table wartosci; --"),
          String(u"{d '2001-01-01'} ? ?1 :x $1 \\ \\' %s [x] \"y\" `z`"), String(u"a\r\n\tb  "),
          String(u"\U0001F600 poza płaszczyzną podstawową"), String(4095, u'ą'),
          String(2047, u'x') + u"\U0001F600" + String(2048, u'y'), long_text}) {
        const Variant read = stored(text);
        ASSERT_TRUE(read.is(Subtype::String));
        EXPECT_TRUE(*read.get_if<String>() == text) << to_utf8(text.substr(0, 60));
    }
    EXPECT_EQ(shown(stored(Variant::null())), "Null");
    EXPECT_EQ(shown(stored(Variant())), "Null");
    EXPECT_EQ(shown(stored(Currency::raw(125000))), "String 12.5");
    EXPECT_EQ(shown(stored(Long{-7})), "String -7");
    EXPECT_EQ(shown(stored(0.1)), "String 0.1");
    EXPECT_EQ(shown(stored(Boolean(true))), "String -1");
    EXPECT_EQ(shown(stored(Date{36526.5})), "String 2000-01-01 12:00:00");
    EXPECT_EQ(server.ask("select count(*) from wartosci"), "1");
}

TEST_P(Values, TextsAreSearchedAsTheyStand) {
    make_table("slowa", "id INTEGER, slowo VARCHAR(100)");
    const RecordsetPointer words = opened(db, u"select id, slowo from slowa");
    const String texts[] = {u"żółw", u"O'Hara", u"' or '1'='1", u"a\\b"};
    for (Long id = 0; id < 4; ++id) {
        words->AddNew();
        put(*words, u"id", id);
        put(*words, u"slowo", texts[id]);
        store(*words);
    }
    for (Long id = 0; id < 4; ++id) {
        String quoted;
        for (const char16_t c : texts[id]) {
            quoted.append(c == u'\'' ? 2 : 1, c);
        }
        EXPECT_EQ(rows_of(db, u"select id from slowa where slowo='" + quoted + u"'", 1),
                  std::vector<std::string>{std::to_string(id)});
    }
}

TEST_P(Values, Money) {
    make_column(std::string(types().money));
    for (const std::int64_t count :
         {std::int64_t{0}, std::int64_t{1}, std::int64_t{-1}, std::int64_t{125'000},
          std::int64_t{61'931'000}, std::int64_t{99'999'999'999'999},
          std::int64_t{-99'999'999'999'999}}) {
        const Variant read = stored(Currency::raw(count));
        ASSERT_TRUE(read.is(Subtype::Currency)) << shown(read);
        EXPECT_EQ(*read.get_if<Currency>(), Currency::raw(count));
    }
    EXPECT_EQ(shown(stored(Long{7})), "Currency 7");
    EXPECT_EQ(shown(stored(String(u"12,34"))), "Currency 12,34");
    EXPECT_EQ(shown(stored(2.5)), "Currency 2,5");
    EXPECT_EQ(shown(stored(Variant::null())), "Null");
    EXPECT_EQ(caught([&] { static_cast<void>(stored(String(u"dwa"))); }).number,
              error::type_mismatch);
}

// To the last count; an SQLite file holds them in a form that its driver does not hand over.
TEST_P(Values, MoneyAtItsLimits) {
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
    make_column(std::string(types().money));
    for (const std::int64_t count :
         {largest, least, largest - 1, std::int64_t{999'999'999'999'999'999}}) {
        if (is(ServerKind::SqliteDriver)) {
            EXPECT_EQ(caught([&] { static_cast<void>(stored(Currency::raw(count))); }).number,
                      error::overflow);
            continue;
        }
        const Variant read = stored(Currency::raw(count));
        ASSERT_TRUE(read.is(Subtype::Currency)) << shown(read);
        EXPECT_EQ(*read.get_if<Currency>(), Currency::raw(count));
    }
}

class ValuesOfServers : public Values {};
INSTANTIATE_TEST_SUITE_P(Servers, ValuesOfServers, real_servers, server_name);

TEST_P(ValuesOfServers, MoreDecimalsThanMoneyHas) {
    make_column("DECIMAL(25,8)");
    db->execute("insert into wartosci values (1, 1.00500001)");
    EXPECT_EQ(shown(value_of(*opened(db, u"select w from wartosci"), u"w")), "Decimal 1,00500001");
    EXPECT_EQ(shown(stored(Decimal{.low = 100500001, .scale = 8})), "Decimal 1,00500001");
    EXPECT_EQ(shown(stored(Currency::raw(5))), "Currency 0,0005");
}

TEST_P(Values, Dates) {
    make_column(moment_type());
    for (const char* text : {"1899-12-31", "1899-12-30", "1900-03-01", "2000-02-29",
                             "2024-05-17 12:34:56", "9999-12-31", "9999-12-31 23:59:59"}) {
        const Variant read = stored(ToDate(from_utf8(text)));
        EXPECT_EQ(shown(read), std::string("Date ") + text);
    }
    EXPECT_EQ(shown(stored(String(u"2024-05-17"))), "Date 2024-05-17");
    EXPECT_EQ(shown(stored(Long{2})), "Date 1900-01-01");
    EXPECT_EQ(shown(stored(Variant::null())), "Null");
    EXPECT_EQ(caught([&] { static_cast<void>(stored(String(u"jutro"))); }).number,
              error::type_mismatch);
    EXPECT_EQ(caught([&] { static_cast<void>(stored(1e9)); }).number, error::overflow);
    const Date half_a_second{36526 + 0.5 / 86400};
    EXPECT_NEAR(ToDate(stored(half_a_second)).days, half_a_second.days, 1e-9);
}

TEST_P(Values, DatesWithoutATime) {
    make_column("DATE");
    EXPECT_EQ(shown(stored(ToDate(u"1999-12-31"))), "Date 1999-12-31");
    EXPECT_EQ(rows_of(db, u"select id from wartosci where w={d '1999-12-31'}", 1).size(), 1U);
    EXPECT_EQ(rows_of(db,
                      u"select id from wartosci where w between #12-31-1999 00:00:00# and "
                      u"#12-31-1999 23:59:59#",
                      1)
                  .size(),
              1U);
}

TEST_P(Values, NumbersAndTruth) {
    make_column("SMALLINT");
    EXPECT_EQ(shown(stored(Integer{-32768})), "Integer -32768");
    EXPECT_EQ(shown(stored(Boolean(true))), "Integer -1");
    make_column("INTEGER");
    EXPECT_EQ(shown(stored(Long{2147483647})), "Long 2147483647");
    EXPECT_EQ(shown(stored(String(u"12"))), "Long 12");
    make_column("BIGINT");
    EXPECT_EQ(shown(stored(4'000'000'000.0)), "Double 4000000000");
    make_column("DOUBLE PRECISION");
    EXPECT_EQ(shown(stored(0.1)), "Double 0,1");
    EXPECT_EQ(shown(stored(-12345.6789)), "Double -12345,6789");
    make_column(std::string(types().truth));
    EXPECT_EQ(shown(stored(Boolean(true))), "Boolean Prawda");
    EXPECT_EQ(shown(stored(Boolean(false))), "Boolean Fałsz");
    EXPECT_EQ(shown(stored(Long{5})), "Boolean Prawda");
    EXPECT_EQ(shown(stored(Variant::null())), "Null");
}

// An SQLite file's driver hands over 15 digits.
TEST_P(ValuesOfServers, DoublesToTheirLastBit) {
    make_column("DOUBLE PRECISION");
    for (const double value : {-1.7976931348623157e308, 4.9406564584124654e-300, 1.0 / 3}) {
        EXPECT_EQ(*stored(value).get_if<Double>(), value);
    }
}

// ---- The servers' own types ---------------------------------------------------------------------

TEST_P(Values, TypesOfOneServerAlone) {
    if (is(ServerKind::PostgreSql)) {
        make_column("money");
        EXPECT_EQ(shown(stored(Currency::raw(123'456'700))), "Currency 12345,67");
        make_column("timestamptz");
        EXPECT_EQ(shown(stored(ToDate(u"2024-07-01 12:00:00"))), "Date 2024-07-01 12:00:00");
        make_column("real");
        EXPECT_EQ(shown(stored(Single{0.1F})), "Single 0,1");
    } else if (is(ServerKind::MariaDb)) {
        make_column("BIT(1)");
        EXPECT_EQ(shown(stored(Boolean(true))), "Boolean Prawda");
        EXPECT_EQ(shown(stored(Boolean(false))), "Boolean Fałsz");
        make_column("TINYINT(3)");
        EXPECT_EQ(shown(stored(Integer{7})), "Integer 7");
        make_column("INT UNSIGNED");
        EXPECT_EQ(shown(stored(4'000'000'000.0)), "Double 4000000000");
        make_column("DATE");
        db->execute("insert into wartosci values (1, '0000-00-00')");
        EXPECT_EQ(shown(value_of(*opened(db, u"select w from wartosci"), u"w")),
                  "String 0000-00-00");
    } else {
        make_column("DATETIME");
        for (const char* other : {"'2024-05-17T12:00:00'", "'2024-05-17'", "45429.5"}) {
            db->execute("delete from wartosci");
            db->execute(std::string("insert into wartosci values (1, ") + other + ")");
            EXPECT_EQ(rows_of(db, u"select id from wartosci where w={d '2024-05-17'}", 1).size(),
                      std::string_view(other) == "'2024-05-17'" ? 1U : 0U);
            EXPECT_EQ(rows_of(db,
                              u"select id from wartosci where w between #05-17-2024 00:00:00# and "
                              u"#05-17-2024 23:59:59#",
                              1)
                          .size(),
                      1U);
            EXPECT_TRUE(value_of(*opened(db, u"select w from wartosci"), u"w").is(Subtype::Date));
        }
    }
}

}  // namespace
}  // namespace kvarta16
