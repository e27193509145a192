// A JSON-RPC client of the tool for the tests.
//
//   RpcClient rpc;
//   EXPECT_EQ(rpc.value("value.ToLong", "[2.5]"), R"({"Long":2})");
#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tool_process.h"

namespace tool_test {

using Json = nlohmann::json;

class RpcClient {
  public:
    explicit RpcClient(const Options& options = {}) {
        ::signal(SIGPIPE, SIG_IGN);
        process_ = start_tool({"rpc"}, in_.read_end, out_.write_end, STDERR_FILENO, options);
        close_file(in_.read_end);
        close_file(out_.write_end);
    }
    ~RpcClient() {
        close_file(in_.write_end);
        close_file(out_.read_end);
        if (process_ > 0) {
            status_of(process_);
        }
    }
    RpcClient(const RpcClient&) = delete;
    RpcClient& operator=(const RpcClient&) = delete;
    RpcClient(RpcClient&&) = delete;
    RpcClient& operator=(RpcClient&&) = delete;

    void send(std::string_view text) {
        while (!text.empty() && write_some(in_.write_end, text)) {
        }
        ASSERT_TRUE(text.empty()) << "the tool does not read any more";
    }

    // The next line without its end; empty at the end of the output.
    std::string receive() {
        std::size_t end = 0;
        while ((end = received_.find('\n')) == std::string::npos) {
            if (!read_some(out_.read_end, received_)) {
                return {};
            }
        }
        const std::string line = received_.substr(0, end);
        received_.erase(0, end + 1);
        return line;
    }

    // The answer to a line, as it comes.
    std::string exchange(const std::string& line) {
        send(line + '\n');
        return receive();
    }

    // The answer to a call; `params` as JSON, "" for none.
    std::string call(const std::string& method, const std::string& params = "[]") {
        std::string request = R"({"jsonrpc":"2.0","id":)" + std::to_string(++id_) +
                              R"(,"method":)" + Json(method).dump();
        request += params.empty() ? "}" : ",\"params\":" + params + '}';
        return exchange(request);
    }

    // The value of a call as the text that stands in its answer; what is wrong where it fails.
    std::string value(const std::string& method, const std::string& params = "[]") {
        const std::string answer = call(method, params);
        const std::string before =
            R"({"jsonrpc":"2.0","id":)" + std::to_string(id_) + R"(,"result":{"value":)";
        const std::size_t end = answer.rfind(",\"args\":");
        return answer.starts_with(before) && end != std::string::npos
                   ? answer.substr(before.size(), end - before.size())
                   : answer;
    }

    // The `result` of a call, or its `error`.
    Json result(const std::string& method, const std::string& params = "[]") {
        return Json::parse(call(method, params)).value("result", Json());
    }
    Json error(const std::string& method, const std::string& params = "[]") {
        return Json::parse(call(method, params)).value("error", Json());
    }
    // 0 where the call succeeds.
    int code(const std::string& method, const std::string& params = "[]") {
        const Json answer = Json::parse(call(method, params));
        return answer.contains("error") ? answer["error"]["code"].get<int>() : 0;
    }

    void close_input() { close_file(in_.write_end); }
    // To be asked after the input has been closed.
    int exit_status() {
        const pid_t process = std::exchange(process_, 0);
        return status_of(process);
    }

  private:
    Pipe in_;
    Pipe out_;
    pid_t process_ = 0;
    int id_ = 0;
    std::string received_;
};

// A text as a JSON value.
inline std::string quoted(const std::string& text) {
    return Json(text).dump();
}

}  // namespace tool_test
