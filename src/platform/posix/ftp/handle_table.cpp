#include <limits>
#include <utility>

#include <kvarta16/platform/posix/ftp/handle_table.h>

namespace kvarta16::posix {

std::shared_ptr<Handled> HandleTable::find(Long handle) const {
    const std::lock_guard lock(mutex_);
    const auto found = slots_.find(handle);
    if (found == slots_.end()) {
        throw FtpError(internet_error::invalid_handle);
    }
    return found->second.handled;
}

Long HandleTable::add(Long parent, std::shared_ptr<Handled> handled) {
    const std::lock_guard lock(mutex_);
    if (parent != 0 && !slots_.contains(parent)) {
        throw FtpError(internet_error::invalid_handle);
    }
    do {
        last_ = last_ == std::numeric_limits<Long>::max() ? 1 : last_ + 1;
    } while (slots_.contains(last_));
    slots_[last_] = {parent, std::move(handled)};
    return last_;
}

std::vector<std::shared_ptr<Handled>> HandleTable::take(Long handle) {
    const std::lock_guard lock(mutex_);
    if (!slots_.contains(handle)) {
        throw FtpError(internet_error::invalid_handle);
    }
    std::vector<Long> family = {handle};
    for (std::size_t i = 0; i < family.size(); ++i) {
        for (const auto& [number, slot] : slots_) {
            if (slot.parent == family[i]) {
                family.push_back(number);
            }
        }
    }
    std::vector<std::shared_ptr<Handled>> taken;
    taken.reserve(family.size());
    for (; !family.empty(); family.pop_back()) {  // children stand behind their parents
        taken.push_back(std::move(slots_[family.back()].handled));
        slots_.erase(family.back());
    }
    return taken;
}

}  // namespace kvarta16::posix
