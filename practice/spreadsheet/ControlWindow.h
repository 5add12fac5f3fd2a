#pragma once
// The hidden window through which the instance's user speaks, and the instance's message loop.

#include "practice/spreadsheet/SheetProcess.h"

namespace kalvrooms::practice::spreadsheet {

class ControlWindow {
  public:
    // Raises a HostError when the system gives no window.
    explicit ControlWindow(SheetProcess& process);
    ControlWindow(const ControlWindow&) = delete;
    ControlWindow& operator=(const ControlWindow&) = delete;
    ~ControlWindow();

    // Until the instance's end.
    void Run();

  private:
    static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM first, LPARAM second);
    LRESULT Handle(UINT message, WPARAM first, LPARAM second);
    void LeaveByHand();

    SheetProcess& process_;
    HWND window_ = nullptr;
};

} // namespace kalvrooms::practice::spreadsheet
