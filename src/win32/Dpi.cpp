#include "win32/Dpi.h"

#include <cmath>
#include <cstdlib>

namespace kalvrooms::Gui {
namespace {

HMODULE user32() {
    return GetModuleHandleW(L"user32.dll");
}

} // namespace

int ToPixels(Twips twips, UINT dpi) {
    return static_cast<int>(std::lround(static_cast<double>(twips) * dpi / TwipsPerInch));
}

Twips ToTwips(int pixels, UINT dpi) {
    return static_cast<Twips>(static_cast<double>(pixels) * TwipsPerInch / dpi);
}

UINT SystemDpi() {
    using Query = UINT(WINAPI*)();
    static const auto query = OptionalFunction<Query>(user32(), "GetDpiForSystem");
    if (query)
        return query();
    HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return dpi > 0 ? static_cast<UINT>(dpi) : USER_DEFAULT_SCREEN_DPI;
}

UINT DpiOfWindow(HWND window) {
    using Query = UINT(WINAPI*)(HWND);
    static const auto query = OptionalFunction<Query>(user32(), "GetDpiForWindow");
    const UINT dpi = query ? query(window) : 0;
    return dpi ? dpi : SystemDpi();
}

LOGFONTW MessageFont(UINT dpi) {
    using Query = BOOL(WINAPI*)(UINT, UINT, void*, UINT, UINT);
    static const auto query = OptionalFunction<Query>(user32(), "SystemParametersInfoForDpi");
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (query && query(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi))
        return metrics.lfMessageFont;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    metrics.lfMessageFont.lfHeight = MulDiv(metrics.lfMessageFont.lfHeight, static_cast<int>(dpi),
                                            static_cast<int>(SystemDpi()));
    return metrics.lfMessageFont;
}

int MessageFontPoints() {
    // At a high DPI, so that no fraction of a point is lost to pixels.
    constexpr int dpi = 1440;
    const int points = MulDiv(std::abs(static_cast<int>(MessageFont(dpi).lfHeight)), 72, dpi);
    return points > 0 ? points : 9;
}

} // namespace kalvrooms::Gui
