// A cipher for short texts with a key: the same call enciphers and deciphers.
//
//   d1enc cipher;
//   cipher.KeyString(u"klucz");
//   const String secret = cipher.Encrypt(u"Zażółć gęślą jaźń");
//   cipher.Encrypt(secret)                                   "Zażółć gęślą jaźń"
//
// The sister of dsEncrypt, with the alphabet in another order, so that neither reads the other's
// texts, and stricter: it takes no text with a character outside the alphabet.
#pragma once

#include <vector>

#include <kvarta16/ciphers/table_cipher.h>
#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

class KVARTA16_EXPORT d1enc {
  public:
    // Sets the key, which stays until the next one; it cannot be read back. Its length counts in
    // 16 bits: of a key of 32768 to 65537 characters only the first is used. Strict; cannot fail.
    void KeyString(StringView value);

    // `mstext` enciphered, or deciphered, from the key's first character on. A character whose
    // turn of the key is outside the alphabet vanishes from the result, without a key all of them.
    // The length counts in 16 bits: "" for 32768 to 65536 characters.
    // Strict: 5 for a character of the text outside the alphabet, also without a key.
    [[nodiscard]] String Encrypt(StringView mstext) const;

  private:
    std::vector<ciphers::Place> key_ = {ciphers::absent};
};

template <>
struct ClassTable<d1enc> {
    static constexpr ClassHeader header{u"d1enc", Instancing::Creatable,
                                        "E09AAF7D-0CAE-4963-B9F8-E03C7BA756A1",
                                        "5587CFA7-7844-4FB3-9775-920EF092852E"};
    static constexpr auto members = std::to_array<MemberInfo>({
        ciphers::write_only(method<&d1enc::KeyString>(u"KeyString", by_reference(u"value"))),
        method<&d1enc::Encrypt>(u"Encrypt", by_reference(u"mstext")),
    });
};

}  // namespace kvarta16
