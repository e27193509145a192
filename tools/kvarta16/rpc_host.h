// The `host.` methods of a JSON-RPC session: objects, connections, and what the host's side of
// things does while a test or a program without a screen is the host.
#pragma once

#include <string>

#include "json_input.h"
#include "rpc_objects.h"
#include "rpc_platform.h"

namespace kvarta16::tool {

class HostMethods {
  public:
    // Both must outlive this.
    HostMethods(ObjectTable& objects, RpcPlatform& platform)
        : objects_(objects), platform_(platform) {}

    // Carries out the method of that name, without its "host."; its value as JSON. `params` is an
    // array. Throws Refusal, Failure.
    std::string call(StringView name, const Json& params);

  private:
    std::string create(const Json& params);
    std::string release(const Json& params);
    std::string connect(const Json& params);
    std::string answers(const Json& params);
    std::string catalogue(const Json& params);
    std::string now(const Json& params);
    std::string sleep(const Json& params);
    std::string drive(const Json& params);
    std::string version(const Json& params);
    std::string keys(const Json& params);
    std::string mouse(const Json& params);
    std::string dialog(const Json& params);
    std::string on_event(const Json& params);
    std::string fault(const Json& params);
    std::string window(const Json& params);
    std::string menu(const Json& params);

    struct Method;
    static const Method methods[];

    std::string object_json(const ObjectPointer& object);

    ObjectTable& objects_;
    RpcPlatform& platform_;
};

}  // namespace kvarta16::tool
