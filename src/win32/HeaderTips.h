#pragma once
// The whole text of a table's header cell, shown at the mouse where the cell is too narrow for it.

#include <windows.h>

#include <string>

namespace kalvrooms::Gui {

class HeaderTips {
  public:
    HeaderTips() = default;
    ~HeaderTips();
    HeaderTips(const HeaderTips&) = delete;
    HeaderTips& operator=(const HeaderTips&) = delete;

    // The mouse is over the cell of a column: a message of the header about it.
    void MouseOver(HWND header, int column, const std::wstring& text, UINT message, WPARAM word,
                   LPARAM data);

  private:
    void create(HWND header);

    HWND tips_ = nullptr;
    // What the tip was made for last.
    RECT cell_{};
};

} // namespace kalvrooms::Gui
