#include "db_watch.h"

#include <iostream>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>

namespace kvarta16::tool {
namespace {

// The changes of a plan that are no statements stand in it as remarks.
void print_remark(const String& what) {
    std::cout << "-- " << to_utf8(what) << '\n';
}

class WatchedField final : public dao::ForwardingField {
  public:
    WatchedField(std::shared_ptr<dao::Field> target, const MaintenanceWatch& watch)
        : ForwardingField(std::move(target)), watch_(watch) {}

    void PutDefaultValue(const Variant& value) override {
        if (!watch_.plans) {
            return ForwardingField::PutDefaultValue(value);
        }
        print_remark(u"default of [" + Name() + u"]: " + ToText(value));
    }

    void PutAllowZeroLength(bool allow) override {
        if (!watch_.plans) {
            return ForwardingField::PutAllowZeroLength(allow);
        }
        print_remark(u"[" + Name() + (allow ? u"] takes" : u"] refuses") +
                     String(u" the empty text"));
    }

  private:
    const MaintenanceWatch& watch_;
};

class WatchedFields final : public dao::ForwardingFields {
  public:
    WatchedFields(std::shared_ptr<dao::Fields> target, const MaintenanceWatch& watch)
        : ForwardingFields(std::move(target)), watch_(watch) {}

    std::shared_ptr<dao::Field> Item(Long index) override {
        return std::make_shared<WatchedField>(ForwardingFields::Item(index), watch_);
    }

  private:
    const MaintenanceWatch& watch_;
};

class WatchedTable final : public dao::ForwardingTableDef {
  public:
    WatchedTable(std::shared_ptr<dao::TableDef> target, MaintenanceWatch& watch, std::size_t place)
        : ForwardingTableDef(std::move(target)), watch_(watch), place_(place) {}

    // In a plan the name that was put, as the statements behind it will have it.
    String Name() override { return planned_name_ ? *planned_name_ : ForwardingTableDef::Name(); }

    void PutName(StringView name) override {
        if (!watch_.plans) {
            return ForwardingTableDef::PutName(name);
        }
        if (Name() != name) {
            print_remark(u"table [" + Name() + u"] becomes [" + String(name) + u"]");
        }
        planned_name_ = name;
    }

    std::shared_ptr<dao::Fields> Fields() override {
        if (watch_.progress) {
            watch_.progress->show(place_);
        }
        return std::make_shared<WatchedFields>(ForwardingTableDef::Fields(), watch_);
    }

  private:
    MaintenanceWatch& watch_;
    std::size_t place_;
    std::optional<String> planned_name_;
};

class WatchedDatabase final : public dao::ForwardingDatabase {
  public:
    WatchedDatabase(std::shared_ptr<dao::Database> target, MaintenanceWatch& watch)
        : ForwardingDatabase(std::move(target)), watch_(watch) {}
    ~WatchedDatabase() override { watch_.progress.reset(); }
    WatchedDatabase(const WatchedDatabase&) = delete;
    WatchedDatabase& operator=(const WatchedDatabase&) = delete;
    WatchedDatabase(WatchedDatabase&&) = delete;
    WatchedDatabase& operator=(WatchedDatabase&&) = delete;

    std::vector<std::shared_ptr<dao::TableDef>> TableDefs() override {
        std::vector<std::shared_ptr<dao::TableDef>> tables = ForwardingDatabase::TableDefs();
        if (!watch_.plans) {
            watch_.progress.emplace(watch_.title, tables.size());
        }
        for (std::size_t i = 0; i < tables.size(); ++i) {
            tables[i] = std::make_shared<WatchedTable>(tables[i], watch_, i);
        }
        return tables;
    }

    void Execute(StringView query) override {
        if (watch_.plans) {
            std::cout << to_utf8(query) << ";\n";
            return;
        }
        try {
            ForwardingDatabase::Execute(query);
        } catch (const Failure& failure) {
            if (!watch_.may_fail(query)) {
                ++watch_.failed_statements;
                std::cerr << "kvarta16: not done: " << to_utf8(query) << "\n  error "
                          << failure.number() << ": " << failure.what() << '\n';
            }
            throw;
        }
    }

  private:
    MaintenanceWatch& watch_;
};

Platform with_engine(dao::DBEngine& engine, Sleeper* sleeper) {
    Platform operations = platform();
    operations.db_engine = &engine;
    if (sleeper != nullptr) {
        operations.sleeper = sleeper;
    }
    return operations;
}

}  // namespace

std::shared_ptr<dao::Database> WatchedEngine::OpenDatabase(StringView name) {
    return std::make_shared<WatchedDatabase>(ForwardingEngine::OpenDatabase(name), watch_);
}

WatchedPlatform::WatchedPlatform(MaintenanceWatch& watch)
    : engine_(*platform().db_engine, watch),
      operations_(with_engine(engine_, watch.plans ? &no_pauses_ : nullptr)),
      scope_(operations_) {}

}  // namespace kvarta16::tool
