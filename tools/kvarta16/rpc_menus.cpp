#include "rpc_menus.h"

#include <kvarta16/platform/posix/menus_in_memory.h>

#include "json_output.h"
#include "refusal.h"

namespace kvarta16::tool {
namespace {

using posix::MenuItem;
using posix::MenusInMemory;

[[noreturn]] void refuse(const char* message) {
    throw Refusal(RefusalCode::BadParams, message);
}

constexpr const char* wanted =
    R"(menus are wanted, each as ["text", ["item text", ...]] or as a text)";

struct MenuWords {
    String text;
    std::vector<String> items;
};

std::vector<String> texts_of(const Json& list) {
    std::vector<String> texts;
    texts.reserve(list.size());
    for (const Json& text : list) {
        if (!is_text(text)) {
            refuse(wanted);
        }
        texts.push_back(text_of(text));
    }
    return texts;
}

MenuWords menu_words(const Json& menu) {
    if (is_text(menu)) {
        return {text_of(menu), {}};
    }
    const bool is_menu = menu.is_array() && (menu.size() == 1 || menu.size() == 2) &&
                         is_text(menu[0]) && (menu.size() == 1 || menu[1].is_array());
    if (!is_menu) {
        refuse(wanted);
    }
    return {text_of(menu[0]), menu.size() == 2 ? texts_of(menu[1]) : std::vector<String>()};
}

void append_item(MenusInMemory& menus, Long menu, StringView text) {
    constexpr Long no_command = 0;
    menus.AppendMenuA(menu, text == u"-" ? MF_SEPARATOR : MF_STRING, no_command, text);
}

// A popup may hang on several items, but on none of its own: the depth is that of the tree.
void write_items(JsonWriter& json, const MenusInMemory& menus, Long menu) {
    const auto items = menus.items(menu);
    if (!items) {
        json.null();
        return;
    }
    json.begin_array();
    for (const MenuItem& item : *items) {
        json.begin_object().key("text").text(item.text).key("flags").whole(item.flags);
        json.key("id").whole(item.id);
        json.key("bitmaps").begin_array().whole(item.unchecked).whole(item.checked).end_array();
        if ((item.flags & MF_POPUP) != 0) {
            write_items(json.key("items"), menus, item.id);
        }
        json.end_object();
    }
    json.end_array();
}

}  // namespace

Long make_window(const Json& menus) {
    std::vector<MenuWords> words;
    words.reserve(menus.size());
    for (const Json& menu : menus) {  // all of them first: a wrong one leaves no window behind
        words.push_back(menu_words(menu));
    }
    MenusInMemory& made = posix::menus();
    const Long window = made.make_window();
    const Long bar = made.CreateMenu();
    made.SetMenu(window, bar);
    for (const MenuWords& menu : words) {
        const Long popup = made.CreatePopupMenu();
        made.AppendMenuA(bar, MF_POPUP, popup, menu.text);
        for (const String& item : menu.items) {
            append_item(made, popup, item);
        }
    }
    return window;
}

std::string menus_json(Long window) {
    MenusInMemory& menus = posix::menus();
    const auto redraws = menus.redraws(window);
    if (!redraws) {
        refuse("the handle of a window is wanted");
    }
    JsonWriter json;
    json.begin_object().key("redraws").whole(*redraws);
    write_items(json.key("items"), menus, menus.GetMenu(window));
    json.end_object();
    return json.take();
}

}  // namespace kvarta16::tool
