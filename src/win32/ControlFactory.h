#pragma once
// From the kind that a layout names to the class that realises it.

#include "win32/ControlNames.h"
#include "win32/Win32Control.h"

namespace kalvrooms::Gui {

// Takes over the window of a control.
std::unique_ptr<Win32Control> MakeControl(Win32Form& form, const ControlEntry& entry, HWND window);

} // namespace kalvrooms::Gui
