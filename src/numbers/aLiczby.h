// Turns whatever a database field or a text box holds into money and into text for a screen.
//
//   numbers.VarR2Si(u"12,345")             12.3500
//   numbers.VarR2Str(Variant::null())      "0,00"
//   numbers.VarR2Str(0.0, u"-")            "-"
//   numbers.VarLong(u"12abc")              12
//
// Nothing that a field can hold is an error here: Null, Empty and a missing argument are 0, and a
// text counts with the digits at its front. The names tell what a member does: Var takes a
// Variant; R0 to R4 are the decimals; G rounds upward; Si gives a Currency and Str a text; MM
// clamps to a minimum and a maximum; A aligns for a column.
//
// Money is rounded half away from zero, but the way there depends on the subtype of the value and
// the ways differ in the last place (money_rounding.h tells how). Documents already issued carry
// those last places. Text is read under locale(), ValPrefix alone is not.
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

class KVARTA16_EXPORT aLiczby {
  public:
    // Text for a field `x` characters wide: upper case, cut at the right, blanks at the left.
    // Null is blanks. Tolerant: a value without a text counts as Null; "" for a negative `x`.
    [[nodiscard]] String NullXUStr(const Variant& ds, Integer x) const;

    // Rounded towards plus infinity to whole numbers or to one decimal: -1.2 is -1. A Date counts
    // as its year, and "12.34 zł" as 12.34, which the members below read as 12. Tolerant: 0 for
    // what cannot be read or is beyond Currency.
    [[nodiscard]] Currency VarR0GSi(const Variant& ds) const;
    [[nodiscard]] Currency VarR1GSi(const Variant& ds) const;

    // Rounded to the decimals of the name. Halves go away from zero, but a text gets the added
    // unit whatever its sign (VarR0Si of "-2,5" is -1), and with two decimals a Currency, Decimal
    // or text is rounded in Double. A Boolean is -1 or 0. Strict: 6 beyond Currency; under a
    // locale whose decimal separator is a dot, 13 for a text with decimals.
    [[nodiscard]] Currency VarR3Si(const Variant& ds) const;
    [[nodiscard]] Currency VarR2Si(const Variant& ds) const;

    // Two decimals in Double, after a push of 0.0001 away from zero: 1.005 is 1.01. Reads its
    // argument as VarR0GSi. Tolerant: 0 beyond Currency.
    [[nodiscard]] Currency VarR2Si1(const Variant& ds) const;

    [[nodiscard]] Currency VarR4Si(const Variant& ds) const;  // as VarR3Si

    // The value by its text, to the nearest whole number, a tie to the even one. A Date is its
    // year and a Boolean 0, for that is how their texts begin. Tolerant: 0 beyond Long and for
    // what has no text.
    [[nodiscard]] Long VarLong(const Variant& ds) const;

    // VarR2Si within `min` and `max`, as text with two decimals. A bound left out is 0 and holds
    // if the other one is given: with `min` alone every positive amount is "0,00". Tolerant.
    [[nodiscard]] String VarMMR2Str(const Variant& ds, Currency min = {}, Currency max = {}) const;

    // VarR2Si as text with two decimals, or `Zerostr` for 0 if it is given. Tolerant: a value
    // beyond Currency counts as 0.
    [[nodiscard]] String VarR2Str(const Variant& ds, StringView Zerostr = {}) const;

    [[nodiscard]] Currency VarR1Si(const Variant& ds) const;  // as VarR3Si
    [[nodiscard]] Currency VarR0Si(const Variant& ds) const;  // as VarR3Si

    // The same as text for VarR1Si, VarR1GSi, VarR4Si and VarR3Si.
    [[nodiscard]] String VarR1Str(const Variant& ds, StringView Zerostr = {}) const;
    [[nodiscard]] String VarR1GStr(const Variant& ds, StringView Zerostr = {}) const;
    [[nodiscard]] String VarR4Str(const Variant& ds) const;
    [[nodiscard]] String VarR3Str(const Variant& ds, StringView Zerostr = {}) const;

    // VarR2Si and VarR3Si as text without trailing zeros, with blanks behind it so that the
    // commas of a column stand below each other: "12" and three blanks, "12,5" and one, "12,55".
    // Strict: 6 beyond Currency.
    [[nodiscard]] String VarR2StrA(const Variant& ds) const;
    [[nodiscard]] String VarR3StrA(const Variant& ds) const;

    // As VarMMR2Str with one decimal.
    [[nodiscard]] String VarMMR1Str(const Variant& ds, Currency min = {}, Currency max = {}) const;

    [[nodiscard]] String VarR0Str(const Variant& ds) const;  // as VarR4Str

    // No longer used, like the other members that say so: shows a box that tells it, looks at no
    // argument, and returns "" or 0. Strict, and never fails.
    [[nodiscard]] String Var2Val18Str(const Variant& ds) const;

    // A number as it is; Null as Integer 0; anything else as ValPrefix of its text, a Double.
    // Tolerant: Empty for what has no text.
    [[nodiscard]] Variant VarValVar(const Variant& ds) const;

    // ValPrefix of a numeric text, a Double, otherwise Integer 0. The test knows the comma and
    // ValPrefix does not: "12,5" is 12. Tolerant.
    [[nodiscard]] Variant StrValVar(StringView ds) const;

    // A number, or a numeric text, as it is; anything else as Integer 0. Tolerant.
    [[nodiscard]] Variant VarVar(const Variant& ds) const;

    // Each amount rounded by VarR2Si or VarR3Si and then added, so that "1,005" and "1,005" are
    // "2,00". The sum wraps. Strict: 6 for an amount beyond Currency.
    [[nodiscard]] String SumStrValR2Str(StringView ds1, StringView ds2) const;
    [[nodiscard]] String SumStrValR3Str(StringView ds1, StringView ds2, StringView ds3 = {}) const;
    [[nodiscard]] Currency SumStrValR2Si(const Variant& ds1, const Variant& ds2) const;
    [[nodiscard]] Currency SumStrValR3Si(StringView ds1, StringView ds2) const;

    // The whole part, towards zero, as text. A text counts as ValPrefix of it; Null and what is
    // no number are "0". Strict: 6 for a text beyond Double.
    [[nodiscard]] String VarObcinajStr(const Variant& ds) const;

    // No longer used: see Var2Val18Str.
    [[nodiscard]] String VarValR0Str(const Variant& ds) const;
    [[nodiscard]] String VarR0TnijStr(const Variant& ds) const;
    [[nodiscard]] String VarValRMStr(const Variant& ds, StringView Maska) const;
    [[nodiscard]] Currency Zaokr(const Variant& ds, Integer il = 0) const;

    // VarR2Si without its sign. Tolerant: 0 beyond Currency.
    [[nodiscard]] Currency NoSign(StringView a) const;

    // "." for 0, otherwise VarR2Str, so with the locale's separator in spite of the name.
    // Tolerant: "." beyond Currency.
    [[nodiscard]] String Num2Dot(StringView a) const;

    // "Compute the expression": the value of a short arithmetic text, with four decimals, or the
    // text as it came if it is none that can be computed. It begins with "=" and a digit, or with
    // "-" and a digit, with or without "=" before it; "1+2" is none. The operators + - * / ^ and
    // \, the quotient of whole numbers, apply strictly from left to right, so that "=2+3*4" is
    // "20,0000"; each result is rounded to Currency. What stands between them is an operand and
    // must be numeric under locale(): "=2*-3" is none. In parentheses it counts without the
    // minus that they mean elsewhere: "=1+(2)" is "3,0000". `st` loses the blanks at both ends, and
    // then a leading "=", also if it is not computed. Guarded: every failure gives the text as it
    // came.
    String PoliczWyrażenie(String& st) const;

    // As VarR2Si1 in Currency: 1.0049 is 1.00 and 1.0149 is 1.02, exact halves going to the even
    // digit. Strict: 6 beyond Currency; 13 on an object, an error code or a missing argument.
    [[nodiscard]] Currency VarR2SiPL(const Variant& ds) const;
};

template <>
struct ClassTable<aLiczby> {
    static constexpr ClassHeader header{u"aLiczby", Instancing::Global,
                                        "88E68FAA-AFFF-4D6A-891F-6EA5C7BB923C",
                                        "97EF1FC7-7732-4694-8E8F-9DE7692985D4"};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&aLiczby::NullXUStr>(u"NullXUStr", by_value(u"ds"), by_value(u"x")),
        method<&aLiczby::VarR0GSi>(u"VarR0GSi", by_value(u"ds")),
        method<&aLiczby::VarR1GSi>(u"VarR1GSi", by_value(u"ds")),
        method<&aLiczby::VarR3Si>(u"VarR3Si", by_value(u"ds")),
        method<&aLiczby::VarR2Si>(u"VarR2Si", by_value(u"ds")),
        method<&aLiczby::VarR2Si1>(u"VarR2Si1", by_value(u"ds")),
        method<&aLiczby::VarR4Si>(u"VarR4Si", by_value(u"ds")),
        method<&aLiczby::VarLong>(u"VarLong", by_value(u"ds")),
        method<&aLiczby::VarMMR2Str>(u"VarMMR2Str", by_value(u"ds"), optional(by_value(u"min")),
                                     optional(by_value(u"max"))),
        method<&aLiczby::VarR2Str>(u"VarR2Str", by_value(u"ds"),
                                   optional(by_reference(u"Zerostr"))),
        method<&aLiczby::VarR1Si>(u"VarR1Si", by_value(u"ds")),
        method<&aLiczby::VarR0Si>(u"VarR0Si", by_value(u"ds")),
        method<&aLiczby::VarR1Str>(u"VarR1Str", by_value(u"ds"),
                                   optional(by_reference(u"Zerostr"))),
        method<&aLiczby::VarR1GStr>(u"VarR1GStr", by_value(u"ds"),
                                    optional(by_reference(u"Zerostr"))),
        method<&aLiczby::VarR4Str>(u"VarR4Str", by_value(u"ds")),
        method<&aLiczby::VarR3Str>(u"VarR3Str", by_value(u"ds"),
                                   optional(by_reference(u"Zerostr"))),
        method<&aLiczby::VarR2StrA>(u"VarR2StrA", by_value(u"ds")),
        method<&aLiczby::VarR3StrA>(u"VarR3StrA", by_value(u"ds")),
        method<&aLiczby::VarMMR1Str>(u"VarMMR1Str", by_value(u"ds"), optional(by_value(u"min")),
                                     optional(by_value(u"max"))),
        method<&aLiczby::VarR0Str>(u"VarR0Str", by_value(u"ds")),
        method<&aLiczby::Var2Val18Str>(u"Var2Val18Str", by_value(u"ds")),
        method<&aLiczby::VarValVar>(u"VarValVar", by_value(u"ds")),
        method<&aLiczby::StrValVar>(u"StrValVar", by_value(u"ds")),
        method<&aLiczby::VarVar>(u"VarVar", by_value(u"ds")),
        method<&aLiczby::SumStrValR2Str>(u"SumStrValR2Str", by_value(u"ds1"), by_value(u"ds2")),
        method<&aLiczby::SumStrValR3Str>(u"SumStrValR3Str", by_value(u"ds1"), by_value(u"ds2"),
                                         optional(by_value(u"ds3"))),
        method<&aLiczby::SumStrValR2Si>(u"SumStrValR2Si", by_value(u"ds1"), by_value(u"ds2")),
        method<&aLiczby::SumStrValR3Si>(u"SumStrValR3Si", by_value(u"ds1"), by_value(u"ds2")),
        method<&aLiczby::VarObcinajStr>(u"VarObcinajStr", by_value(u"ds")),
        method<&aLiczby::VarValR0Str>(u"VarValR0Str", by_value(u"ds")),
        method<&aLiczby::VarR0TnijStr>(u"VarR0TnijStr", by_value(u"ds")),
        method<&aLiczby::VarValRMStr>(u"VarValRMStr", by_value(u"ds"), by_value(u"Maska")),
        method<&aLiczby::Zaokr>(u"Zaokr", by_value(u"ds"), optional(by_value(u"il"))),
        method<&aLiczby::NoSign>(u"NoSign", by_reference(u"a")),
        method<&aLiczby::Num2Dot>(u"Num2Dot", by_reference(u"a")),
        method<&aLiczby::PoliczWyrażenie>(u"PoliczWyrażenie", by_reference(u"st")),
        method<&aLiczby::VarR2SiPL>(u"VarR2SiPL", by_reference(u"ds")),
    });
};

}  // namespace kvarta16
