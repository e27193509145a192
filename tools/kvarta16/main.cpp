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
  kvarta16 call aLiczby.VarR2Str 12.5
  kvarta16 catalogue aChar
  echo '{"jsonrpc":"2.0","id":1,"method":"amain.VersjaLib"}' | kvarta16 rpc

Exit status: 0 done, 1 a failure of the library or a database, 2 a wrong command line.)";

constexpr const char* rpc_help =
    R"(Reads a JSON-RPC 2.0 request a line from standard input and writes an answer a line to standard
output, until the input ends.

  {"jsonrpc":"2.0","id":1,"method":"aLiczby.VarR2Str","params":[12.5]}
  {"jsonrpc":"2.0","id":2,"method":"host.create","params":["aChar"]}
  {"jsonrpc":"2.0","id":3,"method":"@1.NullStr","params":[null]}

host.connect ["sqlite:FILE"] opens a database and makes the file if there is none, so that a client
can work on a new one.)";

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
  kvarta16 seed --db sqlite:firma.db --tables payroll,interest --ask)";

constexpr const char* rates_help =
    R"(Prints what the statutory tables of a database hold on a day: the payroll parameters, the rates
per kilometre and the statutory interest, each with the day since when.

Examples:
  kvarta16 rates --db sqlite:firma.db
  kvarta16 rates --db sqlite:firma.db --on 2010-01-01 --lang pl)";

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

void add_rates(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("rates", "Print what holds on a day");
    command->footer(rates_help);
    auto options = std::make_shared<RatesOptions>();
    command->add_option("--db", options->database, "The database, as sqlite:FILE")->required();
    command->add_option("--on", options->day, "The day, as 2024-05-17; by default today");
    command->add_option("--lang", options->language, "By default as LC_ALL, LC_MESSAGES, LANG say")
        ->check(CLI::IsMember({"pl", "en"}));
    command->callback([=, &chosen] { chosen = [=] { return rates_command(*options); }; });
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
    command->add_option("--db", options->database, "The database, as sqlite:FILE")->required();
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
