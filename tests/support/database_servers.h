// Database servers for tests, from the system's own packages, and an SQLite file behind its ODBC
// driver beside them.
//
//   DatabaseServer& server = database_server(ServerKind::PostgreSql);
//   if (!server.is_there()) { GTEST_SKIP() << server.what_is_missing(); }
//   const auto db = odbc::connect(server.connection_string());
//   EXPECT_EQ(server.ask("select count(*) from S_ODSETKI"), "86");
//
// A machine without a server or its driver leaves those tests out, and says why. With
// KVARTA16_REQUIRE_SERVERS set in the environment that is a failure.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <support/server_process.h>

namespace kvarta16::testing_support {

enum class ServerKind : unsigned char { PostgreSql, MariaDb, SqliteDriver };

const char* name_of(ServerKind kind);

// Whether the driver manager knows a driver of this name.
bool has_driver(const std::string& wanted);

class DatabaseServer {
  public:
    static constexpr const char* password = "Zażółć';%#1";

    explicit DatabaseServer(ServerKind kind);

    [[nodiscard]] bool is_there() const { return what_is_missing_.empty(); }
    [[nodiscard]] const std::string& what_is_missing() const { return what_is_missing_; }
    [[nodiscard]] ServerKind kind() const { return kind_; }
    [[nodiscard]] int port() const { return port_; }

    [[nodiscard]] std::string connection_string(const std::string& secret = password) const;

    // What the server's own client prints for statements: a line a row, "|" between the values.
    std::string ask(const std::string& sql);

    void start();
    // Whether each committed row waits for the disk. The tests do without, but where they measure
    // the servers; what is examined does not depend on it, for a killed server has handed over
    // what it has committed.
    void sync_to_disk(bool sync);

    // As a power cut does it. One of the servers is many processes, which go on for a moment
    // without the first: it has a signal of its own to let all of them fall at once.
    void kill();
    void stop();

    [[nodiscard]] std::string operator/(const std::string& name) const;

  private:
    [[nodiscard]] static std::string postgresql_program(const std::string& name);
    [[nodiscard]] static std::string mariadb_program(const std::string& name);
    [[nodiscard]] std::string find_missing() const;
    void set_up();
    [[nodiscard]] Command server_command();
    [[nodiscard]] Command client_command(const std::string& database, const std::string& sql);

    // In a database that is there from the start.
    void run_always(const std::string& sql);
    void wait_until_it_answers();
    void make_database();

    ServerKind kind_;
    ServerFolder folder_;
    ServerUser user_{kind_ == ServerKind::PostgreSql ? std::vector{"postgres", "nobody"}
                                                     : std::vector{"mysql", "nobody"}};
    std::string what_is_missing_;
    int port_ = 0;
    bool has_database_ = false;
    std::optional<Process> process_;
};

// The server that the tests of this program share; started when it is first asked for.
DatabaseServer& database_server(ServerKind kind);

bool servers_are_required();

}  // namespace kvarta16::testing_support
