#include <algorithm>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <iterator>
#include <string_view>

#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/posix_messages.h>
#include <kvarta16/platform/posix/terminal_keys.h>

namespace kvarta16::posix {
namespace {

constexpr int sequence_wait = 25;  // milliseconds for what follows an Esc
constexpr char escape_character = '\x1B';

// ---- The terminal ---------------------------------------------------------------------------

// Holds the signals of the calling thread back.
class HeldSignals {
  public:
    HeldSignals() {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~HeldSignals() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;
    HeldSignals(HeldSignals&&) = delete;
    HeldSignals& operator=(HeldSignals&&) = delete;

  private:
    sigset_t before_{};
};

// While one lives, the terminal on standard input gives each key as it comes, and shows none.
class SingleKeys {
  public:
    SingleKeys() {
        if (::tcgetpgrp(STDIN_FILENO) != ::getpgrp() || ::tcgetattr(STDIN_FILENO, &before_) != 0) {
            return;
        }
        termios settings = before_;
        settings.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
        settings.c_cc[VMIN] = 0;
        settings.c_cc[VTIME] = 0;
        is_there_ = ::tcsetattr(STDIN_FILENO, TCSANOW, &settings) == 0;
    }
    ~SingleKeys() {
        if (is_there_) {
            ::tcsetattr(STDIN_FILENO, TCSANOW, &before_);
        }
    }
    SingleKeys(const SingleKeys&) = delete;
    SingleKeys& operator=(const SingleKeys&) = delete;
    SingleKeys(SingleKeys&&) = delete;
    SingleKeys& operator=(SingleKeys&&) = delete;

    [[nodiscard]] bool is_there() const { return is_there_; }

    [[nodiscard]] bool has_key() const {
        int count = 0;
        return is_there_ && ::ioctl(STDIN_FILENO, FIONREAD, &count) == 0 && count > 0;
    }

  private:
    HeldSignals held_;  // first made, last to go
    termios before_{};
    bool is_there_ = false;
};

// The next byte, if one comes in the time.
std::optional<char> read_byte(int milliseconds) {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    char byte = 0;
    if (::poll(&input, 1, milliseconds) > 0 && ::read(STDIN_FILENO, &byte, 1) == 1) {
        return byte;
    }
    return std::nullopt;
}

// ---- Keys -----------------------------------------------------------------------------------

// What has been read, and what is still to be read.
class KeyBytes {
  public:
    explicit KeyBytes(std::string& read_ahead) : bytes_(read_ahead) {}

    // The byte at a place counted from the first, waited for if it has not been read.
    [[nodiscard]] std::optional<char> at(std::size_t place, int milliseconds) {
        while (bytes_.size() <= place) {
            const std::optional<char> byte = read_byte(milliseconds);
            if (!byte) {
                return std::nullopt;
            }
            bytes_ += *byte;
        }
        return bytes_[place];
    }

    // Takes so many bytes off.
    std::string take(std::size_t count) {
        std::string taken = bytes_.substr(0, count);
        bytes_.erase(0, count);
        return taken;
    }

  private:
    std::string& bytes_;
};

bool is_final(char byte) {
    return byte >= '@' && byte <= '~';
}

// How many bytes the key takes that begins with an Esc: 1 if it is Esc itself.
std::size_t length_of_sequence(KeyBytes& bytes) {
    constexpr std::size_t longest = 16;
    const std::optional<char> second = bytes.at(1, sequence_wait);
    if (second == 'O') {
        return bytes.at(2, sequence_wait) ? 3 : 1;
    }
    if (second != '[') {
        return 1;
    }
    if (bytes.at(2, sequence_wait) == '[') {  // of the system's own console
        return bytes.at(3, sequence_wait) ? 4 : 1;
    }
    for (std::size_t place = 2; place < longest; ++place) {
        const std::optional<char> byte = bytes.at(place, sequence_wait);
        if (!byte || *byte == escape_character) {
            return 1;
        }
        if (is_final(*byte)) {
            return place + 1;
        }
    }
    return 1;
}

// Without what tells Shift and the like: "[1;5D" is "[D" and "[3;2~" is "[3~".
std::string plain_sequence(std::string sequence) {
    const std::size_t semicolon = sequence.find(';');
    if (semicolon != std::string::npos) {
        sequence.erase(semicolon, sequence.size() - 1 - semicolon);
        if (sequence.starts_with("[1") && sequence.size() == 3 && sequence.back() != '~') {
            sequence.erase(1, 1);
        }
    }
    return sequence;
}

Long code_of_sequence(const std::string& behind_escape) {
    const std::string plain = plain_sequence(behind_escape);
    const auto* found = std::ranges::find(key_sequences, plain, &KeySequence::bytes);
    return found == std::end(key_sequences) ? key_code::unknown : found->code;
}

std::size_t length_of_character(unsigned char first) {
    constexpr unsigned char of_two = 0xC2;
    constexpr unsigned char of_three = 0xE0;
    constexpr unsigned char of_four = 0xF0;
    constexpr unsigned char none = 0xF5;
    if (first < of_two || first >= none) {
        return 1;
    }
    return first >= of_four ? 4 : (first >= of_three ? 3 : 2);
}

Long code_of_character(const std::string& utf8) {
    const String text = upper_case(from_utf8(utf8));
    const auto* found = std::ranges::find(polish_letter_codes, text.front(), &LetterCode::letter);
    return text.size() == 1 && found != std::end(polish_letter_codes) ? found->code
                                                                      : key_code::packet;
}

// Of a control character that is no key of its own the letter that it is typed with.
Long code_of_byte(unsigned char byte) {
    constexpr unsigned char delete_character = 127;
    switch (byte) {
        case '\b':
        case delete_character:
            return key_code::backspace;
        case '\t':
            return key_code::tab;
        case '\n':
        case '\r':
            return key_code::enter;
        case '\0':
            return key_code::blank;
        default:
            return character_codes[byte >= ' ' ? byte - ' ' : byte + '@' - ' '];
    }
}

// The code of the first key; nothing if none waits.
std::optional<Long> next_code(KeyBytes& bytes) {
    const std::optional<char> first = bytes.at(0, 0);
    if (!first) {
        return std::nullopt;
    }
    if (*first == escape_character) {
        const std::string key = bytes.take(length_of_sequence(bytes));
        return key.size() == 1 ? key_code::escape : code_of_sequence(key.substr(1));
    }
    const auto byte = static_cast<unsigned char>(*first);
    constexpr unsigned char first_of_more = 0x80;
    if (byte < first_of_more) {
        bytes.take(1);
        return code_of_byte(byte);
    }
    const std::size_t length = length_of_character(byte);
    for (std::size_t place = 1; place < length; ++place) {
        static_cast<void>(bytes.at(place, sequence_wait));
    }
    return code_of_character(bytes.take(length));
}

Long milliseconds_now() {
    std::timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    constexpr std::int64_t thousand = 1000;
    const std::int64_t milliseconds = now.tv_sec * thousand + now.tv_nsec / 1'000'000;
    return static_cast<Long>(static_cast<std::uint32_t>(milliseconds));
}

bool is_wanted(Long hwnd, Long first, Long last) {
    constexpr Long of_no_window = -1;
    const bool of_any_kind = first == 0 && last == 0;
    return (hwnd == 0 || hwnd == of_no_window) &&
           (of_any_kind || (first <= WM_KEYFIRST && WM_KEYFIRST <= last));
}

}  // namespace

// Reads the first key, if one waits, into waiting_.
bool PosixMessages::read_key() {
    if (waiting_) {
        return true;
    }
    const SingleKeys terminal;
    if (!terminal.is_there()) {
        return false;
    }
    KeyBytes bytes(read_ahead_);
    const std::optional<Long> code = next_code(bytes);
    if (!code) {
        return false;
    }
    MSG message;
    message.message = WM_KEYFIRST;
    message.wParam = *code;
    message.lParam = 1;  // pressed once
    message.time = milliseconds_now();
    waiting_ = message;
    return true;
}

Long PosixMessages::GetInputState() {
    const std::scoped_lock lock(mutex_);
    return waiting_ || !read_ahead_.empty() || SingleKeys().has_key() ? 1 : 0;
}

Long PosixMessages::PeekMessageA(MSG& message, Long hwnd, Long first, Long last, Long remove) {
    const std::scoped_lock lock(mutex_);
    if (!is_wanted(hwnd, first, last) || !read_key()) {
        return 0;
    }
    message = *waiting_;
    if ((remove & PM_REMOVE) != 0) {
        waiting_.reset();
    }
    return 1;
}

void PosixMessages::DoEvents() {}

}  // namespace kvarta16::posix
