// The commands on the registry, on files of the test's own.
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "tool_process.h"

namespace tool_test {
namespace {

const std::string header = "Windows Registry Editor Version 5.00\n";
constexpr const char* key = "HKCU\\Software\\ZEVO";

class RegistryCommands : public testing::Test {
  protected:
    ToolRun run(Words words) const {
        words.insert(words.begin(), "registry");
        Options options;
        options.environment = {{"KVARTA16_REGISTRY", user}, {"KVARTA16_REGISTRY_MACHINE", machine}};
        options.in_child = respect_file_permissions;
        return run_tool(words, options);
    }
    std::string run_well(const Words& words) const {
        const ToolRun done = run(words);
        EXPECT_EQ(done.status, 0) << testing::PrintToString(words);
        EXPECT_EQ(done.err, "") << testing::PrintToString(words);
        return done.out;
    }
    void expect_error(const Words& words, int status, const std::string& err) const {
        const ToolRun done = run(words);
        EXPECT_EQ(done.status, status) << testing::PrintToString(words);
        EXPECT_EQ(done.err, err) << testing::PrintToString(words);
        EXPECT_EQ(done.out, "");
    }
    static std::string read(const std::string& name) {
        std::ifstream file(name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static void write(const std::string& name, const std::string& text) {
        std::ofstream(name, std::ios::binary) << text;
    }

    TempFolder folder;
    std::string user = folder.file("user.reg");
    std::string machine = folder.file("machine.reg");
};

TEST_F(RegistryCommands, SetGetDelete) {
    EXPECT_EQ(run_well({"set", key, "Drukarka", "Żółta \"1\""}), "");
    EXPECT_EQ(run_well({"set", "hkey_current_user\\software\\zevo", "", "domyślna"}), "");
    EXPECT_EQ(run_well({"set", key, "pusta", ""}), "");
    EXPECT_EQ(run_well({"get", "HKEY_CURRENT_USER\\Software\\zevo", "DRUKARKA"}), "Żółta \"1\"\n");
    EXPECT_EQ(run_well({"get", key}), "domyślna\n");
    EXPECT_EQ(run_well({"get", key, "pusta"}), "\n");
    EXPECT_EQ(run_well({"delete", key, "drukarka"}), "");
    expect_error({"get", key, "Drukarka"}, 1, "kvarta16: error 2: there is no such key or value\n");
    expect_error({"delete", key, "Drukarka"}, 1,
                 "kvarta16: error 2: there is no such key or value\n");
    expect_error({"delete", "HKCU\\Software"}, 1,
                 "kvarta16: error 5: the key has sub-keys, which go first, or there is no right to "
                 "it\n");
    EXPECT_EQ(run_well({"delete", key, ""}), "");
    EXPECT_EQ(run_well({"delete", key}), "");
    EXPECT_EQ(run_well({"delete", "HKCU\\Software"}), "");
    expect_error({"get", key}, 1, "kvarta16: error 2: there is no such key or value\n");
}

TEST_F(RegistryCommands, WhatTheLibrarySees) {
    run_well({"set", key, "n", "tekst"});
    Options options;
    options.environment = {{"KVARTA16_REGISTRY", user}, {"KVARTA16_REGISTRY_MACHINE", machine}};
    EXPECT_EQ(run_tool({"call", "aregistry.GetRegistry", "n", "4"}, options).out, "tekst\n");
    EXPECT_EQ(run_tool({"call", "aregistry.SaveRegistryK", "K", "m", "inny", "0"}, options).status,
              0);
    EXPECT_EQ(run_well({"get", "HKLM\\Software\\ZEVO\\K", "m"}), "inny\n");
}

TEST_F(RegistryCommands, RefusesOtherKeysTextsAndTypes) {
    for (const char* wrong : {"Software\\ZEVO", "\\HKCU", "", "HKEY_USERS\\x", "HKU"}) {
        expect_error({"get", wrong, "n"}, 2,
                     std::string("kvarta16: a key begins with HKCU, HKLM or HKCR, as "
                                 "HKCU\\Software\\ZEVO; \"") +
                         wrong + "\" does not\n");
    }
    expect_error({"set", key, "n", "Ж"}, 2,
                 "kvarta16: \"Ж\" holds characters that are not in Windows-1250\n");
    expect_error({"set", key, "Ж", "n"}, 2,
                 "kvarta16: \"Ж\" holds characters that are not in Windows-1250\n");
    EXPECT_FALSE(std::filesystem::exists(user));
    expect_error({"set", "HKCU\\\\a", "n", "1"}, 1,
                 "kvarta16: error 161: a key does not begin with a backslash\n");
    write(user, header + "[HKCU]\n\"l\"=dword:5\n\"z\"=hex(1):61,00,00,00,62,00\n");
    expect_error({"get", "HKCU", "l"}, 1,
                 "kvarta16: the value is of type 4 and no text; see kvarta16 registry export\n");
    EXPECT_EQ(run_well({"get", "HKCU", "z"}), "a\n");
    EXPECT_EQ(run({"set", key, "n"}).status, 2);
    EXPECT_EQ(run({}).status, 2);
}

TEST_F(RegistryCommands, ExportAndImport) {
    run_well({"set", key, "n", "zażółć"});
    run_well({"set", "HKCU\\Inne", "m", "1"});
    const std::string text = header + "\n[HKEY_CURRENT_USER\\Software\\ZEVO]\n\"n\"=\"zażółć\"\n";
    EXPECT_EQ(run_well({"export", key}), text);
    const std::string wide = run_well({"export", key, "--utf16"});
    EXPECT_EQ(wide.substr(0, 4), std::string("\xFF\xFEW\0", 4));
    const std::string file = folder.file("z.reg");
    write(file, wide);
    EXPECT_EQ(run_well({"delete", key}), "");
    EXPECT_EQ(run_well({"import", file}), file + ": 1 values set, 0 deleted, 0 keys deleted\n");
    EXPECT_EQ(run_well({"export", key}), text);
    EXPECT_EQ(run_well({"export", "HKCU"}),
              header +
                  "\n[HKEY_CURRENT_USER]\n\n[HKEY_CURRENT_USER\\Inne]\n\"m\"=\"1\"\n"
                  "\n[HKEY_CURRENT_USER\\Software]\n\n[HKEY_CURRENT_USER\\Software\\ZEVO]\n"
                  "\"n\"=\"zażółć\"\n");
    write(file, header + "[-HKCU\\Inne]\n[HKCU\\software\\zevo]\n\"N\"=-\n\"d\"=dword:1\n");
    EXPECT_EQ(run_well({"import", file}), file + ": 1 values set, 1 deleted, 1 keys deleted\n");
    EXPECT_EQ(run_well({"export", "HKCU\\Software\\ZEVO"}),
              header + "\n[HKEY_CURRENT_USER\\Software\\ZEVO]\n\"d\"=dword:00000001\n");
    expect_error({"export", "HKCU\\Inne"}, 1, "kvarta16: error 2: there is no such key or value\n");
}

TEST_F(RegistryCommands, ImportsAllOrNothing) {
    run_well({"set", key, "n", "1"});
    const std::string before = read(user);
    const std::string file = folder.file("z.reg");
    write(file, header + "[HKCU\\a]\n\"x\"=\"1\"\n\"y\"=1\n");
    expect_error({"import", file}, 1,
                 "kvarta16: " + file +
                     ", line 4: neither a text in quotes nor dword: nor hex:; nothing was "
                     "imported\n");
    write(file, header + "[HKCU\\a]\n\n[HKEY_USERS\\a]\n");
    expect_error({"import", file}, 1,
                 "kvarta16: " + file + ", line 4: HKEY_USERS cannot be imported; nothing was\n");
    expect_error({"import", folder.file("brak.reg")}, 1,
                 "kvarta16: " + folder.file("brak.reg") + " cannot be read\n");
    EXPECT_EQ(read(user), before);
}

TEST_F(RegistryCommands, TellsOfADamagedFile) {
    const std::string damaged = header + "[HKCU]\n\"n\"=1\n";
    write(user, damaged);
    expect_error({"set", key, "n", "1"}, 1,
                 "kvarta16: " + user +
                     ", line 3: neither a text in quotes nor dword: nor hex:; no setting is read "
                     "or stored there until the file is mended or moved away; copied to " +
                     user +
                     ".damaged-1\nkvarta16: error 1015: the file of the registry is "
                     "damaged\n");
    EXPECT_EQ(read(user), damaged);
    EXPECT_EQ(read(user + ".damaged-1"), damaged);
}

TEST_F(RegistryCommands, WithoutTheRight) {
    std::filesystem::permissions(folder.file(""), std::filesystem::perms(0555));
    write(machine, header);
    const ToolRun refused = run({"set", "HKLM\\a", "n", "1"});
    std::filesystem::permissions(folder.file(""), std::filesystem::perms(0755));
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err, "kvarta16: error 5: no right to do this\n");
}

}  // namespace
}  // namespace tool_test
