// The end of a recordset: the caller's variable is empty afterwards, whatever the closing comes to.
#include <support/memory_ado.h>

#include <kvarta16/frame/globals.h>
#include <kvarta16/platform/forwarding.h>

#include "dates_support.h"

namespace kvarta16::dates_tests {
namespace {

using testing_support::MemoryConnection;

class EndOfRecordset : public testing::Test {
  protected:
    EndOfRecordset() { recordset->Open(u"select [a] from T", db, {}, {}, ado::adCmdUnspecified); }

    std::shared_ptr<MemoryConnection> db = std::make_shared<MemoryConnection>();
    std::shared_ptr<ado::Recordset> recordset = db->CreateRecordset();
};

TEST_F(EndOfRecordset, ClosesAndEmptiesTheVariable) {
    simple().DbCloseSEL(recordset);
    EXPECT_EQ(recordset, nullptr);
    EXPECT_EQ(db->calls("Close"), 1U);
    EXPECT_EQ(db->recordsets_alive, 0);
}

TEST_F(EndOfRecordset, TwiceOnTheSameVariable) {
    simple().DbCloseSEL(recordset);
    EXPECT_NO_THROW(simple().DbCloseSEL(recordset));
    EXPECT_EQ(recordset, nullptr);
    EXPECT_EQ(db->calls("Close"), 1U);
}

TEST_F(EndOfRecordset, OfOneThatIsClosedAlready) {
    recordset->Close();
    EXPECT_NO_THROW(simple().DbCloseSEL(recordset));
    EXPECT_EQ(recordset, nullptr);
    EXPECT_EQ(db->calls("Close"), 2U);
}

TEST_F(EndOfRecordset, AnotherHolderKeepsTheClosedRecordset) {
    const std::shared_ptr<ado::Recordset> other = recordset;
    simple().DbCloseSEL(recordset);
    EXPECT_EQ(db->recordsets_alive, 1);
    EXPECT_THROW(static_cast<void>(other->IsEOF()), Failure);
}

TEST_F(EndOfRecordset, ByItsBareName) {
    bare::DbCloseSEL(recordset);
    EXPECT_EQ(recordset, nullptr);
}

TEST_F(EndOfRecordset, WhoseClosingFails) {
    const auto plan = std::make_shared<FaultPlan>();
    std::shared_ptr<ado::Recordset> faulty = faulting(db, plan)->CreateRecordset();
    plan->fail_at("Recordset.Close", 1, FaultSpan::Once, -2147217900);
    EXPECT_NO_THROW(simple().DbCloseSEL(faulty));
    EXPECT_EQ(faulty, nullptr);
}

TEST_F(EndOfRecordset, ALateBoundCallersVariableIsNothing) {
    const MemberInfo& member = ClassTable<aproste>::members.back();
    ASSERT_EQ(show(member.name), show(u"DbCloseSEL"));
    aproste object;
    ObjectPointer variable = recordset;
    Arguments by_reference{Variant::reference(variable)};
    invoke(member, &object, by_reference);
    EXPECT_EQ(variable, nullptr);
    Arguments by_value{Variant(ObjectPointer(recordset))};
    invoke(member, &object, by_value);
    EXPECT_EQ(by_value[0], Variant(ObjectPointer()));
    Arguments connection{Variant(ObjectPointer(db))};
    EXPECT_THROW(invoke(member, &object, connection), Failure);  // no recordset
}

}  // namespace
}  // namespace kvarta16::dates_tests
