// The tokens of the two SQL dialects, Jet and ODBC escapes.
#pragma once

#include <cstdint>
#include <vector>

#include <kvarta16/platform/sql/errors.h>

namespace kvarta16::sql {

enum class TokenKind : std::uint8_t {
    Word,    // a keyword or a bare name: letters, digits, "_", "$"
    Name,    // [a name in brackets], "]]" inside standing for "]"
    Number,  // 12, 12.5, .5, 1e-3; without a sign
    Text,    // 'text' or "text", the quote doubled inside
    Moment,  // #12-31-2001 23:59:59#
    Symbol,  // ( ) { } , ; . * - + / \ ^ & = < > <> <= >=
    End,
};

struct Token {
    TokenKind kind = TokenKind::End;
    StringView source;       // as it stands in the statement
    String value;            // what it stands for, without brackets, quotes and #
    std::size_t column = 0;  // of its first character, counted from 1
};

// Splits a statement; the last token is the End. The tokens refer to the text of the statement.
// Fails: 3075 for a character that begins no token, and for a bracket, quote or # without its end.
[[nodiscard]] std::vector<Token> tokenize(StringView statement);

// The failure of a statement that cannot be taken, naming the token and where it stands.
[[noreturn]] void refuse(const Token& token, StringView reason, Long number = error_syntax);

}  // namespace kvarta16::sql
