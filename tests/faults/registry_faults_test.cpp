// aregistry: every member at every fault. The platform answers by a status, so that no failure is
// raised anywhere: a reading gives Empty, a writing leaves no sign. A reading leaves its key open.
#include <gtest/gtest.h>

#include "fault_loop.h"

namespace kvarta16::fault_tests {
namespace {

constexpr FaultSpan once = FaultSpan::Once;
constexpr FaultSpan for_good = FaultSpan::FromThenOn;

constexpr const char16_t* suite_key = u"Software\\ZEVO";
constexpr const char16_t* sub_key = u"Software\\ZEVO\\Wydruki";

void furnish(FaultBench& b) {
    b.fake.registry.keys[{HKEY_CURRENT_USER, suite_key}][u"Drukarka"] = {REG_SZ, u"Biuro"};
    b.fake.registry.keys[{HKEY_CURRENT_USER, sub_key}][u"Drukarka"] = {REG_SZ, u"Magazyn"};
}

std::string stored(FaultBench& b) {
    const auto text_at = [&](const char16_t* key) {
        const auto place = b.fake.registry.keys.find({HKEY_CURRENT_USER, key});
        if (place == b.fake.registry.keys.end()) {
            return std::string("no key");
        }
        const auto value = place->second.find(u"Drukarka");
        return value == place->second.end() ? "-" : told(value->second.data);
    };
    return text_at(suite_key) + ", " + text_at(sub_key);
}

const std::string key_open = " | open: keys 1";

Scenario reading(const char* name, const char* value, std::function<Variant(aregistry&)> read) {
    return {
        .name = name,
        .discipline = Discipline::Guarded,
        .good = value + key_open,
        .prepared = "Empty" + key_open,
        .prepare = furnish,
        .run = [read = std::move(read)](FaultBench& b) { return told(read(b.subjects.registry)); },
        .exceptions = {{"Registry.RegOpenKeyA", "Empty"}}};
}

// On an object that has read a text before, which is remembered as the type.
Scenario reading_again() {
    Scenario scenario = reading(
        "aregistry.GetRegistryK, again", "Magazyn",
        [](aregistry& settings) { return settings.GetRegistryK(u"Wydruki", u"Drukarka", 4); });
    scenario.prepare = [](FaultBench& b) {
        furnish(b);
        static_cast<void>(b.subjects.registry.GetRegistry(u"Drukarka", 4));
    };
    for (std::string* text : {&scenario.good, &scenario.prepared}) {
        text->replace(text->find("keys 1"), 6, "keys 2");
    }
    return scenario;
}

// `written` is what stands in the registry where all goes well.
Scenario writing(const char* name, const std::string& written, const std::string& not_written,
                 const std::string& without_key, std::function<void(aregistry&)> write) {
    return {
        .name = name,
        .discipline = Discipline::Tolerant,
        .good = "done / " + written,
        .prepare = furnish,
        .run =
            [write = std::move(write)](FaultBench& b) {
                write(b.subjects.registry);
                return std::string("done");
            },
        .written = stored,
        .exceptions = {{"Registry.RegCreateKeyA", "done / " + without_key},
                       {"Registry.RegSetValueExA", "done / " + not_written, once},
                       {"Registry.RegSetValueExA", "done / " + not_written + key_open, for_good},
                       {"Registry.RegCloseKey", good + key_open}}};
}

const std::string untouched = "Biuro, Magazyn";

const Scenario scenarios[] = {
    reading("aregistry.GetRegistry", "Biuro",
            [](aregistry& settings) { return settings.GetRegistry(u"Drukarka", 4); }),
    reading("aregistry.GetRegistryK", "Magazyn",
            [](aregistry& settings) { return settings.GetRegistryK(u"Wydruki", u"Drukarka", 4); }),
    reading("aregistry.GetRegistryK_do_wersji12", "Magazyn",
            [](aregistry& settings) {
                return settings.GetRegistryK_do_wersji12(u"Wydruki", u"Drukarka", 4);
            }),
    reading_again(),
    writing("aregistry.SaveRegistry", "Nowa, Magazyn", untouched, untouched,
            [](aregistry& settings) { settings.SaveRegistry(u"Drukarka", u"Nowa", 4); }),
    writing(
        "aregistry.SaveRegistryK", "Biuro, Nowa", untouched, untouched,
        [](aregistry& settings) { settings.SaveRegistryK(u"Wydruki", u"Drukarka", u"Nowa", 4); }),
    writing("aregistry.SaveRegistryK_do_wersji12", "Biuro, Nowa", untouched, untouched,
            [](aregistry& settings) {
                settings.SaveRegistryK_do_wersji12(u"Wydruki", u"Drukarka", u"Nowa", 4);
            }),
    writing("aregistry.Savekey", "Biuro, Nowa", untouched, untouched,
            [](aregistry& settings) {
                settings.Savekey(HKEY_CURRENT_USER, sub_key, u"Drukarka", u"Nowa");
            }),
    {.name = "aregistry.DeleteKey",
     .discipline = Discipline::Guarded,
     .good = "Empty / Biuro, no key",
     .prepared = "Empty / " + untouched,
     .prepare = furnish,
     .run =
         [](FaultBench& b) {
             return told(b.subjects.registry.DeleteKey(HKEY_CURRENT_USER, sub_key));
         },
     .written = stored},
    {.name = "aregistry.DeleteValue",
     .discipline = Discipline::Guarded,
     .good = "Empty / Biuro, -",
     .prepared = "Empty / " + untouched,
     .prepare = furnish,
     .run =
         [](FaultBench& b) {
             return told(b.subjects.registry.DeleteValue(HKEY_CURRENT_USER, sub_key, u"Drukarka"));
         },
     .written = stored,
     .exceptions = {{"Registry.RegDeleteValueA", prepared + key_open, for_good},
                    {"Registry.RegCloseKey", good + key_open}}},
};

class RegistryFaults : public testing::TestWithParam<Scenario> {};

TEST_P(RegistryFaults, EndAsDocumented) {
    check(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Members, RegistryFaults, testing::ValuesIn(scenarios));

}  // namespace
}  // namespace kvarta16::fault_tests
