#include <algorithm>
#include <span>
#include <utility>

#include <kvarta16/files/CFileFind.h>
#include <kvarta16/files/selection_sort.h>
#include <kvarta16/platform/files.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

constexpr StringView every_name = u"*.*";
constexpr Date no_date{1};

// A text of the platform's that ends with U+0000 unless it fills its place.
StringView before_zero(StringView text) {
    return text.substr(0, text.find(u'\0'));
}

String trimmed(std::span<const char16_t> place) {
    return String(trim(before_zero({place.data(), place.size()})));
}

// The directory of a name that was searched for, with a backslash at its end.
String root_of(StringView name) {
    FindFiles& find_files = *platform().find_files;
    String path;
    const Long needed = find_files.GetFullPathNameA(name, 0, path);
    path = blanks(needed);
    static_cast<void>(find_files.GetFullPathNameA(name, needed, path));
    const StringView full = before_zero(path);
    return String(full.substr(0, full.rfind(u'\\') + 1));
}

// The second call is told of no room either, so that its text stays blank and the short form is
// always the long one.
String short_root_of(const String& root) {
    FindFiles& find_files = *platform().find_files;
    String text;
    text = blanks(find_files.GetShortPathNameA(root, 0, text));
    static_cast<void>(find_files.GetShortPathNameA(root, 0, text));
    const std::size_t zero = text.find(u'\0');
    String short_root = zero == String::npos || zero == 0 ? root : text.substr(0, zero);
    if (!short_root.ends_with(u'\\')) {
        short_root += u'\\';
    }
    return short_root;
}

void to_local(FILETIME& time) {
    const FILETIME universal = time;
    static_cast<void>(platform().find_files->FileTimeToLocalFileTime(universal, time));
}

Date date_of(const FILETIME& local) {
    constexpr Double seconds_a_day = 86400;
    SYSTEMTIME parts;
    if (platform().find_files->FileTimeToSystemTime(local, parts) == 0) {
        return no_date;
    }
    const Date day = MakeDate(parts.wYear, parts.wMonth, parts.wDay);
    const int seconds = (parts.wHour * 60 + parts.wMinute) * 60 + parts.wSecond;
    return {day.days + seconds / seconds_a_day};
}

}  // namespace

CFileFind::~CFileFind() {
    CloseFind();
}

// ---- The list -------------------------------------------------------------------------------

Boolean CFileFind::FindFile(StringView pstrName) {
    FindClose();
    bool has_found = FindFirstEntry(pstrName);
    if (has_found) {
        entries_.front() = std::exchange(current_, {});
        while (FindNextEntry()) {
            entries_.push_back(std::exchange(current_, {}));
        }
    }
    SORTUJ();
    CloseFind();
    LoadEntry(0);
    return has_found;
}

void CFileFind::SORTUJ() {
    std::vector<StringView> names;
    names.reserve(entries_.size());
    for (const Record& entry : entries_) {
        names.emplace_back(entry.cFileName);
    }
    const SelectionResult result = selection_sorted(names);
    if (result.last_moved == SelectionResult::none) {
        return;
    }
    current_ = entries_[result.last_moved];
    std::vector<Record> sorted;
    sorted.reserve(entries_.size());
    for (const std::size_t slot : result.order) {
        sorted.push_back(std::move(entries_[slot]));
    }
    entries_ = std::move(sorted);
}

Boolean CFileFind::FindNextFile() {
    if (static_cast<std::size_t>(position_) + 1 >= entries_.size()) {
        return false;
    }
    ++position_;
    LoadEntry(static_cast<std::size_t>(position_));
    return true;
}

void CFileFind::FindClose() {
    entries_ = std::vector<Record>(1);
    position_ = 0;
}

bool CFileFind::FindFirstEntry(StringView name) {
    if (hFind_ != 0) {
        CloseFind();
    }
    String pattern(name);
    if (pattern.empty() || pattern.ends_with(u'\\')) {
        pattern += every_name;
    }
    WIN32_FIND_DATA data;
    hFind_ = platform().find_files->FindFirstFileA(pattern, data);
    if (hFind_ == INVALID_HANDLE_VALUE) {
        hFind_ = 0;
        return false;
    }
    NormalizeEntry(data);
    strRoot_ = root_of(pattern);
    strShortRoot_ = short_root_of(strRoot_);
    return true;
}

bool CFileFind::FindNextEntry() {
    WIN32_FIND_DATA data;
    if (hFind_ == 0 || platform().find_files->FindNextFileA(hFind_, data) == 0) {
        return false;
    }
    NormalizeEntry(data);
    return true;
}

void CFileFind::NormalizeEntry(const WIN32_FIND_DATA& data) {
    current_ = {data.dwFileAttributes,   data.ftCreationTime,
                data.ftLastAccessTime,   data.ftLastWriteTime,
                data.nFileSizeHigh,      data.nFileSizeLow,
                data.dwReserved0,        data.dwReserved1,
                trimmed(data.cFileName), trimmed(data.cAlternateFileName)};
    to_local(current_.ftCreationTime);
    to_local(current_.ftLastAccessTime);
    to_local(current_.ftLastWriteTime);
}

void CFileFind::LoadEntry(std::size_t slot) {
    current_ = entries_[slot];
}

void CFileFind::CloseFind() {
    strRoot_.clear();
    strShortRoot_.clear();
    if (hFind_ != 0) {
        platform().find_files->FindClose(hFind_);
        hFind_ = 0;
    }
}

// ---- The current entry ----------------------------------------------------------------------

Boolean CFileFind::has(Long attribute) const {
    return (current_.dwFileAttributes & attribute) != 0;
}

Long CFileFind::GetAttributes() const {
    return current_.dwFileAttributes;
}
Boolean CFileFind::IsArchived() const {
    return has(file_attribute::archive);
}
Boolean CFileFind::IsNormal() const {
    return has(file_attribute::normal);
}
Boolean CFileFind::IsTemporary() const {
    return has(file_attribute::temporary);
}
Boolean CFileFind::IsHidden() const {
    return has(file_attribute::hidden);
}
Boolean CFileFind::IsSystem() const {
    return has(file_attribute::system);
}
Boolean CFileFind::IsCompressed() const {
    return has(file_attribute::compressed);
}
Boolean CFileFind::IsDirectory() const {
    return has(file_attribute::directory);
}
Boolean CFileFind::IsReadOnly() const {
    return has(file_attribute::read_only);
}

Boolean CFileFind::IsDots() const {
    return IsDirectory() && (current_.cFileName == u"." || current_.cFileName == u"..");
}

Boolean CFileFind::MatchesMask(Long dwMask) const {
    return (current_.dwFileAttributes & dwMask) > 0;
}

Date CFileFind::GetLastWriteTime() const {
    return date_of(current_.ftLastWriteTime);
}
Date CFileFind::GetLastAccessTime() const {
    return date_of(current_.ftLastAccessTime);
}
Date CFileFind::GetCreationDate() const {
    return date_of(current_.ftCreationTime);
}

Long CFileFind::GetLastWriteTimeHigh() const {
    return current_.ftLastWriteTime.dwHighDateTime;
}
Long CFileFind::GetLastWriteTimeLow() const {
    return current_.ftLastWriteTime.dwLowDateTime;
}
Long CFileFind::GetLastAccessTimeHigh() const {
    return current_.ftLastAccessTime.dwHighDateTime;
}
Long CFileFind::GetLastAccessTimeLow() const {
    return current_.ftLastAccessTime.dwLowDateTime;
}
Long CFileFind::GetCreationDateHigh() const {
    return current_.ftCreationTime.dwHighDateTime;
}
Long CFileFind::GetCreationDateLow() const {
    return current_.ftCreationTime.dwLowDateTime;
}

String CFileFind::GetRoot() const {
    return strRoot_;
}

String CFileFind::GetFileURL() const {
    return u"file://" + GetFilePath();
}

String CFileFind::GetFileTitle() const {
    const StringView name = current_.cFileName;
    return String(trim(name.substr(0, name.rfind(u'.'))));
}

String CFileFind::GetFilePath() const {
    return String(trim(strRoot_)) + current_.cFileName;
}

String CFileFind::GetFileName() const {
    return current_.cFileName;
}

String CFileFind::GetShortPath() const {
    return String(trim(strShortRoot_)) + current_.cAlternateFileName;
}

String CFileFind::GetShortName() const {
    return current_.cAlternateFileName;
}

Long CFileFind::GetLength() const {
    return current_.nFileSizeLow;
}

Variant CFileFind::GetLength64() const {
    constexpr Double upper_half_unit = 2E+32;
    if (current_.nFileSizeHigh == 0) {
        return GetLength();
    }
    return current_.nFileSizeHigh * upper_half_unit + current_.nFileSizeLow;
}

}  // namespace kvarta16
