// Where a long text is broken: Obcinaj and its sisters against a second search, and a text broken
// line by line to its end. An input is the width and the start, two bytes each, and the text.
#include <kvarta16/dates/aproste.h>

#include "fuzz_support.h"

namespace kvarta16 {
namespace {

using fuzz::expect;
using fuzz::expect_same;
using fuzz::outcome_of;
using fuzz::show;

struct Sister {
    bool looks_for_line_ends;
    StringView breaks;
    bool answers_width;  // for a text that fits from its first character on
};
constexpr Sister obcinaj = {true, u" -_.,&", false};
constexpr Sister obcinaj_do_przecinka = {true, u",", false};
constexpr Sister obcinaj_v = {false, u" ", true};

Long wanted_for(const Sister& sister, StringView text, Long width, Long start) {
    const std::int64_t count = static_cast<std::int64_t>(text.size());
    const std::int64_t wide = std::max<Long>(width, 1);
    const std::int64_t end = wrap32(start + wide - 1);
    if (count < end) {
        return sister.answers_width && start == 1 ? static_cast<Long>(wide)
                                                  : wrap32(count - start + 1);
    }
    const auto unit = [&](std::int64_t position) -> char16_t {
        if (position < 1) {
            throw Failure(error::invalid_call);
        }
        return position <= count ? text[static_cast<std::size_t>(position - 1)] : u' ';
    };
    if (sister.looks_for_line_ends) {
        for (std::int64_t i = std::max<std::int64_t>(end, 1); i >= start; --i) {
            if (unit(i) == u'\r' && unit(i + 1) == u'\n') {
                return static_cast<Long>(i - start + 1);
            }
        }
    }
    for (std::int64_t i = end; i >= start; --i) {
        if (sister.breaks.find(unit(i)) != StringView::npos) {
            return static_cast<Long>(i - start + 1);
        }
    }
    return static_cast<Long>(wide);
}

template <class Member>
void check_sister(const Sister& sister, const char* name, Member member, StringView text,
                  Long width, Long start) {
    const std::string shown = show(text) + ", " + show(width) + ", " + show(start);
    Long written = width;
    const auto actual = outcome_of([&] { return member(written); });
    const auto wanted = outcome_of([&] { return wanted_for(sister, text, width, start); });
    expect_same(name, shown, actual, wanted);
    expect_same("The width after it", shown, written, std::max<Long>(width, 1));
}

void check_one(StringView text, Long width, Long start) {
    const aproste simple;
    check_sister(
        obcinaj, "Obcinaj", [&](Long& dl) { return simple.Obcinaj(text, dl, start); }, text, width,
        start);
    check_sister(
        obcinaj_do_przecinka, "obcinaj_do_Przecinka",
        [&](Long& dl) { return simple.obcinaj_do_Przecinka(text, dl, start); }, text, width, start);
    check_sister(
        obcinaj_v, "obcinaj_v", [&](Long& dl) { return simple.obcinaj_v(text, dl, start); }, text,
        width, start);
    Long dl = width;
    expect_same("obcinaj_v of Null at", show(width), simple.obcinaj_v(Variant::null(), dl, start),
                std::max<Long>(width, 1));
}

// As a report prints a text: each line is what Obcinaj tells, and no character is lost.
void check_lines(StringView text, Long width) {
    const aproste simple;
    const std::string shown = show(text) + " by " + show(width);
    const Long count = length(text);
    Long position = 1;
    while (position <= count) {
        Long dl = width;
        const Long taken = simple.Obcinaj(text, dl, position);
        expect(taken >= 1 && taken <= dl, "A line of 1 to dl characters of", shown);
        expect(position + taken - 1 <= count, "A line that ends with the text of", shown);
        position += taken;
    }
    expect_same("The characters of all lines of", shown, position, count + 1);
}

// The two that turn line ends away.
void check_line_ends(StringView text) {
    const aproste simple;
    String bare;
    String blanked;
    bool is_behind_return = false;
    for (const char16_t unit : text) {
        const bool is_end = unit == u'\r' || unit == u'\n';
        if (!is_end) {
            bare += unit;
        }
        if (unit == u'\n' && is_behind_return) {
            continue;
        }
        blanked += is_end ? u' ' : unit;
        is_behind_return = unit == u'\r';
    }
    while (blanked.starts_with(u' ')) {
        blanked.erase(0, 1);
    }
    while (blanked.ends_with(u' ')) {
        blanked.pop_back();
    }
    expect_same("Bez_1310 of", show(text), simple.Bez_1310(text), bare);
    expect_same("Bez_1310_spc of", show(text), simple.Bez_1310_spc(text), blanked);
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvarta16;
    constexpr std::size_t longest = 300;
    constexpr Long largest = 2147483647;
    fuzz::Input input(data, std::min(size, longest));
    const auto width = input.number<std::int16_t>();
    const auto start = input.number<std::int16_t>();
    const String text = input.rest_as_text();
    check_one(text, width, start);
    check_one(text, largest - (width & 0xFF), start);
    check_one(text, width, largest - (start & 0xFF));
    check_lines(text, width % 64);
    check_line_ends(text);
    return 0;
}
