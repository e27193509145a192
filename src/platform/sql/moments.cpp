#include <cmath>

#include <kvarta16/frame/civil.h>
#include <kvarta16/platform/sql/moments.h>

namespace kvarta16::sql {
namespace {

constexpr std::int32_t milliseconds_a_day = 86'400'000;

// Walks a text. A read that finds nothing of its kind leaves the place as it is.
class Scanner {
  public:
    explicit Scanner(std::string_view text) noexcept : rest_(text) {}

    [[nodiscard]] bool at_end() const noexcept { return rest_.empty(); }
    [[nodiscard]] bool at_any(std::string_view characters) const noexcept {
        return !at_end() && characters.find(rest_.front()) != std::string_view::npos;
    }
    bool skip_any(std::string_view characters) noexcept {
        const bool found = at_any(characters);
        rest_.remove_prefix(found ? 1 : 0);
        return found;
    }
    void skip_blanks() noexcept {
        while (skip_any(" ")) {
        }
    }

    // A number of `least` to `most` digits (at most 9), -1 if there is none.
    std::int32_t number(std::size_t least, std::size_t most) noexcept {
        std::size_t digits = 0;
        std::int32_t value = 0;
        for (; digits < most && digits < rest_.size() && is_digit(rest_[digits]); ++digits) {
            value = value * 10 + (rest_[digits] - '0');
        }
        if (digits < least) {
            return -1;
        }
        rest_.remove_prefix(digits);
        return value;
    }

    // How many digits stand here.
    [[nodiscard]] std::size_t digits() const noexcept {
        std::size_t count = 0;
        while (count < rest_.size() && is_digit(rest_[count])) {
            ++count;
        }
        return count;
    }
    void skip(std::size_t count) noexcept { rest_.remove_prefix(count); }

    // Whether the digits here are followed by a ":": then a time begins.
    [[nodiscard]] bool at_time() const noexcept {
        const std::size_t count = digits();
        return count > 0 && count < rest_.size() && rest_[count] == ':';
    }

  private:
    static bool is_digit(char c) noexcept { return c >= '0' && c <= '9'; }

    std::string_view rest_;
};

std::optional<std::int32_t> scan_date(Scanner& scanner, bool month_may_be_first) noexcept {
    constexpr std::string_view separators = "-/.";
    std::int32_t parts[3] = {-1, -1, -1};
    const bool year_first = !month_may_be_first || scanner.digits() == 4;
    for (int i = 0; i < 3; ++i) {
        const bool year = i == (year_first ? 0 : 2);
        if (i > 0 && !scanner.skip_any(separators)) {
            return std::nullopt;
        }
        parts[i] = year ? scanner.number(4, 4) : scanner.number(1, 2);
    }
    const std::int32_t year = parts[year_first ? 0 : 2];
    const std::int32_t month = parts[year_first ? 1 : 0];
    const std::int32_t day = parts[year_first ? 2 : 1];
    if (year < 100 || month < 1 || month > 12 || day < 1 || day > days_in_month(year, month)) {
        return std::nullopt;
    }
    return day_number(year, month, day);
}

// The first three decimals of a second; digits beyond them are passed over.
std::int32_t scan_fraction(Scanner& scanner) noexcept {
    const std::size_t digits = scanner.digits();
    std::int32_t value = scanner.number(1, 3);
    for (std::size_t i = digits; i < 3; ++i) {
        value *= 10;
    }
    scanner.skip(scanner.digits());
    return value;
}

// "Z", "+01:00", "-0200", "+01": read and not applied.
bool scan_zone(Scanner& scanner) noexcept {
    scanner.skip_blanks();
    if (scanner.skip_any("Zz") || !scanner.skip_any("+-")) {
        return true;
    }
    const bool hours = scanner.number(2, 2) >= 0;
    const bool colon = scanner.skip_any(":");
    const bool minutes = scanner.number(2, 2) >= 0;
    return hours && (minutes || !colon);
}

std::optional<std::int32_t> scan_time(Scanner& scanner) noexcept {
    const std::int32_t hour = scanner.number(1, 2);
    const bool colon = scanner.skip_any(":");
    const std::int32_t minute = scanner.number(2, 2);
    std::int32_t second = 0;
    std::int32_t millisecond = 0;
    if (scanner.skip_any(":")) {
        second = scanner.number(2, 2);
        if (scanner.skip_any(".,")) {
            millisecond = scan_fraction(scanner);
        }
    }
    const bool exists = hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 &&
                        second < 60 && millisecond >= 0;
    if (!colon || !exists || !scan_zone(scanner)) {
        return std::nullopt;
    }
    return ((hour * 60 + minute) * 60 + second) * 1000 + millisecond;
}

void put_digits(char* at, int count, std::int32_t value) noexcept {
    for (int i = count - 1; i >= 0; --i) {
        at[i] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
}

}  // namespace

std::optional<Moment> parse_moment(std::string_view text, MomentForm form) noexcept {
    Moment moment;
    Scanner scanner(text);
    scanner.skip_blanks();
    const bool has_date = !scanner.at_time();
    bool has_time = !has_date;
    if (has_date) {
        const auto day = scan_date(scanner, form == MomentForm::jet);
        if (!day) {
            return std::nullopt;
        }
        moment.day = *day;
        const bool parted = scanner.at_any(" Tt");
        const bool announced = scanner.skip_any("Tt");
        if (!announced) {
            scanner.skip_blanks();
        }
        has_time = parted && (announced || !scanner.at_end());
    }
    if (has_time) {
        const auto millisecond = scan_time(scanner);
        if (!millisecond) {
            return std::nullopt;
        }
        moment.millisecond = *millisecond;
    }
    scanner.skip_blanks();
    const bool wrong_parts = (form == MomentForm::date && has_time) ||
                             (form == MomentForm::time && has_date) ||
                             (form == MomentForm::date_time && !(has_date && has_time));
    if (!scanner.at_end() || wrong_parts) {
        return std::nullopt;
    }
    return moment;
}

std::optional<Moment> moment_of_days(Double days) noexcept {
    // The comparisons are also false for a number that is none.
    if (!(days > first_day_number - 1.0 && days < last_day_number + 1.0)) {
        return std::nullopt;
    }
    const Double whole = std::trunc(days);
    Moment moment{
        static_cast<std::int32_t>(whole),
        static_cast<std::int32_t>(std::lround(std::fabs(days - whole) * milliseconds_a_day))};
    if (moment.millisecond == milliseconds_a_day) {
        moment = {moment.day + 1, 0};
    }
    if (moment.day > last_day_number) {
        return std::nullopt;
    }
    return moment;
}

Date date_of(Moment moment) noexcept {
    const Double time = static_cast<Double>(moment.millisecond) / milliseconds_a_day;
    return {moment.day < 0 ? moment.day - time : moment.day + time};
}

MomentText moment_text(Moment moment) noexcept {
    MomentText text = {'y', 'y', 'y', 'y', '-', 'M', 'M', '-', 'd', 'd', ' ', 'H',
                       'H', ':', 'm', 'm', ':', 's', 's', '.', 'f', 'f', 'f'};
    const Civil civil = civil_of(moment.day);
    const std::int32_t seconds = moment.millisecond / 1000;
    put_digits(text.data(), 4, civil.year);
    put_digits(&text[5], 2, civil.month);
    put_digits(&text[8], 2, civil.day);
    put_digits(&text[11], 2, seconds / 3600);
    put_digits(&text[14], 2, seconds / 60 % 60);
    put_digits(&text[17], 2, seconds % 60);
    put_digits(&text[20], 3, moment.millisecond % 1000);
    return text;
}

// A look-up asks this of each date that it passes, so it goes by places and not by parsing.
bool is_text_to_seconds(std::string_view text) noexcept {
    constexpr std::string_view pattern = "0000-00-00 00:00:00";
    if (text.size() != pattern.size()) {
        return false;
    }
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const bool fits =
            pattern[i] == '0' ? text[i] >= '0' && text[i] <= '9' : text[i] == pattern[i];
        if (!fits) {
            return false;
        }
    }
    const auto two = [text](std::size_t at) {
        return (text[at] - '0') * 10 + (text[at + 1] - '0');
    };
    const std::int32_t year = two(0) * 100 + two(2);
    const std::int32_t month = two(5);
    return year >= 100 && month >= 1 && month <= 12 && two(8) >= 1 &&
           two(8) <= days_in_month(year, month) && two(11) < 24 && two(14) < 60 && two(17) < 60;
}

std::string stored_text(Moment moment) {
    const MomentText text = moment_text(moment);
    const bool whole_second = moment.millisecond % 1000 == 0;
    return {text.data(), whole_second ? length_to_seconds : text.size()};
}

}  // namespace kvarta16::sql
