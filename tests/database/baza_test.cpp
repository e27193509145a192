// Baza on files and an engine in memory: every question, every way out, every failing call.
#include <kvarta16/database/Baza.h>
#include <kvarta16/frame/globals.h>

#include "database_support.h"

namespace kvarta16::database_tests {
namespace {

using testing_support::file_exists;
using testing_support::no_database;
using testing_support::no_such_file;

constexpr StringView path = u"C:\\dane\\firma.mdb";
constexpr const char* overwrite = "Nadpisać C:\\dane\\firma.mdb";
constexpr const char* wait_on =
    "Czekam na usunięcie C:\\dane\\firma.mdb już długo. Może plik jest zablokowany. "
    "Czekać dalej ?";

class NewMdb : public testing::Test {
  protected:
    bool run(Boolean silent = false) { return static_cast<bool>(baza.NewMdb(path, silent)); }

    [[nodiscard]] Lines box_texts() const {
        Lines texts;
        for (const auto& box : host.fake.boxes.shown) {
            texts.push_back(to_utf8(box.text));
            EXPECT_EQ(box.title, std::nullopt);
        }
        return texts;
    }
    void answer(std::initializer_list<MsgBoxResult> answers) { host.fake.boxes.answers = answers; }
    [[nodiscard]] bool is_new_database() {
        const auto* entry = host.disk().find(path);
        return entry != nullptr && entry->database != nullptr &&
               entry->database->locale == u";LANGID=0x0415;CP=1250;COUNTRY=0";
    }

    FaultyPlatform host;
    Baza baza;
    MemoryDisk& disk = host.disk();
};

TEST_F(NewMdb, OnAFreeNameAsksNothing) {
    EXPECT_TRUE(run());
    EXPECT_EQ(disk.log,
              (Lines{"GetAttr(C:\\dane\\firma.mdb)",
                     "CreateDatabase(C:\\dane\\firma.mdb; ;LANGID=0x0415;CP=1250;COUNTRY=0)",
                     "release", "OpenDatabase(C:\\dane\\firma.mdb)", "Close"}));
    EXPECT_EQ(host.fake.sleeper.sleeps, std::vector<Long>{3000});
    EXPECT_TRUE(box_texts().empty());
    EXPECT_TRUE(is_new_database());
    EXPECT_EQ(disk.open_databases(), 0);
}

TEST_F(NewMdb, SilentOnAFreeNameIsTheSame) {
    EXPECT_TRUE(run(true));
    EXPECT_TRUE(is_new_database());
    EXPECT_TRUE(box_texts().empty());
}

TEST_F(NewMdb, SilentLeavesAFileAlone) {
    disk.add(path);
    EXPECT_FALSE(run(true));
    EXPECT_EQ(disk.log, Lines{"GetAttr(C:\\dane\\firma.mdb)"});
    EXPECT_TRUE(box_texts().empty());
    EXPECT_TRUE(host.fake.sleeper.sleeps.empty());
}

TEST_F(NewMdb, AnswerNoLeavesAFileAlone) {
    disk.add(path);
    answer({MsgBoxResult::No});
    EXPECT_FALSE(run());
    EXPECT_EQ(disk.log, Lines{"GetAttr(C:\\dane\\firma.mdb)"});
    EXPECT_EQ(box_texts(), Lines{overwrite});
    EXPECT_EQ(host.fake.boxes.shown[0].style, msg_box::yes_no);
    EXPECT_NE(disk.find(path), nullptr);
}

TEST_F(NewMdb, AnswerYesReplacesTheFile) {
    disk.add(path);
    answer({MsgBoxResult::Yes});
    EXPECT_TRUE(run());
    EXPECT_EQ(box_texts(), Lines{overwrite});
    EXPECT_TRUE(is_new_database());
    const std::string get_attr = "GetAttr(C:\\dane\\firma.mdb)";
    EXPECT_EQ(disk.log,
              (Lines{get_attr, get_attr,  // is there a file; in the loop again
                     get_attr, "Kill(C:\\dane\\firma.mdb)", get_attr,  // the deletion
                     get_attr,                                         // and the loop ends
                     "CreateDatabase(C:\\dane\\firma.mdb; ;LANGID=0x0415;CP=1250;COUNTRY=0)",
                     "release", "OpenDatabase(C:\\dane\\firma.mdb)", "Close"}));
}

TEST_F(NewMdb, AsksEvery300PassesWhetherToGoOn) {
    disk.add(path).is_held = true;
    answer({MsgBoxResult::Yes, MsgBoxResult::No});
    EXPECT_FALSE(run());
    EXPECT_EQ(disk.calls("Kill"), 300U);
    EXPECT_EQ(box_texts(), (Lines{overwrite, wait_on}));
    EXPECT_EQ(host.fake.boxes.shown[1].style, msg_box::yes_no);
    EXPECT_NE(disk.find(path), nullptr);
    EXPECT_EQ(disk.calls("CreateDatabase"), 0U);
    EXPECT_TRUE(host.fake.sleeper.sleeps.empty());
}

TEST_F(NewMdb, AsksAgainAfter600Passes) {
    disk.add(path).is_held = true;
    answer({MsgBoxResult::Yes, MsgBoxResult::Yes, MsgBoxResult::No});
    EXPECT_FALSE(run());
    EXPECT_EQ(disk.calls("Kill"), 600U);
    EXPECT_EQ(box_texts(), (Lines{overwrite, wait_on, wait_on}));
    EXPECT_NE(disk.find(path), nullptr);
}

// Any other answer, if a host's box gives one, goes on.
TEST_F(NewMdb, NoIsTheOnlyRefusal) {
    disk.add(path).is_held = true;
    answer({MsgBoxResult::Ok, MsgBoxResult::Cancel, MsgBoxResult::Ok, MsgBoxResult::No});
    EXPECT_FALSE(run());
    EXPECT_EQ(disk.calls("Kill"), 900U);
    EXPECT_EQ(box_texts(), (Lines{overwrite, wait_on, wait_on, wait_on}));
}

// Nothing can be deleted before the call of that number.
class HoldingFiles final : public ForwardingFiles {
  public:
    HoldingFiles(Files& target, int freed_at) : ForwardingFiles(target), freed_at_(freed_at) {}
    void Kill(StringView name) override {
        if (++kills_ < freed_at_) {
            fail(error::permission_denied);
        }
        ForwardingFiles::Kill(name);
    }

  private:
    int freed_at_;
    int kills_ = 0;
};

TEST_F(NewMdb, FileThatGoesInThe299thPassIsNoQuestion) {
    disk.add(path);
    HoldingFiles files(host.fake.files, 299);
    host.operations.files = &files;
    answer({MsgBoxResult::Yes});
    EXPECT_TRUE(run());
    EXPECT_EQ(box_texts(), Lines{overwrite});
    EXPECT_TRUE(is_new_database());
}

// The question comes after the pass, also where that one has removed the file.
TEST_F(NewMdb, FileThatGoesInThe300thPassIsAQuestion) {
    disk.add(path);
    HoldingFiles files(host.fake.files, 300);
    host.operations.files = &files;
    answer({MsgBoxResult::Yes, MsgBoxResult::Yes});
    EXPECT_TRUE(run());
    EXPECT_EQ(box_texts(), (Lines{overwrite, wait_on}));
    EXPECT_TRUE(is_new_database());
}

TEST_F(NewMdb, FolderIsNoFileAndTheEngineSaysNo) {
    disk.add(path).attributes = file_attribute::directory;
    EXPECT_FALSE(run());
    EXPECT_EQ(box_texts(), Lines{"3204:Database already exists/Proc:NewMdb,ModT:Module,ModN:Baza"});
    EXPECT_EQ(host.fake.boxes.shown[0].style, msg_box::ok_only);
    EXPECT_EQ(disk.calls("Kill"), 0U);
    EXPECT_TRUE(host.fake.sleeper.sleeps.empty());
}

TEST_F(NewMdb, BoxOfAFailureComesAlsoWithSilent) {
    host.plan->fail_at("CreateDatabase", 1, FaultSpan::Once, 3044);
    EXPECT_FALSE(run(true));
    EXPECT_EQ(box_texts(), Lines{"3044:Application-defined or object-defined error"
                                 "/Proc:NewMdb,ModT:Module,ModN:Baza"});
}

TEST_F(NewMdb, OldFileIsGoneIfTheMakingFails) {
    disk.add(path);
    answer({MsgBoxResult::Yes});
    host.plan->fail_at("CreateDatabase", 1, FaultSpan::Once, 3051);
    EXPECT_FALSE(run());
    EXPECT_EQ(disk.find(path), nullptr);
    ASSERT_EQ(host.fake.boxes.shown.size(), 2U);
    EXPECT_TRUE(host.fake.boxes.shown[1].text.starts_with(u"3051:"));
}

TEST_F(NewMdb, NewFileThatDoesNotOpenIsNoBox) {
    for (const char* operation : {"OpenDatabase", "Database.Close"}) {
        disk.remove(path);
        host.plan->fail_at(operation, 1, FaultSpan::Once, 3343);
        EXPECT_FALSE(run()) << operation;
        EXPECT_TRUE(box_texts().empty()) << operation;
        EXPECT_TRUE(is_new_database()) << operation;
    }
}

TEST_F(NewMdb, PauseThatFailsIsToldInABox) {
    host.plan->fail_at("Sleep", 1, FaultSpan::Once, 5);
    EXPECT_FALSE(run());
    EXPECT_EQ(box_texts(), Lines{"5:Invalid procedure call or argument"
                                 "/Proc:NewMdb,ModT:Module,ModN:Baza"});
    EXPECT_EQ(disk.calls("OpenDatabase"), 0U);
}

TEST_F(NewMdb, QuestionThatFailsIsToldInABox) {
    disk.add(path);
    host.plan->fail_at("MsgBox", 1, FaultSpan::Once, 7);
    EXPECT_FALSE(run());
    ASSERT_EQ(host.fake.boxes.shown.size(), 1U);
    EXPECT_TRUE(host.fake.boxes.shown[0].text.starts_with(u"7:"));
    EXPECT_NE(disk.find(path), nullptr);
}

TEST_F(NewMdb, BoxesThatAlwaysFailEndQuietly) {
    disk.add(path);
    host.plan->fail_at("MsgBox", 1, FaultSpan::FromThenOn, 7);
    EXPECT_FALSE(run());
    EXPECT_NE(disk.find(path), nullptr);
}

// What cannot be looked at counts as no file; the engine then finds it in the way.
TEST_F(NewMdb, FileThatCannotBeLookedAt) {
    disk.add(path);
    host.plan->fail_at("GetAttr", 1, FaultSpan::FromThenOn, 75);
    EXPECT_FALSE(run());
    ASSERT_EQ(host.fake.boxes.shown.size(), 1U);
    EXPECT_TRUE(host.fake.boxes.shown[0].text.starts_with(u"3204:"));
    EXPECT_EQ(disk.calls("Kill"), 0U);
}

// ---- Every call fails once, at every place -------------------------------------------------

TEST(NewMdbFaults, NoFailureReachesTheCallerAndNothingStaysOpen) {
    for (const char* operation : {"GetAttr", "Kill", "CreateDatabase", "OpenDatabase",
                                  "Database.Close", "MsgBox", "Sleep"}) {
        for (const FaultSpan span : {FaultSpan::Once, FaultSpan::FromThenOn}) {
            for (Long n = 1;; ++n) {
                SCOPED_TRACE(std::string(operation) + " " + std::to_string(n));
                FaultyPlatform host;
                host.disk().add(path);
                host.fake.boxes.answers = {MsgBoxResult::Yes, MsgBoxResult::No};
                host.plan->fail_at(operation, n, span, 4711);
                Boolean result = true;
                EXPECT_NO_THROW(result = Baza().NewMdb(path));
                EXPECT_EQ(host.disk().open_databases(), 0);
                if (host.plan->failed_calls() == 0) {
                    EXPECT_TRUE(static_cast<bool>(result));
                    break;
                }
                const auto* entry = host.disk().find(path);
                if (static_cast<bool>(result)) {
                    ASSERT_NE(entry, nullptr);
                    EXPECT_NE(entry->database, nullptr);
                }
            }
        }
    }
}

// ---- The check ------------------------------------------------------------------------------

TEST(SprawdźBazęDAO, IsZeroForAGoodDatabaseAndElseTheEnginesNumber) {
    FaultyPlatform host;
    host.disk().add_database(path);
    host.disk().add(u"C:\\tekst.mdb");
    Baza baza;
    EXPECT_EQ(baza.Sprawdź_bazęDAO(path), 0);
    EXPECT_EQ(baza.Sprawdź_bazęDAO(u"C:\\nie ma.mdb"), no_such_file);
    EXPECT_EQ(baza.Sprawdź_bazęDAO(u"C:\\tekst.mdb"), no_database);
    EXPECT_EQ(baza.Sprawdź_bazęDAO(u""), no_such_file);
    EXPECT_TRUE(host.fake.boxes.shown.empty());
    EXPECT_EQ(host.disk().calls("GetAttr"), 0U);
}

TEST(SprawdźBazęDAO, KeepsTheClosedDatabaseUntilTheNextLook) {
    FaultyPlatform host;
    host.disk().add_database(path);
    {
        Baza baza;
        EXPECT_EQ(baza.Sprawdź_bazęDAO(path), 0);
        EXPECT_EQ(host.disk().open_databases(), 0);
        EXPECT_EQ(host.disk().calls("release"), 0U);
        EXPECT_EQ(baza.Sprawdź_bazęDAO(u"C:\\nie ma.mdb"), no_such_file);
        EXPECT_EQ(host.disk().calls("release"), 0U);
        EXPECT_EQ(baza.Sprawdź_bazęDAO(path), 0);
        EXPECT_EQ(host.disk().calls("release"), 1U);
    }
    EXPECT_EQ(host.disk().calls("release"), 2U);
}

TEST(SprawdźBazęDAO, GivesTheNumberOfAClosingThatFails) {
    FaultyPlatform host;
    host.disk().add_database(path);
    host.plan->fail_at("Database.Close", 1, FaultSpan::Once, -2147467259);
    EXPECT_EQ(Baza().Sprawdź_bazęDAO(path), -2147467259);
    EXPECT_EQ(host.disk().open_databases(), 0);
}

// ---- Statements -----------------------------------------------------------------------------

class Statement : public testing::Test {
  protected:
    Statement() {
        host.disk().add_database(path);
        db = platform().db_engine->OpenDatabase(path);
        host.disk().on_execute([](StringView statement) {
            if (statement != u"drop table a") {
                throw Failure(3295, u"Syntax error in DROP TABLE");
            }
        });
    }
    FaultyPlatform host;
    std::shared_ptr<dao::Database> db;
    Baza baza;
};

TEST_F(Statement, IsEmptyOnSuccess) {
    for (const Boolean not_silent : {Boolean(false), Boolean(true), Boolean::from_raw(1)}) {
        EXPECT_EQ(baza.DbWykonajNorthWind(u"drop table a", db, not_silent), u"");
    }
    EXPECT_TRUE(host.fake.boxes.shown.empty());
    EXPECT_EQ(host.disk().statements.size(), 3U);
}

TEST_F(Statement, GivesTheDescriptionAndShowsNothing) {
    EXPECT_EQ(baza.DbWykonajNorthWind(u"drop tabel a", db, false), u"Syntax error in DROP TABLE");
    EXPECT_TRUE(host.fake.boxes.shown.empty());
}

TEST_F(Statement, ShowsTheDescriptionUnderTheStatement) {
    EXPECT_EQ(baza.DbWykonajNorthWind(u"drop tabel a", db, Boolean::from_raw(1)),
              u"Syntax error in DROP TABLE");
    ASSERT_EQ(host.fake.boxes.shown.size(), 1U);
    EXPECT_EQ(host.fake.boxes.shown[0].text, u"Syntax error in DROP TABLE");
    EXPECT_EQ(host.fake.boxes.shown[0].style, msg_box::ok_only);
    EXPECT_EQ(host.fake.boxes.shown[0].title, u"drop tabel a");
}

TEST_F(Statement, OnNothingAndOnAClosedDatabase) {
    EXPECT_EQ(baza.DbWykonajNorthWind(u"drop table a", nullptr, false),
              Failure(error::object_not_set).description());
    db->Close();
    EXPECT_EQ(baza.DbWykonajNorthWind(u"drop table a", db, false),
              u"Object invalid or no longer set");
}

TEST_F(Statement, BoxThatFailsDoesNotHideTheText) {
    host.plan->fail_at("MsgBox", 1, FaultSpan::Once, 7);
    EXPECT_EQ(baza.DbWykonajNorthWind(u"drop tabel a", db, true), u"Syntax error in DROP TABLE");
}

TEST_F(Statement, LeavesTheDatabaseToTheCaller) {
    static_cast<void>(baza.DbWykonajNorthWind(u"drop table a", db, false));
    EXPECT_EQ(host.disk().open_databases(), 1);
    EXPECT_EQ(host.disk().calls("Close"), 0U);
}

// ---- By name --------------------------------------------------------------------------------

TEST(BareNamesOfBaza, WorkOnTheThreadsOwn) {
    FaultyPlatform host;
    EXPECT_TRUE(static_cast<bool>(bare::NewMdb(path)));
    EXPECT_EQ(bare::Sprawdź_bazęDAO(path), 0);
    const auto db = platform().db_engine->OpenDatabase(path);
    EXPECT_EQ(bare::DbWykonajNorthWind(u"drop table a", db, false), u"");
}

TEST(LateBoundBaza, PassesADatabaseByReference) {
    FaultyPlatform host;
    host.disk().add_database(path);
    ObjectPointer variable = platform().db_engine->OpenDatabase(path);
    const ObjectPointer before = variable;
    Baza baza;
    Arguments arguments{u"drop table a", Variant::reference(variable), true};
    EXPECT_EQ(invoke(ClassTable<Baza>::members[0], &baza, arguments), Variant(u""));
    EXPECT_EQ(variable, before);
    EXPECT_EQ(utf8(host.disk().statements), Lines{"drop table a"});
    Arguments direct{u"drop table b", before, false};
    EXPECT_EQ(invoke(ClassTable<Baza>::members[0], &baza, direct), Variant(u""));
    EXPECT_EQ(direct[1], Variant(before));
}

TEST(LateBoundBaza, SilentMayBeLeftOut) {
    FaultyPlatform host;
    Baza baza;
    Arguments arguments{Variant(path)};
    EXPECT_EQ(invoke(ClassTable<Baza>::members[1], &baza, arguments), Variant(true));
    EXPECT_EQ(arguments[1], Variant(false));
    host.disk().add(path);
    Arguments silent{Variant(path), true};
    EXPECT_EQ(invoke(ClassTable<Baza>::members[1], &baza, silent), Variant(false));
}

}  // namespace
}  // namespace kvarta16::database_tests
