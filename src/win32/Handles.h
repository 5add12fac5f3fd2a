#pragma once
// Owners of the window system's handles.

#include <windows.h>

#include <memory>

namespace kalvrooms {

struct GdiObjectDeleter {
    using pointer = HGDIOBJ;
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
using GdiObject = std::unique_ptr<void, GdiObjectDeleter>;

struct ModuleDeleter {
    using pointer = HMODULE;
    void operator()(HMODULE module) const { FreeLibrary(module); }
};
using Module = std::unique_ptr<void, ModuleDeleter>;

// A function that older systems lack; null there.
template <typename Function>
Function OptionalFunction(HMODULE module, const char* name) {
    return module
               ? reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)))
               : nullptr;
}

} // namespace kalvrooms
