#include "journeys/QuartinoProcess.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kalvrooms::testing {
namespace {

namespace ui = kalvrooms::driver;

constexpr int idColumn = 8;

std::filesystem::path pictureFile(const std::string& name) {
    const std::filesystem::path folder =
        ui::binFolder().parent_path() / L"pictures" / (decimalMark() == L"," ? L"comma" : L"point");
    std::filesystem::create_directories(folder);
    return folder / (name + ".bmp");
}

// What was on the screen when a wait failed is left for people to look at.
[[maybe_unused]] const bool picturesOfFailures = [] {
    ui::beforeWaitFails = [] {
        const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string("failed-") + (test ? test->name() : "");
        std::replace(name.begin(), name.end(), '/', '-');
        ui::Picture::ofScreen().save(pictureFile(name));
    };
    return true;
}();

GUITHREADINFO threadInfo(HWND window) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
    return info;
}

// Pixels beside the usual place, so that two clicks one after the other are never a double click.
int elsewhere() {
    static bool aside = false;
    aside = !aside;
    return aside ? GetSystemMetrics(SM_CXDOUBLECLK) + 2 : 0;
}

} // namespace

std::wstring decimalMark() {
    wchar_t mark[8] = L"";
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, mark, 8);
    return mark;
}

// --- the program --------------------------------------------------------------------------------

RunningProgram::RunningProgram(const ProgramFolder& folder)
    : process_(L"\"" + (folder.path() / L"Quartino.exe").wstring() + L"\"") {}

HWND RunningProgram::mainWindow() {
    main_ = ui::waitForWindow("the main window", process_, [this](HWND window) {
        if (window != answered_ && ui::isMessageBox(window))
            throw ui::WaitFailed("a message instead of the main window");
        return ui::classOf(window) == L"QuartinoMain";
    });
    return main_;
}

HWND RunningProgram::messageBox() {
    return ui::waitForWindow("a message", process_, [this](HWND window) {
        if (!main_ && ui::classOf(window) == L"QuartinoMain")
            throw ui::WaitFailed("the main window instead of a message");
        return ui::isMessageBox(window);
    });
}

HWND RunningProgram::dialog(const std::wstring& title) {
    return ui::waitForWindow("the dialog" + toAnsi(title), process_, [&](HWND window) {
        return window != main_ && ui::textOf(window) == title;
    });
}

HWND RunningProgram::dialogWith(int control) {
    return ui::waitForWindow("a dialog", process_,
                             [&](HWND window) { return GetDlgItem(window, control) != nullptr; });
}

HWND RunningProgram::fileDialog() {
    return ui::waitForWindow("a file dialog", process_, ui::isFileDialog);
}

HWND RunningProgram::ownedBy(HWND owner) {
    return ui::waitForWindow("a window of the system", process_, [&](HWND window) {
        return GetWindow(window, GW_OWNER) == owner && !ui::isMessageBox(window);
    });
}

void RunningProgram::answer(HWND messageBox) {
    answered_ = messageBox;
    // A box with one button numbers it as the one or the other, by version of the system.
    ui::press(messageBox, GetDlgItem(messageBox, IDOK) ? IDOK : IDCANCEL);
}

DWORD RunningProgram::close() {
    PostMessageW(main_, WM_CLOSE, 0, 0);
    ui::waitFor("the end of the program", [this] {
        if (ui::findWindow(process_.id(), ui::isMessageBox))
            throw ui::WaitFailed("a message at the end of the program");
        return !process_.running();
    });
    return process_.waitForEnd();
}

bool RunningProgram::onlyShows(std::vector<HWND> expected) const {
    std::vector<HWND> shown = windows();
    std::sort(expected.begin(), expected.end());
    std::sort(shown.begin(), shown.end());
    return shown == expected;
}

QuartinoProcess::QuartinoProcess(const ProgramFolder& folder, wchar_t firstMenu)
    : program_(folder) {
    SetProcessDPIAware(); // places on the screen are the real ones
    main_ = program_.mainWindow();
    table_ = FindWindowExW(main_, nullptr, WC_LISTVIEWW, nullptr);
    SetForegroundWindow(main_);
    waitForKeys(main_);
    // A menu that opened shows that the window manager, too, knows who has the focus.
    openMenu(firstMenu);
    ui::typeKey(VK_ESCAPE);
    ui::typeKey(VK_ESCAPE);
    waitForNoPopup();
    waitForKeys(main_);
}

// --- windows and controls -----------------------------------------------------------------------

void QuartinoProcess::waitForKeys(HWND window) const {
    ui::waitFor("the keys to go to " + toAnsi(ui::textOf(window)), [&] {
        const HWND focused = focus();
        return GetForegroundWindow() == window && focused &&
               GetAncestor(focused, GA_ROOT) == window;
    });
}

HWND QuartinoProcess::withKeys(HWND window) const {
    waitForKeys(window);
    return window;
}

void QuartinoProcess::waitForReturn(HWND gone, HWND to) const {
    ui::waitUntilGone(gone);
    waitForKeys(to);
}

std::wstring QuartinoProcess::text(HWND dialog, int id) {
    return ui::textOf(ui::control(dialog, id));
}

void QuartinoProcess::waitForText(HWND dialog, int id, const std::wstring& shown) {
    const HWND window = ui::control(dialog, id);
    ui::waitFor("a control to show " + toAnsi(shown), [&] { return ui::textOf(window) == shown; });
}

bool QuartinoProcess::checked(HWND dialog, int id) {
    return SendMessageW(ui::control(dialog, id), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

bool QuartinoProcess::enabled(HWND dialog, int id) {
    return IsWindowEnabled(ui::control(dialog, id)) != FALSE;
}

bool QuartinoProcess::visible(HWND dialog, int id) {
    return IsWindowVisible(ui::control(dialog, id)) != FALSE;
}

// --- keyboard -----------------------------------------------------------------------------------

HWND QuartinoProcess::focus() const {
    return threadInfo(main_).hwndFocus;
}

void QuartinoProcess::waitForFocus(HWND dialog, int id) const {
    const HWND expected = ui::control(dialog, id);
    ui::waitFor("the focus on control " + std::to_string(id), [&] { return focus() == expected; });
}

void QuartinoProcess::tabTo(HWND dialog, std::initializer_list<int> ids) const {
    for (const int id : ids) {
        ui::typeKey(VK_TAB);
        waitForFocus(dialog, id);
    }
}

void QuartinoProcess::type(HWND dialog, int id, const std::wstring& text,
                           const std::wstring& shown) const {
    waitForFocus(dialog, id);
    ui::typeText(text);
    waitForText(dialog, id, shown);
}

void QuartinoProcess::keysWereHandled(HWND dialog) const {
    const HWND before = focus();
    ui::typeKey(VK_TAB);
    ui::waitFor("the focus to move on in " + toAnsi(ui::textOf(dialog)), [&] {
        const HWND now = focus();
        return now && now != before && GetAncestor(now, GA_ROOT) == dialog;
    });
}

HWND QuartinoProcess::openPopup() const {
    for (const HWND window : program_.windows())
        if (ui::classOf(window) == L"#32768")
            return window;
    return nullptr;
}

void QuartinoProcess::waitForPopup() const {
    ui::waitFor("an open menu", [this] { return openPopup() != nullptr; });
}

void QuartinoProcess::waitForNoPopup() const {
    ui::waitFor("the menu to close", [this] {
        return !openPopup() && !(threadInfo(main_).flags & (GUI_INMENUMODE | GUI_POPUPMENUMODE));
    });
}

void QuartinoProcess::openMenu(wchar_t menuLetter) {
    // The window manager may still be handing the focus over, which closes a menu: then once more,
    // but only when the program has had the keys. It answers a message each time that it asks for
    // the next one, so it has asked often enough by then. Keys that came twice would choose another
    // entry.
    constexpr int answers = 50;
    int answered = answers;
    ui::parkMouse();
    ui::waitFor("an open menu", [&] {
        if (openPopup())
            return true;
        if (answered == answers && !(threadInfo(main_).flags & GUI_INMENUMODE)) {
            answered = 0;
            ui::typeKey(static_cast<WORD>(menuLetter), {VK_MENU});
        }
        SendMessageW(main_, WM_NULL, 0, 0);
        answered = std::min(answered + 1, answers);
        return false;
    });
}

void QuartinoProcess::chooseByKeys(wchar_t menuLetter, int itemsBelow) {
    openMenu(menuLetter);
    for (int i = 0; i < itemsBelow; ++i)
        ui::typeKey(VK_DOWN);
    ui::typeKey(VK_RETURN);
    waitForNoPopup();
}

std::uintptr_t QuartinoProcess::commandsDone() const {
    return reinterpret_cast<std::uintptr_t>(GetPropW(main_, L"QuartinoCommandsDone"));
}

void QuartinoProcess::waitForCommand(std::uintptr_t before) const {
    ui::waitFor("the end of a command", [&] { return commandsDone() != before; });
    waitForKeys(main_);
}

void QuartinoProcess::giveFileName(HWND fileDialog, const std::wstring& path) {
    const HWND field = ui::fileNameField(fileDialog);
    ui::waitFor("the focus on the file name", [&] {
        const HWND now = focus();
        return now && (now == field || IsChild(field, now));
    });
    ui::typeKey(VK_HOME);
    ui::typeKey(VK_END, {VK_SHIFT});
    ui::typeText(path);
    ui::waitFor("the file name in its field", [&] { return ui::textOf(field) == path; });
    ui::typeKey(VK_RETURN);
}

void QuartinoProcess::nameByKeys(int line, const std::filesystem::path& list) {
    command([&] {
        chooseByKeys(fileMenu, line);
        giveFileName(fileDialog(), list.wstring());
    });
}

void QuartinoProcess::closeWithEnter(HWND messageBox) const {
    waitForKeys(messageBox);
    ui::typeKey(VK_RETURN);
    ui::waitUntilGone(messageBox);
}

// --- mouse --------------------------------------------------------------------------------------

void QuartinoProcess::click(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    ui::clickAt(window, static_cast<int>(client.right) / 2 + elsewhere(),
                static_cast<int>(client.bottom) / 2);
}

void QuartinoProcess::clickCell(int row, int column, bool right, int times) const {
    const RECT place = ui::cellPlace(table_, row, column);
    ui::clickAt(table_, static_cast<int>(place.left) + 10 + elsewhere(),
                static_cast<int>(place.top + place.bottom) / 2, right, times);
}

void QuartinoProcess::clickHeader(int column, bool right) const {
    const RECT place = ui::headerPlace(table_, column);
    ui::clickAt(ui::headerOf(table_), static_cast<int>(place.left + place.right) / 2 + elsewhere(),
                static_cast<int>(place.top + place.bottom) / 2, right);
}

// --- the table and pictures ---------------------------------------------------------------------

std::vector<std::wstring> QuartinoProcess::column(int column) const {
    std::vector<std::wstring> texts;
    for (int room = 0; room < ui::rowCount(table_) && !cell(room, idColumn).empty(); ++room)
        texts.push_back(cell(room, column));
    return texts;
}

int QuartinoProcess::rednessOfRow(int row) const {
    RECT line = ui::cellPlace(table_, row, 0);
    MapWindowPoints(table_, nullptr, reinterpret_cast<POINT*>(&line), 2);
    return ui::Picture(line).redness();
}

std::size_t QuartinoProcess::picture(HWND window, const std::string& name) const {
    const ui::Picture shown = ui::Picture::ofWindow(window);
    shown.save(pictureFile(name));
    return shown.colours();
}

} // namespace kalvrooms::testing
