// The commands of the tool, one file each. Each returns the exit status; a Failure or UsageError
// that it lets through is told to the person and gives the status by main.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <kvarta16/frame/types.h>

namespace kvarta16::tool {

// `words` are CLASS.MEMBER and its arguments.
int call_command(const std::vector<std::string>& words);

int catalogue_command(const std::optional<std::string>& class_name, bool as_json);

// Database files.
int db_new_command(const std::string& file, bool silent);
int db_check_command(const std::string& file);
struct MaintenanceOptions {
    std::string file;
    std::optional<std::string> table;  // one table alone
    std::string owner;                 // what stands before its name in the statements of widen
    bool drop_paste_errors = false;
    bool ignore_errors = false;
    bool plan = false;    // print what would be done, change nothing
    bool backup = false;  // copy the file to FILE.bak before
};
int db_clean_command(const MaintenanceOptions& options);
int db_widen_command(const MaintenanceOptions& options);
int db_exec_command(const std::string& file, const std::string& sql);
int db_show_command(const std::string& file, const std::optional<std::string>& table);

// What a path with wildcards matches; the status is 1 where it is nothing.
int find_command(const std::string& pattern);

// Files on an FTP server, by an address of ftp_url.h. The status is 130 where Ctrl-C has ended a
// transfer.
enum class FtpAction : unsigned char { DeleteFile, MakeDirectory, RemoveDirectory, Rename };
struct FtpOptions {
    std::string url;
    std::string local;     // "" for the remote name in the current directory
    std::string new_name;  // of a rename
    FtpAction action = FtpAction::DeleteFile;
    bool active = false;  // this side opens the ports for data
};
int ftp_list_command(const FtpOptions& options);
int ftp_get_command(const FtpOptions& options);
int ftp_put_command(const FtpOptions& options);
int ftp_remote_command(const FtpOptions& options);

// What of the platform is there, with what, and how to get the rest; `language` is "pl" or "en",
// the environment's if not given.
int doctor_command(const std::optional<std::string>& language);

// In these, `language` is "pl" or "en"; the environment's if not given.

// What kind of day a date is.
int day_command(const std::string& day, const std::optional<std::string>& language);

// The public holidays of a year.
int holidays_command(Long year, const std::optional<std::string>& language);

// Whether the check digit of an identifier agrees: the status is 1 if not.
int nip_command(const std::string& number, const std::optional<std::string>& language);
int pesel_command(const std::string& number, const std::optional<std::string>& language);

struct RatesOptions {
    std::string database;
    std::optional<std::string> day;       // today if not given
    std::optional<std::string> language;  // "pl" or "en"; the environment's if not given
};
int rates_command(const RatesOptions& options);

// Sends a file to a printer as it is, byte by byte.
struct PrintOptions {
    std::string file;
    std::string printer;
    std::string application;  // what stands before the file's name in the job's
};
int print_command(const PrintOptions& options);

// The printers of the print server; the status is 1 where there are none.
int printers_command();

// Settings in the registry; a key is written HKCU\Software\ZEVO, the name "" is the default value.
int registry_get_command(const std::string& key, const std::string& name);
int registry_set_command(const std::string& key, const std::string& name, const std::string& text);
// The value of that name, or the key without one.
int registry_delete_command(const std::string& key, const std::optional<std::string>& name);
int registry_export_command(const std::string& key, bool as_utf16);
int registry_import_command(const std::string& file);

int rpc_command();

// Length of service and leave.
struct ServiceOptions {
    std::vector<std::string> days;  // the first and the last day of each period
    Integer school = 0;             // years credited for schooling
    std::optional<Integer> age;     // where given, the scale that asks for it
    std::optional<std::string> language;
};
int service_command(const ServiceOptions& options);

// An amount in words.
int words_command(const std::string& amount);

struct SeedOptions {
    std::string database;
    std::vector<std::string> tables;
    std::string dialect;
    bool ask = false;
};
int seed_command(const SeedOptions& options);

}  // namespace kvarta16::tool
