// A host for the menus in memory: a program without a window system that shows the bar of its one
// window on the terminal, each time the library has it drawn anew.
//
//   menu_bar [PICTURE.bmp]
//
// A terminal gets the bar in reverse, a file or a pipe plain text. What changes the bar here is a
// script; in a real program it is whoever holds the window's handle.
#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include <unistd.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/menus_in_memory.h>
#include <kvarta16/ui/amenu.h>

namespace {

using namespace kvarta16;
using posix::MenuItem;
using posix::MenusInMemory;

// How a bar looks: one line, and below it, indented, what each of its menus holds.
class BarView {
  public:
    explicit BarView(MenusInMemory& menus) : menus_(menus) {}

    void draw(Long window) const {
        const auto bar = menus_.items(menus_.GetMenu(window));
        std::cout << (is_terminal_ ? "\x1B[7m" : "") << line_of(bar)
                  << (is_terminal_ ? "\x1B[0m" : "") << '\n';
        for (const MenuItem& item : bar.value_or(std::vector<MenuItem>())) {
            if (opens_menu(item)) {
                std::cout << "  " << to_utf8(item.text) << '\n';
                draw_menu(item.id, "    ");
            }
        }
        std::cout << '\n';
    }

  private:
    static bool opens_menu(const MenuItem& item) { return (item.flags & MF_POPUP) != 0; }

    static std::string line_of(const std::optional<std::vector<MenuItem>>& bar) {
        if (!bar) {
            return " (no menu) ";
        }
        std::string line = " ";
        for (const MenuItem& item : *bar) {
            line += to_utf8(item.text) + "  ";
        }
        return line;
    }

    // "* Kalkulator" for an item with a picture, "Ostatnie >" for one that opens a menu.
    void draw_menu(Long menu, const std::string& indent) const {
        const auto items = menus_.items(menu);
        for (const MenuItem& item : items.value_or(std::vector<MenuItem>())) {
            const bool is_separator = (item.flags & MF_SEPARATOR) != 0;
            std::cout << indent << (item.unchecked != 0 ? "* " : "  ")
                      << (is_separator ? "----" : to_utf8(item.text))
                      << (opens_menu(item) ? " >" : "") << '\n';
            if (opens_menu(item)) {
                draw_menu(item.id, indent + "    ");
            }
        }
    }

    MenusInMemory& menus_;
    bool is_terminal_ = ::isatty(STDOUT_FILENO) != 0;
};

// What a program of the suite does to a form whose handle it has been given.
void change_menus(Long form, StringView picture) {
    const amenu menus;
    menus.AddNewMenu(form, u"Plik", true);
    menus.InsertNewSubMenu(form, 0, 0, u"Nowy");
    menus.InsertNewSubMenu(form, 0, 1, u"-");
    menus.InsertNewSubMenu(form, 0, 2, u"Ostatnie", true);
    menus.SetMenuBmp(form, picture, 0, Long{0});  // is not drawn until the next change
    menus.AddNewMenu(form, u"Pomoc");
    menus.InsertNewMenu(form, 1, u"Okno");
    menus.DelMenu(form);
}

}  // namespace

int main(int argc, char** argv) {
    MenusInMemory& menus = posix::menus();
    const BarView view(menus);
    const Long form = menus.make_window([&view](Long window) { view.draw(window); });
    menus.SetMenu(form, menus.CreateMenu());
    change_menus(form, argc > 1 ? from_utf8(argv[1]) : String());
    return 0;
}
