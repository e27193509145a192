#include <algorithm>
#include <iterator>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/utf8.h>

namespace kvarta16 {
namespace {

struct NumberedText {
    std::int32_t number;
    std::u16string_view text;
};

constexpr NumberedText texts[] = {
    {5, u"Invalid procedure call or argument"},
    {6, u"Overflow"},
    {9, u"Subscript out of range"},
    {11, u"Division by zero"},
    {13, u"Type mismatch"},
    {52, u"Bad file name or number"},
    {53, u"File not found"},
    {54, u"Bad file mode"},
    {55, u"File already open"},
    {57, u"Device I/O error"},
    {58, u"File already exists"},
    {61, u"Disk full"},
    {62, u"Input past end of file"},
    {67, u"Too many files"},
    {68, u"Device unavailable"},
    {70, u"Permission denied"},
    {74, u"Can't rename with different drive"},
    {75, u"Path/File access error"},
    {76, u"Path not found"},
    {91, u"Object variable or With block variable not set"},
    {94, u"Invalid use of Null"},
};

}  // namespace

Failure::Failure(std::int32_t number) : Failure(number, std::u16string(failure_text(number))) {}

Failure::Failure(std::int32_t number, std::u16string description)
    : number_(number), description_(std::move(description)), what_(to_utf8(description_)) {}

std::u16string_view failure_text(std::int32_t number) noexcept {
    const auto* known = std::ranges::find(texts, number, &NumberedText::number);
    return known == std::end(texts) ? u"Application-defined or object-defined error" : known->text;
}

void fail(std::int32_t number) {
    throw Failure(number);
}

}  // namespace kvarta16
