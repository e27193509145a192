// What the tests of the POSIX adapter share: folders as drives, the environment and the current
// directory put back when a test ends, another user, another process.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include <grp.h>
#include <gtest/gtest.h>
#include <support/sqlite_files.h>
#include <sys/wait.h>
#include <unistd.h>

#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/posix_paths.h>

namespace kvarta16::testing_support {

// An environment variable, as before when this ends. nullptr takes it away.
class Environment {
  public:
    Environment(std::string name, const char* value) : name_(std::move(name)) {
        if (const char* before = std::getenv(name_.c_str())) {
            before_ = before;
        }
        set(value);
    }
    ~Environment() { set(before_ ? before_->c_str() : nullptr); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    Environment(Environment&&) = delete;
    Environment& operator=(Environment&&) = delete;

  private:
    void set(const char* value) const {
        if (value == nullptr) {
            ::unsetenv(name_.c_str());
        } else {
            ::setenv(name_.c_str(), value, 1);
        }
    }
    std::string name_;
    std::optional<std::string> before_;
};

class CurrentFolder {
  public:
    explicit CurrentFolder(const std::string& path) { std::filesystem::current_path(path); }
    ~CurrentFolder() { std::filesystem::current_path(before_); }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;
    CurrentFolder(CurrentFolder&&) = delete;
    CurrentFolder& operator=(CurrentFolder&&) = delete;

  private:
    std::filesystem::path before_ = std::filesystem::current_path();
};

// Puts the process back on drive Z: in the directory where it was, and drives C: and D: to their
// roots, as far as they exist.
class CurrentDrives {
  public:
    CurrentDrives() = default;
    ~CurrentDrives() {
        posix::change_drive(u'Z');
        std::filesystem::current_path(before_);
        for (const StringView root : {u"C:\\", u"D:\\"}) {
            static_cast<void>(caught([&] { posix::change_directory(root); }));
        }
    }
    CurrentDrives(const CurrentDrives&) = delete;
    CurrentDrives& operator=(const CurrentDrives&) = delete;
    CurrentDrives(CurrentDrives&&) = delete;
    CurrentDrives& operator=(CurrentDrives&&) = delete;

  private:
    std::filesystem::path before_ = std::filesystem::current_path();
};

inline void touch(const std::string& path) {
    std::ofstream file(path);
    ASSERT_TRUE(file.good()) << path;
}

// "Z:\dev\shm\x" for "/dev/shm/x".
inline String on_root_drive(const std::string& native) {
    return u"Z:" + replace_all(from_utf8(native), u"/", u"\\");
}

inline int open_descriptors() {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        count += entry.exists() ? 1 : 0;
    }
    return count;
}

// The status of a child process that exits with 0 where `check` holds.
inline int in_another_process(const std::function<bool()>& check) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(check() ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return status;
}

// In a child process: a user that is not the superuser, where the tests run as that.
inline int as_another_user(const std::function<bool()>& check) {
    constexpr uid_t nobody = 65534;
    return in_another_process([&] {
        const bool is_other = ::geteuid() != 0 || (::setgroups(0, nullptr) == 0 &&
                                                   ::setgid(nobody) == 0 && ::setuid(nobody) == 0);
        return is_other && check();
    });
}

// The folder of drive C: with a few entries in it.
class PosixDrive : public testing::Test {
  protected:
    PosixDrive() {
        std::filesystem::create_directory(c);
        std::filesystem::create_directory(c + "/Dane");
        touch(c + "/Dane/firma.mdb");
        touch(c + "/Dane/Żółw.txt");
        std::filesystem::create_directory(c + "/dane2");
    }

    const TemporaryFolder folder;
    const Environment drives{"KVARTA16_DRIVES", folder.path().c_str()};
    const std::string c = folder / "C";
};

}  // namespace kvarta16::testing_support
