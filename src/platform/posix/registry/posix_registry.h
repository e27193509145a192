// The registry of a POSIX system: two text files in the export format of the platform
// (registry_text.h), that of the user and that of the machine.
//
//   HKEY_CURRENT_USER     KVARTA16_REGISTRY in the environment, by default kvarta16/registry.reg in
//                         the user's configuration directory (XDG_CONFIG_HOME, or ~/.config)
//   HKEY_LOCAL_MACHINE,   KVARTA16_REGISTRY_MACHINE, by default /etc/kvarta16/registry.reg, which
//   HKEY_CLASSES_ROOT     an ordinary user may read and not write
//
// The roots are always there. Keys of other roots that stand in a file stay in it. How the files
// are shared and guarded stands in registry_file.h.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include <kvarta16/frame/export.h>
#include <kvarta16/platform/posix/registry/registry_file.h>
#include <kvarta16/platform/posix/registry/registry_text.h>
#include <kvarta16/platform/registry.h>

namespace kvarta16::posix {

// Paths of the system; "" where there is no place: nothing is read then, and writing fails.
struct RegistryPlaces {
    std::string user;
    std::string machine;
};

// By the environment as it stands. A relative path counts from the directory in which the process
// was when that path was first asked for.
[[nodiscard]] KVARTA16_EXPORT RegistryPlaces registry_places();

// The handle of a root that has its file here, by its full name.
[[nodiscard]] KVARTA16_EXPORT std::optional<Long> handle_of_root(StringView full_name);

// A handle stands for a key by its path. All openings of one key have one number, which is counted
// and free again when all of them are closed, so that a reader that closes nothing keeps a number
// for each key and none for each reading; those of keys that have gone are dropped in time.
//
// Usable from several threads.
class KVARTA16_EXPORT PosixRegistry final : public Registry {
  public:
    explicit PosixRegistry(std::function<RegistryPlaces()> places = registry_places)
        : places_(std::move(places)) {}

    Long RegOpenKeyA(Long key, StringView path, Long& result) override;
    Long RegCreateKeyA(Long key, StringView path, Long& result) override;
    Long RegQueryValueExA(Long key, StringView name, Long& type, String* data, Long& size) override;
    Long RegSetValueExA(Long key, StringView name, Long reserved, Long type, StringView data,
                        Long size) override;
    Long RegCloseKey(Long key) override;
    Long RegDeleteKeyA(Long key, StringView path) override;
    Long RegDeleteValueA(Long key, StringView name) override;

    // What the platform's own tools do with a whole key; the answers are registry_status.

    // The key with all below it as text in UTF-8.
    [[nodiscard]] Long export_key(Long key, StringView path, std::string& text);

    // Does all that a text asks for, to each of the two files as a whole: the machine's first,
    // which may be refused. 87, and nothing is done, if a change is for a root of no file.
    [[nodiscard]] Long import_changes(const std::vector<registry::Change>& changes);

    // How many keys have a handle.
    [[nodiscard]] std::size_t open_keys() const;

  private:
    struct Place {
        Long root = 0;
        registry::Path path;  // below the root
    };
    struct Opened {
        Place place;
        String place_key;         // in handles_
        std::uint64_t count = 0;  // of openings
    };

    [[nodiscard]] Long locate(Long key, StringView path, Place& place) const;
    [[nodiscard]] Long opened_place(Long handle, Place& place) const;
    [[nodiscard]] Long handle_of(const Place& place);
    [[nodiscard]] registry::RegistryFile& file_of(Long root);
    [[nodiscard]] Long found_key(const Place& place, std::shared_ptr<const registry::Key>& tree,
                                 const registry::Key*& key);
    [[nodiscard]] bool has_gone(const Place& place);
    void drop_handles_of_gone_keys();
    void drop(std::map<Long, Opened>::iterator opened);

    std::function<RegistryPlaces()> places_;
    mutable std::mutex handles_mutex_;  // for the next four
    std::map<Long, Opened> opened_;     // by handle
    std::map<String, Long> handles_;    // by root and path, in capitals
    std::vector<Long> free_handles_;    // closed ones, to be given out again
    std::size_t sweep_at_ = 1024;       // handles in use at which those of keys that have gone go
    std::mutex files_mutex_;            // for files_
    std::map<std::string, std::unique_ptr<registry::RegistryFile>> files_;
};

}  // namespace kvarta16::posix
