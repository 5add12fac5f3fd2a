// Pictures of every window, left in the build's folder of pictures for people to look at: in
// German and English, at several DPI, in a large font.

#include "journeys/JourneyTest.h"
#include "win32/SystemDpiForTest.h"
#include "win32/SystemFontForTest.h"

#include <algorithm>

namespace kalvrooms::testing {
namespace {

struct Show {
    const char* name; // part of the file names
    const wchar_t* language;
    wchar_t menuLetter;
    DWORD dpi;
    int points;
};

void PrintTo(const Show& show, std::ostream* out) {
    *out << show.name;
}

class Pictures : public JourneyTest, public ::testing::WithParamInterface<Show> {
  protected:
    // The example project, as if it lay in the test's folder; the list's path.
    std::filesystem::path copyTheSchool() {
        const std::filesystem::path school =
            std::filesystem::path(QUARTINO_SOURCE_DIR) / L"examples" / L"schule";
        for (const auto& entry : std::filesystem::directory_iterator(school))
            std::filesystem::copy_file(entry.path(), folder.path() / entry.path().filename());
        const auto replaceAll = [](std::string text, const std::string& from,
                                   const std::string& to) {
            for (std::size_t at = text.find(from); at != std::string::npos;
                 at = text.find(from, at + to.size()))
                text.replace(at, from.size(), to);
            return text;
        };
        const std::string place = toAnsi(folder.path().wstring());
        const std::filesystem::path rooms = file(L"Raumliste.txt");
        writeBytes(rooms, replaceAll(readBytes(rooms), R"(C:\Projekte\Schule)", place));
        // The drawing's own folder is not asked for.
        practiceHost().load(LoadDrawing(file(L"Teilbild.json")));
        return rooms;
    }
    void take(QuartinoProcess& quartino, HWND window, const char* name) {
        EXPECT_GT(quartino.picture(window, std::string(GetParam().name) + "-" + name), 4u) << name;
    }
};

TEST_P(Pictures, OfEveryWindow) {
    const Show& show = GetParam();
    const SystemDpiForTest system(show.dpi);
    const SystemFontForTest font(show.points);
    folder.writeHandOver(keyPath, show.language);
    const std::filesystem::path list = copyTheSchool();

    QuartinoProcess quartino(folder, show.menuLetter);
    const HWND main = quartino.main();
    // All of it has to be on the screen.
    RECT place{};
    GetWindowRect(main, &place);
    SetWindowPos(main, nullptr, 0, 0,
                 std::min<int>(place.right - place.left, GetSystemMetrics(SM_CXSCREEN)),
                 std::min<int>(place.bottom - place.top, GetSystemMetrics(SM_CYSCREEN)),
                 SWP_NOZORDER | SWP_NOACTIVATE);
    auto before = quartino.commandsDone();
    ui::choose(main, ui::MenuOpen);
    quartino.giveFileName(quartino.fileDialog(), list.wstring());
    quartino.waitForCommand(before);
    quartino.clickCell(0, Name);
    ui::parkMouse();
    take(quartino, main, "main");

    before = quartino.commandsDone();
    ui::choose(main, ui::MenuModifyRoom);
    HWND dialog = quartino.dialogWith(ID_ROOM_CMDGEOMETRY);
    take(quartino, dialog, "room");
    ui::press(dialog, ID_ROOM_CMDGEOMETRY);
    const HWND geometry = quartino.dialogWith(ID_GEOMETRY_OPTRATIO);
    take(quartino, geometry, "geometry");
    ui::press(geometry, ID_GEOMETRY_CMDCANCEL);
    ui::waitUntilGone(geometry);
    ui::press(dialog, ID_ROOM_CMDCANCEL);
    quartino.waitForCommand(before);

    before = quartino.commandsDone();
    ui::choose(main, ui::MenuPlace);
    dialog = quartino.dialogWith(ID_PLACE_SSTAB1);
    take(quartino, dialog, "options-arrangement");
    ui::typeKey(VK_TAB, {VK_CONTROL});
    ui::waitFor("the other tab", [&] { return quartino.visible(dialog, ID_PLACE_CHKUPDATE); });
    take(quartino, dialog, "options-display");
    ui::press(dialog, ID_PLACE_CMDCANCEL);
    quartino.waitForCommand(before);

    before = quartino.commandsDone();
    ui::choose(main, ui::MenuExport);
    dialog = quartino.dialogWith(ID_REPORT_LBLTOP);
    take(quartino, dialog, "report");
    ui::press(dialog, ID_REPORT_CMDOK);
    quartino.waitForCommand(before);
    PostMessageW(main, WM_CLOSE, 0, 0);
    const HWND box = quartino.messageBox();
    take(quartino, box, "message");
    ui::press(box, IDNO);
    EXPECT_EQ(quartino.program().waitForEnd(), 0u);
}

INSTANTIATE_TEST_SUITE_P(In, Pictures,
                         ::testing::Values(Show{"german", L"xxx", L'D', 96, 0},
                                           Show{"english", L"eng", L'F', 144, 0},
                                           Show{"144-dpi", L"xxx", L'D', 144, 0},
                                           Show{"192-dpi", L"xxx", L'D', 192, 0},
                                           Show{"large-font", L"xxx", L'D', 96, 15}),
                         [](const auto& show) {
                             std::string name = show.param.name;
                             for (char& c : name)
                                 if (c == '-')
                                     c = '_';
                             return name;
                         });

} // namespace
} // namespace kalvrooms::testing
