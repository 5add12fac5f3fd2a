#pragma once
// Twips, pixels and the user's font at a monitor's DPI.

#include "platform/Gui.h"

#include <windows.h>

#include <cmath>

namespace kalvrooms::Gui {

inline constexpr int TwipsPerInch = 1440;

inline int ToPixels(Twips twips, UINT dpi) {
    return static_cast<int>(std::lround(static_cast<double>(twips) * dpi / TwipsPerInch));
}

inline Twips ToTwips(int pixels, UINT dpi) {
    return static_cast<Twips>(static_cast<double>(pixels) * TwipsPerInch / dpi);
}

// A length that is designed in pixels at the usual DPI.
inline int Scaled(int pixels, UINT dpi) {
    return MulDiv(pixels, static_cast<int>(dpi), USER_DEFAULT_SCREEN_DPI);
}

// The font that the user chose for messages and dialogs.
inline LOGFONTW MessageFont(UINT dpi) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi);
    return metrics.lfMessageFont;
}

// Its size in points, measured at a DPI at which no fraction of a point is lost to pixels.
inline int MessageFontPoints() {
    const int points =
        MulDiv(-static_cast<int>(MessageFont(TwipsPerInch).lfHeight), 72, TwipsPerInch);
    return points > 0 ? points : 9;
}

} // namespace kalvrooms::Gui
