#include <version_stamp.h>

#include <kvarta16/frame/amian.h>

namespace kvarta16 {

amian& amian::data() noexcept {
    thread_local amian block;
    return block;
}

const ApplicationInfo& amian::application_info() {
    std::unique_ptr<ApplicationInfo>& slot = data().application;
    if (slot == nullptr) {
        slot = std::make_unique<ApplicationInfo>(
            ApplicationInfo{version_stamp::major_number, version_stamp::minor_number,
                            version_stamp::revision_number, version_stamp::component_name});
    }
    return *slot;
}

}  // namespace kvarta16
