// Numbers for what callers hold: sessions, the connections of a session, the files and searches of
// a connection. A number is not given twice until all of them have been.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include <kvarta16/platform/posix/ftp/ftp_error.h>

namespace kvarta16::posix {

// Something behind a handle.
class Handled {
  public:
    Handled() = default;
    virtual ~Handled() = default;
    Handled(const Handled&) = delete;
    Handled& operator=(const Handled&) = delete;
    Handled(Handled&&) = delete;
    Handled& operator=(Handled&&) = delete;

    // What there is to do at its end; throws an FtpError where that fails. It is gone all the same.
    virtual void close() {}
};

// Any thread may use it.
class HandleTable {
  public:
    // `parent` is 0 for what has none; 6 if it has been closed meanwhile.
    [[nodiscard]] Long add(Long parent, std::shared_ptr<Handled> handled);

    // Fails: 6 for a number that is none, 12018 for one of another kind.
    template <class Kind>
    [[nodiscard]] std::shared_ptr<Kind> get(Long handle) const {
        auto kind = std::dynamic_pointer_cast<Kind>(find(handle));
        if (kind == nullptr) {
            throw FtpError(internet_error::incorrect_handle_type);
        }
        return kind;
    }

    // Takes a handle and all that came from it out of the table, the youngest first. Fails: 6.
    [[nodiscard]] std::vector<std::shared_ptr<Handled>> take(Long handle);

  private:
    struct Slot {
        Long parent = 0;
        std::shared_ptr<Handled> handled;
    };
    [[nodiscard]] std::shared_ptr<Handled> find(Long handle) const;

    mutable std::mutex mutex_;
    std::map<Long, Slot> slots_;
    Long last_ = 0;
};

}  // namespace kvarta16::posix
