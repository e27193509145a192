// Values as databases write them: moments and amounts of money, read and written, against second
// readings. An input is a text.
#include <cmath>
#include <regex>

#include <kvarta16/platform/sql/amounts.h>
#include <kvarta16/platform/sql/field_types.h>
#include <kvarta16/platform/sql/moments.h>

#include "fuzz_support.h"
#include "second_dates.h"
#include "second_numbers.h"

namespace kvarta16 {
namespace {

using fuzz::expect;
using fuzz::expect_same;
using fuzz::show;
using sql::Moment;
using sql::MomentForm;

std::string show_moment(const std::optional<Moment>& moment) {
    return moment ? "day " + show(moment->day) + ", millisecond " + show(moment->millisecond)
                  : "nothing";
}

void expect_moment(std::string_view what, const std::string& of,
                   const std::optional<Moment>& actual, const std::optional<Moment>& wanted) {
    if (actual != wanted) {
        fuzz::broken(what, of,
                     "is " + show_moment(actual) + "\n  and should be " + show_moment(wanted));
    }
}

int number(const std::csub_match& group) {
    return group.matched ? std::stoi(group.str()) : 0;
}

std::optional<std::int32_t> day_of(const std::cmatch& found, std::size_t year, std::size_t month,
                                   std::size_t day) {
    return fuzz::second_day_number(number(found[year]), number(found[month]), number(found[day]));
}

std::optional<std::int32_t> time_of(const std::cmatch& found, std::size_t hour) {
    const int hours = number(found[hour]);
    const int minutes = number(found[hour + 1]);
    const int seconds = number(found[hour + 2]);
    if (hours > 23 || minutes > 59 || seconds > 59) {
        return std::nullopt;
    }
    const std::string fraction = (found[hour + 3].str() + "000").substr(0, 3);
    return ((hours * 60 + minutes) * 60 + seconds) * 1000 + std::stoi(fraction);
}

// The texts of a date or a time, or of both with blanks or a "T" between them; a zone may follow.
std::optional<Moment> wanted_moment(std::string_view text, MomentForm form) {
    static const std::string clock =
        R"((\d{1,2}):(\d{2})(?::(\d{2})(?:[.,](\d+))?)?(?: *(?:[Zz]|[+-]\d{2}(?::?\d{2})?))? *)";
    static const std::string behind_date = "(?:(?:[Tt]| +)" + clock + ")? *";
    static const std::regex time_alone(" *" + clock);
    static const std::regex year_first(R"( *(\d{4})[-/.](\d{1,2})[-/.](\d{1,2}))" + behind_date);
    static const std::regex month_first(R"( *(\d{1,2})[-/.](\d{1,2})[-/.](\d{4}))" + behind_date);
    std::cmatch found;
    const char* const end = text.data() + text.size();
    const bool has_time_alone = form != MomentForm::date && form != MomentForm::date_time;
    if (std::regex_match(text.data(), end, found, time_alone)) {
        const auto time = time_of(found, 1);
        return has_time_alone && time ? std::optional(Moment{0, *time}) : std::nullopt;
    }
    if (form == MomentForm::time) {
        return std::nullopt;
    }
    std::optional<std::int32_t> day;
    if (std::regex_match(text.data(), end, found, year_first)) {
        day = day_of(found, 1, 2, 3);
    } else if (form == MomentForm::jet && std::regex_match(text.data(), end, found, month_first)) {
        day = day_of(found, 3, 1, 2);
    }
    const bool has_time = day && found[4].matched;
    const auto time = has_time ? time_of(found, 4) : std::optional<std::int32_t>(0);
    const bool is_wanted = form == MomentForm::date        ? !has_time
                           : form == MomentForm::date_time ? has_time
                                                           : true;
    return day && time && is_wanted ? std::optional(Moment{*day, *time}) : std::nullopt;
}

void check_moment(std::string_view text) {
    const std::string shown = show(text);
    for (const MomentForm form : {MomentForm::stored, MomentForm::date, MomentForm::time,
                                  MomentForm::date_time, MomentForm::jet}) {
        const auto moment = sql::parse_moment(text, form);
        expect_moment("parse_moment, form " + show(static_cast<int>(form)) + ", of", shown, moment,
                      wanted_moment(text, form));
        if (!moment) {
            continue;
        }
        const std::string stored = sql::stored_text(*moment);
        expect_moment("The moment of its stored text of", shown, sql::parse_moment(stored), moment);
        expect_moment("The moment of its days of", shown,
                      sql::moment_of_days(sql::date_of(*moment).days), moment);
        const sql::MomentText whole = sql::moment_text(*moment);
        const std::string_view to_seconds(whole.data(), sql::length_to_seconds);
        expect(sql::is_text_to_seconds(to_seconds), "A text to seconds of", shown);
        expect_moment("The moment of its text to milliseconds of", shown,
                      sql::parse_moment({whole.data(), whole.size()}), moment);
    }
    const bool is_own_form = sql::is_text_to_seconds(text);
    const auto stored = sql::parse_moment(text);
    expect(!is_own_form || (stored && sql::stored_text(*stored) == text),
           "A text to seconds is written as it stands:", shown);
}

void check_amount(std::string_view text) {
    static const std::regex form(R"( *([-+]?)(\d*)(?:[.,](\d*))? *)");
    std::cmatch found;
    std::optional<Currency> wanted;
    const bool matches = std::regex_match(text.data(), text.data() + text.size(), found, form);
    if (matches && found[2].length() + found[3].length() > 0) {
        std::string decimals = found[3].str();
        const bool is_exact =
            decimals.size() <= 4 || decimals.find_first_not_of('0', 4) == std::string::npos;
        decimals.resize(4, '0');
        std::string digits = found[2].str() + decimals;
        digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
        const auto count = fuzz::second_whole({found[1] == "-", digits, 0}, 0,
                                              std::numeric_limits<std::int64_t>::min(),
                                              std::numeric_limits<std::int64_t>::max());
        wanted = is_exact && count ? std::optional(Currency::raw(*count)) : std::nullopt;
    }
    const auto amount = sql::parse_amount(text);
    expect_same("parse_amount of", show(text), amount, wanted);
    if (amount) {
        expect_same("The amount of its text of", show(text),
                    sql::parse_amount(sql::amount_text(*amount)), amount);
        String written = fuzz::second_text(fuzz::exact(amount->count, -4), fuzz::no_exponent);
        std::ranges::replace(written, u',', u'.');
        expect_same("amount_text of", show(text), sql::amount_text(*amount),
                    std::string(written.begin(), written.end()));
    }
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvarta16;
    constexpr std::size_t longest = 200;  // of what a regular expression is tried on
    const std::string_view text = fuzz::Input(data, std::min(size, longest)).rest();
    check_moment(text);
    check_amount(text);
    return 0;
}
