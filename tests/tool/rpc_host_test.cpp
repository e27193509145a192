// The host's methods: objects, connections, boxes, faults, the catalogue.
#include <filesystem>
#include <fstream>
#include <set>

#include <kvarta16/frame/catalogue.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/platform/sqlite/sqlite_connection.h>

#include "rpc_client.h"

namespace tool_test {
namespace {

using kvarta16::sqlite::connect;

constexpr const char* empty = R"({"Empty":null})";
constexpr const char* mileage_table =
    "CREATE TABLE S_StawkiKM (Dataod DATETIME, Ponizej900 BOOLEAN, wartosc_wsp4 CURRENCY)";

// A new database with the table of the mileage rates, and a client that has it as object 1.
class RpcDatabase : public testing::Test {
  protected:
    void SetUp() override {
        connect(path, {.create = true})->execute(mileage_table);
        ASSERT_EQ(R"({"Object":1})",
                  rpc.value("host.connect", '[' + quoted("sqlite:" + path) + ']'));
    }

    [[nodiscard]] std::size_t row_count() const {
        const auto db = connect(path);
        const auto rows = db->CreateRecordset();
        rows->Open(u"select [Dataod] from [S_StawkiKM]", db,
                   kvarta16::ado::CursorType::adOpenStatic, kvarta16::ado::LockType::adLockReadOnly,
                   kvarta16::ado::adCmdUnspecified);
        std::size_t count = 0;
        for (; !rows->IsEOF(); rows->MoveNext()) {
            ++count;
        }
        return count;
    }
    // The number of the failure of a seeding, 0 where it succeeds.
    int seed() { return rpc.code(run, R"([{"Object":1},false,true])"); }

    static constexpr const char* run = "Akt.Ustaw_stawki_ryczałtu";
    TempFolder folder;
    std::string path = folder.file("firma.db");
    RpcClient rpc;
};

// ---- Objects --------------------------------------------------------------------------------

TEST(RpcObjects, EachHasItsOwnState) {
    RpcClient rpc;
    EXPECT_EQ(R"({"Object":1})", rpc.value("host.create", R"(["aChar"])"));
    EXPECT_EQ(R"({"Object":2})", rpc.value("host.create", R"([{"String":"aChar"}])"));
    EXPECT_EQ(empty, rpc.value("@1.c_aaa=", R"(["one"])"));
    EXPECT_EQ(empty, rpc.value("@2.c_aaa=", "[2.5]"));
    EXPECT_EQ(empty, rpc.value("aChar.c_aaa=", R"(["thread"])"));
    EXPECT_EQ(R"({"String":"one"})", rpc.value("@1.c_aaa", ""));
    EXPECT_EQ(R"({"String":"2,5"})", rpc.value("@2.c_aaa", "[]"));
    EXPECT_EQ(R"({"String":"thread"})", rpc.value("aChar.c_aaa", ""));
    EXPECT_EQ(R"({"String":"x"})", rpc.value("@1.NullStr", R"(["x"])"));
}

TEST(RpcObjects, ReleasedOnesAreGoneAndNumbersAreNotGivenAgain) {
    RpcClient rpc;
    EXPECT_EQ(R"({"Object":1})", rpc.value("host.create", R"(["amain"])"));
    EXPECT_EQ(empty, rpc.value("host.release", R"([{"Object":1}])"));
    EXPECT_EQ(-32601, rpc.code("@1.VersjaLib"));
    EXPECT_EQ(-32601, rpc.code("aChar.NullStr", R"([{"Object":1}])"));
    EXPECT_EQ(-32601, rpc.code("host.release", R"([{"Object":1}])"));
    EXPECT_EQ(R"({"Object":2})", rpc.value("host.create", R"(["amain"])"));
    EXPECT_EQ(R"({"String":"1.0.9999.kvarta16"})", rpc.value("@2.VersjaLib", ""));
}

TEST(RpcObjects, AnArgumentComesBackWithItsNumber) {
    RpcClient rpc;
    rpc.value("host.create", R"(["amain"])");
    rpc.value("host.create", R"(["amain"])");
    EXPECT_EQ(Json::parse(R"([{"Object":2}])"),
              rpc.result("aLiczby.VarValVar", R"([{"Object":2}])")["args"]);
    // A class is no database.
    const Json error = rpc.error("Akt.Ustaw_stawki_ryczałtu", R"([{"Object":1},false,true])");
    EXPECT_EQ(13, error["code"]);
    EXPECT_EQ(Json::parse(R"({"Object":1})"), error["data"]["args"][0]);
}

TEST(RpcObjects, WrongRequests) {
    RpcClient rpc;
    EXPECT_EQ(-32601, rpc.code("host.create", R"(["Nothing"])"));
    EXPECT_EQ(-32602, rpc.code("host.create", "[5]"));
    EXPECT_EQ(-32602, rpc.code("host.create", "[null]"));
    EXPECT_EQ(-32602, rpc.code("host.create", "[]"));
    EXPECT_EQ(-32602, rpc.code("host.create", R"(["amain","amain"])"));
    EXPECT_EQ(-32602, rpc.code("host.release", "[1]"));
    EXPECT_EQ(-32602, rpc.code("host.release", R"([{"Object":0}])"));
    EXPECT_EQ(-32601, rpc.code("host.release", R"([{"Object":7}])"));
    EXPECT_EQ(-32602, rpc.code("host.release", ""));
}

TEST(RpcObjects, AnswersOfTheHostHaveTheSameEnvelope) {
    RpcClient rpc;
    EXPECT_EQ(R"({"jsonrpc":"2.0","id":1,"result":{"value":{"Object":1},"args":[],"boxes":[]}})",
              rpc.call("host.create", R"(["amain"])"));
    EXPECT_EQ(R"({"jsonrpc":"2.0","id":2,"result":{"value":{"Empty":null},"args":[],"boxes":[]}})",
              rpc.call("host.sleep", R"(["record"])"));
}

// ---- Message boxes --------------------------------------------------------------------------

TEST(RpcBoxes, AnOkBoxIsToldAndAnsweredOk) {
    RpcClient rpc;
    const Json box =
        Json::parse(R"({"text":"VarValR0Str nie używana","style":0,"title":null,"answer":"ok"})");
    EXPECT_EQ(Json::array({box}), rpc.result("aLiczby.VarValR0Str", "[5]")["boxes"]);
    EXPECT_EQ(Json::array(), rpc.result("aLiczby.VarR2Str", "[5]")["boxes"]);
}

TEST_F(RpcDatabase, AQuestionIsAnsweredNoWhereNothingIsQueued) {
    const Json result = rpc.result(run, R"([{"Object":1},true,true])");
    const Json box = Json::parse(
        R"({"text":"Aktualizować stawki ryczałtu samochodowego ? ","style":36,"title":null,"answer":"no"})");
    EXPECT_EQ(Json::array({box}), result["boxes"]);
    EXPECT_EQ(Json::parse(empty), result["value"]);
    EXPECT_EQ(Json::parse(R"([{"Object":1},{"Boolean":-1},{"Boolean":-1}])"), result["args"]);
    EXPECT_EQ(0, row_count());
}

TEST_F(RpcDatabase, QueuedAnswersAreGivenInTheirOrder) {
    const std::string question = R"([{"Object":1},true,false])";
    EXPECT_EQ(empty, rpc.value("host.answers", R"([["no","cancel"]])"));
    EXPECT_EQ(empty, rpc.value("host.answers", R"([["ok"]])"));
    EXPECT_EQ(empty, rpc.value("host.answers", R"([["yes"]])"));
    EXPECT_EQ("no", rpc.result(run, question)["boxes"][0]["answer"]);
    EXPECT_EQ("cancel", rpc.result(run, question)["boxes"][0]["answer"]);
    EXPECT_EQ("ok", rpc.result(run, question)["boxes"][0]["answer"]);
    EXPECT_EQ(0, row_count());
    EXPECT_EQ("yes", rpc.result(run, question)["boxes"][0]["answer"]);
    EXPECT_EQ(12, row_count());
    EXPECT_EQ("no", rpc.result(run, question)["boxes"][0]["answer"]);
}

TEST_F(RpcDatabase, BoxesOfACallThatFailsAreTold) {
    rpc.value("host.answers", R"([["yes"]])");
    rpc.value("host.fault", R"(["UpdateBatch",3,"once",3197])");
    const Json error = rpc.error(run, R"([{"Object":1},true,true])");
    EXPECT_EQ(3197, error["code"]);
    EXPECT_EQ("yes", error["data"]["boxes"][0]["answer"]);
    EXPECT_EQ(Json::parse(R"({"Object":1})"), error["data"]["args"][0]);
    EXPECT_EQ(2, row_count());
}

TEST(RpcBoxes, WrongAnswersAreRefusedAndNoneIsQueued) {
    RpcClient rpc;
    for (const std::string params : {R"([["yes","maybe"]])", R"([["yes",1]])", R"([["Yes"]])", "[]",
                                     "", R"([["yes"],["no"]])", "[null]"}) {
        EXPECT_EQ(-32602, rpc.code("host.answers", params)) << params;
    }
    EXPECT_EQ(empty, rpc.value("host.answers", "[[]]"));
    EXPECT_EQ("ok", rpc.result("aLiczby.Zaokr", "[5]")["boxes"][0]["answer"]);
}

TEST_F(RpcDatabase, AnswersMayBeTheParamsThemselves) {
    EXPECT_EQ(empty, rpc.value("host.answers", R"(["cancel","yes"])"));
    EXPECT_EQ("cancel", rpc.result(run, R"([{"Object":1},true,true])")["boxes"][0]["answer"]);
    EXPECT_EQ("yes", rpc.result(run, R"([{"Object":1},true,true])")["boxes"][0]["answer"]);
}

// ---- Databases ------------------------------------------------------------------------------

TEST_F(RpcDatabase, SeedingWritesToTheFile) {
    EXPECT_EQ(0, seed());
    EXPECT_EQ(12, row_count());
    EXPECT_EQ(0, seed());
    EXPECT_EQ(12, row_count());
}

TEST_F(RpcDatabase, ATransactionIsTheClients) {
    EXPECT_EQ(empty, rpc.value("@1.BeginTrans", ""));
    EXPECT_EQ(0, seed());
    EXPECT_EQ(empty, rpc.value("@1.RollbackTrans"));
    EXPECT_EQ(0, row_count());
    EXPECT_EQ(empty, rpc.value("@1.BeginTrans"));
    EXPECT_EQ(0, seed());
    EXPECT_EQ(empty, rpc.value("@1.CommitTrans"));
    EXPECT_EQ(12, row_count());
    EXPECT_GT(rpc.code("@1.CommitTrans"), 0);
    EXPECT_GT(rpc.code("@1.RollbackTrans"), 0);
}

TEST_F(RpcDatabase, AClosedConnectionFails) {
    EXPECT_EQ(empty, rpc.value("@1.Close"));
    EXPECT_EQ(3709, seed());
    EXPECT_EQ(-32601, rpc.code("@1.Execute", R"(["delete from S_StawkiKM"])"));
    EXPECT_EQ(-32602, rpc.code("@1.Close", "[1]"));
}

TEST_F(RpcDatabase, ReleasingAConnectionRollsItsTransactionBack) {
    rpc.value("@1.BeginTrans");
    EXPECT_EQ(0, seed());
    EXPECT_EQ(empty, rpc.value("host.release", R"([{"Object":1}])"));
    EXPECT_EQ(0, row_count());
    EXPECT_EQ(-32601, rpc.code("@1.BeginTrans"));
}

// A connection is also what a statement runs on.
TEST_F(RpcDatabase, StatementsRunOnIt) {
    const std::string run_statement = "Baza.DbWykonajNorthWind";
    const std::string add = '[' + quoted("insert into [S_StawkiKM] (Ponizej900) values (1)") + ',';
    const Json done = rpc.result(run_statement, add + R"({"Object":1},true])");
    EXPECT_EQ(Json::parse(R"({"String":""})"), done["value"]);
    EXPECT_EQ(Json::parse(R"({"Object":1})"), done["args"][1]);
    EXPECT_EQ(Json::array(), done["boxes"]);
    EXPECT_EQ(1, row_count());
    const Json failed = rpc.result(run_statement, R"(["drop tabel x",{"Object":1},true])");
    EXPECT_NE(Json::parse(R"({"String":""})"), failed["value"]);
    EXPECT_EQ("drop tabel x", failed["boxes"][0]["title"]);
    EXPECT_EQ(failed["value"]["String"], failed["boxes"][0]["text"]);
    rpc.value("host.fault", R"(["Execute",1,"once",3260])");
    EXPECT_EQ(R"({"String":"Application-defined or object-defined error"})",
              rpc.value("ClsCzyśćBazęDAO.DbWykonajNorthWind", add + R"({"Object":1},false])"));
    EXPECT_EQ(1, row_count());
    rpc.value("@1.Close");
    EXPECT_NE(R"({"String":""})", rpc.value(run_statement, add + R"({"Object":1},false])"));
}

TEST_F(RpcDatabase, NothingIsNoConnection) {
    EXPECT_EQ(3709, rpc.code(run, R"([{"Object":0},false,true])"));
    EXPECT_EQ(94, rpc.code(run, "[null,false,true]"));
    EXPECT_EQ(13, rpc.code(run, R"(["sqlite:x",false,true])"));
}

TEST(RpcConnect, AFileThatIsNotThereIsMade) {
    TempFolder folder;
    const std::string path = folder.file("nowa baza.db");
    RpcClient rpc;
    EXPECT_EQ(R"({"Object":1})", rpc.value("host.connect", '[' + quoted("sqlite:" + path) + ']'));
    // Its table is missing, and so says the failure.
    const Json error = rpc.error("Akt.Ustaw_oDSETKI_uSTAWOWE", R"([{"Object":1},false,true])");
    EXPECT_GT(error["code"].get<int>(), 0);
    EXPECT_NE(std::string::npos, error["message"].get<std::string>().find("S_ODSETKI"));
}

TEST(RpcConnect, AFileThatIsNoDatabaseOrCannotBeOpened) {
    TempFolder folder;
    std::ofstream(folder.file("list.txt")) << std::string(5000, 'x');
    RpcClient rpc;
    const auto code = [&](const std::string& name) {
        return rpc.code("host.connect", '[' + quoted("sqlite:" + name) + ']');
    };
    EXPECT_EQ(3343, code(folder.file("list.txt")));
    EXPECT_EQ(3051, code(folder.file("")));
    EXPECT_EQ(3044, code(folder.file("none/firma.db")));
    EXPECT_EQ(R"({"String":"1,50"})", rpc.value("aLiczby.VarR2Str", "[1.5]"));
}

TEST(RpcConnect, NamesOfAnotherForm) {
    RpcClient rpc;
    for (const std::string params :
         {R"(["firma.db"])", R"(["sqlite:"])", R"([""])", R"(["SQLITE:firma.db"])", R"(["odbc:"])",
          "[5]", "[null]", "[]", R"(["sqlite:a","b"])"}) {
        EXPECT_EQ(-32602, rpc.code("host.connect", params)) << params;
    }
    EXPECT_FALSE(std::filesystem::exists("firma.db"));
}

// ---- Faults ---------------------------------------------------------------------------------

TEST_F(RpcDatabase, AFaultFailsTheCallThatItIsToldFor) {
    EXPECT_EQ(empty, rpc.value("host.fault", R"(["UpdateBatch",5,"once",3197])"));
    EXPECT_EQ(3197, seed());
    EXPECT_EQ(4, row_count());
    EXPECT_EQ(0, seed());
    EXPECT_EQ(12, row_count());
}

TEST_F(RpcDatabase, AFaultFromACallOnStays) {
    EXPECT_EQ(empty, rpc.value("host.fault", R"(["Recordset.Open",3,"from",3260])"));
    EXPECT_EQ(3260, seed());
    EXPECT_EQ(3260, seed());
    EXPECT_EQ(2, row_count());
}

TEST_F(RpcDatabase, FaultsReachTheTransactionAndTheBoxes) {
    rpc.value("host.fault", R"(["CommitTrans",1,"once",3201])");
    EXPECT_EQ(empty, rpc.value("@1.BeginTrans"));
    EXPECT_EQ(3201, rpc.code("@1.CommitTrans"));
    EXPECT_EQ(empty, rpc.value("@1.CommitTrans"));
    rpc.value("host.fault", R"(["MsgBox",1,"once",7])");
    EXPECT_EQ(7, rpc.code(run, R"([{"Object":1},true,true])"));
}

TEST(RpcFault, WrongRequests) {
    RpcClient rpc;
    for (const std::string params :
         {R"(["Nothing",1,"once",5])", R"(["Open",0,"once",5])", R"(["Open",-1,"once",5])",
          R"(["Open",1,"always",5])", R"(["Open",1,"once"])", R"(["Open",1.5,"once",5])",
          R"(["Open","1","once",5])", R"([5,1,"once",5])", R"(["Open",1,"once","5"])",
          R"(["Open",1,"once",5,6])", "[]"}) {
        EXPECT_EQ(-32602, rpc.code("host.fault", params)) << params;
    }
}

// ---- Drives -----------------------------------------------------------------------------------

class RpcDrives : public testing::Test {
  protected:
    // What the engine says of a file: 3343 for one that is no database, 3024 for none.
    std::string check(const std::string& name) {
        return rpc.value("Baza.Sprawdź_bazęDAO", '[' + quoted(name) + ']');
    }

    TempFolder folder;
    RpcClient rpc;
};

TEST_F(RpcDrives, AFolderStandsBehindALetter) {
    std::ofstream(folder.file("Firma.mdb")) << std::string(5000, 'x');
    const std::string no_drive = check("C:\\firma.MDB");
    EXPECT_EQ(empty, rpc.value("host.drive", R"(["C",)" + quoted(folder.file("")) + ']'));
    EXPECT_EQ(R"({"Long":3343})", check("C:\\firma.MDB"));
    EXPECT_EQ(R"({"Long":3343})", check("c:/FIRMA.mdb"));
    EXPECT_EQ(R"({"Long":3024})", check("C:\\inna.mdb"));
    EXPECT_EQ(empty, rpc.value("host.drive", R"(["c","/nowhere"])"));
    EXPECT_EQ(no_drive, check("C:\\firma.MDB"));
    EXPECT_NE(R"({"Long":0})", no_drive);
}

TEST_F(RpcDrives, WhatIsTakenAndWhatIsNot) {
    EXPECT_EQ(empty, rpc.value("host.drive", R"(["y",{"String":"/tmp"}])"));
    for (const std::string params :
         {R"(["Z","/tmp"])", R"(["C:","/tmp"])", R"(["","/tmp"])", R"(["1","/tmp"])", R"(["C",""])",
          R"(["C","a\u0000b"])", R"(["C",null])", R"([3,"/tmp"])", R"(["C"])",
          R"(["C","/tmp","/tmp"])", "[]", ""}) {
        EXPECT_EQ(-32602, rpc.code("host.drive", params)) << params;
    }
}

// ---- Database files ---------------------------------------------------------------------------

TEST_F(RpcDrives, ADatabaseFromItsMakingToItsCleaning) {
    rpc.value("host.sleep", R"(["record"])");
    rpc.value("host.drive", R"(["C",)" + quoted(folder.file("")) + ']');
    const std::string name = R"("C:\\firma.mdb")";
    const Json made = rpc.result("Baza.NewMdb", '[' + name + ']');
    EXPECT_EQ(Json::parse(R"({"Boolean":-1})"), made["value"]);
    EXPECT_EQ(Json::array({3000}), made["sleeps"]);
    EXPECT_EQ(Json::array(), made["boxes"]);

    const std::string db = quoted("sqlite:" + folder.file("firma.mdb"));
    rpc.value("host.connect", '[' + db + ']');
    for (const std::string statement :
         {"create table [towary] (a LONG, n TEXT(10))", "insert into [towary] (a) values (null)"}) {
        EXPECT_EQ(R"({"String":""})",
                  rpc.value("Baza.DbWykonajNorthWind",
                            '[' + quoted(statement) + R"(,{"Object":1},true])"));
    }
    rpc.value("host.release", R"([{"Object":1}])");

    const Json cleaned =
        rpc.result("ClsCzyśćBazęDAO.CZYŚĆ_BAZĘ", '[' + name + R"(,true,false,""])");
    EXPECT_EQ(Json::array({5000}), cleaned["sleeps"]);
    EXPECT_EQ(R"({"Boolean":-1})",
              rpc.value("ClsCzyśćBazęDAO.Set_Szer_tetx", R"(["dane","[TOWARY]",)" + name + ']'));
    const auto connection = connect(folder.file("firma.mdb"));
    const auto rows = connection->CreateRecordset();
    rows->Open(u"select [a],[n] from [TOWARY]", connection, kvarta16::ado::CursorType::adOpenStatic,
               kvarta16::ado::LockType::adLockReadOnly, kvarta16::ado::adCmdUnspecified);
    ASSERT_FALSE(rows->IsEOF());
    EXPECT_EQ(0, kvarta16::ToLong(rows->Fields(u"a").Value()));
    EXPECT_EQ(u"", kvarta16::ToText(rows->Fields(u"n").Value()));
}

TEST_F(RpcDrives, FaultsReachFilesAndEngine) {
    rpc.value("host.sleep", R"(["record"])");
    rpc.value("host.drive", R"(["C",)" + quoted(folder.file("")) + ']');
    const std::string name = R"(["C:\\firma.mdb"])";
    rpc.value("host.fault", R"(["DBEngine.OpenDatabase",1,"once",3051])");
    const Json unchecked = rpc.result("Baza.NewMdb", name);
    EXPECT_EQ(Json::parse(R"({"Boolean":0})"), unchecked["value"]);
    EXPECT_EQ(Json::array(), unchecked["boxes"]);
    EXPECT_EQ(R"({"Long":0})", rpc.value("Baza.Sprawdź_bazęDAO", name));

    rpc.value("host.fault", R"(["Kill",1,"from",70])");
    rpc.value("host.answers", R"([["yes","yes","no"]])");
    const Json held = rpc.result("Baza.NewMdb", name);
    EXPECT_EQ(Json::parse(R"({"Boolean":0})"), held["value"]);
    EXPECT_EQ(3, held["boxes"].size());
    EXPECT_EQ("Nadpisać C:\\firma.mdb", held["boxes"][0]["text"]);
    EXPECT_EQ(4, held["boxes"][0]["style"]);
    EXPECT_EQ(nullptr, held["boxes"][0]["title"]);
    EXPECT_EQ("no", held["boxes"][2]["answer"]);
}

// ---- A private class --------------------------------------------------------------------------

TEST(RpcPrivateClass, IsCalledByTheSameForms) {
    RpcClient rpc;
    rpc.value("host.sleep", R"(["record"])");
    const std::string cleaning = "ClsCzyśćBazęDAO.CZYŚĆ_BAZĘ";
    const std::string missing = R"(["Z:\\nowhere\\x.mdb",false,)";
    EXPECT_GT(rpc.code(cleaning, missing + R"(false,""])"), 0);
    const Json result = rpc.result(cleaning, missing + R"(true,"towary"])");
    EXPECT_EQ(Json::parse(empty), result["value"]);
    EXPECT_EQ(Json::array({5000}), result["sleeps"]);
    EXPECT_EQ(Json::parse(R"({"String":"towary"})"), result["args"][3]);

    EXPECT_EQ(R"({"Object":1})", rpc.value("host.create", R"(["ClsCzyśćBazęDAO"])"));
    EXPECT_EQ(Json::parse(R"([{"String":"x"},{"Boolean":-1},{"String":"ŻABA"}])"),
              rpc.result("@1.CZYŚĆ_BAZĘ_TMP", R"(["x",true,"żaba"])")["args"]);
    EXPECT_EQ(R"({"Boolean":0})", rpc.value("@1.Set_Szer_tetx", R"(["a","[b]","Z:\\nowhere"])"));
    EXPECT_EQ(-32601, rpc.code("@1.Sprawdź_bazęDAO", R"(["x"])"));
    EXPECT_EQ(-32602, rpc.code("@1.CZYŚĆ_BAZĘ_TMP", R"(["x",true])"));
}

TEST(RpcPrivateClass, IsNotInTheCatalogue) {
    RpcClient rpc;
    for (const Json& described : rpc.result("host.catalogue", "")["value"]["classes"]) {
        EXPECT_NE("ClsCzyśćBazęDAO", described["name"]);
    }
}

TEST(RpcNothing, IsNoDatabaseAndNoRecordset) {
    RpcClient rpc;
    const Json failed = rpc.result("Baza.DbWykonajNorthWind", R"(["drop table x",{"Object":0},1])");
    EXPECT_EQ(Json::parse(R"({"String":"Object variable or With block variable not set"})"),
              failed["value"]);
    EXPECT_EQ("drop table x", failed["boxes"][0]["title"]);
    EXPECT_EQ(Json::parse(R"([{"Object":0}])"),
              rpc.result("aproste.DbCloseSEL", R"([{"Object":0}])")["args"]);
    EXPECT_EQ(13, rpc.code("Baza.DbWykonajNorthWind", R"(["drop table x","y",true])"));
}

// ---- Clock and pauses: their effect is examined on the platform of the session -----------------

TEST(RpcClock, WhatIsTakenAndWhatIsNot) {
    RpcClient rpc;
    for (const std::string params :
         {R"(["2024-05-17"])", R"(["2024-05-17T12:00:00"])", R"([{"Date":45429.5}])",
          R"([{"Date":"2024-05-17"}])", "[null]", R"([{"Null":null}])"}) {
        EXPECT_EQ(empty, rpc.value("host.now", params)) << params;
    }
    for (const std::string params :
         {R"(["17 maja"])", R"(["2024-02-30"])", "[45429]", "[true]", "[]", "",
          R"(["2024-05-17","2024-05-18"])", R"([["2024-05-17"]])"}) {
        EXPECT_EQ(-32602, rpc.code("host.now", params)) << params;
    }
}

TEST(RpcSleep, WhatIsTakenAndWhatIsNot) {
    RpcClient rpc;
    EXPECT_EQ(empty, rpc.value("host.sleep", R"(["record"])"));
    EXPECT_EQ(empty, rpc.value("host.sleep", R"(["real"])"));
    for (const std::string params : {R"(["Real"])", "[5]", "[null]", "[]", R"(["real","real"])"}) {
        EXPECT_EQ(-32602, rpc.code("host.sleep", params)) << params;
    }
}

// ---- The catalogue --------------------------------------------------------------------------

TEST(RpcCatalogue, HoldsWhatTheTablesHold) {
    RpcClient rpc;
    const Json result = rpc.result("host.catalogue", "");
    EXPECT_EQ(Json::array(), result["args"]);
    const Json classes = result["value"]["classes"];
    const auto infos = kvarta16::public_classes();
    ASSERT_EQ(infos.size(), classes.size());
    for (std::size_t i = 0; i < infos.size(); ++i) {
        const Json& described = classes[i];
        EXPECT_EQ(kvarta16::to_utf8(infos[i].header.name), described["name"]);
        EXPECT_EQ(infos[i].header.class_id, described["class_id"]);
        EXPECT_EQ(infos[i].header.interface_id, described["interface_id"]);
        EXPECT_EQ(infos[i].is_built(), described["built"]);
        ASSERT_EQ(infos[i].members.size(), described["members"].size());
        for (std::size_t j = 0; j < infos[i].members.size(); ++j) {
            const kvarta16::MemberInfo& member = infos[i].members[j];
            EXPECT_EQ(kvarta16::to_utf8(member.name), described["members"][j]["name"]);
            EXPECT_EQ(member.is_built(), described["members"][j]["built"]);
            EXPECT_EQ(member.is_built() ? member.parameter_count : 0,
                      described["members"][j].value("parameters", Json::array()).size());
        }
    }
}

TEST(RpcCatalogue, DescribesAMemberInFull) {
    RpcClient rpc;
    const Json catalogue = rpc.result("host.catalogue", "[]")["value"];
    EXPECT_EQ(Json::parse(R"({"name":"KVARTALIBS","version":"1.1",
        "id":"1537F93F-0C12-4BC6-8ADA-97638342E513","locale":1033})"),
              catalogue["library"]);
    const Json& described = catalogue["classes"][2];
    EXPECT_EQ("aChar", described["name"]);
    EXPECT_EQ("global", described["instancing"]);
    EXPECT_EQ("_aChar", described["interface"]);
    EXPECT_EQ("4470CE82-AAD0-48FB-BAC3-37F6B279E0F9", described["interface_id"]);
    EXPECT_EQ("C35A910A-69BB-4D37-BB5A-3EBE61941A6A", described["class_id"]);
    EXPECT_EQ(Json::parse(R"({"name":"c_aaa","kind":"property get","built":true,"parameters":[],
        "result":"String"})"),
              described["members"][0]);
    EXPECT_EQ(Json::parse(R"({"name":"c_aaa","kind":"property let","built":true,"parameters":[
        {"name":"value","type":"String","passing":"value","optional":false}],"result":null})"),
              described["members"][1]);
    EXPECT_EQ(Json::parse(R"({"name":"Str2Str","kind":"method","built":true,"parameters":[
        {"name":"ds","type":"Variant","passing":"value","optional":false},
        {"name":"leng","type":"Integer","passing":"reference","optional":true,
         "default":{"Integer":0}}],"result":"String"})"),
              described["members"][3]);
}

TEST(RpcCatalogue, TakesNoParams) {
    RpcClient rpc;
    EXPECT_EQ(-32602, rpc.code("host.catalogue", "[1]"));
}

// Every built member can be called by its name: wrong counts are told before anything runs.
TEST(RpcCatalogue, EveryBuiltMemberIsReached) {
    RpcClient rpc;
    for (const kvarta16::ClassInfo& info : kvarta16::public_classes()) {
        const std::string class_name = kvarta16::to_utf8(info.header.name);
        EXPECT_EQ(info.is_built() ? 0 : -32601,
                  rpc.code("host.create", '[' + quoted(class_name) + ']'));
        EXPECT_EQ(-32601, rpc.code(class_name + ".there_is_no_such_member"));
        for (const kvarta16::MemberInfo& member : info.members) {
            std::string name = class_name + '.' + kvarta16::to_utf8(member.name);
            name += member.kind == kvarta16::MemberKind::PropertyLet ? "=" : "";
            EXPECT_EQ(member.is_built() ? -32602 : -32601,
                      rpc.code(name, "[1,1,1,1,1,1,1,1,1,1,1]"))
                << name;
        }
    }
    for (const kvarta16::MemberInfo& primitive : kvarta16::value_primitives()) {
        EXPECT_EQ(-32602, rpc.code("value." + kvarta16::to_utf8(primitive.name), "[]"));
    }
    EXPECT_EQ(12, kvarta16::value_primitives().size());
}

}  // namespace
}  // namespace tool_test
