// The events of a JSON-RPC session: what an answer tells of them, and host.on_event. A client
// reaches a server on port 2121 alone, which a file on drive C chooses.

#include <fstream>

#include "rpc_client.h"
#include "small_ftp_server.h"

namespace {

using namespace tool_test;

std::string file_contents(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void write_file(const std::string& path, const std::string& contents) {
    std::ofstream(path, std::ios::binary) << contents;
}

std::string some_bytes(std::size_t count) {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i) {
        bytes += static_cast<char>(i * 7 + i / 100);
    }
    return bytes;
}

Json event(int current, int total) {
    return {{"name", "FileTransferProgress"}, {"args", {{{"Long", current}}, {{"Long", total}}}}};
}

class RpcEvents : public testing::Test {
  protected:
    RpcEvents() {
        write_file(drive.file("port2121.txt"), "");
        rpc.value("host.drive", "[\"C\"," + quoted(drive.file("")) + "]");
        EXPECT_EQ(rpc.value("host.create", R"(["clsFTP"])"), R"({"Object":1})");
        rpc.value("@1.ServerName=", "[" + quoted(server.host()) + "]");
        rpc.value("@1.LoginName=", "[" + quoted(SmallFtpServer::user) + "]");
        rpc.value("@1.Password=", "[" + quoted(SmallFtpServer::password) + "]");
    }
    void connect() { ASSERT_EQ(rpc.value("@1.Connect"), R"({"Boolean":-1})"); }
    Json send(std::size_t size) {
        write_file(drive.file("a.bin"), some_bytes(size));
        return rpc.result("@1.UploadFileProgress", R"(["C:\\a.bin","plik.bin",true])");
    }
    Json fetch(std::size_t size) {
        server.put("plik.bin", some_bytes(size));
        rpc.value("@1.GetMatchingFiles");
        return rpc.result("@1.DownloadFileProgress", R"(["plik.bin","C:\\b.bin",true])");
    }
    void on_event(const std::string& rest) {
        EXPECT_EQ(
            rpc.value("host.on_event", R"([{"Object":1},"FileTransferProgress",)" + rest + "]"),
            R"({"Empty":null})");
    }

    TempFolder drive;
    SmallFtpServer server{2121};
    RpcClient rpc;
};

TEST_F(RpcEvents, AreToldAsTheLibraryGaveThem) {
    connect();
    const Json sent = send(250);
    EXPECT_EQ(sent["value"]["Boolean"], -1);
    EXPECT_EQ(sent["args"],
              Json::parse(R"([{"String":"C:\\a.bin"},{"String":"plik.bin"},{"Boolean":0}])"));
    EXPECT_EQ(sent["events"], Json::array({event(100, 250), event(200, 250), event(250, 250)}));
    EXPECT_EQ(server.contents("plik.bin"), some_bytes(250));
    const Json fetched = fetch(250);
    EXPECT_EQ(fetched["value"]["Boolean"], -1);
    EXPECT_EQ(fetched["events"], Json::array({event(101, 250), event(201, 250), event(250, 250)}));
    EXPECT_EQ(file_contents(drive.file("b.bin")), some_bytes(250));
}

TEST_F(RpcEvents, StandInAnAnswerOnlyWhereThereAreSome) {
    connect();
    send(50);
    EXPECT_FALSE(rpc.result("@1.Disconnect").contains("events"));
}

TEST_F(RpcEvents, TheHandlerWritesArgumentsAtOneCall) {
    connect();
    on_event(R"(2,{"args":[7,null]})");
    EXPECT_EQ(send(350)["events"],
              Json::array({event(100, 350), event(200, 350), event(107, 350), event(350, 350)}));
    // Once: the count goes on from where it was asked for.
    EXPECT_EQ(send(250)["events"],
              Json::array({event(100, 250), event(200, 250), event(250, 250)}));
}

TEST_F(RpcEvents, TheHandlerWritesArgumentsAtEachCall) {
    connect();
    on_event(R"(0,{"args":[null,{"Double":230.4}]})");
    EXPECT_EQ(send(250)["events"],
              Json::array({event(100, 250), event(200, 230), event(230, 230)}));
    EXPECT_EQ(server.contents("plik.bin"), some_bytes(250).substr(0, 230));
    EXPECT_EQ(send(150)["events"], Json::array({event(100, 150), event(230, 230)}));
}

TEST_F(RpcEvents, TheHandlerCancels) {
    connect();
    on_event(R"(2,{"put":{"Connected":false}})");
    const Json fetched = fetch(450);
    EXPECT_EQ(fetched["value"]["Boolean"], 0);
    EXPECT_EQ(fetched["events"], Json::array({event(101, 450), event(201, 450)}));
    EXPECT_EQ(file_contents(drive.file("b.bin")), some_bytes(450).substr(0, 200));
    EXPECT_EQ(rpc.value("@1.Connected"), R"({"Boolean":0})");
}

TEST_F(RpcEvents, TheHandlerCancelsInTheLastEvent) {
    connect();
    on_event(R"(3,{"put":{"Connected":{"Boolean":0}},"args":[]})");
    EXPECT_EQ(fetch(250)["value"]["Boolean"], 0);
    EXPECT_FALSE(std::filesystem::exists(drive.file("b.bin")));
}

TEST_F(RpcEvents, AreToldOfEachBlockThatCouldNotBeSent) {
    connect();
    rpc.value("host.fault", R"(["InternetWriteFile",1,"from",12031])");
    const Json sent = send(50);
    EXPECT_EQ(sent["value"]["Boolean"], 0);
    EXPECT_EQ(sent["events"],
              Json::array({event(-1, 50), event(-1, 50), event(-1, 50), event(-1, 50),
                           event(-1, 50), event(-1, 50), event(-1, 50), event(-1, 50),
                           event(-1, 50), event(-1, 50), event(-1, 50)}));
}

struct WrongRequest {
    const char* params;
    int code;
};

TEST_F(RpcEvents, RefusesWhatIsNoReaction) {
    const WrongRequest requests[] = {
        {R"([{"Object":1},"FileTransferProgress",1])", -32602},
        {R"([{"Object":9},"FileTransferProgress",1,{}])", -32601},
        {R"([{"Object":0},"FileTransferProgress",1,{}])", -32602},
        {R"([5,"FileTransferProgress",1,{}])", -32602},
        {R"([{"Object":1},"FileTransfer",1,{}])", -32601},
        {R"([{"Object":1},"FileTransferProgress",-1,{}])", -32602},
        {R"([{"Object":1},"FileTransferProgress","x",{}])", -32602},
        {R"([{"Object":1},"FileTransferProgress",1,[]])", -32602},
        {R"([{"Object":1},"FileTransferProgress",1,{"arg":[]}])", -32602},
        {R"([{"Object":1},"FileTransferProgress",1,{"args":[1,2,3]}])", -32602},
        {R"([{"Object":1},"FileTransferProgress",1,{"args":5}])", -32602},
        {R"([{"Object":1},"FileTransferProgress",1,{"put":[1]}])", -32602},
        {R"([{"Object":1},"FileTransferProgress",1,{"put":{"Nazwa":1}}])", -32601},
        {R"([{"Object":1},"FileTransferProgress",1,{"put":{"FTPHwnd":1}}])", -32601},
        {R"([{"Object":1},"FileTransferProgress",1,{"args":["x"]}])", 13},
        {R"([{"Object":1},"FileTransferProgress",1,{"args":[{"Null":null}]}])", 94},
        {R"([{"Object":1},"FileTransferProgress",1,{"args":[3000000000]}])", 6},
        {R"([{"Object":1},"FileTransferProgress",1,{"put":{"lMatching":"x"}}])", 13},
    };
    for (const WrongRequest& request : requests) {
        EXPECT_EQ(rpc.code("host.on_event", request.params), request.code) << request.params;
    }
    EXPECT_EQ(rpc.value("host.create", R"(["aChar"])"), R"({"Object":2})");
    EXPECT_EQ(rpc.code("host.on_event", R"([{"Object":2},"FileTransferProgress",1,{}])"), -32601);
    // None of them is in force.
    connect();
    EXPECT_EQ(send(150)["events"], Json::array({event(100, 150), event(150, 150)}));
}

}  // namespace
