#include "ifc/Names.h"

#include <algorithm>

#include "host/HostApplication.h"
#include "model/NumberText.h"

namespace kalvrooms::ifc {
namespace {

// A list in an 8-bit code page has a question mark for every letter that it does not know.
bool isLetterBy8Bits(wchar_t was, wchar_t is) {
    return was == is || (is == L'?' && was > 0xFF);
}

} // namespace

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

std::wstring InOneLine(std::wstring text) {
    std::replace_if(
        text.begin(), text.end(), [](wchar_t c) { return c < L' '; }, L' ');
    return text;
}

bool IsSameInList(const std::wstring& was, const std::wstring& is) {
    const std::wstring whole = Trim(InOneLine(was));
    const std::wstring cut = Trim(whole.substr(0, LongestHostText)); // on its way back
    const std::wstring now = Trim(is);
    const auto equal = [&](const std::wstring& text) {
        return std::equal(text.begin(), text.end(), now.begin(), now.end(), isLetterBy8Bits);
    };
    return equal(whole) || equal(cut);
}

} // namespace kalvrooms::ifc
