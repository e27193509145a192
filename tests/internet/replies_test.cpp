// Replies of servers, handles, settings: without a socket.
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kvarta16/platform/posix/ftp/ascii.h>
#include <kvarta16/platform/posix/ftp/ftp_settings.h>
#include <kvarta16/platform/posix/ftp/handle_table.h>
#include <kvarta16/platform/posix/ftp/replies.h>

namespace kvarta16::posix {
namespace {

using State = ReplyBuilder::State;

// ---- Replies --------------------------------------------------------------------------------

struct ReplyCase {
    std::vector<std::string> lines;
    State state;  // after the last line; all before it want more
    int code;
};

const ReplyCase reply_cases[] = {
    {{"220 Ready"}, State::complete, 220},
    {{"220"}, State::complete, 220},
    {{"220 "}, State::complete, 220},
    {{"220-Hello", "220 Ready"}, State::complete, 220},
    // Codes within: another code, the same with "-", a longer number, the code without a blank.
    {{"230-Hello", "500 you may think", "230-still", "2300 no", "230x", " 230 no", "", "230 end"},
     State::complete,
     230},
    {{"211-Features", " UTF8", "211 End"}, State::complete, 211},
    {{"220-Hello"}, State::wants_more, 220},
    {{""}, State::broken, 0},
    {{"22"}, State::broken, 0},
    {{"600 x"}, State::broken, 0},
    {{"099 x"}, State::broken, 0},
    {{"2x0 x"}, State::broken, 0},
    {{"2200 x"}, State::broken, 220},
    {{" 220 x"}, State::broken, 0},
    {{"SSH-2.0-x"}, State::broken, 0},
    {{std::string("220 a\0b", 7)}, State::broken, 0},
    {{"220-x", std::string("\0", 1)}, State::broken, 220},
    {{std::string(8193, '2')}, State::broken, 0},
};

TEST(Reply, IsPutTogether) {
    for (const ReplyCase& one : reply_cases) {
        SCOPED_TRACE(one.lines.front());
        ReplyBuilder builder;
        for (std::size_t i = 0; i + 1 < one.lines.size(); ++i) {
            ASSERT_EQ(builder.add(one.lines[i]), State::wants_more) << one.lines[i];
        }
        EXPECT_EQ(builder.add(one.lines.back()), one.state);
        if (one.state != State::broken) {
            EXPECT_EQ(builder.reply().code, one.code);
        }
    }
}

TEST(Reply, KeepsItsLines) {
    ReplyBuilder builder;
    builder.add("550-No");
    builder.add(" such file");
    builder.add("550 Sorry");
    EXPECT_EQ(builder.reply().text, "550-No\r\n such file\r\n550 Sorry");
}

TEST(Reply, IsBounded) {
    ReplyBuilder lines;
    std::size_t count = 0;
    while (count < 100000 && lines.add("220-x") == State::wants_more) {
        ++count;
    }
    EXPECT_EQ(count, most_reply_lines);
    ReplyBuilder bytes;
    count = 0;
    while (count < 100000 && bytes.add("220-" + std::string(8000, 'x')) == State::wants_more) {
        ++count;
    }
    EXPECT_LE(bytes.reply().text.size(), longest_reply + longest_reply_line);
}

// ---- What replies tell ----------------------------------------------------------------------

struct PortCase {
    std::string text;
    int port;  // 0 for none
};

const PortCase extended_cases[] = {
    {"229 Entering Extended Passive Mode (|||6446|)", 6446},
    {"229 (!!!1!)", 1},
    {"229 (|||65535|)", 65535},
    {"229 (|||65536|)", 0},
    {"229 (|||0|)", 0},
    {"229 (|||99999999999999|)", 0},
    {"229 (|||-5|)", 0},
    {"229 (|||12", 0},
    {"229 (|||", 0},
    {"229 (||", 0},
    {"229 (", 0},
    {"229 (|1|10.0.0.1|21|)", 0},
    {"229 (11121)", 0},
    {"229", 0},
    {"", 0},
};

const PortCase passive_cases[] = {
    {"227 Entering Passive Mode (127,0,0,1,25,46)", 6446},
    {"227 Entering Passive Mode 127,0,0,1,25,46", 6446},
    {"227 =127,0,0,1,25,46", 6446},
    {"227 (10,1,2,3,0,1).", 1},
    {"227 (127,0,0,1,255,255)", 65535},
    {"227 (127,0,0,1,0,0)", 0},
    {"227 (127,0,0,1,256,0)", 0},
    {"227 (999,0,0,1,1,1)", 0},
    {"227 (127,0,0,1,25)", 0},
    {"227 (127,0,0,1,25,", 0},
    {"227 (127.0.0.1.25.46)", 0},
    {"227 (127, 0, 0, 1, 25, 46)", 0},
    {"227 (99999999999999,0,0,1,1,1)", 0},
    {"227", 0},
    {"", 0},
};

TEST(Reply, TellsPorts) {
    for (const PortCase& one : extended_cases) {
        EXPECT_EQ(extended_passive_port(one.text).value_or(0), one.port) << one.text;
    }
    for (const PortCase& one : passive_cases) {
        EXPECT_EQ(passive_port(one.text).value_or(0), one.port) << one.text;
    }
}

TEST(Reply, TellsAPath) {
    EXPECT_EQ(quoted_path("257 \"/\" is current").value_or("?"), "/");
    EXPECT_EQ(quoted_path("257 \"/a \"\"b\"\" c\"").value_or("?"), "/a \"b\" c");
    EXPECT_EQ(quoted_path("257 \"\"").value_or("?"), "");
    EXPECT_FALSE(quoted_path("257 /").has_value());
    EXPECT_FALSE(quoted_path("257 \"/").has_value());
    EXPECT_FALSE(quoted_path("257 \"/\"\"").has_value());
}

TEST(Reply, TellsFeatures) {
    Features features =
        features_of({211, "211-Features\r\n utf8\r\n MLST type*;size*;\r\n211 End"});
    EXPECT_TRUE(features.utf8);
    EXPECT_TRUE(features.machine_listing);
    features = features_of({211, "211-Features\r\n SIZE\r\n UTF80\r\n211 End"});
    EXPECT_FALSE(features.utf8);
    EXPECT_FALSE(features.machine_listing);
    features = features_of({500, "500-Unknown\r\n UTF8\r\n500 End"});
    EXPECT_FALSE(features.utf8);
}

TEST(Reply, TakesAnything) {
    std::mt19937 random(6);
    const std::string words[] = {"220",  "-",     " ",   "(",   "|",    ",",
                                 "255",  "65536", "\"",  "x",   "\r\n", "99999999999",
                                 "UTF8", ")",     "227", "229", "!"};
    std::uniform_int_distribution<std::size_t> word(0, std::size(words) - 1);
    std::uniform_int_distribution<int> count(0, 15);
    for (int round = 0; round < 50000; ++round) {
        std::string text;
        for (int i = count(random); i > 0; --i) {
            text += words[word(random)];
        }
        ReplyBuilder builder;
        for (std::string_view rest = text; !rest.empty();) {
            if (builder.add(taken_line(rest)) != State::wants_more) {
                break;
            }
        }
        static_cast<void>(features_of({211, text}));
        ASSERT_NE(extended_passive_port(text).value_or(1), 0);
        ASSERT_NE(passive_port(text).value_or(1), 0);
        ASSERT_LE(quoted_path(text).value_or("").size(), text.size());
    }
}

// ---- Settings -------------------------------------------------------------------------------

TEST(Settings, ComeFromTheEnvironment) {
    using namespace std::chrono_literals;
    for (const char* bad : {static_cast<const char*>(nullptr), "", "0", "-1", "5s", " 5", "86401",
                            "99999999999999999999"}) {
        const FtpSettings settings = ftp_settings_from(bad);
        EXPECT_EQ(settings.connect, 30s);
        EXPECT_EQ(settings.reply, 30s);
        EXPECT_EQ(settings.data, 60s);
    }
    const FtpSettings settings = ftp_settings_from("5");
    EXPECT_EQ(settings.connect, 5s);
    EXPECT_EQ(settings.reply, 5s);
    EXPECT_EQ(settings.data, 5s);
    EXPECT_EQ(ftp_settings_from("86400").data, 24h);
}

// ---- Handles --------------------------------------------------------------------------------

class First final : public Handled {};
class Second final : public Handled {};

template <class Body>
Long number_of_failure(Body&& body) {
    try {
        body();
    } catch (const FtpError& failed) {
        return failed.number();
    }
    return 0;
}

TEST(Handles, HaveKindsAndParents) {
    HandleTable table;
    const Long top = table.add(0, std::make_shared<First>());
    const Long middle = table.add(top, std::make_shared<Second>());
    const Long low = table.add(middle, std::make_shared<First>());
    const Long other = table.add(0, std::make_shared<First>());
    EXPECT_NE(top, 0);
    EXPECT_NO_THROW(static_cast<void>(table.get<First>(top)));
    EXPECT_EQ(number_of_failure([&] { static_cast<void>(table.get<Second>(top)); }),
              internet_error::incorrect_handle_type);
    for (const Long none : {0, -1, other + 1}) {
        EXPECT_EQ(number_of_failure([&] { static_cast<void>(table.get<First>(none)); }),
                  internet_error::invalid_handle);
        EXPECT_EQ(number_of_failure([&] { static_cast<void>(table.take(none)); }),
                  internet_error::invalid_handle);
    }
    const auto held = table.get<First>(low);
    const auto taken = table.take(top);
    ASSERT_EQ(taken.size(), 3);
    EXPECT_EQ(taken.front(), held);  // the youngest first
    for (const Long gone : {top, middle, low}) {
        EXPECT_EQ(number_of_failure([&] { static_cast<void>(table.take(gone)); }),
                  internet_error::invalid_handle);
    }
    EXPECT_EQ(
        number_of_failure([&] { static_cast<void>(table.add(top, std::make_shared<First>())); }),
        internet_error::invalid_handle);
    EXPECT_EQ(table.take(other).size(), 1);
}

}  // namespace
}  // namespace kvarta16::posix
