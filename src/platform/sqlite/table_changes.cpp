#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/sql/parser.h>
#include <kvarta16/platform/sqlite/jet_writer.h>
#include <kvarta16/platform/sqlite/sqlite_errors.h>
#include <kvarta16/platform/sqlite/table_changes.h>
#include <kvarta16/platform/sqlite/table_text.h>

namespace kvarta16::sqlite {
namespace {

std::string text_in(const Cell& cell) {
    const auto* text = std::get_if<std::string>(&cell);
    return text != nullptr ? *text : std::string();
}

bool is_set(const Cell& cell) {
    const auto* number = std::get_if<std::int64_t>(&cell);
    return number != nullptr && *number != 0;
}

// A text in single quotes, as the engine takes it. A statement ends for the engine at a character
// of the code 0.
std::string quoted_text(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text) {
        if (c == '\0') {
            fail_about(error_no_conversion, u"A default holds a character of the code 0",
                       from_utf8(text));
        }
        quoted.append(c == '\'' ? 2 : 1, c);
    }
    return quoted + "'";
}

// ---- Names -------------------------------------------------------------------------------------

void require_valid(StringView name) {
    constexpr std::size_t longest_name = 64;
    const bool bad = name.empty() || name.size() > longest_name || name.front() == u' ' ||
                     name.find_first_of(u".!`[]") != StringView::npos ||
                     std::ranges::any_of(name, [](char16_t c) { return c < u' '; });
    if (bad) {
        fail_about(error_invalid_name, u"This is no name that a table or column can have", name);
    }
}

void require_new_table(Database& database, StringView name) {
    require_valid(name);
    if (is_own_name(name)) {
        fail_about(error_invalid_name, u"Names that begin so belong to the engine", name);
    }
    if (database.find_table(name) != nullptr) {
        fail_about(error_table_exists, u"There is a table of that name already", name);
    }
}

const Column& column_of(const Table& table, const sql::Name& name, Long number) {
    const auto found = find_name(table.columns, name.own());
    if (found == table.columns.end()) {
        fail_about(number, u"There is no such column in the table " + table.name, name.own());
    }
    return *found;
}

// ---- Defaults ----------------------------------------------------------------------------------

// The functions of the dialect as the engine computes them, in local time.
struct Present {
    std::string_view function;
    StringView text;
    std::string_view sql;
};
constexpr Present presents[] = {
    {"now", u"NOW()", "datetime('now','localtime')"},
    {"date", u"DATE()", "datetime('now','localtime','start of day')"},
    {"time", u"TIME()", "'1899-12-30 '||time('now','localtime')"},
};
// What other programs write.
constexpr Present foreign_presents[] = {
    {"", u"NOW()", "CURRENT_TIMESTAMP"},
    {"", u"NOW()", "datetime('now')"},
    {"", u"NOW()", "datetime()"},
    {"", u"DATE()", "CURRENT_DATE"},
    {"", u"DATE()", "date('now')"},
    {"", u"DATE()", "date('now','localtime')"},
    {"", u"TIME()", "CURRENT_TIME"},
    {"", u"", "NULL"},
    {"", u"True", "TRUE"},
    {"", u"False", "FALSE"},
};

std::string without_blanks(std::string_view text) {
    std::string result;
    std::ranges::copy_if(text, std::back_inserter(result), [](char c) { return c != ' '; });
    return result;
}

bool same_sql(std::string_view a, std::string_view b) {
    return same_name(from_utf8(without_blanks(a)), from_utf8(without_blanks(b)));
}

// 'it''s' as "it's".
std::optional<String> text_literal(std::string_view sql) {
    if (sql.size() < 2 || sql.front() != '\'' || sql.back() != '\'') {
        return std::nullopt;
    }
    String text = u"\"";
    const String inside = from_utf8(sql.substr(1, sql.size() - 2));
    for (std::size_t i = 0; i < inside.size(); ++i) {
        if (inside[i] == u'\'' && (++i == inside.size() || inside[i] != u'\'')) {
            return std::nullopt;
        }
        text.append(inside[i] == u'"' ? 2 : 1, inside[i]);
    }
    return text + u"\"";
}

String default_text_of(std::string_view sql) {
    if (sql.starts_with("/*")) {
        return from_utf8(sql.substr(2, sql.find("*/") - 2));
    }
    for (const Present& present : presents) {
        if (same_sql(sql, present.sql)) {
            return String(present.text);
        }
    }
    for (const Present& present : foreign_presents) {
        if (same_sql(sql, present.sql)) {
            return String(present.text);
        }
    }
    return text_literal(sql).value_or(from_utf8(sql));
}

std::string literal_sql(const Cell& cell) {
    if (const auto* whole = std::get_if<std::int64_t>(&cell)) {
        return std::to_string(*whole);
    }
    if (const auto* real = std::get_if<double>(&cell)) {
        char digits[32];
        auto* const end = std::to_chars(std::begin(digits), std::end(digits), *real).ptr;
        std::string text(std::begin(digits), end);
        const bool is_whole = text.find_first_of(".e") == std::string::npos;
        return is_whole ? text + ".0" : text;
    }
    if (const auto* blob = std::get_if<Blob>(&cell)) {
        return "CAST(" + quoted_text(blob->bytes) + " AS BLOB)";
    }
    const auto* text = std::get_if<std::string>(&cell);
    return text != nullptr ? quoted_text(*text) : "NULL";
}

// The value of a default for the engine.
std::string default_sql(const sql::Expression& value, const FieldType& type) {
    const auto* present = std::ranges::find(presents, value.symbol, &Present::function);
    if (value.kind == sql::ExpressionKind::Moment && present != std::end(presents)) {
        if (type.type != dao::dbDate && !is_text(type.type)) {
            fail_about(error_no_conversion, u"The column cannot have a date as its default",
                       String(present->text));
        }
        return std::string(present->sql);
    }
    FieldType of_any_size = type;  // one that is too long is refused when it is stored
    of_any_size.size = 0;
    return literal_sql(jet::constant(value, of_any_size));
}

// The whole clause; the text that was given stands in a comment if it cannot be told otherwise.
std::string default_clause(StringView text, const sql::Expression& value, const FieldType& type) {
    const std::string sql = default_sql(value, type);
    const std::string given = to_utf8(text);
    const bool told = default_text_of(sql) == text;
    const bool can_be_comment = given.find("*/") == std::string::npos && !given.ends_with('*') &&
                                given.find('\0') == std::string::npos;
    if (told || !can_be_comment) {
        const bool simple = sql.find_first_of("(|") == std::string::npos || sql.starts_with('\'');
        const bool joined = sql.starts_with("'1899-12-30 '||");
        return simple && !joined ? "DEFAULT " + sql : "DEFAULT (" + sql + ")";
    }
    return "DEFAULT (/*" + given + "*/ " + sql + ")";
}

std::string default_clause(StringView text, const FieldType& type) {
    if (trim(text).empty()) {
        return "";
    }
    const auto parsed = sql::parse_value(text);
    return default_clause(text, parsed.tree, type);
}

// While this lives, what is stored is asked for no rule and runs no trigger of other programs.
class WithoutRules {
  public:
    explicit WithoutRules(Database& database) : db_(database.handle()) {
        database.define("PRAGMA ignore_check_constraints=ON", {});
        sqlite3_db_config(db_, SQLITE_DBCONFIG_ENABLE_TRIGGER, -1, &triggers_);
        sqlite3_db_config(db_, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    }
    ~WithoutRules() {
        sqlite3_db_config(db_, SQLITE_DBCONFIG_ENABLE_TRIGGER, triggers_, nullptr);
        sqlite3_exec(db_, "PRAGMA ignore_check_constraints=OFF", nullptr, nullptr, nullptr);
    }
    WithoutRules(const WithoutRules&) = delete;
    WithoutRules& operator=(const WithoutRules&) = delete;
    WithoutRules(WithoutRules&&) = delete;
    WithoutRules& operator=(WithoutRules&&) = delete;

  private:
    sqlite3* db_;
    int triggers_ = 1;
};

// While this lives, the renaming of a table does not look at the views and triggers that mean it by
// its name.
class ByNameAlone {
  public:
    explicit ByNameAlone(Database& database) : db_(database.handle()) {
        sqlite3_db_config(db_, SQLITE_DBCONFIG_LEGACY_ALTER_TABLE, 1, nullptr);
    }
    ~ByNameAlone() { sqlite3_db_config(db_, SQLITE_DBCONFIG_LEGACY_ALTER_TABLE, 0, nullptr); }
    ByNameAlone(const ByNameAlone&) = delete;
    ByNameAlone& operator=(const ByNameAlone&) = delete;
    ByNameAlone(ByNameAlone&&) = delete;
    ByNameAlone& operator=(ByNameAlone&&) = delete;

  private:
    sqlite3* db_;
};

// A default as an expression. In the table's text of another program a word, or a name in double
// quotes, backticks or brackets, is a text there and would be a column in a statement.
std::string default_as_value(const std::string& default_sql) {
    if (default_sql.empty()) {
        return "NULL";
    }
    constexpr std::string_view openings = "\"`[";
    constexpr std::string_view closings = "\"`]";
    const std::size_t quote = openings.find(default_sql.front());
    const bool is_quoted = default_sql.size() > 1 && quote != std::string_view::npos;
    const bool is_word = std::ranges::all_of(default_sql, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    });
    constexpr StringView values[] = {u"null",         u"true",         u"false",
                                     u"current_date", u"current_time", u"current_timestamp"};
    const auto is_same = [word = from_utf8(default_sql)](StringView value) {
        return same_name(word, value);
    };
    if (!is_quoted && (!is_word || std::ranges::any_of(values, is_same))) {
        return default_sql;
    }
    std::string text = "'";
    for (std::size_t i = is_quoted ? 1 : 0; i < default_sql.size() - (is_quoted ? 1 : 0); ++i) {
        text.append(default_sql[i] == '\'' ? 2 : 1, default_sql[i]);
        // Doubled within the quotes.
        i += is_quoted && default_sql[i] == closings[quote] && quote < 2 ? 1 : 0;
    }
    return text + '\'';
}

// A row that was stored before its column was added reads the column's default from the table's
// text. Such rows get the value that they read so far stored, before another default comes.
void store_default_read(Database& database, const Table& table, const Column& column) {
    const std::string before = default_as_value(column.default_sql);
    const std::string sql = "UPDATE " + table.sql + " SET " + column.sql + "=" + column.sql +
                            " WHERE " + column.sql + " IS (" + before + ")";
    const WithoutRules without_rules(database);
    database.run(sql, {}, table.name);
}

void put_default(Database& database, const Table& table, const Column& column,
                 const std::string& clause) {
    TableText text(database.table_text(table));
    const std::string before = text.sql();
    text.set_default(to_utf8(column.name), clause);
    if (text.sql() == before) {
        return;
    }
    store_default_read(database, table, column);
    database.put_table_text(table, text.sql());
}

// ---- Columns -----------------------------------------------------------------------------------

enum class Role : std::uint8_t { Plain, Counter, Key };

// A column as it stands in the table's text. A key that is one LONG column is declared INT: as
// INTEGER it would number the rows by itself.
std::string column_text(const sql::ColumnDefinition& column, Role role) {
    const std::string name = quoted_name(to_utf8(column.name.own()));
    if (role == Role::Counter) {
        return name + " INTEGER PRIMARY KEY AUTOINCREMENT";
    }
    const bool whole_key = role == Role::Key && column.type.type == dao::dbLong;
    std::string text = name + " " + (whole_key ? "INT" : declaration_of(column.type));
    text += column.not_null || role == Role::Key ? " NOT NULL" : "";
    if (column.default_value) {
        text += " " + default_clause(column.default_value->text, column.default_value->value,
                                     column.type);
    }
    if (column.type.type == dao::dbText) {
        text += " CHECK(length(" + name + ")<=" + std::to_string(column.type.size) + ")";
    }
    return text;
}

std::string column_list(const Table& table, const std::vector<sql::Name>& names) {
    std::string list;
    for (const sql::Name& name : names) {
        const Column& column = column_of(table, name, error_no_key_column);
        list.append(list.empty() ? "" : ",").append(column.sql);
    }
    return list;
}

// ---- Indexes -----------------------------------------------------------------------------------

struct Index {
    std::string name;    // in the file
    String own_name;     // on the table
    bool is_constraint;  // of the table's text
};

std::vector<Index> indexes_of(Database& database, const Table& table) {
    const Cell parameters[] = {to_utf8(table.name)};
    Rows listed =
        database.run("SELECT name, origin<>'c' FROM pragma_index_list(?1,'main') ORDER BY seq",
                     parameters, table.name);
    std::vector<Index> indexes;
    for (std::size_t i = 0; i < listed.count(); ++i) {
        const std::string name = text_in(listed.row(i)[0]);
        const std::size_t dot = name.rfind('.');
        indexes.push_back({name, from_utf8(dot == std::string::npos ? name : name.substr(dot + 1)),
                           is_set(listed.row(i)[1])});
    }
    return indexes;
}

bool has_index(Database& database, const Table& table, StringView name) {
    return std::ranges::any_of(indexes_of(database, table), [name](const Index& index) {
        return !index.is_constraint && same_name(index.own_name, name);
    });
}

bool name_is_taken(Database& database, const std::string& name) {
    const Cell parameters[] = {name};
    return is_set(
        database.run("SELECT count(*) FROM sqlite_schema WHERE name=?1 COLLATE NOCASE", parameters)
            .cells.at(0));
}

// A name that no other index of the file has.
std::string index_name(Database& database, const Table& table, StringView own_name) {
    const std::string prefix = to_utf8(table.name);
    const std::string own = "." + to_utf8(own_name);
    std::string name = prefix + own;
    for (int i = 2; name_is_taken(database, name); ++i) {
        name = prefix + " ";
        name.append(std::to_string(i)).append(own);
    }
    return name;
}

void make_index(Database& database, const Table& table, StringView own_name, bool unique,
                const std::string& columns) {
    require_valid(own_name);
    const std::string key = TableText(database.table_text(table)).primary_key_name();
    if (has_index(database, table, own_name) || same_name(from_utf8(key), own_name)) {
        fail_about(error_index_exists, u"The table " + table.name + u" has an index of that name",
                   own_name);
    }
    const std::string name = quoted_name(index_name(database, table, own_name));
    database.define(std::string("CREATE ") + (unique ? "UNIQUE " : "") + "INDEX main." + name +
                        " ON " + quoted_name(to_utf8(table.name)) + "(" + columns + ")",
                    table.name);
}

// A name for an index that was given none.
String free_index_name(Database& database, const Table& table, StringView wanted) {
    String name(wanted);
    for (int i = 2; has_index(database, table, name); ++i) {
        name = String(wanted) + from_utf8(std::to_string(i));
    }
    return name;
}

// Whether an index or the primary key is over the column.
bool is_in_index(Database& database, const Table& table, const Column& column) {
    const Cell parameters[] = {to_utf8(table.name), to_utf8(column.name)};
    return is_set(database
                      .run("SELECT (SELECT count(*) FROM pragma_index_list(?1,'main') AS l,"
                           " pragma_index_info(l.name,'main') AS i WHERE i.name=?2)"
                           " + (SELECT count(*) FROM pragma_table_xinfo(?1,'main')"
                           " WHERE name=?2 AND pk>0)",
                           parameters, table.name)
                      .cells.at(0));
}

bool has_primary_key(Database& database, const Table& table) {
    const Cell parameters[] = {to_utf8(table.name)};
    return is_set(database
                      .run("SELECT count(*) FROM pragma_table_xinfo(?1,'main') WHERE pk>0",
                           parameters, table.name)
                      .cells.at(0));
}

// ---- Making a table ----------------------------------------------------------------------------

// The keys of a table, those of single columns among them.
std::vector<sql::KeyDefinition> keys_of(const sql::CreateTable& statement) {
    std::vector<sql::KeyDefinition> keys;
    for (const sql::ColumnDefinition& column : statement.columns) {
        if (column.primary || column.unique) {
            keys.push_back({column.primary, column.constraint, {column.name}});
        }
    }
    keys.insert(keys.end(), statement.keys.begin(), statement.keys.end());
    return keys;
}

bool is_in(const sql::KeyDefinition& key, const sql::ColumnDefinition& column) {
    return std::ranges::any_of(key.columns, [&](const sql::Name& name) {
        return same_name(name.own(), column.name.own());
    });
}

void require_columns(const sql::KeyDefinition& key,
                     const std::vector<sql::ColumnDefinition>& columns) {
    for (const sql::Name& name : key.columns) {
        const bool is_column = std::ranges::any_of(
            columns, [&](const auto& column) { return same_name(column.name.own(), name.own()); });
        if (!is_column) {
            fail_about(error_no_key_column, u"A key is over a column that the table has not",
                       name.own());
        }
    }
}

void require_sound(const sql::CreateTable& statement, const std::vector<sql::KeyDefinition>& keys) {
    const auto& columns = statement.columns;
    for (auto at = columns.begin(); at != columns.end(); ++at) {
        require_valid(at->name.own());
        const bool twice = std::any_of(columns.begin(), at, [&](const auto& other) {
            return same_name(other.name.own(), at->name.own());
        });
        if (twice) {
            fail_about(error_column_twice, u"The column stands twice in the table", at->name.own());
        }
    }
    if (columns.empty()) {
        fail_about(error_create_table_syntax, u"The table has no column", statement.name.own());
    }
    if (std::ranges::count(keys, true, &sql::KeyDefinition::primary) > 1) {
        fail_about(error_primary_exists, u"The table has two primary keys", statement.name.own());
    }
    for (const sql::KeyDefinition& key : keys) {
        require_columns(key, columns);
    }
    const auto is_counter = [](const auto& column) { return column.type.counter; };
    if (std::ranges::count_if(columns, is_counter) > 1) {
        fail_about(error_two_counters, u"The table has two counters", statement.name.own());
    }
}

std::string key_text(const sql::KeyDefinition& key) {
    std::string list;
    for (const sql::Name& name : key.columns) {
        list.append(list.empty() ? "" : ",").append(quoted_name(to_utf8(name.own())));
    }
    const std::string name =
        key.name.empty() ? "" : "CONSTRAINT " + quoted_name(to_utf8(key.name)) + " ";
    return name + "PRIMARY KEY(" + list + ")";
}

// The statement that makes the table, with its primary key; the keys that are left for indexes stay
// in `keys`.
std::string table_statement(const sql::CreateTable& statement,
                            std::vector<sql::KeyDefinition>& keys) {
    const auto primary = std::ranges::find(keys, true, &sql::KeyDefinition::primary);
    const auto counter = std::ranges::find_if(
        statement.columns, [](const auto& column) { return column.type.counter; });
    std::string text;
    for (const sql::ColumnDefinition& column : statement.columns) {
        const bool in_key = primary != keys.end() && is_in(*primary, column);
        const Role role = column.type.counter ? Role::Counter : in_key ? Role::Key : Role::Plain;
        text.append(text.empty() ? "" : ", ").append(column_text(column, role));
    }
    if (primary != keys.end()) {
        if (counter == statement.columns.end()) {
            text.append(", ").append(key_text(*primary));
            keys.erase(primary);
        } else if (primary->columns.size() == 1 && is_in(*primary, *counter)) {
            keys.erase(primary);
        }
    }
    return "CREATE TABLE main." + quoted_name(to_utf8(statement.name.own())) + " (" + text + ")";
}

// ---- Making a table anew -----------------------------------------------------------------------

std::vector<std::string> statements_of(Database& database, const Table& table) {
    const Cell parameters[] = {to_utf8(table.name)};
    const Rows rows = database.run(
        "SELECT sql FROM sqlite_schema WHERE type IN ('index','trigger') AND tbl_name=?1"
        " AND sql IS NOT NULL",
        parameters, table.name);
    std::vector<std::string> statements;
    for (const Cell& cell : rows.cells) {
        statements.push_back(text_in(cell));
    }
    return statements;
}

// Copies the table under another text, with its indexes and triggers; `selected` are the values of
// the columns in their order.
void make_anew(Database& database, const Table& table, TableText text,
               const std::string& selected) {
    constexpr std::string_view temporary = "kvarta16_anew";
    const std::vector<std::string> statements = statements_of(database, table);
    text.set_table_name(temporary);
    database.define(text.sql(), table.name);
    {
        const WithoutRules without_rules(database);  // the rows had to fit them when they came
        database.run("INSERT INTO main." + std::string(temporary) + " SELECT " + selected +
                         " FROM " + table.sql,
                     {}, table.name);
    }
    database.define("DROP TABLE " + table.sql, table.name);
    const ByNameAlone by_name_alone(database);
    database.define("ALTER TABLE main." + std::string(temporary) + " RENAME TO " +
                        quoted_name(to_utf8(table.name)),
                    table.name);
    for (const std::string& statement : statements) {
        database.define(statement, table.name);
    }
}

void set_size_rule(TableText& text, const std::string& column, const FieldType& type) {
    text.set_rule(column, Rule::MostCharacters, type.type == dao::dbText, type.size);
}

void require_fitting(Database& database, const Table& table, const Column& column, Long size) {
    const Rows longer = database.run("SELECT 1 FROM " + table.sql + " WHERE length(" + column.sql +
                                         ")>" + std::to_string(size) + " LIMIT 1",
                                     {}, table.name);
    if (longer.count() > 0) {
        fail_about(error_text_too_long, u"A row has a longer text in the column", column.name);
    }
}

std::string converted_columns(const Table& table, const Column& changed, const FieldType& type) {
    std::string list;
    for (const Column& column : table.columns) {
        list.append(list.empty() ? "" : ",");
        if (&column != &changed) {
            list.append(column.sql);
            continue;
        }
        list.append(jet::convert_function).append("(").append(column.sql);
        for (const Long argument :
             {static_cast<Long>(column.kind), static_cast<Long>(type.type), type.size}) {
            list.append(",").append(std::to_string(argument));
        }
        list.append(")");
    }
    return list;
}

}  // namespace

// ---- Looking -----------------------------------------------------------------------------------

std::shared_ptr<const Table> table_of(Database& database, const sql::Name& name) {
    auto table = is_own_name(name.own()) ? nullptr : database.find_table(name.own());
    if (table == nullptr || table->is_view) {
        fail_about(error_no_table, u"There is no such table", name.own());
    }
    return table;
}

String default_text(const Column& column) {
    return column.default_sql.empty() ? String() : default_text_of(column.default_sql);
}

bool allows_zero_length(Database& database, const Table& table, const Column& column) {
    return is_text(column.type.type) &&
           !TableText(database.table_text(table)).has_rule(to_utf8(column.name), Rule::NoEmptyText);
}

// ---- Tables ------------------------------------------------------------------------------------

void apply(Database& database, const sql::CreateTable& statement) {
    const StringView name = statement.name.own();
    require_new_table(database, name);
    std::vector<sql::KeyDefinition> keys = keys_of(statement);
    require_sound(statement, keys);
    database.define(table_statement(statement, keys), name);
    for (const sql::KeyDefinition& key : keys) {
        const auto table = table_of(database, statement.name);
        const StringView wanted = !key.name.empty() ? StringView(key.name)
                                  : key.primary     ? u"PrimaryKey"
                                                    : key.columns.front().own();
        make_index(database, *table,
                   key.name.empty() ? free_index_name(database, *table, wanted) : String(wanted),
                   true, column_list(*table, key.columns));
    }
}

void apply(Database& database, const sql::DropTable& statement) {
    const StringView name = statement.name.own();
    const auto table = is_own_name(name) ? nullptr : database.find_table(name);
    if (table == nullptr || table->is_view) {
        fail_about(error_no_drop_table, u"There is no such table to drop", name);
    }
    database.define("DROP TABLE " + table->sql, table->name);
}

void rename_table(Database& database, const Table& table, StringView name) {
    if (table.name == name) {
        return;
    }
    require_valid(name);
    const auto other = database.find_table(name);
    if (is_own_name(name) || (other != nullptr && other->name != table.name)) {
        require_new_table(database, name);
    }
    const std::string utf8 = to_utf8(name);
    const std::string wanted = " RENAME TO " + quoted_name(utf8);
    if (sqlite3_stricmp(utf8.c_str(), to_utf8(table.name).c_str()) != 0) {
        try {
            database.define("ALTER TABLE " + table.sql + wanted, table.name);
            return;
        } catch (const Failure&) {
            if (!same_name(name, table.name)) {
                throw;
            }
        }
        // A view or trigger that is broken anyway is no reason against Polish capitals.
        const ByNameAlone by_name_alone(database);
        database.define("ALTER TABLE " + table.sql + wanted, table.name);
        return;
    }
    // The engine takes a name that differs in case alone, Polish letters excepted, for the table's
    // own; views and triggers mean the table by it as before.
    const ByNameAlone by_name_alone(database);
    constexpr const char* temporary = "kvarta16_renamed";
    database.define("ALTER TABLE " + table.sql + " RENAME TO " + temporary, table.name);
    database.define("ALTER TABLE main." + std::string(temporary) + wanted, table.name);
}

// ---- Indexes -----------------------------------------------------------------------------------

void apply(Database& database, const sql::CreateIndex& statement) {
    const auto table = table_of(database, statement.table);
    std::string columns;
    for (const sql::Ordering& by : statement.columns) {
        const Column& column = column_of(*table, by.column, error_no_key_column);
        columns.append(columns.empty() ? "" : ",").append(column.sql);
        columns.append(by.descending ? " DESC" : "");
    }
    make_index(database, *table, statement.name.own(), statement.unique, columns);
}

void apply(Database& database, const sql::DropIndex& statement) {
    const auto table = table_of(database, statement.table);
    const StringView name = statement.name.own();
    for (const Index& index : indexes_of(database, *table)) {
        if (!index.is_constraint && same_name(index.own_name, name)) {
            database.define("DROP INDEX main." + quoted_name(index.name), table->name);
            return;
        }
    }
    const std::string key = TableText(database.table_text(*table)).primary_key_name();
    if (!key.empty() && same_name(from_utf8(key), name)) {
        fail_about(error_index_in_use, u"The table was made with this primary key", name);
    }
    fail_about(error_no_index, u"There is no such index on the table " + table->name, name);
}

// ---- Columns -----------------------------------------------------------------------------------

void apply(Database& database, const sql::AddColumn& statement) {
    const auto table = table_of(database, statement.table);
    const sql::ColumnDefinition& column = statement.column;
    const StringView name = column.name.own();
    require_valid(name);
    if (find_name(table->columns, name) != table->columns.end()) {
        fail_about(error_column_exists, u"The table " + table->name + u" has a column of that name",
                   name);
    }
    if (column.type.counter) {
        fail_about(error_alter_syntax, u"A counter comes with its table and is not added", name);
    }
    if (column.primary && has_primary_key(database, *table)) {
        fail_about(error_primary_exists, u"The table has a primary key already", table->name);
    }
    const std::string utf8 = to_utf8(name);
    // What the engine would examine in every row, or give to every row, comes afterwards.
    database.define("ALTER TABLE " + table->sql + " ADD COLUMN " + quoted_name(utf8) + " " +
                        declaration_of(column.type),
                    table->name);
    auto changed = table_of(database, statement.table);
    TableText text(database.table_text(*changed));
    set_size_rule(text, utf8, column.type);
    text.set_rule(utf8, Rule::Required, column.not_null || column.primary);
    database.put_table_text(*changed, text.sql());
    changed = table_of(database, statement.table);
    if (column.default_value) {
        put_default(
            database, *changed, changed->columns.back(),
            default_clause(column.default_value->text, column.default_value->value, column.type));
    }
    if (column.primary || column.unique) {
        const StringView wanted = column.primary ? u"PrimaryKey" : name;
        make_index(database, *changed,
                   column.constraint.empty() ? free_index_name(database, *changed, wanted)
                                             : column.constraint,
                   true, quoted_name(utf8));
    }
}

void apply(Database& database, const sql::DropColumn& statement) {
    const auto table = table_of(database, statement.table);
    const Column& column = column_of(*table, statement.column, error_no_alter_column);
    if (is_in_index(database, *table, column)) {
        fail_about(error_in_index, u"An index needs the column", column.name);
    }
    if (table->columns.size() == 1) {
        fail_about(error_alter_syntax, u"A table cannot be without a column", table->name);
    }
    database.define("ALTER TABLE " + table->sql + " DROP COLUMN " + column.sql, table->name);
}

void apply(Database& database, const sql::AlterColumn& statement) {
    const auto table = table_of(database, statement.table);
    const Column& column = column_of(*table, statement.column.name, error_no_alter_column);
    const FieldType& type = statement.column.type;
    if (type.counter || statement.column.primary || statement.column.unique) {
        fail_about(error_alter_syntax, u"Counters and keys are not made of a column that is there",
                   column.name);
    }
    const std::string name = to_utf8(column.name);
    TableText text(database.table_text(*table));
    text.set_type(name, declaration_of(type));
    set_size_rule(text, name, type);
    if (!is_text(type.type)) {
        text.set_rule(name, Rule::NoEmptyText, false);
    }
    if (statement.column.not_null) {
        text.set_rule(name, Rule::Required, true);
    }
    if (column.type.type == dao::dbText && type.type == dao::dbText) {
        require_fitting(database, *table, column, type.size);
        database.put_table_text(*table, text.sql());
    } else {
        const String before = default_text(column);
        text.set_default(name, default_clause(before, type));
        make_anew(database, *table, text, converted_columns(*table, column, type));
    }
    if (statement.column.default_value) {
        const auto changed = table_of(database, statement.table);
        const sql::Default& value = *statement.column.default_value;
        put_default(database, *changed,
                    column_of(*changed, statement.column.name, error_no_alter_column),
                    default_clause(value.text, value.value, type));
    }
}

void set_default(Database& database, const Table& table, const Column& column, StringView text) {
    put_default(database, table, column, default_clause(text, column.type));
}

void set_allow_zero_length(Database& database, const Table& table, const Column& column,
                           bool allow) {
    const std::string name = to_utf8(column.name);
    TableText text(database.table_text(table));
    if (text.has_rule(name, Rule::NoEmptyText) == allow) {
        text.set_rule(name, Rule::NoEmptyText, !allow);
        database.put_table_text(table, text.sql());
    }
}

}  // namespace kvarta16::sqlite
