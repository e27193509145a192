#include <kvarta16/text/Class3.h>

namespace kvarta16 {

String Class3::Myslnik_Usun(StringView s) const {
    return replace_all(s, u"-", u"");
}

String Class3::Spacje_Usun(StringView s) const {
    return replace_all(s, u" ", u"");
}

}  // namespace kvarta16
