// A database engine between the maintenance classes and the real one: it tells a person how far
// the work has come and which statements were not done, or, when the work is only planned, prints
// what would be done and passes no change on.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <kvarta16/platform/forwarding.h>
#include <kvarta16/platform/platform.h>

#include "terminal.h"

namespace kvarta16::tool {

struct MaintenanceWatch {
    bool plans = false;
    std::string title;  // of the progress bar
    // Whether a statement may fail without anything being amiss.
    std::function<bool(StringView statement)> may_fail = [](StringView) { return false; };

    std::size_t failed_statements = 0;    // of those that may not
    std::optional<ProgressBar> progress;  // while the tables are walked
};

// `watch` and `target` must outlive the engine.
class WatchedEngine final : public dao::ForwardingEngine {
  public:
    WatchedEngine(dao::DBEngine& target, MaintenanceWatch& watch) noexcept
        : ForwardingEngine(target), watch_(watch) {}

    std::shared_ptr<dao::Database> OpenDatabase(StringView name) override;

  private:
    MaintenanceWatch& watch_;
};

// The platform in force with another engine and, for a plan, without pauses; for as long as it
// lives.
class WatchedPlatform {
  public:
    explicit WatchedPlatform(MaintenanceWatch& watch);

  private:
    class NoPauses final : public Sleeper {
      public:
        void Sleep(Long) override {}
    };

    WatchedEngine engine_;
    NoPauses no_pauses_;
    Platform operations_;
    ScopedPlatform scope_;
};

}  // namespace kvarta16::tool
