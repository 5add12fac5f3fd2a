#include "model/Utf8.h"

namespace kalvrooms {

namespace {

constexpr char32_t Replacement = 0xFFFD;

bool IsSurrogate(char32_t code) {
    return code >= 0xD800 && code <= 0xDFFF;
}

void AppendWide(std::wstring& text, char32_t code) {
    if constexpr (sizeof(wchar_t) == 2) {
        if (code >= 0x10000) {
            code -= 0x10000;
            text += static_cast<wchar_t>(0xD800 + (code >> 10));
            text += static_cast<wchar_t>(0xDC00 + (code & 0x3FF));
            return;
        }
    }
    text += static_cast<wchar_t>(code);
}

// The length of the sequence that a byte opens, 0 when it opens none.
int SequenceLength(unsigned char first) {
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first < 0xE0)
        return 2;
    if (first >= 0xE0 && first < 0xF0)
        return 3;
    if (first >= 0xF0 && first < 0xF5)
        return 4;
    return 0;
}

void AppendUtf8(std::string& bytes, char32_t code) {
    const auto tail = [&](int shift) {
        bytes += static_cast<char>(0x80 | ((code >> shift) & 0x3F));
    };
    if (code < 0x80) {
        bytes += static_cast<char>(code);
    } else if (code < 0x800) {
        bytes += static_cast<char>(0xC0 | (code >> 6));
        tail(0);
    } else if (code < 0x10000) {
        bytes += static_cast<char>(0xE0 | (code >> 12));
        tail(6);
        tail(0);
    } else {
        bytes += static_cast<char>(0xF0 | (code >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

} // namespace

std::wstring FromUtf8(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    std::size_t at = 0;
    while (at < bytes.size()) {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const int length = SequenceLength(first);
        char32_t code = length > 1 ? first & (0xFF >> (length + 1)) : first;
        bool valid = length > 0 && at + static_cast<std::size_t>(length) <= bytes.size();
        for (int k = 1; valid && k < length; ++k) {
            const auto next = static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(k)]);
            valid = (next & 0xC0) == 0x80;
            code = (code << 6) | (next & 0x3F);
        }
        valid = valid && !IsSurrogate(code) && code <= 0x10FFFF && !(length == 3 && code < 0x800) &&
                !(length == 4 && code < 0x10000);
        AppendWide(text, valid ? code : Replacement);
        at += valid ? static_cast<std::size_t>(length) : 1;
    }
    return text;
}

std::string ToUtf8(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        auto code = static_cast<char32_t>(text[at]);
        if constexpr (sizeof(wchar_t) == 2) {
            code &= 0xFFFF;
            if (code >= 0xD800 && code < 0xDC00 && at + 1 < text.size()) {
                const auto low = static_cast<char32_t>(text[at + 1]) & 0xFFFF;
                if (low >= 0xDC00 && low < 0xE000) {
                    code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
                    ++at;
                }
            }
        }
        AppendUtf8(bytes, IsSurrogate(code) || code > 0x10FFFF ? Replacement : code);
    }
    return bytes;
}

} // namespace kalvrooms
