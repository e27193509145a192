// How the parts of the FTP adapter tell each other that they cannot serve. No such exception
// leaves the adapter: its calls answer 0 and keep the number for GetLastError.
#pragma once

#include <exception>

#include <kvarta16/platform/internet.h>

namespace kvarta16::posix {

class FtpError final : public std::exception {
  public:
    // One of internet_error or a number of the system's.
    explicit FtpError(Long number) noexcept : number_(number) {}

    [[nodiscard]] Long number() const noexcept { return number_; }
    [[nodiscard]] const char* what() const noexcept override { return "FTP"; }

  private:
    Long number_;
};

// A text that does not fit into the caller's buffer; a number of the system's.
inline constexpr Long insufficient_buffer = 122;

}  // namespace kvarta16::posix
