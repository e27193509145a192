// Taking separators out of a text, so that numbers written in groups can be compared.
//
//   Class3().Myslnik_Usun(u"525-000-12-34")        "5250001234"
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

class KVARTA16_EXPORT Class3 {
  public:
    // "Remove hyphen": `s` without any "-". Strict; nothing can fail.
    [[nodiscard]] String Myslnik_Usun(StringView s) const;

    // "Remove blanks": `s` without any blank (code 32; the no-break space, tabs and line ends
    // stay). Strict; nothing can fail.
    [[nodiscard]] String Spacje_Usun(StringView s) const;
};

template <>
struct ClassTable<Class3> {
    static constexpr ClassHeader header{u"Class3", Instancing::Global,
                                        "28FB1BA7-D229-4719-8CC0-ED1C38174AAB",
                                        "FDF89AC9-567D-498D-A321-A19131FDBD88"};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&Class3::Myslnik_Usun>(u"Myslnik_Usun", by_reference(u"s")),
        method<&Class3::Spacje_Usun>(u"Spacje_Usun", by_reference(u"s")),
    });
};

}  // namespace kvarta16
