#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/registry/registry_text.h>

namespace kvarta16::posix::registry {
namespace {

constexpr StringView header = u"Windows Registry Editor Version 5.00";

struct RootName {
    StringView full;
    StringView brief;
};
constexpr RootName root_names[] = {{u"HKEY_CLASSES_ROOT", u"HKCR"},
                                   {u"HKEY_CURRENT_USER", u"HKCU"},
                                   {u"HKEY_LOCAL_MACHINE", u"HKLM"},
                                   {u"HKEY_USERS", u"HKU"},
                                   {u"HKEY_CURRENT_CONFIG", u"HKCC"}};

bool is_high_surrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool is_low_surrogate(char16_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// Where half of a surrogate pair stands alone; npos where none does.
std::size_t lone_surrogate(StringView text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (is_high_surrogate(text[i]) && i + 1 < text.size() && is_low_surrogate(text[i + 1])) {
            ++i;
        } else if (is_high_surrogate(text[i]) || is_low_surrogate(text[i])) {
            return i;
        }
    }
    return StringView::npos;
}

std::size_t line_at(StringView text, std::size_t place) {
    return 1 + static_cast<std::size_t>(std::ranges::count(text.substr(0, place), u'\n'));
}

// ---- From bytes to characters ---------------------------------------------------------------

constexpr std::string_view utf8_mark = "\xEF\xBB\xBF";
constexpr std::string_view low_first_mark = "\xFF\xFE";
constexpr std::string_view high_first_mark = "\xFE\xFF";

String decode_utf16(std::string bytes, bool is_high_first) {
    if (bytes.size() % 2 != 0) {
        throw TextError(line_at(text_of(bytes), String::npos), "half of a character at the end");
    }
    if (is_high_first) {
        for (std::size_t i = 0; i < bytes.size(); i += 2) {
            std::swap(bytes[i], bytes[i + 1]);
        }
    }
    return text_of(bytes);
}

String decode_utf8(std::string_view bytes) {
    String text = from_utf8(bytes);
    const std::string again = to_utf8(text);
    const auto differing = std::ranges::mismatch(bytes, again);
    if (differing.in1 != bytes.end() || differing.in2 != again.end()) {
        const auto lines = std::count(bytes.begin(), differing.in1, '\n');
        throw TextError(1 + static_cast<std::size_t>(lines), "not in UTF-8");
    }
    return text;
}

String decode(std::string_view bytes) {
    String text;
    if (bytes.starts_with(low_first_mark) || bytes.starts_with(high_first_mark)) {
        text = decode_utf16(std::string(bytes.substr(2)), bytes.starts_with(high_first_mark));
    } else {
        text = decode_utf8(bytes.substr(bytes.starts_with(utf8_mark) ? utf8_mark.size() : 0));
    }
    if (const std::size_t place = text.find(u'\0'); place != String::npos) {
        throw TextError(line_at(text, place), "a character of code 0");
    }
    if (const std::size_t place = lone_surrogate(text); place != String::npos) {
        throw TextError(line_at(text, place), "half of a surrogate pair");
    }
    return text;
}

// ---- From characters to changes -------------------------------------------------------------

std::optional<unsigned> digit_of(char16_t unit) {
    if (unit >= u'0' && unit <= u'9') {
        return unit - u'0';
    }
    const char16_t letter = lower_case(unit);
    return letter >= u'a' && letter <= u'f' ? std::optional<unsigned>(letter - u'a' + 10U)
                                            : std::nullopt;
}

constexpr unsigned bits_of_digit = 4;
constexpr std::size_t digits_of_long = 8;
constexpr std::size_t digits_of_byte = 2;

std::string bytes_of(std::uint32_t number) {
    std::string bytes;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        bytes += static_cast<char>(static_cast<unsigned char>((number >> shift) & 0xFFU));
    }
    return bytes;
}

class Reader {
  public:
    explicit Reader(StringView text) : text_(text) {}

    std::vector<Change> read() {
        read_header();
        while (!is_at_end()) {
            read_line();
        }
        return std::move(changes_);
    }

  private:
    [[nodiscard]] bool is_at_end() const { return at_ == text_.size(); }
    [[nodiscard]] char16_t peek() const { return is_at_end() ? u'\0' : text_[at_]; }
    [[nodiscard]] bool is_at_line_end() const {
        return is_at_end() || peek() == u'\n' || text_.substr(at_).starts_with(u"\r\n");
    }
    [[noreturn]] void refuse(const std::string& words) const { throw TextError(line_, words); }

    bool accept(char16_t unit) {
        const bool is_there = peek() == unit && !is_at_end();
        at_ += is_there ? 1U : 0U;
        return is_there;
    }
    bool accept(StringView word) {  // in any case of its letters
        const bool is_there = lower_case(text_.substr(at_, word.size())) == word;
        at_ += is_there ? word.size() : 0U;
        return is_there;
    }
    void skip_blanks() {
        while (peek() == u' ' || peek() == u'\t') {
            ++at_;
        }
    }
    StringView rest_of_line() {
        const std::size_t start = at_;
        while (!is_at_line_end()) {
            ++at_;
        }
        return text_.substr(start, at_ - start);
    }
    void end_line() {
        accept(u'\r');
        if (accept(u'\n')) {
            ++line_;
        }
    }

    void read_header() {
        if (trim_right(rest_of_line()) != header) {
            refuse("the first line is not \"" + to_utf8(header) + "\"");
        }
        end_line();
    }

    void read_line() {
        skip_blanks();
        if (accept(u'[')) {
            read_key();
        } else if (peek() == u'"' || peek() == u'@') {
            read_value();
        }
        skip_blanks();
        if (peek() == u';') {
            static_cast<void>(rest_of_line());
        }
        if (!is_at_line_end()) {
            refuse("neither a key nor a value nor a comment");
        }
        end_line();
    }

    void read_key() {
        const bool is_deleted = accept(u'-');
        StringView names = rest_of_line();
        const std::size_t end = names.find_last_not_of(u" \t");
        if (end == StringView::npos || names[end] != u']') {
            refuse("a key without its \"]\"");
        }
        names = names.substr(0, end);
        path_ = split(names);
        is_key_there_ = !is_deleted;
        using enum Change::Kind;
        changes_.push_back({is_deleted ? DeleteKey : MakeKey, line_, path_, {}});
    }

    [[nodiscard]] Path split(StringView names) const {
        Path path;
        for (std::size_t start = 0; start <= names.size();) {
            const std::size_t end = std::min(names.find(u'\\', start), names.size());
            path.emplace_back(names.substr(start, end - start));
            if (path.back().empty() || path.back().size() > longest_key_name) {
                refuse("the name of a key has 1 to 255 characters");
            }
            start = end + 1;
        }
        const StringView root = root_name(path.front());
        if (root.empty()) {
            refuse("\"" + to_utf8(path.front()) + "\" is no root of the registry");
        }
        if (path.size() > deepest_key) {
            refuse("a key deeper than 512 names");
        }
        path.front() = root;
        return path;
    }

    void read_value() {
        if (!is_key_there_) {
            refuse("a value without a key");
        }
        Change change{Change::Kind::SetValue, line_, path_, {}};
        if (!accept(u'@')) {
            change.value.name = read_quoted(false);
            if (change.value.name.size() > longest_value_name) {
                refuse("the name of a value has at most 16383 characters");
            }
        }
        skip_blanks();
        if (!accept(u'=')) {
            refuse("a value without its \"=\"");
        }
        skip_blanks();
        read_data(change);
        changes_.push_back(std::move(change));
    }

    void read_data(Change& change) {
        if (accept(u'-')) {
            change.kind = Change::Kind::DeleteValue;
        } else if (peek() == u'"') {
            change.value.data = data_of(read_quoted(true));
        } else if (accept(u"dword:")) {
            change.value.type = REG_DWORD;
            change.value.data = bytes_of(read_number(digits_of_long));
        } else if (accept(u"hex(")) {
            change.value.type = wrap32(read_number(digits_of_long));
            if (!accept(u')') || !accept(u':')) {
                refuse("hex(TYPE): is wanted");
            }
            change.value.data = read_bytes();
        } else if (accept(u"hex:")) {
            change.value.type = REG_BINARY;
            change.value.data = read_bytes();
        } else {
            refuse("neither a text in quotes nor dword: nor hex:");
        }
    }

    String read_quoted(bool may_have_lines) {
        const std::size_t first_line = line_;
        String text;
        ++at_;
        while (!accept(u'"')) {
            if (is_at_end() || (!may_have_lines && is_at_line_end())) {
                throw TextError(first_line, "a text without its closing quote");
            }
            if (accept(u'\\')) {
                if (peek() != u'\\' && peek() != u'"') {
                    refuse("a backslash stands before another one or a quote in a text");
                }
            }
            line_ += peek() == u'\n' ? 1U : 0U;
            text += text_[at_++];
        }
        return text;
    }

    std::uint32_t read_number(std::size_t most_digits) {
        std::uint32_t number = 0;
        std::size_t count = 0;
        for (; const std::optional<unsigned> digit = digit_of(peek()); ++count, ++at_) {
            if (count == most_digits) {
                refuse("a number with too many digits");
            }
            number = (number << bits_of_digit) | *digit;
        }
        if (count == 0) {
            refuse("a hexadecimal digit is wanted");
        }
        return number;
    }

    // Past blanks and to the next line where one is continued.
    void skip_to_byte() {
        skip_blanks();
        while (accept(u'\\')) {
            skip_blanks();
            if (!is_at_line_end() || is_at_end()) {
                refuse(R"(a continued line ends with its "\")");
            }
            end_line();
            skip_blanks();
        }
    }

    std::string read_bytes() {
        std::string bytes;
        skip_to_byte();
        if (is_at_line_end() || peek() == u';') {
            return bytes;
        }
        do {
            skip_to_byte();
            const std::uint32_t byte = read_number(digits_of_byte);
            bytes += static_cast<char>(static_cast<unsigned char>(byte));
            skip_to_byte();
        } while (accept(u','));
        return bytes;
    }

    StringView text_;
    std::size_t at_ = 0;
    std::size_t line_ = 1;
    Path path_;
    bool is_key_there_ = false;
    std::vector<Change> changes_;
};

// ---- From the tree to text ------------------------------------------------------------------

bool can_stand_in_quotes(const Value& value) {
    if (value.type != REG_SZ || value.data.size() % 2 != 0) {
        return false;
    }
    const String text = text_of(value.data);
    return lone_surrogate(text) == String::npos &&
           std::ranges::none_of(text, [](char16_t unit) { return unit < u' ' && unit != u'\t'; });
}

std::string in_quotes(StringView text) {
    String quoted = u"\"";
    for (const char16_t unit : text) {
        if (unit == u'"' || unit == u'\\') {
            quoted += u'\\';
        }
        quoted += unit;
    }
    return to_utf8(quoted + u'"');
}

// Without leading zeros for `width` 1.
std::string hexadecimal(std::uint32_t number, std::size_t width) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (; number != 0 || text.size() < width; number >>= bits_of_digit) {
        text += digits[number & 0xFU];
    }
    std::ranges::reverse(text);
    return text;
}

std::uint32_t number_of(std::string_view bytes) {
    std::uint32_t number = 0;
    for (std::size_t i = bytes.size(); i-- > 0;) {
        number = (number << 8U) | static_cast<unsigned char>(bytes[i]);
    }
    return number;
}

// `line` is what stands before the bytes in their first line.
std::string with_bytes(const std::string& line, std::string_view bytes) {
    constexpr std::size_t longest_line = 76;
    std::string text = line;
    std::size_t width = line.size();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i > 0) {
            text += ',';
            if (++width > longest_line) {
                text += "\\\n  ";
                width = 2;
            }
        }
        text += hexadecimal(static_cast<unsigned char>(bytes[i]), digits_of_byte);
        width += digits_of_byte;
    }
    return text;
}

std::string line_of(const Value& value) {
    const std::string name = (value.name.empty() ? "@" : in_quotes(value.name)) + "=";
    if (can_stand_in_quotes(value)) {
        return name + in_quotes(text_of(value.data));
    }
    if (value.type == REG_DWORD && value.data.size() == sizeof(std::uint32_t)) {
        return name + "dword:" + hexadecimal(number_of(value.data), digits_of_long);
    }
    if (value.type == REG_BINARY) {
        return with_bytes(name + "hex:", value.data);
    }
    const auto type = static_cast<std::uint32_t>(value.type);
    return with_bytes(name + "hex(" + hexadecimal(type, 1) + "):", value.data);
}

}  // namespace

StringView root_name(StringView name) {
    const auto* const found = std::ranges::find_if(root_names, [&](const RootName& root) {
        return compare_names(root.full, name) == 0 || compare_names(root.brief, name) == 0;
    });
    return found == std::end(root_names) ? StringView() : found->full;
}

std::vector<Change> read_text(std::string_view bytes) {
    const String text = decode(bytes);
    return Reader(text).read();
}

void apply(Key& tree, const Change& change) {
    using enum Change::Kind;
    const std::span<const String> path(change.path);
    if (change.kind == MakeKey) {
        made_key(tree, path);
    } else if (change.kind == SetValue) {
        set_value(made_key(tree, path), change.value);
    } else if (change.kind == DeleteValue) {
        erase_value(made_key(tree, path), change.value.name);
    } else if (Key* above = find_key(tree, path.first(path.size() - 1))) {
        erase_key(*above, path.back());
    }
}

Key read_tree(std::string_view bytes) {
    Key tree;
    for (const Change& change : read_text(bytes)) {
        apply(tree, change);
    }
    return tree;
}

std::string text_header() {
    return to_utf8(header) + "\n";
}

void write_key(std::string& text, const String& path, const Key& key) {
    text += "\n[" + to_utf8(path) + "]\n";
    for (const Value& value : key.values) {
        text += line_of(value) + "\n";
    }
    for (const Key& below : key.keys) {
        write_key(text, path + u'\\' + below.name, below);
    }
}

std::string write_tree(const Key& tree) {
    std::string text = text_header();
    for (const Key& root : tree.keys) {
        write_key(text, root.name, root);
    }
    return text;
}

std::string as_utf16(std::string_view text) {
    const String lines = replace_all(from_utf8(text), u"\n", u"\r\n");
    return std::string(low_first_mark) + data_of(lines);
}

}  // namespace kvarta16::posix::registry
