// The class over a registry that writes down each call: selector rows, the exact order of calls
// with their arguments, every edge, faults.
#include <gtest/gtest.h>

#include <kvarta16/frame/catalogue.h>
#include <kvarta16/frame/globals.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/forwarding.h>
#include <kvarta16/registry/aregistry.h>

#include "support/fake_platform.h"

namespace kvarta16::registry_tests {
namespace {

using testing_support::FakePlatform;
using testing_support::FakeRegistry;
using Calls = std::vector<std::string>;

bool is_empty(const Variant& value) {
    return value.is(Subtype::Empty);
}

// "Empty" or the text in quotes.
std::string shown(const Variant& value) {
    return is_empty(value)             ? "Empty"
           : value.is(Subtype::String) ? "'" + to_utf8(ToText(value)) + "'"
                                       : "another subtype";
}

// ---- The selector ---------------------------------------------------------------------------

struct Selected {
    Long selector;
    const char* root;  // "0" where there is no row
    const char* path;
};

constexpr Selected common_rows[] = {
    {0, "HKLM", "Software\\ZEVO"},
    {1, "HKCU", "Control Panel\\International"},
    {2, "HKCR", ".lnk\\International"},
    {3, "HKCU", ""},
    {4, "HKCU", "Software\\ZEVO"},
    {-1, "0", ""},
    {7, "0", ""},
    {2147483647, "0", ""},
    {-2147483647 - 1, "0", ""},
};
constexpr Selected reading_rows[] = {{5, "0", ""}, {6, "0", ""}};
constexpr Selected writing_rows[] = {{5, "HKCU", "Control Panel\\Desktop"},
                                     {6, "HKCU", "Control Panel\\Keyboard"}};
constexpr Selected rows_of_12[] = {{5, "HKCU", "Software\\Microsoft\\Internet Explorer\\PageSetup"},
                                   {6, "HKLM", "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion"}};

// `call` is made with each selector and with and without a sub-key; what is asked for first is the
// key, by `operation`.
template <class Call>
void expect_rows(std::span<const Selected> own_rows, const std::string& operation, Call call) {
    std::vector<Selected> rows(std::begin(common_rows), std::end(common_rows));
    rows.insert(rows.end(), own_rows.begin(), own_rows.end());
    for (const Selected& row : rows) {
        for (const StringView sub_key : {StringView(u""), StringView(u"Wydruki\\A4")}) {
            FakePlatform fake;
            call(sub_key, row.selector);
            ASSERT_FALSE(fake.registry.calls.empty());
            const std::string path =
                std::string(row.path) + (sub_key.empty() ? "" : "\\" + to_utf8(sub_key));
            const std::string wanted = operation + "(" + row.root + ", '" + path + "')";
            EXPECT_EQ(fake.registry.calls[0].substr(0, wanted.size() + 1), wanted + " ")
                << row.selector;
        }
    }
}

TEST(Selector, LeadsWhereItsOperationsRowsSay) {
    expect_rows(reading_rows, "RegOpenKeyA", [](StringView sub_key, Long selector) {
        EXPECT_TRUE(is_empty(sub_key.empty() ? aregistry().GetRegistry(u"n", selector)
                                             : aregistry().GetRegistryK(sub_key, u"n", selector)));
    });
    expect_rows(reading_rows, "RegOpenKeyA", [](StringView sub_key, Long selector) {
        EXPECT_TRUE(is_empty(aregistry().GetRegistryK(sub_key, u"n", selector)));
    });
    expect_rows(writing_rows, "RegCreateKeyA", [](StringView sub_key, Long selector) {
        if (sub_key.empty()) {
            aregistry().SaveRegistry(u"n", u"d", selector);
        } else {
            aregistry().SaveRegistryK(sub_key, u"n", u"d", selector);
        }
    });
    expect_rows(writing_rows, "RegCreateKeyA", [](StringView sub_key, Long selector) {
        aregistry().SaveRegistryK(sub_key, u"n", u"d", selector);
    });
    expect_rows(rows_of_12, "RegOpenKeyA", [](StringView sub_key, Long selector) {
        EXPECT_TRUE(is_empty(aregistry().GetRegistryK_do_wersji12(sub_key, u"n", selector)));
    });
    expect_rows(rows_of_12, "RegCreateKeyA", [](StringView sub_key, Long selector) {
        aregistry().SaveRegistryK_do_wersji12(sub_key, u"n", u"d", selector);
    });
}

// What each pair of operations stores and finds again, by selector.
TEST(Selector, ReadsBackWhatItsGenerationReads) {
    for (Long selector = -1; selector <= 8; ++selector) {
        const FakePlatform fake;
        aregistry settings;
        settings.SaveRegistry(u"a", u"1", selector);
        settings.SaveRegistryK(u"K", u"b", u"2", selector);
        settings.SaveRegistryK_do_wersji12(u"", u"c", u"3", selector);
        settings.SaveRegistryK_do_wersji12(u"K", u"d", u"4", selector);
        const bool current = selector >= 0 && selector <= 4;
        const bool older = selector >= 0 && selector <= 6;
        const bool has_sub_keys = selector != 3;
        const auto expected = [](bool found, const char* text) {
            return std::string(found ? text : "Empty");
        };
        EXPECT_EQ(shown(settings.GetRegistry(u"a", selector)), expected(current, "'1'"));
        EXPECT_EQ(shown(settings.GetRegistryK(u"K", u"b", selector)),
                  expected(current && has_sub_keys, "'2'"));
        EXPECT_EQ(shown(settings.GetRegistryK_do_wersji12(u"", u"c", selector)),
                  expected(older, "'3'"));
        EXPECT_EQ(shown(settings.GetRegistryK_do_wersji12(u"K", u"d", selector)),
                  expected(older && has_sub_keys, "'4'"));
    }
}

// ---- Order of calls -------------------------------------------------------------------------

TEST(Reading, OpensAsksTwiceAndLeavesTheKeyOpen) {
    FakePlatform fake;
    fake.registry.keys[{HKEY_CURRENT_USER, u"Software\\ZEVO\\K"}][u"nazwa"] = {REG_SZ, u"abc"};
    aregistry settings;
    EXPECT_EQ(shown(settings.GetRegistryK(u"K", u"nazwa", 4)), "'abc'");
    EXPECT_EQ(fake.registry.calls, (Calls{"RegOpenKeyA(HKCU, 'Software\\ZEVO\\K') = 0",
                                          "RegQueryValueExA(1, 'nazwa', no buffer, 0) = 0",
                                          "RegQueryValueExA(1, 'nazwa', '   ', 3) = 0"}));
    EXPECT_EQ(shown(settings.GetRegistryK(u"K", u"nazwa", 4)), "'abc'");
    EXPECT_EQ(fake.registry.handles.size(), 2U);
}

TEST(Reading, AsksOnceWhereTheTypeIsNotText) {
    FakePlatform fake;
    fake.registry.keys[{HKEY_CURRENT_USER, u"Software\\ZEVO"}][u"n"] = {REG_DWORD, u"abcd"};
    EXPECT_EQ(shown(aregistry().GetRegistry(u"n", 4)), "Empty");
    EXPECT_EQ(shown(aregistry().GetRegistry(u"brak", 4)), "Empty");
    EXPECT_EQ(shown(aregistry().GetRegistry(u"n", 9)), "Empty");
    EXPECT_EQ(fake.registry.calls,
              (Calls{"RegOpenKeyA(HKCU, 'Software\\ZEVO') = 0",
                     "RegQueryValueExA(1, 'n', no buffer, 0) = 0",
                     "RegOpenKeyA(HKCU, 'Software\\ZEVO') = 0",
                     "RegQueryValueExA(2, 'brak', no buffer, 0) = 2", "RegOpenKeyA(0, '') = 6",
                     "RegQueryValueExA(0, 'n', no buffer, 0) = 6"}));
}

TEST(Reading, TheTypeOutlivesARead) {
    FakePlatform fake;
    auto& values = fake.registry.keys[{HKEY_CURRENT_USER, u"Software\\ZEVO"}];
    values[u"n"] = {REG_SZ, u"abc"};
    values[u"d"] = {REG_DWORD, u"abcd"};
    aregistry settings;
    EXPECT_EQ(shown(settings.GetRegistry(u"n", 4)), "'abc'");
    fake.registry.calls.clear();
    EXPECT_EQ(shown(settings.GetRegistry(u"brak", 4)), "Empty");  // the type is still 1
    EXPECT_EQ(fake.registry.calls, (Calls{"RegOpenKeyA(HKCU, 'Software\\ZEVO') = 0",
                                          "RegQueryValueExA(2, 'brak', no buffer, 0) = 2",
                                          "RegQueryValueExA(2, 'brak', '', 0) = 2"}));
    fake.registry.calls.clear();
    EXPECT_EQ(shown(settings.GetRegistryK(u"nie ma", u"n", 4)), "Empty");
    EXPECT_EQ(fake.registry.calls, (Calls{"RegOpenKeyA(HKCU, 'Software\\ZEVO\\nie ma') = 2",
                                          "RegQueryValueExA(0, 'n', no buffer, 0) = 6",
                                          "RegQueryValueExA(0, 'n', '', 0) = 6"}));
    EXPECT_EQ(shown(settings.GetRegistry(u"d", 4)), "Empty");
    fake.registry.calls.clear();
    EXPECT_EQ(shown(settings.GetRegistry(u"brak", 4)), "Empty");  // now it is 4
    EXPECT_EQ(fake.registry.calls.size(), 2U);
    EXPECT_EQ(shown(settings.GetRegistry(u"n", 4)), "'abc'");
}

TEST(Reading, CutsAtTheFirstZero) {
    const struct {
        String data;
        const char* text;
    } cases[] = {
        {u"", "''"},
        {{u"\0", 1}, "''"},
        {{u"abc\0", 4}, "'abc'"},
        {{u"ab\0cd\0", 6}, "'ab'"},
        {{u"\0abc", 4}, "''"},
        {u"  ab  ", "'  ab  '"},
        {u"zażółć\r\n", "'zażółć\r\n'"},
    };
    for (const auto& [data, text] : cases) {
        FakePlatform fake;
        fake.registry.keys[{HKEY_CURRENT_USER, u""}][u"n"] = {REG_SZ, data};
        EXPECT_EQ(shown(aregistry().GetRegistry(u"n", 3)), text);
    }
}

TEST(Reading, OnlyTextsAreRead) {
    for (Long type = -1; type <= 12; ++type) {
        FakePlatform fake;
        fake.registry.keys[{HKEY_CURRENT_USER, u""}][u"n"] = {type, u"abc"};
        EXPECT_EQ(shown(aregistry().GetRegistry(u"n", 3)), type == 1 ? "'abc'" : "Empty") << type;
    }
}

// Between the two questions the value changes in size: a longer one does not fit, a shorter one
// leaves blanks of the buffer behind it.
class ChangingRegistry final : public ForwardingRegistry {
  public:
    ChangingRegistry(FakeRegistry& target, String later)
        : ForwardingRegistry(target), target_(&target), later_(std::move(later)) {}
    Long RegQueryValueExA(Long key, StringView name, Long& type, String* data,
                          Long& size) override {
        const Long status = ForwardingRegistry::RegQueryValueExA(key, name, type, data, size);
        target_->keys[{HKEY_CURRENT_USER, u""}][u"n"].data = later_;
        return status;
    }

  private:
    FakeRegistry* target_;
    String later_;
};

TEST(Reading, ValueThatChangesInBetween) {
    for (const auto& [later, text] : {std::pair(u"abcd", "Empty"), {u"a", "'a  '"}}) {
        FakePlatform fake;
        fake.registry.keys[{HKEY_CURRENT_USER, u""}][u"n"] = {REG_SZ, u"abc"};
        ChangingRegistry changing(fake.registry, later);
        fake.operations.registry = &changing;
        const ScopedPlatform scope(fake.operations);
        EXPECT_EQ(shown(aregistry().GetRegistry(u"n", 3)), text);
    }
}

TEST(Writing, MakesTheKeyPutsTheTextAndCloses) {
    FakePlatform fake;
    aregistry settings;
    settings.SaveRegistryK(u"K", u"nazwa", u"zażółć", 4);
    settings.SaveRegistry(u"", u"", 3);
    settings.SaveRegistryK_do_wersji12(u"", u"n", {u"a\0b", 3}, 6);
    EXPECT_EQ(fake.registry.calls,
              (Calls{"RegCreateKeyA(HKCU, 'Software\\ZEVO\\K') = 0",
                     "RegSetValueExA(1, 'nazwa', 0, 1, 'zażółć', 6) = 0", "RegCloseKey(1) = 0",
                     "RegCreateKeyA(HKCU, '') = 0", "RegSetValueExA(2, '', 0, 1, '', 0) = 0",
                     "RegCloseKey(2) = 0",
                     "RegCreateKeyA(HKLM, 'SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion') = 0",
                     std::string("RegSetValueExA(3, 'n', 0, 1, 'a\0b', 3) = 0", 42),
                     "RegCloseKey(3) = 0"}));
    EXPECT_TRUE(fake.registry.handles.empty());
    EXPECT_EQ(shown(settings.GetRegistry(u"", 3)), "''");  // size 0 and no Empty
    EXPECT_EQ(shown(settings.GetRegistryK_do_wersji12(u"", u"n", 6)), "'a'");
}

TEST(Writing, GoesOnWhenRefused) {
    FakePlatform fake;
    fake.registry.answers["RegCreateKeyA"] = {5};
    aregistry().SaveRegistry(u"n", u"d", 0);
    aregistry().SaveRegistryK(u"K", u"n", u"d", 3);
    aregistry().SaveRegistryK(u"K", u"n", u"d", 7);
    EXPECT_EQ(fake.registry.calls,
              (Calls{"RegCreateKeyA(HKLM, 'Software\\ZEVO') = 5",
                     "RegSetValueExA(0, 'n', 0, 1, 'd', 1) = 6", "RegCloseKey(0) = 6",
                     "RegCreateKeyA(HKCU, '\\K') = 161", "RegSetValueExA(0, 'n', 0, 1, 'd', 1) = 6",
                     "RegCloseKey(0) = 6", "RegCreateKeyA(0, '\\K') = 6",
                     "RegSetValueExA(0, 'n', 0, 1, 'd', 1) = 6", "RegCloseKey(0) = 6"}));
}

TEST(LowLevel, SavekeyDeleteKeyDeleteValue) {
    FakePlatform fake;
    aregistry settings;
    settings.Savekey(HKEY_CURRENT_USER, u"Software\\Inne", u"n", u"tekst");
    EXPECT_TRUE(is_empty(settings.DeleteValue(HKEY_CURRENT_USER, u"Software\\Inne", u"n")));
    EXPECT_TRUE(is_empty(settings.DeleteValue(HKEY_CURRENT_USER, u"Software\\Inne", u"n")));
    EXPECT_TRUE(is_empty(settings.DeleteKey(HKEY_CURRENT_USER, u"Software\\Inne")));
    EXPECT_TRUE(is_empty(settings.DeleteKey(HKEY_CURRENT_USER, u"Software\\Inne")));
    EXPECT_TRUE(is_empty(settings.DeleteValue(HKEY_CURRENT_USER, u"Software\\Inne", u"n")));
    settings.Savekey(7, u"a", u"b", u"c");
    EXPECT_EQ(fake.registry.calls,
              (Calls{"RegCreateKeyA(HKCU, 'Software\\Inne') = 0",
                     "RegSetValueExA(1, 'n', 0, 1, 'tekst', 5) = 0", "RegCloseKey(1) = 0",
                     "RegOpenKeyA(HKCU, 'Software\\Inne') = 0", "RegDeleteValueA(2, 'n') = 0",
                     "RegCloseKey(2) = 0", "RegOpenKeyA(HKCU, 'Software\\Inne') = 0",
                     "RegDeleteValueA(3, 'n') = 2", "RegCloseKey(3) = 0",
                     "RegDeleteKeyA(HKCU, 'Software\\Inne') = 0",
                     "RegDeleteKeyA(HKCU, 'Software\\Inne') = 2",
                     "RegOpenKeyA(HKCU, 'Software\\Inne') = 2", "RegDeleteValueA(0, 'n') = 6",
                     "RegCloseKey(0) = 6", "RegCreateKeyA(7, 'a') = 6",
                     "RegSetValueExA(0, 'b', 0, 1, 'c', 1) = 6", "RegCloseKey(0) = 6"}));
}

// A registry of a host may fail instead of answering.
class FailingRegistry final : public Registry {
  public:
    Long RegOpenKeyA(Long, StringView, Long&) override { return failed(); }
    Long RegCreateKeyA(Long, StringView, Long&) override { return failed(); }
    Long RegQueryValueExA(Long, StringView, Long&, String*, Long&) override { return failed(); }
    Long RegSetValueExA(Long, StringView, Long, Long, StringView, Long) override {
        return failed();
    }
    Long RegCloseKey(Long) override { return failed(); }
    Long RegDeleteKeyA(Long, StringView) override { return failed(); }
    Long RegDeleteValueA(Long, StringView) override { return failed(); }

    int calls = 0;

  private:
    Long failed() {
        ++calls;
        fail(error::invalid_call);
    }
};

TEST(LowLevel, SwallowsFailuresAndTheOthersDoNot) {
    FakePlatform fake;
    FailingRegistry failing;
    fake.operations.registry = &failing;
    const ScopedPlatform scope(fake.operations);
    aregistry settings;
    settings.Savekey(HKEY_CURRENT_USER, u"a", u"b", u"c");
    EXPECT_EQ(failing.calls, 3);
    EXPECT_TRUE(is_empty(settings.DeleteKey(HKEY_CURRENT_USER, u"a")));
    EXPECT_EQ(failing.calls, 4);
    EXPECT_TRUE(is_empty(settings.DeleteValue(HKEY_CURRENT_USER, u"a", u"b")));
    EXPECT_EQ(failing.calls, 7);
    EXPECT_THROW(static_cast<void>(settings.GetRegistry(u"a", 4)), Failure);
    EXPECT_THROW(settings.SaveRegistry(u"a", u"b", 4), Failure);
    EXPECT_THROW(static_cast<void>(settings.GetRegistryK_do_wersji12(u"", u"a", 4)), Failure);
    EXPECT_THROW(settings.SaveRegistryK_do_wersji12(u"", u"a", u"b", 4), Failure);
    EXPECT_EQ(failing.calls, 11);
}

// ---- Faults ---------------------------------------------------------------------------------

// Saves, reads, deletes; what the reads have given.
std::vector<std::string> session() {
    aregistry settings;
    std::vector<std::string> read;
    settings.SaveRegistryK(u"K", u"a", u"raz", 4);
    read.push_back(shown(settings.GetRegistryK(u"K", u"a", 4)));
    settings.Savekey(HKEY_CURRENT_USER, u"Software\\ZEVO\\K", u"b", u"dwa");
    read.push_back(shown(settings.GetRegistryK(u"K", u"b", 4)));
    EXPECT_TRUE(is_empty(settings.DeleteValue(HKEY_CURRENT_USER, u"Software\\ZEVO\\K", u"a")));
    read.push_back(shown(settings.GetRegistryK(u"K", u"a", 4)));
    EXPECT_TRUE(is_empty(settings.DeleteKey(HKEY_CURRENT_USER, u"Software\\ZEVO\\K")));
    read.push_back(shown(settings.GetRegistryK(u"K", u"b", 4)));
    return read;
}

struct Fault {
    const char* operation;
    int call;  // from 1 up
    std::vector<std::string> once;
    std::vector<std::string> from_then_on;
};

TEST(Faults, EachOperationAtEachCall) {
    const std::vector<std::string> well{"'raz'", "'dwa'", "Empty", "Empty"};
    const std::vector<std::string> nothing{"Empty", "Empty", "Empty", "Empty"};
    const std::vector<std::string> first_lost{"Empty", "'dwa'", "Empty", "Empty"};
    const std::vector<std::string> second_lost{"'raz'", "Empty", "Empty", "Empty"};
    const std::vector<std::string> value_stays{"'raz'", "'dwa'", "'raz'", "Empty"};
    const std::vector<std::string> key_stays{"'raz'", "'dwa'", "Empty", "'dwa'"};
    const Fault faults[] = {
        {"RegCreateKeyA", 1, first_lost, nothing},
        {"RegCreateKeyA", 2, second_lost, second_lost},
        {"RegSetValueExA", 1, first_lost, nothing},
        {"RegSetValueExA", 2, second_lost, second_lost},
        {"RegCloseKey", 1, well, well},
        {"RegCloseKey", 2, well, well},
        {"RegCloseKey", 3, well, well},
        {"RegOpenKeyA", 1, first_lost, nothing},
        {"RegOpenKeyA", 2, second_lost, second_lost},
        {"RegOpenKeyA", 3, value_stays, well},  // the value is there and cannot be read
        {"RegOpenKeyA", 4, well, well},
        {"RegOpenKeyA", 5, well, well},
        {"RegQueryValueExA", 1, first_lost, nothing},
        {"RegQueryValueExA", 2, first_lost, nothing},
        // The first question fails, the type of the read before holds, the buffer is of size 0.
        {"RegQueryValueExA", 3, second_lost, second_lost},
        {"RegQueryValueExA", 4, second_lost, second_lost},
        {"RegDeleteValueA", 1, value_stays, value_stays},
        {"RegDeleteKeyA", 1, key_stays, key_stays},
    };
    for (const Fault& fault : faults) {
        for (const bool once : {true, false}) {
            FakePlatform fake;
            const auto plan = std::make_shared<FaultPlan>();
            plan->fail_at(fault.operation, fault.call,
                          once ? FaultSpan::Once : FaultSpan::FromThenOn, 29);
            const std::unique_ptr<Registry> failing = faulting(fake.registry, plan);
            fake.operations.registry = failing.get();
            const ScopedPlatform scope(fake.operations);
            EXPECT_EQ(session(), once ? fault.once : fault.from_then_on)
                << fault.operation << " " << fault.call << (once ? " once" : " from then on");
        }
    }
    const FakePlatform fake;
    EXPECT_EQ(session(), well);
}

// ---- Late-bound calls and bare names --------------------------------------------------------

Variant call(StringView member, Arguments arguments) {
    const ClassInfo* info = find_class(u"aregistry");
    const MemberInfo* found = info->find(member, MemberKind::Method);
    return invoke(*found, info->thread_instance(), arguments);
}

TEST(LateBound, EveryMember) {
    FakePlatform fake;
    EXPECT_TRUE(is_empty(call(u"SaveRegistry", {u"a", u"1", 4})));
    EXPECT_TRUE(is_empty(call(u"SaveRegistryK", {u"K", u"b", 12.5, u"4"})));
    EXPECT_TRUE(is_empty(call(u"SaveRegistryK_do_wersji12", {u"", u"c", u"3", 5})));
    EXPECT_TRUE(is_empty(call(u"Savekey", {HKEY_CURRENT_USER, u"Inne", u"d", u"4"})));
    EXPECT_EQ(shown(call(u"GetRegistry", {u"a", 4})), "'1'");
    EXPECT_EQ(shown(call(u"GetRegistryK", {u"K", u"b", 4})), "'12,5'");
    EXPECT_EQ(shown(call(u"GetRegistryK_do_wersji12", {u"", u"c", 5})), "'3'");
    EXPECT_EQ(shown(call(u"GetRegistryK", {u"", u"c", 5})), "Empty");
    EXPECT_TRUE(is_empty(call(u"DeleteValue", {HKEY_CURRENT_USER, u"Inne", u"d"})));
    EXPECT_TRUE(is_empty(call(u"DeleteKey", {HKEY_CURRENT_USER, u"Inne"})));
    EXPECT_FALSE(fake.registry.keys.contains({HKEY_CURRENT_USER, u"Inne"}));
    EXPECT_THROW(call(u"GetRegistry", {Variant::null(), 4}), Failure);
    EXPECT_THROW(call(u"DeleteKey", {u"x", u"Inne"}), Failure);
    EXPECT_THROW(call(u"GetRegistry", {u"a"}), WrongArgumentCount);
}

TEST(LateBound, BareNames) {
    FakePlatform fake;
    bare::SaveRegistry(u"a", u"1", 4);
    bare::SaveRegistryK(u"K", u"b", u"2", 4);
    bare::SaveRegistryK_do_wersji12(u"", u"c", u"3", 6);
    bare::Savekey(HKEY_CURRENT_USER, u"Inne", u"d", u"4");
    EXPECT_EQ(shown(bare::GetRegistry(u"a", 4)), "'1'");
    EXPECT_EQ(shown(bare::GetRegistryK(u"K", u"b", 4)), "'2'");
    EXPECT_EQ(shown(bare::GetRegistryK_do_wersji12(u"", u"c", 6)), "'3'");
    EXPECT_TRUE(is_empty(bare::DeleteValue(HKEY_CURRENT_USER, u"Inne", u"d")));
    EXPECT_TRUE(is_empty(bare::DeleteKey(HKEY_CURRENT_USER, u"Inne")));
    EXPECT_FALSE(fake.registry.keys.contains({HKEY_CURRENT_USER, u"Inne"}));
}

}  // namespace
}  // namespace kvarta16::registry_tests
