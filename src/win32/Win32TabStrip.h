#pragma once
// Tabs, each with a page window that holds its controls.

#include "win32/Win32Control.h"

#include <vector>

namespace kalvrooms::Gui {

class Win32TabStrip : public TabStrip, public Win32Control {
  public:
    using Win32Control::Win32Control;
    int Tab() const override;
    void Tab(int index) override;
    std::wstring TabCaption(int index) const override;
    void TabCaption(int index, const std::wstring& caption) override;
    bool OnNotify(NMHDR& header, LRESULT& result) override;
    void Rescale(UINT from, UINT to) override;

    void AddPage(HWND page);
    // The next tab, or the one before; around at the ends.
    void Step(int distance);

  private:
    void showPage();
    void fitPages();

    std::vector<HWND> pages_;
};

} // namespace kalvrooms::Gui
