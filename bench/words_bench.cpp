// Words, code pages, the calculator and the ciphers, with iconv beside the code pages and ICU
// beside the words.
#include <string>

#include <benchmark/benchmark.h>
#include <iconv.h>
#include <unicode/rbnf.h>

#include <kvarta16/ciphers/d1enc.h>
#include <kvarta16/ciphers/dsEncrypt.h>
#include <kvarta16/numbers/ClsSlownie.h>
#include <kvarta16/numbers/aLiczby.h>
#include <kvarta16/text/aChar.h>

namespace {

using namespace kvarta16;

// So many characters of Polish prose.
String prose(std::size_t size) {
    String text;
    while (text.size() < size) {
        text += u"Zażółć gęślą jaźń. Faktura nr 12 za usługi księgowe, płatna w ciągu 14 dni. ";
    }
    text.resize(size);
    return text;
}

constexpr std::size_t page = 4096;

void count_characters(benchmark::State& state, std::size_t per_round) {
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(per_round));
}

template <auto member>
void konwert(benchmark::State& state) {
    const aChar object;
    const String text = prose(page);
    for (auto _ : state) {
        benchmark::DoNotOptimize((object.*member)(text));
    }
    count_characters(state, page);
}
BENCHMARK(konwert<&aChar::KonwertNaMaz>)->Name("KonwertNaMaz_4K");
BENCHMARK(konwert<&aChar::KonwertPlatnik>)->Name("KonwertPlatnik_4K");
BENCHMARK(konwert<&aChar::KonwertNaWin>)->Name("KonwertNaWin_4K");
BENCHMARK(konwert<&aChar::konwertNaBPL>)->Name("konwertNaBPL_4K");
BENCHMARK(konwert<&aChar::Konwert_lan>)->Name("Konwert_lan_4K");

void konwert_litery(benchmark::State& state) {
    const aChar object;
    const String text = prose(page);
    const Variant set = u"acelnoszzACELNOSZZ";
    for (auto _ : state) {
        benchmark::DoNotOptimize(object.KonwertLitery(text, set));
    }
    count_characters(state, page);
}
BENCHMARK(konwert_litery)->Name("KonwertLitery_4K");

// The C library on the same characters, into a text of its own as ours is.
void peer_iconv_cp852(benchmark::State& state) {
    const iconv_t handle = iconv_open("CP852", "UTF-16LE");
    String text = prose(page);
    for (auto _ : state) {
        std::string result(page, '\0');
        char* in = reinterpret_cast<char*>(text.data());
        char* out = result.data();
        std::size_t in_left = page * sizeof(char16_t);
        std::size_t out_left = result.size();
        if (iconv(handle, &in, &in_left, &out, &out_left) != 0) {
            state.SkipWithError("iconv did not take the text");
            break;
        }
        benchmark::DoNotOptimize(result);
    }
    iconv_close(handle);
    count_characters(state, page);
}
BENCHMARK(peer_iconv_cp852)->Name("peer_iconv_cp852_4K");

void slownie(benchmark::State& state, StringView amount) {
    const ClsSłownie object;
    for (auto _ : state) {
        benchmark::DoNotOptimize(object.slownie(amount));
    }
}
BENCHMARK_CAPTURE(slownie, 1234_56, StringView(u"1234,56"));
BENCHMARK_CAPTURE(slownie, 0_50, StringView(u"0,50"));
BENCHMARK_CAPTURE(slownie, 987654321_99, StringView(u"987654321,99"));

// The number of złoty in Polish words, as a caller takes it from a general library.
void peer_icu_spellout(benchmark::State& state) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::RuleBasedNumberFormat format(icu::URBNF_SPELLOUT, icu::Locale("pl"), status);
    if (U_FAILURE(status)) {
        state.SkipWithError("no Polish words");
        return;
    }
    for (auto _ : state) {
        icu::UnicodeString words;
        benchmark::DoNotOptimize(format.format(1234, words));
    }
}
BENCHMARK(peer_icu_spellout)->Name("peer_icu_spellout_1234");

void expression(benchmark::State& state, StringView text) {
    const aLiczby object;
    for (auto _ : state) {
        String st(text);
        benchmark::DoNotOptimize(object.PoliczWyrażenie(st));
    }
}
BENCHMARK_CAPTURE(expression, 2_add_3_times_4, StringView(u"=2+3*4"));
BENCHMARK_CAPTURE(expression, decimals, StringView(u"=1234,56*0,23+12,5/3"));
BENCHMARK_CAPTURE(expression, none, StringView(u"Faktura"));

template <class Cipher>
void encrypt(benchmark::State& state) {
    Cipher cipher;
    cipher.KeyString(u"Tajny klucz");
    const String text = prose(page);
    for (auto _ : state) {
        benchmark::DoNotOptimize(cipher.Encrypt(text));
    }
    count_characters(state, page);
}
BENCHMARK(encrypt<dsEncrypt>)->Name("dsEncrypt_4K");
BENCHMARK(encrypt<d1enc>)->Name("d1enc_4K");

}  // namespace
