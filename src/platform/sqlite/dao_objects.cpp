#include <algorithm>
#include <utility>

#include <kvarta16/frame/value.h>
#include <kvarta16/platform/ado.h>
#include <kvarta16/platform/sqlite/dao_objects.h>
#include <kvarta16/platform/sqlite/sqlite_errors.h>
#include <kvarta16/platform/sqlite/table_changes.h>

namespace kvarta16::sqlite {
namespace {

// What the object of a table and those of its columns share.
struct TableState {
    std::weak_ptr<Database> database;
    String name;
    bool is_dropped = false;

    [[nodiscard]] std::shared_ptr<Database> file() const {
        auto open = database.lock();
        if (open == nullptr) {
            fail_about(error_database_closed, u"The database of the table is closed", name);
        }
        return open;
    }

    // The table as it is in the file now.
    [[nodiscard]] std::shared_ptr<const Table> table(Database& file) const {
        static_cast<void>(file.forget_outdated_tables());
        auto found = is_dropped ? nullptr : file.find_table(name);
        if (found == nullptr || found->is_view) {
            fail_about(ado::error_item_not_found, u"The table is not there any more", name);
        }
        return found;
    }
};

class FileField final : public dao::Field {
    // Calls `look` with the file, the table and the column as they are now.
    template <class Look>
    auto look(Look&& look) {
        const auto file = table_->file();
        const auto table = table_->table(*file);
        const auto column = find_name(table->columns, name_);
        if (is_dropped_ || column == table->columns.end()) {
            fail_about(ado::error_item_not_found,
                       u"The column is not in the table " + table->name + u" any more", name_);
        }
        return look(*file, *table, *column);
    }
    template <class Change>
    void change(Change&& change) {
        table_->file()->change([&] { look(change); });
    }

  public:
    FileField(std::shared_ptr<const TableState> table, const Column& column)
        : table_(std::move(table)), name_(column.name), type_(column.type) {}

    String Name() override { return known(name_); }
    Integer Type() override { return known(type_.type); }
    Long Size() override { return known(type_.size); }
    Variant DefaultValue() override {
        return look([](Database&, const Table&, const Column& column) {
            return Variant(default_text(column));
        });
    }
    void PutDefaultValue(const Variant& value) override {
        const bool is_none = value.is(Subtype::Empty) || IsNullValue(value);
        const String text = is_none ? String() : default_given(value);
        change([&](Database& file, const Table& table, const Column& column) {
            set_default(file, table, column, text);
        });
    }
    bool AllowZeroLength() override {
        return look([](Database& file, const Table& table, const Column& column) {
            return allows_zero_length(file, table, column);
        });
    }
    void PutAllowZeroLength(bool allow) override {
        change([allow](Database& file, const Table& table, const Column& column) {
            if (!is_text(column.type.type)) {
                fail_about(error_invalid_operation,
                           u"Only a text column takes or refuses the empty text", column.name);
            }
            set_allow_zero_length(file, table, column, allow);
        });
    }

    [[nodiscard]] StringView name() const noexcept { return name_; }
    void drop() noexcept { is_dropped_ = true; }

  private:
    // What was read with the collection, for as long as the database is open.
    template <class T>
    [[nodiscard]] const T& known(const T& value) const {
        static_cast<void>(table_->file());
        return value;
    }

    // A number as the dialect writes it, whatever the locale.
    static String default_given(const Variant& value) {
        String text = ToText(value);
        if (value.get_if<String>() == nullptr) {
            std::ranges::replace(text, locale().decimal_separator, u'.');
        }
        return text;
    }

    std::shared_ptr<const TableState> table_;
    String name_;
    FieldType type_;
    bool is_dropped_ = false;
};

class FileFields final : public dao::Fields {
  public:
    explicit FileFields(std::vector<std::shared_ptr<FileField>> fields)
        : fields_(std::move(fields)) {}

    Integer Count() override { return static_cast<Integer>(fields_.size()); }
    std::shared_ptr<dao::Field> Item(Long index) override {
        if (index < 0 || static_cast<std::size_t>(index) >= fields_.size()) {
            fail_about(ado::error_item_not_found, u"The table has no such column", ToText(index));
        }
        return fields_[static_cast<std::size_t>(index)];
    }

    void drop(StringView name) {
        for (const auto& field : fields_) {
            if (same_name(field->name(), name)) {
                field->drop();
            }
        }
    }

  private:
    std::vector<std::shared_ptr<FileField>> fields_;
};

class FileTableDef final : public dao::TableDef {
  public:
    FileTableDef(const std::shared_ptr<Database>& database, String name)
        : state_(std::make_shared<TableState>(TableState{database, std::move(name)})) {}

    String Name() override { return state_->table(*state_->file())->name; }
    void PutName(StringView name) override {
        const auto file = state_->file();
        file->change([&] { rename_table(*file, *state_->table(*file), name); });
        state_->name = name;
    }
    std::shared_ptr<dao::Fields> Fields() override {
        const auto file = state_->file();
        const auto table = state_->table(*file);
        if (fields_ == nullptr) {
            std::vector<std::shared_ptr<FileField>> fields;
            for (const Column& column : table->columns) {
                fields.push_back(std::make_shared<FileField>(state_, column));
            }
            fields_ = std::make_shared<FileFields>(std::move(fields));
        }
        return fields_;
    }

    void drop(StringView table, StringView column) {
        if (!same_name(table, state_->name)) {
            return;
        }
        if (column.empty()) {
            state_->is_dropped = true;
        } else if (fields_ != nullptr) {
            fields_->drop(column);
        }
    }

  private:
    std::shared_ptr<TableState> state_;
    std::shared_ptr<FileFields> fields_;  // from the first look at them on
};

}  // namespace

std::vector<std::shared_ptr<dao::TableDef>> table_defs(const std::shared_ptr<Database>& database) {
    std::vector<String> names = database->table_names();
    std::ranges::sort(names, {},
                      [](const String& name) { return std::pair(lower_case(name), name); });
    std::vector<std::shared_ptr<dao::TableDef>> tables;
    tables.reserve(names.size());
    for (String& name : names) {
        tables.push_back(std::make_shared<FileTableDef>(database, std::move(name)));
    }
    return tables;
}

void forget_dropped(const std::vector<std::shared_ptr<dao::TableDef>>& tables, StringView table,
                    StringView column) {
    for (const auto& entry : tables) {
        static_cast<FileTableDef&>(*entry).drop(table, column);
    }
}

}  // namespace kvarta16::sqlite
