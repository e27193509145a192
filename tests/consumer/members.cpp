#include "members.h"

#include <kvarta16/ciphers/d1enc.h>
#include <kvarta16/ciphers/dsEncrypt.h>
#include <kvarta16/database/ClsCzyscBazeDAO.h>
#include <kvarta16/files/B_WinWer.h>
#include <kvarta16/files/CFileFind.h>
#include <kvarta16/frame/amain.h>
#include <kvarta16/frame/catalogue.h>
#include <kvarta16/frame/globals.h>
#include <kvarta16/ftp/clsFTP.h>
#include <kvarta16/hr/Class1.h>
#include <kvarta16/numbers/ClsSlownie.h>
#include <kvarta16/statutory/Akt.h>
#include <kvarta16/ui/ClsPrint.h>

namespace consumer {
namespace {

using namespace kvarta16;  // a program's own affair

// The span refers to the table, so that the code of each of its entries is linked.
template <class... C>
std::size_t members_of() {
    std::size_t count = 0;
    for (const std::span<const MemberInfo> members :
         {std::span<const MemberInfo>(ClassTable<C>::members)...}) {
        for (const MemberInfo& member : members) {
            count += member.is_built() ? 1 : 0;
        }
    }
    return count;
}

std::size_t built_members(std::span<const ClassInfo> classes) {
    std::size_t count = 0;
    for (const ClassInfo& listed : classes) {
        for (const MemberInfo& member : listed.members) {
            count += member.is_built() ? 1 : 0;
        }
    }
    return count;
}

}  // namespace

std::size_t members_of_headers() {
    return members_of<Akt, B_WinWer, Baza, CBrowseForFolders, CFileFind, Class1, Class3, ClsPrint,
                      ClsCzyśćBazęDAO, ClsSłownie, Kadry, aChar, aDaty, aIO, aLiczby, amain, amenu,
                      aproste, aregistry, clsFTP, d1enc, dsEncrypt>();
}

std::size_t members_of_catalogue() {
    return built_members(public_classes()) + built_members(private_classes());
}

}  // namespace consumer
