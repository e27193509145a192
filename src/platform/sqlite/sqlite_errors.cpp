#include <algorithm>
#include <charconv>
#include <filesystem>
#include <system_error>

#include <sqlite3.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/sqlite/sqlite_errors.h>

namespace kvarta16::sqlite {
namespace {

struct Entry {
    int code;  // of the engine, primary or extended
    Long number;
    StringView text;
};

// An extended code that is not listed counts as its primary one.
constexpr Entry entries[] = {
    {SQLITE_PERM, 3051, u"The file may not be opened"},
    {SQLITE_BUSY, 3260, u"The file is locked by another program"},
    {SQLITE_LOCKED, 3260, u"The table is locked by another user of the connection"},
    {SQLITE_NOMEM, 7, u"Out of memory"},
    {SQLITE_READONLY, 3027, u"The file is read-only"},
    {SQLITE_READONLY_DIRECTORY, 3027, u"The folder of the file is read-only"},
    {SQLITE_INTERRUPT, 3059, u"The operation was interrupted"},
    {SQLITE_IOERR, 3043, u"Reading or writing the disk failed"},
    {SQLITE_IOERR_NOMEM, 7, u"Out of memory"},
    {SQLITE_IOERR_SHMSIZE, error_disk_full, u"There is no space left for the file's journal"},
    {SQLITE_CORRUPT, 3428, u"The file is damaged"},
    {SQLITE_FULL, error_disk_full, u"There is no space left for the file"},
    {SQLITE_CANTOPEN, 3051, u"The file or its journal cannot be opened"},
    {SQLITE_PROTOCOL, 3260, u"The file is locked by another program"},
    {SQLITE_SCHEMA, 3260, u"Another program keeps changing the tables"},
    {SQLITE_TOOBIG, 3047, u"The value or the statement is too long"},
    {SQLITE_CONSTRAINT, 3317, u"A rule of the table does not allow the value"},
    {SQLITE_CONSTRAINT_CHECK, 3317, u"A rule of the table does not allow the value"},
    {SQLITE_CONSTRAINT_NOTNULL, error_no_value, u"A required column has no value"},
    {SQLITE_CONSTRAINT_UNIQUE, 3022, u"The row would be a duplicate of another"},
    {SQLITE_CONSTRAINT_PRIMARYKEY, 3022, u"The row would be a duplicate of another"},
    {SQLITE_CONSTRAINT_ROWID, 3022, u"The row would be a duplicate of another"},
    {SQLITE_CONSTRAINT_FOREIGNKEY, 3201,
     u"The row of another table that this one needs is missing"},
    {SQLITE_CONSTRAINT_DATATYPE, error_no_conversion,
     u"The column does not take a value of this type"},
    {SQLITE_MISMATCH, error_no_conversion, u"The column does not take a value of this type"},
    {SQLITE_MISUSE, 51, u"Internal error"},
    {SQLITE_NOLFS, 3043, u"The system cannot hold so large a file"},
    {SQLITE_AUTH, 3033, u"No permission"},
    {SQLITE_NOTADB, error_no_format, u"The file is no database of this kind"},
};

// Faults of a statement all have one code; the engine's message tells them apart.
struct StatementFault {
    std::string_view beginning;
    Long number;
    StringView text;
};
constexpr StatementFault statement_faults[] = {
    {"no such table", error_no_table, u"There is no such table"},
    {"no such column", error_unknown_name, u"There is no such column"},
    {"near ", error_syntax, u"Syntax error in the statement"},
    {"there is already a", error_table_exists, u"There is a table or index of that name already"},
    {"error in ", error_in_index, u"A view, trigger or rule of the file needs it"},
    {"incomplete input", error_syntax, u"Syntax error in the statement"},
    {"unrecognized token", error_syntax, u"Syntax error in the statement"},
    {"Expression tree is too large", error_too_complex, u"The statement is too complex"},
    {"parser stack overflow", error_too_complex, u"The statement is too complex"},
    {"too many SQL variables", error_too_complex, u"The statement is too complex"},
};

// The rules that the adapter gives columns are told apart by what they say (table_changes.h).
struct RuleFault {
    std::string_view ending;
    Long number;
    StringView text;
};
constexpr std::string_view rule_beginning = "CHECK constraint failed: ";
constexpr RuleFault rule_faults[] = {
    {")>0", error_empty_text, u"The column does not take the empty text"},
    {")<=", error_text_too_long, u"The text is too long for its column"},
    {")<>'null'", error_no_value, u"A required column has no value"},
};

constexpr std::string_view failure_beginning = "kvarta16 failure ";

constexpr Entry unlisted = {SQLITE_ERROR, 3000, u"The database engine reports an error"};

Entry entry_of(int result_code, std::string_view engine_message) {
    if (engine_message.starts_with(rule_beginning)) {
        const std::size_t digits = engine_message.find_last_not_of("0123456789") + 1;
        for (const RuleFault& fault : rule_faults) {
            if (engine_message.ends_with(fault.ending) ||
                engine_message.substr(0, digits).ends_with(fault.ending)) {
                return {result_code, fault.number, fault.text};
            }
        }
    }
    for (const int code : {result_code, result_code & 0xFF}) {
        const auto* found = std::ranges::find(entries, code, &Entry::code);
        if (found != std::end(entries)) {
            return *found;
        }
    }
    for (const StatementFault& fault : statement_faults) {
        if (engine_message.starts_with(fault.beginning)) {
            return {result_code, fault.number, fault.text};
        }
    }
    if (engine_message.ends_with("already exists")) {
        return {result_code, error_table_exists, u"There is a table of that name already"};
    }
    return unlisted;
}

[[noreturn]] void raise(Long number, StringView text, std::string_view place,
                        std::string_view engine_message) {
    String description(text);
    description.append(u": ").append(from_utf8(place));
    description.append(u" (").append(from_utf8(engine_message)).append(u")");
    throw Failure(number, std::move(description));
}

// What the file system says of a file that the engine could not open.
Entry opening_entry(const std::filesystem::path& path, bool may_create) {
    std::error_code ignored;  // what cannot be looked at is not called missing
    const std::filesystem::path folder = path.parent_path();
    if (std::filesystem::status(path, ignored).type() != std::filesystem::file_type::not_found) {
        return {SQLITE_CANTOPEN, error_cannot_open,
                u"The file cannot be opened, perhaps for want of permission"};
    }
    if (!may_create) {
        return {SQLITE_CANTOPEN, error_file_not_found, u"There is no such file"};
    }
    if (!folder.empty() && !std::filesystem::is_directory(folder, ignored)) {
        return {SQLITE_CANTOPEN, error_invalid_path, u"There is no such folder for the file"};
    }
    return {SQLITE_CANTOPEN, error_cannot_open,
            u"The file cannot be made, perhaps for want of permission"};
}

}  // namespace

std::string failure_message(const Failure& failure) {
    std::string message(failure_beginning);
    return message.append(std::to_string(failure.number())).append(" ").append(failure.what());
}

void fail_with(int result_code, std::string_view engine_message, std::string_view place) {
    if (engine_message.starts_with(failure_beginning)) {
        const std::string_view rest = engine_message.substr(failure_beginning.size());
        Long number = 0;
        const auto* text = std::from_chars(rest.data(), rest.data() + rest.size(), number).ptr;
        const auto digits = static_cast<std::size_t>(text - rest.data());
        throw Failure(number, from_utf8(rest.substr(std::min(digits + 1, rest.size()))));
    }
    const Entry entry = entry_of(result_code, engine_message);
    raise(entry.number, entry.text, place, engine_message);
}

void fail_to_open(int result_code, std::string_view engine_message, bool may_create,
                  std::string_view path) {
    if ((result_code & 0xFF) != SQLITE_CANTOPEN) {
        fail_with(result_code, engine_message, path);
    }
    const Entry entry = opening_entry(path, may_create);
    raise(entry.number, entry.text, path, engine_message);
}

}  // namespace kvarta16::sqlite
