#include "win32/Win32TabStrip.h"

#include "win32/Win32Form.h"

#include <stdexcept>

namespace kalvrooms::Gui {

int Win32TabStrip::Tab() const {
    return Window() ? static_cast<int>(SendMessageW(Window(), TCM_GETCURSEL, 0, 0)) : 0;
}

void Win32TabStrip::Tab(int index) {
    if (index < 0 || index >= static_cast<int>(pages_.size()))
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    if (!Window())
        return;
    SendMessageW(Window(), TCM_SETCURSEL, static_cast<WPARAM>(index), 0);
    showPage();
}

std::wstring Win32TabStrip::TabCaption(int index) const {
    wchar_t text[256] = L"";
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = text;
    item.cchTextMax = static_cast<int>(std::size(text));
    if (Window())
        SendMessageW(Window(), TCM_GETITEMW, static_cast<WPARAM>(index),
                     reinterpret_cast<LPARAM>(&item));
    return item.pszText;
}

void Win32TabStrip::TabCaption(int index, const std::wstring& caption) {
    if (!Window())
        return;
    std::wstring text = caption;
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = text.data();
    SendMessageW(Window(), TCM_SETITEMW, static_cast<WPARAM>(index),
                 reinterpret_cast<LPARAM>(&item));
    fitPages();
}

bool Win32TabStrip::OnNotify(NMHDR& header, LRESULT&) {
    if (header.code != TCN_SELCHANGE)
        return false;
    showPage();
    return true;
}

void Win32TabStrip::Rescale(UINT from, UINT to) {
    Win32Control::Rescale(from, to);
    fitPages();
}

void Win32TabStrip::AddPage(HWND page) {
    wchar_t empty[] = L"";
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = empty;
    SendMessageW(Window(), TCM_INSERTITEMW, pages_.size(), reinterpret_cast<LPARAM>(&item));
    // Behind the tabs and the pages before it in tab order.
    SetWindowPos(page, pages_.empty() ? Window() : pages_.back(), 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    pages_.push_back(page);
    fitPages();
    showPage();
}

void Win32TabStrip::Step(int distance) {
    const int count = static_cast<int>(pages_.size());
    if (count > 0)
        Tab((Tab() + distance + count) % count);
}

void Win32TabStrip::showPage() {
    const int current = Tab();
    for (int index = 0; index < static_cast<int>(pages_.size()); ++index) {
        const HWND page = pages_[static_cast<std::size_t>(index)];
        if (index == current)
            continue;
        if (IsChild(page, GetFocus()))
            ::SetFocus(Window());
        ShowWindow(page, SW_HIDE);
    }
    if (current >= 0)
        ShowWindow(pages_[static_cast<std::size_t>(current)], SW_SHOWNA);
}

void Win32TabStrip::fitPages() {
    RECT area{};
    GetClientRect(Window(), &area);
    SendMessageW(Window(), TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
    MapWindowPoints(Window(), GetParent(Window()), reinterpret_cast<POINT*>(&area), 2);
    for (const HWND page : pages_)
        SetWindowPos(page, nullptr, area.left, area.top, area.right - area.left,
                     area.bottom - area.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace kalvrooms::Gui
