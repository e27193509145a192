#include "date_forms.h"

namespace kvarta16::tool {
namespace {

// The number that `pattern`'s letter stands for in `text`: the digits at its places.
std::int32_t field(std::string_view text, std::string_view pattern, char letter) {
    std::int32_t value = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        value = pattern[i] == letter ? value * 10 + (text[i] - '0') : value;
    }
    return value;
}

// A letter of the pattern takes a digit, everything else itself.
bool matches(std::string_view text, std::string_view pattern) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool is_digit = text[i] >= '0' && text[i] <= '9';
        const bool wants_digit = pattern[i] != 'T' && pattern[i] != '-' && pattern[i] != ':';
        if (wants_digit ? !is_digit : text[i] != pattern[i]) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::optional<Date> read_date(std::string_view text) {
    constexpr std::string_view pattern = "yyyy-MM-ddTHH:mm:ss";
    constexpr std::size_t day_length = std::string_view("yyyy-MM-dd").size();
    const bool length_fits = text.size() == day_length || text.size() == pattern.size();
    if (!length_fits || !matches(text, pattern)) {
        return std::nullopt;
    }
    const Civil civil{field(text, pattern, 'y'), field(text, pattern, 'M'),
                      field(text, pattern, 'd')};
    const std::int32_t hour = field(text, pattern, 'H');
    const std::int32_t minute = field(text, pattern, 'm');
    const std::int32_t second = field(text, pattern, 's');
    const bool is_day = civil.year >= 100 && civil.month >= 1 && civil.month <= 12 &&
                        civil.day >= 1 && civil.day <= days_in_month(civil.year, civil.month);
    if (!is_day || hour > 23 || minute > 59 || second > 59) {
        return std::nullopt;
    }
    const std::int32_t day = day_number(civil.year, civil.month, civil.day);
    const Double time = ((hour * 60 + minute) * 60 + second) / 86400.0;
    return Date{day < 0 ? day - time : day + time};  // the time counts forward on either side
}

}  // namespace kvarta16::tool
