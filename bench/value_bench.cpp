// The primitives beside what a C++ user would otherwise take for the same work.
#include <array>
#include <charconv>
#include <cstdio>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>
#include <fast_float/fast_float.h>
#include <fmt/format.h>

#include <kvarta16/frame/value.h>

namespace {

using namespace kvarta16;

// Amounts as they stand in fields, so that no run predicts one and the same branch.
constexpr std::array<std::int64_t, 8> counts = {12345600, 99900, 1234500, 70500,
                                                45678900, 5000,  8812300, 100000000};

void ToCurrency_text(benchmark::State& state) {
    const Variant text = u"1234,56";
    for (auto _ : state) {
        benchmark::DoNotOptimize(ToCurrency(text));
    }
}
BENCHMARK(ToCurrency_text);

void peer_fast_float(benchmark::State& state) {
    std::string_view text = "1234.56";
    benchmark::DoNotOptimize(text);
    for (auto _ : state) {
        double value = 0;
        fast_float::from_chars(text.data(), text.data() + text.size(), value);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(peer_fast_float);

void peer_from_chars(benchmark::State& state) {
    std::string_view text = "1234.56";
    benchmark::DoNotOptimize(text);
    for (auto _ : state) {
        double value = 0;
        std::from_chars(text.data(), text.data() + text.size(), value);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(peer_from_chars);

void peer_strtod(benchmark::State& state) {
    const char* text = "1234.56";
    benchmark::DoNotOptimize(text);
    for (auto _ : state) {
        benchmark::DoNotOptimize(std::strtod(text, nullptr));
    }
}
BENCHMARK(peer_strtod);

void IsNumericText_text(benchmark::State& state) {
    const Variant text = u"1234,56";
    for (auto _ : state) {
        benchmark::DoNotOptimize(IsNumericText(text));
    }
}
BENCHMARK(IsNumericText_text);

void ValPrefix_text(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(ValPrefix(u"1234.56 PLN"));
    }
}
BENCHMARK(ValPrefix_text);

template <class Value>
Value amount(std::size_t i) {
    if constexpr (std::is_same_v<Value, Currency>) {
        return Currency::raw(counts[i % counts.size()]);
    } else {
        return static_cast<Value>(counts[i % counts.size()]) / Value{10000};
    }
}

template <class Value>
void ToText_of(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ToText(amount<Value>(i++)));
    }
}
BENCHMARK(ToText_of<Currency>)->Name("ToText_Currency");
BENCHMARK(ToText_of<Double>)->Name("ToText_Double");

template <class Value>
void FormatMask_of(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(FormatMask(amount<Value>(i++), u"0.00"));
    }
}
BENCHMARK(FormatMask_of<Currency>)->Name("FormatMask_Currency");
BENCHMARK(FormatMask_of<Double>)->Name("FormatMask_Double");

void peer_fmt(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(fmt::format("{:.2f}", amount<Double>(i++)));
    }
}
BENCHMARK(peer_fmt);

void peer_snprintf(benchmark::State& state) {
    std::size_t i = 0;
    char buffer[32];
    for (auto _ : state) {
        std::snprintf(buffer, sizeof buffer, "%.2f", amount<Double>(i++));
        benchmark::DoNotOptimize(buffer);
    }
}
BENCHMARK(peer_snprintf);

void FormatMask_date(benchmark::State& state) {
    Double day = 45429;
    for (auto _ : state) {
        benchmark::DoNotOptimize(FormatMask(Date{day}, u"yyyy-MM-dd"));
        day = day < 60000 ? day + 1 : 40000;
    }
}
BENCHMARK(FormatMask_date);

void ToDate_text(benchmark::State& state) {
    const Variant text = u"2024-05-17";
    for (auto _ : state) {
        benchmark::DoNotOptimize(ToDate(text));
    }
}
BENCHMARK(ToDate_text);

void MakeDate_numbers(benchmark::State& state) {
    Integer month = 1;
    for (auto _ : state) {
        benchmark::DoNotOptimize(MakeDate(2024, month, 15));
        month = static_cast<Integer>(month % 12 + 1);
    }
}
BENCHMARK(MakeDate_numbers);

template <class Value>
void RoundHalfEven_of(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(round_half_even(amount<Value>(i++), Integer{2}));
    }
}
BENCHMARK(RoundHalfEven_of<Currency>)->Name("RoundHalfEven_Currency");
BENCHMARK(RoundHalfEven_of<Double>)->Name("RoundHalfEven_Double");

}  // namespace
