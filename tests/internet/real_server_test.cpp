// The FTP adapter against real servers, passive and active.
#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <support/ftp_servers.h>

#include "internet_support.h"

namespace kvarta16::internet_tests {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;
using testing_support::ftp_server;
using testing_support::FtpServer;
using testing_support::FtpServerKind;

constexpr std::size_t sizes[] = {0, 1, 99, 100, 101, 250, 65536, 5'000'000};
constexpr std::size_t block_size = 100;

class RealServer : public testing::TestWithParam<std::tuple<FtpServerKind, bool>> {
  protected:
    void SetUp() override {
        if (!server().is_there()) {
            if (testing_support::are_servers_required()) {
                FAIL() << server().what_is_missing();
            }
            GTEST_SKIP() << server().what_is_missing();
        }
        // Each test works in a folder of its own, which goes away with it.
        home_ = fs::path(server().root()) / ("t" + std::to_string(++count_));
        fs::create_directory(home_);
        server().own(home_);
        client_.emplace(server().port(), std::get<1>(GetParam()), u"ola", u"Tajne;1",
                        from_utf8(server().host()));
        ASSERT_NE(client().ftp, 0) << client().net.GetLastError();
        top_ = client().current_directory();
        const std::string name = home_.filename().string();
        ASSERT_EQ(client().net.FtpSetCurrentDirectoryA(client().ftp, from_utf8(name)), 1);
    }

    static FtpServer& server() { return ftp_server(std::get<0>(GetParam())); }
    Client& client() { return *client_; }
    posix::PosixInternet& net() { return client_->net; }
    [[nodiscard]] Long ftp() const { return client_->ftp; }
    // A file in the folder, as the server has it.
    [[nodiscard]] fs::path at_server(const std::string& name) const { return home_ / name; }
    void serve(const std::string& name, const std::string& bytes) {
        write_file(at_server(name), bytes);
        server().own(at_server(name));
    }

    TestFolder local_;
    std::string top_;

  private:
    static inline int count_ = 0;
    std::optional<Client> client_;
    fs::path home_;
};

std::string name_of_case(const testing::TestParamInfo<RealServer::ParamType>& info) {
    return std::string(testing_support::name_of(std::get<0>(info.param))) +
           (std::get<1>(info.param) ? "Passive" : "Active");
}

constexpr FtpServerKind all_kinds[] = {FtpServerKind::Pyftpdlib, FtpServerKind::PyftpdlibList,
                                       FtpServerKind::PyftpdlibIpv6, FtpServerKind::Proftpd,
                                       FtpServerKind::ProftpdList};

INSTANTIATE_TEST_SUITE_P(Ftp, RealServer,
                         testing::Combine(testing::ValuesIn(all_kinds), testing::Bool()),
                         name_of_case);

TEST_P(RealServer, WholeFilesBothWays) {
    for (const std::size_t size : sizes) {
        SCOPED_TRACE(size);
        const std::string bytes = sample(size);
        write_file(local_ / "source", bytes);
        ASSERT_EQ(client().put(local_ / "source", u"file.bin"), 1) << client().response();
        ASSERT_TRUE(bytes_of(at_server("file.bin")) == bytes);
        ASSERT_EQ(client().get(u"file.bin", local_ / "target"), 1) << client().response();
        ASSERT_TRUE(bytes_of(local_ / "target") == bytes);
    }
}

TEST_P(RealServer, BlocksBothWays) {
    for (const std::size_t size : sizes) {
        SCOPED_TRACE(size);
        const std::string bytes = sample(size);
        Long count = 0;
        Long file = client().open(u"file.bin", internet::generic_write);
        ASSERT_NE(file, 0);
        for (std::size_t at = 0; at < size; at += block_size) {
            const auto part = std::span(bytes).subspan(at, std::min(block_size, size - at));
            ASSERT_EQ(net().InternetWriteFile(
                          file, {reinterpret_cast<const Byte*>(part.data()), part.size()}, count),
                      1);
            ASSERT_EQ(count, static_cast<Long>(part.size()));
        }
        ASSERT_EQ(net().InternetCloseHandle(file), 1);
        ASSERT_TRUE(bytes_of(at_server("file.bin")) == bytes);

        file = client().open(u"file.bin", internet::generic_read);
        ASSERT_NE(file, 0);
        std::string read;
        std::array<Byte, block_size> block{};
        do {
            ASSERT_EQ(net().InternetReadFile(file, block, count), 1);
            read.append(reinterpret_cast<const char*>(block.data()),
                        static_cast<std::size_t>(count));
        } while (count == static_cast<Long>(block_size));
        ASSERT_EQ(net().InternetReadFile(file, block, count), 1);
        ASSERT_EQ(count, 0);
        ASSERT_TRUE(read == bytes);
        ASSERT_EQ(net().InternetCloseHandle(file), 1);
    }
}

TEST_P(RealServer, NamesWithBlanksAndPolishLetters) {
    const std::string name = "Zażółć gęślą jaźń  2.txt";
    write_file(local_ / name, "treść");
    ASSERT_EQ(client().put(local_ / name, from_utf8(name)), 1);
    EXPECT_EQ(bytes_of(at_server(name)), "treść");
    EXPECT_THAT(client().names(u"*.*"), ElementsAre(name));
    EXPECT_THAT(client().names(u"Zażółć?gęślą?jaźń??2.txt"), ElementsAre(name));
    EXPECT_THAT(client().names(from_utf8(name)), ElementsAre(name));
    ASSERT_EQ(net().FtpRenameFileA(ftp(), from_utf8(name), u"Nowa ćma.txt"), 1);
    EXPECT_EQ(client().get(u"Nowa ćma.txt", local_ / "target"), 1);
    EXPECT_EQ(bytes_of(local_ / "target"), "treść");
    EXPECT_EQ(net().FtpDeleteFileA(ftp(), u"Nowa ćma.txt"), 1);
    EXPECT_FALSE(fs::exists(at_server("Nowa ćma.txt")));
}

TEST_P(RealServer, Folders) {
    const std::string here = client().current_directory();
    ASSERT_EQ(net().FtpCreateDirectoryA(ftp(), u"Mój katalog"), 1);
    EXPECT_TRUE(fs::is_directory(at_server("Mój katalog")));
    EXPECT_EQ(net().FtpCreateDirectoryA(ftp(), u"Mój katalog"), 0);
    EXPECT_EQ(client().net.GetLastError(), internet_error::extended_error);
    EXPECT_EQ(client().error_number(), 550);
    ASSERT_EQ(net().FtpSetCurrentDirectoryA(ftp(), u"Mój katalog"), 1);
    EXPECT_EQ(client().current_directory(), here + "/Mój katalog");
    ASSERT_EQ(net().FtpSetCurrentDirectoryA(ftp(), u".."), 1);
    EXPECT_EQ(client().current_directory(), here);
    serve("plik", "12345");
    serve("Mój katalog/w środku.txt", "1");
    EXPECT_THAT(client().names(u"*"), UnorderedElementsAre("Mój katalog", "plik"));
    EXPECT_THAT(client().names(u"Mój katalog\\*.txt"), ElementsAre("w środku.txt"));
    EXPECT_THAT(client().names(u"Mój katalog"), ElementsAre("w środku.txt"));
    EXPECT_THAT(client().names(from_utf8(here) + u"/p*"), ElementsAre("plik"));
    fs::remove(at_server("Mój katalog/w środku.txt"));
    EXPECT_EQ(net().FtpRemoveDirectoryA(ftp(), u"Mój katalog"), 1);
    EXPECT_FALSE(fs::exists(at_server("Mój katalog")));
}

TEST_P(RealServer, EntriesTellAttributesSizesAndTimes) {
    serve("plik.txt", std::string(300, 'x'));
    serve(".ukryty", "");
    fs::create_directory(at_server("dane"));
    // 2019-03-07 00:00:00 UTC, a midnight: some listings tell the day alone.
    constexpr std::time_t moment = 1551916800;
    const timespec times[2] = {{moment, 0}, {moment, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, at_server("plik.txt").c_str(), times, 0), 0);
    WIN32_FIND_DATA data;
    Long find = net().FtpFindFirstFileA(ftp(), u"plik.txt", data, 0, 0);
    ASSERT_NE(find, 0);
    EXPECT_EQ(data.dwFileAttributes, 32);
    EXPECT_EQ(data.nFileSizeLow, 300);
    EXPECT_EQ(data.nFileSizeHigh, 0);
    constexpr std::int64_t time = (std::int64_t{moment} + 11'644'473'600) * 10'000'000;
    EXPECT_EQ(data.ftLastWriteTime.dwHighDateTime, wrap32(time >> 32));
    EXPECT_EQ(data.ftLastWriteTime.dwLowDateTime, wrap32(time));
    EXPECT_EQ(data.ftCreationTime, FILETIME{});
    EXPECT_EQ(data.ftLastAccessTime, FILETIME{});
    EXPECT_EQ(net().InternetFindNextFileA(find, data), 0);
    EXPECT_EQ(net().GetLastError(), internet_error::no_more_files);
    EXPECT_EQ(net().InternetCloseHandle(find), 1);
    find = net().FtpFindFirstFileA(ftp(), u"d?ne*", data, 0, 0);
    // With a wildcard it is the folder itself that is found.
    ASSERT_NE(find, 0);
    EXPECT_EQ(data.dwFileAttributes & ~1, 16);
    EXPECT_EQ(Client::name_of(data), "dane");
}

TEST_P(RealServer, NothingThere) {
    WIN32_FIND_DATA data;
    EXPECT_EQ(net().FtpFindFirstFileA(ftp(), u"*", data, internet::flag_reload, 0), 0);
    EXPECT_EQ(client().error_number(), internet_error::no_more_files);
    EXPECT_EQ(net().FtpFindFirstFileA(ftp(), u"brak.txt", data, 0, 0), 0);
    EXPECT_EQ(client().error_number(), internet_error::no_more_files);
    EXPECT_EQ(client().response().substr(0, 3), "226");
    EXPECT_EQ(data, WIN32_FIND_DATA{});
    EXPECT_EQ(client().open(u"brak.txt", internet::generic_read), 0);
    EXPECT_EQ(client().net.GetLastError(), internet_error::extended_error);
    EXPECT_EQ(client().error_number(), 550);
    EXPECT_EQ(client().get(u"brak.txt", local_ / "brak"), 0);
    EXPECT_EQ(client().error_number(), 550);
    EXPECT_FALSE(fs::exists(local_ / "brak"));
    EXPECT_EQ(net().FtpDeleteFileA(ftp(), u"brak.txt"), 0);
    EXPECT_EQ(client().error_number(), 550);
    EXPECT_EQ(net().FtpRenameFileA(ftp(), u"brak.txt", u"inny"), 0);
    EXPECT_EQ(client().error_number(), 550);
    EXPECT_NE(client().current_directory(), "");
}

// The way of the data does not matter to a long listing.
class LongListing : public RealServer {};

INSTANTIATE_TEST_SUITE_P(Ftp, LongListing,
                         testing::Combine(testing::ValuesIn(all_kinds), testing::Values(true)),
                         name_of_case);

TEST_P(LongListing, ADirectoryOfFiveThousand) {
    constexpr int many = 5000;
    std::set<std::string> expected;
    for (int i = 0; i < many; ++i) {
        const std::string name = "dokument numer " + std::to_string(i) + ".txt";
        write_file(at_server(name), "x");
        expected.insert(name);
    }
    const std::vector<std::string> names = client().names(u"*.*");
    EXPECT_EQ(names.size(), many);
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()), expected);
    EXPECT_EQ(client().names(u"*?77.txt").size(), 50);
}

TEST_P(RealServer, AReadingHandleMayBeClosedEarly) {
    serve("duży.bin", sample(5'000'000));
    serve("mały.bin", "12345");
    for (const std::size_t blocks : {std::size_t{0}, std::size_t{1}, std::size_t{20000}}) {
        const Long file = client().open(u"duży.bin", internet::generic_read);
        ASSERT_NE(file, 0);
        std::array<Byte, block_size> block{};
        Long count = 0;
        for (std::size_t i = 0; i < blocks; ++i) {
            ASSERT_EQ(net().InternetReadFile(file, block, count), 1);
        }
        EXPECT_EQ(net().InternetCloseHandle(file), 1);
        ASSERT_EQ(client().get(u"mały.bin", local_ / "target"), 1) << client().response();
        EXPECT_EQ(bytes_of(local_ / "target"), "12345");
    }
}

TEST_P(RealServer, ClosingLeavesNoDescriptor) {
    serve("plik", sample(100'000));
    const std::size_t before = open_descriptors();
    for (int i = 0; i < 3; ++i) {
        Client other(server().port(), std::get<1>(GetParam()), u"ola", u"Tajne;1",
                     from_utf8(server().host()));
        ASSERT_NE(other.ftp, 0);
        WIN32_FIND_DATA data;
        EXPECT_NE(other.net.FtpFindFirstFileA(other.ftp, u"*", data, 0, 0), 0);
        EXPECT_NE(other.open(from_utf8(at_server("").parent_path().filename().string()) + u"/plik",
                             internet::generic_read),
                  0)
            << other.response();
        EXPECT_EQ(other.net.InternetCloseHandle(other.session), 1);
    }
    EXPECT_EQ(open_descriptors(), before);
}

TEST_P(RealServer, AWrongPassword) {
    const Client other(server().port(), std::get<1>(GetParam()), u"ola", u"Zle",
                       from_utf8(server().host()));
    EXPECT_EQ(other.ftp, 0);
    EXPECT_EQ(client().net.GetLastError(), internet_error::incorrect_password);
    EXPECT_EQ(client().error_number(), 530);
}

}  // namespace
}  // namespace kvarta16::internet_tests
