// An amount in Polish words.
#include <algorithm>
#include <iostream>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/numbers/ClsSlownie.h>

#include "commands.h"
#include "usage_error.h"

namespace kvarta16::tool {
namespace {

bool are_digits(StringView text) {
    return std::ranges::all_of(text, [](char16_t c) { return c >= u'0' && c <= u'9'; });
}

// The amount as the words are made from: digits and one comma. People group the digits by blanks
// and write a dot for the comma; what is no amount in złoty and grosze is refused rather than
// guessed at.
String plain_amount(const std::string& word) {
    constexpr char16_t no_break_space = 0x00A0;
    String amount = from_utf8(word);
    std::erase_if(amount, [](char16_t c) { return c == u' ' || c == no_break_space; });
    const StringView unsigned_amount = StringView(amount).substr(amount.starts_with(u'-') ? 1 : 0);
    const std::size_t point =
        std::min(unsigned_amount.find_first_of(u",."), unsigned_amount.size());
    const StringView zlotys = unsigned_amount.substr(0, point);
    const StringView groszy = unsigned_amount.substr(std::min(point + 1, unsigned_amount.size()));
    if (zlotys.empty() || !are_digits(zlotys) || !are_digits(groszy) || groszy.size() > 2) {
        throw UsageError("\"" + word + "\" is no amount; write it as 1234,56");
    }
    std::ranges::replace(amount, u'.', u',');
    return amount;
}

}  // namespace

int words_command(const std::string& amount) {
    std::cout << to_utf8(ClsSłownie().slownie(plain_amount(amount))) << '\n';
    return 0;
}

}  // namespace kvarta16::tool
