#include <kvarta16/frame/locale.h>

namespace kvarta16 {
namespace {

constexpr Locale polish{};
constinit thread_local const Locale* current = &polish;

}  // namespace

const Locale& locale() noexcept {
    return *current;
}

ScopedLocale::ScopedLocale(const Locale& settings) noexcept : previous_(current) {
    current = &settings;
}

ScopedLocale::~ScopedLocale() {
    current = previous_;
}

}  // namespace kvarta16
