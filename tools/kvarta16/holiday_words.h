// The names of the public holidays, in the order of the lists of holidays.h.
#pragma once

#include <iterator>

#include <kvarta16/hr/holidays.h>

#include "language.h"

namespace kvarta16::tool {

inline constexpr Words fixed_holiday_words[] = {
    {u"Nowy Rok", u"New Year"},
    {u"Trzech Króli", u"Epiphany"},
    {u"Święto Pracy", u"Labour Day"},
    {u"Święto Konstytucji Trzeciego Maja", u"Constitution Day"},
    {u"Wniebowzięcie Najświętszej Maryi Panny", u"Assumption"},
    {u"Wszystkich Świętych", u"All Saints"},
    {u"Narodowe Święto Niepodległości", u"Independence Day"},
    {u"Wigilia Bożego Narodzenia", u"Christmas Eve"},
    {u"Boże Narodzenie, pierwszy dzień", u"Christmas"},
    {u"Boże Narodzenie, drugi dzień", u"second day of Christmas"},
};
static_assert(std::size(fixed_holiday_words) == std::size(hr::fixed_holidays));

// The movable feasts by their days from Easter Monday.
struct MovableHoliday {
    int days_from_easter_monday = 0;
    Words name;
};
inline constexpr MovableHoliday movable_holidays[] = {
    {-1, {u"Wielkanoc", u"Easter Sunday"}},
    {0, {u"Poniedziałek Wielkanocny", u"Easter Monday"}},
    {48, {u"Zielone Świątki", u"Pentecost"}},
    {59, {u"Boże Ciało", u"Corpus Christi"}},
};

inline constexpr Words weekday_words[] = {
    {u"poniedziałek", u"Monday"}, {u"wtorek", u"Tuesday"}, {u"środa", u"Wednesday"},
    {u"czwartek", u"Thursday"},   {u"piątek", u"Friday"},  {u"sobota", u"Saturday"},
    {u"niedziela", u"Sunday"},
};

inline constexpr Words word_working_day = {u"dzień roboczy", u"working day"};
inline constexpr Words word_day_off = {u"dzień wolny", u"day off"};
inline constexpr Words word_holiday = {u"święto", u"public holiday"};

}  // namespace kvarta16::tool
