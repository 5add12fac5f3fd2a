#include "win32/Win32Fields.h"

#include "win32/Win32Form.h"

#include <algorithm>

namespace kalvrooms::Gui {

// --- Text field -----------------------------------------------------------------------------

void Win32TextField::Select(int start, int length) {
    if (Window())
        SendMessageW(Window(), EM_SETSEL, static_cast<WPARAM>(start),
                     static_cast<LPARAM>(start) + length);
}

LRESULT Win32TextField::HandleMessage(UINT message, WPARAM word, LPARAM data) {
    switch (message) {
    case WM_CHAR:
        if (KeyPress) {
            auto key = static_cast<std::int16_t>(word);
            if (!Owner().Raise([handler = KeyPress, &key] { handler(key); }) || key == 0)
                return 0;
            word = static_cast<std::uint16_t>(key);
        }
        break;
    case WM_LBUTTONDOWN:
        // The click that enters a field must not undo the selection that entering makes.
        if (GotFocus && GetFocus() != Window()) {
            ::SetFocus(Window());
            return 0;
        }
        break;
    default:
        break;
    }
    return Win32Control::HandleMessage(message, word, data);
}

// --- Drop-down ------------------------------------------------------------------------------

std::wstring Win32DropDown::Text() const {
    if (!Window())
        return {};
    const LRESULT selected = SendMessageW(Window(), CB_GETCURSEL, 0, 0);
    if (selected == CB_ERR)
        return {};
    const auto index = static_cast<std::size_t>(selected);
    return index < items_.size() ? items_[index] : foreign_.value_or(L"");
}

void Win32DropDown::Text(const std::wstring& text) {
    if (!Window())
        return;
    if (foreign_) {
        SendMessageW(Window(), CB_DELETESTRING, items_.size(), 0);
        foreign_.reset();
    }
    const auto found = std::find(items_.begin(), items_.end(), text);
    auto selected = static_cast<WPARAM>(found - items_.begin());
    if (found == items_.end()) {
        if (text.empty()) {
            selected = static_cast<WPARAM>(-1);
        } else {
            foreign_ = text;
            SendMessageW(Window(), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Shown(text).c_str()));
        }
    }
    SendMessageW(Window(), CB_SETCURSEL, selected, 0);
}

void Win32DropDown::AddItem(const std::wstring& text) {
    if (!Window())
        return;
    SendMessageW(Window(), CB_INSERTSTRING, items_.size(),
                 reinterpret_cast<LPARAM>(Shown(text).c_str()));
    items_.push_back(text);
}

std::wstring Win32DropDown::Item(int index) const {
    return items_.at(static_cast<std::size_t>(index));
}

bool Win32DropDown::OnCommand(WORD code) {
    if (code != CBN_DROPDOWN)
        return false;
    // The list gets its height when it opens: fitting it on every change would cost more than all
    // the rest of making the control.
    constexpr LRESULT mostRows = 15;
    const LRESULT rows =
        std::clamp<LRESULT>(SendMessageW(Window(), CB_GETCOUNT, 0, 0), 1, mostRows);
    const LRESULT rowHeight = SendMessageW(Window(), CB_GETITEMHEIGHT, 0, 0);
    const Box closed = Bounds();
    const int frame = 2 * GetSystemMetrics(SM_CYEDGE);
    SetWindowPos(Window(), nullptr, 0, 0, closed.width,
                 closed.height + static_cast<int>(rows * rowHeight) + frame,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    return true;
}

} // namespace kalvrooms::Gui
