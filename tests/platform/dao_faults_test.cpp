// Faults: every step of every change of a file is made to fail, and the file runs full. Nothing is
// half done, and the same change succeeds afterwards.

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <platform/dao_fixture.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kvarta16 {
namespace {

using testing_support::caught;
using testing_support::DaoTest;
using testing_support::EngineProbe;
using testing_support::file_bytes;
using testing_support::OtherProgram;

using DaoFaults = DaoTest;

constexpr const char* table_of_the_cases =
    "create table t (id INTEGER PRIMARY KEY, a VARCHAR(10) DEFAULT 'x' CHECK(length(a)<=10),"
    " b INTEGER, c TEXT); create index i on t(a, c); create view v as select a from t;"
    "create trigger r after update of id on t begin select 1; end;"
    "insert into t values (1,'raz',null,''),(2,null,2,null);";

// Refuses the n-th thing that the engine is asked to prepare on a connection.
class Refusal {
  public:
    Refusal(sqlite3* db, int n) : db_(db), left_(n) {
        sqlite3_set_authorizer(db_, &Refusal::asked, this);
    }
    ~Refusal() { sqlite3_set_authorizer(db_, nullptr, nullptr); }
    Refusal(const Refusal&) = delete;
    Refusal& operator=(const Refusal&) = delete;
    Refusal(Refusal&&) = delete;
    Refusal& operator=(Refusal&&) = delete;

    [[nodiscard]] bool happened() const { return left_ <= 0; }

  private:
    static int asked(void* refusal, int, const char*, const char*, const char*, const char*) {
        return --static_cast<Refusal*>(refusal)->left_ == 0 ? SQLITE_DENY : SQLITE_OK;
    }

    sqlite3* db_;
    int left_;
};

struct Change {
    std::string name;
    std::function<void(dao::Database&)> run;
};

std::string content(const std::string& path) {
    OtherProgram other(path);
    std::string text;
    const std::string table = other.value(
        "select name from sqlite_schema where type='table' and sql like '%CHECK%' order by rowid");
    for (const std::string& query :
         {std::string("select type,name,tbl_name,sql from sqlite_schema order by 1,2"),
          "select * from \"" + table + "\"", std::string("pragma integrity_check"),
          std::string("select a from v")}) {
        for (const auto& row : other.rows(query)) {
            for (const std::string& value : row) {
                text += value + "|";
            }
            text += "\n";
        }
    }
    return text;
}

class DaoChanges : public DaoTest {
  protected:
    static std::vector<Change> changes() {
        const auto executing = [](StringView statement) {
            return Change{to_utf8(statement),
                          [statement](dao::Database& db) { db.Execute(statement); }};
        };
        return {
            {"rename", [](dao::Database& db) { table(db, u"t")->PutName(u"T"); }},
            {"rename to another", [](dao::Database& db) { table(db, u"t")->PutName(u"Żółć"); }},
            {"default", [](dao::Database& db) { field(db, u"t", u"b")->PutDefaultValue(Long{0}); }},
            {"no default",
             [](dao::Database& db) { field(db, u"t", u"a")->PutDefaultValue(Variant()); }},
            {"zero length",
             [](dao::Database& db) { field(db, u"t", u"c")->PutAllowZeroLength(false); }},
            executing(u"update t set b=0 where b is null"),
            executing(u"insert into t (b) values (3)"),
            executing(u"create table u (id counter, x text(5) unique default \"a\")"),
            executing(u"create unique index u on t (id)"),
            executing(u"alter table t add d text(20) not null default 'y'"),
            executing(u"alter table t drop b"),
            executing(u"alter table t alter a text(20)"),
            executing(u"alter table t alter b text(20)"),
            executing(u"drop index i on t"),
        };
    }
};

TEST_F(DaoChanges, AreDoneWholeOrNotAtAll) {
    for (const Change& change : changes()) {
        bool completed = false;
        int n = 0;
        while (!completed) {
            ++n;
            std::filesystem::remove(path_);
            write(table_of_the_cases);
            const std::string before = content(path_);
            EngineProbe probe;
            const auto db = open();
            static_cast<void>(table(*db, u"t")->Fields());
            {
                const Refusal refusal(probe.db(), n);
                const auto failure = caught([&] { change.run(*db); });
                completed = !refusal.happened();
                ASSERT_TRUE(completed || failure.number != 0 || content(path_) != before)
                    << change.name << " " << n;
                if (failure.number != 0) {
                    ASSERT_EQ(content(path_), before) << change.name << " " << n << failure.text;
                }
                ASSERT_TRUE(!completed || failure.number == 0) << change.name << failure.text;
            }
            if (content(path_) == before) {
                const auto failure = caught([&] { change.run(*db); });
                ASSERT_EQ(failure.number, 0) << change.name << " " << n << failure.text;
            }
            ASSERT_EQ(value("pragma quick_check").find("malformed"), std::string::npos);
        }
        EXPECT_GT(n, 5) << change.name;
    }
}

TEST_F(DaoChanges, OfAFullFile) {
    write(std::string(table_of_the_cases) +
          "with recursive n(i) as (select 3 union all select i+1 from n where i<3000)"
          " insert into t select i, null, null, null from n");
    const std::string before = content(path_);
    EngineProbe probe;
    const auto db = open();
    sqlite3* file = probe.db();  // of this connection, before another program's
    static_cast<void>(table(*db, u"t")->Fields());
    sqlite3_exec(file, "pragma max_page_count=1", nullptr, nullptr, nullptr);
    const String long_text(4'000, u'x');
    EXPECT_EQ(caught([&] { db->Execute(u"update t set c='" + long_text + u"'"); }).number, 3026);
    EXPECT_EQ(caught([&] { db->Execute(u"create table u (x long)"); }).number, 3026);
    EXPECT_EQ(caught([&] { db->Execute(u"alter table t alter b memo"); }).number, 3026);
    const String long_default = u"\"" + String(10'000, u'x') + u"\"";
    EXPECT_EQ(caught([&] { field(*db, u"t", u"c")->PutDefaultValue(long_default); }).number, 3026);
    EXPECT_EQ(content(path_), before);
    sqlite3_exec(file, "pragma max_page_count=1000000", nullptr, nullptr, nullptr);
    db->Execute(u"create table u (x long)");
    field(*db, u"t", u"c")->PutDefaultValue(long_default);
    EXPECT_EQ(text(field(*db, u"t", u"c")->DefaultValue()).size(), 10'002U);
}

// The user whom the system gives no rights of its own, until the scope ends.
class AsNobody {
  public:
    explicit AsNobody(const std::string& folder) {
        if (geteuid() == 0) {
            changed_ = chown(folder.c_str(), nobody, nobody) == 0 && seteuid(nobody) == 0;
        }
    }
    ~AsNobody() {
        if (changed_ && seteuid(0) != 0) {
            std::abort();
        }
    }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;
    AsNobody(AsNobody&&) = delete;
    AsNobody& operator=(AsNobody&&) = delete;

  private:
    static constexpr uid_t nobody = 65534;
    bool changed_ = false;
};

TEST_F(DaoFaults, WithoutPermission) {
    const AsNobody nobody(folder_.path());
    if (geteuid() == 0) {
        GTEST_SKIP() << "the system refuses its administrator nothing";
    }
    create()->Execute(u"create table t (id long)");
    ASSERT_EQ(::chmod(path_.c_str(), 0), 0);
    EXPECT_EQ(caught([&] { static_cast<void>(open()); }).number, 3051);
    ASSERT_EQ(::chmod(path_.c_str(), 0400), 0);
    {
        const auto db = open();
        EXPECT_EQ(table_names(*db), Names({"t"}));
        EXPECT_EQ(caught([&] { db->Execute(u"drop table t"); }).number, 3027);
        EXPECT_EQ(caught([&] { table(*db, u"t")->PutName(u"T"); }).number, 3027);
    }
    ASSERT_EQ(::chmod(folder_.path().c_str(), 0500), 0);
    const String other = from_utf8(folder_ / "b.mdb");
    EXPECT_EQ(caught([&] { static_cast<void>(engine().CreateDatabase(other, u"")); }).number, 3051);
    ASSERT_EQ(::chmod(path_.c_str(), 0600), 0);
    {
        const auto db = open();  // its journal cannot be made
        const Long number = caught([&] { db->Execute(u"drop table t"); }).number;
        EXPECT_TRUE(number == 3027 || number == 3051) << number;
    }
    ASSERT_EQ(::chmod(folder_.path().c_str(), 0700), 0);
    EXPECT_EQ(table_names(*open()), Names({"t"}));
}

}  // namespace
}  // namespace kvarta16
