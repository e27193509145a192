// How money is rounded: the routes by which aLiczby brings a value of any subtype to a number of
// decimals.
//
// Halves go away from zero, but each subtype gets there on a way of its own, and the ways differ
// in the last place. Stored documents carry those last places, so the differences stay.
#pragma once

#include <kvarta16/frame/value.h>

namespace kvarta16::money_rounding {

// Rounded to the decimals of the name, by the subtype of the value:
//
//   Integer, Long, Byte        as they are
//   Boolean                    -1 or 0
//   Single, Double, Date       as shown under the mask with these decimals, a Date as its days
//   Currency, Decimal          exactly; Decimal halves to the even digit, Currency halves away
//                              from zero
//   String                     twice, see below
//   all others                 0: Empty, Null, a missing argument, error codes, objects
//
// to_whole takes a Single, Double or Date in Double instead of by the mask; to_fourths leaves a
// Currency as it is. A text is read with "." for ",", shown with one decimal more, and then cut;
// if the digit cut off is 5 or more, a unit of the last place is added, to a negative amount too:
// "-2,5" is -1. A text that is no number counts as ValPrefix of it. A unit is added to an amount as
// amounts are: next to the ends of Currency the sum wraps.
// Fails: 6 for a value beyond Currency; 13 for a text whose digits do not read back, under a locale
// whose decimal separator is not the comma.
[[nodiscard]] Currency to_whole(const Variant& value);
[[nodiscard]] Currency to_tenths(const Variant& value);
[[nodiscard]] Currency to_thousandths(const Variant& value);
[[nodiscard]] Currency to_fourths(const Variant& value);

// The same for two decimals, but that a Currency, Decimal or text is rounded in Double: half to
// even first, and then moved away from zero if what was cut off comes out as exactly half a unit.
// So 1.125 gives 1.13 and 1.025 gives 1.03, but 1.005 and 1.015, which are less in binary, give
// 1.00 and 1.01. Fails: 6.
[[nodiscard]] Currency to_hundredths(const Variant& value);

// The next multiple of `unit`, which is 1 or 0.1 and has `decimals` places, towards plus infinity.
// A text is read without touching its dot: what is not numeric counts as ValPrefix of its text, so
// that a Date counts as its year. Tolerant: what cannot be read counts as 0; next to the upper end
// of Currency, where the multiple above is out of range, the sum wraps, or the result is one unit
// if the nearest multiple is out of range already.
[[nodiscard]] Currency upward(const Variant& value, Integer decimals, Currency unit);

// Two decimals, half to even, after a push of 0.0001 away from zero (0 is pushed down). Read as
// by upward(). In Double the push lifts what is a hair below a half, so that 1.005 gives 1.01; in
// Currency 1.0049 becomes an exact half and goes to the even 1.00.
// biased_double: tolerant. biased_currency: strict, and the push wraps at the ends of Currency;
// fails: 6 for a value beyond Currency, 13 on an object, an error code or a missing argument.
[[nodiscard]] Currency biased_double(const Variant& value);
[[nodiscard]] Currency biased_currency(const Variant& value);

}  // namespace kvarta16::money_rounding
