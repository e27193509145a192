// The commands for a person's own questions: amounts in words, days, holidays, identifiers,
// length of service.
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/hr/Kadry.h>

#include "tool_process.h"

namespace tool_test {
namespace {

using namespace kvarta16;

struct Case {
    Words words;
    std::string out;
};

void expect_all(const std::vector<Case>& cases) {
    for (const Case& test : cases) {
        const ToolRun run = run_tool(test.words);
        EXPECT_EQ(run.out, test.out) << testing::PrintToString(test.words);
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(run.status, 0);
    }
}

void expect_refused(const std::vector<Words>& lines, const std::string& reason) {
    for (const Words& words : lines) {
        const ToolRun run = run_tool(words);
        EXPECT_EQ(run.status, 2) << testing::PrintToString(words);
        EXPECT_EQ(run.out, "");
        EXPECT_NE(run.err.find(reason), std::string::npos) << run.err;
    }
}

TEST(EverydayCommands, AmountsInWords) {
    expect_all({
        {{"slownie", "1234,56"}, "JedenTysiącDwieścieTrzydzieściCztery zł i 56 gr\n"},
        {{"slownie", "1234.5"}, "JedenTysiącDwieścieTrzydzieściCztery zł i 50 gr\n"},
        {{"slownie", "21 000"}, "DwadzieściaJedenTysięcy zł i 00 gr\n"},
        {{"slownie", "21\u00A0000"}, "DwadzieściaJedenTysięcy zł i 00 gr\n"},
        {{"slownie", "0,50"}, "zero  zł i 50 gr\n"},
        {{"slownie", "-123,45"}, "StoDwadzieściaTrzy zł i 45 gr\n"},
    });
    expect_refused({{"slownie", "abc"},
                    {"slownie", "1.234,56"},
                    {"slownie", "1,234"},
                    {"slownie", "12zł"},
                    {"slownie", ",50"},
                    {"slownie", "--5"},
                    {"slownie", ""}},
                   "is no amount");
    expect_refused({{"slownie"}, {"slownie", "1", "2"}}, "one amount is wanted");
}

TEST(EverydayCommands, KindsOfDays) {
    expect_all({
        {{"dzien", "2025-12-24", "--lang", "pl"}, "2025-12-24: środa, święto\n"},
        {{"dzien", "2025-12-24", "--lang", "en"}, "2025-12-24: Wednesday, public holiday\n"},
        {{"dzien", "24.12.2024", "--lang", "pl"}, "2024-12-24: wtorek, dzień roboczy\n"},
        {{"dzien", "2026-11-21", "--lang", "pl"}, "2026-11-21: sobota, dzień wolny\n"},
        {{"dzien", "2026-11-22", "--lang", "en"}, "2026-11-22: Sunday, day off\n"},
        {{"dzien", "2021-05-01", "--lang", "pl"}, "2021-05-01: sobota, święto\n"},
    });
    expect_refused({{"dzien", "2025-13-24"}, {"dzien", "tomorrow"}}, "is no date");
    const ToolRun late = run_tool({"dzien", "2031-04-14", "--lang", "en"});
    EXPECT_EQ(late.out, "2031-04-14: Monday, working day\n");
    EXPECT_NE(late.err.find("DANE KALENDARZA DLA LAT > 2030"), std::string::npos);
}

TEST(EverydayCommands, HolidaysOfAYear) {
    const ToolRun run = run_tool({"swieta", "2026", "--lang", "pl"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out,
              "2026-01-01  czwartek      Nowy Rok\n"
              "2026-01-06  wtorek        Trzech Króli\n"
              "2026-04-05  niedziela     Wielkanoc\n"
              "2026-04-06  poniedziałek  Poniedziałek Wielkanocny\n"
              "2026-05-01  piątek        Święto Pracy\n"
              "2026-05-03  niedziela     Święto Konstytucji Trzeciego Maja\n"
              "2026-05-24  niedziela     Zielone Świątki\n"
              "2026-06-04  czwartek      Boże Ciało\n"
              "2026-08-15  sobota        Wniebowzięcie Najświętszej Maryi Panny\n"
              "2026-11-01  niedziela     Wszystkich Świętych\n"
              "2026-11-11  środa         Narodowe Święto Niepodległości\n"
              "2026-12-24  czwartek      Wigilia Bożego Narodzenia\n"
              "2026-12-25  piątek        Boże Narodzenie, pierwszy dzień\n"
              "2026-12-26  sobota        Boże Narodzenie, drugi dzień\n");
    EXPECT_NE(run_tool({"swieta", "2010", "--lang", "en"}).out.find("Easter Monday"),
              std::string::npos);
    EXPECT_EQ(run_tool({"swieta", "2010", "--lang", "en"}).out.find("Epiphany"), std::string::npos);
}

// The days that are listed are the days that the calendar knows.
TEST(EverydayCommands, HolidaysAreThoseOfTheCalendar) {
    for (const int year : {2001, 2008, 2011, 2025, 2030}) {
        const ToolRun run = run_tool({"swieta", std::to_string(year)});
        std::set<std::string> listed;
        std::istringstream lines(run.out);
        for (std::string line; std::getline(lines, line);) {
            listed.insert(line.substr(0, 10));
        }
        for (Long day = day_number(year, 1, 1); day <= day_number(year, 12, 31); ++day) {
            const Date date{static_cast<Double>(day)};
            const bool is_listed = listed.contains(to_utf8(FormatMask(date, u"yyyy-MM-dd")));
            if (Kadry().PodajDzień(date) != 6) {
                EXPECT_EQ(is_listed, Kadry().PodajDzień(date, true) == 6) << year << " " << day;
            }
        }
    }
}

TEST(EverydayCommands, HolidaysOfYearsThatAreNotListed) {
    const ToolRun run = run_tool({"swieta", "1999", "--lang", "pl"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out.find("Wielkanoc"), std::string::npos);
    EXPECT_TRUE(run.out.starts_with("1999-01-01  piątek        Nowy Rok\n"));
    EXPECT_NE(run.err.find("from 2001 to 2030"), std::string::npos);
    EXPECT_EQ(run_tool({"swieta", "99"}).status, 2);
    EXPECT_EQ(run_tool({"swieta", "next"}).status, 2);
}

TEST(EverydayCommands, Identifiers) {
    expect_all({
        {{"pesel", "44051401359", "--lang", "pl"}, "44051401359: poprawny\n"},
        {{"pesel", "440514 01359", "--lang", "en"}, "44051401359: correct\n"},
        {{"nip", "526-000-12-46", "--lang", "pl"}, "5260001246: poprawny\n"},
    });
    for (const Words& words : {Words{"pesel", "44051401358", "--lang", "en"},
                               Words{"nip", "5260001247", "--lang", "en"}}) {
        const ToolRun run = run_tool(words);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out, words[1] + ": wrong: the check digit does not agree\n");
    }
    expect_refused({{"pesel", "4405140135"}, {"pesel", "4405140135x"}, {"pesel", "440514013599"}},
                   "it has 11 digits");
    expect_refused({{"nip", "526-000-12-4"}, {"nip", "PL5260001246"}, {"nip", "52600012461"}},
                   "it has 10 digits");
}

TEST(EverydayCommands, LengthOfService) {
    expect_all({
        {{"staz", "2018-03-01", "2020-12-31", "2021-02-15", "2026-10-31", "--lang", "en"},
         "2018-03-01  2020-12-31    years: 2, months: 10, days: 0\n"
         "2021-02-15  2026-10-31    years: 5, months: 8, days: 14\n"
         "total                     years: 8, months: 6, days: 14\n"
         "days of leave a year: 20\n"},
        {{"staz", "2018-03-01", "2020-12-31", "--szkola", "8", "--lang", "pl"},
         "2018-03-01  2020-12-31    lat: 2, miesięcy: 10, dni: 0\n"
         "razem                     lat: 2, miesięcy: 10, dni: 0\n"
         "urlop w roku, dni: 26\n"},
        {{"staz", "2025-07-01", "2026-06-30", "--wiek", "17", "--lang", "pl"},
         "2025-07-01  2026-06-30    lat: 1, miesięcy: 0, dni: 0\n"
         "razem                     lat: 1, miesięcy: 0, dni: 0\n"
         "urlop w roku, dni: 26\n"},
    });
    expect_refused({{"staz", "2018-03-01"}, {"staz", "2018-03-01", "2019-01-01", "2020-01-01"}},
                   "its first and its last day");
    expect_refused({{"staz", "2018-03-01", "2018-02-28"}}, "is before");
    expect_refused({{"staz", "2018-03-01", "never"}}, "is no date");
    EXPECT_EQ(run_tool({"staz"}).status, 2);
}

}  // namespace
}  // namespace tool_test
