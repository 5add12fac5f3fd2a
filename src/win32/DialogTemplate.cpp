#include "win32/DialogTemplate.h"

#include "win32/Dpi.h"

#include <cstring>
#include <stdexcept>

namespace kalvrooms::Gui {
namespace {

// An extended template: version and signature, help number, styles, number of controls, place and
// size, then as texts the menu, the window class and the title, which ours do not have.
constexpr std::size_t styleAt = 12;
constexpr std::size_t textsAt = 26;
constexpr std::size_t fontAt = textsAt + 3 * sizeof(WORD);
constexpr BYTE start[] = {1, 0, 0xFF, 0xFF};
constexpr BYTE noTexts[3 * sizeof(WORD)] = {};

std::size_t aligned(std::size_t position) {
    return (position + 3) & ~std::size_t{3};
}

void append(std::vector<std::byte>& bytes, const void* data, std::size_t size) {
    const auto* first = static_cast<const std::byte*>(data);
    bytes.insert(bytes.end(), first, first + size);
}

} // namespace

std::vector<std::byte> WithFont(const std::byte* data, std::size_t size, const std::wstring& face,
                                WORD points, WORD weight, bool italic) {
    const auto is = [&](std::size_t at, const auto& bytes) {
        return at + sizeof bytes <= size && std::memcmp(data + at, bytes, sizeof bytes) == 0;
    };
    if (!is(0, start) || !is(textsAt, noTexts) ||
        !(std::to_integer<int>(data[styleAt]) & DS_SETFONT))
        return {};
    // Points, weight, italic and character set, then the face.
    std::size_t controlsAt = fontAt + 3 * sizeof(WORD);
    WORD character = 1;
    while (character && controlsAt + sizeof character <= size) {
        std::memcpy(&character, data + controlsAt, sizeof character);
        controlsAt += sizeof character;
    }
    controlsAt = aligned(controlsAt);
    if (character || controlsAt > size)
        return {};

    std::vector<std::byte> result(data, data + fontAt);
    append(result, &points, sizeof points);
    append(result, &weight, sizeof weight);
    const BYTE flags[] = {static_cast<BYTE>(italic), DEFAULT_CHARSET};
    append(result, flags, sizeof flags);
    append(result, face.c_str(), (face.size() + 1) * sizeof(wchar_t));
    result.resize(aligned(result.size()));
    append(result, data + controlsAt, size - controlsAt);
    return result;
}

std::vector<std::byte> LoadDialogTemplate(int id) {
    const HRSRC found = FindResourceW(nullptr, MAKEINTRESOURCEW(id), RT_DIALOG);
    const HGLOBAL loaded = found ? LoadResource(nullptr, found) : nullptr;
    const auto* data = static_cast<const std::byte*>(loaded ? LockResource(loaded) : nullptr);
    if (!data)
        throw std::logic_error("a dialog template is missing in the executable");
    const LOGFONTW font = MessageFont(GetDpiForSystem());
    auto bytes = WithFont(data, SizeofResource(nullptr, found), font.lfFaceName,
                          static_cast<WORD>(MessageFontPoints()), static_cast<WORD>(font.lfWeight),
                          font.lfItalic != FALSE);
    if (bytes.empty())
        throw std::logic_error("a dialog template has an unknown form");
    return bytes;
}

} // namespace kalvrooms::Gui
