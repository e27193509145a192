// The menus of windows. Handles are numbers; 0 is none. Items are named by their position, from 0.
//
// None of these raises a failure: they answer 0 where they cannot serve, a bad handle or position
// included.
#pragma once

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

inline constexpr Long MF_STRING = 0;
inline constexpr Long MF_POPUP = 16;  // the new item opens the menu whose handle is its number
inline constexpr Long MF_BYPOSITION = 1024;
inline constexpr Long MF_SEPARATOR = 2048;

inline constexpr Long IMAGE_BITMAP = 0;
inline constexpr Long LR_LOADFROMFILE = 16;
inline constexpr Long LR_LOADTRANSPARENT = 32;
inline constexpr Long LR_LOADMAP3DCOLORS = 4096;

class KVARTA16_EXPORT Menus {
  public:
    virtual ~Menus() = default;

    // The menu bar of a window.
    [[nodiscard]] virtual Long GetMenu(Long window) = 0;

    // The menu that the item at a position opens; 0 where it opens none.
    [[nodiscard]] virtual Long GetSubMenu(Long menu, Long position) = 0;

    // The bitmaps of an item in its two states; 0 for none.
    [[nodiscard]] virtual Long SetMenuItemBitmaps(Long menu, Long position, Long flags,
                                                  Long unchecked, Long checked) = 0;

    // Takes an item out; a menu that it opened lives on.
    [[nodiscard]] virtual Long RemoveMenu(Long menu, Long position, Long flags) = 0;

    // A new empty menu, to be opened from an item or to be a bar.
    [[nodiscard]] virtual Long CreatePopupMenu() = 0;
    [[nodiscard]] virtual Long CreateMenu() = 0;

    // Puts an item at the end. `item` is its command number, or the menu that it opens.
    [[nodiscard]] virtual Long AppendMenuA(Long menu, Long flags, Long item, StringView text) = 0;

    // Puts an item before a position; at the end where there is none such.
    [[nodiscard]] virtual Long InsertMenuA(Long menu, Long position, Long flags, Long item,
                                           StringView text) = 0;

    // Destroys a menu with all that its items open. A window whose bar it was has none then.
    [[nodiscard]] virtual Long DestroyMenu(Long menu) = 0;

    // Draws the bar of a window anew.
    virtual Long DrawMenuBar(Long window) = 0;

    // A bitmap from a file.
    [[nodiscard]] virtual Long LoadImageA(Long instance, StringView name, Long type, Long width,
                                          Long height, Long flags) = 0;
};

}  // namespace kvarta16
