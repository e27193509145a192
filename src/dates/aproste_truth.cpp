// The truth values of aproste.
#include <kvarta16/dates/aproste.h>

namespace kvarta16 {
namespace {

struct Rewriting {
    StringView word;
    StringView number;
};

constexpr Rewriting truth_words[] = {
    {u"= FAŁSZ", u"=0"},   {u"=FAŁSZ", u"=0"},   {u"= FALSE", u"=0"}, {u"=FALSE", u"=0"},
    {u"= PRAWDA", u"=-1"}, {u"=PRAWDA", u"=-1"}, {u"= TRUE", u"=-1"}, {u"=TRUE", u"=-1"},
};

}  // namespace

String aproste::TrueFalseStr(Boolean a) const {
    return a ? u"-1" : u"0";
}

Integer aproste::AnyBool2Int(const Variant& B) const {
    if (IsNullValue(B)) {
        return 0;
    }
    Boolean is_true = true;  // a test that fails goes on in its true branch
    step([&] { is_true = to_boolean(B); });
    return is_true ? 1 : 0;
}

String aproste::Bool2Str(Boolean B) const {
    return B ? u"1" : u"0";
}

String aproste::Check2Str(Integer CH) const {
    return CH == 1 ? u"1" : u"0";
}

Integer aproste::Bool2Int(Boolean CH) const {
    return CH ? 1 : 0;
}

Boolean aproste::Str2Bool(StringView StrA) const {
    const String upper = upper_case(StrA);
    return !(upper == u"NIE" || upper == u"FAŁSZ" || upper == u"FALSE" || StrA == u"0");
}

Integer aproste::Chk2Bool(Integer c) const {
    return c != 0 ? -1 : 0;
}

Integer aproste::Bool2INTBool(Boolean c) const {
    return c ? -1 : 0;
}

String aproste::Bool2Sql(StringView s) const {
    String result(s);
    for (const Rewriting& rewriting : truth_words) {
        result = replace_all(result, rewriting.word, rewriting.number);
    }
    return result;
}

}  // namespace kvarta16
