// A pause, bounds, small changes of texts, the end of a recordset; the other concerns of the class
// stand in the files aproste_*.cpp beside this one.
#include <kvarta16/dates/aproste.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

constexpr char16_t carriage_return = u'\r';
constexpr char16_t line_feed = u'\n';

// The lower bound goes first, which settles what bounds that have crossed mean.
template <class Number>
Number within(Number x, Number min, Number max) {
    if (x < min) {
        return min;
    }
    return x > max ? max : x;
}

}  // namespace

void aproste::CzekajSek(Long Sekundy) const {
    platform().sleeper->Sleep(wrap32(std::int64_t{Sekundy} * 1000));
}

Long aproste::MinMax(Long x, Long min, Long max) const {
    return within(x, min, max);
}

Integer aproste::MinMaxi(Integer x, Integer min, Integer max) const {
    return within(x, min, max);
}

Long aproste::max(Long x, Long y) const {
    return x >= y ? x : y;
}

Integer aproste::MAXi(Integer x, Integer y) const {
    return x >= y ? x : y;
}

void aproste::Zamień(String& aas, String& bbs) const {
    aas.swap(bbs);
}

String aproste::Bez_1310(StringView s) const {
    String result(s);
    std::erase_if(result,
                  [](char16_t unit) { return unit == carriage_return || unit == line_feed; });
    return result;
}

String aproste::Bez_1310_spc(StringView s) const {
    String result;
    bool feed_is_line_end = true;
    for (const char16_t unit : s) {
        if (unit == carriage_return) {
            result += u' ';
            feed_is_line_end = false;
        } else if (unit == line_feed) {
            if (feed_is_line_end) {
                result += u' ';
            }
        } else {
            result += unit;
            feed_is_line_end = true;
        }
    }
    return String(trim(result));
}

String aproste::Nazwa_pliu_z____(StringView s) const {
    String result(s);
    if (!result.empty()) {
        result.back() = u'_';
    }
    return result;
}

void aproste::DbCloseSEL(std::shared_ptr<ado::Recordset>& Pr) const {
    guarded([&] {
        if (Pr != nullptr) {
            Pr->Close();
        }
    });
    Pr.reset();
}

}  // namespace kvarta16
