#include <algorithm>
#include <utility>

#include <kvarta16/frame/value.h>
#include <kvarta16/platform/sql/columns.h>
#include <kvarta16/platform/sqlite/sqlite_errors.h>
#include <kvarta16/platform/sqlite/sqlite_file_connection.h>
#include <kvarta16/platform/sqlite/sqlite_recordset.h>

namespace kvarta16::sqlite {

void FileRecordset::Open(StringView source,
                         const std::shared_ptr<ado::Connection>& active_connection, ado::CursorType,
                         ado::LockType lock_type, Long options) {
    constexpr Long text_of_a_statement = 1;  // adCmdText
    if (connection_ != nullptr) {
        throw Failure(ado::error_object_open, u"The recordset is open already");
    }
    const auto connection = std::dynamic_pointer_cast<FileConnection>(active_connection);
    if (connection == nullptr || connection->database() == nullptr) {
        throw Failure(ado::error_invalid_connection,
                      u"The recordset has no connection, or a closed one");
    }
    if (options != ado::adCmdUnspecified && options != text_of_a_statement) {
        throw Failure(error_wrong_arguments, u"A recordset is opened by the text of a statement");
    }
    // Another program may change the tables between the look at them and the run.
    constexpr int most_attempts = 5;
    std::optional<Rows> rows;
    for (int attempt = 1; !rows; ++attempt) {
        rows = try_open(source, *connection->database(), attempt == most_attempts);
    }
    rows_ = std::move(*rows);
    row_ = 0;
    read_only_ = lock_type == ado::LockType::adLockReadOnly;
    connection_ = connection;
}

// Nothing if what is known of the tables proves outdated, unless this is the last attempt.
std::optional<Rows> FileRecordset::try_open(StringView source, Database& database,
                                            bool last_attempt) {
    try {
        translation_ = translate(source, database);
    } catch (const Failure&) {
        if (last_attempt || !database.forget_outdated_tables()) {
            throw;
        }
        return std::nullopt;
    }
    return database.try_query(translation_.sql, translation_.parameters, translation_.table->name,
                              last_attempt);
}

bool FileRecordset::IsEOF() {
    static_cast<void>(open_database());
    return !has_row();
}

void FileRecordset::AddNew() {
    static_cast<void>(open_database());
    require_updatable();
    store_pending();
    is_new_ = true;
}

ado::Field& FileRecordset::Fields(const Variant& item) {
    static_cast<void>(open_database());
    const std::size_t index = sql::index_of_column(translation_.columns, item);
    while (fields_.size() <= index) {
        fields_.emplace_back(*this, fields_.size());
    }
    return fields_[index];
}

void FileRecordset::UpdateBatch(ado::Affect) {
    Database& database = open_database();
    require_row();
    if (!is_new_ && put_.empty()) {
        return;
    }
    std::vector<Cell> values;
    const std::string sql = is_new_ ? insert_statement(values) : update_statement(values);
    Rows stored = database.write(sql, values, translation_.table->name);
    if (stored.count() == 0) {
        fail_about(error_row_deleted, u"The row is not in the table any more",
                   translation_.table->name);
    }
    if (is_new_) {
        row_ = rows_.count();
        rows_.cells.resize(rows_.cells.size() + rows_.width);
    }
    std::ranges::move(stored.cells, rows_.row(row_).begin());
    drop_pending();
}

void FileRecordset::MoveNext() {
    static_cast<void>(open_database());
    require_row();
    store_pending();
    ++row_;
}

void FileRecordset::Close() {
    static_cast<void>(open_database());
    drop_pending();
    rows_ = {};
    translation_ = {};
    connection_.reset();
}

Database& FileRecordset::open_database() const {
    Database* database = connection_ != nullptr ? connection_->database() : nullptr;
    if (database == nullptr) {
        throw Failure(ado::error_object_closed, u"The recordset or its connection is closed");
    }
    return *database;
}

void FileRecordset::require_row() const {
    if (!has_row()) {
        throw Failure(ado::error_no_current_record,
                      u"There is no current row: none was found, and none has been added");
    }
}

void FileRecordset::require_updatable() const {
    if (read_only_) {
        throw Failure(error_not_updatable, u"The recordset was opened to read");
    }
    if (translation_.table->key.empty()) {
        fail_about(error_not_updatable, u"The rows cannot be changed, for they are those of a view",
                   translation_.table->name);
    }
}

// ---- Fields ------------------------------------------------------------------------------------

const Translation::Result& FileRecordset::result(std::size_t index) const {
    static_cast<void>(open_database());
    if (index >= translation_.columns.size()) {  // of a statement that was open before
        fail_about(ado::error_item_not_found, u"The recordset has no such column",
                   ToText(static_cast<Long>(index)));
    }
    return translation_.columns[index];
}

Variant FileRecordset::value(std::size_t index) {
    const ColumnKind kind = result(index).column->kind;
    require_row();
    if (!put_.empty() && put_[index]) {
        return variant_of(*put_[index], kind);
    }
    return is_new_ ? Variant::null() : variant_of(rows_.row(row_)[index], kind);
}

void FileRecordset::put(std::size_t index, const Variant& value) {
    const Column& column = *result(index).column;
    require_row();
    require_updatable();
    Cell cell = cell_of(value, column.affinity);
    put_.resize(translation_.columns.size());
    for (std::size_t i = 0; i < put_.size(); ++i) {
        if (translation_.columns[i].column == &column) {
            put_[i].reset();  // a column may stand twice in a statement
        }
    }
    put_[index] = std::move(cell);
}

// ---- Storing -----------------------------------------------------------------------------------

std::string FileRecordset::insert_statement(std::vector<Cell>& values) const {
    std::string names;
    std::string places;
    for (std::size_t i = 0; i < put_.size(); ++i) {
        if (put_[i]) {
            names.append(names.empty() ? "" : ",").append(translation_.columns[i].column->sql);
            places.append(places.empty() ? "?" : ",?");
            values.push_back(*put_[i]);
        }
    }
    const std::string row =
        names.empty() ? " default values" : "(" + names + ") values(" + places + ")";
    return "insert into " + translation_.table->sql + row + returned_columns();
}

std::string FileRecordset::update_statement(std::vector<Cell>& values) {
    std::string assignments;
    for (std::size_t i = 0; i < put_.size(); ++i) {
        if (put_[i]) {
            assignments.append(assignments.empty() ? "" : ",");
            assignments.append(translation_.columns[i].column->sql).append("=?");
            values.push_back(*put_[i]);
        }
    }
    std::string condition;
    const auto keys = rows_.row(row_).subspan(translation_.columns.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        condition.append(i == 0 ? "" : " and ").append(translation_.table->key[i]).append("=?");
        values.push_back(keys[i]);
    }
    return "update " + translation_.table->sql + " set " + assignments + " where " + condition +
           returned_columns();
}

// The same columns as the rows have, so that the row that was stored can take its place.
std::string FileRecordset::returned_columns() const {
    std::string list;
    for (const Translation::Result& column : translation_.columns) {
        list.append(list.empty() ? " returning " : ",").append(column.column->sql);
    }
    for (const std::string& key : translation_.table->key) {
        list.append(",").append(key);
    }
    return list;
}

void FileRecordset::store_pending() {
    if (is_new_ || !put_.empty()) {
        UpdateBatch(ado::Affect::adAffectCurrent);
    }
}

void FileRecordset::drop_pending() noexcept {
    is_new_ = false;
    put_.clear();
}

}  // namespace kvarta16::sqlite
