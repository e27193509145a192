// The numbered file table of the process: files that are open under a number of the caller's. It
// is one for all threads and all classes.
#pragma once

#include <span>

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>
#include <kvarta16/platform/files.h>

namespace kvarta16 {

enum class OpenMode : std::uint8_t {
    Input,       // text to be read; the file must exist
    Output,      // text to be written; a new empty file in the place of an old one
    Random,      // records to be read and written; made if missing
    Binary,      // bytes to be read and written at any place; made if missing
    BinaryRead,  // bytes to be read at any place; the file must exist
};

// Whether an opening leaves the file as it is.
constexpr bool only_reads(OpenMode mode) {
    return mode == OpenMode::Input || mode == OpenMode::BinaryRead;
}

enum class Sharing : std::uint8_t {
    Default,  // nobody may write while it is read, nor open it while it is written
    Shared,   // anybody may do anything
};

// A failure carries a number of `error` in files.h. A number that is not open is 52, an operation
// that the mode does not allow is 54.
class KVARTA16_EXPORT FileTable {
  public:
    virtual ~FileTable() = default;

    // The lowest number from 1 up that is not open. Fails: 67 when all 255 are.
    [[nodiscard]] virtual Integer FreeFile() = 0;

    // Opens a file under a number from 1 to 511. Fails: 52 for another number, 55 for a number
    // that is open, and for Output where this process has the file open under any number; 53 or 76
    // where the file or its folder does not exist, 75 where the system refuses, a folder included,
    // 70 where another opening, of this or another process, has it for itself or this one wants it
    // for itself and cannot have it; 67 when the system has no more descriptors. Nothing is open
    // then, and no file has been changed.
    virtual void Open(StringView path, Integer number, OpenMode mode, Sharing sharing) = 0;

    // Writes what is left and closes. Nothing for a number that is not open. Fails: 61 or 57 where
    // what is left cannot be written; the number is closed all the same.
    virtual void Close(Integer number) = 0;

    // The length in bytes, what has been written and not stored yet included; above 2^31 - 1 it
    // wraps as the platform's does.
    [[nodiscard]] virtual Long LOF(Integer number) = 0;

    // The text in the ANSI code page and CR LF, for Output.
    virtual void PrintLine(Integer number, StringView text) = 0;

    // One character of an Input file by the ANSI code page: any byte, line ends and the
    // end-of-file mark included. Fails: 62 past the end.
    [[nodiscard]] virtual char16_t InputCharacter(Integer number) = 0;

    // The place of the next Get or Put of a binary file, 1 for the first byte. Fails: 5 below 1.
    virtual void Seek(Integer number, Long position) = 0;

    // Reads on in a binary file. Past the end the bytes of `block` that the file has not got stay
    // as they are, and nothing fails.
    virtual void Get(Integer number, std::span<Byte> block) = 0;

    // Writes on in a binary file. Fails: 75 where it may only be read, 61 when the disk is full, 57
    // otherwise.
    virtual void Put(Integer number, std::span<const Byte> block) = 0;
};

}  // namespace kvarta16
