// The Polish statutory interest rates, as rows of the table S_ODSETKI, in the order in which they
// are sent: by date, and by kind within a date. Percent a year.
//
// The kinds, each with the first date it has:
//
//     0   1999-02-01  the statutory rate; from 2016-01-01 the statutory rate for late payment
//     1   2016-01-01  twice kind 0, the ceiling on it
//     2   2016-01-01  kind 0 less two percentage points, the statutory rate on capital
//     3   2016-01-01  twice kind 2, the ceiling on it
//     4   2014-10-09  a rate of its own, always equal to kind 5
//     5   2014-10-09  a rate of its own, always equal to kind 4
//
// Every run rewrites the rate of every key here, so of two rows with one key the later one holds.
// That happens once and stays so: on 2021-11-04 the fourth row, 9.5, has the kind 1 and not 3, so
// that it replaces the 13.5 and kind 3 keeps its rate until the next date. The row of 2014-12-23
// comes before those of 2014-10-09.
//
// The list ends with 2022-08-08; later rates are entered by the users.
#pragma once

#include <kvarta16/frame/value.h>
#include <kvarta16/statutory/rows.h>

namespace kvarta16::statutory {

// clang-format off
inline constexpr InterestRow interest_rows[] = {
    {"1999-02-01"_date, 0, 24.00_cur},
    {"1999-05-15"_date, 0, 21.00_cur},
    {"2000-11-01"_date, 0, 30.00_cur},
    {"2001-12-15"_date, 0, 20.00_cur},
    {"2002-07-25"_date, 0, 16.00_cur},
    {"2003-02-01"_date, 0, 13.00_cur},
    {"2004-09-25"_date, 0, 12.25_cur},
    {"2005-01-10"_date, 0, 13.50_cur},
    {"2005-10-15"_date, 0, 11.50_cur},
    {"2008-12-15"_date, 0, 13.00_cur},
    {"2014-12-23"_date, 0,  8.00_cur},
    {"2014-10-09"_date, 4,  8.00_cur},
    {"2014-10-09"_date, 5,  8.00_cur},
    {"2016-01-01"_date, 0,  7.00_cur},
    {"2016-01-01"_date, 1, 14.00_cur},
    {"2016-01-01"_date, 2,  5.00_cur},
    {"2016-01-01"_date, 3, 10.00_cur},
    {"2020-03-18"_date, 0,  6.50_cur},
    {"2020-03-18"_date, 1, 13.00_cur},
    {"2020-03-18"_date, 2,  4.50_cur},
    {"2020-03-18"_date, 3,  9.00_cur},
    {"2020-04-09"_date, 0,  6.00_cur},
    {"2020-04-09"_date, 1, 12.00_cur},
    {"2020-04-09"_date, 2,  4.00_cur},
    {"2020-04-09"_date, 3,  8.00_cur},
    {"2020-05-29"_date, 0,  5.60_cur},
    {"2020-05-29"_date, 1, 11.20_cur},
    {"2020-05-29"_date, 2,  3.60_cur},
    {"2020-05-29"_date, 3,  7.20_cur},
    {"2021-10-07"_date, 0,  6.00_cur},
    {"2021-10-07"_date, 1, 12.00_cur},
    {"2021-10-07"_date, 2,  4.00_cur},
    {"2021-10-07"_date, 3,  8.00_cur},
    {"2021-11-04"_date, 0,  6.75_cur},
    {"2021-11-04"_date, 1, 13.50_cur},
    {"2021-11-04"_date, 2,  4.75_cur},
    {"2021-11-04"_date, 1,  9.50_cur},  // kind 1, and not 3
    {"2021-12-09"_date, 0,  7.25_cur},
    {"2021-12-09"_date, 1, 14.50_cur},
    {"2021-12-09"_date, 2,  5.25_cur},
    {"2021-12-09"_date, 3, 10.50_cur},
    {"2022-01-05"_date, 0,  7.75_cur},
    {"2022-01-05"_date, 1, 15.50_cur},
    {"2022-01-05"_date, 2,  5.75_cur},
    {"2022-01-05"_date, 3, 11.50_cur},
    {"2022-02-09"_date, 0,  8.25_cur},
    {"2022-02-09"_date, 1, 16.50_cur},
    {"2022-02-09"_date, 2,  6.25_cur},
    {"2022-02-09"_date, 3, 12.50_cur},
    {"2022-02-09"_date, 4,  8.50_cur},
    {"2022-02-09"_date, 5,  8.50_cur},
    {"2022-03-09"_date, 0,  9.00_cur},
    {"2022-03-09"_date, 1, 18.00_cur},
    {"2022-03-09"_date, 2,  7.00_cur},
    {"2022-03-09"_date, 3, 14.00_cur},
    {"2022-03-09"_date, 4, 10.00_cur},
    {"2022-03-09"_date, 5, 10.00_cur},
    {"2022-04-07"_date, 0, 10.00_cur},
    {"2022-04-07"_date, 1, 20.00_cur},
    {"2022-04-07"_date, 2,  8.00_cur},
    {"2022-04-07"_date, 3, 16.00_cur},
    {"2022-04-07"_date, 4, 12.00_cur},
    {"2022-04-07"_date, 5, 12.00_cur},
    {"2022-05-06"_date, 0, 10.75_cur},
    {"2022-05-06"_date, 1, 21.50_cur},
    {"2022-05-06"_date, 2,  8.75_cur},
    {"2022-05-06"_date, 3, 17.50_cur},
    {"2022-05-06"_date, 4, 13.50_cur},
    {"2022-05-06"_date, 5, 13.50_cur},
    {"2022-06-09"_date, 0, 11.50_cur},
    {"2022-06-09"_date, 1, 23.00_cur},
    {"2022-06-09"_date, 2,  9.50_cur},
    {"2022-06-09"_date, 3, 19.00_cur},
    {"2022-06-09"_date, 4, 15.00_cur},
    {"2022-06-09"_date, 5, 15.00_cur},
    {"2022-07-08"_date, 0, 12.00_cur},
    {"2022-07-08"_date, 1, 24.00_cur},
    {"2022-07-08"_date, 2, 10.00_cur},
    {"2022-07-08"_date, 3, 20.00_cur},
    {"2022-07-08"_date, 4, 16.00_cur},
    {"2022-07-08"_date, 5, 16.00_cur},
    {"2022-08-08"_date, 0, 12.25_cur},
    {"2022-08-08"_date, 1, 24.50_cur},
    {"2022-08-08"_date, 2, 10.25_cur},
    {"2022-08-08"_date, 3, 20.50_cur},
    {"2022-08-08"_date, 4, 16.50_cur},
    {"2022-08-08"_date, 5, 16.50_cur},
};
// clang-format on

}  // namespace kvarta16::statutory
