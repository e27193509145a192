// The members of the global classes by their bare names, as the platform's callers know them:
//
//   using namespace kvarta16::bare;   // in a source file
//   VarR2Str(12.5);                   // "12,50", on the calling thread's own aLiczby
//
// Each works on the calling thread's instance, which its first use makes.
#pragma once

#include <utility>

#include <kvarta16/database/Baza.h>
#include <kvarta16/dates/aDaty.h>
#include <kvarta16/dates/aproste.h>
#include <kvarta16/files/CBrowseForFolders.h>
#include <kvarta16/files/aIO.h>
#include <kvarta16/hr/Kadry.h>
#include <kvarta16/numbers/aLiczby.h>
#include <kvarta16/registry/aregistry.h>
#include <kvarta16/text/Class3.h>
#include <kvarta16/text/aChar.h>
#include <kvarta16/ui/amenu.h>

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

decltype(auto) KonwertLitery(auto&&... arguments) {
    return instance<aChar>().KonwertLitery(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) KonwertNaMaz(auto&&... arguments) {
    return instance<aChar>().KonwertNaMaz(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) KonwertPlatnik(auto&&... arguments) {
    return instance<aChar>().KonwertPlatnik(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) KonwertNaWin(auto&&... arguments) {
    return instance<aChar>().KonwertNaWin(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) konwertNaBPL(auto&&... arguments) {
    return instance<aChar>().konwertNaBPL(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Konwert_lan(auto&&... arguments) {
    return instance<aChar>().Konwert_lan(std::forward<decltype(arguments)>(arguments)...);
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
decltype(auto) PoliczWyrażenie(auto&&... arguments) {
    return instance<aLiczby>().PoliczWyrażenie(std::forward<decltype(arguments)>(arguments)...);
}
// aDaty
decltype(auto) RóżnicaDat(auto&&... arguments) {
    return instance<aDaty>().RóżnicaDat(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) BOWeek(auto&&... arguments) {
    return instance<aDaty>().BOWeek(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) EOWeek(auto&&... arguments) {
    return instance<aDaty>().EOWeek(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) BOYear(auto&&... arguments) {
    return instance<aDaty>().BOYear(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) EOYear(auto&&... arguments) {
    return instance<aDaty>().EOYear(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) BOMonth(auto&&... arguments) {
    return instance<aDaty>().BOMonth(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) EOMonth(auto&&... arguments) {
    return instance<aDaty>().EOMonth(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) ToDayMonth(auto&&... arguments) {
    return instance<aDaty>().ToDayMonth(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) BOWeek2(auto&&... arguments) {
    return instance<aDaty>().BOWeek2(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) DzieńDoDnia(auto&&... arguments) {
    return instance<aDaty>().DzieńDoDnia(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) DzieńDoDnia2(auto&&... arguments) {
    return instance<aDaty>().DzieńDoDnia2(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) YearN(auto&&... arguments) {
    return instance<aDaty>().YearN(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) MonthN(auto&&... arguments) {
    return instance<aDaty>().MonthN(std::forward<decltype(arguments)>(arguments)...);
}

// aproste
decltype(auto) DateSerialSpr(auto&&... arguments) {
    return instance<aproste>().DateSerialSpr(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) ObetnijGodz(auto&&... arguments) {
    return instance<aproste>().ObetnijGodz(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Str2Date(auto&&... arguments) {
    return instance<aproste>().Str2Date(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Date2Str(auto&&... arguments) {
    return instance<aproste>().Date2Str(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) FlexStr2DateNOW(auto&&... arguments) {
    return instance<aproste>().FlexStr2DateNOW(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) FlexStr2Date(auto&&... arguments) {
    return instance<aproste>().FlexStr2Date(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Flex2DateStr(auto&&... arguments) {
    return instance<aproste>().Flex2DateStr(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) FormatSD(auto&&... arguments) {
    return instance<aproste>().FormatSD(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) FormatSDS(auto&&... arguments) {
    return instance<aproste>().FormatSDS(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) FormatDS(auto&&... arguments) {
    return instance<aproste>().FormatDS(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) NazwaMiesiąca(auto&&... arguments) {
    return instance<aproste>().NazwaMiesiąca(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) CzekajSek(auto&&... arguments) {
    return instance<aproste>().CzekajSek(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) MinMax(auto&&... arguments) {
    return instance<aproste>().MinMax(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) MinMaxi(auto&&... arguments) {
    return instance<aproste>().MinMaxi(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) max(auto&&... arguments) {
    return instance<aproste>().max(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) MAXi(auto&&... arguments) {
    return instance<aproste>().MAXi(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) TrueFalseStr(auto&&... arguments) {
    return instance<aproste>().TrueFalseStr(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) AnyBool2Int(auto&&... arguments) {
    return instance<aproste>().AnyBool2Int(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Bool2Str(auto&&... arguments) {
    return instance<aproste>().Bool2Str(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Check2Str(auto&&... arguments) {
    return instance<aproste>().Check2Str(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Bool2Int(auto&&... arguments) {
    return instance<aproste>().Bool2Int(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Str2Bool(auto&&... arguments) {
    return instance<aproste>().Str2Bool(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Zamień(auto&&... arguments) {
    return instance<aproste>().Zamień(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Bez_1310(auto&&... arguments) {
    return instance<aproste>().Bez_1310(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Bez_1310_spc(auto&&... arguments) {
    return instance<aproste>().Bez_1310_spc(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Nazwa_pliu_z____(auto&&... arguments) {
    return instance<aproste>().Nazwa_pliu_z____(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Obcinaj(auto&&... arguments) {
    return instance<aproste>().Obcinaj(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) obcinaj_do_Przecinka(auto&&... arguments) {
    return instance<aproste>().obcinaj_do_Przecinka(
        std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) obcinaj_v(auto&&... arguments) {
    return instance<aproste>().obcinaj_v(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) TrimMinus(auto&&... arguments) {
    return instance<aproste>().TrimMinus(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Make_K1234(auto&&... arguments) {
    return instance<aproste>().Make_K1234(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Make_1234K(auto&&... arguments) {
    return instance<aproste>().Make_1234K(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Chk2Bool(auto&&... arguments) {
    return instance<aproste>().Chk2Bool(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Bool2INTBool(auto&&... arguments) {
    return instance<aproste>().Bool2INTBool(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) HLiczToGodz(auto&&... arguments) {
    return instance<aproste>().HLiczToGodz(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) HLiczToStr(auto&&... arguments) {
    return instance<aproste>().HLiczToStr(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) HGodzToLicz(auto&&... arguments) {
    return instance<aproste>().HGodzToLicz(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) HGodzToLiczRCP(auto&&... arguments) {
    return instance<aproste>().HGodzToLiczRCP(std::forward<decltype(arguments)>(arguments)...);
}

// Kadry
decltype(auto) PodajDzień(auto&&... arguments) {
    return instance<Kadry>().PodajDzień(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) licz_okres2(auto&&... arguments) {
    return instance<Kadry>().licz_okres2(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) licz_okres(auto&&... arguments) {
    return instance<Kadry>().licz_okres(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) sumuj_okresy(auto&&... arguments) {
    return instance<Kadry>().sumuj_okresy(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) limit_u(auto&&... arguments) {
    return instance<Kadry>().limit_u(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) limit_u1(auto&&... arguments) {
    return instance<Kadry>().limit_u1(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) data_6m(auto&&... arguments) {
    return instance<Kadry>().data_6m(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) data_12m(auto&&... arguments) {
    return instance<Kadry>().data_12m(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) data_6l(auto&&... arguments) {
    return instance<Kadry>().data_6l(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) data_10l(auto&&... arguments) {
    return instance<Kadry>().data_10l(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) DbCloseSEL(auto&&... arguments) {
    return instance<aproste>().DbCloseSEL(std::forward<decltype(arguments)>(arguments)...);
}

// Baza
decltype(auto) DbWykonajNorthWind(auto&&... arguments) {
    return instance<Baza>().DbWykonajNorthWind(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) NewMdb(auto&&... arguments) {
    return instance<Baza>().NewMdb(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Sprawdź_bazęDAO(auto&&... arguments) {
    return instance<Baza>().Sprawdź_bazęDAO(std::forward<decltype(arguments)>(arguments)...);
}

// aIO
decltype(auto) WithOutDirSep(auto&&... arguments) {
    return instance<aIO>().WithOutDirSep(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) AddDirSep(auto&&... arguments) {
    return instance<aIO>().AddDirSep(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) GetWindowsDir(auto&&... arguments) {
    return instance<aIO>().GetWindowsDir(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) StringFromBuffer(auto&&... arguments) {
    return instance<aIO>().StringFromBuffer(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) MakeDirChange(auto&&... arguments) {
    return instance<aIO>().MakeDirChange(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) MakeDir(auto&&... arguments) {
    return instance<aIO>().MakeDir(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) DelFile2(auto&&... arguments) {
    return instance<aIO>().DelFile2(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) DelFile(auto&&... arguments) {
    return instance<aIO>().DelFile(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) RenameFile(auto&&... arguments) {
    return instance<aIO>().RenameFile(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) IsFile(auto&&... arguments) {
    return instance<aIO>().IsFile(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) IsFile_file(auto&&... arguments) {
    return instance<aIO>().IsFile_file(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) IsDIR(auto&&... arguments) {
    return instance<aIO>().IsDIR(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) BaseName(auto&&... arguments) {
    return instance<aIO>().BaseName(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) BaseName_BezExT(auto&&... arguments) {
    return instance<aIO>().BaseName_BezExT(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) BaseName_ExT(auto&&... arguments) {
    return instance<aIO>().BaseName_ExT(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) SeparatePathAndFileName(auto&&... arguments) {
    return instance<aIO>().SeparatePathAndFileName(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) IsSeparator(auto&&... arguments) {
    return instance<aIO>().IsSeparator(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) PathStr(auto&&... arguments) {
    return instance<aIO>().PathStr(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) FileCopy_Fun(auto&&... arguments) {
    return instance<aIO>().FileCopy_Fun(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) IsFile_open(auto&&... arguments) {
    return instance<aIO>().IsFile_open(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) DoSendKeys(auto&&... arguments) {
    return instance<aIO>().DoSendKeys(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) GetWinPlatform(auto&&... arguments) {
    return instance<aIO>().GetWinPlatform(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) SyncShell(auto&&... arguments) {
    return instance<aIO>().SyncShell(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) pDisplayError_Shell(auto&&... arguments) {
    return instance<aIO>().pDisplayError_Shell(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Spakuj_i_Skasuj(auto&&... arguments) {
    return instance<aIO>().Spakuj_i_Skasuj(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Skasuj_po_pakowaniu(auto&&... arguments) {
    return instance<aIO>().Skasuj_po_pakowaniu(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Zapisz_do_pliku(auto&&... arguments) {
    return instance<aIO>().Zapisz_do_pliku(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Przerwij(auto&&... arguments) {
    return instance<aIO>().Przerwij(std::forward<decltype(arguments)>(arguments)...);
}

// CBrowseForFolders
decltype(auto) BrowseForFolder(auto&&... arguments) {
    return instance<CBrowseForFolders>().BrowseForFolder(
        std::forward<decltype(arguments)>(arguments)...);
}

// amenu
decltype(auto) LoadBmp(auto&&... arguments) {
    return instance<amenu>().LoadBmp(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) SetMenuBmp(auto&&... arguments) {
    return instance<amenu>().SetMenuBmp(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) DeleteMenu(auto&&... arguments) {
    return instance<amenu>().DeleteMenu(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) AddNewMenu(auto&&... arguments) {
    return instance<amenu>().AddNewMenu(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) InsertNewSubMenu(auto&&... arguments) {
    return instance<amenu>().InsertNewSubMenu(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) InsertNewMenu(auto&&... arguments) {
    return instance<amenu>().InsertNewMenu(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) DelMenu(auto&&... arguments) {
    return instance<amenu>().DelMenu(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) CreateNewMenu(auto&&... arguments) {
    return instance<amenu>().CreateNewMenu(std::forward<decltype(arguments)>(arguments)...);
}

// aregistry
decltype(auto) GetRegistry(auto&&... arguments) {
    return instance<aregistry>().GetRegistry(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) GetRegistryK(auto&&... arguments) {
    return instance<aregistry>().GetRegistryK(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) SaveRegistry(auto&&... arguments) {
    return instance<aregistry>().SaveRegistry(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) SaveRegistryK(auto&&... arguments) {
    return instance<aregistry>().SaveRegistryK(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) Savekey(auto&&... arguments) {
    return instance<aregistry>().Savekey(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) DeleteKey(auto&&... arguments) {
    return instance<aregistry>().DeleteKey(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) DeleteValue(auto&&... arguments) {
    return instance<aregistry>().DeleteValue(std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) SaveRegistryK_do_wersji12(auto&&... arguments) {
    return instance<aregistry>().SaveRegistryK_do_wersji12(
        std::forward<decltype(arguments)>(arguments)...);
}
decltype(auto) GetRegistryK_do_wersji12(auto&&... arguments) {
    return instance<aregistry>().GetRegistryK_do_wersji12(
        std::forward<decltype(arguments)>(arguments)...);
}

// The property of aChar: the thread's own, to read and to write.
inline String& c_aaa() {
    return instance<aChar>().c_aaa;
}

}  // namespace kvarta16::bare
