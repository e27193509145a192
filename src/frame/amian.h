// The library's block of data, one copy per thread. It holds the two objects of the platform that
// are made once and kept: both are tested for absence before every use and created where they are
// absent, in the slot of the calling thread.
#pragma once

#include <memory>

#include <kvarta16/frame/variant.h>

namespace kvarta16 {

// The application-information object: version and name of the component.
struct ApplicationInfo {
    Integer major_number;
    Integer minor_number;
    Integer revision_number;
    String component_name;
};

struct amian {
    std::unique_ptr<ApplicationInfo> application;
    ObjectPointer dao_engine;

    // The calling thread's copy.
    [[nodiscard]] static amian& data() noexcept;
    // The calling thread's application-information object.
    [[nodiscard]] static const ApplicationInfo& application_info();
};

}  // namespace kvarta16
