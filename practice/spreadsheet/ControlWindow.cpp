#include "practice/spreadsheet/ControlWindow.h"

#include "practice/spreadsheet/SheetClass.h"
#include "practice/workbook/SheetError.h"

namespace kalvrooms::practice::spreadsheet {

namespace {

constexpr UINT_PTR unusedTimer = 1;
constexpr UINT_PTR nobodyCameTimer = 2;
// Long enough for the answer of the last call to leave the process.
constexpr UINT leaveDelay = 30;
// A client that started an instance asks for its first object well within this time.
constexpr UINT nobodyCameDelay = 60000;

} // namespace

ControlWindow::ControlWindow(SheetProcess& process) : process_(process) {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = &ControlWindow::Receive;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = ControlWindowClass;
    RegisterClassExW(&windowClass);
    window_ = CreateWindowExW(0, ControlWindowClass, L"", WS_OVERLAPPED, 0, 0, 0, 0, nullptr,
                              nullptr, windowClass.hInstance, nullptr);
    if (!window_)
        throw HostError(L"The window cannot be created.");
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    process_.unused = [this] { SetTimer(window_, unusedTimer, leaveDelay, nullptr); };
    SetTimer(window_, nobodyCameTimer, nobodyCameDelay, nullptr);
}

ControlWindow::~ControlWindow() {
    process_.unused = nullptr;
    SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
    DestroyWindow(window_);
}

void ControlWindow::Run() {
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
}

LRESULT CALLBACK ControlWindow::Receive(HWND window, UINT message, WPARAM first, LPARAM second) {
    auto* self = reinterpret_cast<ControlWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return self ? self->Handle(message, first, second)
                : DefWindowProcW(window, message, first, second);
}

LRESULT ControlWindow::Handle(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
    case WM_TIMER:
        KillTimer(window_, first);
        if (process_.MayEnd())
            PostQuitMessage(0);
        return 0;
    case AnswerMessage:
        process_.application.AnswerDialog(first == 0   ? Answer::Yes
                                          : first == 1 ? Answer::No
                                                       : Answer::Cancel);
        return 0;
    case DialogMessage:
        process_.application.OpenDialog(L"The user is in the middle of something.");
        return 0;
    case AskDialogMessage:
        return process_.application.dialog().empty() ? 0 : 1;
    case AskCallsMessage:
        return process_.Calls();
    case AskAlertsMessage:
        return process_.application.displayAlerts ? 1 : 0;
    case AskSecurityMessage:
        return process_.application.automationSecurity;
    case LeaveMessage:
    case WM_CLOSE:
        LeaveByHand();
        return 0;
    default:
        return DefWindowProcW(window_, message, first, second);
    }
}

void ControlWindow::LeaveByHand() {
    process_.application.AnswerDialog(Answer::No);
    process_.application.displayAlerts = false;
    process_.application.CloseAll();
    process_.Quit();
    // Clients that are left have to cope.
    PostQuitMessage(0);
}

} // namespace kalvrooms::practice::spreadsheet
