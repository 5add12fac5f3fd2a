#include "win32/Win32Dialog.h"

#include "win32/DialogTemplate.h"
#include "win32/Handles.h"
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

// The form follows a change of DPI itself, because code may have moved its controls. (Asked for by
// name: Wine does not have the function.)
void followDpiOurselves(HWND dialog) {
    static const auto call = FunctionIn<decltype(&SetDialogDpiChangeBehavior)>(
        GetModuleHandleW(L"user32.dll"), "SetDialogDpiChangeBehavior");
    if (call)
        call(dialog, DDC_DISABLE_ALL, DDC_DISABLE_ALL);
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
        HWND child = GetDlgItem(window, control.id);
        for (const HWND page : pages_)
            child = child ? child : GetDlgItem(page, control.id);
        AttachControl(control, child);
        if (control.kind == ControlKind::Tabs)
            tabs_ = dynamic_cast<Win32TabStrip*>(ControlById(control.id));
    }
    if (tabs_)
        for (const HWND page : pages_)
            tabs_->AddPage(page);
    centreDropDowns();
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
    if (message == WM_SETCURSOR && dialog.Desktop().ShowPointer())
        return TRUE;
    if (dialog.Reflect(window, message, word, data, result))
        return result;
    return CallOwnProcedure(window, message, word, data);
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
