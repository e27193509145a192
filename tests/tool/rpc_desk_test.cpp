// The host's methods for the version record, keys, mouse and folder dialogs, and the classes that
// ask for them.
#include <filesystem>
#include <fstream>

#include "rpc_client.h"

namespace tool_test {
namespace {

constexpr const char* empty = R"({"Empty":null})";
constexpr const char* yes = R"({"Boolean":-1})";
constexpr const char* no = R"({"Boolean":0})";

// ---- Version ----------------------------------------------------------------------------------

TEST(RpcVersion, IsWhatIsSet) {
    RpcClient rpc;
    EXPECT_EQ(R"({"Currency":"0.0000"})", rpc.value("B_WinWer.GetWindowsVersion"));
    EXPECT_EQ(empty, rpc.value("host.version", "[2,6,2]"));
    EXPECT_EQ(R"({"Currency":"6.2000"})", rpc.value("B_WinWer.GetWindowsVersion"));
    EXPECT_EQ(R"({"Long":2})", rpc.value("aIO.GetWinPlatform"));
    EXPECT_EQ(empty, rpc.value("host.version", "[[1,4,10]]"));
    EXPECT_EQ(R"({"Currency":"2.2000"})", rpc.value("B_WinWer.GetWindowsVersion"));
    EXPECT_EQ(R"({"Long":1})", rpc.value("aIO.GetWinPlatform"));
    EXPECT_EQ(empty, rpc.value("host.version", "[null]"));
    EXPECT_EQ(R"({"Currency":"0.0000"})", rpc.value("B_WinWer.GetWindowsVersion"));
    EXPECT_EQ(R"({"Long":0})", rpc.value("aIO.GetWinPlatform"));
}

TEST(RpcVersion, WrongRequests) {
    RpcClient rpc;
    for (const std::string params :
         {"[]", "[2,6]", "[2,6,1,1]", R"(["2","6","1"])", "[2,6,null]", "[[2,6]]"}) {
        EXPECT_EQ(-32602, rpc.code("host.version", params)) << params;
    }
}

// ---- Keys and mouse ---------------------------------------------------------------------------

TEST(RpcKeys, OneIsTakenByEachCall) {
    RpcClient rpc;
    EXPECT_EQ(no, rpc.value("aIO.Przerwij", "[true]"));
    EXPECT_EQ(empty, rpc.value("host.keys", "[[65,27]]"));
    EXPECT_EQ(no, rpc.value("aIO.Przerwij", "[true]"));
    EXPECT_EQ(yes, rpc.value("aIO.Przerwij", "[true]"));
    EXPECT_EQ(no, rpc.value("aIO.Przerwij", "[true]"));
}

TEST(RpcKeys, MouseMessagesStayInTheQueue) {
    RpcClient rpc;
    EXPECT_EQ(empty, rpc.value("host.mouse", "[2]"));
    EXPECT_EQ(no, rpc.value("aIO.Przerwij", "[true]"));
    EXPECT_EQ(empty, rpc.value("host.keys", "[27]"));
    const auto question = R"({"text":"Przerwać zapis?","style":4,"title":"Naciśnięto Klawisz",)";
    EXPECT_EQ(empty, rpc.value("host.answers", R"([["yes"]])"));
    Json result = rpc.result("aIO.Przerwij", R"([false,"zapis?"])");
    EXPECT_EQ(Json::parse(yes), result["value"]);
    EXPECT_EQ(Json::parse(question + std::string(R"("answer":"yes"})")), result["boxes"][0]);
    rpc.value("host.keys", "[27]");
    result = rpc.result("aIO.Przerwij", R"([false,"zapis?"])");
    EXPECT_EQ(Json::parse(no), result["value"]);
    EXPECT_EQ("no", result["boxes"][0]["answer"]);
}

TEST(RpcKeys, WrongRequests) {
    RpcClient rpc;
    EXPECT_EQ(-32602, rpc.code("host.keys", "[]"));
    EXPECT_EQ(-32602, rpc.code("host.keys", R"([["A"]])"));
    EXPECT_EQ(-32602, rpc.code("host.keys", R"([27,"A"])"));
    EXPECT_EQ(-32602, rpc.code("host.mouse", "[-1]"));
    EXPECT_EQ(-32602, rpc.code("host.mouse", R"(["1"])"));
    EXPECT_EQ(no, rpc.value("aIO.Przerwij", "[true]"));  // nothing of a wrong list is queued
}

// ---- Folder dialogs ---------------------------------------------------------------------------

TEST(RpcDialog, AnswersInTheirOrderAndTellsWhatWasAsked) {
    RpcClient rpc;
    EXPECT_EQ(empty, rpc.value("host.dialog", R"(["c:\\dane"])"));
    EXPECT_EQ(empty, rpc.value("host.dialog", R"(["c:\\"])"));
    EXPECT_EQ(empty, rpc.value("host.dialog", R"([""])"));
    EXPECT_EQ(empty, rpc.value("host.dialog", "[null]"));
    const std::string member = "CBrowseForFolders.BrowseForFolder";
    const Json first = rpc.result(member, R"([7,"Wybierz folder","c:\\stare\\"])");
    EXPECT_EQ(Json::parse(R"({"String":"c:\\dane\\"})"), first["value"]);
    EXPECT_EQ(Json::parse(R"({"String":"c:\\stare"})"), first["args"][2]);
    EXPECT_EQ(
        Json::parse(
            R"([{"owner":7,"prompt":"Wybierz folder","flags":1,"selection":"c:\\stare","answer":"c:\\dane"}])"),
        first["dialogs"]);
    const Json second = rpc.result(member, R"([0,"","",true])");
    EXPECT_EQ(Json::parse(R"({"String":"c:\\"})"), second["value"]);
    EXPECT_EQ(16384, second["dialogs"][0]["flags"]);
    const std::string asked = R"([0,"",""])";
    const std::string root = R"({"String":"\\"})";
    EXPECT_EQ(root, rpc.value(member, asked));  // an item without a path
    EXPECT_EQ(Json(), rpc.result(member, asked)["dialogs"][0]["answer"]);
    EXPECT_EQ(Json::parse(root), rpc.result(member, asked)["value"]);  // nothing queued: a cancel
    EXPECT_FALSE(rpc.result("aIO.GetWinPlatform").contains("dialogs"));
}

TEST(RpcDialog, ThePathOfTheChoiceIsAskedForOnce) {
    RpcClient rpc;
    rpc.value("host.dialog", R"(["c:\\dane"])");
    rpc.value("host.dialog", R"(["c:\\dane"])");
    rpc.value("host.fault", R"(["SHGetPathFromIDList",1,"once",5])");
    const std::string member = "CBrowseForFolders.BrowseForFolder";
    EXPECT_EQ(R"({"String":"\\"})", rpc.value(member, R"([0,"",""])"));
    EXPECT_EQ(R"({"String":"c:\\dane\\"})", rpc.value(member, R"([0,"",""])"));
}

// ---- Files by their drives, and faults --------------------------------------------------------

TEST(RpcFiles, WorkOnAMappedDrive) {
    TempFolder folder;
    RpcClient rpc;
    rpc.value("host.drive", R"(["C",)" + quoted(folder.file("")) + ']');
    EXPECT_EQ(no, rpc.value("aIO.IsFile", R"(["C:\\plik.txt"])"));
    EXPECT_EQ(yes, rpc.value("aIO.Zapisz_do_pliku", R"(["C:\\plik.txt","zażółć"])"));
    EXPECT_EQ(yes, rpc.value("aIO.IsFile", R"(["c:/PLIK.TXT"])"));
    std::ifstream in(folder.file("plik.txt"), std::ios::binary);
    EXPECT_EQ(std::string("za\xBF\xF3\xB3\xE6\r\n"),
              std::string(std::istreambuf_iterator<char>(in), {}));
    EXPECT_EQ(R"({"String":""})", rpc.value("aIO.GetWindowsDir"));
    std::filesystem::create_directory(folder.file("Windows"));
    EXPECT_EQ(R"({"String":"C:\\Windows\\"})", rpc.value("aIO.GetWindowsDir"));
    EXPECT_EQ(yes, rpc.value("aIO.DelFile", R"(["C:\\plik.txt"])"));
    EXPECT_FALSE(std::filesystem::exists(folder.file("plik.txt")));
}

TEST(RpcFiles, FaultsOfTheirOperations) {
    TempFolder folder;
    RpcClient rpc;
    rpc.value("host.drive", R"(["C",)" + quoted(folder.file("")) + ']');
    rpc.value("host.fault", R"(["FileTable.Open",1,"once",75])");
    const Json failed = rpc.result("aIO.Zapisz_do_pliku", R"(["C:\\plik.txt","x"])");
    // The test whether the file is there has met the fault, so that the writing goes well.
    EXPECT_EQ(Json::parse(yes), failed["value"]);
    rpc.value("host.fault", R"(["FileCopy",1,"once",61])");
    EXPECT_EQ(no, rpc.value("aIO.FileCopy_Fun", R"(["C:\\plik.txt","C:\\kopia.txt"])"));
    EXPECT_EQ(yes, rpc.value("aIO.FileCopy_Fun", R"(["C:\\plik.txt","C:\\kopia.txt"])"));
    rpc.value("host.fault", R"(["FindFirstFileA",1,"once",5])");
    EXPECT_EQ(R"({"Object":1})", rpc.value("host.create", R"(["CFileFind"])"));
    EXPECT_EQ(no, rpc.value("@1.FindFile", R"(["C:\\*.txt"])"));
    EXPECT_EQ(yes, rpc.value("@1.FindFile", R"(["C:\\*.txt"])"));
    EXPECT_EQ(yes, rpc.value("@1.FindNextFile"));
    EXPECT_EQ(no, rpc.value("@1.FindNextFile"));
}

}  // namespace
}  // namespace tool_test
