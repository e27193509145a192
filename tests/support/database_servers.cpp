#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <thread>

#include <sql.h>
#include <sqlext.h>
#include <support/database_servers.h>
#include <support/sqlite_files.h>

namespace kvarta16::testing_support {

const char* name_of(ServerKind kind) {
    constexpr const char* names[] = {"PostgreSql", "MariaDb", "SqliteDriver"};
    return names[static_cast<std::size_t>(kind)];
}

bool has_driver(const std::string& wanted) {
    SQLHANDLE environment = nullptr;
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment);
    SQLSetEnvAttr(environment, SQL_ATTR_ODBC_VERSION,
                  reinterpret_cast<SQLPOINTER>(std::uintptr_t{SQL_OV_ODBC3}), 0);
    std::array<SQLCHAR, 256> name{};
    bool found = false;
    SQLSMALLINT length = 0;
    for (SQLUSMALLINT from = SQL_FETCH_FIRST; SQL_SUCCEEDED(
             SQLDrivers(environment, from, name.data(), name.size(), &length, nullptr, 0, nullptr));
         from = SQL_FETCH_NEXT) {
        found = found || wanted == reinterpret_cast<const char*>(name.data());
    }
    SQLFreeHandle(SQL_HANDLE_ENV, environment);
    return found;
}

DatabaseServer::DatabaseServer(ServerKind kind) : kind_(kind) {
    what_is_missing_ = find_missing();
    if (is_there()) {
        try {
            set_up();
            start();
        } catch (const std::exception& failure) {
            what_is_missing_ = std::string(name_of(kind)) + " does not start: " + failure.what() +
                               "\n" + text_of_file(folder_ / "log");
        }
    }
}

std::string DatabaseServer::connection_string(const std::string& secret) const {
    if (kind_ == ServerKind::SqliteDriver) {
        return std::string("DRIVER={SQLite3};Database=") + (folder_ / "firma.db");
    }
    const char* driver = kind_ == ServerKind::PostgreSql ? "PostgreSQL Unicode" : "MariaDB Unicode";
    return std::string("DRIVER={") + driver + "};SERVER=127.0.0.1;PORT=" + std::to_string(port_) +
           ";DATABASE=firma;UID=ola;PWD={" + secret + "}";
}

std::string DatabaseServer::ask(const std::string& sql) {
    if (kind_ == ServerKind::SqliteDriver) {
        std::string text;
        OtherProgram program(folder_ / "firma.db");
        for (const auto& row : program.rows(sql)) {
            for (std::size_t i = 0; i < row.size(); ++i) {
                text += (i > 0 ? "|" : "") + row[i];
            }
            text += "\n";
        }
        return text.substr(0, text.empty() ? 0 : text.size() - 1);
    }
    std::string text = output_of(client_command("firma", sql), folder_ / "client", user_);
    for (char& c : text) {
        c = c == '\t' ? '|' : c;
    }
    return text.substr(0, text.empty() ? 0 : text.size() - 1);
}

void DatabaseServer::start() {
    if (kind_ == ServerKind::SqliteDriver) {
        return;
    }
    process_.emplace(server_command(), folder_ / "log", user_,
                     kind_ == ServerKind::PostgreSql ? SIGQUIT : SIGTERM);
    wait_until_it_answers();
}

void DatabaseServer::sync_to_disk(bool sync) {
    if (kind_ == ServerKind::PostgreSql) {
        run_always("alter system set fsync to " + std::string(sync ? "on" : "off"));
        run_always("select pg_reload_conf()");
    } else if (kind_ == ServerKind::MariaDb) {
        run_always("set global innodb_flush_log_at_trx_commit=" + std::string(sync ? "1" : "2"));
    }
}

void DatabaseServer::kill() {
    kind_ == ServerKind::PostgreSql ? process_->stop() : process_->kill();
}

void DatabaseServer::stop() {
    process_->stop();
}

std::string DatabaseServer::operator/(const std::string& name) const {
    return folder_ / name;
}

std::string DatabaseServer::postgresql_program(const std::string& name) {
    return program_at({"/usr/lib/postgresql/*/bin/" + name, "/usr/local/bin/" + name});
}

std::string DatabaseServer::mariadb_program(const std::string& name) {
    return program_at({"/usr/sbin/" + name, "/usr/bin/" + name, "/usr/local/bin/" + name});
}

std::string DatabaseServer::find_missing() const {
    struct Needed {
        const char* driver;
        const char* packages;
        std::vector<std::string> programs;
    };
    const Needed needed[] = {{"PostgreSQL Unicode",
                              "postgresql, odbc-postgresql",
                              {postgresql_program("postgres"), postgresql_program("initdb"),
                               postgresql_program("psql")}},
                             {"MariaDB Unicode",
                              "mariadb-server-core, mariadb-client-core, odbc-mariadb",
                              {mariadb_program("mariadbd"), mariadb_program("mariadb-install-db"),
                               mariadb_program("mariadb")}},
                             {"SQLite3", "libsqliteodbc", {}}};
    const Needed& mine = needed[static_cast<std::size_t>(kind_)];
    bool complete = has_driver(mine.driver);
    for (const std::string& program : mine.programs) {
        complete = complete && !program.empty();
    }
    return complete ? "" : std::string("this machine lacks one of ") + mine.packages;
}

void DatabaseServer::set_up() {
    if (kind_ == ServerKind::SqliteDriver) {
        return;
    }
    const std::string data = folder_ / "data";
    std::filesystem::create_directory(data);
    std::filesystem::permissions(data, std::filesystem::perms(0700));
    user_.own(data);
    if (kind_ == ServerKind::PostgreSql) {
        output_of({postgresql_program("initdb"), "--pgdata", data, "--username", "chief", "--auth",
                   "trust", "--encoding", "UTF8", "--locale", "C", "--no-sync"},
                  folder_ / "setup", user_);
        std::ofstream(data + "/pg_hba.conf")
            << "host all chief 127.0.0.1/32 trust\nhost all all 127.0.0.1/32 scram-sha-256\n";
    } else {
        output_of({mariadb_program("mariadb-install-db"), "--no-defaults", "--datadir=" + data,
                   "--auth-root-authentication-method=normal", "--skip-test-db"},
                  folder_ / "setup", user_);
    }
}

Command DatabaseServer::server_command() {
    port_ = port_ == 0 ? free_port() : port_;
    const std::string port = std::to_string(port_);
    if (kind_ == ServerKind::PostgreSql) {
        return {postgresql_program("postgres"),
                "-D",
                folder_ / "data",
                "-p",
                port,
                "-c",
                "listen_addresses=127.0.0.1",
                "-c",
                "unix_socket_directories=",
                "-c",
                "lc_messages=C",
                "-c",
                "datestyle=German",
                "-c",
                "timezone=Europe/Warsaw"};
    }
    return {mariadb_program("mariadbd"), "--no-defaults", "--datadir=" + (folder_ / "data"),
            "--port=" + port, "--bind-address=127.0.0.1", "--socket=" + (folder_ / "data/socket"),
            "--innodb-buffer-pool-size=16M",
            // As careless as an administrator can leave it.
            "--sql-mode="};
}

Command DatabaseServer::client_command(const std::string& database, const std::string& sql) {
    if (kind_ == ServerKind::PostgreSql) {
        return {postgresql_program("psql"),
                "-XqAt",
                "-v",
                "ON_ERROR_STOP=1",
                "-F",
                "|",
                "-P",
                "null=NULL",
                "-c",
                sql,
                "host=127.0.0.1 port=" + std::to_string(port_) +
                    " user=chief client_encoding=UTF8 dbname=" + database};
    }
    return {mariadb_program("mariadb"),
            "--no-defaults",
            "-NB",
            "-uroot",
            "--socket=" + (folder_ / "data/socket"),
            "--default-character-set=utf8mb4",
            "-e",
            sql,
            database};
}

void DatabaseServer::run_always(const std::string& sql) {
    const char* always = kind_ == ServerKind::PostgreSql ? "postgres" : "mysql";
    output_of(client_command(always, sql), folder_ / "client", user_);
}

void DatabaseServer::wait_until_it_answers() {
    using namespace std::chrono_literals;
    for (int i = 0;; ++i) {
        try {
            run_always("select 1");
            break;
        } catch (const std::runtime_error&) {
            if (!process_->is_running() || i > 600) {
                throw;
            }
            std::this_thread::sleep_for(50ms);
        }
    }
    if (!has_database_) {
        make_database();
        has_database_ = true;
    }
    sync_to_disk(false);
}

void DatabaseServer::make_database() {
    std::string quoted;
    for (const char* c = password; *c != 0; ++c) {
        quoted += *c == '\'' ? "''" : std::string(1, *c);
    }
    if (kind_ == ServerKind::PostgreSql) {
        run_always("create role ola login superuser password '" + quoted + "'");
        run_always("create database firma owner ola");
    } else {
        run_always("create database firma character set utf8mb4");
        run_always("create user ola@'127.0.0.1' identified by '" + quoted + "'");
        run_always("create user ola@localhost identified by '" + quoted + "'");
        run_always("grant all on firma.* to ola@'127.0.0.1', ola@localhost");
    }
}

DatabaseServer& database_server(ServerKind kind) {
    static std::array<std::unique_ptr<DatabaseServer>, 3> servers;
    auto& server = servers.at(static_cast<std::size_t>(kind));
    if (server == nullptr) {
        server = std::make_unique<DatabaseServer>(kind);
    }
    return *server;
}

bool servers_are_required() {
    return std::getenv("KVARTA16_REQUIRE_SERVERS") != nullptr;
}

}  // namespace kvarta16::testing_support
