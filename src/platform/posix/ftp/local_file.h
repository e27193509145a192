// The local side of a transfer of a whole file: a regular file by its Windows path. What goes
// wrong is an FtpError with the number of the system's: 2, 3, 5, 80, 87 for a text that is no
// path, 112.
#pragma once

#include <span>
#include <string>

#include <kvarta16/frame/types.h>

namespace kvarta16::posix {

class LocalFile {
  public:
    enum class Use { read, write_new, write };

    // write_new refuses a file that is there (80); write makes it anew.
    LocalFile(StringView path, Use use);
    ~LocalFile();
    LocalFile(const LocalFile&) = delete;
    LocalFile& operator=(const LocalFile&) = delete;
    LocalFile(LocalFile&&) = delete;
    LocalFile& operator=(LocalFile&&) = delete;

    // The count, 0 at the end.
    [[nodiscard]] std::size_t read(std::span<char> buffer);
    void write(std::span<const char> bytes);
    // Nobody is to write to it when it is closed.
    void protect();
    // What the system has kept back may fail now.
    void close();

  private:
    std::string path_;
    int file_ = -1;
};

// Fails where a file cannot be made at this path, before anything is asked of a server.
void expect_writable(StringView path, LocalFile::Use use);

}  // namespace kvarta16::posix
