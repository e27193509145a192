// Small conversions that screens and reports share: dates as text, truth values, codes of hyphened
// segments, hours, breaks of long texts.
//
//   const aproste simple;
//   simple.Flex2DateStr(u"2024-05-17")        "17-05-2024"
//   simple.FlexStr2Date(u"abc")               day 0
//   Double hours = 7.75;
//   simple.HLiczToGodz(hours)                 "7:45"
//   String code = u"- 12 -";
//   simple.TrimMinus(code)                    "12"
//
// The sisters differ in small ways that callers rely on. The members that write to an argument
// take it by reference, and their comments tell what it holds afterwards; after a failure it holds
// what had been written until then.
//
// Dates. A flex text is a date as it stands in a grid's cell, "yyyy-MM-dd". What is no date has
// three faces: read it is day 0 (1899-12-30), or today where that is asked for; shown it is day 1
// (1899-12-31); and any day of 1990 is a month that nobody has chosen. A mask is one of FormatMask,
// here with Sunday as the first day of the week.
//
// K code. Up to four segments joined by hyphens, "1234-56-78-90". Blanks around a segment and
// spare hyphens mean nothing. The first segment has four characters at the most; the fourth takes
// all the rest, hyphens included.
//
// Hours. "7:45" is 7.75 hours, minutes having two digits; the hundredth form of it is "7:75".
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>
#include <kvarta16/platform/ado.h>

namespace kvarta16 {

class KVARTA16_EXPORT aproste {
  public:
    // ---- Dates and their texts (aproste_dates.cpp) ------------------------------------------

    // MakeDate of the low 16 bits of each number: 31 February is a day of March, 65537 is 1. If
    // there is no such date, a year over 9999 above all, the last day of the present month with
    // `IFFailSetNow`, otherwise the last day of the month asked for, which fails in its turn if
    // that month is none. Strict but for that: 5.
    [[nodiscard]] Date DateSerialSpr(Long Rok, Long Miesiąc, Long Dzień,
                                     Boolean IFFailSetNow = {}) const;

    // "Cut off the hours": the day without its time, any number cut towards zero. Strict, and
    // never fails.
    [[nodiscard]] Date ObetnijGodz(Date da) const;

    // The day of a text, at midnight; day 0 for a text that is no date. Strict, and never fails.
    [[nodiscard]] Date Str2Date(StringView s) const;

    // A Date in spite of the name: `d` at midnight. Strict: 13 outside the years 100 to 9999.
    [[nodiscard]] Date Date2Str(Date d) const;

    // As Str2Date, but today for a text that is no date. Strict.
    [[nodiscard]] Date FlexStr2DateNOW(StringView s) const;

    // The same as Str2Date.
    [[nodiscard]] Date FlexStr2Date(StringView s) const;

    // FormatSDS from "yyyy-MM-dd": a flex text as it is shown. A `MaskaDocelowa` that is there and
    // empty becomes "yyyy-MM-dd" in the caller's variable. Strict: 13.
    [[nodiscard]] String Flex2DateStr(StringView s,
                                      String& MaskaDocelowa = left_out(u"dd-MM-yyyy")) const;

    // The date of a text: rendered under the source mask and read back, so that the mask decides
    // what survives ("yyyy-MM-dd" drops the time). A text that is no date is the present moment in
    // the same way with `SetNow`, otherwise day 0. Strict: 13 under a mask that renders what cannot
    // be read, "yyyyMMdd" say.
    [[nodiscard]] Date FormatSD(StringView da, StringView MaskaDaŻrółowa,
                                Boolean SetNow = {}) const;

    // FormatSD of a text, rendered under `MaskaDocelowa`, which first becomes the source mask in
    // the caller's variable if it is empty. A text that is no date renders as the number 1:
    // "31-12-1899", and plain "1" with both masks empty. Strict: 13.
    [[nodiscard]] String FormatSDS(StringView da, StringView MaskaDaŻrółowa,
                                   String& MaskaDocelowa = left_out(u"")) const;

    // The date under a mask; day 1 as the number 1, which shows under the empty mask alone.
    // Strict: 13 outside the years 100 to 9999.
    [[nodiscard]] String FormatDS(Date da, StringView MaskaDocelowa) const;

    // "Name of the month": "maj 2024", or "Miesiąc nie wybrany" for every day of 1990. Strict: 5
    // outside the years 100 to 9999.
    [[nodiscard]] String NazwaMiesiąca(Date MiesiącKPIR) const;

    // ---- A pause, bounds (aproste.cpp) ------------------------------------------------------

    // Blocks the thread for that many seconds, by one sleep. The milliseconds wrap in 32 bits.
    // Strict.
    void CzekajSek(Long Sekundy) const;

    // `x` within bounds; with `min` above `max` what is below `min` is `min`, anything else that is
    // above `max` is `max`. Strict, and never fails.
    [[nodiscard]] Long MinMax(Long x, Long min, Long max) const;
    [[nodiscard]] Integer MinMaxi(Integer x, Integer min, Integer max) const;

    // The greater of the two. Tolerant; no step can fail.
    [[nodiscard]] Long max(Long x, Long y) const;
    [[nodiscard]] Integer MAXi(Integer x, Integer y) const;

    // ---- Truth values (aproste_truth.cpp) ---------------------------------------------------

    // "-1" or "0". Tolerant; no step can fail.
    [[nodiscard]] String TrueFalseStr(Boolean a) const;

    // 1 or 0; 0 for Null. A value that is no truth value, such as the text "abc", "" or an object,
    // is 1. Tolerant.
    [[nodiscard]] Integer AnyBool2Int(const Variant& B) const;

    [[nodiscard]] String Bool2Str(Boolean B) const;    // "1" or "0"; strict, never fails
    [[nodiscard]] String Check2Str(Integer CH) const;  // "1" for 1 alone, or "0"; never fails
    [[nodiscard]] Integer Bool2Int(Boolean CH) const;  // 1 or 0; strict, never fails

    // False for "NIE", "FAŁSZ" and "FALSE" in any case and for exactly "0"; true for any other
    // text, "" among them. Strict, and never fails.
    [[nodiscard]] Boolean Str2Bool(StringView StrA) const;

    // ---- Texts (aproste.cpp) ----------------------------------------------------------------

    // "Exchange": swaps the two. Tolerant; no step can fail.
    void Zamień(String& aas, String& bbs) const;

    // The text without carriage returns and line feeds. Strict, and never fails.
    [[nodiscard]] String Bez_1310(StringView s) const;

    // The text with a blank in place of each line end, without blanks at its own ends. A carriage
    // return with all the line feeds behind it is one line end; a line feed elsewhere is one by
    // itself. Strict, and never fails.
    [[nodiscard]] String Bez_1310_spc(StringView s) const;

    // "File name with ____": the text with its last character replaced, "a.mdb" is "a.md_"; "" is
    // "". Strict, and never fails.
    [[nodiscard]] String Nazwa_pliu_z____(StringView s) const;

    // ---- Breaks of long texts (aproste_line_breaks.cpp) -------------------------------------

    // "Cut": how many characters of `lanc` from position `pocz` (from 1) to put on a line of `dl`
    // characters, so that it ends at a break: all that remains if it is shorter than `dl`; up to
    // the return of the last carriage return and line feed; up to the last blank or one of
    // - _ . , & which stays on the line; or `dl`. What is as long as `dl` is broken as well.
    // A `dl` below 1 becomes 1 in the caller's variable. The numbers wrap in 32 bits. Strict: 5
    // where a search runs to a position below 1.
    [[nodiscard]] Long Obcinaj(StringView lanc, Long& dl, Long pocz) const;

    // "Cut up to the comma": the same with the comma as the only break character.
    [[nodiscard]] Long obcinaj_do_Przecinka(StringView lanc, Long& dl, Long pocz) const;

    // The same with the blank as the only break character and without a look for line ends. From
    // `pocz` 1 a text shorter than `dl` gives `dl`; Null gives `dl`. Strict: 5; 13 for a value that
    // has no text.
    [[nodiscard]] Long obcinaj_v(const Variant& lanc, Long& dl, Long pocz) const;

    // ---- K codes (aproste_k_code.cpp) -------------------------------------------------------

    // "Trim the minus": takes the blanks and hyphens at both ends off `a`, and gives `a`, a text.
    // Tolerant; no step can fail.
    Variant TrimMinus(String& a) const;

    // Takes a code apart. `K1` is cut to four characters, what it loses is gone: "12345-6" is
    // "1234" and "6". Segments that are not there come back "". Tolerant; no step can fail.
    void Make_K1234(StringView k, String& K1, String& k2, String& k3, String& k4) const;

    // Joins the segments, each trimmed as by TrimMinus in its variable too; empty ones are left
    // out with their hyphen, but "" and "5" give "-5". The result is a text. Tolerant; no step can
    // fail.
    Variant Make_1234K(String& K1, String& k2, String& k3, String& k4) const;

    // ---- Truth values as numbers (aproste_truth.cpp) ----------------------------------------

    [[nodiscard]] Integer Chk2Bool(Integer c) const;      // -1 or 0; strict, never fails
    [[nodiscard]] Integer Bool2INTBool(Boolean c) const;  // -1 or 0; strict, never fails

    // ---- Hours (aproste_hours.cpp) ----------------------------------------------------------

    // "Hours, number to time": 7.75 is "7:45" and 7.995 is "8:00". A negative number becomes
    // positive in the caller's variable; its text has the "-". Strict: 6 for no finite number.
    [[nodiscard]] String HLiczToGodz(Double& LICZ) const;

    // The hundredth form. It carries nothing and knows no sign: 7.999 is "7:100", -1.5 is
    // "-1:0-50". Strict: 6 for no finite number.
    [[nodiscard]] String HLiczToStr(Double LICZ) const;

    // "Hours, time to number": "1:30" is 1.5, "-0:30" is -0.5, "1:90" is 2.5. Blanks, "" and "0"
    // become "0:00" in the caller's variable. Without a colon it is whole hours: what stands behind
    // a comma is dropped, "1,75" is 1. A "-" counts for the minutes only as the first character, so
    // that " -1:30" is -0.5. Strict, and never fails.
    [[nodiscard]] Double HGodzToLicz(String& LICZ) const;

    // The same for a time clock, which always writes a colon. Strict: 5 without one.
    [[nodiscard]] Single HGodzToLiczRCP(String& LICZ) const;

    // ---- Recordsets (aproste.cpp) -----------------------------------------------------------

    // Closes a recordset and empties the caller's variable, whatever the closing comes to: also
    // for Nothing and for one that is closed. Guarded.
    void DbCloseSEL(std::shared_ptr<ado::Recordset>& Pr) const;

  private:
    // A condition with its truth words after "=" as numbers: " = PRAWDA" is " =-1". Exact case,
    // and at most one blank behind the "=". Strict, and never fails.
    [[nodiscard]] String Bool2Sql(StringView s) const;

    // The whole number in a value's text: a numeric text, or else the number at its front, to the
    // nearest, a tie to the even one. A Double counts with the 15 digits of its text; nines at
    // their end that have a 5 behind them are carried: 1.4999999999999947 is one and a half. 0
    // for Null, for "" and beyond Long. Tolerant.
    [[nodiscard]] Long AnyToLong(const Variant& value) const;

    // Stands for an argument that the caller leaves out: it is written as any other, and gone when
    // the call has ended.
    [[nodiscard]] static String& left_out(String&& argument) { return argument; }
};

template <>
struct ClassTable<aproste> {
    static constexpr ClassHeader header{u"aproste", Instancing::Global,
                                        "B0CD1AC5-3C94-431F-A082-BEFB495696CB",
                                        "30FCABA2-5DB2-4997-9FF5-09DDD3C10681"};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&aproste::DateSerialSpr>(u"DateSerialSpr", by_reference(u"Rok"),
                                        by_reference(u"Miesiąc"), by_reference(u"Dzień"),
                                        optional(by_reference(u"IFFailSetNow"))),
        method<&aproste::ObetnijGodz>(u"ObetnijGodz", by_reference(u"da")),
        method<&aproste::Str2Date>(u"Str2Date", by_reference(u"s")),
        method<&aproste::Date2Str>(u"Date2Str", by_reference(u"d")),
        method<&aproste::FlexStr2DateNOW>(u"FlexStr2DateNOW", by_reference(u"s")),
        method<&aproste::FlexStr2Date>(u"FlexStr2Date", by_reference(u"s")),
        method<&aproste::Flex2DateStr>(
            u"Flex2DateStr", by_reference(u"s"),
            optional(by_reference(u"MaskaDocelowa"), StringView(u"dd-MM-yyyy"))),
        method<&aproste::FormatSD>(u"FormatSD", by_reference(u"da"),
                                   by_reference(u"MaskaDaŻrółowa"),
                                   optional(by_reference(u"SetNow"))),
        method<&aproste::FormatSDS>(u"FormatSDS", by_reference(u"da"),
                                    by_reference(u"MaskaDaŻrółowa"),
                                    optional(by_reference(u"MaskaDocelowa"))),
        method<&aproste::FormatDS>(u"FormatDS", by_reference(u"da"),
                                   by_reference(u"MaskaDocelowa")),
        method<&aproste::NazwaMiesiąca>(u"NazwaMiesiąca", by_reference(u"MiesiącKPIR")),
        method<&aproste::CzekajSek>(u"CzekajSek", by_value(u"Sekundy")),
        method<&aproste::MinMax>(u"MinMax", by_reference(u"x"), by_reference(u"min"),
                                 by_reference(u"max")),
        method<&aproste::MinMaxi>(u"MinMaxi", by_reference(u"x"), by_reference(u"min"),
                                  by_reference(u"max")),
        method<&aproste::max>(u"max", by_reference(u"x"), by_reference(u"y")),
        method<&aproste::MAXi>(u"MAXi", by_reference(u"x"), by_reference(u"y")),
        method<&aproste::TrueFalseStr>(u"TrueFalseStr", by_reference(u"a")),
        method<&aproste::AnyBool2Int>(u"AnyBool2Int", by_value(u"B")),
        method<&aproste::Bool2Str>(u"Bool2Str", by_value(u"B")),
        method<&aproste::Check2Str>(u"Check2Str", by_reference(u"CH")),
        method<&aproste::Bool2Int>(u"Bool2Int", by_reference(u"CH")),
        method<&aproste::Str2Bool>(u"Str2Bool", by_reference(u"StrA")),
        method<&aproste::Zamień>(u"Zamień", by_reference(u"aas"), by_reference(u"bbs")),
        method<&aproste::Bez_1310>(u"Bez_1310", by_reference(u"s")),
        method<&aproste::Bez_1310_spc>(u"Bez_1310_spc", by_reference(u"s")),
        method<&aproste::Nazwa_pliu_z____>(u"Nazwa_pliu_z____", by_reference(u"s")),
        method<&aproste::Obcinaj>(u"Obcinaj", by_reference(u"lanc"), by_reference(u"dl"),
                                  by_reference(u"pocz")),
        method<&aproste::obcinaj_do_Przecinka>(u"obcinaj_do_Przecinka", by_reference(u"lanc"),
                                               by_reference(u"dl"), by_reference(u"pocz")),
        method<&aproste::obcinaj_v>(u"obcinaj_v", by_reference(u"lanc"), by_reference(u"dl"),
                                    by_reference(u"pocz")),
        method<&aproste::TrimMinus>(u"TrimMinus", by_reference(u"a")),
        method<&aproste::Make_K1234>(u"Make_K1234", by_value(u"k"), by_reference(u"K1"),
                                     by_reference(u"k2"), by_reference(u"k3"), by_reference(u"k4")),
        method<&aproste::Make_1234K>(u"Make_1234K", by_reference(u"K1"), by_reference(u"k2"),
                                     by_reference(u"k3"), by_reference(u"k4")),
        method<&aproste::Chk2Bool>(u"Chk2Bool", by_reference(u"c")),
        method<&aproste::Bool2INTBool>(u"Bool2INTBool", by_reference(u"c")),
        method<&aproste::HLiczToGodz>(u"HLiczToGodz", by_reference(u"LICZ")),
        method<&aproste::HLiczToStr>(u"HLiczToStr", by_reference(u"LICZ")),
        method<&aproste::HGodzToLicz>(u"HGodzToLicz", by_reference(u"LICZ")),
        method<&aproste::HGodzToLiczRCP>(u"HGodzToLiczRCP", by_reference(u"LICZ")),
        method<&aproste::DbCloseSEL>(u"DbCloseSEL", by_reference(u"Pr")),
    });
};

}  // namespace kvarta16
