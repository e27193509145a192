// The commands on database files, on real ones.
#include <chrono>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include <kvarta16/platform/sqlite/sqlite_connection.h>

#include "tool_process.h"

namespace tool_test {
namespace {

using namespace kvarta16;

class DbCommands : public testing::Test {
  protected:
    void SetUp() override {
        sqlite::connect(path, {.create = true})->execute("create table seen (n INTEGER)");
        run_well({"db", "exec", path,
                  "create table towary (ID counter primary key, nazwa text(40), cena currency, ile "
                  "long, data_operacji datetime, ok bit)"});
        run_well({"db", "exec", path, "drop table seen"});
        run_well({"db", "exec", path, "insert into towary (nazwa, cena) values ('Śruba', 1.25)"});
        run_well({"db", "exec", path, "insert into towary (ile, ok) values (7, true)"});
    }

    static std::string run_well(const Words& words) {
        const ToolRun run = run_tool(words);
        EXPECT_EQ(run.status, 0) << testing::PrintToString(words);
        EXPECT_EQ(run.err, "") << testing::PrintToString(words);
        return run.out;
    }
    [[nodiscard]] std::string shown() const { return run_well({"db", "show", path}); }
    [[nodiscard]] std::string rows(const std::string& select) const {
        return run_well({"db", "exec", path, select});
    }

    TempFolder folder;
    std::string path = folder.file("firma.db");
};

constexpr const char* as_made =
    "towary: 2 rows\n"
    "  ID                         long\n"
    "  nazwa                      text(40)\n"
    "  cena                       currency\n"
    "  ile                        long\n"
    "  data_operacji              date\n"
    "  ok                         boolean\n";

TEST_F(DbCommands, ShowWhatAFileHolds) {
    EXPECT_EQ(shown(), as_made);
    EXPECT_EQ(run_well({"db", "show", path, "--table", "TOWARY"}),
              std::string(as_made) +
                  "\nID\tnazwa\tcena\tile\tdata_operacji\tok\n"
                  "1\tŚruba\t1,25\tNull\tNull\tNull\n"
                  "2\tNull\tNull\t7\tNull\tPrawda\n");
    const ToolRun unknown = run_tool({"db", "show", path, "--table", "nic"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_NE(unknown.err.find("has no table \"nic\""), std::string::npos);
}

TEST_F(DbCommands, ExecTellsWhatIsWrong) {
    EXPECT_EQ(rows("select nazwa from towary where ID=1"), "nazwa\nŚruba\n");
    for (const auto& [sql, number] : {std::pair{"drop tabel x", "3295"},
                                      {"select * from nic", "3078"},
                                      {"update nic set a=1", "3078"}}) {
        const ToolRun run = run_tool({"db", "exec", path, sql});
        EXPECT_EQ(run.status, 1) << sql;
        EXPECT_NE(run.err.find(std::string("error ") + number), std::string::npos) << run.err;
    }
    EXPECT_EQ(shown(), as_made);
}

TEST_F(DbCommands, PlansChangeNothing) {
    EXPECT_EQ(run_well({"db", "clean", path, "--plan"}),
              "-- table [towary] becomes [TOWARY]\n"
              "-- default of [ID]: 0\n"
              "UPDATE [TOWARY] SET [ID]=0  where [ID] is null;\n"
              "-- [nazwa] takes the empty text\n"
              "-- default of [nazwa]: \"\"\n"
              "UPDATE [TOWARY] SET [nazwa]='' where [nazwa] is null;\n"
              "-- default of [cena]: 0\n"
              "UPDATE [TOWARY] SET [cena]=0  where [cena] is null;\n"
              "-- default of [ile]: 0\n"
              "UPDATE [TOWARY] SET [ile]=0  where [ile] is null;\n"
              "-- default of [data_operacji]: NOW()\n"
              "UPDATE [TOWARY] SET [data_operacji]=#01-01-1990#  where [data_operacji] is null;\n");
    EXPECT_EQ(run_well({"db", "widen", path, "--table", "towary", "--plan", "--owner", "adm"}),
              "alter table adm.[towary] drop COLUMN ccxxdfredvvcxds__ddfr ;\n"
              "alter table adm.[towary] ADD ccxxdfredvvcxds__ddfr text(255);\n"
              "UPDATE adm.[towary] SET ccxxdfredvvcxds__ddfr=[nazwa];\n"
              "drop INDEX indnazwa ON adm.[towary];\n"
              "alter table adm.[towary] drop COLUMN nazwa;\n"
              "alter table adm.[towary] ADD nazwa text(255);\n"
              "UPDATE adm.[towary] SET nazwa=ccxxdfredvvcxds__ddfr;\n"
              "alter table adm.[towary] drop COLUMN ccxxdfredvvcxds__ddfr;\n");
    EXPECT_EQ(shown(), as_made);
}

TEST_F(DbCommands, CleanAndKeepACopy) {
    const auto start = std::chrono::steady_clock::now();
    const ToolRun run = run_tool({"db", "clean", path, "--backup"});
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "kvarta16: copied to " + path + ".bak\n");
    EXPECT_EQ(rows("select nazwa, cena, ile, data_operacji, ok from TOWARY order by ID"),
              "nazwa\tcena\tile\tdata_operacji\tok\n"
              "Śruba\t1,25\t0\t1990-01-01\tNull\n"
              "\t0\t7\t1990-01-01\tPrawda\n");
    EXPECT_TRUE(shown().starts_with("TOWARY: 2 rows\n"));
    EXPECT_EQ(run_well({"db", "show", path + ".bak"}), as_made);

    const ToolRun again = run_tool({"db", "clean", path, "--backup"});
    EXPECT_EQ(again.status, 2);
    EXPECT_NE(again.err.find("is there already"), std::string::npos);
}

TEST_F(DbCommands, WidenKeepsTheData) {
    EXPECT_EQ(run_well({"db", "widen", path, "--table", "Towary"}), "");
    EXPECT_EQ(rows("select * from towary"),
              "ID\tcena\tile\tdata_operacji\tok\tnazwa\n"
              "1\t1,25\tNull\tNull\tNull\tŚruba\n"
              "2\tNull\t7\tNull\tPrawda\tNull\n");
    EXPECT_NE(shown().find("nazwa                      text(255)"), std::string::npos);
}

// A column that an index of another name holds cannot be dropped: it stays narrow, and the person
// is told.
TEST_F(DbCommands, WidenTellsWhatWasNotDone) {
    run_well({"db", "exec", path, "create index other on towary (nazwa)"});
    const ToolRun run = run_tool({"db", "widen", path, "--table", "towary"});
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("not done: alter table dbo.[towary] drop COLUMN nazwa"),
              std::string::npos)
        << run.err;
    EXPECT_NE(run.err.find("2 statements were not done"), std::string::npos) << run.err;
    EXPECT_EQ(shown(), as_made);
    EXPECT_NE(rows("select nazwa from towary").find("Śruba"), std::string::npos);
}

TEST_F(DbCommands, FilesThatAreNone) {
    const std::string missing = folder.file("nic.db");
    const std::string text = folder.file("text.db");
    std::ofstream(text) << "To nie jest baza danych, tylko zwykły tekst, i to dość długi tekst.\n";
    for (const auto& [file, number] : {std::pair{missing, "3024"}, {text, "3343"}}) {
        const ToolRun check = run_tool({"db", "check", file});
        EXPECT_EQ(check.status, 1);
        EXPECT_NE(check.out.find(std::string(": error ") + number), std::string::npos) << check.out;
        for (const Words& words : {Words{"db", "clean", file}, Words{"db", "show", file},
                                   Words{"db", "widen", file, "--table", "t"},
                                   Words{"db", "exec", file, "drop table t"}}) {
            const ToolRun run = run_tool(words);
            EXPECT_EQ(run.status, 1) << testing::PrintToString(words);
            EXPECT_NE(run.err.find(std::string("error ") + number), std::string::npos) << run.err;
        }
    }
    EXPECT_FALSE(std::filesystem::exists(missing));
    EXPECT_EQ(run_well({"db", "check", path}), path + ": opens as a database\n");
}

TEST_F(DbCommands, NewAsksBeforeItOverwrites) {
    const std::string fresh = folder.file("nowa.db");
    EXPECT_EQ(run_well({"db", "new", fresh}), fresh + ": made\n");
    EXPECT_EQ(run_well({"db", "check", fresh}), fresh + ": opens as a database\n");
    EXPECT_EQ(run_well({"db", "show", fresh}), "");

    const ToolRun silent = run_tool({"db", "new", path, "--silent"});
    EXPECT_EQ(silent.status, 1);
    EXPECT_EQ(silent.out, path + ": not made\n");
    EXPECT_EQ(silent.err, "");
    const ToolRun unattended = run_tool({"db", "new", path});
    EXPECT_EQ(unattended.status, 1);
    EXPECT_NE(unattended.err.find("Nadpisać " + path), std::string::npos);
    EXPECT_EQ(shown(), as_made);
}

TEST(DbCommandLine, WrongOnes) {
    for (const Words& words : {Words{"db"}, Words{"db", "clean"}, Words{"db", "widen", "x.db"},
                               Words{"db", "exec", "x.db"}, Words{"db", "mend", "x.db"}}) {
        EXPECT_EQ(run_tool(words).status, 2) << testing::PrintToString(words);
    }
}

}  // namespace
}  // namespace tool_test
