#include <algorithm>

#include <kvarta16/platform/posix/command_line.h>

namespace kvarta16::posix {
namespace {

constexpr StringView blank_characters = u" \t";
constexpr std::size_t longest_path = 260;

StringView without_leading_blanks(StringView text) {
    return text.substr(std::min(text.find_first_not_of(blank_characters), text.size()));
}

// How often `unit` stands at the beginning.
std::size_t run_length(StringView text, char16_t unit) {
    return std::min(text.find_first_not_of(unit), text.size());
}

CommandReading quoted_reading(StringView line) {
    const StringView behind_quote = line.substr(1);
    const std::size_t end = std::min(behind_quote.find(u'"'), behind_quote.size());
    const StringView rest = behind_quote.substr(std::min(end + 1, behind_quote.size()));
    // What clings to the closing quote is no argument.
    const std::size_t blank = std::min(rest.find_first_of(blank_characters), rest.size());
    return {String(behind_quote.substr(0, end)), rest.substr(blank)};
}

// Takes the next argument off `text`, which begins with one.
String next_argument(StringView& text) {
    String argument;
    bool is_quoted = false;
    while (!text.empty()) {
        const std::size_t backslashes = run_length(text, u'\\');
        text.remove_prefix(backslashes);
        if (text.empty() || text.front() != u'"') {
            argument.append(backslashes, u'\\');
            if (text.empty() ||
                (!is_quoted && blank_characters.find(text.front()) != StringView::npos)) {
                break;
            }
            argument += text.front();
        } else {
            argument.append(backslashes / 2, u'\\');
            if (backslashes % 2 != 0) {
                argument += u'"';
            } else if (is_quoted && text.substr(1).starts_with(u'"')) {
                argument += u'"';
                text.remove_prefix(1);
            } else {
                is_quoted = !is_quoted;
            }
        }
        text.remove_prefix(1);
    }
    return argument;
}

}  // namespace

std::vector<CommandReading> readings_of(StringView command_line) {
    StringView line = without_leading_blanks(command_line.substr(0, command_line.find(u'\0')));
    line = line.substr(0, line.find_last_not_of(blank_characters) + 1);
    std::vector<CommandReading> readings;
    if (line.starts_with(u'"')) {
        readings.push_back(quoted_reading(line));
        if (readings.front().program.find_first_not_of(blank_characters) == String::npos) {
            readings.clear();
        }
        return readings;
    }
    for (std::size_t end = 0; end < line.size() && end <= longest_path;) {
        end = std::min(line.find_first_of(blank_characters, end), line.size());
        if (end <= longest_path) {
            readings.push_back({String(line.substr(0, end)), line.substr(end)});
        }
        end = std::min(line.find_first_not_of(blank_characters, end), line.size());
    }
    return readings;
}

std::vector<String> arguments_of(StringView text) {
    std::vector<String> arguments;
    for (text = without_leading_blanks(text); !text.empty(); text = without_leading_blanks(text)) {
        arguments.push_back(next_argument(text));
    }
    return arguments;
}

}  // namespace kvarta16::posix
