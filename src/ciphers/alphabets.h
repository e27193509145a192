// The two orders of the 112 printable characters of the ciphers: the 26 Latin and the 9 Polish
// letters in both cases, the digits, the blank, and the 31 ASCII marks other than the double
// quote. Private to the ciphers.
//
// Never to be changed: texts that have been enciphered can be read under the same order only.
#pragma once

#include <kvarta16/frame/types.h>

namespace kvarta16::ciphers {

inline constexpr StringView order_of_dsEncrypt =
    u"[t,/&hĘ7EWP3Żz]+ął_cHQJf6Dsę"
    u"aI@vd`$imkynÓL:-Sś8FxĆ%~UGR}"
    u"eA?Ob9ŃŹŚTń1w'ZXjg*<)V4q{|ó>"
    u"p5rY.BŁN= KMCć(źo2luż!0\\;#^Ą";

inline constexpr StringView order_of_d1enc =
    u"Ń<*53WTńlĘ:dŹ_)`Uę!ą8Y4u[r$Ć"
    u"Ś6LSE a>/+ś{Ko~CŻA}ÓVHX^2=źw"
    u"Fhqkz#@ŁNP0ż,;Ąłie(D1xtBOgyb"
    u"jpIfn7m-&\\RćvGZ|M?sJ]c'%óQ9.";

static_assert(order_of_dsEncrypt.size() == 112 && order_of_d1enc.size() == 112);

}  // namespace kvarta16::ciphers
