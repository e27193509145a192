// The objects in the hands of a JSON-RPC client, by number from 1. 0 is Nothing.
#pragma once

#include <cstdint>
#include <map>

#include <kvarta16/frame/variant.h>

namespace kvarta16::tool {

class ObjectTable {
  public:
    // The object's number: the one it has, or a new one. 0 for Nothing.
    std::int64_t number_of(const ObjectPointer& object);

    // The object of a number, Nothing if there is none.
    [[nodiscard]] ObjectPointer find(std::int64_t number) const;

    // Drops the object; whether there was one. Its number is never given again.
    bool release(std::int64_t number);

  private:
    std::map<std::int64_t, ObjectPointer> objects_;
    std::int64_t last_number_ = 0;
};

}  // namespace kvarta16::tool
