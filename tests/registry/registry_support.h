// What the tests of the registry share.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/registry/posix_registry.h>

namespace kvarta16::registry_tests {

// A folder of a test's own, gone with the test.
class TempFolder {
  public:
    TempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "kvarta16-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no folder for the test");
        }
        path_ = name;
    }
    ~TempFolder() { std::filesystem::remove_all(path_); }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    TempFolder(TempFolder&&) = delete;
    TempFolder& operator=(TempFolder&&) = delete;

    [[nodiscard]] std::string file(const std::string& name) const {
        return (path_ / name).string();
    }
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

inline std::string read_file(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void write_file(const std::string& name, const std::string& bytes) {
    std::ofstream file(name, std::ios::binary | std::ios::trunc);
    file << bytes;
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + name);
    }
}

inline const std::string header = "Windows Registry Editor Version 5.00\n";

// A store in a folder of its own.
struct Store {
    TempFolder folder;
    std::string user = folder.file("user.reg");
    std::string machine = folder.file("machine.reg");
    posix::PosixRegistry registry{[this] { return posix::RegistryPlaces{user, machine}; }};

    // 0 where it could not be opened; the handle is left open.
    [[nodiscard]] Long open(Long root, StringView path) {
        Long key = 0;
        status = registry.RegOpenKeyA(root, path, key);
        return key;
    }
    [[nodiscard]] Long made(Long root, StringView path) {
        Long key = 0;
        status = registry.RegCreateKeyA(root, path, key);
        return key;
    }
    Long set(Long key, StringView name, StringView text) {
        return registry.RegSetValueExA(key, name, 0, REG_SZ, text, static_cast<Long>(text.size()));
    }
    // The text of a value as it stands, or "status N".
    [[nodiscard]] std::string get(Long key, StringView name) {
        Long type = 0;
        Long size = 0;
        Long answer = registry.RegQueryValueExA(key, name, type, nullptr, size);
        String text(static_cast<std::size_t>(size), u' ');
        if (answer == 0) {
            answer = registry.RegQueryValueExA(key, name, type, &text, size);
        }
        return answer == 0 ? to_utf8(text) : "status " + std::to_string(answer);
    }

    Long status = 0;  // of the last open() or made()
};

}  // namespace kvarta16::registry_tests
