// K codes against a second way, step by step as the members tell it; and what holds for every code.
// An input is four lines: a code, of which the first is taken apart and all four are joined.
#include <kvarta16/dates/aproste.h>

#include "fuzz_support.h"

namespace kvarta16 {
namespace {

using fuzz::expect;
using fuzz::expect_same;
using fuzz::show;

void trim(String& text) {
    while (!text.empty() && text.front() == u' ') {
        text.erase(0, 1);
    }
    while (!text.empty() && text.back() == u' ') {
        text.pop_back();
    }
}

String without_minus(String text) {
    trim(text);
    while (!text.empty() && text.front() == u'-') {
        text.erase(0, 1);
        trim(text);
    }
    while (!text.empty() && text.back() == u'-') {
        text.pop_back();
        trim(text);
    }
    return text;
}

struct Segments {
    String k1, k2, k3, k4;

    friend bool operator==(const Segments&, const Segments&) = default;
};

std::string show(const Segments& segments) {
    std::string text;
    for (const String* segment : {&segments.k1, &segments.k2, &segments.k3, &segments.k4}) {
        text += (text.empty() ? "" : ", ") + fuzz::show(*segment);
    }
    return text;
}

// What stands behind a hyphen goes with it or without it: it is cut off again in either case.
void split_off(String& segment, String& rest, std::size_t from) {
    const std::size_t hyphen = segment.find(u'-');
    if (hyphen == String::npos) {
        rest.clear();
        return;
    }
    rest = without_minus(segment.substr(hyphen + from));
    segment = without_minus(segment.substr(0, hyphen));
}

void split(Segments& segments) {
    split_off(segments.k1, segments.k2, 1);
    split_off(segments.k2, segments.k3, 0);
    split_off(segments.k3, segments.k4, 0);
}

String joined(Segments& segments) {
    segments.k1 = without_minus(segments.k1);
    String code = segments.k1;
    for (String* segment : {&segments.k2, &segments.k3, &segments.k4}) {
        *segment = without_minus(*segment);
        code += segment->empty() ? u"" : u"-" + *segment;
    }
    return code;
}

Segments taken_apart(const String& code) {
    Segments segments{without_minus(code), u"", u"", u""};
    split(segments);
    segments.k1 = without_minus(joined(segments));
    split(segments);
    segments.k1.resize(std::min<std::size_t>(segments.k1.size(), 4));
    return segments;
}

void check_members(const Segments& given) {
    const aproste simple;
    const std::string shown = show(given);
    String trimmed = given.k1;
    const Variant answer = simple.TrimMinus(trimmed);
    expect_same("TrimMinus of", shown, trimmed, without_minus(given.k1));
    expect_same("The answer of TrimMinus of", shown, ToText(answer), trimmed);

    Segments expected = given;
    const String code = joined(expected);
    Segments segments = given;
    const Variant joined_code =
        simple.Make_1234K(segments.k1, segments.k2, segments.k3, segments.k4);
    expect_same("Make_1234K of", shown, ToText(joined_code), code);
    expect_same("The segments after Make_1234K of", shown, segments, expected);

    // Of what stands in the segments before nothing remains.
    segments = given;
    simple.Make_K1234(given.k1, segments.k1, segments.k2, segments.k3, segments.k4);
    expect_same("Make_K1234 of", shown, segments, taken_apart(given.k1));
}

void check_rules(const String& code) {
    const aproste simple;
    const std::string shown = show(code);
    Segments once;
    simple.Make_K1234(code, once.k1, once.k2, once.k3, once.k4);
    const auto has_outer = [](const String& segment) {
        return !segment.empty() && (StringView(u" -").find(segment.front()) != StringView::npos ||
                                    StringView(u" -").find(segment.back()) != StringView::npos);
    };
    expect(once.k1.size() <= 4, "A first segment of at most four characters of", shown);
    // The cut of the first one may leave a blank at its end.
    expect(!has_outer(once.k2) && !has_outer(once.k3) && !has_outer(once.k4),
           "Segments without outer blanks and hyphens of", shown);
    expect(once.k2.find(u'-') == String::npos && once.k3.find(u'-') == String::npos,
           "Segments without hyphens inside of", shown);
    expect(!once.k2.empty() || (once.k3.empty() && once.k4.empty()), "Segments close up of", shown);
    expect(!once.k3.empty() || once.k4.empty(), "The last segments close up of", shown);
    Segments again = once;
    const String whole = ToText(simple.Make_1234K(again.k1, again.k2, again.k3, again.k4));
    if (!again.k1.empty()) {
        const Segments cleaned = again;
        simple.Make_K1234(whole, again.k1, again.k2, again.k3, again.k4);
        expect_same("The segments of the joined code of", shown, again, cleaned);
    }
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvarta16;
    fuzz::Input input(data, size);
    Segments given;
    for (String* segment : {&given.k1, &given.k2, &given.k3, &given.k4}) {
        *segment = input.line_as_text();
    }
    check_members(given);
    check_rules(given.k1);
    return 0;
}
