// The windows of a session's host and their menus as JSON.
#pragma once

#include <string>

#include "json_input.h"

namespace kvarta16::tool {

// Makes a window with a bar. `menus` lists its menus, each as [TEXT, [ITEM TEXT, ...]], with or
// without the list, or as the text alone; an item "-" is a separator. The window's handle, 0 where
// there is no room for more. Throws Refusal for another shape.
[[nodiscard]] Long make_window(const Json& menus);

// The bar of a window as it stands, and how often it has been drawn:
//
//   {"redraws":2,"items":[{"text":"Plik","flags":16,"id":3,"bitmaps":[0,0],"items":[...]}]}
//
// `items` is null for a window without a bar. The flags of an item are those of its kind: 0 a text,
// 16 one that opens a menu, whose handle is its `id` and whose items are its `items` (null once
// that menu has been destroyed), 2048 a separator; the `id` of the others is their command number.
// `bitmaps` are the handles of its two states, 0 for none. Throws Refusal for no window.
[[nodiscard]] std::string menus_json(Long window);

}  // namespace kvarta16::tool
