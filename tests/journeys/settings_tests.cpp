// The settings in the real registry: kept by the real program from run to run, and read value by
// value.

#include <gmock/gmock.h>

#include <aclapi.h>

#include <cmath>
#include <string>
#include <vector>

#include "app/clsRegistry.h"
#include "journeys/QuartinoProcess.h"
#include "win32/SystemDpiForTest.h"
#include "win32/Win32Registry.h"

namespace kalvrooms::testing {
namespace {

namespace ui = kalvrooms::driver;

constexpr const wchar_t* keyPath = L"Software\\QuartinoTest";
constexpr int twipsPerPixel = 15; // at 96 dots per inch, which the tests' screen has
constexpr int designedWidth = 13200;
constexpr int designedHeight = 8100;

// --- value by value ------------------------------------------------------------------------------

struct Settings {
    bool noReport = true;
    std::int32_t left = -1, top = -2, height = -3, width = -4, colorNew = -5, colorOld = -6;
    bool operator==(const Settings&) const = default;
};

void PrintTo(const Settings& s, std::ostream* out) {
    *out << "{" << s.noReport << ", left " << s.left << ", top " << s.top << ", height " << s.height
         << ", width " << s.width << ", new " << s.colorNew << ", old " << s.colorOld << "}";
}

class StoredSettings : public ::testing::Test {
  protected:
    Settings read() {
        Settings s;
        store.GetSettings(keyPath, s.noReport, s.left, s.top, s.height, s.width, s.colorNew,
                          s.colorOld);
        return s;
    }
    void write(const Settings& s) {
        store.SetSettings(keyPath, s.noReport, s.left, s.top, s.height, s.width, s.colorNew,
                          s.colorOld);
    }

    Win32Registry registry;
    clsRegistry store{registry};
    SettingsKey whole{keyPath};
    SettingsKey key{std::wstring(keyPath) + L"\\QTO"};
    const Settings some{true, 100, -200, 3000, 4000, 0xFF, 0x123456};
    // What is left of arguments when the settings are missing.
    const Settings missing{false, 0, 0, 0, 0, -5, -6};
};

TEST_F(StoredSettings, AreSevenDoubleWordsBelowTheKeyOfTheHost) {
    write(some);
    std::map<std::wstring, std::int32_t> numbers;
    for (const SettingsKey::Value& value : key.values())
        numbers[value.name] = value.number();
    EXPECT_EQ(numbers, (std::map<std::wstring, std::int32_t>{{L"Report", 2},
                                                             {L"Height", 3000},
                                                             {L"Width", 4000},
                                                             {L"Top", -200},
                                                             {L"Left", 100},
                                                             {L"ColorOld", 0x123456},
                                                             {L"ColorNew", 0xFF}}));
    EXPECT_EQ(read(), some);
    // Each value stands alone: nothing else lies in the host's key.
    EXPECT_TRUE(whole.values().empty());
    HKEY opened = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, key.path().c_str(), 0, KEY_READ, &opened),
              ERROR_SUCCESS);
    wchar_t keyClass[8] = L"";
    DWORD length = 8;
    RegQueryInfoKeyW(opened, keyClass, &length, nullptr, nullptr, nullptr, nullptr, nullptr,
                     nullptr, nullptr, nullptr, nullptr);
    RegCloseKey(opened);
    EXPECT_STREQ(keyClass, L"0");
}

TEST_F(StoredSettings, WithAnEmptyPathLieDirectlyBelowTheHive) {
    // The path as it is named is one that the system refuses.
    HKEY opened = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"\\QTO", 0, KEY_READ, &opened), ERROR_BAD_PATHNAME);
    const SettingsKey direct(L"QTO");
    store.SetSettings(L"", true, 1, 2, 3, 4, 5, 6);
    EXPECT_EQ(direct.values().size(), 7u);
    Settings s;
    store.GetSettings(L"", s.noReport, s.left, s.top, s.height, s.width, s.colorNew, s.colorOld);
    EXPECT_EQ(s, (Settings{true, 1, 2, 3, 4, 5, 6}));
}

TEST_F(StoredSettings, PathsThatNameNoKeyWriteAndReadNothing) {
    Settings s;
    for (const std::wstring& path : {std::wstring(L"Software\\QuartinoTest\0x", 23),
                                     std::wstring(1, L'\0'), std::wstring(300, L'x')}) {
        store.SetSettings(path, true, 1, 2, 3, 4, 5, 6);
        s = Settings();
        store.GetSettings(path, s.noReport, s.left, s.top, s.height, s.width, s.colorNew,
                          s.colorOld);
        EXPECT_EQ(s, missing);
    }
    EXPECT_FALSE(whole.exists());
}

// Takes the given rights on a key away from everybody for as long as it lives.
class Denied {
  public:
    explicit Denied(const std::wstring& path, DWORD rights) {
        EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0,
                                READ_CONTROL | WRITE_DAC | KEY_READ, &key_),
                  ERROR_SUCCESS);
        SID_IDENTIFIER_AUTHORITY world = SECURITY_WORLD_SID_AUTHORITY;
        PSID everyone = nullptr;
        AllocateAndInitializeSid(&world, 1, SECURITY_WORLD_RID, 0, 0, 0, 0, 0, 0, 0, &everyone);
        std::string bytes(256, '\0');
        auto* list = reinterpret_cast<ACL*>(bytes.data());
        InitializeAcl(list, static_cast<DWORD>(bytes.size()), ACL_REVISION);
        AddAccessDeniedAce(list, ACL_REVISION, rights, everyone);
        AddAccessAllowedAce(list, ACL_REVISION, KEY_ALL_ACCESS, everyone);
        set(list);
        FreeSid(everyone);
    }
    ~Denied() {
        set(nullptr);
        RegCloseKey(key_);
    }
    Denied(const Denied&) = delete;
    Denied& operator=(const Denied&) = delete;

  private:
    void set(ACL* list) {
        SECURITY_DESCRIPTOR descriptor;
        InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
        SetSecurityDescriptorDacl(&descriptor, TRUE, list, FALSE);
        EXPECT_EQ(RegSetKeySecurity(key_, DACL_SECURITY_INFORMATION, &descriptor), ERROR_SUCCESS);
    }
    HKEY key_ = nullptr;
};

TEST_F(StoredSettings, WithoutPermissionAreLeftAsTheyAreAndReadAsMissing) {
    write(some);
    {
        const Denied denied(key.path(), KEY_SET_VALUE | KEY_QUERY_VALUE);
        HKEY opened = nullptr;
        ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, key.path().c_str(), 0, KEY_READ, &opened),
                  ERROR_ACCESS_DENIED);
        write(Settings{false, 9, 9, 9, 9, 9, 9});
        EXPECT_EQ(read(), missing);
    }
    EXPECT_EQ(read(), some);
}

// --- from run to run -----------------------------------------------------------------------------

class ProgramSettings : public ::testing::Test {
  protected:
    ProgramSettings() {
        practiceHost();
        folder.writeHandOver(keyPath);
    }
    void store(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
               std::int32_t report = 1, std::int32_t colorOld = 0, std::int32_t colorNew = 255) {
        key.set(L"Report", report);
        key.set(L"Height", height);
        key.set(L"Width", width);
        key.set(L"Top", top);
        key.set(L"Left", left);
        key.set(L"ColorOld", colorOld);
        key.set(L"ColorNew", colorNew);
    }
    // Waits until the window manager is done as well.
    static void waitForRectangle(HWND window, int left, int top, int width, int height) {
        ui::waitFor("the window's place", [&] {
            const RECT r = ui::placeOf(window);
            return r.left == left && r.top == top && r.right - r.left == width &&
                   r.bottom - r.top == height;
        });
    }

    ProgramFolder folder;
    SettingsKey whole{keyPath};
    SettingsKey key{std::wstring(keyPath) + L"\\QTO"};
};

TEST_F(ProgramSettings, FirstRunHasTheDesignedSizeAndLeavesTheDefaults) {
    {
        RunningProgram program(folder);
        const RECT r = ui::placeOf(program.mainWindow());
        EXPECT_EQ(r.right - r.left, designedWidth / twipsPerPixel);
        EXPECT_EQ(r.bottom - r.top, designedHeight / twipsPerPixel);
        EXPECT_FALSE(key.exists());
        EXPECT_EQ(program.close(), 0u);
    }
    EXPECT_EQ(key.values().size(), 7u);
    EXPECT_EQ(key[L"Report"], 1);
    EXPECT_EQ(key[L"Width"], designedWidth);
    EXPECT_EQ(key[L"Height"], designedHeight);
    EXPECT_EQ(key[L"ColorOld"], 0);
    EXPECT_EQ(key[L"ColorNew"], 255);
}

TEST_F(ProgramSettings, TheWindowComesBackAtEveryDpi) {
    // The last one has no whole number of twips in a pixel.
    for (const int dpi : {96, 144, 192, 168}) {
        const SystemDpiForTest system(static_cast<DWORD>(dpi));
        const auto pixels = [dpi](int twips) {
            return static_cast<int>(std::lround(twips * dpi / 1440.0));
        };
        const auto twips = [dpi](int count) {
            return static_cast<int>(std::nearbyint(count * 1440.0 / dpi));
        };
        store(1500, 1200, 9000, 6000, 2, 0x00FF00, 0x336699);
        for (int run = 0; run < 2; ++run) {
            RunningProgram program(folder);
            const HWND window = program.mainWindow();
            if (run == 0) {
                waitForRectangle(window, pixels(1500), pixels(1200), pixels(9000), pixels(6000));
                SetWindowPos(window, nullptr, 211, 153, 901, 701, SWP_NOZORDER | SWP_NOACTIVATE);
            }
            waitForRectangle(window, 211, 153, 901, 701);
            EXPECT_EQ(program.close(), 0u);
            EXPECT_EQ(key[L"Left"], twips(211)) << dpi;
            EXPECT_EQ(key[L"Top"], twips(153)) << dpi;
            EXPECT_EQ(key[L"Width"], twips(901)) << dpi;
            EXPECT_EQ(key[L"Height"], twips(701)) << dpi;
            EXPECT_EQ(key[L"Report"], 2);
            EXPECT_EQ(key[L"ColorOld"], 0x00FF00);
            EXPECT_EQ(key[L"ColorNew"], 0x336699);
        }
    }
}

TEST_F(ProgramSettings, OnAMonitorThatIsGoneTheWindowTakesItsPlaceAndTheSystemBringsItBack) {
    store(90000, 60000, 9000, 6000);
    RunningProgram program(folder);
    const HWND window = program.mainWindow();
    waitForRectangle(window, 6000, 4000, 600, 400);
    // Entry of the taskbar and system menu are there, whose commands reach it without a mouse.
    const auto style = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE));
    EXPECT_EQ(style & (WS_SYSMENU | WS_MAXIMIZEBOX | WS_CAPTION),
              DWORD{WS_SYSMENU | WS_MAXIMIZEBOX | WS_CAPTION});
    EXPECT_EQ(GetWindow(window, GW_OWNER), nullptr);
    PostMessageW(window, WM_SYSCOMMAND, SC_MAXIMIZE, 0);
    ui::waitFor("the window on the screen", [&] {
        const RECT r = ui::placeOf(window);
        const POINT middle{(r.left + r.right) / 2, (r.top + r.bottom) / 2};
        return IsZoomed(window) && MonitorFromPoint(middle, MONITOR_DEFAULTTONULL) != nullptr;
    });
    PostMessageW(window, WM_SYSCOMMAND, SC_RESTORE, 0);
    ui::waitFor("the window restored", [&] { return !IsZoomed(window); });
    EXPECT_EQ(program.close(), 0u);
}

TEST_F(ProgramSettings, AWindowThatIsClosedMinimisedComesBackWhereItWas) {
    store(1515, 1230, 9990, 6495);
    for (int run = 0; run < 2; ++run) {
        RunningProgram program(folder);
        const HWND window = program.mainWindow();
        waitForRectangle(window, 101, 82, 666, 433);
        PostMessageW(window, WM_SYSCOMMAND, SC_MINIMIZE, 0);
        ui::waitFor("the minimised window", [&] { return IsIconic(window); });
        EXPECT_EQ(program.close(), 0u);
        EXPECT_EQ(key[L"Left"], 1515);
        EXPECT_EQ(key[L"Top"], 1230);
        EXPECT_EQ(key[L"Width"], 9990);
        EXPECT_EQ(key[L"Height"], 6495);
    }
}

TEST_F(ProgramSettings, AWindowThatIsClosedMaximisedComesBackWithThatRectangle) {
    store(1515, 1230, 9990, 6495);
    RECT maximised{};
    {
        RunningProgram program(folder);
        const HWND window = program.mainWindow();
        waitForRectangle(window, 101, 82, 666, 433);
        PostMessageW(window, WM_SYSCOMMAND, SC_MAXIMIZE, 0);
        ui::waitFor("the maximised window", [&] {
            maximised = ui::placeOf(window);
            return IsZoomed(window) && maximised.right - maximised.left > 666;
        });
        EXPECT_EQ(program.close(), 0u);
    }
    for (int run = 0; run < 2; ++run) {
        RunningProgram program(folder);
        const HWND window = program.mainWindow();
        waitForRectangle(window, maximised.left, maximised.top, maximised.right - maximised.left,
                         maximised.bottom - maximised.top);
        EXPECT_FALSE(IsZoomed(window));
        EXPECT_EQ(program.close(), 0u);
    }
}

} // namespace
} // namespace kalvrooms::testing
