// The numbered file table on real files.
#include <array>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <platform/posix_fixture.h>
#include <support/sanitized.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/file_table.h>
#include <kvarta16/platform/posix/posix_platform.h>

namespace kvarta16 {
namespace {

namespace fs = std::filesystem;
using enum OpenMode;
using testing_support::as_another_user;
using testing_support::caught;
using testing_support::file_bytes;
using testing_support::in_another_process;
using testing_support::is_sanitized;
using testing_support::open_descriptors;
using testing_support::write_file;

constexpr StringView firma = u"C:\\Dane\\firma.mdb";

class PosixTable : public testing_support::PosixDrive {
  protected:
    ~PosixTable() override {
        for (Integer number = 1; number <= 511; ++number) {
            static_cast<void>(caught([&] { table.Close(number); }));
        }
    }
    [[nodiscard]] Long of_open(StringView path, Integer number, OpenMode mode,
                               Sharing sharing = Sharing::Default) {
        return caught([&] { table.Open(path, number, mode, sharing); }).number;
    }
    [[nodiscard]] Long of_close(Integer number) {
        return caught([&] { table.Close(number); }).number;
    }
    [[nodiscard]] Long of_put(Integer number, std::string_view bytes) {
        return caught([&] {
                   table.Put(number, {reinterpret_cast<const Byte*>(bytes.data()), bytes.size()});
               })
            .number;
    }
    [[nodiscard]] std::string got(Integer number, std::string block) {
        table.Get(number, {reinterpret_cast<Byte*>(block.data()), block.size()});
        return block;
    }
    [[nodiscard]] std::string read_all(Integer number) {
        String text;
        while (caught([&] { text += table.InputCharacter(number); }).number == 0) {
        }
        return to_utf8(text);
    }
    FileTable& table = *posix_platform().file_table;
    const std::string native = c + "/Dane/firma.mdb";
};

// ---- Numbers --------------------------------------------------------------------------------

TEST_F(PosixTable, FreeNumbers) {
    EXPECT_EQ(table.FreeFile(), 1);
    EXPECT_EQ(table.FreeFile(), 1);  // until it is opened
    EXPECT_EQ(of_open(firma, 1, Input), 0);
    EXPECT_EQ(of_open(firma, 3, Input), 0);
    EXPECT_EQ(table.FreeFile(), 2);
    EXPECT_EQ(of_close(1), 0);
    EXPECT_EQ(table.FreeFile(), 1);
    for (Integer number = 1; number <= 255; ++number) {
        static_cast<void>(of_open(firma, number, Input));
    }
    const auto full = caught([&] { static_cast<void>(table.FreeFile()); });
    EXPECT_EQ(full.number, error::too_many_files);
    EXPECT_EQ(full.text, "Too many files");
    EXPECT_EQ(of_open(firma, 256, Input), 0);
    EXPECT_EQ(of_open(firma, 511, Input), 0);
    EXPECT_EQ(of_close(255), 0);
    EXPECT_EQ(table.FreeFile(), 255);
}

TEST_F(PosixTable, NumbersThatAreNone) {
    for (const Integer number : {Integer{0}, Integer{-1}, Integer{512}, Integer{32767}}) {
        EXPECT_EQ(of_open(firma, number, Input), error::bad_file_name) << number;
        EXPECT_EQ(of_close(number), 0) << number;
    }
    std::array<Byte, 1> block{};
    const std::function<void()> operations[] = {
        [&] { static_cast<void>(table.LOF(7)); },
        [&] { table.PrintLine(7, u"x"); },
        [&] { static_cast<void>(table.InputCharacter(7)); },
        [&] { table.Seek(7, 1); },
        [&] { table.Get(7, block); },
        [&] { table.Put(7, block); },
        [&] { static_cast<void>(table.LOF(0)); },
        [&] { static_cast<void>(table.LOF(512)); },
    };
    for (const auto& operation : operations) {
        EXPECT_EQ(caught(operation).number, error::bad_file_name);
        EXPECT_EQ(caught(operation).text, "Bad file name or number");
    }
    EXPECT_EQ(of_close(7), 0);
}

TEST_F(PosixTable, ANumberThatIsOpen) {
    write_file(native, "abc");
    EXPECT_EQ(of_open(firma, 1, Input), 0);
    EXPECT_EQ(of_open(u"C:\\nie ma", 1, Input), error::file_already_open);
    EXPECT_EQ(of_open(u"C:\\nowy", 1, Output), error::file_already_open);
    EXPECT_FALSE(fs::exists(c + "/nowy"));
    EXPECT_EQ(table.InputCharacter(1), u'a');  // what is open stays
}

TEST_F(PosixTable, OperationsThatTheModeDoesNotAllow) {
    EXPECT_EQ(of_open(firma, 1, Input), 0);
    EXPECT_EQ(of_open(u"C:\\o", 2, Output), 0);
    EXPECT_EQ(of_open(u"C:\\r", 3, Random), 0);
    EXPECT_EQ(of_open(u"C:\\b", 4, Binary), 0);
    EXPECT_EQ(of_open(u"C:\\b", 5, BinaryRead), error::permission_denied);
    EXPECT_EQ(of_open(firma, 5, BinaryRead), 0);
    std::array<Byte, 1> block{};
    for (const Integer number : {Integer{1}, Integer{2}, Integer{3}, Integer{4}, Integer{5}}) {
        const bool is_binary = number >= 4;
        const Long of_writing = number == 5 ? error::file_access : 0;
        const auto of = [&](auto&& call) { return caught(call).number; };
        EXPECT_EQ(of([&] { table.PrintLine(number, u"x"); }),
                  number == 2 ? 0 : error::bad_file_mode);
        EXPECT_EQ(of([&] { static_cast<void>(table.InputCharacter(number)); }),
                  number == 1 ? error::past_end_of_file : error::bad_file_mode);
        EXPECT_EQ(of([&] { table.Seek(number, 1); }), is_binary ? 0 : error::bad_file_mode);
        EXPECT_EQ(of([&] { table.Get(number, block); }), is_binary ? 0 : error::bad_file_mode);
        EXPECT_EQ(of([&] { table.Put(number, block); }),
                  is_binary ? of_writing : error::bad_file_mode);
    }
    EXPECT_EQ(caught([&] { table.PrintLine(1, u"x"); }).text, "Bad file mode");
}

// ---- Reading and writing --------------------------------------------------------------------

TEST_F(PosixTable, OutputIsTextInTheAnsiCodePage) {
    write_file(native, "stara treść, która jest dłuższa");
    EXPECT_EQ(of_open(firma, 1, Output), 0);
    EXPECT_EQ(table.LOF(1), 0);
    table.PrintLine(1, u"Zażółć");
    table.PrintLine(1, u"");
    table.PrintLine(1, u"日€\U0001F600");
    EXPECT_EQ(table.LOF(1), 16);
    EXPECT_EQ(of_close(1), 0);
    EXPECT_EQ(file_bytes(native), "Za\xBF\xF3\xB3\xE6\r\n\r\n?\x80??\r\n");
    EXPECT_EQ(of_open(u"C:\\nowy.txt", 1, Output), 0);
    EXPECT_EQ(of_close(1), 0);
    EXPECT_EQ(file_bytes(c + "/nowy.txt"), "");
    EXPECT_TRUE(fs::exists(c + "/nowy.txt"));
}

TEST_F(PosixTable, MuchOutput) {
    EXPECT_EQ(of_open(firma, 1, Output), 0);
    const String line(998, u'ł');
    for (int i = 0; i < 500; ++i) {
        table.PrintLine(1, line);
        ASSERT_EQ(table.LOF(1), (i + 1) * 1000);
    }
    EXPECT_EQ(of_close(1), 0);
    const std::string bytes = file_bytes(native);
    ASSERT_EQ(bytes.size(), 500'000U);
    EXPECT_EQ(bytes.substr(499'000), std::string(998, '\xB3') + "\r\n");
}

TEST_F(PosixTable, InputIsEveryByte) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }
    write_file(native, bytes + "\x1A\r\n");
    EXPECT_EQ(of_open(firma, 1, Input), 0);
    EXPECT_EQ(table.LOF(1), 259);
    String text;
    for (int i = 0; i < 259; ++i) {
        text += table.InputCharacter(1);
    }
    EXPECT_EQ(text.substr(0, 0x80).find(u'\x1A'), 0x1AU);
    EXPECT_EQ(text[0x81], u'\x81');  // one of the five without a character
    EXPECT_EQ(text[0xB9], u'ą');
    EXPECT_EQ(text[0x80], u'€');
    EXPECT_EQ(text.substr(256), u"\x1A\r\n");
    for (int i = 0; i < 2; ++i) {
        const auto end = caught([&] { static_cast<void>(table.InputCharacter(1)); });
        EXPECT_EQ(end.number, error::past_end_of_file);
        EXPECT_EQ(end.text, "Input past end of file");
    }
}

TEST_F(PosixTable, MuchInput) {
    std::string bytes;
    for (int i = 0; i < 200'000; ++i) {
        bytes += static_cast<char>('a' + i % 23);
    }
    write_file(native, bytes);
    EXPECT_EQ(of_open(firma, 1, Input), 0);
    EXPECT_EQ(read_all(1), bytes);
}

TEST_F(PosixTable, BinaryAtAnyPlace) {
    write_file(native, "0123456789");
    EXPECT_EQ(of_open(firma, 1, Binary), 0);
    EXPECT_EQ(table.LOF(1), 10);  // what is there stays
    EXPECT_EQ(got(1, "..."), "012");
    EXPECT_EQ(got(1, "..."), "345");  // reads on
    table.Seek(1, 2);
    EXPECT_EQ(of_put(1, "AB"), 0);
    EXPECT_EQ(of_put(1, "C"), 0);  // writes on
    EXPECT_EQ(got(1, ".."), "45");
    table.Seek(1, 9);
    EXPECT_EQ(got(1, "....."), "89...");  // past the end the block stays
    EXPECT_EQ(got(1, "....."), ".....");
    EXPECT_EQ(of_put(1, "XY"), 0);  // behind what has been read
    EXPECT_EQ(table.LOF(1), 12);
    table.Seek(1, 15);
    EXPECT_EQ(of_put(1, "Z"), 0);
    EXPECT_EQ(of_close(1), 0);
    EXPECT_EQ(file_bytes(native), std::string("0ABC456789XY\0\0Z", 15));
    EXPECT_EQ(of_open(firma, 1, Binary), 0);
    for (const Long position : {0, -1, -2147483647 - 1}) {
        EXPECT_EQ(caught([&] { table.Seek(1, position); }).number, error::invalid_call);
    }
    EXPECT_EQ(got(1, "."), "0");
    EXPECT_EQ(of_put(1, ""), 0);
    EXPECT_EQ(got(1, ""), "");
}

TEST_F(PosixTable, BinaryToBeReadAlone) {
    write_file(native, "0123456789");
    EXPECT_EQ(of_open(firma, 1, BinaryRead), 0);
    EXPECT_EQ(table.LOF(1), 10);
    EXPECT_EQ(got(1, "..."), "012");
    table.Seek(1, 9);
    EXPECT_EQ(got(1, "....."), "89...");
    EXPECT_EQ(of_put(1, "XY"), error::file_access);
    EXPECT_EQ(of_close(1), 0);
    EXPECT_EQ(file_bytes(native), "0123456789");
}

TEST_F(PosixTable, LengthsWrap) {
    fs::resize_file(native, 2'147'483'647);
    EXPECT_EQ(of_open(firma, 1, Binary), 0);
    EXPECT_EQ(table.LOF(1), 2'147'483'647);
    fs::resize_file(native, 2'147'483'648);
    EXPECT_EQ(table.LOF(1), -2'147'483'647 - 1);
    fs::resize_file(native, 4'294'967'301);
    EXPECT_EQ(table.LOF(1), 5);
    table.Seek(1, 2'147'483'647);
    EXPECT_EQ(got(1, "xx"), std::string(2, '\0'));
}

TEST_F(PosixTable, BinaryAndRandomMakeWhatIsMissing) {
    EXPECT_EQ(of_open(u"C:\\DANE\\nowa.bin", 1, Binary), 0);
    EXPECT_EQ(of_open(u"C:\\DANE\\nowa.rec", 2, Random, Sharing::Shared), 0);
    EXPECT_TRUE(fs::exists(c + "/Dane/nowa.bin"));
    EXPECT_TRUE(fs::exists(c + "/Dane/nowa.rec"));
    EXPECT_EQ(table.LOF(2), 0);
}

// ---- What cannot be opened ------------------------------------------------------------------

TEST_F(PosixTable, WhatDoesNotExist) {
    for (const OpenMode mode : {Input, Output, Random, Binary, BinaryRead}) {
        EXPECT_EQ(of_open(u"C:\\nie ma\\x", 1, mode), error::path_not_found);
        EXPECT_EQ(of_open(u"C:\\Dane\\firma.mdb\\x", 1, mode), error::path_not_found);
        EXPECT_EQ(of_open(u"D:\\x", 1, mode), error::path_not_found);
        EXPECT_EQ(of_open(u"", 1, mode), error::bad_file_name);
        EXPECT_EQ(of_open(u"C:\\" + String(300, u'x'), 1, mode), error::bad_file_name);
    }
    for (const OpenMode mode : {Input, BinaryRead}) {
        const auto missing = caught([&] { table.Open(u"C:\\nie ma", 1, mode, Sharing::Default); });
        EXPECT_EQ(missing.number, error::file_not_found);
        EXPECT_EQ(missing.text, "File not found");
    }
    EXPECT_FALSE(fs::exists(c + "/nie ma"));
    EXPECT_EQ(table.FreeFile(), 1);
}

TEST_F(PosixTable, WhatTheSystemRefuses) {
    for (const OpenMode mode : {Input, Output, Random, Binary, BinaryRead}) {
        EXPECT_EQ(of_open(u"C:\\Dane", 1, mode), error::file_access);
        EXPECT_EQ(of_open(u"C:\\Dane\\", 1, mode), error::file_access);
    }
    ::mkfifo((c + "/pipe").c_str(), 0600);
    for (const OpenMode mode : {Output, Random, Binary, BinaryRead}) {
        EXPECT_EQ(of_open(u"C:\\pipe", 1, mode), error::file_access);
    }
    EXPECT_EQ(of_open(u"C:\\pipe", 1, Input), 0);  // and does not wait
    EXPECT_EQ(of_close(1), 0);
    ::chmod(folder.path().c_str(), 0755);
    ::chmod(c.c_str(), 0555);
    EXPECT_EQ(as_another_user([&] {
                  return of_open(u"C:\\nowy", 1, Output) == error::file_access &&
                         of_open(u"C:\\nowy", 1, Random) == error::file_access;
              }),
              0);
    ::chmod(c.c_str(), 0755);
    EXPECT_EQ(table.FreeFile(), 1);
}

TEST_F(PosixTable, FilesThatMayOnlyBeRead) {
    write_file(native, "abc");
    ::chmod(native.c_str(), 0444);
    EXPECT_EQ(of_open(firma, 1, Output), error::file_access);
    EXPECT_EQ(file_bytes(native), "abc");
    EXPECT_EQ(of_open(firma, 1, Random), 0);
    EXPECT_EQ(of_close(1), 0);
    EXPECT_EQ(of_open(firma, 1, Binary), 0);
    EXPECT_EQ(got(1, "..."), "abc");
    table.Seek(1, 1);
    EXPECT_EQ(of_put(1, "x"), error::file_access);
    EXPECT_EQ(file_bytes(native), "abc");
    EXPECT_EQ(of_open(firma, 2, Input), 0);  // both only read
}

// The file of a write test must not be made through a link that somebody has planted.
TEST_F(PosixTable, LinksThatLeadNowhereAreNoPlaceForAFile) {
    fs::create_symlink(c + "/cel", c + "/zevotest.tmp");
    for (const OpenMode mode : {Output, Random, Binary}) {
        for (const Sharing sharing : {Sharing::Default, Sharing::Shared}) {
            EXPECT_EQ(of_open(u"C:\\zevotest.tmp", 1, mode, sharing), error::file_access);
        }
    }
    EXPECT_EQ(of_open(u"C:\\zevotest.tmp", 1, Input), error::file_not_found);
    EXPECT_FALSE(fs::exists(c + "/cel"));
    EXPECT_TRUE(fs::is_symlink(c + "/zevotest.tmp"));
}

TEST_F(PosixTable, LinksToWhatExistsAreFollowed) {
    write_file(native, "abc");
    fs::create_symlink("Dane/firma.mdb", c + "/link");
    EXPECT_EQ(of_open(u"C:\\link", 1, Random, Sharing::Shared), 0);
    EXPECT_EQ(table.LOF(1), 3);
    EXPECT_EQ(of_open(firma, 2, Output), error::file_already_open);  // the same file
    EXPECT_EQ(of_close(1), 0);
    EXPECT_EQ(file_bytes(native), "abc");
}

// ---- Sharing --------------------------------------------------------------------------------

struct SharingCase {
    OpenMode first;
    Sharing first_sharing;
    OpenMode second;
    Sharing second_sharing;
    Long here;       // what the second opening in this process ends with
    bool elsewhere;  // whether it succeeds in another process
};

TEST_F(PosixTable, SharingRules) {
    constexpr auto own = Sharing::Default;
    constexpr auto shared = Sharing::Shared;
    constexpr Long denied = error::permission_denied;
    constexpr Long open = error::file_already_open;
    const SharingCase cases[] = {
        {Input, own, Input, own, 0, true},
        {Input, own, Input, shared, 0, true},
        {Input, own, Binary, own, denied, false},
        {Input, own, Binary, shared, denied, false},
        {Input, own, BinaryRead, own, 0, true},
        {Input, shared, BinaryRead, own, 0, true},
        {Binary, own, BinaryRead, own, denied, false},
        {BinaryRead, own, Binary, own, denied, false},
        {BinaryRead, own, Binary, shared, denied, false},
        {BinaryRead, own, Output, own, open, false},
        {BinaryRead, own, BinaryRead, own, 0, true},
        {Input, own, Random, shared, denied, false},
        {Input, own, Output, own, open, false},
        {Input, own, Output, shared, open, false},
        {Binary, own, Input, own, denied, false},
        {Binary, own, Input, shared, denied, false},
        {Binary, own, Binary, own, denied, false},
        {Binary, own, Binary, shared, denied, false},
        {Random, own, Random, own, denied, false},
        {Output, own, Input, own, denied, false},
        {Output, own, Input, shared, denied, false},
        {Output, own, Output, own, open, false},
        {Output, own, Output, shared, open, false},
        {Input, shared, Input, own, 0, true},
        {Input, shared, Binary, shared, 0, true},
        {Binary, shared, Input, shared, 0, true},
        {Binary, shared, Binary, shared, 0, true},
        {Random, shared, Random, shared, 0, true},
        {Output, shared, Input, shared, 0, true},
        {Binary, shared, Output, shared, open, true},
        // What a shared opening does is seen in its own process alone.
        {Input, shared, Binary, own, denied, true},
        {Binary, shared, Input, own, denied, true},
        {Binary, shared, Binary, own, denied, true},
        {Output, shared, Input, own, denied, true},
    };
    for (const SharingCase& each : cases) {
        SCOPED_TRACE(&each - cases);
        write_file(native, "abc");
        ASSERT_EQ(of_open(firma, 1, each.first, each.first_sharing), 0);
        EXPECT_EQ(of_open(firma, 2, each.second, each.second_sharing), each.here);
        EXPECT_EQ(of_close(2), 0);
        if (each.first != Output && each.here != 0) {
            EXPECT_EQ(file_bytes(native), "abc");  // nothing has been changed
        }
        // The other process has no table of ours: its number 1 is closed first, which leaves the
        // lock with this process.
        EXPECT_EQ(in_another_process([&] {
                      static_cast<void>(caught([&] { table.Close(1); }));
                      return of_open(firma, 2, each.second, each.second_sharing) == 0;
                  }) == 0,
                  each.elsewhere);
        EXPECT_EQ(of_close(1), 0);
    }
}

TEST_F(PosixTable, ARefusedOutputDoesNotTruncate) {
    write_file(native, "abc");
    int ready[2];
    int done[2];
    ASSERT_EQ(::pipe(ready), 0);
    ASSERT_EQ(::pipe(done), 0);
    char byte = 0;
    const pid_t child = ::fork();
    if (child == 0) {
        const bool opened = of_open(firma, 1, Input) == 0;
        const bool told = ::write(ready[1], opened ? "1" : "0", 1) == 1;
        ::_exit(told && ::read(done[0], &byte, 1) == 1 ? 0 : 1);
    }
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    EXPECT_EQ(byte, '1');
    const auto refused = caught([&] { table.Open(firma, 1, Output, Sharing::Default); });
    EXPECT_EQ(refused.number, error::permission_denied);
    EXPECT_EQ(refused.text, "Permission denied");
    EXPECT_EQ(of_open(firma, 1, Output, Sharing::Shared), error::permission_denied);
    EXPECT_EQ(of_open(firma, 1, Binary), error::permission_denied);
    EXPECT_EQ(of_open(firma, 1, Input), 0);  // both only read
    EXPECT_EQ(of_close(1), 0);
    EXPECT_EQ(file_bytes(native), "abc");
    ASSERT_EQ(::write(done[1], "x", 1), 1);
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(of_open(firma, 1, Output), 0);  // the lock has gone with the process
    EXPECT_EQ(file_bytes(native), "");
    for (const int file : {ready[0], ready[1], done[0], done[1]}) {
        ::close(file);
    }
}

// ---- Faults ---------------------------------------------------------------------------------

TEST_F(PosixTable, AFullDisk) {
    EXPECT_EQ(of_open(u"Z:\\dev\\full", 1, Output), 0);
    table.PrintLine(1, u"x");
    const auto full = caught([&] { table.Close(1); });
    EXPECT_EQ(full.number, error::disk_full);
    EXPECT_EQ(full.text, "Disk full");
    EXPECT_EQ(of_close(1), 0);  // closed all the same
    EXPECT_EQ(table.FreeFile(), 1);

    EXPECT_EQ(of_open(u"Z:\\dev\\full", 1, Output), 0);
    EXPECT_EQ(caught([&] { table.PrintLine(1, String(100'000, u'x')); }).number, error::disk_full);
    EXPECT_EQ(of_close(1), 0);  // what could not be stored has been told

    EXPECT_EQ(of_open(u"Z:\\dev\\full", 1, Binary), 0);
    EXPECT_EQ(of_put(1, "x"), error::disk_full);
}

TEST_F(PosixTable, WhatCannotBeRead) {
    EXPECT_EQ(of_open(u"Z:\\proc\\self\\mem", 1, Input, Sharing::Shared), 0);
    EXPECT_EQ(caught([&] { static_cast<void>(table.InputCharacter(1)); }).number, error::device_io);
    EXPECT_EQ(of_open(u"Z:\\proc\\self\\mem", 2, Binary, Sharing::Shared), 0);
    std::array<Byte, 1> block{};
    EXPECT_EQ(caught([&] { table.Get(2, block); }).number, error::device_io);
}

TEST_F(PosixTable, NoDescriptorsAreLeft) {
    if (is_sanitized) {
        GTEST_SKIP() << "the sanitizer looks at virtual tables through a pipe of its own";
    }
    EXPECT_EQ(in_another_process([&] {
                  const rlimit limit{64, 64};
                  if (::setrlimit(RLIMIT_NOFILE, &limit) != 0) {
                      return false;
                  }
                  Long number = 0;
                  Integer at = 0;
                  while (number == 0 && at < 100) {
                      number = of_open(firma, ++at, Input);
                  }
                  static_cast<void>(caught([&] { table.Close(1); }));
                  return number == error::too_many_files && of_open(firma, 1, Input) == 0;
              }),
              0);
}

TEST_F(PosixTable, SixHundredOpenings) {
    const int before = open_descriptors();
    for (int i = 0; i < 600; ++i) {
        ASSERT_EQ(of_open(firma, 1, i % 2 == 0 ? Input : Output), 0);
        ASSERT_EQ(of_open(u"C:\\Dane", 2, Input), error::file_access);
        ASSERT_EQ(of_open(firma, 2, Output), error::file_already_open);
        ASSERT_EQ(of_close(1), 0);
    }
    for (Integer number = 1; number <= 511; ++number) {
        ASSERT_EQ(of_open(firma, number, Input), 0);
    }
    EXPECT_EQ(open_descriptors(), before + 511);
    for (Integer number = 1; number <= 511; ++number) {
        ASSERT_EQ(of_close(number), 0);
    }
    EXPECT_EQ(open_descriptors(), before);
}

TEST_F(PosixTable, DescriptorsDoNotPassToPrograms) {
    EXPECT_EQ(of_open(firma, 1, Input), 0);
    EXPECT_EQ(of_open(u"C:\\o", 2, Output), 0);
    EXPECT_EQ(of_open(u"C:\\b", 3, Binary), 0);
    int found = 0;
    for (int file = 0; file < 64; ++file) {
        std::error_code none;
        const fs::path goal = fs::read_symlink("/proc/self/fd/" + std::to_string(file), none);
        if (goal.string().starts_with(c)) {
            ++found;
            EXPECT_NE(::fcntl(file, F_GETFD) & FD_CLOEXEC, 0);
        }
    }
    EXPECT_EQ(found, 3);
}

TEST_F(PosixTable, ThreadsWithNumbersOfTheirOwn) {
    constexpr int count = 4;
    std::vector<std::thread> threads;
    threads.reserve(count);
    for (int i = 1; i <= count; ++i) {
        threads.emplace_back([&, i] {
            const auto number = static_cast<Integer>(i);
            const String path = u"C:\\" + from_utf8(std::to_string(i));
            for (int round = 0; round < 50; ++round) {
                table.Open(path, number, Output, Sharing::Default);
                for (int line = 0; line < 20; ++line) {
                    table.PrintLine(number, String(100, static_cast<char16_t>(u'a' + i)));
                }
                table.Close(number);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (int i = 1; i <= count; ++i) {
        const std::string bytes = file_bytes(c + "/" + std::to_string(i));
        EXPECT_EQ(bytes.size(), 20U * 102U);
        EXPECT_EQ(bytes.find_first_not_of(std::string{static_cast<char>('a' + i), '\r', '\n'}),
                  std::string::npos);
    }
}

}  // namespace
}  // namespace kvarta16
