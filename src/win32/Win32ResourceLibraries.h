#pragma once
// String resources of libraries that are loaded as data.

#include "platform/Platform.h"

namespace kalvrooms {

class Win32ResourceLibraries : public ResourceLibraries {
  public:
    std::unique_ptr<ResourceLibrary> Load(const std::wstring& path) override;
};

} // namespace kalvrooms
