#include <algorithm>

#include <kvarta16/ciphers/d1enc.h>
#include <kvarta16/ciphers/dsEncrypt.h>
#include <kvarta16/database/Baza.h>
#include <kvarta16/database/ClsCzyscBazeDAO.h>
#include <kvarta16/dates/aDaty.h>
#include <kvarta16/dates/aproste.h>
#include <kvarta16/files/B_WinWer.h>
#include <kvarta16/files/CBrowseForFolders.h>
#include <kvarta16/files/CFileFind.h>
#include <kvarta16/files/aIO.h>
#include <kvarta16/frame/amain.h>
#include <kvarta16/frame/catalogue.h>
#include <kvarta16/ftp/clsFTP.h>
#include <kvarta16/hr/Class1.h>
#include <kvarta16/hr/Kadry.h>
#include <kvarta16/numbers/ClsSlownie.h>
#include <kvarta16/numbers/aLiczby.h>
#include <kvarta16/registry/aregistry.h>
#include <kvarta16/statutory/Akt.h>
#include <kvarta16/text/Class3.h>
#include <kvarta16/text/aChar.h>
#include <kvarta16/ui/ClsPrint.h>
#include <kvarta16/ui/amenu.h>

namespace kvarta16 {
namespace {

template <class C>
std::shared_ptr<void> create() {
    return std::make_shared<C>();
}

template <class C>
void* thread_instance() {
    return &instance<C>();
}

template <class C>
constexpr ClassInfo built() {
    ClassInfo info;
    info.header = ClassTable<C>::header;
    info.members = ClassTable<C>::members;
    if constexpr (requires { ClassTable<C>::events; }) {
        info.events = &ClassTable<C>::events;
    }
    info.create = &create<C>;
    if constexpr (ClassTable<C>::header.instancing == Instancing::Global) {
        info.thread_instance = &thread_instance<C>;
    }
    return info;
}

// One row a line, in the order of the type library.
// clang-format off
constexpr ClassInfo classes[] = {
    built<dsEncrypt>(),
    built<d1enc>(),
    built<aChar>(),
    built<aDaty>(),
    built<aIO>(),
    built<Kadry>(),
    built<aLiczby>(),
    built<amain>(),
    built<amenu>(),
    built<aproste>(),
    built<aregistry>(),
    built<clsFTP>(),
    built<ClsPrint>(),
    built<ClsSłownie>(),
    built<Baza>(),
    built<CBrowseForFolders>(),
    built<Akt>(),
    built<Class1>(),
    built<Class3>(),
    built<CFileFind>(),
};
// clang-format on

constexpr ClassInfo private_class_list[] = {
    built<ClsCzyśćBazęDAO>(),
    built<B_WinWer>(),
};

// The primitives with a plain argument list each: the settings that C++ callers have beside it
// are at their defaults.
String format_mask(const Variant& value, StringView mask) {
    return FormatMask(value, mask);
}
Variant round_half_even_variant(const Variant& value, Integer decimals) {
    return RoundHalfEven(value, decimals);
}

constexpr MemberInfo primitives[] = {
    method<&ValPrefix>(u"ValPrefix", by_value(u"text")),
    method<&ToCurrency>(u"ToCurrency", by_value(u"value")),
    method<&ToInteger16>(u"ToInteger16", by_value(u"value")),
    method<&ToLong>(u"ToLong", by_value(u"value")),
    method<&ToText>(u"ToText", by_value(u"value")),
    method<&IsNumericText>(u"IsNumericText", by_value(u"value")),
    method<&IsNullValue>(u"IsNullValue", by_value(u"value")),
    method<&IsDateValue>(u"IsDateValue", by_value(u"value")),
    method<&ToDate>(u"ToDate", by_value(u"value")),
    method<&MakeDate>(u"MakeDate", by_value(u"year"), by_value(u"month"), by_value(u"day")),
    method<&format_mask>(u"FormatMask", by_value(u"value"), by_value(u"mask")),
    method<&round_half_even_variant>(u"RoundHalfEven", by_value(u"value"), by_value(u"decimals")),
};

}  // namespace

const MemberInfo* ClassInfo::find(StringView name, MemberKind kind) const {
    const auto found = std::ranges::find_if(members, [&](const MemberInfo& member) {
        return member.name == name && member.kind == kind && member.is_built();
    });
    return found == members.end() ? nullptr : &*found;
}

std::span<const ClassInfo> public_classes() {
    return classes;
}

std::span<const ClassInfo> private_classes() {
    return private_class_list;
}

const ClassInfo* find_class(StringView name) {
    const auto* found =
        std::ranges::find(classes, name, [](const ClassInfo& c) { return c.header.name; });
    return found == std::end(classes) ? nullptr : found;
}

std::span<const MemberInfo> value_primitives() {
    return primitives;
}

}  // namespace kvarta16
