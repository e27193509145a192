// Working days, identifiers and the searches of service.
#include <string>

#include <benchmark/benchmark.h>

#include <kvarta16/hr/Class1.h>
#include <kvarta16/hr/Kadry.h>

namespace {

using namespace kvarta16;

void PodajDzien_holidays(benchmark::State& state) {
    const Kadry personnel;
    Double day = day_number(2001, 1, 1);
    for (auto _ : state) {
        day = day < day_number(2030, 12, 1) ? day + 17.25 : day_number(2001, 1, 1);
        benchmark::DoNotOptimize(personnel.PodajDzień(Date{day}, true));
    }
}
BENCHMARK(PodajDzien_holidays);

void Spr_PESEL(benchmark::State& state) {
    String number = u"44051401359";
    for (auto _ : state) {
        benchmark::DoNotOptimize(number.data());
        benchmark::DoNotOptimize(Class1().Spr_PESEL(number));
    }
}
BENCHMARK(Spr_PESEL);

void Spr_NIP(benchmark::State& state) {
    String number = u"5260001246";
    for (auto _ : state) {
        benchmark::DoNotOptimize(number.data());
        benchmark::DoNotOptimize(Class1().Spr_NIP(number));
    }
}
BENCHMARK(Spr_NIP);

void licz_okres(benchmark::State& state) {
    const Kadry personnel;
    Integer years = 0;
    Integer months = 0;
    Integer days = 0;
    Double day = 40000;
    for (auto _ : state) {
        day = day < 46000 ? day + 17 : 40000;
        personnel.licz_okres(Date{39000}, Date{day}, years, months, days);
        benchmark::DoNotOptimize(days);
    }
}
BENCHMARK(licz_okres);

void data_10l_from_zero(benchmark::State& state) {
    const Kadry personnel;
    for (auto _ : state) {
        Integer sums[6] = {};
        benchmark::DoNotOptimize(personnel.data_10l(Date{43831}, 0, 0, 0, sums[0], sums[1], sums[2],
                                                    sums[3], sums[4], sums[5]));
    }
}
BENCHMARK(data_10l_from_zero);

}  // namespace
