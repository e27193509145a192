// Calendar arithmetic: the bounds of weeks, months and years, and distances in days.
//
//   const aDaty calendar;
//   calendar.EOMonth("2024-02-10"_date)                  2024-02-29
//   calendar.BOWeek(2023, 2)                             2023-01-02
//   calendar.DzieńDoDnia("2024-05-16"_date, u"wtorek")   2, for 2024-05-16 is a Thursday
//
// Two weeks stand side by side, and callers rely on each. The numbered weeks of BOWeek and EOWeek
// begin on Monday; week 1 is the week of 1 January, however short, and no week crosses a year's
// end: a year has 53 numbers, or 54 when it is a leap year that begins on a Sunday. The week of
// BOWeek2 and the weekday numbers of DzieńDoDnia begin on Sunday, which is 1; Saturday is 7.
//
// No argument is written. A Date outside the years 100 to 9999 is error 5 where a day is read.
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

class KVARTA16_EXPORT aDaty {
  public:
    // "Difference of dates": whole days from `da2` to `da1`, negative if `da1` is the earlier.
    // Times of day do not count. Tolerant: 0 beyond Long.
    [[nodiscard]] Long RóżnicaDat(Date da1, Date da2) const;

    // The first day of week `Tydzień` of the year `Rok`: its Monday, but 1 January for week 1 and
    // below, and 31 December for a week that the year does not have.
    // Tolerant: day 0 for a year that MakeDate refuses. A year of one or two digits is found, but
    // is not the year of its own days, so that any week of it is 1 January.
    [[nodiscard]] Date BOWeek(Integer Rok, Integer Tydzień) const;

    // The last day of the same week: its Sunday, but 31 December for the last one and for a week
    // that the year does not have, and 31 December of the year before for week 0 and below, where
    // BOWeek gives 1 January. Week 32767 counts as -32768.
    // Tolerant: for a year that MakeDate refuses, day -1 up to week 52 and day 0 above. A year of
    // one or two digits ends on its 1 January for every week from 1 up.
    [[nodiscard]] Date EOWeek(Integer Rok, Integer Tydzień) const;

    // 1 January and 31 December of the year of `da`, without its time. Strict: 5.
    [[nodiscard]] Date BOYear(Date da) const;
    [[nodiscard]] Date EOYear(Date da) const;

    // The first and the last day of the month of `da`, without its time. Strict: 5; EOMonth also
    // in December 9999, as it comes from the day behind the month.
    [[nodiscard]] Date BOMonth(Date da) const;
    [[nodiscard]] Date EOMonth(Date da) const;

    // Today at midnight. The clock is read three times, for the year, the month and the day, so
    // that a midnight between two readings shows in the result. Strict.
    [[nodiscard]] Date ToDayMonth() const;

    // The Sunday on or before `da`, with the time of `da`. Strict: 5.
    // The days are subtracted from the number as it stands, so that a time on 1899-12-30, the one
    // day from which this goes below day 0, counts from another day afterwards.
    [[nodiscard]] Date BOWeek2(Date da) const;

    // "From day to day": the days from the latest weekday named `dzień2` on or before `dzień1`, 0
    // to 6. The names are the Polish ones in lower case, exactly; an unknown name is not refused
    // and gives the weekday number of `dzień1`, 1 to 7. Strict: 5.
    [[nodiscard]] Long DzieńDoDnia(Date dzień1, StringView dzień2) const;

    // The days to the next such weekday on or after `dzień1`, 0 to 6. An unknown name gives 7 less
    // the weekday number. Strict: 5.
    [[nodiscard]] Long DzieńDoDnia2(Date dzień1, StringView dzień2) const;

    // The year, or the month from 1 to 12, of a Date or of a text that ToDate reads; 0 for anything
    // else, Null, Empty and numbers among it. Strict: 5.
    [[nodiscard]] Long YearN(const Variant& da) const;
    [[nodiscard]] Long MonthN(const Variant& da) const;
};

template <>
struct ClassTable<aDaty> {
    static constexpr ClassHeader header{u"aDaty", Instancing::Global,
                                        "A8F04341-6047-45DD-845D-E3DA7934D58C",
                                        "641E72E5-9269-4AE4-B2BB-3D367169AB5C"};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&aDaty::RóżnicaDat>(u"RóżnicaDat", by_reference(u"da1"), by_reference(u"da2")),
        method<&aDaty::BOWeek>(u"BOWeek", by_reference(u"Rok"), by_reference(u"Tydzień")),
        method<&aDaty::EOWeek>(u"EOWeek", by_reference(u"Rok"), by_reference(u"Tydzień")),
        method<&aDaty::BOYear>(u"BOYear", by_reference(u"da")),
        method<&aDaty::EOYear>(u"EOYear", by_reference(u"da")),
        method<&aDaty::BOMonth>(u"BOMonth", by_reference(u"da")),
        method<&aDaty::EOMonth>(u"EOMonth", by_reference(u"da")),
        method<&aDaty::ToDayMonth>(u"ToDayMonth"),
        method<&aDaty::BOWeek2>(u"BOWeek2", by_reference(u"da")),
        method<&aDaty::DzieńDoDnia>(u"DzieńDoDnia", by_value(u"dzień1"), by_value(u"dzień2")),
        method<&aDaty::DzieńDoDnia2>(u"DzieńDoDnia2", by_value(u"dzień1"), by_value(u"dzień2")),
        method<&aDaty::YearN>(u"YearN", by_reference(u"da")),
        method<&aDaty::MonthN>(u"MonthN", by_reference(u"da")),
    });
};

}  // namespace kvarta16
