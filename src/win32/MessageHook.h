#pragma once
// A handler in front of a window's own procedure, one per window. The system's own way keeps the
// handler in a property of the window and looks it up for every message; where that look-up leaves
// the process it costs more than all the rest of opening a dialog. For the thread of the windows.

#include <windows.h>

namespace kalvrooms::Gui {

using MessageHandler = LRESULT (*)(HWND window, UINT message, WPARAM word, LPARAM data,
                                   void* reference);

// From now on the handler gets the window's messages first. It goes with the window.
void HookMessages(HWND window, MessageHandler handler, void* reference);
void UnhookMessages(HWND window);
// What the window does by itself; for handlers.
LRESULT CallOwnProcedure(HWND window, UINT message, WPARAM word, LPARAM data);

} // namespace kalvrooms::Gui
