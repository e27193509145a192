// The version of the operating system as one number. A private class: it is in no type library,
// and its users reach it by this header, by `kvarta16 rpc` and by `kvarta16 call`.
//
//   B_WinWer().GetWindowsVersion()   6.1
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

class KVARTA16_EXPORT B_WinWer {
  public:
    // Major version and minor / 10 of the NT family, 3.5 for its major version 3 and 4 for 4; 2.1
    // and 2.2 for the family before it, which are codes and no versions; 3.1 for the oldest. 0
    // where the system does not tell, or is of no known family.
    [[nodiscard]] Currency GetWindowsVersion() const;
};

template <>
struct ClassTable<B_WinWer> {
    static constexpr ClassHeader header{u"B_WinWer", Instancing::Private, {}, {}};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&B_WinWer::GetWindowsVersion>(u"GetWindowsVersion"),
    });
};

}  // namespace kvarta16
