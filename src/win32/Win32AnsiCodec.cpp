#include "win32/Win32AnsiCodec.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>

namespace kalvrooms {
namespace {

// The calls count in 32 bits; longer texts go through in pieces.
constexpr std::size_t pieceLength = std::size_t{1} << 28;

bool isHighSurrogate(wchar_t character) {
    return character >= 0xD800 && character <= 0xDBFF;
}

} // namespace

std::string Win32AnsiCodec::Encode(const std::wstring& text) const {
    // Under UTF-8 nothing is lacking, and the call refuses to be told what to do then.
    const bool complete = GetACP() == CP_UTF8;
    const DWORD flags = complete ? 0 : WC_NO_BEST_FIT_CHARS;
    const char* const lacking = complete ? nullptr : "?";
    std::string bytes;
    for (std::size_t start = 0; start < text.size();) {
        std::size_t length = std::min(pieceLength, text.size() - start);
        if (start + length < text.size() && isHighSurrogate(text[start + length - 1]))
            --length;
        const auto count = static_cast<int>(length);
        const int needed = WideCharToMultiByte(CP_ACP, flags, text.data() + start, count, nullptr,
                                               0, lacking, nullptr);
        const std::size_t before = bytes.size();
        bytes.resize(before + static_cast<std::size_t>(needed));
        WideCharToMultiByte(CP_ACP, flags, text.data() + start, count, bytes.data() + before,
                            needed, lacking, nullptr);
        start += length;
    }
    return bytes;
}

std::wstring Win32AnsiCodec::Decode(const std::string& bytes) const {
    CPINFO page{};
    const bool oneByte = GetCPInfo(CP_ACP, &page) && page.MaxCharSize == 1;
    std::wstring text;
    for (std::size_t start = 0; start < bytes.size();) {
        // Only where no character can be cut in two.
        const std::size_t length =
            oneByte ? std::min(pieceLength, bytes.size() - start) : bytes.size() - start;
        const auto count = static_cast<int>(length);
        const int needed = MultiByteToWideChar(CP_ACP, 0, bytes.data() + start, count, nullptr, 0);
        const std::size_t before = text.size();
        text.resize(before + static_cast<std::size_t>(needed));
        MultiByteToWideChar(CP_ACP, 0, bytes.data() + start, count, text.data() + before, needed);
        start += length;
    }
    return text;
}

} // namespace kalvrooms
