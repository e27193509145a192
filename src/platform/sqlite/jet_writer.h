// Writes the expressions of the dialects for the engine.
//
// How a comparison is made follows from what is compared:
//   * with a date, or on a date column: as moments, so that ISO text with or without a time, with a
//     "T", or a number of days match alike; to whole seconds, unless a date that is written in the
//     statement has a fraction. "Up to 23:59:59" so takes in the whole of that second;
//   * with true or false, or on a truth column with a number: as truth values;
//   * a number with a column that may hold numbers in other forms (money, text): as numbers;
//   * everything else as the engine compares it.
#pragma once

#include <string>
#include <vector>

#include <kvarta16/platform/sql/tree.h>
#include <kvarta16/platform/sqlite/sqlite_schema.h>

namespace kvarta16::sqlite::jet {

// The functions that translated statements call; the connection provides them.
inline constexpr const char* seconds_function = "kvarta16_seconds";
inline constexpr const char* milliseconds_function = "kvarta16_milliseconds";
inline constexpr const char* number_function = "kvarta16_number";
inline constexpr const char* truth_function = "kvarta16_truth";
inline constexpr const char* convert_function = "kvarta16_convert";  // (value, kind, type, size)
inline constexpr const char* compute_function = "kvarta16_compute";  // (symbol, a, b)
inline constexpr const char* like_function = "kvarta16_like";        // (text, pattern)

struct Operand;

class Writer {
  public:
    // The columns are those of `table`; nullptr where no columns can be named. What is written goes
    // to `parameters`; both must outlive the writer.
    Writer(const Table* table, std::vector<Cell>& parameters)
        : table_(table), parameters_(&parameters) {}

    // The column of a name; the owner before it must be the table. Fails: 3061.
    [[nodiscard]] const Column& column(const sql::Name& name) const;

    // Fails: 3061, 3075 for a value that is no condition, 11 and 3464 as jet::computed.
    [[nodiscard]] std::string condition(const sql::Expression& expression);

    // The value as the column takes it. Fails as condition(), and as jet::converted for a value
    // that is known.
    [[nodiscard]] std::string value_for(const sql::Expression& expression, const Column& column);

    // " order by ...", "" without an ordering.
    [[nodiscard]] std::string order(const std::vector<sql::Ordering>& order) const;

    [[nodiscard]] std::string parameter(Cell value);

  private:
    [[nodiscard]] Operand operand(const sql::Expression& expression);
    [[nodiscard]] Operand arithmetic(const sql::Expression& expression);
    [[nodiscard]] std::vector<Operand> operands(const sql::Expression& expression);
    [[nodiscard]] std::string predicate(const sql::Expression& expression);
    [[nodiscard]] std::string condition_of(const Operand& operand);
    [[nodiscard]] std::string joined(const sql::Expression& expression, const char* word);
    [[nodiscard]] std::string value_of(const Operand& operand);
    [[nodiscard]] std::string converted_sql(const Operand& operand, const FieldType& type);

    const Table* table_;
    std::vector<Cell>* parameters_;
};

// The value of an expression without columns, as a column of the type holds it. Fails: 3061 for a
// column, and as Writer::value_for.
[[nodiscard]] Cell constant(const sql::Expression& expression, const FieldType& type);

}  // namespace kvarta16::sqlite::jet
