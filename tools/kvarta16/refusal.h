// A JSON-RPC request that never reaches the library.
#pragma once

#include <exception>
#include <string>
#include <utility>

namespace kvarta16::tool {

// The codes that JSON-RPC 2.0 gives to such requests.
enum class RefusalCode : int {
    NoJson = -32700,
    NoRequest = -32600,
    UnknownMethod = -32601,  // no such class, member or object, or none that is built
    BadParams = -32602,      // their number or their shape
};

class Refusal final : public std::exception {
  public:
    Refusal(RefusalCode code, std::string message) : code_(code), message_(std::move(message)) {}

    [[nodiscard]] RefusalCode code() const noexcept { return code_; }
    // What is wrong, in UTF-8.
    [[nodiscard]] const char* what() const noexcept override { return message_.c_str(); }

  private:
    RefusalCode code_;
    std::string message_;
};

}  // namespace kvarta16::tool
