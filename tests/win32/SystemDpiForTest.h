#pragma once
// The DPI that the system tells to programs that start while it holds.

#include <windows.h>

namespace kalvrooms::testing {

class SystemDpiForTest {
  public:
    explicit SystemDpiForTest(DWORD dpi) {
        DWORD size = sizeof before_;
        hadOne_ = RegGetValueW(HKEY_CURRENT_USER, desktop, L"LogPixels", RRF_RT_REG_DWORD, nullptr,
                               &before_, &size) == ERROR_SUCCESS;
        set(dpi);
    }
    ~SystemDpiForTest() {
        if (hadOne_)
            set(before_);
        else
            RegDeleteKeyValueW(HKEY_CURRENT_USER, desktop, L"LogPixels");
    }
    SystemDpiForTest(const SystemDpiForTest&) = delete;
    SystemDpiForTest& operator=(const SystemDpiForTest&) = delete;

  private:
    static constexpr const wchar_t* desktop = L"Control Panel\\Desktop";
    static void set(DWORD dpi) {
        RegSetKeyValueW(HKEY_CURRENT_USER, desktop, L"LogPixels", REG_DWORD, &dpi, sizeof dpi);
    }

    DWORD before_ = 0;
    bool hadOne_ = false;
};

} // namespace kalvrooms::testing
