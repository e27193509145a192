#include <algorithm>

#include <kvarta16/hr/Class1.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

// The number that the character at a place (from 0) stands for. Fails: 13 behind the end too,
// since the empty text is no number.
Integer digit_at(StringView text, std::size_t place) {
    const StringView character = text.substr(std::min(place, text.size()), 1);
    const bool is_digit = !character.empty() && character[0] >= u'0' && character[0] <= u'9';
    return is_digit ? static_cast<Integer>(character[0] - u'0') : ToInteger16(String(character));
}

constexpr std::size_t weight_count = 10;

Integer weighted_sum(StringView text, StringView weights) {
    Integer sum = 0;
    for (std::size_t i = 0; i < weight_count; ++i) {
        sum = wrap16(sum + digit_at(text, i) * (weights[i] - u'0'));
    }
    return sum;
}

// Runs a check for its whole length; its failure is shown, and is false.
template <class Check>
Boolean reported(StringView place, Check check) {
    try {
        return check();
    } catch (const Failure& failure) {
        platform().message_boxes->MsgBox(ToText(failure.number()), msg_box::ok_only,
                                         failure.description() + String(place));
        return false;
    }
}

}  // namespace

Boolean Class1::Spr_PESEL(StringView p) const {
    return reported(u"/Proc:Spr_PESEL,ModT:Module,ModN:Różne", [p] {
        const int check_value = (10 - weighted_sum(p, u"1379137913") % 10) % 10;
        return check_value == digit_at(p, weight_count);
    });
}

Boolean Class1::Spr_NIP(StringView p) const {
    return reported(u"/Proc:Spr_NIP,ModT:Module,ModN:Różne", [p] {
        const int remainder = weighted_sum(p, u"6572345670") % 11;
        return (remainder == 10 ? 0 : remainder) == digit_at(p, weight_count - 1);
    });
}

}  // namespace kvarta16
