// What the person at the command line has to put right: a name that there is not, a value that
// cannot be read. The tool prints the text and ends with exit_usage.
#pragma once

#include <stdexcept>

namespace kvarta16::tool {

inline constexpr int exit_failure = 1;        // a failure of the library, a database, the output
inline constexpr int exit_usage = 2;          // a wrong command line
inline constexpr int exit_interrupted = 130;  // Ctrl-C, as a shell reports it

class UsageError final : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace kvarta16::tool
