// The table of requests and of what their answers must hold. Members that are not built yet are
// known from the catalogue; they are to be refused.
#include <fstream>

#include <kvarta16/frame/catalogue.h>
#include <kvarta16/frame/utf8.h>

#include "lookup.h"
#include "rpc_client.h"

namespace tool_test {
namespace {

using namespace kvarta16;

bool is_built(const std::string& method) {
    const String name = from_utf8(method);
    const std::size_t dot = name.find(u'.');
    const StringView owner = StringView(name).substr(0, dot);
    const StringView member = StringView(name).substr(dot + 1);
    if (owner == u"value") {
        return tool::find_entry(value_primitives(), member) != nullptr;
    }
    const ClassInfo* info = find_class(owner);
    return info != nullptr && tool::find_called(*info, member) != nullptr;
}

void expect_args(const Json& told, const Json& args) {
    ASSERT_EQ(told.size(), args.size()) << args;
    for (std::size_t i = 0; i < told.size(); ++i) {
        if (!told[i].is_null()) {
            EXPECT_EQ(told[i], args[i]);
        }
    }
}

void expect_boxes(const Json& told, const Json& boxes) {
    ASSERT_EQ(told.size(), boxes.size()) << boxes;
    for (std::size_t i = 0; i < told.size(); ++i) {
        for (const auto& [key, value] : told[i].items()) {
            EXPECT_EQ(value, boxes[i].value(key, Json())) << key;
        }
    }
}

void expect_answer(const Json& expect, const Json& answer) {
    const bool fails = expect.contains("error");
    ASSERT_EQ(fails, answer.contains("error")) << answer;
    const Json& outcome = fails ? answer["error"]["data"] : answer["result"];
    if (fails) {
        EXPECT_EQ(expect["error"], answer["error"]["code"]);
        EXPECT_FALSE(answer["error"]["message"].get<std::string>().empty());
    }
    if (expect.contains("value")) {
        EXPECT_EQ(expect["value"], outcome["value"]);
    }
    if (expect.contains("args")) {
        expect_args(expect["args"], outcome["args"]);
    }
    if (expect.contains("boxes")) {
        expect_boxes(expect["boxes"], outcome["boxes"]);
    }
}

TEST(RpcExamples, EveryLineOfTheTable) {
    RpcClient rpc;
    std::ifstream table(std::string(KVARTA16_TEST_DATA) + "/tool/rpc_examples.jsonl");
    int examined = 0;
    for (std::string line; std::getline(table, line);) {
        SCOPED_TRACE(line);
        const Json example = Json::parse(line);
        const Json& request = example["request"];
        const Json answer = Json::parse(rpc.exchange(request.dump()));
        EXPECT_EQ("2.0", answer["jsonrpc"]);
        EXPECT_EQ(request["id"], answer["id"]);
        if (is_built(request["method"])) {
            ++examined;
            expect_answer(example["expect"], answer);
        } else {
            EXPECT_EQ(-32601, answer["error"]["code"]);
        }
    }
    EXPECT_GT(examined, 30);
}

}  // namespace
}  // namespace tool_test
