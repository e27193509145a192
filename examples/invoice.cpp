// A program of a small firm: takes the lines of an order as its database holds them, and prints the
// invoice on the terminal.
//
//   invoice
//
// The fields come as a database and its users leave them: a price as text with a comma, another as
// a number with a binary fraction, a discount that nobody has filled in. The library makes money of
// them, rounds where the law wants it, tells the sum in words, and moves the day of payment to the
// next working day.
#include <iostream>
#include <map>
#include <vector>

#include <kvarta16/frame/globals.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/hr/Class1.h>
#include <kvarta16/numbers/ClsSlownie.h>

namespace {

using namespace kvarta16;
using namespace kvarta16::literals;

// A record of the table of order lines, field by field.
struct OrderLine {
    Variant name;
    Variant quantity;
    Variant price;     // net, in złoty
    Variant discount;  // per cent; Null where there is none
    Integer vat;       // per cent
};

// What a query would bring.
std::vector<OrderLine> order_lines() {
    return {
        {u"Kawa ziarnista 1 kg", 12.0, u"64,99", Variant::null(), 23},
        {u"Herbata\r\n\"Earl Grey\"", u"2,5", 39.3, 10.0, 23},
        {u"Podręcznik kadrowy, wydanie dwunaste", Integer{3}, Currency::raw(1'190'000), u"", 5},
    };
}

struct Amounts {
    Currency net;
    Currency vat;
};

constexpr Long name_width = 28;
constexpr Long amount_width = 10;
constexpr Double days_to_pay = 14;

// Net of a line: quantity by price, less the discount, rounded once.
Currency net_of(const OrderLine& line) {
    const Double whole =
        to_double(bare::VarR3Si(line.quantity)) * to_double(bare::VarR4Si(line.price));
    const Double share = 1.0 - to_double(bare::VarR2Si(line.discount)) / 100.0;
    return bare::VarR2Si(whole * share);
}

// The day of payment: a fortnight on, or the first working day behind it.
Date due_after(Date issued) {
    constexpr Integer saturday = 5;  // Sundays and holidays are 6
    Date due{issued.days + days_to_pay};
    while (bare::PodajDzień(due, true) >= saturday) {
        due.days += 1;
    }
    return due;
}

String at_left(String text, Long width) {
    text = bare::Cudzysłów_Ameryk(text);
    return bare::MidUZ(text, 1, width);
}

String at_right(Currency amount) {
    String text = bare::VarR2Str(amount);
    return ToText(bare::UzMid(text, 1, amount_width));
}

void print(StringView text) {
    std::cout << to_utf8(text) << '\n';
}

void print_head(StringView number, Date issued) {
    const String tax_number = u"123-456-32-18";
    const bool is_right = static_cast<bool>(Class1().Spr_NIP(bare::Myslnik_Usun(tax_number)));
    print(u"Faktura nr " + bare::A_DOK(Variant(number)) + u" z " + bare::B_DOK(Variant(number)));
    print(u"Wystawiona " + FormatMask(issued, u"yyyy-MM-dd") + u", do zapłaty " +
          FormatMask(due_after(issued), u"yyyy-MM-dd (dddd)"));
    print(u"Nabywca NIP " + tax_number + (is_right ? u"" : u" (błędny)"));
    print(u"");
}

// The lines, and what they come to by rates.
std::map<Integer, Amounts> print_lines(const std::vector<OrderLine>& lines) {
    std::map<Integer, Amounts> by_rate;
    for (const OrderLine& line : lines) {
        const Currency net = net_of(line);
        by_rate[line.vat].net = by_rate[line.vat].net + net;
        print(at_left(bare::NullStr(line.name), name_width) + at_right(net) + u"  " +
              ToText(line.vat) + u" %");
    }
    return by_rate;
}

// The tax is worked out from the sum of each rate, and rounded there.
Currency print_taxes(std::map<Integer, Amounts>& by_rate) {
    Currency total;
    print(u"");
    for (auto& [rate, amounts] : by_rate) {
        amounts.vat = bare::VarR2Si(to_double(amounts.net) * rate / 100.0);
        total = total + amounts.net + amounts.vat;
        print(at_left(u"VAT " + ToText(rate) + u" %", name_width) + at_right(amounts.vat));
    }
    return total;
}

}  // namespace

int main() {
    print_head(u"FV\\118/2025", "2025-12-11"_date);
    std::map<Integer, Amounts> by_rate = print_lines(order_lines());
    const Currency total = print_taxes(by_rate);
    print(at_left(u"Razem", name_width) + at_right(total));
    print(u"");
    print(u"Słownie: " + ClsSłownie().slownie(bare::VarR2Str(total)));
    return 0;
}
