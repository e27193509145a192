// Command lines as the platform takes them apart: the program's name, then its arguments.
#pragma once

#include <vector>

#include <kvarta16/frame/types.h>

namespace kvarta16::posix {

// One way to read the beginning of a command line.
struct CommandReading {
    String program;
    StringView arguments;  // of the command line, not yet taken apart

    friend bool operator==(const CommandReading&, const CommandReading&) = default;
};

// The ways to read a command line, in the order in which they are tried. A name in quotes ends at
// the second one, and there is no other way. Without quotes it may hold blanks: of
// "C:\Moje programy\pakuj.exe a b" first "C:\Moje" is tried, then "C:\Moje programy\pakuj.exe",
// and so on to the end, names up to 260 characters. Blanks and tabs before the name count for
// nothing. A NUL ends the line. None for a line without a name.
[[nodiscard]] std::vector<CommandReading> readings_of(StringView command_line);

// The arguments by the rules of the platform's own programs:
//
//   blanks, tabs   part them, but within quotes
//   "              begins or ends a part in quotes; "" within one is a quote
//   \" or \\"      before a quote two backslashes stand for one, and an odd one makes the quote a
//                  character of the argument; anywhere else a backslash is one
//   ""             alone is an empty argument
[[nodiscard]] std::vector<String> arguments_of(StringView text);

}  // namespace kvarta16::posix
