#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/sqlite/sqlite_engine.h>
#include <kvarta16/platform/sqlite/sqlite_errors.h>
#include <kvarta16/platform/sqlite/sqlite_file_connection.h>

namespace kvarta16::sqlite {
namespace {

// What is known of the file as a whole; TableDefs does not list it.
constexpr StringView properties_table = u"kvarta16_database";
constexpr const char* make_properties =
    "CREATE TABLE kvarta16_database (name TEXT PRIMARY KEY, value TEXT) WITHOUT ROWID";
constexpr const char* add_locale = "INSERT INTO kvarta16_database VALUES ('Locale',?1)";
constexpr const char* read_locale = "SELECT value FROM kvarta16_database WHERE name='Locale'";

std::string native_path(StringView name) {
    try {
        return platform().files->native_path(name);
    } catch (const Failure& failure) {  // told by the number that callers of an engine know
        fail_about(error_invalid_path, u"This is no path of a file: " + failure.description(),
                   name);
    }
}

// Makes the file and nothing in it, so that of two programs that make it one fails.
void make_file(const std::string& path) {
    std::error_code ignored;  // what cannot be looked at fails below
    if (std::filesystem::is_directory(path, ignored)) {
        fail_about(error_cannot_open, u"This is a folder and no file", from_utf8(path));
    }
    std::FILE* file = std::fopen(path.c_str(), "wbx");
    if (file != nullptr) {
        std::fclose(file);
        return;
    }
    const String place = from_utf8(path);
    switch (errno) {
        case EEXIST:
            fail_about(error_file_exists, u"There is a file of that name already", place);
        case ENOENT:
        case ENOTDIR:
        case ENAMETOOLONG:
            fail_about(error_invalid_path, u"There is no such folder for the file", place);
        case ENOSPC:
            fail_about(error_disk_full, u"There is no space left for the file", place);
        default:
            fail_about(error_cannot_open,
                       u"The file cannot be made, perhaps for want of permission", place);
    }
}

// The bytes of a file; nothing where there is none, which fails as it is opened.
std::optional<std::uintmax_t> size_of(const std::string& path) {
    std::error_code ignored;
    const bool is_file = std::filesystem::is_regular_file(path, ignored);
    return is_file ? std::optional(std::filesystem::file_size(path, ignored)) : std::nullopt;
}

// The engine itself sees that whole pages are missing.
void require_whole(Database& database) {
    const Rows page = database.run("PRAGMA page_size");
    const auto bytes = static_cast<std::uintmax_t>(std::get<std::int64_t>(page.cells.at(0)));
    if (size_of(database.path()).value_or(0) % bytes != 0) {
        fail_with(SQLITE_CORRUPT, "the last page is cut off", database.path());
    }
}

class FileEngine final : public dao::DBEngine {
  public:
    std::shared_ptr<dao::Database> CreateDatabase(StringView name, StringView locale) override {
        const std::string path = native_path(name);
        if (path.empty()) {
            fail_about(error_invalid_path, u"This is no path of a file", name);
        }
        make_file(path);
        try {
            auto database = std::make_shared<FileConnection>(path, OpenOptions{});
            put_locale(*database->database(), locale);
            return database;
        } catch (const Failure&) {
            for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
                std::error_code ignored;  // a file that stays is none that opens
                std::filesystem::remove(path + suffix, ignored);
            }
            throw;
        }
    }

    std::shared_ptr<dao::Database> OpenDatabase(StringView name) override {
        const std::string path = native_path(name);
        if (size_of(path) == 0) {
            fail_about(error_no_format, u"The file is empty and no database", from_utf8(path));
        }
        auto database = std::make_shared<FileConnection>(path, OpenOptions{});
        require_whole(*database->database());
        return database;
    }

  private:
    static void put_locale(Database& database, StringView locale) {
        database.change([&] {
            const Cell parameters[] = {to_utf8(locale)};
            database.define(make_properties, properties_table);
            database.run(add_locale, parameters, properties_table);
        });
    }
};

}  // namespace

dao::DBEngine& db_engine() noexcept {
    static FileEngine engine;
    return engine;
}

String locale_of(dao::Database& database) {
    auto* connection = dynamic_cast<FileConnection*>(&database);
    if (connection == nullptr || connection->database() == nullptr ||
        !connection->table_exists(properties_table)) {
        return u"";
    }
    const Rows rows = connection->database()->run(read_locale, {}, properties_table);
    const auto* text = rows.count() == 1 ? std::get_if<std::string>(rows.cells.data()) : nullptr;
    return text != nullptr ? from_utf8(*text) : String();
}

}  // namespace kvarta16::sqlite
