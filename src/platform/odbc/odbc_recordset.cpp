#include <algorithm>
#include <utility>

#include <kvarta16/frame/value.h>
#include <kvarta16/platform/odbc/odbc_errors.h>
#include <kvarta16/platform/odbc/odbc_recordset.h>
#include <kvarta16/platform/odbc/odbc_server_connection.h>
#include <kvarta16/platform/sql/columns.h>
#include <kvarta16/platform/sql/parser.h>

namespace kvarta16::odbc {

void ServerRecordset::Open(StringView source,
                           const std::shared_ptr<ado::Connection>& active_connection,
                           ado::CursorType, ado::LockType lock_type, Long options) {
    constexpr Long text_of_a_statement = 1;  // adCmdText
    if (connection_ != nullptr) {
        throw Failure(ado::error_object_open, u"The recordset is open already");
    }
    const auto connection = std::dynamic_pointer_cast<ServerConnection>(active_connection);
    if (connection == nullptr || connection->session() == nullptr) {
        throw Failure(ado::error_invalid_connection,
                      u"The recordset has no connection, or a closed one");
    }
    if (options != ado::adCmdUnspecified && options != text_of_a_statement) {
        throw Failure(error_wrong_arguments, u"A recordset is opened by the text of a statement");
    }
    Session& session = *connection->session();
    const sql::Parsed<sql::Select> parsed = sql::parse_select(source);
    const auto run = [&] {
        query_ = write_query(parsed.tree, session, session.dialect());
        return session.query(query_);
    };
    try {
        rows_ = run();
    } catch (const Failure& failure) {
        // Another program may have changed the tables since they were looked at.
        const bool by_name =
            failure.number() == error_no_table || failure.number() == error_unknown_name;
        if (!by_name || !session.forget_tables()) {
            throw;
        }
        rows_ = run();
    }
    columns_ = columns_read(query_);
    row_ = 0;
    lost_row_.reset();
    read_only_ = lock_type == ado::LockType::adLockReadOnly;
    connection_ = connection;
}

bool ServerRecordset::IsEOF() {
    static_cast<void>(open_session());
    return !has_row();
}

void ServerRecordset::AddNew() {
    static_cast<void>(open_session());
    require_updatable();
    store_pending();
    is_new_ = true;
}

ado::Field& ServerRecordset::Fields(const Variant& item) {
    static_cast<void>(open_session());
    const std::size_t index = sql::index_of_column(query_.columns, item);
    while (fields_.size() <= index) {
        fields_.emplace_back(*this, fields_.size());
    }
    return fields_[index];
}

void ServerRecordset::UpdateBatch(ado::Affect) {
    Session& session = open_session();
    require_row();
    if (!is_new_ && put_.empty()) {
        return;
    }
    put_.resize(query_.columns.size());
    Session::Written written = is_new_ ? insert(session) : update(session);
    lost_row_.reset();
    std::vector<Cell> stored = row_stored(session, written);
    if (is_new_) {
        row_ = rows_.count();
        rows_.cells.resize(rows_.cells.size() + rows_.width);
    }
    std::ranges::move(stored, rows_.row(row_).begin());
    drop_pending();
}

void ServerRecordset::MoveNext() {
    static_cast<void>(open_session());
    require_row();
    store_pending();
    ++row_;
}

void ServerRecordset::Close() {
    static_cast<void>(open_session());
    drop_pending();
    rows_ = {};
    query_ = {};
    connection_.reset();
}

Session& ServerRecordset::open_session() const {
    Session* session = connection_ != nullptr ? connection_->session() : nullptr;
    if (session == nullptr) {
        throw Failure(ado::error_object_closed, u"The recordset or its connection is closed");
    }
    return *session;
}

void ServerRecordset::require_row() const {
    if (!has_row()) {
        throw Failure(ado::error_no_current_record,
                      u"There is no current row: none was found, and none has been added");
    }
}

void ServerRecordset::require_updatable() const {
    if (read_only_) {
        throw Failure(error_not_updatable, u"The recordset was opened to read");
    }
    if (query_.table->is_view) {
        fail_about(error_not_updatable, u"The rows cannot be changed, for they are those of a view",
                   query_.table->name);
    }
}

// ---- Fields ------------------------------------------------------------------------------------

const Query::Result& ServerRecordset::result(std::size_t index) const {
    static_cast<void>(open_session());
    if (index >= query_.columns.size()) {  // of a statement that was open before
        fail_about(ado::error_item_not_found, u"The recordset has no such column",
                   ToText(static_cast<Long>(index)));
    }
    return query_.columns[index];
}

Variant ServerRecordset::value(std::size_t index) {
    const Column& column = *result(index).column;
    require_row();
    if (!put_.empty() && put_[index]) {
        return variant_of(*put_[index], column);
    }
    return is_new_ ? Variant::null() : variant_of(rows_.row(row_)[index], column);
}

void ServerRecordset::put(std::size_t index, const Variant& value) {
    const Column& column = *result(index).column;
    require_row();
    require_updatable();
    if (!is_new_ && lost_row_ == row_) {
        fail_about(error_not_updatable,
                   u"The row has been stored and cannot be told from others any more; open the "
                   u"recordset again",
                   query_.table->name);
    }
    Cell cell = cell_of(value, column);
    put_.resize(query_.columns.size());
    for (std::size_t i = 0; i < put_.size(); ++i) {
        if (query_.columns[i].column == &column) {
            put_[i].reset();  // a column may stand twice in a statement
        }
    }
    put_[index] = std::move(cell);
}

// ---- Storing -----------------------------------------------------------------------------------

Session::Written ServerRecordset::insert(Session& session) {
    const bool returns = session.dialect().returned != Returned::Nothing;
    std::string names;
    std::string places;
    std::vector<Argument> arguments;
    for (std::size_t i = 0; i < put_.size(); ++i) {
        if (put_[i]) {
            const Column& column = *query_.columns[i].column;
            names.append(names.empty() ? "" : ",").append(column.sql);
            places.append(places.empty() ? "" : ",").append(column.place);
            arguments.push_back({*put_[i], &column});
        }
    }
    const std::string row = names.empty() ? std::string(session.dialect().default_row)
                                          : "(" + names + ") values(" + places + ")";
    return session.write("insert into " + query_.table->sql + row + returned_list(returns),
                         arguments, columns_, query_.table->name);
}

Session::Written ServerRecordset::update(Session& session) {
    const Dialect& dialect = session.dialect();
    std::string assignments;
    std::vector<Argument> arguments;
    for (std::size_t i = 0; i < put_.size(); ++i) {
        if (put_[i]) {
            const Column& column = *query_.columns[i].column;
            assignments.append(assignments.empty() ? "" : ",");
            assignments.append(column.sql).append("=").append(column.place);
            arguments.push_back({*put_[i], &column});
        }
    }
    const Condition row = identity(rows_.row(row_));
    arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
    std::string sql = "update " + query_.table->sql + " set " + assignments + " where " + row.sql;
    if (query_.table->key.empty()) {
        dialect.one_row.empty() ? require_one_row(session, row) : void(sql += dialect.one_row);
    }
    sql += returned_list(dialect.returned == Returned::OfInsertAndUpdate);
    Session::Written written = session.write(sql, arguments, columns_, query_.table->name);
    // A server may count a row only where its values have become others.
    if (written.count == 0 && !is_still_there(session, row)) {
        fail_about(error_row_deleted, u"The row is not in the table any more, or has been changed",
                   query_.table->name);
    }
    return written;
}

// By the key, or by all columns as they stand in the row.
ServerRecordset::Condition ServerRecordset::identity(std::span<const Cell> row) const {
    Condition condition;
    const auto add = [&](const std::string& matched, const Cell& cell, const Column* column) {
        condition.sql += condition.sql.empty() ? "" : " and ";
        if (column != nullptr && std::holds_alternative<std::monostate>(cell)) {
            condition.sql += column->sql + " is null";
        } else {
            condition.sql += matched;
            condition.arguments.push_back({cell, column});
        }
    };
    const auto cells = row.subspan(query_.columns.size());
    const Table& table = *query_.table;
    for (std::size_t i = 0; i < table.key.size(); ++i) {
        add(table.key[i].matched, cells[i], table.key[i].column);
    }
    for (std::size_t i = 0; table.key.empty() && i < table.columns.size(); ++i) {
        const Column& column = table.columns[i];
        if (column.identifies_row) {
            add(column.sql + "=" + column.place, cells[i], &column);
        }
    }
    if (condition.sql.empty()) {
        fail_about(error_not_updatable,
                   u"The rows cannot be changed, for nothing tells them from one another",
                   table.name);
    }
    return condition;
}

Rows ServerRecordset::rows_where(Session& session, const Condition& condition) const {
    Query query = query_;
    query.sql = "select " + selected_list(query_) + " from " + query_.table->sql + " where " +
                condition.sql;
    query.arguments = condition.arguments;
    query.most_rows = 2;  // so that one can be told from several
    return session.query(query);
}

bool ServerRecordset::is_still_there(Session& session, const Condition& condition) {
    return rows_where(session, condition).count() > 0;
}

void ServerRecordset::require_one_row(Session& session, const Condition& condition) {
    if (rows_where(session, condition).count() > 1) {
        fail_about(error_not_updatable,
                   u"The row cannot be changed, for there are others with the same values",
                   query_.table->name);
    }
}

std::vector<Cell> ServerRecordset::row_stored(Session& session, Session::Written& written) {
    const std::string_view inserted = session.dialect().inserted_row;
    Rows read = std::move(written.rows);
    std::vector<Cell> row = row_with_put();
    if (read.count() == 0 && knows_key()) {
        read = rows_where(session, identity(row));
    } else if (read.count() == 0 && is_new_ && !inserted.empty()) {
        read = rows_where(session, {std::string(inserted), {}});
    }
    if (read.count() != 1) {
        lost_row_ = is_new_ ? rows_.count() : row_;
        return row;
    }
    return std::move(read.cells);
}

// Whether the values by which the row is found are known: of a new row those that have been put.
bool ServerRecordset::knows_key() const {
    const auto is_known = [this](const KeyPart& part) {
        for (std::size_t i = 0; i < put_.size(); ++i) {
            if (put_[i] && query_.columns[i].column == part.column) {
                return true;
            }
        }
        return !is_new_;
    };
    const std::vector<KeyPart>& key = query_.table->key;
    return !key.empty() && std::ranges::all_of(key, is_known);
}

// The row's cells with what has been put in their places, those of the key included.
std::vector<Cell> ServerRecordset::row_with_put() const {
    std::vector<Cell> row(rows_.width);
    if (!is_new_) {
        const auto first = rows_.cells.begin() + static_cast<std::ptrdiff_t>(row_ * rows_.width);
        row.assign(first, first + static_cast<std::ptrdiff_t>(rows_.width));
    }
    for (std::size_t i = 0; i < put_.size(); ++i) {
        for (std::size_t at = 0; put_[i] && at < row.size(); ++at) {
            if (columns_[at] == query_.columns[i].column) {
                row[at] = *put_[i];
            }
        }
    }
    return row;
}

// The same columns as the rows have, so that the row that was stored can take its place.
std::string ServerRecordset::returned_list(bool given_back) const {
    return given_back ? " returning " + selected_list(query_) : "";
}

void ServerRecordset::store_pending() {
    if (is_new_ || !put_.empty()) {
        UpdateBatch(ado::Affect::adAffectCurrent);
    }
}

void ServerRecordset::drop_pending() noexcept {
    is_new_ = false;
    put_.clear();
}

}  // namespace kvarta16::odbc
