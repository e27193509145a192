// The text of a table in the file, "CREATE TABLE ...", taken apart far enough to change what the
// engine has no statement for: a column's default, its rules, its type. All else stays as the
// program that made the table has written it, comments included.
//
//   TableText text("CREATE TABLE T (id INTEGER, nazwa VARCHAR(50))");
//   text.set_default("nazwa", "DEFAULT ''");
//   text.sql();   // CREATE TABLE T (id INTEGER, nazwa VARCHAR(50) DEFAULT '')
//
// Names and texts are UTF-8; columns are named as they are spelled in the file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvarta16::sqlite {

// The rules that a column may have, each as the engine's own CHECK: CHECK(length("c")>0) where the
// empty text is not taken, CHECK(length("c")<=50) for the most characters,
// CHECK(typeof("c")<>'null') where a value is required and rows without one may be there. A CHECK
// is asked of what is stored from then on; under a NOT NULL the engine would not even find such
// rows any more.
enum class Rule : std::uint8_t { NoEmptyText, MostCharacters, Required };

class TableText {
  public:
    // Fails: 3000 for a text that is not understood.
    explicit TableText(std::string sql);

    [[nodiscard]] const std::string& sql() const noexcept { return sql_; }

    [[nodiscard]] bool has_rule(std::string_view column, Rule rule) const;
    // The column gets the rule, or loses it; the most characters are of MostCharacters.
    void set_rule(std::string_view column, Rule rule, bool has, std::int32_t most = 0);

    // The whole clause, "DEFAULT 0"; "" takes the default away.
    void set_default(std::string_view column, std::string_view clause);
    void set_type(std::string_view column, std::string_view type);
    void set_table_name(std::string_view name);

    // The name of the constraint that is the table's primary key, "" if it has none.
    [[nodiscard]] std::string primary_key_name() const;

  private:
    enum class ItemKind : std::uint8_t { Word, Quoted, Group, Other };
    // A piece of the text that belongs together, what stands in parentheses as one piece.
    struct Item {
        ItemKind kind;
        std::size_t begin;
        std::size_t end;
    };
    struct Span {
        std::size_t begin;
        std::size_t end;
    };
    using Items = std::vector<Item>;

    [[nodiscard]] std::size_t quoted_end(std::size_t at) const;
    [[nodiscard]] std::size_t group_end(std::size_t at) const;
    [[nodiscard]] std::size_t word_end(std::size_t at) const;
    [[nodiscard]] std::size_t behind_blanks(std::size_t at) const;
    [[nodiscard]] Item item_at(std::size_t at) const;
    [[nodiscard]] Items items(Span span) const;
    [[nodiscard]] std::string text(const Item& item) const;  // without quotes
    [[nodiscard]] bool is_word(const Items& items, std::size_t at, std::string_view word) const;
    [[nodiscard]] bool is_constraint(const Items& items, std::size_t at) const;
    [[nodiscard]] std::string normal(Span span) const;

    [[nodiscard]] std::size_t body(const Items& top) const;
    [[nodiscard]] std::vector<Items> elements() const;
    [[nodiscard]] Items column(std::string_view name) const;
    [[nodiscard]] bool is_rule(const Items& items, std::size_t at, Rule rule) const;
    [[nodiscard]] std::optional<Span> rule_span(const Items& items, Rule rule) const;
    [[nodiscard]] std::optional<Span> default_span(const Items& items) const;
    // The clause from item `at` to `end`, with a name that is given to it, and the blanks before.
    [[nodiscard]] Span clause(const Items& items, std::size_t at, std::size_t end) const;
    void replace_clause(std::string_view column, std::optional<Span> old, std::string_view clause);
    [[noreturn]] void refuse() const;

    std::string sql_;
};

}  // namespace kvarta16::sqlite
