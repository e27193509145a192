// What a program relies on when it uses the installed library: values and classes, a database that
// it seeds, failures that are raised in one library and caught in another, boxes that the library
// shows through the program's own class, and one instance of a global class for all libraries.
//
//   consumer FOLDER     FOLDER gets a database
#include <cstring>
#include <filesystem>
#include <functional>
#include <iostream>
#include <typeinfo>

#include <kvarta16/frame/catalogue.h>
#include <kvarta16/frame/globals.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/posix/posix_paths.h>
#include <kvarta16/platform/posix/posix_platform.h>
#include <kvarta16/platform/sqlite/sqlite_connection.h>
#include <kvarta16/platform/sqlite/sqlite_engine.h>
#include <kvarta16/statutory/Akt.h>

#include "members.h"

namespace {

int failures = 0;

template <class Value>
void expect_equal(const Value& actual, const Value& expected, const char* what) {
    if (actual == expected) {
        return;
    }
    ++failures;
    std::cerr << "consumer: " << what;
    if constexpr (requires { std::cerr << actual; }) {
        std::cerr << ": " << actual << " instead of " << expected;
    }
    std::cerr << '\n';
}

// The number of the failure that a call ends with; 0 for none.
kvarta16::Long failure_of(const std::function<void()>& call) {
    try {
        call();
    } catch (const kvarta16::Failure& failure) {
        expect_equal(std::strlen(failure.what()) > 0, true, "the text of a failure");
        return failure.number();
    }
    return 0;
}

class CountingBoxes : public kvarta16::MessageBoxes {
  public:
    kvarta16::MsgBoxResult MsgBox(kvarta16::StringView /*text*/, kvarta16::Long style,
                                  std::optional<kvarta16::StringView> /*title*/) override {
        ++count;
        return kvarta16::unattended_answer(style);
    }

    int count = 0;
};

void check_values() {
    using kvarta16::Variant;
    expect_equal(kvarta16::to_utf8(kvarta16::bare::VarR2Str(Variant(u"1234,565"))),
                 std::string("1234,57"), "VarR2Str");
    expect_equal(kvarta16::to_utf8(kvarta16::FormatMask(Variant(-12.5), u"0.00")),
                 std::string("-12,50"), "FormatMask");
    // Raised in the core.
    expect_equal(failure_of([] { (void)kvarta16::ToCurrency(Variant(u"dwa")); }),
                 kvarta16::Long{kvarta16::error::type_mismatch}, "the failure of ToCurrency");
}

void check_catalogue() {
    using kvarta16::aChar;
    const kvarta16::ClassInfo* found = kvarta16::find_class(u"aChar");
    expect_equal(found != nullptr, true, "aChar in the catalogue");
    // The library's own calls and those of this program work on one object.
    expect_equal(found->thread_instance() == &kvarta16::instance<aChar>(), true,
                 "one instance of aChar");
    kvarta16::Arguments arguments{kvarta16::Variant(u" ab ")};
    const kvarta16::MemberInfo* spaces =
        kvarta16::find_class(u"Class3")->find(u"Spacje_Usun", kvarta16::MemberKind::Method);
    const kvarta16::Variant result =
        kvarta16::invoke(*spaces, kvarta16::find_class(u"Class3")->thread_instance(), arguments);
    expect_equal(kvarta16::to_utf8(kvarta16::ToText(result)), std::string("ab"),
                 "Spacje_Usun by its name");
    bool is_refused = false;
    try {
        kvarta16::Arguments none;
        (void)kvarta16::invoke(*spaces, nullptr, none);
    } catch (const kvarta16::WrongArgumentCount&) {
        is_refused = true;
    }
    expect_equal(is_refused, true, "a call without its argument");
    expect_equal(consumer::members_of_headers(), consumer::members_of_catalogue(),
                 "the members of the headers and of the catalogue");
}

void check_platform() {
    using namespace kvarta16::literals;
    expect_equal(kvarta16::platform().clock == kvarta16::posix_platform().clock, true,
                 "the platform of a program that links kvarta16::posix");
    expect_equal(kvarta16::platform().db_engine == &kvarta16::sqlite::db_engine(), true,
                 "the engine of a program that links kvarta16::sqlite");
    // Raised in the adapter.
    expect_equal(failure_of([] { kvarta16::platform().files->Kill(u"Z:\\nie\\ma\\go"); }),
                 kvarta16::Long{76}, "the failure of Kill");

    CountingBoxes boxes;
    kvarta16::Platform mine = kvarta16::platform();
    mine.message_boxes = &boxes;
    const kvarta16::ScopedPlatform scope(mine);
    (void)kvarta16::bare::PodajDzień("2031-04-14"_date, true);  // beyond the feasts that are known
    expect_equal(boxes.count, 1, "the boxes that a class shows");
}

void check_database(const std::filesystem::path& folder) {
    const std::string file = (folder / "firma.db").string();
    expect_equal(failure_of([&] { (void)kvarta16::sqlite::connect(file); }), kvarta16::Long{3024},
                 "the failure of a file that is not there");

    const auto database = kvarta16::sqlite::connect(file, {.create = true});
    database->execute(
        "create table S_ODSETKI (Rodzaj INTEGER, od_dnia DATETIME, procent CURRENCY)");
    kvarta16::Akt().Ustaw_oDSETKI_uSTAWOWE(database, false, true);
    expect_equal(database->row_count(u"S_ODSETKI") > 0, true, "the rows of S_ODSETKI");
    // Raised in the adapter, passed on by the class.
    database->Close();
    expect_equal(failure_of([&] { kvarta16::Akt().Ustaw_oDSETKI_uSTAWOWE(database, false, true); }),
                 kvarta16::Long{kvarta16::ado::error_invalid_connection},
                 "the failure of a closed connection");

    // The other side of the same object, across the libraries that know the two classes.
    const std::shared_ptr<kvarta16::Object> object = kvarta16::sqlite::connect(file);
    const auto tables = std::dynamic_pointer_cast<kvarta16::dao::Database>(object);
    expect_equal(tables != nullptr, true, "a connection as a database of files");
    expect_equal(tables->TableDefs().size(), std::size_t{1}, "its tables");
}

}  // namespace

int main(int count, char** words) {
    if (count != 2) {
        std::cerr << "usage: consumer FOLDER\n";
        return 2;
    }
    check_values();
    check_catalogue();
    check_platform();
    check_database(words[1]);
    if (failures == 0) {
        std::cout << "consumer: " << consumer::members_of_catalogue()
                  << " members linked, all well\n";
    }
    return failures == 0 ? 0 : 1;
}
