// Files and a DAO engine without a disk. Both write down every call with its arguments in one log;
// the engine holds databases of tables and fields, no rows, and runs no statement: what a statement
// does is the test's business. The files that are open under numbers stand in fake_files.h.
//
//   MemoryDisk disk;
//   disk.add_database(u"C:\\firma.mdb").add_table(u"towary", {{u"cena", dao::dbCurrency}});
//   MemoryFiles files(disk);
//   MemoryEngine engine(disk);
//   engine.OpenDatabase(u"c:\\FIRMA.mdb")->TableDefs()[0]->PutName(u"TOWARY");
//   EXPECT_EQ(disk.log, (std::vector<std::string>{"OpenDatabase(c:\\FIRMA.mdb)", "TableDefs",
//                                                 "TableDef.Name = TOWARY"}));
//
// To have calls fail, put a fault plan before it (kvarta16/platform/forwarding.h).
#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <support/memory_ado.h>

#include <kvarta16/frame/value.h>
#include <kvarta16/platform/dao.h>
#include <kvarta16/platform/files.h>

namespace kvarta16::testing_support {

struct MemoryColumn {
    String name;
    Integer type = dao::dbLong;
    Long size = 0;
    Variant default_value = u"";
    bool allow_zero_length = false;
};

struct MemoryTable {
    String name;
    std::vector<std::shared_ptr<MemoryColumn>> columns;

    [[nodiscard]] MemoryColumn& column(StringView wanted) const;
};

struct MemoryMdb {
    String locale;
    std::vector<std::shared_ptr<MemoryTable>> tables;

    MemoryMdb& add_table(String name, std::initializer_list<MemoryColumn> columns = {});
    [[nodiscard]] std::vector<std::string> table_names() const;
};

// The numbers by which the engine says no.
inline constexpr Long no_such_file = 3024;
inline constexpr Long file_exists = 3204;
inline constexpr Long no_database = 3343;
inline constexpr Long database_closed = 3420;

class MemoryDisk {
    struct State;

  public:
    struct Entry {
        Long attributes = file_attribute::archive;
        bool is_held = false;  // cannot be deleted
        std::shared_ptr<MemoryMdb> database;
        std::string contents;  // bytes
    };

    MemoryDisk();

    // Entries are found in any case, by either separator, by one that is doubled inside a path and
    // by one at its end. Folders need not be added for the files in them; what makes a new name
    // asks for its folder.
    Entry& add(StringView path);
    Entry& add(StringView path, std::string contents);
    Entry& add_folder(StringView path);
    MemoryMdb& add_database(StringView path);
    [[nodiscard]] Entry* find(StringView path) const;
    void remove(StringView path);

    // Where relative paths lie for the process; the fakes themselves take paths as they are given.
    [[nodiscard]] String current_directory() const;
    void set_current_directory(StringView path);

    [[nodiscard]] std::size_t calls(std::string_view text) const;
    [[nodiscard]] int open_databases() const;
    // Called with each statement; a Failure that it throws is the statement's.
    void on_execute(std::function<void(StringView)> run);

  private:
    friend class MemoryFiles;
    friend class MemoryFileTable;
    friend class MemoryEngine;
    friend class MemoryDatabase;
    friend class MemoryTableDef;
    friend class MemoryFields;
    friend class MemoryField;

    static String key_of(StringView path);

    // Shared with the databases that are open: a host may hold one for longer than a test lasts.
    struct State {
        std::map<String, Entry> entries;
        std::multiset<String> open_files;  // keys, one for each number
        std::vector<std::string> log;
        std::vector<String> statements;
        std::function<void(StringView)> on_execute = [](StringView) {};
        int open_databases = 0;
        char16_t current_drive = u'C';
        std::map<char16_t, String> directories{{u'C', u"C:\\"}};  // the current one of each drive

        Entry* find(StringView path);
        // Roots and the current directory are folders; the others are those that stand here.
        bool is_folder(StringView path);
        bool has_folder_above(StringView path);
        [[nodiscard]] String current_directory() const;
        void set_current_directory(StringView path);
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();

  public:
    std::vector<std::string>& log;
    std::vector<String>& statements;  // that were executed, in order
};

// Whether a name matches a pattern of "*" and "?", both in upper case; "*.*" matches every name.
[[nodiscard]] bool matches_pattern(StringView name, StringView pattern);

class MemoryFiles final : public Files {
  public:
    explicit MemoryFiles(MemoryDisk& disk);

    Long GetAttr(StringView path) override;
    void Kill(StringView path) override;
    void Name(StringView old_path, StringView new_path) override;
    void MkDir(StringView path) override;
    void ChDrive(StringView path) override;
    void ChDir(StringView path) override;
    void FileCopy(StringView source, StringView target) override;
    String CurDir() override;
    std::string native_path(StringView path) override;

  private:
    static void refuse(bool is_refused, Long number);
    void write_down(const std::string& call, StringView path);
    MemoryDisk::Entry& begin(const std::string& call, StringView path);
    MemoryDisk::Entry& begin(const std::string& call, StringView path, StringView other);
    bool is_open(StringView path);
    bool is_folder(StringView path);
    void check_removable(const MemoryDisk::Entry& entry, StringView path);
    // Files alone, in the order of their names.
    void kill_matching(StringView path);

    std::shared_ptr<MemoryDisk::State> state_;
};

struct OpenMdb;

class MemoryDatabase : public dao::Database {
    using Shared = std::shared_ptr<MemoryDisk::State>;

  public:
    MemoryDatabase(Shared state, std::shared_ptr<MemoryMdb> contents);
    ~MemoryDatabase() override;
    // Another use of the same file, for an object that is also something else.
    explicit MemoryDatabase(const MemoryDatabase* other);
    MemoryDatabase(const MemoryDatabase&) = delete;
    MemoryDatabase& operator=(const MemoryDatabase&) = delete;
    MemoryDatabase(MemoryDatabase&&) = delete;
    MemoryDatabase& operator=(MemoryDatabase&&) = delete;

    std::vector<std::shared_ptr<dao::TableDef>> TableDefs() override;
    void Execute(StringView query) override;
    void Close() override;

  private:
    void begin(std::string call);
    void end();

    Shared state_;
    std::shared_ptr<OpenMdb> mdb_;
};

class MemoryEngine final : public dao::DBEngine {
  public:
    explicit MemoryEngine(MemoryDisk& disk);

    std::shared_ptr<dao::Database> CreateDatabase(StringView name, StringView locale) override;
    std::shared_ptr<dao::Database> OpenDatabase(StringView name) override;

  private:
    std::shared_ptr<MemoryDisk::State> state_;
};

}  // namespace kvarta16::testing_support
