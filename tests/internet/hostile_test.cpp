// Servers that break, lie and fall silent, and what reaches them: a scripted server on loopback.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <support/scripted_ftp_server.h>
#include <sys/resource.h>

#include "internet_support.h"

namespace kvarta16::internet_tests {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using testing_support::FtpPeer;
using testing_support::ScriptedFtpServer;
using testing_support::TestSocket;

constexpr in_addr_t other_loopback = 0x7F000002;  // 127.0.0.2

// How long the body takes.
template <class Body>
std::chrono::milliseconds time_of(Body&& body) {
    const auto begin = std::chrono::steady_clock::now();
    body();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                 begin);
}

// What a connection ends with that never comes to be.
Long failure_of_connecting(const ScriptedFtpServer::Script& script) {
    ScriptedFtpServer server(script);
    Client client(server.port());
    EXPECT_EQ(client.ftp, 0);
    EXPECT_EQ(client.net.InternetCloseHandle(client.session), 1);
    EXPECT_EQ(server.problems(), "");
    return client.ftp == 0 ? client.net.GetLastError() : 0;
}

std::string read_all(Client& client, Long file) {
    std::string all;
    std::array<Byte, 100> block{};
    Long count = 0;
    while (client.net.InternetReadFile(file, block, count) != 0 && count > 0) {
        all.append(reinterpret_cast<const char*>(block.data()), static_cast<std::size_t>(count));
    }
    return all;
}

std::span<const Byte> bytes_to_send(const std::string& text) {
    return {reinterpret_cast<const Byte*>(text.data()), text.size()};
}

// ---- Replies --------------------------------------------------------------------------------

TEST(Hostile, RepliesInSingleBytes) {
    ScriptedFtpServer server([](FtpPeer& peer) {
        for (const char byte : std::string("220-Hello\r\n331 not yet\r\n220 Ready\r\n")) {
            peer.control().send(std::string(1, byte));
            std::this_thread::sleep_for(1ms);
        }
        peer.answer("USER", "230 In");
        peer.answer("FEAT", "502 None");
        peer.answer("TYPE I", "200 Binary");
        peer.expect("PWD");
        for (const char byte : std::string("257 \"/a\"\r\n")) {
            peer.control().send(std::string(1, byte));
        }
    });
    Client client(server.port());
    EXPECT_NE(client.ftp, 0);
    EXPECT_EQ(client.current_directory(), "/a");
    EXPECT_EQ(client.response(), "257 \"/a\"");
    client.net.InternetCloseHandle(client.ftp);
    EXPECT_EQ(server.problems(), "");
}

TEST(Hostile, AnEndlessLineIsLeft) {
    EXPECT_EQ(failure_of_connecting([](FtpPeer& peer) {
                  while (peer.control().send(std::string(65536, '2'))) {
                  }
              }),
              internet_error::ftp_dropped);
}

TEST(Hostile, AnEndlessReplyIsLeft) {
    EXPECT_EQ(failure_of_connecting([](FtpPeer& peer) {
                  while (peer.control().send("220-and more\r\n")) {
                  }
              }),
              internet_error::ftp_dropped);
}

TEST(Hostile, EndlessPreliminaryRepliesAreLeft) {
    EXPECT_EQ(failure_of_connecting([](FtpPeer& peer) {
                  while (peer.control().send("120 soon\r\n")) {
                  }
              }),
              internet_error::ftp_dropped);
}

TEST(Hostile, NulAndNoReplyAtAllAreLeft) {
    for (const std::string& greeting :
         {std::string("220 a\0b\r\n", 9), std::string("SSH-2.0-server\r\n"), std::string("\r\n")}) {
        EXPECT_EQ(failure_of_connecting([&](FtpPeer& peer) {
                      peer.control().send(greeting);
                      peer.hear();
                  }),
                  internet_error::ftp_dropped);
    }
}

TEST(Hostile, RepliesThatDribbleDoNotOutlastTheTimeout) {
    const ShortTimeouts timeouts;
    ScriptedFtpServer server([](FtpPeer& peer) {
        while (peer.control().send("2")) {
            std::this_thread::sleep_for(20ms);
        }
    });
    const auto time = time_of([&] {
        Client client(server.port());
        EXPECT_EQ(client.ftp, 0);
        EXPECT_EQ(client.net.GetLastError(), internet_error::timeout);
    });
    EXPECT_LT(time, 2s);
}

TEST(Hostile, SilenceEndsWithTheTimeout) {
    const ShortTimeouts timeouts;
    const auto time = time_of([] {
        EXPECT_EQ(failure_of_connecting([](FtpPeer& peer) { peer.hear(); }),
                  internet_error::timeout);
    });
    EXPECT_GE(time, 300ms);
    EXPECT_LT(time, 3s);
}

TEST(Hostile, AServerThatHangsUp) {
    EXPECT_EQ(failure_of_connecting([](FtpPeer&) {}), internet_error::connection_aborted);
    EXPECT_EQ(failure_of_connecting([](FtpPeer& peer) { peer.control().reset(); }),
              internet_error::connection_reset);
}

TEST(Hostile, AServerThatHangsUpLater) {
    ScriptedFtpServer server([](FtpPeer& peer) {
        peer.log_in();
        peer.say("421 Too long idle");
    });
    Client client(server.port());
    ASSERT_NE(client.ftp, 0);
    EXPECT_EQ(server.problems(), "");
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(client.net.FtpDeleteFileA(client.ftp, u"a"), 0);
        EXPECT_EQ(client.error_number(), internet_error::connection_aborted);
    }
    EXPECT_EQ(client.net.InternetCloseHandle(client.ftp), 1);
}

TEST(Hostile, ALateReplyIsNotTakenForAnother) {
    ScriptedFtpServer server([](FtpPeer& peer) {
        peer.log_in();
        peer.control().send("226 An old matter\r\n");
        std::this_thread::sleep_for(100ms);
        peer.answer("DELE a", "550 No");
    });
    Client client(server.port());
    ASSERT_NE(client.ftp, 0);
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(client.net.FtpDeleteFileA(client.ftp, u"a"), 0);
    EXPECT_EQ(client.error_number(), 550);
    EXPECT_EQ(client.response(), "550 No");
}

// ---- Connecting -----------------------------------------------------------------------------

TEST(Connecting, RefusedAndUnknown) {
    int port = 0;
    {
        const TestSocket gone = TestSocket::listening();
        port = gone.port();
    }
    Client refused(port);
    EXPECT_EQ(refused.ftp, 0);
    EXPECT_EQ(refused.net.GetLastError(), internet_error::cannot_connect);
    Client unknown(port, true, u"ola", u"x", u"no-such-host.invalid");
    EXPECT_EQ(unknown.ftp, 0);
    EXPECT_EQ(unknown.net.GetLastError(), internet_error::name_not_resolved);
}

TEST(Connecting, TriesAllAddressesOfAName) {
    // "localhost" may be ::1 first, where nobody listens on this port.
    ScriptedFtpServer server([](FtpPeer& peer) { peer.log_in(); });
    Client client(server.port(), true, u"ola", u"x", u"localhost");
    EXPECT_NE(client.ftp, 0);
    client.net.InternetCloseHandle(client.ftp);
    EXPECT_EQ(server.problems(), "");
}

TEST(Connecting, AnAddressMayStandInBrackets) {
    ScriptedFtpServer server([](FtpPeer& peer) { peer.log_in(); });
    Client client(server.port(), true, u"ola", u"x", u"[127.0.0.1]");
    EXPECT_NE(client.ftp, 0);
}

TEST(Connecting, HandlesOfOtherKindsAreRefused) {
    ScriptedFtpServer server([](FtpPeer& peer) { peer.log_in(); });
    Client client(server.port());
    ASSERT_NE(client.ftp, 0);
    EXPECT_EQ(client.net.InternetConnectA(client.ftp, u"127.0.0.1", 21, u"a", u"b", 1, 0, 0), 0);
    EXPECT_EQ(client.net.GetLastError(), internet_error::incorrect_handle_type);
    EXPECT_EQ(client.net.FtpDeleteFileA(client.session, u"a"), 0);
    EXPECT_EQ(client.net.GetLastError(), internet_error::incorrect_handle_type);
    EXPECT_EQ(client.net.InternetConnectA(client.session, u"127.0.0.1", 21, u"a", u"b", 3, 0, 0),
              0);
    EXPECT_EQ(client.net.GetLastError(), internet_error::invalid_parameter);
}

TEST(Connecting, WithoutAHandleEverythingIsRefused) {
    posix::PosixInternet net;
    WIN32_FIND_DATA data;
    std::array<Byte, 10> block{};
    Long count = 5;
    Long context = 0;
    String buffer(10, u'x');
    Long length = 10;
    const std::vector<Long> answers = {net.InternetConnectA(0, u"h", 21, u"u", u"p", 1, 0, 0),
                                       net.InternetCloseHandle(0),
                                       net.FtpPutFileA(0, u"a", u"b", 2, 0),
                                       net.FtpGetFileA(0, u"a", u"b", false, 0, 0, context),
                                       net.FtpOpenFileA(0, u"a", internet::generic_read, 2, 0),
                                       net.InternetReadFile(0, block, count),
                                       net.InternetWriteFile(0, block, count),
                                       net.FtpFindFirstFileA(0, u"*", data, 0, 0),
                                       net.InternetFindNextFileA(0, data),
                                       net.FtpGetCurrentDirectoryA(0, buffer, length),
                                       net.FtpSetCurrentDirectoryA(0, u"a"),
                                       net.FtpCreateDirectoryA(0, u"a"),
                                       net.FtpRemoveDirectoryA(0, u"a"),
                                       net.FtpDeleteFileA(0, u"a"),
                                       net.FtpRenameFileA(0, u"a", u"b")};
    EXPECT_THAT(answers, testing::Each(0));
    EXPECT_EQ(net.GetLastError(), internet_error::invalid_handle);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(buffer, String(10, u'x'));
    EXPECT_EQ(data, WIN32_FIND_DATA{});
}

// ---- Login ----------------------------------------------------------------------------------

TEST(Login, RefusalsHaveTheirNumbers) {
    EXPECT_EQ(failure_of_connecting([](FtpPeer& peer) { peer.say("421 Full"); }),
              internet_error::extended_error);
    EXPECT_EQ(failure_of_connecting([](FtpPeer& peer) {
                  peer.say("220 Ready");
                  peer.answer("USER ola", "530 Not you");
              }),
              internet_error::incorrect_user_name);
    EXPECT_EQ(failure_of_connecting([](FtpPeer& peer) {
                  peer.say("220 Ready");
                  peer.answer("USER ola", "331 Password");
                  peer.answer("PASS Tajne;1", "530 Wrong");
              }),
              internet_error::incorrect_password);
    EXPECT_EQ(failure_of_connecting([](FtpPeer& peer) {
                  peer.say("220 Ready");
                  peer.answer("USER ola", "331 Password");
                  peer.answer("PASS Tajne;1", "332 Account");
              }),
              internet_error::login_failure);
}

TEST(Login, TheAnswerIsToldAndNotThePassword) {
    ScriptedFtpServer server([](FtpPeer& peer) {
        peer.say("220 Ready");
        peer.answer("USER ola", "331 Password");
        peer.answer("PASS", "530-No\r\n entry\r\n530 Wrong");
    });
    Client client(server.port());
    Long error = client.net.GetLastError();
    EXPECT_EQ(client.response(error), "530-No\r\n entry\r\n530 Wrong");
    EXPECT_EQ(error, 530);
}

TEST(Login, OnlyPasswordsThatAreAskedForAreSent) {
    ScriptedFtpServer server([](FtpPeer& peer) {
        peer.say("220 Ready");
        peer.answer("USER ola", "230 In already");
        peer.answer("FEAT", "502 None");
        peer.answer("TYPE I", "200 Binary");
        peer.expect("QUIT");
    });
    Client client(server.port());
    EXPECT_NE(client.ftp, 0);
    EXPECT_EQ(client.net.InternetCloseHandle(client.ftp), 1);
    EXPECT_EQ(server.problems(), "");
    EXPECT_THAT(server.heard(), ElementsAre("USER ola", "FEAT", "TYPE I", "QUIT"));
}

TEST(Login, WithoutAUserAsAGuest) {
    ScriptedFtpServer server([](FtpPeer& peer) { peer.log_in(); });
    Client client(server.port(), true, u"", u"");
    EXPECT_NE(client.ftp, 0);
    EXPECT_THAT(server.heard(), Contains("USER anonymous"));
    EXPECT_THAT(server.heard(), Contains("PASS anonymous@"));
}

TEST(Login, PolishLettersAsTheServerSpeaks) {
    ScriptedFtpServer modern([](FtpPeer& peer) {
        peer.say("220 Ready");
        peer.answer("FEAT", "211-Features\r\n UTF8\r\n211 End");
        peer.answer("OPTS UTF8 ON", "501 No option");
        peer.answer("USER żółw", "331 Password");
        peer.answer("PASS gęś", "230 In");
        peer.answer("TYPE I", "200 Binary");
        peer.answer("DELE ćma", "250 Gone");
    });
    Client client(modern.port(), true, u"żółw", u"gęś");
    EXPECT_EQ(client.net.FtpDeleteFileA(client.ftp, u"ćma"), 1);
    EXPECT_EQ(modern.problems(), "");

    ScriptedFtpServer old([](FtpPeer& peer) {
        peer.say("220 Ready");
        peer.answer("FEAT", "530 Log in first");
        peer.answer("USER \xBF\xF3\xB3w", "331 Password");
        peer.answer("PASS g\xEA\x9C", "230 In");
        peer.answer("FEAT", "211-Features\r\n SIZE\r\n211 End");
        peer.answer("TYPE I", "200 Binary");
        peer.answer("DELE \xE6ma", "250 Gone");
    });
    Client other(old.port(), true, u"żółw", u"gęś");
    EXPECT_EQ(other.net.FtpDeleteFileA(other.ftp, u"ćma"), 1);
    EXPECT_EQ(other.net.FtpDeleteFileA(other.ftp, u"файл"), 0);
    EXPECT_EQ(other.net.GetLastError(), internet_error::invalid_parameter);
    EXPECT_EQ(old.problems(), "");
}

// ---- Texts that would be commands -----------------------------------------------------------

const String injections[] = {u"a\rb", u"a\nb", u"a\r\nDELE b", String(u"a\0b", 3), u"\n"};

TEST(Injection, NothingOfALoginIsSent) {
    for (const String& bad : injections) {
        const TestSocket listener = TestSocket::listening();
        const int port = listener.port();
        for (const auto& [user, password, host] :
             {std::array<StringView, 3>{bad, u"x", u"127.0.0.1"},
              std::array<StringView, 3>{u"ola", bad, u"127.0.0.1"},
              std::array<StringView, 3>{u"ola", u"x", bad}}) {
            Client client(port, true, user, password, host);
            EXPECT_EQ(client.ftp, 0);
            EXPECT_EQ(client.net.GetLastError(), internet_error::invalid_parameter);
        }
        EXPECT_FALSE(listener.is_ready(0));  // not even a connection
    }
}

TEST(Injection, NothingOfANameIsSent) {
    ScriptedFtpServer server([](FtpPeer& peer) {
        peer.log_in();
        peer.expect("QUIT");
    });
    Client client(server.port());
    const TestFolder folder;
    write_file(folder / "a", "a");
    WIN32_FIND_DATA data;
    for (const String& bad : injections) {
        const auto expect_refused = [&](Long answer) {
            EXPECT_EQ(answer, 0);
            EXPECT_EQ(client.net.GetLastError(), internet_error::invalid_parameter);
        };
        expect_refused(client.net.FtpSetCurrentDirectoryA(client.ftp, bad));
        expect_refused(client.net.FtpCreateDirectoryA(client.ftp, bad));
        expect_refused(client.net.FtpRemoveDirectoryA(client.ftp, bad));
        expect_refused(client.net.FtpDeleteFileA(client.ftp, bad));
        expect_refused(client.net.FtpRenameFileA(client.ftp, bad, u"b"));
        expect_refused(client.net.FtpRenameFileA(client.ftp, u"b", bad));
        expect_refused(client.net.FtpFindFirstFileA(client.ftp, bad, data, 0, 0));
        expect_refused(client.net.FtpFindFirstFileA(client.ftp, bad + u"/*", data, 0, 0));
        expect_refused(client.open(bad, internet::generic_read));
        expect_refused(client.open(bad, internet::generic_write));
        expect_refused(client.put(folder / "a", bad));
        expect_refused(client.get(bad, folder / "b"));
    }
    EXPECT_EQ(client.net.FtpDeleteFileA(client.ftp, u""), 0);
    EXPECT_EQ(client.net.GetLastError(), internet_error::invalid_parameter);
    EXPECT_FALSE(fs::exists(folder / "b"));
    client.net.InternetCloseHandle(client.ftp);
    EXPECT_THAT(server.heard(), ElementsAre("USER ola", "PASS Tajne;1", "FEAT", "TYPE I", "QUIT"));
}

// ---- Data connections -----------------------------------------------------------------------

TEST(Data, TheAddressOfAnotherHostIsNotFollowed) {
    const TestSocket trap = TestSocket::listening(other_loopback);
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.answer("EPSV", "500 What?");
        // The trap's address with a port that this server has open itself.
        const TestSocket listener = TestSocket::listening();
        const int port = listener.port();
        peer.answer("PASV", "227 Passive (127,0,0,2," + std::to_string(port / 256) + "," +
                                std::to_string(port % 256) + ")");
        peer.answer("RETR a", "150 Here");
        TestSocket data = listener.accept();
        data.send("good");
        data.close();
        peer.say("226 Done");
    });
    Client client(server.port());
    const Long file = client.open(u"a", internet::generic_read);
    EXPECT_EQ(read_all(client, file), "good");
    EXPECT_FALSE(trap.is_ready(0));
    EXPECT_EQ(server.problems(), "");
}

TEST(Data, EpsvThatWasRefusedIsNotAskedAgain) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        for (int i = 0; i < 2; ++i) {
            if (i == 0) {
                peer.answer("EPSV", "500 What?");
            }
            const TestSocket listener = TestSocket::listening();
            peer.answer("PASV", "227 Passive (10,9,8,7," + std::to_string(listener.port() / 256) +
                                    "," + std::to_string(listener.port() % 256) + ")");
            peer.answer("RETR a", "150 Here");
            listener.accept().send("good");
            peer.say("226 Done");
        }
    });
    Client client(server.port());
    for (int i = 0; i < 2; ++i) {
        const Long file = client.open(u"a", internet::generic_read);
        EXPECT_EQ(read_all(client, file), "good");
        EXPECT_EQ(client.net.InternetCloseHandle(file), 1);
    }
    EXPECT_EQ(server.problems(), "");
}

TEST(Data, NeitherWayOfPassiveIsThere) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.answer("EPSV", "229 Passive (|||0|)");
        peer.answer("PASV", "227 Passive (1,2,3)");
        peer.answer("PWD", "257 \"/\"");
    });
    Client client(server.port());
    EXPECT_EQ(client.open(u"a", internet::generic_read), 0);
    EXPECT_EQ(client.net.GetLastError(), internet_error::extended_error);
    EXPECT_EQ(client.response(), "227 Passive (1,2,3)");
    EXPECT_EQ(client.current_directory(), "/");
}

TEST(Data, TheServerRefusesTheDataConnection) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        int port = 0;
        {
            const TestSocket gone = TestSocket::listening();
            port = gone.port();
        }
        peer.answer("EPSV", "229 Passive (|||" + std::to_string(port) + "|)");
        peer.answer("PWD", "257 \"/\"");
    });
    Client client(server.port());
    EXPECT_EQ(client.open(u"a", internet::generic_read), 0);
    EXPECT_EQ(client.net.GetLastError(), internet_error::cannot_connect);
    EXPECT_EQ(client.current_directory(), "/");
}

TEST(Data, TheServerRefusesTheFile) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.open_passive();
        peer.answer("RETR brak", "550 Nie ma");
        peer.answer("PWD", "257 \"/\"");
    });
    Client client(server.port());
    EXPECT_EQ(client.open(u"brak", internet::generic_read), 0);
    EXPECT_EQ(client.net.GetLastError(), internet_error::extended_error);
    EXPECT_EQ(client.error_number(), 550);
    EXPECT_EQ(client.response(), "550 Nie ma");
    EXPECT_EQ(client.current_directory(), "/");
}

// The port of "EPRT |1|127.0.0.1|40001|" or of "PORT 127,0,0,1,156,65".
int port_told(const std::string& line) {
    if (line.starts_with("EPRT |1|127.0.0.1|")) {
        return std::stoi(line.substr(18));
    }
    const std::size_t last = line.rfind(',');
    const std::size_t before = line.rfind(',', last - 1);
    return std::stoi(line.substr(before + 1)) * 256 + std::stoi(line.substr(last + 1));
}

TEST(Data, ActiveTakesNobodyButTheServer) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        const std::string line = peer.expect("EPRT |1|127.0.0.1|");
        const int port = port_told(line);
        peer.say("200 Noted");
        peer.expect("RETR a");
        const TestSocket stranger = TestSocket::connected(port, other_loopback);
        stranger.send("evil");
        std::this_thread::sleep_for(50ms);
        peer.say("150 Here");
        TestSocket data = TestSocket::connected(port);
        data.send("good");
        data.close();
        peer.say("226 Done");
    });
    Client client(server.port(), false);
    const Long file = client.open(u"a", internet::generic_read);
    EXPECT_EQ(read_all(client, file), "good");
    EXPECT_EQ(server.problems(), "");
}

TEST(Data, ActiveByPortWhereEprtIsUnknown) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.answer("EPRT", "500 What?");
        for (int i = 0; i < 2; ++i) {
            const int port = port_told(peer.expect("PORT 127,0,0,1,"));
            peer.say("200 Noted");
            peer.answer("RETR a", "150 Here");
            TestSocket::connected(port).send("good");
            peer.say("226 Done");
        }
    });
    Client client(server.port(), false);
    for (int i = 0; i < 2; ++i) {
        const Long file = client.open(u"a", internet::generic_read);
        EXPECT_EQ(read_all(client, file), "good");
        client.net.InternetCloseHandle(file);
    }
    EXPECT_EQ(server.problems(), "");
}

TEST(Data, ActiveWithoutAConnection) {
    const ShortTimeouts timeouts;
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.answer("EPRT", "200 Noted");
        peer.answer("RETR a", "150 Here");
        std::this_thread::sleep_for(50ms);
        peer.say("425 Cannot reach you");
        peer.answer("EPRT", "200 Noted");
        peer.answer("RETR a", "150 Here");
        peer.hear();
    });
    Client client(server.port(), false);
    EXPECT_EQ(client.open(u"a", internet::generic_read), 0);
    EXPECT_EQ(client.error_number(), 425);
    const auto time = time_of([&] {
        EXPECT_EQ(client.open(u"a", internet::generic_read), 0);
        EXPECT_EQ(client.error_number(), internet_error::timeout);
    });
    EXPECT_LT(time, 2s);
}

// ---- Downloads ------------------------------------------------------------------------------

TEST(Download, SilenceEndsWithTheTimeout) {
    const ShortTimeouts timeouts;
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.open_passive();
        peer.answer("RETR a", "150 Here");
        const TestSocket data = peer.accept_data();
        data.send("some");
        peer.hear();
    });
    Client client(server.port());
    const Long file = client.open(u"a", internet::generic_read);
    ASSERT_NE(file, 0);
    std::array<Byte, 100> block{};
    Long count = 0;
    const auto time = time_of([&] {
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(client.net.InternetReadFile(file, block, count), 0);
            EXPECT_EQ(client.error_number(), internet_error::timeout);
        }
        EXPECT_EQ(client.net.InternetCloseHandle(client.ftp), 1);
    });
    EXPECT_LT(time, 2s);
}

// What the last read answers when the server ends a file in its own way.
struct EndCase {
    std::string last_word;  // "" for none, and the control connection closed
    Long error;             // 0 for a good end
};

TEST(Download, TheServersLastWordDecides) {
    for (const auto& [last_word, error] :
         {EndCase{"226 Done", 0}, EndCase{"250 Done", 0}, EndCase{"426 Broken off", 426},
          EndCase{"451 Disk", 451}, EndCase{"", internet_error::connection_aborted}}) {
        ScriptedFtpServer server([&, word = last_word](FtpPeer& peer) {
            peer.log_in();
            peer.open_passive();
            peer.answer("RETR a", "150 Here (1000 bytes)");
            peer.accept_data().send(std::string(250, 'x'));
            if (!word.empty()) {
                peer.say(word);
                peer.answer("PWD", "257 \"/\"");
            }
        });
        Client client(server.port());
        const Long file = client.open(u"a", internet::generic_read);
        std::array<Byte, 100> block{};
        Long count = 0;
        EXPECT_EQ(client.net.InternetReadFile(file, block, count), 1);
        EXPECT_EQ(client.net.InternetReadFile(file, block, count), 1);
        EXPECT_EQ(count, 100);
        EXPECT_EQ(client.net.InternetReadFile(file, block, count), error == 0 ? 1 : 0);
        EXPECT_EQ(count, error == 0 ? 50 : 0);
        EXPECT_EQ(error == 0 ? 0 : client.error_number(), error);
        EXPECT_EQ(client.net.InternetReadFile(file, block, count), error == 0 ? 1 : 0);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(client.net.InternetCloseHandle(file), 1);
        EXPECT_EQ(client.current_directory(), last_word.empty() ? "" : "/");
    }
}

TEST(Download, AResetIsNoEnd) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.open_passive();
        peer.answer("RETR a", "150 Here");
        TestSocket data = peer.accept_data();
        data.send("some");
        std::this_thread::sleep_for(50ms);
        data.reset();
        peer.say("226 Or so");
        peer.answer("PWD", "257 \"/\"");
    });
    Client client(server.port());
    const TestFolder folder;
    EXPECT_EQ(client.get(u"a", folder / "a"), 0);
    EXPECT_EQ(client.error_number(), internet_error::connection_reset);
    EXPECT_EQ(client.current_directory(), "/");
}

TEST(Download, WhatAFailedOneHasWrittenStays) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.serve_data("RETR a", "some", "426 Broken off");
    });
    Client client(server.port());
    const TestFolder folder;
    EXPECT_EQ(client.get(u"a", folder / "a"), 0);
    EXPECT_EQ(client.error_number(), 426);
    EXPECT_EQ(bytes_of(folder / "a"), "some");
}

TEST(Download, AnEmptyFileWithoutAPreliminaryReply) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.open_passive();
        peer.expect("RETR a");
        peer.accept_data().close();
        peer.say("226 Nothing in it");
        peer.answer("PWD", "257 \"/\"");
    });
    Client client(server.port());
    const TestFolder folder;
    EXPECT_EQ(client.get(u"a", folder / "a"), 1);
    EXPECT_EQ(fs::file_size(folder / "a"), 0);
    EXPECT_EQ(client.current_directory(), "/");
}

TEST(Download, OneTransferAtATime) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.serve_data("RETR a", "good");
        peer.answer("PWD", "257 \"/\"");
    });
    Client client(server.port());
    const TestFolder folder;
    write_file(folder / "a", "a");
    const Long file = client.open(u"a", internet::generic_read);
    WIN32_FIND_DATA data;
    const auto expect_busy = [&](Long answer) {
        EXPECT_EQ(answer, 0);
        EXPECT_EQ(client.net.GetLastError(), internet_error::transfer_in_progress);
    };
    expect_busy(client.open(u"b", internet::generic_read));
    expect_busy(client.open(u"b", internet::generic_write));
    expect_busy(client.net.FtpDeleteFileA(client.ftp, u"b"));
    expect_busy(client.net.FtpRenameFileA(client.ftp, u"b", u"c"));
    expect_busy(client.net.FtpFindFirstFileA(client.ftp, u"*", data, 0, 0));
    expect_busy(client.put(folder / "a", u"b"));
    expect_busy(client.get(u"b", folder / "b"));
    EXPECT_EQ(client.current_directory(), "");
    EXPECT_EQ(read_all(client, file), "good");
    EXPECT_EQ(client.current_directory(), "");  // until it is closed
    std::array<Byte, 4> block{};
    Long count = 0;
    EXPECT_EQ(client.net.InternetWriteFile(file, block, count), 0);
    EXPECT_EQ(client.net.GetLastError(), internet_error::incorrect_handle_type);
    EXPECT_EQ(client.net.InternetCloseHandle(file), 1);
    EXPECT_EQ(client.net.InternetCloseHandle(file), 0);
    EXPECT_EQ(client.net.GetLastError(), internet_error::invalid_handle);
    EXPECT_EQ(client.current_directory(), "/");
    EXPECT_EQ(server.problems(), "");
}

TEST(Download, LocalErrorsHaveTheirNumbers) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.answer("PWD", "257 \"/\"");
    });
    Client client(server.port());
    const TestFolder folder;
    write_file(folder / "a", "a");
    fs::create_directory(folder / "sub");
    Long context = 0;
    const auto number = [&](Long answer) {
        EXPECT_EQ(answer, 0);
        return client.error_number();
    };
    EXPECT_EQ(number(client.get(u"a", folder / "none/a")), internet_error::path_not_found);
    EXPECT_EQ(number(client.get(u"a", folder / "a/b")), internet_error::path_not_found);
    EXPECT_EQ(number(client.get(u"a", folder / "sub")), internet_error::access_denied);
    EXPECT_EQ(number(client.get(u"a", "/dev/full")), internet_error::access_denied);
    EXPECT_EQ(number(client.net.FtpGetFileA(client.ftp, u"a", windows_path(folder / "a"), true, 0,
                                            0, context)),
              internet_error::file_exists);
    EXPECT_EQ(number(client.net.FtpGetFileA(client.ftp, u"a", u"", false, 0, 0, context)),
              internet_error::invalid_parameter);
    EXPECT_EQ(number(client.net.FtpGetFileA(client.ftp, u"a", u"Z:\\b", false, 0,
                                            internet::transfer_type_ascii, context)),
              internet_error::invalid_parameter);
    EXPECT_EQ(number(client.put(folder / "none", u"a")), internet_error::file_not_found);
    EXPECT_EQ(number(client.put(folder / "none/a", u"a")), internet_error::path_not_found);
    EXPECT_EQ(number(client.put(folder / "sub", u"a")), internet_error::access_denied);
    EXPECT_EQ(bytes_of(folder / "a"), "a");
    EXPECT_EQ(client.current_directory(), "/");
    EXPECT_EQ(server.problems(), "");
}

TEST(Download, AFullDiskEndsItAndTheConnectionGoesOn) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.open_passive();
        peer.answer("RETR a", "150 Here");
        TestSocket data = peer.accept_data();
        while (data.send(std::string(65536, 'x'))) {
        }
        data.close();
        peer.say("426 Broken off");
        peer.answer("PWD", "257 \"/\"");
    });
    Client client(server.port());
    const TestFolder folder;
    // The disk is full where this process may write no more; the signal that comes with it is
    // ignored, so that the call fails.
    rlimit previous{};
    ::getrlimit(RLIMIT_FSIZE, &previous);
    rlimit small = previous;
    small.rlim_cur = 100000;
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &small);
    const Long answer = client.get(u"a", folder / "a");
    ::setrlimit(RLIMIT_FSIZE, &previous);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(answer, 0);
    EXPECT_EQ(client.error_number(), internet_error::disk_full);
    EXPECT_EQ(client.current_directory(), "/");
}

TEST(Download, TheReadOnlyAttribute) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.serve_data("RETR a", "some");
    });
    Client client(server.port());
    const TestFolder folder;
    Long context = 0;
    EXPECT_EQ(
        client.net.FtpGetFileA(client.ftp, u"a", windows_path(folder / "a"), true, 1, 0, context),
        1);
    EXPECT_EQ(bytes_of(folder / "a"), "some");
    EXPECT_EQ(fs::status(folder / "a").permissions(), fs::perms(0444));
}

// ---- Uploads --------------------------------------------------------------------------------

TEST(Upload, WhatIsWrittenComesToTheServerBeforeTheEnd) {
    std::promise<std::string> arrived;
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.open_passive();
        peer.answer("STOR a", "150 Go");
        const TestSocket data = peer.accept_data();
        arrived.set_value(data.is_ready() ? data.receive(1000) : "");
        static_cast<void>(data.receive_all());
        peer.say("226 Whole");
    });
    Client client(server.port());
    const Long file = client.open(u"a", internet::generic_write);
    Long count = 0;
    EXPECT_EQ(client.net.InternetWriteFile(file, bytes_to_send("one block"), count), 1);
    EXPECT_EQ(arrived.get_future().get(), "one block");  // and the file is still open
    EXPECT_EQ(client.net.InternetCloseHandle(file), 1);
    EXPECT_EQ(server.problems(), "");
}

TEST(Upload, SmallWritesTravelTogether) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.open_passive();
        peer.answer("STOR a", "150 Go");
        const TestSocket data = peer.accept_data();
        peer.say(data.receive_all() == std::string(5000, 'x') ? "226 Whole" : "451 Not whole");
    });
    Client client(server.port());
    const Long file = client.open(u"a", internet::generic_write);
    const std::string block(100, 'x');
    Long count = 0;
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(client.net.InternetWriteFile(file, bytes_to_send(block), count), 1);
        EXPECT_EQ(count, 100);
    }
    EXPECT_EQ(client.net.InternetWriteFile(file, {}, count), 1);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(client.net.InternetReadFile(file, {}, count), 0);
    EXPECT_EQ(client.net.InternetCloseHandle(file), 1);
    EXPECT_EQ(server.problems(), "");
}

TEST(Upload, ABrokenConnectionIsToldAtTheLatestOnClose) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.open_passive();
        peer.answer("STOR a", "150 Go");
        peer.accept_data().reset();
        peer.say("426 Lost you");
        peer.answer("PWD", "257 \"/\"");
    });
    Client client(server.port());
    const Long file = client.open(u"a", internet::generic_write);
    Long count = 0;
    static_cast<void>(
        client.net.InternetWriteFile(file, bytes_to_send(std::string(100, 'x')), count));
    EXPECT_EQ(client.net.InternetCloseHandle(file), 0);
    EXPECT_EQ(client.error_number(), 426);
    EXPECT_EQ(client.net.InternetCloseHandle(file), 0);  // gone all the same
    EXPECT_EQ(client.net.GetLastError(), internet_error::invalid_handle);
    EXPECT_EQ(client.current_directory(), "/");
}

TEST(Upload, AServerThatHasEnoughIsHeardAtOnce) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.open_passive();
        peer.answer("STOR a", "150 Go");
        const TestSocket data = peer.accept_data();
        peer.say("552 No more room");  // and reads nothing
        peer.answer("PWD", "257 \"/\"");
    });
    Client client(server.port());
    const Long file = client.open(u"a", internet::generic_write);
    const std::string block(65536, 'x');
    Long count = 0;
    int blocks = 0;
    const auto time = time_of([&] {
        while (blocks < 1000 && client.net.InternetWriteFile(file, bytes_to_send(block), count)) {
            ++blocks;
        }
    });
    EXPECT_LT(blocks, 1000);
    EXPECT_LT(time, 5s);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(client.error_number(), 552);
    EXPECT_EQ(client.net.InternetWriteFile(file, bytes_to_send(block), count), 0);
    EXPECT_EQ(client.net.InternetCloseHandle(file), 0);
    EXPECT_EQ(client.current_directory(), "/");
}

TEST(Upload, AServerThatTakesNothing) {
    const ShortTimeouts timeouts;
    const TestFolder folder;
    write_file(folder / "a", std::string(30'000'000, 'x'));
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.open_passive();
        peer.answer("STOR a", "150 Go");
        const TestSocket data = peer.accept_data();
        peer.hear();
    });
    Client client(server.port());
    const auto time = time_of([&] { EXPECT_EQ(client.put(folder / "a", u"a"), 0); });
    EXPECT_EQ(client.error_number(), internet_error::timeout);
    EXPECT_LT(time, 3s);
    client.net.InternetCloseHandle(client.session);
}

TEST(Upload, TheServerNeverConfirms) {
    const ShortTimeouts timeouts;
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.open_passive();
        peer.answer("STOR a", "150 Go");
        static_cast<void>(peer.accept_data().receive_all());
        peer.hear();
    });
    Client client(server.port());
    const Long file = client.open(u"a", internet::generic_write);
    EXPECT_EQ(client.net.InternetCloseHandle(file), 0);
    EXPECT_EQ(client.error_number(), internet_error::timeout);
    client.net.InternetCloseHandle(client.session);
}

// ---- Listings -------------------------------------------------------------------------------

constexpr const char* three_lines =
    "total 3\r\n"
    "drwxr-xr-x 2 o g 4096 Nov 20 2025 dane\r\n"
    "-rw-r--r-- 1 o g 300 Nov 20 2025 a b.txt\r\n"
    "-rw-r--r-- 1 o g 7 Nov 20 2025 c.TXT\r\n";

TEST(Find, ComparesHereAndAsksForTheFolder) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.serve_data("LIST", three_lines);
        peer.serve_data("LIST", three_lines);
        peer.serve_data("LIST /x y", three_lines);
        peer.serve_data("LIST ./-R", three_lines);
        peer.serve_data("LIST", three_lines);
        peer.serve_data("LIST dane", "-rw-r--r-- 1 o g 7 Nov 20 2025 w.txt\r\n");
        peer.serve_data("LIST", three_lines);
    });
    Client client(server.port());
    EXPECT_THAT(client.names(u"*.*"), ElementsAre("dane", "a b.txt", "c.TXT"));
    EXPECT_THAT(client.names(u"a?b.txt"), ElementsAre("a b.txt"));
    EXPECT_THAT(client.names(u"\\x y\\*.TXT"), ElementsAre("c.TXT"));
    EXPECT_THAT(client.names(u"-R/*"), ElementsAre("dane", "a b.txt", "c.TXT"));
    EXPECT_THAT(client.names(u"dane"), ElementsAre("w.txt"));
    EXPECT_THAT(client.names(u"brak.txt"), ElementsAre());
    EXPECT_EQ(client.net.GetLastError(), internet_error::no_more_files);
    // The number of "not there" is not hidden by the code of a good answer.
    EXPECT_EQ(client.error_number(), internet_error::no_more_files);
    EXPECT_EQ(client.response(), "226 Done");
    EXPECT_EQ(server.problems(), "");
}

TEST(Find, ByFactsWhereTheServerHasThem) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in("211-Features\r\n MLST type*;size*;\r\n211 End");
        peer.serve_data("MLSD", "type=file;size=300;modify=20240517134501; a\r\n");
        peer.serve_data("MLSD /x", "type=dir; d\r\n");
        peer.open_passive();
        peer.answer("MLSD", "502 Not really");
        peer.serve_data("LIST", three_lines);
        peer.serve_data("LIST", three_lines);
        peer.open_passive();
        peer.answer("LIST brak", "550 No such folder");
    });
    Client client(server.port());
    EXPECT_THAT(client.names(u"*"), ElementsAre("a"));
    EXPECT_THAT(client.names(u"/x/"), ElementsAre("d"));
    EXPECT_EQ(client.names(u"*").size(), 3);
    EXPECT_EQ(client.names(u"*").size(), 3);
    EXPECT_THAT(client.names(u"brak/*"), ElementsAre());
    EXPECT_EQ(client.net.GetLastError(), internet_error::extended_error);
    EXPECT_EQ(client.error_number(), 550);
    EXPECT_EQ(server.problems(), "");
}

TEST(Find, AnEndlessListingIsLeft) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.open_passive();
        peer.answer("LIST", "150 Here");
        const TestSocket data = peer.accept_data();
        while (data.send(std::string(1 << 20, 'x'))) {
        }
    });
    Client client(server.port());
    WIN32_FIND_DATA data;
    EXPECT_EQ(client.net.FtpFindFirstFileA(client.ftp, u"*", data, 0, 0), 0);
    EXPECT_EQ(client.error_number(), internet_error::ftp_dropped);
    EXPECT_EQ(data, WIN32_FIND_DATA{});
    client.net.InternetCloseHandle(client.session);
}

// ---- What callers are told ------------------------------------------------------------------

TEST(Response, FitsOrTellsItsLength) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.answer("DELE", "550 Nie ma pliku \xBF\xF3\xB3w");
    });
    Client client(server.port());
    EXPECT_EQ(client.net.FtpDeleteFileA(client.ftp, u"a"), 0);
    String text(5, u'x');
    Long length = 5;
    Long error = 77;
    EXPECT_EQ(client.net.InternetGetLastResponseInfoA(error, text, length), 0);
    EXPECT_EQ(client.net.GetLastError(), 122);
    EXPECT_EQ(length, 21);
    EXPECT_EQ(error, 550);
    EXPECT_EQ(text, u"xxxxx");
    text.assign(25, u'x');
    length = 25;
    EXPECT_EQ(client.net.InternetGetLastResponseInfoA(error, text, length), 1);
    EXPECT_EQ(length, 21);
    EXPECT_EQ(text, u"550 Nie ma pliku żółwxxxx");
}

TEST(Response, IsTheThreadsOwn) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.answer("DELE", "550 No");
    });
    Client client(server.port());
    EXPECT_EQ(client.net.FtpDeleteFileA(client.ftp, u"a"), 0);
    std::thread([&] {
        EXPECT_EQ(client.net.GetLastError(), 0);
        EXPECT_EQ(client.response(), "");
    }).join();
    EXPECT_EQ(client.response(), "550 No");
}

TEST(CurrentDirectory, FitsOrTellsItsLength) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        for (int i = 0; i < 3; ++i) {
            peer.answer("PWD", "257 \"/abc\"");
        }
        peer.answer("PWD", "257 nothing");
        peer.answer("PWD", "550 No");
    });
    Client client(server.port());
    for (const Long room : {0, 4}) {
        String buffer(4, u'x');
        Long length = room;
        EXPECT_EQ(client.net.FtpGetCurrentDirectoryA(client.ftp, buffer, length), 0);
        EXPECT_EQ(client.error_number(), 122);
        EXPECT_EQ(length, 5);
        EXPECT_EQ(buffer, u"xxxx");
    }
    String buffer(6, u'x');
    Long length = 6;
    EXPECT_EQ(client.net.FtpGetCurrentDirectoryA(client.ftp, buffer, length), 1);
    EXPECT_EQ(length, 4);
    EXPECT_EQ(buffer, String(u"/abc\0x", 6));
    for (int i = 0; i < 2; ++i) {
        length = 6;
        EXPECT_EQ(client.net.FtpGetCurrentDirectoryA(client.ftp, buffer, length), 0);
        EXPECT_EQ(client.net.GetLastError(), internet_error::extended_error);
    }
}

TEST(Handles, ClosingLeavesNoDescriptor) {
    const std::size_t before = open_descriptors();
    {
        ScriptedFtpServer server([&](FtpPeer& peer) {
            peer.log_in();
            peer.open_passive();
            peer.answer("RETR a", "150 Here");
            const TestSocket data = peer.accept_data();
            data.send(std::string(100, 'x'));
            peer.hear();
        });
        ShortTimeouts timeouts;
        Client client(server.port());
        const Long file = client.open(u"a", internet::generic_read);
        EXPECT_NE(file, 0);
        EXPECT_EQ(client.net.InternetCloseHandle(client.session), 1);  // the others with it
        EXPECT_EQ(client.net.InternetCloseHandle(file), 0);
        EXPECT_EQ(client.net.InternetCloseHandle(client.ftp), 0);
    }
    EXPECT_EQ(open_descriptors(), before);
}

TEST(Handles, ASilentServerDoesNotHoldUpTheGoodBye) {
    ScriptedFtpServer server([&](FtpPeer& peer) {
        peer.log_in();
        peer.expect("QUIT");
        peer.hear();
    });
    Client client(server.port());
    const auto time = time_of([&] { EXPECT_EQ(client.net.InternetCloseHandle(client.ftp), 1); });
    EXPECT_LT(time, 2s);
}

}  // namespace
}  // namespace kvarta16::internet_tests
