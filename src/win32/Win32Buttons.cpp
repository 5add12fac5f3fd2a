#include "win32/Win32Buttons.h"

#include "win32/Dpi.h"
#include "win32/Win32Desktop.h"
#include "win32/Win32Form.h"

#include <uxtheme.h>

#include <vssym32.h>

#include <iterator>

namespace kalvrooms::Gui {

// --- Button ---------------------------------------------------------------------------------

void Win32Button::BackColour(Colour colour) {
    if (Window() && !backColour_) {
        SendMessageW(Window(), BM_SETSTYLE, BS_OWNERDRAW, TRUE);
        // Nobody sees its text; assistive programs take it for its name.
        wchar_t label[256] = L"";
        GetWindowTextW(GetWindow(Window(), GW_HWNDPREV), label, static_cast<int>(std::size(label)));
        SetWindowTextW(Window(), label);
    }
    Win32Control::BackColour(colour);
}

bool Win32Button::OnCommand(WORD code) {
    // A quick second click on a button that is painted here arrives as a double click.
    if (code == BN_CLICKED || (code == BN_DOUBLECLICKED && backColour_)) {
        Owner().Raise(Click);
        return true;
    }
    return false;
}

bool Win32Button::OnDrawItem(const DRAWITEMSTRUCT& item) {
    if (!backColour_)
        return false;
    RECT rectangle = item.rcItem;
    const bool pressed = item.itemState & ODS_SELECTED;
    FillRect(item.hDC, &rectangle, GetSysColorBrush(COLOR_3DFACE));
    if (const HTHEME theme = OpenThemeData(Window(), L"BUTTON")) {
        const int state = item.itemState & ODS_DISABLED ? PBS_DISABLED
                          : pressed                     ? PBS_PRESSED
                                                        : PBS_NORMAL;
        DrawThemeParentBackground(Window(), item.hDC, &rectangle);
        DrawThemeBackground(theme, item.hDC, BP_PUSHBUTTON, state, &rectangle, nullptr);
        CloseThemeData(theme);
        InflateRect(&rectangle, -1, -1);
    } else {
        DrawEdge(item.hDC, &rectangle, pressed ? EDGE_SUNKEN : EDGE_RAISED, BF_RECT | BF_ADJUST);
    }
    const int gap = Scaled(3, Owner().Dpi());
    RECT field = rectangle;
    InflateRect(&field, -gap, -gap);
    SetDCBrushColor(item.hDC, static_cast<COLORREF>(*backColour_));
    FillRect(item.hDC, &field, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    // A line in the theme's text colour, so that the field stands out whatever its colour is.
    FrameRect(item.hDC, &field, GetSysColorBrush(COLOR_BTNTEXT));
    if ((item.itemState & ODS_FOCUS) && !(item.itemState & ODS_NOFOCUSRECT)) {
        RECT focus = rectangle;
        InflateRect(&focus, -1, -1);
        SetTextColor(item.hDC, GetSysColor(COLOR_BTNTEXT));
        SetBkColor(item.hDC, GetSysColor(COLOR_3DFACE));
        DrawFocusRect(item.hDC, &focus);
    }
    return true;
}

// --- Option ---------------------------------------------------------------------------------

bool Win32OptionButton::Value() const {
    return Window() && SendMessageW(Window(), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void Win32OptionButton::Value(bool value) {
    if (!Window())
        return;
    if (!value) {
        Mark(false);
        return;
    }
    Owner().SelectOption(*this);
    const auto click = Click;
    Owner().Desktop().Dispatch(click);
}

void Win32OptionButton::Mark(bool on) {
    if (Window())
        SendMessageW(Window(), BM_SETCHECK, on ? BST_CHECKED : BST_UNCHECKED, 0);
}

void Win32OptionButton::Chosen() {
    Owner().SelectOption(*this);
    Owner().Raise(Click);
}

bool Win32OptionButton::OnCommand(WORD code) {
    // The window system also reports a click when an option that is off gets the focus.
    if (code != BN_CLICKED || entering_)
        return false;
    Chosen();
    return true;
}

LRESULT Win32OptionButton::HandleMessage(UINT message, WPARAM word, LPARAM data) {
    if (message != WM_SETFOCUS)
        return Win32Control::HandleMessage(message, word, data);
    entering_ = true;
    const LRESULT result = Win32Control::HandleMessage(message, word, data);
    entering_ = false;
    return result;
}

// --- Check box ------------------------------------------------------------------------------

bool Win32CheckBox::Value() const {
    return Window() && SendMessageW(Window(), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void Win32CheckBox::Value(bool value) {
    if (Window())
        SendMessageW(Window(), BM_SETCHECK, value ? BST_CHECKED : BST_UNCHECKED, 0);
}

} // namespace kalvrooms::Gui
