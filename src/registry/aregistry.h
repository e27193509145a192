// Settings of the suite's programs as texts in the registry, addressed by a small number.
//
//   aregistry settings;
//   settings.SaveRegistryK(u"Wydruki", u"Drukarka", u"Magazyn", 4);
//       stores under HKEY_CURRENT_USER\Software\ZEVO\Wydruki
//   settings.GetRegistryK(u"Wydruki", u"Drukarka", 4)          "Magazyn"
//   settings.GetRegistry(u"Drukarka", 4)                       Empty: there is no such value
//
// The selector `DataS` chooses a root and a base path from a table (selector_rows.h); `KEYs` is the
// sub-key below it, "" for the base path itself. There are two generations of the table: the
// current one, whose rows 5 and 6 can be written and not read, and the one under the suffix
// _do_wersji12. All values are texts (REG_SZ) in the ANSI code page.
//
// Nothing tells a caller that a write has failed, for want of rights for example.
#pragma once

#include <span>

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>
#include <kvarta16/registry/selector_rows.h>

namespace kvarta16 {

class KVARTA16_EXPORT aregistry {
  public:
    // The text of the value `strP` at the selector's base path: GetRegistryK without a sub-key.
    [[nodiscard]] Variant GetRegistry(StringView strP, Long DataS);

    // The text of the value `strP`, up to its first character of code 0. Empty, which is neither
    // Null nor "", where there is no such selector, key or value, where the value is no REG_SZ, and
    // where it cannot be read. The key stays open: each read leaves a handle until the process
    // ends. Strict; nothing of the registry fails.
    [[nodiscard]] Variant GetRegistryK(StringView KEYs, StringView strP, Long DataS);

    // Stores `DaneStr` as the value `strP` at the selector's base path.
    void SaveRegistry(StringView strP, StringView DaneStr, Long DataS);

    // Stores `DaneStr` as the value `strP`, making the key with all above it where they are
    // missing. The ending zero is neither counted nor stored, so that "" is a value of size 0. Does
    // nothing for a selector without a row. Strict; nothing of the registry fails.
    void SaveRegistryK(StringView KEYs, StringView strP, StringView DaneStr, Long DataS);

    // Stores `StrDane` as the value `StrWartosc` of the key `StrKlucz` below the root or open key
    // `hKey`, making it where it is missing. Tolerant.
    void Savekey(Long hKey, StringView StrKlucz, StringView StrWartosc, StringView StrDane);

    // Deletes the key `strKey` below `hKey` with its values; one with sub-keys is the platform's to
    // decide on. Always Empty, whether the key is gone or not. Tolerant.
    Variant DeleteKey(Long hKey, StringView strKey) const;

    // Deletes the value `strValue` of the key `strPath` below `hKey`. Always Empty. Tolerant.
    Variant DeleteValue(Long hKey, StringView strPath, StringView strValue);

    // As SaveRegistryK and GetRegistryK, over the older table.
    void SaveRegistryK_do_wersji12(StringView KEYs, StringView strP, StringView DaneStr,
                                   Long DataS);
    [[nodiscard]] Variant GetRegistryK_do_wersji12(StringView KEYs, StringView strP, Long DataS);

  private:
    [[nodiscard]] Variant read(std::span<const registry::SelectorRow> rows, StringView KEYs,
                               StringView strP, Long DataS);

    Long last_status_ = 0;  // of the registry; nothing reads it

    // Type of the value that was looked at last. It outlives the read: a value that cannot be
    // looked at leaves the one of the read before, and it is then the second query that fails.
    Long last_type_ = 0;
};

template <>
struct ClassTable<aregistry> {
    static constexpr ClassHeader header{u"aregistry", Instancing::Global,
                                        "BF30E8AA-ECCD-41D9-88C1-32ABAFD9BA96",
                                        "42305B2E-90A7-466A-98A7-DE080FB3E3D7"};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&aregistry::GetRegistry>(u"GetRegistry", by_reference(u"strP"),
                                        by_reference(u"DataS")),
        method<&aregistry::GetRegistryK>(u"GetRegistryK", by_reference(u"KEYs"),
                                         by_reference(u"strP"), by_reference(u"DataS")),
        method<&aregistry::SaveRegistry>(u"SaveRegistry", by_reference(u"strP"),
                                         by_reference(u"DaneStr"), by_reference(u"DataS")),
        method<&aregistry::SaveRegistryK>(u"SaveRegistryK", by_reference(u"KEYs"),
                                          by_reference(u"strP"), by_reference(u"DaneStr"),
                                          by_reference(u"DataS")),
        method<&aregistry::Savekey>(u"Savekey", by_reference(u"hKey"), by_reference(u"StrKlucz"),
                                    by_reference(u"StrWartosc"), by_reference(u"StrDane")),
        method<&aregistry::DeleteKey>(u"DeleteKey", by_value(u"hKey"), by_value(u"strKey")),
        method<&aregistry::DeleteValue>(u"DeleteValue", by_value(u"hKey"), by_value(u"strPath"),
                                        by_value(u"strValue")),
        method<&aregistry::SaveRegistryK_do_wersji12>(
            u"SaveRegistryK_do_wersji12", by_reference(u"KEYs"), by_reference(u"strP"),
            by_reference(u"DaneStr"), by_reference(u"DataS")),
        method<&aregistry::GetRegistryK_do_wersji12>(u"GetRegistryK_do_wersji12",
                                                     by_reference(u"KEYs"), by_reference(u"strP"),
                                                     by_reference(u"DataS")),
    });
};

}  // namespace kvarta16
