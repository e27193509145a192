#include <algorithm>

#include <kvarta16/text/aChar.h>

namespace kvarta16 {
namespace {

constexpr char16_t apostrophe = u'\'';
constexpr char16_t double_quote = u'"';
constexpr char16_t blank = u' ';

// A copy of the text, with `change` done to each character that a 16-bit counter walks over.
template <class Change>
String with_walked(StringView text, Change change) {
    String result(text);
    const auto end = result.begin() + static_cast<std::ptrdiff_t>(reach_of_16_bits(text));
    std::transform(result.begin(), end, result.begin(), change);
    return result;
}

// Takes the quotes out one by one. A first one is not taken out: the text becomes its own first
// two characters, over and over, and callers know the call as one that does not return.
void remove_quotes(String& a, char16_t quote) {
    while (!a.empty() && a.front() == quote) {
        endless_step();
        a = left_part(a, 2);
    }
    std::erase(a, quote);
}

}  // namespace

String aChar::NullStr(const Variant& ds) const {
    String result;
    if (!IsNullValue(ds)) {
        step([&] { result = ToText(ds); });
    }
    return result;
}

String aChar::Str2Str(const Variant& ds, Integer leng) const {
    String result;
    if (!IsNullValue(ds)) {
        step([&] { result = leng != 0 ? left_part(ToText(ds), leng) : ToText(ds); });
    }
    return result;
}

String aChar::NullSPCStr(const Variant& ds) const {
    String result;
    if (IsNullValue(ds)) {
        return u" ";
    }
    step([&] {
        result = ToText(ds);
        if (result.empty()) {
            result = blank;
        }
    });
    return result;
}

Variant aChar::Replace2(String& a, StringView z, StringView doo) const {
    const String wanted = upper_case(z);
    const String put = String(doo) + u"     ";
    const String put_upper = upper_case(put);
    const Long reach = std::max(length(doo), length(z));
    // Upper-casing keeps every letter in its place, so that one upper-cased copy, overwritten
    // along with `a`, is the upper-cased `a` of every round.
    String upper = upper_case(a);
    Long from = 1;
    // Qualified, as std::find takes such arguments too.
    while (const Long at = position_of(upper, wanted, from)) {
        endless_step();
        overwrite(a, at, reach, put);
        overwrite(upper, at, reach, put_upper);
        // The first match was at `at`: a new one must reach into what has been put there.
        from = std::max<Long>(1, at - std::max<Long>(length(wanted), 1) + 1);
    }
    return a;
}

String aChar::apostrof2(StringView a) const {
    String result(a);
    std::ranges::replace(result, apostrophe, double_quote);
    return result;
}

String aChar::apostrof3(String& a) const {
    remove_quotes(a, apostrophe);
    remove_quotes(a, double_quote);
    return a;
}

String aChar::Cudzysłów_Ameryk(StringView s) const {
    return with_walked(s, [](char16_t unit) { return unit == double_quote ? apostrophe : unit; });
}

String aChar::Bez_Cudzysłowów(StringView s) const {
    return with_walked(
        s, [](char16_t unit) { return unit == double_quote || unit == apostrophe ? blank : unit; });
}

String aChar::Przecinek_Kropka(StringView s) const {
    if (s.empty()) {
        return u"0";
    }
    String result(s);
    if (const Long comma = position_of(s, u",")) {
        overwrite(result, comma, 1, u".");
    }
    return result;
}

String aChar::Cut1310Chars(StringView s) const {
    // The bytes 13, 10, 9 and 0 of Windows-1250 are these four characters and no others.
    return with_walked(s.substr(0, reach_of_16_bits(s)), [](char16_t unit) {
        return unit == u'\r' || unit == u'\n' || unit == u'\t' || unit == u'\0' ? blank : unit;
    });
}

String aChar::MidUZ(String& s, Long Start, Long l) const {
    s = Cut1310Chars(s);
    return l != 0 ? substring(s + blanks(l), Start, l) : substring(s, Start);
}

Variant aChar::UzMid(String& s, Long Start, Long l) const {
    s = Cut1310Chars(s);
    if (l == 0) {
        return substring(s, Start);
    }
    s = String(trim(s));
    if (length(s) >= l) {
        return substring(s, Start, l);
    }
    return substring(blanks(l - length(s)) + s, Start, l);
}

String aChar::A_DOK(const Variant& aas) const {
    String text = ToText(aas);
    if (const Long slash = position_of(text, u"/")) {
        text = String(trim_left(left_part(text, slash - 1)));
    }
    if (const Long backslash = position_of(text, u"\\")) {
        text = String(trim_left(substring(text, backslash + 1)));
    }
    return text;
}

String aChar::B_DOK(const Variant& aas) const {
    const String text = ToText(aas);
    const Long slash = position_of(text, u"/");
    return slash != 0 ? String(trim_left(substring(text, slash + 1))) : String();
}

String aChar::CutCudzysłowy(StringView a) const {
    while (a.starts_with(double_quote)) {
        a.remove_prefix(1);
    }
    while (a.ends_with(double_quote)) {
        a.remove_suffix(1);
    }
    return String(a);
}

String aChar::StrDoPrawej(StringView s, Long MAXi) const {
    if (length(s) <= MAXi) {
        return blanks(MAXi - length(s)).append(s);
    }
    return left_part(s, MAXi);
}

}  // namespace kvarta16
