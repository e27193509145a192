// The settings of the machine's language that the locale-aware primitives read: one object,
// Polish by default. A test or a host replaces it for a scope:
//
//   Locale dot = Locale{};
//   dot.decimal_separator = u'.';
//   const ScopedLocale scope(dot);
//   ToText(12.5);                     // "12.5"
//
// ValPrefix alone reads no settings: it knows the dot and nothing else.
#pragma once

#include <array>
#include <string_view>

#include <kvarta16/frame/export.h>

namespace kvarta16 {

// The order of the parts of a numeric date that the machine's short date form has. A reader
// tries it first.
enum class DateOrder { YearMonthDay, DayMonthYear, MonthDayYear };

struct Locale {
    char16_t decimal_separator = u',';
    char16_t group_separator = u'\u00A0';  // the no-break space; a plain blank is none
    std::u16string_view currency_symbol = u"zł";
    DateOrder date_order = DateOrder::YearMonthDay;
    char16_t date_separator = u'-';
    std::u16string_view true_word = u"Prawda";
    std::u16string_view false_word = u"Fałsz";

    // Monday first.
    std::array<std::u16string_view, 7> day_names = {
        u"poniedziałek", u"wtorek", u"środa", u"czwartek", u"piątek", u"sobota", u"niedziela"};
    std::array<std::u16string_view, 12> month_names = {
        u"styczeń", u"luty",     u"marzec",   u"kwiecień",    u"maj",      u"czerwiec",
        u"lipiec",  u"sierpień", u"wrzesień", u"październik", u"listopad", u"grudzień"};
    // How a month stands behind a day's number: "17 maja 2024".
    std::array<std::u16string_view, 12> month_genitives = {
        u"stycznia", u"lutego",   u"marca",    u"kwietnia",     u"maja",      u"czerwca",
        u"lipca",    u"sierpnia", u"września", u"października", u"listopada", u"grudnia"};
    std::array<std::u16string_view, 12> month_short_names = {u"sty", u"lut", u"mar", u"kwi",
                                                             u"maj", u"cze", u"lip", u"sie",
                                                             u"wrz", u"paź", u"lis", u"gru"};
};

// The settings in force on the calling thread.
[[nodiscard]] KVARTA16_EXPORT const Locale& locale() noexcept;

// Puts other settings in force on the calling thread until the scope ends. `settings` must
// outlive the scope.
class KVARTA16_EXPORT ScopedLocale {
  public:
    explicit ScopedLocale(const Locale& settings) noexcept;
    ~ScopedLocale();
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;
    ScopedLocale(ScopedLocale&&) = delete;
    ScopedLocale& operator=(ScopedLocale&&) = delete;

  private:
    const Locale* previous_;
};

}  // namespace kvarta16
