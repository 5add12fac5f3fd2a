#pragma once
// Busy indicator: a scope guard on the application-wide mouse pointer.

#include <cstdint>

#include "platform/Gui.h"

namespace kalvrooms {

class clsWait {
  public:
    explicit clsWait(Gui::Desktop& desktop) : desktop_(desktop) {}
    // Restores the pointer that StartWait replaced; never leaves the hourglass.
    ~clsWait();
    clsWait(const clsWait&) = delete;
    clsWait& operator=(const clsWait&) = delete;

    // Around steps in which the user has to work with the mouse.
    void BreakWait();
    void ContinueWait();
    // Hourglass; does nothing where an outer guard shows it already.
    void StartWait();

  private:
    Gui::Desktop& desktop_;
    std::int16_t saved_ = Gui::DefaultPointer;
    std::int16_t break_ = Gui::DefaultPointer;
};

} // namespace kalvrooms
