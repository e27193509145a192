#include <algorithm>
#include <optional>
#include <span>
#include <utility>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/sqlite/jet_values.h>
#include <kvarta16/platform/sqlite/jet_writer.h>
#include <kvarta16/platform/sqlite/sqlite_errors.h>

namespace kvarta16::sqlite::jet {

enum class OperandKind : std::uint8_t {
    Condition,
    Column,
    Number,
    Text,
    Truth,
    Moment,
    Null,
    Computed
};

// An expression as far as it has been written.
struct Operand {
    OperandKind kind;
    const sql::Token* token;         // where it begins
    std::string sql = {};            // of a condition or of what is computed
    const Column* column = nullptr;  // of a column
    Cell value = {};                 // of a number (INTEGER or REAL), text, or truth (-1 or 0)
    Moment moment = {};              // of a moment
    std::string digits = {};         // of a number, as it stands
    bool is_date = false;            // what is computed is a number of days
    bool is_text = false;            // what is computed is a text
};

namespace {

using sql::Expression;
using sql::ExpressionKind;

// What the values of a comparison are taken for.
enum class Mode : std::uint8_t { Plain, Seconds, Milliseconds, Number, Truth };

// ---- How a comparison is made ------------------------------------------------------------------

std::optional<Moment> moment_of(const Operand& operand) {
    return operand.kind == OperandKind::Moment ? operand.moment : sqlite::moment_of(operand.value);
}

bool is_column_of(const Operand& operand, ColumnKind kind) {
    return operand.kind == OperandKind::Column && operand.column->kind == kind;
}

// Whether every operand is a column of the kind, a Null, or a literal of which `means` is true.
template <class Test>
bool all_fit(std::span<const Operand> operands, ColumnKind kind, Test means) {
    return std::ranges::all_of(operands, [&](const Operand& operand) {
        return operand.kind == OperandKind::Null ||
               (operand.kind == OperandKind::Column ? operand.column->kind == kind
                                                    : means(operand));
    });
}

bool any_of_kind(std::span<const Operand> operands, OperandKind kind) {
    return std::ranges::any_of(operands, [kind](const Operand& o) { return o.kind == kind; });
}

bool any_column_of(std::span<const Operand> operands, ColumnKind kind) {
    return std::ranges::any_of(operands,
                               [kind](const Operand& o) { return is_column_of(o, kind); });
}

bool compares_moments(std::span<const Operand> operands) {
    return any_of_kind(operands, OperandKind::Moment) ||
           std::ranges::any_of(operands, &Operand::is_date) ||
           (any_column_of(operands, ColumnKind::Date) &&
            all_fit(operands, ColumnKind::Date,
                    [](const Operand& o) { return moment_of(o).has_value(); }));
}

bool compares_truth(std::span<const Operand> operands) {
    return any_of_kind(operands, OperandKind::Truth) ||
           (any_column_of(operands, ColumnKind::Boolean) &&
            all_fit(operands, ColumnKind::Boolean,
                    [](const Operand& o) { return truth_of(o.value).has_value(); }));
}

bool is_number(const Operand& operand) {
    return operand.kind == OperandKind::Number ||
           (operand.kind == OperandKind::Computed && !operand.is_text);
}

// An INTEGER column holds numbers in one form alone; the engine compares them by itself, and can
// use an index.
bool compares_numbers(std::span<const Operand> operands) {
    const bool about_numbers =
        std::ranges::any_of(operands, is_number) || any_column_of(operands, ColumnKind::Money);
    return about_numbers &&
           std::ranges::any_of(operands,
                               [](const Operand& o) {
                                   return o.kind == OperandKind::Column &&
                                          (o.column->kind == ColumnKind::Money ||
                                           o.column->affinity != Affinity::Integer);
                               }) &&
           std::ranges::all_of(operands, [](const Operand& o) {
               return !o.is_text && (o.kind != OperandKind::Text || number_of(o.value).has_value());
           });
}

Mode mode_of(std::span<const Operand> operands) {
    if (compares_moments(operands)) {
        const bool to_seconds = std::ranges::all_of(operands, [](const Operand& o) {
            const auto moment = moment_of(o);
            return !moment || moment->millisecond % 1000 == 0;
        });
        const auto open = std::ranges::count_if(operands, [](const Operand& o) {
            return o.kind == OperandKind::Column || o.kind == OperandKind::Computed;
        });
        return to_seconds && open <= 1 ? Mode::Seconds : Mode::Milliseconds;
    }
    if (compares_truth(operands)) {
        return Mode::Truth;
    }
    return compares_numbers(operands) ? Mode::Number : Mode::Plain;
}

// The mode in which the values of one column sort.
Mode sorting_mode(const Column& column) {
    switch (column.kind) {
        case ColumnKind::Date:
            return Mode::Milliseconds;
        case ColumnKind::Money:
            return Mode::Number;
        case ColumnKind::Boolean:
            return Mode::Truth;
        default:
            return Mode::Plain;
    }
}

std::string in_mode(const std::string& sql, Mode mode) {
    constexpr const char* functions[] = {"", seconds_function, milliseconds_function,
                                         number_function, truth_function};
    const char* function = functions[static_cast<std::size_t>(mode)];
    return mode == Mode::Plain ? sql : std::string(function) + "(" + sql + ")";
}

// A literal as the functions give the values of a column in this mode.
Cell literal_cell(const Operand& operand, Mode mode) {
    switch (mode) {
        case Mode::Seconds:
        case Mode::Milliseconds:
            if (const auto moment = moment_of(operand)) {
                const MomentText text = moment_text(*moment);
                return std::string(text.data(),
                                   mode == Mode::Seconds ? length_to_seconds : text.size());
            }
            return {};
        case Mode::Number:
            if (const auto number = number_of(operand.value);
                number && operand.kind == OperandKind::Text) {
                return *number;
            }
            return operand.value;
        case Mode::Truth:
            if (const auto truth = truth_of(operand.value)) {
                return std::int64_t{*truth ? -1 : 0};
            }
            return {};
        default:
            return operand.value;
    }
}

// ---- Literals ----------------------------------------------------------------------------------

bool is_literal(const Operand& operand) {
    constexpr OperandKind kinds[] = {OperandKind::Number, OperandKind::Text, OperandKind::Truth,
                                     OperandKind::Moment, OperandKind::Null};
    return std::ranges::find(kinds, operand.kind) != std::end(kinds);
}

ColumnKind kind_of(const Operand& operand) {
    switch (operand.kind) {
        case OperandKind::Column:
            return operand.column->kind;
        case OperandKind::Moment:
            return ColumnKind::Date;
        case OperandKind::Truth:
        case OperandKind::Condition:
            return ColumnKind::Boolean;
        default:
            return operand.is_date ? ColumnKind::Date : ColumnKind::Plain;
    }
}

Cell cell_of(const sql::Literal& literal) {
    if (const auto* text = std::get_if<String>(&literal)) {
        return to_utf8(*text);
    }
    if (const auto* real = std::get_if<double>(&literal)) {
        return *real;
    }
    const auto* whole = std::get_if<std::int64_t>(&literal);
    return whole != nullptr ? Cell(*whole) : Cell();
}

Cell cell_in(const Operand& operand) {
    return operand.kind == OperandKind::Moment ? Cell(stored_text(operand.moment)) : operand.value;
}

// Money is read from the digits: as a Double it may not be exact.
Cell literal_for(const Operand& operand, const FieldType& type) {
    const bool exact = type.type == dao::dbCurrency || type.type == dbDecimal;
    if (exact && !operand.digits.empty() && parse_amount(operand.digits)) {
        return converted(operand.digits, ColumnKind::Plain, type);
    }
    return converted(cell_in(operand), kind_of(operand), type);
}

// As the operator takes it: a moment as its days, for "&" everything as text.
FieldType operand_type(bool joins) {
    return {joins ? dao::dbMemo : dao::dbDouble, 0};
}

bool is_date(const Operand& operand) {
    return kind_of(operand) == ColumnKind::Date;
}

bool is_text_operand(const Operand& operand) {
    const bool text_column = operand.kind == OperandKind::Column &&
                             operand.column->kind == ColumnKind::Plain &&
                             operand.column->affinity == Affinity::Text;
    return text_column || operand.kind == OperandKind::Text || operand.is_text;
}

Operand literal_operand(const sql::Token* token, Cell value, bool days) {
    if (std::holds_alternative<std::monostate>(value)) {
        return {.kind = OperandKind::Null, .token = token};
    }
    if (days) {
        if (const auto moment = sqlite::moment_of(value)) {
            return {.kind = OperandKind::Moment, .token = token, .moment = *moment};
        }
    }
    const bool text = std::holds_alternative<std::string>(value);
    return {.kind = text ? OperandKind::Text : OperandKind::Number,
            .token = token,
            .value = std::move(value)};
}

Cell operator_cell(const Operand& operand, bool joins) {
    if (joins || is_date(operand)) {
        return converted(cell_in(operand), kind_of(operand), operand_type(joins));
    }
    return operand.value;
}

std::string text_of(const sql::Name& name) {
    std::string full;
    for (const StringView part : name.parts) {
        full.append(full.empty() ? "" : ".").append(to_utf8(part));
    }
    return full;
}

}  // namespace

// ---- Columns and parameters --------------------------------------------------------------------

const Column& Writer::column(const sql::Name& name) const {
    if (table_ == nullptr) {
        fail_about(error_unknown_name, u"There are no columns here", from_utf8(text_of(name)));
    }
    const bool of_the_table =
        name.parts.size() == 1 || same_name(name.parts[name.parts.size() - 2], table_->name);
    const auto found = find_name(table_->columns, name.own());
    if (!of_the_table || found == table_->columns.end()) {
        fail_about(error_unknown_name, u"There is no such column in the table " + table_->name,
                   from_utf8(text_of(name)));
    }
    return *found;
}

std::string Writer::parameter(Cell value) {
    parameters_->push_back(std::move(value));
    return "?" + std::to_string(parameters_->size());
}

std::string Writer::order(const std::vector<sql::Ordering>& order) const {
    std::string sql;
    for (const sql::Ordering& by : order) {
        const Column& found = column(by.column);
        sql.append(sql.empty() ? " order by " : ",")
            .append(in_mode(found.sql, sorting_mode(found)));
        sql.append(by.descending ? " desc" : "");
    }
    return sql;
}

// ---- Values ------------------------------------------------------------------------------------

Operand Writer::operand(const Expression& expression) {
    switch (expression.kind) {
        case ExpressionKind::Null:
            return {.kind = OperandKind::Null, .token = expression.token};
        case ExpressionKind::Truth:
            return {.kind = OperandKind::Truth,
                    .token = expression.token,
                    .value = cell_of(expression.value)};
        case ExpressionKind::Number:
            return {.kind = OperandKind::Number,
                    .token = expression.token,
                    .value = cell_of(expression.value),
                    .digits = expression.symbol};
        case ExpressionKind::Text:
            return {.kind = OperandKind::Text,
                    .token = expression.token,
                    .value = cell_of(expression.value)};
        case ExpressionKind::Moment:
            return {.kind = OperandKind::Moment,
                    .token = expression.token,
                    .moment = expression.moment};
        case ExpressionKind::Column:
            return {.kind = OperandKind::Column,
                    .token = expression.token,
                    .column = &column(expression.name)};
        case ExpressionKind::Negation:
        case ExpressionKind::Arithmetic:
            return arithmetic(expression);
        default:
            return {.kind = OperandKind::Condition,
                    .token = expression.token,
                    .sql = predicate(expression)};
    }
}

std::vector<Operand> Writer::operands(const Expression& expression) {
    std::vector<Operand> list;
    for (const Expression& part : expression.operands) {
        list.push_back(operand(part));
        if (list.back().kind == OperandKind::Condition) {
            sql::refuse(*part.token, u"a condition cannot be compared");
        }
    }
    return list;
}

Operand Writer::arithmetic(const Expression& expression) {
    std::vector<Operand> parts = operands(expression);
    std::string symbol = expression.symbol;
    if (expression.kind == ExpressionKind::Negation) {
        symbol = "-";
        parts.insert(
            parts.begin(),
            {.kind = OperandKind::Number, .token = expression.token, .value = std::int64_t{0}});
    }
    const bool joins = symbol == "&";
    const bool days = (symbol == "+" || symbol == "-") && is_date(parts[0]) != is_date(parts[1]);
    if (std::ranges::all_of(parts, is_literal)) {
        return literal_operand(
            expression.token,
            computed(symbol, operator_cell(parts[0], joins), operator_cell(parts[1], joins)), days);
    }
    std::string sql = std::string(compute_function) + "('" + symbol + "'";
    for (const Operand& part : parts) {
        const bool converts = joins || is_date(part);
        sql.append(",").append(converts ? converted_sql(part, operand_type(joins))
                                        : value_of(part));
    }
    const bool text =
        joins || (symbol == "+" && is_text_operand(parts[0]) && is_text_operand(parts[1]));
    return {.kind = OperandKind::Computed,
            .token = expression.token,
            .sql = sql + ")",
            .is_date = days,
            .is_text = text};
}

std::string Writer::value_of(const Operand& operand) {
    switch (operand.kind) {
        case OperandKind::Condition:
            return "(-" + operand.sql + ")";  // -1 is true
        case OperandKind::Column:
            return operand.column->sql;
        case OperandKind::Computed:
            return operand.sql;
        case OperandKind::Null:
            return "null";
        default:
            return parameter(cell_in(operand));
    }
}

std::string Writer::converted_sql(const Operand& operand, const FieldType& type) {
    if (is_literal(operand)) {
        const Cell value = literal_for(operand, type);
        return std::holds_alternative<std::monostate>(value) ? "null" : parameter(value);
    }
    std::string sql = std::string(convert_function) + "(" + value_of(operand);
    for (const int argument : {static_cast<int>(kind_of(operand)), static_cast<int>(type.type),
                               static_cast<int>(type.size)}) {
        sql.append(",").append(std::to_string(argument));
    }
    return sql + ")";
}

std::string Writer::value_for(const Expression& expression, const Column& column) {
    const Operand value = operand(expression);
    // What one column holds another of its type and length can hold as it is.
    if (value.kind == OperandKind::Column && value.column->type.type == column.type.type &&
        value.column->type.size <= column.type.size) {
        return value.column->sql;
    }
    return converted_sql(value, column.type);
}

// ---- Conditions --------------------------------------------------------------------------------

std::string Writer::condition(const Expression& expression) {
    return condition_of(operand(expression));
}

std::string Writer::condition_of(const Operand& operand) {
    switch (operand.kind) {
        case OperandKind::Condition:
            return operand.sql;
        case OperandKind::Column:
            return "(" + in_mode(operand.column->sql, Mode::Truth) + "<>0)";
        case OperandKind::Truth:
            return parameter(operand.value);
        case OperandKind::Null:
            return "null";
        default:
            sql::refuse(*operand.token, u"a condition is expected");
    }
}

std::string Writer::joined(const Expression& expression, const char* word) {
    std::string sql = "(";
    for (std::size_t i = 0; i < expression.operands.size(); ++i) {
        sql.append(i == 0 ? "" : word).append(condition(expression.operands[i]));
    }
    return sql + ")";
}

std::string Writer::predicate(const Expression& expression) {
    if (expression.kind == ExpressionKind::And) {
        return joined(expression, " and ");
    }
    if (expression.kind == ExpressionKind::Or) {
        return joined(expression, " or ");
    }
    if (expression.kind == ExpressionKind::Not) {
        const std::string sql = condition(expression.operands.front());
        return expression.negated ? sql : "(not " + sql + ")";
    }
    const std::vector<Operand> parts = operands(expression);
    const char* negation = expression.negated ? " not" : "";
    if (expression.kind == ExpressionKind::Like) {
        const FieldType text{dao::dbMemo, 0};
        std::string sql = std::string(expression.negated ? "(not " : "(") + like_function + "(";
        sql.append(converted_sql(parts[0], text)).append(",");
        return sql.append(converted_sql(parts[1], text)).append("))");
    }
    if (expression.kind == ExpressionKind::IsNull) {
        return "(" + value_of(parts[0]) + " is" + negation + " null)";
    }
    const Mode mode = mode_of(parts);
    const auto written = [&](std::size_t i) -> std::string {
        if (parts[i].kind == OperandKind::Null) {
            return "null";
        }
        const bool open =
            parts[i].kind == OperandKind::Column || parts[i].kind == OperandKind::Computed;
        return open ? in_mode(value_of(parts[i]), mode) : parameter(literal_cell(parts[i], mode));
    };
    std::string sql = "(" + written(0);
    if (expression.kind == ExpressionKind::Comparison) {
        return sql.append(expression.symbol).append(written(1)).append(")");
    }
    if (expression.kind == ExpressionKind::Between) {
        sql.append(negation).append(" between ").append(written(1));
        return sql.append(" and ").append(written(2)).append(")");
    }
    sql.append(negation).append(" in (");
    for (std::size_t i = 1; i < parts.size(); ++i) {
        sql.append(i > 1 ? "," : "").append(written(i));
    }
    return sql + "))";
}

Cell constant(const Expression& expression, const FieldType& type) {
    std::vector<Cell> parameters;
    Column column;
    column.type = type;
    const std::string sql = Writer(nullptr, parameters).value_for(expression, column);
    if (sql != "null" && sql != "?1") {
        sql::refuse(*expression.token, u"a value without a condition is expected");
    }
    return parameters.empty() ? Cell() : parameters.front();
}

}  // namespace kvarta16::sqlite::jet
