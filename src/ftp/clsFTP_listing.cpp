// The listing of clsFTP: how it is read, and its entries.
#include <kvarta16/frame/text.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/ftp/clsFTP.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

template <class T>
const T& entry(const std::vector<T>& entries, Long I) {
    if (I < 1 || static_cast<std::size_t>(I) > entries.size()) {
        fail(error::subscript);
    }
    return entries[static_cast<std::size_t>(I) - 1];
}

String name_of(const WIN32_FIND_DATA& data) {
    const StringView name(data.cFileName.data(), data.cFileName.size());
    return String(name.substr(0, name.find(u'\0')));
}

// The high half counts 256 here. Callers have always got the sizes so; below 4 GB it is 0.
Long size_of(const WIN32_FIND_DATA& data) {
    return wrap32(std::int64_t{data.nFileSizeHigh} * 256 + data.nFileSizeLow);
}

// The halves of a file time added up and taken as days. Fails: 6 for a sum that is no Date.
Date days_of_halves(const FILETIME& time) {
    return ToDate(wrap32(std::int64_t{time.dwLowDateTime} + time.dwHighDateTime));
}

}  // namespace

Boolean clsFTP::GetMatchingFiles(const Variant& sFilter, Boolean bReturnDirectories) {
    listing_.names.clear();
    lMatching = 0;
    try {
        return list_matching(ToText(sFilter), bReturnDirectories);
    } catch (const Failure& failure) {  // guarded: recorded, and the search stays open
        RecordFailure(failure);
        return false;
    }
}

Boolean clsFTP::list_matching(StringView filter, Boolean wants_directories) {
    Internet& internet_calls = *platform().internet;
    WIN32_FIND_DATA data;
    const Long find =
        internet_calls.FtpFindFirstFileA(hFTP, filter, data, internet::flag_reload, 0);
    if (find != 0) {
        do {
            const Boolean is_directory = (data.dwFileAttributes & file_attribute::directory) != 0;
            if (is_directory == wants_directories) {
                add_entry(data);
            }
        } while (internet_calls.InternetFindNextFileA(find, data) != 0);
    }
    internet_calls.InternetCloseHandle(find);
    return find != 0;
}

void clsFTP::add_entry(const WIN32_FIND_DATA& data) {
    ++lMatching;
    if (lMatching == 1) {
        listing_ = {};
    }
    // All five have the entry from here on, also where one of its times fails.
    listing_.names.emplace_back();
    listing_.sizes.push_back(0);
    listing_.last_accesses.emplace_back();
    listing_.creations.emplace_back();
    listing_.last_writes.emplace_back();

    listing_.names.back() = name_of(data);
    listing_.sizes.back() = size_of(data);
    listing_.last_accesses.back() = days_of_halves(data.ftLastAccessTime);
    listing_.creations.back() = days_of_halves(data.ftCreationTime);
    listing_.last_writes.back() = FileTimeToLocalDate(data.ftLastWriteTime);
}

Date clsFTP::FileTimeToLocalDate(const FILETIME& time) {
    constexpr Double milliseconds_of_day = 86400000;
    constexpr Double days_from_1601_to_1899 = 109205;
    FILETIME local;
    if (platform().find_files->FileTimeToLocalFileTime(time, local) == 0) {
        // The one reason for which the system refuses a time.
        Long number = internet_error::invalid_parameter;
        StoreLastError(number);
        return {};
    }
    // Read as an amount the count of 100 nanoseconds is one of milliseconds.
    const Currency milliseconds =
        Currency::raw(std::int64_t{local.dwHighDateTime} * (std::int64_t{1} << 32) +
                      static_cast<std::uint32_t>(local.dwLowDateTime));
    const Double days = to_double(milliseconds) / milliseconds_of_day - days_from_1601_to_1899;
    return ToDate(days);
}

Long clsFTP::listed_size(StringView name) const {
    const String wanted = upper_case(name);
    for (Long i = 1; i <= lMatching; ++i) {
        if (upper_case(entry(listing_.names, i)) == wanted) {
            return entry(listing_.sizes, i);
        }
    }
    return 0;
}

String clsFTP::Nazwa_pliku(Long I) const {
    return entry(listing_.names, I);
}

Long clsFTP::Rozmiar_pliku(Long I) const {
    return entry(listing_.sizes, I);
}

Date clsFTP::Data_pliku(Long I) const {
    return entry(listing_.last_accesses, I);
}

Date clsFTP::CzasCreate_pliku(Long I) const {
    return entry(listing_.creations, I);
}

Date clsFTP::CzasLastWrite_pliku(Long I) const {
    return entry(listing_.last_writes, I);
}

}  // namespace kvarta16
