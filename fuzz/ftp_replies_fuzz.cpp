// The replies of an FTP server: where one ends, and what is read out of it, against second
// readings. An input is the lines that a server sends.
#include <regex>
#include <vector>

#include <kvarta16/platform/posix/ftp/replies.h>

#include "fuzz_support.h"

namespace kvarta16 {
namespace {

using fuzz::expect;
using fuzz::expect_same;
using fuzz::show;

using State = posix::ReplyBuilder::State;

std::vector<std::string> lines_of(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        std::string line(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        lines.push_back(std::move(line));
    }
    return lines;
}

bool begins_with_code(const std::string& line) {
    return line.size() >= 3 && line[0] >= '1' && line[0] <= '5' &&
           std::all_of(line.begin() + 1, line.begin() + 3,
                       [](char c) { return c >= '0' && c <= '9'; });
}

bool is_last(const std::string& line, const std::string& code) {
    return line == code || line.starts_with(code + ' ');
}

// How many of the lines make the first reply; 0 where they make none that ends.
std::size_t lines_of_reply(const std::vector<std::string>& lines) {
    if (lines.empty() || !begins_with_code(lines[0])) {
        return 0;
    }
    const std::string code = lines[0].substr(0, 3);
    if (lines[0].size() > 3 && lines[0][3] != ' ' && lines[0][3] != '-') {
        return 0;
    }
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].find('\0') != std::string::npos) {
            return 0;
        }
        if (is_last(lines[i], code)) {
            return i + 1;
        }
    }
    return 0;
}

void check_reply(const std::vector<std::string>& lines) {
    std::string shown;
    for (const std::string& line : lines) {
        shown += show(line) + ' ';
    }
    posix::ReplyBuilder builder;
    std::size_t taken = 0;
    State state = State::wants_more;
    while (state == State::wants_more && taken < lines.size()) {
        state = builder.add(lines[taken++]);
    }
    const std::size_t wanted = lines_of_reply(lines);
    expect_same("The lines of the first reply in", shown, state == State::complete ? taken : 0,
                wanted);
    if (wanted == 0) {
        return;
    }
    std::string text;
    for (std::size_t i = 0; i < wanted; ++i) {
        text += (i == 0 ? "" : "\r\n") + lines[i];
    }
    expect_same("The text of the first reply in", shown, builder.reply().text, text);
    expect_same("The code of the first reply in", shown, builder.reply().code,
                std::stoi(lines[0].substr(0, 3)));

    const posix::Features features = posix::features_of(builder.reply());
    const std::regex utf8(R"((^|[\n])[ \t]*UTF8([ \t\r\n]|$))", std::regex::icase);
    const bool has_word = std::regex_search(text, utf8);
    expect(!features.utf8 || has_word, "UTF8 is announced in", shown);
    expect(!features.utf8 || lines[0][0] == '2', "Only a good reply announces in", shown);
}

// ---- Ports and paths ------------------------------------------------------------------------

std::optional<std::uint16_t> wanted_extended_port(const std::string& text) {
    const std::size_t open = text.find('(');
    if (open == std::string::npos || open + 1 >= text.size()) {
        return std::nullopt;
    }
    const char mark = text[open + 1];
    if ((mark >= '0' && mark <= '9') || text.compare(open + 1, 3, std::string(3, mark)) != 0) {
        return std::nullopt;
    }
    std::uint64_t port = 0;
    std::size_t at = open + 4;
    const std::size_t first = at;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
        port =
            std::min<std::uint64_t>(port * 10 + static_cast<std::uint64_t>(text[at] - '0'), 70'000);
    }
    const bool is_closed = at > first && at < text.size() && text[at] == mark;
    return is_closed && port >= 1 && port <= 65535 ? std::optional(static_cast<std::uint16_t>(port))
                                                   : std::nullopt;
}

std::optional<std::uint16_t> wanted_passive_port(const std::string& text) {
    static const std::regex numbers(
        R"(^[^0-9]*([0-9]+),([0-9]+),([0-9]+),([0-9]+),([0-9]+),([0-9]+))");
    std::smatch found;
    const std::string behind_code = text.substr(std::min<std::size_t>(text.size(), 3));
    if (!std::regex_search(behind_code, found, numbers)) {
        return std::nullopt;
    }
    int port = 0;
    for (std::size_t i = 1; i <= 6; ++i) {
        std::string digits = found[i];
        digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size() - 1));
        if (digits.size() > 3 || std::stoi(digits) > 255) {
            return std::nullopt;
        }
        port = port * 256 + std::stoi(digits);
        port &= 0xFFFF;
    }
    return port == 0 ? std::nullopt : std::optional(static_cast<std::uint16_t>(port));
}

// A row of quotes of odd length ends the path: all before the last are pairs.
std::optional<std::string> wanted_path(const std::string& text) {
    std::size_t at = text.find('"');
    if (at == std::string::npos) {
        return std::nullopt;
    }
    std::string path;
    for (++at; at < text.size();) {
        const std::size_t end = std::min(text.find_first_not_of('"', at), text.size());
        const std::size_t quotes = end - at;
        path.append(quotes / 2, '"');
        if (quotes % 2 == 1) {
            return path;
        }
        at = end;
        for (; at < text.size() && text[at] != '"'; ++at) {
            path += text[at];
        }
    }
    return std::nullopt;
}

void check_line(const std::string& line) {
    expect_same("extended_passive_port of", show(line), posix::extended_passive_port(line),
                wanted_extended_port(line));
    expect_same("passive_port of", show(line), posix::passive_port(line),
                wanted_passive_port(line));
    expect_same("quoted_path of", show(line), posix::quoted_path(line), wanted_path(line));

    // Any line as the name of a folder.
    std::string quoted = "257 \"";
    for (const char c : line) {
        quoted += std::string(c == '"' ? 2 : 1, c);
    }
    expect_same("The path as it was quoted of", show(line), posix::quoted_path(quoted + "\" made."),
                std::optional(line));
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvarta16;
    constexpr std::size_t longest = 500;  // of what a regular expression is tried on
    const auto lines = lines_of(fuzz::Input(data, std::min(size, longest)).rest());
    check_reply(lines);
    for (const std::string& line : lines) {
        check_line(line);
    }
    return 0;
}
