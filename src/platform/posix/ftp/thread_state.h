// What a thread is told about its last calls: the last failure, the last answer of a server.
#pragma once

#include <string>

#include <kvarta16/platform/internet.h>
#include <kvarta16/platform/posix/ftp/replies.h>

namespace kvarta16::posix {

struct ThreadState {
    Long last_error = 0;
    std::string response;    // as the server sent it
    Long response_code = 0;  // 0 where the last failure had another reason than that answer

    void answered(const Reply& reply) {
        response = reply.text;
        response_code = reply.code;
    }
    // A failure of this side's has a number of its own, which no code is to hide.
    void failed(Long number) {
        last_error = number;
        const bool is_answer = number == internet_error::extended_error ||
                               number == internet_error::incorrect_user_name ||
                               number == internet_error::incorrect_password ||
                               number == internet_error::login_failure;
        response_code = is_answer ? response_code : 0;
    }
};

// That of the calling thread.
[[nodiscard]] inline ThreadState& thread_state() {
    thread_local ThreadState state;
    return state;
}

}  // namespace kvarta16::posix
