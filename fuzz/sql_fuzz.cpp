// Statements of the SQL dialects. A statement that is understood is written from its tree, once
// with as few parentheses as the grammar needs and once with all, and both must read as the same
// tree; and what the adapter makes of it for the engine must be a statement to the engine. An input
// is a statement.
#include <array>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include <unistd.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/sql/parser.h>
#include <kvarta16/platform/sqlite/jet_statements.h>
#include <kvarta16/platform/sqlite/sql_translator.h>
#include <kvarta16/platform/sqlite/sqlite_database.h>

#include "fuzz_support.h"

namespace kvarta16 {
namespace {

using fuzz::expect;
using fuzz::expect_same;
using fuzz::outcome_of;
using fuzz::show;
using sql::Expression;
using sql::ExpressionKind;

// ---- A statement from its tree --------------------------------------------------------------

// How closely an expression binds, from the loosest to the closest.
enum Level : int {
    level_or,
    level_and,
    level_not,
    level_predicate,
    level_operators,
    level_operand = 10
};

int level_of(const Expression& expression) {
    switch (expression.kind) {
        case ExpressionKind::Or:
            return level_or;
        case ExpressionKind::And:
            return level_and;
        case ExpressionKind::Not:
            return level_not;
        case ExpressionKind::Comparison:
        case ExpressionKind::Like:
        case ExpressionKind::IsNull:
        case ExpressionKind::Between:
        case ExpressionKind::In:
            return level_predicate;
        case ExpressionKind::Arithmetic: {
            constexpr std::string_view symbols[] = {"&", "+-", "mod", "\\", "*/", "^"};
            for (std::size_t i = 0; i < std::size(symbols); ++i) {
                if (symbols[i].find(expression.symbol) != std::string_view::npos) {
                    return level_operators + static_cast<int>(i);
                }
            }
            fuzz::broken("An operator", show(expression.symbol), "is none");
        }
        default:
            return level_operand;
    }
}

class StatementWriter {
  public:
    explicit StatementWriter(bool all_parentheses) : all_parentheses_(all_parentheses) {}

    String operator()(const sql::Select& select) {
        String text = u"select ";
        if (select.top) {
            text += u"top " + fuzz_number(*select.top) + u" ";
        }
        text += select.all ? u"*" : list(select.results, [&](const Expression& e) {
            return written(e, level_or);
        });
        text += u" from " + name(select.from) + where(select.where);
        return select.order.empty() ? text : text + u" order by " + orderings(select.order);
    }
    String operator()(const sql::Insert& insert) {
        String text = u"insert into " + name(insert.into);
        if (!insert.columns.empty()) {
            text += u" (" + names(insert.columns) + u")";
        }
        if (insert.select) {
            return text + u" " + (*this)(*insert.select);
        }
        return text + u" values (" +
               list(insert.values, [&](const Expression& e) { return written(e, level_or); }) +
               u")";
    }
    String operator()(const sql::Update& update) {
        return u"update " + name(update.table) + u" set " +
               list(update.assignments,
                    [&](const sql::Assignment& assignment) {
                        return name(assignment.column) + u" = " +
                               written(assignment.value, level_or);
                    }) +
               where(update.where);
    }
    String operator()(const sql::Delete& statement) {
        return u"delete from " + name(statement.from) + where(statement.where);
    }
    String operator()(const sql::CreateTable& create) {
        String elements = list(create.columns, [&](const auto& column) { return field(column); });
        for (const sql::KeyDefinition& key : create.keys) {
            elements += elements.empty() ? u"" : u", ";
            elements += key.name.empty() ? String() : u"constraint " + bracketed(key.name) + u" ";
            elements += key.primary ? u"primary key (" : u"unique (";
            elements += names(key.columns) + u")";
        }
        return u"create table " + name(create.name) + u" (" + elements + u")";
    }
    String operator()(const sql::DropTable& drop) { return u"drop table " + name(drop.name); }
    String operator()(const sql::CreateIndex& create) {
        return (create.unique ? u"create unique index " : u"create index ") + name(create.name) +
               u" on " + name(create.table) + u" (" + orderings(create.columns) + u")";
    }
    String operator()(const sql::DropIndex& drop) {
        return u"drop index " + name(drop.name) + u" on " + name(drop.table);
    }
    String operator()(const sql::AddColumn& add) {
        return u"alter table " + name(add.table) + u" add column " + field(add.column);
    }
    String operator()(const sql::DropColumn& drop) {
        return u"alter table " + name(drop.table) + u" drop column " + name(drop.column);
    }
    String operator()(const sql::AlterColumn& alter) {
        return u"alter table " + name(alter.table) + u" alter column " + field(alter.column);
    }

    // An expression where one of at least this level stands.
    String written(const Expression& expression, int least) {
        const bool in_parentheses = level_of(expression) < least ||
                                    (all_parentheses_ && level_of(expression) < level_operand);
        const String text = bare(expression);
        return in_parentheses ? u"(" + text + u")" : text;
    }

  private:
    static String fuzz_number(std::int64_t number) { return from_utf8(std::to_string(number)); }

    static String bracketed(StringView part) {
        return u"[" + replace_all(part, u"]", u"]]") + u"]";
    }
    static String name(const sql::Name& name) {
        String text;
        for (const StringView part : name.parts) {
            text += (text.empty() ? u"" : u".") + bracketed(part);
        }
        return text;
    }
    template <class Items, class Write>
    static String list(const Items& items, Write write) {
        String text;
        for (const auto& item : items) {
            text += (text.empty() ? u"" : u", ") + write(item);
        }
        return text;
    }
    static String names(const std::vector<sql::Name>& items) {
        return list(items, [](const sql::Name& item) { return name(item); });
    }
    static String orderings(const std::vector<sql::Ordering>& items) {
        return list(items, [](const sql::Ordering& item) {
            return name(item.column) + (item.descending ? u" desc" : u"");
        });
    }
    String where(const std::optional<Expression>& condition) {
        return condition ? u" where " + written(*condition, level_or) : u"";
    }

    static String type_text(const sql::FieldType& type) {
        struct Word {
            Integer type;
            StringView word;
        };
        constexpr Word words[] = {
            {dao::dbBoolean, u"bit"},   {dao::dbByte, u"byte"},      {dao::dbInteger, u"short"},
            {dao::dbLong, u"long"},     {dao::dbCurrency, u"money"}, {dao::dbSingle, u"single"},
            {dao::dbDouble, u"double"}, {dao::dbDate, u"datetime"},  {dao::dbText, u"text"},
            {dao::dbMemo, u"memo"},     {dao::dbBinary, u"binary"},  {dao::dbLongBinary, u"image"},
            {sql::dbGUID, u"guid"}};
        if (type.counter) {
            return u"counter";
        }
        const auto* const found = std::ranges::find(words, type.type, &Word::type);
        const String length =
            sql::has_length(type.type) ? u" (" + fuzz_number(type.size) + u")" : u"";
        return String(found->word) + length;
    }
    String field(const sql::ColumnDefinition& column) {
        String text = name(column.name) + u" " + type_text(column.type);
        text += column.not_null ? u" not null" : u"";
        if (column.default_value) {
            text += u" default " + written(column.default_value->value, level_operators);
        }
        // The name is that of the last one.
        text += column.primary && column.unique ? u" primary key" : u"";
        text +=
            column.constraint.empty() ? String() : u" constraint " + bracketed(column.constraint);
        return text + (column.unique ? u" unique" : column.primary ? u" primary key" : u"");
    }

    String literal(const Expression& expression) {
        if (const auto* text = std::get_if<String>(&expression.value)) {
            return u"'" + replace_all(*text, u"'", u"''") + u"'";
        }
        return from_utf8(expression.symbol);
    }
    static String moment(const Expression& expression) {
        if (!expression.symbol.empty()) {
            return from_utf8(expression.symbol) + u"()";
        }
        return u"{ts '" + from_utf8(sql::stored_text(expression.moment)) + u"'}";
    }
    String operands(const Expression& expression, StringView word, int least) {
        String text;
        for (const Expression& operand : expression.operands) {
            text.append(text.empty() ? StringView() : word).append(written(operand, least));
        }
        return text;
    }
    String negation(const Expression& expression) {
        const Expression& inner = expression.operands[0];
        // Of what has no parentheses of its own a name or a word alone may stand behind the sign.
        const bool is_bare = inner.kind == ExpressionKind::Column ||
                             inner.kind == ExpressionKind::Truth ||
                             inner.kind == ExpressionKind::Null ||
                             (inner.kind == ExpressionKind::Moment && !inner.symbol.empty());
        return is_bare ? u"-" + bare(inner) : u"-(" + bare(inner) + u")";
    }

    String bare(const Expression& expression) {
        const String negated = expression.negated ? u" not" : u"";
        const auto operand = [&](std::size_t i, int least) {
            return written(expression.operands[i], least);
        };
        switch (expression.kind) {
            case ExpressionKind::Null:
                return u"null";
            case ExpressionKind::Truth:
                return std::get<std::int64_t>(expression.value) != 0 ? u"true" : u"false";
            case ExpressionKind::Number:
            case ExpressionKind::Text:
                return literal(expression);
            case ExpressionKind::Moment:
                return moment(expression);
            case ExpressionKind::Column:
                return name(expression.name);
            case ExpressionKind::Negation:
                return negation(expression);
            case ExpressionKind::Arithmetic: {
                const int level = level_of(expression);
                return operand(0, level) + u" " + from_utf8(expression.symbol) + u" " +
                       operand(1, level + 1);
            }
            case ExpressionKind::Comparison:
                return operand(0, level_operators) + u" " + from_utf8(expression.symbol) + u" " +
                       operand(1, level_operators);
            case ExpressionKind::Like:
                return operand(0, level_operators) + negated + u" like " +
                       operand(1, level_operators);
            case ExpressionKind::IsNull:
                return operand(0, level_operators) + u" is" + negated + u" null";
            case ExpressionKind::Between:
                return operand(0, level_operators) + negated + u" between " +
                       operand(1, level_operators) + u" and " + operand(2, level_operators);
            case ExpressionKind::In: {
                Expression list = expression;
                list.operands.erase(list.operands.begin());
                return operand(0, level_operators) + negated + u" in (" +
                       operands(list, u", ", level_operators) + u")";
            }
            case ExpressionKind::Not:
                return (expression.negated ? u"not not " : u"not ") + operand(0, level_predicate);
            case ExpressionKind::And:
                return operands(expression, u" and ", level_not);
            default:
                return operands(expression, u" or ", level_and);
        }
    }

    bool all_parentheses_;
};

String written(const sql::Statement& tree, bool all_parentheses) {
    return std::visit(StatementWriter(all_parentheses), tree);
}

// ---- Reading and writing --------------------------------------------------------------------

bool is_refusal(Long number) {
    constexpr Long numbers[] = {3075, 3085, 3129, 3134, 3144, 3290, 3291, 3292, 3293, 3295, 3360};
    return std::ranges::find(numbers, number) != std::end(numbers);
}

void check_tokens(const String& statement) {
    const auto tokens = outcome_of([&] { return sql::tokenize(statement).size(); });
    if (!tokens.value) {
        expect(is_refusal(tokens.failure), "A refusal of", show(statement));
        return;
    }
    std::size_t at = 0;
    for (const sql::Token& token : sql::tokenize(statement)) {
        const std::size_t start = token.column - 1;
        expect(start >= at && start + token.source.size() <= statement.size(),
               "Tokens in their order in", show(statement));
        const StringView gap = StringView(statement).substr(at, start - at);
        expect(gap.find_first_not_of(u" \t\r\n") == StringView::npos,
               "Nothing but blanks between the tokens of", show(statement));
        expect(StringView(statement).substr(start, token.source.size()) == token.source,
               "A token where it says it stands in", show(statement));
        at = start + token.source.size();
    }
    expect_same("The end of the tokens of", show(statement), at, statement.size());
}

void check_same_tree(const String& statement, const String& again, const String& tree) {
    const auto read = outcome_of([&] { return written(sql::parse_statement(again).tree, true); });
    // Parentheses beyond the depth that is taken are no other tree.
    const auto depth = std::ranges::count(again, u'(');
    if (read.failure == sql::error_syntax && depth > 60 && again == tree) {
        return;
    }
    expect_same("The tree of " + show(again) + ", which is written of,", show(statement), read,
                {tree});
}

// The same from a select alone, which recordsets are opened by.
void check_select(const String& statement, const sql::Statement& tree) {
    const auto select = outcome_of(
        [&] { return written(sql::Statement(sql::parse_select(statement).tree), true); });
    if (select.value) {
        expect_same("The tree of the select", show(statement), *select.value, written(tree, true));
    } else {
        expect(is_refusal(select.failure), "A refusal of the select", show(statement));
    }
}

// ---- The engine -----------------------------------------------------------------------------

// A database of one table with a column of each kind, in a file of its own that goes when the run
// ends.
class Laboratory {
  public:
    Laboratory()
        : folder_(made_folder()), database_((folder_ / "sql.db").string(), {.create = true}) {
        database_.execute(
            "pragma journal_mode=memory; pragma synchronous=off;"
            "create table T (n INTEGER PRIMARY KEY, l LONG, x DOUBLE, k CURRENCY, d DATETIME,"
            " b BIT, t TEXT(20), m MEMO, \"Łódź ]1\" TEXT(5));"
            "insert into T values (1, 2, 1.5, 12.5, '2024-05-17 13:45:00', -1, 'abc', 'a', 'ż');"
            "insert into T (n) values (2);"
            "create table [select] (a TEXT(3) NOT NULL, b DATETIME, UNIQUE (a));"
            "create index i on T (t); create view V as select n, t from T;");
    }
    ~Laboratory() { std::filesystem::remove_all(folder_); }
    Laboratory(const Laboratory&) = delete;
    Laboratory& operator=(const Laboratory&) = delete;
    Laboratory(Laboratory&&) = delete;
    Laboratory& operator=(Laboratory&&) = delete;

    // Does the statement and takes it back.
    void run(const String& statement, bool is_select) {
        database_.begin();
        try {
            if (is_select) {
                const sqlite::Translation translation = sqlite::translate(statement, database_);
                static_cast<void>(database_.run(translation.sql, translation.parameters));
            } else {
                static_cast<void>(sqlite::execute_statement(database_, statement));
            }
        } catch (const Failure& failure) {
            check_failure(statement, failure);
        }
        database_.rollback();
    }

  private:
    static std::filesystem::path made_folder() {
        std::string name =
            (std::filesystem::temp_directory_path() / "kvarta16-fuzz-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            fuzz::broken("A folder", name, "cannot be made");
        }
        return name;
    }

    // A value may be refused by the adapter or by the rules of a table, but what reaches the engine
    // is a statement of its own to it, about columns and functions that are there.
    static void check_failure(const String& statement, const Failure& failure) {
        const std::string_view text = failure.what();
        for (const std::string_view complaint :
             {"(near \"", "(no such column", "(no such function", "(incomplete input",
              "(unrecognized token", "(wrong number of arguments", "(ambiguous", "(misuse of"}) {
            // A name in the text may hold such words itself.
            const bool is_of_statement = to_utf8(statement).find(complaint) != std::string::npos;
            expect(is_of_statement || text.find(complaint) == std::string_view::npos,
                   "The engine understands what is made, " + std::string(text) + ", of",
                   show(statement));
        }
        constexpr Long unlisted = 3000;
        expect(failure.number() != unlisted,
               "A failure with a number, not " + std::string(text) + ", of", show(statement));
    }

    std::filesystem::path folder_;
    sqlite::Database database_;
};

// The dialects' now() is the platform's clock, and an input must come to the same at any time.
class FixedClock final : public Clock {
  public:
    Date Now() override { return {45429.5}; }
};

void check(const String& statement) {
    static Laboratory laboratory;
    check_tokens(statement);
    const auto parsed =
        outcome_of([&] { return written(sql::parse_statement(statement).tree, true); });
    if (!parsed.value) {
        expect(is_refusal(parsed.failure), "A refusal of", show(statement));
        return;
    }
    const auto again = sql::parse_statement(statement);
    check_same_tree(statement, written(again.tree, false), *parsed.value);
    check_same_tree(statement, *parsed.value, *parsed.value);
    const bool is_select = std::holds_alternative<sql::Select>(again.tree);
    if (is_select) {
        check_select(statement, again.tree);
    }
    laboratory.run(statement, is_select);
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvarta16;
    constexpr std::size_t longest = 2000;
    static FixedClock clock;
    Platform operations = platform();
    operations.clock = &clock;
    const ScopedPlatform scope(operations);
    check(fuzz::Input(data, std::min(size, longest)).rest_as_text());
    return 0;
}
