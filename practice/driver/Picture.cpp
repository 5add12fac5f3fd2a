#include "practice/driver/UiDriver.h"
#include "win32/Handles.h"

#include <cstdint>
#include <cstring>
#include <fstream>
#include <set>

namespace kalvrooms::driver {
namespace {

BITMAPINFOHEADER header(int width, int height) {
    BITMAPINFOHEADER info{};
    info.biSize = sizeof info;
    info.biWidth = width;
    info.biHeight = height;
    info.biPlanes = 1;
    info.biBitCount = 32;
    return info;
}

} // namespace

RECT placeOf(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return place;
}

Picture::Picture(const RECT& place)
    : width_(static_cast<int>(place.right - place.left)),
      height_(static_cast<int>(place.bottom - place.top)) {
    BITMAPINFO info{};
    info.bmiHeader = header(width_, height_);
    const WindowContext screen(nullptr);
    const MemoryContext memory(CreateCompatibleDC(screen));
    void* bits = nullptr;
    const GdiObject<HBITMAP> bitmap(
        CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const Selected selected(memory.get(), bitmap.get());
    BitBlt(memory.get(), 0, 0, width_, height_, screen, static_cast<int>(place.left),
           static_cast<int>(place.top), SRCCOPY);
    GdiFlush();
    pixels_.assign(static_cast<const char*>(bits),
                   static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_) * 4);
    // What the screen leaves in the fourth byte is no transparency.
    for (std::size_t at = 3; at < pixels_.size(); at += 4)
        pixels_[at] = '\xFF';
}

Picture Picture::ofScreen() {
    return Picture({0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)});
}

Picture Picture::ofWindow(HWND window) {
    Picture last(placeOf(window));
    int alike = 0;
    waitFor("a quiet picture", [&] {
        // A window that has just opened may still be on its way to its place.
        Picture now(placeOf(window));
        alike = now == last && !GetUpdateRect(window, nullptr, FALSE) ? alike + 1 : 0;
        last = std::move(now);
        // A window that shows but was not painted yet is one plain area.
        return alike >= 5 && last.colours() > 4;
    });
    return last;
}

std::size_t Picture::colours() const {
    std::set<std::uint32_t> colours;
    for (std::size_t at = 0; at + 4 <= pixels_.size(); at += 4) {
        std::uint32_t colour = 0;
        std::memcpy(&colour, pixels_.data() + at, 4);
        colours.insert(colour);
    }
    return colours.size();
}

int Picture::redness() const {
    int most = 0;
    for (std::size_t at = 0; at + 4 <= pixels_.size(); at += 4)
        most = std::max(most, static_cast<unsigned char>(pixels_[at + 2]) -
                                  static_cast<unsigned char>(pixels_[at + 1]));
    return most;
}

void Picture::save(const std::filesystem::path& bitmap) const {
    const BITMAPINFOHEADER info = header(width_, height_);
    BITMAPFILEHEADER head{};
    head.bfType = 0x4D42;
    head.bfOffBits = sizeof head + sizeof info;
    head.bfSize = head.bfOffBits + static_cast<DWORD>(pixels_.size());
    std::ofstream out(bitmap, std::ios::binary);
    out.write(reinterpret_cast<const char*>(&head), sizeof head);
    out.write(reinterpret_cast<const char*>(&info), sizeof info);
    out << pixels_;
}

} // namespace kalvrooms::driver
