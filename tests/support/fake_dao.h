// Files and a DAO engine without a disk. Both write down every call with its arguments in one log;
// the engine holds databases of tables and fields, no rows, and runs no statement: what a statement
// does is the test's business.
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

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <support/memory_ado.h>

#include <kvarta16/frame/utf8.h>
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

    [[nodiscard]] MemoryColumn& column(StringView wanted) const {
        return **std::ranges::find(columns, wanted, [](const auto& c) { return c->name; });
    }
};

struct MemoryMdb {
    String locale;
    std::vector<std::shared_ptr<MemoryTable>> tables;

    MemoryMdb& add_table(String name, std::initializer_list<MemoryColumn> columns = {}) {
        auto table = std::make_shared<MemoryTable>();
        table->name = std::move(name);
        for (const MemoryColumn& column : columns) {
            table->columns.push_back(std::make_shared<MemoryColumn>(column));
        }
        tables.push_back(std::move(table));
        return *this;
    }
    [[nodiscard]] std::vector<std::string> table_names() const {
        std::vector<std::string> names;
        for (const auto& table : tables) {
            names.push_back(to_utf8(table->name));
        }
        return names;
    }
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
    };

    MemoryDisk() : log(state_->log), statements(state_->statements) {}

    // Entries are found in any case.
    Entry& add(StringView path) { return state_->entries[upper_case(path)] = Entry(); }
    MemoryMdb& add_database(StringView path) {
        return *(add(path).database = std::make_shared<MemoryMdb>());
    }
    [[nodiscard]] Entry* find(StringView path) const { return state_->find(path); }
    void remove(StringView path) { state_->entries.erase(upper_case(path)); }

    [[nodiscard]] std::size_t calls(std::string_view text) const {
        return static_cast<std::size_t>(std::ranges::count_if(
            log, [text](const std::string& entry) { return entry.starts_with(text); }));
    }
    [[nodiscard]] int open_databases() const { return state_->open_databases; }
    // Called with each statement; a Failure that it throws is the statement's.
    void on_execute(std::function<void(StringView)> run) { state_->on_execute = std::move(run); }

  private:
    friend class MemoryFiles;
    friend class MemoryEngine;
    friend class MemoryDatabase;
    friend class MemoryTableDef;
    friend class MemoryFields;
    friend class MemoryField;

    // Shared with the databases that are open: a host may hold one for longer than a test lasts.
    struct State {
        std::map<String, Entry> entries;
        std::vector<std::string> log;
        std::vector<String> statements;
        std::function<void(StringView)> on_execute = [](StringView) {};
        int open_databases = 0;

        Entry* find(StringView path) {
            const auto found = entries.find(upper_case(path));
            return found == entries.end() ? nullptr : &found->second;
        }
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();

  public:
    std::vector<std::string>& log;
    std::vector<String>& statements;  // that were executed, in order
};

class MemoryFiles final : public Files {
  public:
    explicit MemoryFiles(MemoryDisk& disk) : state_(disk.state_) {}

    Long GetAttr(StringView path) override { return begin("GetAttr", path).attributes; }
    void Kill(StringView path) override {
        const MemoryDisk::Entry& entry = begin("Kill", path);
        const Long refused = file_attribute::directory | file_attribute::read_only;
        if (entry.is_held || (entry.attributes & refused) != 0) {
            throw Failure(error::file_access, u"Path/File access error");
        }
        state_->entries.erase(upper_case(path));
    }
    std::string native_path(StringView path) override { return to_utf8(path); }

  private:
    MemoryDisk::Entry& begin(const std::string& call, StringView path) {
        state_->log.push_back(call + "(" + to_utf8(path) + ")");
        MemoryDisk::Entry* entry = state_->find(path);
        if (entry == nullptr) {
            throw Failure(error::file_not_found, u"File not found");
        }
        return *entry;
    }

    std::shared_ptr<MemoryDisk::State> state_;
};

// What the objects of an open database have in common.
struct OpenMdb {
    std::shared_ptr<MemoryMdb> contents;
    bool is_open = true;
};

class MemoryField final : public dao::Field {
    using Shared = std::shared_ptr<MemoryDisk::State>;

  public:
    MemoryField(Shared state, std::shared_ptr<OpenMdb> mdb, std::shared_ptr<MemoryColumn> column)
        : state_(std::move(state)), mdb_(std::move(mdb)), column_(std::move(column)) {}

    String Name() override { return begin("Field.Name").name; }
    Integer Type() override { return begin("Type").type; }
    Long Size() override { return begin("Size").size; }
    Variant DefaultValue() override { return begin("DefaultValue").default_value; }
    void PutDefaultValue(const Variant& value) override {
        begin("DefaultValue = " + logged(value)).default_value = value;
    }
    bool AllowZeroLength() override { return begin("AllowZeroLength").allow_zero_length; }
    void PutAllowZeroLength(bool allow) override {
        begin(allow ? "AllowZeroLength = true" : "AllowZeroLength = false").allow_zero_length =
            allow;
    }

  private:
    MemoryColumn& begin(std::string call) {
        state_->log.push_back(std::move(call));
        if (!mdb_->is_open) {
            throw Failure(database_closed, u"Object invalid or no longer set");
        }
        return *column_;
    }

    Shared state_;
    std::shared_ptr<OpenMdb> mdb_;
    std::shared_ptr<MemoryColumn> column_;
};

class MemoryFields final : public dao::Fields {
    using Shared = std::shared_ptr<MemoryDisk::State>;

  public:
    MemoryFields(Shared state, std::shared_ptr<OpenMdb> mdb, const MemoryTable& table)
        : state_(std::move(state)), mdb_(std::move(mdb)), columns_(table.columns) {}

    Integer Count() override {
        state_->log.emplace_back("Count");
        return static_cast<Integer>(columns_.size());
    }
    std::shared_ptr<dao::Field> Item(Long index) override {
        state_->log.push_back("Item(" + std::to_string(index) + ")");
        return std::make_shared<MemoryField>(state_, mdb_,
                                             columns_.at(static_cast<std::size_t>(index)));
    }

  private:
    Shared state_;
    std::shared_ptr<OpenMdb> mdb_;
    std::vector<std::shared_ptr<MemoryColumn>> columns_;
};

class MemoryTableDef final : public dao::TableDef {
    using Shared = std::shared_ptr<MemoryDisk::State>;

  public:
    MemoryTableDef(Shared state, std::shared_ptr<OpenMdb> mdb, std::shared_ptr<MemoryTable> table)
        : state_(std::move(state)), mdb_(std::move(mdb)), table_(std::move(table)) {}

    String Name() override { return begin("TableDef.Name").name; }
    void PutName(StringView name) override {
        begin("TableDef.Name = " + to_utf8(name)).name = String(name);
    }
    std::shared_ptr<dao::Fields> Fields() override {
        return std::make_shared<MemoryFields>(state_, mdb_, begin("Fields"));
    }

  private:
    MemoryTable& begin(std::string call) {
        state_->log.push_back(std::move(call));
        if (!mdb_->is_open) {
            throw Failure(database_closed, u"Object invalid or no longer set");
        }
        return *table_;
    }

    Shared state_;
    std::shared_ptr<OpenMdb> mdb_;
    std::shared_ptr<MemoryTable> table_;
};

class MemoryDatabase : public dao::Database {
    using Shared = std::shared_ptr<MemoryDisk::State>;

  public:
    MemoryDatabase(Shared state, std::shared_ptr<MemoryMdb> contents)
        : state_(std::move(state)), mdb_(std::make_shared<OpenMdb>(OpenMdb{std::move(contents)})) {
        ++state_->open_databases;
    }
    ~MemoryDatabase() override {
        state_->log.emplace_back("release");
        end();
    }
    // Another use of the same file, for an object that is also something else.
    explicit MemoryDatabase(const MemoryDatabase* other)
        : MemoryDatabase(other->state_, other->mdb_->contents) {}
    MemoryDatabase(const MemoryDatabase&) = delete;
    MemoryDatabase& operator=(const MemoryDatabase&) = delete;
    MemoryDatabase(MemoryDatabase&&) = delete;
    MemoryDatabase& operator=(MemoryDatabase&&) = delete;

    std::vector<std::shared_ptr<dao::TableDef>> TableDefs() override {
        begin("TableDefs");
        std::vector<std::shared_ptr<dao::TableDef>> tables;
        for (const std::shared_ptr<MemoryTable>& table : mdb_->contents->tables) {
            tables.push_back(std::make_shared<MemoryTableDef>(state_, mdb_, table));
        }
        return tables;
    }
    void Execute(StringView query) override {
        begin("Execute(" + to_utf8(query) + ")");
        state_->statements.emplace_back(query);
        state_->on_execute(query);
    }
    void Close() override {
        begin("Close");
        end();
    }

  private:
    void begin(std::string call) {
        state_->log.push_back(std::move(call));
        if (!mdb_->is_open) {
            throw Failure(database_closed, u"Object invalid or no longer set");
        }
    }
    void end() {
        if (std::exchange(mdb_->is_open, false)) {
            --state_->open_databases;
        }
    }

    Shared state_;
    std::shared_ptr<OpenMdb> mdb_;
};

class MemoryEngine final : public dao::DBEngine {
  public:
    explicit MemoryEngine(MemoryDisk& disk) : state_(disk.state_) {}

    std::shared_ptr<dao::Database> CreateDatabase(StringView name, StringView locale) override {
        state_->log.push_back("CreateDatabase(" + to_utf8(name) + "; " + to_utf8(locale) + ")");
        if (state_->find(name) != nullptr) {
            throw Failure(file_exists, u"Database already exists");
        }
        const auto contents = std::make_shared<MemoryMdb>();
        contents->locale = String(locale);
        state_->entries[upper_case(name)].database = contents;
        return std::make_shared<MemoryDatabase>(state_, contents);
    }
    std::shared_ptr<dao::Database> OpenDatabase(StringView name) override {
        state_->log.push_back("OpenDatabase(" + to_utf8(name) + ")");
        const MemoryDisk::Entry* entry = state_->find(name);
        if (entry == nullptr) {
            throw Failure(no_such_file, u"Could not find file");
        }
        if (entry->database == nullptr) {
            throw Failure(no_database, u"Unrecognized database format");
        }
        return std::make_shared<MemoryDatabase>(state_, entry->database);
    }

  private:
    std::shared_ptr<MemoryDisk::State> state_;
};

}  // namespace kvarta16::testing_support
