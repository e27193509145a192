// The numbered file table of the process on a POSIX system.
//
// An opening without sharing holds a lock of its own on the file (an open file description lock):
// for Input one that keeps others from writing, otherwise one that keeps others out. All processes
// that use this table or lock files by themselves see it; one that does neither is not kept from
// anything, nor seen. A shared opening holds no lock, but does not begin under a lock that refuses
// it; openings of this process see one another, shared ones too. A file system without locks
// refuses nobody.
//
// Symbolic links are followed to what exists; one that leads nowhere is no place for a new file
// (75). What would be written has to be a file or a character device (75). A file with the
// read-only attribute cannot be an Output (75); in Random and Binary mode a file that may only be
// read is opened for reading, and a Put fails with 75.
//
// No descriptor passes to programs that are started.
#pragma once

#include <kvarta16/platform/file_table.h>
#include <kvarta16/platform/posix/posix_descriptor.h>

namespace kvarta16::posix {

// All objects are the same table. Threads may use it at the same time, and one number from several
// threads too, one operation after the other.
class PosixFileTable final : public FileTable {
  public:
    Integer FreeFile() override;
    void Open(StringView path, Integer number, OpenMode mode, Sharing sharing) override;
    void Close(Integer number) override;
    Long LOF(Integer number) override;
    void PrintLine(Integer number, StringView text) override;
    char16_t InputCharacter(Integer number) override;
    void Seek(Integer number, Long position) override;
    // The place moves by the bytes that the file had.
    void Get(Integer number, std::span<Byte> block) override;
    // A Put that fails does not move the place; a part of it may have been written.
    void Put(Integer number, std::span<const Byte> block) override;
};

// Whether a file is open under any number.
[[nodiscard]] bool is_in_file_table(const FileIdentity& file);

}  // namespace kvarta16::posix
