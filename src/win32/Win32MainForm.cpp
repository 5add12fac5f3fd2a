#include "win32/Win32MainForm.h"

#include "win32/ControlIds.h"
#include "win32/Win32Desktop.h"
#include "win32/Win32Grid.h"

#include <stdexcept>

namespace kalvrooms::Gui {
namespace {

constexpr wchar_t className[] = L"QuartinoMain";
// The size that the window has before anybody chose one: wide enough for the headers.
constexpr Twips designedWidth = 13200;
constexpr Twips designedHeight = 8100;
// Sent once a second: while a call across processes waits, the window gets what is sent to it from
// another thread, but neither what is posted nor its timers.
constexpr UINT serveMessage = WM_APP + 100;
constexpr DWORD servingPeriod = 1000; // milliseconds

void CALLBACK sendServe(PTP_CALLBACK_INSTANCE, void* window, PTP_TIMER) {
    SendNotifyMessageW(static_cast<HWND>(window), serveMessage, 0, 0);
}

void registerClass() {
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    if (GetClassInfoExW(instance, className, &description))
        return;
    description = {};
    description.cbSize = sizeof description;
    description.lpfnWndProc = DefWindowProcW;
    description.hInstance = instance;
    description.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(IDI_QUARTINO));
    if (!description.hIcon)
        description.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_3DFACE + 1));
    description.lpszClassName = className;
    RegisterClassExW(&description);
}

} // namespace

void EndOfTimer::operator()(PTP_TIMER timer) const {
    SetThreadpoolTimer(timer, nullptr, 0, 0);
    WaitForThreadpoolTimerCallbacks(timer, TRUE);
    CloseThreadpoolTimer(timer);
}

Win32MainForm::Win32MainForm(Win32Desktop& desktop, const FormEntry& entry)
    : Win32Form(desktop, entry) {
    registerClass();
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    const HWND window =
        CreateWindowExW(0, className, L"", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT,
                        CW_USEDEFAULT, 800, 600, nullptr, nullptr, instance, nullptr);
    if (!window)
        throw std::runtime_error("the main window cannot be created");
    Attach(window);
    for (const ControlEntry& control : entry.controls) {
        HWND child = nullptr;
        if (control.kind == ControlKind::Grid)
            child = Win32Grid::Create(window, control.id);
        else
            child = CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 0, 0, window,
                                    reinterpret_cast<HMENU>(static_cast<INT_PTR>(control.id)),
                                    instance, nullptr);
        AttachControl(control, child);
    }
    ApplyFont();
    grid_ = dynamic_cast<Win32Grid*>(ControlById(ID_MAIN_GRDROOMS));
    grid_->FitRowHeight();
    Width(designedWidth);
    Height(designedHeight);
    timer_.reset(CreateThreadpoolTimer(sendServe, window, nullptr));
    FILETIME now{};
    if (timer_)
        SetThreadpoolTimer(timer_.get(), &now, servingPeriod, 0);
}

LRESULT Win32MainForm::HandleMessage(UINT message, WPARAM word, LPARAM data) {
    switch (message) {
    case WM_SETTEXT:
        // What a screen reader calls the table: the text of the unseen label before it.
        SetWindowTextW(GetDlgItem(Window(), ID_MAIN_LABEL1), reinterpret_cast<LPCWSTR>(data));
        break;
    case WM_SETFOCUS:
        FocusFirst();
        return 0;
    case serveMessage:
        serveInput();
        return 0;
    default:
        break;
    }
    return Win32Form::HandleMessage(message, word, data);
}

void Win32MainForm::serveInput() {
    // A menu or a message that is open serves the input itself.
    if (serving_ || !ServesInput || !ServesInput())
        return;
    serving_ = true;
    Desktop().ServeMessages();
    serving_ = false;
}

void Win32MainForm::AfterEvent() {
    if (grid_)
        grid_->Sync();
}

void Win32MainForm::FocusFirst() {
    if (grid_ && grid_->Window())
        ::SetFocus(grid_->Window());
}

} // namespace kalvrooms::Gui
