// Personnel: what kind of day a date is, and the length of service with the leave that follows
// from it.
//
//   const Kadry personnel;
//   personnel.PodajDzień("2025-12-24"_date, true)              6: Christmas Eve is free since 2025
//   Integer years, months, days;
//   personnel.licz_okres("2020-01-31"_date, "2020-03-01"_date, years, months, days);   0, 1, 2
//   personnel.limit_u(2, 0, 4)                                 20 days of leave a year
//
// A period is a triple of years, months and days and no count of days. Between two dates it is
// counted in the fields of the calendar, both end days included; periods are added in months of 30
// days and years of 12 months. Sums of Integers wrap at 16 bits; nothing checks that a period is
// normalised. No method traps anything: a Date outside the years 100 to 9999 is error 5.
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

class KVARTA16_EXPORT Kadry {
  public:
    // "Give the day": Monday 0 to Sunday 6, and with `Święto` 6 on a public holiday too. The
    // weekday is told by the day's name in the machine's language, so that where that is not
    // Polish every day is 0. Movable feasts are known from 2001 to 2030; for a later year a box
    // says so at each call, and the fixed holidays hold on. Strict: 5.
    [[nodiscard]] Integer PodajDzień(Date Dat, Boolean Święto = false) const;

    // "Count a period" from `Data_od` to `Data_do`, the last day included, days borrowed before
    // months. A borrowed month has the length of the month of `Data_od`. Years are not below 0;
    // where `Data_do` is the earlier, months and days are what comes out. Strict: 5.
    void licz_okres(Date Data_od, Date Data_do, Integer& staz_lata, Integer& staz_miesiace,
                    Integer& staz_dni) const;

    // As licz_okres, with months borrowed before days and nothing put right afterwards: months can
    // be -1, years negative. Strict: 5.
    void licz_okres2(Date Data_od, Date Data_do, Integer& staz_lata, Integer& staz_miesiace,
                     Integer& staz_dni) const;

    // "Add periods": adds `lata`, `Mies`, `dni` to the total; mind its order. 30 days are carried
    // into a month and 12 months into a year, once each. Strict; nothing can fail.
    void sumuj_okresy(Integer lata, Integer Mies, Integer dni, Integer& suma_d, Integer& suma_m,
                      Integer& suma_l) const;

    // Days of leave a year after `lata` years and `Mies` months, with `szkoła` years credited for
    // schooling: 0 up to 5 months of service, then 18 up to 5 years with the schooling, 20 up to 9,
    // 26 from 10. A negative sum of years gives 26. Strict; nothing can fail.
    [[nodiscard]] Integer limit_u(Integer lata, Integer Mies, Integer szkoła) const;

    // The variant with the age `wiek` in years: 0 up to 5 months of service, 12 within the first
    // year, then 26 under 18 years of age and 20 from 18 on, as long as the sum of years is from 0
    // to 5. Beyond it there is no band: 0. Strict; nothing can fail.
    [[nodiscard]] Integer limit_u1(Integer lata, Integer Mies, Integer szkoła, Integer wiek) const;

    // The searches: the first day, from the second one on, on which the period from `DataOd`, added
    // to the base `lata`, `Mies`, `dni`, reaches a threshold of the total: 6 months (data_6m), 1
    // year (data_12m), 6 years (data_6l), 10 years (data_10l). `suma_*` then hold the total reached
    // and `staz_*` the period. Where the total on entry is at the threshold already, day 0
    // (1899-12-30) comes back and nothing is written.
    // Strict: 5 when a search leaves the calendar, with the base in `suma_*`; 6 when all 65536
    // values of its 16-bit day counter have been tried.

    // `suma_l` is not set to a base: the years that are carried in each of the days tried add up
    // there. `staz_*` are not used.
    [[nodiscard]] Date data_6m(Date DataOd, Integer Mies, Integer dni, Integer staz_lata,
                               Integer staz_miesiace, Integer staz_dni, Integer& suma_m,
                               Integer& suma_d, Integer& suma_l) const;
    // The base has no years.
    [[nodiscard]] Date data_12m(Date DataOd, Integer Mies, Integer dni, Integer& suma_m,
                                Integer& suma_d, Integer& suma_l, Integer& staz_lata,
                                Integer& staz_miesiace, Integer& staz_dni) const;
    // The base is `lata`, `Mies`, `dni`.
    [[nodiscard]] Date data_6l(Date DataOd, Integer lata, Integer Mies, Integer dni,
                               Integer& suma_m, Integer& suma_d, Integer& suma_l,
                               Integer& staz_lata, Integer& staz_miesiace, Integer& staz_dni) const;
    [[nodiscard]] Date data_10l(Date DataOd, Integer lata, Integer Mies, Integer dni,
                                Integer& suma_m, Integer& suma_d, Integer& suma_l,
                                Integer& staz_lata, Integer& staz_miesiace,
                                Integer& staz_dni) const;
};

template <>
struct ClassTable<Kadry> {
    static constexpr ClassHeader header{u"Kadry", Instancing::Global,
                                        "AC8CCDF9-407F-4ECA-876D-ED06341EBB57",
                                        "203407A5-57D0-4C05-B32D-4080F14533F8"};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&Kadry::PodajDzień>(u"PodajDzień", by_reference(u"Dat"),
                                   optional(by_reference(u"Święto"))),
        method<&Kadry::licz_okres2>(u"licz_okres2", by_value(u"Data_od"), by_value(u"Data_do"),
                                    by_reference(u"staz_lata"), by_reference(u"staz_miesiace"),
                                    by_reference(u"staz_dni")),
        method<&Kadry::licz_okres>(u"licz_okres", by_value(u"Data_od"), by_value(u"Data_do"),
                                   by_reference(u"staz_lata"), by_reference(u"staz_miesiace"),
                                   by_reference(u"staz_dni")),
        method<&Kadry::sumuj_okresy>(u"sumuj_okresy", by_value(u"lata"), by_value(u"Mies"),
                                     by_value(u"dni"), by_reference(u"suma_d"),
                                     by_reference(u"suma_m"), by_reference(u"suma_l")),
        method<&Kadry::limit_u>(u"limit_u", by_reference(u"lata"), by_reference(u"Mies"),
                                by_reference(u"szkoła")),
        method<&Kadry::limit_u1>(u"limit_u1", by_reference(u"lata"), by_reference(u"Mies"),
                                 by_reference(u"szkoła"), by_reference(u"wiek")),
        method<&Kadry::data_6m>(
            u"data_6m", by_value(u"DataOd"), by_value(u"Mies"), by_value(u"dni"),
            by_value(u"staz_lata"), by_value(u"staz_miesiace"), by_value(u"staz_dni"),
            by_reference(u"suma_m"), by_reference(u"suma_d"), by_reference(u"suma_l")),
        method<&Kadry::data_12m>(u"data_12m", by_value(u"DataOd"), by_value(u"Mies"),
                                 by_value(u"dni"), by_reference(u"suma_m"), by_reference(u"suma_d"),
                                 by_reference(u"suma_l"), by_reference(u"staz_lata"),
                                 by_reference(u"staz_miesiace"), by_reference(u"staz_dni")),
        method<&Kadry::data_6l>(
            u"data_6l", by_value(u"DataOd"), by_value(u"lata"), by_value(u"Mies"), by_value(u"dni"),
            by_reference(u"suma_m"), by_reference(u"suma_d"), by_reference(u"suma_l"),
            by_reference(u"staz_lata"), by_reference(u"staz_miesiace"), by_reference(u"staz_dni")),
        method<&Kadry::data_10l>(u"data_10l", by_value(u"DataOd"), by_value(u"lata"),
                                 by_value(u"Mies"), by_value(u"dni"), by_reference(u"suma_m"),
                                 by_reference(u"suma_d"), by_reference(u"suma_l"),
                                 by_reference(u"staz_lata"), by_reference(u"staz_miesiace"),
                                 by_reference(u"staz_dni")),
    });
};

}  // namespace kvarta16
