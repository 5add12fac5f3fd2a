#pragma once
// A dialog made from a template of the executable.

#include "win32/Win32Form.h"

namespace kalvrooms::Gui {

class Win32TabStrip;

class Win32Dialog : public Win32Form {
  public:
    Win32Dialog(Win32Desktop& desktop, const FormEntry& entry);
    ~Win32Dialog() override;

  protected:
    void FocusFirst() override;
    void Arrange(Win32Form* owner) override;
    bool HandleDialogKeys(MSG& message) override;

  private:
    void addPages();
    void centreDropDowns();
    static LRESULT pageProcedure(HWND window, UINT message, WPARAM word, LPARAM data,
                                 void* reference);

    std::vector<HWND> pages_;
    Win32TabStrip* tabs_ = nullptr;
};

} // namespace kalvrooms::Gui
