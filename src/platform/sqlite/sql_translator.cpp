#include <algorithm>
#include <charconv>
#include <optional>
#include <span>
#include <utility>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/sqlite/sql_tokenizer.h>
#include <kvarta16/platform/sqlite/sql_translator.h>
#include <kvarta16/platform/sqlite/sqlite_errors.h>

namespace kvarta16::sqlite {
namespace {

constexpr StringView reserved_words[] = {
    u"and", u"asc",  u"between", u"by",    u"desc",   u"false", u"from", u"in",   u"is",
    u"not", u"null", u"or",      u"order", u"select", u"top",   u"true", u"where"};

constexpr StringView comparison_symbols[] = {u"=", u"<>", u"<", u">", u"<=", u">="};

// What the values of a comparison are taken for.
enum class Mode : std::uint8_t { Plain, Seconds, Milliseconds, Number, Truth };

enum class OperandKind : std::uint8_t { Condition, Column, Number, Text, Truth, Moment, Null };

struct Operand {
    OperandKind kind;
    const Token* token;              // where it begins
    std::string sql = {};            // of a condition
    const Column* column = nullptr;  // of a column
    Cell value = {};                 // of a number (INTEGER or REAL), text, or truth (-1 or 0)
    Moment moment = {};              // of a moment
};

// A name as it stands, with the owners before it.
struct Name {
    const Token* token;
    std::vector<StringView> parts;
    [[nodiscard]] StringView own() const { return parts.back(); }
};

// ---- How a comparison is made ------------------------------------------------------------------

std::optional<Moment> moment_of(const Operand& operand) {
    return operand.kind == OperandKind::Moment ? operand.moment : moment_of(operand.value);
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

// An INTEGER column holds numbers in one form alone; the engine compares them by itself, and can
// use an index.
bool compares_numbers(std::span<const Operand> operands) {
    const bool about_numbers =
        any_of_kind(operands, OperandKind::Number) || any_column_of(operands, ColumnKind::Money);
    return about_numbers &&
           std::ranges::any_of(operands,
                               [](const Operand& o) {
                                   return o.kind == OperandKind::Column &&
                                          (o.column->kind == ColumnKind::Money ||
                                           o.column->affinity != Affinity::Integer);
                               }) &&
           std::ranges::all_of(operands, [](const Operand& o) {
               return o.kind != OperandKind::Text || number_of(o.value).has_value();
           });
}

Mode mode_of(std::span<const Operand> operands) {
    if (compares_moments(operands)) {
        const bool to_seconds = std::ranges::all_of(operands, [](const Operand& o) {
            const auto moment = moment_of(o);
            return !moment || moment->millisecond % 1000 == 0;
        });
        const auto columns = std::ranges::count(operands, OperandKind::Column, &Operand::kind);
        return to_seconds && columns <= 1 ? Mode::Seconds : Mode::Milliseconds;
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

std::string column_sql(const Column& column, Mode mode) {
    constexpr const char* functions[] = {"", seconds_function, milliseconds_function,
                                         number_function, truth_function};
    const char* function = functions[static_cast<std::size_t>(mode)];
    return mode == Mode::Plain ? column.sql : std::string(function) + "(" + column.sql + ")";
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

std::string ascii(StringView text) {
    return {text.begin(), text.end()};  // a number token holds nothing else
}

// ---- The grammar -------------------------------------------------------------------------------

class Translator {
  public:
    Translator(StringView statement, Schema& schema)
        : tokens_(tokenize(statement)), schema_(schema) {}

    Translation run() {
        expect_word(u"select");
        const std::optional<std::int64_t> count = top();
        const std::vector<Name> names = column_names();
        expect_word(u"from");
        from(name());
        select(names);
        result_.sql += " from " + result_.table->sql;
        if (accept_word(u"where")) {
            const Operand condition = disjunction();
            result_.sql += " where " + condition_sql(condition);
        }
        if (accept_word(u"order")) {
            expect_word(u"by");
            order();
        }
        if (count) {
            result_.sql += " limit " + parameter(*count);
        }
        accept_symbol(u";");
        if (current().kind != TokenKind::End) {
            refuse(current(), u"the end of the statement is expected");
        }
        return std::move(result_);
    }

  private:
    static constexpr int deepest_nesting = 64;

    // ---- Tokens ----

    [[nodiscard]] const Token& current() const { return tokens_[at_]; }

    const Token& take() {
        const Token& token = tokens_[at_];
        at_ += token.kind == TokenKind::End ? 0 : 1;
        return token;
    }

    [[nodiscard]] bool is_word(StringView word) const {
        return current().kind == TokenKind::Word && same_name(current().source, word);
    }
    bool accept_word(StringView word) {
        const bool found = is_word(word);
        at_ += found ? 1 : 0;
        return found;
    }
    void expect_word(StringView word) {
        if (!accept_word(word)) {
            refuse(current(), String(word) + u" is expected");
        }
    }
    bool accept_symbol(StringView symbol) {
        const bool found = current().kind == TokenKind::Symbol && current().source == symbol;
        at_ += found ? 1 : 0;
        return found;
    }
    void expect_symbol(StringView symbol) {
        if (!accept_symbol(symbol)) {
            refuse(current(), String(symbol) + u" is expected");
        }
    }

    // ---- Names ----

    [[nodiscard]] StringView name_part() {
        const Token& token = current();
        const bool bare = token.kind == TokenKind::Word &&
                          std::ranges::none_of(reserved_words, [&](StringView word) {
                              return same_name(word, token.source);
                          });
        const bool bracketed = token.kind == TokenKind::Name && !token.value.empty();
        if (!bare && !bracketed) {
            refuse(token, u"a name is expected");
        }
        take();
        return bare ? token.source : StringView(token.value);
    }

    [[nodiscard]] Name name() {
        constexpr std::size_t most_parts = 4;  // database, owner, table, column
        Name result{&current(), {name_part()}};
        while (accept_symbol(u".")) {
            if (result.parts.size() == most_parts) {
                refuse(current(), u"too many owners before a name");
            }
            result.parts.push_back(name_part());
        }
        return result;
    }

    [[nodiscard]] const Column& column(const Name& wanted) const {
        const bool of_the_table =
            wanted.parts.size() == 1 ||
            same_name(wanted.parts[wanted.parts.size() - 2], result_.table->name);
        const auto found = find_name(result_.table->columns, wanted.own());
        if (!of_the_table || found == result_.table->columns.end()) {
            String full;
            for (const StringView part : wanted.parts) {
                full.append(full.empty() ? u"" : u".").append(part);
            }
            fail_about(error_unknown_name,
                       u"There is no such column in the table " + result_.table->name, full);
        }
        return *found;
    }

    // ---- The parts of a statement ----

    std::optional<std::int64_t> top() {
        if (!accept_word(u"top")) {
            return std::nullopt;
        }
        const Token& token = take();
        const Cell count = token.kind == TokenKind::Number ? number_cell(token, false) : Cell();
        if (!std::holds_alternative<std::int64_t>(count)) {
            refuse(token, u"a whole number of rows is expected");
        }
        return std::get<std::int64_t>(count);
    }

    // Empty for all columns.
    std::vector<Name> column_names() {
        std::vector<Name> names;
        if (accept_symbol(u"*")) {
            return names;
        }
        do {
            names.push_back(name());
        } while (accept_symbol(u","));
        return names;
    }

    void from(const Name& wanted) {
        constexpr std::size_t most_parts = 3;  // database, owner, table
        if (wanted.parts.size() > most_parts) {
            refuse(*wanted.token, u"too many owners before a table");
        }
        result_.table = schema_.find_table(wanted.own());
        if (result_.table == nullptr) {
            fail_about(error_no_table, u"There is no such table", wanted.own());
        }
    }

    void select(const std::vector<Name>& names) {
        const Table& table = *result_.table;
        for (const Name& wanted : names) {
            const Column& found = column(wanted);
            result_.columns.push_back({String(wanted.own()), &found});
        }
        for (std::size_t i = 0; names.empty() && i < table.columns.size(); ++i) {
            result_.columns.push_back({table.columns[i].name, &table.columns[i]});
        }
        result_.sql = "select ";
        for (const Translation::Result& result : result_.columns) {
            result_.sql.append(result.column->sql).append(",");
        }
        for (const std::string& key : table.key) {
            result_.sql.append(key).append(",");
        }
        result_.sql.pop_back();
    }

    void order() {
        const char* before = " order by ";
        do {
            const Column& by = column(name());
            result_.sql.append(std::exchange(before, ",")).append(column_sql(by, sorting_mode(by)));
            if (accept_word(u"desc")) {
                result_.sql += " desc";
            } else {
                accept_word(u"asc");
            }
        } while (accept_symbol(u","));
    }

    // ---- Conditions ----

    [[nodiscard]] std::string condition_sql(const Operand& operand) {
        switch (operand.kind) {
            case OperandKind::Condition:
                return operand.sql;
            case OperandKind::Column:
                return "(" + column_sql(*operand.column, Mode::Truth) + "<>0)";
            case OperandKind::Truth:
            case OperandKind::Null:
                return rendered(operand, Mode::Truth);
            default:
                refuse(*operand.token, u"a condition is expected");
        }
    }

    static Operand condition(const Token* token, std::string sql) {
        return {OperandKind::Condition, token, std::move(sql)};
    }

    Operand disjunction() {
        if (++depth_ > deepest_nesting) {
            refuse(current(), u"the condition is nested too deeply");
        }
        Operand left = conjunction();
        if (is_word(u"or")) {
            std::string sql = "(" + condition_sql(left);
            while (accept_word(u"or")) {
                sql += " or " + condition_sql(conjunction());
            }
            left = condition(left.token, sql + ")");
        }
        --depth_;
        return left;
    }

    Operand conjunction() {
        Operand left = negation();
        if (is_word(u"and")) {
            std::string sql = "(" + condition_sql(left);
            while (accept_word(u"and")) {
                sql += " and " + condition_sql(negation());
            }
            left = condition(left.token, sql + ")");
        }
        return left;
    }

    Operand negation() {
        const Token* token = &current();
        bool negated = false;
        bool any = false;
        while (accept_word(u"not")) {
            any = true;
            negated = !negated;
        }
        Operand operand = predicate();
        if (!any) {
            return operand;
        }
        const std::string sql = condition_sql(operand);
        return condition(token, negated ? "(not " + sql + ")" : sql);
    }

    Operand predicate() {
        Operand left = operand();
        const Token& next = current();
        if (next.kind == TokenKind::Symbol &&
            std::ranges::find(comparison_symbols, next.source) != std::end(comparison_symbols)) {
            take();
            return comparison({std::move(left), operand()}, ascii(next.source));
        }
        if (accept_word(u"is")) {
            const bool negated = accept_word(u"not");
            expect_word(u"null");
            const std::string sql = "(" + comparable(left, Mode::Plain);
            return condition(left.token, sql + (negated ? " is not null)" : " is null)"));
        }
        const bool negated = accept_word(u"not");
        if (accept_word(u"between")) {
            return between(std::move(left), negated);
        }
        if (accept_word(u"in")) {
            return in(std::move(left), negated);
        }
        if (negated) {
            refuse(current(), u"between or in is expected");
        }
        return left;
    }

    Operand comparison(const std::vector<Operand>& operands, const std::string& symbol) {
        const Mode mode = mode_of(operands);
        std::string sql = "(" + comparable(operands[0], mode) + symbol;
        return condition(operands[0].token, sql + comparable(operands[1], mode) + ")");
    }

    Operand between(Operand left, bool negated) {
        std::vector<Operand> operands = {std::move(left), operand()};
        expect_word(u"and");
        operands.push_back(operand());
        const Mode mode = mode_of(operands);
        std::string sql = "(" + comparable(operands[0], mode);
        sql += negated ? " not between " : " between ";
        sql += comparable(operands[1], mode) + " and ";
        return condition(operands[0].token, sql + comparable(operands[2], mode) + ")");
    }

    Operand in(Operand left, bool negated) {
        std::vector<Operand> operands = {std::move(left)};
        expect_symbol(u"(");
        do {
            operands.push_back(operand());
        } while (accept_symbol(u","));
        expect_symbol(u")");
        const Mode mode = mode_of(operands);
        std::string sql = "(" + comparable(operands[0], mode) + (negated ? " not in (" : " in (");
        for (std::size_t i = 1; i < operands.size(); ++i) {
            sql.append(i > 1 ? "," : "").append(comparable(operands[i], mode));
        }
        return condition(operands[0].token, sql + "))");
    }

    [[nodiscard]] std::string comparable(const Operand& operand, Mode mode) {
        if (operand.kind == OperandKind::Condition) {
            refuse(*operand.token, u"a condition cannot be compared");
        }
        return rendered(operand, mode);
    }

    [[nodiscard]] std::string rendered(const Operand& operand, Mode mode) {
        if (operand.kind == OperandKind::Column) {
            return column_sql(*operand.column, mode);
        }
        return operand.kind == OperandKind::Null ? "null" : parameter(literal_cell(operand, mode));
    }

    std::string parameter(Cell value) {
        result_.parameters.push_back(std::move(value));
        return "?" + std::to_string(result_.parameters.size());
    }

    // ---- Operands ----

    Operand operand() {
        const Token& token = current();
        switch (token.kind) {
            case TokenKind::Name:
                return column_operand();
            case TokenKind::Word:
                return word_operand();
            case TokenKind::Number:
                take();
                return {.kind = OperandKind::Number,
                        .token = &token,
                        .value = number_cell(token, false)};
            case TokenKind::Text:
                take();
                return {.kind = OperandKind::Text, .token = &token, .value = to_utf8(token.value)};
            case TokenKind::Moment:
                take();
                return moment_operand(token, token, MomentForm::jet);
            default:
                return symbol_operand();
        }
    }

    Operand column_operand() {
        const Token* token = &current();
        return {.kind = OperandKind::Column, .token = token, .column = &column(name())};
    }

    Operand word_operand() {
        const Token& token = current();
        if (accept_word(u"true")) {
            return {.kind = OperandKind::Truth, .token = &token, .value = std::int64_t{-1}};
        }
        if (accept_word(u"false")) {
            return {.kind = OperandKind::Truth, .token = &token, .value = std::int64_t{0}};
        }
        if (accept_word(u"null")) {
            return {.kind = OperandKind::Null, .token = &token};
        }
        const Token& next = tokens_[at_ + 1];  // a word is never the last token
        if (is_word(u"now") && next.kind == TokenKind::Symbol && next.source == u"(") {
            return now(token);
        }
        return column_operand();
    }

    Operand now(const Token& token) {
        expect_word(u"now");
        expect_symbol(u"(");
        expect_symbol(u")");
        const auto moment = moment_of_days(platform().clock->Now().days);
        return {.kind = OperandKind::Moment, .token = &token, .moment = moment.value_or(Moment{})};
    }

    Operand symbol_operand() {
        const Token& token = current();
        if (accept_symbol(u"(")) {
            Operand inner = disjunction();
            expect_symbol(u")");
            return inner;
        }
        if (accept_symbol(u"{")) {
            Operand inner = escape(token);
            expect_symbol(u"}");
            return inner;
        }
        const bool negative = accept_symbol(u"-");
        if (negative || accept_symbol(u"+")) {
            const Token& digits = take();
            if (digits.kind != TokenKind::Number) {
                refuse(digits, u"a number is expected");
            }
            return {.kind = OperandKind::Number,
                    .token = &token,
                    .value = number_cell(digits, negative)};
        }
        refuse(token, u"a column or a value is expected");
    }

    // Behind the brace of an ODBC escape.
    Operand escape(const Token& brace) {
        if (accept_word(u"fn")) {
            return now(brace);
        }
        const std::pair<StringView, MomentForm> escapes[] = {
            {u"d", MomentForm::date}, {u"ts", MomentForm::date_time}, {u"t", MomentForm::time}};
        for (const auto& [word, form] : escapes) {
            if (accept_word(word)) {
                const Token& text = take();
                if (text.kind != TokenKind::Text) {
                    refuse(text, u"a date in quotes is expected");
                }
                return moment_operand(brace, text, form);
            }
        }
        refuse(current(), u"d, ts, t or fn is expected");
    }

    static Operand moment_operand(const Token& begin, const Token& token, MomentForm form) {
        const auto moment = parse_moment(to_utf8(token.value), form);
        if (!moment) {
            refuse(token, u"this is no date");
        }
        return {.kind = OperandKind::Moment, .token = &begin, .moment = *moment};
    }

    static Cell number_cell(const Token& token, bool negative) {
        const std::string text = (negative ? "-" : "") + ascii(token.source);
        const char* end = text.data() + text.size();
        std::int64_t whole = 0;
        const auto [whole_end, whole_code] = std::from_chars(text.data(), end, whole);
        if (whole_code == std::errc() && whole_end == end) {
            return whole;
        }
        double real = 0;
        if (std::from_chars(text.data(), end, real).ec != std::errc()) {
            refuse(token, u"the number is too large or too small");
        }
        return real;
    }

    std::vector<Token> tokens_;
    Schema& schema_;
    std::size_t at_ = 0;
    int depth_ = 0;
    Translation result_;
};

}  // namespace

Translation translate(StringView statement, Schema& schema) {
    return Translator(statement, schema).run();
}

}  // namespace kvarta16::sqlite
