#include <algorithm>
#include <limits>
#include <set>
#include <utility>

#include <kvarta16/frame/failure.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/posix/bitmap_file.h>
#include <kvarta16/platform/posix/menus_in_memory.h>

namespace kvarta16::posix {
namespace {

constexpr std::size_t most_of_a_kind = 10'000;

constexpr Long done = 1;
constexpr Long refused = 0;

// As a call that takes a text up to its first character 0.
StringView up_to_zero(StringView text) {
    return text.substr(0, text.find(u'\0'));
}

MenuItem made_item(Long flags, Long item, StringView text) {
    MenuItem made;
    made.flags = flags & ~MF_BYPOSITION;  // says how the call names the place, and nothing more
    made.text = String(up_to_zero(text));
    made.id = (flags & MF_SEPARATOR) == 0 ? item : 0;
    return made;
}

bool opens_menu(const MenuItem& item) {
    return (item.flags & MF_POPUP) != 0 && (item.flags & MF_SEPARATOR) == 0;
}

}  // namespace

// ---- The host's side ------------------------------------------------------------------------

Long MenusInMemory::make_window(Observer observer) {
    const std::lock_guard lock(mutex_);
    const Long handle = windows_.size() < most_of_a_kind ? next_handle() : 0;
    if (handle != 0) {
        windows_[handle] = {0, 0, std::move(observer)};
    }
    return handle;
}

bool MenusInMemory::close_window(Long window) {
    const std::lock_guard lock(mutex_);
    const auto found = windows_.find(window);
    if (found == windows_.end()) {
        return false;
    }
    const Long bar = found->second.bar;
    windows_.erase(found);
    destroy(bar);
    return true;
}

Long MenusInMemory::SetMenu(Long window, Long menu) {
    const std::lock_guard lock(mutex_);
    const auto found = windows_.find(window);
    if (found == windows_.end() || (menu != 0 && !menus_.contains(menu))) {
        return refused;
    }
    found->second.bar = menu;
    return done;
}

std::optional<std::vector<MenuItem>> MenusInMemory::items(Long menu) const {
    const std::lock_guard lock(mutex_);
    const auto found = menus_.find(menu);
    return found == menus_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<Long> MenusInMemory::redraws(Long window) const {
    const std::lock_guard lock(mutex_);
    const auto found = windows_.find(window);
    return found == windows_.end() ? std::nullopt : std::optional(found->second.redraws);
}

std::optional<MenuBitmap> MenusInMemory::bitmap(Long handle) const {
    const std::lock_guard lock(mutex_);
    const auto found = bitmaps_.find(handle);
    return found == bitmaps_.end() ? std::nullopt : std::optional(found->second);
}

// ---- The platform's operations --------------------------------------------------------------

Long MenusInMemory::GetMenu(Long window) {
    const std::lock_guard lock(mutex_);
    const auto found = windows_.find(window);
    return found == windows_.end() ? refused : found->second.bar;
}

Long MenusInMemory::GetSubMenu(Long menu, Long position) {
    const std::lock_guard lock(mutex_);
    const MenuItem* const item = item_at(menu, position);
    return item != nullptr && opens_menu(*item) && menus_.contains(item->id) ? item->id : refused;
}

Long MenusInMemory::SetMenuItemBitmaps(Long menu, Long position, Long flags, Long unchecked,
                                       Long checked) {
    const std::lock_guard lock(mutex_);
    MenuItem* const item = item_at(menu, position);
    if (item == nullptr || (flags & MF_BYPOSITION) == 0) {
        return refused;
    }
    item->unchecked = unchecked;
    item->checked = checked;
    return done;
}

Long MenusInMemory::RemoveMenu(Long menu, Long position, Long flags) {
    const std::lock_guard lock(mutex_);
    if (item_at(menu, position) == nullptr || (flags & MF_BYPOSITION) == 0) {
        return refused;
    }
    Menu& items = menus_.at(menu);
    items.erase(items.begin() + position);
    return done;
}

Long MenusInMemory::CreatePopupMenu() {
    return CreateMenu();
}

Long MenusInMemory::CreateMenu() {
    const std::lock_guard lock(mutex_);
    const Long handle = menus_.size() < most_of_a_kind ? next_handle() : 0;
    if (handle != 0) {
        menus_.try_emplace(handle);
    }
    return handle;
}

Long MenusInMemory::AppendMenuA(Long menu, Long flags, Long item, StringView text) {
    const std::lock_guard lock(mutex_);
    return insert(menu, std::numeric_limits<std::size_t>::max(), flags, item, text);
}

Long MenusInMemory::InsertMenuA(Long menu, Long position, Long flags, Long item, StringView text) {
    const std::lock_guard lock(mutex_);
    if ((flags & MF_BYPOSITION) == 0) {
        return refused;
    }
    // Below 0 there is no position either.
    const auto place =
        position < 0 ? std::numeric_limits<std::size_t>::max() : static_cast<std::size_t>(position);
    return insert(menu, place, flags, item, text);
}

Long MenusInMemory::DestroyMenu(Long menu) {
    const std::lock_guard lock(mutex_);
    if (!menus_.contains(menu)) {
        return refused;
    }
    destroy(menu);
    return done;
}

Long MenusInMemory::DrawMenuBar(Long window) {
    Observer observer;
    {
        const std::lock_guard lock(mutex_);
        const auto found = windows_.find(window);
        if (found == windows_.end()) {
            return refused;
        }
        ++found->second.redraws;
        observer = found->second.observer;
    }
    if (observer) {
        observer(window);
    }
    return done;
}

Long MenusInMemory::LoadImageA(Long, StringView name, Long type, Long width, Long height,
                               Long flags) {
    if (type != IMAGE_BITMAP || (flags & LR_LOADFROMFILE) == 0 || width < 0 || height < 0) {
        return refused;
    }
    std::optional<BitmapHeader> header;
    guarded([&] {  // a name that is no path is a file that cannot be loaded
        header = bitmap_header(platform().files->native_path(up_to_zero(name)));
    });
    const std::lock_guard lock(mutex_);
    const bool has_room = bitmaps_.size() < most_of_a_kind;
    const Long handle = header && has_room ? next_handle() : 0;
    if (handle != 0) {
        bitmaps_[handle] = {String(up_to_zero(name)), width != 0 ? width : header->width,
                            height != 0 ? height : header->height, header->bits_per_pixel};
    }
    return handle;
}

// ---- Under the lock -------------------------------------------------------------------------

Long MenusInMemory::next_handle() {
    return last_handle_ == std::numeric_limits<Long>::max() ? 0 : ++last_handle_;
}

MenusInMemory::Menu* MenusInMemory::menu_of(Long handle) {
    const auto found = menus_.find(handle);
    return found == menus_.end() ? nullptr : &found->second;
}

MenuItem* MenusInMemory::item_at(Long menu, Long position) {
    Menu* const items = menu_of(menu);
    if (items == nullptr || position < 0 || static_cast<std::size_t>(position) >= items->size()) {
        return nullptr;
    }
    return &(*items)[static_cast<std::size_t>(position)];
}

// Whether a menu is `wanted` or leads to it.
bool MenusInMemory::opens(Long menu, Long wanted) const {
    std::set<Long> seen;
    std::vector<Long> ahead{menu};
    while (!ahead.empty()) {
        const Long handle = ahead.back();
        ahead.pop_back();
        const auto found = menus_.find(handle);
        if (handle == wanted) {
            return true;
        }
        if (found == menus_.end() || !seen.insert(handle).second) {
            continue;
        }
        for (const MenuItem& item : found->second) {
            if (opens_menu(item)) {
                ahead.push_back(item.id);
            }
        }
    }
    return false;
}

Long MenusInMemory::insert(Long menu, std::size_t position, Long flags, Long item,
                           StringView text) {
    Menu* const items = menu_of(menu);
    MenuItem made = made_item(flags, item, text);
    const bool is_wrong_popup =
        opens_menu(made) && (!menus_.contains(made.id) || opens(made.id, menu));
    if (items == nullptr || is_wrong_popup) {
        return refused;
    }
    const auto place = static_cast<std::ptrdiff_t>(std::min(position, items->size()));
    items->insert(items->begin() + place, std::move(made));
    return done;
}

void MenusInMemory::destroy(Long menu) {
    std::vector<Long> ahead{menu};
    while (!ahead.empty()) {
        const Long handle = ahead.back();
        ahead.pop_back();
        const auto found = menus_.find(handle);
        if (found == menus_.end()) {
            continue;  // destroyed before, by another item that opened it
        }
        for (const MenuItem& item : found->second) {
            if (opens_menu(item)) {
                ahead.push_back(item.id);
            }
        }
        menus_.erase(found);
        for (auto& [window, state] : windows_) {
            state.bar = state.bar == handle ? 0 : state.bar;
        }
    }
}

MenusInMemory& menus() noexcept {
    static MenusInMemory menus;
    return menus;
}

}  // namespace kvarta16::posix
