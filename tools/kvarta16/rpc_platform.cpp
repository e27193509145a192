#include "rpc_platform.h"

#include <algorithm>

namespace kvarta16::tool {

MsgBoxResult RecordingBoxes::MsgBox(StringView text, Long style, std::optional<StringView> title) {
    MsgBoxResult answer = unattended_answer(style);
    if (!answers.empty()) {
        answer = answers.front();
        answers.pop_front();
    }
    shown.push_back({String(text), style, std::optional<String>(title), answer});
    return answer;
}

void RecordingSleeper::Sleep(Long milliseconds) {
    if (records) {
        recorded.push_back(milliseconds);
    } else {
        ForwardingSleeper::Sleep(milliseconds);
    }
}

// ---- Version ----------------------------------------------------------------------------------

Long SettableVersion::GetVersionExA(OSVERSIONINFO& record) {
    if (!is_set) {
        return ForwardingSystemInformation::GetVersionExA(record);
    }
    if (!version) {
        return 0;
    }
    record.dwPlatformId = version->platform;
    record.dwMajorVersion = version->major;
    record.dwMinorVersion = version->minor;
    return 1;
}

// ---- Messages ---------------------------------------------------------------------------------

Long QueuedMessages::PeekMessageA(MSG& message, Long, Long first, Long last, Long remove) {
    const auto found = std::ranges::find_if(
        queue, [&](const MSG& m) { return m.message >= first && m.message <= last; });
    if (found == queue.end()) {
        return 0;
    }
    message = *found;
    if ((remove & PM_REMOVE) != 0) {
        queue.erase(found);
    }
    return 1;
}

void QueuedMessages::add_key(Long code) {
    MSG message;
    message.message = WM_KEYFIRST;
    message.wParam = code;
    queue.push_back(message);
}

void QueuedMessages::add_mouse_move() {
    constexpr Long WM_MOUSEMOVE = 512;
    MSG message;
    message.message = WM_MOUSEMOVE;
    queue.push_back(message);
}

// ---- Folder dialogs ---------------------------------------------------------------------------

Long RecordingDialogs::SHBrowseForFolder(const BROWSEINFO& info) {
    std::optional<String> answer;
    if (!answers.empty()) {
        answer = answers.front();
        answers.pop_front();
    }
    shown.push_back({info.hwndOwner, info.lpszTitle, info.ulFlags, u"", answer});
    // Nobody moves about in this dialog: the callback hears that it is there, and of no selection.
    if (info.lpfn != nullptr) {
        info.lpfn(static_cast<Long>(shown.size()), browse_message::initialized, 0, info.lParam);
    }
    if (!answer) {
        return 0;
    }
    item_lists_.push_back(*answer);
    return static_cast<Long>(item_lists_.size());
}

Long RecordingDialogs::SHGetPathFromIDList(Long item_list, String& buffer) {
    if (item_list < 1 || static_cast<std::size_t>(item_list) > item_lists_.size()) {
        return 0;
    }
    const String& path = item_lists_[static_cast<std::size_t>(item_list) - 1];
    if (path.empty() || path.size() >= buffer.size()) {
        return 0;
    }
    buffer.replace(0, path.size() + 1, path + u'\0');
    return 1;
}

Long RecordingDialogs::SendMessageA(Long, Long message, Long, StringView text) {
    if (message == browse_message::set_selection && !shown.empty()) {
        shown.back().selection = String(text);
    }
    return 0;
}

// ---- The set ----------------------------------------------------------------------------------

RpcPlatform::RpcPlatform()
    : clock(*platform().clock),
      sleeper(*platform().sleeper),
      version(*platform().system_information),
      messages(*platform().messages),
      plan(std::make_shared<FaultPlan>()),
      faulting_boxes_(faulting(boxes, plan)),
      faulting_clock_(faulting(clock, plan)),
      faulting_sleeper_(faulting(sleeper, plan)),
      faulting_files_(faulting(*platform().files, plan)),
      faulting_engine_(faulting(*platform().db_engine, plan)),
      faulting_find_files_(faulting(*platform().find_files, plan)),
      faulting_file_table_(faulting(*platform().file_table, plan)),
      faulting_processes_(faulting(*platform().processes, plan)),
      faulting_messages_(faulting(messages, plan)),
      faulting_version_(faulting(version, plan)),
      faulting_screen_(faulting(*platform().screen, plan)),
      faulting_dialogs_(faulting(dialogs, plan)),
      faulting_internet_(faulting(*platform().internet, plan)),
      faulting_registry_(faulting(*platform().registry, plan)),
      faulting_menus_(faulting(*platform().menus, plan)),
      faulting_spooler_(faulting(*platform().spooler, plan)),
      operations_(platform()),
      scope_(operations_) {
    operations_.message_boxes = faulting_boxes_.get();
    operations_.clock = faulting_clock_.get();
    operations_.sleeper = faulting_sleeper_.get();
    operations_.files = faulting_files_.get();
    operations_.db_engine = faulting_engine_.get();
    operations_.find_files = faulting_find_files_.get();
    operations_.file_table = faulting_file_table_.get();
    operations_.processes = faulting_processes_.get();
    operations_.messages = faulting_messages_.get();
    operations_.system_information = faulting_version_.get();
    operations_.screen = faulting_screen_.get();
    operations_.folder_dialogs = faulting_dialogs_.get();
    operations_.internet = faulting_internet_.get();
    operations_.registry = faulting_registry_.get();
    operations_.menus = faulting_menus_.get();
    operations_.spooler = faulting_spooler_.get();
}

void RpcPlatform::begin_call() {
    boxes.shown.clear();
    sleeper.recorded.clear();
    dialogs.shown.clear();
    events.raised.clear();
}

}  // namespace kvarta16::tool
