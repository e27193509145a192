// The registry as text: the export format of the platform, "Windows Registry Editor Version 5.00".
//
//   Windows Registry Editor Version 5.00
//
//   [HKEY_CURRENT_USER\Software\ZEVO]
//   @="default value"
//   "Drukarka"="\\\\serwer\\Magazyn"
//   "Kopie"=dword:00000002
//   "Układ"=hex:01,02,03
//   "Kasowana"=-
//   [-HKEY_CURRENT_USER\Software\ZEVO\Stare]
//
// It is read in UTF-8 and in UTF-16 of either order, which a byte order mark tells, with lines that
// end by CR LF or LF; a backslash at the end of a line lets its bytes go on in the next one.
// Comments begin with ";" at the start of a line or behind a value. A text may go over several
// lines, as the platform writes it. Nothing that is not understood is passed over: the first such
// thing is a TextError and nothing is read.
//
// A text in quotes is a REG_SZ of these characters without an ending zero. One that the quotes
// cannot carry - with an ending zero, line ends or another control character, half of a surrogate
// pair, or an odd byte - stands as hex(1).
#pragma once

#include <stdexcept>

#include <kvarta16/frame/export.h>
#include <kvarta16/platform/posix/registry/registry_tree.h>

namespace kvarta16::posix::registry {

class KVARTA16_EXPORT TextError final : public std::runtime_error {
  public:
    TextError(std::size_t line, const std::string& words)
        : std::runtime_error("line " + std::to_string(line) + ": " + words), line_(line) {}
    [[nodiscard]] std::size_t line() const noexcept { return line_; }  // from 1 up

  private:
    std::size_t line_;
};

// One thing that a text asks for, in the order of the text.
struct Change {
    enum class Kind : std::uint8_t { MakeKey, DeleteKey, SetValue, DeleteValue };

    Kind kind = Kind::MakeKey;
    std::size_t line = 0;
    Path path;    // its first name is that of a root, in full
    Value value;  // of SetValue; its name alone for DeleteValue
};

// The full name of a root from its full or short name in any case: "hkcu", "HKEY_CURRENT_USER". ""
// for any other.
[[nodiscard]] KVARTA16_EXPORT StringView root_name(StringView name);

// What the bytes ask for. Throws TextError.
[[nodiscard]] KVARTA16_EXPORT std::vector<Change> read_text(std::string_view bytes);

// Does it to a tree whose top keys are the roots. Deleting what is not there changes nothing.
void apply(Key& tree, const Change& change);

// The tree that the bytes describe. Throws TextError.
[[nodiscard]] Key read_tree(std::string_view bytes);

// The first line, in UTF-8 with its end.
[[nodiscard]] std::string text_header();

// A key and all below it in UTF-8; `path` is the key's own, with its root. A tree is written by its
// top keys. Lines end by LF.
void write_key(std::string& text, const String& path, const Key& key);
[[nodiscard]] std::string write_tree(const Key& tree);

// A text of write_key() as the platform's own programs write it: UTF-16 with its mark, lines that
// end by CR LF.
[[nodiscard]] KVARTA16_EXPORT std::string as_utf16(std::string_view text);

}  // namespace kvarta16::posix::registry
