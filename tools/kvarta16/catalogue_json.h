// The catalogue of classes as JSON.
#pragma once

#include <span>
#include <string>

#include <kvarta16/frame/catalogue.h>

namespace kvarta16::tool {

// The default of an optional parameter, in the parameter's type.
[[nodiscard]] Variant default_value_of(const Parameter& parameter);

// The type library and the classes, each with its members in interface order:
//
//   {"library":{"name":…,"version":"1.1","id":…,"locale":1033},
//    "classes":[{"name":"aChar","instancing":"global","interface":"_aChar","interface_id":…,
//                "class_id":…,"built":true,"members":[
//       {"name":"Str2Str","kind":"method","built":true,"parameters":[
//          {"name":"ds","type":"Variant","passing":"value","optional":false},
//          {"name":"leng","type":"Integer","passing":"reference","optional":true,
//           "default":{"Integer":0}}],
//        "result":"String"}],
//     "events":{"interface":…,"events":[…]}}]}
//
// `kind` is "method", "property get" or "property let"; the result of a member without one is
// null; `events` stands only at a class that raises some. A member that is not built has its name
// and its place alone.
[[nodiscard]] std::string catalogue_json(std::span<const ClassInfo> classes);

}  // namespace kvarta16::tool
