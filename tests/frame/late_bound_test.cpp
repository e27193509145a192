// Late-bound calls: what a table entry tells, how arguments are coerced, put in, and written back.

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

#include <kvarta16/frame/late_bound.h>

#include "frame_support.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;

// ---- A class to call --------------------------------------------------------------------------

class Paper final : public Object {};
class Stone final : public Object {};

class Sample {
  public:
    // NOLINTBEGIN(readability-convert-member-functions-to-static)
    [[nodiscard]] Currency Twice(Currency amount) const { return amount + amount; }
    [[nodiscard]] Long Length(StringView text) const { return static_cast<Long>(text.size()); }
    [[nodiscard]] Variant Same(const Variant& value) const { return value; }
    [[nodiscard]] Boolean Not(Boolean value) const { return !static_cast<bool>(value); }
    [[nodiscard]] Date NextDay(Date day) const { return {day.days + 1}; }
    void Nothing() { ++calls; }
    void Rewrite(String& text, Integer& number, Currency& amount, Date& day, Boolean& flag,
                 Variant& any) {
        ++calls;
        text += u"!";
        number = static_cast<Integer>(number + 1);
        amount = amount + Currency::raw(1);
        day.days += 1;
        flag = !static_cast<bool>(flag);
        any = u"written";
    }
    void RewriteAndFail(String& text) {
        text += u"!";
        fail(error::subscript);
    }
    void RewriteTwo(String& first, Integer& second) {
        first += u"!";
        ++second;
    }
    void RewriteTwoAndFail(String& first, String& second) {
        first += u"!";
        second += u"!";
        fail(error::subscript);
    }
    [[nodiscard]] Integer Strict(const Variant& value) const { return ToInteger16(value); }
    [[nodiscard]] String Optional(const String& first, Integer second, const String& third,
                                  Long& fourth) const {
        const String result = first + u"|" + ToText(second) + u"|" + third + u"|" + ToText(fourth);
        fourth = 99;
        return result;
    }
    [[nodiscard]] Boolean HasPaper(const std::shared_ptr<Paper>& paper) const {
        return paper != nullptr;
    }
    void Drop(std::shared_ptr<Paper>& paper) { paper = nullptr; }
    [[nodiscard]] ObjectPointer Any(const ObjectPointer& object) const { return object; }
    [[nodiscard]] Double Types(Byte a, Integer b, Long c, Single d, Double e) const {
        return a + b + c + static_cast<Double>(d) + e;
    }
    [[nodiscard]] Long Ten(Long a, Long b, Long c, Long d, Long e, Long f, Long g, Long h, Long i,
                           Long j) const {
        return a + 2 * b + 3 * c + 4 * d + 5 * e + 6 * f + 7 * g + 8 * h + 9 * i + 10 * j;
    }
    // NOLINTEND(readability-convert-member-functions-to-static)

    String name = u"first";
    Integer calls = 0;
};

Currency tripled(Currency amount) {
    return amount + amount + amount;
}

constexpr MemberInfo twice = method<&Sample::Twice>(u"Twice", by_value(u"amount"));
constexpr MemberInfo length_of = method<&Sample::Length>(u"Length", by_reference(u"text"));
constexpr MemberInfo same = method<&Sample::Same>(u"Same", by_reference(u"value"));
constexpr MemberInfo negation = method<&Sample::Not>(u"Not", by_value(u"value"));
constexpr MemberInfo next_day = method<&Sample::NextDay>(u"NextDay", by_value(u"day"));
constexpr MemberInfo nothing = method<&Sample::Nothing>(u"Nothing");
constexpr MemberInfo rewrite = method<&Sample::Rewrite>(
    u"Rewrite", by_reference(u"text"), by_reference(u"number"), by_reference(u"amount"),
    by_reference(u"day"), by_reference(u"flag"), by_reference(u"any"));
constexpr MemberInfo rewrite_and_fail =
    method<&Sample::RewriteAndFail>(u"RewriteAndFail", by_reference(u"text"));
constexpr MemberInfo rewrite_two =
    method<&Sample::RewriteTwo>(u"RewriteTwo", by_reference(u"first"), by_reference(u"second"));
constexpr MemberInfo rewrite_two_and_fail = method<&Sample::RewriteTwoAndFail>(
    u"RewriteTwoAndFail", by_reference(u"first"), by_reference(u"second"));
constexpr MemberInfo strict = method<&Sample::Strict>(u"Strict", by_value(u"value"));
constexpr MemberInfo with_optional =
    method<&Sample::Optional>(u"Optional", by_value(u"first"), optional(by_value(u"second")),
                              optional(by_value(u"third"), StringView(u"dd-MM-yyyy")),
                              optional(by_reference(u"fourth"), Long{18}));
constexpr MemberInfo has_paper = method<&Sample::HasPaper>(u"HasPaper", by_value(u"paper"));
constexpr MemberInfo drop = method<&Sample::Drop>(u"Drop", by_reference(u"paper"));
constexpr MemberInfo any_object = method<&Sample::Any>(u"Any", by_value(u"object"));
constexpr MemberInfo types = method<&Sample::Types>(u"Types", by_value(u"a"), by_value(u"b"),
                                                    by_value(u"c"), by_value(u"d"), by_value(u"e"));
constexpr MemberInfo ten = method<&Sample::Ten>(
    u"Ten", by_value(u"a"), by_value(u"b"), by_value(u"c"), by_value(u"d"), by_value(u"e"),
    by_value(u"f"), by_value(u"g"), by_value(u"h"), by_value(u"i"), by_value(u"j"));
void every_type(Integer, StringView, Long, Double, Currency, Date, Boolean, Byte, Single,
                Currency) {}
constexpr MemberInfo every_optional = method<&every_type>(
    u"EveryOptional", by_value(u"needed"), optional(by_value(u"a")), optional(by_value(u"b")),
    optional(by_value(u"c")), optional(by_value(u"d")), optional(by_value(u"e")),
    optional(by_value(u"f")), optional(by_value(u"g"), Long{7}), optional(by_value(u"h")),
    optional(by_value(u"i"), Long{2}));
constexpr MemberInfo get_name = property_get<&Sample::name>(u"name");
constexpr MemberInfo let_name = property_let<&Sample::name>(u"name");
constexpr MemberInfo get_calls = property_get<&Sample::calls>(u"calls");
constexpr MemberInfo let_calls = property_let<&Sample::calls>(u"calls");
constexpr MemberInfo plain_function = method<&tripled>(u"tripled", by_value(u"amount"));
constexpr MemberInfo later = not_built(u"Konwert");

// A call in the notation: its result or failure, and the arguments as they stand behind it.
struct Called {
    std::string result;
    std::vector<std::string> arguments;
    friend bool operator==(const Called&, const Called&) = default;
};

void PrintTo(const Called& called, std::ostream* out) {
    *out << called.result << testing::PrintToString(called.arguments);
}

Called call(const MemberInfo& member, Arguments arguments, Sample* sample = nullptr) {
    Sample own;
    Called called;
    called.result =
        outcome([&] { return invoke(member, sample != nullptr ? sample : &own, arguments); });
    for (const Variant& argument : arguments) {
        called.arguments.push_back(notation(argument));
    }
    return called;
}

// ---- Entries ----------------------------------------------------------------------------------

TEST(MemberInfo, TellsWhatTheMemberPointerTells) {
    static_assert(twice.name == u"Twice");
    static_assert(twice.kind == MemberKind::Method);
    static_assert(twice.result == TypeName::Currency);
    EXPECT_TRUE(twice.is_built());
    ASSERT_EQ(twice.parameters().size(), 1u);
    EXPECT_EQ(twice.parameters()[0].name, u"amount");
    EXPECT_EQ(twice.parameters()[0].type, TypeName::Currency);
    EXPECT_EQ(twice.parameters()[0].passing, Passing::ByValue);
    EXPECT_FALSE(twice.parameters()[0].is_optional);

    static_assert(nothing.result == TypeName::None);
    static_assert(nothing.parameters().empty());
    static_assert(same.result == TypeName::Variant);
    static_assert(negation.result == TypeName::Boolean);
    static_assert(next_day.result == TypeName::Date);
    static_assert(length_of.result == TypeName::Long);
    static_assert(any_object.result == TypeName::Object);
    EXPECT_EQ(length_of.parameters()[0].type, TypeName::String);
    EXPECT_EQ(length_of.parameters()[0].passing, Passing::ByReference);
    EXPECT_EQ(has_paper.parameters()[0].type, TypeName::Object);

    const TypeName expected[] = {TypeName::Byte, TypeName::Integer, TypeName::Long,
                                 TypeName::Single, TypeName::Double};
    for (std::size_t i = 0; i < types.parameters().size(); ++i) {
        EXPECT_EQ(types.parameters()[i].type, expected[i]);
    }
    static_assert(types.result == TypeName::Double);
    const TypeName rewritten[] = {TypeName::String, TypeName::Integer, TypeName::Currency,
                                  TypeName::Date,   TypeName::Boolean, TypeName::Variant};
    for (std::size_t i = 0; i < rewrite.parameters().size(); ++i) {
        EXPECT_EQ(rewrite.parameters()[i].type, rewritten[i]);
        EXPECT_EQ(rewrite.parameters()[i].passing, Passing::ByReference);
    }
}

TEST(MemberInfo, TellsDefaults) {
    const auto parameters = with_optional.parameters();
    ASSERT_EQ(parameters.size(), 4u);
    EXPECT_FALSE(parameters[0].is_optional);
    EXPECT_TRUE(parameters[1].is_optional);
    EXPECT_TRUE(std::holds_alternative<std::monostate>(parameters[1].default_value));
    EXPECT_EQ(std::get<StringView>(parameters[2].default_value), u"dd-MM-yyyy");
    EXPECT_EQ(std::get<Long>(parameters[3].default_value), 18);
    EXPECT_EQ(parameters[3].passing, Passing::ByReference);
}

TEST(MemberInfo, TellsPropertiesAndPlacesKept) {
    static_assert(get_name.kind == MemberKind::PropertyGet);
    static_assert(get_name.result == TypeName::String);
    static_assert(get_name.parameters().empty());
    static_assert(let_name.kind == MemberKind::PropertyLet);
    static_assert(let_name.result == TypeName::None);
    ASSERT_EQ(let_name.parameters().size(), 1u);
    EXPECT_EQ(let_name.parameters()[0].type, TypeName::String);
    EXPECT_EQ(let_name.parameters()[0].passing, Passing::ByValue);
    static_assert(!later.is_built());
    static_assert(later.name == u"Konwert");
    static_assert(most_parameters >= 10);
}

TEST(TypeNames, AreDifferent) {
    std::set<String> names;
    for (int i = 0; i <= static_cast<int>(TypeName::Object); ++i) {
        const StringView name = name_of(static_cast<TypeName>(i));
        EXPECT_TRUE(names.insert(String(name)).second) << show(name);
    }
    EXPECT_EQ(name_of(TypeName::Currency), u"Currency");
    EXPECT_EQ(name_of(TypeName::String), u"String");
    EXPECT_EQ(name_of(TypeName::Variant), u"Variant");
}

// ---- Results, coercion ------------------------------------------------------------------------

TEST(Invoke, CallsAMemberOfTheObject) {
    EXPECT_EQ(call(twice, {Currency::raw(5)}), (Called{"Currency 0.0010", {"Currency 0.0005"}}));
    EXPECT_EQ(call(plain_function, {Currency::raw(5)}).result, "Currency 0.0015");
    EXPECT_EQ(call(next_day, {Date{45429}}).result, "Date 45430");
    EXPECT_EQ(call(negation, {true}).result, "Boolean 0");
    EXPECT_EQ(call(length_of, {u"abc"}).result, "Long 3");
    EXPECT_EQ(call(ten, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}).result, "Long 385");
    Sample sample;
    EXPECT_EQ(call(nothing, {}, &sample), (Called{"Empty", {}}));
    EXPECT_EQ(call(nothing, {}, &sample).result, "Empty");
    EXPECT_EQ(sample.calls, 2);
}

TEST(Invoke, CoercesArgumentsAndShowsThemInTheDeclaredType) {
    EXPECT_EQ(call(twice, {u"12,5"}), (Called{"Currency 25.0000", {"Currency 12.5000"}}));
    EXPECT_EQ(call(twice, {Variant()}), (Called{"Currency 0.0000", {"Currency 0.0000"}}));
    EXPECT_EQ(call(twice, {true}), (Called{"Currency -2.0000", {"Currency -1.0000"}}));
    EXPECT_EQ(call(length_of, {12.5}), (Called{"Long 4", {"String \"12,5\""}}));
    EXPECT_EQ(call(next_day, {u"2024-05-17"}), (Called{"Date 45430", {"Date 45429"}}));
    EXPECT_EQ(call(next_day, {5}), (Called{"Date 6", {"Date 5"}}));
    EXPECT_EQ(call(negation, {u"Fa\u0142sz"}), (Called{"Boolean -1", {"Boolean 0"}}));
    EXPECT_EQ(
        call(types, {u"1", u"2", u"3", u"0,5", u"0,25"}),
        (Called{"Double 6.75", {"Byte 1", "Integer 2", "Long 3", "Single 0.5", "Double 0.25"}}));
    EXPECT_EQ(call(types, {2.5, 3.5, 4.5, Currency::raw(5000), Byte{1}}),
              (Called{"Double 11.5", {"Byte 2", "Integer 4", "Long 4", "Single 0.5", "Double 1"}}));
}

TEST(Invoke, HandsAVariantOnAsItIs) {
    for (const Variant& value : one_of_each_subtype()) {
        if (value.is_missing()) {
            continue;  // an argument left out where none may be is not settled
        }
        EXPECT_EQ(call(same, {value}), (Called{notation(value), {notation(value)}}));
        const Forms forms(value);
        for (const Form& form : forms.all()) {
            Sample sample;
            Arguments arguments{*form.value};
            const Variant result = invoke(same, &sample, arguments);
            EXPECT_EQ(notation(result), notation(value)) << form.name;
            EXPECT_FALSE(result.is_reference()) << form.name;
        }
    }
}

TEST(Invoke, FailsBeforeTheMemberStartsWhereAnArgumentCannotBeCoerced) {
    Sample sample;
    const Called called = call(rewrite, {u"text", u"abc", 5, Date{1}, true, Variant()}, &sample);
    EXPECT_EQ(
        called,
        (Called{"!13",
                {"String \"text\"", "String \"abc\"", "Long 5", "Date 1", "Boolean -1", "Empty"}}));
    EXPECT_EQ(sample.calls, 0);
    EXPECT_EQ(call(twice, {Variant::null()}), (Called{"!94", {"Null"}}));
    EXPECT_EQ(call(twice, {1e300}).result, "!6");
    EXPECT_EQ(call(types, {256, 0, 0, 0, 0}).result, "!6");
    EXPECT_EQ(call(types, {0, 32768, 0, 0, 0}).result, "!6");
    EXPECT_EQ(call(next_day, {u"abc"}).result, "!13");
    EXPECT_EQ(call(next_day, {Variant::null()}).result, "!94");
    EXPECT_EQ(call(negation, {u"abc"}).result, "!13");
    EXPECT_EQ(call(length_of, {Variant::null()}).result, "!94");
    EXPECT_EQ(call(length_of, {std::make_shared<Stone>()}).result, "!13");
    // The first one that fails is told.
    EXPECT_EQ(call(types, {Variant::null(), u"abc", 0, 0, 0}).result, "!94");
    EXPECT_EQ(call(types, {u"abc", Variant::null(), 0, 0, 0}).result, "!13");
}

TEST(Invoke, LetsAFailureOfTheMemberPass) {
    EXPECT_EQ(call(strict, {Variant::null()}), (Called{"!94", {"Null"}}));
    EXPECT_EQ(call(strict, {u"abc"}), (Called{"!13", {"String \"abc\""}}));
    EXPECT_EQ(call(strict, {99999}), (Called{"!6", {"Long 99999"}}));
}

// ---- Numbers of arguments ---------------------------------------------------------------------

TEST(Invoke, RefusesAWrongNumberOfArguments) {
    Sample sample;
    const auto expect_refused = [&](const MemberInfo& member, Arguments arguments) {
        const std::size_t before = arguments.size();
        EXPECT_THROW(invoke(member, &sample, arguments), WrongArgumentCount);
        EXPECT_EQ(arguments.size(), before);
    };
    expect_refused(twice, {});
    expect_refused(twice, {1, 2});
    expect_refused(nothing, {1});
    expect_refused(with_optional, {});
    expect_refused(with_optional, {1, 2, 3, 4, 5});
    expect_refused(get_name, {1});
    expect_refused(let_name, {});
    expect_refused(let_name, {1, 2});
    expect_refused(ten, {1, 2, 3, 4, 5, 6, 7, 8, 9});
    EXPECT_EQ(sample.calls, 0);
    EXPECT_STRNE(WrongArgumentCount().what(), "");
    static_assert(!std::is_base_of_v<Failure, WrongArgumentCount>);
}

TEST(Invoke, PutsDefaultsIn) {
    const Variant missing = Variant::missing();
    const Called all_left_out{"String \"a|0|dd-MM-yyyy|18\"",
                              {"String \"a\"", "Integer 0", "String \"dd-MM-yyyy\"", "Long 99"}};
    EXPECT_EQ(call(with_optional, {u"a"}), all_left_out);
    EXPECT_EQ(call(with_optional, {u"a", missing}), all_left_out);
    EXPECT_EQ(call(with_optional, {u"a", missing, missing}), all_left_out);
    EXPECT_EQ(call(with_optional, {u"a", missing, missing, missing}), all_left_out);
    EXPECT_EQ(call(with_optional, {u"a", 7}).result, "String \"a|7|dd-MM-yyyy|18\"");
    EXPECT_EQ(call(with_optional, {u"a", missing, u"c"}).result, "String \"a|0|c|18\"");
    EXPECT_EQ(call(with_optional, {u"a", missing, missing, 4}).result,
              "String \"a|0|dd-MM-yyyy|4\"");
    EXPECT_EQ(call(with_optional, {u"a", 7, u"", 0}).result, "String \"a|7||0\"");
}

TEST(Invoke, LeavesTheDefaultsInWhereACoercionFails) {
    EXPECT_EQ(call(with_optional, {Variant::null()}),
              (Called{"!94", {"Null", "Integer 0", "String \"dd-MM-yyyy\"", "Long 18"}}));
    EXPECT_EQ(call(every_optional, {Variant::null()}),
              (Called{"!94",
                      {"Null", "String \"\"", "Long 0", "Double 0", "Currency 0.0000", "Date 0",
                       "Boolean 0", "Byte 7", "Single 0", "Currency 2.0000"}}));
}

// ---- Writing back -----------------------------------------------------------------------------

TEST(Invoke, WritesBackWhatTheMemberWrites) {
    Sample sample;
    EXPECT_EQ(call(rewrite, {u"text", 5, u"1", u"2024-05-17", 0, 7}, &sample),
              (Called{"Empty",
                      {"String \"text!\"", "Integer 6", "Currency 1.0001", "Date 45430",
                       "Boolean -1", "String \"written\""}}));
    EXPECT_EQ(sample.calls, 1);
}

TEST(Invoke, AssignsTheVariablesOfReferences) {
    String text = u"text";
    Long number = 5;
    String amount = u"1,5";
    Double day = 45429;
    Boolean flag = true;
    Variant any = 7;
    Arguments arguments{Variant::reference(text),   Variant::reference(number),
                        Variant::reference(amount), Variant::reference(day),
                        Variant::reference(flag),   Variant::reference(any)};
    Sample sample;
    invoke(rewrite, &sample, arguments);
    EXPECT_EQ(text, u"text!");
    EXPECT_EQ(number, 6);
    EXPECT_EQ(amount, u"1,5001");
    EXPECT_EQ(day, 45430);
    EXPECT_EQ(flag, Boolean(false));
    EXPECT_EQ(any, Variant(u"written"));
    for (const Variant& argument : arguments) {
        EXPECT_TRUE(argument.is_reference());
    }
}

TEST(Invoke, LeavesAVariableAloneThatTheMemberDoesNotWrite) {
    String amount = u"12,50";
    Arguments arguments{Variant::reference(amount)};
    Sample sample;
    EXPECT_EQ(notation(invoke(twice, &sample, arguments)), "Currency 25.0000");
    EXPECT_EQ(amount, u"12,50");
    EXPECT_TRUE(arguments[0].is_reference());

    Double number = 12.5;
    arguments = {Variant::reference(number)};
    EXPECT_EQ(notation(invoke(length_of, &sample, arguments)), "Long 4");
    EXPECT_EQ(number, 12.5);
    EXPECT_TRUE(arguments[0].is_reference());
}

TEST(Invoke, WritesBackWhatWasWrittenBeforeAFailure) {
    EXPECT_EQ(call(rewrite_and_fail, {u"text"}), (Called{"!9", {"String \"text!\""}}));
    String text = u"text";
    Arguments arguments{Variant::reference(text)};
    Sample sample;
    EXPECT_EQ(failure_of([&] { return invoke(rewrite_and_fail, &sample, arguments); }), 9);
    EXPECT_EQ(text, u"text!");
}

TEST(Invoke, AVariableThatRefusesItsValueKeepsNoOther) {
    String text = u"text";
    Integer number = 5;
    Date amount{45429};  // takes no text
    Sample sample;
    Arguments arguments{Variant::reference(amount), Variant::reference(number)};
    EXPECT_EQ(failure_of([&] { return invoke(rewrite_two, &sample, arguments); }), 13);
    EXPECT_EQ(number, 6);
    EXPECT_EQ(amount.days, 45429);
    arguments = {Variant::reference(amount), Variant::reference(text)};
    EXPECT_EQ(failure_of([&] { return invoke(rewrite_two_and_fail, &sample, arguments); }), 9);
    EXPECT_EQ(text, u"text!");
}

// ---- Objects ----------------------------------------------------------------------------------

TEST(Invoke, TakesObjectsOfTheDeclaredClass) {
    EXPECT_EQ(call(has_paper, {std::make_shared<Paper>()}), (Called{"Boolean -1", {"Object"}}));
    EXPECT_EQ(call(has_paper, {ObjectPointer()}), (Called{"Boolean 0", {"Nothing"}}));
    EXPECT_EQ(call(has_paper, {std::make_shared<Stone>()}), (Called{"!13", {"Object"}}));
    EXPECT_EQ(call(has_paper, {5}), (Called{"!13", {"Long 5"}}));
    EXPECT_EQ(call(has_paper, {u""}).result, "!13");
    EXPECT_EQ(call(has_paper, {Variant::null()}), (Called{"!94", {"Null"}}));
    EXPECT_EQ(call(any_object, {std::make_shared<Stone>()}).result, "Object");
    EXPECT_EQ(call(any_object, {ObjectPointer()}).result, "Nothing");
}

TEST(Invoke, EmptiesAnObjectForTheCaller) {
    ObjectPointer paper = std::make_shared<Paper>();
    Arguments arguments{Variant::reference(paper)};
    Sample sample;
    invoke(drop, &sample, arguments);
    EXPECT_EQ(paper, nullptr);
    EXPECT_EQ(call(drop, {std::make_shared<Paper>()}), (Called{"Empty", {"Nothing"}}));
}

// ---- Properties -------------------------------------------------------------------------------

TEST(Invoke, ReadsAndWritesProperties) {
    Sample sample;
    EXPECT_EQ(call(get_name, {}, &sample), (Called{"String \"first\"", {}}));
    EXPECT_EQ(call(let_name, {12.5}, &sample), (Called{"Empty", {"String \"12,5\""}}));
    EXPECT_EQ(sample.name, u"12,5");
    EXPECT_EQ(call(let_calls, {u"7"}, &sample).result, "Empty");
    EXPECT_EQ(call(get_calls, {}, &sample).result, "Integer 7");
    EXPECT_EQ(call(let_calls, {u"abc"}, &sample).result, "!13");
    EXPECT_EQ(call(let_calls, {99999}, &sample).result, "!6");
    EXPECT_EQ(call(let_name, {Variant::null()}, &sample).result, "!94");
    EXPECT_EQ(sample.calls, 7);
    EXPECT_EQ(sample.name, u"12,5");

    String source = u"from a variable";
    Arguments arguments{Variant::reference(source)};
    invoke(let_name, &sample, arguments);
    EXPECT_EQ(sample.name, u"from a variable");
    EXPECT_EQ(source, u"from a variable");
}

}  // namespace
}  // namespace kvarta16
