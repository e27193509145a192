// What a host asks of the library as a whole, and the block of data of each thread.

#include <thread>

#include <gtest/gtest.h>

#include <kvarta16/frame/amain.h>
#include <kvarta16/frame/amian.h>

#include "frame_support.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;

TEST(Amain, TellsTheVersionOfTheBuild) {
    EXPECT_EQ(amain().VersjaLib(), u"1.0.9999.kvarta16");
}

TEST(Amain, JoinsTheFourPartsWithoutLeadingZeros) {
    const ApplicationInfo& info = amian::application_info();
    EXPECT_EQ(info.major_number, 1);
    EXPECT_EQ(info.minor_number, 0);
    EXPECT_EQ(info.revision_number, 9999);
    EXPECT_EQ(info.component_name, u"kvarta16");
    EXPECT_EQ(amain().VersjaLib(), wide(std::to_string(info.major_number)) + u"." +
                                       wide(std::to_string(info.minor_number)) + u"." +
                                       wide(std::to_string(info.revision_number)) + u"." +
                                       info.component_name);
}

TEST(Amain, AsksTheApplicationObjectOfTheThread) {
    amian::data().application =
        std::make_unique<ApplicationInfo>(ApplicationInfo{2, 7, 5, u"another"});
    EXPECT_EQ(amain().VersjaLib(), u"2.7.5.another");
    amian::data().application.reset();
    EXPECT_EQ(amain().VersjaLib(), u"1.0.9999.kvarta16");
}

TEST(Amian, MakesTheApplicationObjectAtItsFirstUse) {
    std::thread([] {
        EXPECT_EQ(amian::data().application, nullptr);
        EXPECT_EQ(amian::data().dao_engine, nullptr);
        const ApplicationInfo* first = &amian::application_info();
        EXPECT_EQ(amian::data().application.get(), first);
        EXPECT_EQ(&amian::application_info(), first);
        amian::data().application.reset();
        static_cast<void>(amian::application_info());
        EXPECT_NE(amian::data().application, nullptr);
    }).join();
}

TEST(Amian, BelongsToTheThread) {
    const amian* here = &amian::data();
    const ApplicationInfo* info_here = &amian::application_info();
    EXPECT_EQ(&amian::data(), here);
    std::thread([&] {
        EXPECT_NE(&amian::data(), here);
        EXPECT_NE(&amian::application_info(), info_here);
    }).join();
    EXPECT_EQ(&amian::application_info(), info_here);
}

// ---- Instances --------------------------------------------------------------------------------

class Counted {
  public:
    Counted() { ++alive; }
    ~Counted() { --alive; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    static inline thread_local int alive = 0;
    int calls = 0;
};

}  // namespace

template <>
struct ClassTable<Counted> {
    static constexpr ClassHeader header{u"Counted", Instancing::Global, "", ""};
};

namespace {

TEST(Instance, IsMadeOnTheThreadAtItsFirstUse) {
    std::thread([] {
        EXPECT_EQ(Counted::alive, 0);
        Counted& first = instance<Counted>();
        EXPECT_EQ(Counted::alive, 1);
        first.calls = 3;
        EXPECT_EQ(&instance<Counted>(), &first);
        EXPECT_EQ(instance<Counted>().calls, 3);
        EXPECT_EQ(Counted::alive, 1);
        std::thread([&first] {
            EXPECT_NE(&instance<Counted>(), &first);
            EXPECT_EQ(instance<Counted>().calls, 0);
        }).join();
    }).join();
}

}  // namespace
}  // namespace kvarta16
