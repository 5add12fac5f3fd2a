#pragma once
// The program's top-level window: menu bar and table.

#include "win32/Win32Form.h"

#include <memory>

namespace kalvrooms::Gui {

class Win32Grid;

struct EndOfTimer {
    void operator()(PTP_TIMER timer) const;
};

class Win32MainForm : public Win32Form {
  public:
    Win32MainForm(Win32Desktop& desktop, const FormEntry& entry);

  protected:
    LRESULT HandleMessage(UINT message, WPARAM word, LPARAM data) override;
    void AfterEvent() override;
    void FocusFirst() override;

  private:
    void serveInput();

    Win32Grid* grid_ = nullptr;
    std::unique_ptr<TP_TIMER, EndOfTimer> timer_;
    bool serving_ = false;
};

} // namespace kalvrooms::Gui
