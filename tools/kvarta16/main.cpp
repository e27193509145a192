// The command line of kvarta16: which command is meant, with which options.
#include <functional>
#include <iostream>

#include <CLI/CLI.hpp>

#include <kvarta16/frame/amain.h>
#include <kvarta16/frame/utf8.h>

#include "commands.h"
#include "usage_error.h"

namespace kvarta16::tool {
namespace {

constexpr const char* examples = R"(Examples:
  kvarta16 seed --db sqlite:firma.db
  kvarta16 rates --db sqlite:firma.db --on 2024-05-17
  kvarta16 slownie 1234,56
  kvarta16 dzien 2025-12-24
  kvarta16 staz 2018-03-01 2020-12-31 2021-02-15 2026-10-31
  kvarta16 call aLiczby.VarR2Str 12.5
  kvarta16 catalogue aChar
  echo '{"jsonrpc":"2.0","id":1,"method":"amain.VersjaLib"}' | kvarta16 rpc

Exit status: 0 done, 1 a failure of the library or a database, or a wrong identifier, 2 a wrong
command line.)";

constexpr const char* rpc_help =
    R"(Reads a JSON-RPC 2.0 request a line from standard input and writes an answer a line to standard
output, until the input ends.

  {"jsonrpc":"2.0","id":1,"method":"aLiczby.VarR2Str","params":[12.5]}
  {"jsonrpc":"2.0","id":2,"method":"host.create","params":["aChar"]}
  {"jsonrpc":"2.0","id":3,"method":"@1.NullStr","params":[null]}

host.connect ["sqlite:FILE"] opens a database and makes the file if there is none, so that a client
can work on a new one; host.connect ["odbc:DSN-or-connection-string"] one behind an ODBC driver.
More methods of the host stand in docs/rpc.md.)";

constexpr const char* call_help =
    R"(Calls a member of a class, or a primitive of the value layer, and prints its result; then each
argument that it has changed, as NAME = VALUE.

Values:
  null  empty  missing  true  false
  12  -3                      a whole number; one of more than 15 digits is text
  1.5  -2e3                   a Double
  currency:12.5  decimal:1.005  integer:5  long:5  byte:5  single:1.5  double:1
  date:2024-05-17  date:2024-05-17T12:00:00
  text:null  string:12        what stands behind the colon, as text
  sqlite:FILE                 a database that is there, where an object is wanted
  odbc:NAME                   one behind an ODBC driver: a data source or connection string
  anything else               text; so are 12,5 and 007

Examples:
  kvarta16 call aLiczby.VarR2Str 12.5
  kvarta16 call aLiczby.VarR0GSi -1,9
  kvarta16 call aChar.UzMid ' ab ' 1 4
  kvarta16 call value.FormatMask date:2024-05-17 'mmmm yyyy')";

constexpr const char* catalogue_help =
    R"(Examples:
  kvarta16 catalogue
  kvarta16 catalogue aLiczby
  kvarta16 catalogue --json)";

constexpr const char* seed_help =
    R"(Brings the three statutory tables of a database up to what the library knows. A file or a table
that is not there is made. Each table is all or nothing: one that cannot be completed, or Ctrl-C,
leaves it as it was.

Tells of each table how many rows were added, updated (they hold another value than before) and
left.

Examples:
  kvarta16 seed --db sqlite:firma.db
  kvarta16 seed --db sqlite:firma.db --tables payroll,interest --ask
  kvarta16 seed --db 'odbc:DRIVER={PostgreSQL Unicode};SERVER=db;DATABASE=firma;UID=ola;PWD=...'
  kvarta16 seed --db odbc:firma         the data source that odbc.ini calls firma)";

constexpr const char* rates_help =
    R"(Prints what the statutory tables of a database hold on a day: the payroll parameters, the rates
per kilometre and the statutory interest, each with the day since when.

Examples:
  kvarta16 rates --db sqlite:firma.db
  kvarta16 rates --db sqlite:firma.db --on 2010-01-01 --lang pl)";

constexpr const char* db_help =
    R"help(The engine of these database files is SQLite; statements are those of the suite's programs:
create, alter and drop table, create and drop index, insert, update, delete, select.

Examples:
  kvarta16 db new firma.db
  kvarta16 db exec firma.db "create table TOWARY (ID counter primary key, NAZWA text(40))"
  kvarta16 db show firma.db --table TOWARY
  kvarta16 db clean firma.db --plan
  kvarta16 db widen firma.db --table TOWARY --backup)help";

constexpr const char* find_help =
    R"(The pattern is a path, of Windows or of the system, whose last name may hold * and ?; quote it for
the shell. Tells the attributes (d folder, r read-only, h hidden, s system, a file), the size, the
last change in local time, and the name. The entry that the system delivered last stays last.

Examples:
  kvarta16 find '*.dbf'
  kvarta16 find 'C:\dane\*.*')";

constexpr const char* ftp_help =
    R"(An address is ftp://[USER@]HOST[:PORT]/PATH, relative to the directory of the login; a character
that it cannot carry is written %XX. Without a user the login is anonymous. The password comes from
the environment, KVARTA16_FTP_PASSWORD, or is asked for on the terminal. Transfers are binary and
write over what is there; Ctrl-C ends them, and what has come so far stays.

Examples:
  kvarta16 ftp ls ftp://ola@ftp.example.com/faktury
  kvarta16 ftp get ftp://ola@ftp.example.com:2121/faktury/01.xml
  kvarta16 ftp put cennik.txt ftp://ola@ftp.example.com/dane/
  kvarta16 ftp mv ftp://ola@ftp.example.com/a.txt b.txt)";

constexpr const char* print_help =
    R"(The file is in the printer's own language: no driver touches it. The printer is one of those that
kvarta16 printers lists, or spool:FOLDER, a folder that gets the job as a file.

Examples:
  kvarta16 print etykiety.zpl --printer Etykiety
  kvarta16 print faktura.prn --printer spool:/var/wydruki --app Faktury)";

constexpr const char* registry_help =
    R"(The settings of the suite's programs. HKCU is the user's part; HKLM and HKCR are the machine's,
which an ordinary user reads and does not write. Keys and names match without case. "" is the name
of a key's default value.

export writes the text form of the platform, import reads it, in UTF-8 or UTF-16: all of a file or,
where a line is wrong, nothing.

Examples:
  kvarta16 registry set 'HKCU\Software\ZEVO\Wydruki' Drukarka Magazyn
  kvarta16 registry get 'HKCU\Software\ZEVO\Wydruki' Drukarka
  kvarta16 registry delete 'HKCU\Software\ZEVO\Wydruki' Drukarka
  kvarta16 registry delete 'HKCU\Software\ZEVO\Wydruki'
  kvarta16 registry export 'HKCU\Software\ZEVO' > zevo.reg
  kvarta16 registry import zevo.reg)";

constexpr const char* slownie_help =
    R"(The words as documents of the suite bear them: each with a capital, without blanks between them.
Blanks between the digits are passed over, a dot stands for the comma. The sign is not told.

Examples:
  kvarta16 slownie 1234,56
  kvarta16 slownie "21 000")";

constexpr const char* staz_help =
    R"(Counts each period in years, months and days, both of its days included, adds them up in months of
30 days, and tells the days of leave a year.

Examples:
  kvarta16 staz 2018-03-01 2020-12-31 2021-02-15 2026-10-31 --szkola 8
  kvarta16 staz 2025-07-01 2026-06-30 --wiek 17)";

constexpr const char* doctor_help =
    R"(A line for each: what it is, whether it is there (yes, no, part of it), and with what, or what is
missing and how to get it. The status is 0 whatever is missing.

Examples:
  kvarta16 doctor
  kvarta16 doctor --lang pl)";

using Command = std::function<int()>;

// Each of these adds a command with its options, which live in the command's closure, and has it
// put in `chosen` when the command line asks for it.

void add_call(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("call", "Call a member: call CLASS.MEMBER [VALUE...]");
    command->footer(call_help);
    command->prefix_command();  // what follows is the call's, also where it begins with "-"
    command->callback([command, &chosen] {
        std::vector<std::string> words = command->remaining();
        if (words.size() > 1 && words[1] == "--") {  // as it is often put before a negative value
            words.erase(words.begin() + 1);
        }
        chosen = [words] { return call_command(words); };
    });
}

void add_catalogue(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("catalogue", "List the classes and their members");
    command->footer(catalogue_help);
    auto name = std::make_shared<std::optional<std::string>>();
    auto as_json = std::make_shared<bool>(false);
    command->add_option("CLASS", *name, "One class alone; \"value\" for the primitives");
    command->add_flag("--json", *as_json, "As JSON");
    command->callback(
        [=, &chosen] { chosen = [=] { return catalogue_command(*name, *as_json); }; });
}

void add_language(CLI::App& command, std::optional<std::string>& language) {
    command.add_option("--lang", language, "By default as LC_ALL, LC_MESSAGES, LANG say")
        ->check(CLI::IsMember({"pl", "en"}));
}

void add_doctor(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("doctor", "Tell what of the platform works here");
    command->footer(doctor_help);
    auto language = std::make_shared<std::optional<std::string>>();
    add_language(*command, *language);
    command->callback([=, &chosen] { chosen = [=] { return doctor_command(*language); }; });
}

// A command of one word and a language.
using WordCommand = int (*)(const std::string& word, const std::optional<std::string>& language);
void add_word_command(CLI::App& app, Command& chosen, const char* name, const char* meaning,
                      const char* word_name, WordCommand run) {
    CLI::App* command = app.add_subcommand(name, meaning);
    auto word = std::make_shared<std::string>();
    auto language = std::make_shared<std::optional<std::string>>();
    command->add_option(word_name, *word)->required();
    add_language(*command, *language);
    command->callback([=, &chosen] { chosen = [=] { return run(*word, *language); }; });
}

void add_find(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("find", "List the files that match a pattern");
    command->footer(find_help);
    auto pattern = std::make_shared<std::string>();
    command->add_option("PATTERN", *pattern)->required();
    command->callback([=, &chosen] { chosen = [=] { return find_command(*pattern); }; });
}

// A command of an address, with what stands before or behind it.
CLI::App* add_ftp_command(CLI::App& ftp, const char* name, const char* meaning,
                          const std::shared_ptr<FtpOptions>& options) {
    CLI::App* command = ftp.add_subcommand(name, meaning);
    command->add_flag("--active", options->active, "This side opens the ports for data");
    return command;
}

void add_ftp_changes(CLI::App& ftp, Command& chosen, const std::shared_ptr<FtpOptions>& options) {
    struct Change {
        const char* name;
        const char* meaning;
        FtpAction action;
    };
    constexpr Change changes[] = {
        {"rm", "Delete a file", FtpAction::DeleteFile},
        {"mkdir", "Make a directory", FtpAction::MakeDirectory},
        {"rmdir", "Remove an empty directory", FtpAction::RemoveDirectory},
        {"mv", "Rename a file or directory: mv URL NEW", FtpAction::Rename},
    };
    for (const Change& change : changes) {
        CLI::App* command = add_ftp_command(ftp, change.name, change.meaning, options);
        command->add_option("URL", options->url)->required();
        if (change.action == FtpAction::Rename) {
            command->add_option("NEW", options->new_name, "Path from the login on")->required();
        }
        command->callback([=, &chosen] {
            options->action = change.action;
            chosen = [=] { return ftp_remote_command(*options); };
        });
    }
}

void add_ftp(CLI::App& app, Command& chosen) {
    CLI::App* ftp = app.add_subcommand("ftp", "List, fetch, send and change files on a server");
    ftp->footer(ftp_help);
    ftp->require_subcommand(1);
    auto options = std::make_shared<FtpOptions>();
    CLI::App* list =
        add_ftp_command(*ftp, "ls", "List a directory: directories, then files", options);
    list->add_option("URL", options->url)->required();
    list->callback([=, &chosen] { chosen = [=] { return ftp_list_command(*options); }; });

    CLI::App* get = add_ftp_command(*ftp, "get", "Fetch a file: get URL [FILE]", options);
    get->add_option("URL", options->url)->required();
    get->add_option("FILE", options->local, "By default the remote name, here");
    get->callback([=, &chosen] { chosen = [=] { return ftp_get_command(*options); }; });

    CLI::App* put = add_ftp_command(*ftp, "put", "Send a file: put FILE URL", options);
    put->add_option("FILE", options->local)->required();
    put->add_option("URL", options->url, "With \"/\" at its end the file keeps its name")
        ->required();
    put->callback([=, &chosen] { chosen = [=] { return ftp_put_command(*options); }; });
    add_ftp_changes(*ftp, chosen, options);
}

void add_print(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("print", "Send a file to a printer as it is");
    command->footer(print_help);
    auto options = std::make_shared<PrintOptions>();
    command->add_option("FILE", options->file)->required();
    command->add_option("--printer", options->printer, "Its name, or spool:FOLDER")->required();
    command->add_option("--app", options->application,
                        "Stands before the file's name in the job's");
    command->callback([=, &chosen] { chosen = [=] { return print_command(*options); }; });

    CLI::App* printers = app.add_subcommand("printers", "List the printers of the print server");
    printers->callback([&chosen] { chosen = printers_command; });
}

void add_slownie(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("slownie", "Tell an amount in Polish words");
    command->footer(slownie_help);
    command->prefix_command();  // an amount may begin with "-"
    command->callback([command, &chosen] {
        const std::vector<std::string> words = command->remaining();
        if (words.size() != 1) {
            throw UsageError("one amount is wanted, as 1234,56");
        }
        chosen = [amount = words[0]] { return words_command(amount); };
    });
}

void add_swieta(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("swieta", "List the public holidays of a year");
    auto year = std::make_shared<Long>();
    auto language = std::make_shared<std::optional<std::string>>();
    command->add_option("YEAR", *year)->required()->check(CLI::Range(100, 9999));
    add_language(*command, *language);
    command->callback(
        [=, &chosen] { chosen = [=] { return holidays_command(*year, *language); }; });
}

void add_staz(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("staz", "Length of service and leave: staz FROM TO ...");
    command->footer(staz_help);
    auto options = std::make_shared<ServiceOptions>();
    command->add_option("DAYS", options->days, "First and last day of each period")->required();
    command->add_option("--szkola", options->school, "Years credited for schooling")
        ->check(CLI::Range(0, 100));
    command->add_option("--wiek", options->age, "Age in years; chooses the scale that asks for it")
        ->check(CLI::Range(0, 200));
    add_language(*command, options->language);
    command->callback([=, &chosen] { chosen = [=] { return service_command(*options); }; });
}

void add_rates(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("rates", "Print what holds on a day");
    command->footer(rates_help);
    auto options = std::make_shared<RatesOptions>();
    command->add_option("--db", options->database, "The database, as sqlite:FILE or odbc:NAME")
        ->required();
    command->add_option("--on", options->day, "The day, as 2024-05-17; by default today");
    add_language(*command, options->language);
    command->callback([=, &chosen] { chosen = [=] { return rates_command(*options); }; });
}

void add_db_file_commands(CLI::App& db, Command& chosen) {
    auto file = std::make_shared<std::string>();
    auto silent = std::make_shared<bool>(false);
    CLI::App* make = db.add_subcommand("new", "Make an empty database; asks before it overwrites");
    make->add_option("FILE", *file)->required();
    make->add_flag("--silent", *silent, "Leave a file that is there alone, and ask nothing");
    make->callback([=, &chosen] { chosen = [=] { return db_new_command(*file, *silent); }; });

    CLI::App* check = db.add_subcommand("check", "Tell whether a file opens as a database");
    check->add_option("FILE", *file)->required();
    check->callback([=, &chosen] { chosen = [=] { return db_check_command(*file); }; });

    auto sql = std::make_shared<std::string>();
    CLI::App* exec = db.add_subcommand("exec", "Run a statement; a select prints its rows");
    exec->add_option("FILE", *file)->required();
    exec->add_option("SQL", *sql)->required();
    exec->callback([=, &chosen] { chosen = [=] { return db_exec_command(*file, *sql); }; });

    auto table = std::make_shared<std::optional<std::string>>();
    CLI::App* show = db.add_subcommand("show", "Show tables, columns and numbers of rows");
    show->add_option("FILE", *file)->required();
    show->add_option("--table", *table, "This table alone, with its rows");
    show->callback([=, &chosen] { chosen = [=] { return db_show_command(*file, *table); }; });
}

void add_db_maintenance(CLI::App& db, Command& chosen) {
    auto options = std::make_shared<MaintenanceOptions>();
    options->owner = "dbo";
    const auto add_common = [options](CLI::App* command) {
        command->add_option("FILE", options->file)->required();
        command->add_flag("--plan", options->plan, "Print what would be done, change nothing");
        command->add_flag("--backup", options->backup, "Copy the file to FILE.bak before");
    };
    CLI::App* clean = db.add_subcommand(
        "clean", "Table names in capitals, defaults for numbers and texts, no Nulls in them");
    add_common(clean);
    clean->add_option("--table", options->table, "This table alone");
    clean->add_flag("--drop-paste-errors", options->drop_paste_errors,
                    "Drop the table \"Błędy wklejania\"");
    clean->add_flag("--ignore-errors", options->ignore_errors, "Go on behind what fails");
    clean->callback([=, &chosen] { chosen = [=] { return db_clean_command(*options); }; });

    CLI::App* widen = db.add_subcommand("widen", "Widen the text columns of a table to 255");
    add_common(widen);
    widen->add_option("--table", options->table)->required();
    widen->add_option("--owner", options->owner, "What stands before the table in the statements")
        ->capture_default_str();
    widen->callback([=, &chosen] { chosen = [=] { return db_widen_command(*options); }; });
}

void add_db(CLI::App& app, Command& chosen) {
    CLI::App* db = app.add_subcommand("db", "Make, check, clean, widen and show database files");
    db->footer(db_help);
    db->require_subcommand(1);
    add_db_file_commands(*db, chosen);
    add_db_maintenance(*db, chosen);
}

void add_registry_values(CLI::App& registry, Command& chosen) {
    auto key = std::make_shared<std::string>();
    auto name = std::make_shared<std::string>();
    auto text = std::make_shared<std::string>();
    auto name_if_any = std::make_shared<std::optional<std::string>>();
    CLI::App* get = registry.add_subcommand("get", "Print the text of a value");
    get->add_option("KEY", *key)->required();
    get->add_option("NAME", *name, "The default value if not given");
    get->callback([=, &chosen] { chosen = [=] { return registry_get_command(*key, *name); }; });

    CLI::App* set = registry.add_subcommand("set", "Store a text as a value, making its key");
    set->add_option("KEY", *key)->required();
    set->add_option("NAME", *name)->required();
    set->add_option("TEXT", *text)->required();
    set->callback(
        [=, &chosen] { chosen = [=] { return registry_set_command(*key, *name, *text); }; });

    CLI::App* erase =
        registry.add_subcommand("delete", "Delete a value, or a key without sub-keys");
    erase->add_option("KEY", *key)->required();
    erase->add_option("NAME", *name_if_any, "The key itself if not given");
    erase->callback(
        [=, &chosen] { chosen = [=] { return registry_delete_command(*key, *name_if_any); }; });
}

void add_registry(CLI::App& app, Command& chosen) {
    CLI::App* registry = app.add_subcommand("registry", "Read and change settings in the registry");
    registry->footer(registry_help);
    registry->require_subcommand(1);
    add_registry_values(*registry, chosen);

    auto key = std::make_shared<std::string>();
    auto as_utf16 = std::make_shared<bool>(false);
    CLI::App* write = registry->add_subcommand("export", "Print a key with all below it as text");
    write->add_option("KEY", *key)->required();
    write->add_flag("--utf16", *as_utf16, "In UTF-16 with CR LF, as the platform writes it");
    write->callback(
        [=, &chosen] { chosen = [=] { return registry_export_command(*key, *as_utf16); }; });

    auto file = std::make_shared<std::string>();
    CLI::App* read = registry->add_subcommand("import", "Do what such a text asks for");
    read->add_option("FILE", *file)->required();
    read->callback([=, &chosen] { chosen = [=] { return registry_import_command(*file); }; });
}

void add_rpc(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("rpc", "Serve calls as JSON-RPC, a line each");
    command->footer(rpc_help);
    command->callback([&chosen] { chosen = rpc_command; });
}

void add_seed(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("seed", "Fill the statutory tables of a database");
    command->footer(seed_help);
    auto options = std::make_shared<SeedOptions>();
    options->tables = {"payroll", "mileage", "interest"};
    options->dialect = "odbc";
    command->add_option("--db", options->database, "The database, as sqlite:FILE or odbc:NAME")
        ->required();
    command->add_option("--tables", options->tables, "Which of them, joined by commas")
        ->delimiter(',')
        ->check(CLI::IsMember({"payroll", "mileage", "interest"}))
        ->capture_default_str();
    command->add_option("--dialect", options->dialect, "How the statements write dates")
        ->check(CLI::IsMember({"odbc", "jet"}))
        ->capture_default_str();
    command->add_flag("--ask", options->ask, "Ask before each table");
    command->callback([=, &chosen] { chosen = [=] { return seed_command(*options); }; });
}

int run(int argc, char** argv) {
    CLI::App app("The class library of a business-management suite, from a shell.", "kvarta16");
    app.footer(examples);
    app.set_version_flag("--version", [] { return to_utf8(amain().VersjaLib()); });
    app.require_subcommand(0, 1);  // none is told below: an unknown word is then named first
    Command chosen;
    add_seed(app, chosen);
    add_rates(app, chosen);
    add_db(app, chosen);
    add_slownie(app, chosen);
    add_word_command(app, chosen, "dzien", "Tell what kind of day a date is", "DAY", day_command);
    add_swieta(app, chosen);
    add_word_command(app, chosen, "pesel", "Check a personal identity number", "NUMBER",
                     pesel_command);
    add_word_command(app, chosen, "nip", "Check a tax number", "NUMBER", nip_command);
    add_staz(app, chosen);
    add_find(app, chosen);
    add_registry(app, chosen);
    add_print(app, chosen);
    add_ftp(app, chosen);
    add_doctor(app, chosen);
    add_call(app, chosen);
    add_catalogue(app, chosen);
    add_rpc(app, chosen);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : exit_usage;
    }
    if (!chosen) {
        throw UsageError("a command is wanted; see kvarta16 --help");
    }
    return chosen();
}

// Output that could not be written, to a full disk for example, is a failure too.
int flushed(int status) {
    std::cout.flush();
    if (!std::cout) {
        std::cerr << "kvarta16: standard output cannot be written\n";
        return exit_failure;
    }
    return status;
}

int guarded_run(int argc, char** argv) {
    try {
        return flushed(run(argc, argv));
    } catch (const UsageError& error) {
        std::cerr << "kvarta16: " << error.what() << '\n';
        return exit_usage;
    } catch (const Failure& failure) {
        std::cerr << "kvarta16: error " << failure.number() << ": " << failure.what() << '\n';
    } catch (const std::exception& error) {
        std::cerr << "kvarta16: " << error.what() << '\n';
    }
    return exit_failure;
}

}  // namespace
}  // namespace kvarta16::tool

int main(int argc, char** argv) {
    return kvarta16::tool::guarded_run(argc, argv);
}
