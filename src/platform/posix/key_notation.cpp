#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <optional>
#include <utility>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/text.h>
#include <kvarta16/platform/posix/key_names.h>
#include <kvarta16/platform/posix/key_notation.h>

namespace kvarta16::posix {
namespace {

struct Held {
    bool shift = false;
    bool control = false;
    bool alt = false;
};

// Adds what a modifier character holds. False if it is none.
bool hold(char16_t unit, Held& held) {
    switch (unit) {
        case u'+':
            held.shift = true;
            return true;
        case u'^':
            held.control = true;
            return true;
        case u'%':
            held.alt = true;
            return true;
        default:
            return false;
    }
}

// The character at the beginning of a text and the units that it takes.
struct Character {
    char32_t code = 0;
    std::size_t units = 1;
};

Character first_character(StringView text) {
    const auto is_between = [](char16_t unit, char16_t first, char16_t last) {
        return unit >= first && unit <= last;
    };
    const char16_t unit = text[0];
    if (!is_between(unit, 0xD800, 0xDFFF)) {
        return {unit, 1};
    }
    if (unit > 0xDBFF || text.size() < 2 || !is_between(text[1], 0xDC00, 0xDFFF)) {
        fail(error::invalid_call);
    }
    return {0x10000 + ((unit - 0xD800U) << 10U) + (text[1] - 0xDC00U), 2};
}

// The key of a character as itself: by its name for a letter or digit, else by its number.
std::string key_of_itself(char32_t character) {
    const auto is_in = [character](char32_t first, char32_t last) {
        return character >= first && character <= last;
    };
    if (is_in(U'a', U'z') || is_in(U'A', U'Z') || is_in(U'0', U'9')) {
        return {static_cast<char>(character)};
    }
    std::array<char, 12> text{};
    const int length =
        std::snprintf(text.data(), text.size(), "U%04X", static_cast<unsigned>(character));
    return {text.data(), static_cast<std::size_t>(length)};
}

// The key of a character of the text. Fails: 5 for a control character that no key gives.
std::string key_of(char32_t character) {
    const auto* named = std::ranges::find(character_keys, character, &CharacterKey::character);
    if (named != std::end(character_keys)) {
        return std::string(named->key);
    }
    const bool is_control = character < 0x20 || (character >= 0x7F && character < 0xA0);
    if (is_control) {
        fail(error::invalid_call);
    }
    return key_of_itself(character);
}

bool is_beyond_ascii(char32_t character) {
    constexpr char32_t first_beyond_ascii = 0x80;
    return character >= first_beyond_ascii;
}

// Whether a letter is a capital that a display may not have a key for. To such a key it gives the
// small letter as well, and the capital with Shift alone.
bool wants_shift(char32_t character) {
    constexpr char32_t last_of_one_unit = 0xFFFF;
    const auto unit = static_cast<char16_t>(character);
    return is_beyond_ascii(character) && character <= last_of_one_unit && lower_case(unit) != unit;
}

// What stands in braces: a name or a character.
std::string key_in_braces(StringView name) {
    if (name.empty()) {
        fail(error::invalid_call);
    }
    const Character character = first_character(name);
    if (name.size() == character.units) {
        return character.code == U'~' ? key_of_itself(U'~') : key_of(character.code);
    }
    const String upper = upper_case(name);
    const auto* named = std::ranges::find(named_keys, StringView(upper), &NamedKey::name);
    if (named == std::end(named_keys)) {
        fail(error::invalid_call);
    }
    return std::string(named->key);
}

Long count_in_braces(StringView digits) {
    constexpr Long most = 32767;
    if (digits.empty()) {
        fail(error::invalid_call);
    }
    Long count = 0;
    for (const char16_t digit : digits) {
        if (digit < u'0' || digit > u'9') {
            fail(error::invalid_call);
        }
        count = count * 10 + (digit - u'0');
        if (count > most) {
            fail(error::invalid_call);
        }
    }
    return count;
}

class Parser {
  public:
    explicit Parser(StringView text) : rest_(text) {}

    // Groups are kept in a list of their own and not in calls: a text may hold any number of them.
    std::vector<KeyPress> keys() {
        std::vector<Held> groups{Held{}};  // what is held in the groups that are open
        while (!rest_.empty()) {
            if (rest_.front() == u')') {
                groups.pop_back();
                if (groups.empty()) {
                    fail(error::invalid_call);
                }
                rest_.remove_prefix(1);
                continue;
            }
            Held held = groups.back();
            take_modifiers(held);
            if (rest_.front() == u'(') {
                rest_.remove_prefix(1);
                groups.push_back(held);
            } else {
                take_key(held);
            }
        }
        if (groups.size() != 1) {
            fail(error::invalid_call);
        }
        return std::move(keys_);
    }

  private:
    void take_modifiers(Held& held) {
        while (!rest_.empty() && hold(rest_.front(), held)) {
            rest_.remove_prefix(1);
        }
        if (rest_.empty() || rest_.front() == u')') {
            fail(error::invalid_call);
        }
    }

    void take_key(const Held& held) {
        if (rest_.front() == u'{') {
            take_braces(held);
        } else if (rest_.front() == u'}') {
            fail(error::invalid_call);
        } else {
            const Character character = first_character(rest_);
            rest_.remove_prefix(rest_.starts_with(u"\r\n") ? 2 : character.units);
            add(key_of(character.code), character.code, held, 1);
        }
    }

    // The first character in braces may be a brace or a blank itself.
    void take_braces(const Held& held) {
        const std::size_t end = rest_.find(u'}', 2);
        if (end == StringView::npos) {
            fail(error::invalid_call);
        }
        const StringView inner = rest_.substr(1, end - 1);
        const std::size_t blank = inner.find(u' ', 1);
        const StringView name = inner.substr(0, blank);
        Long count = 1;
        if (blank != StringView::npos) {
            count = count_in_braces(trim_left(inner.substr(blank)));
        }
        rest_.remove_prefix(end + 1);
        std::string key = key_in_braces(name);
        add(std::move(key), first_character(name).code, held, count);
    }

    // `character` is that of the key, or the first of its name.
    void add(std::string key, char32_t character, const Held& held, Long count) {
        if (count > 0) {
            keys_.push_back({std::move(key), held.shift || wants_shift(character), held.control,
                             held.alt, count, is_beyond_ascii(character)});
        }
    }

    StringView rest_;
    std::vector<KeyPress> keys_;
};

}  // namespace

std::vector<KeyPress> parse_keys(StringView text) {
    return Parser(text).keys();
}

}  // namespace kvarta16::posix
