#include <algorithm>
#include <iomanip>
#include <iostream>

#include <kvarta16/frame/utf8.h>

#include "commands.h"
#include "databases.h"
#include "seed_count.h"
#include "statutory_tables.h"
#include "terminal.h"
#include "usage_error.h"

namespace kvarta16::tool {
namespace {

struct TableResult {
    bool was_declined = false;
    bool was_created = false;
    SeedCount count;
};

void create_table(Database& db, const StatutoryTable& table) {
    for (const std::string& statement : create_statements(table, db.column_words())) {
        db.execute(statement);
    }
}

// Seeds a table in one transaction, which begins with the first row and not before the question:
// a person may think about it as long as they like. What leaves this by an exception leaves the
// transaction open, and closing the connection takes it back.
void seed_table(Database& db, const StatutoryTable& table, const SeedOptions& options,
                TableResult& result) {
    InterruptWatch::check();  // one that came too late for the table before
    const std::shared_ptr<ado::Connection> connection = db.connection();
    std::optional<InterruptWatch> watch;
    std::optional<ProgressBar> progress;
    const auto before_row = [&](std::size_t row) {
        if (row == 0) {
            watch.emplace();
            progress.emplace(std::string(table.topic), table.row_count);
            connection->BeginTrans();
            if (!db.table_exists(table.name)) {
                create_table(db, table);
                result.was_created = true;
            }
        }
        InterruptWatch::check();
        progress->show(row);
    };
    const auto counting =
        std::make_shared<CountingConnection>(connection, table.columns, before_row);
    (Akt().*table.seed)(counting, options.ask, options.dialect == "odbc");
    result.was_declined = counting->look_ups() == 0;
    if (!result.was_declined) {
        connection->CommitTrans();
        result.count = counting->count();
    }
}

void print_result(const StatutoryTable& table, const TableResult& result) {
    constexpr int topic_width = 9;
    constexpr int name_width = 18;
    constexpr int count_width = 4;
    std::cout << std::left << std::setw(topic_width) << table.topic << std::setw(name_width)
              << to_utf8(table.name) << std::right;
    if (result.was_declined) {
        std::cout << " not seeded: the question was answered No\n";
        return;
    }
    std::cout << std::setw(count_width) << result.count.added << " added, "
              << std::setw(count_width) << result.count.updated << " updated, "
              << std::setw(count_width) << result.count.left << " left"
              << (result.was_created ? "  (table created)" : "") << '\n'
              << std::flush;
}

// Those of the three tables that were asked for, in their own order.
std::vector<const StatutoryTable*> chosen_tables(const std::vector<std::string>& topics) {
    std::vector<const StatutoryTable*> chosen;
    for (const StatutoryTable& table : statutory_tables()) {
        if (std::find(topics.begin(), topics.end(), table.topic) != topics.end()) {
            chosen.push_back(&table);
        }
    }
    return chosen;
}

std::string list_of(std::span<const StatutoryTable* const> tables) {
    std::string list;
    for (const StatutoryTable* table : tables) {
        list += (list.empty() ? "" : ", ") + std::string(table->topic);
    }
    return list.empty() ? "none" : list;
}

// What a run that stops at a table leaves behind.
void tell_what_stands(std::span<const StatutoryTable* const> tables, std::size_t stopped_at,
                      bool empty_table_stays) {
    std::cerr << "kvarta16: " << tables[stopped_at]->topic
              << (empty_table_stays ? " has its table, which is empty" : " is as it was")
              << "; done before it: " << list_of(tables.subspan(0, stopped_at))
              << ". Run it again to complete the rest.\n";
}

}  // namespace

int seed_command(const SeedOptions& options) {
    const std::vector<const StatutoryTable*> tables = chosen_tables(options.tables);
    const auto db = open_database(options.database, Use::Filling);
    std::size_t added = 0;
    bool any_seeded = false;
    for (std::size_t i = 0; i < tables.size(); ++i) {
        TableResult result;
        const auto tell = [&] {
            tell_what_stands(tables, i, result.was_created && !db->takes_tables_back());
        };
        try {
            seed_table(*db, *tables[i], options, result);
            print_result(*tables[i], result);
            added += result.count.added;
            any_seeded = any_seeded || !result.was_declined;
        } catch (const Failure& failure) {
            std::cerr << "kvarta16: " << tables[i]->topic << ": error " << failure.number() << ": "
                      << failure.what() << '\n';
            tell();
            return exit_failure;
        } catch (const Interrupted&) {
            std::cerr << "kvarta16: interrupted\n";
            tell();
            return exit_interrupted;
        }
    }
    if (any_seeded && added == 0) {
        std::cout << "Nothing was added: every row was there.\n";
    }
    return 0;
}

}  // namespace kvarta16::tool
