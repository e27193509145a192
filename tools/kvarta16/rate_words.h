// What the rows of the statutory tables hold, in Polish and in English words.
#pragma once

#include <array>
#include <cstdint>

#include <kvarta16/frame/types.h>

#include "language.h"

namespace kvarta16::tool {

enum class Unit : std::uint8_t { Plain, Zloty, Percent, Days, ZlotyPerKilometre };

// How the values of a parameter stand in its slots.
enum class Shape : std::uint8_t {
    Values,       // each for itself
    TaxScale,     // an amount, then lower bound, upper bound and rate of each of three bands
    ReliefBands,  // lower bound, upper bound, rate, amount and divisor of each of two bands
};

struct ParameterWords {
    Long id = 0;
    Shape shape = Shape::Values;
    Unit unit = Unit::Plain;
    Words meaning;
    std::array<Words, 3> slots{};  // the meanings of the values where several are used
};

struct KeyWords {
    Long key = 0;
    Words meaning;
};

// clang-format off
inline constexpr ParameterWords parameter_words[] = {
    {  2, Shape::Values, Unit::Plain, {u"wartość", u"a value"}},
    {  3, Shape::Values, Unit::Percent, {u"część podstawy składki zdrowotnej odliczana od podatku", u"share of the health contribution base deductible from the tax"}},
    {  4, Shape::Values, Unit::Zloty, {u"pierwsza część przeciętnego wynagrodzenia (51)", u"first share of the average wage (51)"}},
    {  5, Shape::Values, Unit::Zloty, {u"druga część przeciętnego wynagrodzenia (51)", u"second share of the average wage (51)"}},
    {  6, Shape::Values, Unit::Zloty, {u"trzecia część przeciętnego wynagrodzenia (51)", u"third share of the average wage (51)"}},
    { 10, Shape::Values, Unit::Zloty, {u"miesięczne koszty uzyskania przychodu z pracy", u"monthly tax-deductible cost of employment"}, {{{u"podstawowe", u"basic"}, {u"podwyższone", u"raised"}}}},
    { 12, Shape::Values, Unit::Percent, {u"stawka kosztów uzyskania przychodu", u"cost rate"}},
    { 13, Shape::Values, Unit::Percent, {u"stawka kosztów uzyskania przychodu", u"cost rate"}},
    { 20, Shape::TaxScale, Unit::Percent, {u"roczna skala podatku dochodowego", u"yearly income-tax scale"}},
    { 21, Shape::Values, Unit::Percent, {u"liniowa stawka podatku dochodowego", u"flat income-tax rate"}},
    { 30, Shape::Values, Unit::Percent, {u"składka emerytalna, część pracownika", u"pension contribution, employee's share"}},
    { 31, Shape::Values, Unit::Percent, {u"składka rentowa, część pracownika", u"disability contribution, employee's share"}},
    { 32, Shape::Values, Unit::Percent, {u"składka chorobowa", u"sickness contribution"}},
    { 33, Shape::Values, Unit::Percent, {u"składka zdrowotna", u"health contribution"}},
    { 34, Shape::Values, Unit::Percent, {u"składka na fundusz gwarantowanych świadczeń pracowniczych", u"guaranteed employee benefits fund contribution"}},
    { 35, Shape::Values, Unit::Percent, {u"składka na fundusz pracy", u"labour fund contribution"}},
    { 36, Shape::Values, Unit::Percent, {u"składka na ubezpieczenie wypadkowe", u"accident insurance contribution"}},
    { 37, Shape::Values, Unit::Zloty, {u"roczna górna granica podstawy składek emerytalnej i rentowej", u"yearly ceiling on the base of the pension and disability contributions"}},
    { 40, Shape::Values, Unit::Zloty, {u"zasiłek rodzinny", u"family allowance"}, {{{u"pierwsza kwota", u"first amount"}, {u"druga kwota", u"second amount"}, {u"trzecia kwota", u"third amount"}}}},
    { 41, Shape::Values, Unit::Zloty, {u"dziesiąta część kwoty (45)", u"a tenth of the amount (45)"}},
    { 42, Shape::Values, Unit::Zloty, {u"granica dochodu do zasiłku rodzinnego", u"income limit of the family allowance"}, {{{u"pierwsza", u"first"}, {u"druga", u"second"}}}},
    { 43, Shape::Values, Unit::Zloty, {u"zasiłek pielęgnacyjny", u"care allowance"}},
    { 45, Shape::Values, Unit::Zloty, {u"dwukrotność przeciętnego wynagrodzenia (51), od 2011-03 stała kwota", u"twice the average wage (51), from 2011-03 a fixed amount"}},
    { 48, Shape::Values, Unit::Zloty, {u"kwota", u"an amount"}},
    { 49, Shape::Values, Unit::Zloty, {u"kwota", u"an amount"}},
    { 50, Shape::Values, Unit::Zloty, {u"minimalne wynagrodzenie miesięczne", u"minimum monthly wage"}},
    { 51, Shape::Values, Unit::Zloty, {u"przeciętne wynagrodzenie miesięczne ostatniego ogłoszonego kwartału", u"average monthly wage of the last published quarter"}},
    { 52, Shape::Values, Unit::Zloty, {u"drugie ogłaszane przeciętne wynagrodzenie miesięczne", u"a second published average monthly wage"}},
    { 53, Shape::Values, Unit::Days, {u"średnia liczba dni roboczych w miesiącu", u"mean number of working days in a month"}},
    { 54, Shape::Values, Unit::Zloty, {u"kwota świadczeń rodzinnych", u"an amount of the family-benefit scheme"}},
    { 55, Shape::Values, Unit::Zloty, {u"kwoty świadczeń rodzinnych", u"amounts of the family-benefit scheme"}, {{{u"pierwsza", u"first"}, {u"druga", u"second"}}}},
    { 56, Shape::Values, Unit::Zloty, {u"kwota świadczeń rodzinnych", u"an amount of the family-benefit scheme"}},
    { 57, Shape::Values, Unit::Zloty, {u"kwoty świadczeń rodzinnych", u"amounts of the family-benefit scheme"}, {{{u"pierwsza", u"first"}, {u"druga", u"second"}}}},
    { 61, Shape::Values, Unit::Percent, {u"wskaźnik kwartalny", u"quarterly index"}},
    { 62, Shape::Values, Unit::Percent, {u"składka emerytalna, część pracodawcy", u"pension contribution, employer's share"}},
    { 63, Shape::Values, Unit::Percent, {u"składka rentowa, część pracodawcy", u"disability contribution, employer's share"}},
    { 64, Shape::Values, Unit::Zloty, {u"prognozowane przeciętne wynagrodzenie miesięczne roku", u"forecast average monthly wage of the year"}},
    { 66, Shape::Values, Unit::Plain, {u"same zera", u"zeros alone"}},
    { 67, Shape::Values, Unit::Zloty, {u"kwota", u"an amount"}},
    { 70, Shape::Values, Unit::Zloty, {u"najniższa emerytura", u"lowest pension"}},
    { 78, Shape::Values, Unit::Zloty, {u"kwota", u"an amount"}},
    { 79, Shape::Values, Unit::Zloty, {u"kwota", u"an amount"}},
    { 81, Shape::Values, Unit::Zloty, {u"kwota", u"an amount"}},
    { 85, Shape::Values, Unit::Zloty, {u"kwota", u"an amount"}},
    { 86, Shape::Values, Unit::Zloty, {u"kwota", u"an amount"}},
    {111, Shape::Values, Unit::Zloty, {u"kwota", u"an amount"}},
    {112, Shape::Values, Unit::Zloty, {u"roczna granica dochodu", u"yearly income limit"}},
    {113, Shape::ReliefBands, Unit::Percent, {u"roczna ulga podatkowa", u"yearly tax relief"}},
    {116, Shape::Values, Unit::Percent, {u"wartość procentowa", u"a percentage"}},
    {117, Shape::Values, Unit::Zloty, {u"kwota roczna", u"a yearly amount"}},
};

// The engine class as a truth value: -1 up to 900 cm³.
inline constexpr KeyWords mileage_words[] = {
    {-1, {u"samochód o pojemności silnika do 900 cm³", u"car with an engine of up to 900 cm³"}},
    { 0, {u"samochód o pojemności silnika powyżej 900 cm³", u"car with an engine above 900 cm³"}},
};

inline constexpr KeyWords interest_words[] = {
    {0, {u"odsetki ustawowe, od 2016 za opóźnienie", u"statutory interest, from 2016 for late payment"}},
    {1, {u"górna granica odsetek (0): ich dwukrotność", u"ceiling on the interest (0): twice as much"}},
    {2, {u"odsetki ustawowe od kapitału", u"statutory interest on capital"}},
    {3, {u"górna granica odsetek (2): ich dwukrotność", u"ceiling on the interest (2): twice as much"}},
    {4, {u"odrębna stopa, zawsze równa (5)", u"a rate of its own, always equal to (5)"}},
    {5, {u"odrębna stopa, zawsze równa (4)", u"a rate of its own, always equal to (4)"}},
};

// In the order of Unit.
inline constexpr Words unit_words[] = {
    {u"", u""},
    {u"zł", u"zł"},
    {u"%", u"%"},
    {u"dni", u"days"},
    {u"zł/km", u"zł/km"},
};

// The other words of the listing.
inline constexpr Words word_holds_on   {u"Obowiązuje dnia", u"What holds on"};
inline constexpr Words word_payroll    {u"Parametry płacowe", u"Payroll parameters"};
inline constexpr Words word_mileage    {u"Stawki za kilometr", u"Rates per kilometre"};
inline constexpr Words word_interest   {u"Odsetki ustawowe w roku", u"Statutory interest a year"};
inline constexpr Words word_nothing    {u"nic", u"nothing"};
inline constexpr Words word_unknown    {u"parametr bez opisu", u"a parameter without a description"};
inline constexpr Words word_no_value   {u"brak", u"none"};
inline constexpr Words word_reduction  {u"kwota zmniejszająca podatek", u"amount that reduces the tax"};
inline constexpr Words word_from       {u"od", u"from"};
inline constexpr Words word_to         {u"do", u"to"};
inline constexpr Words word_amount     {u"kwota", u"amount"};
inline constexpr Words word_divisor    {u"dzielnik", u"divisor"};
// clang-format on

}  // namespace kvarta16::tool
