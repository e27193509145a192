#include <iostream>
#include <streambuf>
#include <string>

#include "commands.h"
#include "rpc_session.h"
#include "usage_error.h"

namespace kvarta16::tool {
namespace {

bool is_blank(std::string_view line) {
    return line.find_first_not_of(" \t\r") == std::string_view::npos;
}

// The next line, as far as a session looks at it; false at the end of the input.
bool read_line(std::streambuf& input, std::string& line) {
    using Traits = std::char_traits<char>;
    line.clear();
    auto c = input.sbumpc();
    const bool any = !Traits::eq_int_type(c, Traits::eof());
    for (; !Traits::eq_int_type(c, Traits::eof()) && c != '\n'; c = input.sbumpc()) {
        if (line.size() <= longest_request) {
            line += Traits::to_char_type(c);
        }
    }
    return any;
}

}  // namespace

int rpc_command() {
    std::ios::sync_with_stdio(false);
    RpcSession session;
    for (std::string line; read_line(*std::cin.rdbuf(), line);) {
        if (is_blank(line)) {
            continue;
        }
        if (const std::optional<std::string> answer = session.answer(line)) {
            std::cout << *answer << '\n' << std::flush;
        }
        if (!std::cout) {
            return exit_failure;
        }
    }
    return 0;
}

}  // namespace kvarta16::tool
