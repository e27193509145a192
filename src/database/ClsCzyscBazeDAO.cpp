#include <optional>
#include <vector>

#include <kvarta16/database/ClsCzyscBazeDAO.h>
#include <kvarta16/database/statement_runner.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {

using DatabasePointer = std::shared_ptr<dao::Database>;
using TablePointer = std::shared_ptr<dao::TableDef>;

namespace {

constexpr StringView paste_errors = u"Błędy wklejania";
constexpr Long pause_at_the_end_ms = 5000;

// ---- Cleaning -------------------------------------------------------------------------------

enum class FieldGroup : std::uint8_t { Number, Date, Text, Other };

FieldGroup group_of(Integer type) {
    switch (type) {
        case dao::dbByte:
        case dao::dbInteger:
        case dao::dbLong:
        case dao::dbCurrency:
        case dao::dbSingle:
        case dao::dbDouble:
            return FieldGroup::Number;
        case dao::dbDate:
            return FieldGroup::Date;
        case dao::dbText:
        case dao::dbMemo:
            return FieldGroup::Text;
        default:
            return FieldGroup::Other;
    }
}

// The date fields in which a suite's program writes down who changed a row and when.
bool is_audit_field(StringView name) {
    const String upper = upper_case(name);
    return upper == u"DATA_OPERACJI" || upper == u"DATA_UTWORZENIA";
}

// One operation's way through a database, step by step, in the discipline of its caller's choice.
class Cleaning {
  public:
    Cleaning(DatabasePointer& database, Boolean ignores_errors)
        : database_(database), ignores_errors_(ignores_errors) {}

    // Strict: the failure of a step passes. Tolerant: it is dropped, and what the step was to
    // assign keeps its value.
    template <class Step>
    void run(Step&& body) const {
        if (ignores_errors_) {
            step(body);
        } else {
            body();
        }
    }

    // Where a failure is ignored there is nothing to work on, also if an operation before has left
    // another file open.
    void open(StringView path) {
        DatabasePointer opened;
        run([&] { opened = platform().db_engine->OpenDatabase(path); });
        database_ = opened;
    }

    [[nodiscard]] std::vector<TablePointer> tables() const {
        std::vector<TablePointer> found;
        run([&] { found = opened().TableDefs(); });
        return found;
    }

    // Nothing for a table whose name cannot be read.
    [[nodiscard]] std::optional<String> name_of(dao::TableDef& table) const {
        std::optional<String> name;
        run([&] { name = table.Name(); });
        return name;
    }

    // `upper_name` is the table's name in upper case.
    void clean(dao::TableDef& table, StringView upper_name) const {
        run([&] { table.PutName(upper_name); });
        std::shared_ptr<dao::Fields> fields;
        Integer count = 0;
        run([&] {
            fields = table.Fields();
            count = fields->Count();
        });
        for (Long index = 0; index < count; ++index) {
            std::shared_ptr<dao::Field> field;
            FieldGroup group = FieldGroup::Other;
            run([&] {
                field = fields->Item(index);
                group = group_of(field->Type());
            });
            if (group != FieldGroup::Other) {
                clean(table, *field, group);
            }
        }
    }

    void drop(StringView table_name) const { execute(u"drop table [" + String(table_name) + u"]"); }

    void close() {
        run([&] { opened().Close(); });
        database_.reset();
    }

  private:
    [[nodiscard]] dao::Database& opened() const {
        if (database_ == nullptr) {
            fail(error::object_not_set);
        }
        return *database_;
    }

    void clean(dao::TableDef& table, dao::Field& field, FieldGroup group) const {
        if (group == FieldGroup::Number) {
            run([&] { field.PutDefaultValue(Integer{0}); });
            run([&] { replace_nulls(table, field, u"=0 "); });
        } else if (group == FieldGroup::Text) {
            run([&] { field.PutAllowZeroLength(true); });
            run([&] { field.PutDefaultValue(u"\"\""); });
            run([&] { replace_nulls(table, field, u"=''"); });
        } else {
            bool is_audit = false;
            run([&] { is_audit = is_audit_field(field.Name()); });
            if (is_audit) {
                run([&] { field.PutDefaultValue(u"NOW()"); });
                run([&] { replace_nulls(table, field, u"=#01-01-1990# "); });
            }
        }
    }

    void replace_nulls(dao::TableDef& table, dao::Field& field, StringView assignment) const {
        const String field_name = u"[" + field.Name() + u"]";
        execute(u"UPDATE [" + table.Name() + u"] SET " + field_name + String(assignment) +
                u" where " + field_name + u" is null");
    }

    // What comes of a statement is nobody's business.
    void execute(StringView statement) const {
        static_cast<void>(database::run_statement(statement, database_, false));
    }

    DatabasePointer& database_;
    bool ignores_errors_;
};

// ---- Widening -------------------------------------------------------------------------------

constexpr Long full_width = 255;

// The column `field` of `table` anew in its full width. Each statement runs whatever has become of
// the one before it.
void widen(const DatabasePointer& database, const String& table, const String& field) {
    const String temporary = u"ccxxdfredvvcxds__ddfr";
    const String alter = u"alter table " + table;
    const String update = u"UPDATE " + table;
    const String statements[] = {
        alter + u" drop COLUMN " + temporary + u" ",  // what an earlier run may have left
        alter + u" ADD " + temporary + u" text(255)",
        update + u" SET " + temporary + u"=[" + field + u"]",
        u"drop INDEX ind" + field + u" ON " + table,
        alter + u" drop COLUMN " + field,
        alter + u" ADD " + field + u" text(255)",
        update + u" SET " + field + u"=" + temporary,
        alter + u" drop COLUMN " + temporary,
    };
    for (const String& statement : statements) {
        static_cast<void>(database::run_statement(statement, database, false));
    }
}

// `table` is the name by which the statements call it.
void widen_columns(const DatabasePointer& database, dao::TableDef& table_def, const String& table) {
    const std::shared_ptr<dao::Fields> fields = table_def.Fields();
    const Integer count = fields->Count();
    for (Long index = 0; index < count; ++index) {
        const std::shared_ptr<dao::Field> field = fields->Item(index);
        if (field->Type() == dao::dbText && field->Size() < full_width) {
            widen(database, table, field->Name());
        }
    }
}

}  // namespace

void ClsCzyśćBazęDAO::CZYŚĆ_BAZĘ(StringView ŚcieżkaBazy, Boolean KasujBłędyWklejania,
                                 Boolean IgnorujBłędy, StringView NazwaTabeli) {
    Cleaning cleaning(BazaRobocza, IgnorujBłędy);
    cleaning.open(ŚcieżkaBazy);
    const String wanted = upper_case(NazwaTabeli);
    for (const TablePointer& table : cleaning.tables()) {
        const std::optional<String> name = cleaning.name_of(*table);
        if (!name || name->starts_with(u"MSys")) {
            continue;
        }
        if (*name == paste_errors) {
            if (KasujBłędyWklejania) {
                cleaning.drop(*name);
            }
            continue;
        }
        const String upper_name = upper_case(*name);
        const bool is_wanted = upper_name == wanted;
        if (upper_name == u"NIERUSZAC" || !(wanted.empty() || is_wanted)) {
            continue;
        }
        cleaning.clean(*table, upper_name);
        if (is_wanted) {
            break;
        }
    }
    cleaning.close();
    cleaning.run([] { platform().sleeper->Sleep(pause_at_the_end_ms); });
}

void ClsCzyśćBazęDAO::CZYŚĆ_BAZĘ_TMP(StringView ŚcieżkaBazy, Boolean IgnorujBłędy,
                                     String& NazwaTabeli) {
    Cleaning cleaning(BazaRobocza, IgnorujBłędy);
    NazwaTabeli = upper_case(NazwaTabeli);
    cleaning.open(ŚcieżkaBazy);
    for (const TablePointer& table : cleaning.tables()) {
        const std::optional<String> name = cleaning.name_of(*table);
        if (name && upper_case(*name) == NazwaTabeli) {
            cleaning.clean(*table, NazwaTabeli);
            break;
        }
    }
    cleaning.close();
}

Boolean ClsCzyśćBazęDAO::Set_Szer_tetx(StringView PrzedrostekTabeli, StringView TabelaWNawiasach,
                                       StringView ŚcieżkaBazy) {
    Boolean result = false;
    guarded([&] {
        BazaRobocza = platform().db_engine->OpenDatabase(ŚcieżkaBazy);
        const String wanted = upper_case(TabelaWNawiasach);
        const String table = String(PrzedrostekTabeli) + u"." + String(TabelaWNawiasach);
        for (const TablePointer& table_def : BazaRobocza->TableDefs()) {
            if (upper_case(u"[" + table_def->Name() + u"]") == wanted) {
                result = true;
                widen_columns(BazaRobocza, *table_def, table);
            }
        }
        BazaRobocza->Close();
    });
    BazaRobocza.reset();
    return result;
}

String ClsCzyśćBazęDAO::DbWykonajNorthWind(StringView ss, const DatabasePointer& dbsNorth,
                                           Boolean NotSilent) const {
    return database::run_statement(ss, dbsNorth, NotSilent);
}

}  // namespace kvarta16
