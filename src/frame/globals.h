// The members of the global classes by their bare names, as the platform's callers know them:
//
//   using namespace kvarta16::bare;   // in a source file
//   VarR2Str(12.5);                   // "12,50", on the calling thread's own aLiczby
//
// Each works on the calling thread's instance, which its first use makes.
#pragma once

#include <utility>

#include <kvarta16/numbers/aLiczby.h>
#include <kvarta16/text/Class3.h>
#include <kvarta16/text/aChar.h>

namespace kvarta16::bare {

// aChar
decltype(auto) NullStr(auto&&... arguments) {
    return instance<aChar>().NullStr(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Str2Str(auto&&... arguments) {
    return instance<aChar>().Str2Str(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) NullSPCStr(auto&&... arguments) {
    return instance<aChar>().NullSPCStr(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Replace2(auto&&... arguments) {
    return instance<aChar>().Replace2(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) apostrof2(auto&&... arguments) {
    return instance<aChar>().apostrof2(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) apostrof3(auto&&... arguments) {
    return instance<aChar>().apostrof3(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Cudzysłów_Ameryk(auto&&... arguments) {
    return instance<aChar>().Cudzysłów_Ameryk(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Bez_Cudzysłowów(auto&&... arguments) {
    return instance<aChar>().Bez_Cudzysłowów(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Przecinek_Kropka(auto&&... arguments) {
    return instance<aChar>().Przecinek_Kropka(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Cut1310Chars(auto&&... arguments) {
    return instance<aChar>().Cut1310Chars(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) MidUZ(auto&&... arguments) {
    return instance<aChar>().MidUZ(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) UzMid(auto&&... arguments) {
    return instance<aChar>().UzMid(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) A_DOK(auto&&... arguments) {
    return instance<aChar>().A_DOK(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) B_DOK(auto&&... arguments) {
    return instance<aChar>().B_DOK(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) CutCudzysłowy(auto&&... arguments) {
    return instance<aChar>().CutCudzysłowy(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) StrDoPrawej(auto&&... arguments) {
    return instance<aChar>().StrDoPrawej(std::forward<decltype(arguments)>(arguments)...);
}

// Class3
decltype(auto) Myslnik_Usun(auto&&... arguments) {
    return instance<Class3>().Myslnik_Usun(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Spacje_Usun(auto&&... arguments) {
    return instance<Class3>().Spacje_Usun(std::forward<decltype(arguments)>(arguments)...);
}

// aLiczby
decltype(auto) NullXUStr(auto&&... arguments) {
    return instance<aLiczby>().NullXUStr(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR0GSi(auto&&... arguments) {
    return instance<aLiczby>().VarR0GSi(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR1GSi(auto&&... arguments) {
    return instance<aLiczby>().VarR1GSi(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR3Si(auto&&... arguments) {
    return instance<aLiczby>().VarR3Si(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR2Si(auto&&... arguments) {
    return instance<aLiczby>().VarR2Si(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR2Si1(auto&&... arguments) {
    return instance<aLiczby>().VarR2Si1(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR4Si(auto&&... arguments) {
    return instance<aLiczby>().VarR4Si(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarLong(auto&&... arguments) {
    return instance<aLiczby>().VarLong(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarMMR2Str(auto&&... arguments) {
    return instance<aLiczby>().VarMMR2Str(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR2Str(auto&&... arguments) {
    return instance<aLiczby>().VarR2Str(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR1Si(auto&&... arguments) {
    return instance<aLiczby>().VarR1Si(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR0Si(auto&&... arguments) {
    return instance<aLiczby>().VarR0Si(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR1Str(auto&&... arguments) {
    return instance<aLiczby>().VarR1Str(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR1GStr(auto&&... arguments) {
    return instance<aLiczby>().VarR1GStr(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR4Str(auto&&... arguments) {
    return instance<aLiczby>().VarR4Str(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR3Str(auto&&... arguments) {
    return instance<aLiczby>().VarR3Str(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR2StrA(auto&&... arguments) {
    return instance<aLiczby>().VarR2StrA(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR3StrA(auto&&... arguments) {
    return instance<aLiczby>().VarR3StrA(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarMMR1Str(auto&&... arguments) {
    return instance<aLiczby>().VarMMR1Str(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR0Str(auto&&... arguments) {
    return instance<aLiczby>().VarR0Str(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Var2Val18Str(auto&&... arguments) {
    return instance<aLiczby>().Var2Val18Str(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarValVar(auto&&... arguments) {
    return instance<aLiczby>().VarValVar(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) StrValVar(auto&&... arguments) {
    return instance<aLiczby>().StrValVar(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarVar(auto&&... arguments) {
    return instance<aLiczby>().VarVar(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) SumStrValR2Str(auto&&... arguments) {
    return instance<aLiczby>().SumStrValR2Str(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) SumStrValR3Str(auto&&... arguments) {
    return instance<aLiczby>().SumStrValR3Str(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) SumStrValR2Si(auto&&... arguments) {
    return instance<aLiczby>().SumStrValR2Si(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) SumStrValR3Si(auto&&... arguments) {
    return instance<aLiczby>().SumStrValR3Si(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarObcinajStr(auto&&... arguments) {
    return instance<aLiczby>().VarObcinajStr(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarValR0Str(auto&&... arguments) {
    return instance<aLiczby>().VarValR0Str(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR0TnijStr(auto&&... arguments) {
    return instance<aLiczby>().VarR0TnijStr(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarValRMStr(auto&&... arguments) {
    return instance<aLiczby>().VarValRMStr(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Zaokr(auto&&... arguments) {
    return instance<aLiczby>().Zaokr(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) NoSign(auto&&... arguments) {
    return instance<aLiczby>().NoSign(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Num2Dot(auto&&... arguments) {
    return instance<aLiczby>().Num2Dot(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) VarR2SiPL(auto&&... arguments) {
    return instance<aLiczby>().VarR2SiPL(std::forward<decltype(arguments)>(arguments)...);
}
// The property of aChar: the thread's own, to read and to write.
inline String& c_aaa() {
    return instance<aChar>().c_aaa;
}

}  // namespace kvarta16::bare
