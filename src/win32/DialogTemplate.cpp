#include "win32/DialogTemplate.h"

#include "win32/Dpi.h"

#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace kalvrooms::Gui {
namespace {

// Reads on through a template; every step stays inside it.
class Reader {
  public:
    Reader(const std::byte* data, std::size_t size) : data_(data), size_(size) {}
    std::size_t Position() const { return position_; }
    void Skip(std::size_t bytes) { position_ += bytes; }
    bool Good() const { return position_ <= size_; }
    std::uint16_t Word() {
        std::uint16_t word = 0;
        if (position_ + sizeof word <= size_)
            std::memcpy(&word, data_ + position_, sizeof word);
        position_ += sizeof word;
        return word;
    }
    std::uint32_t Long() {
        const std::uint32_t low = Word();
        return low | static_cast<std::uint32_t>(Word()) << 16;
    }
    void SkipText() {
        while (Good() && Word() != 0) {
        }
    }
    // A resource's name: nothing, a number or a text.
    void SkipName() {
        const std::uint16_t first = Word();
        if (first == 0xFFFF)
            Word();
        else if (first != 0)
            SkipText();
    }

  private:
    const std::byte* data_;
    std::size_t size_;
    std::size_t position_ = 0;
};

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
    Reader reader(data, size);
    const std::uint16_t version = reader.Word();
    const std::uint16_t signature = reader.Word();
    if (version != 1 || signature != 0xFFFF)
        return {};
    reader.Skip(2 * sizeof(std::uint32_t)); // help number, extended style
    const std::uint32_t style = reader.Long();
    if (!(style & DS_SETFONT))
        return {};
    reader.Skip(5 * sizeof(std::uint16_t)); // number of controls, place and size
    reader.SkipName();                      // menu
    reader.SkipName();                      // window class
    reader.SkipText();                      // title
    const std::size_t fontAt = reader.Position();
    reader.Skip(2 * sizeof(std::uint16_t) + 2); // points, weight, italic and character set
    reader.SkipText();
    const std::size_t controlsAt = aligned(reader.Position());
    if (!reader.Good() || controlsAt > size)
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
    const HMODULE module = GetModuleHandleW(nullptr);
    const HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(id), RT_DIALOG);
    const HGLOBAL loaded = found ? LoadResource(module, found) : nullptr;
    const auto* data = static_cast<const std::byte*>(loaded ? LockResource(loaded) : nullptr);
    if (!data)
        throw std::logic_error("a dialog template is missing in the executable");
    const LOGFONTW font = MessageFont(SystemDpi());
    auto bytes = WithFont(data, SizeofResource(module, found), font.lfFaceName,
                          static_cast<WORD>(MessageFontPoints()), static_cast<WORD>(font.lfWeight),
                          font.lfItalic != FALSE);
    if (bytes.empty())
        throw std::logic_error("a dialog template has an unknown form");
    return bytes;
}

} // namespace kalvrooms::Gui
