// The Polish statutory rates per kilometre for a private car used on the employer's business, as
// rows of the table S_StawkiKM, in the order in which they are sent: by date, the smaller engine
// first. Zlotys per kilometre, with the four decimals of the law.
//
// A key that a database has is never rewritten. A new pair of rows goes to the end.
#pragma once

#include <kvarta16/frame/value.h>
#include <kvarta16/statutory/rows.h>

namespace kvarta16::statutory {

// clang-format off
inline constexpr MileageRow mileage_rows[] = {
    {"2001-11-01"_date, Boolean(true),  0.4488_cur},
    {"2001-11-01"_date, Boolean(false), 0.7195_cur},
    {"2002-04-01"_date, Boolean(true),  0.4690_cur},
    {"2002-04-01"_date, Boolean(false), 0.7519_cur},
    {"2003-01-01"_date, Boolean(true),  0.4798_cur},
    {"2003-01-01"_date, Boolean(false), 0.7692_cur},
    {"2004-03-01"_date, Boolean(true),  0.4894_cur},
    {"2004-03-01"_date, Boolean(false), 0.7846_cur},
    {"2007-11-14"_date, Boolean(true),  0.5214_cur},
    {"2007-11-14"_date, Boolean(false), 0.8358_cur},
    {"2023-01-17"_date, Boolean(true),  0.8900_cur},
    {"2023-01-17"_date, Boolean(false), 1.1500_cur},
};
// clang-format on

}  // namespace kvarta16::statutory
