// The tool on real servers, as a person runs it.
#include <tool/tool_process.h>

#include "odbc_support.h"

namespace kvarta16 {
namespace {

using tool_test::run_tool;
using tool_test::ToolRun;

class ToolOnServer : public OnServer {
  protected:
    void SetUp() override {
        OnServer::SetUp();
        if (db == nullptr) {
            return;
        }
        for (const char* table : {"S_PLACE_PARAMETRY", "S_StawkiKM", "S_ODSETKI"}) {
            drop(table);
        }
    }
    [[nodiscard]] ToolRun on_server(std::vector<std::string> words) const {
        words.insert(words.end(), {"--db", "odbc:" + server.connection_string()});
        return run_tool(words);
    }
};

INSTANTIATE_TEST_SUITE_P(Servers, ToolOnServer, every_server, server_name);

TEST_P(ToolOnServer, SeedsAndReadsTheRates) {
    EXPECT_NE(on_server({"rates"}).status, 0);
    ToolRun run = on_server({"seed"});
    EXPECT_EQ(run.out,
              "payroll  S_PLACE_PARAMETRY  722 added,    0 updated,    0 left  (table created)\n"
              "mileage  S_StawkiKM          12 added,    0 updated,    0 left  (table created)\n"
              "interest S_ODSETKI           86 added,    0 updated,    0 left  (table created)\n");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
    db->execute("update S_ODSETKI set procent=99 where Rodzaj=0 and procent=24");
    run = on_server({"seed", "--dialect", "jet"});
    EXPECT_EQ(run.out,
              "payroll  S_PLACE_PARAMETRY    0 added,    0 updated,  722 left\n"
              "mileage  S_StawkiKM           0 added,    0 updated,   12 left\n"
              "interest S_ODSETKI            0 added,    1 updated,   85 left\n"
              "Nothing was added: every row was there.\n");
    run = on_server({"rates", "--on", "2023-01-17", "--lang", "en"});
    EXPECT_NE(run.out.find("0.89"), std::string::npos) << run.out << run.err;
    EXPECT_EQ(run.status, 0);
}

TEST_P(ToolOnServer, OtherProgramsReachTheServerThroughRpc) {
    EXPECT_EQ(on_server({"seed"}).status, 0);
    tool_test::Options options;
    std::string name;
    for (const char c : server.connection_string()) {
        name += c == '\\' || c == '"' ? std::string("\\") + c : std::string(1, c);
    }
    options.input = R"({"jsonrpc":"2.0","id":1,"method":"host.connect","params":["odbc:)" + name +
                    "\"]}\n" + R"({"jsonrpc":"2.0","id":2,"method":"Akt.Ustaw_stawki_ryczałtu",)" +
                    R"("params":[{"Object":1},false,true]})" + "\n";
    const ToolRun run = run_tool({"rpc"}, options);
    EXPECT_NE(run.out.find(R"({"Object":1})"), std::string::npos) << run.out;
    EXPECT_EQ(run.out.find("error"), std::string::npos) << run.out;
    EXPECT_EQ(server.ask("select count(*) from S_StawkiKM"), "12");
}

TEST_P(ToolOnServer, NoMessageShowsThePassword) {
    if (is(ServerKind::SqliteDriver)) {
        return;  // it has none
    }
    const std::string name = "odbc:" + server.connection_string("tajne");
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"seed", "--db", name},
          {"rates", "--db", name},
          {"call", "Akt.Ustaw_stawki_ryczałtu", name, "false", "true"}}) {
        const ToolRun run = run_tool(words);
        EXPECT_NE(run.status, 0);
        EXPECT_EQ((run.out + run.err).find("tajne"), std::string::npos) << run.err;
        EXPECT_NE(run.err.find("firma"), std::string::npos) << run.err;
    }
    const ToolRun missing = on_server({"rates"});
    EXPECT_NE(missing.err.find("has no table S_PLACE_PARAMETRY"), std::string::npos) << missing.err;
    EXPECT_EQ(missing.err.find(DatabaseServer::password), std::string::npos) << missing.err;
}

}  // namespace
}  // namespace kvarta16
