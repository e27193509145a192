#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/odbc/odbc_errors.h>
#include <kvarta16/platform/odbc/select_writer.h>
#include <kvarta16/platform/sql/names.h>

namespace kvarta16::odbc {
namespace {

using sql::Expression;
using sql::ExpressionKind;
using sql::Moment;
using sql::refuse;
using sql::same_name;

// The last moment of a second to the finest that servers keep; as whole days of a number and as
// text, to the millisecond.
enum class Bound : std::uint8_t { Beginning, EndOfSecond };

// Servers disagree about what operators and patterns mean.
[[noreturn]] void refuse_operator(const Expression& expression) {
    refuse(*expression.token, u"a database server is asked for no arithmetic and no like");
}

bool is_truth(const Expression& expression) {
    return std::get<std::int64_t>(expression.value) != 0;
}

const String& text_of(const Expression& expression) {
    return std::get<String>(expression.value);
}

bool is_number_column(const Column* column) {
    return column != nullptr &&
           (column->kind == ColumnKind::Whole || column->kind == ColumnKind::Real ||
            column->kind == ColumnKind::Exact);
}

std::string with_column(std::string_view pattern, const std::string& column) {
    std::string text;
    for (const char c : pattern) {
        c == '@' ? text.append(column) : text.append(1, c);
    }
    return text;
}

std::string digits_of(double value) {
    std::array<char, 40> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    return {digits.data(), written.ptr};
}

class Writer {
  public:
    Writer(const sql::Select& select, Schema& schema, const Dialect& dialect)
        : select_(select), schema_(schema), dialect_(dialect) {}

    Query run() {
        find_table();
        find_columns();
        query_.sql = "select " + selected_list(query_) + " from " + query_.table->sql;
        if (select_.where) {
            query_.sql += " where " + condition(*select_.where);
        }
        order();
        query_.most_rows = select_.top;
        if (select_.top && dialect_.has_limit) {
            query_.sql += " limit " + std::to_string(*select_.top);
        }
        return std::move(query_);
    }

  private:
    void find_table() {
        const sql::Name& wanted = select_.from;
        const std::vector<String> names(wanted.parts.begin(), wanted.parts.end());
        query_.table = schema_.find_table(names);
        if (query_.table == nullptr) {
            fail_about(error_no_table, u"There is no such table", wanted.own());
        }
    }

    void find_columns() {
        for (const Expression& result : select_.results) {
            query_.columns.push_back({String(result.name.own()), &column(result.name)});
        }
        if (select_.all) {
            for (const Column& each : query_.table->columns) {
                query_.columns.push_back({each.name, &each});
            }
        }
    }

    const Column& column(const sql::Name& wanted) const {
        const Table& table = *query_.table;
        const bool of_the_table = wanted.parts.size() == 1 ||
                                  same_name(wanted.parts[wanted.parts.size() - 2], table.name);
        const auto found = sql::find_name(table.columns, wanted.own());
        if (!of_the_table || found == table.columns.end()) {
            String full;
            for (const StringView part : wanted.parts) {
                full.append(full.empty() ? u"" : u".").append(part);
            }
            fail_about(error_unknown_name, u"There is no such column in the table " + table.name,
                       full);
        }
        return *found;
    }

    void order() {
        const char* before = " order by ";
        for (const sql::Ordering& ordering : select_.order) {
            const Column& by = column(ordering.column);
            const bool as_moment = dialect_.dates_are_text && by.kind == ColumnKind::Date;
            query_.sql.append(std::exchange(before, ","));
            query_.sql += as_moment ? with_column(dialect_.moment, by.sql) : by.sql;
            query_.sql += ordering.descending ? " desc" : "";
        }
    }

    // ---- Conditions ----

    std::string condition(const Expression& expression) {
        switch (expression.kind) {
            case ExpressionKind::And:
                return joined(expression, " and ");
            case ExpressionKind::Or:
                return joined(expression, " or ");
            case ExpressionKind::Not:
                return expression.negated ? condition(expression.operands[0])
                                          : "(not " + condition(expression.operands[0]) + ")";
            case ExpressionKind::Comparison:
                return comparison(expression.operands[0], expression.symbol,
                                  expression.operands[1]);
            case ExpressionKind::Between:
                return between(expression);
            case ExpressionKind::In:
                return in(expression);
            case ExpressionKind::IsNull:
                return "(" + plain(expression.operands[0], nullptr) +
                       (expression.negated ? " is not null)" : " is null)");
            case ExpressionKind::Column:
                return truth(column(expression.name), true);
            case ExpressionKind::Truth:
                return is_truth(expression) ? "(1=1)" : "(1=0)";
            case ExpressionKind::Null:
                return "(1=null)";
            case ExpressionKind::Negation:
            case ExpressionKind::Arithmetic:
            case ExpressionKind::Like:
                refuse_operator(expression);
            default:
                refuse(*expression.token, u"a condition is expected");
        }
    }

    std::string joined(const Expression& expression, const char* word) {
        std::string sql = "(";
        for (const Expression& operand : expression.operands) {
            sql.append(sql.size() > 1 ? word : "").append(condition(operand));
        }
        return sql + ")";
    }

    std::string between(const Expression& expression) {
        const auto& [value, from, to] =
            std::tie(expression.operands[0], expression.operands[1], expression.operands[2]);
        std::string sql = "(" + comparison(value, ">=", from) + " and ";
        sql += comparison(value, "<=", to) + ")";
        return expression.negated ? "(not " + sql + ")" : sql;
    }

    std::string in(const Expression& expression) {
        std::string sql = "(";
        for (std::size_t i = 1; i < expression.operands.size(); ++i) {
            sql.append(i > 1 ? " or " : "");
            sql += comparison(expression.operands[0], "=", expression.operands[i]);
        }
        sql += ")";
        return expression.negated ? "(not " + sql + ")" : sql;
    }

    // The column of an expression that is one.
    const Column* column_of(const Expression& expression) const {
        return expression.kind == ExpressionKind::Column ? &column(expression.name) : nullptr;
    }

    static void require_value(const Expression& operand) {
        switch (operand.kind) {
            case ExpressionKind::Column:
            case ExpressionKind::Number:
            case ExpressionKind::Text:
            case ExpressionKind::Null:
            case ExpressionKind::Truth:
            case ExpressionKind::Moment:
                return;
            case ExpressionKind::Negation:
            case ExpressionKind::Arithmetic:
                refuse_operator(operand);
            default:
                refuse(*operand.token, u"a condition cannot be compared");
        }
    }

    std::string comparison(const Expression& left, std::string_view symbol,
                           const Expression& right) {
        require_value(left);
        require_value(right);
        const Column* const left_column = column_of(left);
        const Column* const right_column = column_of(right);
        if (compares_moments(left, right_column) || compares_moments(right, left_column)) {
            return left_column != nullptr || right_column == nullptr
                       ? moments(left, symbol, right)
                       : moments(right, mirrored(symbol), left);
        }
        if (compares_truth(left, right_column) || compares_truth(right, left_column)) {
            return left_column != nullptr || right_column == nullptr ? truths(left, symbol, right)
                                                                     : truths(right, symbol, left);
        }
        std::string sql = "(" + plain(left, right_column);
        sql.append(symbol);
        return sql + plain(right, left_column) + ")";
    }

    static std::string_view mirrored(std::string_view symbol) {
        constexpr std::pair<std::string_view, std::string_view> pairs[] = {
            {"<", ">"}, {">", "<"}, {"<=", ">="}, {">=", "<="}};
        const auto* found = std::ranges::find(pairs, symbol, [](const auto& p) { return p.first; });
        return found != std::end(pairs) ? found->second : symbol;
    }

    // A value by itself, for a comparison with `other`.
    std::string plain(const Expression& operand, const Column* other) {
        require_value(operand);
        switch (operand.kind) {
            case ExpressionKind::Column:
                return column(operand.name).sql;
            case ExpressionKind::Number:
                return operand.symbol;
            case ExpressionKind::Text:
                return text(text_of(operand), other);
            case ExpressionKind::Truth:
                return is_truth(operand) ? "-1" : "0";
            case ExpressionKind::Moment:
                return moment_literal(operand.moment, Bound::Beginning);
            default:
                return "null";
        }
    }

    // A text that stands for a number goes to a column of numbers as one.
    std::string text(const String& value, const Column* other) {
        if (is_number_column(other)) {
            const Cell cell = parsed_cell(to_utf8(value), {.kind = ColumnKind::Exact});
            if (const auto* exact = std::get_if<Exact>(&cell)) {
                return exact->digits;
            }
        }
        query_.arguments.push_back({value});
        return "?";
    }

    // ---- Truth values ----

    bool compares_truth(const Expression& value, const Column* other) const {
        return value.kind == ExpressionKind::Truth ||
               (other != nullptr && other->kind == ColumnKind::Truth && truth_of(value));
    }

    // What a literal means as a truth value; nothing where it means none.
    static std::optional<bool> truth_of(const Expression& value) {
        if (value.kind == ExpressionKind::Truth) {
            return is_truth(value);
        }
        if (value.kind != ExpressionKind::Number && value.kind != ExpressionKind::Text) {
            return std::nullopt;
        }
        std::string text =
            value.kind == ExpressionKind::Number ? value.symbol : to_utf8(text_of(value));
        const Cell cell = parsed_cell(std::move(text), {.kind = ColumnKind::Truth});
        const bool* truth = std::get_if<bool>(&cell);
        return truth != nullptr ? std::optional(*truth) : std::nullopt;
    }

    std::string truth(const Column& column, bool wanted) const {
        if (dialect_.has_truth_type && column.is_truth_type) {
            return "(" + column.sql + (wanted ? "=true)" : "=false)");
        }
        return "(" + column.sql + (wanted ? "<>0)" : "=0)");
    }

    std::string truths(const Expression& left, std::string_view symbol, const Expression& right) {
        const bool equal = symbol == "=";
        if (!equal && symbol != "<>") {
            refuse(*right.token, u"truth values have no order");
        }
        const std::optional<bool> wanted = truth_of(right);
        if (const Column* column = column_of(left); column != nullptr && wanted) {
            return truth(*column, *wanted == equal);
        }
        std::string sql = "(" + plain(left, nullptr);
        sql.append(symbol);
        return sql + plain(right, nullptr) + ")";
    }

    // ---- Moments ----

    static std::optional<Moment> moment_of(const Expression& value) {
        if (value.kind == ExpressionKind::Moment) {
            return value.moment;
        }
        return value.kind == ExpressionKind::Text ? sql::parse_moment(to_utf8(text_of(value)))
                                                  : std::nullopt;
    }

    static bool compares_moments(const Expression& value, const Column* other) {
        return value.kind == ExpressionKind::Moment ||
               (other != nullptr && other->kind == ColumnKind::Date && moment_of(value));
    }

    // A column on the left and a moment on the right, or two literals.
    std::string moments(const Expression& left, std::string_view symbol, const Expression& right) {
        const std::optional<Moment> moment = moment_of(right);
        if (!moment) {
            refuse(*right.token, u"this is no date");
        }
        const Column* const column = column_of(left);
        if (column == nullptr) {
            return "(" + plain(left, nullptr) + std::string(symbol) + plain(right, nullptr) + ")";
        }
        const auto bounded = [&](const char* relation, Bound bound) {
            return moment_column(*column) + relation +
                   (is_number_column(column) && !dialect_.dates_are_text
                        ? days_literal(*moment, bound)
                        : moment_literal(*moment, bound));
        };
        const Bound end = moment->millisecond % 1000 == 0 ? Bound::EndOfSecond : Bound::Beginning;
        if (symbol == "=") {
            return "(" + bounded(">=", Bound::Beginning) + " and " + bounded("<=", end) + ")";
        }
        if (symbol == "<>") {
            return "(" + bounded("<", Bound::Beginning) + " or " + bounded(">", end) + ")";
        }
        const bool from_end = symbol == ">" || symbol == "<=";
        return "(" + bounded(std::string(symbol).c_str(), from_end ? end : Bound::Beginning) + ")";
    }

    std::string moment_column(const Column& column) const {
        const bool rendered = dialect_.dates_are_text ||
                              (column.kind == ColumnKind::Text && !dialect_.moment.empty());
        return rendered ? with_column(dialect_.moment, column.sql) : column.sql;
    }

    std::string moment_literal(Moment moment, Bound bound) const {
        const sql::MomentText text = sql::moment_text(moment);
        std::string written(text.data(), sql::length_to_seconds);
        if (bound == Bound::EndOfSecond) {
            written += dialect_.dates_are_text ? ".999" : ".999999";
        } else {
            const bool whole = moment.millisecond % 1000 == 0 && !dialect_.dates_are_text;
            written.append(&text[sql::length_to_seconds],
                           whole ? 0 : text.size() - sql::length_to_seconds);
        }
        return dialect_.dates_are_text ? "'" + written + "'" : "{ts '" + written + "'}";
    }

    static std::string days_literal(Moment moment, Bound bound) {
        moment.millisecond += bound == Bound::EndOfSecond ? 999 : 0;
        return digits_of(sql::date_of(moment).days);
    }

    const sql::Select& select_;
    Schema& schema_;
    const Dialect& dialect_;
    Query query_;
};

}  // namespace

Query write_query(const sql::Select& select, Schema& schema, const Dialect& dialect) {
    return Writer(select, schema, dialect).run();
}

std::string selected_list(const Query& query) {
    std::string list;
    const auto append = [&list](const std::string& selected) {
        list.append(list.empty() ? "" : ",").append(selected);
    };
    for (const Query::Result& result : query.columns) {
        append(result.column->selected);
    }
    for (const KeyPart& part : query.table->key) {
        append(part.selected);
    }
    if (query.table->key.empty() && !query.table->is_view) {
        for (const Column& column : query.table->columns) {
            append(column.selected);
        }
    }
    return list;
}

}  // namespace kvarta16::odbc
