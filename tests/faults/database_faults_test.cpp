// Baza, ClsCzyśćBazęDAO and the end of a recordset: every member at every fault.
#include <gtest/gtest.h>

#include <kvarta16/dates/aproste.h>

#include "fault_loop.h"

namespace kvarta16::fault_tests {
namespace {

constexpr FaultSpan once = FaultSpan::Once;
constexpr FaultSpan for_good = FaultSpan::FromThenOn;

constexpr const char16_t* path = u"C:\\firma.mdb";
const std::string database_open = " | open: databases 1";

class DatabaseFaults : public testing::TestWithParam<Scenario> {};

TEST_P(DatabaseFaults, EndAsDocumented) {
    check(GetParam());
}

// ---- Files as a whole -------------------------------------------------------------------------

// The file under the name: none, the old one, or a new one with its locale.
std::string standing(FaultBench& b) {
    const MemoryDisk::Entry* const entry = b.fake.disk.find(path);
    std::string text = "no file";
    if (entry != nullptr) {
        text = entry->database == nullptr || entry->database->locale.empty() ? "old" : "new";
    }
    return text + boxes_of(b);
}
std::string number_box(const std::string& failure) {
    return " box: " + failure + "/Proc:NewMdb,ModT:Module,ModN:Baza";
}
const std::string fault_box = number_box("31337:" + std::string(fault_text));
const std::string exists_box = number_box("3204:Database already exists");
const std::string question = " box: Nadpisać C:\\firma.mdb";

const Scenario whole_files[] = {
    {.name = "Baza.NewMdb, a free name",
     .discipline = Discipline::Guarded,
     .good = "-1 / new",
     .prepared = "0 / new",
     .run = [](FaultBench& b) { return told(b.subjects.baza.NewMdb(path)); },
     .written = standing,
     .exceptions = {{"Files.GetAttr", good, once},  // there is none to be seen
                    {"Files.GetAttr", "0 / no file", for_good},
                    {"DBEngine.CreateDatabase", "0 / no file" + fault_box, once},
                    {"DBEngine.CreateDatabase", "0 / no file", for_good},
                    {"Sleeper.Sleep", "0 / new" + fault_box, once},
                    {"Database.Close", "0 / new" + database_open}}},
    // A file that is not seen counts as gone, and making it then fails.
    {.name = "Baza.NewMdb, over an old file",
     .discipline = Discipline::Tolerant,
     .good = "-1 / new" + question,
     .prepare =
         [](FaultBench& b) {
             b.fake.disk.add_database(path);
             b.fake.boxes.answers = {MsgBoxResult::Yes, MsgBoxResult::No};
         },
     .run = [](FaultBench& b) { return told(b.subjects.baza.NewMdb(path)); },
     .written = standing,
     .exceptions = {{"Files.GetAttr#1", "0 / old" + exists_box, once},
                    {"Files.GetAttr#1", "0 / old", for_good},
                    {"MessageBoxes.MsgBox", "0 / old" + fault_box, once},
                    {"MessageBoxes.MsgBox", "0 / old", for_good},
                    {"Files.GetAttr#2", "0 / old" + question + exists_box, once},
                    {"Files.GetAttr#2", "0 / old" + question, for_good},
                    {"Files.GetAttr#3", "0 / old" + question, for_good},
                    {"Files.Kill", "0 / old" + question, for_good},
                    {"Files.GetAttr#4", "0 / no file" + question, for_good},
                    {"Files.GetAttr#5", "0 / no file" + question, for_good},
                    {"DBEngine.CreateDatabase", "0 / no file" + question + fault_box, once},
                    {"DBEngine.CreateDatabase", "0 / no file" + question, for_good},
                    {"Sleeper.Sleep", "0 / new" + question + fault_box, once},
                    {"Sleeper.Sleep", "0 / new" + question, for_good},
                    {"DBEngine.OpenDatabase", "0 / new" + question},
                    {"Database.Close", "0 / new" + question + database_open}}},
    {.name = "Baza.NewMdb, silent, over an old file",
     .discipline = Discipline::Guarded,
     .good = "0 / old",
     .prepared = "0 / old" + exists_box,
     .prepare = [](FaultBench& b) { b.fake.disk.add_database(path); },
     .run = [](FaultBench& b) { return told(b.subjects.baza.NewMdb(path, true)); },
     .written = standing,
     .exceptions = {{"Files.GetAttr", "0 / old", for_good}}},
    {.name = "Baza.Sprawdź_bazęDAO",
     .discipline = Discipline::Guarded,
     .good = "0",
     .prepared = "31337",
     .prepare = [](FaultBench& b) { b.fake.disk.add_database(path); },
     .run = [](FaultBench& b) { return told(b.subjects.baza.Sprawdź_bazęDAO(path)); },
     .exceptions = {{"Database.Close", "31337" + database_open}}},  // it keeps the object
};

// ---- Statements -------------------------------------------------------------------------------

Scenario statement(const char* name,
                   std::function<String(FaultBench&, const std::shared_ptr<dao::Database>&)> run) {
    const std::string text = fault_text;
    return {.name = name,
            .discipline = Discipline::Guarded,
            .good = " / 1",
            .prepared = text + " / 0 box: " + text,
            .prepare = [](FaultBench& b) { b.fake.disk.add_database(path); },
            .run =
                [run = std::move(run)](FaultBench& b) {
                    const auto behind = b.fake.engine.OpenDatabase(path);
                    return told(run(b, faulting(behind, b.plan)));
                },
            .written =
                [](FaultBench& b) {
                    return std::to_string(b.fake.disk.statements.size()) + boxes_of(b);
                },
            .exceptions = {{"Database.Execute", text + " / 0", for_good}}};
}

const Scenario statements[] = {
    statement("Baza.DbWykonajNorthWind",
              [](FaultBench& b, const std::shared_ptr<dao::Database>& database) {
                  return b.subjects.baza.DbWykonajNorthWind(u"drop table [x]", database, true);
              }),
    statement("ClsCzyśćBazęDAO.DbWykonajNorthWind",
              [](FaultBench& b, const std::shared_ptr<dao::Database>& database) {
                  return b.subjects.cleaner.DbWykonajNorthWind(u"drop table [x]", database, true);
              }),
};

// ---- Cleaning ---------------------------------------------------------------------------------

void one_table(FaultBench& b) {
    b.fake.disk.add_database(path).add_table(
        u"towary",
        {{u"cena", dao::dbCurrency}, {u"nazwa", dao::dbText, 20}, {u"data_operacji", dao::dbDate}});
}

// What has been done to the table, in order: its name, "d" and "z" for the default and the empty
// text of a column, "e" for the statement about its Nulls.
std::string cleaned(FaultBench& b) {
    const MemoryTable& table = *b.fake.disk.find(path)->database->tables[0];
    std::string text = told(table.name);
    const char16_t* const names[] = {u"cena", u"nazwa", u"data_operacji"};
    for (std::size_t i = 0; i < std::size(names); ++i) {
        const MemoryColumn& column = table.column(names[i]);
        const std::string digit = std::to_string(i + 1);
        text += column.allow_zero_length ? " z" + digit : "";
        text += column.default_value == Variant(u"") ? "" : " d" + digit;
        for (const String& query : b.fake.disk.statements) {
            text += query.find(u"[" + String(names[i]) + u"]") == String::npos ? "" : " e" + digit;
        }
    }
    return text;
}
const std::string all_done = "TOWARY d1 e1 z2 d2 e2 d3 e3";

// Strict: the failure passes at once and the database stays open; a statement that fails stops
// nothing, the failure behind it does. What is done by then is told by how far the calls went,
// which the loop compares.
Scenario strict(const char* name, std::function<void(FaultBench&)> run) {
    return {.name = name,
            .discipline = Discipline::Strict,
            .good = "done",
            .prepare = one_table,
            .run =
                [run = std::move(run)](FaultBench& b) {
                    run(b);
                    return std::string("done");
                },
            .exceptions = {{"DBEngine.OpenDatabase", passes},
                           {"Database.Execute", good, once},
                           {"Sleeper.Sleep", passes},
                           {"Database.TableDefs", passes + database_open},
                           {"TableDef.Name", passes + database_open},
                           {"TableDef.Fields", passes + database_open},
                           {"Fields.Count", passes + database_open},
                           {"Fields.Item", passes + database_open},
                           {"Field.Type", passes + database_open},
                           {"Field.Name", passes + database_open},
                           {"Field.DefaultValue", passes + database_open},
                           {"Field.AllowZeroLength", passes + database_open},
                           {"Database.Execute", passes + database_open},
                           {"Database.Close", passes + database_open}}};
}
// Without a pause there is none to fail.
Scenario without_pause(Scenario scenario) {
    std::erase_if(scenario.exceptions,
                  [](const Exception& e) { return e.place == "Sleeper.Sleep"; });
    return scenario;
}

// Tolerant: each step that fails is missing from what is done, and with a fault that lasts all
// behind it too.
struct Step {
    const char* place;
    const char* done_without;  // once
    const char* done_before;   // from then on
};

constexpr Step steps[] = {
    {"DBEngine.OpenDatabase", "towary", "towary"},
    {"Database.TableDefs", "towary", "towary"},
    {"TableDef.Name#1", "towary", "towary"},  // nothing says that it may be touched
    {"TableDef.Name#2", "towary d1 e1 z2 d2 e2 d3 e3", "towary"},
    {"TableDef.Fields", "TOWARY", "TOWARY"},
    {"Fields.Count", "TOWARY", "TOWARY"},
    {"Fields.Item#1", "TOWARY z2 d2 e2 d3 e3", "TOWARY"},
    {"Field.Type#1", "TOWARY z2 d2 e2 d3 e3", "TOWARY"},
    {"Field.DefaultValue#1", "TOWARY e1 z2 d2 e2 d3 e3", "TOWARY"},
    {"Field.Name#1", "TOWARY d1 z2 d2 e2 d3 e3", "TOWARY d1"},
    {"TableDef.Name#3", "TOWARY d1 z2 d2 e2 d3 e3", "TOWARY d1"},
    {"Database.Execute#1", "TOWARY d1 z2 d2 e2 d3 e3", "TOWARY d1"},
    {"Fields.Item#2", "TOWARY d1 e1 d3 e3", "TOWARY d1 e1"},
    {"Field.Type#2", "TOWARY d1 e1 d3 e3", "TOWARY d1 e1"},
    {"Field.AllowZeroLength", "TOWARY d1 e1 d2 e2 d3 e3", "TOWARY d1 e1"},
    {"Field.DefaultValue#2", "TOWARY d1 e1 z2 e2 d3 e3", "TOWARY d1 e1 z2"},
    {"Field.Name#2", "TOWARY d1 e1 z2 d2 d3 e3", "TOWARY d1 e1 z2 d2"},
    {"TableDef.Name#4", "TOWARY d1 e1 z2 d2 d3 e3", "TOWARY d1 e1 z2 d2"},
    {"Database.Execute#2", "TOWARY d1 e1 z2 d2 d3 e3", "TOWARY d1 e1 z2 d2"},
    {"Fields.Item#3", "TOWARY d1 e1 z2 d2 e2", "TOWARY d1 e1 z2 d2 e2"},
    {"Field.Type#3", "TOWARY d1 e1 z2 d2 e2", "TOWARY d1 e1 z2 d2 e2"},
    {"Field.Name#3", "TOWARY d1 e1 z2 d2 e2", "TOWARY d1 e1 z2 d2 e2"},
    {"Field.DefaultValue#3", "TOWARY d1 e1 z2 d2 e2 e3", "TOWARY d1 e1 z2 d2 e2"},
    {"Field.Name#4", "TOWARY d1 e1 z2 d2 e2 d3", "TOWARY d1 e1 z2 d2 e2 d3"},
    {"TableDef.Name#5", "TOWARY d1 e1 z2 d2 e2 d3", "TOWARY d1 e1 z2 d2 e2 d3"},
    {"Database.Execute#3", "TOWARY d1 e1 z2 d2 e2 d3", "TOWARY d1 e1 z2 d2 e2 d3"},
};

Scenario tolerant(const char* name, std::function<void(FaultBench&)> run) {
    Scenario scenario = {.name = name,
                         .discipline = Discipline::Tolerant,
                         .good = "done / " + all_done,
                         .prepare = one_table,
                         .run =
                             [run = std::move(run)](FaultBench& b) {
                                 run(b);
                                 return std::string("done");
                             },
                         .written = cleaned};
    for (const Step& step : steps) {
        scenario.exceptions.push_back(
            {step.place, std::string("done / ") + step.done_without, once});
        scenario.exceptions.push_back(
            {step.place, std::string("done / ") + step.done_before, for_good});
    }
    return scenario;
}

void clean_all(FaultBench& b, Boolean ignores) {
    b.subjects.cleaner.CZYŚĆ_BAZĘ(path, false, ignores, u"");
}
void clean_one(FaultBench& b, Boolean ignores) {
    b.first = u"Towary";
    b.subjects.cleaner.CZYŚĆ_BAZĘ_TMP(path, ignores, b.first);
}
// The name is in upper case whatever happens.
Scenario with_name(Scenario scenario) {
    scenario.good += " / TOWARY";
    for (Exception& exception : scenario.exceptions) {
        const std::size_t open = exception.outcome.find(" | open");
        if (!exception.outcome.starts_with(good)) {
            exception.outcome.insert(std::min(open, exception.outcome.size()), " / TOWARY");
        }
    }
    scenario.written = [](FaultBench& b) { return told(b.first); };
    return scenario;
}

const Scenario cleanings[] = {
    strict("ClsCzyśćBazęDAO.CZYŚĆ_BAZĘ", [](FaultBench& b) { clean_all(b, false); }),
    with_name(without_pause(
        strict("ClsCzyśćBazęDAO.CZYŚĆ_BAZĘ_TMP", [](FaultBench& b) { clean_one(b, false); }))),
    tolerant("ClsCzyśćBazęDAO.CZYŚĆ_BAZĘ, ignoring errors",
             [](FaultBench& b) { clean_all(b, true); }),
    tolerant("ClsCzyśćBazęDAO.CZYŚĆ_BAZĘ_TMP, ignoring errors",
             [](FaultBench& b) { clean_one(b, true); }),
};

// ---- Widening ---------------------------------------------------------------------------------

// True once the table was reached; a statement that fails stops nothing. The number of statements
// that were run.
const Scenario widening = {
    .name = "ClsCzyśćBazęDAO.Set_Szer_tetx",
    .discipline = Discipline::Guarded,
    .good = "-1 / 8",
    .prepared = "-1 / 0",
    .prepare = one_table,
    .run =
        [](FaultBench& b) {
            return told(b.subjects.cleaner.Set_Szer_tetx(u"dane", u"[TOWARY]", path));
        },
    .written = [](FaultBench& b) { return std::to_string(b.fake.disk.statements.size()); },
    .exceptions = {{"DBEngine.OpenDatabase", "0 / 0"},
                   {"Database.TableDefs", "0 / 0"},
                   {"TableDef.Name", "0 / 0"},
                   {"Database.Execute", "-1 / 7", once},
                   {"Database.Execute#2", "-1 / 1", for_good},
                   {"Database.Execute#3", "-1 / 2", for_good},
                   {"Database.Execute#4", "-1 / 3", for_good},
                   {"Database.Execute#5", "-1 / 4", for_good},
                   {"Database.Execute#6", "-1 / 5", for_good},
                   {"Database.Execute#7", "-1 / 6", for_good},
                   {"Database.Execute#8", "-1 / 7", for_good},
                   {"Fields.Item#3", "-1 / 8"},
                   {"Field.Type#3", "-1 / 8"},
                   {"Database.Close", "-1 / 8"}}};

// ---- The end of a recordset -------------------------------------------------------------------

const Scenario end_of_recordset = {
    .name = "aproste.DbCloseSEL",
    .discipline = Discipline::Tolerant,
    .good = "done / gone",
    .prepare =
        [](FaultBench& b) {
            b.recordset = b.db->CreateRecordset();
            b.recordset->Open(u"select [a] from t", b.db, ado::CursorType::adOpenStatic,
                              ado::LockType::adLockOptimistic, ado::adCmdUnspecified);
        },
    .run =
        [](FaultBench& b) {
            aproste().DbCloseSEL(b.recordset);
            return std::string("done");
        },
    .written =
        [](FaultBench& b) {
            const bool is_gone = b.recordset == nullptr && b.rows->recordsets_alive == 0;
            return std::string(is_gone ? "gone" : "there");
        }};

INSTANTIATE_TEST_SUITE_P(WholeFiles, DatabaseFaults, testing::ValuesIn(whole_files));
INSTANTIATE_TEST_SUITE_P(Statements, DatabaseFaults, testing::ValuesIn(statements));
INSTANTIATE_TEST_SUITE_P(Cleaning, DatabaseFaults, testing::ValuesIn(cleanings));
INSTANTIATE_TEST_SUITE_P(Widening, DatabaseFaults, testing::Values(widening));
INSTANTIATE_TEST_SUITE_P(EndOfRecordset, DatabaseFaults, testing::Values(end_of_recordset));

}  // namespace
}  // namespace kvarta16::fault_tests
