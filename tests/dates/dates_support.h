// What the tests of this room share: days by another calendar than the library's, clocks that a
// test turns, and the way to a member of a table.
#pragma once

#include <chrono>
#include <cmath>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <kvarta16/dates/aDaty.h>
#include <kvarta16/dates/aproste.h>
#include <kvarta16/frame/utf8.h>

#include "frame/frame_support.h"
#include "support/fake_platform.h"

namespace kvarta16::dates_tests {

using frame_tests::chrono_day_number;
using frame_tests::failure_of;
using frame_tests::for_all_texts;
using frame_tests::Forms;
using frame_tests::notation;
using frame_tests::one_of_each_subtype;
using frame_tests::outcome;
using frame_tests::parse_value;
using frame_tests::Random;
using frame_tests::sanitized_stride;
using frame_tests::show;
using frame_tests::wide;
using testing_support::FakePlatform;

// The test thread's own.
inline const aDaty& calendar() {
    return instance<aDaty>();
}
inline const aproste& simple() {
    return instance<aproste>();
}

// "2024-05-17" or "2024-05-17 12:00:00", by another calendar than the library's.
inline Date day(const std::string& text) {
    return frame_tests::parse_date(text);
}

// ---- Every day ------------------------------------------------------------------------------

// A day as <chrono> takes it apart.
struct ChronoDay {
    std::int32_t number;  // the library's day number
    int year;
    unsigned month;
    unsigned day;
    unsigned weekday;   // Sunday = 0 to Saturday = 6
    int day_of_year;    // from 0
    unsigned new_year;  // the weekday of 1 January

    [[nodiscard]] Date at(double time) const {
        return {number < 0 ? number - time : number + time};
    }
    [[nodiscard]] int week_from_monday() const {
        return (day_of_year + static_cast<int>((new_year + 6) % 7)) / 7 + 1;
    }
    [[nodiscard]] int week_from_sunday() const {
        return (day_of_year + static_cast<int>(new_year)) / 7 + 1;
    }
};

// Calls `visit` with every day of the years.
template <class Visit>
void for_every_day(int first_year, int last_year, const Visit& visit) {
    using namespace std::chrono;
    const sys_days origin{1899y / December / 30};
    const sys_days end{year{last_year} / December / 31};
    for (sys_days at{year{first_year} / January / 1}; at <= end; at += days{1}) {
        const year_month_day civil(at);
        const sys_days new_year{civil.year() / January / 1};
        visit(ChronoDay{static_cast<std::int32_t>((at - origin).count()), int(civil.year()),
                        unsigned(civil.month()), unsigned(civil.day()), weekday(at).c_encoding(),
                        static_cast<int>((at - new_year).count()), weekday(new_year).c_encoding()});
        if (testing::Test::HasFatalFailure()) {
            return;
        }
    }
}

inline constexpr int first_year = 1900;
inline constexpr int last_year = 2100;
inline constexpr int days_of_the_years = 73414;

// A whole number with zeros before it.
inline std::string digits(int number, int width) {
    std::string text = std::to_string(number);
    return std::string(static_cast<std::size_t>(width) -
                           std::min<std::size_t>(static_cast<std::size_t>(width), text.size()),
                       '0') +
           text;
}

// ---- Clocks ---------------------------------------------------------------------------------

// A clock whose readings the test has written down; the last one stays.
class ScriptedClock final : public Clock {
  public:
    explicit ScriptedClock(std::deque<Date> readings) : readings_(std::move(readings)) {}

    Date Now() override {
        ++reads;
        const Date now = readings_.front();
        if (readings_.size() > 1) {
            readings_.pop_front();
        }
        return now;
    }

    int reads = 0;

  private:
    std::deque<Date> readings_;
};

// The scripted clock in force as long as this lives.
struct ScriptedTime {
    explicit ScriptedTime(std::deque<Date> readings) : clock(std::move(readings)) {}

    ScriptedClock clock;
    FakePlatform fake;
    Platform operations{&fake.boxes, &clock, &fake.sleeper};
    ScopedPlatform scope{operations};
};

// ---- Late-bound calls -----------------------------------------------------------------------

template <class C>
const MemberInfo& member_named(StringView name) {
    for (const MemberInfo& member : ClassTable<C>::members) {
        if (member.name == name) {
            return member;
        }
    }
    throw std::invalid_argument("no member " + to_utf8(name));
}

template <class C>
Variant call(StringView name, Arguments& arguments) {
    return invoke(member_named<C>(name), &instance<C>(), arguments);
}

}  // namespace kvarta16::dates_tests
