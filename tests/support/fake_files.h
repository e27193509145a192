// The platform around the files, without a system behind it: searches, files that are open under
// numbers, programs, waiting messages, the version record, the pointer and the folder dialog. What
// they answer is put there by the test, and each writes down how it was called.
//
//   MemoryFindFiles find;
//   find.add(u"b.txt").nFileSizeLow = 5;
//   FakeMessages messages;
//   messages.add_key(27);
//
// To have calls fail, put a fault plan before them (kvarta16/platform/forwarding.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include <support/fake_dao.h>

#include <kvarta16/frame/value.h>
#include <kvarta16/platform/file_table.h>
#include <kvarta16/platform/find_files.h>
#include <kvarta16/platform/folder_dialog.h>
#include <kvarta16/platform/messages.h>
#include <kvarta16/platform/processes.h>
#include <kvarta16/platform/screen.h>
#include <kvarta16/platform/system_information.h>

namespace kvarta16::testing_support {

// Writes a text and an ending zero over the beginning of a buffer, by the rule of the platform's
// calls for paths: the answer is the length, or with too little room the length that is needed.
Long fill_buffer(StringView text, Long length, String& buffer);

// ---- Searches -------------------------------------------------------------------------------

// 100-nanosecond units since 1601-01-01.
[[nodiscard]] FILETIME file_time(std::int64_t units);
[[nodiscard]] std::int64_t units_of(const FILETIME& time);
inline constexpr std::int64_t units_per_second = 10'000'000;
inline constexpr std::int64_t units_per_day = 86'400 * units_per_second;

// The time of a civil date and a time of day in seconds.
[[nodiscard]] FILETIME file_time(std::int32_t year, std::int32_t month, std::int32_t day,
                                 std::int64_t seconds = 0, std::int64_t units = 0);

class MemoryFindFiles final : public FindFiles {
  public:
    MemoryFindFiles();
    ~MemoryFindFiles() override;

    // An entry with this name, at the end; no more than the record has room for.
    WIN32_FIND_DATA& add(StringView name, Long attributes = file_attribute::archive,
                         StringView short_name = {});

    // Every pattern matches all entries, or nothing while there are none.
    Long FindFirstFileA(StringView name, WIN32_FIND_DATA& data) override;
    Long FindNextFileA(Long handle, WIN32_FIND_DATA& data) override;
    Long FindClose(Long handle) override;
    // With `root` before it; "" is no path.
    Long GetFullPathNameA(StringView name, Long length, String& buffer) override;
    // The short form `short_root`, whatever is asked for; 0 while it is "".
    Long GetShortPathNameA(StringView name, Long length, String& buffer) override;
    Long FileTimeToLocalFileTime(const FILETIME& time, FILETIME& local) override;
    Long FileTimeToSystemTime(const FILETIME& time, SYSTEMTIME& parts) override;

    std::vector<WIN32_FIND_DATA> entries;
    String root = u"C:\\dane\\";
    String short_root = u"C:\\DANE~1\\";
    std::int64_t offset = 0;  // of the local time, in 100-nanosecond units
    std::vector<String> searched;
    std::vector<std::string> path_calls;
    std::vector<Long> closed;
    std::map<Long, std::size_t> open;  // the place of the next entry of each search

  private:
    Long next_handle_ = 7;
};

// ---- Files that are open under numbers ------------------------------------------------------

// The files of a MemoryDisk; the calls go to its log.
class MemoryFileTable final : public FileTable {
  public:
    explicit MemoryFileTable(MemoryDisk& disk);
    ~MemoryFileTable() override;

    // The numbers that are open.
    [[nodiscard]] std::set<Integer> open_numbers() const;

    Integer FreeFile() override;
    void Open(StringView path, Integer number, OpenMode mode, Sharing sharing) override;
    void Close(Integer number) override;
    Long LOF(Integer number) override;
    void PrintLine(Integer number, StringView text) override;
    char16_t InputCharacter(Integer number) override;
    void Seek(Integer number, Long position) override;
    void Get(Integer number, std::span<Byte> block) override;
    void Put(Integer number, std::span<const Byte> block) override;

  private:
    struct OpenFile {
        String key;
        OpenMode mode = OpenMode::Input;
        Sharing sharing = Sharing::Default;
        std::size_t position = 0;
    };

    static void refuse(bool is_refused, Long number);
    OpenFile& file(Integer number);
    OpenFile& file(Integer number, OpenMode mode);
    OpenFile& binary_file(Integer number);
    std::string& contents(const OpenFile& open);

    // Without sharing nobody may write what is read, nor open what is written.
    void check_sharing(const String& key, OpenMode mode, Sharing sharing) const;

    std::shared_ptr<MemoryDisk::State> state_;
    std::map<Integer, OpenFile> files_;
};

// ---- Programs -------------------------------------------------------------------------------

class FakeProcesses final : public Processes {
  public:
    struct Start {
        String command_line;
        Integer style;
        friend bool operator==(const Start&, const Start&) = default;
    };
    struct Activation {
        String title;
        bool wait;
        friend bool operator==(const Activation&, const Activation&) = default;
    };
    struct Sending {
        String keys;
        bool wait;
        friend bool operator==(const Sending&, const Sending&) = default;
    };

    FakeProcesses();
    ~FakeProcesses() override;

    Double Shell(StringView command_line, Integer style) override;
    void AppActivate(StringView title, bool wait) override;
    void SendKeys(StringView keys, bool wait) override;

    Double task = 4711;
    std::vector<Start> started;
    std::vector<Activation> activated;
    std::vector<Sending> sent;
};

// ---- Waiting messages -----------------------------------------------------------------------

inline constexpr Long WM_MOUSEMOVE = 512;

class FakeMessages final : public Messages {
  public:
    struct Peek {
        Long hwnd;
        Long first;
        Long last;
        Long remove;
        friend bool operator==(const Peek&, const Peek&) = default;
    };

    FakeMessages();
    ~FakeMessages() override;

    void add_key(Long code, Long message = WM_KEYFIRST);
    void add_mouse();

    Long GetInputState() override;
    Long PeekMessageA(MSG& message, Long hwnd, Long first, Long last, Long remove) override;
    void DoEvents() override;

    std::deque<MSG> queue;
    std::vector<Peek> peeks;
    int input_states = 0;
    int pumped = 0;
};

// ---- The system and its screen --------------------------------------------------------------

class FakeSystemInformation final : public SystemInformation {
  public:
    FakeSystemInformation();
    ~FakeSystemInformation() override;

    Long GetVersionExA(OSVERSIONINFO& version) override;
    Long GetWindowsDirectoryA(String& buffer, Long length) override;

    std::optional<OSVERSIONINFO> version_record;  // none: the call fails
    Long version_answer = 1;
    String windows_directory;  // "": the call fails
    std::vector<Long> asked_sizes;
    std::vector<String> asked_buffers;
    std::vector<Long> asked_lengths;
};

class FakeScreen final : public Screen {
  public:
    void PutMousePointer(Long pointer) override;

    std::vector<Long> pointers;
};

// ---- The folder dialog ----------------------------------------------------------------------

// Sends its messages to the callback while it is "open", then answers.
class FakeFolderDialogs final : public FolderDialogs {
  public:
    struct Message {
        Long message;
        Long value;
        friend bool operator==(const Message&, const Message&) = default;
    };
    struct Sent {
        Long hwnd;
        Long message;
        Long wParam;
        String text;
        friend bool operator==(const Sent&, const Sent&) = default;
    };

    static constexpr Long handle = 4242;

    FakeFolderDialogs();
    ~FakeFolderDialogs() override;

    Long SHBrowseForFolder(const BROWSEINFO& info) override;
    Long SHGetPathFromIDList(Long item_list, String& buffer) override;
    Long SendMessageA(Long hwnd, Long message, Long wParam, StringView text) override;
    void Beep() override;

    std::vector<Message> messages{{browse_message::initialized, 0}};
    Long answer = 0;               // an item list, 0 for a cancel
    std::map<Long, String> paths;  // of the item lists that have one
    std::vector<BROWSEINFO> shown;
    std::vector<Long> results;  // of the callback, message by message
    std::vector<String> asked_buffers;
    std::vector<Sent> sent;
    int beeps = 0;
};

}  // namespace kvarta16::testing_support
