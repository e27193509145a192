// Seeding real database files.
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include <gtest/gtest.h>

#include <kvarta16/frame/value.h>
#include <kvarta16/platform/sqlite/sqlite_connection.h>

#include "tool_process.h"

namespace tool_test {
namespace {

using namespace kvarta16;

class Seed : public testing::Test {
  protected:
    ToolRun seed(Words more = {}, const Options& options = {}) {
        more.insert(more.begin(), {"seed", "--db", "sqlite:" + path});
        return run_tool(more, options);
    }

    void execute(const std::string& sql) { sqlite::connect(path, {.create = true})->execute(sql); }

    // The first column of the rows of a select, as text.
    [[nodiscard]] std::vector<String> select(const String& sql) const {
        const auto db = sqlite::connect(path);
        const auto rows = db->CreateRecordset();
        rows->Open(sql, db, ado::CursorType::adOpenStatic, ado::LockType::adLockReadOnly,
                   ado::adCmdUnspecified);
        std::vector<String> values;
        for (; !rows->IsEOF(); rows->MoveNext()) {
            values.push_back(ToText(rows->Fields(Integer{0}).Value()));
        }
        return values;
    }
    [[nodiscard]] std::size_t row_count(const String& table) const {
        return select(u"select * from [" + table + u"]").size();
    }
    [[nodiscard]] bool table_exists(StringView table) const {
        return sqlite::connect(path)->table_exists(table);
    }

    TempFolder folder;
    std::string path = folder.file("firma.db");
};

std::string file_bytes(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

constexpr const char* all_added =
    "payroll  S_PLACE_PARAMETRY  722 added,    0 updated,    0 left  (table created)\n"
    "mileage  S_StawkiKM          12 added,    0 updated,    0 left  (table created)\n"
    "interest S_ODSETKI           86 added,    0 updated,    0 left  (table created)\n";
constexpr const char* all_left =
    "payroll  S_PLACE_PARAMETRY    0 added,    0 updated,  722 left\n"
    "mileage  S_StawkiKM           0 added,    0 updated,   12 left\n"
    "interest S_ODSETKI            0 added,    0 updated,   86 left\n"
    "Nothing was added: every row was there.\n";

TEST_F(Seed, ANewFileGetsAllRowsAndASecondRunAddsNone) {
    const ToolRun first = seed();
    EXPECT_EQ(all_added, first.out);
    EXPECT_EQ("", first.err);
    EXPECT_EQ(0, first.status);
    EXPECT_EQ(722, row_count(u"S_PLACE_PARAMETRY"));
    EXPECT_EQ(12, row_count(u"S_StawkiKM"));
    EXPECT_EQ(86, row_count(u"S_ODSETKI"));

    const ToolRun second = seed();
    EXPECT_EQ(all_left, second.out);
    EXPECT_EQ("", second.err);
    EXPECT_EQ(0, second.status);
    EXPECT_EQ(722, row_count(u"S_PLACE_PARAMETRY"));
}

TEST_F(Seed, BothDialectsFindTheRowsOfTheOther) {
    EXPECT_EQ(all_added, seed({"--dialect", "jet"}).out);
    EXPECT_EQ(all_left, seed({"--dialect", "odbc"}).out);
    EXPECT_EQ(all_left, seed({"--dialect", "jet"}).out);
}

TEST_F(Seed, TheChosenTablesAloneInTheirOwnOrder) {
    const ToolRun run = seed({"--tables", "interest,mileage,interest"});
    EXPECT_EQ(
        "mileage  S_StawkiKM          12 added,    0 updated,    0 left  (table created)\n"
        "interest S_ODSETKI           86 added,    0 updated,    0 left  (table created)\n",
        run.out);
    EXPECT_FALSE(table_exists(u"S_PLACE_PARAMETRY"));
}

TEST_F(Seed, ColumnsHaveTheirDeclaredTypes) {
    seed();
    execute("CREATE VIEW made AS SELECT sql FROM sqlite_master WHERE type <> 'view'");
    const std::vector<String> sql = select(u"select [sql] from [made]");
    ASSERT_EQ(6, sql.size());
    EXPECT_EQ(u"CREATE TABLE S_ODSETKI (Rodzaj SMALLINT, od_dnia DATETIME, procent CURRENCY)",
              sql[4]);
    EXPECT_EQ(u"CREATE INDEX S_ODSETKI_key ON S_ODSETKI (Rodzaj, od_dnia)", sql[5]);
    EXPECT_EQ(
        u"CREATE TABLE S_StawkiKM (Dataod DATETIME, Ponizej900 BOOLEAN, wartosc_wsp4 CURRENCY)",
        sql[2]);
    EXPECT_TRUE(sql[0].starts_with(
        u"CREATE TABLE S_PLACE_PARAMETRY (id SMALLINT, dataod DATETIME, wartosc CURRENCY, "));
    EXPECT_TRUE(sql[0].ends_with(u", wartosc10 CURRENCY)"));
}

TEST_F(Seed, CountsWhatHasReallyChanged) {
    seed();
    execute(
        "update S_ODSETKI set procent = 99 where Rodzaj = 0 and od_dnia < '2000-01-01';"
        "update S_ODSETKI set procent = 9.6 where Rodzaj = 1 and od_dnia like '2021-11-04%';"
        "delete from S_ODSETKI where Rodzaj = 4;"
        "insert into S_ODSETKI values (0, '2023-01-01', 5);"
        "update S_PLACE_PARAMETRY set wartosc = 1 where id = 20;"
        "delete from S_PLACE_PARAMETRY where id = 50;"
        "update S_StawkiKM set wartosc_wsp4 = 0.5");
    EXPECT_EQ(
        "payroll  S_PLACE_PARAMETRY   26 added,    0 updated,  696 left\n"
        "mileage  S_StawkiKM           0 added,    0 updated,   12 left\n"
        "interest S_ODSETKI            8 added,    3 updated,   75 left\n",
        seed().out);
    EXPECT_EQ(87, row_count(u"S_ODSETKI"));
    EXPECT_EQ((std::vector<String>{u"1"}),
              select(u"select [wartosc] from S_PLACE_PARAMETRY where [id]=20 and "
                     u"[dataod]>={d '2022-07-01'}"));
}

TEST_F(Seed, ARateThatIsRestoredIsNoAddition) {
    seed();
    execute("update S_ODSETKI set procent = procent + 1");
    EXPECT_EQ(
        "interest S_ODSETKI            0 added,   86 updated,    0 left\n"
        "Nothing was added: every row was there.\n",
        seed({"--tables", "interest"}).out);
}

// A key that comes by twice counts once, by what it was before and is afterwards.
TEST_F(Seed, TheSameValueInAColumnOfAnotherTypeIsNoUpdate) {
    execute(
        "CREATE TABLE S_ODSETKI (Rodzaj INTEGER, od_dnia DATETIME, procent REAL);"
        "insert into S_ODSETKI values (0, '1999-02-01', 24), (0, '1999-05-15 15:00:00', 21.0),"
        " (1, '2021-11-04', 9.5), (1, '2021-12-09', 14)");
    EXPECT_EQ("interest S_ODSETKI           82 added,    1 updated,    3 left\n",
              seed({"--tables", "interest"}).out);
}

// ---- All or nothing -------------------------------------------------------------------------

TEST_F(Seed, ATableThatFailsHalfWayIsAsItWas) {
    // The 12.25 of 2004 stands behind six rows that the table takes.
    execute(
        "CREATE TABLE S_ODSETKI (Rodzaj SMALLINT, od_dnia DATETIME, procent CURRENCY "
        "CHECK (procent <> 12.25));"
        "insert into S_ODSETKI values (9, '2001-01-01', 7)");
    const ToolRun run = seed();
    EXPECT_EQ(
        "payroll  S_PLACE_PARAMETRY  722 added,    0 updated,    0 left  (table created)\n"
        "mileage  S_StawkiKM          12 added,    0 updated,    0 left  (table created)\n",
        run.out);
    EXPECT_TRUE(run.err.starts_with("kvarta16: interest: error ")) << run.err;
    EXPECT_NE(std::string::npos, run.err.find("interest is as it was; done before it: payroll, "
                                              "mileage. Run it again to complete the rest."))
        << run.err;
    EXPECT_EQ(1, run.status);
    EXPECT_EQ(1, row_count(u"S_ODSETKI"));
    EXPECT_EQ(722, row_count(u"S_PLACE_PARAMETRY"));
}

TEST_F(Seed, ATableWithoutAColumnOfTheSuite) {
    execute("CREATE TABLE S_StawkiKM (Dataod DATETIME, wartosc_wsp4 CURRENCY)");
    const ToolRun run = seed();
    EXPECT_TRUE(run.err.starts_with("kvarta16: mileage: error ")) << run.err;
    EXPECT_NE(std::string::npos, run.err.find("onizej900")) << run.err;
    EXPECT_NE(std::string::npos, run.err.find("done before it: payroll.")) << run.err;
    EXPECT_EQ(1, run.status);
    EXPECT_FALSE(table_exists(u"S_ODSETKI"));
}

TEST_F(Seed, CtrlCLeavesTheTableAsItWas) {
    execute("CREATE TABLE S_StawkiKM (Dataod DATETIME, Ponizej900 BOOLEAN, wartosc_wsp4 CURRENCY)");
    const auto lock = sqlite::connect(path);
    lock->BeginTrans();
    lock->execute("insert into S_StawkiKM values ('2000-01-01', 0, 1)");

    Pipe out;
    const pid_t process = start_tool({"seed", "--db", "sqlite:" + path, "--tables", "mileage"},
                                     STDIN_FILENO, out.write_end, out.write_end, {});
    close_file(out.write_end);
    // It waits for the lock; Ctrl-C is then its own business and not the system's.
    const auto catches_interrupt = [&] {
        std::ifstream status("/proc/" + std::to_string(process) + "/status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with("SigCgt:")) {
                return (std::stoull(line.substr(7), nullptr, 16) >> (SIGINT - 1) & 1) != 0;
            }
        }
        return false;
    };
    while (!catches_interrupt()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    ::kill(process, SIGINT);
    lock->RollbackTrans();

    std::string text;
    while (read_some(out.read_end, text)) {
    }
    close_file(out.read_end);
    EXPECT_EQ(130, status_of(process));
    EXPECT_NE(std::string::npos, text.find("kvarta16: interrupted\n")) << text;
    EXPECT_NE(std::string::npos, text.find("mileage is as it was; done before it: none.")) << text;
    EXPECT_EQ(0, row_count(u"S_StawkiKM"));
}

// ---- Files that cannot be seeded ------------------------------------------------------------

TEST_F(Seed, AReadOnlyFileIsLeftAsItIs) {
    seed({"--tables", "mileage"});
    const std::string before = file_bytes(path);
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    Options options;
    options.in_child = respect_file_permissions;
    const ToolRun run = seed({}, options);
    EXPECT_EQ("", run.out);
    EXPECT_NE(std::string::npos, run.err.find("error 3027")) << run.err;
    EXPECT_NE(std::string::npos, run.err.find("firma.db")) << run.err;
    EXPECT_EQ(1, run.status);
    EXPECT_EQ(before, file_bytes(path));
}

TEST_F(Seed, AFolder) {
    std::filesystem::create_directory(path);
    const ToolRun run = seed();
    EXPECT_NE(std::string::npos, run.err.find("error 3051")) << run.err;
    EXPECT_EQ(1, run.status);
    EXPECT_EQ("", run.out);
}

TEST_F(Seed, AFolderThatIsNotThere) {
    path = folder.file("none/firma.db");
    const ToolRun run = seed();
    EXPECT_NE(std::string::npos, run.err.find("error 3044")) << run.err;
    EXPECT_EQ(1, run.status);
}

TEST_F(Seed, ATextFileIsLeftAsItIs) {
    std::ofstream(path) << "Id;Data\n1;2024-05-17\n";
    const std::string before = file_bytes(path);
    const ToolRun run = seed();
    EXPECT_NE(std::string::npos, run.err.find("error 3343")) << run.err;
    EXPECT_EQ(1, run.status);
    EXPECT_EQ(before, file_bytes(path));
}

TEST_F(Seed, AFileThatAnotherProcessHasLocked) {
    execute("CREATE TABLE other (x)");
    const auto lock = sqlite::connect(path);
    lock->BeginTrans();
    lock->execute("insert into other values (1)");
    const ToolRun run = seed();
    EXPECT_NE(std::string::npos, run.err.find("error 3260")) << run.err;
    EXPECT_EQ(1, run.status);
    EXPECT_EQ("", run.out);
    lock->CommitTrans();
    EXPECT_EQ(all_added, seed().out);
}

// ---- Questions and the terminal -------------------------------------------------------------

TEST_F(Seed, WithoutATerminalAQuestionIsAnsweredNo) {
    const ToolRun run = seed({"--ask", "--tables", "payroll,interest"});
    EXPECT_EQ(
        "payroll  S_PLACE_PARAMETRY  not seeded: the question was answered No\n"
        "interest S_ODSETKI          not seeded: the question was answered No\n",
        run.out);
    EXPECT_NE(std::string::npos, run.err.find("Aktualizować parametry płacowe ?")) << run.err;
    EXPECT_EQ(0, run.status);
    EXPECT_FALSE(table_exists(u"S_PLACE_PARAMETRY"));
}

TEST_F(Seed, OnATerminalThePersonDecides) {
    TerminalRun terminal({"seed", "--db", "sqlite:" + path, "--ask"});
    terminal.read_until("płacowe ? ");
    terminal.type("n\n");
    terminal.read_until("samochodowego ? ");
    terminal.type("t\n");
    terminal.read_until("ustawowych ? ");
    terminal.type("n\n");
    const ToolRun run = terminal.finish();
    EXPECT_EQ(0, run.status);
    EXPECT_FALSE(table_exists(u"S_PLACE_PARAMETRY"));
    EXPECT_EQ(12, row_count(u"S_StawkiKM"));
    EXPECT_FALSE(table_exists(u"S_ODSETKI"));
}

TEST_F(Seed, CtrlCAtAQuestionEndsTheTool) {
    TerminalRun terminal({"seed", "--db", "sqlite:" + path, "--ask"});
    terminal.read_until("[Tak]");
    terminal.type("\x03");
    EXPECT_EQ(128 + SIGINT, terminal.finish().status);
    EXPECT_FALSE(table_exists(u"S_PLACE_PARAMETRY"));
}

TEST_F(Seed, ATerminalShowsProgressAndClearsIt) {
    TerminalRun terminal({"seed", "--db", "sqlite:" + path, "--tables", "mileage"});
    const ToolRun run = terminal.finish();
    EXPECT_EQ(0, run.status);
    const std::size_t half =
        run.out.find("mileage [####################....................] 50 %");
    const std::size_t cleared = run.out.rfind("\r\033[K");
    const std::size_t result = run.out.find("mileage  S_StawkiKM          12 added");
    ASSERT_NE(std::string::npos, half) << run.out;
    ASSERT_NE(std::string::npos, result) << run.out;
    EXPECT_LT(half, cleared);
    EXPECT_LT(cleared, result);
}

}  // namespace
}  // namespace tool_test
