#pragma once
// The settings store: seven numbers per user in the registry, under the key path that the host
// names followed by "\QTO". Window geometry in twips, colours RGB with red in the low byte.

#include <cstdint>
#include <string>

#include "platform/Platform.h"

namespace kalvrooms {

class clsRegistry {
  public:
    explicit clsRegistry(Registry& registry) : registry_(registry) {}

    // A key that cannot be created means that nothing is written.
    void SetSettings(const std::wstring& keyPath, bool noReport, std::int32_t left,
                     std::int32_t top, std::int32_t height, std::int32_t width,
                     std::int32_t colorNew, std::int32_t colorOld);
    // Without key, height or width the window geometry becomes 0 and the colours stay as given.
    void GetSettings(const std::wstring& keyPath, bool& noReport, std::int32_t& left,
                     std::int32_t& top, std::int32_t& height, std::int32_t& width,
                     std::int32_t& colorNew, std::int32_t& colorOld);

  private:
    Registry& registry_;
};

} // namespace kalvrooms
