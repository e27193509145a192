#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/utf8.h>

namespace kvarta16 {

Failure::Failure(std::int32_t number) : Failure(number, std::u16string(failure_text(number))) {}

Failure::Failure(std::int32_t number, std::u16string description)
    : number_(number), description_(std::move(description)), what_(to_utf8(description_)) {}

std::u16string_view failure_text(std::int32_t number) noexcept {
    switch (number) {
        case error::invalid_call:
            return u"Invalid procedure call or argument";
        case error::overflow:
            return u"Overflow";
        case error::subscript:
            return u"Subscript out of range";
        case error::division_by_zero:
            return u"Division by zero";
        case error::type_mismatch:
            return u"Type mismatch";
        case error::object_not_set:
            return u"Object variable not set";
        case error::invalid_null:
            return u"Invalid use of Null";
        default:
            return u"Application-defined or object-defined error";
    }
}

void fail(std::int32_t number) {
    throw Failure(number);
}

}  // namespace kvarta16
