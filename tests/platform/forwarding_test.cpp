// The wrappers of the seams: that they pass everything on, that one call can be overridden, and
// that a fault plan hits the call it is told to hit and no other.

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <support/fake_dao.h>
#include <support/fake_platform.h>
#include <support/memory_ado.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/forwarding.h>

namespace kvarta16 {
namespace {

using testing_support::MemoryConnection;
using testing_support::MemoryDatabase;
using testing_support::MemoryDisk;
using testing_support::MemoryEngine;
using testing_support::MemoryFiles;
using testing_support::RecordingBoxes;
using testing_support::RecordingSleeper;
using testing_support::SettableClock;
using ConnectionPointer = std::shared_ptr<ado::Connection>;
using RecordsetPointer = std::shared_ptr<ado::Recordset>;

constexpr StringView statement = u"select [a],[b] from T";

RecordsetPointer opened(const ConnectionPointer& db) {
    RecordsetPointer recordset = db->CreateRecordset();
    recordset->Open(statement, db, ado::CursorType::adOpenStatic, ado::LockType::adLockOptimistic,
                    ado::adCmdUnspecified);
    return recordset;
}

// Every operation of the three ADO objects at least once, with what they answer.
std::vector<Variant> walk(const ConnectionPointer& db) {
    std::vector<Variant> answers;
    db->BeginTrans();
    {
        const RecordsetPointer recordset = opened(db);
        answers.emplace_back(recordset->IsEOF());
        recordset->AddNew();
        recordset->Fields(Integer{0}).PutValue(Integer{7});
        recordset->Fields(u"B").PutValue(u"text");
        answers.push_back(recordset->Fields(Long{1}).Value());
        answers.emplace_back(recordset->Fields(Integer{0}).Name());
        recordset->UpdateBatch(ado::Affect::adAffectCurrent);
        recordset->MoveNext();
        answers.emplace_back(recordset->IsEOF());
        recordset->Close();
    }
    db->CommitTrans();
    db->BeginTrans();
    db->RollbackTrans();
    db->Close();
    return answers;
}

template <class Call>
Long failure_of(Call&& call) {
    try {
        call();
    } catch (const Failure& failure) {
        return failure.number();
    }
    return 0;
}

// ---- Passing on -----------------------------------------------------------------------------

TEST(Forwarding, PassesEveryCallOnWithItsArguments) {
    const auto direct = std::make_shared<MemoryConnection>();
    const std::vector<Variant> expected = walk(direct);

    const auto behind = std::make_shared<MemoryConnection>();
    EXPECT_EQ(walk(std::make_shared<ado::ForwardingConnection>(behind)), expected);
    EXPECT_EQ(behind->log, direct->log);
    EXPECT_EQ(behind->rows, direct->rows);
    EXPECT_EQ(behind->recordsets_alive, 0);
    EXPECT_EQ(expected, (std::vector<Variant>{true, u"text", u"a", true}));
}

TEST(Forwarding, WrappersStandAroundWrappers) {
    const auto direct = std::make_shared<MemoryConnection>();
    const std::vector<Variant> expected = walk(direct);

    const auto behind = std::make_shared<MemoryConnection>();
    const auto middle = faulting(behind, std::make_shared<FaultPlan>());
    EXPECT_EQ(walk(std::make_shared<ado::ForwardingConnection>(middle)), expected);
    EXPECT_EQ(behind->log, direct->log);
}

TEST(Forwarding, RecordsetTakesTheConnectionBehindToo) {
    const auto behind = std::make_shared<MemoryConnection>();
    const auto wrapper = std::make_shared<ado::ForwardingConnection>(behind);
    const RecordsetPointer recordset = wrapper->CreateRecordset();
    recordset->Open(statement, behind, ado::CursorType::adOpenStatic,
                    ado::LockType::adLockOptimistic, ado::adCmdUnspecified);
    EXPECT_TRUE(recordset->IsEOF());
}

TEST(Forwarding, PassesNothingOnAsNothing) {
    const auto behind = std::make_shared<MemoryConnection>();
    const RecordsetPointer recordset = ado::ForwardingConnection(behind).CreateRecordset();
    const auto open = [&] {
        recordset->Open(statement, nullptr, ado::CursorType::adOpenStatic,
                        ado::LockType::adLockOptimistic, ado::adCmdUnspecified);
    };
    EXPECT_EQ(failure_of(open), ado::error_invalid_connection);
}

TEST(Forwarding, FieldIsOneObjectHoweverItIsAskedFor) {
    const auto db =
        std::make_shared<ado::ForwardingConnection>(std::make_shared<MemoryConnection>());
    const RecordsetPointer recordset = opened(db);
    ado::Field* first = &recordset->Fields(Integer{0});
    EXPECT_EQ(&recordset->Fields(Long{0}), first);
    EXPECT_EQ(&recordset->Fields(u"A"), first);
    EXPECT_NE(&recordset->Fields(u"b"), first);
}

TEST(Forwarding, FailureOfTheObjectBehindPasses) {
    const auto behind = std::make_shared<MemoryConnection>();
    const auto db = std::make_shared<ado::ForwardingConnection>(behind);
    const RecordsetPointer recordset = opened(db);
    EXPECT_EQ(failure_of([&] { static_cast<void>(recordset->Fields(u"c")); }),
              ado::error_item_not_found);
    db->Close();
    EXPECT_EQ(failure_of([&] { static_cast<void>(db->CreateRecordset()); }),
              ado::error_object_closed);
}

TEST(Forwarding, BoxesClockAndPauses) {
    RecordingBoxes boxes;
    boxes.answers = {MsgBoxResult::Yes};
    ForwardingBoxes forwarding_boxes(boxes);
    EXPECT_EQ(forwarding_boxes.MsgBox(u"text", 36, u"title"), MsgBoxResult::Yes);
    EXPECT_EQ(forwarding_boxes.MsgBox(u"other", 36, std::nullopt), MsgBoxResult::No);
    ASSERT_EQ(boxes.shown.size(), 2U);
    EXPECT_EQ(boxes.shown[0].text, u"text");
    EXPECT_EQ(boxes.shown[0].style, 36);
    EXPECT_EQ(boxes.shown[0].title, u"title");
    EXPECT_EQ(boxes.shown[1].title, std::nullopt);

    SettableClock clock;
    clock.now = Date{36892.25};
    EXPECT_EQ(ForwardingClock(clock).Now(), Date{36892.25});

    RecordingSleeper sleeper;
    ForwardingSleeper(sleeper).Sleep(250);
    EXPECT_EQ(sleeper.sleeps, std::vector<Long>{250});
}

// ---- Files and database files -----------------------------------------------------------------

constexpr StringView mdb_path = u"C:\\firma.mdb";

void add_firma(MemoryDisk& disk) {
    disk.add_database(mdb_path).add_table(u"towary", {{u"cena", dao::dbCurrency, 8}});
}

// Every operation of the files and of the engine's objects at least once, with what they answer.
std::vector<Variant> walk(Files& files, dao::DBEngine& engine) {
    std::vector<Variant> answers;
    const auto note = [&answers](const Variant& answer) { answers.push_back(answer); };
    note(files.GetAttr(mdb_path));
    static_cast<void>(engine.CreateDatabase(u"C:\\nowa.mdb", u";CP=1250"));
    files.Kill(u"C:\\nowa.mdb");
    note(from_utf8(files.native_path(mdb_path)));
    const auto db = engine.OpenDatabase(mdb_path);
    const auto table = db->TableDefs().at(0);
    note(table->Name());
    table->PutName(u"TOWARY");
    const auto fields = table->Fields();
    note(fields->Count());
    const auto field = fields->Item(0);
    note(field->Name());
    note(field->Type());
    note(field->Size());
    field->PutDefaultValue(Integer{0});
    note(field->DefaultValue());
    field->PutAllowZeroLength(true);
    note(field->AllowZeroLength());
    db->Execute(u"drop table [x]");
    db->Close();
    return answers;
}

// Wrappers all the way down, each of them nothing but a wrapper.
class WrappedTableDef final : public dao::ForwardingTableDef {
  public:
    using ForwardingTableDef::ForwardingTableDef;
    std::shared_ptr<dao::Fields> Fields() override {
        class Wrapped final : public dao::ForwardingFields {
          public:
            using ForwardingFields::ForwardingFields;
            std::shared_ptr<dao::Field> Item(Long index) override {
                return std::make_shared<dao::ForwardingField>(ForwardingFields::Item(index));
            }
        };
        return std::make_shared<Wrapped>(ForwardingTableDef::Fields());
    }
};

class WrappedDatabase final : public dao::ForwardingDatabase {
  public:
    using ForwardingDatabase::ForwardingDatabase;
    std::vector<std::shared_ptr<dao::TableDef>> TableDefs() override {
        auto tables = ForwardingDatabase::TableDefs();
        for (auto& table : tables) {
            table = std::make_shared<WrappedTableDef>(std::move(table));
        }
        return tables;
    }
};

class WrappedEngine final : public dao::ForwardingEngine {
  public:
    using ForwardingEngine::ForwardingEngine;
    std::shared_ptr<dao::Database> OpenDatabase(StringView name) override {
        return std::make_shared<WrappedDatabase>(ForwardingEngine::OpenDatabase(name));
    }
};

TEST(Forwarding, PassesEveryCallOfFilesAndEngineOn) {
    MemoryDisk direct;
    add_firma(direct);
    MemoryFiles direct_files(direct);
    MemoryEngine direct_engine(direct);
    const std::vector<Variant> expected = walk(direct_files, direct_engine);
    EXPECT_EQ(expected,
              (std::vector<Variant>{file_attribute::archive, mdb_path, u"towary", Integer{1},
                                    u"cena", dao::dbCurrency, Long{8}, Integer{0}, true}));
    MemoryDisk behind;
    add_firma(behind);
    MemoryFiles files(behind);
    MemoryEngine engine(behind);
    ForwardingFiles wrapped_files(files);
    WrappedEngine wrapped_engine(engine);
    EXPECT_EQ(walk(wrapped_files, wrapped_engine), expected);
    EXPECT_EQ(behind.log, direct.log);

    MemoryDisk faultless;
    add_firma(faultless);
    MemoryFiles plain_files(faultless);
    MemoryEngine plain_engine(faultless);
    const auto plan = std::make_shared<FaultPlan>();
    EXPECT_EQ(walk(*faulting(plain_files, plan), *faulting(plain_engine, plan)), expected);
    EXPECT_EQ(faultless.log, direct.log);
}

// A connection of two seams.
class TwofoldConnection final : public ado::ForwardingConnection, public MemoryDatabase {
  public:
    TwofoldConnection(std::shared_ptr<ado::Connection> connection, const MemoryDatabase* database)
        : ForwardingConnection(std::move(connection)), MemoryDatabase(database) {}
};

TEST(Forwarding, ConnectionThatIsAlsoADatabaseStaysBothAndOneObject) {
    MemoryDisk disk;
    add_firma(disk);
    MemoryEngine engine(disk);
    const auto memory = std::dynamic_pointer_cast<MemoryDatabase>(engine.OpenDatabase(mdb_path));
    const auto behind = std::make_shared<MemoryConnection>();
    const auto plan = std::make_shared<FaultPlan>();
    const ConnectionPointer db = faulting(
        ConnectionPointer(std::make_shared<TwofoldConnection>(behind, memory.get())), plan);
    const auto database = std::dynamic_pointer_cast<dao::Database>(db);
    ASSERT_NE(database, nullptr);
    EXPECT_EQ(ObjectPointer(db), ObjectPointer(database));
    database->Execute(u"drop table [x]");
    EXPECT_EQ(disk.statements, std::vector<String>{u"drop table [x]"});
    EXPECT_EQ(database->TableDefs().size(), 1U);
    static_cast<void>(db->CreateRecordset());
    EXPECT_EQ(behind->calls("CreateRecordset"), 1U);
    plan->fail_at("Execute", 1, FaultSpan::Once, 70);
    EXPECT_EQ(failure_of([&] { database->Execute(u"drop table [x]"); }), 70);
    // A connection that is no database does not become one.
    EXPECT_EQ(std::dynamic_pointer_cast<dao::Database>(faulting(ConnectionPointer(behind), plan)),
              nullptr);
}

// ---- Overriding one call --------------------------------------------------------------------

class RoundingField final : public ado::ForwardingField {
  public:
    using ForwardingField::ForwardingField;
    void PutValue(const Variant& value) override {
        ForwardingField::PutValue(RoundHalfEven(value, 0));
    }
};

class RoundingRecordset final : public ado::ForwardingRecordset {
  public:
    using ForwardingRecordset::ForwardingRecordset;

  protected:
    std::unique_ptr<ado::Field> wrap(ado::Field& field) override {
        return std::make_unique<RoundingField>(field);
    }
};

class RoundingConnection final : public ado::ForwardingConnection {
  public:
    using ForwardingConnection::ForwardingConnection;
    RecordsetPointer CreateRecordset() override {
        return std::make_shared<RoundingRecordset>(target()->CreateRecordset());
    }
};

TEST(Forwarding, OneCallOfAFieldCanBeOverridden) {
    const auto behind = std::make_shared<MemoryConnection>();
    const auto db = std::make_shared<RoundingConnection>(behind);
    const RecordsetPointer recordset = opened(db);
    recordset->AddNew();
    recordset->Fields(u"a").PutValue(Currency::raw(26000));
    recordset->UpdateBatch(ado::Affect::adAffectCurrent);
    EXPECT_EQ(behind->rows[String(statement)][0][0], Variant(Currency::raw(30000)));
}

// ---- Faults ---------------------------------------------------------------------------------

// Everything that a plan covers, ready for any operation to be called.
struct Covered {
    std::shared_ptr<MemoryConnection> behind = std::make_shared<MemoryConnection>();
    std::shared_ptr<FaultPlan> plan = std::make_shared<FaultPlan>();
    ConnectionPointer db = faulting(behind, plan);
    RecordsetPointer recordset = opened(db);
    ado::Field& field = with_row(*recordset);
    RecordingBoxes recording_boxes;
    SettableClock settable_clock;
    RecordingSleeper recording_sleeper;
    std::unique_ptr<MessageBoxes> boxes = faulting(recording_boxes, plan);
    std::unique_ptr<Clock> clock = faulting(settable_clock, plan);
    std::unique_ptr<Sleeper> sleeper = faulting(recording_sleeper, plan);
    MemoryDisk disk = with_firma();
    MemoryFiles memory_files{disk};
    MemoryEngine memory_engine{disk};
    std::unique_ptr<Files> files = faulting(memory_files, plan);
    std::unique_ptr<dao::DBEngine> engine = faulting(memory_engine, plan);
    std::shared_ptr<dao::Database> mdb = engine->OpenDatabase(mdb_path);
    std::shared_ptr<dao::TableDef> table = mdb->TableDefs().at(0);
    std::shared_ptr<dao::Fields> columns = table->Fields();
    std::shared_ptr<dao::Field> column = columns->Item(0);

    static MemoryDisk with_firma() {
        MemoryDisk disk;
        add_firma(disk);
        return disk;
    }
    static ado::Field& with_row(ado::Recordset& recordset) {
        recordset.AddNew();
        return recordset.Fields(u"a");
    }
};

// An operation, and a call of it that succeeds and can be repeated. A `before` puts the objects in
// a state in which it can.
struct OperationCase {
    std::string object;
    std::string name;
    std::function<void(Covered&)> call;
    std::function<void(Covered&)> before = [](Covered&) {};
};

void PrintTo(const OperationCase& operation, std::ostream* out) {
    *out << operation.object << "." << operation.name;
}

const std::vector<OperationCase>& operation_cases() {
    const auto reopen = [](Covered& c) {
        // Past the plan: on the recordset behind, a new one each time.
        c.recordset = c.db->CreateRecordset();
    };
    const auto open = [](Covered& c) {
        c.recordset->Open(statement, c.db, ado::CursorType::adOpenStatic,
                          ado::LockType::adLockOptimistic, ado::adCmdUnspecified);
    };
    static const std::vector<OperationCase> cases = {
        {"Connection", "CreateRecordset",
         [](Covered& c) { c.recordset = c.db->CreateRecordset(); }},
        {"Connection", "BeginTrans", [](Covered& c) { c.db->BeginTrans(); },
         [](Covered& c) { static_cast<void>(failure_of([&] { c.behind->RollbackTrans(); })); }},
        {"Connection", "CommitTrans", [](Covered& c) { c.db->CommitTrans(); },
         [](Covered& c) { static_cast<void>(failure_of([&] { c.behind->BeginTrans(); })); }},
        {"Connection", "RollbackTrans", [](Covered& c) { c.db->RollbackTrans(); },
         [](Covered& c) { static_cast<void>(failure_of([&] { c.behind->BeginTrans(); })); }},
        {"Connection", "Close", [](Covered& c) { c.db->Close(); },
         [](Covered& c) { c.behind->is_open = true; }},
        {"Recordset", "Open", open, reopen},
        {"Recordset", "EOF", [](Covered& c) { static_cast<void>(c.recordset->IsEOF()); }},
        {"Recordset", "AddNew", [](Covered& c) { c.recordset->AddNew(); }},
        {"Recordset", "Fields", [](Covered& c) { static_cast<void>(c.recordset->Fields(u"a")); }},
        {"Recordset", "UpdateBatch",
         [](Covered& c) { c.recordset->UpdateBatch(ado::Affect::adAffectCurrent); }},
        {"Recordset", "MoveNext", [](Covered& c) { c.recordset->MoveNext(); }},
        {"Recordset", "Close", [](Covered& c) { c.recordset->Close(); },
         [reopen, open](Covered& c) {
             reopen(c);
             open(c);
         }},
        {"Field", "Name", [](Covered& c) { static_cast<void>(c.field.Name()); }},
        {"Field", "Value", [](Covered& c) { static_cast<void>(c.field.Value()); }},
        {"Field", "Value", [](Covered& c) { c.field.PutValue(Integer{1}); }},
        {"MessageBoxes", "MsgBox",
         [](Covered& c) { static_cast<void>(c.boxes->MsgBox(u"text", 0, std::nullopt)); }},
        {"Clock", "Now", [](Covered& c) { static_cast<void>(c.clock->Now()); }},
        {"Sleeper", "Sleep", [](Covered& c) { c.sleeper->Sleep(1); }},
        {"Files", "GetAttr", [](Covered& c) { static_cast<void>(c.files->GetAttr(mdb_path)); }},
        {"Files", "Kill", [](Covered& c) { c.files->Kill(u"C:\\x"); },
         [](Covered& c) { c.disk.add(u"C:\\x"); }},
        {"DBEngine", "CreateDatabase",
         [](Covered& c) { static_cast<void>(c.engine->CreateDatabase(u"C:\\x", u"")); },
         [](Covered& c) { c.disk.remove(u"C:\\x"); }},
        {"DBEngine", "OpenDatabase",
         [](Covered& c) { static_cast<void>(c.engine->OpenDatabase(mdb_path)); }},
        {"Database", "TableDefs", [](Covered& c) { static_cast<void>(c.mdb->TableDefs()); }},
        {"Database", "Execute", [](Covered& c) { c.mdb->Execute(u"drop table [x]"); }},
        {"Database", "Close", [](Covered& c) { c.mdb->Close(); },
         [](Covered& c) { c.mdb = c.engine->OpenDatabase(mdb_path); }},
        {"TableDef", "Name", [](Covered& c) { static_cast<void>(c.table->Name()); }},
        {"TableDef", "Name", [](Covered& c) { c.table->PutName(u"X"); }},
        {"TableDef", "Fields", [](Covered& c) { static_cast<void>(c.table->Fields()); }},
        {"Fields", "Count", [](Covered& c) { static_cast<void>(c.columns->Count()); }},
        {"Fields", "Item", [](Covered& c) { static_cast<void>(c.columns->Item(0)); }},
        {"Field", "Name", [](Covered& c) { static_cast<void>(c.column->Name()); }},
        {"Field", "Type", [](Covered& c) { static_cast<void>(c.column->Type()); }},
        {"Field", "Size", [](Covered& c) { static_cast<void>(c.column->Size()); }},
        {"Field", "DefaultValue", [](Covered& c) { static_cast<void>(c.column->DefaultValue()); }},
        {"Field", "DefaultValue", [](Covered& c) { c.column->PutDefaultValue(Integer{0}); }},
        {"Field", "AllowZeroLength",
         [](Covered& c) { static_cast<void>(c.column->AllowZeroLength()); }},
        {"Field", "AllowZeroLength", [](Covered& c) { c.column->PutAllowZeroLength(true); }},
    };
    return cases;
}

class EachOperation : public testing::TestWithParam<OperationCase> {
  protected:
    // The failures of five calls in a row, 0 for those that succeed.
    static std::vector<Long> failures_of_five(Covered& covered) {
        std::vector<Long> failures;
        for (int i = 0; i < 5; ++i) {
            GetParam().before(covered);
            failures.push_back(failure_of([&] { GetParam().call(covered); }));
        }
        return failures;
    }
    // What has reached the objects behind the plan.
    static std::size_t passed_on(const Covered& covered) {
        return covered.behind->log.size() + covered.disk.log.size() +
               covered.recording_boxes.shown.size() + covered.recording_sleeper.sleeps.size() +
               static_cast<std::size_t>(covered.settable_clock.reads);
    }
};

TEST_P(EachOperation, FailsOnceAtTheCallAskedFor) {
    for (const std::string& name : {GetParam().name, GetParam().object + "." + GetParam().name}) {
        Covered covered;
        covered.plan->fail_at(name, 3, FaultSpan::Once, 3197);
        EXPECT_EQ(failures_of_five(covered), (std::vector<Long>{0, 0, 3197, 0, 0})) << name;
        EXPECT_EQ(covered.plan->failed_calls(), 1) << name;
    }
}

TEST_P(EachOperation, FailsFromTheCallAskedForOn) {
    for (const std::string& name : {GetParam().name, GetParam().object + "." + GetParam().name}) {
        Covered covered;
        covered.plan->fail_at(name, 2, FaultSpan::FromThenOn, -2147467259);
        EXPECT_EQ(failures_of_five(covered),
                  (std::vector<Long>{0, -2147467259, -2147467259, -2147467259, -2147467259}))
            << name;
        covered.plan->clear();
        EXPECT_EQ(failures_of_five(covered), (std::vector<Long>(5, 0))) << name;
        EXPECT_EQ(covered.plan->failed_calls(), 4) << name;
    }
}

TEST_P(EachOperation, IsNotPassedOnWhenItFails) {
    Covered covered;
    GetParam().before(covered);
    covered.plan->fail_at(GetParam().object + "." + GetParam().name, 1, FaultSpan::Once, 70);
    const std::size_t before = passed_on(covered);
    EXPECT_EQ(failure_of([&] { GetParam().call(covered); }), 70);
    EXPECT_EQ(passed_on(covered), before);
    EXPECT_EQ(failure_of([&] { GetParam().call(covered); }), 0);
    EXPECT_GT(passed_on(covered), before);
}

TEST_P(EachOperation, LeavesTheOthersAlone) {
    for (const OperationCase& other : operation_cases()) {
        const bool comes_along =
            GetParam().object == "Recordset" && GetParam().name == "Fields" && other.name == "Item";
        if (other.name == GetParam().name || comes_along) {
            continue;
        }
        Covered covered;
        GetParam().before(covered);
        covered.plan->fail_at(other.object + "." + other.name, 1, FaultSpan::FromThenOn, 70);
        EXPECT_EQ(failure_of([&] { GetParam().call(covered); }), 0) << other.name;
    }
}

INSTANTIATE_TEST_SUITE_P(FaultPlan, EachOperation, testing::ValuesIn(operation_cases()));

TEST(FaultPlan, AFieldOfARecordsetIsPickedFromItsFields) {
    Covered covered;
    const auto pick = [&] { static_cast<void>(covered.recordset->Fields(u"a")); };
    covered.plan->fail_at("Fields.Item", 2, FaultSpan::Once, 70);
    covered.plan->fail_at("Recordset.Fields", 3, FaultSpan::Once, 71);
    EXPECT_EQ(failure_of(pick), 0);
    EXPECT_EQ(failure_of(pick), 70);
    EXPECT_EQ(failure_of(pick), 71);
    EXPECT_EQ(failure_of(pick), 0);
}

TEST(FaultPlan, NameAloneStandsForEveryObjectThatHasIt) {
    Covered covered;
    covered.plan->fail_at("Close", 2, FaultSpan::Once, 70);
    covered.recordset->Close();
    EXPECT_EQ(failure_of([&] { covered.db->Close(); }), 70);

    Covered other;
    other.plan->fail_at("Connection.Close", 1, FaultSpan::Once, 70);
    other.recordset->Close();
    EXPECT_EQ(failure_of([&] { other.db->Close(); }), 70);
}

TEST(FaultPlan, CountsFromTheMomentItIsAsked) {
    Covered covered;
    EXPECT_FALSE(covered.recordset->IsEOF());
    covered.plan->fail_at("EOF", 1, FaultSpan::Once, 70);
    EXPECT_EQ(failure_of([&] { static_cast<void>(covered.recordset->IsEOF()); }), 70);
}

TEST(FaultPlan, FaultsAddUp) {
    Covered covered;
    covered.plan->fail_at("EOF", 2, FaultSpan::Once, 70);
    covered.plan->fail_at("EOF", 1, FaultSpan::Once, 71);
    covered.plan->fail_at("Recordset.EOF", 2, FaultSpan::FromThenOn, 72);
    std::vector<Long> failures;
    failures.reserve(4);
    for (int i = 0; i < 4; ++i) {
        failures.push_back(failure_of([&] { static_cast<void>(covered.recordset->IsEOF()); }));
    }
    EXPECT_EQ(failures, (std::vector<Long>{71, 70, 72, 72}));
}

TEST(FaultPlan, CoversRecordsetsAndFieldsMadeLater) {
    Covered covered;
    covered.plan->fail_at("UpdateBatch", 2, FaultSpan::Once, 70);
    covered.plan->fail_at("Value", 3, FaultSpan::Once, 71);
    std::vector<Long> failures;
    for (int i = 0; i < 3; ++i) {
        const RecordsetPointer recordset = opened(covered.db);
        recordset->AddNew();
        failures.push_back(failure_of([&] { recordset->Fields(u"a").PutValue(Integer{1}); }));
        failures.push_back(
            failure_of([&] { recordset->UpdateBatch(ado::Affect::adAffectCurrent); }));
    }
    EXPECT_EQ(failures, (std::vector<Long>{0, 0, 0, 70, 71, 0}));
}

TEST(FaultPlan, CoversWhatComesFromAnEngineLater) {
    Covered covered;
    covered.plan->fail_at("DefaultValue", 2, FaultSpan::Once, 70);
    std::vector<Long> failures;
    for (int i = 0; i < 3; ++i) {
        const auto db = covered.engine->OpenDatabase(mdb_path);
        const auto field = db->TableDefs().at(0)->Fields()->Item(0);
        failures.push_back(failure_of([&] { field->PutDefaultValue(Integer{0}); }));
    }
    EXPECT_EQ(failures, (std::vector<Long>{0, 70, 0}));
}

TEST(FaultPlan, CountsTheCallsOfEveryOperation) {
    Covered covered;
    covered.plan->fail_at(3, FaultSpan::Once, 70);
    std::vector<Long> failures;
    for (int i = 0; i < 2; ++i) {
        failures.push_back(failure_of([&] { static_cast<void>(covered.recordset->IsEOF()); }));
        failures.push_back(failure_of([&] { static_cast<void>(covered.clock->Now()); }));
    }
    EXPECT_EQ(failures, (std::vector<Long>{0, 0, 70, 0}));
    covered.plan->fail_at(2, FaultSpan::FromThenOn, 71);
    EXPECT_EQ(failure_of([&] { static_cast<void>(covered.clock->Now()); }), 0);
    EXPECT_EQ(failure_of([&] { static_cast<void>(covered.clock->Now()); }), 71);
    EXPECT_EQ(failure_of([&] { static_cast<void>(covered.mdb->TableDefs()); }), 71);
    EXPECT_EQ(covered.plan->failed_calls(), 3);
    covered.plan->clear();
    EXPECT_EQ(failure_of([&] { static_cast<void>(covered.clock->Now()); }), 0);
}

// A call counts for the faults of its own operation and for those of any.
TEST(FaultPlan, CountsACallForNameAndForAny) {
    Covered covered;
    covered.plan->fail_at(2, FaultSpan::Once, 70);
    covered.plan->fail_at("Now", 1, FaultSpan::Once, 71);
    std::vector<Long> failures;
    for (int i = 0; i < 3; ++i) {
        failures.push_back(failure_of([&] { static_cast<void>(covered.clock->Now()); }));
    }
    EXPECT_EQ(failures, (std::vector<Long>{71, 70, 0}));
}

TEST(FaultPlan, TellsWhatHasFailedLast) {
    Covered covered;
    EXPECT_EQ(covered.plan->last_failed(), "");
    covered.plan->fail_at(2, FaultSpan::FromThenOn, 70);
    static_cast<void>(covered.recordset->IsEOF());
    EXPECT_EQ(covered.plan->last_failed(), "");
    static_cast<void>(
        failure_of([&] { covered.recordset->UpdateBatch(ado::Affect::adAffectCurrent); }));
    EXPECT_EQ(covered.plan->last_failed(), "Recordset.UpdateBatch");
    static_cast<void>(failure_of([&] { static_cast<void>(covered.column->Name()); }));
    EXPECT_EQ(covered.plan->last_failed(), "Field.Name");
    covered.plan->clear();
    static_cast<void>(covered.clock->Now());
    EXPECT_EQ(covered.plan->last_failed(), "Field.Name");
}

TEST(FaultPlan, RefusesWhatIsNoOperation) {
    FaultPlan plan;
    for (const char* name : {"", ".", "IsEOF", "PutValue", "open", "Recordset", "Recordset.",
                             ".Open", "Connection.Open", "Recordset.Value", "Recordset.Open.Close",
                             "Recordset.Open ", "MoveLast"}) {
        EXPECT_THROW(plan.fail_at(name, 1, FaultSpan::Once, 70), std::invalid_argument) << name;
    }
    EXPECT_THROW(plan.fail_at("Open", 0, FaultSpan::Once, 70), std::invalid_argument);
    EXPECT_THROW(plan.fail_at(0, FaultSpan::Once, 70), std::invalid_argument);
    EXPECT_THROW(plan.fail_at("Open", -1, FaultSpan::FromThenOn, 70), std::invalid_argument);
    EXPECT_NO_THROW(plan.count_call(Operation::RecordsetOpen));
}

}  // namespace
}  // namespace kvarta16
