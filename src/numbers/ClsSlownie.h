// Amounts of money in Polish words, as they stand on invoices and cash slips.
//
//   ClsSłownie words;
//   words.slownie(u"123,45")     "StoDwadzieściaTrzy zł i 45 gr"
//   words.slownie(u"21000")      "DwadzieściaJedenTysięcy zł i 00 gr"
//   words.slownie(u"0,50")       "zero  zł i 50 gr"
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

class KVARTA16_EXPORT ClsSłownie {
  public:
    // "In words": the złoty in words, each with a capital and without a blank between them, the
    // grosze in digits as they stand.
    //
    // `Text` is an amount: digits, one decimal comma, a leading "-", which is not told. A comma
    // missing means no grosze; one digit behind it means tens of them; more are all shown. Any
    // other character counts as the digit 0 in its place, the blank and the dot of digit groups
    // among them, so that callers pass bare digits.
    //
    // The words of magnitude go by one digit each, and documents already issued carry that: 12000
    // is "DwanaścieTysiące"; the thousands are told where all three of their digits are 0, the
    // millions not where their last digit is 0; beyond the millions there are no such words.
    // Strict; cannot fail.
    [[nodiscard]] String slownie(StringView Text) const;
};

template <>
struct ClassTable<ClsSłownie> {
    static constexpr ClassHeader header{u"ClsSłownie", Instancing::Creatable,
                                        "A0C8762D-9650-4919-8F38-CB743A71425B",
                                        "B2699693-C426-432A-856F-87B5EA493A04"};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&ClsSłownie::slownie>(u"slownie", by_value(u"Text")),
    });
};

}  // namespace kvarta16
