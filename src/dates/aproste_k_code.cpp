// The K codes of aproste: a text of up to four segments joined by hyphens.
#include <kvarta16/dates/aproste.h>

namespace kvarta16 {
namespace {

constexpr char16_t hyphen = u'-';
constexpr Long longest_first_segment = 4;

// The hyphens go first at the front and then at the end, blanks with each of them.
String without_outer_hyphens(StringView text) {
    text = trim(text);
    while (text.starts_with(hyphen)) {
        text = trim(text.substr(1));
    }
    while (text.ends_with(hyphen)) {
        text = trim(text.substr(0, text.size() - 1));
    }
    return String(text);
}

// Moves what stands behind the first hyphen of `segment` into `rest`; without a hyphen there is
// no rest. The hyphen itself would go with the outer ones of the rest.
void split_off(String& segment, String& rest) {
    const std::size_t at = segment.find(hyphen);
    if (at == String::npos) {
        rest.clear();
        return;
    }
    rest = without_outer_hyphens(StringView(segment).substr(at + 1));
    segment = without_outer_hyphens(StringView(segment).substr(0, at));
}

void split(String& first, String& second, String& third, String& fourth) {
    split_off(first, second);
    split_off(second, third);
    split_off(third, fourth);
}

}  // namespace

Variant aproste::TrimMinus(String& a) const {
    a = without_outer_hyphens(a);
    return a;
}

void aproste::Make_K1234(StringView k, String& K1, String& k2, String& k3, String& k4) const {
    K1 = without_outer_hyphens(k);
    split(K1, k2, k3, k4);
    K1 = without_outer_hyphens(ToText(Make_1234K(K1, k2, k3, k4)));
    split(K1, k2, k3, k4);
    K1 = left_part(K1, longest_first_segment);
}

Variant aproste::Make_1234K(String& K1, String& k2, String& k3, String& k4) const {
    K1 = without_outer_hyphens(K1);
    String code = K1;
    for (String* segment : {&k2, &k3, &k4}) {
        *segment = without_outer_hyphens(*segment);
        if (!segment->empty()) {
            code.append(1, hyphen).append(*segment);
        }
    }
    return code;
}

}  // namespace kvarta16
