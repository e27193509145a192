// A registry in memory that writes down every call with its arguments and its answer, and answers
// what a test prepares.
//
//   FakePlatform fake;
//   fake.registry.keys[{HKEY_CURRENT_USER, u"Software\\ZEVO"}][u"Drukarka"] = {REG_SZ, u"Magazyn"};
//   fake.registry.answers["RegSetValueExA"] = {registry_status::access_denied};
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <kvarta16/frame/types.h>
#include <kvarta16/platform/registry.h>

namespace kvarta16::testing_support {

class FakeRegistry final : public Registry {
  public:
    struct Value {
        Long type = REG_SZ;
        String data;  // a character for each byte
    };
    using Values = std::map<String, Value>;
    struct Place {
        Long root = 0;
        String path;

        friend bool operator<(const Place& a, const Place& b);
    };

    FakeRegistry();
    ~FakeRegistry() override;

    Long RegOpenKeyA(Long key, StringView path, Long& result) override;
    Long RegCreateKeyA(Long key, StringView path, Long& result) override;
    Long RegQueryValueExA(Long key, StringView name, Long& type, String* data, Long& size) override;
    Long RegSetValueExA(Long key, StringView name, Long reserved, Long type, StringView data,
                        Long size) override;
    Long RegCloseKey(Long key) override;
    Long RegDeleteKeyA(Long key, StringView path) override;
    Long RegDeleteValueA(Long key, StringView name) override;

    std::map<Place, Values> keys;   // paths without case, names of values as they stand
    std::map<Long, Place> handles;  // those that are open, from 1 up; none is given out twice
    std::map<std::string, std::deque<Long>> answers;  // by operation: of its next calls
    std::vector<std::string> calls;                   // "RegOpenKeyA(HKCU, 'Software') = 0"

  private:
    std::optional<Long> prepared(const std::string& operation);
    Long told(std::string call, Long status);
    static std::string shown(StringView text);
    static std::string name_of(Long key);
    static bool is_root(Long key);
    [[nodiscard]] Long status_of_handle(Long key) const;
    [[nodiscard]] Long located(Long key, StringView path, Place& place) const;
    Long opened(const Place& place);
    Long query(Long key, StringView name, Long& type, String* data, Long& size);

    Long last_handle_ = 0;
};

}  // namespace kvarta16::testing_support
