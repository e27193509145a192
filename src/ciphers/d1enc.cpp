#include <kvarta16/ciphers/alphabets.h>
#include <kvarta16/ciphers/d1enc.h>

namespace kvarta16 {
namespace {

constexpr ciphers::CipherTable table(u"\"", ciphers::order_of_d1enc, u"\r\n");

}  // namespace

void d1enc::KeyString(StringView value) {
    key_ = table.places_of_key(value);
}

String d1enc::Encrypt(StringView mstext) const {
    const StringView text = mstext.substr(0, reach_of_16_bits(mstext));
    String output(text.size(), u'\0');
    std::size_t count = 0;
    std::size_t turn = 0;
    for (const char16_t unit : text) {
        const ciphers::Place column = table.place_of(unit);
        if (column == ciphers::absent) {
            fail(error::invalid_call);  // the text comes before the key, which may be empty
        }
        const ciphers::Place key = key_[turn];
        if (key != ciphers::absent) {
            output[count++] = table.row_start(key, column);
        }
        turn = ciphers::next_turn(turn, key_.size());
    }
    output.resize(count);
    return output;
}

}  // namespace kvarta16
