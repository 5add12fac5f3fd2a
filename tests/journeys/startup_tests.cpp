// Start-up of the real program: hand-over file, probe of the host, help.

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "journeys/ProgramFolder.h"
#include "win32/ControlIds.h"

namespace kalvrooms::testing {
namespace {

namespace ui = kalvrooms::driver;
using ::testing::IsEmpty;
using ::testing::StartsWith;

using HelpCall = ProgramFolder::HelpCall;

constexpr int helpContextCommand = 15;
constexpr const wchar_t* keyPath = L"Software\\QuartinoTest";
const std::wstring closeKvdFiles = L" KVD-Dateien können mit dem Quartino nicht bearbeitet werden. "
                                   L"Bitte schließen Sie alle KVD-Dateien.";

// Runs the practice host with an option and waits for its end.
void hostProgram(const wchar_t* option) {
    ui::Process process(L"\"" + (binFolder() / L"KalveroPractice.exe").wstring() + L"\" " + option);
    ASSERT_EQ(process.waitForEnd(), 0u);
}

bool hasIcon(HWND messageBox) {
    bool found = false;
    EnumChildWindows(
        messageBox,
        [](HWND child, LPARAM data) -> BOOL {
            // The field for it may be there, but nothing in it.
            if (ui::classOf(child) == L"Static" &&
                (GetWindowLongPtrW(child, GWL_STYLE) & SS_TYPEMASK) == SS_ICON &&
                SendMessageW(child, STM_GETICON, 0, 0))
                *reinterpret_cast<bool*>(data) = true;
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&found));
    return found;
}

int buttonCount(HWND messageBox) {
    int count = 0;
    EnumChildWindows(
        messageBox,
        [](HWND child, LPARAM data) -> BOOL {
            if (ui::classOf(child) == L"Button" && IsWindowVisible(child))
                ++*reinterpret_cast<int*>(data);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&count));
    return count;
}

class StartUp : public ::testing::Test {
  protected:
    // Wine prefers its own help control to the one beside the program; elsewhere the key is no more
    // than a key.
    static SettingsKey helpControlBesideTheProgram() {
        SettingsKey loading(L"Software\\Wine\\AppDefaults\\Quartino.exe\\DllOverrides");
        for (const wchar_t* name : {L"hhctrl.ocx", L"*hhctrl.ocx"})
            loading.set(name, REG_SZ, std::string("n\0a\0t\0i\0v\0e\0\0\0", 14));
        return loading;
    }
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
    const SettingsKey loading = helpControlBesideTheProgram();
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
    ui::waitFor("the end of the geometry dialog", [&] { return !IsWindow(geometry); });
    PostMessageW(room, WM_CLOSE, 0, 0);
    ui::waitFor("the end of the room dialog", [&] { return !IsWindow(room); });

    ui::choose(main, ui::MenuPlace);
    const HWND options = program.dialog(L" Options ");
    pressF1(options);
    EXPECT_EQ(waitForHelpCalls(4).back(), (HelpCall{help, helpContextCommand, 11, " Options "}));
    PostMessageW(options, WM_CLOSE, 0, 0);
    ui::waitFor("the end of the options dialog", [&] { return !IsWindow(options); });

    EXPECT_EQ(program.close(), 0u);
    EXPECT_EQ(folder.helpCalls().size(), 4u);
    EXPECT_TRUE(below.exists());
    EXPECT_FALSE(directlyBelowTheHive.exists());
    EXPECT_EQ(readBytes(folder.handOver()), before);
}

TEST_F(StartUp, F1WithoutTheHelpFileDoesNothing) {
    const SettingsKey loading = helpControlBesideTheProgram();
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
    ui::waitFor("the end of the room dialog", [&] { return !IsWindow(room); });
    EXPECT_THAT(folder.helpCalls(), IsEmpty());
    EXPECT_EQ(program.windows().size(), 1u);
    // The file is looked for anew every time.
    writeBytes(help, "");
    postF1(main);
    EXPECT_EQ(waitForHelpCalls(1).size(), 1u);
    EXPECT_EQ(program.close(), 0u);
}

TEST_F(StartUp, EnglishIsSpokenInEveryWindow) {
    folder.writeHandOver(keyPath, L"eng");
    RunningProgram program(folder);
    const HWND main = program.mainWindow();
    const auto text = [](HWND dialog, int control) {
        return ui::textOf(GetDlgItem(dialog, control));
    };
    const auto closed = [](HWND window) {
        ui::waitFor("the end of a dialog", [&] { return !IsWindow(window); });
    };

    ui::choose(main, ui::MenuExport);
    const HWND nothing = program.messageBox();
    EXPECT_EQ(ui::messageText(nothing), L" No rooms have been entered in Quartino yet.");
    takePicture(nothing, "english-message");
    program.answer(nothing);
    closed(nothing);

    ui::choose(main, ui::MenuAddRoom);
    const HWND room = program.dialog(L" Add room ");
    EXPECT_EQ(text(room, ID_ROOM_LBLGESCHOSS), L" Storey short code:");
    EXPECT_EQ(text(room, ID_ROOM_LBLUM), L" Enclosure type:");
    EXPECT_EQ(text(room, ID_ROOM_CMDCANCEL), L" Cancel");
    ui::setText(GetDlgItem(room, ID_ROOM_TXTNAME), L"Office 1");
    ui::setText(GetDlgItem(room, ID_ROOM_TXTFUNCTION), L"Administration");
    ui::setText(GetDlgItem(room, ID_ROOM_TXTQUANTITY), L"3");
    takePicture(room, "english-room");
    ui::press(room, ID_ROOM_CMDGEOMETRY);
    const HWND geometry = program.dialog(L" Geometry");
    EXPECT_EQ(text(geometry, ID_GEOMETRY_OPTEXCELFILE), L" Import the geometry from Excel");
    takePicture(geometry, "english-geometry");
    ui::press(geometry, ID_GEOMETRY_CMDCANCEL);
    closed(geometry);
    ui::press(room, ID_ROOM_CMDOK);
    closed(room);

    ui::choose(main, ui::MenuPlace);
    const HWND options = program.dialog(L" Options ");
    EXPECT_EQ(text(options, ID_PLACE_CMDOK), L" OK");
    takePicture(options, "english-options");
    ui::press(options, ID_PLACE_CMDCANCEL);
    closed(options);

    takePicture(main, "english-main");
    ui::choose(main, ui::MenuExport);
    HWND report = nullptr;
    ui::waitFor("the report", [&] {
        for (const HWND window : program.windows())
            if (GetDlgItem(window, ID_REPORT_LBLTOP))
                report = window;
        return report != nullptr;
    });
    EXPECT_EQ(text(report, ID_REPORT_LBLTOP), L" Result:");
    EXPECT_EQ(text(report, ID_REPORT_LBLNUM3), L"3");
    EXPECT_EQ(text(report, ID_REPORT_LBLTEXT3), L" new rooms set down");
    takePicture(report, "english-report");
    ui::press(report, ID_REPORT_CMDOK);
    closed(report);

    PostMessageW(main, WM_CLOSE, 0, 0);
    const HWND question = program.messageBox();
    EXPECT_EQ(ui::messageText(question), L" Do you want to save your changes?");
    ui::press(question, IDNO);
    EXPECT_EQ(program.waitForEnd(), 0u);
}

struct Oddity {
    const char* name;
    std::string bytes;
    bool language;          // applied
    const wchar_t* written; // the key with the settings afterwards; none for null
};

void PrintTo(const Oddity& oddity, std::ostream* out) {
    *out << oddity.name;
}

class OddHandOver : public StartUp, public ::testing::WithParamInterface<Oddity> {
  protected:
    // Starts and ends the program; what it applied shows in the title and in the registry.
    void run(bool language, const wchar_t* written) {
        RunningProgram program(folder);
        EXPECT_EQ(ui::textOf(program.mainWindow()),
                  language ? L" Sprachprobe - Schule" : L" Quartino - Schule");
        EXPECT_EQ(program.windows().size(), 1u);
        EXPECT_EQ(program.close(), 0u);
        for (const SettingsKey* key : {&directlyBelowTheHive, &test, &below})
            EXPECT_EQ(key->values().size(), written && key->path() == written ? 7u : 0u)
                << toAnsi(key->path());
        // Nothing reaches the hive itself.
        EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, nullptr, L"Report", RRF_RT_ANY, nullptr, nullptr,
                               nullptr),
                  ERROR_FILE_NOT_FOUND);
    }
};

TEST_P(OddHandOver, IsAppliedAsFarAsItGoesAndStartUpGoesOn) {
    writeBytes(folder.handOver(), GetParam().bytes);
    const std::wstring written = GetParam().written ? GetParam().written : L"";
    std::optional<SettingsKey> other;
    if (!written.empty())
        other.emplace(written);
    run(GetParam().language, GetParam().written);
    if (other) {
        EXPECT_EQ(other->values().size(), 7u);
    }
    EXPECT_EQ(readBytes(folder.handOver()), GetParam().bytes);
}

// A literal with the NULs in it.
template <std::size_t Size>
std::string bytes(const char (&literal)[Size]) {
    return std::string(literal, Size - 1);
}

const std::wstring belowKey = std::wstring(keyPath) + L"\\QTO";
const std::string rest = "Software\\QuartinoTest\r\nprb\r\n";

INSTANTIATE_TEST_SUITE_P(
    Files, OddHandOver,
    ::testing::Values(
        Oddity{"Empty", "", false, L"QTO"}, Oddity{"OneLine", "Kalvero\r\n", false, L"QTO"},
        Oddity{"SevenCharacters", "Kalvero\r\n1234567\r\n" + rest, false, L"QTO"},
        Oddity{"EightCharacters", "Kalvero\r\n12345678\r\n" + rest, true, belowKey.c_str()},
        Oddity{"FortyThousandCharacters", "Kalvero\r\n" + std::string(40000, 'x') + "\r\n" + rest,
               true, belowKey.c_str()},
        Oddity{"NoLineEnds", "Kalvero C:\\quartino.kalvhelp Software\\QuartinoTest prb", false,
               L"QTO"},
        Oddity{"LineFeedsAlone", "Kalvero\nC:\\q.kalvhelp\nSoftware\\QuartinoTest\nprb", true,
               belowKey.c_str()},
        Oddity{"CodeXxx", "Kalvero\r\nC:\\q.kalvhelp\r\nSoftware\\QuartinoTest\r\nxxx\r\n", false,
               belowKey.c_str()},
        Oddity{"CodeOfFourCharacters",
               "Kalvero\r\nC:\\q.kalvhelp\r\nSoftware\\QuartinoTest\r\nprb \r\n", false,
               belowKey.c_str()},
        // A name in the registry ends at a NUL; half a path would be another key.
        Oddity{"NulBytes",
               bytes("Kal\0vero\r\nC:\\q\0.kalvhelp\r\nSoftware\\QuartinoTest\0x\r\np\0b\r\n"),
               false, nullptr},
        // Its second line is the half of a line end.
        Oddity{"SixteenBitText",
               [] {
                   std::string text = "\xFF\xFE";
                   for (const char c : "Kalvero\r\nC:\\q.kalvhelp\r\nSoftware\\QuartinoTest\r\nprb")
                       text += {c, '\0'};
                   return text;
               }(),
               false, L"QTO"}),
    [](const auto& parameter) { return parameter.param.name; });

TEST_F(OddHandOver, MissingLeavesGermanAndTheKeyDirectlyBelowTheHive) {
    folder.removeHandOver();
    run(false, L"QTO");
}

TEST_F(OddHandOver, AFolderOfThatNameIsAsGoodAsNoFile) {
    std::filesystem::create_directories(folder.handOver());
    run(false, L"QTO");
    EXPECT_TRUE(std::filesystem::is_directory(folder.handOver()));
}

TEST_F(OddHandOver, LockedByAnotherProcessItIsAsGoodAsNoFile) {
    folder.writeHandOver(keyPath, L"prb");
    const HANDLE lock = CreateFileW(folder.handOver().c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(lock, INVALID_HANDLE_VALUE);
    run(false, L"QTO");
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
            hostProgram(L"--register");
    }
    void unregister() {
        registered_ = false;
        hostProgram(L"--unregister");
    }

  private:
    bool registered_ = true;
};

// What the next test relies on.
TEST(IconOfAMessage, IsSeenWhereThereIsOne) {
    for (const auto& [icon, seen] : {std::pair{MB_ICONSTOP, true}, std::pair{0L, false}}) {
        std::thread user([style = static_cast<UINT>(MB_OK | icon)] {
            MessageBoxW(nullptr, L"text", L"Icon of a message", style);
        });
        HWND box = nullptr;
        ui::waitFor("the message", [&] {
            box = FindWindowW(nullptr, L"Icon of a message");
            return box && IsWindowVisible(box);
        });
        EXPECT_EQ(hasIcon(box), seen);
        EXPECT_EQ(buttonCount(box), 1);
        PostMessageW(box, WM_CLOSE, 0, 0);
        user.join();
    }
}

TEST_F(Probe, ShowsOneMessageAndEndsWithoutWindowWhenTheHostStaysAbsent) {
    unregister();
    folder.writeHandOver(keyPath);
    RunningProgram program(folder);
    const HWND box = program.messageBox();
    EXPECT_EQ(ui::textOf(box), L" Quartino");
    EXPECT_EQ(ui::messageText(box), closeKvdFiles);
    EXPECT_EQ(buttonCount(box), 1);
    EXPECT_FALSE(hasIcon(box));
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

TEST_F(Probe, ShowsTheWindowWhenTheHostIsThereAtTheSecondTry) {
    host.state(L"kvd");
    folder.writeHandOver(keyPath, L"eng");
    RunningProgram program(folder);
    const HWND box = program.messageBox();
    EXPECT_EQ(ui::textOf(box), L" Quartino");
    EXPECT_EQ(ui::messageText(box),
              L" KVD files cannot be edited with Quartino. Please close all KVD files.");
    host.state(L"");
    program.answer(box);
    EXPECT_EQ(ui::textOf(program.mainWindow()), L" Quartino - Schule");
    EXPECT_EQ(program.close(), 0u);
    EXPECT_TRUE(below.exists());
}

TEST_F(Probe, ShowsTheWindowWhenTheHostHasBeenInstalledAtTheSecondTry) {
    unregister();
    folder.writeHandOver(keyPath);
    RunningProgram program(folder);
    const HWND box = program.messageBox();
    EXPECT_EQ(ui::messageText(box), closeKvdFiles);
    hostProgram(L"--register");
    program.answer(box);
    EXPECT_EQ(ui::textOf(program.mainWindow()), L" Quartino - Schule");
    EXPECT_EQ(program.close(), 0u);
}

TEST_F(Probe, HasWordsOfItsOwnWhereTheLanguageHasNone) {
    host.state(L"kvd");
    folder.writeHandOver(keyPath, L"bla");
    RunningProgram program(folder);
    const HWND box = program.messageBox();
    EXPECT_EQ(ui::textOf(box), L"Quartino");
    EXPECT_EQ(ui::messageText(box), closeKvdFiles.substr(1));
    program.answer(box);
    EXPECT_EQ(program.waitForEnd(), 0u);
}

TEST_F(Probe, LeavesNoObjectBehind) {
    folder.writeHandOver(keyPath);
    const int before = host.liveObjects();
    RunningProgram program(folder);
    program.mainWindow();
    EXPECT_EQ(program.close(), 0u);
    EXPECT_EQ(host.liveObjects(), before);
}

} // namespace
} // namespace kalvrooms::testing
