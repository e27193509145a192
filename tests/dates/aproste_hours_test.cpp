// Hours as a number and as text.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "dates_support.h"

namespace kvarta16::dates_tests {
namespace {

// ---- Numbers to text ------------------------------------------------------------------------

TEST(HoursToText, Minutes) {
    const struct {
        Double hours;
        StringView text;
    } cases[] = {
        {7.75, u"7:45"},
        {0.25, u"0:15"},
        {-0.5, u"-0:30"},
        {7.995, u"8:00"},
        {0, u"0:00"},
        {2, u"2:00"},
        {-0.0, u"0:00"},
        {-7.995, u"-8:00"},
        {0.15, u"0:09"},
        {-0.001, u"-0:00"},
        {7.99, u"7:59"},
        {23.9999, u"24:00"},
        {99.999, u"100:00"},
        {1000000.5, u"1000000:30"},
        {1e15, u"1E+15:00"},
        {1e-300, u"0:00"},
        {-12345.75, u"-12345:45"},
        // Half minutes go to the even one.
        {2.5 / 60, u"0:02"},
        {3.5 / 60, u"0:04"},
        // The minutes of these are 1.4999999999999947, which counts as one and a half.
        {1.025, u"1:02"},
        {-3.025, u"-3:02"},
    };
    for (const auto& row : cases) {
        Double hours = row.hours;
        EXPECT_EQ(show(simple().HLiczToGodz(hours)), show(row.text)) << row.hours;
        EXPECT_EQ(hours, std::abs(row.hours));
        EXPECT_FALSE(row.hours < 0 && std::signbit(hours)) << row.hours;
    }
}

TEST(HoursToText, Hundredths) {
    const struct {
        Double hours;
        StringView text;
    } cases[] = {
        {7.75, u"7:75"},    {7.05, u"7:05"},   {0, u"0:00"},       {7.999, u"7:100"},
        {-1.5, u"-1:0-50"}, {-0.5, u"0:0-50"}, {-7, u"-7:00"},     {-7.05, u"-7:0-5"},
        {0.004, u"0:00"},   {0.1, u"0:10"},    {12.345, u"12:35"}, {12.25, u"12:25"},
        {0.125, u"0:12"},   {0.375, u"0:38"},  {-0.0, u"0:00"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(show(simple().HLiczToStr(row.hours)), show(row.text)) << row.hours;
    }
}

// The whole number that a Double counts as: through 15 significant digits, ties to the even. Nines
// go up by a 5 behind them.
Long through_digits(Double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.15e", value);
    const bool is_carried = std::string_view(text).find("95e") != std::string_view::npos;
    std::snprintf(text, sizeof text, is_carried ? "%.14g" : "%.15g", value);
    return static_cast<Long>(std::nearbyint(std::strtod(text, nullptr)));
}

String two_digits(Long number) {
    return wide((number < 10 ? "0" : "") + std::to_string(number));
}

TEST(HoursToText, RandomNumbers) {
    Random random(46);
    for (int i = 0; i < frame_tests::random_cases; ++i) {
        const Double places[] = {1, 60, 100, 120, 1000, 7200, 1e9};
        const Double value = static_cast<Double>(random.between(-2'000'000'000, 2'000'000'000) >>
                                                 random.between(0, 24)) /
                             places[random.between(0, 6)];
        const Double size = std::abs(value);
        Long whole = static_cast<Long>(std::floor(size));
        Long minutes = through_digits((size - whole) * 60);
        ASSERT_LE(minutes, 60);
        whole += minutes / 60;
        minutes %= 60;
        Double hours = value;
        ASSERT_EQ(
            simple().HLiczToGodz(hours),
            (value < 0 ? u"-" : u"") + wide(std::to_string(whole)) + u":" + two_digits(minutes))
            << value;
        ASSERT_EQ(hours, size);
        const Long cut = static_cast<Long>(value);
        ASSERT_EQ(simple().HLiczToStr(value), wide(std::to_string(cut)) + u":" +
                                                  two_digits(through_digits((value - cut) * 100)))
            << value;
    }
}

// A number beyond all has no text of its hours.
TEST(HoursToText, Strict) {
    for (const Double value : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        Double hours = value;
        EXPECT_EQ(failure_of([&] { return simple().HLiczToGodz(hours); }), 6);
        EXPECT_FALSE(hours < 0);
        EXPECT_EQ(failure_of([&] { return simple().HLiczToStr(value); }), 6);
    }
    Double large = -1e308;
    EXPECT_EQ(simple().HLiczToGodz(large), u"-1E+308:00");
    EXPECT_EQ(large, 1e308);
    EXPECT_EQ(simple().HLiczToStr(-1e308), u"-1E+308:00");
}

// ---- Text to numbers ------------------------------------------------------------------------

TEST(TextToHours, Cases) {
    const struct {
        StringView text;
        Double hours;
        StringView afterwards;
    } cases[] = {
        {u"", 0, u"0:00"},
        {u"   ", 0, u"0:00"},
        {u"0", 0, u"0:00"},
        {u" 0 ", 0, u"0:00"},
        {u"00", 0, u"00"},
        {u"8", 8, u"8"},
        {u" 8 ", 8, u" 8 "},
        {u"1:30", 1.5, u"1:30"},
        {u"-1:30", -1.5, u"-1:30"},
        {u"-0:30", -0.5, u"-0:30"},
        {u" -1:30", -0.5, u" -1:30"},  // the sign counts for the hours alone
        {u"1,75", 1, u"1,75"},
        {u"-1,75", -1, u"-1,75"},
        {u"1,5,7", 1, u"1,5,7"},
        {u",75", 0, u",75"},
        {u"1.75", 2, u"1.75"},  // a dot is read by the number at the front, and rounded
        {u"2.5", 2, u"2.5"},
        {u"1:90", 2.5, u"1:90"},
        {u"1:", 1, u"1:"},
        {u":30", 0.5, u":30"},
        {u":", 0, u":"},
        {u"1:30:45", 1.5, u"1:30:45"},  // "30:45" begins with 30
        {u"1,5:30", 2.5, u"1,5:30"},
        {u"1:-30", 0.5, u"1:-30"},
        {u"-1:-30", -0.5, u"-1:-30"},
        {u"abc", 0, u"abc"},
        {u"-", 0, u"-"},
        {u"8 h", 8, u"8 h"},
        {u"99999999999", 0, u"99999999999"},  // beyond Long
        {u"1:99999999999", 1, u"1:99999999999"},
        {u"0:00", 0, u"0:00"},
        {u"0:01", 1 / 60.0, u"0:01"},
    };
    for (const auto& row : cases) {
        String text(row.text);
        EXPECT_EQ(simple().HGodzToLicz(text), row.hours) << show(row.text);
        EXPECT_EQ(show(text), show(row.afterwards)) << show(row.text);
        const bool has_colon = row.afterwards.find(u':') != StringView::npos;
        text = row.text;
        if (has_colon) {
            EXPECT_EQ(simple().HGodzToLiczRCP(text), static_cast<Single>(row.hours));
        } else {
            EXPECT_EQ(failure_of([&] { return simple().HGodzToLiczRCP(text); }), 5)
                << show(row.text);
        }
        EXPECT_EQ(show(text), show(row.afterwards)) << show(row.text);
    }
    String clock = u"8:15";
    EXPECT_EQ(simple().HGodzToLiczRCP(clock), 8.25F);
}

TEST(TextToHours, TheClocksSumIsNarrowedAtTheEnd) {
    for (Long hours = 0; hours < 3000; ++hours) {
        for (Long minutes = 0; minutes < 60; ++minutes) {
            String text = wide(std::to_string(hours)) + u":" + two_digits(minutes);
            ASSERT_EQ(simple().HGodzToLiczRCP(text), static_cast<Single>(hours + minutes / 60.0));
        }
    }
}

// Every minute of a thousand hours to either side, there and back.
TEST(TextToHours, ThereAndBack) {
    for (Long minutes = -60'000; minutes <= 60'000; ++minutes) {
        const Long size = std::abs(minutes);
        const String text = (minutes < 0 ? u"-" : u"") + wide(std::to_string(size / 60)) + u":" +
                            two_digits(size % 60);
        String written = text;
        Double hours = simple().HGodzToLicz(written);
        ASSERT_EQ(hours, (minutes < 0 ? -1 : 1) * (size / 60 + size % 60 / 60.0)) << show(text);
        ASSERT_EQ(written, text);
        ASSERT_EQ(simple().HLiczToGodz(hours), text);
    }
}

// The whole number of a text of digits, signs, commas and dots, by another way of reading.
Long expected_whole(const String& written) {
    std::string text;
    for (const char16_t unit : written) {
        text += static_cast<char>(unit);
    }
    Double value = 0;
    if (IsNumericText(written)) {
        const bool is_negative = text.find('-') != std::string::npos;
        std::erase_if(text, [](char unit) { return unit == '-' || unit == ' '; });
        std::ranges::replace(text, ',', '.');
        value = std::strtod(text.c_str(), nullptr) * (is_negative ? -1 : 1);
    } else {
        std::erase(text, ' ');
        value =
            std::strtod(text.substr(0, text.find_first_not_of("-0123456789.")).c_str(), nullptr);
    }
    return static_cast<Long>(std::nearbyint(value));
}

Double expected_hours(const String& text) {
    const std::size_t colon = text.find(u':');
    if (colon == String::npos) {
        const std::size_t comma = text.find(u',');
        return expected_whole(text.substr(0, comma));
    }
    const Double hours = expected_whole(text.substr(0, colon));
    const Double minutes = expected_whole(text.substr(colon + 1));
    return hours + (text.front() == u'-' ? -1 : 1) * (minutes / 60);
}

TEST(TextToHours, AllShortTexts) {
    for_all_texts({u"0", u"5", u"12", u":", u",", u".", u"-", u" "}, 5, [](const String& text) {
        String written = text;
        const Double hours = simple().HGodzToLicz(written);
        if (written != text) {
            ASSERT_EQ(written, u"0:00") << show(text);
            ASSERT_EQ(text.find_first_not_of(u"0 "), String::npos) << show(text);
        }
        ASSERT_EQ(hours, expected_hours(written)) << show(text);
        String clock = text;
        if (written.find(u':') == String::npos) {
            ASSERT_EQ(failure_of([&] { return simple().HGodzToLiczRCP(clock); }), 5) << show(text);
        } else {
            ASSERT_EQ(simple().HGodzToLiczRCP(clock), static_cast<Single>(hours)) << show(text);
        }
        ASSERT_EQ(clock, written);
    });
}

}  // namespace
}  // namespace kvarta16::dates_tests
