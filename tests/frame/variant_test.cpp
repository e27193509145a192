// Variant: subtypes, references, comparison, and assignment through a reference.

#include <type_traits>

#include <gtest/gtest.h>

#include <kvarta16/frame/variant.h>

#include "frame_support.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;

// ---- Subtypes ---------------------------------------------------------------------------------

struct SubtypeCode {
    const char* value;
    int code;
};

constexpr SubtypeCode subtype_codes[] = {
    {"Empty", 0},        {"Null", 1},        {"Integer 5", 2},      {"Long 5", 3},
    {"Single 5", 4},     {"Double 5", 5},    {"Currency 5", 6},     {"Date 5", 7},
    {"String \"5\"", 8}, {"Object", 9},      {"Nothing", 9},        {"Error 5", 10},
    {"Missing", 10},     {"Boolean -1", 11}, {"UnknownObject", 13}, {"Decimal 5", 14},
    {"Byte 5", 17},
};

TEST(Variant, HasTheSubtypeCodesThatCallersKnow) {
    for (const SubtypeCode& expected : subtype_codes) {
        const Forms forms(parse_value(expected.value));
        for (const Form& form : forms.all()) {
            SCOPED_TRACE(std::string(expected.value) + ", " + form.name);
            EXPECT_EQ(static_cast<int>(form.value->subtype()), expected.code);
            for (int code = 0; code <= 20; ++code) {
                EXPECT_EQ(form.value->is(static_cast<Subtype>(code)), code == expected.code)
                    << code;
            }
        }
    }
}

TEST(Variant, TakesEachTypeAsItIs) {
    EXPECT_TRUE(Variant().is(Subtype::Empty));
    EXPECT_TRUE(Variant(Integer{1}).is(Subtype::Integer));
    EXPECT_TRUE(Variant(Long{1}).is(Subtype::Long));
    EXPECT_TRUE(Variant(1).is(Subtype::Long));
    EXPECT_TRUE(Variant(Byte{1}).is(Subtype::Byte));
    EXPECT_TRUE(Variant(1.5F).is(Subtype::Single));
    EXPECT_TRUE(Variant(1.5).is(Subtype::Double));
    EXPECT_TRUE(Variant(Currency::raw(1)).is(Subtype::Currency));
    EXPECT_TRUE(Variant(Date{1}).is(Subtype::Date));
    EXPECT_TRUE(Variant(Decimal{}).is(Subtype::Decimal));
    EXPECT_TRUE(Variant(u"a").is(Subtype::String));
    EXPECT_TRUE(Variant(String(u"a")).is(Subtype::String));
    EXPECT_TRUE(Variant(StringView(u"a")).is(Subtype::String));
    EXPECT_TRUE(Variant(true).is(Subtype::Boolean));
    EXPECT_TRUE(Variant(std::make_shared<AnObject>()).is(Subtype::Object));
    EXPECT_EQ(Variant(true), Variant(Boolean::from_raw(-1)));
    EXPECT_EQ(*Variant(u"a\u0105").get_if<String>(), u"a\u0105");
}

TEST(Variant, WidensAndNarrowsNoNumberOnItsWayIn) {
    static_assert(!std::is_constructible_v<Variant, std::int64_t>);
    static_assert(!std::is_constructible_v<Variant, unsigned>);
    static_assert(!std::is_constructible_v<Variant, std::uint16_t>);
    static_assert(!std::is_constructible_v<Variant, std::int8_t>);
    static_assert(!std::is_constructible_v<Variant, char>);
    static_assert(!std::is_constructible_v<Variant, const char*>);
    static_assert(!std::is_constructible_v<Variant, long double>);
}

TEST(Variant, TellsTheArgumentLeftOutFromOtherErrorCodes) {
    EXPECT_TRUE(Variant::missing().is_missing());
    EXPECT_EQ(Variant::missing().get_if<ErrorCode>()->code, static_cast<Long>(0x80020004U));
    EXPECT_EQ(Variant::missing(), Variant::error(static_cast<Long>(0x80020004U)));
    EXPECT_FALSE(Variant::error(5).is_missing());
    EXPECT_FALSE(Variant().is_missing());
    EXPECT_FALSE(Variant::null().is_missing());
    Variant variable = Variant::missing();
    EXPECT_TRUE(Variant::reference(variable).is_missing());
}

TEST(Variant, GivesTheValueOfItsOwnTypeAlone) {
    for (const Variant& value : one_of_each_subtype()) {
        const Forms forms(value);
        for (const Form& form : forms.all()) {
            SCOPED_TRACE(notation(value) + ", " + form.name);
            EXPECT_EQ(form.value->get_if<Integer>() != nullptr, value.is(Subtype::Integer));
            EXPECT_EQ(form.value->get_if<Long>() != nullptr, value.is(Subtype::Long));
            EXPECT_EQ(form.value->get_if<Byte>() != nullptr, value.is(Subtype::Byte));
            EXPECT_EQ(form.value->get_if<Single>() != nullptr, value.is(Subtype::Single));
            EXPECT_EQ(form.value->get_if<Double>() != nullptr, value.is(Subtype::Double));
            EXPECT_EQ(form.value->get_if<Currency>() != nullptr, value.is(Subtype::Currency));
            EXPECT_EQ(form.value->get_if<Date>() != nullptr, value.is(Subtype::Date));
            EXPECT_EQ(form.value->get_if<String>() != nullptr, value.is(Subtype::String));
            EXPECT_EQ(form.value->get_if<ObjectPointer>() != nullptr, value.is(Subtype::Object));
            EXPECT_EQ(form.value->get_if<ErrorCode>() != nullptr, value.is(Subtype::Error));
            EXPECT_EQ(form.value->get_if<Boolean>() != nullptr, value.is(Subtype::Boolean));
            EXPECT_EQ(form.value->get_if<Decimal>() != nullptr, value.is(Subtype::Decimal));
            EXPECT_EQ(form.value->get_if<NullValue>() != nullptr, value.is(Subtype::Null));
            EXPECT_EQ(form.value->get_if<EmptyValue>() != nullptr, value.is(Subtype::Empty));
            EXPECT_EQ(form.value->get_if<UnknownObject>() != nullptr,
                      value.is(Subtype::UnknownObject));
        }
    }
}

// ---- Comparison, copies -----------------------------------------------------------------------

TEST(Variant, IsEqualToTheSameSubtypeAndValueAlone) {
    const std::vector<Variant> values = one_of_each_subtype();
    for (std::size_t i = 0; i < values.size(); ++i) {
        const Forms forms(values[i]);
        for (std::size_t j = 0; j < values.size(); ++j) {
            for (const Form& form : forms.all()) {
                EXPECT_EQ(*form.value == values[j], i == j)
                    << form.name << ": " << notation(values[i]) << ", " << notation(values[j]);
                EXPECT_EQ(values[j] == *form.value, i == j) << form.name;
            }
        }
    }
    EXPECT_FALSE(Variant(1) == Variant(2));
    EXPECT_FALSE(Variant(u"a") == Variant(u"A"));
    EXPECT_FALSE(Variant(true) == Variant(Boolean::from_raw(1)));
    EXPECT_EQ(Variant(String()), Variant(u""));
}

TEST(Variant, CopiesAndMovesTheValue) {
    for (const Variant& value : one_of_each_subtype()) {
        Variant copy = value;
        EXPECT_EQ(copy, value);
        const Variant moved = std::move(copy);
        EXPECT_EQ(moved, value);
        Variant assigned = 7;
        assigned = moved;
        EXPECT_EQ(assigned, value);
    }
}

// ---- References -------------------------------------------------------------------------------

TEST(Variant, BehavesAsTheVariableThatItRefersTo) {
    Integer number = 3;
    const Variant reference = Variant::reference(number);
    EXPECT_TRUE(reference.is_reference());
    EXPECT_EQ(notation(reference), "Integer 3");
    number = 4;
    EXPECT_EQ(notation(reference), "Integer 4");
    EXPECT_EQ(reference.get_if<Integer>(), &number);

    const Variant copy = reference;
    number = 5;
    EXPECT_EQ(notation(copy), "Integer 5");
    EXPECT_TRUE(copy.is_reference());

    const Variant value = reference.value();
    number = 6;
    EXPECT_EQ(notation(value), "Integer 5");
    EXPECT_FALSE(value.is_reference());
}

TEST(Variant, RefersToAVariantThatChangesItsSubtype) {
    Variant variable = 3;
    const Variant reference = Variant::reference(variable);
    variable = Variant::null();
    EXPECT_TRUE(reference.is(Subtype::Null));
    variable = u"text";
    EXPECT_EQ(notation(reference), "String \"text\"");
    EXPECT_TRUE(reference.is_reference());
}

TEST(Variant, IsNoReferenceByItself) {
    for (const Variant& value : one_of_each_subtype()) {
        EXPECT_FALSE(value.is_reference());
        EXPECT_EQ(value.value(), value);
        const Forms forms(value);
        for (const Form& form : forms.all()) {
            EXPECT_EQ(form.value->value(), value) << form.name;
            EXPECT_FALSE(form.value->value().is_reference()) << form.name;
        }
    }
}

// ---- Assignment -------------------------------------------------------------------------------

TEST(VariantAssign, ReplacesItselfIfItRefersToNothing) {
    for (const Variant& value : one_of_each_subtype()) {
        Variant target = 7;
        target.assign(value);
        EXPECT_EQ(target, value);
        EXPECT_FALSE(target.is_reference());
    }
}

TEST(VariantAssign, ReplacesTheVariantThatItRefersTo) {
    for (const Variant& value : one_of_each_subtype()) {
        Variant variable = 7;
        Variant target = Variant::reference(variable);
        target.assign(value);
        EXPECT_EQ(variable, value);
        EXPECT_TRUE(target.is_reference());
        EXPECT_FALSE(variable.is_reference());
    }
}

// Assigns the value to a variable of type T by reference: what the variable holds then, or the
// failure, after which it must hold what it held.
template <class T>
std::string assigned(T before, const Variant& value) {
    T variable = before;
    Variant target = Variant::reference(variable);
    const int failure = failure_of([&] {
        target.assign(value);
        return 0;
    });
    EXPECT_TRUE(target.is_reference());
    if (failure != 0) {
        EXPECT_EQ(variable, before) << notation(value);
        return "!" + std::to_string(failure);
    }
    return notation(Variant(variable));
}

TEST(VariantAssign, CoercesToTheTypeOfTheVariable) {
    EXPECT_EQ(assigned(Integer{7}, Variant(2.5)), "Integer 2");
    EXPECT_EQ(assigned(Integer{7}, Variant(u"12,5")), "Integer 12");
    EXPECT_EQ(assigned(Integer{7}, Variant(true)), "Integer -1");
    EXPECT_EQ(assigned(Long{7}, Variant(u"(5)")), "Long -5");
    EXPECT_EQ(assigned(Byte{7}, Variant(255)), "Byte 255");
    EXPECT_EQ(assigned(Single{7}, Variant(u"0,5")), "Single 0.5");
    EXPECT_EQ(assigned(Double{7}, Variant(Currency::raw(125000))), "Double 12.5");
    EXPECT_EQ(assigned(Currency::raw(7), Variant(u"12,34")), "Currency 12.3400");
    EXPECT_EQ(assigned(Date{7}, Variant(u"2024-05-17")), "Date 45429");
    EXPECT_EQ(assigned(Date{7}, Variant(45429.5)), "Date 45429.5");
    EXPECT_EQ(assigned(String(u"7"), Variant(12.5)), "String \"12,5\"");
    EXPECT_EQ(assigned(String(u"7"), Variant()), "String \"\"");
    EXPECT_EQ(assigned(Boolean(false), Variant(3)), "Boolean -1");
    EXPECT_EQ(assigned(Boolean(true), Variant(u"Fa\u0142sz")), "Boolean 0");
}

TEST(VariantAssign, ChangesNothingWhereTheCoercionFails) {
    const Variant null = Variant::null();
    EXPECT_EQ(assigned(Integer{7}, null), "!94");
    EXPECT_EQ(assigned(Long{7}, null), "!94");
    EXPECT_EQ(assigned(Byte{7}, null), "!94");
    EXPECT_EQ(assigned(Single{7}, null), "!94");
    EXPECT_EQ(assigned(Double{7}, null), "!94");
    EXPECT_EQ(assigned(Currency::raw(7), null), "!94");
    EXPECT_EQ(assigned(Date{7}, null), "!94");
    EXPECT_EQ(assigned(String(u"7"), null), "!94");
    EXPECT_EQ(assigned(Boolean(true), null), "!94");
    EXPECT_EQ(assigned(Integer{7}, Variant(32768)), "!6");
    EXPECT_EQ(assigned(Byte{7}, Variant(256)), "!6");
    EXPECT_EQ(assigned(Long{7}, Variant(u"abc")), "!13");
    EXPECT_EQ(assigned(Currency::raw(7), Variant(1e300)), "!6");
    EXPECT_EQ(assigned(Date{7}, Variant(u"abc")), "!13");
    EXPECT_EQ(assigned(String(u"7"), Variant::missing()), "!13");
    EXPECT_EQ(assigned(Boolean(true), Variant(u"abc")), "!13");
}

TEST(VariantAssign, EmptiesAndReplacesAnObjectForTheCaller) {
    ObjectPointer variable = std::make_shared<AnObject>();
    const std::weak_ptr<Object> first = variable;
    Variant target = Variant::reference(variable);
    target.assign(Variant(ObjectPointer()));
    EXPECT_EQ(variable, nullptr);
    EXPECT_TRUE(first.expired());

    const auto second = std::make_shared<AnObject>();
    target.assign(Variant(second));
    EXPECT_EQ(variable, second);
    EXPECT_EQ(failure_of([&] {
                  target.assign(Variant(5));
                  return 0;
              }),
              13);
    EXPECT_EQ(variable, second);
}

TEST(VariantAssign, TakesASourceThatIsAReference) {
    Integer source = 5;
    Long variable = 7;
    Variant target = Variant::reference(variable);
    target.assign(Variant::reference(source));
    EXPECT_EQ(variable, 5);

    Variant held = 7;
    Variant to_variant = Variant::reference(held);
    to_variant.assign(Variant::reference(source));
    EXPECT_EQ(notation(held), "Integer 5");
}

TEST(VariantAssign, MayReadTheVariableThatItWrites) {
    String text = u"12,5";
    Variant target = Variant::reference(text);
    target.assign(target);
    EXPECT_EQ(text, u"12,5");

    Variant held = u"12,5";
    Variant to_variant = Variant::reference(held);
    to_variant.assign(to_variant);
    EXPECT_EQ(notation(held), "String \"12,5\"");
    EXPECT_FALSE(held.is_reference());
}

}  // namespace
}  // namespace kvarta16
