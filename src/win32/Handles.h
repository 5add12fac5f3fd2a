#pragma once
// Owners of the window system's handles.

#include <windows.h>

#include <memory>
#include <type_traits>

namespace kalvrooms {

template <typename Handle, auto Free>
struct HandleDeleter {
    using pointer = Handle;
    void operator()(Handle handle) const { Free(handle); }
};
using Module = std::unique_ptr<void, HandleDeleter<HMODULE, FreeLibrary>>;

// A brush, pen, font or bitmap.
template <typename Handle>
using GdiObject = std::unique_ptr<void, HandleDeleter<Handle, DeleteObject>>;

// A surface in memory.
using MemoryContext = std::unique_ptr<void, HandleDeleter<HDC, DeleteDC>>;

// Selects an object while it lives.
class Selected {
  public:
    Selected(HDC context, HGDIOBJ object)
        : context_(context), before_(SelectObject(context, object)) {}
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;
    ~Selected() { SelectObject(context_, before_); }

  private:
    HDC context_;
    HGDIOBJ before_;
};

// The surface of a window, to measure on or to paint outside of WM_PAINT.
class WindowContext {
  public:
    explicit WindowContext(HWND window) : window_(window), context_(GetDC(window)) {}
    WindowContext(const WindowContext&) = delete;
    WindowContext& operator=(const WindowContext&) = delete;
    ~WindowContext() { ReleaseDC(window_, context_); }
    operator HDC() const { return context_; }

  private:
    HWND window_;
    HDC context_;
};

// A function that is asked for by name; null where the library does not have it.
template <typename Function>
Function FunctionIn(HMODULE library, const char* name) {
    void* const address =
        library ? reinterpret_cast<void*>(GetProcAddress(library, name)) : nullptr;
    return reinterpret_cast<Function>(address);
}

} // namespace kalvrooms
