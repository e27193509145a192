// The calls that must not allocate, counted by operator new. A text of up to seven UTF-16 units
// stands in the string itself.

#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include <kvarta16/frame/value.h>

namespace {

thread_local long allocations = 0;

void* counted(std::size_t size) noexcept {
    ++allocations;
    return std::malloc(size == 0 ? 1 : size);
}

void* counted_or_throw(std::size_t size) {
    void* memory = counted(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

}  // namespace

// The whole set, so that what one of them gives no foreign one takes back.
void* operator new(std::size_t size) {
    return counted_or_throw(size);
}
void* operator new[](std::size_t size) {
    return counted_or_throw(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return counted(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return counted(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}

namespace kvarta16 {
namespace {

// The allocations of a call, the second time it runs: what a thread sets up once does not count.
template <class Call>
long allocations_of(const Call& call) {
    static_cast<void>(call());
    const long before = allocations;
    static_cast<void>(call());
    return allocations - before;
}

TEST(Allocations, AreCounted) {
    EXPECT_GT(allocations_of([] { return String(100, u' '); }), 0);
    EXPECT_GT(allocations_of([] { return ToText(Variant(-2147483647)); }), 0);
    EXPECT_EQ(allocations_of([] { return String(7, u' '); }), 0);
}

TEST(Allocations, AreNoneInAVariantOfANumber) {
    const Variant values[] = {Variant(),
                              Variant::null(),
                              Variant(Integer{5}),
                              Variant(Long{5}),
                              Variant(Byte{5}),
                              Variant(0.5F),
                              Variant(0.5),
                              Variant(Currency::raw(5)),
                              Variant(Date{45429}),
                              Variant(true),
                              Variant(Decimal{1, 2, 3, 4, false}),
                              Variant::missing(),
                              Variant(u"1234,56")};
    for (const Variant& value : values) {
        EXPECT_EQ(allocations_of([&] {
                      Variant copy = value;
                      const Variant moved = std::move(copy);
                      return moved == value && moved.value() == value;
                  }),
                  0)
            << static_cast<int>(value.subtype());
    }
    Currency variable;
    EXPECT_EQ(allocations_of([&] { return Variant::reference(variable).value(); }), 0);
}

TEST(Allocations, AreNoneInTheCoercionsOfNumbers) {
    const Variant values[] = {Variant(),
                              Variant(Integer{5}),
                              Variant(Long{5}),
                              Variant(Byte{5}),
                              Variant(0.5F),
                              Variant(12.345),
                              Variant(Currency::raw(123456)),
                              Variant(Date{2.5}),
                              Variant(true),
                              Variant(Decimal{0, 0, 12345, 3, false})};
    for (const Variant& value : values) {
        SCOPED_TRACE(static_cast<int>(value.subtype()));
        EXPECT_EQ(allocations_of([&] { return ToCurrency(value); }), 0);
        EXPECT_EQ(allocations_of([&] { return ToLong(value); }), 0);
        EXPECT_EQ(allocations_of([&] { return ToInteger16(value); }), 0);
        EXPECT_EQ(allocations_of([&] { return to_double(value); }), 0);
        EXPECT_EQ(allocations_of([&] { return to_boolean(value); }), 0);
        EXPECT_EQ(allocations_of([&] { return IsNumericText(value); }), 0);
        EXPECT_EQ(allocations_of([&] { return IsNullValue(value); }), 0);
        EXPECT_EQ(allocations_of([&] { return IsDateValue(value); }), 0);
        EXPECT_EQ(allocations_of([&] { return RoundHalfEven(value, 2); }), 0);
    }
}

TEST(Allocations, AreNoneInTheCoercionsOfShortText) {
    for (const char16_t* text :
         {u"5", u"1234,56", u"-12,5", u"(5)", u"1E3", u"&HFF", u"5 z\u0142", u"1\u00A0234"}) {
        const Variant value = text;
        EXPECT_EQ(allocations_of([&] { return ToCurrency(value); }), 0);
        EXPECT_EQ(allocations_of([&] { return ToLong(value); }), 0);
        EXPECT_EQ(allocations_of([&] { return IsNumericText(value); }), 0);
        EXPECT_EQ(allocations_of([&] { return ValPrefix(text); }), 0);
    }
    const Variant rubbish = u"abc";
    EXPECT_EQ(allocations_of([&] { return IsNumericText(rubbish); }), 0);
}

TEST(Allocations, AreNoneWhereAResultIsShort) {
    const Currency money = Currency::raw(12345678);  // "1234,57"
    EXPECT_EQ(allocations_of([&] { return FormatMask(money, u"0.00"); }), 0);
    EXPECT_EQ(allocations_of([&] { return FormatMask(Variant(money), u"0.00"); }), 0);
    EXPECT_EQ(allocations_of([] { return FormatMask(Variant(1234.5678), u"0.00"); }), 0);
    EXPECT_EQ(allocations_of([] { return FormatMask(Variant(Integer{130}), u"0:00"); }), 0);
    EXPECT_EQ(allocations_of([] { return FormatMask(Variant(Date{45429}), u"ww"); }), 0);
    EXPECT_EQ(allocations_of([] { return ToText(Variant(Currency::raw(123456))); }), 0);
    EXPECT_EQ(allocations_of([] { return ToText(Variant(12345)); }), 0);
    EXPECT_EQ(allocations_of([] { return ToText(Variant(12.5)); }), 0);
    EXPECT_EQ(allocations_of([] { return ToText(Variant(true)); }), 0);
}

TEST(Allocations, AreNoneInRounding) {
    EXPECT_EQ(allocations_of([] { return round_half_even(2.345, 2); }), 0);
    EXPECT_EQ(allocations_of([] { return round_half_even(Currency::raw(23450), 2); }), 0);
    EXPECT_EQ(allocations_of([] { return round_half_even(Decimal{0, 0, 2345, 3, false}, 2); }), 0);
    EXPECT_EQ(allocations_of([] { return MakeDate(2024, 5, 17); }), 0);
    EXPECT_EQ(allocations_of([] { return ToDate(Variant(45429)); }), 0);
}

}  // namespace
}  // namespace kvarta16
