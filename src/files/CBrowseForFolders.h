// The system's dialog for choosing a folder.
//
//   String start = u"c:\\dane\\";
//   instance<CBrowseForFolders>().BrowseForFolder(window, u"Wybierz folder", start);
//   // "c:\dane\faktury\", or "\" if the user has cancelled; start is now c:\dane
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

class KVARTA16_EXPORT CBrowseForFolders {
  public:
    // Lets the user choose a folder, with the tree open at `InDir`; with a true `InclFiles` files
    // can be chosen too. The result ends with "\" in every case, a chosen file's path included: a
    // cancel is "\" alone, and so is an item that has no path. `InDir` comes back without a
    // backslash at its end unless it is the root of a drive. Blocks the calling thread. Strict: 13
    // for an `InclFiles` that is no truth value; Null counts as false.
    [[nodiscard]] String BrowseForFolder(Long hWnd, StringView sPrompt, String& InDir,
                                         const Variant& InclFiles = Variant::missing()) const;
};

template <>
struct ClassTable<CBrowseForFolders> {
    static constexpr ClassHeader header{u"CBrowseForFolders", Instancing::Global,
                                        "C0CFB165-12F5-4A89-8E2A-E3C2F4F5FF01",
                                        "E87B1E26-1434-4B79-B56A-26695ECD516D"};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&CBrowseForFolders::BrowseForFolder>(
            u"BrowseForFolder", by_reference(u"hWnd"), by_reference(u"sPrompt"),
            by_reference(u"InDir"), optional(by_reference(u"InclFiles"))),
    });
};

}  // namespace kvarta16
