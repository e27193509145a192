// What the tests of the embedded engine share: a folder, a platform whose paths are the system's
// own, and a database in it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <support/fake_platform.h>
#include <support/sqlite_files.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/platform/ado.h>
#include <kvarta16/platform/forwarding_system.h>
#include <kvarta16/platform/sqlite/sqlite_connection.h>
#include <kvarta16/platform/sqlite/sqlite_engine.h>

namespace kvarta16::testing_support {

// Paths are taken as they are; "" and "?" are none.
class PlainPaths final : public ForwardingFiles {
  public:
    PlainPaths() noexcept : ForwardingFiles(unavailable_files()) {}
    std::string native_path(StringView path) override {
        if (path.empty() || path == u"?") {
            throw Failure(error::bad_file_name, u"Bad file name");
        }
        return to_utf8(path);
    }
};

class DaoTest : public testing::Test {
  protected:
    using DatabasePointer = std::shared_ptr<dao::Database>;
    using FieldPointer = std::shared_ptr<dao::Field>;
    using Names = std::vector<std::string>;

    DaoTest() {
        fake_.operations.files = &paths_;
        path_ = folder_ / "baza.mdb";
    }

    static dao::DBEngine& engine() { return sqlite::db_engine(); }
    [[nodiscard]] String path() const { return from_utf8(path_); }

    [[nodiscard]] DatabasePointer create() const {
        return engine().CreateDatabase(path(), u";LANGID=0x0415;CP=1250;COUNTRY=0");
    }
    [[nodiscard]] DatabasePointer open() const { return engine().OpenDatabase(path()); }
    // A file that another program has made.
    void write(const std::string& sql) const { OtherProgram(path_).run(sql); }
    [[nodiscard]] std::string value(const std::string& sql) const {
        return OtherProgram(path_).value(sql);
    }

    static std::shared_ptr<dao::TableDef> table(dao::Database& db, StringView name) {
        for (const auto& entry : db.TableDefs()) {
            if (entry->Name() == name) {
                return entry;
            }
        }
        throw std::runtime_error("no table " + to_utf8(name));
    }
    static FieldPointer field(dao::Database& db, StringView table_name, StringView name) {
        const auto fields = table(db, table_name)->Fields();
        for (Long i = 0; i < fields->Count(); ++i) {
            if (fields->Item(i)->Name() == name) {
                return fields->Item(i);
            }
        }
        throw std::runtime_error("no field " + to_utf8(name));
    }
    static Names table_names(dao::Database& db) {
        Names names;
        for (const auto& entry : db.TableDefs()) {
            names.push_back(to_utf8(entry->Name()));
        }
        return names;
    }
    static Names field_names(dao::Fields& fields) {
        Names names;
        for (Long i = 0; i < fields.Count(); ++i) {
            names.push_back(to_utf8(fields.Item(i)->Name()));
        }
        return names;
    }
    static std::string text(const Variant& value) { return to_utf8(ToText(value)); }

    TemporaryFolder folder_;
    PlainPaths paths_;
    FakePlatform fake_;  // its clock stands at 2024-05-17 12:00
    std::string path_;
};

}  // namespace kvarta16::testing_support
