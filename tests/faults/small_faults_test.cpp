// The members of the other classes that show a box, pause or read the clock. None catches a
// failure of these: it passes.
#include <gtest/gtest.h>

#include <kvarta16/dates/aDaty.h>
#include <kvarta16/dates/aproste.h>
#include <kvarta16/hr/Class1.h>
#include <kvarta16/hr/Kadry.h>
#include <kvarta16/numbers/aLiczby.h>

#include "fault_loop.h"

namespace kvarta16::fault_tests {
namespace {

class SmallFaults : public testing::TestWithParam<Scenario> {};

TEST_P(SmallFaults, EndAsDocumented) {
    check(GetParam());
}

Scenario member(const char* name, const std::string& result, const std::string& shown,
                std::function<std::string()> call) {
    return {.name = name,
            .discipline = Discipline::Strict,
            .good = result + " / " + shown,
            .run = [call = std::move(call)](FaultBench&) { return call(); },
            .written = boxes_of,
            .exceptions = {{"MessageBoxes.MsgBox", passes + " / "},
                           {"Clock.Now", passes + " / "},
                           {"Sleeper.Sleep", passes + " / "}}};
}

// Of the three places the one that the member asks.
Scenario asking(const char* place, Scenario scenario) {
    std::erase_if(scenario.exceptions, [place](const Exception& e) { return e.place != place; });
    return scenario;
}

constexpr const char* box = "MessageBoxes.MsgBox";
constexpr const char* now = "Clock.Now";
constexpr const char* sleep = "Sleeper.Sleep";

const std::string calendar_ends =
    " box: DANE KALENDARZA DLA LAT > 2030  NIE SĄ USTAWIONE (Święta Ruchome) Proszę o kontakt z "
    "firmą ZEVO!";

const Scenario scenarios[] = {
    asking(box, member("Class1.Spr_PESEL", "0", " box: 13",
                       [] { return told(Class1().Spr_PESEL(u"x")); })),
    asking(box,
           member("Class1.Spr_NIP", "0", " box: 13", [] { return told(Class1().Spr_NIP(u"x")); })),
    asking(box, member("Kadry.PodajDzień", "3", calendar_ends,
                       [] { return told(Kadry().PodajDzień(MakeDate(2035, 5, 17), true)); })),
    asking(box, member("aLiczby.Var2Val18Str", "", " box: Var2Val18Str Nie używana",
                       [] { return told(aLiczby().Var2Val18Str(1)); })),
    asking(box, member("aLiczby.VarValR0Str", "", " box: VarValR0Str nie używana",
                       [] { return told(aLiczby().VarValR0Str(1)); })),
    asking(box, member("aLiczby.VarR0TnijStr", "", " box: VarR0TnijStr nie używana",
                       [] { return told(aLiczby().VarR0TnijStr(1)); })),
    asking(box, member("aLiczby.VarValRMStr", "", " box: VarValRMStr nIE UŻYWANA",
                       [] { return told(aLiczby().VarValRMStr(1, u"0")); })),
    asking(box, member("aLiczby.Zaokr", "0", " box: Zaokr nie używana",
                       [] { return told(aLiczby().Zaokr(1)); })),
    asking(now, member("aDaty.ToDayMonth", "2024-05-17 00:00", "",
                       [] { return told(aDaty().ToDayMonth()); })),
    asking(now, member("aproste.DateSerialSpr", "2024-05-31 00:00", "",
                       [] { return told(aproste().DateSerialSpr(20000, 1, 1, true)); })),
    asking(now, member("aproste.FlexStr2DateNOW", "2024-05-17 00:00", "",
                       [] { return told(aproste().FlexStr2DateNOW(u"x")); })),
    asking(now, member("aproste.FormatSD", "2024-05-17 00:00", "",
                       [] { return told(aproste().FormatSD(u"x", u"yyyy-MM-dd", true)); })),
    asking(sleep, member("aproste.CzekajSek", "done", "",
                         [] {
                             aproste().CzekajSek(2);
                             return std::string("done");
                         })),
};

INSTANTIATE_TEST_SUITE_P(Members, SmallFaults, testing::ValuesIn(scenarios));

}  // namespace
}  // namespace kvarta16::fault_tests
