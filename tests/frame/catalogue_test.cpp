// The catalogue: classes, identifiers, members in interface order, and a call of every member
// with every subtype in every place.

#include <set>

#include <gtest/gtest.h>

#include <kvarta16/frame/catalogue.h>
#include <kvarta16/platform/platform.h>

#include "frame_support.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;

String from_cell(const std::string& cell) {
    return *parse_value("String \"" + cell + "\"").get_if<String>();
}

// ---- Classes ----------------------------------------------------------------------------------

TEST(Catalogue, KnowsTheTypeLibrary) {
    EXPECT_EQ(type_library::name, u"KVARTALIBS");
    EXPECT_EQ(type_library::major_version, 1);
    EXPECT_EQ(type_library::minor_version, 1);
    EXPECT_EQ(type_library::library_id, "1537F93F-0C12-4BC6-8ADA-97638342E513");
    EXPECT_EQ(type_library::locale_id, 1033);
}

TEST(Catalogue, ListsThePublicClassesInTheirOrder) {
    const std::vector<Row> rows = rows_of("classes.tsv", 4);
    const auto classes = public_classes();
    ASSERT_EQ(rows.size(), 20u);
    ASSERT_EQ(classes.size(), rows.size());
    std::set<std::string_view> identifiers = {type_library::library_id};
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(rows[i].place);
        const ClassInfo& info = classes[i];
        EXPECT_EQ(info.header.name, from_cell(rows[i].cells[0]));
        EXPECT_EQ(info.header.instancing,
                  rows[i].cells[1] == "global" ? Instancing::Global : Instancing::Creatable);
        EXPECT_EQ(info.header.interface_id, rows[i].cells[2]);
        EXPECT_EQ(info.header.class_id, rows[i].cells[3]);
        EXPECT_TRUE(identifiers.insert(info.header.interface_id).second);
        EXPECT_TRUE(identifiers.insert(info.header.class_id).second);
        EXPECT_EQ(info.interface_name(), u"_" + from_cell(rows[i].cells[0]));
        EXPECT_EQ(find_class(info.header.name), &info);
    }
}

TEST(Catalogue, FindsNoOtherClass) {
    const String names[] = {u"",           u"_aChar", u"aChar ", u"aCha", String({u'a', u'\0'}),
                            u"NoSuchClass"};
    for (const String& name : names) {
        EXPECT_EQ(find_class(name), nullptr) << show(name);
    }
}

TEST(Catalogue, KeepsThePrivateClassesApart) {
    std::vector<String> names;
    for (const ClassInfo& info : private_classes()) {
        names.emplace_back(info.header.name);
        EXPECT_EQ(info.header.instancing, Instancing::Private);
        EXPECT_EQ(info.header.interface_id, "");
        EXPECT_EQ(info.header.class_id, "");
        EXPECT_EQ(info.thread_instance, nullptr);
        EXPECT_EQ(find_class(info.header.name), nullptr);
        EXPECT_TRUE(info.is_built());
        const ClassObject object(info);
        EXPECT_NE(object.self(), nullptr);
        for (const MemberInfo& member : info.members) {
            EXPECT_EQ(info.find(member.name, member.kind), &member);
        }
    }
    EXPECT_EQ(names, (std::vector<String>{u"ClsCzyśćBazęDAO", u"B_WinWer"}));
}

TEST(Catalogue, TellsTheOneEventInterface) {
    for (const ClassInfo& info : public_classes()) {
        SCOPED_TRACE(show(info.header.name));
        if (info.header.name != u"clsFTP") {
            EXPECT_EQ(info.events, nullptr);
            continue;
        }
        ASSERT_NE(info.events, nullptr);
        EXPECT_EQ(info.events->name, u"__clsFTP");
        ASSERT_EQ(info.events->events.size(), 1u);
        const EventInfo& event = info.events->events[0];
        EXPECT_EQ(event.name, u"FileTransferProgress");
        ASSERT_EQ(event.parameters().size(), 2u);
        EXPECT_EQ(event.parameters()[0].name, u"lCurrentBytes");
        EXPECT_EQ(event.parameters()[1].name, u"lTotalBytes");
        for (const Parameter& parameter : event.parameters()) {
            EXPECT_EQ(parameter.type, TypeName::Long);
            EXPECT_EQ(parameter.passing, Passing::ByReference);
            EXPECT_FALSE(parameter.is_optional);
        }
        EXPECT_NE(event.connect, nullptr);
    }
}

TEST(Catalogue, HasNamesForTheKindsOfInstancing) {
    EXPECT_NE(name_of(Instancing::Global), name_of(Instancing::Creatable));
    EXPECT_NE(name_of(Instancing::Global), name_of(Instancing::Private));
    EXPECT_NE(name_of(Instancing::Creatable), name_of(Instancing::Private));
}

// ---- Members ----------------------------------------------------------------------------------

// A member as the table writes it, without its class.
struct Line {
    String name;
    std::string kind;
    String result;
    String parameters;
    friend bool operator==(const Line&, const Line&) = default;
};

void PrintTo(const Line& line, std::ostream* out) {
    *out << show(line.name) << " " << line.kind << " " << show(line.result) << " "
         << show(line.parameters);
}

Line line_of(const MemberInfo& member) {
    constexpr const char* kinds[] = {"method", "get", "let"};
    String parameters;
    for (const Parameter& parameter : member.parameters()) {
        parameters += parameters.empty() ? u"" : u", ";
        parameters += parameter.name;
        parameters += u" ";
        parameters += name_of(parameter.type);
        parameters += parameter.passing == Passing::ByReference ? u" ref" : u"";
        parameters += parameter.is_optional ? u" opt" : u"";
    }
    return {String(member.name), kinds[static_cast<std::size_t>(member.kind)],
            member.result == TypeName::None ? u"None" : String(name_of(member.result)),
            parameters.empty() ? u"-" : parameters};
}

// A class of either list.
const ClassInfo* class_of(StringView name) {
    for (const ClassInfo& info : private_classes()) {
        if (info.header.name == name) {
            return &info;
        }
    }
    return find_class(name);
}

TEST(Catalogue, KeepsTheInterfaceOrderOfTheClassesThatAreBuilt) {
    std::map<std::string, std::vector<Line>> expected;
    for (const Row& row : rows_of("members.tsv", 5)) {
        expected[row.cells[0]].push_back({from_cell(row.cells[1]), row.cells[2],
                                          from_cell(row.cells[3]), from_cell(row.cells[4])});
    }
    for (const auto& [class_name, lines] : expected) {
        SCOPED_TRACE(class_name);
        const ClassInfo* info = class_of(from_cell(class_name));
        ASSERT_NE(info, nullptr);
        EXPECT_TRUE(info->is_built());
        ASSERT_EQ(info->members.size(), lines.size());
        for (std::size_t i = 0; i < lines.size(); ++i) {
            EXPECT_EQ(info->members[i].name, lines[i].name) << "place " << i + 1;
            if (info->members[i].is_built()) {
                EXPECT_EQ(line_of(info->members[i]), lines[i]) << "place " << i + 1;
            }
        }
    }
}

TEST(Catalogue, HoldsTogether) {
    for (const ClassInfo& info : public_classes()) {
        SCOPED_TRACE(show(info.header.name));
        if (!info.is_built()) {
            EXPECT_TRUE(info.members.empty());
            EXPECT_EQ(info.thread_instance, nullptr);
            continue;
        }
        EXPECT_FALSE(info.members.empty());
        std::set<std::pair<String, MemberKind>> names;
        for (const MemberInfo& member : info.members) {
            SCOPED_TRACE(show(member.name));
            EXPECT_FALSE(member.name.empty());
            EXPECT_TRUE(names.emplace(String(member.name), member.kind).second);
            EXPECT_EQ(info.find(member.name, member.kind), member.is_built() ? &member : nullptr);
            std::set<String> parameter_names;
            bool may_be_left_out = false;
            for (const Parameter& parameter : member.parameters()) {
                EXPECT_FALSE(parameter.name.empty());
                EXPECT_TRUE(parameter_names.insert(String(parameter.name)).second);
                EXPECT_NE(parameter.type, TypeName::None);
                EXPECT_TRUE(parameter.is_optional || !may_be_left_out) << show(parameter.name);
                may_be_left_out = parameter.is_optional;
            }
        }
        EXPECT_EQ(info.find(u"NoSuchMember", MemberKind::Method), nullptr);
        EXPECT_EQ(info.find(u"", MemberKind::Method), nullptr);
    }
}

TEST(Catalogue, TellsReadingFromWriting) {
    const ClassInfo& info = *find_class(u"aChar");
    const MemberInfo* get = info.find(u"c_aaa", MemberKind::PropertyGet);
    const MemberInfo* let = info.find(u"c_aaa", MemberKind::PropertyLet);
    ASSERT_NE(get, nullptr);
    ASSERT_NE(let, nullptr);
    EXPECT_EQ(info.find(u"c_aaa", MemberKind::Method), nullptr);
    EXPECT_EQ(info.find(u"NullStr", MemberKind::PropertyGet), nullptr);

    const ClassObject one(info);
    const ClassObject other(info);
    Arguments none;
    EXPECT_EQ(notation(invoke(*get, one.self(), none)), "String \"\"");
    Arguments text{u"text"};
    invoke(*let, one.self(), text);
    EXPECT_EQ(notation(invoke(*get, one.self(), none)), "String \"text\"");
    EXPECT_EQ(notation(invoke(*get, other.self(), none)), "String \"\"");
}

// ---- Instances --------------------------------------------------------------------------------

TEST(Catalogue, GivesTheInstanceOfTheThreadForGlobalClassesAlone) {
    for (const ClassInfo& info : public_classes()) {
        SCOPED_TRACE(show(info.header.name));
        if (!info.is_built()) {
            continue;
        }
        const bool is_global = info.header.instancing == Instancing::Global;
        ASSERT_EQ(info.thread_instance != nullptr, is_global);
        if (is_global) {
            EXPECT_NE(info.thread_instance(), nullptr);
            EXPECT_EQ(info.thread_instance(), info.thread_instance());
        }
        const ClassObject object(info);
        EXPECT_EQ(&object.info(), &info);
        ASSERT_NE(object.self(), nullptr);
        if (is_global) {
            EXPECT_NE(object.self(), info.thread_instance());
        }
        const std::shared_ptr<void> first = info.create();
        const std::shared_ptr<void> second = info.create();
        EXPECT_NE(first, nullptr);
        EXPECT_NE(first, second);
    }
}

TEST(Catalogue, IsCalledByName) {
    const ClassInfo* found = find_class(u"aLiczby");
    ASSERT_NE(found, nullptr);
    const MemberInfo* member = found->find(u"VarR2Str", MemberKind::Method);
    ASSERT_NE(member, nullptr);
    Arguments arguments{Variant(u"12,5")};
    EXPECT_EQ(notation(invoke(*member, found->thread_instance(), arguments)), "String \"12,50\"");
    ASSERT_EQ(arguments.size(), 2u);
    EXPECT_EQ(notation(arguments[1]), "String \"\"");
}

// ---- The primitives ---------------------------------------------------------------------------

const MemberInfo* find_primitive(StringView name) {
    for (const MemberInfo& primitive : value_primitives()) {
        if (primitive.name == name) {
            return &primitive;
        }
    }
    return nullptr;
}

TEST(Catalogue, ListsTheValuePrimitives) {
    const std::vector<std::pair<StringView, TypeName>> expected = {
        {u"ValPrefix", TypeName::Double},    {u"ToCurrency", TypeName::Currency},
        {u"ToInteger16", TypeName::Integer}, {u"ToLong", TypeName::Long},
        {u"ToText", TypeName::String},       {u"IsNumericText", TypeName::Boolean},
        {u"IsNullValue", TypeName::Boolean}, {u"IsDateValue", TypeName::Boolean},
        {u"ToDate", TypeName::Date},         {u"MakeDate", TypeName::Date},
        {u"FormatMask", TypeName::String},   {u"RoundHalfEven", TypeName::Variant}};
    EXPECT_EQ(value_primitives().size(), expected.size());
    for (const auto& [name, result] : expected) {
        const MemberInfo* primitive = find_primitive(name);
        ASSERT_NE(primitive, nullptr) << show(name);
        EXPECT_TRUE(primitive->is_built()) << show(name);
        EXPECT_EQ(primitive->result, result) << show(name);
        EXPECT_EQ(primitive->kind, MemberKind::Method) << show(name);
    }
}

struct PrimitiveCall {
    const char16_t* name;
    std::vector<const char*> arguments;
    const char* expected;
};

TEST(Catalogue, CallsTheValuePrimitives) {
    const PrimitiveCall calls[] = {
        {u"ValPrefix", {"String \"12.5x\""}, "Double 12.5"},
        {u"ToCurrency", {"String \"1,5\""}, "Currency 1.5000"},
        {u"ToInteger16", {"Double 2.5"}, "Integer 2"},
        {u"ToLong", {"Double 3.5"}, "Long 4"},
        {u"ToLong", {"Null"}, "!94"},
        {u"ToText", {"Double 12.5"}, "String \"12,5\""},
        {u"IsNumericText", {"Null"}, "Boolean 0"},
        {u"IsNullValue", {"Null"}, "Boolean -1"},
        {u"IsDateValue", {"String \"2024-05-17\""}, "Boolean -1"},
        {u"ToDate", {"String \"2024-05-17\""}, "Date 45429"},
        {u"MakeDate", {"Integer 2024", "Integer 0", "Integer 15"}, "Date 45275"},
        {u"FormatMask", {"Double 2.675", "String \"0.00\""}, "String \"2,68\""},
        {u"RoundHalfEven", {"Currency 2.345", "Integer 2"}, "Currency 2.3400"},
        {u"RoundHalfEven", {"Currency 2.345", "Integer -1"}, "!5"},
    };
    for (const PrimitiveCall& call : calls) {
        const MemberInfo* primitive = find_primitive(call.name);
        ASSERT_NE(primitive, nullptr) << show(StringView(call.name));
        Arguments arguments;
        for (const char* argument : call.arguments) {
            arguments.push_back(parse_value(argument));
        }
        EXPECT_EQ(outcome([&] { return invoke(*primitive, nullptr, arguments); }), call.expected)
            << show(StringView(call.name));
    }
}

// ---- Every member, every subtype --------------------------------------------------------------

bool is_of_type(const Variant& value, TypeName type) {
    switch (type) {
        case TypeName::None:
            return value.is(Subtype::Empty);
        case TypeName::Variant:
            return true;
        case TypeName::Byte:
            return value.is(Subtype::Byte);
        case TypeName::Integer:
            return value.is(Subtype::Integer);
        case TypeName::Long:
            return value.is(Subtype::Long);
        case TypeName::Single:
            return value.is(Subtype::Single);
        case TypeName::Double:
            return value.is(Subtype::Double);
        case TypeName::Currency:
            return value.is(Subtype::Currency);
        case TypeName::Date:
            return value.is(Subtype::Date);
        case TypeName::String:
            return value.is(Subtype::String);
        case TypeName::Boolean:
            return value.is(Subtype::Boolean);
        case TypeName::Object:
            return value.is(Subtype::Object);
    }
    return false;
}

class SilentBoxes final : public MessageBoxes {
  public:
    MsgBoxResult MsgBox(StringView, Long style, std::optional<StringView>) override {
        ++shown;
        return unattended_answer(style);
    }

    int shown = 0;
};

// Whether a caller can have a variable of the value's own type: the others occur in a Variant
// alone.
bool has_variables(const Variant& value) {
    return !value.is(Subtype::Empty) && !value.is(Subtype::Null) && !value.is(Subtype::Error) &&
           !value.is(Subtype::Decimal) && !value.is(Subtype::UnknownObject);
}

// Calls the member; the result must be of the declared type, or the
// failure one of the library's own.
std::string examined_call(const MemberInfo& member, void* self, const Arguments& given) {
    Arguments arguments = given;
    try {
        const Variant result = invoke(member, self, arguments);
        EXPECT_TRUE(is_of_type(result, member.result)) << notation(result);
        EXPECT_FALSE(result.is_reference());
        EXPECT_EQ(arguments.size(), member.parameters().size());
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            EXPECT_TRUE(arguments[i].is_reference() ||
                        is_of_type(arguments[i], member.parameters()[i].type))
                << notation(arguments[i]);
        }
        return notation(result);
    } catch (const Failure& failure) {
        // The last is that of a database layer which is given no connection.
        const std::set<std::int32_t> known = {5, 6, 9, 11, 13, 91, 94, 3709};
        EXPECT_TRUE(known.contains(failure.number())) << failure.number() << failure.what();
        return "!" + std::to_string(failure.number());
    }
}

void sweep(const MemberInfo& member, void* self) {
    const auto parameters = member.parameters();
    Arguments plain;
    for (const Parameter& parameter : parameters) {
        plain.push_back(parameter.type == TypeName::Object ? Variant(ObjectPointer())
                                                           : Variant(Integer{5}));
    }
    examined_call(member, self, plain);
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        for (const Variant& value : one_of_each_subtype()) {
            SCOPED_TRACE("argument " + std::to_string(i + 1) + " " + notation(value));
            std::set<std::string> results;
            for (const std::size_t form : std::initializer_list<std::size_t>{0, 1, 2, 3}) {
                const Forms forms(value);  // variables of its own: some members write them
                const bool is_to_variable = form == 1 || form == 3;
                if (!is_to_variable || has_variables(value)) {
                    Arguments arguments = plain;
                    arguments[i] = *forms.all()[form].value;
                    results.insert(examined_call(member, self, arguments));
                }
            }
            EXPECT_EQ(results.size(), 1u)
                << "a reference is treated otherwise: " << testing::PrintToString(results);
        }
    }
}

TEST(Catalogue, StandsEverySubtypeInEveryPlaceOfEveryMember) {
    SilentBoxes boxes;
    Platform silent = platform();
    silent.message_boxes = &boxes;
    const ScopedPlatform scope(silent);
    // The classes whose members touch nothing of the machine but boxes and the connection given.
    for (const char16_t* name : {u"aChar", u"Class3", u"aLiczby", u"amain", u"Akt"}) {
        const ClassInfo& info = *find_class(name);
        const ClassObject object(info);
        for (const MemberInfo& member : info.members) {
            // It does not return where its last argument holds the second one.
            if (!member.is_built() || member.name == u"Replace2") {
                continue;
            }
            SCOPED_TRACE(show(info.header.name) + "." + show(member.name));
            sweep(member, object.self());
        }
    }
    for (const MemberInfo& primitive : value_primitives()) {
        SCOPED_TRACE(show(primitive.name));
        sweep(primitive, nullptr);
    }
}

}  // namespace
}  // namespace kvarta16
