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

// The step of a loop over all of something: each one, and under a sanitizer every n-th. Odd and
// prime ones fall on each digit and each day of a week.
constexpr int sanitized_stride(int n) {
    return is_sanitized ? n : 1;
}

}  // namespace kvarta16::testing_support
