// A search for files. FindFile reads the whole list at once and closes the system's handle; then
// the object walks its own list.
//
//   CFileFind find;
//   for (Boolean more = find.FindFile(u"c:\\dane\\*.txt"); more; more = find.FindNextFile()) {
//       if (!find.IsDirectory()) { ... find.GetFileName(), find.GetLength() ... }
//   }
//
// The list is sorted by name, upper case before lower case, but for its last entry: the one that
// the system has delivered last stays last. Callers rely on that order. "." and ".." are entries
// too. After FindFile the root is empty: GetFilePath is the bare name.
//
// An object that has found nothing yet, or nothing this time, answers as for an entry with an
// empty name and zeros. Nothing is raised and nothing is shown, but for dates beyond the year 9999.
#pragma once

#include <vector>

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>
#include <kvarta16/platform/find_files.h>

namespace kvarta16 {

class KVARTA16_EXPORT CFileFind {
  public:
    CFileFind() = default;
    ~CFileFind();
    CFileFind(const CFileFind&) = delete;
    CFileFind& operator=(const CFileFind&) = delete;
    CFileFind(CFileFind&&) = delete;
    CFileFind& operator=(CFileFind&&) = delete;

    // Reads what the pattern `pstrName` matches, sorts it and stands at its first entry. "" is
    // "*.*"; a name that ends with "\" gets "*.*" behind it. False where nothing matches or the
    // folder cannot be read; a list that breaks off early is taken as it is.
    [[nodiscard]] Boolean FindFile(StringView pstrName);

    // Sorts the list, all but its last entry, by the swaps of a selection sort. The entry that was
    // moved last becomes the current one; the place in the list stays.
    void SORTUJ();

    // The next entry; false, and nothing changes, where there is none.
    [[nodiscard]] Boolean FindNextFile();

    // Gives the list's memory back. The current entry stays.
    void FindClose();

    // ---- The current entry ------------------------------------------------------------------

    // The attributes as the platform gives them, added up: 1 read-only, 2 hidden, 4 system, 16
    // directory, 32 archive, 128 normal, 256 temporary, 2048 compressed.
    [[nodiscard]] Long GetAttributes() const;

    // Whether it has the attribute of the name.
    [[nodiscard]] Boolean IsArchived() const;
    [[nodiscard]] Boolean IsNormal() const;
    [[nodiscard]] Boolean IsTemporary() const;
    [[nodiscard]] Boolean IsHidden() const;
    [[nodiscard]] Boolean IsSystem() const;
    [[nodiscard]] Boolean IsCompressed() const;
    [[nodiscard]] Boolean IsDirectory() const;
    [[nodiscard]] Boolean IsReadOnly() const;

    // Whether it is the directory "." or "..".
    [[nodiscard]] Boolean IsDots() const;

    // Whether it has one of the attributes of `dwMask`. Not if the highest bit of all is among
    // those that it has: that makes a negative number, and only one above 0 counts.
    [[nodiscard]] Boolean MatchesMask(Long dwMask) const;

    // Local time to the second; day 1 (1899-12-31) for a time that is none. Strict: 5 for a time
    // beyond the year 9999.
    [[nodiscard]] Date GetLastWriteTime() const;
    [[nodiscard]] Date GetLastAccessTime() const;
    [[nodiscard]] Date GetCreationDate() const;

    // The same local times in 100-nanosecond units since 1601, in two halves.
    [[nodiscard]] Long GetLastWriteTimeHigh() const;
    [[nodiscard]] Long GetLastWriteTimeLow() const;
    [[nodiscard]] Long GetLastAccessTimeHigh() const;
    [[nodiscard]] Long GetLastAccessTimeLow() const;
    [[nodiscard]] Long GetCreationDateHigh() const;
    [[nodiscard]] Long GetCreationDateLow() const;

    // The directory of the search; "" as soon as FindFile has returned.
    [[nodiscard]] String GetRoot() const;

    // "file://", the root and the name.
    [[nodiscard]] String GetFileURL() const;

    // The name without its extension: before its last ".", all of it if there is none.
    [[nodiscard]] String GetFileTitle() const;

    // The root and the name; the name alone as soon as FindFile has returned.
    [[nodiscard]] String GetFilePath() const;

    // The name with its extension.
    [[nodiscard]] String GetFileName() const;

    // Path and name by the short name, which is "" where the system keeps none.
    [[nodiscard]] String GetShortPath() const;
    [[nodiscard]] String GetShortName() const;

    // The lower half of the size in bytes: negative from 2 GiB on, and it begins anew at 4 GiB.
    [[nodiscard]] Long GetLength() const;

    // The size: a Long below 4 GiB, as GetLength gives it. From there on a Double, in which the
    // upper half counts 2E+32 each, far more than it stands for: callers take it as "very large".
    [[nodiscard]] Variant GetLength64() const;

  private:
    // What the platform tells of an entry, with the names trimmed. As fixed texts of 260 and 14
    // characters they are padded with blanks; here the padding is left out, and the comparison of
    // the sort puts it in.
    struct Record {
        Long dwFileAttributes = 0;
        FILETIME ftCreationTime;  // local times, as the two below
        FILETIME ftLastAccessTime;
        FILETIME ftLastWriteTime;
        Long nFileSizeHigh = 0;
        Long nFileSizeLow = 0;
        Long dwReserved0 = 0;
        Long dwReserved1 = 0;
        String cFileName;
        String cAlternateFileName;
    };

    // The first and the next entry of the scan, into the current record. False where there is none.
    [[nodiscard]] bool FindFirstEntry(StringView name);
    [[nodiscard]] bool FindNextEntry();
    void NormalizeEntry(const WIN32_FIND_DATA& data);
    void LoadEntry(std::size_t slot);
    void CloseFind();

    [[nodiscard]] Boolean has(Long attribute) const;

    Long position_ = 0;
    std::vector<Record> entries_ = std::vector<Record>(1);  // never without a slot
    Record current_;
    String strRoot_;
    String strShortRoot_;
    Long hFind_ = 0;  // 0 but while a scan runs
};

template <>
struct ClassTable<CFileFind> {
    static constexpr ClassHeader header{u"CFileFind", Instancing::Creatable,
                                        "3030B6F2-8E69-49C6-A13C-73A79BD6983E",
                                        "2417ECAA-85F5-4951-BC09-7A4AF63EC28C"};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&CFileFind::FindFile>(u"FindFile", by_value(u"pstrName")),
        method<&CFileFind::SORTUJ>(u"SORTUJ"),
        method<&CFileFind::FindNextFile>(u"FindNextFile"),
        method<&CFileFind::FindClose>(u"FindClose"),
        method<&CFileFind::GetAttributes>(u"GetAttributes"),
        method<&CFileFind::IsArchived>(u"IsArchived"),
        method<&CFileFind::IsNormal>(u"IsNormal"),
        method<&CFileFind::IsTemporary>(u"IsTemporary"),
        method<&CFileFind::IsHidden>(u"IsHidden"),
        method<&CFileFind::IsSystem>(u"IsSystem"),
        method<&CFileFind::IsCompressed>(u"IsCompressed"),
        method<&CFileFind::IsDirectory>(u"IsDirectory"),
        method<&CFileFind::IsReadOnly>(u"IsReadOnly"),
        method<&CFileFind::IsDots>(u"IsDots"),
        method<&CFileFind::MatchesMask>(u"MatchesMask", by_reference(u"dwMask")),
        method<&CFileFind::GetLastWriteTime>(u"GetLastWriteTime"),
        method<&CFileFind::GetLastAccessTime>(u"GetLastAccessTime"),
        method<&CFileFind::GetCreationDate>(u"GetCreationDate"),
        method<&CFileFind::GetLastWriteTimeHigh>(u"GetLastWriteTimeHigh"),
        method<&CFileFind::GetLastWriteTimeLow>(u"GetLastWriteTimeLow"),
        method<&CFileFind::GetLastAccessTimeHigh>(u"GetLastAccessTimeHigh"),
        method<&CFileFind::GetLastAccessTimeLow>(u"GetLastAccessTimeLow"),
        method<&CFileFind::GetCreationDateHigh>(u"GetCreationDateHigh"),
        method<&CFileFind::GetCreationDateLow>(u"GetCreationDateLow"),
        method<&CFileFind::GetRoot>(u"GetRoot"),
        method<&CFileFind::GetFileURL>(u"GetFileURL"),
        method<&CFileFind::GetFileTitle>(u"GetFileTitle"),
        method<&CFileFind::GetFilePath>(u"GetFilePath"),
        method<&CFileFind::GetFileName>(u"GetFileName"),
        method<&CFileFind::GetShortPath>(u"GetShortPath"),
        method<&CFileFind::GetShortName>(u"GetShortName"),
        method<&CFileFind::GetLength>(u"GetLength"),
        method<&CFileFind::GetLength64>(u"GetLength64"),
    });
};

}  // namespace kvarta16
