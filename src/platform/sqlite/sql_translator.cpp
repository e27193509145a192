#include <kvarta16/platform/sql/parser.h>
#include <kvarta16/platform/sqlite/jet_writer.h>
#include <kvarta16/platform/sqlite/sql_translator.h>
#include <kvarta16/platform/sqlite/sqlite_errors.h>

namespace kvarta16::sqlite {
namespace {

std::vector<Translation::Result> results_of(const sql::Select& select, const Table& table,
                                            const jet::Writer& writer) {
    std::vector<Translation::Result> results;
    for (const sql::Expression& result : select.results) {
        results.push_back({String(result.name.own()), &writer.column(result.name)});
    }
    for (std::size_t i = 0; select.all && i < table.columns.size(); ++i) {
        results.push_back({table.columns[i].name, &table.columns[i]});
    }
    return results;
}

std::string selected_columns(const Translation& translation) {
    std::string list;
    for (const Translation::Result& result : translation.columns) {
        list.append(list.empty() ? "" : ",").append(result.column->sql);
    }
    for (const std::string& key : translation.table->key) {
        list.append(",").append(key);
    }
    return list;
}

}  // namespace

Translation translate(StringView statement, Schema& schema) {
    const sql::Parsed<sql::Select> parsed = sql::parse_select(statement);
    const sql::Select& select = parsed.tree;
    Translation translation;
    translation.table = schema.find_table(select.from.own());
    if (translation.table == nullptr) {
        fail_about(error_no_table, u"There is no such table", select.from.own());
    }
    const Table& table = *translation.table;
    jet::Writer writer(&table, translation.parameters);
    translation.columns = results_of(select, table, writer);
    translation.sql = "select " + selected_columns(translation) + " from " + table.sql;
    if (select.where) {
        translation.sql += " where " + writer.condition(*select.where);
    }
    translation.sql += writer.order(select.order);
    if (select.top) {
        translation.sql += " limit " + writer.parameter(*select.top);
    }
    return translation;
}

}  // namespace kvarta16::sqlite
