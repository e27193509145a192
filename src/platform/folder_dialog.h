// The dialog of the platform that lets a person choose a folder.
#pragma once

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

// What the dialog calls back: its handle, the message, a value (an item list for
// BFFM_SELCHANGED), and the record's lParam.
using BrowseCallback = Long (*)(Long hwnd, Long message, Long value, const String* lParam);

struct BROWSEINFO {
    Long hwndOwner = 0;
    Long pidlRoot = 0;  // 0: the tree starts at the desktop
    String lpszTitle;   // the prompt
    Long ulFlags = 0;
    BrowseCallback lpfn = nullptr;
    const String* lParam = nullptr;  // handed to the callback
    Long iImage = 0;
};

namespace browse_flag {
inline constexpr Long only_folders = 1;       // BIF_RETURNONLYFSDIRS
inline constexpr Long include_files = 16384;  // BIF_BROWSEINCLUDEFILES
}  // namespace browse_flag

namespace browse_message {
inline constexpr Long initialized = 1;         // BFFM_INITIALIZED
inline constexpr Long selection_changed = 2;   // BFFM_SELCHANGED
inline constexpr Long validate_failed = 3;     // BFFM_VALIDATEFAILEDA
inline constexpr Long set_status_text = 1124;  // BFFM_SETSTATUSTEXTA
inline constexpr Long set_selection = 1126;    // BFFM_SETSELECTIONA
}  // namespace browse_message

// None of these raises a failure.
class KVARTA16_EXPORT FolderDialogs {
  public:
    virtual ~FolderDialogs() = default;

    // Shows the dialog and waits for the choice, on the calling thread; the callback is called on
    // it too, at least with `initialized`. An item list, which stays until the program ends, or 0
    // on a cancel and where nobody can be asked.
    [[nodiscard]] virtual Long SHBrowseForFolder(const BROWSEINFO& info) = 0;

    // The path of an item list, with an ending zero over the beginning of `buffer`, whose length is
    // 260. 0 for an item that has no path and for a list that is none.
    [[nodiscard]] virtual Long SHGetPathFromIDList(Long item_list, String& buffer) = 0;

    // A message to the dialog that calls back.
    virtual Long SendMessageA(Long hwnd, Long message, Long wParam, StringView text) = 0;

    // The beep of the system.
    virtual void Beep() = 0;
};

}  // namespace kvarta16
