#include <kvarta16/ciphers/alphabets.h>
#include <kvarta16/ciphers/dsEncrypt.h>

namespace kvarta16 {
namespace {

constexpr ciphers::CipherTable table(u"", ciphers::order_of_dsEncrypt, u"\r\n\"");

}  // namespace

void dsEncrypt::KeyString(StringView value) {
    key_ = table.places_of_key(value);
}

String dsEncrypt::Encrypt(StringView mstext) const {
    String output(mstext.substr(0, reach_of_16_bits(mstext)));
    std::size_t turn = 0;
    for (char16_t& unit : output) {
        const ciphers::Place column = table.place_of(unit);
        const ciphers::Place key = key_[turn];
        if (column != ciphers::absent && key != ciphers::absent) {
            unit = table.row_start(key, column);
        }
        turn = ciphers::next_turn(turn, key_.size());
    }
    return output;
}

}  // namespace kvarta16
