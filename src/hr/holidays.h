// The public holidays of the Polish calendar that the working-day calendar knows.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include <kvarta16/frame/civil.h>

namespace kvarta16::hr {

// A holiday that has the same date each year, from the year on in which it began to be free.
struct FixedHoliday {
    std::u16string_view day;  // dd-mm
    std::int32_t since_year;
};

inline constexpr std::int32_t always = 0;
inline constexpr FixedHoliday fixed_holidays[] = {
    {u"01-01", always},  // New Year
    {u"06-01", 2011},    // Epiphany
    {u"01-05", always},  // Labour Day
    {u"03-05", always},  // Constitution Day
    {u"15-08", always},  // Assumption
    {u"01-11", always},  // All Saints
    {u"11-11", always},  // Independence Day
    {u"24-12", 2025},    // Christmas Eve
    {u"25-12", always},  // Christmas
    {u"26-12", always},  // Second day of Christmas
};

// The years for which the movable feasts are known.
inline constexpr std::int32_t first_listed_year = 2001;
inline constexpr std::int32_t last_listed_year = 2030;

// Easter Monday and Corpus Christi of each year: the days 1 and 60 after the Easter Sunday of the
// Gregorian computus, with which every entry agrees.
inline constexpr std::u16string_view movable_feasts[][2] = {
    {u"16-04-2001", u"14-06-2001"}, {u"01-04-2002", u"30-05-2002"}, {u"21-04-2003", u"19-06-2003"},
    {u"12-04-2004", u"10-06-2004"}, {u"28-03-2005", u"26-05-2005"}, {u"17-04-2006", u"15-06-2006"},
    {u"09-04-2007", u"07-06-2007"}, {u"24-03-2008", u"22-05-2008"}, {u"13-04-2009", u"11-06-2009"},
    {u"05-04-2010", u"03-06-2010"}, {u"25-04-2011", u"23-06-2011"}, {u"09-04-2012", u"07-06-2012"},
    {u"01-04-2013", u"30-05-2013"}, {u"21-04-2014", u"19-06-2014"}, {u"06-04-2015", u"04-06-2015"},
    {u"28-03-2016", u"26-05-2016"}, {u"17-04-2017", u"15-06-2017"}, {u"02-04-2018", u"31-05-2018"},
    {u"22-04-2019", u"20-06-2019"}, {u"13-04-2020", u"11-06-2020"}, {u"05-04-2021", u"03-06-2021"},
    {u"18-04-2022", u"16-06-2022"}, {u"10-04-2023", u"08-06-2023"}, {u"01-04-2024", u"30-05-2024"},
    {u"21-04-2025", u"19-06-2025"}, {u"06-04-2026", u"04-06-2026"}, {u"29-03-2027", u"27-05-2027"},
    {u"17-04-2028", u"15-06-2028"}, {u"02-04-2029", u"31-05-2029"}, {u"22-04-2030", u"20-06-2030"},
};
static_assert(std::size(movable_feasts) == last_listed_year - first_listed_year + 1);

}  // namespace kvarta16::hr
