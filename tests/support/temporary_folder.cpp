#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include <support/temporary_folder.h>
#include <unistd.h>

namespace kvarta16::testing_support {

TemporaryFolder::TemporaryFolder() {
    std::error_code ignored;
    const std::filesystem::path memory = "/dev/shm";
    const bool has_memory = std::filesystem::is_directory(memory, ignored);
    const auto parent = has_memory ? memory : std::filesystem::temp_directory_path();
    std::string name = (parent / "kvarta16-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no temporary folder " + name);
    }
    path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;  // what cannot be removed stays, and the test has its result
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::operator/(std::string_view name) const {
    return (path_ / name).string();
}

std::string TemporaryFolder::path() const {
    return path_.string();
}

std::vector<std::string> TemporaryFolder::names() const {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
        found.push_back(entry.path().filename().string());
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::string file_bytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void write_file(const std::string& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

}  // namespace kvarta16::testing_support
