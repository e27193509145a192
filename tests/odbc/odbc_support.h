// What the tests of the ODBC adapter share: a test on each of the servers, and looks at recordsets.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <support/database_servers.h>
#include <support/fake_platform.h>
#include <support/sqlite_files.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/platform/odbc/odbc_connection.h>
#include <kvarta16/platform/odbc/odbc_errors.h>

namespace kvarta16 {

using testing_support::Caught;
using testing_support::caught;
using testing_support::database_server;
using testing_support::DatabaseServer;
using testing_support::FakePlatform;
using testing_support::ServerKind;
using ConnectionPointer = std::shared_ptr<odbc::OdbcConnection>;
using RecordsetPointer = std::shared_ptr<ado::Recordset>;

inline RecordsetPointer opened(const std::shared_ptr<ado::Connection>& db, StringView source,
                               ado::LockType lock = ado::LockType::adLockOptimistic) {
    const RecordsetPointer recordset = db->CreateRecordset();
    recordset->Open(source, db, ado::CursorType::adOpenStatic, lock, ado::adCmdUnspecified);
    return recordset;
}

inline Variant value_of(ado::Recordset& recordset, StringView field) {
    return recordset.Fields(field).Value();
}
inline void put(ado::Recordset& recordset, StringView field, const Variant& value) {
    recordset.Fields(field).PutValue(value);
}
inline void store(ado::Recordset& recordset) {
    recordset.UpdateBatch(ado::Affect::adAffectCurrent);
}

// A value with its subtype, so that tests see both.
inline std::string shown(const Variant& value) {
    constexpr const char* names[] = {"Empty",  "Null",     "Integer", "Long",  "Single",
                                     "Double", "Currency", "Date",    "String"};
    const auto code = static_cast<std::size_t>(value.subtype());
    const std::string name = code < std::size(names)      ? names[code]
                             : value.is(Subtype::Boolean) ? "Boolean"
                             : value.is(Subtype::Decimal) ? "Decimal"
                                                          : "other";
    return value.is(Subtype::Null) ? "Null" : name + " " + to_utf8(ToText(value));
}

// The rows that a statement finds, each as its values joined by "|".
inline std::vector<std::string> rows_of(const std::shared_ptr<ado::Connection>& db,
                                        StringView source, std::size_t columns,
                                        bool with_types = false) {
    std::vector<std::string> rows;
    const RecordsetPointer recordset = opened(db, source, ado::LockType::adLockReadOnly);
    for (; !recordset->IsEOF(); recordset->MoveNext()) {
        std::string row;
        for (std::size_t i = 0; i < columns; ++i) {
            const Variant value = recordset->Fields(static_cast<Long>(i)).Value();
            row += i > 0 ? "|" : "";
            row += with_types                ? shown(value)
                   : value.is(Subtype::Null) ? "NULL"
                                             : to_utf8(ToText(value));
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

// A test on each of the servers, with a connection of its own.
class OnServer : public testing::TestWithParam<ServerKind> {
  protected:
    void SetUp() override {
        if (server.is_there()) {
            db = connected();
        } else if (testing_support::servers_are_required()) {
            FAIL() << server.what_is_missing();
        } else {
            GTEST_SKIP() << server.what_is_missing();
        }
    }

    [[nodiscard]] ConnectionPointer connected() const {
        ConnectionPointer connection = odbc::connect(server.connection_string());
        if (is(ServerKind::SqliteDriver)) {
            connection->execute("pragma synchronous=off");
        }
        return connection;
    }

    // A table of this name and nothing else under it.
    void make_table(const std::string& name, const std::string& columns) const {
        drop(name);
        db->execute("create table " + name + " (" + columns + ")");
    }
    void drop(const std::string& name) const {
        if (db->table_exists(from_utf8(name))) {
            db->execute("drop table " + name);
        }
    }

    [[nodiscard]] const odbc::ColumnTypes& types() const { return db->dialect().types; }
    [[nodiscard]] static bool is(ServerKind kind) { return GetParam() == kind; }

    FakePlatform fake;
    DatabaseServer& server = database_server(GetParam());
    ConnectionPointer db;
};

inline std::string server_name(const testing::TestParamInfo<ServerKind>& info) {
    return name_of(info.param);
}

inline const auto every_server =
    testing::Values(ServerKind::PostgreSql, ServerKind::MariaDb, ServerKind::SqliteDriver);
inline const auto real_servers = testing::Values(ServerKind::PostgreSql, ServerKind::MariaDb);

}  // namespace kvarta16
