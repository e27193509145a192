// The literal rows themselves: how many there are, in what order, and that the figures keep the
// rules by which they were made, with no exception but the known ones.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <ostream>
#include <set>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <kvarta16/frame/value.h>
#include <kvarta16/statutory/interest_rows.h>
#include <kvarta16/statutory/mileage_rows.h>
#include <kvarta16/statutory/payroll_rows.h>

namespace kvarta16::statutory {
namespace {

// A payroll row in plain numbers: the month as 201203, the amounts in hundredths.
struct Entry {
    int id;
    int month;
    std::array<std::int64_t, 10> values;
};

void PrintTo(const Entry& entry, std::ostream* out) {
    *out << "(" << entry.id << ", " << entry.month << ") " << testing::PrintToString(entry.values);
}

using Key = std::pair<int, int>;  // id, month
Key key_of(const Entry& entry) {
    return {entry.id, entry.month};
}

Civil civil(Date date) {
    return civil_of(static_cast<std::int32_t>(date.days));
}

Entry entry_of(const PayrollRow& row) {
    const Civil day = civil(row.dataod);
    Entry entry{row.id, day.year * 100 + day.month, {}};
    for (std::size_t i = 0; i < entry.values.size(); ++i) {
        entry.values[i] = row.wartosc[i].count / 100;
    }
    return entry;
}

// Both halves, one behind the other.
std::vector<Entry> whole_run() {
    std::vector<Entry> run;
    for (const PayrollRow& row : payroll_rows_first) {
        run.push_back(entry_of(row));
    }
    for (const PayrollRow& row : payroll_rows_second) {
        run.push_back(entry_of(row));
    }
    return run;
}

// What a database holds after the run: a key keeps its first entry.
std::map<Key, Entry> table_after_run() {
    std::map<Key, Entry> table;
    for (const Entry& entry : whole_run()) {
        table.emplace(key_of(entry), entry);
    }
    return table;
}

// The first value of each month of one id.
std::map<int, std::int64_t> series(int id) {
    std::map<int, std::int64_t> months;
    for (const auto& [key, entry] : table_after_run()) {
        if (key.first == id) {
            months.emplace(key.second, entry.values[0]);
        }
    }
    return months;
}

std::set<int> months_of(int id) {
    std::set<int> months;
    for (const auto& [month, value] : series(id)) {
        months.insert(month);
    }
    return months;
}

// Every `step` months from `first` to `last`.
std::set<int> months_between(int first, int last, int step) {
    std::set<int> months;
    for (int n = first / 100 * 12 + first % 100 - 1; n <= last / 100 * 12 + last % 100 - 1;
         n += step) {
        months.insert(n / 12 * 100 + n % 12 + 1);
    }
    return months;
}

// ---- Payroll: the run -------------------------------------------------------------------------

TEST(PayrollRows, HaveTheirCountsAndEnds) {
    EXPECT_EQ(std::size(payroll_rows_first), 371u);
    EXPECT_EQ(std::size(payroll_rows_second), 354u);
    EXPECT_EQ(whole_run().size(), 725u);

    EXPECT_EQ(key_of(entry_of(*std::begin(payroll_rows_first))), Key(67, 200001));
    EXPECT_EQ(key_of(entry_of(*std::rbegin(payroll_rows_first))), Key(51, 201212));
    EXPECT_EQ(key_of(entry_of(*std::begin(payroll_rows_second))), Key(61, 201301));
    EXPECT_EQ(key_of(entry_of(*std::rbegin(payroll_rows_second))), Key(61, 202504));
}

template <std::size_t n>
void expect_first_of_month_and_whole_hundredths(const PayrollRow (&rows)[n]) {
    for (const PayrollRow& row : rows) {
        SCOPED_TRACE(testing::PrintToString(entry_of(row)));
        const Civil day = civil(row.dataod);
        EXPECT_EQ(day.day, 1);
        EXPECT_EQ(row.dataod.days, day_number(day.year, day.month, 1)) << "no time of day";
        for (const Currency value : row.wartosc) {
            EXPECT_EQ(value.count % 100, 0);
            EXPECT_GE(value.count, 0);
        }
    }
}

TEST(PayrollRows, BeginOnTheFirstOfAMonth) {
    expect_first_of_month_and_whole_hundredths(payroll_rows_first);
    expect_first_of_month_and_whole_hundredths(payroll_rows_second);
}

TEST(PayrollRows, RepeatThreeKeysAndTheFirstEntryWins) {
    std::map<Key, std::vector<std::int64_t>> values;
    for (const Entry& entry : whole_run()) {
        values[key_of(entry)].push_back(entry.values[0]);
    }
    EXPECT_EQ(values.size(), 722u);
    std::erase_if(values, [](const auto& item) { return item.second.size() == 1; });

    const std::map<Key, std::vector<std::int64_t>> repeated = {
        {{45, 200903}, {619310, 619110}},
        {{61, 200804}, {10970, 10970}},
        {{64, 201701}, {426300, 426300}},
    };
    EXPECT_EQ(values, repeated);
    EXPECT_EQ(series(45).at(200903), 619310);
    EXPECT_FALSE(series(45).contains(201003));
}

TEST(PayrollRows, StandInTheOrderInWhichTheyCameIn) {
    std::vector<Entry> run = whole_run();
    const auto place = [&run](int id, int month) {
        return std::find_if(run.begin(), run.end(),
                            [&](const Entry& entry) { return key_of(entry) == Key(id, month); });
    };

    // The second entry of (45, 2009-03) is the one after (6, 2010-03).
    const auto second_45 = place(6, 201003) + 1;
    EXPECT_EQ(key_of(*second_45), Key(45, 200903));
    EXPECT_EQ(key_of(*(second_45 + 1)), Key(51, 201003));

    // Id 61 up to 2007-04 is one block, from the last row of 2007-03 to the first of 2007-06.
    EXPECT_EQ(key_of(*(place(61, 200101) - 1)), Key(52, 200703));
    EXPECT_EQ(place(61, 200704) - place(61, 200101), 25);
    EXPECT_EQ(key_of(*(place(61, 200704) + 1)), Key(4, 200706));

    // Id 70 up to 2013-03 is one block behind the other rows of 2013-03.
    EXPECT_EQ(key_of(*(place(70, 200006) - 1)), Key(51, 201303));
    EXPECT_EQ(place(70, 201303) - place(70, 200006), 11);

    EXPECT_EQ(key_of(*(place(2, 200001) - 1)), Key(53, 200301));
    EXPECT_EQ(key_of(*(place(2, 200001) + 1)), Key(4, 200303));

    // Without those, and without the row that opens the second run, the rest is by date and id.
    run.erase(second_45);
    std::erase_if(run, [](const Entry& entry) {
        return entry.id == 2 || (entry.id == 61 && entry.month <= 200704) ||
               (entry.id == 70 && entry.month <= 201303) || key_of(entry) == Key(61, 201301);
    });
    EXPECT_EQ(run.size(), 725u - 1 - 1 - 26 - 12 - 1);
    EXPECT_TRUE(std::is_sorted(run.begin(), run.end(), [](const Entry& a, const Entry& b) {
        return std::pair(a.month, a.id) < std::pair(b.month, b.id);
    }));
}

// ---- Payroll: the ids -------------------------------------------------------------------------

// One line per id: entries with repeats, first and last month, slots in use, and the sum of all
// its amounts in hundredths, each times its month and the number of its slot, so that no figure
// and no month changes unnoticed.
struct IdFacts {
    int id;
    int entries;
    int first;
    int last;
    int slots;
    std::int64_t sum;

    friend bool operator==(const IdFacts&, const IdFacts&) = default;
};

void PrintTo(const IdFacts& facts, std::ostream* out) {
    *out << "{" << facts.id << ", " << facts.entries << ", " << facts.first << ", " << facts.last
         << ", " << facts.slots << ", " << facts.sum << "}";
}

// clang-format off
constexpr IdFacts id_facts[] = {
    {  2,  1, 200001, 200001,  1,        400002000},
    {  3,  2, 200201, 202201,  1,        155155775},
    {  4, 89, 200303, 202503,  1,     358131418500},
    {  5, 89, 200303, 202503,  1,     431998675711},
    {  6, 89, 200303, 202503,  1,     505855070025},
    { 10,  6, 200101, 200801,  2,      42847935976},
    { 12,  1, 200101, 200101,  1,        400202000},
    { 13,  1, 200101, 200101,  1,       1000505000},
    { 20,  8, 200101, 202207, 10, 2057585285179079},
    { 21,  3, 200101, 200901,  1,       1142585700},
    { 30,  1, 200101, 200101,  1,        195298576},
    { 31,  3, 200101, 200801,  1,        230433250},
    { 32,  1, 200101, 200101,  1,         49024745},
    { 33,  6, 200101, 200701,  1,       1007232525},
    { 34,  3, 200101, 200601,  1,          6611333},
    { 35,  1, 200101, 200101,  1,         49024745},
    { 36,  1, 200101, 200101,  1,         32416362},
    { 37, 24, 200101, 202501,  1,   59836050075000},
    { 40,  4, 200101, 200405,  3,      26541725920},
    { 41,  3, 200106, 200112,  1,      24404293320},
    { 42,  3, 200101, 200206,  2,      75612765050},
    { 43,  6, 200101, 200405,  1,      16485213209},
    { 45, 39, 200106, 201103,  1,    3994491428728},
    { 48,  1, 200206, 200206,  1,       8368610800},
    { 49,  2, 200405, 200911,  1,      18864382000},
    { 50, 26, 200101, 202501,  1,    1081892337110},
    { 51, 94, 200112, 202503,  1,    7596932847479},
    { 52, 41, 200303, 202501,  1,    2909016350269},
    { 53, 19, 200301, 202502,  1,       8017891659},
    { 54,  2, 200405, 200601,  1,      30080350000},
    { 55,  1, 200405, 200405,  2,       3807695000},
    { 56,  1, 200405, 200405,  1,       1803645000},
    { 57,  1, 200405, 200405,  2,       3206480000},
    { 61, 91, 200101, 202504,  1,     189339950510},
    { 62,  1, 200101, 200101,  1,        195298576},
    { 63,  3, 200101, 201202,  1,        351207400},
    { 64, 18, 200901, 202501,  1,    1741321187100},
    { 66,  1, 200902, 200902,  0,                0},
    { 67,  2, 200001, 201801,  1,      27780138000},
    { 70, 24, 200006, 202503,  1,     451528516733},
    { 78,  1, 201601, 201601,  1,       9072045000},
    { 79,  1, 201601, 201601,  1,       2016010000},
    { 81,  1, 201601, 201601,  1,     302401500000},
    { 85,  1, 201807, 201807,  1,      10090350000},
    { 86,  1, 201807, 201807,  1,      16649077500},
    {111,  2, 201301, 201811,  1,      22979934000},
    {112,  1, 201908, 201908,  1,    1726878742400},
    {113,  1, 202201, 202201, 10,   39065614146684},
    {116,  1, 202202, 202202,  1,         99078980},
    {117,  3, 202301, 202501,  1,     702358470000},
};
// clang-format on

TEST(PayrollRows, HoldWhatEachIdIsKnownToHold) {
    std::map<int, IdFacts> found;
    for (const Entry& entry : whole_run()) {
        IdFacts& facts =
            found.emplace(entry.id, IdFacts{entry.id, 0, entry.month, entry.month, 0, 0})
                .first->second;
        ++facts.entries;
        facts.first = std::min(facts.first, entry.month);
        facts.last = std::max(facts.last, entry.month);
        for (int slot = 0; slot < 10; ++slot) {
            const std::int64_t value = entry.values[static_cast<std::size_t>(slot)];
            facts.slots = value != 0 ? std::max(facts.slots, slot + 1) : facts.slots;
            facts.sum += value * entry.month * (slot + 1);
        }
    }
    EXPECT_EQ(found.size(), std::size(id_facts));
    for (const IdFacts& expected : id_facts) {
        ASSERT_TRUE(found.contains(expected.id)) << expected.id;
        EXPECT_EQ(found.at(expected.id), expected);
    }
}

// A zero first value is a value; there are just two of them.
TEST(PayrollRows, HoldAZeroInTwoRowsAlone) {
    std::set<Key> zeros;
    for (const auto& [key, entry] : table_after_run()) {
        if (entry.values[0] == 0) {
            zeros.insert(key);
        }
    }
    EXPECT_EQ(zeros, (std::set<Key>{{3, 202201}, {66, 200902}}));
    EXPECT_EQ(table_after_run().at({66, 200902}).values, (std::array<std::int64_t, 10>{}));
}

TEST(PayrollRows, HaveNoGapsButTheKnownOnes) {
    EXPECT_EQ(months_of(51), months_between(200112, 202503, 3));

    std::set<int> quarters = months_between(200101, 202504, 3);
    quarters.erase(200807);
    for (const int month : months_between(200910, 201104, 3)) {
        quarters.erase(month);
    }
    EXPECT_EQ(months_of(61), quarters);

    std::set<int> second_wage = months_between(200303, 200906, 3);
    second_wage.merge(months_between(201001, 202501, 12));
    second_wage.erase(202301);
    EXPECT_EQ(months_of(52), second_wage);

    EXPECT_EQ(months_of(64), months_between(200901, 202501, 12));
}

TEST(PayrollRows, UseTheirFurtherSlots) {
    using Values = std::array<std::int64_t, 10>;
    const std::map<Key, Values> known = {
        {{10, 200101}, {9256, 11570}},
        {{10, 200401}, {10225, 12782}},
        {{40, 200106}, {4120, 5100, 6370}},
        {{40, 200405}, {4300, 5300, 6600}},
        {{42, 200206}, {31810, 50580}},
        {{55, 200405}, {5000, 7000}},
        {{57, 200405}, {8000, 4000}},
        {{113, 202201},
         {6841200, 10258800, 668, 456600, 1700, 10258800, 13369200, 735, 982900, 1700}},
    };
    const std::map<Key, Entry> table = table_after_run();
    for (const auto& [key, values] : known) {
        ASSERT_TRUE(table.contains(key)) << key.first << " " << key.second;
        EXPECT_EQ(table.at(key).values, values) << key.first << " " << key.second;
    }
}

// ---- Payroll: the tax scale -------------------------------------------------------------------

struct Scale {
    int month;
    std::int64_t reduction;
    std::int64_t first_bound;
    std::int64_t first_rate;
    std::int64_t second_bound;
    std::int64_t second_rate;
    std::int64_t third_rate;  // 0: two bands, the third one repeats the second
};

constexpr std::int64_t no_limit = 99999900;

constexpr Scale scales[] = {
    {200101, 49332, 3702400, 1900, 7404800, 3000, 4000},
    {200201, 51816, 3702400, 1900, 7404800, 3000, 4000},
    {200301, 53008, 3702400, 1900, 7404800, 3000, 4000},
    {200701, 57254, 4340500, 1900, 8552800, 3000, 4000},
    {200801, 58685, 4449000, 1900, 8552800, 3000, 4000},
    {200901, 55602, 8552800, 1800, no_limit, 3200, 0},
    {202201, 510000, 12000000, 1700, no_limit, 3200, 0},
    {202207, 360000, 12000000, 1200, no_limit, 3200, 0},
};

TEST(PayrollRows, HoldTheTaxScale) {
    const std::map<Key, Entry> table = table_after_run();
    for (const Scale& scale : scales) {
        SCOPED_TRACE(scale.month);
        std::array<std::int64_t, 10> expected = {
            scale.reduction,
            0,
            scale.first_bound,
            scale.first_rate,
            scale.first_bound + 1,
            scale.second_bound,
            scale.second_rate,
            scale.second_bound + 1,
            no_limit,
            scale.third_rate,
        };
        if (scale.third_rate == 0) {
            std::copy_n(expected.begin() + 4, 3, expected.begin() + 7);
        }
        ASSERT_TRUE(table.contains({20, scale.month}));
        EXPECT_EQ(table.at({20, scale.month}).values, expected);
    }
    EXPECT_EQ(months_of(20).size(), std::size(scales));
    EXPECT_EQ(series(112).at(201908), table.at({20, 200901}).values[2]);
}

// ---- Payroll: the derived series --------------------------------------------------------------

// The percentage of id 51 in id 4; id 5 has one point more, id 6 two.
int share_of_4(int month) {
    if (month < 201909) {
        return 4;
    }
    return month < 202309 ? 5 : 8;
}

TEST(PayrollRows, KeepTheSharesOfTheAverageWage) {
    std::map<Key, std::int64_t> exceptions;
    for (const int id : {4, 5, 6}) {
        const std::map<int, std::int64_t> shares = series(id);
        EXPECT_EQ(months_of(id), months_between(200303, 202503, 3));
        for (const auto& [month, wage] : series(51)) {
            const std::int64_t percent = share_of_4(month) + id - 4;
            const std::int64_t rounded_half_up = (wage * percent + 50) / 100;
            if (month >= 200303 && shares.at(month) != rounded_half_up) {
                exceptions[{id, month}] = shares.at(month);
            }
        }
    }
    const std::map<Key, std::int64_t> known = {
        {{6, 200406}, 13963}, {{4, 201012}, 12812}, {{5, 201012}, 16015},
        {{6, 201012}, 19218}, {{5, 202303}, 40410},
    };
    EXPECT_EQ(exceptions, known);
}

TEST(PayrollRows, KeepTwiceTheAverageWage) {
    std::set<int> months = months_between(200106, 201103, 3);
    months.erase(200306);
    months.erase(201003);
    EXPECT_EQ(months_of(45), months);

    const std::map<int, std::int64_t> wages = series(51);
    std::map<int, std::int64_t> exceptions;
    for (const auto& [month, value] : series(45)) {
        const auto wage = wages.find(month);
        if (wage == wages.end() || value != 2 * wage->second) {
            exceptions[month] = value;
        }
    }
    const std::map<int, std::int64_t> known = {
        {200106, 408710}, {200109, 401384}, {200409, 466106}, {201012, 640616}, {201103, 400000},
    };
    EXPECT_EQ(exceptions, known);
}

TEST(PayrollRows, KeepATenthOfId45) {
    const std::map<int, std::int64_t> doubled = series(45);
    for (const auto& [month, value] : series(41)) {
        EXPECT_EQ(value, (doubled.at(month) + 5) / 10) << month;
    }
}

TEST(PayrollRows, KeepTheCeilingOfThirtyForecastWages) {
    const std::map<int, std::int64_t> forecast = series(64);
    std::map<int, std::int64_t> ceiling = series(37);
    std::erase_if(ceiling, [](const auto& item) { return item.first < 200901; });
    EXPECT_EQ(ceiling.size(), forecast.size());
    for (const auto& [month, wage] : forecast) {
        ASSERT_TRUE(ceiling.contains(month)) << month;
        EXPECT_EQ(ceiling.at(month), 30 * wage) << month;
    }
}

// ---- Mileage ----------------------------------------------------------------------------------

TEST(MileageRows, PairASmallEngineWithALargeOne) {
    // clang-format off
    constexpr std::array<std::int64_t, 12> rates = {
        4488, 7195,
        4690, 7519,
        4798, 7692,
        4894, 7846,
        5214, 8358,
        8900, 11500,
    };
    constexpr std::array<Civil, 6> days = {{
        {2001, 11, 1}, {2002, 4, 1}, {2003, 1, 1}, {2004, 3, 1}, {2007, 11, 14}, {2023, 1, 17},
    }};
    // clang-format on
    ASSERT_EQ(std::size(mileage_rows), rates.size());
    for (std::size_t i = 0; i < rates.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(civil(mileage_rows[i].dataod), days[i / 2]);
        EXPECT_EQ(mileage_rows[i].ponizej900, Boolean(i % 2 == 0));
        EXPECT_EQ(mileage_rows[i].wartosc_wsp4.count, rates[i]);
    }
}

// ---- Interest ---------------------------------------------------------------------------------

// The rates of one kind by day, in hundredths; of two rows with one key the later one holds.
std::map<double, std::int64_t> rates_of_kind(int kind) {
    std::map<double, std::int64_t> rates;
    for (const InterestRow& row : interest_rows) {
        if (row.rodzaj == kind) {
            rates[row.od_dnia.days] = row.procent.count / 100;
        }
    }
    return rates;
}

double day(int year, int month, int day_of_month) {
    return day_number(year, month, day_of_month);
}

// One line per kind: keys, first day, and the sum of its rates in hundredths, each times its
// day number, so that no rate and no day changes unnoticed.
struct KindFacts {
    int kind;
    std::size_t keys;
    Date first;
    std::int64_t sum;
};

// clang-format off
constexpr KindFacts kind_facts[] = {
    {0, 26, "1999-02-01"_date, 1247746925},
    {1, 15, "2016-01-01"_date, 1106969500},
    {2, 15, "2016-01-01"_date,  429365550},
    {3, 14, "2016-01-01"_date,  816452300},
    {4,  8, "2014-10-09"_date,  442563850},
    {5,  8, "2014-10-09"_date,  442563850},
};
// clang-format on

TEST(InterestRows, HoldWhatEachKindIsKnownToHold) {
    EXPECT_EQ(std::size(interest_rows), 87u);
    std::size_t keys = 0;
    for (const KindFacts& expected : kind_facts) {
        SCOPED_TRACE(expected.kind);
        const std::map<double, std::int64_t> rates = rates_of_kind(expected.kind);
        std::int64_t sum = 0;
        for (const auto& [since, rate] : rates) {
            sum += rate * static_cast<std::int64_t>(since);
        }
        EXPECT_EQ(rates.size(), expected.keys);
        EXPECT_EQ(rates.begin()->first, expected.first.days);
        EXPECT_EQ(sum, expected.sum);
        keys += rates.size();
    }
    EXPECT_EQ(keys, 86u);
    EXPECT_EQ(rates_of_kind(0).rbegin()->first, day(2022, 8, 8));
}

TEST(InterestRows, StandByDayAndKindButForTwoPlaces) {
    std::vector<std::pair<double, int>> order;
    for (const InterestRow& row : interest_rows) {
        order.emplace_back(row.od_dnia.days, row.rodzaj);
    }
    // The later day comes first.
    const auto later = std::find(order.begin(), order.end(), std::pair(day(2014, 12, 23), 0));
    ASSERT_NE(later, order.end());
    EXPECT_EQ(*(later + 1), std::pair(day(2014, 10, 9), 4));
    EXPECT_EQ(*(later + 2), std::pair(day(2014, 10, 9), 5));
    std::rotate(later, later + 1, later + 3);

    // The fourth row of the day has kind 1 where kind 3 would stand.
    const auto kind_2 = std::find(order.begin(), order.end(), std::pair(day(2021, 11, 4), 2));
    ASSERT_NE(kind_2, order.end());
    EXPECT_EQ(*(kind_2 - 2), std::pair(day(2021, 11, 4), 0));
    EXPECT_EQ(*(kind_2 - 1), std::pair(day(2021, 11, 4), 1));
    EXPECT_EQ(*(kind_2 + 1), std::pair(day(2021, 11, 4), 1));
    (kind_2 + 1)->second = 3;

    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    EXPECT_EQ(std::adjacent_find(order.begin(), order.end()), order.end());
}

TEST(InterestRows, KeepTheRelationsOfTheKinds) {
    const double exception = day(2021, 11, 4);
    std::map<double, std::int64_t> late = rates_of_kind(0);
    std::erase_if(late, [](const auto& item) { return item.first < day(2016, 1, 1); });

    std::map<double, std::int64_t> twice_late = late;
    std::map<double, std::int64_t> capital = late;
    std::map<double, std::int64_t> twice_capital = late;
    for (const auto& [since, rate] : late) {
        twice_late[since] = 2 * rate;
        capital[since] = rate - 200;
        twice_capital[since] = 2 * (rate - 200);
    }
    // On that day the rate of kind 3 is sent under kind 1.
    twice_late[exception] = twice_capital[exception];
    twice_capital.erase(exception);

    EXPECT_EQ(rates_of_kind(1), twice_late);
    EXPECT_EQ(rates_of_kind(2), capital);
    EXPECT_EQ(rates_of_kind(3), twice_capital);
    EXPECT_EQ(rates_of_kind(1).at(exception), 950);
    EXPECT_EQ(rates_of_kind(4), rates_of_kind(5));
}

TEST(InterestRows, SendTheReplacedRateFirst) {
    std::vector<std::int64_t> sent;
    for (const InterestRow& row : interest_rows) {
        if (row.od_dnia.days == day(2021, 11, 4) && row.rodzaj == 1) {
            sent.push_back(row.procent.count);
        }
    }
    EXPECT_EQ(sent, (std::vector<std::int64_t>{135000, 95000}));
}

TEST(InterestRows, HaveWholeDaysAndWholeHundredths) {
    for (const InterestRow& row : interest_rows) {
        const Civil since = civil(row.od_dnia);
        EXPECT_EQ(row.od_dnia.days, day_number(since.year, since.month, since.day));
        EXPECT_EQ(row.procent.count % 100, 0);
        EXPECT_GT(row.procent.count, 0);
    }
}

}  // namespace
}  // namespace kvarta16::statutory
