// The folder dialog on a POSIX system.
//
//   on a display where zenity or     the dialog of that program, with the prompt as its title; of
//   kdialog is installed             two displays and programs the first of each in this order
//   on a terminal                    a question: the person types a path, Windows' or the system's
//                                    ("/home/anna"), or nothing to cancel; a path that is none
//                                    sounds the beep and is asked for again
//   elsewhere                        nobody can be asked: a cancel
//
// The dialog opens at the folder that the callback selects while it hears `initialized`, where that
// exists; the terminal shows it. The callback hears `selection_changed` once, with what was chosen.
// Where files may be chosen the terminal takes files and folders, the programs take files alone.
//
// The path of a choice is that of the drive whose folder it lies deepest in, else of drive Z:. A
// file that no Windows path leads to (one with a backslash in a name), and a path of 260 characters
// or more, is an item without a path.
//
// Item lists are numbers from 1. Their paths stay until the program ends, as callers free none.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include <kvarta16/platform/folder_dialog.h>

namespace kvarta16::posix {

class PosixFolderDialogs final : public FolderDialogs {
  public:
    [[nodiscard]] Long SHBrowseForFolder(const BROWSEINFO& info) override;
    [[nodiscard]] Long SHGetPathFromIDList(Long item_list, String& buffer) override;
    // Of the dialog's messages `set_selection` with a path is heard, while `initialized` is being
    // told; others change nothing. The result is 0.
    Long SendMessageA(Long hwnd, Long message, Long wParam, StringView text) override;
    // The terminal's bell, where a person sits at one.
    void Beep() override;

  private:
    std::mutex mutex_;
    std::map<Long, String> selections_;  // of the dialogs that are open, by their handles
    Long last_handle_ = 0;
    std::vector<String> items_;  // the paths of the item lists; "" for one without a path
};

}  // namespace kvarta16::posix
