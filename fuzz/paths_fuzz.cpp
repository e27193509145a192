// Windows paths: the path members of aIO against their rules told once more, and the ways from a
// Windows path to a path of the system and to its full form. An input is a path, a line feed and a
// pattern of names.
#include <cstdlib>
#include <vector>

#include <kvarta16/files/aIO.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/posix/name_pattern.h>
#include <kvarta16/platform/posix/posix_paths.h>

#include "fuzz_support.h"

namespace kvarta16 {
namespace {

using fuzz::expect;
using fuzz::expect_same;
using fuzz::Outcome;
using fuzz::outcome_of;
using fuzz::show;

bool is_separator(char16_t unit) {
    return unit == u'\\' || unit == u'/';
}

// ---- The members of aIO ---------------------------------------------------------------------

// Each two backslashes one, from the left, not looking at what has been put.
String halved(const String& text) {
    String result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        result += text[i];
        i += text[i] == u'\\' && i + 1 < text.size() && text[i + 1] == u'\\' ? 1 : 0;
    }
    return result;
}

String wanted_path_str(const String& text) {
    String path = halved(halved(text));
    if (text.substr(0, 2) == u"\\\\") {
        path = u"\\" + path;
    }
    for (std::size_t i = path.size(); i > 0; --i) {
        if (path[i - 1] == u'\\') {
            path = path.substr(0, i - 1);
            break;
        }
    }
    while (path.size() >= 2 && path.substr(0, path.size() - 1) == u"\\") {
        path.pop_back();
    }
    return path;
}

struct Separated {
    String path = u"path";  // what the caller had put there
    String name = u"name";
};

Separated wanted_parts(const String& text) {
    Separated parts;
    std::size_t last = 0;
    for (std::size_t i = 1; i <= text.size(); ++i) {
        last = is_separator(text[i - 1]) ? i : last;
    }
    if (text.empty() || last == text.size()) {
        return parts;
    }
    parts.path = last == 0 ? platform().files->CurDir() : text.substr(0, last - 1);
    parts.name = text.substr(last);
    return parts;
}

void check_parts(const String& text) {
    const aIO io;
    const std::string shown = show(text);
    const Separated wanted = wanted_parts(text);
    Separated actual;
    io.SeparatePathAndFileName(text, actual.path, actual.name);
    expect_same("The path of SeparatePathAndFileName of", shown, actual.path, wanted.path);
    expect_same("The name of SeparatePathAndFileName of", shown, actual.name, wanted.name);

    const bool has_name = !text.empty() && !is_separator(text.back());
    const String name = has_name ? wanted.name : u"";
    std::size_t dot = name.size();  // where the last one stands
    for (std::size_t i = 0; i < name.size(); ++i) {
        dot = name[i] == u'.' ? i : dot;
    }
    const String extension = dot == name.size() ? String() : name.substr(dot + 1);
    expect_same("BaseName of", shown, io.BaseName(text), name);
    expect_same("BaseName_BezExT of", shown, io.BaseName_BezExT(text), name.substr(0, dot));
    expect_same("BaseName_ExT of", shown, io.BaseName_ExT(text), extension);
}

void check_members(const String& text) {
    const aIO io;
    const std::string shown = show(text);
    check_parts(text);
    expect_same("PathStr of", shown, io.PathStr(text), wanted_path_str(text));

    String before = text;
    while (!before.empty() && before.back() != u'\\') {
        before.pop_back();
    }
    if (!before.empty()) {
        before.pop_back();
    }
    expect_same("WithOutDirSep of", shown, io.WithOutDirSep(text),
                text.find(u'\\') == String::npos ? text : before);

    String with_separator = text;
    while (!with_separator.empty() && with_separator.back() == u' ') {
        with_separator.pop_back();
    }
    if (with_separator.empty() || !is_separator(with_separator.back())) {
        with_separator += u'\\';
    }
    String written = text;
    io.AddDirSep(written);
    expect_same("AddDirSep of", shown, written, with_separator);

    expect_same("StringFromBuffer of", shown, io.StringFromBuffer(text),
                String(text.begin(), std::ranges::find(text, u'\0')));
    expect_same("IsSeparator of", shown, static_cast<bool>(io.IsSeparator(text)),
                text.size() == 1 && is_separator(text[0]));
}

// ---- Paths of the system --------------------------------------------------------------------

bool is_letter(char16_t unit) {
    return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
}

std::vector<String> names_in(StringView text) {
    std::vector<String> names(1);
    for (const char16_t unit : text) {
        if (is_separator(unit)) {
            names.emplace_back();
        } else {
            names.back() += unit;
        }
    }
    return names;
}

// Where a path leads to by its text alone.
struct Place {
    char16_t letter = u'Z';
    std::vector<String> names;
    bool ends_with_separator = false;
};

Outcome<Place> wanted_place(const String& path) {
    const bool is_whole = from_utf8(to_utf8(path)) == path;  // no half of a pair
    if (path.empty() || path.find(u'\0') != String::npos || !is_whole) {
        return fuzz::failed<Place>(52);
    }
    if (path.size() >= 2 && is_separator(path[0]) && is_separator(path[1])) {
        return fuzz::failed<Place>(76);
    }
    Place place;
    StringView rest = path;
    if (path.size() >= 2 && path[1] == u':' && is_letter(path[0])) {
        place.letter = path[0];
        rest.remove_prefix(2);
    }
    const bool is_on_z = place.letter == u'Z' || place.letter == u'z';
    if (is_on_z && (rest.empty() || !is_separator(rest[0]))) {
        for (const String& name : names_in(posix::current_directory().substr(3))) {
            place.names.push_back(name);
        }
    }
    place.ends_with_separator = !rest.empty() && is_separator(rest.back());
    for (const String& name : names_in(rest)) {
        if (name == u".." && !place.names.empty()) {
            place.names.pop_back();
        } else if (!name.empty() && name != u"." && name != u"..") {
            place.names.push_back(name);
        }
    }
    std::erase(place.names, u"");
    return {place};
}

String joined(const Place& place, const String& root, char16_t separator) {
    String text = root;
    for (const String& name : place.names) {
        text += name;
        text += separator;
    }
    if (!place.names.empty() && !place.ends_with_separator) {
        text.pop_back();
    }
    return text;
}

Outcome<String> wanted_full_path(const String& path) {
    const Outcome<Place> place = wanted_place(path);
    return place.value ? Outcome<String>{joined(*place.value,
                                                String(1, place.value->letter) + u":\\", u'\\')}
                       : fuzz::failed<String>(place.failure);
}

void check_native(const String& path) {
    const std::string shown = show(path);
    const auto full = outcome_of([&] { return posix::full_path(path); });
    expect_same("full_path of", shown, full, wanted_full_path(path));
    const auto native = outcome_of([&] { return posix::native_path(path); });
    if (!full.value) {
        expect_same("The failure of native_path of", shown, native.failure, full.failure);
        return;
    }
    expect_same("full_path of the full path of", shown, posix::full_path(*full.value), *full.value);
    const Place place = *wanted_place(path).value;
    const bool has_wildcards = full.value->find_first_of(u"*?") != String::npos;
    const bool is_on_z = upper_case(place.letter) == u'Z';
    if (has_wildcards || !is_on_z) {  // there is no other drive here
        expect_same("The failure of native_path of", shown, native.failure,
                    has_wildcards ? 52 : 76);
        return;
    }
    // But for the case of names that the file system has.
    const String wanted = upper_case(joined(place, u"/", u'/'));
    expect_same("native_path of", shown, upper_case(from_utf8(native.value.value_or(""))), wanted);
}

void check_split(const String& path) {
    const posix::SplitPath split = posix::split_last_name(path);
    const std::string shown = show(path);
    const bool is_bare = split.folder == u"." && !path.starts_with(u".\\");
    expect(split.folder + split.name == path || (is_bare && split.name == path),
           "split_last_name loses nothing of", shown);
    expect(std::ranges::none_of(split.name, is_separator), "split_last_name leaves a name of",
           shown);
}

// ---- Patterns of names ----------------------------------------------------------------------

bool fits(StringView name, StringView pattern);

bool star_fits(StringView name, StringView pattern) {
    const bool up_to_last_dot = pattern.size() > 1 && pattern[1] == u'.';
    const std::size_t last_dot = name.rfind(u'.');
    for (std::size_t taken = 0; taken <= name.size(); ++taken) {
        if (up_to_last_dot && last_dot != StringView::npos && taken > last_dot) {
            return false;
        }
        if (fits(name.substr(taken), pattern.substr(1))) {
            return true;
        }
    }
    return false;
}

// A dot at the end of a pattern is still there, and stands for nothing of the name.
bool fits(StringView name, StringView pattern) {
    if (pattern.find_first_not_of(u'.') == StringView::npos) {
        return name.empty();
    }
    const StringView behind = pattern.substr(1);
    switch (pattern[0]) {
        case u'*':
            return star_fits(name, pattern);
        case u'?':
            if (name.empty() || name[0] == u'.') {
                return fits(name, behind);
            }
            return fits(name.substr(1), behind);
        case u'.':
            if (name.empty()) {
                return (behind[0] == u'*' || behind[0] == u'?') && fits(name, behind);
            }
            [[fallthrough]];
        default:
            return !name.empty() && upper_case(name[0]) == upper_case(pattern[0]) &&
                   fits(name.substr(1), behind);
    }
}

void check_pattern(const String& name, const String& pattern) {
    // What a star takes is tried place by place: the work grows with their number.
    constexpr std::size_t longest = 24;
    constexpr std::ptrdiff_t most_stars = 4;
    if (name.size() > longest || pattern.size() > longest ||
        std::ranges::count(pattern, u'*') > most_stars) {
        return;
    }
    const bool is_folder_name = name == u"." || name == u"..";
    const bool wanted = pattern == u"*" || pattern == u"*.*" ||
                        fits(is_folder_name ? StringView() : StringView(name), pattern);
    expect_same("The pattern " + show(pattern) + " for", show(name),
                posix::NamePattern(pattern).matches(name), wanted);
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvarta16;
    constexpr std::size_t longest = 400;
    // The drives of whoever runs this are not looked at.
    static const int is_set = ::setenv("KVARTA16_DRIVES", "/nonexistent", 1);
    fuzz::expect(is_set == 0, "The environment takes", "KVARTA16_DRIVES");
    fuzz::Input input(data, std::min(size, longest));
    const String path = input.line_as_text();
    const String pattern = input.rest_as_text();
    check_members(path);
    check_native(path);
    check_split(path);
    check_pattern(path, pattern);
    return 0;
}
