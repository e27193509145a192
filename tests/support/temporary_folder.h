// A folder that goes away with the test, and whole files in it.
//
//   const TemporaryFolder folder;
//   write_file(folder / "a.txt", "abc");
//   EXPECT_EQ(folder.names(), (std::vector<std::string>{"a.txt"}));
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kvarta16::testing_support {

// In memory where the system has a folder for it: the tests sync thousands of rows, and nothing
// that they examine depends on the disk.
class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    TemporaryFolder(TemporaryFolder&&) = delete;
    TemporaryFolder& operator=(TemporaryFolder&&) = delete;

    // The path of a file in the folder.
    std::string operator/(std::string_view name) const;
    [[nodiscard]] std::string path() const;

    // The names of the files in it, in order.
    [[nodiscard]] std::vector<std::string> names() const;

  private:
    std::filesystem::path path_;
};

std::string file_bytes(const std::string& path);

void write_file(const std::string& path, std::string_view bytes);

}  // namespace kvarta16::testing_support
