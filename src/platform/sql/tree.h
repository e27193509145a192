// A statement of the dialects as the parser (parser.h) gives it: what it says, with the names
// not looked up yet. Tokens are pointed to and belong to the Parsed that holds the tree.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <kvarta16/platform/sql/field_types.h>
#include <kvarta16/platform/sql/moments.h>
#include <kvarta16/platform/sql/tokenizer.h>

namespace kvarta16::sql {

// A name as it stands, with the owners before it.
struct Name {
    const Token* token = nullptr;
    std::vector<StringView> parts;
    [[nodiscard]] StringView own() const { return parts.back(); }
};

enum class ExpressionKind : std::uint8_t {
    Null,
    Truth,   // -1 or 0 in `value`
    Number,  // whole or real in `value`, the digits with their sign in `symbol`
    Text,    // in `value`
    Moment,  // in `moment`; "now", "date" or "time" in `symbol` where a function gives it
    Column,  // in `name`
    Negation,
    Arithmetic,  // `symbol` is one of + - * / \ ^ & mod
    Comparison,  // `symbol` is one of = <> < > <= >=
    Like,
    IsNull,
    Between,  // three operands
    In,       // the first operand in the others
    Not,
    And,  // two or more operands
    Or,
};

// What a literal stands for; the first is Null.
using Literal = std::variant<std::monostate, std::int64_t, double, String>;

struct Expression {
    ExpressionKind kind = ExpressionKind::Null;
    const Token* token = nullptr;  // where it begins
    Literal value = {};
    Moment moment = {};
    Name name = {};
    std::string symbol = {};
    bool negated = false;  // "is not null", "not between", "not in", "not like"
    std::vector<Expression> operands = {};
};

struct Ordering {
    Name column;
    bool descending = false;
};

struct Select {
    bool all = false;                 // "*"
    std::vector<Expression> results;  // without "*"
    std::optional<std::int64_t> top;
    Name from;
    std::optional<Expression> where;
    std::vector<Ordering> order;
};

struct Insert {
    Name into;
    std::vector<Name> columns;  // empty: all, in their order
    std::vector<Expression> values;
    std::optional<Select> select;  // in place of values
};

struct Assignment {
    Name column;
    Expression value;
};
struct Update {
    Name table;
    std::vector<Assignment> assignments;
    std::optional<Expression> where;
};

struct Delete {
    Name from;
    std::optional<Expression> where;
};

struct Default {
    String text;  // as it is given
    Expression value;
};

struct ColumnDefinition {
    Name name;
    FieldType type;
    bool not_null = false;
    bool primary = false;
    bool unique = false;
    String constraint = {};  // the name of the primary key or unique index, "" if none is given
    std::optional<Default> default_value = {};
};

// A primary key or a unique index over columns.
struct KeyDefinition {
    bool primary = false;
    String name = {};
    std::vector<Name> columns = {};
};

struct CreateTable {
    Name name;
    std::vector<ColumnDefinition> columns;
    std::vector<KeyDefinition> keys;
};
struct DropTable {
    Name name;
};
struct CreateIndex {
    bool unique = false;
    Name name;
    Name table;
    std::vector<Ordering> columns;
};
struct DropIndex {
    Name name;
    Name table;
};
struct AddColumn {
    Name table;
    ColumnDefinition column;
};
struct DropColumn {
    Name table;
    Name column;
};
struct AlterColumn {
    Name table;
    ColumnDefinition column;
};

using Statement = std::variant<Select, Insert, Update, Delete, CreateTable, DropTable, CreateIndex,
                               DropIndex, AddColumn, DropColumn, AlterColumn>;

template <class Tree>
struct Parsed {
    std::vector<Token> tokens;  // they refer to the text that was parsed
    Tree tree;
};

}  // namespace kvarta16::sql
