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
    // What is done at the end of a run, while the user can still answer.
    void leaveSession();

    Win32Grid* grid_ = nullptr;
    bool asking_ = false;
    bool leftSession_ = false;
};

} // namespace kalvrooms::Gui
