// Tells which versions of the other libraries the figures stand beside.
#include <string>

#include <benchmark/benchmark.h>
#include <curl/curl.h>
#include <fast_float/fast_float.h>
#include <fmt/core.h>
#include <gnu/libc-version.h>
#include <sqlite3.h>
#include <unicode/uvernum.h>

namespace {

std::string parts(int version, int unit) {
    return std::to_string(version / unit / unit) + "." + std::to_string(version / unit % unit) +
           "." + std::to_string(version % unit);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::AddCustomContext("GCC or Clang", __VERSION__);
    benchmark::AddCustomContext("glibc (strtod, snprintf, iconv)", gnu_get_libc_version());
    benchmark::AddCustomContext("fmt", parts(FMT_VERSION, 100));
    benchmark::AddCustomContext("fast_float", KVARTA16_FAST_FLOAT_VERSION);
    benchmark::AddCustomContext("ICU", U_ICU_VERSION);
    benchmark::AddCustomContext("SQLite", sqlite3_libversion());
    benchmark::AddCustomContext("libcurl", curl_version_info(CURLVERSION_NOW)->version);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
