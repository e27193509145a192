#include <algorithm>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/sqlite/sqlite_errors.h>
#include <kvarta16/platform/sqlite/sqlite_schema.h>
#include <kvarta16/platform/sqlite/table_text.h>

namespace kvarta16::sqlite {
namespace {

constexpr std::string_view blanks = " \t\n\r\f";

// Words that end a column's type.
constexpr std::string_view constraint_words[] = {"CONSTRAINT", "PRIMARY", "NOT",      "NULL",
                                                 "UNIQUE",     "CHECK",   "DEFAULT",  "COLLATE",
                                                 "REFERENCES", "AS",      "GENERATED"};
// Words that begin an element that is no column.
constexpr std::string_view table_words[] = {"CONSTRAINT", "PRIMARY", "UNIQUE", "CHECK", "FOREIGN"};

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

bool is_word_part(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || is_digit(c) || c == '_' ||
           c == '$' || c == '.' || static_cast<unsigned char>(c) >= 0x80;
}

std::string upper(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return result;
}

}  // namespace

TableText::TableText(std::string sql) : sql_(std::move(sql)) {
    static_cast<void>(elements());
}

void TableText::refuse() const {
    constexpr Long reserved_error = 3000;
    fail_about(reserved_error, u"The table's text in the file is not understood", from_utf8(sql_));
}

// ---- Pieces ------------------------------------------------------------------------------------

std::size_t TableText::quoted_end(std::size_t at) const {
    const char closing = sql_[at] == '[' ? ']' : sql_[at];
    for (std::size_t i = at + 1; i < sql_.size(); ++i) {
        if (sql_[i] == closing) {
            const bool doubled = closing != ']' && i + 1 < sql_.size() && sql_[i + 1] == closing;
            if (!doubled) {
                return i + 1;
            }
            ++i;
        }
    }
    refuse();
}

std::size_t TableText::group_end(std::size_t at) const {
    std::size_t i = behind_blanks(at + 1);
    while (i < sql_.size() && sql_[i] != ')') {
        i = behind_blanks(item_at(i).end);
    }
    if (i >= sql_.size()) {
        refuse();
    }
    return i + 1;
}

std::size_t TableText::word_end(std::size_t at) const {
    std::size_t i = at;
    const bool number = is_digit(sql_[at]) || sql_[at] == '.';
    while (i < sql_.size()) {
        const bool exponent_sign = number && i > at && (sql_[i] == '+' || sql_[i] == '-') &&
                                   (sql_[i - 1] == 'e' || sql_[i - 1] == 'E');
        if (!is_word_part(sql_[i]) && !exponent_sign) {
            break;
        }
        ++i;
    }
    const bool bytes = i == at + 1 && (sql_[at] == 'x' || sql_[at] == 'X');
    return bytes && i < sql_.size() && sql_[i] == '\'' ? quoted_end(i) : i;
}

// Behind blanks and comments.
std::size_t TableText::behind_blanks(std::size_t at) const {
    while (at < sql_.size()) {
        const std::string_view rest = std::string_view(sql_).substr(at);
        if (blanks.find(rest.front()) != std::string_view::npos) {
            ++at;
        } else if (rest.starts_with("--")) {
            const std::size_t end = sql_.find('\n', at);
            at = end == std::string::npos ? sql_.size() : end + 1;
        } else if (rest.starts_with("/*")) {
            const std::size_t end = sql_.find("*/", at + 2);
            at = end == std::string::npos ? sql_.size() : end + 2;
        } else {
            break;
        }
    }
    return at;
}

TableText::Item TableText::item_at(std::size_t at) const {
    switch (sql_[at]) {
        case '"':
        case '\'':
        case '`':
        case '[':
            return {ItemKind::Quoted, at, quoted_end(at)};
        case '(':
            return {ItemKind::Group, at, group_end(at)};
        default:
            if (is_word_part(sql_[at])) {
                return {ItemKind::Word, at, word_end(at)};
            }
            return {ItemKind::Other, at, at + 1};
    }
}

TableText::Items TableText::items(Span span) const {
    Items list;
    for (std::size_t at = behind_blanks(span.begin); at < span.end;
         at = behind_blanks(list.back().end)) {
        list.push_back(item_at(at));
    }
    return list;
}

std::string TableText::text(const Item& item) const {
    std::string piece = sql_.substr(item.begin, item.end - item.begin);
    if (item.kind != ItemKind::Quoted) {
        return piece;
    }
    const char closing = piece.back();
    std::string result;
    for (std::size_t i = 1; i + 1 < piece.size(); ++i) {
        result += piece[i];
        i += piece[i] == closing ? 1 : 0;
    }
    return result;
}

bool TableText::is_word(const Items& items, std::size_t at, std::string_view word) const {
    return at < items.size() && items[at].kind == ItemKind::Word && upper(text(items[at])) == word;
}

bool TableText::is_constraint(const Items& items, std::size_t at) const {
    return std::ranges::any_of(constraint_words,
                               [&](std::string_view word) { return is_word(items, at, word); });
}

// A text in one form: without blanks and quotes of names, words in capitals.
std::string TableText::normal(Span span) const {
    std::string result;
    for (const Item& item : items(span)) {
        if (item.kind == ItemKind::Group) {
            result += "(" + normal({item.begin + 1, item.end - 1}) + ")";
        } else if (item.kind == ItemKind::Quoted && sql_[item.begin] == '\'') {
            result += sql_.substr(item.begin, item.end - item.begin);
        } else {
            result += upper(text(item));
        }
    }
    return result;
}

// ---- Elements ----------------------------------------------------------------------------------

// The place of the parentheses with the columns among the pieces of the whole text.
std::size_t TableText::body(const Items& top) const {
    const auto found = std::ranges::find(top, ItemKind::Group, &Item::kind);
    if (found == top.end() || found - top.begin() < 3 || !is_word(top, 0, "CREATE")) {
        refuse();
    }
    return static_cast<std::size_t>(found - top.begin());
}

std::vector<TableText::Items> TableText::elements() const {
    const Items top = items({0, sql_.size()});
    const Item group = top[body(top)];
    std::vector<Items> list(1);
    for (const Item& item : items({group.begin + 1, group.end - 1})) {
        if (item.kind == ItemKind::Other && sql_[item.begin] == ',') {
            list.emplace_back();
        } else {
            list.back().push_back(item);
        }
    }
    if (std::ranges::any_of(list, &Items::empty)) {
        refuse();
    }
    return list;
}

TableText::Items TableText::column(std::string_view name) const {
    for (Items& element : elements()) {
        const bool is_column = std::ranges::none_of(
            table_words, [&](std::string_view word) { return is_word(element, 0, word); });
        if (is_column && text(element.front()) == name) {
            return std::move(element);
        }
    }
    refuse();
}

TableText::Span TableText::clause(const Items& items, std::size_t at, std::size_t end) const {
    const bool named = at >= 3 && is_word(items, at - 2, "CONSTRAINT");
    const std::size_t first = named ? at - 2 : at;
    return {items[first - 1].end, items[end].end};
}

// ---- Rules -------------------------------------------------------------------------------------

bool TableText::is_rule(const Items& items, std::size_t at, Rule rule) const {
    const bool check = is_word(items, at, "CHECK") && at + 1 < items.size() &&
                       items[at + 1].kind == ItemKind::Group;
    if (!check) {
        return false;
    }
    const std::string name = upper(text(items.front()));
    const std::string condition = normal({items[at + 1].begin + 1, items[at + 1].end - 1});
    const std::string length = "LENGTH(" + name + ")";
    if (rule == Rule::NoEmptyText) {
        return condition == length + ">0" || condition == name + "<>''";
    }
    if (rule == Rule::Required) {
        return condition == "TYPEOF(" + name + ")<>'null'";
    }
    return condition.starts_with(length + "<=") &&
           std::all_of(condition.begin() + static_cast<std::ptrdiff_t>(length.size()) + 2,
                       condition.end(), is_digit);
}

std::optional<TableText::Span> TableText::rule_span(const Items& items, Rule rule) const {
    for (std::size_t i = 1; i < items.size(); ++i) {
        if (is_rule(items, i, rule)) {
            return clause(items, i, i + 1);
        }
    }
    return std::nullopt;
}

bool TableText::has_rule(std::string_view column_name, Rule rule) const {
    return rule_span(column(column_name), rule).has_value();
}

void TableText::set_rule(std::string_view column_name, Rule rule, bool has, std::int32_t most) {
    const std::string name = quoted_name(column_name);
    const std::string condition = rule == Rule::Required ? "typeof(" + name + ")<>'null'"
                                  : rule == Rule::NoEmptyText
                                      ? "length(" + name + ")>0"
                                      : "length(" + name + ")<=" + std::to_string(most);
    const std::string check = "CHECK(" + condition + ")";
    replace_clause(column_name, rule_span(column(column_name), rule), has ? check : "");
}

// ---- Defaults, types, names --------------------------------------------------------------------

std::optional<TableText::Span> TableText::default_span(const Items& items) const {
    for (std::size_t i = 1; i + 1 < items.size(); ++i) {
        if (is_word(items, i, "DEFAULT") && !is_word(items, i - 1, "SET")) {
            const bool sign = items[i + 1].kind == ItemKind::Other && i + 2 < items.size();
            return clause(items, i, sign ? i + 2 : i + 1);
        }
    }
    return std::nullopt;
}

void TableText::set_default(std::string_view column_name, std::string_view clause) {
    replace_clause(column_name, default_span(column(column_name)), clause);
}

void TableText::replace_clause(std::string_view column_name, std::optional<Span> old,
                               std::string_view clause) {
    if (old) {
        sql_.erase(old->begin, old->end - old->begin);
    }
    if (!clause.empty()) {
        sql_.insert(column(column_name).back().end, " " + std::string(clause));
    }
}

void TableText::set_type(std::string_view column_name, std::string_view type) {
    const Items items = column(column_name);
    std::size_t end = 1;
    while (end < items.size() && !is_constraint(items, end)) {
        ++end;
    }
    const std::size_t begin = items.front().end;
    sql_.replace(begin, items[end - 1].end - begin, " " + std::string(type));
}

void TableText::set_table_name(std::string_view name) {
    const Items top = items({0, sql_.size()});
    const Item old = top[body(top) - 1];
    sql_.replace(old.begin, old.end - old.begin, quoted_name(name));
}

std::string TableText::primary_key_name() const {
    for (const Items& element : elements()) {
        for (std::size_t i = 0; i < element.size(); ++i) {
            if (is_word(element, i, "PRIMARY") && is_word(element, i + 1, "KEY")) {
                return i >= 2 && is_word(element, i - 2, "CONSTRAINT") ? text(element[i - 1]) : "";
            }
        }
    }
    return "";
}

}  // namespace kvarta16::sqlite
