#include <algorithm>
#include <array>
#include <string_view>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/odbc/odbc_errors.h>
#include <kvarta16/platform/odbc/odbc_handles.h>

namespace kvarta16::odbc {
namespace {

constexpr StringView lost = u"There is no connection to the server, or it has been lost";
constexpr StringView no_source = u"There is no such data source, or its driver cannot be loaded";
constexpr StringView no_login = u"The server does not accept the name or the password";
constexpr StringView duplicate = u"The row would be a duplicate of another";
constexpr StringView no_value = u"A required column has no value";
constexpr StringView no_parent = u"The row of another table that this one needs is missing";
constexpr StringView rule = u"A rule of the table does not allow the value";
constexpr StringView too_long = u"The text is too long for its column";
constexpr StringView too_large = u"The number is too large for its column";
constexpr StringView wrong_type = u"The column does not take a value of this type";
constexpr StringView locked = u"Another user of the database stands in the way";
constexpr StringView no_table = u"There is no such table";
constexpr StringView no_column = u"There is no such column";
constexpr StringView no_permission = u"No permission";
constexpr StringView no_space = u"There is no space left for the database";
constexpr StringView read_only = u"The database is read-only";
constexpr StringView bad_statement = u"Syntax error in the statement";

// What says more than the state does: the product's own number and the beginning of its message.
struct NativeEntry {
    std::string_view product;
    SQLINTEGER native;
    StringView message;  // a part of it
    Long number;
    StringView text;
};
constexpr NativeEntry native_entries[] = {
    // Of a connection that there is not yet; its product is not known.
    {"", 101, u"authentication failed", 3029, no_login},
    {"MariaDB", 1044, u"", 3033, no_permission},
    {"MariaDB", 1045, u"", 3029, no_login},
    {"MariaDB", 1048, u"", 3314, no_value},
    {"MariaDB", 1054, u"", error_unknown_name, no_column},
    {"MariaDB", 1062, u"", 3022, duplicate},
    {"MariaDB", 1114, u"", 3026, no_space},
    {"MariaDB", 1142, u"", 3033, no_permission},
    {"MariaDB", 1146, u"", error_no_table, no_table},
    {"MariaDB", 1205, u"", 3260, locked},
    {"MariaDB", 1213, u"", 3260, locked},
    {"MariaDB", 1264, u"", 3349, too_large},
    {"MariaDB", 1290, u"", 3027, read_only},
    {"MariaDB", 1292, u"", 3421, wrong_type},
    {"MariaDB", 1364, u"", 3314, no_value},
    {"MariaDB", 1366, u"", 3421, wrong_type},
    {"MariaDB", 1406, u"", 3163, too_long},
    {"MariaDB", 1452, u"", 3201, no_parent},
    {"MariaDB", 2002, u"", error_connection, lost},
    {"MariaDB", 2006, u"", error_connection, lost},
    {"MariaDB", 2013, u"", error_connection, lost},
    {"MariaDB", 2055, u"", error_connection, lost},
    {"SQLite", 1, u"no such table", error_no_table, no_table},
    {"SQLite", 1, u"no such column", error_unknown_name, no_column},
    {"SQLite", 5, u"", 3260, locked},
    {"SQLite", 6, u"", 3260, locked},
    {"SQLite", 8, u"", 3027, read_only},
    {"SQLite", 11, u"", 3428, u"The file is damaged"},
    {"SQLite", 13, u"", 3026, no_space},
    {"SQLite", 14, u"", 3051, u"The file cannot be opened"},
    {"SQLite", 19, u"UNIQUE", 3022, duplicate},
    {"SQLite", 19, u"NOT NULL", 3314, no_value},
    {"SQLite", 19, u"FOREIGN KEY", 3201, no_parent},
    {"SQLite", 19, u"", 3317, rule},
    {"SQLite", 20, u"", 3421, wrong_type},
    {"SQLite", 26, u"", 3343, u"The file is no database of this kind"},
};

struct StateEntry {
    std::string_view state;  // or its beginning; the first that fits counts
    Long number;
    StringView text;
};
constexpr StateEntry state_entries[] = {
    {"08", error_connection, lost},
    {"22001", 3163, too_long},
    {"22003", 3349, too_large},
    {"22", 3421, wrong_type},
    {"23502", 3314, no_value},
    {"23503", 3201, no_parent},
    {"23505", 3022, duplicate},
    {"23", 3317, rule},
    {"25006", 3027, read_only},
    {"28", 3029, no_login},
    {"40", 3260, locked},
    {"42501", 3033, no_permission},
    {"42601", error_syntax, bad_statement},
    {"42703", error_unknown_name, no_column},
    {"42P01", error_no_table, no_table},
    {"42P07", 3010, u"There is a table of that name already"},
    {"42S01", 3010, u"There is a table of that name already"},
    {"42S02", error_no_table, no_table},
    {"42S22", error_unknown_name, no_column},
    {"53100", 3026, no_space},
    {"55P03", 3260, locked},
    {"57P", error_connection, lost},
    {"HYT01", error_connection, lost},
    {"IM", error_connection, no_source},
    {"", error_call_failed, u"The database reports an error"},
};

// Servers of one family share their numbers.
std::string_view family_of(std::string_view product) {
    return product.starts_with("MySQL") ? "MariaDB" : product;
}

std::pair<Long, StringView> meaning_of(const Report& report, std::string_view product) {
    for (const NativeEntry& entry : native_entries) {
        if (entry.native == report.native && family_of(product).starts_with(entry.product) &&
            report.message.find(entry.message) != String::npos) {
            return {entry.number, entry.text};
        }
    }
    for (const StateEntry& entry : state_entries) {
        if (report.state.starts_with(entry.state)) {
            return {entry.number, entry.text};
        }
    }
    return {error_call_failed, {}};
}

String without(String text, const std::vector<String>& secrets) {
    constexpr StringView stars = u"***";
    for (const String& secret : secrets) {
        for (std::size_t at = 0; !secret.empty() && (at = text.find(secret, at)) != String::npos;
             at += stars.size()) {
            text.replace(at, secret.size(), stars);
        }
    }
    return text;
}

}  // namespace

Report report_of(SQLSMALLINT handle_type, SQLHANDLE handle) {
    std::array<SQLWCHAR, 6> state{};
    std::array<SQLWCHAR, 2048> message{};
    SQLSMALLINT length = 0;
    Report report;
    const SQLRETURN code =
        SQLGetDiagRecW(handle_type, handle, 1, state.data(), &report.native, message.data(),
                       static_cast<SQLSMALLINT>(message.size()), &length);
    if (!SQL_SUCCEEDED(code)) {
        return {"HY000", 0, u"the driver gives no reason"};
    }
    report.state.assign(state.begin(), state.end() - 1);
    const auto shown = std::min<std::size_t>(static_cast<std::size_t>(length), message.size() - 1);
    report.message.assign(message.begin(), message.begin() + static_cast<std::ptrdiff_t>(shown));
    std::ranges::replace_if(
        report.message, [](char16_t c) { return c < u' '; }, u' ');
    return report;
}

bool ends_transaction(const Report& report) noexcept {
    constexpr SQLINTEGER deadlock = 1213;
    return report.state.starts_with("08") || report.state.starts_with("40") ||
           report.state.starts_with("57P") || report.native == deadlock;
}

void fail_with(const Report& report, const Origin& origin, StringView table, bool no_connection) {
    auto [number, text] = meaning_of(report, origin.product);
    if (no_connection && number == error_call_failed) {
        number = error_connection;
        text = lost;
    }
    String description(text);
    description.append(u": ").append(table).append(table.empty() ? u"" : u", ");
    description.append(origin.place).append(u" (").append(from_utf8(report.state));
    description.append(u": ").append(without(report.message, origin.secrets)).append(u")");
    throw Failure(number, std::move(description));
}

}  // namespace kvarta16::odbc
