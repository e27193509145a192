// Pictures from files: which headers are those of a bitmap, which are not, and what is asked of the
// call.
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/menus_in_memory.h>
#include <kvarta16/ui/amenu.h>

#include "support/server_process.h"

namespace kvarta16::ui_tests {
namespace {

using posix::MenuBitmap;
using posix::MenusInMemory;

// A bitmap's file from its fields, each of them free to be wrong.
struct BitmapFile {
    std::string signature = "BM";
    std::uint32_t own_length = 0;
    std::uint32_t header_size = 40;
    std::int32_t width = 16;
    std::int32_t height = 16;
    std::uint16_t planes = 1;
    std::uint16_t bits = 24;
    std::uint32_t compression = 0;
    std::uint32_t pixel_bytes = 0;
    std::uint32_t colours = 0;
    std::uint32_t pixels_at = 54;
    std::size_t size = 54 + 16 * 48;  // of the whole file

    [[nodiscard]] std::string bytes() const {
        std::string text = signature;
        put(text, own_length, 4);
        put(text, 0, 4);
        put(text, pixels_at, 4);
        put(text, header_size, 4);
        if (header_size == 12) {
            put(text, static_cast<std::uint32_t>(width), 2);
            put(text, static_cast<std::uint32_t>(height), 2);
            put(text, planes, 2);
            put(text, bits, 2);
        } else {
            put(text, static_cast<std::uint32_t>(width), 4);
            put(text, static_cast<std::uint32_t>(height), 4);
            put(text, planes, 2);
            put(text, bits, 2);
            put(text, compression, 4);
            put(text, pixel_bytes, 4);
            put(text, 0, 8);
            put(text, colours, 4);
            put(text, 0, 4);
        }
        text.resize(size, '\x55');
        return text;
    }

  private:
    static void put(std::string& text, std::uint64_t value, int bytes) {
        for (int i = 0; i < bytes; ++i) {
            text += static_cast<char>(value >> (8 * i) & 0xFF);
        }
    }
};

BitmapFile made(const std::function<void(BitmapFile&)>& change) {
    BitmapFile file;
    change(file);
    return file;
}

// With the colours and pixels that its kind needs, and no byte more.
BitmapFile exact(std::uint32_t header_size, std::uint16_t bits, std::uint32_t compression = 0,
                 std::uint32_t colours = 0) {
    BitmapFile file;
    file.header_size = header_size;
    file.bits = bits;
    file.compression = compression;
    file.colours = colours;
    const std::uint32_t table = bits > 8 ? 0 : colours != 0 ? colours : 1U << bits;
    file.pixels_at = 14 + header_size + table * (header_size == 12 ? 3 : 4) +
                     (compression == 3 && header_size == 40 ? 12 : 0);
    file.pixel_bytes = compression == 1 || compression == 2 ? 10 : 0;
    file.size = file.pixels_at + (file.pixel_bytes != 0 ? 10U : 16U * ((16U * bits + 31) / 32 * 4));
    return file;
}

class Pictures : public testing::Test {
  protected:
    Long loaded(const std::string& bytes, Long flags = 4144) {
        std::filesystem::remove(path);  // a new file is not written through to the disk
        std::ofstream(path, std::ios::binary) << bytes;
        return menus.LoadImageA(0, windows_path, IMAGE_BITMAP, 0, 0, flags);
    }

    testing_support::ServerFolder folder;
    std::string path = folder / "Ikona żółta.bmp";
    String windows_path = u"Z:" + from_utf8(path);
    MenusInMemory menus;
};

TEST_F(Pictures, TheirHeadersTellTheirSize) {
    struct Case {
        BitmapFile file;
        Long width;
        Long height;
        Integer bits;
    };
    const Case cases[] = {
        {BitmapFile(), 16, 16, 24},
        {exact(40, 1), 16, 16, 1},
        {exact(40, 4), 16, 16, 4},
        {exact(40, 8), 16, 16, 8},
        {exact(40, 8, 0, 3), 16, 16, 8},
        {exact(40, 16), 16, 16, 16},
        {exact(40, 32), 16, 16, 32},
        {exact(40, 8, 1), 16, 16, 8},
        {exact(40, 4, 2), 16, 16, 4},
        {exact(40, 16, 3), 16, 16, 16},
        {exact(40, 32, 3), 16, 16, 32},
        {exact(12, 1), 16, 16, 1},
        {exact(12, 4), 16, 16, 4},
        {exact(12, 8), 16, 16, 8},
        {exact(12, 24), 16, 16, 24},
        {exact(52, 32, 3), 16, 16, 32},
        {exact(56, 16, 3), 16, 16, 16},
        {exact(108, 24), 16, 16, 24},
        {exact(124, 32, 3), 16, 16, 32},
        {made([](BitmapFile& f) { f.height = -16; }), 16, 16, 24},
        {made([](BitmapFile& f) { f.width = 1, f.height = 1, f.size = 58; }), 1, 1, 24},
        {made([](BitmapFile& f) { f.own_length = 7; }), 16, 16, 24},
        {made([](BitmapFile& f) { f.size += 1000; }), 16, 16, 24},
        {made([](BitmapFile& f) { f.pixels_at += 2, f.size += 2; }), 16, 16, 24},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(&test - cases);
        const Long handle = loaded(test.file.bytes());
        ASSERT_NE(handle, 0);
        const MenuBitmap bitmap = *menus.bitmap(handle);
        EXPECT_EQ(bitmap.width, test.width);
        EXPECT_EQ(bitmap.height, test.height);
        EXPECT_EQ(bitmap.bits_per_pixel, test.bits);
        EXPECT_EQ(bitmap.file, windows_path);
    }
}

TEST_F(Pictures, MalformedFilesAreRefused) {
    struct Case {
        const char* what;
        BitmapFile file;
    };
    constexpr std::int32_t lowest = -2147483647 - 1;
    const Case cases[] = {
        {"another signature", made([](BitmapFile& f) { f.signature = "MB"; })},
        {"an array of bitmaps", made([](BitmapFile& f) { f.signature = "BA"; })},
        {"lower case", made([](BitmapFile& f) { f.signature = "bm"; })},
        {"no header", made([](BitmapFile& f) { f.header_size = 0; })},
        {"a header of 13", made([](BitmapFile& f) { f.header_size = 13; })},
        {"a header of 64", made([](BitmapFile& f) { f.header_size = 64, f.pixels_at = 78; })},
        {"a huge header", made([](BitmapFile& f) { f.header_size = 0xFFFFFFFF; })},
        {"no width", made([](BitmapFile& f) { f.width = 0; })},
        {"a width below 0", made([](BitmapFile& f) { f.width = -16; })},
        {"no height", made([](BitmapFile& f) { f.height = 0; })},
        {"the lowest height", made([](BitmapFile& f) { f.height = lowest; })},
        {"the widest and highest",
         made([](BitmapFile& f) { f.width = 2147483647, f.height = 2147483647, f.bits = 32; })},
        {"no planes", made([](BitmapFile& f) { f.planes = 0; })},
        {"two planes", made([](BitmapFile& f) { f.planes = 2; })},
        {"no bits", made([](BitmapFile& f) { f.bits = 0; })},
        {"2 bits", made([](BitmapFile& f) { f.bits = 2; })},
        {"64 bits", made([](BitmapFile& f) { f.bits = 64; })},
        {"16 bits in the old header", exact(12, 16)},
        {"32 bits in the old header", exact(12, 32)},
        {"runs of 8 in 24 bits", made([](BitmapFile& f) { f.compression = 1; })},
        {"runs of 8 in 4 bits", exact(40, 4, 1)},
        {"runs of 4 in 8 bits", exact(40, 8, 2)},
        {"masks in 24 bits", made([](BitmapFile& f) { f.compression = 3; })},
        {"another format inside", made([](BitmapFile& f) { f.compression = 4; })},
        {"yet another", made([](BitmapFile& f) { f.compression = 5; })},
        {"a huge compression", made([](BitmapFile& f) { f.compression = 0xFFFFFFFF; })},
        {"runs from the top",
         [] {
             BitmapFile file = exact(40, 8, 1);
             file.height = -16;
             return file;
         }()},
        {"pixels before the header's end", made([](BitmapFile& f) { f.pixels_at = 53; })},
        {"pixels behind the file", made([](BitmapFile& f) { f.pixels_at = 0x7FFFFFFF; })},
        {"the last byte missing", made([](BitmapFile& f) { --f.size; })},
        {"nothing but the header", made([](BitmapFile& f) { f.size = 54; })},
        {"half a header", made([](BitmapFile& f) { f.size = 30; })},
        {"the signature alone", made([](BitmapFile& f) { f.size = 2; })},
        {"nothing", made([](BitmapFile& f) { f.size = 0; })},
        {"no room for the colours",
         [] {
             BitmapFile file = exact(40, 8);
             file.size = 14 + 40 + 255 * 4;
             file.pixels_at = 14 + 40;
             return file;
         }()},
        {"runs longer than the file",
         [] {
             BitmapFile file = exact(40, 8, 1);
             file.pixel_bytes = 11;
             return file;
         }()},
        {"runs without a byte",
         [] {
             BitmapFile file = exact(40, 8, 1);
             file.pixel_bytes = 0;
             file.size = file.pixels_at;
             return file;
         }()},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(loaded(test.file.bytes()), 0) << test.what;
    }
    EXPECT_EQ(loaded("\x89PNG\r\n\x1A\n" + std::string(100, '\0')), 0);
}

TEST_F(Pictures, EveryShorterFileIsRefused) {
    for (const BitmapFile& file : {exact(40, 4), exact(12, 1), exact(124, 32, 3)}) {
        const std::string bytes = file.bytes();
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            ASSERT_EQ(loaded(bytes.substr(0, size)), 0) << size;
        }
        EXPECT_NE(loaded(bytes), 0);
    }
}

TEST_F(Pictures, TheCallAsksForABitmapFromAFile) {
    const std::string bytes = BitmapFile().bytes();
    ASSERT_NE(loaded(bytes), 0);
    EXPECT_NE(loaded(bytes, LR_LOADFROMFILE), 0);
    EXPECT_EQ(loaded(bytes, LR_LOADTRANSPARENT + LR_LOADMAP3DCOLORS), 0);
    EXPECT_EQ(loaded(bytes, 0), 0);
    constexpr Long icon = 1;
    EXPECT_EQ(menus.LoadImageA(0, windows_path, icon, 0, 0, 4144), 0);
    EXPECT_EQ(menus.LoadImageA(0, windows_path, IMAGE_BITMAP, -1, 0, 4144), 0);
    EXPECT_EQ(menus.LoadImageA(0, windows_path, IMAGE_BITMAP, 0, -1, 4144), 0);
    const Long sized = menus.LoadImageA(0, windows_path, IMAGE_BITMAP, 8, 4, 4144);
    EXPECT_EQ(menus.bitmap(sized)->width, 8);
    EXPECT_EQ(menus.bitmap(sized)->height, 4);
}

TEST_F(Pictures, FilesAreFoundAsWindowsFindsThem) {
    ASSERT_NE(loaded(BitmapFile().bytes()), 0);
    const auto load = [&](StringView name) {
        return menus.LoadImageA(0, name, IMAGE_BITMAP, 0, 0, 4144);
    };
    const String folder_path = u"Z:" + from_utf8(folder / "");
    EXPECT_NE(load(folder_path + u"IKONA ŻÓŁTA.BMP"), 0);
    EXPECT_NE(load(windows_path + String(1, u'\0') + u"x"), 0);
    EXPECT_EQ(load(folder_path + u"inna.bmp"), 0);
    EXPECT_EQ(load(folder_path), 0);
    EXPECT_EQ(load(u""), 0);
    EXPECT_EQ(load(u"Q:\\a.bmp"), 0);
    EXPECT_EQ(load(String(1, u'\xD800')), 0);
    // Nothing waits for a pipe.
    ASSERT_EQ(::mkfifo((folder / "rura").c_str(), 0600), 0);
    EXPECT_EQ(load(folder_path + u"rura"), 0);
}

TEST_F(Pictures, AMenuShowsThem) {
    std::ofstream(path, std::ios::binary) << exact(40, 4).bytes();
    MenusInMemory& shared = posix::menus();
    const Long form = shared.make_window();
    shared.SetMenu(form, shared.CreateMenu());
    const amenu calls;
    calls.AddNewMenu(form, u"Plik", true);
    calls.InsertNewSubMenu(form, 0, 0, u"Nowy");
    EXPECT_EQ(calls.SetMenuBmp(form, windows_path, 0, Long{0}).raw, -1);
    const Long file = shared.GetSubMenu(shared.GetMenu(form), 0);
    const Long bitmap = shared.items(file)->at(0).unchecked;
    EXPECT_NE(bitmap, 0);
    EXPECT_EQ(shared.items(file)->at(0).checked, bitmap);
    EXPECT_EQ(shared.bitmap(bitmap)->bits_per_pixel, 4);
    EXPECT_EQ(calls.SetMenuBmp(form, windows_path + u"x", 0, Long{0}).raw, -1);
    EXPECT_EQ(shared.items(file)->at(0).unchecked, 0);
    EXPECT_TRUE(shared.close_window(form));
}

TEST_F(Pictures, RunOutAsOnThePlatform) {
    ASSERT_EQ(loaded(""), 0);
    int count = 0;
    for (Long handle = loaded(BitmapFile().bytes()); handle != 0 && count < 20000;
         handle = menus.LoadImageA(0, windows_path, IMAGE_BITMAP, 0, 0, 4144)) {
        ++count;
    }
    EXPECT_EQ(count, 10000);
}

}  // namespace
}  // namespace kvarta16::ui_tests
