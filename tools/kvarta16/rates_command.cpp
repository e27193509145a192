#include <algorithm>
#include <iostream>
#include <optional>
#include <span>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/platform/platform.h>

#include "commands.h"
#include "databases.h"
#include "holdings.h"
#include "human_values.h"
#include "language.h"
#include "rate_words.h"
#include "usage_error.h"

namespace kvarta16::tool {
namespace {

// A line of the listing: a value and what it is.
struct Line {
    String value;
    String meaning;
};

// A value as an amount; nothing if it is none.
std::optional<Currency> amount_of(const Variant& value) {
    try {
        return ToCurrency(value);
    } catch (const Failure&) {
        return std::nullopt;
    }
}

// Writes the listing in one language, with its words and its numbers.
class Listing {
  public:
    explicit Listing(bool polish) : polish_(polish) {
        locale_.decimal_separator = polish ? u',' : u'.';
    }

    [[nodiscard]] String word(const Words& words) const {
        return String(polish_ ? words.polish : words.english);
    }

    static void print_title(const String& title) { std::cout << '\n' << to_utf8(title) << '\n'; }

    // The lines of one key; its number and its date stand before the first of them.
    void print(const std::optional<Long>& key, Date since, const std::vector<Line>& lines) const {
        constexpr std::size_t key_width = 5;
        constexpr std::size_t value_width = 18;
        constexpr std::size_t date_width = 10;
        String number = key ? ToText(*key) : String();
        String date = FormatMask(since, u"yyyy-MM-dd");
        for (const Line& line : lines) {
            std::cout << to_utf8(padded(number, key_width) + padded(line.value, value_width) +
                                 u"  " + padded(date, date_width) + u"  " + line.meaning)
                      << '\n';
            number.clear();
            date.clear();
        }
    }

    // A number with its unit; what is no amount as it is.
    [[nodiscard]] String value_text(const Variant& value, Unit unit) const {
        if (value.is(Subtype::Null)) {
            return word(word_no_value);
        }
        const std::optional<Currency> amount = amount_of(value);
        const String unit_text = word(unit_words[static_cast<std::size_t>(unit)]);
        if (!amount || unit_text.empty()) {
            return amount ? number_text(*amount, unit) : from_utf8(human_text(value));
        }
        return number_text(*amount, unit) + u' ' + unit_text;
    }

  private:
    static String padded(const String& text, std::size_t width) {
        return String(width - std::min(width, text.size()), u' ') + text;
    }

    // Amounts have two decimals, rates per kilometre four; no digit is dropped.
    [[nodiscard]] String number_text(Currency number, Unit unit) const {
        const ScopedLocale scope(locale_);
        constexpr std::int64_t hundredth = 100;
        if (unit == Unit::ZlotyPerKilometre || (unit == Unit::Zloty && number.count % hundredth)) {
            return FormatMask(number, u"0.0000");
        }
        return unit == Unit::Zloty ? FormatMask(number, u"0.00") : ToText(number);
    }

    bool polish_;
    Locale locale_;
};

// ---- Payroll --------------------------------------------------------------------------------

bool is_zero(const Variant& value) {
    return value.is(Subtype::Null) || amount_of(value) == Currency{};
}

// The values that are described, and beyond them those that are not zero, by their columns.
std::vector<Line> value_lines(const Listing& listing, const ParameterWords& words,
                              const std::vector<Variant>& values) {
    const std::span<const StringView> columns = statutory_table("payroll").columns;
    std::vector<Line> lines;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const bool described = i < words.slots.size() && !words.slots[i].english.empty();
        if (i > 0 && !described && is_zero(values[i])) {
            continue;
        }
        String meaning = listing.word(words.meaning);
        if (described) {
            meaning += u": " + listing.word(words.slots[i]);
        } else if (i > 0) {
            meaning += u": " + String(columns[2 + i]);
        }
        lines.push_back({listing.value_text(values[i], words.unit), meaning});
    }
    return lines;
}

// "from 0.00 zł to 120000.00 zł", and without the upper bound where that stands for no limit.
String range_text(const Listing& listing, const Variant& from, const Variant& to) {
    constexpr Currency no_limit = Currency::raw(999999'0000);
    String text = listing.word(word_from) + u' ' + listing.value_text(from, Unit::Zloty);
    if (amount_of(to) != no_limit) {
        text += u' ' + listing.word(word_to) + u' ' + listing.value_text(to, Unit::Zloty);
    }
    return text;
}

// The third band repeats the second where there are only two; it is then left out.
std::vector<Line> tax_scale_lines(const Listing& listing, const ParameterWords& words,
                                  const std::vector<Variant>& values) {
    const String meaning = listing.word(words.meaning) + u": ";
    std::vector<Line> lines{
        {listing.value_text(values[0], Unit::Zloty), meaning + listing.word(word_reduction)}};
    constexpr std::size_t band_size = 3;
    const auto band = [&](std::size_t number) {
        return std::span(values).subspan(1 + number * band_size, band_size);
    };
    const bool is_repeated = std::ranges::equal(band(1), band(2));
    for (std::size_t i = 0; i < (is_repeated ? 2 : 3); ++i) {
        lines.push_back({listing.value_text(band(i)[2], Unit::Percent),
                         meaning + range_text(listing, band(i)[0], band(i)[1])});
    }
    return lines;
}

std::vector<Line> relief_lines(const Listing& listing, const ParameterWords& words,
                               const std::vector<Variant>& values) {
    std::vector<Line> lines;
    constexpr std::size_t band_size = 5;
    for (std::size_t first = 0; first < values.size(); first += band_size) {
        const auto band = std::span(values).subspan(first, band_size);
        lines.push_back(
            {listing.value_text(band[2], Unit::Percent),
             listing.word(words.meaning) + u": " + range_text(listing, band[0], band[1]) + u", " +
                 listing.word(word_amount) + u' ' + listing.value_text(band[3], Unit::Zloty) +
                 u", " + listing.word(word_divisor) + u' ' +
                 listing.value_text(band[4], Unit::Percent)});
    }
    return lines;
}

std::vector<Line> parameter_lines(const Listing& listing, Long id,
                                  const std::vector<Variant>& values) {
    const auto* words = std::ranges::find(parameter_words, id, &ParameterWords::id);
    if (words == std::end(parameter_words)) {
        return value_lines(listing, {id, Shape::Values, Unit::Plain, word_unknown}, values);
    }
    switch (words->shape) {
        case Shape::TaxScale:
            return tax_scale_lines(listing, *words, values);
        case Shape::ReliefBands:
            return relief_lines(listing, *words, values);
        default:
            return value_lines(listing, *words, values);
    }
}

// ---- The three tables -----------------------------------------------------------------------

Holdings read_table(const std::shared_ptr<ado::Connection>& db, std::string_view topic, Date day) {
    Holdings holdings = holdings_on(db, statutory_table(topic), day);
    if (holdings.unreadable_rows > 0) {
        std::cerr << "kvarta16: " << to_utf8(statutory_table(topic).name) << ": "
                  << holdings.unreadable_rows << " rows without a readable key are left out\n";
    }
    return holdings;
}

void print_if_empty(const Listing& listing, const Holdings& holdings) {
    if (holdings.by_key.empty()) {
        std::cout << "  " << to_utf8(listing.word(word_nothing)) << '\n';
    }
}

void print_payroll(const Listing& listing, const Holdings& holdings) {
    Listing::print_title(listing.word(word_payroll));
    for (const auto& [id, holding] : holdings.by_key) {
        listing.print(id, holding.since, parameter_lines(listing, id, holding.values));
    }
    print_if_empty(listing, holdings);
}

// The tables of one value a row.
void print_rates(const Listing& listing, const Words& title, const Holdings& holdings,
                 std::span<const KeyWords> keys, Unit unit, bool shows_key) {
    Listing::print_title(listing.word(title));
    for (const auto& [key, holding] : holdings.by_key) {
        const auto words = std::ranges::find(keys, key, &KeyWords::key);
        const String meaning = listing.word(words == keys.end() ? word_unknown : words->meaning);
        listing.print(shows_key ? std::optional(key) : std::nullopt, holding.since,
                      {{listing.value_text(holding.values[0], unit), meaning}});
    }
    print_if_empty(listing, holdings);
}

// ---- The command ----------------------------------------------------------------------------

void require_tables(Database& db, const std::string& database) {
    for (const StatutoryTable& table : statutory_tables()) {
        if (!db.table_exists(table.name)) {
            std::string message = database + " has no table " + to_utf8(table.name);
            message += "; make it with: kvarta16 seed --db ";
            throw UsageError(message + database);
        }
    }
}

}  // namespace

int rates_command(const RatesOptions& options) {
    const Date day = options.day ? day_argument(*options.day) : platform().clock->Now();
    const auto database = open_database(options.database, Use::Reading);
    require_tables(*database, shown_database(options.database));
    const std::shared_ptr<ado::Connection> db = database->connection();
    const Holdings payroll = read_table(db, "payroll", day);
    const Holdings mileage = read_table(db, "mileage", day);
    const Holdings interest = read_table(db, "interest", day);
    const Listing listing(is_polish(options.language));
    std::cout << to_utf8(listing.word(word_holds_on) + u' ' + FormatMask(day, u"yyyy-MM-dd"))
              << '\n';
    print_payroll(listing, payroll);
    print_rates(listing, word_mileage, mileage, mileage_words, Unit::ZlotyPerKilometre, false);
    print_rates(listing, word_interest, interest, interest_words, Unit::Percent, true);
    return 0;
}

}  // namespace kvarta16::tool
