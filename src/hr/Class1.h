// Check digits of the Polish personal identity number (PESEL) and tax number (NIP).
//
//   Class1().Spr_PESEL(u"11111111116")      true
//   Class1().Spr_NIP(u"1234567890")         true, see below
//
// The digits and the check digit alone are looked at: no date of birth, no office code, no length.
// What stands behind the characters that are read does not count, so that a longer text is judged
// by its beginning.
//
// Both methods are guarded: a character that is no decimal digit, and a text that is too short,
// show a box with the error's number as its text, titled by the error's description and the place,
// and give false. A check digit that does not agree gives false without a box.
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

class KVARTA16_EXPORT Class1 {
  public:
    // Whether the 11th digit of `p` is what the ten before it demand.
    [[nodiscard]] Boolean Spr_PESEL(StringView p) const;

    // Whether the 10th digit of `p` is what the nine before it demand. A remainder of 10 counts as
    // 0, which the tax office's own rule refuses: 1234567890 is accepted. Dashes and blanks are no
    // digits; callers take them out before.
    [[nodiscard]] Boolean Spr_NIP(StringView p) const;
};

template <>
struct ClassTable<Class1> {
    static constexpr ClassHeader header{u"Class1", Instancing::Creatable,
                                        "F9271D58-E4A5-4BDE-BE6D-96698A06BAE1",
                                        "753B7B1D-A866-4662-9A69-86A2EF29AFC5"};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&Class1::Spr_PESEL>(u"Spr_PESEL", by_reference(u"p")),
        method<&Class1::Spr_NIP>(u"Spr_NIP", by_reference(u"p")),
    });
};

}  // namespace kvarta16
