// Menus without a window system. A host makes windows here, gives them bars, and is told when a bar
// is to be drawn anew; it then reads the tree and draws it as it can: on a terminal, in its own
// window, into an answer.
//
//   posix::MenusInMemory& menus = posix::menus();
//   const Long window = menus.make_window([&](Long drawn) { draw(menus, menus.GetMenu(drawn)); });
//   menus.SetMenu(window, menus.CreateMenu());
//   amenu().AddNewMenu(window, u"Plik");        // draw() is called
//
// The operations answer as the platform's. What they do beyond the seam's contract:
//
// - A menu, a window or a bitmap that does not exist (any more) is refused with 0. A handle is a
//   number from 1 up that is never given again.
// - Positions are all there is: without MF_BYPOSITION a call that asks for it is refused.
// - A menu is refused as an item of itself, directly or through others. It may hang on several
//   items at once; when it has been destroyed, those that are left open nothing.
// - A separator keeps no number; its text is nothing to be shown. A text ends at its first
// character 0.
// - Of each kind at most 10000 can be had at a time, as on the platform; after that creating one
//   gives 0. A host that serves callers who drop their menus need not fear for its memory.
//
// One for all threads of a program; a call is whole before the next begins. An observer is called
// on the thread that draws, and may call back.
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

#include <kvarta16/frame/export.h>
#include <kvarta16/platform/menus.h>

namespace kvarta16::posix {

struct MenuItem {
    String text;
    Long flags = 0;      // MF_POPUP, MF_SEPARATOR and what else it was made with
    Long id = 0;         // its command number; with MF_POPUP the menu that it opens
    Long unchecked = 0;  // the bitmap of either state, 0 for none
    Long checked = 0;
};

// What the header of a picture's file says.
struct MenuBitmap {
    String file;
    Long width = 0;
    Long height = 0;
    Integer bits_per_pixel = 0;
};

class KVARTA16_EXPORT MenusInMemory final : public Menus {
  public:
    using Observer = std::function<void(Long window)>;

    // ---- The host's side ----

    // A window without a bar; the observer is called for each redraw of its bar.
    [[nodiscard]] Long make_window(Observer observer = {});

    // The window goes, and its bar with all that it opens is destroyed. False for no window.
    bool close_window(Long window);

    // Gives a window its bar, none for 0. The bar that it had lives on, and nothing is drawn. 0
    // for no window or no menu.
    Long SetMenu(Long window, Long menu);

    // The items of a menu in their order; nothing where there is no such menu.
    [[nodiscard]] std::optional<std::vector<MenuItem>> items(Long menu) const;

    // How often the bar of a window has been drawn; nothing for no window.
    [[nodiscard]] std::optional<Long> redraws(Long window) const;

    [[nodiscard]] std::optional<MenuBitmap> bitmap(Long handle) const;

    // ---- The platform's operations ----

    Long GetMenu(Long window) override;
    Long GetSubMenu(Long menu, Long position) override;
    Long SetMenuItemBitmaps(Long menu, Long position, Long flags, Long unchecked,
                            Long checked) override;
    Long RemoveMenu(Long menu, Long position, Long flags) override;
    Long CreatePopupMenu() override;
    Long CreateMenu() override;
    Long AppendMenuA(Long menu, Long flags, Long item, StringView text) override;
    Long InsertMenuA(Long menu, Long position, Long flags, Long item, StringView text) override;
    Long DestroyMenu(Long menu) override;
    Long DrawMenuBar(Long window) override;

    // Takes files of bitmaps alone, IMAGE_BITMAP with LR_LOADFROMFILE, whose header and size are
    // those of one (bitmap_file.h). A size other than 0 is that of the bitmap, whatever the file
    // says. The file is found by the files of the thread's platform.
    Long LoadImageA(Long instance, StringView name, Long type, Long width, Long height,
                    Long flags) override;

  private:
    using Menu = std::vector<MenuItem>;
    struct Window {
        Long bar = 0;
        Long redraws = 0;
        Observer observer;
    };

    // The caller holds the lock.
    [[nodiscard]] Long next_handle();
    [[nodiscard]] Menu* menu_of(Long handle);
    [[nodiscard]] MenuItem* item_at(Long menu, Long position);
    [[nodiscard]] bool opens(Long menu, Long wanted) const;
    Long insert(Long menu, std::size_t position, Long flags, Long item, StringView text);
    void destroy(Long menu);

    mutable std::mutex mutex_;
    Long last_handle_ = 0;
    std::map<Long, Menu> menus_;
    std::map<Long, Window> windows_;
    std::map<Long, MenuBitmap> bitmaps_;
};

// Those of this process, which its default platform uses.
[[nodiscard]] KVARTA16_EXPORT MenusInMemory& menus() noexcept;

}  // namespace kvarta16::posix
