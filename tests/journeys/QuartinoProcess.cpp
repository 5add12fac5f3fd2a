#include "journeys/QuartinoProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <memory>
#include <set>

namespace kalvrooms::testing {
namespace {

namespace ui = kalvrooms::driver;

constexpr DWORD limit = 20000; // milliseconds
constexpr int fileNameCombo = 0x47C;
constexpr int fileNameEdit = 0x480;
constexpr int idColumn = 8;

void pictureOfTheScreen(const std::string& name);

void waitFor(const std::string& state, const std::function<bool()>& holds) {
    try {
        ui::waitFor(state, holds, limit);
    } catch (const ui::WaitFailed&) {
        pictureOfTheScreen("failed");
        throw;
    }
}

// Each step carries its place, so that nothing that moves the pointer meanwhile gets between.
void clickOn(HWND window, int x, int y, bool right = false, int times = 1) {
    POINT point{x, y};
    ClientToScreen(window, &point);
    const auto scaled = [](LONG at, int size) {
        return static_cast<LONG>(static_cast<LONGLONG>(at) * 65536 / GetSystemMetrics(size)) + 1;
    };
    std::vector<INPUT> inputs;
    for (int i = 0; i < times; ++i) {
        for (const DWORD button : {right ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_LEFTDOWN,
                                   right ? MOUSEEVENTF_RIGHTUP : MOUSEEVENTF_LEFTUP}) {
            INPUT input{};
            input.type = INPUT_MOUSE;
            input.mi.dx = scaled(point.x, SM_CXSCREEN);
            input.mi.dy = scaled(point.y, SM_CYSCREEN);
            input.mi.dwFlags = static_cast<DWORD>(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE) | button;
            inputs.push_back(input);
        }
    }
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

GUITHREADINFO threadInfo(HWND window) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
    return info;
}

// A rectangle that a control of another process answers with.
RECT askRectangle(HWND window, UINT message, WPARAM word, RECT rectangle) {
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    const std::unique_ptr<void, decltype(&CloseHandle)> process(
        OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, processId),
        &CloseHandle);
    void* remote = VirtualAllocEx(process.get(), nullptr, sizeof rectangle,
                                  MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    WriteProcessMemory(process.get(), remote, &rectangle, sizeof rectangle, nullptr);
    SendMessageW(window, message, word, reinterpret_cast<LPARAM>(remote));
    ReadProcessMemory(process.get(), remote, &rectangle, sizeof rectangle, nullptr);
    VirtualFreeEx(process.get(), remote, 0, MEM_RELEASE);
    return rectangle;
}

HWND childNumbered(HWND parent, int id) {
    struct Search {
        int id;
        HWND found;
    } search{id, nullptr};
    EnumChildWindows(
        parent,
        [](HWND child, LPARAM parameter) -> BOOL {
            auto& s = *reinterpret_cast<Search*>(parameter);
            if (GetDlgCtrlID(child) == s.id)
                s.found = child;
            return s.found == nullptr;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::string pixelsOf(const RECT& place) {
    const int width = static_cast<int>(place.right - place.left);
    const int height = static_cast<int>(place.bottom - place.top);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ old = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, screen, static_cast<int>(place.left),
           static_cast<int>(place.top), SRCCOPY);
    GdiFlush();
    const std::size_t size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
    std::string pixels(static_cast<const char*>(bits), size);
    for (std::size_t at = 3; at < size; at += 4)
        pixels[at] = '\xFF'; // what the screen leaves there is no transparency
    SelectObject(memory, old);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return pixels;
}

void writeBitmap(const std::filesystem::path& file, const RECT& place, const std::string& pixels) {
    BITMAPFILEHEADER head{};
    head.bfType = 0x4D42;
    head.bfOffBits = sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER);
    head.bfSize = head.bfOffBits + static_cast<DWORD>(pixels.size());
    BITMAPINFOHEADER info{};
    info.biSize = sizeof info;
    info.biWidth = place.right - place.left;
    info.biHeight = place.bottom - place.top;
    info.biPlanes = 1;
    info.biBitCount = 32;
    std::ofstream out(file, std::ios::binary);
    out.write(reinterpret_cast<const char*>(&head), sizeof head);
    out.write(reinterpret_cast<const char*>(&info), sizeof info);
    out << pixels;
}

std::size_t coloursOf(const std::string& pixels) {
    std::set<std::uint32_t> colours;
    for (std::size_t at = 0; at + 4 <= pixels.size(); at += 4) {
        std::uint32_t colour = 0;
        std::memcpy(&colour, pixels.data() + at, 4);
        colours.insert(colour & 0xFFFFFF);
    }
    return colours.size();
}

// Pixels beside the usual place, so that two clicks one after the other are never a double click.
int elsewhere() {
    static bool aside = false;
    aside = !aside;
    return aside ? GetSystemMetrics(SM_CXDOUBLECLK) + 2 : 0;
}

int redness(const RECT& place) {
    const std::string pixels = pixelsOf(place);
    int most = 0;
    for (std::size_t at = 0; at + 4 <= pixels.size(); at += 4)
        most = std::max(most, static_cast<unsigned char>(pixels[at + 2]) -
                                  static_cast<unsigned char>(pixels[at + 1]));
    return most;
}

std::filesystem::path pictureFolder() {
    const std::filesystem::path folder = binFolder().parent_path() / L"pictures";
    std::filesystem::create_directories(folder);
    return folder;
}

void pictureOfTheScreen(const std::string& name) {
    const RECT screen{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
    writeBitmap(pictureFolder() / (name + "-" + (test ? test->name() : "") + ".bmp"), screen,
                pixelsOf(screen));
}

void sendKey(WORD virtualKey, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = virtualKey;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    SendInput(1, &input, sizeof input);
}

} // namespace

void pressKey(WORD virtualKey) {
    sendKey(virtualKey, 0);
}

void releaseKey(WORD virtualKey) {
    sendKey(virtualKey, KEYEVENTF_KEYUP);
}

QuartinoProcess::QuartinoProcess(const ProgramFolder& folder, wchar_t fileMenu) : program_(folder) {
    SetProcessDPIAware(); // places on the screen are the real ones
    main_ = program_.mainWindow();
    table_ = FindWindowExW(main_, nullptr, WC_LISTVIEWW, nullptr);
    SetForegroundWindow(main_);
    waitForKeys(main_);
    // A menu that opened shows that the window manager, too, knows who has the focus.
    openMenu(fileMenu);
    ui::typeKey(VK_ESCAPE);
    ui::typeKey(VK_ESCAPE);
    waitForNoPopup();
    waitForKeys(main_);
}

// --- windows
// --------------------------------------------------------------------------------------

void QuartinoProcess::waitForKeys(HWND window) const {
    waitFor("the keys to go to " + toAnsi(ui::textOf(window)), [&] {
        const HWND focused = threadInfo(main_).hwndFocus;
        return GetForegroundWindow() == window && focused &&
               GetAncestor(focused, GA_ROOT) == window;
    });
}

HWND QuartinoProcess::dialog(const std::wstring& title) {
    const HWND window = program_.dialog(title);
    waitForKeys(window);
    return window;
}

HWND QuartinoProcess::fileDialog() {
    HWND found = nullptr;
    waitFor("a file dialog", [&] {
        for (const HWND window : program_.windows())
            if (ui::isFileDialog(window))
                found = window;
        return found != nullptr;
    });
    waitForKeys(found);
    return found;
}

HWND QuartinoProcess::messageBox() {
    const HWND box = program_.messageBox();
    waitForKeys(box);
    return box;
}

HWND QuartinoProcess::ownedBy(HWND owner) {
    HWND found = nullptr;
    waitFor("a window of the system", [&] {
        for (const HWND window : program_.windows())
            if (GetWindow(window, GW_OWNER) == owner && !ui::isMessageBox(window))
                found = window;
        return found != nullptr;
    });
    waitForKeys(found);
    return found;
}

void QuartinoProcess::waitUntilGone(HWND window) {
    waitFor("a window to go", [&] { return !IsWindow(window) || !IsWindowVisible(window); });
}

bool QuartinoProcess::onlyShows(std::vector<HWND> expected) const {
    std::vector<HWND> shown = program_.windows();
    std::sort(expected.begin(), expected.end());
    std::sort(shown.begin(), shown.end());
    return shown == expected;
}

// --- controls
// -------------------------------------------------------------------------------------

HWND QuartinoProcess::control(HWND dialog, int id) {
    const HWND found = childNumbered(dialog, id);
    if (!found)
        throw ui::WaitFailed("no control " + std::to_string(id));
    return found;
}

std::wstring QuartinoProcess::text(HWND dialog, int id) {
    return ui::textOf(control(dialog, id));
}

void QuartinoProcess::waitForText(HWND dialog, int id, const std::wstring& shown) {
    const HWND window = control(dialog, id);
    waitFor("a control to show " + toAnsi(shown), [&] { return ui::textOf(window) == shown; });
}

bool QuartinoProcess::checked(HWND dialog, int id) {
    return SendMessageW(control(dialog, id), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

bool QuartinoProcess::enabled(HWND dialog, int id) {
    return IsWindowEnabled(control(dialog, id)) != FALSE;
}

bool QuartinoProcess::visible(HWND dialog, int id) {
    return IsWindowVisible(control(dialog, id)) != FALSE;
}

RECT QuartinoProcess::placeIn(HWND dialog, int id) {
    RECT place{};
    GetWindowRect(control(dialog, id), &place);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

std::wstring QuartinoProcess::messageOf(HWND messageBox) {
    return ui::messageText(messageBox);
}

// --- keyboard
// -------------------------------------------------------------------------------------

HWND QuartinoProcess::focus() const {
    return threadInfo(main_).hwndFocus;
}

void QuartinoProcess::waitForFocus(HWND dialog, int id) const {
    const HWND expected = control(dialog, id);
    waitFor("the focus on control " + std::to_string(id), [&] { return focus() == expected; });
}

void QuartinoProcess::tabTo(HWND dialog, int id) const {
    ui::typeKey(VK_TAB);
    waitForFocus(dialog, id);
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
    waitFor("the focus to move on in " + toAnsi(ui::textOf(dialog)), [&] {
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

void QuartinoProcess::waitForNoPopup() const {
    waitFor("the menu to close", [this] {
        return !openPopup() && !(threadInfo(main_).flags & (GUI_INMENUMODE | GUI_POPUPMENUMODE));
    });
}

void QuartinoProcess::openMenu(wchar_t menuLetter) {
    // The window manager may still be handing the focus over, which closes a menu: then once more.
    constexpr DWORD patience = 3000;
    parkMouse();
    for (DWORD waited = 0; !openPopup(); waited += patience) {
        ui::typeKey(static_cast<WORD>(menuLetter), {VK_MENU});
        try {
            ui::waitFor(
                "an open menu", [this] { return openPopup() != nullptr; }, patience);
        } catch (const ui::WaitFailed&) {
            if (waited >= limit)
                throw;
        }
    }
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
    waitFor("the end of a command", [&] { return commandsDone() != before; });
    waitForKeys(main_);
}

void QuartinoProcess::giveFileName(HWND fileDialog, const std::wstring& path) {
    HWND field = GetDlgItem(fileDialog, fileNameCombo);
    if (!field)
        field = GetDlgItem(fileDialog, fileNameEdit);
    waitFor("the focus on the file name", [&] {
        const HWND now = focus();
        return now && (now == field || IsChild(field, now));
    });
    ui::typeKey(VK_HOME);
    ui::typeKey(VK_END, {VK_SHIFT});
    ui::typeText(path);
    waitFor("the file name in its field", [&] { return ui::textOf(field) == path; });
    ui::typeKey(VK_RETURN);
}

void QuartinoProcess::closeWithEnter(HWND messageBox) const {
    waitForKeys(messageBox);
    ui::typeKey(VK_RETURN);
    waitUntilGone(messageBox);
}

// --- mouse
// ----------------------------------------------------------------------------------------

void QuartinoProcess::clickAt(HWND window, int x, int y) {
    clickOn(window, x, y);
}

void QuartinoProcess::parkMouse() {
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 2, GetSystemMetrics(SM_CYSCREEN) - 2);
}

void QuartinoProcess::click(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    clickOn(window, static_cast<int>(client.right) / 2 + elsewhere(),
            static_cast<int>(client.bottom) / 2);
}

void QuartinoProcess::clickCell(int row, int column, bool right, int times) const {
    RECT line =
        askRectangle(table_, LVM_GETITEMRECT, static_cast<WPARAM>(row), RECT{LVIR_BOUNDS, 0, 0, 0});
    LONG left = line.left;
    for (int i = 0; i < column; ++i)
        left +=
            static_cast<LONG>(SendMessageW(table_, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(i), 0));
    clickOn(table_, static_cast<int>(left) + 10 + elsewhere(),
            static_cast<int>(line.top + line.bottom) / 2, right, times);
}

void QuartinoProcess::clickHeader(int column, bool right) const {
    const auto header = reinterpret_cast<HWND>(SendMessageW(table_, LVM_GETHEADER, 0, 0));
    const RECT item = askRectangle(header, HDM_GETITEMRECT, static_cast<WPARAM>(column), {});
    clickOn(header, static_cast<int>(item.left + item.right) / 2 + elsewhere(),
            static_cast<int>(item.top + item.bottom) / 2, right);
}

// --- the table
// ------------------------------------------------------------------------------------

std::vector<std::wstring> QuartinoProcess::column(int column) const {
    std::vector<std::wstring> texts;
    for (int room = 0; room < ui::rowCount(table_) && !cell(room, idColumn).empty(); ++room)
        texts.push_back(cell(room, column));
    return texts;
}

int QuartinoProcess::rednessOf(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return redness(place);
}

int QuartinoProcess::rednessOfRow(int row) const {
    RECT line =
        askRectangle(table_, LVM_GETITEMRECT, static_cast<WPARAM>(row), RECT{LVIR_BOUNDS, 0, 0, 0});
    MapWindowPoints(table_, nullptr, reinterpret_cast<POINT*>(&line), 2);
    return redness(line);
}

std::size_t QuartinoProcess::picture(HWND window, const std::string& name) const {
    const std::filesystem::path folder = pictureFolder();
    RECT place{};
    GetWindowRect(window, &place);
    std::string before, now;
    int alike = 0;
    std::size_t colours = 0;
    waitFor("a quiet picture", [&] {
        RECT unpainted{};
        now = pixelsOf(place);
        alike = now == before && !GetUpdateRect(window, &unpainted, FALSE) ? alike + 1 : 0;
        before = now;
        if (alike < 5)
            return false;
        // A window that shows but was not painted yet is one plain area.
        colours = coloursOf(now);
        return colours > 4;
    });
    writeBitmap(folder / (name + ".bmp"), place, now);
    return colours;
}

} // namespace kalvrooms::testing
