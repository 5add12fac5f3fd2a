#include "ifc/StepText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>

#include "ifc/Latin.h"

namespace kalvrooms::ifc {
namespace {

constexpr char32_t replacement = 0xFFFD;

void append(std::wstring& text, char32_t code) {
    if (code > 0x10FFFF || (code >= 0xD800 && code < 0xE000))
        code = replacement;
    if (sizeof(wchar_t) > 2 || code < 0x10000) {
        text += static_cast<wchar_t>(code);
        return;
    }
    code -= 0x10000;
    text += static_cast<wchar_t>(0xD800 + (code >> 10));
    text += static_cast<wchar_t>(0xDC00 + (code & 0x3FF));
}

std::optional<char32_t> hex(std::string_view text, std::size_t at, std::size_t digits) {
    std::uint32_t value = 0;
    if (at + digits > text.size())
        return std::nullopt;
    const char* begin = text.data() + at;
    const auto [end, error] = std::from_chars(begin, begin + digits, value, 16);
    if (error != std::errc() || end != begin + digits)
        return std::nullopt;
    return value;
}

// The character at `at`, which is moved behind it, as UTF-8; none where it is not that.
std::optional<char32_t> utf8(std::string_view text, std::size_t& at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(at);
    const std::size_t more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4 || at + more >= text.size())
        return std::nullopt;
    char32_t code = lead & (0x3Fu >> more);
    for (std::size_t i = 1; i <= more; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80)
            return std::nullopt;
        code = code << 6 | (byte(at + i) & 0x3F);
    }
    at += more + 1;
    return code;
}

class Decoder {
  public:
    explicit Decoder(std::string_view inner) : in_(inner) {}

    std::wstring Run() {
        while (at_ < in_.size()) {
            const char c = in_[at_];
            if (c == '\'' && at_ + 1 < in_.size() && in_[at_ + 1] == '\'')
                ++at_; // the second one is taken as it stands
            if (c == '\\' && escape())
                continue;
            plain();
        }
        return std::move(out_);
    }

  private:
    bool follows(std::string_view word) const { return in_.substr(at_, word.size()) == word; }

    void plain() {
        if (static_cast<unsigned char>(in_[at_]) >= 0x80) {
            if (const auto code = utf8(in_, at_)) {
                append(out_, *code);
                return;
            }
        }
        append(out_, static_cast<unsigned char>(in_[at_++]));
    }

    // False: what stands here is no escape.
    bool escape() {
        if (follows("\\\\")) {
            append(out_, U'\\');
            at_ += 2;
            return true;
        }
        if (follows("\\X2\\"))
            return wide(4);
        if (follows("\\X4\\"))
            return wide(8);
        if (follows("\\X\\")) {
            const auto code = hex(in_, at_ + 3, 2);
            if (code) {
                append(out_, *code);
                at_ += 5;
            }
            return code.has_value();
        }
        if (follows("\\S\\") && at_ + 3 < in_.size()) {
            append(out_, UpperHalf(page_, static_cast<unsigned char>(in_[at_ + 3] & 0x7F)));
            at_ += 4;
            return true;
        }
        if (follows("\\P") && at_ + 3 < in_.size() && in_[at_ + 2] >= 'A' && in_[at_ + 2] <= 'I' &&
            in_[at_ + 3] == '\\') {
            page_ = in_[at_ + 2] - 'A';
            at_ += 4;
            return true;
        }
        return false;
    }

    // A run of characters of four or eight digits each, up to \X0\.
    bool wide(std::size_t digits) {
        std::size_t at = at_ + 4;
        std::wstring run;
        char32_t high = 0;
        while (const auto code = hex(in_, at, digits)) {
            at += digits;
            if (digits == 4 && *code >= 0xD800 && *code < 0xDC00) {
                high = *code;
            } else if (high && *code >= 0xDC00 && *code < 0xE000) {
                append(run, 0x10000 + ((high - 0xD800) << 10) + (*code - 0xDC00));
                high = 0;
            } else {
                append(run, *code);
            }
        }
        if (in_.substr(at, 4) != "\\X0\\")
            return false;
        out_ += run;
        at_ = at + 4;
        return true;
    }

    std::string_view in_;
    std::size_t at_ = 0;
    std::wstring out_;
    int page_ = 0;
};

void appendHex(std::string& out, char32_t code, int digits) {
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        out += "0123456789ABCDEF"[code >> shift & 0xF];
}

// The character at `at`, which is moved behind it.
char32_t takeCode(std::wstring_view text, std::size_t& at) {
    const auto unit = static_cast<char32_t>(text[at++]);
    if (unit >= 0xD800 && unit < 0xDC00 && at < text.size()) {
        const auto low = static_cast<char32_t>(text[at]);
        if (low >= 0xDC00 && low < 0xE000) {
            ++at;
            return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
        }
    }
    return unit;
}

} // namespace

std::wstring DecodeText(std::string_view inner) {
    return Decoder(inner).Run();
}

std::string EncodeText(std::wstring_view text) {
    std::string out = "'";
    int open = 0; // the digits of the run that is being written
    for (std::size_t at = 0; at < text.size();) {
        const char32_t code = takeCode(text, at);
        const int digits = code >= 0x20 && code < 0x7F ? 0 : code < 0x10000 ? 4 : 8;
        if (open && open != digits)
            out += "\\X0\\";
        if (digits && open != digits)
            out += digits == 4 ? "\\X2\\" : "\\X4\\";
        open = digits;
        if (digits) {
            appendHex(out, code, digits);
            continue;
        }
        out += static_cast<char>(code);
        if (code == U'\'' || code == U'\\')
            out += static_cast<char>(code);
    }
    if (open)
        out += "\\X0\\";
    return out + "'";
}

std::string EncodeReal(double value) {
    std::array<char, 40> buffer;
    const double size = std::abs(value);
    const bool plain = size == 0.0 || (size >= 1e-4 && size < 1e15);
    const auto [end, error] =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                      plain ? std::chars_format::fixed : std::chars_format::scientific);
    std::string text(buffer.data(), end);
    const std::size_t exponent = text.find('e');
    if (exponent != std::string::npos)
        text[exponent] = 'E';
    if (text.find('.') == std::string::npos)
        text.insert(exponent == std::string::npos ? text.size() : exponent, 1, '.');
    return text;
}

} // namespace kalvrooms::ifc
