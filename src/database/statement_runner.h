// How the maintenance of database files runs its statements.
#pragma once

#include <memory>

#include <kvarta16/platform/dao.h>

namespace kvarta16::database {

// Runs the statement `ss`, one that gives no rows, on `dbsNorth`. The result is "" on success and
// else the failure's description; with `NotSilent` a box shows it too, with the statement as its
// title. Guarded: no failure reaches the caller; a `dbsNorth` that is Nothing is a failure too.
[[nodiscard]] String run_statement(StringView ss, const std::shared_ptr<dao::Database>& dbsNorth,
                                   Boolean NotSilent);

}  // namespace kvarta16::database
