#include "win32/Win32ResourceLibraries.h"

#include "win32/Handles.h"
#include "win32/Win32AnsiCodec.h"

namespace kalvrooms {
namespace {

class Library : public ResourceLibrary {
  public:
    explicit Library(Module module) : module_(std::move(module)) {}

    std::wstring String(std::uint32_t identifier) override {
        char text[256] = "";
        const int length =
            LoadStringA(module_.get(), identifier, text, static_cast<int>(sizeof text));
        return length > 0
                   ? Win32AnsiCodec().Decode(std::string(text, static_cast<std::size_t>(length)))
                   : std::wstring();
    }

  private:
    Module module_;
};

} // namespace

std::unique_ptr<ResourceLibrary> Win32ResourceLibraries::Load(const std::wstring& path) {
    const std::string name = Win32AnsiCodec().Encode(path);
    Module module(
        LoadLibraryExA(name.c_str(), nullptr,
                       LOAD_LIBRARY_AS_DATAFILE_EXCLUSIVE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
    // Another program may have the file open for writing, or the system may be an older one.
    if (!module)
        module.reset(LoadLibraryExA(name.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    if (!module)
        return nullptr;
    return std::make_unique<Library>(std::move(module));
}

} // namespace kalvrooms
