#include "ifc/Names.h"

namespace kalvrooms::ifc {

std::wstring PlainName(std::wstring_view name) {
    std::wstring plain;
    for (const wchar_t c : name)
        if (c >= L'A' && c <= L'Z')
            plain += static_cast<wchar_t>(c - L'A' + L'a');
        else if (c == L'ä' || c == L'Ä')
            plain += L"ae";
        else if (c == L'ö' || c == L'Ö')
            plain += L"oe";
        else if (c == L'ü' || c == L'Ü')
            plain += L"ue";
        else if (c == L'ß')
            plain += L"ss";
        else if (c > L' ' && c != L'_' && c != L'-' && c != L'.' && c != L'\x00A0')
            plain += c;
    return plain;
}

} // namespace kalvrooms::ifc
