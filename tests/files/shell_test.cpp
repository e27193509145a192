// Programs, keys, the version of the system, the marker file and the keyboard break.
#include <kvarta16/files/B_WinWer.h>

#include "files_support.h"

namespace kvarta16::files_tests {
namespace {

using testing_support::FakeMessages;
using testing_support::FakeProcesses;

// ---- Programs and keys ----------------------------------------------------------------------

TEST(Shell, SyncShell) {
    FakePlatform fake;
    EXPECT_EQ(io().SyncShell(u"pakuj.exe a b").raw, -1);
    EXPECT_EQ(io().SyncShell(u"\"c:\\x y.exe\"", 500, true, true).raw, -1);
    EXPECT_EQ(io().SyncShell(u"z", -1, false, Boolean::from_raw(1)).raw, -1);
    EXPECT_EQ(fake.processes.started,
              (std::vector<FakeProcesses::Start>{
                  {u"pakuj.exe a b", 3}, {u"\"c:\\x y.exe\"", 0}, {u"z", 0}}));
    EXPECT_TRUE(fake.boxes.shown.empty());
    EXPECT_TRUE(fake.sleeper.sleeps.empty());
    fake.processes.task = 0;
    EXPECT_EQ(io().SyncShell(u"x").raw, 0);
    EXPECT_TRUE(fake.boxes.shown.empty());
    fake.processes.task = -5;
    EXPECT_EQ(io().SyncShell(u"x").raw, -1);
}

TEST(Shell, ProgramThatDoesNotStartIsToldInABox) {
    FaultyPlatform host;
    host.plan->fail_at("Shell", 1, FaultSpan::Once, error::file_not_found);
    EXPECT_EQ(io().SyncShell(u"nie_ma.exe").raw, 0);
    EXPECT_EQ(boxes_of(host.fake), Lines{"File not found|48|Error:53"});
    EXPECT_EQ(io().SyncShell(u"nie_ma.exe").raw, -1);
    host.plan->fail_at("Shell", 1, FaultSpan::Once, -7);
    EXPECT_EQ(io().SyncShell(u"x").raw, 0);
    EXPECT_EQ(boxes_of(host.fake).back(),
              "Application-defined or object-defined error|48|Error:-7");
}

TEST(Shell, DoSendKeysTakesItsDelaysForFlags) {
    FakePlatform fake;
    io().DoSendKeys(u"Notatnik", 0, u"abc~", 0);
    io().DoSendKeys(u"N", 1, u"%{F4}", 0);
    io().DoSendKeys(u"", 0, u"", -1);
    io().DoSendKeys(u"M", 500, u"x", 256);
    EXPECT_EQ(fake.processes.activated,
              (std::vector<FakeProcesses::Activation>{
                  {u"Notatnik", false}, {u"N", true}, {u"", false}, {u"M", true}}));
    EXPECT_EQ(fake.processes.sent,
              (std::vector<FakeProcesses::Sending>{
                  {u"abc~", false}, {u"%{F4}", false}, {u"", true}, {u"x", true}}));
    EXPECT_TRUE(fake.boxes.shown.empty());
    EXPECT_TRUE(fake.sleeper.sleeps.empty());
}

TEST(Shell, DoSendKeysThatFails) {
    FaultyPlatform host;
    host.plan->fail_at("AppActivate", 1, FaultSpan::Once, 5);
    host.plan->fail_at("SendKeys", 1, FaultSpan::Once, 70);
    io().DoSendKeys(u"N", 0, u"x", 0);
    EXPECT_TRUE(host.fake.processes.sent.empty());
    io().DoSendKeys(u"N", 0, u"x", 0);
    EXPECT_EQ(host.fake.processes.activated.size(), 1U);
    EXPECT_EQ(boxes_of(host.fake), (Lines{"Invalid procedure call or argument|48|Error:5",
                                          "Permission denied|48|Error:70"}));
}

TEST(Shell, Withdrawn) {
    FakePlatform fake;
    fake.disk.add(u"C:\\a.txt", "A");
    io().Spakuj_i_Skasuj(u"C:\\a.txt", true);
    io().Spakuj_i_Skasuj(u"C:\\a.txt", false);
    EXPECT_EQ(boxes_of(fake), Lines(2, "Nie Używana opcja|0|-"));
    EXPECT_TRUE(fake.disk.log.empty());
}

TEST(Shell, DisplayOfErrors) {
    constexpr std::pair<Long, const char*> cases[] = {
        {0, "Brak Pamięci do wykonania operacji."},
        {2, "Nie znaleziono pliku."},
        {3, "Nie znaleziono ścieżki."},
        {5, "System operacyjny zabronił dostępu do pliku."},
        {8, "There was not enough memory to complete the operation."},
        {11, "Plik .exe ma zły format (nie -Win32\u00AE.exe lub błąd w .exe image)."},
        {26, "A sharing violation occurred."},
        {27, "The file name association is incomplete or invalid."},
        {28, "The DDE transaction could not be completed because the request timed out."},
        {29, "The DDE transaction failed."},
        {30,
         "The DDE transaction could not be completed because other DDE transactions were being "
         "processed."},
        {31, "There is no application associated with the given file name extension."},
        {32, "The specified dynamic-link library was not found."},
    };
    std::map<Long, std::string> texts(std::begin(cases), std::end(cases));
    FakePlatform fake;
    std::size_t calls = 0;
    Lines expected;
    for (Long code = -40; code <= 40; ++code) {
        io().pDisplayError_Shell(code);
        ++calls;
        if (code < 33) {
            expected.push_back(texts[code] + "|16|Uwaga");
        }
        EXPECT_EQ(fake.screen.pointers.size(), calls) << code;
    }
    for (const Long code : {std::numeric_limits<Long>::min(), std::numeric_limits<Long>::max()}) {
        io().pDisplayError_Shell(code);
        ++calls;
    }
    expected.emplace_back("|16|Uwaga");
    EXPECT_EQ(boxes_of(fake), expected);
    EXPECT_EQ(fake.screen.pointers, std::vector<Long>(calls, 0));
}

// The pointer is put back before the box comes up.
TEST(Shell, PointerBeforeTheBox) {
    class Watching final : public ForwardingBoxes {
      public:
        Watching(MessageBoxes& target, const testing_support::FakeScreen& screen)
            : ForwardingBoxes(target), screen_(&screen) {}
        MsgBoxResult MsgBox(StringView text, Long style, std::optional<StringView> title) override {
            EXPECT_EQ(screen_->pointers.size(), 1U);
            return ForwardingBoxes::MsgBox(text, style, title);
        }

      private:
        const testing_support::FakeScreen* screen_;
    };
    FakePlatform fake;
    Watching boxes(fake.boxes, fake.screen);
    Platform operations = fake.operations;
    operations.message_boxes = &boxes;
    const ScopedPlatform scope(operations);
    io().pDisplayError_Shell(2);
    EXPECT_EQ(fake.boxes.shown.size(), 1U);
}

// ---- The system -----------------------------------------------------------------------------

OSVERSIONINFO version_of(Long platform_id, Long major, Long minor) {
    OSVERSIONINFO version;
    version.dwPlatformId = platform_id;
    version.dwMajorVersion = major;
    version.dwMinorVersion = minor;
    return version;
}

TEST(System, GetWinPlatform) {
    FakePlatform fake;
    EXPECT_EQ(io().GetWinPlatform(), 0);
    fake.system_information.version_record = version_of(2, 6, 1);
    EXPECT_EQ(io().GetWinPlatform(), 2);
    fake.system_information.version_answer = 17;  // any success
    EXPECT_EQ(io().GetWinPlatform(), 2);
    fake.system_information.version_record = version_of(-1, 6, 1);
    EXPECT_EQ(io().GetWinPlatform(), -1);
    EXPECT_EQ(fake.system_information.asked_sizes, std::vector<Long>(4, 148));
}

TEST(System, GetWinPlatformThatFails) {
    FaultyPlatform host({{"GetVersionExA", 1, FaultSpan::FromThenOn}});
    host.fake.system_information.version_record = version_of(2, 6, 1);
    EXPECT_EQ(io().GetWinPlatform(), 0);
    EXPECT_EQ(B_WinWer().GetWindowsVersion(), Currency());
}

TEST(System, GetWindowsVersion) {
    struct Case {
        Long platform_id;
        Long major;
        Long minor;
        const char* code;
    };
    constexpr Long most = std::numeric_limits<Long>::max();
    constexpr Case cases[] = {
        {0, 0, 0, "3.1"},   {0, 6, 2, "3.1"},  {1, 4, 0, "2.1"},
        {1, 0, 0, "2.1"},   {1, 4, 10, "2.2"}, {1, 4, 90, "2.2"},
        {1, 4, -1, "2.2"},  {2, 3, 0, "3.5"},  {2, 3, 51, "3.5"},
        {2, 4, 0, "4"},     {2, 4, 7, "4"},    {2, 5, 0, "5"},
        {2, 5, 1, "5.1"},   {2, 5, 2, "5.2"},  {2, 5, 3, "5.3"},
        {2, 5, 10, "6"},    {2, 6, 0, "6"},    {2, 6, 1, "6.1"},
        {2, 6, 2, "6.2"},   {2, 6, 3, "6.3"},  {2, 10, 0, "10"},
        {2, 10, 5, "10.5"}, {2, 0, 0, "0"},    {2, 2, 9, "2.9"},
        {2, 6, 25, "8.5"},  {2, -1, 0, "-1"},  {3, 6, 1, "0"},
        {-1, 6, 1, "0"},    {most, 6, 1, "0"}, {2, most, most, "2362232011.7"},
    };
    FakePlatform fake;
    for (const Case& test : cases) {
        fake.system_information.version_record =
            version_of(test.platform_id, test.major, test.minor);
        EXPECT_EQ(B_WinWer().GetWindowsVersion(), frame_tests::parse_currency(test.code))
            << test.platform_id << " " << test.major << "." << test.minor;
    }
    for (const Long size : fake.system_information.asked_sizes) {
        EXPECT_EQ(size, 148);
    }
}

// Through Double and a coercion, as the quotient by ten suggests.
TEST(System, GetWindowsVersionTheOtherWay) {
    FakePlatform fake;
    Random random(81);
    for (int i = 0; i < 20'000; ++i) {
        const Long major = static_cast<Long>(random.between(5, 200));
        const Long minor = static_cast<Long>(random.between(0, 100'000));
        fake.system_information.version_record = version_of(2, major, minor);
        ASSERT_EQ(B_WinWer().GetWindowsVersion(), ToCurrency(Variant(major + minor / 10.0)))
            << major << "." << minor;
    }
}

TEST(System, GetWindowsVersionNeedsExactlyOne) {
    FakePlatform fake;
    fake.system_information.version_record = version_of(2, 6, 1);
    for (const Long answer : {-1, 2, 17}) {
        fake.system_information.version_answer = answer;
        EXPECT_EQ(B_WinWer().GetWindowsVersion(), Currency()) << answer;
    }
    fake.system_information.version_answer = 1;
    EXPECT_EQ(B_WinWer().GetWindowsVersion(), Currency::raw(61000));
    fake.system_information.version_record.reset();
    EXPECT_EQ(B_WinWer().GetWindowsVersion(), Currency());
}

// ---- The marker -----------------------------------------------------------------------------

// A pause in which, the n-th time, somebody leaves the marker.
class MarkerComes final : public ForwardingSleeper {
  public:
    MarkerComes(Sleeper& target, testing_support::MemoryDisk& disk, std::size_t n)
        : ForwardingSleeper(target), disk_(&disk), n_(n) {}
    void Sleep(Long milliseconds) override {
        ForwardingSleeper::Sleep(milliseconds);
        if (--n_ == 0) {
            disk_->add(u"C:\\paczka.zip_");
        }
    }

  private:
    testing_support::MemoryDisk* disk_;
    std::size_t n_;
};

TEST(Marker, DeletesAtOnceWhenItIsThere) {
    FakePlatform fake;
    fake.disk.add(u"C:\\paczka.zip");
    fake.disk.add(u"C:\\paczka.zip_");
    EXPECT_EQ(io().Skasuj_po_pakowaniu(u"C:\\paczka.zip"), 0);
    EXPECT_TRUE(fake.sleeper.sleeps.empty());
    EXPECT_EQ(fake.disk.find(u"C:\\paczka.zip"), nullptr);
    EXPECT_NE(fake.disk.find(u"C:\\paczka.zip_"), nullptr);
    EXPECT_EQ(fake.messages.pumped, 0);
}

TEST(Marker, WaitsAsLongAsItTakes) {
    for (const std::size_t n : {1U, 3U, 1000U}) {
        FakePlatform fake;
        fake.disk.add(u"C:\\paczka.zip");
        MarkerComes sleeper(fake.sleeper, fake.disk, n);
        Platform operations = fake.operations;
        operations.sleeper = &sleeper;
        const ScopedPlatform scope(operations);
        EXPECT_EQ(io().Skasuj_po_pakowaniu(u"C:\\paczka.zip"), 0);
        EXPECT_EQ(fake.sleeper.sleeps, std::vector<Long>(n, 2000));
        EXPECT_EQ(fake.disk.find(u"C:\\paczka.zip"), nullptr);
        EXPECT_EQ(fake.messages.pumped, 0);
        EXPECT_TRUE(fake.boxes.shown.empty());
    }
}

TEST(Marker, FileThatStaysIsNotTold) {
    FakePlatform fake;
    fake.disk.add(u"C:\\paczka.zip").is_held = true;
    fake.disk.add(u"C:\\paczka.zip_");
    EXPECT_EQ(io().Skasuj_po_pakowaniu(u"C:\\paczka.zip"), 0);
    fake.disk.remove(u"C:\\paczka.zip");
    EXPECT_EQ(io().Skasuj_po_pakowaniu(u"C:\\paczka.zip"), 0);
}

TEST(Marker, FolderIsNoMarker) {
    FakePlatform fake;
    fake.disk.add(u"C:\\paczka.zip");
    fake.disk.add_folder(u"C:\\paczka.zip_");
    MarkerComes sleeper(fake.sleeper, fake.disk, 2);
    Platform operations = fake.operations;
    operations.sleeper = &sleeper;
    const ScopedPlatform scope(operations);
    EXPECT_EQ(io().Skasuj_po_pakowaniu(u"C:\\paczka.zip"), 0);
    EXPECT_EQ(fake.sleeper.sleeps.size(), 2U);
}

// ---- The keyboard break ---------------------------------------------------------------------

TEST(Break, NoInput) {
    FakePlatform fake;
    EXPECT_EQ(io().Przerwij().raw, 0);
    EXPECT_EQ(fake.messages.input_states, 1);
    EXPECT_TRUE(fake.messages.peeks.empty());
}

TEST(Break, EscIsAskedAbout) {
    for (const MsgBoxResult answer : {MsgBoxResult::Yes, MsgBoxResult::No}) {
        FakePlatform fake;
        fake.messages.add_key(27);
        fake.boxes.answers = {answer};
        EXPECT_EQ(io().Przerwij(false, u"wydruk ?").raw, answer == MsgBoxResult::Yes ? -1 : 0);
        EXPECT_EQ(boxes_of(fake), Lines{"Przerwać wydruk ?|4|Naciśnięto Klawisz"});
        EXPECT_EQ(fake.messages.peeks, (std::vector<FakeMessages::Peek>{{0, 256, 264, 1}}));
        EXPECT_TRUE(fake.messages.queue.empty());
    }
    FakePlatform fake;
    fake.messages.add_key(27);
    EXPECT_EQ(io().Przerwij().raw, 0);
    EXPECT_EQ(boxes_of(fake), Lines{"Przerwać |4|Naciśnięto Klawisz"});
}

TEST(Break, SilentAsksNothing) {
    FakePlatform fake;
    fake.messages.add_key(27);
    EXPECT_EQ(io().Przerwij(true, u"x").raw, -1);
    EXPECT_TRUE(fake.boxes.shown.empty());
    EXPECT_EQ(io().Przerwij(true).raw, 0);
}

TEST(Break, EveryMessageOfTheRangeCountsForEsc) {
    for (Long message = 254; message <= 266; ++message) {
        FakePlatform fake;
        fake.messages.add_key(27, message);
        const bool is_key = message >= 256 && message <= 264;
        EXPECT_EQ(io().Przerwij(true).raw, is_key ? -1 : 0) << message;
        EXPECT_EQ(fake.messages.queue.size(), is_key ? 0U : 1U) << message;
    }
}

TEST(Break, AnotherKeyIsLost) {
    FakePlatform fake;
    fake.messages.add_key(u'A');
    fake.messages.add_key(u'A', 257);
    fake.messages.add_key(27);
    EXPECT_EQ(io().Przerwij(true).raw, 0);
    EXPECT_EQ(fake.messages.queue.size(), 2U);  // one message a call
    EXPECT_EQ(io().Przerwij(true).raw, 0);
    EXPECT_EQ(io().Przerwij(true).raw, -1);
    EXPECT_TRUE(fake.messages.queue.empty());
}

TEST(Break, MouseStays) {
    FakePlatform fake;
    fake.messages.add_mouse();
    EXPECT_EQ(io().Przerwij().raw, 0);
    EXPECT_EQ(fake.messages.queue.size(), 1U);
    fake.messages.add_key(27);
    EXPECT_EQ(io().Przerwij(true).raw, -1);
    EXPECT_EQ(fake.messages.queue.size(), 1U);
    EXPECT_EQ(fake.messages.queue[0].message, testing_support::WM_MOUSEMOVE);
    EXPECT_TRUE(fake.boxes.shown.empty());
}

TEST(Break, CallsThatFail) {
    for (const char* operation : {"GetInputState", "PeekMessageA"}) {
        FaultyPlatform host({{operation, 1, FaultSpan::Once}});
        host.fake.messages.add_key(27);
        EXPECT_EQ(io().Przerwij(true).raw, 0) << operation;
        EXPECT_EQ(io().Przerwij(true).raw, -1) << operation;
    }
}

}  // namespace
}  // namespace kvarta16::files_tests
