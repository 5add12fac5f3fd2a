#pragma once
// The outermost frame of the program.

#include "win32/SystemDialogs.h"

namespace kalvrooms::Gui {

// Runs the program and returns its exit code. What nobody trapped, such as a window that the system
// does not give, ends in a message instead of a crash.
int RunToItsEnd(const std::function<void()>& program, const SystemDialogs& dialogs);

} // namespace kalvrooms::Gui
