#include "win32/HeaderTips.h"

#include "win32/Handles.h"

#include <commctrl.h>

namespace kalvrooms::Gui {
namespace {

bool isCut(HWND header, const std::wstring& text, const RECT& cell) {
    const WindowContext context(header);
    const Selected font(context, reinterpret_cast<HGDIOBJ>(SendMessageW(header, WM_GETFONT, 0, 0)));
    SIZE size{};
    GetTextExtentPoint32W(context, text.c_str(), static_cast<int>(text.size()), &size);
    const LRESULT margin = SendMessageW(header, HDM_GETBITMAPMARGIN, 0, 0);
    return size.cx + 2 * margin > cell.right - cell.left;
}

TTTOOLINFOW toolOf(HWND header) {
    TTTOOLINFOW tool{};
    tool.cbSize = sizeof tool;
    tool.hwnd = header;
    return tool;
}

} // namespace

HeaderTips::~HeaderTips() {
    if (tips_)
        DestroyWindow(tips_);
}

void HeaderTips::create(HWND header) {
    tips_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                            WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0, 0, header, nullptr,
                            nullptr, nullptr);
    TTTOOLINFOW tool = toolOf(header);
    wchar_t nothing[] = L"";
    tool.lpszText = nothing;
    SendMessageW(tips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void HeaderTips::MouseOver(HWND header, int column, const std::wstring& text, UINT message,
                           WPARAM word, LPARAM data) {
    if (!tips_)
        create(header);
    RECT cell{};
    Header_GetItemRect(header, column, &cell);
    if (!EqualRect(&cell, &cell_)) {
        cell_ = cell;
        const std::size_t start = text.find_first_not_of(L' ');
        // Without a text nothing is shown.
        std::wstring tip =
            start != std::wstring::npos && isCut(header, text, cell) ? text.substr(start) : L"";
        TTTOOLINFOW tool = toolOf(header);
        tool.rect = cell;
        tool.lpszText = tip.data();
        SendMessageW(tips_, TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&tool));
        SendMessageW(tips_, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
    }
    MSG relayed{header, message, word, data, 0, {}};
    SendMessageW(tips_, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&relayed));
}

} // namespace kalvrooms::Gui
