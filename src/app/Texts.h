#pragma once
// The user-visible texts, by number.

#include <cstdint>
#include <string>

namespace kalvrooms {

class Texts {
  public:
    virtual ~Texts() = default;
    // Error: SubscriptOutOfRange outside 0 to 200.
    virtual std::wstring GetText(std::int32_t number) const = 0;
    // Cut before the first "...", unless the text begins with it.
    virtual std::wstring GetTextWithoutDot(std::int32_t number) const = 0;
};

} // namespace kalvrooms
