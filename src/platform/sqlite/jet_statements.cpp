#include <algorithm>
#include <utility>

#include <kvarta16/platform/sql/parser.h>
#include <kvarta16/platform/sqlite/jet_statements.h>
#include <kvarta16/platform/sqlite/jet_writer.h>
#include <kvarta16/platform/sqlite/sqlite_errors.h>
#include <kvarta16/platform/sqlite/table_changes.h>

namespace kvarta16::sqlite {
namespace {

// The table or view that rows are read from.
std::shared_ptr<const Table> source_of(Database& database, const sql::Name& name) {
    auto table = is_own_name(name.own()) ? nullptr : database.find_table(name.own());
    if (table == nullptr) {
        fail_about(error_no_table, u"There is no such table", name.own());
    }
    return table;
}

std::string where_sql(jet::Writer& writer, const std::optional<sql::Expression>& where) {
    return where ? " where " + writer.condition(*where) : "";
}

// The columns that an insert names, or all of them.
std::vector<const Column*> targets_of(const sql::Insert& insert, const Table& table) {
    std::vector<const Column*> targets;
    for (const sql::Name& name : insert.columns) {
        const auto found = find_name(table.columns, name.own());
        if (found == table.columns.end()) {
            fail_about(error_no_insert_field, u"There is no such column in the table " + table.name,
                       name.own());
        }
        targets.push_back(&*found);
    }
    for (std::size_t i = 0; insert.columns.empty() && i < table.columns.size(); ++i) {
        targets.push_back(&table.columns[i]);
    }
    return targets;
}

void require_count(std::size_t values, std::size_t columns, const Table& table) {
    if (values != columns) {
        fail_about(error_value_count, u"There are more or fewer values than columns", table.name);
    }
}

std::string listed(const std::vector<std::string>& parts) {
    std::string list;
    for (const std::string& part : parts) {
        list.append(list.empty() ? "" : ",").append(part);
    }
    return list;
}

// The columns that are left out and have a moment as their default. The engine has a clock of its
// own; a statement goes by the platform's.
std::vector<const Column*> present_columns(const Table& table,
                                           const std::vector<const Column*>& targets) {
    std::vector<const Column*> found;
    for (const Column& column : table.columns) {
        const bool reads_clock = column.default_sql.find("'now'") != std::string::npos ||
                                 column.default_sql.find("CURRENT_") != std::string::npos;
        if (reads_clock && std::ranges::find(targets, &column) == targets.end()) {
            found.push_back(&column);
        }
    }
    return found;
}

// The values of the statement's columns, and of `presents` behind them.
class InsertSource {
  public:
    InsertSource(Database& database, const sql::Insert& insert, std::vector<Cell>& parameters)
        : insert_(insert),
          source_(insert.select ? source_of(database, insert.select->from) : nullptr),
          writer_(source_.get(), parameters) {}

    void add(const sql::Expression& value, const Column& column) {
        values_.push_back(writer_.value_for(value, column));
    }

    // The values as they are told, each for its column.
    void add_told(const std::vector<const Column*>& targets, const Table& table) {
        const auto& told = insert_.select ? insert_.select->results : insert_.values;
        const bool all = insert_.select && insert_.select->all;
        require_count(all ? source_->columns.size() : told.size(), targets.size(), table);
        for (std::size_t i = 0; i < targets.size(); ++i) {
            if (all) {
                const sql::Expression column{.kind = sql::ExpressionKind::Column,
                                             .name = {nullptr, {source_->columns[i].name}}};
                add(column, *targets[i]);
            } else {
                add(told[i], *targets[i]);
            }
        }
    }

    [[nodiscard]] std::string sql() {
        if (!insert_.select) {
            return " values(" + listed(values_) + ")";
        }
        const sql::Select& select = *insert_.select;
        std::string sql = " select " + listed(values_) + " from " + source_->sql +
                          where_sql(writer_, select.where) + writer_.order(select.order);
        return select.top ? sql + " limit " + writer_.parameter(*select.top) : sql;
    }

  private:
    const sql::Insert& insert_;
    std::shared_ptr<const Table> source_;
    jet::Writer writer_;
    std::vector<std::string> values_;
};

void apply(Database& database, const sql::Insert& insert) {
    const auto table = table_of(database, insert.into);
    std::vector<const Column*> targets = targets_of(insert, *table);
    std::vector<Cell> parameters;
    InsertSource source(database, insert, parameters);
    source.add_told(targets, *table);
    for (const Column* column : present_columns(*table, targets)) {
        const auto parsed = sql::parse_value(default_text(*column));
        source.add(parsed.tree, *column);
        targets.push_back(column);
    }
    std::vector<std::string> names;
    std::ranges::transform(targets, std::back_inserter(names), &Column::sql);
    const std::string sql = "insert into " + table->sql + "(" + listed(names) + ")" + source.sql();
    database.run(sql, parameters, table->name);
}

void apply(Database& database, const sql::Update& update) {
    const auto table = table_of(database, update.table);
    std::vector<Cell> parameters;
    jet::Writer writer(table.get(), parameters);
    std::vector<std::string> assignments;
    for (const sql::Assignment& assignment : update.assignments) {
        const Column& column = writer.column(assignment.column);
        assignments.push_back(column.sql + "=" + writer.value_for(assignment.value, column));
    }
    const std::string sql =
        "update " + table->sql + " set " + listed(assignments) + where_sql(writer, update.where);
    database.run(sql, parameters, table->name);
}

void apply(Database& database, const sql::Delete& statement) {
    const auto table = table_of(database, statement.from);
    std::vector<Cell> parameters;
    jet::Writer writer(table.get(), parameters);
    const std::string sql = "delete from " + table->sql + where_sql(writer, statement.where);
    database.run(sql, parameters, table->name);
}

[[noreturn]] void apply(Database&, const sql::Select& select) {
    fail_about(error_is_select, u"A select gives rows and is not executed", select.from.own());
}

std::optional<Dropped> dropped_by(const sql::Statement& statement) {
    if (const auto* table = std::get_if<sql::DropTable>(&statement)) {
        return Dropped{String(table->name.own()), u""};
    }
    if (const auto* column = std::get_if<sql::DropColumn>(&statement)) {
        return Dropped{String(column->table.own()), String(column->column.own())};
    }
    return std::nullopt;
}

}  // namespace

std::optional<Dropped> execute_statement(Database& database, StringView statement) {
    const sql::Parsed<sql::Statement> parsed = sql::parse_statement(statement);
    if (const auto* select = std::get_if<sql::Select>(&parsed.tree)) {
        apply(database, *select);
    }
    database.change(
        [&] { std::visit([&](const auto& tree) { apply(database, tree); }, parsed.tree); });
    return dropped_by(parsed.tree);
}

}  // namespace kvarta16::sqlite
