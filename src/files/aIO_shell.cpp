// The members of aIO that reach beyond files: programs, the system, the keyboard.
#include <algorithm>
#include <iterator>

#include <kvarta16/files/aIO.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

// Results of the shell's start-a-document call.
struct ShellError {
    Long result;
    StringView text;
};

constexpr ShellError shell_errors[] = {
    {0, u"Brak Pamięci do wykonania operacji."},
    {2, u"Nie znaleziono pliku."},
    {3, u"Nie znaleziono ścieżki."},
    {5, u"System operacyjny zabronił dostępu do pliku."},
    {8, u"There was not enough memory to complete the operation."},
    {11, u"Plik .exe ma zły format (nie -Win32®.exe lub błąd w .exe image)."},
    {26, u"A sharing violation occurred."},
    {27, u"The file name association is incomplete or invalid."},
    {28, u"The DDE transaction could not be completed because the request timed out."},
    {29, u"The DDE transaction failed."},
    {30,
     u"The DDE transaction could not be completed because other DDE transactions were being "
     u"processed."},
    {31, u"There is no application associated with the given file name extension."},
    {32, u"The specified dynamic-link library was not found."},
};
constexpr Long first_success = 33;

constexpr Long marker_pause = 2000;  // milliseconds

constexpr Long last_key_message = 264;  // the range begins with WM_KEYFIRST
constexpr Long escape_key = 27;

StringView text_of(Long result) {
    const auto* found = std::ranges::find(shell_errors, result, &ShellError::result);
    return found == std::end(shell_errors) ? StringView() : found->text;
}

// Runs a body for its whole length; its failure is shown.
template <class Body>
void shown(Body body) {
    try {
        body();
    } catch (const Failure& failure) {
        platform().message_boxes->MsgBox(failure.description(), msg_box::exclamation,
                                         u"Error:" + ToText(failure.number()));
    }
}

}  // namespace

void aIO::DoSendKeys(StringView AppToActivate, Integer AppActivateDelay, StringView TextToSend,
                     Integer SendKeysDelay) const {
    shown([&] {
        platform().processes->AppActivate(AppToActivate, AppActivateDelay != 0);
        platform().processes->SendKeys(TextToSend, SendKeysDelay != 0);
    });
}

Long aIO::GetWinPlatform() const {
    OSVERSIONINFO version;
    version.dwOSVersionInfoSize = version_record_size;
    return platform().system_information->GetVersionExA(version) != 0 ? version.dwPlatformId : 0;
}

Boolean aIO::SyncShell(StringView CommandLine, Long /*Timeout_NIE_UZYWANE*/,
                       Boolean /*WaitForInputIdle_NIE_UZYWANE*/, Boolean Hide) const {
    Double task = 0;
    shown([&] {
        const Integer style = Hide ? window_style::hidden : window_style::maximized_focus;
        task = platform().processes->Shell(CommandLine, style);
    });
    return task != 0;
}

void aIO::pDisplayError_Shell(Long lResult) const {
    platform().screen->PutMousePointer(default_mouse_pointer);
    if (lResult < first_success) {
        platform().message_boxes->MsgBox(text_of(lResult), msg_box::critical, u"Uwaga");
    }
}

void aIO::Spakuj_i_Skasuj(StringView /*Plik*/, Boolean /*Nie_czekaj_na_skasowanie*/) const {
    platform().message_boxes->MsgBox(u"Nie Używana opcja", msg_box::ok_only, std::nullopt);
}

Long aIO::Skasuj_po_pakowaniu(StringView Plik) const {
    const String marker = String(Plik) + u"_";
    while (!IsFile(marker)) {
        platform().sleeper->Sleep(marker_pause);
    }
    static_cast<void>(DelFile(Plik));  // whether it went is not told
    return 0;
}

Boolean aIO::Przerwij(Boolean Silent, StringView Komunikat) const {
    if (platform().messages->GetInputState() == 0) {
        return false;
    }
    MSG message;
    platform().messages->PeekMessageA(message, 0, WM_KEYFIRST, last_key_message, PM_REMOVE);
    if (message.wParam != escape_key) {  // 0 where no key was found
        return false;
    }
    if (Silent) {
        return true;
    }
    const MsgBoxResult answer = platform().message_boxes->MsgBox(
        u"Przerwać " + String(Komunikat), msg_box::yes_no, u"Naciśnięto Klawisz");
    return answer == MsgBoxResult::Yes;
}

}  // namespace kvarta16
