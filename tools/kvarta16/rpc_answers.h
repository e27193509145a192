// The answers of a JSON-RPC session, as JSON.
#pragma once

#include <string>

#include <kvarta16/frame/late_bound.h>

#include "json_output.h"
#include "refusal.h"
#include "rpc_objects.h"
#include "rpc_platform.h"

namespace kvarta16::tool {

// Beside its outcome the answer to a call tells the arguments as they stand after it, and what it
// has asked of the platform. `id` and `value` are JSON.
class AnswerWriter {
  public:
    // Both must outlive this.
    AnswerWriter(const RpcPlatform& platform, ObjectTable& objects)
        : platform_(platform), objects_(objects) {}

    [[nodiscard]] std::string success(const std::string& id, const std::string& value,
                                      const Arguments& arguments) const;
    [[nodiscard]] std::string failure(const std::string& id, const Failure& failure,
                                      const Arguments& arguments) const;
    [[nodiscard]] static std::string refusal(const std::string& id, const Refusal& refusal);

  private:
    void write_record(JsonWriter& json, const Arguments& arguments) const;

    const RpcPlatform& platform_;
    ObjectTable& objects_;
};

}  // namespace kvarta16::tool
