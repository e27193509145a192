#include "second_dates.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "second_numbers.h"

namespace kvarta16::fuzz {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr sys_days day_zero = std::chrono::year(1899) / 12 / 30;

constexpr StringView months[][3] = {
    {u"styczeń", u"stycznia", u"sty"},   {u"luty", u"lutego", u"lut"},
    {u"marzec", u"marca", u"mar"},       {u"kwiecień", u"kwietnia", u"kwi"},
    {u"maj", u"maja", u"maj"},           {u"czerwiec", u"czerwca", u"cze"},
    {u"lipiec", u"lipca", u"lip"},       {u"sierpień", u"sierpnia", u"sie"},
    {u"wrzesień", u"września", u"wrz"},  {u"październik", u"października", u"paź"},
    {u"listopad", u"listopada", u"lis"}, {u"grudzień", u"grudnia", u"gru"}};
constexpr StringView weekdays[] = {u"poniedziałek", u"wtorek", u"środa",    u"czwartek",
                                   u"piątek",       u"sobota", u"niedziela"};

char16_t lower(char16_t unit) {
    constexpr StringView capital = u"ĄĆĘŁŃÓŚŹŻ";
    constexpr StringView small = u"ąćęłńóśźż";
    const std::size_t place = capital.find(unit);
    if (place != StringView::npos) {
        return small[place];
    }
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

bool is_digit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

// ---- Tokens of a date -----------------------------------------------------------------------

enum class Kind : std::uint8_t { number, word, separator, blanks, comma };

struct Token {
    Kind kind = Kind::word;
    StringView text;
};

Kind kind_of(char16_t unit) {
    switch (unit) {
        case u' ':
            return Kind::blanks;
        case u',':
            return Kind::comma;
        case u'-':
        case u'/':
        case u'.':
            return Kind::separator;
        default:
            return is_digit(unit) ? Kind::number : Kind::word;
    }
}

std::vector<Token> tokens_of(StringView text) {
    std::vector<Token> tokens;
    while (!text.empty()) {
        const Kind kind = kind_of(text.front());
        const bool is_run = kind != Kind::separator && kind != Kind::comma;
        std::size_t length = 1;
        while (is_run && length < text.size() && kind_of(text[length]) == kind) {
            ++length;
        }
        tokens.push_back({kind, text.substr(0, length)});
        text.remove_prefix(length);
    }
    return tokens;
}

struct Part {
    std::int32_t number = 0;
    bool is_name = false;
    bool is_long = false;
};

std::optional<Part> part_of(const Token& token) {
    if (token.kind == Kind::number && token.text.size() <= 4) {
        const std::string digits(token.text.begin(), token.text.end());
        return Part{std::stoi(digits), false, digits.size() > 2};
    }
    if (token.kind != Kind::word) {
        return std::nullopt;
    }
    String word(token.text);
    std::ranges::transform(word, word.begin(), lower);
    for (std::size_t i = 0; i < std::size(months); ++i) {
        if (std::ranges::find(months[i], StringView(word)) != std::end(months[i])) {
            return Part{static_cast<std::int32_t>(i) + 1, true, false};
        }
    }
    return std::nullopt;
}

std::int32_t century_of(std::int32_t year) {
    return year > 99 ? 0 : year < 30 ? 2000 : 1900;
}

std::optional<std::int32_t> day_of(const Part& year, const Part& month, const Part& day) {
    if (year.is_name || day.is_name || day.is_long || month.is_long) {
        return std::nullopt;
    }
    return second_day_number(year.number + century_of(year.number), month.number, day.number);
}

// "H:mm" or "H:mm:ss": the seconds since midnight.
std::optional<std::int32_t> time_of(StringView text) {
    std::vector<std::int32_t> units;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(u':', start), text.size());
        const StringView digits = text.substr(start, end - start);
        if (digits.empty() || digits.size() > 2 || !std::ranges::all_of(digits, is_digit)) {
            return std::nullopt;
        }
        units.push_back(std::stoi(std::string(digits.begin(), digits.end())));
        start = end + 1;
    }
    if (units.size() < 2 || units.size() > 3 || units[0] > 23 || units[1] > 59) {
        return std::nullopt;
    }
    units.resize(3);
    return units[2] > 59 ? std::nullopt : std::optional(units[0] * 3600 + units[1] * 60 + units[2]);
}

String number_text(std::int32_t number, std::size_t width) {
    const String digits = utf16(std::to_string(number));
    return String(width > digits.size() ? width - digits.size() : 0, u'0') + digits;
}

}  // namespace

std::optional<std::int32_t> second_day_number(std::int32_t year, std::int32_t month,
                                              std::int32_t day) {
    if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31) {
        return std::nullopt;
    }
    const year_month_day date(std::chrono::year(year),
                              std::chrono::month(static_cast<unsigned>(month)),
                              std::chrono::day(static_cast<unsigned>(day)));
    return date.ok() ? std::optional(static_cast<std::int32_t>((sys_days(date) - day_zero).count()))
                     : std::nullopt;
}

std::optional<SecondMoment> second_moment(Date date) {
    Double whole = 0;
    const Double time = std::abs(std::modf(date.days, &whole));
    if (!(whole >= -657434 && whole <= 2958465)) {
        return std::nullopt;
    }
    const sys_days day = day_zero + days(static_cast<std::int32_t>(whole));
    const year_month_day civil(day);
    const sys_days new_year = civil.year() / 1 / 1;
    const auto weekday = [](sys_days of) {
        return static_cast<std::int32_t>(std::chrono::weekday(of).iso_encoding()) - 1;
    };
    const auto seconds = static_cast<std::int32_t>(std::floor(time * 86400 + 0.5));
    return SecondMoment{static_cast<int>(civil.year()),
                        static_cast<unsigned>(civil.month()),
                        static_cast<unsigned>(civil.day()),
                        static_cast<std::int32_t>((day - new_year).count()) + 1,
                        weekday(day),
                        weekday(new_year),
                        std::min(seconds, 86399)};
}

std::optional<Date> second_date(StringView text) {
    while (text.starts_with(u' ')) {
        text.remove_prefix(1);
    }
    while (text.ends_with(u' ')) {
        text.remove_suffix(1);
    }
    const std::vector<Token> tokens = tokens_of(text);
    std::vector<Part> parts;
    std::size_t at = 0;
    bool has_gaps = false;  // that only a name allows
    while (at < tokens.size() && parts.size() < 3) {
        if (!parts.empty() && tokens[at].kind == Kind::separator) {
            ++at;
        } else if (!parts.empty()) {
            const std::size_t start = at;
            at += tokens[at].kind == Kind::comma ? 1 : 0;
            at += at < tokens.size() && tokens[at].kind == Kind::blanks ? 1 : 0;
            if (at == start) {
                return std::nullopt;
            }
            has_gaps = true;
        }
        const auto part = at < tokens.size() ? part_of(tokens[at]) : std::nullopt;
        if (!part) {
            return std::nullopt;
        }
        parts.push_back(*part);
        ++at;
    }
    const auto names = std::ranges::count(parts, true, &Part::is_name);
    if (parts.size() < 3 || names > 1 || (has_gaps && names == 0)) {
        return std::nullopt;
    }
    auto day = day_of(parts[0], parts[1], parts[2]);
    day = day ? day : day_of(parts[2], parts[1], parts[0]);
    day = day ? day : day_of(parts[2], parts[0], parts[1]);
    if (!day) {
        return std::nullopt;
    }
    if (at == tokens.size()) {
        return Date{static_cast<Double>(*day)};
    }
    if (tokens[at].kind != Kind::blanks || at + 1 == tokens.size()) {
        return std::nullopt;
    }
    const char16_t* const rest = tokens[at + 1].text.data();
    const auto seconds =
        time_of(StringView(rest, static_cast<std::size_t>(text.data() + text.size() - rest)));
    if (!seconds) {
        return std::nullopt;
    }
    const Double time = *seconds / 86400.0;
    return Date{*day < 0 ? *day - time : *day + time};
}

bool is_second_date_mask(StringView mask) {
    return mask.find_first_of(u"dmywqhnsDMYWQHNS") != StringView::npos;
}

String second_date_text(const SecondMoment& moment, StringView mask, WeekStart start) {
    String text;
    bool behind_hours = false;
    const std::int32_t shift = start == WeekStart::Sunday ? 1 : 0;
    for (std::size_t i = 0; i < mask.size();) {
        const char16_t letter = lower(mask[i]);
        if (StringView(u"dmywqhns").find(letter) == StringView::npos) {
            text += mask[i++];
            continue;
        }
        std::size_t length = 0;
        for (; i < mask.size() && lower(mask[i]) == letter; ++i) {
            ++length;
        }
        const std::size_t width = std::min<std::size_t>(length, 2);
        const auto& names = months[moment.month - 1];
        if (letter == u'd') {
            const StringView name = weekdays[moment.weekday];
            text += length <= 2   ? number_text(static_cast<std::int32_t>(moment.day), length)
                    : length == 3 ? String(name.substr(0, 3))
                                  : String(name);
        } else if (letter == u'm' && behind_hours && length <= 2) {
            text += number_text(moment.seconds / 60 % 60, length);
        } else if (letter == u'm') {
            text += length <= 2   ? number_text(static_cast<std::int32_t>(moment.month), length)
                    : length == 3 ? String(names[2])
                                  : String(names[0]);
        } else if (letter == u'y') {
            text += length <= 2 ? number_text(moment.year % 100, 2) : number_text(moment.year, 4);
        } else if (letter == u'w') {
            const std::int32_t first = (moment.weekday_of_new_year + shift) % 7;
            text += length == 1 ? number_text((moment.weekday + shift) % 7 + 1, 1)
                                : number_text((moment.day_of_year - 1 + first) / 7 + 1, 1);
        } else if (letter == u'q') {
            text += number_text(static_cast<std::int32_t>(moment.month - 1) / 3 + 1, 1);
        } else {
            const std::int32_t unit = letter == u'h'   ? moment.seconds / 3600
                                      : letter == u'n' ? moment.seconds / 60 % 60
                                                       : moment.seconds % 60;
            text += number_text(unit, width);
        }
        behind_hours = letter == u'h';
    }
    return text;
}

}  // namespace kvarta16::fuzz
