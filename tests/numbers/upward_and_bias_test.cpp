// VarR0GSi, VarR1GSi, VarR2Si1 and VarR2SiPL: the members that read a text without touching its
// dot, and a Date by its text.
#include "numbers_support.h"

namespace kvarta16::numbers_tests {
namespace {

constexpr std::array<AmountMember, 4> members = {
    amount_by<&aLiczby::VarR0GSi>, amount_by<&aLiczby::VarR1GSi>, amount_by<&aLiczby::VarR2Si1>,
    amount_by<&aLiczby::VarR2SiPL>};

TEST(UpwardAndBias, EverySubtype) {
    expect_amounts<4>(
        members, {
                     {"Empty", {"0", "0", "0", "0"}},
                     {"Null", {"0", "0", "0", "0"}},
                     // No text to take a number from: three go on with 0, the strict one fails.
                     {"Missing", {"0", "0", "0", "!13"}},
                     {"Error 5", {"0", "0", "0", "!13"}},
                     {"Nothing", {"0", "0", "0", "!13"}},
                     {"Object", {"0", "0", "0", "!13"}},
                     {"UnknownObject", {"0", "0", "0", "!13"}},
                     {"Boolean -1", {"-1", "-1", "-1", "-1"}},
                     {"Boolean 1", {"-1", "-1", "-1", "-1"}},
                     {"Boolean 0", {"0", "0", "0", "0"}},
                     {"Integer -5", {"-5", "-5", "-5", "-5"}},
                     {"Long 2147483647", {"2147483647", "2147483647", "2147483647", "2147483647"}},
                     {"Byte 255", {"255", "255", "255", "255"}},
                     {"Single 1.25", {"2", "1.3", "1.25", "1.25"}},
                     {"Double 1.25", {"2", "1.3", "1.25", "1.25"}},
                     {"Currency 1.25", {"2", "1.3", "1.25", "1.25"}},
                     {"Decimal 1.25", {"2", "1.3", "1.25", "1.25"}},
                     // A Date is no number, and its text begins with the year.
                     {"Date 2024-05-17", {"2024", "2024", "2024", "2024"}},
                     {"Date 2024-05-17 12:30:00", {"2024", "2024", "2024", "2024"}},
                     {"Date 0", {"1899", "1899", "1899", "1899"}},
                     {"String \"1,25\"", {"2", "1.3", "1.25", "1.25"}},
                 });
}

TEST(UpwardAndBias, Upward) {
    expect_amounts<2>({amount_by<&aLiczby::VarR0GSi>, amount_by<&aLiczby::VarR1GSi>},
                      {
                          {"Double 1.0001", {"2", "1.1"}},
                          {"Double 1.00004", {"1", "1"}},  // nothing is left of it in Currency
                          {"Double -1.9", {"-1", "-1.9"}},
                          {"Double -1.2", {"-1", "-1.2"}},
                          {"Double 3", {"3", "3"}},
                          {"Double 0.5", {"1", "0.5"}},
                          {"Double -0.5", {"0", "-0.5"}},
                          {"Double 1.01", {"2", "1.1"}},
                          {"Currency 1.01", {"2", "1.1"}},
                          {"Currency 1.05", {"2", "1.1"}},
                          {"Currency 1.15", {"2", "1.2"}},
                          {"Currency -1.05", {"-1", "-1"}},
                          {"Currency -1.15", {"-1", "-1.1"}},
                          {"Currency -1.9999", {"-1", "-1.9"}},
                          {"Currency 0.0001", {"1", "0.1"}},
                          {"Currency -0.0001", {"0", "0"}},
                      });
}

TEST(UpwardAndBias, Texts) {
    expect_amounts<4>(members,
                      {
                          {"String \"\"", {"0", "0", "0", "0"}},
                          {"String \"abc\"", {"0", "0", "0", "0"}},
                          {"String \"1,5\"", {"2", "1.5", "1.5", "1.5"}},
                          // The dot makes a text not numeric, and then it is read with the dot.
                          {"String \"12.50\"", {"13", "12.5", "12.5", "12.5"}},
                          {"String \"12.34 z\u0142\"", {"13", "12.4", "12.34", "12.34"}},
                          {"String \"12,34 z\u0142\"", {"12", "12", "12", "12"}},
                          {"String \"5 z\u0142\"", {"5", "5", "5", "5"}},
                          {"String \"-1,2\"", {"-1", "-1.2", "-1.2", "-1.2"}},
                          {"String \"(1,2)\"", {"-1", "-1.2", "-1.2", "-1.2"}},
                          {"String \"1,2-\"", {"-1", "-1.2", "-1.2", "-1.2"}},
                          {"String \"1 2\"", {"12", "12", "12", "12"}},
                          {"String \"1\u00A0234,5\"", {"1235", "1234.5", "1234.5", "1234.5"}},
                          {"String \"&H10\"", {"16", "16", "16", "16"}},
                          {"String \"1E3abc\"", {"1000", "1000", "1000", "1000"}},
                          {"String \"Prawda\"", {"0", "0", "0", "0"}},
                      });
}

TEST(UpwardAndBias, TextsUnderADotLocale) {
    const Locale dot = dot_locale();
    const ScopedLocale scope(dot);
    expect_amounts<4>(members, {
                                   {"String \"12.50\"", {"13", "12.5", "12.5", "12.5"}},
                                   {"String \"12,50\"", {"12", "12", "12", "12"}},
                                   {"String \"12.34 z\u0142\"", {"13", "12.4", "12.34", "12.34"}},
                               });
}

TEST(UpwardAndBias, TheBiasLiftsNearTies) {
    expect_amounts<2>({amount_by<&aLiczby::VarR2Si1>, amount_by<&aLiczby::VarR2SiPL>},
                      {
                          {"Double 1.005", {"1.01", "1.01"}},
                          {"Double 1.0051", {"1.01", "1.01"}},
                          {"Double -1.005", {"-1.01", "-1.01"}},
                          {"Double 2.675", {"2.68", "2.68"}},
                          {"Double 1.0048", {"1", "1"}},
                          {"Currency 1.005", {"1.01", "1.01"}},
                          {"Currency 1.0048", {"1", "1"}},
                          // Exactly a half in Currency goes to the even hundredth; in Double it is
                          // what the binary sum makes of it.
                          {"Currency 1.0049", {"1", "1"}},
                          {"Currency 1.0149", {"1.01", "1.02"}},
                          {"Currency 1.0249", {"1.02", "1.02"}},
                          {"Currency 1.0349", {"1.03", "1.04"}},
                          {"Currency -1.0049", {"-1", "-1"}},
                          {"Currency -1.0149", {"-1.01", "-1.02"}},
                          {"Currency 0.0049", {"0", "0"}},
                          {"Currency 0.0050", {"0.01", "0.01"}},
                          {"Currency 0.0149", {"0.02", "0.02"}},
                          {"Currency -0.0149", {"-0.02", "-0.02"}},
                          {"Currency 0", {"0", "0"}},
                          {"String \"1,0049\"", {"1", "1"}},
                          {"String \"1.0149\"", {"1.01", "1.02"}},
                          // Below a count nothing is left to Currency, but it is to Double.
                          {"Double 1.00494", {"1.01", "1"}},
                      });
}

TEST(UpwardAndBias, BeyondCurrency) {
    expect_amounts<4>(members, {
                                   {"Double 1e15", {"0", "0", "0", "!6"}},
                                   {"Double -1e15", {"0", "0", "0", "!6"}},
                                   {"Double inf", {"0", "0", "0", "!6"}},
                                   {"Double nan", {"0", "0", "0", "!6"}},
                                   {"Decimal 79228162514264337593543950335", {"0", "0", "0", "!6"}},
                                   {"String \"922337203685478\"", {"0", "0", "0", "!6"}},
                                   {"String \"1E400\"", {"0", "0", "0", "!6"}},
                                   {"String \"1E400abc\"", {"0", "0", "0", "!6"}},
                               });
}

TEST(UpwardAndBias, NextToTheEndsOfCurrency) {
    expect_amounts<3>(
        {amount_by<&aLiczby::VarR0GSi>, amount_by<&aLiczby::VarR1GSi>,
         amount_by<&aLiczby::VarR2SiPL>},
        {
            // The sum wraps.
            {"Currency 922337203685477.0001",
             {"-922337203685477.1616", "922337203685477.1", "922337203685477"}},
            {"Currency 922337203685477.4999",
             {"-922337203685477.1616", "922337203685477.5", "922337203685477.5"}},
            // Nothing to round to is in range: 0, and then the amount is above it.
            {"Currency 922337203685477.5001", {"1", "-922337203685477.5616", "922337203685477.5"}},
            {"Currency 922337203685477.5806", {"1", "0.1", "922337203685477.58"}},
            {"Currency 922337203685477.5807", {"1", "0.1", "-922337203685477.58"}},
            {"Currency -922337203685477.4999",
             {"-922337203685477", "-922337203685477.4", "-922337203685477.5"}},
            {"Currency -922337203685477.5001", {"0", "-922337203685477.5", "-922337203685477.5"}},
            {"Currency -922337203685477.5807", {"0", "0", "-922337203685477.58"}},
            {"Currency -922337203685477.5808", {"0", "0", "922337203685477.58"}},
        });
}

// ---- A second way of computing --------------------------------------------------------------

std::int64_t ceiling(std::int64_t number, std::int64_t unit) {
    return number / unit * unit + (number % unit > 0 ? unit : 0);
}

std::int64_t half_even(std::int64_t number, std::int64_t unit) {
    const std::int64_t quotient = number / unit;
    const std::int64_t twice_rest = std::abs(number % unit) * 2;
    const bool outward = twice_rest > unit || (twice_rest == unit && quotient % 2 != 0);
    return (quotient + (outward ? (number < 0 ? -1 : 1) : 0)) * unit;
}

TEST(UpwardAndBias, AgainstWholeNumberArithmetic) {
    Random random(7);
    for (int i = 0; i < frame_tests::random_cases; ++i) {
        const std::int64_t count = random.count() / 2;
        const Currency value = Currency::raw(count);
        ASSERT_EQ(numbers().VarR0GSi(value).count, ceiling(count, 10000)) << count;
        ASSERT_EQ(numbers().VarR1GSi(value).count, ceiling(count, 1000)) << count;
        ASSERT_EQ(numbers().VarR2SiPL(value).count,
                  half_even(count > 0 ? count + 1 : count - 1, 100))
            << count;
        // The same amount as text.
        std::string text = show(value);
        text.replace(text.find('.'), 1, ",");
        ASSERT_EQ(numbers().VarR0GSi(wide(text)).count, ceiling(count, 10000)) << text;
        ASSERT_EQ(numbers().VarR1GSi(wide(text)).count, ceiling(count, 1000)) << text;
    }
}

TEST(UpwardAndBias, TheDoubleBiasIsExactButForTies) {
    Random random(8);
    for (int i = 0; i < frame_tests::random_cases; ++i) {
        const std::int64_t count = random.between(-1'000'000'000'000, 1'000'000'000'000);
        const std::int64_t biased = count > 0 ? count + 1 : count - 1;
        const std::int64_t rounded = numbers().VarR2Si1(Currency::raw(count)).count;
        if (std::abs(biased % 100) == 50) {
            ASSERT_TRUE(rounded == biased - 50 || rounded == biased + 50) << count;
        } else {
            ASSERT_EQ(rounded, half_even(biased, 100)) << count;
        }
    }
}

}  // namespace
}  // namespace kvarta16::numbers_tests
