// Failure and the disciplines.

#include <stdexcept>

#include <gtest/gtest.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/value.h>

#include "frame_support.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;

struct NumberText {
    std::int32_t number;
    const char16_t* text;
};

constexpr NumberText known_failures[] = {
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
    {94, u"Invalid use of Null"},
};

TEST(Failure, HasTheTextThatCallersKnow) {
    for (const NumberText& known : known_failures) {
        EXPECT_EQ(failure_text(known.number), known.text);
        const Failure failure(known.number);
        EXPECT_EQ(failure.number(), known.number);
        EXPECT_EQ(failure.description(), known.text);
        EXPECT_EQ(wide(failure.what()), known.text);
    }
}

TEST(Failure, HasOneTextForAllOtherNumbers) {
    const std::u16string other = u"Application-defined or object-defined error";
    for (const std::int32_t number : {0, 1, 4, 7, -1, 1000, -2147467259, 2147483647}) {
        EXPECT_EQ(failure_text(number), other) << number;
        EXPECT_EQ(Failure(number).description(), other) << number;
        EXPECT_EQ(Failure(number).number(), number);
    }
    EXPECT_NE(failure_text(error::object_not_set), other);
}

TEST(Failure, CarriesTheNumberAndTheTextOfAnotherLayer) {
    const Failure failure(-2147217900, u"brak tabeli \u201EODSETKI\u201D");
    EXPECT_EQ(failure.number(), -2147217900);
    EXPECT_EQ(failure.description(), u"brak tabeli \u201EODSETKI\u201D");
    EXPECT_STREQ(failure.what(), "brak tabeli \xE2\x80\x9EODSETKI\xE2\x80\x9D");
    EXPECT_EQ(Failure(13, u"").description(), u"");
}

TEST(Failure, IsRaisedByNumber) {
    for (const NumberText& known : known_failures) {
        EXPECT_EQ(failure_of([&]() -> int { fail(known.number); }), known.number);
    }
    EXPECT_EQ(error::invalid_call, 5);
    EXPECT_EQ(error::overflow, 6);
    EXPECT_EQ(error::subscript, 9);
    EXPECT_EQ(error::division_by_zero, 11);
    EXPECT_EQ(error::type_mismatch, 13);
    EXPECT_EQ(error::invalid_null, 94);
}

// ---- Disciplines ------------------------------------------------------------------------------

TEST(Tolerant, DropsAFailingStepAndKeepsItsTarget) {
    Currency amount = Currency::raw(7);
    String text = u"before";
    step([&] { amount = ToCurrency(Variant::null()); });
    step([&] { text = ToText(Variant::missing()); });
    EXPECT_EQ(amount, Currency::raw(7));
    EXPECT_EQ(text, u"before");
    step([&] { amount = ToCurrency(Variant(5)); });
    step([&] { text = ToText(Variant(5)); });
    EXPECT_EQ(amount, Currency::raw(50000));
    EXPECT_EQ(text, u"5");
}

// A plain struct that a failing call was to give stays as it was, also where the compiler sees the
// whole of the method: GCC 12 takes the value before for dead if the step is inlined into its try.
[[gnu::noinline]] Currency kept_by_step(const Variant& value) {
    Currency amount = Currency::raw(1'230'000);
    step([&] { amount = ToCurrency(value); });
    return amount;
}
[[gnu::noinline]] Currency kept_by_guarded(const Variant& value) {
    Currency amount = Currency::raw(1'230'000);
    guarded([&] { amount = ToCurrency(value); });
    return amount;
}

TEST(Disciplines, KeepPlainStructsThatAFailingCallWasToGive) {
    EXPECT_EQ(kept_by_step(Variant(u"word")).count, 1'230'000);
    EXPECT_EQ(kept_by_guarded(Variant(u"word")).count, 1'230'000);
    EXPECT_EQ(kept_by_step(Variant(2)).count, 20'000);
    EXPECT_EQ(kept_by_guarded(Variant(2)).count, 20'000);
}

TEST(Tolerant, KeepsWhatAStepDidBeforeItFailed) {
    int done = 0;
    step([&] {
        done = 1;
        fail(error::overflow);
        done = 2;
    });
    EXPECT_EQ(done, 1);
}

TEST(Guarded, EndsTheBodyAtAFailure) {
    const auto method = [](const Variant& value) {
        String result = u"prepared";
        guarded([&] {
            const Long number = ToLong(value);
            result = u"begun";
            result = ToText(Variant(ToCurrency(Variant(1 / static_cast<double>(number)))));
        });
        return result;
    };
    EXPECT_EQ(method(Variant::null()), u"prepared");
    EXPECT_EQ(method(Variant(0)), u"begun");
    EXPECT_EQ(method(Variant(4)), u"0,25");
}

TEST(Disciplines, SwallowFailuresAlone) {
    EXPECT_THROW(step([] { throw std::logic_error("a defect"); }), std::logic_error);
    EXPECT_THROW(guarded([] { throw std::logic_error("a defect"); }), std::logic_error);
    EXPECT_NO_THROW(step([] { fail(5); }));
    EXPECT_NO_THROW(guarded([] { throw Failure(-2147217900, u"of another layer"); }));
}

TEST(Disciplines, LetAFailureOfAStrictMethodPass) {
    const auto strict = [](const Variant& value) { return ToLong(value) + 1; };
    EXPECT_EQ(failure_of([&] { return strict(Variant(u"abc")); }), 13);
    EXPECT_EQ(failure_of([&] { return strict(Variant(u"5")); }), 0);
}

}  // namespace
}  // namespace kvarta16
