#include <kvarta16/files/BrowseForFolders.h>
#include <kvarta16/files/CBrowseForFolders.h>

namespace kvarta16 {
namespace {

// One flag or the other: with files the dialog is not bound to the file system.
Long flags_of(const Variant& include_files) {
    const bool is_left_out = include_files.is_missing() || IsNullValue(include_files);
    return !is_left_out && to_boolean(include_files) ? browse_flag::include_files
                                                     : browse_flag::only_folders;
}

}  // namespace

String CBrowseForFolders::BrowseForFolder(Long hWnd, StringView sPrompt, String& InDir,
                                          const Variant& InclFiles) const {
    BrowseForFolders::normalise_directory(InDir);
    String path = BrowseForFolders::show_dialog(hWnd, sPrompt, InDir, flags_of(InclFiles));
    if (!path.ends_with(u'\\')) {
        path += u'\\';
    }
    return path;
}

}  // namespace kvarta16
