// A connection to the print server of the thread's settings: CUPS_SERVER in the environment,
// client.conf, or the server of this machine.
#pragma once

#include <memory>

#include <cups/cups.h>

namespace kvarta16::cups {

struct CloseConnection {
    void operator()(http_t* connection) const { ::httpClose(connection); }
};
using Connection = std::unique_ptr<http_t, CloseConnection>;

// Empty where the server does not answer within half a minute.
[[nodiscard]] inline Connection connect() {
    constexpr int patience_ms = 30'000;
    constexpr int blocking = 1;
    return Connection(::httpConnect2(::cupsServer(), ::ippPort(), nullptr, AF_UNSPEC,
                                     ::cupsEncryption(), blocking, patience_ms, nullptr));
}

}  // namespace kvarta16::cups
