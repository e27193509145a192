// slownie against a second walk: the digits from the units on, each word put before what is there.
#include <kvarta16/numbers/ClsSlownie.h>

#include "fuzz_support.h"
#include "second_numbers.h"

namespace kvarta16 {
namespace {

constexpr StringView teens[] = {u"Dziesięć",    u"Jedenaście",    u"Dwanaście",  u"Trzynaście",
                                u"Czternaście", u"Piętnaście",    u"Szesnaście", u"Siedemnaście",
                                u"Osiemnaście", u"Dziewiętnaście"};
constexpr StringView units[] = {u"",     u"Jeden", u"Dwa",    u"Trzy",  u"Cztery",
                                u"Pięć", u"Sześć", u"Siedem", u"Osiem", u"Dziewięć"};
constexpr StringView tens[] = {u"",
                               u"Dziesięć",
                               u"Dwadzieścia",
                               u"Trzydzieści",
                               u"Czterdzieści",
                               u"Pięćdziesiąt",
                               u"Sześćdziesiąt",
                               u"Siedemdziesiąt",
                               u"Osiemdziesiąt",
                               u"Dziewięćdziesiąt"};
constexpr StringView hundreds[] = {u"",          u"Sto",        u"Dwieście", u"Trzysta",
                                   u"Czterysta", u"Pięćset",    u"Sześćset", u"Siedemset",
                                   u"Osiemset",  u"Dziewięćset"};

String thousands(std::size_t digit, bool is_long) {
    return digit <= 1 ? (is_long ? u"Tysięcy" : u"Tysiąc") : digit <= 4 ? u"Tysiące" : u"Tysięcy";
}

String millions(std::size_t digit, bool is_long) {
    if (digit == 0) {
        return u"";
    }
    return digit == 1 ? (is_long ? u"Milionów" : u"Milion") : digit <= 4 ? u"Miliony" : u"Milionów";
}

String wanted_for(String text) {
    if (text.starts_with(u'-')) {
        text.erase(0, 1);
    }
    if (text.find(u',') == String::npos) {
        text += u",00";
    }
    const std::size_t comma = text.find(u',');
    const String amount = text.substr(0, comma);
    String grosze = text.substr(comma + 1);
    if (grosze.size() == 1) {
        grosze += u'0';
    }
    const String reversed(amount.rbegin(), amount.rend());
    const std::size_t count = reversed.size();
    const auto digit = [&](std::size_t position) {  // from 1
        const char16_t unit = position <= count ? reversed[position - 1] : u'0';
        return unit >= u'0' && unit <= u'9' ? static_cast<std::size_t>(unit - u'0') : 0;
    };
    const bool is_zero = fuzz::second_double(fuzz::second_prefix(amount)) == 0;
    String words;
    for (std::size_t position = 1; position <= count;) {
        const std::size_t d = digit(position);
        const std::size_t place = position % 3;
        if (position == 4) {
            words.insert(0, thousands(d, count > 4));
        }
        if (position == 7) {
            words.insert(0, millions(d, count > 7));
        }
        if (place == 1 && digit(position + 1) == 1) {
            words.insert(0, teens[d]);
            position += 2;
            continue;
        }
        const StringView unit = d == 0 && is_zero ? StringView(u"zero ") : units[d];
        words.insert(0, place == 1 ? unit : place == 2 ? tens[d] : hundreds[d]);
        ++position;
    }
    return words + u" zł i " + grosze + u" gr";
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvarta16;
    constexpr std::size_t longest = 500;
    const String text = fuzz::Input(data, std::min(size, longest)).rest_as_text();
    fuzz::expect_same("slownie of", fuzz::show(text), ClsSłownie().slownie(text), wanted_for(text));
    return 0;
}
