#pragma once
// Twips, pixels and the fonts of a monitor's DPI.

#include "platform/Gui.h"
#include "win32/Handles.h"

namespace kalvrooms::Gui {

inline constexpr int TwipsPerInch = 1440;

int ToPixels(Twips twips, UINT dpi);
Twips ToTwips(int pixels, UINT dpi);

UINT SystemDpi();
// The DPI of the monitor that the window is on; the system's where that is not known.
UINT DpiOfWindow(HWND window);

// The font that the user chose for messages and dialogs, for a DPI.
LOGFONTW MessageFont(UINT dpi);
// Its size in points.
int MessageFontPoints();

} // namespace kalvrooms::Gui
