// The platform on POSIX systems.
//
// A program that links kvarta16::posix has it as its default platform without doing anything.
#pragma once

#include <kvarta16/frame/export.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {

// Message boxes: where standard input is a terminal, and standard error or the controlling
// terminal too, a box is a question on the terminal that is asked until the answer is understood:
// a button's word or first letter in Polish or English, in any case, or Enter for the default
// button. At the end of the input, and where there is no terminal, the answer is that of
// unattended_answer(); without a terminal one line on standard error tells the text and the
// answer.
//
// Clock: the system's, in its time zone. Pauses: as long as asked for, whatever signals arrive.
// Files: posix_files.h; the paths of Windows stand for those of the system as in posix_paths.h.
// Finder: posix_find.h. Numbered file table: posix_file_table.h. System: posix_system.h.
// Registry: two text files, registry/posix_registry.h.
// Menus: in memory, menus_in_memory.h. Spooler: printers "spool:FOLDER", spool_folder.h, and beside
// them those of the print server where its adapter is linked, named_spoolers.h.
[[nodiscard]] KVARTA16_EXPORT const Platform& posix_platform() noexcept;

}  // namespace kvarta16
