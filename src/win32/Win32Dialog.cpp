#include "win32/Win32Dialog.h"

#include "win32/DialogTemplate.h"
#include "win32/Dpi.h"
#include "win32/MessageHook.h"
#include "win32/Win32Desktop.h"
#include "win32/Win32TabStrip.h"

#include <uxtheme.h>

#include <algorithm>
#include <stdexcept>

namespace kalvrooms::Gui {
namespace {

// Everything is handled before the dialog procedure; the focus is set when the form is shown.
INT_PTR CALLBACK nothingLeft(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

// The form follows a change of DPI itself, because code may have moved its controls.
void followDpiOurselves(HWND dialog) {
    using Call = BOOL(WINAPI*)(HWND, int, int);
    static const auto call =
        OptionalFunction<Call>(GetModuleHandleW(L"user32.dll"), "SetDialogDpiChangeBehavior");
    constexpr int disableAll = 1;
    if (call)
        call(dialog, disableAll, disableAll);
}

HWND create(int id, HWND parent) {
    const std::vector<std::byte> bytes = LoadDialogTemplate(id);
    return CreateDialogIndirectParamW(GetModuleHandleW(nullptr),
                                      reinterpret_cast<const DLGTEMPLATE*>(bytes.data()), parent,
                                      nothingLeft, 0);
}

} // namespace

Win32Dialog::Win32Dialog(Win32Desktop& desktop, const FormEntry& entry)
    : Win32Form(desktop, entry) {
    const Win32Form* owner = desktop.ActiveForm(this);
    const HWND window = create(entry.dialog, owner ? owner->Window() : nullptr);
    if (!window)
        throw std::runtime_error("a dialog cannot be created");
    followDpiOurselves(window);
    Attach(window);
    addPages();
    for (const ControlEntry& control : entry.controls) {
        const HWND parent =
            control.page < 0 ? window : pages_.at(static_cast<std::size_t>(control.page));
        AttachControl(control, GetDlgItem(parent, control.id));
        if (control.kind == ControlKind::Tabs)
            tabs_ = dynamic_cast<Win32TabStrip*>(ControlById(control.id));
    }
    if (tabs_) {
        for (const HWND page : pages_)
            tabs_->AddPage(page);
    }
    centreDropDowns();
    if (entry.dialog == IDD_REPORT)
        stackReportRows();
}

Win32Dialog::~Win32Dialog() = default;

void Win32Dialog::addPages() {
    for (const int id : Entry().pages) {
        const HWND page = create(id, Window());
        if (!page)
            throw std::runtime_error("a tab page cannot be created");
        followDpiOurselves(page);
        EnableThemeDialogTexture(page, ETDT_ENABLETAB);
        HookMessages(page, pageProcedure, this);
        pages_.push_back(page);
    }
}

LRESULT Win32Dialog::pageProcedure(HWND window, UINT message, WPARAM word, LPARAM data,
                                   void* reference) {
    auto& dialog = *static_cast<Win32Dialog*>(reference);
    LRESULT result = 0;
    switch (message) {
    case WM_SETCURSOR:
        if (dialog.Desktop().ShowPointer())
            return TRUE;
        break;
    default:
        if (dialog.Reflect(window, message, word, data, result))
            return result;
        break;
    }
    return CallOwnProcedure(window, message, word, data);
}

// The report's rows stand a quarter of an inch apart, whatever the font is; what follows them
// stands below the last one.
void Win32Dialog::stackReportRows() {
    constexpr Twips pitch = 360;
    constexpr Twips gap = 150;
    static constexpr struct {
        int number, text;
    } rows[] = {{ID_REPORT_LBLNUM1, ID_REPORT_LBLTEXT1},
                {ID_REPORT_LBLNUM2, ID_REPORT_LBLTEXT2},
                {ID_REPORT_LBLNUM3, ID_REPORT_LBLTEXT3}};
    const auto below = [](const Win32Control& control) { return control.Top() + control.Height(); };
    Twips top = below(*ControlById(ID_REPORT_LBLTOP)) + gap;
    for (const auto& row : rows) {
        for (const int id : {row.number, row.text}) {
            ControlById(id)->Top(top);
            ControlById(id)->Height(pitch);
        }
        top += pitch;
    }
    top += gap;
    const Win32Control* last = nullptr;
    for (const int id : {ID_REPORT_CHKNOREPORT, ID_REPORT_LBLOPTION, ID_REPORT_CMDOK}) {
        Win32Control& control = *ControlById(id);
        control.Top(top);
        top = below(control) + gap;
        last = &control;
    }
    RECT client{};
    GetClientRect(Window(), &client);
    Height(Height() + below(*last) + gap - ToTwips(static_cast<int>(client.bottom), Dpi()));
}

// A drop-down takes its height from the font; the template gives it the row of a text field.
void Win32Dialog::centreDropDowns() {
    RECT field{0, 0, 0, 11}; // in dialog units
    MapDialogRect(Window(), &field);
    for (const ControlEntry& control : Entry().controls) {
        if (control.kind != ControlKind::DropDown)
            continue;
        const HWND dropDown = ControlById(control.id)->Window();
        RECT box{};
        GetWindowRect(dropDown, &box);
        MapWindowPoints(nullptr, GetParent(dropDown), reinterpret_cast<POINT*>(&box), 2);
        const LONG above = (field.bottom - (box.bottom - box.top)) / 2;
        SetWindowPos(dropDown, nullptr, static_cast<int>(box.left),
                     static_cast<int>(box.top + above), 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW);
    }
}

void Win32Dialog::FocusFirst() {
    if (FocusAsked())
        return;
    // Never a tab strip's own tabs first: the first field is what a user fills in.
    HWND first = GetNextDlgTabItem(Window(), nullptr, FALSE);
    if (tabs_ && first == tabs_->Window())
        first = GetNextDlgTabItem(Window(), first, FALSE);
    ::SetFocus(first ? first : Window());
}

void Win32Dialog::Arrange(Win32Form* owner) {
    RECT own{};
    GetWindowRect(Window(), &own);
    const LONG width = own.right - own.left;
    const LONG height = own.bottom - own.top;
    const HWND reference = owner ? owner->Window() : Window();
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(reference, MONITOR_DEFAULTTONEAREST), &monitor);
    const RECT work = monitor.rcWork;
    RECT over = work;
    if (owner && !IsIconic(reference))
        GetWindowRect(reference, &over);
    const auto centred = [](LONG from, LONG to, LONG size, LONG least, LONG most) {
        return std::max(least, std::min(from + (to - from - size) / 2, most - size));
    };
    SetWindowPos(Window(), nullptr,
                 static_cast<int>(centred(over.left, over.right, width, work.left, work.right)),
                 static_cast<int>(centred(over.top, over.bottom, height, work.top, work.bottom)), 0,
                 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

bool Win32Dialog::HandleDialogKeys(MSG& message) {
    if (tabs_ && message.message == WM_KEYDOWN && GetKeyState(VK_CONTROL) < 0) {
        const bool back = GetKeyState(VK_SHIFT) < 0;
        if (message.wParam == VK_TAB || message.wParam == VK_NEXT || message.wParam == VK_PRIOR) {
            tabs_->Step(message.wParam == VK_PRIOR || (message.wParam == VK_TAB && back) ? -1 : 1);
            return true;
        }
    }
    return IsDialogMessageW(Window(), &message) != FALSE;
}

} // namespace kalvrooms::Gui
