// A cipher for short texts with a key: the same call enciphers and deciphers.
//
//   dsEncrypt cipher;
//   cipher.KeyString(u"klucz");
//   const String secret = cipher.Encrypt(u"Zażółć gęślą jaźń");
//   cipher.Encrypt(secret)                                   "Zażółć gęślą jaźń"
//
// A table cipher of the Beaufort kind over 115 characters: the letters with the Polish ones, the
// digits, the blank, all ASCII marks, and both line end characters. It keeps a text from being
// read in passing and is no protection beyond that. d1enc is its sister; they differ in the order
// of the alphabet and in what becomes of a character outside it.
#pragma once

#include <vector>

#include <kvarta16/ciphers/table_cipher.h>
#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

class KVARTA16_EXPORT dsEncrypt {
  public:
    // Sets the key, which stays until the next one; it cannot be read back. Its length counts in
    // 16 bits: of a key of 32768 to 65537 characters only the first is used. Strict; cannot fail.
    void KeyString(StringView value);

    // `mstext` enciphered, or deciphered, from the key's first character on. What is outside the
    // alphabet stays as it is, in its place: a character of the text, and any character whose turn
    // of the key is outside, so that without a key the text comes back. The key moves on all the
    // same. The length counts in 16 bits: "" for 32768 to 65536 characters. Strict; cannot fail.
    [[nodiscard]] String Encrypt(StringView mstext) const;

  private:
    std::vector<ciphers::Place> key_ = {ciphers::absent};
};

template <>
struct ClassTable<dsEncrypt> {
    static constexpr ClassHeader header{u"dsEncrypt", Instancing::Creatable,
                                        "89F7DF17-7B2C-4056-97CB-11407F49E97C",
                                        "D281E243-86E6-486A-9C34-F898AF233E16"};
    static constexpr auto members = std::to_array<MemberInfo>({
        ciphers::write_only(method<&dsEncrypt::KeyString>(u"KeyString", by_reference(u"value"))),
        method<&dsEncrypt::Encrypt>(u"Encrypt", by_reference(u"mstext")),
    });
};

}  // namespace kvarta16
