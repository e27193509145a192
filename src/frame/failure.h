// Failures: how a method of the library tells its caller that it could not do its work, and
// the three disciplines by which methods treat a failing step.
//
//   Failure            an exception with a number and a text, as callers of the platform know them
//   step(...)          tolerant: a failing step is dropped, the method goes on
//   guarded(...)       guarded: a failure ends the body, the prepared result comes back
//   (nothing)          strict: the failure passes to the caller
//
// Nothing else in the library swallows a failure.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include <kvarta16/frame/export.h>

namespace kvarta16 {

// The numbers that the library itself raises. A failing layer below (a database engine, say)
// raises numbers of its own.
namespace error {
inline constexpr std::int32_t invalid_call = 5;       // invalid procedure call or argument
inline constexpr std::int32_t overflow = 6;           // a result leaves the range of its type
inline constexpr std::int32_t subscript = 9;          // an index outside its array
inline constexpr std::int32_t division_by_zero = 11;  // division by zero
inline constexpr std::int32_t type_mismatch = 13;     // a value of a kind that cannot be taken
inline constexpr std::int32_t object_not_set = 91;    // a member of no object
inline constexpr std::int32_t invalid_null = 94;      // Null where a value is needed
}  // namespace error

class KVARTA16_EXPORT Failure : public std::exception {
  public:
    // A failure with the standard text of `number`, e.g. 13 "Type mismatch".
    explicit Failure(std::int32_t number);
    Failure(std::int32_t number, std::u16string description);

    [[nodiscard]] std::int32_t number() const noexcept { return number_; }
    [[nodiscard]] const std::u16string& description() const noexcept { return description_; }
    // The description in UTF-8.
    [[nodiscard]] const char* what() const noexcept override { return what_.c_str(); }

  private:
    std::int32_t number_;
    std::u16string description_;
    std::string what_;
};

// The text that callers know for one of the library's own numbers and of those of the platform's
// file and process calls; for any other number "Application-defined or object-defined error".
[[nodiscard]] KVARTA16_EXPORT std::u16string_view failure_text(std::int32_t number) noexcept;

// Raises the failure out of line, so that the paths that succeed stay small.
[[noreturn]] KVARTA16_EXPORT void fail(std::int32_t number);

namespace detail {

// Calls `body` in a way that a compiler cannot see through. Inlined into the try block, a step
// `amount = f()` on a plain struct makes GCC 12 drop the value that `amount` had before, as if f
// could not fail (its dead store elimination at -O1 and above does so), and that value is what
// the disciplines promise to keep.
template <class Body>
void call_unseen(Body& body) {
    void (*volatile call)(Body&) = [](Body& unseen) { unseen(); };
    call(body);
}

}  // namespace detail

// Tolerant discipline: runs one step of a method. A step that fails is dropped; what it was to
// assign keeps its value.
template <class Step>
void step(Step&& body) {
    try {
        detail::call_unseen(body);
    } catch (const Failure&) {  // dropped by the discipline: the method goes on with its next step
    }
}

// Guarded discipline: runs a method's body. A failure ends the body; the caller of guarded()
// then returns what it had prepared.
template <class Body>
void guarded(Body&& body) {
    try {
        detail::call_unseen(body);
    } catch (const Failure&) {  // ends the body by the discipline
    }
}

}  // namespace kvarta16
