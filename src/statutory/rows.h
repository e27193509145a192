// The rows of the statutory tables, in the shape in which the library carries them.
//
// The figures are those of Polish law as it was published over the years: contribution rates, the
// income-tax scale, wages and benefits of the payroll, rates per kilometre for private cars on the
// employer's business, statutory interest. They stand in payroll_rows.h, mileage_rows.h and
// interest_rows.h, one row a line in the order in which they are sent to the database, and change
// with a new release. The fields are named after the columns they fill.
//
//     for (const MileageRow& row : mileage_rows) send(row);
#pragma once

#include <array>

#include <kvarta16/frame/value.h>

namespace kvarta16::statutory {

// The row files write their amounts and days with these two, as 493.32_cur and "2001-01-01"_date.
using literals::operator""_cur;
using literals::operator""_date;

// A payroll parameter from a day on, until the next day of the same id.
struct PayrollRow {
    Integer id = 0;
    Date dataod;                       // always the first of a month
    std::array<Currency, 10> wartosc;  // `wartosc` to `wartosc10`; those not named are zero
};

// A rate per kilometre from a day on, until the next day of the same engine class.
struct MileageRow {
    Date dataod;
    Boolean ponizej900;     // true: engines up to 900 cm³, the cheaper rate
    Currency wartosc_wsp4;  // zlotys per kilometre
};

// An interest rate from a day on, until the next day of the same kind.
struct InterestRow {
    Date od_dnia;
    Integer rodzaj = 0;
    Currency procent;  // percent a year
};

}  // namespace kvarta16::statutory
