// Start-up of the real program: hand-over file, probe of the host, help.

#include <gmock/gmock.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "journeys/QuartinoProcess.h"
#include "practice/host/Commands.h"
#include "win32/ControlIds.h"

namespace kalvrooms::testing {
namespace {

namespace ui = kalvrooms::driver;
using ::testing::IsEmpty;

using HelpCall = ProgramFolder::HelpCall;

constexpr int helpContextCommand = 15;
constexpr const wchar_t* keyPath = L"Software\\QuartinoTest";
const std::wstring closeKvdFiles = L" KVD-Dateien können mit dem Quartino nicht bearbeitet werden. "
                                   L"Bitte schließen Sie alle KVD-Dateien.";

// Stands in for the help control of the system, in the system's folder.
class HelpControlOfTheSystem {
  public:
    HelpControlOfTheSystem() {
        // A run that was broken off may have left the original under its second name.
        if (!std::filesystem::exists(kept_))
            std::filesystem::rename(control_, kept_);
        std::filesystem::copy_file(ui::binFolder() / L"test-libraries" / L"hhctrl.ocx", control_,
                                   std::filesystem::copy_options::overwrite_existing);
        // Wine prefers its own to any other.
        for (const wchar_t* name : {L"hhctrl.ocx", L"*hhctrl.ocx"})
            loading_.set(name, REG_SZ, std::string("n\0a\0t\0i\0v\0e\0\0\0", 14));
    }
    ~HelpControlOfTheSystem() {
        std::error_code ignored;
        std::filesystem::remove(folder() / L"code-ran", ignored);
        std::filesystem::rename(kept_, control_, ignored);
    }
    HelpControlOfTheSystem(const HelpControlOfTheSystem&) = delete;
    HelpControlOfTheSystem& operator=(const HelpControlOfTheSystem&) = delete;

  private:
    static std::filesystem::path folder() {
        wchar_t path[MAX_PATH] = L"";
        GetSystemDirectoryW(path, MAX_PATH);
        return path;
    }
    std::filesystem::path control_ = folder() / L"hhctrl.ocx";
    std::filesystem::path kept_ = folder() / L"hhctrl.ocx.kept";
    SettingsKey loading_{L"Software\\Wine\\AppDefaults\\Quartino.exe\\DllOverrides"};
};

class StartUp : public ::testing::Test {
  protected:
    void pressF1(HWND window) {
        ui::waitFor("the focus", [&] { return GetForegroundWindow() == window; });
        ui::typeKey(VK_F1);
    }
    std::vector<HelpCall> waitForHelpCalls(std::size_t count) {
        ui::waitFor("a call for help", [&] { return folder.helpCalls().size() >= count; });
        return folder.helpCalls();
    }

    PracticeHostProcess& host = practiceHost();
    ProgramFolder folder;
    SettingsKey directlyBelowTheHive{L"QTO"};
    SettingsKey test{keyPath};
    SettingsKey below{std::wstring(keyPath) + L"\\QTO"};
};

// --- the hand-over file --------------------------------------------------------------------------

TEST_F(StartUp, AppliesLanguageSettingsKeyAndHelpFileAndF1OpensTheRightPages) {
    writeBytes(folder.path() / L"Übersicht.chm", "");
    const std::wstring helpFile = (folder.path() / L"Übersicht").wstring();
    folder.writeHandOver(keyPath, L"eng", helpFile + L".kalvhelp");
    const std::string before = readBytes(folder.handOver());
    const HelpControlOfTheSystem recorder;
    const std::string help = toAnsi(helpFile + L".chm");

    RunningProgram program(folder);
    const HWND main = program.mainWindow();
    EXPECT_EQ(ui::textOf(main), L" Quartino - Schule");
    pressF1(main);
    EXPECT_EQ(waitForHelpCalls(1).back(),
              (HelpCall{help, helpContextCommand, 20, " Quartino - Schule"}));

    ui::choose(main, ui::MenuAddRoom);
    const HWND room = program.dialog(L" Add room ");
    pressF1(room);
    EXPECT_EQ(waitForHelpCalls(2).back(), (HelpCall{help, helpContextCommand, 7, " Add room "}));
    ui::press(room, ID_ROOM_CMDGEOMETRY);
    const HWND geometry = program.dialog(L" Geometry");
    pressF1(geometry);
    EXPECT_EQ(waitForHelpCalls(3).back(), (HelpCall{help, helpContextCommand, 7, " Geometry"}));
    PostMessageW(geometry, WM_CLOSE, 0, 0);
    ui::waitUntilGone(geometry);
    PostMessageW(room, WM_CLOSE, 0, 0);
    ui::waitUntilGone(room);

    ui::choose(main, ui::MenuPlace);
    const HWND options = program.dialog(L" Options ");
    pressF1(options);
    EXPECT_EQ(waitForHelpCalls(4).back(), (HelpCall{help, helpContextCommand, 11, " Options "}));
    PostMessageW(options, WM_CLOSE, 0, 0);
    ui::waitUntilGone(options);

    EXPECT_EQ(program.close(), 0u);
    EXPECT_EQ(folder.helpCalls().size(), 4u);
    EXPECT_TRUE(below.exists());
    EXPECT_FALSE(directlyBelowTheHive.exists());
    EXPECT_EQ(readBytes(folder.handOver()), before);
}

TEST_F(StartUp, F1WithoutTheHelpFileDoesNothing) {
    const HelpControlOfTheSystem recorder;
    const std::filesystem::path help = folder.path() / L"nirgends.chm";
    folder.writeHandOver(keyPath, L"eng", (folder.path() / L"nirgends.kalvhelp").wstring());
    RunningProgram program(folder);
    const HWND main = program.mainWindow();
    const auto postF1 = [](HWND window) {
        PostMessageW(window, WM_KEYDOWN, VK_F1, 1);
        PostMessageW(window, WM_KEYUP, VK_F1, static_cast<LPARAM>(0xC0000001));
    };
    postF1(main);
    // The dialog comes after the key in the same queue.
    ui::choose(main, ui::MenuAddRoom);
    const HWND room = program.dialog(L" Add room ");
    postF1(room);
    PostMessageW(room, WM_CLOSE, 0, 0);
    ui::waitUntilGone(room);
    EXPECT_THAT(folder.helpCalls(), IsEmpty());
    EXPECT_EQ(program.windows().size(), 1u);
    // The file is looked for anew every time.
    writeBytes(help, "");
    postF1(main);
    EXPECT_EQ(waitForHelpCalls(1).size(), 1u);
    EXPECT_EQ(program.close(), 0u);
}

// What somebody has put beside the program must not run with it.
TEST_F(StartUp, LibrariesOfTheSystemAreNotTakenFromTheProgramsFolder) {
    const std::filesystem::path planted = folder.path() / L"hhctrl.ocx";
    for (const wchar_t* name :
         {L"dwmapi.dll", L"uxtheme.dll", L"comdlg32.dll", L"winspool.drv", L"shcore.dll",
          L"shell32.dll", L"shlwapi.dll", L"propsys.dll", L"version.dll", L"msimg32.dll",
          L"riched20.dll", L"usp10.dll", L"explorerframe.dll", L"windowscodecs.dll",
          L"netapi32.dll", L"cryptbase.dll", L"mscms.dll", L"sxs.dll"})
        std::filesystem::copy_file(planted, folder.path() / name);
    writeBytes(folder.path() / L"hilfe.chm", "");
    folder.writeHandOver(keyPath, L"xxx", (folder.path() / L"hilfe.kalvhelp").wstring());
    const HelpControlOfTheSystem recorder;

    RunningProgram program(folder);
    const HWND main = program.mainWindow();
    ui::choose(main, ui::MenuOpen);
    const HWND files = program.fileDialog();
    PostMessageW(files, WM_COMMAND, IDCANCEL, 0);
    ui::waitUntilGone(files);
    pressF1(main);
    EXPECT_EQ(waitForHelpCalls(1).size(), 1u);
    EXPECT_EQ(program.close(), 0u);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / L"code-ran"));

    const std::filesystem::path copy = folder.path() / practiceHostProgram;
    std::filesystem::copy_file(ui::binFolder() / practiceHostProgram, copy);
    const ui::Process another(L"\"" + copy.wstring() + L"\"");
    const HWND drawing = ui::waitForWindow("the drawing", another, [](HWND shown) {
        return ui::textOf(shown).starts_with(L"Kalvero");
    });
    PostMessageW(drawing, WM_COMMAND, IDC_LOAD, 0);
    const HWND drawings = ui::waitForWindow("a file dialog", another, ui::isFileDialog);
    PostMessageW(drawings, WM_COMMAND, IDCANCEL, 0);
    ui::waitUntilGone(drawings);
    PostMessageW(drawing, WM_CLOSE, 0, 0);
    EXPECT_EQ(another.waitForEnd(), 0u);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / L"code-ran"));
}

TEST_F(StartUp, TheProgramAsksForWindows10AndForAllThatProtectsIt) {
    const std::string program = readBytes(folder.path() / L"Quartino.exe");
    IMAGE_DOS_HEADER dos{};
    std::memcpy(&dos, program.data(), sizeof dos);
    IMAGE_NT_HEADERS64 headers{};
    std::memcpy(&headers, program.data() + dos.e_lfanew, sizeof headers);
    const IMAGE_OPTIONAL_HEADER64& optional = headers.OptionalHeader;
    EXPECT_EQ(optional.MajorOperatingSystemVersion, 10);
    EXPECT_EQ(optional.MajorSubsystemVersion, 10);
    EXPECT_EQ(optional.MinorSubsystemVersion, 0);
    for (const int protection :
         {IMAGE_DLLCHARACTERISTICS_NX_COMPAT, IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE,
          0x20 /* high entropy */, IMAGE_DLLCHARACTERISTICS_TERMINAL_SERVER_AWARE})
        EXPECT_TRUE(optional.DllCharacteristics & protection) << protection;
    // Nothing of it works without a table of what to move.
    EXPECT_FALSE(headers.FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED);
    EXPECT_NE(program.find("stack smashing detected"), std::string::npos);
    EXPECT_NE(program.find("{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"), std::string::npos)
        << "Windows 10 in the manifest";
    EXPECT_NE(readBytes(ui::binFolder() / L"KalveroPractice.exe")
                  .find("{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"),
              std::string::npos);
}

class OddHandOver : public StartUp {
  protected:
    // Starts and ends the program; what it applied shows in the title and in the registry.
    void run(bool language, const SettingsKey* written) {
        const std::string before = readBytes(folder.handOver());
        RunningProgram program(folder);
        EXPECT_EQ(ui::textOf(program.mainWindow()),
                  language ? L" Sprachprobe - Schule" : L" Quartino - Schule");
        EXPECT_EQ(program.windows().size(), 1u);
        EXPECT_EQ(program.close(), 0u);
        for (const SettingsKey* key : {&directlyBelowTheHive, &test, &below})
            EXPECT_EQ(key->values().size(), key == written ? 7u : 0u) << toAnsi(key->path());
        // Nothing reaches the hive itself.
        EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, nullptr, L"Report", RRF_RT_ANY, nullptr, nullptr,
                               nullptr),
                  ERROR_FILE_NOT_FOUND);
        EXPECT_EQ(readBytes(folder.handOver()), before);
    }
};

// No path is that long.
TEST_F(OddHandOver, WithAHelpFileOf200MegabytesF1OpensNothingAndTheProgramGoesOn) {
    const HelpControlOfTheSystem recorder;
    writeBytes(folder.handOver(), "Kalvero\r\n" + std::string(200'000'000, 'x') +
                                      ".kalvhelp\r\nSoftware\\QuartinoTest\r\nprb\r\n");
    RunningProgram program(folder);
    const HWND main = program.mainWindow();
    EXPECT_EQ(ui::textOf(main), L" Sprachprobe - Schule");
    pressF1(main);
    // The dialog comes after the key in the same queue.
    ui::choose(main, ui::MenuAddRoom);
    const HWND room = program.dialog(L" Raum hinzufügen ");
    PostMessageW(room, WM_CLOSE, 0, 0);
    ui::waitUntilGone(room);
    EXPECT_THAT(folder.helpCalls(), IsEmpty());
    EXPECT_EQ(program.close(), 0u);
}

TEST_F(OddHandOver, LockedByAnotherProcessItIsAsGoodAsNoFile) {
    folder.writeHandOver(keyPath, L"prb");
    const HANDLE lock = CreateFileW(folder.handOver().c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(lock, INVALID_HANDLE_VALUE);
    run(false, &directlyBelowTheHive);
    CloseHandle(lock);
}

TEST_F(OddHandOver, InAnotherCodePageNamesTheKeyThatItsBytesMeanHere) {
    const std::string bytes = "Software\\QuartinoTest\\Schl\xC3\xBCssel";
    writeBytes(folder.handOver(), "Kalvero\r\nC:\\q.kalvhelp\r\n" + bytes + "\r\nprb\r\n");
    const SettingsKey key(fromAnsi(bytes) + L"\\QTO");
    run(true, nullptr);
    EXPECT_EQ(key.values().size(), 7u);
}

// --- the host ------------------------------------------------------------------------------------

class Probe : public StartUp {
  protected:
    ~Probe() override {
        host.state(L"");
        if (!registered_)
            ui::runToItsEnd(practiceHostProgram, L"--register");
    }
    void unregister() {
        registered_ = false;
        ASSERT_EQ(ui::runToItsEnd(practiceHostProgram, L"--unregister"), 0u);
    }

  private:
    bool registered_ = true;
};

TEST_F(Probe, ShowsOneMessageAndEndsWithoutWindowWhenTheHostStaysAbsent) {
    unregister();
    folder.writeHandOver(keyPath);
    RunningProgram program(folder);
    const HWND box = program.messageBox();
    EXPECT_EQ(ui::textOf(box), L" Quartino");
    EXPECT_EQ(ui::messageText(box), closeKvdFiles);
    program.answer(box);
    ui::waitFor("the end without a second message", [&] {
        for (const HWND window : program.windows())
            if (window != box)
                throw ui::WaitFailed("another window");
        return program.windows().empty();
    });
    EXPECT_EQ(program.waitForEnd(), 0u);
    EXPECT_FALSE(below.exists());
    EXPECT_TRUE(std::filesystem::exists(folder.handOver()));
}

TEST_F(Probe, ShowsTheWindowWhenTheHostHasBeenInstalledAtTheSecondTry) {
    unregister();
    folder.writeHandOver(keyPath);
    RunningProgram program(folder);
    const HWND box = program.messageBox();
    EXPECT_EQ(ui::messageText(box), closeKvdFiles);
    ASSERT_EQ(ui::runToItsEnd(practiceHostProgram, L"--register"), 0u);
    program.answer(box);
    EXPECT_EQ(ui::textOf(program.mainWindow()), L" Quartino - Schule");
    EXPECT_EQ(program.close(), 0u);
}

} // namespace
} // namespace kalvrooms::testing
