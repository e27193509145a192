// Dates in texts: which texts are dates, the day and time of each, and the way of a date through
// text and back; the members of aproste that rest on it; days made of numbers.
#include <cmath>

#include <kvarta16/dates/aproste.h>

#include "fuzz_support.h"
#include "second_dates.h"

namespace kvarta16 {
namespace {

using fuzz::expect_same;
using fuzz::Outcome;
using fuzz::outcome_of;
using fuzz::show;

constexpr StringView flex_mask = u"yyyy-MM-dd";

String rendered(Date date, StringView mask) {
    return fuzz::second_date_text(*fuzz::second_moment(date), mask, WeekStart::Sunday);
}

void check_reading(StringView text) {
    const std::string shown = show(text);
    const std::optional<Date> wanted = fuzz::second_date(text);
    expect_same("IsDateValue of", shown, static_cast<bool>(IsDateValue(text)), wanted.has_value());
    expect_same("ToDate of", shown, outcome_of([&] { return ToDate(text); }),
                wanted ? Outcome<Date>{*wanted} : fuzz::failed<Date>(error::type_mismatch));
    if (!wanted) {
        return;
    }
    expect_same(
        "The text of the date in", shown, ToText(*wanted),
        rendered(*wanted, std::fmod(wanted->days, 1) == 0 ? flex_mask : u"yyyy-MM-dd hh:nn:ss"));
    expect_same("The date of its text in", shown, ToDate(ToText(*wanted)), *wanted);
    expect_same("The date of its long text in", shown,
                ToDate(FormatMask(*wanted, u"d mmmm yyyy hh:nn:ss")), *wanted);
}

void check_members(StringView text) {
    const aproste simple;
    const std::string shown = show(text);
    const std::optional<Date> date = fuzz::second_date(text);
    const Date day = date ? Date{std::trunc(date->days)} : Date{};
    expect_same("FlexStr2Date of", shown, simple.FlexStr2Date(text), day);
    expect_same("Str2Date of", shown, simple.Str2Date(text), day);
    const Date shown_day = date ? day : Date{1};  // what is no date shows as day 1
    expect_same("Flex2DateStr of", shown, simple.Flex2DateStr(text),
                rendered(shown_day, u"dd-MM-yyyy"));
    String mask;
    expect_same("Flex2DateStr with an empty mask of", shown, simple.Flex2DateStr(text, mask),
                rendered(shown_day, flex_mask));
    expect_same("The mask after it of", shown, mask, String(flex_mask));
    if (date) {
        expect_same("FormatSD with the time of", shown,
                    simple.FormatSD(text, u"yyyy-MM-dd hh:nn:ss"), *date);
        expect_same("Date2Str of the date in", shown, simple.Date2Str(*date), day);
        expect_same("ObetnijGodz of the date in", shown, simple.ObetnijGodz(*date), day);
    }
}

// By steps of one month or day where the library computes: the calendar's own rules roll over.
Outcome<Date> made_date(Integer year, Integer month, Integer day) {
    const std::int32_t full = year < 0 || year > 99 ? year : year + (year < 30 ? 2000 : 1900);
    std::int32_t rolled_year = full;
    std::int32_t rolled_month = month;
    for (; rolled_month < 1; rolled_month += 12) {
        --rolled_year;
    }
    for (; rolled_month > 12; rolled_month -= 12) {
        ++rolled_year;
    }
    const auto first = fuzz::second_day_number(rolled_year, rolled_month, 1);
    if (!first) {
        return fuzz::failed<Date>(error::invalid_call);
    }
    const Date date{static_cast<Double>(*first + day - 1)};
    return fuzz::second_moment(date) ? Outcome<Date>{date} : fuzz::failed<Date>(error::overflow);
}

void check_numbers(fuzz::Input input) {
    const auto year = input.number<Integer>();
    const auto month = input.number<Integer>();
    const auto day = input.number<Integer>();
    const std::string shown = show(year) + ", " + show(month) + ", " + show(day);
    const Outcome<Date> wanted = made_date(year, month, day);
    expect_same("MakeDate of", shown, outcome_of([&] { return MakeDate(year, month, day); }),
                wanted);
    if (wanted.value) {
        const auto beyond = [&](Integer number) {  // the upper half of a Long is not looked at
            return wrap32(std::int64_t{number} + 0x30000);
        };
        expect_same("DateSerialSpr of", shown,
                    aproste().DateSerialSpr(beyond(year), beyond(month), beyond(day)),
                    *wanted.value);
    }
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvarta16;
    const String text = fuzz::Input(data, size).rest_as_text();
    check_reading(text);
    check_members(text);
    check_numbers(fuzz::Input(data, size));
    return 0;
}
