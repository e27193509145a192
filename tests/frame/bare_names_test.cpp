// The bare names of the global classes: each works on the calling thread's own instance.

#include <gtest/gtest.h>

#include <kvarta16/frame/globals.h>
#include <kvarta16/platform/platform.h>

#include "frame_support.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;
using namespace bare;

TEST(BareNames, CallTheTextClasses) {
    String text = u"d'Arc";
    String wanted = u"ARC";
    String put = u"ark";
    String padded = u"ab";
    String dotted = u"1,5,6";
    Long start = 1;
    Long width = 4;
    EXPECT_EQ(NullStr(Variant::null()), u"");
    EXPECT_EQ(NullSPCStr(Variant::null()), u" ");
    EXPECT_EQ(Str2Str(Variant(123456)), u"123456");
    EXPECT_EQ(apostrof2(text), u"d\"Arc");
    EXPECT_EQ(Cudzysłów_Ameryk(u"a\"b"), u"a'b");
    EXPECT_EQ(Bez_Cudzysłowów(u"a\"b'"), u"a b ");
    EXPECT_EQ(Przecinek_Kropka(dotted), u"1.5,6");
    EXPECT_EQ(Cut1310Chars(u"a\r\nb"), u"a  b");
    EXPECT_EQ(apostrof3(text), u"dArc");
    EXPECT_EQ(text, u"dArc");
    EXPECT_EQ(notation(Replace2(text, wanted, put)), "String \"dark\"");
    EXPECT_EQ(MidUZ(padded, start, width), u"ab  ");
    EXPECT_EQ(notation(UzMid(padded, start, width)), "String \"  ab\"");
    EXPECT_EQ(A_DOK(Variant(u"XX\\ 12 / 2009")), u"12 ");
    EXPECT_EQ(B_DOK(Variant(u"XX\\ 12 / 2009")), u"2009");
    EXPECT_EQ(CutCudzysłowy(u"\"a\""), u"a");
    EXPECT_EQ(StrDoPrawej(u"abc", 5), u"  abc");
    EXPECT_EQ(Myslnik_Usun(u"1-2-3"), u"123");
    EXPECT_EQ(Spacje_Usun(u"1 2 3"), u"123");
}

TEST(BareNames, CallTheNumberClass) {
    const Variant half = 12.5;
    EXPECT_EQ(NullXUStr(Variant(u"abc"), Integer{5}), u"  ABC");
    EXPECT_EQ(VarR0GSi(Variant(1.0001)), Currency::raw(20000));
    EXPECT_EQ(VarR1GSi(Variant(1.01)), Currency::raw(11000));
    EXPECT_EQ(VarR0Si(Variant(2.5)), Currency::raw(30000));
    EXPECT_EQ(VarR1Si(half), Currency::raw(125000));
    EXPECT_EQ(VarR2Si(Variant(2.675)), Currency::raw(26800));
    EXPECT_EQ(VarR2Si1(Variant(1.005)), Currency::raw(10100));
    EXPECT_EQ(VarR3Si(Variant(u"1,2345")), Currency::raw(12350));
    EXPECT_EQ(VarR4Si(half), Currency::raw(125000));
    EXPECT_EQ(VarLong(Variant(u"13,5")), 14);
    EXPECT_EQ(VarMMR2Str(Variant(5)), u"5,00");
    EXPECT_EQ(VarMMR1Str(Variant(5)), u"5,0");
    EXPECT_EQ(VarR0Str(Variant(3)), u"3");
    EXPECT_EQ(VarR1Str(half), u"12,5");
    EXPECT_EQ(VarR1GStr(half), u"12,5");
    EXPECT_EQ(VarR2Str(half), u"12,50");
    EXPECT_EQ(VarR3Str(half), u"12,500");
    EXPECT_EQ(VarR4Str(half), u"12,5000");
    EXPECT_EQ(VarR2StrA(half), u"12,5 ");
    EXPECT_EQ(VarR3StrA(half), u"12,5  ");
    EXPECT_EQ(notation(VarValVar(Variant(u"12abc"))), "Double 12");
    EXPECT_EQ(notation(StrValVar(u"12,5")), "Double 12");
    EXPECT_EQ(notation(VarVar(Variant::null())), "Integer 0");
    EXPECT_EQ(SumStrValR2Str(u"1,005", u"1,005"), u"2,00");
    EXPECT_EQ(SumStrValR3Str(u"1", u"2"), u"3,000");
    EXPECT_EQ(SumStrValR2Si(Variant(1), Variant(2)), Currency::raw(30000));
    EXPECT_EQ(SumStrValR3Si(u"1", u"2"), Currency::raw(30000));
    EXPECT_EQ(VarObcinajStr(Variant(u"12,9")), u"12");
    EXPECT_EQ(NoSign(u"-3,456"), Currency::raw(34600));
    EXPECT_EQ(Num2Dot(u"0"), u".");
    EXPECT_EQ(VarR2SiPL(Variant(Currency::raw(10149))), Currency::raw(10200));
}

class SilentBoxes final : public MessageBoxes {
  public:
    MsgBoxResult MsgBox(StringView, Long style, std::optional<StringView>) override {
        ++shown;
        return unattended_answer(style);
    }

    int shown = 0;
};

TEST(BareNames, CallTheWithdrawnMembersToo) {
    SilentBoxes boxes;
    Platform silent = platform();
    silent.message_boxes = &boxes;
    const ScopedPlatform scope(silent);
    EXPECT_EQ(Var2Val18Str(Variant(5)), u"");
    EXPECT_EQ(VarValR0Str(Variant(5)), u"");
    EXPECT_EQ(VarR0TnijStr(Variant(5)), u"");
    EXPECT_EQ(VarValRMStr(Variant(5), u"0.00"), u"");
    EXPECT_EQ(Zaokr(Variant(5)), Currency());
    EXPECT_EQ(boxes.shown, 5);
}

}  // namespace
}  // namespace kvarta16
