// The set of platform operations that a thread uses. The default is the operating system's where
// its adapter is linked (kvarta16_posix), with the engine that is linked (kvarta16_sqlite); a
// program without an adapter gets one made of the standard library, whose boxes nobody sees. A test
// or a host puts its own in force for a scope:
//
//   RecordingBoxes boxes;
//   Platform mine = platform();
//   mine.message_boxes = &boxes;
//   const ScopedPlatform scope(mine);
#pragma once

#include <kvarta16/frame/export.h>
#include <kvarta16/platform/clock.h>
#include <kvarta16/platform/message_box.h>
#include <kvarta16/platform/unavailable.h>

namespace kvarta16 {

// None of the pointers is ever null; what they point to outlives the Platform's use.
struct KVARTA16_EXPORT Platform {
    MessageBoxes* message_boxes = nullptr;
    Clock* clock = nullptr;
    Sleeper* sleeper = nullptr;
    Files* files = &unavailable_files();
    // Shared by all that a thread does with database files. An engine that is bound to its thread
    // makes one per thread at the first use and keeps it until the thread ends.
    dao::DBEngine* db_engine = &unavailable_db_engine();
    FindFiles* find_files = &unavailable_find_files();
    // One for the whole process, whichever set is in force.
    FileTable* file_table = &unavailable_file_table();
    Processes* processes = &unavailable_processes();
    Messages* messages = &unavailable_messages();
    SystemInformation* system_information = &unavailable_system_information();
    Screen* screen = &unavailable_screen();
    FolderDialogs* folder_dialogs = &unavailable_folder_dialogs();
    Internet* internet = &unavailable_internet();
    Registry* registry = &unavailable_registry();
    Menus* menus = &unavailable_menus();
    Spooler* spooler = &unavailable_spooler();
};

// The set in force on the calling thread.
[[nodiscard]] KVARTA16_EXPORT const Platform& platform() noexcept;

// What threads without a scope of their own use. An adapter puts its operations in before main, a
// host before its first thread uses the library; they must live to the end of the program.
[[nodiscard]] KVARTA16_EXPORT Platform& default_platform() noexcept;

// Puts another set in force on the calling thread until the scope ends.
class KVARTA16_EXPORT ScopedPlatform {
  public:
    explicit ScopedPlatform(const Platform& operations) noexcept;
    ~ScopedPlatform();
    ScopedPlatform(const ScopedPlatform&) = delete;
    ScopedPlatform& operator=(const ScopedPlatform&) = delete;
    ScopedPlatform(ScopedPlatform&&) = delete;
    ScopedPlatform& operator=(ScopedPlatform&&) = delete;

  private:
    const Platform* previous_;
};

}  // namespace kvarta16
