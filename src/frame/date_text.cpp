#include <algorithm>
#include <array>
#include <cmath>

#include <kvarta16/frame/date_text.h>
#include <kvarta16/frame/value.h>

namespace kvarta16 {
namespace {

constexpr std::int32_t seconds_of_day = 86400;

constexpr bool is_digit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}
constexpr bool is_separator(char16_t unit) {
    return unit == u'-' || unit == u'/' || unit == u'.';
}

// One of the three parts of a date: a number, or a month by its name.
struct Part {
    std::int32_t number = 0;
    bool is_month_name = false;
    bool is_long = false;  // of three or four digits, so that it can only be a year
};

// The month whose name, genitive or short name a word is, in any case; 0 for any other word.
std::int32_t month_named(StringView word, const Locale& settings) {
    const String wanted = lower_case(word);
    const auto position_in = [&wanted](const auto& names) {
        const auto* const found = std::find_if(names.begin(), names.end(), [&](StringView name) {
            return lower_case(name) == wanted;
        });
        return found == names.end() ? 0 : static_cast<std::int32_t>(found - names.begin()) + 1;
    };
    for (const auto* names :
         {&settings.month_names, &settings.month_genitives, &settings.month_short_names}) {
        if (const std::int32_t month = position_in(*names); month != 0) {
            return month;
        }
    }
    return 0;
}

// Takes a number of at most four digits off the front of a text; false if there is none.
bool take_number(StringView& text, std::size_t most_digits, std::int32_t& number,
                 std::size_t& digits) {
    number = 0;
    for (digits = 0; digits < text.size() && is_digit(text[digits]); ++digits) {
        if (digits == most_digits) {
            return false;
        }
        number = number * 10 + (text[digits] - u'0');
    }
    text.remove_prefix(digits);
    return digits > 0;
}

bool take_part(StringView& text, const Locale& settings, Part& part) {
    std::size_t digits = 0;
    if (take_number(text, 4, part.number, digits)) {
        part.is_long = digits > 2;
        return true;
    }
    const auto* end = std::ranges::find_if(text, [](char16_t unit) {
        return unit == u' ' || unit == u',' || is_digit(unit) || is_separator(unit);
    });
    const auto length = static_cast<std::size_t>(end - text.begin());
    part.number = length == 0 ? 0 : month_named(text.substr(0, length), settings);
    part.is_month_name = part.number != 0;
    text.remove_prefix(part.is_month_name ? length : 0);
    return part.is_month_name;
}

// One of "-", "/" and "."; beside a month's name also blanks, or a comma and blanks.
bool take_separator(StringView& text, bool beside_name) {
    if (!text.empty() && is_separator(text.front())) {
        text.remove_prefix(1);
        return true;
    }
    if (!beside_name) {
        return false;
    }
    const StringView before = text;
    if (text.starts_with(u',')) {
        text.remove_prefix(1);
    }
    text = trim_left(text);
    return text.size() < before.size();
}

struct TakenParts {
    std::array<Part, 3> parts;
    bool has_name = false;
};

bool take_parts(StringView& text, const Locale& settings, TakenParts& taken) {
    for (std::size_t i = 0; i < 3; ++i) {
        // A name may follow as well as stand before, so that blanks are tried between any two
        // parts and counted as wrong later if no part is a name.
        if (i > 0 && !take_separator(text, true)) {
            return false;
        }
        if (!take_part(text, settings, taken.parts[i])) {
            return false;
        }
        if (taken.parts[i].is_month_name) {
            if (taken.has_name) {
                return false;
            }
            taken.has_name = true;
        }
    }
    return true;
}

// The day number of three parts in an order, or nothing if they make no day in it. Positions are
// those of year, month and day.
std::optional<std::int32_t> day_in_order(const std::array<Part, 3>& parts, std::size_t year_at,
                                         std::size_t month_at, std::size_t day_at) {
    const Part& year = parts[year_at];
    const Part& month = parts[month_at];
    const Part& day = parts[day_at];
    if (year.is_month_name || day.is_month_name || month.is_long || day.is_long) {
        return std::nullopt;
    }
    const std::int32_t full = full_year(year.number);
    if (full < 100 || month.number < 1 || month.number > 12 || day.number < 1 ||
        day.number > days_in_month(full, month.number)) {
        return std::nullopt;
    }
    return day_number(full, month.number, day.number);
}

std::optional<std::int32_t> day_of(const TakenParts& taken, const Locale& settings) {
    struct Order {
        DateOrder name;
        std::size_t year_at, month_at, day_at;
    };
    std::array orders = {Order{DateOrder::YearMonthDay, 0, 1, 2},
                         Order{DateOrder::DayMonthYear, 2, 1, 0},
                         Order{DateOrder::MonthDayYear, 2, 0, 1}};
    // The machine's own order first; the others keep theirs.
    std::stable_partition(orders.begin(), orders.end(), [&settings](const Order& order) {
        return order.name == settings.date_order;
    });
    for (const Order& order : orders) {
        if (const auto day =
                day_in_order(taken.parts, order.year_at, order.month_at, order.day_at)) {
            return day;
        }
    }
    return std::nullopt;
}

// H:mm or H:mm:ss, all of the text: the seconds since midnight.
std::optional<std::int32_t> read_time(StringView text) {
    std::array<std::int32_t, 3> units{};
    constexpr std::array<std::int32_t, 3> limits = {24, 60, 60};
    std::size_t count = 0;
    for (; count < 3; ++count) {
        if (count > 0) {
            if (text.empty() || text.front() != u':') {
                break;
            }
            text.remove_prefix(1);
        }
        std::size_t digits = 0;
        if (!take_number(text, 2, units[count], digits) || units[count] >= limits[count]) {
            return std::nullopt;
        }
    }
    if (count < 2 || !text.empty()) {
        return std::nullopt;
    }
    return (units[0] * 60 + units[1]) * 60 + units[2];
}

// Whether blanks or commas stand between parts none of which is a name.
bool is_bare_row(StringView parts, bool has_name) {
    return !has_name && parts.find_first_of(u" ,") != StringView::npos;
}

}  // namespace

std::optional<DateParts> parts_of(Date date) {
    if (!is_day_of_calendar(date.days)) {
        return std::nullopt;
    }
    const Double whole = std::trunc(date.days);
    const Double fraction = std::abs(date.days - whole);
    const auto rounded = static_cast<std::int32_t>(std::lround(fraction * seconds_of_day));
    const std::int32_t seconds = std::min(rounded, seconds_of_day - 1);
    const auto day = static_cast<std::int32_t>(whole);
    return DateParts{day, civil_of(day), seconds / 3600, seconds / 60 % 60, seconds % 60};
}

std::optional<Date> read_date(StringView text, const Locale& settings) {
    text = trim(text);
    const StringView all = text;
    TakenParts taken;
    if (!take_parts(text, settings, taken) ||
        is_bare_row(all.substr(0, all.size() - text.size()), taken.has_name)) {
        return std::nullopt;
    }
    const std::optional<std::int32_t> day = day_of(taken, settings);
    if (!day) {
        return std::nullopt;
    }
    if (text.empty()) {
        return Date{static_cast<Double>(*day)};
    }
    const std::optional<std::int32_t> seconds =
        text.front() == u' ' ? read_time(trim_left(text)) : std::nullopt;
    if (!seconds) {
        return std::nullopt;
    }
    const Double time = *seconds / static_cast<Double>(seconds_of_day);
    return Date{*day < 0 ? *day - time : *day + time};  // the time counts forward on either side
}

Date ToDate(const Variant& value) {
    if (const auto* date = value.get_if<Date>()) {
        return *date;
    }
    if (const auto* text = value.get_if<String>()) {
        const std::optional<Date> date = read_date(*text, locale());
        if (!date) {
            fail(error::type_mismatch);
        }
        return *date;
    }
    const Double days = to_double(value);
    if (!is_day_of_calendar(days)) {
        fail(error::overflow);
    }
    return {days};
}

Boolean IsDateValue(const Variant& value) {
    if (const auto* text = value.get_if<String>()) {
        return read_date(*text, locale()).has_value();
    }
    return value.is(Subtype::Date);
}

Date MakeDate(Integer year, Integer month, Integer day) {
    const std::int32_t months = full_year(year) * 12 + month - 1;
    // Division towards minus infinity, so that month 0 is December of the year before.
    const std::int32_t full = months >= 0 ? months / 12 : (months - 11) / 12;
    if (full < 100 || full > 9999) {
        fail(error::invalid_call);
    }
    const std::int32_t number = day_number(full, months - full * 12 + 1, day);
    if (number < first_day_number || number > last_day_number) {
        fail(error::overflow);
    }
    return {static_cast<Double>(number)};
}

}  // namespace kvarta16
