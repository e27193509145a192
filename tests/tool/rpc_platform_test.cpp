// The platform of a session, from the side of the library.
#include "rpc_platform.h"

#include <chrono>

#include <gtest/gtest.h>

#include "rpc_session.h"

namespace kvarta16::tool {
namespace {

std::string request(const std::string& method, const std::string& params) {
    return R"({"jsonrpc":"2.0","id":1,"method":")" + method + R"(","params":)" + params + '}';
}

TEST(RpcPlatform, TheClockStandsWhereItIsSet) {
    RpcSession session;
    session.answer(request("host.now", R"(["2024-05-17T12:00:00"])"));
    EXPECT_EQ(Date{45429.5}, platform().clock->Now());
    session.answer(request("host.now", R"([{"Date":5}])"));
    EXPECT_EQ(Date{5}, platform().clock->Now());
    session.answer(request("host.now", R"(["nonsense"])"));
    EXPECT_EQ(Date{5}, platform().clock->Now());
    session.answer(request("host.now", "[null]"));
    EXPECT_GT(platform().clock->Now(), Date{45000});
}

TEST(RpcPlatform, PausesAreToldWhereTheyAreRecorded) {
    RpcPlatform host;
    host.sleeper.records = true;
    const auto begin = std::chrono::steady_clock::now();
    platform().sleeper->Sleep(3'600'000);
    platform().sleeper->Sleep(0);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::minutes(1));
    EXPECT_EQ((std::vector<Long>{3'600'000, 0}), host.sleeper.recorded);
    host.sleeper.records = false;
    platform().sleeper->Sleep(20);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(20));
    EXPECT_EQ(2, host.sleeper.recorded.size());
    host.begin_call();
    EXPECT_TRUE(host.sleeper.recorded.empty());
}

TEST(RpcPlatform, FaultsStandBeforeClockPauseAndBox) {
    RpcPlatform host;
    host.plan->fail_at("Now", 1, FaultSpan::Once, 5);
    host.plan->fail_at("Sleep", 1, FaultSpan::Once, 6);
    host.plan->fail_at("MsgBox", 1, FaultSpan::Once, 9);
    EXPECT_THROW(platform().clock->Now(), Failure);
    EXPECT_THROW(platform().sleeper->Sleep(0), Failure);
    EXPECT_THROW(platform().message_boxes->MsgBox(u"", 0, std::nullopt), Failure);
    EXPECT_EQ(3, host.plan->failed_calls());
}

TEST(RpcPlatform, FaultsStandBeforeFilesAndEngine) {
    RpcPlatform host;
    host.plan->fail_at("GetAttr", 1, FaultSpan::Once, 75);
    host.plan->fail_at("Kill", 1, FaultSpan::Once, 70);
    host.plan->fail_at("OpenDatabase", 1, FaultSpan::Once, 3051);
    host.plan->fail_at("CreateDatabase", 1, FaultSpan::Once, 3204);
    const auto number_of = [](auto&& call) {
        try {
            call();
        } catch (const Failure& failure) {
            return failure.number();
        }
        return Long{0};
    };
    EXPECT_EQ(75, number_of([] { static_cast<void>(platform().files->GetAttr(u"Z:\\")); }));
    EXPECT_EQ(0, number_of([] { static_cast<void>(platform().files->GetAttr(u"Z:\\")); }));
    EXPECT_EQ(70, number_of([] { platform().files->Kill(u"Z:\\"); }));
    EXPECT_EQ(3051, number_of([] { static_cast<void>(platform().db_engine->OpenDatabase(u"")); }));
    EXPECT_EQ(3204,
              number_of([] { static_cast<void>(platform().db_engine->CreateDatabase(u"", u"")); }));
    EXPECT_EQ(4, host.plan->failed_calls());
}

TEST(RpcPlatform, BoxesKeepTextStyleTitleAndAnswer) {
    RpcPlatform host;
    host.boxes.answers = {MsgBoxResult::Cancel};
    EXPECT_EQ(MsgBoxResult::Cancel, platform().message_boxes->MsgBox(u"a", 48, u"Uwaga"));
    EXPECT_EQ(MsgBoxResult::Ok, platform().message_boxes->MsgBox(u"b", 48, std::nullopt));
    EXPECT_EQ(MsgBoxResult::No, platform().message_boxes->MsgBox(u"c", 36, std::nullopt));
    ASSERT_EQ(3, host.boxes.shown.size());
    EXPECT_EQ(u"a", host.boxes.shown[0].text);
    EXPECT_EQ(48, host.boxes.shown[0].style);
    EXPECT_EQ(u"Uwaga", host.boxes.shown[0].title);
    EXPECT_EQ(std::nullopt, host.boxes.shown[1].title);
    host.begin_call();
    EXPECT_TRUE(host.boxes.shown.empty());
}

TEST(RpcPlatform, ThePlatformBeforeIsBackAfterwards) {
    const Platform before = platform();
    { const RpcPlatform host; }
    EXPECT_EQ(before.clock, platform().clock);
    EXPECT_EQ(before.message_boxes, platform().message_boxes);
    EXPECT_EQ(before.sleeper, platform().sleeper);
    EXPECT_EQ(before.files, platform().files);
    EXPECT_EQ(before.db_engine, platform().db_engine);
}

TEST(RpcPlatform, PausesStandInTheAnswerWhereThereAreSome) {
    RpcPlatform host;
    ObjectTable objects;
    const AnswerWriter answers(host, objects);
    host.sleeper.records = true;
    EXPECT_EQ(R"({"jsonrpc":"2.0","id":1,"result":{"value":5,"args":[],"boxes":[]}})",
              answers.success("1", "5", {}));
    platform().sleeper->Sleep(500);
    platform().sleeper->Sleep(-1);
    EXPECT_EQ(
        R"({"jsonrpc":"2.0","id":1,"result":{"value":5,"args":[],"boxes":[],"sleeps":[500,-1]}})",
        answers.success("1", "5", {}));
    EXPECT_EQ(R"({"jsonrpc":"2.0","id":1,"error":{"code":5,"message":"no","data":)"
              R"({"args":[],"boxes":[],"sleeps":[500,-1]}}})",
              answers.failure("1", Failure(5, u"no"), {}));
}

}  // namespace
}  // namespace kvarta16::tool
