// Cleaning of text: Null made harmless, quotes replaced or taken out, texts cut and padded to a
// column, Polish letters turned into other character sets, document numbers taken apart.
//
//   const aChar text;
//   text.NullStr(Variant::null())                  ""
//   text.A_DOK(Variant(u"FV\\12/2009"))            "12"
//   String name = u"Kowal";
//   text.MidUZ(name, 1, 8)                         "Kowal   "
//
// The worth of these methods lies in their edges: what comes back for Null, for "", for a start
// past the end. Sisters that differ in an edge differ on purpose, and callers are written around
// it. Positions are 1-based; lengths are in UTF-16 code units.
//
// Some methods walk the text with a 16-bit counter. Their limit is the length cut to 16 bits: all
// of a text up to 32767 characters, nothing of 32768 to 65536, one character of 65537, and so on.
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

class KVARTA16_EXPORT aChar {
  public:
    // The caller's own, "" at the start. The library neither reads nor writes it.
    String c_aaa;

    // ---- Text of any value ------------------------------------------------------------------

    // The text of `ds`; "" for Null and for a value that has no text (an object, an error code).
    // Tolerant.
    [[nodiscard]] String NullStr(const Variant& ds) const;

    // The text of `ds`, with `leng` not 0 its first `leng` characters, of a number as of a text:
    // 123456 with 3 is "123". "" for Null, for a value that has no text, and for a negative
    // `leng`. Tolerant.
    [[nodiscard]] String Str2Str(const Variant& ds, Integer leng = 0) const;

    // The text of `ds`, but one blank for Null, Empty and "". A value that has no text is none
    // of these and gives "". Tolerant.
    [[nodiscard]] String NullSPCStr(const Variant& ds) const;

    // ---- Quotes, commas, control characters -------------------------------------------------

    // Overwrites `z` in `a`, found in any case, by `doo`; no replacement: the length of `a` stays.
    // A `doo` shorter than `z` is filled up with blanks, at most five, behind which the tail of
    // `z` stays; a longer one goes over what follows, up to the end of `a`. The result is `a`, a
    // text. Tolerant; no step can fail.
    // Callers do not pass a `doo` that contains `z` in any case: one that begins with it brings it
    // back in every round, and the call does not return; one that has it further inside writes on
    // to the end of `a`. Nor does it return where `z` is "" and `a` is not.
    Variant Replace2(String& a, StringView z, StringView doo) const;

    // `a` with each apostrophe turned into a double quote. Tolerant; no step can fail.
    [[nodiscard]] String apostrof2(StringView a) const;

    // Takes all apostrophes, then all double quotes out of `a`, and gives `a`. Tolerant; no step
    // can fail. Does not return for a text that begins with one of them.
    String apostrof3(String& a) const;

    // "American quotation marks": `s` with each double quote turned into an apostrophe, as far as
    // a 16-bit counter reaches; the rest is left as it is. Tolerant; no step can fail.
    [[nodiscard]] String Cudzysłów_Ameryk(StringView s) const;

    // "Without quotation marks": `s` with each double quote and apostrophe turned into a blank, as
    // far as a 16-bit counter reaches; the rest is left as it is. Tolerant; no step can fail.
    [[nodiscard]] String Bez_Cudzysłowów(StringView s) const;

    // "Comma to dot": `s` with its first comma, and only that, turned into a dot. "" gives "0".
    // Tolerant; no step can fail.
    [[nodiscard]] String Przecinek_Kropka(StringView s) const;

    // `s` with carriage return, line feed, tab and code 0 turned into a blank each. What a 16-bit
    // counter does not reach is dropped, so that a text of 32768 characters gives "". Tolerant; no
    // step can fail.
    [[nodiscard]] String Cut1310Chars(StringView s) const;

    // ---- Columns ----------------------------------------------------------------------------

    // The text from `Start`, put at the left of a column `l` wide: as many as `l` blanks stand
    // behind `s` before it is cut, so that a `Start` past its end loses one character for each
    // position. With `l` 0 the text from `Start` to its end.
    // `s` itself becomes Cut1310Chars of it, also if the call fails. Strict: 5 for a `Start`
    // below 1 and for a negative `l`.
    [[nodiscard]] String MidUZ(String& s, Long Start, Long l = 0) const;

    // The text put at the right of a column `l` wide, and cut from `Start` on; a text of `l`
    // characters or more is cut alone. With `l` 0 the text from `Start` to its end. The result is
    // a text.
    // `s` itself becomes Cut1310Chars of it and, with `l` not 0, loses the blanks at both ends,
    // also if the call fails. Strict: 5 for a `Start` below 1 and for a negative `l`.
    [[nodiscard]] Variant UzMid(String& s, Long Start, Long l = 0) const;

    // ---- Polish code pages ------------------------------------------------------------------

    // These put another character in the place of each of the eighteen Polish letters
    // "ąćęłńóśźżĄĆĘŁŃÓŚŹŻ" or, KonwertNaWin, the other way round; every other character stays, and
    // no length changes. A code n of another set stands in the text as the character that the byte
    // n is in Windows-1250, or the control character n where that has none: written out under
    // Windows-1250 the text has the bytes of the other set. Tolerant; "" gives "". All but
    // Konwert_lan leave as it is what a 16-bit counter does not reach.

    // `Slowo` in a set of the caller's: the k-th character of the text
    // `Set_Strona_kodowa_wydruku_łańcuch` ("character set of the printout, text") for the k-th of
    // the eighteen letters. A letter that the set does not reach stays, all of them for a set that
    // has no text, such as Null.
    [[nodiscard]] String KonwertLitery(StringView Slowo,
                                       const Variant& Set_Strona_kodowa_wydruku_łańcuch) const;

    // `Slowo` in Mazovia.
    [[nodiscard]] String KonwertNaMaz(StringView Slowo) const;

    // `Slowo` in the form that the program Płatnik reads: ISO 8859-2, with the code of the capital
    // for both cases.
    [[nodiscard]] String KonwertPlatnik(StringView Slowo) const;

    // Letters for a `Slowo` in code page 852. Two of its codes stand in a text as Ą and Ź, so that
    // a text that has its letters already does not come through unharmed: Ą becomes ą, Ź becomes Ć.
    [[nodiscard]] String KonwertNaWin(StringView Slowo) const;

    // `Slowo` in plain ASCII: "Zażółć" is "Zazolc".
    [[nodiscard]] String konwertNaBPL(StringView Slowo) const;

    // `Slowo` in code page 852 but for two letters: ą gets the code of Ą, and Ć that of Ź. A text
    // that as a whole is a number comes back as it is, "5 zł" with its letter.
    [[nodiscard]] String Konwert_lan(StringView Slowo) const;

    // ---- Document numbers -------------------------------------------------------------------

    // The A part of a document number "prefix\A/B": what stands between the first backslash and
    // the first slash, without blanks on its left; those on its right stay. A number without the
    // slash is taken whole, one without the backslash from its start, then trimmed on its left
    // only where there is a slash. Strict: 94 for Null, 13 for a value that has no text.
    [[nodiscard]] String A_DOK(const Variant& aas) const;

    // The B part: what stands behind the first slash, without blanks on its left; "" without a
    // slash. Strict: 94 for Null, 13 for a value that has no text.
    [[nodiscard]] String B_DOK(const Variant& aas) const;

    // ---- Both ends --------------------------------------------------------------------------

    // "Cut quotation marks": `a` without the double quotes at both ends. Blanks stay and shield
    // the quotes behind them. Strict; nothing can fail.
    [[nodiscard]] String CutCudzysłowy(StringView a) const;

    // "Text to the right": `s` at the right of a column `MAXi` wide. Of a longer text the left
    // part survives. Strict: 5 for a negative `MAXi`.
    [[nodiscard]] String StrDoPrawej(StringView s, Long MAXi) const;
};

template <>
struct ClassTable<aChar> {
    static constexpr ClassHeader header{u"aChar", Instancing::Global,
                                        "4470CE82-AAD0-48FB-BAC3-37F6B279E0F9",
                                        "C35A910A-69BB-4D37-BB5A-3EBE61941A6A"};
    static constexpr auto members = std::to_array<MemberInfo>({
        property_get<&aChar::c_aaa>(u"c_aaa"),
        property_let<&aChar::c_aaa>(u"c_aaa"),
        method<&aChar::NullStr>(u"NullStr", by_value(u"ds")),
        method<&aChar::Str2Str>(u"Str2Str", by_value(u"ds"), optional(by_reference(u"leng"))),
        method<&aChar::NullSPCStr>(u"NullSPCStr", by_value(u"ds")),
        method<&aChar::Replace2>(u"Replace2", by_reference(u"a"), by_reference(u"z"),
                                 by_reference(u"doo")),
        method<&aChar::apostrof2>(u"apostrof2", by_reference(u"a")),
        method<&aChar::apostrof3>(u"apostrof3", by_reference(u"a")),
        method<&aChar::Cudzysłów_Ameryk>(u"Cudzysłów_Ameryk", by_reference(u"s")),
        method<&aChar::Bez_Cudzysłowów>(u"Bez_Cudzysłowów", by_reference(u"s")),
        method<&aChar::Przecinek_Kropka>(u"Przecinek_Kropka", by_reference(u"s")),
        method<&aChar::Cut1310Chars>(u"Cut1310Chars", by_reference(u"s")),
        method<&aChar::MidUZ>(u"MidUZ", by_reference(u"s"), by_reference(u"Start"),
                              optional(by_reference(u"l"))),
        method<&aChar::UzMid>(u"UzMid", by_reference(u"s"), by_reference(u"Start"),
                              optional(by_reference(u"l"))),
        method<&aChar::KonwertLitery>(u"KonwertLitery", by_value(u"Slowo"),
                                      by_reference(u"Set_Strona_kodowa_wydruku_łańcuch")),
        method<&aChar::KonwertNaMaz>(u"KonwertNaMaz", by_value(u"Slowo")),
        method<&aChar::KonwertPlatnik>(u"KonwertPlatnik", by_value(u"Slowo")),
        method<&aChar::KonwertNaWin>(u"KonwertNaWin", by_value(u"Slowo")),
        method<&aChar::konwertNaBPL>(u"konwertNaBPL", by_value(u"Slowo")),
        method<&aChar::Konwert_lan>(u"Konwert_lan", by_value(u"Slowo")),
        method<&aChar::A_DOK>(u"A_DOK", by_value(u"aas")),
        method<&aChar::B_DOK>(u"B_DOK", by_value(u"aas")),
        method<&aChar::CutCudzysłowy>(u"CutCudzysłowy", by_value(u"a")),
        method<&aChar::StrDoPrawej>(u"StrDoPrawej", by_reference(u"s"), by_reference(u"MAXi")),
    });
};

}  // namespace kvarta16
