#pragma once
// Where the program lies.

#include "platform/Platform.h"

namespace kalvrooms {

class Win32Environment : public Environment {
  public:
    std::wstring ExecutableFolder() const override;
};

// The folder of a file: with a separator at the end only for a drive's root.
std::wstring FolderOfFile(const std::wstring& path);

} // namespace kalvrooms
