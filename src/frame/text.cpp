#include <algorithm>
#include <atomic>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/text.h>

namespace kvarta16 {
namespace {

std::size_t not_negative(Long count) {
    if (count < 0) {
        fail(error::invalid_call);
    }
    return static_cast<std::size_t>(count);
}

// The 0-based offset of a 1-based position.
std::size_t offset_of(Long start) {
    if (start < 1) {
        fail(error::invalid_call);
    }
    return static_cast<std::size_t>(start) - 1;
}

// A row of letters whose cases differ by a constant: each lower-case letter of the range has its
// upper-case one `distance` below. With `stride` 2 capital and small letters alternate.
struct CaseRange {
    char16_t first_lower;
    char16_t last_lower;
    char16_t distance;
    char16_t stride;
};

constexpr CaseRange case_ranges[] = {
    {u'a', u'z', 32, 1},      // Latin
    {0x00E0, 0x00F6, 32, 1},  // Latin-1, without the division sign at 0x00F7
    {0x00F8, 0x00FE, 32, 1},  //
    {0x0101, 0x0137, 1, 2},   // Latin Extended-A; 0x0131 (dotless i) is taken out below
    {0x013A, 0x0148, 1, 2},   //
    {0x014B, 0x0177, 1, 2},   //
    {0x017A, 0x017E, 1, 2},   //
    {0x03B1, 0x03C1, 32, 1},  // Greek, without the final sigma at 0x03C2
    {0x03C3, 0x03CB, 32, 1},  //
    {0x0430, 0x044F, 32, 1},  // Cyrillic
    {0x0450, 0x045F, 80, 1},  //
};
constexpr char16_t dotless_i = 0x0131;
constexpr char16_t small_y_diaeresis = 0x00FF;
constexpr char16_t capital_y_diaeresis = 0x0178;

constexpr bool is_lower_in(const CaseRange& range, char16_t letter) {
    return letter >= range.first_lower && letter <= range.last_lower &&
           (letter - range.first_lower) % range.stride == 0;
}

}  // namespace

Long length(StringView text) noexcept {
    return wrap32(static_cast<std::int64_t>(text.size()));
}

std::size_t reach_of_16_bits(StringView text) noexcept {
    const Integer limit = wrap16(static_cast<std::int64_t>(text.size()));
    return limit > 0 ? static_cast<std::size_t>(limit) : 0;
}

String substring(StringView text, Long start, Long count) {
    const std::size_t offset = offset_of(start);
    const std::size_t wanted = not_negative(count);
    return offset >= text.size() ? String() : String(text.substr(offset, wanted));
}

String substring(StringView text, Long start) {
    const std::size_t offset = offset_of(start);
    return offset >= text.size() ? String() : String(text.substr(offset));
}

String left_part(StringView text, Long count) {
    return String(text.substr(0, not_negative(count)));
}

String right_part(StringView text, Long count) {
    const std::size_t wanted = std::min(not_negative(count), text.size());
    return String(text.substr(text.size() - wanted));
}

String blanks(Long count) {
    return String(not_negative(count), u' ');
}

void overwrite(String& target, Long start, Long count, StringView replacement) {
    const std::size_t offset = offset_of(start);
    const std::size_t wanted = not_negative(count);
    if (offset >= target.size()) {
        fail(error::invalid_call);
    }
    const std::size_t put = std::min({wanted, replacement.size(), target.size() - offset});
    std::copy_n(replacement.begin(), put, target.begin() + static_cast<std::ptrdiff_t>(offset));
}

Long position_of(StringView text, StringView wanted, Long start) {
    const std::size_t offset = offset_of(start);
    if (offset >= text.size()) {
        return 0;
    }
    const std::size_t position = text.find(wanted, offset);
    return position == StringView::npos ? 0 : wrap32(static_cast<std::int64_t>(position) + 1);
}

String replace_all(StringView text, StringView wanted, StringView replacement) {
    String result;
    if (wanted.empty()) {
        return String(text);
    }
    std::size_t from = 0;
    for (std::size_t at = text.find(wanted); at != StringView::npos; at = text.find(wanted, from)) {
        result.append(text.substr(from, at - from)).append(replacement);
        from = at + wanted.size();
    }
    return result.append(text.substr(from));
}

StringView trim_left(StringView text) noexcept {
    const std::size_t first = text.find_first_not_of(u' ');
    return first == StringView::npos ? StringView() : text.substr(first);
}

StringView trim_right(StringView text) noexcept {
    return text.substr(0, text.find_last_not_of(u' ') + 1);
}

StringView trim(StringView text) noexcept {
    return trim_right(trim_left(text));
}

char16_t upper_case(char16_t letter) noexcept {
    if (letter == small_y_diaeresis) {
        return capital_y_diaeresis;
    }
    for (const CaseRange& range : case_ranges) {
        if (is_lower_in(range, letter)) {
            return letter == dotless_i ? letter : static_cast<char16_t>(letter - range.distance);
        }
    }
    return letter;
}

char16_t lower_case(char16_t letter) noexcept {
    if (letter == capital_y_diaeresis) {
        return small_y_diaeresis;
    }
    for (const CaseRange& range : case_ranges) {
        const auto lower = static_cast<char16_t>(letter + range.distance);
        if (is_lower_in(range, lower)) {
            return lower == dotless_i ? letter : lower;
        }
    }
    return letter;
}

String upper_case(StringView text) {
    String result(text);
    std::ranges::transform(result, result.begin(), [](char16_t unit) { return upper_case(unit); });
    return result;
}

String lower_case(StringView text) {
    String result(text);
    std::ranges::transform(result, result.begin(), [](char16_t unit) { return lower_case(unit); });
    return result;
}

void endless_step() noexcept {
    std::atomic_signal_fence(std::memory_order_seq_cst);
}

}  // namespace kvarta16
