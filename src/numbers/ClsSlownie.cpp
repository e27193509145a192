#include <kvarta16/frame/value.h>
#include <kvarta16/numbers/ClsSlownie.h>
#include <kvarta16/numbers/amount_words.h>

namespace kvarta16 {
namespace {

using amount_words::digit_words;

// The złoty part of an amount by its digits; position 1 is the units.
class Digits {
  public:
    explicit Digits(StringView text) : text_(text) {}

    [[nodiscard]] std::size_t count() const { return text_.size(); }

    // What is no digit counts as 0, and so does what would stand in front of the amount.
    [[nodiscard]] std::size_t at(std::size_t position) const {
        if (position > text_.size()) {
            return 0;
        }
        const char16_t unit = text_[text_.size() - position];
        return unit >= u'0' && unit <= u'9' ? static_cast<std::size_t>(unit - u'0') : 0;
    }

    // By the number at its start and not by its digits: "x20" is 0.
    [[nodiscard]] bool is_zero() const { return ValPrefix(text_) == 0; }

  private:
    StringView text_;
};

StringView units_word(const Digits& amount, std::size_t digit) {
    if (digit != 0) {
        return digit_words[digit].units;
    }
    return amount.is_zero() ? amount_words::zero : StringView();
}

// The word behind a group of three that ends at this position.
StringView magnitude_word(const Digits& amount, std::size_t position) {
    const std::size_t digit = amount.at(position);
    const bool is_longer = amount.count() > position;
    if (position == 4) {
        const StringView one = is_longer ? amount_words::longer_thousand : amount_words::thousand;
        return digit <= 1 ? one : digit_words[digit].thousands;
    }
    if (position == 7) {
        const StringView one = is_longer ? amount_words::longer_million : amount_words::million;
        return digit == 1 ? one : digit_words[digit].millions;
    }
    return {};
}

// The group of three digits whose units are at this position.
void append_group(String& words, const Digits& amount, std::size_t position) {
    const std::size_t units = amount.at(position);
    const std::size_t tens = amount.at(position + 1);
    words += digit_words[amount.at(position + 2)].hundreds;
    if (tens == 1) {
        words += digit_words[units].teen;
    } else {
        words += digit_words[tens].tens;
        words += units_word(amount, units);
    }
    words += magnitude_word(amount, position);
}

}  // namespace

String ClsSłownie::slownie(StringView Text) const {
    constexpr std::size_t usual_length = 128;
    if (Text.starts_with(u'-')) {
        Text.remove_prefix(1);
    }
    const std::size_t comma = Text.find(u',');
    const Digits amount(Text.substr(0, comma));
    const StringView grosze = comma == StringView::npos ? u"00" : Text.substr(comma + 1);

    String result;
    result.reserve(usual_length);
    // Told from the units upwards, each group of three is by itself: two digits that make one word
    // are the units and the tens of one group. So the groups can as well be written from the
    // highest one down. Tens and hundreds that are missing there have the word of 0, none.
    for (std::size_t groups = (amount.count() + 2) / 3; groups > 0; --groups) {
        append_group(result, amount, groups * 3 - 2);
    }
    result.append(u" zł i ").append(grosze);
    if (grosze.size() == 1) {
        result += u'0';
    }
    return result.append(u" gr");
}

}  // namespace kvarta16
