// What the tests of the value layer share: a plain notation of values, in which the tables are
// written and the failures of a test are shown, and the readers of the tables.
//
//   Integer 5, Long 5, Byte 5, Single 0.5, Double 0.5, Currency 12.5, Decimal 1.005, Boolean -1
//   Date 45429.5 or Date 2024-05-17 or Date 2024-05-17 12:00:00
//   String "12,5\u00A0z\u0142", Error 5, Object, UnknownObject, Nothing, Empty, Null, Missing
//   !13 where a failure with that number is expected
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <support/sanitized.h>

#include <kvarta16/frame/value.h>

namespace kvarta16::frame_tests {

// ---- Showing values -------------------------------------------------------------------------

void append_utf8(std::string& out, char32_t code);

// A text in quotes; what cannot be seen is shown by its code.
std::string show(StringView text);

// ASCII alone.
String wide(std::string_view ascii);

std::string show_number(const char* format, double value);

std::string show(Currency value);

// The digits of the 96-bit whole number.
std::string whole_digits(const Decimal& value);

// Without zeros at the end of the decimals, so that 1.50 and 1.5 show alike.
std::string show(const Decimal& value);

// The value in the notation of the tables.
std::string notation(const Variant& value);

// ---- Calls that may fail ----------------------------------------------------------------------

// The number of the failure of a call, 0 if it does not fail.
template <class Call>
int failure_of(Call&& call) {
    try {
        static_cast<void>(call());
        return 0;
    } catch (const Failure& failure) {
        return failure.number();
    }
}

// The result of a call in the notation, or "!" and the number of its failure.
template <class Call>
std::string outcome(Call&& call) {
    try {
        return notation(Variant(call()));
    } catch (const Failure& failure) {
        return "!" + std::to_string(failure.number());
    }
}

// ---- Reading values ---------------------------------------------------------------------------

class AnObject final : public Object {};

std::uint64_t parse_magnitude(std::string_view digits);

// The sign, the whole part and the decimals of "-12.5".
struct DecimalParts {
    bool is_negative = false;
    std::string whole;
    std::string decimals;
};

DecimalParts decimal_parts(std::string_view text);

Currency parse_currency(std::string_view text);

Decimal parse_decimal(std::string_view text);

// The day number by another calendar than the library's.
std::int32_t chrono_day_number(int year, unsigned month, unsigned day);

// Years with a minus do not occur. A day before 1899-12-30 with a time counts its fraction away
// from zero: the day number is below zero and the time is taken off.
Date parse_date(const std::string& text);

// A text in quotes, with the escapes \t, \n, \r, \", \\ and \uXXXX; the rest is UTF-8.
String parse_string(std::string_view quoted);

Variant parse_value(const std::string& cell);

// ---- Tables -----------------------------------------------------------------------------------

struct Row {
    std::string place;  // "to_text.tsv:12"
    std::vector<std::string> cells;
};

// The rows of a table of this folder. A row has `columns` cells, the last of which is a comment
// and may be missing; one tab or more stand between cells. Lines that begin with "#" are
// comments.
std::vector<Row> rows_of(const std::string& file, std::size_t columns);

// ---- By-reference forms -----------------------------------------------------------------------

struct Form {
    const char* name;
    const Variant* value;
};

// A value as it can be handed over: itself, a reference to a variable of its type, a reference to
// a Variant, and a reference to a Variant that is a reference.
class Forms {
  public:
    explicit Forms(const Variant& value);
    Forms(const Forms&) = delete;
    Forms& operator=(const Forms&) = delete;
    [[nodiscard]] std::array<Form, 4> all() const;

  private:
    Variant make_reference(const Variant& value);

    std::shared_ptr<void> variable_;
    Variant value_;
    Variant to_variable_;
    Variant to_variant_;
    Variant to_reference_;
};

// One value of each subtype, in the order of the codes.
std::vector<Variant> one_of_each_subtype();

// ---- Random values ----------------------------------------------------------------------------

// A case takes some twenty times as long under a sanitizer, which looks at other things than
// figures.
using testing_support::is_sanitized;
using testing_support::sanitized_stride;
inline constexpr int random_cases = is_sanitized ? 5'000 : 200'000;

class Random {
  public:
    explicit Random(std::uint64_t seed);

    std::uint64_t bits();
    // Both bounds belong to the range.
    std::int64_t between(std::int64_t low, std::int64_t high);
    bool chance(int percent);
    // A count with a random number of bits, so that small ones are as frequent as large ones.
    std::int64_t count();
    // Any finite Double, of any magnitude.
    double any_double();
    std::string digits(std::int64_t count);

  private:
    std::mt19937_64 engine_;
};

// ---- All short texts --------------------------------------------------------------------------

// Calls `visit` with every text of at most `longest` pieces of the alphabet, "" included, up to
// the first fatal failure.
template <class Visit>
void for_all_texts(const std::vector<String>& alphabet, int longest, const Visit& visit) {
    const std::function<void(String&, int)> extend = [&](String& text, int left) {
        if (testing::Test::HasFatalFailure()) {
            return;
        }
        visit(std::as_const(text));
        if (left == 0) {
            return;
        }
        for (const String& piece : alphabet) {
            text += piece;
            extend(text, left - 1);
            text.resize(text.size() - piece.size());
        }
    };
    String text;
    extend(text, longest);
}

}  // namespace kvarta16::frame_tests
