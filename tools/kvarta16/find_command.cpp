// What a pattern matches, in the finder's own order: all but the entry that the system delivered
// last are sorted by name, and that one stands at the end.
#include <array>
#include <iostream>

#include <kvarta16/files/CFileFind.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>

#include "commands.h"
#include "usage_error.h"

namespace kvarta16::tool {
namespace {

struct Letter {
    Boolean (CFileFind::*is)() const;
    char letter;
};
constexpr auto letters = std::to_array<Letter>({{&CFileFind::IsDirectory, 'd'},
                                                {&CFileFind::IsReadOnly, 'r'},
                                                {&CFileFind::IsHidden, 'h'},
                                                {&CFileFind::IsSystem, 's'},
                                                {&CFileFind::IsArchived, 'a'}});

std::string attributes_of(const CFileFind& finder) {
    std::string text;
    for (const Letter& letter : letters) {
        text += (finder.*letter.is)() ? letter.letter : '-';
    }
    return text;
}

// "drhsa        1234  2026-11-21 20:15:00  name"; a size beyond 2 GiB is told as the finder does.
void print_entry(const CFileFind& finder) {
    constexpr std::size_t size_width = 12;
    const std::string size = to_utf8(ToText(finder.GetLength64()));
    const std::string padding(size.size() < size_width ? size_width - size.size() : 0, ' ');
    const String written = FormatMask(finder.GetLastWriteTime(), u"yyyy-MM-dd hh:nn:ss");
    std::cout << attributes_of(finder) << padding << size << "  " << to_utf8(written) << "  "
              << to_utf8(finder.GetFileName()) << '\n';
}

}  // namespace

int find_command(const std::string& pattern) {
    CFileFind finder;
    if (!finder.FindFile(from_utf8(pattern))) {
        std::cerr << "kvarta16: nothing matches \"" << pattern << "\"\n";
        return exit_failure;
    }
    do {
        print_entry(finder);
    } while (finder.FindNextFile());
    return 0;
}

}  // namespace kvarta16::tool
