// Random texts against a second way of computing: the members' steps one by one on plain arrays
// of characters, with whole copies for each step and none of the library's text primitives.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include <kvarta16/text/Class3.h>
#include <kvarta16/text/aChar.h>

namespace kvarta16 {
namespace {

// ---- The steps ----------------------------------------------------------------------------------

// The 1-based position of the first `wanted`, 0 without one.
std::size_t position(const String& text, const String& wanted) {
    for (std::size_t at = 1; at <= text.size(); ++at) {
        if (text.compare(at - 1, wanted.size(), wanted) == 0) {
            return at;
        }
    }
    return 0;
}

// Characters of `text` from a 1-based position; nullopt where that is an error.
std::optional<String> part(const String& text, std::int64_t start, std::int64_t count) {
    if (start < 1 || count < 0) {
        return std::nullopt;
    }
    String result;
    for (std::int64_t i = start; i < start + count; ++i) {
        if (i <= static_cast<std::int64_t>(text.size())) {
            result += text[static_cast<std::size_t>(i - 1)];
        }
    }
    return result;
}

std::optional<String> padding(std::int64_t count) {
    return count < 0 ? std::nullopt : std::optional(String(static_cast<std::size_t>(count), u' '));
}

String trimmed_left(String text) {
    while (!text.empty() && text.front() == u' ') {
        text.erase(0, 1);
    }
    return text;
}

String trimmed(String text) {
    while (!text.empty() && text.back() == u' ') {
        text.pop_back();
    }
    return trimmed_left(text);
}

// The letters that the random texts are made of, and no others.
String in_capitals(String text) {
    for (char16_t& unit : text) {
        unit = unit == u'a' ? u'A' : unit == u'b' ? u'B' : unit == u'ł' ? u'Ł' : unit;
    }
    return text;
}

// nullopt where the steps come back to a text that they have had: they go on for ever.
std::optional<String> replace2_steps(String a, const String& z, const String& doo) {
    std::set<String> had;
    while (const std::size_t p = position(in_capitals(a), in_capitals(z))) {
        if (!had.insert(a).second) {
            return std::nullopt;
        }
        const String put = doo + u"     ";
        const std::size_t n = std::max(doo.size(), z.size());
        for (std::size_t i = 0; i < n && i < put.size() && p - 1 + i < a.size(); ++i) {
            a[p - 1 + i] = put[i];
        }
    }
    return a;
}

String cut_control_characters_steps(const String& s) {
    String result;
    const std::int64_t low = static_cast<std::int64_t>(s.size()) % 65536;
    const std::int64_t limit = low < 32768 ? low : low - 65536;
    for (std::int64_t i = 1; i <= limit; ++i) {
        const char16_t unit = s[static_cast<std::size_t>(i - 1)];
        const std::u16string_view cut(u"\r\n\t\0", 4);
        result += cut.find(unit) != std::u16string_view::npos ? u' ' : unit;
    }
    return result;
}

std::optional<String> mid_uz_steps(String& s, Long start, Long l) {
    s = cut_control_characters_steps(s);
    if (l == 0) {
        return part(s, start, static_cast<std::int64_t>(s.size()));
    }
    const std::optional<String> pad = padding(l);
    return pad ? part(s + *pad, start, l) : std::nullopt;
}

std::optional<String> uz_mid_steps(String& s, Long start, Long l) {
    s = cut_control_characters_steps(s);
    if (l == 0) {
        return part(s, start, static_cast<std::int64_t>(s.size()));
    }
    s = trimmed(s);
    const auto length = static_cast<std::int64_t>(s.size());
    return part(length >= l ? s : *padding(l - length) + s, start, l);
}

String a_dok_steps(const String& aas) {
    const std::size_t p = position(aas, u"/");
    const String text = p != 0 ? trimmed_left(aas.substr(0, p - 1)) : aas;
    const std::size_t q = position(text, u"\\");
    return q != 0 ? trimmed_left(text.substr(q)) : text;
}

String b_dok_steps(const String& aas) {
    const std::size_t p = position(aas, u"/");
    return p != 0 ? trimmed_left(aas.substr(p)) : String();
}

String cut_quotes_steps(String a) {
    if (!trimmed(a).empty()) {
        while (a.substr(0, 1) == u"\"") {
            a.erase(0, 1);
        }
    }
    if (!trimmed(a).empty()) {
        while (!a.empty() && a.substr(a.size() - 1) == u"\"") {
            a.erase(a.size() - 1);
        }
    }
    return a;
}

String without_steps(String s, const String& separator) {
    while (const std::size_t p = position(s, separator)) {
        s = s.substr(0, p - 1) + s.substr(p);
    }
    return s;
}

// nullopt where a quote stands in first place.
std::optional<String> apostrof3_steps(String a) {
    for (const StringView quote : {u"'", u"\""}) {
        while (const std::size_t p = position(a, String(quote))) {
            if (p == 1) {
                return std::nullopt;
            }
            a = a.substr(0, p - 1) + a.substr(p);
        }
    }
    return a;
}

String first_comma_steps(const String& s) {
    const std::size_t p = position(s, u",");
    if (s.empty()) {
        return u"0";
    }
    return p != 0 ? s.substr(0, p - 1) + u"." + s.substr(p) : s;
}

// ---- The comparisons ----------------------------------------------------------------------------

class Steps : public testing::Test {
  protected:
    // A text of at most `most` characters, all from `alphabet`.
    String random_text(StringView alphabet, std::size_t most) {
        String text(random_number<std::size_t>(0, most), u' ');
        for (char16_t& unit : text) {
            unit = alphabet[random_number<std::size_t>(0, alphabet.size() - 1)];
        }
        return text;
    }

    template <class T>
    T random_number(T least, T most) {
        return std::uniform_int_distribution<T>(least, most)(random_);
    }

    std::mt19937 random_{20240517};  // NOLINT: the same texts in every run
    aChar object_;
};

template <class Call>
std::optional<String> result_or_failure(Call&& call) {
    try {
        return ToText(Variant(call()));
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.number(), error::invalid_call);
        return std::nullopt;
    }
}

TEST_F(Steps, OfReplace2) {
    int finished = 0;
    int changed = 0;
    for (int round = 0; round < 200'000; ++round) {
        const StringView alphabet = round % 2 == 0 ? u"aAbB " : u"aA łŁ";
        const String before = random_text(alphabet, 12);
        const String z = random_text(alphabet, round % 3 == 0 ? 9 : 3);
        const String doo = random_text(alphabet, 4);
        const std::optional<String> expected = replace2_steps(before, z, doo);
        if (!expected) {
            continue;
        }
        ++finished;
        changed += *expected != before ? 1 : 0;
        String a = before;
        ASSERT_EQ(object_.Replace2(a, z, doo), Variant(*expected));
        ASSERT_EQ(a, *expected);
    }
    EXPECT_GT(finished, 50'000);
    EXPECT_GT(changed, 10'000);
}

TEST_F(Steps, OfTheColumns) {
    int failed = 0;
    for (int round = 0; round < 200'000; ++round) {
        const String before = random_text(u"ab \t\r\nż", 10);
        const Long start = random_number<Long>(-1, 22);
        const Long l = random_number<Long>(-1, 12);
        String expected_s = before;
        String s = before;
        std::optional<String> expected = mid_uz_steps(expected_s, start, l);
        ASSERT_EQ(result_or_failure([&] { return object_.MidUZ(s, start, l); }), expected);
        ASSERT_EQ(s, expected_s);
        failed += expected ? 0 : 1;

        expected_s = before;
        s = before;
        expected = uz_mid_steps(expected_s, start, l);
        ASSERT_EQ(result_or_failure([&] { return object_.UzMid(s, start, l); }), expected);
        ASSERT_EQ(s, expected_s);
    }
    EXPECT_GT(failed, 10'000);
}

TEST_F(Steps, OfTheColumnsOfLongTexts) {
    for (int round = 0; round < 200; ++round) {
        String s(random_number<std::size_t>(32'000, 140'000), u'x');
        for (std::size_t i = 0; i < s.size(); i += random_number<std::size_t>(1, 20)) {
            s[i] = u" \t\0\n"[i % 4];
        }
        const String before = s;
        String expected_s = s;
        const Long start = random_number<Long>(1, 70'000);
        const Long l = random_number<Long>(0, 3) * 20'000;
        ASSERT_EQ(object_.Cut1310Chars(s), cut_control_characters_steps(s));
        ASSERT_EQ(object_.MidUZ(s, start, l), mid_uz_steps(expected_s, start, l));
        ASSERT_EQ(s, expected_s);
        s = before;
        expected_s = before;
        ASSERT_EQ(object_.UzMid(s, start, l), Variant(*uz_mid_steps(expected_s, start, l)));
        ASSERT_EQ(s, expected_s);
    }
}

TEST_F(Steps, OfStrDoPrawej) {
    for (int round = 0; round < 50'000; ++round) {
        const String s = random_text(u"ab \t", 8);
        const Long columns = random_number<Long>(-2, 12);
        const auto length = static_cast<std::int64_t>(s.size());
        const std::optional<String> expected =
            length <= columns ? *padding(columns - length) + s : part(s, 1, columns);
        ASSERT_EQ(result_or_failure([&] { return object_.StrDoPrawej(s, columns); }), expected);
    }
}

TEST_F(Steps, OfDocumentNumbers) {
    for (int round = 0; round < 200'000; ++round) {
        const String number = random_text(u"1 /\\\t", 9);
        ASSERT_EQ(object_.A_DOK(number), a_dok_steps(number));
        ASSERT_EQ(object_.B_DOK(number), b_dok_steps(number));
    }
}

TEST_F(Steps, OfQuotesAndSeparators) {
    int finished = 0;
    for (int round = 0; round < 200'000; ++round) {
        const String text = random_text(u"\"' -,a", 9);
        ASSERT_EQ(object_.CutCudzysłowy(text), cut_quotes_steps(text));
        ASSERT_EQ(object_.Przecinek_Kropka(text), first_comma_steps(text));
        ASSERT_EQ(Class3().Myslnik_Usun(text), without_steps(text, u"-"));
        ASSERT_EQ(Class3().Spacje_Usun(text), without_steps(text, u" "));
        if (const std::optional<String> expected = apostrof3_steps(text)) {
            ++finished;
            String a = text;
            ASSERT_EQ(object_.apostrof3(a), *expected);
            ASSERT_EQ(a, *expected);
        }
    }
    EXPECT_GT(finished, 50'000);
}

}  // namespace
}  // namespace kvarta16
