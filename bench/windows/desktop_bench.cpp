// The real windows: what opening a dialog, filling the table and painting it cost.

#include <memory>
#include <string>
#include <vector>

#include "bench/windows/Figure.h"
#include "headless/AbsentServers.h"
#include "headless/HeadlessPlatform.h"
#include "model/NumberText.h"
#include "ui/frmMain.h"
#include "win32/Win32Desktop.h"
#include "win32/Win32Form.h"
#include "win32/Win32Locale.h"

namespace kalvrooms::Gui {
namespace {

// From the first call to the painted window.
void openDialog(Win32Desktop& desktop, const wchar_t* name) {
    const auto form = desktop.CreateForm(name);
    form->Show();
}

void openEmptyWindow(const RECT& size) {
    const HWND window = CreateWindowExW(
        WS_EX_DLGMODALFRAME, WC_DIALOG, L"", WS_POPUP | WS_CAPTION | WS_SYSMENU, 0, 0,
        static_cast<int>(size.right - size.left), static_cast<int>(size.bottom - size.top), nullptr,
        nullptr, GetModuleHandleW(nullptr), nullptr);
    ShowWindow(window, SW_SHOWNORMAL);
    SetForegroundWindow(window);
    UpdateWindow(window);
    DestroyWindow(window);
}

void measureDialogs(Win32Desktop& desktop) {
    for (const wchar_t* name : {L"frmRoom", L"frmGeometry", L"frmPlace", L"frmReport"}) {
        RECT size{};
        GetWindowRect(dynamic_cast<Win32Form&>(*desktop.CreateForm(name)).Window(), &size);
        const std::wstring wide = name;
        const std::string label = "opening " + std::string(wide.begin(), wide.end());
        bench::figure(label.c_str(), bench::best(50, [&] { openDialog(desktop, name); }), "ms",
                      "an empty window of that size",
                      bench::best(50, [&] { openEmptyWindow(size); }));
    }
}

void measureTable(Win32Desktop& desktop) {
    AbsentHostServer host;
    AbsentSpreadsheetServer spreadsheets;
    HeadlessPlatform headless;
    Platform platform{desktop, headless.ansi, headless.registry, headless.libraries,
                      headless.environment};
    frmMain main(platform, host, spreadsheets);
    main.SetLang(L"");
    main.Show();
    main.GetCurrentRoom()->Name(L"Klassenzimmer 1");
    main.GetCurrentRoom()->FunctionName(L"Unterricht");
    main.GetCurrentRoom()->StoryCode(L"EG");
    auto& form = *desktop.ActiveForm();
    auto& grid = form.Named<Grid>(L"grdRooms");
    const HWND list = form.ControlNamed(L"grdRooms")->Window();
    const auto page = [&] {
        return bench::best(40, [&] {
            ListView_EnsureVisible(list, grid.Cells().Rows() - 2, FALSE);
            ListView_EnsureVisible(list, 0, FALSE);
            RedrawWindow(list, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        });
    };
    constexpr int few = 120;
    constexpr int many = 100000;
    main.AddCurrentRoomsToListOfFloors(few);
    const double pageOfFew = page();
    main.AddCurrentRoomsToListOfFloors(many - few);
    const double pageOfMany = page();

    constexpr double perRoom = 1000.0 / many; // milliseconds to microseconds of a room
    const double filling = bench::best(7, [&] { main.UpdateTable(false); }) * perRoom;
    std::vector<std::vector<std::wstring>> texts(many);
    for (int row = 1; row <= many; ++row)
        for (int column = 0; column < 9; ++column)
            texts[static_cast<std::size_t>(row) - 1].push_back(grid.Cells().Text(row, column));
    const double copying = bench::best(7, [&] { auto copy = texts; }) * perRoom;
    bench::figure("filling the table, 100000 rooms", filling, "us/room",
                  "copying the texts of the table", copying);
    bench::figure("painting a page of 100000 rooms", pageOfMany, "ms", "a page of 120 rooms",
                  pageOfFew);
}

} // namespace
} // namespace kalvrooms::Gui

int wmain() {
    kalvrooms::HandInUserLocale(kalvrooms::Win32UserLocale);
    kalvrooms::Gui::Win32Desktop desktop;
    kalvrooms::Gui::measureDialogs(desktop);
    kalvrooms::Gui::measureTable(desktop);
    return 0;
}
