#include <algorithm>

#include <kvarta16/platform/named_spoolers.h>

namespace kvarta16 {

void NamedSpoolers::serve_prefix(StringView prefix, Spooler& spooler) {
    served_.push_back({String(prefix), &spooler});
}

void NamedSpoolers::serve_others(Spooler& spooler) {
    others_ = &spooler;
}

Long NamedSpoolers::OpenPrinterA(StringView name, Long& handle, const PRINTER_DEFAULTS& defaults) {
    Spooler* const spooler = spooler_of(name);
    Long own_handle = 0;
    const Long answer = spooler == nullptr ? 0 : spooler->OpenPrinterA(name, own_handle, defaults);
    if (answer != 0) {
        const std::lock_guard lock(mutex_);
        handle = ++last_handle_;
        open_[handle] = {spooler, own_handle};
    }
    return answer;
}

Long NamedSpoolers::StartDocPrinterA(Long handle, Long level, const DOC_INFO_1& document) {
    const Opened at = opened(handle);
    return at.spooler == nullptr ? 0 : at.spooler->StartDocPrinterA(at.handle, level, document);
}

Long NamedSpoolers::StartPagePrinter(Long handle) {
    const Opened at = opened(handle);
    return at.spooler == nullptr ? 0 : at.spooler->StartPagePrinter(at.handle);
}

Long NamedSpoolers::WritePrinter(Long handle, std::span<const Byte> data, Long& written) {
    const Opened at = opened(handle);
    return at.spooler == nullptr ? 0 : at.spooler->WritePrinter(at.handle, data, written);
}

Long NamedSpoolers::EndPagePrinter(Long handle) {
    const Opened at = opened(handle);
    return at.spooler == nullptr ? 0 : at.spooler->EndPagePrinter(at.handle);
}

Long NamedSpoolers::EndDocPrinter(Long handle) {
    const Opened at = opened(handle);
    return at.spooler == nullptr ? 0 : at.spooler->EndDocPrinter(at.handle);
}

Long NamedSpoolers::ClosePrinter(Long handle) {
    const Opened at = opened(handle);
    if (at.spooler == nullptr) {
        return 0;
    }
    {
        const std::lock_guard lock(mutex_);
        open_.erase(handle);
    }
    return at.spooler->ClosePrinter(at.handle);
}

Spooler* NamedSpoolers::spooler_of(StringView name) const {
    const auto found = std::ranges::find_if(
        served_, [&](const Served& served) { return name.starts_with(served.prefix); });
    return found == served_.end() ? others_ : found->spooler;
}

NamedSpoolers::Opened NamedSpoolers::opened(Long handle) const {
    const std::lock_guard lock(mutex_);
    const auto found = open_.find(handle);
    return found == open_.end() ? Opened() : found->second;
}

NamedSpoolers& named_spoolers() noexcept {
    static NamedSpoolers spoolers;
    return spoolers;
}

}  // namespace kvarta16
