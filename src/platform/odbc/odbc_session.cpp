#include <algorithm>
#include <array>
#include <clocale>
#include <cstdint>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/odbc/connection_name.h>
#include <kvarta16/platform/odbc/odbc_session.h>
#include <kvarta16/platform/sql/names.h>

namespace kvarta16::odbc {
namespace {

// An attribute of a handle that is a number, as the driver manager takes it.
SQLPOINTER as_attribute(std::uintptr_t value) {
    return reinterpret_cast<SQLPOINTER>(value);  // NOLINT(*-reinterpret-cast): its interface
}

// The driver manager turns texts into bytes for a driver that takes no others, and takes the
// character set from the thread's locale as a connection is made. Every text of ours goes through
// UTF-8.
class Utf8Locale {
  public:
    Utf8Locale() : locale_(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)) {
        if (locale_ != nullptr) {
            before_ = uselocale(locale_);
        }
    }
    ~Utf8Locale() {
        if (locale_ != nullptr) {
            uselocale(before_);
            freelocale(locale_);
        }
    }
    Utf8Locale(const Utf8Locale&) = delete;
    Utf8Locale& operator=(const Utf8Locale&) = delete;
    Utf8Locale(Utf8Locale&&) = delete;
    Utf8Locale& operator=(Utf8Locale&&) = delete;

  private:
    locale_t locale_;
    locale_t before_ = nullptr;
};

// ---- What the types of the columns mean --------------------------------------------------------

struct TypeEntry {
    SQLSMALLINT type;
    ColumnKind kind;
    bool is_small;  // an Integer, a Single
};
constexpr TypeEntry types[] = {
    {SQL_TINYINT, ColumnKind::Whole, true},
    {SQL_SMALLINT, ColumnKind::Whole, true},
    {SQL_INTEGER, ColumnKind::Whole, false},
    {SQL_BIGINT, ColumnKind::Whole, false},
    {SQL_REAL, ColumnKind::Real, true},
    {SQL_FLOAT, ColumnKind::Real, false},
    {SQL_DOUBLE, ColumnKind::Real, false},
    {SQL_DECIMAL, ColumnKind::Exact, false},
    {SQL_NUMERIC, ColumnKind::Exact, false},
    {SQL_BIT, ColumnKind::Truth, false},
    {SQL_TYPE_DATE, ColumnKind::Date, false},
    {SQL_TYPE_TIME, ColumnKind::Date, false},
    {SQL_TYPE_TIMESTAMP, ColumnKind::Date, false},
};

// Drivers pass the types that ODBC does not know as text, some of them as approximate numbers.
struct WordEntry {
    std::string_view word;
    ColumnKind kind;
};
constexpr WordEntry type_words[] = {
    {"currency", ColumnKind::Exact},     {"money", ColumnKind::Exact},
    {"smallmoney", ColumnKind::Exact},   {"decimal", ColumnKind::Exact},
    {"dec", ColumnKind::Exact},          {"numeric", ColumnKind::Exact},
    {"bool", ColumnKind::Truth},         {"boolean", ColumnKind::Truth},
    {"yesno", ColumnKind::Truth},        {"logical", ColumnKind::Truth},
    {"datetime", ColumnKind::Date},      {"datetime2", ColumnKind::Date},
    {"smalldatetime", ColumnKind::Date}, {"date", ColumnKind::Date},
    {"timestamptz", ColumnKind::Date},
};

// Texts and bytes of any length, which a server compares slowly or not at all.
constexpr SQLSMALLINT long_types[] = {SQL_LONGVARCHAR, SQL_WLONGVARCHAR, SQL_BINARY, SQL_VARBINARY,
                                      SQL_LONGVARBINARY};

}  // namespace

std::vector<const Column*> columns_read(const Query& query) {
    std::vector<const Column*> columns;
    for (const Query::Result& result : query.columns) {
        columns.push_back(result.column);
    }
    for (const KeyPart& part : query.table->key) {
        columns.push_back(part.column);
    }
    if (query.table->key.empty() && !query.table->is_view) {
        for (const Column& column : query.table->columns) {
            columns.push_back(&column);
        }
    }
    return columns;
}

// ---- Failures ----------------------------------------------------------------------------------

template <class Work>
auto Session::reporting(StringView table, Work work) {
    try {
        return work();
    } catch (const ReportedFailure& failure) {
        fail_on(failure.report, table);
    }
}

void Session::fail_on(const Report& report, StringView table) {
    const bool dead = is_dead();
    if (in_transaction_ && (dead || ends_transaction(report))) {
        transaction_is_lost_ = true;
    }
    fail_with(report, origin_, table, dead);
}

// Asked after a failure alone: a driver may have to ask the server.
bool Session::is_dead() const {
    SQLUINTEGER dead = SQL_CD_FALSE;
    return !is_connected_ ||
           !SQL_SUCCEEDED(SQLGetConnectAttrW(connection_.get(), SQL_ATTR_CONNECTION_DEAD, &dead,
                                             sizeof dead, nullptr)) ||
           dead == SQL_CD_TRUE;
}

// ---- Connecting --------------------------------------------------------------------------------

Session::Session(StringView name, int timeout_s) : dialect_(&dialect_of({})) {
    ConnectionName read = read_connection_name(name);
    origin_.place = std::move(read.shown);
    origin_.secrets = std::move(read.secrets);
    connect(read.attributes, timeout_s);
    try {
        read_about_server();
    } catch (...) {
        SQLDisconnect(connection_.get());
        throw;
    }
}

void Session::connect(const String& attributes, int timeout_s) {
    const Utf8Locale utf8;
    environment_ = new_handle<SQL_HANDLE_ENV>(SQL_NULL_HANDLE);
    SQLSetEnvAttr(environment_.get(), SQL_ATTR_ODBC_VERSION, as_attribute(SQL_OV_ODBC3), 0);
    connection_ = new_handle<SQL_HANDLE_DBC>(environment_.get());
    if (connection_ == nullptr) {
        fail_on(report_of(SQL_HANDLE_ENV, environment_.get()), {});
    }
    SQLSetConnectAttrW(connection_.get(), SQL_ATTR_LOGIN_TIMEOUT,
                       as_attribute(static_cast<std::uintptr_t>(timeout_s)), 0);
    WideText text(attributes);
    const SQLRETURN code =
        SQLDriverConnectW(connection_.get(), nullptr, text.data(), text.short_length(), nullptr, 0,
                          nullptr, SQL_DRIVER_NOPROMPT);
    if (!SQL_SUCCEEDED(code)) {
        fail_on(report_of(SQL_HANDLE_DBC, connection_.get()), {});
    }
    is_connected_ = true;
}

void Session::read_about_server() {
    origin_.product = information(SQL_DBMS_NAME);
    dialect_ = &dialect_of(origin_.product);
    quote_ = dialect_->quote.empty() ? information(SQL_IDENTIFIER_QUOTE_CHAR)
                                     : std::string(dialect_->quote);
    if (quote_ == " ") {
        quote_.clear();  // as a driver says that names cannot be quoted
    }
    for (const std::string_view sql : dialect_->on_connect) {
        execute(sql);
    }
    if (!dialect_->current_schema.empty()) {
        schema_ = single_text(dialect_->current_schema);
    } else if (!dialect_->dates_are_text) {
        catalogue_ = from_utf8(information(SQL_DATABASE_NAME));
    }
}

// In UTF-8.
std::string Session::information(SQLUSMALLINT about) {
    std::array<SQLWCHAR, 512> text{};
    SQLSMALLINT length = 0;
    const SQLRETURN code =
        SQLGetInfoW(connection_.get(), about, text.data(),
                    static_cast<SQLSMALLINT>(text.size() * sizeof(SQLWCHAR)), &length);
    if (!SQL_SUCCEEDED(code)) {
        fail_on(report_of(SQL_HANDLE_DBC, connection_.get()), {});
    }
    auto* const end = std::find(text.begin(), text.end(), SQLWCHAR{0});
    return to_utf8(String(text.begin(), end));
}

String Session::single_text(std::string_view sql) {
    return reporting({}, [&] {
        Statement statement(connection_.get(), *dialect_);
        statement.execute(sql, {});
        return statement.fetch() ? statement.text(1) : String();
    });
}

Session::~Session() {
    if (!is_connected_) {
        return;
    }
    if (in_transaction_) {
        SQLEndTran(SQL_HANDLE_DBC, connection_.get(), SQL_ROLLBACK);
    }
    SQLDisconnect(connection_.get());
}

// ---- Tables ------------------------------------------------------------------------------------

std::string Session::quoted(const String& name) const {
    return quoted_name(to_utf8(name), quote_);
}

bool Session::forget_tables() {
    const bool any = !tables_.empty();
    tables_.clear();
    return any;
}

std::shared_ptr<const Table> Session::find_table(const std::vector<String>& names) {
    String asked;
    for (const String& name : names) {
        asked.append(name).append(1, u'\0');
    }
    if (const auto known = tables_.find(asked); known != tables_.end()) {
        return known->second;
    }
    return reporting(names.back(), [&]() -> std::shared_ptr<const Table> {
        const std::vector<Found> found = tables_named(names.back());
        const Found* table = chosen(found, names);
        return table == nullptr ? nullptr
                                : tables_.emplace(asked, read_table(*table)).first->second;
    });
}

std::vector<Session::Found> Session::tables_named(const String& name) {
    std::vector<Found> found;
    Statement statement(connection_.get(), *dialect_);
    statement.list_tables(catalogue_);
    while (statement.fetch()) {
        Found table{statement.text(1), statement.text(2), statement.text(3), false};
        table.is_view = statement.text(4) == u"VIEW";
        const bool is_elsewhere = !catalogue_.empty() && table.catalogue != catalogue_;
        if (!is_elsewhere && sql::same_name(table.name, name)) {
            found.push_back(std::move(table));
        }
    }
    return found;
}

// The one whose owner is named, else the one in the schema that a bare name means, else the only
// one; of several of them the one that is spelled like the name.
const Session::Found* Session::chosen(const std::vector<Found>& found,
                                      const std::vector<String>& names) const {
    const auto fitting = [&](auto fits) {
        std::vector<const Found*> chosen;
        for (const Found& table : found) {
            if (fits(table)) {
                chosen.push_back(&table);
            }
        }
        return chosen;
    };
    std::vector<const Found*> tables;
    if (names.size() > 1) {
        tables = fitting(
            [&](const Found& t) { return sql::same_name(t.owner, names[names.size() - 2]); });
    }
    if (tables.empty()) {
        tables = fitting([&](const Found& t) { return t.owner == schema_; });
    }
    if (tables.empty()) {
        tables = fitting([](const Found&) { return true; });
    }
    if (tables.size() > 1) {
        std::erase_if(tables, [&](const Found* t) { return t->name != names.back(); });
        if (tables.size() != 1) {
            fail_about(error_no_table, u"There are several tables of that name", names.back());
        }
    }
    return tables.empty() ? nullptr : tables.front();
}

std::shared_ptr<const Table> Session::read_table(const Found& found) {
    auto table = std::make_shared<Table>();
    table->name = found.name;
    table->sql = (found.owner.empty() ? "" : quoted(found.owner) + ".") + quoted(found.name);
    table->is_view = found.is_view;
    read_columns(*table);
    read_truth_columns(*table, found);
    if (!table->is_view) {
        read_key(*table, found);
    }
    return table;
}

Column Session::column_of(const Statement::Description& description) const {
    Column column;
    column.name = description.name;
    column.sql = column.selected = quoted(description.name);
    const auto* type = std::ranges::find(types, description.type, &TypeEntry::type);
    if (type != std::end(types)) {
        column.kind = type->kind;
        column.is_short = type->kind == ColumnKind::Whole && type->is_small;
        column.is_single = type->kind == ColumnKind::Real && type->is_small;
        column.is_bit = description.type == SQL_BIT;
    }
    if (column.kind == ColumnKind::Text || column.kind == ColumnKind::Real) {
        const auto* word = std::ranges::find(type_words, description.type_name, &WordEntry::word);
        column.kind = word != std::end(type_words) ? word->kind : column.kind;
    }
    column.is_truth_type = column.kind == ColumnKind::Truth && dialect_->has_truth_type;
    if (dialect_->has_truth_type && description.type_name == "money") {
        column.selected = "cast(" + column.sql + " as numeric)";  // without currency and groups
        column.place = "cast(? as numeric)";
    }
    column.identifies_row = column.kind != ColumnKind::Real &&
                            std::ranges::find(long_types, description.type) == std::end(long_types);
    return column;
}

void Session::read_columns(Table& table) {
    Statement statement(connection_.get(), *dialect_);
    statement.execute("select * from " + table.sql + " where 1=0", {});
    const auto count = static_cast<SQLUSMALLINT>(statement.column_count());
    for (SQLUSMALLINT number = 1; number <= count; ++number) {
        table.columns.push_back(column_of(statement.describe(number)));
    }
}

void Session::read_truth_columns(Table& table, const Found& found) {
    if (dialect_->truth_columns.empty()) {
        return;
    }
    const Argument name{found.name};
    Statement statement(connection_.get(), *dialect_);
    statement.execute(dialect_->truth_columns, {&name, 1});
    while (statement.fetch()) {
        const auto column = sql::find_name(table.columns, statement.text(1));
        if (column != table.columns.cend()) {
            table.columns[static_cast<std::size_t>(column - table.columns.cbegin())].kind =
                ColumnKind::Truth;
        }
    }
}

void Session::read_key(Table& table, const Found& found) {
    Statement statement(connection_.get(), *dialect_);
    statement.list_primary_key(found.catalogue, found.owner, found.name);
    while (statement.fetch()) {
        const auto column = sql::find_name(table.columns, statement.text(4));
        if (column != table.columns.end()) {
            table.key.push_back({column->selected, column->sql + "=" + column->place, &*column});
        }
    }
    if (table.key.empty()) {
        for (const RowMark& mark : dialect_->row_marks) {
            table.key.push_back({std::string(mark.selected), std::string(mark.matched)});
        }
    }
}

// ---- Running -----------------------------------------------------------------------------------

namespace {

void take_row(Statement& statement, std::span<const Column* const> columns, Rows& rows) {
    SQLUSMALLINT number = 0;
    for (const Column* column : columns) {
        rows.cells.push_back(statement.value(++number, column));
    }
}

}  // namespace

Rows Session::query(const Query& query) {
    require_no_lost_transaction();
    return reporting(query.table->name, [&] {
        const std::vector<const Column*> columns = columns_read(query);
        Rows rows{columns.size(), {}};
        Statement statement(connection_.get(), *dialect_);
        statement.execute(query.sql, query.arguments);
        const auto is_wanted = [&] {
            return !query.most_rows || std::cmp_less(rows.count(), *query.most_rows);
        };
        while (is_wanted() && statement.fetch()) {
            take_row(statement, columns, rows);
        }
        return rows;
    });
}

Session::Written Session::write(std::string_view sql, std::span<const Argument> arguments,
                                std::span<const Column* const> columns, StringView table) {
    require_no_lost_transaction();
    return reporting(table, [&] {
        Statement statement(connection_.get(), *dialect_);
        Written written{0, {columns.size(), {}}};
        if (!statement.execute(sql, arguments)) {
            return written;
        }
        if (statement.column_count() > 0) {
            while (statement.fetch()) {
                take_row(statement, columns, written.rows);
            }
            written.count = static_cast<SQLLEN>(written.rows.count());
        } else {
            written.count = statement.row_count();
        }
        return written;
    });
}

void Session::execute(std::string_view sql) {
    require_no_lost_transaction();
    forget_tables();
    reporting({}, [&] { Statement(connection_.get(), *dialect_).execute(sql, {}); });
}

// ---- Transactions ------------------------------------------------------------------------------

void Session::require_no_lost_transaction() const {
    if (transaction_is_lost_) {
        fail_about(error_in_transaction,
                   u"The server has rolled the transaction back; RollbackTrans ends it",
                   origin_.place);
    }
}

void Session::begin() {
    if (in_transaction_) {
        fail_about(error_in_transaction,
                   u"A transaction is open already, and there is none within another",
                   origin_.place);
    }
    const SQLRETURN code = SQLSetConnectAttrW(connection_.get(), SQL_ATTR_AUTOCOMMIT,
                                              as_attribute(SQL_AUTOCOMMIT_OFF), 0);
    if (!SQL_SUCCEEDED(code)) {
        fail_on(report_of(SQL_HANDLE_DBC, connection_.get()), {});
    }
    in_transaction_ = true;
}

void Session::commit() {
    if (!in_transaction_) {
        fail_about(error_no_transaction, u"There is no transaction to commit", origin_.place);
    }
    if (transaction_is_lost_) {
        end_transaction(SQL_ROLLBACK);
        fail_about(error_no_transaction, u"The server has rolled the transaction back",
                   origin_.place);
    }
    end_transaction(SQL_COMMIT);
}

void Session::rollback() {
    if (!in_transaction_) {
        fail_about(error_no_transaction, u"There is no transaction to roll back", origin_.place);
    }
    end_transaction(SQL_ROLLBACK);
}

// A transaction that the server has ended may leave no connection to end it on.
void Session::end_transaction(SQLSMALLINT how) {
    const auto require = [this](SQLRETURN code) {
        if (!SQL_SUCCEEDED(code) && !transaction_is_lost_) {
            fail_on(report_of(SQL_HANDLE_DBC, connection_.get()), {});
        }
    };
    forget_tables();
    require(SQLEndTran(SQL_HANDLE_DBC, connection_.get(), how));
    require(SQLSetConnectAttrW(connection_.get(), SQL_ATTR_AUTOCOMMIT,
                               as_attribute(SQL_AUTOCOMMIT_ON), 0));
    in_transaction_ = false;
    transaction_is_lost_ = false;
}

}  // namespace kvarta16::odbc
