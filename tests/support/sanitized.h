// Whether the tests run under a sanitizer: there a case takes some twenty times as long, and some
// of what a program may do without one cannot be done.
#pragma once

namespace kvarta16::testing_support {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool is_sanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool is_sanitized = true;
#else
inline constexpr bool is_sanitized = false;
#endif
#else
inline constexpr bool is_sanitized = false;
#endif

}  // namespace kvarta16::testing_support
