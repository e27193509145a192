#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/sql/errors.h>
#include <kvarta16/platform/sql/names.h>
#include <kvarta16/platform/sql/parser.h>

namespace kvarta16::sql {
namespace {

// Words that are no bare names. A column of such a name is told in brackets; taken bare in one
// statement and not in the next, it would be dropped and not come again.
constexpr StringView reserved_words[] = {u"and",        u"asc",    u"between", u"by",   u"column",
                                         u"constraint", u"desc",   u"false",   u"from", u"in",
                                         u"is",         u"like",   u"not",     u"null", u"or",
                                         u"order",      u"select", u"top",     u"true", u"where"};

constexpr StringView comparison_symbols[] = {u"=", u"<>", u"<", u">", u"<=", u">="};

// The operators from the loosest to the closest.
constexpr StringView operators_by_level[][2] = {{u"&", u"&"},   {u"+", u"-"}, {u"mod", u"mod"},
                                                {u"\\", u"\\"}, {u"*", u"/"}, {u"^", u"^"}};

std::string ascii(StringView text) {
    return {text.begin(), text.end()};  // an operator or a number holds nothing else
}

class Parser {
  public:
    explicit Parser(StringView text) : tokens_(tokenize(text)) {}

    Parsed<Statement> statement() {
        Statement tree = any_statement();
        end();
        return {std::move(tokens_), std::move(tree)};
    }

    Parsed<Select> only_select() {
        Select tree = select(&Parser::column_result);
        end();
        return {std::move(tokens_), std::move(tree)};
    }

    Parsed<Expression> only_value() {
        accept_symbol(u"=");
        Expression tree = value();
        end();
        return {std::move(tokens_), std::move(tree)};
    }

  private:
    static constexpr int deepest_nesting = 64;
    static constexpr int most_operators = 500;

    // ---- Tokens ----

    [[nodiscard]] const Token& current() const { return tokens_[at_]; }

    const Token& take() {
        const Token& token = tokens_[at_];
        at_ += token.kind == TokenKind::End ? 0 : 1;
        return token;
    }

    [[noreturn]] void refuse(const Token& token, StringView reason) const {
        sql::refuse(token, reason, number_);
    }

    [[nodiscard]] static bool is_word(const Token& token, StringView word) {
        return token.kind == TokenKind::Word && same_name(token.source, word);
    }
    [[nodiscard]] bool is_word(StringView word) const { return is_word(current(), word); }
    [[nodiscard]] bool is_symbol(const Token& token, StringView symbol) const {
        return token.kind == TokenKind::Symbol && token.source == symbol;
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
        const bool found = is_symbol(current(), symbol);
        at_ += found ? 1 : 0;
        return found;
    }
    void expect_symbol(StringView symbol) {
        if (!accept_symbol(symbol)) {
            refuse(current(), String(symbol) + u" is expected");
        }
    }
    void end() {
        accept_symbol(u";");
        if (current().kind != TokenKind::End) {
            refuse(current(), u"the end of the statement is expected");
        }
    }

    // The number that a refusal has from here on, until the scope ends.
    class Numbered {
      public:
        Numbered(Parser& parser, Long number)
            : parser_(parser), before_(std::exchange(parser.number_, number)) {}
        ~Numbered() { parser_.number_ = before_; }
        Numbered(const Numbered&) = delete;
        Numbered& operator=(const Numbered&) = delete;
        Numbered(Numbered&&) = delete;
        Numbered& operator=(Numbered&&) = delete;

      private:
        Parser& parser_;
        Long before_;
    };

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

    [[nodiscard]] Name name(std::size_t most_parts = 4) {  // database, owner, table, column
        Name result{&current(), {name_part()}};
        while (accept_symbol(u".")) {
            if (result.parts.size() == most_parts) {
                refuse(current(), u"too many owners before a name");
            }
            result.parts.push_back(name_part());
        }
        return result;
    }
    [[nodiscard]] Name table_name() {
        Name result = name();
        constexpr std::size_t most_parts = 3;
        if (result.parts.size() > most_parts) {
            refuse(*result.token, u"too many owners before a table");
        }
        return result;
    }
    // A name that stands alone: of an index, or of a column that is made.
    [[nodiscard]] Name own_name() { return name(1); }

    template <class Item>
    auto list(Item item) {
        std::vector<decltype((this->*item)())> items;
        do {
            items.push_back((this->*item)());
        } while (accept_symbol(u","));
        return items;
    }
    template <class Item>
    auto enclosed_list(Item item) {
        expect_symbol(u"(");
        auto items = list(item);
        expect_symbol(u")");
        return items;
    }

    // ---- Statements ----

    Statement any_statement() {
        if (is_word(u"select")) {
            return select(&Parser::value_result);
        }
        if (accept_word(u"insert")) {
            return insert();
        }
        if (accept_word(u"update")) {
            return update();
        }
        if (accept_word(u"delete")) {
            return delete_rows();
        }
        if (accept_word(u"create")) {
            return create();
        }
        if (accept_word(u"drop")) {
            return drop();
        }
        if (accept_word(u"alter")) {
            return alter();
        }
        sql::refuse(current(), u"insert, update, delete, select, create, drop or alter is expected",
                    error_unknown_statement);
    }

    Select select(Expression (Parser::*result)()) {
        Select tree;
        expect_word(u"select");
        tree.top = top();
        tree.all = accept_symbol(u"*");
        if (!tree.all) {
            tree.results = list(result);
        }
        expect_word(u"from");
        tree.from = table_name();
        tree.where = where();
        if (accept_word(u"order")) {
            expect_word(u"by");
            tree.order = list(&Parser::ordering);
        }
        return tree;
    }

    std::optional<std::int64_t> top() {
        if (!accept_word(u"top")) {
            return std::nullopt;
        }
        const Token& token = take();
        const Literal count = token.kind == TokenKind::Number ? number_in(token, false) : Literal();
        if (!std::holds_alternative<std::int64_t>(count)) {
            refuse(token, u"a whole number of rows is expected");
        }
        return std::get<std::int64_t>(count);
    }

    Expression column_result() {
        const Token* token = &current();
        return {.kind = ExpressionKind::Column, .token = token, .name = name()};
    }
    Expression value_result() {
        Expression result = condition();
        if (accept_word(u"as")) {
            static_cast<void>(own_name());
        }
        return result;
    }

    Ordering ordering() {
        Ordering result{name()};
        result.descending = accept_word(u"desc");
        if (!result.descending) {
            accept_word(u"asc");
        }
        return result;
    }

    std::optional<Expression> where() {
        if (!accept_word(u"where")) {
            return std::nullopt;
        }
        return condition();
    }

    Insert insert() {
        const Numbered numbered(*this, error_insert_syntax);
        Insert tree;
        expect_word(u"into");
        tree.into = table_name();
        if (is_symbol(current(), u"(")) {
            tree.columns = enclosed_list(&Parser::column_name);
        }
        if (is_word(u"select")) {
            tree.select = select(&Parser::value_result);
            return tree;
        }
        if (!accept_word(u"values")) {
            refuse(current(), u"values or select is expected");
        }
        tree.values = enclosed_list(&Parser::condition);
        return tree;
    }

    Name column_name() { return name(); }

    Update update() {
        const Numbered numbered(*this, error_update_syntax);
        Update tree;
        tree.table = table_name();
        expect_word(u"set");
        tree.assignments = list(&Parser::assignment);
        tree.where = where();
        return tree;
    }

    Assignment assignment() {
        Name column = name();
        expect_symbol(u"=");
        return {std::move(column), condition()};
    }

    Delete delete_rows() {
        Delete tree;
        accept_symbol(u"*");
        expect_word(u"from");
        tree.from = table_name();
        tree.where = where();
        return tree;
    }

    Statement create() {
        if (accept_word(u"table")) {
            return create_table();
        }
        const Numbered numbered(*this, error_create_index_syntax);
        CreateIndex tree;
        tree.unique = accept_word(u"unique");
        if (!accept_word(u"index")) {
            refuse(current(), u"table or index is expected");
        }
        tree.name = own_name();
        expect_word(u"on");
        tree.table = table_name();
        tree.columns = enclosed_list(&Parser::ordering);
        return tree;
    }

    CreateTable create_table() {
        const Numbered numbered(*this, error_create_table_syntax);
        CreateTable tree;
        tree.name = table_name();
        expect_symbol(u"(");
        do {
            if (is_word(u"constraint") || is_word(u"primary") || is_word(u"unique")) {
                tree.keys.push_back(key());
            } else {
                tree.columns.push_back(field());
            }
        } while (accept_symbol(u","));
        expect_symbol(u")");
        return tree;
    }

    KeyDefinition key() {
        KeyDefinition tree;
        if (accept_word(u"constraint")) {
            tree.name = own_name().own();
        }
        tree.primary = primary_or_unique();
        tree.columns = enclosed_list(&Parser::column_name);
        return tree;
    }

    bool primary_or_unique() {
        if (accept_word(u"unique")) {
            return false;
        }
        if (!accept_word(u"primary")) {
            refuse(current(), u"primary key or unique is expected");
        }
        expect_word(u"key");
        return true;
    }

    ColumnDefinition field() {
        const Numbered numbered(*this, error_field_syntax);
        ColumnDefinition tree{own_name(), type()};
        while (field_clause(tree)) {
        }
        return tree;
    }

    FieldType type() {
        const Token& word = take();
        std::optional<Long> length;
        if (word.kind == TokenKind::Word && accept_symbol(u"(")) {
            const Token& digits = take();
            Long number = 0;
            const std::string text = ascii(digits.source);
            const auto [stop, code] =
                std::from_chars(text.data(), text.data() + text.size(), number);
            if (digits.kind != TokenKind::Number || code != std::errc() ||
                stop != text.data() + text.size()) {
                refuse(digits, u"a length is expected");
            }
            expect_symbol(u")");
            length = number;
        }
        const auto type =
            word.kind == TokenKind::Word ? type_of_word(word.source, length) : std::nullopt;
        if (!type) {
            refuse(word, length ? u"this is no type with such a length" : u"a type is expected");
        }
        return *type;
    }

    // One clause behind the type of a field; false if none stands here.
    bool field_clause(ColumnDefinition& tree) {
        if (accept_word(u"not")) {
            expect_word(u"null");
            tree.not_null = true;
        } else if (accept_word(u"null")) {
            tree.not_null = false;
        } else if (accept_word(u"default")) {
            tree.default_value = default_value();
        } else if (accept_word(u"with")) {
            if (!accept_word(u"compression") && !accept_word(u"comp")) {
                refuse(current(), u"compression is expected");
            }
        } else if (is_word(u"constraint") || is_word(u"primary") || is_word(u"unique")) {
            const String constraint = accept_word(u"constraint") ? String(own_name().own()) : u"";
            if (accept_word(u"not")) {
                expect_word(u"null");
                tree.not_null = true;
                return true;
            }
            tree.constraint = constraint;
            (primary_or_unique() ? tree.primary : tree.unique) = true;
        } else {
            return false;
        }
        return true;
    }

    Default default_value() {
        const StringView first = current().source;
        Expression expression = value();
        const StringView last = tokens_[at_ - 1].source;
        const auto length = static_cast<std::size_t>(last.data() + last.size() - first.data());
        return {String(first.data(), length), std::move(expression)};
    }

    Statement drop() {
        const Numbered numbered(*this, error_drop_syntax);
        if (accept_word(u"table")) {
            return DropTable{table_name()};
        }
        if (!accept_word(u"index")) {
            refuse(current(), u"table or index is expected");
        }
        Name index = own_name();
        expect_word(u"on");
        return DropIndex{std::move(index), table_name()};
    }

    Statement alter() {
        const Numbered numbered(*this, error_alter_syntax);
        expect_word(u"table");
        Name table = table_name();
        const bool adds = accept_word(u"add");
        if (adds || accept_word(u"alter")) {
            accept_word(u"column");
            if (is_word(u"constraint")) {
                refuse(current(), u"a column is expected");
            }
            if (adds) {
                return AddColumn{std::move(table), field()};
            }
            return AlterColumn{std::move(table), field()};
        }
        if (!accept_word(u"drop")) {
            refuse(current(), u"add, drop or alter is expected");
        }
        accept_word(u"column");
        return DropColumn{std::move(table), own_name()};
    }

    // ---- Conditions ----

    // A condition, or a value alone.
    Expression condition() {
        const Numbered numbered(*this, error_syntax);
        return disjunction();
    }
    Expression value() {
        const Numbered numbered(*this, error_syntax);
        return operation(0);
    }

    Expression disjunction() {
        if (++depth_ > deepest_nesting) {
            refuse(current(), u"the condition is nested too deeply");
        }
        Expression result = joined(ExpressionKind::Or, u"or", &Parser::conjunction);
        --depth_;
        return result;
    }
    Expression conjunction() { return joined(ExpressionKind::And, u"and", &Parser::negation); }

    Expression joined(ExpressionKind kind, StringView word, Expression (Parser::*part)()) {
        Expression first = (this->*part)();
        if (!is_word(word)) {
            return first;
        }
        Expression result{.kind = kind, .token = first.token};
        result.operands.push_back(std::move(first));
        while (accept_word(word)) {
            result.operands.push_back((this->*part)());
        }
        return result;
    }

    Expression negation() {
        const Token* token = &current();
        int count = 0;
        while (accept_word(u"not")) {
            ++count;
        }
        Expression operand = predicate();
        if (count == 0) {
            return operand;
        }
        Expression result{.kind = ExpressionKind::Not, .token = token, .negated = count % 2 == 0};
        result.operands.push_back(std::move(operand));
        return result;
    }

    Expression predicate() {
        Expression left = operation(0);
        const Token& next = current();
        if (next.kind == TokenKind::Symbol &&
            std::ranges::find(comparison_symbols, next.source) != std::end(comparison_symbols)) {
            take();
            Expression result = on(ExpressionKind::Comparison, std::move(left));
            result.symbol = ascii(next.source);
            result.operands.push_back(operation(0));
            return result;
        }
        if (accept_word(u"is")) {
            Expression result = on(ExpressionKind::IsNull, std::move(left));
            result.negated = accept_word(u"not");
            expect_word(u"null");
            return result;
        }
        const bool negated = accept_word(u"not");
        if (accept_word(u"between")) {
            return between(std::move(left), negated);
        }
        if (accept_word(u"in")) {
            return in(std::move(left), negated);
        }
        if (accept_word(u"like")) {
            Expression result = on(ExpressionKind::Like, std::move(left));
            result.negated = negated;
            result.operands.push_back(operation(0));
            return result;
        }
        if (negated) {
            refuse(current(), u"between or in is expected");
        }
        return left;
    }

    static Expression on(ExpressionKind kind, Expression first) {
        Expression result{.kind = kind, .token = first.token};
        result.operands.push_back(std::move(first));
        return result;
    }

    Expression between(Expression left, bool negated) {
        Expression result = on(ExpressionKind::Between, std::move(left));
        result.negated = negated;
        result.operands.push_back(operation(0));
        expect_word(u"and");
        result.operands.push_back(operation(0));
        return result;
    }

    Expression in(Expression left, bool negated) {
        Expression result = on(ExpressionKind::In, std::move(left));
        result.negated = negated;
        expect_symbol(u"(");
        do {
            result.operands.push_back(operation(0));
        } while (accept_symbol(u","));
        expect_symbol(u")");
        return result;
    }

    // ---- Values ----

    Expression operation(std::size_t level) {
        if (level == std::size(operators_by_level)) {
            return operand();
        }
        Expression left = operation(level + 1);
        while (is_operator(level)) {
            if (++operators_ > most_operators) {
                sql::refuse(current(), u"the statement is too complex", error_too_complex);
            }
            Expression result = on(ExpressionKind::Arithmetic, std::move(left));
            result.symbol = to_utf8(lower_case(take().source));
            result.operands.push_back(operation(level + 1));
            left = std::move(result);
        }
        return left;
    }

    [[nodiscard]] bool is_operator(std::size_t level) const {
        return std::ranges::any_of(operators_by_level[level], [this](StringView text) {
            return is_symbol(current(), text) || (text == u"mod" && is_word(text));
        });
    }

    Expression operand() {
        const Token& token = current();
        switch (token.kind) {
            case TokenKind::Name:
                return column_result();
            case TokenKind::Word:
                return word_operand();
            case TokenKind::Number:
                take();
                return {.kind = ExpressionKind::Number,
                        .token = &token,
                        .value = number_in(token, false),
                        .symbol = ascii(token.source)};
            case TokenKind::Text:
                take();
                return {.kind = ExpressionKind::Text, .token = &token, .value = token.value};
            case TokenKind::Moment:
                take();
                return moment(token, token, MomentForm::jet);
            default:
                return symbol_operand();
        }
    }

    Expression word_operand() {
        const Token& token = current();
        if (accept_word(u"true")) {
            return {.kind = ExpressionKind::Truth, .token = &token, .value = std::int64_t{-1}};
        }
        if (accept_word(u"false")) {
            return {.kind = ExpressionKind::Truth, .token = &token, .value = std::int64_t{0}};
        }
        if (accept_word(u"null")) {
            return {.kind = ExpressionKind::Null, .token = &token};
        }
        if (is_symbol(tokens_[at_ + 1], u"(")) {  // a word is never the last token
            return present(token);
        }
        return column_result();
    }

    // now(), date(), time(): the present moment by the platform's clock, or a part of it.
    Expression present(const Token& token) {
        const Token& word = take();
        Moment moment = moment_of_days(platform().clock->Now().days).value_or(Moment{});
        if (is_word(word, u"date")) {
            moment.millisecond = 0;
        } else if (is_word(word, u"time")) {
            moment.day = 0;
        } else if (!is_word(word, u"now")) {
            sql::refuse(word, u"this function is not known", error_unknown_function);
        }
        expect_symbol(u"(");
        expect_symbol(u")");
        return {.kind = ExpressionKind::Moment,
                .token = &token,
                .moment = moment,
                .symbol = to_utf8(lower_case(word.source))};
    }

    Expression symbol_operand() {
        const Token& token = current();
        if (accept_symbol(u"(")) {
            Expression inner = disjunction();
            expect_symbol(u")");
            return inner;
        }
        if (accept_symbol(u"{")) {
            Expression inner = escape(token);
            expect_symbol(u"}");
            return inner;
        }
        const bool negative = accept_symbol(u"-");
        if (negative || accept_symbol(u"+")) {
            return signed_operand(token, negative);
        }
        refuse(token, u"a column or a value is expected");
    }

    Expression signed_operand(const Token& sign, bool negative) {
        const Token& next = current();
        if (next.kind == TokenKind::Number) {
            take();
            return {.kind = ExpressionKind::Number,
                    .token = &sign,
                    .value = number_in(next, negative),
                    .symbol = (negative ? "-" : "") + ascii(next.source)};
        }
        const bool is_value =
            next.kind == TokenKind::Name || next.kind == TokenKind::Word || is_symbol(next, u"(");
        if (!negative || !is_value) {
            refuse(next, u"a number is expected");
        }
        Expression result{.kind = ExpressionKind::Negation, .token = &sign};
        result.operands.push_back(operand());
        return result;
    }

    // Behind the brace of an ODBC escape.
    Expression escape(const Token& brace) {
        if (accept_word(u"fn")) {
            if (!is_word(u"now")) {
                refuse(current(), u"now is expected");
            }
            return present(brace);
        }
        const std::pair<StringView, MomentForm> escapes[] = {
            {u"d", MomentForm::date}, {u"ts", MomentForm::date_time}, {u"t", MomentForm::time}};
        for (const auto& [word, form] : escapes) {
            if (accept_word(word)) {
                const Token& text = take();
                if (text.kind != TokenKind::Text) {
                    refuse(text, u"a date in quotes is expected");
                }
                return moment(brace, text, form);
            }
        }
        refuse(current(), u"d, ts, t or fn is expected");
    }

    [[nodiscard]] Expression moment(const Token& begin, const Token& token, MomentForm form) const {
        const auto moment = parse_moment(to_utf8(token.value), form);
        if (!moment) {
            refuse(token, u"this is no date");
        }
        return {.kind = ExpressionKind::Moment, .token = &begin, .moment = *moment};
    }

    [[nodiscard]] Literal number_in(const Token& token, bool negative) const {
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
    std::size_t at_ = 0;
    int depth_ = 0;
    int operators_ = 0;
    Long number_ = error_syntax;
};

}  // namespace

Parsed<Statement> parse_statement(StringView text) {
    return Parser(text).statement();
}

Parsed<Select> parse_select(StringView text) {
    return Parser(text).only_select();
}

Parsed<Expression> parse_value(StringView text) {
    return Parser(text).only_value();
}

}  // namespace kvarta16::sql
