#include <algorithm>
#include <array>
#include <charconv>

#include <kvarta16/platform/posix/ftp/ascii.h>
#include <kvarta16/platform/posix/ftp/replies.h>

namespace kvarta16::posix {
namespace {

constexpr std::size_t code_length = 3;

// The code at the beginning of a line, 0 if there is none.
int code_of(std::string_view line) {
    if (line.size() < code_length || line[0] < '1' || line[0] > '5') {
        return 0;
    }
    return number_of<int>(line.substr(0, code_length)).value_or(0);
}

// Whether the code is followed by `mark`, or by the end of the line where that stands for a blank.
bool is_marked(std::string_view line, char mark) {
    return line.size() > code_length ? line[code_length] == mark : mark == ' ';
}

}  // namespace

ReplyBuilder::State ReplyBuilder::add(std::string_view line) {
    ++lines_;
    if (lines_ > most_reply_lines || line.size() > longest_reply_line ||
        reply_.text.size() + line.size() > longest_reply ||
        line.find('\0') != std::string_view::npos) {
        return State::broken;
    }
    const int code = code_of(line);
    if (lines_ > 1) {
        reply_.text += "\r\n";
    }
    reply_.text += line;
    if (lines_ == 1) {
        reply_.code = code;
        if (code == 0 || (!is_marked(line, ' ') && !is_marked(line, '-'))) {
            return State::broken;
        }
    }
    return code == reply_.code && is_marked(line, ' ') ? State::complete : State::wants_more;
}

std::optional<std::uint16_t> extended_passive_port(std::string_view text) {
    const std::size_t open = text.find('(');
    if (open == std::string_view::npos || text.size() < open + 5) {
        return std::nullopt;
    }
    const char mark = text[open + 1];
    text.remove_prefix(open + 1);
    if (is_digit(mark) || text[1] != mark || text[2] != mark) {
        return std::nullopt;
    }
    text.remove_prefix(3);
    const std::optional<int> port = number_of<int>(text.substr(0, text.find(mark)));
    if (text.find(mark) == std::string_view::npos || !port || *port < 1 || *port > 65535) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(*port);
}

std::optional<std::uint16_t> passive_port(std::string_view text) {
    text.remove_prefix(std::min(text.size(), code_length));
    const auto* const first = std::find_if(text.begin(), text.end(), is_digit);
    text.remove_prefix(static_cast<std::size_t>(first - text.begin()));
    std::array<int, 6> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto* const end = std::find_if_not(text.begin(), text.end(), is_digit);
        const auto length = static_cast<std::size_t>(end - text.begin());
        const std::optional<int> number = number_of<int>(text.substr(0, length));
        const bool is_last = i + 1 == numbers.size();
        if (!number || *number > 255 || (!is_last && (end == text.end() || *end != ','))) {
            return std::nullopt;
        }
        numbers[i] = *number;
        text.remove_prefix(length + (is_last ? 0 : 1));
    }
    const int port = numbers[4] * 256 + numbers[5];
    return port == 0 ? std::nullopt : std::optional(static_cast<std::uint16_t>(port));
}

std::optional<std::string> quoted_path(std::string_view text) {
    std::size_t i = text.find('"');
    if (i == std::string_view::npos) {
        return std::nullopt;
    }
    std::string path;
    for (++i; i < text.size(); ++i) {
        if (text[i] != '"') {
            path += text[i];
        } else if (i + 1 < text.size() && text[i + 1] == '"') {
            path += text[i++];
        } else {
            return path;
        }
    }
    return std::nullopt;
}

Features features_of(const Reply& reply) {
    Features features;
    if (!reply.is_good()) {
        return features;
    }
    std::string_view rest = reply.text;
    while (!rest.empty()) {
        const std::string_view line = trimmed(taken_line(rest));
        const std::string_view name = line.substr(0, line.find(' '));
        features.utf8 = features.utf8 || is_same_word(name, "UTF8");
        features.machine_listing =
            features.machine_listing || is_same_word(name, "MLST") || is_same_word(name, "MLSD");
    }
    return features;
}

}  // namespace kvarta16::posix
