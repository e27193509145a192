// What stands in the place of operations that a program has no adapter for. They refuse as the
// platform does where it has not got them.
#pragma once

#include <kvarta16/frame/export.h>
#include <kvarta16/platform/dao.h>
#include <kvarta16/platform/file_table.h>
#include <kvarta16/platform/files.h>
#include <kvarta16/platform/find_files.h>
#include <kvarta16/platform/folder_dialog.h>
#include <kvarta16/platform/internet.h>
#include <kvarta16/platform/menus.h>
#include <kvarta16/platform/messages.h>
#include <kvarta16/platform/processes.h>
#include <kvarta16/platform/registry.h>
#include <kvarta16/platform/screen.h>
#include <kvarta16/platform/spooler.h>
#include <kvarta16/platform/system_information.h>

namespace kvarta16 {

// Every operation fails as for a missing file (53).
[[nodiscard]] KVARTA16_EXPORT Files& unavailable_files() noexcept;

// No engine is installed (429).
[[nodiscard]] KVARTA16_EXPORT dao::DBEngine& unavailable_db_engine() noexcept;

// Nothing is found, no path has a full or a short form, no time is one.
[[nodiscard]] KVARTA16_EXPORT FindFiles& unavailable_find_files() noexcept;

// No file can be opened (53); no number is open.
[[nodiscard]] KVARTA16_EXPORT FileTable& unavailable_file_table() noexcept;

// There is no program (53), no window and nothing that takes keys (5).
[[nodiscard]] KVARTA16_EXPORT Processes& unavailable_processes() noexcept;

// No message waits; the pump has nothing to run.
[[nodiscard]] KVARTA16_EXPORT Messages& unavailable_messages() noexcept;

// No version record and no system directory.
[[nodiscard]] KVARTA16_EXPORT SystemInformation& unavailable_system_information() noexcept;

// No screen: there is no pointer to change.
[[nodiscard]] KVARTA16_EXPORT Screen& unavailable_screen() noexcept;

// Nobody can be asked: a cancel.
[[nodiscard]] KVARTA16_EXPORT FolderDialogs& unavailable_folder_dialogs() noexcept;

// No session and no connection can be had (12029).
[[nodiscard]] KVARTA16_EXPORT Internet& unavailable_internet() noexcept;

// No key can be opened (5).
[[nodiscard]] KVARTA16_EXPORT Registry& unavailable_registry() noexcept;

// No window has a menu, and none can be made.
[[nodiscard]] KVARTA16_EXPORT Menus& unavailable_menus() noexcept;

// There is no printer.
[[nodiscard]] KVARTA16_EXPORT Spooler& unavailable_spooler() noexcept;

}  // namespace kvarta16
