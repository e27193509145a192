// What holds on a day, from seeded files.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include <kvarta16/frame/value.h>
#include <kvarta16/platform/sqlite/sqlite_connection.h>
#include <kvarta16/statutory/interest_rows.h>
#include <kvarta16/statutory/mileage_rows.h>
#include <kvarta16/statutory/payroll_rows.h>

#include "holdings.h"
#include "rate_words.h"
#include "tool_process.h"

namespace tool_test {
namespace {

using namespace kvarta16;

class Rates : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(0, run_tool({"seed", "--db", "sqlite:" + path}).status); }

    ToolRun rates(Words more = {}, const Options& options = {}) {
        more.insert(more.begin(), {"rates", "--db", "sqlite:" + path});
        return run_tool(more, options);
    }
    void execute(const std::string& sql) { sqlite::connect(path)->execute(sql); }

    TempFolder folder;
    std::string path = folder.file("firma.db");
};

void expect_line(const ToolRun& run, const std::string& line) {
    EXPECT_NE(std::string::npos, run.out.find('\n' + line + '\n')) << line << "\n" << run.out;
}
void expect_no_line(const ToolRun& run, const std::string& part) {
    EXPECT_EQ(std::string::npos, run.out.find(part)) << part;
}

TEST_F(Rates, InEnglish) {
    const ToolRun run = rates({"--on", "2022-03-01", "--lang", "en"});
    EXPECT_EQ(0, run.status);
    EXPECT_EQ("", run.err);
    EXPECT_TRUE(run.out.starts_with("What holds on 2022-03-01\n\nPayroll parameters\n"));
    expect_line(run, "   50        3010.00 zł  2022-01-01  minimum monthly wage");
    expect_line(run, "   33               9 %  2007-01-01  health contribution");
    expect_line(run, "   53        20.92 days  2022-01-01  mean number of working days in a month");
    expect_line(
        run,
        "   10         111.25 zł  2008-01-01  monthly tax-deductible cost of employment: basic\n"
        "              139.06 zł              monthly tax-deductible cost of employment: raised");
    expect_line(run, "   66                 0  2009-02-01  zeros alone");
    expect_line(run,
                "    3               0 %  2022-01-01  share of the health contribution base "
                "deductible from the tax");
    expect_line(run, "           0.5214 zł/km  2007-11-14  car with an engine of up to 900 cm³");
    expect_line(run, "           0.8358 zł/km  2007-11-14  car with an engine above 900 cm³");
    expect_line(
        run, "    0            8.25 %  2022-02-09  statutory interest, from 2016 for late payment");
    expect_line(run, "    5             8.5 %  2022-02-09  a rate of its own, always equal to (4)");
}

TEST_F(Rates, InPolish) {
    const ToolRun run = rates({"--on", "2022-03-01", "--lang", "pl"});
    EXPECT_TRUE(run.out.starts_with("Obowiązuje dnia 2022-03-01\n\nParametry płacowe\n"));
    expect_line(run, "   50        3010,00 zł  2022-01-01  minimalne wynagrodzenie miesięczne");
    expect_line(run,
                "           0,5214 zł/km  2007-11-14  samochód o pojemności silnika do 900 cm³");
    expect_line(run, "    2            6,25 %  2022-02-09  odsetki ustawowe od kapitału");
}

TEST_F(Rates, TheTaxScaleIsToldByBands) {
    expect_line(rates({"--on", "2008-06-01", "--lang", "en"}),
                "   20         586.85 zł  2008-01-01  yearly income-tax scale: amount that reduces "
                "the tax\n"
                "                   19 %              yearly income-tax scale: from 0.00 zł to "
                "44490.00 zł\n"
                "                   30 %              yearly income-tax scale: from 44490.01 zł to "
                "85528.00 zł\n"
                "                   40 %              yearly income-tax scale: from 85528.01 zł\n"
                "   21              19 %  2004-01-01  flat income-tax rate");
    // The third band repeats the second, and is not told again.
    expect_line(rates({"--on", "2022-07-01", "--lang", "en"}),
                "   20        3600.00 zł  2022-07-01  yearly income-tax scale: amount that reduces "
                "the tax\n"
                "                   12 %              yearly income-tax scale: from 0.00 zł to "
                "120000.00 zł\n"
                "                   32 %              yearly income-tax scale: from 120000.01 zł\n"
                "   21              18 %  2009-01-01  flat income-tax rate");
}

TEST_F(Rates, TheReliefIsToldByBands) {
    expect_line(
        rates({"--on", "2022-07-01", "--lang", "en"}),
        "  113            6.68 %  2022-01-01  yearly tax relief: from 68412.00 zł to 102588.00 zł, "
        "amount 4566.00 zł, divisor 17 %\n"
        "                 7.35 %              yearly tax relief: from 102588.00 zł to 133692.00 "
        "zł, "
        "amount 9829.00 zł, divisor 17 %");
}

TEST_F(Rates, ARowHoldsFromItsDayToTheNext) {
    const ToolRun last_day = rates({"--on", "2021-12-08", "--lang", "en"});
    expect_line(last_day,
                "    1             9.5 %  2021-11-04  ceiling on the interest (0): twice as much");
    expect_line(last_day,
                "    3               8 %  2021-10-07  ceiling on the interest (2): twice as much");
    const ToolRun next_day = rates({"--on", "2021-12-09", "--lang", "en"});
    expect_line(next_day,
                "    1            14.5 %  2021-12-09  ceiling on the interest (0): twice as much");
    expect_line(next_day,
                "    3            10.5 %  2021-12-09  ceiling on the interest (2): twice as much");
}

TEST_F(Rates, BeforeTheFirstRowNothingHolds) {
    const ToolRun run = rates({"--on", "1990-01-01", "--lang", "en"});
    EXPECT_EQ(
        "What holds on 1990-01-01\n\nPayroll parameters\n  nothing\n\nRates per kilometre\n  "
        "nothing\n"
        "\nStatutory interest a year\n  nothing\n",
        run.out);
    EXPECT_EQ(0, run.status);
}

TEST_F(Rates, ByDefaultToday) {
    const auto today = [] {
        const std::time_t now = std::time(nullptr);
        char text[16];
        std::strftime(text, sizeof text, "%Y-%m-%d", std::localtime(&now));
        return "What holds on " + std::string(text);
    };
    const std::string before = today();
    const ToolRun run = rates({"--lang", "en"});
    EXPECT_TRUE(run.out.starts_with(before) || run.out.starts_with(today())) << run.out;
    EXPECT_EQ(0, run.status);
}

TEST_F(Rates, OtherFormsOfADay) {
    EXPECT_EQ(rates({"--on", "2022-03-01"}).out, rates({"--on", "1.03.2022"}).out);
    EXPECT_EQ(rates({"--on", "2022-03-01"}).out, rates({"--on", "2022-03-01 23:59:59"}).out);
    EXPECT_EQ(2, rates({"--on", "2022-02-30"}).status);
    EXPECT_EQ(2, rates({"--on", "5"}).status);
}

TEST_F(Rates, TheEnvironmentGivesTheLanguage) {
    const auto language = [&](const std::map<std::string, std::string>& environment) {
        Options options;
        options.environment = {{"LC_ALL", ""}, {"LC_MESSAGES", ""}, {"LANG", ""}};
        for (const auto& [name, value] : environment) {
            options.environment[name] = value;
        }
        const ToolRun run = rates({"--on", "2022-03-01"}, options);
        return run.out.starts_with("Obowiązuje") ? "pl" : "en";
    };
    EXPECT_STREQ("en", language({}));
    EXPECT_STREQ("pl", language({{"LANG", "pl_PL.UTF-8"}}));
    EXPECT_STREQ("en", language({{"LANG", "de_DE.UTF-8"}}));
    EXPECT_STREQ("en", language({{"LANG", "pl_PL.UTF-8"}, {"LC_MESSAGES", "C"}}));
    EXPECT_STREQ("pl", language({{"LANG", "C"}, {"LC_MESSAGES", "pl_PL"}}));
    EXPECT_STREQ("pl", language({{"LC_MESSAGES", "C"}, {"LC_ALL", "pl"}}));
}

// ---- Rows of other programs -----------------------------------------------------------------

TEST_F(Rates, RowsOfOtherProgramsAreRead) {
    execute(
        "insert into S_PLACE_PARAMETRY (id, dataod, wartosc) values (50, '2022-02-01 15:00:00', "
        "3333.3333);"
        "insert into S_PLACE_PARAMETRY (id, dataod, wartosc, wartosc2, wartosc4)"
        " values (900, '2022-02-02', 1.5, 0, 7);"
        "insert into S_PLACE_PARAMETRY (id, dataod, wartosc) values (901, 44594, 'dużo');"
        "insert into S_PLACE_PARAMETRY (id, dataod, wartosc) values (902, '2022-02-02', NULL);"
        "insert into S_StawkiKM values ('2022-02-02', 1, 0.99);"
        "insert into S_ODSETKI values (7, '2022-02-02', 3)");
    const ToolRun run = rates({"--on", "2022-03-01", "--lang", "en"});
    EXPECT_EQ("", run.err);
    expect_line(run, "   50      3333.3333 zł  2022-02-01  minimum monthly wage");
    expect_line(run,
                "  900               1.5  2022-02-02  a parameter without a description\n"
                "                      7              a parameter without a description: wartosc4");
    expect_line(run, "  901              dużo  2022-02-02  a parameter without a description");
    expect_line(run, "  902              none  2022-02-02  a parameter without a description");
    expect_line(run, "           0.9900 zł/km  2022-02-02  car with an engine of up to 900 cm³");
    expect_line(run, "    7               3 %  2022-02-02  a parameter without a description");
    expect_no_line(run, "wartosc2");
}

TEST_F(Rates, RowsWithoutAReadableKeyAreLeftOutAndTold) {
    execute(
        "insert into S_ODSETKI values (0, NULL, 1), (NULL, '2022-01-01', 2), (0, 'maj', 3),"
        " ('x', '2022-01-01', 4), (1e300, '2022-01-01', 5)");
    const ToolRun run = rates({"--on", "2022-03-01", "--lang", "en"});
    EXPECT_EQ("kvarta16: S_ODSETKI: 5 rows without a readable key are left out\n", run.err);
    EXPECT_EQ(0, run.status);
    expect_line(
        run, "    0            8.25 %  2022-02-09  statutory interest, from 2016 for late payment");
}

TEST_F(Rates, OfTwoRowsOfOneDayTheFirstHolds) {
    execute("insert into S_PLACE_PARAMETRY (id, dataod, wartosc) values (50, '2022-01-01', 1)");
    expect_line(rates({"--on", "2022-03-01", "--lang", "en"}),
                "   50        3010.00 zł  2022-01-01  minimum monthly wage");
}

// ---- What cannot be read --------------------------------------------------------------------

TEST_F(Rates, AFileThatIsNotThereIsNotMade) {
    path = folder.file("other.db");
    const ToolRun run = rates();
    EXPECT_EQ("", run.out);
    EXPECT_NE(std::string::npos, run.err.find("error 3024")) << run.err;
    EXPECT_EQ(1, run.status);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(Rates, MissingTablesAreToldWithWhatToDo) {
    execute("drop table S_StawkiKM");
    const ToolRun run = rates();
    EXPECT_EQ("", run.out);
    EXPECT_EQ("kvarta16: sqlite:" + path +
                  " has no table S_StawkiKM; make it with: kvarta16 seed --db " + "sqlite:" + path +
                  "\n",
              run.err);
    EXPECT_EQ(2, run.status);
}

TEST_F(Rates, AReadOnlyFileIsRead) {
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    Options options;
    options.in_child = respect_file_permissions;
    EXPECT_EQ(0, rates({}, options).status);
    std::filesystem::permissions(path, std::filesystem::perms::none);
    EXPECT_EQ(1, rates({}, options).status);
}

TEST_F(Rates, AForeignFile) {
    std::ofstream(path) << std::string(2000, 'x');
    const ToolRun run = rates();
    EXPECT_NE(std::string::npos, run.err.find("error 3343")) << run.err;
    EXPECT_EQ(1, run.status);
}

// ---- The words ------------------------------------------------------------------------------

TEST(RateWords, EverySeededKeyHasItsWords) {
    const auto has = [](const auto& words, Long key, auto member) {
        return std::ranges::find(words, key, member) != std::end(words);
    };
    for (const auto& row : statutory::payroll_rows_first) {
        EXPECT_TRUE(has(tool::parameter_words, row.id, &tool::ParameterWords::id)) << row.id;
    }
    for (const auto& row : statutory::payroll_rows_second) {
        EXPECT_TRUE(has(tool::parameter_words, row.id, &tool::ParameterWords::id)) << row.id;
    }
    for (const auto& row : statutory::mileage_rows) {
        EXPECT_TRUE(has(tool::mileage_words, row.ponizej900 ? -1 : 0, &tool::KeyWords::key));
    }
    for (const auto& row : statutory::interest_rows) {
        EXPECT_TRUE(has(tool::interest_words, row.rodzaj, &tool::KeyWords::key)) << row.rodzaj;
    }
}

TEST(RateWords, StandInOrderAndInBothLanguages) {
    Long before = 0;
    for (const tool::ParameterWords& words : tool::parameter_words) {
        EXPECT_GT(words.id, before);
        before = words.id;
        EXPECT_FALSE(words.meaning.polish.empty()) << words.id;
        EXPECT_FALSE(words.meaning.english.empty()) << words.id;
        for (const tool::Words& slot : words.slots) {
            EXPECT_EQ(slot.polish.empty(), slot.english.empty()) << words.id;
        }
    }
}

// A parameter that uses several slots has words for each of them, and no other parameter has.
TEST(RateWords, EverySlotInUseHasItsWords) {
    for (const tool::ParameterWords& words : tool::parameter_words) {
        std::size_t used = 1;
        const auto look = [&](const statutory::PayrollRow& row) {
            for (std::size_t i = 0; i < row.wartosc.size(); ++i) {
                used = row.id == words.id && row.wartosc[i] != Currency{} ? std::max(used, i + 1)
                                                                          : used;
            }
        };
        std::ranges::for_each(statutory::payroll_rows_first, look);
        std::ranges::for_each(statutory::payroll_rows_second, look);
        const auto described = static_cast<std::size_t>(std::ranges::count_if(
            words.slots, [](const tool::Words& slot) { return !slot.english.empty(); }));
        if (words.shape == tool::Shape::Values) {
            EXPECT_EQ(used > 1 ? used : 0, described) << words.id;
        } else {
            EXPECT_EQ(10, used) << words.id;
        }
    }
}

}  // namespace
}  // namespace tool_test
