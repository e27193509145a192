// What counts as a number in a text, over all short texts of an alphabet. Two plain matchers stand
// beside the library: one of the texts that are numbers beyond doubt, and one so generous that
// what it refuses is none. Between the two lies what nothing settles (a blank behind a sign, say);
// there the test and the coercions have to agree with one another and no more.

#include <functional>

#include <gtest/gtest.h>

#include <kvarta16/frame/value.h>

#include "frame_support.h"
#include "reference.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;

constexpr char16_t no_break_space = u'\u00A0';
constexpr StringView symbol = u"z\u0142";

// ---- Matching by hand -------------------------------------------------------------------------

class Reader {
  public:
    explicit Reader(StringView text) : rest_(text) {}

    [[nodiscard]] bool at_end() const { return rest_.empty(); }
    [[nodiscard]] StringView rest() const { return rest_; }
    bool take(StringView wanted) {
        if (!rest_.starts_with(wanted)) {
            return false;
        }
        rest_.remove_prefix(wanted.size());
        return true;
    }
    // The longest run of characters out of a set.
    StringView run_of(StringView set) {
        const std::size_t end = std::min(rest_.find_first_not_of(set), rest_.size());
        const StringView run = rest_.substr(0, end);
        rest_.remove_prefix(end);
        return run;
    }
    bool take_one_of(StringView set) {
        if (rest_.empty() || set.find(rest_.front()) == StringView::npos) {
            return false;
        }
        rest_.remove_prefix(1);
        return true;
    }

  private:
    StringView rest_;
};

constexpr StringView digit_set = u"0123456789";
constexpr StringView white_space = u" \t\r\n";

bool is_of(StringView text, StringView set) {
    return text.find_first_not_of(set) == StringView::npos;
}

// Digits between which single group separators may stand.
std::optional<std::string> grouped_digits(Reader& reader) {
    std::string digits;
    while (true) {
        const StringView run = reader.run_of(digit_set);
        if (run.empty()) {
            // Nothing yet is no error: the digits may all stand behind the decimal separator.
            return digits.empty() ? std::optional(digits) : std::nullopt;
        }
        digits.append(run.begin(), run.end());
        if (!reader.take(StringView(&no_break_space, 1))) {
            return digits;
        }
    }
}

std::optional<int> exponent_power(Reader& reader) {
    if (!reader.take_one_of(u"EeDd")) {
        return 0;
    }
    const bool is_negative = reader.take(u"-");
    if (!is_negative) {
        reader.take(u"+");
    }
    const StringView run = reader.run_of(digit_set);
    if (run.empty()) {
        return std::nullopt;
    }
    const int power = std::stoi(std::string(run.begin(), run.end()));
    return is_negative ? -power : power;
}

// A text that is a number beyond doubt, and the number.
std::optional<Exact> certain_number(StringView text) {
    Reader reader(text);
    reader.run_of(white_space);
    if (reader.take(u"&H")) {
        const StringView run = reader.run_of(u"0123456789ABCDEF");
        // Longer ones reach the sign bits, of which nothing is settled.
        if (run.empty() || run.size() > 3 || !reader.at_end() || text.front() != u'&') {
            return std::nullopt;
        }
        return Exact{
            false, std::to_string(std::stoi(std::string(run.begin(), run.end()), nullptr, 16)), 0};
    }
    Exact number;
    const bool is_in_parentheses = reader.take(u"(");
    const bool has_minus = !is_in_parentheses && reader.take(u"-");
    const bool has_sign = is_in_parentheses || has_minus || reader.take(u"+");
    const bool has_symbol = reader.take(symbol);
    const auto whole = grouped_digits(reader);
    if (!whole) {
        return std::nullopt;
    }
    const bool has_separator = reader.take(u",");
    const StringView decimals = has_separator ? reader.run_of(digit_set) : StringView();
    number.digits = *whole + std::string(decimals.begin(), decimals.end());
    if (number.digits.empty()) {
        return std::nullopt;
    }
    const bool had_exponent = !reader.at_end() && is_of(reader.rest().substr(0, 1), u"EeDd");
    const auto power = exponent_power(reader);
    if (!power) {
        return std::nullopt;
    }
    number.power = *power - static_cast<int>(decimals.size());
    if (!is_in_parentheses && !has_symbol && !has_separator && !had_exponent) {
        // "5 zł": the symbol behind a number without a decimal part.
        Reader behind = reader;
        behind.take(u" ");
        if (behind.take(symbol) && is_of(behind.rest(), white_space)) {
            number.is_negative = has_minus;
            return number;
        }
    }
    const bool is_closed = is_in_parentheses && reader.take(u")");
    const bool has_minus_behind = !has_sign && reader.take(u"-");
    if (!has_sign && !has_minus_behind) {
        reader.take(u"+");
    }
    reader.run_of(white_space);
    if (!reader.at_end() || is_closed != is_in_parentheses) {
        return std::nullopt;
    }
    number.is_negative = is_in_parentheses || has_minus || has_minus_behind;
    return number;
}

// Whether a text could be a number in the most generous of readings.
bool possible_number(StringView text) {
    static const String any_space = String(white_space) + no_break_space;
    int signs = 0;
    int opened = 0;
    int closed = 0;
    int symbols = 0;
    const auto take_around = [&](Reader& reader) {
        while (true) {
            reader.run_of(any_space);
            if (reader.take_one_of(u"+-")) {
                ++signs;
            } else if (reader.take(u"(")) {
                ++opened;
            } else if (reader.take(u")")) {
                ++closed;
            } else if (reader.take(symbol)) {
                ++symbols;
            } else {
                return;
            }
        }
    };
    Reader reader(text);
    take_around(reader);
    if (closed > 0) {
        return false;
    }
    const int symbols_before = symbols;
    if (reader.take_one_of(u"&")) {
        if (!reader.take_one_of(u"Hh") || reader.run_of(u"0123456789ABCDEFabcdef").empty()) {
            return false;
        }
    } else {
        const StringView whole = reader.run_of(String(digit_set) + no_break_space);
        const bool has_separator = reader.take(u",");
        const StringView decimals = reader.run_of(digit_set);
        if (is_of(whole, any_space) && decimals.empty()) {
            return false;
        }
        if (reader.take_one_of(u"EeDd")) {
            reader.take_one_of(u"+-");
            if (reader.run_of(digit_set).empty()) {
                return false;
            }
        }
        take_around(reader);
        if (symbols > symbols_before && has_separator && !decimals.empty()) {
            return false;
        }
    }
    take_around(reader);
    const bool has_parentheses = opened > 0 || closed > 0;
    return reader.at_end() && signs + opened <= 1 && opened == closed && symbols <= 1 &&
           !(signs > 0 && has_parentheses);
}

// ---- All short texts --------------------------------------------------------------------------

struct Tally {
    int certain = 0;
    int open = 0;
    int refused = 0;
};

void examine(const String& text, Tally& tally) {
    const Variant value = text;
    const bool is_numeric = static_cast<bool>(IsNumericText(value));
    const std::string currency = outcome([&] { return ToCurrency(value); });
    const auto number = certain_number(text);
    if (number) {
        ++tally.certain;
        ASSERT_TRUE(possible_number(text)) << "the two matchers disagree on " << show(text);
        ASSERT_TRUE(is_numeric) << show(text);
        ASSERT_EQ(currency, expected_currency(*number)) << show(text);
        ASSERT_EQ(outcome([&] { return ToLong(value); }), expected_long(*number)) << show(text);
        return;
    }
    if (possible_number(text)) {
        ++tally.open;
    } else {
        ++tally.refused;
        ASSERT_FALSE(is_numeric) << show(text);
    }
    ASSERT_EQ(is_numeric, currency != "!13") << show(text) << " " << currency;
    if (!is_numeric && text.size() < 4) {
        ASSERT_EQ(failure_of([&] { return ToLong(value); }), 13) << show(text);
        ASSERT_EQ(failure_of([&] { return ToInteger16(value); }), 13) << show(text);
    }
}

Tally examine_all(const std::vector<String>& alphabet, int longest) {
    Tally tally;
    for_all_texts(alphabet, longest, [&tally](const String& text) { examine(text, tally); });
    return tally;
}

TEST(NumericText, IsDecidedOverAllShortTexts) {
    const Tally tally = examine_all({u"0", u"5", u",", u".", u"-", u"+", u"(", u")", u" ",
                                     u"\u00A0", u"z", u"\u0142", u"E", u"&", u"H"},
                                    is_sanitized ? 4 : 5);
    EXPECT_GT(tally.certain, is_sanitized ? 200 : 2'000);
    EXPECT_GT(tally.refused, is_sanitized ? 45'000 : 700'000);
}

TEST(NumericText, IsDecidedOverLongerTextsOfFewerPieces) {
    const Tally tally =
        examine_all({u"5", u",", u"-", u"(", u")", u" ", u"z\u0142", u"E"}, is_sanitized ? 5 : 6);
    EXPECT_GT(tally.certain, is_sanitized ? 200 : 800);
    EXPECT_GT(tally.refused, is_sanitized ? 25'000 : 200'000);
}

TEST(NumericText, IsDecidedOverLongerTextsOfDigits) {
    const Tally tally = examine_all({u"0", u"5", u",", u"\u00A0", u"-", u"E", u"D"}, 6);
    EXPECT_GT(tally.certain, 3'000);
    EXPECT_GT(tally.refused, 50'000);
}

// ---- All code units ---------------------------------------------------------------------------

TEST(NumericText, HasNoOtherDigitsThanTen) {
    for (std::uint32_t unit = 0; unit <= 0xFFFF; unit += unit < 0x800 || !is_sanitized ? 1 : 61) {
        const String text(1, static_cast<char16_t>(unit));
        const bool is_digit = unit >= '0' && unit <= '9';
        ASSERT_EQ(static_cast<bool>(IsNumericText(text)), is_digit) << unit;
        ASSERT_EQ(failure_of([&] { return ToCurrency(text); }), is_digit ? 0 : 13) << unit;
        ASSERT_EQ(failure_of([&] { return ToInteger16(text); }), is_digit ? 0 : 13) << unit;
    }
}

// Between two digits only the separators and the letters of an exponent may stand.
TEST(NumericText, TakesFewCharactersBetweenDigits) {
    for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit) {
        const String text = {u'1', static_cast<char16_t>(unit), u'2'};
        const bool expected =
            String(u",EeDd\u00A00123456789").find(static_cast<char16_t>(unit)) != String::npos;
        ASSERT_EQ(static_cast<bool>(IsNumericText(text)), expected) << show(text);
    }
}

// ---- Long texts -------------------------------------------------------------------------------

TEST(NumericText, MayBeLong) {
    const std::size_t size = 1'000'000;
    const String zeros(size, u'0');
    EXPECT_EQ(ToCurrency(zeros + u"5").count, 50000);
    EXPECT_EQ(ToCurrency(u"5," + zeros + u"5").count, 50000);
    EXPECT_EQ(ToCurrency(u"0," + zeros + u"5E1000000").count, 5000);
    EXPECT_EQ(ToCurrency(String(size, u' ') + u"5" + String(size, u' ')).count, 50000);
    EXPECT_EQ(failure_of([&] { return ToCurrency(u"5" + zeros); }), 6);
    EXPECT_EQ(failure_of([&] { return ToCurrency(zeros + u"x"); }), 13);
    EXPECT_EQ(failure_of([&] { return ToCurrency(String(size, u'(') + u"5"); }), 13);
}

}  // namespace
}  // namespace kvarta16
