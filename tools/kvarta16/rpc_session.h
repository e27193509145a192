// A JSON-RPC 2.0 session on the library: one request in, one answer out. `kvarta16 rpc` feeds it
// line by line.
//
//   RpcSession session;
//   session.answer(R"({"jsonrpc":"2.0","id":1,"method":"aLiczby.VarR2Str","params":[12.5]})");
//   // {"jsonrpc":"2.0","id":1,"result":{"value":{"String":"12,50"},"args":[…],"boxes":[]}}
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <kvarta16/frame/catalogue.h>

#include "rpc_answers.h"
#include "rpc_host.h"

namespace kvarta16::tool {

// A longer line is refused unread, so that nothing a client sends exhausts the memory.
inline constexpr std::size_t longest_request = std::size_t{64} << 20;

// While it lives, its platform is in force on the thread that made it.
class RpcSession {
  public:
    // Carries out the request of a line and answers it. A request without an id is carried out
    // and not answered; a wrong line is answered with what is wrong and changes nothing.
    std::optional<std::string> answer(std::string_view line);

  private:
    struct Request;
    struct Target;

    static Request read_request(Json json);
    std::string carry_out(const Request& request);
    std::string value_of(const Request& request, Arguments& arguments);
    [[nodiscard]] Target find_target(StringView method);

    ObjectTable objects_;
    RpcPlatform platform_;
    HostMethods host_{objects_, platform_};
    AnswerWriter answers_{platform_, objects_};
};

}  // namespace kvarta16::tool
