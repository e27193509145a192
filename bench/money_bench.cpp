// The members of aLiczby that screens and reports call once a field, for each kind of field.
#include <cstdio>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <kvarta16/numbers/aLiczby.h>

namespace {

using namespace kvarta16;

Variant field(const std::string& kind) {
    if (kind == "Null") {
        return Variant::null();
    }
    if (kind == "Integer") {
        return Integer{1234};
    }
    if (kind == "Long") {
        return Long{123456};
    }
    if (kind == "Double") {
        return 1234.565;
    }
    if (kind == "Currency") {
        return Currency::raw(12345650);
    }
    if (kind == "Date") {
        return Date{45429.5};
    }
    if (kind == "Boolean") {
        return true;
    }
    if (kind == "Decimal") {
        return Decimal{0, 0, 1234565, 3, false};
    }
    return u"1234,565";
}

template <class Call>
void run(benchmark::State& state, const std::string& kind, Call call) {
    const aLiczby numbers;
    const Variant value = field(kind);
    for (auto _ : state) {
        benchmark::DoNotOptimize(call(numbers, value));
    }
}

const bool registered = [] {
    for (const std::string kind : {"Null", "Boolean", "Integer", "Long", "Double", "Date",
                                   "Currency", "Decimal", "String"}) {
        benchmark::RegisterBenchmark(("VarR2Si_" + kind).c_str(), [kind](benchmark::State& state) {
            run(state, kind, [](const aLiczby& n, const Variant& v) { return n.VarR2Si(v); });
        });
        benchmark::RegisterBenchmark(("VarR2Str_" + kind).c_str(), [kind](benchmark::State& state) {
            run(state, kind, [](const aLiczby& n, const Variant& v) { return n.VarR2Str(v); });
        });
    }
    return true;
}();

}  // namespace
