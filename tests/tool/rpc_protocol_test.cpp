// Requests and answers as JSON-RPC has them, and what a wrong line does.
#include <random>

#include <sys/resource.h>

#include "rpc_client.h"
#include "support/sanitized.h"

namespace tool_test {
namespace {

using kvarta16::testing_support::is_sanitized;

// The answer to a call that shows the session alive and in step.
void expect_alive(RpcClient& rpc) {
    EXPECT_EQ(R"({"String":"12,50"})", rpc.value("aLiczby.VarR2Str", "[12.5]"));
}

int code_of(const std::string& answer) {
    return Json::parse(answer)["error"]["code"];
}

TEST(RpcProtocol, AnswerIsWrittenToTheLetter) {
    RpcClient rpc;
    EXPECT_EQ(
        R"({"jsonrpc":"2.0","id":7,"result":{"value":{"String":"abcdef"},)"
        R"("args":[{"String":"abcdef"},{"Integer":0}],"boxes":[]}})",
        rpc.exchange(R"({"jsonrpc":"2.0","id":7,"method":"aChar.Str2Str","params":["abcdef"]})"));
    EXPECT_EQ(R"({"jsonrpc":"2.0","id":8,"error":{"code":13,"message":"Type mismatch",)"
              R"("data":{"args":[{"String":"abc"}],"boxes":[]}}})",
              rpc.exchange(R"({"jsonrpc":"2.0","id":8,"method":"value.ToLong","params":["abc"]})"));
}

TEST(RpcProtocol, IdComesBackAsItWas) {
    RpcClient rpc;
    for (const std::string id :
         {"1", "-5", "0", "9007199254740993", "18446744073709551615", "1.5", "\"abc\"", "\"\"",
          "\"ż😀\"", R"("\ud800")", R"("a\u0000")", "\"\uFDD0\"", "null"}) {
        const std::string answer =
            rpc.exchange(R"({"jsonrpc":"2.0","method":"amain.VersjaLib","id":)" + id + '}');
        EXPECT_TRUE(answer.starts_with(R"({"jsonrpc":"2.0","id":)" + id + R"(,"result":)"))
            << answer;
        const std::string failed =
            rpc.exchange(R"({"jsonrpc":"2.0","method":"nothing","id":)" + id + '}');
        EXPECT_TRUE(failed.starts_with(R"({"jsonrpc":"2.0","id":)" + id + R"(,"error":)"))
            << failed;
    }
}

TEST(RpcProtocol, LinesThatAreNoJson) {
    RpcClient rpc;
    const std::string lines[] = {
        "x",
        "{",
        "}",
        "\"",
        "\"\\",
        "\"\\u",
        "\"\\ud8",
        R"("\x")",
        R"("\u12G4")",
        R"({"jsonrpc":"2.0","id":1,"method":"amain.VersjaLib")",
        R"({"jsonrpc":"2.0","id":1,"method":"amain.VersjaLib"}})",
        R"({"jsonrpc":"2.0","id":1,"method":"amain.VersjaLib",})",
        R"({"jsonrpc":"2.0","id":01,"method":"amain.VersjaLib"})",
        R"({"jsonrpc":"2.0","id":+1,"method":"amain.VersjaLib"})",
        R"({"jsonrpc":"2.0","id":1.,"method":"amain.VersjaLib"})",
        R"({"jsonrpc":"2.0","id":.5,"method":"amain.VersjaLib"})",
        R"({"jsonrpc":"2.0","id":1,"method":"value.ToText","params":[01e999]})",
        R"({"jsonrpc":"2.0","id":1,"method":"value.ToText","params":[+1e999]})",
        R"({"jsonrpc":"2.0","id":1,"method":"value.ToText","params":[1.e999]})",
        R"({"jsonrpc":"2.0","id":1,1e999:2})",
        R"({"jsonrpc":"2.0","id":1, 1e999 : 2})",
        R"({"jsonrpc":"2.0","id":1,"method":"value.ToText","params":[NaN]})",
        R"({"jsonrpc":"2.0","id":1,"method":"value.ToText","params":[Infinity]})",
        R"({'jsonrpc':'2.0','id':1,'method':'amain.VersjaLib'})",
        "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"a\tb\"}",
        "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"a\x01\"}",
        "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"a\xFF\"}",
        "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"\xED\xA0\x80\"}",
        "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"\xC0\x80\"}",
        "\xEF\xB7\x90+",
        std::string("\0", 1),
        R"({"jsonrpc":"2.0","id":1,"method":"amain.VersjaLib"})" + std::string("\0x", 2),
        "1 2",
        "[1,2",
        "// comment",
    };
    for (const std::string& line : lines) {
        const std::string answer = rpc.exchange(line);
        EXPECT_EQ(R"({"jsonrpc":"2.0","id":null,"error":{"code":-32700,"message":"Parse error"}})",
                  answer)
            << line;
    }
    expect_alive(rpc);
}

TEST(RpcProtocol, JsonThatIsNoRequest) {
    RpcClient rpc;
    const struct {
        std::string line, id;
    } cases[] = {
        {"[]", "null"},
        {R"([{"jsonrpc":"2.0","id":1,"method":"amain.VersjaLib"}])", "null"},
        {"1", "null"},
        {"1e999", "null"},
        {"null", "null"},
        {"\"text\"", "null"},
        {"{}", "null"},
        {R"({"id":1,"method":"amain.VersjaLib"})", "1"},
        {R"({"jsonrpc":2.0,"id":1,"method":"amain.VersjaLib"})", "1"},
        {R"({"jsonrpc":"1.0","id":1,"method":"amain.VersjaLib"})", "1"},
        {R"({"jsonrpc":"2.0","id":1})", "1"},
        {R"({"jsonrpc":"2.0"})", "null"},
        {R"({"jsonrpc":"2.0","id":1,"method":5})", "1"},
        {R"({"jsonrpc":"2.0","id":1,"method":null})", "1"},
        {R"({"jsonrpc":"2.0","id":1,"method":1e999})", "1"},
        {R"({"jsonrpc":"2.0","id":{},"method":"amain.VersjaLib"})", "null"},
        {R"({"jsonrpc":"2.0","id":[1],"method":"amain.VersjaLib"})", "null"},
        {R"({"jsonrpc":"2.0","id":true,"method":"amain.VersjaLib"})", "null"},
    };
    for (const auto& wrong : cases) {
        const Json answer = Json::parse(rpc.exchange(wrong.line));
        EXPECT_EQ(-32600, answer["error"]["code"]) << wrong.line;
        EXPECT_EQ(wrong.id, answer["id"].dump()) << wrong.line;
    }
    expect_alive(rpc);
}

TEST(RpcProtocol, UnknownMethods) {
    RpcClient rpc;
    for (const std::string method : {"",
                                     ".",
                                     "..",
                                     "aChar",
                                     "aChar.",
                                     ".NullStr",
                                     "aChar.nullstr",
                                     "achar.NullStr",
                                     "aChar.Nothing",
                                     "aChar.NullStr.x",
                                     "aChar.NullStr=",
                                     "aChar.=",
                                     "Nothing.NullStr",
                                     "ClsCzyśćBazęDAO.x",
                                     "value.",
                                     "value.Nothing",
                                     "value.toLong",
                                     "value.to_double",
                                     "host.",
                                     "host.nothing",
                                     "@",
                                     "@.NullStr",
                                     "@0.NullStr",
                                     "@1.NullStr",
                                     "@-1.NullStr",
                                     "@1x.NullStr",
                                     "@ 1.NullStr",
                                     "@+1.NullStr",
                                     "@99999999999999999999.NullStr",
                                     "@1"}) {
        EXPECT_EQ(-32601, rpc.code(method, "[null]")) << method;
        EXPECT_EQ(-32601, rpc.code(method, "")) << method;
    }
    expect_alive(rpc);
}

TEST(RpcProtocol, WrongParams) {
    RpcClient rpc;
    const struct {
        std::string method, params;
    } cases[] = {
        {"aChar.NullStr", ""},
        {"aChar.NullStr", "[]"},
        {"aChar.NullStr", "[1,2]"},
        {"aChar.NullStr", "{}"},
        {"aChar.NullStr", R"({"ds":1})"},
        {"aChar.NullStr", "null"},
        {"aChar.NullStr", "1"},
        {"aChar.NullStr", "\"abc\""},
        {"aChar.Str2Str", "[1,2,3]"},
        {"aChar.c_aaa", "[1]"},
        {"aChar.c_aaa=", "[]"},
        {"aChar.c_aaa=", "[1,2]"},
        {"amain.VersjaLib", "[1]"},
        {"value.ToLong", "[]"},
        {"value.MakeDate", "[2024,1]"},
        {"value.MakeDate", "[2024,1,1,1]"},
    };
    for (const auto& wrong : cases) {
        EXPECT_EQ(-32602, rpc.code(wrong.method, wrong.params)) << wrong.method << wrong.params;
    }
    expect_alive(rpc);
}

TEST(RpcProtocol, EveryNumberOfTheLibraryWithItsText) {
    RpcClient rpc;
    const struct {
        std::string method, params;
        int code;
        std::string message;
    } cases[] = {
        {"value.RoundHalfEven", "[1.5,-1]", 5, "Invalid procedure call or argument"},
        {"value.ToInteger16", "[40000]", 6, "Overflow"},
        {"value.ToLong", R"(["abc"])", 13, "Type mismatch"},
        {"value.ToLong", "[null]", 94, "Invalid use of Null"},
        {"aChar.Str2Str", R"(["abc",null])", 94, "Invalid use of Null"},
        {"aChar.MidUZ", R"(["abc",0])", 5, "Invalid procedure call or argument"},
    };
    for (const auto& failing : cases) {
        const Json error = rpc.error(failing.method, failing.params);
        EXPECT_EQ(failing.code, error["code"]) << failing.method;
        EXPECT_EQ(failing.message, error["message"]) << failing.method;
        EXPECT_EQ(Json::array(), error["data"]["boxes"]) << failing.method;
    }
}

TEST(RpcProtocol, ArgumentsStandAsTheyAreAfterTheCall) {
    RpcClient rpc;
    const struct {
        std::string method, params, args;
    } cases[] = {
        // written by the member, and coerced to the type of its parameter
        {"aChar.Replace2", R"(["Kot","kot","pies"])",
         R"([{"String":"pie"},{"String":"kot"},{"String":"pies"}])"},
        {"aChar.UzMid", R"([" ab ",1,4])", R"([{"String":"ab"},{"Long":1},{"Long":4}])"},
        {"aChar.UzMid", R"([12,1.4,"4"])", R"([{"String":"12"},{"Long":1},{"Long":4}])"},
        {"aChar.apostrof2", R"(["d'Arc"])", R"([{"String":"d'Arc"}])"},
        // left out
        {"aChar.UzMid", R"([" ab ",1])", R"([{"String":" ab "},{"Long":1},{"Long":0}])"},
        {"aChar.UzMid", R"([" ab ",1,{"Missing":null}])",
         R"([{"String":" ab "},{"Long":1},{"Long":0}])"},
        {"aLiczby.VarMMR2Str", "[5]",
         R"([{"Long":5},{"Currency":"0.0000"},{"Currency":"0.0000"}])"},
        {"aLiczby.VarMMR2Str", R"([5,{"Missing":null},20])",
         R"([{"Long":5},{"Currency":"0.0000"},{"Currency":"20.0000"}])"},
        {"aLiczby.VarR2Str", "[0]", R"([{"Long":0},{"String":""}])"},
        {"aLiczby.NullXUStr", R"(["abc","5"])", R"([{"String":"abc"},{"Integer":5}])"},
        // a Variant takes a missing argument as a value
        {"aChar.NullStr", R"([{"Missing":null}])", R"([{"Missing":null}])"},
        {"amain.VersjaLib", "", "[]"},
    };
    for (const auto& call : cases) {
        EXPECT_EQ(Json::parse(call.args), rpc.result(call.method, call.params)["args"])
            << call.method << call.params;
    }
}

TEST(RpcProtocol, ArgumentsOfACallThatFails) {
    RpcClient rpc;
    // The member has changed its argument before it fails.
    EXPECT_EQ(Json::parse(R"([{"String":"a b"},{"Long":0},{"Long":0}])"),
              rpc.error("aChar.MidUZ", R"(["a\tb",0])")["data"]["args"]);
    // A coercion fails: the member never starts, and what is left out has its default.
    EXPECT_EQ(Json::parse(R"([{"String":"a\tb"},{"String":"x"},{"Long":0}])"),
              rpc.error("aChar.MidUZ", R"(["a\tb","x"])")["data"]["args"]);
}

TEST(RpcProtocol, NotificationsAreCarriedOutAndNotAnswered) {
    RpcClient rpc;
    rpc.send(R"({"jsonrpc":"2.0","method":"aChar.c_aaa=","params":["kept"]})"
             "\n");
    rpc.send(R"({"jsonrpc":"2.0","method":"aChar.Nothing"})"
             "\n");
    rpc.send(R"({"jsonrpc":"2.0","method":"aChar.NullStr","params":[]})"
             "\n");
    rpc.send(R"({"jsonrpc":"2.0","method":"value.ToLong","params":[null]})"
             "\n");
    rpc.send(R"({"jsonrpc":"2.0","method":"host.create","params":["aChar"]})"
             "\n");
    EXPECT_EQ(R"({"String":"kept"})", rpc.value("aChar.c_aaa"));
    EXPECT_EQ(R"({"String":""})", rpc.value("@1.c_aaa"));
}

TEST(RpcProtocol, BlankLinesAreSkippedAndLinesMayEndWithACarriageReturn) {
    RpcClient rpc;
    rpc.send("\n  \n\t\r\n\r\n");
    rpc.send(" {\"jsonrpc\" : \"2.0\" ,\t\"id\":1,\"method\":\"amain.VersjaLib\"} \r\n");
    EXPECT_TRUE(rpc.receive().starts_with(R"({"jsonrpc":"2.0","id":1,"result")"));
    expect_alive(rpc);
}

TEST(RpcProtocol, UnknownMembersOfARequestAreNoMatter) {
    RpcClient rpc;
    EXPECT_TRUE(
        rpc.exchange(R"({"extra":[1e999,{}],"jsonrpc":"2.0","id":1,"method":"amain.VersjaLib"})")
            .starts_with(R"({"jsonrpc":"2.0","id":1,"result")"));
}

TEST(RpcProtocol, NamesMayBeEscaped) {
    RpcClient rpc;
    const std::string request = R"({"jsonrpc":"2.0","id":1,"method":)";
    EXPECT_EQ(-32601,
              code_of(rpc.exchange(request + R"("aChar.Cudzyslow_Ameryk","params":["\""]})")));
    EXPECT_NE(std::string::npos,
              rpc.exchange(request + R"("aChar.Cudzys\u0142\u00f3w_Ameryk","params":["\""]})")
                  .find(R"("value":{"String":"'"})"));
}

TEST(RpcProtocol, EndOfInputEndsTheProcess) {
    RpcClient silent;
    silent.close_input();
    EXPECT_EQ("", silent.receive());
    EXPECT_EQ(0, silent.exit_status());

    RpcClient last;  // a last line without an end is a line
    last.send(R"({"jsonrpc":"2.0","id":1,"method":"amain.VersjaLib"})");
    last.close_input();
    EXPECT_TRUE(last.receive().starts_with(R"({"jsonrpc":"2.0","id":1,"result")"));
    EXPECT_EQ(0, last.exit_status());

    RpcClient broken;
    broken.send("{");
    broken.close_input();
    EXPECT_EQ(-32700, code_of(broken.receive()));
    EXPECT_EQ(0, broken.exit_status());
}

TEST(RpcProtocol, LongLines) {
    RpcClient rpc;
    const std::string text(10'000'000, 'x');
    EXPECT_EQ(R"({"String":")" + text + "\"}", rpc.value("aChar.NullStr", "[\"" + text + "\"]"));
    EXPECT_EQ(-32700, code_of(rpc.exchange(std::string(10'000'000, '{'))));
    EXPECT_EQ(-32700, code_of(rpc.exchange(std::string(10'000'000, '\\'))));
    EXPECT_EQ(-32700, code_of(rpc.exchange(std::string(10'000'000, '9') + 'x')));
    EXPECT_EQ(-32600, code_of(rpc.exchange(std::string(10'000'000, '9'))));
    std::string list = "[1";
    for (int i = 0; i < 3'000'000; ++i) {
        list += ",1";
    }
    EXPECT_EQ(-32602, rpc.code("aChar.NullStr", list + ']'));
    expect_alive(rpc);
}

TEST(RpcProtocol, ALineBeyondTheLimitIsRefusedAndTheNextOneRead) {
    RpcClient rpc;
    EXPECT_EQ(-32700, code_of(rpc.exchange('"' + std::string(65 << 20, 'x') + '"')));
    expect_alive(rpc);
}

TEST(RpcProtocol, DeepNesting) {
    RpcClient rpc;
    const auto nested = [](std::size_t depth) {
        return std::string(depth, '[') + std::string(depth, ']');
    };
    EXPECT_EQ(-32602, rpc.code("aChar.NullStr", nested(900)));
    EXPECT_EQ(-32700, rpc.code("aChar.NullStr", nested(2000)));
    EXPECT_EQ(-32700, code_of(rpc.exchange(nested(1'000'000))));
    EXPECT_EQ(-32700, code_of(rpc.exchange(std::string(1'000'000, '['))));
    std::string objects;
    for (int i = 0; i < 100'000; ++i) {
        objects += R"({"a":)";
    }
    EXPECT_EQ(-32700, code_of(rpc.exchange(objects)));
    expect_alive(rpc);
}

TEST(RpcProtocol, MemoryThatIsNotThereFailsTheCallAndNotTheProcess) {
    if (is_sanitized) {
        GTEST_SKIP() << "a sanitizer's own memory needs more than any limit";
    }
    Options options;
    options.in_child = [] {
        const rlimit limit{400 << 20, 400 << 20};
        ::setrlimit(RLIMIT_AS, &limit);
    };
    RpcClient rpc(options);
    const Json error = rpc.error("aChar.StrDoPrawej", R"(["",2000000000])");
    EXPECT_EQ(7, error["code"]);
    EXPECT_EQ("Out of memory", error["message"]);
    expect_alive(rpc);
}

// What cannot be taken must be refused: an answer with an error, and the next call works.
TEST(RpcProtocol, RandomLines) {
    RpcClient rpc;
    std::mt19937 random(20240517);
    const std::string valid =
        R"({"jsonrpc":"2.0","id":1,"method":"aLiczby.VarR2Str","params":[{"Currency":"1.5"},"\ud800"]})";
    const std::string alphabet = "{}[]\",:\\u0123456789abcdefDE+-.eE\xEF\xB7\x90 \x01\xFF";
    for (int i = 0; i < 20'000; ++i) {
        std::string line = valid;
        for (unsigned n = random() % 4; n > 0; --n) {
            const std::size_t at = random() % line.size();
            switch (random() % 3) {
                case 0:
                    line[at] = alphabet[random() % alphabet.size()];
                    break;
                case 1:
                    line.insert(at, 1, alphabet[random() % alphabet.size()]);
                    break;
                default:
                    line.erase(at, random() % 5);
            }
        }
        // A request that has lost its id is a notification: this one is answered in any case.
        rpc.send(line + "\n");
        const std::string sentinel =
            R"({"jsonrpc":"2.0","id":"sentinel","method":"value.ToLong","params":[5]})";
        rpc.send(sentinel + "\n");
        std::string answer = rpc.receive();
        if (answer.find("\"sentinel\"") == std::string::npos) {
            ASSERT_TRUE(answer.starts_with(R"({"jsonrpc":"2.0","id":)")) << line;
            answer = rpc.receive();
        }
        ASSERT_EQ(R"({"jsonrpc":"2.0","id":"sentinel","result":{"value":{"Long":5},)"
                  R"("args":[{"Long":5}],"boxes":[]}})",
                  answer)
            << line;
    }
}

}  // namespace
}  // namespace tool_test
