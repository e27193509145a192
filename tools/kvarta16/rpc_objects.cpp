#include "rpc_objects.h"

#include <algorithm>

namespace kvarta16::tool {

std::int64_t ObjectTable::number_of(const ObjectPointer& object) {
    if (object == nullptr) {
        return 0;
    }
    const auto known = std::find_if(objects_.begin(), objects_.end(),
                                    [&](const auto& entry) { return entry.second == object; });
    if (known != objects_.end()) {
        return known->first;
    }
    objects_.emplace(++last_number_, object);
    return last_number_;
}

ObjectPointer ObjectTable::find(std::int64_t number) const {
    const auto found = objects_.find(number);
    return found == objects_.end() ? nullptr : found->second;
}

bool ObjectTable::release(std::int64_t number) {
    return objects_.erase(number) == 1;
}

}  // namespace kvarta16::tool
