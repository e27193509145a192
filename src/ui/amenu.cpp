#include <kvarta16/platform/platform.h>
#include <kvarta16/ui/amenu.h>

namespace kvarta16 {
namespace {

constexpr Long no_instance = 0;
constexpr Long own_size = 0;    // of a picture: as wide and as high as its file says
constexpr Long no_command = 0;  // the command number of every item made here
constexpr Long picture_flags = LR_LOADFROMFILE + LR_LOADTRANSPARENT + LR_LOADMAP3DCOLORS;

Menus& menus() {
    return *platform().menus;
}

Long menu_at(Long form, Long position) {
    return menus().GetSubMenu(menus().GetMenu(form), position);
}

}  // namespace

Long amenu::LoadBmp(StringView sFile) const {
    return menus().LoadImageA(no_instance, sFile, IMAGE_BITMAP, own_size, own_size, picture_flags);
}

Boolean amenu::SetMenuBmp(Long hForm, StringView bmpFile, Long idMenu,
                          const Variant& idSubMenu) const {
    const Long bitmap = LoadBmp(bmpFile);
    const Long menu = menu_at(hForm, idMenu);
    Long answer = 0;
    guarded([&] {
        answer = menus().SetMenuItemBitmaps(menu, ToLong(idSubMenu), MF_BYPOSITION, bitmap, bitmap);
    });
    return answer != 0;
}

Boolean amenu::DeleteMenu(Long hForm, Long idMenu, const Variant& idSubMenu) const {
    const Long menu = menu_at(hForm, idMenu);
    Long answer = 0;
    guarded([&] { answer = menus().RemoveMenu(menu, ToLong(idSubMenu), MF_BYPOSITION); });
    return answer != 0;
}

Boolean amenu::AddNewMenu(Long hForm, StringView sMenuName, Boolean PopUp) const {
    const Long bar = menus().GetMenu(hForm);
    Long answer = 0;
    if (PopUp) {
        const Long popup = menus().CreatePopupMenu();
        answer = menus().AppendMenuA(bar, MF_POPUP, popup, sMenuName);
    } else {
        answer = menus().AppendMenuA(bar, MF_STRING, no_command, sMenuName);
    }
    menus().DrawMenuBar(hForm);
    return answer != 0;
}

Boolean amenu::InsertNewSubMenu(Long hForm, Long idMenu, Long lPos, StringView sMenuName,
                                Boolean PopUp) const {
    const Long menu = menu_at(hForm, idMenu);
    Long flags = MF_BYPOSITION;
    Long item = no_command;
    if (sMenuName == u"-") {
        flags += MF_SEPARATOR;
    } else if (PopUp) {
        flags += MF_POPUP;
        item = menus().CreatePopupMenu();
    }
    const Long answer = menus().InsertMenuA(menu, lPos, flags, item, sMenuName);
    menus().DrawMenuBar(hForm);
    return answer != 0;
}

Boolean amenu::InsertNewMenu(Long hForm, Long idMenu, StringView sMenuName) const {
    const Long bar = menus().GetMenu(hForm);
    const Long answer = menus().InsertMenuA(bar, idMenu, MF_BYPOSITION, no_command, sMenuName);
    menus().DrawMenuBar(hForm);
    return answer != 0;
}

Boolean amenu::DelMenu(Long hForm) const {
    const Long bar = menus().GetMenu(hForm);
    const Long answer = menus().DestroyMenu(bar);
    menus().DrawMenuBar(hForm);
    return answer != 0;
}

Boolean amenu::CreateNewMenu() const {
    return menus().CreateMenu() != 0;
}

}  // namespace kvarta16
