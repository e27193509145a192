// What a host asks of the library as a whole.
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

class KVARTA16_EXPORT amain {
  public:
    // The file version's major, minor and revision numbers and the component's name, joined by
    // ".", without leading zeros: "1.0.9999.kvarta16". The numbers are those that the build has
    // stamped in. Strict.
    [[nodiscard]] String VersjaLib() const;
};

template <>
struct ClassTable<amain> {
    static constexpr ClassHeader header{u"amain", Instancing::Creatable,
                                        "7AD4641E-9D56-4FAB-9A2C-514439F437C5",
                                        "9AA1FCC0-C765-4C4E-BC06-D954B0A53592"};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&amain::VersjaLib>(u"VersjaLib"),
    });
};

}  // namespace kvarta16
