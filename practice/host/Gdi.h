#pragma once
// Owners of GDI objects.

#include <windows.h>

namespace kalvrooms::practice {

// Selects an object while it lives and deletes it then; the system's own objects stay.
class Selected {
  public:
    Selected(HDC dc, HGDIOBJ object) : dc_(dc), before_(SelectObject(dc, object)) {}
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;
    ~Selected() { DeleteObject(SelectObject(dc_, before_)); }

  private:
    HDC dc_;
    HGDIOBJ before_;
};

// A surface in memory, copied to its target at the end: the window never shows half a picture.
class DoubleBuffer {
  public:
    DoubleBuffer(HDC target, const RECT& area)
        : target_(target), area_(area), dc_(CreateCompatibleDC(target)),
          bitmap_(CreateCompatibleBitmap(target, area.right - area.left, area.bottom - area.top)),
          before_(SelectObject(dc_, bitmap_)) {}
    DoubleBuffer(const DoubleBuffer&) = delete;
    DoubleBuffer& operator=(const DoubleBuffer&) = delete;
    ~DoubleBuffer() {
        BitBlt(target_, area_.left, area_.top, area_.right - area_.left, area_.bottom - area_.top,
               dc_, 0, 0, SRCCOPY);
        SelectObject(dc_, before_);
        DeleteObject(bitmap_);
        DeleteDC(dc_);
    }
    HDC dc() const { return dc_; }

  private:
    HDC target_;
    RECT area_;
    HDC dc_;
    HBITMAP bitmap_;
    HGDIOBJ before_;
};

} // namespace kalvrooms::practice
