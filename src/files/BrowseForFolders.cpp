#include <kvarta16/files/BrowseForFolders.h>
#include <kvarta16/frame/ansi.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16::BrowseForFolders {
namespace {

constexpr Long path_length = 260;  // of the platform's buffers for paths

}  // namespace

void normalise_directory(String& directory) {
    if (right_part(directory, 2) != u":\\" && directory.ends_with(u'\\')) {
        directory.pop_back();
    }
}

String path_of(Long item_list) {
    String buffer = blanks(path_length);
    if (platform().folder_dialogs->SHGetPathFromIDList(item_list, buffer) == 0) {
        return {};
    }
    return buffer.substr(0, buffer.find(u'\0'));
}

String show_dialog(Long owner, StringView prompt, const String& initial_directory, Long flags) {
    BROWSEINFO info;
    info.hwndOwner = owner;
    info.lpszTitle = from_ansi(to_ansi(prompt));
    info.ulFlags = flags;
    info.lpfn = &callback;
    info.lParam = initial_directory.empty() ? nullptr : &initial_directory;
    const Long item_list = platform().folder_dialogs->SHBrowseForFolder(info);
    return item_list == 0 ? String() : path_of(item_list);
}

Long callback(Long hwnd, Long message, Long value, const String* lParam) {
    FolderDialogs& dialogs = *platform().folder_dialogs;
    Long result = 0;
    String text = blanks(path_length);
    guarded([&] {
        switch (message) {
            case browse_message::initialized:
                if (lParam != nullptr) {
                    text = *lParam;
                }
                // Without a directory the blanks go out, which select nothing.
                dialogs.SendMessageA(hwnd, browse_message::set_selection, 1, text);
                break;
            case browse_message::selection_changed:
                dialogs.SendMessageA(hwnd, browse_message::set_status_text, 0, path_of(value));
                break;
            case browse_message::validate_failed:
                dialogs.Beep();
                dialogs.SendMessageA(hwnd, browse_message::set_status_text, 0, u"Bad Directory");
                result = 1;
                break;
            default:
                break;
        }
    });
    return result;
}

}  // namespace kvarta16::BrowseForFolders
