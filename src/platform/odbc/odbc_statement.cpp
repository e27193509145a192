#include <algorithm>
#include <array>

#include <kvarta16/frame/civil.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/odbc/odbc_statement.h>

namespace kvarta16::odbc {

// How a parameter is told to the driver.
struct Statement::Binding {
    SQLSMALLINT c_type;
    SQLSMALLINT type;
    SQLULEN size;
    SQLSMALLINT digits;
    void* value;
    SQLLEN length;
};

namespace {

SQLSMALLINT type_of_null(const Column* column) {
    switch (column != nullptr ? column->kind : ColumnKind::Text) {
        case ColumnKind::Whole:
            return SQL_INTEGER;
        case ColumnKind::Real:
            return SQL_DOUBLE;
        case ColumnKind::Exact:
            return SQL_DECIMAL;
        case ColumnKind::Date:
            return SQL_TYPE_TIMESTAMP;
        case ColumnKind::Truth:
            return column->is_truth_type || column->is_bit ? SQL_BIT : SQL_INTEGER;
        default:
            return SQL_WVARCHAR;
    }
}

SQL_TIMESTAMP_STRUCT timestamp_of(sql::Moment moment) {
    const Civil civil = civil_of(moment.day);
    const std::int32_t seconds = moment.millisecond / 1000;
    return {static_cast<SQLSMALLINT>(civil.year),
            static_cast<SQLUSMALLINT>(civil.month),
            static_cast<SQLUSMALLINT>(civil.day),
            static_cast<SQLUSMALLINT>(seconds / 3600),
            static_cast<SQLUSMALLINT>(seconds / 60 % 60),
            static_cast<SQLUSMALLINT>(seconds % 60),
            static_cast<SQLUINTEGER>(moment.millisecond % 1000) * 1'000'000};
}

// Behind the dot.
std::size_t decimals_in(const std::string& digits) {
    const std::size_t dot = digits.find('.');
    return dot == std::string::npos ? 0 : digits.size() - dot - 1;
}

// Such a file keeps a number as a Double; the embedded engine's own adapter has another form for
// longer ones, which no driver hands over.
void require_exact_in_double(const std::string& digits) {
    constexpr std::ptrdiff_t most_digits = 15;
    const auto count = std::ranges::count_if(digits, [](char c) { return c >= '0' && c <= '9'; });
    if (count > most_digits) {
        throw Failure(error::overflow,
                      u"The file cannot keep so many digits: " + from_utf8(digits));
    }
}

// What a Cell becomes for servers whose dates are text: the files that they write are read by the
// embedded engine's adapter, which stores its values in the same forms.
Cell as_text_dialect(const Cell& cell) {
    if (const auto* moment = std::get_if<sql::Moment>(&cell)) {
        return from_utf8(sql::stored_text(*moment));
    }
    if (const auto* truth = std::get_if<bool>(&cell)) {
        return std::int64_t{*truth ? -1 : 0};
    }
    return cell;
}

}  // namespace

Statement::Statement(SQLHDBC connection, const Dialect& dialect)
    : handle_(new_handle<SQL_HANDLE_STMT>(connection)), dialect_(dialect) {
    if (handle_ == nullptr) {
        throw ReportedFailure{report_of(SQL_HANDLE_DBC, connection)};
    }
}

void Statement::require(SQLRETURN code) const {
    if (!SQL_SUCCEEDED(code) && code != SQL_NO_DATA) {
        throw ReportedFailure{report_of(SQL_HANDLE_STMT, handle_.get())};
    }
}

bool Statement::execute(std::string_view sql, std::span<const Argument> arguments) {
    SQLUSMALLINT number = 0;
    for (const Argument& argument : arguments) {
        bind(++number, argument);
    }
    WideText text(from_utf8(sql));
    const SQLRETURN code = SQLExecDirectW(handle_.get(), text.data(), text.length());
    require(code);
    return code != SQL_NO_DATA;
}

void Statement::list_tables(StringView catalogue) {
    WideText within(catalogue);
    WideText any(u"%");
    WideText types(u"TABLE,VIEW");
    require(SQLTablesW(handle_.get(), catalogue.empty() ? nullptr : within.data(),
                       within.short_length(), nullptr, 0, any.data(), any.short_length(),
                       types.data(), types.short_length()));
}

void Statement::list_primary_key(StringView catalogue, StringView owner, StringView table) {
    WideText within(catalogue);
    WideText by(owner);
    WideText of(table);
    require(SQLPrimaryKeysW(handle_.get(), catalogue.empty() ? nullptr : within.data(),
                            within.short_length(), owner.empty() ? nullptr : by.data(),
                            by.short_length(), of.data(), of.short_length()));
}

bool Statement::fetch() {
    const SQLRETURN code = SQLFetch(handle_.get());
    require(code);
    return code != SQL_NO_DATA;
}

SQLSMALLINT Statement::column_count() {
    SQLSMALLINT count = 0;
    require(SQLNumResultCols(handle_.get(), &count));
    return count;
}

SQLLEN Statement::row_count() {
    SQLLEN count = 0;
    require(SQLRowCount(handle_.get(), &count));
    return count;
}

Statement::Description Statement::describe(SQLUSMALLINT number) {
    std::array<SQLWCHAR, 512> name{};
    SQLSMALLINT length = 0;
    SQLSMALLINT digits = 0;
    SQLSMALLINT nullable = 0;
    SQLULEN size = 0;
    Description description;
    require(SQLDescribeColW(handle_.get(), number, name.data(),
                            static_cast<SQLSMALLINT>(name.size()), &length, &description.type,
                            &size, &digits, &nullable));
    // Up to its end and not by its length, which the driver manager counts in bytes for a name that
    // it has turned into UTF-16 itself.
    description.name.assign(name.begin(), std::ranges::find(name, SQLWCHAR{0}));
    require(SQLColAttributeW(handle_.get(), number, SQL_DESC_TYPE_NAME, name.data(),
                             static_cast<SQLSMALLINT>(name.size() * sizeof(SQLWCHAR)), &length,
                             nullptr));
    for (const SQLWCHAR unit : name) {
        if (unit == u' ' || unit == u'(' || unit == 0) {
            break;
        }
        description.type_name += static_cast<char>(unit >= u'A' && unit <= u'Z' ? unit + 32 : unit);
    }
    return description;
}

// ---- Parameters --------------------------------------------------------------------------------

void Statement::bind(SQLUSMALLINT number, Parameter& parameter, const Binding& binding) {
    parameter.indicator = binding.length;
    require(SQLBindParameter(handle_.get(), number, SQL_PARAM_INPUT, binding.c_type, binding.type,
                             std::max<SQLULEN>(binding.size, 1), binding.digits, binding.value,
                             binding.length > 0 ? binding.length : 0, &parameter.indicator));
}

void Statement::bind(SQLUSMALLINT number, const Argument& argument) {
    constexpr SQLULEN longest_varying = 4000;
    constexpr SQLSMALLINT decimals_of_a_second = 3;
    Parameter& to = parameters_.emplace_back();
    const Cell cell = dialect_.dates_are_text ? as_text_dialect(argument.value) : argument.value;
    if (const auto* whole = std::get_if<std::int64_t>(&cell)) {
        to.whole = *whole;
        bind(number, to, {SQL_C_SBIGINT, SQL_BIGINT, 19, 0, &to.whole, 0});
    } else if (const auto* real = std::get_if<double>(&cell)) {
        to.real = *real;
        bind(number, to, {SQL_C_DOUBLE, SQL_DOUBLE, 15, 0, &to.real, 0});
    } else if (const auto* exact = std::get_if<Exact>(&cell)) {
        to.narrow = exact->digits;
        if (dialect_.dates_are_text) {
            require_exact_in_double(to.narrow);
        }
        bind(number, to,
             {SQL_C_CHAR, SQL_DECIMAL, to.narrow.size(),
              static_cast<SQLSMALLINT>(decimals_in(to.narrow)), to.narrow.data(),
              static_cast<SQLLEN>(to.narrow.size())});
    } else if (const auto* truth = std::get_if<bool>(&cell)) {
        to.bit = *truth ? 1 : 0;
        bind(number, to, {SQL_C_BIT, SQL_BIT, 1, 0, &to.bit, 0});
    } else if (const auto* moment = std::get_if<sql::Moment>(&cell)) {
        to.moment = timestamp_of(*moment);
        bind(number, to,
             {SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, sizeof("yyyy-MM-dd HH:mm:ss.fff") - 1,
              decimals_of_a_second, &to.moment, 0});
    } else if (const auto* text = std::get_if<String>(&cell)) {
        to.wide.assign(text->begin(), text->end());
        to.wide.push_back(0);
        const SQLSMALLINT type = text->size() > longest_varying ? SQL_WLONGVARCHAR : SQL_WVARCHAR;
        bind(number, to,
             {SQL_C_WCHAR, type, text->size(), 0, to.wide.data(),
              static_cast<SQLLEN>(text->size() * sizeof(SQLWCHAR))});
    } else {
        bind(number, to, {SQL_C_CHAR, type_of_null(argument.column), 1, 0, nullptr, SQL_NULL_DATA});
    }
}

// ---- Values ------------------------------------------------------------------------------------

template <class Value>
Cell Statement::plain_value(SQLUSMALLINT number, SQLSMALLINT type) {
    Value value{};
    SQLLEN indicator = 0;
    require(SQLGetData(handle_.get(), number, type, &value, sizeof value, &indicator));
    return indicator == SQL_NULL_DATA ? Cell() : Cell(value);
}

// In pieces: a driver gives as much as there is room for, and the rest when it is asked again.
Cell Statement::wide_value(SQLUSMALLINT number) {
    std::array<SQLWCHAR, 2048> piece{};
    constexpr SQLLEN room = static_cast<SQLLEN>(sizeof piece - sizeof(SQLWCHAR));
    String value;
    for (SQLRETURN code = SQL_SUCCESS_WITH_INFO; code == SQL_SUCCESS_WITH_INFO;) {
        SQLLEN indicator = 0;
        code =
            SQLGetData(handle_.get(), number, SQL_C_WCHAR, piece.data(), sizeof piece, &indicator);
        require(code);
        if (indicator == SQL_NULL_DATA) {
            return {};
        }
        if (code == SQL_NO_DATA) {
            break;
        }
        const bool more = indicator == SQL_NO_TOTAL || indicator > room;
        const auto units = static_cast<std::ptrdiff_t>(
            static_cast<std::size_t>(more ? room : indicator) / sizeof(SQLWCHAR));
        value.append(piece.begin(), piece.begin() + units);
        code = more ? SQL_SUCCESS_WITH_INFO : SQL_SUCCESS;
    }
    return value;
}

// Numbers and dates, which are short whatever the server.
Cell Statement::narrow_value(SQLUSMALLINT number, const Column& column) {
    std::array<char, 512> piece{};
    SQLLEN indicator = 0;
    require(SQLGetData(handle_.get(), number, SQL_C_CHAR, piece.data(), sizeof piece, &indicator));
    if (indicator == SQL_NULL_DATA) {
        return {};
    }
    return parsed_cell(std::string(piece.data()), column);
}

Cell Statement::value(SQLUSMALLINT number, const Column* column) {
    if (column == nullptr || column->kind == ColumnKind::Text) {
        return wide_value(number);
    }
    if (column->kind == ColumnKind::Whole) {
        return plain_value<std::int64_t>(number, SQL_C_SBIGINT);
    }
    if (column->kind == ColumnKind::Real) {
        return plain_value<double>(number, SQL_C_DOUBLE);
    }
    if (column->is_bit && !dialect_.dates_are_text) {
        const Cell bit = plain_value<std::int64_t>(number, SQL_C_SBIGINT);
        const auto* set = std::get_if<std::int64_t>(&bit);
        return set != nullptr ? Cell(*set != 0) : Cell();
    }
    return narrow_value(number, *column);
}

String Statement::text(SQLUSMALLINT number) {
    Cell cell = wide_value(number);
    auto* text = std::get_if<String>(&cell);
    return text != nullptr ? std::move(*text) : String();
}

}  // namespace kvarta16::odbc
