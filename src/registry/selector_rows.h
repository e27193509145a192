// Where in the registry a selector leads: the tables of aregistry, a row a selector. Rows 0 to 4
// are the same in all of them; the current generation writes rows 5 and 6 and does not read them.
#pragma once

#include <kvarta16/platform/registry.h>

namespace kvarta16::registry {

struct SelectorRow {
    Long selector = 0;
    Long root = 0;
    StringView base_path;
};

// GetRegistry, GetRegistryK
inline constexpr SelectorRow reading_rows[] = {
    {0, HKEY_LOCAL_MACHINE, u"Software\\ZEVO"},
    {1, HKEY_CURRENT_USER, u"Control Panel\\International"},
    {2, HKEY_CLASSES_ROOT, u".lnk\\International"},
    {3, HKEY_CURRENT_USER, u""},
    {4, HKEY_CURRENT_USER, u"Software\\ZEVO"},
};

// SaveRegistry, SaveRegistryK
inline constexpr SelectorRow writing_rows[] = {
    {0, HKEY_LOCAL_MACHINE, u"Software\\ZEVO"},
    {1, HKEY_CURRENT_USER, u"Control Panel\\International"},
    {2, HKEY_CLASSES_ROOT, u".lnk\\International"},
    {3, HKEY_CURRENT_USER, u""},
    {4, HKEY_CURRENT_USER, u"Software\\ZEVO"},
    {5, HKEY_CURRENT_USER, u"Control Panel\\Desktop"},
    {6, HKEY_CURRENT_USER, u"Control Panel\\Keyboard"},
};

// GetRegistryK_do_wersji12, SaveRegistryK_do_wersji12
inline constexpr SelectorRow rows_of_version_12[] = {
    {0, HKEY_LOCAL_MACHINE, u"Software\\ZEVO"},
    {1, HKEY_CURRENT_USER, u"Control Panel\\International"},
    {2, HKEY_CLASSES_ROOT, u".lnk\\International"},
    {3, HKEY_CURRENT_USER, u""},
    {4, HKEY_CURRENT_USER, u"Software\\ZEVO"},
    {5, HKEY_CURRENT_USER, u"Software\\Microsoft\\Internet Explorer\\PageSetup"},
    {6, HKEY_LOCAL_MACHINE, u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion"},
};

}  // namespace kvarta16::registry
