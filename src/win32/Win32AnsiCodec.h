#pragma once
// 8-bit texts in the system's ANSI code page.

#include "platform/Platform.h"

namespace kalvrooms {

class Win32AnsiCodec : public AnsiCodec {
  public:
    std::string Encode(const std::wstring& text) const override;
    std::wstring Decode(const std::string& bytes) const override;
};

} // namespace kalvrooms
