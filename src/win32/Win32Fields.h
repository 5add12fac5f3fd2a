#pragma once
// Text fields and lists that drop down.

#include "win32/Win32Control.h"

#include <vector>

namespace kalvrooms::Gui {

class Win32TextField : public TextField, public Win32Control {
  public:
    using Win32Control::Win32Control;
    void Select(int start, int length) override;

  protected:
    LRESULT HandleMessage(UINT message, WPARAM word, LPARAM data) override;
};

// A plain drop-down list, which assistive programs know; a text that is not one of its items
// stands in one more entry at its end.
class Win32DropDown : public DropDown, public Win32Control {
  public:
    using Win32Control::Win32Control;
    std::wstring Text() const override;
    void Text(const std::wstring& text) override;
    void AddItem(const std::wstring& text) override;
    int ItemCount() const override { return static_cast<int>(items_.size()); }
    std::wstring Item(int index) const override;
    bool OnCommand(WORD code) override;

  private:
    std::vector<std::wstring> items_;
    std::optional<std::wstring> foreign_;
};

} // namespace kalvrooms::Gui
