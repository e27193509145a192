// The commands of the tool, one file each. Each returns the exit status; a Failure or UsageError
// that it lets through is told to the person and gives the status by main.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kvarta16::tool {

// `words` are CLASS.MEMBER and its arguments.
int call_command(const std::vector<std::string>& words);

int catalogue_command(const std::optional<std::string>& class_name, bool as_json);

struct RatesOptions {
    std::string database;
    std::optional<std::string> day;       // today if not given
    std::optional<std::string> language;  // "pl" or "en"; the environment's if not given
};
int rates_command(const RatesOptions& options);

int rpc_command();

struct SeedOptions {
    std::string database;
    std::vector<std::string> tables;
    std::string dialect;
    bool ask = false;
};
int seed_command(const SeedOptions& options);

}  // namespace kvarta16::tool
