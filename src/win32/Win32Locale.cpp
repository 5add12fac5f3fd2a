#include "win32/Win32Locale.h"

#include "win32/Win32AnsiCodec.h"

#include <windows.h>

namespace kalvrooms {
namespace {

// The first character of the mark as the 8-bit call delivers it; "." when the call fails.
std::wstring decimalMark() {
    constexpr int bufferSize = 255;
    char buffer[bufferSize] = "";
    if (GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, buffer, bufferSize) < 1)
        return L".";
    return Win32AnsiCodec().Decode(buffer).substr(0, 1);
}

std::wstring information(LCTYPE type) {
    wchar_t buffer[80] = L"";
    if (GetLocaleInfoW(LOCALE_USER_DEFAULT, type, buffer, static_cast<int>(std::size(buffer))) < 1)
        return {};
    return buffer;
}

} // namespace

NumberLocale Win32UserLocale() {
    NumberLocale locale;
    locale.DecimalMark = decimalMark();
    locale.GroupingMark = information(LOCALE_STHOUSAND);
    locale.CurrencySymbol = information(LOCALE_SCURRENCY);
    locale.CurrencyDecimalMark = information(LOCALE_SMONDECIMALSEP);
    locale.CurrencyGroupingMark = information(LOCALE_SMONTHOUSANDSEP);
    return locale;
}

} // namespace kalvrooms
