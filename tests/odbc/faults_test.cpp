// Servers that are not there, that do not let one in, and that go away.
#include <fstream>

#include <kvarta16/platform/forwarding.h>
#include <kvarta16/statutory/Akt.h>

#include "odbc_support.h"

namespace kvarta16 {
namespace {

// A server of this suite's own, which is killed and started again.
class Faults : public OnServer {
  protected:
    static constexpr std::size_t rows_before = 30;

    void SetUp() override {
        OnServer::SetUp();
        if (db == nullptr) {
            return;
        }
        make_table("S_ODSETKI", "Rodzaj " + std::string(types().number) + ", od_dnia " +
                                    std::string(types().date) + ", procent " +
                                    std::string(types().money));
    }
    void seed(const std::shared_ptr<ado::Connection>& to) const {
        Akt().Ustaw_oDSETKI_uSTAWOWE(to, false, true);
    }
    [[nodiscard]] Caught failed_connection(const std::string& name) const {
        return caught([&] { static_cast<void>(odbc::connect(name)); });
    }
};

INSTANTIATE_TEST_SUITE_P(Servers, Faults, real_servers, server_name);

// Kills the server before a chosen row.
class KillingConnection final : public ado::ForwardingConnection {
  public:
    KillingConnection(std::shared_ptr<ado::Connection> target, DatabaseServer& server,
                      std::size_t rows_before)
        : ForwardingConnection(std::move(target)), server_(server), rows_before_(rows_before) {}
    std::shared_ptr<ado::Recordset> CreateRecordset() override {
        if (rows_++ == rows_before_) {
            server_.kill();
        }
        return ForwardingConnection::CreateRecordset();
    }

  private:
    DatabaseServer& server_;
    std::size_t rows_before_;
    std::size_t rows_ = 0;
};

TEST_P(Faults, AServerThatIsKilledInTheMiddle) {
    const auto dying = std::make_shared<KillingConnection>(db, server, rows_before);
    const Caught failure = caught([&] { seed(dying); });
    EXPECT_EQ(failure.number, odbc::error_connection) << failure.text;
    EXPECT_NE(failure.text.find("DATABASE=firma"), std::string::npos) << failure.text;
    EXPECT_EQ(failure.text.find(DatabaseServer::password), std::string::npos) << failure.text;
    for (int again = 0; again < 2; ++again) {
        EXPECT_EQ(caught([&] { seed(db); }).number, odbc::error_connection);
    }
    EXPECT_EQ(failed_connection(server.connection_string()).number, odbc::error_connection);

    server.start();
    db = connected();
    EXPECT_EQ(server.ask("select count(*) from S_ODSETKI"), std::to_string(rows_before))
        << "each row was stored by itself";
    seed(db);
    EXPECT_EQ(server.ask("select count(*) from S_ODSETKI"), "86");
}

TEST_P(Faults, AServerThatIsKilledInATransaction) {
    db->BeginTrans();
    const auto dying = std::make_shared<KillingConnection>(db, server, rows_before);
    EXPECT_EQ(caught([&] { seed(dying); }).number, odbc::error_connection);
    EXPECT_EQ(caught([&] { seed(db); }).number, odbc::error_in_transaction)
        << "nothing is stored outside of the transaction that is lost";
    EXPECT_EQ(caught([&] { db->CommitTrans(); }).number, odbc::error_no_transaction);
    db->Close();
    server.start();
    db = connected();
    EXPECT_EQ(server.ask("select count(*) from S_ODSETKI"), "0");
    db->BeginTrans();
    seed(db);
    server.kill();
    EXPECT_NE(caught([&] { db->CommitTrans(); }).number, 0);
    db->RollbackTrans();
    EXPECT_EQ(caught([&] { db->RollbackTrans(); }).number, odbc::error_no_transaction);
    db.reset();
    server.start();
    EXPECT_EQ(server.ask("select count(*) from S_ODSETKI"), "0");
}

TEST_P(Faults, AServerThatIsDown) {
    server.stop();
    const Caught failure = failed_connection(server.connection_string());
    EXPECT_EQ(failure.number, odbc::error_connection) << failure.text;
    EXPECT_NE(failure.text.find("SERVER=127.0.0.1;PORT=" + std::to_string(server.port())),
              std::string::npos)
        << failure.text;
    EXPECT_EQ(failure.text.find(DatabaseServer::password), std::string::npos) << failure.text;
    server.start();
}

TEST_P(Faults, AWrongPasswordIsShownNowhere) {
    const std::string secret = "tajne}}hasło;x";
    const Caught failure = failed_connection(server.connection_string(secret));
    EXPECT_EQ(failure.number, 3029) << failure.text;
    EXPECT_EQ(failure.text.find("tajne"), std::string::npos) << failure.text;
    EXPECT_NE(failure.text.find("ola"), std::string::npos)
        << "the server says who: " << failure.text;
}

TEST_P(Faults, ADatabaseThatIsNotThere) {
    std::string name = server.connection_string();
    name.replace(name.find("firma"), 5, "inna1");
    const Caught failure = failed_connection(name);
    EXPECT_NE(failure.number, 0);
    EXPECT_NE(failure.text.find("inna1"), std::string::npos) << failure.text;
}

TEST_P(Faults, ALockOfAnotherUser) {
    db->execute("insert into S_ODSETKI values (0, '1999-02-01 00:00:00', 99)");
    const ConnectionPointer other = connected();
    other->BeginTrans();
    other->execute("update S_ODSETKI set procent=98 where Rodzaj=0");
    db->execute(is(ServerKind::PostgreSql) ? "set lock_timeout=100"
                                           : "set innodb_lock_wait_timeout=1");
    const Caught failure = caught([&] { seed(db); });
    EXPECT_EQ(failure.number, 3260) << failure.text;
    other->RollbackTrans();
    seed(db);
    EXPECT_EQ(server.ask("select count(*) from S_ODSETKI"), "86");
}

TEST_P(Faults, ADataSourceByItsName) {
    // The driver manager remembers what it has read under a name.
    const std::string source = std::string("firma_") + name_of(GetParam());
    const std::string file = server / "odbc.ini";
    std::string attributes = server.connection_string();
    attributes = attributes.substr(0, attributes.find(";PWD="));
    std::string lines = "[" + source + "]\n";
    for (char& c : attributes) {
        c = c == ';' ? '\n' : c;
    }
    for (const char c : attributes) {
        lines += c == '{' || c == '}' ? "" : std::string(1, c);
    }
    std::ofstream(file) << lines
                        << "\nServername=127.0.0.1\nUsername=ola\n";  // as one driver has it
    ::setenv("ODBCINI", file.c_str(), 1);
    const ConnectionPointer by_name =
        odbc::connect("DSN=" + source + ";PWD={" + DatabaseServer::password + "}");
    seed(by_name);
    EXPECT_EQ(server.ask("select count(*) from S_ODSETKI"), "86");
    const Caught failure = failed_connection(source);  // without the password
    EXPECT_NE(failure.number, 0);
    EXPECT_NE(failure.text.find(source), std::string::npos) << failure.text;
    ::unsetenv("ODBCINI");
}

// ---- Without a server --------------------------------------------------------------------------

TEST(NoServer, NamesThatLeadNowhere) {
    const Caught unknown = caught([] { static_cast<void>(odbc::connect("nie_ma_takiej")); });
    EXPECT_EQ(unknown.number, odbc::error_connection);
    EXPECT_NE(unknown.text.find("nie_ma_takiej"), std::string::npos) << unknown.text;
    EXPECT_EQ(caught([] { static_cast<void>(odbc::connect("DRIVER={Nie ma};UID=x")); }).number,
              odbc::error_connection);
    for (const char* empty : {"", "  "}) {
        EXPECT_EQ(caught([&] { static_cast<void>(odbc::connect(empty)); }).number, 3001);
    }
}

TEST(NoServer, WhatIsShownOfAName) {
    const std::pair<const char*, const char*> names[] = {
        {"firma", "firma"},
        {"DSN=firma;UID=ola;PWD=tajne", "DSN=firma"},
        {"dsn = firma ; pwd = tajne", "dsn= firma "},
        {"PWD={a;b}};SERVER=c};SERVER=db;Port=1", "SERVER=db;Port=1"},
        {"Password=x;Driver={A;B};AccessToken=y;Database=d", "Driver={A;B};Database=d"},
        {"Driver={A;PWD=tajne", "Driver={A"},
        {"SERVER=db;bez znaku", "SERVER=db"},
        {"=", ""},
        {"PWD=", ""},
    };
    for (const auto& [name, shown] : names) {
        EXPECT_EQ(odbc::shown_name(name), shown) << name;
    }
}

}  // namespace
}  // namespace kvarta16
