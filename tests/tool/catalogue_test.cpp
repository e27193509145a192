// The listing of the classes.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <kvarta16/frame/catalogue.h>
#include <kvarta16/frame/utf8.h>

#include "tool_process.h"

namespace tool_test {
namespace {

using Json = nlohmann::json;

// Where a text stands in another; it is to be there.
std::size_t place(const std::string& text, const std::string& wanted) {
    EXPECT_NE(std::string::npos, text.find(wanted)) << wanted;
    return text.find(wanted);
}

TEST(Catalogue, ListsEveryClassInOrderWithItsIdentifiers) {
    const ToolRun run = run_tool({"catalogue"});
    EXPECT_EQ(0, run.status);
    EXPECT_EQ("", run.err);
    std::size_t before = 0;
    for (const kvarta16::ClassInfo& info : kvarta16::public_classes()) {
        const std::string title = kvarta16::to_utf8(info.header.name) + " (" +
                                  kvarta16::to_utf8(name_of(info.header.instancing)) +
                                  (info.is_built() ? ")\n" : ", not built)\n");
        const std::size_t at = place(run.out, title);
        EXPECT_GE(at, before) << title;
        before = at;
        const std::string listed = run.out.substr(at);
        EXPECT_LT(place(listed, std::string(info.header.class_id)), 200);
        EXPECT_LT(place(listed, std::string(info.header.interface_id)), 200);
    }
    place(run.out, "value (functions of the value layer)\n");
}

TEST(Catalogue, ListsTheMembersOfAClassWithTheirSignatures) {
    const ToolRun run = run_tool({"catalogue", "aChar"});
    EXPECT_EQ(0, run.status);
    EXPECT_TRUE(
        run.out.starts_with("aChar (global)\n"
                            "    class     {C35A910A-69BB-4D37-BB5A-3EBE61941A6A}\n"
                            "    interface {4470CE82-AAD0-48FB-BAC3-37F6B279E0F9} _aChar\n"
                            "    c_aaa: String (property, read)\n"
                            "    c_aaa=(value: String) (property, write)\n"
                            "    NullStr(ds: Variant): String\n"
                            "    Str2Str(ds: Variant, optional by reference leng: "
                            "Integer): String\n"))
        << run.out;
    EXPECT_EQ(std::string::npos, run.out.find("VarR2Str"));
    place(run_tool({"catalogue", "Akt"}).out,
          "    Ustaw_stawki_ryczałtu(by reference db: Object, by reference Pytaj: Boolean, "
          "by reference SQLS: Boolean)\n");
}

TEST(Catalogue, TellsOfAPrivateClassWhereItIsAskedFor) {
    EXPECT_EQ(std::string::npos, run_tool({"catalogue"}).out.find("ClsCzyśćBazęDAO"));
    const ToolRun run = run_tool({"catalogue", "ClsCzyśćBazęDAO"});
    EXPECT_EQ(0, run.status);
    EXPECT_TRUE(
        run.out.starts_with("ClsCzyśćBazęDAO (private)\n"
                            "    CZYŚĆ_BAZĘ(by reference ŚcieżkaBazy: String, "))
        << run.out;
}

TEST(Catalogue, ListsThePrimitives) {
    const ToolRun run = run_tool({"catalogue", "value"});
    EXPECT_EQ(0, run.status);
    for (const kvarta16::MemberInfo& primitive : kvarta16::value_primitives()) {
        place(run.out, "    " + kvarta16::to_utf8(primitive.name) + '(');
    }
}

TEST(Catalogue, AsJson) {
    const ToolRun run = run_tool({"catalogue", "--json"});
    EXPECT_EQ(0, run.status);
    const Json catalogue = Json::parse(run.out);
    EXPECT_EQ(20, catalogue["classes"].size());
    EXPECT_EQ("dsEncrypt", catalogue["classes"][0]["name"]);
    const Json one = Json::parse(run_tool({"catalogue", "--json", "Class3"}).out);
    EXPECT_EQ(Json::array({"Class3"}), Json::array({one["classes"][0]["name"]}));
    EXPECT_EQ(1, one["classes"].size());
    EXPECT_EQ(catalogue["library"], one["library"]);
    EXPECT_EQ(2, run_tool({"catalogue", "value", "--json"}).status);
}

}  // namespace
}  // namespace tool_test
