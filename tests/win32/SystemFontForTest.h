#pragma once
// The user's fonts for messages and menus while it lives; put back at the end.

#include <windows.h>

namespace kalvrooms {

class SystemFontForTest {
  public:
    // 0 leaves the fonts as they are.
    explicit SystemFontForTest(int points) {
        metrics_.cbSize = sizeof metrics_;
        SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics_, &metrics_, 0);
        if (points == 0)
            return;
        NONCLIENTMETRICSW changed = metrics_;
        // In pixels as this process counts them.
        changed.lfMessageFont.lfHeight = -MulDiv(points, static_cast<int>(GetDpiForSystem()), 72);
        changed.lfMenuFont.lfHeight = changed.lfMessageFont.lfHeight;
        SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof changed, &changed, 0);
    }
    ~SystemFontForTest() {
        SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof metrics_, &metrics_, 0);
    }
    SystemFontForTest(const SystemFontForTest&) = delete;
    SystemFontForTest& operator=(const SystemFontForTest&) = delete;

  private:
    NONCLIENTMETRICSW metrics_{};
};

} // namespace kalvrooms
