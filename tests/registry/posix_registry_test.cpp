// The store on real files: keys, values, handles, places, rights, damage.
#include <algorithm>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/posix/posix_platform.h>
#include <kvarta16/registry/aregistry.h>

#include "child_process.h"
#include "registry_support.h"

namespace kvarta16::registry_tests {
namespace {

namespace status = registry_status;

const StringView zevo = u"Software\\ZEVO";

// ---- Keys and values ------------------------------------------------------------------------

TEST(Store, KeepsWhatIsSet) {
    Store store;
    EXPECT_EQ(store.open(HKEY_CURRENT_USER, zevo), 0);
    EXPECT_EQ(store.status, status::file_not_found);
    const Long key = store.made(HKEY_CURRENT_USER, zevo);
    EXPECT_EQ(store.status, 0);
    EXPECT_EQ(store.get(key, u"Drukarka"), "status 2");
    EXPECT_EQ(store.set(key, u"Drukarka", u"Żółta \"1\" na \\\\serwer"), 0);
    EXPECT_EQ(store.set(key, u"", u"domyślna"), 0);
    EXPECT_EQ(store.set(key, u"pusta", u""), 0);
    EXPECT_EQ(store.get(key, u"Drukarka"), "Żółta \"1\" na \\\\serwer");
    EXPECT_EQ(store.get(key, u""), "domyślna");
    EXPECT_EQ(store.get(key, u"pusta"), "");
    EXPECT_EQ(read_file(store.user), header + R"(
[HKEY_CURRENT_USER]

[HKEY_CURRENT_USER\Software]

[HKEY_CURRENT_USER\Software\ZEVO]
@="domyślna"
"Drukarka"="Żółta \"1\" na \\\\serwer"
"pusta"=""
)");
    EXPECT_EQ(store.registry.RegDeleteValueA(key, u"Drukarka"), 0);
    EXPECT_EQ(store.registry.RegDeleteValueA(key, u"Drukarka"), status::file_not_found);
    EXPECT_EQ(store.get(key, u"Drukarka"), "status 2");
}

TEST(Store, NamesMatchWithoutCaseAndKeepTheirSpelling) {
    Store store;
    Long key = store.made(HKEY_CURRENT_USER, u"Ścieżka\\ŁÓDŹ");
    EXPECT_EQ(store.set(key, u"Żółw", u"1"), 0);
    key = store.made(HKEY_CURRENT_USER, u"śCIEŻKA\\łódź");
    EXPECT_EQ(store.set(key, u"żÓŁW", u"2"), 0);
    EXPECT_EQ(store.get(store.open(HKEY_CURRENT_USER, u"ŚCIEŻKA\\Łódź"), u"ŻÓŁW"), "2");
    EXPECT_EQ(read_file(store.user), header +
                                         "\n[HKEY_CURRENT_USER]\n\n"
                                         "[HKEY_CURRENT_USER\\Ścieżka]\n\n"
                                         "[HKEY_CURRENT_USER\\Ścieżka\\ŁÓDŹ]\n"
                                         "\"Żółw\"=\"2\"\n");
}

TEST(Store, PathsAndTheirRefusals) {
    Store store;
    ASSERT_NE(store.made(HKEY_CURRENT_USER, u"a\\b"), 0);
    const struct {
        StringView path;
        Long open;
        Long create;
        Long remove;
    } cases[] = {
        {u"a", 0, 0, status::access_denied},  // it has a sub-key
        {u"", 0, 0, status::access_denied},
        {u"\\a", status::bad_path_name, status::bad_path_name, status::bad_path_name},
        {u"\\", status::bad_path_name, status::bad_path_name, status::bad_path_name},
        {u"a\\\\b\\", 0, 0, 0},
        {u"c", status::file_not_found, 0, 0},
        {{u"d\0e", 3}, status::file_not_found, 0, 0},
        {u"x\ny", status::invalid_parameter, status::invalid_parameter, status::invalid_parameter},
        {u"x\ry", status::invalid_parameter, status::invalid_parameter, status::invalid_parameter},
        {u"]", status::file_not_found, 0, 0},
        {u"-x; [y] = \"z\"", status::file_not_found, 0, 0},
    };
    for (const auto& [path, open, create, remove] : cases) {
        Long key = 0;
        EXPECT_EQ(store.registry.RegOpenKeyA(HKEY_CURRENT_USER, path, key), open) << to_utf8(path);
        EXPECT_EQ(key == 0, open != 0);
        key = 0;
        EXPECT_EQ(store.registry.RegCreateKeyA(HKEY_CURRENT_USER, path, key), create)
            << to_utf8(path);
        EXPECT_EQ(key == 0, create != 0);
        EXPECT_EQ(store.registry.RegDeleteKeyA(HKEY_CURRENT_USER, path), remove) << to_utf8(path);
    }
    EXPECT_EQ(read_file(store.user), header + "\n[HKEY_CURRENT_USER]\n\n[HKEY_CURRENT_USER\\a]\n");
    Long key = 0;
    EXPECT_EQ(store.registry.RegCreateKeyA(HKEY_CURRENT_USER, String(255, u'a'), key), 0);
    EXPECT_EQ(store.registry.RegCreateKeyA(HKEY_CURRENT_USER, String(256, u'a'), key),
              status::invalid_parameter);
    String deep = u"a";
    for (int i = 1; i < 511; ++i) {
        deep += u"\\a";
    }
    EXPECT_EQ(store.registry.RegCreateKeyA(HKEY_CURRENT_USER, deep, key), 0);
    EXPECT_EQ(store.registry.RegCreateKeyA(HKEY_CURRENT_USER, deep + u"\\a", key),
              status::invalid_parameter);
    EXPECT_EQ(store.get(store.open(HKEY_CURRENT_USER, deep), u"x"), "status 2");
}

TEST(Store, SizesTypesAndTheUncountedZero) {
    Store store;
    const Long key = store.made(HKEY_CURRENT_USER, zevo);
    const struct {
        const char16_t* name;
        Long type;
        String data;
        Long size;
        Long wanted_size;
        String wanted;
    } cases[] = {
        {u"bez zera", REG_SZ, u"abc", 3, 3, u"abc"},
        {u"z zerem", REG_SZ, u"abc", 4, 4, {u"abc\0", 4}},
        {u"część", REG_SZ, u"abc", 2, 2, u"ab"},
        {u"rozmiar 0", REG_SZ, u"abc", 0, 0, u""},
        {u"zero w środku", REG_SZ, {u"a\0c", 3}, 3, 3, {u"a\0c", 3}},
        {u"wiersze", REG_SZ, u"a\r\nb", 4, 4, u"a\r\nb"},
        {u"spoza strony", REG_SZ, u"aЖ😀", 4, 4, u"a???"},
        {u"z systemu", REG_EXPAND_SZ, u"%ŚCIEŻKA%", 9, 9, u"%ŚCIEŻKA%"},
        {u"lista", REG_MULTI_SZ, {u"a\0b\0", 4}, 5, 5, {u"a\0b\0\0", 5}},
        {u"bajty", REG_BINARY, u"\u0001ż", 2, 2, u"\u0001ż"},
        {u"liczba", REG_DWORD, {u"\u0002\0\0", 3}, 4, 4, {u"\u0002\0\0\0", 4}},
        {u"inny", 11, u"abcdefgh", 8, 8, u"abcdefgh"},
    };
    for (const auto& [name, type, data, size, wanted_size, wanted] : cases) {
        EXPECT_EQ(store.registry.RegSetValueExA(key, name, 0, type, data, size), 0);
    }
    // As they stand, and read from the file by another.
    posix::PosixRegistry another([&] { return posix::RegistryPlaces{store.user, store.machine}; });
    Long other_key = 0;
    ASSERT_EQ(another.RegOpenKeyA(HKEY_CURRENT_USER, zevo, other_key), 0);
    for (const auto& [name, type, data, size, wanted_size, wanted] : cases) {
        for (auto [registry, handle] :
             {std::pair(&store.registry, key), std::pair(&another, other_key)}) {
            Long found_type = -1;
            Long found_size = -1;
            EXPECT_EQ(registry->RegQueryValueExA(handle, name, found_type, nullptr, found_size), 0);
            EXPECT_EQ(found_type, type) << to_utf8(name);
            EXPECT_EQ(found_size, wanted_size) << to_utf8(name);
            String buffer(static_cast<std::size_t>(found_size), u' ');
            EXPECT_EQ(registry->RegQueryValueExA(handle, name, found_type, &buffer, found_size), 0);
            EXPECT_EQ(to_utf8(buffer), to_utf8(wanted));
        }
    }
}

TEST(Store, BuffersAndRefusedArguments) {
    Store store;
    const Long key = store.made(HKEY_CURRENT_USER, zevo);
    ASSERT_EQ(store.set(key, u"n", u"abc"), 0);
    Long type = 9;
    Long size = 2;
    String buffer = u"......";
    EXPECT_EQ(store.registry.RegQueryValueExA(key, u"n", type, &buffer, size), status::more_data);
    EXPECT_EQ(buffer, u"......");
    EXPECT_EQ(std::pair(type, size), std::pair(1, 3));
    EXPECT_EQ(store.registry.RegQueryValueExA(key, u"n", type, &buffer, size), 0);
    EXPECT_EQ(buffer, u"abc...");
    size = 1000;  // more than the buffer really has
    buffer = u"..";
    EXPECT_EQ(store.registry.RegQueryValueExA(key, u"n", type, &buffer, size), status::more_data);
    size = -1;
    EXPECT_EQ(store.registry.RegQueryValueExA(key, u"n", type, &buffer, size), status::more_data);
    // What is not there writes nothing.
    type = 9;
    size = 8;
    EXPECT_EQ(store.registry.RegQueryValueExA(key, u"m", type, &buffer, size),
              status::file_not_found);
    EXPECT_EQ(store.registry.RegQueryValueExA(0, u"n", type, &buffer, size),
              status::invalid_handle);
    EXPECT_EQ(std::pair(type, size), std::pair(9, 8));
    for (const Long wrong : {-1, 5, 2147483647}) {
        EXPECT_EQ(store.registry.RegSetValueExA(key, u"n", 0, 1, u"abc", wrong),
                  status::invalid_parameter);
    }
    EXPECT_EQ(store.registry.RegSetValueExA(key, u"n", 1, 1, u"abc", 3), status::invalid_parameter);
    EXPECT_EQ(store.set(key, u"a\nb", u"c"), status::invalid_parameter);
    EXPECT_EQ(store.set(key, String(16384, u'a'), u"c"), status::invalid_parameter);
    EXPECT_EQ(store.set(key, String(16383, u'a'), u"c"), 0);
    EXPECT_EQ(store.set(key, {u"ucięta\0reszta", 13}, u"d"), 0);
    EXPECT_EQ(store.get(key, u"ucięta"), "d");
    EXPECT_EQ(store.get(key, u"n"), "abc");
    for (const Long wrong : {0, 1, 3, 400, -1, wrap32(0x80000003)}) {
        Long result = 77;
        EXPECT_EQ(store.registry.RegOpenKeyA(wrong, u"a", result), status::invalid_handle);
        EXPECT_EQ(store.registry.RegCreateKeyA(wrong, u"a", result), status::invalid_handle);
        EXPECT_EQ(store.set(wrong, u"a", u"b"), status::invalid_handle);
        EXPECT_EQ(store.registry.RegDeleteKeyA(wrong, u"a"), status::invalid_handle);
        EXPECT_EQ(store.registry.RegDeleteValueA(wrong, u"a"), status::invalid_handle);
        EXPECT_EQ(store.registry.RegCloseKey(wrong), status::invalid_handle);
        EXPECT_EQ(result, 77);
    }
}

TEST(Store, TheRootsAreAlwaysThere) {
    Store store;
    for (const Long root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_CLASSES_ROOT}) {
        EXPECT_EQ(store.open(root, u""), root);
        EXPECT_EQ(store.made(root, u""), root);
        EXPECT_EQ(store.get(root, u"n"), "status 2");
        EXPECT_EQ(store.registry.RegDeleteValueA(root, u"n"), status::file_not_found);
        EXPECT_EQ(store.registry.RegCloseKey(root), 0);
    }
    EXPECT_FALSE(std::filesystem::exists(store.user));
    EXPECT_EQ(store.set(HKEY_CURRENT_USER, u"n", u"u"), 0);
    EXPECT_EQ(store.set(HKEY_LOCAL_MACHINE, u"n", u"m"), 0);
    EXPECT_EQ(store.set(HKEY_CLASSES_ROOT, u"n", u"k"), 0);
    EXPECT_EQ(store.get(HKEY_CURRENT_USER, u"n"), "u");
    EXPECT_EQ(read_file(store.user), header + "\n[HKEY_CURRENT_USER]\n\"n\"=\"u\"\n");
    EXPECT_EQ(read_file(store.machine), header +
                                            "\n[HKEY_CLASSES_ROOT]\n\"n\"=\"k\"\n"
                                            "\n[HKEY_LOCAL_MACHINE]\n\"n\"=\"m\"\n");
}

TEST(Store, DeletingAKeyBelowAnOpenOne) {
    Store store;
    const Long above = store.made(HKEY_CURRENT_USER, u"a");
    const Long below = store.made(above, u"b\\c");
    EXPECT_EQ(store.set(below, u"n", u"1"), 0);
    EXPECT_EQ(store.registry.RegDeleteKeyA(above, u"b"), status::access_denied);
    EXPECT_EQ(store.registry.RegDeleteKeyA(HKEY_CURRENT_USER, u"A\\B\\C"), 0);
    EXPECT_EQ(store.registry.RegDeleteKeyA(above, u"b\\c"), status::file_not_found);
    EXPECT_EQ(store.get(below, u"n"), "status 1018");
    EXPECT_EQ(store.set(below, u"n", u"1"), status::key_deleted);
    EXPECT_EQ(store.registry.RegDeleteValueA(below, u"n"), status::key_deleted);
    EXPECT_EQ(store.registry.RegDeleteKeyA(above, u"b"), 0);
    EXPECT_EQ(store.registry.RegDeleteKeyA(above, u""), 0);
    EXPECT_EQ(store.open(HKEY_CURRENT_USER, u"a"), 0);
}

TEST(Store, KeepsWhatItDoesNotKnow) {
    Store store;
    write_file(store.user, header +
                               "[HKEY_USERS\\x]\n\"a\"=hex(7):61,00\n"
                               "[HKEY_CURRENT_USER]\n\"Ж\"=\"Ж\"\n\"q\"=hex(b):01\n");
    EXPECT_EQ(store.get(HKEY_CURRENT_USER, u"Ж"), "status 2");  // "?" to the ANSI calls
    EXPECT_EQ(store.set(HKEY_CURRENT_USER, u"z", u"1"), 0);
    EXPECT_EQ(read_file(store.user), header +
                                         "\n[HKEY_CURRENT_USER]\n\"q\"=hex(b):01\n\"z\"=\"1\"\n"
                                         "\"Ж\"=\"Ж\"\n"
                                         "\n[HKEY_USERS]\n\n[HKEY_USERS\\x]\n"
                                         "\"a\"=hex(7):61,00\n");
}

// ---- Handles --------------------------------------------------------------------------------

TEST(Handles, OneNumberForAKeyCounted) {
    Store store;
    const Long key = store.made(HKEY_CURRENT_USER, u"a\\b");
    EXPECT_EQ(store.open(HKEY_CURRENT_USER, u"A\\B"), key);
    const Long above = store.open(HKEY_CURRENT_USER, u"a");
    EXPECT_EQ(store.open(above, u"b"), key);
    EXPECT_EQ(store.open(key, u""), key);
    EXPECT_EQ(store.registry.open_keys(), 2U);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(store.get(key, u"n"), "status 2");
        EXPECT_EQ(store.registry.RegCloseKey(key), 0);
    }
    EXPECT_EQ(store.get(key, u"n"), "status 6");
    EXPECT_EQ(store.registry.RegCloseKey(key), status::invalid_handle);
    EXPECT_EQ(store.made(HKEY_CURRENT_USER, u"c"), key);  // a free number is used again
    EXPECT_EQ(store.registry.open_keys(), 2U);
}

TEST(Handles, ReadersThatCloseNothingCostNothing) {
    Store store;
    Platform operations = platform();
    operations.registry = &store.registry;
    const ScopedPlatform scope(operations);
    aregistry settings;
    settings.SaveRegistryK(u"K", u"n", u"abc", 4);
    EXPECT_EQ(store.registry.open_keys(), 0U);
    for (int i = 0; i < 20000; ++i) {
        ASSERT_EQ(ToText(settings.GetRegistryK(u"K", u"n", 4)), u"abc");
    }
    EXPECT_EQ(store.registry.open_keys(), 1U);
}

TEST(Handles, ThoseOfKeysThatHaveGoneAreDropped) {
    Store store;
    const Long kept = store.made(HKEY_CURRENT_USER, u"zostaje");
    std::string text;
    for (int batch = 0; batch < 6; ++batch) {
        text = header + "[HKCU\\zostaje]\n\"n\"=\"1\"\n";
        for (int i = 0; i < 600; ++i) {
            text += "[HKCU\\k" + std::to_string(batch) + "." + std::to_string(i) + "]\n";
        }
        write_file(store.user, text);
        for (int i = 0; i < 600; ++i) {
            ASSERT_NE(store.open(HKEY_CURRENT_USER,
                                 from_utf8("k" + std::to_string(batch) + "." + std::to_string(i))),
                      0);
        }
        EXPECT_LE(store.registry.open_keys(), 1300U);
    }
    EXPECT_EQ(store.get(kept, u"n"), "1");
}

// ---- The class on the store -----------------------------------------------------------------

TEST(ClassOnStore, EveryEdge) {
    Store store;
    Platform operations = platform();
    operations.registry = &store.registry;
    const ScopedPlatform scope(operations);
    aregistry settings;
    const auto is_empty = [](const Variant& value) { return value.is(Subtype::Empty); };

    settings.SaveRegistry(u"pusta", u"", 4);
    EXPECT_EQ(settings.GetRegistry(u"pusta", 4).subtype(), Subtype::String);
    EXPECT_EQ(ToText(settings.GetRegistry(u"pusta", 4)), u"");

    settings.SaveRegistry(u"z zerem", {u"ab\0cd", 5}, 4);
    EXPECT_EQ(ToText(settings.GetRegistry(u"z zerem", 4)), u"ab");
    EXPECT_NE(read_file(store.user).find("\"z zerem\"=hex(1):61,00,62,00,00,00,63,00,64,00\n"),
              std::string::npos);

    settings.SaveRegistryK(u"", u"tapeta", u"x", 5);
    EXPECT_TRUE(is_empty(settings.GetRegistryK(u"", u"tapeta", 5)));
    EXPECT_EQ(store.get(store.open(HKEY_CURRENT_USER, u"Control Panel\\Desktop"), u"tapeta"), "x");

    settings.Savekey(HKEY_LOCAL_MACHINE, u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion",
                     u"ProductName", u"Okna");
    EXPECT_EQ(ToText(settings.GetRegistryK_do_wersji12(u"", u"ProductName", 6)), u"Okna");

    settings.Savekey(HKEY_CURRENT_USER, u"", u"w korzeniu", u"1");
    EXPECT_EQ(ToText(settings.GetRegistry(u"w korzeniu", 3)), u"1");
    settings.SaveRegistryK(u"K", u"n", u"1", 3);
    EXPECT_TRUE(is_empty(settings.GetRegistryK(u"K", u"n", 3)));
    EXPECT_EQ(store.open(HKEY_CURRENT_USER, u"K"), 0);

    write_file(store.user, header +
                               "[HKCU\\Software\\ZEVO]\n\"l\"=dword:5\n\"t\"=\"tekst\"\n"
                               "\"w\"=hex(1):77,00,00,00\n[HKCU\\Software\\ZEVO\\pod]\n");
    EXPECT_EQ(ToText(settings.GetRegistry(u"t", 4)), u"tekst");
    EXPECT_TRUE(is_empty(settings.GetRegistry(u"l", 4)));
    EXPECT_EQ(ToText(settings.GetRegistry(u"w", 4)), u"w");
    EXPECT_TRUE(is_empty(settings.GetRegistry(u"nie ma", 4)));
    EXPECT_TRUE(is_empty(settings.GetRegistryK(u"nie ma", u"t", 4)));
    EXPECT_TRUE(is_empty(settings.GetRegistry(u"t", 9)));

    EXPECT_TRUE(is_empty(settings.DeleteKey(HKEY_CURRENT_USER, u"Software\\ZEVO")));
    EXPECT_EQ(ToText(settings.GetRegistry(u"t", 4)), u"tekst");  // it has a sub-key
    EXPECT_TRUE(is_empty(settings.DeleteValue(HKEY_CURRENT_USER, u"Software\\ZEVO", u"T")));
    EXPECT_TRUE(is_empty(settings.GetRegistry(u"t", 4)));
    EXPECT_TRUE(is_empty(settings.DeleteKey(HKEY_CURRENT_USER, u"Software\\ZEVO\\pod")));
    EXPECT_TRUE(is_empty(settings.DeleteKey(HKEY_CURRENT_USER, u"Software\\ZEVO")));
    EXPECT_EQ(store.open(HKEY_CURRENT_USER, u"Software\\ZEVO"), 0);
}

// ---- Whole keys -----------------------------------------------------------------------------

TEST(WholeKeys, ExportAndImport) {
    Store store;
    write_file(store.user,
               header + "[HKCU\\a]\n\"x\"=\"1\"\n[HKCU\\a\\b]\n\"y\"=dword:1\n[HKCU\\c]\n");
    std::string text = "unchanged";
    EXPECT_EQ(store.registry.export_key(HKEY_CURRENT_USER, u"brak", text), status::file_not_found);
    EXPECT_EQ(store.registry.export_key(HKEY_CURRENT_USER, u"\\a", text), status::bad_path_name);
    EXPECT_EQ(text, "unchanged");
    EXPECT_EQ(store.registry.export_key(HKEY_CURRENT_USER, u"A", text), 0);
    EXPECT_EQ(text, header +
                        "\n[HKEY_CURRENT_USER\\A]\n\"x\"=\"1\"\n"
                        "\n[HKEY_CURRENT_USER\\A\\b]\n\"y\"=dword:00000001\n");
    EXPECT_EQ(store.registry.import_changes(posix::registry::read_text(
                  header + "[-HKCU\\a]\n[HKLM\\m]\n\"z\"=\"2\"\n[HKCU\\C]\n\"w\"=\"3\"\n")),
              0);
    EXPECT_EQ(read_file(store.user),
              header + "\n[HKEY_CURRENT_USER]\n\n[HKEY_CURRENT_USER\\c]\n\"w\"=\"3\"\n");
    EXPECT_EQ(read_file(store.machine),
              header + "\n[HKEY_LOCAL_MACHINE]\n\n[HKEY_LOCAL_MACHINE\\m]\n\"z\"=\"2\"\n");
    EXPECT_EQ(store.registry.import_changes(
                  posix::registry::read_text(header + "[-HKCU\\c]\n[HKEY_USERS\\m]\n")),
              status::invalid_parameter);
    EXPECT_NE(store.open(HKEY_CURRENT_USER, u"c"), 0);
}

// ---- Files ----------------------------------------------------------------------------------

TEST(Files, ChangesOfOthersAreSeenAtOnce) {
    Store store;
    for (int i = 0; i < 150; ++i) {  // the same size, quicker than the clock of the file system
        write_file(store.user, header + "[HKCU]\n\"n\"=\"" + std::to_string(100 + i) + "\"\n");
        ASSERT_EQ(store.get(HKEY_CURRENT_USER, u"n"), std::to_string(100 + i));
    }
    std::filesystem::remove(store.user);
    EXPECT_EQ(store.get(HKEY_CURRENT_USER, u"n"), "status 2");
    write_file(store.user, "");  // an empty file counts as none
    EXPECT_EQ(store.get(HKEY_CURRENT_USER, u"n"), "status 2");
    EXPECT_EQ(store.set(HKEY_CURRENT_USER, u"n", u"1"), 0);
    EXPECT_EQ(store.get(HKEY_CURRENT_USER, u"n"), "1");
}

TEST(Files, AreMadeForTheirOwnerAndKeepTheirRights) {
    const TempFolder folder;
    posix::PosixRegistry registry([&] {
        return posix::RegistryPlaces{folder.file("a/b/user.reg"), folder.file("etc/machine.reg")};
    });
    const auto mode = [&](const std::string& name) {
        struct stat status {};
        return ::stat(folder.file(name).c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
    };
    const mode_t mask = ::umask(0);
    EXPECT_EQ(registry.RegSetValueExA(HKEY_CURRENT_USER, u"n", 0, 1, u"1", 1), 0);
    EXPECT_EQ(registry.RegSetValueExA(HKEY_LOCAL_MACHINE, u"n", 0, 1, u"1", 1), 0);
    ::umask(mask);
    EXPECT_EQ(mode("a"), 0700U);
    EXPECT_EQ(mode("a/b/user.reg"), 0600U);
    EXPECT_EQ(mode("etc"), 0755U);
    EXPECT_EQ(mode("etc/machine.reg"), 0644U);
    ASSERT_EQ(::chmod(folder.file("a/b/user.reg").c_str(), 0640), 0);
    EXPECT_EQ(registry.RegSetValueExA(HKEY_CURRENT_USER, u"n", 0, 1, u"2", 1), 0);
    EXPECT_EQ(mode("a/b/user.reg"), 0640U);
}

TEST(Files, ALinkStaysALink) {
    Store store;
    const std::string real = store.folder.file("prawdziwy.reg");
    write_file(real, header);
    std::filesystem::create_symlink("prawdziwy.reg", store.user);
    EXPECT_EQ(store.set(HKEY_CURRENT_USER, u"n", u"1"), 0);
    EXPECT_TRUE(std::filesystem::is_symlink(store.user));
    EXPECT_NE(read_file(real).find("\"n\"=\"1\""), std::string::npos);
    EXPECT_EQ(store.get(HKEY_CURRENT_USER, u"n"), "1");
}

TEST(Files, WhatAKilledWriterHasLeftIsInNobodysWay) {
    Store store;
    write_file(store.user + ".new", "Windows Regi");
    write_file(store.user + ".lock", "");
    EXPECT_EQ(store.get(HKEY_CURRENT_USER, u"n"), "status 2");
    EXPECT_EQ(store.set(HKEY_CURRENT_USER, u"n", u"1"), 0);
    EXPECT_EQ(store.get(HKEY_CURRENT_USER, u"n"), "1");
    EXPECT_FALSE(std::filesystem::exists(store.user + ".new"));
}

TEST(Files, WhatIsNoFileIsRefused) {
    Store store;
    std::filesystem::create_directory(store.user);
    EXPECT_EQ(store.get(HKEY_CURRENT_USER, u"n"), "status 30");
    EXPECT_EQ(store.set(HKEY_CURRENT_USER, u"n", u"1"), status::read_fault);
    posix::PosixRegistry nowhere([] { return posix::RegistryPlaces{"", ""}; });
    EXPECT_EQ(nowhere.RegSetValueExA(HKEY_CURRENT_USER, u"n", 0, 1, u"1", 1), status::write_fault);
    Long type = 0;
    Long size = 0;
    EXPECT_EQ(nowhere.RegQueryValueExA(HKEY_CURRENT_USER, u"n", type, nullptr, size),
              status::file_not_found);
}

TEST(Files, ADamagedOneIsReportedCopiedAndLeftAlone) {
    Store store;
    const std::string damaged = header + "[HKCU]\n\"n\"=\"1\n";
    write_file(store.user, damaged);
    testing::internal::CaptureStderr();
    EXPECT_EQ(store.open(HKEY_CURRENT_USER, u"a"), 0);
    EXPECT_EQ(store.status, status::corrupt);
    EXPECT_EQ(store.get(HKEY_CURRENT_USER, u"n"), "status 1015");
    EXPECT_EQ(store.set(HKEY_CURRENT_USER, u"n", u"2"), status::corrupt);
    EXPECT_EQ(store.made(HKEY_CURRENT_USER, u"a"), 0);
    EXPECT_EQ(store.registry.RegDeleteKeyA(HKEY_CURRENT_USER, u"a"), status::corrupt);
    EXPECT_EQ(store.registry.RegDeleteValueA(HKEY_CURRENT_USER, u"n"), status::corrupt);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "kvarta16: " + store.user +
                  ", line 3: a text without its closing quote; no setting is read or stored there "
                  "until the file is mended or moved away; copied to " +
                  store.user + ".damaged-1\n");
    EXPECT_EQ(read_file(store.user), damaged);
    EXPECT_EQ(read_file(store.user + ".damaged-1"), damaged);
    EXPECT_EQ(store.set(HKEY_LOCAL_MACHINE, u"n", u"2"), 0);  // the other file is none the worse

    // Damaged otherwise: another copy; the same again: none.
    write_file(store.user, damaged + "\n");
    testing::internal::CaptureStderr();
    EXPECT_EQ(store.get(HKEY_CURRENT_USER, u"n"), "status 1015");
    posix::PosixRegistry another([&] { return posix::RegistryPlaces{store.user, store.machine}; });
    Long key = 0;
    EXPECT_EQ(another.RegOpenKeyA(HKEY_CURRENT_USER, u"", key), status::corrupt);
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 2);
    EXPECT_EQ(read_file(store.user + ".damaged-2"), damaged + "\n");
    EXPECT_FALSE(std::filesystem::exists(store.user + ".damaged-3"));

    write_file(store.user, header + "[HKCU]\n\"n\"=\"1\"\n");
    EXPECT_EQ(store.get(HKEY_CURRENT_USER, u"n"), "1");
    EXPECT_EQ(store.set(HKEY_CURRENT_USER, u"n", u"2"), 0);
}

// ---- Rights and full disks, in processes that have less than this one -------------------------

TEST(Rights, AnOrdinaryUserMayNotWriteTheMachinesFile) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the superuser to become an ordinary user";
    }
    Store store;
    ASSERT_EQ(store.set(HKEY_LOCAL_MACHINE, u"n", u"1"), 0);
    const std::string before = read_file(store.machine);
    ASSERT_EQ(::chmod(store.folder.path().c_str(), 0755), 0);
    const std::string own_folder = store.folder.file("dom");
    std::filesystem::create_directory(own_folder);
    constexpr uid_t nobody = 65534;
    ASSERT_EQ(::chown(own_folder.c_str(), nobody, nobody), 0);
    store.user = own_folder + "/registry.reg";
    EXPECT_TRUE(succeeds_in_child([&] {
        if (::setgid(nobody) != 0 || ::setuid(nobody) != 0) {
            return false;
        }
        Long key = 0;
        const bool refused =
            store.set(HKEY_LOCAL_MACHINE, u"n", u"2") == status::access_denied &&
            store.registry.RegCreateKeyA(HKEY_LOCAL_MACHINE, u"a", key) == status::access_denied &&
            store.registry.RegDeleteValueA(HKEY_LOCAL_MACHINE, u"n") == status::access_denied;
        return refused && store.get(HKEY_LOCAL_MACHINE, u"n") == "1" &&
               store.set(HKEY_CURRENT_USER, u"n", u"3") == 0 &&
               store.get(HKEY_CURRENT_USER, u"n") == "3";
    }));
    EXPECT_EQ(read_file(store.machine), before);

    // The superuser in that user's folder leaves the user in possession.
    const std::string by_root = own_folder + "/nowy/registry.reg";
    store.user = by_root;
    EXPECT_EQ(store.set(HKEY_CURRENT_USER, u"n", u"4"), 0);
    EXPECT_TRUE(succeeds_in_child([&] {
        return ::setgid(nobody) == 0 && ::setuid(nobody) == 0 &&
               store.set(HKEY_CURRENT_USER, u"n", u"5") == 0;
    }));

    // No right even to read.
    ASSERT_EQ(::chmod(store.machine.c_str(), 0600), 0);
    EXPECT_TRUE(succeeds_in_child([&] {
        posix::PosixRegistry fresh([&] {
            return posix::RegistryPlaces{store.user, store.machine};
        });
        Long key = 0;
        return ::setgid(nobody) == 0 && ::setuid(nobody) == 0 &&
               fresh.RegOpenKeyA(HKEY_LOCAL_MACHINE, u"", key) == status::access_denied;
    }));
}

TEST(Rights, AFullDiskLeavesTheOldContent) {
    Store store;
    ASSERT_EQ(store.set(HKEY_CURRENT_USER, u"n", u"1"), 0);
    const std::string before = read_file(store.user);
    EXPECT_TRUE(succeeds_in_child([&] {
        limit_file_size(2000);
        return store.set(HKEY_CURRENT_USER, u"duży", String(3000, u'x')) == status::write_fault &&
               store.get(HKEY_CURRENT_USER, u"duży") == "status 2" &&
               store.set(HKEY_CURRENT_USER, u"mały", u"2") == 0;
    }));
    EXPECT_FALSE(std::filesystem::exists(store.user + ".new"));
    EXPECT_NE(read_file(store.user), before);
    EXPECT_EQ(store.get(HKEY_CURRENT_USER, u"n"), "1");
    EXPECT_EQ(store.get(HKEY_CURRENT_USER, u"mały"), "2");
}

// ---- Where the files are ----------------------------------------------------------------------

TEST(Places, AsTheEnvironmentSays) {
    const TempFolder folder;
    EXPECT_TRUE(succeeds_in_child([&] {
        const auto user = [] { return posix::registry_places().user; };
        const auto set = [](const char* name, const std::string& value) {
            ::setenv(name, value.c_str(), 1);
        };
        ::unsetenv("KVARTA16_REGISTRY");
        ::unsetenv("KVARTA16_REGISTRY_MACHINE");
        ::unsetenv("XDG_CONFIG_HOME");
        set("HOME", "/home/ola");
        bool good = user() == "/home/ola/.config/kvarta16/registry.reg" &&
                    posix::registry_places().machine == "/etc/kvarta16/registry.reg";
        set("XDG_CONFIG_HOME", "względna");
        good = good && user() == "/home/ola/.config/kvarta16/registry.reg";
        set("XDG_CONFIG_HOME", "/konfiguracja");
        good = good && user() == "/konfiguracja/kvarta16/registry.reg";
        set("KVARTA16_REGISTRY", "/tu/rejestr.reg");
        set("KVARTA16_REGISTRY_MACHINE", "/tam/rejestr.reg");
        good = good && user() == "/tu/rejestr.reg" &&
               posix::registry_places().machine == "/tam/rejestr.reg";
        set("KVARTA16_REGISTRY", "");
        good = good && user() == "/konfiguracja/kvarta16/registry.reg";
        // A relative one stays where it was first.
        std::filesystem::current_path(folder.path());
        set("KVARTA16_REGISTRY", "rejestr.reg");
        good = good && user() == std::filesystem::canonical(folder.path()) / "rejestr.reg";
        std::filesystem::current_path("/");
        return good && user() == std::filesystem::canonical(folder.path()) / "rejestr.reg";
    }));
}

TEST(Places, ThePlatformHasTheStore) {
    const TempFolder folder;
    EXPECT_TRUE(succeeds_in_child([&] {
        ::setenv("KVARTA16_REGISTRY", folder.file("r.reg").c_str(), 1);
        const ScopedPlatform scope(posix_platform());
        aregistry().SaveRegistry(u"n", u"zażółć", 4);
        return ToText(aregistry().GetRegistry(u"N", 4)) == u"zażółć";
    }));
    EXPECT_NE(read_file(folder.file("r.reg")).find("\"n\"=\"zażółć\""), std::string::npos);
}

}  // namespace
}  // namespace kvarta16::registry_tests
