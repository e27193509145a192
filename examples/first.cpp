#include <iostream>

#include <kvarta16/frame/globals.h>
#include <kvarta16/frame/utf8.h>

int main() {
    using kvarta16::Variant;
    // What text boxes and database fields hold: a comma, an odd half, a Null.
    for (const Variant& field : {Variant(u"1234,565"), Variant(2.675), Variant::null()}) {
        std::cout << kvarta16::to_utf8(kvarta16::bare::VarR2Str(field)) << ' ';
    }
    std::cout << '\n';  // 1234,57 2,68 0,00
}
