// The calendar and the conversions of screens, beside <chrono> where it does the same work.
#include <chrono>
#include <string>

#include <benchmark/benchmark.h>

#include <kvarta16/dates/aDaty.h>
#include <kvarta16/dates/aproste.h>

namespace {

using namespace kvarta16;

// Days that no run predicts: one after another through some fifty years.
class Days {
  public:
    Date next() { return {day_ = day_ < 60000 ? day_ + 17.25 : 40000.25}; }

  private:
    Double day_ = 40000;
};

void EOMonth_date(benchmark::State& state) {
    Days days;
    for (auto _ : state) {
        benchmark::DoNotOptimize(instance<aDaty>().EOMonth(days.next()));
    }
}
BENCHMARK(EOMonth_date);

void peer_chrono_month_end(benchmark::State& state) {
    using namespace std::chrono;
    Days days;
    for (auto _ : state) {
        const sys_days at{std::chrono::days{static_cast<int>(days.next().days) - 25569}};
        const year_month_day civil(at);
        benchmark::DoNotOptimize(sys_days{civil.year() / civil.month() / last});
    }
}
BENCHMARK(peer_chrono_month_end);

// The last week: a walk by days would be the longest.
void BOWeek_last(benchmark::State& state) {
    Integer year = 1900;
    for (auto _ : state) {
        benchmark::DoNotOptimize(instance<aDaty>().BOWeek(year, 53));
        year = static_cast<Integer>(year < 2100 ? year + 1 : 1900);
    }
}
BENCHMARK(BOWeek_last);

void DaysBackToWeekday(benchmark::State& state) {
    Days days;
    for (auto _ : state) {
        benchmark::DoNotOptimize(instance<aDaty>().DzieńDoDnia(days.next(), u"sobota"));
    }
}
BENCHMARK(DaysBackToWeekday);

void FlexStr2Date_text(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(instance<aproste>().FlexStr2Date(u"2024-05-17"));
    }
}
BENCHMARK(FlexStr2Date_text);

void Flex2DateStr_text(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(instance<aproste>().Flex2DateStr(u"2024-05-17"));
    }
}
BENCHMARK(Flex2DateStr_text);

void HLiczToGodz_number(benchmark::State& state) {
    Double hours = 0;
    for (auto _ : state) {
        hours = hours < 24 ? hours + 0.13 : 0;
        benchmark::DoNotOptimize(instance<aproste>().HLiczToGodz(hours));
    }
}
BENCHMARK(HLiczToGodz_number);

void HGodzToLicz_text(benchmark::State& state) {
    String text = u"7:45";
    for (auto _ : state) {
        benchmark::DoNotOptimize(instance<aproste>().HGodzToLicz(text));
    }
}
BENCHMARK(HGodzToLicz_text);

void Make_K1234_text(benchmark::State& state) {
    String k1, k2, k3, k4;
    for (auto _ : state) {
        instance<aproste>().Make_K1234(u"1234-56-78-90", k1, k2, k3, k4);
        benchmark::DoNotOptimize(k4);
    }
}
BENCHMARK(Make_K1234_text);

// A line of eighty characters in which the last blank stands far from its end.
void Obcinaj_text(benchmark::State& state) {
    const String text = String(30, u'a') + u" " + String(90, u'b');
    Long width = 80;
    for (auto _ : state) {
        benchmark::DoNotOptimize(instance<aproste>().Obcinaj(text, width, 1));
    }
}
BENCHMARK(Obcinaj_text);

}  // namespace
