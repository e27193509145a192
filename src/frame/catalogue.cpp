#include <algorithm>

#include <kvarta16/ciphers/d1enc.h>
#include <kvarta16/ciphers/dsEncrypt.h>
#include <kvarta16/database/Baza.h>
#include <kvarta16/database/ClsCzyscBazeDAO.h>
#include <kvarta16/dates/aDaty.h>
#include <kvarta16/dates/aproste.h>
#include <kvarta16/frame/amain.h>
#include <kvarta16/frame/catalogue.h>
#include <kvarta16/hr/Class1.h>
#include <kvarta16/hr/Kadry.h>
#include <kvarta16/numbers/ClsSlownie.h>
#include <kvarta16/numbers/aLiczby.h>
#include <kvarta16/statutory/Akt.h>
#include <kvarta16/text/Class3.h>
#include <kvarta16/text/aChar.h>

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

// A class that has its place and its identifiers and is not built yet.
constexpr ClassInfo planned(StringView name, Instancing instancing, std::string_view interface_id,
                            std::string_view class_id, const EventInterface* events = nullptr) {
    ClassInfo info;
    info.header = {name, instancing, interface_id, class_id};
    info.events = events;
    return info;
}

constexpr EventInfo transfer_progress{
    u"FileTransferProgress",
    2,
    {Parameter{u"lCurrentBytes", Passing::ByReference, false, {}, TypeName::Long},
     Parameter{u"lTotalBytes", Passing::ByReference, false, {}, TypeName::Long}}};
constexpr EventInfo ftp_event_list[] = {transfer_progress};
constexpr EventInterface ftp_events{u"__clsFTP", ftp_event_list};

constexpr ClassInfo classes[] = {
    built<dsEncrypt>(),
    built<d1enc>(),
    built<aChar>(),
    built<aDaty>(),
    planned(u"aIO", Instancing::Global, "605D0F3D-4B17-4157-BF8D-BECAB55DABD0",
            "F024779C-BFDC-438E-ABB1-A47E21D42416"),
    built<Kadry>(),
    built<aLiczby>(),
    built<amain>(),
    planned(u"amenu", Instancing::Global, "67ECFA56-A11A-4E2D-AB52-E783D202F467",
            "FFA00AA7-8A5A-4B13-A4D1-7CC6E4BF57FE"),
    built<aproste>(),
    planned(u"aregistry", Instancing::Global, "BF30E8AA-ECCD-41D9-88C1-32ABAFD9BA96",
            "42305B2E-90A7-466A-98A7-DE080FB3E3D7"),
    planned(u"clsFTP", Instancing::Creatable, "A6D17925-FA46-4C3D-AAA2-D21CCF606A04",
            "793EF039-40CD-42F9-8444-32C884C0C3C0", &ftp_events),
    planned(u"ClsPrint", Instancing::Creatable, "5D64C964-C4AE-4E0D-BDE9-4606E9607042",
            "79EE7936-7692-4DB0-ADB6-747CDFB2C5E7"),
    built<ClsSłownie>(),
    built<Baza>(),
    planned(u"CBrowseForFolders", Instancing::Global, "C0CFB165-12F5-4A89-8E2A-E3C2F4F5FF01",
            "E87B1E26-1434-4B79-B56A-26695ECD516D"),
    built<Akt>(),
    built<Class1>(),
    built<Class3>(),
    planned(u"CFileFind", Instancing::Creatable, "3030B6F2-8E69-49C6-A13C-73A79BD6983E",
            "2417ECAA-85F5-4951-BC09-7A4AF63EC28C"),
};

constexpr ClassInfo private_class_list[] = {
    built<ClsCzyśćBazęDAO>(),
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
