// Reads the statements that the library and its callers send, in the Jet and the ODBC-escape
// dialect.
//
//   statement  = select | insert | update | delete | create | drop | alter, [";"]
//   select     = "select" ["top" count] ("*" | result {"," result}) "from" name
//                ["where" condition] ["order" "by" column ["asc" | "desc"] {"," ...}]
//   insert     = "insert" "into" name ["(" column {"," column} ")"]
//                ("values" "(" value {"," value} ")" | select)
//   update     = "update" name "set" column "=" value {"," ...} ["where" condition]
//   delete     = "delete" ["*"] "from" name ["where" condition]
//   create     = "create" "table" name "(" element {"," element} ")"
//              | "create" ["unique"] "index" name "on" name "(" column ["asc" | "desc"] {...} ")"
//   drop       = "drop" "table" name | "drop" "index" name "on" name
//   alter      = "alter" "table" name ("add" ["column"] field | "drop" ["column"] column
//              | "alter" ["column"] field)
//   element    = field | ["constraint" word] ("primary" "key" | "unique") "(" column {...} ")"
//   field      = column type ["(" length ")"] {["not"] "null" | "default" value
//              | "with" ("compression" | "comp")
//              | ["constraint" word] ("primary" "key" | "unique" | "not" "null")}
//
//   condition  = conjunction {"or" conjunction}
//   conjunction = negation {"and" negation}
//   negation   = "not" negation | predicate
//   predicate  = value [("=" | "<>" | "<" | ">" | "<=" | ">=") value
//              | "is" ["not"] "null" | ["not"] "between" value "and" value
//              | ["not"] "in" "(" value {"," value} ")" | ["not"] "like" value]
//   value      = operand {("&" | "+" | "-" | "mod" | "\" | "*" | "/" | "^") operand}, the later
//                ones bind closer, "+" like "-" and "*" like "/"
//   operand    = column | "(" condition ")" | ["-" | "+"] number | "-" operand | text | "true"
//              | "false" | "null" | "#" date "#" | "{d" text "}" | "{ts" text "}" | "{t" text "}"
//              | ("now" | "date" | "time") "(" ")" | "{fn" "now" "(" ")" "}"
//   column, name = [owner "." [owner "."]] word or [name in brackets]
//   result     = value ["as" word] in an insert, column in a select of its own
//
// Keywords and names match in any case. What is not in the grammar is refused with a text that
// names the place, and the number that callers know for this kind of statement: 3290 in create
// table, 3291 create index, 3292 a field, 3293 alter table, 3295 drop, 3134 insert, 3144 update,
// 3129 a statement of another kind, 3085 an unknown function, 3075 everything else.
#pragma once

#include <kvarta16/platform/sql/tree.h>

namespace kvarta16::sql {

[[nodiscard]] Parsed<Statement> parse_statement(StringView text);

// A select of columns alone; every other statement is refused (3075).
[[nodiscard]] Parsed<Select> parse_select(StringView text);

// A value, as a default is given; a "=" before it is passed over.
[[nodiscard]] Parsed<Expression> parse_value(StringView text);

}  // namespace kvarta16::sql
