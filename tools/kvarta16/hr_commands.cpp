// Days, identifiers and length of service: the personnel classes for a person at a shell.
#include <algorithm>
#include <iostream>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/hr/Class1.h>
#include <kvarta16/hr/Kadry.h>
#include <kvarta16/text/Class3.h>

#include "commands.h"
#include "holiday_words.h"
#include "language.h"
#include "usage_error.h"

namespace kvarta16::tool {
namespace {

std::string day_text(Date day) {
    return to_utf8(FormatMask(day, u"yyyy-MM-dd"));
}

// ---- Days -----------------------------------------------------------------------------------

struct Holiday {
    Date day;
    Words name;
};

Date date_of(StringView text) {  // dd-mm-yyyy
    return ToDate(Variant(text));
}

// In the order of their dates; movable ones where their list has the year.
std::vector<Holiday> holidays_of(Long year) {
    std::vector<Holiday> holidays;
    for (std::size_t i = 0; i < std::size(hr::fixed_holidays); ++i) {
        const hr::FixedHoliday& holiday = hr::fixed_holidays[i];
        if (year >= holiday.since_year) {
            const String text = String(holiday.day) + u'-' + FormatMask(year, u"0000");
            holidays.push_back({date_of(text), fixed_holiday_words[i]});
        }
    }
    if (year >= hr::first_listed_year && year <= hr::last_listed_year) {
        const auto& feasts = hr::movable_feasts[year - hr::first_listed_year];
        for (const MovableHoliday& holiday : movable_holidays) {
            holidays.push_back(
                {Date{date_of(feasts[0]).days + holiday.days_from_easter_monday}, holiday.name});
        }
    }
    std::ranges::stable_sort(holidays, {}, [](const Holiday& h) { return h.day.days; });
    return holidays;
}

Words kind_of_day(Integer weekday, Integer with_holidays) {
    constexpr Integer saturday = 5;
    constexpr Integer sunday = 6;
    if (with_holidays == sunday && weekday != sunday) {
        return word_holiday;
    }
    return weekday >= saturday ? word_day_off : word_working_day;
}

// ---- Identifiers ----------------------------------------------------------------------------

// The digits of an identifier, which people write in groups. Throws UsageError for another number
// of digits and for anything else than digits.
String digits_of(const std::string& word, StringView name, std::size_t count) {
    String digits = Class3().Spacje_Usun(Class3().Myslnik_Usun(from_utf8(word)));
    const bool all_digits =
        std::ranges::all_of(digits, [](char16_t c) { return c >= u'0' && c <= u'9'; });
    if (!all_digits || digits.size() != count) {
        throw UsageError("\"" + word + "\" is no " + to_utf8(name) + ": it has " +
                         std::to_string(count) + " digits");
    }
    return digits;
}

int tell_check(const String& digits, Boolean is_right, const std::optional<std::string>& language) {
    const Words words = is_right ? Words{u"poprawny", u"correct"}
                                 : Words{u"niepoprawny: cyfra kontrolna się nie zgadza",
                                         u"wrong: the check digit does not agree"};
    std::cout << to_utf8(digits) << ": "
              << to_utf8(is_polish(language) ? words.polish : words.english) << '\n';
    return is_right ? 0 : 1;
}

// ---- Length of service ----------------------------------------------------------------------

struct Length {
    Integer years = 0;
    Integer months = 0;
    Integer days = 0;
};

void print_length(const std::string& title, const Length& length, bool polish) {
    constexpr std::size_t title_width = 26;
    std::cout << title << std::string(title_width - std::min(title.size(), title_width), ' ')
              << (polish ? "lat: " : "years: ") << length.years
              << (polish ? ", miesięcy: " : ", months: ") << length.months
              << (polish ? ", dni: " : ", days: ") << length.days << '\n';
}

}  // namespace

int day_command(const std::string& day_word, const std::optional<std::string>& language) {
    const Date day = day_argument(day_word);
    const Integer weekday = Kadry().PodajDzień(day);
    const Integer with_holidays = Kadry().PodajDzień(day, true);
    const auto word = [polish = is_polish(language)](const Words& words) {
        return to_utf8(polish ? words.polish : words.english);
    };
    std::cout << day_text(day) << ": " << word(weekday_words[weekday]) << ", "
              << word(kind_of_day(weekday, with_holidays)) << '\n';
    return 0;
}

int holidays_command(Long year, const std::optional<std::string>& language) {
    const bool polish = is_polish(language);
    for (const Holiday& holiday : holidays_of(year)) {
        const Words& weekday =
            weekday_words[weekday_from_monday(static_cast<Long>(holiday.day.days))];
        String line = polish ? String(weekday.polish) : String(weekday.english);
        line.resize(std::max<std::size_t>(line.size(), 12), u' ');
        std::cout << day_text(holiday.day) << "  " << to_utf8(line) << "  "
                  << to_utf8(polish ? holiday.name.polish : holiday.name.english) << '\n';
    }
    if (year < hr::first_listed_year || year > hr::last_listed_year) {
        std::cerr << "kvarta16: movable feasts are known from " << hr::first_listed_year << " to "
                  << hr::last_listed_year << " and are not listed\n";
    }
    return 0;
}

int pesel_command(const std::string& number, const std::optional<std::string>& language) {
    const String digits = digits_of(number, u"PESEL", 11);
    return tell_check(digits, Class1().Spr_PESEL(digits), language);
}

int nip_command(const std::string& number, const std::optional<std::string>& language) {
    const String digits = digits_of(number, u"NIP", 10);
    return tell_check(digits, Class1().Spr_NIP(digits), language);
}

int service_command(const ServiceOptions& options) {
    if (options.days.empty() || options.days.size() % 2 != 0) {
        throw UsageError("periods are wanted, each as its first and its last day");
    }
    const Kadry personnel;
    const bool polish = is_polish(options.language);
    Length total;
    for (std::size_t i = 0; i < options.days.size(); i += 2) {
        const Date from = day_argument(options.days[i]);
        const Date to = day_argument(options.days[i + 1]);
        if (to < from) {
            throw UsageError(options.days[i + 1] + " is before " + options.days[i]);
        }
        Length length;
        personnel.licz_okres(from, to, length.years, length.months, length.days);
        personnel.sumuj_okresy(length.years, length.months, length.days, total.days, total.months,
                               total.years);
        print_length(day_text(from) + "  " + day_text(to), length, polish);
    }
    print_length(polish ? "razem" : "total", total, polish);
    const Integer leave =
        options.age ? personnel.limit_u1(total.years, total.months, options.school, *options.age)
                    : personnel.limit_u(total.years, total.months, options.school);
    std::cout << (polish ? "urlop w roku, dni: " : "days of leave a year: ") << leave << '\n';
    return 0;
}

}  // namespace kvarta16::tool
