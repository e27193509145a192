// The value layer: the types and the primitives on which every other room of the library rests.
//
//   ToCurrency(u"1 234,5")              1234.5000, a no-break space being the group separator
//   ValPrefix(u"12.50 zł")              12.5: the dot alone, whatever the locale
//   ToText(Currency::raw(125000))       "12,5"
//   FormatMask(2.675, u"0.00")          "2,68"
//   MakeDate(2024, 0, 15)               2023-12-15
//   RoundHalfEven(Currency::raw(23450), 2)   a Variant that holds 2.3400
//
// The primitives read the settings of locale(); ValPrefix alone does not. A coercion that cannot
// be done is a Failure: 6 out of range, 13 of a kind that has no such value, 94 Null.
#pragma once

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/locale.h>
#include <kvarta16/frame/text.h>
#include <kvarta16/frame/types.h>
#include <kvarta16/frame/variant.h>

namespace kvarta16 {

// ---- Reading numbers ------------------------------------------------------------------------

// Reads a number from the start of a text and ignores the rest; 0 where there is none. Blanks,
// tabs and line feeds are skipped wherever they stand, also between digits. Then: sign, digits,
// "." and digits, E or D with a signed exponent; "&H" and "&O" read hexadecimal and octal
// digits. Beyond the range of Double the result is infinite. Never fails.
[[nodiscard]] KVARTA16_EXPORT Double ValPrefix(StringView text);

// The value to ten-thousandths. Integers and Boolean (-1 or 0) are exact; a Single, Double or
// Date is multiplied by 10000 in Double and taken to the nearest count, a tie to the even one;
// a Decimal and a numeric text go there exactly, with the same tie. Empty is 0.
// Fails: 6 beyond Currency, 13 no numeric text or no number at all, 94 Null.
[[nodiscard]] KVARTA16_EXPORT Currency ToCurrency(const Variant& value);

// The value to whole numbers: to the nearest, a tie to the even one (2.5 is 2, 3.5 is 4).
// Fails: 6 beyond the type, 13, 94.
[[nodiscard]] KVARTA16_EXPORT Integer ToInteger16(const Variant& value);
[[nodiscard]] KVARTA16_EXPORT Long ToLong(const Variant& value);

// The same coercions to the types that have no primitive of their own in the interface.
// to_boolean: any number but 0 is true; text is a truth word of the locale, "True" or "False" in
// any case, or a numeric text. Fails: 6, 13, 94.
[[nodiscard]] KVARTA16_EXPORT Byte to_byte(const Variant& value);
[[nodiscard]] KVARTA16_EXPORT Single to_single(const Variant& value);
[[nodiscard]] KVARTA16_EXPORT Double to_double(const Variant& value);
[[nodiscard]] KVARTA16_EXPORT Boolean to_boolean(const Variant& value);

// Whether a value counts as a number: every number subtype, Boolean and Empty, and a text that
// all of it is a number under the locale: white space, sign before or after or parentheses
// (minus), the currency symbol before the digits or behind a number without decimals, digits
// with group separators, decimal separator and digits, exponent E or D; "&H" or "&O" and digits.
// Not Null, Date, error codes and objects. Never fails.
[[nodiscard]] KVARTA16_EXPORT Boolean IsNumericText(const Variant& value);

// True exactly for Null, also through a reference.
[[nodiscard]] KVARTA16_EXPORT Boolean IsNullValue(const Variant& value);

// ---- Writing text ---------------------------------------------------------------------------

// Empty is "". Whole numbers: their digits. Currency and Decimal: no trailing zeros, the
// locale's separator. Double and Single: 15 and 7 significant digits, no trailing zeros, E
// notation from 1E+15 (1E+07) up and below 0.0001. Date: yyyy-MM-dd, and HH:mm:ss behind a blank
// unless it is midnight. Boolean: the locale's word. Fails: 13 on an object, an error code, a
// missing argument; 94 on Null.
[[nodiscard]] KVARTA16_EXPORT String ToText(const Variant& value);

// The day on which a week begins, for the mask "ww"; week 1 is the week of 1 January.
enum class WeekStart : std::uint8_t { Monday, Sunday };

// Renders a value under a mask.
//   Number masks, built of "0", one "." and other characters that stand for themselves: at least
//   as many integer digits as zeros before the dot, exactly as many decimals as zeros behind it,
//   rounded half away from zero on the decimal digits of the value (a Double at 15 significant
//   digits, a Single as its Double). "0:00" of 130 is "1:30". A numeric text is read first; any
//   other text comes back unchanged.
//   Date masks, with any of the letters of d, m, y, w, q, h, n, s: "d", "dd", "ddd" (three
//   letters), "dddd" (the day's name), "m", "mm" (in any case; minutes right behind hours),
//   "mmm", "mmmm" (the month's name), "yy", "yyyy", "w", "ww", "q", "h", "hh", "n", "nn", "s",
//   "ss"; all else stands for itself. A number is a day number, a text is read by ToDate.
//   The empty mask gives ToText.
// Fails: 13 on a value that cannot be shown under the mask, Null and a number beyond the dates
// under a date mask among them; 6 on a text beyond Double.
[[nodiscard]] KVARTA16_EXPORT String FormatMask(const Variant& value, StringView mask,
                                                WeekStart week_start = WeekStart::Monday);
// The same for money, without the way through a Variant.
[[nodiscard]] KVARTA16_EXPORT String FormatMask(Currency value, StringView mask);

// ---- Dates ----------------------------------------------------------------------------------

// A Date, a number (the day count), or a text: the three numeric orders with "-", "/" or "."
// between the parts (year first where it can be, then day first, then month first), or a month
// by its Polish name, genitive or three letters with separators or blanks; an optional time H:mm
// or H:mm:ss behind a blank. Years 0 to 29 are 2000 to 2029, 30 to 99 are 1930 to 1999.
// Fails: 6 outside the years 100 to 9999, 13 no date, 94 Null.
[[nodiscard]] KVARTA16_EXPORT Date ToDate(const Variant& value);

// Whether a value is a Date or a text that ToDate reads. Numbers are no dates. Never fails.
[[nodiscard]] KVARTA16_EXPORT Boolean IsDateValue(const Variant& value);

// The date of a year, month and day. Years 0 to 29 are 2000 to 2029, 30 to 99 are 1930 to 1999;
// then a month outside 1 to 12 rolls over into other years, then a day outside the month into
// other months. Fails: 5 if the year, with the months rolled over, is outside 100 to 9999; 6 if
// the days then leave these years.
[[nodiscard]] KVARTA16_EXPORT Date MakeDate(Integer year, Integer month, Integer day);

// ---- Rounding -------------------------------------------------------------------------------

// Rounds to `decimals` places, exact halves to the even digit, and keeps the subtype. A Single,
// Double or Date is multiplied by the power of ten, split and divided in Double, so that 1.005 at
// two decimals gives 1.00; Currency and Decimal are exact. Whole numbers, Boolean, Empty and Null
// come back as they are; a numeric text is rounded as Double and comes back as text.
// Fails: 5 negative decimals, 6 a Currency that leaves its range, 13 no number.
[[nodiscard]] KVARTA16_EXPORT Variant RoundHalfEven(const Variant& value, Integer decimals);

// The same for one type, without the way through a Variant.
[[nodiscard]] KVARTA16_EXPORT Double round_half_even(Double value, Integer decimals);
[[nodiscard]] KVARTA16_EXPORT Currency round_half_even(Currency value, Integer decimals);
[[nodiscard]] KVARTA16_EXPORT Decimal round_half_even(Decimal value, Integer decimals);

}  // namespace kvarta16
