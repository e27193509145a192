// Handles of the driver manager, freed when they leave their scope, and the texts that cross to
// it.
#pragma once

#include <memory>
#include <vector>

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <kvarta16/frame/types.h>

namespace kvarta16::odbc {

template <SQLSMALLINT type>
struct HandleDeleter {
    void operator()(void* handle) const noexcept { SQLFreeHandle(type, handle); }
};
template <SQLSMALLINT type>
using Handle = std::unique_ptr<void, HandleDeleter<type>>;

using EnvironmentHandle = Handle<SQL_HANDLE_ENV>;
using ConnectionHandle = Handle<SQL_HANDLE_DBC>;
using StatementHandle = Handle<SQL_HANDLE_STMT>;

// A new handle within another, empty if there is none to be had.
template <SQLSMALLINT type>
[[nodiscard]] Handle<type> new_handle(SQLHANDLE within) {
    SQLHANDLE handle = SQL_NULL_HANDLE;
    const bool done = SQL_SUCCEEDED(SQLAllocHandle(type, within, &handle));
    return Handle<type>(done ? handle : SQL_NULL_HANDLE);
}

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t), "the driver manager's texts are UTF-16");

// A text as the driver manager takes it, which is not const there.
class WideText {
  public:
    explicit WideText(StringView text) : units_(text.begin(), text.end()) { units_.push_back(0); }
    [[nodiscard]] SQLWCHAR* data() noexcept { return units_.data(); }
    [[nodiscard]] SQLINTEGER length() const noexcept {
        return static_cast<SQLINTEGER>(units_.size() - 1);
    }
    [[nodiscard]] SQLSMALLINT short_length() const noexcept {
        return static_cast<SQLSMALLINT>(units_.size() - 1);
    }

  private:
    std::vector<SQLWCHAR> units_;
};

}  // namespace kvarta16::odbc
