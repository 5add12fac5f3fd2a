#pragma once
// The current user's hive.

#include "platform/Platform.h"

namespace kalvrooms {

class Win32Registry : public Registry {
  public:
    std::unique_ptr<RegistryKey> CreateKey(const std::wstring& path, const std::wstring& keyClass,
                                           std::uint32_t options,
                                           std::uint32_t accessMask) override;
    std::unique_ptr<RegistryKey> OpenKey(const std::wstring& path,
                                         std::uint32_t accessMask) override;
};

} // namespace kalvrooms
