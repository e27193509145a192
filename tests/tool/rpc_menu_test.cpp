// Windows and menus of a session: the shapes by which a window is made, the tree as it is told, and
// the menu class working on it.
#include <fstream>
#include <string>

#include "rpc_client.h"

namespace tool_test {
namespace {

Json tree(RpcClient& rpc, const std::string& window) {
    return rpc.result("host.menu", "[" + window + "]")["value"];
}

std::string texts(const Json& items) {
    std::string all;
    for (const Json& item : items) {
        all += (all.empty() ? "" : "|") + item["text"].get<std::string>();
        if (item.contains("items")) {
            all += "[" + texts(item["items"]) + "]";
        }
    }
    return all;
}

// A window of these menus; its handle as a number in text.
std::string window(RpcClient& rpc, const std::string& params) {
    const Json value = rpc.result("host.window", params)["value"];
    return value["Long"].dump();
}

TEST(RpcMenus, AWindowTellsItsTree) {
    RpcClient rpc;
    const std::string form = window(rpc, R"([[["Plik",["Nowy","-","Otwórz"]],["Pomoc",[]]]])");
    const Json bar = tree(rpc, form);
    EXPECT_EQ(bar["redraws"], 0);
    ASSERT_EQ(bar["items"].size(), 2u);
    const Json& file = bar["items"][0];
    EXPECT_EQ(file["text"], "Plik");
    EXPECT_EQ(file["flags"], 16);
    EXPECT_GT(file["id"].get<int>(), 0);
    EXPECT_EQ(file["bitmaps"], Json::parse("[0,0]"));
    EXPECT_EQ(file["items"], Json::parse(R"([{"text":"Nowy","flags":0,"id":0,"bitmaps":[0,0]},
                              {"text":"-","flags":2048,"id":0,"bitmaps":[0,0]},
                              {"text":"Otwórz","flags":0,"id":0,"bitmaps":[0,0]}])"));
    EXPECT_EQ(bar["items"][1]["items"], Json::array());
}

TEST(RpcMenus, AWindowIsMadeOfAnyOfTheseShapes) {
    struct Case {
        const char* params;
        const char* texts;
    };
    const Case cases[] = {
        {R"([[["Plik",["Nowy"]],["Pomoc",[]]]])", "Plik[Nowy]|Pomoc[]"},
        {R"([["Plik",["Nowy"]],["Pomoc",[]]])", "Plik[Nowy]|Pomoc[]"},
        {R"([[["Plik",["Nowy"]]]])", "Plik[Nowy]"},
        {R"([["Plik",["Nowy"]]])", "Plik[Nowy]"},
        {R"([["Plik"],"Pomoc"])", "Plik[]|Pomoc[]"},
        {R"(["Plik"])", "Plik[]"},
        {"[[]]", ""},
        {"[]", ""},
        {"", ""},
    };
    RpcClient rpc;
    for (const Case& test : cases) {
        EXPECT_EQ(texts(tree(rpc, window(rpc, test.params))["items"]), test.texts) << test.params;
    }
}

TEST(RpcMenus, OtherShapesAreRefused) {
    RpcClient rpc;
    for (const char* params :
         {"[5]", "[null]", "[[5]]", R"([["Plik","Nowy"]])", R"([["Plik",[5]]])",
          R"([["Plik",["a"],["b"]]])", R"([{"Plik":["Nowy"]}])", R"([[["Plik",[["a"]]]]])"}) {
        EXPECT_EQ(rpc.code("host.window", params), -32602) << params;
    }
    for (const char* params : {"[]", "[0]", "[1]", "[999]", R"(["1"])", "[1,2]", "[null]"}) {
        EXPECT_EQ(rpc.code("host.menu", params), -32602) << params;
    }
}

TEST(RpcMenus, TheClassWorksOnTheWindow) {
    RpcClient rpc;
    const std::string form = window(rpc, R"([[["Plik",["Nowy"]]]])");
    const auto call = [&](const std::string& member, const std::string& rest) {
        return rpc.value("amenu." + member, "[" + form + rest + "]");
    };
    const std::string yes = R"({"Boolean":-1})";
    const std::string no = R"({"Boolean":0})";
    EXPECT_EQ(call("AddNewMenu", R"(,"Pomoc")"), yes);
    EXPECT_EQ(call("AddNewMenu", R"(,"Narzędzia",true)"), yes);
    EXPECT_EQ(call("InsertNewMenu", R"(,1,"Okno")"), yes);
    EXPECT_EQ(call("InsertNewSubMenu", R"(,0,0,"-",true)"), yes);
    EXPECT_EQ(call("InsertNewSubMenu", R"(,0,2,"Ostatnie",true)"), yes);
    EXPECT_EQ(call("InsertNewSubMenu", R"(,7,0,"nigdzie")"), no);
    Json bar = tree(rpc, form);
    EXPECT_EQ(texts(bar["items"]), "Plik[-|Nowy|Ostatnie[]]|Okno|Pomoc|Narzędzia[]");
    EXPECT_EQ(bar["redraws"], 6);
    EXPECT_EQ(call("DeleteMenu", ",0,2"), yes);
    EXPECT_EQ(call("DeleteMenu", R"(,0,"2")"), no);
    EXPECT_EQ(call("DeleteMenu", R"(,0,"dwa")"), no);
    bar = tree(rpc, form);
    EXPECT_EQ(texts(bar["items"]), "Plik[-|Nowy]|Okno|Pomoc|Narzędzia[]");
    EXPECT_EQ(bar["redraws"], 6);
    EXPECT_EQ(call("DelMenu", ""), yes);
    EXPECT_EQ(tree(rpc, form), Json::parse(R"({"redraws":7,"items":null})"));
    EXPECT_EQ(call("DelMenu", ""), no);
    EXPECT_EQ(tree(rpc, form)["redraws"], 8);
    EXPECT_EQ(rpc.value("amenu.CreateNewMenu"), yes);
}

TEST(RpcMenus, PicturesHaveHandles) {
    TempFolder folder;
    const std::string path = folder.file("ikona.bmp");
    const std::string header("BM\x3A\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\1\0\0\0\1\0\0\0\1\0\x18\0",
                             30);
    std::ofstream(path, std::ios::binary) << header + std::string(28, '\0');
    RpcClient rpc;
    const std::string form = window(rpc, R"([[["Plik",["Nowy"]]]])");
    EXPECT_EQ(rpc.value("amenu.SetMenuBmp", "[" + form + "," + Json("Z:" + path).dump() + "]"),
              R"({"Boolean":-1})");
    const Json bitmaps = tree(rpc, form)["items"][0]["items"][0]["bitmaps"];
    EXPECT_GT(bitmaps[0].get<int>(), 0);
    EXPECT_EQ(bitmaps[0], bitmaps[1]);
    EXPECT_EQ(rpc.value("amenu.LoadBmp", R"(["Z:\\nie\\ma.bmp"])"), R"({"Long":0})");
}

TEST(RpcMenus, FaultsReachTheClassAndNotTheHost) {
    RpcClient rpc;
    rpc.value("host.fault", R"(["CreatePopupMenu",1,"from",5])");
    rpc.value("host.fault", R"(["AppendMenuA",1,"from",5])");
    const std::string form = window(rpc, R"([[["Plik",["Nowy"]]]])");
    EXPECT_EQ(rpc.value("amenu.AddNewMenu", "[" + form + R"(,"Pomoc"])"), R"({"Boolean":0})");
    EXPECT_EQ(texts(tree(rpc, form)["items"]), "Plik[Nowy]");
    EXPECT_EQ(tree(rpc, form)["redraws"], 1);
}

}  // namespace
}  // namespace tool_test
