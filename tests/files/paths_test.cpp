// The members that cut and join paths: known cases, and every short text beside a second way of
// computing.
#include "files_support.h"

namespace kvarta16::files_tests {
namespace {

String with_separator(String path) {
    io().AddDirSep(path);
    return path;
}

// What is left in the two variables that come in as "P" and "F".
std::string parts_of(StringView full) {
    String path = u"P";
    String file_name = u"F";
    io().SeparatePathAndFileName(full, path, file_name);
    return show(path) + " " + show(file_name);
}

// ---- Known cases ----------------------------------------------------------------------------

struct PathCase {
    StringView path;
    StringView expected;
};

TEST(Paths, WithOutDirSep) {
    constexpr PathCase cases[] = {
        {u"c:\\dir\\plik.txt", u"c:\\dir"},
        {u"c:\\", u"c:"},
        {u"\\x", u""},
        {u"\\", u""},
        {u"", u""},
        {u"plik", u"plik"},
        {u"c:/dir/plik", u"c:/dir/plik"},
        {u"a\\b/c", u"a"},
        {u"c:\\dir\\", u"c:\\dir"},
    };
    for (const PathCase& test : cases) {
        EXPECT_EQ(show(io().WithOutDirSep(test.path)), show(test.expected)) << show(test.path);
    }
}

TEST(Paths, AddDirSep) {
    constexpr PathCase cases[] = {
        {u"c:\\dir  ", u"c:\\dir\\"},
        {u"c:/dir/", u"c:/dir/"},
        {u"c:\\dir\\", u"c:\\dir\\"},
        {u"", u"\\"},
        {u"   ", u"\\"},
        {u"c:\\dir\\  ", u"c:\\dir\\"},
        {u"  x", u"  x\\"},
        {u"x\t", u"x\t\\"},
    };
    for (const PathCase& test : cases) {
        EXPECT_EQ(show(with_separator(String(test.path))), show(test.expected)) << show(test.path);
    }
}

TEST(Paths, StringFromBuffer) {
    using namespace std::string_view_literals;
    EXPECT_EQ(show(io().StringFromBuffer(u"ab\0cd"sv)), show(u"ab"));
    EXPECT_EQ(show(io().StringFromBuffer(u"ab\0\0"sv)), show(u"ab"));
    EXPECT_EQ(show(io().StringFromBuffer(u"\0ab"sv)), show(u""));
    EXPECT_EQ(show(io().StringFromBuffer(u"ab  ")), show(u"ab  "));
    EXPECT_EQ(show(io().StringFromBuffer(u"")), show(u""));
}

TEST(Paths, BaseNames) {
    struct Case {
        StringView path;
        StringView name;
        StringView title;
        StringView extension;
    };
    constexpr Case cases[] = {
        {u"c:\\dir\\a.tar.gz", u"a.tar.gz", u"a.tar", u"gz"},
        {u"c:/dir/.cfg", u".cfg", u"", u"cfg"},
        {u"c:\\dir.x\\plik", u"plik", u"plik", u""},
        {u"c:\\dir\\", u"", u"", u""},
        {u"", u"", u"", u""},
        {u"plik.", u"plik.", u"plik", u""},
        {u"c:x.txt", u"c:x.txt", u"c:x", u"txt"},
        {u"c:\\dir/x.txt", u"x.txt", u"x", u"txt"},
    };
    const FakePlatform fake;
    for (const Case& test : cases) {
        EXPECT_EQ(show(io().BaseName(test.path)), show(test.name)) << show(test.path);
        EXPECT_EQ(show(io().BaseName_BezExT(test.path)), show(test.title)) << show(test.path);
        EXPECT_EQ(show(io().BaseName_ExT(test.path)), show(test.extension)) << show(test.path);
    }
}

TEST(Paths, SeparatePathAndFileName) {
    FakePlatform fake;
    fake.disk.set_current_directory(u"D:\\tu");
    EXPECT_EQ(parts_of(u"c:\\x.txt"), R"("c:" "x.txt")");
    EXPECT_EQ(parts_of(u"\\x.txt"), R"("" "x.txt")");
    EXPECT_EQ(parts_of(u"c:/dir/x.txt"), R"("c:/dir" "x.txt")");
    EXPECT_EQ(parts_of(u"plik.txt"), R"("D:\tu" "plik.txt")");
    EXPECT_EQ(parts_of(u"c:x.txt"), R"("D:\tu" "c:x.txt")");
    // Nothing is written.
    EXPECT_EQ(parts_of(u""), R"("P" "F")");
    EXPECT_EQ(parts_of(u"c:\\dir\\"), R"("P" "F")");
    EXPECT_EQ(parts_of(u"c:\\dir/"), R"("P" "F")");
    EXPECT_EQ(parts_of(u"\\"), R"("P" "F")");
    EXPECT_EQ(fake.disk.calls("CurDir"), 2U);
}

TEST(Paths, OneVariableCanBeWholeAndPart) {
    String whole = u"c:\\dir\\x.txt";
    String other;
    io().SeparatePathAndFileName(whole, whole, other);
    EXPECT_EQ(show(whole), show(u"c:\\dir"));
    EXPECT_EQ(show(other), show(u"x.txt"));
    whole = u"c:\\dir\\x.txt";
    io().SeparatePathAndFileName(whole, other, whole);
    EXPECT_EQ(show(other), show(u"c:\\dir"));
    EXPECT_EQ(show(whole), show(u"x.txt"));
}

TEST(Paths, CurrentDirectoryThatCannotBeHadIsAFailure) {
    const FaultyPlatform host({{"CurDir", 1, FaultSpan::FromThenOn}});
    String path = u"P";
    String file_name = u"F";
    for (const auto& call : std::initializer_list<std::function<void()>>{
             [&] { io().SeparatePathAndFileName(u"x.txt", path, file_name); },
             [&] { static_cast<void>(io().BaseName(u"x.txt")); },
             [&] { static_cast<void>(io().BaseName_BezExT(u"x.txt")); },
             [&] { static_cast<void>(io().BaseName_ExT(u"x.txt")); }}) {
        try {
            call();
            ADD_FAILURE() << "no failure";
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.number(), fault_number);
        }
    }
    EXPECT_EQ(show(path) + show(file_name), R"("P""F")");
    EXPECT_EQ(show(io().BaseName(u"\\x.txt")), show(u"x.txt"));
}

TEST(Paths, IsSeparator) {
    for (const StringView yes : {u"\\", u"/"}) {
        EXPECT_EQ(io().IsSeparator(yes).raw, -1) << show(yes);
    }
    for (const StringView no : {u"", u"\\\\", u"/\\", u"a", u":", u" \\", u"\\ "}) {
        EXPECT_EQ(io().IsSeparator(no).raw, 0) << show(no);
    }
}

TEST(Paths, PathStr) {
    constexpr PathCase cases[] = {
        {u"c:\\\\dir\\\\plik.txt", u"c:\\dir"},
        {u"\\\\serwer\\udzial\\plik.txt", u"\\\\serwer\\udzial"},
        {u"c:\\dir\\", u"c:\\dir"},
        {u"plik.txt", u"plik.txt"},
        {u"\\x\\y", u"\\"},
        {u"", u""},
        {u"c:/dir/plik", u"c:/dir/plik"},
        {u"c:\\\\\\\\x\\y", u"c:\\x"},      // four make one
        {u"c:\\\\\\\\\\x\\y", u"c:\\\\x"},  // five make two
        {u"\\xy\\z", u"\\xy"},
        {u"\\x", u""},
        {u"\\\\x", u"\\"},
    };
    for (const PathCase& test : cases) {
        EXPECT_EQ(show(io().PathStr(test.path)), show(test.expected)) << show(test.path);
    }
}

// ---- Every short text -----------------------------------------------------------------------

bool is_any_separator(char16_t unit) {
    return unit == u'\\' || unit == u'/';
}

// The pieces between the marks; one more than there are marks.
std::vector<String> pieces_of(StringView text, char16_t mark) {
    std::vector<String> pieces(1);
    for (const char16_t unit : text) {
        if (unit == mark) {
            pieces.emplace_back();
        } else {
            pieces.back() += unit;
        }
    }
    return pieces;
}

String joined(const std::vector<String>& pieces, std::size_t count, char16_t mark) {
    String text;
    for (std::size_t i = 0; i < count; ++i) {
        text += i == 0 ? String() : String(1, mark);
        text += pieces[i];
    }
    return text;
}

// All pieces but the last; the text itself if it has but one.
String without_last_piece(StringView text, char16_t mark) {
    const std::vector<String> pieces = pieces_of(text, mark);
    return joined(pieces, pieces.size() == 1 ? 1 : pieces.size() - 1, mark);
}

String added_by_hand(const String& text) {
    std::size_t end = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        end = text[i] == u' ' ? end : i + 1;
    }
    const String kept(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end));
    return end > 0 && is_any_separator(kept[end - 1]) ? kept : kept + u"\\";
}

// Forward, with the name begun anew at each separator.
std::string parts_by_hand(const String& full, const String& current) {
    String name;
    bool has_separator = false;
    for (const char16_t unit : full) {
        if (is_any_separator(unit)) {
            has_separator = true;
            name.clear();
        } else {
            name += unit;
        }
    }
    if (name.empty()) {
        return R"("P" "F")";
    }
    const std::size_t kept = full.size() - name.size();
    return show(has_separator ? full.substr(0, kept - 1) : current) + " " + show(name);
}

// By the lengths of the runs of backslashes: each of the two passes halves a run and rounds up.
String path_by_runs(const String& text) {
    const bool is_network = text.size() >= 2 && text[0] == u'\\' && text[1] == u'\\';
    String path;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t run = 0;
        while (i + run < text.size() && text[i + run] == u'\\') {
            ++run;
        }
        if (run == 0) {
            path += text[i++];
        } else {
            path += String((run + 3) / 4, u'\\');
            i += run;
        }
    }
    path = is_network ? u"\\" + path : path;
    path = without_last_piece(path, u'\\');
    return path.size() == 2 && path[0] == u'\\' ? u"\\" : path;
}

TEST(Paths, EveryShortTextTheOtherWayToo) {
    FakePlatform fake;
    const String current = u"D:\\tu";
    fake.disk.set_current_directory(current);
    int visited = 0;
    for_all_texts({u"a", u".", u"\\", u"/", u":", u" "}, 6, [&](const String& text) {
        ++visited;
        ASSERT_EQ(io().WithOutDirSep(text), without_last_piece(text, u'\\')) << show(text);
        ASSERT_EQ(with_separator(text), added_by_hand(text)) << show(text);
        ASSERT_EQ(parts_of(text), parts_by_hand(text, current)) << show(text);
        ASSERT_EQ(io().PathStr(text), path_by_runs(text)) << show(text);
        const String name = pieces_of(pieces_of(text, u'\\').back(), u'/').back();
        const std::vector<String> dotted = pieces_of(name, u'.');
        ASSERT_EQ(io().BaseName(text), name) << show(text);
        ASSERT_EQ(io().BaseName_BezExT(text), without_last_piece(name, u'.')) << show(text);
        ASSERT_EQ(io().BaseName_ExT(text), dotted.size() == 1 ? String() : dotted.back())
            << show(text);
        fake.disk.log.clear();
    });
    EXPECT_EQ(visited, 1 + 6 + 36 + 216 + 1296 + 7776 + 46656);
}

// ---- The system directory -------------------------------------------------------------------

TEST(Paths, GetWindowsDir) {
    FakePlatform fake;
    EXPECT_EQ(show(io().GetWindowsDir()), show(u""));
    fake.system_information.windows_directory = u"C:\\WINDOWS";
    EXPECT_EQ(show(io().GetWindowsDir()), show(u"C:\\WINDOWS\\"));
    fake.system_information.windows_directory = u"C:\\";
    EXPECT_EQ(show(io().GetWindowsDir()), show(u"C:\\"));
    EXPECT_EQ(fake.system_information.asked_lengths, std::vector<Long>(3, 255));
    EXPECT_EQ(fake.system_information.asked_buffers, std::vector<String>(3, String(255, u' ')));
    // One that does not fit leaves the buffer blank.
    fake.system_information.windows_directory = String(255, u'W');
    EXPECT_EQ(show(io().GetWindowsDir()), show(u"\\"));
    fake.system_information.windows_directory = String(254, u'W');
    EXPECT_EQ(show(io().GetWindowsDir()), show(String(254, u'W') + u"\\"));
}

TEST(Paths, GetWindowsDirThatFails) {
    FaultyPlatform host({{"GetWindowsDirectoryA", 1, FaultSpan::Once}});
    host.fake.system_information.windows_directory = u"C:\\WINDOWS";
    EXPECT_EQ(show(io().GetWindowsDir()), show(u""));
}

}  // namespace
}  // namespace kvarta16::files_tests
