// What the system tells of a file, in the terms of the file seams.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>

#include <kvarta16/frame/types.h>

namespace kvarta16::posix {

// The number of `error` for an error of the system's calls on `native`. Where the file is missing
// it looks whether the folder is there.
[[nodiscard]] Long failure_number(int system_error, const std::string& native);

[[noreturn]] void fail_by(int system_error, const std::string& native);

// Who asks: made once for many files.
class Caller {
  public:
    Caller();

    // Where the permission bits do not let the caller write; for the superuser that is where they
    // let nobody write.
    [[nodiscard]] bool may_only_read(mode_t mode, uid_t owner, gid_t group) const;
    [[nodiscard]] bool may_only_read(const struct stat& status) const {
        return may_only_read(status.st_mode, status.st_uid, status.st_gid);
    }

    // The sum of file_attribute bits of a file by its status and its name.
    [[nodiscard]] Long attributes(mode_t mode, uid_t owner, gid_t group,
                                  std::string_view name) const;
    [[nodiscard]] Long attributes(const struct stat& status, std::string_view name) const {
        return attributes(status.st_mode, status.st_uid, status.st_gid, name);
    }

  private:
    uid_t user_;
    std::vector<gid_t> groups_;
};

// The last name of a path that may end with a separator; "" for the root.
[[nodiscard]] std::string last_name(std::string native);

// The folder that the last name stands in, with a separator at its end.
[[nodiscard]] std::string folder_of(std::string native);

}  // namespace kvarta16::posix
