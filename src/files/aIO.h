// Files, paths, programs and the keyboard break, as the suite's programs use them.
//
//   aIO io;
//   io.BaseName_ExT(u"c:\\dane\\kopia.tar.gz")            "gz"
//   io.PathStr(u"c:\\\\dane\\\\plik.txt")                 c:\dane
//   if (io.DelFile(u"c:\\dane\\stary.txt")) { ... }       it is gone, or was never there
//   while (work_is_left() && !io.Przerwij()) { ... }      until the user presses Esc
//
// Paths are Windows paths. The backslash is the only separator to WithOutDirSep and PathStr; the
// others take "/" too. Several names promise more than the members do: MakeDir makes one level,
// SyncShell waits for nothing, Spakuj_i_Skasuj packs nothing. Callers know.
//
// IsFile_open and Zapisz_do_pliku work under the fixed file number 1 of the process, so that two
// callers in one process must not overlap there. MakeDirChange moves the whole process.
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

class KVARTA16_EXPORT aIO {
  public:
    // ---- Paths ------------------------------------------------------------------------------

    // What stands before the last "\" of `a`; all of it if there is none. c:\dir\plik.txt gives
    // c:\dir, c:\ gives c:, \x gives "".
    [[nodiscard]] String WithOutDirSep(StringView a) const;

    // Strips blanks at the end of `strPathName`, then appends "\" unless "/" or "\" stands there.
    void AddDirSep(String& strPathName) const;

    // The system directory with a separator at its end; "" where the system has none.
    [[nodiscard]] String GetWindowsDir() const;

    // What stands before the first U+0000; all of it if there is none.
    [[nodiscard]] String StringFromBuffer(StringView Buffer) const;

    // ---- Folders and files ------------------------------------------------------------------

    // Makes `a` the current directory, its drive included. Where that fails it makes the folder,
    // one level, and stays where it is: who needs to be in it calls a second time. "" does
    // nothing. Guarded.
    void MakeDirChange(StringView a) const;

    // Makes the folder `a`, one level; a failure is tried once more and then forgotten. "" does
    // nothing. Guarded.
    void MakeDir(StringView a) const;

    // Deletes `a`, wildcards allowed. Tolerant: nobody hears of a failure.
    void DelFile2(StringView a) const;

    // Deletes the file `a`; true if no such file stands there afterwards, so also for a name that
    // does not exist and for a folder, which stays. Tolerant.
    [[nodiscard]] Boolean DelFile(StringView a) const;

    // Gives `FromFile` the name `ToFile`. With `DelDestination` a file of that name is deleted
    // before, and stays gone if the renaming then fails. `Silent` is read by nothing. Guarded:
    // false on any failure.
    [[nodiscard]] Boolean RenameFile(StringView FromFile, StringView ToFile,
                                     Boolean DelDestination = false, Boolean Silent = false) const;

    // Whether `SpecIn` is a file: it has attributes and is no folder, or, where the attributes
    // cannot be read, it can be opened. Guarded.
    [[nodiscard]] Boolean IsFile(StringView SpecIn) const;

    // Whether `SpecIn` can be opened for reading, under the next free number. Guarded.
    [[nodiscard]] Boolean IsFile_file(StringView SpecIn) const;

    // Whether `SpecIn` is a folder: its attributes say so, or, where they cannot be read, a file
    // can be made in it. That file is \zevotest.tmp, and it is deleted at once. Guarded.
    [[nodiscard]] Boolean IsDIR(StringView SpecIn) const;

    // ---- Parts of paths ---------------------------------------------------------------------

    // The name behind the last separator, that name without its extension, and the extension
    // without its dot. All three are "" where `sPathandFile` ends with a separator; a.tar.gz gives
    // a.tar and gz, .cfg gives "" and cfg. As SeparatePathAndFileName they ask for the current
    // directory when there is no separator, and fail if that does.
    [[nodiscard]] String BaseName(StringView sPathandFile) const;
    [[nodiscard]] String BaseName_BezExT(StringView sPathandFile) const;
    [[nodiscard]] String BaseName_ExT(StringView sPathandFile) const;

    // Splits `FullPath` at its last separator, which goes to neither part. Where there is none
    // `Path` is the current directory: a drive's colon is no separator. Where `FullPath` is empty
    // or ends with a separator, both keep what the caller has put there. Strict: only where the
    // current directory cannot be had (76), and then nothing is written.
    void SeparatePathAndFileName(StringView FullPath, String& Path, String& FileName) const;

    // Whether all of `Character` is "\" or "/".
    [[nodiscard]] Boolean IsSeparator(StringView Character) const;

    // The directory part of `a`, with doubled backslashes reduced in two passes: a run of up to
    // four becomes one, a run of five two. A network path keeps its two at the front. \x\y gives
    // "\", plik.txt stays.
    [[nodiscard]] String PathStr(StringView a) const;

    // ---- Contents ---------------------------------------------------------------------------

    // Copies `Skąd` over what stands at `Dokąd`. Guarded: false on any failure.
    [[nodiscard]] Boolean FileCopy_Fun(StringView Skąd, StringView Dokąd) const;

    // Whether `a` can be opened for reading under number 1 while nobody writes it; false also
    // while that number is open. Guarded.
    [[nodiscard]] Boolean IsFile_open(StringView a) const;

    // ---- Programs ---------------------------------------------------------------------------

    // Brings the application titled `AppToActivate` to the front and sends it the keys
    // `TextToSend`. The two delays are none: not 0, they wait for the focus before and for the
    // keys' processing after. Guarded: a failure is shown in a box.
    void DoSendKeys(StringView AppToActivate, Integer AppActivateDelay, StringView TextToSend,
                    Integer SendKeysDelay) const;

    // The family of the operating system (2 is NT); 0 where it cannot be told.
    [[nodiscard]] Long GetWinPlatform() const;

    // Starts a program, maximized with the focus or hidden, and returns while it runs; true once
    // it has been started. The other two parameters are read by nothing. Guarded: a failure is
    // shown in a box and gives false.
    [[nodiscard]] Boolean SyncShell(StringView CommandLine, Long Timeout_NIE_UZYWANE = 0,
                                    Boolean WaitForInputIdle_NIE_UZYWANE = false,
                                    Boolean Hide = false) const;

    // Shows what a result of the shell's start-a-document call means, if it is below 33, where
    // failures lie; a code without a text shows an empty box. Puts the mouse pointer back to its
    // default in any case.
    void pDisplayError_Shell(Long lResult) const;

    // Withdrawn: a box says so.
    void Spakuj_i_Skasuj(StringView Plik, Boolean Nie_czekaj_na_skasowanie) const;

    // Waits until another program has left the marker file, `Plik` with "_" behind it, looking
    // every two seconds without a limit; then deletes `Plik` and leaves the marker. Always 0.
    // Blocks the calling thread and pumps no messages.
    Long Skasuj_po_pakowaniu(StringView Plik) const;

    // ---- The rest ---------------------------------------------------------------------------

    // Writes `StrA` and a line end as the whole of the file `Plik`, in the ANSI code page, under
    // number 1; what was open there is closed. Guarded: any failure shows the same box, which
    // blames the file's size, gives false, and leaves number 1 as it then is.
    [[nodiscard]] Boolean Zapisz_do_pliku(StringView Plik, StringView StrA) const;

    // Whether the user wants to break off: takes one key that waits for this thread, and if it is
    // Esc asks "Przerwać " with `Komunikat` behind it, or with `Silent` takes it for a yes. Any
    // other key taken is lost; mouse input stays. Costs next to nothing while no input waits.
    [[nodiscard]] Boolean Przerwij(Boolean Silent = false, StringView Komunikat = {}) const;

  private:
    // Tolerant.
    void MakeDirQuiet(StringView a) const;

    // Whether \zevotest.tmp can be made in `a`. Guarded.
    [[nodiscard]] Boolean IsDirWritable(StringView a) const;
};

template <>
struct ClassTable<aIO> {
    static constexpr ClassHeader header{u"aIO", Instancing::Global,
                                        "605D0F3D-4B17-4157-BF8D-BECAB55DABD0",
                                        "F024779C-BFDC-438E-ABB1-A47E21D42416"};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&aIO::WithOutDirSep>(u"WithOutDirSep", by_reference(u"a")),
        method<&aIO::AddDirSep>(u"AddDirSep", by_reference(u"strPathName")),
        method<&aIO::GetWindowsDir>(u"GetWindowsDir"),
        method<&aIO::StringFromBuffer>(u"StringFromBuffer", by_value(u"Buffer")),
        method<&aIO::MakeDirChange>(u"MakeDirChange", by_value(u"a")),
        method<&aIO::MakeDir>(u"MakeDir", by_value(u"a")),
        method<&aIO::DelFile2>(u"DelFile2", by_value(u"a")),
        method<&aIO::DelFile>(u"DelFile", by_value(u"a")),
        method<&aIO::RenameFile>(u"RenameFile", by_value(u"FromFile"), by_value(u"ToFile"),
                                 optional(by_value(u"DelDestination")),
                                 optional(by_value(u"Silent"))),
        method<&aIO::IsFile>(u"IsFile", by_value(u"SpecIn")),
        method<&aIO::IsFile_file>(u"IsFile_file", by_value(u"SpecIn")),
        method<&aIO::IsDIR>(u"IsDIR", by_value(u"SpecIn")),
        method<&aIO::BaseName>(u"BaseName", by_value(u"sPathandFile")),
        method<&aIO::BaseName_BezExT>(u"BaseName_BezExT", by_value(u"sPathandFile")),
        method<&aIO::BaseName_ExT>(u"BaseName_ExT", by_value(u"sPathandFile")),
        method<&aIO::SeparatePathAndFileName>(u"SeparatePathAndFileName", by_reference(u"FullPath"),
                                              optional(by_reference(u"Path")),
                                              optional(by_reference(u"FileName"))),
        method<&aIO::IsSeparator>(u"IsSeparator", by_value(u"Character")),
        method<&aIO::PathStr>(u"PathStr", by_value(u"a")),
        method<&aIO::FileCopy_Fun>(u"FileCopy_Fun", by_value(u"Skąd"), by_value(u"Dokąd")),
        method<&aIO::IsFile_open>(u"IsFile_open", by_value(u"a")),
        method<&aIO::DoSendKeys>(u"DoSendKeys", by_reference(u"AppToActivate"),
                                 by_reference(u"AppActivateDelay"), by_reference(u"TextToSend"),
                                 by_reference(u"SendKeysDelay")),
        method<&aIO::GetWinPlatform>(u"GetWinPlatform"),
        method<&aIO::SyncShell>(u"SyncShell", by_reference(u"CommandLine"),
                                optional(by_reference(u"Timeout_NIE_UZYWANE")),
                                optional(by_reference(u"WaitForInputIdle_NIE_UZYWANE")),
                                optional(by_reference(u"Hide"))),
        method<&aIO::pDisplayError_Shell>(u"pDisplayError_Shell", by_value(u"lResult")),
        method<&aIO::Spakuj_i_Skasuj>(u"Spakuj_i_Skasuj", by_reference(u"Plik"),
                                      by_reference(u"Nie_czekaj_na_skasowanie")),
        method<&aIO::Skasuj_po_pakowaniu>(u"Skasuj_po_pakowaniu", by_reference(u"Plik")),
        method<&aIO::Zapisz_do_pliku>(u"Zapisz_do_pliku", by_reference(u"Plik"),
                                      by_reference(u"StrA")),
        method<&aIO::Przerwij>(u"Przerwij", optional(by_reference(u"Silent")),
                               optional(by_reference(u"Komunikat"))),
    });
};

}  // namespace kvarta16
