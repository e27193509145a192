// The menu bar of a program's window, changed while the program runs.
//
//   amenu menus;
//   menus.AddNewMenu(form, u"Narzędzia", true);            // at the end of the bar, with a popup
//   menus.InsertNewSubMenu(form, 3, 0, u"Kalkulator");     // its first item
//   menus.SetMenuBmp(form, u"Z:\\ikony\\kalk.bmp", 3, 0);  // a picture before it
//
// A window is named by its handle, a menu by its position in the bar, an item by its position in
// its menu, all from 0. No member has anything but the platform's own calls in it: what the
// platform says of them comes back, true for any answer but 0, and a wrong handle or position is
// answered by the platform. There is no state.
//
// No failure reaches the caller. The one thing that can fail is `idSubMenu`, a Variant that is
// taken by ToLong when the calls before its own have been made: the item is left alone then and the
// result is false.
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

class KVARTA16_EXPORT amenu {
  public:
    // A bitmap from a file, its colours made those of the screen and its first pixel's colour
    // transparent: its handle, 0 if the file is none. The handle stays until the program ends.
    [[nodiscard]] Long LoadBmp(StringView sFile) const;

    // Puts the picture of a file before the item `idSubMenu` of the menu `idMenu`, in both of the
    // item's states. A file that cannot be loaded takes the item's picture away, and the result is
    // still that of the call. The bar is not drawn anew. Guarded.
    Boolean SetMenuBmp(Long hForm, StringView bmpFile, Long idMenu = 0,
                       const Variant& idSubMenu = Long{0}) const;

    // Takes the item `idSubMenu` out of the menu `idMenu`. In spite of the name a popup that hangs
    // on it is not destroyed. The bar is not drawn anew. Guarded.
    Boolean DeleteMenu(Long hForm, Long idMenu = 0, const Variant& idSubMenu = Long{0}) const;

    // Puts a menu at the end of the bar and draws the bar anew: one that opens a new popup, or an
    // item with the command number 0.
    Boolean AddNewMenu(Long hForm, StringView sMenuName, Boolean PopUp = {}) const;

    // Puts an item into the menu `idMenu` before its position `lPos` and draws the bar anew: a
    // separator if the text is exactly "-", whatever `PopUp` says; else one that opens a new popup,
    // or an item with the command number 0.
    Boolean InsertNewSubMenu(Long hForm, Long idMenu, Long lPos, StringView sMenuName,
                             Boolean PopUp = {}) const;

    // Puts an item with the command number 0 into the bar itself, before the position `idMenu`, and
    // draws the bar anew.
    Boolean InsertNewMenu(Long hForm, Long idMenu, StringView sMenuName) const;

    // Destroys the whole bar, and draws what is there then anew also where there was none.
    Boolean DelMenu(Long hForm) const;

    // Whether a menu can be made. The menu itself is dropped: nothing ever shows or frees it.
    [[nodiscard]] Boolean CreateNewMenu() const;
};

template <>
struct ClassTable<amenu> {
    static constexpr ClassHeader header{u"amenu", Instancing::Global,
                                        "67ECFA56-A11A-4E2D-AB52-E783D202F467",
                                        "FFA00AA7-8A5A-4B13-A4D1-7CC6E4BF57FE"};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&amenu::LoadBmp>(u"LoadBmp", by_reference(u"sFile")),
        method<&amenu::SetMenuBmp>(u"SetMenuBmp", by_reference(u"hForm"), by_reference(u"bmpFile"),
                                   optional(by_reference(u"idMenu")),
                                   optional(by_reference(u"idSubMenu"), Long{0})),
        method<&amenu::DeleteMenu>(u"DeleteMenu", by_reference(u"hForm"),
                                   optional(by_reference(u"idMenu")),
                                   optional(by_reference(u"idSubMenu"), Long{0})),
        method<&amenu::AddNewMenu>(u"AddNewMenu", by_reference(u"hForm"),
                                   by_reference(u"sMenuName"), optional(by_reference(u"PopUp"))),
        method<&amenu::InsertNewSubMenu>(
            u"InsertNewSubMenu", by_reference(u"hForm"), by_reference(u"idMenu"),
            by_reference(u"lPos"), by_reference(u"sMenuName"), optional(by_reference(u"PopUp"))),
        method<&amenu::InsertNewMenu>(u"InsertNewMenu", by_reference(u"hForm"),
                                      by_reference(u"idMenu"), by_reference(u"sMenuName")),
        method<&amenu::DelMenu>(u"DelMenu", by_reference(u"hForm")),
        method<&amenu::CreateNewMenu>(u"CreateNewMenu"),
    });
};

}  // namespace kvarta16
