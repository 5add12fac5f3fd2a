#include "win32/Win32Control.h"

#include "win32/Dpi.h"
#include "win32/MessageHook.h"
#include "win32/Win32Desktop.h"
#include "win32/Win32Form.h"

#include <algorithm>
#include <cstdlib>

namespace kalvrooms::Gui {
namespace {

bool highContrast() {
    HIGHCONTRASTW state{};
    state.cbSize = sizeof state;
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof state, &state, 0) &&
           (state.dwFlags & HCF_HIGHCONTRASTON);
}

int brightness(COLORREF colour) {
    return (GetRValue(colour) * 299 + GetGValue(colour) * 587 + GetBValue(colour) * 114) / 1000;
}

} // namespace

std::wstring Shown(std::wstring text) {
    std::replace(text.begin(), text.end(), L'\0', L' ');
    return text;
}

COLORREF LegibleColour(Colour colour, COLORREF background, int themeText) {
    const auto wanted = static_cast<COLORREF>(colour) & 0xFFFFFF;
    constexpr int visibleDifference = 40;
    if (highContrast() && std::abs(brightness(wanted) - brightness(background)) < visibleDifference)
        return GetSysColor(themeText);
    return wanted;
}

Win32Control::~Win32Control() {
    if (window_)
        UnhookMessages(window_);
}

void Win32Control::Attach(HWND window) {
    window_ = window;
    HookMessages(window, procedure, this);
}

LRESULT Win32Control::procedure(HWND window, UINT message, WPARAM word, LPARAM data,
                                void* reference) {
    auto& self = *static_cast<Win32Control*>(reference);
    if (message == WM_NCDESTROY) {
        self.window_ = nullptr;
        return CallOwnProcedure(window, message, word, data);
    }
    return self.HandleMessage(message, word, data);
}

LRESULT Win32Control::HandleMessage(UINT message, WPARAM word, LPARAM data) {
    if (message == WM_SETCURSOR && form_.Desktop().ShowPointer())
        return TRUE;
    const LRESULT result = CallOwnProcedure(window_, message, word, data);
    if (message == WM_SETFOCUS && window_)
        form_.FocusArrived(*this);
    return result;
}

bool Win32Control::OnCommand(WORD) {
    return false;
}
bool Win32Control::OnNotify(NMHDR&, LRESULT&) {
    return false;
}
bool Win32Control::OnDrawItem(const DRAWITEMSTRUCT&) {
    return false;
}

HBRUSH Win32Control::OnColour(HDC context, HBRUSH standard) {
    if (backColour_) {
        SetBkColor(context, static_cast<COLORREF>(*backColour_));
        if (!backBrush_)
            backBrush_.reset(CreateSolidBrush(static_cast<COLORREF>(*backColour_)));
    }
    if (foreColour_) {
        const COLORREF background =
            backColour_ ? static_cast<COLORREF>(*backColour_) : GetSysColor(COLOR_3DFACE);
        SetTextColor(context, LegibleColour(*foreColour_, background, COLOR_BTNTEXT));
    }
    return backColour_ ? backBrush_.get() : standard;
}

std::wstring Win32Control::Text() const {
    if (!window_)
        return {};
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window_)) + 1, L'\0');
    const int length = GetWindowTextW(window_, text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(length));
    return text;
}

void Win32Control::Text(const std::wstring& text) {
    if (window_)
        SetWindowTextW(window_, Shown(text).c_str());
}

bool Win32Control::Enabled() const {
    return window_ && !(GetWindowLongPtrW(window_, GWL_STYLE) & WS_DISABLED);
}

void Win32Control::Enabled(bool enabled) {
    if (!window_)
        return;
    if (!enabled && GetFocus() == window_)
        form_.FocusAway(*this);
    EnableWindow(window_, enabled);
}

bool Win32Control::Visible() const {
    return window_ && (GetWindowLongPtrW(window_, GWL_STYLE) & WS_VISIBLE);
}

void Win32Control::Visible(bool visible) {
    if (!window_)
        return;
    if (!visible && GetFocus() == window_)
        form_.FocusAway(*this);
    ShowWindow(window_, visible ? SW_SHOWNA : SW_HIDE);
}

void Win32Control::SetFocus() {
    if (window_)
        form_.MoveFocus(*this);
}

Colour Win32Control::ForeColour() const {
    return foreColour_.value_or(static_cast<Colour>(GetSysColor(COLOR_BTNTEXT)));
}

void Win32Control::ForeColour(Colour colour) {
    foreColour_ = colour;
    if (window_)
        InvalidateRect(window_, nullptr, TRUE);
}

Colour Win32Control::BackColour() const {
    return backColour_.value_or(static_cast<Colour>(GetSysColor(COLOR_3DFACE)));
}

void Win32Control::BackColour(Colour colour) {
    backColour_ = colour;
    backBrush_.reset();
    if (window_)
        InvalidateRect(window_, nullptr, TRUE);
}

Win32Control::Box Win32Control::Bounds() const {
    RECT rectangle{};
    GetWindowRect(window_, &rectangle);
    MapWindowPoints(HWND_DESKTOP, form_.Window(), reinterpret_cast<POINT*>(&rectangle), 2);
    return {static_cast<int>(rectangle.left), static_cast<int>(rectangle.top),
            static_cast<int>(rectangle.right - rectangle.left),
            static_cast<int>(rectangle.bottom - rectangle.top)};
}

void Win32Control::Bounds(const Box& box) {
    // The parent may be a tab page.
    POINT corner{box.left, box.top};
    MapWindowPoints(form_.Window(), GetParent(window_), &corner, 1);
    SetWindowPos(window_, nullptr, corner.x, corner.y, box.width, box.height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

UINT Win32Control::DpiOf(Edge) const {
    return form_.Dpi();
}

int& Win32Control::pick(Box& box, Edge edge) {
    switch (edge) {
    case Edge::Left:
        return box.left;
    case Edge::Top:
        return box.top;
    case Edge::Width:
        return box.width;
    case Edge::Height:
        break;
    }
    return box.height;
}

Twips Win32Control::place(Edge edge) const {
    const auto& stored = stored_[static_cast<std::size_t>(edge)];
    if (!window_)
        return stored ? stored->value : 0;
    Box box = Bounds();
    const int pixels = pick(box, edge);
    if (stored && stored->pixels == pixels)
        return stored->value;
    return ToTwips(pixels, DpiOf(edge));
}

void Win32Control::place(Edge edge, Twips value) {
    if (!window_)
        return;
    Box box = Bounds();
    const int pixels = ToPixels(value, DpiOf(edge));
    pick(box, edge) = pixels;
    // Stored first: moving the window may raise events that ask for it.
    stored_[static_cast<std::size_t>(edge)] = Stored{value, pixels};
    Bounds(box);
}

void Win32Control::PlaceAgain() {
    for (const Edge edge : {Edge::Left, Edge::Top, Edge::Width, Edge::Height})
        if (const auto stored = stored_[static_cast<std::size_t>(edge)])
            place(edge, stored->value);
}

void Win32Control::Rescale(UINT from, UINT to) {
    if (!window_)
        return;
    const Box old = Bounds();
    const auto scale = [&](int pixels) {
        return MulDiv(pixels, static_cast<int>(to), static_cast<int>(from));
    };
    // Edges are scaled, not sizes, so that what met before still meets.
    Box box{scale(old.left), scale(old.top), 0, 0};
    box.width = scale(old.left + old.width) - box.left;
    box.height = scale(old.top + old.height) - box.top;
    for (const Edge edge : {Edge::Left, Edge::Top, Edge::Width, Edge::Height}) {
        auto& stored = stored_[static_cast<std::size_t>(edge)];
        Box before = old;
        if (!stored || stored->pixels != pick(before, edge)) {
            stored.reset();
            continue;
        }
        pick(box, edge) = ToPixels(stored->value, to);
        stored->pixels = pick(box, edge);
    }
    Bounds(box);
}

} // namespace kalvrooms::Gui
