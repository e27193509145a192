#include <kvarta16/database/Baza.h>
#include <kvarta16/database/statement_runner.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

constexpr StringView polish_locale = u";LANGID=0x0415;CP=1250;COUNTRY=0";
constexpr Long pause_after_creation_ms = 3000;
constexpr Long passes_between_questions = 300;

// Only No is a refusal.
bool is_refused(StringView question) {
    return platform().message_boxes->MsgBox(question, msg_box::yes_no, std::nullopt) ==
           MsgBoxResult::No;
}

void show_failure(const Failure& failure) {
    const String text = ToText(Long{failure.number()}) + u":" + failure.description() +
                        u"/Proc:NewMdb,ModT:Module,ModN:Baza";
    platform().message_boxes->MsgBox(text, msg_box::ok_only, std::nullopt);
}

}  // namespace

String Baza::DbWykonajNorthWind(StringView ss, const std::shared_ptr<dao::Database>& dbsNorth,
                                Boolean NotSilent) const {
    return database::run_statement(ss, dbsNorth, NotSilent);
}

Boolean Baza::NewMdb(StringView Nazwa, Boolean Silent) {
    try {
        if (!is_name_free(Nazwa, Silent)) {
            return false;
        }
        // The new database is dropped at once, and never closed by its Close.
        static_cast<void>(platform().db_engine->CreateDatabase(Nazwa, polish_locale));
        platform().sleeper->Sleep(pause_after_creation_ms);
        return Sprawdź_bazęDAO(Nazwa) == 0;
    } catch (const Failure& failure) {
        guarded([&] { show_failure(failure); });
        return false;
    }
}

Long Baza::Sprawdź_bazęDAO(StringView Straa12) {
    try {
        BazaRobocza = platform().db_engine->OpenDatabase(Straa12);
        BazaRobocza->Close();
    } catch (const Failure& failure) {
        return failure.number();
    }
    return 0;
}

Boolean Baza::UsuńPlikBazy(StringView Nazwa) const {
    step([&] {
        if (IstniejePlikBazy(Nazwa)) {
            platform().files->Kill(Nazwa);
        }
    });
    return !IstniejePlikBazy(Nazwa);
}

Boolean Baza::IstniejePlikBazy(StringView Nazwa) const {
    Boolean result;
    step([&] { result = (platform().files->GetAttr(Nazwa) & file_attribute::directory) == 0; });
    return result;
}

bool Baza::is_name_free(StringView Nazwa, Boolean Silent) const {
    if (!IstniejePlikBazy(Nazwa)) {
        return true;
    }
    const String name(Nazwa);
    if (Silent || is_refused(u"Nadpisać " + name)) {
        return false;
    }
    for (Long passes = 1; IstniejePlikBazy(Nazwa); ++passes) {
        static_cast<void>(UsuńPlikBazy(Nazwa));
        if (passes % passes_between_questions == 0 &&
            is_refused(u"Czekam na usunięcie " + name +
                       u" już długo. Może plik jest zablokowany. Czekać dalej ?")) {
            return false;
        }
    }
    return true;
}

}  // namespace kvarta16
