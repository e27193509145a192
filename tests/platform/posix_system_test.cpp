// What the system tells of itself.
#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <platform/posix_fixture.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/posix_platform.h>
#include <kvarta16/platform/system_information.h>

namespace kvarta16 {
namespace {

namespace fs = std::filesystem;
using testing_support::Environment;
using testing_support::touch;

class PosixSystem : public testing_support::PosixDrive {
  protected:
    SystemInformation& system = *posix_platform().system_information;
};

TEST_F(PosixSystem, ThereIsNoVersionRecord) {
    OSVERSIONINFO version;
    version.dwOSVersionInfoSize = 148;
    version.dwMajorVersion = 7;
    const OSVERSIONINFO before = version;
    EXPECT_EQ(system.GetVersionExA(version), 0);
    EXPECT_EQ(version, before);
}

TEST_F(PosixSystem, WindowsDirectoryAsItIsSpelled) {
    for (const char* const name : {"WINDOWS", "windows", "Windows"}) {
        fs::create_directory(c + "/" + name);
        String buffer(255, u' ');
        EXPECT_EQ(system.GetWindowsDirectoryA(buffer, 255), 10);
        EXPECT_EQ(to_utf8(buffer.substr(0, buffer.find(u'\0'))), std::string("C:\\") + name);
        EXPECT_EQ(buffer.size(), 255U);
        EXPECT_EQ(buffer.substr(11), String(244, u' '));
        fs::remove(c + "/" + name);
    }
}

TEST_F(PosixSystem, RoomForTheWindowsDirectory) {
    fs::create_directory(c + "/Windows");
    String buffer(20, u'-');
    EXPECT_EQ(system.GetWindowsDirectoryA(buffer, 10), 11);
    EXPECT_EQ(system.GetWindowsDirectoryA(buffer, 0), 11);
    EXPECT_EQ(buffer, String(20, u'-'));
    EXPECT_EQ(system.GetWindowsDirectoryA(buffer, 11), 10);
    EXPECT_EQ(buffer, String(u"C:\\Windows\0---------", 20));
}

TEST_F(PosixSystem, NoWindowsDirectory) {
    const String before(20, u'-');
    String buffer = before;
    EXPECT_EQ(system.GetWindowsDirectoryA(buffer, 20), 0);
    touch(c + "/Windows");
    EXPECT_EQ(system.GetWindowsDirectoryA(buffer, 20), 0);  // a file
    const Environment nowhere("KVARTA16_DRIVES", (folder / "nowhere").c_str());
    EXPECT_EQ(system.GetWindowsDirectoryA(buffer, 20), 0);
    EXPECT_EQ(buffer, before);
}

}  // namespace
}  // namespace kvarta16
