// The forms of numbers, dates and values, each by itself.
#include <limits>

#include <gtest/gtest.h>

#include <kvarta16/frame/value.h>

#include "catalogue_json.h"
#include "date_forms.h"
#include "human_values.h"
#include "number_forms.h"
#include "signature.h"
#include "similar_names.h"
#include "usage_error.h"

namespace kvarta16::tool {
namespace {

TEST(DateForms, EveryDayIsReadAsItsNumber) {
    for (std::int32_t day = first_day_number; day <= last_day_number; ++day) {
        const Civil civil = civil_of(day);
        char text[32];
        std::snprintf(text, sizeof text, "%04d-%02d-%02d", civil.year, civil.month, civil.day);
        ASSERT_EQ(Date{static_cast<Double>(day)}, read_date(text)) << text;
    }
}

TEST(DateForms, TheTimeCountsForward) {
    EXPECT_EQ(Date{45429 + 86399 / 86400.0}, read_date("2024-05-17T23:59:59"));
    EXPECT_EQ(Date{0.5}, read_date("1899-12-30T12:00:00"));
    EXPECT_EQ(Date{-1.5}, read_date("1899-12-29T12:00:00"));
}

TEST(NumberForms, CurrencyAndItsTextGoBothWays) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
    for (const std::int64_t count :
         {std::int64_t{0}, std::int64_t{1}, std::int64_t{-1}, std::int64_t{9999},
          std::int64_t{-10000}, most, most - 1, least, least + 1, std::int64_t{123450000}}) {
        EXPECT_EQ(Currency::raw(count), read_currency(currency_text(Currency::raw(count))));
    }
    EXPECT_EQ("-922337203685477.5808", currency_text(Currency::raw(least)));
    EXPECT_EQ("-0.0001", currency_text(Currency::raw(-1)));
    EXPECT_EQ(Currency::raw(125000), read_currency("0012.5"));
    EXPECT_EQ(Currency{}, read_currency("-0"));
}

TEST(NumberForms, DecimalAndItsTextGoBothWays) {
    const Decimal most{0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0, false};
    EXPECT_EQ("79228162514264337593543950335", decimal_text(most));
    EXPECT_EQ(most, read_decimal("79228162514264337593543950335"));
    for (std::uint8_t scale = 0; scale <= 28; ++scale) {
        for (const Decimal value : {Decimal{0, 0, 0, scale, false}, Decimal{0, 0, 1, scale, true},
                                    Decimal{1, 2, 3, scale, false},
                                    Decimal{0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, scale, true}}) {
            EXPECT_EQ(value, read_decimal(decimal_text(value))) << decimal_text(value);
        }
    }
    EXPECT_EQ("-0.0000000000000000000000000001", decimal_text({0, 0, 1, 28, true}));
}

TEST(NumberForms, JsonNumbers) {
    for (const char* text :
         {"0", "-0", "5", "10", "0.5", "-0.50", "1e5", "1E+5", "0e-0", "1.5e10"}) {
        EXPECT_TRUE(is_json_number(text)) << text;
    }
    for (const char* text :
         {"",   "-",  "+1", "01",  "00",  "-01", "1.",    ".5",  "1e",  "1e+", "1.e5",
          "1x", " 1", "1 ", "1,5", "0x1", "--1", "1e5.5", "inf", "nan", "e5"}) {
        EXPECT_FALSE(is_json_number(text)) << text;
    }
}

TEST(HumanValues, EachWordHasItsSubtype) {
    const struct {
        const char* word;
        Variant value;
    } cases[] = {
        {"null", Variant::null()},
        {"empty", Variant()},
        {"missing", Variant::missing()},
        {"true", Variant(true)},
        {"false", Variant(false)},
        {"12", Variant(Long{12})},
        {"-3", Variant(Long{-3})},
        {"-2147483648", Variant(std::numeric_limits<Long>::min())},
        {"2147483648", Variant(2147483648.0)},
        {"123456789012345", Variant(123456789012345.0)},
        {"1234567890123456", Variant(u"1234567890123456")},
        {"007", Variant(u"007")},
        {"+5", Variant(u"+5")},
        {"1.5", Variant(1.5)},
        {"-2e3", Variant(-2000.0)},
        {"12,5", Variant(u"12,5")},
        {".5", Variant(u".5")},
        {"1e999", Variant(u"1e999")},
        {"currency:12.5", Variant(Currency::raw(125000))},
        {"decimal:1.005", Variant(Decimal{0, 0, 1005, 3, false})},
        {"integer:-5", Variant(Integer{-5})},
        {"byte:255", Variant(Byte{255})},
        {"long:5", Variant(Long{5})},
        {"single:1.5", Variant(1.5F)},
        {"double:1", Variant(1.0)},
        {"date:2024-05-17", Variant(Date{45429})},
        {"date:2024-05-17T12:00:00", Variant(Date{45429.5})},
        {"text:null", Variant(u"null")},
        {"string:12", Variant(u"12")},
        {"text:", Variant(u"")},
        {"text:text:x", Variant(u"text:x")},
        {"", Variant(u"")},
        {"Null", Variant(u"Null")},
        {"other:5", Variant(u"other:5")},
        {"C:\\dane", Variant(u"C:\\dane")},
        {":", Variant(u":")},
        {"zażółć", Variant(u"zażółć")},
    };
    for (const auto& example : cases) {
        EXPECT_EQ(example.value, human_value(example.word)) << example.word;
    }
}

TEST(HumanValues, AValueForAPerson) {
    const struct {
        Variant value;
        const char* text;
    } cases[] = {
        {Variant(), "Empty"},
        {Variant::null(), "Null"},
        {Variant::missing(), "Missing"},
        {Variant::error(5), "Error 5"},
        {Variant(ObjectPointer()), "Nothing"},
        {Variant(Currency::raw(125000)), "12,5"},
        {Variant(std::numeric_limits<Double>::infinity()), "inf"},
        {Variant(-std::numeric_limits<Double>::infinity()), "-inf"},
        {Variant(Date{45429.5}), "2024-05-17 12:00:00"},
        {Variant(true), "Prawda"},
        {Variant(u"tekst"), "tekst"},
    };
    for (const auto& example : cases) {
        EXPECT_EQ(example.text, human_text(example.value));
    }
    struct Something : Object {};
    EXPECT_EQ("an object", human_text(std::make_shared<Something>()));
}

struct Thing {
    Integer property = 0;
    void method(const std::shared_ptr<Object>&, Integer&, const String&) {}
};

TEST(Signatures, TellHowAMemberIsCalled) {
    EXPECT_EQ("property: Integer (property, read)",
              signature_of(property_get<&Thing::property>(u"property")));
    EXPECT_EQ("property=(value: Integer) (property, write)",
              signature_of(property_let<&Thing::property>(u"property")));
    EXPECT_EQ(
        "method(db: Object, optional by reference il: Integer = 2, optional Maska: String = "
        "\"dd-MM\")",
        signature_of(method<&Thing::method>(u"method", by_value(u"db"),
                                            optional(by_reference(u"il"), Long{2}),
                                            optional(by_value(u"Maska"), StringView(u"dd-MM")))));
    EXPECT_EQ("ToLong(value: Variant): Long",
              signature_of(method<&ToLong>(u"ToLong", by_value(u"value"))));
    EventInfo event{u"FileTransferProgress", 1, {by_value(u"lCurrentBytes")}};
    event.parameter_array[0].type = TypeName::Long;
    EXPECT_EQ("FileTransferProgress(lCurrentBytes: Long)", signature_of(event));
    EXPECT_EQ("later (not built)", signature_of(not_built(u"later")));
}

TEST(CatalogueJson, DefaultsStandInTheirTypes) {
    const auto default_as = [](TypeName type, DefaultValue value) {
        Parameter parameter = optional(by_value(u"x"), value);
        parameter.type = type;
        return default_value_of(parameter);
    };
    EXPECT_EQ(Variant(Integer{2}), default_as(TypeName::Integer, Long{2}));
    EXPECT_EQ(Variant(Long{0}), default_as(TypeName::Long, {}));
    EXPECT_EQ(Variant(Byte{2}), default_as(TypeName::Byte, Long{2}));
    EXPECT_EQ(Variant(2.0F), default_as(TypeName::Single, Long{2}));
    EXPECT_EQ(Variant(2.0), default_as(TypeName::Double, Long{2}));
    EXPECT_EQ(Variant(Currency::raw(20000)), default_as(TypeName::Currency, Long{2}));
    EXPECT_EQ(Variant(Date{2}), default_as(TypeName::Date, Long{2}));
    EXPECT_EQ(Variant(true), default_as(TypeName::Boolean, Long{-1}));
    EXPECT_EQ(Variant(u""), default_as(TypeName::String, {}));
    EXPECT_EQ(Variant(u"dd-MM"), default_as(TypeName::String, StringView(u"dd-MM")));
    EXPECT_EQ(Variant(ObjectPointer()), default_as(TypeName::Object, {}));
    EXPECT_EQ(Variant::missing(), default_as(TypeName::Variant, {}));
    EXPECT_EQ(Variant(Long{2}), default_as(TypeName::Variant, Long{2}));
}

TEST(CatalogueJson, EventsAndMembersThatAreNotBuilt) {
    constexpr MemberInfo members[] = {not_built(u"later")};
    EventInfo event{u"FileTransferProgress", 1, {}};
    event.parameter_array[0] = by_value(u"lCurrentBytes");
    event.parameter_array[0].type = TypeName::Long;
    const EventInterface events{u"__clsFTP", std::span(&event, 1)};
    ClassInfo info;
    info.header = {u"clsFTP", Instancing::Creatable, "A", "B"};
    info.members = members;
    info.events = &events;
    const std::string json = catalogue_json(std::span(&info, 1));
    EXPECT_NE(std::string::npos,
              json.find(R"("members":[{"name":"later","kind":"method","built":false}],)"
                        R"("events":{"interface":"__clsFTP","events":[)"
                        R"({"name":"FileTransferProgress","parameters":[)"
                        R"({"name":"lCurrentBytes","type":"Long","passing":"value",)"
                        R"("optional":false}]}]}}]})"))
        << json;
}

TEST(SimilarNames, CaseAndPolishLettersDoNotCount) {
    using Names = std::vector<StringView>;
    const Names names{u"ClsSłownie", u"aChar", u"aDaty", u"Bez_Cudzysłowów", u"aChar"};
    EXPECT_EQ(Names{u"ClsSłownie"}, similar_names(u"clsslownie", names));
    EXPECT_EQ((Names{u"aChar"}), similar_names(u"ACHAR", names));
    EXPECT_EQ((Names{u"aDaty"}), similar_names(u"aDate", names));
    EXPECT_EQ((Names{u"Bez_Cudzysłowów"}), similar_names(u"cudzyslow", names));
    EXPECT_EQ(Names{}, similar_names(u"Xyzzyx", names));
    EXPECT_EQ(Names{}, similar_names(u"", Names{u"aChar"}));
    EXPECT_EQ(5, similar_names(u"x", Names{u"x1", u"x2", u"x3", u"x4", u"x5", u"x6"}).size());
}

}  // namespace
}  // namespace kvarta16::tool
