#include <algorithm>

#include <support/fake_dao.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>

namespace kvarta16::testing_support {

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

MemoryColumn& MemoryTable::column(StringView wanted) const {
    return **std::ranges::find(columns, wanted, [](const auto& c) { return c->name; });
}

MemoryMdb& MemoryMdb::add_table(String name, std::initializer_list<MemoryColumn> columns) {
    auto table = std::make_shared<MemoryTable>();
    table->name = std::move(name);
    for (const MemoryColumn& column : columns) {
        table->columns.push_back(std::make_shared<MemoryColumn>(column));
    }
    tables.push_back(std::move(table));
    return *this;
}

std::vector<std::string> MemoryMdb::table_names() const {
    std::vector<std::string> names;
    for (const auto& table : tables) {
        names.push_back(to_utf8(table->name));
    }
    return names;
}

MemoryDisk::MemoryDisk() : log(state_->log), statements(state_->statements) {}

MemoryDisk::Entry& MemoryDisk::add(StringView path) {
    return state_->entries[key_of(path)] = Entry();
}

MemoryDisk::Entry& MemoryDisk::add(StringView path, std::string contents) {
    Entry& entry = add(path);
    entry.contents = std::move(contents);
    return entry;
}

MemoryDisk::Entry& MemoryDisk::add_folder(StringView path) {
    Entry& entry = add(path);
    entry.attributes = file_attribute::directory;
    return entry;
}

MemoryMdb& MemoryDisk::add_database(StringView path) {
    return *(add(path).database = std::make_shared<MemoryMdb>());
}

MemoryDisk::Entry* MemoryDisk::find(StringView path) const {
    return state_->find(path);
}

void MemoryDisk::remove(StringView path) {
    state_->entries.erase(key_of(path));
}

String MemoryDisk::current_directory() const {
    return state_->current_directory();
}

void MemoryDisk::set_current_directory(StringView path) {
    state_->set_current_directory(path);
}

std::size_t MemoryDisk::calls(std::string_view text) const {
    return static_cast<std::size_t>(std::ranges::count_if(
        log, [text](const std::string& entry) { return entry.starts_with(text); }));
}

int MemoryDisk::open_databases() const {
    return state_->open_databases;
}

void MemoryDisk::on_execute(std::function<void(StringView)> run) {
    state_->on_execute = std::move(run);
}

String MemoryDisk::key_of(StringView path) {
    String key = upper_case(path);
    std::ranges::replace(key, u'/', u'\\');
    for (std::size_t at = key.find(u"\\\\", 1); at != String::npos; at = key.find(u"\\\\", at)) {
        key.erase(at, 1);
    }
    if (key.ends_with(u'\\') && key.size() > 1 && !key.ends_with(u":\\")) {
        key.pop_back();
    }
    return key;
}

MemoryDisk::Entry* MemoryDisk::State::find(StringView path) {
    const auto found = entries.find(key_of(path));
    return found == entries.end() ? nullptr : &found->second;
}

bool MemoryDisk::State::is_folder(StringView path) {
    const String key = key_of(path);
    if (key.empty() || key == u"\\" || key.ends_with(u':') || key.ends_with(u":\\")) {
        return true;
    }
    const Entry* entry = find(key);
    return entry != nullptr && (entry->attributes & file_attribute::directory) != 0;
}

bool MemoryDisk::State::has_folder_above(StringView path) {
    const String key = key_of(path);
    const std::size_t separator = key.rfind(u'\\');
    return separator == String::npos || is_folder(key.substr(0, separator));
}

String MemoryDisk::State::current_directory() const {
    return directories.at(current_drive);
}

void MemoryDisk::State::set_current_directory(StringView path) {
    if (path.size() >= 2 && path[1] == u':') {
        current_drive = upper_case(path[0]);
    }
    directories[current_drive] = String(path);
}

bool matches_pattern(StringView name, StringView pattern) {
    if (pattern.empty() || pattern == u"*.*") {
        return name.empty() == pattern.empty();
    }
    if (pattern[0] == u'*') {
        return matches_pattern(name, pattern.substr(1)) ||
               (!name.empty() && matches_pattern(name.substr(1), pattern));
    }
    return !name.empty() && (pattern[0] == u'?' || pattern[0] == name[0]) &&
           matches_pattern(name.substr(1), pattern.substr(1));
}

MemoryFiles::MemoryFiles(MemoryDisk& disk) : state_(disk.state_) {}

Long MemoryFiles::GetAttr(StringView path) {
    return begin("GetAttr", path).attributes;
}

void MemoryFiles::Kill(StringView path) {
    if (path.find_first_of(u"*?") != StringView::npos) {
        kill_matching(path);
        return;
    }
    check_removable(begin("Kill", path), path);
    state_->entries.erase(MemoryDisk::key_of(path));
}

void MemoryFiles::Name(StringView old_path, StringView new_path) {
    const MemoryDisk::Entry& entry = begin("Name", old_path, new_path);
    refuse(state_->find(new_path) != nullptr, error::file_exists);
    refuse(!state_->has_folder_above(new_path), error::path_not_found);
    refuse(entry.is_held, error::file_access);
    refuse(is_open(old_path), error::permission_denied);
    auto moved = state_->entries.extract(MemoryDisk::key_of(old_path));
    moved.key() = MemoryDisk::key_of(new_path);
    state_->entries.insert(std::move(moved));
}

void MemoryFiles::MkDir(StringView path) {
    write_down("MkDir", path);
    refuse(path.empty(), error::path_not_found);
    refuse(state_->find(path) != nullptr, error::file_access);
    refuse(!state_->has_folder_above(path), error::path_not_found);
    state_->entries[MemoryDisk::key_of(path)].attributes = file_attribute::directory;
}

void MemoryFiles::ChDrive(StringView path) {
    constexpr Long device_unavailable = 68;
    write_down("ChDrive", path);
    if (path.size() < 2 || path[1] != u':') {
        return;
    }
    const char16_t drive = upper_case(path[0]);
    refuse(drive < u'A' || drive > u'Z', error::invalid_call);
    refuse(!state_->directories.contains(drive), device_unavailable);
    state_->current_drive = drive;
}

void MemoryFiles::ChDir(StringView path) {
    write_down("ChDir", path);
    refuse(path.empty() || !state_->is_folder(path), error::path_not_found);
    const bool has_drive = path.size() >= 2 && path[1] == u':';
    const char16_t drive = has_drive ? upper_case(path[0]) : state_->current_drive;
    state_->directories[drive] = String(path);
}

void MemoryFiles::FileCopy(StringView source, StringView target) {
    const MemoryDisk::Entry& entry = begin("FileCopy", source, target);
    refuse(is_open(source) || is_open(target), error::permission_denied);
    refuse(is_folder(source) || is_folder(target), error::file_access);
    refuse(!state_->has_folder_above(target), error::path_not_found);
    state_->entries[MemoryDisk::key_of(target)] = MemoryDisk::Entry(entry);
}

String MemoryFiles::CurDir() {
    state_->log.emplace_back("CurDir");
    return state_->current_directory();
}

std::string MemoryFiles::native_path(StringView path) {
    return to_utf8(path);
}

void MemoryFiles::refuse(bool is_refused, Long number) {
    if (is_refused) {
        throw Failure(number);
    }
}

void MemoryFiles::write_down(const std::string& call, StringView path) {
    state_->log.push_back(call + "(" + to_utf8(path) + ")");
}

MemoryDisk::Entry& MemoryFiles::begin(const std::string& call, StringView path) {
    write_down(call, path);
    MemoryDisk::Entry* entry = state_->find(path);
    refuse(entry == nullptr, error::file_not_found);
    return *entry;
}

MemoryDisk::Entry& MemoryFiles::begin(const std::string& call, StringView path, StringView other) {
    state_->log.push_back(call + "(" + to_utf8(path) + "; " + to_utf8(other) + ")");
    MemoryDisk::Entry* entry = state_->find(path);
    refuse(entry == nullptr, error::file_not_found);
    return *entry;
}

bool MemoryFiles::is_open(StringView path) {
    return state_->open_files.contains(MemoryDisk::key_of(path));
}

bool MemoryFiles::is_folder(StringView path) {
    return state_->find(path) != nullptr && state_->is_folder(path);
}

void MemoryFiles::check_removable(const MemoryDisk::Entry& entry, StringView path) {
    constexpr Long refused = file_attribute::directory | file_attribute::read_only;
    refuse(entry.is_held || (entry.attributes & refused) != 0, error::file_access);
    refuse(is_open(path), error::permission_denied);
}

void MemoryFiles::kill_matching(StringView path) {
    write_down("Kill", path);
    const String pattern = MemoryDisk::key_of(path);
    const std::size_t name_at = pattern.rfind(u'\\') + 1;
    std::vector<String> matched;
    for (const auto& [key, entry] : state_->entries) {
        const bool is_here =
            key.rfind(u'\\') + 1 == name_at &&
            StringView(key).substr(0, name_at) == StringView(pattern).substr(0, name_at);
        if (is_here && (entry.attributes & file_attribute::directory) == 0 &&
            matches_pattern(StringView(key).substr(name_at), StringView(pattern).substr(name_at))) {
            matched.push_back(key);
        }
    }
    refuse(matched.empty(), error::file_not_found);
    for (const String& key : matched) {
        check_removable(*state_->find(key), key);
        state_->entries.erase(key);
    }
}

MemoryDatabase::MemoryDatabase(Shared state, std::shared_ptr<MemoryMdb> contents)
    : state_(std::move(state)), mdb_(std::make_shared<OpenMdb>(OpenMdb{std::move(contents)})) {
    ++state_->open_databases;
}

MemoryDatabase::~MemoryDatabase() {
    state_->log.emplace_back("release");
    end();
}

MemoryDatabase::MemoryDatabase(const MemoryDatabase* other)
    : MemoryDatabase(other->state_, other->mdb_->contents) {}

std::vector<std::shared_ptr<dao::TableDef>> MemoryDatabase::TableDefs() {
    begin("TableDefs");
    std::vector<std::shared_ptr<dao::TableDef>> tables;
    for (const std::shared_ptr<MemoryTable>& table : mdb_->contents->tables) {
        tables.push_back(std::make_shared<MemoryTableDef>(state_, mdb_, table));
    }
    return tables;
}

void MemoryDatabase::Execute(StringView query) {
    begin("Execute(" + to_utf8(query) + ")");
    state_->statements.emplace_back(query);
    state_->on_execute(query);
}

void MemoryDatabase::Close() {
    begin("Close");
    end();
}

void MemoryDatabase::begin(std::string call) {
    state_->log.push_back(std::move(call));
    if (!mdb_->is_open) {
        throw Failure(database_closed, u"Object invalid or no longer set");
    }
}

void MemoryDatabase::end() {
    if (std::exchange(mdb_->is_open, false)) {
        --state_->open_databases;
    }
}

MemoryEngine::MemoryEngine(MemoryDisk& disk) : state_(disk.state_) {}

std::shared_ptr<dao::Database> MemoryEngine::CreateDatabase(StringView name, StringView locale) {
    state_->log.push_back("CreateDatabase(" + to_utf8(name) + "; " + to_utf8(locale) + ")");
    if (state_->find(name) != nullptr) {
        throw Failure(file_exists, u"Database already exists");
    }
    const auto contents = std::make_shared<MemoryMdb>();
    contents->locale = String(locale);
    state_->entries[MemoryDisk::key_of(name)].database = contents;
    return std::make_shared<MemoryDatabase>(state_, contents);
}

std::shared_ptr<dao::Database> MemoryEngine::OpenDatabase(StringView name) {
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

}  // namespace kvarta16::testing_support
