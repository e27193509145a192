// The standard module behind CBrowseForFolders: the call of the system's folder dialog, what the
// dialog calls back, and the two routines for the texts that go in and come out.
#pragma once

#include <kvarta16/frame/value.h>
#include <kvarta16/platform/folder_dialog.h>

namespace kvarta16::BrowseForFolders {

// A directory without the backslash at its end, unless it is the root of a drive.
void normalise_directory(String& directory);

// The path of an item list; "" for an item that has none.
[[nodiscard]] String path_of(Long item_list);

// Shows the dialog and waits: the chosen path, or "" on a cancel and for an item without a path.
// `initial_directory` is where the tree opens; it is read while the dialog stands.
[[nodiscard]] String show_dialog(Long owner, StringView prompt, const String& initial_directory,
                                 Long flags);

// What the dialog calls back, on the same thread. 1 keeps the dialog open after a bad entry, all
// else is 0. The dialog is asked neither for a status line nor to validate entries, so that the
// status texts and validate_failed do not come up as it is called here. Guarded.
Long callback(Long hwnd, Long message, Long value, const String* lParam);

}  // namespace kvarta16::BrowseForFolders
