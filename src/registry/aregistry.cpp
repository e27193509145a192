#include <algorithm>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/text.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/registry/aregistry.h>

namespace kvarta16 {
namespace {

// Both empty for a selector without a row: what is then asked of the registry fails.
struct KeyPlace {
    Long root = 0;
    String path;
};

KeyPlace place_of(std::span<const registry::SelectorRow> rows, Long DataS, StringView KEYs) {
    KeyPlace place;
    const auto row = std::ranges::find(rows, DataS, &registry::SelectorRow::selector);
    if (row != rows.end()) {
        place = {row->root, String(row->base_path)};
    }
    if (!KEYs.empty()) {  // also below an empty path, which then begins with a backslash
        place.path.append(u"\\").append(KEYs);
    }
    return place;
}

Registry& platform_registry() {
    return *platform().registry;
}

// The statuses are looked at by nobody.
void write(std::span<const registry::SelectorRow> rows, StringView KEYs, StringView strP,
           StringView DaneStr, Long DataS) {
    const KeyPlace place = place_of(rows, DataS, KEYs);
    Long key = 0;
    static_cast<void>(platform_registry().RegCreateKeyA(place.root, place.path, key));
    static_cast<void>(
        platform_registry().RegSetValueExA(key, strP, 0, REG_SZ, DaneStr, length(DaneStr)));
    static_cast<void>(platform_registry().RegCloseKey(key));
}

}  // namespace

Variant aregistry::GetRegistry(StringView strP, Long DataS) {
    return GetRegistryK({}, strP, DataS);
}

Variant aregistry::GetRegistryK(StringView KEYs, StringView strP, Long DataS) {
    return read(registry::reading_rows, KEYs, strP, DataS);
}

void aregistry::SaveRegistry(StringView strP, StringView DaneStr, Long DataS) {
    SaveRegistryK({}, strP, DaneStr, DataS);
}

void aregistry::SaveRegistryK(StringView KEYs, StringView strP, StringView DaneStr, Long DataS) {
    write(registry::writing_rows, KEYs, strP, DaneStr, DataS);
}

void aregistry::Savekey(Long hKey, StringView StrKlucz, StringView StrWartosc, StringView StrDane) {
    Long key = 0;
    step([&] { last_status_ = platform_registry().RegCreateKeyA(hKey, StrKlucz, key); });
    step([&] {
        last_status_ = platform_registry().RegSetValueExA(key, StrWartosc, 0, REG_SZ, StrDane,
                                                          length(StrDane));
    });
    step([&] { last_status_ = platform_registry().RegCloseKey(key); });
}

Variant aregistry::DeleteKey(Long hKey, StringView strKey) const {
    step([&] { static_cast<void>(platform_registry().RegDeleteKeyA(hKey, strKey)); });
    return {};
}

Variant aregistry::DeleteValue(Long hKey, StringView strPath, StringView strValue) {
    Long key = 0;
    step([&] { last_status_ = platform_registry().RegOpenKeyA(hKey, strPath, key); });
    step([&] { last_status_ = platform_registry().RegDeleteValueA(key, strValue); });
    step([&] { last_status_ = platform_registry().RegCloseKey(key); });
    return {};
}

void aregistry::SaveRegistryK_do_wersji12(StringView KEYs, StringView strP, StringView DaneStr,
                                          Long DataS) {
    write(registry::rows_of_version_12, KEYs, strP, DaneStr, DataS);
}

Variant aregistry::GetRegistryK_do_wersji12(StringView KEYs, StringView strP, Long DataS) {
    return read(registry::rows_of_version_12, KEYs, strP, DataS);
}

Variant aregistry::read(std::span<const registry::SelectorRow> rows, StringView KEYs,
                        StringView strP, Long DataS) {
    const KeyPlace place = place_of(rows, DataS, KEYs);
    Long key = 0;
    last_status_ = platform_registry().RegOpenKeyA(place.root, place.path, key);
    Long size = 0;
    static_cast<void>(platform_registry().RegQueryValueExA(key, strP, last_type_, nullptr, size));
    if (last_type_ != REG_SZ) {
        return {};
    }
    String text = blanks(size);
    if (platform_registry().RegQueryValueExA(key, strP, last_type_, &text, size) !=
        registry_status::success) {
        return {};
    }
    return Variant(text.substr(0, text.find(u'\0')));
}

}  // namespace kvarta16
