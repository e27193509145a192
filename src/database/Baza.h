// Database files as a whole: making an empty one, asking whether one can be opened, running a
// statement on an open one.
//
//   Baza baza;
//   if (baza.NewMdb(u"Z:\\home\\anna\\firma.mdb")) {   // three seconds at the least
//       baza.Sprawdź_bazęDAO(u"Z:\\home\\anna\\firma.mdb");   // 0
//   }
//
// All of it blocks the calling thread, and NewMdb speaks to the user.
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>
#include <kvarta16/platform/dao.h>

namespace kvarta16 {

class KVARTA16_EXPORT Baza {
  public:
    // Runs the statement `ss`, one that gives no rows, on `dbsNorth`, which stays the caller's. The
    // result is "" on success and else the failure's description. With `NotSilent` a box shows it
    // too, with the statement as its title. Guarded: no failure reaches the caller.
    [[nodiscard]] String DbWykonajNorthWind(StringView ss,
                                            const std::shared_ptr<dao::Database>& dbsNorth,
                                            Boolean NotSilent) const;

    // Makes an empty database of the Polish locale under the name `Nazwa`; true when a good one now
    // stands there. A file of that name is left alone with `Silent`, which does not mean to
    // overwrite it; otherwise a box asks, and then the file is deleted before anything else is
    // done: if the making fails it is gone. A file that somebody holds is tried again without a
    // pause, and every 300 passes a box asks whether to go on. Then three seconds of pause, and the
    // new file is opened once to see that it is good.
    //
    // Guarded: a failure is told in a box, also with `Silent`, and gives false.
    [[nodiscard]] Boolean NewMdb(StringView Nazwa, Boolean Silent = {});

    // Whether the file `Straa12` opens as a database: 0, or the number by which the engine says
    // why not. Guarded, and shows nothing.
    [[nodiscard]] Long Sprawdź_bazęDAO(StringView Straa12);

  private:
    // Deletes the file if there is one; true when none stands there afterwards. Tolerant.
    [[nodiscard]] Boolean UsuńPlikBazy(StringView Nazwa) const;

    // Whether the name is that of a file and no folder. Tolerant: what cannot be looked at is none.
    [[nodiscard]] Boolean IstniejePlikBazy(StringView Nazwa) const;

    // What has to be out of the way before NewMdb creates its file; false if the user gives up.
    [[nodiscard]] bool is_name_free(StringView Nazwa, Boolean Silent) const;

    // The last database that was looked at, closed. It is kept until the next look.
    std::shared_ptr<dao::Database> BazaRobocza;
};

template <>
struct ClassTable<Baza> {
    static constexpr ClassHeader header{u"Baza", Instancing::Global,
                                        "61485FDF-89F0-4CEE-94BC-12FA16AB4B4A",
                                        "54674E0D-4A31-4851-9FCA-F01684BBD203"};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&Baza::DbWykonajNorthWind>(u"DbWykonajNorthWind", by_value(u"ss"),
                                          by_reference(u"dbsNorth"), by_reference(u"NotSilent")),
        method<&Baza::NewMdb>(u"NewMdb", by_value(u"Nazwa"), optional(by_value(u"Silent"))),
        method<&Baza::Sprawdź_bazęDAO>(u"Sprawdź_bazęDAO", by_value(u"Straa12")),
    });
};

}  // namespace kvarta16
