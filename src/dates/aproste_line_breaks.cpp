// Where aproste breaks a long text for a line of a given width. Positions go down from the far end
// of the line, and one below 1 is the failure of the primitive that reads the text there.
#include <algorithm>

#include <kvarta16/dates/aproste.h>

namespace kvarta16 {
namespace {

constexpr StringView line_end = u"\r\n";

// Both searches give the last place from `from` down to `to`, 0 if there is none.

Long last_line_end(StringView text, Long from, Long to) {
    for (Long i = std::max<Long>(from, 1); i >= to; --i) {
        if (substring(text, i, 2) == line_end) {
            return i;
        }
    }
    return 0;
}

Long last_break(StringView text, StringView break_characters, Long from, Long to) {
    for (Long i = from; i >= to; --i) {
        if (break_characters.find(substring(text, i, 1)) != StringView::npos) {
            return i;
        }
    }
    return 0;
}

// The last position of a line of `dl` characters from `pocz`.
Long end_of_line(Long pocz, Long dl) {
    return wrap32(std::int64_t{pocz} + dl - 1);
}

// How many characters there are from `pocz` up to a position.
Long count_from(Long pocz, Long position) {
    return wrap32(std::int64_t{position} - pocz + 1);
}

// The two sisters for texts, which differ in the break characters.
Long width_to_break(StringView text, Long& width, Long from, StringView break_characters) {
    width = std::max<Long>(width, 1);
    const Long end = end_of_line(from, width);
    if (length(text) < end) {
        return count_from(from, length(text));
    }
    if (const Long at = last_line_end(text, end, from)) {
        return count_from(from, at);
    }
    if (const Long at = last_break(text, break_characters, end, from)) {
        return count_from(from, at);
    }
    return width;
}

}  // namespace

Long aproste::Obcinaj(StringView lanc, Long& dl, Long pocz) const {
    return width_to_break(lanc, dl, pocz, u" -_.,&");
}

Long aproste::obcinaj_do_Przecinka(StringView lanc, Long& dl, Long pocz) const {
    return width_to_break(lanc, dl, pocz, u",");
}

Long aproste::obcinaj_v(const Variant& lanc, Long& dl, Long pocz) const {
    dl = std::max<Long>(dl, 1);
    if (IsNullValue(lanc)) {
        return dl;
    }
    const String text = ToText(lanc);
    const Long end = end_of_line(pocz, dl);
    if (length(text) < end) {
        return pocz == 1 ? dl : count_from(pocz, length(text));
    }
    const Long at = last_break(text, u" ", end, pocz);
    return at != 0 ? count_from(pocz, at) : dl;
}

}  // namespace kvarta16
