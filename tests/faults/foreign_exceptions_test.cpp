// Exceptions that are no Failure. The disciplines drop failures alone: std::bad_alloc, out of the
// platform or out of a caller's handler, passes each of them by, and what was open then stays so
// unless an object of C++ holds it. Nothing is shown and nothing is recorded.
#include <functional>
#include <new>

#include <gtest/gtest.h>

#include <kvarta16/hr/Class1.h>
#include <kvarta16/statutory/Akt.h>
#include <kvarta16/ui/ClsPrint.h>

#include "fault_loop.h"

namespace kvarta16::fault_tests {
namespace {

class Exhausted final : public ForwardingFiles {
  public:
    using ForwardingFiles::ForwardingFiles;
    Long GetAttr(StringView) override { throw std::bad_alloc(); }
    void Kill(StringView) override { throw std::bad_alloc(); }
    void Name(StringView, StringView) override { throw std::bad_alloc(); }
};

class ExhaustedTable final : public ForwardingFileTable {
  public:
    using ForwardingFileTable::ForwardingFileTable;
    char16_t InputCharacter(Integer) override { throw std::bad_alloc(); }
    void PrintLine(Integer, StringView) override { throw std::bad_alloc(); }
    void Get(Integer, std::span<Byte>) override { throw std::bad_alloc(); }
};

class ExhaustedRegistry final : public ForwardingRegistry {
  public:
    using ForwardingRegistry::ForwardingRegistry;
    Long RegCreateKeyA(Long, StringView, Long&) override { throw std::bad_alloc(); }
};

class ExhaustedDatabase final : public dao::ForwardingDatabase {
  public:
    using ForwardingDatabase::ForwardingDatabase;
    void Execute(StringView) override { throw std::bad_alloc(); }
};

class ExhaustedRecordset final : public ado::ForwardingRecordset {
  public:
    using ForwardingRecordset::ForwardingRecordset;
    void UpdateBatch(ado::Affect) override { throw std::bad_alloc(); }
};

class ExhaustedConnection final : public ado::ForwardingConnection {
  public:
    using ForwardingConnection::ForwardingConnection;
    std::shared_ptr<ado::Recordset> CreateRecordset() override {
        return std::make_shared<ExhaustedRecordset>(target()->CreateRecordset());
    }
};

struct ForeignCase {
    const char* name;
    std::function<void(FaultBench&)> call;
    std::set<Integer> open_numbers = {};
};

void PrintTo(const ForeignCase& row, std::ostream* out) {
    *out << row.name;
}

constexpr const char16_t* file = u"C:\\a.txt";

void files_fail(FaultBench& b, const std::function<void()>& call) {
    Exhausted files(b.fake.files);
    Platform operations = platform();
    operations.files = &files;
    const ScopedPlatform scope(operations);
    call();
}
void table_fails(const std::function<void()>& call) {
    ExhaustedTable table(*platform().file_table);
    Platform operations = platform();
    operations.file_table = &table;
    const ScopedPlatform scope(operations);
    call();
}

const ForeignCase foreign_cases[] = {
    // Tolerant.
    {"aIO.DelFile2", [](FaultBench& b) { files_fail(b, [&] { b.subjects.io.DelFile2(file); }); }},
    {"aIO.DelFile",
     [](FaultBench& b) { files_fail(b, [&] { static_cast<void>(b.subjects.io.DelFile(file)); }); }},
    {"aregistry.Savekey",
     [](FaultBench& b) {
         ExhaustedRegistry registry(b.fake.registry);
         Platform operations = platform();
         operations.registry = &registry;
         const ScopedPlatform scope(operations);
         b.subjects.registry.Savekey(HKEY_CURRENT_USER, u"Software", u"a", u"b");
     }},
    // Guarded.
    {"aIO.IsFile",
     [](FaultBench& b) { files_fail(b, [&] { static_cast<void>(b.subjects.io.IsFile(file)); }); }},
    {"aIO.RenameFile",
     [](FaultBench& b) {
         files_fail(b, [&] { static_cast<void>(b.subjects.io.RenameFile(file, u"C:\\b.txt")); });
     }},
    {"aIO.Zapisz_do_pliku",
     [](FaultBench& b) {
         table_fails([&] { static_cast<void>(b.subjects.io.Zapisz_do_pliku(file, u"x")); });
     },
     {1}},
    {"Baza.DbWykonajNorthWind",
     [](FaultBench& b) {
         const auto database =
             std::make_shared<ExhaustedDatabase>(b.fake.engine.OpenDatabase(u"C:\\firma.mdb"));
         static_cast<void>(b.subjects.baza.DbWykonajNorthWind(u"drop table [x]", database, true));
     }},
    {"Baza.NewMdb",
     [](FaultBench& b) {
         files_fail(b, [&] { static_cast<void>(b.subjects.baza.NewMdb(u"C:\\nowa.mdb")); });
     }},
    {"ClsPrint.SpoolFile",
     [](FaultBench&) {
         table_fails([] { static_cast<void>(ClsPrint().SpoolFile(file, u"Biuro")); });
     },
     {1}},
    {"clsFTP.UploadFileProgress, out of the file",
     [](FaultBench& b) {
         String local = file;
         String remote = u"plik";
         Boolean asc;
         table_fails(
             [&] { static_cast<void>(b.subjects.ftp.UploadFileProgress(local, remote, asc)); });
     },
     {1}},
    {"clsFTP.UploadFileProgress, out of the handler",
     [](FaultBench& b) {
         b.subjects.ftp.FileTransferProgress = [](Long&, Long&) { throw std::bad_alloc(); };
         String local = file;
         String remote = u"plik";
         Boolean asc;
         // The last event, behind the closing of the file.
         static_cast<void>(b.subjects.ftp.UploadFileProgress(local, remote, asc));
     }},
    // Strict: what holds the recordset lets it go.
    {"Akt.Ustaw_stawki_ryczałtu",
     [](FaultBench& b) {
         const auto db = std::make_shared<ExhaustedConnection>(b.rows);
         Akt().Ustaw_stawki_ryczałtu(db, false, false);
     }},
};

class ForeignExceptions : public testing::TestWithParam<ForeignCase> {};

TEST_P(ForeignExceptions, PassEveryDiscipline) {
    Subjects subjects;
    FaultBench bench(subjects);
    bench.fake.disk.add(file, "A");
    bench.fake.disk.add_database(u"C:\\firma.mdb");
    bench.fake.spooler.printers = {u"Biuro"};
    subjects.ftp.ServerName(u"serwer");
    static_cast<void>(subjects.ftp.Connect());
    EXPECT_THROW(GetParam().call(bench), std::bad_alloc);
    EXPECT_EQ(bench.fake.file_table.open_numbers(), GetParam().open_numbers);
    EXPECT_TRUE(bench.fake.boxes.shown.empty());
    EXPECT_EQ(subjects.ftp.LastError(), u"");
    EXPECT_EQ(bench.fake.disk.open_databases(), 0);
    EXPECT_EQ(bench.rows->recordsets_alive, 0);
    EXPECT_EQ(bench.rows->row_count(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Members, ForeignExceptions, testing::ValuesIn(foreign_cases));

}  // namespace
}  // namespace kvarta16::fault_tests
