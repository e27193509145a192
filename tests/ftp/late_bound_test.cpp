// clsFTP as late-bound callers know it: members and the event by their names.

#include <kvarta16/frame/catalogue.h>

#include "ftp_support.h"

namespace kvarta16 {
namespace {

using namespace ftp_tests;

class LateBound : public Ftp {
  protected:
    Variant call(StringView name, Arguments& arguments, MemberKind kind = MemberKind::Method) {
        const MemberInfo* member = info.find(name, kind);
        if (member == nullptr) {
            ADD_FAILURE() << "no member " << to_utf8(name);
            return {};
        }
        return invoke(*member, object.self(), arguments);
    }
    Variant call(StringView name, std::initializer_list<Variant> arguments = {},
                 MemberKind kind = MemberKind::Method) {
        Arguments list(arguments);
        return call(name, list, kind);
    }
    Variant get(StringView name) { return call(name, {}, MemberKind::PropertyGet); }
    void put(StringView name, const Variant& value) {
        call(name, {value}, MemberKind::PropertyLet);
    }
    void connect_by_name() {
        put(u"ServerName", u"serwer");
        put(u"LoginName", u"ola");
        put(u"Password", u"tajne");
        EXPECT_EQ(call(u"Connect"), Variant(Boolean(true)));
    }

    const ClassInfo& info = *find_class(u"clsFTP");
    const EventInfo& progress = info.events->events[0];
    ClassObject object{info};
};

TEST_F(LateBound, ReadsAndWritesTheProperties) {
    EXPECT_EQ(get(u"Connected"), Variant(Boolean(false)));
    EXPECT_EQ(get(u"lMatching"), Variant(Long{0}));
    EXPECT_EQ(get(u"PassiveConnection"), Variant(Boolean(true)));
    put(u"ServerName", u"żółw");
    put(u"LoginName", Variant(Long{12}));
    put(u"Password", u"");
    put(u"Connected", Variant(Long{5}));
    put(u"lMatching", u"17");
    put(u"PassiveConnection", Variant(Long{0}));
    EXPECT_EQ(get(u"ServerName"), Variant(u"żółw"));
    EXPECT_EQ(get(u"LoginName"), Variant(u"12"));
    EXPECT_EQ(get(u"Password"), Variant(u""));
    EXPECT_EQ(get(u"Connected"), Variant(Boolean(true)));
    EXPECT_EQ(get(u"lMatching"), Variant(Long{17}));
    EXPECT_EQ(get(u"PassiveConnection"), Variant(Boolean(false)));
}

TEST_F(LateBound, ReadsAndWritesTheCurrentDirectory) {
    connect_by_name();
    fake.internet.directory = u"/dane";
    EXPECT_EQ(get(u"CurDir"), Variant(u"/dane/"));
    put(u"CurDir", u"inne");
    EXPECT_EQ(calls().back(), "FtpSetCurrentDirectoryA(2; inne)");
}

TEST_F(LateBound, KeepsTheFlagOfThePlatform) {
    connect_by_name();
    EXPECT_EQ(call(u"MakeDir", {u"nowy"}), Variant(Boolean::from_raw(1)));
    EXPECT_EQ(call(u"UploadFile", {u"C:\\nie ma", u"x"}), Variant(Boolean(false)));
}

TEST_F(LateBound, FillsInWhatIsLeftOut) {
    connect_by_name();
    fake.internet.add(u"a.txt", "abc");
    Arguments arguments;
    EXPECT_EQ(call(u"GetMatchingFiles", arguments), Variant(Boolean(true)));
    ASSERT_EQ(arguments.size(), 2u);
    EXPECT_EQ(arguments[0], Variant(u"*.*"));
    EXPECT_EQ(arguments[1], Variant(Boolean(false)));
    EXPECT_EQ(call(u"Nazwa_pliku", {Variant(Long{1})}), Variant(u"a.txt"));
    EXPECT_EQ(call(u"Data_pliku", {Variant(Long{1})}), Variant(Date{0}));
    EXPECT_THROW(call(u"Rozmiar_pliku", {Variant(Long{2})}), Failure);
    EXPECT_EQ(call(u"FTPHwnd"), Variant(Long{2}));
    EXPECT_EQ(call(u"InternetHwnd"), Variant(Long{1}));
}

TEST_F(LateBound, WritesTheArgumentsBack) {
    connect_by_name();
    fake.disk.add(u"C:\\dane\\a.bin", "abc");
    Arguments whole{u"C:\\dane\\a.bin", u"w.bin", Variant(Boolean(true))};
    EXPECT_EQ(call(u"UploadFile", whole), Variant(Boolean::from_raw(1)));
    EXPECT_EQ(whole[2], Variant(Boolean(false)));

    String local = u" C:\\dane\\a.bin ";
    Arguments counted{Variant::reference(local), u"  b.bin", Variant(Boolean(true))};
    EXPECT_EQ(call(u"UploadFileProgress", counted), Variant(Boolean(true)));
    EXPECT_EQ(local, u"C:\\dane\\a.bin");
    EXPECT_EQ(counted[1], Variant(u"b.bin"));
    EXPECT_EQ(counted[2], Variant(Boolean(false)));
    EXPECT_EQ(fake.internet.files.at(u"b.bin"), "abc");
}

// ---- The event --------------------------------------------------------------------------------

TEST_F(LateBound, HearsTheEventByItsName) {
    EXPECT_EQ(progress.name, u"FileTransferProgress");
    connect_by_name();
    fake.disk.add(u"C:\\dane\\a.bin", bytes_of(250));
    Events heard;
    progress.connect(object.self(), [&](Arguments& arguments) {
        ASSERT_EQ(arguments.size(), 2u);
        EXPECT_TRUE(arguments[0].is_reference());
        EXPECT_TRUE(arguments[1].is_reference());
        heard.emplace_back(*arguments[0].get_if<Long>(), *arguments[1].get_if<Long>());
    });
    EXPECT_EQ(call(u"UploadFileProgress", {u"C:\\dane\\a.bin", u"b", Variant(Boolean())}),
              Variant(Boolean(true)));
    EXPECT_EQ(heard, (Events{{100, 250}, {200, 250}, {250, 250}}));
}

TEST_F(LateBound, WritesTheEventsArguments) {
    connect_by_name();
    fake.disk.add(u"C:\\dane\\a.bin", bytes_of(250));
    Events heard;
    progress.connect(object.self(), [&](Arguments& arguments) {
        heard.emplace_back(*arguments[0].get_if<Long>(), *arguments[1].get_if<Long>());
        arguments[0].assign(u"7");
        arguments[1].assign(Variant(Double{230.4}));
    });
    EXPECT_EQ(call(u"UploadFileProgress", {u"C:\\dane\\a.bin", u"b", Variant(Boolean())}),
              Variant(Boolean(true)));
    EXPECT_EQ(heard, (Events{{100, 250}, {107, 230}, {230, 230}}));
    EXPECT_EQ(fake.internet.files.at(u"b"), bytes_of(250).substr(0, 230));
}

TEST_F(LateBound, ReplacesAndTakesOffAHandler) {
    connect_by_name();
    fake.disk.add(u"C:\\dane\\a.bin", "abc");
    int first = 0;
    int second = 0;
    const auto send = [&] {
        call(u"UploadFileProgress", {u"C:\\dane\\a.bin", u"b", Variant(Boolean())});
    };
    progress.connect(object.self(), [&](Arguments&) { ++first; });
    send();
    progress.connect(object.self(), [&](Arguments&) { ++second; });
    send();
    progress.connect(object.self(), nullptr);
    send();
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
}

TEST_F(LateBound, CancelsFromTheHandler) {
    connect_by_name();
    fake.internet.add(u"plik", bytes_of(250));
    call(u"GetMatchingFiles");
    progress.connect(object.self(), [&](Arguments&) { put(u"Connected", Variant(false)); });
    EXPECT_EQ(call(u"DownloadFileProgress", {u"plik", u"C:\\dane\\a", Variant(true)}),
              Variant(Boolean(false)));
    EXPECT_EQ(fake.disk.find(u"C:\\dane\\a")->contents, bytes_of(250).substr(0, 100));
}

TEST_F(LateBound, TheObjectsHearApart) {
    const ClassObject other(info);
    int heard = 0;
    progress.connect(other.self(), [&](Arguments&) { ++heard; });
    connect_by_name();
    fake.disk.add(u"C:\\dane\\a.bin", "abc");
    call(u"UploadFileProgress", {u"C:\\dane\\a.bin", u"b", Variant(Boolean())});
    EXPECT_EQ(heard, 0);
}

}  // namespace
}  // namespace kvarta16
