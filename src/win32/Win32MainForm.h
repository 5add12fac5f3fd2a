#pragma once
// The program's top-level window: menu bar and table.

#include "win32/Win32Form.h"

namespace kalvrooms::Gui {

class Win32Grid;

class Win32MainForm : public Win32Form {
  public:
    Win32MainForm(Win32Desktop& desktop, const FormEntry& entry);

  protected:
    LRESULT HandleMessage(UINT message, WPARAM word, LPARAM data) override;
    void AfterEvent() override;
    void FocusFirst() override;

  private:
    Win32Grid* grid_ = nullptr;
};

} // namespace kalvrooms::Gui
