// Database files: make, check, clean and widen them, run a statement, and show what they hold.
#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <iostream>

#include <kvarta16/database/Baza.h>
#include <kvarta16/database/ClsCzyscBazeDAO.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/platform/sqlite/sqlite_connection.h>

#include "commands.h"
#include "db_watch.h"
#include "human_values.h"
#include "usage_error.h"

namespace kvarta16::tool {
namespace {

// ---- Before a change ------------------------------------------------------------------------

// A file that cannot be opened is told before anything is changed: some operations keep quiet.
std::vector<String> table_names(const String& file) {
    std::vector<String> names;
    const std::shared_ptr<dao::Database> db = platform().db_engine->OpenDatabase(file);
    for (const auto& table : db->TableDefs()) {
        names.push_back(table->Name());
    }
    db->Close();
    return names;
}

void require_table(const String& file, const std::optional<std::string>& table) {
    const std::vector<String> names = table_names(file);
    const auto is_meant = [&](const String& name) {
        return upper_case(name) == upper_case(from_utf8(*table));
    };
    if (table && std::ranges::none_of(names, is_meant)) {
        throw UsageError(to_utf8(file) + " has no table \"" + *table + "\"");
    }
}

// Copies the file as it is between two changes of other programs.
void back_up(const String& file) {
    const std::string source = platform().files->native_path(file);
    const std::string copy = source + ".bak";
    if (std::filesystem::exists(copy)) {
        throw UsageError(copy + " is there already; move it away first");
    }
    std::string quoted = copy;
    for (std::size_t at = 0; (at = quoted.find('\'', at)) != std::string::npos; at += 2) {
        quoted.insert(at, 1, '\'');
    }
    sqlite::connect(source)->execute("vacuum into '" + quoted + "'");
    std::cerr << "kvarta16: copied to " << copy << '\n';
}

void prepare(const String& file, const MaintenanceOptions& options) {
    require_table(file, options.table);
    if (options.backup && !options.plan) {
        back_up(file);
    }
}

int tell_outcome(const MaintenanceWatch& watch) {
    if (watch.failed_statements > 0) {
        std::cerr << "kvarta16: " << watch.failed_statements
                  << " statements were not done; the rest was\n";
        return exit_failure;
    }
    return 0;
}

// ---- What a file holds ----------------------------------------------------------------------

constexpr StringView type_names[] = {u"?",        u"boolean",    u"byte",   u"integer", u"long",
                                     u"currency", u"single",     u"double", u"date",    u"binary",
                                     u"text",     u"longbinary", u"memo"};

String type_name(Integer type) {
    const bool is_known = type > 0 && static_cast<std::size_t>(type) < std::size(type_names);
    return String(is_known ? type_names[type] : u"type " + ToText(type));
}

void print_column(dao::Field& field) {
    constexpr std::size_t name_width = 26;
    constexpr std::size_t type_width = 12;
    const auto padded = [](String text, std::size_t width) {
        text.resize(std::max(text.size(), width), u' ');
        return text;
    };
    const Integer type = field.Type();
    const bool is_text = type == dao::dbText || type == dao::dbMemo;
    String type_text = type_name(type);
    if (type == dao::dbText) {
        type_text += u'(' + ToText(field.Size()) + u')';
    }
    String line = u"  " + padded(field.Name(), name_width) + u' ' + padded(type_text, type_width);
    const String default_value = ToText(field.DefaultValue());
    if (!default_value.empty()) {
        line += u"  default " + default_value;
    }
    if (is_text && !field.AllowZeroLength()) {
        line += u"  never empty";
    }
    std::cout << to_utf8(trim_right(line)) << '\n';
}

// The rows of a select, a line each, its values parted by tabs; the names of the columns first.
void print_rows(const std::shared_ptr<sqlite::SqliteConnection>& db, StringView statement) {
    const std::shared_ptr<ado::Recordset> rows = db->CreateRecordset();
    rows->Open(statement, db, ado::CursorType::adOpenForwardOnly, ado::LockType::adLockReadOnly,
               ado::adCmdUnspecified);
    std::vector<ado::Field*> fields;
    try {
        for (;;) {
            fields.push_back(&rows->Fields(static_cast<Long>(fields.size())));
        }
    } catch (const Failure& failure) {
        if (failure.number() != ado::error_item_not_found) {  // that one is behind the last column
            throw;
        }
    }
    const auto print_line = [&fields](auto&& text_of) {
        for (std::size_t i = 0; i < fields.size(); ++i) {
            std::cout << (i == 0 ? "" : "\t") << text_of(*fields[i]);
        }
        std::cout << '\n';
    };
    print_line([](ado::Field& field) { return to_utf8(field.Name()); });
    for (; !rows->IsEOF(); rows->MoveNext()) {
        print_line([](ado::Field& field) { return human_text(field.Value()); });
    }
}

bool is_select(StringView statement) {
    return lower_case(trim_left(statement)).starts_with(u"select");
}

}  // namespace

// ---- The commands ---------------------------------------------------------------------------

int db_new_command(const std::string& file, bool silent) {
    const bool is_made = static_cast<bool>(Baza().NewMdb(from_utf8(file), silent));
    std::cout << file << (is_made ? ": made\n" : ": not made\n");
    return is_made ? 0 : exit_failure;
}

int db_check_command(const std::string& file) {
    const Long number = Baza().Sprawdź_bazęDAO(from_utf8(file));
    if (number == 0) {
        std::cout << file << ": opens as a database\n";
        return 0;
    }
    std::cout << file << ": error " << number;
    try {
        static_cast<void>(platform().db_engine->OpenDatabase(from_utf8(file)));
    } catch (const Failure& failure) {  // asked for again for its words
        std::cout << ": " << failure.what();
    }
    std::cout << '\n';
    return exit_failure;
}

int db_clean_command(const MaintenanceOptions& options) {
    const String file = from_utf8(options.file);
    prepare(file, options);
    MaintenanceWatch watch;
    watch.plans = options.plan;
    watch.title = "clean";
    const WatchedPlatform scope(watch);
    ClsCzyśćBazęDAO().CZYŚĆ_BAZĘ(file, options.drop_paste_errors, options.ignore_errors,
                                 from_utf8(options.table.value_or("")));
    return tell_outcome(watch);
}

int db_widen_command(const MaintenanceOptions& options) {
    const String file = from_utf8(options.file);
    prepare(file, options);
    MaintenanceWatch watch;
    watch.plans = options.plan;
    watch.title = "widen";
    // A column is as a rule without an index, and the temporary one is not left from an earlier
    // run.
    watch.may_fail = [](StringView statement) {
        return statement.starts_with(u"drop INDEX") ||
               statement.ends_with(u" drop COLUMN ccxxdfredvvcxds__ddfr ");
    };
    const WatchedPlatform scope(watch);
    const Boolean is_found = ClsCzyśćBazęDAO().Set_Szer_tetx(
        from_utf8(options.owner), u'[' + from_utf8(options.table.value_or("")) + u']', file);
    if (!is_found) {
        throw UsageError("the table \"" + options.table.value_or("") + "\" could not be reached");
    }
    return tell_outcome(watch);
}

int db_exec_command(const std::string& file, const std::string& sql) {
    const String statement = from_utf8(sql);
    if (is_select(statement)) {
        print_rows(
            sqlite::connect(platform().files->native_path(from_utf8(file)), {.read_only = true}),
            statement);
        return 0;
    }
    const std::shared_ptr<dao::Database> db = platform().db_engine->OpenDatabase(from_utf8(file));
    db->Execute(statement);
    db->Close();
    return 0;
}

int db_show_command(const std::string& file, const std::optional<std::string>& table) {
    const String name = from_utf8(file);
    require_table(name, table);
    const std::shared_ptr<dao::Database> db = platform().db_engine->OpenDatabase(name);
    const auto rows = sqlite::connect(platform().files->native_path(name), {.read_only = true});
    for (const auto& shown : db->TableDefs()) {
        const String table_name = shown->Name();
        if (table && upper_case(table_name) != upper_case(from_utf8(*table))) {
            continue;
        }
        std::cout << to_utf8(table_name) << ": " << rows->row_count(table_name) << " rows\n";
        const std::shared_ptr<dao::Fields> fields = shown->Fields();
        for (Integer i = 0; i < fields->Count(); ++i) {
            print_column(*fields->Item(i));
        }
        if (table) {
            std::cout << '\n';
            print_rows(rows, u"select * from [" + table_name + u"]");
        }
    }
    db->Close();
    return 0;
}

}  // namespace kvarta16::tool
